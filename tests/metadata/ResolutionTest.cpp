// The resolution written where other programs read a scale: the fraction,
// the JFIF density rule, and a rewrite that touches nothing else.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <cmath>

#include "metadata/CImage.h"
#include "metadata/EchelleExterne.h"
#include "metadata/Resolution.h"
#include "tests/metadata/Fabrique.h"
#include "tests/support/Octets.h"

namespace tg::meta {
namespace {

TEST(Resolution, FractionExacteSinonLaPlusProcheSur32Bits) {
  const struct {
    double valeur;
    uint32_t n, d;
  } cas[] = {{40000, 40000, 1}, {13333.5, 26667, 2}, {14084.6, 70423, 5}, {100000, 100000, 1}, {0.5, 1, 2}};
  for (const auto& c : cas) {
    const Fraction f = FractionProche(c.valeur);
    EXPECT_EQ(f.numerateur, c.n) << c.valeur;
    EXPECT_EQ(f.denominateur, c.d) << c.valeur;
  }
  // No exact fraction: the nearest whose terms fit, very close.
  const Fraction pi = FractionProche(M_PI * 1000);
  EXPECT_NEAR(double(pi.numerateur) / pi.denominateur, M_PI * 1000, 1e-8);  // far below any scale
  const Fraction grand = FractionProche(4294967295.0);
  EXPECT_EQ(grand.numerateur, 4294967295u);
  EXPECT_EQ(grand.denominateur, 1u);
  EXPECT_EQ(FractionProche(0).numerateur, 0u);
  EXPECT_EQ(FractionProche(5e9).numerateur, 0u);
}

TEST(Resolution, DensiteJfifSeulementSiElleTientEtGardeLEchelle) {
  EXPECT_EQ(DensiteJfif(40000), 40000);
  EXPECT_EQ(DensiteJfif(14084.6), 14085);
  EXPECT_EQ(DensiteJfif(65535.4), 65535);
  EXPECT_EQ(DensiteJfif(65535.6), 0);   // rounds past 16 bits
  EXPECT_EQ(DensiteJfif(100000), 0);
  EXPECT_EQ(DensiteJfif(1500.4), 1500);  // 0.027 %
  EXPECT_EQ(DensiteJfif(150.4), 0);      // 0.27 %: the scale would change
  EXPECT_EQ(DensiteJfif(0.4), 0);
}

// Only the JFIF unit and densities change in place, and IFD0 gets its three
// tags; the scan and every other byte stay.
TEST(Resolution, JpegReecritSansRienToucherDAutre) {
  const QString chemin = QDir::current().filePath("resolution.jpg");
  const QByteArray avant = test::JpegQt(64, 48);
  tg::test::EcrireOctets(chemin, avant);
  QString erreur;
  ASSERT_TRUE(EcrireResolution(chemin, 14084.6, &erreur)) << erreur.toStdString();
  const QByteArray apres = tg::test::LireOctets(chemin);
  // APP0 first, its 18 bytes the same but for unit and densities.
  ASSERT_EQ(uint8_t(apres[3]), 0xE0);
  const int longueurApp0 = 2 + (uint8_t(avant[4]) << 8 | uint8_t(avant[5]));
  for (int i = 0; i < longueurApp0; ++i)
    if (i < 13 || i > 17) EXPECT_EQ(apres[i], avant[i]) << i;
  EXPECT_EQ(uint8_t(apres[13]), 2);
  EXPECT_EQ((uint8_t(apres[14]) << 8) | uint8_t(apres[15]), 14085);
  EXPECT_EQ((uint8_t(apres[16]) << 8) | uint8_t(apres[17]), 14085);
  // Then the new EXIF block, then the rest as it was.
  const int app0 = 2 + longueurApp0;
  EXPECT_EQ(uint8_t(apres[app0 + 1]), 0xE1);
  const int exif = 2 + (uint8_t(apres[app0 + 2]) << 8 | uint8_t(apres[app0 + 3]));
  EXPECT_EQ(apres.mid(app0 + exif), avant.mid(app0));

  CImage relu;
  ASSERT_TRUE(relu.ReadImage(chemin));
  const CIFD* ifd0 = relu.JPEG()->EXIF()->ifd(0);
  ASSERT_NE(ifd0, nullptr);
  const CExifDirEnt* unite = ifd0->Trouver(0x0128);
  ASSERT_NE(unite, nullptr);
  EXPECT_EQ(uint8_t(unite->GetData()[0]), 3);
  EXPECT_NE(ifd0->Trouver(0x011B), nullptr);
  EXPECT_EQ(relu.JPEG()->JFIF().unit, 2);

  // Written again with the same value: the same file.
  ASSERT_TRUE(EcrireResolution(chemin, 14084.6, &erreur));
  EXPECT_EQ(tg::test::LireOctets(chemin), apres);
}

// A density too fine for JFIF's 16 bits: the APP0 segment goes, the EXIF
// block comes first, every other byte stays; written again, the same file.
TEST(Resolution, DensiteTropFineSansSegmentJfif) {
  const QString chemin = QDir::current().filePath("fine.jpg");
  const QByteArray avant = test::JpegQt(64, 48);
  ASSERT_EQ(uint8_t(avant[3]), 0xE0);
  const int app0 = 2 + 2 + (uint8_t(avant[4]) << 8 | uint8_t(avant[5]));
  tg::test::EcrireOctets(chemin, avant);
  QString erreur;
  ASSERT_TRUE(EcrireResolution(chemin, 100000, &erreur)) << erreur.toStdString();
  const QByteArray apres = tg::test::LireOctets(chemin);
  ASSERT_EQ(uint8_t(apres[3]), 0xE1);
  const int exif = 2 + (uint8_t(apres[4]) << 8 | uint8_t(apres[5]));
  EXPECT_EQ(apres.mid(2 + exif), avant.mid(app0));
  CImage relu;
  ASSERT_TRUE(relu.ReadImage(chemin));
  EXPECT_FALSE(relu.JPEG()->JFIF().Present);
  const CExifDirEnt* x = relu.JPEG()->EXIF()->ifd(0)->Trouver(0x011A);
  ASSERT_NE(x, nullptr);
  EXPECT_DOUBLE_EQ(x->GetDataVariant(), 100000);
  ASSERT_TRUE(EcrireResolution(chemin, 100000, &erreur));
  EXPECT_EQ(tg::test::LireOctets(chemin), apres);
}

TEST(Resolution, AutreFichierRefuseIntact) {
  const QString chemin = QDir::current().filePath("resolution.png");
  ASSERT_TRUE(QImage(8, 8, QImage::Format_RGB32).save(chemin));
  QFile f(chemin);
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  const QByteArray avant = f.readAll();
  f.close();
  QString erreur;
  EXPECT_FALSE(EcrireResolution(chemin, 40000, &erreur));
  EXPECT_TRUE(erreur.contains("ni un JPEG ni un TIFF")) << erreur.toStdString();
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  EXPECT_EQ(f.readAll(), avant);
}

TEST(EchelleExterne, DescriptionImageJ) {
  EXPECT_DOUBLE_EQ(*MicronsParPixelImageJ("ImageJ=1.53t\nunit=micron\n", 4), 0.25);
  EXPECT_DOUBLE_EQ(*MicronsParPixelImageJ("ImageJ=1.53t\nunit=\\u00B5m\nspacing=1\n", 2), 0.5);
  EXPECT_DOUBLE_EQ(*MicronsParPixelImageJ("ImageJ=1.53t\nunit=mm\n", 2000), 0.5);
  EXPECT_DOUBLE_EQ(*MicronsParPixelImageJ("ImageJ=1.53t\nunit=nm\n", 0.01), 0.1);  // 100 nm
  EXPECT_FALSE(MicronsParPixelImageJ("ImageJ=1.53t\nunit=inch\n", 4));
  EXPECT_FALSE(MicronsParPixelImageJ("ImageJ=1.53t\n", 4));  // no unit: pixels
  EXPECT_FALSE(MicronsParPixelImageJ("Photo\nunit=micron\n", 4));
  EXPECT_FALSE(MicronsParPixelImageJ("ImageJ=1.53t\nunit=micron\n", 0));
}

// A JPEG's EXIF resolution in centimetres is a scale; in inches (every
// camera's 72 or 300 dpi) it is not.
TEST(EchelleExterne, ExifEnCentimetresSeulement) {
  const QString chemin = QDir::current().filePath("exif.jpg");
  QFile f(chemin);
  ASSERT_TRUE(f.open(QIODevice::WriteOnly));
  f.write(test::JpegQt(64, 48));
  f.close();
  EXPECT_FALSE(LireEchelleExterne(chemin));
  ASSERT_TRUE(EcrireResolution(chemin, 25000));
  const auto e = LireEchelleExterne(chemin);
  ASSERT_TRUE(e);
  EXPECT_DOUBLE_EQ(e->micronsParPixel, 0.4);
  EXPECT_EQ(e->source, "EXIF");
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  image.JPEG()->EXIF()->AddModifyTag(Repertoire::IFD0, 0x0128, FmtShort, QByteArray("\x02\0", 2));
  ASSERT_TRUE(image.WriteImage(chemin));
  EXPECT_FALSE(LireEchelleExterne(chemin));
}

}  // namespace
}  // namespace tg::meta
