#include "imaging/Bitmap.h"

#include <FreeImage.h>

namespace tg {

void Bitmap::Reset(FIBITMAP* dib) {
  if (dib_ != nullptr && dib_ != dib) FreeImage_Unload(dib_);
  dib_ = dib;
}

}  // namespace tg
