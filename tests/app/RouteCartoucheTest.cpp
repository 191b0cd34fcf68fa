// The whole road through the real windows, wired as the program wires them:
// open the demonstration photo, resize, cartouche with a stored table, save.
// The file must be the one the headless tool makes from the same choices.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>

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

TEST(RouteCartouche, LaFenetreEtLOutilSansFenetreFontLeMemeFichier) {
  const QString photo = QDir::current().filePath("photo.jpg");
  ASSERT_EQ(test::Executer(test::Cli(), {"echantillon", photo}).code, 0);
  ASSERT_EQ(test::Executer(test::Cli(), {"tables", "ajouter", "--modele", "APN-Demo", "--largpix",
                                         "2272", "--micro", "Micro-A", "--config", "Fond clair",
                                         "--obj", "40", "--pix", "400", "--mic", "100",
                                         "--focale", "7.5"})
                .code,
            0);
  const QString parOutil = QDir::current().filePath("outil.jpg");
  const test::Sortie r =
      test::Executer(test::Cli(), {"formater", photo, "-o", parOutil, "--table", "1",
                                   "--objectif", "40", "--titre", "Navicula sp.", "--longueur",
                                   "50", "--auteur", "A. Nonyme", "--provenance", "Etang"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();

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
  ASSERT_EQ(s.Etape, 4);

  // Same block but for the moment of building, same pixels.
  static const QRegularExpression date(QStringLiteral("DateImage=[^\r]*"));
  QString a = Commentaire(parOutil), b = Commentaire(parFenetre);
  ASSERT_TRUE(a.contains(date));
  EXPECT_TRUE(a.contains("\r\nEchellePix=70"));
  a.replace(date, QString());
  b.replace(date, QString());
  EXPECT_EQ(a.toStdString(), b.toStdString());
  const QImage pa(parOutil), pb(parFenetre);
  ASSERT_FALSE(pa.isNull());
  EXPECT_EQ(pa.size(), QSize(800, 660));
  EXPECT_TRUE(pa == pb);

  // Annotations drawn, then removed: the final picture is rebuilt from the
  // formatted image with the form as it was left.
  QImage finale;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, finale));
  ASSERT_TRUE(ai.MemoryDC_FillRectangle(s.ImageCourante, 20, 20, 120, 60, 0x0000FF));
  s.AnnotationsPresentes = true;
  s.Etape = 6;  // as the annotation window leaves it
  w.AppliquerEtape();
  dlg.reponses.push_back(Reponse::Oui);
  w.findChild<QAction*>("mnuAnnulerAnnotation")->trigger();
  QApplication::processEvents();
  EXPECT_FALSE(s.AnnotationsPresentes);
  EXPECT_EQ(Fenetre("frmAjouterCartouche"), nullptr);
  QImage reconstruite;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, reconstruite));
  EXPECT_TRUE(reconstruite == finale);
  EXPECT_EQ(s.Etape, 3);
  w.hide();
}

}  // namespace
}  // namespace tg
