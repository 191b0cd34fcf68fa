// The imaging contract over FreeImage and Qt. FreeImage itself is the
// reference where the contract only chooses how to call it.
#include <FreeImage.h>
#include <gtest/gtest.h>

#include <tuple>

#include <QDir>

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <cmath>
#include <cstring>
#include <vector>

#include "tests/support/LimiteFichier.h"
#include "tests/support/Octets.h"
#include "imaging/cAdvancedImagery.h"

namespace tg {
namespace {

int BGR(QRgb c) { return qRed(c) | (qGreen(c) << 8) | (qBlue(c) << 16); }

// Every pixel a different colour, so that a flip, a mirror or a channel swap shows.
QImage Grille(int l, int h) {
  QImage image(l, h, QImage::Format_RGB32);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < l; ++x) image.setPixel(x, y, qRgb(10 + 40 * x, 20 + 60 * y, 5 + 25 * (x + 2 * y)));
  return image;
}

// Pixel (x, y) from the top, read straight from FreeImage.
QRgb PixelFI(FIBITMAP* dib, int x, int y) {
  RGBQUAD c{};
  FreeImage_GetPixelColor(dib, x, FreeImage_GetHeight(dib) - 1 - y, &c);
  return qRgb(c.rgbRed, c.rgbGreen, c.rgbBlue);
}


class Imagerie : public testing::Test {
 protected:
  Bitmap Depuis(const QImage& image) {
    Bitmap b;
    EXPECT_TRUE(ai.Convert_PictureToImage(image, b)) << ai.Error_GetLast().toStdString();
    return b;
  }
  int Pixel(const Bitmap& b, int x, int y) {
    int c = -1;
    EXPECT_TRUE(ai.Color_GetPixel(b, x, y, c)) << ai.Error_GetLast().toStdString();
    return c;
  }
  cAdvancedImagery ai;
};

TEST_F(Imagerie, InvalidHandlesAndBadFilesGiveTheirTexts) {
  Bitmap vide, sortie;
  InfosImage infos;
  QString texte;
  EXPECT_FALSE(ai.IO_Copy(vide, sortie));
  EXPECT_EQ(ai.Error_GetLast(), "Specified image is invalid");
  EXPECT_FALSE(ai.Effect_Resize(vide, 10, 10, 1));
  EXPECT_FALSE(ai.Info_ALL(vide, infos));
  EXPECT_FALSE(ai.IO_SaveImage(vide, "x.jpg", FormatJPEG, 90));
  EXPECT_FALSE(ai.Metadata_Get_EXIF(vide, texte, 1));
  EXPECT_EQ(ai.Error_GetLast(), "Specified image is invalid");
  EXPECT_EQ(ai.Info_Width(vide), 0);

  ASSERT_TRUE(ai.IO_CreateImage(sortie, 4, 4));
  EXPECT_FALSE(ai.IO_LoadImage("", sortie));
  EXPECT_EQ(ai.Error_GetLast(), "No file path specified to load from");
  EXPECT_TRUE(sortie.Vide());
  // Files are checked before any decoder: the reasons are the program's, in French.
  EXPECT_FALSE(ai.IO_LoadImage("absent.jpg", sortie));
  EXPECT_EQ(ai.Error_GetLast(), "Le fichier « absent.jpg » ne peut pas être lu : il n'existe pas.");

  QFile faux("faux.jpg");
  ASSERT_TRUE(faux.open(QIODevice::WriteOnly));
  faux.write("not a picture at all");
  faux.close();
  EXPECT_FALSE(ai.IO_LoadImage("faux.jpg", sortie));
  EXPECT_TRUE(ai.Error_GetLast().contains("n'est pas une image d'un format")) << ai.Error_GetLast().toStdString();
  EXPECT_TRUE(sortie.Vide());

  ASSERT_TRUE(ai.IO_CreateImage(sortie, 4, 4));
  EXPECT_FALSE(ai.IO_SaveImage(sortie, "absent/x.bmp", FormatBMP, 0));
  EXPECT_EQ(ai.Error_GetLast(), "Le fichier « x.bmp » ne peut pas être écrit : fichier ou dossier inexistant.");
  EXPECT_FALSE(ai.Metadata_Get_EXIF(sortie, texte, 3));
}

TEST_F(Imagerie, QImageConversionsKeepOrientationAndChannels) {
  const QImage grille = Grille(3, 2);
  Bitmap b = Depuis(grille);
  ASSERT_EQ(ai.Info_Width(b), 3);
  ASSERT_EQ(ai.Info_Height(b), 2);
  InfosImage infos;
  ASSERT_TRUE(ai.Info_ALL(b, infos));
  EXPECT_EQ(infos.bpp, 24);
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 3; ++x) {
      EXPECT_EQ(PixelFI(b.Get(), x, y), grille.pixel(x, y)) << x << "," << y;
      EXPECT_EQ(Pixel(b, x, y), BGR(grille.pixel(x, y)));
    }

  QImage retour;
  ASSERT_TRUE(ai.Convert_ImageToPicture(b, retour));
  EXPECT_EQ(retour.convertToFormat(QImage::Format_RGB32), grille);

