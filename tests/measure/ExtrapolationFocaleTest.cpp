// The focal extrapolation: its series and arithmetic on tables written to the
// store, and the dialog driven by its controls.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPlainTextEdit>
#include <QPushButton>

#include "core/SessionRecord.h"
#include "measure/ExtrapolationFocale.h"
#include "measure/TableMesure.h"
#include "measure/frmExtrapolFocale.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

// Tables of one set-up (APN-Z, 2272 wide, x40) at these focal lengths, with
// 50 pixels per 100 microns per mm of focal length, or as given.
void Serie(const std::vector<std::pair<float, int>>& focalesPixels) {
  FichierMesure f;
  ASSERT_TRUE(f.Ouvrir());
  int nbEnreg = f.LireEntete();
  for (const auto& [focale, pix] : focalesPixels)
    ASSERT_TRUE(AjouterTable(f, nbEnreg, EnrMesure{"APN-Z", 2272, "Micro-A", "Trino", 40, int16_t(pix), 100, focale}));
}

SessionRecord Photo(float focale) {
  SessionRecord s;
  s.Modele = "APN-Z";
  s.FocaleAPN = focale;
  s.LargeurOrigine = 2272;
  s.HauteurOrigine = 1704;
  s.Largeur = 2272;
  s.SeparateurDecimal = ",";
  return s;
}

TEST(Extrapolation, DoublonsRetiresEtSerieTriee) {
  Serie({{8, 400}, {12, 600}, {8, 400}});
  SessionRecord s = Photo(10);
  bool doublons = false;
  const SerieFocale serie = SerieDeLaTable(3, s, false, &doublons);
  EXPECT_TRUE(doublons);
  EXPECT_EQ(serie.focales, (QStringList{"8", "12"}));
  EXPECT_EQ(serie.numeros, (QStringList{"1", "2"}));
  EXPECT_EQ(serie.deviations.size(), 2);
}

TEST(Extrapolation, DeuxTablesDonnentLeCoefficientEtLEchelle) {
  Serie({{20, 1000}, {10, 500}});
  SessionRecord s = Photo(15);
  const SerieFocale serie = SerieDeLaTable(1, s, false);
  ASSERT_EQ(serie.focales, (QStringList{"10", "20"}));  // sorted
  const Extrapolation r = CalculerExtrapolation(serie, 15, ",");
  ASSERT_TRUE(r.calcule) << r.refus.toStdString();
  EXPECT_FLOAT_EQ(r.coeff, 50);
  EXPECT_EQ(r.millePix, 133);     // 1000 / 15 / 50 x 100 = 133.3
  EXPECT_EQ(r.pixPour100, 752);   // 1000 / 133 x 100 = 751.88, from the rounded 133
  EXPECT_EQ(r.deviations, (QStringList{"0", "0"}));
  EXPECT_EQ(TexteEchelleExtrapolee(15, r.pixPour100, ","), "F:15mm    100 µm = 752 pixels");
}

TEST(Extrapolation, RefusUneLigneEtFocaleNulle) {
  Serie({{0, 500}, {20, 1000}});
  SessionRecord s = Photo(15);
  SerieFocale serie = SerieDeLaTable(1, s, false);
  ASSERT_EQ(serie.Nombre(), 2);
  // A table at focal length 0: no coefficient, 1000 / 0 caught by the trap.
  Extrapolation r = CalculerExtrapolation(serie, 15, ",");
  EXPECT_FALSE(r.calcule);
  EXPECT_EQ(r.refus, "Error 11 (Division par zéro) in procedure cmdCommand_Click of Feuille frmExtrapolFocale");
  serie.focales.removeFirst();
  serie.numeros.removeFirst();
  r = CalculerExtrapolation(serie, 15, ",");
  EXPECT_EQ(r.refus, "Il faut au moins 2 éléments pour calculer un coefficient !");
}

TEST(Extrapolation, EncadrementEtSeuilDeDeviation) {
  SerieFocale serie;
  serie.focales = {"8", "10", "12", "20"};
  serie.numeros = {"1", "2", "3", "4"};
  int bas = -1, haut = -1;
  ASSERT_TRUE(Encadrer(serie, 11, bas, haut));
  EXPECT_EQ(serie.focales[bas], "10");
  EXPECT_EQ(serie.focales[haut], "12");
  // On a table's focal length both neighbours are strict.
  ASSERT_TRUE(Encadrer(serie, 12, bas, haut));
  EXPECT_EQ(serie.focales[bas], "10");
  EXPECT_EQ(serie.focales[haut], "20");
  EXPECT_FALSE(Encadrer(serie, 8, bas, haut));
  EXPECT_FALSE(Encadrer(serie, 25, bas, haut));
  bool alerte = true;
  EXPECT_EQ(EchelleDeviations({"-3", "15"}, alerte), 30);
  EXPECT_FALSE(alerte);
  EXPECT_EQ(EchelleDeviations({"2,5", "-15,1"}, alerte), 30);
  EXPECT_TRUE(alerte);
}

