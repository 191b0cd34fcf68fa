#include "cli/Console.h"

namespace tg::cli {

void Ligne(const QString& texte, FILE* flux) {
  std::fputs((texte + u'\n').toUtf8().constData(), flux);
}

}  // namespace tg::cli
