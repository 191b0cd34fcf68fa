// The save window and the resampler window, driven through their controls
// from the main window.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <memory>

#include "core/Chargement.h"
#include "core/frmFichierPhoto.h"
#include "core/frmFichierPhotoChargement.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Ini.h"
#include "platform/Systeme.h"
#include "tests/support/DialoguesScriptes.h"
#include "tests/support/DossierMonte.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

QWidget* Fenetre(const char* nom) {
  for (QWidget* f : QApplication::topLevelWidgets())
    if (f->objectName() == QLatin1String(nom) && f->isVisible()) return f;
  return nullptr;
}

template <typename T>
T* C(QWidget* f, const char* nom) {
  T* c = f->findChild<T*>(QLatin1String(nom));
  EXPECT_NE(c, nullptr) << nom;
  return c;
}

// Closes whatever tool windows a test left open.
void FermerTout() {
  for (QWidget* f : QApplication::topLevelWidgets())
    if (f->isVisible() && f->objectName() != u"frmFichierPhoto") f->close();
  QApplication::processEvents();
}

class AvecFenetre : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  std::unique_ptr<frmFichierPhoto> w;

  void SetUp() override {
    s.MessageBox = 1;
    s.ImageAccueil = "0";
    s.RepTravail = RepApplication() + "travail/";
    QDir().mkpath(s.RepTravail);
    w = std::make_unique<frmFichierPhoto>(s, ai);
    InstallerChargementEtFormats(*w);
  }
  void TearDown() override {
    FermerTout();
    w.reset();
  }
  void Charger(int l, int h) {
    Bitmap b;
    ASSERT_TRUE(ai.IO_CreateImage(b, l, h, 24));
    for (int i = 0; i < 40; ++i)
      ASSERT_TRUE(ai.MemoryDC_FillRectangle(b, (i * 37) % l, (i * 53) % h, 60, 40, i * 0x050A0F));
    const QString chemin = RepApplication() + "source.jpg";
    ASSERT_TRUE(ai.IO_SaveImage(b, chemin, FormatJPEG, 95));
    ASSERT_TRUE(ChargerImage(*w, chemin));
    ControleImage(*w);
  }
};

// ---------------------------------------------------------------- frmEnregistrer

class Enregistrer : public AvecFenetre {
 protected:
  QWidget* f = nullptr;
  void Ouvrir() {
    Charger(800, 600);
    s.Etape = 3;
    w->AppliquerEtape();
    s.CommentaireImage = "[Tessellographe]\r\nTitreImage=Navicula\r\nQualiteJpg=\r\n";
    w->findChild<QAction*>("Sauver")->trigger();
    f = Fenetre("frmEnregistrer");
    ASSERT_NE(f, nullptr);
  }
  bool Visible(const char* nom) { return C<QWidget>(f, nom)->isVisibleTo(f); }
  void Tester() { C<QPushButton>(f, "cmdPreparer")->click(); }
  int KoDuFichier() {
    return int((QFileInfo(RepApplication() + "resultat.jpg").size() + 512) / 1024 + 1);
  }
};

TEST_F(Enregistrer, OuvertureQualitesEtSecondFormatage) {
  s.PoidsFichier = 12;
  Ouvrir();
  auto* combo = C<QComboBox>(f, "ComboQualite");
  QStringList items;
  for (int i = 0; i < combo->count(); ++i) items << combo->itemText(i);
  EXPECT_EQ(items, QStringList({"100", "99", "98", "97", "94", "90", "80", "70"}));
  EXPECT_EQ(combo->currentText(), "94");
  EXPECT_FALSE(Visible("fraResultat"));
  EXPECT_TRUE(C<QRadioButton>(f, "optExtension0")->isChecked());
  EXPECT_EQ(s.PoidsFichier, 0);
  EXPECT_EQ(C<QPushButton>(f, "cmdPreparer")->text(), "Tester JPG");
  FermerTout();

  s.ImageDejaFormatee = true;
  dlg.appels.clear();
  w->findChild<QAction*>("Sauver")->trigger();
  ASSERT_FALSE(dlg.appels.empty());
  EXPECT_EQ(dlg.appels.back().texte,
            "Attention, second formatage !\nVérifiez bien la qualité du résultat en fonction "
            "de la compression.");
}

