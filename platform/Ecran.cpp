#include "platform/Ecran.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QScrollBar>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <limits>

namespace tg {

namespace {

// The title bar and borders of the usual window managers, in pixels, until
// the real frame is known.
const QMargins kMargesSupposees(4, 30, 4, 4);

qint64 Aire(const QRect& a, const QRect& b) {
  const QRect i = a.intersected(b);
  return i.isEmpty() ? 0 : qint64(i.width()) * i.height();
}

}  // namespace

QRect RamenerDansZone(QRect cadre, QRect zone) {
  const int x = std::max(zone.left(), std::min(cadre.left(), zone.right() + 1 - cadre.width()));
  const int y = std::max(zone.top(), std::min(cadre.top(), zone.bottom() + 1 - cadre.height()));
  cadre.moveTo(x, y);
  return cadre;
}

QRect PlacerACote(QSize taille, QRect cible, QRect zone, const QList<QRect>& autres) {
  const int l = taille.width(), h = taille.height();
  // Corners tried: flush with each side of the target, of each other window and of the zone.
  QList<int> xs = {cible.right() + 1, cible.left() - l, cible.left(), cible.right() + 1 - l, zone.left(),
                   zone.right() + 1 - l};
  QList<int> ys = {cible.top(), cible.bottom() + 1, cible.top() - h, cible.bottom() + 1 - h, zone.top(),
                   zone.bottom() + 1 - h};
  for (const QRect& a : autres) {
    xs << a.right() + 1 << a.left() - l << a.left();
    ys << a.bottom() + 1 << a.top() - h << a.top();
  }
  QRect meilleur = RamenerDansZone(QRect(cible.topLeft(), taille), zone);
  qint64 scoreCible = std::numeric_limits<qint64>::max(), scoreAutres = std::numeric_limits<qint64>::max();
  double distance = 0;
  const QPointF centre = QRectF(cible).center();
  for (int x : xs)
    for (int y : ys) {
      const QRect r = RamenerDansZone(QRect(QPoint(x, y), taille), zone);
      const qint64 sc = Aire(r, cible);
      qint64 sa = 0;
      for (const QRect& a : autres) sa += Aire(r, a);
      const QPointF d = QRectF(r).center() - centre;
      const double dist = std::hypot(d.x(), d.y());
      if (sa < scoreAutres || (sa == scoreAutres && (sc < scoreCible || (sc == scoreCible && dist < distance)))) {
        meilleur = r;
        scoreCible = sc;
        scoreAutres = sa;
        distance = dist;
      }
    }
  return meilleur;
}

int PourcentageImageEntiere(QSize cadre, QSize image) {
  if (image.width() <= 0 || image.height() <= 0) return 100;
  const double l = double(cadre.width() - 10) / image.width();
  const double h = double(cadre.height() - 10) / image.height();
  // Down: a zoom rounded up would bring the scroll bars back.
  const int p = int(std::floor(std::min(l, h) * 100));
  return std::clamp(p, 1, 100);
}

QRect ZoneEcran(const QWidget* fenetre) {
  const QScreen* ecran = fenetre ? fenetre->screen() : nullptr;
  if (!ecran) ecran = QGuiApplication::primaryScreen();
  return ecran ? ecran->availableGeometry() : QRect(0, 0, 800, 600);
}

QMargins MargesCadre(const QWidget* fenetre) {
  if (fenetre && fenetre->isVisible()) {
    const QRect c = fenetre->frameGeometry(), g = fenetre->geometry();
    if (c != g) return {g.left() - c.left(), g.top() - c.top(), c.right() - g.right(), c.bottom() - g.bottom()};
  }
  return kMargesSupposees;
}

void AjusterAEcran(QWidget* fenetre, QSize voulue) {
  if (!fenetre) return;
  const QRect zone = ZoneEcran(fenetre);
  const QMargins m = MargesCadre(fenetre);
  if (!voulue.isValid()) voulue = fenetre->isVisible() ? fenetre->size() : fenetre->sizeHint();
  voulue = voulue.expandedTo(fenetre->minimumSizeHint()).expandedTo(fenetre->minimumSize());
  const QSize place(zone.width() - m.left() - m.right(), zone.height() - m.top() - m.bottom());
  const QSize taille = voulue.boundedTo(place).boundedTo(fenetre->maximumSize());
  fenetre->resize(taille);
  const QRect cadre(fenetre->pos(), taille.grownBy(m));
  fenetre->move(RamenerDansZone(cadre, zone).topLeft());
}

QRect PartieVisible(const QWidget* w) {
  if (!w) return {};
  QRect r(w->mapToGlobal(QPoint(0, 0)), w->size());
  for (const QWidget* p = w->parentWidget(); p; p = p->parentWidget()) {
    r &= QRect(p->mapToGlobal(QPoint(0, 0)), p->size());
    if (p->isWindow()) break;
  }
  return r;
}

void PlacerACoteDe(QWidget* fenetre, const QWidget* cible, const QList<const QWidget*>& eviter) {
  if (!fenetre) return;
  const QRect zone = ZoneEcran(fenetre);
  const QMargins m = MargesCadre(fenetre);
  const QSize taille = fenetre->size();
  QList<QRect> autres;
  for (const QWidget* e : eviter)
    if (e && e != fenetre && e->isVisible()) autres << e->frameGeometry();
  const QRect cible_ = cible && cible->isVisible() ? PartieVisible(cible) : QRect();
  const QRect r = cible_.isEmpty() ? RamenerDansZone(QRect(fenetre->pos(), taille.grownBy(m)), zone)
                                   : PlacerACote(taille.grownBy(m), cible_, zone, autres);
  fenetre->move(r.topLeft());
}

PanneauDefilant::PanneauDefilant(QWidget* contenu, QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setWidget(contenu);
}

QSize PanneauDefilant::sizeHint() const {
  const QWidget* w = widget();
  if (!w) return QScrollArea::sizeHint();
  QSize contenu = widgetResizable() ? w->sizeHint() : w->size();
  if (!contenu.isValid()) contenu = w->size();
  // Room for a vertical bar: the panel is shortened before it is narrowed.
  return contenu + QSize(verticalScrollBar()->sizeHint().width() + 2 * frameWidth(), 2 * frameWidth());
}

QSize PanneauDefilant::minimumSizeHint() const {
  const QWidget* w = widget();
  if (!w) return QScrollArea::minimumSizeHint();
  const int lignes = 6 * fontMetrics().height();
  const int barre = verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
  // Contents that follow the panel's width are never narrowed below
  // their own; a picture of its own size scrolls both ways.
  if (!widgetResizable()) return {std::min(w->width() + barre, lignes), std::min(w->height() + barre, lignes)};
  return {w->minimumSizeHint().width() + barre, std::min(w->sizeHint().height(), lignes)};
}

bool PanneauDefilant::eventFilter(QObject* objet, QEvent* e) {
  if (objet == widget() && e->type() == QEvent::LayoutRequest && widgetResizable() &&
      horizontalScrollBarPolicy() != Qt::ScrollBarAlwaysOff) {
    QWidget* f = window();
    const int manque = widget()->sizeHint().width() - viewport()->width();
    if (f && f != this && f->isVisible() && manque > 0)
      AjusterAEcran(f, QSize(f->width() + manque, f->height()));
  }
  return QScrollArea::eventFilter(objet, e);
}

}  // namespace tg
