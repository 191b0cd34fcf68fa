// The annotation window driven as a user would: mouse events on picImage, its
// named controls and the scripted dialogues; the committed pixels checked
// against the geometry that puts them there.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>
#include <map>

#include "annotation/GeometrieAnnotation.h"
#include "annotation/ReglagesAnnotation.h"
#include "annotation/frmAnnotations2.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Ini.h"
#include "tests/support/DialoguesScriptes.h"
#include "tests/annotation/PixelsEssai.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

constexpr QRgb kFond = 0xFF808080;  // the picture's grey
constexpr QRgb kLigne = 0xFF404040;  // the default line colour

void Souris(QWidget* w, QEvent::Type type, QPointF p) {
  const Qt::MouseButtons boutons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
  QMouseEvent e(type, p, w->mapToGlobal(p), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, boutons,
                Qt::NoModifier);
  QApplication::sendEvent(w, &e);
}

// True when a pixel of colour `c` lies within `rayon` pixels of (x, y).
bool Pres(const QImage& img, double x, double y, QRgb c, int rayon = 1) {
  for (int dy = -rayon; dy <= rayon; ++dy)
    for (int dx = -rayon; dx <= rayon; ++dx) {
      const int px = int(std::lround(x)) + dx, py = int(std::lround(y)) + dy;
      if (img.valid(px, py) && (img.pixel(px, py) | 0xFF000000) == c) return true;
    }
  return false;
}

using test::Compter;

class Annotations : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  cAdvancedImagery ai;
  SessionRecord s;
  QPointer<frmAnnotations2> w;

  ~Annotations() override {
    if (w) delete w.data();
  }

  void Ouvrir(int largeur = 400, int hauteur = 300, bool echelle = true) {
    QImage img(largeur, hauteur, QImage::Format_RGB32);
    img.fill(kFond);
    ASSERT_TRUE(ai.Convert_PictureToImage(img, s.ImageCourante));
    s.Largeur = int16_t(largeur);
    s.Hauteur = int16_t(hauteur);
    s.SeparateurDecimal = ",";
    if (echelle) {
      s.EchellePix = "100";
      s.EchelleMic = "50";
      s.MicronsParPixel = 0.5f;
    }
    w = new frmAnnotations2(s, ai, nullptr);
    w->show();
  }
  template <typename T = QWidget>
  T* C(const QString& nom) const {
    T* c = w->findChild<T*>(nom);
    EXPECT_NE(c, nullptr) << nom.toStdString();
    return c;
  }
  QWidget* Image() const { return C("picImage"); }
  void Mode(int i) { C<QRadioButton>(QStringLiteral("optTexteEtLigne%1").arg(i))->click(); }
  void Tracer(QPointF a, QPointF b) {
    Souris(Image(), QEvent::MouseButtonPress, a);
    Souris(Image(), QEvent::MouseMove, (a + b) / 2);
    Souris(Image(), QEvent::MouseMove, b);
    Souris(Image(), QEvent::MouseButtonRelease, b);
  }
  void Cliquer(QPointF a) {
    Souris(Image(), QEvent::MouseButtonPress, a);
    Souris(Image(), QEvent::MouseButtonRelease, a);
  }
  QString Compteur() const { return C<QLabel>("lblCompteur")->text(); }
};

TEST_F(Annotations, OuvertureEtReglagesParDefaut) {
  Ouvrir();
  EXPECT_EQ(w->windowTitle(), "  Tessellographe : Annotations et cotes");
  EXPECT_TRUE(C<QRadioButton>("optTexteEtLigne0")->isChecked());
  EXPECT_TRUE(C<QRadioButton>("optTexteEtLigne3")->isEnabled());
  EXPECT_EQ(Compteur(), "Undo : 0");
  EXPECT_EQ(C<QPushButton>("cmdUndo")->toolTip(), "Undo-max 200");
  EXPECT_EQ(C<QComboBox>("combAngleFleche")->itemText(0), "22,5");
  EXPECT_TRUE(C<QRadioButton>("optPointeur3")->isChecked());
  EXPECT_TRUE(C<QRadioButton>("optCouleurCotes0")->isChecked());
  EXPECT_TRUE(w->Travail() == w->Depart());
  EXPECT_FALSE(C("fraLigne")->isVisibleTo(w));
}

TEST_F(Annotations, SansEchelleLesCotesSontRefusees) {
  Ouvrir(400, 300, false);
  EXPECT_FALSE(C<QRadioButton>("optTexteEtLigne3")->isEnabled());
}

