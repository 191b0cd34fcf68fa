// Headless tool: runs the main road and inspects files without a display.
#include <QCoreApplication>
#include <QStringList>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <algorithm>
#include <map>
#include <string>
#include <unistd.h>

#include "cli/Commandes.h"
#include "version.h"

#ifndef TG_CLI_LEGER
#include <QGuiApplication>

#include "platform/MessagesQt.h"
#endif

namespace tg::cli {

namespace {
struct Entree {
  std::string usage;
  Aide aide;
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
  const std::string dossier = complet.substr(0, complet.rfind('/') + 1);
  // Beside this one in the build folder; with the helpers once installed.
  complet = dossier + "tessellographe-cli-complet";
  if (access(complet.c_str(), X_OK) != 0)
    complet = dossier + AssistantsRelatif + "/tessellographe-cli-complet";
  execv(complet.c_str(), argv);
  std::fprintf(stderr, "Le programme %s ne peut pas être lancé : %s.\n", complet.c_str(), std::strerror(errno));
  return 3;
}
#endif

bool DemandeAide(const char* argument) {
  return std::strcmp(argument, "--help") == 0 || std::strcmp(argument, "-h") == 0;
}

// `texte` cut into lines of at most `largeur` characters (UTF-8), each after
// `retrait` blanks, the first after `premier` when given; a word longer than
// the line stays whole.
std::string Envelopper(const std::string& texte, int retrait, int premier = -1, int largeur = 79) {
  std::string sortie, ligne;
  int longueur = 0;
  if (premier < 0) premier = retrait;
  int marge = premier;
  auto caracteres = [](const std::string& mot) {
    int n = 0;
    for (unsigned char c : mot) n += (c & 0xC0) != 0x80;
    return n;
  };
  size_t i = 0;
  while (i < texte.size()) {
    while (i < texte.size() && texte[i] == ' ') ++i;
    const size_t fin = std::min(texte.find(' ', i), texte.size());
    if (fin == i) break;
    const std::string mot = texte.substr(i, fin - i);
    i = fin;
    const int n = caracteres(mot);
    if (longueur > 0 && marge + longueur + 1 + n > largeur) {
      sortie += std::string(size_t(marge), ' ') + ligne + '\n';
      ligne.clear();
      longueur = 0;
      marge = retrait;
    }
    if (longueur > 0) {
      ligne += ' ';
      ++longueur;
    }
    ligne += mot;
    longueur += n;
  }
  if (longueur > 0) sortie += std::string(size_t(marge), ' ') + ligne + '\n';
  return sortie;
}

// "  name" then its text, on the same line when the name is short.
std::string Article(const std::string& nom, const std::string& texte) {
  if (nom.size() <= 3) return "  " + nom + std::string(4 - nom.size(), ' ') + Envelopper(texte, 6).substr(6);
  return "  " + nom + "\n" + Envelopper(texte, 6);
}

// A command's help on standard output: usage, what it does, its options.
void AideCommande(const Entree& e) {
  std::string texte = Envelopper("Usage : tessellographe-cli " + e.usage, 8, 0) + "\n" + Envelopper(e.aide.resume, 0);
  if (!e.aide.options.empty()) texte += "\nOptions :\n";
  for (const auto& [option, explication] : e.aide.options)
    texte += Article(option, explication);
  std::fputs(texte.c_str(), stdout);
}

#ifndef TG_CLI_LEGER
void Usage() {
  std::fprintf(stderr, "Usage : tessellographe-cli --version | --help\n");
  for (const auto& [nom, entree] : Registre())
    std::fprintf(stderr, "        tessellographe-cli %s\n", entree.usage.c_str());
}

const char* const kDescription =
    "Tessellographe sans fenêtre : la route principale du programme (photo redimensionnée, cartouche avec "
    "barre d'échelle, JPEG sous le poids maximal dont le bloc de commentaire porte l'étalonnage), les tables "
    "de mesure, et la lecture des fichiers (échelle, métadonnées, commentaire).";
const std::pair<const char*, const char*> kStatuts[] = {
    {"0", "fait"},
    {"2", "mauvais usage : commande, option ou valeur inconnue ou incomplète ; l'usage est rappelé"},
    {"3", "refus : fichier illisible ou abîmé, valeur refusée par les règles du programme, image trop "
          "lourde, écriture impossible ; un message en français le dit sur la sortie d'erreur"}};
const std::pair<const char*, const char*> kEnvironnement[] = {
    {"TESSELLOGRAPHE_HOME", "le dossier du programme (options, tables de mesure) ; sinon "
                            "~/.local/share/Tessellographe"},
    {"TESSELLOGRAPHE_DEBUG=1", "laisse passer les messages de Qt sur la sortie d'erreur"},
    {"TESSELLOGRAPHE_CHRONO=1", "formater donne le temps et la mémoire de chaque étape sur la sortie d'erreur"}};

void AideGenerale() {
  std::string texte =
      "Usage : tessellographe-cli COMMANDE [options]\n"
      "        tessellographe-cli COMMANDE --help\n"
      "        tessellographe-cli --version\n\n" +
      Envelopper(kDescription, 0) + "\nCommandes :\n";
  for (const auto& [nom, e] : Registre()) texte += Article(nom, e.aide.resume);
  texte += "\nStatut de sortie :\n";
  for (const auto& [code, sens] : kStatuts) texte += Article(code, sens);
  texte += "\nEnvironnement :\n";
  for (const auto& [nom, sens] : kEnvironnement) texte += Article(nom, sens);
  std::fputs(texte.c_str(), stdout);
}

// Text for the manual page's source: backslashes doubled, a leading dot or
// quote made plain; `options` also makes hyphens the minus sign of options.
std::string Roff(const std::string& texte, bool options = false) {
  std::string r;
  for (char c : texte) {
    if (c == '\\') r += "\\e";
    else if (c == '-' && options) r += "\\-";
    else r += c;
  }
  if (!r.empty() && (r[0] == '.' || r[0] == '\'')) r = "\\&" + r;
  return r;
}

// The manual page, from the same texts as --help.
int PageManuel(const char* chemin) {
  std::string m = ".TH TESSELLOGRAPHE\\-CLI 1 \"\" \"" + std::string(TitreProgramme) + " " + VersionTexte +
                  "\" \"Commandes\"\n"
                  ".nh\n.ad l\n"
                  ".SH NOM\ntessellographe\\-cli \\- Tessellographe sans fenêtre : formater, étalonner et lire "
                  "des photomicrographies\n"
                  ".SH SYNOPSIS\n";
  for (const auto& [nom, e] : Registre()) m += ".B tessellographe\\-cli\n" + Roff(e.usage, true) + "\n.br\n";
  m += ".B tessellographe\\-cli\n.I COMMANDE\n\\-\\-help\n.br\n.B tessellographe\\-cli\n\\-\\-version\n";
  m += ".SH DESCRIPTION\n" + Roff(kDescription) + "\n.PP\n";
  m += "Les commandes qui dessinent (formater, echantillon) n'utilisent aucun écran. Une photo JPEG est "
       "décodée à l'échelle DCT la plus petite qui laisse deux fois la taille de sortie.\n";
  m += ".SH COMMANDES\n";
  for (const auto& [nom, e] : Registre()) {
    m += ".SS " + nom + "\n.B tessellographe\\-cli " + Roff(e.usage, true) + "\n.PP\n" + Roff(e.aide.resume) +
         "\n";
    for (const auto& [option, explication] : e.aide.options)
      m += ".TP\n.B " + Roff(option, true) + "\n" + Roff(explication) + "\n";
  }
  m += ".SH \"STATUT DE SORTIE\"\n";
  for (const auto& [code, sens] : kStatuts) m += ".TP\n.B " + std::string(code) + "\n" + Roff(sens) + "\n";
  m += ".SH ENVIRONNEMENT\n";
  for (const auto& [nom, sens] : kEnvironnement) m += ".TP\n.B " + Roff(nom) + "\n" + Roff(sens) + "\n";
  m += ".SH EXEMPLES\n.nf\n"
       "tessellographe\\-cli echantillon photo.jpg\n"
       "tessellographe\\-cli tables ajouter \\-\\-modele APN\\-Demo \\-\\-largpix 2272 "
       "\\-\\-micro Micro\\-A \\-\\-config \"Fond clair\" \\-\\-obj 40 \\-\\-pix 400 \\-\\-mic 100\n"
       "tessellographe\\-cli formater photo.jpg \\-o sortie.jpg \\-\\-table 1 \\-\\-objectif 40 "
       "\\-\\-longueur auto \\-\\-titre \"Navicula sp.\"\n"
       "tessellographe\\-cli echelle sortie.jpg \\-\\-json\n"
       ".fi\n"
       ".SH \"VOIR AUSSI\"\n.BR tessellographe (1)\n";
  FILE* f = std::fopen(chemin, "w");
  if (f == nullptr || std::fputs(m.c_str(), f) < 0 || std::fclose(f) != 0) {
    std::fprintf(stderr, "La page de manuel ne peut pas être écrite : %s\n", chemin);
    return 3;
  }
  return 0;
}
#endif
}  // namespace

Enregistrement::Enregistrement(const char* nom, const char* usage, Aide aide, Commande commande, Dessin dessin) {
  Registre()[nom] = Entree{usage, std::move(aide), std::move(commande), dessin};
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
  if (entree != Registre().end())
    for (int i = 2; i < argc; ++i)
      if (DemandeAide(argv[i])) {
        AideCommande(entree->second);
        return 0;
      }
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
  if (argc == 2 && DemandeAide(argv[1])) {
    AideGenerale();
    return 0;
  }
  if (argc == 3 && std::strcmp(argv[1], "--man") == 0) return PageManuel(argv[2]);
  if (entree == Registre().end()) {
    Usage();
    return 2;
  }
  tg::FiltrerMessagesQt();
  QStringList arguments;
  if (entree->second.dessin == Dessin::Oui) {
    // Pictures and fonts need a GUI application, not widgets; no display is
    // used. The minimal platform with the system's fonts draws the same
    // pixels as the offscreen one and starts without its X11 and GL setup.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "minimal:enable_fonts");
    QGuiApplication app(argc, argv);
    arguments = QCoreApplication::arguments().mid(2);
    return entree->second.commande(arguments);
  }
  QCoreApplication app(argc, argv);
  arguments = QCoreApplication::arguments().mid(2);
  return entree->second.commande(arguments);
#endif
}
