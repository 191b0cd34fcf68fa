#pragma once
// What the update helpers share: the program's folder, its version file and
// the configured update source. Qt Core only: the helpers open no window.
#include <QString>
#include <QStringList>

namespace tg::aide {

// The program's folder, as the program finds it: $TESSELLOGRAPHE_HOME, else
// the program's XDG data folder. Ends with "/".
QString RepApplication();

// The value of "/P1=" among the arguments, "" when absent.
QString ParametreP1(const QStringList& arguments);

// The version of a version file: the text after "VER " on its first line;
// "" when the file is missing or has no such line.
QString VersionDuFichier(const QString& chemin);

// Compares "Version a.b.c" strings number by number: -1, 0 or 1; an empty or
// unreadable one is the oldest.
int ComparerVersions(const QString& a, const QString& b);

// The update source of [MiseAJour] Source in UserConfig.ini: a version file
// ("VER Version a.b.c") given as a path or a file:// address. "" when none.
QString SourceMiseAJour();
// The source as a local path ("" for an address of another kind).
QString CheminSource(const QString& source);

// Writes a line to the standard output, in the locale's encoding.
void Dire(const QString& texte);

}  // namespace tg::aide
