#include "imaging/PixelEffects.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace tg {

namespace {

struct Terme {
  int dx;
  int dy;
  int poids;  // added to S as poids x c and to N as poids
};

// Applies a weighted neighbourhood; where N comes to 0 the channel keeps its
// previous value (only the relief effects can get there).
void Convoluer(ImageRVB& image, std::initializer_list<Terme> termes, bool gris) {
  const ImageRVB avant = image;
  for (int y = 0; y < image.hauteur; ++y) {
    for (int x = 0; x < image.largeur; ++x) {
      int somme[3] = {0, 0, 0};
      int diviseur = 0;
      for (const Terme& t : termes) {
        const int nx = x + t.dx;
        const int ny = y + t.dy;
        if (nx < 0 || ny < 0 || nx >= image.largeur || ny >= image.hauteur) continue;
        const uint8_t* source = avant.Pixel(nx, ny);
        for (int c = 0; c < 3; ++c) somme[c] += t.poids * source[c];
        diviseur += t.poids;
      }
      uint8_t* cible = image.Pixel(x, y);
      int valeurs[3];
      for (int c = 0; c < 3; ++c)
        valeurs[c] = diviseur == 0 ? avant.Pixel(x, y)[c] : QuotientBorne(somme[c], diviseur);
      if (gris) {
        const int g = NiveauGris(valeurs[0], valeurs[1], valeurs[2]);
        valeurs[0] = valeurs[1] = valeurs[2] = g;
      }
      for (int c = 0; c < 3; ++c) cible[c] = static_cast<uint8_t>(valeurs[c]);
    }
  }
}

void Relief(ImageRVB& image, bool fort, bool gris, int poidsPixel) {
  if (fort)
    Convoluer(image, {{0, 0, poidsPixel}, {1, 0, 1}, {-1, 0, -1}, {2, 0, 1}, {-2, 0, -1}}, gris);
  else
    Convoluer(image, {{0, 0, poidsPixel}, {1, 0, 1}, {-1, 0, -1}}, gris);
}

// One channel of the RGB filter; p already checked to lie in -100..100.
int CanalFiltre(int c, float p) {
  if (p == 0.0f) return c;
  const double f = std::fabs(static_cast<double>(p)) * 0.01 * 3 + 1;
  if (p > 0) {
    if (f == 4.0) return 255;
    return static_cast<int>(std::min(255.0, std::nearbyint(c * f)));
  }
  if (f == 4.0) return 0;
  return static_cast<int>(std::nearbyint(c / f));
}

}  // namespace

int QuotientBorne(int somme, int diviseur) {
  // An exact tie S / N = k + 0.5 is representable in a double, so the default
  // rounding mode (to nearest, ties to even) decides it correctly.
  const double q = std::nearbyint(static_cast<double>(somme) / diviseur);
  return static_cast<int>(std::clamp(q, 0.0, 255.0));
}

int NiveauGris(int r, int g, int b) {
  // In hundredths, so that ties are exact: 0.33 x 50 + 0.59 x 50 + 0.11 x 50
  // is 51.5 and must give 52, whatever the binary fractions would say.
  const int centiemes = 33 * r + 59 * g + 11 * b;
  int entier = centiemes / 100;
  const int reste = centiemes % 100;
  if (reste > 50 || (reste == 50 && entier % 2 == 1)) ++entier;
  return std::min(entier, 255);  // the weights add up to 1.03
}

void Flou(ImageRVB& image, bool normal) {
  if (normal)
    Convoluer(image,
              {{-1, -1, 1}, {0, -1, 1}, {1, -1, 1}, {-1, 0, 1}, {0, 0, 1}, {1, 0, 1}, {-1, 1, 1},
               {0, 1, 1}, {1, 1, 1}},
              false);
  else
    Convoluer(image, {{0, -1, 1}, {-1, 0, 1}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}}, false);
}

void Nettete(ImageRVB& image, bool normal) {
  if (normal)
    Convoluer(image, {{0, 0, 5}, {0, -1, -1}, {-1, 0, -1}, {1, 0, -1}, {0, 1, -1}}, false);
  else
    Convoluer(image,
              {{0, 0, 15}, {-1, -1, -1}, {0, -1, -1}, {1, -1, -1}, {-1, 0, -1}, {1, 0, -1},
               {-1, 1, -1}, {0, 1, -1}, {1, 1, -1}},
              false);
}

void BasRelief(ImageRVB& image, bool fort, bool gris) { Relief(image, fort, gris, 1); }

void Gravure(ImageRVB& image, bool fort, bool gris) { Relief(image, fort, gris, -1); }

bool FiltreRVB(ImageRVB& image, float rouge, float vert, float bleu) {
  const float p[3] = {rouge, vert, bleu};
  for (float v : p)
    if (!(v >= -100.0f && v <= 100.0f)) return false;  // NaN fails too
  if (rouge == 0.0f && vert == 0.0f && bleu == 0.0f) return true;
  const size_t n = image.octets.size();
  for (size_t i = 0; i + 2 < n; i += 3)
    for (int c = 0; c < 3; ++c) image.octets[i + c] = static_cast<uint8_t>(CanalFiltre(image.octets[i + c], p[c]));
  return true;
}

}  // namespace tg
