// The JPEG segment walk, the dispatch of the segments and the rewrite: a
// rewritten file must walk again to the same scan data.
#include <cstdint>
#include <cstdlib>

#include "metadata/CJPEG.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tg::meta;
  const QByteArray fichier(reinterpret_cast<const char*>(data), qsizetype(size));
  CJPEG j;
  j.LireOctets(fichier);
  QByteArray sortie;
  if (!j.Ecrire(sortie, nullptr)) return 0;
  const ParcoursJPEG p = ParcourirSegments(sortie);
  if (p.positionScan == 0) std::abort();
  CJPEG relu;
  relu.LireOctets(sortie);
  // Leaving out the pairs FF DB may make new ones: such a text reads back shorter.
  const QString texte = j.JPEGComment().Texte();
  if (!texte.contains(QString(QChar(0xFF)) + QChar(0xDB)) && relu.JPEGComment().Texte() != texte)
    std::abort();
  return 0;
}
