#pragma once
// Test double of the dialogue seam: records every call with its title and
// text, and answers from a script. An unscripted question answers its default
// button; an unscripted file or input dialog is cancelled.
#include <QColor>
#include <deque>
#include <vector>

#include "platform/Dialogues.h"

namespace tg::test {

struct Appel {
  QString genre;  // "Message", "Question", "Saisie", "FichierOuvrir", ..., "MsgBoxEx"
  QString titre;
  QString texte;
  int icone = 0;
  QString texteLong;  // balloon only
  Reponse defaut = Reponse::OK;
  Boutons boutons = Boutons::OK;
};

class DialoguesScriptes : public IDialogues {
 public:
  DialoguesScriptes() { InstallerDialogues(this); }
  ~DialoguesScriptes() override { InstallerDialogues(nullptr); }

  std::vector<Appel> appels;
  std::deque<Reponse> reponses;     // for Question
  std::deque<QString> chaines;      // for Saisie and the file and folder dialogs
  std::deque<int> couleurs;         // for Couleur
  std::deque<QFont> polices;        // for Police
  std::deque<bool> casesCochees;    // for MsgBoxEx: "Ne plus afficher" ticked

  void Message(const QString& titre, const QString& texte, Icone icone) override;
  Reponse Question(const QString& titre, const QString& texte, Boutons boutons, Reponse defaut,
                   Icone icone) override;
  std::optional<QString> Saisie(const QString& titre, const QString& invite,
                                const QString& defaut) override;
  QString FichierOuvrir(const QString& titre, const QString& dossier,
                        const QString& filtre) override;
  QString FichierEnregistrer(const QString& titre, const QString& dossier,
                             const QString& nomDefaut, const QString& filtre) override;
  QString Dossier(const QString& titre, const QString& depart) override;
  int Couleur(int initiale) override;
  std::optional<QFont> Police(const QFont& initiale) override;
  void MsgBoxEx(const Bulle& bulle, int& nePlusAfficher) override;
  // Answers from `chaines` with the first element beginning with the
  // scripted text; `elementsChoix` keeps the list offered.
  std::optional<QString> Choix(const QString& titre, const QString& invite, const QStringList& elements,
                               int courant) override;
  QStringList elementsChoix;

  // The last call, or an empty one.
  Appel Dernier() const { return appels.empty() ? Appel{} : appels.back(); }
  // The texts of every call, in order.
  QStringList Textes() const;
};

}  // namespace tg::test
