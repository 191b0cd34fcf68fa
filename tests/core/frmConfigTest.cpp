// The options window: objectives, weight, cleaning and the order of the keys.
#include <gtest/gtest.h>

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QCheckBox>

#include "core/frmConfig.h"
#include "core/frmFichierPhoto.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Systeme.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

QStringList Nombres(int n) {
  QStringList l;
  for (int i = 1; i <= n; ++i) l << QString::number(i);
  return l;
}

// List size, typed text -> accepted, message shown ("" for none).
struct CasObjectif {
  int dejaPresents;
  const char* saisie;
  bool accepte;
  const char* message;
};
class Objectif : public testing::TestWithParam<CasObjectif> {};

TEST_P(Objectif, LimitesEtMessages) {
  const CasObjectif c = GetParam();
  DialoguesScriptes dlg;
  QStringList liste = Nombres(c.dejaPresents);
  const QStringList avant = liste;
  EXPECT_EQ(AjouterObjectif(liste, QString::fromUtf8(c.saisie)), c.accepte);
  if (*c.message) {
    ASSERT_EQ(dlg.appels.size(), 1u);
    EXPECT_EQ(dlg.Dernier().texte, QString::fromUtf8(c.message));
  } else {
    EXPECT_TRUE(dlg.appels.empty()) << dlg.Textes().join(" | ").toStdString();
  }
  if (!c.accepte) {
    EXPECT_EQ(liste, avant);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Config, Objectif,
    testing::Values(
        CasObjectif{0, "200", true, ""},
        CasObjectif{0, "200.5", false,
                    "200.5x, vous avez de la chance ! Mais impossible à saisir ici (max 200x)"},
        CasObjectif{0, "200,5", false,
                    "200,5x, vous avez de la chance ! Mais impossible à saisir ici (max 200x)"},
        // The 31st is refused before its value is looked at.
        CasObjectif{30, "abc", false, "Vous ne pouvez pas ajouter plus de 30 objectifs !"},
        CasObjectif{30, "50", false, "Vous ne pouvez pas ajouter plus de 30 objectifs !"},
        CasObjectif{29, "2.5", true, ""},
        CasObjectif{0, "0", false, "Chiffres uniquement et non nul !"},
        CasObjectif{0, "x10", false, "Chiffres uniquement et non nul !"},
        CasObjectif{3, "2", true, "Doublons supprimés !"}));

TEST(Config, ObjectifsTriesParValeurEtEcritsSur30Lignes) {
  DialoguesScriptes dlg;
  QStringList l = {"4", "10", "100"};
  ASSERT_TRUE(AjouterObjectif(l, "20"));
  ASSERT_TRUE(AjouterObjectif(l, "2,5"));
  EXPECT_EQ(l, QStringList({"2,5", "4", "10", "20", "100"}));
  ASSERT_TRUE(EcrireObjectifs(l));
  QStringList items;
  ASSERT_TRUE(LireListe(CheminObjectif(), items));
  EXPECT_EQ(items.size(), 30);
  EXPECT_EQ(items.mid(0, 5), l);
  EXPECT_TRUE(items.last().isEmpty());
}

TEST(Config, AffichageReduitSelonLaCleOuLEcran) {
  EXPECT_TRUE(AffichageReduit("", 1023));
  EXPECT_FALSE(AffichageReduit("", 1024));
  EXPECT_FALSE(AffichageReduit("1", 800));
  EXPECT_TRUE(AffichageReduit("0", 1920));
}

class FenetreConfig : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  SessionRecord s;
  QPointer<frmConfig> f;

  void Ouvrir() {
    f = new frmConfig(s, nullptr);
    f->show();
  }
  template <typename T = QLineEdit>
  T* C(const char* nom) {
    T* c = f->findChild<T*>(QLatin1String(nom));
    EXPECT_NE(c, nullptr) << nom;
    return c;
  }
  void Cliquer(const char* nom) { C<QPushButton>(nom)->click(); }
  bool Ouverte() const { return !f.isNull() && f->isVisible(); }
  void TearDown() override { delete f.data(); }
};

