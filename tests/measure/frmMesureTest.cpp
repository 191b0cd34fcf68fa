// The measuring window driven as a user would: mouse events on picImage and
// picLoupe, its named controls, the scripted dialogues; a calibration on a
// generated stage micrometer checked in table_mesure.dat.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <cmath>
#include <memory>

#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/InstallationTables.h"
#include "measure/TableMesure.h"
#include "measure/frmGenMesures.h"
#include "measure/frmMesure.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

// A stage micrometer: white, with dark graduations `largeurTrait` pixels
// wide every `pas` pixels from `premier`, over the whole height.
QImage Micrometre(int largeur, int hauteur, int premier, int pas, int largeurTrait) {
  QImage img(largeur, hauteur, QImage::Format_RGB32);
  img.fill(Qt::white);
  QPainter p(&img);
  for (int x = premier; x + largeurTrait <= largeur; x += pas)
    p.fillRect(x, 0, largeurTrait, hauteur, Qt::black);
  return img;
}

// The darkest column of `img` around `x` (± `rayon`), on row y.
int ColonneSombre(const QImage& img, int x, int y, int rayon) {
  int meilleure = x, gris = 256;
  for (int c = std::max(0, x - rayon); c <= std::min(img.width() - 1, x + rayon); ++c) {
    const int g = qGray(img.pixel(c, y));
    if (g < gris) {
      gris = g;
      meilleure = c;
    }
  }
  return meilleure;
}

void Souris(QWidget* w, QEvent::Type type, QPointF p, Qt::MouseButton bouton = Qt::LeftButton) {
  const Qt::MouseButtons boutons =
      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(bouton);
  QMouseEvent e(type, p, w->mapToGlobal(p), type == QEvent::MouseMove ? Qt::NoButton : bouton,
                boutons, Qt::NoModifier);
  QApplication::sendEvent(w, &e);
}

class Mesure : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  cAdvancedImagery ai;
  SessionRecord s;
  QPointer<frmMesure> w;

  ~Mesure() override {
    if (w) delete w.data();
    for (QWidget* t : QApplication::topLevelWidgets())
      if (t->objectName() == u"frmGenMesures") delete t;
  }

  void Ouvrir(const QImage& img, int16_t mode) {
    ASSERT_TRUE(ai.Convert_PictureToImage(img, s.ImageCourante));
    s.Largeur = img.width();
    s.Hauteur = img.height();
    s.ModeMesure = mode;
    w = new frmMesure(s, ai);
    w->show();
  }
  void Ouvrir(int largeur, int hauteur, int16_t mode) {
    Ouvrir(Micrometre(largeur, hauteur, 100, 150, 2), mode);
  }
  template <typename T = QWidget>
  T* C(const QString& nom) const {
    T* c = w->findChild<T*>(nom);
    EXPECT_NE(c, nullptr) << nom.toStdString();
    return c;
  }
  QWidget* Image() const { return C("picImage"); }
  double Ratio() const { return double(s.Largeur) / Image()->width(); }
  void Tracer(QPointF a, QPointF b) {
    Souris(Image(), QEvent::MouseButtonPress, a);
    Souris(Image(), QEvent::MouseMove, (a + b) / 2);
    Souris(Image(), QEvent::MouseMove, b);
    Souris(Image(), QEvent::MouseButtonRelease, b);
  }
  // Fills what the calibration leaves to the user and creates the table.
  EnrMesure CreerTable() {
    C<QPushButton>("cmdCopierInfos")->click();
    QWidget* gen = nullptr;
    for (QWidget* t : QApplication::topLevelWidgets())
      if (t->objectName() == u"frmGenMesures") gen = t;
    EXPECT_NE(gen, nullptr);
    if (!gen) return {};
    const auto champ = [gen](int i) {
      return gen->findChild<QLineEdit*>(QStringLiteral("txtFields%1").arg(i));
    };
    champ(0)->setText("APN-1");
    champ(2)->setText("Micro-A");
    champ(3)->setText("Trino");
    champ(4)->setText("40");
    champ(6)->setText("100");
    gen->findChild<QPushButton*>("cmdCreFichier")->click();
    FichierMesure f;
    EnrMesure e;
    EXPECT_TRUE(f.Ouvrir());
    EXPECT_TRUE(f.LireEnr(1 + 1, e));
    return e;
  }
};

