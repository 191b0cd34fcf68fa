#pragma once
// EXIF directories: one 12-byte entry (CExifDirEnt), one directory (CIFD),
// the interface of every EXIF container (CExif), and the rebuild of a TIFF
// structure from its directories.
//
// An entry's value is held as bytes with each element little-endian,
// whatever the file's order: elements are turned when read from a Motorola
// block and turned back when written to one. Rationals are two 4-byte halves,
// each turned by itself.
#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

#include "metadata/Octets.h"

namespace tg::meta {

// The five directories of an EXIF block.
enum class Repertoire { IFD0 = 0, IFD1 = 1, SubIFD = 2, GPS = 3, Interop = 4 };

// Tags with a role in the structure.
enum TagsStructure : uint16_t {
  TagThumbnailOffset = 0x0201,
  TagThumbnailLength = 0x0202,
  TagMake = 0x010F,
  TagExifIFD = 0x8769,     // 34665
  TagGPSIFD = 0x8825,      // 34853
  TagMakerNote = 0x927C,   // 37500
  TagInteropIFD = 0xA005,  // 40965
};

// Formats 1 to 12 of an entry.
enum FormatsExif : int16_t {
  FmtByte = 1,
  FmtAscii = 2,
  FmtShort = 3,
  FmtLong = 4,
  FmtRational = 5,
  FmtSByte = 6,
  FmtUndefined = 7,
  FmtSShort = 8,
  FmtSLong = 9,
  FmtSRational = 10,
  FmtFloat = 11,
  FmtDouble = 12,
};

class CExifDirEnt {
 public:
  int32_t Tag = 0;
  int16_t DataFormat = 0;
  int32_t NumberOfComponent = 0;
  // The entry's last 4 bytes read in the directory's order: an offset, or the
  // value itself when it fits.
  int32_t OffsetToValue = 0;

  // The value, elements little-endian.
  const QByteArray& GetData() const { return data_; }
  void SetData(const QByteArray& d) { data_ = d; }
  uint8_t Data(int i) const { return i >= 0 && i < data_.size() ? uint8_t(data_[i]) : 0; }
  void SetDataAt(int i, uint8_t v) {
    if (i >= 0 && i < data_.size()) data_[i] = char(v);
  }
  const char* dataPtr() const { return data_.constData(); }
  // n bytes, contents dropped (Redim) or kept (RedimPreserve); the count of
  // elements follows, rounded to the nearest.
  void RedimData(int n);
  void RedimPreserveData(int n);
  int getDataLength() const { return int(data_.size()); }
  void EraseData() { data_.clear(); }

  // Element size of a format in bytes; 0 for an unknown format.
  static int GetDataSize(int format);
  int GetDataSize() const { return GetDataSize(DataFormat); }

  // Reads Tag, DataFormat, NumberOfComponent and OffsetToValue from the 12
  // bytes at `position` of the block; false when they are not all there.
  bool GetExifDirectoryInfos(const LecteurOctets& bloc, int64_t position, Ordre ordre);
  // Reads the value: from the entry's own field at `positionEntree` + 8 when
  // it fits in 4 bytes, else from OffsetToValue counted from the start of the
  // block. A value outside the block leaves Data empty (false).
  bool GetExifDirectoryData(const LecteurOctets& bloc, int64_t positionEntree, Ordre ordre);
  // The same with OffsetToValue counted from `origine` (maker notes).
  bool GetExifDirectoryDataRel(const LecteurOctets& bloc, int64_t positionEntree, Ordre ordre,
                               int64_t origine);

  // The value as text: BYTE, SBYTE and UNDEFINED as "0x" and two hex digits a
  // byte; ASCII up to its NUL; numbers in decimal and rationals as "n/d",
  // several elements separated by blanks.
  QString GetDataFormatted() const;
  // The first element as a number (a rational divided out); 0 when empty.
  double GetDataVariant() const;
  // A UTF-16 value (the Windows tags) as text.
  QString GetMicrosoftTagFormatted() const;
  // The meaning of the first byte for tag Orientation; empty for others.
  QString GetOrientation() const;
  QString GetTagName() const;

  // Prepares the entry for writing in a block of order `ordre`. A value of up
  // to 4 bytes goes into OffsetToValue; a longer one is placed at `position`,
  // which advances by its length rounded up to even. An unknown format keeps
  // its fields as read.
  void Adjust(int64_t& position, Ordre ordre);
  // The 12 bytes of the entry.
  void WriteDir(EcrivainOctets& e, Ordre ordre) const;
  // The value when it is longer than 4 bytes, then a pad byte to even.
  void WriteDirData(EcrivainOctets& e, Ordre ordre, bool noSwap = false) const;