TEST_F(FenetreConfig, PoidsDe250SansQuestion251Demande) {
  EcrireObjectifDefaut();
  Ouvrir();
  C("txtPoidsMax")->setText("250");
  Cliquer("cmdOK");
  EXPECT_TRUE(dlg.appels.empty()) << dlg.Textes().join(" | ").toStdString();
  EXPECT_FALSE(Ouverte());
  EXPECT_EQ(LireIni("FormatImage", "PoidsMax", CheminUserConfig(), "?"), "250");

  QFile::remove(CheminUserConfig());
  Ouvrir();
  C("txtPoidsMax")->setText("251");
  dlg.reponses = {Reponse::Non};
  Cliquer("cmdOK");
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.Dernier().titre, "Poids image sortie");
  EXPECT_EQ(dlg.Dernier().texte,
            "Poids image = 251 ko\n\nAttention, vérifiez si votre forum le permet !\n\nContinuer ?");
  // No: nothing written, the window stays.
  EXPECT_FALSE(FileExists(CheminUserConfig()));
  EXPECT_TRUE(Ouverte());
  dlg.reponses = {Reponse::Oui};
  Cliquer("cmdOK");
  EXPECT_EQ(LireIni("FormatImage", "PoidsMax", CheminUserConfig(), "?"), "251");
  EXPECT_EQ(s.PoidsMax, 251);
}

TEST_F(FenetreConfig, ClesEcritesDansLOrdre) {
  EcrireObjectifDefaut();
  s.NumVersion = "Version 1.0.0";
  Ouvrir();
  Cliquer("cmdOK");
  QStringList lignes;
  ASSERT_TRUE(LireLignes(CheminUserConfig(), lignes));
  QStringList cles;
  for (const QString& l : lignes)
    if (l.contains(u'=')) cles << l.section(u'=', 0, 0);
  EXPECT_EQ(cles, QStringList({"NumVersion", "NomAuteur", "NomFichImage", "NextNumberImage",
                               "TitreImage", "ImageAccueil", "MajAuto", "MessageBox",
                               "MethodeRedim", "RepTravail", "RepEtalon", "RepApPhoto",
                               "ModeOuvrir", "CartoucheHB", "ChoixFormatMesure", "PoidsMax",
                               "PathNav", "ApExt0", "ApExt1", "ApExt2", "ApExt3"}));
  // Ticked boxes of the defaults write their defaults back.
  const QString f = CheminUserConfig();
  EXPECT_EQ(LireIni("General", "MessageBox", f, "?"), "0");
  EXPECT_EQ(LireIni("General", "MethodeRedim", f, "?"), "0");
  EXPECT_EQ(LireIni("Dossier", "ModeOuvrir", f, "?"), "0");
  EXPECT_EQ(LireIni("General", "TitreImage", f, "?"), "1");
  EXPECT_EQ(LireIni("FormatImage", "CartoucheHB", f, "?"), "1");
  EXPECT_EQ(LireIni("Navigateur", "PathNav", f, "?"), "Explorer");
}

TEST_F(FenetreConfig, CasesInverseesEtNettoyage) {
  EcrireObjectifDefaut();
  Ouvrir();
  C("txtNomAuteur")->setText("  Jean \"Le Micro\" = Dupont ");
  C<QCheckBox>("chkTitreImage")->setChecked(false);
  EXPECT_TRUE(C("txtNomFichImage")->isEnabled());
  C("txtNomFichImage")->setText("\"forum/2024:*test\"");
  C("txtNextNumberImage")->setText("12");
  C<QCheckBox>("chkMessageBox")->setChecked(false);
  C<QCheckBox>("chkModeOuvrir")->setChecked(false);
  C<QRadioButton>("optCartoucheHB0")->setChecked(true);
  C<QRadioButton>("optTailleMesure0")->setChecked(true);
  Cliquer("cmdOK");
  const QString f = CheminUserConfig();
  EXPECT_EQ(LireIni("General", "NomAuteur", f, "?"), "Jean Le Micro   Dupont");
  EXPECT_EQ(LireIni("General", "NomFichImage", f, "?"), "forum2024test");
  EXPECT_EQ(LireIni("General", "TitreImage", f, "?"), "0");
  EXPECT_EQ(LireIni("General", "NextNumberImage", f, "?"), "12");
  EXPECT_EQ(LireIni("General", "MessageBox", f, "?"), "1");
  EXPECT_EQ(LireIni("Dossier", "ModeOuvrir", f, "?"), "1");
  EXPECT_EQ(LireIni("FormatImage", "CartoucheHB", f, "?"), "0");
  EXPECT_EQ(LireIni("FormatImage", "ChoixFormatMesure", f, "?"), "0");
  EXPECT_EQ(s.MessageBox, 1);
  EXPECT_EQ(s.NextNumberImage, 12);
}

