#pragma once
// Pictures made by the tests: a real JPEG from Qt's encoder, segments and
// TIFF structures written byte by byte.
#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QPainter>
#include <initializer_list>

namespace tg::meta::test {

// A w x h JPEG with a gradient, as Qt's encoder writes it (SOI, APP0 JFIF,
// tables, SOF, SOS, scan, EOI).
inline QByteArray JpegQt(int w = 32, int h = 24) {
  QImage image(w, h, QImage::Format_RGB32);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) image.setPixel(x, y, qRgb(x * 255 / w, y * 255 / h, (x * y) % 256));
  QByteArray octets;
  QBuffer tampon(&octets);
  tampon.open(QIODevice::WriteOnly);
  image.save(&tampon, "JPEG", 90);
  return octets;
}

// A segment: FF code, big-endian length (data + 2), data.
inline QByteArray Segment(uint8_t code, const QByteArray& donnees) {
  QByteArray s;
  s.append(char(0xFF));
  s.append(char(code));
  const int n = donnees.size() + 2;
  s.append(char(n >> 8));
  s.append(char(n & 0xFF));
  s.append(donnees);
  return s;
}

// The JPEG with `segments` put right after SOI.
inline QByteArray Inserer(const QByteArray& jpeg, std::initializer_list<QByteArray> segments) {
  QByteArray r = jpeg.left(2);
  for (const QByteArray& s : segments) r.append(s);
  r.append(jpeg.mid(2));
  return r;
}

// Little helpers for hand-written TIFF structures.
inline QByteArray U16(bool mm, uint16_t v) {
  QByteArray b(2, '\0');
  b[mm ? 0 : 1] = char(v >> 8);
  b[mm ? 1 : 0] = char(v & 0xFF);
  return b;
}
inline QByteArray U32(bool mm, uint32_t v) {
  return mm ? U16(true, uint16_t(v >> 16)) + U16(true, uint16_t(v))
            : U16(false, uint16_t(v)) + U16(false, uint16_t(v >> 16));
}
// One 12-byte entry; `valeur` is the raw 4-byte field, already in file order.
inline QByteArray Entree(bool mm, uint16_t tag, uint16_t format, uint32_t nombre,
                         const QByteArray& valeur) {
  QByteArray v = valeur.left(4);
  v.resize(4, '\0');
  return U16(mm, tag) + U16(mm, format) + U32(mm, nombre) + v;
}
inline QByteArray EnTete(bool mm) {
  return mm ? QByteArray("MM\0*", 4) + U32(true, 8) : QByteArray("II*\0", 4) + U32(false, 8);
}

// A 1 x 1 GIF89a; with `global`, a colour table of 2 entries; `blocs` goes
// in front of the image.
inline QByteArray Gif(bool global, const QByteArray& blocs = {}) {
  QByteArray g("GIF89a\x01\x00\x01\x00", 10);
  g.append(global ? char(0x80) : char(0x00));
  g.append("\x00\x00", 2);
  if (global) g.append(QByteArray("\x00\x00\x00\xFF\xFF\xFF", 6));
  g.append(blocs);
  g.append(QByteArray("\x2C\x00\x00\x00\x00\x01\x00\x01\x00\x00", 10));
  g.append(QByteArray("\x02\x02\x44\x01\x00", 5));
  g.append(char(0x3B));
  return g;
}

// One comment extension of a single sub-block (up to 255 bytes).
inline QByteArray ExtensionCommentaire(const QByteArray& texte) {
  return QByteArray("\x21\xFE", 2) + char(texte.size()) + texte + char(0);
}

}  // namespace tg::meta::test
