// The annotation tools driven without their window: the mouse given in
// picture pixels, the controls' changes as calls, and what the window would
// show read back as data.
#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <cmath>

#include "annotation/OutilsAnnotation.h"
#include "core/SessionRecord.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Ini.h"
#include "tests/support/DialoguesScriptes.h"
#include "tests/annotation/PixelsEssai.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

constexpr QRgb kFond = 0xFF808080;

using test::Compter;

class Outils : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  cAdvancedImagery ai;
  SessionRecord s;
  std::unique_ptr<OutilsAnnotation> o;
  const QString ini = QDir::current().filePath(QStringLiteral("UserAnnotation.ini"));

  void Ouvrir(int largeur = 400, int hauteur = 300, bool echelle = true) {
    QImage img(largeur, hauteur, QImage::Format_RGB32);
    img.fill(kFond);
    ASSERT_TRUE(ai.Convert_PictureToImage(img, s.ImageCourante));
    s.SeparateurDecimal = ",";
    if (echelle) {
      s.EchellePix = "100";
      s.EchelleMic = "50";
      s.MicronsParPixel = 0.5f;
    }
    o = std::make_unique<OutilsAnnotation>(s, ai, ini);
    o->ChargerValeurs();
    o->ChargerImageDepart();
    o->DefinirTaillesBoites({160, 24, 120, 26});
  }
  void Tracer(PointF a, PointF b) {
    o->Appuyer(a, true);
    o->Deplacer({(a.x + b.x) / 2, (a.y + b.y) / 2}, true);
    o->Deplacer(b, true);
    o->Relacher(b, true);
  }
  void Cliquer(PointF a) {
    o->Appuyer(a, true);
    o->Relacher(a, true);
  }
  // A text placed alone and stamped.
  void Tamponner(PointF a, const QString& texte) {
    Cliquer(a);
    o->DefinirTexte(texte);
    o->CollerTexte();
  }
};

// The number counter across modes: only a stamp of mode 0 or 2 with the
// numbering on moves it, every undo takes one back whatever the step was,
// and the box keeps its value until the next stamp.
TEST_F(Outils, CompteurEtAnnulationATraversLesModes) {
  Ouvrir();
  o->CocherNumAuto(true);
  o->ChoisirMode(TexteUnique);
  EXPECT_TRUE(o->NumAuto());
  Cliquer({100, 100});
  EXPECT_EQ(o->Texte(), " 1 ");
  o->CollerTexte();
  Cliquer({200, 100});
  EXPECT_EQ(o->Texte(), " 2 ");
  o->CollerTexte();
  EXPECT_EQ(o->CptNumAuto(), 3);
  EXPECT_EQ(o->TexteCompteur(), "3");
  // A plain line: no number used, the numbering switched off and out of reach.
  o->ChoisirMode(LigneUnique);
  EXPECT_FALSE(o->NumAuto());
  EXPECT_FALSE(o->NumAutoPossible());
  EXPECT_EQ(o->Texte(), "votre texte ici");
  Tracer({50, 250}, {150, 250});
  EXPECT_EQ(o->NbUndo(), 3);
  EXPECT_EQ(o->CptNumAuto(), 3);
  // A dimension does not move it either.
  o->ChoisirMode(Cotes);
  Tracer({50, 200}, {350, 200});
  EXPECT_EQ(o->NbUndo(), 4);
  EXPECT_EQ(o->CptNumAuto(), 3);
  // Three undos, three numbers back, the box unchanged.
  for (int i = 0; i < 3; ++i) o->cmdUndo();
  EXPECT_EQ(o->NbUndo(), 1);
  EXPECT_EQ(o->CptNumAuto(), 0);
  EXPECT_EQ(o->TexteCompteur(), "3");
  // The last undo still lowers nothing below 0; with nothing left it only says so.
  o->cmdUndo();
  EXPECT_EQ(o->CptNumAuto(), 0);
  dlg.appels.clear();
  o->cmdUndo();
  EXPECT_EQ(dlg.Dernier().texte, "Aucune entrée !");
  EXPECT_TRUE(o->Travail() == o->Depart());
  // Mode 0 offers the numbering again, unticked; a stamp without it keeps the
  // counter but shows it in the box.
  o->ChoisirMode(LigneEtTexte);
  EXPECT_TRUE(o->NumAutoPossible());
  EXPECT_FALSE(o->NumAuto());
  Tracer({50, 50}, {150, 50});
  o->CollerTexte();
  EXPECT_EQ(o->CptNumAuto(), 0);
  EXPECT_EQ(o->TexteCompteur(), "0");
  // Erasing everything starts the numbers again at 1.
  o->ToutEffacer();
  EXPECT_EQ(o->NbUndo(), 0);
  EXPECT_EQ(o->CptNumAuto(), 1);
  EXPECT_EQ(o->TexteCompteur(), "1");
  EXPECT_TRUE(o->Travail() == o->Depart());
}

