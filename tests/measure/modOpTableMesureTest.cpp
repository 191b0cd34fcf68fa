// Lookups over the table file and the arithmetic of focal extrapolation.
#include <gtest/gtest.h>

#include "measure/TableMesure.h"
#include "measure/modOpTableMesure.h"
#include "platform/Liste.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

void Tables(const std::vector<EnrMesure>& tables) {
  FichierMesure f;
  ASSERT_TRUE(f.Ouvrir());
  int nbEnreg = f.LireEntete();
  for (const EnrMesure& e : tables) ASSERT_TRUE(AjouterTable(f, nbEnreg, e));
}

EnrMesure Table(const QString& modele, int largPix, float focale, const QString& micro = "Micro-A",
                const QString& config = "Trino", float obj = 40, int pix = 1000, int mic = 250) {
  return EnrMesure{modele, int16_t(largPix), micro,        config,
                   obj,    int16_t(pix),     int16_t(mic), focale};
}

// A landscape photo 2272 x 1704, not turned, at focal `focale`.
SessionRecord Photo(const QString& modele, float focale) {
  SessionRecord s;
  s.Modele = modele;
  s.FocaleAPN = focale;
  s.LargeurOrigine = 2272;
  s.HauteurOrigine = 1704;
  s.SeparateurDecimal = ",";
  return s;
}

TEST(TexteTable, FormeUniqueDesTables) {
  EXPECT_EQ(TexteTable(3, Table("APN-1", 2272, 0), ","),
            "3: APN-1  (2272) obj. x40 - F: 0 mm - Micro-A / Trino");
  EXPECT_EQ(TexteTable(12, Table("  Cam ", 640, 7.5f, " M ", "Tube  ", 4.5f), ","),
            "12: Cam  (640) obj. x4,5 - F: 7,5 mm - M / Tube");
  EXPECT_EQ(TexteTable(1, Table("Cam", 640, 7.5f, "M", "T", 0.1f), "."),
            "1: Cam  (640) obj. x0.1 - F: 7.5 mm - M / T");
}

struct CasLargeur {
  bool portrait, tournee;
  int attendue;
};
class LargeurReferenceTest : public testing::TestWithParam<CasLargeur> {};
TEST_P(LargeurReferenceTest, LaHauteurRemplaceLaLargeurQuandUnSeulDrapeau) {
  SessionRecord s;
  s.LargeurOrigine = 1704;
  s.HauteurOrigine = 2272;
  s.PortraitOrigine = GetParam().portrait;
  s.ImageTournee = GetParam().tournee;
  EXPECT_EQ(LargeurReference(s), GetParam().attendue);
}
INSTANTIATE_TEST_SUITE_P(Drapeaux, LargeurReferenceTest,
                         testing::Values(CasLargeur{true, true, 1704},
                                         CasLargeur{true, false, 2272},
                                         CasLargeur{false, true, 2272},
                                         CasLargeur{false, false, 1704}));

TEST(RemplirComboTable, SansFichierSeuleLaLigneVide) {
  ListeSimple combo, index;
  combo.items = {"ancien"};
  RemplirComboTable(combo, ",");
  EXPECT_EQ(combo.items, QStringList({""}));
  SessionRecord s = Photo("APN-1", 0);
  RemplirComboTableFiltre(combo, index, true, s);
  EXPECT_EQ(combo.items, QStringList({""}));
  EXPECT_EQ(index.items, QStringList({"0"}));
  ExtraireChoix(combo, ChoixModele);
  EXPECT_EQ(combo.items, QStringList({"  "}));
  ListeSimple focales, numeros;
  SelectionnerGroupe(1, focales, numeros, false, s);
  EXPECT_EQ(focales.Nombre(), 0);
}

