#pragma once
// A move-only owner of one FreeImage bitmap. Copying is explicit
// (cAdvancedImagery::IO_Copy). An empty Bitmap is the "handle 0" of the system.
#include <utility>

struct FIBITMAP;

namespace tg {

class Bitmap {
 public:
  Bitmap() = default;
  explicit Bitmap(FIBITMAP* dib) : dib_(dib) {}
  ~Bitmap() { Reset(); }
  Bitmap(const Bitmap&) = delete;
  Bitmap& operator=(const Bitmap&) = delete;
  Bitmap(Bitmap&& o) noexcept : dib_(std::exchange(o.dib_, nullptr)) {}
  Bitmap& operator=(Bitmap&& o) noexcept {
    if (this != &o) {
      Reset();
      dib_ = std::exchange(o.dib_, nullptr);
    }
    return *this;
  }

  explicit operator bool() const { return dib_ != nullptr; }
  bool Vide() const { return dib_ == nullptr; }
  // Only imaging/ looks inside.
  FIBITMAP* Get() const { return dib_; }
  FIBITMAP* Release() { return std::exchange(dib_, nullptr); }
  void Reset(FIBITMAP* dib = nullptr);  // unloads the one held

 private:
  FIBITMAP* dib_ = nullptr;
};

// A bitmap of that size and depth with no pixels, as the library's header-only
// loads give: sizes and metadata only. Null when it cannot be allocated.
FIBITMAP* AllouerEntete(int largeur, int hauteur, int bpp);

}  // namespace tg
