#pragma once
// A folder on a filesystem of its own for the time of a scope: a small one
// (a full disk) or a read-only one. Mounting needs root, as the test command
// runs in CI; elsewhere `Monte()` is false and the test says it cannot run.
#include <sys/mount.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

namespace tg::test {

class DossierMonte {
 public:
  // `octets` of room; with `lectureSeule`, `contenu` is written first as
  // the file `fichier`, then the filesystem is made read-only.
  DossierMonte(const QString& chemin, qint64 octets, bool lectureSeule = false, const QString& fichier = {},
               const QByteArray& contenu = {})
      : chemin_(QFile::encodeName(chemin)) {
    QDir().mkpath(chemin);
    const QByteArray options = "size=" + QByteArray::number(octets) + ",mode=0777";
    monte_ = ::mount("tmpfs", chemin_.constData(), "tmpfs", 0, options.constData()) == 0;
    if (!monte_) return;
    if (!fichier.isEmpty()) {
      QFile f(QDir(chemin).filePath(fichier));
      monte_ = f.open(QIODevice::WriteOnly) && f.write(contenu) == contenu.size();
    }
    if (monte_ && lectureSeule)
      monte_ = ::mount("tmpfs", chemin_.constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, options.constData()) == 0;
  }
  ~DossierMonte() {
    if (!chemin_.isEmpty()) ::umount2(chemin_.constData(), MNT_DETACH);
  }
  DossierMonte(const DossierMonte&) = delete;
  DossierMonte& operator=(const DossierMonte&) = delete;
  bool Monte() const { return monte_; }

 private:
  QByteArray chemin_;
  bool monte_ = false;
};

}  // namespace tg::test
