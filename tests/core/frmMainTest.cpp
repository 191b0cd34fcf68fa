// The start-up window from an empty program folder: first run, second run,
// the welcome button, the helpers and the screen.
#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>

#include "core/Demarrage.h"
#include "core/frmFichierPhoto.h"
#include "core/frmMain.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Systeme.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

struct SystemeFaux : ISysteme {
  int largeur = 1280;
  QStringList lances;
  SystemeFaux() { InstallerSysteme(this); }
  ~SystemeFaux() override { InstallerSysteme(nullptr); }
  bool LancerProgramme(const QString& p, const QStringList& a) override {
    lances << QFileInfo(p).fileName() + (a.isEmpty() ? QString() : " " + a.join(u' '));
    return true;
  }
  bool OuvrirAdresse(const QString&, const QString&) override { return true; }
  Ecran InfosEcran() override {
    Ecran e;
    e.largeur = largeur;
    e.hauteur = largeur * 3 / 4;
    return e;
  }
};

class Demarrer : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  SystemeFaux sys;
  cAdvancedImagery ai;
  QTemporaryDir assistants;
  int options = 0;      // calls of the options hook
  int assemblages = 0;  // main windows wired

  // Helpers present, so that a normal start says nothing.
  void PoserAssistants() {
    for (const char* nom : {"TG_Kill", "Tg_Update", "TG_CheckUpdate"}) {
      QFile f(assistants.path() + "/" + nom);
      ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    }
  }
  std::unique_ptr<frmMain> Nouveau(SessionRecord& s) {
    auto m = std::make_unique<frmMain>(s, ai, [this](frmFichierPhoto& w) {
      ++assemblages;
      w.DefinirCrochet("frmConfig", [this] { ++options; });
    });
    m->DefinirDossierAssistants(assistants.path());
    return m;
  }
};

TEST_F(Demarrer, PremierLancementPuisSecond) {
  PoserAssistants();
  SessionRecord s;
  auto m = Nouveau(s);
  ASSERT_TRUE(m->Charger(QString()));
  EXPECT_TRUE(m->PremierLancement());
  EXPECT_TRUE(m->isVisible());
  EXPECT_EQ(m->windowTitle(), "Bienvenue !");
  EXPECT_EQ(m->Principale(), nullptr);
  const auto* texte = m->findChild<QLabel*>("lblBienvenue");
  ASSERT_NE(texte, nullptr);
  EXPECT_TRUE(texte->text().contains("pour la première fois"));
  EXPECT_NE(m->findChild<QPushButton*>("cmdSuite"), nullptr);
  EXPECT_TRUE(dlg.appels.empty()) << dlg.Textes().join(" | ").toStdString();
  // The defaults, and the files of a first run.
  EXPECT_EQ(s.NomAuteur, "Votre nom");
  EXPECT_EQ(s.ApnLargCourant, 800);
  EXPECT_TRUE(FileExists(CheminUserConfig()));
  EXPECT_TRUE(FileExists(CheminFichierVersion()));
  QStringList objectifs;
  ASSERT_TRUE(LireListe(CheminObjectif(), objectifs));
  EXPECT_EQ(objectifs.size(), 30);
  EXPECT_EQ(objectifs.mid(0, 5), QStringList({"4", "10", "20", "40", "100"}));
  EXPECT_TRUE(FolderExists(s.DocPath + "Tessellographe/ImageEtalon"));
  EXPECT_EQ(sys.lances, QStringList({"TG_Kill /P1=Tg_Update"}));

  SessionRecord s2;
  auto m2 = Nouveau(s2);
  ASSERT_TRUE(m2->Charger(QString()));
  EXPECT_FALSE(m2->PremierLancement());
  EXPECT_FALSE(m2->isVisible());
  ASSERT_NE(m2->Principale(), nullptr);
  EXPECT_TRUE(m2->Principale()->isVisible());
  EXPECT_EQ(assemblages, 1);
  EXPECT_EQ(options, 0);
  EXPECT_TRUE(dlg.appels.empty());
  // MajAuto "1" by default: the update check was launched with the main window.
  EXPECT_TRUE(sys.lances.contains("TG_CheckUpdate"));
}

