#include "platform/Fichiers.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <cerrno>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QStringEncoder>

namespace tg {

namespace {

const char* const kCodePage = "windows-1252";

// A plain decimal number, as a sequential write leaves it bare: optional sign,
// digits, at most one '.'.
bool EstNombreSimple(const QString& item) {
  static const QRegularExpression nombre(QStringLiteral(R"(^[+-]?(\d+(\.\d+)?|\.\d+)$)"));
  return nombre.match(item).hasMatch();
}

}  // namespace

QByteArray VersWindows1252(const QString& texte) {
  QStringEncoder encodeur(kCodePage);
  QByteArray octets = encodeur.encode(texte);
  if (!encodeur.hasError()) return octets;
  // The codec marks an unmappable character with 0x1A, which a real U+001A
  // also gives: encode again one code point at a time to tell them apart.
  octets.clear();
  octets.reserve(texte.size());
  for (qsizetype i = 0; i < texte.size();) {
    const qsizetype n = (texte.at(i).isHighSurrogate() && i + 1 < texte.size() &&
                         texte.at(i + 1).isLowSurrogate())
                            ? 2
                            : 1;
    QStringEncoder un(kCodePage);
    const QByteArray b = un.encode(QStringView(texte).mid(i, n));
    octets += (un.hasError() || b.size() != 1) ? QByteArray("?") : b;
    i += n;
  }
  return octets;
}

QString DepuisWindows1252(const QByteArray& octets) {
  // Every byte maps, the five undefined ones to the C1 control of that value.
  QStringDecoder decodeur(kCodePage);
  return decodeur.decode(octets);
}

bool LireLignes(const QString& chemin, QStringList& lignes) {
  lignes.clear();
  QFile f(chemin);
  if (!f.open(QIODevice::ReadOnly)) return false;
  const QString texte = DepuisWindows1252(f.readAll());
  QString ligne;
  for (qsizetype i = 0; i < texte.size(); ++i) {
    const QChar c = texte.at(i);
    if (c == u'\r' || c == u'\n') {
      lignes << ligne;
      ligne.clear();
      if (c == u'\r' && i + 1 < texte.size() && texte.at(i + 1) == u'\n') ++i;
    } else {
      ligne += c;
    }
  }
  // A last line without its end still counts; a final CR LF opens no line.
  if (!ligne.isEmpty()) lignes << ligne;
  return true;
}

namespace {
EchecFichier& Echec() {
  static thread_local EchecFichier echec;
  return echec;
}

bool Noter(const QString& chemin, int code) {
  NoterEchecFichier(chemin, code);
  return false;
}
}  // namespace

void NoterEchecFichier(const QString& chemin, int code) {
  Echec().chemin = QFileInfo(chemin).absoluteFilePath();
  Echec().code = code;
}

void OublierEchecFichier() { Echec() = EchecFichier{}; }

EchecFichier DernierEchecFichier() { return Echec(); }

QString RaisonSysteme(int code) {
  switch (code) {
    case ENOSPC:
    case EDQUOT: return QStringLiteral("disque plein");
    case EROFS: return QStringLiteral("dossier en lecture seule");
    case EACCES:
    case EPERM: return QStringLiteral("droit refusé");
    case ETXTBSY:
    case EBUSY: return QStringLiteral("fichier utilisé par un autre programme");
    case ENOENT: return QStringLiteral("fichier ou dossier inexistant");
    case ENOTDIR: return QStringLiteral("chemin invalide : un élément n'est pas un dossier");
    case EISDIR: return QStringLiteral("un dossier porte ce nom");
    case ENAMETOOLONG: return QStringLiteral("nom trop long");
    case EFBIG: return QStringLiteral("fichier trop grand pour la place permise");
    case EIO: return QStringLiteral("erreur de lecture ou d'écriture du disque");
    case EMFILE:
    case ENFILE: return QStringLiteral("trop de fichiers ouverts");
    case ENOMEM: return QStringLiteral("mémoire insuffisante");
    default: return QStringLiteral("erreur système n° %1").arg(code);
  }
}

QString TexteEchecFichier() {
  const EchecFichier e = Echec();
  if (e.chemin.isEmpty()) return {};
  return QStringLiteral("Fichier « %1 » : %2.").arg(QDir::toNativeSeparators(e.chemin), RaisonSysteme(e.code));
}

QString AvecRaison(const QString& rapport) {
  const QString raison = TexteEchecFichier();
  OublierEchecFichier();  // told once: a later report is not about this file
  return raison.isEmpty() ? rapport : rapport + u'\n' + raison;
}

bool RemplacerFichierSur(const QString& chemin, const QByteArray& octets) {
  // Written beside the target, flushed to disk (fdatasync) and renamed over
  // it: a crash or a full disk leaves the old file whole. Each failing call
  // keeps its errno, so that the user is told which file and why.
  OublierEchecFichier();
  if (chemin.isEmpty()) return Noter(chemin, ENOENT);
  const QFileInfo info(chemin);
  // A link is followed: the file it points to is the one replaced.
  const QString vrai = info.isSymLink() && info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
  const QByteArray cible = QFile::encodeName(vrai);
  QByteArray temporaire = cible + ".XXXXXX";
  const int fd = ::mkstemp(temporaire.data());
  if (fd < 0) return Noter(chemin, errno);
  const auto abandonner = [&](int code) {
    ::close(fd);
    ::unlink(temporaire.constData());
    return Noter(chemin, code);
  };
  // The target's permissions are kept; a new file gets the usual 0666 less the umask.
  struct stat etat {};
  mode_t droits = 0;
  if (::stat(cible.constData(), &etat) == 0) {
    droits = etat.st_mode & 07777;
  } else {
    const mode_t masque = ::umask(0);
    ::umask(masque);
    droits = 0666 & ~masque;
  }
  ::fchmod(fd, droits);
  const char* p = octets.constData();
  qsizetype reste = octets.size();
  while (reste > 0) {
    const ssize_t n = ::write(fd, p, size_t(reste));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return abandonner(n < 0 ? errno : ENOSPC);
    p += n;
    reste -= n;
  }
  if (::fdatasync(fd) != 0) return abandonner(errno);
  if (::close(fd) != 0) {
    const int code = errno;
    ::unlink(temporaire.constData());
    return Noter(chemin, code);
  }
  if (::rename(temporaire.constData(), cible.constData()) != 0) {
    const int code = errno;
    ::unlink(temporaire.constData());
    return Noter(chemin, code);
  }
  return true;
}

bool CopierFichierSur(const QString& source, const QString& cible) {
  QFile f(source);
  if (!f.open(QIODevice::ReadOnly)) return Noter(source, errno ? errno : EACCES);
  const QByteArray octets = f.readAll();
  if (f.error() != QFileDevice::NoError) return Noter(source, EIO);
  return RemplacerFichierSur(cible, octets);
}

bool EcrireLignes(const QString& chemin, const QStringList& lignes) {
  QByteArray octets;
  for (const QString& l : lignes) {
    octets += VersWindows1252(l);
    octets += "\r\n";
  }
  // The target is replaced only once the whole text is on disk.
  return RemplacerFichierSur(chemin, octets);
}

bool LireListe(const QString& chemin, QStringList& items) {
  items.clear();
  QStringList lignes;
  if (!LireLignes(chemin, lignes)) return false;
  for (const QString& ligne : lignes) {
    const QString t = ligne.trimmed();
    if (t.startsWith(u'"')) {
      // "item": up to the closing quote; an unclosed one runs to the line's end.
      const qsizetype fin = t.size() >= 2 && t.endsWith(u'"') ? t.size() - 1 : t.size();
      items << t.mid(1, fin - 1);
    } else {
      items << t;
    }
  }
  return true;
}

bool EcrireListe(const QString& chemin, const QStringList& items) {
  static const QRegularExpression retour(QStringLiteral("\r\n|\r|\n"));
  QStringList lignes;
  for (QString item : items) {
    // One item a line: a line break inside an item would split it in two.
    item.replace(retour, QStringLiteral(" "));
    lignes << (EstNombreSimple(item) ? item : u'"' + item + u'"');
  }
  return EcrireLignes(chemin, lignes);
}

bool FileExists(const QString& chemin) {
  if (chemin.isEmpty()) return false;
  const QFileInfo fi(chemin);
  return fi.exists() && !fi.isDir();
}

bool FolderExists(const QString& chemin) {
  if (chemin.isEmpty()) return false;
  return QFileInfo(chemin).isDir();
}

}  // namespace tg
