// The extrapolated scale through the real windows and through the headless
// tool: tables at 5 and 10 mm, the photo at 7.5 mm; the cartouche shows
// " [*]", the file says ExtrapolationFoc=1 and carries the extrapolated scale.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>

#include "app/Assemblage.h"
#include "cartouche/frmAjouterCartouche.h"
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

class RouteExtrapolation : public test::RouteFenetres {};

TEST_F(RouteExtrapolation, EchelleExtrapoleeParLesFenetresEtParLOutil) {
  const QString photo = Photo(false);
  for (const char* focale : {"5", "10"})
    ASSERT_EQ(test::Executer(test::Cli(), {"tables", "ajouter", "--modele", "APN-Demo", "--largpix", "2272",
                                           "--micro", "Micro-A", "--config", "Fond clair", "--obj", "40", "--pix",
                                           QString::number(QString(focale).toInt() * 50), "--mic", "100",
                                           "--focale", focale})
                  .code,
              0);
  const QString parOutil = QDir::current().filePath("outil.jpg");
  const test::Sortie r =
      test::Executer(test::Cli(), {"formater", photo, "-o", parOutil, "--table", "1", "--focale", "7.5",
                                   "--objectif", "40", "--titre", "Navicula sp.", "--longueur",
                                   "50", "--auteur", "A. Nonyme", "--provenance", "Etang"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();

  Ouvrir(photo);
  if (HasFatalFailure()) return;
  Formater();
  if (HasFatalFailure()) return;

  QWidget* f = Cartouche();
  ASSERT_NE(f, nullptr);
  auto ligne = [f](const char* nom) { return f->findChild<QLineEdit*>(QLatin1String(nom)); };
  auto liste = [f](const char* nom) { return f->findChild<QComboBox*>(QLatin1String(nom)); };
  f->findChild<QPushButton*>("cmdEtalonner")->click();
  auto* extrapoler = f->findChild<QPushButton*>("cmdExtrapolFoc");
  ASSERT_TRUE(extrapoler->isEnabled());
  extrapoler->click();
  QApplication::processEvents();
  QWidget* e = Fenetre("frmExtrapolFocale");
  ASSERT_NE(e, nullptr);
  auto* choix = e->findChild<QComboBox*>("comboTable");
  ASSERT_EQ(choix->count(), 3);
  choix->setCurrentIndex(1);
  emit choix->activated(1);
  EXPECT_EQ(e->findChild<QLabel*>("lblxPixMic")->text(), QStringLiteral("F:7") + SeparateurDecimalSysteme() +
                                                             "5mm    100 µm = 375 pixels");
  e->findChild<QPushButton*>("cmdEnvoyerAuCartouche")->click();
  QApplication::processEvents();
  EXPECT_EQ(dlg.Dernier().texte, "N'oubliez pas de sélectionner un objectif ...");
  EXPECT_EQ(Fenetre("frmExtrapolFocale"), nullptr);
  EXPECT_EQ(ligne("txtPix")->text(), "375");
  EXPECT_EQ(ligne("txtMic")->text(), "100");
  EXPECT_TRUE(s.ExtrapolationFoc);
  liste("ComboObjectif")->setCurrentText("40");
  ligne("txtLongueur")->setText("50");
  f->findChild<QPushButton*>("cmdDessiner")->click();
  EXPECT_TRUE(static_cast<frmAjouterCartouche*>(f)->LegendeActuelle().contains(" [*]   obj. x40"))
      << static_cast<frmAjouterCartouche*>(f)->LegendeActuelle().toStdString();
  Suite(f);
  if (HasFatalFailure()) return;

  const QString parFenetre = QDir::current().filePath("fenetre.jpg");
  Enregistrer(parFenetre);
  ASSERT_EQ(s.Etape, 4);

  // Same block but for the moment of building, same pixels.
  EXPECT_TRUE(MemeFichier(parOutil, parFenetre).contains("\r\nExtrapolationFoc=1"));

  // 100 microns = 375 pixels of the photo, 2272 wide, saved 800 wide.
  const test::Sortie echelle = test::Executer(test::Cli(), {"echelle", parFenetre});
  const QRegularExpressionMatch m =
      QRegularExpression("MicronsParPixel=([0-9.,]+)").match(QString::fromUtf8(echelle.sortie));
  ASSERT_TRUE(m.hasMatch()) << echelle.sortie.toStdString();
  double mpp = 0;
  ASSERT_TRUE(LireNombre(m.captured(1), mpp));
  EXPECT_NEAR(mpp, 100.0 / 375 * 2272 / 800, 1e-4);
  w->hide();
}

}  // namespace
}  // namespace tg
