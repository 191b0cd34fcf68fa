// The crop: the frame's rules apart, the window driven by its controls, and
// the scale that follows the crop through the windows and the headless tool.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include "adjust/Recadrage.h"
#include "adjust/frmRecadrage.h"
#include "core/Formats.h"
#include "imaging/cAdvancedImagery.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

Cadre Rectangle(int g, int h, int l, int ht) {
  Cadre c;
  c.CadreG = g, c.CadreHaut = h, c.CadreL = l, c.CadreH = ht;
  c.CadreD = g + l, c.CadreB = h + ht;
  return c;
}

TEST(Recadrage, RefusDeCmdOK) {
  // The right edge on the picture's last column passes, one more is refused.
  EXPECT_TRUE(RefusRecadrage(Rectangle(200, 0, 1000, 600), 1200, 900, false, 800, 600).isEmpty());
  EXPECT_EQ(RefusRecadrage(Rectangle(201, 0, 1000, 600), 1200, 900, false, 800, 600),
            "Cadre plus large que l'image ou débordant !");
  EXPECT_FALSE(RefusRecadrage(Rectangle(0, 301, 1000, 600), 1200, 900, false, 800, 600).isEmpty());
  // 750 wide: 749 is refused unless freed.
  EXPECT_EQ(RefusRecadrage(Rectangle(0, 0, 749, 560), 1200, 900, false, 750, 562),
            "Cadre plus petit que 750 pix. de largeur");
  EXPECT_TRUE(RefusRecadrage(Rectangle(0, 0, 750, 560), 1200, 900, false, 750, 562).isEmpty());
  EXPECT_TRUE(RefusRecadrage(Rectangle(0, 0, 749, 560), 1200, 900, true, 750, 562).isEmpty());
  EXPECT_EQ(RefusRecadrage(Rectangle(0, 0, 799, 560), 1200, 900, false, 800, 600),
            "Cadre plus petit que le format de sortie choisit !\n800 x 600");
  EXPECT_EQ(RefusTailleFixe(1000, 800, 900, 600), "Dimensions du cadre supérieurs à l'image !\nVeuillez corriger : Max = 900 x 600");
  EXPECT_TRUE(RefusTailleFixe(900, 600, 900, 600).isEmpty());
}

TEST(Recadrage, RatiosEtArithmetique) {
  EXPECT_FLOAT_EQ(RatioOption(1, 1.3333f, "", 2), 1.504f);
  EXPECT_FLOAT_EQ(RatioOption(0, 1.33333f, "", 2), 1.333f);
  EXPECT_FLOAT_EQ(RatioOption(4, 1.333f, "1.5", 2), 1.5f);
  EXPECT_FLOAT_EQ(RatioOption(4, 1.333f, "1,5", 2), 1.5f);
  EXPECT_FLOAT_EQ(RatioOption(4, 1.333f, "", 2), 2.0f);
  EXPECT_FLOAT_EQ(RatioOption(4, 1.333f, "0", 2), 2.0f);
  EXPECT_EQ(PositionSlider(800, 2272), 3521);
  Cadre c;
  c.largeur = 225.35f, c.hauteur = 169.0f, c.posG = 10.6f, c.posH = 0;
  MajCadre(c, 2272, 640);  // 3.55 picture pixels a pixel of the copy
  EXPECT_EQ(c.CadreL, 799);  // truncated: 225.35 x 3.55 = 799.99
  EXPECT_EQ(c.CadreG, 38);   // rounded: 37.63
  EXPECT_EQ(c.CadreD, 837);
  EXPECT_EQ(TexteRatio(1600, 800, false, ","), "R=1: 2");
  EXPECT_EQ(TexteRatio(1000, 800, false, ","), "R=1: 1,25");
  EXPECT_TRUE(TexteRatio(1000, 800, true, ",").isEmpty());
}

QImage Photo(int l, int h) {
  QImage img(l, h, QImage::Format_RGB32);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < l; ++x) img.setPixel(x, y, qRgb(x % 256, y % 256, 100));
  return img;
}

