// Output formats: the resize rule, the format chosen for a small or an
// already formatted picture, the stored format and the reduced measuring copy.
#include <gtest/gtest.h>

#include <QDir>
#include <QImage>

#include "core/Chargement.h"
#include "core/Formats.h"
#include "core/Session.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Ini.h"

namespace tg {
namespace {

struct CasRedim {
  int srcL, srcH, sortieL, sortieH;
  int attenduL, attenduH;
};

class Redimension : public testing::TestWithParam<CasRedim> {};

TEST_P(Redimension, GardeLesProportionsSansJamaisAgrandir) {
  const CasRedim c = GetParam();
  const Taille t = TailleRedimensionnee(c.srcL, c.srcH, float(c.srcL) / float(c.srcH),
                                        float(c.sortieL) / float(c.sortieH), c.sortieL, c.sortieH);
  EXPECT_EQ(t, (Taille{c.attenduL, c.attenduH}));
}

INSTANTIATE_TEST_SUITE_P(
    Tableau, Redimension,
    testing::Values(CasRedim{3264, 2448, 800, 600, 800, 600},  // same ratio: width decides
                    CasRedim{700, 525, 800, 600, 640, 480},    // smaller: comes down to 640
                    CasRedim{600, 400, 800, 600, 600, 400},    // under 640: keeps its size
                    CasRedim{1000, 2000, 640, 480, 240, 480},  // portrait: height decides
                    CasRedim{2000, 1000, 1152, 864, 1152, 576},
                    CasRedim{900, 700, 1024, 768, 617, 480},  // height decides, down to 480
                    CasRedim{500, 700, 800, 600, 429, 600}, CasRedim{300, 550, 800, 600, 262, 480},
                    CasRedim{200, 300, 800, 600, 200, 300}));  // under 480: kept

struct CasControle {
  int largeur, sortie;
  bool formatee;
  int choixAvant;
  int choixApres;
  bool reinitialise, formatSortie, bulle;
};

class Controle : public testing::TestWithParam<CasControle> {};

TEST_P(Controle, FormatSelonLaLargeur) {
  const CasControle c = GetParam();
  SessionRecord s;
  s.Largeur = c.largeur;
  s.ApnLargCourant = int16_t(c.sortie);
  s.ImageDejaFormatee = c.formatee;
  s.ChoixFormat = int16_t(c.choixAvant);
  const DecisionControle d = DeciderControleImage(s);
  EXPECT_EQ(d.format.value_or(c.choixAvant), c.choixApres);
  EXPECT_EQ(d.formatReinitialise, c.reinitialise);
  EXPECT_EQ(d.formatSortie, c.formatSortie);
  EXPECT_EQ(d.imageFormatee, c.bulle);
}

INSTANTIATE_TEST_SUITE_P(
    Tableau, Controle,
    testing::Values(
        // Not formatted: narrower than the output width takes the largest it fills.
        CasControle{700, 800, false, 2, 0, true, true, false},
        CasControle{700, 640, false, 0, 0, false, false, false},  // wider than 640: no change
        CasControle{800, 800, false, 2, 2, false, false, false},  // as wide: no change
        CasControle{1100, 1152, false, 4, 3, true, true, false},
        CasControle{1024, 1152, false, 4, 3, true, true, false},
        CasControle{1023, 1152, false, 4, 2, true, true, false},
        CasControle{760, 1024, false, 3, 1, true, true, false},
        CasControle{750, 800, false, 2, 1, true, true, false},
        CasControle{749, 800, false, 2, 0, true, true, false},
        CasControle{500, 750, false, 1, 0, true, true, false},
        CasControle{500, 640, false, 0, 0, false, false, false},  // no row fits a 640 output
        // Formatted: the format follows the file; another width keeps it.
        CasControle{1024, 800, true, 2, 3, false, true, true},
        CasControle{750, 640, true, 0, 1, false, true, true},
        CasControle{640, 1152, true, 4, 0, false, true, true},
        CasControle{900, 800, true, 2, 2, false, true, true}));

TEST(FormatSortie, EcritLaTailleEtRenouvelleLesValeursDerivees) {
  SessionRecord s;
  s.ChoixFormat = 1;
  ASSERT_TRUE(AppliquerFormatSortie(s));
  EXPECT_EQ(s.ApnLargCourant, 750);
  EXPECT_EQ(s.ApnHautCourant, 562);
  EXPECT_EQ(s.ApnLarg, 750);
  EXPECT_EQ(s.ApnLargVersHaut, 500);
  EXPECT_FLOAT_EQ(s.RatioFormat, 750.0f / 562.0f);
  EXPECT_EQ(LireIni("FormatImage", "ApnLarg", CheminUserConfig(), ""), "750");
  EXPECT_EQ(LireIni("FormatImage", "ApnHaut", CheminUserConfig(), ""), "562");

  s.ChoixFormat = 4;
  ASSERT_TRUE(AppliquerFormatSortie(s));
  EXPECT_EQ(s.ApnLargVersHaut, 768);  // 1152 / 1.5
  EXPECT_EQ(LireIni("FormatImage", "ApnLarg", CheminUserConfig(), ""), "1152");

  s.ChoixFormat = 5;  // outside the table: nothing changes
  EXPECT_FALSE(AppliquerFormatSortie(s));
  EXPECT_EQ(s.ApnLargCourant, 1152);
}

class AvecImage : public testing::Test {
 protected:
  SessionRecord s;
  cAdvancedImagery ai;
  void Image(int l, int h) {
    ASSERT_TRUE(ai.IO_CreateImage(s.ImageCourante, l, h, 24));
    ReinitialiserSession(s, ai);
  }
};

TEST_F(AvecImage, RedimensionnerPrendLeRecadrageEtGardeUneCopieFormatee) {
  Image(2000, 1500);
  // A crop of 1000 x 1000 stands for the source, not the original size.
  ASSERT_TRUE(ai.Effect_Resize(s.ImageCourante, 1000, 1000, 3));
  s.LargeurRecadrage = s.HauteurRecadrage = 1000;
  s.RatioRecadrage = 1;
  ASSERT_TRUE(RedimensionnerSession(s, ai, 1));
  EXPECT_EQ(s.Largeur, 600);
  EXPECT_EQ(s.Hauteur, 600);
  EXPECT_FLOAT_EQ(s.Cadrage, 1.0f);
  EXPECT_EQ(ai.Info_Width(s.ImageFormatee), 600);
  EXPECT_EQ(s.LargeurFormatee, 600);
  EXPECT_EQ(s.HauteurFormatee, 600);
  EXPECT_NE(s.ImageFormatee.Get(), s.ImageCourante.Get());
}

TEST_F(AvecImage, EchecDeRedimensionnementGardeLAncienneImage) {
  // No picture at all: the layer fails and the record stays.
  s.LargeurOrigine = 800;
  s.HauteurOrigine = 600;
  s.RatioOrigine = 800.0f / 600;
  s.Largeur = 123;
  EXPECT_FALSE(RedimensionnerSession(s, ai, 3));
  EXPECT_EQ(s.Largeur, 123);
  EXPECT_TRUE(s.ImageFormatee.Vide());
  EXPECT_FALSE(ai.Error_GetLast().isEmpty());
}

// A header alone (ChargerEntete) is decoded at resizing: straight to the
// output size with Lanczos 3, through the reduced decode for another filter
// or a grey file; every road gives the size and metadata of a full load.
TEST_F(AvecImage, UnEnteteSeulEstDecodeAuRedimensionnement) {
  s.ApnLargCourant = 800;
  s.ApnHautCourant = 600;
  s.RatioFormat = 800.0f / 600;
  QImage motif(3203, 2135, QImage::Format_RGB32);
  for (int y = 0; y < motif.height(); ++y)
    for (int x = 0; x < motif.width(); ++x) motif.setPixel(x, y, qRgb(x % 256, y % 256, (x ^ y) % 256));
  const QString couleur = QDir::current().filePath("couleur.jpg"), gris = QDir::current().filePath("gris.jpg");
  ASSERT_TRUE(motif.save(couleur, "JPG", 90));
  ASSERT_TRUE(motif.convertToFormat(QImage::Format_Grayscale8).save(gris, "JPG", 90));
  for (const auto& [chemin, filtre] : {std::pair{couleur, 3}, {couleur, 1}, {gris, 3}}) {
    QSize taille;
    ASSERT_TRUE(ChargerEntete(s, ai, chemin, taille));
    EXPECT_FALSE(ai.Info_Pixels(s.ImageCourante));
    EXPECT_EQ(taille, QSize(3203, 2135));
    EXPECT_TRUE(RemplirSession(s, ai, chemin, taille).isEmpty());
    EXPECT_EQ(s.LargeurOrigine, 3203);
    EXPECT_EQ(s.HauteurOrigine, 2135);
    ASSERT_TRUE(RedimensionnerSession(s, ai, filtre, true)) << ai.Error_GetLast().toStdString();
    EXPECT_TRUE(ai.Info_Pixels(s.ImageCourante));
    EXPECT_EQ(s.Largeur, 800) << chemin.toStdString() << " " << filtre;
    EXPECT_EQ(s.Hauteur, 533);
    EXPECT_EQ(ai.Info_Width(s.ImageFormatee), 800);
    EXPECT_EQ(s.LargeurOrigine, 3203);
  }
}

struct CasMesure {
  int largeur, hauteur;
  const char* choixFormatMesure;
  bool finale;
  int attenduL, attenduH;
  float coef;
};

class Mesure : public testing::TestWithParam<CasMesure> {};

TEST_P(Mesure, CopieReduite) {
  const CasMesure c = GetParam();
  SessionRecord s;
  cAdvancedImagery ai;
  ASSERT_TRUE(ai.IO_CreateImage(s.ImageCourante, c.largeur, c.hauteur, 24));
  s.Largeur = c.largeur;
  s.Hauteur = c.hauteur;
  s.ChoixFormatMesure = QLatin1String(c.choixFormatMesure);
  s.ImageFinale = c.finale;
  ASSERT_TRUE(PreparerImageMesure(s, ai));
  EXPECT_EQ(s.LargeurMesure, c.attenduL);
  EXPECT_EQ(s.HauteurMesure, c.attenduH);
  EXPECT_EQ(ai.Info_Width(s.ImageMesure), c.attenduL);
  EXPECT_EQ(ai.Info_Height(s.ImageMesure), c.attenduH);
  EXPECT_NEAR(s.CoefMesure, c.coef, 1e-4);
}

INSTANTIATE_TEST_SUITE_P(
    Tableau, Mesure,
    testing::Values(CasMesure{800, 600, "0", false, 640, 480, 1.25f},
                    CasMesure{800, 700, "1", true, 750, 656, 800.0f / 750},
                    CasMesure{750, 700, "1", true, 750, 700, 1.0f},  // final 750: kept
                    CasMesure{750, 700, "1", false, 750, 700, 1.0f},
                    CasMesure{600, 1000, "0", false, 288, 480, 1000.0f / 480},
                    CasMesure{500, 400, "0", false, 500, 400, 1.0f}));  // smaller: kept

}  // namespace
}  // namespace tg
