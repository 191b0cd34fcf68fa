#pragma once
// What each stage of the work does to the tools of the main window, as plain
// data: a list of changes applied in order (a stage changes only what it
// names; the rest stays as the stage before left it).
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "platform/Dialogues.h"

namespace tg {

struct SessionRecord;

// Toolbar buttons by their keys (also their objectName).
inline const QStringList BoutonsToolbar1 = {"Ouvrir",  "RedimAuto", "Cartouche",
                                            "Sauver",  "Mesure",    "anotations"};
inline const QStringList BoutonsToolbar2 = {"Etalonner", "Rotation", "Recadrer", "Filtres",
                                            "Exporter",  "Importer", "Copier"};

struct Changement {
  enum Genre {
    Actif,    // enabled
    Enfonce,  // pressed
    Marque,   // the done mark of a step button
    Visible,
    Texte,    // text of a field
    Icone,    // icon name of an indicator
  };
  Genre genre;
  QString controle;  // objectName of the action, menu or field
  bool valeur = false;
  QString texte;
  bool operator==(const Changement&) const = default;
};

struct EtatEtape {
  std::vector<Changement> changements;
  QStringList fenetresAFermer;  // objectNames of tool windows to close
  bool viderAffichage = false;  // display emptied, 640 x 480, no stretching
  bool amenerDevant = false;    // bring the main window forward
  std::optional<Bulle> messageAide;
};

// The changes of stage `etape` for this session. Stage 5 and values outside
// 0 to 6 give nothing.
EtatEtape EtatPourEtape(int etape, const SessionRecord& s);

// The two help messages of the stages.
Bulle MessageFormatageOK();
Bulle MessageCartoucheOK();

}  // namespace tg
