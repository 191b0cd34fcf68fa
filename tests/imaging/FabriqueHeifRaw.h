#pragma once
// Phone and camera files made by the tests: HEIC and AVIF through libheif's
// encoder side (x265 and aom, as Debian builds it), with an EXIF block and a
// rotation; DNG written byte by byte in the layout of the DNG format (a
// Bayer mosaic of 16-bit samples, colour matrix, white balance as shot,
// default crop, orientation, EXIF directory) for LibRaw to demosaic.
//
// The scene is the same in both: the top-left quarter bright red, the rest a
// dark blue grey, so that a turn or a mirror shows where the quarter lands.
#include <libheif/heif.h>
#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

#include <QByteArray>
#include <QString>
#include <memory>
#include <vector>

#include "tests/support/Octets.h"
#include "tests/support/TiffAppareil.h"

namespace tg::test {

struct ExifPhoto {
  QByteArray modele = "PHONE-X1";
  uint32_t focaleNum = 426, focaleDen = 100;  // 4.26 mm
  uint32_t zoomNum = 0, zoomDen = 0;          // DigitalZoomRatio; none when 0/0
  QByteArray date = "2024:05:06 07:08:09";
  uint32_t largeurJpeg = 0, hauteurJpeg = 0;  // PixelX/YDimension; none when 0
};

// The EXIF block of a photo: a little-endian TIFF header, IFD0 with Make,
// Model and DateTime, an EXIF directory with FocalLength, DateTimeOriginal
// and, when set, DigitalZoomRatio and PixelX/YDimension.
inline QByteArray BlocExif(const ExifPhoto& e) {
  using namespace tiff;
  const uint32_t sous = 200;
  const QByteArray date = e.date + '\0';
  const QByteArray modele = e.modele + '\0';
  QByteArray t = QByteArray("II*\0", 4) + U32(8);
  t += Ifd({{0x010F, 2, 5, QByteArray("Test\0", 5)},
            {0x0110, 2, uint32_t(modele.size()), modele},
            {0x0132, 2, uint32_t(date.size()), date},
            {0x8769, 4, 1, U32(sous)}},
           8);
  t.resize(sous, '\0');
  std::vector<Val> v = {{0x9003, 2, uint32_t(date.size()), date},
                        {0x920A, 5, 1, U32(e.focaleNum) + U32(e.focaleDen)}};
  if (e.largeurJpeg > 0) {
    v.push_back({0xA002, 4, 1, U32(e.largeurJpeg)});
    v.push_back({0xA003, 4, 1, U32(e.hauteurJpeg)});
  }
  if (e.zoomDen > 0) v.push_back({0xA404, 5, 1, U32(e.zoomNum) + U32(e.zoomDen)});
  t += Ifd(v, sous);
  return t;
}

// Red in the top-left quarter of a largeur x hauteur scene.
inline bool QuartRouge(int x, int y, int largeur, int hauteur) { return x < largeur / 2 && y < hauteur / 2; }

struct OptionsHeif {
  heif_compression_format compression = heif_compression_HEVC;
  heif_orientation orientation = heif_orientation_normal;
  int profondeur = 8;  // bits per channel: 8, or 10 for HEIC (aom stops on an assertion at 10)
  bool vignette = false;
  QByteArray exif;     // a TIFF block; none when empty
};

// Writes a largeur x hauteur picture (as stored, before its rotation). False,
// with the reason, when libheif has no encoder for the format.
inline bool EcrireHeif(const QString& chemin, int largeur, int hauteur, const OptionsHeif& o, QString& erreur) {
#if defined(__SANITIZE_ADDRESS__)
  // x265 keeps a few buffers of its own until the process ends.
  struct SansFuites {
    SansFuites() { __lsan_disable(); }
    ~SansFuites() { __lsan_enable(); }
  } sansFuites;
#endif
  std::unique_ptr<heif_context, void (*)(heif_context*)> ctx(heif_context_alloc(), heif_context_free);
  heif_encoder* enc = nullptr;
  heif_error e = heif_context_get_encoder_for_format(ctx.get(), o.compression, &enc);
  if (e.code != heif_error_Ok) {
    erreur = QString::fromUtf8(e.message);
    return false;
  }
  std::unique_ptr<heif_encoder, void (*)(heif_encoder*)> encodeur(enc, heif_encoder_release);
  heif_encoder_set_lossy_quality(enc, 90);
  heif_image* img = nullptr;
  const bool hdr = o.profondeur > 8;
  heif_image_create(largeur, hauteur, heif_colorspace_RGB,
                    hdr ? heif_chroma_interleaved_RRGGBB_LE : heif_chroma_interleaved_RGB, &img);
  std::unique_ptr<heif_image, void (*)(const heif_image*)> image(img, heif_image_release);
  heif_image_add_plane(img, heif_channel_interleaved, largeur, hauteur, o.profondeur);
  int pas = 0;
  uint8_t* plan = heif_image_get_plane(img, heif_channel_interleaved, &pas);
  const int maximum = (1 << o.profondeur) - 1;
  for (int y = 0; y < hauteur; ++y)
    for (int x = 0; x < largeur; ++x) {
      const bool rouge = QuartRouge(x, y, largeur, hauteur);
      const int c[3] = {rouge ? maximum : maximum / 5, rouge ? 0 : maximum / 5, rouge ? 0 : maximum * 2 / 5};
      for (int k = 0; k < 3; ++k) {
        if (hdr) {
          uint8_t* p = plan + size_t(y) * pas + size_t(x) * 6 + size_t(k) * 2;
          p[0] = uint8_t(c[k] & 0xFF);
          p[1] = uint8_t(c[k] >> 8);
        } else {
          plan[size_t(y) * pas + size_t(x) * 3 + size_t(k)] = uint8_t(c[k]);
        }
      }
    }
  std::unique_ptr<heif_encoding_options, void (*)(heif_encoding_options*)> options(heif_encoding_options_alloc(),
                                                                                   heif_encoding_options_free);
  options->image_orientation = o.orientation;
  heif_image_handle* h = nullptr;
  e = heif_context_encode_image(ctx.get(), img, enc, options.get(), &h);
  if (e.code != heif_error_Ok) {
    erreur = QString::fromUtf8(e.message);
    return false;
  }
  std::unique_ptr<heif_image_handle, void (*)(const heif_image_handle*)> poignee(h, heif_image_handle_release);
  if (o.vignette) {
    heif_image_handle* v = nullptr;
    heif_context_encode_thumbnail(ctx.get(), img, h, enc, options.get(), 32, &v);
    if (v != nullptr) heif_image_handle_release(v);
  }
  if (!o.exif.isEmpty()) heif_context_add_exif_metadata(ctx.get(), h, o.exif.constData(), int(o.exif.size()));
  e = heif_context_write_to_file(ctx.get(), chemin.toLocal8Bit().constData());
  if (e.code != heif_error_Ok) {
    erreur = QString::fromUtf8(e.message);
    return false;
  }
  return true;
}

struct OptionsDng {
  int orientation = 1;  // TIFF Orientation
  // DefaultCropOrigin and DefaultCropSize; none when the size is 0.
  int cropX = 0, cropY = 0, cropLargeur = 0, cropHauteur = 0;
  ExifPhoto exif{"CAMERA-R1", 5000, 100};
};

// A largeur x hauteur RGGB mosaic of 16-bit samples (12 bits used), in IFD0,
// as some cameras' own DNG files hold it.
inline QByteArray Dng(int largeur, int hauteur, const OptionsDng& o) {
  using namespace tiff;
  QByteArray pixels;
  pixels.reserve(largeur * hauteur * 2);
  for (int y = 0; y < hauteur; ++y)
    for (int x = 0; x < largeur; ++x) {
      const bool rouge = QuartRouge(x, y, largeur, hauteur);
      const int site = (y % 2) * 2 + (x % 2);  // 0 R, 1 and 2 G, 3 B
      int v = site == 0 ? (rouge ? 3800 : 500) : site == 3 ? (rouge ? 300 : 1100) : (rouge ? 300 : 600);
      pixels += U16(uint16_t(v + 256));  // black level 256
    }
  auto srat = [](int n, int d) { return U32(uint32_t(n)) + U32(uint32_t(d)); };
  // XYZ to camera: an sRGB-like camera.
  const QByteArray matrice = srat(3240, 1000) + srat(-1537, 1000) + srat(-499, 1000) + srat(-969, 1000) +
                             srat(1876, 1000) + srat(42, 1000) + srat(56, 1000) + srat(-204, 1000) +
                             srat(1057, 1000);
  const QByteArray modele = o.exif.modele + '\0';
  const QByteArray date = o.exif.date + '\0';
  const uint32_t exif = 2000, donnees = 4096;
  std::vector<Val> v = {
      {0x00FE, 4, 1, U32(0)},
      {0x0100, 4, 1, U32(uint32_t(largeur))},
      {0x0101, 4, 1, U32(uint32_t(hauteur))},
      {0x0102, 3, 1, U16(16)},
      {0x0103, 3, 1, U16(1)},
      {0x0106, 3, 1, U16(32803)},  // CFA
      {0x010F, 2, 5, QByteArray("Test\0", 5)},
      {0x0110, 2, uint32_t(modele.size()), modele},
      {0x0111, 4, 1, U32(donnees)},
      {0x0112, 3, 1, U16(uint16_t(o.orientation))},
      {0x0115, 3, 1, U16(1)},
      {0x0116, 4, 1, U32(uint32_t(hauteur))},
      {0x0117, 4, 1, U32(uint32_t(pixels.size()))},
      {0x011C, 3, 1, U16(1)},
      {0x0132, 2, uint32_t(date.size()), date},
      {0x828D, 3, 2, U16(2) + U16(2)},
      {0x828E, 1, 4, QByteArray("\0\1\1\2", 4)},
      {0x8769, 4, 1, U32(exif)},
      {0xC612, 1, 4, QByteArray("\1\4\0\0", 4)},
      {0xC614, 2, uint32_t(modele.size()), modele},
      {0xC61A, 3, 1, U16(256)},
      {0xC61D, 3, 1, U16(4095 + 256)},
  };
  if (o.cropLargeur > 0) {
    v.push_back({0xC61F, 4, 2, U32(uint32_t(o.cropX)) + U32(uint32_t(o.cropY))});
    v.push_back({0xC620, 4, 2, U32(uint32_t(o.cropLargeur)) + U32(uint32_t(o.cropHauteur))});
  }
  v.push_back({0xC621, 10, 9, matrice});
  v.push_back({0xC628, 5, 3, U32(1) + U32(2) + U32(1) + U32(1) + U32(1) + U32(2)});
  v.push_back({0xC65A, 3, 1, U16(21)});  // D65
  QByteArray t = QByteArray("II*\0", 4) + U32(8) + Ifd(v, 8);
  t.resize(exif, '\0');
  std::vector<Val> e = {{0x9003, 2, uint32_t(date.size()), date},
                        {0x920A, 5, 1, U32(o.exif.focaleNum) + U32(o.exif.focaleDen)}};
  if (o.exif.largeurJpeg > 0) {
    e.push_back({0xA002, 4, 1, U32(o.exif.largeurJpeg)});
    e.push_back({0xA003, 4, 1, U32(o.exif.hauteurJpeg)});
  }
  t += Ifd(e, exif);
  t.resize(donnees, '\0');
  return t + pixels;
}

}  // namespace tg::test
