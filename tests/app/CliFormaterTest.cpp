// The main road without a window: tessellographe-cli formater on the
// program's own demonstration photo (2272 x 1704, 400 pixels for 100 microns
// at objective 40, camera EXIF), with a stored table or a scale typed in.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStandardPaths>
#include <cmath>
#include <cstring>

#include "imaging/cAdvancedImagery.h"
#include "metadata/CImage.h"
#include "platform/Ini.h"
#include "platform/Systeme.h"
#include "tests/app/Outils.h"
#include "tests/support/Processus.h"

namespace tg {
namespace {

using test::Commentaire;

QString Texte(const QByteArray& b) { return QString::fromUtf8(b); }

class CliFormater : public testing::Test {
 protected:
  const QString photo = QDir::current().filePath("photo.jpg");
  const QString cible = QDir::current().filePath("sortie.jpg");

  void SetUp() override {
    test::Sortie r = test::Executer(test::Cli(), {"echantillon", photo});
    ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
    r = test::Executer(test::Cli(), {"tables", "ajouter", "--modele", "APN-Demo", "--largpix",
                                     "2272", "--micro", "Micro-A", "--config", "Fond clair",
                                     "--obj", "40", "--pix", "400", "--mic", "100", "--focale",
                                     "7.5"});
    ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  }

