#pragma once
// What the library reads from a file, as text for people and as JSON for
// scripts (the keys are French and stable).
#include <QJsonObject>
#include <QString>

namespace tg::meta {

class CImage;

// `image` has been read. Keys: "type", and for a JPEG "segments", "jfif",
// "exif", "commentaire"; for a TIFF "exif".
QJsonObject InfosJson(CImage& image);
QString InfosTexte(CImage& image);

// "FFE1" for the marker 0xE1FF.
QString TexteMarqueur(uint16_t marker);

}  // namespace tg::meta