struct CasFocale {
  float session, table;
  bool retenue;
};
class FiltreFocaleTest : public testing::TestWithParam<CasFocale> {};
TEST_P(FiltreFocaleTest, FocalesAUneDecimale) {
  Tables({Table("Autre", 2272, GetParam().table), Table("APN-1", 2272, GetParam().table)});
  SessionRecord s = Photo("APN-1", GetParam().session);
  ListeSimple combo, index;
  RemplirComboTableFiltre(combo, index, false, s);  // model ignored: both tables
  EXPECT_EQ(combo.Nombre(), GetParam().retenue ? 3 : 1);
  RemplirComboTableFiltre(combo, index, true, s);
  EXPECT_EQ(index.items, GetParam().retenue ? QStringList({"0", "2"}) : QStringList({"0"}));
}
INSTANTIATE_TEST_SUITE_P(Arrondi, FiltreFocaleTest,
                         testing::Values(CasFocale{7.84f, 7.8f, true},
                                         CasFocale{7.84f, 7.9f, false}, CasFocale{0.0f, 0.0f, true},
                                         CasFocale{7.8f, 0.0f, false},
                                         CasFocale{7.76f, 7.8f, true}));

TEST(RemplirComboTableFiltre, ModeleSansCasseMaisBlancFinalDeLaTableJamais) {
  Tables({Table("APN-1", 2272, 0), Table("APN-1 ", 2272, 0), Table("apn-1", 2272, 0),
          Table("APN-1", 2048, 0)});
  SessionRecord s = Photo("  Apn-1 ", 0);
  ListeSimple combo, index;
  RemplirComboTableFiltre(combo, index, true, s);
  EXPECT_EQ(s.Modele, "Apn-1");  // the session's model is trimmed for good
  EXPECT_EQ(index.items, QStringList({"0", "1", "3"}));
  ASSERT_EQ(combo.Nombre(), 3);
  EXPECT_EQ(combo.Item(2), "3: apn-1  (2272) obj. x40 - F: 0 mm - Micro-A / Trino");
}

TEST(RemplirComboTableFiltre, PortraitNonTourneCompareSaHauteur) {
  Tables({Table("APN-1", 1704, 0), Table("APN-1", 2272, 0)});
  SessionRecord s = Photo("APN-1", 0);
  s.LargeurOrigine = 1704;
  s.HauteurOrigine = 2272;
  s.PortraitOrigine = true;
  ListeSimple combo, index;
  RemplirComboTableFiltre(combo, index, true, s);
  EXPECT_EQ(index.items, QStringList({"0", "2"}));
  s.ImageTournee = true;  // turned back to landscape: its width
  RemplirComboTableFiltre(combo, index, true, s);
  EXPECT_EQ(index.items, QStringList({"0", "1"}));
}

TEST(RemplirComboTableExrapol, ToutesFocalesDuMemeModeleEtLargeur) {
  Tables({Table("APN-1", 2272, 7.5f), Table("APN-1", 2272, 15), Table("APN-1", 2048, 7.5f),
          Table("APN-2", 2272, 7.5f)});
  SessionRecord s = Photo("apn-1 ", 30);
  ListeSimple combo, index;
  RemplirComboTableExrapol(combo, index, s);
  EXPECT_EQ(index.items, QStringList({"0", "1", "2"}));
}

TEST(ComboTableSelonChoix, NomsAvecLaCasseLargeurParValeur) {
  Tables({Table("APN-1", 2272, 0, "Micro-A"), Table("APN-1", 640, 0, "micro-a"),
          Table("APN-2", 2272, 0, "Micro-A", "Tube")});
  ListeSimple combo, index;
  ComboTableSelonChoix(combo, index, ChoixMicro, "Micro-A", ",");
  EXPECT_EQ(index.items, QStringList({"0", "1", "3"}));
  ComboTableSelonChoix(combo, index, ChoixModele, "apn-1", ",");
  EXPECT_EQ(index.items, QStringList({"0"}));
  ComboTableSelonChoix(combo, index, ChoixConfig, "Tube", ",");
  EXPECT_EQ(index.items, QStringList({"0", "3"}));
  ComboTableSelonChoix(combo, index, ChoixLargeur, "2272,0", ",");
  EXPECT_EQ(index.items, QStringList({"0", "1", "3"}));
  ComboTableSelonChoix(combo, index, 9, "APN-1", ",");
  EXPECT_EQ(index.items, QStringList({"0"}));
  EXPECT_EQ(combo.Nombre(), index.Nombre());
}

