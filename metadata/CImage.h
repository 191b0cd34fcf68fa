#pragma once
// The dispatcher: recognises a picture file by its first bytes and holds the
// object of its format.
#include <QByteArray>
#include <QFile>
#include <QString>
#include <memory>

#include "metadata/CGIF.h"
#include "metadata/CJPEG.h"
#include "metadata/CPNG.h"
#include "metadata/CTIFF.h"

namespace tg::meta {

enum TypeImage { TypeJPEG = 0, TypeTIFF = 1, TypeBMP = 2, TypePNG = 3, TypeGIF = 4 };

class CImage {
 public:
  int ImageType = TypeJPEG;

  // The type from the first 17 bytes of the file. An unknown or unreadable
  // file keeps the previous type: JPEG on a new object.
  int GetImageType(const QString& path);
  static int TypeDepuisOctets(const QByteArray& debut, int precedent);

  // Reads the file through its format object. False with Erreur() when the
  // file cannot be read or its format has no reader yet.
  bool ReadImage(const QString& path);
  // With true, ReadImage maps the file instead of copying it: faster for a
  // short-lived reader (the headless tool), but a file truncated by another
  // program meanwhile would end the process. Off by default.
  void SetProjection(bool oui) { projection_ = oui; }
  // Rewrites `path` from the object read: the whole file is built in memory,
  // written to a temporary file and put in place of `path` once complete.
  // False, `path` untouched, with Erreur().
  bool WriteImage(const QString& path);

  CFormatImage* ImageProps() { return format_.get(); }
  CJPEG* JPEG() { return dynamic_cast<CJPEG*>(format_.get()); }
  CTIFF* TIFF() { return dynamic_cast<CTIFF*>(format_.get()); }
  CPNG* PNG() { return dynamic_cast<CPNG*>(format_.get()); }
  CGIF* GIF() { return dynamic_cast<CGIF*>(format_.get()); }
  CBMP* BMP() { return dynamic_cast<CBMP*>(format_.get()); }
  QString Erreur() const { return erreur_; }

 private:
  // The file mapped for reading; it outlives the format object, whose bytes point into it.
  std::unique_ptr<QFile> fichier_;
  bool projection_ = false;
  std::unique_ptr<CFormatImage> format_;
  QString erreur_;
};

}  // namespace tg::meta
