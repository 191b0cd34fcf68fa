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
#include "tests/app/Route.h"
#include "tests/support/DialoguesScriptes.h"
#include "tests/support/Processus.h"

namespace tg {
namespace {

using test::Commentaire;
using test::Fenetre;
using test::Glisser;

class RouteRecadrage : public test::RouteFenetres {};

TEST_F(RouteRecadrage, LEchelleSuitLaLargeurDuRecadrage) {
  const QString photo = Photo(true);
  Ouvrir(photo);
  if (HasFatalFailure()) return;
  w->findChild<QAction*>("Recadrer")->trigger();
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
  EXPECT_TRUE(w->isVisible());
  Formater();
  if (HasFatalFailure()) return;

  QWidget* f = Cartouche();
  ASSERT_NE(f, nullptr);
  TableEtSuite(f);
  if (HasFatalFailure()) return;

  const QString parFenetre = QDir::current().filePath("fenetre.jpg");
  Enregistrer(parFenetre);
  w->hide();

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
