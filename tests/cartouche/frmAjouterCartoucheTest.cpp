// The cartouche form driven through its named controls and the dialogue double.
#include <gtest/gtest.h>
#include <QRadioButton>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "cartouche/Listes.h"
#include "cartouche/ImageFinale.h"
#include "cartouche/frmAjouterCartouche.h"
#include "core/Chargement.h"
#include "core/frmPipette.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/TableMesure.h"
#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Liste.h"
#include "tests/cartouche/FormulaireEssai.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::EcrireTables;
using test::Table;

class FormCartouche : public testing::Test {
 protected:
  test::DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  std::unique_ptr<frmAjouterCartouche> f;

  // A formatted picture of largeur x hauteur in a 800 x 600 format.
  void Ouvrir(int largeur, int hauteur, const QString& hb = QStringLiteral("1")) {
    test::SessionFormatee(s, ai, largeur, hauteur, hb);
    if (testing::Test::HasFatalFailure()) return;
    f = std::make_unique<frmAjouterCartouche>(s, ai, nullptr);
    f->Form_Load();
    dlg.appels.clear();
  }
  template <class T>
  T* C(const char* nom) {
    auto* w = f->findChild<T*>(QLatin1String(nom));
    EXPECT_NE(w, nullptr) << nom;
    return w;
  }
  void Dessiner() { C<QPushButton>("cmdDessiner")->click(); }
  // A new visit of the form on the same session.
  void Rouvrir() {
    f = std::make_unique<frmAjouterCartouche>(s, ai, nullptr);
    f->Form_Load();
    dlg.appels.clear();
  }
  // Types `texte` key by key into `w`.
  static void Taper(QWidget* w, const QString& texte) {
    for (QChar c : texte) {
      // Printable ASCII keys carry the code of their upper-case character.
      QKeyEvent appui(QEvent::KeyPress, c.toUpper().unicode(), Qt::NoModifier, QString(c));
      QApplication::sendEvent(w, &appui);
    }
  }
  static bool Peint(QWidget* w, const char* rgb) {
    return w->styleSheet().contains(QLatin1String(rgb));
  }
};

TEST_F(FormCartouche, TitreDeSoixanteDixCaracteresPasseEtSoixanteEtOnzeEchoue) {
  Ouvrir(640, 480);
  // The control refuses to grow past 70; a longer text can only come from
  // the program, as the memory of the form does.
  C<QLineEdit>("txtCommentaire")->setMaxLength(200);
  C<QLineEdit>("txtCommentaire")->setText(QString(70, u'a'));
  Dessiner();
  EXPECT_TRUE(f->CartoucheValide());
  EXPECT_TRUE(dlg.appels.empty()) << dlg.Textes().join(" | ").toStdString();
  EXPECT_TRUE(C<QPushButton>("cmdSuite")->isEnabled());

  C<QLineEdit>("txtCommentaire")->setText(QString(71, u'a'));
  Dessiner();
  EXPECT_FALSE(f->CartoucheValide());
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.Dernier().texte, "Titre : le texte est absent ou trop long (max 70 char.)");
  EXPECT_FALSE(C<QPushButton>("cmdSuite")->isEnabled());

  C<QLineEdit>("txtCommentaire")->clear();
  Dessiner();
  EXPECT_EQ(dlg.Dernier().texte, "Titre : le texte est absent ou trop long (max 70 char.)");
}

TEST_F(FormCartouche, GuillemetsEtEgalNettoyesDansLesControles) {
  Ouvrir(640, 480);
  C<QLineEdit>("txtCommentaire")->setText(QStringLiteral("Navicula \"sp\" a=b "));
  C<QLineEdit>("txtNomAuteur")->setText(QStringLiteral("Jean=Pierre"));
  C<QComboBox>("comboProvenance")->setCurrentText(QStringLiteral("\"Etang\""));
  C<QLineEdit>("txtMicroMan")->setText(QStringLiteral("Micro=\"X\""));
  Dessiner();
  EXPECT_TRUE(f->CartoucheValide());
  EXPECT_EQ(C<QLineEdit>("txtCommentaire")->text(), "Navicula sp a b");
  EXPECT_EQ(C<QLineEdit>("txtNomAuteur")->text(), "Jean Pierre");
  EXPECT_EQ(C<QComboBox>("comboProvenance")->currentText(), "Etang");
  EXPECT_EQ(C<QLineEdit>("txtMicroMan")->text(), "Micro X");
}

