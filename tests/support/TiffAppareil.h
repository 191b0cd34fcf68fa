#pragma once
// A TIFF laid out as cameras and their software write them: IFD0 with the
// picture's strip, resolution, Make and Model, an IPTC block, an ICC profile
// and the pointers to an EXIF directory (FocalLength, DateTimeOriginal) and a
// GPS directory. The ICC profile beside the EXIF directory is what made the
// imaging library read freed memory.
#include <QByteArray>
#include <vector>

namespace tg::test {

namespace tiff {
inline QByteArray U16(uint16_t v) { return QByteArray(1, char(v & 0xFF)) + char(v >> 8); }
inline QByteArray U32(uint32_t v) { return U16(uint16_t(v)) + U16(uint16_t(v >> 16)); }
struct Val {
  uint16_t tag, format;
  uint32_t nombre;
  QByteArray octets;  // little-endian
};
// A directory at `p`, its long values behind it.
inline QByteArray Ifd(const std::vector<Val>& vals, uint32_t p) {
  QByteArray entrees = U16(uint16_t(vals.size())), donnees;
  const uint32_t debut = p + 2 + 12 * uint32_t(vals.size()) + 4;
  for (const Val& v : vals) {
    QByteArray champ = v.octets;
    if (champ.size() > 4) {
      champ = U32(debut + uint32_t(donnees.size()));
      donnees += v.octets;
      if (donnees.size() % 2) donnees += '\0';
    }
    champ.resize(4, '\0');
    entrees += U16(v.tag) + U16(v.format) + U32(v.nombre) + champ;
  }
  return entrees + U32(0) + donnees;
}
}  // namespace tiff

// `largeur` x `hauteur` RGB pixels, a gradient.
inline QByteArray TiffAppareil(int largeur = 48, int hauteur = 32) {
  using namespace tiff;
  QByteArray pixels;
  for (int y = 0; y < hauteur; ++y)
    for (int x = 0; x < largeur; ++x) pixels += QByteArray(1, char(x * 5)) + char(y * 7) + char(100);
  QByteArray icc(128, '\0');
  icc.replace(0, 4, QByteArray("\0\0\0\x84", 4));
  icc.replace(12, 12, "mntrRGB XYZ ");
  icc.replace(36, 4, "acsp");
  icc += QByteArray(4, '\0');
  const QByteArray iptc = QByteArray("\x1C\x02\x00\x00\x02\x00\x04", 7) + QByteArray("\x1C\x02\x19\x00\x06pollen", 11) +
                          QByteArray(2, '\0');  // to a whole number of LONGs
  const uint32_t exif = 1000, gps = 1200, donnees = 1400;
  QByteArray t = QByteArray("II*\0", 4) + U32(8);
  t += Ifd({{0x0100, 3, 1, U16(uint16_t(largeur))},
            {0x0101, 3, 1, U16(uint16_t(hauteur))},
            {0x0102, 3, 3, U16(8) + U16(8) + U16(8)},
            {0x0103, 3, 1, U16(1)},
            {0x0106, 3, 1, U16(2)},
            {0x010F, 2, 18, QByteArray("NIKON CORPORATION\0", 18)},
            {0x0110, 2, 10, QByteArray("NIKON D70\0", 10)},
            {0x0111, 4, 1, U32(donnees)},
            {0x0115, 3, 1, U16(3)},
            {0x0116, 3, 1, U16(uint16_t(hauteur))},
            {0x0117, 4, 1, U32(uint32_t(pixels.size()))},
            {0x011A, 5, 1, U32(300) + U32(1)},
            {0x011B, 5, 1, U32(300) + U32(1)},
            {0x0128, 3, 1, U16(2)},
            {0x0132, 2, 20, QByteArray("2024:01:02 03:04:05\0", 20)},
            {0x83BB, 4, uint32_t(iptc.size() / 4), iptc},
            {0x8769, 4, 1, U32(exif)},
            {0x8773, 7, uint32_t(icc.size()), icc},
            {0x8825, 4, 1, U32(gps)}},
           8);
  t.resize(exif, '\0');
  t += Ifd({{0x829A, 5, 1, U32(1) + U32(250)},
            {0x9003, 2, 20, QByteArray("2024:01:02 03:04:05\0", 20)},
            {0x920A, 5, 1, U32(75) + U32(10)}},
           exif);
  t.resize(gps, '\0');
  t += Ifd({{0x0000, 1, 4, QByteArray("\2\2\0\0", 4)}, {0x0001, 2, 2, QByteArray("N\0", 2)}}, gps);
  t.resize(donnees, '\0');
  return t + pixels;
}

}  // namespace tg::test
