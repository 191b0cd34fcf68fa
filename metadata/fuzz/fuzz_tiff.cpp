// A TIFF file: the chain of directories, the sub-directories, the rewrite.
#include <cstdint>
#include <cstdlib>

#include "metadata/CTIFF.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tg::meta;
  const QByteArray fichier(reinterpret_cast<const char*>(data), qsizetype(size));
  CTIFF t;
  t.LireOctets(fichier);
  QByteArray sortie;
  if (!t.Ecrire(sortie, nullptr)) return 0;
  // The original bytes stay in front of the rebuilt directories.
  if (!sortie.mid(8).startsWith(fichier.mid(8))) std::abort();
  CTIFF relu;
  relu.LireOctets(sortie);
  if (relu.EXIF().NombreIfd() < 1) std::abort();
  return 0;
}
