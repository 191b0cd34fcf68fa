#pragma once
// The crop frame's arithmetic without its window. The frame is drawn on the
// reduced copy (LargeurMesure x HauteurMesure); CoefAffichage picture pixels
// stand for one pixel of the copy.
#include <QString>
#include <cstdint>

namespace tg {

struct SessionRecord;
class cAdvancedImagery;

// The frame on the reduced copy and its rectangle in picture pixels.
struct Cadre {
  float largeur = 0, hauteur = 0;  // on the copy
  float posG = 0, posH = 0;        // left and top on the copy
  int32_t CadreL = 0, CadreH = 0, CadreG = 0, CadreHaut = 0, CadreD = 0, CadreB = 0;
};

// MajCadre: the rectangle in picture pixels; sizes truncated, position
// rounded. Nothing when the copy has no size.
void MajCadre(Cadre& c, int32_t largeurImage, int32_t largeurMesure);
float CoefAffichage(int32_t largeurImage, int32_t largeurMesure);

// Slider1's lower bound: ApnLargCourant / Largeur x 10000, truncated.
int32_t PositionSlider(int32_t apnLargCourant, int32_t largeurImage);

// "R=1: " and the reduction that the resizing will apply; empty on a picture
// already formatted.
QString TexteRatio(int32_t cadreL, int32_t apnLargCourant, bool dejaFormatee, const QString& separateur);

// The frame's ratio by option: 0 the format's (3 decimals), 1 1.504 (behind
// the caption "1.5"), 2 1.206, 3 1.0, 4 the typed value, its decimal sign read
// either way; an empty or unreadable typed value keeps `actuel`.
float RatioOption(int option, float ratioFormat, const QString& saisi, float actuel);

// cmdOK's checks: the message of the first refusal, empty when the frame
// passes. `debride`: the frame's width is not checked against the format.
QString RefusRecadrage(const Cadre& c, int32_t largeurImage, int32_t hauteurImage, bool debride,
                       int16_t apnLarg, int16_t apnHaut);
// The fixed size's check: the message, empty when it fits the picture.
QString RefusTailleFixe(int32_t largeur, int32_t hauteur, int32_t largeurImage, int32_t hauteurImage);

// The crop itself, cmdOK steps 4 and 6: ImageCourante becomes the rectangle
// (x, y, l, h) and the session's sizes follow it, LargeurRecadrage and
// HauteurRecadrage included, so that the scale refers to the crop. False, the
// session untouched, when the rectangle cannot be cut.
bool AppliquerRecadrage(SessionRecord& s, cAdvancedImagery& ai, int32_t x, int32_t y, int32_t l, int32_t h);

}  // namespace tg
