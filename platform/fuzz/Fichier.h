#pragma once
// The fuzz input as a file of its own, in a private folder made once.
#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

namespace tg::fuzz {

inline QString Ecrire(const char* nom, const uint8_t* data, size_t size) {
  static QTemporaryDir dossier;
  const QString chemin = dossier.path() + "/" + QLatin1String(nom);
  QFile f(chemin);
  if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
    f.write(reinterpret_cast<const char*>(data), qint64(size));
  return chemin;
}

}  // namespace tg::fuzz
