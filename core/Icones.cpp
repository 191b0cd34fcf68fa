#include "core/Icones.h"

#include <QCursor>
#include <QFont>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "version.h"

namespace tg {

namespace {

constexpr int kCote = 32;  // pixels, indicators and buttons

QPixmap Vierge(int l = kCote, int h = kCote) {
  QPixmap p(l, h);
  p.fill(Qt::transparent);
  return p;
}

// A picture frame of the given proportions, centred in the icon.
void Cadre(QPainter& g, double ratio, const QColor& fond, bool pointille = false) {
  const double l = ratio >= 1 ? 28 : 28 * ratio;
  const double h = ratio >= 1 ? 28 / ratio : 28;
  const QRectF r((kCote - l) / 2, (kCote - h) / 2, l, h);
  g.setPen(QPen(QColor(40, 40, 40), 1.5, pointille ? Qt::DashLine : Qt::SolidLine));
  g.setBrush(fond);
  g.drawRect(r);
}

void Legende(QPainter& g, const QString& texte, const QColor& couleur, int taille = 9) {
  QFont f(QStringLiteral("Arial"));
  f.setPixelSize(taille);
  f.setBold(true);
  g.setFont(f);
  g.setPen(couleur);
  g.drawText(QRect(0, 0, kCote, kCote), Qt::AlignCenter, texte);
}

// A magnifying glass; `remplissage` colours the lens.
void Loupe(QPainter& g, const QColor& remplissage) {
  g.setPen(QPen(QColor(40, 40, 40), 2));
  g.setBrush(remplissage);
  g.drawEllipse(QRectF(4, 4, 18, 18));
  g.setPen(QPen(QColor(90, 60, 20), 4, Qt::SolidLine, Qt::RoundCap));
  g.drawLine(QPointF(20, 20), QPointF(28, 28));
}

QPixmap Accueil() {
  QPixmap p(360, 220);
  p.fill(QColor(0xF4, 0xF1, 0xE6));
  QPainter g(&p);
  g.setRenderHint(QPainter::Antialiasing);
  // A tessellation of hexagons, as cells under the microscope.
  g.setPen(QPen(QColor(0x6A, 0x9A, 0x7A), 1.5));
  for (int ligne = 0; ligne < 6; ++ligne)
    for (int col = 0; col < 12; ++col) {
      const double cx = 20 + col * 30 + (ligne % 2) * 15, cy = 20 + ligne * 26;
      QPainterPath h;
      for (int k = 0; k < 6; ++k) {
        const double a = (60 * k + 30) * 3.14159265358979 / 180;
        const QPointF pt(cx + 15 * std::cos(a), cy + 15 * std::sin(a));
        k == 0 ? h.moveTo(pt) : h.lineTo(pt);
      }
      h.closeSubpath();
      g.drawPath(h);
    }
  g.fillRect(QRect(20, 120, 320, 80), QColor(255, 255, 255, 225));
  g.setPen(QColor(30, 60, 40));
  QFont f(QStringLiteral("Arial"));
  f.setPixelSize(30);
  f.setBold(true);
  g.setFont(f);
  g.drawText(QRect(20, 122, 320, 44), Qt::AlignCenter, QLatin1String(TitreProgramme));
  f.setPixelSize(13);
  f.setBold(false);
  g.setFont(f);
  g.drawText(
      QRect(20, 164, 320, 30), Qt::AlignCenter,
      QStringLiteral("Version %1.%2.%3").arg(VersionMajor).arg(VersionMinor).arg(VersionRevision));
  return p;
}

void Badge(QPainter& g, int numero) {
  g.setPen(Qt::NoPen);
  g.setBrush(QColor(0x20, 0x50, 0xA0));
  g.drawEllipse(QRectF(0, 0, 13, 13));
  QFont f(QStringLiteral("Arial"));
  f.setPixelSize(10);
  f.setBold(true);
  g.setFont(f);
  g.setPen(Qt::white);
  g.drawText(QRect(0, 0, 13, 13), Qt::AlignCenter, QString::number(numero));
}

void Fleche(QPainter& g, bool versDroite, const QColor& c) {
  QPainterPath p;
  if (versDroite) {
    p.moveTo(4, 12);
    p.lineTo(18, 12);
    p.lineTo(18, 5);
    p.lineTo(29, 16);
    p.lineTo(18, 27);
    p.lineTo(18, 20);
    p.lineTo(4, 20);
  } else {
    p.moveTo(28, 12);
    p.lineTo(14, 12);
    p.lineTo(14, 5);
    p.lineTo(3, 16);
    p.lineTo(14, 27);
    p.lineTo(14, 20);
    p.lineTo(28, 20);
  }
  p.closeSubpath();
  g.setPen(QPen(QColor(40, 40, 40), 1));
  g.setBrush(c);
  g.drawPath(p);
}

void DessinBouton(QPainter& g, const QString& cle) {
  const QPen trait(QColor(40, 40, 40), 1.5);
  g.setPen(trait);
  if (cle == u"Ouvrir") {
    g.setBrush(QColor(0xF0, 0xC8, 0x50));
    g.drawRect(QRectF(4, 10, 24, 17));
    g.drawRect(QRectF(4, 7, 10, 4));
    Badge(g, 1);
  } else if (cle == u"RedimAuto") {
    g.setBrush(QColor(0xD8, 0xE8, 0xF8));
    g.drawRect(QRectF(5, 8, 22, 17));
    g.setPen(QPen(QColor(0x20, 0x50, 0xA0), 2));
    g.drawLine(QPointF(10, 20), QPointF(22, 12));
    g.drawLine(QPointF(22, 12), QPointF(17, 12));
    g.drawLine(QPointF(22, 12), QPointF(22, 16));
    Badge(g, 2);
  } else if (cle == u"Cartouche") {
    g.setBrush(QColor(0xD8, 0xF0, 0xD8));
    g.drawRect(QRectF(4, 5, 24, 16));
    g.setBrush(Qt::white);
    g.drawRect(QRectF(4, 21, 24, 7));
    g.drawLine(QPointF(7, 25), QPointF(16, 25));
    Badge(g, 3);
  } else if (cle == u"Sauver") {
    g.setBrush(QColor(0x50, 0x70, 0xB0));
    g.drawRect(QRectF(5, 5, 22, 22));
    g.setBrush(Qt::white);
    g.drawRect(QRectF(9, 5, 14, 8));
    g.drawRect(QRectF(9, 17, 14, 10));
    Badge(g, 4);
  } else if (cle == u"Mesure" || cle == u"Etalonner") {
    g.setBrush(QColor(0xF0, 0xE0, 0x90));
    g.drawRect(QRectF(3, 18, 26, 8));
    for (int x = 6; x < 28; x += 4) g.drawLine(QPointF(x, 18), QPointF(x, x % 8 == 6 ? 23 : 21));
    if (cle == u"Etalonner") {
      g.setBrush(Qt::NoBrush);
      g.setPen(QPen(QColor(0xB0, 0x20, 0x20), 1.5));
      g.drawEllipse(QRectF(9, 3, 12, 12));
      g.drawLine(QPointF(15, 1), QPointF(15, 17));
      g.drawLine(QPointF(7, 9), QPointF(23, 9));
    } else {
      g.setPen(QPen(QColor(0xB0, 0x20, 0x20), 2));
      g.drawLine(QPointF(5, 10), QPointF(27, 10));
      g.drawLine(QPointF(5, 6), QPointF(5, 14));
      g.drawLine(QPointF(27, 6), QPointF(27, 14));
    }
  } else if (cle == u"anotations") {
    g.setPen(QPen(QColor(0xC0, 0x30, 0x30), 2.5, Qt::SolidLine, Qt::RoundCap));
    g.drawLine(QPointF(6, 26), QPointF(24, 8));
    g.drawLine(QPointF(24, 8), QPointF(17, 9));
    g.drawLine(QPointF(24, 8), QPointF(23, 15));
    Legende(g, QStringLiteral("A"), QColor(0x20, 0x50, 0xA0), 12);
  } else if (cle == u"Rotation") {
    g.setPen(QPen(QColor(0x20, 0x50, 0xA0), 3, Qt::SolidLine, Qt::RoundCap));
    g.setBrush(Qt::NoBrush);
    g.drawArc(QRectF(6, 6, 20, 20), 90 * 16, -270 * 16);
    g.drawLine(QPointF(16, 6), QPointF(11, 2));
    g.drawLine(QPointF(16, 6), QPointF(11, 10));
  } else if (cle == u"Recadrer") {
    g.setPen(QPen(QColor(40, 40, 40), 3));
    g.drawLine(QPointF(8, 2), QPointF(8, 24));
    g.drawLine(QPointF(8, 24), QPointF(30, 24));
    g.drawLine(QPointF(2, 8), QPointF(24, 8));
    g.drawLine(QPointF(24, 8), QPointF(24, 30));
  } else if (cle == u"Filtres") {
    g.setPen(QPen(QColor(40, 40, 40), 1));
    g.setBrush(QColor(255, 0, 0, 150));
    g.drawEllipse(QRectF(4, 4, 15, 15));
    g.setBrush(QColor(0, 200, 0, 150));
    g.drawEllipse(QRectF(13, 4, 15, 15));
    g.setBrush(QColor(0, 0, 255, 150));
    g.drawEllipse(QRectF(8.5, 13, 15, 15));
  } else if (cle == u"Exporter") {
    Fleche(g, true, QColor(0x40, 0xA0, 0x40));
  } else if (cle == u"Importer") {
    Fleche(g, false, QColor(0xE0, 0x90, 0x20));
  } else if (cle == u"Copier") {
    g.setBrush(Qt::white);
    g.drawRect(QRectF(4, 4, 16, 20));
    g.setBrush(QColor(0xE8, 0xF0, 0xFF));
    g.drawRect(QRectF(12, 9, 16, 20));
  }
}

}  // namespace

QPixmap IconeIndicateur(const QString& nom) {
  if (nom == u"Accueil") return Accueil();
  QPixmap p = Vierge();
  QPainter g(&p);
  g.setRenderHint(QPainter::Antialiasing);
  const QColor clair(0xE8, 0xF0, 0xFF);
  if (nom == u"Apn") {
    Cadre(g, 4.0 / 3.0, clair);
    Legende(g, QStringLiteral("4:3"), QColor(0x20, 0x50, 0xA0));
  } else if (nom == u"Paysage") {
    Cadre(g, 2.0, clair);
  } else if (nom == u"RN") {
    Cadre(g, 1.5, clair);
    Legende(g, QStringLiteral("3:2"), QColor(0x20, 0x50, 0xA0));
  } else if (nom == u"Portrait") {
    Cadre(g, 0.7, clair);
  } else if (nom == u"Carre") {
    Cadre(g, 1.0, clair);
    Legende(g, QStringLiteral("1:1"), QColor(0x20, 0x50, 0xA0));
  } else if (nom == u"ApnVide") {
    Cadre(g, 4.0 / 3.0, Qt::transparent, true);
  } else if (nom == u"Taille") {
    g.setPen(QPen(QColor(40, 40, 40), 1.5));
    g.drawLine(QPointF(3, 16), QPointF(29, 16));
    g.drawLine(QPointF(3, 16), QPointF(8, 11));
    g.drawLine(QPointF(3, 16), QPointF(8, 21));
    g.drawLine(QPointF(29, 16), QPointF(24, 11));
    g.drawLine(QPointF(29, 16), QPointF(24, 21));
  } else if (nom == u"ZoomVide") {
    Loupe(g, Qt::transparent);
  } else if (nom == u"ZoomOk") {
    Loupe(g, QColor(0x90, 0xE0, 0x90));
  } else if (nom == u"ZoomNum") {
    Loupe(g, QColor(0xFF, 0x70, 0x70));
    g.setPen(Qt::black);
    QFont f(QStringLiteral("Arial"));
    f.setPixelSize(10);
    f.setBold(true);
    g.setFont(f);
    g.drawText(QRect(4, 4, 18, 18), Qt::AlignCenter, QStringLiteral("N"));
  } else if (nom == u"Pipette") {
    // An eyedropper from the top right down to its tip at (1, 30): the
    // cursor's hot spot.
    g.setPen(QPen(Qt::white, 5, Qt::SolidLine, Qt::RoundCap));
    g.drawLine(QPointF(2, 29), QPointF(22, 9));
    g.setPen(QPen(QColor(30, 30, 30), 2.5, Qt::SolidLine, Qt::RoundCap));
    g.drawLine(QPointF(2, 29), QPointF(22, 9));
    g.setPen(QPen(QColor(30, 30, 30), 1.5));
    g.setBrush(QColor(0x50, 0x50, 0x60));
    g.drawEllipse(QRectF(19, 3, 10, 10));
    g.drawLine(QPointF(16, 10), QPointF(22, 16));
  }
  return p;
}

QCursor CurseurPipette() { return QCursor(IconeIndicateur(QStringLiteral("Pipette")), 1, 30); }

QIcon IconeBouton(const QString& cle, bool marque) {
  // Drawn once per button and mark: a new icon at every stage change would
  // leave its pixmaps in Qt's cache, photo after photo.
  // Kept to the end: pixmaps may not outlive the application in a static.
  static auto* const faites = new QHash<QString, QIcon>;
  const QString nom = cle + (marque ? QStringLiteral("+") : QString());
  if (const auto it = faites->constFind(nom); it != faites->constEnd()) return *it;
  QPixmap p = Vierge();
  QPainter g(&p);
  g.setRenderHint(QPainter::Antialiasing);
  DessinBouton(g, cle);
  if (marque) {
    g.setPen(QPen(QColor(0x10, 0x90, 0x10), 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    g.drawLine(QPointF(17, 24), QPointF(22, 29));
    g.drawLine(QPointF(22, 29), QPointF(30, 17));
  }
  g.end();
  return *faites->insert(nom, QIcon(p));
}

}  // namespace tg
