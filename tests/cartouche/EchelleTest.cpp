// The scale arithmetic: table application, bar length, definition correction.
#include <gtest/gtest.h>

#include <cmath>

#include "cartouche/Echelle.h"

namespace tg {
namespace {

EnrMesure Table(int16_t pix, int16_t mic, float obj, int16_t largPix = 2272, float focale = 7.5f) {
  EnrMesure t;
  t.Modele = "E4500";
  t.Micro = "Labo";
  t.Pix = pix;
  t.Mic = mic;
  t.Obj = obj;
  t.LargPix = largPix;
  t.Focale = focale;
  return t;
}

TEST(EchelleTable, TableDeReferenceAppliqueeAUnAutreObjectif) {
  // 1000 pixels for 100 microns at x40, used at x10: 0.4 um/pixel, so 100
  // microns are 250 pixels.
  const auto m = MicronsParPixelTable(Table(1000, 100, 40), "10");
  ASSERT_TRUE(m.has_value());
  EXPECT_FLOAT_EQ(*m, 0.4f);
  EXPECT_EQ(PixPourCentMicrons(*m), "250");
  // Either decimal sign is read for the objective.
  EXPECT_FLOAT_EQ(*MicronsParPixelTable(Table(1000, 100, 40), "2,5"), 1.6f);
  EXPECT_FLOAT_EQ(*MicronsParPixelTable(Table(1000, 100, 40), "2.5"), 1.6f);
}

TEST(EchelleTable, ObjectifNulOuIlliblesRefuse) {
  EXPECT_FALSE(MicronsParPixelTable(Table(1000, 100, 40), "0"));
  EXPECT_FALSE(MicronsParPixelTable(Table(1000, 100, 40), "abc"));
  EXPECT_FALSE(MicronsParPixelTable(Table(1000, 100, 40), ""));
  EXPECT_FALSE(MicronsParPixelTable(Table(0, 100, 40), "10"));
}

TEST(EchelleTable, ArrondiAuPairLePlusProche) {
  // 100 / M exactly x.5: ties go to the even integer.
  EXPECT_EQ(PixPourCentMicrons(100.0f / 250.5f), "250");
  EXPECT_EQ(PixPourCentMicrons(100.0f / 251.5f), "252");
  EXPECT_EQ(PixPourCentMicrons(0.3f), "333");
}

TEST(EchelleCalcul, PhotoDe2272FormateeA640) {
  EntreesEchelle e;
  e.mic = 100;
  e.pix = 250;
  e.longueur = 100;
  e.largeurOrigine = 2272;
  e.largeurFormatee = 640;
  const ResultatEchelle r = CalculerEchelle(e);
  EXPECT_NEAR(r.micronsParPixel, 1.42f, 1e-5f);
  EXPECT_FLOAT_EQ(r.echellePixels, 70.423f);
  EXPECT_TRUE(r.valide);
}

struct CasLimite {
  double longueur;
  bool valide;
};
class EchelleLimite : public ::testing::TestWithParam<CasLimite> {};

TEST_P(EchelleLimite, BarreDe480PixelsRefusee) {
  // 1 micron per pixel on both photos: the bar's pixels equal its microns.
  EntreesEchelle e;
  e.mic = 100;
  e.pix = 100;
  e.longueur = GetParam().longueur;
  e.largeurOrigine = 640;
  e.largeurFormatee = 640;
  const ResultatEchelle r = CalculerEchelle(e);
  EXPECT_EQ(r.valide, GetParam().valide) << r.echellePixels;
  EXPECT_FLOAT_EQ(r.micronsParPixel, 1.0f);  // stored even when refused
}
INSTANTIATE_TEST_SUITE_P(Limites, EchelleLimite,
                         ::testing::Values(CasLimite{480.0, false}, CasLimite{479.999, true},
                                           CasLimite{479.9996, false}, CasLimite{900, false},
                                           CasLimite{20, true}));

TEST(EchelleCalcul, LargeurDeReferenceDuRecadrage) {
  EXPECT_EQ(LargeurRefEchelle(2272, 1000, 800), 1000);
  EXPECT_EQ(LargeurRefEchelle(2272, 1000, 0), 2272);
  EXPECT_EQ(LargeurRefEchelle(2272, 0, 800), 2272);
  // Crop of 1136 formatted to 640: the reduction refers to the crop, so the
  // microns per pixel are half those of the whole photo.
  EntreesEchelle e;
  e.mic = 100;
  e.pix = 250;
  e.longueur = 100;
  e.largeurOrigine = 2272;
  e.largeurRecadrage = 1136;
  e.hauteurRecadrage = 852;
  e.largeurFormatee = 640;
  const float entier = 0.4f / (640.0f / 2272.0f);
  EXPECT_NEAR(CalculerEchelle(e).micronsParPixel, entier / 2, 1e-5f);
  e.hauteurRecadrage = 0;
  EXPECT_NEAR(CalculerEchelle(e).micronsParPixel, entier, 1e-5f);
}

struct CasDefinition {
  bool portrait, tournee;
  float q;
  int largeur;
};
class EchelleDefinition : public ::testing::TestWithParam<CasDefinition> {};

TEST_P(EchelleDefinition, RapportSelonOrientation) {
  const auto& c = GetParam();
  const RapportDefinition r = CalculerRapportDefinition(c.portrait, c.tournee, 1600, 1200, 2400);
  EXPECT_FLOAT_EQ(r.q, c.q);
  EXPECT_EQ(r.largeur, c.largeur);
}
INSTANTIATE_TEST_SUITE_P(Orientations, EchelleDefinition,
                         ::testing::Values(CasDefinition{true, true, 1.5f, 1600},
                                           CasDefinition{true, false, 2.0f, 1200},
                                           CasDefinition{false, false, 1.5f, 1600},
                                           CasDefinition{false, true, 0.0f, 0}));

TEST(EchelleDefinition, CorrectionSeulementPourLaMemeFocale) {
  const RapportDefinition r = CalculerRapportDefinition(false, false, 1600, 1200, 2400);
  const auto pix = PixCorrige(250, r, 2400, 7.5f, 7.5f);
  ASSERT_TRUE(pix.has_value());
  EXPECT_DOUBLE_EQ(*pix, 166.67);  // 250 / 1.5 to 2 decimals
  // Another focal length: Yes does nothing.
  EXPECT_FALSE(PixCorrige(250, r, 2400, 7.5f, 10.0f));
  // Same width: nothing to correct.
  EXPECT_FALSE(
      PixCorrige(250, CalculerRapportDefinition(false, false, 2400, 1800, 2400), 2400, 7.5f, 7.5f));
  // Landscape photo turned: no ratio, no division.
  EXPECT_FALSE(
      PixCorrige(250, CalculerRapportDefinition(false, true, 1600, 1200, 2400), 2400, 7.5f, 7.5f));
}

TEST(EchelleDefinition, TexteDeLaQuestion) {
  const QString q = QuestionModifDefinition(1600, 2400);
  EXPECT_TRUE(q.contains("\r\nVotre image = 1600 pix - Votre table = 2400 pix\r\n\r\nCorriger ?"));
  EXPECT_EQ(q.count("\r\n"), 6);
}

TEST(EchelleChoixTable, FiltreEtNumeroDeTable) {
  // No focal length in the EXIF data: no filtered list at all.
  EXPECT_EQ(ChoisirFiltreAuto("E4500", 0), FiltreAuto::Aucun);
  EXPECT_EQ(ChoisirFiltreAuto("", 0), FiltreAuto::Aucun);
  EXPECT_EQ(ChoisirFiltreAuto("", 7.5f), FiltreAuto::SansModele);
  EXPECT_EQ(ChoisirFiltreAuto("E4500", 7.5f), FiltreAuto::AvecModele);
  EXPECT_FALSE(ExtrapolationPossible("", 7.5f));
  EXPECT_FALSE(ExtrapolationPossible("E4500", 0));
  EXPECT_TRUE(ExtrapolationPossible("E4500", 7.5f));
  // Row 3 of the full list is slot 4; of a filtered list, the hidden number + 1.
  EXPECT_EQ(SlotTableChoisie(3, true, ""), 4);
  EXPECT_EQ(SlotTableChoisie(1, false, "7"), 8);
  EXPECT_EQ(SlotTableChoisie(0, true, "7"), 0);
  EXPECT_EQ(SlotTableChoisie(1, false, ""), 0);
  const EnrMesure t = Table(1000, 100, 2.5f);
  EXPECT_EQ(TexteObjRef(t, ","), "(Table : obj. de réf = x2,5)");
  EXPECT_TRUE(TableCorrespond(t, 2272, 7.5f));
  EXPECT_FALSE(TableCorrespond(t, 2048, 7.5f));
  EXPECT_FALSE(TableCorrespond(t, 2272, 10.0f));
  EXPECT_EQ(QuestionLargeurFocale().count("\r\n"), 2);
}

TEST(EchelleTextes, LargeurPhoto) {
  EXPECT_EQ(TexteLargeurPhoto(true, false, 2272, 1704, 1704), "2272 (1704) pix");
  EXPECT_EQ(TexteLargeurPhoto(true, true, 1704, 2272, 2272), "2272 (1704) pix");
  EXPECT_EQ(TexteLargeurPhoto(false, false, 2272, 0, 1704), "2272 pix");
  EXPECT_EQ(TexteLargeurPhoto(false, true, 1704, 0, 2272), "2272 (1704) pix");
}

TEST(EchelleTextes, Reductions) {
  EXPECT_FLOAT_EQ(ReductionAffichee(0, 640, 2240, false, 0), 3.5f);
  EXPECT_FLOAT_EQ(ReductionAffichee(0, 640, 2304, false, 0), 3.6f);
  EXPECT_FLOAT_EQ(ReductionComment(0, 640, 2272, false, 0), 3.55f);
  EXPECT_FLOAT_EQ(ReductionAffichee(1280, 640, 2272, false, 0), 2.0f);
  // A picture formatted a second time keeps the first reduction.
  EXPECT_FLOAT_EQ(ReductionAffichee(0, 640, 640, true, 3.55f), 3.55f);
  EXPECT_FLOAT_EQ(ReductionComment(0, 640, 640, true, 3.55f), 3.55f);
}

}  // namespace
}  // namespace tg

