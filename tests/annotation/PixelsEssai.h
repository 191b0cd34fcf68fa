#pragma once
// Counting the pixels of one colour in a picture, for the annotation tests.
#include <QImage>
#include <QRect>

namespace tg::test {

// The pixels of colour `c` (alpha ignored) in `zone` of `img`.
inline int Compter(const QImage& img, QRect zone, QRgb c) {
  int n = 0;
  zone &= img.rect();
  for (int y = zone.top(); y <= zone.bottom(); ++y)
    for (int x = zone.left(); x <= zone.right(); ++x) n += (img.pixel(x, y) | 0xFF000000) == c;
  return n;
}

}  // namespace tg::test
