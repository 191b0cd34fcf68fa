// The choice list files of the cartouche form and of the keyword tree.
#include <gtest/gtest.h>

#include <QFile>

#include "tests/support/Octets.h"
#include "cartouche/Listes.h"
#include "platform/Fichiers.h"
#include "platform/Liste.h"
#include "platform/Systeme.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;


QStringList Items(const QString& chemin) {
  QStringList items;
  EXPECT_TRUE(LireListe(chemin, items)) << chemin.toStdString();
  return items;
}


const QString kMarqueur = QLatin1String(MarqueurListe);

// Each list at its first fill: the file with "", the marker and its defaults,
// the combo holding them all, and the text after filling.
struct CasListe {
  ListeChoix liste;
  const char* fichier;
  int defauts;
  const char* premier;
  const char* texte;
};
class PremierRemplissage : public testing::TestWithParam<CasListe> {};

TEST_P(PremierRemplissage, DefautsEtTexte) {
  const CasListe c = GetParam();
  const QString chemin = RepApplication() + c.fichier;
  ASSERT_FALSE(FileExists(chemin));
  ListeSimple combo;
  RemplirCombo(c.liste, combo);
  const QStringList items = Items(chemin);
  ASSERT_EQ(items.size(), c.defauts + 2);
  EXPECT_EQ(items[0], QString());
  EXPECT_EQ(items[1], kMarqueur);
  EXPECT_EQ(items[2], QString::fromUtf8(c.premier));
  EXPECT_EQ(combo.items, items);
  EXPECT_EQ(combo.Texte(), QString::fromUtf8(c.texte));
  // Quoted items, CR LF, Windows-1252 bytes (é is 0xE9, never two bytes).
  const QByteArray o = test::LireOctets(chemin);
  EXPECT_TRUE(o.startsWith("\"\"\r\n\"+++ Choisir ou ajouter\"\r\n"));
  EXPECT_EQ(o.count("\r\n"), items.size());
  EXPECT_EQ(o.count('\n'), items.size());
  EXPECT_FALSE(o.contains("\xC3"));
}

INSTANTIATE_TEST_SUITE_P(
    Listes, PremierRemplissage,
    testing::Values(CasListe{ListeChoix::Eclairage, "lstEclairage.dat", 10, "Fond Clair", "Fond clair"},
                    CasListe{ListeChoix::Coloration, "lstColoration.dat", 6, "Aucune", "Aucune"},
                    CasListe{ListeChoix::Provenance, "lstProvenance.dat", 8, "Source", ""},
                    CasListe{ListeChoix::Montage, "lstMontage.dat", 13, "Eau", "Eau"}));

TEST(Listes, AccentsEnWindows1252) {
  ListeSimple combo;
  RemplirCombo(ListeChoix::Coloration, combo);
  EXPECT_TRUE(test::LireOctets(CheminListe(ListeChoix::Coloration)).contains("\"Bleu de m\xE9thyl\xE8ne\"\r\n"));
  EXPECT_TRUE(combo.items.contains("Bleu de méthylène"));
}

TEST(Listes, FichierDUneLigneEffacePuisDefautsDeRetour) {
  const QString chemin = CheminListe(ListeChoix::Montage);
  test::EcrireOctets(chemin, "\"\"\r\n");
  ListeSimple combo;
  combo.items = {"avant"};
  RemplirComboLst(chemin, combo);
  EXPECT_FALSE(FileExists(chemin));
  EXPECT_EQ(combo.items, QStringList({"avant"}));  // kept as it was
  // The next load of the form writes the defaults again.
  RemplirCombo(ListeChoix::Montage, combo);
  EXPECT_EQ(Items(chemin).size(), 15);
  EXPECT_EQ(combo.items.size(), 15);
  // An empty file is damaged as well.
  test::EcrireOctets(chemin, "");
  RemplirComboLst(chemin, combo);
  EXPECT_FALSE(FileExists(chemin));
}

