#pragma once
// Commands of the headless tool. Each Commande*.cpp registers its command with
// a static Enregistrement; main dispatches on the first argument.
#include <QStringList>
#include <functional>

namespace tg::cli {

// Exit statuses: 0 done, 2 bad usage, 3 refused (a French message on stderr).
using Commande = std::function<int(const QStringList& arguments)>;

struct Enregistrement {
  Enregistrement(const char* nom, const char* usage, Commande commande);
};

}  // namespace tg::cli
