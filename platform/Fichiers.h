#pragma once
// 8-bit Windows-1252 text files with CR LF line ends, the sequential-write
// lists ("item" a line) and file/folder tests.
#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tg {

// Windows-1252 <-> Unicode. An unmappable character is written as "?".
QByteArray VersWindows1252(const QString& texte);
QString DepuisWindows1252(const QByteArray& octets);

// Reads the lines of a Windows-1252 file (CR LF, LF or CR ends); empty list
// and false when the file cannot be read.
bool LireLignes(const QString& chemin, QStringList& lignes);
// Writes the lines, each ended by CR LF, through a temporary file that then
// replaces the target. False when the folder cannot be written.
bool EcrireLignes(const QString& chemin, const QStringList& lignes);

// Sequential-write list: each item on its own line, strings quoted ("item"),
// numbers bare. Reading removes the quotes and keeps empty items as "".
bool LireListe(const QString& chemin, QStringList& items);
bool EcrireListe(const QString& chemin, const QStringList& items);

// Replaces `chemin` by `octets` safely: a temporary file in the same folder,
// flushed to disk, then renamed over the target, whose permissions it keeps.
// False (target untouched, no temporary left) when it cannot be done.
bool RemplacerFichierSur(const QString& chemin, const QByteArray& octets);
// The same, copying `source` over `cible`.
bool CopierFichierSur(const QString& source, const QString& cible);

// The last file operation of this thread that failed: the file and the
// system's errno. Set by RemplacerFichierSur, CopierFichierSur and whoever
// calls NoterEchecFichier; emptied when a replacement starts.
struct EchecFichier {
  QString chemin;  // absolute
  int code = 0;    // errno
};
void NoterEchecFichier(const QString& chemin, int code);
void OublierEchecFichier();
EchecFichier DernierEchecFichier();
// The system's reason in French: "disque plein", "dossier en lecture seule",
// "droit refusé", "fichier utilisé par un autre programme"...
QString RaisonSysteme(int code);
// "Fichier « /chemin/nom » : disque plein." for the last failure; empty without.
QString TexteEchecFichier();
// The standard report followed, on its own line, by that text when there is
// one; the failure is then forgotten.
QString AvecRaison(const QString& rapport);

bool FileExists(const QString& chemin);
bool FolderExists(const QString& chemin);

}  // namespace tg
