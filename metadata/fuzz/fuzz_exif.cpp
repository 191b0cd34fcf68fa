// The EXIF block of an APP1 segment: read, format every value, write back,
// read again; then an edit, after which every value read must come back.
#include <cstdint>
#include <cstdlib>

#include "metadata/CExifJPEG.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tg::meta;
  const QByteArray bloc(reinterpret_cast<const char*>(data), qsizetype(size));
  CExifJPEG x;
  if (!x.ReadExif(bloc)) return 0;
  for (Repertoire r : {Repertoire::IFD0, Repertoire::IFD1, Repertoire::SubIFD, Repertoire::GPS,
                       Repertoire::Interop})
    for (const CExifDirEnt& e : x.Repertoire_(r)->Directories) {
      (void)e.GetDataFormatted();
      (void)e.GetDataVariant();
      (void)e.GetOrientation();
      (void)e.GetTagName();
    }
  (void)x.GetManufacturer();
  QByteArray segment;
  if (!x.WriteEXIF(segment) || segment.isEmpty()) return 0;
  CExifJPEG relu;
  if (!relu.ReadExif(segment.mid(4))) std::abort();
  if (relu.ifd(0)->Directories.size() != x.ifd(0)->Directories.size()) std::abort();

  CExifJPEG edite;
  edite.ReadExif(bloc);
  edite.AddModifyTag(Repertoire::IFD0, 0x0131, FmtAscii, QByteArray("fuzz tessellographe\0", 20));
  edite.AddModifyTag(Repertoire::SubIFD, 0x9286, FmtUndefined, QByteArray(40, 'u'));
  if (!edite.WriteEXIF(segment)) return 0;  // too large for a segment
  CExifJPEG apres;
  if (!apres.ReadExif(segment.mid(4))) std::abort();
  if (segment.mid(10 + 8, bloc.size() - 6 - 8) != bloc.mid(6 + 8)) std::abort();
  for (const CExifDirEnt& e : x.ifd(0)->Directories) {
    // The header's pointer to IFD0 is re-aimed: a value laid over it changes.
    const bool surEnTete = e.getDataLength() > 4 && uint32_t(e.OffsetToValue) < 8;
    if (e.Tag == 0x0131 || e.Tag == TagExifIFD || e.GetDataSize() == 0 || surEnTete ||
        e.getDataLength() != int64_t(e.GetDataSize()) * e.NumberOfComponent)
      continue;
    const CExifDirEnt* a = apres.ifd(0)->Trouver(e.Tag);
    if (a == nullptr || (x.ifd(0)->Trouver(e.Tag) == &e && a->GetData() != e.GetData())) std::abort();
  }
  return 0;
}
