#include "imaging/LecteurRAW.h"

// LibRaw and FreeImage both name a 64-bit integer INT64, as long long and
// as int64_t: LibRaw's are renamed while its header is read (the same type
// underneath, so nothing changes in its interface).
#define INT64 LibRawINT64
#define UINT64 LibRawUINT64
#include <libraw/libraw.h>
#undef INT64
#undef UINT64
#include <FreeImage.h>

#include <QBuffer>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "imaging/BibliothequeDynamique.h"
#include "imaging/Bitmap.h"
#include "imaging/LecteurTIFF.h"
#include "imaging/VerificationFichier.h"

namespace tg {

namespace {

// ---- LibRaw is opened at the first RAW read: a JPEG run never maps it.
// Its C interface, whose names the loader can find (`libraw_data_t` is the
// C++ object's imgdata). Every function the program calls is in this list,
// taken by its own name and typed from its declaration.
#define TG_FONCTIONS_RAW(X)                                                                                    \
  X(init)                                                                                                      \
  X(close) X(open_file) X(set_dataerror_handler) X(unpack) X(unpack_thumb) X(dcraw_process)                    \
  X(dcraw_make_mem_image) X(dcraw_make_mem_thumb) X(dcraw_clear_mem) X(recycle) X(strerror)

struct FonctionsRaw {
#define TG_MEMBRE(nom) decltype(&libraw_##nom) nom = nullptr;
  TG_FONCTIONS_RAW(TG_MEMBRE)
#undef TG_MEMBRE
};

bool RemplirRaw(BibliothequeDynamique& bibliotheque, FonctionsRaw& f, QString& erreur) {
  bool ok = true;  // on the first missing function, `erreur` names it and the rest are skipped
#define TG_LIER(nom) ok = ok && bibliotheque.Lier(f.nom, "libraw_" #nom, erreur);
  TG_FONCTIONS_RAW(TG_LIER)
#undef TG_LIER
  return ok;
}

FonctionsDifferees<FonctionsRaw>& TableRaw() {
  static FonctionsDifferees<FonctionsRaw> table(TG_SONAME_RAW, TG_PAQUET_RAW, RemplirRaw);
  return table;
}

// The table, loaded once for the process; nullptr with `erreur` set.
const FonctionsRaw* Raw(QString& erreur) { return TableRaw().Obtenir(erreur); }

using Traitee = std::unique_ptr<libraw_processed_image_t, decltype(&libraw_dcraw_clear_mem)>;

// Counts the damaged or missing data LibRaw meets while decoding (it goes on
// with what it has, or stops at the end of the file).
void DonneesAbimees(void* donnees, const char*, const int) { ++*static_cast<int*>(donnees); }

QString Abime(const FonctionsRaw& f, const QString& nom, int code) {
  QString texte =
      QStringLiteral("L'image RAW du fichier « %1 » ne peut pas être décodée : le fichier est abîmé ou incomplet.")
          .arg(nom);
  if (code != LIBRAW_SUCCESS) texte += QStringLiteral(" (%1)").arg(QString::fromLatin1(f.strerror(code)));
  return texte;
}

// The file opened and LibRaw set for the program's output.
struct Ouvert {
  const FonctionsRaw* f = nullptr;
  std::unique_ptr<libraw_data_t, decltype(&libraw_close)> lr{nullptr, nullptr};
  int erreursDonnees = 0;
  int orientation = 0;  // LibRaw's flip code of the file: bit 4 swaps the axes, 2 rows, 1 columns
};

// LibRaw ready for a file; false with the French reason when the library is
// missing or memory runs out.
bool Preparer(Ouvert& o, const QString& nom, QString& erreur) {
  o.f = Raw(erreur);
  if (o.f == nullptr) return false;
  o.lr = {o.f->init(LIBRAW_OPTIONS_NONE), o.f->close};
  if (!o.lr) erreur = QStringLiteral("Mémoire insuffisante pour l'image « %1 ».").arg(nom);
  return bool(o.lr);
}

// After Preparer: LibRaw's code.
int Ouvrir(const QString& chemin, Ouvert& o) {
  libraw_output_params_t& p = o.lr->params;
  p.use_camera_wb = 1;
  p.output_color = 1;  // sRGB
  p.output_bps = 8;
  o.f->set_dataerror_handler(o.lr.get(), DonneesAbimees, &o.erreursDonnees);
  const int code = o.f->open_file(o.lr.get(), QFile::encodeName(chemin).constData());
  if (code != LIBRAW_SUCCESS) return code;
  o.orientation = o.lr->sizes.flip;
  // The program turns the picture itself, after cutting it to the camera's frame.
  p.user_flip = 0;
  return LIBRAW_SUCCESS;
}

// ---- Metadata

bool Present(FREE_IMAGE_MDMODEL modele, FIBITMAP* dib, const char* cle) {
  FITAG* tag = nullptr;
  return FreeImage_GetMetadata(modele, dib, cle, &tag) && tag != nullptr;
}

void Poser(FREE_IMAGE_MDMODEL modele, FIBITMAP* dib, const char* cle, WORD id, FREE_IMAGE_MDTYPE type, DWORD compte,
           DWORD longueur, const void* valeur) {
  if (Present(modele, dib, cle)) return;  // the file's own value stays
  FITAG* tag = FreeImage_CreateTag();
  if (tag == nullptr) return;
  FreeImage_SetTagKey(tag, cle);
  FreeImage_SetTagID(tag, id);
  FreeImage_SetTagType(tag, type);
  FreeImage_SetTagCount(tag, compte);
  FreeImage_SetTagLength(tag, longueur);
  FreeImage_SetTagValue(tag, valeur);
  FreeImage_SetMetadata(modele, dib, cle, tag);
  FreeImage_DeleteTag(tag);
}

void PoserTexte(FREE_IMAGE_MDMODEL modele, FIBITMAP* dib, const char* cle, WORD id, const QByteArray& texte) {
  if (texte.isEmpty()) return;
  const QByteArray z = texte + '\0';
  Poser(modele, dib, cle, id, FIDT_ASCII, DWORD(z.size()), DWORD(z.size()), z.constData());
}

// A positive value as an EXIF rational of denominator `d`; nothing for 0.
void PoserRationnel(FIBITMAP* dib, const char* cle, WORD id, double valeur, DWORD d) {
  if (!(valeur > 0) || valeur > 1e6) return;
  DWORD f[2] = {DWORD(std::lround(valeur * d)), d};
  if (f[0] == 0) return;
  Poser(FIMD_EXIF_EXIF, dib, cle, id, FIDT_RATIONAL, 1, 8, f);
}

// What LibRaw read of the camera, for the tags the file's own EXIF lacks.
void CompleterExif(const libraw_data_t& lr, FIBITMAP* dib) {
  const libraw_iparams_t& i = lr.idata;
  const libraw_imgother_t& a = lr.other;
  PoserTexte(FIMD_EXIF_MAIN, dib, "Make", 0x010F, QByteArray(i.make).trimmed());
  PoserTexte(FIMD_EXIF_MAIN, dib, "Model", 0x0110, QByteArray(i.model).trimmed());
  if (a.timestamp > 0) {
    // LibRaw gives the camera's clock as local time turned into a time_t.
    const QByteArray date =
        QDateTime::fromSecsSinceEpoch(qint64(a.timestamp)).toString(QStringLiteral("yyyy:MM:dd HH:mm:ss")).toLatin1();
    PoserTexte(FIMD_EXIF_EXIF, dib, "DateTimeOriginal", 0x9003, date);
  }
  PoserRationnel(dib, "FocalLength", 0x920A, a.focal_len, 100);
  PoserRationnel(dib, "FNumber", 0x829D, a.aperture, 10);
  if (a.shutter > 0 && a.shutter < 1) PoserRationnel(dib, "ExposureTime", 0x829A, a.shutter, 1000000);
  else PoserRationnel(dib, "ExposureTime", 0x829A, a.shutter, 1);
  if (a.iso_speed >= 1 && a.iso_speed <= 65535) {
    const WORD iso = WORD(std::lround(a.iso_speed));
    Poser(FIMD_EXIF_EXIF, dib, "ISOSpeedRatings", 0x8827, FIDT_SHORT, 1, 2, &iso);
  }
}

CadreRAW RecadrageDng(const QByteArray& octets);

// Canon's CR3 (ISO base media): the TIFF structures of the boxes CMT1 (IFD0)
// and CMT2 (the EXIF directory) in moov's Canon uuid box. Every box is
// checked to lie inside its parent.
void ExifCr3(const QByteArray& o, const QString& chemin, FIBITMAP* dib) {
  auto u32 = [&](qsizetype p) {
    return p + 4 <= o.size() ? uint32_t(uint8_t(o[p])) << 24 | uint32_t(uint8_t(o[p + 1])) << 16 |
                                   uint32_t(uint8_t(o[p + 2])) << 8 | uint8_t(o[p + 3])
                             : 0u;
  };
  // Calls f(type, start of content, end) for each box of [debut, fin) with a 32-bit size.
  auto boites = [&](qsizetype debut, qsizetype fin, auto&& f) {
    for (qsizetype p = debut; p + 8 <= fin;) {
      const uint32_t taille = u32(p);
      if (taille < 8 || taille > uint64_t(fin - p)) return;
      f(o.mid(p + 4, 4), p + 8, p + qsizetype(taille));
      p += qsizetype(taille);
    }
  };
  boites(0, o.size(), [&](const QByteArray& t, qsizetype d, qsizetype f) {
    if (t != "moov") return;
    boites(d, f, [&](const QByteArray& t2, qsizetype d2, qsizetype f2) {
      if (t2 != "uuid") return;
      boites(d2 + 16, f2, [&](const QByteArray& t3, qsizetype d3, qsizetype f3) {
        if (t3 == "CMT1" || t3 == "CMT2") AttacherExifTIFF(o.mid(d3, f3 - d3), chemin, dib, t3 == "CMT2");
      });
    });
  });
}

// The file's own EXIF, for the TIFF-shaped types, and a DNG's default crop.
// ORF and RW2 have a TIFF structure under a mark of their own instead of 42:
// read as TIFF.
void ExifFichier(const QString& chemin, FIBITMAP* dib, CadreRAW& dng) {
  QFile f(chemin);
  if (!f.open(QIODevice::ReadOnly) || f.size() < 8) return;
  const uchar* carte = f.map(0, f.size());
  QByteArray octets =
      carte ? QByteArray::fromRawData(reinterpret_cast<const char*>(carte), f.size()) : f.readAll();
  const bool intel = octets.startsWith("IIRO") || octets.startsWith("IIRS") || octets.startsWith("IIU\0");
  if (intel || octets.startsWith("MMOR")) {
    octets.detach();
    octets[2] = intel ? char(42) : char(0);
    octets[3] = intel ? char(0) : char(42);
  }
  if (octets.mid(4, 8) == "ftypcrx ") ExifCr3(octets, chemin, dib);
  if (!octets.startsWith("II*\0") && !octets.startsWith("MM\0*")) return;
  AttacherExifTIFF(octets, chemin, dib);
  dng = RecadrageDng(octets);
}

// ---- A DNG's default crop, in the main picture's directory (IFD0 or one of
// its SubIFDs, the one whose NewSubFileType is 0). LibRaw 0.20 reads it
// nowhere the program can ask. Every offset is checked against the file.

class TiffOctets {
 public:
  TiffOctets(const QByteArray& o) : o_(o), be_(o.startsWith("MM")) {}
  bool u16(int64_t p, uint32_t& v) const {
    if (p < 0 || p + 2 > o_.size()) return false;
    const uint32_t a = uint8_t(o_[qsizetype(p)]), b = uint8_t(o_[qsizetype(p + 1)]);
    v = be_ ? (a << 8 | b) : (b << 8 | a);
    return true;
  }
  bool u32(int64_t p, uint32_t& v) const {
    uint32_t a = 0, b = 0;
    if (!u16(p, a) || !u16(p + 2, b)) return false;
    v = be_ ? (a << 16 | b) : (b << 16 | a);
    return true;
  }
  // Element k of an entry's value of type SHORT, LONG or RATIONAL, as a number.
  bool valeur(int64_t entree, uint32_t k, double& v) const {
    uint32_t type = 0, nombre = 0, n = 0, d = 1;
    if (!u16(entree + 2, type) || !u32(entree + 4, nombre) || k >= nombre) return false;
    const int taille = type == 3 ? 2 : type == 4 ? 4 : type == 5 ? 8 : 0;
    if (taille == 0) return false;
    int64_t p = entree + 8;
    if (int64_t(taille) * nombre > 4) {
      uint32_t position = 0;
      if (!u32(entree + 8, position)) return false;
      p = position;
    }
    p += int64_t(k) * taille;
    if (!(type == 3 ? u16(p, n) : u32(p, n)) || (type == 5 && (!u32(p + 4, d) || d == 0))) return false;
    v = double(n) / d;
    return true;
  }
  // The entry of `tag` in the directory at `ifd`; -1 when absent.
  int64_t entree(int64_t ifd, uint32_t tag) const {
    uint32_t n = 0, t = 0;
    if (!u16(ifd, n)) return -1;
    for (uint32_t i = 0; i < n && i < 1000; ++i)
      if (u16(ifd + 2 + 12 * int64_t(i), t) && t == tag) return ifd + 2 + 12 * int64_t(i);
    return -1;
  }

