#pragma once
// A TIFF file: its whole structure is EXIF-shaped. CExifTIFF reads the chain
// of directories and the sub-directories of IFD0; CTIFF is the file object of
// the dispatcher.
#include <QByteArray>
#include <QString>
#include <vector>

#include "metadata/CExif.h"
#include "metadata/CJPEG.h"
#include "metadata/EditionTIFF.h"

namespace tg::meta {

class CExifTIFF : public CExif {
 public:
  QString File() const override { return fichier_; }
  void SetFile(const QString& chemin) override { fichier_ = chemin; }
  QString OriginalFile;
  Ordre alignType = Ordre::Intel;
  QByteArray lpData;  // the whole file as read
  int64_t Length() const { return lpData.size(); }
  int Manufacture() { return GetManufacturer(); }
  int MakerNoteTagVersion = 0;
  CMakerNote& NoteFabricant() { return note_; }

  // `donnees`: the whole file. False, the object empty, without a TIFF header.
  // The chain of directories stops at a cycle, at an offset outside the file
  // and after 256 directories.
  bool ReadExif(const QByteArray& donnees) override;
  void AddModifyMicrosoftTag(int32_t tag, const QString& texte) override;
  void AddModifyTag(Repertoire r, int32_t tag, int16_t format, const QByteArray& data) override;
  void RemoveTag(Repertoire r, int32_t tag) override;
  // Directory "IFD" n of the chain; IFD1 is made when asked for.
  CIFD* ifd(int n) override;
  int NombreIfd() const override { return int(ifds_.size()); }
  CIFD& GPS() override { return gps_; }
  CIFD& SubIFD() override { return sub_; }
  CIFD& InteroperabilityIFD() override { return interop_; }
  QByteArray MakerNote() const override;
  Ordre AlignType() const override { return alignType; }

  // True when a directory differs from what was read.
  bool Modifie() const;
  // The file with its edits: its bytes as read, untouched, so that strips,
  // tiles and every offset into them stay right; the directories that
  // changed written anew from the next even offset and the pointers to them
  // re-aimed. The bytes read when nothing changed.
  bool WriteEXIF(QByteArray& sortie, QString* erreur = nullptr);

 private:
  EditionTIFF Edition() const;
  QString fichier_;
  std::vector<CIFD> ifds_;
  CIFD gps_, sub_, interop_;
  CMakerNote note_;
  // As read, to tell what an edit changed.
  std::vector<CIFD> ifdsLus_;
  CIFD gpsLu_, subLu_, interopLu_;
};

class CTIFF : public CFormatImage {
 public:
  CExifTIFF& EXIF() { return exif_; }
  bool ReadTIFF(const QString& path, QString* erreur = nullptr);
  void LireOctets(const QByteArray& fichier, const QString& path = {});
  // Writes `path` (replaced only once complete).
  bool WriteTIFF(const QString& path, QString* erreur = nullptr);
  bool Ecrire(QByteArray& sortie, QString* erreur) override;
  // The datasets of IFD0's tag 33723.
  CIPTC& IPTC() { return iptc_; }

 private:
  CExifTIFF exif_;
  CIPTC iptc_;
  QByteArray iptcLu_;  // the datasets as read, as bytes
};

}  // namespace tg::meta
