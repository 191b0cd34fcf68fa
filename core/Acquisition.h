#pragma once
// The "Acquérir (Twain32)" menus over SANE: choosing the source, scanning
// into the session the clipboard's way (through twain_temp.jpg in the
// program's folder) or into a file of the working folder. The scan runs off
// the interface thread, with a progress bar and a cancel button.
#include <QImage>

class QWidget;

namespace tg {

class frmFichierPhoto;

void mnuSelectSrcTwain(frmFichierPhoto& w);
void mnuAcquireTwain(frmFichierPhoto& w);
void mnuAcquireFileTwain(frmFichierPhoto& w);

// One scan from the chosen source. False after its French message, or
// silently when the user cancelled.
bool Numeriser(QWidget* parent, QImage& sortie);

void InstallerAcquisition(frmFichierPhoto& w);

}  // namespace tg
