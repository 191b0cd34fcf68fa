#pragma once
// frmFiltres: brightness, contrast, gamma, grey, invert, sharpen, blur,
// emboss and etch, colour by percentages or by a grey reference, each a step
// on ImageFiltre shown at once on the main window; nothing reaches the
// session's picture before "Appliquer les filtres". Beside it,
// frmFiltresVignette keeps four states to compare.
#include <QPointer>
#include <QWidget>

#include "core/SessionRecord.h"
#include "adjust/frmFiltresVignette.h"
#include "core/frmPipette.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSlider;
class QTabWidget;

namespace tg {

class cAdvancedImagery;
class frmFichierPhoto;


class frmFiltres : public QWidget, public IReceveurPipette {
  Q_OBJECT

 public:
  // `principal` may be null (tests): the picture is then shown nowhere.
  frmFiltres(SessionRecord& session, cAdvancedImagery& ai, frmFichierPhoto* principal, QWidget* parent = nullptr);
  ~frmFiltres() override;
  static frmFiltres* Afficher(frmFichierPhoto& principal);

  // The sliders' release: one step of the value, added to its total.
  void LacherLuminosite(int valeur);
  void LacherContraste(int valeur);
  void LacherGamma(int position);
  void cmdNivGris();
  void cmdInversion();
  void cmdSharpen();
  void cmdBlur();
  void cmdEmbos();
  void cmdAjusterRGB();
  void cmdCorrCouleur(int index);
  void cmdCalculerNivGris();
  void cmdAjouterListe();
  void cmdAppliquerListe();
  void cmdEffacerListe();
  void cmdAppliquer();
  void cmdReinit();
  void cmdSortir();
  void cmdMemoriserResult();
  void RecevoirCouleurPipette(int couleur, int rouge, int vert, int bleu) override;

  int32_t CumulLuminosite() const { return cumulLuminosite_; }
  int32_t CumulContraste() const { return cumulContraste_; }
  int32_t CumulGamma() const { return cumulGamma_; }
  frmFiltresVignette* Vignettes() const { return vignettes_; }
  // Shows ImageFiltre on the main window.
  void Montrer();

 protected:
  void closeEvent(QCloseEvent* e) override;

 private:
  void RazControles();
  void RemplirListe();
  // Runs an effect on ImageFiltre with the wait cursor when `long`; shows it.
  template <typename F>
  bool Effet(F f, bool attente);
  void Erreur();

  SessionRecord& s_;
  cAdvancedImagery& ai_;
  QPointer<frmFichierPhoto> principal_;
  QPointer<frmFiltresVignette> vignettes_;
  QPointer<frmPipette> pipette_;
  int32_t cumulLuminosite_ = 0, cumulContraste_ = 0, cumulGamma_ = 0;
  bool fermee_ = false;

  QTabWidget* SSTab1_ = nullptr;
  QSlider* sldLuminosite_ = nullptr;
  QSlider* sldContrast_ = nullptr;
  QSlider* sldGama_ = nullptr;
  QLineEdit* txtValLum_ = nullptr;
  QLineEdit* txtValCont_ = nullptr;
  QLineEdit* txtGama_ = nullptr;
  QComboBox* comboLumCont_ = nullptr;
  QPushButton* cmdAppliquerListe_ = nullptr;
  QRadioButton* optSharpen_[2] = {};
  QRadioButton* optBlur_[2] = {};
  QRadioButton* optBasRelief_[2] = {};
  QCheckBox* chkNivBasRelief_ = nullptr;
  QCheckBox* chkGrisBasRelief_ = nullptr;
  QLineEdit* txtRGB_[3] = {};
  QLabel* lblRGB_[3] = {};
  QComboBox* comboRefGris_ = nullptr;
  QLabel* picRefGris_ = nullptr;
  QCheckBox* chkCorCouleurFort_ = nullptr;
  QPushButton* cmdAjusterRGB_ = nullptr;
};

}  // namespace tg
