#include "metadata/CMakerNote.h"

#include <QStringList>

namespace tg::meta {

namespace {

// No maker writes so many entries: a larger count is a wrong byte order.
constexpr int kMaxEntrees = 1000;

enum Fabricant {
  Olympus = 0,
  Nikon = 1,
  Casio = 2,
  Fuji = 3,
  Canon = 4,
  Sigma = 5,
  Sanyo = 6,
  Minolta = 7,
  Sony = 8,
  Agfa = 9,
  Epson = 10,
  Kyocera = 11,
  Panasonic = 12,
  Pentax = 13,
  Ricoh = 14,
};

struct Variante {
  int version = 1;
  int32_t offset = 0;
  bool lisible = true;
  bool ordreFixe = false;
  Ordre ordre = Ordre::Intel;
  bool enTetePropre = false;     // Nikon 2: a TIFF header of its own at + 10
  bool relatifAuBloc = false;    // Fuji: offsets from the block's start
  bool relatifALEntree = false;  // Kyocera: offsets from each entry's own start
};

Variante Reconnaitre(int fabricant, const QByteArray& o) {
  Variante v;
  const QByteArray debut = o.left(16);
  switch (fabricant) {
    case Canon:
      break;
    case Casio:
      if (o.left(6).startsWith("QVC")) {
        v.version = 2;
        v.offset = 6;
      }
      break;
    case Fuji:
      // "FUJIFILM" and a little-endian offset of the directory, 12.
      v.offset = 12;
      v.ordreFixe = true;
      v.ordre = Ordre::Intel;
      v.relatifAuBloc = true;
      break;
    case Nikon:
      if (debut.contains(QByteArray("Nikon\0\x01", 7))) {
        v.offset = 8;
      } else if (debut.contains(QByteArray("Nikon\0\x02", 7))) {
        v.version = 2;
        v.offset = 18;
        v.enTetePropre = true;
        v.ordreFixe = true;
        v.ordre = o.size() > 10 && o[10] == 'I' ? Ordre::Intel : Ordre::Motorola;
      } else {
        v.version = 2;
      }
      break;
    case Olympus:
      // "OLYMPUS\0", the directory's order and a version: 12 bytes of header,
      // offsets counted from the note's own start. "OLYMP\0" and the others
      // count from the file's TIFF header.
      if (o.startsWith(QByteArray("OLYMPUS\0", 8)) &&
          (o.mid(8, 2) == "II" || o.mid(8, 2) == "MM")) {
        v.offset = 12;
        v.ordreFixe = true;
        v.ordre = o.mid(8, 2) == "MM" ? Ordre::Motorola : Ordre::Intel;
        v.relatifAuBloc = true;
      } else {
        v.offset = 8;
      }
      break;
    case Sanyo:
    case Sigma:
    case Epson:
      v.offset = 8;
      break;
    case Minolta:
      if (o.startsWith("MLY") || o.startsWith("KC") || o.startsWith("+M+M+M+M") ||
          o.startsWith("MINOL"))
        v.lisible = false;
      break;
    case Sony:
      v.offset = 12;
      break;
    case Kyocera:
      // "KYOCERA", blanks and zeros up to 22 bytes; each value's offset is
      // counted from the start of its own entry.
      v.offset = 22;
      v.relatifALEntree = true;
      break;
    case Panasonic:
      v.offset = 12;
      v.lisible = o.startsWith("Panasonic");
      break;
    case Pentax:
      if (o.left(6).startsWith("AOC")) {
        v.version = 2;
        v.offset = 6;
        // The header names the directory's order when it can: kept, so that
        // the note and its header agree once laid out again.
        if (o.mid(4, 2) == "MM" || o.mid(4, 2) == "II") {
          v.ordreFixe = true;
          v.ordre = o.mid(4, 2) == "MM" ? Ordre::Motorola : Ordre::Intel;
        }
      }
      break;
    case Ricoh:
      v.offset = 8;
      v.lisible = o.startsWith("RICOH");
      v.ordreFixe = true;
      v.ordre = Ordre::Motorola;
      break;
    default:
      v.lisible = false;  // no known layout: carried as bytes
      break;
  }
  return v;
}

Ordre Inverse(Ordre o) { return o == Ordre::Intel ? Ordre::Motorola : Ordre::Intel; }

}  // namespace

bool CMakerNote::ReadIFD(const LecteurOctets& bloc, int64_t position, const QByteArray& octets,
                         Ordre ordreFichier) {
  const int fabricant = Manufacture;
  *this = CMakerNote();
  Manufacture = fabricant;
  octets_ = octets;
  position_ = position;
  const Variante v = Reconnaitre(Manufacture, octets);
  MakerNoteTagVersion = v.version;
  Offset = v.offset;
  ordre = v.ordreFixe ? v.ordre : ordreFichier;
  ordreEcrit_ = ordre;
  origine_ = v.enTetePropre ? position + 10 : v.relatifAuBloc ? position : 0;
  relatifAuBloc_ = v.relatifAuBloc;
  relatifALEntree_ = v.relatifALEntree;
  if (!v.lisible) return false;

  const int64_t debut = position + Offset;
  uint16_t nombre = 0;
  if (!bloc.u16At(ordre, debut, nombre)) return false;
  if (nombre > kMaxEntrees) {
    ordre = Inverse(ordre);
    if (!bloc.u16At(ordre, debut, nombre) || nombre > kMaxEntrees) {
      ordre = v.ordreFixe ? v.ordre : ordreFichier;
      return false;
    }
  }
  NumberOfDirectories = int16_t(nombre);
  for (int i = 0; i < nombre; ++i) {
    const int64_t p = debut + 2 + 12 * int64_t(i);
    CExifDirEnt e;
    if (!e.GetExifDirectoryInfos(bloc, p, ordre)) break;
    e.GetExifDirectoryDataRel(bloc, p, ordre, relatifALEntree_ ? p : origine_);
    Directories.push_back(std::move(e));
  }
  lu_ = true;
  return true;
}

int CMakerNote::LongueurPrefixe() const {
  const QByteArray& o = octets_;
  if (o.startsWith("QVC") || o.startsWith("AOC")) return 6;
  if (o.startsWith(QByteArray("Nikon\0\x02", 7))) return 18;
  if (o.startsWith(QByteArray("Nikon\0", 6))) return 8;
  if (o.startsWith("Panasonic")) return 12;
  if (o.startsWith("RICOH")) return 8;
  if (o.startsWith("KC") || o.startsWith("MLY") || o.startsWith("+M+M+M+M") ||
      o.startsWith("MINOL"))
    return 0;  // not a directory: the whole block is kept
  return Offset;
}

QByteArray CMakerNote::AdjustMakerNote(int64_t position) const {
  const bool relaye = Manufacture == Sony || Manufacture == Kyocera || Manufacture == Panasonic ||
                      Manufacture == Pentax;
  if (!relaye || !lu_ || Offset > octets_.size()) return octets_;
  std::vector<CExifDirEnt> entrees = Directories;
  const int64_t base = relatifAuBloc_ || relatifALEntree_ ? 0 : position;
  int64_t courant = base + Offset + 2 + 12 * int64_t(entrees.size()) + 4;
  // Written in the order the next reading tries first: a note read turned
  // would otherwise come back with a count that may pass for a right one.
  const Ordre o = ordreEcrit_;
  for (size_t i = 0; i < entrees.size(); ++i) {
    const int64_t valeur = courant;
    entrees[i].Adjust(courant, o);
    if (relatifALEntree_ && courant != valeur)
      entrees[i].OffsetToValue = int32_t(valeur - (Offset + 2 + 12 * int64_t(i)));
  }
  EcrivainOctets w;
  w.octets(octets_.left(Offset));
  w.u16(o, uint16_t(entrees.size()));
  for (const CExifDirEnt& e : entrees) e.WriteDir(w, o);
  w.u32(o, 0);
  for (const CExifDirEnt& e : entrees) e.WriteDirData(w, o);
  return w.donnees();
}

int CMakerNote::Table() const {
  if (Manufacture == Nikon && MakerNoteTagVersion == 1) return 15;
  if (Manufacture == Casio && MakerNoteTagVersion == 2) return 16;
  if (Manufacture == Pentax && MakerNoteTagVersion == 2) return 17;
  return Manufacture;
}

QString CMakerNote::NomTag(int32_t tag) const { return NomTagFabricant(Table(), tag); }

namespace {

// Each named element of a Canon array as "Name=value (meaning)", joined by
// "; "; elements without a name are left out.
QString ElementsCanon(const CExifDirEnt& e) {
  const QByteArray& d = e.GetData();
  const bool signe = TableauCanonSigne(e.Tag);
  QStringList parties;
  for (int i = 0; 2 * i + 1 < d.size(); ++i) {
    const QString nom = NomElementCanon(e.Tag, i);
    if (nom.isEmpty()) continue;
    const uint16_t brut = uint16_t(uint8_t(d[2 * i]) | (uint8_t(d[2 * i + 1]) << 8));
    const int64_t v = signe ? int64_t(int16_t(brut)) : int64_t(brut);
    QString p = nom + u'=' + QString::number(v);
    const QString sens = SignificationElementCanon(e.Tag, i, v);
    if (!sens.isEmpty()) p += QStringLiteral(" (%1)").arg(sens);
    parties << p;
  }
  return parties.join(QStringLiteral("; "));
}

// The elements of an integer value in decimal, separated by blanks; empty
// for another format.
QString NombresDecimaux(const CExifDirEnt& e) {
  const QByteArray& d = e.GetData();
  const int n = e.GetDataSize();
  const bool signe =
      e.DataFormat == FmtSByte || e.DataFormat == FmtSShort || e.DataFormat == FmtSLong;
  switch (e.DataFormat) {
    case FmtByte:
    case FmtSByte:
    case FmtUndefined:
    case FmtShort:
    case FmtSShort:
    case FmtLong:
    case FmtSLong:
      break;
    default:
      return {};
  }
  QStringList parties;
  for (int i = 0; n * (i + 1) <= d.size(); ++i) {
    uint64_t u = 0;
    for (int k = n - 1; k >= 0; --k) u = (u << 8) | uint8_t(d[n * i + k]);
    int64_t v = int64_t(u);
    if (signe && (u >> (8 * n - 1)) != 0) v -= int64_t(1) << (8 * n);
    parties << QString::number(v);
  }
  return parties.join(u' ');
}

// The key of a value in the sub-directory's table: the lens and extender
// codes of Equipment are bytes 0, 2, 3 (0, 2) in hexadecimal, a text is
// looked up as it stands, numbers in decimal.
QString CleOlympus(int32_t repertoire, const CExifDirEnt& e) {
  const QByteArray& d = e.GetData();
  if (repertoire == 0x2010 && (e.Tag == 0x0201 || e.Tag == 0x0301) && e.GetDataSize() == 1) {
    if (e.Tag == 0x0201 && d.size() >= 4)
      return QString::asprintf("%x %02x %02x", uint8_t(d[0]), uint8_t(d[2]), uint8_t(d[3]));
    if (e.Tag == 0x0301 && d.size() >= 3)
      return QString::asprintf("%x %02x", uint8_t(d[0]), uint8_t(d[2]));
    return {};
  }
  if (e.DataFormat == FmtAscii) return e.GetDataFormatted().trimmed();
  return NombresDecimaux(e);
}

}  // namespace

QString CMakerNote::SousRepertoire(const CExifDirEnt& e) const {
  // Read inside the note's own bytes: a directory or a value that leaves
  // the note is not taken for one.
  const LecteurOctets note(octets_);
  const int64_t base = origine_ - position_;  // may be negative: before the note
  int64_t debut = 0, fin = octets_.size();
  if (e.DataFormat == FmtUndefined && e.getDataLength() > 4) {
    // The directory is the value itself, as long as it is the note's bytes.
    debut = base + int64_t(uint32_t(e.OffsetToValue));
    fin = debut + e.getDataLength();
    QByteArray ici;
    if (!note.octetsAt(debut, e.getDataLength(), ici) || ici != e.GetData()) return {};
  } else if (e.DataFormat == FmtLong && e.NumberOfComponent == 1 && e.getDataLength() == 4) {
    debut = base + int64_t(uint32_t(e.GetDataVariant()));
  } else if (e.DataFormat == 13 && e.NumberOfComponent == 1) {
    debut = base + int64_t(uint32_t(e.OffsetToValue));  // the IFD format: a LONG by another name
  } else {
    return {};
  }
  uint16_t nombre = 0;
  if (!note.u16At(ordre, debut, nombre) || nombre == 0 || nombre > kMaxEntrees) return {};
  if (debut + 2 + 12 * int64_t(nombre) > fin) return {};
  QStringList parties;
  for (int i = 0; i < nombre; ++i) {
    const int64_t p = debut + 2 + 12 * int64_t(i);
    CExifDirEnt s;
    // An unknown format or a value outside the note: not a directory after all.
    if (!s.GetExifDirectoryInfos(note, p, ordre) || s.GetDataSize() == 0 ||
        !s.GetExifDirectoryDataRel(note, p, ordre, base))
      return {};
    QString nom = NomSousTagOlympus(e.Tag, s.Tag);
    if (nom.isEmpty()) nom = QString::asprintf("0x%04X", unsigned(s.Tag));
    QString t = nom + u'=' + s.GetDataFormatted();
    const QString sens = SignificationSousTagOlympus(e.Tag, s.Tag, CleOlympus(e.Tag, s));
    if (!sens.isEmpty()) t += QStringLiteral(" (%1)").arg(sens);
    parties << t;
  }
  return parties.join(QStringLiteral("; "));
}

QString CMakerNote::GetMakerNoteFormatted(const CExifDirEnt& e) const {
  if (Manufacture == Olympus && lu_ && !SousRepertoireOlympus(e.Tag).isEmpty()) {
    const QString entrees = SousRepertoire(e);
    if (!entrees.isEmpty()) return entrees;
  }
  if (Manufacture == Canon && TableauCanon(e.Tag) &&
      (e.DataFormat == FmtShort || e.DataFormat == FmtSShort)) {
    const QString elements = ElementsCanon(e);
    if (!elements.isEmpty()) return elements;
  }
  QString t = e.GetDataFormatted();
  if (e.DataFormat == FmtAscii) {
    const QString sens = SignificationTexteFabricant(Table(), e.Tag, t.trimmed());
    if (!sens.isEmpty()) t += QStringLiteral(" (%1)").arg(sens);
    return t;
  }
  const int n = e.GetDataSize();
  // A meaning for one number; texts and blocks stay as they are.
  const bool entier = e.DataFormat == FmtByte || e.DataFormat == FmtShort ||
                      e.DataFormat == FmtLong || e.DataFormat == FmtSByte ||
                      e.DataFormat == FmtSShort || e.DataFormat == FmtSLong;
  if (!entier || e.getDataLength() != n) return t;
  const QString sens = SignificationFabricant(Table(), e.Tag, int64_t(e.GetDataVariant()));
  if (!sens.isEmpty()) t += QStringLiteral(" (%1)").arg(sens);
  return t;
}

void CMakerNote::AddModifyTag(int32_t tag, int16_t format, const QByteArray& data) {
  CIFD r;
  r.Directories = std::move(Directories);
  r.AddModifyTag(tag, format, data);
  Directories = std::move(r.Directories);
  NumberOfDirectories = int16_t(Directories.size());
}

void CMakerNote::RemoveTag(int32_t tag) {
  std::erase_if(Directories, [tag](const CExifDirEnt& e) { return e.Tag == tag; });
  NumberOfDirectories = int16_t(Directories.size());
}

}  // namespace tg::meta