  // A palettized FreeImage bitmap: indices 0..5 along the pixels.
  Bitmap palette(FreeImage_Allocate(3, 2, 8));
  RGBQUAD* couleurs = FreeImage_GetPalette(palette.Get());
  for (int i = 0; i < 6; ++i) {
    const QRgb c = grille.pixel(i % 3, i / 3);
    couleurs[i] = RGBQUAD{static_cast<BYTE>(qBlue(c)), static_cast<BYTE>(qGreen(c)), static_cast<BYTE>(qRed(c)), 0};
    BYTE index = static_cast<BYTE>(i);
    FreeImage_SetPixelIndex(palette.Get(), i % 3, 1 - i / 3, &index);
  }
  ASSERT_TRUE(ai.Convert_ImageToPicture(palette, retour));
  EXPECT_EQ(retour.convertToFormat(QImage::Format_RGB32), grille);
  EXPECT_EQ(Pixel(palette, 2, 1), BGR(grille.pixel(2, 1)));

  // Transparency survives both ways; an opaque ARGB picture gives 24 bits.
  QImage alpha(2, 1, QImage::Format_ARGB32);
  alpha.setPixel(0, 0, qRgba(200, 100, 50, 255));
  alpha.setPixel(1, 0, qRgba(0, 0, 0, 0));
  Bitmap transparent = Depuis(alpha);
  ASSERT_TRUE(ai.Info_ALL(transparent, infos));
  EXPECT_EQ(infos.bpp, 32);
  EXPECT_TRUE(infos.transparent);
  ASSERT_TRUE(ai.Convert_ImageToPicture(transparent, retour));
  EXPECT_EQ(qAlpha(retour.pixel(1, 0)), 0);
  EXPECT_EQ(retour.pixel(0, 0), qRgba(200, 100, 50, 255));
  alpha.setPixel(1, 0, qRgba(1, 2, 3, 255));
  Bitmap opaque = Depuis(alpha);
  ASSERT_TRUE(ai.Info_ALL(opaque, infos));
  EXPECT_EQ(infos.bpp, 24);

  int r, v, bl;
  cAdvancedImagery::Color_OLE(0x123456, r, v, bl);
  EXPECT_EQ(r, 0x56);
  EXPECT_EQ(v, 0x34);
  EXPECT_EQ(bl, 0x12);
}

// Lossless formats give the pixels back exactly.
class AllerRetour : public Imagerie, public testing::WithParamInterface<std::pair<int, const char*>> {};

TEST_P(AllerRetour, PixelsComeBackUnchanged) {
  const QImage grille = Grille(5, 3);
  Bitmap b = Depuis(grille);
  const QString nom = GetParam().second;
  ASSERT_TRUE(ai.IO_SaveImage(b, nom, GetParam().first, 0)) << ai.Error_GetLast().toStdString();
  Bitmap lu;
  ASSERT_TRUE(ai.IO_LoadImage(nom, lu)) << ai.Error_GetLast().toStdString();
  QImage image;
  ASSERT_TRUE(ai.Convert_ImageToPicture(lu, image));
  EXPECT_EQ(image.convertToFormat(QImage::Format_RGB32), grille);
}

INSTANTIATE_TEST_SUITE_P(Formats, AllerRetour,
                         testing::Values(std::make_pair(int(FormatBMP), "a.bmp"),
                                         std::make_pair(int(FormatTIFF), "a.tif")),
                         [](const auto& info) { return std::string(info.param.second).substr(2); });

TEST_F(Imagerie, JpegKeepsTheWindows1252CommentAndQuality) {
  QImage bruit(64, 64, QImage::Format_RGB32);
  unsigned graine = 12345;
  for (int y = 0; y < 64; ++y)
    for (int x = 0; x < 64; ++x) {
      graine = graine * 1103515245u + 12345u;
      bruit.setPixel(x, y, graine >> 8);
    }
  Bitmap b = Depuis(bruit);
  const QString commentaire = QString::fromUtf8("Échelle = 10 µm\r\nObjectif x40");
  ASSERT_TRUE(ai.Metadata_Set_Comments(b, commentaire));
  ASSERT_TRUE(ai.IO_SaveImage(b, "fin.jpg", FormatJPEG, 95));
  ASSERT_TRUE(ai.IO_SaveImage(b, "grossier.jpg", FormatJPEG, 10));
  const QByteArray fin = test::LireOctets("fin.jpg");
  EXPECT_GT(fin.size(), test::LireOctets("grossier.jpg").size());
  // The comment segment holds Windows-1252 bytes: É = C9, µ = B5.
  EXPECT_TRUE(fin.contains(QByteArray("\xC9") + "chelle = 10 \xB5m\r\nObjectif x40"));

  Bitmap lu;
  ASSERT_TRUE(ai.IO_LoadImage("fin.jpg", lu));
  QString texte;
  ASSERT_TRUE(ai.Metadata_Get_Comments(lu, texte));
  EXPECT_EQ(texte, commentaire);

  // A comment carried through a 32-bit picture, which JPEG cannot take as it is.
  QImage alpha(8, 8, QImage::Format_ARGB32);
  alpha.fill(qRgba(250, 10, 10, 128));
  Bitmap b32 = Depuis(alpha);
  ASSERT_TRUE(ai.Metadata_Set_Comments(b32, "trente-deux"));
  ASSERT_TRUE(ai.IO_SaveImage(b32, "a32.jpg", FormatJPEG, 90)) << ai.Error_GetLast().toStdString();
  InfosImage infos;
  ASSERT_TRUE(ai.Info_ALL(b32, infos));
  EXPECT_EQ(infos.bpp, 32);  // the caller's bitmap is untouched
  ASSERT_TRUE(ai.IO_LoadImage("a32.jpg", lu));
  ASSERT_TRUE(ai.Info_ALL(lu, infos));
  EXPECT_EQ(infos.bpp, 24);
  ASSERT_TRUE(ai.Metadata_Get_Comments(lu, texte));
  EXPECT_EQ(texte, "trente-deux");
}