class Dialogue : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  SessionRecord s = Photo(15);
  QPointer<frmExtrapolFocale> w;
  ~Dialogue() override {
    if (w) delete w.data();
  }
  void Ouvrir() {
    w = new frmExtrapolFocale(s, nullptr);
    w->show();
  }
  template <typename T = QWidget>
  T* C(const QString& nom) const {
    T* c = w->findChild<T*>(nom);
    EXPECT_NE(c, nullptr) << nom.toStdString();
    return c;
  }
};

TEST_F(Dialogue, ChoixDUneTableCalculEtAplatissement) {
  Serie({{10, 500}, {20, 1000}, {30, 1650}});
  Ouvrir();
  EXPECT_EQ(C<QComboBox>("comboTable")->count(), 4);  // a blank line, then the three
  w->comboTable_Click(1);
  EXPECT_EQ(C<QListWidget>("lstSelTable1")->count(), 3);
  QStringList deviations;
  for (int i = 0; i < 3; ++i) deviations << C<QListWidget>("lstSelTable2")->item(i)->text();
  EXPECT_EQ(deviations, (QStringList{"-3,3", "-3,3", "6,1"}));
  // 30 mm departs by 6.1 %, the others by -3.3: no warning, the graph spans twice the largest.
  EXPECT_EQ(w->EchelleGraphe(), 12);
  EXPECT_EQ(C<QLabel>("lblxPixMic")->text(), QStringLiteral("F:15mm    100 µm = %1 pixels").arg(w->Resultat().pixPour100));
  C<QPushButton>("cmdAplatir")->click();
  EXPECT_EQ(C<QListWidget>("lstSelTable1")->count(), 2);
  EXPECT_EQ(C<QLineEdit>("txtValeur0")->text(), "50");
  EXPECT_EQ(w->Resultat().pixPour100, 752);
  EXPECT_EQ(w->EchelleGraphe(), 12);  // the scale memory stays for trims
  // A trial at another focal length changes no session value.
  C<QLineEdit>("txtValeur1")->setText("20.0");
  C<QPushButton>("cmdCalculerUmPourMillePix")->click();
  EXPECT_EQ(C<QLineEdit>("txtValeur2")->text(), "100");
  EXPECT_EQ(C<QLineEdit>("txtValeur3")->text(), "1000");
  // One row removed: one left, refused.
  C<QListWidget>("lstSelTable0")->setCurrentRow(0);
  C<QPushButton>("cmdCommand0")->click();
  C<QPushButton>("cmdCommand2")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Il faut au moins 2 éléments pour calculer un coefficient !");
  EXPECT_TRUE(C<QLineEdit>("txtValeur0")->text().isEmpty());
  // From the main window nothing can be sent; cancel clears the flag.
  EXPECT_FALSE(C<QPushButton>("cmdEnvoyerAuCartouche")->isEnabled());
  s.ExtrapolationFoc = true;
  C<QPushButton>("cmdAnnuler")->click();
  EXPECT_FALSE(s.ExtrapolationFoc);
}

TEST_F(Dialogue, AplatirSurLaPlusPetiteFocaleEtAlerte) {
  s.FocaleAPN = 10;
  Serie({{10, 500}, {20, 1400}});
  Ouvrir();
  w->comboTable_Click(1);
  // 20 mm departs by more than 15 %.
  EXPECT_TRUE(dlg.Textes().contains(kAlerteDeviation));
  C<QPushButton>("cmdAplatir")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Impossible de trouver les valeurs sup. et/ou inf. !");
  EXPECT_EQ(C<QListWidget>("lstSelTable1")->count(), 2);
}

TEST_F(Dialogue, AucuneEquivalence) {
  s.Modele = "Autre";
  Ouvrir();
  EXPECT_EQ(dlg.Dernier().texte, "Aucune équivalence trouvée pour cette image ...");
  EXPECT_EQ(C<QLineEdit>("txtModele")->text(), "Autre");
  C<QPushButton>("cmdEnvoyerAuCartouche")->setEnabled(true);
  C<QPushButton>("cmdEnvoyerAuCartouche")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Effectuez d'abord le calcul ...");
}

// The help, opened and closed, down to its last two lines.
TEST_F(Dialogue, AideJusquALaDerniereLigne) {
  s.Modele = "Autre";
  Ouvrir();
  EXPECT_FALSE(C("picAide")->isVisible());
  C<QPushButton>("cmdAide")->click();
  EXPECT_TRUE(C("picAide")->isVisible());
  const QStringList lignes = C<QPlainTextEdit>("txtAide")->toPlainText().split(u'\n');
  ASSERT_EQ(lignes.size(), 27);
  EXPECT_EQ(lignes.first(), "Quelques recommandation importantes pour l'extrapolation de focale:");
  EXPECT_EQ(lignes[24],
            "Pour conclure, noubliez pas qu'en plus des déviations de zoom, vous pouvez cumuler des erreurs "
            "selon les objectifs utilisés ...");
  EXPECT_EQ(lignes[25], "Donc réalisez des essais !");
  EXPECT_EQ(lignes[26], "Merci d'avoir lu ces infos");
  C<QPushButton>("cmdFermerAide")->click();
  EXPECT_FALSE(C("picAide")->isVisible());
}

}  // namespace
}  // namespace tg
