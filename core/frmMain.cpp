#include "core/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/Demarrage.h"
#include "core/Session.h"
#include "core/frmFichierPhoto.h"
#include "core/modMain.h"
#include "platform/Dialogues.h"
#include "platform/Fichiers.h"
#include "platform/Systeme.h"
#include "platform/Textes.h"
#include "version.h"

namespace tg {

namespace {
const QString kBienvenue = QStringLiteral("Bienvenue !");
}

frmMain::frmMain(SessionRecord& session, cAdvancedImagery& imagerie, Assembleur assembler,
                 QWidget* parent)
    : QWidget(parent),
      s_(session),
      ai_(imagerie),
      assembler_(std::move(assembler)),
      assistants_(DossierAssistants()) {
  setObjectName(QStringLiteral("frmMain"));
  setWindowTitle(kBienvenue);
  lblBienvenue_ = new QLabel(this);
  lblBienvenue_->setObjectName(QStringLiteral("lblBienvenue"));
  lblBienvenue_->setWordWrap(true);
  cmdSuite_ = new QPushButton(QStringLiteral("Suite >>"), this);
  cmdSuite_->setObjectName(QStringLiteral("cmdSuite"));
  cmdSuite_->setDefault(true);
  connect(cmdSuite_, &QPushButton::clicked, this, [this] { cmdSuite(); });
  auto* v = new QVBoxLayout(this);
  v->addWidget(lblBienvenue_);
  auto* h = new QHBoxLayout;
  h->addStretch();
  h->addWidget(cmdSuite_);
  v->addLayout(h);
  resize(560, 260);
}

frmMain::~frmMain() = default;

bool frmMain::Charger(const QString& ligneCommande) {
  s_.CheminLigneCommande = ligneCommande;
  const QString version = ChaineVersion();
  EcrireFichierVersion(version);
  MettreAJourAssistant(assistants_);
  MigrerFichiers(RepApplication());

  if (s_.DocPath.isEmpty()) s_.DocPath = DossierDocuments();
  s_.DossierTemporaire = GetTemporyFolderPath();
  s_.SeparateurDecimal = SeparateurDecimalSysteme();
  s_.PaysUtilisateur = PaysUtilisateurSysteme();
  lblBienvenue_->setText(TextePremierLancement(s_.PaysUtilisateur, s_.SeparateurDecimal));

  if (!FileExists(CheminUserConfig())) CreerDossiersTravail(s_.DocPath);
  PlacerDossierCourant(s_.DocPath);
  if (!FileExists(CheminObjectif())) EcrireObjectifDefaut();

  premier_ = PreparerConfiguration(s_, version) == Lancement::Premier;
  PrendreFormatConfig(s_);
  if (premier_) {
    show();
    return true;
  }
  return OuvrirPrincipale();
}

bool frmMain::OuvrirPrincipale() {
  if (principale_) return true;
  principale_ = std::make_unique<frmFichierPhoto>(s_, ai_);
  if (assembler_) assembler_(*principale_);
  if (!ControlerEcran(*principale_)) return false;
  principale_->showMaximized();
  // The last load step of the main window, with the helpers' folder known here.
  LancerVerificationMaj(s_, assistants_);
  // End of the session, once every window is gone.
  const QString assistants = assistants_;
  connect(qApp, &QCoreApplication::aboutToQuit, principale_.get(),
          [assistants] { TerminerAssistants(assistants); });
  return true;
}

void frmMain::cmdSuite() {
  const Reponse r = Dialogues().Question(
      kBienvenue, QStringLiteral("Nouvelle installation:\nVoulez vous configurer le programme maintenant ?"),
      Boutons::OuiNon, Reponse::Oui, Icone::Question);
  if (!OuvrirPrincipale()) {
    QApplication::exit(1);
    return;
  }
  hide();
  if (r == Reponse::Oui)
    if (auto* options = principale_->findChild<QAction*>(QStringLiteral("mnuOptions")))
      options->trigger();
}

void frmMain::closeEvent(QCloseEvent* e) {
  // The other windows, from the last to the first.
  const QWidgetList fenetres = QApplication::topLevelWidgets();
  for (auto it = fenetres.rbegin(); it != fenetres.rend(); ++it)
    if (*it != this && *it != principale_.get() && (*it)->isVisible() &&
        (*it)->windowType() != Qt::Popup)
      (*it)->close();
  if (principale_ && principale_->isVisible()) principale_->close();
  e->accept();
}

bool ControlerEcran(frmFichierPhoto& fenetre) {
  SessionRecord& s = fenetre.Session();
  const CasEcran cas = AppliquerEcran(s, Systeme().InfosEcran().largeur);
  if (cas != CasEcran::Confortable)
    Dialogues().Message(QLatin1String(TitreProgramme), TexteEcran(cas),
                        cas == CasEcran::TropPetit ? Icone::Critique : Icone::Exclamation);
  if (cas == CasEcran::TropPetit) return false;
  s.ZoneLargeur = fenetre.width();
  s.ZoneHauteur = fenetre.height();
  return true;
}

}  // namespace tg