 private:
  const QByteArray& o_;
  bool be_;
};

CadreRAW RecadrageDng(const QByteArray& octets) {
  const TiffOctets t(octets);
  uint32_t ifd0 = 0;
  if (!t.u32(4, ifd0)) return {};
  std::vector<int64_t> repertoires = {ifd0};
  if (const int64_t sous = t.entree(ifd0, 330); sous >= 0)
    for (uint32_t k = 0; k < 16; ++k) {
      double p = 0;
      if (!t.valeur(sous, k, p)) break;
      repertoires.push_back(int64_t(p));
    }
  for (int64_t ifd : repertoires) {
    double type = 0;
    const int64_t nouveau = t.entree(ifd, 254);
    if (nouveau >= 0 && (!t.valeur(nouveau, 0, type) || type != 0)) continue;  // a preview
    const int64_t origine = t.entree(ifd, 0xC61F), taille = t.entree(ifd, 0xC620);
    double x = 0, y = 0, l = 0, h = 0;
    if (origine < 0 || taille < 0 || !t.valeur(origine, 0, x) || !t.valeur(origine, 1, y) ||
        !t.valeur(taille, 0, l) || !t.valeur(taille, 1, h) || l < 1 || h < 1 || l > 1e5 || h > 1e5 || x > 1e5 ||
        y > 1e5)
      continue;
    return {int(std::lround(x)), int(std::lround(y)), int(std::lround(l)), int(std::lround(h))};
  }
  return {};
}

int EntierExif(FIBITMAP* dib, const char* cle) {
  FITAG* tag = nullptr;
  if (!FreeImage_GetMetadata(FIMD_EXIF_EXIF, dib, cle, &tag) || tag == nullptr || FreeImage_GetTagCount(tag) < 1)
    return 0;
  const void* v = FreeImage_GetTagValue(tag);
  if (v == nullptr) return 0;
  if (FreeImage_GetTagType(tag) == FIDT_SHORT) return *static_cast<const WORD*>(v);
  if (FreeImage_GetTagType(tag) == FIDT_LONG) return int(std::min<DWORD>(*static_cast<const DWORD*>(v), 1u << 30));
  return 0;
}

// The metadata of the file, on a bitmap of no pixels; a DNG's default crop.
FIBITMAP* Metadonnees(const QString& chemin, const libraw_data_t& lr, CadreRAW& dng) {
  FIBITMAP* meta = ExifRAW(chemin, dng);
  if (meta != nullptr) CompleterExif(lr, meta);
  return meta;
}

// The frame of the camera's JPEG in LibRaw's whole output (before turning).
CadreRAW Cadre(const libraw_data_t& lr, FIBITMAP* meta, const CadreRAW& dng) {
  const libraw_image_sizes_t& s = lr.sizes;
  return CadreJpegAppareil(s.width, s.height, EntierExif(meta, "PixelXDimension"), EntierExif(meta, "PixelYDimension"),
                           lr.idata.dng_version != 0 ? dng : CadreRAW{});
}

}  // namespace

FIBITMAP* ExifRAW(const QString& chemin, CadreRAW& dng) {
  dng = {};
  FIBITMAP* meta = AllouerEntete(1, 1, 24);
  if (meta != nullptr) ExifFichier(chemin, meta, dng);
  return meta;
}

CadreRAW CadreJpegAppareil(int largeur, int hauteur, int exifLargeur, int exifHauteur, const CadreRAW& dng) {
  const CadreRAW tout{0, 0, largeur, hauteur};
  if (dng.largeur > 0 && dng.hauteur > 0 && dng.x >= 0 && dng.y >= 0 && dng.x + dng.largeur <= largeur &&
      dng.y + dng.hauteur <= hauteur)
    return dng;
  if (exifLargeur < 1 || exifHauteur < 1) return tout;
  // A portrait JPEG may give its size turned.
  if ((exifLargeur > exifHauteur) != (largeur > hauteur)) std::swap(exifLargeur, exifHauteur);
  if (exifLargeur > largeur || exifHauteur > hauteur || exifLargeur * 10 < largeur * 9 ||
      exifHauteur * 10 < hauteur * 9)
    return tout;
  return {(largeur - exifLargeur) / 2, (hauteur - exifHauteur) / 2, exifLargeur, exifHauteur};
}

FIBITMAP* LireRAW(const QString& chemin, int reduction, int& largeurFichier, int& hauteurFichier, QString& erreur,
                  bool pixels) {
  erreur.clear();
  largeurFichier = hauteurFichier = 0;
  const QString nom = QFileInfo(chemin).fileName();
  Ouvert o;
  if (!Preparer(o, nom, erreur)) return nullptr;
  const FonctionsRaw& f = *o.f;
  o.lr->params.half_size = reduction == 2 ? 1 : 0;
  int code = Ouvrir(chemin, o);
  if (code != LIBRAW_SUCCESS) {
    erreur = code == LIBRAW_FILE_UNSUPPORTED
                 ? QStringLiteral("Le fichier « %1 » n'est pas un fichier RAW que le programme sait lire.").arg(nom)
                 : Abime(f, nom, code);
    return nullptr;
  }
  const libraw_image_sizes_t& s = o.lr->sizes;
  if (s.width < 1 || s.height < 1 || s.width > kCoteMaxImage || s.height > kCoteMaxImage ||
      int64_t(s.width) * s.height > kPixelsMaxImage) {
    erreur = QStringLiteral("L'image « %1 » est trop grande ou sans taille (%2 x %3 pixels).")
                 .arg(nom)
                 .arg(s.width)
                 .arg(s.height);
    return nullptr;
  }
  // No camera stores fewer than a bit for every 8 pixels, even compressed: a
  // header announcing more is damaged, and its picture would only fill memory.
  if (const qint64 octets = QFileInfo(chemin).size(); int64_t(s.raw_width) * s.raw_height > octets * 8) {
    erreur = QStringLiteral("Le fichier « %1 » est incomplet : son en-tête annonce une image de %2 x %3 pixels que "
                            "ses %4 octets ne contiennent pas.")
                 .arg(nom)
                 .arg(s.raw_width)
                 .arg(s.raw_height)
                 .arg(octets);
    return nullptr;
  }
  CadreRAW dng;
  std::unique_ptr<FIBITMAP, void (*)(FIBITMAP*)> meta(Metadonnees(chemin, *o.lr, dng), FreeImage_Unload);
  if (!meta) {
    erreur = QStringLiteral("Mémoire insuffisante pour l'image « %1 ».").arg(nom);
    return nullptr;
  }
  const CadreRAW cadre = Cadre(*o.lr, meta.get(), dng);
  const bool tourne = (o.orientation & 4) != 0;
  largeurFichier = tourne ? cadre.hauteur : cadre.largeur;
  hauteurFichier = tourne ? cadre.largeur : cadre.hauteur;
  if (!pixels) {
    FIBITMAP* entete = AllouerEntete(largeurFichier, hauteurFichier, 24);
    if (entete != nullptr) FreeImage_CloneMetadata(entete, meta.get());
    else erreur = QStringLiteral("Mémoire insuffisante pour l'image « %1 ».").arg(nom);
    return entete;
  }

  if ((code = f.unpack(o.lr.get())) != LIBRAW_SUCCESS || o.erreursDonnees > 0 ||
      (code = f.dcraw_process(o.lr.get())) != LIBRAW_SUCCESS || o.erreursDonnees > 0) {
    erreur = Abime(f, nom, code);
    return nullptr;
  }
  int codeImage = 0;
  Traitee image(f.dcraw_make_mem_image(o.lr.get(), &codeImage), f.dcraw_clear_mem);
  if (!image || image->type != LIBRAW_IMAGE_BITMAP || image->bits != 8 || (image->colors != 3 && image->colors != 1)) {
    erreur = Abime(f, nom, codeImage);
    return nullptr;
  }
  // The raw data are no longer needed: only the 8-bit picture stays.
  f.recycle(o.lr.get());

  // The frame in the decoded picture: the same at half size, halved.
  const int k = reduction == 2 ? 2 : 1;
  const int il = image->width, ih = image->height;
  const int cx = std::min(cadre.x / k, il - 1), cy = std::min(cadre.y / k, ih - 1);
  const int cl = std::clamp(cadre.largeur / k, 1, il - cx), ch = std::clamp(cadre.hauteur / k, 1, ih - cy);
  const int ol = tourne ? ch : cl, oh = tourne ? cl : ch;
  FIBITMAP* dib = FreeImage_Allocate(ol, oh, 24);
  if (dib == nullptr) {
    erreur = QStringLiteral("Mémoire insuffisante pour l'image « %1 ».").arg(nom);
    return nullptr;
  }
  const int couleurs = image->colors;
  const uint8_t* donnees = image->data;
  for (int y = 0; y < oh; ++y) {
    BYTE* ligne = FreeImage_GetScanLine(dib, oh - 1 - y);  // bottom-up
    for (int x = 0; x < ol; ++x) {
      // As LibRaw turns its own output: axes swapped first, then rows and columns reversed.
      int r = y, c = x;
      if (tourne) std::swap(r, c);
      if (o.orientation & 2) r = ch - 1 - r;
      if (o.orientation & 1) c = cl - 1 - c;
      const uint8_t* p = donnees + (size_t(cy + r) * il + size_t(cx + c)) * couleurs;
      BYTE* d = ligne + size_t(x) * 3;
      d[FI_RGBA_RED] = p[0];
      d[FI_RGBA_GREEN] = p[couleurs == 3 ? 1 : 0];
      d[FI_RGBA_BLUE] = p[couleurs == 3 ? 2 : 0];
    }
  }
  FreeImage_CloneMetadata(dib, meta.get());
  return dib;
}

QImage VignetteRAW(const QString& chemin, int cote, QString& erreur) {
  erreur.clear();
  const QString nom = QFileInfo(chemin).fileName();
  QImage vignette;
  int orientation = 0;
  {
    Ouvert o;
    if (!Preparer(o, nom, erreur)) return {};
    const FonctionsRaw& f = *o.f;
    int code = Ouvrir(chemin, o);
    if (code != LIBRAW_SUCCESS) {
      erreur = Abime(f, nom, code);
      return {};
    }
    orientation = o.orientation;
    int codeVignette = 0;
    Traitee apercu(nullptr, f.dcraw_clear_mem);
    if (f.unpack_thumb(o.lr.get()) == LIBRAW_SUCCESS) apercu.reset(f.dcraw_make_mem_thumb(o.lr.get(), &codeVignette));
    if (apercu && apercu->type == LIBRAW_IMAGE_JPEG) {
      QByteArray octets = QByteArray::fromRawData(reinterpret_cast<const char*>(apercu->data), apercu->data_size);
      QBuffer tampon(&octets);
      QImageReader lecteur(&tampon, "jpeg");
      lecteur.setAutoTransform(false);
      const QSize taille = lecteur.size();
      // The JPEG decoder reduces in its inverse DCT: a large preview costs little.
      if (taille.isValid() && (taille.width() > cote || taille.height() > cote))
        lecteur.setScaledSize(taille.scaled(cote, cote, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
      vignette = lecteur.read();
    } else if (apercu && apercu->type == LIBRAW_IMAGE_BITMAP && apercu->bits == 8 && apercu->colors == 3) {
      vignette = QImage(apercu->data, apercu->width, apercu->height, apercu->width * 3, QImage::Format_RGB888).copy();
    }
  }
  if (vignette.isNull()) {
    // No preview the program reads: the picture itself, at half size, already turned.
    int l = 0, h = 0;
    std::unique_ptr<FIBITMAP, void (*)(FIBITMAP*)> dib(LireRAW(chemin, 2, l, h, erreur), FreeImage_Unload);
    if (!dib) return {};
    const int il = int(FreeImage_GetWidth(dib.get())), ih = int(FreeImage_GetHeight(dib.get()));
    QImage image(il, ih, QImage::Format_RGB32);
    for (int y = 0; y < ih; ++y) {
      const BYTE* ligne = FreeImage_GetScanLine(dib.get(), ih - 1 - y);
      auto* d = reinterpret_cast<QRgb*>(image.scanLine(y));
      for (int x = 0; x < il; ++x)
        d[x] = qRgb(ligne[x * 3 + FI_RGBA_RED], ligne[x * 3 + FI_RGBA_GREEN], ligne[x * 3 + FI_RGBA_BLUE]);
    }
    return image.scaled(cote, cote, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  }
  // The preview is stored as the sensor sees it: turned as LibRaw turns the
  // picture, columns and rows reversed first, then the axes swapped.
  vignette = vignette.mirrored((orientation & 1) != 0, (orientation & 2) != 0);
  if (orientation & 4) vignette = vignette.transformed(QTransform(0, 1, 1, 0, 0, 0));
  if (vignette.width() > cote || vignette.height() > cote)
    vignette = vignette.scaled(cote, cote, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  return vignette.convertToFormat(QImage::Format_RGB32);
}

void BibliothequeRAWPourEssais(const char* soname, const char* paquet) { TableRaw().PourEssais(soname, paquet); }

}  // namespace tg