TEST(Listes, AjoutEnTeteOrdreGardeComparaisonExacte) {
  const QString chemin = CheminListe(ListeChoix::Provenance);
  EcrireListe(chemin, {"", kMarqueur, " Mare ", "", "Lac", kMarqueur});
  ASSERT_TRUE(AjouterLstItem(chemin, "  lac  "));
  // "lac" differs from "Lac" by case: added; blanks cut, empties and extra markers gone.
  EXPECT_EQ(Items(chemin), QStringList({"", kMarqueur, "lac", "Mare", "Lac"}));
  // The marker or an empty text adds nothing; the list is rewritten as it was.
  const QByteArray avant = test::LireOctets(chemin);
  ASSERT_TRUE(AjouterLstItem(chemin, kMarqueur));
  EXPECT_EQ(test::LireOctets(chemin), avant);
  ASSERT_TRUE(AjouterLstItem(chemin, "   "));
  EXPECT_EQ(test::LireOctets(chemin), avant);
  // A file that does not exist yet starts with "" and the marker.
  const QString neuf = RepApplication() + "lstNeuf.dat";
  ASSERT_TRUE(AjouterLstItem(neuf, "Tourbière"));
  EXPECT_EQ(Items(neuf), QStringList({"", kMarqueur, "Tourbière"}));
}

TEST(Listes, PlusListeAjouteFondClairMaisPasLeDoublonExact) {
  ListeSimple combo;
  RemplirCombo(ListeChoix::Eclairage, combo);
  const QString chemin = CheminListe(ListeChoix::Eclairage);
  // Unticked: nothing.
  EXPECT_FALSE(AjouterSiNouveau(false, combo, chemin));
  // The default text "Fond clair" is not the item "Fond Clair": it joins the list at the top.
  ASSERT_TRUE(AjouterSiNouveau(true, combo, chemin));
  QStringList items = Items(chemin);
  EXPECT_EQ(items[2], "Fond clair");
  EXPECT_EQ(items[3], "Fond Clair");
  EXPECT_EQ(items.size(), 13);
  // An exact line of the combo is not added again; nor an empty text.
  combo.DefinirTexte("Fond Noir");
  EXPECT_FALSE(AjouterSiNouveau(true, combo, chemin));
  combo.DefinirTexte("");
  EXPECT_FALSE(AjouterSiNouveau(true, combo, chemin));
  EXPECT_EQ(Items(chemin), items);
}

TEST(Listes, ListesParDefautDemandeEtRemet) {
  DialoguesScriptes dlg;
  // Nothing ticked: no question.
  EXPECT_FALSE(cmdListeDefaut({false, false, false}, {nullptr, nullptr, nullptr}));
  EXPECT_TRUE(dlg.appels.empty());

  for (ListeChoix l : {ListeChoix::Provenance, ListeChoix::Montage, ListeChoix::Coloration}) {
    EcrireListeDefaut(l);
    AjouterLstItem(CheminListe(l), "Entrée perso");
  }
  ListeSimple provenance, montage, coloration;
  // No: nothing changes.
  dlg.reponses = {Reponse::Non};
  EXPECT_FALSE(cmdListeDefaut({true, true, true}, {&provenance, &montage, &coloration}));
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.Dernier().titre, "Listes par défaut");
  EXPECT_EQ(dlg.Dernier().texte,
            "Souhaitez-vous effacer vos entrées et\r\nremettre les listes à choix par défaut ?");
  EXPECT_EQ(dlg.Dernier().defaut, Reponse::Non);
  EXPECT_TRUE(Items(CheminListe(ListeChoix::Montage)).contains("Entrée perso"));

  // Yes with "Préparation" only: the montage list holds its defaults only.
  dlg.reponses = {Reponse::Oui};
  EXPECT_TRUE(cmdListeDefaut({false, true, false}, {&provenance, &montage, &coloration}));
  const QStringList defaut = QStringList{"", kMarqueur} + Definition(ListeChoix::Montage).defauts;
  EXPECT_EQ(Items(CheminListe(ListeChoix::Montage)), defaut);
  EXPECT_EQ(montage.items, defaut);
  EXPECT_EQ(montage.Texte(), "Eau");
  EXPECT_TRUE(provenance.items.isEmpty());
  EXPECT_TRUE(Items(CheminListe(ListeChoix::Provenance)).contains("Entrée perso"));
  EXPECT_TRUE(Items(CheminListe(ListeChoix::Coloration)).contains("Entrée perso"));
}

// ---------------------------------------------------------------- tree

