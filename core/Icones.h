#pragma once
// The pictures of the main window, drawn at run time: indicators, toolbar
// buttons and the welcome picture.
#include <QCursor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace tg {

// Indicator by name: "Apn", "Paysage", "RN", "Portrait", "Carre", "Taille",
// "ApnVide", "ZoomVide", "ZoomOk", "ZoomNum", "Pipette"; "Accueil" is the welcome
// picture. An unknown name gives an empty 32 x 32 picture.
QPixmap IconeIndicateur(const QString& nom);

// The pipette's cursor: its icon, the hot spot at the dropper's tip.
QCursor CurseurPipette();

// Toolbar button by its key; `marque` adds the done mark (a green tick).
QIcon IconeBouton(const QString& cle, bool marque);

}  // namespace tg
