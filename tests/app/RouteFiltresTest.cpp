// Filters through the real windows: applied, then taken back by the menu,
// the working picture following each time.
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

class RouteFiltres : public test::RouteFenetres {};

TEST_F(RouteFiltres, AppliquesPuisRetiresParLeMenu) {
  const QString photo = Photo(false);
  Ouvrir(photo);
  if (HasFatalFailure()) return;
  Formater();
  if (HasFatalFailure()) return;
  QImage formatee;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, formatee));

  w->findChild<QAction*>("Filtres")->trigger();
  QWidget* f = Fenetre("frmFiltres");
  ASSERT_NE(f, nullptr);
  EXPECT_NE(Fenetre("frmFiltresVignette"), nullptr);
  f->findChild<QPushButton*>("cmdInversion")->click();
  f->findChild<QPushButton*>("cmdAppliquer")->click();
  QApplication::processEvents();
  EXPECT_EQ(Fenetre("frmFiltres"), nullptr);
  EXPECT_EQ(Fenetre("frmFiltresVignette"), nullptr);
  QImage filtree;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, filtree));
  EXPECT_EQ(filtree.pixel(10, 10) & 0xFFFFFF, ~formatee.pixel(10, 10) & 0xFFFFFF);
  EXPECT_TRUE(w->findChild<QAction*>("mnuAnnulerFiltres")->isEnabled());

  dlg.reponses.push_back(Reponse::Oui);
  w->findChild<QAction*>("mnuAnnulerFiltres")->trigger();
  EXPECT_EQ(dlg.Dernier().texte, "Filtres supprimés !");
  QImage rendue, refaite;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, rendue));
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageFormatee, refaite));
  EXPECT_TRUE(rendue == formatee);
  EXPECT_TRUE(refaite == formatee);
  w->hide();
}

}  // namespace
}  // namespace tg
