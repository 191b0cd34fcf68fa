// commentaire lire FICHIER | commentaire ecrire FICHIER --depuis TEXTE: the
// comment of a JPEG, PNG or GIF file, rewritten as the comment editor does.
#include <QTextStream>
#include <cstdio>

#include "cli/Commandes.h"
#include "metadata/CommandesMeta.h"

namespace tg::cli {
namespace {

const Enregistrement enregistrement(
    "commentaire",
    "commentaire lire FICHIER | commentaire ecrire FICHIER --depuis TEXTE   (texte UTF-8 ou "
    "Windows-1252)",
    {"Lit le commentaire d'un fichier JPEG, PNG ou GIF, ou le remplace comme l'éditeur de commentaires du "
     "programme : tout le reste du fichier est gardé octet pour octet, et une écriture interrompue laisse "
     "l'ancien fichier entier.",
     {{"lire FICHIER", "écrit le commentaire sur la sortie standard"},
      {"ecrire FICHIER --depuis TEXTE", "remplace le commentaire par le contenu du fichier TEXTE (UTF-8 ou "
                                        "Windows-1252)"}}},
    [](const QStringList& arguments) {
      QTextStream sortie(stdout);
      QTextStream erreurs(stderr);
      return tg::meta::CommandeCommentaire(arguments, sortie, erreurs);
    });

}  // namespace
}  // namespace tg::cli
