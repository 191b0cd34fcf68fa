// The annotation road through the real windows: open, resize, cartouche
// with a scale, an arrow and a dimension line drawn in the annotation window,
// validated and saved; the file holds the marks and the same scale, and the
// menu that drops the annotations gives the final picture back.
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

// Mean difference of the three channels over a square of side 2r + 1.
double Ecart(const QImage& a, const QImage& b, int x, int y, int r) {
  double somme = 0;
  int n = 0;
  for (int dy = -r; dy <= r; ++dy)
    for (int dx = -r; dx <= r; ++dx) {
      const QRgb p = a.pixel(x + dx, y + dy), q = b.pixel(x + dx, y + dy);
      somme += std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) + std::abs(qBlue(p) - qBlue(q));
      n += 3;
    }
  return somme / n;
}

class RouteAnnotation : public test::RouteFenetres {};

TEST_F(RouteAnnotation, FlecheEtCoteEnregistreesPuisRetirees) {
  const QString photo = Photo(true);
  Ouvrir(photo);
  if (HasFatalFailure()) return;
  Formater();
  if (HasFatalFailure()) return;

  QWidget* f = Cartouche();
  ASSERT_NE(f, nullptr);
  TableEtSuite(f);
  if (HasFatalFailure()) return;

  QImage finale;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, finale));
  const QString sansMarques = QDir::current().filePath("finale.png");
  ASSERT_TRUE(finale.save(sansMarques));

  w->findChild<QAction*>("anotations")->trigger();
  QApplication::processEvents();
  QWidget* a = Fenetre("frmAnnotations2");
  ASSERT_NE(a, nullptr);
  EXPECT_FALSE(w->isVisible());
  QWidget* image = a->findChild<QWidget*>("picImage");
  ASSERT_EQ(image->size(), finale.size());
  a->findChild<QRadioButton*>("optTexteEtLigne1")->click();
  Glisser(image, {100, 100}, {300, 100});
  a->findChild<QRadioButton*>("optTexteEtLigne3")->click();
  ASSERT_TRUE(a->findChild<QRadioButton*>("optTexteEtLigne3")->isChecked());
  Glisser(image, {100, 300}, {400, 300});
  dlg.appels.clear();
  dlg.reponses.push_back(Reponse::Oui);
  a->findChild<QPushButton*>("cmdValiderSortir")->click();
  QApplication::processEvents();
  EXPECT_EQ(dlg.Dernier().titre, "Valider et sortir");
  EXPECT_EQ(Fenetre("frmAnnotations2"), nullptr);
  EXPECT_TRUE(w->isVisible());
  ASSERT_EQ(s.Etape, 6);
  EXPECT_TRUE(s.AnnotationsPresentes);

  const QString fichier = QDir::current().filePath("annotee.jpg");
  Enregistrer(fichier);
  const QImage enregistree(fichier);
  ASSERT_EQ(enregistree.size(), finale.size());
  // The marks where they were drawn, the rest as it was (up to the JPEG's loss).
  EXPECT_GT(Ecart(enregistree, finale, 200, 100, 1), 25);   // the arrow's line
  EXPECT_GT(Ecart(enregistree, finale, 250, 300, 1), 25);   // the dimension line
  EXPECT_GT(Ecart(enregistree, finale, 100, 297, 1), 25);   // its first tick
  EXPECT_LT(Ecart(enregistree, finale, 600, 200, 8), 6);
  EXPECT_LT(Ecart(enregistree, finale, 200, 200, 8), 6);
  // The comment block still gives the scale of the cartouche.
  const QString c = Commentaire(fichier);
  EXPECT_TRUE(c.contains("\r\nEchellePix=70")) << c.toStdString();
  const test::Sortie echelle = test::Executer(test::Cli(), {"echelle", fichier});
  EXPECT_EQ(echelle.code, 0);
  EXPECT_TRUE(QString::fromUtf8(echelle.sortie).contains(QRegularExpression("MicronsParPixel=0[.,]7099"))) << echelle.sortie.toStdString();

  dlg.reponses.push_back(Reponse::Oui);
  w->findChild<QAction*>("mnuAnnulerAnnotation")->trigger();
  QApplication::processEvents();
  EXPECT_FALSE(s.AnnotationsPresentes);
  QImage reconstruite;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, reconstruite));
  EXPECT_TRUE(reconstruite == finale);
  w->hide();
}

}  // namespace
}  // namespace tg