class Recadrer : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  cAdvancedImagery ai;
  SessionRecord s;
  QPointer<frmRecadrage> w;

  ~Recadrer() override {
    if (w) delete w.data();
  }
  void Ouvrir(int l, int h, bool formatee = false) {
    ASSERT_TRUE(ai.Convert_PictureToImage(Photo(l, h), s.ImageCourante));
    s.Largeur = l;
    s.Hauteur = h;
    s.ImageDejaFormatee = formatee;
    s.SeparateurDecimal = ",";
    s.CartoucheHB = "0";
    w = new frmRecadrage(s, ai, nullptr);
    w->show();
  }
  template <typename T = QWidget>
  T* C(const QString& nom) const {
    T* c = w->findChild<T*>(nom);
    EXPECT_NE(c, nullptr) << nom.toStdString();
    return c;
  }
  void Souris(QEvent::Type type, QPointF p) {
    QWidget* img = C("Picture1");
    QMouseEvent e(type, p, img->mapToGlobal(p), Qt::LeftButton,
                  type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(img, &e);
  }
};

TEST_F(Recadrer, OuvertureAuFormatDeSortie) {
  Ouvrir(2000, 1500);
  // 2000 wide shown 640 wide: the frame is the 800 x 600 format.
  EXPECT_EQ(C("Picture1")->width(), 640);
  EXPECT_NEAR(w->Cadre_().CadreL, 800, 1);
  EXPECT_NEAR(w->Cadre_().CadreH, 600, 1);
  EXPECT_EQ(C<QLabel>("lblRatio")->text(), "R=1: 1");
  EXPECT_TRUE(w->ShpCartoucheVisible());
  EXPECT_TRUE(w->windowTitle().endsWith(" : Recadrer, ratio = 1,333 x 1"));
  // The slider cannot make it narrower than the format until freed.
  C<QSlider>("Slider1")->setValue(1000);
  EXPECT_EQ(C<QSlider>("Slider1")->value(), 4000);
  C<QCheckBox>("chkDebriderCadrage")->setChecked(true);
  C<QSlider>("Slider1")->setValue(1000);
  EXPECT_EQ(w->Cadre_().CadreL, 200);
}

TEST_F(Recadrer, DeplacementEtCmdOK) {
  Ouvrir(2000, 1500);
  // The frame's centre follows the mouse.
  Souris(QEvent::MouseButtonPress, {320, 240});
  Souris(QEvent::MouseMove, {330, 250});
  Souris(QEvent::MouseButtonRelease, {330, 250});
  const Cadre c = w->Cadre_();
  EXPECT_NEAR(c.CadreG + c.CadreL / 2.0, 330 * 3.125, 3);
  // Dragged past the right edge: refused, the window stays.
  Souris(QEvent::MouseButtonPress, {630, 240});
  Souris(QEvent::MouseButtonRelease, {630, 240});
  C<QPushButton>("cmdOK")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Cadre plus large que l'image ou débordant !");
  EXPECT_TRUE(w->isVisible());
  EXPECT_EQ(s.Largeur, 2000);
  Souris(QEvent::MouseButtonPress, {330, 250});
  Souris(QEvent::MouseButtonRelease, {330, 250});
  const Cadre d = w->Cadre_();
  C<QPushButton>("cmdOK")->click();
  EXPECT_EQ(s.Largeur, d.CadreL);
  EXPECT_EQ(s.Hauteur, d.CadreH);
  EXPECT_EQ(s.LargeurRecadrage, d.CadreL);
  EXPECT_EQ(s.HauteurRecadrage, d.CadreH);
  EXPECT_FLOAT_EQ(s.RatioRecadrage, float(d.CadreL) / float(d.CadreH));
  EXPECT_EQ(s.LargeurMesure, 0);
  QImage coupe;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, coupe));
  EXPECT_EQ(coupe.pixel(0, 0), Photo(2000, 1500).pixel(d.CadreG, d.CadreHaut));
}