// A 24-bit BMP with the 124-byte V5 info header, as GIMP writes them.
QByteArray BmpV5(int l, int h, const QImage& image) {
  const int ligne = (l * 3 + 3) / 4 * 4;
  QByteArray octets;
  auto u16 = [&](int v) { octets.append(char(v & 0xFF)).append(char((v >> 8) & 0xFF)); };
  auto u32 = [&](unsigned v) { for (int i = 0; i < 4; ++i) octets.append(char((v >> (8 * i)) & 0xFF)); };
  octets.append("BM");
  u32(14 + 124 + ligne * h);
  u32(0);
  u32(14 + 124);
  u32(124);
  u32(l);
  u32(h);
  u16(1);
  u16(24);
  u32(0);  // BI_RGB
  u32(ligne * h);
  u32(2835);
  u32(2835);
  u32(0);
  u32(0);
  for (int i = 0; i < 4; ++i) u32(0);  // masks
  u32(0x73524742);                      // 'sRGB'
  for (int i = 0; i < 9 + 3; ++i) u32(0);  // end points, gamma
  u32(4);
  u32(0);
  u32(0);
  u32(0);
  for (int y = h - 1; y >= 0; --y) {
    for (int x = 0; x < l; ++x) {
      const QRgb c = image.pixel(x, y);
      octets.append(char(qBlue(c))).append(char(qGreen(c))).append(char(qRed(c)));
    }
    octets.append(QByteArray(ligne - l * 3, '\0'));
  }
  return octets;
}

TEST_F(Imagerie, BmpWithV5HeaderOpens) {
  const QImage grille = Grille(3, 2);
  const QByteArray octets = BmpV5(3, 2, grille);
  ASSERT_EQ(static_cast<unsigned char>(octets[14]), 124);
  QFile f("v5.bmp");
  ASSERT_TRUE(f.open(QIODevice::WriteOnly));
  f.write(octets);
  f.close();
  Bitmap lu;
  ASSERT_TRUE(ai.IO_LoadImage("v5.bmp", lu)) << ai.Error_GetLast().toStdString();
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 3; ++x) EXPECT_EQ(Pixel(lu, x, y), BGR(grille.pixel(x, y)));
}

// An EXIF block (APP1 payload, little-endian TIFF) with Model in the main
// directory and FocalLength 15/2, DigitalZoomRatio 3/2 in the EXIF directory.
std::vector<BYTE> ExifBrut() {
  std::vector<BYTE> b = {'E', 'x', 'i', 'f', 0, 0};
  auto u16 = [&](unsigned v) { b.push_back(v & 0xFF), b.push_back((v >> 8) & 0xFF); };
  auto u32 = [&](unsigned v) { for (int i = 0; i < 4; ++i) b.push_back((v >> (8 * i)) & 0xFF); };
  auto entree = [&](unsigned tag, unsigned type, unsigned n, unsigned valeur) { u16(tag), u16(type), u32(n), u32(valeur); };
  const char modele[] = "Microscope";  // 11 bytes with its NUL
  const unsigned ifd0 = 8, texte = ifd0 + 2 + 2 * 12 + 4, ifdExif = texte + 12, fractions = ifdExif + 2 + 2 * 12 + 4;
  b.insert(b.end(), {'I', 'I', 42, 0});
  u32(ifd0);
  u16(2);
  entree(0x0110, 2, sizeof modele, texte);
  entree(0x8769, 4, 1, ifdExif);
  u32(0);
  b.insert(b.end(), modele, modele + sizeof modele);
  b.push_back(0);  // to an even offset
  u16(2);
  entree(0x920A, 5, 1, fractions);
  entree(0xA404, 5, 1, fractions + 8);
  u32(0);
  u32(15), u32(2), u32(3), u32(2);
  return b;
}

