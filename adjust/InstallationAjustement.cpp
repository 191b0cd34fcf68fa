#include "adjust/InstallationAjustement.h"

#include "adjust/frmFiltres.h"
#include "adjust/frmRecadrage.h"
#include "core/frmFichierPhoto.h"

namespace tg {

void InstallerAjustement(frmFichierPhoto& fenetre) {
  fenetre.DefinirCrochet(QStringLiteral("frmFiltres"), [&fenetre] { frmFiltres::Afficher(fenetre); });
  fenetre.DefinirCrochet(QStringLiteral("frmRecadrage"), [&fenetre] { frmRecadrage::Afficher(fenetre); });
}

}  // namespace tg
