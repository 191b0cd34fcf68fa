#include "core/frmConfig.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "core/FormatsSortie.h"
#include "core/frmFichierPhoto.h"
#include "core/frmFichierPhotoChargement.h"
#include "core/modMain.h"
#include "platform/Dialogues.h"
#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Liste.h"
#include "platform/Nombres.h"
#include "platform/Systeme.h"
#include "platform/Textes.h"

namespace tg {

namespace {

const QString kFeuille = QStringLiteral("frmConfig");
const QString kNumerique = QStringLiteral("Erreur sur les champs numériques");

void Erreur(int numero, const QString& texte, const QString& procedure) {
  const QString rapport = "Error " + QString::number(numero) + " (" + texte + ") in procedure " + procedure +
                          " of Feuille " + kFeuille;
  Dialogues().Message(QString(), numero == 75 ? AvecRaison(rapport) : rapport, Icone::Critique);
}

double Valeur(const QString& texte) {
  double v = 0;
  LireNombre(texte, v);
  return v;
}

// A whole number as the file keeps it (plain decimal form).
QString Entier(const QString& texte) { return QString::number(VersEntier(Arrondir(Valeur(texte)))); }

QString Un(bool coche) { return coche ? QStringLiteral("1") : QStringLiteral("0"); }

QLineEdit* Champ(QWidget* parent, const char* nom) {
  auto* c = new QLineEdit(parent);
  c->setObjectName(QLatin1String(nom));
  return c;
}

QPushButton* Bouton(QWidget* parent, const QString& nom, const QString& texte) {
  auto* b = new QPushButton(texte, parent);
  b->setObjectName(nom);
  return b;
}

// Executables have no extension here: every file is offered.
const QString kFiltreExecutable = QStringLiteral("Fichier exécutable (*)|*|");

}  // namespace

// ---------------------------------------------------------------- rules

bool AjouterObjectif(QStringList& objectifs, const QString& saisie) {
  if (objectifs.size() >= NombreObjectifsMax) {
    Dialogues().Message(QStringLiteral("Objectifs"),
                        QStringLiteral("Vous ne pouvez pas ajouter plus de 30 objectifs !"),
                        Icone::Exclamation);
    return false;
  }
  const QString texte = saisie.trimmed();
  if (!ControleNonNul(texte)) return false;
  const double valeur = Valeur(texte);
  if (valeur > GrossissementMax) {
    Dialogues().Message(QStringLiteral("Objectifs"),
                        texte + "x, vous avez de la chance ! Mais impossible à saisir ici (max 200x)",
                        Icone::Exclamation);
    return false;
  }
  objectifs << texte;
  std::stable_sort(objectifs.begin(), objectifs.end(),
                   [](const QString& a, const QString& b) { return Valeur(a) < Valeur(b); });
  const qsizetype avant = objectifs.size();
  QStringList uniques;
  for (const QString& o : objectifs)
    if (uniques.isEmpty() || Valeur(uniques.last()) != Valeur(o)) uniques << o;
  objectifs = uniques;
  if (objectifs.size() != avant)
    Dialogues().Message(QStringLiteral("Objectifs"), QStringLiteral("Doublons supprimés !"),
                        Icone::Information);
  return true;
}

bool EcrireObjectifs(const QStringList& objectifs) {
  QStringList items = objectifs.mid(0, NombreObjectifsMax);
  while (items.size() < NombreObjectifsMax) items << QString();
  return EcrireListe(CheminObjectif(), items);
}

bool PoidsADemander(double poids) { return poids > PoidsDefaut; }

QString TextePoidsImage(const QString& poids) {
  return "Poids image = " + poids +
         " ko\n\nAttention, vérifiez si votre forum le permet !\n\nContinuer ?";
}

bool EcrireConfiguration(const ValeursConfig& v, const ValeursConfig* affichees) {
  const QString f = CheminUserConfig();
  using Champ = QString ValeursConfig::*;
  const std::pair<const char*, std::pair<const char*, Champ>> cles[] = {
      {"General", {"NumVersion", &ValeursConfig::NumVersion}},
      {"General", {"NomAuteur", &ValeursConfig::NomAuteur}},
      {"General", {"NomFichImage", &ValeursConfig::NomFichImage}},
      {"General", {"NextNumberImage", &ValeursConfig::NextNumberImage}},
      {"General", {"TitreImage", &ValeursConfig::TitreImage}},
      {"General", {"ImageAccueil", &ValeursConfig::ImageAccueil}},
      {"General", {"MajAuto", &ValeursConfig::MajAuto}},
      {"General", {"MessageBox", &ValeursConfig::MessageBox}},
      {"General", {"MethodeRedim", &ValeursConfig::MethodeRedim}},
      {"Dossier", {"RepTravail", &ValeursConfig::RepTravail}},
      {"Dossier", {"RepEtalon", &ValeursConfig::RepEtalon}},
      {"Dossier", {"RepApPhoto", &ValeursConfig::RepApPhoto}},
      {"Dossier", {"ModeOuvrir", &ValeursConfig::ModeOuvrir}},
      {"FormatImage", {"CartoucheHB", &ValeursConfig::CartoucheHB}},
      {"FormatImage", {"ChoixFormatMesure", &ValeursConfig::ChoixFormatMesure}},
      {"FormatImage", {"PoidsMax", &ValeursConfig::PoidsMax}},
      {"Navigateur", {"PathNav", &ValeursConfig::PathNav}},
  };
  // No value of the file can hold this one: it tells a missing key.
  const QString absente(QChar(1));
  const auto ecrire = [&](const QString& section, const QString& cle, const QString& valeur,
                          const QString* affichee) {
    if (affichee && *affichee == valeur && LireIni(section, cle, f, absente) != absente) return true;
    return EcrireIni(section, cle, valeur, f);
  };
  bool ok = true;
  for (const auto& [section, cle] : cles)
    ok = ecrire(QLatin1String(section), QLatin1String(cle.first), v.*(cle.second),
                affichees ? &(affichees->*(cle.second)) : nullptr) &&
         ok;
  for (size_t i = 0; i < 4; ++i)
    ok = ecrire(QStringLiteral("Application"), "ApExt" + QString::number(i), v.ApExt[i],
                affichees ? &affichees->ApExt[i] : nullptr) &&
         ok;
  return ok;
}

bool AffichageReduit(const QString& choixFormatMesure, int largeurEcran) {
  if (choixFormatMesure.isEmpty()) return largeurEcran < 1024;
  return choixFormatMesure == u"0";
}

// ---------------------------------------------------------------- window

frmConfig::frmConfig(SessionRecord& session, frmFichierPhoto* principale, QWidget* proprietaire)
    : QWidget(proprietaire != nullptr ? proprietaire : static_cast<QWidget*>(principale), Qt::Window),
      s_(session),
      principale_(principale) {
  setObjectName(kFeuille);
  setWindowTitle(QStringLiteral("Options"));
  setAttribute(Qt::WA_DeleteOnClose);

  onglets_ = new QTabWidget(this);
  onglets_->setObjectName(QStringLiteral("SSTab1"));
  onglets_->addTab(OngletGeneral(), QStringLiteral("Général"));
  onglets_->addTab(OngletImages(), QStringLiteral("Images"));
  onglets_->addTab(OngletDossiers(), QStringLiteral("Dossiers"));
  onglets_->addTab(OngletApplications(), QStringLiteral("Applications"));
  ongletObjectifs_ = OngletObjectifs();
  onglets_->addTab(ongletObjectifs_, QStringLiteral("Objectifs"));

  auto* v = new QVBoxLayout(this);
  v->addWidget(onglets_);
  auto* h = new QHBoxLayout;
  h->addStretch();
  auto* ok = Bouton(this, "cmdOK", "OK");
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, [this] { cmdOK(); });
  auto* annuler = Bouton(this, "cmdAnnuler", "Annuler");
  connect(annuler, &QPushButton::clicked, this, [this] { cmdAnnuler(); });
  h->addWidget(ok);
  h->addWidget(annuler);
  v->addLayout(h);

