// TIFF files read through libtiff: pixels, resolution and the tags the
// program reads, on a file laid out as cameras write them.
#include <FreeImage.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "imaging/LecteurTIFF.h"
#include "imaging/cAdvancedImagery.h"
#include "tests/support/TiffAppareil.h"

namespace tg {
namespace {

QString Ecrire(const QByteArray& octets) {
  const QString chemin = QDir::currentPath() + "/appareil.tif";
  QFile f(chemin);
  EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
  f.write(octets);
  return chemin;
}

TEST(LecteurTIFF, FichierDAppareilLuEntier) {
  const QString chemin = Ecrire(test::TiffAppareil(48, 32));
  cAdvancedImagery ai;
  Bitmap image;
  ASSERT_TRUE(ai.IO_LoadImage(chemin, image)) << ai.Error_GetLast().toStdString();
  FIBITMAP* dib = image.Get();
  EXPECT_EQ(FreeImage_GetWidth(dib), 48u);
  EXPECT_EQ(FreeImage_GetHeight(dib), 32u);
  EXPECT_EQ(FreeImage_GetBPP(dib), 24u);
  // Row 5 from the top, column 10: (50, 35, 100).
  RGBQUAD c;
  ASSERT_TRUE(FreeImage_GetPixelColor(dib, 10, 32 - 1 - 5, &c));
  EXPECT_EQ(int(c.rgbRed), 50);
  EXPECT_EQ(int(c.rgbGreen), 35);
  EXPECT_EQ(int(c.rgbBlue), 100);
  EXPECT_NEAR(FreeImage_GetDotsPerMeterX(dib), 300 / 0.0254, 1);
  QString principal, exif;
  ASSERT_TRUE(ai.Metadata_Get_EXIF(image, principal, 1));
  ASSERT_TRUE(ai.Metadata_Get_EXIF(image, exif, 2));
  EXPECT_TRUE(principal.contains("Model = NIKON D70")) << principal.toStdString();
  EXPECT_TRUE(principal.contains("Make = NIKON CORPORATION"));
  EXPECT_TRUE(principal.contains("DateTime = 2024:01:02 03:04:05"));
  EXPECT_FALSE(principal.contains("StripOffsets"));
  EXPECT_TRUE(exif.contains("FocalLength = 75/10")) << exif.toStdString();
  EXPECT_TRUE(exif.contains("DateTimeOriginal = 2024:01:02 03:04:05"));
}

TEST(LecteurTIFF, ImageCoupeeRefuseeEnFrancais) {
  const QByteArray entier = test::TiffAppareil(48, 32);
  const QString chemin = Ecrire(entier.left(entier.size() - 500));
  QString erreur;
  EXPECT_EQ(LireTIFF(chemin, erreur), nullptr);
  EXPECT_TRUE(erreur.contains("TIFF")) << erreur.toStdString();
  EXPECT_TRUE(erreur.startsWith("L'image") || erreur.startsWith("Le fichier")) << erreur.toStdString();
}

}  // namespace
}  // namespace tg
