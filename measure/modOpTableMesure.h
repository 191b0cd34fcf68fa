#pragma once
// Everything that reads the measurement tables for the rest of the program:
// list fillers, distinct values of a field, focal series, and the arithmetic
// of focal extrapolation. No state of its own: it works on table_mesure.dat,
// the transfer record TableMesure() and the session.
//
// The fillers write a visible list `combo` and, for most, a parallel hidden
// list `comboIndex` holding the table number (slot - 1) of each row, as text.
// Row 0 of both is a blank entry (number 0): "no table chosen". A trapped
// error shows the standard message "... of Module modOpTableMesure" and
// leaves the lists as far as they were filled.
#include <QString>
#include <vector>

#include "core/SessionRecord.h"
#include "measure/TableMesure.h"

namespace tg {

class IListe;

// `Choix` indexes a field: 1 Modele, 2 Micro, 3 Config, 4 LargPix.
enum ChoixChamp { ChoixModele = 1, ChoixMicro = 2, ChoixConfig = 3, ChoixLargeur = 4 };

// The one form in which a table is shown anywhere:
// "<n>: <Modele>  (<LargPix>) obj. x<Obj> - F: <Focale> mm - <Micro> / <Config>",
// names cut of blanks, floats in their shortest text with `separateur`.
QString TexteTable(int numero, const EnrMesure& e, const QString& separateur);

// The width matched against LargPix: the height of the opened file stands in
// for its width when exactly one of PortraitOrigine and ImageTournee is set.
int LargeurReference(const SessionRecord& s);

// All tables.
void RemplirComboTable(IListe& combo, const QString& separateur);
// Tables fitting the image in hand: LargPix = LargeurReference and focal
// lengths equal at 1 decimal, and the model (upper-cased; the session's cut
// of blanks, the table's as stored) when `filtrerModele`. Trims s.Modele.
void RemplirComboTableFiltre(IListe& combo, IListe& comboIndex, bool filtrerModele,
                             SessionRecord& s);
// Tables of the same model and width, at any focal length. Trims s.Modele.
void RemplirComboTableExrapol(IListe& combo, IListe& comboIndex, SessionRecord& s);
// Tables whose field `choix` equals `valeur`: names exactly, case included;
// LargPix by numeric value.
void ComboTableSelonChoix(IListe& combo, IListe& comboIndex, int choix, const QString& valeur,
                          const QString& separateur);
// The distinct values of one field, sorted, after a first entry of two blanks.
// A `choix` outside 1..4 adds nothing.
void ExtraireChoix(IListe& combo, int choix);

// The focal series of table `indice`: every table with the same Modele, Micro
// and Config (upper-cased), LargPix and Obj. Adds each one's Focale (text)
// and number. With `depuisCartouche`, also copies Micro to s.Microscope and
// Modele to s.Modele, so that the cartouche shows the tables' spelling.
void SelectionnerGroupe(int indice, IListe& lstFocale, IListe& lstNumero, bool depuisCartouche,
                        SessionRecord& s);

// Mean coefficient of a focal series, in pixels per 100 microns per mm of
// focal length, in f32. The arrays run from 0 to N (N = size of `focales` -
// 1); entries 0 to N - 1 are used, the last is a spare. An empty array
// stands for one never dimensioned. Each table's deviation from the mean, in
// percent rounded to 1 decimal, goes to `deviations` (cleared first) when
// given. 0 when a pixel, micron or focal entry is 0, or the mean is not above 0.
float CoeffFocale(std::vector<float> focales, std::vector<float> pixels, std::vector<float> microns,
                  IListe* deviations, const QString& separateur);

// Microns covered by 1000 pixels at `focale` with `coeff`:
// 1000 / focale / coeff x 100 rounded to nearest (ties to even), as a 16-bit
// integer. 0 when an argument is not above 0 or the result is below 1; a
// result over 32767 overflows: the standard message, and 0.
int16_t UmPourMillePix(float focale, float coeff);

// The search of the manager: upper-cased `nom` against the upper-cased
// pattern, where only '*' (any run, empty included) and '?' (one character)
// are special.
bool CorrespondMotif(const QString& nom, const QString& motif);

}  // namespace tg
