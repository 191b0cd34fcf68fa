// echantillon SORTIE.jpg [--largeur L] [--hauteur H] [--pix P --mic M]
//                        [--fabricant T] [--modele T] [--focale MM]
// A demonstration photomicrograph made by the program itself: a diatom and
// a few round cells in bright field beside a stage micrometer graduated
// every 10 microns, at P pixels for M microns (400 for 100 unless told),
// with the EXIF of a camera (maker, model, focal length, dates).
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QtMath>

#include "cli/Commandes.h"
#include "cli/Console.h"
#include "metadata/CExifJPEG.h"
#include "metadata/CJPEG.h"
#include "metadata/Octets.h"

namespace tg::cli {
namespace {

const char* const kUsage =
    "echantillon SORTIE.jpg [--largeur 2272] [--hauteur 1704] [--pix 400 --mic 100] "
    "[--fabricant T] [--modele T] [--focale MM]   (photo de démonstration avec micromètre)";

struct Echantillon {
  int largeur = 2272, hauteur = 1704;
  double pixParMicron = 4.0;
};

void Dessiner(QImage& image, const Echantillon& e) {
  const double u = e.pixParMicron;  // pixels per micron
  const int W = image.width(), H = image.height();
  QPainter p(&image);
  p.setRenderHint(QPainter::Antialiasing);

  // Bright field: a warm centre darkening towards the corners.
  QRadialGradient fond(W / 2.0, H / 2.0, std::hypot(W, H) / 2.0);
  fond.setColorAt(0, QColor(238, 232, 214));
  fond.setColorAt(0.7, QColor(214, 206, 184));
  fond.setColorAt(1, QColor(150, 142, 124));
  p.fillRect(image.rect(), fond);

  QRandomGenerator alea(20081102);
  // Round green cells with chloroplast grains.
  for (int i = 0; i < 7; ++i) {
    const double r = (10 + alea.bounded(12)) * u;
    const QPointF c(W * (0.12 + 0.76 * alea.generateDouble()), H * (0.08 + 0.5 * alea.generateDouble()));
    QRadialGradient g(c, r);
    g.setColorAt(0, QColor(150, 190, 110, 230));
    g.setColorAt(0.85, QColor(90, 140, 70, 230));
    g.setColorAt(1, QColor(60, 90, 50, 255));
    p.setPen(QPen(QColor(50, 70, 40), 0.6 * u));
    p.setBrush(g);
    p.drawEllipse(c, r, r);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(40, 110, 40, 200));
    for (int k = 0; k < 12; ++k) {
      const double a = alea.generateDouble() * 2 * M_PI, d = alea.generateDouble() * 0.7 * r;
      p.drawEllipse(c + QPointF(d * std::cos(a), d * std::sin(a)), 1.4 * u, 1.0 * u);
    }
  }

  // A pennate diatom, 110 x 22 microns, turned, with its raphe and striae.
  p.save();
  p.translate(W * 0.5, H * 0.36);
  p.rotate(-18);
  const double L = 110 * u / 2, l = 22 * u / 2;
  QPainterPath valve;
  valve.addEllipse(QPointF(0, 0), L, l);
  QLinearGradient g(0, -l, 0, l);
  g.setColorAt(0, QColor(176, 150, 96));
  g.setColorAt(0.5, QColor(214, 192, 140));
  g.setColorAt(1, QColor(160, 132, 82));
  p.setBrush(g);
  p.setPen(QPen(QColor(92, 70, 40), 0.8 * u));
  p.drawPath(valve);
  p.setClipPath(valve);
  p.setPen(QPen(QColor(120, 96, 58), 0.35 * u));
  for (double x = -L; x <= L; x += 1.1 * u) {
    p.drawLine(QPointF(x, -l), QPointF(x, -0.12 * l));
    p.drawLine(QPointF(x, 0.12 * l), QPointF(x, l));
  }
  p.setPen(QPen(QColor(80, 60, 34), 0.5 * u));
  p.drawLine(QPointF(-0.9 * L, 0), QPointF(-0.06 * L, 0));
  p.drawLine(QPointF(0.06 * L, 0), QPointF(0.9 * L, 0));
  p.drawEllipse(QPointF(0, 0), 0.04 * L, 0.12 * l);
  p.restore();

  // Stage micrometer: 300 microns in steps of 10, ticks of 50 and 100 longer.
  const double x0 = (W - 300 * u) / 2, y0 = H * 0.8;
  const QColor encre(28, 30, 44);
  p.setPen(QPen(encre, std::max(1.0, 0.5 * u), Qt::SolidLine, Qt::FlatCap));
  p.drawLine(QPointF(x0, y0), QPointF(x0 + 300 * u, y0));
  QFont police(QStringLiteral("Liberation Sans"));
  police.setPixelSize(int(8 * u));
  p.setFont(police);
  for (int k = 0; k <= 30; ++k) {
    const double x = x0 + k * 10 * u;
    const double h = (k % 10 == 0 ? 14 : k % 5 == 0 ? 10 : 6) * u;
    p.drawLine(QPointF(x, y0), QPointF(x, y0 - h));
    if (k % 10 == 0)
      p.drawText(QRectF(x - 20 * u, y0 + 2 * u, 40 * u, 10 * u), Qt::AlignHCenter | Qt::AlignTop,
                 QString::number(k * 10));
  }
  p.drawText(QRectF(x0 + 300 * u + 4 * u, y0 - 6 * u, 40 * u, 10 * u), Qt::AlignLeft, QStringLiteral("µm"));
  p.end();