namespace tg {
namespace {

// The auto bar: 1, 2 or 5 x 10^n microns, the longest under the bar limit
// and a quarter of the width, across widths and scales.
TEST(LongueurAuto, UnDeuxCinqDansLesLimites) {
  for (int largeur : {640, 800, 1152})
    for (double mpp : {0.05, 0.1, 0.25, 0.71, 1.0, 2.5, 7.3, 20.0}) {
      const double l = LongueurAuto(float(mpp), largeur);
      ASSERT_GT(l, 0) << largeur << " " << mpp;
      const double mantisse = l / std::pow(10.0, std::floor(std::log10(l) + 1e-9));
      EXPECT_TRUE(std::fabs(mantisse - 1) < 1e-6 || std::fabs(mantisse - 2) < 1e-6 || std::fabs(mantisse - 5) < 1e-6)
          << l;
      const double pixels = l / mpp;
      EXPECT_LT(pixels, kEchelleMaxPixels);
      EXPECT_LE(pixels, largeur * 0.25 + 1e-6);
      // The next step up would break a limit.
      const double suivante = mantisse == 1 ? l * 2 : mantisse == 2 ? l * 2.5 : l * 2;
      EXPECT_TRUE(suivante / mpp > largeur * 0.25 || suivante / mpp >= kEchelleMaxPixels - 1) << l;
    }
  EXPECT_EQ(LongueurAuto(0, 800), 0);
  EXPECT_DOUBLE_EQ(LongueurAuto(0.71f, 800), 100);  // 140.8 px of 200
}

}  // namespace
}  // namespace tg
