// The cartouche form driven through its named controls and the dialogue double.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "cartouche/frmAjouterCartouche.h"
#include "imaging/cAdvancedImagery.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

class FormCartouche : public testing::Test {
 protected:
  test::DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  std::unique_ptr<frmAjouterCartouche> f;

  // A formatted picture of largeur x hauteur in a 800 x 600 format.
  void Ouvrir(int largeur, int hauteur, const QString& hb = QStringLiteral("1")) {
    s.CartoucheHB = hb;
    s.LargeurOrigine = s.Largeur = largeur;
    s.HauteurOrigine = s.Hauteur = hauteur;
    s.LargeurFormatee = largeur;
    s.HauteurFormatee = hauteur;
    s.CadrageFormate = float(largeur) / float(hauteur);
    ASSERT_TRUE(ai.IO_CreateImage(s.ImageFormatee, largeur, hauteur, 24));
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

TEST_F(FormCartouche, DateExifChoisieAuChargement) {
  s.DateImage = QStringLiteral("2008:03:02 10:00:00");
  Ouvrir(640, 480);
  EXPECT_EQ(C<QComboBox>("comboJour")->currentText(), "02");
  EXPECT_EQ(C<QComboBox>("comboMois")->currentText(), "03");
  EXPECT_EQ(C<QComboBox>("comboAnnee")->currentText(), "2008");
  EXPECT_EQ(C<QLabel>("lblDatePhoto")->text(), "(date Exif)");
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

}  // namespace
}  // namespace tg
