#pragma once
// The pictures of the main window, drawn at run time: indicators, toolbar
// buttons and the welcome picture.
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace tg {

// Indicator by name: "Apn", "Paysage", "RN", "Portrait", "Carre", "Taille",
// "ApnVide", "ZoomVide", "ZoomOk", "ZoomNum"; "Accueil" is the welcome
// picture. An unknown name gives an empty 32 x 32 picture.
QPixmap IconeIndicateur(const QString& nom);

// Toolbar button by its key; `marque` adds the done mark (a green tick).
QIcon IconeBouton(const QString& cle, bool marque);

}  // namespace tg