TEST_F(Imagerie, ExifSurvivesSaveAndResizeAndGivesFractions) {
  Bitmap b;
  ASSERT_TRUE(ai.IO_CreateImage(b, 40, 30));
  std::vector<BYTE> brut = ExifBrut();
  FITAG* tag = FreeImage_CreateTag();
  FreeImage_SetTagKey(tag, "ExifRaw");
  FreeImage_SetTagType(tag, FIDT_BYTE);
  FreeImage_SetTagCount(tag, static_cast<DWORD>(brut.size()));
  FreeImage_SetTagLength(tag, static_cast<DWORD>(brut.size()));
  FreeImage_SetTagValue(tag, brut.data());
  FreeImage_SetMetadata(FIMD_EXIF_RAW, b.Get(), "ExifRaw", tag);
  FreeImage_DeleteTag(tag);
  ASSERT_TRUE(ai.IO_SaveImage(b, "exif.jpg", FormatJPEG, 90));

  Bitmap lu;
  ASSERT_TRUE(ai.IO_LoadImage("exif.jpg", lu));
  // Resizing replaces the bitmap; the EXIF goes along and is written again.
  ASSERT_TRUE(ai.Effect_Resize(lu, 20, 15, 3));
  ASSERT_TRUE(ai.IO_SaveImage(lu, "exif2.jpg", FormatJPEG, 90));
  ASSERT_TRUE(ai.IO_LoadImage("exif2.jpg", lu));
  EXPECT_EQ(ai.Info_Width(lu), 20);

  QString principal, exif;
  ASSERT_TRUE(ai.Metadata_Get_EXIF(lu, principal, 1));
  ASSERT_TRUE(ai.Metadata_Get_EXIF(lu, exif, 2));
  EXPECT_TRUE(principal.split("\r\n").contains("Model = Microscope")) << principal.toStdString();
  const QStringList lignes = exif.split("\r\n");
  EXPECT_TRUE(lignes.contains("FocalLength = 15/2")) << exif.toStdString();
  EXPECT_TRUE(lignes.contains("DigitalZoomRatio = 3/2")) << exif.toStdString();
  EXPECT_EQ(lignes.size(), 2);  // lines joined by CR LF
}

// Each filter code against FreeImage_Rescale with the filter it stands for.
class Reechantillonnage : public Imagerie, public testing::WithParamInterface<std::pair<int, FREE_IMAGE_FILTER>> {};

TEST_P(Reechantillonnage, CodeSelectsTheIntendedFilter) {
  Bitmap source(FreeImage_Allocate(7, 5, 24));
  unsigned graine = 99;
  for (int y = 0; y < 5; ++y) {
    BYTE* ligne = FreeImage_GetScanLine(source.Get(), y);
    for (int i = 0; i < 21; ++i) {
      graine = graine * 1103515245u + 12345u;
      ligne[i] = static_cast<BYTE>(graine >> 16);
    }
  }
  auto reference = [&](FREE_IMAGE_FILTER f) { return Bitmap(FreeImage_Rescale(source.Get(), 13, 11, f)); };
  auto egaux = [](const Bitmap& a, const Bitmap& b) {
    for (int y = 0; y < 11; ++y)
      if (std::memcmp(FreeImage_GetScanLine(a.Get(), y), FreeImage_GetScanLine(b.Get(), y), 13 * 3) != 0) return false;
    return true;
  };
  const Bitmap attendu = reference(GetParam().second);
  // The four filters must tell themselves apart on this picture.
  for (FREE_IMAGE_FILTER autre : {FILTER_BILINEAR, FILTER_BSPLINE, FILTER_LANCZOS3, FILTER_BICUBIC})
    if (autre != GetParam().second) {
      ASSERT_FALSE(egaux(attendu, reference(autre)));
    }

  Bitmap b;
  ASSERT_TRUE(ai.IO_Copy(source, b));
  ASSERT_TRUE(ai.Effect_Resize(b, 13, 11, GetParam().first));
  ASSERT_EQ(ai.Info_Width(b), 13);
  ASSERT_EQ(ai.Info_Height(b), 11);
  EXPECT_TRUE(egaux(b, attendu));
}

INSTANTIATE_TEST_SUITE_P(Codes, Reechantillonnage,
                         testing::Values(std::make_pair(1, FILTER_BILINEAR), std::make_pair(2, FILTER_BSPLINE),
                                         std::make_pair(3, FILTER_LANCZOS3), std::make_pair(4, FILTER_BICUBIC),
                                         std::make_pair(0, FILTER_LANCZOS3), std::make_pair(5, FILTER_LANCZOS3),
                                         std::make_pair(-1, FILTER_LANCZOS3)));

TEST_F(Imagerie, ResizeBelowOnePixelGivesOne) {
  Bitmap b;
  ASSERT_TRUE(ai.IO_CreateImage(b, 8, 6));
  ASSERT_TRUE(ai.Effect_Resize(b, 0, -3, 1));
  EXPECT_EQ(ai.Info_Width(b), 1);
  EXPECT_EQ(ai.Info_Height(b), 1);
}

TEST_F(Imagerie, RotationSwapsTheSidesAndMovesTheCorner) {
  const int rouge = 0x0000FF, vert = 0x00FF00;
  Bitmap b;
  ASSERT_TRUE(ai.IO_CreateImage(b, 3, 2));
  ASSERT_TRUE(ai.MemoryDC_FillRectangle(b, 0, 0, 1, 1, rouge));  // top-left
  ASSERT_TRUE(ai.MemoryDC_FillRectangle(b, 2, 0, 1, 1, vert));   // top-right
  ASSERT_TRUE(ai.Metadata_Set_Comments(b, "tourne"));

  Bitmap quart;
  ASSERT_TRUE(ai.IO_Copy(b, quart));
  ASSERT_TRUE(ai.Effect_Rotate90(quart, 90));  // counter-clockwise
  ASSERT_EQ(ai.Info_Width(quart), 2);
  ASSERT_EQ(ai.Info_Height(quart), 3);
  EXPECT_EQ(Pixel(quart, 0, 2), rouge);
  EXPECT_EQ(Pixel(quart, 0, 0), vert);
  QString texte;
  ASSERT_TRUE(ai.Metadata_Get_Comments(quart, texte));
  EXPECT_EQ(texte, "tourne");

  Bitmap demi;
  ASSERT_TRUE(ai.IO_Copy(b, demi));
  ASSERT_TRUE(ai.Effect_Rotate90(demi, 180));
  EXPECT_EQ(ai.Info_Width(demi), 3);
  EXPECT_EQ(Pixel(demi, 2, 1), rouge);
  EXPECT_EQ(Pixel(demi, 0, 1), vert);

  ASSERT_TRUE(ai.Effect_Rotate90(b, 270));
  EXPECT_EQ(ai.Info_Width(b), 2);
  EXPECT_EQ(Pixel(b, 1, 0), rouge);
  EXPECT_EQ(Pixel(b, 1, 2), vert);

  EXPECT_FALSE(ai.Effect_Rotate90(b, 45));
  EXPECT_EQ(ai.Info_Width(b), 2);
}