// A click without a drag is no line in any line mode; a line ending at (0, 0) is dropped.
TEST_F(Annotations, ClicSansGlisserEtLigneVersLOrigineNeValidentRien) {
  Ouvrir();
  for (int mode : {0, 1, 3}) {
    Mode(mode);
    Cliquer({100, 100});
    EXPECT_EQ(w->NbUndo(), 0) << mode;
    EXPECT_FALSE(C("picEditeur")->isVisible()) << mode;
  }
  Mode(1);
  Tracer({100, 100}, {0, 0});
  EXPECT_EQ(w->NbUndo(), 0);
  EXPECT_TRUE(w->Travail() == w->Depart());
  Tracer({100, 100}, {108, 100});  // 8 pixels
  EXPECT_EQ(w->NbUndo(), 0);
  Tracer({100, 100}, {110, 100});
  EXPECT_EQ(w->NbUndo(), 1);
  EXPECT_EQ(Compteur(), "Undo : 1");
}

// Mode 0: the line waits for its text; the text goes right of a rightward line.
TEST_F(Annotations, LigneEtTexteAttendLaValidation) {
  Ouvrir();
  Tracer({100, 150}, {250, 150});
  EXPECT_EQ(w->NbUndo(), 0);
  EXPECT_TRUE(C("picEditeur")->isVisible());
  EXPECT_TRUE(C("picValidation")->isVisible());
  EXPECT_EQ(C<QLabel>("lblGaucheDroite")->text(), "Texte à droite");
  // Right of the end, kept inside the picture.
  EXPECT_EQ(C("picEditeur")->pos().x(), std::min(250, 400 - C("picEditeur")->width()));
  EXPECT_EQ(C("picEditeur")->pos().y(), 150 - C("picEditeur")->height() / 2);
  EXPECT_FALSE(w->Calque().Vide());
  C<QLineEdit>("txtEdition")->setText("Frustule");
  C<QPushButton>("cmdDialogueTexte0")->click();
  EXPECT_EQ(w->NbUndo(), 1);
  EXPECT_TRUE(w->Calque().Vide());
  EXPECT_FALSE(C("picEditeur")->isVisible());
  // The line and, right of its end, the dark text.
  EXPECT_TRUE(Pres(w->Travail(), 175, 150, kLigne));
  EXPECT_GT(Compter(w->Travail(), QRect(252, 140, 80, 20), kLigne), 10);
  // A leftward line puts its text left of the end.
  Tracer({250, 250}, {100, 250});
  EXPECT_EQ(C<QLabel>("lblGaucheDroite")->text(), "Texte à gauche");
  C<QPushButton>("cmdDialogueTexte1")->click();
  EXPECT_EQ(w->NbUndo(), 1);
  EXPECT_TRUE(w->Calque().Vide());
}

// The arrow: the line and both strokes of its head where the geometry puts them.
TEST_F(Annotations, FlecheValideeDansLesPixels) {
  Ouvrir();
  Mode(1);
  Tracer({100, 150}, {300, 150});
  ASSERT_EQ(w->NbUndo(), 1);
  const QImage& img = w->Travail();
  EXPECT_TRUE(Pres(img, 200, 150, kLigne));
  const auto [a, b] = DessinerExtLigne({100, 150}, 22.5, 16, w->AngleLigne());
  for (const Trait& t : {a, b}) {
    EXPECT_TRUE(Pres(img, (t.de.x + t.a.x) / 2, (t.de.y + t.a.y) / 2, kLigne));
    EXPECT_TRUE(Pres(img, t.a.x, t.a.y, kLigne));
  }
  // Nothing beyond the line's end nor above the arrow's head.
  EXPECT_EQ(Compter(img, QRect(306, 140, 50, 20), kLigne), 0);
  EXPECT_EQ(Compter(img, QRect(90, 120, 40, 15), kLigne), 0);
}

// Snapping draws the line in the snapped direction from the start.
TEST_F(Annotations, AccrochageA45Degres) {
  Ouvrir();
  Mode(1);
  C<QCheckBox>("chkBriderLigne")->setChecked(true);
  // 30 degrees snaps to 45.
  const double t = 30 * 3.14159265358979 / 180;
  Tracer({100, 250}, {100 + 160 * std::cos(t), 250 - 160 * std::sin(t)});
  ASSERT_EQ(w->NbUndo(), 1);
  EXPECT_EQ(w->AngleLigne(), 45);
  const PointF fin = FinBridee({100, 250}, 45, 160);
  EXPECT_TRUE(Pres(w->Travail(), (100 + fin.x) / 2, (250 + fin.y) / 2, kLigne));
  EXPECT_FALSE(Pres(w->Travail(), 100 + 80 * std::cos(t), 250 - 80 * std::sin(t), kLigne, 0));
}

