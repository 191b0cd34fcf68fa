#pragma once
// The language of Qt's own texts: standard dialogs, their buttons and questions.
#include <QString>

class QCoreApplication;

namespace tg {

// Loads Qt's translation `qtbase_<langue>` from the system's translations
// folder (Debian: qt6-translations-l10n) and installs it on the application,
// which owns it. False when the file is missing: Qt then speaks English.
bool ChargerTraductionQt(QCoreApplication& app, const QString& langue = QStringLiteral("fr"));

}  // namespace tg
