// Phone photos (HEIC, AVIF) and camera RAW files (DNG) made by the tests,
// read through the imaging contract: the size and the turn the picture is
// shown with, 8 bits per channel, the EXIF lines the session reads (model,
// focal length, date), the camera's JPEG frame, the half-size decode, and the
// refusal of a cut file before any decoder sees it.
#include <FreeImage.h>
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "imaging/LecteurRAW.h"
#include "imaging/VerificationFichier.h"
#include "imaging/cAdvancedImagery.h"
#include "tests/imaging/FabriqueHeifRaw.h"

namespace tg {
namespace {

using test::EcrireOctets;
using test::LireOctets;

// Red where the scene's red quarter is, from the displayed picture's top-left corner.
bool Rouge(cAdvancedImagery& ai, const Bitmap& image, int x, int y) {
  int c = 0;
  EXPECT_TRUE(ai.Color_GetPixel(image, x, y, c));
  int r = 0, v = 0, b = 0;
  cAdvancedImagery::Color_OLE(c, r, v, b);
  return r > 150 && v < 100 && b < 100;
}

bool Rouge(const QImage& image, int x, int y) {
  const QColor c = image.pixelColor(x, y);
  return c.red() > 150 && c.green() < 100 && c.blue() < 100;
}

// Where the red quarter is: 0 top-left, 1 top-right, 2 bottom-left, 3 bottom-right; -1 nowhere or several.
int QuartRouge(cAdvancedImagery& ai, const Bitmap& image) {
  const int l = ai.Info_Width(image), h = ai.Info_Height(image);
  int trouve = -1;
  for (int q = 0; q < 4; ++q) {
    if (!Rouge(ai, image, (q % 2) * l / 2 + l / 4, (q / 2) * h / 2 + h / 4)) continue;
    if (trouve >= 0) return -1;
    trouve = q;
  }
  return trouve;
}

int QuartRouge(const QImage& image) {
  int trouve = -1;
  for (int q = 0; q < 4; ++q) {
    if (!Rouge(image, (q % 2) * image.width() / 2 + image.width() / 4,
               (q / 2) * image.height() / 2 + image.height() / 4))
      continue;
    if (trouve >= 0) return -1;
    trouve = q;
  }
  return trouve;
}

QString Exif(cAdvancedImagery& ai, const Bitmap& image, int genre) {
  QString t;
  EXPECT_TRUE(ai.Metadata_Get_EXIF(image, t, genre));
  return t;
}

class Heif : public ::testing::Test {
 protected:
  QTemporaryDir dossier;
  cAdvancedImagery ai;
  QString Ecrire(const QString& nom, int l, int h, const test::OptionsHeif& o) {
    const QString chemin = dossier.filePath(nom);
    QString erreur;
    EXPECT_TRUE(test::EcrireHeif(chemin, l, h, o, erreur)) << erreur.toStdString();
    return chemin;
  }
};

TEST_F(Heif, UnHeicTourneDunQuartEstMontreDebout) {
  test::ExifPhoto e;
  e.zoomNum = 15;
  e.zoomDen = 10;
  test::OptionsHeif o;
  o.orientation = heif_orientation_rotate_90_cw;
  o.exif = test::BlocExif(e);
  o.vignette = true;
  const QString chemin = Ecrire("photo.heic", 128, 64, o);
  EXPECT_EQ(VerifierFichierImage(chemin).type, TypeFichierImage::HEIF);
  EXPECT_TRUE(VerifierFichierImage(chemin).Bon()) << VerifierFichierImage(chemin).message.toStdString();

  Bitmap image;
  ASSERT_TRUE(ai.IO_LoadImage(chemin, image)) << ai.Error_GetLast().toStdString();
  EXPECT_EQ(ai.Info_Width(image), 64);
  EXPECT_EQ(ai.Info_Height(image), 128);
  InfosImage infos;
  ASSERT_TRUE(ai.Info_ALL(image, infos));
  EXPECT_EQ(infos.bpp, 24);
  // Turned a quarter clockwise: the top-left quarter is now top-right.
  EXPECT_EQ(QuartRouge(ai, image), 1);
  // The lines the session's EXIF reader looks for.
  const QString principal = Exif(ai, image, 1), sous = Exif(ai, image, 2);
  EXPECT_TRUE(principal.contains("Model = PHONE-X1")) << principal.toStdString();
  EXPECT_TRUE(sous.contains("FocalLength = 426/100")) << sous.toStdString();
  EXPECT_TRUE(sous.contains("DigitalZoomRatio = 15/10")) << sous.toStdString();
  EXPECT_TRUE(sous.contains("DateTimeOriginal = 2024:05:06 07:08:09")) << sous.toStdString();

  // The header alone: the same size and metadata, no pixels.
  Bitmap entete;
  ASSERT_TRUE(ai.IO_LoadEntete(chemin, entete)) << ai.Error_GetLast().toStdString();
  EXPECT_FALSE(ai.Info_Pixels(entete));
  EXPECT_EQ(ai.Info_Width(entete), 64);
  EXPECT_EQ(ai.Info_Height(entete), 128);
  EXPECT_EQ(Exif(ai, entete, 2), sous);
  ASSERT_TRUE(ai.Info_File(chemin, infos));
  EXPECT_EQ(infos.largeur, 64);
  EXPECT_EQ(infos.hauteur, 128);

  // The finder's picture: the stored thumbnail, turned like the photo.
  QImage vignette;
  ASSERT_TRUE(ai.IO_LoadThumbnail(chemin, 40, vignette)) << ai.Error_GetLast().toStdString();
  EXPECT_LE(std::max(vignette.width(), vignette.height()), 40);
  EXPECT_GT(vignette.height(), vignette.width());
  EXPECT_EQ(QuartRouge(vignette), 1);
}

// libheif 1.15 mirrors no picture of more than 8 bits a channel: such a
// picture is turned and mirrored by the program, the same way libheif does
// it at 8 bits.
TEST_F(Heif, UnHeicDeDixBitsDonneHuitBitsParCouleurTourneEtMiroir) {
  struct Cas {
    heif_orientation orientation;
    QSize taille;
    int quart;
  };
  for (const Cas& c : {Cas{heif_orientation_flip_horizontally, {96, 64}, 1},
                       Cas{heif_orientation_flip_vertically, {96, 64}, 2},
                       Cas{heif_orientation_rotate_90_cw, {64, 96}, 1},
                       Cas{heif_orientation_rotate_90_cw_then_flip_horizontally, {64, 96}, 0}}) {
    for (int profondeur : {8, 10}) {
      test::OptionsHeif o;
      o.profondeur = profondeur;
      o.orientation = c.orientation;
      o.vignette = true;
      const QString chemin = Ecrire(QStringLiteral("p%1-%2.heic").arg(profondeur).arg(int(c.orientation)), 96, 64, o);
      Bitmap image;
      ASSERT_TRUE(ai.IO_LoadImage(chemin, image)) << ai.Error_GetLast().toStdString();
      InfosImage infos;
      ASSERT_TRUE(ai.Info_ALL(image, infos));
      EXPECT_EQ(infos.bpp, 24);
      EXPECT_EQ(QSize(ai.Info_Width(image), ai.Info_Height(image)), c.taille) << profondeur << " " << c.orientation;
      EXPECT_EQ(QuartRouge(ai, image), c.quart) << profondeur << " bits, orientation " << c.orientation;
      QImage vignette;
      ASSERT_TRUE(ai.IO_LoadThumbnail(chemin, 48, vignette));
      EXPECT_EQ(QuartRouge(vignette), c.quart) << profondeur << " bits, orientation " << c.orientation;
      EXPECT_EQ(Exif(ai, image, 1), QString());  // no EXIF block, no lines
    }
  }
}

TEST_F(Heif, UnAvifTourneEstLuCommeUnHeic) {
  test::OptionsHeif o;
  o.compression = heif_compression_AV1;
  o.orientation = heif_orientation_rotate_270_cw;
  o.exif = test::BlocExif({});
  const QString chemin = Ecrire("photo.avif", 96, 64, o);
  EXPECT_EQ(VerifierFichierImage(chemin).type, TypeFichierImage::HEIF);
  Bitmap image;
  ASSERT_TRUE(ai.IO_LoadImage(chemin, image)) << ai.Error_GetLast().toStdString();
  EXPECT_EQ(ai.Info_Width(image), 64);
  EXPECT_EQ(ai.Info_Height(image), 96);
  InfosImage infos;
  ASSERT_TRUE(ai.Info_ALL(image, infos));
  EXPECT_EQ(infos.bpp, 24);
  EXPECT_EQ(QuartRouge(ai, image), 2);  // a quarter turn counter-clockwise: bottom-left
  EXPECT_TRUE(Exif(ai, image, 1).contains("Model = PHONE-X1"));
  EXPECT_TRUE(Exif(ai, image, 2).contains("FocalLength = 426/100"));
  // Without a stored thumbnail the picture itself, reduced.
  QImage vignette;
  ASSERT_TRUE(ai.IO_LoadThumbnail(chemin, 48, vignette));
  EXPECT_EQ(vignette.size(), QSize(32, 48));
  EXPECT_EQ(QuartRouge(vignette), 2);
}

TEST_F(Heif, UnHeicCoupeEstRefuseAvantToutDecodage) {
  test::OptionsHeif o;
  o.exif = test::BlocExif({});
  const QByteArray entier = LireOctets(Ecrire("entier.heic", 128, 96, o));
  ASSERT_GT(entier.size(), 400);
  const QString chemin = dossier.filePath("coupe.heic");
  int refus = 0;
  for (qsizetype n = 1; n < entier.size(); n += std::max<qsizetype>(1, entier.size() / 60)) {
    EcrireOctets(chemin, entier.left(n));
    Bitmap image;
    if (ai.IO_LoadImage(chemin, image)) {
      ADD_FAILURE() << "coupé à " << n << " octets sur " << entier.size() << " : lu";
      continue;
    }
    const QString e = ai.Error_GetLast();
    EXPECT_TRUE(e.contains(QStringLiteral("coupe.heic"))) << n << " : " << e.toStdString();
    ++refus;
  }
  EXPECT_GT(refus, 50);
  // Cut inside its picture data: the damaged-file message of the check, not libheif's.
  EcrireOctets(chemin, entier.left(entier.size() - 10));
  const VerificationImage v = VerifierFichierImage(chemin);
  EXPECT_TRUE(v.refuse);
  EXPECT_TRUE(v.message.contains(QStringLiteral("est incomplet"))) << v.message.toStdString();
}

// A grid's canvas is allocated whole by libheif, whatever the size its
// pictures give: a grid larger than the program's limits is refused first.
TEST(HeifGrille, UnCanevasTropGrandEstRefuse) {
  auto u32 = [](uint32_t v) {
    return QByteArray(1, char(v >> 24)) + char((v >> 16) & 0xFF) + char((v >> 8) & 0xFF) + char(v & 0xFF);
  };
  auto u16 = [](uint32_t v) { return QByteArray(1, char(v >> 8)) + char(v & 0xFF); };
  auto boite = [&](const char* type, const QByteArray& contenu) { return u32(8 + contenu.size()) + type + contenu; };
  auto heic = [&](uint32_t l, uint32_t h) {
    const QByteArray grille = QByteArray("\0\1\0\0", 4) + u32(l) + u32(h);  // 32-bit sizes, one tile
    const QByteArray iinf = boite("iinf", u32(0) + u16(1) + boite("infe", u32(0x02000000) + u16(1) + u16(0) + "grid" +
                                                                          QByteArray(1, '\0')));
    // iloc version 1: 4-byte offsets and lengths, item 1 in idat at 0.
    const QByteArray iloc = boite("iloc", u32(0x01000000) + QByteArray("\x44\0", 2) + u16(1) + u16(1) + u16(1) +
                                              u16(0) + u16(1) + u32(0) + u32(uint32_t(grille.size())));
    const QByteArray ispe = boite("ispe", u32(0) + u32(64) + u32(48));
    const QByteArray meta = boite("meta", u32(0) + boite("hdlr", u32(0) + u32(0) + "pict" + QByteArray(13, '\0')) +
                                              boite("pitm", u32(0) + u16(1)) + iinf + iloc +
                                              boite("iprp", boite("ipco", ispe)) + boite("idat", grille));
    return boite("ftyp", QByteArray("heic") + u32(0) + "mif1heic") + meta + boite("mdat", QByteArray(64, '\0'));
  };
  const QByteArray petit = heic(640, 480), grand = heic(20000, 20000);
  VerificationImage v = VerifierOctetsImage(petit.constData(), petit.size(), "g.heic", "heic");
  EXPECT_EQ(v.type, TypeFichierImage::HEIF);
  EXPECT_FALSE(v.refuse) << v.message.toStdString();
  EXPECT_EQ(v.largeur, 640);
  v = VerifierOctetsImage(grand.constData(), grand.size(), "g.heic", "heic");
  EXPECT_TRUE(v.refuse);
  EXPECT_TRUE(v.message.contains(QStringLiteral("trop grande (20000 x 20000 pixels)"))) << v.message.toStdString();
}

// ---- RAW

class Raw : public ::testing::Test {
 protected:
  QTemporaryDir dossier;
  cAdvancedImagery ai;
  QString Ecrire(const QString& nom, int l, int h, const test::OptionsDng& o) {
    const QString chemin = dossier.filePath(nom);
    EcrireOctets(chemin, test::Dng(l, h, o));
    return chemin;
  }
};

TEST_F(Raw, UnDngTourneEstDemosaiqueDebout) {
  test::OptionsDng o;
  o.orientation = 6;  // the camera held a quarter turn clockwise
  const QString chemin = Ecrire("photo.dng", 100, 68, o);
  EXPECT_EQ(VerifierFichierImage(chemin).type, TypeFichierImage::RAW);
  Bitmap image;
  ASSERT_TRUE(ai.IO_LoadImage(chemin, image)) << ai.Error_GetLast().toStdString();
  EXPECT_EQ(ai.Info_Width(image), 68);
  EXPECT_EQ(ai.Info_Height(image), 100);
  InfosImage infos;
  ASSERT_TRUE(ai.Info_ALL(image, infos));
  EXPECT_EQ(infos.bpp, 24);
  EXPECT_EQ(QuartRouge(ai, image), 1);
  EXPECT_TRUE(Exif(ai, image, 1).contains("Model = CAMERA-R1")) << Exif(ai, image, 1).toStdString();
  EXPECT_TRUE(Exif(ai, image, 2).contains("FocalLength = 5000/100")) << Exif(ai, image, 2).toStdString();
  EXPECT_TRUE(Exif(ai, image, 2).contains("DateTimeOriginal = 2024:05:06 07:08:09"));

  // Its size without decoding, the same; and the finder's picture turned the same way.
  ASSERT_TRUE(ai.Info_File(chemin, infos)) << ai.Error_GetLast().toStdString();
  EXPECT_EQ(infos.largeur, 68);
  EXPECT_EQ(infos.hauteur, 100);
  QImage vignette;
  ASSERT_TRUE(ai.IO_LoadThumbnail(chemin, 50, vignette)) << ai.Error_GetLast().toStdString();
  EXPECT_LE(vignette.height(), 50);
  EXPECT_GT(vignette.height(), vignette.width());
  EXPECT_EQ(QuartRouge(vignette), 1);
}

TEST_F(Raw, LeCadreDuJpegDeLappareil) {
  // The DNG's default crop.
  test::OptionsDng o;
  o.cropX = 4;
  o.cropY = 2;
  o.cropLargeur = 90;
  o.cropHauteur = 60;
  Bitmap image;
  ASSERT_TRUE(ai.IO_LoadImage(Ecrire("crop.dng", 100, 68, o), image)) << ai.Error_GetLast().toStdString();
  EXPECT_EQ(ai.Info_Width(image), 90);
  EXPECT_EQ(ai.Info_Height(image), 60);
  // The EXIF size of the camera's JPEG, centred.
  test::OptionsDng e;
  e.exif.largeurJpeg = 96;
  e.exif.hauteurJpeg = 64;
  ASSERT_TRUE(ai.IO_LoadImage(Ecrire("exif.dng", 100, 68, e), image)) << ai.Error_GetLast().toStdString();
  EXPECT_EQ(ai.Info_Width(image), 96);
  EXPECT_EQ(ai.Info_Height(image), 64);
  EXPECT_EQ(QuartRouge(ai, image), 0);
  // A size far smaller is another picture's: the whole frame.
  e.exif.largeurJpeg = 50;
  e.exif.hauteurJpeg = 34;
  ASSERT_TRUE(ai.IO_LoadImage(Ecrire("petit.dng", 100, 68, e), image));
  EXPECT_EQ(ai.Info_Width(image), 100);
  EXPECT_EQ(ai.Info_Height(image), 68);
}

TEST(CadreJpegAppareil, CentreLaTailleExifDansLaSortie) {
  const CadreRAW aucun;
  // A Canon: LibRaw gives 3522 x 2348, the camera's JPEG is 3504 x 2336.
  EXPECT_EQ(CadreJpegAppareil(3522, 2348, 3504, 2336, aucun), (CadreRAW{9, 6, 3504, 2336}));
  // The EXIF size given turned.
  EXPECT_EQ(CadreJpegAppareil(3522, 2348, 2336, 3504, aucun), (CadreRAW{9, 6, 3504, 2336}));
  // No size, a larger one, one under 90 % of a side: the whole frame.
  EXPECT_EQ(CadreJpegAppareil(3522, 2348, 0, 0, aucun), (CadreRAW{0, 0, 3522, 2348}));
  EXPECT_EQ(CadreJpegAppareil(3522, 2348, 3600, 2400, aucun), (CadreRAW{0, 0, 3522, 2348}));
  EXPECT_EQ(CadreJpegAppareil(3522, 2348, 1728, 1152, aucun), (CadreRAW{0, 0, 3522, 2348}));
  // A DNG crop that lies inside wins; one that does not is left.
  EXPECT_EQ(CadreJpegAppareil(6024, 4024, 6000, 4000, CadreRAW{8, 8, 6000, 4000}), (CadreRAW{8, 8, 6000, 4000}));
  EXPECT_EQ(CadreJpegAppareil(6024, 4024, 6000, 4000, CadreRAW{30, 30, 6000, 4000}), (CadreRAW{12, 12, 6000, 4000}));
}

TEST_F(Raw, ADemiTailleQuandLaSortieEstPetite) {
  test::OptionsDng o;
  o.exif.largeurJpeg = 96;
  o.exif.hauteurJpeg = 64;
  const QString chemin = Ecrire("photo.dng", 100, 68, o);
  Bitmap image;
  int l = 0, h = 0;
  ASSERT_TRUE(ai.IO_LoadImageReduite(chemin, 40, 30, image, l, h)) << ai.Error_GetLast().toStdString();
  EXPECT_EQ(l, 96);
  EXPECT_EQ(h, 64);
  EXPECT_EQ(ai.Info_Width(image), 48);
  EXPECT_EQ(ai.Info_Height(image), 32);
  EXPECT_EQ(QuartRouge(ai, image), 0);
  // Half of it would be too small: whole.
  ASSERT_TRUE(ai.IO_LoadImageReduite(chemin, 60, 30, image, l, h));
  EXPECT_EQ(ai.Info_Width(image), 96);
  EXPECT_EQ(l, 96);
}

TEST_F(Raw, UnDngCoupeEstRefuseAvantToutDecodage) {
  const QByteArray entier = test::Dng(100, 68, {});
  const QString chemin = dossier.filePath("coupe.dng");
  for (qsizetype n : {qsizetype(6), qsizetype(100), qsizetype(3000), entier.size() / 2, entier.size() - 1}) {
    EcrireOctets(chemin, entier.left(n));
    Bitmap image;
    EXPECT_FALSE(ai.IO_LoadImage(chemin, image)) << n;
    EXPECT_TRUE(ai.Error_GetLast().contains(QStringLiteral("coupe.dng"))) << ai.Error_GetLast().toStdString();
  }
  EcrireOctets(chemin, entier.left(entier.size() / 2));
  const VerificationImage v = VerifierFichierImage(chemin);
  EXPECT_TRUE(v.refuse);
  EXPECT_TRUE(v.message.contains(QStringLiteral("est incomplet"))) << v.message.toStdString();
}

// A CR3's EXIF lies in two TIFF structures inside ISO boxes: CMT1 holds
// IFD0, CMT2 the EXIF directory's tags in its own IFD0.
TEST(ExifCr3, LesBoitesCmt1EtCmt2) {
  using namespace test::tiff;
  auto u32 = [](uint32_t v) {
    return QByteArray(1, char(v >> 24)) + char((v >> 16) & 0xFF) + char((v >> 8) & 0xFF) + char(v & 0xFF);
  };
  auto boite = [&](const char* type, const QByteArray& contenu) { return u32(8 + contenu.size()) + type + contenu; };
  const QByteArray modele("Canon EOS M50\0", 14), date("2018:02:21 12:08:56\0", 20);
  const QByteArray cmt1 = QByteArray("II*\0", 4) + U32(8) +
                          Ifd({{0x010F, 2, 6, QByteArray("Canon\0", 6)}, {0x0110, 2, 14, modele}}, 8);
  const QByteArray cmt2 = QByteArray("II*\0", 4) + U32(8) +
                          Ifd({{0x9003, 2, 20, date},
                               {0x920A, 5, 1, U32(15) + U32(1)},
                               {0xA002, 4, 1, U32(6000)},
                               {0xA003, 4, 1, U32(4000)}},
                              8);
  const QByteArray uuid = boite("uuid", QByteArray::fromHex("85c0b687820f11e08111f4ce462b6a48") + boite("CMT1", cmt1) +
                                            boite("CMT2", cmt2));
  const QByteArray cr3 = boite("ftyp", QByteArray("crx ") + u32(1) + "crx isom") + boite("moov", uuid) +
                         boite("mdat", QByteArray(32, '\0'));
  QTemporaryDir dossier;
  const QString chemin = dossier.filePath("photo.cr3");
  test::EcrireOctets(chemin, cr3);
  CadreRAW dng;
  Bitmap meta(ExifRAW(chemin, dng));
  ASSERT_FALSE(meta.Vide());
  cAdvancedImagery ai;
  EXPECT_TRUE(Exif(ai, meta, 1).contains("Model = Canon EOS M50")) << Exif(ai, meta, 1).toStdString();
  const QString sous = Exif(ai, meta, 2);
  EXPECT_TRUE(sous.contains("FocalLength = 15/1")) << sous.toStdString();
  EXPECT_TRUE(sous.contains("DateTimeOriginal = 2018:02:21 12:08:56")) << sous.toStdString();
  EXPECT_TRUE(sous.contains("PixelXDimension = 6000")) << sous.toStdString();
  EXPECT_EQ(dng, CadreRAW{});
  // Cut inside its boxes: whatever is whole, never a read beyond the file.
  for (qsizetype n = 0; n < cr3.size(); n += 7) {
    test::EcrireOctets(chemin, cr3.left(n));
    Bitmap coupe(ExifRAW(chemin, dng));
    EXPECT_FALSE(coupe.Vide());
  }
}

TEST(TypesPhotos, ParLeurContenuOuLeurNom) {
  auto type = [](const QByteArray& debut, const char* extension = "bin") {
    QByteArray octets = debut;
    octets.resize(4096, '\0');
    return VerifierOctetsImage(octets.constData(), octets.size(), "f", QLatin1String(extension)).type;
  };
  using T = TypeFichierImage;
  const QByteArray tiff = QByteArray("II*\0\x08\0\0\0", 8);
  EXPECT_EQ(type(tiff), T::TIFF);
  EXPECT_EQ(type(tiff, "nef"), T::RAW);
  EXPECT_EQ(type(tiff + QByteArray("CR\x02\0", 4)), T::RAW);  // a CR2, whatever its name
  EXPECT_EQ(type("IIRO\x08\0\0\0"), T::RAW);                   // Olympus
  EXPECT_EQ(type(QByteArray("IIU\0\x08\0\0\0", 8)), T::RAW);  // Panasonic
  EXPECT_EQ(type("FUJIFILMCCD-RAW 0201"), T::RAW);
  EXPECT_EQ(type(QByteArray("\0\0\0\x18" "ftypcrx \0\0\0\1crx isom", 24)), T::RAW);
  EXPECT_EQ(type(QByteArray("\0\0\0\x18" "ftypheic\0\0\0\0mif1heic", 24)), T::HEIF);
  EXPECT_EQ(type(QByteArray("\0\0\0\x1C" "ftypavif\0\0\0\0avifmif1miaf", 28)), T::HEIF);
  // A brand among the compatible ones only.
  EXPECT_EQ(type(QByteArray("\0\0\0\x14" "ftypXXXX\0\0\0\0mif1", 20)), T::HEIF);
  EXPECT_EQ(type(QByteArray("\0\0\0\x14" "ftypisom\0\0\0\0mp41", 20)), T::Inconnu);
}

}  // namespace
}  // namespace tg
