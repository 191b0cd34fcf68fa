#pragma once
// Wires the table windows into the main window: its menu entries
// mnuAjoutTable and mnuGestionTables, and what the windows tell it back.
namespace tg {

class frmFichierPhoto;

void InstallerTablesMesure(frmFichierPhoto& fenetre);

}  // namespace tg
