// A crop before the resizing, through the real windows and through the
// headless tool: the scale of both saved files refers to the crop's width.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <cmath>

#include "adjust/frmRecadrage.h"
#include "app/Assemblage.h"
#include "core/Session.h"
#include "core/frmFichierPhoto.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Dialogues.h"
#include "platform/Systeme.h"
#include "platform/Textes.h"
#include "tests/app/Outils.h"
#include "tests/support/DialoguesScriptes.h"
#include "tests/support/Processus.h"

namespace tg {
namespace {

using test::Commentaire;
using test::Fenetre;
using test::Glisser;

TEST(RouteRecadrage, LEchelleSuitLaLargeurDuRecadrage) {
  const QString photo = QDir::current().filePath("photo.jpg");
  ASSERT_EQ(test::Executer(test::Cli(), {"echantillon", photo}).code, 0);
  ASSERT_EQ(test::Executer(test::Cli(), {"tables", "ajouter", "--modele", "APN-Demo", "--largpix",
                                         "2272", "--micro", "Micro-A", "--config", "Fond clair",
                                         "--obj", "40", "--pix", "400", "--mic", "100",
                                         "--focale", "7.5"})
                .code,
            0);
  test::DialoguesScriptes dlg;
  SessionRecord s;
  RecupereValeurIni(s);
  PrendreFormatConfig(s);
  s.SeparateurDecimal = SeparateurDecimalSysteme();
  s.ImageAccueil = "0";
  s.ModeOuvrir = "1";
  s.MethodeRedim = "0";
  cAdvancedImagery ai;
  frmFichierPhoto w(s, ai);
  Assembler(w);
  w.show();
  QApplication::processEvents();

  dlg.chaines.push_back(photo);
  w.findChild<QAction*>("Ouvrir")->trigger();
  ASSERT_EQ(s.Etape, 1);
  w.findChild<QAction*>("Recadrer")->trigger();
  QApplication::processEvents();
  auto* rec = qobject_cast<frmRecadrage*>(Fenetre("frmRecadrage"));
  ASSERT_NE(rec, nullptr);
  QWidget* copie = rec->findChild<QWidget*>("Picture1");
  Glisser(copie, {300, 200}, {320, 220});
  const Cadre cadre = rec->Cadre_();
  ASSERT_GE(cadre.CadreL, 800);
  rec->findChild<QPushButton*>("cmdOK")->click();
  QApplication::processEvents();
  ASSERT_EQ(s.LargeurRecadrage, cadre.CadreL);
  EXPECT_TRUE(w.isVisible());
  w.findChild<QAction*>("RedimAuto")->trigger();
  QWidget* ressampl = Fenetre("frmChooseRessampl");
  ASSERT_NE(ressampl, nullptr);
  ressampl->findChild<QPushButton*>("cmdAppliquer")->click();
  ressampl->findChild<QPushButton*>("cmdConsever")->click();
  QApplication::processEvents();
  ASSERT_EQ(s.Etape, 2);

  w.findChild<QAction*>("Cartouche")->trigger();
  QWidget* f = Fenetre("frmAjouterCartouche");
  ASSERT_NE(f, nullptr);
  auto ligne = [f](const char* nom) { return f->findChild<QLineEdit*>(QLatin1String(nom)); };
  auto liste = [f](const char* nom) { return f->findChild<QComboBox*>(QLatin1String(nom)); };
  ligne("txtCommentaire")->setText("Navicula sp.");
  ligne("txtNomAuteur")->setText("A. Nonyme");
  liste("comboProvenance")->setCurrentText("Etang");
  f->findChild<QPushButton*>("cmdEtalonner")->click();
  // The photo fits the table: the automatic choice offers it alone.
  EXPECT_FALSE(f->findChild<QCheckBox*>("chkAfficherTouteTable")->isChecked());
  QComboBox* tables = liste("comboTables");
  ASSERT_EQ(tables->count(), 2);
  tables->setCurrentIndex(1);
  emit tables->activated(1);
  EXPECT_EQ(ligne("txtObjRef")->text(), "(Table : obj. de réf = x40)");
  liste("comboListeObjectif")->setCurrentText("40");
  f->findChild<QPushButton*>("cmdAppliquerTable")->click();
  EXPECT_EQ(ligne("txtPix")->text(), "400");
  ligne("txtLongueur")->setText("50");
  dlg.appels.clear();
  f->findChild<QPushButton*>("cmdSuite")->click();
  QApplication::processEvents();
  // Only the stage's help balloon: no error on the way.
  for (const auto& a : dlg.appels) EXPECT_EQ(a.genre, "MsgBoxEx") << a.texte.toStdString();
  ASSERT_EQ(s.Etape, 3);
  EXPECT_EQ(Fenetre("frmAjouterCartouche"), nullptr);

  w.findChild<QAction*>("Sauver")->trigger();
  QWidget* enr = Fenetre("frmEnregistrer");
  ASSERT_NE(enr, nullptr);
  enr->findChild<QPushButton*>("cmdPreparer")->click();
  const QString parFenetre = QDir::current().filePath("fenetre.jpg");
  dlg.chaines.push_back(parFenetre);
  enr->findChild<QPushButton*>("cmdConfirmer")->click();
  QApplication::processEvents();
  w.hide();

  const QString parOutil = QDir::current().filePath("outil.jpg");
  const test::Sortie fo = test::Executer(
      test::Cli(), {"formater", photo, "-o", parOutil, "--table", "1", "--objectif", "40", "--recadrage",
                    QStringLiteral("%1,%2,%3,%4").arg(cadre.CadreG).arg(cadre.CadreHaut).arg(cadre.CadreL).arg(cadre.CadreH)});
  ASSERT_EQ(fo.code, 0) << fo.erreur.toStdString();
  // 100 microns = 400 pixels of the photo: 0.25 micron a pixel, times the
  // crop's width over the 800 of the output.
  const double attendu = 0.25 * cadre.CadreL / 800.0;
  for (const QString& fichier : {parFenetre, parOutil}) {
    const test::Sortie e = test::Executer(test::Cli(), {"echelle", fichier});
    ASSERT_EQ(e.code, 0) << fichier.toStdString();
    const QRegularExpressionMatch m =
        QRegularExpression("MicronsParPixel=([0-9.,]+)").match(QString::fromUtf8(e.sortie));
    ASSERT_TRUE(m.hasMatch()) << e.sortie.toStdString();
    double v = 0;
    ASSERT_TRUE(LireNombre(m.captured(1), v));
    EXPECT_NEAR(v, attendu, attendu * 0.005) << fichier.toStdString();
  }
}

}  // namespace
}  // namespace tg
