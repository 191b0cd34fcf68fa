// The filters window driven by its controls: sliders by increments, the
// memory of brightness and contrast, the colour boxes, the grey reference
// through the pipette, the thumbnails, apply and leave.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSlider>

#include "adjust/Filtres.h"
#include "adjust/frmFiltres.h"
#include "adjust/frmFiltresVignette.h"
#include "core/frmPipette.h"
#include "imaging/cAdvancedImagery.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

TEST(Filtres, TablesGammaCorrectionsEtCases) {
  EXPECT_DOUBLE_EQ(GammaPosition(1), 0.6);
  EXPECT_DOUBLE_EQ(GammaPosition(5), 1.0);
  EXPECT_DOUBLE_EQ(GammaPosition(9), 1.4);
  EXPECT_EQ(FigureGamma(1), -4);
  EXPECT_EQ(FigureGamma(9), 4);
  EXPECT_EQ(CorrectionCouleur(0, false), (std::array<float, 3>{3, 0, 0}));
  EXPECT_EQ(CorrectionCouleur(1, true), (std::array<float, 3>{0, 0, 10}));
  EXPECT_EQ(CorrectionCouleur(2, true), (std::array<float, 3>{-10, -10, 0}));
  EXPECT_TRUE(LireValeursRVB({"100", "", "-100"}).refus.isEmpty());
  EXPECT_EQ(LireValeursRVB({"100", "", "-100"}).pourcents, (std::array<float, 3>{100, 0, -100}));
  EXPECT_EQ(LireValeursRVB({"100,1", "0", "0"}).refus, "100 ou -100 maximum !");
  EXPECT_EQ(LireValeursRVB({"0", "abc", "0"}).refus, "Valeurs numériques uniquement !");
  // 100 - 200 x 100 / 210 = 4.76 -> 5, halved 2.5 -> 2 (ties to even).
  EXPECT_EQ(*CorrectionParGris({200, 180, 150}, 210), (std::array<int, 3>{2, 7, 14}));
  EXPECT_FALSE(CorrectionParGris({200, 180, 150}, 0).has_value());
}

TEST(Filtres, MemoireDeVingtEtUneEntrees) {
  MemoireFiltres m;
  for (int i = 0; i < 21; ++i) EXPECT_TRUE(m.Ajouter(i, -i));
  EXPECT_FALSE(m.Ajouter(99, 99));
  EXPECT_EQ(m.LignesOuverture().first(), "Filtre 1 = 0 et 0");
  EXPECT_EQ(m.LignesOuverture().last(), "Filtre 21 = 20 et -20");
  EXPECT_EQ(MemoireFiltres::LigneAjout(3, 5, -2), "filtre3 = 5 et -2");
  m.Vider();
  EXPECT_EQ(m.Nombre(), 0);
}

// A grey picture with a tinted patch in its middle.
QImage Photo(QRgb patch = qRgb(190, 175, 160)) {
  QImage img(300, 200, QImage::Format_RGB32);
  img.fill(qRgb(120, 120, 120));
  for (int y = 80; y < 120; ++y)
    for (int x = 130; x < 170; ++x) img.setPixel(x, y, patch);
  return img;
}

class Filtrage : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  cAdvancedImagery ai;
  SessionRecord s;
  QPointer<frmFiltres> w;

  Filtrage() {
    MemoireFiltresProgramme().Vider();
    const QImage img = Photo();
    EXPECT_TRUE(ai.Convert_PictureToImage(img, s.ImageCourante));
    EXPECT_TRUE(ai.Convert_PictureToImage(img, s.ImageFormatee));
    s.Largeur = img.width();
    s.Hauteur = img.height();
  }
  ~Filtrage() override {
    if (w) delete w.data();
  }
  void Ouvrir() {
    w = new frmFiltres(s, ai, nullptr);
    w->show();
  }
  template <typename T = QWidget>
  T* C(const QString& nom) const {
    T* c = w->findChild<T*>(nom);
    EXPECT_NE(c, nullptr) << nom.toStdString();
    return c;
  }
  // The user drags the slider to `v` and lets it go.
  void Glisser(const char* nom, int v) {
    auto* s = C<QSlider>(nom);
    s->setSliderDown(true);
    s->setValue(v);
    s->setSliderDown(false);
  }
  // The user empties the box and types `texte` key by key.
  void Taper(const char* nom, const QString& texte) {
    auto* boite = C<QLineEdit>(nom);
    boite->clear();
    for (QChar c : texte) {
      QKeyEvent appui(QEvent::KeyPress, c.unicode(), Qt::NoModifier, QString(c));
      QApplication::sendEvent(boite, &appui);
    }
  }
  QImage Filtre() {
    QImage i;
    EXPECT_TRUE(ai.Convert_ImageToPicture(s.ImageFiltre, i));
    return i;
  }
  QImage Courante() {
    QImage i;
    EXPECT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, i));
    return i;
  }
};

