#pragma once
// What the library reads from a file, as text for people and as JSON for
// scripts (the keys are French and stable).
#include <QJsonObject>
#include <QString>

namespace tg::meta {

class CImage;

// `image` has been read. Keys: "type", and for a JPEG "segments", "jfif",
// "exif" (with "makernote" when the maker note reads as a directory:
// "fabricant", "version", "offset", "entrees"), "iptc", "commentaire"; for a TIFF "exif", "iptc" (the datasets in
// file order: "enregistrement", "jeu", "nom", "valeur"); for a PNG "png" (every chunk in
// file order: "type", "longueur", and "motcle", "texte" for the text chunks);
// for a GIF "gif" ("version", "largeur", "hauteur", "commentaire"); for a BMP
// "bmp" (the header fields under their names).
QJsonObject InfosJson(CImage& image);
QString InfosTexte(CImage& image);

// "FFE1" for the marker 0xE1FF.
QString TexteMarqueur(uint16_t marker);

}  // namespace tg::meta