  for (QLineEdit* c : {txtNewObjectif_, txtPoidsMax_, txtNextNumberImage_}) c->installEventFilter(this);
  Charger();
}

QWidget* frmConfig::OngletGeneral() {
  auto* page = new QWidget;
  auto* v = new QVBoxLayout(page);

  auto* auteur = new QGroupBox(QStringLiteral("Nom d'auteur"), page);
  auto* la = new QVBoxLayout(auteur);
  txtNomAuteur_ = Champ(auteur, "txtNomAuteur");
  la->addWidget(txtNomAuteur_);
  v->addWidget(auteur);

  auto* noms = new QGroupBox(QStringLiteral("Noms des fichiers"), page);
  auto* g = new QGridLayout(noms);
  chkTitreImage_ = new QCheckBox(
      QStringLiteral("Utiliser le titre du cartouche comme nom de fichier (conseillé)"), noms);
  chkTitreImage_->setObjectName(QStringLiteral("chkTitreImage"));
  txtNomFichImage_ = Champ(noms, "txtNomFichImage");
  txtNextNumberImage_ = Champ(noms, "txtNextNumberImage");
  g->addWidget(chkTitreImage_, 0, 0, 1, 2);
  g->addWidget(new QLabel(QStringLiteral("Nom de base"), noms), 1, 0);
  g->addWidget(txtNomFichImage_, 1, 1);
  g->addWidget(new QLabel(QStringLiteral("Prochain numéro"), noms), 2, 0);
  g->addWidget(txtNextNumberImage_, 2, 1);
  connect(chkTitreImage_, &QCheckBox::toggled, this, [this](bool coche) {
    txtNomFichImage_->setEnabled(!coche);
    txtNextNumberImage_->setEnabled(!coche);
  });
  v->addWidget(noms);

  auto* aide = new QGroupBox(QStringLiteral("Messages d'aide"), page);
  auto* lm = new QVBoxLayout(aide);
  chkMessageBox_ = new QCheckBox(
      QStringLiteral("Activer les messages d'aide entre les étapes de progression (1 à 4)"), aide);
  chkMessageBox_->setObjectName(QStringLiteral("chkMessageBox"));
  chkImageAccueil_ = new QCheckBox(QStringLiteral("Afficher l'image d'accueil"), aide);
  chkImageAccueil_->setObjectName(QStringLiteral("chkImageAccueil"));
  chkMajAuto_ = new QCheckBox(QStringLiteral("Rechercher les mises à jour au démarrage"), aide);
  chkMajAuto_->setObjectName(QStringLiteral("chkMajAuto"));
  lm->addWidget(chkMessageBox_);
  lm->addWidget(chkImageAccueil_);
  lm->addWidget(chkMajAuto_);
  v->addWidget(aide);
  v->addStretch();
  return page;
}

