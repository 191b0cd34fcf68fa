// Drawing of the cartouche: pixels of the bar, baselines and anchors of the
// texts on the four canvas heights, and the texts of the caption.
#include <gtest/gtest.h>

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <functional>

#include "cartouche/RenduCartouche.h"

namespace tg {
namespace {

const QColor kEchelle(255, 0, 0);
const QColor kTexte(0, 0, 255);

// Pixels where the colour dominates clearly (anti-aliased edges included
// when they are at least half-covered).
bool Rouge(QRgb c) { return qRed(c) > 180 && qGreen(c) < 128 && qBlue(c) < 128; }
bool Bleu(QRgb c) { return qBlue(c) > 180 && qRed(c) < 128 && qGreen(c) < 128; }

struct Encre {
  int haut = -1, bas = -1, gauche = -1, droite = -1;
  bool vide() const { return bas < 0; }
};

Encre Chercher(const QImage& img, const std::function<bool(QRgb)>& est, QRect zone) {
  Encre e;
  zone = zone.intersected(img.rect());
  for (int y = zone.top(); y <= zone.bottom(); ++y)
    for (int x = zone.left(); x <= zone.right(); ++x)
      if (est(img.pixel(x, y))) {
        if (e.haut < 0) e.haut = y;
        e.bas = y;
        if (e.gauche < 0 || x < e.gauche) e.gauche = x;
        e.droite = std::max(e.droite, x);
      }
  return e;
}

void InstallerPolices() {
  QFont::insertSubstitution(QStringLiteral("Comic Sans MS"), QStringLiteral("Comic Neue"));
}

ValeursCartouche Base(int hauteur, const QString& hb) {
  InstallerPolices();
  ValeursCartouche v;
  v.largeur = 640;
  v.hauteur = hauteur;
  v.cartoucheHB = hb;
  v.couleurEchelle = kEchelle;
  v.couleurTexte = kTexte;
  v.policeTitre = QFont("Arial", 10, QFont::Bold);
  v.policeSousTitre = QFont("Comic Sans MS", 8);
  v.largeurFormatee = 640;
  v.apnLargCourant = 800;
  v.dateTexte = "12/3/2008";
  return v;
}

// Each canvas height with what its baselines must be.
struct Forme {
  int hauteur;
  QString hb;
  int largeurFormatee;  // 800 = ApnLargCourant: the RN placement
  int barre;            // row of the bar
  int legende;          // caption baseline
  int titre, sousTitre;
  int troisieme;  // -1: no third line
  // Top row of the end ticks, bottom and top rows of the centre tick.
  int tick, centreBas, centreHaut;
};

class RenduFormes : public ::testing::TestWithParam<Forme> {
 protected:
  ValeursCartouche Valeurs() const {
    const Forme& f = GetParam();
    ValeursCartouche v = Base(f.hauteur, f.hb);
    v.largeur = f.largeurFormatee;
    v.largeurFormatee = f.largeurFormatee;
    return v;
  }
};

TEST_P(RenduFormes, BarreEtSesQuatreSegments) {
  const Forme& f = GetParam();
  ValeursCartouche v = Valeurs();
  v.echelleVisible = true;
  v.echellePixels = 70.423f;  // right end 82.423 -> 82, centre 47.2 -> 47
  v.longueur = 100;
  v.objectif = "10";
  QImage img;
  DessinerCartouche(img, v);
  ASSERT_EQ(img.size(), QSize(v.largeur, f.hauteur));
  const int y = f.barre;
  for (int x = 12; x <= 82; ++x) EXPECT_TRUE(Rouge(img.pixel(x, y))) << x;
  EXPECT_FALSE(Rouge(img.pixel(11, y)));
  EXPECT_FALSE(Rouge(img.pixel(83, y)));
  // End ticks: 5 up, nothing below the bar.
  for (int x : {12, 82}) {
    EXPECT_TRUE(Rouge(img.pixel(x, f.tick))) << x;
    EXPECT_FALSE(Rouge(img.pixel(x, f.tick - 1))) << x;
    EXPECT_FALSE(Rouge(img.pixel(x, y + 1))) << x;
  }
  // Centre tick: 2 below, 3 above.
  EXPECT_TRUE(Rouge(img.pixel(47, f.centreBas)));
  EXPECT_FALSE(Rouge(img.pixel(47, f.centreBas + 1)));
  EXPECT_TRUE(Rouge(img.pixel(47, f.centreHaut)));
  EXPECT_FALSE(Rouge(img.pixel(47, f.centreHaut - 1)));
  const Encre sous = Chercher(img, Rouge, QRect(0, y + 1, 200, f.centreBas - y));
  EXPECT_EQ(sous.gauche, 47);
  EXPECT_EQ(sous.droite, 47);
  // The caption's digits "100" stand on their baseline, 10 rows above.
  QFont arial("Arial");
  arial.setPointSize(9);
  const int l = QFontMetrics(arial).horizontalAdvance("100");
  const Encre chiffres = Chercher(img, Rouge, QRect(12, 0, l, y - 6));
  ASSERT_FALSE(chiffres.vide());
  EXPECT_EQ(chiffres.bas, f.legende - 1);
  EXPECT_GE(chiffres.gauche, 12);
  EXPECT_LE(chiffres.gauche, 14);
}

TEST_P(RenduFormes, LignesDuBlocDroit) {
  const Forme& f = GetParam();
  // One line at a time, in capitals without descenders.
  struct Ligne {
    int champ;
    int baseline;
  };
  for (const Ligne l : {Ligne{0, f.titre}, Ligne{1, f.sousTitre}, Ligne{6, f.troisieme}}) {
    ValeursCartouche v = Valeurs();
    v.titre = "  HEMATOXYLINE  ";
    v.eclairage = "FOND CLAIR";
    v.provenance = "MUSEE";
    v.choixChamp[l.champ] = true;
    QImage img;
    DessinerCartouche(img, v);
    const Encre e = Chercher(img, Bleu, QRect(v.largeur / 2, 0, v.largeur / 2, f.hauteur));
    if (l.baseline < 0) {
      EXPECT_TRUE(e.vide()) << l.champ;
      continue;
    }
    ASSERT_FALSE(e.vide()) << l.champ;
    EXPECT_EQ(e.bas, l.baseline - 1) << l.champ;
    // Right end at width - 12, blanks of the title cut.
    EXPECT_LE(e.droite, v.largeur - 12) << l.champ;
    EXPECT_GE(e.droite, v.largeur - 15) << l.champ;
  }
}

INSTANTIATE_TEST_SUITE_P(Hauteurs, RenduFormes,
                         ::testing::Values(Forme{60, "1", 640, 26, 16, 17, 33, 49, 21, 28, 23},
                                           Forme{40, "0", 640, 26, 16, 17, 33, -1, 21, 28, 23},
                                           Forme{64, "0", 800, 50, 40, 33, 49, -1, 45, 52, 47},
                                           // 80.5, 75.5, 82.5, 77.5 and 70.5 go to the even rows:
                                           // ticks one row shorter on this shape.
                                           Forme{103, "1", 800, 80, 70, 63, 79, 95, 76, 82, 78},
                                           // Narrower than the format: the title stays at 17.
                                           Forme{64, "0", 640, 50, 40, 17, 33, -1, 45, 52, 47}));

TEST(RenduCartouche, LigneMicroscopeSeulementEn3Lignes) {
  for (const QString hb : {"1", "0"}) {
    ValeursCartouche v = Base(60, hb);
    v.echelleVisible = true;
    v.echellePixels = 50;
    v.longueur = 20;
    v.microscope = "LABO";
    v.choixChamp[4] = true;
    QImage img;
    DessinerCartouche(img, v);
    v.modele = "E4500";
    v.choixChamp[5] = true;
    EXPECT_EQ(TexteMicroscope(v), "Micro / Bino : LABO - Photo : E4500");
    v.choixChamp[5] = false;
    EXPECT_EQ(TexteMicroscope(v), "Micro / Bino: LABO");
    // Text colour at baseline 46 of the left half.
    const Encre e = Chercher(img, Bleu, QRect(0, 30, 300, 30));
    if (hb == "1") {
      ASSERT_FALSE(e.vide());
      EXPECT_EQ(e.bas, 45);
    } else {
      EXPECT_TRUE(e.vide());
    }
  }
}

TEST(RenduCartouche, EchelleInvalideLaisseLeBlocGaucheVide) {
  ValeursCartouche v = Base(60, "1");
  v.echelleVisible = true;
  v.cartoucheValide = false;
  v.echellePixels = 500;
  v.longueur = 20;
  v.titre = "TITRE";
  v.choixChamp[0] = v.choixChamp[4] = true;
  v.microscope = "LABO";
  QImage img;
  DessinerCartouche(img, v);
  EXPECT_TRUE(Chercher(img, Rouge, img.rect()).vide());
  EXPECT_TRUE(Chercher(img, Bleu, QRect(0, 0, 320, 60)).vide());
  EXPECT_FALSE(Chercher(img, Bleu, QRect(320, 0, 320, 60)).vide());
}

TEST(RenduCartouche, BlocSansEchelle) {
  ValeursCartouche v = Base(60, "1");
  v.reductionAffichee = 3.5f;
  v.choixChamp[4] = v.choixChamp[5] = true;
  v.apPhotoMan = "E4500";
  v.microMan = "LABO";
  EXPECT_EQ(TexteSansEchelle1(v), "Micro / Macro : LABO");
  v.objectifMan = "40";
  EXPECT_EQ(TexteSansEchelle1(v), "Micro / Macro : LABO - Obj. 40x");
  v.microMan.clear();
  v.optUniteObj = 1;
  EXPECT_EQ(TexteSansEchelle1(v), "Obj. 40mm");
  EXPECT_EQ(TexteSansEchelle2(v), "Photo : E4500   R = 1:3,5");
  v.reductionAffichee = 0.5f;  // enlarged: no "R"
  EXPECT_EQ(TexteSansEchelle2(v), "Photo : E4500");
  // Drawn at baselines 16 and 33 (no descender in these capitals).
  v.microMan = "LABO";
  v.objectifMan.clear();
  QImage img;
  DessinerCartouche(img, v);
  EXPECT_EQ(Chercher(img, Bleu, QRect(0, 0, 320, 20)).bas, 15);
  EXPECT_EQ(Chercher(img, Bleu, QRect(0, 20, 320, 20)).bas, 32);
  v.choixChamp[4] = v.choixChamp[5] = false;
  EXPECT_TRUE(TexteSansEchelle1(v).isEmpty());
  EXPECT_TRUE(TexteSansEchelle2(v).isEmpty());
  DessinerCartouche(img, v);
  EXPECT_TRUE(Chercher(img, Bleu, img.rect()).vide());
}

TEST(RenduCartouche, TitreDecocheNeDessineRien) {
  ValeursCartouche v = Base(60, "1");
  v.titre = "*** Champ inutilisé ***";
  QImage img;
  DessinerCartouche(img, v);
  EXPECT_TRUE(Chercher(img, Bleu, img.rect()).vide());
  EXPECT_TRUE(Chercher(img, Rouge, img.rect()).vide());
  EXPECT_EQ(img.pixel(0, 0), QColor(Qt::white).rgb());
}

TEST(RenduCartouche, BandeOmbreSousLeDessin) {
  ValeursCartouche v = Base(103, "1");
  v.ombre = ImageOmbre(IndexOmbre(640));
  ASSERT_EQ(v.ombre.size(), QSize(640, 64));
  QImage img;
  DessinerCartouche(img, v);
  EXPECT_EQ(img.pixel(300, 0), v.ombre.pixel(300, 0));
  EXPECT_EQ(img.pixel(300, 80), QColor(Qt::white).rgb());  // strip is 64 rows whatever the height
  EXPECT_EQ(IndexOmbre(700), 0);
  EXPECT_TRUE(ImageOmbre(0).isNull());
  EXPECT_TRUE(OmbrageApplicable(1.5f));
  EXPECT_TRUE(OmbrageApplicable(1.46f));
  EXPECT_FALSE(OmbrageApplicable(1.33f));
}

struct CasLegende {
  int optUnite;
  double longueur;
  bool extrapole;
  float reduction;
  QString separateur;
  QString attendu;
};
class Legende : public ::testing::TestWithParam<CasLegende> {};

TEST_P(Legende, Texte) {
  const CasLegende& c = GetParam();
  ValeursCartouche v;
  v.optUnite = c.optUnite;
  v.longueur = c.longueur;
  v.extrapolationFoc = c.extrapole;
  v.reductionAffichee = c.reduction;
  v.separateur = c.separateur;
  v.objectif = "40";
  EXPECT_EQ(LegendeEchelle(v), c.attendu);
}
INSTANTIATE_TEST_SUITE_P(
    Cas, Legende,
    ::testing::Values(CasLegende{0, 100, false, 3.5f, ",", "100 µm   obj. x40   R = 1:3,5"},
                      CasLegende{0, 100, false, 1.0f, ",", "100 µm   obj. x40   R = 1:1"},
                      CasLegende{0, 100, false, 0.8f, ",", "100 µm   obj. x40"},
                      CasLegende{0, 100, true, 2.0f, ",", "100 µm [*]   obj. x40   R = 1:2"},
                      CasLegende{1, 500, false, 0.5f, ",", "0,5 mm   obj. x40"},
                      CasLegende{1, 500, false, 0.5f, ".", "0.5 mm   obj. x40"},
                      CasLegende{1, 1000, false, 0.5f, ",", "1 mm   obj. x40"}));

struct CasChoix {
  QString t1, t2, t3;
  int choix;
  QString attendu;
};
class Assembler : public ::testing::TestWithParam<CasChoix> {};

TEST_P(Assembler, Choix) {
  const CasChoix& c = GetParam();
  EXPECT_EQ(AssemblerChoix(c.t1, c.t2, c.t3, "", "Prép : ", "Colo : ", c.choix), c.attendu);
}
INSTANTIATE_TEST_SUITE_P(
    Cas, Assembler,
    ::testing::Values(CasChoix{"Fond Clair", "Eau", "Aucune", 7,
                               "Fond Clair - Prép : Eau - Colo : Aucune"},
                      CasChoix{"Fond Clair", "Eau", "Aucune", 0, ""},
                      CasChoix{"Fond Clair", "Eau", "Aucune", 1, "Colo : Aucune"},
                      CasChoix{"Fond Clair", "", "Aucune", 2, ""},
                      CasChoix{"Fond Clair", "Eau", "", 3, "Prép : Eau"},
                      CasChoix{"Fond Clair", "Eau", "Aucune", 4, "Fond Clair"},
                      CasChoix{"Fond Clair", "", "", 5, "Fond Clair"},
                      // Accepted dangling separators.
                      CasChoix{"Fond Clair", "", "Aucune", 6, "Fond Clair - "},
                      CasChoix{"Fond Clair", "Eau", "", 5, "Fond Clair - "},
                      CasChoix{"", "Eau", "Aucune", 7, "Prép : Eau - Colo : Aucune"},
                      CasChoix{"Fond Clair", "", "Aucune", 7, "Fond Clair - Colo : Aucune"}));

TEST(RenduCartouche, BinaireVersEntier) {
  EXPECT_EQ(BinaireVersEntier("100"), 4);
  EXPECT_EQ(BinaireVersEntier("011"), 3);
  EXPECT_EQ(BinaireVersEntier("111"), 7);
  EXPECT_EQ(BinaireVersEntier(""), 0);
}

struct CasForme {
  QString hb;
  float cadrage;
  int largeurFormatee, hauteurFormatee;
  int hauteurCartouche, hauteurFond;
};
class Formes : public ::testing::TestWithParam<CasForme> {};

TEST_P(Formes, QuatreFormes) {
  const CasForme& c = GetParam();
  const FormeCartouche f =
      CalculerFormeCartouche(c.hb, c.cadrage, c.largeurFormatee, 640, 480, c.hauteurFormatee);
  EXPECT_EQ(f.hauteurCartouche, c.hauteurCartouche);
  EXPECT_EQ(f.hauteurFond, c.hauteurFond);
  EXPECT_TRUE(f.infos.startsWith("Infos: "));
}
INSTANTIATE_TEST_SUITE_P(Cas, Formes,
                         ::testing::Values(CasForme{"1", 1.4988f, 640, 427, 103, 540},
                                           CasForme{"1", 1.3333f, 640, 480, 60, 540},
                                           CasForme{"1", 1.5f, 600, 400, 60, 540},
                                           CasForme{"0", 1.4988f, 640, 427, 64, 480},
                                           CasForme{"0", 1.5f, 640, 439, 64, 480},
                                           CasForme{"0", 1.5f, 640, 440, 40, 480}));

}  // namespace
}  // namespace tg