  // The value turned to or from the file's order.
  static QByteArray Tourner(const QByteArray& octets, int format, Ordre ordre);

 private:
  bool LireValeur(const LecteurOctets& bloc, int64_t positionEntree, Ordre ordre, int64_t origine);
  QByteArray data_;
};

class CIFD {
 public:
  int32_t Offset = 0;               // of the directory in its block
  int16_t NumberOfDirectories = 0;  // entries
  std::vector<CExifDirEnt> Directories;

  // Reads the directory at `offset` of the block and returns the offset of
  // the next one, 0 at the end. Entries past the end of the block are left
  // out; a directory that does not fit returns 0 as its link.
  uint32_t ReadIFD(const LecteurOctets& bloc, int64_t offset, Ordre ordre);
  // Replaces the tag's value and format, or adds the entry where the tags stay ascending.
  void AddModifyTag(int32_t tag, int16_t format, const QByteArray& data);
  void RemoveTag(int32_t tag);
  const CExifDirEnt* Trouver(int32_t tag) const;
  CExifDirEnt* Trouver(int32_t tag);
  bool Vide() const { return Directories.empty(); }
  // Count, entries, `suivant` as link, then the values (Adjust done before).
  void WriteDir(EcrivainOctets& e, Ordre ordre, uint32_t suivant) const;
};

// What every EXIF reader and writer shows to the rest of the library.
class CExif {
 public:
  virtual ~CExif() = default;
  virtual QString File() const = 0;
  virtual void SetFile(const QString& chemin) = 0;
  // Reads the block; false leaves the object empty.
  virtual bool ReadExif(const QByteArray& bloc) = 0;
  // IFD0's Windows tags (0x9C9B to 0x9C9F): the text as UTF-16, NUL-ended, format BYTE.
  virtual void AddModifyMicrosoftTag(int32_t tag, const QString& texte) = 0;
  virtual void AddModifyTag(Repertoire r, int32_t tag, int16_t format, const QByteArray& data) = 0;
  virtual void RemoveTag(Repertoire r, int32_t tag) = 0;
  // IFD n of the chain (0 and 1 in a JPEG); nullptr when there is none.
  virtual CIFD* ifd(int n) = 0;
  virtual int NombreIfd() const = 0;
  virtual CIFD& GPS() = 0;
  virtual CIFD& SubIFD() = 0;
  virtual CIFD& InteroperabilityIFD() = 0;
  // The maker note's bytes as read, carried whole.
  virtual QByteArray MakerNote() const = 0;
  virtual Ordre AlignType() const = 0;

  CIFD* Repertoire_(Repertoire r);
  // The manufacturer number from IFD0's Make; -1 when none is recognised.
  int GetManufacturer();
};

// Manufacturer number of a Make text; -1 when no word matches.
int NumeroFabricant(const QString& make);

// Name of a tag; the GPS and interoperability directories have their own
// numbers. Empty when unknown.
QString NomTag(int32_t tag, Repertoire r = Repertoire::IFD0);
// Meaning of a value of a tag that has a table of them; empty otherwise.
QString SignificationValeur(int32_t tag, int64_t valeur);

// The directories of one TIFF structure, ready to be rebuilt.
struct StructureTIFF {
  std::vector<CIFD*> chaine;  // IFD0, IFD1...: linked in this order
  CIFD* exif = nullptr;
  CIFD* gps = nullptr;
  CIFD* interop = nullptr;
  // With gererVignette (a JPEG's block), placed after the directories of
  // chaine[1], whose tags 513 and 514 tell where. In a TIFF file those tags
  // point into the file's own bytes and are written as they are.
  QByteArray vignette;
  bool gererVignette = false;
  // When set, the maker note's bytes for a given offset in the structure:
  // called once to know its length, then with its final place.
  std::function<QByteArray(int64_t)> noteFabricant;
};

// Rebuilds the directories of `s` as a run of bytes that starts at offset
// `depart` of its block (even): IFD0 and its values, the EXIF sub-directory,
// interoperability, GPS, then the rest of the chain and the thumbnail. A
// directory with no entries is not written and the pointer tags follow
// (added, set or removed). `premier` receives the offset of IFD0, 0 when
// nothing was written.
QByteArray EcrireRepertoires(StructureTIFF& s, Ordre ordre, int64_t depart, uint32_t& premier);

}  // namespace tg::meta