QWidget* frmConfig::OngletImages() {
  auto* page = new QWidget;
  auto* v = new QVBoxLayout(page);

  auto* ouverture = new QGroupBox(QStringLiteral("Ouverture d'images"), page);
  auto* lo = new QVBoxLayout(ouverture);
  chkMethodeRedim_ = new QCheckBox(
      QStringLiteral("Choisir la méthode de redimensionnement à chaque formatage"), ouverture);
  chkMethodeRedim_->setObjectName(QStringLiteral("chkMethodeRedim"));
  chkModeOuvrir_ = new QCheckBox(
      QStringLiteral("Ouvrir les images avec le navigateur d'images"), ouverture);
  chkModeOuvrir_->setObjectName(QStringLiteral("chkModeOuvrir"));
  lo->addWidget(chkMethodeRedim_);
  lo->addWidget(chkModeOuvrir_);
  v->addWidget(ouverture);

  const auto options = [this, page, v](const QString& titre, const char* nom,
                                       const std::array<QString, 2>& textes,
                                       std::array<QRadioButton*, 2>& boutons) {
    auto* cadre = new QGroupBox(titre, page);
    auto* l = new QVBoxLayout(cadre);
    auto* groupe = new QButtonGroup(cadre);
    for (int i = 0; i < 2; ++i) {
      boutons[size_t(i)] = new QRadioButton(textes[size_t(i)], cadre);
      boutons[size_t(i)]->setObjectName(QLatin1String(nom) + QString::number(i));
      groupe->addButton(boutons[size_t(i)]);
      l->addWidget(boutons[size_t(i)]);
    }
    v->addWidget(cadre);
  };
  options(QStringLiteral("Disposition du cartouche"), "optCartoucheHB",
          {QStringLiteral("Cartouche collé sur l'image, 2 lignes"),
           QStringLiteral("Cartouche placé sous  l'image, 3 lignes  (conseillé pour les forum)")},
          optCartoucheHB_);
  options(QStringLiteral("Taille d'affichage"), "optTailleMesure",
          {QStringLiteral("Affichage réduit, préférable pour écran 800 x 600"),
           QStringLiteral("Affichage standard, par défaut")},
          optTailleMesure_);

  auto* poids = new QGroupBox(QStringLiteral("Poids maximum"), page);
  auto* lp = new QHBoxLayout(poids);
  txtPoidsMax_ = Champ(poids, "txtPoidsMax");
  auto* lbl = new QLabel(QStringLiteral("ko  (Defaut = 250 ko)"), poids);
  lbl->setObjectName(QStringLiteral("lblPoidsMax"));
  auto* defaut = Bouton(poids, "cmdValParDefautPoidsImage", QStringLiteral("Défaut"));
  connect(defaut, &QPushButton::clicked, this, [this] { cmdValParDefautPoidsImage(); });
  lp->addWidget(txtPoidsMax_);
  lp->addWidget(lbl);
  lp->addWidget(defaut);
  v->addWidget(poids);

  auto* format = new QGroupBox(QStringLiteral("Format de sortie"), page);
  auto* lf = new QGridLayout(format);
  comboFormatSortie_ = new QComboBox(format);
  comboFormatSortie_->setObjectName(QStringLiteral("comboFormatSortie"));
  for (const FormatSortie& f : FormatsSortie)
    comboFormatSortie_->addItem(QString::number(f.largeur) + " x " + QString::number(f.hauteur));
  txtFormatEnCours_ = Champ(format, "txtFormatEnCours");
  txtFormatEnCours_->setReadOnly(true);
  auto* appliquer = Bouton(format, "cmdAppliquerFormatSortie", QStringLiteral("Appliquer"));
  // Format 1 computes with 750 but is labelled 756, as its button in the main window.
  auto* defaut1 = Bouton(format, "cmdFormatSortieDefaut", QStringLiteral("756 x 562"));
  auto* defaut2 = Bouton(format, "cmdFormatSortieDefaut2", QStringLiteral("800 x 600"));
  connect(appliquer, &QPushButton::clicked, this, [this] { cmdAppliquerFormatSortie(); });
  connect(defaut1, &QPushButton::clicked, this, [this] { cmdFormatSortieDefaut(); });
  connect(defaut2, &QPushButton::clicked, this, [this] { cmdFormatSortieDefaut2(); });
  lf->addWidget(new QLabel(QStringLiteral("Format en cours"), format), 0, 0);
  lf->addWidget(txtFormatEnCours_, 0, 1);
  lf->addWidget(comboFormatSortie_, 1, 0);
  lf->addWidget(appliquer, 1, 1);
  lf->addWidget(defaut1, 2, 0);
  lf->addWidget(defaut2, 2, 1);
  v->addWidget(format);
  v->addStretch();
  return page;
}

