#include <gtest/gtest.h>

#include "platform/Textes.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

TEST(EnleverAccents, ChaqueLettreAccentueeDevientSaLettreDeBase) {
  EXPECT_EQ(EnleverAccents(QStringLiteral(
                "ÀÁÂÃÄÅàáâãäåÒÓÔÕÖØòóôõöøÈÉÊËèéêëÌÍÎÏìíîïÙÚÛÜùúûüÿÑñÇç")),
            QStringLiteral("AAAAAAaaaaaaOOOOOOooooooEEEEeeeeIIIIiiiiUUUUuuuuyNnCc"));
}

TEST(EnleverAccents, LesAutresCaracteresRestent) {
  // Œ, æ, Ÿ and ß are not in the list: they stay.
  EXPECT_EQ(EnleverAccents(QStringLiteral("Cœur d'Œdipe, Ÿ ß æ: été 20°")),
            QStringLiteral("Cœur d'Œdipe, Ÿ ß æ: ete 20°"));
}

TEST(EnleverSpeciaux, ToutLeJeuEstEnleve) {
  EXPECT_EQ(EnleverSpeciaux(QStringLiteral("+\\/*%&()=?¦@#|.;:,<>$£![]~'")), QString());
}

TEST(EnleverSpeciaux, LettresChiffresBlancsEtTiretsRestent) {
  EXPECT_EQ(EnleverSpeciaux(QStringLiteral("Objectif x40 (huile), 1/2 pièce ; l'été_n°3-b \"ok\" {}")),
            QStringLiteral("Objectif x40 huile 12 pièce  lété_n°3-b \"ok\" {}"));
}

struct CasNettoyage {
  QString (*fonction)(const QString&);
  const char* nom;
  QString entree;
  QString attendu;
};

void PrintTo(const CasNettoyage& c, std::ostream* os) { *os << c.nom; }

class Nettoyage : public testing::TestWithParam<CasNettoyage> {};

TEST_P(Nettoyage, RendLeTexteAttendu) {
  EXPECT_EQ(GetParam().fonction(GetParam().entree), GetParam().attendu);
}

INSTANTIATE_TEST_SUITE_P(
    Cas, Nettoyage,
    testing::Values(
        CasNettoyage{EnleverGuillemets, "guillemets", "  \"Plan\" \"Apo\"  ", "Plan Apo"},
        // Trimmed before the quotes go: the blanks inside them stay.
        CasNettoyage{EnleverGuillemets, "guillemets internes", "\" x \"", " x "},
        CasNettoyage{EnleverGuillemets, "sans guillemet", "abc", "abc"},
        CasNettoyage{EnleverEgal, "egal", " a=b==c ", "a b  c"},
        CasNettoyage{EnleverEgal, "egal en bord", "=a=", " a "},
        CasNettoyage{EnleverRetours, "CR LF compte pour un", "un\r\ndeux", "un deux"},
        CasNettoyage{EnleverRetours, "LF et CR seuls", "a\nb\rc", "a b c"},
        CasNettoyage{EnleverRetours, "deux retours", "a\r\n\r\nb", "a  b"},
        CasNettoyage{EnleverRetours, "retours en bord", "\r\n a\r\nb \r\n", "a b"}));

struct CasTouche {
  const char* separateur;
  int touche;
  int attendue;
};

class ToucheNumerique : public testing::TestWithParam<CasTouche> {};

TEST_P(ToucheNumerique, SeparateurRemplace) {
  int t = GetParam().touche;
  ReplaceNationalSep(t, GetParam().separateur);
  EXPECT_EQ(t, GetParam().attendue);
}

INSTANTIATE_TEST_SUITE_P(Cas, ToucheNumerique,
                         testing::Values(CasTouche{",", '.', ','}, CasTouche{",", ',', ','},
                                         CasTouche{".", ',', '.'}, CasTouche{".", '.', '.'},
                                         CasTouche{",", '5', '5'}, CasTouche{".", 8, 8},
                                         CasTouche{",", '-', '-'}));

struct CasNombre {
  const char* texte;
  bool accepte;
  double valeur;
};

void PrintTo(const CasNombre& c, std::ostream* os) { *os << '"' << c.texte << '"'; }

class Nombre : public testing::TestWithParam<CasNombre> {};

TEST_P(Nombre, LuAvecLUnOuLAutreSigne) {
  double v = -999;
  EXPECT_EQ(LireNombre(GetParam().texte, v), GetParam().accepte);
  if (GetParam().accepte) {
    EXPECT_DOUBLE_EQ(v, GetParam().valeur);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cas, Nombre,
    testing::Values(CasNombre{"1.5", true, 1.5}, CasNombre{"1,5", true, 1.5},
                    CasNombre{" 40 ", true, 40}, CasNombre{"-0,25", true, -0.25},
                    CasNombre{"", false, 0}, CasNombre{"abc", false, 0},
                    CasNombre{"1.2.3", false, 0}, CasNombre{"1,000.5", false, 0},
                    CasNombre{"12a", false, 0}, CasNombre{"inf", false, 0},
                    CasNombre{"nan", false, 0}));

struct CasControle {
  const char* valeur;
  bool nonNul;
  bool positif;
};

void PrintTo(const CasControle& c, std::ostream* os) { *os << '"' << c.valeur << '"'; }

class ControleNumerique : public testing::TestWithParam<CasControle> {};

TEST_P(ControleNumerique, RefusAnnonceSousLeTitreDesChampsNumeriques) {
  test::DialoguesScriptes d;
  EXPECT_EQ(ControleNonNul(GetParam().valeur), GetParam().nonNul);
  EXPECT_EQ(ControlePositif(GetParam().valeur), GetParam().positif);

  QStringList attendus;
  if (!GetParam().nonNul) attendus << QStringLiteral("Chiffres uniquement et non nul !");
  if (!GetParam().positif) attendus << QStringLiteral("Chiffres uniquement !");
  EXPECT_EQ(d.Textes(), attendus);
  for (const auto& a : d.appels) {
    EXPECT_EQ(a.genre, "Message");
    EXPECT_EQ(a.titre, QStringLiteral("Erreur sur les champs numériques"));
    EXPECT_EQ(a.icone, 48);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cas, ControleNumerique,
    testing::Values(CasControle{"12", true, true}, CasControle{"0,5", true, true},
                    CasControle{"0.001", true, true}, CasControle{"0", false, true},
                    CasControle{"0,0", false, true}, CasControle{"-3", false, false},
                    CasControle{"", false, false}, CasControle{"douze", false, false},
                    CasControle{"4x", false, false}));

TEST(Locale, SeparateurDuSystemeEstUnSigneDecimal) {
  const QString sep = SeparateurDecimalSysteme();
  EXPECT_TRUE(sep == "." || sep == ",") << sep.toStdString();
}

}  // namespace
}  // namespace tg
