#pragma once
// The cartouche form's window: shows the form's model in its controls and
// hands the model the user's edits and clicks. Lives for one visit.
#include <QColor>
#include <QFont>
#include <QHash>
#include <QImage>
#include <QPointer>
#include <QWidget>
#include <array>

#include "cartouche/ModeleCartouche.h"
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
  // (annotations dropped): the form's model loaded and its Suite pressed.
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

  ModeleCartouche& Modele() { return m_; }
  bool CartoucheValide() const { return m_.CartoucheValide(); }
  bool TableAppliquee() const { return m_.TableAppliquee(); }
  // The caption of the scale bar as the cartouche draws it now.
  QString LegendeActuelle() const { return m_.LegendeActuelle(); }
  float EchellePixels() const { return m_.EchellePixels(); }
  int HauteurCartouche() const { return m_.HauteurCartouche(); }
  const QImage& ImageCartouche() const { return m_.ImageCartouche(); }
  QColor CouleurTexte() const { return m_.CouleurTexte(); }
  QColor CouleurEchelle() const { return m_.CouleurEchelle(); }
  QColor CouleurCartouche() const { return m_.CouleurCartouche(); }
  QColor CouleurFond() const { return m_.CouleurFond(); }
  const QFont& PoliceTitre() const { return m_.PoliceTitre(); }
  const QFont& PoliceSousTitre() const { return m_.PoliceSousTitre(); }

 protected:
  void closeEvent(QCloseEvent* e) override;
  // The decimal key of the other locale in the numeric inputs.
  bool eventFilter(QObject* objet, QEvent* e) override;

 private:
  void Construire();
  // Every control from the model's state; edits made meanwhile are not
  // handed back.
  void Rafraichir();
  // A model action, then the controls shown again.
  void Agir(void (ModeleCartouche::*action)());
  // The main window after the final picture was built.
  static void MontrerImageFinale(frmFichierPhoto& principal);
  void Peindre(QWidget* w, int bgr);
  QWidget* ControleDe(Controle c) const;
  void ChoisirCouleur(const QColor& initiale, void (ModeleCartouche::*poser)(const QColor&));

  SessionRecord& s_;
  cAdvancedImagery& ai_;
  frmFichierPhoto* principal_;
  ModeleCartouche m_;
  bool miseAJour_ = false;
  // The model's tint last painted on each input, so that one set by another
  // window stays until the model tints it again.
  std::array<unsigned, kNombreControles> teintePeinte_{};
  qint64 imageMontree_ = -1;
  // The frames another window may show or hide.
  QHash<QObject*, Controle> cadres_;

  QLineEdit *txtCommentaire_, *txtNomAuteur_, *txtMicroMan_, *txtApPhotoMan_;
  QComboBox *ComboEclairage_, *comboProvenance_, *comboMontage_, *comboColoration_;
  QComboBox *comboJour_, *comboMois_, *comboAnnee_;
  QLabel *lblDatePhoto_, *lblInfosCartouche_, *picCartouche_, *imgMotClef_;
  std::array<QCheckBox*, 9> chkChoixChamp_{};
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