  test::Sortie Formater(QStringList options) {
    return test::Executer(test::Cli(), QStringList{"formater", photo, "-o", cible} + options);
  }
  QJsonObject Echelle(const QString& fichier) {
    const test::Sortie r = test::Executer(test::Cli(), {"echelle", fichier, "--json"});
    EXPECT_EQ(r.code, 0) << r.erreur.toStdString();
    return QJsonDocument::fromJson(r.sortie).object();
  }
  QSize Taille(const QString& fichier) {
    cAdvancedImagery ai;
    Bitmap b;
    EXPECT_TRUE(ai.IO_LoadImage(fichier, b));
    return {ai.Info_Width(b), ai.Info_Height(b)};
  }
};

TEST_F(CliFormater, TableAppliqueeDonneLEchelleAttendueEtUnFichierSain) {
  const test::Sortie r = Formater({"--table", "1", "--objectif", "40", "--titre", "Navicula sp.",
                                   "--longueur", "50", "--format", "2"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  EXPECT_TRUE(Texte(r.sortie).startsWith(cible + " : 800 x 660, ")) << r.sortie.toStdString();

  // 100 microns are 400 pixels of the 2272-wide photo, now 800 wide.
  const double attendu = 100.0 / 400.0 * 2272.0 / 800.0;
  const QJsonObject e = Echelle(cible);
  EXPECT_NEAR(e["MicronsParPixel"].toDouble(), attendu, attendu * 0.005);
  EXPECT_EQ(e["EchelleMic"].toDouble(), 50);

  const QString c = Commentaire(cible);
  EXPECT_TRUE(c.contains("\r\nTitreImage=Navicula sp.\r\n"));
  EXPECT_TRUE(c.contains("\r\nMicroscope=Micro-A\r\n"));
  const int oldExif = c.indexOf("[OldExif]");
  ASSERT_GE(oldExif, 0);
  EXPECT_GT(c.indexOf("Model = APN-Demo", oldExif), oldExif);
  EXPECT_GT(c.indexOf("FocalLength = 75/10", oldExif), oldExif);

  if (!QStandardPaths::findExecutable("exiftool").isEmpty()) {
    const test::Sortie x = test::Executer("exiftool", {"-a", "-s", "-Warning", "-Error", cible});
    EXPECT_EQ(x.code, 0);
    EXPECT_TRUE(x.sortie.trimmed().isEmpty()) << x.sortie.toStdString();
  }
  if (!QStandardPaths::findExecutable("djpeg").isEmpty()) {
    const test::Sortie d = test::Executer("djpeg", {"-outfile", "/dev/null", cible});
    EXPECT_EQ(d.code, 0);
    EXPECT_TRUE(d.erreur.isEmpty()) << d.erreur.toStdString();
  }
}

TEST_F(CliFormater, EchelleSaisieALaMainEtFormes) {
  ASSERT_TRUE(EcrireIni("FormatImage", "ApnLarg", "800", RepApplication() + "UserConfig.ini"));
  // Typed by hand, at 640: the bar of 100 microns is 100 / M pixels.
  test::Sortie r = Formater({"--pix", "400", "--mic", "100", "--objectif", "40", "--longueur",
                             "100", "--format", "0"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  const double m = 100.0 / 400.0 * 2272.0 / 640.0;
  const QJsonObject e = Echelle(cible);
  EXPECT_EQ(e["EchellePix"].toDouble(), std::round(100.0 / m * 1000) / 1000);
  EXPECT_EQ(Taille(cible), QSize(640, 540));

  // The format asked for is not written back to the configuration.
  EXPECT_EQ(LireIni("FormatImage", "ApnLarg", RepApplication() + "UserConfig.ini", "?"), "800");

  // On the picture: the 2-line cartouche takes no rows; no scale at all; the
  // text in the auto colour.
  r = Formater({"--cartouche", "sur", "--format", "0", "--date", "31/02/2008", "--couleur", "auto"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  EXPECT_EQ(Taille(cible), QSize(640, 480));
  const QString c = Commentaire(cible);
  EXPECT_TRUE(c.contains("\r\nDateObservation=31/02/2008\r\n"));
  EXPECT_FALSE(c.contains("EchellePix="));
}

TEST_F(CliFormater, ReglesQuiRefusentEtMauvaisUsage) {
  struct Cas {
    QStringList options;
    int code;
    QString message;
  };
  const Cas cas[] = {
      {{"--table", "1", "--objectif", "40", "--longueur", "400"},
       3,
       "Echelle trop longue (saisir une valeur plus petite)"},
      {{"--titre", QString(71, u'a')}, 3, "Titre : le texte est absent ou trop long (max 70 char.)"},
      {{"--qualite", "100", "--poids-max", "1"}, 3, "Le fichier image est trop lourd (>1 ko)"},
      {{"--table", "5", "--objectif", "40"}, 3, "Table n° 5 introuvable"},
      {{"--date", "01/01/1950"}, 3, "Date refusée"},
      {{"--format", "9"}, 2, "Usage"},
      {{"--pix", "400", "--objectif", "40"}, 2, "--pix et --mic vont ensemble"},
      {{"--unite", "km"}, 2, "--unite"},
      {{"--table", "1"}, 2, "--objectif manque"},
      {{"--inconnue", "1"}, 2, "Option inconnue"},
      {{"--cartouche", "sous", "--couleur", "auto"}, 2, "--couleur auto va avec --cartouche sur"},
      {{"--couleur", "rouge"}, 2, "--couleur : auto"},
  };
  for (const Cas& c : cas) {
    QFile::remove(cible);
    const test::Sortie r = Formater(c.options);
    EXPECT_EQ(r.code, c.code) << c.options.join(' ').toStdString();
    EXPECT_TRUE(Texte(r.erreur).contains(c.message))
        << c.options.join(' ').toStdString() << " : " << r.erreur.toStdString();
    EXPECT_FALSE(QFile::exists(cible)) << "nothing is written on a refusal";
  }
  const test::Sortie r = test::Executer(
      test::Cli(), {"formater", QDir::current().filePath("absent.jpg"), "-o", cible});
  EXPECT_EQ(r.code, 3);
}

// A large photo, of a size no multiple of 8, decoded reduced: the same
// comment block, to the last digit, as through the full decode (--exact),
// and pixels within a JPEG save of each other. A crop is cut in the whole
// picture, in the file's pixels.
TEST_F(CliFormater, DecodageReduitMemeEchelleQueLeDecodageComplet) {
  const QString grande = QDir::current().filePath("grande.jpg");
  ASSERT_EQ(test::Executer(test::Cli(), {"echantillon", grande, "--largeur", "4803", "--hauteur", "3601"}).code, 0);
  const QString reduite = QDir::current().filePath("reduite.jpg"), complete = QDir::current().filePath("complete.jpg");
  const QStringList echelle = {"--pix", "1000", "--mic", "100", "--objectif", "40", "--titre", "Grande"};
  ASSERT_EQ(test::Executer(test::Cli(), QStringList{"formater", grande, "-o", reduite} + echelle).code, 0);
  ASSERT_EQ(test::Executer(test::Cli(), QStringList{"formater", grande, "-o", complete, "--exact"} + echelle).code, 0);
  static const QRegularExpression date(QStringLiteral("DateImage=[^\r]*"));
  QString a = Commentaire(reduite), b = Commentaire(complete);
  EXPECT_TRUE(a.contains("\r\nLargeurOrigine=4803\r\n")) << a.toStdString();
  a.replace(date, QString());
  b.replace(date, QString());
  EXPECT_EQ(a.toStdString(), b.toStdString());
  const QImage ia(reduite), ib(complete);
  ASSERT_EQ(ia.size(), ib.size());
  double somme = 0;
  for (int y = 0; y < ia.height(); ++y)
    for (int x = 0; x < ia.width(); ++x) {
      const QRgb p = ia.pixel(x, y), q = ib.pixel(x, y);
      for (int d : {qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q)}) somme += double(d) * d;
    }
  const double psnr = 10 * std::log10(255.0 * 255.0 / (somme / (3.0 * ia.width() * ia.height()) + 1e-12));
  EXPECT_GT(psnr, 40) << psnr;

  const QString coupee = QDir::current().filePath("coupee.jpg");
  ASSERT_EQ(test::Executer(test::Cli(), QStringList{"formater", grande, "-o", coupee, "--recadrage", "3,5,2400,1800"} +
                                            echelle)
                .code,
            0);
  const QString c = Commentaire(coupee);
  EXPECT_TRUE(c.contains("\r\nLargeurOrigine=4803\r\n"));
  EXPECT_TRUE(c.contains("\r\nLargeurRecadrer=2400\r\n")) << c.toStdString();
}

TEST_F(CliFormater, QualiteAutoSousLePoidsMax) {
  const test::Sortie r = Formater({"--table", "1", "--objectif", "40", "--qualite", "auto", "--poids-max", "40"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  const QRegularExpressionMatch m =
      QRegularExpression("Qualité choisie : (\\d+) \\((\\d) essais\\)").match(Texte(r.sortie));
  ASSERT_TRUE(m.hasMatch()) << r.sortie.toStdString();
  EXPECT_LT(m.captured(1).toInt(), 100);
  EXPECT_LE(m.captured(2).toInt(), 8);
  EXPECT_LE(QFileInfo(cible).size(), 40 * 1024 + 512);
  EXPECT_TRUE(Commentaire(cible).contains("QualiteJpg=" + m.captured(1)));
}

}  // namespace
}  // namespace tg

namespace tg {
namespace {

// The tool behaves like a Unix tool: help on standard output with status 0,
// for the tool and for each command, light or full; nothing on standard error
// for a good run.
TEST(CliAide, AideSurLaSortieStandardEtRienSurLErreur) {
  test::Sortie r = test::Executer(test::Cli(), {"--help"});
  ASSERT_EQ(r.code, 0);
  EXPECT_TRUE(r.erreur.isEmpty()) << r.erreur.toStdString();
  const QString general = QString::fromUtf8(r.sortie);
  for (const char* commande : {"commentaire", "echantillon", "echelle", "formater", "infos", "tables"})
    EXPECT_TRUE(general.contains(QStringLiteral("\n  %1\n").arg(QLatin1String(commande)))) << commande;
  EXPECT_TRUE(general.contains("Statut de sortie :\n  0   fait\n  2   mauvais usage"));

  r = test::Executer(test::Cli(), {"formater", "--help"});
  ASSERT_EQ(r.code, 0);
  const QString formater = QString::fromUtf8(r.sortie);
  EXPECT_TRUE(formater.startsWith("Usage : tessellographe-cli formater PHOTO -o SORTIE.jpg"));
  // Every option the command takes is explained.
  for (const char* option : {"-o SORTIE.jpg", "--format 0-4", "--filtre 1-4", "--cartouche", "--titre", "--date",
                             "--table N", "--pix P", "--focale F", "--longueur", "--unite", "--qualite",
                             "--poids-max", "--recadrage", "--debrider", "--exact"})
    EXPECT_TRUE(formater.contains(QStringLiteral("\n  ") + QLatin1String(option))) << option;
  for (const QString& ligne : formater.split(u'\n')) EXPECT_LE(ligne.size(), 79) << ligne.toStdString();

  // A light command answers from the light tool, after a file name too.
  r = test::Executer(test::Cli(), {"infos", "photo.jpg", "--help"});
  ASSERT_EQ(r.code, 0);
  EXPECT_TRUE(r.sortie.startsWith("Usage : tessellographe-cli infos FICHIER"));

  const QString photo = QDir::current().filePath("aide.jpg"), sortie = QDir::current().filePath("aide-sortie.jpg");
  ASSERT_EQ(test::Executer(test::Cli(), {"echantillon", photo}).code, 0);
  r = test::Executer(test::Cli(), {"formater", photo, "-o", sortie, "--pix", "400", "--mic", "100", "--objectif", "40"},
                     {"XDG_RUNTIME_DIR="});
  ASSERT_EQ(r.code, 0);
  EXPECT_TRUE(r.erreur.isEmpty()) << r.erreur.toStdString();
  r = test::Executer(test::Cli(), {"echelle", sortie}, {"XDG_RUNTIME_DIR="});
  ASSERT_EQ(r.code, 0);
  EXPECT_TRUE(r.erreur.isEmpty()) << r.erreur.toStdString();
  EXPECT_TRUE(r.sortie.contains("MicronsParPixel=0"));

  // A bad usage still goes to standard error with status 2.
  r = test::Executer(test::Cli(), {"formater"});
  EXPECT_EQ(r.code, 2);
  EXPECT_TRUE(r.sortie.isEmpty());
  EXPECT_TRUE(r.erreur.startsWith("Usage : tessellographe-cli formater"));
}

}  // namespace
}  // namespace tg

namespace tg {
namespace {

// A series: every photo with the same table, into one folder, under the names
// the save dialog gives; an unreadable file is reported and the others are
// saved; a name already taken in the folder is not overwritten.
TEST_F(CliFormater, SerieDansUnDossier) {
  QStringList photos;
  for (int i = 1; i <= 12; ++i) {
    const QString copie = QDir::current().filePath(QStringLiteral("serie%1.jpg").arg(i, 2, 10, QChar(u'0')));
    ASSERT_TRUE(QFile::copy(photo, copie));
    photos << copie;
  }
  const QString abime = QDir::current().filePath("abime.jpg");
  QFile f(abime);
  ASSERT_TRUE(f.open(QIODevice::WriteOnly));
  f.write("pas une image");
  f.close();
  photos.insert(5, abime);
  const QString dossier = QDir::current().filePath("serie");
  const QStringList options = {"--table", "1", "--objectif", "40", "--titre", "Navicula sp."};
  test::Sortie r = test::Executer(test::Cli(), QStringList{"formater"} + photos + QStringList{"-d", dossier} + options);
  EXPECT_EQ(r.code, 3);
  const QString sortie = Texte(r.sortie), erreurs = Texte(r.erreur);
  EXPECT_TRUE(sortie.contains("13 photo(s) : 12 enregistrée(s), 1 refusée(s)")) << sortie.toStdString();
  EXPECT_EQ(sortie.count(QRegularExpression("^\\d+/13 serie\\d\\d\\.jpg : .*800 x 660", QRegularExpression::MultilineOption)), 12)
      << sortie.toStdString();
  EXPECT_TRUE(erreurs.contains(QRegularExpression("\\d+/13 abime\\.jpg : refusée : Le fichier « abime\\.jpg »")))
      << erreurs.toStdString();
  // The title names the files; its second and further uses are numbered, in
  // the photos' order: the refused sixth leaves its name unused.
  QStringList attendus{"navicula_sp.jpg"};
  for (int i = 2; i <= 13; ++i)
    if (i != 6) attendus << QStringLiteral("navicula_sp_%1.jpg").arg(i);
  QStringList faits = QDir(dossier).entryList(QDir::Files);
  attendus.sort();
  faits.sort();
  EXPECT_EQ(faits.join(u' ').toStdString(), attendus.join(u' ').toStdString());
  for (const QString& nom : faits) {
    const QJsonObject e = Echelle(QDir(dossier).filePath(nom));
    EXPECT_NEAR(e["MicronsParPixel"].toDouble(), 0.71, 0.0001) << nom.toStdString();
  }

  // Numbered names from NextNumberImage on, the numbers taken by the series;
  // a name already in the folder is refused, not overwritten.
  const QString config = RepApplication() + "UserConfig.ini";
  EcrireIni("General", "TitreImage", "0", config);
  EcrireIni("General", "NomFichImage", "forum_", config);
  EcrireIni("General", "NextNumberImage", "8", config);
  QFile pris(QDir(dossier).filePath("forum_009.jpg"));
  ASSERT_TRUE(pris.open(QIODevice::WriteOnly));
  pris.write("déjà là");
  pris.close();
  r = test::Executer(test::Cli(), {"formater", photos[0], photos[1], photos[2], "-d", dossier, "--taches", "1",
                                   "--pix", "400", "--mic", "100", "--objectif", "40"});
  EXPECT_EQ(r.code, 3);
  EXPECT_TRUE(Texte(r.sortie).startsWith("1/3 serie01.jpg : " + QDir(dossier).filePath("forum_008.jpg")))
      << r.sortie.toStdString();
  EXPECT_TRUE(Texte(r.erreur).contains("2/3 serie02.jpg : refusée : le fichier « " + QDir(dossier).filePath("forum_009.jpg") +
                                       " » existe déjà."))
      << r.erreur.toStdString();
  EXPECT_TRUE(QFileInfo(QDir(dossier).filePath("forum_010.jpg")).isFile());
  QFile relu(QDir(dossier).filePath("forum_009.jpg"));
  ASSERT_TRUE(relu.open(QIODevice::ReadOnly));
  EXPECT_EQ(relu.readAll(), QByteArray("déjà là"));
  EXPECT_EQ(LireIni("General", "NextNumberImage", config, ""), "11");

  // Bad usage: a series with -o, a number of tasks without a series.
  EXPECT_EQ(test::Executer(test::Cli(), {"formater", photo, "-d", dossier, "-o", cible}).code, 2);
  EXPECT_EQ(test::Executer(test::Cli(), {"formater", photo, "-o", cible, "--taches", "2"}).code, 2);
}

}  // namespace
}  // namespace tg

namespace tg {
namespace {

// exiftool's view of a file, -G1 -a -n, as a JSON object.
QJsonObject Exiftool(const QString& chemin) {
  const test::Sortie r = test::Executer("exiftool", {"-j", "-G1", "-a", "-n", "-XResolution", "-YResolution",
                                                    "-ResolutionUnit", "-ImageDescription", "-Warning", chemin});
  EXPECT_EQ(r.code, 0) << r.erreur.toStdString();
  return QJsonDocument::fromJson(r.sortie).array().at(0).toObject();
}

// IFD0's XResolution as its two terms, read back by the metadata library.
std::pair<uint32_t, uint32_t> Rationnel(const QString& chemin) {
  meta::CImage image;
  EXPECT_TRUE(image.ReadImage(chemin));
  meta::CExif* x = image.JPEG() ? static_cast<meta::CExif*>(image.JPEG()->EXIF())
                                : static_cast<meta::CExif*>(&image.TIFF()->EXIF());
  const meta::CExifDirEnt* e = x->ifd(0) ? x->ifd(0)->Trouver(0x011A) : nullptr;
  if (e == nullptr || e->GetData().size() != 8) return {0, 0};
  uint32_t n = 0, d = 0;
  std::memcpy(&n, e->GetData().constData(), 4);
  std::memcpy(&d, e->GetData().constData() + 4, 4);
  return {n, d};
}

// The scale where other programs read it: EXIF and JFIF for a JPEG (no JFIF
// density when it does not fit), the TIFF tags, the BMP header; the format
// by the output name's extension.
TEST_F(CliFormater, LEchelleEnPixelsParCentimetrePourLesAutresProgrammes) {
  const QString petite = QDir::current().filePath("petite.jpg");
  ASSERT_EQ(test::Executer(test::Cli(), {"echantillon", petite, "--largeur", "800", "--hauteur", "600"}).code, 0);
  const auto formater = [&](const QString& sortie, const char* pixels) {
    const test::Sortie r = test::Executer(test::Cli(), {"formater", petite, "-o", sortie, "--format", "2", "--pix",
                                                        pixels, "--mic", "100", "--objectif", "40"});
    EXPECT_EQ(r.code, 0) << r.erreur.toStdString();
  };
  // 400 pixels for 100 microns at 800 wide: 0.25 µm a pixel, 40000 pixels a cm.
  const QString jpeg = QDir::current().filePath("quart.jpg");
  formater(jpeg, "400");
  QJsonObject e = Exiftool(jpeg);
  EXPECT_EQ(e["IFD0:XResolution"].toDouble(), 40000);
  EXPECT_EQ(e["IFD0:YResolution"].toDouble(), 40000);
  EXPECT_EQ(e["IFD0:ResolutionUnit"].toInt(), 3);
  EXPECT_EQ(e["JFIF:ResolutionUnit"].toInt(), 2);
  EXPECT_EQ(e["JFIF:XResolution"].toDouble(), 40000);
  EXPECT_EQ(e["JFIF:YResolution"].toDouble(), 40000);
  EXPECT_FALSE(e.contains("ExifTool:Warning")) << e["ExifTool:Warning"].toString().toStdString();
  EXPECT_EQ(Rationnel(jpeg), std::make_pair(40000u, 1u));
  EXPECT_NEAR(Echelle(jpeg)["MicronsParPixel"].toDouble(), 0.25, 1e-9);

  const QString tiff = QDir::current().filePath("quart.tif");
  formater(tiff, "400");
  e = Exiftool(tiff);
  EXPECT_EQ(e["IFD0:XResolution"].toDouble(), 40000);
  EXPECT_EQ(e["IFD0:ResolutionUnit"].toInt(), 3);
  EXPECT_FALSE(e.contains("IFD0:ImageDescription"));
  EXPECT_EQ(Rationnel(tiff), std::make_pair(40000u, 1u));
  const QString bmp = QDir::current().filePath("quart.bmp");
  formater(bmp, "400");
  const QImage b(bmp);
  EXPECT_EQ(b.size(), QSize(800, 660));
  EXPECT_EQ(b.dotsPerMeterX(), 4000000);
  EXPECT_EQ(b.dotsPerMeterY(), 4000000);

  // 0.1 µm a pixel: 100000 a cm does not fit the JFIF field: the file then
  // has no JFIF segment, whose aspect ratio readers would take before EXIF.
  const QString fine = QDir::current().filePath("fine.jpg");
  formater(fine, "1000");
  e = Exiftool(fine);
  EXPECT_EQ(e["IFD0:XResolution"].toDouble(), 100000);
  EXPECT_EQ(e["IFD0:ResolutionUnit"].toInt(), 3);
  for (const QString& cle : e.keys()) EXPECT_FALSE(cle.startsWith("JFIF:")) << cle.toStdString();
  EXPECT_FALSE(e.contains("ExifTool:Warning")) << e["ExifTool:Warning"].toString().toStdString();
  EXPECT_EQ(QImage(fine).size(), QSize(800, 660));
  EXPECT_NEAR(Echelle(fine)["MicronsParPixel"].toDouble(), 0.1, 1e-9);

  // A scale that is no whole number of pixels a cm: the exact fraction of the
  // comment block's (70.423 pixels for 50 µm), the JFIF density rounded.
  const test::Sortie r = Formater({"--table", "1", "--objectif", "40", "--longueur", "50"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  EXPECT_EQ(Rationnel(cible), std::make_pair(70423u, 5u));
  EXPECT_EQ(Exiftool(cible)["JFIF:XResolution"].toDouble(), 14085);

  // Without a scale, nothing is claimed.
  ASSERT_EQ(Formater({}).code, 0);
  EXPECT_NE(Exiftool(cible)["IFD0:ResolutionUnit"].toInt(), 3);
}

}  // namespace
}  // namespace tg

namespace tg {
namespace {

// A scale that other programs wrote, read when the file carries no block of
// ours: an ImageJ-calibrated TIFF, a PNG pHYs, our own TIFF's resolution; a
// print resolution (72 dpi) is no scale.
TEST_F(CliFormater, EchelleDUnAutreProgrammeAvecSaSource) {
  const QString petite = QDir::current().filePath("petite.jpg");
  ASSERT_EQ(test::Executer(test::Cli(), {"echantillon", petite, "--largeur", "800", "--hauteur", "600"}).code, 0);
  const QString tiff = QDir::current().filePath("imagej.tif");
  ASSERT_EQ(test::Executer(test::Cli(), {"formater", petite, "-o", tiff, "--format", "2", "--pix", "400", "--mic",
                                         "100", "--objectif", "40"})
                .code,
            0);
  QJsonObject e = Echelle(tiff);
  EXPECT_EQ(e["source"].toString(), "TIFF");
  EXPECT_NEAR(e["MicronsParPixel"].toDouble(), 0.25, 1e-9);

  // As ImageJ saves a calibrated TIFF: 2 pixels a µm... in millimetres.
  {
    meta::CImage image;
    ASSERT_TRUE(image.ReadImage(tiff));
    meta::CExif& x = image.TIFF()->EXIF();
    x.AddModifyTag(meta::Repertoire::IFD0, 0x010E, meta::FmtAscii, QByteArray("ImageJ=1.53t\nunit=mm\n\0", 22));
    x.AddModifyTag(meta::Repertoire::IFD0, 0x011A, meta::FmtRational, QByteArray("\xD0\x07\0\0\x01\0\0\0", 8));
    x.AddModifyTag(meta::Repertoire::IFD0, 0x0128, meta::FmtShort, QByteArray("\x01\0", 2));
    ASSERT_TRUE(image.WriteImage(tiff)) << image.Erreur().toStdString();
  }
  e = Echelle(tiff);
  EXPECT_EQ(e["source"].toString(), "ImageJ");
  EXPECT_NEAR(e["MicronsParPixel"].toDouble(), 0.5, 1e-9);
  EXPECT_EQ(e["LargeurOrigine"].toInt(), 800);

  QImage png(640, 480, QImage::Format_RGB32);
  png.fill(Qt::gray);
  png.setDotsPerMeterX(4000000);
  png.setDotsPerMeterY(4000000);
  const QString calibre = QDir::current().filePath("calibre.png");
  ASSERT_TRUE(png.save(calibre));
  e = Echelle(calibre);
  EXPECT_EQ(e["source"].toString(), "PNG pHYs");
  EXPECT_NEAR(e["MicronsParPixel"].toDouble(), 0.25, 1e-9);
  const test::Sortie texte = test::Executer(test::Cli(), {"echelle", calibre});
  EXPECT_TRUE(Texte(texte.sortie).endsWith("MicronsParPixel=0.25\nSource=PNG pHYs\n") ||
              Texte(texte.sortie).endsWith("MicronsParPixel=0,25\nSource=PNG pHYs\n"))
      << texte.sortie.toStdString();

  png.setDotsPerMeterX(2835);
  png.setDotsPerMeterY(2835);
  const QString ecran = QDir::current().filePath("ecran.png");
  ASSERT_TRUE(png.save(ecran));
  const test::Sortie r = test::Executer(test::Cli(), {"echelle", ecran});
  EXPECT_EQ(r.code, 3);
  EXPECT_TRUE(Texte(r.erreur).contains("ni bloc de métadonnées Tessellographe ni échelle d'un autre programme"));

  // Our own block says where it comes from too.
  ASSERT_EQ(Formater({"--table", "1", "--objectif", "40"}).code, 0);
  EXPECT_EQ(Echelle(cible)["source"].toString(), "Tessellographe");
}

}  // namespace
}  // namespace tg
