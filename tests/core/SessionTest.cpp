#include <gtest/gtest.h>

#include "core/Session.h"
#include "imaging/cAdvancedImagery.h"

using namespace tg;

struct CasCadrage {
  float cadrage;
  float ratioFormat;
  const char* icone;
};

class IconeCadrageTest : public testing::TestWithParam<CasCadrage> {};

TEST_P(IconeCadrageTest, DerniereRegleQuiConvientGagne) {
  const auto& c = GetParam();
  EXPECT_EQ(IconeCadrage(c.cadrage, c.ratioFormat), c.icone)
      << c.cadrage << " / " << c.ratioFormat;
}

INSTANTIATE_TEST_SUITE_P(
    Cadrages, IconeCadrageTest,
    testing::Values(CasCadrage{800.0f / 600.0f, 800.0f / 600.0f, "Apn"},
                    CasCadrage{1.5f, 800.0f / 600.0f, "RN"},  // landscape, then 3:2 wins
                    CasCadrage{2.0f, 800.0f / 600.0f, "Paysage"},
                    CasCadrage{0.75f, 800.0f / 600.0f, "Portrait"},
                    CasCadrage{1.2f, 800.0f / 600.0f, "Portrait"},
                    CasCadrage{1.0f, 800.0f / 600.0f, "Carre"},  // portrait, then square wins
                    CasCadrage{1.04f, 800.0f / 600.0f, "Carre"},
                    // Format 750 x 562: a 4:3 picture is narrower, yet still "Apn".
                    CasCadrage{4.0f / 3.0f, 750.0f / 562.0f, "Apn"},
                    CasCadrage{1.5f, 1.5f, "RN"}));

TEST(InfosImage, ChampsEtAvertissementDuZoomNumerique) {
  SessionRecord s;
  s.SeparateurDecimal = ",";
  s.Largeur = 800;
  s.Hauteur = 600;
  s.Cadrage = 800.0f / 600.0f;
  s.RatioFormat = s.Cadrage;

  InfosImageAffichees i = CalculerInfosImage(s);
  EXPECT_EQ(i.txtTaille, "800 x 600");
  EXPECT_EQ(i.txtCadrage, "1,333 x 1");
  EXPECT_EQ(i.txtFocale, "N/A");
  EXPECT_EQ(i.iconeZoom, "ZoomVide");
  EXPECT_FALSE(i.avertirZoom);

  s.FocaleAPN = 7.5f;
  s.DigitalZoom = 1;  // no digital zoom used
  i = CalculerInfosImage(s);
  EXPECT_EQ(i.txtFocale, "7,5 mm");
  EXPECT_EQ(i.iconeZoom, "ZoomOk");
  EXPECT_FALSE(i.avertirZoom);
  EXPECT_FALSE(i.zoomRouge);
  EXPECT_EQ(i.txtDigitalZoom, "");

  s.DigitalZoom = 1.5f;
  i = CalculerInfosImage(s);
  EXPECT_TRUE(i.avertirZoom);
  EXPECT_TRUE(i.zoomRouge);
  EXPECT_EQ(i.iconeZoom, "ZoomNum");
  EXPECT_EQ(i.txtDigitalZoom, "Z.num = x1,5");
  EXPECT_EQ(TexteAvertissementZoom(s),
            "Attention, vous avez utilisé un zoom numérique de 1,5\n"
            "Vous ne pourrez pas étallonner avec cette photo !");
}

