#pragma once
// The EXIF block of a JPEG file (APP1 "Exif\0\0" then a TIFF structure) and
// of a TIFF file (the whole file is that structure).
#include <QByteArray>
#include <QString>
#include <vector>

#include "metadata/CExif.h"
#include "metadata/CMakerNote.h"
#include "metadata/CMarker.h"
#include "metadata/EditionTIFF.h"

namespace tg::meta {

// An offset held by an entry: the 4-byte field at `champ` of the TIFF
// structure, in the order `ordre`, holds `valeur`, counted from `origine`.
struct OffsetValeur {
  int repertoire = 0;  // a Repertoire, or 5 for the maker note
  int32_t tag = 0;
  int64_t champ = 0;
  int64_t origine = 0;
  uint32_t valeur = 0;
  Ordre ordre = Ordre::Intel;
};

class CExifJPEG : public CExif {
 public:
  CExifJPEG();

  QString File() const override { return fichier_; }
  void SetFile(const QString& chemin) override { fichier_ = chemin; }
  QString OriginalFile;
  uint16_t Marker = 0xE1FF;  // the bytes FF E1 as a little-endian number
  int64_t ExifDataAreaSize = 0;
  Ordre alignType = Ordre::Intel;
  QByteArray ThumbnailData;
  std::vector<CMarker> OtherMarkers;  // the file's other segments, in order
  QByteArray lpData;                  // the block as read, from "Exif"
  int64_t Length() const { return lpData.size(); }

  // `donnees`: the APP1 segment's bytes after its length field. False, the
  // object left empty, unless it begins with "Exif" and holds a TIFF header.
  bool ReadExif(const QByteArray& donnees) override;
  void AddModifyMicrosoftTag(int32_t tag, const QString& texte) override;
  void AddModifyTag(Repertoire r, int32_t tag, int16_t format, const QByteArray& data) override;
  void RemoveTag(Repertoire r, int32_t tag) override;
  CIFD* ifd(int n) override { return n >= 0 && n < 2 ? &ifd_[n] : nullptr; }
  int NombreIfd() const override { return 2; }
  CIFD& GPS() override { return gps_; }
  CIFD& SubIFD() override { return sub_; }
  CIFD& InteroperabilityIFD() override { return interop_; }
  QByteArray MakerNote() const override;
  Ordre AlignType() const override { return alignType; }
  bool Lu() const { return lu_; }
  // The maker note of tag 37500 as read; Lu() false when there is none or it
  // is not a directory.
  CMakerNote& NoteFabricant() { return note_; }

  // True when a directory or the thumbnail differs from what was read.
  bool Modifie() const;
  // The offsets of the block as read: those of every value longer than 4
  // bytes in IFD0, IFD1, EXIF, GPS, interoperability and the maker note's
  // directory, and IFD1's thumbnail start. They may point past the block.
  const std::vector<OffsetValeur>& OffsetsLus() const { return offsetsLus_; }

  // The whole APP1 segment, marker and length included. A block read from a
  // file is edited in place: the segment read when nothing changed, else its
  // bytes kept at their offsets with the changed directories after them.
  // A block made from nothing is laid out whole; empty when IFD0 has no
  // entries. False with a French message when the segment would exceed the
  // 65533 bytes a JPEG segment holds; nothing is written then.
  bool WriteEXIF(QByteArray& segment, QString* erreur = nullptr);

 private:
  QString fichier_;
  CIFD ifd_[2];
  CIFD gps_, sub_, interop_;
  CMakerNote note_;
  bool lu_ = false;
  // The directories and thumbnail as read, to tell what an edit changed.
  CIFD ifdLu_[2];
  CIFD gpsLu_, subLu_, interopLu_;
  QByteArray vignetteLue_;
  std::vector<OffsetValeur> offsetsLus_;
  EditionTIFF Edition() const;
};

// Offset held by a pointer tag (LONG or IFD format, one element); 0 otherwise.
uint32_t ValeurPointeur(const CExifDirEnt* e);

// Reads the sub-directories that IFD0 points to (EXIF, GPS, interoperability)
// from a TIFF structure.
void LireSousRepertoires(const LecteurOctets& bloc, Ordre ordre, const CIFD& ifd0, CIFD& sub,
                         CIFD& gps, CIFD& interop);
// Reads the maker note of `sub` (tag 37500) for maker `fabricant`.
void LireNoteFabricant(const LecteurOctets& bloc, Ordre ordre, const CIFD& sub, int fabricant,
                       CMakerNote& note);
// The writer's hook that moves the note without breaking it, when its bytes
// are still those read; empty otherwise.
std::function<QByteArray(int64_t)> AjusteurNote(const CIFD& sub, const CMakerNote& note);

}  // namespace tg::meta
