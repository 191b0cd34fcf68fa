// infos FICHIER [--json]: what the metadata library reads from a picture file.
#include <QTextStream>
#include <cstdio>

#include "cli/Commandes.h"
#include "metadata/CommandesMeta.h"

namespace tg::cli {
namespace {

const Enregistrement enregistrement(
    "infos",
    "infos FICHIER [--json]   (type, segments JPEG avec leur position à partir de 1, JFIF, "
    "EXIF et note du fabricant, IPTC, blocs PNG, GIF, BMP, commentaire)",
    {"Décrit ce que le fichier contient : son type, ses segments JPEG avec leur position à partir de 1, "
     "JFIF, EXIF et note du fabricant, IPTC, blocs PNG, GIF et BMP, commentaire. Le fichier n'est pas modifié.",
     {{"--json", "la même description en JSON"}}},
    [](const QStringList& arguments) {
      QTextStream sortie(stdout);
      QTextStream erreurs(stderr);
      return tg::meta::CommandeInfos(arguments, sortie, erreurs);
    });

}  // namespace
}  // namespace tg::cli
