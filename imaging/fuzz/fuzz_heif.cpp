// The HEIC, HEIF and AVIF road on any bytes, as a file: the check before
// decoding, then libheif through the program's reader. It must end with a
// picture within the program's limits or a French refusal.
#include <cstdint>

#include "imaging/fuzz/FichierFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return tg::fuzz::EssayerFichier(data, size, "heic");
}
