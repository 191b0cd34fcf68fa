#pragma once
// What the road tests share: finding a tool window, reading a saved comment.
#include <QApplication>
#include <QMouseEvent>
#include <QString>
#include <QWidget>

#include "imaging/cAdvancedImagery.h"

namespace tg::test {

// The visible top-level window of that name; nullptr when none.
inline QWidget* Fenetre(const char* nom) {
  for (QWidget* f : QApplication::topLevelWidgets())
    if (f->objectName() == QLatin1String(nom) && f->isVisible()) return f;
  return nullptr;
}

// A drag with the left button from a to b on the widget, as the mouse does it.
inline void Glisser(QWidget* w, QPointF a, QPointF b) {
  const auto envoyer = [w](QEvent::Type type, QPointF p) {
    const Qt::MouseButtons boutons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent e(type, p, w->mapToGlobal(p), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                  boutons, Qt::NoModifier);
    QApplication::sendEvent(w, &e);
  };
  envoyer(QEvent::MouseButtonPress, a);
  envoyer(QEvent::MouseMove, (a + b) / 2);
  envoyer(QEvent::MouseMove, b);
  envoyer(QEvent::MouseButtonRelease, b);
}

// The JPEG comment of a saved file, as the imaging layer reads it; empty
// when the file cannot be read.
inline QString Commentaire(const QString& fichier) {
  cAdvancedImagery ai;
  Bitmap b;
  QString c;
  if (!ai.IO_LoadImage(fichier, b) || !ai.Metadata_Get_Comments(b, c)) return {};
  return c;
}

}  // namespace tg::test
