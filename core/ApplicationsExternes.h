#pragma once
// The external image editor: the current picture exported as temp.jpg in the
// working folder, edited by another program, imported back (the pixels only:
// the metadata stay in the session), and the free launch of the configured
// applications.
#include <QString>
#include <QWidget>

namespace tg {

class frmFichierPhoto;

// The path of temp.jpg while an export runs; empty otherwise.
QString& CheminExport();

// True when the program's file title, upper-cased, begins with "NEATIMAGE":
// that program refuses a file given at its start when the path has a blank.
bool EstNeatImage(const QString& application);
// Milliseconds between the two launches of such a program (5 seconds; tests
// shorten it). Events are served meanwhile.
int& DelaiDeuxiemeLancement();

// Launches `application` with `fichier` (none when empty). False, after
// "Erreur de lancement", when it could not start.
bool LancerApplication(QWidget* fenetre, const QString& application, const QString& fichier);

void ExporterImage(frmFichierPhoto& w);
void ImporterImage(frmFichierPhoto& w);
// Exporter unpressed and enabled, Importer unpressed and disabled.
void ResetOutilsExport(frmFichierPhoto& w);
// The i-th configured application (0 to 3), outside an export.
void mnuApExterne(frmFichierPhoto& w, int i);

// frmApExterne: the advice and one icon for each configured application.
class frmApExterne : public QWidget {
  Q_OBJECT
 public:
  explicit frmApExterne(frmFichierPhoto& principal);
  // A click on the icon of application i.
  void Lancer(int i);
  int NombreApplications() const { return nombre_; }

 protected:
  void closeEvent(QCloseEvent* e) override;

 private:
  frmFichierPhoto& principal_;
  int nombre_ = 0;
  bool lance_ = false;
};

// Installs the hooks "ExporterImage", "ImporterImage" and "mnuApExterne".
void InstallerApplicationsExternes(frmFichierPhoto& w);

}  // namespace tg
