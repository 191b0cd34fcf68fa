// The check of a picture file before decoding, on any bytes: it must end
// with a verdict, and a picture it lets through must have a size within the
// program's limits.
#include <cstdint>
#include <cstdlib>

#include "imaging/VerificationFichier.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const char* octets = reinterpret_cast<const char*>(data);
  for (const char* extension : {"jpg", "pcd", "nef", "heic"}) {
    const tg::VerificationImage v =
        tg::VerifierOctetsImage(octets, int64_t(size), QStringLiteral("f"), QLatin1String(extension));
    if (!v.Bon() && v.message.isEmpty()) std::abort();
    // A RAW's size may be left to LibRaw (0 here); any size given is within the limits.
    const bool sansTaille = v.type == tg::TypeFichierImage::RAW && v.largeur == 0;
    if (v.Bon() && !sansTaille &&
        (v.largeur < 1 || v.largeur > tg::kCoteMaxImage || v.hauteur > tg::kCoteMaxImage ||
         v.largeur * v.hauteur > tg::kPixelsMaxImage))
      std::abort();
  }
  return 0;
}
