#pragma once
// IPTC-NAA datasets: in a JPEG inside the Photoshop resource 0x0404 of the
// APP13 "Photoshop 3.0" segment, in a TIFF as the value of tag 33723.
//
// One dataset: 0x1C, record, dataset number, a big-endian u16 size, the
// data. Extended datasets (size with its high bit set, over 32767 bytes) are
// not handled: reading stops there, writing refuses them.
#include <QByteArray>
#include <QString>
#include <cstdint>
#include <vector>

#include "metadata/CMarker.h"
#include "metadata/Octets.h"

namespace tg::meta {

class CExif;

class CIPTCTag {
 public:
  uint8_t TagMarker = 0x1C;
  uint8_t RecordNumber = 0;
  uint8_t DataSetNumber = 0;
  QByteArray Data;

  int DataSize() const { return int(Data.size()); }
  const QByteArray& GetData() const { return Data; }
  const char* dataPtr() const { return Data.constData(); }
  void RedimData(int n) { Data = QByteArray(n, '\0'); }
  void ModifyTagBinary(const QByteArray& octets) { Data = octets; }
  // The text in Windows-1252, or UTF-8 when the file says so (1:90).
  void ModifyTagString(const QString& texte, bool utf8 = false);
  // The value as text: numbers of the binary datasets in decimal, text as it
  // stands, and for FileFormat (1:20) and the like the meaning after the number.
  QString GetDataFormatted(bool utf8 = false) const;
  // The name of the dataset in the IPTC-NAA standard; empty when unknown.
  QString Nom() const { return NomJeuIPTC(RecordNumber, DataSetNumber); }
  static QString NomJeuIPTC(int record, int dataset);

  // One dataset at the reader's cursor; false (cursor unmoved) when the
  // next byte is not 0x1C, the size is extended or the data are cut.
  bool ReadTag(LecteurOctets& l);
  void WriteTag(EcrivainOctets& e) const;
};

// The meaning of a value of IPTC FileFormat (1:20); empty outside the list.
QString FormatFichierIPTC(int valeur);

class CIPTC {
 public:
  QString Name = QStringLiteral("Photoshop 3.0");
  std::vector<CIPTCTag> Tags;  // in file order

  // Replace the first dataset of that record and number, or append one.
  void AddModifyTagBinary(int record, int dataset, const QByteArray& octets);
  void AddModifyTagString(int record, int dataset, const QString& texte);
  // Removes the datasets of that record and number whose text is `texte`
  // (one keyword among several).
  void DelTagString(int record, int dataset, const QString& texte);
  // Removes every dataset of that record and number.
  void DelRepeatTag(int record, int dataset);
  // The texts of every dataset of that record and number, in order.
  QStringList Textes(int record, int dataset) const;
  // True when 1:90 announces UTF-8 (ESC % G).
  bool Utf8() const;

  // Reads the APP13 "Photoshop 3.0" segments of `segments` (their data
  // joined, for a block split over several) and the resource 0x0404 in them.
  // The other resources are kept to be written back as they stand.
  void ReadIPTCJPEG(const QByteArray& fichier, const std::vector<CMarker>& segments);
  // lpData of the segments read: the JPEG writer replaces them.
  const std::vector<int64_t>& SegmentsLus() const { return segmentsLus_; }

  // Recomputes the sizes: the resource 0x0404 (5 + size for each dataset)
  // and the length of the segment, which counts its own 2 bytes, the name
  // and its zero byte, every resource and the pad of an odd one.
  void AdjustIPTCLengths();
  uint32_t TailleRessource = 0;
  int64_t LongueurSegment = 0;

  // Appends the APP13 segment(s): the other resources in their order, the
  // datasets in Tags order in the resource 0x0404 (at its old place, else at
  // the end). Nothing when there is neither. A block over the 65533 bytes of
  // a segment is split over several APP13 segments, as Photoshop does. False
  // with a French message for a dataset over 32767 bytes.
  bool WriteIPTCDataJPEG(EcrivainOctets& e, QString* erreur = nullptr);

  // The same datasets as the value of IFD0's tag 33723 (IPTC-NAA).
  void ReadIPTCTIFF(CExif& exif);
  bool WriteIPTCTIFF(CExif& exif, QString* erreur = nullptr);

  // The datasets as bytes (what the resource 0x0404 and tag 33723 hold).
  bool Donnees(QByteArray& sortie, QString* erreur) const;
  void LireDonnees(const QByteArray& octets);

 private:
  struct Ressource {
    uint16_t id = 0;
    QByteArray bloc;  // the whole resource as read, "8BIM" to its pad
  };
  std::vector<Ressource> ressources_;  // id 0x0404 marks the place of the datasets
  QByteArray reste_;  // bytes after the last resource that reads, kept as they stand
  std::vector<int64_t> segmentsLus_;
};

}  // namespace tg::meta