QWidget* frmConfig::OngletDossiers() {
  auto* page = new QWidget;
  auto* g = new QGridLayout(page);
  const std::array<QString, 3> libelles = {
      QStringLiteral("Dossier de travail (obligatoire)"),
      QStringLiteral("Dossier des images d'étalon (obligatoire)"),
      QStringLiteral("Dossier des images originales (facultatif)")};
  const std::array<const char*, 3> champs = {"txtRepTravail", "txtRepEtalon", "txtRepApPhoto"};
  const std::array<const char*, 3> boutons = {"cmdRepTravail", "cmdRepEtalon", "cmdRepApPhoto"};
  for (int i = 0; i < 3; ++i) {
    g->addWidget(new QLabel(libelles[size_t(i)], page), i * 2, 0, 1, 3);
    txtRep_[size_t(i)] = Champ(page, champs[size_t(i)]);
    auto* choisir = Bouton(page, QLatin1String(boutons[size_t(i)]), QStringLiteral("..."));
    auto* effacer = Bouton(page, QStringLiteral("cmdEffacerDirTxt%1").arg(i), QStringLiteral("Effacer"));
    connect(choisir, &QPushButton::clicked, this, [this, i] { cmdRepertoire(i); });
    connect(effacer, &QPushButton::clicked, this, [this, i] { cmdEffacerDirTxt(i); });
    g->addWidget(txtRep_[size_t(i)], i * 2 + 1, 0);
    g->addWidget(choisir, i * 2 + 1, 1);
    g->addWidget(effacer, i * 2 + 1, 2);
  }
  g->setRowStretch(6, 1);
  return page;
}

