#pragma once
// The keyword dialog: the free keywords and the seven boxes of the
// classification (kingdom to species), each fed by its lstArbre_ file.
#include <QWidget>
#include <array>

#include "cartouche/Listes.h"
#include "core/SessionRecord.h"

class QCheckBox;
class QComboBox;
class QPlainTextEdit;

namespace tg {

class frmMotClef : public QWidget {
  Q_OBJECT

 public:
  // `formulaire` is the cartouche form that opened the dialog (may be null):
  // it stays behind, gets its imgMotClef shown or hidden and comes back to the
  // front when the dialog closes. The record is not owned.
  frmMotClef(SessionRecord& session, QWidget* formulaire = nullptr);

  // Defaults of the tree and filling of its seven boxes.
  void RemplirArbre();
  void cmdOK();
  void cmdEffacer();
  void cmdAnnuler();

 private:
  void Charger();
  void Quitter();
  void MontrerIndicateur(bool visible);

  SessionRecord& s_;
  QWidget* formulaire_;
  QPlainTextEdit* txtMotClef_ = nullptr;
  std::array<QComboBox*, NombreNiveauxArbre> combClassement_{};
  std::array<QCheckBox*, NombreNiveauxArbre - 1> chkClassement_{};
};

}  // namespace tg