TEST_F(FormCartouche, ObjectifManuelNonNumeriqueDonneDeuxMessagesEtLeDessinContinue) {
  Ouvrir(640, 480);
  C<QComboBox>("ComboObjectifMan")->setCurrentText(QStringLiteral("abc"));
  Dessiner();
  ASSERT_EQ(dlg.appels.size(), 2u) << dlg.Textes().join(" | ").toStdString();
  EXPECT_EQ(dlg.appels[0].titre, "Erreur sur les champs numériques");
  EXPECT_EQ(dlg.appels[1].texte, "Modifiez le champ Objectif (partie sans étalon)");
  EXPECT_TRUE(f->CartoucheValide());
  EXPECT_FALSE(f->ImageCartouche().isNull());
  EXPECT_TRUE(C<QPushButton>("cmdSuite")->isEnabled());
}

TEST_F(FormCartouche, FormeDuCartoucheSelonLeCadrage) {
  // 3:2 as wide as the background: the RN shape, 103 rows.
  Ouvrir(640, 427);
  EXPECT_EQ(f->HauteurCartouche(), 103);
  Dessiner();
  EXPECT_EQ(f->ImageCartouche().size(), QSize(640, 103));
  EXPECT_EQ(C<QLabel>("lblInfosCartouche")->text(),
            "Infos: Cartouche RN (3 lignes) sera placé sous l'image");

  Ouvrir(640, 480);
  EXPECT_EQ(f->HauteurCartouche(), 60);
  Dessiner();
  EXPECT_EQ(f->ImageCartouche().size(), QSize(640, 60));
  EXPECT_EQ(C<QLabel>("lblInfosCartouche")->text(),
            "Infos: Le cartouche (3 lignes) sera placé sous l'image");
}

TEST_F(FormCartouche, CouleurDuTexteRecouvreCelleDeLEchelleMaisPasLInverse) {
  Ouvrir(640, 480);
  dlg.couleurs = {0x0000FF};  // red, as 0xBBGGRR
  C<QPushButton>("cmdCouleurTexte")->click();
  EXPECT_EQ(f->CouleurTexte(), QColor(255, 0, 0));
  EXPECT_EQ(f->CouleurEchelle(), QColor(255, 0, 0));

  dlg.couleurs = {0xFF0000};  // blue
  C<QPushButton>("cmdCouleurEchelle")->click();
  EXPECT_EQ(f->CouleurEchelle(), QColor(0, 0, 255));
  EXPECT_EQ(f->CouleurTexte(), QColor(255, 0, 0));
}

// The auto colour over the picture: light over a dark picture, dark over a
// light one, when the cartouche lets the picture through; under the picture
// the box is not offered.
TEST_F(FormCartouche, CouleurAutoSelonLImageSousLeCartouche) {
  Ouvrir(800, 600, "0");
  auto* automatique = C<QCheckBox>("chkCouleurAuto");
  ASSERT_TRUE(automatique->isEnabled());
  C<QRadioButton>("optTransparence2")->setChecked(true);  // "Complète"
  automatique->setChecked(true);
  Dessiner();  // the picture made by IO_CreateImage is black
  EXPECT_EQ(f->CouleurTexte(), QColor(0xF0, 0xF0, 0xF0));
  EXPECT_EQ(f->CouleurEchelle(), QColor(0xF0, 0xF0, 0xF0));
  QImage blanche(800, 600, QImage::Format_RGB32);
  blanche.fill(Qt::white);
  ASSERT_TRUE(ai.Convert_PictureToImage(blanche, s.ImageFormatee));
  Dessiner();
  EXPECT_EQ(f->CouleurTexte(), QColor(0x20, 0x20, 0x20));
  Ouvrir(800, 600, "1");
  EXPECT_FALSE(C<QCheckBox>("chkCouleurAuto")->isEnabled());
}

TEST(ImageFinale, ZoneSousLeCartoucheEtContraste) {
  ParamsImageFinale p;
  p.largeurFond = 800;
  p.hauteurFond = 600;
  p.hauteurCartouche = 40;
  p.cartoucheHB = "0";
  EXPECT_EQ(ZoneSousCartouche(p, 800, 600), QRect(0, 560, 800, 40));
  p.cartoucheHB = "1";
  EXPECT_TRUE(ZoneSousCartouche(p, 800, 600).isEmpty());
  QImage img(10, 10, QImage::Format_RGB32);
  img.fill(QColor(200, 100, 0));
  EXPECT_NEAR(LuminanceMoyenne(img, QRect(2, 2, 4, 4)), 0.299 * 200 + 0.587 * 100, 1e-9);
  EXPECT_EQ(LuminanceMoyenne(img, QRect(20, 20, 4, 4)), -1);
  EXPECT_EQ(CouleurContrastee(10), 0xF0F0F0);
  EXPECT_EQ(CouleurContrastee(250), 0x202020);
  EXPECT_EQ(CouleurContrastee(0x88), 0x202020);  // the middle goes to the dark one
}

