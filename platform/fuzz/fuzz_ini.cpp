// The INI store on any file: reading never fails, and a key written is the
// value read back, whatever else the file holds.
#include <cstdint>
#include <cstdlib>

#include "platform/Ini.h"
#include "platform/fuzz/Fichier.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QString chemin = tg::fuzz::Ecrire("essai.ini", data, size);
  for (const char* section : {"General", "Cartouche", ""})
    for (const char* cle : {"Version", "Format", "=", " "})
      (void)tg::LireIni(QLatin1String(section), QLatin1String(cle), chemin, QStringLiteral("d"));
  const QString valeur = QStringLiteral("valeur écrite 12,5");
  if (!tg::EcrireIni(QStringLiteral("Cartouche"), QStringLiteral("Titre"), valeur, chemin)) return 0;
  if (tg::LireIni(QStringLiteral("Cartouche"), QStringLiteral("Titre"), chemin, QString()) != valeur) std::abort();
  return 0;
}
