#pragma once
// Camera RAW files (CR2, CR3, NEF, ARW, ORF, RW2, RAF, PEF, DNG and the other
// types LibRaw knows) through LibRaw: demosaiced with the camera's white
// balance, in sRGB, 8 bits per channel, turned as the camera held it.
//
// The picture has the size of the camera's own JPEG when the file says it: a
// DNG's default crop, else the EXIF image width and height, centred in the
// slightly larger frame LibRaw gives (a Canon of 3504 x 2336 pixels gives
// 3522 x 2348). Measurement tables are made on JPEG photos and looked up by
// width: a RAW photo must match them, and a table made on it every other
// photo of that camera.
//
// The EXIF of a TIFF-shaped file (CR2, NEF, ARW, PEF, DNG, ORF, RW2) is read
// by the project's own parser; what it lacks (and all of it for CR3 and RAF)
// comes from LibRaw's own reading: maker, model, date, focal length, aperture,
// exposure, ISO.
#include <QImage>
#include <QString>

struct FIBITMAP;

namespace tg {

// A rectangle of a picture, in pixels from its top-left corner.
struct CadreRAW {
  int x = 0, y = 0, largeur = 0, hauteur = 0;
  bool operator==(const CadreRAW&) const = default;
};

// The part of LibRaw's output of largeur x hauteur (the sensor's frame,
// before any turning) that the camera's JPEG shows. A DNG default crop
// (`dng`, empty when the file has none) that lies inside wins; else the EXIF
// size, either way round, centred, when it is inside and at least 90 % of
// each side (a smaller EXIF size is another picture's, a resized JPEG's);
// else the whole frame.
CadreRAW CadreJpegAppareil(int largeur, int hauteur, int exifLargeur, int exifHauteur, const CadreRAW& dng);

// The file's own EXIF (its TIFF structure, or a CR3's CMT1 and CMT2 boxes)
// on a 1 x 1 bitmap with no pixels, read without LibRaw; a DNG's default
// crop in `dng` (empty when none). Null only when memory runs out.
FIBITMAP* ExifRAW(const QString& chemin, CadreRAW& dng);

// The picture decoded: `reduction` 1 whole, 2 at half size (LibRaw's
// half-size decode, four times fewer pixels, much faster), for a picture that
// goes straight to a much smaller output. The size of the whole picture,
// turned, comes back in largeurFichier x hauteurFichier. With `pixels` false,
// a bitmap of that size and its metadata with no pixels, nothing decoded.
// nullptr with a French message in `erreur` (LibRaw's words after it) when
// the file cannot be read, or when LibRaw met damaged or missing data; one
// naming LibRaw and its package when the library is missing (it is opened at
// the first read, not at start).
FIBITMAP* LireRAW(const QString& chemin, int reduction, int& largeurFichier, int& hauteurFichier, QString& erreur,
                  bool pixels = true);

// A picture of at most `cote` pixels on its longer side, turned: the
// preview stored in the file (a JPEG in most), else the picture decoded at
// half size and reduced. Null with `erreur` set on failure.
QImage VignetteRAW(const QString& chemin, int cote, QString& erreur);

// For tests of a missing library: from the next read on, LibRaw is looked
// for under `soname` (shipped by the Debian package `paquet`) instead of the
// name the build found; nullptr goes back to that one.
void BibliothequeRAWPourEssais(const char* soname, const char* paquet);

}  // namespace tg
