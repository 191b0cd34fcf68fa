#include "platform/Nombres.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace tg {

namespace {
template <typename T>
QString Shortest(T valeur, const QString& separateur) {
  char tampon[64];
  auto [fin, ec] = std::to_chars(tampon, tampon + sizeof tampon, valeur);
  if (ec != std::errc()) return QString();
  QString texte = QString::fromLatin1(tampon, int(fin - tampon));
  texte.replace(QLatin1Char('.'), separateur);
  return texte;
}
}  // namespace

QString TexteReel(float valeur, const QString& separateur) { return Shortest(valeur, separateur); }
QString TexteReel(double valeur, const QString& separateur) { return Shortest(valeur, separateur); }

double Arrondir(double valeur, int decimales) {
  const double facteur = std::pow(10.0, decimales);
  // nearbyint follows the default rounding mode: to nearest, ties to even.
  return std::nearbyint(valeur * facteur) / facteur;
}

long long VersEntier(double valeur) { return std::llrint(valeur); }

}  // namespace tg
