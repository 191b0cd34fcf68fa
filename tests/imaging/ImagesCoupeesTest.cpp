// Pictures cut at every 97th byte, loaded through the imaging contract under
// the sanitizers: each piece gives a picture or a French refusal, never a
// crash and never a read outside the file.
#include <FreeImage.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "imaging/cAdvancedImagery.h"
#include "tests/support/TiffAppareil.h"

namespace tg {
namespace {

QByteArray EnMemoire(FIBITMAP* dib, FREE_IMAGE_FORMAT fif, int options = 0) {
  FIMEMORY* m = FreeImage_OpenMemory();
  EXPECT_TRUE(FreeImage_SaveToMemory(fif, dib, m, options));
  BYTE* d = nullptr;
  DWORD n = 0;
  FreeImage_AcquireMemory(m, &d, &n);
  const QByteArray octets(reinterpret_cast<const char*>(d), qsizetype(n));
  FreeImage_CloseMemory(m);
  return octets;
}

QByteArray Psd(int l, int h) {
  auto be16 = [](int v) { return QByteArray(1, char(v >> 8)) + char(v & 0xFF); };
  auto be32 = [&](uint32_t v) { return be16(int(v >> 16)) + be16(int(v & 0xFFFF)); };
  QByteArray p = QByteArray("8BPS") + be16(1) + QByteArray(6, '\0') + be16(3) + be32(h) + be32(l) + be16(8) + be16(3);
  p += be32(0) + be32(0) + be32(0) + be16(0);
  for (int c = 0; c < 3; ++c)
    for (int i = 0; i < l * h; ++i) p += char((i * (c + 3)) & 0xFF);
  return p;
}

// A dozen pictures of the kinds users open.
std::vector<std::pair<std::string, QByteArray>> Images() {
  const int l = 96, h = 64;
  FIBITMAP* dib = FreeImage_Allocate(l, h, 24);
  for (int y = 0; y < h; ++y) {
    BYTE* ligne = FreeImage_GetScanLine(dib, y);
    for (int x = 0; x < 3 * l; ++x) ligne[x] = BYTE((x * 7 + y * 13) & 0xFF);
  }
  FIBITMAP* palette = FreeImage_ColorQuantize(dib, FIQ_WUQUANT);
  FIBITMAP* gris = FreeImage_ConvertToGreyscale(dib);
  std::vector<std::pair<std::string, QByteArray>> r = {
      {"jpeg", EnMemoire(dib, FIF_JPEG, 90)},
      {"jpeg progressif", EnMemoire(dib, FIF_JPEG, 90 | JPEG_PROGRESSIVE)},
      {"jpeg gris", EnMemoire(gris, FIF_JPEG, 75)},
      {"png", EnMemoire(dib, FIF_PNG)},
      {"png palette", EnMemoire(palette, FIF_PNG)},
      {"gif", EnMemoire(palette, FIF_GIF)},
      {"bmp", EnMemoire(dib, FIF_BMP)},
      {"bmp rle", EnMemoire(palette, FIF_BMP, BMP_SAVE_RLE)},
      {"tiff", EnMemoire(dib, FIF_TIFF)},
      {"tiff lzw", EnMemoire(dib, FIF_TIFF, TIFF_LZW)},
      {"tiff appareil", test::TiffAppareil(96, 64)},
      {"psd", Psd(l, h)},
  };
  FreeImage_Unload(gris);
  FreeImage_Unload(palette);
  FreeImage_Unload(dib);
  return r;
}

TEST(ImagesCoupees, UneImageOuUnRefusEnFrancais) {
  cAdvancedImagery ai;
  const QString chemin = QDir::currentPath() + "/piece";
  int refus = 0, incompletes = 0;
  for (const auto& [nom, entier] : Images()) {
    ASSERT_GT(entier.size(), 200) << nom;
    {
      QFile f(chemin);
      ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
      f.write(entier);
    }
    Bitmap image;
    ASSERT_TRUE(ai.IO_LoadImage(chemin, image)) << nom << " : " << ai.Error_GetLast().toStdString();
    EXPECT_EQ(ai.Info_Width(image), 96) << nom;
    for (qsizetype n = 0; n < entier.size(); n += 97) {
      {
        QFile f(chemin);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(entier.left(n));
      }
      if (ai.IO_LoadImage(chemin, image)) {
        // Only a JPEG whose image data stop early loads, and it says so.
        EXPECT_FALSE(ai.Incomplet().isEmpty()) << nom << " coupé à " << n;
        EXPECT_EQ(ai.Info_Width(image), 96) << nom << " coupé à " << n;
        ++incompletes;
      } else {
        const QString e = ai.Error_GetLast();
        EXPECT_TRUE(e.contains(QStringLiteral("fichier")) || e.contains(QStringLiteral("image")))
            << nom << " coupé à " << n << " : " << e.toStdString();
        EXPECT_FALSE(e.contains("Image could not")) << nom << " coupé à " << n << " : " << e.toStdString();
        ++refus;
      }
    }
  }
  EXPECT_GT(refus, 50);
  EXPECT_GT(incompletes, 3);
}

}  // namespace
}  // namespace tg
