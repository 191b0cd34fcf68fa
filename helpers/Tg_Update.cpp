// Tg_Update: tells where the updates of the program come from, and the
// version installed.
#include <QCoreApplication>

#include "helpers/Commun.h"

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  using namespace tg::aide;
  const QString installee = VersionDuFichier(RepApplication() + QStringLiteral("tessellographe.ver"));
  Dire(QStringLiteral("Tessellographe - mise à jour"));
  Dire(installee.isEmpty() ? QStringLiteral("Version installée inconnue (lancez le programme une fois).")
                           : "Version installée : " + installee);
  const QString source = SourceMiseAJour();
  if (source.isEmpty()) {
    Dire(QStringLiteral("Aucune source de mise à jour n'est configurée : les mises à jour "
                        "viennent du paquet de votre distribution ou des sources du projet."));
    Dire(QStringLiteral("Pour en désigner une, ajoutez dans UserConfig.ini la section "
                        "[MiseAJour] avec la clé Source= (fichier de version \"VER Version x.y.z\")."));
  } else {
    Dire("Source de mise à jour : " + source);
  }
  return 0;
}
