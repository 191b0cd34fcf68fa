// Validation and date choice of the cartouche form, without its widgets.
#include <gtest/gtest.h>

#include "cartouche/FormCartouche.h"
#include "core/Session.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

const QDate kAujourdhui(2024, 5, 17);

struct CasDate {
  const char* dateImage;
  const char* dateObservation;
  const char* jour;
  const char* mois;
  const char* annee;
  const char* libelle;
};

class RecupDateTest : public testing::TestWithParam<CasDate> {};

TEST_P(RecupDateTest, ChoisitLaDate) {
  test::DialoguesScriptes dlg;
  const CasDate c = GetParam();
  const DateCartouche d =
      RecupDate(QString::fromUtf8(c.dateImage), QString::fromUtf8(c.dateObservation), kAujourdhui);
  EXPECT_EQ(d.jour, c.jour);
  EXPECT_EQ(d.moisChoisi, c.mois);
  EXPECT_EQ(d.annee, c.annee);
  EXPECT_EQ(d.libelle, c.libelle);
  EXPECT_EQ(d.annees.first(), "1951");
  EXPECT_EQ(d.annees.last(), "2024");
}

INSTANTIATE_TEST_SUITE_P(
    Cas, RecupDateTest,
    testing::Values(
        // Days are not checked against the month.
        CasDate{"", "31/02/2008", "31", "02", "2008", "(date Meta)"},
        CasDate{"2008:03:02 10:00:00", "", "02", "03", "2008", "(date Exif)"},
        // The observation date wins over the EXIF one.
        CasDate{"2008:03:02 10:00:00", "05/06/2001", "05", "06", "2001", "(date Meta)"},
        // Years out of range: today, even though day and month passed.
        CasDate{"", "01/02/1950", "17", "05", "2024", "(date du jour)"},
        CasDate{"", "01/02/2025", "17", "05", "2024", "(date du jour)"},
        CasDate{"1951:01:01 00:00:00", "", "01", "01", "1951", "(date Exif)"},
        CasDate{"", "00/02/2008", "17", "05", "2024", "(date du jour)"},
        CasDate{"", "10/13/2008", "17", "05", "2024", "(date du jour)"},
        CasDate{"", "", "17", "05", "2024", "(date du jour)"}));

TEST(RecupDate, DateCorrompueAnnonceeEtDateDuJour) {
  test::DialoguesScriptes dlg;
  const DateCartouche d = RecupDate(QStringLiteral("0000:00:00 00:00:00"), QString(), kAujourdhui);
  EXPECT_EQ(d.libelle, "(date du jour)");
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.Dernier().texte, "Date Exif corrompue: Date du jour par défaut !");
}

ChampsCartouche Valides() {
  ChampsCartouche c;
  c.titre = QStringLiteral("Titre");
  c.eclairage = QStringLiteral("Fond Clair");
  c.pix = QStringLiteral("250");
  c.mic = QStringLiteral("100");
  c.longueur = QStringLiteral("20");
  c.objectif = QStringLiteral("40");
  return c;
}

struct CasControle {
  const char* nom;
  void (*modifier)(ChampsCartouche&);
  const char* message;  // empty: accepted
};

class ControleTest : public testing::TestWithParam<CasControle> {};

TEST_P(ControleTest, RefusOuAcceptation) {
  test::DialoguesScriptes dlg;
  ChampsCartouche c = Valides();
  GetParam().modifier(c);
  const ResultatControle r = ControleErreur(c, true, QStringLiteral(","));
  const QString attendu = QString::fromUtf8(GetParam().message);
  if (attendu.isEmpty()) {
    EXPECT_TRUE(r.valide);
    EXPECT_TRUE(dlg.appels.empty()) << dlg.Textes().join(" | ").toStdString();
  } else {
    EXPECT_FALSE(r.valide);
    EXPECT_TRUE(r.effacer);
    ASSERT_EQ(dlg.appels.size(), 1u);
    EXPECT_EQ(dlg.Dernier().texte, attendu);
  }
}

const char* const kNonNul =
    "Valeurs pour l'échelle : Chiffres uniquement et non nul\r\n"
    "Si vous ne désirez pas d'échelle cliquez sur \"Sans échelle\" ...";

