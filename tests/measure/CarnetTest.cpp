// The notebook's rows and series, its report in order and its plain-text file.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "measure/Carnet.h"
#include "platform/Fichiers.h"

namespace tg {
namespace {

void Mesurer(Carnet& c, const QString& valeur, const QString& texte = QString()) {
  c.txtMesure1 = valeur;
  c.txtMesure2 = texte;
  ASSERT_EQ(c.AjouterMesure(), Carnet::Ajout::Ajoute);
}

TEST(Carnet, MesuresEtSeriesNumeroteesEtRendues) {
  Carnet c;
  c.txtMesure1.clear();
  EXPECT_EQ(c.AjouterMesure(), Carnet::Ajout::Rien);  // no value: nothing
  EXPECT_TRUE(c.Lignes.isEmpty());

  Mesurer(c, "12,5", "cellule");
  EXPECT_EQ(c.txtMesure0, "2");
  EXPECT_TRUE(c.txtMesure1.isEmpty());
  EXPECT_TRUE(c.txtMesure2.isEmpty());
  // A cancelled prompt still takes series 1; the next one is series 2.
  EXPECT_EQ(c.AjouterSerie(QString()), Carnet::Ajout::Ajoute);
  EXPECT_EQ(c.AjouterSerie("Noyaux"), Carnet::Ajout::Ajoute);
  EXPECT_EQ(c.NumSerie, 2);
  // Series rows take row numbers: the next measurement is the fourth.
  EXPECT_EQ(c.txtMesure0, "4");
  Mesurer(c, "3", "");
  EXPECT_EQ(c.Rendu(),
            "Mesure 1 = 12,5 µm : cellule\r\n"
            "**** Série 1 : \r\n"
            "**** Série 2 : Noyaux\r\n"
            "Mesure 4 = 3 µm : \r\n");

  c.txtMesure1 = "9";
  c.EffacerSaisie();
  EXPECT_EQ(c.txtMesure0, "5");
  EXPECT_TRUE(c.txtMesure1.isEmpty());

  c.EffacerTout();
  EXPECT_TRUE(c.Lignes.isEmpty());
  EXPECT_EQ(c.NumSerie, 0);
  EXPECT_EQ(c.txtMesure0, "1");
  EXPECT_TRUE(c.Rendu().isEmpty());
}

TEST(Carnet, La201eLigneEstRefuseeParLesDeuxChemins) {
  Carnet c;
  for (int i = 0; i < 199; ++i) Mesurer(c, QString::number(i));
  // The 200th row may be a series.
  ASSERT_EQ(c.AjouterSerie("dernière"), Carnet::Ajout::Ajoute);
  ASSERT_EQ(c.Lignes.size(), 200);
  EXPECT_EQ(c.txtMesure0, "201");

  c.txtMesure1 = "7,5";
  c.txtMesure2 = "trop";
  EXPECT_EQ(c.AjouterMesure(), Carnet::Ajout::Plein);
  EXPECT_EQ(c.Lignes.size(), 200);
  // The typed text is lost.
  EXPECT_TRUE(c.txtMesure0.isEmpty());
  EXPECT_TRUE(c.txtMesure1.isEmpty());
  EXPECT_TRUE(c.txtMesure2.isEmpty());

  c.txtMesure2 = "série de trop";
  EXPECT_EQ(c.AjouterSerie("série de trop"), Carnet::Ajout::Plein);
  EXPECT_EQ(c.Lignes.size(), 200);
  EXPECT_EQ(c.NumSerie, 2);  // taken all the same
  EXPECT_TRUE(c.txtMesure2.isEmpty());
  EXPECT_EQ(TexteMaximumMesures, "Maximum de mesures atteint !");
}

SessionRecord SessionExemple() {
  SessionRecord s;
  s.TitreImage = "Diatomées du lac";
  s.DateObservation = "12/05/2024";
  s.Provenance = "Lac d'Annecy";
  s.NomAuteurImage = "Marie Curie";
  s.Modele = "Coolpix 4500";
  s.LargeurOrigine = 2272;
  s.LargeurRecadrage = 0;
  s.Largeur = 800;
  s.FocaleAPN = 7.5f;
  s.TraitNiveaux = true;
  s.TraitBruit = true;
  s.Microscope = "Micro-A";
  s.Eclairage = "Fond clair";
  s.Objectif = "40x";
  s.EchellePix = "120";
  s.EchelleMic = "50";
  s.Coloration = "Eosine";
  s.Preparation = "Glycérine";
  s.SeparateurDecimal = ",";
  return s;
}

TEST(Rapport, LignesDansLOrdreSansRecadrage) {
  const SessionRecord s = SessionExemple();
  ContenuCarnet c{"Mesure 1 = 12,5 µm : a\r\n", "Vu au printemps", "Tessellographe 100"};
  const QList<LigneRapport> lignes = LignesRapport(s, c);
  const QString attendu =
      "Diatomées du lac\r\n"
      "Date: 12/05/2024   Provenance: Lac d'Annecy\r\n"
      "\r\n"
      "\r\n\r\nInfos photo\r\n"
      "Auteur : Marie Curie\r\n"
      "Application : Tessellographe 100\r\n"
      "Appareil photo : Coolpix 4500\r\n"
      "Largeur original : 2272 pix\r\n"
      "Largeur après recadrage : Pas de recadrage\r\n"
      "Largeur après redimensionnement : 800 pix\r\n"
      "Réduction définition : 1/2,84\r\n"
      "Longueur focale : 7,5 mm\r\n"
      "Traitements numérique : Niveaux/Bruit/\r\n\r\n"
      "Microscope\r\n"
      "Modèle : Micro-A\r\n"
      "Eclairage : Fond clair\r\n"
      "Objectif : 40x\r\n"
      "Echelle (image formatée) : 120 pixels = 50 microns\r\n\r\n"
      "Préparation\r\n"
      "Coloration : Eosine\r\n"
      "Montage : Glycérine\r\n\r\n"
      "Liste de mesures\r\n"
      "Mesure 1 = 12,5 µm : a\r\n\r\n"
      "Commentaires\r\n"
      "\r\nVu au printemps\r\n\r\n";
  EXPECT_EQ(TexteRapport(lignes), attendu);

  // The title block, then the thumbnail, then the headings.
  ASSERT_GE(lignes.size(), 4);
  EXPECT_EQ(lignes[0].genre, LigneRapport::TitreBloc);
  EXPECT_EQ(lignes[3].genre, LigneRapport::Vignette);
  int rubriques = 0;
  for (const LigneRapport& l : lignes) rubriques += l.genre == LigneRapport::Rubrique;
  EXPECT_EQ(rubriques, 5);
}

TEST(Rapport, ImageRecadreeEtToutesLesOperations) {
  SessionRecord s = SessionExemple();
  s.LargeurRecadrage = 1500;
  s.Largeur = 1024;
  s.TraitPoussieres = s.TraitDeconvolution = true;
  const QString t = TexteRapport(LignesRapport(s, {}));
  EXPECT_TRUE(t.contains("\r\nLargeur après recadrage : 1500 pix\r\n"));
  EXPECT_TRUE(t.contains("\r\nRéduction définition : 1/1,46\r\n"));  // 1.4648
  EXPECT_TRUE(t.contains("\r\nTraitements numérique : Niveaux/Poussières/Bruit/Déconvolution/\r\n"));
}

TEST(Rapport, FichierTexteWindows1252SansLaVignette) {
  const SessionRecord s = SessionExemple();
  const QList<LigneRapport> lignes =
      LignesRapport(s, {"Mesure 1 = 3 µm : x\r\n", "ligne 1\nligne 2", ApplicationRapport()});
  const QString chemin = QDir::current().filePath("carnet.txt");
  ASSERT_TRUE(EnregistrerTexte(chemin, lignes));
  QFile f(chemin);
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  const QByteArray octets = f.readAll();
  // Same lines as the report's text, every end CR LF, no bare LF.
  QString attendu = TexteRapport(lignes);
  attendu.replace("ligne 1\nligne 2", "ligne 1\r\nligne 2");
  EXPECT_EQ(octets, VersWindows1252(attendu));
  EXPECT_EQ(octets.count("\n"), octets.count("\r\n"));
  EXPECT_TRUE(octets.contains("Diatom\xE9" "es"));
  EXPECT_FALSE(octets.contains("\xFF\xD8"));  // no picture bytes
  EXPECT_TRUE(ApplicationRapport().startsWith("Tessellographe "));
}

struct CasNom {
  const char* titre;
  bool rtf;
  const char* nom;
};
class NomFichier : public testing::TestWithParam<CasNom> {};
TEST_P(NomFichier, DepuisLeTitre) {
  EXPECT_EQ(NomFichierCarnet(QString::fromUtf8(GetParam().titre), GetParam().rtf),
            QString::fromUtf8(GetParam().nom));
}
INSTANTIATE_TEST_SUITE_P(
    Titres, NomFichier,
    testing::Values(CasNom{"  Diatomée n°3 : (Lac) ", false, "Diatomee_n°3__Lac.txt"},
                    CasNom{"ÀÉÎÕÜÿÇñ", true, "AEIOUyCn.rtf"},
                    CasNom{"+\\/*%&()=?¦@#|.;:,<>$£![]~'", true, ".rtf"},
                    CasNom{"", false, ".txt"}));

}  // namespace
}  // namespace tg
