#pragma once
// The message balloon: an icon, the text, a "+ d'infos" button that shows the
// longer text (and then reads "réduire"), and a "Ne plus afficher" box.
#include <QDialog>

#include "platform/Dialogues.h"

class QCheckBox;
class QLabel;
class QPushButton;

namespace tg {

class frmMsgBoxEx : public QDialog {
  Q_OBJECT

 public:
  // The box starts ticked when `nePlusAfficher` is not 0.
  frmMsgBoxEx(const Bulle& bulle, int nePlusAfficher, QWidget* parent = nullptr);

  bool NePlusAfficher() const;
  bool Agrandi() const { return agrandi_; }

 private:
  void Basculer();

  Bulle bulle_;
  bool agrandi_ = false;
  QLabel* lblTexteLong_ = nullptr;
  QPushButton* cmdInfos_ = nullptr;
  QCheckBox* chkNePlusAfficher_ = nullptr;
};

}  // namespace tg