TEST_F(Recadrer, RatiosEtTailleFixe) {
  Ouvrir(900, 600);
  C<QPushButton>("cmdRatio")->click();
  C<QRadioButton>("optRatioRecadrage1")->click();
  C<QPushButton>("cmdValiderRatio")->click();
  EXPECT_FLOAT_EQ(w->RatioCadre(), 1.504f);
  EXPECT_FALSE(w->ShpCartoucheVisible());
  EXPECT_FALSE(C("fraRatioRecadrage")->isVisible());
  C<QPushButton>("cmdRatio")->click();
  C<QLineEdit>("txtValRatio")->setText("1.5");
  C<QRadioButton>("optRatioRecadrage4")->click();
  C<QPushButton>("cmdValiderRatio")->click();
  EXPECT_FLOAT_EQ(w->RatioCadre(), 1.5f);
  // A fixed size larger than the picture: the message, the frame kept.
  C<QPushButton>("cmdRatio")->click();
  C<QCheckBox>("chkTaille")->setChecked(true);
  EXPECT_TRUE(C<QCheckBox>("chkDebriderCadrage")->isChecked());
  C<QLineEdit>("txtLargeurPix")->setText("1000");
  C<QLineEdit>("txtHauteurPix")->setText("800");
  const Cadre avant = w->Cadre_();
  C<QPushButton>("cmdValiderRatio")->click();
  EXPECT_EQ(dlg.Dernier().titre, "Erreur option taille fixe");
  EXPECT_EQ(dlg.Dernier().texte, "Dimensions du cadre supérieurs à l'image !\nVeuillez corriger : Max = 900 x 600");
  EXPECT_EQ(w->Cadre_().CadreL, avant.CadreL);
  C<QLineEdit>("txtLargeurPix")->setText("450");
  C<QLineEdit>("txtHauteurPix")->setText("300");
  C<QPushButton>("cmdValiderRatio")->click();
  EXPECT_NEAR(w->Cadre_().CadreL, 450, 1);
  EXPECT_NEAR(w->Cadre_().CadreH, 300, 1);
  EXPECT_EQ(C<QLabel>("lblRatioFixe")->text(), "1: 1,5");
  // Smaller than the format, but freed by the fixed size: accepted.
  C<QPushButton>("cmdOK")->click();
  EXPECT_NEAR(s.Largeur, 450, 1);
}

TEST_F(Recadrer, DebriderAuFormat750Avertit) {
  s.ApnLarg = 750;
  s.ApnHaut = 562;
  s.ApnLargCourant = 750;
  Ouvrir(1500, 1124);
  C<QCheckBox>("chkDebriderCadrage")->setChecked(true);
  EXPECT_EQ(dlg.Dernier().titre, "   Curseur débridé");
  EXPECT_EQ(dlg.Dernier().texte, "Attention, le format 750 x 562 ne sera plus contrôlé !");
  // Unticked: the frame back to the format, at the top left.
  C<QSlider>("Slider1")->setValue(2000);
  C<QCheckBox>("chkDebriderCadrage")->setChecked(false);
  EXPECT_NEAR(w->Cadre_().CadreL, 750, 2);
  EXPECT_EQ(w->Cadre_().CadreG, 0);
  EXPECT_FALSE(C<QCheckBox>("chkBloquerDeplacement")->isChecked());
}

TEST_F(Recadrer, ImageDejaFormateeBloqueeEnHautAGauche) {
  Ouvrir(1200, 900, true);
  EXPECT_TRUE(C<QCheckBox>("chkBloquerDeplacement")->isChecked());
  EXPECT_TRUE(C<QLabel>("lblRatio")->text().isEmpty());
  Souris(QEvent::MouseButtonPress, {300, 200});
  Souris(QEvent::MouseButtonRelease, {300, 200});
  EXPECT_EQ(w->Cadre_().CadreG, 0);
  EXPECT_EQ(w->Cadre_().CadreHaut, 0);
  // The empty rotation button and the option that is not there.
  C<QLineEdit>("txtRotation")->setText("90");
  C<QPushButton>("cmdRotation")->click();
  EXPECT_EQ(s.Largeur, 1200);
  C<QPushButton>("cmdFausseOptionRecadrage")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Non disponnible en mode Doraisidren ...");
}

}  // namespace
}  // namespace tg
