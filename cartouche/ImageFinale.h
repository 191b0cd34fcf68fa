#pragma once
// Composition of the final picture from three layers: the background canvas,
// the formatted image and the drawn cartouche. All in memory through the
// imaging contract; no temporary file.
#include <QColor>
#include <QImage>
#include <QRect>
#include <QPoint>
#include <QString>
#include <QStringList>

#include "imaging/Bitmap.h"

namespace tg {

class cAdvancedImagery;

struct ParamsImageFinale {
  int largeurFond = 0, hauteurFond = 0;  // background canvas, pixels
  int hauteurCartouche = 0;              // 60, 103, 64 or 40
  QString cartoucheHB = "1";             // "1": under the image, "0": on it
  float cadrageFormate = 0;              // width / height of the formatted image
  int optAlign = 0;                      // 0 top left, 1 centred, 2 top right
  int optTransparence = 0;               // 0 none, 1 "Moyenne", 2 "Complète"
};

// y of the cartouche on the background. The RN shapes (3:2 image as wide as
// the background) put it directly under the image; hauteurFormatee is the
// value before any one-pixel correction.
int HautCartouche(const ParamsImageFinale& p, int largeurFormatee, int hauteurFormatee);

// Top-left corner of the image on the background for optAlign; centring
// rounds half to even and takes the cartouche's rows out of the height; y is
// never negative.
QPoint PositionImage(const ParamsImageFinale& p, int largeurFormatee, int hauteurFormatee);

// The part of the formatted picture that a cartouche drawn over it covers,
// in the picture's pixels; empty when the cartouche lies under the picture.
QRect ZoneSousCartouche(const ParamsImageFinale& p, int largeurFormatee, int hauteurFormatee);
// Mean luminance (0.299 R + 0.587 G + 0.114 B, 0 to 255) of `image` in
// `zone`; -1 when the zone holds no pixel.
double LuminanceMoyenne(const QImage& image, const QRect& zone);
// The "auto" colour of text and bar: near-black 0x202020 or near-white
// 0xF0F0F0 (0xBBGGRR), whichever lies further from the luminance under them.
int CouleurContrastee(double luminance);

// Alpha of the cartouche's background colour: 255, 100 or 0.
int AlphaTransparence(int optTransparence);

// Ticked treatments, each caption followed by "/": "Niveaux/Bruit/".
QString TraitementTexte(const QStringList& legendes, const QList<bool>& coches);
// A field still showing "*** Champ inutilisé ***" is written as empty.
QString SansChampInutilise(const QString& texte);

// ConstruireImageFinal. `imageFormatee` (and its size) may be corrected by
// one pixel to fill the background, and is kept for a rebuild. The
// background canvas is largeurFond x hauteurFond of p, in `couleurFond`,
// made straight at the program's depth; `picCartouche`
// the drawn cartouche whose background colour is `fondCartouche`. No step
// stops the building: each failure adds its message to `messages` and the
// next step runs. True when `sortie` holds the composed picture; on false
// the session must be left as it was.
bool ConstruireImageFinal(cAdvancedImagery& ia, Bitmap& imageFormatee, int& largeurFormatee,
                          int& hauteurFormatee, const QColor& couleurFond, const QImage& picCartouche,
                          const QColor& fondCartouche, const ParamsImageFinale& p, Bitmap& sortie,
                          QStringList& messages);

}  // namespace tg
