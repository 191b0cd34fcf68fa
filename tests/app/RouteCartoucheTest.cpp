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
#include "tests/app/Route.h"
#include "tests/support/DialoguesScriptes.h"
#include "tests/support/Processus.h"

namespace tg {
namespace {

using test::Commentaire;
using test::Fenetre;

class RouteCartouche : public test::RouteFenetres {};

TEST_F(RouteCartouche, LaFenetreEtLOutilSansFenetreFontLeMemeFichier) {
  const QString photo = Photo(true);
  const QString parOutil = QDir::current().filePath("outil.jpg");
  const test::Sortie r =
      test::Executer(test::Cli(), {"formater", photo, "-o", parOutil, "--table", "1",
                                   "--objectif", "40", "--titre", "Navicula sp.", "--longueur",
                                   "50", "--auteur", "A. Nonyme", "--provenance", "Etang"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();

  Ouvrir(photo);
  if (HasFatalFailure()) return;
  Formater();
  if (HasFatalFailure()) return;

  QWidget* f = Cartouche();
  ASSERT_NE(f, nullptr);
  TableEtSuite(f);
  if (HasFatalFailure()) return;

  const QString parFenetre = QDir::current().filePath("fenetre.jpg");
  Enregistrer(parFenetre);
  ASSERT_EQ(s.Etape, 4);

  // Same block but for the moment of building, same pixels.
  EXPECT_TRUE(MemeFichier(parOutil, parFenetre).contains("\r\nEchellePix=70"));

  // Annotations drawn, then removed: the final picture is rebuilt from the
  // formatted image with the form as it was left.
  QImage finale;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, finale));
  ASSERT_TRUE(ai.MemoryDC_FillRectangle(s.ImageCourante, 20, 20, 120, 60, 0x0000FF));
  s.AnnotationsPresentes = true;
  s.Etape = 6;  // as the annotation window leaves it
  w->AppliquerEtape();
  dlg.reponses.push_back(Reponse::Oui);
  w->findChild<QAction*>("mnuAnnulerAnnotation")->trigger();
  QApplication::processEvents();
  EXPECT_FALSE(s.AnnotationsPresentes);
  EXPECT_EQ(Fenetre("frmAjouterCartouche"), nullptr);
  QImage reconstruite;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, reconstruite));
  EXPECT_TRUE(reconstruite == finale);
  EXPECT_EQ(s.Etape, 3);
  w->hide();
}

}  // namespace
}  // namespace tg