TEST_F(Filtrage, CurseursParIncrements) {
  Ouvrir();
  Glisser("sldLuminosite", 0);
  EXPECT_EQ(C<QLineEdit>("txtValLum")->text(), "0");
  EXPECT_TRUE(Filtre() == Photo());
  Glisser("sldLuminosite", 5);
  EXPECT_EQ(C<QSlider>("sldLuminosite")->value(), 0);
  const int apresUn = qRed(Filtre().pixel(10, 10));
  Glisser("sldLuminosite", 5);
  EXPECT_EQ(C<QLineEdit>("txtValLum")->text(), "10");
  const int apresDeux = qRed(Filtre().pixel(10, 10));
  EXPECT_GT(apresUn, 120);
  EXPECT_GT(apresDeux, apresUn);
  Glisser("sldContrast", -3);
  EXPECT_EQ(C<QLineEdit>("txtValCont")->text(), "-3");
  Glisser("sldGama", 7);
  EXPECT_EQ(C<QSlider>("sldGama")->value(), 5);
  EXPECT_EQ(C<QLineEdit>("txtGama")->text(), "2");
  // Nothing reaches the session before "Appliquer".
  EXPECT_TRUE(Courante() == Photo());
  C<QPushButton>("cmdReinit")->click();
  EXPECT_TRUE(Filtre() == Photo());
  EXPECT_EQ(C<QLineEdit>("txtValLum")->text(), "0");
}

TEST_F(Filtrage, MemoireSurvitALaFermetureEtRefuseLaVingtDeuxieme) {
  Ouvrir();
  Glisser("sldLuminosite", 5);
  Glisser("sldContrast", 2);
  C<QPushButton>("cmdAjouterListe")->click();
  EXPECT_EQ(C<QComboBox>("comboLumCont")->itemText(0), "filtre1 = 5 et 2");
  for (int i = 1; i < 21; ++i) C<QPushButton>("cmdAjouterListe")->click();
  dlg.appels.clear();
  C<QPushButton>("cmdAjouterListe")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Liste maximum atteinte!");
  EXPECT_EQ(C<QComboBox>("comboLumCont")->count(), 21);
  C<QPushButton>("cmdSortir")->click();
  delete w.data();

  Ouvrir();
  EXPECT_EQ(C<QComboBox>("comboLumCont")->itemText(0), "Filtre 1 = 5 et 2");
  EXPECT_TRUE(C<QPushButton>("cmdAppliquerListe")->isEnabled());
  C<QComboBox>("comboLumCont")->setCurrentIndex(0);
  C<QPushButton>("cmdAppliquerListe")->click();
  EXPECT_EQ(w->CumulLuminosite(), 5);
  EXPECT_EQ(C<QLineEdit>("txtValCont")->text(), "2");
  EXPECT_FALSE(Filtre() == Photo());
  dlg.reponses.push_back(Reponse::Oui);
  C<QPushButton>("cmdEffacerListe")->click();
  EXPECT_EQ(dlg.Dernier().titre, "Liste de filtres en mémoire");
  EXPECT_EQ(C<QComboBox>("comboLumCont")->count(), 0);
  EXPECT_EQ(MemoireFiltresProgramme().Nombre(), 0);
}

TEST_F(Filtrage, SortirLaisseLaSessionEtAppliquerLaChange) {
  Ouvrir();
  C<QPushButton>("cmdInversion")->click();
  C<QPushButton>("cmdSortir")->click();
  EXPECT_TRUE(Courante() == Photo());
  EXPECT_TRUE(s.ImageSansFiltre.Vide());
  QApplication::processEvents();

  Ouvrir();
  C<QPushButton>("cmdInversion")->click();
  const QImage inversee = Filtre();
  C<QPushButton>("cmdAppliquer")->click();
  EXPECT_EQ(dlg.Dernier().titre, "Filtres OK");
  EXPECT_TRUE(Courante() == inversee);
  QImage formatee, sansFiltre;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageFormatee, formatee));
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageSansFiltre, sansFiltre));
  EXPECT_TRUE(formatee == inversee);
  EXPECT_TRUE(sansFiltre == Photo());
}

TEST_F(Filtrage, CasesRVBEtReferenceNulle) {
  Ouvrir();
  Taper("txtRGB0", "100,1");
  C<QPushButton>("cmdAjusterRGB")->click();
  EXPECT_EQ(dlg.Dernier().texte, "100 ou -100 maximum !");
  EXPECT_TRUE(Filtre() == Photo());
  Taper("txtRGB0", "100");
  Taper("txtRGB1", "");
  Taper("txtRGB2", "-100");
  C<QPushButton>("cmdAjusterRGB")->click();
  EXPECT_EQ(Filtre().pixel(10, 10), qRgb(255, 120, 0));
  // A black reference makes nothing neutral: a message, the boxes kept.
  C<QLineEdit>("txtRGB0")->setText("7");
  C<QComboBox>("comboRefGris")->setCurrentText("000");
  C<QPushButton>("cmdCalculerNivGris")->click();
  EXPECT_EQ(C<QLineEdit>("txtRGB0")->text(), "7");
  EXPECT_EQ(dlg.Dernier().icone, int(Icone::Exclamation));
}

