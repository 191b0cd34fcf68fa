#include "imaging/VerificationFichier.h"

#include <QFile>
#include <QFileInfo>
#include <zlib.h>

#include <cerrno>
#include <cstring>
#include <map>

namespace tg {

namespace {

// Bounds-checked reads; every one fails rather than read past the end.
class Octets {
 public:
  Octets(const char* d, int64_t n) : d_(d), n_(n) {}
  int64_t taille() const { return n_; }
  bool a(int64_t p, int64_t n) const { return p >= 0 && n >= 0 && p <= n_ && n <= n_ - p; }
  bool u8(int64_t p, uint32_t& v) const {
    if (!a(p, 1)) return false;
    v = uint8_t(d_[p]);
    return true;
  }
  bool u16(int64_t p, bool be, uint32_t& v) const {
    if (!a(p, 2)) return false;
    const uint32_t x = uint8_t(d_[p]), y = uint8_t(d_[p + 1]);
    v = be ? (x << 8 | y) : (y << 8 | x);
    return true;
  }
  bool u32(int64_t p, bool be, uint32_t& v) const {
    uint32_t h = 0, l = 0;
    if (!u16(p, be, be ? h : l) || !u16(p + 2, be, be ? l : h)) return false;
    v = h << 16 | l;
    return true;
  }
  const char* pointeur(int64_t p) const { return d_ + p; }
  bool egal(int64_t p, const char* s, int64_t n) const { return a(p, n) && std::memcmp(d_ + p, s, size_t(n)) == 0; }
  // Position of the last two bytes `a`, `b` from `depuis` on, -1 when
  // absent. From the end: a JPEG's end marker is in its last bytes, and the
  // picture's data are not read through for it.
  int64_t chercherDernier(int64_t depuis, char a, char b) const {
    if (depuis < 0) return -1;
    for (int64_t fin = n_; fin - depuis >= 2;) {
      const void* r = memrchr(d_ + depuis, static_cast<unsigned char>(a), size_t(fin - 1 - depuis));
      if (r == nullptr) return -1;
      const int64_t i = static_cast<const char*>(r) - d_;
      if (d_[i + 1] == b) return i;
      fin = i + 1;
    }
    return -1;
  }

 private:
  const char* d_;
  int64_t n_;
};

QString Guillemets(const QString& nom) { return QStringLiteral("« %1 »").arg(nom); }

struct Resultat {
  VerificationImage& v;
  const QString& nom;

