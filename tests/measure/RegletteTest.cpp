// The ruling found on stage micrometers the tests draw themselves, whose true
// period and direction are known: period within 0.05 %, direction within 0.2
// degree, whatever the period, tilt, blur, noise, JPEG, long graduations,
// specimen, lighting or polarity; pictures without a ruling refused.
#include <gtest/gtest.h>

#include <QImage>
#include <cmath>
#include <string>
#include <vector>

#include "measure/Reglette.h"
#include "tests/measure/ReglettesDessinees.h"

namespace tg {
namespace {

using test::DessinReglette;

struct Cas {
  std::string nom;
  DessinReglette dessin;
};

DessinReglette D(double periode, double angle) {
  DessinReglette d;
  d.periode = periode;
  d.angle = angle;
  if (periode >= 100) {
    d.largeur = 1600;
    d.hauteur = 1200;
  }
  return d;
}

template <typename F>
DessinReglette Avec(DessinReglette d, F&& changer) {
  changer(d);
  return d;
}

// Direction difference, degrees, modulo 180.
double EcartAngle(double a, double b) {
  double e = std::fmod(a - b, 180.0);
  if (e > 90) e -= 180;
  if (e < -90) e += 180;
  return e;
}

std::vector<Cas> Cas_() {
  std::vector<Cas> c;
  for (double p : {6.0, 9.0, 15.0, 40.0, 150.0})
    for (double a : {0.0, 3.0, 30.0, 45.0})
      c.push_back({"p" + std::to_string(int(p)) + "_a" + std::to_string(int(a)), D(p, a)});
  auto flou = [](DessinReglette& d) { d.flou = 2; };
  auto bruitJpeg = [](DessinReglette& d) {
    d.bruit = 8;
    d.qualiteJpeg = 75;
  };
  auto tout = [](DessinReglette& d) {
    d.flou = 2;
    d.bruit = 4;
    d.qualiteJpeg = 75;
  };
  auto specimen = [](DessinReglette& d) { d.specimen = true; };
  auto noir = [](DessinReglette& d) { d.fondNoir = true; };
  auto eclairage = [](DessinReglette& d) { d.eclairageInegal = true; };
  c.push_back({"flou2_p6_a3", Avec(D(6, 3), flou)});
  c.push_back({"flou2_p9_a45", Avec(D(9, 45), flou)});
  c.push_back({"flou2_p15_a30", Avec(D(15, 30), flou)});
  c.push_back({"flou2_p40_a3", Avec(D(40, 3), flou)});
  c.push_back({"flou2_p150_a30", Avec(D(150, 30), flou)});
  c.push_back({"bruit_jpeg75_p6_a30", Avec(D(6, 30), bruitJpeg)});
  c.push_back({"bruit_jpeg75_p15_a0", Avec(D(15, 0), bruitJpeg)});
  c.push_back({"bruit_jpeg75_p40_a45", Avec(D(40, 45), bruitJpeg)});
  c.push_back({"bruit_jpeg75_p150_a3", Avec(D(150, 3), bruitJpeg)});
  c.push_back({"flou_bruit_jpeg_p6_a45", Avec(D(6, 45), tout)});
  c.push_back({"flou_bruit_jpeg_p40_a0", Avec(D(40, 0), tout)});
  c.push_back({"longues10_p9_a30", Avec(D(9, 30), [](DessinReglette& d) { d.longues = 10; })});
  c.push_back({"longues10_p40_a3", Avec(D(40, 3), [](DessinReglette& d) { d.longues = 10; })});
  c.push_back({"specimen_p9_a0", Avec(D(9, 0), specimen)});
  c.push_back({"specimen_p15_a45", Avec(D(15, 45), specimen)});
  c.push_back({"specimen_p40_a30", Avec(D(40, 30), specimen)});
  c.push_back({"specimen_p150_a3", Avec(D(150, 3), specimen)});
  c.push_back({"fond_noir_p6_a3", Avec(D(6, 3), noir)});
  c.push_back({"fond_noir_p40_a30", Avec(D(40, 30), noir)});
  c.push_back({"fond_noir_p150_a45", Avec(D(150, 45), noir)});
  c.push_back({"eclairage_p15_a30", Avec(D(15, 30), eclairage)});
  c.push_back({"eclairage_p40_a0", Avec(D(40, 0), eclairage)});
  c.push_back({"couleur_p15_a45", Avec(D(15, 45), [](DessinReglette& d) { d.couleur = true; })});
  // Graduations as long as a quarter of the photo is high, over half its width.
  c.push_back({"quart_p40_a0", Avec(D(40, 0), [](DessinReglette& d) {
                 d.graduations = 13;
                 d.longueur = 200;
                 d.cy = 600;
               })});
  c.push_back({"quart_p25_a30", Avec(D(25, 30), [](DessinReglette& d) {
                 d.graduations = 21;
                 d.longueur = 180;
               })});
  // A short ruling in a corner of a larger photo.
  c.push_back({"coin_p12_a3", Avec(D(12, 3), [](DessinReglette& d) {
                 d.largeur = 2000;
                 d.hauteur = 1500;
                 d.graduations = 16;
                 d.cx = 300;
                 d.cy = 1300;
               })});
  return c;
}

class Reglettes : public testing::TestWithParam<Cas> {};

TEST_P(Reglettes, PeriodeEtDirection) {
  const DessinReglette& d = GetParam().dessin;
  const QImage image = test::Dessiner(d);
  const ResultatReglette r = TrouverReglette(test::Vue(image));
  ASSERT_TRUE(r.reglette) << r.refus.toStdString();
  const Reglette& g = *r.reglette;
  EXPECT_NEAR(g.periode / d.periode - 1, 0, 0.0005) << "période " << g.periode;
  EXPECT_NEAR(EcartAngle(g.angle, d.angle), 0, 0.2) << "angle " << g.angle;
  EXPECT_GE(g.incertitude, 0);
  EXPECT_LT(g.incertitude, 0.0005 * d.periode);
  EXPECT_GT(g.confiance, 0.3);
  EXPECT_LE(g.confiance, 1);
  // Each graduation drawn lies on one of the ruling's, in order, and no
  // more are drawn than the ruling has.
  const int n = test::NombreGraduations(d);
  ASSERT_GE(int(g.graduations.size()), 5);
  EXPECT_LE(int(g.graduations.size()), n);
  EXPECT_LE(g.divisions, n - 1);
  EXPECT_GE(g.divisions + 1, int(g.graduations.size()));
  const double a = -d.angle * M_PI / 180, c = std::cos(a), s = std::sin(a);
  const double cx = d.cx >= 0 ? d.cx : d.largeur / 2.0, cy = d.cy >= 0 ? d.cy : d.hauteur / 2.0;
  const double s0 = -(n - 1) * d.periode / 2;
  int precedent = -1;
  for (const Graduation& gr : g.graduations) {
    const double x = (gr.x1 + gr.x2) / 2 - cx, y = (gr.y1 + gr.y2) / 2 - cy;
    const double place = (x * c + y * s - s0) / d.periode;
    EXPECT_NEAR(place, std::round(place), 0.3 / d.periode + 0.02);
    EXPECT_GT(gr.rang, precedent);
    precedent = gr.rang;
  }
}

INSTANTIATE_TEST_SUITE_P(Dessinees, Reglettes, testing::ValuesIn(Cas_()),
                         [](const testing::TestParamInfo<Cas>& i) { return i.param.nom; });

class SansReglette : public testing::TestWithParam<int> {};

TEST_P(SansReglette, Refusee) {
  const QImage image = test::Leurre(GetParam());
  const ResultatReglette r = TrouverReglette(test::Vue(image));
  EXPECT_FALSE(r.reglette) << "période " << (r.reglette ? r.reglette->periode : 0);
  EXPECT_TRUE(r.refus.startsWith(QStringLiteral("Aucune réglette n'a été trouvée sur cette image"))) << r.refus.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Leurres, SansReglette, testing::Range(0, 20));

// Two rulings side by side: the zone picks one or the other.
TEST(RegletteZone, ChoisitLaReglette) {
  DessinReglette gauche = D(12, 0), droite = D(30, 0);
  gauche.largeur = droite.largeur = 1600;
  gauche.hauteur = droite.hauteur = 800;
  gauche.cx = 400;
  droite.cx = 1200;
  gauche.graduations = 40;
  droite.graduations = 18;
  gauche.bruit = droite.bruit = 0;
  QImage image = test::Dessiner(gauche);
  const QImage autre = test::Dessiner(droite);
  for (int y = 0; y < image.height(); ++y)
    std::copy(autre.constScanLine(y) + 800, autre.constScanLine(y) + 1600, image.scanLine(y) + 800);
  const ResultatReglette a = TrouverReglette(test::Vue(image), ZoneReglette{0, 0, 800, 800});
  const ResultatReglette b = TrouverReglette(test::Vue(image), ZoneReglette{800, 100, 800, 600});
  ASSERT_TRUE(a.reglette) << a.refus.toStdString();
  ASSERT_TRUE(b.reglette) << b.refus.toStdString();
  EXPECT_NEAR(a.reglette->periode, 12, 0.006);
  EXPECT_NEAR(b.reglette->periode, 30, 0.015);
  // Segments in the photo's pixels, within the zone.
  for (const Graduation& g : b.reglette->graduations) {
    EXPECT_GE(std::min(g.x1, g.x2), 800 - 1);
    EXPECT_NEAR((g.x1 + g.x2) / 2, 1200 + (std::round(((g.x1 + g.x2) / 2 - 1200) / 30 - 0.5) + 0.5) * 30, 0.3);
  }
}

TEST(RegletteZone, ZoneRefusee) {
  const QImage image = test::Dessiner(D(15, 0));
  const VuePixels v = test::Vue(image);
  for (const ZoneReglette& z : {ZoneReglette{-1, 0, 100, 100}, ZoneReglette{900, 0, 200, 100},
                                ZoneReglette{0, 700, 100, 100}, ZoneReglette{0, 0, 0, 100}}) {
    const ResultatReglette r = TrouverReglette(v, z);
    EXPECT_FALSE(r.reglette);
    EXPECT_EQ(r.refus, QStringLiteral("La zone sort de l'image (1024 x 768 pixels)."));
  }
  const ResultatReglette r = TrouverReglette(v, ZoneReglette{10, 10, 200, 12});
  EXPECT_FALSE(r.reglette);
  EXPECT_EQ(r.refus, QStringLiteral("La zone est trop petite : au moins 16 pixels de côté."));
  EXPECT_FALSE(TrouverReglette(VuePixels{}).reglette);
}

// The same picture through a bottom-up view, or as 24-bit BGR rows, gives
// the same ruling.
TEST(RegletteVue, FormatsEtSens) {
  DessinReglette d = D(15, 30);
  d.couleur = true;
  const QImage image = test::Dessiner(d);
  const ResultatReglette ref = TrouverReglette(test::Vue(image));
  ASSERT_TRUE(ref.reglette);

  // Rows of blue, green, red bytes, as FreeImage holds a 24-bit picture.
  std::vector<uint8_t> octets(size_t(image.width()) * 3 * size_t(image.height()));
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) {
      const QRgb c = image.pixel(x, y);
      uint8_t* o = octets.data() + (size_t(y) * size_t(image.width()) + size_t(x)) * 3;
      o[0] = uint8_t(qBlue(c));
      o[1] = uint8_t(qGreen(c));
      o[2] = uint8_t(qRed(c));
    }
  VuePixels v24{octets.data(), image.width(), image.height(), std::ptrdiff_t(image.width()) * 3,
                FormatPixels::BGR24};
  const ResultatReglette r24 = TrouverReglette(v24);
  ASSERT_TRUE(r24.reglette);
  EXPECT_NEAR(r24.reglette->periode, ref.reglette->periode, 1e-6);
  EXPECT_NEAR(r24.reglette->angle, ref.reglette->angle, 1e-6);

