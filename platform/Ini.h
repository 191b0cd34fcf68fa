#pragma once
// The private profile store: a file of [Section] headers and key=value lines,
// Windows-1252, CR LF. Each write goes to the file at once.
#include <QString>

namespace tg {

// The value of the key, or `defaut` when the file, the section or the key is
// missing. At most 255 characters, cut at the first NUL, surrounding double
// quotes removed.
QString LireIni(const QString& section, const QString& cle, const QString& fichier,
                const QString& defaut);
// Replaces a present key in place, else appends it to its section, creating
// the section and the file when needed. False when the file cannot be written.
bool EcrireIni(const QString& section, const QString& cle, const QString& valeur,
               const QString& fichier);

}  // namespace tg
