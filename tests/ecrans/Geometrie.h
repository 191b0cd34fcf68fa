#pragma once
// What a window must give on a small screen, checked on its widgets: every
// control the user presses or types into lies inside the window (or inside
// the scrolling area that holds it) and the window inside the screen; the
// ways out are in view without scrolling.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStringList>
#include <QTextEdit>
#include <algorithm>

namespace tg::test {

// A control of its own: a line edit inside a list or a spin box belongs to it.
inline bool EstControle(const QWidget* w) {
  if (qobject_cast<const QLineEdit*>(w))
    return !qobject_cast<const QComboBox*>(w->parentWidget()) && !qobject_cast<const QAbstractSpinBox*>(w->parentWidget());
  if (auto* b = qobject_cast<const QScrollBar*>(w)) {
    // A scrolling area's own bars come and go with its contents.
    for (const QWidget* p = b->parentWidget(); p; p = p->parentWidget())
      if (qobject_cast<const QAbstractScrollArea*>(p)) return false;
    return true;
  }
  return qobject_cast<const QAbstractButton*>(w) || qobject_cast<const QComboBox*>(w) ||
         qobject_cast<const QAbstractSpinBox*>(w) || qobject_cast<const QAbstractSlider*>(w) ||
         qobject_cast<const QAbstractItemView*>(w) || qobject_cast<const QTextEdit*>(w) ||
         qobject_cast<const QPlainTextEdit*>(w);
}

// The name a failure gives a widget: its objectName, else its text, else its class.
inline QString NomControle(const QWidget* w) {
  if (!w->objectName().isEmpty() && !w->objectName().startsWith(u"qt_")) return w->objectName();
  if (auto* b = qobject_cast<const QAbstractButton*>(w); b && !b->text().isEmpty()) return "« " + b->text() + " »";
  QString parent;
  for (const QWidget* p = w->parentWidget(); p && parent.isEmpty(); p = p->parentWidget())
    if (!p->objectName().isEmpty() && !p->objectName().startsWith(u"qt_")) parent = p->objectName();
  return QString::fromLatin1(w->metaObject()->className()) + " dans " + parent;
}

// The viewport of a scrolling area, or null.
inline const QAbstractScrollArea* ZoneDefilante(const QWidget* viewport) {
  auto* zone = qobject_cast<const QAbstractScrollArea*>(viewport ? viewport->parentWidget() : nullptr);
  return zone && zone->viewport() == viewport ? zone : nullptr;
}

// Why `w` cannot be reached inside its window, or empty. A scrolling
// area's contents may lie beyond its view in a direction it scrolls,
// unless `enVue` asks for the widget to be seen as it is.
inline QString HorsDePortee(const QWidget* w, const QWidget* fenetre, bool enVue) {
  QRect r = w->rect();
  const QWidget* p = w;
  while (p != fenetre) {
    const QWidget* parent = p->parentWidget();
    if (!parent) return QStringLiteral("hors de la fenêtre");
    r.translate(p->pos());
    if (!parent->isVisible()) return QStringLiteral("dans un cadre caché");
    if (const QAbstractScrollArea* zone = ZoneDefilante(parent); zone && !enVue) {
      // Reachable by scrolling along an axis where a bar can appear.
      const QRect v = parent->rect();
      const auto ramener = [](int debut, int longueur, int max) { return std::clamp(debut, 0, std::max(0, max - longueur)); };
      if (zone->horizontalScrollBarPolicy() != Qt::ScrollBarAlwaysOff && r.width() <= v.width())
        r.moveLeft(ramener(r.left(), r.width(), v.width()));
      if (zone->verticalScrollBarPolicy() != Qt::ScrollBarAlwaysOff && r.height() <= v.height())
        r.moveTop(ramener(r.top(), r.height(), v.height()));
    }
    if (!parent->rect().contains(r)) {
      return QStringLiteral("coupé par %1 (%2,%3 %4x%5 hors de %6x%7)")
          .arg(NomControle(parent))
          .arg(r.x())
          .arg(r.y())
          .arg(r.width())
          .arg(r.height())
          .arg(parent->width())
          .arg(parent->height());
    }
    p = parent;
  }
  return {};
}

// Every visible control of `fenetre` reachable, the window inside its
// screen, and each named way out visible in full without scrolling.
inline void VerifierFenetre(const QWidget* fenetre, const QStringList& sorties = {}) {
  ASSERT_NE(fenetre, nullptr);
  QApplication::processEvents();
  const QString nom = fenetre->objectName();
  ASSERT_TRUE(fenetre->isVisible()) << nom.toStdString();
  const QScreen* ecran = fenetre->screen();
  ASSERT_NE(ecran, nullptr);
  const QRect zone = ecran->availableGeometry();
  const QRect cadre = fenetre->frameGeometry();
  EXPECT_TRUE(zone.contains(cadre)) << nom.toStdString() << " : cadre " << cadre.x() << "," << cadre.y() << " "
                                    << cadre.width() << "x" << cadre.height() << " hors de l'écran "
                                    << zone.width() << "x" << zone.height();
  for (const QWidget* w : fenetre->findChildren<QWidget*>()) {
    if (!EstControle(w) || !w->isVisible() || w->window() != fenetre) continue;
    const QString raison = HorsDePortee(w, fenetre, false);
    EXPECT_TRUE(raison.isEmpty()) << nom.toStdString() << " : " << NomControle(w).toStdString() << " "
                                  << raison.toStdString();
  }
  for (const QString& s : sorties) {
    const QWidget* w = fenetre->findChild<QWidget*>(s);
    if (!w) {
      ADD_FAILURE() << nom.toStdString() << " : pas de " << s.toStdString();
      continue;
    }
    EXPECT_TRUE(w->isVisible()) << nom.toStdString() << " : " << s.toStdString() << " caché";
    if (!w->isVisible()) continue;
    const QString raison = HorsDePortee(w, fenetre, true);
    EXPECT_TRUE(raison.isEmpty()) << nom.toStdString() << " : la sortie " << s.toStdString() << " "
                                  << raison.toStdString();
  }
}

}  // namespace tg::test
