#pragma once
// Windows on the screen they are shown on: a size that fits it, a tool window
// beside what it acts on, panels that scroll when the screen is too short.
// Rectangles are global pixels; a window's rectangle includes its frame.
#include <QList>
#include <QMargins>
#include <QRect>
#include <QScrollArea>
#include <QSize>

class QWidget;

namespace tg {

// `cadre` moved, not resized, to lie inside `zone`; one larger than the zone
// keeps its top left corner in it, where the title bar is.
QRect RamenerDansZone(QRect cadre, QRect zone);

// Where a tool window of frame size `taille` goes inside `zone`: it covers as
// little of `autres` (the tool windows already placed, whose controls the
// user needs) as it can, then as little of `cible`, then lies as close to
// the target as it can. With room on a side of the target, it covers none of it.
QRect PlacerACote(QSize taille, QRect cible, QRect zone, const QList<QRect>& autres = {});

// The zoom, in percent, at which a picture of `image` pixels shows whole in a
// frame of `cadre` pixels less 10 on each axis; never above 100 (a small
// picture stays at its size), at least 1.
int PourcentageImageEntiere(QSize cadre, QSize image);

// The room the screen leaves to windows: the available part of the screen
// the window is on, or will be shown on.
QRect ZoneEcran(const QWidget* fenetre);

// The window system's frame of a shown window; before it is shown, room for
// a title bar and thin borders.
QMargins MargesCadre(const QWidget* fenetre);

// The window resized to its wanted size (its size hint, or `voulue`) within
// the screen, frame included, then moved inside the screen.
void AjusterAEcran(QWidget* fenetre, QSize voulue = {});

// The tool window, at its present size (AjusterAEcran first), moved beside
// the visible part of `cible` (a widget of another window), away from the
// windows of `eviter`.
void PlacerACoteDe(QWidget* fenetre, const QWidget* cible, const QList<const QWidget*>& eviter = {});

// The rectangle of `w` on the screen, cut by its parents (what the user sees of it).
QRect PartieVisible(const QWidget* w);

// A scrolling panel whose size hint is that of its contents: on a large
// screen it shows them whole, on a small one the window gives it what the
// screen leaves and it scrolls. Frameless, contents resized with it.
class PanneauDefilant : public QScrollArea {
 public:
  explicit PanneauDefilant(QWidget* contenu, QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  // Contents that grow wider (a frame shown) widen the shown window as far
  // as the screen allows, so that they need no sideways scrolling.
  bool eventFilter(QObject* objet, QEvent* e) override;
};

}  // namespace tg
