#include "imaging/PixelEffects.h"

#include <algorithm>
#include <cmath>
#include <array>
#include <initializer_list>
#include <thread>
#include <vector>

namespace tg {

namespace {

struct Terme {
  int dx;
  int dy;
  int poids;  // added to S as poids x c and to N as poids
};

// Runs f(premiereLigne, finLignes) over the rows, on every core for a large
// picture: each row reads only the picture as it was before the effect.
template <typename F>
void ParLignes(int hauteur, long long pixels, F f) {
  const int coeurs = std::max(1u, std::thread::hardware_concurrency());
  const int parts = pixels < 200000 ? 1 : std::min(coeurs, std::max(1, hauteur / 16));
  if (parts <= 1) {
    f(0, hauteur);
    return;
  }
  std::vector<std::thread> fils;
  const int pas = (hauteur + parts - 1) / parts;
  for (int d = pas; d < hauteur; d += pas) fils.emplace_back(f, d, std::min(hauteur, d + pas));
  f(0, std::min(hauteur, pas));
  for (std::thread& t : fils) t.join();
}

// Applies a weighted neighbourhood; where N comes to 0 the channel keeps its
// previous value (only the relief effects can get there). Inside the picture,
// away from its edges, N is the same for every pixel, so S / N is read from a
// table built with QuotientBorne: the same values, without a division each.
void Convoluer(ImageRVB& image, std::initializer_list<Terme> termes, bool gris) {
  const ImageRVB avant = image;
  const int l = image.largeur, h = image.hauteur;
  int marge = 0, nInterieur = 0, sMin = 0, sMax = 0;
  for (const Terme& t : termes) {
    marge = std::max({marge, std::abs(t.dx), std::abs(t.dy)});
    nInterieur += t.poids;
    (t.poids < 0 ? sMin : sMax) += t.poids * 255;
  }
  std::vector<uint8_t> table;
  if (nInterieur != 0) {
    table.resize(size_t(sMax - sMin + 1));
    for (int v = sMin; v <= sMax; ++v) table[size_t(v - sMin)] = uint8_t(QuotientBorne(v, nInterieur));
  }
  struct Decalage {
    std::ptrdiff_t octets;
    int poids;
  };
  std::vector<Decalage> decalages;
  for (const Terme& t : termes) decalages.push_back({(std::ptrdiff_t(t.dy) * l + t.dx) * 3, t.poids});

  const auto general = [&](int x, int y) {
    int somme[3] = {0, 0, 0};
    int diviseur = 0;
    for (const Terme& t : termes) {
      const int nx = x + t.dx;
      const int ny = y + t.dy;
      if (nx < 0 || ny < 0 || nx >= l || ny >= h) continue;
      const uint8_t* source = avant.Pixel(nx, ny);
      for (int c = 0; c < 3; ++c) somme[c] += t.poids * source[c];
      diviseur += t.poids;
    }
    int valeurs[3];
    for (int c = 0; c < 3; ++c) valeurs[c] = diviseur == 0 ? avant.Pixel(x, y)[c] : QuotientBorne(somme[c], diviseur);
    return std::array<int, 3>{valeurs[0], valeurs[1], valeurs[2]};
  };
  const auto ecrire = [&](uint8_t* cible, std::array<int, 3> v) {
    if (gris) v[0] = v[1] = v[2] = NiveauGris(v[0], v[1], v[2]);
    for (int c = 0; c < 3; ++c) cible[c] = static_cast<uint8_t>(v[c]);
  };
  ParLignes(h, static_cast<long long>(l) * h, [&](int y0, int y1) {
    for (int y = y0; y < y1; ++y) {
      const bool ligneInterieure = !table.empty() && y >= marge && y < h - marge;
      for (int x = 0; x < l; ++x) {
        if (ligneInterieure && x >= marge && x < l - marge) {
          const uint8_t* centre = avant.Pixel(x, y);
          int somme[3] = {0, 0, 0};
          for (const Decalage& d : decalages) {
            const uint8_t* s = centre + d.octets;
            somme[0] += d.poids * s[0];
            somme[1] += d.poids * s[1];
            somme[2] += d.poids * s[2];
          }
          ecrire(image.Pixel(x, y), {table[size_t(somme[0] - sMin)], table[size_t(somme[1] - sMin)],
                                     table[size_t(somme[2] - sMin)]});
        } else {
          ecrire(image.Pixel(x, y), general(x, y));
        }
      }
    }
  });
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
