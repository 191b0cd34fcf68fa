#include "imaging/BibliothequeDynamique.h"

#include <dlfcn.h>

#include <mutex>

namespace tg {

namespace {
std::mutex g_verrou;
}

BibliothequeDynamique::BibliothequeDynamique(const char* soname, const char* paquet)
    : soname_(soname), paquet_(paquet) {}

bool BibliothequeDynamique::Ouvrir(QString& erreur) {
  const std::lock_guard<std::mutex> verrou(g_verrou);
  if (!essaye_) {
    essaye_ = true;
    // Global, so that what it loads in turn finds it; now, so that a missing
    // symbol is known here rather than in the middle of a decoding.
    poignee_ = dlopen(soname_, RTLD_NOW | RTLD_GLOBAL);
    if (poignee_ == nullptr) {
      const char* raison = dlerror();
      echec_ = QStringLiteral("La bibliothèque %1 (paquet %2) manque : %3")
                   .arg(QLatin1String(soname_), QLatin1String(paquet_),
                        raison ? QString::fromLocal8Bit(raison) : QStringLiteral("introuvable"));
    }
  }
  if (poignee_ == nullptr) erreur = echec_;
  return poignee_ != nullptr;
}

void* BibliothequeDynamique::Symbole(const char* nom, QString& erreur) {
  if (!Ouvrir(erreur)) return nullptr;
  void* adresse = dlsym(poignee_, nom);
  if (adresse == nullptr)
    erreur = QStringLiteral("La bibliothèque %1 n'a pas la fonction %2").arg(QLatin1String(soname_), QLatin1String(nom));
  return adresse;
}

}  // namespace tg
