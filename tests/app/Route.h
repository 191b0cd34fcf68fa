#pragma once
// The main road through the real windows, wired as the program wires them,
// in the steps the road tests share: the demonstration photo, open, resize,
// the cartouche with the stored table, save.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QRegularExpression>
#include <QLineEdit>
#include <QPushButton>
#include <optional>

#include "app/Assemblage.h"
#include "core/frmFichierPhoto.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Textes.h"
#include "tests/app/Outils.h"
#include "tests/support/DialoguesScriptes.h"
#include "tests/support/Processus.h"

namespace tg::test {

class RouteFenetres : public testing::Test {
 protected:
  DialoguesScriptes dlg;  // before the window asks anything
  SessionRecord s;
  cAdvancedImagery ai;
  std::optional<frmFichierPhoto> w;

  RouteFenetres() {
    RecupereValeurIni(s);
    PrendreFormatConfig(s);
    s.SeparateurDecimal = SeparateurDecimalSysteme();
    s.ImageAccueil = "0";
    s.ModeOuvrir = "1";
    s.MethodeRedim = "0";
    w.emplace(s, ai);
    Assembler(*w);
    w->show();
    QApplication::processEvents();
  }

  // The demonstration photo (2272 x 1704, 7.5 mm); with `table`, the table
  // of its set-up: 100 microns = 400 pixels at x40.
  QString Photo(bool table) {
    const QString photo = QDir::current().filePath("photo.jpg");
    EXPECT_EQ(Executer(Cli(), {"echantillon", photo}).code, 0);
    if (table) {
      EXPECT_EQ(Executer(Cli(), {"tables", "ajouter", "--modele", "APN-Demo", "--largpix", "2272", "--micro",
                                 "Micro-A", "--config", "Fond clair", "--obj", "40", "--pix", "400", "--mic", "100",
                                 "--focale", "7.5"})
                    .code,
                0);
    }
    return photo;
  }

  // Stage 1: the photo opened by the file dialog's way.
  void Ouvrir(const QString& photo) {
    dlg.chaines.push_back(photo);
    w->findChild<QAction*>("Ouvrir")->trigger();
    ASSERT_EQ(s.Etape, 1);
  }

  // Stage 2: the automatic resize, tried and kept.
  void Formater() {
    w->findChild<QAction*>("RedimAuto")->trigger();
    QWidget* ressampl = Fenetre("frmChooseRessampl");
    ASSERT_NE(ressampl, nullptr);
    ressampl->findChild<QPushButton*>("cmdAppliquer")->click();
    ressampl->findChild<QPushButton*>("cmdConsever")->click();
    QApplication::processEvents();
    ASSERT_EQ(s.Etape, 2);
  }

  // The cartouche form with its title, author and provenance typed.
  QWidget* Cartouche() {
    w->findChild<QAction*>("Cartouche")->trigger();
    QWidget* f = Fenetre("frmAjouterCartouche");
    EXPECT_NE(f, nullptr);
    if (!f) return nullptr;
    f->findChild<QLineEdit*>("txtCommentaire")->setText("Navicula sp.");
    f->findChild<QLineEdit*>("txtNomAuteur")->setText("A. Nonyme");
    f->findChild<QComboBox*>("comboProvenance")->setCurrentText("Etang");
    return f;
  }

  // Stage 3: the photo's table applied at x40, a bar of 50 microns, and
  // "Suite" with no error on the way.
  void TableEtSuite(QWidget* f) {
    auto ligne = [f](const char* nom) { return f->findChild<QLineEdit*>(QLatin1String(nom)); };
    auto liste = [f](const char* nom) { return f->findChild<QComboBox*>(QLatin1String(nom)); };
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
    Suite(f);
  }

  // "Suite": stage 3, the form gone, only the stage's help balloon shown.
  void Suite(QWidget* f) {
    dlg.appels.clear();
    f->findChild<QPushButton*>("cmdSuite")->click();
    QApplication::processEvents();
    for (const auto& a : dlg.appels) EXPECT_EQ(a.genre, "MsgBoxEx") << a.texte.toStdString();
    ASSERT_EQ(s.Etape, 3);
    EXPECT_EQ(Fenetre("frmAjouterCartouche"), nullptr);
  }

  // The file of the headless tool and that of the windows: the same comment
  // block but for the moment of building (DateImage), the same pixels, 800 x
  // 660. Gives the tool's block.
  QString MemeFichier(const QString& parOutil, const QString& parFenetre) {
    static const QRegularExpression date(QStringLiteral("DateImage=[^\r]*"));
    QString a = Commentaire(parOutil), b = Commentaire(parFenetre);
    EXPECT_TRUE(a.contains(date));
    const QString bloc = a;
    a.replace(date, QString());
    b.replace(date, QString());
    EXPECT_EQ(a.toStdString(), b.toStdString());
    const QImage pa(parOutil), pb(parFenetre);
    EXPECT_FALSE(pa.isNull());
    EXPECT_EQ(pa.size(), QSize(800, 660));
    EXPECT_TRUE(pa == pb);
    return bloc;
  }

  // The save window: a trial at the configured quality, then the file.
  void Enregistrer(const QString& fichier) {
    w->findChild<QAction*>("Sauver")->trigger();
    QWidget* enr = Fenetre("frmEnregistrer");
    ASSERT_NE(enr, nullptr);
    enr->findChild<QPushButton*>("cmdPreparer")->click();
    dlg.chaines.push_back(fichier);
    enr->findChild<QPushButton*>("cmdConfirmer")->click();
    QApplication::processEvents();
  }
};

}  // namespace tg::test
