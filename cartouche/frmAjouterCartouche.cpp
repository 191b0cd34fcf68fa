#include "cartouche/frmAjouterCartouche.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

#include "cartouche/BlocMeta.h"
#include "cartouche/Echelle.h"
#include "cartouche/ImageFinale.h"
#include "cartouche/Listes.h"
#include "cartouche/RenduCartouche.h"
#include "cartouche/frmMotClef.h"
#include "measure/frmExtrapolFocale.h"
#include "core/frmFichierPhoto.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/TableMesure.h"
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

const char* const kCaption = " Ajouter le cartouche,  l'échelle et les métadonnées";
const char* const kLegendesChamps[9] = {"Titre", "Eclair.", "Auteur",   "Date", "Microscope",
                                        "Ap. photo", "Prov.", "Prép.", "Colo."};
const char* const kTraitements[4] = {"Niveaux", "Poussières", "Bruit", "Déconvolution"};

QColor DepuisBgr(int bgr) { return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF); }
int VersBgr(const QColor& c) { return c.red() | (c.green() << 8) | (c.blue() << 16); }

template <class T>
T* Nomme(T* w, const QString& nom) {
  w->setObjectName(nom);
  return w;
}

const char* const kChoisirAnnuler = "*Choisir / Annuler*";
const char* const kLegendesLstDefaut[3] = {"Provenance", "Préparation", "Coloration"};

// A two-line state as a line edit shows it: the line break as two blanks.
QString UneLigne(const char* texte) { return QString::fromUtf8(texte).replace(QStringLiteral("\r\n"), QStringLiteral("  ")); }

}  // namespace

frmAjouterCartouche::frmAjouterCartouche(SessionRecord& s, cAdvancedImagery& ai,
                                         frmFichierPhoto* principal, QWidget* parent)
    : QWidget(parent, Qt::Window), s_(s), ai_(ai), principal_(principal) {
  setObjectName(QStringLiteral("frmAjouterCartouche"));
  setWindowTitle(QString::fromUtf8(kCaption));
  Construire();
}

frmAjouterCartouche::~frmAjouterCartouche() = default;