// A drag that ends on an axis keeps the last angle off it; with snapping the
// line is drawn in that stale direction. A typed arrow angle that is no
// number stops the arrow with the guard's message, once a drag.
TEST_F(Annotations, AngleSurUnAxeEtAngleDeFlecheIllisible) {
  Ouvrir();
  Mode(1);
  C<QCheckBox>("chkBriderLigne")->setChecked(true);
  Souris(Image(), QEvent::MouseButtonPress, {100, 200});
  Souris(Image(), QEvent::MouseMove, {150, 150});
  Souris(Image(), QEvent::MouseMove, {100, 120});  // straight up: on the axis
  EXPECT_EQ(w->AngleLigne(), 45);
  Souris(Image(), QEvent::MouseButtonRelease, {100, 120});
  ASSERT_EQ(w->NbUndo(), 1);
  const PointF fin = FinBridee({100, 200}, 45, 80);
  EXPECT_TRUE(Pres(w->Travail(), (100 + fin.x) / 2, (200 + fin.y) / 2, kLigne));
  EXPECT_FALSE(Pres(w->Travail(), 100, 160, kLigne, 0));

  C<QComboBox>("combAngleFleche")->setCurrentText("");
  dlg.appels.clear();
  C<QCheckBox>("chkBriderLigne")->setChecked(false);
  Tracer({50, 50}, {250, 50});
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.Dernier().texte,
            "Error 13 (Incompatibilité de type) in procedure DessinerExtLigne of Feuille frmAnnotations2");
  EXPECT_EQ(w->NbUndo(), 2);  // the line itself is committed
}

// The dimension: ticks at both ends, the value in white at the middle.
TEST_F(Annotations, CoteAvecSesTraitsEtSaValeur) {
  Ouvrir();
  Mode(3);
  Tracer({50, 200}, {350, 200});
  ASSERT_EQ(w->NbUndo(), 1);
  const QImage& img = w->Travail();
  constexpr QRgb blanc = 0xFFFFFFFF;
  EXPECT_TRUE(Pres(img, 200, 200, blanc, 0));
  for (int x : {50, 350}) {
    EXPECT_TRUE(Pres(img, x, 197, blanc)) << x;
    EXPECT_TRUE(Pres(img, x, 203, blanc)) << x;
  }
  // " 150 µm" starts at the middle, under the line.
  EXPECT_GT(Compter(img, QRect(200, 202, 70, 20), blanc), 20);
  EXPECT_EQ(Compter(img, QRect(120, 202, 70, 20), blanc), 0);
  // The counter of numbers does not move in mode 3.
  EXPECT_EQ(w->CptNumAuto(), 1);
}

TEST_F(Annotations, TexteUniquePlaceParClicEtGrilleGardeeParLaValidationSuivante) {
  Ouvrir();
  C<QPushButton>("cmdGrille0")->click();
  EXPECT_EQ(C<QLabel>("lblInfoGrille")->text(), "Ligne : 3 - Colonne : 4");
  EXPECT_EQ(C<QLabel>("lblEquivMicrons")->text(), "50 x 50");
  EXPECT_FALSE(w->Calque().Vide());
  Mode(2);  // every option click wipes the layer: the grid goes with it
  EXPECT_TRUE(w->Calque().Vide());
  C<QPushButton>("cmdGrille0")->click();
  Souris(Image(), QEvent::MouseButtonPress, {200, 40});
  Souris(Image(), QEvent::MouseButtonRelease, {200, 40});
  EXPECT_TRUE(C("lngRepereH")->isVisible());
  EXPECT_TRUE(C("picValidation")->isVisible());
  C<QLineEdit>("txtEdition")->setText("Zone A");
  C<QPushButton>("cmdDialogueTexte0")->click();
  ASSERT_EQ(w->NbUndo(), 1);
  const QImage& img = w->Travail();
  // The grid every 100 pixels, frozen by the stamp.
  EXPECT_EQ(img.pixel(100, 250) | 0xFF000000, kLigne);
  EXPECT_EQ(img.pixel(50, 200) | 0xFF000000, kLigne);
  EXPECT_EQ(img.pixel(150, 250) | 0xFF000000, kFond);
  // The text centred under the click.
  EXPECT_GT(Compter(img, QRect(170, 42, 60, 16), kLigne), 10);
  // Undo takes the grid and the text back together.
  C<QPushButton>("cmdUndo")->click();
  EXPECT_TRUE(w->Travail() == w->Depart());
}

