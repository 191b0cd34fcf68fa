#include "measure/frmGenMesures.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/modMain.h"
#include "measure/LiensTables.h"
#include "measure/SaisieTable.h"
#include "measure/frmGestionTables.h"
#include "measure/modOpTableMesure.h"
#include "platform/Dialogues.h"
#include "platform/Ecran.h"
#include "platform/Fichiers.h"
#include "platform/Liste.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"
#include "version.h"

namespace tg {

namespace {

const QString kChoisir = QStringLiteral(" *** Choisir *** ");
// The tint of values handed over by the calibration.
const QColor kTeinteRecuperee(255, 255, 192);

QString Titre() { return QLatin1String(TitreProgramme); }

}  // namespace

QPointer<frmGenMesures> frmGenMesures::instance_;

frmGenMesures::frmGenMesures(SessionRecord& session, std::optional<DonneesEtalon> etalon,
                             QWidget* parent)
    : QWidget(parent, Qt::Window), s_(session), etalon_(std::move(etalon)) {
  setObjectName(QStringLiteral("frmGenMesures"));
  setWindowTitle(QStringLiteral("Ajouter une table de mesure"));

  auto* racine = new QVBoxLayout(this);
  lblNbConfig_ = new QLabel(this);
  lblNbConfig_->setObjectName(QStringLiteral("lblNbConfig"));
  racine->addWidget(lblNbConfig_);

  auto* grille = new QGridLayout;
  racine->addLayout(grille);
  const char* libelles[8] = {"Appareil photo (modèle) :",
                             "Largeur brute de capteur !",
                             "Microscope:",
                             "Configuration :",
                             "Objectif de réf.",
                             "X Pixels:",
                             "X Microns:",
                             nullptr};
  for (int i = 0; i < 8; ++i) {
    txtFields_[i] = new QLineEdit(this);
    txtFields_[i]->setObjectName(QStringLiteral("txtFields%1").arg(i));
    if (i == 1 || i >= 4) txtFields_[i]->installEventFilter(this);
    if (libelles[i]) grille->addWidget(new QLabel(QString::fromUtf8(libelles[i]), this), i, 0);
    grille->addWidget(txtFields_[i], i, 1);
  }
  const char* nomsCombos[3] = {"comboModele", "comboMicro", "comboConfig"};
  const int lignesCombos[3] = {0, 2, 3};
  for (int j = 0; j < 3; ++j) {
    cmdAfficherChoixLst_[j] = new QPushButton(QStringLiteral("..."), this);
    cmdAfficherChoixLst_[j]->setObjectName(QStringLiteral("cmdAfficherChoixLst%1").arg(j));
    combos_[j] = new QComboBox(this);
    combos_[j]->setObjectName(QLatin1String(nomsCombos[j]));
    combos_[j]->hide();
    grille->addWidget(cmdAfficherChoixLst_[j], lignesCombos[j], 2);
    grille->addWidget(combos_[j], lignesCombos[j], 3);
    connect(cmdAfficherChoixLst_[j], &QPushButton::clicked, this, [this, j] {
      combos_[j]->show();
      combos_[j]->showPopup();
    });
    connect(combos_[j], &QComboBox::activated, this,
            [this, j](int index) { ChoixListe(j, index); });
  }
  comboListeObjectif_ = new QComboBox(this);
  comboListeObjectif_->setObjectName(QStringLiteral("comboListeObjectif"));
  grille->addWidget(comboListeObjectif_, 4, 3);
  grille->addWidget(new QLabel(QStringLiteral("(Evitez les faibles gx !)"), this), 4, 2);
  connect(comboListeObjectif_, &QComboBox::activated, this,
          [this](int index) { txtFields_[4]->setText(comboListeObjectif_->itemText(index)); });
  // The list shows the reference objective the field holds, and nothing
  // while the field is empty: a magnification never looks chosen when it is not.
  connect(txtFields_[4], &QLineEdit::textChanged, this, [this](const QString& t) {
    comboListeObjectif_->setCurrentIndex(t.trimmed().isEmpty() ? -1 : comboListeObjectif_->findText(t.trimmed()));
  });

  chkZoomApn_ = new QCheckBox(QStringLiteral("   Zoom APN ?  (l. focale)"), this);
  chkZoomApn_->setObjectName(QStringLiteral("chkZoomApn"));
  grille->addWidget(chkZoomApn_, 7, 0);
  connect(chkZoomApn_, &QCheckBox::clicked, this, [this](bool c) { chkZoomApnClic(c); });
  connect(chkZoomApn_, &QCheckBox::toggled, txtFields_[7], &QWidget::setVisible);

  picInfos_ = new QFrame(this);
  picInfos_->setObjectName(QStringLiteral("picInfos"));
  picInfos_->setFrameShape(QFrame::StyledPanel);
  auto* infos = new QHBoxLayout(picInfos_);
  auto* legende = new QLabel(QStringLiteral("récupéré  pas modif."), picInfos_);
  legende->setAutoFillBackground(true);
  QPalette p = legende->palette();
  p.setColor(QPalette::Window, kTeinteRecuperee);
  legende->setPalette(p);
  infos->addWidget(legende);
  auto* cmdDeloquerChamps = new QPushButton(QStringLiteral("Débloquer les champs"), picInfos_);
  cmdDeloquerChamps->setObjectName(QStringLiteral("cmdDeloquerChamps"));
  infos->addWidget(cmdDeloquerChamps);
  auto* cmdAfficherConfig = new QPushButton(QStringLiteral("Options ..."), picInfos_);
  cmdAfficherConfig->setObjectName(QStringLiteral("cmdAfficherConfig"));
  infos->addWidget(cmdAfficherConfig);
  racine->addWidget(picInfos_);
  connect(cmdDeloquerChamps, &QPushButton::clicked, this, [this] {
    for (QLineEdit* t : txtFields_) Verrouiller(t, false);
    cmdAfficherChoixLst_[0]->setEnabled(FileExists(CheminTableMesure()) && combos_[0]->isEnabled());
  });
  connect(cmdAfficherConfig, &QPushButton::clicked, this, [] {
    if (Liens().ouvrirOptions) Liens().ouvrirOptions();
  });

  auto* boutons = new QHBoxLayout;
  racine->addLayout(boutons);
  cmdCreFichier_ = new QPushButton(QStringLiteral("Ajouter la table"), this);
  cmdCreFichier_->setObjectName(QStringLiteral("cmdCreFichier"));
  cmdGestionTable_ = new QPushButton(QStringLiteral("Voir/Editer"), this);
  cmdGestionTable_->setObjectName(QStringLiteral("cmdGestionTable"));
  auto* cmdQuitter = new QPushButton(QStringLiteral("Sortir"), this);
  cmdQuitter->setObjectName(QStringLiteral("cmdQuitter"));
  boutons->addWidget(cmdCreFichier_);
  boutons->addWidget(cmdGestionTable_);
  boutons->addWidget(cmdQuitter);
  connect(cmdCreFichier_, &QPushButton::clicked, this, &frmGenMesures::cmdCreFichier);
  connect(cmdGestionTable_, &QPushButton::clicked, this, &frmGenMesures::cmdGestionTable);
  connect(cmdQuitter, &QPushButton::clicked, this, &QWidget::close);

  Charger();
}

frmGenMesures::~frmGenMesures() { fichier_.Fermer(); }

frmGenMesures* frmGenMesures::Afficher(SessionRecord& session, std::optional<DonneesEtalon> etalon,
                                       QWidget* parent) {
  if (instance_ && !etalon) {
    instance_->raise();
    instance_->activateWindow();
    return instance_;
  }
  if (instance_) {
    instance_->close();
    delete instance_;
  }
  const bool depuisEtalon = etalon.has_value();
  auto* f = new frmGenMesures(session, std::move(etalon), parent);
  f->setAttribute(Qt::WA_DeleteOnClose);
  instance_ = f;
  if (Liens().fenetreOuverte) Liens().fenetreOuverte(f);
  // From a calibration: beside the picture of the stage micrometer.
  AjusterAEcran(f);
  if (depuisEtalon && parent && parent->window()->objectName() == u"frmMesure")
    PlacerACoteDe(f, parent->window()->findChild<QWidget*>(QStringLiteral("picImage")), {parent->window()});
  f->show();
  return f;
}

void frmGenMesures::Charger() {
  const bool existe = FileExists(CheminTableMesure());
  for (int j = 0; j < 3; ++j) {
    ListeCombo liste(combos_[j]);
    ExtraireChoix(liste, j + 1);
    combos_[j]->setItemText(0, kChoisir);
    combos_[j]->setCurrentIndex(0);
    combos_[j]->setEnabled(combos_[j]->count() >= 2);
    cmdAfficherChoixLst_[j]->setEnabled(existe);
  }
  ListeCombo objectifs(comboListeObjectif_);
  ChargerListeObjectif(objectifs);
  comboListeObjectif_->setCurrentIndex(-1);

  cmdCreFichier_->setEnabled(true);
  cmdGestionTable_->setEnabled(false);
  for (QLineEdit* t : txtFields_) t->clear();
  chkZoomApn_->setChecked(false);
  txtFields_[7]->hide();

  // Opening creates the file when it is missing; an empty one is removed
  // at the next start.
  const int entete = fichier_.Ouvrir() ? fichier_.LireEntete() : 0;
  if (entete >= 1) {
    nbEnreg_ = entete;
    AfficherNbConfig();
  } else {
    nbEnreg_ = 1;
    lblNbConfig_->setText(QStringLiteral("Vous n'avez pas encore créé de tables"));
  }

  picInfos_->setVisible(etalon_.has_value());
  if (etalon_) PrendreEtalon();
}

void frmGenMesures::AfficherNbConfig() {
  lblNbConfig_->setText(QStringLiteral("Vous avez en ce moment ") + QString::number(nbEnreg_ - 1) +
                        QStringLiteral(" table(s) en mémoire"));
}

void frmGenMesures::PrendreEtalon() {
  txtFields_[1]->setText(etalon_->largeurImgOrigine);
  txtFields_[5]->setText(etalon_->mesurePixel);
  if (!s_.Modele.isEmpty()) txtFields_[0]->setText(s_.Modele);
  if (s_.FocaleAPN > 0) {
    txtFields_[7]->setText(TexteReel(s_.FocaleAPN, s_.SeparateurDecimal));
    chkZoomApn_->setChecked(true);
  }
  // The model keeps its EXIF spelling, on which tables are chosen later.
  if (txtFields_[0]->text().size() >= 4) {
    txtFields_[0]->setReadOnly(true);
    cmdAfficherChoixLst_[0]->setEnabled(false);
  }
  Verrouiller(txtFields_[1], true);
  Verrouiller(txtFields_[4], true);  // chosen from comboListeObjectif
  Verrouiller(txtFields_[5], true);
  if (s_.FocaleAPN > 0) Verrouiller(txtFields_[7], true);
}

void frmGenMesures::Verrouiller(QLineEdit* champ, bool verrou) {
  champ->setReadOnly(verrou);
  QPalette p = champ->palette();
  p.setColor(QPalette::Base, verrou ? kTeinteRecuperee : palette().color(QPalette::Base));
  champ->setPalette(p);
}

void frmGenMesures::chkZoomApnClic(bool coche) {
  if (!coche) return;
  if (s_.FocaleAPN == 0)
    Dialogues().Message(Titre(),
                        QStringLiteral("Focale = 0mm, êtes vous sûr d'utiliser un APN (ou app. à "
                                       "zoom variable) ?\n(si non, ne cochez pas ce choix)"),
                        Icone::Exclamation);
  if (etalon_ && s_.FocaleAPN > 0)
    txtFields_[7]->setText(TexteReel(s_.FocaleAPN, s_.SeparateurDecimal));
}

void frmGenMesures::ChoixListe(int liste, int index) {
  const QString valeur = combos_[liste]->itemText(index);
  const int champ = liste == 0 ? 0 : liste + 1;  // Modele, Micro, Config
  txtFields_[champ]->setText(valeur == kChoisir ? QString() : valeur.trimmed());
  combos_[liste]->hide();
}

bool frmGenMesures::eventFilter(QObject* objet, QEvent* e) {
  if (e->type() == QEvent::KeyPress) {
    auto* touche = static_cast<QKeyEvent*>(e);
    const QString texte = touche->text();
    if (texte.size() == 1) {
      int code = texte.at(0).unicode();
      ReplaceNationalSep(code, s_.SeparateurDecimal);
      if (code != texte.at(0).unicode()) {
        if (auto* champ = qobject_cast<QLineEdit*>(objet); champ && !champ->isReadOnly())
          champ->insert(QString(QChar(code)));
        return true;
      }
    }
  }
  return QWidget::eventFilter(objet, e);
}

void frmGenMesures::cmdCreFichier() {
  ChampsTable champs;
  for (int i = 0; i < 8; ++i) champs[i] = txtFields_[i]->text();
  EnrMesure enr;
  const auto refus = ValiderSaisie(champs, ModeSaisie::Creation, chkZoomApn_->isChecked(),
                                   s_.SeparateurDecimal, enr);
  for (int i = 0; i < 8; ++i) txtFields_[i]->setText(champs[i]);
  if (refus) {
    Dialogues().Message(refus->titre, refus->texte, Icone::Exclamation);
    return;
  }
  if (!fichier_.EstOuvert()) fichier_.Ouvrir();
  if (!AjouterTable(fichier_, nbEnreg_, enr)) {
    const ErreurTable err = fichier_.Erreur();
    Dialogues().Message(
        Titre(),
        QStringLiteral("Erreur non déterminée ...\n") +
            TexteErreur(err.numero, err.texte, QStringLiteral("cmdCreFichier"),
                        QStringLiteral("frmGenMesures"))
                .replace(QStringLiteral(" of Module "), QStringLiteral(" of Feuille ")),
        Icone::Critique);
    return;
  }
  TableMesure() = enr;
  fichier_.Fermer();
  cmdCreFichier_->setEnabled(false);
  cmdGestionTable_->setEnabled(true);
  AfficherNbConfig();
  picInfos_->hide();
  SignalerEtatTables();
  Dialogues().Message(Titre(),
                      QStringLiteral("OK, cette configuration à été ajoutée !\n"
                                     "Cliquez sur Voir/Editer ou Sortir"),
                      Icone::Information);
}

void frmGenMesures::cmdGestionTable() {
  frmGestionTables::Afficher(s_, /*derniereTable=*/true, parentWidget());
}

void frmGenMesures::closeEvent(QCloseEvent* e) {
  fichier_.Fermer();
  etalon_.reset();
  QWidget::closeEvent(e);
}

}  // namespace tg