TEST(Arbre, DefautsDuRegneEtFichiersVidesCrees) {
  std::array<ListeSimple, NombreNiveauxArbre> listes;
  std::array<IListe*, NombreNiveauxArbre> combos{};
  for (size_t i = 0; i < listes.size(); ++i) combos[i] = &listes[i];
  RemplirArbre(combos);
  EXPECT_EQ(listes[0].items, QStringList{""} + RegnesDefaut());
  EXPECT_FALSE(Items(CheminArbre(0)).contains(kMarqueur));
  for (int i = 1; i < NombreNiveauxArbre; ++i) {
    EXPECT_EQ(test::LireOctets(CheminArbre(i)), "\"\"\r\n") << i;
    EXPECT_EQ(listes[size_t(i)].items, QStringList{""}) << i;
  }
  // A kingdom file of the user's is kept.
  EcrireListe(CheminArbre(0), {"", "Virus"});
  RemplirArbre(combos);
  EXPECT_EQ(listes[0].items, QStringList({"", "Virus"}));
}

TEST(Arbre, AjoutSansMarqueur) {
  const QString chemin = CheminArbre(5);
  EcrireListe(chemin, {"", " Closterium ", "", "Euastrum"});
  ASSERT_TRUE(AjouterLstItemArbre(chemin, " Micrasterias"));
  EXPECT_EQ(Items(chemin), QStringList({"", "Micrasterias", "Closterium", "Euastrum"}));
}

struct CasNettoyage {
  const char* saisi;
  const char* stocke;
};
class MotsClefs : public testing::TestWithParam<CasNettoyage> {};
TEST_P(MotsClefs, UneLigneSansGuillemetNiEgal) {
  EXPECT_EQ(NettoyerMotsClefs(QString::fromUtf8(GetParam().saisi)),
            QString::fromUtf8(GetParam().stocke));
}
INSTANTIATE_TEST_SUITE_P(
    Arbre, MotsClefs,
    testing::Values(CasNettoyage{"  desmidiée, algue  ", "desmidiée, algue"},
                    CasNettoyage{"desmidiée,\r\nalgue", "desmidiée, algue"},
                    CasNettoyage{"a\nb\rc", "a b c"},
                    CasNettoyage{"\"verte\"=oui", "verte oui"},
                    CasNettoyage{"\r\nmare\r\n", "mare"}));

TEST(Arbre, ValiderStockeEtNAjoutePasLeRegne) {
  SessionRecord s;
  SaisieMotClef saisie;
  saisie.motClef = "algue,\r\ndesmidiée";
  saisie.classement = {"Chromista", "Charophyta", "Zygnematophyceae", "", "", "Closterium",
                       "\"lunula\"=x"};
  saisie.ajouter = {true, true, true, true, true, true};
  EcrireListe(CheminArbre(0), QStringList{""} + RegnesDefaut());
  EcrireListe(CheminArbre(1), {"", "Charophyta"});
  ListeSimple combo1;
  combo1.items = {"", "Charophyta"};
  std::array<const IListe*, NombreNiveauxArbre> combos{};
  combos[1] = &combo1;
  EXPECT_EQ(ValiderMotClef(s, saisie, combos), 6);
  EXPECT_EQ(s.MotClef, "algue, desmidiée");
  EXPECT_EQ(s.Regne, "Chromista");
  EXPECT_EQ(s.Espece, "lunula x");
  EXPECT_EQ(s.Ordre, "");
  // The hand-typed kingdom is in the record but never in lstArbre_0.dat.
  EXPECT_FALSE(Items(CheminArbre(0)).contains("Chromista"));
  // An existing line is not added twice; new ones at the top; empties never.
  EXPECT_EQ(Items(CheminArbre(1)), QStringList({"", "Charophyta"}));
  EXPECT_EQ(Items(CheminArbre(2)), QStringList({"", "Zygnematophyceae"}));
  EXPECT_FALSE(FileExists(CheminArbre(3)));
  EXPECT_EQ(Items(CheminArbre(6)), QStringList({"", "lunula x"}));

  // Unticked: stored in the record only.
  saisie.ajouter = {};
  saisie.classement[5] = "Cosmarium";
  ValiderMotClef(s, saisie, combos);
  EXPECT_EQ(s.Genre, "Cosmarium");
  EXPECT_FALSE(Items(CheminArbre(5)).contains("Cosmarium"));
  // Nothing filled: zero.
  EXPECT_EQ(ValiderMotClef(s, SaisieMotClef{}, combos), 0);
}

}  // namespace
}  // namespace tg
