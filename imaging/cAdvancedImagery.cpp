#include "imaging/cAdvancedImagery.h"

#include <FreeImage.h>

#include <QClipboard>
#include <QFile>
#include <QFileInfo>
#include <QFontMetrics>
#include <QFontMetricsF>
#include <QPainter>
#include <QRegularExpression>
#include <QTextOption>
#include <QGuiApplication>
#include <QImageReader>
#include <QScreen>
#include <QStringList>
#include <fcntl.h>
#include <unistd.h>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <thread>
#include <vector>

#include "imaging/DecodageJpeg.h"
#include "imaging/LecteurHEIF.h"
#include "imaging/LecteurRAW.h"
#include "imaging/LecteurTIFF.h"
#include "imaging/PixelEffects.h"
#include "imaging/VerificationFichier.h"
#include "platform/Fichiers.h"

// Pixels are copied between FreeImage and QImage line by line, which holds
// only for FreeImage's little-endian BGR(A) byte order.
static_assert(FREEIMAGE_COLORORDER == FREEIMAGE_COLORORDER_BGR);

namespace tg {

namespace {

// The library reports its failures through a callback; the text is kept here
// and added to the last-error text of the call that failed.
// One a thread: the library reports on the thread that called it, and the
// finder reads headers and thumbnails off the interface thread.
QString& MessageBibliotheque() {
  static thread_local QString message;
  return message;
}

void RecevoirMessage(FREE_IMAGE_FORMAT, const char* message) {
  MessageBibliotheque() = QString::fromLocal8Bit(message);
}

QByteArray NomFichier(const QString& chemin) { return QFile::encodeName(chemin); }

int Arrondi(double v) { return static_cast<int>(std::nearbyint(v)); }

// The facts of a bitmap, pixels loaded or header alone.
InfosImage LireInfos(FIBITMAP* dib) {
  InfosImage infos;
  infos.largeur = static_cast<int>(FreeImage_GetWidth(dib));
  infos.hauteur = static_cast<int>(FreeImage_GetHeight(dib));
  infos.bpp = static_cast<int>(FreeImage_GetBPP(dib));
  infos.couleursUtilisees = static_cast<int>(FreeImage_GetColorsUsed(dib));
  infos.pitch = static_cast<int>(FreeImage_GetPitch(dib));
  // 1 inch = 0.0254 m.
  infos.dpiX = Arrondi(FreeImage_GetDotsPerMeterX(dib) * 0.0254);
  infos.dpiY = Arrondi(FreeImage_GetDotsPerMeterY(dib) * 0.0254);
  infos.dpmX = static_cast<int>(FreeImage_GetDotsPerMeterX(dib));
  infos.dpmY = static_cast<int>(FreeImage_GetDotsPerMeterY(dib));
  infos.transparent = FreeImage_IsTransparent(dib) != FALSE;
  return infos;
}

QColor CouleurBGR(int couleur) {
  return QColor(couleur & 0xFF, (couleur >> 8) & 0xFF, (couleur >> 16) & 0xFF);
}

bool EstVraiesCouleurs(FIBITMAP* dib) {
  const unsigned bpp = FreeImage_GetBPP(dib);
  return FreeImage_GetImageType(dib) == FIT_BITMAP && (bpp == 24 || bpp == 32);
}

// A 24-bit copy of any bitmap (16-bit, float and other pixel types go through
// the standard 8-bit-per-channel type first). Null on failure.
FIBITMAP* Copie24Bits(FIBITMAP* dib) {
  if (FreeImage_GetImageType(dib) != FIT_BITMAP) {
    FIBITMAP* standard = FreeImage_ConvertToStandardType(dib, TRUE);
    if (standard == nullptr) return nullptr;
    FIBITMAP* resultat = FreeImage_ConvertTo24Bits(standard);
    FreeImage_Unload(standard);
    return resultat;
  }
  return FreeImage_ConvertTo24Bits(dib);
}

ImageRVB VersRVB(FIBITMAP* dib) {
  ImageRVB image(static_cast<int>(FreeImage_GetWidth(dib)), static_cast<int>(FreeImage_GetHeight(dib)));
  for (int y = 0; y < image.hauteur; ++y) {
    const BYTE* ligne = FreeImage_GetScanLine(dib, image.hauteur - 1 - y);
    for (int x = 0; x < image.largeur; ++x) {
      uint8_t* p = image.Pixel(x, y);
      p[0] = ligne[x * 3 + FI_RGBA_RED];
      p[1] = ligne[x * 3 + FI_RGBA_GREEN];
      p[2] = ligne[x * 3 + FI_RGBA_BLUE];
    }
  }
  return image;
}

void DepuisRVB(const ImageRVB& image, FIBITMAP* dib) {
  for (int y = 0; y < image.hauteur; ++y) {
    BYTE* ligne = FreeImage_GetScanLine(dib, image.hauteur - 1 - y);
    for (int x = 0; x < image.largeur; ++x) {
      const uint8_t* p = image.Pixel(x, y);
      ligne[x * 3 + FI_RGBA_RED] = p[0];
      ligne[x * 3 + FI_RGBA_GREEN] = p[1];
      ligne[x * 3 + FI_RGBA_BLUE] = p[2];
    }
  }
}

// Writes one pixel of a 24- or 32-bit scan line; a 32-bit pixel becomes opaque.
void EcrirePixel(BYTE* ligne, int x, int octetsParPixel, BYTE r, BYTE g, BYTE b) {
  BYTE* p = ligne + x * octetsParPixel;
  p[FI_RGBA_RED] = r;
  p[FI_RGBA_GREEN] = g;
  p[FI_RGBA_BLUE] = b;
  if (octetsParPixel == 4) p[FI_RGBA_ALPHA] = 0xFF;
}

// The EXIF tags that the program reads as a fraction "n/d" rather than as the
// library's display text ("7.5 mm").
bool LuEnFraction(const char* cle) {
  return std::strcmp(cle, "FocalLength") == 0 || std::strcmp(cle, "DigitalZoomRatio") == 0;
}

QString TexteFraction(FITAG* tag) {
  const void* valeur = FreeImage_GetTagValue(tag);
  if (valeur == nullptr || FreeImage_GetTagCount(tag) < 1 || FreeImage_GetTagLength(tag) < 8) return {};
  if (FreeImage_GetTagType(tag) == FIDT_RATIONAL) {
    const DWORD* f = static_cast<const DWORD*>(valeur);
    return QString("%1/%2").arg(f[0]).arg(f[1]);
  }
  if (FreeImage_GetTagType(tag) == FIDT_SRATIONAL) {
    const LONG* f = static_cast<const LONG*>(valeur);
    return QString("%1/%2").arg(f[0]).arg(f[1]);
  }
  return {};
}

}  // namespace

cAdvancedImagery::cAdvancedImagery() {
  // On Linux the shared library initialises itself; only the message route is set.
  static const bool installe = [] {
    FreeImage_SetOutputMessage(RecevoirMessage);
    return true;
  }();
  (void)installe;
}

bool cAdvancedImagery::Echec(const QString& texte) {
  derniereErreur_ = texte;
  return false;
}

bool cAdvancedImagery::EchecBibliotheque(const QString& texte) {
  QString message = MessageBibliotheque();
  MessageBibliotheque().clear();
  return Echec(message.isEmpty() ? texte : texte + " (" + message + ")");
}

bool cAdvancedImagery::ValideEntete(const Bitmap& image) {
  if (image.Vide()) return Echec("Specified image is invalid");
  MessageBibliotheque().clear();
  return true;
}

bool cAdvancedImagery::Valide(const Bitmap& image) {
  if (image.Vide() || !FreeImage_HasPixels(image.Get())) return Echec("Specified image is invalid");
  MessageBibliotheque().clear();
  return true;
}

bool cAdvancedImagery::Remplacer(Bitmap& image, FIBITMAP* nouveau, const QString& texteEchec) {
  if (nouveau == nullptr) return EchecBibliotheque(texteEchec);
  FreeImage_CloneMetadata(nouveau, image.Get());
  image.Reset(nouveau);
  return true;
}

bool cAdvancedImagery::CouleursVraies(Bitmap& image) {
  if (EstVraiesCouleurs(image.Get())) return true;
  return Remplacer(image, Copie24Bits(image.Get()), "Image could not be converted to 24 bits");
}

bool cAdvancedImagery::En24Bits(Bitmap& image) {
  if (FreeImage_GetImageType(image.Get()) == FIT_BITMAP && FreeImage_GetBPP(image.Get()) == 24) return true;
  return Remplacer(image, Copie24Bits(image.Get()), "Image could not be converted to 24 bits");
}

// ---- Files ----

bool cAdvancedImagery::IO_LoadImage(const QString& chemin, Bitmap& sortie) {
  sortie.Reset();
  incomplet_.clear();
  if (chemin.isEmpty()) return Echec("No file path specified to load from");
  const VerificationImage verification = VerifierFichierImage(chemin);
  if (verification.refuse) return Echec(verification.message);
  incomplet_ = verification.incomplet ? verification.message : QString();
  MessageBibliotheque().clear();
  if (verification.type == TypeFichierImage::TIFF || verification.type == TypeFichierImage::HEIF ||
      verification.type == TypeFichierImage::RAW) {
    QString erreur;
    int l = 0, h = 0;
    FIBITMAP* dib = verification.type == TypeFichierImage::TIFF   ? LireTIFF(chemin, erreur)
                    : verification.type == TypeFichierImage::HEIF ? LireHEIF(chemin, erreur)
                                                                  : LireRAW(chemin, 1, l, h, erreur);
    if (dib == nullptr) return Echec(erreur);
    sortie.Reset(dib);
    return true;
  }
  const QByteArray nom = NomFichier(chemin);
  FREE_IMAGE_FORMAT fif = FreeImage_GetFileType(nom.constData(), 0);
  if (fif == FIF_UNKNOWN) fif = FreeImage_GetFIFFromFilename(nom.constData());
  if (fif == FIF_TIFF) return Echec("Le fichier « " + QFileInfo(chemin).fileName() + " » n'est pas un TIFF lisible.");
  FIBITMAP* dib = nullptr;
  if (fif != FIF_UNKNOWN && FreeImage_FIFSupportsReading(fif)) dib = FreeImage_Load(fif, nom.constData(), 0);
  if (dib == nullptr) {
    // Debian's FreeImage refuses BMP files with V4/V5 info headers; Qt reads them.
    QImageReader lecteur(chemin);
    lecteur.setAutoTransform(false);
    const QImage image = lecteur.read();
    if (!image.isNull()) return Convert_PictureToImage(image, sortie);
    // The decoder's own words, in English, go to a detail line.
    QString detail = MessageBibliotheque();
    MessageBibliotheque().clear();
    return Echec(QStringLiteral("L'image du fichier « %1 » ne peut pas être décodée : le fichier est abîmé "
                                "ou incomplet.")
                     .arg(QFileInfo(chemin).fileName()) +
                 (detail.isEmpty() ? QString() : QStringLiteral("\nDétail : ") + detail));
  }
  sortie.Reset(dib);
  // 16-bit and floating-point pictures are brought to 8 bits per channel.
  if (FreeImage_GetImageType(dib) != FIT_BITMAP && !En24Bits(sortie)) {
    sortie.Reset();
    return false;
  }
  return true;
}

int DenominateurDCT(int largeur, int hauteur, int minLargeur, int minHauteur) {
  for (int d : {8, 4, 2})
    if (largeur / d >= minLargeur && hauteur / d >= minHauteur) return d;
  return 1;
}

bool cAdvancedImagery::IO_LoadImageReduite(const QString& chemin, int minLargeur, int minHauteur, Bitmap& sortie,
                                           int& largeurFichier, int& hauteurFichier) {
  sortie.Reset();
  largeurFichier = hauteurFichier = 0;
  incomplet_.clear();
  const VerificationImage verification = VerifierFichierImage(chemin);
  if (verification.refuse) return Echec(verification.message);
  if (verification.type == TypeFichierImage::RAW) {
    // LibRaw's half-size decode, like a JPEG's reduced one, when it leaves
    // enough: the size of the whole picture is read first, without decoding.
    QString erreur;
    int l = 0, h = 0;
    Bitmap entete(LireRAW(chemin, 1, l, h, erreur, false));
    if (entete.Vide()) return Echec(erreur);
    const int reduction = l / 2 >= minLargeur && h / 2 >= minHauteur ? 2 : 1;
    FIBITMAP* dib = LireRAW(chemin, reduction, l, h, erreur);
    if (dib == nullptr) return Echec(erreur);
    sortie.Reset(dib);
    largeurFichier = l;
    hauteurFichier = h;
    return true;
  }
  InfosImage infos;
  int d = 1;
  if (verification.type == TypeFichierImage::JPEG && Info_File(chemin, infos))
    d = DenominateurDCT(infos.largeur, infos.hauteur, minLargeur, minHauteur);
  if (d == 1) {
    if (!IO_LoadImage(chemin, sortie)) return false;
    largeurFichier = Info_Width(sortie);
    hauteurFichier = Info_Height(sortie);
    return true;
  }
  incomplet_ = verification.incomplet ? verification.message : QString();
  MessageBibliotheque().clear();
  // The JPEG reader takes the largest 1/d whose longer side, divided down,
  // still reaches the size asked: asking exactly that gives this d.
  const int cote = std::max(infos.largeur, infos.hauteur) / d;
  const QByteArray nom = NomFichier(chemin);
  Bitmap reduite(FreeImage_Load(FIF_JPEG, nom.constData(), cote << 16));
  if (reduite.Vide() || int(FreeImage_GetWidth(reduite.Get())) < minLargeur ||
      int(FreeImage_GetHeight(reduite.Get())) < minHauteur) {
    // Not the expected reduction: the whole picture, as always.
    if (!IO_LoadImage(chemin, sortie)) return false;
    largeurFichier = Info_Width(sortie);
    hauteurFichier = Info_Height(sortie);
    return true;
  }
  sortie = std::move(reduite);
  largeurFichier = infos.largeur;
  hauteurFichier = infos.hauteur;
  return true;
}

bool cAdvancedImagery::IO_LoadEntete(const QString& chemin, Bitmap& sortie) {
  sortie.Reset();
  incomplet_.clear();
  const VerificationImage verification = VerifierFichierImage(chemin);
  if (verification.refuse) return Echec(verification.message);
  if (verification.type == TypeFichierImage::HEIF || verification.type == TypeFichierImage::RAW) {
    // Size and metadata alone: the pixels are decoded once the output size is known.
    QString erreur;
    int l = 0, h = 0;
    sortie.Reset(verification.type == TypeFichierImage::HEIF ? LireHEIF(chemin, erreur, false)
                                                             : LireRAW(chemin, 1, l, h, erreur, false));
    return sortie.Vide() ? Echec(erreur) : true;
  }
  if (verification.type != TypeFichierImage::JPEG) return IO_LoadImage(chemin, sortie);
  MessageBibliotheque().clear();
  const QByteArray nom = NomFichier(chemin);
  sortie.Reset(FreeImage_Load(FIF_JPEG, nom.constData(), FIF_LOAD_NOPIXELS));
  if (sortie.Vide()) return IO_LoadImage(chemin, sortie);
  incomplet_ = verification.incomplet ? verification.message : QString();
  return true;
}

bool cAdvancedImagery::IO_LoadImageRedimensionnee(const QString& chemin, int largeur, int hauteur,
                                                  const Bitmap& entete, Bitmap& sortie) {
  sortie.Reset();
  if (VerifierFichierImage(chemin).type != TypeFichierImage::JPEG) return Echec("Not a JPEG file");
  // Without a DCT scale the whole decode and FreeImage's own resampling give
  // the very pixels the windows give: that road is kept.
  if (!entete.Vide() &&
      DenominateurDCT(Info_Width(entete), Info_Height(entete), MinimumReduit(largeur), MinimumReduit(hauteur)) == 1)
    return Echec("No DCT scale for this size");
  QString erreur;
  sortie.Reset(DecoderJpegRedimensionne(chemin, largeur, hauteur, erreur));
  if (sortie.Vide()) return Echec(erreur);
  if (!entete.Vide()) {
    FreeImage_CloneMetadata(sortie.Get(), entete.Get());
    FreeImage_SetDotsPerMeterX(sortie.Get(), FreeImage_GetDotsPerMeterX(entete.Get()));
    FreeImage_SetDotsPerMeterY(sortie.Get(), FreeImage_GetDotsPerMeterY(entete.Get()));
  }
  return true;
}

bool cAdvancedImagery::Info_SetResolution(Bitmap& image, double pixelsParMetre) {
  if (!Valide(image)) return false;
  const unsigned valeur = unsigned(std::lround(std::clamp(pixelsParMetre, 0.0, 4e9)));
  FreeImage_SetDotsPerMeterX(image.Get(), valeur);
  FreeImage_SetDotsPerMeterY(image.Get(), valeur);
  return true;
}

bool cAdvancedImagery::Info_Pixels(const Bitmap& image) const {
  return !image.Vide() && FreeImage_HasPixels(image.Get());
}

bool cAdvancedImagery::IO_LoadThumbnail(const QString& chemin, int cote, QImage& sortie) {
  sortie = QImage();
  incomplet_.clear();
  const VerificationImage verification = VerifierFichierImage(chemin);
  if (verification.refuse) return Echec(verification.message);
  incomplet_ = verification.incomplet ? verification.message : QString();
  if (verification.type == TypeFichierImage::JPEG) {
    // The decoder scales by 1/2, 1/4 or 1/8 in its inverse DCT when asked for
    // a smaller size: a thumbnail never costs a full decode.
    QImageReader lecteur(chemin);
    lecteur.setAutoTransform(false);
    const QSize taille = lecteur.size();
    if (taille.isValid()) {
      if (taille.width() > cote || taille.height() > cote)
        lecteur.setScaledSize(taille.scaled(cote, cote, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
      QImage image = lecteur.read();
      if (!image.isNull()) {
        sortie = image.convertToFormat(QImage::Format_RGB32);
        return true;
      }
    }
  }
  if (verification.type == TypeFichierImage::HEIF || verification.type == TypeFichierImage::RAW) {
    // The preview the file carries, never the whole picture when there is one.
    QString erreur;
    sortie = verification.type == TypeFichierImage::HEIF ? VignetteHEIF(chemin, cote, erreur)
                                                         : VignetteRAW(chemin, cote, erreur);
    return sortie.isNull() ? Echec(erreur) : true;
  }
  Bitmap image, vignette;
  const QString incomplet = incomplet_;
  if (!IO_LoadImage(chemin, image) || !Effect_Thumbnail(image, vignette, cote)) return false;
  incomplet_ = incomplet;
  return Convert_ImageToPicture(vignette, sortie);
}

bool cAdvancedImagery::Info_File(const QString& chemin, InfosImage& infos) {
  infos = InfosImage{};
  const VerificationImage verification = VerifierFichierImage(chemin);
  if (verification.refuse) return Echec(verification.message);
  if (verification.type == TypeFichierImage::HEIF || verification.type == TypeFichierImage::RAW) {
    Bitmap entete;
    if (!IO_LoadEntete(chemin, entete)) return false;
    infos = LireInfos(entete.Get());
    return true;
  }
  const QByteArray nom = NomFichier(chemin);
  FREE_IMAGE_FORMAT fif = FreeImage_GetFileType(nom.constData(), 0);
  if (fif == FIF_UNKNOWN) fif = FreeImage_GetFIFFromFilename(nom.constData());
  Bitmap entete;
  // The header alone where the format's reader can stop there.
  if (fif != FIF_UNKNOWN && fif != FIF_TIFF && FreeImage_FIFSupportsReading(fif) && FreeImage_FIFSupportsNoPixels(fif))
    entete.Reset(FreeImage_Load(fif, nom.constData(), FIF_LOAD_NOPIXELS));
  if (entete.Vide()) {
    Bitmap image;
    if (!IO_LoadImage(chemin, image)) return false;
    return Info_ALL(image, infos);
  }
  infos = LireInfos(entete.Get());
  return true;
}

bool cAdvancedImagery::IO_SaveImage(const Bitmap& image, const QString& chemin, int format, int flags) {
  if (!Valide(image)) return false;
  if (chemin.isEmpty()) return Echec("No file path specified to save to");
  const auto fif = static_cast<FREE_IMAGE_FORMAT>(format);
  if (format < 0 || format >= FreeImage_GetFIFCount() || !FreeImage_FIFSupportsWriting(fif))
    return Echec(QString("Unsupported image format for saving: %1").arg(format));
  FIBITMAP* dib = image.Get();
  Bitmap converti;
  // JPEG takes no 32-bit bitmap, and other writers have their own limits: the
  // file is then written from a 24-bit copy that carries the same metadata.
  if (FreeImage_GetImageType(dib) != FIT_BITMAP || !FreeImage_FIFSupportsExportBPP(fif, FreeImage_GetBPP(dib)) ||
      (fif == FIF_JPEG && FreeImage_GetBPP(dib) == 32)) {
    converti.Reset(Copie24Bits(dib));
    if (converti.Vide()) return EchecBibliotheque("Image could not be converted to 24 bits");
    FreeImage_CloneMetadata(converti.Get(), dib);
    dib = converti.Get();
  }
  int options = 0;
  if (fif == FIF_JPEG && flags > 0) options = std::min(flags, 100);  // quality 1..100; 0 is the library's 75
  else if (fif != FIF_JPEG) options = flags;
  // Encoded in memory, then written beside the target, flushed to disk and
  // renamed over it: a failure (a full disk) leaves the old file whole, and
  // the system's reason is known.
  FIMEMORY* memoire = FreeImage_OpenMemory();
  if (memoire == nullptr) return EchecBibliotheque("Memory stream could not be opened");
  BYTE* donnees = nullptr;
  DWORD taille = 0;
  if (!FreeImage_SaveToMemory(fif, dib, memoire, options) || !FreeImage_AcquireMemory(memoire, &donnees, &taille)) {
    FreeImage_CloseMemory(memoire);
    return EchecBibliotheque("Image could not be saved to " + chemin);
  }
  const bool ecrit =
      RemplacerFichierSur(chemin, QByteArray::fromRawData(reinterpret_cast<const char*>(donnees), qsizetype(taille)));
  FreeImage_CloseMemory(memoire);
  if (!ecrit)
    return Echec(QStringLiteral("Le fichier « %1 » ne peut pas être écrit : %2.")
                     .arg(QFileInfo(chemin).fileName(), RaisonSysteme(DernierEchecFichier().code)));
  return true;
}

bool cAdvancedImagery::IO_CreateImage(Bitmap& sortie, int largeur, int hauteur, int bpp, int couleur) {
  sortie.Reset();
  if (largeur < 1 || hauteur < 1) return Echec(QString("Invalid image size %1 x %2").arg(largeur).arg(hauteur));
  if (bpp != 1 && bpp != 4 && bpp != 8 && bpp != 16 && bpp != 24 && bpp != 32)
    return Echec(QString("Invalid bit depth %1").arg(bpp));
  MessageBibliotheque().clear();
  // The pixels of a new bitmap are zeroes: black, or palette entry 0 (black
  // in FreeImage's default grey palette).
  FIBITMAP* dib = FreeImage_Allocate(largeur, hauteur, bpp);
  if (dib == nullptr) return EchecBibliotheque("Image could not be allocated");
  if (bpp == 32 || (bpp == 24 && couleur != 0)) {
    // Opaque: a zero alpha would make the new bitmap invisible once drawn.
    const int octets = bpp / 8;
    for (int y = 0; y < hauteur; ++y) {
      BYTE* ligne = FreeImage_GetScanLine(dib, y);
      for (int x = 0; x < largeur; ++x) {
        BYTE* p = ligne + x * octets;
        p[FI_RGBA_RED] = BYTE(couleur & 0xFF);
        p[FI_RGBA_GREEN] = BYTE((couleur >> 8) & 0xFF);
        p[FI_RGBA_BLUE] = BYTE((couleur >> 16) & 0xFF);
        if (octets == 4) p[FI_RGBA_ALPHA] = 0xFF;
      }
    }
  }
  sortie.Reset(dib);
  return true;
}

void cAdvancedImagery::IO_DestroyBitmap(Bitmap& image) { image.Reset(); }

bool cAdvancedImagery::IO_Copy(const Bitmap& source, Bitmap& sortie) {
  if (!Valide(source)) {
    sortie.Reset();
    return false;
  }
  FIBITMAP* copie = FreeImage_Clone(source.Get());
  if (copie == nullptr) {
    sortie.Reset();
    return EchecBibliotheque("Image could not be copied");
  }
  sortie.Reset(copie);
  return true;
}

// ---- Colours ----

bool cAdvancedImagery::Color_GetPixel(const Bitmap& image, int x, int y, int& couleur) {
  if (!Valide(image)) return false;
  FIBITMAP* dib = image.Get();
  const int l = static_cast<int>(FreeImage_GetWidth(dib));
  const int h = static_cast<int>(FreeImage_GetHeight(dib));
  if (x < 0 || y < 0 || x >= l || y >= h) return Echec(QString("Pixel %1, %2 is outside the image").arg(x).arg(y));
  RGBQUAD c{};
  const unsigned ligne = static_cast<unsigned>(h - 1 - y);
  if (FreeImage_GetImageType(dib) == FIT_BITMAP && FreeImage_GetBPP(dib) <= 8) {
    BYTE index = 0;
    const RGBQUAD* palette = FreeImage_GetPalette(dib);
    if (palette == nullptr || !FreeImage_GetPixelIndex(dib, x, ligne, &index))
      return EchecBibliotheque("Pixel could not be read");
    c = palette[index];
  } else if (!EstVraiesCouleurs(dib) || !FreeImage_GetPixelColor(dib, x, ligne, &c)) {
    Bitmap copie(Copie24Bits(dib));
    if (copie.Vide() || !FreeImage_GetPixelColor(copie.Get(), x, ligne, &c))
      return EchecBibliotheque("Pixel could not be read");
  }
  couleur = c.rgbRed | (c.rgbGreen << 8) | (c.rgbBlue << 16);
  return true;
}

void cAdvancedImagery::Color_OLE(int couleur, int& rouge, int& vert, int& bleu) {
  rouge = couleur & 0xFF;
  vert = (couleur >> 8) & 0xFF;
  bleu = (couleur >> 16) & 0xFF;
}

// ---- QImage ----

bool cAdvancedImagery::Convert_ImageToPicture(const Bitmap& image, QImage& sortie) {
  sortie = QImage();
  if (!Valide(image)) return false;
  FIBITMAP* dib = image.Get();
  Bitmap copie;
  if (!(FreeImage_GetImageType(dib) == FIT_BITMAP && FreeImage_GetBPP(dib) == 32)) {
    FIBITMAP* standard = FreeImage_GetImageType(dib) == FIT_BITMAP ? dib : FreeImage_ConvertToStandardType(dib, TRUE);
    if (standard == nullptr) return EchecBibliotheque("Image could not be converted");
    // Palettes, grey levels and 24-bit pixels all become opaque 32-bit BGRA,
    // with the palette's transparency where it has one.
    copie.Reset(FreeImage_ConvertTo32Bits(standard));
    if (standard != dib) FreeImage_Unload(standard);
    if (copie.Vide()) return EchecBibliotheque("Image could not be converted");
    dib = copie.Get();
  }
  const int l = static_cast<int>(FreeImage_GetWidth(dib));
  const int h = static_cast<int>(FreeImage_GetHeight(dib));
  QImage resultat(l, h, FreeImage_IsTransparent(dib) ? QImage::Format_ARGB32 : QImage::Format_RGB32);
  if (resultat.isNull()) return Echec("Picture could not be allocated");
  // Top-down copy: QImage row y is FreeImage scan line h - 1 - y.
  FreeImage_ConvertToRawBits(resultat.bits(), dib, static_cast<int>(resultat.bytesPerLine()), 32, FI_RGBA_RED_MASK,
                             FI_RGBA_GREEN_MASK, FI_RGBA_BLUE_MASK, TRUE);
  resultat.setDotsPerMeterX(static_cast<int>(FreeImage_GetDotsPerMeterX(image.Get())));
  resultat.setDotsPerMeterY(static_cast<int>(FreeImage_GetDotsPerMeterY(image.Get())));
  sortie = resultat;
  return true;
}

bool cAdvancedImagery::Convert_PictureToImage(const QImage& image, Bitmap& sortie) {
  sortie.Reset();
  if (image.isNull()) return Echec("Specified picture is invalid");
  MessageBibliotheque().clear();
  bool opaque = true;
  QImage source;
  if (image.hasAlphaChannel()) {
    source = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < source.height() && opaque; ++y) {
      const QRgb* ligne = reinterpret_cast<const QRgb*>(source.constScanLine(y));
      for (int x = 0; x < source.width(); ++x)
        if (qAlpha(ligne[x]) != 255) {
          opaque = false;
          break;
        }
    }
  }
  // An opaque picture gives a 24-bit bitmap, the depth the program works in.
  // From 32-bit pixels the rows are copied straight in, without a 24-bit
  // copy of the whole picture beside it.
  const QImage& opaque32 = source.isNull() ? image : source;
  if (opaque && (opaque32.format() == QImage::Format_RGB32 || opaque32.format() == QImage::Format_ARGB32)) {
    const int l = opaque32.width(), h = opaque32.height();
    FIBITMAP* dib = FreeImage_Allocate(l, h, 24, FI_RGBA_RED_MASK, FI_RGBA_GREEN_MASK, FI_RGBA_BLUE_MASK);
    if (dib == nullptr) return EchecBibliotheque("Picture could not be converted");
    for (int y = 0; y < h; ++y) {
      const QRgb* de = reinterpret_cast<const QRgb*>(opaque32.constScanLine(y));
      BYTE* vers = FreeImage_GetScanLine(dib, h - 1 - y);  // bottom-up
      for (int x = 0; x < l; ++x, vers += 3) {
        vers[FI_RGBA_RED] = BYTE(qRed(de[x]));
        vers[FI_RGBA_GREEN] = BYTE(qGreen(de[x]));
        vers[FI_RGBA_BLUE] = BYTE(qBlue(de[x]));
      }
    }
    if (image.dotsPerMeterX() > 0) FreeImage_SetDotsPerMeterX(dib, image.dotsPerMeterX());
    if (image.dotsPerMeterY() > 0) FreeImage_SetDotsPerMeterY(dib, image.dotsPerMeterY());
    sortie.Reset(dib);
    return true;
  }
  if (opaque) source = image.convertToFormat(QImage::Format_BGR888);
  FIBITMAP* dib = FreeImage_ConvertFromRawBits(const_cast<BYTE*>(source.constBits()), source.width(), source.height(),
                                               static_cast<int>(source.bytesPerLine()), opaque ? 24 : 32,
                                               FI_RGBA_RED_MASK, FI_RGBA_GREEN_MASK, FI_RGBA_BLUE_MASK, TRUE);
  if (dib == nullptr) return EchecBibliotheque("Picture could not be converted");
  if (image.dotsPerMeterX() > 0) FreeImage_SetDotsPerMeterX(dib, image.dotsPerMeterX());
  if (image.dotsPerMeterY() > 0) FreeImage_SetDotsPerMeterY(dib, image.dotsPerMeterY());
  sortie.Reset(dib);
  return true;
}

bool cAdvancedImagery::Render_Normal(const Bitmap& image, QPainter& p, int x, int y, int l, int h) {
  QImage picture;
  if (!Convert_ImageToPicture(image, picture)) return false;
  if (!p.isActive()) return Echec("Painter is not active");
  // A width or height of 0 or less draws at the bitmap's own size.
  if (l <= 0 || h <= 0) p.drawImage(QPoint(x, y), picture);
  else p.drawImage(QRect(x, y, l, h), picture);
  return true;
}

bool cAdvancedImagery::Render_Transparent(const Bitmap& image, QPainter& p, int x, int y, int l, int h) {
  QImage picture;
  if (!Convert_ImageToPicture(image, picture)) return false;
  if (!p.isActive()) return Echec("Painter is not active");
  if (couleurTransparente_ != -1) {
    picture = picture.convertToFormat(QImage::Format_ARGB32);
    const QRgb cle = CouleurBGR(couleurTransparente_).rgb() & 0xFFFFFF;
    for (int ly = 0; ly < picture.height(); ++ly) {
      QRgb* ligne = reinterpret_cast<QRgb*>(picture.scanLine(ly));
      for (int lx = 0; lx < picture.width(); ++lx)
        if ((ligne[lx] & 0xFFFFFF) == cle) ligne[lx] = 0;
    }
  }
  if (l <= 0 || h <= 0) p.drawImage(QPoint(x, y), picture);
  else p.drawImage(QRect(x, y, l, h), picture);
  return true;
}

// ---- Information ----

int cAdvancedImagery::Info_Width(const Bitmap& image) {
  return ValideEntete(image) ? static_cast<int>(FreeImage_GetWidth(image.Get())) : 0;
}

int cAdvancedImagery::Info_Height(const Bitmap& image) {
  return ValideEntete(image) ? static_cast<int>(FreeImage_GetHeight(image.Get())) : 0;
}

bool cAdvancedImagery::Info_ALL(const Bitmap& image, InfosImage& infos) {
  infos = InfosImage{};
  if (!Valide(image)) return false;
  infos = LireInfos(image.Get());
  return true;
}

bool cAdvancedImagery::Screen_Info(InfosEcran& infos) {
  infos = InfosEcran{};
  QScreen* ecran = qGuiApp != nullptr ? QGuiApplication::primaryScreen() : nullptr;
  if (ecran == nullptr) return Echec("No screen available");
  infos.largeur = ecran->geometry().width();
  infos.hauteur = ecran->geometry().height();
  infos.profondeur = ecran->depth();
  infos.frequence = Arrondi(ecran->refreshRate());
  infos.palette = infos.profondeur <= 8;
  infos.couleursPalette = infos.palette ? (1 << infos.profondeur) : 0;
  infos.dpiX = Arrondi(ecran->logicalDotsPerInchX());
  infos.dpiY = Arrondi(ecran->logicalDotsPerInchY());
  return true;
}

// ---- Effects of the library ----

bool cAdvancedImagery::Effect_Invert(Bitmap& image) {
  if (!Valide(image) || !CouleursVraies(image)) return false;
  if (!FreeImage_Invert(image.Get())) return EchecBibliotheque("Image could not be inverted");
  return true;
}

bool cAdvancedImagery::Effect_Resize(Bitmap& image, int largeur, int hauteur, int filtre) {
  if (!Valide(image)) return false;
  FREE_IMAGE_FILTER f = FILTER_LANCZOS3;
  switch (filtre) {
    case 1: f = FILTER_BILINEAR; break;
    case 2: f = FILTER_BSPLINE; break;
    case 4: f = FILTER_BICUBIC; break;
    default: f = FILTER_LANCZOS3; break;
  }
  return Remplacer(image, FreeImage_Rescale(image.Get(), std::max(largeur, 1), std::max(hauteur, 1), f),
                   "Image could not be resized");
}

bool cAdvancedImagery::Effect_Rotate90(Bitmap& image, int angle) {
  if (!Valide(image)) return false;
  if (angle != 90 && angle != 180 && angle != 270)
    return Echec(QString("Rotation angle must be 90, 180 or 270, not %1").arg(angle));
  return Remplacer(image, FreeImage_Rotate(image.Get(), angle), "Image could not be rotated");
}

bool cAdvancedImagery::Effect_Brightness(Bitmap& image, double pourcentage) {
  if (!Valide(image) || !CouleursVraies(image)) return false;
  if (!FreeImage_AdjustBrightness(image.Get(), pourcentage)) return EchecBibliotheque("Brightness could not be adjusted");
  return true;
}

bool cAdvancedImagery::Effect_Contrast(Bitmap& image, double pourcentage) {
  if (!Valide(image) || !CouleursVraies(image)) return false;
  if (!FreeImage_AdjustContrast(image.Get(), pourcentage)) return EchecBibliotheque("Contrast could not be adjusted");
  return true;
}

bool cAdvancedImagery::Effect_Gamma(Bitmap& image, double gamma) {
  if (!Valide(image)) return false;
  if (!(gamma > 0)) return Echec("Gamma must be greater than 0");
  if (!CouleursVraies(image)) return false;
  if (!FreeImage_AdjustGamma(image.Get(), gamma)) return EchecBibliotheque("Gamma could not be adjusted");
  return true;
}

bool cAdvancedImagery::Effect_Grayscale(Bitmap& image) {
  if (!Valide(image)) return false;
  // Grey levels come back to 24 bits: the rest of the program works on 24-bit bitmaps.
  Bitmap gris(FreeImage_ConvertToGreyscale(image.Get()));
  if (gris.Vide()) return EchecBibliotheque("Image could not be converted to grey levels");
  return Remplacer(image, FreeImage_ConvertTo24Bits(gris.Get()), "Image could not be converted to grey levels");
}

// ---- Pixel loops of this layer ----

namespace {

template <typename Effet>
bool AppliquerRVB(FIBITMAP* dib, Effet effet) {
  ImageRVB pixels = VersRVB(dib);
  if (!effet(pixels)) return false;
  DepuisRVB(pixels, dib);
  return true;
}

}  // namespace

bool cAdvancedImagery::Effect_Blur(Bitmap& image, bool normal) {
  if (!Valide(image) || !En24Bits(image)) return false;
  return AppliquerRVB(image.Get(), [&](ImageRVB& p) { Flou(p, normal); return true; });
}

bool cAdvancedImagery::Effect_Sharpen(Bitmap& image, bool normal) {
  if (!Valide(image) || !En24Bits(image)) return false;
  return AppliquerRVB(image.Get(), [&](ImageRVB& p) { Nettete(p, normal); return true; });
}

bool cAdvancedImagery::Effect_Emboss(Bitmap& image, bool fort, bool gris) {
  if (!Valide(image) || !En24Bits(image)) return false;
  return AppliquerRVB(image.Get(), [&](ImageRVB& p) { BasRelief(p, fort, gris); return true; });
}

bool cAdvancedImagery::Effect_Etch(Bitmap& image, bool fort, bool gris) {
  if (!Valide(image) || !En24Bits(image)) return false;
  return AppliquerRVB(image.Get(), [&](ImageRVB& p) { Gravure(p, fort, gris); return true; });
}

bool cAdvancedImagery::Effect_RGB_Filter(Bitmap& image, float rouge, float vert, float bleu) {
  if (!Valide(image)) return false;
  for (float p : {rouge, vert, bleu})
    if (!(p >= -100.0f && p <= 100.0f)) return Echec("RGB filter percentages must lie between -100 and 100");
  if (rouge == 0.0f && vert == 0.0f && bleu == 0.0f) return true;
  if (!En24Bits(image)) return false;
  return AppliquerRVB(image.Get(), [&](ImageRVB& p) { return FiltreRVB(p, rouge, vert, bleu); });
}

// ---- Composition ----

bool cAdvancedImagery::Effect_Zoom(const Bitmap& source, Bitmap& sortie, int x, int y, int l, int h,
                                   double facteur) {
  sortie.Reset();
  if (!Valide(source)) return false;
  const int largeur = static_cast<int>(FreeImage_GetWidth(source.Get()));
  const int hauteur = static_cast<int>(FreeImage_GetHeight(source.Get()));
  if (l < 1 || h < 1 || x < 0 || y < 0 || x + l > largeur || y + h > hauteur)
    return Echec(QString("Rectangle %1, %2, %3 x %4 does not lie inside the image").arg(x).arg(y).arg(l).arg(h));
  if (!(facteur > 0)) return Echec("Zoom factor must be greater than 0");
  // FreeImage_Copy counts rows from the top.
  Bitmap partie(FreeImage_Copy(source.Get(), x, y, x + l, y + h));
  if (partie.Vide()) return EchecBibliotheque("Image part could not be copied");
  FreeImage_CloneMetadata(partie.Get(), source.Get());
  const int zl = std::max(1, Arrondi(l * facteur));
  const int zh = std::max(1, Arrondi(h * facteur));
  if (zl != l || zh != h) {
    // Box filter: an enlarged pixel stays a sharp square.
    if (!Remplacer(partie, FreeImage_Rescale(partie.Get(), zl, zh, FILTER_BOX), "Image part could not be zoomed"))
      return false;
  }
  sortie = std::move(partie);
  return true;
}

bool cAdvancedImagery::Effect_Thumbnail(const Bitmap& source, Bitmap& sortie, int cote) {
  sortie.Reset();
  if (!Valide(source)) return false;
  if (cote < 1) return Echec("Thumbnail size must be at least 1");
  FIBITMAP* vignette = FreeImage_MakeThumbnail(source.Get(), cote, TRUE);
  if (vignette == nullptr) return EchecBibliotheque("Thumbnail could not be made");
  sortie.Reset(vignette);
  return true;
}

bool cAdvancedImagery::Effect_Reduire(const Bitmap& source, Bitmap& sortie, int cote) {
  sortie.Reset();
  if (!Valide(source)) return false;
  if (cote < 1) return Echec("Reduced size must be at least 1");
  const int l = static_cast<int>(FreeImage_GetWidth(source.Get())), h = static_cast<int>(FreeImage_GetHeight(source.Get()));
  const int k = (std::max(l, h) + cote - 1) / cote;
  if (k <= 1) return IO_Copy(source, sortie);
  return Effect_ReduireFacteur(source, sortie, k);
}

namespace {
template <int O>
void MoyennesBlocs(FIBITMAP* dib, FIBITMAP* r, int k, int lr, int hr) {
  // Scan lines run bottom-up: picture row y is scan line h - 1 - y, so that
  // the rows left out are the picture's last ones.
  const int h = static_cast<int>(FreeImage_GetHeight(dib));
  const uint32_t n = uint32_t(k * k);
  const auto bande = [&](int y0, int y1) {
    std::vector<uint32_t> sommes(size_t(lr) * O);
    for (int yr = y0; yr < y1; ++yr) {
      std::fill(sommes.begin(), sommes.end(), 0u);
      for (int dy = 0; dy < k; ++dy) {
        const BYTE* p = FreeImage_GetScanLine(dib, h - 1 - (yr * k + dy));
        uint32_t* s = sommes.data();
        for (int xr = 0; xr < lr; ++xr, s += O)
          for (int dx = 0; dx < k; ++dx, p += O)
            for (int c = 0; c < O; ++c) s[c] += p[c];
      }
      BYTE* cible = FreeImage_GetScanLine(r, hr - 1 - yr);
      for (size_t i = 0; i < sommes.size(); ++i) cible[i] = BYTE((sommes[i] + n / 2) / n);
    }
  };
  // Two halves of the rows at once: the reduction reads the whole picture.
  if (size_t(lr) * size_t(hr) * size_t(k) * size_t(k) < 2000000) {
    bande(0, hr);
    return;
  }
  std::thread autre(bande, hr / 2, hr);
  bande(0, hr / 2);
  autre.join();
}
}  // namespace

bool cAdvancedImagery::Effect_ReduireFacteur(const Bitmap& source, Bitmap& sortie, int k) {
  sortie.Reset();
  if (!Valide(source)) return false;
  FIBITMAP* dib = source.Get();
  const int l = static_cast<int>(FreeImage_GetWidth(dib)), h = static_cast<int>(FreeImage_GetHeight(dib));
  const int lr = l / std::max(1, k), hr = h / std::max(1, k);
  if (k <= 1 || lr < 1 || hr < 1) return IO_Copy(source, sortie);
  const int bpp = static_cast<int>(FreeImage_GetBPP(dib));
  if (FreeImage_GetImageType(dib) != FIT_BITMAP || (bpp != 24 && bpp != 32)) {
    FIBITMAP* r = FreeImage_Rescale(dib, lr, hr, FILTER_BOX);
    if (r == nullptr) return EchecBibliotheque("Image could not be reduced");
    sortie.Reset(r);
    return true;
  }
  FIBITMAP* r = FreeImage_Allocate(lr, hr, bpp, FI_RGBA_RED_MASK, FI_RGBA_GREEN_MASK, FI_RGBA_BLUE_MASK);
  if (r == nullptr) return EchecBibliotheque("Image could not be reduced");
  FreeImage_CloneMetadata(r, dib);
  FreeImage_SetDotsPerMeterX(r, FreeImage_GetDotsPerMeterX(dib));
  FreeImage_SetDotsPerMeterY(r, FreeImage_GetDotsPerMeterY(dib));
  // Each pixel is the mean of a k x k block; the last columns and rows that
  // do not fill a block are left out.
  if (bpp == 24) MoyennesBlocs<3>(dib, r, k, lr, hr);
  else MoyennesBlocs<4>(dib, r, k, lr, hr);
  sortie.Reset(r);
  return true;
}

bool cAdvancedImagery::Effect_SetTransparentColor(Bitmap& image, int couleur) {
  if (!Valide(image)) return false;
  couleurTransparente_ = couleur < 0 ? -1 : (couleur & 0xFFFFFF);
  return true;
}

bool cAdvancedImagery::Effect_OverlayPicture(Bitmap& dessous, const Bitmap& dessus, int x, int y) {
  if (!Valide(dessous) || !Valide(dessus) || !CouleursVraies(dessous)) return false;
  // FreeImage_Paste cannot leave a colour out: the copy is done here.
  FIBITMAP* source = dessus.Get();
  Bitmap copie;
  if (!(FreeImage_GetImageType(source) == FIT_BITMAP && FreeImage_GetBPP(source) == 24)) {
    copie.Reset(Copie24Bits(source));
    if (copie.Vide()) return EchecBibliotheque("Image could not be converted to 24 bits");
    source = copie.Get();
  }
  FIBITMAP* cible = dessous.Get();
  const int ls = static_cast<int>(FreeImage_GetWidth(source));
  const int hs = static_cast<int>(FreeImage_GetHeight(source));
  const int lc = static_cast<int>(FreeImage_GetWidth(cible));
  const int hc = static_cast<int>(FreeImage_GetHeight(cible));
  const int octets = static_cast<int>(FreeImage_GetBPP(cible)) / 8;
  for (int sy = 0; sy < hs; ++sy) {
    const int cy = y + sy;
    if (cy < 0 || cy >= hc) continue;
    const BYTE* ligneSource = FreeImage_GetScanLine(source, hs - 1 - sy);
    BYTE* ligneCible = FreeImage_GetScanLine(cible, hc - 1 - cy);
    for (int sx = std::max(0, -x); sx < ls && x + sx < lc; ++sx) {
      const BYTE* p = ligneSource + sx * 3;
      const int couleur = p[FI_RGBA_RED] | (p[FI_RGBA_GREEN] << 8) | (p[FI_RGBA_BLUE] << 16);
      if (couleur == couleurTransparente_) continue;
      EcrirePixel(ligneCible, x + sx, octets, p[FI_RGBA_RED], p[FI_RGBA_GREEN], p[FI_RGBA_BLUE]);
    }
  }
  return true;
}

bool cAdvancedImagery::Effect_OverlayText(Bitmap& image, const QString& texte,
                                          const TexteSurImage& t) {
  if (!Valide(image)) return false;
  QImage picture;
  QString refus = RefusTexte(t);
  if (!refus.isEmpty()) return Echec(refus);
  if (!Convert_ImageToPicture(image, picture)) return false;
  DessinerTexte(picture, texte, t);
  Bitmap dessine;
  if (!Convert_PictureToImage(picture, dessine)) return false;
  FIBITMAP* nouveau = dessine.Release();
  return Remplacer(image, nouveau, "Text could not be drawn");
}

QString cAdvancedImagery::RefusTexte(const TexteSurImage& t) {
  if (t.alignH != 0 && t.alignH != 3 && t.alignH != 4)
    return QString("Invalid horizontal text alignment %1").arg(t.alignH);
  if (t.alignV < 0 || t.alignV > 2) return QString("Invalid vertical text alignment %1").arg(t.alignV);
  if (t.rotation < 0 || t.rotation > 3600) return QString("Invalid text rotation %1").arg(t.rotation);
  return {};
}

void cAdvancedImagery::DessinerTexte(QImage& picture, const QString& texte, const TexteSurImage& t) {
  QFont police(t.police);
  // Points at 96 dots per inch, as the screen fonts of the system measure them.
  police.setPixelSize(std::max(1, static_cast<int>(std::lround(t.taille * 96.0 / 72.0))));
  police.setBold(t.gras);
  police.setItalic(t.italique);
  police.setUnderline(t.souligne);
  police.setStrikeOut(t.barre);
  QPainter p(&picture);
  p.setRenderHint(QPainter::Antialiasing);
  p.setRenderHint(QPainter::TextAntialiasing);
  p.setFont(police);
  QTextOption option;
  option.setAlignment(t.alignH == 3 ? Qt::AlignLeft : t.alignH == 4 ? Qt::AlignRight
                                                                     : Qt::AlignHCenter);
  option.setTabStopDistance(t.tabulation * QFontMetricsF(police).horizontalAdvance(QLatin1Char(' ')));
  option.setWrapMode(!t.ligneUnique && t.coupureMots ? QTextOption::WordWrap
                                                     : QTextOption::NoWrap);
  const QString ecrit = t.ligneUnique ? QString(texte).replace(QRegularExpression("\\r?\\n"), " ")
                                      : texte;
  const QRectF rect(QPointF(t.gauche, t.haut), QPointF(t.droite, t.bas));
  const bool point = rect.width() <= 0 || rect.height() <= 0;
  // The size of the text itself, wrapped to the rectangle's width when asked.
  const qreal largeurLigne = option.wrapMode() == QTextOption::WordWrap && !point ? rect.width() : 1e6;
  const QSizeF taille = p.boundingRect(QRectF(0, 0, largeurLigne, 1e6), ecrit, option).size();
  // The anchor named by the alignments, and the text's box around it.
  const qreal ax = t.alignH == 3 ? rect.left() : t.alignH == 4 ? rect.right() : rect.center().x();
  const qreal ay = t.alignV == 1 ? rect.top() : t.alignV == 2 ? rect.bottom() : rect.center().y();
  const qreal bx = t.alignH == 3 ? 0 : t.alignH == 4 ? -taille.width() : -taille.width() / 2;
  const qreal by = t.alignV == 1 ? 0 : t.alignV == 2 ? -taille.height() : -taille.height() / 2;
  const QRectF boite(bx, by, taille.width(), taille.height());
  if (!point && !t.sansDecoupe && t.rotation == 0) p.setClipRect(rect);
  p.translate(ax, ay);
  p.rotate(-t.rotation / 10.0);
  if (t.fond != -1) p.fillRect(boite, CouleurBGR(t.fond));
  p.setPen(CouleurBGR(t.couleur));
  p.drawText(boite, ecrit, option);
}

bool cAdvancedImagery::MemoryDC_FillRectangle(Bitmap& image, int x, int y, int l, int h, int couleur) {
  if (!Valide(image) || !CouleursVraies(image)) return false;
  FIBITMAP* dib = image.Get();
  const int largeur = static_cast<int>(FreeImage_GetWidth(dib));
  const int hauteur = static_cast<int>(FreeImage_GetHeight(dib));
  const int octets = static_cast<int>(FreeImage_GetBPP(dib)) / 8;
  const int x0 = std::max(x, 0), x1 = std::min(x + l, largeur);
  const int y0 = std::max(y, 0), y1 = std::min(y + h, hauteur);
  const QColor c = CouleurBGR(couleur);
  for (int py = y0; py < y1; ++py) {
    BYTE* ligne = FreeImage_GetScanLine(dib, hauteur - 1 - py);
    for (int px = x0; px < x1; ++px)
      EcrirePixel(ligne, px, octets, static_cast<BYTE>(c.red()), static_cast<BYTE>(c.green()),
                  static_cast<BYTE>(c.blue()));
  }
  return true;
}

// ---- Clipboard ----

bool cAdvancedImagery::Clipboard_Get(Bitmap& sortie) {
  sortie.Reset();
  QClipboard* pressePapier = qGuiApp != nullptr ? QGuiApplication::clipboard() : nullptr;
  if (pressePapier == nullptr) return Echec("No clipboard available");
  const QImage image = pressePapier->image();
  if (image.isNull()) return Echec("No picture on the clipboard");
  return Convert_PictureToImage(image, sortie);
}

bool cAdvancedImagery::Clipboard_Set(const Bitmap& image) {
  QClipboard* pressePapier = qGuiApp != nullptr ? QGuiApplication::clipboard() : nullptr;
  if (pressePapier == nullptr) return Echec("No clipboard available");
  QImage picture;
  if (!Convert_ImageToPicture(image, picture)) return false;
  pressePapier->setImage(picture);
  return true;
}

// ---- Metadata ----

bool cAdvancedImagery::Metadata_Get_EXIF(const Bitmap& image, QString& texte, int genre) {
  texte.clear();
  if (!ValideEntete(image)) return false;
  FREE_IMAGE_MDMODEL modele;
  if (genre == 1) modele = FIMD_EXIF_MAIN;
  else if (genre == 2) modele = FIMD_EXIF_EXIF;
  else return Echec(QString("Unknown metadata kind %1").arg(genre));
  QStringList lignes;
  FITAG* tag = nullptr;
  FIMETADATA* recherche = FreeImage_FindFirstMetadata(modele, image.Get(), &tag);
  if (recherche != nullptr) {
    do {
      const char* cle = FreeImage_GetTagKey(tag);
      if (cle == nullptr) continue;
      QString valeur;
      if (LuEnFraction(cle)) valeur = TexteFraction(tag);
      if (valeur.isEmpty()) {
        const char* affiche = FreeImage_TagToString(modele, tag, nullptr);
        valeur = affiche != nullptr ? DepuisWindows1252(QByteArray(affiche)) : QString();
      }
      lignes << QString::fromLatin1(cle) + " = " + valeur;
    } while (FreeImage_FindNextMetadata(recherche, &tag));
    FreeImage_FindCloseMetadata(recherche);
  }
  texte = lignes.join("\r\n");
  return true;
}

bool cAdvancedImagery::Metadata_Get_Comments(const Bitmap& image, QString& texte) {
  texte.clear();
  if (!ValideEntete(image)) return false;
  FITAG* tag = nullptr;
  if (!FreeImage_GetMetadata(FIMD_COMMENTS, image.Get(), "Comment", &tag) || tag == nullptr) return true;
  const char* valeur = static_cast<const char*>(FreeImage_GetTagValue(tag));
  if (valeur == nullptr) return true;
  QByteArray octets(valeur, static_cast<qsizetype>(FreeImage_GetTagLength(tag)));
  // The stored length counts the closing NUL.
  const qsizetype fin = octets.indexOf('\0');
  if (fin >= 0) octets.truncate(fin);
  texte = DepuisWindows1252(octets);
  return true;
}

bool cAdvancedImagery::Metadata_Set_Comments(Bitmap& image, const QString& texte) {
  if (!Valide(image)) return false;
  QByteArray octets = VersWindows1252(texte);
  const qsizetype fin = octets.indexOf('\0');
  if (fin >= 0) octets.truncate(fin);  // the JPEG writer stops at the first NUL
  if (octets.isEmpty()) {
    FreeImage_SetMetadata(FIMD_COMMENTS, image.Get(), "Comment", nullptr);
    return true;
  }
  // One JPEG comment segment holds at most 65533 bytes.
  if (octets.size() > 65533) return Echec("Comment is too long (65533 bytes at most)");
  FITAG* tag = FreeImage_CreateTag();
  if (tag == nullptr) return EchecBibliotheque("Comment could not be attached");
  const auto longueur = static_cast<DWORD>(octets.size() + 1);
  const bool fait = FreeImage_SetTagKey(tag, "Comment") && FreeImage_SetTagType(tag, FIDT_ASCII) &&
                    FreeImage_SetTagLength(tag, longueur) && FreeImage_SetTagCount(tag, longueur) &&
                    FreeImage_SetTagValue(tag, octets.constData()) &&
                    FreeImage_SetMetadata(FIMD_COMMENTS, image.Get(), "Comment", tag);
  FreeImage_DeleteTag(tag);
  if (!fait) return EchecBibliotheque("Comment could not be attached");
  return true;
}

}  // namespace tg