TEST_F(Enregistrer, LaLimiteDePoidsCacheLaConfirmation) {
  s.PoidsMax = 30000;
  Ouvrir();
  Tester();
  ASSERT_TRUE(Visible("fraResultat"));
  const int ko = KoDuFichier();
  EXPECT_EQ(C<QLineEdit>(f, "txtPoidsImage")->text(), QString::number(ko));
  EXPECT_EQ(s.PoidsFichier, ko);
  // The trial is on the main display, its block in txtExif.
  EXPECT_TRUE(w->findChild<QWidget*>("txtExif") != nullptr);

  // A new quality hides the result: it must be tried.
  C<QComboBox>(f, "ComboQualite")->setCurrentIndex(0);
  EXPECT_FALSE(Visible("fraResultat"));
  C<QComboBox>(f, "ComboQualite")->setCurrentIndex(4);

  s.PoidsMax = int16_t(ko);  // exactly the limit: passes
  Tester();
  EXPECT_TRUE(Visible("fraResultat"));
  s.PoidsMax = int16_t(ko - 1);  // one ko above: refused
  dlg.appels.clear();
  Tester();
  EXPECT_FALSE(Visible("fraResultat"));
  EXPECT_EQ(C<QLineEdit>(f, "txtPoidsImage")->text(), "N/A");
  ASSERT_FALSE(dlg.appels.empty());
  EXPECT_EQ(dlg.appels.back().texte,
            QString("Le fichier image est trop lourd (>%1 ko)\nAbaissez la qualité d'image ou "
                    "modifiez votre configuration")
                .arg(ko - 1));
  EXPECT_EQ(dlg.appels.back().icone, 48);
}

// The best quality under the limit in one click: the list shows it and the
// result is a normal trial, within the limit.
TEST_F(Enregistrer, MeilleureQualiteSousLePoidsMax) {
  s.PoidsMax = 30000;
  Ouvrir();
  Tester();
  const int ko100 = KoDuFichier();
  s.PoidsMax = int16_t(std::max(2, ko100 / 2));
  C<QPushButton>(f, "cmdQualiteAuto")->click();
  ASSERT_TRUE(Visible("fraResultat"));
  const int choisie = C<QComboBox>(f, "ComboQualite")->currentText().toInt();
  EXPECT_GE(choisie, 1);
  EXPECT_LT(choisie, 94);
  EXPECT_LE(KoDuFichier(), s.PoidsMax);
  EXPECT_EQ(C<QLineEdit>(f, "txtPoidsImage")->text(), QString::number(KoDuFichier()));
}

TEST_F(Enregistrer, BmpDemandeEtNeGardeAucunBloc) {
  s.PoidsMax = 1;  // BMP and TIFF have no limit
  Ouvrir();
  dlg.reponses.push_back(Reponse::Non);
  C<QRadioButton>(f, "optExtension1")->click();
  ASSERT_EQ(dlg.Dernier().genre, "Question");
  EXPECT_EQ(dlg.Dernier().titre, "Métadonnées");
  EXPECT_TRUE(dlg.Dernier().texte.startsWith("En enregistrant sous ce format vous perdrez "));
  EXPECT_TRUE(C<QRadioButton>(f, "optExtension0")->isChecked());
  EXPECT_TRUE(Visible("fraCompression"));

  dlg.reponses.push_back(Reponse::Oui);
  C<QRadioButton>(f, "optExtension2")->click();
  EXPECT_FALSE(Visible("fraCompression"));
  EXPECT_FALSE(Visible("lblVerifierResult"));
  EXPECT_TRUE(Visible("fraResultat"));
  QFile resultat(RepApplication() + "resultat.jpg");
  ASSERT_TRUE(resultat.open(QIODevice::ReadOnly));
  const QByteArray octets = resultat.readAll();
  EXPECT_TRUE(octets.startsWith("II*") || octets.startsWith("MM"));
  EXPECT_FALSE(octets.contains("TitreImage"));

  s.TitreImageConfig = "0";
  const QString cible = s.RepTravail + "sortie.tif";
  dlg.chaines.push_back(cible);
  C<QPushButton>(f, "cmdConfirmer")->click();
  EXPECT_TRUE(dlg.appels[dlg.appels.size() - 2].texte.endsWith("forum_001.tif"));
  QFile sortie(cible);
  ASSERT_TRUE(sortie.open(QIODevice::ReadOnly));
  EXPECT_EQ(sortie.readAll(), octets);
}

