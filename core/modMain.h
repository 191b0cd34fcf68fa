#pragma once
// Configuration store and the program's data files.
#include <QString>

#include "core/SessionRecord.h"

namespace tg {

class IListe;

QString CheminUserConfig();  // RepApplication() + "UserConfig.ini"
QString CheminObjectif();    // RepApplication() + "objectif.dat"
QString CheminRecent();      // RepApplication() + "recent.dat"

// Reads every key of UserConfig.ini into the record (defaults for missing
// keys), creating the default working folders first. A value that does not
// read (not a number, beyond 16 bits...) gives that key its default alone;
// one message then names the file, each such key and its value.
void RecupereValeurIni(SessionRecord& s);
// The text of that message; `lignes` one "[Section] Cle=valeur (...)" each.
QString TexteValeursIllisibles(const QString& fichier, const QStringList& lignes);

// objectif.dat at first run: 4, 10, 20, 40, 100 then empty items to 30 lines.
bool EcrireObjectifDefaut();
// Clears the list and fills it from objectif.dat: 30 items at most, empty ones
// skipped. Left empty when the file does not exist.
void ChargerListeObjectif(IListe& liste);

// The standard report of a trapped error.
QString TexteErreur(int numero, const QString& texte, const QString& procedure,
                    const QString& module);

}  // namespace tg