// A new start of the numbering: digits only, else the message and the box
// back to the counter; an edit marks the box until it is validated.
TEST_F(Outils, NouveauDepartDuCompteur) {
  Ouvrir();
  o->CocherNumAuto(true);
  o->DefinirTexteCompteur("7a");
  o->CompteurModifie();
  EXPECT_EQ(o->EtatDuCompteur(), EtatCompteur::Modifie);
  o->ValiderCompteur();
  EXPECT_EQ(dlg.Dernier().texte, "Num Auto : Chiffres uniquement !");
  EXPECT_EQ(o->TexteCompteur(), "1");
  EXPECT_EQ(o->CptNumAuto(), 1);
  EXPECT_EQ(o->EtatDuCompteur(), EtatCompteur::Modifie);
  o->DefinirTexteCompteur("12");
  o->ValiderCompteur();
  EXPECT_EQ(o->CptNumAuto(), 12);
  EXPECT_EQ(o->EtatDuCompteur(), EtatCompteur::Valide);
  Cliquer({10, 10});
  EXPECT_EQ(o->Texte(), " 12 ");
  // Unticking gives the editor its invitation back.
  o->CocherNumAuto(false);
  EXPECT_EQ(o->Texte(), "votre texte ici");
}

// The flags and boxes of a release: the side of the text by the line's
// direction, the boxes shown only while the text waits, all of it gone after
// the commit or the cancel.
TEST_F(Outils, PlacementApresValidationEtAnnulation) {
  Ouvrir();
  // Rightward: text to the right, editor and buttons waiting, focus asked once.
  Tracer({100, 150}, {250, 150});
  EXPECT_FALSE(o->Placements().aGauche);
  EXPECT_FALSE(o->Placements().vertical);
  EXPECT_EQ(o->Legende(), "Texte à droite");
  EXPECT_TRUE(o->Boites().editeur);
  EXPECT_TRUE(o->Boites().validation);
  EXPECT_EQ(o->Boites().posEditeur, QPoint(240, 150 - 12));  // kept inside the picture
  EXPECT_EQ(o->Boites().posValidation, QPoint(250, 150 + 12 + 2));
  EXPECT_EQ(o->TexteX(), "l.X = 150");
  EXPECT_EQ(o->TexteLongueur(), "Long. = 150 pix");
  EXPECT_TRUE(o->PrendreFocus());
  EXPECT_FALSE(o->PrendreFocus());
  EXPECT_FALSE(o->Calque().Vide());
  EXPECT_EQ(o->NbUndo(), 0);
  // The cancel button: nothing committed, the layer and the captions cleared.
  o->AnnulerTexte();
  EXPECT_FALSE(o->Boites().editeur);
  EXPECT_FALSE(o->Boites().validation);
  EXPECT_TRUE(o->Calque().Vide());
  EXPECT_EQ(o->TexteLongueur(), "Long. = ");
  EXPECT_EQ(o->TexteAngle(), "Angle = ");
  EXPECT_TRUE(o->Travail() == o->Depart());

  // Upward, off the axis by a pixel: centred above the end; near the right
  // edge the buttons go to the editor's left.
  Tracer({300, 250}, {301, 100});
  EXPECT_TRUE(o->Placements().vertical);
  EXPECT_TRUE(o->Placements().enHaut);
  EXPECT_EQ(o->Legende(), "Texte centré");
  EXPECT_EQ(o->Boites().posEditeur, QPoint(301 - 80, 100 - 24));
  EXPECT_EQ(o->Boites().posValidation, QPoint(301 - 130, 100 - 24));
  const int avant = o->Generation();
  o->CollerTexte();
  EXPECT_EQ(o->NbUndo(), 1);
  EXPECT_NE(o->Generation(), avant);
  EXPECT_FALSE(o->Boites().editeur);
  EXPECT_TRUE(o->Calque().Vide());

  // Leftward: text to the left of the end, both boxes kept inside the picture.
  Tracer({200, 200}, {100, 200});
  EXPECT_TRUE(o->Placements().aGauche);
  EXPECT_FALSE(o->Placements().vertical);
  EXPECT_EQ(o->Legende(), "Texte à gauche");
  EXPECT_EQ(o->Boites().posEditeur, QPoint(0, 200 - 12));
  EXPECT_EQ(o->Boites().posValidation, QPoint(0, 200 + 12 + 2));
}

