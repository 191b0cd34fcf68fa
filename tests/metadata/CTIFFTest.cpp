// TIFF files: the chain of directories, and a rewrite whose strips are still found.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>

#include "metadata/CImage.h"
#include "metadata/CTIFF.h"
#include "metadata/Infos.h"
#include "tests/metadata/Fabrique.h"

namespace tg::meta {
namespace {

using namespace test;

const QByteArray kPixels("\x10\x20\x30\x40\x50\x60\x70\x80\x90\xA0\xB0\xC0", 12);

// A 2 x 2 RGB TIFF, one strip, laid out by hand: IFD0 at 8 (10 entries) ->
// 134 BitsPerSample 8,8,8 -> 140 "Nikon\0" -> 146 the 12 bytes of pixels.
QByteArray TiffManuel(bool mm, uint32_t suivant = 0) {
  QByteArray t = EnTete(mm);
  t += U16(mm, 10);
  t += Entree(mm, 0x0100, 3, 1, U16(mm, 2));
  t += Entree(mm, 0x0101, 3, 1, U16(mm, 2));
  t += Entree(mm, 0x0102, 3, 3, U32(mm, 134));
  t += Entree(mm, 0x0103, 3, 1, U16(mm, 1));
  t += Entree(mm, 0x0106, 3, 1, U16(mm, 2));
  t += Entree(mm, 0x010F, 2, 6, U32(mm, 140));
  t += Entree(mm, 0x0111, 4, 1, U32(mm, 146));
  t += Entree(mm, 0x0115, 3, 1, U16(mm, 3));
  t += Entree(mm, 0x0116, 3, 1, U16(mm, 2));
  t += Entree(mm, 0x0117, 4, 1, U32(mm, 12));
  t += U32(mm, suivant);
  t += U16(mm, 8) + U16(mm, 8) + U16(mm, 8);
  t += QByteArray("Nikon\0", 6);
  t += kPixels;
  EXPECT_EQ(t.size(), 158);
  return t;
}

QString Ecrire(const QByteArray& octets) {
  const QString chemin = QDir::currentPath() + "/t.tif";
  QFile f(chemin);
  EXPECT_TRUE(f.open(QIODevice::WriteOnly));
  f.write(octets);
  return chemin;
}

class TiffDansLesDeuxOrdres : public testing::TestWithParam<bool> {};

TEST_P(TiffDansLesDeuxOrdres, LaReecritureGardeLesBandesEtLesEntrees) {
  const bool mm = GetParam();
  const QString chemin = Ecrire(TiffManuel(mm));
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  ASSERT_EQ(image.ImageType, 1);
  CExifTIFF& exif = image.TIFF()->EXIF();
  ASSERT_EQ(exif.NombreIfd(), 1);
  EXPECT_EQ(exif.GetManufacturer(), 1);
  exif.AddModifyTag(Repertoire::IFD0, 0x013B, FmtAscii, QByteArray("Moi\0", 4));
  exif.AddModifyTag(Repertoire::SubIFD, 0x9003, FmtAscii, QByteArray("2024:05:06 07:08:09\0", 20));
  ASSERT_TRUE(image.WriteImage(chemin)) << image.Erreur().toStdString();

  QFile f(chemin);
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  const QByteArray sortie = f.readAll();
  EXPECT_EQ(sortie.left(4), TiffManuel(mm).left(4));
  CTIFF relu;
  relu.LireOctets(sortie);
  CIFD& i0 = *relu.EXIF().ifd(0);
  EXPECT_EQ(i0.Trouver(0x013B)->GetDataFormatted(), "Moi");
  EXPECT_EQ(i0.Trouver(0x010F)->GetDataFormatted(), "Nikon");
  EXPECT_EQ(i0.Trouver(0x0102)->GetDataFormatted(), "8 8 8");
  EXPECT_EQ(relu.EXIF().SubIFD().Trouver(0x9003)->GetDataFormatted(), "2024:05:06 07:08:09");
  // The strip is where StripOffsets says, StripByteCounts long.
  const int offset = int(i0.Trouver(0x0111)->GetDataVariant());
  const int longueur = int(i0.Trouver(0x0117)->GetDataVariant());
  EXPECT_EQ(sortie.mid(offset, longueur), kPixels);
  // Every directory starts on an even offset.
  EXPECT_EQ(i0.Offset % 2, 0);

  // exiftool, when present, finds the picture and the new tags without a warning.
  if (QStandardPaths::findExecutable("exiftool").isEmpty()) return;
  QProcess p;
  p.start("exiftool", {"-j", "-a", "-G1", "-n", chemin});
  ASSERT_TRUE(p.waitForFinished(60000));
  const QJsonObject vue = QJsonDocument::fromJson(p.readAllStandardOutput()).array()[0].toObject();
  EXPECT_FALSE(vue.contains("ExifTool:Warning"))
      << vue["ExifTool:Warning"].toString().toStdString();
  EXPECT_EQ(vue["IFD0:Artist"].toString(), "Moi");
  EXPECT_EQ(vue["IFD0:ImageWidth"].toInt(), 2);
  EXPECT_EQ(vue["ExifIFD:DateTimeOriginal"].toString(), "2024:05:06 07:08:09");
}

TEST_P(TiffDansLesDeuxOrdres, UnCycleDeRepertoiresArreteLaChaine) {
  const bool mm = GetParam();
  CExifTIFF x;
  ASSERT_TRUE(x.ReadExif(TiffManuel(mm, 8)));  // IFD0 links to itself
  EXPECT_EQ(x.NombreIfd(), 1);
  QByteArray sortie;
  EXPECT_TRUE(x.WriteEXIF(sortie));
}

INSTANTIATE_TEST_SUITE_P(Ordres, TiffDansLesDeuxOrdres, testing::Values(false, true),
                         [](const auto& i) { return std::string(i.param ? "Motorola" : "Intel"); });

TEST(CTIFF, UnEnTeteInvalideNEstPasReecrit) {
  const QByteArray faux(
      "II*\0\xFF\xFF\xFF\x7F"
      "reste",
      13);
  const QString chemin = Ecrire(faux);
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  EXPECT_EQ(image.TIFF()->EXIF().NombreIfd(), 0);
  EXPECT_FALSE(image.WriteImage(chemin));
  QFile f(chemin);
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  EXPECT_EQ(f.readAll(), faux);
}

// The baseline fields of TIFF 6.0 (section 8), as the dump names them; the
// two whose published spelling the tag lists changed keep the lists' one.
TEST(CTIFF, InfosNommeChaqueChampDeBase) {
  const std::pair<uint16_t, const char*> base[] = {{0x00FE, "NewSubfileType"},
                                                   {0x00FF, "SubfileType"},
                                                   {0x0100, "ImageWidth"},
                                                   {0x0101, "ImageLength"},
                                                   {0x0102, "BitsPerSample"},
                                                   {0x0103, "Compression"},
                                                   {0x0106, "PhotometricInterpretation"},
                                                   {0x0107, "Thresholding"},
                                                   {0x0108, "CellWidth"},
                                                   {0x0109, "CellLength"},
                                                   {0x010A, "FillOrder"},
                                                   {0x010E, "ImageDescription"},
                                                   {0x010F, "Make"},
                                                   {0x0110, "Model"},
                                                   {0x0111, "StripOffsets"},
                                                   {0x0112, "Orientation"},
                                                   {0x0115, "SamplesPerPixel"},
                                                   {0x0116, "RowsPerStrip"},
                                                   {0x0117, "StripByteCounts"},
                                                   {0x0118, "MinSampleValue"},
                                                   {0x0119, "MaxSampleValue"},
                                                   {0x011A, "XResolution"},
                                                   {0x011B, "YResolution"},
                                                   {0x011C, "PlanarConfiguration"},
                                                   {0x0120, "FreeOffsets"},
                                                   {0x0121, "FreeByteCounts"},
                                                   {0x0122, "GrayResponseUnit"},
                                                   {0x0123, "GrayResponseCurve"},
                                                   {0x0128, "ResolutionUnit"},
                                                   {0x0131, "Software"},
                                                   {0x0132, "ModifyDate"},
                                                   {0x013B, "Artist"},
                                                   {0x013C, "HostComputer"},
                                                   {0x0140, "ColorMap"},
                                                   {0x0152, "ExtraSamples"},
                                                   {0x8298, "Copyright"}};
  for (const auto& [tag, nom] : base) EXPECT_EQ(NomTag(tag), QLatin1String(nom)) << std::hex << tag;

  // The dump of a real strip layout names every entry.
  CImage image;
  ASSERT_TRUE(image.ReadImage(Ecrire(TiffManuel(false))));
  const QString texte = InfosTexte(image);
  EXPECT_TRUE(texte.contains("0x0116 RowsPerStrip")) << texte.toStdString();
  EXPECT_FALSE(texte.contains("(inconnu)")) << texte.toStdString();
}

}  // namespace
}  // namespace tg::meta
