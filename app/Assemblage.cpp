#include "app/Assemblage.h"

#include "adjust/InstallationAjustement.h"
#include "annotation/frmAnnotations2.h"
#include "finder/frmSearch.h"
#include "cartouche/frmAjouterCartouche.h"
#include "cartouche/modExtractMeta.h"
#include "core/Acquisition.h"
#include "core/ApplicationsExternes.h"
#include "core/Chargement.h"
#include "core/frmConfig.h"
#include "core/frmFichierPhoto.h"
#include "core/frmFichierPhotoChargement.h"
#include "measure/InstallationTables.h"
#include "metadata/ui/frmEditComments.h"

namespace tg {

void Assembler(frmFichierPhoto& fenetre) {
  // Loading, output formats and saving (core).
  InstallerChargementEtFormats(fenetre);
  // The options window behind mnuOptions (core).
  InstallerConfig(fenetre);
  // Measurement tables: creating and managing them (measure).
  InstallerTablesMesure(fenetre);
  // Readers of the comment block and EXIF fields, step 7 of a load (cartouche).
  InstallerLecteurMeta(&LireMetadonneesImage);
  // The comment editor of the picture file on disk (metadata).
  fenetre.DefinirCrochet(QStringLiteral("frmEditComments"),
                         [&fenetre] { frmEditComments::Ouvrir(fenetre); });
  // The cartouche form, and the rebuild of the final picture once the
  // annotations are dropped (cartouche).
  fenetre.DefinirCrochet(QStringLiteral("frmAjouterCartouche"),
                         [&fenetre] { frmAjouterCartouche::Afficher(fenetre); });
  fenetre.DefinirCrochet(QStringLiteral("ReconstruireCartouche"),
                         [&fenetre] { frmAjouterCartouche::Reconstruire(fenetre); });
  // The external editor: export, the applications' window, import (core).
  InstallerApplicationsExternes(fenetre);
  // Scanners and cameras through SANE (core).
  InstallerAcquisition(fenetre);
  // The finder, the default way to open a picture (finder).
  fenetre.DefinirCrochet(QStringLiteral("frmSearch"), [&fenetre] { frmSearch::Afficher(fenetre); });
  // Filters and crop (adjust).
  InstallerAjustement(fenetre);
  // The annotation window over the final picture (annotation).
  fenetre.DefinirCrochet(QStringLiteral("frmAnnotations2"),
                         [&fenetre] { frmAnnotations2::Afficher(fenetre); });
}

}  // namespace tg
