#pragma once
// The tool settings of the annotation window, kept in UserAnnotation.ini in
// the program's folder. Colours are 0xBBGGRR integers; -1 is "none".
#include <QString>
#include <array>
#include <cstdint>

namespace tg {

struct ReglagesAnnotation {
  // [Texte]
  QString TxtFontName = QStringLiteral("Comic Sans MS");
  int32_t TxtFontColor = 0x404040;
  int16_t TxtFontSize = 12;
  bool TxtFontBold = false, TxtFontItalic = false, TxtFontUnderline = false;
  // [Fond]
  bool TxtBack = false;
  int32_t TxtBackColor = -1;
  // [Ligne]
  int16_t LineBorder = 2;  // pixels
  int32_t LineColor = 0x404040;
  // [Pointeur]
  int16_t PointerChoose = 3;  // 0 none, 1 circle, 2 square, 3 arrow
  int16_t PointerSize = 16;   // radius, side or arrow stroke, pixels
  float AngleFleche = 22.5f;  // half-angle of the arrow head, degrees
  // [Cotes]
  QString CoteFontName = QStringLiteral("Arial");
  int16_t CoteFontSize = 12;
  int32_t CoteColor = 0xFFFFFF;
  QString CoteUnite = QStringLiteral("µm");  // "µm" or "mm"
};

// UserAnnotation.ini of the program's folder.
QString CheminUserAnnotation();

// LectureIni: every key, its default when missing; a value that does not read
// as its type also gives the default (a hand-edited file never stops the window).
ReglagesAnnotation LireReglagesAnnotation(const QString& fichier);
// EcritureIni: TxtBack first follows the colour (true exactly when
// TxtBackColor is not -1), then every key in the order of the file. False when
// the file cannot be written.
bool EcrireReglagesAnnotation(ReglagesAnnotation& r, const QString& fichier);

// The six quick styles (picStyle): size, text colour, line colour, background.
struct StyleRapide {
  int16_t taille;
  int32_t couleurTexte, couleurLigne, fond;
};
extern const std::array<StyleRapide, 6> kStylesRapides;

// StylePerso: the style's values with the font "Comic Sans MS", no bold,
// italic or underline, and the line fixed at 2 pixels with a 16-pixel arrow
// of 22.5 degrees.
void AppliquerStyle(ReglagesAnnotation& r, const StyleRapide& style);

// optCouleurCotes: FFFFFF " Blanc", 404040 " Noir", C0C0C0 " Gris".
constexpr std::array<int32_t, 3> kCouleursCotes = {0xFFFFFF, 0x404040, 0xC0C0C0};
// The index of a dimension colour, -1 for any other colour.
int IndexCouleurCote(int32_t couleur);

// The cross-hair shapes of picPointeur (width, length in pixels) and the six
// colours of picCouleur.
struct FormeCroix {
  int16_t epaisseur, longueur;
};
constexpr std::array<FormeCroix, 5> kFormesCroix = {{{1, 0}, {1, 60}, {1, 1500}, {2, 60}, {2, 1500}}};
constexpr std::array<int32_t, 6> kCouleursCroix = {0x0000FF, 0x000000, 0xFF0000, 0x00FF00, 0xFFFFFF, 0xC0C0C0};
// The grid swatches of picColorGrille.
constexpr std::array<int32_t, 8> kCouleursGrille = {0x404040, 0xC0C0C0, 0x800000, 0xFF0000,
                                                    0x008000, 0xC0FFC0, 0xC000C0, 0xFFC0FF};

}  // namespace tg
