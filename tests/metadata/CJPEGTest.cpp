// The dispatcher, the JPEG segment walk, JFIF, comments and the rewrite.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "metadata/CImage.h"
#include "metadata/CJPEG.h"
#include "tests/metadata/Fabrique.h"

namespace tg::meta {
namespace {

using namespace test;

QString Ecrire(const QString& nom, const QByteArray& octets) {
  const QString chemin = QDir::currentPath() + "/" + nom;
  QFile f(chemin);
  EXPECT_TRUE(f.open(QIODevice::WriteOnly));
  f.write(octets);
  return chemin;
}

QByteArray Lire(const QString& chemin) {
  QFile f(chemin);
  EXPECT_TRUE(f.open(QIODevice::ReadOnly));
  return f.readAll();
}

QByteArray Scan(const QByteArray& f) {
  const ParcoursJPEG p = ParcourirSegments(f);
  return p.positionScan ? f.mid(p.positionScan - 1) : QByteArray();
}

std::vector<uint16_t> Marqueurs(const QByteArray& f) {
  std::vector<uint16_t> r;
  for (const CMarker& m : ParcourirSegments(f).segments) r.push_back(m.Marker);
  return r;
}

struct CasType {
  const char* nom;
  QByteArray debut;
  int attendu;
};

class Type : public testing::TestWithParam<CasType> {};

TEST_P(Type, LesPremiersOctetsDecident) {
  const QString chemin = Ecrire("f.bin", GetParam().debut + QByteArray(20, 'x'));
  CImage image;
  EXPECT_EQ(image.GetImageType(chemin), GetParam().attendu);
}

INSTANTIATE_TEST_SUITE_P(Magiques, Type,
                         testing::Values(CasType{"BMP", "BM", 2}, CasType{"GIF", "GIF89a", 4},
                                         CasType{"PNG", QByteArray("\x89PNG\r\n\x1A\n", 8), 3},
                                         CasType{"JPEG", QByteArray("\xFF\xD8\xFF", 3), 0},
                                         CasType{"TIFFIntel", QByteArray("II*\0", 4), 1},
                                         CasType{"TIFFMotorola", QByteArray("MM\0*", 4), 1},
                                         CasType{"Inconnu", "hello", 0}),
                         [](const auto& i) { return std::string(i.param.nom); });

TEST(Type, UnFichierInconnuGardeLeTypePrecedent) {
  CImage image;
  EXPECT_EQ(image.GetImageType(Ecrire("t.tif", QByteArray("MM\0*\0\0\0\x08", 8))), 1);
  EXPECT_EQ(image.GetImageType(Ecrire("x.bin", "rien de connu")), 1);
  EXPECT_EQ(image.GetImageType(QDir::currentPath() + "/absent.jpg"), 1);
}

TEST(Parcours, SegmentsDansLOrdreAvecPositionsEtLongueurs) {
  const QByteArray jpeg = JpegQt();
  const QByteArray xmp = Segment(0xE1, QByteArray("http://ns.adobe.com/xap/1.0/\0<x/>", 34));
  const QByteArray com = Segment(0xFE, QByteArray("abc\0", 4));
  const QByteArray f = Inserer(jpeg, {xmp, com});
  const ParcoursJPEG p = ParcourirSegments(f);
  ASSERT_GE(p.segments.size(), 5u);
  EXPECT_EQ(p.segments[0].Marker, 0xE1FF);
  EXPECT_EQ(p.segments[0].lpData, 3);
  EXPECT_EQ(p.segments[0].Length, xmp.size());
  EXPECT_EQ(p.segments[1].Marker, 0xFEFF);
  EXPECT_EQ(p.segments[1].lpData, 3 + xmp.size());
  EXPECT_EQ(p.segments[2].Marker, 0xE0FF);  // Qt's JFIF
  // Every segment starts where the one before ends; SOS is the last.
  for (size_t i = 1; i < p.segments.size(); ++i)
    EXPECT_EQ(p.segments[i].lpData, p.segments[i - 1].lpData + p.segments[i - 1].Length);
  const CMarker& sos = p.segments.back();
  EXPECT_EQ(sos.Marker, 0xDAFF);
  EXPECT_EQ(p.positionScan, sos.lpData + sos.Length);
  EXPECT_EQ(p.longueurScan, f.size() - (p.positionScan - 1));
  EXPECT_TRUE(f.endsWith("\xFF\xD9"));
}

TEST(Parcours, UnFichierCoupeArreteLaMarcheSansScan) {
  const QByteArray jpeg = JpegQt();
  const ParcoursJPEG entier = ParcourirSegments(jpeg);
  ASSERT_FALSE(entier.segments.empty());
  const CMarker& sos = entier.segments.back();
  for (int64_t coupe : {sos.lpData - 1 + 3, sos.lpData - 1 + 6, int64_t(3)}) {
    const ParcoursJPEG p = ParcourirSegments(jpeg.left(coupe));
    EXPECT_EQ(p.positionScan, 0) << coupe;
    EXPECT_LT(p.segments.size(), entier.segments.size()) << coupe;
  }
  // Written back, a cut file is refused and left as it is.
  const QString chemin = Ecrire("coupe.jpg", jpeg.left(sos.lpData + 2));
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  EXPECT_FALSE(image.WriteImage(chemin));
  EXPECT_FALSE(image.Erreur().isEmpty());
  EXPECT_EQ(Lire(chemin), jpeg.left(sos.lpData + 2));
}

TEST(CImage, UnFichierQuiNEstPasUnJPEG) {
  const QString chemin = Ecrire("texte.jpg", "ceci n'est pas une image");
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  EXPECT_EQ(image.ImageType, 0);
  ASSERT_NE(image.JPEG(), nullptr);
  EXPECT_TRUE(image.JPEG()->Segments().empty());
  ASSERT_NE(image.JPEG()->EXIF(), nullptr);
  EXPECT_TRUE(image.JPEG()->EXIF()->ifd(0)->Vide());
  EXPECT_FALSE(image.WriteImage(chemin));
  EXPECT_EQ(Lire(chemin), QByteArray("ceci n'est pas une image"));
}

TEST(CImage, UnBMPSeLitMaisNEstPasReecrit) {
  const QByteArray bmp = QByteArray("BM") + QByteArray(60, '\x01');
  const QString chemin = Ecrire("i.bmp", bmp);
  CImage image;
  EXPECT_TRUE(image.ReadImage(chemin));
  EXPECT_EQ(image.ImageType, 2);
  ASSERT_NE(image.BMP(), nullptr);
  EXPECT_FALSE(image.WriteImage(chemin));
  EXPECT_FALSE(image.Erreur().isEmpty());
  EXPECT_EQ(Lire(chemin), bmp);
}

TEST(Commentaire, LeDernierGagneEtLaReecritureNEnLaissequUn) {
  const QByteArray f = Inserer(JpegQt(), {Segment(0xFE, QByteArray("premier\0", 8)),
                                          Segment(0xFE, QByteArray("second\0", 7))});
  CJPEG j;
  j.LireOctets(f);
  EXPECT_EQ(j.JPEGComment().Texte(), "second");
  QByteArray sortie;
  // Unchanged, nothing is rewritten.
  ASSERT_TRUE(j.Ecrire(sortie, nullptr));
  EXPECT_EQ(sortie, f);
  // Changed, one comment takes the place of the first.
  j.JPEGComment().Content = "troisième";
  ASSERT_TRUE(j.Ecrire(sortie, nullptr));
  const auto m = Marqueurs(sortie);
  EXPECT_EQ(std::count(m.begin(), m.end(), 0xFEFF), 1);
  EXPECT_EQ(m[0], 0xFEFF);
  CJPEG relu;
  relu.LireOctets(sortie);
  EXPECT_EQ(relu.JPEGComment().Texte(), "troisième");
  EXPECT_EQ(Scan(sortie), Scan(f));
}

TEST(Commentaire, UnTexteVideSupprimeLesCommentairesEtRienDAutre) {
  const QByteArray f = Inserer(JpegQt(), {Segment(0xFE, QByteArray("x\0", 2))});
  CJPEG j;
  j.LireOctets(f);
  j.JPEGComment().Content.clear();
  QByteArray sortie;
  ASSERT_TRUE(j.Ecrire(sortie, nullptr));
  auto avant = Marqueurs(f);
  avant.erase(std::remove(avant.begin(), avant.end(), 0xFEFF), avant.end());
  EXPECT_EQ(Marqueurs(sortie), avant);
  EXPECT_EQ(Scan(sortie), Scan(f));
}

struct CasLongueur {
  QString texte;
  QByteArray segment;
};

class LongueurCommentaire : public testing::TestWithParam<CasLongueur> {};

TEST_P(LongueurCommentaire, SegmentDeLongueurPaireTermineParNul) {
  CJPEGComment c;
  c.Content = GetParam().texte;
  EcrivainOctets e;
  ASSERT_TRUE(c.WriteComment(e));
  EXPECT_EQ(e.donnees(), GetParam().segment);
}

INSTANTIATE_TEST_SUITE_P(
    Parites, LongueurCommentaire,
    testing::Values(CasLongueur{"abcde", QByteArray("\xFF\xFE\x00\x08"
                                                    "abcde\0",
                                                    10)},
                    CasLongueur{"abcd", QByteArray("\xFF\xFE\x00\x08"
                                                   "abcd\0\0",
                                                   10)},
                    CasLongueur{QString::fromUtf8("é"), QByteArray("\xFF\xFE\x00\x04\xE9\0", 6)},
                    // The text ends at its first NUL, as every reader shows it.
                    CasLongueur{QString("ab") + QChar(0) + "zz", QByteArray("\xFF\xFE\x00\x06"
                                                                            "ab\0\0",
                                                                            8)},
                    CasLongueur{"", QByteArray()}));

TEST(Commentaire, LaLectureDepasseLeSegmentSansLesPairesFFDB) {
  const QByteArray jpeg = JpegQt();
  const qsizetype dqt = jpeg.indexOf("\xFF\xDB");
  ASSERT_GT(dqt, 0);
  const QByteArray f = jpeg.left(dqt) + Segment(0xFE, QByteArray("Titre=X\0", 8)) + jpeg.mid(dqt);
  CJPEG j;
  j.LireOctets(f);
  const QString& c = j.JPEGComment().Content;
  EXPECT_EQ(j.JPEGComment().Texte(), "Titre=X");
  ASSERT_GT(c.size(), 10);
  EXPECT_EQ(c[7], QChar(0));
  // The DQT marker that follows is left out; its length comes next.
  EXPECT_EQ(c[8].unicode(), uint8_t(f[dqt + 8 + 4 + 2]));
  EXPECT_EQ(c[9].unicode(), uint8_t(f[dqt + 8 + 4 + 3]));
  EXPECT_FALSE(c.contains(QString(QChar(0xFF)) + QChar(0xDB)));
  // 1000 bytes past the length field at most.
  EXPECT_LE(c.size(), 8 + 2 + 1000);
}

TEST(Commentaire, EnFinDeFichierLaLectureSArreteAuBout) {
  const QByteArray f = QByteArray("\xFF\xD8", 2) + Segment(0xFE, "fin");
  CJPEG j;
  j.LireOctets(f);
  EXPECT_EQ(j.JPEGComment().Content, "fin");
}

TEST(Commentaire, LongsCommentaires) {
  const QString chemin = Ecrire("long.jpg", JpegQt());
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  image.JPEG()->JPEGComment().Content = QString(40000, 'x');
  ASSERT_TRUE(image.WriteImage(chemin)) << image.Erreur().toStdString();
  CImage relue;
  ASSERT_TRUE(relue.ReadImage(chemin));
  EXPECT_EQ(relue.JPEG()->JPEGComment().Texte(), QString(40000, 'x'));
  const QByteArray avant = Lire(chemin);
  relue.JPEG()->JPEGComment().Content = QString(70000, 'x');
  EXPECT_FALSE(relue.WriteImage(chemin));
  EXPECT_TRUE(relue.Erreur().contains("trop long"));
  EXPECT_EQ(Lire(chemin), avant);
}

struct CasJfif {
  const char* nom;
  QByteArray donnees;
  bool present;
  QString version;
  int unite, x, y, xt, yt;
  QByteArray vignette;
};

class Jfif : public testing::TestWithParam<CasJfif> {};

TEST_P(Jfif, Champs) {
  const CasJfif& c = GetParam();
  const QByteArray f = QByteArray("\xFF\xD8", 2) + Segment(0xE0, c.donnees);
  CJFIF j;
  j.ReadJFIF(f, CMarker{0xE0FF, c.donnees.size() + 4, 3});
  EXPECT_EQ(j.Present, c.present);
  if (!c.present) return;
  EXPECT_EQ(j.Version, c.version);
  EXPECT_EQ(j.unit, c.unite);
  EXPECT_EQ(j.Xdensity, c.x);
  EXPECT_EQ(j.Ydensity, c.y);
  EXPECT_EQ(j.Xthumbnail, c.xt);
  EXPECT_EQ(j.Ythumbnail, c.yt);
  EXPECT_EQ(j.getThumbnail(), c.vignette);
}

INSTANTIATE_TEST_SUITE_P(
    Segments, Jfif,
    testing::Values(
        CasJfif{"Simple",
                QByteArray("JFIF\0\x01\x02\x02\x00\x64\x01\x2C\0\0", 14),
                true,
                "1.02",
                2,
                100,
                300,
                0,
                0,
                {}},
        CasJfif{"Vignette",
                QByteArray("JFIF\0\x01\x01\x01\x00\x48\x00\x48\x02\x01"
                           "ABCDEF",
                           20),
                true, "1.01", 1, 72, 72, 2, 1, "AB"},
        CasJfif{"VignetteCoupee",
                QByteArray("JFIF\0\x01\x01\x00\x00\x01\x00\x01\x04\x04"
                           "AB",
                           16),
                true, "1.01", 0, 1, 1, 4, 4, "AB"},
        CasJfif{"Jfxx", QByteArray("JFXX\0\x10\x01\x02\x03", 9), false, "", 0, 0, 0, 0, 0, {}},
        CasJfif{"Court", QByteArray("JFIF\0\x01", 6), false, "", 0, 0, 0, 0, 0, {}}),
    [](const auto& i) { return std::string(i.param.nom); });

// A rewrite keeps every segment it does not change, in order, and the scan
// data byte for byte.
TEST(Reecriture, RienNeSePerdEtLeScanResteIntact) {
  CExifJPEG exif;
  exif.AddModifyTag(Repertoire::IFD0, 0x010F, FmtAscii, QByteArray("Nikon\0", 6));
  exif.AddModifyTag(Repertoire::SubIFD, 0x9003, FmtAscii, QByteArray("2024:01:02 03:04:05\0", 20));
  QByteArray app1;
  ASSERT_TRUE(exif.WriteEXIF(app1));
  const QByteArray xmp = Segment(0xE1, QByteArray("http://ns.adobe.com/xap/1.0/\0<x/>", 34));
  const QByteArray iptc = Segment(0xED, QByteArray("Photoshop 3.0\0"
                                                   "8BIM",
                                                   18));
  const QByteArray source = Inserer(JpegQt(), {xmp, Segment(0xFE, "vieux"), app1, iptc});
  const QString chemin = Ecrire("r.jpg", source);

  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  EXPECT_EQ(image.JPEG()->EXIF()->GetManufacturer(), 1);
  image.JPEG()->JPEGComment().Content = "nouveau";
  ASSERT_TRUE(image.WriteImage(chemin)) << image.Erreur().toStdString();
  const QByteArray sortie = Lire(chemin);

  // Only the comment changed: it takes the place of the old one, and every
  // other byte stays.
  EXPECT_EQ(sortie, Inserer(JpegQt(), {xmp, Segment(0xFE, QByteArray("nouveau\0", 8)), app1, iptc}));
  CImage relue;
  ASSERT_TRUE(relue.ReadImage(chemin));
  EXPECT_EQ(relue.JPEG()->JPEGComment().Texte(), "nouveau");
  const CExifDirEnt* date = relue.JPEG()->EXIF()->SubIFD().Trouver(0x9003);
  ASSERT_NE(date, nullptr);
  EXPECT_EQ(date->GetDataFormatted(), "2024:01:02 03:04:05");
  // A second rewrite changes nothing.
  ASSERT_TRUE(relue.WriteImage(chemin));
  EXPECT_EQ(Lire(chemin), sortie);
}

// A new EXIF block goes after the leading JFIF segment, which stays first;
// everything else, a trailer after the end of image included, stays as it is.
TEST(Reecriture, UnNouveauBlocExifSuitLeJFIF) {
  const QByteArray source = JpegQt() + QByteArray("donnees apres la fin");
  CJPEG j;
  j.LireOctets(source);
  j.EXIF()->AddModifyTag(Repertoire::IFD0, 0x010F, FmtAscii, QByteArray("Nikon\0", 6));
  QByteArray sortie;
  ASSERT_TRUE(j.Ecrire(sortie, nullptr));
  const auto avant = ParcourirSegments(source).segments;
  const auto apres = ParcourirSegments(sortie).segments;
  ASSERT_EQ(apres.size(), avant.size() + 1);
  EXPECT_EQ(apres[0].Marker, 0xE0FF);
  EXPECT_EQ(apres[1].Marker, 0xE1FF);
  EXPECT_EQ(sortie.left(2 + avant[0].Length), source.left(2 + avant[0].Length));
  EXPECT_EQ(sortie.mid(apres[2].lpData - 1), source.mid(avant[1].lpData - 1));
  CJPEG relu;
  relu.LireOctets(sortie);
  EXPECT_EQ(relu.EXIF()->GetManufacturer(), 1);
}

}  // namespace
}  // namespace tg::meta
