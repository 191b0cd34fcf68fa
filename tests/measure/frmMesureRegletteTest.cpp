// The calibration window's automatic calibration driven as a user would: the
// division typed or chosen, a rectangle drawn, the button, the graduations
// drawn, accepting, and the table made by the creation dialog.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>
#include <cmath>

#include "imaging/cAdvancedImagery.h"
#include "measure/TableMesure.h"
#include "measure/frmMesure.h"
#include "tests/measure/ReglettesDessinees.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DessinReglette;
using test::DialoguesScriptes;

void Souris(QWidget* w, QEvent::Type type, QPointF p) {
  const Qt::MouseButtons boutons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
  QMouseEvent e(type, p, w->mapToGlobal(p), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, boutons,
                Qt::NoModifier);
  QApplication::sendEvent(w, &e);
}

// "N divisions mesurées\n400,12 pixels pour 100 µm (± ...)": the 400,12.
double PixelsDuTexte(const QString& texte) {
  return texte.section(u'\n', 1).section(u' ', 0, 0).replace(u',', u'.').toDouble();
}

QWidget* Fenetre(const char* nom) {
  for (QWidget* t : QApplication::topLevelWidgets())
    if (t->objectName() == QLatin1String(nom) && t->isVisible()) return t;
  return nullptr;
}

class EtalonnageAuto : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  cAdvancedImagery ai;
  SessionRecord s;
  QPointer<frmMesure> w;

  ~EtalonnageAuto() override {
    if (w) delete w.data();
    for (QWidget* t : QApplication::topLevelWidgets())
      if (t->objectName() == u"frmGenMesures") delete t;
  }

  void Ouvrir(const QImage& img, int16_t mode = 0) {
    ASSERT_TRUE(ai.Convert_PictureToImage(img.convertToFormat(QImage::Format_RGB32), s.ImageCourante));
    s.Largeur = img.width();
    s.Hauteur = img.height();
    s.Modele = QStringLiteral("APN-1");
    s.SeparateurDecimal = QStringLiteral(",");
    s.ModeMesure = mode;
    w = new frmMesure(s, ai);
    w->show();
  }
  template <typename T = QWidget>
  T* C(const QString& nom) const {
    T* c = w->findChild<T*>(nom);
    EXPECT_NE(c, nullptr) << nom.toStdString();
    return c;
  }
  QWidget* Image() const { return C("picImage"); }
  double Ratio() const { return double(s.Largeur) / Image()->width(); }
  void Division(const QString& texte) { C<QComboBox>("combDivision")->setCurrentText(texte); }
  void Lancer() { C<QPushButton>("cmdEtalonnageAuto")->click(); }
};

