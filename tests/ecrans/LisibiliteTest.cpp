// The cartouche form read as it is shown: fields locked after a table keep
// dark text, the table state is seen whole, each "+ liste" box stands beside
// the list it feeds.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

#include "core/Session.h"
#include "platform/Systeme.h"
#include "tests/app/Route.h"

namespace tg {
namespace {

// Pixels darker than mid-grey: the strokes of a text written in a dark colour.
int PixelsSombres(QWidget* w) {
  const QImage img = w->grab().toImage();
  int n = 0;
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x)
      if (qGray(img.pixel(x, y)) < 90) ++n;
  return n;
}

class Lisibilite : public test::RouteFenetres {};

TEST_F(Lisibilite, FormulaireDuCartouche) {
  Ouvrir(Photo(true));
  if (HasFatalFailure()) return;
  Formater();
  if (HasFatalFailure()) return;
  QWidget* f = Cartouche();
  ASSERT_NE(f, nullptr);
  QApplication::processEvents();

  // Each "+ liste" on the row of its list, saying which list it feeds.
  const std::pair<const char*, const char*> listes[4] = {{"chkEclairage", "ComboEclairage"},
                                                         {"chkProvenance", "comboProvenance"},
                                                         {"chkMontage", "comboMontage"},
                                                         {"chkColoration", "comboColoration"}};
  for (const auto& [case_, liste] : listes) {
    auto* c = f->findChild<QCheckBox*>(case_);
    auto* l = f->findChild<QComboBox*>(liste);
    ASSERT_TRUE(c && l) << case_;
    EXPECT_EQ(c->text(), "+ liste");
    const QRect rc(c->mapTo(f, QPoint(0, 0)), c->size()), rl(l->mapTo(f, QPoint(0, 0)), l->size());
    EXPECT_TRUE(rc.top() < rl.bottom() && rl.top() < rc.bottom()) << case_ << " pas sur la ligne de " << liste;
    EXPECT_GT(rc.left(), rl.left()) << case_;
    EXPECT_TRUE(c->toolTip().contains("liste")) << case_;
  }

  // The stored table applied: its fields locked, their values still dark.
  f->findChild<QPushButton*>("cmdEtalonner")->click();
  auto* etat = f->findChild<QLineEdit*>("txtChoixTableAuto");
  ASSERT_FALSE(etat->text().isEmpty());
  QApplication::processEvents();
  // The scale and table frames shown: the form widens rather than scroll sideways, where the screen allows.
  auto* defile = f->findChild<QScrollArea*>();
  ASSERT_NE(defile, nullptr);
  if (f->screen()->availableGeometry().width() >= 1024)
    EXPECT_FALSE(defile->horizontalScrollBar()->isVisible())
        << defile->widget()->width() << " dans " << defile->viewport()->width();
  EXPECT_LE(etat->fontMetrics().horizontalAdvance(etat->displayText()) + 8, etat->width())
      << "« " << etat->displayText().toStdString() << " » coupé à " << etat->width() << " pixels";
  auto* tables = f->findChild<QComboBox*>("comboTables");
  ASSERT_EQ(tables->count(), 2);
  tables->setCurrentIndex(1);
  emit tables->activated(1);
  f->findChild<QComboBox*>("comboListeObjectif")->setCurrentText("40");
  f->findChild<QPushButton*>("cmdAppliquerTable")->click();
  QApplication::processEvents();
  for (const char* nom : {"txtPix", "txtMic"}) {
    auto* e = f->findChild<QLineEdit*>(nom);
    ASSERT_FALSE(e->isEnabled()) << nom;
    ASSERT_FALSE(e->text().isEmpty()) << nom;
    EXPECT_GT(PixelsSombres(e), 10) << nom << " : « " << e->text().toStdString() << " » illisible";
  }
  f->close();
  w->hide();
}

}  // namespace
}  // namespace tg
