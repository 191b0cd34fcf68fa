#pragma once
// HEIC, HEIF and AVIF pictures (phones save HEIC) through libheif: the
// primary picture with its rotation, mirror and crop applied, 8 bits per
// channel whatever the source depth, 24 bits (32 with an alpha channel). Its
// EXIF block is read by the project's own parser into the bitmap's metadata
// under the imaging library's names, as for a TIFF. The EXIF orientation is
// not applied again: in these files the rotation boxes are what turns the
// picture, and libheif has applied them.
#include <QImage>
#include <QString>

struct FIBITMAP;

namespace tg {

// nullptr with a French message in `erreur` (libheif's own words after it)
// when the file cannot be read whole, or naming libheif and its package when
// the library is missing: it is opened at the first read, not at start. With
// `pixels` false: a bitmap of the picture's size and metadata with no pixels,
// nothing decoded.
FIBITMAP* LireHEIF(const QString& chemin, QString& erreur, bool pixels = true);

// A picture of at most `cote` pixels on its longer side, turned as the
// primary picture: the thumbnail stored in the file when there is one (phones
// store one of about 320 pixels), else the primary picture decoded and
// reduced. Null with `erreur` set on failure.
QImage VignetteHEIF(const QString& chemin, int cote, QString& erreur);

// For tests of a missing library: from the next read on, libheif is looked
// for under `soname` (shipped by the Debian package `paquet`) instead of the
// name the build found; nullptr goes back to that one.
void BibliothequeHEIFPourEssais(const char* soname, const char* paquet);

}  // namespace tg
