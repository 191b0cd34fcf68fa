#pragma once
// frmExtrapolFocale: the scale at the photo's focal length from a series of
// tables of the same set-up at other focal lengths. Opened by the cartouche
// form (DepuisCartouche), which then receives the result, or by the main
// window. The arithmetic is in ExtrapolationFocale.h.
#include <QWidget>
#include <functional>

#include "measure/ExtrapolationFocale.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace tg {

struct SessionRecord;

class frmExtrapolFocale : public QWidget {
  Q_OBJECT

 public:
  // `appelant`: the window it is centred on. `versCartouche`, given by the
  // cartouche form, receives "Envoyer au cartouche"'s pixels for 100 microns.
  frmExtrapolFocale(SessionRecord& session, QWidget* appelant, std::function<void(int)> versCartouche = {});
  static frmExtrapolFocale* Afficher(SessionRecord& session, QWidget* appelant,
                                     std::function<void(int)> versCartouche = {});

  void comboTable_Click(int position);
  void cmdCommand(int index);
  void cmdAplatir();
  void cmdCalculerUmPourMillePix();
  void cmdEnvoyerAuCartouche();
  void cmdAnnuler();

  const Extrapolation& Resultat() const { return resultat_; }
  SerieFocale Serie() const;
  int EchelleGraphe() const { return echelle_; }

 private:
  void Calculer();
  void Afficher(const SerieFocale& serie);
  void ViderResultats();

  SessionRecord& s_;
  QWidget* appelant_;
  std::function<void(int)> versCartouche_;
  Extrapolation resultat_;
  int echelle_ = 0;  // the graph's scale memory; 0 until the first calculation

  QComboBox* comboTable_ = nullptr;
  QComboBox* comboIndexTable_ = nullptr;
  QListWidget* lstSelTable_[3] = {};
  QLineEdit* txtValeur_[4] = {};
  QLabel* lblxPixMic_ = nullptr;
  QWidget* Graph1_ = nullptr;
  QWidget* picAide_ = nullptr;
};

}  // namespace tg
