#include "imaging/LecteurHEIF.h"

#include <FreeImage.h>
#include <libheif/heif.h>

#include <QFile>
#include <QFileInfo>
#include <memory>
#include <vector>

#include "imaging/Bitmap.h"
#include "imaging/LecteurTIFF.h"
#include "imaging/VerificationFichier.h"

namespace tg {

namespace {

using Contexte = std::unique_ptr<heif_context, void (*)(heif_context*)>;
using Poignee = std::unique_ptr<heif_image_handle, void (*)(const heif_image_handle*)>;
using Image = std::unique_ptr<heif_image, void (*)(const heif_image*)>;

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
  Contexte contexte{nullptr, heif_context_free};
  Poignee primaire{nullptr, heif_image_handle_release};
};

bool Ouvrir(const QString& chemin, Ouvert& o, QString& erreur) {
  const QString nom = QFileInfo(chemin).fileName();
  o.contexte.reset(heif_context_alloc());
  if (!o.contexte) {
    erreur = QStringLiteral("Mémoire insuffisante pour l'image « %1 ».").arg(nom);
    return false;
  }
  // No side beyond what the program opens: libheif refuses larger ones itself.
  heif_context_set_maximum_image_size_limit(o.contexte.get(), int(kCoteMaxImage));
  heif_error e = heif_context_read_from_file(o.contexte.get(), QFile::encodeName(chemin).constData(), nullptr);
  if (e.code != heif_error_Ok) {
    erreur = Abime(nom, e);
    return false;
  }
  heif_image_handle* h = nullptr;
  e = heif_context_get_primary_image_handle(o.contexte.get(), &h);
  o.primaire.reset(h);
  if (e.code != heif_error_Ok || !o.primaire) {
    erreur = Abime(nom, e);
    return false;
  }
  return true;
}

// The EXIF block of the picture: a 32-bit big-endian offset, then the TIFF
// structure that many bytes further on (0 for most writers, 6 for those that
// keep "Exif\0\0").
void AttacherExif(const heif_image_handle* h, const QString& chemin, FIBITMAP* dib) {
  heif_item_id id = 0;
  if (heif_image_handle_get_list_of_metadata_block_IDs(h, "Exif", &id, 1) < 1) return;
  const size_t taille = heif_image_handle_get_metadata_size(h, id);
  if (taille < 4 || taille > 16 * 1024 * 1024) return;
  QByteArray octets(qsizetype(taille), '\0');
  if (heif_image_handle_get_metadata(h, id, octets.data()).code != heif_error_Ok) return;
  const uint32_t decalage = uint32_t(uint8_t(octets[0])) << 24 | uint32_t(uint8_t(octets[1])) << 16 |
                            uint32_t(uint8_t(octets[2])) << 8 | uint32_t(uint8_t(octets[3]));
  if (decalage > taille - 4) return;
  AttacherExifTIFF(octets.mid(4 + qsizetype(decalage)), chemin, dib);
}

// The picture decoded to 8-bit interleaved RGB or RGBA, turned.
Image Decoder(const heif_image_handle* h, heif_error& e) {
  const bool alpha = heif_image_handle_has_alpha_channel(h) != 0;
  std::unique_ptr<heif_decoding_options, void (*)(heif_decoding_options*)> options(heif_decoding_options_alloc(),
                                                                                   heif_decoding_options_free);
  options->convert_hdr_to_8bit = 1;
  heif_image* image = nullptr;
  e = heif_decode_image(h, &image, heif_colorspace_RGB,
                        alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB, options.get());
  return Image(image, heif_image_release);
}

}  // namespace

FIBITMAP* LireHEIF(const QString& chemin, QString& erreur, bool pixels) {
  erreur.clear();
  const QString nom = QFileInfo(chemin).fileName();
  Ouvert o;
  if (!Ouvrir(chemin, o, erreur)) return nullptr;
  const int l = heif_image_handle_get_width(o.primaire.get());
  const int h = heif_image_handle_get_height(o.primaire.get());
  if (l < 1 || h < 1 || l > kCoteMaxImage || h > kCoteMaxImage || int64_t(l) * h > kPixelsMaxImage) {
    erreur = QStringLiteral("L'image « %1 » est trop grande ou sans taille (%2 x %3 pixels).").arg(nom).arg(l).arg(h);
    return nullptr;
  }
  const bool alpha = heif_image_handle_has_alpha_channel(o.primaire.get()) != 0;
  if (!pixels) {
    FIBITMAP* entete = AllouerEntete(l, h, alpha ? 32 : 24);
    if (entete == nullptr) {
      erreur = QStringLiteral("Mémoire insuffisante pour l'image « %1 ».").arg(nom);
      return nullptr;
    }
    AttacherExif(o.primaire.get(), chemin, entete);
    return entete;
  }
  heif_error e{};
  Image image = Decoder(o.primaire.get(), e);
  if (!image) {
    erreur = Abime(nom, e);
    return nullptr;
  }
  int pas = 0;
  const uint8_t* plan = heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &pas);
  const int il = heif_image_get_width(image.get(), heif_channel_interleaved);
  const int ih = heif_image_get_height(image.get(), heif_channel_interleaved);
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
  AttacherExif(o.primaire.get(), chemin, dib);
  return dib;
}

QImage VignetteHEIF(const QString& chemin, int cote, QString& erreur) {
  erreur.clear();
  Ouvert o;
  if (!Ouvrir(chemin, o, erreur)) return {};
  Poignee vignette(nullptr, heif_image_handle_release);
  heif_item_id id = 0;
  if (heif_image_handle_get_list_of_thumbnail_IDs(o.primaire.get(), &id, 1) > 0) {
    heif_image_handle* h = nullptr;
    if (heif_image_handle_get_thumbnail(o.primaire.get(), id, &h).code == heif_error_Ok) vignette.reset(h);
  }
  const heif_image_handle* source = vignette ? vignette.get() : o.primaire.get();
  heif_error e{};
  Image image = Decoder(source, e);
  if (!image && vignette) image = Decoder(o.primaire.get(), e);  // a damaged thumbnail: the picture itself
  if (!image) {
    erreur = Abime(QFileInfo(chemin).fileName(), e);
    return {};
  }
  int pas = 0;
  const uint8_t* plan = heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &pas);
  const int l = heif_image_get_width(image.get(), heif_channel_interleaved);
  const int h = heif_image_get_height(image.get(), heif_channel_interleaved);
  if (plan == nullptr || l < 1 || h < 1) {
    erreur = Abime(QFileInfo(chemin).fileName(), e);
    return {};
  }
  const bool alpha = heif_image_get_chroma_format(image.get()) == heif_chroma_interleaved_RGBA;
  const QImage vue(plan, l, h, pas, alpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
  QImage resultat = vue.width() > cote || vue.height() > cote
                        ? vue.scaled(cote, cote, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                        : vue.copy();
  return resultat.convertToFormat(QImage::Format_RGB32);
}

}  // namespace tg
