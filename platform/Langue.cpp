#include "platform/Langue.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace tg {

bool ChargerTraductionQt(QCoreApplication& app, const QString& langue) {
  auto* traduction = new QTranslator(&app);
  if (!traduction->load(QStringLiteral("qtbase_") + langue, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    delete traduction;
    return false;
  }
  return QCoreApplication::installTranslator(traduction);
}

}  // namespace tg
