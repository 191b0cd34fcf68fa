#include "app/Assemblage.h"

#include "core/frmFichierPhoto.h"

namespace tg {

void Assembler(frmFichierPhoto& fenetre) {
  (void)fenetre;
}

}  // namespace tg