TEST_F(Demarrer, SuiteOuiOuvreLesOptionsNonSeulementLaFenetre) {
  for (const Reponse r : {Reponse::Oui, Reponse::Non}) {
    QFile::remove(CheminUserConfig());
    options = 0;
    SessionRecord s;
    auto m = Nouveau(s);
    m->DefinirDossierAssistants(assistants.path());
    ASSERT_TRUE(m->Charger(QString()));
    ASSERT_TRUE(m->PremierLancement());
    dlg.appels.clear();
    dlg.reponses = {r};
    m->findChild<QPushButton*>("cmdSuite")->click();
    ASSERT_EQ(dlg.appels.size(), 1u);
    EXPECT_EQ(dlg.appels[0].titre, "Bienvenue !");
    EXPECT_EQ(dlg.appels[0].texte,
              "Nouvelle installation:\nVoulez vous configurer le programme maintenant ?");
    ASSERT_NE(m->Principale(), nullptr);
    EXPECT_TRUE(m->Principale()->isVisible());
    EXPECT_FALSE(m->isVisible());
    EXPECT_EQ(options, r == Reponse::Oui ? 1 : 0);
  }
}

TEST_F(Demarrer, AssistantsAbsentsNArretentPas) {
  EcrireIni("General", "NumVersion", ChaineVersion(), CheminUserConfig());
  SessionRecord s;
  auto m = Nouveau(s);
  ASSERT_TRUE(m->Charger(QString()));
  ASSERT_NE(m->Principale(), nullptr);
  EXPECT_TRUE(m->Principale()->isVisible());
  EXPECT_EQ(dlg.Textes(), QStringList({"Fichier \\TG_Kill.exe introuvable !"}));
  EXPECT_TRUE(sys.lances.isEmpty());
}

TEST_F(Demarrer, EcranTropPetitTermineReduitPrevient) {
  PoserAssistants();
  EcrireIni("General", "NumVersion", ChaineVersion(), CheminUserConfig());
  sys.largeur = 1023;
  {
    SessionRecord s;
    auto m = Nouveau(s);
    ASSERT_TRUE(m->Charger(QString()));
    EXPECT_TRUE(s.EcranReduit);
    ASSERT_EQ(dlg.appels.size(), 1u);
    EXPECT_TRUE(dlg.Dernier().texte.startsWith("Votre affichage est plus petit que 1024 x 768\n"));
    EXPECT_EQ(LireIni("FormatImage", "ChoixFormatMesure", CheminUserConfig(), "?"), "0");
    EXPECT_GT(s.ZoneLargeur, 0);
  }
  dlg.appels.clear();
  sys.largeur = 799;
  SessionRecord s;
  auto m = Nouveau(s);
  EXPECT_FALSE(m->Charger(QString()));
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_TRUE(dlg.Dernier().texte.startsWith("Votre affichage est plus petit que 800 x 600\n"));
  EXPECT_FALSE(m->Principale() != nullptr && m->Principale()->isVisible());
}

TEST_F(Demarrer, MiseAJourEffaceRecentAuDemarrage) {
  PoserAssistants();
  EcrireIni("General", "NumVersion", "Version 0.0.1", CheminUserConfig());
  EcrireIni("General", "ImageAccueil", "0", CheminUserConfig());
  EcrireListe(CheminRecent(), {"/images/a.jpg"});
  SessionRecord s;
  auto m = Nouveau(s);
  ASSERT_TRUE(m->Charger(QString()));
  EXPECT_FALSE(m->PremierLancement());
  EXPECT_FALSE(FileExists(CheminRecent()));
  EXPECT_EQ(s.NumVersion, ChaineVersion());
  // The welcome picture is back on at once.
  const auto* accueil = m->Principale()->findChild<QLabel*>("imgAccueil");
  ASSERT_NE(accueil, nullptr);
  EXPECT_FALSE(accueil->isHidden());
}

}  // namespace
}  // namespace tg
