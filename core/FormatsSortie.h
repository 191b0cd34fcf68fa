#pragma once
// The five output formats, indexed by ChoixFormat.
#include <array>

namespace tg {

struct FormatSortie {
  int largeur;            // pixels
  int hauteur;            // pixels
  int couleur;            // 0xBBGGRR, marks PicFormat(i) and lblFormatSortie
  const char* infoBulle;  // tooltip of PicFormat(i)
};

// Format 1 is 750 wide in all computing; its button says 756, and stays so.
inline constexpr std::array<FormatSortie, 5> FormatsSortie = {{
    {640, 480, 0x0080FF, "Sortie en 640 x 480"},
    {750, 562, 0xFFFFC0, "Sortie en 756 x 562"},
    {800, 600, 0xC0FFC0, "Sortie en 800 x 600"},
    {1024, 768, 0xC0FFFF, "Sortie en 1024 x 768"},
    {1152, 864, 0xC0C0FF, "Sortie en 1152 x 864"},
}};

}  // namespace tg
