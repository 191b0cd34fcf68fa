#pragma once
// The arithmetic of the scale: from a measurement table or the three inputs
// (pixels, microns of the original photo, real length of the bar) to the
// microns per pixel of the final image and the bar's length in pixels.
// Single precision where the form keeps its values in 32-bit floats.
#include <QString>
#include <optional>

#include "measure/TableMesure.h"

namespace tg {

// A bar of this many pixels or more does not fit the left half of the
// cartouche, whatever the output width.
constexpr float kEchelleMaxPixels = 480.0f;

// Applying table `t` at the objective typed as `objectif` (either decimal
// sign): microns per pixel at that objective, in f32:
//   A = Mic / Pix, B = A x Obj, M = B / objectif.
// nullopt when the objective is not a number or is 0, or the table holds 0
// pixels or 0 microns (the form shows its trapped-error message and keeps
// its inputs).
std::optional<float> MicronsParPixelTable(const EnrMesure& t, const QString& objectif);

// The equivalence shown after applying a table is always that of 100
// microns: txtPix = Round(100 / M, 0), ties to even, as text.
QString PixPourCentMicrons(float micronsParPixel);

// The width the scale refers to: the crop's width when the photo was
// cropped in both directions; a crop with one side 0 is ignored.
int LargeurRefEchelle(int largeurOrigine, int largeurRecadrage, int hauteurRecadrage);

struct EntreesEchelle {
  double mic = 0;       // txtMic, microns of the equivalence
  double pix = 0;       // txtPix, pixels of the equivalence on the original photo
  double longueur = 0;  // txtLongueur, real length of the bar, microns
  int largeurOrigine = 0;
  int largeurRecadrage = 0;
  int hauteurRecadrage = 0;
  int largeurFormatee = 0;  // width of the formatted image, pixels
};

struct ResultatEchelle {
  float micronsParPixel = 0;  // of the final image; set even when the bar is refused
  float echellePixels = 0;    // bar length, pixels, rounded to 3 decimals
  bool valide = false;        // false: bar of kEchelleMaxPixels or more
};

// InitVarEchelle without its message: the caller shows "Echelle trop longue
// (saisir une valeur plus petite)" when the result is not valide. pix and
// the reference width must be above 0 (checked before by the form).
ResultatEchelle CalculerEchelle(const EntreesEchelle& e);

// The "auto" bar length, microns: 1, 2 or 5 times a power of ten, the
// longest whose bar stays under kEchelleMaxPixels and fills at most 25 % of
// the picture's width; 0 when the scale is not above 0.
double LongueurAuto(float micronsParPixel, int largeurImage);

// cmdModifDefinition: ratio of the table's width to the photo's, and the
// photo width shown in the question. A landscape photo turned gives 0 and 0.
struct RapportDefinition {
  float q = 0;
  int largeur = 0;
};
RapportDefinition CalculerRapportDefinition(bool portraitOrigine, bool imageTournee,
                                            int largeurOrigine, int hauteurOrigine, int largPix);

// The corrected pixels of the equivalence, Round(pix / Q, 2), when the
// answer "Yes" has an effect: the widths differ and the focal lengths are
// equal. nullopt: nothing to do (also when Q is 0, which would divide by 0).
std::optional<double> PixCorrige(double pix, const RapportDefinition& r, int largPix,
                                 float focaleApn, float focaleTable);

// The question of cmdModifDefinition_Click, lines ended by CR LF.
QString QuestionModifDefinition(int largeurPhoto, int largPix);

// Text of txtLargeur: W = largeurOrigine, C = largeurCadrage, H = hauteurOrigine.
QString TexteLargeurPhoto(bool imageTournee, bool portraitOrigine, int largeurOrigine,
                          int largeurCadrage, int hauteurOrigine);

// Messages of the scale frames.
inline const char* const kEchelleTropLongue = "Echelle trop longue (saisir une valeur plus petite)";
inline const char* const kTitreChampsVides = " Champs vide";
inline const char* const kChampsVides = "Vous devez choisir une table et un objectif !";
inline const char* const kTitreLargeurFocale = "Largeur et/ou Focale";
inline const char* const kEtatActive = "Etat = activé !\r\nVérifiez : obj/micro/connection";
inline const char* const kAucuneCorrespondance =
    "Aucune correspondance\r\ntoutes les tables sont visibles";
// The question asked when an unfiltered table does not fit the photo.
QString QuestionLargeurFocale();

// Automatic choice of tables at each opening of the frame: which filtered
// list to build. A file without a focal length gets none, and so all tables.
enum class FiltreAuto { Aucun, AvecModele, SansModele };
FiltreAuto ChoisirFiltreAuto(const QString& modele, float focaleApn);
// cmdExtrapolFoc needs a camera model and a focal length.
bool ExtrapolationPossible(const QString& modele, float focaleApn);

// Slot of the table chosen at `position` of comboTables: position + 1 in the
// full list, the hidden list's number + 1 in a filtered one. 0: none.
int SlotTableChoisie(int position, bool sansFiltre, const QString& numeroIndex);
// "(Table : obj. de réf = x40)", the objective in its shortest text.
QString TexteObjRef(const EnrMesure& t, const QString& separateur);
// An unfiltered table is applied without question only to a photo of its
// width and focal length.
bool TableCorrespond(const EnrMesure& t, int largeurOrigine, float focaleApn);

// Reduction shown after "R = 1:" (one decimal, f32) and the one kept in the
// comment block (two decimals). A picture already formatted keeps the
// reduction of its first formatting.
float ReductionAffichee(int largeurRecadrage, int largeur, int largeurOrigine,
                        bool imageDejaFormatee, float reductionImage);
float ReductionComment(int largeurRecadrage, int largeur, int largeurOrigine,
                       bool imageDejaFormatee, float reductionImage);

}  // namespace tg
