#pragma once
// What the table windows ask of the main window, wired once at start-up.
#include <functional>

namespace tg {

struct LiensTables {
  // Enables or disables the main window's table-management entry.
  std::function<void(bool)> activerMenuGestion;
  // Opens the options dialog.
  std::function<void()> ouvrirOptions;
  // Registers a tool window so that the end of the session closes it.
  std::function<void(class QWidget*)> fenetreOuverte;
};

void DefinirLiensTables(LiensTables liens);
const LiensTables& Liens();

// Tells the main window whether tables can be managed (either file exists).
void SignalerEtatTables();

}  // namespace tg
