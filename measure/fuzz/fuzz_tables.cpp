// The measurement table store on any file: every slot the header announces
// reads or fails cleanly, and a table appended reads back as written.
#include <cstdint>
#include <cstdlib>

#include "measure/TableMesure.h"
#include "platform/fuzz/Fichier.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QString chemin = tg::fuzz::Ecrire("table_mesure.dat", data, size);
  tg::FichierMesure f;
  if (!f.Ouvrir(chemin)) return 0;
  const int n = f.LireEntete();
  tg::EnrMesure e;
  for (int k = 2; k <= n && k < 200; ++k) (void)f.LireEnr(k, e);
  int nbEnreg = n;
  const tg::EnrMesure nouvelle{QStringLiteral("Modèle"), 2272, "Micro", "Fond clair", 40.0f, 400, 100, 7.5f};
  if (n >= 32000 || !tg::AjouterTable(f, nbEnreg, nouvelle)) return 0;
  f.Fermer();
  tg::FichierMesure relu;
  tg::EnrMesure lue;
  if (!relu.Ouvrir(chemin) || relu.LireEntete() != nbEnreg || !relu.LireEnr(nbEnreg, lue)) std::abort();
  if (lue.Modele != nouvelle.Modele || lue.Pix != 400 || lue.Focale != 7.5f) std::abort();
  return 0;
}
