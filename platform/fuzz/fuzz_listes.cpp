// The list files on any bytes: what is read, written and read again comes
// back the same.
#include <cstdint>
#include <cstdlib>

#include "platform/Fichiers.h"
#include "platform/fuzz/Fichier.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QString chemin = tg::fuzz::Ecrire("liste.dat", data, size);
  QStringList lus, relus, encore;
  if (!tg::LireListe(chemin, lus)) return 0;
  QStringList lignes;
  (void)tg::LireLignes(chemin, lignes);
  // A first round trip settles what the code page cannot hold; then nothing moves.
  if (!tg::EcrireListe(chemin, lus) || !tg::LireListe(chemin, relus)) return 0;
  if (!tg::EcrireListe(chemin, relus) || !tg::LireListe(chemin, encore)) std::abort();
  if (encore != relus) std::abort();
  return 0;
}
