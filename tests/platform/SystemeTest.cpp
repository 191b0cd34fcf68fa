#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <QUrl>

#include "platform/Fichiers.h"
#include "platform/Systeme.h"

namespace tg {
namespace {

// Takes the addresses that the desktop would open.
class Recepteur : public QObject {
  Q_OBJECT
 public:
  QList<QUrl> recues;
 public slots:
  void Ouvrir(const QUrl& url) { recues << url; }
};

// Waits for a file written by a detached process; empty when it never comes.
QByteArray AttendreFichier(const QString& chemin) {
  QElapsedTimer t;
  t.start();
  while (t.elapsed() < 20000) {
    QFile f(chemin);
    if (f.open(QIODevice::ReadOnly)) {
      const QByteArray b = f.readAll();
      if (b.endsWith('.')) return b;
    }
    QThread::msleep(20);
  }
  return {};
}

TEST(Dossiers, RepApplicationSuitLaVariableEtCreeLeDossier) {
  const QString racine = QDir::currentPath() + "/autre/niveau";
  qputenv("TESSELLOGRAPHE_HOME", racine.toUtf8());
  EXPECT_EQ(RepApplication(), racine + "/");
  EXPECT_TRUE(FolderExists(racine));
  qputenv("TESSELLOGRAPHE_HOME", (racine + "/").toUtf8());
  EXPECT_EQ(RepApplication(), racine + "/");
}

TEST(Dossiers, SansVariableLeDossierDeDonneesDeLUtilisateur) {
  qunsetenv("TESSELLOGRAPHE_HOME");
  const QString attendu = qEnvironmentVariable("XDG_DATA_HOME") + "/Tessellographe/";
  EXPECT_EQ(RepApplication(), attendu);
  EXPECT_TRUE(FolderExists(attendu));
}

TEST(Dossiers, DocumentsEtTemporaireFinissentParUnSeparateur) {
  EXPECT_EQ(DossierDocuments(), qEnvironmentVariable("HOME") + "/Documents/");
  // A fresh account without the folder gets it made.
  ASSERT_TRUE(QDir(qEnvironmentVariable("HOME") + "/Documents").removeRecursively());
  EXPECT_TRUE(QFileInfo(DossierDocuments()).isDir());
  EXPECT_TRUE(GetTemporyFolderPath().endsWith('/'));
  EXPECT_TRUE(FolderExists(GetTemporyFolderPath()));
  EXPECT_TRUE(FolderExists(DossierExecutable()));
  EXPECT_TRUE(DossierExecutable().endsWith('/'));
}

// Installed, the helpers and the help page lie at a path relative to the
// executable; in the build folder, beside it.
TEST(Dossiers, InstallesSinonBesideLExecutable) {
  const QString racine = QDir::currentPath() + "/prefixe";
  ASSERT_TRUE(QDir().mkpath(racine + "/bin"));
  EXPECT_EQ(DossierInstalle(racine + "/bin", "../libexec/tessellographe"), racine + "/bin/");
  ASSERT_TRUE(QDir().mkpath(racine + "/libexec/tessellographe"));
  EXPECT_EQ(DossierInstalle(racine + "/bin/", "../libexec/tessellographe"), racine + "/libexec/tessellographe/");
  // A file of that name is no folder.
  QFile f(racine + "/bin/donnees");
  ASSERT_TRUE(f.open(QIODevice::WriteOnly));
  f.close();
  EXPECT_EQ(DossierInstalle(racine + "/bin", "donnees"), racine + "/bin/");
  // The build folder has no such folder: the help page is found beside the program.
  EXPECT_EQ(DossierDonnees(), DossierExecutable());
}

TEST(Lancement, ProgrammeLanceAvecSesArgumentsIntacts) {
  const QString sortie = QDir::currentPath() + "/sortie.txt";
  ASSERT_TRUE(Systeme().LancerProgramme(
      "sh", {"-c", "printf '%s.' \"$1\" > \"$2\"", "sh", QStringLiteral("Zoé l'été"), sortie}));
  EXPECT_EQ(AttendreFichier(sortie), QStringLiteral("Zoé l'été.").toUtf8());
}

TEST(Lancement, ProgrammeIntrouvableRendFaux) {
  EXPECT_FALSE(Systeme().LancerProgramme(QDir::currentPath() + "/absent", {}));
  EXPECT_FALSE(Systeme().LancerProgramme("", {}));
}

TEST(Adresse, ExplorerPasseParLActionParDefautDuSysteme) {
  Recepteur r;
  QDesktopServices::setUrlHandler("https", &r, "Ouvrir");
  QDesktopServices::setUrlHandler("file", &r, "Ouvrir");
  const QString image = QDir::currentPath() + "/photo.jpg";
  QFile(image).open(QIODevice::WriteOnly);
  EXPECT_TRUE(Systeme().OuvrirAdresse("https://exemple.org/aide.html", "Explorer"));
  EXPECT_TRUE(Systeme().OuvrirAdresse(image, ""));
  QDesktopServices::unsetUrlHandler("https");
  QDesktopServices::unsetUrlHandler("file");
  EXPECT_EQ(r.recues, (QList<QUrl>{QUrl("https://exemple.org/aide.html"), QUrl::fromLocalFile(image)}));
}

TEST(Adresse, AutreNavigateurRecoitLAdresseEnArgument) {
  // The "browser" is the shell and the address a script: it runs only if
  // the address came as the argument.
  const QString script = QDir::currentPath() + "/page.sh";
  const QString sortie = QDir::currentPath() + "/vue.txt";
  {
    QFile f(script);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(("printf 'vu.' > '" + sortie + "'\n").toUtf8());
  }
  Recepteur r;
  QDesktopServices::setUrlHandler("file", &r, "Ouvrir");
  EXPECT_TRUE(Systeme().OuvrirAdresse(script, "sh"));
  QDesktopServices::unsetUrlHandler("file");
  EXPECT_EQ(AttendreFichier(sortie), QByteArray("vu."));
  EXPECT_TRUE(r.recues.isEmpty());
}

TEST(Ecran, EcranPrincipalDecritSansPalette) {
  const Ecran e = Systeme().InfosEcran();
  EXPECT_GT(e.largeur, 0);
  EXPECT_GT(e.hauteur, 0);
  EXPECT_GT(e.profondeur, 0);
  EXPECT_GT(e.dpiX, 0);
  EXPECT_GT(e.dpiY, 0);
  EXPECT_FALSE(e.palette);
  EXPECT_EQ(e.couleursPalette, 0);
}

}  // namespace
}  // namespace tg

#include "SystemeTest.moc"
