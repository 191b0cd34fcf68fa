#pragma once
// A scale written by other programs, for a picture without a comment block of
// ours: an ImageJ description (TIFF saved calibrated: "ImageJ=", "unit=",
// the resolution in pixels per unit), a TIFF or JPEG (EXIF) resolution in
// pixels per centimetre (ResolutionUnit 3), a PNG pHYs in pixels per metre.
#include <QString>
#include <optional>

namespace tg::meta {

struct EchelleExterne {
  double micronsParPixel = 0;
  QString source;  // "ImageJ", "TIFF", "EXIF" or "PNG pHYs"
};

// The scale of the file, in microns per pixel of its own size; none when the
// file carries none, or only a print resolution: without an ImageJ unit, a
// pixel of more than 50 µm (under about 500 dots per inch) is taken for one.
std::optional<EchelleExterne> LireEchelleExterne(const QString& chemin);

// The same from an ImageJ description and the resolution beside it (pixels
// per unit); none when the description is not ImageJ's or its unit is none
// of micron, µm, um, nm, mm, cm, m.
std::optional<double> MicronsParPixelImageJ(const QString& description, double pixelsParUnite);

}  // namespace tg::meta
