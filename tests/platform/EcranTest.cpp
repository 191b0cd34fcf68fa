// Placing windows: a frame brought inside the screen, a tool window beside
// the picture it acts on, the zoom that shows a whole picture.
#include <gtest/gtest.h>

#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

#include "platform/Ecran.h"

namespace tg {
namespace {

const QRect kEcran800(0, 0, 800, 600);
const QRect kEcran1920(0, 0, 1920, 1080);

TEST(RamenerDansZone, DeplaceSansRedimensionnerEtGardeLeCoinHautGauche) {
  EXPECT_EQ(RamenerDansZone({100, 100, 200, 100}, kEcran800), QRect(100, 100, 200, 100));
  EXPECT_EQ(RamenerDansZone({700, 550, 200, 100}, kEcran800), QRect(600, 500, 200, 100));
  EXPECT_EQ(RamenerDansZone({-50, -20, 200, 100}, kEcran800), QRect(0, 0, 200, 100));
  // Larger than the screen: the title bar stays reachable.
  EXPECT_EQ(RamenerDansZone({300, 200, 900, 700}, kEcran800), QRect(0, 0, 900, 700));
  // A zone that does not start at 0 (a panel on the left, a second screen).
  EXPECT_EQ(RamenerDansZone({0, 0, 100, 100}, QRect(800, 30, 1280, 994)), QRect(800, 30, 100, 100));
}

struct CasPlacement {
  const char* nom;
  QSize taille;
  QRect cible, zone;
  QList<QRect> autres;
  QRect attendu;
};

class PlacerACoteT : public testing::TestWithParam<CasPlacement> {};

TEST_P(PlacerACoteT, CouvreLeMoinsPossibleDeLaCible) {
  const CasPlacement& c = GetParam();
  const QRect r = PlacerACote(c.taille, c.cible, c.zone, c.autres);
  EXPECT_EQ(r, c.attendu) << c.nom << " : " << r.x() << "," << r.y() << " " << r.width() << "x" << r.height();
  EXPECT_TRUE(c.zone.contains(r)) << c.nom;
  EXPECT_EQ(r.size(), c.taille) << c.nom;
}

INSTANTIATE_TEST_SUITE_P(
    Cas, PlacerACoteT,
    testing::Values(
        // 800 x 600 picture at the top left of a large screen: on its right, level with its top.
        CasPlacement{"a droite", {400, 500}, {90, 130, 800, 600}, kEcran1920, {}, {890, 130, 400, 500}},
        // A picture on the right half: on its left.
        CasPlacement{"a gauche", {400, 500}, {1000, 100, 800, 600}, kEcran1920, {}, {600, 100, 400, 500}},
        // A wide picture leaves room only below.
        CasPlacement{"dessous", {400, 300}, {0, 0, 1920, 700}, kEcran1920, {}, {1520, 700, 400, 300}},
        // A second tool covers neither the picture nor the first tool.
        CasPlacement{"a cote de l'autre", {400, 300}, {90, 130, 800, 600}, kEcran1920, {{890, 130, 400, 500}},
                     {90, 730, 400, 300}},
        CasPlacement{"sous l'autre", {400, 300}, {90, 130, 800, 900}, kEcran1920, {{890, 130, 400, 500}},
                     {890, 630, 400, 300}},
        // No room anywhere: where it covers the least of the picture, here
        // over the toolbar left of a picture that fills the rest of the screen.
        CasPlacement{"ecran plein", {300, 560}, {86, 150, 710, 440}, kEcran800, {}, {0, 0, 300, 560}},
        // A small screen: the second tool clear of the first, over the
        // picture where it covers the least of it.
        CasPlacement{"petit ecran", {360, 346}, {86, 150, 710, 440}, kEcran800, {{0, 0, 300, 560}},
                     {440, 0, 360, 346}},
        // A picture low on the screen: the tool above it.
        CasPlacement{"au-dessus", {300, 400}, {100, 400, 500, 150}, kEcran800, {}, {100, 0, 300, 400}}));

TEST(PourcentageImageEntiere, LaPlusGrandeDesDeuxDimensionsDecide) {
  // 800 x 660 final picture in the main window's frame at 800 x 600: the height decides.
  EXPECT_EQ(PourcentageImageEntiere({700, 420}, {800, 660}), 62);
  // A wide frame: still the height.
  EXPECT_EQ(PourcentageImageEntiere({1800, 900}, {1600, 1320}), 67);
  // A narrow frame: the width.
  EXPECT_EQ(PourcentageImageEntiere({500, 900}, {800, 660}), 61);
  // A picture smaller than the frame stays at its size.
  EXPECT_EQ(PourcentageImageEntiere({1800, 900}, {800, 660}), 100);
  // Rounded down, never 0.
  EXPECT_EQ(PourcentageImageEntiere({30, 30}, {10000, 10000}), 1);
  EXPECT_EQ(PourcentageImageEntiere({700, 420}, {0, 0}), 100);
}

TEST(PanneauDefilant, DemandeSesContenusEntiersEtSeContenteDePeu) {
  auto* contenu = new QWidget;
  auto* v = new QVBoxLayout(contenu);
  for (int i = 0; i < 40; ++i) v->addWidget(new QLabel(QStringLiteral("Ligne %1 d'un long panneau").arg(i)));
  PanneauDefilant p(contenu);
  // Whole on a large screen: a QScrollArea alone would ask for 24 lines at most.
  EXPECT_GE(p.sizeHint().height(), contenu->sizeHint().height());
  EXPECT_GE(p.sizeHint().width(), contenu->sizeHint().width() + p.verticalScrollBar()->sizeHint().width());
  // Content can be reached at a few lines' height, never narrowed below its width.
  EXPECT_LT(p.minimumSizeHint().height(), 10 * p.fontMetrics().height());
  EXPECT_GE(p.minimumSizeHint().width(), contenu->minimumSizeHint().width());
}

}  // namespace
}  // namespace tg
