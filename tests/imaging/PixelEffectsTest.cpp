// The filter loops on small pictures, each expected value worked out by hand
// from the S / N definition written beside it.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "imaging/PixelEffects.h"

namespace tg {
namespace {

using Pixel = std::array<int, 3>;

// A one-row-per-vector picture; each pixel given as {R, G, B}.
ImageRVB Faire(const std::vector<std::vector<Pixel>>& lignes) {
  ImageRVB image(static_cast<int>(lignes[0].size()), static_cast<int>(lignes.size()));
  for (int y = 0; y < image.hauteur; ++y)
    for (int x = 0; x < image.largeur; ++x)
      for (int c = 0; c < 3; ++c) image.Pixel(x, y)[c] = static_cast<uint8_t>(lignes[y][x][c]);
  return image;
}

// One channel only; the two others are set to 0.
ImageRVB FaireRouge(const std::vector<std::vector<int>>& lignes) {
  std::vector<std::vector<Pixel>> pixels;
  for (const auto& l : lignes) {
    pixels.emplace_back();
    for (int v : l) pixels.back().push_back({v, 0, 0});
  }
  return Faire(pixels);
}

int Rouge(const ImageRVB& image, int x, int y) { return image.Pixel(x, y)[0]; }
Pixel Lire(const ImageRVB& image, int x, int y) {
  const uint8_t* p = image.Pixel(x, y);
  return {p[0], p[1], p[2]};
}

const std::vector<std::vector<int>> kGrille = {{10, 20, 30}, {40, 50, 60}, {70, 80, 90}};

TEST(PixelEffects, BlurNormalDividesByTheNeighboursPresent) {
  ImageRVB image = FaireRouge(kGrille);
  Flou(image, true);
  EXPECT_EQ(Rouge(image, 0, 0), (10 + 20 + 40 + 50) / 4);
  EXPECT_EQ(Rouge(image, 1, 0), (10 + 20 + 30 + 40 + 50 + 60) / 6);
  EXPECT_EQ(Rouge(image, 1, 1), 450 / 9);
  EXPECT_EQ(Rouge(image, 2, 2), (50 + 60 + 80 + 90) / 4);
  EXPECT_EQ(Rouge(image, 0, 1), (10 + 20 + 40 + 50 + 70 + 80) / 6);
  EXPECT_EQ(Lire(image, 1, 1)[1], 0);
}

TEST(PixelEffects, BlurPlusUsesTheCrossAndRoundsTiesToEven) {
  // 4 x 1: no vertical neighbours at all.
  ImageRVB image = FaireRouge({{2, 3, 0, 7}});
  Flou(image, false);
  EXPECT_EQ(Rouge(image, 0, 0), 2);  // (2 + 3) / 2 = 2.5 -> 2
  EXPECT_EQ(Rouge(image, 1, 0), 2);  // (2 + 3 + 0) / 3 = 1.67
  EXPECT_EQ(Rouge(image, 2, 0), 3);  // (3 + 0 + 7) / 3 = 3.33
  EXPECT_EQ(Rouge(image, 3, 0), 4);  // (0 + 7) / 2 = 3.5 -> 4

  ImageRVB grille = FaireRouge(kGrille);
  Flou(grille, false);
  EXPECT_EQ(Rouge(grille, 0, 0), 23);  // (10 + 20 + 40) / 3 = 23.3
  EXPECT_EQ(Rouge(grille, 1, 1), (20 + 40 + 50 + 60 + 80) / 5);
}

TEST(PixelEffects, SharpenNormalAndPlus) {
  ImageRVB normal = FaireRouge(kGrille);
  Nettete(normal, true);
  EXPECT_EQ(Rouge(normal, 1, 1), 5 * 50 - (20 + 40 + 60 + 80));  // N = 5 - 4
  EXPECT_EQ(Rouge(normal, 1, 0), (5 * 20 - (10 + 30 + 50)) / 2);  // N = 5 - 3
  EXPECT_EQ(Rouge(normal, 0, 0), 0);                               // -10 / 3, limited
  EXPECT_EQ(Rouge(normal, 2, 2), 103);                             // (450 - 140) / 3 = 103.3

  ImageRVB plus = FaireRouge(kGrille);
  Nettete(plus, false);
  EXPECT_EQ(Rouge(plus, 1, 1), (15 * 50 - 400) / 7);            // N = 15 - 8
  EXPECT_EQ(Rouge(plus, 0, 0), 3);                              // (150 - 110) / 12 = 3.3
  EXPECT_EQ(Rouge(plus, 1, 0), (15 * 20 - 190) / 10);           // N = 15 - 5
  EXPECT_EQ(Rouge(plus, 2, 2), 97);                             // (1350 - 190) / 12 = 96.7

  ImageRVB pic = FaireRouge({{0, 200, 0}});
  Nettete(pic, true);
  EXPECT_EQ(Rouge(pic, 1, 0), 255);  // 1000 / 3, limited
  EXPECT_EQ(Rouge(pic, 0, 0), 0);    // -200 / 4, limited
}

TEST(PixelEffects, EmbossKeepsThePixelWhereTheDivisorIsZero) {
  ImageRVB simple = FaireRouge({{10, 50, 30, 90}});
  BasRelief(simple, false, false);
  EXPECT_EQ(Rouge(simple, 0, 0), (10 + 50) / 2);  // no left neighbour: N = 2
  EXPECT_EQ(Rouge(simple, 1, 0), 50 + 30 - 10);
  EXPECT_EQ(Rouge(simple, 2, 0), 30 + 90 - 50);
  EXPECT_EQ(Rouge(simple, 3, 0), 90);  // 90 - 30 over N = 0: unchanged

  ImageRVB fort = FaireRouge({{10, 50, 30, 90}});
  BasRelief(fort, true, false);
  EXPECT_EQ(Rouge(fort, 0, 0), (10 + 50 + 30) / 3);
  EXPECT_EQ(Rouge(fort, 1, 0), (50 + 30 + 90 - 10) / 2);
  EXPECT_EQ(Rouge(fort, 2, 0), 30);  // 1 + 1 - 1 - 1 = 0
  EXPECT_EQ(Rouge(fort, 3, 0), 0);   // (90 - 30 - 50) / -1, limited
}

TEST(PixelEffects, EtchSubtractsThePixelItself) {
  ImageRVB image = FaireRouge({{10, 50, 30, 90}});
  Gravure(image, false, false);
  EXPECT_EQ(Rouge(image, 0, 0), 10);                      // -1 + 1 = 0: unchanged
  EXPECT_EQ(Rouge(image, 1, 0), (-50 + 30 - 10) / -1);    // N = -1
  EXPECT_EQ(Rouge(image, 2, 0), 0);                       // (-30 + 90 - 50) / -1 = -10
  EXPECT_EQ(Rouge(image, 3, 0), (-90 - 30) / -2);

  ImageRVB fort = FaireRouge({{10, 50, 30, 20, 20}});
  Gravure(fort, true, false);
  EXPECT_EQ(Rouge(fort, 0, 0), -10 + 50 + 30);               // N = -1 + 1 + 1
  EXPECT_EQ(Rouge(fort, 1, 0), 50);                          // -1 + 1 + 1 - 1 = 0
  EXPECT_EQ(Rouge(fort, 2, 0), (-30 + 20 - 50 + 20 - 10) / -1);
  EXPECT_EQ(Rouge(fort, 3, 0), (-20 + 20 - 30 - 50) / -2);
  EXPECT_EQ(Rouge(fort, 4, 0), 23);                          // (-20 - 20 - 30) / -3 = 23.3
}

TEST(PixelEffects, GreyFlagMixesTheLimitedChannels) {
  // 2 x 1: the left pixel averages with its right neighbour (N = 2), the
  // right one has N = 0 and keeps its channels; both then turn grey.
  ImageRVB image = Faire({{{100, 200, 50}, {50, 50, 50}}});
  BasRelief(image, false, true);
  // (75, 125, 50): 0.33 x 75 + 0.59 x 125 + 0.11 x 50 = 24.75 + 73.75 + 5.5 = 104
  EXPECT_EQ(Lire(image, 0, 0), (Pixel{104, 104, 104}));
  // 16.5 + 29.5 + 5.5 = 51.5 -> 52
  EXPECT_EQ(Lire(image, 1, 0), (Pixel{52, 52, 52}));

  EXPECT_EQ(NiveauGris(255, 255, 255), 255);  // 262.65, limited
  EXPECT_EQ(NiveauGris(100, 200, 50), 156);    // 33 + 118 + 5.5 = 156.5 -> 156
  EXPECT_EQ(NiveauGris(0, 0, 10), 1);          // 1.1
}

TEST(PixelEffects, RgbFilterScalesEachChannel) {
  ImageRVB image = Faire({{{100, 100, 100}, {0, 200, 103}}});
  ASSERT_TRUE(FiltreRVB(image, 10, 0, -10));
  EXPECT_EQ(Lire(image, 0, 0), (Pixel{130, 100, 77}));  // x 1.3; 100 / 1.3 = 76.9
  EXPECT_EQ(Lire(image, 1, 0), (Pixel{0, 200, 79}));    // 103 / 1.3 = 79.2

  ImageRVB extremes = Faire({{{0, 200, 103}, {1, 0, 100}}});
  ASSERT_TRUE(FiltreRVB(extremes, 100, -100, 50));
  // F = 4: 255 even from 0, and 0 outright; F = 2.5: 257.5 limited, 250.
  EXPECT_EQ(Lire(extremes, 0, 0), (Pixel{255, 0, 255}));
  EXPECT_EQ(Lire(extremes, 1, 0), (Pixel{255, 0, 250}));

  ImageRVB intacte = Faire({{{7, 8, 9}}});
  ASSERT_TRUE(FiltreRVB(intacte, 0, 0, 0));
  EXPECT_EQ(Lire(intacte, 0, 0), (Pixel{7, 8, 9}));
  EXPECT_FALSE(FiltreRVB(intacte, 100.5f, 0, 0));
  EXPECT_FALSE(FiltreRVB(intacte, 0, 0, -101));
  EXPECT_EQ(Lire(intacte, 0, 0), (Pixel{7, 8, 9}));
}

TEST(PixelEffects, QuotientRoundsToNearestEvenAndLimits) {
  EXPECT_EQ(QuotientBorne(5, 2), 2);
  EXPECT_EQ(QuotientBorne(7, 2), 4);
  EXPECT_EQ(QuotientBorne(-5, -2), 2);
  EXPECT_EQ(QuotientBorne(-1, 2), 0);
  EXPECT_EQ(QuotientBorne(600, 2), 255);
}

// A large noisy picture (several threads, the table of quotients inside, the
// full sum at the edges) against the definition worked pixel by pixel.
struct Voisin {
  int dx, dy, poids;
};
ImageRVB Reference(const ImageRVB& avant, const std::vector<Voisin>& termes, bool gris) {
  ImageRVB r = avant;
  for (int y = 0; y < avant.hauteur; ++y)
    for (int x = 0; x < avant.largeur; ++x) {
      int s[3] = {0, 0, 0}, n = 0;
      for (const Voisin& t : termes) {
        const int nx = x + t.dx, ny = y + t.dy;
        if (nx < 0 || ny < 0 || nx >= avant.largeur || ny >= avant.hauteur) continue;
        for (int c = 0; c < 3; ++c) s[c] += t.poids * avant.Pixel(nx, ny)[c];
        n += t.poids;
      }
      int v[3];
      for (int c = 0; c < 3; ++c) v[c] = n == 0 ? avant.Pixel(x, y)[c] : QuotientBorne(s[c], n);
      if (gris) v[0] = v[1] = v[2] = NiveauGris(v[0], v[1], v[2]);
      for (int c = 0; c < 3; ++c) r.Pixel(x, y)[c] = uint8_t(v[c]);
    }
  return r;
}

TEST(PixelEffects, GrandeImageIdentiqueALaDefinition) {
  ImageRVB bruit(701, 389);
  uint32_t g = 99;
  for (uint8_t& o : bruit.octets) {
    g = g * 1664525u + 1013904223u;
    o = uint8_t(g >> 24);
  }
  const std::vector<Voisin> neuf = {{-1, -1, 1}, {0, -1, 1}, {1, -1, 1}, {-1, 0, 1}, {0, 0, 1},
                                    {1, 0, 1},   {-1, 1, 1}, {0, 1, 1},  {1, 1, 1}};
  const std::vector<Voisin> croix = {{0, -1, 1}, {-1, 0, 1}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
  const std::vector<Voisin> net = {{0, 0, 5}, {0, -1, -1}, {-1, 0, -1}, {1, 0, -1}, {0, 1, -1}};
  const std::vector<Voisin> netPlus = {{0, 0, 15}, {-1, -1, -1}, {0, -1, -1}, {1, -1, -1}, {-1, 0, -1},
                                       {1, 0, -1}, {-1, 1, -1},  {0, 1, -1},  {1, 1, -1}};
  const std::vector<Voisin> relief = {{0, 0, 1}, {1, 0, 1}, {-1, 0, -1}, {2, 0, 1}, {-2, 0, -1}};
  const std::vector<Voisin> gravure = {{0, 0, -1}, {1, 0, 1}, {-1, 0, -1}};
  ImageRVB a = bruit;
  Flou(a, true);
  EXPECT_TRUE(a.octets == Reference(bruit, neuf, false).octets);
  a = bruit;
  Flou(a, false);
  EXPECT_TRUE(a.octets == Reference(bruit, croix, false).octets);
  a = bruit;
  Nettete(a, true);
  EXPECT_TRUE(a.octets == Reference(bruit, net, false).octets);
  a = bruit;
  Nettete(a, false);
  EXPECT_TRUE(a.octets == Reference(bruit, netPlus, false).octets);
  a = bruit;
  BasRelief(a, true, true);
  EXPECT_TRUE(a.octets == Reference(bruit, relief, true).octets);
  a = bruit;
  Gravure(a, false, false);
  EXPECT_TRUE(a.octets == Reference(bruit, gravure, false).octets);
}

}  // namespace
}  // namespace tg