void frmAjouterCartouche::Construire() {
  // The form scrolls when the screen is too short; its ways out stay below it.
  auto* formulaire = Nomme(new QWidget, QStringLiteral("fraFormulaire"));
  auto* grille = new QGridLayout(formulaire);
  int ligne = 0;
  auto ligneEdit = [&](const char* nom, const QString& libelle) {
    auto* e = Nomme(new QLineEdit(this), QLatin1String(nom));
    grille->addWidget(new QLabel(libelle, this), ligne, 0);
    grille->addWidget(e, ligne++, 1, 1, 3);
    return e;
  };
  auto ligneCombo = [&](const char* nom, const QString& libelle) {
    auto* c = Nomme(new QComboBox(this), QLatin1String(nom));
    c->setEditable(true);
    grille->addWidget(new QLabel(libelle, this), ligne, 0);
    grille->addWidget(c, ligne++, 1, 1, 3);
    return c;
  };
  txtCommentaire_ = ligneEdit("txtCommentaire", QStringLiteral("Titre de l'observation : ***"));
  ComboEclairage_ = ligneCombo("ComboEclairage", QStringLiteral("Eclairage : ***"));
  txtNomAuteur_ = ligneEdit("txtNomAuteur", QStringLiteral("Auteur :  ***"));
  comboJour_ = Nomme(new QComboBox(this), QStringLiteral("comboJour"));
  comboMois_ = Nomme(new QComboBox(this), QStringLiteral("comboMois"));
  comboAnnee_ = Nomme(new QComboBox(this), QStringLiteral("comboAnnee"));
  lblDatePhoto_ = Nomme(new QLabel(this), QStringLiteral("lblDatePhoto"));
  grille->addWidget(new QLabel(QStringLiteral("Date de l'observation : ***"), this), ligne, 0);
  grille->addWidget(comboJour_, ligne, 1);
  grille->addWidget(comboMois_, ligne, 2);
  grille->addWidget(comboAnnee_, ligne, 3);
  grille->addWidget(lblDatePhoto_, ligne++, 4);
  comboProvenance_ = ligneCombo("comboProvenance", QStringLiteral("Provenance :"));
  comboMontage_ = ligneCombo("comboMontage", QStringLiteral("Préparation (montage) :"));
  comboColoration_ = ligneCombo("comboColoration", QStringLiteral("Coloration :"));
  // "+ liste" beside the list it feeds.
  const char* nomsListe[4] = {"chkEclairage", "chkProvenance", "chkMontage", "chkColoration"};
  const char* listes[4] = {"des éclairages", "des provenances", "des préparations", "des colorations"};
  QComboBox* combos[4] = {ComboEclairage_, comboProvenance_, comboMontage_, comboColoration_};
  for (int i = 0; i < 4; ++i) {
    chkListe_[i] = Nomme(new QCheckBox(QStringLiteral("+ liste"), this), QLatin1String(nomsListe[i]));
    chkListe_[i]->setToolTip(QStringLiteral("Ajouter la valeur saisie à la liste %1").arg(QString::fromUtf8(listes[i])));
    int l = 0, c = 0, ls = 0, cs = 0;
    grille->getItemPosition(grille->indexOf(combos[i]), &l, &c, &ls, &cs);
    grille->addWidget(chkListe_[i], l, 4);
  }

  // Traitements, champs, motclef.
  for (int i = 0; i < 4; ++i) {
    chkTraitNum_[i] = Nomme(new QCheckBox(this), QStringLiteral("chkTraitNum%1").arg(i));
    grille->addWidget(chkTraitNum_[i], ligne, i);
  }
  ++ligne;
  fraChoixChamp_ = Nomme(new QFrame(this), QStringLiteral("fraChoixChamp"));
  auto* lc = new QGridLayout(fraChoixChamp_);
  for (int i = 0; i < 9; ++i) {
    chkChoixChamp_[i] = Nomme(new QCheckBox(QString::fromUtf8(kLegendesChamps[i]), fraChoixChamp_),
                              QStringLiteral("chkChoixChamp%1").arg(i));
    chkChoixChamp_[i]->setChecked(true);
    lc->addWidget(chkChoixChamp_[i], i / 5, i % 5);
    connect(chkChoixChamp_[i], &QCheckBox::clicked, this, [this, i] { chkChoixChamp_Click(i); });
  }
  auto* tous = Nomme(new QPushButton(QStringLiteral("Sélectionner tous les champs"), fraChoixChamp_),
                     QStringLiteral("cmdTousChamps"));
  lc->addWidget(tous, 2, 0, 1, 2);
  connect(tous, &QPushButton::clicked, this, [this] { cmdTousChamps(); });
  auto* reduireChamps = Nomme(new QPushButton(QStringLiteral("Réduire"), fraChoixChamp_),
                              QStringLiteral("cmdReduirefraChoixChamp"));
  lc->addWidget(reduireChamps, 2, 4);
  connect(reduireChamps, &QPushButton::clicked, this, [this] { cmdReduirefraChoixChamp(); });
  grille->addWidget(fraChoixChamp_, ligne++, 0, 1, 5);

  // Choice lists back to their defaults.
  fraListe_ = Nomme(new QFrame(this), QStringLiteral("fraListe"));
  auto* ll = new QHBoxLayout(fraListe_);
  for (int i = 0; i < 3; ++i) {
    chkLstDefaut_[i] = Nomme(new QCheckBox(QString::fromUtf8(kLegendesLstDefaut[i]), fraListe_),
                             QStringLiteral("chkLstDefaut%1").arg(i));
    ll->addWidget(chkLstDefaut_[i]);
  }
  auto* listeDefaut = Nomme(new QPushButton(QStringLiteral("Listes par défaut"), fraListe_),
                            QStringLiteral("cmdListeDefaut"));
  ll->addWidget(listeDefaut);
  connect(listeDefaut, &QPushButton::clicked, this, [this] { cmdListeDefaut(); });
  grille->addWidget(fraListe_, ligne++, 0, 1, 5);
  auto* cmdMotClef = Nomme(new QPushButton(QStringLiteral("Mots clefs"), this), QStringLiteral("cmdMotClef"));
  imgMotClef_ = Nomme(new QLabel(QStringLiteral("*"), this), QStringLiteral("imgMotClef"));
  grille->addWidget(cmdMotClef, ligne, 0);
  grille->addWidget(imgMotClef_, ligne++, 1);
  connect(cmdMotClef, &QPushButton::clicked, this, [this] { this->cmdMotClef(); });

  // No-scale block.
  fraMicroPhoto_ = Nomme(new QFrame(this), QStringLiteral("fraMicroPhoto"));
  auto* lm = new QGridLayout(fraMicroPhoto_);
  txtMicroMan_ = Nomme(new QLineEdit(fraMicroPhoto_), QStringLiteral("txtMicroMan"));
  txtApPhotoMan_ = Nomme(new QLineEdit(fraMicroPhoto_), QStringLiteral("txtApPhotoMan"));
  ComboObjectifMan_ = Nomme(new QComboBox(fraMicroPhoto_), QStringLiteral("ComboObjectifMan"));
  ComboObjectifMan_->setEditable(true);
  comboMicro_ = Nomme(new QComboBox(fraMicroPhoto_), QStringLiteral("comboMicro"));
  comboModele_ = Nomme(new QComboBox(fraMicroPhoto_), QStringLiteral("comboModele"));
  cmdListeMicro_ = Nomme(new QPushButton(QStringLiteral("Liste"), fraMicroPhoto_),
                         QStringLiteral("cmdListeMicro"));
  cmdListeApPhoto_ = Nomme(new QPushButton(QStringLiteral("Liste"), fraMicroPhoto_),
                           QStringLiteral("cmdListeApPhoto"));
  lm->addWidget(new QLabel(QStringLiteral("Micro / Macro  ***"), fraMicroPhoto_), 0, 0);
  lm->addWidget(txtMicroMan_, 0, 1);
  lm->addWidget(comboMicro_, 0, 1);  // swapped in for the text box
  lm->addWidget(cmdListeMicro_, 0, 2);
  lm->addWidget(new QLabel(QStringLiteral("Ap.Photo  ***"), fraMicroPhoto_), 1, 0);
  lm->addWidget(txtApPhotoMan_, 1, 1);
  lm->addWidget(comboModele_, 1, 1);
  lm->addWidget(cmdListeApPhoto_, 1, 2);
  comboMicro_->hide();
  comboModele_->hide();
  connect(cmdListeMicro_, &QPushButton::clicked, this, [this] { cmdListeMicro(); });
  connect(cmdListeApPhoto_, &QPushButton::clicked, this, [this] { cmdListeApPhoto(); });
  connect(comboMicro_, &QComboBox::activated, this, [this] { comboMicro_Click(); });
  connect(comboModele_, &QComboBox::activated, this, [this] { comboModele_Click(); });
  lm->addWidget(ComboObjectifMan_, 2, 0);
  OptUniteObj_[0] = Nomme(new QRadioButton(QStringLiteral("x"), fraMicroPhoto_), QStringLiteral("OptUniteObj0"));
  OptUniteObj_[1] = Nomme(new QRadioButton(QStringLiteral("mm"), fraMicroPhoto_), QStringLiteral("OptUniteObj1"));
  OptUniteObj_[0]->setChecked(true);
  lm->addWidget(OptUniteObj_[0], 2, 1);
  lm->addWidget(OptUniteObj_[1], 2, 2);
  grille->addWidget(fraMicroPhoto_, ligne++, 0, 1, 5);
  cmdEtalonner_ = Nomme(new QPushButton(QStringLiteral("Ajouter une échelle et utiliser l'étalonnage (tables)"), this),
                        QStringLiteral("cmdEtalonner"));
  grille->addWidget(cmdEtalonner_, ligne++, 0, 1, 3);
  connect(cmdEtalonner_, &QPushButton::clicked, this, [this] { cmdEtalonner(); });

  // Scale frame.
  fraEchelle_ = Nomme(new QFrame(this), QStringLiteral("fraEchelle"));
  auto* le = new QGridLayout(fraEchelle_);
  le->addWidget(
      new QLabel(
          QStringLiteral("Etalonnage, en réf. à votre photo d'origine (avant redimensionnement)"),
          fraEchelle_),
      6, 0, 1, 4);
  auto champ = [&](const char* nom, const QString& libelle, int l, int c) {
    auto* e = Nomme(new QLineEdit(fraEchelle_), QLatin1String(nom));
    le->addWidget(new QLabel(libelle, fraEchelle_), l, c);
    le->addWidget(e, l, c + 1);
    return e;
  };
  txtPix_ = champ("txtPix", QStringLiteral("x pixels"), 0, 0);
  txtMic_ = champ("txtMic", QStringLiteral("x microns"), 0, 2);
  txtLongueur_ = champ("txtLongueur", QStringLiteral("Longueur de l'échelle"), 1, 0);
  txtLongueur_->setText(QStringLiteral("20"));
  auto* longueurAuto = Nomme(new QPushButton(QStringLiteral("auto"), fraEchelle_), QStringLiteral("cmdLongueurAuto"));
  longueurAuto->setToolTip(QStringLiteral("1, 2 ou 5 x 10^n microns : la plus longue qui tient dans le quart de l'image"));
  le->addWidget(longueurAuto, 2, 3);
  connect(longueurAuto, &QPushButton::clicked, this, [this] { cmdLongueurAuto(); });
  ComboObjectif_ = Nomme(new QComboBox(fraEchelle_), QStringLiteral("ComboObjectif"));
  ComboObjectif_->setEditable(true);
  le->addWidget(new QLabel(QStringLiteral("Objectif"), fraEchelle_), 1, 2);
  le->addWidget(ComboObjectif_, 1, 3);
  le->addWidget(new QLabel(QStringLiteral("en Microns uniquement !"), fraEchelle_), 2, 2);
  txtPix_->setToolTip(QStringLiteral("Votre mesure en pixel"));
  txtMic_->setToolTip(QStringLiteral("Equivalence en micron"));
  txtLongueur_->setToolTip(QStringLiteral("Attention à la longueur de l'étalon !"));
  ComboObjectif_->setToolTip(QStringLiteral("Choisir un gx. d'objectif"));
  for (QWidget* w :
       {static_cast<QWidget*>(txtPix_), static_cast<QWidget*>(txtMic_),
        static_cast<QWidget*>(txtLongueur_), static_cast<QWidget*>(ComboObjectif_->lineEdit())})
    w->installEventFilter(this);
  optUnite_[0] = Nomme(new QRadioButton(QStringLiteral("µm"), fraEchelle_), QStringLiteral("optUnite0"));
  optUnite_[1] = Nomme(new QRadioButton(QStringLiteral("mm"), fraEchelle_), QStringLiteral("optUnite1"));
  optUnite_[0]->setChecked(true);
  le->addWidget(optUnite_[0], 2, 0);
  le->addWidget(optUnite_[1], 2, 1);
  auto bouton = [&](QWidget* p, QGridLayout* l, const char* nom, const QString& texte, int li, int co) {
    auto* b = Nomme(new QPushButton(texte, p), QLatin1String(nom));
    l->addWidget(b, li, co);
    return b;
  };
  auto* sans = bouton(fraEchelle_, le, "cmdSansEtalon", QStringLiteral("Ne pas utiliser d'échelle"), 3, 0);
  auto* debloquer = bouton(fraEchelle_, le, "cmdDebloquer",
                           QStringLiteral("Effacer les valeurs  et revenir à une échelle manuelle"), 3, 1);
  cmdRecupMetaEchelle_ = bouton(fraEchelle_, le, "cmdRecupMetaEchelle", QStringLiteral("Récupérer les méta-données"), 3, 2);
  cmdModifDefinition_ = bouton(fraEchelle_, le, "cmdModifDefinition",
                               QStringLiteral("Adapte la table en rapport avec cette largeur de photo"), 3, 3);
  txtModele_ = champ("txtModele", QStringLiteral("Ap. photo :"), 4, 0);
  txtFocale_ = champ("txtFocale", QStringLiteral("L. focale (zoom) :"), 4, 2);
  txtLargeur_ = champ("txtLargeur", QStringLiteral("Largeur photo :"), 5, 0);
  for (QLineEdit* e : {txtModele_, txtFocale_, txtLargeur_}) e->setReadOnly(true);
  connect(sans, &QPushButton::clicked, this, [this] { cmdSansEtalon(); });
  connect(debloquer, &QPushButton::clicked, this, [this] { cmdDebloquer(); });
  connect(cmdRecupMetaEchelle_, &QPushButton::clicked, this, [this] { cmdRecupMetaEchelle(); });
  connect(cmdModifDefinition_, &QPushButton::clicked, this, [this] { cmdModifDefinition(); });
  // The table frame, each opening running the automatic choice.
  cmdOuvrirFraTable_ =
      bouton(fraEchelle_, le, "cmdOuvrirFraChoixTable", QStringLiteral("Tables"), 5, 2);
  connect(cmdOuvrirFraTable_, &QPushButton::clicked, this, [this] {
    fraChoixTable_->show();
    fraChoixTable_Expand();
  });
  grille->addWidget(fraEchelle_, ligne++, 0, 1, 5);

  fraChoixTable_ = Nomme(new QFrame(this), QStringLiteral("fraChoixTable"));
  auto* lt = new QGridLayout(fraChoixTable_);
  comboTables_ = Nomme(new QComboBox(fraChoixTable_), QStringLiteral("comboTables"));
  comboIndexTable_ = Nomme(new QComboBox(fraChoixTable_), QStringLiteral("comboIndexTable"));
  comboIndexTable_->hide();
  comboListeObjectif_ = Nomme(new QComboBox(fraChoixTable_), QStringLiteral("comboListeObjectif"));
  comboListeObjectif_->setEditable(true);
  chkAfficherTouteTable_ = Nomme(new QCheckBox(QStringLiteral("Sans filtrage"), fraChoixTable_),
                                 QStringLiteral("chkAfficherTouteTable"));
  txtChoixTableAuto_ = Nomme(new QLineEdit(fraChoixTable_), QStringLiteral("txtChoixTableAuto"));
  txtObjRef_ = Nomme(new QLineEdit(fraChoixTable_), QStringLiteral("txtObjRef"));
  txtObjRef_->setReadOnly(true);
  txtObjRef_->setPlaceholderText(QStringLiteral("(Table : obj. de réf = 000)"));
  chkAfficherTouteTable_->setToolTip(QStringLiteral("Sans filtre =  Afficher toutes les tables"));
  lt->addWidget(new QLabel(QStringLiteral("Choisir une table :"), fraChoixTable_), 0, 0);
  lt->addWidget(comboTables_, 0, 1, 1, 3);
  lt->addWidget(new QLabel(QStringLiteral("Choisir un objectif pour cette image :"), fraChoixTable_), 1, 0);
  lt->addWidget(comboListeObjectif_, 1, 1);
  lt->addWidget(txtObjRef_, 1, 2);
  lt->addWidget(chkAfficherTouteTable_, 2, 0);
  // Room for the longer of its two states, each on one line.
  txtChoixTableAuto_->setMinimumWidth(
      std::max(txtChoixTableAuto_->fontMetrics().horizontalAdvance(UneLigne(kEtatActive)),
               txtChoixTableAuto_->fontMetrics().horizontalAdvance(UneLigne(kAucuneCorrespondance))) +
      16);
  lt->addWidget(txtChoixTableAuto_, 2, 1, 1, 3);
  auto* appliquer = bouton(fraChoixTable_, lt, "cmdAppliquerTable", QStringLiteral("OK"), 3, 0);
  auto* annuler = bouton(fraChoixTable_, lt, "cmdAnnulerTable", QStringLiteral("Annuler"), 3, 1);
  cmdExtrapolFoc_ = bouton(fraChoixTable_, lt, "cmdExtrapolFoc", QStringLiteral("Extrapoler"), 3, 2);
  cmdExtrapolFoc_->setEnabled(false);
  connect(cmdExtrapolFoc_, &QPushButton::clicked, this, [this] { cmdExtrapolFoc(); });
  cmdExtrapolFoc_->setToolTip(
      QStringLiteral("Uniquement si votre focale n'existe pas déjà dans une table !"));
  connect(comboTables_, &QComboBox::activated, this, [this] { comboTables_Click(); });
  connect(appliquer, &QPushButton::clicked, this, [this] { cmdAppliquerTable(); });
  connect(annuler, &QPushButton::clicked, this, [this] { cmdAnnulerTable(); });
  connect(chkAfficherTouteTable_, &QCheckBox::clicked, this, [this] { chkAfficherTouteTable_Click(); });
  grille->addWidget(fraChoixTable_, ligne++, 0, 1, 5);

  // Options: transparency, alignment, colours, fonts.
  const char* transp[3] = {"Non", "Moyenne", "Complète"};
  const char* align[3] = {"H.G", "C.C", "H.D"};
  auto* grTransp = new QFrame(this);
  auto* lTr = new QHBoxLayout(grTransp);
  auto* grAlign = new QFrame(this);
  auto* lAl = new QHBoxLayout(grAlign);
  for (int i = 0; i < 3; ++i) {
    optTransparence_[i] = Nomme(new QRadioButton(QString::fromUtf8(transp[i]), grTransp),
                                QStringLiteral("optTransparence%1").arg(i));
    lTr->addWidget(optTransparence_[i]);
    optAlign_[i] = Nomme(new QRadioButton(QLatin1String(align[i]), grAlign), QStringLiteral("optAlign%1").arg(i));
    lAl->addWidget(optAlign_[i]);
  }
  grille->addWidget(grTransp, ligne, 0, 1, 2);
  grille->addWidget(grAlign, ligne++, 2, 1, 2);
  chkOmbrage_ = Nomme(new QCheckBox(QStringLiteral("Ombrage RN ?"), this), QStringLiteral("chkOmbrage"));
  chkOmbrage_->setToolTip(
      QStringLiteral("Ajoute un ombrage sous la photo (reflex 1.5x1 uniquement)"));
  grille->addWidget(chkOmbrage_, ligne++, 0);
  connect(chkOmbrage_, &QCheckBox::clicked, this, [this] { chkOmbrage_Click(); });

  fraPolices_ = Nomme(new QFrame(this), QStringLiteral("fraPolices"));
  auto* lp = new QGridLayout(fraPolices_);
  auto forme = [&](const char* nom, int col) {
    auto* l = Nomme(new QLabel(fraPolices_), QLatin1String(nom));
    l->setFixedSize(20, 20);
    l->setAutoFillBackground(true);
    lp->addWidget(l, 0, col);
    return l;
  };
  shpTexte_ = forme("shpTexte", 1);
  shpEchelle_ = forme("shpEchelle", 3);
  shpCartouche_ = forme("shpCartouche", 5);
  shpFond_ = forme("shpFond", 7);
  auto* cTexte = bouton(fraPolices_, lp, "cmdCouleurTexte", QStringLiteral("Texte"), 0, 0);
  auto* cEchelle = bouton(fraPolices_, lp, "cmdCouleurEchelle", QStringLiteral("Echelle"), 0, 2);
  auto* cCartouche = bouton(fraPolices_, lp, "cmdCouleurCartouche", QStringLiteral("Cartouche"), 0, 4);
  cmdCouleurFond_ = bouton(fraPolices_, lp, "cmdCouleurFond", QStringLiteral("Fond"), 0, 6);
  auto* defaut = bouton(fraPolices_, lp, "cmdCartoucheDefaut", QStringLiteral("Défaut"), 1, 0);
  auto* pipette = bouton(fraPolices_, lp, "cmdPipette", QStringLiteral("Pipette"), 1, 1);
  chkCouleurAuto_ = Nomme(new QCheckBox(QStringLiteral("auto"), fraPolices_), QStringLiteral("chkCouleurAuto"));
  chkCouleurAuto_->setToolTip(QStringLiteral(
      "Texte et échelle en noir ou en blanc, selon l'image sous le cartouche (cartouche sur l'image)"));
  lp->addWidget(chkCouleurAuto_, 1, 2);
  connect(pipette, &QPushButton::clicked, this, [this] { cmdPipette(); });
  cTexte->setToolTip(QStringLiteral("Couleur du texte (colle sa couleur sur couleur échelle !)"));
  cmdCouleurFond_->setToolTip(QStringLiteral("Uniquement si image carrée ou portrait !"));
  auto choisir = [this](QColor initiale, void (frmAjouterCartouche::*poser)(const QColor&)) {
    const int c = Dialogues().Couleur(VersBgr(initiale));
    if (c >= 0) (this->*poser)(DepuisBgr(c));
  };
  connect(cTexte, &QPushButton::clicked, this, [=, this] { choisir(couleurTexte_, &frmAjouterCartouche::DefinirCouleurTexte); });
  connect(cEchelle, &QPushButton::clicked, this, [=, this] { choisir(couleurEchelle_, &frmAjouterCartouche::DefinirCouleurEchelle); });
  connect(cCartouche, &QPushButton::clicked, this, [=, this] { choisir(couleurCartouche_, &frmAjouterCartouche::DefinirCouleurCartouche); });
  connect(cmdCouleurFond_, &QPushButton::clicked, this, [=, this] { choisir(couleurFond_, &frmAjouterCartouche::DefinirCouleurFond); });
  connect(defaut, &QPushButton::clicked, this, [this] { CouleurDefaut(); });
  txtPoliceTitre_ = Nomme(new QLineEdit(fraPolices_), QStringLiteral("txtPoliceTitre"));
  txtPoliceSousTitre_ = Nomme(new QLineEdit(fraPolices_), QStringLiteral("txtPoliceSousTitre"));
  for (QLineEdit* e : {txtPoliceTitre_, txtPoliceSousTitre_}) e->setReadOnly(true);
  lp->addWidget(txtPoliceTitre_, 2, 0, 1, 3);
  lp->addWidget(txtPoliceSousTitre_, 2, 4, 1, 3);
  auto* policeTitre =
      bouton(fraPolices_, lp, "cmdPoliceTitre", QStringLiteral("Police titre"), 2, 3);
  auto* policeSousTitre =
      bouton(fraPolices_, lp, "cmdPoliceSousTitre", QStringLiteral("Police texte"), 2, 7);
  auto* reduirePolice =
      bouton(fraPolices_, lp, "cmdReduireFraPolice", QStringLiteral("Réduire"), 1, 7);
  connect(policeTitre, &QPushButton::clicked, this, [this] { cmdPoliceTitre(); });
  connect(policeSousTitre, &QPushButton::clicked, this, [this] { cmdPoliceSousTitre(); });
  connect(reduirePolice, &QPushButton::clicked, this, [this] { cmdReduireFraPolice(); });
  grille->addWidget(fraPolices_, ligne++, 0, 1, 5);

  // The folded frames open again from here.
  auto* ouvrir = new QHBoxLayout;
  auto ouvreur = [&](const char* nom, const QString& texte, QFrame* cadre) {
    auto* b = Nomme(new QPushButton(texte, this), QLatin1String(nom));
    ouvrir->addWidget(b);
    connect(b, &QPushButton::clicked, this, [cadre] { cadre->show(); });
    return b;
  };
  ouvreur("cmdOuvrirFraPolice", QStringLiteral("Couleurs et polices"), fraPolices_);
  cmdOuvrirFraChoixChamp_ =
      ouvreur("cmdOuvrirFraChoixChamp", QStringLiteral("Choix des champs"), fraChoixChamp_);
  ouvreur("cmdOuvrirFraListe", QStringLiteral("Listes"), fraListe_);
  grille->addLayout(ouvrir, ligne++, 0, 1, 5);

  lblInfosCartouche_ = Nomme(new QLabel(this), QStringLiteral("lblInfosCartouche"));
  grille->addWidget(lblInfosCartouche_, ligne++, 0, 1, 5);
  picCartouche_ = Nomme(new QLabel(this), QStringLiteral("picCartouche"));
  grille->addWidget(picCartouche_, ligne++, 0, 1, 5);

  auto* racine = new QVBoxLayout(this);
  racine->setContentsMargins(0, 0, 0, 0);
  racine->addWidget(new PanneauDefilant(formulaire, this), 1);
  auto* bas = new QHBoxLayout;
  bas->setContentsMargins(9, 4, 9, 9);
  cmdDessiner_ = Nomme(new QPushButton(QStringLiteral("Dessiner le cartouche"), this), QStringLiteral("cmdDessiner"));
  cmdSuite_ = Nomme(new QPushButton(QStringLiteral("Suite"), this), QStringLiteral("cmdSuite"));
  cmdSuite_->setEnabled(false);
  auto* vider = Nomme(new QPushButton(QStringLiteral("Champs par défaut"), this), QStringLiteral("cmdViderChamps"));
  auto* quitter = Nomme(new QPushButton(QStringLiteral("Quitter"), this), QStringLiteral("cmdQuitter"));
  for (QPushButton* b : {cmdDessiner_, cmdSuite_, vider, quitter}) bas->addWidget(b);
  racine->addLayout(bas);
  connect(cmdDessiner_, &QPushButton::clicked, this, [this] { cmdDessiner(); });
  connect(cmdSuite_, &QPushButton::clicked, this, [this] { cmdSuite(); });
  connect(vider, &QPushButton::clicked, this, [this] { cmdViderChamps(); });
  connect(quitter, &QPushButton::clicked, this, [this] { close(); });
}