TEST_F(Annotations, LimiteDesValidationsEtAnnulationAZero) {
  Ouvrir(120, 90);
  C<QPushButton>("cmdUndo")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Aucune entrée !");
  Mode(1);
  for (int i = 0; i < 199; ++i) Tracer({10, 10 + double(i % 70)}, {30 + double(i % 80), 20 + double(i % 60)});
  ASSERT_EQ(w->NbUndo(), 199);
  dlg.appels.clear();
  Tracer({5, 80}, {100, 80});
  EXPECT_EQ(w->NbUndo(), 199);
  EXPECT_EQ(dlg.Dernier().texte, "Attention, maximum de textes (undo) atteint !");
  EXPECT_TRUE(w->Calque().Vide());
  // Each step keeps its own pixels, far below a copy of the picture each.
  EXPECT_LT(w->Memoire().Octets(), size_t(199) * 120 * 90 * 4 / 4);
}

// Undo after 50 steps gives back step 49 exactly, and down to 0 the start.
TEST_F(Annotations, AnnulerRedonneLesPixelsExacts) {
  Ouvrir();
  Mode(1);
  QImage avantDernier;
  for (int i = 0; i < 50; ++i) {
    if (i == 49) avantDernier = w->Travail().copy();
    Tracer({20 + double(i * 7 % 300), 20 + double(i * 13 % 250)}, {380 - double(i * 5 % 200), 280 - double(i * 11 % 200)});
  }
  ASSERT_EQ(w->NbUndo(), 50);
  EXPECT_FALSE(w->Travail() == avantDernier);
  C<QPushButton>("cmdUndo")->click();
  EXPECT_TRUE(w->Travail() == avantDernier);
  for (int i = 0; i < 49; ++i) C<QPushButton>("cmdUndo")->click();
  EXPECT_EQ(w->NbUndo(), 0);
  EXPECT_TRUE(w->Travail() == w->Depart());
  EXPECT_EQ(Compteur(), "Undo : 0");
}

// Every undo takes a number back, even for a plain line; the box keeps the old value.
TEST_F(Annotations, NumerotationAutomatiqueEtSonAnnulation) {
  Ouvrir();
  C<QCheckBox>("chkNumAuto")->setChecked(true);
  Mode(2);  // the numbering stays on in mode 2
  EXPECT_TRUE(C<QCheckBox>("chkNumAuto")->isChecked());
  Cliquer({100, 100});
  EXPECT_EQ(C<QLineEdit>("txtEdition")->text(), " 1 ");
  C<QPushButton>("cmdDialogueTexte0")->click();
  Cliquer({200, 100});
  EXPECT_EQ(C<QLineEdit>("txtEdition")->text(), " 2 ");
  C<QPushButton>("cmdDialogueTexte0")->click();
  EXPECT_EQ(w->CptNumAuto(), 3);
  EXPECT_EQ(C<QLineEdit>("txtCptNumAuto")->text(), "3");
  C<QPushButton>("cmdUndo")->click();
  EXPECT_EQ(w->CptNumAuto(), 2);
  EXPECT_EQ(C<QLineEdit>("txtCptNumAuto")->text(), "3");
  // Mode 1 unchecks the numbering; its line still lowers the counter when undone.
  Mode(1);
  EXPECT_FALSE(C<QCheckBox>("chkNumAuto")->isChecked());
  EXPECT_FALSE(C<QCheckBox>("chkNumAuto")->isEnabled());
  Tracer({50, 250}, {150, 250});
  EXPECT_EQ(w->CptNumAuto(), 2);
  C<QPushButton>("cmdUndo")->click();
  EXPECT_EQ(w->CptNumAuto(), 1);
  // A new start: numbers only.
  Mode(0);
  C<QCheckBox>("chkNumAuto")->setChecked(true);
  C<QLineEdit>("txtCptNumAuto")->setText("");
  C<QPushButton>("cmdNumAuto")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Num Auto : Chiffres uniquement !");
  EXPECT_EQ(C<QLineEdit>("txtCptNumAuto")->text(), "1");
  C<QLineEdit>("txtCptNumAuto")->setText("12");
  C<QPushButton>("cmdNumAuto")->click();
  EXPECT_EQ(w->CptNumAuto(), 12);
}

