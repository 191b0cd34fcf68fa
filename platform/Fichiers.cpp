#include "platform/Fichiers.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
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

bool RemplacerFichierSur(const QString& chemin, const QByteArray& octets) {
  // QSaveFile writes beside the target, flushes the data (fdatasync) and
  // renames over it: a crash or a full disk leaves the old file whole.
  // Unbuffered, because a buffered write that fails at commit is committed
  // short all the same (Qt 6.4): each write is checked here instead.
  QSaveFile f(chemin);
  if (!f.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) return false;
  if (f.write(octets) != octets.size() || !f.flush()) {
    f.cancelWriting();
    return false;
  }
  return f.commit();
}

bool CopierFichierSur(const QString& source, const QString& cible) {
  QFile f(source);
  if (!f.open(QIODevice::ReadOnly)) return false;
  const QByteArray octets = f.readAll();
  if (f.error() != QFileDevice::NoError) return false;
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
