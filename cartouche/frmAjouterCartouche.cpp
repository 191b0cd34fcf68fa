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

#include "cartouche/Echelle.h"
#include "cartouche/frmMotClef.h"
#include "measure/frmExtrapolFocale.h"
#include "core/frmFichierPhoto.h"
#include "platform/Dialogues.h"
#include "platform/Ecran.h"

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

const char* const kLegendesLstDefaut[3] = {"Provenance", "Préparation", "Coloration"};

// A two-line state as a line edit shows it: the line break as two blanks.
QString UneLigne(const char* texte) { return QString::fromUtf8(texte).replace(QStringLiteral("\r\n"), QStringLiteral("  ")); }

}  // namespace

frmAjouterCartouche::frmAjouterCartouche(SessionRecord& s, cAdvancedImagery& ai,
                                         frmFichierPhoto* principal, QWidget* parent)
    : QWidget(parent, Qt::Window), s_(s), ai_(ai), principal_(principal), m_(s, ai) {
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
  txtCommentaire_->setMaxLength(kLongueurMaxChamp);
  ComboEclairage_ = ligneCombo("ComboEclairage", QStringLiteral("Eclairage : ***"));
  txtNomAuteur_ = ligneEdit("txtNomAuteur", QStringLiteral("Auteur :  ***"));
  txtNomAuteur_->setMaxLength(kLongueurMaxChamp);
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
  const char* bulles[4] = {"Ajustement de la balance des blancs, des niveaux,  contraste etc ...",
                           "Suppression des pousières du capteur (clônage ou filtre)", "",
                           "Helicon Focus, CombineZ, etc ..."};
  for (int i = 0; i < 4; ++i) {
    chkTraitNum_[i] = Nomme(new QCheckBox(QString::fromUtf8(kTraitements[i]), this),
                            QStringLiteral("chkTraitNum%1").arg(i));
    chkTraitNum_[i]->setToolTip(QString::fromUtf8(bulles[i]));
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
  connect(cmdOuvrirFraTable_, &QPushButton::clicked, this, [this] { Agir(&ModeleCartouche::cmdOuvrirFraChoixTable); });
  fraEchelle_->setToolTip(QStringLiteral("Etalonnage, en réf. à votre photo d'origine (avant redimensionnement)"));
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
  connect(cTexte, &QPushButton::clicked, this,
          [this] { ChoisirCouleur(m_.CouleurTexte(), &ModeleCartouche::DefinirCouleurTexte); });
  connect(cEchelle, &QPushButton::clicked, this,
          [this] { ChoisirCouleur(m_.CouleurEchelle(), &ModeleCartouche::DefinirCouleurEchelle); });
  connect(cCartouche, &QPushButton::clicked, this,
          [this] { ChoisirCouleur(m_.CouleurCartouche(), &ModeleCartouche::DefinirCouleurCartouche); });
  connect(cmdCouleurFond_, &QPushButton::clicked, this,
          [this] { ChoisirCouleur(m_.CouleurFond(), &ModeleCartouche::DefinirCouleurFond); });
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
  auto ouvreur = [&](const char* nom, const QString& texte, Controle cadre) {
    auto* b = Nomme(new QPushButton(texte, this), QLatin1String(nom));
    ouvrir->addWidget(b);
    connect(b, &QPushButton::clicked, this, [this, cadre] {
      m_.Montrer(cadre, true);
      Rafraichir();
    });
    return b;
  };
  ouvreur("cmdOuvrirFraPolice", QStringLiteral("Couleurs et polices"), Controle::fraPolices);
  cmdOuvrirFraChoixChamp_ =
      ouvreur("cmdOuvrirFraChoixChamp", QStringLiteral("Choix des champs"), Controle::fraChoixChamp);
  ouvreur("cmdOuvrirFraListe", QStringLiteral("Listes"), Controle::fraListe);
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

  // The user's edits go to the model as they are made; the model's own
  // changes come back through Rafraichir, whose echoes are not handed back.
  auto ligneVers = [this](QLineEdit* e, QString ModeleCartouche::*champ) {
    connect(e, &QLineEdit::textChanged, this, [this, champ](const QString& t) {
      if (!miseAJour_) m_.*champ = t;
    });
  };
  ligneVers(txtCommentaire_, &ModeleCartouche::txtCommentaire);
  ligneVers(txtNomAuteur_, &ModeleCartouche::txtNomAuteur);
  ligneVers(txtMicroMan_, &ModeleCartouche::txtMicroMan);
  ligneVers(txtApPhotoMan_, &ModeleCartouche::txtApPhotoMan);
  ligneVers(txtPix_, &ModeleCartouche::txtPix);
  ligneVers(txtMic_, &ModeleCartouche::txtMic);
  ligneVers(txtLongueur_, &ModeleCartouche::txtLongueur);
  auto listeVers = [this](QComboBox* c, ListeFormulaire ModeleCartouche::*liste) {
    if (c->isEditable())
      connect(c, &QComboBox::currentTextChanged, this, [this, liste](const QString& t) {
        if (!miseAJour_) (m_.*liste).DefinirTexte(t);
      });
    else
      connect(c, &QComboBox::currentIndexChanged, this, [this, liste](int i) {
        if (!miseAJour_) (m_.*liste).Selectionner(i);
      });
  };
  listeVers(ComboEclairage_, &ModeleCartouche::ComboEclairage);
  listeVers(comboProvenance_, &ModeleCartouche::comboProvenance);
  listeVers(comboMontage_, &ModeleCartouche::comboMontage);
  listeVers(comboColoration_, &ModeleCartouche::comboColoration);
  listeVers(ComboObjectif_, &ModeleCartouche::ComboObjectif);
  listeVers(ComboObjectifMan_, &ModeleCartouche::ComboObjectifMan);
  listeVers(comboListeObjectif_, &ModeleCartouche::comboListeObjectif);
  listeVers(comboJour_, &ModeleCartouche::comboJour);
  listeVers(comboMois_, &ModeleCartouche::comboMois);
  listeVers(comboAnnee_, &ModeleCartouche::comboAnnee);
  listeVers(comboTables_, &ModeleCartouche::comboTables);
  listeVers(comboMicro_, &ModeleCartouche::comboMicro);
  listeVers(comboModele_, &ModeleCartouche::comboModele);
  auto caseVers = [this](QCheckBox* c, bool& valeur) {
    connect(c, &QCheckBox::toggled, this, [this, &valeur](bool coche) {
      if (!miseAJour_) valeur = coche;
    });
  };
  for (size_t i = 0; i < 9; ++i) caseVers(chkChoixChamp_[i], m_.chkChoixChamp[i]);
  for (size_t i = 0; i < 4; ++i) caseVers(chkTraitNum_[i], m_.chkTraitNum[i]);
  for (size_t i = 0; i < 4; ++i) caseVers(chkListe_[i], m_.chkListe[i]);
  for (size_t i = 0; i < 3; ++i) caseVers(chkLstDefaut_[i], m_.chkLstDefaut[i]);
  caseVers(chkOmbrage_, m_.chkOmbrage);
  caseVers(chkAfficherTouteTable_, m_.chkAfficherTouteTable);
  caseVers(chkCouleurAuto_, m_.chkCouleurAuto);
  auto optionVers = [this](QRadioButton* r, int& valeur, int indice) {
    connect(r, &QRadioButton::toggled, this, [this, &valeur, indice](bool coche) {
      if (!miseAJour_ && coche) valeur = indice;
    });
  };
  for (int i = 0; i < 2; ++i) {
    optionVers(OptUniteObj_[i], m_.optUniteObj, i);
    optionVers(optUnite_[i], m_.optUnite, i);
  }
  for (int i = 0; i < 3; ++i) {
    optionVers(optTransparence_[i], m_.optTransparence, i);
    optionVers(optAlign_[i], m_.optAlign, i);
  }
  // Another window may show or hide these (the keyword dialog its
  // indicator, the extrapolation the table frame).
  const std::pair<QWidget*, Controle> cadres[] = {
      {fraEchelle_, Controle::fraEchelle}, {fraChoixTable_, Controle::fraChoixTable},
      {fraMicroPhoto_, Controle::fraMicroPhoto}, {fraPolices_, Controle::fraPolices},
      {fraChoixChamp_, Controle::fraChoixChamp}, {fraListe_, Controle::fraListe},
      {imgMotClef_, Controle::imgMotClef}};
  for (const auto& [w, c] : cadres) {
    cadres_.insert(w, c);
    w->installEventFilter(this);
  }
  Rafraichir();
}

void frmAjouterCartouche::Peindre(QWidget* w, int bgr) {
  // Dark text on the pale colours, a locked (disabled) field's included.
  w->setStyleSheet(QStringLiteral("background-color: %1; color: black;").arg(DepuisBgr(bgr).name()));
}

QWidget* frmAjouterCartouche::ControleDe(Controle c) const {
  switch (c) {
    case Controle::fraEchelle: return fraEchelle_;
    case Controle::fraChoixTable: return fraChoixTable_;
    case Controle::fraMicroPhoto: return fraMicroPhoto_;
    case Controle::fraPolices: return fraPolices_;
    case Controle::fraChoixChamp: return fraChoixChamp_;
    case Controle::fraListe: return fraListe_;
    case Controle::cmdEtalonner: return cmdEtalonner_;
    case Controle::cmdRecupMetaEchelle: return cmdRecupMetaEchelle_;
    case Controle::cmdModifDefinition: return cmdModifDefinition_;
    case Controle::cmdExtrapolFoc: return cmdExtrapolFoc_;
    case Controle::cmdSuite: return cmdSuite_;
    case Controle::cmdOuvrirFraChoixChamp: return cmdOuvrirFraChoixChamp_;
    case Controle::cmdListeMicro: return cmdListeMicro_;
    case Controle::cmdListeApPhoto: return cmdListeApPhoto_;
    case Controle::cmdCouleurFond: return cmdCouleurFond_;
    case Controle::imgMotClef: return imgMotClef_;
    case Controle::chkOmbrage: return chkOmbrage_;
    case Controle::chkCouleurAuto: return chkCouleurAuto_;
    case Controle::comboMicro: return comboMicro_;
    case Controle::comboModele: return comboModele_;
    case Controle::comboJour: return comboJour_;
    case Controle::comboMois: return comboMois_;
    case Controle::comboAnnee: return comboAnnee_;
    case Controle::txtCommentaire: return txtCommentaire_;
    case Controle::ComboEclairage: return ComboEclairage_;
    case Controle::txtNomAuteur: return txtNomAuteur_;
    case Controle::comboProvenance: return comboProvenance_;
    case Controle::comboMontage: return comboMontage_;
    case Controle::comboColoration: return comboColoration_;
    case Controle::txtMicroMan: return txtMicroMan_;
    case Controle::txtApPhotoMan: return txtApPhotoMan_;
    case Controle::ComboObjectifMan: return ComboObjectifMan_;
    case Controle::ComboObjectif: return ComboObjectif_;
    case Controle::txtPix: return txtPix_;
    case Controle::txtMic: return txtMic_;
    case Controle::txtLongueur: return txtLongueur_;
    default: return nullptr;  // the option groups, shown by their buttons
  }
}

namespace {

void MontrerTexte(QLineEdit* e, const QString& texte) {
  if (e->text() != texte) e->setText(texte);
}

void MontrerListe(QComboBox* c, const ListeFormulaire& l) {
  QStringList items;
  for (int i = 0; i < c->count(); ++i) items << c->itemText(i);
  if (items != l.Items()) {
    c->clear();
    c->addItems(l.Items());
  }
  if (l.Editable()) {
    if (c->currentText() != l.Texte()) c->setEditText(l.Texte());
  } else if (c->currentIndex() != l.Selection()) {
    c->setCurrentIndex(l.Selection());
  }
}

void MontrerEtat(QWidget* w, bool visible, bool actif) {
  if (w->isHidden() == visible) w->setVisible(visible);
  if (w->isEnabled() != actif) w->setEnabled(actif);
}

}  // namespace

void frmAjouterCartouche::Rafraichir() {
  miseAJour_ = true;
  MontrerTexte(txtCommentaire_, m_.txtCommentaire);
  MontrerTexte(txtNomAuteur_, m_.txtNomAuteur);
  MontrerTexte(txtMicroMan_, m_.txtMicroMan);
  MontrerTexte(txtApPhotoMan_, m_.txtApPhotoMan);
  MontrerTexte(txtPix_, m_.txtPix);
  MontrerTexte(txtMic_, m_.txtMic);
  MontrerTexte(txtLongueur_, m_.txtLongueur);
  MontrerTexte(txtModele_, m_.txtModele);
  MontrerTexte(txtFocale_, m_.txtFocale);
  MontrerTexte(txtLargeur_, m_.txtLargeur);
  MontrerTexte(txtObjRef_, m_.txtObjRef);
  MontrerTexte(txtChoixTableAuto_, m_.txtChoixTableAuto);
  lblDatePhoto_->setText(m_.lblDatePhoto);
  lblInfosCartouche_->setText(m_.lblInfosCartouche);
  cmdDessiner_->setText(m_.cmdDessinerTexte);
  const std::pair<QComboBox*, const ListeFormulaire*> listes[] = {
      {ComboEclairage_, &m_.ComboEclairage}, {comboProvenance_, &m_.comboProvenance},
      {comboMontage_, &m_.comboMontage},     {comboColoration_, &m_.comboColoration},
      {ComboObjectif_, &m_.ComboObjectif},   {ComboObjectifMan_, &m_.ComboObjectifMan},
      {comboListeObjectif_, &m_.comboListeObjectif}, {comboJour_, &m_.comboJour},
      {comboMois_, &m_.comboMois},           {comboAnnee_, &m_.comboAnnee},
      {comboTables_, &m_.comboTables},       {comboIndexTable_, &m_.comboIndexTable},
      {comboMicro_, &m_.comboMicro},         {comboModele_, &m_.comboModele}};
  for (const auto& [c, l] : listes) MontrerListe(c, *l);
  for (size_t i = 0; i < 9; ++i) chkChoixChamp_[i]->setChecked(m_.chkChoixChamp[i]);
  for (size_t i = 0; i < 4; ++i) chkTraitNum_[i]->setChecked(m_.chkTraitNum[i]);
  for (size_t i = 0; i < 4; ++i) chkListe_[i]->setChecked(m_.chkListe[i]);
  for (size_t i = 0; i < 3; ++i) chkLstDefaut_[i]->setChecked(m_.chkLstDefaut[i]);
  chkOmbrage_->setChecked(m_.chkOmbrage);
  chkAfficherTouteTable_->setChecked(m_.chkAfficherTouteTable);
  chkCouleurAuto_->setChecked(m_.chkCouleurAuto);
  OptUniteObj_[size_t(m_.optUniteObj)]->setChecked(true);
  optUnite_[size_t(m_.optUnite)]->setChecked(true);
  optTransparence_[size_t(m_.optTransparence)]->setChecked(true);
  optAlign_[size_t(m_.optAlign)]->setChecked(true);
  for (size_t i = 0; i < 3; ++i) {
    optTransparence_[i]->setEnabled(m_.Actif(Controle::optTransparence));
    optAlign_[i]->setEnabled(m_.Actif(Controle::optAlign));
  }

  for (int i = 0; i < kNombreControles; ++i) {
    const auto c = Controle(i);
    QWidget* w = ControleDe(c);
    if (!w) continue;
    MontrerEtat(w, m_.Visible(c), m_.Actif(c));
    if (m_.NumeroTeinte(c) != teintePeinte_[size_t(i)] && m_.Teinte(c) >= 0) Peindre(w, m_.Teinte(c));
    teintePeinte_[size_t(i)] = m_.NumeroTeinte(c);
  }

  // Colours and fonts.
  Peindre(shpTexte_, VersBgr(m_.CouleurTexte()));
  Peindre(shpEchelle_, VersBgr(m_.CouleurEchelle()));
  Peindre(shpCartouche_, VersBgr(m_.CouleurCartouche()));
  Peindre(shpFond_, VersBgr(m_.CouleurFond()));
  QPalette p = txtPoliceTitre_->palette();
  p.setColor(QPalette::Text, m_.CouleurTexte());
  p.setColor(QPalette::Base, m_.CouleurCartouche());
  for (QLineEdit* e : {txtPoliceTitre_, txtPoliceSousTitre_}) e->setPalette(p);
  txtPoliceTitre_->setFont(m_.PoliceTitre());
  MontrerTexte(txtPoliceTitre_, TexteFont(m_.PoliceTitre()));
  txtPoliceSousTitre_->setFont(m_.PoliceSousTitre());
  MontrerTexte(txtPoliceSousTitre_, TexteFont(m_.PoliceSousTitre()));

  const QImage& cartouche = m_.ImageCartouche();
  if (cartouche.cacheKey() != imageMontree_) {
    imageMontree_ = cartouche.cacheKey();
    picCartouche_->setFixedSize(cartouche.isNull() ? QSize(0, 0) : cartouche.size());
    if (cartouche.isNull())
      picCartouche_->clear();
    else
      picCartouche_->setPixmap(QPixmap::fromImage(cartouche));
  }
  miseAJour_ = false;
}

void frmAjouterCartouche::Agir(void (ModeleCartouche::*action)()) {
  (m_.*action)();
  Rafraichir();
}

void frmAjouterCartouche::Form_Load() { Agir(&ModeleCartouche::Form_Load); }
void frmAjouterCartouche::cmdDessiner() { Agir(&ModeleCartouche::cmdDessiner); }
void frmAjouterCartouche::cmdViderChamps() { Agir(&ModeleCartouche::cmdViderChamps); }
void frmAjouterCartouche::cmdTousChamps() { Agir(&ModeleCartouche::cmdTousChamps); }
void frmAjouterCartouche::chkOmbrage_Click() { Agir(&ModeleCartouche::chkOmbrage_Click); }
void frmAjouterCartouche::CouleurDefaut() { Agir(&ModeleCartouche::CouleurDefaut); }
void frmAjouterCartouche::cmdReduirefraChoixChamp() { Agir(&ModeleCartouche::cmdReduirefraChoixChamp); }
void frmAjouterCartouche::cmdReduireFraPolice() { Agir(&ModeleCartouche::cmdReduireFraPolice); }
void frmAjouterCartouche::cmdListeDefaut() { Agir(&ModeleCartouche::cmdListeDefaut); }
void frmAjouterCartouche::cmdListeApPhoto() { Agir(&ModeleCartouche::cmdListeApPhoto); }
void frmAjouterCartouche::cmdListeMicro() { Agir(&ModeleCartouche::cmdListeMicro); }
void frmAjouterCartouche::comboModele_Click() { Agir(&ModeleCartouche::comboModele_Click); }
void frmAjouterCartouche::comboMicro_Click() { Agir(&ModeleCartouche::comboMicro_Click); }
void frmAjouterCartouche::cmdEtalonner() { Agir(&ModeleCartouche::cmdEtalonner); }
void frmAjouterCartouche::fraChoixTable_Expand() { Agir(&ModeleCartouche::fraChoixTable_Expand); }
void frmAjouterCartouche::chkAfficherTouteTable_Click() { Agir(&ModeleCartouche::chkAfficherTouteTable_Click); }
void frmAjouterCartouche::cmdLongueurAuto() { Agir(&ModeleCartouche::cmdLongueurAuto); }
void frmAjouterCartouche::comboTables_Click() { Agir(&ModeleCartouche::comboTables_Click); }
void frmAjouterCartouche::cmdAppliquerTable() { Agir(&ModeleCartouche::cmdAppliquerTable); }
void frmAjouterCartouche::cmdAnnulerTable() { Agir(&ModeleCartouche::cmdAnnulerTable); }
void frmAjouterCartouche::cmdDebloquer() { Agir(&ModeleCartouche::cmdDebloquer); }
void frmAjouterCartouche::cmdSansEtalon() { Agir(&ModeleCartouche::cmdSansEtalon); }
void frmAjouterCartouche::cmdRecupMetaEchelle() { Agir(&ModeleCartouche::cmdRecupMetaEchelle); }
void frmAjouterCartouche::cmdModifDefinition() { Agir(&ModeleCartouche::cmdModifDefinition); }

void frmAjouterCartouche::chkChoixChamp_Click(int index) {
  m_.chkChoixChamp_Click(index);
  Rafraichir();
}

void frmAjouterCartouche::DefinirCouleurTexte(const QColor& c) {
  m_.DefinirCouleurTexte(c);
  Rafraichir();
}

void frmAjouterCartouche::DefinirCouleurEchelle(const QColor& c) {
  m_.DefinirCouleurEchelle(c);
  Rafraichir();
}

void frmAjouterCartouche::DefinirCouleurCartouche(const QColor& c) {
  m_.DefinirCouleurCartouche(c);
  Rafraichir();
}

void frmAjouterCartouche::DefinirCouleurFond(const QColor& c) {
  m_.DefinirCouleurFond(c);
  Rafraichir();
}

void frmAjouterCartouche::ChoisirCouleur(const QColor& initiale, void (ModeleCartouche::*poser)(const QColor&)) {
  const int c = Dialogues().Couleur(VersBgr(initiale));
  if (c < 0) return;
  (m_.*poser)(DepuisBgr(c));
  Rafraichir();
}

void frmAjouterCartouche::RecevoirCouleurPipette(int couleur, int, int, int) {
  DefinirCouleurFond(DepuisBgr(couleur));
}

void frmAjouterCartouche::cmdPipette() {
  if (!pipette_) pipette_ = new frmPipette(s_.ImageCourante, ai_, this);
  pipette_->show();
  pipette_->raise();
}

void frmAjouterCartouche::cmdPoliceTitre() {
  m_.ChoisirPolice(1);
  Rafraichir();
}

void frmAjouterCartouche::cmdPoliceSousTitre() {
  m_.ChoisirPolice(2);
  Rafraichir();
}

void frmAjouterCartouche::cmdMotClef() {
  // The dialog reads the session's keywords and shows or hides imgMotClef.
  if (!motClef_) motClef_ = new frmMotClef(s_, this);
  motClef_->show();
  motClef_->raise();
}

void frmAjouterCartouche::cmdExtrapolFoc() {
  Agir(&ModeleCartouche::cmdExtrapolFoc);
  if (extrapolation_) extrapolation_->close();
  QPointer<frmAjouterCartouche> moi(this);
  extrapolation_ = frmExtrapolFocale::Afficher(s_, this, [moi](int pixPour100) {
    if (!moi) return;
    moi->m_.RecevoirExtrapolation(pixPour100);
    moi->Rafraichir();
  });
}

bool frmAjouterCartouche::eventFilter(QObject* objet, QEvent* e) {
  if (e->type() == QEvent::KeyPress) {
    auto* saisie = qobject_cast<QLineEdit*>(objet);
    const QString signe = SigneDecimalTape(static_cast<QKeyEvent*>(e)->text(), s_.SeparateurDecimal);
    if (saisie && !signe.isEmpty()) {
      saisie->insert(signe);
      return true;
    }
  }
  if (!miseAJour_ && (e->type() == QEvent::ShowToParent || e->type() == QEvent::HideToParent)) {
    const auto c = cadres_.find(objet);
    if (c != cadres_.end()) m_.Montrer(*c, e->type() == QEvent::ShowToParent);
  }
  return QWidget::eventFilter(objet, e);
}

void frmAjouterCartouche::MontrerImageFinale(frmFichierPhoto& principal) {
  const SessionRecord& s = principal.Session();
  if (auto* exif = principal.findChild<QPlainTextEdit*>(QStringLiteral("txtExif")))
    exif->setPlainText(s.CommentaireImage);
  principal.AfficherImage(s.ImageCourante);
  principal.LibelleBoutonMeta(QStringLiteral("Voir nouvelles Méta-Données"));
  principal.AppliquerEtape();
  principal.AfficherInfosImage();
  principal.show();
}

void frmAjouterCartouche::cmdSuite() {
  m_.cmdSuite();
  Rafraichir();
  if (principal_) MontrerImageFinale(*principal_);
  close();
}

void frmAjouterCartouche::closeEvent(QCloseEvent* e) {
  // The keyword dialog, the pipette and the extrapolation go with the form.
  if (motClef_) motClef_->close();
  if (pipette_) pipette_->close();
  if (extrapolation_) extrapolation_->close();
  m_.Quitter();
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
  ModeleCartouche m(principal.Session(), principal.Imagerie());
  m.Form_Load();
  m.cmdSuite();
  m.Quitter();
  MontrerImageFinale(principal);
}

}  // namespace tg
