// Rules of the main window that need no widget.
#include <gtest/gtest.h>

#include <QSet>
#include <QStringList>

#include "core/LogiquePrincipale.h"
#include "imaging/cAdvancedImagery.h"

namespace tg {
namespace {

struct CasAjustement {
  const char* nom;
  int cadreL, cadreH, largeur, hauteur;
  float cadrage;
  int zoneL, zoneH;
  std::optional<int> attendu;
};

class Ajustement : public testing::TestWithParam<CasAjustement> {};

TEST_P(Ajustement, DonneLePourcentageDuCurseur) {
  const CasAjustement& c = GetParam();
  EXPECT_EQ(
      PourcentageAjuste(c.cadreL, c.cadreH, c.largeur, c.hauteur, c.cadrage, c.zoneL, c.zoneH),
      c.attendu);
}

// Frame 810 x 610 leaves 800 x 600 once the 10-pixel margins are taken.
INSTANTIATE_TEST_SUITE_P(
    Tableau, Ajustement,
    testing::Values(
        // Narrower than the zone (1000 / 700): the height decides, at 100 %.
        CasAjustement{"HauteurPleine", 810, 610, 800, 600, 800.0f / 600, 1000, 700, 100},
        CasAjustement{"HauteurMoitie", 810, 610, 1600, 1200, 1600.0f / 1200, 1000, 700, 50},
        CasAjustement{"Portrait", 810, 610, 600, 1200, 0.5f, 1000, 700, 50},
        // Wider than the zone: the width decides, at 80 % only.
        CasAjustement{"LargeurQuatreVingts", 810, 610, 800, 400, 2.0f, 1000, 700, 80},
        CasAjustement{"LargeurGrande", 810, 610, 2000, 1000, 2.0f, 1000, 700, 32},
        // Equal ratios fall in the width branch.
        CasAjustement{"RatioEgal", 810, 610, 1600, 800, 2.0f, 1200, 600, 40},
        // Without a zone size the frame's own ratio (800 x 600 + margins) decides.
        CasAjustement{"SansZone", 810, 610, 800, 600, 800.0f / 600, 0, 0, 80},
        // Halves go to the even neighbour: 3 / 8 x 100 = 37.5, 1 / 8 x 100 = 12.5.
        CasAjustement{"DemiVersPair", 810, 13, 800, 8, 100.0f, 100000, 1, 38},
        CasAjustement{"DemiVersPairBas", 810, 11, 800, 8, 100.0f, 100000, 1, 12},
        CasAjustement{"SansImage", 810, 610, 0, 0, 0.0f, 1000, 700, std::nullopt}),
    [](const auto& info) { return std::string(info.param.nom); });

TEST(BarresDefilement, ApparaissentExactementQuandLImageDepasse) {
  EXPECT_EQ(BarresVisibles({800, 600}, {800, 600}), (Barres{false, false}));
  EXPECT_EQ(BarresVisibles({801, 600}, {800, 600}), (Barres{true, false}));
  EXPECT_EQ(BarresVisibles({800, 601}, {800, 600}), (Barres{false, true}));
  EXPECT_EQ(BarresVisibles({2000, 1500}, {800, 600}), (Barres{true, true}));
}

TEST(TailleAffichee, SuitLeCurseurEnPourcentage) {
  EXPECT_EQ(TailleAffichee(100, 800, 600), QSize(800, 600));
  EXPECT_EQ(TailleAffichee(50, 801, 601), QSize(400, 300));  // 400.5 and 300.5 to even
  EXPECT_EQ(TailleAffichee(150, 640, 480), QSize(960, 720));
}

TEST(Recadrage, DemandeAuMoins640Sur481) {
  EXPECT_TRUE(RecadragePossible(640, 481));
  EXPECT_TRUE(RecadragePossible(3000, 2000));
  EXPECT_FALSE(RecadragePossible(640, 480));
  EXPECT_FALSE(RecadragePossible(639, 1000));
  EXPECT_EQ(TexteRefusRecadrage(), "Vous ne pouvez pas recadrer cette image : <= 640 x 480");
}

TEST(InfosEcranTexte, ListeChaqueValeurSurSaLigne) {
  InfosEcran e;
  e.largeur = 1920;
  e.hauteur = 1080;
  e.profondeur = 24;
  e.frequence = 60;
  e.palette = false;
  e.couleursPalette = 0;
  e.dpiX = 96;
  e.dpiY = 72;
  EXPECT_EQ(TexteInfosEcran(e),
            "Infos écran:\n\nWidth = 1920\nHeight = 1080\nColor Depth (BPP) = 24\n"
            "Refresh Rate = 60\nUses Palette = FAUX\nPalette Colors = 0\n"
            "ResolutionX DPI = 96\nResolutionY DPI = 72");
  e.palette = true;
  e.couleursPalette = 256;
  const QString t = TexteInfosEcran(e);
  EXPECT_TRUE(t.contains("\nUses Palette = VRAI\nPalette Colors = 256\n")) << t.toStdString();
}

TEST(FiltreImages, LePremierFiltreCouvreTousLesAutres) {
  const QStringList morceaux = FiltreFichiersImage().split(u'|');
  ASSERT_EQ(morceaux.size(), 15);  // seven pairs and the closing bar
  EXPECT_TRUE(morceaux.last().isEmpty());
  EXPECT_EQ(morceaux[0], "Tous formats supportés");
  const QStringList tous = morceaux[1].split(u';');
  QStringList autres;
  for (int i = 3; i < 14; i += 2) autres += morceaux[i].split(u';');
  EXPECT_EQ(QSet<QString>(tous.begin(), tous.end()), QSet<QString>(autres.begin(), autres.end()));
  EXPECT_FALSE(FiltreFichiersImage().contains("TIF", Qt::CaseInsensitive));
}

TEST(CouleursFormats, SontEnBleuVertRouge) {
  EXPECT_EQ(CouleurBGR(0x0080FF), QColor(0xFF, 0x80, 0x00));  // orange
  EXPECT_EQ(CouleurBGR(0xC0C0FF), QColor(0xFF, 0xC0, 0xC0));
}

}  // namespace
}  // namespace tg
