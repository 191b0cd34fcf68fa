// The camera RAW road on any bytes, as a file named as a NEF (so that any
// TIFF-shaped input is taken for a RAW): the check before decoding, then
// LibRaw through the program's reader. It must end with a picture within the
// program's limits or a French refusal.
#include <cstdint>

#include "imaging/fuzz/FichierFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return tg::fuzz::EssayerFichier(data, size, "nef");
}
