#pragma once
// Running the project's programs, and the tools used as oracles, from a test.
#include <QByteArray>
#include <QCoreApplication>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace tg::test {

struct Sortie {
  int code = -1;  // -1 when the program did not start or did not end normally
  QByteArray sortie, erreur;
};

// Runs the program with extra "NOM=valeur" environment entries; 60 s at most.
inline Sortie Executer(const QString& programme, const QStringList& arguments,
                       const QStringList& environnement = {}) {
  QProcess p;
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  for (const QString& e : environnement) env.insert(e.section(u'=', 0, 0), e.section(u'=', 1));
  p.setProcessEnvironment(env);
  p.start(programme, arguments);
  Sortie s;
  if (!p.waitForFinished(60000) || p.exitStatus() != QProcess::NormalExit) return s;
  s.code = p.exitCode();
  s.sortie = p.readAllStandardOutput();
  s.erreur = p.readAllStandardError();
  return s;
}

// The headless tool of the same build as the test program.
inline QString Cli() {
  return QCoreApplication::applicationDirPath() + QStringLiteral("/../cli/tessellographe-cli");
}

}  // namespace tg::test