// A text alone: the marks around the click, the buttons under the editor, or
// above it near the bottom; the stamp lands under the click.
TEST_F(Outils, TexteUniqueSesReperesEtSonTampon) {
  Ouvrir();
  o->ChoisirMode(TexteUnique);
  o->Appuyer({200, 40}, true);
  EXPECT_TRUE(o->Boites().editeur);
  EXPECT_FALSE(o->Boites().validation);
  o->Deplacer({210, 60}, true);
  EXPECT_EQ(o->Boites().posEditeur, QPoint(210 - 80, 60));
  o->Relacher({210, 60}, true);
  EXPECT_TRUE(o->Boites().reperes);
  EXPECT_EQ(o->Boites().repereV, QRect(210, 30, 1, 81));
  EXPECT_EQ(o->Boites().repereH, QRect(130, 60, 161, 1));
  EXPECT_EQ(o->Boites().posValidation, QPoint(130, 60 + 24 + 2));
  o->DefinirTexte("Zone A");
  o->CollerTexte();
  EXPECT_FALSE(o->Boites().reperes);
  EXPECT_GT(Compter(o->Travail(), QRect(180, 62, 60, 16), 0xFF404040), 10);
  EXPECT_EQ(Compter(o->Travail(), QRect(0, 0, 400, 50), 0xFF404040), 0);
  // Near the bottom the buttons go above the click.
  Cliquer({200, 260});
  EXPECT_EQ(o->Boites().posValidation, QPoint(120, 260 - 28));
}

// A click, a line under 10 pixels or one ending at (0, 0) is no line in any
// line mode: nothing committed, nothing left on the layer.
TEST_F(Outils, PasDeLigneSansLongueur) {
  Ouvrir();
  for (ModeAnnotation mode : {LigneEtTexte, LigneUnique, Cotes}) {
    o->ChoisirMode(mode);
    Cliquer({100, 100});
    Tracer({100, 100}, {109, 100});
    Tracer({100, 100}, {0, 0});
    EXPECT_EQ(o->NbUndo(), 0) << mode;
    EXPECT_TRUE(o->Calque().Vide()) << mode;
    EXPECT_FALSE(o->Boites().editeur) << mode;
  }
  o->ChoisirMode(LigneUnique);
  Tracer({100, 100}, {110, 100});
  EXPECT_EQ(o->NbUndo(), 1);
}

// The dimension mode wants a scale; its colour and width end with it.
TEST_F(Outils, CotesEtLeurCouleur) {
  Ouvrir(400, 300, false);
  EXPECT_FALSE(o->CotesPossibles());
  o->ChoisirMode(Cotes);
  EXPECT_EQ(dlg.Dernier().texte, "Vous n'avez pas défini d'échelle ! (Cartouche)");
  EXPECT_EQ(o->Mode(), LigneEtTexte);
  s.EchellePix = "100";
  s.EchelleMic = "50";
  o->ChoisirMode(Cotes);
  EXPECT_EQ(o->Mode(), Cotes);
  Tracer({50, 100}, {350, 100});
  ASSERT_EQ(o->NbUndo(), 1);
  EXPECT_GT(Compter(o->Travail(), QRect(50, 99, 300, 3), 0xFFFFFFFF), 250);
  // The next plain line is drawn in the line's own colour, not the dimension's.
  o->ChoisirMode(LigneUnique);
  Tracer({50, 200}, {350, 200});
  EXPECT_EQ(Compter(o->Travail(), QRect(60, 195, 280, 10), 0xFFFFFFFF), 0);
  EXPECT_GT(Compter(o->Travail(), QRect(60, 195, 280, 10), 0xFF404040), 250);
}