TEST_F(FormCartouche, DateExifChoisieAuChargement) {
  s.DateImage = QStringLiteral("2008:03:02 10:00:00");
  Ouvrir(640, 480);
  EXPECT_EQ(C<QComboBox>("comboJour")->currentText(), "02");
  EXPECT_EQ(C<QComboBox>("comboMois")->currentText(), "03");
  EXPECT_EQ(C<QComboBox>("comboAnnee")->currentText(), "2008");
  EXPECT_EQ(C<QLabel>("lblDatePhoto")->text(), "(date Exif)");
}

// A year the date check accepts is in the list: the photo shows its own year.
TEST_F(FormCartouche, AnneeExifAvant1994Montree) {
  s.DateImage = QStringLiteral("1987:07:14 10:00:00");
  Ouvrir(640, 480);
  auto* annee = C<QComboBox>("comboAnnee");
  EXPECT_EQ(annee->currentText(), "1987");
  EXPECT_EQ(annee->itemText(0), "1951");
  EXPECT_EQ(annee->itemText(annee->count() - 1), QString::number(QDate::currentDate().year()));
  EXPECT_EQ(C<QLabel>("lblDatePhoto")->text(), "(date Exif)");
}

// "Champs par défaut" keeps the photo's date, EXIF or from the comment
// block, whatever the user chose in the lists meanwhile.
TEST_F(FormCartouche, ChampsParDefautGardentLaDateDeLaPhoto) {
  const std::pair<const char*, const char*> cas[] = {{"2008:03:02 10:00:00", ""},
                                                     {"2008:03:02 10:00:00", "05/06/2001"}};
  for (const auto& [exif, meta] : cas) {
    s.DateImage = QLatin1String(exif);
    s.DateObservation = QLatin1String(meta);
    Ouvrir(640, 480);
    const QString jour = C<QComboBox>("comboJour")->currentText(), mois = C<QComboBox>("comboMois")->currentText(),
                  annee = C<QComboBox>("comboAnnee")->currentText(), libelle = C<QLabel>("lblDatePhoto")->text();
    C<QComboBox>("comboJour")->setCurrentText(QStringLiteral("28"));
    C<QComboBox>("comboAnnee")->setCurrentText(QStringLiteral("2010"));
    dlg.reponses = {Reponse::Oui};
    C<QPushButton>("cmdViderChamps")->click();
    EXPECT_EQ(dlg.appels.front().titre, "Champs textes par défaut");
    EXPECT_EQ(C<QComboBox>("comboJour")->currentText(), jour) << meta;
    EXPECT_EQ(C<QComboBox>("comboMois")->currentText(), mois) << meta;
    EXPECT_EQ(C<QComboBox>("comboAnnee")->currentText(), annee) << meta;
    EXPECT_EQ(C<QLabel>("lblDatePhoto")->text(), libelle) << meta;
    EXPECT_NE(libelle, "(date du jour)");
    // The date reaches the comment block.
    C<QPushButton>("cmdSuite")->click();
    EXPECT_EQ(s.DateObservation, jour + u'/' + mois + u'/' + annee);
  }
}

// "Champs par défaut" unticks the shadow strip as a click would: the strip
// leaves the preview and the final picture, the colours come back.
TEST_F(FormCartouche, ChampsParDefautEnleventLOmbrage) {
  Ouvrir(640, 427);
  auto* ombrage = C<QCheckBox>("chkOmbrage");
  ASSERT_FALSE(ombrage->isHidden());
  ombrage->click();
  const QRgb gris = qRgb(160, 160, 160);  // the strip's first row
  ASSERT_EQ(f->ImageCartouche().pixel(300, 0), gris);
  dlg.couleurs = {0x0000FF};
  C<QPushButton>("cmdCouleurCartouche")->click();
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>("cmdViderChamps")->click();
  EXPECT_FALSE(ombrage->isChecked());
  EXPECT_EQ(f->CouleurCartouche(), QColor(Qt::white));
  EXPECT_EQ(f->ImageCartouche().pixel(300, 0), qRgb(255, 255, 255));
  C<QPushButton>("cmdSuite")->click();
  ASSERT_TRUE(s.ImageFinale);
  EXPECT_FALSE(s.MemCartouche.MemOmbrage);
  QImage finale;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, finale));
  int rangsGris = 0;
  for (int y = 0; y < finale.height(); ++y) rangsGris += finale.pixel(300, y) == gris;
  EXPECT_EQ(rangsGris, 0);
}