TEST_F(FenetreConfig, NombresRefusesRienNEstEcrit) {
  EcrireObjectifDefaut();
  Ouvrir();
  C("txtNextNumberImage")->setText("0");
  Cliquer("cmdOK");
  EXPECT_EQ(dlg.Textes(), QStringList({"Chiffres uniquement et non nul !"}));
  EXPECT_FALSE(FileExists(CheminUserConfig()));
  EXPECT_TRUE(Ouverte());
}

TEST_F(FenetreConfig, UnPoidsQuiSArrondiraitAZeroEstRefuse) {
  EcrireObjectifDefaut();
  Ouvrir();
  for (const char* poids : {"0,4", "0.5"}) {
    dlg.appels.clear();
    C("txtPoidsMax")->setText(poids);
    Cliquer("cmdOK");
    EXPECT_EQ(dlg.Textes(), QStringList({"Chiffres uniquement et non nul !"})) << poids;
    EXPECT_FALSE(FileExists(CheminUserConfig()));
    EXPECT_TRUE(Ouverte());
  }
  C("txtPoidsMax")->setText("0,6");  // rounds to 1 ko
  Cliquer("cmdOK");
  EXPECT_EQ(LireIni("FormatImage", "PoidsMax", CheminUserConfig(), "?"), "1");
}

TEST_F(FenetreConfig, OKNEcritQueCeQueLUtilisateurAChange) {
  EcrireObjectifDefaut();
  const QString f = CheminUserConfig();
  EcrireIni("FormatImage", "PoidsMax", "abc", f);
  EcrireIni("General", "NomAuteur", "A. Nonyme", f);
  for (int i = 0; i < 4; ++i) EcrireIni("Application", "ApExt" + QString::number(i), "/opt/editeur" + QString::number(i), f);
  RecupereValeurIni(s);
  dlg.appels.clear();
  Ouvrir();
  EXPECT_EQ(C("txtPoidsMax")->text(), "250");
  C("txtNextNumberImage")->setText("7");
  Cliquer("cmdOK");
  EXPECT_FALSE(Ouverte());
  // The user's change is written; the unreadable value stays as the user
  // wrote it; the editors are kept.
  EXPECT_EQ(LireIni("General", "NextNumberImage", f, "?"), "7");
  EXPECT_EQ(LireIni("FormatImage", "PoidsMax", f, "?"), "abc");
  EXPECT_EQ(LireIni("General", "NomAuteur", f, "?"), "A. Nonyme");
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(LireIni("Application", "ApExt" + QString::number(i), f, "?"), "/opt/editeur" + QString::number(i));
  EXPECT_EQ(s.ApExt[2], "/opt/editeur2");

  // A value the user types over it is written.
  Ouvrir();
  C("txtPoidsMax")->setText("180");
  Cliquer("cmdOK");
  EXPECT_EQ(LireIni("FormatImage", "PoidsMax", f, "?"), "180");
  EXPECT_EQ(s.PoidsMax, 180);
}

