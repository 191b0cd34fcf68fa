#include "imaging/LecteurTIFF.h"

#include <FreeImage.h>
#include <tiffio.h>

#include <QFile>
#include <QFileInfo>
#include <memory>

#include "imaging/VerificationFichier.h"
#include "metadata/CTIFF.h"

namespace tg {

namespace {

int Messages(TIFF*, void* donnees, const char* module, const char* format, va_list args) {
  char texte[512];
  std::vsnprintf(texte, sizeof texte, format, args);
  QString& cible = *static_cast<QString*>(donnees);
  if (cible.isEmpty()) cible = QString::fromLocal8Bit(texte);
  (void)module;
  return 1;  // handled: nothing goes to the terminal
}

// The imaging library's names where they differ from the published lists the
// metadata library follows: the program looks values up by these.
QString NomImagerie(int32_t tag, meta::Repertoire r) {
  if (r == meta::Repertoire::IFD0 || r == meta::Repertoire::SubIFD) {
    switch (tag) {
      case 0x0132: return QStringLiteral("DateTime");
      case 0x8827: return QStringLiteral("ISOSpeedRatings");
      case 0x9000: return QStringLiteral("ExifVersion");
      case 0x9004: return QStringLiteral("DateTimeDigitized");
      case 0x9201: return QStringLiteral("ShutterSpeedValue");
      case 0x9202: return QStringLiteral("ApertureValue");
      case 0x9204: return QStringLiteral("ExposureBiasValue");
      case 0xA002: return QStringLiteral("PixelXDimension");
      case 0xA003: return QStringLiteral("PixelYDimension");
      case 0xA005: return QStringLiteral("InteroperabilityOffset");
      case 0xA405: return QStringLiteral("FocalLengthIn35mmFilm");
      default: break;
    }
  }
  const QString nom = meta::NomTag(tag, r);
  return nom.isEmpty() ? QStringLiteral("Tag 0x%1").arg(tag, 4, 16, QLatin1Char('0')).toUpper().replace("0X", "0x")
                       : nom;
}

// Tags of the picture's layout and large private blocks: not metadata.
bool Structure(int32_t tag) {
  switch (tag) {
    case 254: case 256: case 257: case 258: case 259: case 262: case 273: case 277: case 278:
    case 279: case 284: case 317: case 320: case 322: case 323: case 324: case 325: case 338:
    case 330: case 339: case 700: case 33723: case 34377: case 34665: case 34675: case 34853: case 37500:
    case 40965: case 50740:
      return true;
    default:
      return false;
  }
}

void Copier(const meta::CIFD& r, meta::Repertoire repertoire, FREE_IMAGE_MDMODEL modele, FIBITMAP* dib) {
  for (const meta::CExifDirEnt& e : r.Directories) {
    if (Structure(e.Tag)) continue;
    const int taille = e.GetDataSize();
    // A value that did not read whole is left out rather than shown wrong.
    if (taille == 0 || e.NumberOfComponent < 1 || e.getDataLength() != int64_t(taille) * e.NumberOfComponent)
      continue;
    const QByteArray cle = NomImagerie(e.Tag, repertoire).toLatin1();
    FITAG* tag = FreeImage_CreateTag();
    if (tag == nullptr) return;
    // Elements are held little-endian, the machine's own order here.
    FreeImage_SetTagKey(tag, cle.constData());
    FreeImage_SetTagID(tag, WORD(e.Tag));
    FreeImage_SetTagType(tag, FREE_IMAGE_MDTYPE(e.DataFormat));
    FreeImage_SetTagCount(tag, DWORD(e.NumberOfComponent));
    FreeImage_SetTagLength(tag, DWORD(e.getDataLength()));
    FreeImage_SetTagValue(tag, e.dataPtr());
    FreeImage_SetMetadata(modele, dib, cle.constData(), tag);
    FreeImage_DeleteTag(tag);
  }
}

void Metadonnees(const QString& chemin, FIBITMAP* dib) {
  QFile f(chemin);
  if (!f.open(QIODevice::ReadOnly)) return;
  const uchar* carte = f.map(0, f.size());
  const QByteArray octets = carte ? QByteArray::fromRawData(reinterpret_cast<const char*>(carte), f.size())
                                  : f.readAll();
  AttacherExifTIFF(octets, chemin, dib);
}

}  // namespace

void AttacherExifTIFF(const QByteArray& octets, const QString& chemin, FIBITMAP* dib, bool ifd0Exif) {
  meta::CTIFF tiff;
  tiff.LireOctets(octets, chemin);
  meta::CExifTIFF& x = tiff.EXIF();
  if (x.NombreIfd() < 1) return;
  if (ifd0Exif) {
    Copier(*x.ifd(0), meta::Repertoire::SubIFD, FIMD_EXIF_EXIF, dib);
    return;
  }
  Copier(*x.ifd(0), meta::Repertoire::IFD0, FIMD_EXIF_MAIN, dib);
  Copier(x.SubIFD(), meta::Repertoire::SubIFD, FIMD_EXIF_EXIF, dib);
  Copier(x.GPS(), meta::Repertoire::GPS, FIMD_EXIF_GPS, dib);
}

FIBITMAP* LireTIFF(const QString& chemin, QString& erreur) {
  erreur.clear();
  const QString nom = QFileInfo(chemin).fileName();
  QString detail;
  std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                      TIFFOpenOptionsFree);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), Messages, &detail);
  QString avertissement;
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), Messages, &avertissement);
  // No single allocation beyond what the largest accepted picture needs.
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), tmsize_t(kPixelsMaxImage) * 4 + 4096);
  std::unique_ptr<TIFF, void (*)(TIFF*)> tif(TIFFOpenExt(QFile::encodeName(chemin).constData(), "r", options.get()),
                                             TIFFClose);
  auto echec = [&](const QString& texte) -> FIBITMAP* {
    erreur = texte + (detail.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(detail));
    return nullptr;
  };
  if (!tif) return echec(QStringLiteral("Le fichier TIFF « %1 » ne peut pas être ouvert.").arg(nom));
  uint32_t l = 0, h = 0;
  if (!TIFFGetField(tif.get(), TIFFTAG_IMAGEWIDTH, &l) || !TIFFGetField(tif.get(), TIFFTAG_IMAGELENGTH, &h) ||
      l < 1 || h < 1)
    return echec(QStringLiteral("Le fichier TIFF « %1 » ne donne pas la taille de son image.").arg(nom));
  if (l > kCoteMaxImage || h > kCoteMaxImage || int64_t(l) * h > kPixelsMaxImage)
    return echec(QStringLiteral("L'image « %1 » est trop grande (%2 x %3 pixels).").arg(nom).arg(l).arg(h));
  uint16_t extra = 0;
  uint16_t* types = nullptr;
  const bool alpha = TIFFGetField(tif.get(), TIFFTAG_EXTRASAMPLES, &extra, &types) && extra > 0;

  std::unique_ptr<uint32_t, void (*)(void*)> raster(
      static_cast<uint32_t*>(_TIFFmalloc(tmsize_t(l) * h * sizeof(uint32_t))), _TIFFfree);
  if (!raster) return echec(QStringLiteral("Mémoire insuffisante pour l'image « %1 ».").arg(nom));
  // Rows from the bottom, as the imaging library stores them; stop at the first error.
  if (!TIFFReadRGBAImageOriented(tif.get(), l, h, raster.get(), ORIENTATION_BOTLEFT, 1))
    return echec(QStringLiteral("L'image du fichier TIFF « %1 » ne peut pas être lue en entier.").arg(nom));

  FIBITMAP* dib = FreeImage_Allocate(int(l), int(h), alpha ? 32 : 24);
  if (dib == nullptr) return echec(QStringLiteral("Mémoire insuffisante pour l'image « %1 ».").arg(nom));
  const int octets = alpha ? 4 : 3;
  for (uint32_t y = 0; y < h; ++y) {
    const uint32_t* source = raster.get() + size_t(y) * l;
    BYTE* ligne = FreeImage_GetScanLine(dib, int(y));
    for (uint32_t x = 0; x < l; ++x) {
      const uint32_t p = source[x];
      BYTE* d = ligne + size_t(x) * octets;
      d[FI_RGBA_RED] = BYTE(TIFFGetR(p));
      d[FI_RGBA_GREEN] = BYTE(TIFFGetG(p));
      d[FI_RGBA_BLUE] = BYTE(TIFFGetB(p));
      if (alpha) d[FI_RGBA_ALPHA] = BYTE(TIFFGetA(p));
    }
  }
  float rx = 0, ry = 0;
  uint16_t unite = RESUNIT_INCH;
  TIFFGetFieldDefaulted(tif.get(), TIFFTAG_RESOLUTIONUNIT, &unite);
  if (TIFFGetField(tif.get(), TIFFTAG_XRESOLUTION, &rx) && TIFFGetField(tif.get(), TIFFTAG_YRESOLUTION, &ry) &&
      rx > 0 && ry > 0 && unite != RESUNIT_NONE) {
    const double parMetre = unite == RESUNIT_CENTIMETER ? 100.0 : 1.0 / 0.0254;
    FreeImage_SetDotsPerMeterX(dib, unsigned(rx * parMetre + 0.5));
    FreeImage_SetDotsPerMeterY(dib, unsigned(ry * parMetre + 0.5));
  }
  Metadonnees(chemin, dib);
  return dib;
}

}  // namespace tg