TEST_F(FormCartouche, EchelleManuelleTropLongueRefusee) {
  Ouvrir(640, 480);
  C<QPushButton>("cmdEtalonner")->click();
  // 640 wide, not cropped: 1 micron a pixel, a bar of 480 microns is 480 pixels.
  C<QLineEdit>("txtPix")->setText(QStringLiteral("100"));
  C<QLineEdit>("txtMic")->setText(QStringLiteral("100"));
  C<QComboBox>("ComboObjectif")->setCurrentText(QStringLiteral("10"));
  C<QLineEdit>("txtLongueur")->setText(QStringLiteral("480"));
  Dessiner();
  EXPECT_FALSE(f->CartoucheValide());
  EXPECT_EQ(dlg.Dernier().texte, "Echelle trop longue (saisir une valeur plus petite)");
  C<QLineEdit>("txtLongueur")->setText(QStringLiteral("50"));
  Dessiner();
  EXPECT_TRUE(f->CartoucheValide());
  EXPECT_FLOAT_EQ(f->EchellePixels(), 50.0f);
  EXPECT_FLOAT_EQ(s.MicronsParPixel, 1.0f);
}

// A frame hidden and a tint set by another window (the extrapolation does
// both) stay as it left them when the form is shown again after an action.
TEST_F(FormCartouche, CadreCacheEtTeinteParUneAutreFenetreRestent) {
  Ouvrir(640, 480);
  C<QPushButton>("cmdEtalonner")->click();
  auto* cadre = C<QFrame>("fraChoixTable");
  ASSERT_FALSE(cadre->isHidden());
  C<QPushButton>("cmdDebloquer")->click();
  ASSERT_TRUE(Peint(C<QLineEdit>("txtPix"), "#ffffc0"));
  cadre->hide();
  C<QLineEdit>("txtPix")->setStyleSheet(QStringLiteral("background-color: #ffc0c0;"));
  C<QLineEdit>("txtPix")->setText(QStringLiteral("100"));
  C<QLineEdit>("txtMic")->setText(QStringLiteral("100"));
  C<QPushButton>("cmdLongueurAuto")->click();
  EXPECT_EQ(C<QLineEdit>("txtLongueur")->text(), "100");
  EXPECT_TRUE(cadre->isHidden());
  EXPECT_FALSE(f->Modele().Visible(Controle::fraChoixTable));
  EXPECT_TRUE(Peint(C<QLineEdit>("txtPix"), "#ffc0c0"));
  // The model's own tint replaces it, the same as before included.
  C<QPushButton>("cmdDebloquer")->click();
  EXPECT_TRUE(Peint(C<QLineEdit>("txtPix"), "#ffffc0"));
  C<QPushButton>("cmdOuvrirFraChoixTable")->click();
  EXPECT_FALSE(cadre->isHidden());
}

// --- Correction of a table made at another definition

class ModifDefinition : public FormCartouche {
 protected:
  // A 1600 x 1200 photo at 7.5 mm, formatted to 640 x 480; the only table was
  // made at 2400 pixels wide and `focaleTable`. It is applied, unfiltered,
  // at the objective 40 after the width question.
  void Appliquer(float focaleTable) {
    EcrireTables({Table("APN-1", 2400, focaleTable)});
    Ouvrir(640, 480);
    s.LargeurOrigine = s.LargeurCadrage = 1600;
    s.HauteurOrigine = 1200;
    s.FocaleAPN = 7.5f;
    s.Modele = QStringLiteral("APN-1");
    C<QPushButton>("cmdEtalonner")->click();
    ASSERT_TRUE(C<QCheckBox>("chkAfficherTouteTable")->isChecked());
    auto* tables = C<QComboBox>("comboTables");
    ASSERT_EQ(tables->count(), 2);
    tables->setCurrentIndex(1);
    emit tables->activated(1);
    C<QComboBox>("comboListeObjectif")->setCurrentText(QStringLiteral("40"));
    dlg.reponses = {Reponse::Oui};
    C<QPushButton>("cmdAppliquerTable")->click();
    ASSERT_TRUE(f->TableAppliquee());
    ASSERT_EQ(C<QLineEdit>("txtPix")->text(), "1000");
    dlg.appels.clear();
  }
};