void frmAjouterCartouche::Peindre(QWidget* w, int bgr) {
  // Dark text on the pale colours, a locked (disabled) field's included.
  w->setStyleSheet(QStringLiteral("background-color: %1; color: black;").arg(DepuisBgr(bgr).name()));
}

bool frmAjouterCartouche::EchelleVisible() const { return !fraEchelle_->isHidden(); }

void frmAjouterCartouche::RemplirObjectifs() {
  for (QComboBox* c : {comboListeObjectif_, ComboObjectif_, ComboObjectifMan_}) {
    ListeCombo l(c);
    ChargerListeObjectif(l);
  }
  ComboObjectif_->insertItem(0, QStringLiteral("*Nouv.val*"));
  ComboObjectifMan_->insertItem(0, QStringLiteral("*Nouv.val*"));
  for (QComboBox* c : {comboListeObjectif_, ComboObjectif_, ComboObjectifMan_}) c->setCurrentText(QString());
}

void frmAjouterCartouche::AppliquerDate(const DateCartouche& d) {
  comboJour_->clear();
  comboJour_->addItems(d.jours);
  comboMois_->clear();
  comboMois_->addItems(d.mois);
  comboAnnee_->clear();
  comboAnnee_->addItems(d.annees);
  comboJour_->setCurrentText(d.jour);
  comboMois_->setCurrentText(d.moisChoisi);
  comboAnnee_->setCurrentText(d.annee);
  lblDatePhoto_->setText(d.libelle);
}