TEST_F(Imagerie, PixelLoopsSeeTheBitmapTheRightWayRound) {
  // Emboss works along rows: a mirrored or flipped copy would give other values.
  QImage image(3, 2, QImage::Format_RGB32);
  const int r[2][3] = {{10, 50, 30}, {100, 0, 200}};
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 3; ++x) image.setPixel(x, y, qRgb(r[y][x], 7, 255 - r[y][x]));
  Bitmap b = Depuis(image);
  ASSERT_TRUE(ai.Effect_Emboss(b, false, false));
  EXPECT_EQ(Pixel(b, 0, 0) & 0xFF, (10 + 50) / 2);
  EXPECT_EQ(Pixel(b, 1, 0) & 0xFF, 50 + 30 - 10);
  EXPECT_EQ(Pixel(b, 2, 0) & 0xFF, 30);  // N = 0
  EXPECT_EQ(Pixel(b, 0, 1) & 0xFF, (100 + 0) / 2);
  EXPECT_EQ(Pixel(b, 1, 1) & 0xFF, 0 + 200 - 100);
  EXPECT_EQ(Pixel(b, 1, 1) >> 16, 255 + 55 - 155);  // blue: 255 - r
  EXPECT_EQ((Pixel(b, 1, 1) >> 8) & 0xFF, 7);

  // The RGB filter keeps red, green, blue in that order, and works on 32 bits.
  QImage alpha(1, 1, QImage::Format_ARGB32);
  alpha.setPixel(0, 0, qRgba(10, 20, 30, 100));
  Bitmap b32 = Depuis(alpha);
  ASSERT_TRUE(ai.Effect_RGB_Filter(b32, 100, 0, -100));
  EXPECT_EQ(Pixel(b32, 0, 0), 0x0014FF);
  EXPECT_FALSE(ai.Effect_RGB_Filter(b32, 0, 101, 0));
  EXPECT_FALSE(ai.Error_GetLast().isEmpty());

  Bitmap gris = Depuis(Grille(3, 2));
  ASSERT_TRUE(ai.Effect_Grayscale(gris));
  InfosImage infos;
  ASSERT_TRUE(ai.Info_ALL(gris, infos));
  EXPECT_EQ(infos.bpp, 24);
  const int c = Pixel(gris, 2, 1);
  EXPECT_EQ(c & 0xFF, (c >> 8) & 0xFF);
  EXPECT_EQ(c & 0xFF, c >> 16);
}

TEST_F(Imagerie, LibraryAdjustmentsWorkOnPalettizedBitmaps) {
  Bitmap b(FreeImage_Allocate(2, 2, 8));
  RGBQUAD* palette = FreeImage_GetPalette(b.Get());
  palette[0] = RGBQUAD{40, 80, 120, 0};
  ASSERT_TRUE(ai.Effect_Invert(b));
  EXPECT_EQ(Pixel(b, 1, 1), (255 - 120) | ((255 - 80) << 8) | ((255 - 40) << 16));
  const int avant = Pixel(b, 0, 0) & 0xFF;
  ASSERT_TRUE(ai.Effect_Brightness(b, 20));
  EXPECT_GT(Pixel(b, 0, 0) & 0xFF, avant);
  EXPECT_FALSE(ai.Effect_Gamma(b, 0));
}

TEST_F(Imagerie, ZoomCropsAndEnlargesWholePixelsAndThumbnailShrinks) {
  const QImage grille = Grille(4, 3);
  Bitmap b = Depuis(grille);
  Bitmap partie;
  ASSERT_TRUE(ai.Effect_Zoom(b, partie, 1, 1, 2, 2, 1.0));
  ASSERT_EQ(ai.Info_Width(partie), 2);
  ASSERT_EQ(ai.Info_Height(partie), 2);
  EXPECT_EQ(Pixel(partie, 0, 0), BGR(grille.pixel(1, 1)));
  EXPECT_EQ(Pixel(partie, 1, 1), BGR(grille.pixel(2, 2)));

  ASSERT_TRUE(ai.Effect_Zoom(b, partie, 1, 1, 2, 2, 2.0));
  ASSERT_EQ(ai.Info_Width(partie), 4);
  EXPECT_EQ(Pixel(partie, 1, 1), BGR(grille.pixel(1, 1)));
  EXPECT_EQ(Pixel(partie, 3, 0), BGR(grille.pixel(2, 1)));

  EXPECT_FALSE(ai.Effect_Zoom(b, partie, 3, 0, 2, 2, 1.0));
  EXPECT_TRUE(partie.Vide());

  Bitmap vignette;
  ASSERT_TRUE(ai.Effect_Thumbnail(b, vignette, 2));
  EXPECT_EQ(ai.Info_Width(vignette), 2);  // the longer side
  EXPECT_LE(ai.Info_Height(vignette), 2);
}

