// TG_Kill /P1=<program>: ends the running processes of the user that run the
// named program (an ".exe" ending is ignored), itself excepted. Silent; the
// exit code is the number of processes signalled, 255 without a name.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <csignal>
#include <sys/types.h>
#include <unistd.h>

#include "helpers/Commun.h"

namespace {

QString SansExe(QString nom) {
  if (nom.endsWith(u".exe", Qt::CaseInsensitive)) nom.chop(4);
  return QFileInfo(nom).fileName();
}

// The program a process runs: the name of its executable, else its command.
QString ProgrammeDe(const QString& pid) {
  const QString exe = QFileInfo(QStringLiteral("/proc/%1/exe").arg(pid)).symLinkTarget();
  if (!exe.isEmpty()) return QFileInfo(exe).fileName();
  QFile comm(QStringLiteral("/proc/%1/comm").arg(pid));
  if (!comm.open(QIODevice::ReadOnly)) return QString();
  return QString::fromLocal8Bit(comm.readAll()).trimmed();
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  const QString nom = SansExe(tg::aide::ParametreP1(QCoreApplication::arguments()));
  if (nom.isEmpty()) return 255;
  const qint64 moi = QCoreApplication::applicationPid();
  int termines = 0;
  for (const QString& pid : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    bool nombre = false;
    const qint64 p = pid.toLongLong(&nombre);
    if (!nombre || p == moi) continue;
    if (ProgrammeDe(pid) != nom) continue;
    // Only the user's own processes can be signalled; others are left alone.
    if (::kill(pid_t(p), SIGTERM) == 0) ++termines;
  }
  return termines > 254 ? 254 : termines;
}
