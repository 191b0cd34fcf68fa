// The EXIF block of an APP1 segment: read, format every value, rebuild, read again.
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
  return 0;
}
