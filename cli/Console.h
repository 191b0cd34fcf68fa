#pragma once
// What the headless tool shares between its commands: one line of text out,
// and the dialogue seam answered without a window.
#include <QStringList>
#include <cstdio>

#include "platform/DialoguesSansFenetre.h"

namespace tg::cli {

// One line, UTF-8, to the given stream.
void Ligne(const QString& texte, FILE* flux = stdout);

// The dialogues without a window; with `echo`, each message is also written
// to standard error at once.
class DialoguesConsole : public DialoguesSansFenetre {
 public:
  explicit DialoguesConsole(bool echo)
      : DialoguesSansFenetre(echo ? std::function<void(const QString&)>(
                                        [](const QString& t) { Ligne(t, stderr); })
                                  : nullptr) {}
};

}  // namespace tg::cli
