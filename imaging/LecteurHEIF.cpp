#include "imaging/LecteurHEIF.h"

#include <FreeImage.h>
#include <libheif/heif.h>

#include <QFile>
#include <QFileInfo>
#include <QTransform>
#include <memory>
#include <vector>

#include "imaging/BibliothequeDynamique.h"
#include "imaging/Bitmap.h"
#include "imaging/LecteurTIFF.h"
#include "imaging/VerificationFichier.h"

namespace tg {

namespace {

// ---- libheif is opened at the first HEIF read: a JPEG run never maps it
// (nor its HEVC and AV1 decoders). Every function the program calls is in
// this list, taken from the library by its own name and typed from its
// declaration, so that a name and its type cannot drift apart.
#define TG_FONCTIONS_HEIF(X)                                                                                   \
  X(context_alloc)                                                                                             \
  X(context_free) X(context_set_maximum_image_size_limit) X(context_read_from_file)                            \
  X(context_get_primary_image_handle) X(context_get_primary_image_ID) X(image_handle_release)                  \
  X(image_handle_get_width) X(image_handle_get_height) X(image_handle_has_alpha_channel)                       \
  X(image_handle_get_luma_bits_per_pixel) X(image_handle_get_list_of_metadata_block_IDs)                       \
  X(image_handle_get_metadata_size) X(image_handle_get_metadata) X(image_handle_get_list_of_thumbnail_IDs)     \
  X(image_handle_get_thumbnail) X(decoding_options_alloc) X(decoding_options_free) X(decode_image)             \
  X(image_release) X(image_get_plane_readonly) X(image_get_width) X(image_get_height) X(image_get_chroma_format)

struct FonctionsHeif {
#define TG_MEMBRE(nom) decltype(&heif_##nom) nom = nullptr;
  TG_FONCTIONS_HEIF(TG_MEMBRE)
#undef TG_MEMBRE
};

bool RemplirHeif(BibliothequeDynamique& bibliotheque, FonctionsHeif& f, QString& erreur) {
  bool ok = true;  // on the first missing function, `erreur` names it and the rest are skipped
#define TG_LIER(nom) ok = ok && bibliotheque.Lier(f.nom, "heif_" #nom, erreur);
  TG_FONCTIONS_HEIF(TG_LIER)
#undef TG_LIER
  return ok;
}

FonctionsDifferees<FonctionsHeif>& TableHeif() {
  static FonctionsDifferees<FonctionsHeif> table(TG_SONAME_HEIF, TG_PAQUET_HEIF, RemplirHeif);
  return table;
}

// The table, loaded once for the process; nullptr with `erreur` set.
const FonctionsHeif* Heif(QString& erreur) { return TableHeif().Obtenir(erreur); }

using Contexte = std::unique_ptr<heif_context, decltype(&heif_context_free)>;
using Poignee = std::unique_ptr<heif_image_handle, decltype(&heif_image_handle_release)>;
using Image = std::unique_ptr<heif_image, decltype(&heif_image_release)>;

QString Detail(const heif_error& e) {
  return e.message != nullptr && *e.message != '\0' ? QStringLiteral(" (%1)").arg(QString::fromUtf8(e.message))
                                                     : QString();
}

QString Abime(const QString& nom, const heif_error& e) {
  return QStringLiteral("L'image du fichier « %1 » ne peut pas être décodée : le fichier est abîmé ou incomplet.")
             .arg(nom) +
         Detail(e);
}

// The file opened and its primary picture found; on failure `erreur` is set.
struct Ouvert {
  const FonctionsHeif* f = nullptr;
  Contexte contexte{nullptr, nullptr};
  Poignee primaire{nullptr, nullptr};
};

bool Ouvrir(const QString& chemin, Ouvert& o, QString& erreur) {
  const QString nom = QFileInfo(chemin).fileName();
  o.f = Heif(erreur);
  if (o.f == nullptr) return false;
  const FonctionsHeif& f = *o.f;
  o.contexte = Contexte(f.context_alloc(), f.context_free);
  if (!o.contexte) {
    erreur = QStringLiteral("Mémoire insuffisante pour l'image « %1 ».").arg(nom);
    return false;
  }
  // No side beyond what the program opens: libheif refuses larger ones itself.
  f.context_set_maximum_image_size_limit(o.contexte.get(), int(kCoteMaxImage));
  heif_error e = f.context_read_from_file(o.contexte.get(), QFile::encodeName(chemin).constData(), nullptr);
  if (e.code != heif_error_Ok) {
    erreur = Abime(nom, e);
    return false;
  }
  heif_image_handle* h = nullptr;
  e = f.context_get_primary_image_handle(o.contexte.get(), &h);
  o.primaire = Poignee(h, f.image_handle_release);
  if (e.code != heif_error_Ok || !o.primaire) {
    erreur = Abime(nom, e);
    return false;
  }
  return true;
}

// The EXIF block of the picture: a 32-bit big-endian offset, then the TIFF
// structure that many bytes further on (0 for most writers, 6 for those that
// keep "Exif\0\0").
void AttacherExif(const FonctionsHeif& f, const heif_image_handle* h, const QString& chemin, FIBITMAP* dib) {
  heif_item_id id = 0;
  if (f.image_handle_get_list_of_metadata_block_IDs(h, "Exif", &id, 1) < 1) return;
  const size_t taille = f.image_handle_get_metadata_size(h, id);
  if (taille < 4 || taille > 16 * 1024 * 1024) return;
  QByteArray octets(qsizetype(taille), '\0');
  if (f.image_handle_get_metadata(h, id, octets.data()).code != heif_error_Ok) return;
  const uint32_t decalage = uint32_t(uint8_t(octets[0])) << 24 | uint32_t(uint8_t(octets[1])) << 16 |
                            uint32_t(uint8_t(octets[2])) << 8 | uint32_t(uint8_t(octets[3]));
  if (decalage > taille - 4) return;
  AttacherExifTIFF(octets.mid(4 + qsizetype(decalage)), chemin, dib);
}

// ---- The rotation and mirror of an item, read from the file. libheif 1.15
// cannot mirror a picture of more than 8 bits per channel: such a picture is
// decoded untransformed, brought to 8 bits, then turned here. A crop (clap)
// is then left out; phones write none.

// A transformation in the order the file lists them: 'r' a number of quarter
// turns counter-clockwise, 'm' a mirror: 0 top and bottom swap, 1 left and
// right, as the amended standard, phones and libheif read imir's bit.
struct Transformation {
  char type;
  int valeur;
};

struct BoiteBmff {
  QByteArray type;
  qsizetype donnees = 0, fin = 0;
};

uint32_t Be(const QByteArray& o, qsizetype p, int n) {
  uint32_t v = 0;
  if (p < 0 || p + n > o.size()) return 0;
  for (int i = 0; i < n; ++i) v = v << 8 | uint8_t(o[p + i]);
  return v;
}

std::vector<BoiteBmff> Enfants(const QByteArray& o, qsizetype debut, qsizetype fin) {
  std::vector<BoiteBmff> r;
  for (qsizetype p = debut; p + 8 <= fin && r.size() < 4096;) {
    const uint32_t taille = Be(o, p, 4);
    if (taille < 8 || taille > uint64_t(fin - p)) break;  // 64-bit and open-ended boxes end the walk
    r.push_back({o.mid(p + 4, 4), p + 8, p + qsizetype(taille)});
    p += qsizetype(taille);
  }
  return r;
}

std::vector<Transformation> Transformations(const QByteArray& o, uint32_t article) {
  std::vector<Transformation> r;
  for (const BoiteBmff& meta : Enfants(o, 0, o.size())) {
    if (meta.type != "meta") continue;
    for (const BoiteBmff& iprp : Enfants(o, meta.donnees + 4, meta.fin)) {
      if (iprp.type != "iprp") continue;
      std::vector<BoiteBmff> proprietes;
      for (const BoiteBmff& b : Enfants(o, iprp.donnees, iprp.fin))
        if (b.type == "ipco") proprietes = Enfants(o, b.donnees, b.fin);
      for (const BoiteBmff& ipma : Enfants(o, iprp.donnees, iprp.fin)) {
        if (ipma.type != "ipma") continue;
        const uint32_t version = Be(o, ipma.donnees, 1), drapeaux = Be(o, ipma.donnees + 1, 3);
        const uint32_t nombre = Be(o, ipma.donnees + 4, 4);
        qsizetype p = ipma.donnees + 8;
        for (uint32_t i = 0; i < nombre && p < ipma.fin; ++i) {
          const uint32_t id = Be(o, p, version < 1 ? 2 : 4);
          p += version < 1 ? 2 : 4;
          const uint32_t associations = Be(o, p, 1);
          ++p;
          for (uint32_t a = 0; a < associations && p < ipma.fin; ++a) {
            const int n = (drapeaux & 1) ? 2 : 1;
            const uint32_t index = Be(o, p, n) & ((drapeaux & 1) ? 0x7FFF : 0x7F);
            p += n;
            if (id != article || index == 0 || index > proprietes.size()) continue;
            const BoiteBmff& b = proprietes[index - 1];
            if (b.type == "irot") r.push_back({'r', int(Be(o, b.donnees, 1) & 3)});
            if (b.type == "imir") r.push_back({'m', int(Be(o, b.donnees, 1) & 1)});
          }
        }
      }
    }
  }
  return r;
}

QByteArray Octets(const QString& chemin) {
  QFile f(chemin);
  return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// More than 8 bits a channel: the picture comes untransformed (see above).
bool SansTransformations(const FonctionsHeif& f, const heif_image_handle* h) {
  return f.image_handle_get_luma_bits_per_pixel(h) > 8;
}

// The picture decoded to 8-bit interleaved RGB or RGBA, turned unless the
// picture has more than 8 bits a channel.
Image Decoder(const FonctionsHeif& f, const heif_image_handle* h, heif_error& e) {
  const bool alpha = f.image_handle_has_alpha_channel(h) != 0;
  std::unique_ptr<heif_decoding_options, decltype(&heif_decoding_options_free)> options(f.decoding_options_alloc(),
                                                                                         f.decoding_options_free);
  options->convert_hdr_to_8bit = 1;
  options->ignore_transformations = SansTransformations(f, h) ? 1 : 0;
  heif_image* image = nullptr;
  e = f.decode_image(h, &image, heif_colorspace_RGB, alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB,
                     options.get());
  return Image(image, f.image_release);
}

}  // namespace

FIBITMAP* LireHEIF(const QString& chemin, QString& erreur, bool pixels) {
  erreur.clear();
  const QString nom = QFileInfo(chemin).fileName();
  Ouvert o;
  if (!Ouvrir(chemin, o, erreur)) return nullptr;
  const FonctionsHeif& f = *o.f;
  const int l = f.image_handle_get_width(o.primaire.get());
  const int h = f.image_handle_get_height(o.primaire.get());
  if (l < 1 || h < 1 || l > kCoteMaxImage || h > kCoteMaxImage || int64_t(l) * h > kPixelsMaxImage) {
    erreur = QStringLiteral("L'image « %1 » est trop grande ou sans taille (%2 x %3 pixels).").arg(nom).arg(l).arg(h);
    return nullptr;
  }
  const bool alpha = f.image_handle_has_alpha_channel(o.primaire.get()) != 0;
  if (!pixels) {
    FIBITMAP* entete = AllouerEntete(l, h, alpha ? 32 : 24);
    if (entete == nullptr) {
      erreur = QStringLiteral("Mémoire insuffisante pour l'image « %1 ».").arg(nom);
      return nullptr;
    }
    AttacherExif(f, o.primaire.get(), chemin, entete);
    return entete;
  }
  heif_error e{};
  Image image = Decoder(f, o.primaire.get(), e);
  if (!image) {
    erreur = Abime(nom, e);
    return nullptr;
  }
  int pas = 0;
  const uint8_t* plan = f.image_get_plane_readonly(image.get(), heif_channel_interleaved, &pas);
  const int il = f.image_get_width(image.get(), heif_channel_interleaved);
  const int ih = f.image_get_height(image.get(), heif_channel_interleaved);
  if (plan == nullptr || il < 1 || ih < 1) {
    erreur = Abime(nom, e);
    return nullptr;
  }
  const int octets = alpha ? 4 : 3;
  FIBITMAP* dib = FreeImage_Allocate(il, ih, octets * 8);
  if (dib == nullptr) {
    erreur = QStringLiteral("Mémoire insuffisante pour l'image « %1 ».").arg(nom);
    return nullptr;
  }
  for (int y = 0; y < ih; ++y) {
    const uint8_t* source = plan + size_t(y) * size_t(pas);
    BYTE* ligne = FreeImage_GetScanLine(dib, ih - 1 - y);  // bottom-up
    for (int x = 0; x < il; ++x) {
      const uint8_t* s = source + size_t(x) * octets;
      BYTE* d = ligne + size_t(x) * octets;
      d[FI_RGBA_RED] = s[0];
      d[FI_RGBA_GREEN] = s[1];
      d[FI_RGBA_BLUE] = s[2];
      if (alpha) d[FI_RGBA_ALPHA] = s[3];
    }
  }
  image.reset();  // the decoded copy goes at once: only the bitmap stays
  if (SansTransformations(f, o.primaire.get())) {
    heif_item_id id = 0;
    f.context_get_primary_image_ID(o.contexte.get(), &id);
    // FreeImage turns counter-clockwise; its flips are as shown (rows stored bottom-up).
    for (const Transformation& t : Transformations(Octets(chemin), id)) {
      if (t.type == 'm') {
        if (t.valeur == 1) FreeImage_FlipHorizontal(dib);
        else FreeImage_FlipVertical(dib);
      } else if (t.valeur != 0) {
        FIBITMAP* tourne = FreeImage_Rotate(dib, 90.0 * t.valeur);
        if (tourne == nullptr) continue;
        FreeImage_Unload(dib);
        dib = tourne;
      }
    }
  }
  AttacherExif(f, o.primaire.get(), chemin, dib);
  return dib;
}

QImage VignetteHEIF(const QString& chemin, int cote, QString& erreur) {
  erreur.clear();
  Ouvert o;
  if (!Ouvrir(chemin, o, erreur)) return {};
  const FonctionsHeif& f = *o.f;
  Poignee vignette(nullptr, f.image_handle_release);
  heif_item_id id_vignette = 0;
  if (f.image_handle_get_list_of_thumbnail_IDs(o.primaire.get(), &id_vignette, 1) > 0) {
    heif_image_handle* h = nullptr;
    if (f.image_handle_get_thumbnail(o.primaire.get(), id_vignette, &h).code == heif_error_Ok) vignette.reset(h);
  }
  const heif_image_handle* source = vignette ? vignette.get() : o.primaire.get();
  heif_error e{};
  Image image = Decoder(f, source, e);
  if (!image && vignette) {  // a damaged thumbnail: the picture itself
    vignette.reset();
    source = o.primaire.get();
    image = Decoder(f, source, e);
  }
  if (!image) {
    erreur = Abime(QFileInfo(chemin).fileName(), e);
    return {};
  }
  int pas = 0;
  const uint8_t* plan = f.image_get_plane_readonly(image.get(), heif_channel_interleaved, &pas);
  const int l = f.image_get_width(image.get(), heif_channel_interleaved);
  const int h = f.image_get_height(image.get(), heif_channel_interleaved);
  if (plan == nullptr || l < 1 || h < 1) {
    erreur = Abime(QFileInfo(chemin).fileName(), e);
    return {};
  }
  const bool alpha = f.image_get_chroma_format(image.get()) == heif_chroma_interleaved_RGBA;
  const QImage vue(plan, l, h, pas, alpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
  QImage resultat = vue.width() > cote || vue.height() > cote
                        ? vue.scaled(cote, cote, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                        : vue.copy();
  if (SansTransformations(f, source)) {
    heif_item_id id = id_vignette;
    if (!vignette) f.context_get_primary_image_ID(o.contexte.get(), &id);
    for (const Transformation& t : Transformations(Octets(chemin), id))
      resultat = t.type == 'm' ? resultat.mirrored(t.valeur == 1, t.valeur == 0)
                               : resultat.transformed(QTransform().rotate(-90.0 * t.valeur));
  }
  return resultat.convertToFormat(QImage::Format_RGB32);
}

void BibliothequeHEIFPourEssais(const char* soname, const char* paquet) { TableHeif().PourEssais(soname, paquet); }

}  // namespace tg