// Acceptance: the stored Pix is the graduation spacing in full-resolution
// pixels. The display is 4 image pixels to one here, so that a click on the
// darkest displayed column lands on the graduation.
TEST_F(Mesure, EtalonnageSurLAffichageReduitDonneLaDistanceEnPixelsDeLImage) {
  const int premier = 400, pas = 136, nb = 10;
  Ouvrir(Micrometre(2560, 1700, premier, pas, 4), 0);
  ASSERT_DOUBLE_EQ(Ratio(), 4.0);
  const QImage vue = Image()->grab().toImage();
  const int y = 200;
  const int xa = ColonneSombre(vue, int(premier / Ratio()), y, 3);
  const int xb = ColonneSombre(vue, int((premier + nb * pas) / Ratio()), y, 3);
  Tracer(QPointF(xa, y), QPointF(xb, y));
  EXPECT_TRUE(C("picCreerTable")->isVisibleTo(w));
  auto* clignotement = w->findChild<QTimer*>("TimerAjouterTable");
  ASSERT_NE(clignotement, nullptr);
  EXPECT_TRUE(clignotement->isActive());

  const EnrMesure e = CreerTable();
  EXPECT_FALSE(clignotement->isActive());
  EXPECT_EQ(e.LargPix, 2560);
  EXPECT_NEAR(e.Pix, nb * pas, 1);
  EXPECT_EQ(e.Mic, 100);
}

// With the loupe the display is 4.6875 image pixels to one, far coarser than
// the pixel: the points are placed inside the two 100-pixel frames.
TEST_F(Mesure, EtalonnageALaLoupeAuPixelPresDesPointsExacts) {
  const int premier = 611, pas = 173, nb = 8;
  Ouvrir(Micrometre(3000, 2000, premier, pas, 1), 0);
  auto* loupe = C<QCheckBox>("chkModeLoupe");
  ASSERT_TRUE(loupe->isEnabled());
  loupe->click();
  ASSERT_TRUE(loupe->isChecked());
  const int y = 200;
  const int exacts[2] = {premier, premier + nb * pas};
  for (int exact : exacts) {
    Souris(Image(), QEvent::MouseButtonPress, QPointF(std::round(exact / Ratio()), y));
    Souris(Image(), QEvent::MouseButtonRelease, QPointF(std::round(exact / Ratio()), y));
    QWidget* pic = C("picLoupe");
    ASSERT_TRUE(pic->isVisibleTo(w));
    const QImage zoom = pic->grab().toImage();
    const int x = ColonneSombre(zoom, 50, 80, 50);
    Souris(pic, QEvent::MouseButtonPress, QPointF(x, 50));
    Souris(pic, QEvent::MouseButtonRelease, QPointF(x, 50));
    C<QPushButton>("cmdLoupe1")->click();
  }
  EXPECT_EQ(w->EtatDeLaLoupe().EtatLoupe, 4);
  EXPECT_NEAR(w->EtatDeLaLoupe().PointX1, exacts[0], 1);
  EXPECT_NEAR(w->EtatDeLaLoupe().PointX2, exacts[1], 1);
  EXPECT_TRUE(C("picCreerTable")->isVisibleTo(w));

  const EnrMesure e = CreerTable();
  EXPECT_EQ(e.LargPix, 3000);
  EXPECT_NEAR(e.Pix, nb * pas, 1);
}

TEST_F(Mesure, LoupeSansPremierPointPointeRefuseeEtCadreHorsImageGardeLEtat) {
  Ouvrir(3000, 2000, 0);
  C<QCheckBox>("chkModeLoupe")->click();
  EXPECT_EQ(dlg.Dernier().texte, TexteModeLoupe);
  // 5 display pixels from the left: the frame would start at 4.6875 x 5 - 50 < 0.
  Souris(Image(), QEvent::MouseButtonPress, QPointF(5, 200));
  EXPECT_EQ(dlg.Dernier().texte, TexteHorsImage);
  EXPECT_EQ(w->EtatDeLaLoupe().EtatLoupe, 0);
  EXPECT_FALSE(C("picLoupe")->isVisibleTo(w));
  // Inside, a frame; validating it before any point is placed is refused.
  Souris(Image(), QEvent::MouseButtonPress, QPointF(200, 200));
  EXPECT_EQ(w->EtatDeLaLoupe().EtatLoupe, 1);
  C<QPushButton>("cmdLoupe1")->click();
  EXPECT_EQ(dlg.Dernier().titre, " Erreur pointage");
  EXPECT_EQ(w->EtatDeLaLoupe().EtatLoupe, 1);
  C<QPushButton>("cmdLoupe0")->click();
  EXPECT_EQ(w->EtatDeLaLoupe().EtatLoupe, 0);
}

TEST_F(Mesure, PhotoDe1499PixelsSansLoupe) {
  Ouvrir(1499, 1000, 0);
  EXPECT_FALSE(C("chkModeLoupe")->isEnabled());
}

