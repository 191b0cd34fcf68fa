// The annotation rules apart from the window: the settings file, the memory
// of steps, the text placement and the small checks of the grid and collage.
#include <gtest/gtest.h>

#include <QFile>
#include <QPainter>
#include <QRandomGenerator>

#include "annotation/CanevasAnnotation.h"
#include "annotation/ReglagesAnnotation.h"
#include "platform/Ini.h"

namespace tg {
namespace {

TEST(ReglagesAnnotation, EcritureDansLOrdreDuFichierEtFondSelonLaCouleur) {
  const QString f = CheminUserAnnotation();
  ReglagesAnnotation r;
  r.TxtBack = true;  // no colour: the flag follows it back to false
  r.AngleFleche = 30.5f;
  ASSERT_TRUE(EcrireReglagesAnnotation(r, f));
  EXPECT_FALSE(r.TxtBack);
  QFile fichier(f);
  ASSERT_TRUE(fichier.open(QIODevice::ReadOnly));
  const QByteArray octets = fichier.readAll();
  const QList<QByteArray> lignes = octets.split('\n');
  QStringList cles;
  for (const QByteArray& l : lignes) {
    EXPECT_TRUE(l.isEmpty() || l.endsWith('\r'));
    if (l.contains('=')) cles << QString::fromLatin1(l.left(l.indexOf('=')));
    else if (l.startsWith('[')) cles << QString::fromLatin1(l.trimmed());
  }
  EXPECT_EQ(cles.join(' '),
            "[Texte] TxtFontName TxtFontColor TxtFontSize TxtFontBold TxtFontItalic TxtFontUnderline "
            "[Fond] TxtBack TxtBackColor [Ligne] LineBorder LineColor [Pointeur] PointerChoose PointerSize "
            "AngleFleche [Cotes] CoteFontName CoteFontSize CoteColor CoteUnite");
  EXPECT_TRUE(octets.contains("TxtFontColor=4210752\r\n"));
  EXPECT_TRUE(octets.contains("CoteColor=16777215\r\n"));
  EXPECT_TRUE(octets.contains("TxtBack=FAUX\r\n"));
  EXPECT_TRUE(octets.contains("CoteUnite=\xb5m\r\n"));  // Windows-1252
  const ReglagesAnnotation lu = LireReglagesAnnotation(f);
  EXPECT_EQ(lu.AngleFleche, 30.5f);
  EXPECT_EQ(lu.CoteUnite, QStringLiteral("µm"));
  EXPECT_EQ(lu.TxtFontName, "Comic Sans MS");
}

// A hand-edited file never stops the window: what does not read comes back as its default.
TEST(ReglagesAnnotation, ValeursIllisiblesRemplaceesParLesDefauts) {
  const QString f = CheminUserAnnotation();
  EcrireIni("Texte", "TxtFontSize", "douze", f);
  EcrireIni("Texte", "TxtFontBold", "True", f);
  EcrireIni("Ligne", "LineBorder", "0", f);
  EcrireIni("Pointeur", "PointerChoose", "7", f);
  EcrireIni("Pointeur", "PointerSize", "99999", f);
  EcrireIni("Fond", "TxtBackColor", "255", f);
  const ReglagesAnnotation r = LireReglagesAnnotation(f);
  EXPECT_EQ(r.TxtFontSize, 12);
  EXPECT_TRUE(r.TxtFontBold);
  EXPECT_EQ(r.LineBorder, 2);
  EXPECT_EQ(r.PointerChoose, 3);
  EXPECT_EQ(r.PointerSize, 16);
  EXPECT_EQ(r.TxtBackColor, 255);
}

TEST(ReglagesAnnotation, StylesRapides) {
  ReglagesAnnotation r;
  r.TxtFontName = "Arial";
  r.TxtFontBold = true;
  r.LineBorder = 5;
  AppliquerStyle(r, kStylesRapides[5]);
  EXPECT_EQ(r.TxtFontName, "Comic Sans MS");
  EXPECT_FALSE(r.TxtFontBold);
  EXPECT_EQ(r.TxtFontSize, 10);
  EXPECT_EQ(r.TxtFontColor, 0xFFFFFF);
  EXPECT_EQ(r.LineColor, 0x404040);
  EXPECT_TRUE(r.TxtBack);
  EXPECT_EQ(r.LineBorder, 2);
  AppliquerStyle(r, kStylesRapides[4]);
  EXPECT_FALSE(r.TxtBack);
  EXPECT_EQ(IndexCouleurCote(0xC0C0C0), 2);
  EXPECT_EQ(IndexCouleurCote(0x000000), -1);
}

// Random strokes on a noisy picture: every undo restores the exact earlier
// pixels, and a thin line costs a small part of the picture.
TEST(MemoireUndo, RestitueExactementEtNeGardeQueLesPixelsChanges) {
  QImage img(640, 480, QImage::Format_RGB32);
  QRandomGenerator alea(7);
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) img.setPixel(x, y, alea.generate() | 0xFF000000);
  std::vector<QImage> etats{img.copy()};
  MemoireUndo m;
  for (int i = 0; i < 20; ++i) {
    const QImage avant = img.copy();
    QPainter p(&img);
    p.setPen(QPen(QColor(64, 64, 64), 1 + i % 4));
    p.drawLine(alea.bounded(640), alea.bounded(480), alea.bounded(640), alea.bounded(480));
    p.end();
    m.Ajouter(avant, img);
    etats.push_back(img.copy());
  }
  EXPECT_EQ(m.Nombre(), 20);
  EXPECT_LT(m.Octets(), size_t(20) * 640 * 480 * 4 / 20);
  for (int i = 19; i >= 0; --i) {
    ASSERT_TRUE(m.Annuler(img));
    ASSERT_TRUE(img == etats[size_t(i)]) << i;
  }
  EXPECT_FALSE(m.Annuler(img));
  // A step that changed nothing costs nothing but its entry, and still counts.
  m.Ajouter(img, img);
  EXPECT_EQ(m.Nombre(), 1);
  EXPECT_TRUE(m.Annuler(img));
  EXPECT_TRUE(img == etats[0]);
}

TEST(PlacementTexte, FlagsEtPositionsDeLEditeur) {
  // 45, 135, 225 and 315 count as sideways; a line going exactly left (or
  // not at all sideways) puts the text on its left.
  for (double a : {0.0, 45.0, 135.0, 180.0, 225.0, 315.0, 360.0})
    EXPECT_FALSE(FlagsPlacement(1, 1, a).vertical) << a;
  for (double a : {45.5, 90.0, 134.9, 225.1, 270.0, 314.9}) EXPECT_TRUE(FlagsPlacement(1, 1, a).vertical) << a;
  EXPECT_TRUE(FlagsPlacement(0, 5, 270).aGauche);
  EXPECT_TRUE(FlagsPlacement(5, 0, 0).enHaut);

  const PositionEditeur droite = PlacerEditeur(FlagsPlacement(100, 0, 0), {300, 200}, 160, 24, 120, 800);
  EXPECT_EQ(droite.editeur, QPoint(300, 188));
  EXPECT_EQ(droite.validation, QPoint(300, 214));
  EXPECT_EQ(droite.legende, "Texte à droite");
  const PositionEditeur gauche = PlacerEditeur(FlagsPlacement(-100, 0, 180), {300, 200}, 160, 24, 120, 800);
  EXPECT_EQ(gauche.editeur, QPoint(140, 188));
  EXPECT_EQ(gauche.validation, QPoint(180, 214));
  // Upward line: the editor above its end; the buttons beside it, on the
  // left from 150 pixels before the right edge.
  const Placement haut = FlagsPlacement(0, -100, 90);
  const PositionEditeur h1 = PlacerEditeur(haut, {649, 100}, 160, 24, 120, 800);
  EXPECT_EQ(h1.editeur, QPoint(569, 76));
  EXPECT_EQ(h1.validation, QPoint(731, 76));
  EXPECT_EQ(h1.legende, "Texte centré");
  const PositionEditeur h2 = PlacerEditeur(haut, {650, 100}, 160, 24, 120, 800);
  EXPECT_EQ(h2.validation, QPoint(520, 76));
  const PositionEditeur bas = PlacerEditeur(FlagsPlacement(0, 100, 270), {300, 300}, 160, 24, 120, 800);
  EXPECT_EQ(bas.editeur, QPoint(220, 300));
  // Mode 2: the buttons under the editor, above it near the bottom.
  EXPECT_EQ(PlacerValidationTexteUnique({200, 449}, 160, 24, 30, 600), QPoint(120, 475));
  EXPECT_EQ(PlacerValidationTexteUnique({200, 450}, 160, 24, 30, 600), QPoint(120, 418));
}

TEST(PlacementTexte, RectanglesDesTampons) {
  ReglagesAnnotation r;
  r.TxtFontSize = 14;
  const PointF debut{10, 20}, fin{110, 60};
  TexteSurImage t = TamponTexte(LigneEtTexte, {false, false, false}, debut, fin, r);
  EXPECT_EQ(QRect(QPoint(t.gauche, t.haut), QPoint(t.droite, t.bas)), QRect(QPoint(110, 60), QPoint(115, 60)));
  EXPECT_EQ(t.alignH, 3);
  t = TamponTexte(LigneEtTexte, {true, false, false}, debut, fin, r);
  EXPECT_EQ(t.gauche, 105);
  EXPECT_EQ(t.alignH, 4);
  t = TamponTexte(LigneEtTexte, {false, true, true}, debut, fin, r);
  EXPECT_EQ(t.bas, 60 - 24);
  EXPECT_EQ(t.alignH, 0);
  t = TamponTexte(LigneEtTexte, {false, true, false}, debut, fin, r);
  EXPECT_EQ(t.bas, 60 + 24);
  t = TamponTexte(TexteUnique, {}, debut, fin, r);
  EXPECT_EQ(QRect(QPoint(t.gauche, t.haut), QPoint(t.droite, t.bas)), QRect(QPoint(10, 20), QPoint(10, 34)));
  r.CoteColor = 0xC0C0C0;
  const TexteSurImage c = TamponCote({50, 60}, 120, r);
  EXPECT_EQ(c.rotation, 3000);
  EXPECT_TRUE(c.gras);
  EXPECT_EQ(c.fond, -1);
  EXPECT_EQ(c.alignV, 1);
  EXPECT_EQ(c.couleur, 0xC0C0C0);
  // The text itself: empty becomes a blank; an opaque background frames it.
  EXPECT_EQ(TexteTampon("", false), " ");
  EXPECT_EQ(TexteTampon("", true), "  ");
  EXPECT_EQ(TexteTampon("  Zone A ", true), " Zone A ");
}

TEST(GrilleEtCollage, PasBornesEquivalencesEtMarges) {
  EXPECT_EQ(BornerPasGrille(0), 1);
  EXPECT_EQ(BornerPasGrille(301), 300);
  EXPECT_EQ(TexteInfoGrille(1152, 864, 100, 100), "Ligne : 8 - Colonne : 11");
  EXPECT_EQ(TexteEquivMicrons("400", "100", 100, 50), "25 x 12");  // 12.5 to even
  EXPECT_EQ(TexteEquivMicrons("", "100", 100, 50), "pas d'échelle");
  // A step of 1 draws every row and column, both edges included.
  CalqueTemporaire calque;
  TracerGrille(calque, 40, 30, 1, 1, 0);
  QImage img(40, 30, QImage::Format_RGB32);
  img.fill(Qt::white);
  QPainter p(&img);
  calque.Dessiner(p);
  p.end();
  for (int y = 0; y < 30; ++y)
    for (int x = 0; x < 40; ++x) ASSERT_EQ(img.pixel(x, y), 0xFF000000) << x << "," << y;
  EXPECT_TRUE(CollageTropGrand(341, 100, 400, 300, true));
  EXPECT_FALSE(CollageTropGrand(340, 240, 400, 300, true));
  EXPECT_TRUE(CollageTropGrand(340, 241, 400, 300, true));
  EXPECT_FALSE(CollageTropGrand(400, 300, 400, 300, false));
  EXPECT_TRUE(CollageTropGrand(401, 300, 400, 300, false));
}

}  // namespace
}  // namespace tg