TEST_F(Annotations, ToutEffacerDemandeEtRevientAuDepart) {
  Ouvrir();
  Mode(1);
  Tracer({50, 50}, {200, 200});
  dlg.reponses.push_back(Reponse::Non);
  C<QPushButton>("cmdToutEffacer")->click();
  EXPECT_EQ(dlg.Dernier().titre, "Effacer les textes");
  EXPECT_EQ(dlg.Dernier().defaut, Reponse::Non);
  EXPECT_EQ(w->NbUndo(), 1);
  dlg.reponses.push_back(Reponse::Oui);
  C<QPushButton>("cmdToutEffacer")->click();
  EXPECT_EQ(w->NbUndo(), 0);
  EXPECT_TRUE(w->Travail() == w->Depart());
}

// cmdSortir keeps nothing of the picture but saves the settings.
TEST_F(Annotations, SortirSansConserverEnregistreLesReglages) {
  Ouvrir();
  QImage avant;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, avant));
  Mode(1);
  Tracer({50, 50}, {200, 200});
  C<QRadioButton>("optPointeur1")->click();
  EXPECT_EQ(C<QComboBox>("combTaillePointeur")->currentText(), "60");
  dlg.reponses.push_back(Reponse::Non);
  C<QPushButton>("cmdSortir")->click();
  EXPECT_TRUE(w->isVisible());
  dlg.reponses.push_back(Reponse::Oui);
  C<QPushButton>("cmdSortir")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Quitter l'outil sans conserver les annotations ?");
  QApplication::processEvents();
  QImage apres;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, apres));
  EXPECT_TRUE(avant == apres);
  EXPECT_FALSE(s.AnnotationsPresentes);
  const ReglagesAnnotation r = LireReglagesAnnotation(CheminUserAnnotation());
  EXPECT_EQ(r.PointerChoose, 1);
  EXPECT_EQ(r.PointerSize, 60);
}

TEST_F(Annotations, ValiderEtSortirDonneLaSessionEnEtape6) {
  Ouvrir();
  Mode(1);
  Tracer({50, 50}, {200, 200});
  const QImage travail = w->Travail().copy();
  dlg.reponses.push_back(Reponse::Oui);
  C<QPushButton>("cmdValiderSortir")->click();
  EXPECT_EQ(dlg.Dernier().titre, "Valider et sortir");
  EXPECT_EQ(s.Etape, 6);
  EXPECT_TRUE(s.AnnotationsPresentes);
  QImage courante, formatee;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, courante));
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageFormatee, formatee));
  EXPECT_TRUE(courante == travail);
  EXPECT_TRUE(formatee == travail);
}

TEST_F(Annotations, FondOpaqueBlancAuLieuDuNoirEtStyles) {
  Ouvrir();
  dlg.couleurs.push_back(0);
  C<QPushButton>("cmdCouleurFond")->click();
  EXPECT_EQ(w->Reglages().TxtBackColor, 0);
  C<QRadioButton>("optFondTexte1")->click();
  EXPECT_EQ(w->Reglages().TxtBackColor, 0xFFFFFF);
  C<QRadioButton>("optFondTexte0")->click();
  EXPECT_EQ(w->Reglages().TxtBackColor, -1);
  // A quick style: written at once, with its fixed line.
  C<QPushButton>("picStyle3")->click();
  EXPECT_EQ(w->Reglages().TxtFontColor, 0xFFFFFF);
  EXPECT_EQ(w->Reglages().TxtBackColor, 0x404040);
  EXPECT_TRUE(C<QRadioButton>("optFondTexte1")->isChecked());
  EXPECT_EQ(LireIni("Fond", "TxtBack", CheminUserAnnotation(), ""), "VRAI");
  // An empty text on an opaque background stamps a small filled box.
  Mode(2);
  Cliquer({200, 150});
  C<QLineEdit>("txtEdition")->setText("");
  C<QPushButton>("cmdDialogueTexte0")->click();
  EXPECT_GT(Compter(w->Travail(), QRect(185, 140, 30, 30), kLigne), 20);
  // Defaults back, file included.
  C<QPushButton>("cmdRetablirDefaut")->click();
  EXPECT_EQ(w->Reglages().TxtBackColor, -1);
  EXPECT_EQ(LireIni("Fond", "TxtBackColor", CheminUserAnnotation(), ""), "-1");
}