TEST(ExtraireChoix, ValeursTrieesEtDedoublonnees) {
  Tables({Table("Zeta", 800, 0, "M"), Table("alpha", 1024, 0, "M"), Table("Zeta", 800, 0, "M"),
          Table("Alpha", 800, 0, "M")});
  ListeSimple combo;
  ExtraireChoix(combo, ChoixModele);
  // Sorted without regard to case, merged only when equal with it.
  EXPECT_EQ(combo.items, QStringList({"  ", "alpha", "Alpha", "Zeta"}));
  ExtraireChoix(combo, ChoixMicro);
  EXPECT_EQ(combo.items, QStringList({"  ", "M"}));
  ExtraireChoix(combo, ChoixLargeur);
  EXPECT_EQ(combo.items, QStringList({"  ", "1024", "800"}));
  ExtraireChoix(combo, 0);
  EXPECT_EQ(combo.items, QStringList({"  "}));
}

TEST(SelectionnerGroupe, CinqChampsEgauxFontUneSerieFocale) {
  Tables({Table("APN-1", 2272, 7.5f, "Micro-A"), Table("apn-1", 2272, 15, "MICRO-A"),
          Table("APN-1", 2272, 30, "Micro-A", "Trino", 10),   // other objective
          Table("APN-1", 2048, 30, "Micro-A"),                // other width
          Table("APN-1", 2272, 22.25f, "Micro-A", "Mono")});  // other config
  SessionRecord s = Photo("x", 0);
  s.Microscope = "avant";
  ListeSimple focales, numeros;
  SelectionnerGroupe(2, focales, numeros, false, s);
  EXPECT_EQ(focales.items, QStringList({"7,5", "15"}));
  EXPECT_EQ(numeros.items, QStringList({"1", "2"}));
  EXPECT_EQ(s.Modele, "x");
  SelectionnerGroupe(1, focales, numeros, true, s);
  EXPECT_EQ(numeros.items, QStringList({"1", "2"}));
  // The cartouche takes the spelling of the last table of the series.
  EXPECT_EQ(s.Modele, "apn-1");
  EXPECT_EQ(s.Microscope, "MICRO-A");
}

TEST(CoeffFocale, ExempleTravailleEtEcarts) {
  ListeSimple ecarts;
  // 1000 px = 250 um at 8 mm: 400 px per 100 um, 50 per mm; the spare last
  // entry is never read.
  EXPECT_FLOAT_EQ(CoeffFocale({8, 99}, {1000, 0}, {250, 0}, &ecarts, ","), 50.0f);
  EXPECT_EQ(ecarts.items, QStringList({"0"}));
  // 50 and 40: mean 45; 100 - 45/50*100 = 10, 100 - 45/40*100 = -12.5.
  EXPECT_FLOAT_EQ(CoeffFocale({8, 10, 0}, {1000, 1000, 0}, {250, 250, 0}, &ecarts, ","), 45.0f);
  EXPECT_EQ(ecarts.items, QStringList({"10", "-12,5"}));
  // Shorter pixel and micron arrays are brought to the bounds of the first.
  EXPECT_FLOAT_EQ(CoeffFocale({8, 10, 0}, {1000, 1000}, {250, 250}, nullptr, ","), 45.0f);
}

