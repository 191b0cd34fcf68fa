#pragma once
// What the program checks in a picture file before any decoder sees it: the
// type, a size within the program's limits, and enough bytes for the picture
// the header announces. A file that fails gets a French message and never
// reaches the imaging library; a JPEG whose image data stop early can still
// be decoded (its lower part grey) once the user agrees.
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>

namespace tg {

// Largest picture the program opens: pixels a side, and pixels in all.
inline constexpr int64_t kCoteMaxImage = 30000;
inline constexpr int64_t kPixelsMaxImage = 200'000'000;

// HEIF covers HEIC and AVIF (one container, ISO base media); RAW the camera
// RAW files LibRaw reads.
enum class TypeFichierImage { Inconnu, JPEG, BMP, PNG, GIF, TIFF, PSD, PCD, HEIF, RAW };

// Extensions, lower case without the dot, of the camera RAW files the program
// opens: a TIFF-shaped file (NEF, ARW, PEF...) is a RAW by its name, a CR2,
// ORF, RW2, RAF, CR3 or DNG also by its content.
const QStringList& ExtensionsRAW();
// The same for HEIC, HEIF and AVIF.
const QStringList& ExtensionsHEIF();

struct VerificationImage {
  TypeFichierImage type = TypeFichierImage::Inconnu;
  // As the header gives them; 0 when it does not (a RAW's size is LibRaw's to tell).
  int64_t largeur = 0, hauteur = 0;
  bool refuse = false;               // never to be decoded
  bool incomplet = false;            // a JPEG cut inside its image data
  QString message;                   // French, whole sentences, for either case

  bool Bon() const { return !refuse && !incomplet; }
};

// Reads the file (mapped, not copied). The name in messages is the file's
// own name, without its folder.
VerificationImage VerifierFichierImage(const QString& chemin);
// The same on bytes; `nom` is what the messages call the file, `extension`
// (lower case, without the dot) tells a Photo CD file, which has no mark of
// its own at its start.
VerificationImage VerifierOctetsImage(const char* octets, int64_t taille, const QString& nom,
                                      const QString& extension);

}  // namespace tg