// The colour most of a picture's pixels have.
QRgb Dominante(const QImage& img) {
  std::map<QRgb, int> n;
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) ++n[img.pixel(x, y) | 0xFF000000];
  return std::max_element(n.begin(), n.end(), [](auto& a, auto& b) { return a.second < b.second; })->first;
}

// "Exemple - 12345" as the user sees it, the text frame opened.
QImage VoirExemple(frmAnnotations2* w) {
  if (auto* b = w->findChild<QPushButton*>(QStringLiteral("cmdfraTexte")); b && !b->isChecked()) b->click();
  QApplication::processEvents();
  return w->findChild<QLineEdit*>(QStringLiteral("txtExemple"))->grab().toImage();
}

// Pixels of the example close to `c`: the letters, antialiased at their edges.
int Proches(const QImage& img, QRgb c) {
  int n = 0;
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) {
      const QRgb p = img.pixel(x, y);
      n += std::abs(qRed(p) - qRed(c)) + std::abs(qGreen(p) - qGreen(c)) + std::abs(qBlue(p) - qBlue(c)) < 30;
    }
  return n;
}

// The example shows the stamp's own background and text colour, whichever
// way the style came: a quick style, the settings file, a background swatch.
TEST_F(Annotations, LExempleMontreLeTamponQuelQueSoitLeChemin) {
  Ouvrir();
  for (int style : {3, 5}) {
    C<QPushButton>(QStringLiteral("picStyle%1").arg(style))->click();
    const QImage ex = VoirExemple(w);
    EXPECT_EQ(Dominante(ex), 0xFF404040u) << style;
    EXPECT_GT(Proches(ex, 0xFFFFFFFF), 20) << style;
  }
  // What the stamp of style 5 puts on the picture: white on the same grey.
  Mode(2);
  Cliquer({200, 150});
  C<QLineEdit>("txtEdition")->setText("Exemple - 12345");
  C<QPushButton>("cmdDialogueTexte0")->click();
  const QImage tampon = w->Travail().copy(120, 145, 160, 30);
  EXPECT_GT(Compter(tampon, tampon.rect(), 0xFF404040), 300);
  EXPECT_GT(Proches(tampon, 0xFFFFFFFF), 20);
  delete w.data();

  // Opened on the file that style left behind.
  ASSERT_EQ(LireIni("Fond", "TxtBack", CheminUserAnnotation(), ""), "VRAI");
  Ouvrir();
  EXPECT_TRUE(C<QRadioButton>("optFondTexte1")->isChecked());
  EXPECT_EQ(Dominante(VoirExemple(w)), 0xFF404040u);

  // A background swatch while the background is transparent: the stamp
  // takes the colour, so does the example.
  C<QPushButton>("picStyle4")->click();
  ASSERT_TRUE(C<QRadioButton>("optFondTexte0")->isChecked());
  C<QPushButton>("picColorNB2_1")->click();
  EXPECT_EQ(Dominante(VoirExemple(w)), 0xFFC0C0C0u);
  Mode(2);
  Cliquer({200, 150});
  C<QLineEdit>("txtEdition")->setText("Exemple - 12345");
  C<QPushButton>("cmdDialogueTexte0")->click();
  EXPECT_GT(Compter(w->Travail(), QRect(120, 145, 160, 30), 0xFFC0C0C0), 300);
}

// A quick style brings mode 0 back the way its click does: numbering offered.
TEST_F(Annotations, StyleRapideRedonneLeModeZeroAvecSaNumerotation) {
  Ouvrir();
  Mode(1);
  ASSERT_FALSE(C<QCheckBox>("chkNumAuto")->isEnabled());
  C<QPushButton>("picStyle2")->click();
  EXPECT_TRUE(C<QRadioButton>("optTexteEtLigne0")->isChecked());
  EXPECT_TRUE(C<QCheckBox>("chkNumAuto")->isEnabled());
  EXPECT_EQ(C<QLineEdit>("txtEdition")->text(), "votre texte ici");
}

