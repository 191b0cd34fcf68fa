#pragma once
// Numbers as the program shows them: shortest text of a float with the
// locale's decimal separator; rounding to nearest, ties to even.
#include <QString>

namespace tg {

// Shortest text that reads back as the same float, "." replaced by `separateur`.
QString TexteReel(float valeur, const QString& separateur);
QString TexteReel(double valeur, const QString& separateur);
// Rounds to `decimales` decimals, ties to even.
double Arrondir(double valeur, int decimales = 0);
// Float to integer, to nearest, ties to even.
long long VersEntier(double valeur);

}  // namespace tg