TEST_F(Imagerie, OverlayLeavesTheTransparentColourOut) {
  const int magenta = 0xFF00FF, bleu = 0xFF0000, blanc = 0xFFFFFF;
  Bitmap dessus;
  ASSERT_TRUE(ai.IO_CreateImage(dessus, 2, 2));
  ASSERT_TRUE(ai.MemoryDC_FillRectangle(dessus, 0, 0, 2, 2, bleu));
  ASSERT_TRUE(ai.MemoryDC_FillRectangle(dessus, 1, 0, 1, 1, magenta));

  Bitmap dessous;
  ASSERT_TRUE(ai.IO_CreateImage(dessous, 4, 4));
  ASSERT_TRUE(ai.MemoryDC_FillRectangle(dessous, -5, -5, 50, 50, blanc));  // clipped to the bitmap
  ASSERT_TRUE(ai.Effect_SetTransparentColor(dessus, magenta));
  ASSERT_TRUE(ai.Effect_OverlayPicture(dessous, dessus, 1, 2));
  EXPECT_EQ(Pixel(dessous, 1, 2), bleu);
  EXPECT_EQ(Pixel(dessous, 2, 2), blanc);  // magenta left out
  EXPECT_EQ(Pixel(dessous, 2, 3), bleu);
  EXPECT_EQ(Pixel(dessous, 1, 1), blanc);

  ASSERT_TRUE(ai.Effect_SetTransparentColor(dessus, -1));
  ASSERT_TRUE(ai.Effect_OverlayPicture(dessous, dessus, 2, -1));  // partly outside
  EXPECT_EQ(Pixel(dessous, 3, 0), bleu);
  EXPECT_EQ(Pixel(dessous, 2, 0), bleu);

  // Rendering leaves the same colour out.
  ASSERT_TRUE(ai.Effect_SetTransparentColor(dessus, magenta));
  QImage toile(2, 2, QImage::Format_RGB32);
  toile.fill(Qt::white);
  {
    QPainter p(&toile);
    ASSERT_TRUE(ai.Render_Transparent(dessus, p, 0, 0, 2, 2));
  }
  EXPECT_EQ(toile.pixel(1, 0), qRgb(255, 255, 255));
  EXPECT_EQ(toile.pixel(0, 0), qRgb(0, 0, 255));
}

// The box of lit pixels, in picture coordinates.
QRect Allumes(cAdvancedImagery& ai, const Bitmap& b) {
  QImage image;
  ai.Convert_ImageToPicture(b, image);
  QRect boite;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (qRed(image.pixel(x, y)) > 128) boite |= QRect(x, y, 1, 1);
  return boite;
}

TEST_F(Imagerie, TextIsPlacedByAlignmentAndRotation) {
  // Text drawn in a rectangle, or anchored at a point when the rectangle is empty.
  auto dessiner = [&](QRect r, int alignH, int alignV, int rotation, int fond) {
    Bitmap b;
    EXPECT_TRUE(ai.IO_CreateImage(b, 120, 120));
    EXPECT_TRUE(ai.Metadata_Set_Comments(b, "gardé"));
    TexteSurImage t;
    t.gauche = r.left();
    t.haut = r.top();
    t.droite = r.left() + r.width();
    t.bas = r.top() + r.height();
    t.alignH = alignH;
    t.alignV = alignV;
    t.police = "DejaVu Sans";
    t.taille = 12;
    t.couleur = 0xFFFFFF;
    t.fond = fond;
    t.rotation = rotation;
    EXPECT_TRUE(ai.Effect_OverlayText(b, "HHHH", t)) << ai.Error_GetLast().toStdString();
    return b;
  };
  const QRect point(60, 50, 0, 0);
  const QRect gauche = Allumes(ai, dessiner(point, 3, 1, 0, -1));  // left, top
  ASSERT_FALSE(gauche.isEmpty());
  EXPECT_GE(gauche.left(), 60);
  EXPECT_GE(gauche.top(), 50);
  EXPECT_GT(gauche.width(), gauche.height());

  const QRect droite = Allumes(ai, dessiner(point, 4, 2, 0, -1));  // right, bottom
  EXPECT_LE(droite.right(), 60);
  EXPECT_LE(droite.bottom(), 50);
  EXPECT_NEAR(droite.width(), gauche.width(), 1);
  const QRect centre = Allumes(ai, dessiner(point, 0, 0, 0, -1));
  EXPECT_NEAR(centre.center().x(), 60, 2);
  EXPECT_NEAR(centre.center().y(), 50, 4);

  // In a rectangle: centred in it, and cut at its edges.
  const QRect dansCadre = Allumes(ai, dessiner(QRect(10, 10, 100, 40), 0, 0, 0, -1));
  EXPECT_NEAR(dansCadre.center().x(), 60, 2);
  EXPECT_NEAR(dansCadre.center().y(), 30, 4);
  const QRect coupe = Allumes(ai, dessiner(QRect(10, 10, 20, 40), 3, 1, 0, -1));
  EXPECT_LE(coupe.right(), 29);

  // 90 degrees counter-clockwise: the text runs upwards from its anchor.
  const QRect tourne = Allumes(ai, dessiner(QRect(60, 100, 0, 0), 3, 1, 900, -1));
  EXPECT_GT(tourne.height(), tourne.width());
  EXPECT_LE(tourne.bottom(), 100);
  EXPECT_GE(tourne.left(), 60);

  // A background fills the text's box; the comment stays attached.
  Bitmap fond = dessiner(point, 3, 1, 0, 0x0000FF);
  const QRect rouge = Allumes(ai, fond);
  EXPECT_EQ(rouge.left(), 60);
  EXPECT_EQ(rouge.top(), 50);
  EXPECT_EQ(Pixel(fond, 61, 51), 0x0000FF);
  QString texte;
  ASSERT_TRUE(ai.Metadata_Get_Comments(fond, texte));
  EXPECT_EQ(texte, QString::fromUtf8("gardé"));
}

