#include "annotation/GeometrieAnnotation.h"

#include <cmath>

#include "platform/Nombres.h"
#include "platform/Textes.h"

namespace tg {

namespace {
// The program's own value of pi, kept for identical drawings.
constexpr double kPi = 3.14159265358979;
double Radians(double degres) { return degres * kPi / 180.0; }

PointF Depuis(PointF p, double longueur, double degres) {
  const double t = Radians(degres);
  return {float(p.x + longueur * std::cos(t)), float(p.y - longueur * std::sin(t))};
}
}  // namespace

int AngleBride(double a) {
  int s = 0;
  // Lower bounds included, upper bounds excluded; a later test wins.
  if (a >= 60 && a < 120) s = 90;
  if (a >= 15 && a < 75) s = 45;
  if ((a >= 0 && a < 30) || (a >= 330 && a < 360)) s = 0;
  if (a >= 285 && a < 345) s = 315;
  if (a >= 240 && a < 300) s = 270;
  if (a >= 195 && a < 255) s = 225;
  if (a >= 150 && a < 210) s = 180;
  if (a >= 105 && a < 165) s = 135;
  return s;
}

PointF FinBridee(PointF depart, int angleBride, float longueur) { return Depuis(depart, longueur, angleBride); }

float LongueurTracee(float longueurLigne, int pointerSize, bool cerclePointeur) {
  return cerclePointeur ? longueurLigne - float(pointerSize) : longueurLigne;
}

PointF SoustrairePointeur(PointF souris, float longueurLigne, int pointerSize, double angleLigne) {
  return Depuis(souris, double(longueurLigne) - pointerSize, angleLigne - 180);
}

PointF CalculerMillieuLigne(PointF fin, float longueurLigne, double angleLigne) {
  return Depuis(fin, double(longueurLigne / 2.0f), angleLigne - 180);
}

std::pair<Trait, Trait> DessinerExtLigne(PointF p, double angle, int longueur, double angleLigne) {
  return {Trait{p, Depuis(p, longueur, angle + angleLigne)}, Trait{p, Depuis(p, longueur, angleLigne - angle)}};
}

bool DirectionNette(long long d) { return d >= 0 && d <= 315 && d % 45 == 0; }

QString TexteCote(float longueurPixels, const QString& echellePix, const QString& echelleMic, bool enMm,
                  const QString& unite, const QString& separateur) {
  double pix = 0, mic = 0;
  if (echellePix.isEmpty() || echelleMic.isEmpty() || !LireNombre(echellePix, pix) || !LireNombre(echelleMic, mic) ||
      pix == 0)
    return {};
  const float micronsParPixel = float(mic) / float(pix);
  const long long v = VersEntier(double(longueurPixels) * double(micronsParPixel));
  if (!enMm) return QStringLiteral(" %1 %2").arg(v).arg(unite);
  return QStringLiteral(" %1 %2").arg(TexteReel(Arrondir(double(v) / 1000.0, 1), separateur), unite);
}

double RotationCote(double a) {
  if (a > 0 && a < 90) return a;
  if (a > 270) return a;
  if (a > 180 && a < 270) return a - 180;
  if (a > 90 && a < 180) return a + 180;
  return 0;
}

}  // namespace tg
