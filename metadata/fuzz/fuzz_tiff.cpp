// A TIFF file: the chain of directories, the sub-directories, the rewrite
// unchanged (the same bytes) and after an edit (every byte read in place).
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
  if (sortie != fichier) std::abort();
  t.EXIF().AddModifyTag(Repertoire::IFD0, 0x0131, FmtAscii, QByteArray("fuzz tessellographe\0", 20));
  if (!t.Ecrire(sortie, nullptr)) return 0;
  // The original bytes stay where they were, the header's pointer aside.
  if (!sortie.mid(8).startsWith(fichier.mid(8))) std::abort();
  CTIFF relu;
  relu.LireOctets(sortie);
  if (relu.EXIF().NombreIfd() < 1 || relu.EXIF().ifd(0)->Trouver(0x0131) == nullptr) std::abort();
  return 0;
}