QWidget* frmConfig::OngletApplications() {
  auto* page = new QWidget;
  auto* v = new QVBoxLayout(page);

  auto* apps = new QGroupBox(QStringLiteral("Applications externes"), page);
  auto* g = new QGridLayout(apps);
  lstApExt_ = new QListWidget(apps);
  lstApExt_->setObjectName(QStringLiteral("lstApExt"));
  g->addWidget(lstApExt_, 0, 0, 4, 1);
  for (int i = 0; i < 4; ++i) {
    auto* choisir = Bouton(apps, QStringLiteral("cmdChoisirApExt%1").arg(i), QStringLiteral("Choisir..."));
    auto* effacer = Bouton(apps, QStringLiteral("cmdEffacerApExt%1").arg(i), QStringLiteral("Effacer"));
    connect(choisir, &QPushButton::clicked, this, [this, i] { cmdChoisirApExt(i); });
    connect(effacer, &QPushButton::clicked, this, [this, i] { cmdEffacerApExt(i); });
    g->addWidget(choisir, i, 1);
    g->addWidget(effacer, i, 2);
  }
  v->addWidget(apps);

  auto* nav = new QGroupBox(QStringLiteral("Navigateur"), page);
  auto* ln = new QGridLayout(nav);
  auto* groupe = new QButtonGroup(nav);
  optNav_[0] = new QRadioButton(QStringLiteral("Explorer (Microsoft)"), nav);
  optNav_[1] = new QRadioButton(QStringLiteral("Autres"), nav);
  for (int i = 0; i < 2; ++i) {
    optNav_[size_t(i)]->setObjectName(QStringLiteral("optNav%1").arg(i));
    groupe->addButton(optNav_[size_t(i)]);
    ln->addWidget(optNav_[size_t(i)], 0, i);
  }
  connect(optNav_[0], &QRadioButton::clicked, this, [this] { ChoixNav(false); });
  connect(optNav_[1], &QRadioButton::clicked, this, [this] { ChoixNav(true); });
  txtNavName_ = Champ(nav, "txtNavName");
  txtNavName_->setReadOnly(true);
  txtNavFull_ = Champ(nav, "txtNavFull");
  txtNavFull_->setReadOnly(true);
  cmdChoisirNav_ = Bouton(nav, "cmdChoisirNav", QStringLiteral("Choisir..."));
  connect(cmdChoisirNav_, &QPushButton::clicked, this, [this] { cmdChoisirNav(); });
  ln->addWidget(txtNavName_, 1, 0);
  ln->addWidget(cmdChoisirNav_, 1, 1);
  ln->addWidget(txtNavFull_, 2, 0, 1, 2);
  v->addWidget(nav);
  v->addStretch();
  return page;
}

QWidget* frmConfig::OngletObjectifs() {
  auto* page = new QWidget;
  auto* g = new QGridLayout(page);
  auto* entete = new QLabel(QStringLiteral("(%1 obj. max, chiffres uniquement)").arg(NombreObjectifsMax), page);
  entete->setObjectName(QStringLiteral("lblObjectifs"));
  lstSaisieObjectif_ = new QListWidget(page);
  lstSaisieObjectif_->setObjectName(QStringLiteral("lstSaisieObjectif"));
  txtNewObjectif_ = Champ(page, "txtNewObjectif");
  txtTotObjectif_ = Champ(page, "txtTotObjectif");
  txtTotObjectif_->setReadOnly(true);
  auto* ajouter = Bouton(page, "cmdAjouterObjectif", QStringLiteral("Ajouter"));
  auto* element = Bouton(page, "cmdEffacerElement", QStringLiteral("Effacer l'élément"));
  auto* liste = Bouton(page, "cmdEffacerListe", QStringLiteral("Effacer la liste"));
  connect(ajouter, &QPushButton::clicked, this, [this] { cmdAjouterObjectif(); });
  connect(element, &QPushButton::clicked, this, [this] { cmdEffacerElement(); });
  connect(liste, &QPushButton::clicked, this, [this] { cmdEffacerListe(); });
  g->addWidget(entete, 0, 0, 1, 2);
  g->addWidget(lstSaisieObjectif_, 1, 0, 5, 1);
  g->addWidget(txtNewObjectif_, 1, 1);
  g->addWidget(ajouter, 2, 1);
  g->addWidget(element, 3, 1);
  g->addWidget(liste, 4, 1);
  g->addWidget(new QLabel(QStringLiteral("Total"), page), 6, 0);
  g->addWidget(txtTotObjectif_, 6, 1);
  return page;
}

