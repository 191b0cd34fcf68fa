#pragma once
// The ruling of a stage micrometer found on its photo: its direction and its
// period in photo pixels, measured over all its graduations at once to a small
// fraction of a pixel. Tiles' spectra find where the ruling lies, its direction
// and a coarse period; the picture averaged along the graduations gives a
// profile whose spectrum and graduation centres give the period. A photo with
// no regular ruling is refused, never given a made-up period.
#include <QString>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tg {

enum class FormatPixels { Gris8, BGR24, BGRA32 };

// Pixels read in place: rows from the top, `pas` bytes apart (negative for a
// bottom-up bitmap, `pixels` then pointing at the top row).
struct VuePixels {
  const uint8_t* pixels = nullptr;
  int largeur = 0, hauteur = 0;
  std::ptrdiff_t pas = 0;
  FormatPixels format = FormatPixels::Gris8;
};

// A rectangle of the photo, pixels.
struct ZoneReglette {
  int x = 0, y = 0, largeur = 0, hauteur = 0;
};

// One graduation used for the period: a segment over it, photo pixels, the
// centre of the top left pixel at (0, 0).
struct Graduation {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  int rang = 0;  // its place on the ruling, counted from the first one used
};

struct Reglette {
  double periode = 0;      // photo pixels from one graduation to the next
  double incertitude = 0;  // standard uncertainty of the period, photo pixels
  double angle = 0;        // direction across the graduations, degrees from
                           // the horizontal, counter-clockwise as seen, (-90, 90]
  std::vector<Graduation> graduations;
  int divisions = 0;       // from the first graduation used to the last
  double confiance = 0;    // 0 to 1
};

struct ResultatReglette {
  std::optional<Reglette> reglette;
  QString refus;  // why there is none, for the user
};

// The ruling in `zone` of the picture (the whole picture without one).
ResultatReglette TrouverReglette(const VuePixels& image, const std::optional<ZoneReglette>& zone = {});

// Pixels for 100 µm, and its uncertainty, with `division` microns between
// two graduations.
double PixelsPour100(const Reglette& r, double division);
double IncertitudePour100(const Reglette& r, double division);

// The length handed to a new table: a whole number of pixels for a whole
// number of microns, the largest power of ten of microns whose length stays
// below the table's 15000 pixels, so that rounding the pixels costs little.
struct LongueurTable {
  int pixels = 0;
  int microns = 0;
};
LongueurTable LongueurPourTable(const Reglette& r, double division);

// "400,12 pixels pour 100 µm (± 0,03)", with the decimal separator given.
QString TexteReglette(const Reglette& r, double division, const QString& separateur);
// "400,12 (± 0,03)": the uncertainty to two significant digits, the value to
// the same decimal.
QString TexteMesure(double valeur, double incertitude, const QString& separateur);

// The value of one division typed by the user, microns; empty when it is not a
// number above 0 and at most 10000.
std::optional<double> LireDivision(const QString& texte);
extern const QString TexteDivisionRefusee;

}  // namespace tg
