#pragma once
// TIFF pictures read through libtiff rather than through the imaging
// library, whose TIFF path reads freed memory on camera files (an ICC profile
// beside EXIF, GPS and IPTC). The first page becomes a 24-bit bitmap (32-bit
// when it has an alpha channel) with its resolution; the tags of IFD0 and of
// the EXIF and GPS directories, read by the project's own checked parser, go
// into the bitmap's metadata under the names the imaging library gives them,
// so that every reader of that metadata sees what it saw before.
#include <QByteArray>
#include <QString>

struct FIBITMAP;

namespace tg {

// nullptr with a French message in `erreur` (libtiff's own words after it)
// when the file cannot be read whole.
FIBITMAP* LireTIFF(const QString& chemin, QString& erreur);

// The tags of a TIFF structure (a TIFF or RAW file, the EXIF block of a HEIF
// file: header, IFD0 and its EXIF and GPS directories) into the bitmap's
// metadata, as LireTIFF attaches them. Nothing when the bytes are no TIFF.
// With `ifd0Exif`, IFD0 holds EXIF-directory tags (Canon CR3's CMT2 box) and
// goes where the EXIF directory goes.
void AttacherExifTIFF(const QByteArray& octets, const QString& chemin, FIBITMAP* dib, bool ifd0Exif = false);

}  // namespace tg