TEST_F(Annotations, CouleurDuTexteAvecSonAvertissement) {
  Ouvrir();
  C<QCheckBox>("chkCouleurTxtplusLigne")->setChecked(true);
  dlg.couleurs.push_back(0x00C0FF);
  C<QPushButton>("cmdCouleurPolice")->click();
  EXPECT_TRUE(dlg.appels.front().texte.startsWith("Attention :\nAvec les textes, certaines couleurs\n"));
  EXPECT_EQ(w->Reglages().TxtFontColor, 0x00C0FF);
  EXPECT_EQ(w->Reglages().LineColor, 0x00C0FF);
  C<QRadioButton>("optCouleurCotes1")->click();
  EXPECT_EQ(w->Reglages().CoteColor, 0x404040);
  EXPECT_EQ(w->Reglages().LineColor, 0x404040);
}

QString ImageFichier(int largeur, int hauteur) {
  QImage img(largeur, hauteur, QImage::Format_RGB32);
  img.fill(Qt::red);
  const QString chemin = QDir::current().filePath(QStringLiteral("vignette_%1.png").arg(largeur));
  img.save(chemin);
  return chemin;
}

TEST_F(Annotations, CollageDepuisUnFichierAvecSaMarge) {
  Ouvrir();
  dlg.chaines.push_back(ImageFichier(341, 240));  // 59 narrower than the picture
  C<QPushButton>("cmdOuvrirImage0")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Votre collage est plus grand que l'image de destination !");
  EXPECT_FALSE(w->CollageEnCours());
  dlg.chaines.push_back(ImageFichier(340, 240));  // 60 narrower, 60 lower
  C<QPushButton>("cmdOuvrirImage0")->click();
  ASSERT_TRUE(w->CollageEnCours());
  EXPECT_EQ(dlg.Dernier().titre, " Infos collage");
  // A second collage waits for the first.
  C<QPushButton>("cmdOuvrirImage1")->click();
  EXPECT_EQ(dlg.Dernier().titre, "Collage en cours");
  // Lifted by a click, moved with its centre on the mouse, set down by a click.
  QWidget* collage = C("picCollage");
  Souris(collage, QEvent::MouseButtonPress, {5, 5});
  Souris(Image(), QEvent::MouseMove, {230, 160});
  Souris(Image(), QEvent::MouseButtonPress, {230, 160});
  Souris(Image(), QEvent::MouseButtonRelease, {230, 160});
  EXPECT_EQ(w->PositionCollage(), QPoint(60, 40));
  C<QPushButton>("cmdDialogueCollage0")->click();
  EXPECT_FALSE(w->CollageEnCours());
  ASSERT_EQ(w->NbUndo(), 1);
  // The border: 2 black pixels inside the picture, red within.
  const QImage& img = w->Travail();
  EXPECT_EQ(img.pixel(60, 100) | 0xFF000000, 0xFF000000);
  EXPECT_EQ(img.pixel(61, 100) | 0xFF000000, 0xFF000000);
  EXPECT_EQ(img.pixel(62, 100) | 0xFF000000, 0xFFFF0000);
  EXPECT_EQ(img.pixel(59, 100) | 0xFF000000, kFond);
  EXPECT_EQ(img.pixel(399, 279) | 0xFF000000, 0xFF000000);  // its last corner
  EXPECT_EQ(img.pixel(230, 39) | 0xFF000000, kFond);
  C<QPushButton>("cmdUndo")->click();
  EXPECT_TRUE(w->Travail() == w->Depart());
}

TEST_F(Annotations, CollageDuPressePapierSansMargeEtAnnulation) {
  Ouvrir();
  QImage pleine(400, 300, QImage::Format_RGB32);
  pleine.fill(Qt::blue);
  QApplication::clipboard()->setImage(pleine);
  C<QRadioButton>("optBordVignette1")->click();
  C<QPushButton>("cmdOuvrirImage1")->click();
  ASSERT_TRUE(w->CollageEnCours()) << dlg.Dernier().texte.toStdString();
  C<QPushButton>("cmdDialogueCollage1")->click();
  EXPECT_FALSE(w->CollageEnCours());
  EXPECT_EQ(w->NbUndo(), 0);
  C<QPushButton>("cmdOuvrirImage1")->click();
  C<QPushButton>("cmdDialogueCollage0")->click();
  EXPECT_EQ(w->Travail().pixel(0, 0) | 0xFF000000, 0xFF0000FF);
  EXPECT_EQ(w->Travail().pixel(399, 299) | 0xFF000000, 0xFF0000FF);
}

}  // namespace
}  // namespace tg
