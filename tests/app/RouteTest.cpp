// A user's road through the real main window, wired as the program wires it:
// open a JPEG, resize through frmChooseRessampl, save through frmEnregistrer.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolBar>

#include "app/Assemblage.h"
#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Systeme.h"
#include "tests/app/Outils.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::Fenetre;

QStringList Actives(const frmFichierPhoto& w, const char* barre) {
  QStringList r;
  for (QAction* a : w.findChild<QToolBar*>(QLatin1String(barre))->actions())
    if (a->isEnabled()) r << a->objectName();
  return r;
}

TEST(Route, OuvrirFormaterEnregistrer) {
  test::DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  s.ImageAccueil = "0";
  s.ModeOuvrir = "1";  // the open dialog rather than the finder
  s.MethodeRedim = "0";
  s.MessageBox = 0;
  s.PoidsMax = 250;
  s.TitreImageConfig = "0";
  s.NomFichImage = "forum_";
  s.NextNumberImage = 1;
  s.RepTravail = RepApplication() + "travail/";
  QDir().mkpath(s.RepTravail);

  // A photograph of 2048 x 1536 with some detail.
  const QString source = RepApplication() + "photo.jpg";
  {
    Bitmap b;
    ASSERT_TRUE(ai.IO_CreateImage(b, 2048, 1536, 24));
    for (int i = 0; i < 200; ++i)
      ASSERT_TRUE(ai.MemoryDC_FillRectangle(b, (i * 97) % 2000, (i * 61) % 1500, 40, 30,
                                            (i * 0x0B1C2D) & 0xFFFFFF));
    ASSERT_TRUE(ai.IO_SaveImage(b, source, FormatJPEG, 90));
  }

  frmFichierPhoto w(s, ai);
  Assembler(w);
  w.show();
  QApplication::processEvents();
  ASSERT_EQ(s.Etape, 0);
  EXPECT_EQ(Actives(w, "Toolbar1"), QStringList{"Ouvrir"});

  // 1. Open.
  dlg.chaines.push_back(source);
  w.findChild<QAction*>("Ouvrir")->trigger();
  ASSERT_EQ(s.Etape, 1);
  EXPECT_EQ(s.PathOrigine, source);
  EXPECT_EQ(Actives(w, "Toolbar1"), QStringList({"Ouvrir", "RedimAuto"}));
  EXPECT_TRUE(w.findChild<QLabel*>("lblTickCount")->text().startsWith("charg. = "));
  EXPECT_EQ(w.findChild<QLineEdit*>("txtTaille")->text(), "2048 x 1536");

  // 2. Resize through the resampler window, kept.
  w.findChild<QAction*>("RedimAuto")->trigger();
  QWidget* ressampl = Fenetre("frmChooseRessampl");
  ASSERT_NE(ressampl, nullptr);
  ressampl->findChild<QPushButton*>("cmdAppliquer")->click();
  EXPECT_EQ(ressampl->findChild<QLabel*>("lblChoixOk")->text(),
            "Redimensionnement (lanczos3) ok !");
  dlg.appels.clear();
  ressampl->findChild<QPushButton*>("cmdConsever")->click();
  QApplication::processEvents();
  EXPECT_EQ(Fenetre("frmChooseRessampl"), nullptr);
  ASSERT_EQ(s.Etape, 2);
  EXPECT_EQ(s.Largeur, 800);
  EXPECT_EQ(s.Hauteur, 600);
  EXPECT_EQ(w.findChild<QLineEdit*>("txtTaille")->text(), "800 x 600");
  EXPECT_FALSE(w.findChild<QAction*>("RedimAuto")->isEnabled());
  EXPECT_TRUE(w.findChild<QAction*>("Cartouche")->isEnabled());
  ASSERT_FALSE(dlg.appels.empty());
  EXPECT_EQ(dlg.appels[0].genre, "MsgBoxEx");
  EXPECT_EQ(dlg.appels[0].titre, "Formatage OK");
  EXPECT_TRUE(w.findChild<QLabel*>("lblTickCount")->text().startsWith("redim = "));

  // 3. The cartouche step belongs to its own module: its result stands here.
  s.CommentaireImage = "[Tessellographe]\r\nTitreImage=Essai\r\nQualiteJpg=\r\n";
  s.ImageFinale = true;
  s.Etape = 3;
  w.AppliquerEtape();
  EXPECT_TRUE(w.findChild<QAction*>("Sauver")->isEnabled());
  EXPECT_EQ(w.findChild<QLineEdit*>("txtPoidsFichier")->text(), "N/A");

  // 4. Save: trial at 94, then the numbered name in the working folder.
  w.findChild<QAction*>("Sauver")->trigger();
  QWidget* enr = Fenetre("frmEnregistrer");
  ASSERT_NE(enr, nullptr);
  EXPECT_EQ(enr->findChild<QComboBox*>("ComboQualite")->currentText(), "94");
  enr->findChild<QPushButton*>("cmdPreparer")->click();
  const QString poids = enr->findChild<QLineEdit*>("txtPoidsImage")->text();
  ASSERT_NE(poids, "N/A");
  const qint64 octetsEssai = QFile(RepApplication() + "resultat.jpg").size();
  EXPECT_EQ(poids.toInt(), int((octetsEssai + 512) / 1024 + 1));
  EXPECT_LE(poids.toInt(), 250);
  const QString cible = s.RepTravail + "forum_001.jpg";
  dlg.chaines.push_back(cible);
  dlg.appels.clear();
  enr->findChild<QPushButton*>("cmdConfirmer")->click();
  QApplication::processEvents();
  ASSERT_GE(dlg.appels.size(), 2u);
  EXPECT_EQ(dlg.appels[0].texte, cible);  // the default name offered
  EXPECT_EQ(dlg.appels[1].texte, "Sauvegarde OK");
  EXPECT_EQ(Fenetre("frmEnregistrer"), nullptr);
  EXPECT_EQ(s.Etape, 4);
  QAction* sauver = w.findChild<QAction*>("Sauver");
  EXPECT_TRUE(sauver->property("marque").toBool());
  EXPECT_TRUE(sauver->isChecked());
  EXPECT_EQ(w.findChild<QLineEdit*>("txtPoidsFichier")->text(), poids);
  EXPECT_EQ(s.NextNumberImage, 2);

  // The saved file: the trial's bytes, 800 x 600, with the completed block.
  QFile sauve(cible), essai(RepApplication() + "resultat.jpg");
  ASSERT_TRUE(sauve.open(QIODevice::ReadOnly));
  ASSERT_TRUE(essai.open(QIODevice::ReadOnly));
  EXPECT_EQ(sauve.readAll(), essai.readAll());
  Bitmap relu;
  ASSERT_TRUE(ai.IO_LoadImage(cible, relu));
  EXPECT_EQ(ai.Info_Width(relu), 800);
  EXPECT_EQ(ai.Info_Height(relu), 600);
  QString commentaire;
  ASSERT_TRUE(ai.Metadata_Get_Comments(relu, commentaire));
  EXPECT_EQ(commentaire, "[Tessellographe]\r\nTitreImage=Essai\r\nQualiteJpg=94\r\n");
  w.hide();
}

}  // namespace
}  // namespace tg
