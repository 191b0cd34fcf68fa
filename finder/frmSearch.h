#pragma once
// frmSearch ("Rechercher - Visionner"): the program's own browser of picture
// folders, the default way to open a picture. The walk and the thumbnails
// run off the interface thread: the window never freezes and Escape stops a
// walk at once.
#include <QPointer>
#include <QWidget>
#include <atomic>
#include <functional>
#include <memory>

#include "core/SessionRecord.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QRadioButton;

namespace tg {

class frmFichierPhoto;
struct ResultatParcours;

class frmSearch : public QWidget {
  Q_OBJECT

 public:
  // `principal` may be null (tests): opening then loads nothing.
  frmSearch(SessionRecord& session, frmFichierPhoto* principal, QWidget* parent = nullptr);
  ~frmSearch() override;
  static frmSearch* Afficher(frmFichierPhoto& principal);

  void optDossier(int index);
  void cmdActualiserList();
  void Selectionner(int index);
  void cmdOuvrir();
  void cmdSupprimerImage();
  void cmdRepTravail();
  // Escape: stops a walk (from any thread); says so when one runs.
  void Echap();
  // Thread-safe: asks the walk to stop at its next entry.
  void DemanderArret() { arret_->store(true); }

  // For tests and benchmarks: wait until the walk, or the selection's
  // thumbnail and facts, have arrived (false after `ms` milliseconds).
  bool AttendreParcours(int ms = 10000);
  bool AttendreSelection(int ms = 10000);
  // Runs on the walk's thread at each folder pass (tests stop a walk there).
  std::function<void()> SurPasse;

  bool RechercheEnCours() const { return enCours_; }
  QString CheminSelection() const { return cheminSelection_; }
  const QStringList& List1() const { return list1_; }

 signals:
  void ParcoursTermine();
  void SelectionAffichee();

 protected:
  void closeEvent(QCloseEvent* e) override;
  bool eventFilter(QObject* objet, QEvent* e) override;

 private:
  void Vider();
  void Curseur(bool occupe);
  void FinParcours(const ResultatParcours& r);
  void AfficherSelection();

  SessionRecord& s_;
  QPointer<frmFichierPhoto> principal_;
  std::shared_ptr<std::atomic<bool>> arret_;
  bool enCours_ = false;
  bool curseur_ = false;         // the busy pointer is on
  bool selectionPrete_ = false;  // the last selection's thumbnail and facts are shown
  int generationSelection_ = 0;
  QString dossierCourant_;
  QString cheminSelection_;
  QStringList list1_;

  QRadioButton* optDossier_[4] = {};
  QLineEdit* txtRepTravail_ = nullptr;
  QLineEdit* txtFiltre_ = nullptr;
  QComboBox* combFileExt_ = nullptr;
  QCheckBox* chkSousDir_ = nullptr;
  QCheckBox* chkModeOuvrir_ = nullptr;
  QListWidget* List2_ = nullptr;
  QLabel* picVignette_ = nullptr;
  QLabel* Text3_ = nullptr;
  QPlainTextEdit* Text4_ = nullptr;
  QPlainTextEdit* txtExif_ = nullptr;
  QLabel* lblInfos_ = nullptr;
};

}  // namespace tg
