#pragma once
// Hooks of the main window served by the adjust module: the filters window
// and the crop window.
namespace tg {
class frmFichierPhoto;
void InstallerAjustement(frmFichierPhoto& fenetre);
}  // namespace tg
