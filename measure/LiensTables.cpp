#include "measure/LiensTables.h"

#include "measure/TableMesure.h"

namespace tg {

namespace {
LiensTables& Stock() {
  static LiensTables liens;
  return liens;
}
}  // namespace

void DefinirLiensTables(LiensTables liens) { Stock() = std::move(liens); }
const LiensTables& Liens() { return Stock(); }

void SignalerEtatTables() {
  if (Stock().activerMenuGestion) Stock().activerMenuGestion(TablesGerables());
}

}  // namespace tg
