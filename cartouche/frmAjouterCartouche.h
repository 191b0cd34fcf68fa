#pragma once
// The cartouche form: texts, scale and options of the title block, its
// preview and the building of the final picture. Lives for one visit; only
// cmdSuite writes to the session.
#include <QColor>
#include <QFont>
#include <QImage>
#include <QPointer>
#include <QWidget>
#include <array>

#include "cartouche/FormCartouche.h"
#include "cartouche/RenduCartouche.h"
#include "cartouche/ImageFinale.h"
#include "core/SessionRecord.h"
#include "core/frmPipette.h"

class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace tg {

class cAdvancedImagery;
class frmFichierPhoto;
class frmMotClef;

class frmAjouterCartouche : public QWidget, public IReceveurPipette {
  Q_OBJECT

 public:
  // None is owned. `principal` may be null (no main window to update).
  frmAjouterCartouche(SessionRecord& s, cAdvancedImagery& ai, frmFichierPhoto* principal,
                      QWidget* parent = nullptr);
  ~frmAjouterCartouche() override;

  // Opens the form as the main window's "Cartouche" step does.
  static frmAjouterCartouche* Afficher(frmFichierPhoto& principal);
  // Rebuilds the final picture from ImageFormatee with the remembered form
  // (annotations dropped): loads a hidden form and presses cmdSuite.
  static void Reconstruire(frmFichierPhoto& principal);

  void Form_Load();
  void cmdDessiner();
  void cmdSuite();
  void cmdViderChamps();
  void cmdTousChamps();
  void chkChoixChamp_Click(int index);
  // The shadow strip under a 3:2 picture: set or removed, then drawn.
  void chkOmbrage_Click();
  void CouleurDefaut();
  void DefinirCouleurTexte(const QColor& c);
  void DefinirCouleurEchelle(const QColor& c);
  void DefinirCouleurCartouche(const QColor& c);
  void DefinirCouleurFond(const QColor& c);
  // The pipette's colour goes to the background sample and to picFond.
  void RecevoirCouleurPipette(int couleur, int rouge, int vert, int bleu) override;
  void cmdPipette();
  void cmdPoliceTitre();
  void cmdPoliceSousTitre();
  void cmdMotClef();
  void cmdReduirefraChoixChamp();
  void cmdReduireFraPolice();
  void cmdListeDefaut();
  // The lists of cameras and microscopes of the tables, in place of the text boxes.
  void cmdListeApPhoto();
  void cmdListeMicro();
  void comboModele_Click();
  void comboMicro_Click();

  // Scale.
  void cmdEtalonner();
  void fraChoixTable_Expand();
  void chkAfficherTouteTable_Click();
  // Opens frmExtrapolFocale for this form (DepuisCartouche).
  void cmdExtrapolFoc();
  // The bar length "auto" from the scale typed or applied.
  void cmdLongueurAuto();
  void comboTables_Click();
  void cmdAppliquerTable();
  void cmdAnnulerTable();
  void cmdDebloquer();
  void cmdSansEtalon();
  void cmdRecupMetaEchelle();
  void cmdModifDefinition();

  bool CartoucheValide() const { return cartoucheValide_; }
  bool TableAppliquee() const { return tableAppliquee_; }
  // The caption of the scale bar as the cartouche draws it now.
  QString LegendeActuelle() const;
  float EchellePixels() const { return echellePixels_; }
  int HauteurCartouche() const { return forme_.hauteurCartouche; }
  const QImage& ImageCartouche() const { return cartouche_; }
  QColor CouleurTexte() const { return couleurTexte_; }
  QColor CouleurEchelle() const { return couleurEchelle_; }
  QColor CouleurCartouche() const { return couleurCartouche_; }
  QColor CouleurFond() const { return couleurFond_; }
  const QFont& PoliceTitre() const { return policeTitre_; }
  const QFont& PoliceSousTitre() const { return policeSousTitre_; }

 protected:
  void closeEvent(QCloseEvent* e) override;
  // The decimal key of the other locale in the numeric inputs.
  bool eventFilter(QObject* objet, QEvent* e) override;

