// The geometry of the annotation lines: snapping by unequal sectors, the
// pointer's rim, the middle of a dimension line, arrow and tick strokes, and
// the dimension's value and upright rotation.
#include <gtest/gtest.h>

#include "annotation/GeometrieAnnotation.h"
#include "measure/GeometrieMesure.h"

namespace tg {
namespace {

struct CasBride {
  double angle;
  int attendu;
};

class Bride : public testing::TestWithParam<CasBride> {};

TEST_P(Bride, SecteursInegaux) { EXPECT_EQ(AngleBride(GetParam().angle), GetParam().attendu); }

INSTANTIATE_TEST_SUITE_P(Limites, Bride,
                         testing::Values(CasBride{0, 0}, CasBride{29.9, 0}, CasBride{30, 45}, CasBride{74.9, 45},
                                         CasBride{75, 90}, CasBride{104.9, 90}, CasBride{105, 135},
                                         CasBride{164.9, 135}, CasBride{165, 180}, CasBride{209.9, 180},
                                         CasBride{210, 225}, CasBride{254.9, 225}, CasBride{255, 270},
                                         CasBride{299.9, 270}, CasBride{300, 315}, CasBride{344.9, 315},
                                         CasBride{345, 0}, CasBride{359.9, 0}));

void Proche(PointF p, float x, float y) {
  EXPECT_NEAR(p.x, x, 1e-3);
  EXPECT_NEAR(p.y, y, 1e-3);
}

TEST(GeometrieAnnotation, LignesPointeursEtTraits) {
  // A drag exactly on an axis keeps the angle of the last position off it:
  // the measuring window's rule, one function for both.
  double angle = 45;
  EXPECT_EQ(CalculAngle(100, 100, 100, 50, angle), ResultatAngle::Inchange);
  EXPECT_EQ(angle, 45);
  ASSERT_EQ(CalculAngle(100, 100, 150, 50, angle), ResultatAngle::Calcule);
  EXPECT_NEAR(angle, 45, 1e-9);

  Proche(FinBridee({10, 20}, 90, 30), 10, -10);  // up is minus y
  Proche(FinBridee({0, 0}, 225, 10), -7.0711f, 7.0711f);
  EXPECT_EQ(LongueurTracee(50, 8, true), 42);
  EXPECT_EQ(LongueurTracee(50, 8, false), 50);

  // The circle's rim, PointerSize from the start; a line shorter than the
  // pointer runs backwards through the start.
  Proche(SoustrairePointeur({110, 100}, 10, 4, 0), 104, 100);
  Proche(SoustrairePointeur({110, 100}, 10, 15, 0), 115, 100);

  Proche(CalculerMillieuLigne({200, 100}, 100, 0), 150, 100);
  Proche(CalculerMillieuLigne({100, 0}, 100, 270), 100, -50);

  // A dimension tick across a horizontal line, and an arrow's two strokes.
  const auto [haut, bas] = DessinerExtLigne({50, 50}, 90, 4, 0);
  Proche(haut.a, 50, 46);
  Proche(bas.a, 50, 54);
  const auto [g, d] = DessinerExtLigne({0, 0}, 30, 10, 90);
  Proche(g.a, -5, -8.6603f);
  Proche(d.a, 5, -8.6603f);

  for (long long n : {0, 45, 90, 135, 180, 225, 270, 315}) EXPECT_TRUE(DirectionNette(n)) << n;
  for (long long n : {1, 44, 360, -45}) EXPECT_FALSE(DirectionNette(n)) << n;
}

TEST(GeometrieAnnotation, ValeurEtRotationDeLaCote) {
  // 400 pixels for 100 microns: 0.25 micron a pixel.
  EXPECT_EQ(TexteCote(4936, "400", "100", false, QString::fromUtf8("µm"), ","), QString::fromUtf8(" 1234 µm"));
  EXPECT_EQ(TexteCote(4936, "400", "100", true, "mm", ","), " 1,2 mm");
  EXPECT_EQ(TexteCote(4936, "400", "100", true, "mm", "."), " 1.2 mm");
  EXPECT_EQ(TexteCote(4936, "400,0", "100", false, "um", ","), " 1234 um");
  EXPECT_TRUE(TexteCote(4936, "", "100", false, "um", ",").isEmpty());
  EXPECT_TRUE(TexteCote(4936, "400", "", false, "um", ",").isEmpty());

  EXPECT_EQ(RotationCote(90), 0);
  EXPECT_EQ(RotationCote(0), 0);
  EXPECT_EQ(RotationCote(180), 0);
  EXPECT_EQ(RotationCote(270), 0);
  EXPECT_EQ(RotationCote(30), 30);
  EXPECT_EQ(RotationCote(300), 300);
  EXPECT_EQ(RotationCote(200), 20);
  EXPECT_EQ(RotationCote(135), 315);
}

}  // namespace
}  // namespace tg
