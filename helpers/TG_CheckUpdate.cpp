// TG_CheckUpdate: compares the installed version (tessellographe.ver) with
// the one of the configured update source. Silent unless the source knows a
// newer version: then says so and exits with 1; 0 otherwise.
#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>

#include "helpers/Commun.h"

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  using namespace tg::aide;
  const QString installee = VersionDuFichier(RepApplication() + QStringLiteral("tessellographe.ver"));
  const QString chemin = CheminSource(SourceMiseAJour());
  if (installee.isEmpty() || chemin.isEmpty()) return 0;
  const QString disponible = VersionDuFichier(chemin);
  if (disponible.isEmpty() || ComparerVersions(disponible, installee) <= 0) return 0;
  const QString texte = "Une nouvelle version de Tessellographe est disponible : " + disponible +
                        " (installée : " + installee + ").";
  Dire(texte);
  // On a desktop, the notification reaches the user who started the program.
  const QString notifier = QStandardPaths::findExecutable(QStringLiteral("notify-send"));
  if (!notifier.isEmpty())
    QProcess::startDetached(notifier, {QStringLiteral("Tessellographe"), texte});
  return 1;
}
