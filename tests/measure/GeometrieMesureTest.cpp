// The geometry of the measuring window: angle by quadrant and on the axes,
// lengths, the value shown per mode, the manual scale and the loupe's states.
#include <gtest/gtest.h>

#include <cmath>

#include "measure/GeometrieMesure.h"

namespace tg {
namespace {

// ---------------------------------------------------------------- CalculAngle

struct CasAngle {
  float x, y;       // pointer; the first point is (100, 100)
  double attendu;   // degrees, counter-clockwise from the right, y downwards
};
class AngleQuadrant : public testing::TestWithParam<CasAngle> {};

TEST_P(AngleQuadrant, DonneLAngleGeometriqueDeLaLigne) {
  double angle = -1;
  ASSERT_EQ(CalculAngle(100, 100, GetParam().x, GetParam().y, angle), ResultatAngle::Calcule);
  EXPECT_NEAR(angle, GetParam().attendu, 1e-9);
}
INSTANTIATE_TEST_SUITE_P(Quadrants, AngleQuadrant,
                         testing::Values(CasAngle{150, 50, 45}, CasAngle{50, 50, 135},
                                         CasAngle{50, 150, 225}, CasAngle{150, 150, 315},
                                         CasAngle{200, 90, std::atan(0.1) * 180 / M_PI},
                                         CasAngle{90, 200, 270 - std::atan(0.1) * 180 / M_PI}));

TEST(CalculAngle, BalayageCompletAutourDuPointEgaleAtan2DesEcartsArrondis) {
  // The deltas are rounded to whole pixels (ties to even) before the arctangent.
  for (int deg = 1; deg < 360; deg += 7) {
    if (deg % 90 == 0) continue;
    const float x = 300 + 80.3f * float(std::cos(deg * M_PI / 180));
    const float y = 300 - 80.3f * float(std::sin(deg * M_PI / 180));
    const double dx = std::nearbyint(double(x) - 300), dy = std::nearbyint(300 - double(y));
    double attendu = std::atan2(dy, dx) * 180 / M_PI;
    if (attendu < 0) attendu += 360;
    double angle = -1;
    ASSERT_EQ(CalculAngle(300, 300, x, y, angle), ResultatAngle::Calcule) << deg;
    EXPECT_NEAR(angle, attendu, 1e-6) << deg;
  }
}

TEST(CalculAngle, SurLesDeuxAxesLAngleResteCeluiDeLaPositionPrecedente) {
  const float axes[][2] = {{150, 100}, {50, 100}, {100, 40}, {100, 160}};
  for (auto& p : axes) {
    double angle = 0;  // fresh press
    EXPECT_EQ(CalculAngle(100, 100, p[0], p[1], angle), ResultatAngle::Inchange);
    EXPECT_EQ(angle, 0);
    // After an oblique position, the axis keeps that position's angle.
    ASSERT_EQ(CalculAngle(100, 100, 150, 50, angle), ResultatAngle::Calcule);
    EXPECT_EQ(CalculAngle(100, 100, p[0], p[1], angle), ResultatAngle::Inchange);
    EXPECT_NEAR(angle, 45, 1e-9);
  }
}

TEST(CalculAngle, UnEcartHorizontalArrondiAZeroEstUneDivisionParZeroSignalee) {
  double angle = 12;
  EXPECT_EQ(CalculAngle(100, 100, 100.3f, 50, angle), ResultatAngle::DivisionParZero);
  EXPECT_EQ(angle, 12);
  EXPECT_TRUE(TexteErreurCalculAngle().contains(QStringLiteral("CalculAngle")));
  EXPECT_TRUE(TexteErreurCalculAngle().startsWith(QStringLiteral("Error 11 (")));
}

// ------------------------------------------------------- length and the table

TEST(Distance, DroiteEtAxesExacts) {
  EXPECT_FLOAT_EQ(Distance(10, 20, 13, 24), 5);
  EXPECT_EQ(Distance(10, 20, 10, 12.7f), 20 - 12.7f);
  EXPECT_EQ(Distance(7.25f, 5, 3.5f, 5), 7.25f - 3.5f);
}

TEST(OffreTable, DixPixelsAffichesNeSuffisentPas_DixVirguleUnOui) {
  EXPECT_FALSE(OffreTable(Distance(20, 30, 30, 30)));
  EXPECT_FALSE(OffreTable(Distance(20, 30, 26, 38)));  // 6-8-10
  EXPECT_TRUE(OffreTable(Distance(20, 30, 30.1f, 30)));
  EXPECT_TRUE(OffreTable(Distance(20, 30, 20, 40.1f)));
}

// ------------------------------------------------------ the value per mode

TEST(ValeurAffichee, ModesZeroEtUnEnPixelsEntiersDeLImageCopiesDansPixTemp) {
  for (int16_t mode : {0, 1}) {
    ContexteMesure c;
    c.mode = mode;
    c.ratio = 2.5f;
    const auto v = ValeurAffichee(c, 101);  // 252.5 image pixels: ties to even
    ASSERT_TRUE(v);
    EXPECT_EQ(v->txtMesurePixel, "252");
    EXPECT_EQ(v->txtPixTemp, std::optional<QString>("252"));
  }
}

TEST(ValeurAffichee, ModeDeuxParEchelleManuelleVideLesPixelsTemporaires) {
  ContexteMesure c;
  c.mode = 2;
  c.ratio = 2;
  c.echelleTemp = true;
  c.micronsParPixelTemp = 0.3333f;
  c.imageFinale = true;      // the manual scale wins over the final picture's
  c.micronsParPixel = 10;
  const auto v = ValeurAffichee(c, 50);
  ASSERT_TRUE(v);
  EXPECT_EQ(v->txtMesurePixel, "33,3");
  EXPECT_EQ(v->txtPixTemp, std::optional<QString>(QString()));
}

TEST(ValeurAffichee, ModeDeuxParLEchelleDeLImageFinale) {
  ContexteMesure c;
  c.mode = 2;
  c.ratio = 1;
  c.imageFinale = true;
  c.micronsParPixel = 0.25f;
  c.separateur = QStringLiteral(".");
  const auto v = ValeurAffichee(c, 41);
  ASSERT_TRUE(v);
  EXPECT_EQ(v->txtMesurePixel, "10.2");  // 10.25 to 1 decimal, ties to even
  EXPECT_FALSE(v->txtPixTemp.has_value());
}

TEST(ValeurAffichee, ModeDeuxSansCartoucheNiEchelleManuelleNeChangeRien) {
  ContexteMesure c;
  c.mode = 2;
  c.ratio = 3;
  c.micronsParPixel = 0.5f;  // left over, but no final picture yet
  EXPECT_FALSE(ValeurAffichee(c, 120).has_value());
}

// ------------------------------------------------------------ InitMenu

TEST(InitMenu, UniteEtCommandesParMode) {
  const EtatMenuMesure m0 = InitMenu(0, 2048, 640);
  EXPECT_EQ(m0.titre, " Etalonnage ...");
  EXPECT_EQ(m0.unite, "pixels");
  EXPECT_TRUE(m0.fondVert);
  EXPECT_EQ(m0.optLigne, 0);
  EXPECT_FALSE(m0.listeMesureActive);

  const EtatMenuMesure m1 = InitMenu(1, 2048, 640);
  EXPECT_EQ(m1.titre, " Récupérer une échelle ...");
  EXPECT_EQ(m1.unite, "pixels");
  EXPECT_FALSE(m1.loupeVisible);

  const EtatMenuMesure m2 = InitMenu(2, 2048, 640);
  EXPECT_EQ(m2.titre, " Mesure sur image ...");
  EXPECT_EQ(m2.unite, "µm");
  EXPECT_EQ(m2.optLigne, 2);
  EXPECT_TRUE(m2.listeMesureActive);
  EXPECT_TRUE(m2.compteur);
  EXPECT_FALSE(m2.loupeVisible);
}

TEST(InitMenu, LaLoupeDemandeUneImageReduiteDAuMoins1500Pixels) {
  EXPECT_TRUE(InitMenu(0, 1500, 640).loupeActive);
  EXPECT_TRUE(InitMenu(0, 1499, 640).loupeVisible);
  EXPECT_FALSE(InitMenu(0, 1499, 640).loupeActive);
  // Not reduced: nothing to magnify.
  EXPECT_FALSE(InitMenu(0, 640, 640).loupeVisible);
  EXPECT_FALSE(InitMenu(0, 640, 640).loupeActive);
}

// ---------------------------------------------------- recovering a scale

TEST(EchelleRecuperable, LesDeuxTextesNombresPositifs) {
  EXPECT_TRUE(EchelleRecuperable("120", "50"));
  EXPECT_TRUE(EchelleRecuperable("120", "0,5"));
  EXPECT_FALSE(EchelleRecuperable("", "50"));
  EXPECT_FALSE(EchelleRecuperable("120", ""));
  EXPECT_FALSE(EchelleRecuperable("0", "50"));
  EXPECT_FALSE(EchelleRecuperable("abc", "50"));
}

struct CasEchelle {
  const char* mic;
  const char* pix;
};
class EchelleRefusee : public testing::TestWithParam<CasEchelle> {};
TEST_P(EchelleRefusee, ResteEnModeUn) {
  EXPECT_FALSE(ValiderEchelleTemp(GetParam().mic, GetParam().pix).has_value());
}
INSTANTIATE_TEST_SUITE_P(Saisies, EchelleRefusee,
                         testing::Values(CasEchelle{"0,4", "250"},  // above 0, rounds to 0
                                         CasEchelle{"0,5", "250"},  // ties to even: 0
                                         CasEchelle{"", "250"}, CasEchelle{"abc", "250"},
                                         CasEchelle{"-3", "250"}, CasEchelle{"100", ""},
                                         CasEchelle{"100", "0"}));

TEST(ValiderEchelleTemp, MicronsParPixelPuisUniteMicrons) {
  const auto e = ValiderEchelleTemp("1,5", "300");
  ASSERT_TRUE(e);
  EXPECT_FLOAT_EQ(*e, 0.005f);
  const auto f = ValiderEchelleTemp("100", "400");
  ASSERT_TRUE(f);
  EXPECT_FLOAT_EQ(*f, 0.25f);
}

// ---------------------------------------------------------------- loupe

TEST(Loupe, CadreHorsImageDonneSonMessageEtGardeLEtat) {
  Loupe l;
  // ratio 3 on 1920 x 1440: origin 3 x 10 - 50 = -20.
  EXPECT_EQ(l.CliquerImage(10, 300, 3, 1920, 1440), Loupe::Clic::HorsImage);
  EXPECT_EQ(l.EtatLoupe, 0);
  EXPECT_FALSE(l.HorsImage);  // cleared after the click, as each click does
  // Right edge: 1869 - 50 + 100 = 1919 is inside; 1870.2 - 50 + 100 is not.
  EXPECT_EQ(l.CliquerImage(623.4f, 300, 3, 1920, 1440), Loupe::Clic::HorsImage);
  EXPECT_EQ(l.EtatLoupe, 0);
  // Bottom edge: 3 x 447 - 50 + 100 = 1391 inside; 3 x 464 + 50 = 1442 not.
  EXPECT_EQ(l.CliquerImage(300, 464, 3, 1920, 1440), Loupe::Clic::HorsImage);
  EXPECT_EQ(l.EtatLoupe, 0);
  EXPECT_EQ(l.CliquerImage(623, 447, 3, 1920, 1440), Loupe::Clic::Cadre);
  EXPECT_EQ(l.EtatLoupe, 1);
  EXPECT_EQ(l.OrigineX(), 1819);
  EXPECT_EQ(l.OrigineY(), 1291);
  EXPECT_EQ(TexteHorsImage, "Loupe en dehors de l'image ...");
}

TEST(Loupe, DeuxPointsPointesAuPixelDeLImage) {
  Loupe l;
  const float ratio = 3;
  ASSERT_EQ(l.CliquerImage(200, 150, ratio, 1920, 1440), Loupe::Clic::Cadre);
  EXPECT_FLOAT_EQ(l.LoupeX1, 550);
  EXPECT_FLOAT_EQ(l.LoupeY1, 400);
  // Validating before any pick is refused, the state kept.
  Loupe::Validation v = l.Valider();
  EXPECT_EQ(v.action, Loupe::Validation::Erreur);
  EXPECT_EQ(v.titre, " Erreur pointage");
  EXPECT_EQ(l.EtatLoupe, 1);

  l.RelacherDansLoupe(37, 62);
  EXPECT_FLOAT_EQ(l.PointX1, 587);
  EXPECT_FLOAT_EQ(l.PointY1, 462);
  v = l.Valider();
  EXPECT_EQ(v.action, Loupe::Validation::PremierPoint);
  EXPECT_EQ(v.texte, "1er point ok, pointez le deuxième ...");
  EXPECT_EQ(l.EtatLoupe, 2);

  // A second frame leaving the picture keeps state 2 and the first point.
  EXPECT_EQ(l.CliquerImage(635, 150, ratio, 1920, 1440), Loupe::Clic::HorsImage);
  EXPECT_EQ(l.EtatLoupe, 2);
  EXPECT_FLOAT_EQ(l.PointX1, 587);

  ASSERT_EQ(l.CliquerImage(500, 150, ratio, 1920, 1440), Loupe::Clic::Cadre);
  EXPECT_EQ(l.EtatLoupe, 3);
  l.RelacherDansLoupe(13, 62);
  EXPECT_FLOAT_EQ(l.PointX2, 1463);
  EXPECT_FLOAT_EQ(l.PointY2, 462);
  v = l.Valider();
  EXPECT_EQ(v.action, Loupe::Validation::DeuxiemePoint);
  EXPECT_EQ(l.EtatLoupe, 4);
  EXPECT_FLOAT_EQ(l.Longueur, 1463 - 587);
  EXPECT_EQ(v.txtMesurePixel, "876");
  EXPECT_TRUE(v.texte.endsWith(" est de : 876 pixels")) << v.texte.toStdString();
  // State 4 ignores further clicks on the picture.
  EXPECT_EQ(l.CliquerImage(200, 150, ratio, 1920, 1440), Loupe::Clic::Ignore);
}

TEST(Loupe, RelacherHorsDesEtatsDePointageEffaceLesPointsEtLePointResteDansLeCadre) {
  Loupe l;
  ASSERT_EQ(l.CliquerImage(200, 150, 3, 1920, 1440), Loupe::Clic::Cadre);
  l.RelacherDansLoupe(140, -8);  // dragged past the frame's corner
  EXPECT_FLOAT_EQ(l.PointX1, 650);
  EXPECT_FLOAT_EQ(l.PointY1, 400);
  ASSERT_EQ(l.Valider().action, Loupe::Validation::PremierPoint);
  l.RelacherDansLoupe(10, 10);  // state 2: nothing being placed
  EXPECT_EQ(l.PointX1, 0);
  EXPECT_EQ(l.PointY1, 0);
  l.Reinitialiser();
  EXPECT_EQ(l.EtatLoupe, 0);
  EXPECT_EQ(l.LoupeX1, 0);
}

}  // namespace
}  // namespace tg