void frmConfig::Charger() {
  RecupereValeurIni(s_);
  ListeWidget objectifs(lstSaisieObjectif_);
  ChargerListeObjectif(objectifs);
  AfficherObjectifs();

  txtNomAuteur_->setText(s_.NomAuteur);
  txtNomFichImage_->setText(s_.NomFichImage);
  txtNextNumberImage_->setText(QString::number(s_.NextNumberImage));
  chkTitreImage_->setChecked(s_.TitreImageConfig == u"1");
  txtNomFichImage_->setEnabled(!chkTitreImage_->isChecked());
  txtNextNumberImage_->setEnabled(!chkTitreImage_->isChecked());
  chkMessageBox_->setChecked(s_.MessageBox == 0);
  chkImageAccueil_->setChecked(s_.ImageAccueil == u"1");
  chkMajAuto_->setChecked(s_.MajAuto == u"1");
  chkMethodeRedim_->setChecked(s_.MethodeRedim == u"0");
  chkModeOuvrir_->setChecked(s_.ModeOuvrir == u"0");
  optCartoucheHB_[s_.CartoucheHB == u"0" ? 0 : 1]->setChecked(true);
  optTailleMesure_[AffichageReduit(s_.ChoixFormatMesure, Systeme().InfosEcran().largeur) ? 0 : 1]
      ->setChecked(true);
  txtPoidsMax_->setText(QString::number(s_.PoidsMax));
  txtFormatEnCours_->setText(QString::number(s_.ApnLargCourant) + " x " +
                             QString::number(s_.ApnHautCourant));
  if (s_.ChoixFormat >= 0 && s_.ChoixFormat < int(FormatsSortie.size()))
    comboFormatSortie_->setCurrentIndex(s_.ChoixFormat);

  txtRep_[0]->setText(s_.RepTravail);
  txtRep_[1]->setText(s_.RepEtalon);
  txtRep_[2]->setText(s_.RepApPhoto);
  apExt_ = s_.ApExt;
  AfficherApExt();

  const bool explorer = s_.PathNav.isEmpty() || s_.PathNav == u"Explorer";
  optNav_[explorer ? 0 : 1]->setChecked(true);
  txtNavFull_->setText(explorer ? QStringLiteral("Explorer") : s_.PathNav);
  txtNavName_->setText(explorer ? QString() : QFileInfo(s_.PathNav).fileName());
  cmdChoisirNav_->setEnabled(!explorer);
  affichees_ = ValeursFenetre();
}

void frmConfig::AfficherApExt() {
  const int ligne = std::max(0, lstApExt_->currentRow());
  lstApExt_->clear();
  for (const QString& a : apExt_) lstApExt_->addItem(a.isEmpty() ? QString() : QFileInfo(a).fileName());
  lstApExt_->setCurrentRow(ligne);
}

void frmConfig::AfficherObjectifs() {
  txtTotObjectif_->setText(QString::number(lstSaisieObjectif_->count()));
}

QStringList frmConfig::Objectifs() const {
  QStringList l;
  for (int i = 0; i < lstSaisieObjectif_->count(); ++i) l << lstSaisieObjectif_->item(i)->text();
  return l;
}

void frmConfig::cmdAjouterObjectif() {
  QStringList objectifs = Objectifs();
  if (!AjouterObjectif(objectifs, txtNewObjectif_->text())) return;
  lstSaisieObjectif_->clear();
  lstSaisieObjectif_->addItems(objectifs);
  txtNewObjectif_->clear();
  AfficherObjectifs();
  if (!EcrireObjectifs(objectifs))
    Erreur(75, QStringLiteral("Erreur d'accès au chemin/fichier"), QStringLiteral("cmdAjouterObjectif_Click"));
}

void frmConfig::cmdEffacerElement() {
  const int ligne = lstSaisieObjectif_->currentRow();
  if (ligne < 0) return;
  delete lstSaisieObjectif_->takeItem(ligne);
  AfficherObjectifs();
}

void frmConfig::cmdEffacerListe() {
  lstSaisieObjectif_->clear();
  AfficherObjectifs();
  QFile::remove(CheminObjectif());
}

void frmConfig::cmdValParDefautPoidsImage() {
  txtPoidsMax_->setText(QString::number(PoidsDefaut));
  EcrireIni("FormatImage", "PoidsMax", QString::number(PoidsDefaut), CheminUserConfig());
  s_.PoidsMax = PoidsDefaut;
}

