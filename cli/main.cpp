// Headless tool: runs the main road and inspects files without a display.
#include <QCoreApplication>
#include <QStringList>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <unistd.h>

#include "cli/Commandes.h"
#include "version.h"

#ifndef TG_CLI_LEGER
#include <QApplication>

#include "platform/MessagesQt.h"
#endif

namespace tg::cli {

namespace {
struct Entree {
  std::string usage;
  Commande commande;
  Dessin dessin = Dessin::Non;
};
std::map<std::string, Entree>& Registre() {
  static std::map<std::string, Entree> registre;
  return registre;
}

#ifdef TG_CLI_LEGER
// Every command but the light ones is run by the full tool beside this one,
// with the same arguments; its exit status is this one's.
int Relayer(char** argv) {
  char chemin[4096];
  const ssize_t n = readlink("/proc/self/exe", chemin, sizeof chemin - 1);
  std::string complet = n > 0 ? std::string(chemin, size_t(n)) : std::string(argv[0]);
  complet = complet.substr(0, complet.rfind('/') + 1) + "tessellographe-cli-complet";
  execv(complet.c_str(), argv);
  std::fprintf(stderr, "Le programme %s ne peut pas être lancé : %s.\n", complet.c_str(), std::strerror(errno));
  return 3;
}
#else
void Usage() {
  std::fprintf(stderr, "Usage : tessellographe-cli --version\n");
  for (const auto& [nom, entree] : Registre())
    std::fprintf(stderr, "        tessellographe-cli %s\n", entree.usage.c_str());
}
#endif
}  // namespace

Enregistrement::Enregistrement(const char* nom, const char* usage, Commande commande, Dessin dessin) {
  Registre()[nom] = Entree{usage, std::move(commande), dessin};
}

}  // namespace tg::cli

int main(int argc, char** argv) {
  using namespace tg::cli;
  // A file size limit makes writes fail with a message rather than kill the tool.
  std::signal(SIGXFSZ, SIG_IGN);
  if (argc >= 2 && std::string(argv[1]) == "--version") {
    std::printf("%s %s\n", tg::TitreProgramme, tg::VersionTexte);
    return 0;
  }
  const auto entree = argc >= 2 ? Registre().find(argv[1]) : Registre().end();
#ifdef TG_CLI_LEGER
  if (entree == Registre().end()) return Relayer(argv);
  QStringList arguments;
  for (int i = 2; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
  const int statut = entree->second.commande(arguments);
  // Everything is written and closed: the process ends without unwinding
  // the libraries' global state, which costs more than the command itself.
  std::fflush(stdout);
  std::fflush(stderr);
  _exit(statut);
#else
  if (entree == Registre().end()) {
    Usage();
    return 2;
  }
  tg::FiltrerMessagesQt();
  QStringList arguments;
  if (entree->second.dessin == Dessin::Oui) {
    // Pictures and fonts need a GUI application; no display is used.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    arguments = QCoreApplication::arguments().mid(2);
    return entree->second.commande(arguments);
  }
  QCoreApplication app(argc, argv);
  arguments = QCoreApplication::arguments().mid(2);
  return entree->second.commande(arguments);
#endif
}
