#pragma once
// Start-up of the program without a window: the version file, the update
// helpers, the migration of old data files, the folders, the upgrade of the
// configuration and the screen checks. frmMain runs them in order.
#include <QString>
#include <QStringList>
#include <array>

#include "core/SessionRecord.h"

namespace tg {

// The update helpers, separate programs beside the executable (no ".exe" here).
inline constexpr const char* NomTgKill = "TG_Kill";
inline constexpr const char* NomTgUpdate = "Tg_Update";
inline constexpr const char* NomTgUpdateNouveau = "Tg_Update_new";
inline constexpr const char* NomTgCheckUpdate = "TG_CheckUpdate";

// "Version " major "." minor "." revision, from the build's version.
QString ChaineVersion();
// RepApplication() + "tessellographe.ver".
QString CheminFichierVersion();
// Deletes then writes the version file: one line "VER " + version. False when
// it cannot be written.
bool EcrireFichierVersion(const QString& version);
// The version read back from the file ("" when missing or malformed).
QString LireFichierVersion(const QString& chemin);

// Update of the updater, in the folder of the helpers: with TG_Kill and
// Tg_Update present, TG_Kill is launched with "/P1=Tg_Update"; a missing one
// is reported ("Fichier \Tg_Update.exe introuvable !" or "Fichier \TG_Kill.exe
// introuvable !") and start-up goes on. A Tg_Update_new then replaces Tg_Update.
void MettreAJourAssistant(const QString& dossierAssistants);

// Old data files replaced by their new names.
struct Migration {
  const char* ancien;
  const char* nouveau;
};
inline constexpr std::array<Migration, 5> Migrations = {{
    {"table_mesure.cfg", "table_mesure.dat"},
    {"objectif.txt", "objectif.dat"},
    {"lstColoration.txt", "lstColoration.dat"},
    {"lstMontage.txt", "lstMontage.dat"},
    {"lstProvenance.txt", "lstProvenance.dat"},
}};
// Each old file of `dossier` that exists is copied over its new one and
// deleted. Returns the new names written. An old file that cannot be copied
// is left where it is, so that nothing is lost.
QStringList MigrerFichiers(const QString& dossier);

// "le point" for ".", "la virgule" for ",".
QString MotSeparateur(const QString& separateur);
// The welcome text of a first run, one line per item.
QString TextePremierLancement(const QString& pays, const QString& separateur);

// First run: Tessellographe, Tessellographe/ImageTravail and
// Tessellographe/ImageEtalon under the documents folder, each when missing.
// Without the documents folder the user is told ("Lecteur non trouvé") and
// false is returned.
bool CreerDossiersTravail(const QString& docPath);
// The current folder becomes docPath + "Tessellographe" when it exists.
void PlacerDossierCourant(const QString& docPath);

// Compares two version strings ("Version 1.2.3", or bare "1.2.3") number by
// number: -1, 0 or 1. An empty or unreadable string is the oldest.
int ComparerVersions(const QString& a, const QString& b);

// What the configuration step decided.
enum class Lancement { Premier, Suivant, MiseAJour };

// Steps on UserConfig.ini: with the file, RecupereValeurIni then NumVersion
// compared with `version`: an older one brings the upgrade keys and deletes
// recent.dat. Without it (first run), NumVersion is written and the defaults
// read.
Lancement PreparerConfiguration(SessionRecord& s, const QString& version);

// The keys written by an upgrade, in their order: section, key, value.
struct CleMiseAJour {
  const char* section;
  const char* cle;
  const char* valeur;
};
inline constexpr std::array<CleMiseAJour, 7> ClesMiseAJour = {{
    {"General", "ImageAccueil", "1"},
    {"FormatImage", "CartoucheHB", "1"},
    {"FormatImage", "FontName2", "Arial"},
    {"FormatImage", "FontSize2", "8"},
    {"FormatImage", "FontBold2", "FAUX"},
    {"FormatImage", "FontItalic2", "FAUX"},
    {"General", "MessageBox", "0"},
}};

// Screen width classes: below 800 the program cannot run; 800 to 1023 it
// runs less comfortably; from 1024 nothing is said.
enum class CasEcran { TropPetit, Reduit, Confortable };
CasEcran ClasserEcran(int largeur);
// The message of a case; empty for Confortable.
QString TexteEcran(CasEcran cas);
// Sets EcranLargeur and the three flags; a reduced screen writes
// [FormatImage] ChoixFormatMesure "0" (and the record's value).
CasEcran AppliquerEcran(SessionRecord& s, int largeur);

// Main window load, files: temp.jpg of RepTravail and twain_temp.jpg of the
// program's folder deleted; the current folder becomes RepApPhoto when it exists.
void NettoyerFichiersTravail(const SessionRecord& s);
void PlacerDossierPhotos(const SessionRecord& s);
// With MajAuto "1" and TG_CheckUpdate present, launches it. True when launched.
bool LancerVerificationMaj(const SessionRecord& s, const QString& dossierAssistants);
// End of session: with TG_Kill and TG_CheckUpdate present, TG_Kill is
// launched with "/P1=TG_CheckUpdate". True when launched.
bool TerminerAssistants(const QString& dossierAssistants);

}  // namespace tg
