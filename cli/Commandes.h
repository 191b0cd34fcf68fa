#pragma once
// Commands of the headless tool. Each Commande*.cpp registers its command with
// a static Enregistrement; main dispatches on the first argument.
//
// Two executables share this: tessellographe-cli holds the commands that
// need the metadata library alone (infos, commentaire) and starts in a few
// milliseconds; every other command (and the usage text) is handed, with the
// same arguments, to tessellographe-cli-complet beside it, which holds them
// all. Only the commands that draw start a GUI application.
#include <QStringList>
#include <functional>
#include <utility>
#include <vector>

namespace tg::cli {

// Exit statuses: 0 done, 2 bad usage, 3 refused (a French message on stderr).
using Commande = std::function<int(const QStringList& arguments)>;

enum class Dessin { Non, Oui };

// What `COMMANDE --help` prints after the usage line, and the manual page.
struct Aide {
  const char* resume;  // what the command does, in a sentence or two
  std::vector<std::pair<const char*, const char*>> options;  // option, what it does
};

struct Enregistrement {
  Enregistrement(const char* nom, const char* usage, Aide aide, Commande commande, Dessin dessin = Dessin::Non);
};

}  // namespace tg::cli