// "Annuler" puts the table list on its blank row as a choice of it would:
// no reference objective left from the table seen before.
TEST_F(FormCartouche, AnnulerLaTableEffaceLObjectifDeReference) {
  EcrireTables({Table("APN-1", 2400, 0)});
  Ouvrir(640, 480);
  C<QPushButton>("cmdEtalonner")->click();
  auto* tables = C<QComboBox>("comboTables");
  ASSERT_EQ(tables->count(), 2);
  tables->setCurrentIndex(1);
  emit tables->activated(1);
  ASSERT_EQ(C<QLineEdit>("txtObjRef")->text(), "(Table : obj. de réf = x40)");
  C<QPushButton>("cmdAnnulerTable")->click();
  EXPECT_EQ(tables->currentIndex(), 0);
  EXPECT_EQ(C<QLineEdit>("txtObjRef")->text(), "");
}

TEST_F(ModifDefinition, OuiCorrigeLesPixelsEtPeintEnRouge) {
  Appliquer(7.5f);
  auto* bouton = C<QPushButton>("cmdModifDefinition");
  ASSERT_FALSE(bouton->isHidden());
  dlg.reponses = {Reponse::Oui};
  bouton->click();
  ASSERT_GE(dlg.appels.size(), 1u);
  const test::Appel q = dlg.appels[0];
  EXPECT_EQ(q.genre, "Question");
  EXPECT_EQ(q.titre, " Modification de l'échelle");
  EXPECT_EQ(q.defaut, Reponse::Non);
  EXPECT_EQ(q.icone, int(Icone::Question));
  EXPECT_TRUE(
      q.texte.contains("Votre image = 1600 pix - Votre table = 2400 pix\r\n\r\nCorriger ?"));
  // Q = 2400 / 1600: 1000 pixels of the table are 666.67 of this photo.
  EXPECT_EQ(C<QLineEdit>("txtPix")->text(), "666,67");
  EXPECT_EQ(C<QLineEdit>("txtMic")->text(), "100");
  EXPECT_EQ(C<QComboBox>("ComboObjectif")->currentText(), "40");
  for (QWidget* w : {static_cast<QWidget*>(C<QLineEdit>("txtPix")),
                     static_cast<QWidget*>(C<QLineEdit>("txtMic")),
                     static_cast<QWidget*>(C<QComboBox>("ComboObjectif"))}) {
    EXPECT_TRUE(w->isEnabled());
    EXPECT_TRUE(Peint(w, "#ffc0c0")) << w->objectName().toStdString();
  }
  EXPECT_TRUE(bouton->isHidden());
  EXPECT_FALSE(f->TableAppliquee());
  // Redrawn with the corrected equivalence: 0.15 micron a pixel of the
  // photo, 0.375 of the 640-wide picture.
  EXPECT_TRUE(f->CartoucheValide());
  EXPECT_NEAR(s.MicronsParPixel, 0.375f, 1e-4);
  // The memory of the scale is emptied with the unlocked inputs.
  EXPECT_TRUE(s.MemCartouche.MemApPhoto.isEmpty());
}

TEST_F(ModifDefinition, NonAnnuleEtGardeLaTable) {
  Appliquer(7.5f);
  dlg.reponses = {Reponse::Non};
  C<QPushButton>("cmdModifDefinition")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Annulation ...");
  EXPECT_EQ(C<QLineEdit>("txtPix")->text(), "1000");
  EXPECT_FALSE(C<QLineEdit>("txtPix")->isEnabled());
  EXPECT_TRUE(f->TableAppliquee());
  EXPECT_FALSE(C<QPushButton>("cmdModifDefinition")->isHidden());
}

TEST_F(ModifDefinition, TableDUneAutreFocaleNeChangeRien) {
  Appliquer(10.0f);
  // The button is not offered for another focal length; the handler itself
  // does nothing after Yes.
  EXPECT_TRUE(C<QPushButton>("cmdModifDefinition")->isHidden());
  dlg.reponses = {Reponse::Oui};
  f->cmdModifDefinition();
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.appels[0].genre, "Question");
  EXPECT_EQ(C<QLineEdit>("txtPix")->text(), "1000");
  EXPECT_FALSE(C<QLineEdit>("txtPix")->isEnabled());
  EXPECT_TRUE(Peint(C<QLineEdit>("txtPix"), "#80ff80"));
  EXPECT_TRUE(f->TableAppliquee());
}

TEST_F(ModifDefinition, CacheParDebloquerEtSansEchelle) {
  Appliquer(7.5f);
  C<QPushButton>("cmdDebloquer")->click();
  EXPECT_TRUE(C<QPushButton>("cmdModifDefinition")->isHidden());
  Appliquer(7.5f);
  C<QPushButton>("cmdSansEtalon")->click();
  EXPECT_TRUE(C<QPushButton>("cmdModifDefinition")->isHidden());
}

// --- Memory of the form

