#include "tests/support/DialoguesScriptes.h"

namespace tg::test {

namespace {
template <typename T>
bool Prendre(std::deque<T>& file, T& valeur) {
  if (file.empty()) return false;
  valeur = file.front();
  file.pop_front();
  return true;
}
}  // namespace

void DialoguesScriptes::Message(const QString& titre, const QString& texte, Icone icone) {
  appels.push_back({"Message", titre, texte, int(icone)});
}

Reponse DialoguesScriptes::Question(const QString& titre, const QString& texte, Boutons boutons,
                                    Reponse defaut, Icone icone) {
  appels.push_back({"Question", titre, texte, int(icone), {}, defaut, boutons});
  Reponse r = defaut;
  Prendre(reponses, r);
  return r;
}

std::optional<QString> DialoguesScriptes::Saisie(const QString& titre, const QString& invite,
                                                 const QString&) {
  appels.push_back({"Saisie", titre, invite});
  QString s;
  if (!Prendre(chaines, s)) return std::nullopt;
  return s;
}

std::optional<QString> DialoguesScriptes::Choix(const QString& titre, const QString& invite,
                                                const QStringList& elements, int) {
  appels.push_back({"Choix", titre, invite});
  elementsChoix = elements;
  QString s;
  if (!Prendre(chaines, s)) return std::nullopt;
  // The first element that begins with the scripted text, as a user picks a line.
  for (const QString& e : elements)
    if (e.startsWith(s)) return e;
  return s;
}

QString DialoguesScriptes::FichierOuvrir(const QString& titre, const QString& dossier,
                                         const QString&) {
  appels.push_back({"FichierOuvrir", titre, dossier});
  QString s;
  Prendre(chaines, s);
  return s;
}

QString DialoguesScriptes::FichierEnregistrer(const QString& titre, const QString& dossier,
                                              const QString& nomDefaut, const QString&) {
  appels.push_back({"FichierEnregistrer", titre, dossier + nomDefaut});
  QString s;
  Prendre(chaines, s);
  return s;
}

QString DialoguesScriptes::Dossier(const QString& titre, const QString& depart) {
  appels.push_back({"Dossier", titre, depart});
  QString s;
  Prendre(chaines, s);
  return s;
}

int DialoguesScriptes::Couleur(int initiale) {
  appels.push_back({"Couleur", {}, QString::number(initiale)});
  int c = -1;
  Prendre(couleurs, c);
  return c;
}

std::optional<QFont> DialoguesScriptes::Police(const QFont& initiale) {
  appels.push_back({"Police", {}, initiale.family()});
  QFont f;
  if (!Prendre(polices, f)) return std::nullopt;
  return f;
}

void DialoguesScriptes::MsgBoxEx(const Bulle& bulle, int& nePlusAfficher) {
  appels.push_back({"MsgBoxEx", bulle.titre, bulle.texte, int(bulle.icone), bulle.texteLong});
  bool coche = false;
  if (Prendre(casesCochees, coche) && coche) nePlusAfficher = 1;
}

QStringList DialoguesScriptes::Textes() const {
  QStringList t;
  for (const auto& a : appels) t << a.texte;
  return t;
}

}  // namespace tg::test
