// Several pictures in one window session, as a user formats a few in a row:
// nothing of one picture may follow the next.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QImage>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QThread>

#include "core/Enregistrement.h"
#include "core/Session.h"
#include "tests/app/Route.h"

namespace tg {
namespace {

using test::Commentaire;
using test::Fenetre;

class ImagesSuccessives : public test::RouteFenetres {
 protected:
  // A camera photo without any block: `largeur` x 3/4 of it, some detail.
  QString PhotoBrute(const QString& nom, int largeur) {
    const QString chemin = QDir::current().filePath(nom);
    Bitmap b;
    EXPECT_TRUE(ai.IO_CreateImage(b, largeur, largeur * 3 / 4, 24));
    for (int i = 0; i < 60; ++i)
      ai.MemoryDC_FillRectangle(b, (i * 53) % (largeur - 40), (i * 31) % (largeur * 3 / 4 - 30), 40, 30,
                                (i * 0x0B1C2D) & 0xFFFFFF);
    EXPECT_TRUE(ai.IO_SaveImage(b, chemin, FormatJPEG, 90));
    return chemin;
  }

  int Bulles(const QString& titre) const {
    int n = 0;
    for (const auto& a : dlg.appels)
      if (a.genre == "MsgBoxEx" && a.titre == titre) ++n;
    return n;
  }
};

TEST_F(ImagesSuccessives, UnFichierFormateNeMarquePasLesPhotosSuivantes) {
  // A formatted file at 1024, as an earlier session saved it.
  const QString photo = Photo(true);
  const QString formatee = QDir::current().filePath("formatee.jpg");
  const test::Sortie r = test::Executer(test::Cli(), {"formater", photo, "-o", formatee, "--format", "3", "--table",
                                                      "1", "--objectif", "40", "--longueur", "50"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  ASSERT_TRUE(Commentaire(formatee).contains("ReductionImage=2"));

  Ouvrir(formatee);
  if (HasFatalFailure()) return;
  EXPECT_TRUE(s.ImageDejaFormatee);
  EXPECT_EQ(Bulles("Image formatée TG"), 1);
  EXPECT_EQ(s.ChoixFormat, 3) << "the format follows the formatted file";

  // Back to 800 x 600: the picture is closed.
  dlg.reponses.push_back(Reponse::Oui);
  w->findChild<QPushButton*>("PicFormat2")->click();
  ASSERT_EQ(s.Etape, 0);
  ASSERT_EQ(s.ChoixFormat, 2);

  // A raw photo 1024 wide: not formatted, so its width does not choose the format.
  dlg.appels.clear();
  Ouvrir(PhotoBrute("brute.jpg", 1024));
  if (HasFatalFailure()) return;
  EXPECT_FALSE(s.ImageDejaFormatee);
  EXPECT_EQ(Bulles("Image formatée TG"), 0);
  EXPECT_EQ(s.ChoixFormat, 2);
  // The metadata editor is for formatted files only.
  dlg.appels.clear();
  w->findChild<QAction*>("mnuEditComments")->trigger();
  QApplication::processEvents();
  EXPECT_EQ(Fenetre("frmEditComments"), nullptr);
  EXPECT_EQ(dlg.Dernier().texte, "Veuillez charger une image formatée TG ...");

  // The demonstration photo through the whole road: a first formatting,
  // its own reduction (2272 / 800).
  Ouvrir(photo);
  if (HasFatalFailure()) return;
  Formater();
  if (HasFatalFailure()) return;
  QWidget* f = Cartouche();
  ASSERT_NE(f, nullptr);
  TableEtSuite(f);
  if (HasFatalFailure()) return;
  dlg.appels.clear();
  const QString sortie = QDir::current().filePath("sortie.jpg");
  Enregistrer(sortie);
  ASSERT_EQ(s.Etape, 4);
  for (const auto& a : dlg.appels) EXPECT_NE(a.texte, TexteSecondFormatage);
  const QString bloc = Commentaire(sortie);
  EXPECT_TRUE(bloc.contains("\r\nSecondFormatage=Non\r\n")) << bloc.toStdString();
  EXPECT_TRUE(bloc.contains(QRegularExpression("\r\nReductionImage=2[.,]84\r\n"))) << bloc.toStdString();
  w->hide();
}

// A PNG keeps the block with LF ends (and UTF-8 past Latin-1): the program
// reads it back as it wrote it, and takes the PNG for one of its own.
TEST_F(ImagesSuccessives, UnPNGFormateEstReconnu) {
  const QString photo = Photo(true);
  const QString formatee = QDir::current().filePath("formatee.jpg");
  ASSERT_EQ(test::Executer(test::Cli(), {"formater", photo, "-o", formatee, "--table", "1", "--objectif", "40",
                                         "--longueur", "50", "--titre", QString::fromUtf8("Navicula 5 €")})
                .code,
            0);
  const QString bloc = Commentaire(formatee);
  ASSERT_TRUE(bloc.contains(QString::fromUtf8("TitreImage=Navicula 5 €\r\n")));
  const QString png = QDir::current().filePath("formatee.png");
  ASSERT_TRUE(QImage(formatee).save(png));
  const QString texte = QDir::current().filePath("bloc.txt");
  {
    QFile f(texte);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bloc.toUtf8());
  }
  const test::Sortie r = test::Executer(test::Cli(), {"commentaire", "ecrire", png, "--depuis", texte});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();

  Ouvrir(png);
  if (HasFatalFailure()) return;
  EXPECT_EQ(s.CommentaireImage.toStdString(), bloc.toStdString());
  EXPECT_TRUE(s.ImageDejaFormatee);
  EXPECT_EQ(s.TitreImage, QString::fromUtf8("Navicula 5 €"));
  EXPECT_EQ(Bulles("Image formatée TG"), 1);
  w->hide();
}

TEST_F(ImagesSuccessives, ReinitialiserRechargeLaMemePhotoAChaqueFois) {
  const QString photo = Photo(false);
  Ouvrir(photo);
  if (HasFatalFailure()) return;
  w->findChild<QAction*>("RedimAuto")->trigger();
  QWidget* ressampl = Fenetre("frmChooseRessampl");
  ASSERT_NE(ressampl, nullptr);
  auto* appliquer = ressampl->findChild<QPushButton*>("cmdAppliquer");
  auto* reinit = ressampl->findChild<QPushButton*>("cmdReinit");
  auto* tick = w->findChild<QLabel*>("lblTickCount");

  for (int essai = 1; essai <= 3; ++essai) {
    SCOPED_TRACE(essai);
    appliquer->click();
    EXPECT_EQ(s.Largeur, 800);
    reinit->click();
    QApplication::processEvents();
    ASSERT_EQ(Fenetre("frmChooseRessampl"), ressampl) << "the window stays for another try";
    EXPECT_EQ(s.PathOrigine, photo);
    EXPECT_EQ(w->findChild<QLineEdit*>("txtPathOrigine")->text(), photo);
    EXPECT_EQ(s.Largeur, 2272);
    EXPECT_EQ(s.Etape, 1);
    EXPECT_FALSE(s.ImageCourante.Vide());
  }
  for (const auto& a : dlg.appels) EXPECT_NE(a.genre, "Message") << a.texte.toStdString();

  // The time shown is the resize's, there as soon as it is done: the user's
  // time in the window before "Conserver" does not count.
  appliquer->click();
  const QString temps = tick->text();
  EXPECT_TRUE(temps.startsWith("redim = ")) << temps.toStdString();
  QThread::msleep(50);
  ressampl->findChild<QPushButton*>("cmdConsever")->click();
  QApplication::processEvents();
  ASSERT_EQ(s.Etape, 2);
  EXPECT_EQ(tick->text(), temps);
  w->hide();
}

TEST_F(ImagesSuccessives, ApresLeCartoucheLeBoutonMontreLesNouvellesMetaDonnees) {
  Ouvrir(Photo(true));
  if (HasFatalFailure()) return;
  auto* bouton = w->findChild<QPushButton*>("cmdAgrandirTxtExif");
  EXPECT_EQ(bouton->text(), "+");
  Formater();
  if (HasFatalFailure()) return;
  EXPECT_TRUE(bouton->isHidden());
  QWidget* f = Cartouche();
  ASSERT_NE(f, nullptr);
  TableEtSuite(f);
  if (HasFatalFailure()) return;
  EXPECT_EQ(bouton->text(), "Voir nouvelles Méta-Données");
  EXPECT_TRUE(bouton->isVisible());
  EXPECT_GE(bouton->width(), bouton->fontMetrics().horizontalAdvance(bouton->text()));
  bouton->click();
  auto* exif = w->findChild<QWidget*>("txtExif");
  EXPECT_TRUE(exif->isVisible());

  // The next picture gives the button its "+" back.
  Ouvrir(Photo(false));
  if (HasFatalFailure()) return;
  EXPECT_EQ(bouton->text(), "+");
  w->hide();
}

}  // namespace
}  // namespace tg
