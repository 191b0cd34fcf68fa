#include "platform/MessagesQt.h"

#include <QtGlobal>
#include <QString>
#include <cstdio>

namespace tg {

namespace {
QtMessageHandler precedent = nullptr;

void Trier(QtMsgType type, const QMessageLogContext& contexte, const QString& message) {
  // Categorised warnings and notices from Qt itself ("qt.gui.imageio",
  // "qt.qpa.*") and the runtime folder notice are dropped; fatal errors and
  // the program's own messages go through.
  const QString categorie = contexte.category ? QString::fromLatin1(contexte.category) : QString();
  const bool deQt = categorie.startsWith(QLatin1String("qt.")) ||
                    message.startsWith(QLatin1String("QStandardPaths: ")) ||
                    message.startsWith(QLatin1String("libpng warning"));
  if (deQt && type != QtFatalMsg) return;
  if (precedent) {
    precedent(type, contexte, message);
  } else {
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, contexte, message)));
    std::fflush(stderr);
  }
}
}  // namespace

void FiltrerMessagesQt() {
  if (qEnvironmentVariableIntValue("TESSELLOGRAPHE_DEBUG") == 1) return;
  precedent = qInstallMessageHandler(Trier);
}

}  // namespace tg
