#pragma once
// The dialogue seam answered without a window, for the headless tool and the
// fuzz targets. Installed for the life of the object: every message is kept
// in `messages` and handed to `echo` when one is given; questions take their
// default answer; file, folder, colour and font dialogs are cancelled.
#include <QStringList>
#include <functional>
#include <utility>

#include "platform/Dialogues.h"

namespace tg {

// Answers without a window: each message and question's text to Noter,
// questions their default answer, file, folder, colour and font dialogs
// cancelled.
class ReponsesSansFenetre : public IDialogues {
 public:
  void Message(const QString& titre, const QString& texte, Icone) override { Noter(titre, texte); }
  Reponse Question(const QString& titre, const QString& texte, Boutons, Reponse defaut, Icone) override {
    Noter(titre, texte);
    return defaut;
  }
  std::optional<QString> Saisie(const QString&, const QString&, const QString&) override { return std::nullopt; }
  QString FichierOuvrir(const QString&, const QString&, const QString&) override { return {}; }
  QString FichierEnregistrer(const QString&, const QString&, const QString&, const QString&) override { return {}; }
  QString Dossier(const QString&, const QString&) override { return {}; }
  int Couleur(int) override { return -1; }
  std::optional<QFont> Police(const QFont&) override { return std::nullopt; }
  void MsgBoxEx(const Bulle& bulle, int&) override { Noter(bulle.titre, bulle.texte); }

 protected:
  virtual void Noter(const QString& titre, const QString& texte) = 0;
};

class DialoguesSansFenetre : public ReponsesSansFenetre {
 public:
  explicit DialoguesSansFenetre(std::function<void(const QString&)> echo = {})
      : echo_(std::move(echo)) {
    InstallerDialogues(this);
  }
  ~DialoguesSansFenetre() override { InstallerDialogues(nullptr); }
  DialoguesSansFenetre(const DialoguesSansFenetre&) = delete;
  DialoguesSansFenetre& operator=(const DialoguesSansFenetre&) = delete;

  QStringList messages;

 private:
  void Noter(const QString&, const QString& texte) override {
    messages << texte;
    if (echo_) echo_(texte);
  }
  std::function<void(const QString&)> echo_;
};

}  // namespace tg