TEST_F(Enregistrer, NumerosSuccessifsEtEtape4) {
  s.PoidsMax = 30000;
  s.TitreImageConfig = "0";
  s.NomFichImage = "forum_";
  s.NextNumberImage = 1;
  for (int n = 1; n <= 2; ++n) {
    Ouvrir();
    Tester();
    const QString cible = s.RepTravail + QString("choisi%1.jpg").arg(n);
    dlg.chaines.push_back(cible);
    dlg.appels.clear();
    C<QPushButton>(f, "cmdConfirmer")->click();
    ASSERT_GE(dlg.appels.size(), 2u);
    EXPECT_EQ(dlg.appels[0].titre, "  Sauver votre image ...");
    EXPECT_EQ(dlg.appels[0].texte, s.RepTravail + QString("forum_00%1.jpg").arg(n));
    EXPECT_EQ(dlg.appels[1].texte, "Sauvegarde OK");
    QApplication::processEvents();
    EXPECT_EQ(Fenetre("frmEnregistrer"), nullptr);
    EXPECT_EQ(s.Etape, 4);
    EXPECT_TRUE(w->findChild<QAction*>("Sauver")->property("marque").toBool());
    EXPECT_EQ(w->findChild<QLineEdit*>("txtPoidsFichier")->text(),
              QString::number(int(s.PoidsFichier)));
    // The saved file carries the block with the quality.
    Bitmap relu;
    ASSERT_TRUE(ai.IO_LoadImage(cible, relu));
    QString commentaire;
    ASSERT_TRUE(ai.Metadata_Get_Comments(relu, commentaire));
    EXPECT_TRUE(commentaire.contains("QualiteJpg=94\r\n"));
  }
  EXPECT_EQ(s.NextNumberImage, 3);
  EXPECT_EQ(LireIni("General", "NextNumberImage", CheminUserConfig(), ""), "3");
}

TEST_F(Enregistrer, TitreSansNumeroEtDossierCourant) {
  s.PoidsMax = 30000;
  s.TitreImageConfig = "1";
  s.NextNumberImage = 5;
  Ouvrir();
  s.TitreImage = "Pollen de Pin";
  Tester();
  C<QRadioButton>(f, "optDossier1")->setChecked(true);
  dlg.chaines.push_back(QDir::currentPath() + "/pollen.jpg");
  dlg.appels.clear();
  C<QPushButton>(f, "cmdConfirmer")->click();
  EXPECT_EQ(dlg.appels[0].texte, QDir::currentPath() + "pollen_de_pin.jpg");
  EXPECT_EQ(s.NextNumberImage, 5);
  EXPECT_TRUE(QFile::exists(QDir::currentPath() + "/pollen.jpg"));
}

TEST_F(Enregistrer, CopieImpossibleOuAnnulee) {
  s.PoidsMax = 30000;
  Ouvrir();
  Tester();
  dlg.chaines.push_back(RepApplication() + "absent/x.jpg");
  C<QPushButton>(f, "cmdConfirmer")->click();
  EXPECT_EQ(dlg.Dernier().texte,
            "Error 75 (Erreur d'accès au chemin/fichier) in procedure DialogueEnregistrer of "
            "Feuille frmEnregistrer\nFichier « " + RepApplication() + "absent/x.jpg » : fichier ou dossier inexistant.");
  EXPECT_NE(Fenetre("frmEnregistrer"), nullptr);
  EXPECT_EQ(s.Etape, 3);
  // A cancelled dialog does nothing.
  C<QPushButton>(f, "cmdConfirmer")->click();
  EXPECT_NE(Fenetre("frmEnregistrer"), nullptr);

  C<QPushButton>(f, "cmdAnnuler")->click();
  QApplication::processEvents();
  EXPECT_EQ(Fenetre("frmEnregistrer"), nullptr);
  EXPECT_EQ(s.Etape, 3);
  EXPECT_EQ(w->findChild<QLineEdit*>("txtPoidsFichier")->text(), "N/A");
}

// The file the user saves over, on a read-only disk and on a full one: the
// report, then the file and the reason; the old file stays as it was.
TEST_F(Enregistrer, EchecDeCopieDitLeFichierEtLaRaison) {
  s.PoidsMax = 30000;
  Ouvrir();
  Tester();
  const QByteArray ancien(4096, 'x');
  const QString fige = RepApplication() + "fige";
  {
    const test::DossierMonte lecture(fige, 1 << 20, true, "ancien.jpg", ancien);
    if (!lecture.Monte()) GTEST_SKIP() << "monter un système de fichiers demande les droits de root";
    dlg.chaines.push_back(fige + "/ancien.jpg");
    C<QPushButton>(f, "cmdConfirmer")->click();
    EXPECT_EQ(dlg.Dernier().texte,
              "Error 75 (Erreur d'accès au chemin/fichier) in procedure DialogueEnregistrer of "
              "Feuille frmEnregistrer\nFichier « " + fige + "/ancien.jpg » : dossier en lecture seule.");
    QFile f(fige + "/ancien.jpg");
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), ancien);
  }
  const QString plein = RepApplication() + "plein";
  const test::DossierMonte petit(plein, 8 * 1024);
  ASSERT_TRUE(petit.Monte());
  {
    QFile f(plein + "/ancien.jpg");
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(ancien);
  }
  dlg.chaines.push_back(plein + "/ancien.jpg");
  C<QPushButton>(f, "cmdConfirmer")->click();
  EXPECT_TRUE(dlg.Dernier().texte.endsWith("\nFichier « " + plein + "/ancien.jpg » : disque plein."))
      << dlg.Dernier().texte.toStdString();
  QFile relu(plein + "/ancien.jpg");
  ASSERT_TRUE(relu.open(QIODevice::ReadOnly));
  EXPECT_EQ(relu.readAll(), ancien);
  EXPECT_EQ(QDir(plein).entryList(QDir::Files | QDir::Hidden), QStringList{"ancien.jpg"});
  EXPECT_NE(Fenetre("frmEnregistrer"), nullptr);
  EXPECT_EQ(s.Etape, 3);
}

