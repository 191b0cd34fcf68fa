#include "annotation/CanevasAnnotation.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/Dialogues.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"

namespace tg {

// ---------------------------------------------------------------- layer

void CalqueTemporaire::Ligne(PointF a, PointF b, int32_t couleur, int epaisseur) {
  formes_.push_back({Forme::L, a, b, couleur, epaisseur});
}

void CalqueTemporaire::Cercle(PointF centre, float rayon, int32_t couleur, int epaisseur) {
  formes_.push_back({Forme::C, centre, {rayon, 0}, couleur, epaisseur});
}

void CalqueTemporaire::Carre(PointF coin, float cote, int32_t couleur, int epaisseur) {
  formes_.push_back({Forme::K, coin, {cote, 0}, couleur, epaisseur});
}

void CalqueTemporaire::Dessiner(QPainter& p) const {
  p.save();
  p.setRenderHint(QPainter::Antialiasing, false);
  p.setBrush(Qt::NoBrush);
  for (const Forme& f : formes_) {
    QPen stylo(VersQColor(f.couleur & 0xFFFFFF), std::max(1, f.epaisseur), Qt::SolidLine, Qt::RoundCap,
               Qt::RoundJoin);
    p.setPen(stylo);
    switch (f.genre) {
      case Forme::L:
        p.drawLine(QPointF(f.a.x, f.a.y), QPointF(f.b.x, f.b.y));
        break;
      case Forme::C:
        p.drawEllipse(QPointF(f.a.x, f.a.y), std::abs(f.b.x), std::abs(f.b.x));
        break;
      case Forme::K:
        p.drawRect(QRectF(f.a.x, f.a.y, f.b.x, f.b.x));
        break;
    }
  }
  p.restore();
}

QRect CalqueTemporaire::Boite() const {
  QRectF boite;
  for (const Forme& f : formes_) {
    QRectF r;
    switch (f.genre) {
      case Forme::L:
        r = QRectF(QPointF(f.a.x, f.a.y), QPointF(f.b.x, f.b.y)).normalized();
        break;
      case Forme::C: {
        const float rayon = std::abs(f.b.x);
        r = QRectF(f.a.x - rayon, f.a.y - rayon, 2 * rayon, 2 * rayon);
        break;
      }
      case Forme::K:
        r = QRectF(QPointF(f.a.x, f.a.y), QPointF(f.a.x + f.b.x, f.a.y + f.b.x)).normalized();
        break;
    }
    const qreal marge = f.epaisseur + 2;
    boite |= r.adjusted(-marge, -marge, marge, marge);
  }
  return boite.toAlignedRect();
}

// ---------------------------------------------------------------- undo memory

void MemoireUndo::Ajouter(const QImage& avant, const QImage& apres) {
  Etape e;
  const int l = std::min(avant.width(), apres.width());
  const int h = std::min(avant.height(), apres.height());
  // Runs closer than this many pixels are kept as one: a segment costs 6 bytes.
  constexpr int kEcartFusion = 2;
  for (int y = 0; y < h; ++y) {
    const auto* a = reinterpret_cast<const uint32_t*>(avant.constScanLine(y));
    const auto* b = reinterpret_cast<const uint32_t*>(apres.constScanLine(y));
    if (std::memcmp(a, b, size_t(l) * 4) == 0) continue;
    int x = 0;
    while (x < l) {
      while (x < l && a[x] == b[x]) ++x;
      if (x == l) break;
      const int debut = x;
      int fin = x;  // last changed pixel of the run
      while (x < l) {
        if (a[x] != b[x]) {
          fin = x;
          ++x;
        } else if (x - fin <= kEcartFusion) {
          ++x;
        } else {
          break;
        }
      }
      // Segments hold at most 65535 pixels: a wider run is cut.
      for (int d = debut; d <= fin; d += 65535) {
        const int n = std::min(fin + 1 - d, 65535);
        e.segments.push_back({uint16_t(y), uint16_t(d), uint16_t(n)});
        e.pixels.insert(e.pixels.end(), a + d, a + d + n);
      }
    }
  }
  e.segments.shrink_to_fit();
  e.pixels.shrink_to_fit();
  etapes_.push_back(std::move(e));
}

bool MemoireUndo::Annuler(QImage& image) {
  if (etapes_.empty()) return false;
  const Etape& e = etapes_.back();
  size_t i = 0;
  for (const Segment& s : e.segments) {
    if (s.y < image.height() && s.x + s.n <= image.width())
      std::memcpy(reinterpret_cast<uint32_t*>(image.scanLine(s.y)) + s.x, e.pixels.data() + i,
                  size_t(s.n) * 4);
    i += s.n;
  }
  etapes_.pop_back();
  return true;
}

size_t MemoireUndo::Octets() const {
  size_t n = 0;
  for (const Etape& e : etapes_)
    n += e.segments.capacity() * sizeof(Segment) + e.pixels.capacity() * sizeof(uint32_t) + sizeof(Etape);
  return n;
}

// ---------------------------------------------------------------- placement

Placement FlagsPlacement(float ecartX, float ecartY, double a) {
  Placement pl;
  pl.aGauche = ecartX <= 0;
  pl.enHaut = ecartY <= 0;
  const bool cote = (a >= 0 && a <= 45) || (a >= 135 && a <= 225) || (a >= 315 && a <= 360);
  pl.vertical = !cote;
  return pl;
}

PositionEditeur PlacerEditeur(const Placement& pl, PointF fin, int w, int h, int wv, int largeurImage) {
  PositionEditeur p;
  const int fx = int(VersEntier(fin.x)), fy = int(VersEntier(fin.y));
  if (!pl.aGauche) {
    p.editeur = {fx, fy - h / 2};
    p.validation = {fx, fy + h / 2 + 2};
    p.legende = QStringLiteral("Texte à droite");
  } else {
    p.editeur = {fx - w, fy - h / 2};
    p.validation = {fx - wv, fy + h / 2 + 2};
    p.legende = QStringLiteral("Texte à gauche");
  }
  if (pl.vertical) {
    const int haut = pl.enHaut ? fy - h : fy;
    p.editeur = {fx - w / 2, haut};
    p.validation = fin.x < float(largeurImage - 150) ? QPoint(fx + w / 2 + 2, haut) : QPoint(fx - (wv + 10), haut);
    p.legende = QStringLiteral("Texte centré");
  }
  return p;
}

QPoint PlacerValidationTexteUnique(QPoint clic, int w, int h, int hv, int hauteurImage) {
  const int haut = clic.y() < hauteurImage - 150 ? clic.y() + h + 2 : clic.y() - (hv + 2);
  return {clic.x() - w / 2, haut};
}

// ---------------------------------------------------------------- stamps

TexteSurImage TamponTexte(ModeAnnotation mode, const Placement& pl, PointF debut, PointF fin,
                          const ReglagesAnnotation& r) {
  TexteSurImage t;
  t.ligneUnique = true;
  t.police = r.TxtFontName;
  t.taille = r.TxtFontSize;
  t.gras = r.TxtFontBold;
  t.italique = r.TxtFontItalic;
  t.souligne = r.TxtFontUnderline;
  t.fond = r.TxtBackColor;
  t.couleur = r.TxtFontColor;
  const int fx = int(VersEntier(fin.x)), fy = int(VersEntier(fin.y));
  const int dx = int(VersEntier(debut.x)), dy = int(VersEntier(debut.y));
  if (mode == LigneEtTexte) {
    if (!pl.vertical && !pl.aGauche) {
      t.gauche = fx, t.haut = fy, t.droite = fx + 5, t.bas = fy;
      t.alignH = 3;
    } else if (!pl.vertical) {
      t.gauche = fx - 5, t.haut = fy, t.droite = fx, t.bas = fy;
      t.alignH = 4;
    } else {
      const int d = r.TxtFontSize + 10;
      t.gauche = fx, t.haut = fy, t.droite = fx, t.bas = pl.enHaut ? fy - d : fy + d;
    }
  } else {
    t.gauche = dx, t.haut = dy, t.droite = dx, t.bas = dy + r.TxtFontSize;
  }
  return t;
}

TexteSurImage TamponCote(PointF milieu, double angleLigne, const ReglagesAnnotation& r) {
  TexteSurImage t;
  const int mx = int(VersEntier(milieu.x)), my = int(VersEntier(milieu.y));
  t.gauche = t.droite = mx;
  t.haut = t.bas = my;
  t.alignH = 3;
  t.alignV = 1;
  t.police = r.CoteFontName;
  t.taille = r.CoteFontSize;
  t.gras = true;
  t.fond = -1;
  t.couleur = r.CoteColor;
  t.rotation = int(VersEntier(RotationCote(angleLigne) * 10));
  return t;
}

QString TexteTampon(const QString& saisi, bool fondOpaque) {
  QString t = saisi.isEmpty() ? QStringLiteral(" ") : saisi;
  if (fondOpaque) t = QLatin1Char(' ') + t.trimmed() + QLatin1Char(' ');
  return t;
}

// ---------------------------------------------------------------- grid

void TracerGrille(CalqueTemporaire& calque, int largeur, int hauteur, int pasL, int pasH, int32_t couleur) {
  pasL = BornerPasGrille(pasL);
  pasH = BornerPasGrille(pasH);
  for (int y = 0; y <= hauteur; y += pasH)
    calque.Ligne({0, float(y)}, {float(largeur), float(y)}, couleur, 1);
  for (int x = 0; x <= largeur; x += pasL)
    calque.Ligne({float(x), 0}, {float(x), float(hauteur)}, couleur, 1);
}

QString TexteInfoGrille(int largeur, int hauteur, int pasL, int pasH) {
  return QStringLiteral("Ligne : %1 - Colonne : %2")
      .arg(hauteur / BornerPasGrille(pasH))
      .arg(largeur / BornerPasGrille(pasL));
}

QString TexteEquivMicrons(const QString& echellePix, const QString& echelleMic, int pasL, int pasH) {
  double pix = 0, mic = 0;
  if (echellePix.isEmpty() || echelleMic.isEmpty() || !LireNombre(echellePix, pix) ||
      !LireNombre(echelleMic, mic) || pix == 0)
    return QStringLiteral("pas d'échelle");
  const double c = mic / pix;
  return QStringLiteral("%1 x %2").arg(VersEntier(c * pasL)).arg(VersEntier(c * pasH));
}

int BornerPasGrille(int valeur) { return std::clamp(valeur, 1, 300); }

// ---------------------------------------------------------------- collage

bool CollageTropGrand(int lc, int hc, int li, int hi, bool depuisFichier) {
  const int marge = depuisFichier ? 60 : 0;
  return lc > li - marge || hc > hi - marge;
}

void BorderCollage(QImage& collage, int t, int32_t couleur) {
  if (t <= 0 || collage.isNull()) return;
  QPainter p(&collage);
  const QColor c = VersQColor(couleur);
  const int l = collage.width(), h = collage.height();
  p.fillRect(0, 0, l, t, c);
  p.fillRect(0, h - t, l, t, c);
  p.fillRect(0, 0, t, h, c);
  p.fillRect(l - t, 0, t, h, c);
}

}  // namespace tg
