// Maker notes: recognition, reading in both byte orders, and the block laid
// out again for a new place, whose length must not depend on that place and
// which must read back with as many entries.
#include <cstdint>
#include <cstdlib>

#include "metadata/CMakerNote.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tg::meta;
  if (size < 2) return 0;
  const int fabricant = data[0] % 16 - 1;  // -1 to 14
  const Ordre ordre = (data[1] & 1) ? Ordre::Motorola : Ordre::Intel;
  const QByteArray note(reinterpret_cast<const char*>(data + 2), qsizetype(size - 2));
  // The note inside a TIFF structure, 8 bytes behind its header.
  const QByteArray bloc = QByteArray(8, '\0') + note;
  CMakerNote n;
  n.Manufacture = fabricant;
  if (!n.ReadIFD(LecteurOctets(bloc), 8, note, ordre)) return 0;
  for (const CExifDirEnt& e : n.Directories) (void)n.GetMakerNoteFormatted(e);
  const QByteArray ici = n.AdjustMakerNote(8);
  const QByteArray ailleurs = n.AdjustMakerNote(1000);
  if (ici.size() != ailleurs.size()) std::abort();
  const QByteArray nouveau = QByteArray(8, '\0') + ici;
  CMakerNote relu;
  relu.Manufacture = fabricant;
  if (!relu.ReadIFD(LecteurOctets(nouveau), 8, ici, ordre)) std::abort();
  if (relu.Directories.size() != n.Directories.size()) std::abort();
  return 0;
}