// A ruling of 40 pixels on a photo shown 2.5 times smaller: the button
// finds it, draws its graduations where they are, and accepted, 1000 µm
// reach the creation dialog with their 4000 pixels.
TEST_F(EtalonnageAuto, TrouveAccepteEtCreeLaTable) {
  DessinReglette d;
  d.largeur = 2000;
  d.hauteur = 1500;
  d.periode = 40;
  d.angle = 3;
  d.graduations = 30;
  Ouvrir(test::Dessiner(d));
  ASSERT_GT(Ratio(), 2);
  EXPECT_TRUE(C("cmdEtalonnageAuto")->isVisibleTo(w));
  EXPECT_EQ(C<QComboBox>("combDivision")->currentText(), QStringLiteral("10"));
  EXPECT_FALSE(C("picReglette")->isVisibleTo(w));

  Lancer();
  ASSERT_TRUE(w->RegletteTrouvee()) << dlg.Dernier().texte.toStdString();
  EXPECT_TRUE(C("picReglette")->isVisibleTo(w));
  const Reglette& r = *w->RegletteTrouvee();
  EXPECT_NEAR(r.periode, 40, 0.02);
  const QString texte = C<QLabel>("lblReglette")->text();
  EXPECT_TRUE(texte.startsWith(QStringLiteral("%1 divisions mesurées\n").arg(r.divisions))) << texte.toStdString();
  EXPECT_TRUE(texte.contains(QStringLiteral(" pixels pour 100 µm (± "))) << texte.toStdString();
  EXPECT_NEAR(PixelsDuTexte(texte), 400, 0.4) << texte.toStdString();

  // The graduations drawn over the picture: a graduation's middle, on the
  // display, is a dark pixel of the picture shown.
  const QImage vue = Image()->grab().toImage();
  ASSERT_GE(r.graduations.size(), 20u);
  int tracees = 0, sombres = 0;
  const QImage photo = test::Dessiner(d).scaled(vue.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  for (const Graduation& g : r.graduations) {
    const int x = int(std::lround((g.x1 + g.x2) / 2 / Ratio())), y = int(std::lround((g.y1 + g.y2) / 2 / Ratio()));
    bool trace = false;
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx) {
        const QRgb c = vue.pixel(x + dx, y + dy);
        trace = trace || (qBlue(c) > 200 && qGreen(c) > 150 && qRed(c) < 100);  // the overlay's colour
      }
    tracees += trace;
    // Under it, on the picture, a graduation: darker than the slide.
    sombres += qGray(photo.pixel(x, y)) < 180;
  }
  EXPECT_GE(tracees, int(r.graduations.size()) - 1);
  EXPECT_GE(sombres, int(r.graduations.size()) - 1);

  // Another division changes the text, not the ruling.
  Division(QStringLiteral("5"));
  EXPECT_NEAR(PixelsDuTexte(C<QLabel>("lblReglette")->text()), 800, 0.8);
  EXPECT_EQ(w->RegletteTrouvee()->periode, r.periode);
  Division(QStringLiteral("10"));

  C<QPushButton>("cmdAccepterReglette")->click();
  EXPECT_EQ(C<QLineEdit>("txtMesurePixel")->text(), QStringLiteral("4000"));
  EXPECT_TRUE(C("picCreerTable")->isVisibleTo(w));
  EXPECT_TRUE(w->findChild<QTimer*>("TimerAjouterTable")->isActive());

  C<QPushButton>("cmdCopierInfos")->click();
  QWidget* gen = Fenetre("frmGenMesures");
  ASSERT_NE(gen, nullptr);
  auto champ = [gen](int i) { return gen->findChild<QLineEdit*>(QStringLiteral("txtFields%1").arg(i)); };
  EXPECT_EQ(champ(1)->text(), QStringLiteral("2000"));
  EXPECT_EQ(champ(5)->text(), QStringLiteral("4000"));
  EXPECT_EQ(champ(6)->text(), QStringLiteral("1000"));
  champ(2)->setText(QStringLiteral("Micro-A"));
  champ(3)->setText(QStringLiteral("Trino"));
  champ(4)->setText(QStringLiteral("40"));
  gen->findChild<QPushButton*>(QStringLiteral("cmdCreFichier"))->click();
  FichierMesure f;
  EnrMesure e;
  ASSERT_TRUE(f.Ouvrir());
  ASSERT_TRUE(f.LireEnr(2, e));
  EXPECT_EQ(e.Modele, QStringLiteral("APN-1"));
  EXPECT_EQ(e.LargPix, 2000);
  EXPECT_EQ(e.Pix, 4000);
  EXPECT_EQ(e.Mic, 1000);
}

// Two rulings side by side: the rectangle drawn picks the right one.
TEST_F(EtalonnageAuto, RectangleAutourDeLaReglette) {
  DessinReglette gauche, droite;
  gauche.largeur = droite.largeur = 1600;
  gauche.hauteur = droite.hauteur = 800;
  gauche.periode = 12;
  droite.periode = 30;
  gauche.cx = 400;
  droite.cx = 1200;
  gauche.graduations = 40;
  droite.graduations = 18;
  QImage image = test::Dessiner(gauche);
  const QImage autre = test::Dessiner(droite);
  for (int y = 0; y < image.height(); ++y)
    std::copy(autre.constScanLine(y) + 800, autre.constScanLine(y) + 1600, image.scanLine(y) + 800);
  Ouvrir(image);
  C<QCheckBox>("chkZoneReglette")->click();
  const double r = Ratio();
  Souris(Image(), QEvent::MouseButtonPress, QPointF(820 / r, 150 / r));
  Souris(Image(), QEvent::MouseMove, QPointF(1200 / r, 400 / r));
  Souris(Image(), QEvent::MouseMove, QPointF(1580 / r, 700 / r));
  Souris(Image(), QEvent::MouseButtonRelease, QPointF(1580 / r, 700 / r));
  EXPECT_FALSE(w->RectangleReglette().isEmpty());
  // Drawing the rectangle drew no line.
  EXPECT_TRUE(C<QLineEdit>("txtMesurePixel")->text().isEmpty());
  Lancer();
  ASSERT_TRUE(w->RegletteTrouvee());
  EXPECT_NEAR(w->RegletteTrouvee()->periode, 30, 0.015);
  for (const Graduation& g : w->RegletteTrouvee()->graduations) EXPECT_GT(std::min(g.x1, g.x2), 800);

  // Without the rectangle, the whole picture.
  C<QCheckBox>("chkZoneReglette")->click();
  EXPECT_TRUE(w->RectangleReglette().isEmpty());
}

