#include "metadata/EchelleExterne.h"

#include <QStringList>

#include "metadata/CImage.h"

namespace tg::meta {

namespace {

constexpr double PlusGrandPixel = 50;  // µm: larger is a print resolution

std::optional<EchelleExterne> Plausible(double micronsParPixel, const char* source) {
  if (!(micronsParPixel > 0) || micronsParPixel > PlusGrandPixel) return std::nullopt;
  return EchelleExterne{micronsParPixel, QString::fromLatin1(source)};
}

// From IFD0: an ImageJ description first, else a resolution in centimetres.
std::optional<EchelleExterne> DepuisIfd0(CExif& x, const char* source) {
  const CIFD* ifd0 = x.ifd(0);
  if (ifd0 == nullptr) return std::nullopt;
  const CExifDirEnt* resolution = ifd0->Trouver(0x011A);
  const double pixels = resolution ? resolution->GetDataVariant() : 0;
  if (const CExifDirEnt* d = ifd0->Trouver(0x010E); d && d->DataFormat == FmtAscii)
    if (const auto m = MicronsParPixelImageJ(d->GetDataFormatted(), pixels))
      return EchelleExterne{*m, QStringLiteral("ImageJ")};
  const CExifDirEnt* unite = ifd0->Trouver(0x0128);
  if (unite == nullptr || unite->GetDataVariant() != 3 || !(pixels > 0)) return std::nullopt;
  return Plausible(10000.0 / pixels, source);
}

}  // namespace

std::optional<double> MicronsParPixelImageJ(const QString& description, double pixelsParUnite) {
  if (!description.startsWith(u"ImageJ=") || !(pixelsParUnite > 0)) return std::nullopt;
  QString unite;
  for (const QString& ligne : description.split(u'\n'))
    if (ligne.startsWith(u"unit=")) unite = ligne.mid(5).trimmed();
  // ImageJ writes µ as \u00B5 in its description.
  unite.replace(QStringLiteral("\\u00B5"), QStringLiteral("µ"));
  double microns = 0;
  if (unite == u"micron" || unite == u"microns" || unite == u"µm" || unite == u"um") microns = 1;
  else if (unite == u"nm") microns = 0.001;
  else if (unite == u"mm") microns = 1000;
  else if (unite == u"cm") microns = 10000;
  else if (unite == u"m" || unite == u"meter" || unite == u"metre") microns = 1e6;
  else return std::nullopt;
  return microns / pixelsParUnite;
}

std::optional<EchelleExterne> LireEchelleExterne(const QString& chemin) {
  CImage image;
  if (!image.ReadImage(chemin)) return std::nullopt;
  if (CTIFF* t = image.TIFF()) return DepuisIfd0(t->EXIF(), "TIFF");
  if (CJPEG* j = image.JPEG()) return DepuisIfd0(*j->EXIF(), "EXIF");
  if (CPNG* p = image.PNG())
    if (p->pHYS && p->pHYS->UnitSpecifier == 1 && p->pHYS->XPixelsPerUnit > 0)
      return Plausible(1e6 / p->pHYS->XPixelsPerUnit, "PNG pHYs");
  return std::nullopt;
}

}  // namespace tg::meta
