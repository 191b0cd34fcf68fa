#include "measure/frmGestionTables.h"

#include <QButtonGroup>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "core/modMain.h"
#include "measure/LiensTables.h"
#include "measure/SaisieTable.h"
#include "measure/modOpTableMesure.h"
#include "platform/Dialogues.h"
#include "platform/Fichiers.h"
#include "platform/Nombres.h"
#include "version.h"

namespace tg {

namespace {

QString Titre() { return QLatin1String(TitreProgramme); }

void Dire(const QString& texte, Icone icone = Icone::Information) {
  Dialogues().Message(Titre(), texte, icone);
}

QPushButton* Bouton(QWidget* parent, const char* nom, const QString& texte) {
  auto* b = new QPushButton(texte, parent);
  b->setObjectName(QLatin1String(nom));
  return b;
}

// Replaces `cible` by a byte copy of `source`; false when the copy failed.
bool Copier(const QString& source, const QString& cible) {
  if (FileExists(cible) && !QFile::remove(cible)) return false;
  return QFile::copy(source, cible);
}

QString DateFichier(const QDateTime& d) {
  return d.isValid() ? QLocale::system().toString(d, QLocale::ShortFormat) : QString();
}

}  // namespace

QPointer<frmGestionTables> frmGestionTables::instance_;

frmGestionTables::frmGestionTables(SessionRecord& session, bool derniereTable, QWidget* parent)
    : QWidget(parent, Qt::Window), s_(session), derniereTable_(derniereTable) {
  setObjectName(QStringLiteral("frmGestionTables"));
  setWindowTitle(QStringLiteral("Gestion des tables de mesure"));
  // While it is open no other window writes the tables.
  setWindowModality(Qt::ApplicationModal);

  auto* racine = new QVBoxLayout(this);
  auto* barre = new QMenuBar(this);
  QMenu* recherche = barre->addMenu(QStringLiteral("&Recherche"));
  recherche->setObjectName(QStringLiteral("mnuRecherche"));
  QAction* rechercher = recherche->addAction(QStringLiteral("Rechercher ..."));
  rechercher->setObjectName(QStringLiteral("mnuRechercher"));
  connect(rechercher, &QAction::triggered, this, &frmGestionTables::Rechercher);
  racine->setMenuBar(barre);

  auto* filtres = new QHBoxLayout;
  racine->addLayout(filtres);
  auto* groupe = new QButtonGroup(this);
  const char* libelles[5] = {"Toutes", "Appareil", "Micro", "Config", "Largeur"};
  for (int i = 0; i < 5; ++i) {
    optFiltre_[i] = new QRadioButton(QLatin1String(libelles[i]), this);
    optFiltre_[i]->setObjectName(QStringLiteral("optFiltre%1").arg(i));
    groupe->addButton(optFiltre_[i], i);
    filtres->addWidget(optFiltre_[i]);
  }
  optFiltre_[0]->setChecked(true);
  connect(groupe, &QButtonGroup::idClicked, this, &frmGestionTables::ChoisirFiltre);

  comboChoixExtract_ = new QComboBox(this);
  comboChoixExtract_->setObjectName(QStringLiteral("comboChoixExtract"));
  comboChoixExtract_->hide();
  racine->addWidget(comboChoixExtract_);
  connect(comboChoixExtract_, &QComboBox::activated, this, &frmGestionTables::ChoisirValeur);
  comboTable_ = new QComboBox(this);
  comboTable_->setObjectName(QStringLiteral("comboTable"));
  racine->addWidget(comboTable_);
  connect(comboTable_, &QComboBox::activated, this, &frmGestionTables::ChoisirTable);

  auto* grille = new QGridLayout;
  racine->addLayout(grille);
  const char* noms[8] = {"Appareil photo (modèle) :",
                         "Largeur brute de capteur :",
                         "Microscope :",
                         "Configuration :",
                         "Objectif de réf. :",
                         "X Pixels :",
                         "X Microns :",
                         "Focale (mm) :"};
  const char* bulles[8] = {nullptr,
                           nullptr,
                           nullptr,
                           nullptr,
                           "Objectif de référence de l'image étalon",
                           "Equivalence X pixel = X Microns",
                           "Equivalence X pixel = X Microns",
                           "Focale de l'image étalon (0 si pas APN)"};
  for (int i = 0; i < 8; ++i) {
    txtFields_[i] = new QLineEdit(this);
    txtFields_[i]->setObjectName(QStringLiteral("txtFields%1").arg(i));
    if (bulles[i]) txtFields_[i]->setToolTip(QString::fromUtf8(bulles[i]));
    grille->addWidget(new QLabel(QString::fromUtf8(noms[i]), this), i, 0);
    grille->addWidget(txtFields_[i], i, 1);
  }

  auto* navigation = new QHBoxLayout;
  racine->addLayout(navigation);
  cmdPrevious_ = Bouton(this, "cmdPrevious", QStringLiteral("<"));
  lblNum_ = new QLabel(this);
  lblNum_->setObjectName(QStringLiteral("lblNum"));
  cmdNext_ = Bouton(this, "cmdNext", QStringLiteral(">"));
  cmdModif_ = Bouton(this, "cmdModif", QStringLiteral("Modifier"));
  cmdSuppr_ = Bouton(this, "cmdSuppr", QStringLiteral("Supprimer"));
  auto* cmdQuitter = Bouton(this, "cmdQuitter", QStringLiteral("Sortir"));
  for (QWidget* w : {static_cast<QWidget*>(cmdPrevious_), static_cast<QWidget*>(lblNum_),
                     static_cast<QWidget*>(cmdNext_), static_cast<QWidget*>(cmdModif_),
                     static_cast<QWidget*>(cmdSuppr_), static_cast<QWidget*>(cmdQuitter)})
    navigation->addWidget(w);
  connect(cmdPrevious_, &QPushButton::clicked, this, &frmGestionTables::cmdPrevious);
  connect(cmdNext_, &QPushButton::clicked, this, &frmGestionTables::cmdNext);
  connect(cmdModif_, &QPushButton::clicked, this, &frmGestionTables::cmdModif);
  connect(cmdSuppr_, &QPushButton::clicked, this, &frmGestionTables::cmdSuppr);
  connect(cmdQuitter, &QPushButton::clicked, this, &QWidget::close);

  auto* maxBox1 =
      Bouton(this, "MaxBox1", QStringLiteral("Copie de secours, exportation et divers (+/-)"));
  racine->addWidget(maxBox1);
  fraDivers_ = new QFrame(this);
  fraDivers_->setObjectName(QStringLiteral("fraDivers"));
  fraDivers_->setFrameShape(QFrame::StyledPanel);
  fraDivers_->hide();
  racine->addWidget(fraDivers_);
  connect(maxBox1, &QPushButton::clicked, this,
          [this] { fraDivers_->setVisible(!fraDivers_->isVisible()); });
  auto* divers = new QGridLayout(fraDivers_);
  lblDateCopieSecours_ = new QLabel(fraDivers_);
  lblDateCopieSecours_->setObjectName(QStringLiteral("lblDateCopieSecours"));
  divers->addWidget(lblDateCopieSecours_, 0, 0, 1, 2);
  cmdBackupMesure_ = Bouton(fraDivers_, "cmdBackupMesure", QStringLiteral("Copie de secours"));
  cmdBackupMesure_->setToolTip(QStringLiteral("Copie de secours (interne)"));
  cmdRecupTables_ =
      Bouton(fraDivers_, "cmdRecupTables", QStringLiteral("Restaurer (copie de secours)"));
  cmdExporterTables_ =
      Bouton(fraDivers_, "cmdExporterTables", QStringLiteral("Exporter vos tables"));
  cmdEffacerTables_ =
      Bouton(fraDivers_, "cmdEffacerTables", QStringLiteral("Supprimer toutes les tables"));
  divers->addWidget(cmdBackupMesure_, 1, 0);
  divers->addWidget(cmdRecupTables_, 1, 1);
  divers->addWidget(cmdExporterTables_, 2, 0);
  divers->addWidget(cmdEffacerTables_, 2, 1);
  connect(cmdBackupMesure_, &QPushButton::clicked, this, &frmGestionTables::cmdBackupMesure);
  connect(cmdRecupTables_, &QPushButton::clicked, this, &frmGestionTables::cmdRecupTables);
  connect(cmdExporterTables_, &QPushButton::clicked, this, &frmGestionTables::cmdExporterTables);
  connect(cmdEffacerTables_, &QPushButton::clicked, this, &frmGestionTables::cmdEffacerTables);

  Ouverture();
}

frmGestionTables::~frmGestionTables() { fichier_.Fermer(); }

frmGestionTables* frmGestionTables::Afficher(SessionRecord& session, bool derniereTable,
                                             QWidget* parent) {
  if (instance_) {
    instance_->close();
    delete instance_;
  }
  auto* f = new frmGestionTables(session, derniereTable, parent);
  f->setAttribute(Qt::WA_DeleteOnClose);
  instance_ = f;
  if (Liens().fenetreOuverte) Liens().fenetreOuverte(f);
  f->show();
  return f;
}

void frmGestionTables::ErreurTrappee(const QString& procedure) {
  Dire(TexteErreur(fichier_.Erreur().numero, fichier_.Erreur().texte, procedure,
                   QStringLiteral("frmGestionTables"))
           .replace(QStringLiteral(" of Module "), QStringLiteral(" of Feuille ")),
       Icone::Critique);
}

// ------------------------------------------------------------------ opening

void frmGestionTables::Ouverture() {
  AfficherDateCopie();
  const int entete = fichier_.Ouvrir() ? fichier_.LireEntete() : 0;
  // A header of 1 counts no table: there would be nothing to show.
  if (entete > 1) {
    nbEnreg_ = entete;
    for (QWidget* w : {static_cast<QWidget*>(cmdSuppr_), static_cast<QWidget*>(cmdModif_),
                       static_cast<QWidget*>(cmdPrevious_), static_cast<QWidget*>(cmdNext_)})
      w->setEnabled(true);
    optFiltre_[0]->setChecked(true);
    ChoisirFiltre(0);
    AfficherSlot(derniereTable_ ? nbEnreg_ : 2);
  } else {
    nbEnreg_ = 0;
    courant_ = 0;
    const QString chemin = CheminTableMesure();
    fichier_.Fermer();
    QFile::remove(chemin);
    for (QWidget* w : {static_cast<QWidget*>(cmdSuppr_), static_cast<QWidget*>(cmdModif_),
                       static_cast<QWidget*>(cmdPrevious_), static_cast<QWidget*>(cmdNext_),
                       static_cast<QWidget*>(comboTable_)})
      w->setEnabled(false);
    Dire(QStringLiteral("Il n'y a pas d'enregistrement !\n"
                        "Si vous possédez une copie de secours vous pouvez la restaurer ..."),
         Icone::Exclamation);
  }
  EtatBoutons();
}

void frmGestionTables::AfficherSlot(int k) {
  if (!fichier_.LireEnr(k)) {
    ErreurTrappee(QStringLiteral("AfficherSlot"));
    return;
  }
  const EnrMesure& t = TableMesure();
  const QString& sep = s_.SeparateurDecimal;
  txtFields_[0]->setText(t.Modele);
  txtFields_[1]->setText(QString::number(t.LargPix));
  txtFields_[2]->setText(t.Micro);
  txtFields_[3]->setText(t.Config);
  txtFields_[4]->setText(TexteReel(t.Obj, sep));
  txtFields_[5]->setText(QString::number(t.Pix));
  txtFields_[6]->setText(QString::number(t.Mic));
  txtFields_[7]->setText(TexteReel(t.Focale, sep));
  courant_ = k;
  lblNum_->setText(QString::number(k - 1) + QStringLiteral(" de #") +
                   QString::number(nbEnreg_ - 1));
}

void frmGestionTables::EtatBoutons() {
  const bool dat = FileExists(CheminTableMesure());
  const bool bak = FileExists(CheminTableMesureBak());
  if (dat || bak) {
    comboTable_->setEnabled(dat && (Filtre() == 0 || valeurChoisie_));
    cmdRecupTables_->setEnabled(bak);
    cmdBackupMesure_->setEnabled(dat);
    cmdEffacerTables_->setEnabled(dat);
    cmdExporterTables_->setEnabled(dat);
  }
  SignalerEtatTables();
}

void frmGestionTables::AfficherDateCopie() {
  const QString bak = CheminTableMesureBak();
  if (!FileExists(bak)) {
    lblDateCopieSecours_->setText(QStringLiteral("Pas de copie de secours"));
    return;
  }
  const QFileInfo info(bak);
  const QDateTime creation =
      info.birthTime().isValid() ? info.birthTime() : info.metadataChangeTime();
  lblDateCopieSecours_->setText(
      QStringLiteral("Copie de secours: \nCréé le : ") + DateFichier(creation) +
      QStringLiteral("\nDernier accès le : ") + DateFichier(info.lastRead()) +
      QStringLiteral("\nDernière modification le : ") + DateFichier(info.lastModified()));
}

// ------------------------------------------------------------------ browsing

int frmGestionTables::Filtre() const {
  for (int i = 0; i < 5; ++i)
    if (optFiltre_[i]->isChecked()) return i;
  return 0;
}

void frmGestionTables::RemplirListeTables() {
  ListeCombo liste(comboTable_);
  if (Filtre() == 0) {
    RemplirComboTable(liste, s_.SeparateurDecimal);
    comboIndex1_.Vider();
  } else if (valeurChoisie_) {
    ComboTableSelonChoix(liste, comboIndex1_, Filtre(), valeurFiltre_, s_.SeparateurDecimal);
  }
}

void frmGestionTables::ChoisirFiltre(int index) {
  valeurChoisie_ = false;
  valeurFiltre_.clear();
  if (index == 0) {
    comboChoixExtract_->hide();
    comboTable_->setEnabled(FileExists(CheminTableMesure()));
    RemplirListeTables();
    return;
  }
  ListeCombo valeurs(comboChoixExtract_);
  ExtraireChoix(valeurs, index);
  comboChoixExtract_->show();
  comboTable_->setEnabled(false);
}

void frmGestionTables::ChoisirValeur(int index) {
  valeurFiltre_ = comboChoixExtract_->itemText(index);
  valeurChoisie_ = true;
  RemplirListeTables();
  comboTable_->setEnabled(true);
}

void frmGestionTables::ChoisirTable(int index) {
  const int slot = Filtre() == 0 ? index + 1 : comboIndex1_.Item(index).toInt() + 1;
  if (slot >= 2 && slot <= nbEnreg_) AfficherSlot(slot);
}

void frmGestionTables::cmdNext() {
  if (courant_ < nbEnreg_) AfficherSlot(courant_ + 1);
  if (Filtre() == 0) RemplirListeTables();
}

void frmGestionTables::cmdPrevious() {
  if (courant_ > 2) AfficherSlot(courant_ - 1);
  if (Filtre() == 0) RemplirListeTables();
}

void frmGestionTables::Rechercher() {
  const auto reponse = Dialogues().Saisie(
      QStringLiteral("Rechercher"), QStringLiteral("Tapez le nom de l'enregistrement."), QString());
  if (!reponse || !fichier_.EstOuvert()) return;
  EnrMesure e;
  for (int i = 2; i <= nbEnreg_; ++i) {
    if (!fichier_.LireEnr(i, e)) {
      ErreurTrappee(QStringLiteral("mnuRechercher"));
      return;
    }
    // Each match is shown in turn: the last one stays.
    if (CorrespondMotif(e.Modele, *reponse)) AfficherSlot(i);
  }
}

// ------------------------------------------------------------------ editing

void frmGestionTables::cmdModif() {
  if (!fichier_.EstOuvert() || courant_ < 2) return;
  const Reponse r = Dialogues().Question(
      QStringLiteral(" Modification des tables"),
      QStringLiteral("Attention : Si le nom de l'appareil photo (tag modele)\n"
                     "ne correspond plus exactement aux infos Exif, le choix automatique\n"
                     "des tables dans le cartouche sera moins performant !\n"
                     "(idem pour la focale et la largeur)\n"
                     "\n"
                     "Vous pourrez néanmoins faire un choix manuel dans la liste\n"
                     "\n"
                     "Voulez-vous appliquer vos modifications ?"),
      Boutons::OuiNon, Reponse::Non, Icone::Exclamation);
  if (r != Reponse::Oui) return;
  ChampsTable champs;
  for (int i = 0; i < 8; ++i) champs[i] = txtFields_[i]->text();
  EnrMesure enr;
  const auto refus =
      ValiderSaisie(champs, ModeSaisie::Modification, true, s_.SeparateurDecimal, enr);
  for (int i = 0; i < 8; ++i) txtFields_[i]->setText(champs[i]);
  if (refus) {
    Dialogues().Message(refus->titre, refus->texte, Icone::Exclamation);
    return;
  }
  if (!fichier_.EcrireEnr(courant_, enr)) {
    ErreurTrappee(QStringLiteral("cmdModif_Click"));
    return;
  }
  TableMesure() = enr;
  RemplirListeTables();
  Dire(QStringLiteral("Mise à jour ok !"));
}

void frmGestionTables::cmdSuppr() {
  if (!fichier_.EstOuvert() || courant_ < 2) return;
  if (Dialogues().Question(
          QStringLiteral("Supprimer une table"),
          QStringLiteral("Souhaitez-vous supprimer définitivement cet enregistrement ?"),
          Boutons::OuiNon, Reponse::Non, Icone::Question) != Reponse::Oui)
    return;
  int k = courant_;
  bool supprime = false;
  if (!SupprimerTable(fichier_, k, nbEnreg_, supprime)) {
    ErreurTrappee(QStringLiteral("cmdSuppr_Click"));
    return;
  }
  if (!supprime) {
    AfficherSlot(k);
    RemplirListeTables();
    return;
  }
  courant_ = 0;
  Dire(QStringLiteral("Il n'y a plus d'enregistrement !"), Icone::Exclamation);
  EtatBoutons();
  close();
}

// ------------------------------------------------------------------ backup and export

void frmGestionTables::cmdBackupMesure() {
  if (!FileExists(CheminTableMesure())) return;
  if (Copier(CheminTableMesure(), CheminTableMesureBak())) {
    Dire(QStringLiteral("Tables de secours sauvegardées !"));
    AfficherDateCopie();
    EtatBoutons();
  } else {
    Dire(QStringLiteral("Erreur : Tables non copiées ..."), Icone::Critique);
  }
}

void frmGestionTables::cmdRecupTables() {
  if (!FileExists(CheminTableMesureBak())) return;
  if (Dialogues().Question(
          QStringLiteral("Restaurer les tables de mesures"),
          QStringLiteral("Souhaitez-vous restaurer vos tables (dernière copie de secours) ?\n"
                         "Attention, cela écrasera vos tables actuelles si existantes !"),
          Boutons::OuiNon, Reponse::Non, Icone::Question) != Reponse::Oui)
    return;
  fichier_.Fermer();
  if (!Copier(CheminTableMesureBak(), CheminTableMesure())) {
    Dire(QStringLiteral("Erreur : Tables non restaurées ..."), Icone::Critique);
    if (FileExists(CheminTableMesure())) fichier_.Ouvrir();
    EtatBoutons();
    return;
  }
  Dire(QStringLiteral("Tables restaurées avec succès"));
  EtatBoutons();
  derniereTable_ = false;
  Ouverture();
}

void frmGestionTables::cmdExporterTables() {
  const QString dossier =
      !s_.RepTravail.isEmpty() && FolderExists(s_.RepTravail) ? s_.RepTravail : QDir::currentPath();
  const QString cible = Dialogues().FichierEnregistrer(
      QStringLiteral("  Choisir un dossier pour l'exportation ..."), dossier,
      QStringLiteral("table_mesure.dat"), QStringLiteral("Dat (*.dat)|*.dat"));
  if (cible.isEmpty()) return;  // cancelled
  const QString source = CheminTableMesure();
  const bool memeFichier =
      QFileInfo(cible).absoluteFilePath() == QFileInfo(source).absoluteFilePath() ||
      (FileExists(cible) &&
       QFileInfo(cible).canonicalFilePath() == QFileInfo(source).canonicalFilePath());
  if (FileExists(source) && !memeFichier && Copier(source, cible))
    Dire(QStringLiteral("Fichier exporté avec succès"));
  else
    Dire(QStringLiteral("Erreur : Fichier non copié"), Icone::Critique);
}

void frmGestionTables::cmdEffacerTables() {
  if (!FileExists(CheminTableMesure())) return;
  fichier_.Fermer();
  if (Dialogues().Question(QStringLiteral("Effacer les tables de mesures"),
                           QStringLiteral("Souhaitez-vous effacer définitivement toutes vos "
                                          "tables ?\n(Une copie de secours peut être utile ...)"),
                           Boutons::OuiNon, Reponse::Non, Icone::Question) != Reponse::Oui) {
    fichier_.Ouvrir();
    return;
  }
  QFile::remove(CheminTableMesure());
  SignalerEtatTables();
  close();
}

void frmGestionTables::closeEvent(QCloseEvent* e) {
  fichier_.Fermer();
  derniereTable_ = false;
  QWidget::closeEvent(e);
}

}  // namespace tg
