// The colour pipette and its hand-over to the window that asked, here a
// stand-in for the filter and cartouche windows.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>

#include "core/frmPipette.h"
#include "imaging/cAdvancedImagery.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

class Demandeur : public QWidget, public IReceveurPipette {
 public:
  explicit Demandeur(const char* nom) { setObjectName(QLatin1String(nom)); }
  int appels = 0, couleur = -2, rouge = -1, vert = -1, bleu = -1;
  void RecevoirCouleurPipette(int c, int r, int g, int b) override {
    ++appels;
    couleur = c;
    rouge = r;
    vert = g;
    bleu = b;
  }
};

class Pipette : public testing::Test {
 protected:
  test::DialoguesScriptes dlg;
  cAdvancedImagery ai;
  Bitmap image;
  void Image(int l, int h) {
    ASSERT_TRUE(ai.IO_CreateImage(image, l, h, 24));
    // Left half 0xBBGGRR = 0x3080C0: red 0xC0, green 0x80, blue 0x30.
    ASSERT_TRUE(ai.MemoryDC_FillRectangle(image, 0, 0, l / 2, h, 0x3080C0));
  }
  void Clic(frmPipette* p, int x, int y) {
    QWidget* img = p->findChild<QWidget*>("imgImage");
    QMouseEvent e(QEvent::MouseButtonPress, QPointF(x, y), img->mapToGlobal(QPointF(x, y)),
                  Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(img, &e);
  }
};

TEST_F(Pipette, CopieReduiteEtCouleurLueAuClic) {
  Image(1600, 1200);
  auto* p = new frmPipette(image, ai);
  EXPECT_EQ(p->findChild<QLabel*>("imgImage")->size(), QSize(640, 480));
  QWidget* img = p->findChild<QWidget*>("imgImage");
  // The pipette's own cursor, its hot spot at the dropper's tip, low left.
  const QCursor curseur = img->cursor();
  EXPECT_EQ(curseur.shape(), Qt::BitmapCursor);
  EXPECT_FALSE(curseur.pixmap().isNull());
  EXPECT_LT(curseur.hotSpot().x(), 4);
  EXPECT_GT(curseur.hotSpot().y(), curseur.pixmap().height() - 4);
  QMouseEvent mouvement(QEvent::MouseMove, QPointF(12, 34), img->mapToGlobal(QPointF(12, 34)),
                        Qt::NoButton, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(img, &mouvement);
  EXPECT_EQ(p->findChild<QLabel*>("lblX")->text(), "x=12");
  EXPECT_EQ(p->findChild<QLabel*>("lblY")->text(), "y=34");
  Clic(p, 100, 200);
  EXPECT_EQ(p->findChild<QLabel*>("lblRVB")->text(), "RVB = 192 - 128 - 48");
  EXPECT_EQ(p->Couleur(), 0x3080C0);
  Clic(p, 600, 200);
  EXPECT_EQ(p->findChild<QLabel*>("lblRVB")->text(), "RVB = 0 - 0 - 0");
  EXPECT_EQ(p->RougeChoisi, 0);
  // Outside the picture: the layer's error, the window stays.
  EXPECT_FALSE(p->ChoisirPixel(5000, 10));
  EXPECT_TRUE(dlg.Dernier().texte.startsWith("Error = "));
  delete p;
}

TEST_F(Pipette, RemetLaCouleurAuxFenetresChargees) {
  Image(200, 100);  // smaller than the window: kept as it is
  Demandeur filtres("frmFiltres"), cartouche("frmAjouterCartouche"), autre("frmConfig");
  auto* p = new frmPipette(image, ai);
  EXPECT_EQ(p->findChild<QLabel*>("imgImage")->size(), QSize(200, 100));
  p->show();
  Clic(p, 10, 10);
  p->findChild<QPushButton*>("cmdOK")->click();
  EXPECT_FALSE(p->isVisible());
  for (Demandeur* d : {&filtres, &cartouche}) {
    EXPECT_EQ(d->appels, 1) << d->objectName().toStdString();
    EXPECT_EQ(d->couleur, 0x3080C0);
    EXPECT_EQ(d->rouge, 192);
    EXPECT_EQ(d->vert, 128);
    EXPECT_EQ(d->bleu, 48);
  }
  EXPECT_EQ(autre.appels, 0);
  QApplication::processEvents();
}

TEST_F(Pipette, SansDemandeurOuSansCouleurRienNePasse) {
  Image(200, 100);
  {
    auto* p = new frmPipette(image, ai);
    p->show();
    Clic(p, 10, 10);
    p->findChild<QPushButton*>("cmdOK")->click();  // nobody asked: closes with no effect
    EXPECT_FALSE(p->isVisible());
  }
  Demandeur filtres("frmFiltres");
  auto* p = new frmPipette(image, ai);
  p->show();
  p->findChild<QPushButton*>("cmdOK")->click();  // no colour picked yet
  EXPECT_EQ(filtres.appels, 0);
  auto* q = new frmPipette(image, ai);
  q->show();
  Clic(q, 10, 10);
  q->findChild<QPushButton*>("cmdSortir")->click();
  EXPECT_EQ(filtres.appels, 0);
  EXPECT_FALSE(q->isVisible());
  QApplication::processEvents();
}

}  // namespace
}  // namespace tg
