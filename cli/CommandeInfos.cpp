// infos FICHIER [--json]: what the metadata library reads from a picture file.
// A HEIC, HEIF or AVIF file (an ISO base media container the library does
// not read) is described by its container, its size and the EXIF block it
// holds, that block read by the library's TIFF parser; a Canon CR3 by the
// TIFF structures of its metadata boxes.
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>
#include <QTextStream>
#include <cstdio>
#include <optional>
#include <vector>

#include "cli/Commandes.h"
#include "metadata/CImage.h"
#include "metadata/CommandesMeta.h"
#include "metadata/Infos.h"
#include "metadata/Octets.h"

namespace tg::cli {
namespace {

// ---- The boxes of an ISO base media file, every read checked against the bytes.

struct Boite {
  qsizetype donnees = 0, fin = 0;
  QByteArray type;
};

bool U32(const QByteArray& o, qsizetype p, uint32_t& v) {
  if (p < 0 || p + 4 > o.size()) return false;
  v = uint32_t(uint8_t(o[p])) << 24 | uint32_t(uint8_t(o[p + 1])) << 16 | uint32_t(uint8_t(o[p + 2])) << 8 |
      uint8_t(o[p + 3]);
  return true;
}
bool U16(const QByteArray& o, qsizetype p, uint32_t& v) {
  if (p < 0 || p + 2 > o.size()) return false;
  v = uint32_t(uint8_t(o[p])) << 8 | uint8_t(o[p + 1]);
  return true;
}
// A field of n bytes (0, 2, 4 or 8; iloc's sizes); false beyond the bytes.
bool Champ(const QByteArray& o, qsizetype& p, uint32_t n, uint64_t& v) {
  uint32_t a = 0, b = 0;
  v = 0;
  if (n == 0) return true;
  if (n == 2 ? !U16(o, p, a) : n == 4 ? !U32(o, p, a) : n == 8 ? !U32(o, p, a) || !U32(o, p + 4, b) : true)
    return false;
  v = n == 8 ? uint64_t(a) << 32 | b : a;
  p += n;
  return true;
}

std::vector<Boite> Boites(const QByteArray& o, qsizetype debut, qsizetype fin) {
  std::vector<Boite> r;
  for (qsizetype p = debut; p + 8 <= fin && r.size() < 10000;) {
    uint32_t taille = 0;
    U32(o, p, taille);
    Boite b{p + 8, 0, o.mid(p + 4, 4)};
    uint64_t longueur = taille;
    if (taille == 1) {
      qsizetype q = p + 8;
      if (!Champ(o, q, 8, longueur)) break;
      b.donnees = p + 16;
    } else if (taille == 0) {
      longueur = uint64_t(fin - p);
    }
    if (longueur < uint64_t(b.donnees - p) || longueur > uint64_t(fin - p)) break;
    b.fin = p + qsizetype(longueur);
    r.push_back(b);
    p = b.fin;
  }
  return r;
}

struct Heif {
  QByteArray marque;
  uint32_t largeur = 0, hauteur = 0;  // the largest picture (ispe)
  QByteArray exif;                     // the TIFF structure, empty without EXIF
  // Canon's CR3: TIFF structures in boxes of moov's Canon uuid box, CMT1
  // (IFD0) and CMT2 (the EXIF directory), each with its own header.
  std::vector<std::pair<QByteArray, QByteArray>> canon;
};

// The EXIF item's bytes where iloc puts them in the file.
QByteArray Extents(const QByteArray& o, const Boite& iloc, uint32_t article) {
  qsizetype p = iloc.donnees;
  uint32_t version = 0, tailles = 0;
  if (!U32(o, p, version) || !U16(o, p + 4, tailles)) return {};
  version >>= 24;
  p += 6;
  const uint32_t tOffset = tailles >> 12, tLongueur = (tailles >> 8) & 15, tBase = (tailles >> 4) & 15,
                 tIndex = version > 0 ? tailles & 15 : 0;
  uint64_t nombre = 0;
  if (!Champ(o, p, version < 2 ? 2 : 4, nombre)) return {};
  for (uint64_t i = 0; i < nombre && p < iloc.fin; ++i) {
    uint64_t id = 0, methode = 0, reference = 0, base = 0, extents = 0;
    if (!Champ(o, p, version < 2 ? 2 : 4, id) || (version > 0 && !Champ(o, p, 2, methode)) ||
        !Champ(o, p, 2, reference) || !Champ(o, p, tBase, base) || !Champ(o, p, 2, extents))
      return {};
    QByteArray donnees;
    for (uint64_t e = 0; e < extents; ++e) {
      uint64_t index = 0, offset = 0, longueur = 0;
      if (!Champ(o, p, tIndex, index) || !Champ(o, p, tOffset, offset) || !Champ(o, p, tLongueur, longueur))
        return {};
      if (id == article && (methode & 15) == 0 && base + offset <= uint64_t(o.size()) &&
          longueur <= uint64_t(o.size()) - base - offset)
        donnees += o.mid(qsizetype(base + offset), qsizetype(longueur));
    }
    if (id == article) return donnees;
  }
  return {};
}

std::optional<Heif> LireHeif(const QByteArray& o) {
  if (o.mid(4, 4) != "ftyp") return std::nullopt;
  Heif h;
  h.marque = o.mid(8, 4);
  for (const Boite& moov : Boites(o, 0, o.size()))
    if (moov.type == "moov")
      for (const Boite& uuid : Boites(o, moov.donnees, moov.fin))
        if (uuid.type == "uuid")
          for (const Boite& cmt : Boites(o, uuid.donnees + 16, uuid.fin))
            if (cmt.type == "CMT1" || cmt.type == "CMT2")
              h.canon.emplace_back(cmt.type, o.mid(cmt.donnees, cmt.fin - cmt.donnees));
  for (const Boite& meta : Boites(o, 0, o.size())) {
    if (meta.type != "meta") continue;
    uint32_t exif = 0;
    const Boite* iloc = nullptr;
    const std::vector<Boite> enfants = Boites(o, meta.donnees + 4, meta.fin);
    for (const Boite& b : enfants) {
      if (b.type == "iloc") iloc = &b;
      if (b.type == "iinf") {
        uint32_t version = 0;
        U32(o, b.donnees, version);
        for (const Boite& infe : Boites(o, b.donnees + 4 + ((version >> 24) == 0 ? 2 : 4), b.fin)) {
          uint32_t v = 0, id = 0;
          if (infe.type != "infe" || !U32(o, infe.donnees, v) || (v >> 24) < 2) continue;
          const bool long_ = (v >> 24) >= 3;
          if (!(long_ ? U32(o, infe.donnees + 4, id) : U16(o, infe.donnees + 4, id))) continue;
          if (o.mid(infe.donnees + (long_ ? 10 : 8), 4) == "Exif") exif = id;
        }
      }
      if (b.type == "iprp")
        for (const Boite& ipco : Boites(o, b.donnees, b.fin))
          if (ipco.type == "ipco")
            for (const Boite& p : Boites(o, ipco.donnees, ipco.fin)) {
              uint32_t l = 0, ht = 0;
              if (p.type == "ispe" && U32(o, p.donnees + 4, l) && U32(o, p.donnees + 8, ht) &&
                  uint64_t(l) * ht > uint64_t(h.largeur) * h.hauteur)
                h.largeur = l, h.hauteur = ht;
            }
    }
    if (exif != 0 && iloc != nullptr) {
      const QByteArray bloc = Extents(o, *iloc, exif);
      uint32_t decalage = 0;
      // A 32-bit offset to the TIFF header, then the block.
      if (U32(bloc, 0, decalage) && decalage <= uint32_t(bloc.size()) - 4) h.exif = bloc.mid(4 + qsizetype(decalage));
    }
  }
  return h;
}

int Infos(const QStringList& arguments) {
  QTextStream sortie(stdout);
  QTextStream erreurs(stderr);
  QStringList args = arguments;
  const bool json = args.contains(QStringLiteral("--json"));
  args.removeAll(QStringLiteral("--json"));
  // Twelve bytes tell the container; only then is the whole file read.
  QFile f(args.value(0));
  const bool conteneur = args.size() == 1 && f.open(QIODevice::ReadOnly) && f.read(12).mid(4, 4) == "ftyp";
  f.close();
  QByteArray octets;
  if (conteneur && meta::LireFichier(args[0], octets)) {
    const std::optional<Heif> h = LireHeif(octets);
    if (h && h->marque == "crx ") {
      // Each TIFF structure through the library, under the name of its box.
      sortie << QStringLiteral("Type : CR3 (RAW Canon, conteneur ISO)\n");
      QJsonObject o{{"type", QStringLiteral("CR3")}};
      for (const auto& [nom, tiff] : h->canon) {
        QTemporaryFile bloc;
        meta::CImage image;
        if (!bloc.open() || bloc.write(tiff) != tiff.size() || !bloc.flush() || !image.ReadImage(bloc.fileName()) ||
            image.TIFF() == nullptr)
          continue;
        if (json) {
          o[QString::fromLatin1(nom)] = meta::InfosJson(image)["exif"];
        } else {
          const QString texte = meta::InfosTexte(image);
          sortie << "[" << nom << "] " << texte.mid(texte.indexOf(u'\n') + 1);
        }
      }
      if (json) sortie << QJsonDocument(o).toJson(QJsonDocument::Indented);
      return 0;
    }
    meta::CImage exif;
    QTemporaryFile bloc;
    const bool avecExif = h && !h->exif.isEmpty() && bloc.open() && bloc.write(h->exif) == h->exif.size() &&
                          bloc.flush() && exif.ReadImage(bloc.fileName()) && exif.TIFF() != nullptr;
    const QString marque = h ? QString::fromLatin1(h->marque) : QString();
    if (json) {
      QJsonObject o = avecExif ? meta::InfosJson(exif) : QJsonObject();
      o.remove("iptc");
      o["type"] = QStringLiteral("HEIF");
      o["marque"] = marque;
      o["largeur"] = qint64(h ? h->largeur : 0);
      o["hauteur"] = qint64(h ? h->hauteur : 0);
      if (!avecExif) o["exif"] = QJsonValue::Null;
      sortie << QJsonDocument(o).toJson(QJsonDocument::Indented);
      return 0;
    }
    sortie << QStringLiteral("Type : HEIF (conteneur ISO, marque %1)\nTaille : %2 x %3\n")
                  .arg(marque)
                  .arg(h ? h->largeur : 0)
                  .arg(h ? h->hauteur : 0);
    if (!avecExif) {
      sortie << QStringLiteral("EXIF : aucun\n");
      return 0;
    }
    // The block's own description, without its first line (its type, TIFF).
    const QString texte = meta::InfosTexte(exif);
    sortie << texte.mid(texte.indexOf(u'\n') + 1);
    return 0;
  }
  return tg::meta::CommandeInfos(arguments, sortie, erreurs);
}

const Enregistrement enregistrement(
    "infos",
    "infos FICHIER [--json]   (type, segments JPEG avec leur position à partir de 1, JFIF, "
    "EXIF et note du fabricant, IPTC, blocs PNG, GIF, BMP, commentaire)",
    {"Décrit ce que le fichier contient : son type, ses segments JPEG avec leur position à partir de 1, "
     "JFIF, EXIF et note du fabricant, IPTC, blocs PNG, GIF et BMP, commentaire ; pour une photo HEIC, HEIF "
     "ou AVIF, sa marque, sa taille et son EXIF. Le fichier n'est pas modifié.",
     {{"--json", "la même description en JSON"}}},
    &Infos);

}  // namespace
}  // namespace tg::cli
