// Headless tool: runs the main road and inspects files without a display.
#include <QCoreApplication>
#include <QApplication>
#include <cstdio>
#include <map>
#include <string>

#include "cli/Commandes.h"
#include "version.h"

namespace tg::cli {

namespace {
struct Entree {
  std::string usage;
  Commande commande;
};
std::map<std::string, Entree>& Registre() {
  static std::map<std::string, Entree> registre;
  return registre;
}

void Usage() {
  std::fprintf(stderr, "Usage : tessellographe-cli --version\n");
  for (const auto& [nom, entree] : Registre())
    std::fprintf(stderr, "        tessellographe-cli %s\n", entree.usage.c_str());
}
}  // namespace

Enregistrement::Enregistrement(const char* nom, const char* usage, Commande commande) {
  Registre()[nom] = Entree{usage, std::move(commande)};
}

}  // namespace tg::cli

int main(int argc, char** argv) {
  using namespace tg::cli;
  if (argc >= 2 && std::string(argv[1]) == "--version") {
    std::printf("%s %s\n", tg::TitreProgramme, tg::VersionTexte);
    return 0;
  }
  if (argc < 2 || Registre().count(argv[1]) == 0) {
    Usage();
    return 2;
  }
  // Pictures and fonts need a GUI application; no display is used.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QStringList arguments = QCoreApplication::arguments().mid(2);
  return Registre()[argv[1]].commande(arguments);
}