void frmAjouterCartouche::Form_Load() {
  // 1. A copy without filters, unless the picture is already final or annotated.
  if (!s_.AnnotationsPresentes && !s_.ImageFinale && s_.ImageCourante) {
    if (!ai_.IO_Copy(s_.ImageCourante, s_.ImageSansFiltre))
      Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Error - ") + ai_.Error_GetLast(),
                          Icone::Critique);
  }
  // 2.
  txtCommentaire_->setMaxLength(kLongueurMaxChamp);
  txtNomAuteur_->setMaxLength(kLongueurMaxChamp);
  tableAppliquee_ = false;
  fraEchelle_->hide();
  fraChoixTable_->hide();
  fraMicroPhoto_->show();
  cmdEtalonner_->show();
  txtChoixTableAuto_->setText(QString::fromUtf8(kEtatActive));
  const char* bulles[4] = {"Ajustement de la balance des blancs, des niveaux,  contraste etc ...",
                           "Suppression des pousières du capteur (clônage ou filtre)", "",
                           "Helicon Focus, CombineZ, etc ..."};
  for (int i = 0; i < 4; ++i) {
    chkTraitNum_[i]->setText(QString::fromUtf8(kTraitements[i]));
    chkTraitNum_[i]->setToolTip(QString::fromUtf8(bulles[i]));
  }
  // 3.
  bool motsClefs = !s_.MotClef.isEmpty();
  for (const QString* c : {&s_.Regne, &s_.Embranchement, &s_.Classe, &s_.Ordre, &s_.Famille,
                           &s_.Genre, &s_.Espece})
    motsClefs = motsClefs || !c->isEmpty();
  imgMotClef_->setVisible(motsClefs);
  // 4.
  RemplirObjectifs();
  // 5.
  txtModele_->setText(s_.Modele.isEmpty() ? QStringLiteral("N/A") : s_.Modele);
  txtFocale_->setText(s_.FocaleAPN == 0 ? QStringLiteral("0 mm ou N/A")
                                        : TexteReel(s_.FocaleAPN, s_.SeparateurDecimal) + " mm");
  txtLargeur_->setText(TexteLargeurPhoto(s_.ImageTournee, s_.PortraitOrigine, s_.LargeurOrigine,
                                         s_.LargeurCadrage, s_.HauteurOrigine));
  // 6.
  dateRecuperee_ = RecupDate(s_.DateImage, s_.DateObservation, QDate::currentDate());
  AppliquerDate(dateRecuperee_);
  const DefautsChamps defauts;
  ComboEclairage_->setCurrentText(defauts.eclairage);
  comboMontage_->setCurrentText(defauts.montage);
  comboColoration_->setCurrentText(defauts.coloration);
  txtCommentaire_->setText(defauts.titre);
  {
    ListeCombo e(ComboEclairage_), m(comboMontage_), p(comboProvenance_), c(comboColoration_);
    RemplirCombo(ListeChoix::Eclairage, e);
    RemplirCombo(ListeChoix::Montage, m);
    RemplirCombo(ListeChoix::Provenance, p);
    RemplirCombo(ListeChoix::Coloration, c);
  }
  chkOmbrage_->hide();
  fraEchelle_->setToolTip(QStringLiteral("Etalonnage, en réf. à votre photo d'origine (avant redimensionnement)"));
  fraChoixTable_->hide();
  fraPolices_->hide();
  fraChoixChamp_->hide();
  fraListe_->hide();
  for (auto* c : chkLstDefaut_) c->setChecked(false);
  comboMicro_->hide();
  comboModele_->hide();
  txtMicroMan_->show();
  txtApPhotoMan_->show();
  txtObjRef_->clear();
  txtNomAuteur_->setText(s_.NomAuteur);
  cmdRecupMetaEchelle_->hide();
  cmdModifDefinition_->hide();
  // 7 to 9. Canvas and shape.
  canevas_ = CalculerCanevas(s_);
  if (Arrondir(s_.CadrageFormate, 1) == 1.5) {
    chkOmbrage_->show();
    chkOmbrage_->setChecked(false);
  }
  fraPolices_->show();
  // The choice of fields exists for the 3-line cartouche only.
  fraChoixChamp_->setVisible(s_.CartoucheHB == u"1");
  cmdOuvrirFraChoixChamp_->setVisible(s_.CartoucheHB == u"1");
  forme_ = CalculerFormeCartouche(s_.CartoucheHB, s_.CadrageFormate, s_.LargeurFormatee,
                                  canevas_.largeurFond, canevas_.hauteurFond, s_.HauteurFormatee);
  lblInfosCartouche_->setText(forme_.infos);
  // A 3-line cartouche is never transparent.
  for (auto* o : optTransparence_) o->setEnabled(s_.CartoucheHB != u"1");
  // The auto colour reads the picture under a cartouche drawn over it.
  chkCouleurAuto_->setEnabled(s_.CartoucheHB == u"0");
  // 10.
  const OptionsDefaut o = CalculerOptionsDefaut(s_.CadrageFormate, s_.RatioFormat, s_.CartoucheHB,
                                                s_.LargeurFormatee, canevas_.largeurFond);
  optTransparence_[o.optTransparence]->setChecked(true);
  optAlign_[o.optAlign]->setChecked(true);
  for (auto* a : optAlign_) a->setEnabled(o.alignActif);
  cmdCouleurFond_->setEnabled(true);
  if (o.fondsBlancs) {
    couleurFond_ = Qt::white;
    couleurCartouche_ = Qt::white;
  }
  // 11.
  DefinirCouleurFond(couleurFond_);
  DefinirCouleurCartouche(couleurCartouche_);
  DefinirCouleurTexte(couleurTexte_);
  policeTitre_ = QFont(s_.FontName1, s_.FontSize1);
  policeTitre_.setBold(s_.FontBold1);
  policeTitre_.setItalic(s_.FontItalic1);
  policeSousTitre_ = QFont(s_.FontName2, s_.FontSize2);
  policeSousTitre_.setBold(s_.FontBold2);
  policeSousTitre_.setItalic(s_.FontItalic2);
  AfficherPolices();
  // 12.
  const MemoireCartouche m = s_.MemCartouche;
  if (!m.MemTitre.isEmpty()) RestaurerMemoire(m);
  // 13.
  txtMicroMan_->setText(s_.MicroscopeMeta);
  txtApPhotoMan_->setText(s_.ApPhotoMeta);
  ComboObjectifMan_->setCurrentText(s_.ObjectifMeta);
  OptUniteObj_[m.MemUniteObj == 1 ? 1 : 0]->setChecked(true);
  Peindre(txtApPhotoMan_, txtApPhotoMan_->text().isEmpty() ? kJaunePale : kVertPale);
  // 14. A picture that already went through the program.
  if (s_.ImageDejaFormatee) {
    if ((Arrondir(s_.CadrageFormate, 2) == 1.33 || Arrondir(s_.CadrageFormate, 1) == 1.5) &&
        !s_.EchellePix.isEmpty() && !s_.EchelleMic.isEmpty()) {
      fraEchelle_->show();
      fraChoixTable_->show();
      cmdRecupMetaEchelle_->show();
      cmdEtalonner_->hide();
      fraMicroPhoto_->hide();
    }
    const std::pair<const QString*, QWidget*> textes[] = {
        {&s_.TitreImage, txtCommentaire_}, {&s_.NomAuteurImage, txtNomAuteur_},
        {&s_.Provenance, comboProvenance_}, {&s_.Coloration, comboColoration_},
        {&s_.Preparation, comboMontage_},  {&s_.Eclairage, ComboEclairage_}};
    for (const auto& [valeur, w] : textes) {
      if (valeur->isEmpty()) continue;
      if (auto* e = qobject_cast<QLineEdit*>(w)) e->setText(*valeur);
      if (auto* c = qobject_cast<QComboBox*>(w)) c->setCurrentText(*valeur);
    }
    optUnite_[s_.UniteEtalon == u"um" ? 0 : 1]->setChecked(true);
    const bool traits[4] = {s_.TraitNiveaux, s_.TraitPoussieres, s_.TraitBruit, s_.TraitDeconvolution};
    for (int i = 0; i < 4; ++i)
      if (traits[i]) chkTraitNum_[i]->setChecked(true);
    txtMicroMan_->setText(s_.Microscope);
    txtApPhotoMan_->setText(s_.Modele);
    ComboObjectifMan_->setCurrentText(s_.Objectif);
    OptUniteObj_[s_.UniteObj == u"mm" ? 1 : 0]->setChecked(true);
  }
  // 15.
  if (s_.NomAuteurImage.isEmpty()) txtNomAuteur_->setText(s_.NomAuteur);
  if (fraChoixTable_->isVisibleTo(this)) fraChoixTable_Expand();
}

