#include "metadata/EditionTIFF.h"

namespace tg::meta {

namespace {

QByteArray Long(uint32_t v) {
  QByteArray b(4, '\0');
  for (int i = 0; i < 4; ++i) b[i] = char((v >> (8 * i)) & 0xFF);
  return b;
}

// A directory during the edit: a working copy, never the caller's object.
struct Travail {
  CIFD ifd;
  const CIFD* lu = nullptr;
  bool change = false;
  std::vector<size_t> valeursNeuves;  // entries whose value is written behind the directory
  bool avecVignette = false;
  int indexChaine = -1;  // in the chain of IFD0, IFD1...; -1 for a sub-directory

  bool Present() const { return !ifd.Vide(); }
  bool Lu() const { return lu != nullptr && !lu->Vide(); }
  // Where the directory stands after the edit; 0 when there is none.
  uint32_t Place() const {
    if (!Present()) return 0;
    return uint32_t(change ? ifd.Offset : lu->Offset);
  }
};

Travail Copie(const RepertoireEdite& r) {
  Travail t;
  if (r.actuel) t.ifd = *r.actuel;
  t.lu = r.lu;
  return t;
}

// The count of entries in the file at the directory's offset; -1 when it
// cannot be read.
int CompteLu(const LecteurOctets& bloc, const CIFD& lu, Ordre ordre) {
  uint16_t n = 0;
  return bloc.u16At(ordre, lu.Offset, n) ? n : -1;
}

// Position of the directory's link in the block; -1 when it lies outside.
int64_t PositionLien(const LecteurOctets& bloc, const CIFD& lu, Ordre ordre) {
  const int n = CompteLu(bloc, lu, ordre);
  if (n < 0) return -1;
  const int64_t p = int64_t(lu.Offset) + 2 + 12 * int64_t(n);
  return p + 4 <= bloc.taille() ? p : -1;
}

uint32_t LienLu(const LecteurOctets& bloc, const CIFD& lu, Ordre ordre) {
  uint32_t v = 0;
  const int64_t p = PositionLien(bloc, lu, ordre);
  if (p >= 0) bloc.u32At(ordre, p, v);
  return v;
}

// Position of the value field of the directory's entry for `tag`, checked
// against the bytes of the file; -1 when it cannot be found there.
int64_t PositionChampPointeur(const LecteurOctets& bloc, const CIFD& lu, int32_t tag,
                              Ordre ordre) {
  for (size_t i = 0; i < lu.Directories.size(); ++i) {
    if (lu.Directories[i].Tag != tag) continue;
    const int64_t entree = int64_t(lu.Offset) + 2 + 12 * int64_t(i);
    uint16_t t = 0;
    if (!bloc.u16At(ordre, entree, t) || t != uint16_t(tag) || entree + 12 > bloc.taille())
      return -1;
    return entree + 8;
  }
  return -1;
}

void PointeurPresent(CIFD& r, int32_t tag, const Travail& cible) {
  if (cible.Present() == cible.Lu()) return;
  const bool a = r.Trouver(tag) != nullptr;
  if (cible.Present() && !a) r.AddModifyTag(tag, FmtLong, Long(0));
  if (!cible.Present() && a) r.RemoveTag(tag);
}

void ViserPointeur(CIFD& r, int32_t tag, uint32_t cible) {
  CExifDirEnt* p = r.Trouver(tag);
  if (p == nullptr) return;
  // 13 is the IFD format of TIFF/EP, kept as the file had it.
  if (p->DataFormat != FmtLong && p->DataFormat != FmtSLong && p->DataFormat != 13)
    p->DataFormat = FmtLong;
  p->SetData(Long(cible));
  p->NumberOfComponent = 1;
  p->OffsetToValue = int32_t(cible);
}

bool EstInchangee(const CExifDirEnt& e, const CIFD* lu) {
  if (lu == nullptr) return false;
  for (const CExifDirEnt& a : lu->Directories)
    if (a.Tag == e.Tag && EntreeInchangee(e, a)) return true;
  return false;
}

}  // namespace

bool EntreeInchangee(const CExifDirEnt& a, const CExifDirEnt& b) {
  if (a.Tag != b.Tag || a.DataFormat != b.DataFormat || a.NumberOfComponent != b.NumberOfComponent ||
      a.GetData() != b.GetData())
    return false;
  // Without a value read (unknown format, value outside the block), the raw
  // field is all there is.
  const int64_t taille = int64_t(a.GetDataSize()) * a.NumberOfComponent;
  if (a.GetDataSize() == 0 || a.GetData().size() != taille) return a.OffsetToValue == b.OffsetToValue;
  return true;
}

bool RepertoireInchange(const CIFD& actuel, const CIFD& lu) {
  if (actuel.Directories.size() != lu.Directories.size()) return false;
  for (size_t i = 0; i < lu.Directories.size(); ++i)
    if (!EntreeInchangee(actuel.Directories[i], lu.Directories[i])) return false;
  return true;
}

bool StructureModifiee(const EditionTIFF& e) {
  auto modifie = [](const RepertoireEdite& r) {
    const bool present = r.actuel && !r.actuel->Vide();
    const bool lu = r.lu && !r.lu->Vide();
    if (present != lu) return true;
    return present && !RepertoireInchange(*r.actuel, *r.lu);
  };
  for (const RepertoireEdite& r : e.chaine)
    if (modifie(r)) return true;
  if (e.vignette && e.vignetteLue && *e.vignette != *e.vignetteLue) return true;
  return modifie(e.exif) || modifie(e.gps) || modifie(e.interop);
}

QByteArray EditerEnPlace(const QByteArray& bloc, const EditionTIFF& e, Ordre ordre) {
  const LecteurOctets lecteur(bloc);
  std::vector<Travail> chaine;
  for (const RepertoireEdite& r : e.chaine) {
    if (r.actuel == nullptr || r.actuel->Vide()) break;
    chaine.push_back(Copie(r));
    chaine.back().indexChaine = int(chaine.size()) - 1;
  }
  if (chaine.empty() || !StructureModifiee(e)) return bloc;
  Travail exif = Copie(e.exif), gps = Copie(e.gps), interop = Copie(e.interop);
  if (!exif.Present()) interop.ifd = CIFD();
  CIFD& ifd0 = chaine[0].ifd;

  // A pointer tag follows its directory when the edit made or emptied it; a
  // pointer to a directory that did not read stays as it was.
  PointeurPresent(ifd0, TagExifIFD, exif);
  PointeurPresent(ifd0, TagGPSIFD, gps);
  if (exif.Present()) PointeurPresent(exif.ifd, TagInteropIFD, interop);

  const bool vignetteNeuve = e.vignette && e.vignetteLue && *e.vignette != *e.vignetteLue;
  Travail* porteurVignette = chaine.size() > 1 ? &chaine[1] : nullptr;
  if (porteurVignette && vignetteNeuve) {
    if (e.vignette->isEmpty()) {
      porteurVignette->ifd.RemoveTag(TagThumbnailOffset);
      porteurVignette->ifd.RemoveTag(TagThumbnailLength);
    } else {
      porteurVignette->ifd.AddModifyTag(TagThumbnailOffset, FmtLong, Long(0));
      porteurVignette->ifd.AddModifyTag(TagThumbnailLength, FmtLong,
                                        Long(uint32_t(e.vignette->size())));
      porteurVignette->avecVignette = true;
    }
  }

  std::vector<Travail*> tous;
  for (Travail& t : chaine) tous.push_back(&t);
  tous.insert(tous.begin() + 1, {&exif, &interop, &gps});
  for (Travail* t : tous)
    t->change = t->Present() && (!t->Lu() || !RepertoireInchange(t->ifd, *t->lu));
  if (porteurVignette && vignetteNeuve) porteurVignette->change = true;

  // Placement of the new directories and of the values they alone hold.
  const int64_t depart = bloc.size() + bloc.size() % 2;
  int64_t position = depart;
  int64_t positionVignette = 0;
  for (Travail* t : tous) {
    if (!t->change) continue;
    t->ifd.Offset = int32_t(position);
    t->ifd.NumberOfDirectories = int16_t(t->ifd.Directories.size());
    position += 2 + 12 * int64_t(t->ifd.Directories.size()) + 4;
    for (size_t i = 0; i < t->ifd.Directories.size(); ++i) {
      CExifDirEnt& d = t->ifd.Directories[i];
      // An entry as it was read keeps its 12 bytes: its value stays where it is.
      if (EstInchangee(d, t->lu)) continue;
      d.Adjust(position, ordre);
      if (d.GetDataSize() != 0 && d.getDataLength() > 4) t->valeursNeuves.push_back(i);
    }
    if (t->avecVignette) {
      positionVignette = position;
      position += e.vignette->size() + e.vignette->size() % 2;
    }
  }

  // The pointers now know their targets; values of 4 bytes change no size.
  if (exif.Present()) ViserPointeur(ifd0, TagExifIFD, exif.Place());
  if (gps.Present()) ViserPointeur(ifd0, TagGPSIFD, gps.Place());
  if (interop.Present()) ViserPointeur(exif.ifd, TagInteropIFD, interop.Place());
  if (porteurVignette && porteurVignette->avecVignette)
    ViserPointeur(porteurVignette->ifd, TagThumbnailOffset, uint32_t(positionVignette));

  EcrivainOctets sortie;
  sortie.donnees().reserve(position);
  sortie.octets(bloc);
  sortie.aligner2();
  auto suivantLu = [&](size_t i) {
    return i + 1 < e.chaine.size() && e.chaine[i + 1].lu && !e.chaine[i + 1].lu->Vide();
  };
  for (Travail* t : tous) {
    if (!t->change) continue;
    // A link the edit does not concern keeps the value read, understood or not.
    uint32_t lien = t->Lu() ? LienLu(lecteur, *t->lu, ordre) : 0;
    if (t->indexChaine >= 0) {
      const size_t i = size_t(t->indexChaine);
      if (i + 1 < chaine.size())
        lien = chaine[i + 1].Place();
      else if (suivantLu(i))
        lien = 0;  // the next one was emptied
    }
    sortie.u16(ordre, uint16_t(t->ifd.Directories.size()));
    for (const CExifDirEnt& d : t->ifd.Directories) d.WriteDir(sortie, ordre);
    sortie.u32(ordre, lien);
    for (size_t i : t->valeursNeuves) t->ifd.Directories[i].WriteDirData(sortie, ordre);
    if (t->avecVignette) {
      sortie.octets(*e.vignette);
      sortie.aligner2();
    }
  }
  Q_ASSERT(sortie.offset() == position);

  // Pointers of the directories that stayed, re-aimed in place.
  auto patcher = [&](int64_t champ, uint32_t valeur) {
    if (champ >= 0) sortie.u32At(ordre, champ, valeur);
  };
  if (chaine[0].change) patcher(4, chaine[0].Place());
  for (size_t i = 0; i < chaine.size(); ++i) {
    const Travail& t = chaine[i];
    if (t.change || !t.Lu()) continue;
    if (i + 1 < chaine.size() && chaine[i + 1].change)
      patcher(PositionLien(lecteur, *t.lu, ordre), chaine[i + 1].Place());
    else if (i + 1 == chaine.size() && suivantLu(i))
      patcher(PositionLien(lecteur, *t.lu, ordre), 0);  // the next one was emptied
  }
  if (!chaine[0].change) {
    if (exif.change) patcher(PositionChampPointeur(lecteur, *chaine[0].lu, TagExifIFD, ordre), exif.Place());
    if (gps.change) patcher(PositionChampPointeur(lecteur, *chaine[0].lu, TagGPSIFD, ordre), gps.Place());
  }
  if (exif.Present() && !exif.change && interop.change)
    patcher(PositionChampPointeur(lecteur, *exif.lu, TagInteropIFD, ordre), interop.Place());
  return sortie.donnees();
}

}  // namespace tg::meta