// A typed arrow angle that is no number says so once a drag, not once a move.
TEST_F(Outils, AngleDeFlecheIllisibleUneFoisParTrace) {
  Ouvrir();
  o->ChoisirMode(LigneUnique);
  o->DefinirAngleFleche("");
  dlg.appels.clear();
  o->Appuyer({50, 50}, true);
  for (int x = 60; x <= 250; x += 10) o->Deplacer({float(x), 60}, true);
  EXPECT_EQ(dlg.appels.size(), 1u);
  o->Relacher({250, 60}, true);
  EXPECT_EQ(o->NbUndo(), 1);
  Tracer({50, 150}, {250, 150});
  EXPECT_EQ(dlg.appels.size(), 2u);
  o->DefinirAngleFleche("30");
  EXPECT_EQ(o->Reglages().AngleFleche, 30.0f);
  Tracer({50, 250}, {250, 250});
  EXPECT_EQ(dlg.appels.size(), 2u);
}

// The stamps stop at 199 steps; a collage may still take the memory to 200.
TEST_F(Outils, LimiteDesEtapesEtCollageEnDernier) {
  Ouvrir(80, 80);
  o->ChoisirMode(LigneUnique);
  for (int i = 0; i < 199; ++i) Tracer({5, 5 + float(i % 60)}, {25 + float(i % 50), 15 + float(i % 55)});
  ASSERT_EQ(o->NbUndo(), 199);
  dlg.appels.clear();
  Tracer({5, 70}, {70, 70});
  EXPECT_EQ(o->NbUndo(), 199);
  EXPECT_EQ(dlg.Dernier().texte, "Attention, maximum de textes (undo) atteint !");
  EXPECT_TRUE(o->Calque().Vide());
  QImage vignette(10, 10, QImage::Format_RGB32);
  vignette.fill(Qt::red);
  const QString chemin = QDir::current().filePath("vignette.png");
  ASSERT_TRUE(vignette.save(chemin));
  ASSERT_TRUE(o->ChargerImageCollage(chemin, false));
  o->CollerPicCollage();
  EXPECT_EQ(o->NbUndo(), 200);
  ASSERT_TRUE(o->ChargerImageCollage(chemin, false));
  o->CollerPicCollage();
  EXPECT_EQ(o->NbUndo(), 200);
  EXPECT_FALSE(o->CollageEnCours());
}