void frmAjouterCartouche::RestaurerMemoire(const MemoireCartouche& m) {
  txtCommentaire_->setText(m.MemTitre);
  txtNomAuteur_->setText(m.MemAuteur);
  comboProvenance_->setCurrentText(m.MemProvenance);
  comboColoration_->setCurrentText(m.MemColoration);
  comboMontage_->setCurrentText(m.MemMontage);
  ComboEclairage_->setCurrentText(m.MemEclairage);
  if (!m.MemProvenance.isEmpty()) chkChoixChamp_[6]->setChecked(true);
  for (int i = 0; i < 4; ++i) chkTraitNum_[i]->setChecked(m.MemTraitNum[i]);
  ComboObjectif_->setCurrentText(m.MemObjectif);
  txtPix_->setText(m.MemPix);
  txtMic_->setText(m.MemMic);
  txtLongueur_->setText(QString::number(m.MemLongueur));
  DefinirCouleurTexte(DepuisBgr(m.MemCouleurTexte));
  DefinirCouleurEchelle(DepuisBgr(m.MemCouleurEchelle));
  DefinirCouleurCartouche(DepuisBgr(m.MemCouleurCartouche));
  DefinirCouleurFond(DepuisBgr(m.MemCouleurFond));
  fraEchelle_->setVisible(m.MemEchelleVisible);
  fraChoixTable_->setVisible(m.MemChoixTableVisible);
  fraPolices_->setVisible(m.MemPolicesVisible);
  if (m.MemOmbrage) {
    chkOmbrage_->setChecked(true);
    AppliquerOmbrage();
  }
  if (m.MemEchelleVisible) {
    cmdEtalonner_->hide();
    fraMicroPhoto_->hide();
  } else {
    cmdEtalonner_->show();
    fraMicroPhoto_->show();
    fraChoixTable_->hide();
  }
}

// --- Colours

void frmAjouterCartouche::DefinirCouleurTexte(const QColor& c) {
  couleurTexte_ = c;
  Peindre(shpTexte_, VersBgr(c));
  QPalette p = txtPoliceTitre_->palette();
  p.setColor(QPalette::Text, c);
  txtPoliceTitre_->setPalette(p);
  txtPoliceSousTitre_->setPalette(p);
  // The text colour is pasted onto the scale as well.
  DefinirCouleurEchelle(c);
}

void frmAjouterCartouche::DefinirCouleurEchelle(const QColor& c) {
  couleurEchelle_ = c;
  Peindre(shpEchelle_, VersBgr(c));
}

void frmAjouterCartouche::DefinirCouleurCartouche(const QColor& c) {
  couleurCartouche_ = c;
  Peindre(shpCartouche_, VersBgr(c));
  QPalette p = txtPoliceTitre_->palette();
  p.setColor(QPalette::Base, c);
  txtPoliceTitre_->setPalette(p);
  txtPoliceSousTitre_->setPalette(p);
}

void frmAjouterCartouche::DefinirCouleurFond(const QColor& c) {
  couleurFond_ = c;
  Peindre(shpFond_, VersBgr(c));
}

void frmAjouterCartouche::CouleurDefaut() {
  DefinirCouleurFond(DepuisBgr(16777215));
  DefinirCouleurCartouche(DepuisBgr(16777215));
  DefinirCouleurTexte(DepuisBgr(0));
}

void frmAjouterCartouche::RecevoirCouleurPipette(int couleur, int, int, int) {
  DefinirCouleurFond(DepuisBgr(couleur));
}

void frmAjouterCartouche::cmdPipette() {
  if (!pipette_) pipette_ = new frmPipette(s_.ImageCourante, ai_, this);
  pipette_->show();
  pipette_->raise();
}

// --- Fonts

void frmAjouterCartouche::AfficherPolices() {
  txtPoliceTitre_->setFont(policeTitre_);
  txtPoliceTitre_->setText(TexteFont(policeTitre_));
  txtPoliceSousTitre_->setFont(policeSousTitre_);
  txtPoliceSousTitre_->setText(TexteFont(policeSousTitre_));
}

void frmAjouterCartouche::ChoisirPolice(int numero) {
  QFont& police = numero == 1 ? policeTitre_ : policeSousTitre_;
  const std::optional<QFont> choix = Dialogues().Police(police);
  if (!choix) return;
  police = *choix;
  AfficherPolices();
  if (!EcrirePolice(s_, numero, police))
    Dialogues().Message(
        QLatin1String(TitreProgramme),
        TexteErreurFeuille(75, QStringLiteral("Erreur d'accès au chemin/fichier"),
                           numero == 1 ? QStringLiteral("cmdPoliceTitre_Click")
                                       : QStringLiteral("cmdPoliceSousTitre_Click")),
        Icone::Critique);
}

void frmAjouterCartouche::cmdPoliceTitre() { ChoisirPolice(1); }

void frmAjouterCartouche::cmdPoliceSousTitre() { ChoisirPolice(2); }

// --- Frames

void frmAjouterCartouche::cmdReduirefraChoixChamp() {
  fraChoixChamp_->hide();
  cmdDessiner();
}

void frmAjouterCartouche::cmdReduireFraPolice() {
  // The background sample and picFond share one colour here: nothing to copy.
  fraPolices_->hide();
  cmdDessiner();
}

void frmAjouterCartouche::cmdListeDefaut() {
  const std::array<bool, 3> coches = {chkLstDefaut_[0]->isChecked(), chkLstDefaut_[1]->isChecked(),
                                      chkLstDefaut_[2]->isChecked()};
  auto combo = [this](int i) {
    switch (ListeDeDefaut(i)) {
      case ListeChoix::Provenance:
        return comboProvenance_;
      case ListeChoix::Montage:
        return comboMontage_;
      case ListeChoix::Coloration:
        return comboColoration_;
      default:
        return ComboEclairage_;
    }
  };
  ListeCombo l0(combo(0)), l1(combo(1)), l2(combo(2));
  if (coches[0] || coches[1] || coches[2]) {
    tg::cmdListeDefaut(coches, {&l0, &l1, &l2});
    fraListe_->hide();
  }
  for (auto* c : chkLstDefaut_) c->setChecked(false);
}

void frmAjouterCartouche::cmdMotClef() {
  // The dialog reads the session's keywords and shows or hides imgMotClef.
  if (!motClef_) motClef_ = new frmMotClef(s_, this);
  motClef_->show();
  motClef_->raise();
}

// --- Fields

void frmAjouterCartouche::chkChoixChamp_Click(int index) {
  const bool actif = chkChoixChamp_[index]->isChecked();
  if (index == 3) {
    for (QComboBox* c : {comboJour_, comboMois_, comboAnnee_}) c->setEnabled(actif);
    return;
  }
  QWidget* controles[9] = {txtCommentaire_, ComboEclairage_, txtNomAuteur_, nullptr, txtMicroMan_,
                           txtApPhotoMan_, comboProvenance_, comboMontage_, comboColoration_};
  QWidget* w = controles[index];
  if (index == 4) cmdListeMicro_->setEnabled(actif);
  if (index == 5) cmdListeApPhoto_->setEnabled(actif);
  auto* e = qobject_cast<QLineEdit*>(w);
  auto* c = qobject_cast<QComboBox*>(w);
  if (!actif) {
    tagChamp_[index] = e ? e->text() : c->currentText();
    if (e) e->setText(QString::fromUtf8(kChampInutilise));
    if (c) c->setCurrentText(QString::fromUtf8(kChampInutilise));
    w->setEnabled(false);
    if (index == 0)
      Dialogues().Message(QLatin1String(TitreProgramme),
                          QStringLiteral("Attention : Il est déconseillé d'enlever le titre !"),
                          Icone::Exclamation);
  } else {
    w->setEnabled(true);
    if (e) e->setText(tagChamp_[index]);
    if (c) c->setCurrentText(tagChamp_[index]);
  }
}

void frmAjouterCartouche::cmdTousChamps() {
  for (int i = 0; i < 9; ++i)
    if (!chkChoixChamp_[i]->isChecked()) {
      chkChoixChamp_[i]->setChecked(true);
      chkChoixChamp_Click(i);
    }
}

void frmAjouterCartouche::cmdViderChamps() {
  if (Dialogues().Question(QStringLiteral("Champs textes par défaut"),
                           QStringLiteral("Souhaitez-vous effacer les valeurs actuelles\r\n"
                                          "et les remplacer par les valeurs par défauts ?"),
                           Boutons::OuiNon, Reponse::Oui, Icone::Question) != Reponse::Oui)
    return;
  cmdTousChamps();
  const DefautsChamps d;
  txtCommentaire_->setText(d.titre);
  ComboEclairage_->setCurrentText(d.eclairage);
  txtNomAuteur_->setText(s_.NomAuteur);
  comboProvenance_->setCurrentText(QString());
  comboMontage_->setCurrentText(d.montage);
  comboColoration_->setCurrentText(d.coloration);
  // The photo's own date, as the opening chose it: never today's in its place.
  AppliquerDate(dateRecuperee_);
  for (auto* c : chkTraitNum_) c->setChecked(false);
  txtMicroMan_->clear();
  ComboObjectifMan_->setCurrentText(QString());
  Peindre(txtMicroMan_, kJaunePale);
  Peindre(ComboObjectifMan_, kJaunePale);
  txtApPhotoMan_->setText(s_.Modele);
  for (auto* c : chkListe_) c->setChecked(false);
  // Unticked as a click would: the strip goes and the colours come back;
  // the drawing below stands for the click's own.
  if (chkOmbrage_->isChecked()) {
    chkOmbrage_->setChecked(false);
    AppliquerOmbrage();
  }
  optUnite_[0]->setChecked(true);
  cmdDessiner();
}

void frmAjouterCartouche::AppliquerOmbrage() {
  if (Arrondir(s_.CadrageFormate, 1) != 1.5) return;
  ombre_ = chkOmbrage_->isChecked() ? ImageOmbre(IndexOmbre(s_.LargeurFormatee)) : QImage();
  if (!chkOmbrage_->isChecked()) CouleurDefaut();
}

void frmAjouterCartouche::chkOmbrage_Click() {
  if (Arrondir(s_.CadrageFormate, 1) != 1.5) return;
  AppliquerOmbrage();
  cmdDessiner();
}

ChampsCartouche frmAjouterCartouche::LireChamps() const {
  ChampsCartouche c;
  c.titre = txtCommentaire_->text();
  c.eclairage = ComboEclairage_->currentText();
  c.auteur = txtNomAuteur_->text();
  c.provenance = comboProvenance_->currentText();
  c.montage = comboMontage_->currentText();
  c.coloration = comboColoration_->currentText();
  c.microMan = txtMicroMan_->text();
  c.apPhotoMan = txtApPhotoMan_->text();
  c.objectifMan = ComboObjectifMan_->currentText();
  c.objectif = ComboObjectif_->currentText();
  c.pix = txtPix_->text();
  c.mic = txtMic_->text();
  c.longueur = txtLongueur_->text();
  return c;
}

