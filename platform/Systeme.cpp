#include "platform/Systeme.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QUrl>
#include <cmath>

#include "version.h"

namespace tg {

namespace {

QString AvecSeparateur(const QString& dossier) {
  if (dossier.isEmpty() || dossier.endsWith(u'/')) return dossier;
  return dossier + u'/';
}

class SystemeReel : public ISysteme {
 public:
  bool LancerProgramme(const QString& programme, const QStringList& arguments) override {
    if (programme.isEmpty()) return false;
    return QProcess::startDetached(programme, arguments);
  }

  bool OuvrirAdresse(const QString& adresse, const QString& navigateur) override {
    const QString nav = navigateur.trimmed();
    if (nav.isEmpty() || nav.compare(u"Explorer", Qt::CaseInsensitive) == 0)
      return QDesktopServices::openUrl(QUrl::fromUserInput(adresse, QDir::currentPath()));
    return QProcess::startDetached(nav, {adresse});
  }

  Ecran InfosEcran() override {
    Ecran e;
    const QScreen* s = QGuiApplication::primaryScreen();
    if (s == nullptr) return e;  // no display: all zero
    // Device-independent pixels: what the windows are laid out in.
    e.largeur = s->size().width();
    e.hauteur = s->size().height();
    e.profondeur = s->depth();
    e.frequence = int(std::lround(s->refreshRate()));
    e.dpiX = int(std::lround(s->logicalDotsPerInchX()));
    e.dpiY = int(std::lround(s->logicalDotsPerInchY()));
    return e;
  }
};

ISysteme* g_installe = nullptr;

}  // namespace

ISysteme& Systeme() {
  static SystemeReel reel;
  return g_installe != nullptr ? *g_installe : reel;
}

void InstallerSysteme(ISysteme* s) { g_installe = s; }

QString RepApplication() {
  // Read at every call: the folder may change during a run (tests do).
  QString dossier = qEnvironmentVariable("TESSELLOGRAPHE_HOME");
  if (dossier.isEmpty())
    dossier = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
              QStringLiteral("/Tessellographe");
  // A folder that cannot be made is still returned: the first write then
  // fails and reports it.
  QDir().mkpath(dossier);
  return AvecSeparateur(QDir::cleanPath(dossier));
}

QString DossierDocuments() {
  // A fresh Linux account may have no documents folder yet, where the program's
  // folders are made at first run: it is created, as the desktop would. When it
  // cannot be, the path is still given and first run reports it.
  const QString dossier = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  if (!dossier.isEmpty()) QDir().mkpath(dossier);
  return AvecSeparateur(dossier);
}

QString GetTemporyFolderPath() { return AvecSeparateur(QDir::tempPath()); }

QString DossierExecutable() { return AvecSeparateur(QCoreApplication::applicationDirPath()); }

QString DossierInstalle(const QString& dossierExecutable, const QString& relatif) {
  const QString installe = QDir::cleanPath(AvecSeparateur(dossierExecutable) + relatif);
  return QFileInfo(installe).isDir() ? AvecSeparateur(installe) : AvecSeparateur(dossierExecutable);
}

QString DossierAssistants() {
  return DossierInstalle(DossierExecutable(), QString::fromUtf8(AssistantsRelatif));
}

QString DossierDonnees() { return DossierInstalle(DossierExecutable(), QString::fromUtf8(DonneesRelatif)); }

}  // namespace tg