TEST(CoeffFocale, UnZeroOuUnTableauVideDonneZeroSansEcarts) {
  ListeSimple ecarts;
  ecarts.items = {"avant"};
  EXPECT_EQ(CoeffFocale({8, 10, 0}, {1000, 1000, 0}, {250, 0, 0}, &ecarts, ","), 0.0f);
  EXPECT_EQ(CoeffFocale({8, 10, 0}, {0, 1000, 0}, {250, 250, 0}, &ecarts, ","), 0.0f);
  EXPECT_EQ(CoeffFocale({8, 0, 0}, {1000, 1000, 0}, {250, 250, 0}, &ecarts, ","), 0.0f);
  EXPECT_EQ(CoeffFocale({8, 0}, {}, {250, 0}, &ecarts, ","), 0.0f);
  EXPECT_EQ(CoeffFocale({8}, {1000}, {250}, &ecarts, ","), 0.0f);  // no entry before the spare
  EXPECT_EQ(ecarts.items, QStringList({"avant"}));
}

struct CasMillePix {
  float focale, coeff;
  int attendu;
};
class UmPourMillePixTest : public testing::TestWithParam<CasMillePix> {};
TEST_P(UmPourMillePixTest, MicronsPourMillePixels) {
  DialoguesScriptes dlg;
  EXPECT_EQ(UmPourMillePix(GetParam().focale, GetParam().coeff), GetParam().attendu);
  EXPECT_TRUE(dlg.appels.empty());
}
INSTANTIATE_TEST_SUITE_P(
    Cas, UmPourMillePixTest,
    testing::Values(CasMillePix{8, 50, 250}, CasMillePix{16, 50, 125}, CasMillePix{0, 50, 0},
                    CasMillePix{8, 0, 0}, CasMillePix{-8, 50, 0}, CasMillePix{1000, 250, 0},  // 0.4
                    CasMillePix{1000, 1000.0f / 6.0f, 1},                                     // 0.6
                    CasMillePix{1, 3.05185f, 32767}));  // 32767.01, the largest

TEST(UmPourMillePix, ChampTropLargePiegeEtZero) {
  DialoguesScriptes dlg;
  EXPECT_EQ(UmPourMillePix(1, 1), 0);  // 100000 does not fit 16 bits
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.Dernier().texte,
            "Error 6 (Overflow) in procedure UmPourMillePix of Module modOpTableMesure");
  EXPECT_EQ(dlg.Dernier().icone, int(Icone::Critique));
  EXPECT_EQ(UmPourMillePix(1, 3.0518f), 0);  // 32767.55 rounds to 32768
  EXPECT_EQ(dlg.appels.size(), 2u);
}

}  // namespace
}  // namespace tg

namespace tg {
namespace {

struct CasMotif {
  const char* nom;
  const char* motif;
  bool correspond;
};
class CorrespondMotifTest : public testing::TestWithParam<CasMotif> {};
TEST_P(CorrespondMotifTest, SeulesEtoileEtPointDInterrogationComptent) {
  EXPECT_EQ(CorrespondMotif(QString::fromUtf8(GetParam().nom), QString::fromUtf8(GetParam().motif)),
            GetParam().correspond);
}
INSTANTIATE_TEST_SUITE_P(
    Motifs, CorrespondMotifTest,
    testing::Values(CasMotif{"APN-1", "apn-1", true}, CasMotif{"APN-1", "apn", false},
                    CasMotif{"APN-1", "a*", true}, CasMotif{"APN-1", "*1", true},
                    CasMotif{"APN-1", "APN?1", true}, CasMotif{"APN1", "APN?1", false},
                    CasMotif{"APN-1", "*", true}, CasMotif{"", "*", true},
                    CasMotif{"Cam (v2).x", "cam (v2).x", true}, CasMotif{"CamXv2", "cam.v2", false},
                    CasMotif{"Cam [1]", "cam [1]", true}, CasMotif{"Modèle", "MODÈLE", true}));

}  // namespace
}  // namespace tg
