#pragma once
// The geometry of the lines, arrows and dimension lines of the annotation
// window, without its widgets. Screen y grows downward; angles are in
// degrees, 0 to the right and 90 upward, so every formula subtracts the sine
// term from y. The line's angle itself comes from CalculAngle, shared with
// the measuring window (measure/GeometrieMesure.h).
#include <QString>
#include <utility>

namespace tg {

struct PointF {
  float x = 0, y = 0;
};
struct Trait {
  PointF de, a;
};

// The snapped direction (0, 45 ... 315) of an angle. A fixed chain of tests
// in which a later one overrides an earlier one makes the sectors unequal
// (30 to 60 degrees wide), as the program has always drawn them.
int AngleBride(double angle);

// BriderLigne: the end of the snapped line from (x0, y0), of length
// `longueur`, in the snapped direction `angleBride`.
PointF FinBridee(PointF depart, int angleBride, float longueur);

// The length a line is drawn with: less the pointer's size for a circle
// pointer outside the dimension mode, so that the line ends at the rim.
float LongueurTracee(float longueurLigne, int pointerSize, bool cerclePointeur);

// SoustrairePointeur: from the mouse (x, y), back along the line by
// LongueurLigne - PointerSize (the circle's rim); negative for a line shorter
// than the pointer, which then runs backwards through the start.
PointF SoustrairePointeur(PointF souris, float longueurLigne, int pointerSize, double angleLigne);

// CalculerMillieuLigne: halfway back along the line from its end.
PointF CalculerMillieuLigne(PointF fin, float longueurLigne, double angleLigne);

// DessinerExtLigne: two strokes of `longueur` from (x, y), at plus and minus
// `angle` around the line's direction (an arrow: the arrow angle and the
// pointer's size; a dimension tick: 90 and 4).
std::pair<Trait, Trait> DessinerExtLigne(PointF p, double angle, int longueur, double angleLigne);

// True for the eight clean directions that the angle label shows in bold
// while the snap box is unchecked.
bool DirectionNette(long long degres);

// The value a dimension line writes: whole microns of the drag's length
// (EchelleMic / EchellePix microns a pixel), " v µm" or in mm to 1 decimal
// with the system's separator; empty when either scale text is empty or no
// number.
QString TexteCote(float longueurPixels, const QString& echellePix, const QString& echelleMic, bool enMm,
                  const QString& unite, const QString& separateur);
// The rotation in degrees that keeps a dimension's value upright; 0 on the
// axes (a vertical dimension carries horizontal text, as wanted).
double RotationCote(double angleLigne);

}  // namespace tg