TEST_F(Imagerie, TextRefusesTheCodesThatAreNotAlignments) {
  Bitmap b;
  ASSERT_TRUE(ai.IO_CreateImage(b, 20, 20));
  for (auto [h, v, r] : {std::tuple{1, 0, 0}, {2, 0, 0}, {0, 3, 0}, {0, 4, 0}, {0, 0, 3601}}) {
    TexteSurImage t;
    t.alignH = h;
    t.alignV = v;
    t.rotation = r;
    t.couleur = 0xFFFFFF;
    EXPECT_FALSE(ai.Effect_OverlayText(b, "H", t)) << h << " " << v << " " << r;
    EXPECT_FALSE(ai.Error_GetLast().isEmpty());
  }
  int c = -1;
  ASSERT_TRUE(ai.Color_GetPixel(b, 10, 10, c));
  EXPECT_EQ(c, 0) << "a refused call draws nothing";
}

TEST_F(Imagerie, ClipboardRoundTripAndEmptyClipboard) {
  QGuiApplication::clipboard()->clear();
  Bitmap b;
  EXPECT_FALSE(ai.Clipboard_Get(b));
  EXPECT_EQ(ai.Error_GetLast(), "No picture on the clipboard");

  const QImage grille = Grille(3, 2);
  ASSERT_TRUE(ai.Clipboard_Set(Depuis(grille)));
  ASSERT_TRUE(ai.Clipboard_Get(b)) << ai.Error_GetLast().toStdString();
  EXPECT_EQ(Pixel(b, 2, 0), BGR(grille.pixel(2, 0)));
  EXPECT_EQ(Pixel(b, 0, 1), BGR(grille.pixel(0, 1)));
}

TEST_F(Imagerie, CreatedBitmapIsBlackAndScreenIsKnown) {
  Bitmap b;
  ASSERT_TRUE(ai.IO_CreateImage(b, 5, 4));
  EXPECT_EQ(Pixel(b, 4, 3), 0);
  int c = 0;
  EXPECT_FALSE(ai.Color_GetPixel(b, 5, 0, c));
  EXPECT_FALSE(ai.IO_CreateImage(b, 0, 4));
  EXPECT_TRUE(b.Vide());
  InfosEcran ecran;
  ASSERT_TRUE(ai.Screen_Info(ecran));
  EXPECT_GT(ecran.largeur, 0);
  EXPECT_GT(ecran.hauteur, 0);
}

// A save that cannot be finished (a file size limit stands for a full disk)
// leaves the old file whole and no temporary file beside it. (BMP: the
// library's JPEG writer leaks its buffer when a write fails.)
TEST_F(Imagerie, UnEnregistrementRateLaisseLAncienFichier) {
  Bitmap image;
  ASSERT_TRUE(ai.IO_CreateImage(image, 400, 300, 24));
  for (int i = 0; i < 60; ++i) ASSERT_TRUE(ai.MemoryDC_FillRectangle(image, i * 6, i * 5, 30, 20, i * 0x030507));
  const QString chemin = QDir::currentPath() + "/resultat.bmp";
  ASSERT_TRUE(ai.IO_SaveImage(image, chemin, FormatBMP, 0));
  QFile::setPermissions(chemin, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
  QFile f(chemin);
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  const QByteArray avant = f.readAll();
  f.close();
  bool enregistre = true;
  {
    const test::LimiteTailleFichier limite(rlim_t(avant.size() / 2));
    ASSERT_TRUE(limite.Active());
    enregistre = ai.IO_SaveImage(image, chemin, FormatBMP, 0);
  }
  EXPECT_FALSE(enregistre);
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  EXPECT_EQ(f.readAll(), avant);
  f.close();
  EXPECT_EQ(QDir(QDir::currentPath()).entryList(QDir::Files | QDir::Hidden), QStringList{"resultat.bmp"});
  ASSERT_TRUE(ai.IO_SaveImage(image, chemin, FormatBMP, 0));
  EXPECT_EQ(QFile::permissions(chemin) & (QFile::ReadGroup | QFile::ReadOther), QFile::ReadGroup);
}

}  // namespace
}  // namespace tg

