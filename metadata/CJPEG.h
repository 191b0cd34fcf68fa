#pragma once
// A JPEG file split into its segments, and the objects of the segments the
// library reads: JFIF (APP0), the comment (COM), EXIF (APP1).
#include <QByteArray>
#include <array>
#include <QFile>
#include <QIODevice>
#include <QString>
#include <memory>
#include <vector>

#include "metadata/CExifJPEG.h"
#include "metadata/CIPTC.h"
#include "metadata/CMarker.h"

namespace tg::meta {

// What a format object of CImage offers.
class CFormatImage {
 public:
  virtual ~CFormatImage() = default;
  // The whole file rebuilt with the metadata held; false with a French
  // message when it cannot be.
  virtual bool Ecrire(QByteArray& sortie, QString* erreur) = 0;
  // The same written to `f`; a format that can, writes the bytes it keeps
  // straight from the source rather than through a copy of the whole file.
  virtual bool EcrireVers(QIODevice& f, QString* erreur) {
    QByteArray sortie;
    return Ecrire(sortie, erreur) && f.write(sortie) == sortie.size();
  }
};

// The segment walk: after FF D8, segments up to the first bytes that are not
// a marker (the entropy-coded data behind SOS), FF D8 or FF D9.
struct ParcoursJPEG {
  std::vector<CMarker> segments;
  // 1-based position and length of what follows the last segment, end marker
  // included; 0 and 0 when the walk ran off the end of the file.
  int64_t positionScan = 0;
  int64_t longueurScan = 0;
};
ParcoursJPEG ParcourirSegments(const QByteArray& fichier);

class CJFIF {
 public:
  QString Version;  // "1.01"
  int Xdensity = 0, Ydensity = 0;
  int Xthumbnail = 0, Ythumbnail = 0;
  int unit = 0;  // 0 pixels, 1 dots per inch, 2 dots per centimetre
  // The unit and densities may be changed: the writer puts them in the
  // segment read, whose length does not change. The rest stays as read.
  // Present set to false drops the segment read.
  bool Present = false;

  // Xthumbnail x Ythumbnail bytes (the first third of an RGB thumbnail).
  const QByteArray& getThumbnail() const { return vignette_; }
  // Nothing is stored unless the segment holds "JFIF" and a 0 byte.
  void ReadJFIF(const QByteArray& fichier, const CMarker& m);

 private:
  QByteArray vignette_;
};

class CJPEGComment {
 public:
  // Read on purpose past the segment: the comment, its NUL, then the bytes
  // that follow (up to 1000 of them, never past the end of the file), every
  // pair FF DB left out. Readers show it up to the first NUL.
  QString Content;

  // False (Content left empty) when the marker is not FF FE.
  bool ReadComment(const QByteArray& fichier, const CMarker& m);
  // The COM segment of Content up to its first NUL, the segment's length
  // always even and the text always NUL-ended; nothing for an empty text.
  // False with a French message for a text over 65531 bytes.
  bool WriteComment(EcrivainOctets& e, QString* erreur = nullptr) const;
  // Content up to its first NUL.
  QString Texte() const;
};

class CJPEG : public CFormatImage {
 public:
  CJPEG();

  // Reads the file's segments and dispatches them; false only when the file
  // cannot be read. A file that is not a JPEG gives no segment.
  bool ReadJPEG(const QString& path, QString* erreur = nullptr);
  // The same from bytes in memory.
  void LireOctets(const QByteArray& fichier, const QString& path = {});
  // Writes `path` (replaced only once complete). Only what changed is
  // rewritten: every other segment is copied byte for byte and in its order,
  // then the scan data and everything after it as they stand. A changed
  // EXIF block, IPTC block or comment takes the place of the old one; a new
  // one goes after the leading APP0 segments and the EXIF segment. The
  // offsets of a multi-picture (MPF) segment follow when bytes are inserted
  // or removed between it and the pictures it points to, and so do those of
  // the EXIF block that point past its segment (a maker note's preview
  // stored after the main picture).
  bool WriteJPEG(const QString& path, QString* erreur = nullptr);
  bool Ecrire(QByteArray& sortie, QString* erreur) override;
  bool EcrireVers(QIODevice& f, QString* erreur) override;

  // Handle of an existing file opened for reading and writing; nullptr when it cannot be.
  static std::unique_ptr<QFile> OpenFile(const QString& path);
  static void CloseFile(std::unique_ptr<QFile>& f) { f.reset(); }
  // Appends; the count written, -1 on failure.
  static int64_t WriteToEndOfFile(QFile& f, const QByteArray& tampon);

  CExifJPEG* EXIF() { return exif_.get(); }
  CIPTC& IPTC() { return iptc_; }
  CJFIF& JFIF() { return jfif_; }
  CJPEGComment& JPEGComment() { return commentaire_; }
  const std::vector<CMarker>& Segments() const { return parcours_.segments; }
  int64_t PositionScan() const { return parcours_.positionScan; }
  int64_t LongueurScan() const { return parcours_.longueurScan; }
  const QByteArray& Source() const { return source_; }
  // The open file whose mapping Source() is, when it is one: the writer then
  // copies large runs from it inside the system. -1 otherwise.
  void SetDescripteurSource(int descripteur) { descripteurSource_ = descripteur; }
  QString Chemin() const { return chemin_; }

 private:
  // A piece of the file to write: bytes of the source, or bytes of its own.
  struct Morceau {
    const char* debut = nullptr;
    int64_t taille = 0;
    QByteArray propre;
    // Where its bytes stood in the source, -1 for bytes of its own: a
    // copy, even patched, keeps the source's place for each byte.
    int64_t origine = -1;
  };
  // The EXIF segment read, as the plan carries it.
  struct PlaceExif {
    size_t morceau = 0;
    int64_t sortie = 0;  // position in the output
    int64_t source = 0, longueur = 0;
  };
  // The pieces of the rewritten file, in order.
  bool Plan(std::vector<Morceau>& morceaux, QString* erreur);
  // The offsets of the EXIF block that point past its segment, into the
  // rest of the file, re-aimed at the bytes they pointed to, wherever the
  // plan put them.
  void SuivreOffsetsExternes(std::vector<Morceau>& morceaux, const PlaceExif& exif) const;
  bool EstExifLu(const CMarker& m) const;
  bool EstIptcLu(const CMarker& m) const;

  QString chemin_;
  QByteArray source_;
  ParcoursJPEG parcours_;
  std::unique_ptr<CExifJPEG> exif_;
  std::vector<int64_t> segmentsExif_;  // lpData of the APP1 blocks read as EXIF
  CIPTC iptc_;
  CJFIF jfif_;
  CJPEGComment commentaire_;
  QString commentaireLu_;  // the text as read, to tell whether it changed
  int64_t segmentJfif_ = -1;     // lpData of the JFIF segment read, -1 without one
  std::array<int, 3> jfifLu_{};  // its unit and densities as read
  int descripteurSource_ = -1;
  QByteArray iptcLu_;      // the datasets as read, as bytes
};

// Offsets of the multi-picture index of an APP2 "MPF" segment (whole
// segment, marker included) moved by `decalage` bytes: the pictures it points
// to now stand that much further from it. False, segment untouched, when it
// is not an MPF segment that reads whole.
bool DecalerMPF(QByteArray& segment, int64_t decalage);

}  // namespace tg::meta
