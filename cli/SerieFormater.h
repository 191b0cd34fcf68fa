#pragma once
// formater on several photos into a folder: each photo is the single-photo
// road run by a child process of this tool, as many at once as the machine
// has cores; a refused photo does not stop the others.
#include <QString>
#include <QStringList>

namespace tg {
struct SessionRecord;
}

namespace tg::cli {

// The file names the save dialog would give, in the photos' order: the
// numbered name from NextNumberImage on, or the cleaned title (the photo's own
// name when there is no title), a second and further use of a name taking
// "_2", "_3"...
QStringList NomsSerie(const SessionRecord& s, const QStringList& photos, const QString& titre);

// Runs the series, `taches` photos at once; `options` are formater's options
// for every photo. Prints
// "k/N photo : ..." as each ends and a summary line. 0 when every photo was
// saved, 3 when any was refused.
int FormaterSerie(const QStringList& photos, const QString& dossier, const QStringList& options, int taches);

}  // namespace tg::cli
