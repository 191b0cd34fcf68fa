// The keyword dialog driven through its named controls.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>

#include "cartouche/Listes.h"
#include "cartouche/frmMotClef.h"
#include "platform/Fichiers.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

class MotClef : public testing::Test {
 protected:
  test::DialoguesScriptes dlg;
  SessionRecord s;
  QWidget formulaire;  // stands for the cartouche form
  QLabel* img = nullptr;
  QPointer<frmMotClef> f;

  void Ouvrir() {
    img = new QLabel(&formulaire);
    img->setObjectName("imgMotClef");
    img->hide();
    f = new frmMotClef(s, &formulaire);
    f->show();
  }
  QComboBox* Boite(int i) { return f->findChild<QComboBox*>(QStringLiteral("combClassement%1").arg(i)); }
  void Cliquer(const char* nom) { f->findChild<QPushButton*>(nom)->click(); }
};

TEST_F(MotClef, ChargementDepuisLaSession) {
  s.MotClef = "algue";
  s.Genre = "Closterium";
  Ouvrir();
  EXPECT_EQ(f->findChild<QPlainTextEdit*>("txtMotClef")->toPlainText(), "algue");
  EXPECT_EQ(Boite(5)->currentText(), "Closterium");
  EXPECT_EQ(Boite(0)->count(), 6);
  EXPECT_EQ(Boite(0)->itemText(4), "Végétaux");
  // No "+ Liste" for the kingdoms: six checks for levels 1 to 6.
  EXPECT_EQ(f->findChildren<QCheckBox*>().size(), 6);
  EXPECT_EQ(f->findChild<QCheckBox*>("chkClassement6"), nullptr);
}

TEST_F(MotClef, OKStockeAjouteEtMontreLIndicateur) {
  Ouvrir();
  f->findChild<QPlainTextEdit*>("txtMotClef")->setPlainText("algue,\ndesmidiée");
  Boite(0)->setEditText("Chromista");
  Boite(5)->setEditText("Cosmarium");
  f->findChild<QCheckBox*>("chkClassement4")->setChecked(true);  // level 5
  Cliquer("cmdOK");
  EXPECT_EQ(s.MotClef, "algue, desmidiée");
  EXPECT_EQ(s.Regne, "Chromista");
  EXPECT_EQ(s.Genre, "Cosmarium");
  QStringList genres;
  ASSERT_TRUE(LireListe(CheminArbre(5), genres));
  EXPECT_EQ(genres, QStringList({"", "Cosmarium"}));
  QStringList regnes;
  ASSERT_TRUE(LireListe(CheminArbre(0), regnes));
  EXPECT_FALSE(regnes.contains("Chromista"));
  EXPECT_FALSE(img->isHidden());
  EXPECT_TRUE(f.isNull() || !f->isVisible());
}

TEST_F(MotClef, EffacerVideEtResteAnnulerNeChangeRien) {
  s.MotClef = "algue";
  s.Espece = "lunula";
  Ouvrir();
  img->show();
  Cliquer("cmdEffacer");
  EXPECT_TRUE(s.MotClef.isEmpty());
  EXPECT_TRUE(s.Espece.isEmpty());
  EXPECT_TRUE(Boite(6)->currentText().isEmpty());
  EXPECT_TRUE(img->isHidden());
  ASSERT_FALSE(f.isNull());
  EXPECT_TRUE(f->isVisible());

  Boite(6)->setEditText("acerosum");
  Cliquer("cmdAnnuler");
  EXPECT_TRUE(s.Espece.isEmpty());
  QStringList especes;
  ASSERT_TRUE(LireListe(CheminArbre(6), especes));
  EXPECT_EQ(especes, QStringList{""});
}

}  // namespace
}  // namespace tg