// A wrong division, a photo without a ruling: the French message, no ruling
// drawn, the measure as it was.
TEST_F(EtalonnageAuto, RefusSansRienChanger) {
  Ouvrir(test::Leurre(5, 1200, 900));
  Division(QStringLiteral("0,0"));
  Lancer();
  EXPECT_EQ(dlg.Dernier().titre, QStringLiteral("Étalonnage automatique"));
  EXPECT_EQ(dlg.Dernier().texte, TexteDivisionRefusee);
  Division(QStringLiteral("2,5"));
  Lancer();
  EXPECT_TRUE(dlg.Dernier().texte.startsWith(QStringLiteral("Aucune réglette n'a été trouvée sur cette image")));
  EXPECT_FALSE(w->RegletteTrouvee());
  EXPECT_FALSE(C("picReglette")->isVisibleTo(w));
  EXPECT_TRUE(C<QLineEdit>("txtMesurePixel")->text().isEmpty());
}

// Back to two picked points: the ruling forgotten, and a table made from a
// line gets no microns from it.
TEST_F(EtalonnageAuto, RetourAuxDeuxPoints) {
  DessinReglette d;
  d.largeur = 1600;
  d.hauteur = 1200;
  d.periode = 25;
  Ouvrir(test::Dessiner(d));
  Lancer();
  ASSERT_TRUE(w->RegletteTrouvee());
  C<QPushButton>("cmdAccepterReglette")->click();
  ASSERT_FALSE(C<QLineEdit>("txtMesurePixel")->text().isEmpty());
  // A line drawn by hand replaces the accepted measure.
  Souris(Image(), QEvent::MouseButtonPress, QPointF(100, 100));
  Souris(Image(), QEvent::MouseMove, QPointF(200, 100));
  Souris(Image(), QEvent::MouseButtonRelease, QPointF(200, 100));
  EXPECT_FALSE(w->RegletteTrouvee());
  C<QPushButton>("cmdCopierInfos")->click();
  QWidget* gen = Fenetre("frmGenMesures");
  ASSERT_NE(gen, nullptr);
  EXPECT_TRUE(gen->findChild<QLineEdit*>(QStringLiteral("txtFields6"))->text().isEmpty());
  EXPECT_EQ(gen->findChild<QLineEdit*>(QStringLiteral("txtFields5"))->text(),
            QString::number(std::lround(100 * Ratio())));

  Lancer();
  ASSERT_TRUE(w->RegletteTrouvee());
  C<QPushButton>("cmdDeuxPointsReglette")->click();
  EXPECT_FALSE(w->RegletteTrouvee());
  EXPECT_FALSE(C("picReglette")->isVisibleTo(w));
}

// Under the picture, where the window has room: the window still fits a
// screen 600 pixels high with the usual 640 x 480 picture.
TEST_F(EtalonnageAuto, TientDansSixCentsPixelsDeHaut) {
  DessinReglette d;
  d.largeur = 2272;
  d.hauteur = 1704;
  Ouvrir(test::Dessiner(d));
  ASSERT_EQ(Image()->height(), 480);
  Lancer();
  ASSERT_TRUE(C("picReglette")->isVisibleTo(w));
  EXPECT_LE(w->sizeHint().height(), 600);
  EXPECT_LE(w->minimumSizeHint().height(), 600);
}

// Only the calibration mode has it.
TEST_F(EtalonnageAuto, CacheHorsEtalonnage) {
  DessinReglette d;
  Ouvrir(test::Dessiner(d), 2);
  EXPECT_FALSE(C("fraEtalonnageAuto")->isVisibleTo(w));
}

}  // namespace
}  // namespace tg