void frmAjouterCartouche::EcrireChamps(const ChampsCartouche& c) {
  txtCommentaire_->setText(c.titre);
  ComboEclairage_->setCurrentText(c.eclairage);
  txtNomAuteur_->setText(c.auteur);
  comboProvenance_->setCurrentText(c.provenance);
  comboMontage_->setCurrentText(c.montage);
  comboColoration_->setCurrentText(c.coloration);
  txtMicroMan_->setText(c.microMan);
  txtApPhotoMan_->setText(c.apPhotoMan);
  ComboObjectif_->setCurrentText(c.objectif);
  txtPix_->setText(c.pix);
}

// --- Scale

void frmAjouterCartouche::ApparenceChampsTable() {
  for (QWidget* w : {static_cast<QWidget*>(ComboObjectif_), static_cast<QWidget*>(txtPix_),
                     static_cast<QWidget*>(txtMic_)}) {
    w->setEnabled(false);
    Peindre(w, kVertPale);
  }
  cartouche_ = QImage();
  picCartouche_->clear();
}

void frmAjouterCartouche::ApparenceNoEtalon() {
  for (QWidget* w : {static_cast<QWidget*>(ComboObjectifMan_), static_cast<QWidget*>(txtApPhotoMan_),
                     static_cast<QWidget*>(txtMicroMan_)})
    Peindre(w, kVertPale);
}

void frmAjouterCartouche::cmdEtalonner() {
  fraMicroPhoto_->hide();
  cmdEtalonner_->hide();
  fraEchelle_->show();
  fraChoixTable_->show();
  fraChoixTable_Expand();
}

void frmAjouterCartouche::fraChoixTable_Expand() {
  txtObjRef_->clear();
  // A zoom needs the camera's model and the photo's focal length.
  cmdExtrapolFoc_->setEnabled(!s_.Modele.isEmpty() && s_.FocaleAPN > 0);
  ListeCombo liste(comboTables_), index(comboIndexTable_);
  liste.Vider();
  index.Vider();
  const FiltreAuto filtre = ChoisirFiltreAuto(s_.Modele, s_.FocaleAPN);
  if (filtre != FiltreAuto::Aucun) {
    chkAfficherTouteTable_->setChecked(false);
    txtChoixTableAuto_->setText(QString::fromUtf8(kEtatActive));
    RemplirComboTableFiltre(liste, index, filtre == FiltreAuto::AvecModele, s_);
  }
  if (comboIndexTable_->count() < 2) {
    chkAfficherTouteTable_->setChecked(true);
    txtChoixTableAuto_->setText(QString::fromUtf8(kAucuneCorrespondance));
    liste.Vider();
    RemplirComboTable(liste, s_.SeparateurDecimal);
  }
}

void frmAjouterCartouche::chkAfficherTouteTable_Click() {
  comboTables_->clear();
  comboIndexTable_->clear();
  txtObjRef_->clear();
  if (chkAfficherTouteTable_->isChecked()) {
    ListeCombo liste(comboTables_);
    RemplirComboTable(liste, s_.SeparateurDecimal);
    txtChoixTableAuto_->setText(QString::fromUtf8(kAucuneCorrespondance));
  } else {
    fraChoixTable_Expand();
  }
}

int frmAjouterCartouche::SlotChoisi() const {
  const int pos = comboTables_->currentIndex();
  return SlotTableChoisie(pos, chkAfficherTouteTable_->isChecked(),
                          comboIndexTable_->itemText(pos));
}

void frmAjouterCartouche::comboTables_Click() {
  txtObjRef_->clear();
  const int slot = SlotChoisi();
  if (comboTables_->currentIndex() <= 0 || slot <= 1) return;
  FichierMesure f;
  if (!FileExists(CheminTableMesure()) || !f.Ouvrir()) return;
  if (f.LireEntete() > 1 && f.LireEnr(slot))
    txtObjRef_->setText(TexteObjRef(TableMesure(), s_.SeparateurDecimal));
}

void frmAjouterCartouche::cmdAppliquerTable() {
  if (comboListeObjectif_->currentText().isEmpty() || comboTables_->currentText().isEmpty()) {
    Dialogues().Message(QString::fromUtf8(kTitreChampsVides), QString::fromUtf8(kChampsVides),
                        Icone::Exclamation);
    tableAppliquee_ = false;
    return;
  }
  const int slot = SlotChoisi();
  if (chkAfficherTouteTable_->isChecked() &&
      !TableCorrespond(TableMesure(), s_.LargeurOrigine, s_.FocaleAPN)) {
    if (Dialogues().Question(QString::fromUtf8(kTitreLargeurFocale), QuestionLargeurFocale(),
                             Boutons::OuiNon, Reponse::Non, Icone::Exclamation) != Reponse::Oui) {
      tableAppliquee_ = false;
      return;
    }
    if (s_.FocaleAPN == TableMesure().Focale) cmdModifDefinition_->show();
  }
  {
    FichierMesure f;
    if (FileExists(CheminTableMesure()) && f.Ouvrir() && f.LireEntete() > 1 && slot >= 2)
      f.LireEnr(slot);
  }
  const EnrMesure t = TableMesure();
  const std::optional<float> m = MicronsParPixelTable(t, comboListeObjectif_->currentText());
  if (!m) {
    Dialogues().Message(QLatin1String(TitreProgramme),
                        TexteErreurFeuille(11, QStringLiteral("Division by zero"),
                                           QStringLiteral("cmdAppliquerTable_Click")),
                        Icone::Critique);
    return;
  }
  ComboObjectif_->setCurrentText(comboListeObjectif_->currentText());
  txtMic_->setText(QStringLiteral("100"));
  txtPix_->setText(PixPourCentMicrons(*m));
  s_.MemCartouche.MemMicro = s_.Microscope = t.Micro;
  s_.MemCartouche.MemApPhoto = s_.Modele = t.Modele;
  ApparenceChampsTable();
  tableAppliquee_ = true;
  cmdDessiner();
  s_.ExtrapolationFoc = false;
  fraChoixTable_->hide();
  txtMicroMan_->setText(t.Micro);
  txtApPhotoMan_->setText(t.Modele);
  ComboObjectifMan_->setCurrentText(comboListeObjectif_->currentText());
  ApparenceNoEtalon();
}

void frmAjouterCartouche::cmdAnnulerTable() {
  fraChoixTable_->hide();
  tableAppliquee_ = false;
  comboTables_->setCurrentIndex(comboTables_->count() > 0 ? 0 : -1);
  comboTables_Click();  // the blank row shows no reference objective
  txtChoixTableAuto_->setText(QString::fromUtf8(kAucuneCorrespondance));
  cmdDebloquer();
}

void frmAjouterCartouche::cmdDebloquer() {
  for (QWidget* w : {static_cast<QWidget*>(ComboObjectif_), static_cast<QWidget*>(txtPix_),
                     static_cast<QWidget*>(txtMic_)}) {
    w->setEnabled(true);
    Peindre(w, kJaunePale);
  }
  ComboObjectif_->setCurrentText(QString());
  txtPix_->clear();
  txtMic_->clear();
  MemoireCartouche& m = s_.MemCartouche;
  for (QString* mem : {&m.MemApPhoto, &m.MemMicro, &m.MemObjectif, &m.MemMic, &m.MemPix})
    mem->clear();
  s_.ExtrapolationFoc = false;
  tableAppliquee_ = false;
  cmdModifDefinition_->hide();
}

void frmAjouterCartouche::cmdSansEtalon() {
  fraEchelle_->hide();
  fraChoixTable_->hide();
  cmdEtalonner_->show();
  fraMicroPhoto_->show();
  ComboObjectif_->setCurrentText(QString());
  txtPix_->clear();
  txtMic_->clear();
  MemoireCartouche& m = s_.MemCartouche;
  for (QString* mem : {&m.MemObjectif, &m.MemPix, &m.MemMic}) mem->clear();
  s_.MicronsParPixel = 0;
  cartoucheValide_ = true;
  tableAppliquee_ = false;
  s_.ExtrapolationFoc = false;
  cmdModifDefinition_->hide();
  for (QWidget* w : {static_cast<QWidget*>(ComboObjectif_), static_cast<QWidget*>(txtPix_),
                     static_cast<QWidget*>(txtMic_), static_cast<QWidget*>(ComboObjectifMan_),
                     static_cast<QWidget*>(txtMicroMan_)})
    Peindre(w, kJaunePale);
  optUnite_[0]->setChecked(true);
  OptUniteObj_[0]->setChecked(true);
  ComboObjectifMan_->setCurrentText(QString());
  txtMicroMan_->clear();
}

void frmAjouterCartouche::cmdRecupMetaEchelle() {
  auto verrouiller = [this](QWidget* w) {
    w->setEnabled(false);
    Peindre(w, kVertPale);
  };
  if (!s_.Microscope.isEmpty()) s_.MemCartouche.MemMicro = s_.Microscope;
  if (!s_.Modele.isEmpty()) s_.MemCartouche.MemApPhoto = s_.Modele;
  if (!s_.Objectif.isEmpty()) {
    ComboObjectif_->setCurrentText(s_.Objectif);
    verrouiller(ComboObjectif_);
  }
  if (!s_.EchelleMic.isEmpty()) {
    txtMic_->setText(s_.EchelleMic);
    txtLongueur_->setText(s_.EchelleMic);
    verrouiller(txtMic_);
    verrouiller(txtLongueur_);
  }
  if (!s_.EchellePix.isEmpty()) {
    txtPix_->setText(s_.EchellePix);
    verrouiller(txtPix_);
  }
  if (s_.Objectif.isEmpty() || s_.EchelleMic.isEmpty() || s_.EchellePix.isEmpty()) cmdDebloquer();
}

