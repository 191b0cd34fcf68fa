#pragma once
// GIF: the header, the logical screen and the comment, which is written back
// as a comment extension in front of the trailer. BMP: its two headers; the
// format has no place for metadata. Both little-endian, as the formats are.
#include <QByteArray>
#include <QString>
#include <cstdint>
#include <utility>
#include <vector>

#include "metadata/CJPEG.h"

namespace tg::meta {

// One extension block other than a comment: its label and its data, the
// sub-blocks joined.
class CGIFExtension {
 public:
  uint8_t Label = 0;
  QByteArray lpData;
};

class CGIF : public CFormatImage {
 public:
  QString Comment;  // the comment sub-blocks of every comment extension, joined in file order
  QString Version;  // "87a", "89a"
  uint8_t BackgroungIndex = 0;
  uint16_t Width = 0, Height = 0;
  uint8_t ColorResolution = 0;  // bits per primary colour, 1 to 8
  bool GlobalColorMapFollow = false;
  uint8_t BitsPerPixel = 0;  // size of the colour tables: 2 to that power entries
  std::vector<CGIFExtension> Extensions;

  // False, the object empty, unless the file begins with "GIF". The walk
  // stops at the trailer (59), at an unknown block or at the end of the bytes.
  bool ReadGIF(const QString& path, QString* erreur = nullptr);
  void LireOctets(const QByteArray& fichier, const QString& path = {});
  bool Lu() const { return lu_; }

  // The file as read when Comment did not change. Otherwise every block
  // but the comment extensions is copied as it stands, in order, and Comment
  // goes as one comment extension (sub-blocks of 254 bytes at most, by
  // choice) in the place of the first old one, or in front of the trailer
  // when there was none; bytes after the trailer stay. No block for an empty
  // comment. False with a French message when the blocks do not reach the
  // trailer.
  bool Ecrire(QByteArray& sortie, QString* erreur) override;
  bool WriteGIF(const QString& path, QString* erreur = nullptr);

 private:
  QByteArray source_;
  // Start and end (exclusive) of each comment extension of the source.
  std::vector<std::pair<int64_t, int64_t>> commentaires_;
  int64_t fin_ = -1;     // offset of the trailer byte; -1 when the walk did not reach it
  QString commentLu_;  // Comment as read
  bool lu_ = false;
};

class CBMP : public CFormatImage {
 public:
  // BITMAPFILEHEADER
  uint16_t bfType = 0;
  uint32_t bfSize = 0;
  uint16_t bfReserved1 = 0, bfReserved2 = 0;
  uint32_t bfOffBits = 0;
  // BITMAPINFOHEADER
  uint32_t biSize = 0;
  int32_t biWidth = 0, biHeight = 0;  // a negative height is a top-down picture
  uint16_t biPlanes = 0, biBitCount = 0;
  uint32_t biCompression = 0, biSizeImage = 0;
  int32_t biXPelsPerMeter = 0, biYPelsPerMeter = 0;
  uint32_t biClrUsed = 0, biClrImportant = 0;

  // False, the fields left at 0, unless the file begins with "BM". A file
  // shorter than the two headers gives 0 for the fields it lacks.
  bool ReadBMP(const QString& path, QString* erreur = nullptr);
  void LireOctets(const QByteArray& fichier, const QString& path = {});
  bool Lu() const { return lu_; }
  // Always false: there is nothing to write, and the file is left as it is.
  bool Ecrire(QByteArray& sortie, QString* erreur) override;

 private:
  bool lu_ = false;
};

}  // namespace tg::meta