// The collage: placed at the corner, lifted, centred on the mouse, set down,
// committed where it stands with its border; a second one waits for it.
TEST_F(Outils, CollagePoseDeplaceEtValide) {
  Ouvrir();
  QImage vignette(40, 30, QImage::Format_RGB32);
  vignette.fill(Qt::blue);
  const QString chemin = QDir::current().filePath("bleue.png");
  ASSERT_TRUE(vignette.save(chemin));
  o->DefinirBordCollage(true, 2, 2);  // 4 white pixels
  ASSERT_TRUE(o->ChargerImageCollage(chemin, false));
  EXPECT_TRUE(o->CollageFige());
  EXPECT_TRUE(o->ImageCollageVisible());
  EXPECT_EQ(o->PositionCollage(), QPoint(0, 0));
  EXPECT_FALSE(o->NouveauCollagePossible());
  EXPECT_EQ(dlg.Dernier().titre, "Collage en cours");
  // The mouse alone does not move a set-down collage.
  o->Deplacer({200, 200}, false);
  EXPECT_EQ(o->PositionCollage(), QPoint(0, 0));
  ASSERT_TRUE(o->Soulever());
  EXPECT_TRUE(o->ContourCollageVisible());
  EXPECT_FALSE(o->ImageCollageVisible());
  o->Deplacer({120, 115}, false);
  EXPECT_EQ(o->PositionCollage(), QPoint(100, 100));
  o->Appuyer({220, 115}, true);
  o->Relacher({220, 115}, true);
  EXPECT_TRUE(o->CollageFige());
  EXPECT_TRUE(o->ImageCollageVisible());
  // No line is drawn while a collage waits.
  EXPECT_TRUE(o->Calque().Vide());
  EXPECT_EQ(o->NbUndo(), 0);
  o->CollerPicCollage();
  ASSERT_EQ(o->NbUndo(), 1);
  EXPECT_FALSE(o->CollageEnCours());
  EXPECT_EQ(o->Travail().pixel(200, 100) | 0xFF000000, 0xFFFFFFFF);
  EXPECT_EQ(o->Travail().pixel(203, 103) | 0xFF000000, 0xFFFFFFFF);
  EXPECT_EQ(o->Travail().pixel(204, 104) | 0xFF000000, 0xFF0000FF);
  EXPECT_EQ(o->Travail().pixel(199, 100) | 0xFF000000, kFond);
  EXPECT_TRUE(o->NouveauCollagePossible());
  // A file too large for the margin is refused and nothing waits.
  QImage grande(341, 200, QImage::Format_RGB32);
  grande.fill(Qt::green);
  ASSERT_TRUE(grande.save(chemin));
  EXPECT_FALSE(o->ChargerImageCollage(chemin, false));
  EXPECT_EQ(dlg.Dernier().texte, "Votre collage est plus grand que l'image de destination !");
  EXPECT_FALSE(o->CollageEnCours());
}

// The settings' rules: the pointer's size by its shape, the first opaque
// background white, a thickness out of bounds ignored, the text's colour
// carried to the lines only when asked, a quick style that keeps that choice.
TEST_F(Outils, ReglagesEtStylesRapides) {
  Ouvrir();
  o->ChoisirPointeur(1);
  EXPECT_EQ(o->Reglages().PointerSize, 60);
  o->DefinirTaillePointeur("24");
  o->ChoisirPointeur(2);
  EXPECT_EQ(o->Reglages().PointerSize, 24);
  o->ChoisirPointeur(3);
  EXPECT_EQ(o->Reglages().PointerSize, 16);
  o->DefinirEpaisseur("0");
  EXPECT_EQ(o->Reglages().LineBorder, 2);
  o->DefinirEpaisseur("5");
  EXPECT_EQ(o->Reglages().LineBorder, 5);

  o->CouleurFond(0);
  o->optFondTexte(1);
  EXPECT_TRUE(o->FondOpaque());
  EXPECT_EQ(o->Reglages().TxtBackColor, 0xFFFFFF);
  o->optFondTexte(0);
  EXPECT_FALSE(o->FondOpaque());
  EXPECT_EQ(o->Reglages().TxtBackColor, -1);

  o->CouleurTexte(0x00C0FF);
  EXPECT_EQ(o->Reglages().LineColor, 0x404040);
  o->DefinirCouleurTexteSurLignes(true);
  o->CouleurTexte(0x00C0FF);
  EXPECT_EQ(o->Reglages().LineColor, 0x00C0FF);

  // Style 3 from mode 1: its own colours, the line fixed, mode 0 with its
  // numbering offered, the opaque background on, the file written.
  o->ChoisirMode(LigneUnique);
  o->picStyle(3);
  EXPECT_EQ(o->Reglages().TxtFontColor, 0xFFFFFF);
  EXPECT_EQ(o->Reglages().LineColor, 0xFFFFFF);
  EXPECT_EQ(o->Reglages().TxtBackColor, 0x404040);
  EXPECT_EQ(o->Reglages().LineBorder, 2);
  EXPECT_EQ(o->Mode(), LigneEtTexte);
  EXPECT_TRUE(o->NumAutoPossible());
  EXPECT_TRUE(o->FondOpaque());
  EXPECT_EQ(LireIni("Fond", "TxtBackColor", ini, ""), QString::number(0x404040));
  EXPECT_EQ(o->TexteAngleFleche(), "22,5");
  // The carrying of colours survives the style.
  o->CouleurTexte(0x123456);
  EXPECT_EQ(o->Reglages().LineColor, 0x123456);
  // Style 4 has no background.
  o->picStyle(4);
  EXPECT_FALSE(o->FondOpaque());
  // The defaults come back, file and all.
  o->RetablirDefaut();
  EXPECT_EQ(o->Reglages().TxtFontColor, 0x404040);
  EXPECT_EQ(LireIni("Texte", "TxtFontColor", ini, ""), QString::number(0x404040));
}

