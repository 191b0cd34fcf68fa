#pragma once
// The maker note (EXIF tag 37500): a block private to each camera maker,
// most often a directory of 12-byte entries behind a header of its own.
// CMakerNote recognises the maker's variant, reads the directory, names the
// tags and their values, and prepares the block for its new place when the
// EXIF block is rebuilt.
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

#include "metadata/CExif.h"

namespace tg::meta {

class CMakerNote {
 public:
  int Manufacture = -1;  // the number of CExif::GetManufacturer
  int MakerNoteTagVersion = 1;
  int32_t Offset = 0;  // bytes of header in front of the directory's count
  int16_t NumberOfDirectories = 0;
  std::vector<CExifDirEnt> Directories;
  Ordre ordre = Ordre::Intel;  // of the directory, which may differ from the file's

  // Reads the block whose bytes are `octets`, found at offset `position` of
  // the TIFF structure `bloc` (offsets counted from its header). The variant
  // is recognised from the first bytes and Manufacture; a block that is not
  // a directory, or whose count exceeds 1000 in both byte orders, stays
  // unread (bytes only). True when the directory was read.
  bool ReadIFD(const LecteurOctets& bloc, int64_t position, const QByteArray& octets,
               Ordre ordreFichier);
  bool Lu() const { return lu_; }
  const QByteArray& Octets() const { return octets_; }
  // Offset of the note in the TIFF structure, as read.
  int64_t Position() const { return position_; }
  // Origin of the entries' offsets in the TIFF structure: the block's own
  // header for the variants that carry one, else 0. Kyocera counts each
  // offset from its own entry instead (EntreeRelative).
  int64_t Origine() const { return origine_; }
  bool EntreeRelative() const { return relatifALEntree_; }
  // Length of the header that the writer keeps word for word (0 when unknown).
  int LongueurPrefixe() const;

  // The block to write at offset `position` of the rebuilt TIFF structure.
  // Sony, Kyocera, Panasonic and Pentax (8, 11, 12, 13) are laid out again:
  // header, count, entries, a zero link, then the values from behind the
  // directory, their offsets counted as the maker counts them, in the file's
  // byte order (Pentax "AOC": the one its header names; Kyocera: from
  // each entry, so the block no longer depends on its place). Every other
  // block is copied as it stands: its inner offsets are not touched. The
  // length never depends on `position`.
  QByteArray AdjustMakerNote(int64_t position) const;

  // Name of a tag of the maker; empty when unknown.
  QString NomTag(int32_t tag) const;
  // The value as text, with its meaning after it when the tag has a table.
  // Olympus's sub-directories and Canon's arrays come as "Name=value
  // (meaning)" joined by "; ".
  QString GetMakerNoteFormatted(const CExifDirEnt& e) const;

  void AddModifyTag(int32_t tag, int16_t format, const QByteArray& data);
  void RemoveTag(int32_t tag);

 private:
  // The table of Manufacture, the Nikon one by version.
  int Table() const;
  // The entries of an Olympus sub-directory; empty when the value cannot be
  // read as a directory lying whole inside the note.
  QString SousRepertoire(const CExifDirEnt& e) const;
  QByteArray octets_;
  int64_t position_ = 0;  // of the note in the TIFF structure
  int64_t origine_ = 0;
  Ordre ordreEcrit_ = Ordre::Intel;  // the file's, or the one the header names
  bool relatifAuBloc_ = false;       // offsets counted from the block's own start
  bool relatifALEntree_ = false;     // offsets counted from each entry's start
  bool lu_ = false;
};

// Name and meaning of a maker's tag: `table` is 0 to 14 as Manufacture, 15
// for the Nikon notes of version 1, 16 for the Casio ones of version 2, 17
// for the Pentax ones of version 2. Empty when unknown.
QString NomTagFabricant(int table, int32_t tag);
QString SignificationFabricant(int table, int32_t tag, int64_t valeur);
// Lines of the tables that do not follow their own layout (tag, name,
// "value=meaning" pairs, no tag or value twice); empty when all are sound.
QStringList DefautsTablesFabricants();
// The meaning of a text value (Sigma writes its modes as letters).
QString SignificationTexteFabricant(int table, int32_t tag, const QString& valeur);

// Canon's array tags (CameraSettings 0x0001, FocalLength 0x0002, ShotInfo
// 0x0004, Panorama 0x0005, AFInfo 0x0012, MyColors 0x001D, FileInfo 0x0093,
// ProcessingInfo 0x00A0): a list of 16-bit numbers, each named by its index.
bool TableauCanon(int32_t tag);
// Whether the tag's elements are signed (-1 standing for "n/a").
bool TableauCanonSigne(int32_t tag);
QString NomElementCanon(int32_t tag, int index);
QString SignificationElementCanon(int32_t tag, int index, int64_t valeur);

// Olympus's sub-directories (Equipment 0x2010, CameraSettings 0x2020,
// RawDevelopment 0x2030, RawDevelopment2 0x2031, ImageProcessing 0x2040,
// FocusInfo 0x2050): a directory of their own, with its own tags. The name
// of the sub-directory, empty for another tag.
QString SousRepertoireOlympus(int32_t tag);
QString NomSousTagOlympus(int32_t repertoire, int32_t tag);
// The meaning of a value written as its numbers in decimal separated by
// blanks, as its text, or as the lens code ("0 01 00"); empty when unknown.
QString SignificationSousTagOlympus(int32_t repertoire, int32_t tag, const QString& valeur);

}  // namespace tg::meta
