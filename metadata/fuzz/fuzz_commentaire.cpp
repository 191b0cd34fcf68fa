// The comment read past its segment (up to the end of the file), and written back.
#include <cstdint>
#include <cstdlib>

#include "metadata/CJPEG.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tg::meta;
  if (size < 1) return 0;
  // The first byte places the marker; the rest is the file.
  const QByteArray fichier(reinterpret_cast<const char*>(data) + 1, qsizetype(size - 1));
  CJPEGComment c;
  c.ReadComment(fichier, CMarker{0xFEFF, 0, int64_t(data[0]) + 1});
  EcrivainOctets e;
  if (!c.WriteComment(e)) return 0;
  const QByteArray& segment = e.donnees();
  if (segment.size() % 2 != 0) std::abort();
  if (!segment.isEmpty()) {
    CJPEGComment relu;
    if (!relu.ReadComment(segment, CMarker{0xFEFF, segment.size(), 1})) std::abort();
    // Leaving out the pairs FF DB may make new ones: such a text reads back shorter.
    if (!c.Texte().contains(QString(QChar(0xFF)) + QChar(0xDB)) && relu.Texte() != c.Texte())
      std::abort();
  }
  return 0;
}
