// Start-up steps without a window: files of the program's folder, helpers,
// configuration upgrade and screen classes.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "tests/support/Octets.h"
#include "core/Demarrage.h"
#include "core/modMain.h"
#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Systeme.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

// Records the programs launched; never starts anything.
struct SystemeEspion : ISysteme {
  QStringList lances;
  SystemeEspion() { InstallerSysteme(this); }
  ~SystemeEspion() override { InstallerSysteme(nullptr); }
  bool LancerProgramme(const QString& p, const QStringList& a) override {
    lances << QFileInfo(p).fileName() + (a.isEmpty() ? QString() : " " + a.join(u' '));
    return true;
  }
  bool OuvrirAdresse(const QString&, const QString&) override { return true; }
  Ecran InfosEcran() override { return {}; }
};



TEST(Demarrage, FichierVersionRemplaceEtLisible) {
  test::EcrireOctets(CheminFichierVersion(), "VER Version 0.1.0\r\nreste\r\n");
  const QString v = ChaineVersion();
  EXPECT_TRUE(v.startsWith("Version ")) << v.toStdString();
  ASSERT_TRUE(EcrireFichierVersion(v));
  // One line, CR LF, nothing of the old file left.
  EXPECT_EQ(test::LireOctets(CheminFichierVersion()), ("VER " + v + "\r\n").toLatin1());
  EXPECT_EQ(LireFichierVersion(CheminFichierVersion()), v);
  test::EcrireOctets(CheminFichierVersion(), "rien\r\n");
  EXPECT_EQ(LireFichierVersion(CheminFichierVersion()), QString());
}

// Which helpers lie in the folder -> message shown, programs launched.
struct CasAssistants {
  bool kill, update, nouveau;
  const char* message;  // "" when silent
  const char* lance;    // "" when nothing is launched
};

class Assistants : public testing::TestWithParam<CasAssistants> {};

TEST_P(Assistants, AbsenceSignaleeSansArret) {
  const CasAssistants c = GetParam();
  QTemporaryDir dossier;
  const QString rep = dossier.path() + "/";
  if (c.kill) test::EcrireOctets(rep + "TG_Kill", "k");
  if (c.update) test::EcrireOctets(rep + "Tg_Update", "ancien");
  if (c.nouveau) test::EcrireOctets(rep + "Tg_Update_new", "nouveau");
  DialoguesScriptes dlg;
  SystemeEspion sys;
  MettreAJourAssistant(rep);
  if (*c.message) {
    ASSERT_EQ(dlg.appels.size(), 1u);
    EXPECT_EQ(dlg.Dernier().texte, QString::fromUtf8(c.message));
  } else {
    EXPECT_TRUE(dlg.appels.empty());
  }
  EXPECT_EQ(sys.lances, *c.lance ? QStringList{c.lance} : QStringList{});
  if (c.nouveau) {
    EXPECT_EQ(test::LireOctets(rep + "Tg_Update"), "nouveau");
    EXPECT_FALSE(FileExists(rep + "Tg_Update_new"));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Demarrage, Assistants,
    testing::Values(CasAssistants{true, true, false, "", "TG_Kill /P1=Tg_Update"},
                    CasAssistants{false, true, false, "Fichier \\TG_Kill.exe introuvable !", ""},
                    CasAssistants{true, false, false, "Fichier \\Tg_Update.exe introuvable !", ""},
                    CasAssistants{false, false, false, "Fichier \\TG_Kill.exe introuvable !", ""},
                    CasAssistants{true, true, true, "", "TG_Kill /P1=Tg_Update"},
                    CasAssistants{true, false, true, "Fichier \\Tg_Update.exe introuvable !", ""}));

TEST(Demarrage, MigrationsRemplacentLesNouveauxFichiers) {
  const QString rep = RepApplication();
  EcrireListe(rep + "objectif.dat", {"4", "10"});
  EcrireListe(rep + "objectif.txt", {"5", "50", "500"});
  test::EcrireOctets(rep + "lstMontage.txt", "\"\"\r\n\"Eau\"\r\n");
  EcrireListe(rep + "lstEclairage.dat", {"", "Fond Noir"});  // no old name: untouched
  const QStringList faits = MigrerFichiers(rep);
  EXPECT_EQ(faits, QStringList({"objectif.dat", "lstMontage.dat"}));
  QStringList items;
  ASSERT_TRUE(LireListe(rep + "objectif.dat", items));
  EXPECT_EQ(items, QStringList({"5", "50", "500"}));
  EXPECT_FALSE(FileExists(rep + "objectif.txt"));
  EXPECT_EQ(test::LireOctets(rep + "lstMontage.dat"), "\"\"\r\n\"Eau\"\r\n");
  EXPECT_FALSE(FileExists(rep + "lstMontage.txt"));
  EXPECT_TRUE(FileExists(rep + "lstEclairage.dat"));
  // Nothing left to do on the next start.
  EXPECT_TRUE(MigrerFichiers(rep).isEmpty());
}

TEST(Demarrage, TextePremierLancementDitLeSeparateur) {
  const QString virgule = TextePremierLancement("France", ",");
  EXPECT_TRUE(virgule.contains("pour la première fois ou il s'agit d'une nouvelle installation."));
  EXPECT_TRUE(virgule.endsWith("\nFrance: Votre séparateur décimal est la virgule"));
  EXPECT_TRUE(TextePremierLancement("United States", ".")
                  .endsWith("United States: Votre séparateur décimal est le point"));
  EXPECT_EQ(virgule.count(u'\n'), 6);
  // A locale without a country: the sentence alone, no ": " before it.
  EXPECT_TRUE(TextePremierLancement("", ".").endsWith("\nVotre séparateur décimal est le point"));
}

TEST(Demarrage, DossiersDeTravailCreesOuSignales) {
  DialoguesScriptes dlg;
  const QString docs = DossierDocuments();
  ASSERT_TRUE(CreerDossiersTravail(docs));
  for (const char* d : {"Tessellographe", "Tessellographe/ImageTravail", "Tessellographe/ImageEtalon"})
    EXPECT_TRUE(FolderExists(docs + d)) << d;
  EXPECT_TRUE(dlg.appels.empty());
  // Present folders are kept with their content.
  test::EcrireOctets(docs + "Tessellographe/ImageTravail/a.jpg", "x");
  ASSERT_TRUE(CreerDossiersTravail(docs));
  EXPECT_TRUE(FileExists(docs + "Tessellographe/ImageTravail/a.jpg"));

  EXPECT_FALSE(CreerDossiersTravail(docs + "absent/"));
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.Dernier().titre, "Lecteur non trouvé");
  EXPECT_FALSE(FolderExists(docs + "absent"));
}

