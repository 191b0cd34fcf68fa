// Composition of the final picture: one-pixel corrections, alignments,
// transparency of the 2-line cartouche, placement of the RN shapes.
#include <gtest/gtest.h>

#include <QImage>

#include "cartouche/ImageFinale.h"
#include "imaging/cAdvancedImagery.h"

namespace tg {
namespace {

const QColor kFond(255, 255, 255);       // background canvas
const QColor kImage(0, 128, 0);          // the formatted image
const QColor kCartouche(255, 255, 200);  // cartouche background
const QColor kEncre(0, 0, 0);            // text drawn on the cartouche

QImage Uni(int l, int h, const QColor& c) {
  QImage img(l, h, QImage::Format_RGB32);
  img.fill(c);
  return img;
}

// A cartouche with a black block standing for its text.
QImage Cartouche(int l, int h) {
  QImage img = Uni(l, h, kCartouche);
  for (int y = 5; y < 15; ++y)
    for (int x = 100; x < 120; ++x) img.setPixel(x, y, kEncre.rgb());
  return img;
}

struct Assemblage {
  QImage resultat;
  int largeurFormatee = 0, hauteurFormatee = 0;
  QStringList messages;
  bool ok = false;
};

Assemblage Assembler(const ParamsImageFinale& p, int largeurImage, int hauteurImage) {
  cAdvancedImagery ia;
  Assemblage a;
  Bitmap image;
  EXPECT_TRUE(ia.Convert_PictureToImage(Uni(largeurImage, hauteurImage, kImage), image));
  a.largeurFormatee = largeurImage;
  a.hauteurFormatee = hauteurImage;
  Bitmap sortie;
  a.ok = ConstruireImageFinal(
      ia, image, a.largeurFormatee, a.hauteurFormatee, kFond,
      Cartouche(p.largeurFond, p.hauteurCartouche), kCartouche, p, sortie, a.messages);
  if (a.ok) {
    EXPECT_TRUE(ia.Convert_ImageToPicture(sortie, a.resultat));
  }
  return a;
}

QColor Pixel(const Assemblage& a, int x, int y) { return QColor(a.resultat.pixel(x, y)); }

ParamsImageFinale Trois(int hauteurCartouche = 60) {
  ParamsImageFinale p;
  p.largeurFond = 640;
  p.hauteurFond = 540;
  p.hauteurCartouche = hauteurCartouche;
  p.cartoucheHB = "1";
  p.cadrageFormate = 1.3333f;
  return p;
}

ParamsImageFinale Deux(int hauteurCartouche, int optTransparence) {
  ParamsImageFinale p;
  p.largeurFond = 640;
  p.hauteurFond = 480;
  p.hauteurCartouche = hauteurCartouche;
  p.cartoucheHB = "0";
  p.cadrageFormate = 1.3333f;
  p.optTransparence = optTransparence;
  return p;
}

TEST(ImageFinale, LargeurAUnPixelPresEtireeADeuxLaissee) {
  Assemblage a = Assembler(Trois(), 639, 480);
  ASSERT_TRUE(a.ok) << a.messages.join("|").toStdString();
  EXPECT_EQ(a.resultat.size(), QSize(640, 540));
  EXPECT_EQ(a.largeurFormatee, 640);  // kept corrected for a rebuild
  EXPECT_EQ(Pixel(a, 639, 100), kImage);
  a = Assembler(Trois(), 638, 480);
  ASSERT_TRUE(a.ok);
  EXPECT_EQ(a.largeurFormatee, 638);
  EXPECT_EQ(Pixel(a, 637, 100), kImage);
  EXPECT_EQ(Pixel(a, 638, 100), kFond);
  EXPECT_EQ(Pixel(a, 639, 100), kFond);
  // The cartouche under it: rows 480 to 539.
  EXPECT_EQ(Pixel(a, 5, 480), kCartouche);
  EXPECT_EQ(Pixel(a, 5, 479), kImage);
  EXPECT_TRUE(a.messages.isEmpty());
}

TEST(ImageFinale, HauteurAUnPixelPresEtireeSeulementEn2Lignes) {
  Assemblage a = Assembler(Deux(40, 0), 640, 479);
  ASSERT_TRUE(a.ok);
  EXPECT_EQ(a.hauteurFormatee, 480);
  // Under the 3-line shape the height is left alone.
  a = Assembler(Trois(), 640, 479);
  ASSERT_TRUE(a.ok);
  EXPECT_EQ(a.hauteurFormatee, 479);
  EXPECT_EQ(Pixel(a, 5, 479), kFond);
}

struct CasTransparence {
  int opt;
  QColor fondCartouche;  // what a background pixel of the cartouche becomes
};
class Transparences : public ::testing::TestWithParam<CasTransparence> {};

TEST_P(Transparences, SeulLeFondDuCartoucheLaissePasserLImage) {
  const Assemblage a = Assembler(Deux(40, GetParam().opt), 640, 480);
  ASSERT_TRUE(a.ok) << a.messages.join("|").toStdString();
  // The cartouche covers rows 440 to 479, over the image.
  const QColor c = Pixel(a, 5, 445);
  const QColor attendu = GetParam().fondCartouche;
  EXPECT_NEAR(c.red(), attendu.red(), 2);
  EXPECT_NEAR(c.green(), attendu.green(), 2);
  EXPECT_NEAR(c.blue(), attendu.blue(), 2);
  EXPECT_EQ(Pixel(a, 110, 450), kEncre);  // text stays opaque
  EXPECT_EQ(Pixel(a, 5, 439), kImage);
}
// "Moyenne": alpha 100 of 255 over the image.
INSTANTIATE_TEST_SUITE_P(
    Options, Transparences,
    ::testing::Values(CasTransparence{0, kCartouche}, CasTransparence{2, kImage},
                      CasTransparence{
                          1, QColor((255 * 100 + 0 * 155) / 255, (255 * 100 + 128 * 155) / 255,
                                    (200 * 100 + 0 * 155) / 255)}));

TEST(ImageFinale, TransparenceIgnoreeEn3Lignes) {
  ParamsImageFinale p = Trois();
  p.optTransparence = 2;
  const Assemblage a = Assembler(p, 640, 480);
  ASSERT_TRUE(a.ok);
  EXPECT_EQ(Pixel(a, 5, 500), kCartouche);
}

TEST(ImageFinale, FormeRNSousLImage) {
  // 2 lines: an 800 x 533 image on an 800 x 600 background, 64-row cartouche.
  ParamsImageFinale p;
  p.largeurFond = 800;
  p.hauteurFond = 600;
  p.hauteurCartouche = 64;
  p.cartoucheHB = "0";
  p.cadrageFormate = 800.0f / 533;
  EXPECT_EQ(HautCartouche(p, 800, 533), 533);
  Assemblage a = Assembler(p, 800, 533);
  ASSERT_TRUE(a.ok);
  EXPECT_EQ(Pixel(a, 5, 532), kImage);
  EXPECT_EQ(Pixel(a, 5, 533), kCartouche);
  EXPECT_EQ(Pixel(a, 5, 596), kCartouche);
  EXPECT_EQ(Pixel(a, 5, 597), kFond);  // room left under it
  // 3 lines: 640 x 427 with the 103-row cartouche right under the image.
  p = Trois(103);
  p.cadrageFormate = 640.0f / 427;
  EXPECT_EQ(HautCartouche(p, 640, 427), 427);
  a = Assembler(p, 640, 427);
  ASSERT_TRUE(a.ok);
  EXPECT_EQ(Pixel(a, 5, 426), kImage);
  EXPECT_EQ(Pixel(a, 5, 427), kCartouche);
  EXPECT_EQ(Pixel(a, 5, 529), kCartouche);
  EXPECT_EQ(Pixel(a, 5, 530), kFond);
  // Not as wide as the background: at the bottom as usual.
  EXPECT_EQ(HautCartouche(p, 600, 400), 540 - 103);
}

struct CasAlign {
  int optAlign;
  int largeur, hauteur;
  QPoint attendu;
};
class Alignements : public ::testing::TestWithParam<CasAlign> {};

TEST_P(Alignements, CoinDeLImage) {
  ParamsImageFinale p = Trois();
  p.optAlign = GetParam().optAlign;
  const QPoint c = GetParam().attendu;
  EXPECT_EQ(PositionImage(p, GetParam().largeur, GetParam().hauteur), c);
  const Assemblage a = Assembler(p, GetParam().largeur, GetParam().hauteur);
  ASSERT_TRUE(a.ok);
  EXPECT_EQ(Pixel(a, c.x(), c.y()), kImage);
  if (c.x() > 0) {
    EXPECT_EQ(Pixel(a, c.x() - 1, c.y()), kFond);
  }
  if (c.y() > 0) {
    EXPECT_EQ(Pixel(a, c.x(), c.y() - 1), kFond);
  }
}
INSTANTIATE_TEST_SUITE_P(Cas, Alignements,
                         ::testing::Values(
                             // Portrait centred in the 480 rows above a 3-line cartouche.
                             CasAlign{1, 300, 400, {170, 40}},
                             // (640 - 301) / 2 = 169.5 and (480 - 401) / 2 = 39.5 go to even.
                             CasAlign{1, 301, 401, {170, 40}}, CasAlign{1, 303, 403, {168, 38}},
                             // Taller than the room: y raised to 0, the cartouche covers its foot.
                             CasAlign{1, 300, 500, {170, 0}}, CasAlign{0, 300, 400, {0, 0}},
                             CasAlign{2, 300, 400, {340, 0}}));

TEST(ImageFinale, PiedDeLImageSousLeCartouche) {
  ParamsImageFinale p = Trois();
  p.optAlign = 1;
  const Assemblage a = Assembler(p, 300, 500);
  ASSERT_TRUE(a.ok);
  EXPECT_EQ(Pixel(a, 200, 479), kImage);
  EXPECT_EQ(Pixel(a, 200, 485), kCartouche);
}

TEST(ImageFinale, UnCalqueManquantNArretePas) {
  cAdvancedImagery ia;
  Bitmap image;
  ASSERT_TRUE(ia.Convert_PictureToImage(Uni(640, 480, kImage), image));
  int l = 640, h = 480;
  Bitmap sortie;
  QStringList messages;
  const ParamsImageFinale p = Trois();
  ASSERT_TRUE(ConstruireImageFinal(ia, image, l, h, kFond, QImage(), kCartouche, p,
                                   sortie, messages));
  ASSERT_GE(messages.size(), 2);
  EXPECT_TRUE(messages[0].startsWith("Error  - 2"));
  EXPECT_TRUE(messages[0].endsWith("\r\nin Sub ConstruireImageFinal"));
  EXPECT_TRUE(messages[1].startsWith("Error - 11"));
  QImage r;
  ASSERT_TRUE(ia.Convert_ImageToPicture(sortie, r));
  EXPECT_EQ(QColor(r.pixel(5, 5)), kImage);
  // Without a background nothing can be built.
  messages.clear();
  ParamsImageFinale sansFond = p;
  sansFond.largeurFond = 0;
  EXPECT_FALSE(ConstruireImageFinal(ia, image, l, h, kFond, Cartouche(640, 60), kCartouche, sansFond,
                                    sortie, messages));
  EXPECT_TRUE(messages[0].startsWith("Error - 1:"));
  EXPECT_TRUE(sortie.Vide());
}

TEST(ImageFinale, TexteDesTraitementsEtChampsInutilises) {
  const QStringList legendes = {"Niveaux", "Poussières", "Bruit", "Déconvolution"};
  EXPECT_EQ(TraitementTexte(legendes, {true, false, true, false}), "Niveaux/Bruit/");
  EXPECT_EQ(TraitementTexte(legendes, {false, false, false, false}), "");
  EXPECT_EQ(SansChampInutilise("*** Champ inutilisé ***"), "");
  EXPECT_EQ(SansChampInutilise("Eau"), "Eau");
}

}  // namespace
}  // namespace tg
