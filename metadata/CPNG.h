#pragma once
// The metadata chunks of a PNG file: header, physical size, time and the
// three kinds of text. The chunks are read from the file's bytes; text and
// time are written back before IEND, the image data left as they stand.
//
// Every number of a chunk is big-endian, as the format has it.
#include <QByteArray>
#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

#include "metadata/CJPEG.h"
#include "metadata/Octets.h"

namespace tg::meta {

// The PNG CRC-32 (polynomial 0xEDB88320, table made on first use) of `octets`,
// started at all ones, complemented at the end.
uint32_t CrcPNG(const QByteArray& octets);
// zlib with the rules of the text chunks: one try into a buffer of twice the
// compressed length; false (sortie empty) when that is not enough or the data
// are not a zlib stream.
bool Inflater(const QByteArray& compresse, QByteArray& sortie);
// zlib's compress; false (sortie empty) on failure.
bool Deflater(const QByteArray& texte, QByteArray& sortie);

// Texts of the keywords 0 to 9 of the text chunks; empty outside.
QString TexteMotCle(int keyword);
// Number of a keyword text; -1 when it is not one of the ten.
int NumeroMotCle(const QString& texte);

class CChunk {
 public:
  uint32_t CRC = 0;      // as read, never checked
  QByteArray ChunkType;  // 4 letters
  uint32_t Length = 0;   // of the data
  int64_t lpData = 0;    // position of the data in the file, from 0
};

class CIHDR {
 public:
  uint32_t Width = 0, Height = 0;
  uint8_t BitDepth = 0, ColorType = 0, CompressionMethod = 0, FilterMethod = 0, InterlaceMethod = 0;
  bool ReadChunk(const QByteArray& donnees);
};

class CpHYS {
 public:
  uint32_t XPixelsPerUnit = 0, YPixelsPerUnit = 0;
  uint8_t UnitSpecifier = 0;  // 0 unknown, 1 metre
  bool ReadChunk(const QByteArray& donnees);
};

class CtIME {
 public:
  uint16_t Year = 0;
  uint8_t Month = 0, Day = 0, Hour = 0, Minute = 0, Second = 0;
  bool ReadChunk(const QByteArray& donnees);
  void WriteChunk(EcrivainOctets& e) const;
};

// What the three text chunks share: the keyword as a number of the table and
// as the text read, which is kept for keywords outside the table.
class CTexteBase {
 public:
  int Keyword = -1;
  QString MotCle;  // the keyword as read (Latin-1)
  QString Content;

  // The table's text for Keyword; empty outside 0 to 9.
  QString KeywordString() const { return TexteMotCle(Keyword); }
  void SetKeyword(int k) {
    Keyword = k;
    MotCle = TexteMotCle(k);
  }
  // The keyword written: the table's text, else the one read.
  QString MotCleEcrit() const;

 protected:
  // Data that could not be decoded are written back as they were read.
  QByteArray brut_;
  bool illisible_ = false;
  // The chunk it was read from (index in Chunks), -1 for a new one, and the
  // chunk as this object writes it when read: equal now, the original bytes
  // are copied instead.
  int indiceChunk_ = -1;
  QByteArray ecritALaLecture_;
  friend class CPNG;
};

class CtEXt : public CTexteBase {
 public:
  bool ReadChunk(const QByteArray& donnees);
  // False, nothing written, for a keyword that is empty or over 79 bytes.
  bool WriteChunk(EcrivainOctets& e) const;
};

class CzTXt : public CTexteBase {
 public:
  uint8_t CompressionMethod = 0;
  bool ReadChunk(const QByteArray& donnees);
  bool WriteChunk(EcrivainOctets& e) const;
};

class CiTXt : public CTexteBase {
 public:
  QString Translation;  // UTF-8 in the file, as Content
  QByteArray Language;
  uint8_t CompressionFlag = 0, CompressionMethod = 0;
  bool ReadChunk(const QByteArray& donnees);
  bool WriteChunk(EcrivainOctets& e) const;
};

class CPNG : public CFormatImage {
 public:
  std::optional<CIHDR> IHDR;
  std::optional<CpHYS> pHYS;
  std::optional<CtIME> tIME;  // the last one of the file
  std::vector<CtEXt> tEXt;
  std::vector<CzTXt> zTXt;
  std::vector<CiTXt> iTXt;
  // Every chunk in file order, up to IEND.
  std::vector<CChunk> Chunks;

  // False, the object empty, without the signature. The walk stops at IEND
  // or at a chunk that runs past the end of the file.
  bool ReadPNG(const QString& path, QString* erreur = nullptr);
  void LireOctets(const QByteArray& fichier, const QString& path = {});
  bool Lu() const { return lu_; }

  // The file with every chunk copied as it stands and in its order, but for
  // the text and time chunks that changed, written anew in their places; a
  // removed one is left out, a new one goes in front of IEND (time first,
  // then tEXt, zTXt, iTXt). IEND and anything after it stay. False with a
  // French message without IEND.
  bool Ecrire(QByteArray& sortie, QString* erreur) override;
  bool WritePNG(const QString& path, QString* erreur = nullptr);

  // The comment chunk: the first text chunk of the file, of any of the
  // three kinds, whose keyword is "Comment" in any case (ImageMagick writes
  // "comment") and whose text reads; nullptr when there is none.
  const CTexteBase* ChunkCommentaire() const;
  // The comment as the program's block holds it: the chunk's text with its
  // line ends turned to CR LF. Empty when there is none.
  QString Commentaire() const;
  // Puts the block `texte` (CR LF line ends) in the comment chunk, in the
  // place of the one read, made when missing. In the file the lines end in
  // LF, as PNG readers expect, under the keyword "Comment": a tEXt (a zTXt
  // read stays one) when every character is printable Latin-1, else an iTXt
  // in UTF-8. An empty text removes every comment chunk that reads.
  void SetCommentaire(const QString& texte);

 private:
  QByteArray source_;
  bool lu_ = false;
  // The tIME chunk read last (index in Chunks), and how tIME wrote then.
  int indiceTemps_ = -1;
  QByteArray tempsALaLecture_;
};

// The comment block of the PNG file `chemin` as the program's reader takes
// it: CR LF line ends, from a tEXt, zTXt or iTXt under "Comment" in any
// case (imaging libraries hand the chunk's own LF and UTF-8 bytes). nullopt
// when the file is not a PNG.
std::optional<QString> CommentairePNG(const QString& chemin);

}  // namespace tg::meta