  VerificationImage& Refus(const QString& texte) {
    v.refuse = true;
    v.message = texte;
    return v;
  }
  VerificationImage& EnTete(const QString& detail) {
    return Refus(QStringLiteral("Le fichier %1 n'est pas une image %2 lisible : %3.")
                     .arg(Guillemets(nom), NomType(v.type), detail));
  }
  VerificationImage& Coupe(int64_t taille) {
    if (v.largeur == 0 || v.hauteur == 0)
      return Refus(QStringLiteral("Le fichier %1 est incomplet : ses %2 octets ne contiennent pas tout ce que son en-tête annonce.")
                       .arg(Guillemets(nom))
                       .arg(taille));
    return Refus(QStringLiteral(
                     "Le fichier %1 est incomplet : son en-tête annonce une image de %2 x %3 "
                     "pixels que ses %4 octets ne contiennent pas.")
                     .arg(Guillemets(nom))
                     .arg(v.largeur)
                     .arg(v.hauteur)
                     .arg(taille));
  }
  // Sides and pixels within the limits; a refusal otherwise.
  bool Dimensions(int64_t l, int64_t h) {
    v.largeur = l;
    v.hauteur = h;
    if (l < 1 || h < 1) {
      EnTete(QStringLiteral("sa taille (%1 x %2 pixels) est impossible").arg(l).arg(h));
      return false;
    }
    if (l > kCoteMaxImage || h > kCoteMaxImage || l * h > kPixelsMaxImage) {
      Refus(QStringLiteral(
                "L'image %1 est trop grande (%2 x %3 pixels) : le programme ouvre au plus %4 "
                "pixels de côté et %5 millions de pixels en tout.")
                .arg(Guillemets(nom))
                .arg(l)
                .arg(h)
                .arg(kCoteMaxImage)
                .arg(kPixelsMaxImage / 1'000'000));
      return false;
    }
    return true;
  }
  static QString NomType(TypeFichierImage t) {
    switch (t) {
      case TypeFichierImage::JPEG: return QStringLiteral("JPEG");
      case TypeFichierImage::BMP: return QStringLiteral("BMP");
      case TypeFichierImage::PNG: return QStringLiteral("PNG");
      case TypeFichierImage::GIF: return QStringLiteral("GIF");
      case TypeFichierImage::TIFF: return QStringLiteral("TIFF");
      case TypeFichierImage::PSD: return QStringLiteral("PSD");
      case TypeFichierImage::PCD: return QStringLiteral("Photo CD");
      case TypeFichierImage::HEIF: return QStringLiteral("HEIC/HEIF/AVIF");
      case TypeFichierImage::RAW: return QStringLiteral("RAW");
      default: return QString();
    }
  }
};

// ---- JPEG: the frame's size, then image data that reach an end marker.

VerificationImage& Jpeg(const Octets& o, Resultat& r) {
  int64_t p = 2;
  bool cadre = false;
  while (true) {
    uint32_t m1 = 0, m2 = 0, longueur = 0;
    if (!o.u8(p, m1) || !o.u8(p + 1, m2)) break;
    if (m1 != 0xFF) return r.EnTete(QStringLiteral("un segment est mal formé à l'octet %1").arg(p));
    if (m2 == 0xFF) {  // fill bytes before a marker
      ++p;
      continue;
    }
    if (m2 == 0xD8 || m2 == 0xD9 || m2 == 0x01 || (m2 >= 0xD0 && m2 <= 0xD7)) {
      p += 2;
      continue;
    }
    if (!o.u16(p + 2, true, longueur) || longueur < 2 || !o.a(p + 2, longueur)) break;
    const bool sof = (m2 >= 0xC0 && m2 <= 0xCF) && m2 != 0xC4 && m2 != 0xC8 && m2 != 0xCC;
    if (sof && !cadre) {
      uint32_t h = 0, l = 0;
      if (!o.u16(p + 5, true, h) || !o.u16(p + 7, true, l)) break;
      cadre = true;
      // A height of 0 is given later by a DNL segment: only the width is checked then.
      if (!r.Dimensions(l, h == 0 ? 1 : h)) return r.v;
      r.v.hauteur = h;
    }
    if (m2 == 0xDA) {
      if (!cadre) return r.EnTete(QStringLiteral("ses données d'image précèdent la description de l'image"));
      // The image data end at the end marker; a file cut before it lost its lower part.
      if (o.chercherDernier(p + 2 + longueur, '\xFF', '\xD9') < 0) {
        r.v.incomplet = true;
        r.v.message = QStringLiteral(
                          "Le fichier %1 est incomplet : ses données d'image s'arrêtent avant la "
                          "fin, le bas de l'image manquera.")
                          .arg(Guillemets(r.nom));
      }
      return r.v;
    }
    p += 2 + longueur;
  }
  if (!cadre) return r.EnTete(QStringLiteral("le fichier s'arrête avant la description de l'image"));
  r.v.incomplet = true;
  r.v.message = QStringLiteral("Le fichier %1 est incomplet : il s'arrête avant ses données d'image.")
                    .arg(Guillemets(r.nom));
  r.v.refuse = true;  // nothing at all to show
  return r.v;
}

// ---- BMP: the rows that the header announces must be in the file.

// RLE data that reach their end-of-picture code, or all their rows, inside
// the file.
bool RleEntier(const Octets& o, int64_t p, int64_t hauteur, bool rle4) {
  int64_t lignes = 0;
  uint32_t n = 0, v = 0;
  while (o.u8(p, n) && o.u8(p + 1, v)) {
    p += 2;
    if (n > 0) continue;  // a run
    if (v == 0 && ++lignes >= hauteur) return true;
    if (v == 1) return true;
    if (v == 2) {
      p += 2;
    } else if (v > 2) {  // literal pixels, padded to a 16-bit boundary
      const int64_t octets = rle4 ? (int64_t(v) + 1) / 2 : v;
      p += octets + (octets % 2);
    }
    if (p > o.taille()) return false;
  }
  return false;
}

VerificationImage& Bmp(const Octets& o, Resultat& r) {
  uint32_t debut = 0, taille = 0;
  if (!o.u32(10, false, debut) || !o.u32(14, false, taille))
    return r.Coupe(o.taille());
  int64_t l = 0, h = 0;
  uint32_t bpp = 0, compression = 0;
  if (taille == 12) {
    uint32_t l16 = 0, h16 = 0;
    if (!o.u16(18, false, l16) || !o.u16(20, false, h16) || !o.u16(24, false, bpp))
      return r.EnTete(QStringLiteral("son en-tête est coupé"));
    l = l16;
    h = h16;
  } else if (taille >= 40 && taille <= 124) {
    uint32_t lu = 0, hu = 0;
    if (!o.u32(18, false, lu) || !o.u32(22, false, hu) || !o.u16(28, false, bpp) ||
        !o.u32(30, false, compression))
      return r.EnTete(QStringLiteral("son en-tête est coupé"));
    l = int32_t(lu);
    h = int32_t(hu);
    if (h < 0) h = -h;  // rows top to bottom
  } else {
    return r.EnTete(QStringLiteral("son en-tête de %1 octets n'est d'aucune version connue").arg(taille));
  }
  if (!r.Dimensions(l, h)) return r.v;
  if (bpp != 1 && bpp != 4 && bpp != 8 && bpp != 16 && bpp != 24 && bpp != 32)
    return r.EnTete(QStringLiteral("%1 bits par pixel n'existe pas en BMP").arg(bpp));
  if (int64_t(debut) >= o.taille()) return r.Coupe(o.taille());
  // Uncompressed rows (and bit fields) have a known size; RLE data end where they end.
  if (compression == 0 || compression == 3 || compression == 6) {
    const int64_t ligne = ((l * bpp + 31) / 32) * 4;
    if (int64_t(debut) + ligne * h > o.taille()) return r.Coupe(o.taille());
  } else if (compression == 1 || compression == 2) {
    if (!RleEntier(o, debut, h, compression == 2)) return r.Coupe(o.taille());
  } else {
    return r.EnTete(QStringLiteral("sa compression (%1) n'est pas lue par le programme").arg(compression));
  }
  return r.v;
}

// ---- PNG: the header chunk, then chunks that reach the end chunk.

// Bytes a compressed text chunk inflates to, counted up to `plafond`: a
// text that goes past it is taken for what it is, a bomb.
constexpr int64_t kTexteMax = 16 * 1024 * 1024;
bool TexteRaisonnable(const char* donnees, int64_t n) {
  z_stream z{};
  if (inflateInit(&z) != Z_OK) return true;
  z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(donnees));
  z.avail_in = uInt(n);
  char tampon[16384];
  int64_t total = 0;
  int r = Z_OK;
  while (r == Z_OK && total <= kTexteMax) {
    z.next_out = reinterpret_cast<Bytef*>(tampon);
    z.avail_out = sizeof tampon;
    r = inflate(&z, Z_NO_FLUSH);
    total += int64_t(sizeof tampon - z.avail_out);
    if (r == Z_BUF_ERROR && z.avail_in == 0) break;  // a cut text: the decoder says so
  }
  inflateEnd(&z);
  return total <= kTexteMax;
}

// Offset of the compressed text in a zTXt or iTXt chunk's data; -1 for none.
int64_t DebutTexteCompresse(const Octets& o, int64_t donnees, int64_t n, bool itxt) {
  int64_t p = donnees;
  const int64_t fin = donnees + n;
  while (p < fin && o.egal(p, "\0", 1) == false) ++p;  // keyword
  if (p >= fin) return -1;
  if (!itxt) return p + 2 <= fin ? p + 2 : -1;  // NUL, method
  uint32_t compresse = 0;
  if (!o.u8(p + 1, compresse) || compresse == 0) return -1;
  p += 3;  // NUL, flag, method
  for (int champ = 0; champ < 2; ++champ) {  // language, translated keyword
    while (p < fin && !o.egal(p, "\0", 1)) ++p;
    ++p;
  }
  return p <= fin ? p : -1;
}

VerificationImage& Png(const Octets& o, Resultat& r) {
  uint32_t longueur = 0, l = 0, h = 0;
  if (!o.u32(8, true, longueur) || !o.egal(12, "IHDR", 4) || longueur != 13 || !o.u32(16, true, l) ||
      !o.u32(20, true, h))
    return r.EnTete(QStringLiteral("son premier bloc n'est pas l'en-tête d'image"));
  if (!r.Dimensions(l, h)) return r.v;
  bool donnees = false;
  for (int64_t p = 8; o.a(p, 8);) {
    if (!o.u32(p, true, longueur) || longueur > 0x7FFFFFFF || !o.a(p + 8, int64_t(longueur) + 4)) break;
    if (o.egal(p + 4, "IDAT", 4)) donnees = true;
    const bool ztxt = o.egal(p + 4, "zTXt", 4), itxt = o.egal(p + 4, "iTXt", 4);
    if (ztxt || itxt) {
      const int64_t t = DebutTexteCompresse(o, p + 8, longueur, itxt);
      if (t >= 0 && !TexteRaisonnable(o.pointeur(t), p + 8 + longueur - t))
        return r.EnTete(QStringLiteral("un de ses textes compressés dépasse %1 Mo une fois décompressé")
                            .arg(kTexteMax / (1024 * 1024)));
    }
    if (o.egal(p + 4, "IEND", 4)) {
      if (!donnees) return r.EnTete(QStringLiteral("il n'a pas de données d'image"));
      return r.v;
    }
    p += 12 + int64_t(longueur);
  }
  return r.Coupe(o.taille());
}

// ---- GIF: the screen, then blocks up to the end of the first picture's data.

bool SousBlocs(const Octets& o, int64_t& p) {
  uint32_t n = 0;
  while (o.u8(p, n)) {
    ++p;
    if (n == 0) return true;
    if (!o.a(p, n)) return false;
    p += n;
  }
  return false;
}

VerificationImage& Gif(const Octets& o, Resultat& r) {
  uint32_t l = 0, h = 0, champs = 0;
  if (!o.u16(6, false, l) || !o.u16(8, false, h) || !o.u8(10, champs))
    return r.EnTete(QStringLiteral("son en-tête est coupé"));
  if (!r.Dimensions(l, h)) return r.v;
  int64_t p = 13;
  if (champs & 0x80) p += 3 * (int64_t(2) << (champs & 7));
  uint32_t code = 0;
  while (o.u8(p, code)) {
    if (code == 0x21) {
      p += 2;
      if (!SousBlocs(o, p)) break;
    } else if (code == 0x2C) {
      uint32_t local = 0;
      if (!o.u8(p + 9, local)) break;
      p += 10;
      if (local & 0x80) p += 3 * (int64_t(2) << (local & 7));
      p += 1;  // LZW code size
      if (!SousBlocs(o, p)) break;
      return r.v;  // the first picture is whole
    } else {
      return r.EnTete(QStringLiteral("un bloc inconnu (%1) précède l'image").arg(code));
    }
  }
  return r.Coupe(o.taille());
}

// ---- TIFF: the first directory's size and the strips or tiles it points to.

VerificationImage& Tiff(const Octets& o, Resultat& r) {
  const bool be = o.egal(0, "MM", 2);
  uint32_t ifd = 0, n = 0;
  if (!o.u32(4, be, ifd) || !o.u16(ifd, be, n) || !o.a(ifd + 2, 12 * int64_t(n)))
    return r.EnTete(QStringLiteral("son premier répertoire est hors du fichier"));
  int64_t l = 0, h = 0;
  // Offsets and byte counts of strips (273/279) or tiles (324/325).
  struct Tableau {
    uint32_t format = 0, compte = 0, valeur = 0;
    int64_t champ = 0;
  } offsets, longueurs;
  for (uint32_t i = 0; i < n; ++i) {
    const int64_t e = ifd + 2 + 12 * int64_t(i);
    uint32_t tag = 0, format = 0, compte = 0, valeur = 0;
    o.u16(e, be, tag);
    o.u16(e + 2, be, format);
    o.u32(e + 4, be, compte);
    if (format == 3) {
      o.u16(e + 8, be, valeur);
    } else {
      o.u32(e + 8, be, valeur);
    }
    // A value that does not fit in its entry must be in the file.
    static const int kTailles[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
    const int64_t octets = format < 14 ? int64_t(kTailles[format]) * compte : 0;
    uint32_t position = 0;
    if (octets > 4 && (!o.u32(e + 8, be, position) || !o.a(position, octets))) return r.Coupe(o.taille());
    if (tag == 256) l = valeur;
    if (tag == 257) h = valeur;
    if (tag == 273 || tag == 324) offsets = {format, compte, valeur, e + 8};
    if (tag == 279 || tag == 325) longueurs = {format, compte, valeur, e + 8};
  }
  if (!r.Dimensions(l, h)) return r.v;
  if (offsets.compte == 0 || offsets.compte != longueurs.compte)
    return r.EnTete(QStringLiteral("il ne dit pas où sont ses données d'image"));
  auto element = [&](const Tableau& t, uint32_t k, uint32_t& v) {
    const int taille = t.format == 3 ? 2 : 4;
    const int64_t p = int64_t(t.compte) * taille <= 4 ? t.champ + k * taille : int64_t(t.valeur) + k * taille;
    return taille == 2 ? o.u16(p, be, v) : o.u32(p, be, v);
  };
  for (uint32_t k = 0; k < offsets.compte; ++k) {
    uint32_t debut = 0, longueur = 0;
    if (!element(offsets, k, debut) || !element(longueurs, k, longueur) || !o.a(debut, longueur))
      return r.Coupe(o.taille());
  }
  return r.v;
}

// ---- PSD: channels of the announced size behind the three sections.

VerificationImage& Psd(const Octets& o, Resultat& r) {
  uint32_t version = 0, canaux = 0, h = 0, l = 0, profondeur = 0;
  if (!o.u16(4, true, version) || !o.u16(12, true, canaux) || !o.u32(14, true, h) || !o.u32(18, true, l) ||
      !o.u16(22, true, profondeur))
    return r.EnTete(QStringLiteral("son en-tête est coupé"));
  if (version != 1) return r.EnTete(QStringLiteral("sa version (%1) n'est pas lue par le programme").arg(version));
  if (canaux < 1 || canaux > 56) return r.EnTete(QStringLiteral("%1 canaux est impossible").arg(canaux));
  if (profondeur != 1 && profondeur != 8 && profondeur != 16 && profondeur != 32)
    return r.EnTete(QStringLiteral("%1 bits par canal est impossible").arg(profondeur));
  if (!r.Dimensions(l, h)) return r.v;
  int64_t p = 26;
  for (int section = 0; section < 3; ++section) {
    uint32_t longueur = 0;
    if (!o.u32(p, true, longueur) || !o.a(p + 4, longueur)) return r.Coupe(o.taille());
    p += 4 + int64_t(longueur);
  }
  uint32_t compression = 0;
  if (!o.u16(p, true, compression)) return r.Coupe(o.taille());
  p += 2;
  const int64_t ligne = (int64_t(l) * profondeur + 7) / 8;
  const int64_t lignes = int64_t(canaux) * h;
  if (compression == 0) {
    if (!o.a(p, ligne * lignes)) return r.Coupe(o.taille());
  } else if (compression == 1) {
    // One 16-bit byte count a row, then the packed rows.
    if (!o.a(p, 2 * lignes)) return r.Coupe(o.taille());
    int64_t total = 0;
    for (int64_t k = 0; k < lignes; ++k) {
      uint32_t c = 0;
      o.u16(p + 2 * k, true, c);
      total += c;
    }
    if (!o.a(p + 2 * lignes, total)) return r.Coupe(o.taille());
  } else {
    return r.EnTete(QStringLiteral("sa compression (%1) n'est pas lue par le programme").arg(compression));
  }
  return r.v;
}

// ---- Photo CD: the base picture, 768 x 512 in YCC 4:2:0, from sector 96.

VerificationImage& Pcd(const Octets& o, Resultat& r) {
  if (!r.Dimensions(768, 512)) return r.v;
  constexpr int64_t kBase = 0x30000, kOctetsBase = 768 * 512 * 3 / 2;
  if (!o.a(kBase, kOctetsBase)) return r.Coupe(o.taille());
  return r.v;
}

// ---- HEIF, AVIF, CR3: ISO base media boxes, each inside the file; for
// HEIF the items that iloc places in the file, and a size within the limits.

struct Boite {
  int64_t debut = 0, donnees = 0, fin = 0;  // box, its content, its end
  char type[5] = {};
};

// The box at `p`, ending before `limite`; false when it does not fit.
bool LireBoite(const Octets& o, int64_t p, int64_t limite, Boite& b) {
  uint32_t taille = 0;
  if (!o.u32(p, true, taille) || !o.a(p + 4, 4) || p + 8 > limite) return false;
  std::memcpy(b.type, o.pointeur(p + 4), 4);
  b.debut = p;
  b.donnees = p + 8;
  int64_t longueur = taille;
  if (taille == 1) {  // 64-bit size after the type
    uint32_t haut = 0, bas = 0;
    if (!o.u32(p + 8, true, haut) || !o.u32(p + 12, true, bas) || haut > 0x7FFF) return false;
    longueur = int64_t(haut) << 32 | bas;
    b.donnees = p + 16;
  } else if (taille == 0) {  // to the end
    longueur = limite - p;
  }
  if (longueur < b.donnees - p || longueur > limite - p) return false;
  b.fin = p + longueur;
  return true;
}

// A big-endian unsigned of n bytes (0, 4 or 8; iloc's field sizes).
bool Champ(const Octets& o, int64_t& p, uint32_t n, int64_t& v) {
  v = 0;
  if (n == 0) return true;
  uint32_t a = 0, b = 0;
  if (n == 4) {
    if (!o.u32(p, true, a)) return false;
    v = a;
  } else if (n == 8) {
    if (!o.u32(p, true, a) || !o.u32(p + 4, true, b) || a > 0x7FFF) return false;
    v = int64_t(a) << 32 | b;
  } else {
    return false;
  }
  p += n;
  return true;
}

// Where an item's data start: in the file (construction method 0) or in
// idat (1), as iloc places its first extent.
struct DebutArticle {
  uint32_t methode = 0;
  int64_t position = 0;
};

// iloc: every extent stored in the file (construction method 0) lies in it;
// the start of each item's data goes into `debuts`.
bool IlocDansLeFichier(const Octets& o, const Boite& b, std::map<uint32_t, DebutArticle>& debuts) {
  uint32_t version = 0, tailles = 0, tailles2 = 0;
  int64_t p = b.donnees;
  if (!o.u8(p, version) || version > 2 || !o.u8(p + 4, tailles) || !o.u8(p + 5, tailles2)) return false;
  p += 6;
  const uint32_t tOffset = tailles >> 4, tLongueur = tailles & 15, tBase = tailles2 >> 4,
                 tIndex = version > 0 ? tailles2 & 15 : 0;
  uint32_t nombre = 0;
  if (version < 2 ? !o.u16(p, true, nombre) : !o.u32(p, true, nombre)) return false;
  p += version < 2 ? 2 : 4;
  for (uint32_t i = 0; i < nombre; ++i) {
    uint32_t methode = 0, extents = 0, article = 0;
    if (version < 2 ? !o.u16(p, true, article) : !o.u32(p, true, article)) return false;
    p += version < 2 ? 2 : 4;
    if (version > 0) {
      if (!o.u16(p, true, methode)) return false;
      methode &= 15;
      p += 2;
    }
    p += 2;  // data reference index
    int64_t base = 0;
    if (!Champ(o, p, tBase, base) || !o.u16(p, true, extents)) return false;
    p += 2;
    for (uint32_t e = 0; e < extents; ++e) {
      int64_t index = 0, offset = 0, longueur = 0;
      if (!Champ(o, p, tIndex, index) || !Champ(o, p, tOffset, offset) || !Champ(o, p, tLongueur, longueur))
        return false;
      if (p > b.fin) return false;
      if (methode == 0 && (offset > o.taille() || base > o.taille() - offset || !o.a(base + offset, longueur)))
        return false;
      if (e == 0 && offset <= o.taille() && base <= o.taille() - offset) debuts[article] = {methode, base + offset};
    }
  }
  return p <= b.fin;
}

// The canvas of a grid ('grid') or overlay ('iovl') item: libheif allocates
// it whole, whatever the pictures' own sizes say. 0 x 0 when unreadable.
void TailleCanevas(const Octets& o, int64_t p, bool grille, int64_t& l, int64_t& h) {
  uint32_t drapeaux = 0, a = 0, b = 0;
  l = h = 0;
  if (!o.u8(p + 1, drapeaux)) return;
  p += grille ? 4 : 10;  // version, flags, rows and columns; or the fill colour
  const bool large = drapeaux & 1;
  if (large ? !o.u32(p, true, a) || !o.u32(p + 4, true, b) : !o.u16(p, true, a) || !o.u16(p + 2, true, b)) return;
  l = a;
  h = b;
}

VerificationImage& Bmff(const Octets& o, Resultat& r) {
  bool meta = false, donnees = false;
  int64_t largeur = 0, hauteur = 0;
  // The largest picture or canvas decides: the decoder allocates each whole.
  auto plusGrande = [&](int64_t l, int64_t h) {
    if (uint64_t(l) * uint64_t(h) > uint64_t(largeur) * uint64_t(hauteur)) largeur = l, hauteur = h;
  };
  Boite b;
  for (int64_t p = 0; p < o.taille(); p = b.fin) {
    if (!LireBoite(o, p, o.taille(), b)) return r.Coupe(o.taille());
    if (std::memcmp(b.type, "mdat", 4) == 0) donnees = true;
    if (std::memcmp(b.type, "meta", 4) != 0) continue;
    meta = true;
    std::map<uint32_t, DebutArticle> debuts;
    std::map<uint32_t, bool> canevas;  // grid (true) and overlay items
    int64_t idat = -1;
    Boite e;
    for (int64_t q = b.donnees + 4; q < b.fin; q = e.fin) {  // after version and flags
      if (!LireBoite(o, q, b.fin, e)) return r.EnTete(QStringLiteral("sa description est mal formée"));
      if (std::memcmp(e.type, "iloc", 4) == 0 && !IlocDansLeFichier(o, e, debuts)) return r.Coupe(o.taille());
      if (std::memcmp(e.type, "idat", 4) == 0) {
        donnees = true;
        idat = e.donnees;
      }
      if (std::memcmp(e.type, "iinf", 4) == 0) {
        uint32_t version = 0;
        o.u8(e.donnees, version);
        Boite f;
        for (int64_t u = e.donnees + (version == 0 ? 6 : 8); u < e.fin && LireBoite(o, u, e.fin, f); u = f.fin) {
          uint32_t v = 0, article = 0;
          if (std::memcmp(f.type, "infe", 4) != 0 || !o.u8(f.donnees, v) || v < 2) continue;
          if (v == 2 ? !o.u16(f.donnees + 4, true, article) : !o.u32(f.donnees + 4, true, article)) continue;
          const int64_t type = f.donnees + (v == 2 ? 8 : 10);
          if (o.egal(type, "grid", 4) || o.egal(type, "iovl", 4)) canevas[article] = o.egal(type, "grid", 4);
        }
      }
      if (std::memcmp(e.type, "iprp", 4) != 0) continue;
      // The sizes of the pictures (ispe): the largest is the primary picture's.
      Boite c, f;
      for (int64_t u = e.donnees; u < e.fin && LireBoite(o, u, e.fin, c); u = c.fin) {
        if (std::memcmp(c.type, "ipco", 4) != 0) continue;
        for (int64_t v = c.donnees; v < c.fin && LireBoite(o, v, c.fin, f); v = f.fin) {
          uint32_t l = 0, h = 0;
          if (std::memcmp(f.type, "ispe", 4) == 0 && o.u32(f.donnees + 4, true, l) && o.u32(f.donnees + 8, true, h))
            plusGrande(l, h);
        }
      }
    }
    for (const auto& [article, grille] : canevas) {
      const auto d = debuts.find(article);
      if (d == debuts.end() || (d->second.methode == 1 && idat < 0) || d->second.methode > 1) continue;
      int64_t l = 0, h = 0;
      TailleCanevas(o, d->second.methode == 1 ? idat + d->second.position : d->second.position, grille, l, h);
      plusGrande(l, h);
    }
  }
  if (r.v.type == TypeFichierImage::RAW) {
    if (!donnees) return r.Coupe(o.taille());
    return r.v;
  }
  if (!meta) return r.EnTete(QStringLiteral("il ne décrit aucune image"));
  if (!donnees) return r.Coupe(o.taille());
  if (largeur > 0 && !r.Dimensions(largeur, hauteur)) return r.v;
  if (largeur == 0) return r.EnTete(QStringLiteral("il ne donne pas la taille de son image"));
  return r.v;
}

// ---- Camera RAW shaped as TIFF (CR2, NEF, ARW, PEF, DNG, ORF, RW2): every
// directory of the chain and their sub-directories, with their strips or
// tiles, inside the file.

bool RepertoiresRaw(const Octets& o, bool be, int64_t ifd, int profondeur, int& vus, int64_t& l, int64_t& h) {
  for (int chaine = 0; ifd != 0; ++chaine) {
    uint32_t n = 0;
    if (++vus > 64 || chaine > 16 || !o.u16(ifd, be, n) || !o.a(ifd + 2, 12 * int64_t(n) + 4)) return false;
    uint32_t offsets = 0, compte = 0, format = 0, longueurs = 0, formatLongueurs = 0, nl = 0, il = 0, ih = 0;
    for (uint32_t i = 0; i < n; ++i) {
      const int64_t e = ifd + 2 + 12 * int64_t(i);
      uint32_t tag = 0, f = 0, c = 0, valeur = 0;
      o.u16(e, be, tag);
      o.u16(e + 2, be, f);
      o.u32(e + 4, be, c);
      if (f == 3) o.u16(e + 8, be, valeur);
      else o.u32(e + 8, be, valeur);
      static const int kTailles[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
      const int64_t octets = f < 14 ? int64_t(kTailles[f]) * c : 0;
      uint32_t position = 0;
      if (octets > 4 && (!o.u32(e + 8, be, position) || !o.a(position, octets))) return false;
      const uint32_t cible = octets > 4 ? position : uint32_t(e + 8);
      if (tag == 256) il = valeur;
      if (tag == 257) ih = valeur;
      if ((tag == 273 || tag == 324) && c > 0) offsets = cible, compte = c, format = f;
      if ((tag == 279 || tag == 325) && c > 0) longueurs = cible, nl = c, formatLongueurs = f;
      if (tag == 330 && (f == 4 || f == 13) && profondeur < 2) {
        for (uint32_t k = 0; k < c && k < 16; ++k) {
          uint32_t sous = 0;
          o.u32(cible + 4 * int64_t(k), be, sous);
          if (!RepertoiresRaw(o, be, sous, profondeur + 1, vus, l, h)) return false;
        }
      }
    }
    if (int64_t(il) * ih > l * h) l = il, h = ih;
    auto element = [&](uint32_t debut, uint32_t f, uint32_t k, uint32_t& v) {
      return f == 3 ? o.u16(debut + 2 * int64_t(k), be, v) : o.u32(debut + 4 * int64_t(k), be, v);
    };
    for (uint32_t k = 0; k < compte; ++k) {
      uint32_t debut = 0, longueur = 0;
      if (!element(offsets, format, k, debut) || int64_t(debut) >= o.taille()) return false;
      // Without byte counts (some RW2) the data run to the end: the start is all there is to check.
      if (k < nl && (!element(longueurs, formatLongueurs, k, longueur) || !o.a(debut, longueur))) return false;
    }
    uint32_t suivant = 0;
    o.u32(ifd + 2 + 12 * int64_t(n), be, suivant);
    ifd = suivant;
  }
  return true;
}

VerificationImage& RawTiff(const Octets& o, Resultat& r) {
  const bool be = o.egal(0, "MM", 2);
  uint32_t ifd = 0, n = 0;
  if (!o.u32(4, be, ifd) || !o.u16(ifd, be, n))
    return r.EnTete(QStringLiteral("son premier répertoire est hors du fichier"));
  int vus = 0;
  int64_t l = 0, h = 0;
  if (!RepertoiresRaw(o, be, ifd, 0, vus, l, h)) return r.Coupe(o.taille());
  if (l > 0 && h > 0 && !r.Dimensions(l, h)) return r.v;
  return r.v;
}

// ---- Fujifilm RAF: the preview, the sensor's header and its data, where the
// fixed header says, inside the file.

VerificationImage& Raf(const Octets& o, Resultat& r) {
  for (int64_t champ : {84, 92, 100}) {
    uint32_t debut = 0, longueur = 0;
    if (!o.u32(champ, true, debut) || !o.u32(champ + 4, true, longueur)) return r.Coupe(o.taille());
    if (longueur > 0 && !o.a(debut, longueur)) return r.Coupe(o.taille());
  }
  return r.v;
}

// A TIFF that is a camera's RAW: its name, a CR2's mark, or a DNG's version tag in IFD0.
bool TiffEstRaw(const Octets& o, const QString& extension) {
  if (ExtensionsRAW().contains(extension) || o.egal(8, "CR\x02", 3)) return true;
  const bool be = o.egal(0, "MM", 2);
  uint32_t ifd = 0, n = 0;
  if (!o.u32(4, be, ifd) || !o.u16(ifd, be, n)) return false;
  for (uint32_t i = 0; i < n && i < 1000; ++i) {
    uint32_t tag = 0;
    if (!o.u16(ifd + 2 + 12 * int64_t(i), be, tag)) return false;
    if (tag == 0xC612) return true;  // DNGVersion
  }
  return false;
}

// The brands of an ISO base media file: HEIF or AVIF, or Canon's CR3.
TypeFichierImage TypeBmff(const Octets& o) {
  uint32_t taille = 0;
  if (!o.egal(4, "ftyp", 4) || !o.u32(0, true, taille) || taille < 16) return TypeFichierImage::Inconnu;
  if (o.egal(8, "crx ", 4)) return TypeFichierImage::RAW;
  static const char* const kMarques[] = {"heic", "heix", "hevc", "hevx", "heim", "heis", "hevm", "hevs",
                                         "mif1", "msf1", "mif2", "avif", "avis"};
  for (int64_t p = 8; p + 4 <= int64_t(taille) && o.a(p, 4); p += (p == 8 ? 8 : 4))
    for (const char* m : kMarques)
      if (o.egal(p, m, 4)) return TypeFichierImage::HEIF;
  return TypeFichierImage::Inconnu;
}

QString TexteErreurLecture(int code) {
  switch (code) {
    case EACCES:
    case EPERM: return QStringLiteral("vous n'avez pas le droit de le lire");
    case ENOENT: return QStringLiteral("il n'existe pas");
    case EISDIR: return QStringLiteral("c'est un dossier");
    default: return QStringLiteral("%1").arg(QString::fromLocal8Bit(std::strerror(code)));
  }
}

}  // namespace

VerificationImage VerifierOctetsImage(const char* octets, int64_t taille, const QString& nom,
                                      const QString& extension) {
  VerificationImage v;
  Resultat r{v, nom};
  const Octets o(octets, taille);
  if (taille == 0) return r.Refus(QStringLiteral("Le fichier %1 est vide (0 octet).").arg(Guillemets(nom)));
  if (o.egal(0, "\xFF\xD8\xFF", 3)) v.type = TypeFichierImage::JPEG;
  else if (o.egal(0, "BM", 2)) v.type = TypeFichierImage::BMP;
  else if (o.egal(0, "\x89PNG\r\n\x1A\n", 8)) v.type = TypeFichierImage::PNG;
  else if (o.egal(0, "GIF87a", 6) || o.egal(0, "GIF89a", 6)) v.type = TypeFichierImage::GIF;
  else if (o.egal(0, "II*\0", 4) || o.egal(0, "MM\0*", 4))
    v.type = TiffEstRaw(o, extension) ? TypeFichierImage::RAW : TypeFichierImage::TIFF;
  else if (o.egal(0, "8BPS", 4)) v.type = TypeFichierImage::PSD;
  else if (o.egal(0x800, "PCD_IPI", 7) || extension == u"pcd") v.type = TypeFichierImage::PCD;
  else if (o.egal(0, "IIRO", 4) || o.egal(0, "IIRS", 4) || o.egal(0, "MMOR", 4) || o.egal(0, "IIU\0", 4) ||
           o.egal(0, "FUJIFILMCCD-RAW", 15))
    v.type = TypeFichierImage::RAW;
  else v.type = TypeBmff(o);
  // Other RAW types (MRW, X3F, ...) by their name alone: LibRaw checks them.
  if (v.type == TypeFichierImage::Inconnu && ExtensionsRAW().contains(extension)) v.type = TypeFichierImage::RAW;
  switch (v.type) {
    case TypeFichierImage::JPEG: return Jpeg(o, r);
    case TypeFichierImage::BMP: return Bmp(o, r);
    case TypeFichierImage::PNG: return Png(o, r);
    case TypeFichierImage::GIF: return Gif(o, r);
    case TypeFichierImage::TIFF: return Tiff(o, r);
    case TypeFichierImage::PSD: return Psd(o, r);
    case TypeFichierImage::PCD: return Pcd(o, r);
    case TypeFichierImage::HEIF: return Bmff(o, r);
    case TypeFichierImage::RAW:
      if (o.egal(4, "ftyp", 4)) return Bmff(o, r);
      if (o.egal(0, "FUJIFILMCCD-RAW", 15)) return Raf(o, r);
      if (o.egal(0, "II", 2) || o.egal(0, "MM", 2)) return RawTiff(o, r);
      return r.v;
    default:
      return r.Refus(QStringLiteral(
                         "Le fichier %1 n'est pas une image d'un format que le programme ouvre "
                         "(JPEG, BMP, PNG, GIF, PSD, PCD, TIFF, HEIC, AVIF, RAW).")
                         .arg(Guillemets(nom)));
  }
}

const QStringList& ExtensionsRAW() {
  static const QStringList liste = {"cr2", "cr3", "crw", "nef", "nrw", "arw", "srf", "sr2", "orf", "rw2", "raf",
                                    "pef", "dng", "srw", "rwl", "iiq", "3fr", "erf", "kdc", "dcr", "mef", "mos",
                                    "mrw", "x3f"};
  return liste;
}

const QStringList& ExtensionsHEIF() {
  static const QStringList liste = {"heic", "heif", "hif", "avif"};
  return liste;
}

VerificationImage VerifierFichierImage(const QString& chemin) {
  const QFileInfo info(chemin);
  const QString nom = info.fileName();
  VerificationImage v;
  if (info.isDir()) {
    v.refuse = true;
    v.message = QStringLiteral("« %1 » est un dossier, pas un fichier image.").arg(nom);
    return v;
  }
  QFile f(chemin);
  errno = 0;
  if (!f.open(QIODevice::ReadOnly)) {
    v.refuse = true;
    v.message = QStringLiteral("Le fichier « %1 » ne peut pas être lu : %2.")
                    .arg(nom, TexteErreurLecture(errno ? errno : ENOENT));
    return v;
  }
  const int64_t taille = f.size();
  if (taille == 0) return VerifierOctetsImage(nullptr, 0, nom, info.suffix().toLower());
  // Mapped rather than read: the decoder reads the file again anyway.
  const uchar* carte = f.map(0, taille);
  if (carte != nullptr)
    return VerifierOctetsImage(reinterpret_cast<const char*>(carte), taille, nom, info.suffix().toLower());
  const QByteArray octets = f.readAll();
  return VerifierOctetsImage(octets.constData(), octets.size(), nom, info.suffix().toLower());
}

}  // namespace tg
