#pragma once
// The start-up window: runs every start-up step, then hands over to the main
// window, or on a first run stays as the welcome window with cmdSuite.
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>

#include "core/SessionRecord.h"

class QLabel;
class QPushButton;

namespace tg {

class cAdvancedImagery;
class frmFichierPhoto;

class frmMain : public QWidget {
  Q_OBJECT

 public:
  // Wires the modules above core into a new main window (the program passes
  // Assembler). Neither the record nor the imaging layer is owned.
  using Assembleur = std::function<void(frmFichierPhoto&)>;
  frmMain(SessionRecord& session, cAdvancedImagery& imagerie, Assembleur assembler,
          QWidget* parent = nullptr);
  ~frmMain() override;

  // The load of the window: every start-up step with the command line. On a
  // first run the window shows itself with the welcome text; otherwise the
  // main window opens. False when the program must end (screen too small).
  bool Charger(const QString& ligneCommande);

  bool PremierLancement() const { return premier_; }
  // The main window once opened, else nullptr.
  frmFichierPhoto* Principale() const { return principale_.get(); }

  // The welcome window's button: asks whether to configure now, opens the
  // main window and, on yes, the options.
  void cmdSuite();

  // The folder where the update helpers are looked for (the executable's by default).
  void DefinirDossierAssistants(const QString& dossier) { assistants_ = dossier; }

 protected:
  void closeEvent(QCloseEvent* e) override;

 private:
  // Opens the main window and checks the screen; false when the program ends.
  bool OuvrirPrincipale();

  SessionRecord& s_;
  cAdvancedImagery& ai_;
  Assembleur assembler_;
  QString assistants_;
  bool premier_ = false;
  std::unique_ptr<frmFichierPhoto> principale_;
  QLabel* lblBienvenue_ = nullptr;
  QPushButton* cmdSuite_ = nullptr;
};

// Step 7 of the main window's load: the screen's width decides; below 800 the
// message is shown and false returned (the program ends); from 800 to 1023
// the second message and ChoixFormatMesure "0". ZoneLargeur and ZoneHauteur
// take the window's size.
bool ControlerEcran(frmFichierPhoto& fenetre);

}  // namespace tg