// An empty stamp on an opaque background is a small filled box; on a
// transparent one it is nothing at all.
TEST_F(Outils, TamponVideSelonLeFond) {
  Ouvrir();
  o->ChoisirMode(TexteUnique);
  Tamponner({200, 150}, "");
  EXPECT_EQ(o->NbUndo(), 1);
  EXPECT_TRUE(o->Travail() == o->Depart());
  o->optFondTexte(1);
  Tamponner({200, 150}, "");
  EXPECT_GT(Compter(o->Travail(), QRect(185, 140, 30, 30), 0xFFFFFFFF), 20);
}

// The cross-hair's shapes and colours, and the grid's steps as typed.
TEST_F(Outils, CroixEtPasDeGrille) {
  Ouvrir();
  o->AppliquerCroix(1, 0);
  EXPECT_FALSE(o->LaCroix().Visible());  // the mouse has not come yet
  o->Deplacer({100, 50}, false);
  EXPECT_EQ(o->LaCroix().Horizontale(), QRect(70, 50, 60, 1));
  EXPECT_EQ(o->LaCroix().Verticale(), QRect(100, 20, 1, 60));
  EXPECT_EQ(o->LaCroix().couleur, 0x0000FF);
  o->AppliquerCroix(4, 2);
  EXPECT_EQ(o->LaCroix().Horizontale(), QRect(100 - 750, 49, 1500, 2));
  EXPECT_EQ(o->LaCroix().couleur, 0xFF0000);
  o->AppliquerCroix(0, -1);
  EXPECT_FALSE(o->LaCroix().Visible());

  EXPECT_FALSE(LirePasGrille("abc"));
  EXPECT_FALSE(LirePasGrille(""));
  const auto zero = LirePasGrille("0"), grand = LirePasGrille("301"), juste = LirePasGrille("50");
  ASSERT_TRUE(zero && grand && juste);
  EXPECT_EQ(zero->valeur, 1);
  EXPECT_TRUE(zero->corrige);
  EXPECT_EQ(grand->valeur, 300);
  EXPECT_TRUE(grand->corrige);
  EXPECT_EQ(juste->valeur, 50);
  EXPECT_FALSE(juste->corrige);

  o->DefinirPasGrille(true, 150);
  o->DefinirPasGrille(false, 400);  // bounded to 300
  o->cmdGrille(0);
  EXPECT_EQ(o->InfoGrille(), "Ligne : 1 - Colonne : 2");
  EXPECT_EQ(o->EquivMicrons(), "75 x 150");
  EXPECT_FALSE(o->Calque().Vide());
  o->cmdGrille(1);
  EXPECT_TRUE(o->Calque().Vide());
}

// Leaving writes the settings; validating gives the session the picture at step 6.
TEST_F(Outils, SauverEtDecharger) {
  Ouvrir();
  o->ChoisirMode(LigneUnique);
  Tracer({50, 50}, {200, 200});
  const QImage travail = o->Travail().copy();
  int etapeVue = 0;
  o->Sauver([&] { etapeVue = s.Etape; });
  EXPECT_EQ(etapeVue, 6);
  EXPECT_TRUE(s.AnnotationsPresentes);
  QImage courante, formatee;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, courante));
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageFormatee, formatee));
  EXPECT_TRUE(courante == travail);
  EXPECT_TRUE(formatee == travail);
  o->ChoisirPointeur(2);
  o->Decharger();
  EXPECT_EQ(o->NbUndo(), 0);
  EXPECT_EQ(LireIni("Pointeur", "PointerChoose", ini, ""), "2");
}

}  // namespace
}  // namespace tg
