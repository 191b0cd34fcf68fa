#include "measure/ExtrapolationFocale.h"

#include <cmath>
#include <vector>

#include "core/SessionRecord.h"
#include "measure/TableMesure.h"
#include "measure/modOpTableMesure.h"
#include "platform/Liste.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"
#include "platform/Fichiers.h"

namespace tg {

namespace {
// The trap's report of the dialog.
QString ErreurFeuille(int numero, const QString& texte) {
  const QString rapport =
      QStringLiteral("Error %1 (%2) in procedure %3 of Feuille frmExtrapolFocale").arg(numero).arg(texte, kProcedureCalcul);
  return numero == 75 ? AvecRaison(rapport) : rapport;
}

double Valeur(const QString& t) {
  double v = 0;
  LireNombre(t, v);
  return v;
}
}  // namespace

bool SupprimerDoublons(SerieFocale& s) {
  bool supprime = false;
  for (int i = s.Nombre() - 1; i >= 0; --i) {
    const int premier = int(s.focales.indexOf(s.focales[i]));
    if (premier != i) {
      s.focales.removeAt(i);
      s.numeros.removeAt(i);
      supprime = true;
    }
  }
  while (s.deviations.size() > s.focales.size()) s.deviations.removeLast();
  while (s.deviations.size() < s.focales.size()) s.deviations << QString();
  return supprime;
}

void TrierSerie(SerieFocale& s) {
  for (int i = 1; i < s.Nombre(); ++i) {
    const double v = Valeur(s.focales[i]);
    for (int j = 0; j < i; ++j) {
      if (v < Valeur(s.focales[j])) {
        s.focales.move(i, j);
        s.numeros.move(i, j);
        s.deviations.move(i, j);
        break;
      }
    }
  }
}

SerieFocale SerieDeLaTable(int numero, SessionRecord& s, bool depuisCartouche, bool* doublons) {
  ListeSimple focales, numeros;
  SelectionnerGroupe(numero, focales, numeros, depuisCartouche, s);
  SerieFocale serie;
  serie.focales = focales.items;
  serie.numeros = numeros.items;
  for (int i = 0; i < serie.Nombre(); ++i) serie.deviations << QString();
  const bool d = SupprimerDoublons(serie);
  if (doublons) *doublons = d;
  TrierSerie(serie);
  return serie;
}

Extrapolation CalculerExtrapolation(const SerieFocale& serie, float focaleAPN, const QString& separateur) {
  Extrapolation r;
  const int n = serie.Nombre();
  if (n < 2) {
    r.refus = QStringLiteral("Il faut au moins %1 éléments pour calculer un coefficient !").arg(2);
    return r;
  }
  std::vector<float> focales(size_t(n) + 1, 0.0f), pixels(size_t(n) + 1, 0.0f), microns(size_t(n) + 1, 0.0f);
  FichierMesure f;
  if (!f.Ouvrir()) {
    r.refus = ErreurFeuille(f.Erreur().numero, f.Erreur().texte);
    return r;
  }
  const int entete = f.LireEntete();
  for (int i = 0; i < n; ++i) {
    const int emplacement = serie.numeros[i].toInt() + 1;
    if (emplacement < 2 || entete < 1) return r;  // no table: no result, said nothing
    EnrMesure e;
    if (!f.LireEnr(emplacement, e)) {
      r.refus = ErreurFeuille(f.Erreur().numero, f.Erreur().texte);
      return r;
    }
    focales[size_t(i)] = e.Focale;
    pixels[size_t(i)] = float(e.Pix);
    microns[size_t(i)] = float(e.Mic);
  }
  f.Fermer();
  ListeSimple deviations;
  r.coeff = CoeffFocale(focales, pixels, microns, &deviations, separateur);
  r.deviations = deviations.items;
  r.millePix = UmPourMillePix(focaleAPN, r.coeff);
  if (r.millePix == 0) {
    // 1000 / 0: the trap of the calculation reports it.
    r.refus = ErreurFeuille(11, QStringLiteral("Division par zéro"));
    return r;
  }
  r.pixPour100 = int16_t(VersEntier(Arrondir(1000.0 / r.millePix * 100.0, 2)));
  r.calcule = true;
  return r;
}

int EchelleDeviations(const QStringList& deviations, bool& alerte) {
  double max = 0;
  for (const QString& d : deviations) max = std::max(max, std::fabs(Valeur(d)));
  alerte = max > 15;
  return int(VersEntier(2 * max));
}

bool Encadrer(const SerieFocale& s, float focale, int& inferieure, int& superieure) {
  inferieure = superieure = -1;
  int i = s.Nombre() - 1;
  for (; i >= 0; --i)
    if (Valeur(s.focales[i]) < focale) {
      inferieure = i;
      break;
    }
  for (int j = std::max(i, 0); j < s.Nombre(); ++j)
    if (Valeur(s.focales[j]) > focale) {
      superieure = j;
      break;
    }
  const bool bas = inferieure >= 0 && Valeur(s.focales[inferieure]) > 0;
  const bool haut = superieure >= 0 && Valeur(s.focales[superieure]) > 0;
  return bas && haut;
}

QString TexteEchelleExtrapolee(float focale, int16_t pixPour100, const QString& separateur) {
  return QStringLiteral("F:") + TexteReel(focale, separateur) + QStringLiteral("mm    100 µm = ") +
         QString::number(pixPour100) + QStringLiteral(" pixels");
}

}  // namespace tg
