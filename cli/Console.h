#pragma once
// What the headless tool shares between its commands: one line of text out,
// and the dialogue seam answered without a window.
#include <QStringList>
#include <cstdio>

#include "platform/Dialogues.h"

namespace tg::cli {

// One line, UTF-8, to the given stream.
void Ligne(const QString& texte, FILE* flux = stdout);

// Installed for the life of the object: every message is kept in `messages`
// and, when `echo` is set, written to standard error at once; questions take
// their default answer; file, folder, colour and font dialogs are cancelled.
class DialoguesConsole : public IDialogues {
 public:
  explicit DialoguesConsole(bool echo) : echo_(echo) { InstallerDialogues(this); }
  ~DialoguesConsole() override { InstallerDialogues(nullptr); }
  QStringList messages;

  void Message(const QString&, const QString& texte, Icone) override { Noter(texte); }
  Reponse Question(const QString&, const QString& texte, Boutons, Reponse defaut, Icone) override {
    Noter(texte);
    return defaut;
  }
  std::optional<QString> Saisie(const QString&, const QString&, const QString&) override {
    return std::nullopt;
  }
  QString FichierOuvrir(const QString&, const QString&, const QString&) override { return {}; }
  QString FichierEnregistrer(const QString&, const QString&, const QString&,
                             const QString&) override {
    return {};
  }
  QString Dossier(const QString&, const QString&) override { return {}; }
  int Couleur(int) override { return -1; }
  std::optional<QFont> Police(const QFont&) override { return std::nullopt; }
  void MsgBoxEx(const Bulle& bulle, int&) override { Noter(bulle.texte); }

 private:
  void Noter(const QString& texte) {
    messages << texte;
    if (echo_) Ligne(texte, stderr);
  }
  bool echo_;
};

}  // namespace tg::cli
