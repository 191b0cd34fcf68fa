#pragma once
// The focal length extrapolation without its window: a series of tables of
// one set-up at several focal lengths, the mean coefficient of pixels per
// 100 microns per mm of focal length, and the scale at the photo's focal
// length.
#include <QString>
#include <QStringList>
#include <cstdint>

namespace tg {

struct SessionRecord;

// The three lists of the dialog, row by row: focal length (text), table
// number, deviation from the mean (percent, 1 decimal; empty before the
// calculation).
struct SerieFocale {
  QStringList focales, numeros, deviations;
  int Nombre() const { return int(focales.size()); }
};

// The series of table `numero` (same model, microscope, set-up, width and
// objective), its duplicates removed and sorted. `doublons` tells whether
// a focal length appeared twice ("Doublons supprimés !").
SerieFocale SerieDeLaTable(int numero, SessionRecord& s, bool depuisCartouche, bool* doublons = nullptr);
// From the last row to the first, a row whose focal text appeared before is
// dropped; true when one was. The deviations follow the rows' count.
bool SupprimerDoublons(SerieFocale& serie);
// Ascending by numeric focal length, by insertion, numbers with their rows.
void TrierSerie(SerieFocale& serie);

struct Extrapolation {
  bool calcule = false;
  float coeff = 0;          // pixels per 100 microns per mm of focal length
  int16_t millePix = 0;     // microns for 1000 pixels at the photo's focal length
  int16_t pixPour100 = 0;   // pixels for 100 microns at that focal length
  QStringList deviations;   // one a row
  QString refus;            // why there is no result (French message)
};
// Steps 1 to 6 of the calculation: each row's table read from the store, the
// mean coefficient, MillePix at `focaleAPN`, then PixPour100 from the already
// rounded MillePix (1000 / MillePix x 100, to 2 decimals, then to a whole
// number), as the program has always done it. Fewer than 2 rows, or a
// MillePix of 0 (a focal length of 0 in a table), gives a refusal.
Extrapolation CalculerExtrapolation(const SerieFocale& serie, float focaleAPN, const QString& separateur);
inline const QString kProcedureCalcul = QStringLiteral("cmdCommand_Click");

// The graph's half range: the largest absolute deviation, twice, rounded;
// `alerte` when one is above 15 percent (15 itself passes).
int EchelleDeviations(const QStringList& deviations, bool& alerte);
inline const QString kAlerteDeviation =
    QStringLiteral("Une table affiche plus de 15% de déviation !\nIl y a peut-être une erreur dans vos tables ... ?");

// cmdAplatir: the rows just below and just above `focale` (strictly), or
// false when either is missing.
bool Encadrer(const SerieFocale& serie, float focale, int& inferieure, int& superieure);

// "F:" focal "mm    100 µm = " pixels " pixels".
QString TexteEchelleExtrapolee(float focale, int16_t pixPour100, const QString& separateur);

}  // namespace tg
