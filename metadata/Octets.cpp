#include "metadata/Octets.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cerrno>
#include <cstring>
#include <QStringDecoder>
#include <QStringEncoder>

namespace tg::meta {

LecteurOctets::LecteurOctets(const QByteArray& octets)
    : debut_(octets.constData()), taille_(octets.size()) {}

LecteurOctets::LecteurOctets(const char* debut, int64_t taille)
    : debut_(debut), taille_(debut == nullptr || taille < 0 ? 0 : taille) {}

bool LecteurOctets::seek(int64_t position) {
  if (position < 0 || position > taille_) return false;
  pos_ = position;
  return true;
}

bool LecteurOctets::skip(int64_t n) {
  if (n < 0 || n > remaining()) return false;
  pos_ += n;
  return true;
}

bool LecteurOctets::u8(uint8_t& v) {
  if (remaining() < 1) return false;
  v = uint8_t(debut_[pos_++]);
  return true;
}

namespace {
// n bytes (n <= 4) from p as an unsigned number, big- or little-endian.
uint32_t Assembler(const char* p, int n, bool grosBoutiste) {
  uint32_t v = 0;
  for (int i = 0; i < n; ++i) {
    const uint32_t o = uint8_t(p[grosBoutiste ? i : n - 1 - i]);
    v = (v << 8) | o;
  }
  return v;
}
}  // namespace

bool LecteurOctets::u16be(uint16_t& v) {
  if (remaining() < 2) return false;
  v = uint16_t(Assembler(debut_ + pos_, 2, true));
  pos_ += 2;
  return true;
}

bool LecteurOctets::u16le(uint16_t& v) {
  if (remaining() < 2) return false;
  v = uint16_t(Assembler(debut_ + pos_, 2, false));
  pos_ += 2;
  return true;
}

bool LecteurOctets::u32be(uint32_t& v) {
  if (remaining() < 4) return false;
  v = Assembler(debut_ + pos_, 4, true);
  pos_ += 4;
  return true;
}

bool LecteurOctets::u32le(uint32_t& v) {
  if (remaining() < 4) return false;
  v = Assembler(debut_ + pos_, 4, false);
  pos_ += 4;
  return true;
}

bool LecteurOctets::octets(int64_t n, QByteArray& sortie) {
  if (n < 0 || n > remaining()) return false;
  sortie = QByteArray(debut_ + pos_, qsizetype(n));
  pos_ += n;
  return true;
}

bool LecteurOctets::sub(int64_t n, LecteurOctets& enfant) {
  if (n < 0 || n > remaining()) return false;
  enfant = LecteurOctets(debut_ + pos_, n);
  pos_ += n;
  return true;
}

QByteArray LecteurOctets::jusqua(int64_t n) {
  if (n <= 0) return {};
  const int64_t m = std::min(n, remaining());
  QByteArray r(debut_ + pos_, qsizetype(m));
  pos_ += m;
  return r;
}

bool LecteurOctets::commencePar(const QByteArray& attendu) const {
  if (attendu.size() > remaining()) return false;
  return std::equal(attendu.begin(), attendu.end(), debut_ + pos_);
}

bool LecteurOctets::u16At(Ordre o, int64_t position, uint16_t& v) const {
  if (position < 0 || position > taille_ - 2) return false;
  v = uint16_t(Assembler(debut_ + position, 2, o == Ordre::Motorola));
  return true;
}

bool LecteurOctets::u32At(Ordre o, int64_t position, uint32_t& v) const {
  if (position < 0 || position > taille_ - 4) return false;
  v = Assembler(debut_ + position, 4, o == Ordre::Motorola);
  return true;
}

bool LecteurOctets::octetsAt(int64_t position, int64_t n, QByteArray& sortie) const {
  if (position < 0 || n < 0 || position > taille_ || n > taille_ - position) return false;
  sortie = QByteArray(debut_ + position, qsizetype(n));
  return true;
}

// ---------------------------------------------------------------- writer

void EcrivainOctets::u8(uint8_t v) { donnees_.append(char(v)); }

void EcrivainOctets::u16be(uint16_t v) {
  donnees_.append(char(v >> 8));
  donnees_.append(char(v & 0xFF));
}

void EcrivainOctets::u16le(uint16_t v) {
  donnees_.append(char(v & 0xFF));
  donnees_.append(char(v >> 8));
}

void EcrivainOctets::u32be(uint32_t v) {
  u16be(uint16_t(v >> 16));
  u16be(uint16_t(v & 0xFFFF));
}

void EcrivainOctets::u32le(uint32_t v) {
  u16le(uint16_t(v & 0xFFFF));
  u16le(uint16_t(v >> 16));
}

void EcrivainOctets::aligner2() {
  if (donnees_.size() % 2 != 0) donnees_.append('\0');
}

bool EcrivainOctets::u16At(Ordre o, int64_t position, uint16_t v) {
  if (position < 0 || position > donnees_.size() - 2) return false;
  const bool mm = o == Ordre::Motorola;
  donnees_[qsizetype(position)] = char(mm ? v >> 8 : v & 0xFF);
  donnees_[qsizetype(position + 1)] = char(mm ? v & 0xFF : v >> 8);
  return true;
}

bool EcrivainOctets::u32At(Ordre o, int64_t position, uint32_t v) {
  if (position < 0 || position > donnees_.size() - 4) return false;
  const bool mm = o == Ordre::Motorola;
  for (int i = 0; i < 4; ++i) {
    const int decalage = mm ? 24 - 8 * i : 8 * i;
    donnees_[qsizetype(position + i)] = char((v >> decalage) & 0xFF);
  }
  return true;
}

// ---------------------------------------------------------------- text and files

namespace {
bool NonDefini1252(uint8_t o) {
  return o == 0x81 || o == 0x8D || o == 0x8F || o == 0x90 || o == 0x9D;
}
}  // namespace

QString DepuisCp1252(const QByteArray& octets) {
  QString r;
  r.reserve(octets.size());
  QStringDecoder dec("windows-1252");
  for (char c : octets) {
    const uint8_t o = uint8_t(c);
    if (o < 0x80 || NonDefini1252(o) || !dec.isValid()) {
      r.append(QChar(o));
    } else {
      r.append(dec.decode(QByteArrayView(&c, 1)));
    }
  }
  return r;
}

QByteArray VersCp1252(const QString& texte) {
  QByteArray r;
  r.reserve(texte.size());
  QStringEncoder enc("windows-1252");
  for (QChar c : texte) {
    const char16_t u = c.unicode();
    if (u < 0x80 || (u <= 0xFF && NonDefini1252(uint8_t(u)))) {
      r.append(char(u));
      continue;
    }
    QByteArray b = enc.isValid() ? QByteArray(enc.encode(QStringView(&c, 1))) : QByteArray();
    if (enc.hasError() || b.size() != 1 || b[0] == char(0x1A)) {
      enc.resetState();
      r.append(u <= 0xFF ? char(u) : '?');
    } else {
      r.append(b[0]);
    }
  }
  return r;
}

QString CauseSysteme(int code) {
  switch (code) {
    case ENOSPC:
    case EDQUOT:
      return QStringLiteral("le disque est plein");
    case EFBIG:
      return QStringLiteral("le fichier dépasserait la taille permise");
    case EACCES:
    case EPERM:
      return QStringLiteral("vous n'en avez pas le droit");
    case EROFS:
      return QStringLiteral("le disque est en lecture seule");
    case ENOENT:
      return QStringLiteral("il n'existe pas");
    case EISDIR:
      return QStringLiteral("c'est un dossier");
    case EIO:
      return QStringLiteral("le disque a signalé une erreur");
    case ETXTBSY:
    case EBUSY:
      return QStringLiteral("il est utilisé par un autre programme");
    case ENAMETOOLONG:
      return QStringLiteral("son nom est trop long");
    default:
      return QString::fromLocal8Bit(std::strerror(code));
  }
}

bool LireFichier(const QString& chemin, QByteArray& octets, QString* erreur) {
  auto echec = [&](int code) {
    if (erreur) *erreur = QStringLiteral("Le fichier %1 ne peut pas être lu : %2.").arg(chemin, CauseSysteme(code));
    return false;
  };
  if (QFileInfo(chemin).isDir()) return echec(EISDIR);
  QFile f(chemin);
  errno = 0;
  if (!f.open(QIODevice::ReadOnly)) return echec(errno ? errno : ENOENT);
  octets = f.readAll();
  if (f.error() != QFileDevice::NoError) return echec(errno ? errno : EIO);
  return true;
}

bool LireFichierProjete(const QString& chemin, QByteArray& octets, std::unique_ptr<QFile>& fichier,
                        QString* erreur) {
  auto echec = [&](int code) {
    if (erreur) *erreur = QStringLiteral("Le fichier %1 ne peut pas être lu : %2.").arg(chemin, CauseSysteme(code));
    fichier.reset();
    return false;
  };
  octets.clear();
  if (QFileInfo(chemin).isDir()) return echec(EISDIR);
  fichier = std::make_unique<QFile>(chemin);
  errno = 0;
  if (!fichier->open(QIODevice::ReadOnly)) return echec(errno ? errno : ENOENT);
  const qint64 taille = fichier->size();
  if (taille == 0) return true;
  if (const uchar* carte = fichier->map(0, taille)) {
    octets = QByteArray::fromRawData(reinterpret_cast<const char*>(carte), taille);
    return true;
  }
  octets = fichier->readAll();  // a file that cannot be mapped (a pipe, some file systems)
  if (fichier->error() != QFileDevice::NoError) return echec(errno ? errno : EIO);
  return true;
}

bool RemplacerFichierPar(const QString& chemin,
                         const std::function<bool(QIODevice&, QString*)>& ecrire, QString* erreur) {
  // A temporary file beside the target, flushed to disk, then renamed over
  // it: until then the original stays as it was.
  // Unbuffered, because a buffered write that fails at commit is committed
  // short all the same (Qt 6.4): each write is checked by `ecrire` instead.
  QSaveFile f(chemin);
  errno = 0;
  QString refus;
  if (!f.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || !ecrire(f, &refus) || !f.flush() ||
      !f.commit()) {
    const int code = errno ? errno : EIO;
    f.cancelWriting();
    if (erreur)
      *erreur = !refus.isEmpty() ? refus
                                 : QStringLiteral("Le fichier %1 n'a pas pu être écrit : %2. Il est resté tel qu'il était.")
                                       .arg(chemin, CauseSysteme(code));
    return false;
  }
  return true;
}

bool RemplacerFichier(const QString& chemin, const QByteArray& octets, QString* erreur) {
  return RemplacerFichierPar(
      chemin, [&octets](QIODevice& f, QString*) { return f.write(octets) == octets.size(); }, erreur);
}

}  // namespace tg::meta
