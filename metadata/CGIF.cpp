#include "metadata/CGIF.h"

#include "metadata/Octets.h"

namespace tg::meta {

namespace {

constexpr uint8_t kImage = 44, kExtension = 33, kFin = 59, kCommentaire = 254;
// Sub-blocks hold 254 bytes, not the 255 the format allows: kept by choice.
constexpr int kSousBloc = 254;

// Data sub-blocks up to their zero terminator, joined; false when cut.
bool LireSousBlocs(LecteurOctets& l, QByteArray* donnees) {
  while (true) {
    uint8_t n = 0;
    if (!l.u8(n)) return false;
    if (n == 0) return true;
    QByteArray b;
    if (!l.octets(n, b)) return false;
    if (donnees) donnees->append(b);
  }
}

}  // namespace

bool CGIF::ReadGIF(const QString& path, QString* erreur) {
  QByteArray octets;
  if (!LireFichier(path, octets, erreur)) return false;
  LireOctets(octets, path);
  return true;
}

void CGIF::LireOctets(const QByteArray& fichier, const QString&) {
  *this = CGIF();
  source_ = fichier;
  if (!fichier.startsWith("GIF")) return;
  LecteurOctets l(source_);
  QByteArray signature;
  uint8_t paquet = 0, aspect = 0;
  if (!l.octets(6, signature) || !l.u16le(Width) || !l.u16le(Height) || !l.u8(paquet) ||
      !l.u8(BackgroungIndex) || !l.u8(aspect))
    return;
  lu_ = true;
  Version = QString::fromLatin1(signature.mid(3));
  GlobalColorMapFollow = (paquet & 0x80) != 0;
  ColorResolution = uint8_t(((paquet >> 4) & 0x07) + 1);
  BitsPerPixel = uint8_t((paquet & 0x07) + 1);
  if (GlobalColorMapFollow && !l.skip((int64_t(1) << BitsPerPixel) * 3)) return;
  QByteArray commentaire;
  while (true) {
    const int64_t debut = l.offset();
    uint8_t bloc = 0;
    if (!l.u8(bloc)) break;
    if (bloc == kFin) {
      fin_ = debut;
      break;
    }
    if (bloc == kImage) {
      uint8_t local = 0;
      if (!l.skip(8) || !l.u8(local)) break;
      if ((local & 0x80) != 0 && !l.skip((int64_t(1) << ((local & 0x07) + 1)) * 3)) break;
      if (!l.skip(1) || !LireSousBlocs(l, nullptr)) break;
    } else if (bloc == kExtension) {
      uint8_t label = 0;
      QByteArray donnees;
      if (!l.u8(label) || !LireSousBlocs(l, &donnees)) break;
      if (label == kCommentaire) {
        commentaire.append(donnees);
        commentaires_.emplace_back(debut, l.offset());
      } else {
        Extensions.push_back({label, donnees});
      }
    } else {
      break;  // not a block: the rest is not read
    }
  }
  Comment = DepuisCp1252(commentaire);
  commentLu_ = Comment;
}

bool CGIF::Ecrire(QByteArray& sortie, QString* erreur) {
  sortie.clear();
  if (!lu_ || fin_ < 0) {
    if (erreur)
      *erreur = QStringLiteral(
          "Le fichier GIF est incomplet (ses blocs n'atteignent pas l'octet de fin) : il n'est pas réécrit.");
    return false;
  }
  if (Comment == commentLu_) {
    sortie = source_;
    return true;
  }
  EcrivainOctets bloc;
  const QByteArray texte = VersCp1252(Comment);
  if (!texte.isEmpty()) {
    bloc.u8(kExtension);
    bloc.u8(kCommentaire);
    for (qsizetype i = 0; i < texte.size(); i += kSousBloc) {
      const QByteArray morceau = texte.mid(i, kSousBloc);
      bloc.u8(uint8_t(morceau.size()));
      bloc.octets(morceau);
    }
    bloc.u8(0);
  }
  // The new comment in the place of the first old one, else before the trailer.
  const int64_t place = commentaires_.empty() ? fin_ : commentaires_.front().first;
  EcrivainOctets e;
  int64_t position = 0;
  auto copier = [&](int64_t jusqua) {
    if (jusqua > position) e.octets(source_.mid(position, jusqua - position));
  };
  copier(place);
  e.octets(bloc.donnees());
  position = place;
  for (const auto& [debut, finBloc] : commentaires_) {
    copier(debut);
    position = finBloc;
  }
  copier(source_.size());
  sortie = e.donnees();
  return true;
}

bool CGIF::WriteGIF(const QString& path, QString* erreur) {
  QByteArray sortie;
  return Ecrire(sortie, erreur) && RemplacerFichier(path, sortie, erreur);
}

// ---------------------------------------------------------------- BMP

bool CBMP::ReadBMP(const QString& path, QString* erreur) {
  QByteArray octets;
  if (!LireFichier(path, octets, erreur)) return false;
  LireOctets(octets, path);
  return true;
}

void CBMP::LireOctets(const QByteArray& fichier, const QString&) {
  *this = CBMP();
  if (!fichier.startsWith("BM")) return;
  // The two headers as one record of 54 bytes; what the file lacks reads 0.
  QByteArray t = fichier.left(54);
  t.resize(54, '\0');
  LecteurOctets l(t);
  uint32_t w = 0, h = 0, xp = 0, yp = 0;
  l.u16le(bfType);
  l.u32le(bfSize);
  l.u16le(bfReserved1);
  l.u16le(bfReserved2);
  l.u32le(bfOffBits);
  l.u32le(biSize);
  l.u32le(w);
  l.u32le(h);
  l.u16le(biPlanes);
  l.u16le(biBitCount);
  l.u32le(biCompression);
  l.u32le(biSizeImage);
  l.u32le(xp);
  l.u32le(yp);
  l.u32le(biClrUsed);
  l.u32le(biClrImportant);
  biWidth = int32_t(w);
  biHeight = int32_t(h);
  biXPelsPerMeter = int32_t(xp);
  biYPelsPerMeter = int32_t(yp);
  lu_ = true;
}

bool CBMP::Ecrire(QByteArray& sortie, QString* erreur) {
  sortie.clear();
  if (erreur)
    *erreur = QStringLiteral(
        "Le format BMP n'a pas de place pour les métadonnées : le fichier n'est pas modifié.");
  return false;
}

}  // namespace tg::meta
