#pragma once
// The tool window that lets the user try the four resamplers on the picture,
// keep the result or load the picture again for another try.
#include <QDialog>

class QCheckBox;
class QGroupBox;
class QLabel;
class QRadioButton;

namespace tg {

class frmFichierPhoto;

class frmChooseRessampl : public QDialog {
  Q_OBJECT

 public:
  explicit frmChooseRessampl(frmFichierPhoto& principale);

  // The code (1 to 4) of the option selected.
  int CodeChoisi() const;

  void cmdAppliquer();
  void cmdConsever();
  void cmdReinit();
  void cmdSortir();

 protected:
  void closeEvent(QCloseEvent* e) override;

 private:
  frmFichierPhoto& w_;
  QGroupBox* frame1_ = nullptr;
  QGroupBox* frame2_ = nullptr;
  QLabel* lblChoixOk_ = nullptr;
  QCheckBox* chkMethodeRedim_ = nullptr;
  QRadioButton* options_[4] = {};
};

}  // namespace tg
