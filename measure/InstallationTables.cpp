#include "measure/InstallationTables.h"

#include <QAction>
#include <QPointer>

#include "core/frmFichierPhoto.h"
#include "measure/LiensTables.h"
#include "measure/frmExtrapolFocale.h"
#include "measure/frmGenMesures.h"
#include "measure/frmGestionTables.h"
#include "measure/frmMesure.h"
#include "platform/Ecran.h"

namespace tg {

void InstallerTablesMesure(frmFichierPhoto& fenetre) {
  // The links outlive no main window: a destroyed one is simply not told.
  QPointer<frmFichierPhoto> f(&fenetre);
  LiensTables liens;
  liens.activerMenuGestion = [f](bool actif) {
    if (!f) return;
    if (auto* a = f->findChild<QAction*>(QStringLiteral("mnuGestionTables"))) a->setEnabled(actif);
  };
  liens.ouvrirOptions = [f] {
    if (!f) return;
    if (auto* a = f->findChild<QAction*>(QStringLiteral("mnuOptions"))) a->trigger();
  };
  liens.fenetreOuverte = [f](QWidget* w) {
    if (f) f->FenetreOuverte(w);
  };
  DefinirLiensTables(std::move(liens));

  fenetre.DefinirCrochet(QStringLiteral("frmGenMesures"), [f] {
    if (f) frmGenMesures::Afficher(f->Session(), std::nullopt, f);
  });
  // The main window has already refused to open without table_mesure.dat.
  fenetre.DefinirCrochet(QStringLiteral("frmGestionTables"), [f] {
    if (f) frmGestionTables::Afficher(f->Session(), false, f);
  });
  // The focal extrapolation from the main window: its result stays in it.
  fenetre.DefinirCrochet(QStringLiteral("frmExtrapolFocale"), [f] {
    if (!f) return;
    f->Session().DepuisCartouche = false;
    f->FenetreOuverte(frmExtrapolFocale::Afficher(f->Session(), f));
  });
  // The measuring window, in the mode the menu has just set in ModeMesure.
  fenetre.DefinirCrochet(QStringLiteral("frmMesure"), [f] {
    if (!f) return;
    frmFichierPhoto::FermerFenetres(QStringLiteral("frmMesure"));
    auto* w = new frmMesure(f->Session(), f->Imagerie(), f);
    AjusterAEcran(w);
    w->show();
    f->FenetreOuverte(w);
  });
}

}  // namespace tg