// ---------------------------------------------------------------- frmChooseRessampl

TEST_F(AvecFenetre, RessamplEssaieReinitialiseEtConserve) {
  s.MethodeRedim = "0";
  Charger(1600, 1200);
  w->findChild<QAction*>("RedimAuto")->trigger();
  QWidget* f = Fenetre("frmChooseRessampl");
  ASSERT_NE(f, nullptr);
  EXPECT_EQ(f->windowModality(), Qt::WindowModal);  // the road waits for the choice
  EXPECT_TRUE(C<QRadioButton>(f, "optFiltre3")->isChecked());
  EXPECT_EQ(C<QRadioButton>(f, "optFiltre2")->text(), " 2: B-Spline (plus lisse)");
  C<QRadioButton>(f, "optFiltre1")->setChecked(true);
  C<QPushButton>(f, "cmdAppliquer")->click();
  EXPECT_EQ(C<QLabel>(f, "lblChoixOk")->text(), "Redimensionnement (bilinéaire) ok !");
  EXPECT_FALSE(C<QWidget>(f, "Frame1")->isVisibleTo(f));
  EXPECT_TRUE(C<QWidget>(f, "Frame2")->isVisibleTo(f));
  EXPECT_EQ(s.Largeur, 800);
  EXPECT_EQ(s.Etape, 1);  // not kept yet

  C<QPushButton>(f, "cmdReinit")->click();
  EXPECT_EQ(s.Largeur, 1600);
  EXPECT_TRUE(s.ImageFormatee.Vide());
  EXPECT_TRUE(C<QWidget>(f, "Frame1")->isVisibleTo(f));

  C<QRadioButton>(f, "optFiltre4")->setChecked(true);
  C<QPushButton>(f, "cmdAppliquer")->click();
  EXPECT_EQ(C<QLabel>(f, "lblChoixOk")->text(), "Redimensionnement (bicubic) ok !");
  C<QPushButton>(f, "cmdConsever")->click();
  QApplication::processEvents();
  EXPECT_EQ(Fenetre("frmChooseRessampl"), nullptr);
  EXPECT_EQ(s.Etape, 2);
  EXPECT_EQ(s.LargeurFormatee, 800);
  EXPECT_TRUE(w->findChild<QLabel*>("lblTickCount")->text().startsWith("redim = "));
}

TEST_F(AvecFenetre, NePlusUtiliserPasseEnModeSilencieux) {
  s.MethodeRedim = "0";
  s.MessageBox = 0;
  Charger(1600, 1200);
  w->findChild<QAction*>("RedimAuto")->trigger();
  QWidget* f = Fenetre("frmChooseRessampl");
  ASSERT_NE(f, nullptr);
  C<QCheckBox>(f, "chkMethodeRedim")->setChecked(true);
  EXPECT_EQ(LireIni("General", "MethodeRedim", CheminUserConfig(), ""), "1");
  C<QPushButton>(f, "cmdSortir")->click();
  QApplication::processEvents();
  EXPECT_EQ(s.Etape, 1);  // left without change of stage
  EXPECT_EQ(s.Largeur, 1600);

  dlg.appels.clear();
  w->findChild<QAction*>("RedimAuto")->trigger();
  EXPECT_EQ(Fenetre("frmChooseRessampl"), nullptr);
  EXPECT_EQ(s.Etape, 2);
  EXPECT_EQ(s.Largeur, 800);
  EXPECT_EQ(s.Hauteur, 600);
  EXPECT_TRUE(w->findChild<QLabel*>("lblTickCount")->text().startsWith("redim = "));
  bool aide = false;
  for (const auto& a : dlg.appels) aide |= a.genre == "MsgBoxEx" && a.titre == "Formatage OK";
  EXPECT_TRUE(aide);
}

}  // namespace
}  // namespace tg
