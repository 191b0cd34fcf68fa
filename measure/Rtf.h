#pragma once
// The notebook's rich text: the report's lines in Arial 8, the title block
// bold and blue, the headings bold, and the thumbnail as a JPEG picture
// embedded in the file (\pict\jpegblip, hex data).
#include <QByteArray>
#include <QList>
#include <QString>

#include "measure/Carnet.h"

class QTextDocument;

namespace tg {

class Bitmap;
class cAdvancedImagery;

// The thumbnail: a copy of `image` `largeur` pixels wide, height in
// proportion, as JPEG bytes. False after an imaging failure, with the
// layer's last error.
struct Vignette {
  QByteArray jpeg;
  int largeur = 0, hauteur = 0;  // pixels
};
bool CreerVignette(cAdvancedImagery& ai, const Bitmap& image, int largeur,
                   const QString& dossierTemporaire, Vignette& sortie);

// The whole RTF document (7-bit bytes; other characters as \'xx of
// Windows-1252). Without JPEG bytes the thumbnail line is left out.
QByteArray EcrireRtf(const QList<LigneRapport>& lignes, const Vignette& vignette);
// Writes it; false when the file cannot be written.
bool EnregistrerRtf(const QString& chemin, const QList<LigneRapport>& lignes,
                    const Vignette& vignette);

// The report as the user left it in the preview: each paragraph of `doc`
// with its bold, italic, underline, colour and size; the image named
// "vignette" as the thumbnail's own JPEG bytes, any other image of the
// document as a JPEG of its picture.
QByteArray EcrireRtf(const QTextDocument& doc, const Vignette& vignette);
bool EnregistrerRtf(const QString& chemin, const QTextDocument& doc, const Vignette& vignette);

}  // namespace tg
