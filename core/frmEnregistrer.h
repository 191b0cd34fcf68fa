#pragma once
// The save window: a trial file resultat.jpg at the chosen format and
// quality, its weight against PoidsMax, then a copy under the chosen name.
#include <QDialog>

#include "core/Enregistrement.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace tg {

class frmFichierPhoto;

class frmEnregistrer : public QDialog {
  Q_OBJECT

 public:
  explicit frmEnregistrer(frmFichierPhoto& principale);

  int FormatSortie() const { return formatSortie_; }

  // cmdPreparer, "Tester JPG": makes the trial file.
  void PreparerResultat();
  // The highest quality within PoidsMax, shown as a normal trial.
  void cmdQualiteAuto();
  // cmdConfirmer: asks the name and commits.
  void DialogueEnregistrer();
  void cmdAnnuler();
  // The session as a message, one key a line (for the developer).
  void AfficherListing();

 protected:
  void closeEvent(QCloseEvent* e) override;

 private:
  void MontrerEssai(const ResultatEssai& r, bool tropLourd);
  void ChoisirExtension(int format);

  frmFichierPhoto& w_;
  int formatSortie_ = 0;  // 0 JPEG, 1 BMP, 2 TIFF
  int qualiteChoisie_ = 0;
  bool confirme_ = false;
  QRadioButton* optExtension_[3] = {};
  QRadioButton* optDossier_[2] = {};
  QGroupBox* fraCompression_ = nullptr;
  QGroupBox* fraResultat_ = nullptr;
  QLabel* lblVerifierResult_ = nullptr;
  QComboBox* comboQualite_ = nullptr;
  QLineEdit* txtPoidsImage_ = nullptr;
  QCheckBox* chkCopieBmp_ = nullptr;
};

}  // namespace tg