// A table is offered above 10 display pixels; the line drawn horizontally
// still measures the straight distance to the pointer.
struct CasTable {
  double dx, dy;
  bool offerte;
};
class OffreDeTable : public Mesure, public testing::WithParamInterface<CasTable> {};
TEST_P(OffreDeTable, SelonLaLongueurDroite) {
  Ouvrir(2560, 1700, 0);
  const CasTable c = GetParam();
  Tracer(QPointF(100, 100), QPointF(100 + c.dx, 100 + c.dy));
  EXPECT_EQ(C("picCreerTable")->isVisibleTo(w), c.offerte);
  const double longueur = std::hypot(c.dx, c.dy);
  EXPECT_EQ(C<QLineEdit>("txtMesurePixel")->text().toLongLong(), std::llround(longueur * 4));
}
INSTANTIATE_TEST_SUITE_P(Longueurs, OffreDeTable,
                         testing::Values(CasTable{10, 0, false}, CasTable{10.1, 0, true},
                                         CasTable{0, 10, false}, CasTable{6, 8.1, true}),
                         [](const auto& i) { return "Cas" + std::to_string(i.index); });

// Horizontal choice: the band is drawn along the first point's row while the
// value is the straight diagonal.
TEST_F(Mesure, LigneHorizontaleDessineeMaisLongueurDroite) {
  Ouvrir(2560, 1700, 0);
  Tracer(QPointF(100, 100), QPointF(200, 160));
  const QImage vue = Image()->grab().toImage();
  const auto rouge = [&vue](int x, int y) {
    const QColor c = vue.pixelColor(x, y);
    return c.red() > 200 && c.green() < 80 && c.blue() < 80;
  };
  EXPECT_TRUE(rouge(150, 100));
  EXPECT_FALSE(rouge(150, 130));
  EXPECT_EQ(C<QLineEdit>("txtMesurePixel")->text().toLongLong(), std::llround(std::hypot(100, 60) * 4));
  C<QRadioButton>("optLigne2")->click();  // a change of choice clears the line
  EXPECT_TRUE(C<QLineEdit>("txtMesurePixel")->text().isEmpty());
  const QImage apres = Image()->grab().toImage();
  EXPECT_NE(apres.pixelColor(150, 100), vue.pixelColor(150, 100));
}

TEST_F(Mesure, CopierInfosSansMesureNOuvrePasLaCreation) {
  Ouvrir(2560, 1700, 0);
  C<QPushButton>("cmdCopierInfos")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Il manque votre mesure ...");
  for (QWidget* t : QApplication::topLevelWidgets()) EXPECT_NE(t->objectName(), "frmGenMesures");
}

TEST_F(Mesure, ModeDeuxSansEchelleLaValeurResteCommeElleEtait) {
  Ouvrir(2560, 1700, 2);
  auto* valeur = C<QLineEdit>("txtMesurePixel");
  valeur->setText("12,5");
  Tracer(QPointF(50, 50), QPointF(300, 200));
  EXPECT_EQ(valeur->text(), "12,5");
  EXPECT_EQ(C<QLabel>("lblUniteMesure")->text(), "µm");
}

TEST_F(Mesure, RecuperationManuelleDeLEchelleEnPixelsJusquALaValidation) {
  Ouvrir(2560, 1700, 1);
  EXPECT_EQ(dlg.Dernier().titre, "Etalonnage manuel");
  EXPECT_TRUE(C("picRecupEchelle")->isVisibleTo(w));
  Tracer(QPointF(100, 100), QPointF(350, 100));  // 250 display = 1000 image pixels
  EXPECT_EQ(C<QLineEdit>("txtPixTemp")->text(), "1000");
  EXPECT_EQ(C<QLabel>("lblUniteMesure")->text(), "pixels");

  C<QLineEdit>("txtMicTemp")->setText("0,4");
  C<QPushButton>("cmdValiderMesureTemp")->click();
  EXPECT_EQ(dlg.Dernier().texte, TexteEchelleRefusee);
  EXPECT_EQ(s.ModeMesure, 1);
  EXPECT_EQ(C<QLabel>("lblUniteMesure")->text(), "pixels");

  C<QLineEdit>("txtMicTemp")->setText("50");
  C<QPushButton>("cmdValiderMesureTemp")->click();
  EXPECT_EQ(dlg.Dernier().titre, "Echelle OK");
  EXPECT_EQ(s.ModeMesure, 2);
  EXPECT_EQ(C<QLabel>("lblUniteMesure")->text(), "µm");
  EXPECT_TRUE(C("cmdRestartRecupEchelle")->isEnabled());
  // 1000 image pixels are 50 µm: 100 display pixels are 400 image pixels, 20 µm.
  Tracer(QPointF(100, 100), QPointF(200, 100));
  EXPECT_EQ(C<QLineEdit>("txtMesurePixel")->text(), "20");
}

