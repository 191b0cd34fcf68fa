// formater SOURCE CIBLE [--format 0-4] [--filtre 1-4] [--qualite Q] [--poids-max KO]:
// the road of a picture without a window: loaded, resized to an output
// format, tried as resultat.jpg and copied to CIBLE when its weight passes.
#include <QTextStream>

#include "cli/Commandes.h"
#include "core/Chargement.h"
#include "core/Enregistrement.h"
#include "core/Formats.h"
#include "core/Session.h"
#include "imaging/cAdvancedImagery.h"

namespace tg::cli {
namespace {

int Formater(const QStringList& arguments) {
  QTextStream sortie(stdout);
  QTextStream erreurs(stderr);
  QStringList fichiers;
  int format = 2, filtre = 3, qualite = 94, poidsMax = 0;
  for (int i = 0; i < arguments.size(); ++i) {
    const QString& a = arguments[i];
    int* cible = a == u"--format"      ? &format
                 : a == u"--filtre"    ? &filtre
                 : a == u"--qualite"   ? &qualite
                 : a == u"--poids-max" ? &poidsMax
                                       : nullptr;
    if (cible == nullptr) {
      fichiers << a;
      continue;
    }
    bool ok = false;
    if (i + 1 < arguments.size()) *cible = arguments[++i].toInt(&ok);
    if (!ok) {
      erreurs << "Valeur manquante ou non numérique après " << a << "\n";
      return 2;
    }
  }
  if (fichiers.size() != 2 || format < 0 || format > 4 || filtre < 1 || filtre > 4 || qualite < 1 ||
      qualite > 100 || poidsMax < 0) {
    erreurs << "Usage : formater SOURCE CIBLE [--format 0-4] [--filtre 1-4] [--qualite 1-100] "
               "[--poids-max KO]\n";
    return 2;
  }

  SessionRecord s;
  cAdvancedImagery ai;
  DefinirFormat(s, format);
  s.ChoixFormat = int16_t(format);
  if (!ChargerBitmap(s, ai, fichiers[0])) {
    erreurs << "Votre fichier n'est pas une image reconnue (" << ai.Error_GetLast() << ")\n";
    return 3;
  }
  RemplirSession(s, ai, fichiers[0]);
  if (!RedimensionnerSession(s, ai, filtre)) {
    erreurs << "Error - " << ai.Error_GetLast() << "\n";
    return 3;
  }
  const ResultatEssai r = PreparerResultat(s, ai, EnrJPEG, qualite);
  for (const QString& e : r.erreurs) erreurs << e << "\n";
  if (poidsMax > 0 && !PoidsAccepte(r.poids, poidsMax)) {
    erreurs << TexteTropLourd(poidsMax) << "\n";
    return 3;
  }
  if (!CopierResultat(fichiers[1])) {
    erreurs << "Erreur : impossible d'écrire " << fichiers[1] << "\n";
    return 3;
  }
  sortie << s.Largeur << " x " << s.Hauteur << ", " << int(r.poids) << " ko\n";
  return 0;
}

const Enregistrement enregistrement(
    "formater",
    "formater SOURCE CIBLE [--format 0-4] [--filtre 1-4] [--qualite 1-100] [--poids-max KO]   "
    "(redimensionne au format de sortie et enregistre en JPEG)",
    Formater);

}  // namespace
}  // namespace tg::cli
