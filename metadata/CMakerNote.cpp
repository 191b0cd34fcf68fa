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

}  // namespace

QString CMakerNote::GetMakerNoteFormatted(const CExifDirEnt& e) const {
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