TEST_F(Mesure, RecuperationParLesMetadonneesAcceptee) {
  s.EchellePix = "500";
  s.EchelleMic = "100";
  dlg.reponses = {Reponse::Oui};
  Ouvrir(2560, 1700, 1);
  ASSERT_FALSE(dlg.appels.empty());
  EXPECT_EQ(dlg.appels.front().genre, "Question");
  EXPECT_EQ(s.ModeMesure, 2);
  EXPECT_FALSE(C("picRecupEchelle")->isVisibleTo(w));
  // 0.2 µm a pixel: 250 display pixels are 1000 image pixels, 200 µm.
  Tracer(QPointF(100, 100), QPointF(350, 100));
  EXPECT_EQ(C<QLineEdit>("txtMesurePixel")->text(), "200");
}

// A scale another program wrote (here 0.4 µm a pixel of a 3200-pixel file
// now shown at 2560) is offered with its source and followed through the
// resize; refused, the manual way as before.
TEST_F(Mesure, RecuperationDUneEchelleDUnAutreProgramme) {
  s.MicronsParPixelExterne = 0.4;
  s.SourceEchelleExterne = "ImageJ";
  s.LargeurOrigine = 3200;
  s.SeparateurDecimal = ",";
  dlg.reponses = {Reponse::Oui};
  Ouvrir(2560, 1700, 1);
  ASSERT_FALSE(dlg.appels.empty());
  EXPECT_EQ(dlg.appels.front().genre, "Question");
  EXPECT_TRUE(dlg.appels.front().texte.contains("autre programme (ImageJ)")) << dlg.appels.front().texte.toStdString();
  EXPECT_TRUE(dlg.appels.front().texte.contains("100 µm = 200 pixels"));
  EXPECT_EQ(C<QLineEdit>("txtPixTemp")->text(), "200");
  EXPECT_EQ(s.ModeMesure, 2);
  // 0.5 µm a displayed-picture pixel: 250 display pixels are 1000 pixels, 500 µm.
  Tracer(QPointF(100, 100), QPointF(350, 100));
  EXPECT_EQ(C<QLineEdit>("txtMesurePixel")->text(), "500");
  delete w.data();

  dlg.appels.clear();
  dlg.reponses = {Reponse::Non};
  Ouvrir(2560, 1700, 1);
  EXPECT_EQ(dlg.appels.back().titre, "Etalonnage manuel");
  EXPECT_TRUE(C("picRecupEchelle")->isVisibleTo(w));
}

TEST_F(Mesure, CompteurDePointsCompteLesClicsSansTracer) {
  Ouvrir(2560, 1700, 2);
  C<QPushButton>("cmdMnuCompteur1")->click();
  for (int i = 0; i < 3; ++i) {
    Souris(Image(), QEvent::MouseButtonPress, QPointF(50 + 20 * i, 60));
    Souris(Image(), QEvent::MouseButtonRelease, QPointF(50 + 20 * i, 60));
  }
  EXPECT_EQ(C<QLineEdit>("txtCompteurPoints0")->text(), "3");
  EXPECT_EQ(C<QLineEdit>("txtCompteurPoints1")->text(), "3");
  EXPECT_TRUE(C<QLineEdit>("txtMesurePixel")->text().isEmpty());
  C<QPushButton>("cmdMnuCompteur0")->click();
  EXPECT_EQ(C<QLineEdit>("txtCompteurPoints0")->text(), "0");
}

// The main window's menus reach the window through the hook it installs.
TEST(MesureMenus, EtalonnageOuvreLaFenetreSaufAvecUnZoomNumerique) {
  DialoguesScriptes dlg;
  cAdvancedImagery ai;
  SessionRecord s;
  ASSERT_TRUE(ai.Convert_PictureToImage(Micrometre(1600, 1200, 100, 150, 2), s.ImageCourante));
  s.Largeur = 1600;
  s.Hauteur = 1200;
  frmFichierPhoto fenetre(s, ai);
  InstallerTablesMesure(fenetre);
  const auto ouvertes = [] {
    QList<QWidget*> l;
    for (QWidget* t : QApplication::topLevelWidgets())
      if (t->objectName() == u"frmMesure" && t->isVisible()) l.append(t);
    return l;
  };
  s.DigitalZoom = 2;
  fenetre.mnuMesurerEtalon();
  EXPECT_TRUE(ouvertes().isEmpty());
  s.DigitalZoom = 1;
  fenetre.mnuMesurerEtalon();
  ASSERT_EQ(ouvertes().size(), 1);
  EXPECT_EQ(ouvertes().front()->windowTitle(), " Etalonnage ...");
  // A second opening replaces the first, now to recover a scale.
  fenetre.mnuMesureImageTemp();
  QApplication::processEvents();
  ASSERT_EQ(ouvertes().size(), 1);
  EXPECT_EQ(ouvertes().front()->windowTitle(), " Récupérer une échelle ...");
  ouvertes().front()->close();
  EXPECT_TRUE(s.ImageMesure.Vide());
}

}  // namespace
}  // namespace tg
