#include "metadata/CExifJPEG.h"

namespace tg::meta {

namespace {
const QByteArray kPrefixe("Exif\0\0", 6);
}  // namespace

uint32_t ValeurPointeur(const CExifDirEnt* e) {
  if (e == nullptr || e->NumberOfComponent != 1) return 0;
  // 13 is the IFD format of TIFF/EP: a LONG by another name.
  if (e->DataFormat != FmtLong && e->DataFormat != FmtSLong && e->DataFormat != 13) return 0;
  return uint32_t(e->OffsetToValue);
}

void LireSousRepertoires(const LecteurOctets& bloc, Ordre ordre, const CIFD& ifd0, CIFD& sub,
                         CIFD& gps, CIFD& interop) {
  if (const uint32_t o = ValeurPointeur(ifd0.Trouver(TagExifIFD))) {
    sub.ReadIFD(bloc, o, ordre);
    if (const uint32_t i = ValeurPointeur(sub.Trouver(TagInteropIFD)))
      interop.ReadIFD(bloc, i, ordre);
  }
  if (const uint32_t o = ValeurPointeur(ifd0.Trouver(TagGPSIFD))) gps.ReadIFD(bloc, o, ordre);
}

void LireNoteFabricant(const LecteurOctets& bloc, Ordre ordre, const CIFD& sub, int fabricant,
                       CMakerNote& note) {
  note = CMakerNote();
  const CExifDirEnt* e = sub.Trouver(TagMakerNote);
  if (e == nullptr || e->getDataLength() <= 4) return;
  note.Manufacture = fabricant;
  note.ReadIFD(bloc, uint32_t(e->OffsetToValue), e->GetData(), ordre);
}

std::function<QByteArray(int64_t)> AjusteurNote(const CIFD& sub, const CMakerNote& note) {
  const CExifDirEnt* e = sub.Trouver(TagMakerNote);
  if (!note.Lu() || e == nullptr || e->GetData() != note.Octets()) return {};
  return [&note](int64_t position) { return note.AdjustMakerNote(position); };
}

CExifJPEG::CExifJPEG() = default;

bool CExifJPEG::ReadExif(const QByteArray& donnees) {
  const QString fichier = fichier_;
  *this = CExifJPEG();
  fichier_ = fichier;
  if (donnees.size() <= 10 || !donnees.startsWith("Exif")) return false;
  // Offsets count from the byte order mark, 6 bytes into the block.
  const LecteurOctets bloc(donnees.constData() + 6, donnees.size() - 6);
  uint16_t marque = 0, quarante2 = 0;
  uint32_t premier = 0;
  if (!bloc.u16At(Ordre::Intel, 0, marque)) return false;
  if (marque != uint16_t(Ordre::Intel) && marque != uint16_t(Ordre::Motorola)) return false;
  alignType = Ordre(marque);
  if (!bloc.u16At(alignType, 2, quarante2) || !bloc.u32At(alignType, 4, premier)) return false;
  lpData = donnees;
  lu_ = true;

  const uint32_t suivant = ifd_[0].ReadIFD(bloc, premier, alignType);
  // IFD1 only when it lies inside the block, and not on IFD0 itself.
  if (suivant != 0 && suivant != premier && int64_t(suivant) < bloc.taille()) {
    ifd_[1].ReadIFD(bloc, suivant, alignType);
    const CExifDirEnt* debut = ifd_[1].Trouver(TagThumbnailOffset);
    const CExifDirEnt* longueur = ifd_[1].Trouver(TagThumbnailLength);
    auto valeur = [](const CExifDirEnt* e) -> int64_t {
      if (e == nullptr || (e->DataFormat != FmtShort && e->DataFormat != FmtLong)) return -1;
      return int64_t(e->GetDataVariant());
    };
    const int64_t o = valeur(debut), n = valeur(longueur);
    if (o >= 0 && n > 0) bloc.octetsAt(o, n, ThumbnailData);  // left empty when outside
  }
  LireSousRepertoires(bloc, alignType, ifd_[0], sub_, gps_, interop_);
  LireNoteFabricant(bloc, alignType, sub_, GetManufacturer(), note_);
  // An empty thumbnail points at nothing: editors leave its offset at the
  // end of the block, where it must stay.
  const CExifDirEnt* longueurVignette = ifd_[1].Trouver(TagThumbnailLength);
  const bool vignettePleine = longueurVignette && longueurVignette->GetDataVariant() > 0;
  auto offsets = [&](const std::vector<CExifDirEnt>& entrees, int repertoire, int64_t debut,
                     Ordre ordre, int64_t origine, bool relatifALEntree) {
    for (size_t i = 0; i < entrees.size(); ++i) {
      const CExifDirEnt& e = entrees[i];
      const int64_t entree = debut + 2 + 12 * int64_t(i);
      const bool valeur =
          e.GetDataSize() != 0 && int64_t(e.GetDataSize()) * uint32_t(e.NumberOfComponent) > 4;
      const bool vignette = repertoire == int(Repertoire::IFD1) && e.Tag == TagThumbnailOffset &&
                            ValeurPointeur(&e) != 0 && vignettePleine;
      if (valeur || vignette)
        offsetsLus_.push_back({repertoire, e.Tag, entree + 8, relatifALEntree ? entree : origine,
                               uint32_t(e.OffsetToValue), ordre});
    }
  };
  const std::pair<const CIFD*, Repertoire> repertoires[] = {{&ifd_[0], Repertoire::IFD0},
                                                            {&ifd_[1], Repertoire::IFD1},
                                                            {&sub_, Repertoire::SubIFD},
                                                            {&gps_, Repertoire::GPS},
                                                            {&interop_, Repertoire::Interop}};
  for (const auto& [d, r] : repertoires)
    offsets(d->Directories, int(r), d->Offset, alignType, 0, false);
  if (note_.Lu())
    offsets(note_.Directories, 5, note_.Position() + note_.Offset, note_.ordre, note_.Origine(),
            note_.EntreeRelative());
  ifdLu_[0] = ifd_[0];
  ifdLu_[1] = ifd_[1];
  subLu_ = sub_;
  gpsLu_ = gps_;
  interopLu_ = interop_;
  vignetteLue_ = ThumbnailData;
  return true;
}

EditionTIFF CExifJPEG::Edition() const {
  EditionTIFF e;
  e.chaine = {{&ifd_[0], &ifdLu_[0]}, {&ifd_[1], &ifdLu_[1]}};
  e.exif = {&sub_, &subLu_};
  e.gps = {&gps_, &gpsLu_};
  e.interop = {&interop_, &interopLu_};
  e.vignette = &ThumbnailData;
  e.vignetteLue = &vignetteLue_;
  return e;
}

bool CExifJPEG::Modifie() const { return lu_ ? StructureModifiee(Edition()) : !ifd_[0].Vide(); }

QByteArray CExifJPEG::MakerNote() const {
  const CExifDirEnt* e = sub_.Trouver(TagMakerNote);
  return e ? e->GetData() : QByteArray();
}

void CExifJPEG::AddModifyMicrosoftTag(int32_t tag, const QString& texte) {
  QByteArray d;
  for (QChar c : texte) {
    d.append(char(c.unicode() & 0xFF));
    d.append(char(c.unicode() >> 8));
  }
  d.append(2, '\0');
  ifd_[0].AddModifyTag(tag, FmtByte, d);
}

void CExifJPEG::AddModifyTag(Repertoire r, int32_t tag, int16_t format, const QByteArray& data) {
  if (CIFD* d = Repertoire_(r)) d->AddModifyTag(tag, format, data);
}

void CExifJPEG::RemoveTag(Repertoire r, int32_t tag) {
  if (CIFD* d = Repertoire_(r)) d->RemoveTag(tag);
}

bool CExifJPEG::WriteEXIF(QByteArray& segment, QString* erreur) {
  segment.clear();
  if (Marker == 0) Marker = 0xE1FF;
  if (lu_) {
    // Offsets count from the byte order mark, 6 bytes into the block.
    const QByteArray structure =
        EditerEnPlace(lpData.mid(6), Edition(), alignType);
    const int64_t longueur = 2 + 6 + structure.size();
    if (longueur > 0xFFFF) {
      if (erreur)
        *erreur = QStringLiteral(
                      "Le bloc EXIF modifié (%1 octets) dépasse les 65533 octets d'un segment "
                      "JPEG : rien n'est écrit.")
                      .arg(longueur - 2);
      return false;
    }
    segment.reserve(4 + 6 + structure.size());
    segment.append(char(Marker & 0xFF));
    segment.append(char(Marker >> 8));
    segment.append(char(longueur >> 8));
    segment.append(char(longueur & 0xFF));
    segment.append(lpData.left(6));
    segment.append(structure);
    ExifDataAreaSize = structure.size();
    return true;
  }
  StructureTIFF s;
  s.chaine = {&ifd_[0], &ifd_[1]};
  s.exif = &sub_;
  s.gps = &gps_;
  s.interop = &interop_;
  s.vignette = ThumbnailData;
  s.gererVignette = true;
  s.noteFabricant = AjusteurNote(sub_, note_);
  uint32_t premier = 0;
  // The header takes 8 bytes: IFD0 follows it.
  const QByteArray repertoires = EcrireRepertoires(s, alignType, 8, premier);
  if (repertoires.isEmpty()) return true;

  EcrivainOctets e;
  e.u8(uint8_t(Marker & 0xFF));
  e.u8(uint8_t(Marker >> 8));
  const int64_t champLongueur = e.offset();
  e.u16be(0);
  e.octets(kPrefixe);
  e.u16(Ordre::Intel, uint16_t(alignType));  // "II" or "MM": the same bytes either way
  e.u16(alignType, 42);
  e.u32(alignType, premier);
  e.octets(repertoires);
  e.aligner2();
  const int64_t longueur = e.offset() - 2;
  if (longueur > 0xFFFF) {
    if (erreur)
      *erreur = QStringLiteral("Le bloc EXIF (%1 octets) dépasse la taille d'un segment JPEG.")
                    .arg(longueur);
    return false;
  }
  e.u16beAt(champLongueur, uint16_t(longueur));
  ExifDataAreaSize = 8 + repertoires.size();
  segment = e.donnees();
  return true;
}

}  // namespace tg::meta
