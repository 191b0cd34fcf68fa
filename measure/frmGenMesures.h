#pragma once
// frmGenMesures: appends one measurement table to table_mesure.dat, typed by
// hand (from the main window) or handed over by a calibration on an étalon
// picture, whose measured values arrive filled in and locked.
#include <QPointer>
#include <QWidget>
#include <array>
#include <optional>

#include "core/SessionRecord.h"
#include "measure/TableMesure.h"

class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tg {

// What a calibration hands over (CreationTableEtalon): its text boxes as typed.
struct DonneesEtalon {
  QString largeurImgOrigine;  // txtLargeurImgOrigine, pixels
  QString mesurePixel;        // txtMesurePixel, pixels
};

class frmGenMesures : public QWidget {
  Q_OBJECT

 public:
  // Runs the opening steps; the file stays open until a table is added or
  // the window closes. `etalon` set: CreationTableEtalon.
  frmGenMesures(SessionRecord& session, std::optional<DonneesEtalon> etalon = std::nullopt,
                QWidget* parent = nullptr);
  ~frmGenMesures() override;

  // Shows the one window (deleted on close): an open one is brought forward,
  // or replaced when a calibration hands over new values.
  static frmGenMesures* Afficher(SessionRecord& session,
                                 std::optional<DonneesEtalon> etalon = std::nullopt,
                                 QWidget* parent = nullptr);

  void cmdCreFichier();
  void cmdGestionTable();

 protected:
  void closeEvent(QCloseEvent* e) override;
  bool eventFilter(QObject* objet, QEvent* e) override;

 private:
  void Charger();
  void PrendreEtalon();
  void Verrouiller(QLineEdit* champ, bool verrou);
  void chkZoomApnClic(bool coche);
  void ChoixListe(int liste, int index);
  void AfficherNbConfig();

  SessionRecord& s_;
  std::optional<DonneesEtalon> etalon_;
  FichierMesure fichier_;
  int nbEnreg_ = 1;

  std::array<QLineEdit*, 8> txtFields_{};
  std::array<QPushButton*, 3> cmdAfficherChoixLst_{};
  std::array<QComboBox*, 3> combos_{};  // comboModele, comboMicro, comboConfig
  QComboBox* comboListeObjectif_ = nullptr;
  QCheckBox* chkZoomApn_ = nullptr;
  QLabel* lblFocale_ = nullptr;
  QLabel* lblNbConfig_ = nullptr;
  QFrame* picInfos_ = nullptr;
  QPushButton* cmdCreFichier_ = nullptr;
  QPushButton* cmdGestionTable_ = nullptr;
  static QPointer<frmGenMesures> instance_;
};

}  // namespace tg
