#pragma once
// The headless tool for a test that runs it as another user: the build folder
// may lie where only its owner can go (a clone in /root or in a 0700 home),
// so the two halves of the tool are copied into a fresh folder every user can
// enter. They link the project's libraries statically; what they load at run
// time (Qt, FreeImage, the sanitizer runtime, Qt's platform plugins, fonts)
// comes from the system.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "tests/support/Processus.h"

namespace tg::test {

class CliPartage {
 public:
  CliPartage() : dossier_(QStringLiteral("/tmp/tg-cli-XXXXXX")) {
    // /tmp rather than TMPDIR, which may be as private as the build folder.
    if (!dossier_.isValid()) {
      erreur_ = QStringLiteral("dossier temporaire impossible : ") + dossier_.errorString();
      return;
    }
    const QFileDevice::Permissions lecture = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                             QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther |
                                             QFile::ExeOther;
    QFile::setPermissions(dossier_.path(), lecture);
    // The light tool runs the full one from beside itself.
    const QString source = QFileInfo(test::Cli()).absolutePath() + u'/';
    for (const QString& nom : {QStringLiteral("tessellographe-cli"), QStringLiteral("tessellographe-cli-complet")}) {
      const QString copie = dossier_.filePath(nom);
      if (!QFile::copy(source + nom, copie) || !QFile::setPermissions(copie, lecture)) {
        erreur_ = QStringLiteral("copie impossible de ") + source + nom;
        return;
      }
    }
  }

  // Empty when the copy is ready.
  QString Erreur() const { return erreur_; }
  QString Cli() const { return dossier_.filePath(QStringLiteral("tessellographe-cli")); }

 private:
  QTemporaryDir dossier_;
  QString erreur_;
};

}  // namespace tg::test
