#include "metadata/CExif.h"

#include <QStringList>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <set>

namespace tg::meta {

// ---------------------------------------------------------------- CExifDirEnt

int CExifDirEnt::GetDataSize(int format) {
  switch (format) {
    case 1:
    case 2:
    case 6:
    case 7:
      return 1;
    case 3:
    case 8:
      return 2;
    case 4:
    case 9:
    case 11:
      return 4;
    case 5:
    case 10:
    case 12:
      return 8;
    default:
      return 0;
  }
}

void CExifDirEnt::RedimData(int n) {
  data_ = QByteArray(std::max(n, 0), '\0');
  if (const int s = GetDataSize()) NumberOfComponent = int32_t(std::lround(double(n) / s));
}

void CExifDirEnt::RedimPreserveData(int n) {
  data_.resize(std::max(n, 0), '\0');
  if (const int s = GetDataSize()) NumberOfComponent = int32_t(std::lround(double(n) / s));
}

QByteArray CExifDirEnt::Tourner(const QByteArray& octets, int format, Ordre ordre) {
  if (ordre == Ordre::Intel) return octets;
  int pas = GetDataSize(format);
  // A rational is two LONGs, each turned by itself.
  if (format == FmtRational || format == FmtSRational) pas = 4;
  if (pas <= 1) return octets;
  QByteArray r = octets;
  for (qsizetype i = 0; i + pas <= r.size(); i += pas)
    std::reverse(r.begin() + i, r.begin() + i + pas);
  return r;
}

bool CExifDirEnt::GetExifDirectoryInfos(const LecteurOctets& bloc, int64_t position, Ordre ordre) {
  uint16_t tag = 0, format = 0;
  uint32_t nombre = 0, valeur = 0;
  if (!bloc.u16At(ordre, position, tag) || !bloc.u16At(ordre, position + 2, format) ||
      !bloc.u32At(ordre, position + 4, nombre) || !bloc.u32At(ordre, position + 8, valeur))
    return false;
  Tag = tag;
  DataFormat = int16_t(format);
  NumberOfComponent = int32_t(nombre);
  OffsetToValue = int32_t(valeur);
  return true;
}

bool CExifDirEnt::LireValeur(const LecteurOctets& bloc, int64_t positionEntree, Ordre ordre,
                             int64_t origine) {
  data_.clear();
  const int64_t s = GetDataSize();
  const int64_t n = uint32_t(NumberOfComponent);
  if (s == 0 || n == 0) return true;
  const int64_t longueur = n * s;  // at most 8 x 2^32: no overflow in 64 bits
  if (longueur > bloc.taille()) return false;
  const int64_t source =
      longueur > 4 ? origine + int64_t(uint32_t(OffsetToValue)) : positionEntree + 8;
  QByteArray brut;
  if (!bloc.octetsAt(source, longueur, brut)) return false;
  data_ = Tourner(brut, DataFormat, ordre);
  return true;
}

bool CExifDirEnt::GetExifDirectoryData(const LecteurOctets& bloc, int64_t positionEntree,
                                       Ordre ordre) {
  return LireValeur(bloc, positionEntree, ordre, 0);
}

bool CExifDirEnt::GetExifDirectoryDataRel(const LecteurOctets& bloc, int64_t positionEntree,
                                          Ordre ordre, int64_t origine) {
  return LireValeur(bloc, positionEntree, ordre, origine);
}

namespace {

template <typename T>
T Element(const QByteArray& d, qsizetype i) {
  T v{};
  if (i >= 0 && i + qsizetype(sizeof(T)) <= d.size()) {
    // Elements are little-endian; assemble them so the host order does not matter.
    std::conditional_t<sizeof(T) == 8, uint64_t,
                       std::conditional_t<sizeof(T) == 4, uint32_t,
                                          std::conditional_t<sizeof(T) == 2, uint16_t, uint8_t>>>
        u = 0;
    for (int k = int(sizeof(T)) - 1; k >= 0; --k) u = (u << 8) | uint8_t(d[i + k]);
    std::memcpy(&v, &u, sizeof(T));
  }
  return v;
}

QString Court(double v) {
  char tampon[64];
  const auto r = std::to_chars(tampon, tampon + sizeof tampon, v);
  return QString::fromLatin1(tampon, int(r.ptr - tampon));
}

QString Court(float v) {
  char tampon[64];
  const auto r = std::to_chars(tampon, tampon + sizeof tampon, v);
  return QString::fromLatin1(tampon, int(r.ptr - tampon));
}

}  // namespace

QString CExifDirEnt::GetDataFormatted() const {
  const int s = GetDataSize();
  if (s == 0 || data_.isEmpty()) return {};
  if (DataFormat == FmtAscii) {
    const qsizetype nul = data_.indexOf('\0');
    return DepuisCp1252(nul < 0 ? data_ : data_.left(nul));
  }
  if (DataFormat == FmtByte || DataFormat == FmtSByte || DataFormat == FmtUndefined) {
    QString r = QStringLiteral("0x");
    for (char c : data_)
      r += QStringLiteral("%1").arg(uint8_t(c), 2, 16, QLatin1Char('0')).toUpper();
    return r;
  }
  QStringList parties;
  for (qsizetype i = 0; i + s <= data_.size(); i += s) {
    switch (DataFormat) {
      case FmtShort:
        parties << QString::number(Element<uint16_t>(data_, i));
        break;
      case FmtSShort:
        parties << QString::number(Element<int16_t>(data_, i));
        break;
      case FmtLong:
        parties << QString::number(Element<uint32_t>(data_, i));
        break;
      case FmtSLong:
        parties << QString::number(Element<int32_t>(data_, i));
        break;
      case FmtRational:
        parties << QStringLiteral("%1/%2")
                       .arg(Element<uint32_t>(data_, i))
                       .arg(Element<uint32_t>(data_, i + 4));
        break;
      case FmtSRational:
        parties << QStringLiteral("%1/%2")
                       .arg(Element<int32_t>(data_, i))
                       .arg(Element<int32_t>(data_, i + 4));
        break;
      case FmtFloat:
        parties << Court(Element<float>(data_, i));
        break;
      case FmtDouble:
        parties << Court(Element<double>(data_, i));
        break;
      default:
        break;
    }
  }
  return parties.join(u' ');
}

double CExifDirEnt::GetDataVariant() const {
  if (data_.size() < GetDataSize() || GetDataSize() == 0) return 0;
  switch (DataFormat) {
    case FmtByte:
    case FmtUndefined:
    case FmtAscii:
      return uint8_t(data_[0]);
    case FmtSByte:
      return int8_t(data_[0]);
    case FmtShort:
      return Element<uint16_t>(data_, 0);
    case FmtSShort:
      return Element<int16_t>(data_, 0);
    case FmtLong:
      return Element<uint32_t>(data_, 0);
    case FmtSLong:
      return Element<int32_t>(data_, 0);
    case FmtRational: {
      const uint32_t d = Element<uint32_t>(data_, 4);
      return d == 0 ? 0 : double(Element<uint32_t>(data_, 0)) / d;
    }
    case FmtSRational: {
      const int32_t d = Element<int32_t>(data_, 4);
      return d == 0 ? 0 : double(Element<int32_t>(data_, 0)) / d;
    }
    case FmtFloat:
      return Element<float>(data_, 0);
    case FmtDouble:
      return Element<double>(data_, 0);
    default:
      return 0;
  }
}

QString CExifDirEnt::GetMicrosoftTagFormatted() const {
  QString r;
  for (qsizetype i = 0; i + 1 < data_.size(); i += 2) {
    const char16_t c = char16_t(uint8_t(data_[i]) | (uint8_t(data_[i + 1]) << 8));
    if (c == 0) break;
    r.append(QChar(c));
  }
  return r;
}

QString CExifDirEnt::GetOrientation() const {
  static const char* const textes[] = {
      "0th row : top  ;0th Column : left side",    "0th row : top ;0th Column : right side",
      "0th row : bottom ;0th Column : right side", "0th row : bottom ;0th Column : left side",
      "0th row : left side ;0th Column : top",     "0th row : right side ;0th Column : top",
      "0th row : right side ;0th Column : bottom", "0th row : left side ;0th Column : bottom"};
  const int v = Data(0);
  if (data_.isEmpty() || v < 1 || v > 8) return {};
  return QLatin1String(textes[v - 1]);
}

QString CExifDirEnt::GetTagName() const { return NomTag(Tag); }

void CExifDirEnt::Adjust(int64_t& position, Ordre ordre) {
  const int s = GetDataSize();
  if (s == 0) return;  // unknown format: written as read
  NumberOfComponent = int32_t(data_.size() / s);
  if (data_.size() <= 4) {
    if (NumberOfComponent == 0) {
      OffsetToValue = 0;
      return;
    }
    QByteArray champ = Tourner(data_, DataFormat, ordre);
    champ.resize(4, '\0');
    uint32_t v = 0;
    LecteurOctets(champ).u32At(ordre, 0, v);
    OffsetToValue = int32_t(v);
    return;
  }
  OffsetToValue = int32_t(uint32_t(position));
  position += data_.size() + (data_.size() % 2);
}

void CExifDirEnt::WriteDir(EcrivainOctets& e, Ordre ordre) const {
  e.u16(ordre, uint16_t(Tag));
  e.u16(ordre, uint16_t(DataFormat));
  e.u32(ordre, uint32_t(NumberOfComponent));
  e.u32(ordre, uint32_t(OffsetToValue));
}

void CExifDirEnt::WriteDirData(EcrivainOctets& e, Ordre ordre, bool noSwap) const {
  if (GetDataSize() == 0 || data_.size() <= 4) return;
  e.octets(noSwap ? data_ : Tourner(data_, DataFormat, ordre));
  e.aligner2();
}

// ---------------------------------------------------------------- CIFD

uint32_t CIFD::ReadIFD(const LecteurOctets& bloc, int64_t offset, Ordre ordre) {
  Directories.clear();
  Offset = int32_t(offset);
  NumberOfDirectories = 0;
  uint16_t nombre = 0;
  if (!bloc.u16At(ordre, offset, nombre) || nombre < 1) return 0;
  for (int i = 0; i < nombre; ++i) {
    const int64_t position = offset + 2 + 12 * int64_t(i);
    CExifDirEnt e;
    if (!e.GetExifDirectoryInfos(bloc, position, ordre))
      return 0;  // truncated: what was read stays
    e.GetExifDirectoryData(bloc, position, ordre);
    Directories.push_back(std::move(e));
    NumberOfDirectories = int16_t(Directories.size());
  }
  uint32_t suivant = 0;
  if (!bloc.u32At(ordre, offset + 2 + 12 * int64_t(nombre), suivant)) return 0;
  return suivant;
}

const CExifDirEnt* CIFD::Trouver(int32_t tag) const {
  for (const CExifDirEnt& e : Directories)
    if (e.Tag == tag) return &e;
  return nullptr;
}

CExifDirEnt* CIFD::Trouver(int32_t tag) {
  for (CExifDirEnt& e : Directories)
    if (e.Tag == tag) return &e;
  return nullptr;
}

void CIFD::AddModifyTag(int32_t tag, int16_t format, const QByteArray& data) {
  CExifDirEnt* e = Trouver(tag);
  if (e == nullptr) {
    auto it = std::find_if(Directories.begin(), Directories.end(),
                           [tag](const CExifDirEnt& d) { return d.Tag > tag; });
    CExifDirEnt nouvelle;
    nouvelle.Tag = tag;
    e = &*Directories.insert(it, nouvelle);
    NumberOfDirectories = int16_t(Directories.size());
  }
  e->DataFormat = format;
  e->SetData(data);
  const int s = e->GetDataSize();
  e->NumberOfComponent = s ? int32_t(data.size() / s) : 0;
}

void CIFD::RemoveTag(int32_t tag) {
  const auto avant = Directories.size();
  std::erase_if(Directories, [tag](const CExifDirEnt& d) { return d.Tag == tag; });
  if (Directories.size() != avant) NumberOfDirectories = int16_t(Directories.size());
}

void CIFD::WriteDir(EcrivainOctets& e, Ordre ordre, uint32_t suivant) const {
  e.u16(ordre, uint16_t(Directories.size()));
  for (const CExifDirEnt& d : Directories) d.WriteDir(e, ordre);
  e.u32(ordre, suivant);
  for (const CExifDirEnt& d : Directories) d.WriteDirData(e, ordre);
}

// ---------------------------------------------------------------- CExif

CIFD* CExif::Repertoire_(Repertoire r) {
  switch (r) {
    case Repertoire::IFD0:
      return ifd(0);
    case Repertoire::IFD1:
      return ifd(1);
    case Repertoire::SubIFD:
      return &SubIFD();
    case Repertoire::GPS:
      return &GPS();
    case Repertoire::Interop:
      return &InteroperabilityIFD();
  }
  return nullptr;
}

int NumeroFabricant(const QString& make) {
  struct Mot {
    const char* mot;
    int numero;
  };
  static const Mot mots[] = {{"Canon", 4},   {"Casio", 2},   {"Fuji", 3},     {"Nikon", 1},
                             {"Olympus", 0}, {"Sanyo", 6},   {"Sony", 8},     {"Agfa", 9},
                             {"Epson", 10},  {"Contax", 11}, {"Kyocera", 11}, {"Panasonic", 12},
                             {"Asahi", 13},  {"Pentax", 13}, {"Ricoh", 14},   {"Foveon", 5},
                             {"Sigma", 5},   {"Konica", 7},  {"Minolta", 7}};
  for (const Mot& m : mots)
    if (make.contains(QLatin1String(m.mot), Qt::CaseInsensitive)) return m.numero;
  return -1;
}

int CExif::GetManufacturer() {
  CIFD* i0 = ifd(0);
  const CExifDirEnt* make = i0 ? i0->Trouver(TagMake) : nullptr;
  return make ? NumeroFabricant(make->GetDataFormatted()) : -1;
}

// ---------------------------------------------------------------- rebuild

namespace {

QByteArray Long(uint32_t v) {
  QByteArray b(4, '\0');
  for (int i = 0; i < 4; ++i) b[i] = char((v >> (8 * i)) & 0xFF);
  return b;
}

// Places every directory and value from `depart`; returns the end.
int64_t Placer(const std::vector<CIFD*>& ordreEcriture, CIFD* porteurVignette,
               const QByteArray& vignette, Ordre ordre, int64_t depart, int64_t& positionVignette) {
  int64_t position = depart;
  positionVignette = 0;
  for (CIFD* r : ordreEcriture) {
    r->Offset = int32_t(position);
    r->NumberOfDirectories = int16_t(r->Directories.size());
    position += 2 + 12 * int64_t(r->Directories.size()) + 4;
    for (CExifDirEnt& e : r->Directories) e.Adjust(position, ordre);
    if (r == porteurVignette) {
      positionVignette = position;
      position += vignette.size() + vignette.size() % 2;
    }
  }
  return position;
}

}  // namespace

QByteArray EcrireRepertoires(StructureTIFF& s, Ordre ordre, int64_t depart, uint32_t& premier) {
  premier = 0;
  std::vector<CIFD*> chaine;
  for (CIFD* r : s.chaine) {
    if (r == nullptr || r->Vide()) break;  // the chain ends at its first empty directory
    chaine.push_back(r);
  }
  if (chaine.empty()) return {};
  CIFD* ifd0 = chaine[0];
  const bool avecExif = s.exif && !s.exif->Vide();
  const bool avecInterop = avecExif && s.interop && !s.interop->Vide();
  const bool avecGps = s.gps && !s.gps->Vide();

  // Pointer tags follow the directories written: a placeholder now, the offset later.
  auto pointeur = [](CIFD* r, int32_t tag, bool present) {
    if (present)
      r->AddModifyTag(tag, FmtLong, Long(0));
    else
      r->RemoveTag(tag);
  };
  pointeur(ifd0, TagExifIFD, avecExif);
  pointeur(ifd0, TagGPSIFD, avecGps);
  if (avecExif) pointeur(s.exif, TagInteropIFD, avecInterop);

  CIFD* porteurVignette = s.gererVignette && chaine.size() > 1 ? chaine[1] : nullptr;
  if (porteurVignette) {
    // Placeholders of 4 bytes, so that the thumbnail's place is known after the first pass.
    if (porteurVignette->Trouver(TagThumbnailOffset) || !s.vignette.isEmpty()) {
      porteurVignette->AddModifyTag(TagThumbnailOffset, FmtLong, Long(0));
      porteurVignette->AddModifyTag(TagThumbnailLength, FmtLong, Long(uint32_t(s.vignette.size())));
    }
  }

  std::vector<CIFD*> ordreEcriture{ifd0};
  if (avecExif) ordreEcriture.push_back(s.exif);
  if (avecInterop) ordreEcriture.push_back(s.interop);
  if (avecGps) ordreEcriture.push_back(s.gps);
  for (size_t i = 1; i < chaine.size(); ++i) ordreEcriture.push_back(chaine[i]);

  const QByteArray vignette = porteurVignette ? s.vignette : QByteArray();
  int64_t positionVignette = 0;
  // A maker note laid out again is as long wherever it goes.
  CExifDirEnt* note = avecExif && s.noteFabricant ? s.exif->Trouver(TagMakerNote) : nullptr;
  if (note) note->SetData(s.noteFabricant(0));
  Placer(ordreEcriture, porteurVignette, vignette, ordre, depart, positionVignette);
  if (note && note->getDataLength() > 4) note->SetData(s.noteFabricant(note->OffsetToValue));
  // Second pass: the pointers now know their targets; sizes do not change.
  if (avecExif) ifd0->AddModifyTag(TagExifIFD, FmtLong, Long(uint32_t(s.exif->Offset)));
  if (avecGps) ifd0->AddModifyTag(TagGPSIFD, FmtLong, Long(uint32_t(s.gps->Offset)));
  if (avecInterop) s.exif->AddModifyTag(TagInteropIFD, FmtLong, Long(uint32_t(s.interop->Offset)));
  if (porteurVignette && porteurVignette->Trouver(TagThumbnailOffset))
    porteurVignette->AddModifyTag(TagThumbnailOffset, FmtLong, Long(uint32_t(positionVignette)));
  const int64_t fin =
      Placer(ordreEcriture, porteurVignette, vignette, ordre, depart, positionVignette);

  EcrivainOctets e;
  for (CIFD* r : ordreEcriture) {
    uint32_t suivant = 0;
    const auto it = std::find(chaine.begin(), chaine.end(), r);
    if (it != chaine.end() && it + 1 != chaine.end()) suivant = uint32_t((*(it + 1))->Offset);
    r->WriteDir(e, ordre, suivant);
    if (r == porteurVignette && !vignette.isEmpty()) {
      e.octets(vignette);
      e.aligner2();
    }
  }
  Q_ASSERT(depart + e.offset() == fin);
  (void)fin;
  premier = uint32_t(ifd0->Offset);
  return e.donnees();
}

}  // namespace tg::meta
