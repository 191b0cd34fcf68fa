// The tool windows on the screen of the test program: each fits it with its
// controls within reach and its way out in view, and a tool that acts on a
// picture lies beside it when the screen leaves room.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>

#include "core/Session.h"
#include "core/frmMain.h"
#include "measure/LiensTables.h"
#include "platform/Systeme.h"
#include "tests/app/Route.h"
#include "tests/ecrans/Geometrie.h"

namespace tg {
namespace {

using test::Fenetre;
using test::VerifierFenetre;

// The part of `w` the user sees on the screen.
QRect Visible(const QWidget* w) {
  QRect r(w->mapToGlobal(QPoint(0, 0)), w->size());
  for (const QWidget* p = w->parentWidget(); p; p = p->parentWidget()) {
    r &= QRect(p->mapToGlobal(QPoint(0, 0)), p->size());
    if (p->isWindow()) break;
  }
  return r;
}

qint64 Aire(const QRect& r) { return r.isEmpty() ? 0 : qint64(r.width()) * r.height(); }

// A tool beside the picture it acts on: none of it covered when a side of
// the screen has room for the tool, else at least a third of it in view.
void VerifierACote(const QWidget* outil, const QWidget* image) {
  ASSERT_TRUE(outil && image);
  QApplication::processEvents();
  const QRect zone = outil->screen()->availableGeometry();
  const QRect cible = (image->isWindow() ? image->frameGeometry() : Visible(image)) & zone;
  const QRect cadre = outil->frameGeometry();
  // Before a window is shown its frame is not known: the program allows for
  // a title bar of 30 pixels, where the offscreen platform draws 2.
  const QSize t = cadre.size() + QSize(8, 34);
  const bool place = zone.right() - cible.right() >= t.width() || cible.left() - zone.left() >= t.width() ||
                     zone.bottom() - cible.bottom() >= t.height() || cible.top() - zone.top() >= t.height();
  const qint64 couvert = Aire(cible & cadre);
  if (place)
    EXPECT_EQ(couvert, 0) << outil->objectName().toStdString() << " couvre l'image alors que l'écran a de la place : "
                          << cible.x() << "," << cible.y() << " " << cible.width() << "x" << cible.height() << " et "
                          << cadre.x() << "," << cadre.y() << " " << cadre.width() << "x" << cadre.height();
  else
    EXPECT_LE(couvert * 3, Aire(cible) * 2) << outil->objectName().toStdString() << " couvre presque toute l'image "
                                            << cible.width() << "x" << cible.height() << " : " << cadre.x() << ","
                                            << cadre.y() << " " << cadre.width() << "x" << cadre.height();
}

class FenetresOutils : public test::RouteFenetres {
 protected:
  FenetresOutils() {
    // As the program starts: the screen's class decides the measuring size.
    ControlerEcran(*w);
    w->showMaximized();
    QApplication::processEvents();
  }
  ~FenetresOutils() override {
    for (QWidget* t : QApplication::topLevelWidgets())
      if (t != &*w && t->isVisible()) t->close();
    w->hide();
  }
  QWidget* Menu(const char* action, const char* fenetre) {
    w->findChild<QAction*>(action)->trigger();
    QApplication::processEvents();
    QWidget* f = Fenetre(fenetre);
    EXPECT_NE(f, nullptr) << action << " n'ouvre pas " << fenetre << " : " << dlg.Textes().join(" | ").toStdString();
    return f;
  }
};

TEST_F(FenetresOutils, PhotoOuverte) {
  Ouvrir(Photo(true));
  if (HasFatalFailure()) return;
  SignalerEtatTables();  // the table stored after the window opened

  QWidget* f = Menu("Recadrer", "frmRecadrage");
  VerifierFenetre(f, {"cmdOK", "cmdAnnuler"});
  if (f) f->close();
  f = Menu("mnuOptions", "frmConfig");
  VerifierFenetre(f, {"cmdOK", "cmdAnnuler"});
  if (f) f->close();
  f = Menu("mnuSearch", "frmSearch");
  VerifierFenetre(f, {"cmdQuitter"});
  if (f) f->close();
  f = Menu("mnuGestionTables", "frmGestionTables");
  VerifierFenetre(f, {"cmdQuitter"});
  if (f) f->close();
  f = Menu("mnuExtrapolFocale", "frmExtrapolFocale");
  VerifierFenetre(f, {"cmdAnnuler"});
  if (f) f->close();
  f = Menu("mnuAjoutTable", "frmGenMesures");
  VerifierFenetre(f, {"cmdQuitter"});
  if (f) f->close();
}

TEST_F(FenetresOutils, EtalonnageEtCreationDeTable) {
  Ouvrir(Photo(false));
  if (HasFatalFailure()) return;
  QWidget* m = Menu("mnuMesurerEtalon", "frmMesure");
  if (!m) return;
  // A line drawn on the stage micrometer, then "Créer une table".
  QWidget* image = m->findChild<QWidget*>("picImage");
  test::Glisser(image, {50, 100}, {250, 100});
  QApplication::processEvents();
  auto* creer = m->findChild<QPushButton*>("cmdCopierInfos");
  ASSERT_TRUE(creer && creer->isVisible());
  creer->click();
  QWidget* g = Fenetre("frmGenMesures");
  VerifierFenetre(g, {"cmdQuitter"});
  VerifierACote(g, image);
  VerifierACote(g, m);
}

TEST_F(FenetresOutils, FiltresACoteDeLImage) {
  Ouvrir(Photo(false));
  if (HasFatalFailure()) return;
  Formater();
  if (HasFatalFailure()) return;
  QWidget* f = Menu("Filtres", "frmFiltres");
  QWidget* v = Fenetre("frmFiltresVignette");
  VerifierFenetre(f, {"cmdAppliquer", "cmdSortir"});
  VerifierFenetre(v);
  const QWidget* image = w->findChild<QWidget*>("imaOrigine");
  VerifierACote(f, image);
  VerifierACote(v, image);
  if (f && v)
    EXPECT_FALSE(f->frameGeometry().intersects(v->frameGeometry()))
        << "les vignettes couvrent les filtres : " << f->frameGeometry().x() << "," << f->frameGeometry().y() << " "
        << f->frameGeometry().width() << "x" << f->frameGeometry().height() << " et " << v->frameGeometry().x() << ","
        << v->frameGeometry().y() << " " << v->frameGeometry().width() << "x" << v->frameGeometry().height();
}

TEST_F(FenetresOutils, MesureEtCarnet) {
  Ouvrir(Photo(true));
  if (HasFatalFailure()) return;
  Formater();
  if (HasFatalFailure()) return;
  QWidget* c = Cartouche();
  ASSERT_NE(c, nullptr);
  TableEtSuite(c);
  if (HasFatalFailure()) return;
  QWidget* m = Menu("Mesure", "frmMesure");
  if (!m) return;
  m->findChild<QPushButton*>("cmdListeMesure")->click();
  QWidget* carnet = Fenetre("frmListeMesure");
  VerifierFenetre(carnet);
  VerifierACote(carnet, m->findChild<QWidget*>("picImage"));
  // With room beside the whole measuring window, its controls stay in view too.
  VerifierACote(carnet, m);
}

TEST_F(FenetresOutils, FenetresDuCartoucheEtEnregistrement) {
  Ouvrir(Photo(true));
  if (HasFatalFailure()) return;
  Formater();
  if (HasFatalFailure()) return;
  QWidget* c = Cartouche();
  ASSERT_NE(c, nullptr);
  c->findChild<QPushButton*>("cmdMotClef")->click();
  QWidget* k = Fenetre("frmMotClef");
  VerifierFenetre(k, {"cmdOK", "cmdAnnuler"});
  if (k) k->close();
  c->findChild<QPushButton*>("cmdPipette")->click();
  QWidget* p = Fenetre("frmPipette");
  VerifierFenetre(p, {"cmdOK", "cmdSortir"});
  if (p) p->close();
  TableEtSuite(c);
  if (HasFatalFailure()) return;
  w->findChild<QAction*>("Sauver")->trigger();
  VerifierFenetre(Fenetre("frmEnregistrer"), {"cmdPreparer", "cmdAnnuler"});
  // The comment editor on the saved picture.
  const QString fichier = QDir::current().filePath("finale.jpg");
  Enregistrer(fichier);
  Ouvrir(fichier);
  if (HasFatalFailure()) return;
  QWidget* e = Menu("mnuEditComments", "frmEditComments");
  VerifierFenetre(e, {"cmdQuitter"});
}

// The measuring window itself, on a stage micrometer and on the final
// picture: on a small screen its picture scrolls beside the command column.
TEST_F(FenetresOutils, FenetreDeMesure) {
  Ouvrir(Photo(true));
  if (HasFatalFailure()) return;
  VerifierFenetre(Menu("mnuMesurerEtalon", "frmMesure"), {"cmdSortirMesurerEtalon"});
  Formater();
  if (HasFatalFailure()) return;
  QWidget* c = Cartouche();
  ASSERT_NE(c, nullptr);
  TableEtSuite(c);
  if (HasFatalFailure()) return;
  VerifierFenetre(Menu("Mesure", "frmMesure"), {"cmdSortirMesurerEtalon"});
}

}  // namespace
}  // namespace tg
