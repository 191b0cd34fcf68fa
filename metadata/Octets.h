#pragma once
// Checked access to file bytes. Every parse of a picture file goes through
// LecteurOctets, every rebuild through EcrivainOctets.
//
// A read either succeeds whole or fails and leaves the cursor where it was:
// offsets and counts read from a file are compared with the bytes left, never
// turned into pointers. The byte order is in the function's name, or given as
// an Ordre for the TIFF structures that carry theirs.
#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>

class QFile;

namespace tg::meta {

// Byte order of a TIFF structure, by the values of its two marker letters.
enum class Ordre : uint16_t { Intel = 0x4949, Motorola = 0x4D4D };

class LecteurOctets {
 public:
  LecteurOctets() = default;
  // The bytes are not copied: `octets` outlives the reader.
  explicit LecteurOctets(const QByteArray& octets);
  LecteurOctets(const char* debut, int64_t taille);

  int64_t offset() const { return pos_; }
  int64_t taille() const { return taille_; }
  int64_t remaining() const { return taille_ - pos_; }
  bool fini() const { return pos_ >= taille_; }

  // Moves to an absolute position inside the bytes (the end included).
  bool seek(int64_t position);
  bool skip(int64_t n);

  bool u8(uint8_t& v);
  bool u16be(uint16_t& v);
  bool u16le(uint16_t& v);
  bool u32be(uint32_t& v);
  bool u32le(uint32_t& v);
  bool u16(Ordre o, uint16_t& v) { return o == Ordre::Intel ? u16le(v) : u16be(v); }
  bool u32(Ordre o, uint32_t& v) { return o == Ordre::Intel ? u32le(v) : u32be(v); }
  // n bytes copied out.
  bool octets(int64_t n, QByteArray& sortie);
  // A child reader over the next n bytes; the cursor moves past them.
  bool sub(int64_t n, LecteurOctets& enfant);
  // Up to n bytes: fewer when the end comes first. Never fails.
  QByteArray jusqua(int64_t n);
  // True when the next bytes are `attendu` (the cursor does not move).
  bool commencePar(const QByteArray& attendu) const;

  // Reads at an absolute position without moving the cursor.
  bool u16At(Ordre o, int64_t position, uint16_t& v) const;
  bool u32At(Ordre o, int64_t position, uint32_t& v) const;
  bool octetsAt(int64_t position, int64_t n, QByteArray& sortie) const;

 private:
  const char* debut_ = nullptr;
  int64_t taille_ = 0;
  int64_t pos_ = 0;
};

// Builds a byte buffer; lengths are reserved first and filled when known.
class EcrivainOctets {
 public:
  int64_t offset() const { return donnees_.size(); }
  const QByteArray& donnees() const { return donnees_; }
  QByteArray& donnees() { return donnees_; }

  void u8(uint8_t v);
  void u16be(uint16_t v);
  void u16le(uint16_t v);
  void u32be(uint32_t v);
  void u32le(uint32_t v);
  void u16(Ordre o, uint16_t v) { o == Ordre::Intel ? u16le(v) : u16be(v); }
  void u32(Ordre o, uint32_t v) { o == Ordre::Intel ? u32le(v) : u32be(v); }
  void octets(const QByteArray& b) { donnees_.append(b); }
  void zeros(int64_t n) { donnees_.append(QByteArray(n, '\0')); }
  // Pads with one zero byte when the size is odd.
  void aligner2();

  // Overwrites bytes already written; false when they are not all there.
  bool u16At(Ordre o, int64_t position, uint16_t v);
  bool u16beAt(int64_t position, uint16_t v) { return u16At(Ordre::Motorola, position, v); }
  bool u32At(Ordre o, int64_t position, uint32_t v);

 private:
  QByteArray donnees_;
};

// Windows-1252 <-> text. The five code points that the code page leaves
// undefined (81, 8D, 8F, 90, 9D) come and go as the C1 characters of the same
// value, so that any byte survives a round trip.
QString DepuisCp1252(const QByteArray& octets);
QByteArray VersCp1252(const QString& texte);

// The French words for a system error code (ENOSPC: "le disque est plein").
QString CauseSysteme(int code);
// Reads a whole file; false with a French message when it cannot be read.
// LireFichierProjete maps it instead of copying it: `octets` points into the
// mapping, which `fichier` holds and must outlive every use of `octets`.
bool LireFichierProjete(const QString& chemin, QByteArray& octets, std::unique_ptr<QFile>& fichier,
                        QString* erreur = nullptr);
bool LireFichier(const QString& chemin, QByteArray& octets, QString* erreur = nullptr);
// Writes `octets` to a temporary file beside `chemin` and replaces `chemin`
// only once it is complete; false (target untouched) with a French message.
bool RemplacerFichier(const QString& chemin, const QByteArray& octets, QString* erreur = nullptr);
// The same with the bytes written by `ecrire` into the temporary file; a
// false from it (its French message in `erreur`) leaves the target untouched.
bool RemplacerFichierPar(const QString& chemin,
                         const std::function<bool(QIODevice&, QString*)>& ecrire,
                         QString* erreur = nullptr);

}  // namespace tg::meta