void frmAjouterCartouche::cmdModifDefinition() {
  const EnrMesure t = TableMesure();
  const RapportDefinition r = CalculerRapportDefinition(
      s_.PortraitOrigine, s_.ImageTournee, s_.LargeurOrigine, s_.HauteurOrigine, t.LargPix);
  if (Dialogues().Question(QStringLiteral(" Modification de l'échelle"),
                           QuestionModifDefinition(r.largeur, t.LargPix), Boutons::OuiNon,
                           Reponse::Non, Icone::Question) != Reponse::Oui) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Annulation ..."),
                        Icone::Aucune);
    return;
  }
  double pix = 0;
  if (!LireNombre(txtPix_->text(), pix)) return;
  // Yes does nothing for a table of the same width or of another focal length.
  const std::optional<double> corrige = PixCorrige(pix, r, t.LargPix, s_.FocaleAPN, t.Focale);
  if (!corrige) return;
  const QString mic = txtMic_->text();
  const QString objectif = ComboObjectif_->currentText();
  cmdDebloquer();
  txtPix_->setText(TexteReel(*corrige, s_.SeparateurDecimal));
  txtMic_->setText(mic);
  ComboObjectif_->setCurrentText(objectif);
  for (QWidget* w : {static_cast<QWidget*>(ComboObjectif_), static_cast<QWidget*>(txtPix_),
                     static_cast<QWidget*>(txtMic_)})
    Peindre(w, kRougePale);
  cmdDessiner();
  cmdModifDefinition_->hide();
}

void frmAjouterCartouche::RemplirListeTables(QComboBox* liste, QLineEdit* boite, int choix) {
  ListeCombo l(liste);
  ExtraireChoix(l, choix);
  // Only the blank first entry: no table to take a name from.
  if (liste->count() < 2) {
    Dialogues().Message(QLatin1String(TitreProgramme),
                        QStringLiteral("Aucune table en mémoire ..."), Icone::Information);
    return;
  }
  liste->insertItem(0, QString::fromUtf8(kChoisirAnnuler));
  liste->setCurrentIndex(0);
  boite->hide();
  liste->show();
}

void frmAjouterCartouche::ChoisirDansListe(QComboBox* liste, QLineEdit* boite) {
  const QString choix = liste->currentText();
  if (choix != QString::fromUtf8(kChoisirAnnuler)) {
    boite->setText(choix);
    Peindre(boite, kVertPale);
  }
  liste->hide();
  boite->show();
}

void frmAjouterCartouche::cmdListeApPhoto() {
  RemplirListeTables(comboModele_, txtApPhotoMan_, ChoixModele);
}

void frmAjouterCartouche::cmdListeMicro() {
  RemplirListeTables(comboMicro_, txtMicroMan_, ChoixMicro);
}

void frmAjouterCartouche::comboModele_Click() { ChoisirDansListe(comboModele_, txtApPhotoMan_); }

void frmAjouterCartouche::comboMicro_Click() { ChoisirDansListe(comboMicro_, txtMicroMan_); }

bool frmAjouterCartouche::eventFilter(QObject* objet, QEvent* e) {
  if (e->type() == QEvent::KeyPress) {
    const QString touche = static_cast<QKeyEvent*>(e)->text();
    const QString& sep = s_.SeparateurDecimal;
    auto* saisie = qobject_cast<QLineEdit*>(objet);
    // Either decimal key types the locale's sign; nothing else is filtered.
    if (saisie && (touche == u"." || touche == u",") && touche != sep &&
        (sep == u"." || sep == u",")) {
      saisie->insert(sep);
      return true;
    }
  }
  return QWidget::eventFilter(objet, e);
}

void frmAjouterCartouche::InitVarEchelle() {
  if (!EchelleVisible() || !cartoucheValide_) return;
  EntreesEchelle e;
  LireNombre(txtMic_->text(), e.mic);
  LireNombre(txtPix_->text(), e.pix);
  LireNombre(txtLongueur_->text(), e.longueur);
  e.largeurOrigine = s_.LargeurOrigine;
  e.largeurRecadrage = s_.LargeurRecadrage;
  e.hauteurRecadrage = s_.HauteurRecadrage;
  e.largeurFormatee = s_.LargeurFormatee;
  const ResultatEchelle r = CalculerEchelle(e);
  s_.MicronsParPixel = r.micronsParPixel;
  echellePixels_ = r.echellePixels;
  if (!r.valide) {
    Dialogues().Message(QLatin1String(TitreProgramme), QString::fromUtf8(kEchelleTropLongue),
                        Icone::Exclamation);
    cartoucheValide_ = false;
  }
}

// --- Drawing

ValeursCartouche frmAjouterCartouche::ValeursDessin() const {
  ValeursCartouche v;
  v.largeur = canevas_.largeurCartouche;
  v.hauteur = forme_.hauteurCartouche;
  v.fond = couleurCartouche_;
  v.ombre = ombre_;
  v.cartoucheHB = s_.CartoucheHB;
  v.separateur = s_.SeparateurDecimal;
  v.echelleVisible = EchelleVisible();
  v.cartoucheValide = cartoucheValide_;
  v.echellePixels = echellePixels_;
  v.couleurEchelle = couleurEchelle_;
  v.optUnite = optUnite_[1]->isChecked() ? 1 : 0;
  LireNombre(txtLongueur_->text(), v.longueur);
  v.extrapolationFoc = s_.ExtrapolationFoc;
  v.objectif = ComboObjectif_->currentText();
  v.reductionAffichee = ReductionAffichee(s_.LargeurRecadrage, s_.Largeur, s_.LargeurOrigine,
                                          s_.ImageDejaFormatee, s_.ReductionImage);
  v.microscope = s_.Microscope;
  v.modele = s_.Modele;
  v.microMan = txtMicroMan_->text();
  v.objectifMan = ComboObjectifMan_->currentText();
  v.apPhotoMan = txtApPhotoMan_->text();
  v.optUniteObj = OptUniteObj_[1]->isChecked() ? 1 : 0;
  for (int i = 0; i < 9; ++i) v.choixChamp[i] = chkChoixChamp_[i]->isChecked();
  v.couleurTexte = couleurTexte_;
  v.policeTitre = policeTitre_;
  v.policeSousTitre = policeSousTitre_;
  v.largeurFormatee = s_.LargeurFormatee;
  v.apnLargCourant = s_.ApnLargCourant;
  v.titre = txtCommentaire_->text().trimmed();
  v.eclairage = ComboEclairage_->currentText();
  v.montage = comboMontage_->currentText();
  v.coloration = comboColoration_->currentText();
  v.provenance = comboProvenance_->currentText();
  v.auteur = txtNomAuteur_->text();
  v.dateTexte = comboJour_->currentText() + u'/' + comboMois_->currentText() + u'/' +
                comboAnnee_->currentText();
  return v;
}

void frmAjouterCartouche::AfficherCartouche() {
  picCartouche_->setFixedSize(cartouche_.isNull() ? QSize(0, 0) : cartouche_.size());
  picCartouche_->setPixmap(QPixmap::fromImage(cartouche_));
}

void frmAjouterCartouche::cmdDessiner() {
  cartoucheValide_ = true;
  fraPolices_->hide();
  fraChoixChamp_->hide();
  fraListe_->hide();
  fraChoixTable_->hide();
  ChampsCartouche c = LireChamps();
  const ResultatControle r = ControleErreur(c, EchelleVisible(), s_.SeparateurDecimal);
  EcrireChamps(c);
  cartoucheValide_ = r.valide;
  InitVarEchelle();
  AppliquerCouleurAuto();
  // An image larger than the format has no canvas: nothing is drawn.
  if (canevas_.largeurCartouche > 0 && forme_.hauteurCartouche > 0)
    DessinerCartouche(cartouche_, ValeursDessin());
  AfficherCartouche();
  cmdSuite_->setEnabled(cartoucheValide_);
  cmdDessiner_->setText(QStringLiteral("(re)Dessiner le cartouche"));
}

// --- Final picture

ParamsImageFinale frmAjouterCartouche::ParamsFinale() const {
  ParamsImageFinale p;
  p.largeurFond = canevas_.largeurFond;
  p.hauteurFond = forme_.hauteurFond;
  p.hauteurCartouche = forme_.hauteurCartouche;
  p.cartoucheHB = s_.CartoucheHB;
  p.cadrageFormate = s_.CadrageFormate;
  for (int i = 0; i < 3; ++i) {
    if (optAlign_[i]->isChecked()) p.optAlign = i;
    if (optTransparence_[i]->isChecked()) p.optTransparence = i;
  }
  return p;
}

void frmAjouterCartouche::AppliquerCouleurAuto() {
  if (!chkCouleurAuto_->isChecked() || s_.CartoucheHB != u"0") return;
  const ParamsImageFinale p = ParamsFinale();
  QImage image;
  if (!ai_.Convert_ImageToPicture(s_.ImageFormatee, image)) return;
  const double sous = LuminanceMoyenne(image, ZoneSousCartouche(p, image.width(), image.height()));
  if (sous < 0) return;
  // What lies under the text: the cartouche's background over the picture,
  // as opaque as the transparency chosen.
  const double a = AlphaTransparence(p.optTransparence) / 255.0;
  const double fond = 0.299 * couleurCartouche_.red() + 0.587 * couleurCartouche_.green() + 0.114 * couleurCartouche_.blue();
  DefinirCouleurTexte(DepuisBgr(CouleurContrastee(a * fond + (1 - a) * sous)));
}

