#pragma once
// Wires the windows and operations of the other modules into the main
// window's hooks: the one place where core meets the modules above it.
namespace tg {

class frmFichierPhoto;

void Assembler(frmFichierPhoto& fenetre);

}  // namespace tg
