// IPTC: the Photoshop resources of an APP13 segment, the datasets, and the
// rewrite, which must read back with the same datasets; the same bytes as
// the value of a TIFF tag.
#include <cstdint>
#include <cstdlib>

#include "metadata/CIPTC.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tg::meta;
  const QByteArray donnees =
      QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)).left(65000);
  QByteArray fichier("\xFF\xD8\xFF\xED", 4);
  const int longueur = 2 + 14 + int(donnees.size());
  fichier += char(longueur >> 8);
  fichier += char(longueur & 0xFF);
  fichier += QByteArray("Photoshop 3.0\0", 14) + donnees;
  CIPTC iptc;
  iptc.ReadIPTCJPEG(fichier, {CMarker{0xEDFF, longueur + 2, 3}});
  iptc.AddModifyTagString(2, 25, QStringLiteral("mot"));
  EcrivainOctets e;
  e.u8(0xFF);
  e.u8(0xD8);
  if (!iptc.WriteIPTCDataJPEG(e)) return 0;
  // The segments written, found again by the walk.
  std::vector<CMarker> segments;
  const QByteArray& ecrit = e.donnees();
  for (qsizetype p = 2; p + 4 <= ecrit.size();) {
    const int64_t l = (uint8_t(ecrit[p + 2]) << 8) | uint8_t(ecrit[p + 3]);
    segments.push_back(CMarker{0xEDFF, l + 2, p + 1});
    p += l + 2;
  }
  CIPTC relu;
  relu.ReadIPTCJPEG(e.donnees(), segments);
  if (relu.Tags.size() != iptc.Tags.size()) std::abort();
  for (size_t i = 0; i < relu.Tags.size(); ++i)
    if (relu.Tags[i].Data != iptc.Tags[i].Data) std::abort();
  CIPTC tiff;
  tiff.LireDonnees(donnees);
  return 0;
}