  // Sensor noise, so that the JPEG weighs what a photo weighs.
  for (int y = 0; y < H; ++y) {
    auto* ligne = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < W; ++x) {
      const int n = int(alea.bounded(9)) - 4;
      const QRgb c = ligne[x];
      ligne[x] = qRgb(std::clamp(qRed(c) + n, 0, 255), std::clamp(qGreen(c) + n, 0, 255),
                      std::clamp(qBlue(c) + n, 0, 255));
    }
  }
}

// Tag values as the EXIF writer holds them: little-endian.
QByteArray U16(uint16_t v) {
  meta::EcrivainOctets e;
  e.u16le(v);
  return e.donnees();
}
QByteArray U32(uint32_t v) {
  meta::EcrivainOctets e;
  e.u32le(v);
  return e.donnees();
}
QByteArray Ascii(const QString& t) { return t.toLatin1() + '\0'; }
QByteArray Rationnel(uint32_t n, uint32_t d) { return U32(n) + U32(d); }

int Executer(const QStringList& arguments) {
  Echantillon e;
  QString sortie, fabricant = QStringLiteral("Demo"), modele = QStringLiteral("APN-Demo");
  double pix = 400, mic = 100, focale = 7.5;
  const auto usage = [] {
    Ligne(QLatin1String("Usage : tessellographe-cli ") + QString::fromUtf8(kUsage), stderr);
    return 2;
  };
  for (int i = 0; i < arguments.size(); ++i) {
    const QString& a = arguments[i];
    if (!a.startsWith(u"--")) {
      if (!sortie.isEmpty()) return usage();
      sortie = a;
      continue;
    }
    if (i + 1 >= arguments.size()) return usage();
    const QString v = arguments[++i];
    bool ok = true;
    if (a == u"--largeur") e.largeur = v.toInt(&ok);
    else if (a == u"--hauteur") e.hauteur = v.toInt(&ok);
    else if (a == u"--pix") pix = v.toDouble(&ok);
    else if (a == u"--mic") mic = v.toDouble(&ok);
    else if (a == u"--focale") focale = v.toDouble(&ok);
    else if (a == u"--fabricant") fabricant = v;
    else if (a == u"--modele") modele = v;
    else ok = false;
    if (!ok) return usage();
  }
  if (sortie.isEmpty() || e.largeur < 320 || e.hauteur < 240 || e.largeur > 12000 ||
      e.hauteur > 12000 || pix <= 0 || mic <= 0 || focale <= 0 || focale > 1000)
    return usage();
  e.pixParMicron = pix / mic;

  QImage image(e.largeur, e.hauteur, QImage::Format_RGB32);
  Dessiner(image, e);
  if (!image.save(sortie, "JPG", 92)) {
    Ligne("Erreur : impossible d'écrire " + sortie, stderr);
    return 3;
  }

  meta::CJPEG j;
  QString erreur;
  if (!j.ReadJPEG(sortie, &erreur) || j.EXIF() == nullptr) {
    Ligne("Erreur : " + erreur, stderr);
    return 3;
  }
  using meta::Repertoire;
  meta::CExifJPEG& x = *j.EXIF();
  x.alignType = meta::Ordre::Intel;
  const QByteArray date = Ascii(QStringLiteral("2008:03:02 10:15:00"));
  x.AddModifyTag(Repertoire::IFD0, 0x010F, meta::FmtAscii, Ascii(fabricant));
  x.AddModifyTag(Repertoire::IFD0, 0x0110, meta::FmtAscii, Ascii(modele));
  x.AddModifyTag(Repertoire::IFD0, 0x0112, meta::FmtShort, U16(1));
  x.AddModifyTag(Repertoire::IFD0, 0x011A, meta::FmtRational, Rationnel(72, 1));
  x.AddModifyTag(Repertoire::IFD0, 0x011B, meta::FmtRational, Rationnel(72, 1));
  x.AddModifyTag(Repertoire::IFD0, 0x0128, meta::FmtShort, U16(2));
  x.AddModifyTag(Repertoire::IFD0, 0x0132, meta::FmtAscii, date);
  x.AddModifyTag(Repertoire::SubIFD, 0x829A, meta::FmtRational, Rationnel(1, 60));
  x.AddModifyTag(Repertoire::SubIFD, 0x829D, meta::FmtRational, Rationnel(28, 10));
  x.AddModifyTag(Repertoire::SubIFD, 0x8827, meta::FmtShort, U16(100));
  x.AddModifyTag(Repertoire::SubIFD, 0x9003, meta::FmtAscii, date);
  x.AddModifyTag(Repertoire::SubIFD, 0x9004, meta::FmtAscii, date);
  x.AddModifyTag(Repertoire::SubIFD, 0x920A, meta::FmtRational,
                 Rationnel(uint32_t(std::lround(focale * 10)), 10));
  x.AddModifyTag(Repertoire::SubIFD, 0xA002, meta::FmtLong, U32(uint32_t(e.largeur)));
  x.AddModifyTag(Repertoire::SubIFD, 0xA003, meta::FmtLong, U32(uint32_t(e.hauteur)));
  if (!j.WriteJPEG(sortie, &erreur)) {
    Ligne("Erreur : " + erreur, stderr);
    return 3;
  }
  return 0;
}

const Enregistrement enregistrement(
    "echantillon", kUsage,
    {"Dessine la photo de démonstration : une diatomée à côté d'un micromètre objectif, avec l'EXIF d'un "
     "appareil photo.",
     {{"--largeur L, --hauteur H", "taille de la photo en pixels (2272 x 1704)"},
      {"--pix P --mic M", "P pixels pour M microns (400 pour 100)"},
      {"--fabricant T, --modele T", "fabricant et modèle de l'appareil écrits dans l'EXIF"},
      {"--focale MM", "focale écrite dans l'EXIF, en mm"}}},
    Executer, Dessin::Oui);

}  // namespace
}  // namespace tg::cli
