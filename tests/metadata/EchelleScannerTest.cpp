// Scales that slide scanners and microscopy software write into a TIFF:
// Aperio's MPP, OME-XML's PhysicalSizeX with its unit, Philips' DICOM pixel
// spacing, Zeiss LSM's voxel width; read from the description alone and from
// whole files, the description winning over a print resolution.
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <cstring>

#include "metadata/EchelleExterne.h"
#include "tests/support/Octets.h"
#include "tests/support/TiffAppareil.h"

namespace tg::meta {
namespace {

const QString kAperio = QStringLiteral(
    "Aperio Image Library v10.0.51\r\n46920x33014 [0,100 46000x32914] (256x256) JPEG/RGB Q=30|AppMag = 20|"
    "StripeWidth = 2040|ScanScope ID = CPAPERIOCS|Filename = CMU-1|Date = 12/29/09|Time = 09:59:15|"
    "MPP = 0.4990|Left = 25.691574|Top = 23.449873");

TEST(EchelleScanner, DescriptionsDesScannersEtDesLogiciels) {
  auto lu = [](const QString& d) { return EchelleDescription(d); };
  ASSERT_TRUE(lu(kAperio));
  EXPECT_DOUBLE_EQ(lu(kAperio)->micronsParPixel, 0.499);
  EXPECT_EQ(lu(kAperio)->source, "Aperio");
  EXPECT_FALSE(lu("Aperio Image Library v10|AppMag = 20|MPP = 0"));
  EXPECT_FALSE(lu("Aperio Image Library v10|AppMag = 20"));
  EXPECT_FALSE(lu("Photo|MPP = 0.5"));  // not Aperio's

  const QString ome = QStringLiteral(
      "<?xml version=\"1.0\"?><OME xmlns=\"http://www.openmicroscopy.org/Schemas/OME/2016-06\"><Image ID=\"Image:0\">"
      "<Pixels DimensionOrder=\"XYCZT\" ID=\"Pixels:0\" PhysicalSizeX=\"%1\" %2PhysicalSizeY=\"0.5\" SizeX=\"64\"/>"
      "</Image></OME>");
  EXPECT_DOUBLE_EQ(lu(ome.arg("0.325", ""))->micronsParPixel, 0.325);  // µm when no unit is given
  EXPECT_EQ(lu(ome.arg("0.325", ""))->source, "OME");
  EXPECT_DOUBLE_EQ(lu(ome.arg("325", "PhysicalSizeXUnit=\"nm\" "))->micronsParPixel, 0.325);
  EXPECT_DOUBLE_EQ(lu(ome.arg("0.002", "PhysicalSizeXUnit=\"mm\" "))->micronsParPixel, 2);
  EXPECT_DOUBLE_EQ(lu(ome.arg("1.5", "PhysicalSizeXUnit=\"µm\" "))->micronsParPixel, 1.5);
  EXPECT_FALSE(lu(ome.arg("1.5", "PhysicalSizeXUnit=\"pixel\" ")));
  EXPECT_FALSE(lu(ome.arg("abc", "")));
  EXPECT_FALSE(lu(ome.arg("0", "")));
  // A namespace prefix on the elements.
  EXPECT_DOUBLE_EQ(lu("<ome:OME><ome:Image><ome:Pixels PhysicalSizeX=\"0.1\"/></ome:Image></ome:OME>")->micronsParPixel,
                   0.1);

  const QString philips = QStringLiteral(
      "<DataObject ObjectType=\"DPUfsImport\"><Attribute Name=\"DICOM_PIXEL_SPACING\" Group=\"0x0028\" "
      "Element=\"0x0030\" PMSVR=\"IDoubleArray\">&quot;0.000227&quot; &quot;0.000226&quot;</Attribute>");
  EXPECT_DOUBLE_EQ(lu(philips)->micronsParPixel, 0.226);  // between columns, in mm
  EXPECT_EQ(lu(philips)->source, "Philips");

  EXPECT_FALSE(lu("ImageJ=1.53t\nunit=micron\n"));  // ImageJ's needs its resolution: read elsewhere
  EXPECT_FALSE(lu(""));
}

TEST(EchelleScanner, BlocZeissLsm) {
  QByteArray bloc(512, '\0');
  const double metres = 0.207e-6;
  std::memcpy(bloc.data() + 40, &metres, 8);  // little-endian, as the machine
  EXPECT_NEAR(*MicronsParPixelLSM(bloc), 0.207, 1e-12);
  EXPECT_FALSE(MicronsParPixelLSM(bloc.left(44)));
  EXPECT_FALSE(MicronsParPixelLSM(QByteArray(512, '\0')));
}

// A 16 x 8 grey TIFF at 300 dots per inch, with a description and extra tags.
QByteArray Tiff(const QByteArray& description, std::vector<test::tiff::Val> autres = {}) {
  using namespace test::tiff;
  const QByteArray d = description + '\0';
  std::vector<Val> v = {{0x0100, 3, 1, U16(16)}, {0x0101, 3, 1, U16(8)},        {0x0102, 3, 1, U16(8)},
                        {0x0103, 3, 1, U16(1)},  {0x0106, 3, 1, U16(1)},         {0x010E, 2, uint32_t(d.size()), d},
                        {0x0111, 4, 1, U32(0)},  {0x0115, 3, 1, U16(1)},         {0x0116, 3, 1, U16(8)},
                        {0x0117, 4, 1, U32(128)}, {0x011A, 5, 1, U32(300) + U32(1)}, {0x0128, 3, 1, U16(2)}};
  v.insert(v.end(), autres.begin(), autres.end());
  QByteArray t = QByteArray("II*\0", 4) + U32(8) + Ifd(v, 8);
  const uint32_t donnees = uint32_t(t.size());
  t.replace(8 + 2 + 12 * 6 + 8, 4, U32(donnees));  // StripOffsets, the seventh entry
  return t + QByteArray(128, '\x80');
}

TEST(EchelleScanner, FichiersTiffDesScanners) {
  QTemporaryDir dossier;
  const QString chemin = dossier.filePath("lame.svs");
  test::EcrireOctets(chemin, Tiff(kAperio.toLatin1()));
  auto e = LireEchelleExterne(chemin);
  ASSERT_TRUE(e);
  EXPECT_DOUBLE_EQ(e->micronsParPixel, 0.499);
  EXPECT_EQ(e->source, "Aperio");

  test::EcrireOctets(chemin, Tiff("<OME><Image><Pixels PhysicalSizeX=\"650\" PhysicalSizeXUnit=\"nm\"/></Image></OME>"));
  e = LireEchelleExterne(chemin);
  ASSERT_TRUE(e);
  EXPECT_DOUBLE_EQ(e->micronsParPixel, 0.65);
  EXPECT_EQ(e->source, "OME");

  QByteArray lsm(512, '\0');
  const double metres = 0.5e-6;
  std::memcpy(lsm.data() + 40, &metres, 8);
  test::EcrireOctets(chemin, Tiff("confocal", {{34412, 1, 512, lsm}}));
  e = LireEchelleExterne(chemin);
  ASSERT_TRUE(e);
  EXPECT_DOUBLE_EQ(e->micronsParPixel, 0.5);
  EXPECT_EQ(e->source, "Zeiss LSM");

  // A print resolution alone is still no scale.
  test::EcrireOctets(chemin, Tiff("scan"));
  EXPECT_FALSE(LireEchelleExterne(chemin));
}

}  // namespace
}  // namespace tg::meta