INSTANTIATE_TEST_SUITE_P(
    Cas, ControleTest,
    testing::Values(
        CasControle{"Valide", [](ChampsCartouche&) {}, ""},
        CasControle{"Marqueur", [](ChampsCartouche& c) { c.eclairage = "+++ Choisir ou ajouter"; },
                    "Eclairage : Choisir dans la liste, éditer ou effacer ..."},
        CasControle{"AuteurLong", [](ChampsCartouche& c) { c.auteur = QString(71, u'x'); },
                    "Champs : Un des textes est trop long (max 70 char.)"},
        // Not length-checked.
        CasControle{"MicroLong", [](ChampsCartouche& c) { c.microMan = QString(100, u'x'); }, ""},
        CasControle{"PixVide", [](ChampsCartouche& c) { c.pix.clear(); }, kNonNul},
        CasControle{"MicZero", [](ChampsCartouche& c) { c.mic = "0"; }, kNonNul},
        CasControle{"ObjectifTexte", [](ChampsCartouche& c) { c.objectif = "x40"; }, kNonNul},
        CasControle{"PixLimite", [](ChampsCartouche& c) { c.pix = "15000"; }, ""},
        CasControle{"PixTrop", [](ChampsCartouche& c) { c.pix = "15001"; },
                    "Valeurs limites dépassées ...\r\n-----------------------------\r\n"
                    "Microns max = 32767\r\nPixels max = 15000\r\n"},
        CasControle{"MicTrop", [](ChampsCartouche& c) { c.mic = "32768"; },
                    "Valeurs limites dépassées ...\r\n-----------------------------\r\n"
                    "Microns max = 32767\r\nPixels max = 15000\r\n"}),
    [](const testing::TestParamInfo<CasControle>& i) { return std::string(i.param.nom); });

TEST(Controle, SansEchelleLesValeursNeComptentPasEtLeSeparateurSuitLaLocale) {
  test::DialoguesScriptes dlg;
  ChampsCartouche c = Valides();
  c.pix = QStringLiteral("12.5");
  c.objectif = QStringLiteral("0.5");
  c.mic = QStringLiteral("abc");
  EXPECT_TRUE(ControleErreur(c, false, QStringLiteral(",")).valide);
  EXPECT_EQ(c.pix, "12,5");
  EXPECT_EQ(c.objectif, "0,5");
  EXPECT_TRUE(dlg.appels.empty());
}

TEST(MemCartouche, OmbrageGardeEtMemoireVideeParUneNouvelleImage) {
  SessionRecord s;
  cAdvancedImagery ai;
  MemoireCartouche m;
  m.MemTitre = QStringLiteral("T");
  m.MemOmbrage = true;
  EcrireMemCartouche(s, m);
  m.MemOmbrage = false;
  m.MemTitre = QStringLiteral("U");
  EcrireMemCartouche(s, m);
  // A later store with the box unticked does not clear an older tick.
  EXPECT_TRUE(s.MemCartouche.MemOmbrage);
  EXPECT_EQ(s.MemCartouche.MemTitre, "U");

  ASSERT_TRUE(ai.IO_CreateImage(s.ImageCourante, 40, 30, 24));
  ReinitialiserSession(s, ai);
  EXPECT_TRUE(s.MemCartouche.MemTitre.isEmpty());
  EXPECT_FALSE(s.MemCartouche.MemOmbrage);
  EXPECT_EQ(s.MemCartouche.MemCouleurFond, 0xFFFFFF);
}

TEST(Police, RelueAuDemarrageSuivant) {
  SessionRecord s;
  QFont titre(QStringLiteral("Arial"));
  titre.setPointSizeF(12.75);
  titre.setBold(false);
  titre.setItalic(true);
  ASSERT_TRUE(EcrirePolice(s, 1, titre));
  EXPECT_EQ(TexteFont(titre), "Arial-12");
  SessionRecord relue;
  RecupereValeurIni(relue);
  EXPECT_EQ(relue.FontName1, "Arial");
  EXPECT_EQ(relue.FontSize1, 12);
  EXPECT_FALSE(relue.FontBold1);
  EXPECT_TRUE(relue.FontItalic1);
  // The subtitle keys are left to their defaults.
  EXPECT_EQ(relue.FontName2, "Arial");
  EXPECT_EQ(relue.FontSize2, 8);
}

TEST(SigneDecimalTape, LaToucheDeLAutreLocaleDonneLeSigneDuSysteme) {
  EXPECT_EQ(SigneDecimalTape(QStringLiteral("."), QStringLiteral(",")), ",");
  EXPECT_EQ(SigneDecimalTape(QStringLiteral(","), QStringLiteral(".")), ".");
  // The locale's own key, other keys, and a sign that is neither: untouched.
  EXPECT_EQ(SigneDecimalTape(QStringLiteral(","), QStringLiteral(",")), "");
  EXPECT_EQ(SigneDecimalTape(QStringLiteral("a"), QStringLiteral(",")), "");
  EXPECT_EQ(SigneDecimalTape(QStringLiteral("."), QStringLiteral("'")), "");
}

}  // namespace
}  // namespace tg
