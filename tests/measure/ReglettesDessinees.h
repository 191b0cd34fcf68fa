#pragma once
// Stage micrometers drawn by the tests, with their true period and direction:
// graduations computed pixel by pixel (a line of given width under a Gaussian
// blur, integrated over the pixel), so that the period is known to far below
// what the detection must reach; the lighting, the numbers, the specimen,
// the noise and the JPEG on top. And pictures that hold no ruling.
#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <random>

#include "measure/Reglette.h"

namespace tg::test {

struct DessinReglette {
  int largeur = 1024, hauteur = 768;
  double periode = 20;     // pixels between graduations
  double angle = 0;        // across the graduations, degrees, counter-clockwise as seen
  double cx = -1, cy = -1; // the ruling's centre; the picture's centre when negative
  int graduations = 0;     // 0: as many as fill 60 % of the shorter side, 9 at least
  double epaisseur = 0;    // of a graduation, pixels; 0: 12 % of the period, 1.2 at least
  double longueur = 0;     // of the short graduations; 0: 2.5 periods, between 24 and 200 pixels
  int longues = 5;         // 5: every 5th 1.5 times as long, every 10th twice; 10: every
                           // 10th twice; 0: all alike
  double flou = 0.5;       // Gaussian sigma, pixels
  double bruit = 2;        // sigma, grey levels
  int qualiteJpeg = 0;     // 0: no JPEG
  bool fondNoir = false;   // light graduations on black (dark field)
  bool eclairageInegal = false;
  bool specimen = false;   // a cell over a third of the ruling
  bool chiffres = true;    // 0, 100, 200 ... every 10 graduations
  bool ligneDeBase = true; // the line along the axis at the graduations' foot
  bool couleur = false;    // RGB32 rather than grey
  unsigned graine = 1;
};

inline double Couverture(double d, double largeur, double sigma) {
  const double k = 1.0 / (std::sqrt(2.0) * sigma);
  return 0.5 * (std::erf((d + largeur / 2) * k) - std::erf((d - largeur / 2) * k));
}

inline QImage Encoder(const QImage& image, int qualite) {
  QByteArray octets;
  QBuffer tampon(&octets);
  tampon.open(QIODevice::WriteOnly);
  image.save(&tampon, "JPG", qualite);
  QImage relue;
  relue.loadFromData(octets, "JPG");
  return relue.convertToFormat(image.format());
}

inline void Bruiter(QImage& img, double sigma, std::mt19937& alea) {
  if (sigma <= 0) return;
  std::normal_distribution<double> n(0, sigma);
  for (int y = 0; y < img.height(); ++y) {
    if (img.format() == QImage::Format_Grayscale8) {
      uchar* l = img.scanLine(y);
      for (int x = 0; x < img.width(); ++x) l[x] = uchar(std::clamp(int(std::lround(l[x] + n(alea))), 0, 255));
    } else {
      auto* l = reinterpret_cast<QRgb*>(img.scanLine(y));
      for (int x = 0; x < img.width(); ++x) {
        const double e = n(alea);
        auto c = [&](int v) { return std::clamp(int(std::lround(v + e)), 0, 255); };
        l[x] = qRgb(c(qRed(l[x])), c(qGreen(l[x])), c(qBlue(l[x])));
      }
    }
  }
}

inline int NombreGraduations(const DessinReglette& d) {
  if (d.graduations > 0) return d.graduations;
  return std::max(9, int(0.6 * std::min(d.largeur, d.hauteur) / d.periode) + 1);
}

inline QImage Dessiner(const DessinReglette& d) {
  std::mt19937 alea(d.graine);
  const int W = d.largeur, H = d.hauteur;
  const double cx = d.cx >= 0 ? d.cx : W / 2.0, cy = d.cy >= 0 ? d.cy : H / 2.0;
  const int N = NombreGraduations(d);
  const double p = d.periode;
  const double e = d.epaisseur > 0 ? d.epaisseur : std::max(1.2, 0.12 * p);
  const double court = d.longueur > 0 ? d.longueur : std::clamp(2.5 * p, 24.0, 200.0);
  const double sigma = std::sqrt(d.flou * d.flou + 1.0 / 12);  // with the pixel's own width
  // y down: the axis at -angle.
  const double a = -d.angle * M_PI / 180, c = std::cos(a), s = std::sin(a);
  const double s0 = -(N - 1) * p / 2;  // first graduation, from the centre
  auto longueur = [&](int j) {
    if (d.longues == 5 && j % 10 == 0) return 2 * court;
    if (d.longues == 5 && j % 5 == 0) return 1.5 * court;
    if (d.longues == 10 && j % 10 == 0) return 2 * court;
    return court;
  };
  const double lMax = 2 * court;
  std::vector<double> ligne(static_cast<size_t>(W));
  QImage img(W, H, QImage::Format_Grayscale8);
  for (int y = 0; y < H; ++y) {
    for (int x = 0; x < W; ++x) {
      const double X = x - cx, Y = y - cy;
      const double u = X * c + Y * s, t = -X * s + Y * c;
      double couverture = 0;
      if (t > -lMax - 6 * sigma && t < e + 6 * sigma) {
        const int j = int(std::lround((u - s0) / p));
        for (int k = j - 1; k <= j + 1; ++k) {
          if (k < 0 || k >= N) continue;
          const double l = longueur(k);
          // From the base line (t = 0) up to -l.
          const double le = Couverture(u - s0 - k * p, e, sigma) * Couverture(t + l / 2 - e / 2, l + e, sigma);
          couverture = std::max(couverture, le);
        }
        // The base line along the axis.
        if (d.ligneDeBase)
          couverture = std::max(couverture, Couverture(t, e, sigma) * Couverture(u, (N - 1) * p + e, sigma));
      }
      double fond = d.fondNoir ? 18 : 215;
      if (d.eclairageInegal) {
        const double r2 = (X * X + Y * Y) / (0.25 * (double(W) * W + double(H) * H));
        fond *= (0.55 + 0.45 * double(x) / W) * (1 - 0.35 * r2);
      }
      const double v = d.fondNoir ? fond + 200 * couverture : fond * (1 - 0.8 * couverture);
      ligne[size_t(x)] = v;
    }
    uchar* l = img.scanLine(y);
    for (int x = 0; x < W; ++x) l[x] = uchar(std::clamp(int(std::lround(ligne[size_t(x)])), 0, 255));
  }
  if (d.couleur) img = img.convertToFormat(QImage::Format_RGB32);

  QPainter peintre(&img);
  peintre.setRenderHint(QPainter::Antialiasing);
  if (d.chiffres) {
    QFont police(QStringLiteral("Liberation Sans"));
    police.setPixelSize(std::max(10, int(std::min(1.2 * p, court))));
    peintre.setFont(police);
    peintre.setPen(d.fondNoir ? QColor(220, 220, 220) : QColor(40, 40, 40));
    for (int j = 0; j < N; j += 10) {
      peintre.save();
      // Under the base line, along the axis.
      const double u = s0 + j * p, t = e + 0.2 * court;
      peintre.translate(cx + u * c - t * s, cy + u * s + t * c);
      peintre.rotate(-d.angle);
      peintre.drawText(QRectF(-3 * p, 0, 6 * p, 1.5 * police.pixelSize()), Qt::AlignHCenter | Qt::AlignTop,
                       QString::number(j * 10));
      peintre.restore();
    }
  }
  if (d.specimen) {
    // A cell with granules over the middle third of the ruling, partly
    // transparent as a stained cell is.
    const double u = s0 + (N - 1) * p / 2, rayon = (N - 1) * p / 6;
    const QPointF centre(cx + u * c - (-0.5 * court) * s, cy + u * s + (-0.5 * court) * c);
    peintre.setPen(QPen(QColor(60, 90, 50, 220), std::max(1.0, 0.08 * rayon)));
    QRadialGradient g(centre, rayon);
    g.setColorAt(0, QColor(150, 190, 110, 200));
    g.setColorAt(0.8, QColor(90, 140, 70, 180));
    g.setColorAt(1, QColor(60, 90, 50, 230));
    peintre.setBrush(g);
    peintre.drawEllipse(centre, rayon, std::max(0.7 * rayon, court));
    peintre.setPen(Qt::NoPen);
    peintre.setBrush(QColor(40, 110, 40, 200));
    std::uniform_real_distribution<double> r(0, 1);
    for (int k = 0; k < 40; ++k) {
      const double an = r(alea) * 2 * M_PI, dist = r(alea) * 0.8 * rayon;
      peintre.drawEllipse(centre + QPointF(dist * std::cos(an), dist * std::sin(an) * 0.7), 0.04 * rayon, 0.03 * rayon);
    }
  }
  peintre.end();
  Bruiter(img, d.bruit, alea);
  if (d.qualiteJpeg > 0) img = Encoder(img, d.qualiteJpeg);
  return img;
}

inline VuePixels Vue(const QImage& img) {
  VuePixels v;
  v.pixels = img.constBits();
  v.largeur = img.width();
  v.hauteur = img.height();
  v.pas = img.bytesPerLine();
  v.format = img.format() == QImage::Format_Grayscale8 ? FormatPixels::Gris8 : FormatPixels::BGRA32;
  return v;
}

// Pictures with no ruling: noise, cells, textures, lines not evenly spaced,
// the striae of a diatom finer than any graduation. `genre` 0 to 19.
inline QImage Leurre(int genre, int W = 1024, int H = 768) {
  std::mt19937 alea(1000u + unsigned(genre));
  std::uniform_real_distribution<double> r(0, 1);
  std::normal_distribution<double> n(0, 1);
  QImage img(W, H, QImage::Format_RGB32);
  img.fill(QColor(214, 206, 184));
  QPainter p(&img);
  p.setRenderHint(QPainter::Antialiasing);
  // A field of smooth noise: random values on a coarse grid, bilinear.
  auto bruitLisse = [&](double pasX, double pasY, double ampl) {
    const int gx = int(W / pasX) + 2, gy = int(H / pasY) + 2;
    std::vector<double> g(size_t(gx) * size_t(gy));
    for (double& v : g) v = n(alea) * ampl;
    for (int y = 0; y < H; ++y) {
      auto* l = reinterpret_cast<QRgb*>(img.scanLine(y));
      const double fy = y / pasY;
      const int iy = int(fy);
      const double ty = fy - iy;
      for (int x = 0; x < W; ++x) {
        const double fx = x / pasX;
        const int ix = int(fx);
        const double tx = fx - ix;
        auto G = [&](int i, int j) { return g[size_t(j) * size_t(gx) + size_t(i)]; };
        const double v = (G(ix, iy) * (1 - tx) + G(ix + 1, iy) * tx) * (1 - ty) +
                         (G(ix, iy + 1) * (1 - tx) + G(ix + 1, iy + 1) * tx) * ty;
        auto c = [&](int k) { return std::clamp(int(std::lround(k + v)), 0, 255); };
        l[x] = qRgb(c(qRed(l[x])), c(qGreen(l[x])), c(qBlue(l[x])));
      }
    }
  };
  auto cellules = [&](int nombre, double rMin, double rMax) {
    for (int i = 0; i < nombre; ++i) {
      const double ray = rMin + r(alea) * (rMax - rMin);
      const QPointF c(r(alea) * W, r(alea) * H);
      QRadialGradient g(c, ray);
      g.setColorAt(0, QColor(150, 190, 110, 230));
      g.setColorAt(1, QColor(60, 90, 50, 255));
      p.setPen(QPen(QColor(50, 70, 40), 1.5));
      p.setBrush(g);
      p.drawEllipse(c, ray, ray * (0.7 + 0.3 * r(alea)));
      p.setBrush(QColor(70, 40, 90, 200));
      p.setPen(Qt::NoPen);
      p.drawEllipse(c, 0.3 * ray, 0.25 * ray);
    }
  };
  // Dark lines across the picture at the given positions along x, turned.
  auto traits = [&](const std::vector<double>& positions, double angle, double largeur) {
    p.save();
    p.translate(W / 2.0, H / 2.0);
    p.rotate(angle);
    p.setPen(QPen(QColor(30, 30, 40), largeur, Qt::SolidLine, Qt::FlatCap));
    for (double x : positions) p.drawLine(QPointF(x - W / 2.0, -H), QPointF(x - W / 2.0, H));
    p.restore();
  };
  std::vector<double> pos;
  switch (genre) {
    case 0: break;  // sensor noise alone, below
    case 1: img.fill(QColor(128, 128, 128)); break;
    case 2: p.end(); bruitLisse(3, 3, 25); p.begin(&img); break;
    case 3: p.end(); bruitLisse(12, 12, 40); p.begin(&img); break;
    case 4: p.end(); bruitLisse(40, 40, 50); bruitLisse(4, 4, 10); p.begin(&img); break;
    case 5: cellules(25, 20, 60); break;
    case 6: cellules(200, 8, 20); break;
    case 7: cellules(8, 80, 160); break;
    case 8: p.end(); bruitLisse(60, 3, 35); p.begin(&img); break;  // grain of wood
    case 9: p.end(); bruitLisse(2, 30, 35); bruitLisse(25, 25, 20); p.begin(&img); break;
    case 10:  // lines with random gaps between 10 and 40 pixels
      for (double x = 20; x < W; x += 10 + 30 * r(alea)) pos.push_back(x);
      traits(pos, 0, 2);
      break;
    case 11:  // gaps growing by 6 % from one line to the next
      for (double x = 20, g = 8; x < W; x += g, g *= 1.06) pos.push_back(x);
      traits(pos, 20, 2);
      break;
    case 12:  // lines a third of a gap away from a regular place, at random
      for (int k = 0; k < 40; ++k) pos.push_back(40 + 24.0 * k + 8 * (2 * r(alea) - 1));
      traits(pos, -35, 2.5);
      break;
    case 13:  // lines of every direction
      p.setPen(QPen(QColor(30, 30, 40), 2));
      for (int k = 0; k < 60; ++k) {
        const QPointF a(r(alea) * W, r(alea) * H);
        const double an = r(alea) * M_PI, l = 40 + 200 * r(alea);
        p.drawLine(a, a + QPointF(l * std::cos(an), l * std::sin(an)));
      }
      break;
    case 14:  // gaps halving then doubling, as a chirp across the picture
      for (double x = 10; x < W; x += 6 + 40 * std::abs(std::sin(x / 180.0))) pos.push_back(x);
      traits(pos, 90, 2);
      break;
    case 15:  // sand: dots at random
      p.setPen(Qt::NoPen);
      p.setBrush(QColor(60, 50, 40));
      for (int k = 0; k < 3000; ++k) p.drawEllipse(QPointF(r(alea) * W, r(alea) * H), 1.5, 1.5);
      break;
    case 16: {  // a lighting gradient
      QLinearGradient g(0, 0, W, H);
      g.setColorAt(0, QColor(40, 40, 40));
      g.setColorAt(1, QColor(250, 240, 220));
      p.fillRect(img.rect(), g);
      break;
    }
    case 17:  // fibres: long random curves
      for (int k = 0; k < 30; ++k) {
        QPainterPath chemin(QPointF(r(alea) * W, r(alea) * H));
        for (int i = 0; i < 4; ++i)
          chemin.quadTo(QPointF(r(alea) * W, r(alea) * H), QPointF(r(alea) * W, r(alea) * H));
        p.setPen(QPen(QColor(80, 60, 40), 1 + 3 * r(alea)));
        p.setBrush(Qt::NoBrush);
        p.drawPath(chemin);
      }
      break;
    case 18: {  // a diatom whose striae (4.4 pixels) are finer than any graduation
      p.translate(W / 2.0, H / 2.0);
      p.rotate(-18);
      QPainterPath valve;
      valve.addEllipse(QPointF(0, 0), 220, 44);
      p.setBrush(QColor(200, 178, 120));
      p.setPen(QPen(QColor(92, 70, 40), 3));
      p.drawPath(valve);
      p.setClipPath(valve);
      p.setPen(QPen(QColor(120, 96, 58), 1.4));
      for (double x = -220; x <= 220; x += 4.4) p.drawLine(QPointF(x, -44), QPointF(x, 44));
      p.resetTransform();
      p.setClipping(false);
      cellules(6, 30, 70);
      break;
    }
    case 19:  // cells and fibres with strong uneven lighting
    default: {
      QRadialGradient g(W * 0.3, H * 0.4, W * 0.8);
      g.setColorAt(0, QColor(250, 245, 230));
      g.setColorAt(1, QColor(60, 55, 50));
      p.fillRect(img.rect(), g);
      cellules(15, 30, 90);
      p.setPen(QPen(QColor(80, 60, 40), 2));
      for (int k = 0; k < 10; ++k) p.drawLine(QPointF(r(alea) * W, r(alea) * H), QPointF(r(alea) * W, r(alea) * H));
      break;
    }
  }
  p.end();
  Bruiter(img, 3, alea);
  return Encoder(img, 85);
}

}  // namespace tg::test
