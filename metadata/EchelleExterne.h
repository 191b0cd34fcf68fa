#pragma once
// A scale written by other programs, for a picture without a comment block of
// ours: an ImageJ description (TIFF saved calibrated: "ImageJ=", "unit=",
// the resolution in pixels per unit); what slide scanners and microscopy
// software write in a TIFF's description (Aperio's "MPP = ", OME-XML's
// PhysicalSizeX with its unit, Philips' DICOM_PIXEL_SPACING in millimetres)
// or in Zeiss LSM's own tag (the voxel's width in metres); a TIFF or JPEG
// (EXIF) resolution in pixels per centimetre (ResolutionUnit 3), a PNG pHYs
// in pixels per metre.
#include <QByteArray>
#include <QString>
#include <optional>

namespace tg::meta {

struct EchelleExterne {
  double micronsParPixel = 0;
  QString source;  // "ImageJ", "Aperio", "OME", "Philips", "Zeiss LSM", "TIFF", "EXIF" or "PNG pHYs"
};

// The scale of the file, in microns per pixel of its own size; none when the
// file carries none, or only a print resolution: without an ImageJ unit, a
// pixel of more than 50 µm (under about 500 dots per inch) is taken for one.
std::optional<EchelleExterne> LireEchelleExterne(const QString& chemin);

// The same from an ImageJ description and the resolution beside it (pixels
// per unit); none when the description is not ImageJ's or its unit is none
// of micron, µm, um, nm, mm, cm, m.
std::optional<double> MicronsParPixelImageJ(const QString& description, double pixelsParUnite);

// The microns per pixel of the full-size picture that a slide scanner's or a
// microscopy program's description gives, with the name of its convention;
// none when it gives none, or zero, or a unit the program does not know.
std::optional<EchelleExterne> EchelleDescription(const QString& description);

// Zeiss LSM's CZ_LSMINFO block (TIFF tag 34412, little-endian): the voxel's
// width, a double in metres at byte 40, as microns; none when absent or 0.
std::optional<double> MicronsParPixelLSM(const QByteArray& bloc);

}  // namespace tg::meta