TEST(Session, ReinitialiserLitLaTailleEtVideLesChampsSaufLaClassification) {
  cAdvancedImagery ai;
  SessionRecord s;
  ASSERT_TRUE(ai.IO_CreateImage(s.ImageCourante, 300, 400, 24));
  s.TitreImage = "Diatomée";
  s.UniteEtalon = "mm";
  s.FocaleAPN = 12;
  s.PoidsFichier = 99;
  s.LargeurRecadrage = 77;
  s.TraitBruit = true;
  s.ModeMesure = 2;
  s.Genre = "Navicula";
  s.MotClef = "algue";
  s.ListeMotsClefs = {"algue"};

  ReinitialiserSession(s, ai);
  EXPECT_EQ(s.LargeurOrigine, 300);
  EXPECT_EQ(s.HauteurOrigine, 400);
  EXPECT_EQ(s.Largeur, 300);
  EXPECT_EQ(s.LargeurCadrage, 300);
  EXPECT_EQ(s.Hauteur, 400);
  EXPECT_FLOAT_EQ(s.Cadrage, 0.75f);
  EXPECT_TRUE(s.PortraitOrigine);
  EXPECT_EQ(s.LargeurRecadrage, 0);
  EXPECT_EQ(s.TitreImage, "");
  EXPECT_EQ(s.UniteEtalon, "um");
  EXPECT_EQ(s.FocaleAPN, 0);
  EXPECT_EQ(s.PoidsFichier, 0);
  EXPECT_FALSE(s.TraitBruit);
  EXPECT_EQ(s.ModeMesure, 0);
  EXPECT_EQ(s.MotClef, "");
  EXPECT_TRUE(s.ListeMotsClefs.isEmpty());
  EXPECT_EQ(s.Genre, "Navicula");
}

TEST(Session, TournerUneImageNonCarreeEchangeLesDimensions) {
  cAdvancedImagery ai;
  SessionRecord s;
  ASSERT_TRUE(ai.IO_CreateImage(s.ImageCourante, 640, 480, 24));
  ReinitialiserSession(s, ai);

  ASSERT_TRUE(TournerImageSession(s, ai, 270));
  EXPECT_EQ(s.Largeur, 480);
  EXPECT_EQ(s.Hauteur, 640);
  EXPECT_EQ(s.LargeurOrigine, 480);
  EXPECT_FLOAT_EQ(s.Cadrage, 0.75f);
  // The scale refers to the 640-pixel width, which now stands upright.
  EXPECT_TRUE(s.ImageTournee);

  ASSERT_TRUE(TournerImageSession(s, ai, 90));
  EXPECT_EQ(s.Largeur, 640);
  EXPECT_FALSE(s.ImageTournee);

  ASSERT_TRUE(TournerImageSession(s, ai, 180));
  EXPECT_EQ(s.Largeur, 640);
  EXPECT_FALSE(s.ImageTournee);
}

TEST(Session, TournerSansImageEchoueSansRienChanger) {
  cAdvancedImagery ai;
  SessionRecord s;
  s.Largeur = 123;
  EXPECT_FALSE(TournerImageSession(s, ai, 90));
  EXPECT_EQ(s.Largeur, 123);
  EXPECT_EQ(ai.Error_GetLast(), "Specified image is invalid");
}

TEST(Session, FermerImageLibereToutEtRevientAZero) {
  cAdvancedImagery ai;
  SessionRecord s;
  ASSERT_TRUE(ai.IO_CreateImage(s.ImageCourante, 10, 10, 24));
  ASSERT_TRUE(ai.IO_Copy(s.ImageCourante, s.ImageFormatee));
  s.Etape = 3;
  s.ImageFinale = s.ModeEtalon = s.MesureTemp = true;
  s.PathOrigine = "/x/y.jpg";
  FermerImageSession(s, ai);
  EXPECT_TRUE(s.ImageCourante.Vide());
  EXPECT_TRUE(s.ImageFormatee.Vide());
  EXPECT_EQ(s.Etape, 0);
  EXPECT_FALSE(s.ImageFinale || s.ModeEtalon || s.MesureTemp);
  EXPECT_EQ(s.PathOrigine, "");
}

TEST(Session, FormatDeTravailDepuisLaConfiguration) {
  SessionRecord s;
  s.ApnLarg = 0;
  s.ApnHaut = 0;
  PrendreFormatConfig(s);
  EXPECT_EQ(s.ApnLargCourant, 800);
  EXPECT_EQ(s.ApnHautCourant, 600);
  EXPECT_EQ(s.ApnLargVersHaut, 533);
  s.ApnLarg = 750;
  s.ApnHaut = 562;
  PrendreFormatConfig(s);
  EXPECT_EQ(s.ChoixFormat, 1);
  EXPECT_EQ(s.ApnLargVersHaut, 500);
  EXPECT_FLOAT_EQ(s.RatioFormat, 750.0f / 562.0f);
}
