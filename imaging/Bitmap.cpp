#include "imaging/Bitmap.h"

#include <FreeImage.h>

// Exported by the library for its own readers' header-only loads, but left
// out of Debian's public header: the signature of FreeImage 3.18.
extern "C" FIBITMAP* FreeImage_AllocateHeader(BOOL header_only, int width, int height, int bpp, unsigned red_mask,
                                              unsigned green_mask, unsigned blue_mask);

namespace tg {

void Bitmap::Reset(FIBITMAP* dib) {
  if (dib_ != nullptr && dib_ != dib) FreeImage_Unload(dib_);
  dib_ = dib;
}

FIBITMAP* AllouerEntete(int largeur, int hauteur, int bpp) {
  return FreeImage_AllocateHeader(TRUE, largeur, hauteur, bpp, 0, 0, 0);
}

}  // namespace tg