  // Bottom-up: the rows stored last to first, the view starting at the top.
  const QImage retournee = image.mirrored(false, true);
  VuePixels inverse = test::Vue(retournee);
  inverse.pixels = retournee.constScanLine(retournee.height() - 1);
  inverse.pas = -retournee.bytesPerLine();
  const ResultatReglette rb = TrouverReglette(inverse);
  ASSERT_TRUE(rb.reglette);
  EXPECT_NEAR(rb.reglette->periode, ref.reglette->periode, 1e-6);
  EXPECT_NEAR(rb.reglette->angle, ref.reglette->angle, 1e-6);
}

TEST(RegletteTextes, LongueurPourTable) {
  Reglette r;
  r.periode = 40;  // 4 pixels per micron with 10 µm divisions
  LongueurTable l = LongueurPourTable(r, 10);
  EXPECT_EQ(l.microns, 1000);
  EXPECT_EQ(l.pixels, 4000);
  r.periode = 400.3;  // 100 µm divisions
  l = LongueurPourTable(r, 100);
  EXPECT_EQ(l.microns, 1000);
  EXPECT_EQ(l.pixels, 4003);
  r.periode = 7.4999;  // 1.49998 pixels per micron: 10000 µm is 14999.8 pixels
  l = LongueurPourTable(r, 5);
  EXPECT_EQ(l.microns, 1000);
  EXPECT_EQ(l.pixels, 1500);
  r.periode = 150;
  l = LongueurPourTable(r, 1);  // 150 pixels per micron
  EXPECT_EQ(l.microns, 10);
  EXPECT_EQ(l.pixels, 1500);
  r.periode = 20;
  l = LongueurPourTable(r, 0.001);  // 20000 pixels per micron: 1 µm is too long
  EXPECT_EQ(l.microns, 1);
  EXPECT_EQ(l.pixels, 20000);
}

TEST(RegletteTextes, ResultatEtDivision) {
  Reglette r;
  r.periode = 40.012;
  r.incertitude = 0.0048;
  EXPECT_DOUBLE_EQ(PixelsPour100(r, 10), 400.12);
  EXPECT_EQ(TexteReglette(r, 10, QStringLiteral(",")), QStringLiteral("400,120 pixels pour 100 µm (± 0,048)"));
  r.incertitude = 0.05;
  EXPECT_EQ(TexteReglette(r, 10, QStringLiteral(".")), QStringLiteral("400.12 pixels pour 100 µm (± 0.50)"));
  EXPECT_EQ(TexteMesure(-0.0004, 0.012, QStringLiteral(",")), QStringLiteral("0,000 (± 0,012)"));
  EXPECT_EQ(TexteMesure(40.00031, 0.0000394, QStringLiteral(".")), QStringLiteral("40.000310 (± 0.000039)"));
  EXPECT_EQ(LireDivision(QStringLiteral(" 10 ")), 10.0);
  EXPECT_EQ(LireDivision(QStringLiteral("2,5")), 2.5);
  EXPECT_EQ(LireDivision(QStringLiteral("2.5")), 2.5);
  EXPECT_EQ(LireDivision(QStringLiteral("10000")), 10000.0);
  for (const char* t : {"0", "-5", "abc", "", "10001", "nan"})
    EXPECT_FALSE(LireDivision(QString::fromUtf8(t))) << t;
}

}  // namespace
}  // namespace tg
