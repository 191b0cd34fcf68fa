#pragma once
// Folders, launching programs, opening addresses and the screen: behind one
// small interface so that tests can stand in.
#include <QString>
#include <QStringList>

namespace tg {

struct Ecran {
  int largeur = 0, hauteur = 0;  // pixels
  int profondeur = 0;            // bits per pixel
  int frequence = 0;             // Hz
  bool palette = false;
  int couleursPalette = 0;
  int dpiX = 0, dpiY = 0;
};

class ISysteme {
 public:
  virtual ~ISysteme() = default;
  // Starts a program detached; false when it could not start.
  virtual bool LancerProgramme(const QString& programme, const QStringList& arguments) = 0;
  // Opens an address or file with the system's default action, or with the
  // browser `navigateur` when it is not "Explorer" nor empty.
  virtual bool OuvrirAdresse(const QString& adresse, const QString& navigateur) = 0;
  virtual Ecran InfosEcran() = 0;
};

ISysteme& Systeme();
void InstallerSysteme(ISysteme* s);  // not owned; nullptr puts the real one back

// The program's folder: $TESSELLOGRAPHE_HOME when set, else the XDG data
// folder of the program; created when missing. Ends with "/".
QString RepApplication();
// The documents folder, ending with "/".
QString DossierDocuments();
QString GetTemporyFolderPath();
// The folder of the executable. Ends with "/".
QString DossierExecutable();
// An installed program's files lie apart from its executable, at a path
// relative to it (../libexec/tessellographe, ../share/tessellographe); in the
// build folder they lie beside it. The installed folder when it exists,
// else `dossierExecutable`. Ends with "/".
QString DossierInstalle(const QString& dossierExecutable, const QString& relatif);
// The update helpers and the headless tool's full half.
QString DossierAssistants();
// The shipped files: the help page.
QString DossierDonnees();

}  // namespace tg
