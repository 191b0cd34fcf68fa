#pragma once
// The headless tool's metadata commands; cli/ registers them. Exit statuses:
// 0 done, 2 bad usage, 3 refused (a French message on `erreurs`).
#include <QString>
#include <QStringList>
#include <QTextStream>

namespace tg::meta {

// infos FICHIER [--json]
int CommandeInfos(const QStringList& arguments, QTextStream& sortie, QTextStream& erreurs);
// commentaire lire FICHIER | commentaire ecrire FICHIER --depuis TEXTE
int CommandeCommentaire(const QStringList& arguments, QTextStream& sortie, QTextStream& erreurs);

// A text file's bytes as text: UTF-8 when they are valid UTF-8 (a BOM
// dropped), Windows-1252 otherwise; line ends become CR LF, the block's own.
QString TexteDepuisFichier(const QByteArray& octets);
// Lone LF and lone CR become CR LF.
QString FinsDeLigneCRLF(const QString& texte);

}  // namespace tg::meta
