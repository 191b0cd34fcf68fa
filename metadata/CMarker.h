#pragma once
// One segment of a JPEG file, as the segment walk finds it.
#include <cstdint>

namespace tg::meta {

struct CMarker {
  // The two marker bytes read as a little-endian number: FF E1 is 0xE1FF.
  uint16_t Marker = 0;
  // The whole segment, marker included: the length field + 2.
  int64_t Length = 0;
  // 1-based position of the marker's first byte in the file.
  int64_t lpData = 0;

  // The marker's second byte (E1 for APP1).
  uint8_t Code() const { return uint8_t(Marker >> 8); }
};

}  // namespace tg::meta