namespace tg {
namespace {

// A JPEG decoded at a reduced DCT scale: the smallest that leaves the size
// asked, the file's own size given back; other files whole.
TEST(ChargementReduit, EchelleDCTEtTailleDuFichier) {
  EXPECT_EQ(DenominateurDCT(6000, 4000, 1600, 1600), 2);
  EXPECT_EQ(DenominateurDCT(6000, 4000, 1500, 1000), 4);
  EXPECT_EQ(DenominateurDCT(6000, 4000, 750, 500), 8);
  EXPECT_EQ(DenominateurDCT(1500, 1000, 1600, 1200), 1);
  QImage image(3203, 2401, QImage::Format_RGB32);
  image.fill(QColor(90, 140, 200));
  const QString jpeg = QDir::current().filePath("grande.jpg");
  ASSERT_TRUE(image.save(jpeg, "JPG", 90));
  cAdvancedImagery ai;
  Bitmap b;
  int l = 0, h = 0;
  ASSERT_TRUE(ai.IO_LoadImageReduite(jpeg, 800, 600, b, l, h)) << ai.Error_GetLast().toStdString();
  EXPECT_EQ(l, 3203);
  EXPECT_EQ(h, 2401);
  EXPECT_EQ(ai.Info_Width(b), 801);  // 1/4, rounded up as the decoder does
  EXPECT_EQ(ai.Info_Height(b), 601);
  ASSERT_TRUE(ai.IO_LoadImageReduite(jpeg, 1700, 1300, b, l, h));
  EXPECT_EQ(ai.Info_Width(b), 3203);  // 1/2 would give 1602 x 1201
  const QString png = QDir::current().filePath("grande.png");
  ASSERT_TRUE(image.save(png));
  ASSERT_TRUE(ai.IO_LoadImageReduite(png, 800, 600, b, l, h));
  EXPECT_EQ(ai.Info_Width(b), 3203);
  EXPECT_EQ(l, 3203);
}

}  // namespace
}  // namespace tg

namespace tg {
namespace {

// Blocks of k x k averaged, rounded to nearest; columns and rows that fill
// no block left out.
TEST(ChargementReduit, MoyenneParBlocs) {
  QImage img(5, 3, QImage::Format_RGB32);
  const int rouges[3][5] = {{10, 20, 30, 40, 99}, {30, 41, 50, 60, 99}, {99, 99, 99, 99, 99}};
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 5; ++x) img.setPixel(x, y, qRgb(rouges[y][x], 7, 255));
  cAdvancedImagery ai;
  Bitmap b, r;
  ASSERT_TRUE(ai.Convert_PictureToImage(img, b));
  ASSERT_TRUE(ai.Effect_ReduireFacteur(b, r, 2));
  QImage q;
  ASSERT_TRUE(ai.Convert_ImageToPicture(r, q));
  ASSERT_EQ(q.size(), QSize(2, 1));
  EXPECT_EQ(q.pixel(0, 0), qRgb(25, 7, 255));  // (10 + 20 + 30 + 41) / 4 = 25.25
  EXPECT_EQ(q.pixel(1, 0), qRgb(45, 7, 255));  // (30 + 40 + 50 + 60) / 4
  // Fits already: a copy of the same size; 2 pixels on the longer side: k = 3.
  ASSERT_TRUE(ai.Effect_Reduire(b, r, 5));
  EXPECT_EQ(ai.Info_Width(r), 5);
  ASSERT_TRUE(ai.Effect_Reduire(b, r, 2));
  EXPECT_EQ(ai.Info_Width(r), 1);
}

}  // namespace
}  // namespace tg

namespace tg {
namespace {

// Blocks averaged down to twice the output, then Lanczos 3, against Lanczos 3
// on the whole picture: within what a JPEG save changes (PSNR above 40 dB)
// on a photo-like picture.
TEST(ChargementReduit, ReductionParBlocsPuisLanczosProcheDuLanczosSeul) {
  QImage img(3200, 2400, QImage::Format_RGB32);
  uint32_t g = 5;
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) {
      g = g * 1664525u + 1013904223u;
      const int bruit = int(g >> 29);
      img.setPixel(x, y, qRgb((x / 14 + bruit) & 0xFF, (y / 10 + bruit) & 0xFF, ((x + y) / 25) & 0xFF));
    }
  cAdvancedImagery ai;
  Bitmap entiere, reduite, rapide;
  ASSERT_TRUE(ai.Convert_PictureToImage(img, entiere));
  ASSERT_TRUE(ai.Effect_ReduireFacteur(entiere, reduite, 2));
  ASSERT_TRUE(ai.Effect_Resize(reduite, 800, 600, 3));
  ASSERT_TRUE(ai.Effect_Resize(entiere, 800, 600, 3));
  QImage a, b;
  ASSERT_TRUE(ai.Convert_ImageToPicture(reduite, a));
  ASSERT_TRUE(ai.Convert_ImageToPicture(entiere, b));
  double somme = 0;
  for (int y = 0; y < 600; ++y)
    for (int x = 0; x < 800; ++x) {
      const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
      for (int d : {qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q)}) somme += double(d) * d;
    }
  const double psnr = 10 * std::log10(255.0 * 255.0 / (somme / (3.0 * 800 * 600) + 1e-12));
  EXPECT_GT(psnr, 40) << psnr;
}

}  // namespace
}  // namespace tg