TEST_F(FormCartouche, MemoireGardeePourLaMemeImageVidePourUneAutre) {
  Ouvrir(640, 480);
  C<QLineEdit>("txtCommentaire")->setText(QStringLiteral("Navicula"));
  C<QComboBox>("comboProvenance")->setCurrentText(QStringLiteral("Etang"));
  C<QCheckBox>("chkTraitNum2")->setChecked(true);
  C<QPushButton>("cmdEtalonner")->click();
  C<QLineEdit>("txtPix")->setText(QStringLiteral("250"));
  C<QLineEdit>("txtMic")->setText(QStringLiteral("100"));
  C<QComboBox>("ComboObjectif")->setCurrentText(QStringLiteral("10"));
  C<QLineEdit>("txtLongueur")->setText(QStringLiteral("30"));
  C<QLineEdit>("txtMicroMan")->setText(QStringLiteral("Micro-B"));
  dlg.couleurs = {0x0000FF};
  C<QPushButton>("cmdCouleurTexte")->click();
  Dessiner();
  C<QPushButton>("cmdSuite")->click();
  ASSERT_TRUE(s.ImageFinale);
  EXPECT_EQ(s.MemCartouche.MemTitre, "Navicula");
  EXPECT_EQ(s.MemCartouche.MemPix, "250");
  EXPECT_EQ(s.MemCartouche.MemLongueur, 30);
  EXPECT_TRUE(s.MemCartouche.MemEchelleVisible);
  EXPECT_EQ(s.MicroscopeMeta, "Micro-B");

  Rouvrir();
  EXPECT_EQ(C<QLineEdit>("txtCommentaire")->text(), "Navicula");
  EXPECT_EQ(C<QComboBox>("comboProvenance")->currentText(), "Etang");
  EXPECT_TRUE(C<QCheckBox>("chkTraitNum2")->isChecked());
  EXPECT_FALSE(C<QFrame>("fraEchelle")->isHidden());
  EXPECT_TRUE(C<QFrame>("fraMicroPhoto")->isHidden());
  EXPECT_EQ(C<QLineEdit>("txtPix")->text(), "250");
  EXPECT_EQ(C<QLineEdit>("txtLongueur")->text(), "30");
  EXPECT_EQ(C<QLineEdit>("txtMicroMan")->text(), "Micro-B");
  EXPECT_EQ(f->CouleurTexte(), QColor(255, 0, 0));

  // A new picture: the form starts from its defaults.
  ASSERT_TRUE(ai.IO_CreateImage(s.ImageCourante, 800, 600, 24));
  RemplirSession(s, ai, QStringLiteral("autre.jpg"));
  Rouvrir();
  EXPECT_EQ(C<QLineEdit>("txtCommentaire")->text(), "Genre, espèce, divers");
  EXPECT_TRUE(C<QFrame>("fraEchelle")->isHidden());
  EXPECT_FALSE(C<QCheckBox>("chkTraitNum2")->isChecked());
  EXPECT_TRUE(C<QLineEdit>("txtPix")->text().isEmpty());
  EXPECT_TRUE(C<QLineEdit>("txtMicroMan")->text().isEmpty());
  EXPECT_EQ(f->CouleurTexte(), QColor(0, 0, 0));
}

// --- Fonts, pipette, keywords

TEST_F(FormCartouche, PolicesEcritesAussitotDansUserConfig) {
  Ouvrir(640, 480);
  const QString ini = CheminUserConfig();
  C<QPushButton>("cmdPoliceTitre")->click();  // cancelled: nothing written
  EXPECT_EQ(LireIni("FormatImage", "FontName1", ini, "absent"), "absent");

  QFont titre(QStringLiteral("Liberation Serif"), 14);
  titre.setItalic(true);
  dlg.polices = {titre};
  C<QPushButton>("cmdPoliceTitre")->click();
  EXPECT_EQ(C<QLineEdit>("txtPoliceTitre")->text(), "Liberation Serif-14");
  EXPECT_EQ(f->PoliceTitre().family(), "Liberation Serif");
  EXPECT_EQ(LireIni("FormatImage", "FontName1", ini, ""), "Liberation Serif");
  EXPECT_EQ(LireIni("FormatImage", "FontSize1", ini, ""), "14");
  EXPECT_EQ(LireIni("FormatImage", "FontBold1", ini, ""), "FAUX");
  EXPECT_EQ(LireIni("FormatImage", "FontItalic1", ini, ""), "VRAI");

  QFont texte(QStringLiteral("Liberation Sans"));
  texte.setPointSizeF(9.5);
  texte.setBold(true);
  dlg.polices = {texte};
  C<QPushButton>("cmdPoliceSousTitre")->click();
  EXPECT_EQ(LireIni("FormatImage", "FontName2", ini, ""), "Liberation Sans");
  EXPECT_EQ(LireIni("FormatImage", "FontSize2", ini, ""), "9");
  EXPECT_EQ(LireIni("FormatImage", "FontBold2", ini, ""), "VRAI");
  EXPECT_EQ(LireIni("FormatImage", "FontName1", ini, ""), "Liberation Serif");
  // The next visit starts from the chosen fonts.
  Rouvrir();
  EXPECT_EQ(C<QLineEdit>("txtPoliceSousTitre")->text(), "Liberation Sans-9");
}

