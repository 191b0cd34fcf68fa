#pragma once
// What the annotation window draws and remembers, without its widgets: the
// temporary layer of strokes over the committed picture, the memory of the
// committed steps, the stamps' rectangles, the editor's placement, the grid
// and the collage's checks. Pictures are QImage RGB32 at 1:1; coordinates are
// picture pixels, y downward.
#include <QColor>
#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>
#include <cstdint>
#include <vector>

#include "annotation/GeometrieAnnotation.h"
#include "annotation/ReglagesAnnotation.h"
#include "imaging/cAdvancedImagery.h"

class QPainter;

namespace tg {

// The tool modes of optTexteEtLigne.
enum ModeAnnotation : int16_t { LigneEtTexte = 0, LigneUnique = 1, TexteUnique = 2, Cotes = 3 };

// The strokes of the temporary layer, drawn without smoothing in their colour
// and width: a line, an unfilled circle (centre, radius) or an unfilled square
// (corner, side). A clear wipes them; a commit burns them into the picture.
class CalqueTemporaire {
 public:
  void Effacer() { formes_.clear(); }
  bool Vide() const { return formes_.empty(); }
  void Ligne(PointF a, PointF b, int32_t couleur, int epaisseur);
  void Cercle(PointF centre, float rayon, int32_t couleur, int epaisseur);
  void Carre(PointF coin, float cote, int32_t couleur, int epaisseur);
  void Dessiner(QPainter& p) const;
  // The pixels the strokes may touch, pen width included; empty when none.
  QRect Boite() const;

 private:
  struct Forme {
    enum Genre { L, C, K } genre;
    PointF a, b;  // line ends; circle centre and (radius, 0); square corner and (side, 0)
    int32_t couleur;
    int epaisseur;
  };
  std::vector<Forme> formes_;
};

// The memory of committed steps. A step keeps only the pixels it changed,
// each run of changed pixels of a row with its values before the step, so
// that a line or a stamp costs its own pixels and not a whole picture.
class MemoireUndo {
 public:
  // Records the step that turned `avant` into `apres` (same size and format).
  void Ajouter(const QImage& avant, const QImage& apres);
  // Puts the last step's earlier pixels back into `image` and forgets the
  // step; false when there is none.
  bool Annuler(QImage& image);
  int Nombre() const { return int(etapes_.size()); }
  void Vider() { etapes_.clear(); }
  // Bytes held by all steps.
  size_t Octets() const;

 private:
  struct Segment {
    uint16_t y, x, n;
  };
  struct Etape {
    std::vector<Segment> segments;
    std::vector<uint32_t> pixels;
  };
  std::vector<Etape> etapes_;
};

// The placement flags of a text at the end of a line: left of its end when
// the line goes left (EcartX <= 0), above when it goes up (EcartY <= 0), and
// centred over or under it in the open sectors around 90 and 270 degrees.
struct Placement {
  bool aGauche = false, vertical = false, enHaut = false;
};
Placement FlagsPlacement(float ecartX, float ecartY, double angleLigne);

// Where the editor box (W x H) and the buttons box (width Wv) go at the
// release of a line ending at `fin`, and the caption of lblGaucheDroite.
struct PositionEditeur {
  QPoint editeur, validation;
  QString legende;
};
PositionEditeur PlacerEditeur(const Placement& pl, PointF fin, int w, int h, int wv, int largeurImage);
// Mode 2: the buttons box under the editor, or above it near the bottom.
QPoint PlacerValidationTexteUnique(QPoint clic, int w, int h, int hv, int hauteurImage);

// The stamp that CollerTexte draws in modes 0 to 2, by mode and placement.
TexteSurImage TamponTexte(ModeAnnotation mode, const Placement& pl, PointF debut, PointF fin,
                          const ReglagesAnnotation& r);
// The dimension's value at the middle of the line, bold, turned upright.
TexteSurImage TamponCote(PointF milieu, double angleLigne, const ReglagesAnnotation& r);
// The text a stamp carries: empty becomes " "; with an opaque background it
// is trimmed and framed by one blank on each side.
QString TexteTampon(const QString& saisi, bool fondOpaque);

// The grid: rows every `pasH` and columns every `pasL` pixels, from 0 to the
// size included.
void TracerGrille(CalqueTemporaire& calque, int largeur, int hauteur, int pasL, int pasH, int32_t couleur);
QString TexteInfoGrille(int largeur, int hauteur, int pasL, int pasH);
// "L x H" of a cell in whole microns, or "pas d'échelle".
QString TexteEquivMicrons(const QString& echellePix, const QString& echelleMic, int pasL, int pasH);
// The grid's steps run from 1 to 300: 0 and less become 1, more than 300 300.
int BornerPasGrille(int valeur);

// A collage larger than the picture: a file must leave a 60-pixel margin, the
// clipboard's picture may be as large as the picture.
bool CollageTropGrand(int largeurCollage, int hauteurCollage, int largeurImage, int hauteurImage,
                      bool depuisFichier);
// The collage's border: the outer `epaisseur` pixels of the picture.
void BorderCollage(QImage& collage, int epaisseur, int32_t couleur);

// Limits of the memory as the window counts it.
constexpr int kUndoMax = 200;
constexpr int kDernierCollerTexte = 198;  // CollerTexte refuses above this count

}  // namespace tg