 private:
  void Construire();
  void RemplirObjectifs();
  void RestaurerMemoire(const MemoireCartouche& m);
  void AppliquerDate(const DateCartouche& d);
  // chkOmbrage_Click without its drawing.
  void AppliquerOmbrage();
  ChampsCartouche LireChamps() const;
  void EcrireChamps(const ChampsCartouche& c);
  void InitVarEchelle();
  ValeursCartouche ValeursDessin() const;
  void AfficherCartouche();
  void Peindre(QWidget* w, int bgr);
  ParamsImageFinale ParamsFinale() const;
  // The auto colour of text and bar over the picture (chkCouleurAuto).
  void AppliquerCouleurAuto();
  void ApparenceChampsTable();
  void ApparenceNoEtalon();
  bool EchelleVisible() const;
  bool ConstruireImageFinal();
  int SlotChoisi() const;
  void ChoisirPolice(int numero);
  void AfficherPolices();
  void RemplirListeTables(QComboBox* liste, QLineEdit* boite, int choix);
  void ChoisirDansListe(QComboBox* liste, QLineEdit* boite);

  SessionRecord& s_;
  cAdvancedImagery& ai_;
  frmFichierPhoto* principal_;

  // Form state.
  float echellePixels_ = 0;
  bool cartoucheValide_ = true;
  bool tableAppliquee_ = false;
  Canevas canevas_;
  FormeCartouche forme_;
  QColor couleurTexte_ = Qt::black, couleurEchelle_ = Qt::black, couleurCartouche_ = Qt::white,
         couleurFond_ = Qt::white;
  QFont policeTitre_, policeSousTitre_;
  QImage cartouche_, ombre_;
  // What RecupDate chose at the opening; "Champs par défaut" brings it back.
  DateCartouche dateRecuperee_;

  QLineEdit *txtCommentaire_, *txtNomAuteur_, *txtMicroMan_, *txtApPhotoMan_;
  QComboBox *ComboEclairage_, *comboProvenance_, *comboMontage_, *comboColoration_;
  QComboBox *comboJour_, *comboMois_, *comboAnnee_;
  QLabel *lblDatePhoto_, *lblInfosCartouche_, *picCartouche_, *imgMotClef_;
  std::array<QCheckBox*, 9> chkChoixChamp_{};
  std::array<QString, 9> tagChamp_;
  std::array<QCheckBox*, 4> chkTraitNum_{};
  QComboBox *ComboObjectifMan_, *ComboObjectif_, *comboListeObjectif_, *comboTables_,
      *comboIndexTable_;
  std::array<QRadioButton*, 2> OptUniteObj_{}, optUnite_{};
  std::array<QRadioButton*, 3> optTransparence_{}, optAlign_{};
  QLineEdit *txtPix_, *txtMic_, *txtLongueur_, *txtObjRef_, *txtModele_, *txtFocale_,
      *txtLargeur_, *txtChoixTableAuto_;
  QCheckBox *chkOmbrage_, *chkAfficherTouteTable_;
  std::array<QCheckBox*, 4> chkListe_{};  // chkEclairage, chkProvenance, chkMontage, chkColoration
  QFrame *fraEchelle_, *fraChoixTable_, *fraMicroPhoto_, *fraPolices_, *fraChoixChamp_,
      *fraListe_;
  QPushButton *cmdEtalonner_, *cmdRecupMetaEchelle_, *cmdModifDefinition_, *cmdExtrapolFoc_,
      *cmdDessiner_, *cmdSuite_, *cmdCouleurFond_;
  QLabel *shpTexte_, *shpEchelle_, *shpCartouche_, *shpFond_;
  QLineEdit *txtPoliceTitre_, *txtPoliceSousTitre_;
  QPushButton *cmdListeMicro_, *cmdListeApPhoto_;
  QComboBox *comboMicro_, *comboModele_;
  std::array<QCheckBox*, 3> chkLstDefaut_{};
  QPushButton *cmdOuvrirFraChoixChamp_, *cmdOuvrirFraTable_;
  QPointer<frmMotClef> motClef_;
  QPointer<QWidget> pipette_;
  QPointer<QWidget> extrapolation_;
  QCheckBox* chkCouleurAuto_ = nullptr;
};

}  // namespace tg