void frmConfig::cmdRepertoire(int index) {
  static const std::array<QString, 3> titres = {
      QStringLiteral("Choisir un dossier de travail pour vos images formatées ..."),
      QStringLiteral("Choisir un dossier pour les images d'étalon ..."),
      QStringLiteral("Choisir un dossier pour vos images originales ...")};
  if (index < 0 || index > 2) return;
  const QString depart = txtRep_[size_t(index)]->text().isEmpty() ? s_.DocPath : txtRep_[size_t(index)]->text();
  QString dossier = Dialogues().Dossier(titres[size_t(index)], depart);
  if (dossier.isEmpty()) return;
  if (!dossier.endsWith(u'/')) dossier += u'/';
  txtRep_[size_t(index)]->setText(dossier);
}

void frmConfig::cmdEffacerDirTxt(int index) {
  if (index < 0 || index > 2) {
    Erreur(9, QStringLiteral("L'indice n'appartient pas à la sélection"),
           QStringLiteral("cmdEffacerDirTxt_Click"));
    return;
  }
  txtRep_[size_t(index)]->clear();
}

void frmConfig::cmdChoisirApExt(int index) {
  if (index < 0 || index > 3) return;
  const QString chemin = Dialogues().FichierOuvrir(QStringLiteral("  Choisir une application ..."),
                                                   QString(), kFiltreExecutable);
  if (chemin.isEmpty()) return;
  lstApExt_->setCurrentRow(index);
  if (!FileExists(chemin)) {
    Dialogues().Message(QStringLiteral("Applications externes"), QStringLiteral("Fichier introuvable !"),
                        Icone::Exclamation);
    apExt_[size_t(index)].clear();
  } else {
    apExt_[size_t(index)] = chemin;
  }
  AfficherApExt();
}

void frmConfig::cmdEffacerApExt(int index) {
  if (index < 0 || index > 3) return;
  lstApExt_->setCurrentRow(index);
  apExt_[size_t(index)].clear();
  AfficherApExt();
}

void frmConfig::ChoixNav(bool autres) {
  cmdChoisirNav_->setEnabled(autres);
  if (!autres) {
    txtNavName_->clear();
    txtNavFull_->setText(QStringLiteral("Explorer"));
  }
}

void frmConfig::cmdChoisirNav() {
  const QString chemin = Dialogues().FichierOuvrir(QStringLiteral("  Choisir un navigateur ..."),
                                                   QString(), kFiltreExecutable);
  if (chemin.isEmpty()) return;
  if (!FileExists(chemin)) {
    Dialogues().Message(QStringLiteral("Navigateur"), QStringLiteral("Fichier introuvable !"),
                        Icone::Exclamation);
    txtNavName_->clear();
    txtNavFull_->setText(QStringLiteral("Explorer"));
    return;
  }
  txtNavName_->setText(QFileInfo(chemin).fileName());
  txtNavFull_->setText(chemin);
}

void frmConfig::ChangerFormat(int choix) {
  if (principale_ == nullptr) return;
  principale_->Session().ChoixFormat = int16_t(choix);
  G_ChangeFormat(*principale_);
}

void frmConfig::cmdAppliquerFormatSortie() {
  const int choix = comboFormatSortie_->currentIndex();
  if (choix < 0) {
    Erreur(5, QStringLiteral("Argument ou appel de procédure incorrect"),
           QStringLiteral("cmdAppliquerFormatSortie_click"));
    return;
  }
  ChangerFormat(choix);
}

void frmConfig::cmdFormatSortieDefaut() { ChangerFormat(1); }
void frmConfig::cmdFormatSortieDefaut2() { ChangerFormat(2); }

