#include "metadata/CTIFF.h"

#include <set>

#include "metadata/CExifJPEG.h"

namespace tg::meta {

namespace {
constexpr int kMaxRepertoires = 256;
}  // namespace

bool CExifTIFF::ReadExif(const QByteArray& donnees) {
  ifds_.clear();
  ifdsLus_.clear();
  gps_ = sub_ = interop_ = CIFD();
  gpsLu_ = subLu_ = interopLu_ = CIFD();
  note_ = CMakerNote();
  lpData.clear();
  const LecteurOctets bloc(donnees);
  uint16_t marque = 0, quarante2 = 0;
  uint32_t offset = 0;
  if (!bloc.u16At(Ordre::Intel, 0, marque)) return false;
  if (marque != uint16_t(Ordre::Intel) && marque != uint16_t(Ordre::Motorola)) return false;
  alignType = Ordre(marque);
  if (!bloc.u16At(alignType, 2, quarante2) || quarante2 != 42 || !bloc.u32At(alignType, 4, offset))
    return false;
  lpData = donnees;
  std::set<uint32_t> vus;
  while (offset != 0 && int64_t(offset) < bloc.taille() && int(ifds_.size()) < kMaxRepertoires &&
         vus.insert(offset).second) {
    CIFD r;
    offset = r.ReadIFD(bloc, offset, alignType);
    ifds_.push_back(std::move(r));
  }
  if (!ifds_.empty()) {
    LireSousRepertoires(bloc, alignType, ifds_[0], sub_, gps_, interop_);
    LireNoteFabricant(bloc, alignType, sub_, GetManufacturer(), note_);
  }
  ifdsLus_ = ifds_;
  subLu_ = sub_;
  gpsLu_ = gps_;
  interopLu_ = interop_;
  return true;
}

EditionTIFF CExifTIFF::Edition() const {
  EditionTIFF e;
  for (size_t i = 0; i < ifds_.size(); ++i)
    e.chaine.push_back({&ifds_[i], i < ifdsLus_.size() ? &ifdsLus_[i] : nullptr});
  e.exif = {&sub_, &subLu_};
  e.gps = {&gps_, &gpsLu_};
  e.interop = {&interop_, &interopLu_};
  return e;
}

bool CExifTIFF::Modifie() const { return StructureModifiee(Edition()); }

CIFD* CExifTIFF::ifd(int n) {
  if (n < 0) return nullptr;
  if (n <= 1 && int(ifds_.size()) <= n) ifds_.resize(size_t(n) + 1);
  return n < int(ifds_.size()) ? &ifds_[size_t(n)] : nullptr;
}

QByteArray CExifTIFF::MakerNote() const {
  const CExifDirEnt* e = sub_.Trouver(TagMakerNote);
  return e ? e->GetData() : QByteArray();
}

void CExifTIFF::AddModifyMicrosoftTag(int32_t tag, const QString& texte) {
  QByteArray d;
  for (QChar c : texte) {
    d.append(char(c.unicode() & 0xFF));
    d.append(char(c.unicode() >> 8));
  }
  d.append(2, '\0');
  ifd(0)->AddModifyTag(tag, FmtByte, d);
}

void CExifTIFF::AddModifyTag(Repertoire r, int32_t tag, int16_t format, const QByteArray& data) {
  if (CIFD* d = Repertoire_(r)) d->AddModifyTag(tag, format, data);
}

void CExifTIFF::RemoveTag(Repertoire r, int32_t tag) {
  if (CIFD* d = Repertoire_(r)) d->RemoveTag(tag);
}

bool CExifTIFF::WriteEXIF(QByteArray& sortie, QString* erreur) {
  sortie.clear();
  if (lpData.size() < 8 || ifds_.empty() || ifds_[0].Vide()) {
    if (erreur)
      *erreur = QStringLiteral("Le fichier %1 n'a aucun répertoire d'image lisible : il n'est pas réécrit.")
                    .arg(fichier_);
    return false;
  }
  const QByteArray edite = EditerEnPlace(lpData, Edition(), alignType);
  if (edite.size() > int64_t(UINT32_MAX)) {
    if (erreur) *erreur = QStringLiteral("Le fichier %1 dépasserait 4 Go.").arg(fichier_);
    return false;
  }
  sortie = edite;
  return true;
}

bool CTIFF::ReadTIFF(const QString& path, QString* erreur) {
  QByteArray octets;
  if (!LireFichier(path, octets, erreur)) return false;
  LireOctets(octets, path);
  return true;
}

void CTIFF::LireOctets(const QByteArray& fichier, const QString& path) {
  exif_.SetFile(path);
  exif_.OriginalFile = path;
  exif_.ReadExif(fichier);
  iptc_.ReadIPTCTIFF(exif_);
  iptcLu_.clear();
  iptc_.Donnees(iptcLu_, nullptr);
}

bool CTIFF::Ecrire(QByteArray& sortie, QString* erreur) {
  // Tag 33723 is rebuilt only when its datasets changed: a value that did
  // not read as datasets, or reads the same, is carried as it stands.
  QByteArray iptc;
  if (!iptc_.Donnees(iptc, erreur)) return false;
  if (iptc != iptcLu_ && !iptc_.WriteIPTCTIFF(exif_, erreur)) return false;
  return exif_.WriteEXIF(sortie, erreur);
}

bool CTIFF::WriteTIFF(const QString& path, QString* erreur) {
  QByteArray sortie;
  return Ecrire(sortie, erreur) && RemplacerFichier(path, sortie, erreur);
}

}  // namespace tg::meta
