#pragma once
// The one seam for every message box, question, input box and file, folder,
// colour and font dialog. Windows never call QMessageBox themselves: they call
// Dialogues(), which is the Qt implementation in the program and a scripted
// double in tests.
#include <QColor>
#include <QFont>
#include <QString>
#include <QStringList>
#include <optional>

namespace tg {

// The four icons of the system's message boxes, by their numeric codes.
enum class Icone { Aucune = 0, Critique = 16, Question = 32, Exclamation = 48, Information = 64 };

enum class Boutons { OK, OuiNon, OuiNonAnnuler, OKAnnuler };
enum class Reponse { OK, Oui, Non, Annuler };

// The message balloon: title, text, a longer text shown by "+ d'infos", and a
// "Ne plus afficher" box whose state is written back to the caller's variable.
struct Bulle {
  QString titre;
  QString texte;
  QString texteLong;
  Icone icone = Icone::Information;
  QString texteCase = QStringLiteral("Ne plus afficher");
  QString texteAgrandir = QStringLiteral("+ d'infos");
  QString texteReduire = QStringLiteral("réduire");
};

class IDialogues {
 public:
  virtual ~IDialogues() = default;

  virtual void Message(const QString& titre, const QString& texte, Icone icone) = 0;
  // `defaut` is the button that Enter presses.
  virtual Reponse Question(const QString& titre, const QString& texte, Boutons boutons,
                           Reponse defaut, Icone icone) = 0;
  // Input box; std::nullopt when cancelled.
  virtual std::optional<QString> Saisie(const QString& titre, const QString& invite,
                                        const QString& defaut) = 0;
  // Filters are in the system's form "Jpeg (*.jpg)|*.jpg|...". Empty result: cancelled.
  virtual QString FichierOuvrir(const QString& titre, const QString& dossier,
                                const QString& filtre) = 0;
  virtual QString FichierEnregistrer(const QString& titre, const QString& dossier,
                                     const QString& nomDefaut, const QString& filtre) = 0;
  virtual QString Dossier(const QString& titre, const QString& depart) = 0;
  // Colours are 0xBBGGRR; -1 when cancelled.
  virtual int Couleur(int initiale) = 0;
  virtual std::optional<QFont> Police(const QFont& initiale) = 0;
  // Shows the balloon; sets `nePlusAfficher` to 1 when the box is ticked.
  virtual void MsgBoxEx(const Bulle& bulle, int& nePlusAfficher) = 0;
  // One item of a list; std::nullopt when cancelled (and where no one can answer).
  virtual std::optional<QString> Choix(const QString& titre, const QString& invite, const QStringList& elements,
                                       int courant) {
    (void)titre, (void)invite, (void)elements, (void)courant;
    return std::nullopt;
  }
};

// "Jpeg (*.jpg)|*.jpg|Tous (*.*)|*.*" -> "Jpeg (*.jpg);;Tous (*)": each label
// followed by its patterns, ";" between patterns becoming a blank. "*.*" is
// every file, as on the system it comes from.
QString FiltreQt(const QString& filtre);
// The extension of the filter's first pattern ("jpg" for "Jpeg (*.jpg)|*.jpg"),
// empty for "*.*" or no pattern.
QString SuffixeFiltre(const QString& filtre);

// 0xBBGGRR <-> QColor; -1 is an invalid QColor and back.
QColor VersQColor(int bgr);
int DepuisQColor(const QColor& couleur);

// The dialogues in use: the installed ones, else the default ones (the Qt
// dialogues once InstallerDialoguesQt has run), else messages on standard
// error with questions taking their default answer.
IDialogues& Dialogues();
// Installs `d` (not owned) for the rest of the run; nullptr puts the default ones back.
void InstallerDialogues(IDialogues* d);
// The dialogues used when none is installed (not owned).
void DefinirDialoguesParDefaut(IDialogues* d);
// The Qt dialogues as the default ones (window library; needs a QApplication).
void InstallerDialoguesQt();

}  // namespace tg