TEST_F(FormCartouche, PipetteDonneLaCouleurDuFond) {
  QImage vert(64, 48, QImage::Format_RGB32);
  vert.fill(QColor(10, 200, 30));
  ASSERT_TRUE(ai.Convert_PictureToImage(vert, s.ImageCourante));
  Ouvrir(640, 480);
  C<QPushButton>("cmdPipette")->click();
  auto* pipette = f->findChild<frmPipette*>(QStringLiteral("frmPipette"));
  ASSERT_NE(pipette, nullptr);
  ASSERT_TRUE(pipette->ChoisirPixel(5, 5));
  pipette->cmdOK();
  EXPECT_EQ(f->CouleurFond(), QColor(10, 200, 30));
  EXPECT_TRUE(Peint(C<QLabel>("shpFond"), "#0ac81e"));
  EXPECT_EQ(f->CouleurTexte(), QColor(0, 0, 0));
}

TEST_F(FormCartouche, MotsClefsMontrentLIndicateur) {
  Ouvrir(640, 480);
  EXPECT_TRUE(C<QLabel>("imgMotClef")->isHidden());
  C<QPushButton>("cmdMotClef")->click();
  auto* dialogue = f->findChild<QWidget*>(QStringLiteral("frmMotClef"));
  ASSERT_NE(dialogue, nullptr);
  EXPECT_TRUE(dialogue->isVisible());
  dialogue->findChild<QPlainTextEdit*>(QStringLiteral("txtMotClef"))
      ->setPlainText(QStringLiteral("diatomée"));
  dialogue->findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
  EXPECT_EQ(s.MotClef, "diatomée");
  EXPECT_FALSE(C<QLabel>("imgMotClef")->isHidden());
}

// --- Lists of the tables, choice lists, numeric keys, frames

TEST_F(FormCartouche, ListeDesAppareilsDesTables) {
  Ouvrir(640, 480);
  auto* boite = C<QLineEdit>("txtApPhotoMan");
  auto* liste = C<QComboBox>("comboModele");
  C<QPushButton>("cmdListeApPhoto")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Aucune table en mémoire ...");
  EXPECT_FALSE(boite->isHidden());
  EXPECT_TRUE(liste->isHidden());

  EcrireTables(
      {Table("APN-2", 2400, 7.5f), Table("APN-1", 1600, 7.5f), Table("APN-2", 1600, 5.0f)});
  C<QPushButton>("cmdListeApPhoto")->click();
  EXPECT_TRUE(boite->isHidden());
  EXPECT_FALSE(liste->isHidden());
  ASSERT_EQ(liste->count(), 4);
  EXPECT_EQ(liste->itemText(0), "*Choisir / Annuler*");
  EXPECT_EQ(liste->itemText(3), "APN-2");
  // "Choisir / Annuler" leaves the box as it was.
  boite->setText(QStringLiteral("avant"));
  emit liste->activated(0);
  EXPECT_EQ(boite->text(), "avant");
  EXPECT_FALSE(boite->isHidden());
  EXPECT_TRUE(liste->isHidden());

  C<QPushButton>("cmdListeApPhoto")->click();
  liste->setCurrentIndex(2);
  emit liste->activated(2);
  EXPECT_EQ(boite->text(), "APN-1");
  EXPECT_TRUE(Peint(boite, "#80ff80"));
  EXPECT_TRUE(liste->isHidden());

  auto* micro = C<QComboBox>("comboMicro");
  C<QPushButton>("cmdListeMicro")->click();
  ASSERT_EQ(micro->count(), 3);  // the marker, the blank entry, one microscope
  micro->setCurrentIndex(2);
  emit micro->activated(2);
  EXPECT_EQ(C<QLineEdit>("txtMicroMan")->text(), "Micro-A");

  // Fields off: their list buttons with them.
  C<QCheckBox>("chkChoixChamp5")->click();
  EXPECT_FALSE(C<QPushButton>("cmdListeApPhoto")->isEnabled());
  C<QCheckBox>("chkChoixChamp5")->click();
  EXPECT_TRUE(C<QPushButton>("cmdListeApPhoto")->isEnabled());
}