void frmConfig::cmdOK() {
  // 1. Cleaning, shown back in the fields.
  txtNomAuteur_->setText(EnleverEgal(EnleverGuillemets(txtNomAuteur_->text())));
  txtNomFichImage_->setText(EnleverSpeciaux(EnleverGuillemets(txtNomFichImage_->text())));

  // 2. Numbers.
  if (!ControleNonNul(txtPoidsMax_->text()) || !ControleNonNul(txtNextNumberImage_->text())) return;
  const double poids = Valeur(txtPoidsMax_->text());
  const double numero = Valeur(txtNextNumberImage_->text());
  // Stored as integers: what rounds to 0 ("0,4" ko) would make every trial too heavy.
  if (Arrondir(poids) < 1 || Arrondir(numero) < 1) {
    Dialogues().Message(kNumerique, QStringLiteral("Chiffres uniquement et non nul !"), Icone::Exclamation);
    return;
  }
  if (Arrondir(poids) > std::numeric_limits<int16_t>::max() ||
      Arrondir(numero) > std::numeric_limits<int32_t>::max()) {
    Dialogues().Message(kNumerique, QStringLiteral("Valeur trop grande !"), Icone::Exclamation);
    return;
  }

  // 3. A heavy picture is the user's choice.
  if (PoidsADemander(poids) &&
      Dialogues().Question(QStringLiteral("Poids image sortie"),
                           TextePoidsImage(txtPoidsMax_->text().trimmed()), Boutons::OuiNon,
                           Reponse::Oui, Icone::Question) != Reponse::Oui)
    return;

  // 4. Every key the user changed, in order.
  if (!EcrireConfiguration(ValeursFenetre(), &affichees_)) {
    Erreur(75, QStringLiteral("Erreur d'accès au chemin/fichier"), QStringLiteral("cmdOK_Click"));
    return;
  }

  // 5. The objectives are needed by every measurement.
  const QStringList objectifs = Objectifs();
  if (objectifs.isEmpty()) {
    Dialogues().Message(QStringLiteral("Liste objectif"),
                        QStringLiteral("Votre liste d'objectifs est vide !\n"
                                       "(celle-ci est obligatoire pour les fonctions de mesure)"),
                        Icone::Exclamation);
    onglets_->setCurrentWidget(ongletObjectifs_);
    return;
  }
  EcrireObjectifs(objectifs);

  // 6. The session follows the file.
  RecupereValeurIni(s_);
  if (principale_ != nullptr) principale_->RafraichirApplicationsExternes();
  close();
}

ValeursConfig frmConfig::ValeursFenetre() const {
  ValeursConfig v;
  v.NumVersion = s_.NumVersion;
  v.NomAuteur = txtNomAuteur_->text();
  v.NomFichImage = txtNomFichImage_->text();
  v.NextNumberImage = Entier(txtNextNumberImage_->text());
  v.TitreImage = Un(chkTitreImage_->isChecked());
  v.ImageAccueil = Un(chkImageAccueil_->isChecked());
  v.MajAuto = Un(chkMajAuto_->isChecked());
  v.MessageBox = Un(!chkMessageBox_->isChecked());
  v.MethodeRedim = Un(!chkMethodeRedim_->isChecked());
  v.RepTravail = txtRep_[0]->text().trimmed();
  v.RepEtalon = txtRep_[1]->text().trimmed();
  v.RepApPhoto = txtRep_[2]->text().trimmed();
  v.ModeOuvrir = Un(!chkModeOuvrir_->isChecked());
  v.CartoucheHB = Un(optCartoucheHB_[1]->isChecked());
  v.ChoixFormatMesure = Un(optTailleMesure_[1]->isChecked());
  v.PoidsMax = Entier(txtPoidsMax_->text());
  v.PathNav = optNav_[1]->isChecked() && !txtNavFull_->text().isEmpty() ? txtNavFull_->text()
                                                                         : QStringLiteral("Explorer");
  v.ApExt = apExt_;
  return v;
}

void frmConfig::cmdAnnuler() { close(); }

bool frmConfig::eventFilter(QObject* objet, QEvent* e) {
  if (e->type() == QEvent::KeyPress) {
    const QString texte = static_cast<QKeyEvent*>(e)->text();
    if (texte.size() == 1) {
      int code = texte.at(0).unicode();
      ReplaceNationalSep(code, s_.SeparateurDecimal);
      if (code != texte.at(0).unicode()) {
        if (auto* champ = qobject_cast<QLineEdit*>(objet)) champ->insert(QString(QChar(code)));
        return true;
      }
    }
  }
  return QWidget::eventFilter(objet, e);
}

void InstallerConfig(frmFichierPhoto& fenetre) {
  fenetre.DefinirCrochet(kFeuille, [&fenetre] {
    for (QWidget* w : QApplication::topLevelWidgets())
      if (w->objectName() == kFeuille && w->isVisible()) {
        w->raise();
        w->activateWindow();
        return;
      }
    auto* f = new frmConfig(fenetre.Session(), &fenetre);
    fenetre.FenetreOuverte(f);
    f->show();
  });
}

}  // namespace tg
