#pragma once
// The walk of the finder without its window: which entries of a folder, or of
// a tree, match a name filter and an extension, in the file system's order.
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <atomic>
#include <functional>

#include "imaging/cAdvancedImagery.h"

namespace tg {

// The folder text with one trailing "/" (none added to an empty text).
QString DossierAvecSeparateur(const QString& dossier);
// txtFiltre followed by the extension, as a whole-name wildcard, letters in
// either case ("*" any run, "?" one character).
QRegularExpression MotifRecherche(const QString& filtre, const QString& extension);

struct ResultatParcours {
  QStringList chemins;  // List1: full paths, in the order found
  QStringList noms;     // List2: bare names
  int compte = 0;       // entries that matched, "." and ".." included
  bool interrompu = false;
};

// ParcourirDossier: the entries of `dossier` (ending in "/") whose name
// matches, folders included, then with `sousDossiers` each subfolder the same
// way, after the files of its parent. `arret` is read before each entry, so
// a stop takes effect at once; `passe` runs at the start of each folder's
// pass (where the window lets its events through). Links to folders are not
// followed, so a tree with a loop ends.
void ParcourirDossier(const QString& dossier, const QRegularExpression& motif, bool sousDossiers,
                      const std::atomic<bool>& arret, ResultatParcours& r,
                      const std::function<void()>& passe = {});

// Text3: "n fichiers trouvés", and on a stop a line end and "Processus interrompu !".
QString TexteCompte(int compte, bool interrompu);

// Text4: the lines of the selected file's facts.
QStringList LignesInfos(const QString& nom, const InfosImage& infos, qint64 octets);

}  // namespace tg
