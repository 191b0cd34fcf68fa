#pragma once
// The pixel loops of the filters window, on a plain 24-bit buffer, with no
// imaging library involved. For each pixel and each channel a sum S and a
// divisor N are built from the pixel and its neighbours; a neighbour outside
// the picture is left out, so N changes at the edges. The result S / N goes to
// the nearest integer (ties to even) and is limited to 0..255. Sources are
// always the pixels as they were before the effect.
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tg {

// Rows top to bottom, 3 bytes per pixel in the order red, green, blue, no
// padding between rows.
struct ImageRVB {
  int largeur = 0;
  int hauteur = 0;
  std::vector<uint8_t> octets;  // largeur * hauteur * 3

  ImageRVB() = default;
  ImageRVB(int l, int h) : largeur(l), hauteur(h), octets(static_cast<std::size_t>(l) * h * 3, 0) {}
  uint8_t* Pixel(int x, int y) { return &octets[(static_cast<std::size_t>(y) * largeur + x) * 3]; }
  const uint8_t* Pixel(int x, int y) const {
    return &octets[(static_cast<std::size_t>(y) * largeur + x) * 3];
  }
};

// normal: the pixel and its eight neighbours; otherwise ("Plus") the pixel and
// its four orthogonal neighbours only.
void Flou(ImageRVB& image, bool normal);
// normal: 5 x the pixel minus its four orthogonal neighbours, N = 5 - count;
// otherwise: 15 x the pixel minus its eight neighbours, N = 15 - count.
void Nettete(ImageRVB& image, bool normal);
// The pixel and (x + 1) add, (x - 1) subtracts; fort adds (x + 2) and
// subtracts (x - 2) as well. Where N comes to 0 the channel keeps its value.
// gris: the three channels become 0.33 R + 0.59 G + 0.11 B of the results.
void BasRelief(ImageRVB& image, bool fort, bool gris);
// As BasRelief, except that the pixel itself subtracts.
void Gravure(ImageRVB& image, bool fort, bool gris);
// Percentages -100..100 per channel: F = |p| x 0.03 + 1; p >= 0 multiplies by
// F (limited to 255), p < 0 divides by F; |p| = 100 gives 255 or 0 outright.
// False, with the picture untouched, when a percentage lies outside -100..100.
bool FiltreRVB(ImageRVB& image, float rouge, float vert, float bleu);

// S / N to the nearest integer, ties to even, limited to 0..255. N must not be 0.
int QuotientBorne(int somme, int diviseur);
// 0.33 R + 0.59 G + 0.11 B to the nearest integer (ties to even), limited to 255.
int NiveauGris(int r, int g, int b);

}  // namespace tg