TEST_F(FormCartouche, ListesRemisesParDefaut) {
  Ouvrir(640, 480);
  ASSERT_TRUE(AjouterLstItem(CheminListe(ListeChoix::Provenance), QStringLiteral("Mare du bois")));
  ASSERT_TRUE(AjouterLstItem(CheminListe(ListeChoix::Coloration), QStringLiteral("Fuchsine")));
  C<QPushButton>("cmdOuvrirFraListe")->click();
  EXPECT_FALSE(C<QFrame>("fraListe")->isHidden());
  C<QCheckBox>("chkLstDefaut0")->setChecked(true);
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>("cmdListeDefaut")->click();
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.appels[0].titre, "Listes par défaut");
  QStringList items;
  ASSERT_TRUE(LireListe(CheminListe(ListeChoix::Provenance), items));
  EXPECT_FALSE(items.contains("Mare du bois"));
  EXPECT_TRUE(items.contains("Tourbière"));
  auto* provenance = C<QComboBox>("comboProvenance");
  EXPECT_EQ(provenance->findText(QStringLiteral("Mare du bois")), -1);
  EXPECT_NE(provenance->findText(QStringLiteral("Tourbière")), -1);
  // The unticked list keeps its entry.
  ASSERT_TRUE(LireListe(CheminListe(ListeChoix::Coloration), items));
  EXPECT_TRUE(items.contains("Fuchsine"));
  EXPECT_TRUE(C<QFrame>("fraListe")->isHidden());
  EXPECT_FALSE(C<QCheckBox>("chkLstDefaut0")->isChecked());
}

TEST_F(FormCartouche, ToucheDecimaleSelonLaLocale) {
  Ouvrir(640, 480);
  C<QPushButton>("cmdEtalonner")->click();
  Taper(C<QLineEdit>("txtPix"), QStringLiteral("12.5"));
  EXPECT_EQ(C<QLineEdit>("txtPix")->text(), "12,5");
  Taper(C<QComboBox>("ComboObjectif")->lineEdit(), QStringLiteral("0.5"));
  EXPECT_EQ(C<QComboBox>("ComboObjectif")->currentText(), "0,5");
  // Other keys pass untouched, letters included.
  Taper(C<QLineEdit>("txtMic"), QStringLiteral("1a,2"));
  EXPECT_EQ(C<QLineEdit>("txtMic")->text(), "1a,2");
  // Not filtered: the title.
  C<QLineEdit>("txtCommentaire")->clear();
  Taper(C<QLineEdit>("txtCommentaire"), QStringLiteral("a.b"));
  EXPECT_EQ(C<QLineEdit>("txtCommentaire")->text(), "a.b");

  s.SeparateurDecimal = QStringLiteral(".");
  C<QLineEdit>("txtLongueur")->clear();
  Taper(C<QLineEdit>("txtLongueur"), QStringLiteral("2,5"));
  EXPECT_EQ(C<QLineEdit>("txtLongueur")->text(), "2.5");
}

TEST_F(FormCartouche, CadresReduitsRedessinentEtSeRouvrent) {
  Ouvrir(640, 480);
  auto* polices = C<QFrame>("fraPolices");
  auto* champs = C<QFrame>("fraChoixChamp");
  ASSERT_FALSE(polices->isHidden());
  ASSERT_FALSE(champs->isHidden());
  C<QPushButton>("cmdReduirefraChoixChamp")->click();
  EXPECT_TRUE(champs->isHidden());
  EXPECT_FALSE(f->ImageCartouche().isNull());
  EXPECT_EQ(C<QPushButton>("cmdDessiner")->text(), "(re)Dessiner le cartouche");
  C<QPushButton>("cmdOuvrirFraPolice")->click();
  C<QPushButton>("cmdReduireFraPolice")->click();
  EXPECT_TRUE(polices->isHidden());
  C<QPushButton>("cmdOuvrirFraPolice")->click();
  EXPECT_FALSE(polices->isHidden());
  C<QPushButton>("cmdOuvrirFraChoixChamp")->click();
  EXPECT_FALSE(champs->isHidden());

  // The 2-line cartouche has no choice of fields.
  Ouvrir(640, 480, QStringLiteral("0"));
  EXPECT_TRUE(C<QFrame>("fraChoixChamp")->isHidden());
  EXPECT_TRUE(C<QPushButton>("cmdOuvrirFraChoixChamp")->isHidden());
}

}  // namespace
}  // namespace tg
