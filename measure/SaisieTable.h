#pragma once
// Cleaning and checking of the eight typed fields of a table, shared by the
// creation dialog, the manager and the headless tool. Fields by index:
// 0 Modele, 1 LargPix, 2 Micro, 3 Config, 4 Obj, 5 Pix, 6 Mic, 7 Focale.
#include <QString>
#include <array>
#include <optional>

#include "measure/TableMesure.h"

namespace tg {

using ChampsTable = std::array<QString, 8>;

// Why a table is refused: the warning's title and text (lines joined by "\n").
struct RefusSaisie {
  QString titre;
  QString texte;
};

enum class ModeSaisie {
  Creation,      // frmGenMesures: field 7 only with the zoom box ticked
  Modification,  // frmGestionTables: all eight required, field 7 always checked
};

// Cut of blanks, every '"' removed, cut again, every '=' made a blank: both
// would disturb the comment block of the final picture.
QString NettoyerChamp(const QString& champ);

// Cleans `champs` in place, checks them in the dialog's order and, when they
// pass, reformats them (1, 5, 6 whole, 7 with two decimals and `separateur`)
// and fills `enr`. `zoom` is the state of the zoom box; without it Focale is 0.
// The limits are strict: LargPix and Pix below 15000, Obj below 200, Mic
// below 32767, Focale below 1200.
std::optional<RefusSaisie> ValiderSaisie(ChampsTable& champs, ModeSaisie mode, bool zoom,
                                         const QString& separateur, EnrMesure& enr);

}  // namespace tg