// "Appliquer" of the colour boxes waits for values to apply: computed from
// the grey reference or typed; a reset takes it away again.
TEST_F(Filtrage, AjusterRVBApresUnCalculOuUneSaisie) {
  Ouvrir();
  auto* ajuster = C<QPushButton>("cmdAjusterRGB");
  EXPECT_FALSE(ajuster->isEnabled());
  ajuster->click();
  EXPECT_TRUE(Filtre() == Photo());
  EXPECT_TRUE(dlg.appels.empty());
  C<QPushButton>("cmdCalculerNivGris")->click();
  EXPECT_TRUE(ajuster->isEnabled());
  C<QPushButton>("cmdReinit")->click();
  EXPECT_FALSE(ajuster->isEnabled());
  // A value set by the program is not the user's: still nothing to apply.
  C<QPushButton>("cmdInitRGB")->click();
  EXPECT_FALSE(ajuster->isEnabled());
  Taper("txtRGB2", "-20");
  EXPECT_TRUE(ajuster->isEnabled());
  ajuster->click();
  EXPECT_FALSE(Filtre() == Photo());
}

// The grey reference taken on the tinted patch with the pipette, applied:
// the patch comes out neutral.
TEST_F(Filtrage, ReferenceDeGrisParLaPipette) {
  Ouvrir();
  C<QPushButton>("cmdPipette")->click();
  frmPipette* pipette = w->findChild<frmPipette*>();
  ASSERT_NE(pipette, nullptr);
  // The pipette's copy is the picture itself here (smaller than its limit).
  ASSERT_TRUE(pipette->ChoisirPixel(150, 100));
  pipette->cmdOK();
  EXPECT_EQ(C<QLabel>("lblRGB0")->text(), "190");
  EXPECT_EQ(C<QLineEdit>("txtRGB0")->text(), "5");
  C<QPushButton>("cmdAjusterRGB")->click();
  C<QPushButton>("cmdAppliquer")->click();
  const QRgb p = Courante().pixel(150, 100);
  const int lo = std::min({qRed(p), qGreen(p), qBlue(p)}), hi = std::max({qRed(p), qGreen(p), qBlue(p)});
  EXPECT_LE(hi - lo, 2) << qRed(p) << " " << qGreen(p) << " " << qBlue(p);
}

TEST_F(Filtrage, VignettesLaPlusAncienneSortLaPremiere) {
  Ouvrir();
  frmFiltresVignette* v = w->Vignettes();
  ASSERT_NE(v, nullptr);
  std::vector<QImage> etats;
  for (int i = 0; i < 5; ++i) {
    Glisser("sldLuminosite", 3);
    etats.push_back(Filtre());
    C<QPushButton>("cmdMemoriserResult")->click();
  }
  for (int i = 0; i < 4; ++i) {
    QImage img;
    ASSERT_TRUE(ai.Convert_ImageToPicture(v->Image(i), img));
    EXPECT_TRUE(img == etats[size_t(i + 1)]) << i;
  }
  // Back to the second state kept; the totals do not move.
  v->imgVignette(0);
  EXPECT_TRUE(Filtre() == etats[1]);
  EXPECT_EQ(w->CumulLuminosite(), 15);
  v->imgOriginale();
  EXPECT_TRUE(Filtre() == Photo());
  dlg.reponses.push_back(Reponse::Oui);
  v->findChild<QPushButton*>("cmdEffacerVignette")->click();
  EXPECT_FALSE(v->Occupe(0));
  v->imgVignette(0);  // empty: nothing
  EXPECT_TRUE(Filtre() == Photo());
}

TEST_F(Filtrage, EffetsLongsEtCorrectionDeDominante) {
  Ouvrir();
  C<QPushButton>("cmdBlur")->click();
  // The patch's edge is softened.
  EXPECT_NE(Filtre().pixel(130, 100), Photo().pixel(130, 100));
  C<QPushButton>("cmdReinit")->click();
  C<QPushButton>("cmdCorrCouleur0")->click();
  EXPECT_EQ(qRed(Filtre().pixel(10, 10)), 131);  // F = 3 x 0.03 + 1: 120 x 1.09 = 130.8
  C<QPushButton>("cmdNivGris")->click();
  const QRgb p = Filtre().pixel(150, 100);
  EXPECT_TRUE(qRed(p) == qGreen(p) && qGreen(p) == qBlue(p));
}

}  // namespace
}  // namespace tg