TEST_F(FenetreConfig, ListeObjectifsVideRetient) {
  EcrireObjectifDefaut();
  Ouvrir();
  EXPECT_EQ(C("txtTotObjectif")->text(), "5");
  C<QTabWidget>("SSTab1")->setCurrentIndex(0);
  Cliquer("cmdEffacerListe");
  EXPECT_FALSE(FileExists(CheminObjectif()));
  EXPECT_EQ(C("txtTotObjectif")->text(), "0");
  Cliquer("cmdOK");
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.Dernier().titre, "Liste objectif");
  EXPECT_TRUE(Ouverte());
  EXPECT_EQ(C<QTabWidget>("SSTab1")->currentWidget(),
            C<QListWidget>("lstSaisieObjectif")->parentWidget());
  // The keys were written before the list was looked at.
  EXPECT_TRUE(FileExists(CheminUserConfig()));
  EXPECT_FALSE(FileExists(CheminObjectif()));
}

TEST_F(FenetreConfig, AjoutObjectifEcritAussitot) {
  EcrireObjectifDefaut();
  Ouvrir();
  C("txtNewObjectif")->setText("60");
  Cliquer("cmdAjouterObjectif");
  QStringList items;
  ASSERT_TRUE(LireListe(CheminObjectif(), items));
  EXPECT_EQ(items.mid(0, 6), QStringList({"4", "10", "20", "40", "60", "100"}));
  EXPECT_EQ(C("txtTotObjectif")->text(), "6");
  EXPECT_TRUE(C("txtNewObjectif")->text().isEmpty());
  // Removing an entry is written only by OK.
  C<QListWidget>("lstSaisieObjectif")->setCurrentRow(0);
  Cliquer("cmdEffacerElement");
  Cliquer("cmdOK");
  ASSERT_TRUE(LireListe(CheminObjectif(), items));
  EXPECT_EQ(items.first(), "10");
  EXPECT_EQ(items.size(), 30);
}

TEST_F(FenetreConfig, NavigateurEtApplicationsIntrouvables) {
  QFile app(RepApplication() + "editeur");
  ASSERT_TRUE(app.open(QIODevice::WriteOnly));
  app.close();
  EcrireObjectifDefaut();
  Ouvrir();
  C<QRadioButton>("optNav1")->click();
  EXPECT_TRUE(C<QPushButton>("cmdChoisirNav")->isEnabled());
  dlg.chaines = {"/nulle/part/firefox"};
  Cliquer("cmdChoisirNav");
  EXPECT_EQ(dlg.Dernier().texte, "Fichier introuvable !");
  EXPECT_EQ(C("txtNavFull")->text(), "Explorer");

  dlg.chaines = {app.fileName(), "/nulle/part/gimp"};
  Cliquer("cmdChoisirApExt2");
  EXPECT_EQ(C<QListWidget>("lstApExt")->item(2)->text(), "editeur");
  Cliquer("cmdChoisirApExt0");
  EXPECT_EQ(dlg.Dernier().texte, "Fichier introuvable !");
  Cliquer("cmdOK");
  EXPECT_EQ(s.ApExt[2], app.fileName());
  EXPECT_TRUE(s.ApExt[0].isEmpty());
  EXPECT_EQ(s.PathNav, "Explorer");
}

TEST_F(FenetreConfig, DossiersChoisisEtEffaces) {
  EcrireObjectifDefaut();
  Ouvrir();
  dlg.chaines = {"/photos/micro"};
  Cliquer("cmdRepApPhoto");
  EXPECT_EQ(dlg.Dernier().titre, "Choisir un dossier pour vos images originales ...");
  EXPECT_EQ(C("txtRepApPhoto")->text(), "/photos/micro/");
  Cliquer("cmdEffacerDirTxt0");
  EXPECT_TRUE(C("txtRepTravail")->text().isEmpty());
  Cliquer("cmdAnnuler");
  EXPECT_FALSE(FileExists(CheminUserConfig()));
}

TEST(Config, CrochetDeLaFenetrePrincipale) {
  DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  frmFichierPhoto w(s, ai);
  InstallerConfig(w);
  w.findChild<QAction*>("mnuOptions")->trigger();
  auto* f = w.findChild<frmConfig*>("frmConfig");
  ASSERT_NE(f, nullptr);
  EXPECT_TRUE(f->isVisible());
  // Once open, the same window comes forward.
  w.findChild<QAction*>("mnuOptions")->trigger();
  EXPECT_EQ(w.findChildren<frmConfig*>().size(), 1);
}

}  // namespace
}  // namespace tg