struct CasVersions {
  const char* a;
  const char* b;
  int attendu;
};
class Versions : public testing::TestWithParam<CasVersions> {};
TEST_P(Versions, ComparaisonNumerique) {
  const auto c = GetParam();
  EXPECT_EQ(ComparerVersions(c.a, c.b), c.attendu);
  EXPECT_EQ(ComparerVersions(c.b, c.a), -c.attendu);
}
INSTANTIATE_TEST_SUITE_P(Demarrage, Versions,
                         testing::Values(CasVersions{"Version 1.0.0", "Version 1.0.0", 0},
                                         CasVersions{"Version 1.9.0", "Version 1.10.0", -1},
                                         CasVersions{"Version 2.0.0", "Version 1.99.99", 1},
                                         CasVersions{"", "Version 0.0.1", -1},
                                         CasVersions{"n'importe quoi", "Version 0.0.0", -1},
                                         CasVersions{"Version 1.2", "Version 1.2.0", 0}));

TEST(Demarrage, PremierLancementDonneLesDefautsPuisLeSuivantNon) {
  SessionRecord s;
  s.DocPath = DossierDocuments();
  ASSERT_FALSE(FileExists(CheminUserConfig()));
  EXPECT_EQ(PreparerConfiguration(s, "Version 1.0.0"), Lancement::Premier);
  EXPECT_EQ(LireIni("General", "NumVersion", CheminUserConfig(), "?"), "Version 1.0.0");
  EXPECT_EQ(s.NomAuteur, "Votre nom");
  EXPECT_EQ(s.PoidsMax, 250);
  EXPECT_EQ(s.RepTravail, s.DocPath + "Tessellographe/ImageTravail");

  SessionRecord s2;
  s2.DocPath = s.DocPath;
  EXPECT_EQ(PreparerConfiguration(s2, "Version 1.0.0"), Lancement::Suivant);
  // A newer version stored is a plain start too, and is brought back.
  EcrireIni("General", "NumVersion", "Version 9.0.0", CheminUserConfig());
  EXPECT_EQ(PreparerConfiguration(s2, "Version 1.0.0"), Lancement::Suivant);
  EXPECT_EQ(LireIni("General", "NumVersion", CheminUserConfig(), "?"), "Version 1.0.0");
}