bool frmAjouterCartouche::ConstruireImageFinal() {
  const ParamsImageFinale p = ParamsFinale();
  QImage fond(p.largeurFond, p.hauteurFond, QImage::Format_RGB32);
  fond.fill(couleurFond_);
  const QString commentaireAvant = s_.CommentaireImage;

  ValeursBloc b;
  auto champ = [](const QString& t) { return SansChampInutilise(t).trimmed(); };
  b.titre = champ(txtCommentaire_->text());
  b.auteur = champ(txtNomAuteur_->text());
  b.dateImage = MaintenantTexte();
  b.jourObservation = comboJour_->currentText();
  b.moisObservation = comboMois_->currentText();
  b.anneeObservation = comboAnnee_->currentText();
  b.apPhotoMan = champ(txtApPhotoMan_->text());
  b.echelleVisible = EchelleVisible();
  if (!b.echelleVisible) s_.Modele = b.apPhotoMan;
  b.modele = s_.Modele;
  b.focaleAPN = s_.FocaleAPN;
  b.digitalZoom = s_.DigitalZoom;
  b.eclairage = champ(ComboEclairage_->currentText());
  b.provenance = champ(comboProvenance_->currentText());
  b.preparation = champ(comboMontage_->currentText());
  b.coloration = champ(comboColoration_->currentText());
  b.largeurOrigineMeta = s_.LargeurOrigineMeta;
  b.largeurOrigine = s_.LargeurOrigine;
  b.largeurRecadrage = s_.LargeurRecadrage;
  b.largeur = s_.Largeur;
  b.reduction = CalculerReduction(s_.LargeurRecadrage, s_.LargeurOrigine, s_.Largeur,
                                  s_.ImageDejaFormatee, s_.ReductionImage);
  if (b.echelleVisible) {
    b.txtPix = txtPix_->text();
    b.txtMic = txtMic_->text();
  }
  b.microscope = s_.Microscope;
  b.objectif = ComboObjectif_->currentText();
  b.longueur = txtLongueur_->text();
  b.echellePixels = echellePixels_;
  b.extrapolationFoc = s_.ExtrapolationFoc;
  b.optUnite = optUnite_[1]->isChecked() ? 1 : 0;
  b.tableAppliquee = tableAppliquee_;
  b.microMan = champ(txtMicroMan_->text());
  b.objectifMan = ComboObjectifMan_->currentText();
  b.optUniteObj = OptUniteObj_[1]->isChecked() ? 1 : 0;
  b.imageDejaFormatee = s_.ImageDejaFormatee;
  b.traitNiveaux = chkTraitNum_[0]->isChecked();
  b.traitPoussieres = chkTraitNum_[1]->isChecked();
  b.traitBruit = chkTraitNum_[2]->isChecked();
  b.traitDeconvolution = chkTraitNum_[3]->isChecked();
  b.regne = s_.Regne;
  b.embranchement = s_.Embranchement;
  b.classe = s_.Classe;
  b.ordre = s_.Ordre;
  b.famille = s_.Famille;
  b.genre = s_.Genre;
  b.espece = s_.Espece;
  b.motClef = s_.MotClef;
  b.commentaireImage = commentaireAvant;
  b.exifTexte = s_.ExifTexte;
  b.iptcTexte = s_.IptcTexte;
  b.separateurDecimal = s_.SeparateurDecimal;

  s_.TitreImage = b.titre;
  s_.NomAuteurImage = b.auteur;
  s_.Eclairage = b.eclairage;
  s_.Provenance = b.provenance;
  s_.Coloration = b.coloration;
  s_.Preparation = b.preparation;
  s_.DateObservation = b.jourObservation + u'/' + b.moisObservation + u'/' + b.anneeObservation;
  s_.TraitNiveaux = b.traitNiveaux;
  s_.TraitPoussieres = b.traitPoussieres;
  s_.TraitBruit = b.traitBruit;
  s_.TraitDeconvolution = b.traitDeconvolution;
  if (b.echelleVisible) {
    s_.UniteEtalon = b.optUnite == 0 ? QStringLiteral("um") : QStringLiteral("mm");
    s_.Objectif = b.objectif;
    s_.EchelleMic = b.longueur;
    s_.EchellePix = TexteReel(echellePixels_, s_.SeparateurDecimal);
  }
  if (!tableAppliquee_) s_.UniteObj = b.optUniteObj == 0 ? QStringLiteral("x") : QStringLiteral("mm");
  const QString texte = EcrireBlocMeta(b);

  Bitmap sortie;
  QStringList messages;
  int largeurF = s_.LargeurFormatee, hauteurF = s_.HauteurFormatee;
  const bool ok = tg::ConstruireImageFinal(ai_, s_.ImageFormatee, largeurF, hauteurF, fond,
                                           cartouche_, couleurCartouche_, p, sortie, messages);
  s_.LargeurFormatee = largeurF;
  s_.HauteurFormatee = hauteurF;
  for (const QString& m : messages)
    Dialogues().Message(QLatin1String(TitreProgramme), m, Icone::Critique);
  if (ok) {
    s_.ImageCourante = std::move(sortie);
    s_.Largeur = ai_.Info_Width(s_.ImageCourante);
    s_.Hauteur = ai_.Info_Height(s_.ImageCourante);
    s_.Cadrage = s_.Hauteur ? float(s_.Largeur) / float(s_.Hauteur) : 0;
    s_.CommentaireImage = texte;
    s_.ImageFinale = true;
  }
  echellePixels_ = 0;
  return ok;
}

void frmAjouterCartouche::cmdSuite() {
  cmdDessiner();
  ConstruireImageFinal();
  MemoireCartouche m;
  // "Complète" is stored as 0.
  m.MemTransparence = optTransparence_[1]->isChecked() ? 1 : 0;
  for (int i = 0; i < 3; ++i)
    if (optAlign_[i]->isChecked()) m.MemAlign = int16_t(i);
  m.MemTitre = txtCommentaire_->text();
  m.MemAuteur = txtNomAuteur_->text();
  m.MemProvenance = comboProvenance_->currentText();
  m.MemColoration = comboColoration_->currentText();
  m.MemMontage = comboMontage_->currentText();
  m.MemEclairage = ComboEclairage_->currentText();
  for (int i = 0; i < 4; ++i) m.MemTraitNum[i] = chkTraitNum_[i]->isChecked();
  m.MemMicro = s_.Microscope;
  m.MemApPhoto = s_.Modele;
  m.MemObjectif = ComboObjectif_->currentText();
  m.MemPix = txtPix_->text();
  m.MemMic = txtMic_->text();
  double longueur = 0;
  LireNombre(txtLongueur_->text(), longueur);
  m.MemLongueur = int32_t(longueur);
  m.MemCouleurTexte = VersBgr(couleurTexte_);
  m.MemCouleurEchelle = VersBgr(couleurEchelle_);
  m.MemCouleurCartouche = VersBgr(couleurCartouche_);
  m.MemCouleurFond = VersBgr(couleurFond_);
  m.MemEchelleVisible = EchelleVisible();
  m.MemChoixTableVisible = !fraChoixTable_->isHidden();
  m.MemPolicesVisible = !fraPolices_->isHidden();
  m.MemUniteObj = OptUniteObj_[1]->isChecked() ? 1 : 0;
  m.MemOmbrage = chkOmbrage_->isChecked();
  EcrireMemCartouche(s_, m);
  // What the no-scale block shows at the next visit; an unused field is blank.
  s_.MicroscopeMeta = SansChampInutilise(txtMicroMan_->text());
  s_.ApPhotoMeta = SansChampInutilise(txtApPhotoMan_->text());
  s_.ObjectifMeta = ComboObjectifMan_->currentText();

  // New entries of the four choice lists.
  QComboBox* combos[4] = {ComboEclairage_, comboProvenance_, comboMontage_, comboColoration_};
  const ListeChoix listes[4] = {ListeChoix::Eclairage, ListeChoix::Provenance, ListeChoix::Montage,
                                ListeChoix::Coloration};
  for (int i = 0; i < 4; ++i) {
    ListeCombo l(combos[i]);
    AjouterSiNouveau(chkListe_[i]->isChecked(), l, CheminListe(listes[i]));
  }

  s_.Etape = 3;
  if (principal_) {
    if (auto* exif = principal_->findChild<QPlainTextEdit*>(QStringLiteral("txtExif")))
      exif->setPlainText(s_.CommentaireImage);
    principal_->AfficherImage(s_.ImageCourante);
    principal_->LibelleBoutonMeta(QStringLiteral("Voir nouvelles Méta-Données"));
    principal_->AppliquerEtape();
    principal_->AfficherInfosImage();
    principal_->show();
  }
  close();
}

void frmAjouterCartouche::cmdLongueurAuto() {
  EntreesEchelle e;
  LireNombre(txtMic_->text(), e.mic);
  LireNombre(txtPix_->text(), e.pix);
  e.longueur = 1;
  e.largeurOrigine = s_.LargeurOrigine;
  e.largeurRecadrage = s_.LargeurRecadrage;
  e.hauteurRecadrage = s_.HauteurRecadrage;
  e.largeurFormatee = s_.LargeurFormatee;
  if (!(e.mic > 0) || !(e.pix > 0) || LargeurRefEchelle(e.largeurOrigine, e.largeurRecadrage, e.hauteurRecadrage) <= 0) {
    Dialogues().Message(QLatin1String(TitreProgramme),
                        QStringLiteral("Indiquez d'abord l'échelle (pixels et microns) !"), Icone::Exclamation);
    return;
  }
  const double l = LongueurAuto(CalculerEchelle(e).micronsParPixel, s_.LargeurFormatee);
  txtLongueur_->setText(TexteReel(l, s_.SeparateurDecimal));
}

QString frmAjouterCartouche::LegendeActuelle() const { return LegendeEchelle(ValeursDessin()); }

void frmAjouterCartouche::cmdExtrapolFoc() {
  s_.DepuisCartouche = true;
  cmdAnnulerTable();
  if (extrapolation_) extrapolation_->close();
  extrapolation_ = frmExtrapolFocale::Afficher(s_, this);
}

void frmAjouterCartouche::closeEvent(QCloseEvent* e) {
  // The keyword dialog, the pipette and the extrapolation go with the form.
  if (motClef_) motClef_->close();
  if (pipette_) pipette_->close();
  if (extrapolation_) extrapolation_->close();
  s_.DepuisCartouche = false;
  if (principal_) principal_->show();
  e->accept();
}

frmAjouterCartouche* frmAjouterCartouche::Afficher(frmFichierPhoto& principal) {
  auto* f = new frmAjouterCartouche(principal.Session(), principal.Imagerie(), &principal, &principal);
  f->setAttribute(Qt::WA_DeleteOnClose);
  f->setWindowModality(Qt::WindowModal);
  f->Form_Load();
  principal.FenetreOuverte(f);
  AjusterAEcran(f);
  f->show();
  return f;
}

void frmAjouterCartouche::Reconstruire(frmFichierPhoto& principal) {
  frmAjouterCartouche f(principal.Session(), principal.Imagerie(), &principal);
  f.Form_Load();
  f.cmdSuite();
}

}  // namespace tg
