#include "metadata/EchelleExterne.h"

#include <QRegularExpression>
#include <QStringList>
#include <cmath>
#include <cstring>

#include "metadata/CImage.h"

namespace tg::meta {

namespace {

constexpr double PlusGrandPixel = 50;  // µm: larger is a print resolution

std::optional<EchelleExterne> Plausible(double micronsParPixel, const char* source) {
  if (!(micronsParPixel > 0) || micronsParPixel > PlusGrandPixel) return std::nullopt;
  return EchelleExterne{micronsParPixel, QString::fromLatin1(source)};
}

// Microns in one unit as microscopy software names it; 0 for an unknown one.
double MicronsParUnite(QString unite) {
  unite = unite.trimmed();
  if (unite.isEmpty() || unite == u"µm" || unite == u"\u00B5m" || unite == u"um" || unite == u"micron" ||
      unite == u"microns" || unite == u"μm")
    return 1;
  if (unite == u"nm") return 0.001;
  if (unite == u"Å") return 0.0001;
  if (unite == u"mm") return 1000;
  if (unite == u"cm") return 10000;
  if (unite == u"m") return 1e6;
  return 0;
}

// Aperio (SVS): "Aperio Image Library ...|AppMag = 20|...|MPP = 0.4990|..."
std::optional<double> Aperio(const QString& d) {
  if (!d.startsWith(u"Aperio")) return std::nullopt;
  for (const QString& champ : d.split(u'|')) {
    const QString c = champ.trimmed();
    if (!c.startsWith(u"MPP")) continue;
    bool ok = false;
    const double v = c.section(u'=', 1).trimmed().toDouble(&ok);
    if (ok && v > 0 && std::isfinite(v)) return v;
  }
  return std::nullopt;
}

// An attribute's value in the first element `element` of an XML text.
QString Attribut(const QString& xml, const QString& element, const QString& nom) {
  const QRegularExpression e(QStringLiteral("<(?:\\w+:)?%1\\b[^>]*\\b%2\\s*=\\s*\"([^\"]*)\"")
                                 .arg(QRegularExpression::escape(element), QRegularExpression::escape(nom)));
  return e.match(xml).captured(1);
}

// OME-XML (OME-TIFF): <Pixels PhysicalSizeX="0.325" PhysicalSizeXUnit="µm">,
// the unit µm when not given.
std::optional<double> Ome(const QString& d) {
  if (!d.contains(u"<OME") && !d.contains(u":OME")) return std::nullopt;
  bool ok = false;
  const double v = Attribut(d, QStringLiteral("Pixels"), QStringLiteral("PhysicalSizeX")).toDouble(&ok);
  const double unite = MicronsParUnite(Attribut(d, QStringLiteral("Pixels"), QStringLiteral("PhysicalSizeXUnit")));
  if (!ok || !(v > 0) || !std::isfinite(v) || unite == 0) return std::nullopt;
  return v * unite;
}

// Philips (iSyntax exported to TIFF): <Attribute Name="DICOM_PIXEL_SPACING"
// ...>&quot;0.000227&quot; &quot;0.000227&quot;</Attribute>, between rows then
// between columns, in millimetres; the first one is the full-size picture's.
std::optional<double> Philips(const QString& d) {
  if (!d.contains(u"DICOM_PIXEL_SPACING")) return std::nullopt;
  static const QRegularExpression e(
      QStringLiteral("Name=\"DICOM_PIXEL_SPACING\"[^>]*>\\s*(?:&quot;|\")?\\s*([0-9.eE+-]+)\\s*(?:&quot;|\")?\\s+"
                     "(?:&quot;|\")?\\s*([0-9.eE+-]+)"));
  const QRegularExpressionMatch m = e.match(d);
  bool ok = false;
  const double colonne = m.captured(2).toDouble(&ok);
  if (!ok || !(colonne > 0) || !std::isfinite(colonne)) return std::nullopt;
  return colonne * 1000;
}

// From IFD0: an ImageJ description first, then a scanner's or microscopy
// program's description or block, else a resolution in centimetres.
std::optional<EchelleExterne> DepuisIfd0(CExif& x, const char* source) {
  const CIFD* ifd0 = x.ifd(0);
  if (ifd0 == nullptr) return std::nullopt;
  const CExifDirEnt* resolution = ifd0->Trouver(0x011A);
  const double pixels = resolution ? resolution->GetDataVariant() : 0;
  if (const CExifDirEnt* d = ifd0->Trouver(0x010E); d && d->DataFormat == FmtAscii) {
    const QString description = d->GetDataFormatted();
    if (const auto m = MicronsParPixelImageJ(description, pixels)) return EchelleExterne{*m, QStringLiteral("ImageJ")};
    if (auto e = EchelleDescription(description)) return e;
  }
  if (const CExifDirEnt* lsm = ifd0->Trouver(34412))
    if (const auto m = MicronsParPixelLSM(QByteArray(lsm->dataPtr(), lsm->getDataLength())))
      return EchelleExterne{*m, QStringLiteral("Zeiss LSM")};
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

std::optional<EchelleExterne> EchelleDescription(const QString& description) {
  if (const auto m = Aperio(description)) return EchelleExterne{*m, QStringLiteral("Aperio")};
  if (const auto m = Ome(description)) return EchelleExterne{*m, QStringLiteral("OME")};
  if (const auto m = Philips(description)) return EchelleExterne{*m, QStringLiteral("Philips")};
  return std::nullopt;
}

std::optional<double> MicronsParPixelLSM(const QByteArray& bloc) {
  // "MagicNumber" 0x00300494C or 0x00400494C, then the sizes; VoxelSizeX at 40.
  if (bloc.size() < 48) return std::nullopt;
  uint64_t bits = 0;
  for (int i = 7; i >= 0; --i) bits = bits << 8 | uint8_t(bloc[40 + i]);
  double metres = 0;
  std::memcpy(&metres, &bits, sizeof metres);
  if (!(metres > 0) || !std::isfinite(metres) || metres > 1) return std::nullopt;
  return metres * 1e6;
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
