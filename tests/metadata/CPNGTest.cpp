// PNG chunks: the walk, the text chunks and their keywords, the rewrite in
// front of IEND; pngcheck and exiftool as peers when they are installed.
#include <gtest/gtest.h>
#include <zlib.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>

#include "metadata/CImage.h"
#include "metadata/CPNG.h"
#include "metadata/CommandesMeta.h"
#include "metadata/Infos.h"
#include "tests/metadata/Fabrique.h"

namespace tg::meta {
namespace {

using test::ExtensionCommentaire;
using test::Gif;

// A PNG as Qt's encoder writes it, with its texts as Qt puts them.
QByteArray PngQt(int w, int h, const QList<std::pair<QString, QString>>& textes = {}) {
  QImage image(w, h, QImage::Format_RGB32);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) image.setPixel(x, y, qRgb(x * 7, y * 11, (x * y) % 256));
  for (const auto& [k, v] : textes) image.setText(k, v);
  QByteArray octets;
  QBuffer tampon(&octets);
  tampon.open(QIODevice::WriteOnly);
  image.save(&tampon, "PNG");
  return octets;
}

// A chunk written here, independently of the library's writer.
QByteArray Chunk(const QByteArray& type, const QByteArray& donnees) {
  QByteArray c;
  const uint32_t n = uint32_t(donnees.size());
  for (int i = 3; i >= 0; --i) c.append(char((n >> (8 * i)) & 0xFF));
  c.append(type + donnees);
  const uint32_t crc =
      uint32_t(crc32(0, reinterpret_cast<const Bytef*>((type + donnees).constData()), uInt(n + 4)));
  for (int i = 3; i >= 0; --i) c.append(char((crc >> (8 * i)) & 0xFF));
  return c;
}

// The PNG with `chunks` put right after IHDR.
QByteArray ApresIHDR(const QByteArray& png, const QByteArray& chunks) {
  return png.left(8 + 25) + chunks + png.mid(8 + 25);
}

QByteArray DonneesIDAT(const QByteArray& png) {
  CPNG p;
  p.LireOctets(png);
  QByteArray r;
  for (const CChunk& c : p.Chunks)
    if (c.ChunkType == "IDAT") r += png.mid(c.lpData - 8, c.Length + 12);
  return r;
}

QString EcrireFichier(const QString& nom, const QByteArray& octets) {
  const QString chemin = QDir::currentPath() + "/" + nom;
  QFile f(chemin);
  f.open(QIODevice::WriteOnly);
  f.write(octets);
  return chemin;
}

bool Present(const char* programme) {
  return !QStandardPaths::findExecutable(QLatin1String(programme)).isEmpty();
}

TEST(PNG, EnTeteEtTextesDuFichierDeQt) {
  const QByteArray png = PngQt(17, 9, {{"Title", "Coupe 12"}, {"Auteur", "Lab"}});
  CPNG p;
  p.LireOctets(png);
  ASSERT_TRUE(p.Lu());
  ASSERT_TRUE(p.IHDR.has_value());
  EXPECT_EQ(p.IHDR->Width, 17u);
  EXPECT_EQ(p.IHDR->Height, 9u);
  EXPECT_EQ(p.IHDR->BitDepth, 8);
  EXPECT_EQ(p.Chunks.front().ChunkType, "IHDR");
  EXPECT_EQ(p.Chunks.back().ChunkType, "IEND");
  QStringList vus;
  for (const CtEXt& t : p.tEXt) vus << t.MotCle + "=" + t.Content;
  for (const CzTXt& t : p.zTXt) vus << t.MotCle + "=" + t.Content;
  for (const CiTXt& t : p.iTXt) vus << t.MotCle + "=" + t.Content;
  EXPECT_TRUE(vus.contains("Title=Coupe 12")) << vus.join('|').toStdString();
  EXPECT_TRUE(vus.contains("Auteur=Lab")) << vus.join('|').toStdString();
}

TEST(PNG, CrcDuFormat) {
  // The CRC of an empty IEND chunk, as every PNG file ends with it.
  EXPECT_EQ(CrcPNG("IEND"), 0xAE426082u);
  const QByteArray d("tEXtComment\0abc", 15);
  EXPECT_EQ(CrcPNG(d), uint32_t(crc32(0, reinterpret_cast<const Bytef*>(d.constData()), 15)));
}

class MotCle : public testing::TestWithParam<int> {};

TEST_P(MotCle, TexteDeLaTableOuVide) {
  const int k = GetParam();
  CtEXt t;
  t.Keyword = k;
  if (k < 0 || k > 9) {
    EXPECT_TRUE(t.KeywordString().isEmpty());
    EXPECT_EQ(NumeroMotCle(t.KeywordString()), -1);
  } else {
    EXPECT_FALSE(t.KeywordString().isEmpty());
    EXPECT_EQ(NumeroMotCle(t.KeywordString()), k);
  }
}
INSTANTIATE_TEST_SUITE_P(Table, MotCle, testing::Range(-2, 12));

TEST(PNG, UnMotCleHorsTableGardeSonTexteEtUnMotCleVideEstRefuse) {
  CPNG p;
  p.LireOctets(ApresIHDR(PngQt(4, 4), Chunk("tEXt", QByteArray("Lame\0n 3", 8))));
  ASSERT_EQ(p.tEXt.size(), 1u);
  EXPECT_EQ(p.tEXt[0].Keyword, -1);
  EXPECT_EQ(p.tEXt[0].MotCle, "Lame");
  QByteArray sortie;
  ASSERT_TRUE(p.Ecrire(sortie, nullptr));
  CPNG relu;
  relu.LireOctets(sortie);
  ASSERT_EQ(relu.tEXt.size(), 1u);
  EXPECT_EQ(relu.tEXt[0].MotCle, "Lame");
  EXPECT_EQ(relu.tEXt[0].Content, "n 3");

  CtEXt vide;
  vide.Keyword = 12;
  vide.Content = "x";
  p.tEXt.push_back(vide);
  QString erreur;
  EXPECT_FALSE(p.Ecrire(sortie, &erreur));
  EXPECT_FALSE(erreur.isEmpty());
}

TEST(PNG, LaReecritureGardeLImageEtNeDoublePasLesTextes) {
  const QByteArray png = PngQt(20, 10);
  CPNG p;
  p.LireOctets(png);
  EXPECT_FALSE(p.tIME.has_value());
  p.SetCommentaire("Application=Tessellographe\r\nTitre=Diatomée");
  CzTXt z;
  z.SetKeyword(2);
  z.Content = "Coupe transversale, coupe transversale, coupe transversale";
  p.zTXt.push_back(z);
  CiTXt i;
  i.SetKeyword(0);
  i.Language = "fr";
  i.Translation = "Titre";
  i.Content = "Épiderme";
  i.CompressionFlag = 1;
  p.iTXt.push_back(i);
  QByteArray une;
  ASSERT_TRUE(p.Ecrire(une, nullptr));

  CPNG relu;
  relu.LireOctets(une);
  EXPECT_FALSE(relu.tIME.has_value());
  for (const CChunk& c : relu.Chunks) EXPECT_NE(c.ChunkType, "tIME");
  EXPECT_EQ(relu.Commentaire(), "Application=Tessellographe\r\nTitre=Diatomée");
  ASSERT_EQ(relu.zTXt.size(), 1u);
  EXPECT_EQ(relu.zTXt[0].Keyword, 2);
  EXPECT_EQ(relu.zTXt[0].Content, z.Content);
  ASSERT_EQ(relu.iTXt.size(), 1u);
  EXPECT_EQ(relu.iTXt[0].Content, "Épiderme");
  EXPECT_EQ(relu.iTXt[0].Translation, "Titre");
  EXPECT_EQ(relu.iTXt[0].Language, "fr");
  EXPECT_EQ(DonneesIDAT(une), DonneesIDAT(png));
  EXPECT_TRUE(une.endsWith(png.right(12)));  // the same IEND chunk

  relu.SetCommentaire("second");
  QByteArray deux;
  ASSERT_TRUE(relu.Ecrire(deux, nullptr));
  CPNG encore;
  encore.LireOctets(deux);
  EXPECT_EQ(encore.tEXt.size(), 1u);
  EXPECT_EQ(encore.Commentaire(), "second");
  EXPECT_EQ(encore.zTXt.size(), 1u);
}

TEST(PNG, LeTempsEstRelu) {
  const QByteArray temps("\x07\xE8\x03\x1F\x17\x3B\x3A", 7);  // 2024-03-31 23:59:58
  const QByteArray source = ApresIHDR(PngQt(4, 4), Chunk("tIME", QByteArray(7, '\0')) + Chunk("tIME", temps));
  CPNG p;
  p.LireOctets(source);
  ASSERT_TRUE(p.tIME.has_value());
  EXPECT_EQ(p.tIME->Year, 2024);  // the last one wins
  EXPECT_EQ(p.tIME->Second, 58);
  QByteArray sortie;
  ASSERT_TRUE(p.Ecrire(sortie, nullptr));
  EXPECT_EQ(sortie, source);  // nothing asked, nothing changed
  // A changed time is written in the place of the one read; the other stays.
  p.tIME->Second = 10;
  ASSERT_TRUE(p.Ecrire(sortie, nullptr));
  QByteArray dix = temps;
  dix[6] = 10;
  EXPECT_EQ(sortie, ApresIHDR(PngQt(4, 4), Chunk("tIME", QByteArray(7, '\0')) + Chunk("tIME", dix)));
}

TEST(PNG, CrcFauxNonVerifieEtZtxtTropGonfleRecopieTelQuel) {
  // 3000 identical bytes deflate to far less than half: the one-try buffer is too small.
  QByteArray comprime(3000, '\0');
  uLongf n = uLongf(comprime.size());
  const QByteArray texte(3000, 'a');
  ASSERT_EQ(compress(reinterpret_cast<Bytef*>(comprime.data()), &n,
                     reinterpret_cast<const Bytef*>(texte.constData()), uLong(texte.size())),
            Z_OK);
  comprime.resize(qsizetype(n));
  QByteArray ztxt = Chunk("zTXt", QByteArray("Comment\0\0", 9) + comprime);
  ztxt[ztxt.size() - 1] = char(ztxt[ztxt.size() - 1] ^ 0x55);  // a wrong CRC
  CPNG p;
  p.LireOctets(ApresIHDR(PngQt(4, 4), ztxt));
  ASSERT_EQ(p.zTXt.size(), 1u);
  EXPECT_EQ(p.zTXt[0].Keyword, 9);
  EXPECT_TRUE(p.zTXt[0].Content.isEmpty());
  QByteArray sortie;
  ASSERT_TRUE(p.Ecrire(sortie, nullptr));
  // Copied as it stands, its CRC too: the rewrite is not a repair.
  EXPECT_TRUE(sortie.contains(ztxt));
}

TEST(PNG, FichiersCoupesOuEtrangers) {
  const QByteArray png = PngQt(8, 8);
  CPNG p;
  p.LireOctets(png.left(png.size() - 6));
  EXPECT_TRUE(p.Lu());
  EXPECT_NE(p.Chunks.back().ChunkType, "IEND");
  QByteArray sortie;
  QString erreur;
  EXPECT_FALSE(p.Ecrire(sortie, &erreur));
  EXPECT_FALSE(erreur.isEmpty());

  p.LireOctets("\x89PNX\r\n\x1A\n" + png.mid(8));
  EXPECT_FALSE(p.Lu());
  EXPECT_TRUE(p.Chunks.empty());
  // A length that runs past the end stops the walk.
  QByteArray faux = png.left(8) + QByteArray("\x7F\xFF\xFF\xFFtEXt", 8) + png.mid(8);
  p.LireOctets(faux);
  EXPECT_TRUE(p.Chunks.empty());
}

// The text chunks of a file as "type keyword" -> data after the keyword's NUL.
QList<std::pair<QByteArray, QByteArray>> TextesBruts(const QByteArray& png) {
  CPNG p;
  p.LireOctets(png);
  QList<std::pair<QByteArray, QByteArray>> r;
  for (const CChunk& c : p.Chunks) {
    if (c.ChunkType != "tEXt" && c.ChunkType != "zTXt" && c.ChunkType != "iTXt") continue;
    const QByteArray d = png.mid(c.lpData, c.Length);
    const qsizetype nul = d.indexOf('\0');
    r.append({c.ChunkType + " " + d.left(nul), d.mid(nul + 1)});
  }
  return r;
}

// pngcheck -t: exit status 0 and no complaint about the texts.
void PngcheckTexte(const QByteArray& png) {
  if (!Present("pngcheck")) return;
  const QString chemin = EcrireFichier("pngcheck.png", png);
  QProcess check;
  check.start("pngcheck", {"-t", chemin});
  ASSERT_TRUE(check.waitForFinished(60000));
  const QString sortie = QString::fromUtf8(check.readAllStandardOutput());
  EXPECT_EQ(check.exitCode(), 0) << sortie.toStdString();
  EXPECT_FALSE(sortie.contains("control character")) << sortie.toStdString();
  EXPECT_FALSE(sortie.contains("CR and LF")) << sortie.toStdString();
}

// The block's lines end in CR LF and its bytes are Windows-1252; in the file
// the comment is what PNG readers expect: LF, Latin-1 in tEXt, UTF-8 in an
// iTXt when a character lies outside Latin-1. Read back, it is the block again.
TEST(PNG, LeCommentaireEstCeQueLesLecteursPNGAttendent) {
  const QByteArray png = PngQt(6, 5);
  const QString latin = QString::fromUtf8("Application=Tessellographe 1.0\r\nTitre=Diatomée\r\n");
  const QString euro = QString::fromUtf8("Application=Tessellographe 1.0\r\nPrix=5 € – lame\r\n");
  CPNG p;
  p.LireOctets(png);
  p.SetCommentaire(latin);
  QByteArray un;
  ASSERT_TRUE(p.Ecrire(un, nullptr));
  using Texte = std::pair<QByteArray, QByteArray>;
  EXPECT_EQ(TextesBruts(un), QList<Texte>({{"tEXt Comment",
                                            "Application=Tessellographe 1.0\nTitre=Diatom\xE9"
                                            "e\n"}}));
  PngcheckTexte(un);
  CPNG relu;
  relu.LireOctets(un);
  EXPECT_EQ(relu.Commentaire(), latin);

  // The euro sign and the dash are not Latin-1: one iTXt, in the old chunk's place.
  relu.SetCommentaire(euro);
  QByteArray deux;
  ASSERT_TRUE(relu.Ecrire(deux, nullptr));
  EXPECT_EQ(TextesBruts(deux),
            QList<Texte>(
                {{"iTXt Comment",
                  QByteArray("\0\0\0\0", 4) +
                      "Application=Tessellographe 1.0\nPrix=5 \xE2\x82\xAC \xE2\x80\x93 lame\n"}}));
  EXPECT_EQ(deux.indexOf("iTXt"), un.indexOf("tEXt"));
  PngcheckTexte(deux);
  CPNG encore;
  encore.LireOctets(deux);
  EXPECT_EQ(encore.Commentaire(), euro);
  EXPECT_EQ(CommentairePNG(EcrireFichier("euro.png", deux)), euro);
  EXPECT_EQ(CommentairePNG(EcrireFichier("pas-png.jpg", "\xFF\xD8\xFF\xD9")), std::nullopt);
  if (Present("exiftool")) {
    QProcess outil;
    outil.start("exiftool", {"-j", "-PNG:Comment", EcrireFichier("euro.png", deux)});
    ASSERT_TRUE(outil.waitForFinished(60000));
    const QJsonObject vue =
        QJsonDocument::fromJson(outil.readAllStandardOutput()).array()[0].toObject();
    EXPECT_EQ(vue["Comment"].toString(), QString(euro).replace("\r\n", "\n"));
  }

  // Back to Latin-1: a tEXt again, still one comment.
  encore.SetCommentaire(latin);
  QByteArray trois;
  ASSERT_TRUE(encore.Ecrire(trois, nullptr));
  EXPECT_EQ(trois, un);
}

// ImageMagick writes the comment under a lowercase keyword: it is the
// comment, and a rewrite replaces it instead of adding a second one.
TEST(PNG, UnCommentaireEnMinusculesEstLeCommentaire) {
  const QByteArray ancien = Chunk("tEXt", QByteArray("comment\0Lame 4\ncoupe 2", 22));
  const QByteArray titre = Chunk("tEXt", QByteArray("Title\0Coupe", 11));
  const QByteArray source = ApresIHDR(PngQt(6, 5), titre + ancien);
  CPNG p;
  p.LireOctets(source);
  EXPECT_EQ(p.Commentaire(), "Lame 4\r\ncoupe 2");
  p.SetCommentaire("Titre=Navicula\r\n");
  QByteArray sortie;
  ASSERT_TRUE(p.Ecrire(sortie, nullptr));
  QByteArray attendu = source;
  attendu.replace(ancien, Chunk("tEXt", QByteArray("Comment\0Titre=Navicula\n", 23)));
  EXPECT_EQ(sortie, attendu);
  // Emptied, it goes and the title stays.
  p.SetCommentaire(QString());
  ASSERT_TRUE(p.Ecrire(sortie, nullptr));
  attendu = source;
  attendu.replace(ancien, QByteArray());
  EXPECT_EQ(sortie, attendu);
}

TEST(PNG, PngcheckEtExiftoolLisentLesTextesEcrits) {
  if (!Present("pngcheck") || !Present("exiftool"))
    GTEST_SKIP() << "pngcheck et exiftool manquent (paquets pngcheck, libimage-exiftool-perl)";
  const QString chemin = EcrireFichier("texte.png", PngQt(30, 20));
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  ASSERT_NE(image.PNG(), nullptr);
  image.PNG()->SetCommentaire("Lame 4, coupe 2");
  CzTXt z;
  z.SetKeyword(1);
  z.Content = "Laboratoire de botanique, laboratoire de botanique";
  image.PNG()->zTXt.push_back(z);
  CiTXt i;
  i.SetKeyword(0);
  i.Content = "Épiderme foliaire";
  i.CompressionFlag = 1;
  image.PNG()->iTXt.push_back(i);
  ASSERT_TRUE(image.WriteImage(chemin)) << image.Erreur().toStdString();

  QProcess check;
  check.start("pngcheck", {chemin});
  ASSERT_TRUE(check.waitForFinished(60000));
  EXPECT_EQ(check.exitCode(), 0) << check.readAllStandardOutput().toStdString();

  QProcess outil;
  outil.start("exiftool", {"-j", "-PNG:all", chemin});
  ASSERT_TRUE(outil.waitForFinished(60000));
  const QJsonObject vue =
      QJsonDocument::fromJson(outil.readAllStandardOutput()).array()[0].toObject();
  EXPECT_EQ(vue["Comment"].toString(), "Lame 4, coupe 2");
  EXPECT_EQ(vue["Author"].toString(), z.Content);
  EXPECT_EQ(vue["Title"].toString(), QString("Épiderme foliaire"));
  EXPECT_EQ(vue["ImageWidth"].toInt(), 30);
}

// ---------------------------------------------------------------- GIF

TEST(GIF, EnTeteAvecEtSansTableGlobale) {
  for (bool global : {true, false}) {
    CGIF g;
    g.LireOctets(Gif(global, ExtensionCommentaire("lame")));
    ASSERT_TRUE(g.Lu());
    EXPECT_EQ(g.Version, "89a");
    EXPECT_EQ(g.Width, 1);
    EXPECT_EQ(g.Height, 1);
    EXPECT_EQ(g.GlobalColorMapFollow, global);
    // Without the table, the comment right after the descriptor is found.
    EXPECT_EQ(g.Comment, "lame") << global;
  }
  CGIF autre;
  autre.LireOctets("GIX89a" + Gif(true).mid(6));
  EXPECT_FALSE(autre.Lu());
  EXPECT_TRUE(autre.Version.isEmpty());
}

TEST(GIF, CommentairesJointsEtAutresExtensionsGardees) {
  const QByteArray controle("\x21\xF9\x04\x00\x00\x00\x00\x00", 8);
  CGIF g;
  g.LireOctets(Gif(true, ExtensionCommentaire("un ") + controle + ExtensionCommentaire("deux")));
  EXPECT_EQ(g.Comment, "un deux");
  ASSERT_EQ(g.Extensions.size(), 1u);
  EXPECT_EQ(g.Extensions[0].Label, 0xF9);
  EXPECT_EQ(g.Extensions[0].lpData.size(), 4);
}

class LongueurGIF : public testing::TestWithParam<int> {};

TEST_P(LongueurGIF, SousBlocsDe254) {
  const int n = GetParam();
  QByteArray texte;
  for (int i = 0; i < n; ++i) texte.append(char('a' + i % 26));
  CGIF g;
  g.LireOctets(Gif(true, ExtensionCommentaire("ancien")));
  g.Comment = QString::fromLatin1(texte);
  QByteArray sortie;
  ASSERT_TRUE(g.Ecrire(sortie, nullptr));
  QByteArray attendu("\x21\xFE", 2);
  for (int i = 0; i < n; i += 254) {
    const QByteArray bloc = texte.mid(i, 254);
    attendu += char(bloc.size()) + bloc;
  }
  attendu += '\0';
  // In the place of the old comment; every other byte as it was.
  EXPECT_EQ(sortie, Gif(true, attendu));
  CGIF relu;
  relu.LireOctets(sortie);
  EXPECT_EQ(relu.Comment, g.Comment);
}
INSTANTIATE_TEST_SUITE_P(Bornes, LongueurGIF, testing::Values(1, 253, 254, 255, 508, 509));

TEST(GIF, SansOctetDeFinPasDeReecriture) {
  QByteArray g = Gif(true);
  g.chop(1);
  CGIF gif;
  gif.LireOctets(g);
  gif.Comment = "x";
  QByteArray sortie;
  QString erreur;
  EXPECT_FALSE(gif.Ecrire(sortie, &erreur));
  EXPECT_FALSE(erreur.isEmpty());
}

TEST(GIF, ExiftoolLitLeCommentaireEcrit) {
  if (!Present("exiftool")) GTEST_SKIP() << "exiftool manque (paquet libimage-exiftool-perl)";
  const QString chemin = EcrireFichier("c.gif", Gif(true));
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  ASSERT_NE(image.GIF(), nullptr);
  image.GIF()->Comment = QString(300, 'z');
  ASSERT_TRUE(image.WriteImage(chemin));
  QProcess outil;
  outil.start("exiftool", {"-j", "-Comment", "-ImageWidth", chemin});
  ASSERT_TRUE(outil.waitForFinished(60000));
  const QJsonObject vue =
      QJsonDocument::fromJson(outil.readAllStandardOutput()).array()[0].toObject();
  EXPECT_EQ(vue["Comment"].toString(), QString(300, 'z'));
  EXPECT_EQ(vue["ImageWidth"].toInt(), 1);
}

// ---------------------------------------------------------------- BMP

TEST(BMP, LesDeuxEnTetesDuFichierDeQt) {
  QImage image(13, 7, QImage::Format_RGB888);
  image.fill(Qt::red);
  image.setDotsPerMeterX(3780);
  QByteArray octets;
  QBuffer tampon(&octets);
  tampon.open(QIODevice::WriteOnly);
  ASSERT_TRUE(image.save(&tampon, "BMP"));
  CBMP b;
  b.LireOctets(octets);
  ASSERT_TRUE(b.Lu());
  EXPECT_EQ(b.bfType, 0x4D42);
  EXPECT_EQ(b.bfSize, uint32_t(octets.size()));
  EXPECT_EQ(b.biWidth, 13);
  EXPECT_EQ(b.biHeight, 7);
  EXPECT_EQ(b.biPlanes, 1);
  EXPECT_EQ(b.biXPelsPerMeter, 3780);
  EXPECT_GE(b.biSize, 40u);
  EXPECT_GE(b.bfOffBits, 14 + b.biSize);

  CBMP court;
  court.LireOctets(QByteArray("BM\x10\x00\x00\x00", 6));
  EXPECT_TRUE(court.Lu());
  EXPECT_EQ(court.bfSize, 16u);
  EXPECT_EQ(court.biWidth, 0);
  CBMP autre;
  autre.LireOctets(QByteArray("MB") + octets.mid(2));
  EXPECT_FALSE(autre.Lu());
  EXPECT_EQ(autre.biWidth, 0);
}

// ---------------------------------------------------------------- commands

QJsonObject Infos(const QString& chemin) {
  QString s, e;
  QTextStream ts(&s), te(&e);
  EXPECT_EQ(CommandeInfos({chemin, "--json"}, ts, te), 0);
  ts.flush();
  return QJsonDocument::fromJson(s.toUtf8()).object();
}

TEST(Commandes, CommentaireEtInfosDePNGEtDeGIF) {
  const QString texte = EcrireFichier("c.txt",
                                      "Titre=Diatom\xC3\xA9"
                                      "e\nLame=4\n");
  for (const QString& nom : {QStringLiteral("a.png"), QStringLiteral("a.gif")}) {
    const QString chemin = EcrireFichier(nom, nom.endsWith("png") ? PngQt(6, 5) : Gif(false));
    QString s, e;
    QTextStream ts(&s), te(&e);
    ASSERT_EQ(CommandeCommentaire({"ecrire", chemin, "--depuis", texte}, ts, te), 0)
        << nom.toStdString();
    ASSERT_EQ(CommandeCommentaire({"ecrire", chemin, "--depuis", texte}, ts, te), 0);
    ASSERT_EQ(CommandeCommentaire({"lire", chemin}, ts, te), 0);
    ts.flush();
    EXPECT_EQ(s, QString::fromUtf8("Titre=Diatomée\r\nLame=4\r\n"));
    const QJsonObject infos = Infos(chemin);
    if (nom.endsWith("png")) {
      EXPECT_EQ(infos["type"].toInt(), 3);
      const QJsonArray chunks = infos["png"].toArray();
      ASSERT_GE(chunks.size(), 4);
      EXPECT_EQ(chunks[0]["type"].toString(), "IHDR");
      EXPECT_EQ(chunks[0]["longueur"].toInt(), 13);
      int commentaires = 0;
      for (const QJsonValue& c : chunks)
        if (c["motcle"].toString() == "Comment") {
          ++commentaires;
          EXPECT_EQ(c["type"].toString(), "tEXt");
          // The chunk as the file holds it: LF, as PNG readers expect.
          EXPECT_EQ(c["texte"].toString(), QString::fromUtf8("Titre=Diatomée\nLame=4\n"));
        }
      EXPECT_EQ(commentaires, 1);  // written twice, held once
      EXPECT_EQ(chunks.last()["type"].toString(), "IEND");
    } else {
      EXPECT_EQ(infos["type"].toInt(), 4);
      EXPECT_EQ(infos["gif"]["version"].toString(), "89a");
      EXPECT_EQ(infos["gif"]["largeur"].toInt(), 1);
      EXPECT_EQ(infos["gif"]["commentaire"].toString(),
                QString::fromUtf8("Titre=Diatomée\r\nLame=4\r\n"));
    }
  }
  QImage image(3, 2, QImage::Format_RGB888);
  image.fill(Qt::blue);
  const QString bmp = QDir::currentPath() + "/a.bmp";
  ASSERT_TRUE(image.save(bmp, "BMP"));
  const QJsonObject infos = Infos(bmp);
  EXPECT_EQ(infos["bmp"]["biWidth"].toInt(), 3);
  EXPECT_EQ(infos["bmp"]["biHeight"].toInt(), 2);
  EXPECT_EQ(infos["bmp"]["bfType"].toInt(), 0x4D42);
  QString s, e;
  QTextStream ts(&s), te(&e);
  EXPECT_EQ(CommandeCommentaire({"ecrire", bmp, "--depuis", texte}, ts, te), 3);
}

// ---------------------------------------------------------------- byte for byte

// Every chunk but the edited comment comes out as it came in, in its order:
// unknown ancillary chunks, a profile, pHYs, eXIf, two IDATs, a damaged CRC,
// other texts, and what follows IEND.
TEST(Reecriture, PngLeCommentaireSeulChange) {
  const QByteArray png = PngQt(6, 5);
  const QByteArray autres = Chunk("iCCP", QByteArray("ICC\0\0", 5) + QByteArray(30, 'p')) +
                            Chunk("pHYs", QByteArray("\0\0\x0B\x13\0\0\x0B\x13\x01", 9)) +
                            Chunk("tEXt", QByteArray("Title\0Coupe", 11)) +
                            Chunk("tEXt", QByteArray("Comment\0ancien", 14)) +
                            Chunk("zTXt", QByteArray("Author\0\0x\x9c\x03\0\0\0\0\x01", 16)) +
                            Chunk("prIV", QByteArray("privé", 6)) + Chunk("eXIf", QByteArray("II*\0\x08\0\0\0\0\0", 10));
  QByteArray source = ApresIHDR(png, autres) + "donnees apres IEND";
  CPNG p;
  p.LireOctets(source);
  ASSERT_EQ(p.tEXt.size(), 2u);
  p.SetCommentaire("nouveau commentaire");
  QByteArray sortie;
  ASSERT_TRUE(p.Ecrire(sortie, nullptr));
  QByteArray attendu = source;
  attendu.replace(Chunk("tEXt", QByteArray("Comment\0ancien", 14)),
                  Chunk("tEXt", QByteArray("Comment\0nouveau commentaire", 27)));
  EXPECT_EQ(sortie, attendu);
  // Removed, it leaves nothing else changed.
  p.SetCommentaire(QString());
  ASSERT_TRUE(p.Ecrire(sortie, nullptr));
  attendu = source;
  attendu.replace(Chunk("tEXt", QByteArray("Comment\0ancien", 14)), QByteArray());
  EXPECT_EQ(sortie, attendu);
}

// An animated GIF with its loop and XMP application extensions keeps every
// block but the comment, and the bytes after its trailer.
TEST(Reecriture, GifLeCommentaireSeulChange) {
  const QByteArray boucle = QByteArray("\x21\xFF\x0BNETSCAPE2.0\x03\x01\x00\x00\x00", 19);
  const QByteArray xmp = QByteArray("\x21\xFF\x0BXMP DataXMP", 14) + QByteArray("\x05<x/>\x00", 7);
  const QByteArray controle("\x21\xF9\x04\x04\x0A\x00\x00\x00", 8);
  const QByteArray image = QByteArray("\x2C\x00\x00\x00\x00\x01\x00\x01\x00\x00", 10) +
                           QByteArray("\x02\x02\x44\x01\x00", 5);
  QByteArray source = Gif(true, boucle + xmp + ExtensionCommentaire("ancien") + controle);
  source.insert(source.size() - 1, controle + image);  // a second frame
  source += "fin du fichier";
  CGIF g;
  g.LireOctets(source);
  QByteArray sortie;
  ASSERT_TRUE(g.Ecrire(sortie, nullptr));
  EXPECT_EQ(sortie, source);
  g.Comment = "nouveau";
  ASSERT_TRUE(g.Ecrire(sortie, nullptr));
  QByteArray attendu = source;
  attendu.replace(ExtensionCommentaire("ancien"), ExtensionCommentaire("nouveau"));
  EXPECT_EQ(sortie, attendu);
}

}  // namespace
}  // namespace tg::meta
