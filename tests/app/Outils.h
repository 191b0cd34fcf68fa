#pragma once
// What the road tests share: finding a tool window, reading a saved comment.
#include <QApplication>
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
