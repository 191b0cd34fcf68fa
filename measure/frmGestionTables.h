#pragma once
// frmGestionTables: browses, edits and deletes the tables of
// table_mesure.dat, makes and restores the backup copy, exports the tables
// and erases them all. Holds the file open for its whole life.
#include <QPointer>
#include <QWidget>
#include <array>

#include "core/SessionRecord.h"
#include "measure/TableMesure.h"
#include "platform/Liste.h"

class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace tg {

class frmGestionTables : public QWidget {
  Q_OBJECT

 public:
  // Runs the opening steps; `derniereTable` (GestionDerniereTable) shows the
  // last table rather than the first.
  frmGestionTables(SessionRecord& session, bool derniereTable = false, QWidget* parent = nullptr);
  ~frmGestionTables() override;

  // Shows the one window (deleted on close), in place of an open one.
  static frmGestionTables* Afficher(SessionRecord& session, bool derniereTable = false,
                                    QWidget* parent = nullptr);

  // The slot on show (table number + 1) and the header's value.
  int Courant() const { return courant_; }
  int NbEnreg() const { return nbEnreg_; }

  void cmdNext();
  void cmdPrevious();
  void cmdModif();
  void cmdSuppr();
  void Rechercher();
  void cmdBackupMesure();
  void cmdRecupTables();
  void cmdExporterTables();
  void cmdEffacerTables();

 protected:
  void closeEvent(QCloseEvent* e) override;

 private:
  void Ouverture();
  void AfficherSlot(int k);
  void EtatBoutons();
  void AfficherDateCopie();
  void ChoisirFiltre(int index);
  void ChoisirValeur(int index);
  void ChoisirTable(int index);
  void RemplirListeTables();
  int Filtre() const;
  void ErreurTrappee(const QString& procedure);

  SessionRecord& s_;
  bool derniereTable_ = false;
  FichierMesure fichier_;
  int nbEnreg_ = 0;
  int courant_ = 0;
  QString valeurFiltre_;  // the value chosen in comboChoixExtract, if any
  bool valeurChoisie_ = false;

  std::array<QLineEdit*, 8> txtFields_{};
  std::array<QRadioButton*, 5> optFiltre_{};
  QLabel* lblNum_ = nullptr;
  QLabel* lblDateCopieSecours_ = nullptr;
  QComboBox* comboTable_ = nullptr;
  ListeSimple comboIndex1_;  // the hidden list: table number of each row
  QComboBox* comboChoixExtract_ = nullptr;
  QFrame* fraDivers_ = nullptr;
  QPushButton *cmdSuppr_ = nullptr, *cmdModif_ = nullptr, *cmdPrevious_ = nullptr,
              *cmdNext_ = nullptr, *cmdBackupMesure_ = nullptr, *cmdRecupTables_ = nullptr,
              *cmdExporterTables_ = nullptr, *cmdEffacerTables_ = nullptr;
  static QPointer<frmGestionTables> instance_;
};

}  // namespace tg
