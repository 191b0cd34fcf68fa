#pragma once
// The ways into the program and the output formats, as the main window runs
// them: every way in ends in ChargerImage then ControleImage.
#include <QString>

namespace tg {

class frmFichierPhoto;

// Replaces the session image by the file. On failure the session ends in
// stage 0 with the balloon "Erreur chargement ..."; false then.
// The path is taken by value: callers hand the session's own PathOrigine,
// which the load empties before it records the new one.
bool ChargerImage(frmFichierPhoto& w, QString chemin);
// Recognises a file already formatted, or adapts the format to a small image.
void ControleImage(frmFichierPhoto& w);
// The file at the head of the recent list and of the "Récents" menu.
void EcrireListeRecent(frmFichierPhoto& w, const QString& chemin);

// Applies ChoixFormat, after the question; any other index without it.
void G_ChangeFormat(frmFichierPhoto& w);
// Applies ChoixFormat without a question.
void G_FormatSortie(frmFichierPhoto& w);
// Resizes ImageCourante to the format with filter 1 to 4 and shows it.
// False after an imaging failure, reported, the old bitmap kept.
bool Redimensionner(frmFichierPhoto& w, int filtre);

void mnuRedimAuto(frmFichierPhoto& w);
void mnuOuvriFichier(frmFichierPhoto& w);
void mnuOuvriFichierEtalon(frmFichierPhoto& w);
void mnuRecent(frmFichierPhoto& w, int index);  // 1 to 5
void mnuChargerClipBoard(frmFichierPhoto& w);
void mnuCreateEmptyImage(frmFichierPhoto& w);
// The picture named on the command line, then forgotten.
void ChargerLigneCommande(frmFichierPhoto& w);
// Opens frmEnregistrer on the main window.
void OuvrirEnregistrer(frmFichierPhoto& w);

// Installs the hooks of loading, formats and saving on the main window, the
// drop on the display, reads recent.dat, and loads the command line's
// picture once the event loop runs (after every module is wired).
void InstallerChargementEtFormats(frmFichierPhoto& w);

}  // namespace tg