TEST(Demarrage, VersionAncienneReecritLesClesEtEffaceRecent) {
  const QString ini = CheminUserConfig();
  EcrireIni("General", "NumVersion", "Version 0.9.3", ini);
  EcrireIni("General", "ImageAccueil", "0", ini);
  EcrireIni("General", "MessageBox", "1", ini);
  EcrireIni("FormatImage", "FontName2", "Courier", ini);
  EcrireIni("FormatImage", "FontSize2", "14", ini);
  EcrireIni("FormatImage", "FontBold2", "VRAI", ini);
  EcrireIni("FormatImage", "PoidsMax", "180", ini);
  EcrireListe(CheminRecent(), {"/a.jpg"});
  SessionRecord s;
  s.ListeRecent[0] = "/a.jpg";
  EXPECT_EQ(PreparerConfiguration(s, "Version 1.0.0"), Lancement::MiseAJour);
  for (const CleMiseAJour& c : ClesMiseAJour)
    EXPECT_EQ(LireIni(c.section, c.cle, ini, "?"), QLatin1String(c.valeur)) << c.cle;
  EXPECT_EQ(LireIni("General", "NumVersion", ini, "?"), "Version 1.0.0");
  EXPECT_EQ(LireIni("FormatImage", "PoidsMax", ini, "?"), "180");  // not an upgrade key
  EXPECT_FALSE(FileExists(CheminRecent()));
  EXPECT_TRUE(s.ListeRecent[0].isEmpty());
  EXPECT_EQ(s.ImageAccueil, "1");
  EXPECT_EQ(s.FontSize2, 8);
  EXPECT_FALSE(s.FontBold2);
  EXPECT_EQ(s.MessageBox, 0);
  EXPECT_EQ(s.PoidsMax, 180);
}

struct CasEcranT {
  int largeur;
  CasEcran cas;
};
class Ecrans : public testing::TestWithParam<CasEcranT> {};
TEST_P(Ecrans, ClasseEtChoixFormatMesure) {
  const auto c = GetParam();
  SessionRecord s;
  EXPECT_EQ(AppliquerEcran(s, c.largeur), c.cas);
  EXPECT_EQ(s.EcranLargeur, c.largeur);
  EXPECT_EQ(s.EcranTropPetit, c.cas == CasEcran::TropPetit);
  EXPECT_EQ(s.EcranReduit, c.cas == CasEcran::Reduit);
  EXPECT_EQ(s.EcranConfortable, c.cas == CasEcran::Confortable);
  const QString ecrit = LireIni("FormatImage", "ChoixFormatMesure", CheminUserConfig(), "absent");
  EXPECT_EQ(ecrit, c.cas == CasEcran::Reduit ? "0" : "absent");
  EXPECT_EQ(TexteEcran(c.cas).isEmpty(), c.cas == CasEcran::Confortable);
}
INSTANTIATE_TEST_SUITE_P(Demarrage, Ecrans,
                         testing::Values(CasEcranT{640, CasEcran::TropPetit},
                                         CasEcranT{799, CasEcran::TropPetit},
                                         CasEcranT{800, CasEcran::Reduit},
                                         CasEcranT{1023, CasEcran::Reduit},
                                         CasEcranT{1024, CasEcran::Confortable},
                                         CasEcranT{1920, CasEcran::Confortable}));

TEST(Demarrage, TexteEcranReduit) {
  EXPECT_EQ(TexteEcran(CasEcran::Reduit).section(u'\n', 0, 0),
            "Votre affichage est plus petit que 1024 x 768");
  EXPECT_TRUE(TexteEcran(CasEcran::TropPetit).endsWith("(l'application va se terminer)"));
}

TEST(Demarrage, VerificationEtFinDesAssistants) {
  QTemporaryDir dossier;
  const QString rep = dossier.path() + "/";
  SystemeEspion sys;
  SessionRecord s;
  s.MajAuto = "1";
  EXPECT_FALSE(LancerVerificationMaj(s, rep));
  EXPECT_FALSE(TerminerAssistants(rep));
  test::EcrireOctets(rep + "TG_CheckUpdate", "c");
  EXPECT_FALSE(TerminerAssistants(rep));  // TG_Kill still missing
  test::EcrireOctets(rep + "TG_Kill", "k");
  s.MajAuto = "0";
  EXPECT_FALSE(LancerVerificationMaj(s, rep));
  s.MajAuto = "1";
  EXPECT_TRUE(LancerVerificationMaj(s, rep));
  EXPECT_TRUE(TerminerAssistants(rep));
  EXPECT_EQ(sys.lances, QStringList({"TG_CheckUpdate", "TG_Kill /P1=TG_CheckUpdate"}));
}

TEST(Demarrage, FichiersDeTravailEffaces) {
  SessionRecord s;
  s.RepTravail = DossierDocuments();
  test::EcrireOctets(s.RepTravail + "temp.jpg", "x");
  test::EcrireOctets(s.RepTravail + "autre.jpg", "x");
  test::EcrireOctets(RepApplication() + "twain_temp.jpg", "x");
  NettoyerFichiersTravail(s);
  EXPECT_FALSE(FileExists(s.RepTravail + "temp.jpg"));
  EXPECT_FALSE(FileExists(RepApplication() + "twain_temp.jpg"));
  EXPECT_TRUE(FileExists(s.RepTravail + "autre.jpg"));
}

}  // namespace
}  // namespace tg
