// Every window of the road on the screen of the test program (800 x 600 by
// default, see MainEcran.cpp): the controls within reach, the ways out in
// view, the window inside the screen.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QPushButton>
#include <QScreen>

#include "core/Session.h"
#include "core/frmMain.h"
#include "platform/Systeme.h"
#include "tests/app/Route.h"
#include "tests/ecrans/Geometrie.h"

namespace tg {
namespace {

using test::Fenetre;
using test::VerifierFenetre;

class FenetresEcran : public test::RouteFenetres {
 protected:
  FenetresEcran() {
    // As the program shows it.
    // As the program starts: the screen's class decides the measuring size.
    ControlerEcran(*w);
    w->showMaximized();
    QApplication::processEvents();
  }
  ~FenetresEcran() override {
    for (QWidget* t : QApplication::topLevelWidgets())
      if (t != &*w && t->isVisible()) t->close();
    w->hide();
  }
};

TEST_F(FenetresEcran, RouteJusquAuCartouche) {
  VerifierFenetre(&*w);
  Ouvrir(Photo(true));
  if (HasFatalFailure()) return;
  VerifierFenetre(&*w);

  w->findChild<QAction*>("RedimAuto")->trigger();
  QWidget* ressampl = Fenetre("frmChooseRessampl");
  VerifierFenetre(ressampl, {"cmdAppliquer", "cmdSortir"});
  ressampl->findChild<QPushButton*>("cmdAppliquer")->click();
  VerifierFenetre(ressampl, {"cmdConsever"});
  ressampl->findChild<QPushButton*>("cmdConsever")->click();
  QApplication::processEvents();
  ASSERT_EQ(s.Etape, 2);
  VerifierFenetre(&*w);

  QWidget* f = Cartouche();
  VerifierFenetre(f, {"cmdSuite", "cmdQuitter"});
  TableEtSuite(f);
  if (HasFatalFailure()) return;
  VerifierFenetre(&*w);
  // The final picture whole in the display, cartouche included.
  const QWidget* cadre = w->findChild<QWidget*>("picCadre");
  const QWidget* image = w->findChild<QWidget*>("imaOrigine");
  EXPECT_TRUE(cadre->rect().contains(QRect(image->pos(), image->size())))
      << image->width() << "x" << image->height() << " dans " << cadre->width() << "x" << cadre->height();
  EXPECT_FALSE(w->findChild<QWidget*>("HScroll1")->isVisible());
  EXPECT_FALSE(w->findChild<QWidget*>("VScroll1")->isVisible());

  w->findChild<QAction*>("anotations")->trigger();
  QWidget* a = Fenetre("frmAnnotations2");
  VerifierFenetre(a, {"cmdUndo", "cmdSortir", "cmdValiderSortir"});
  // Both main frames open: the ways out stay in view.
  a->findChild<QPushButton*>("cmdfraLigne")->click();
  a->findChild<QPushButton*>("cmdfraTexte")->click();
  VerifierFenetre(a, {"cmdUndo", "cmdSortir", "cmdValiderSortir"});
  // A screen at least 1280 wide shows the final picture whole, without scroll bars.
  const QRect ecran = a->screen()->availableGeometry();
  if (ecran.width() >= 1280 && ecran.height() >= 768) {
    const QWidget* cadre = a->findChild<QWidget*>("picCadre");
    const QWidget* image = a->findChild<QWidget*>("picImage");
    EXPECT_TRUE(cadre->rect().contains(QRect(image->pos(), image->size())))
        << image->width() << "x" << image->height() << " dans " << cadre->width() << "x" << cadre->height();
    EXPECT_FALSE(a->findChild<QWidget*>("HScroll1")->isVisible());
    EXPECT_FALSE(a->findChild<QWidget*>("VScroll1")->isVisible());
  }
}

}  // namespace
}  // namespace tg
