// Scanning through SANE with its own test backend, named alone in a
// dll.conf of SANE_CONFIG_DIR: the source list, both ways into the session,
// and no backend at all.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <dlfcn.h>
#include <sane/sane.h>

#include <QFileInfo>
#include <memory>

#include "core/Acquisition.h"
#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Scanner.h"
#include "platform/Systeme.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

// SANE takes the folder of SANE_CONFIG_DIR once a process, and reads its
// dll.conf, which names the backends, at each start: one folder serves every
// test, its dll.conf rewritten by each.
void ConfigurerSane(const QString& backends) {
  // SANE's test backend keeps a read buffer past its end; loaded here for
  // good, it stays named in the leak report, which lsan.supp then leaves out.
  static const bool garde = [] {
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&sane_init), &info) == 0 || info.dli_fname == nullptr) return false;
    const QString dossier = QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
    return dlopen(QFile::encodeName(dossier + "/sane/libsane-test.so.1").constData(), RTLD_NOW | RTLD_NODELETE) !=
           nullptr;
  }();
  (void)garde;
  static QTemporaryDir dossierSane;
  const QString dossier = dossierSane.path();
  QFile f(dossier + "/dll.conf");
  ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
  f.write(backends.toUtf8());
  f.close();
  qputenv("SANE_CONFIG_DIR", dossier.toUtf8());
}

class Scanner : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  std::unique_ptr<frmFichierPhoto> w;

  Scanner() { SourceScannerChoisie().clear(); }
  ~Scanner() override {
    qunsetenv("SANE_CONFIG_DIR");
    SourceScannerChoisie().clear();
  }
  void Creer() { w = std::make_unique<frmFichierPhoto>(s, ai); }
  // The size the test pattern comes in, scanned directly.
  QSize Attendue() {
    QImage i;
    QString erreur;
    bool annule = false;
    std::atomic<bool> non{false};
    EXPECT_TRUE(AcquerirScanner("test:0", i, erreur, annule, non)) << erreur.toStdString();
    return i.size();
  }
};

TEST_F(Scanner, SourceDeTestEtLesDeuxAcquisitions) {
  ConfigurerSane("test\n");
  const QSize attendue = Attendue();
  ASSERT_FALSE(attendue.isEmpty());
  QString erreur;
  const std::vector<SourceScanner> sources = SourcesScanner(erreur);
  ASSERT_FALSE(sources.empty()) << erreur.toStdString();
  EXPECT_EQ(sources[0].nom, "test:0");

  Creer();
  dlg.chaines.push_back("test:0");
  mnuSelectSrcTwain(*w);
  EXPECT_TRUE(dlg.elementsChoix.first().startsWith("test:0"));
  EXPECT_EQ(SourceScannerChoisie(), "test:0");

  mnuAcquireTwain(*w);
  EXPECT_EQ(QSize(s.Largeur, s.Hauteur), attendue);
  EXPECT_TRUE(QFile::exists(RepApplication() + "twain_temp.jpg"));
  EXPECT_EQ(QApplication::clipboard()->image().size(), attendue);
  EXPECT_EQ(s.Etape, 1);

  s.RepTravail = QDir::current().filePath("travail") + "/";
  QDir().mkpath(s.RepTravail);
  const QString fichier = s.RepTravail + "scan.jpg";
  dlg.chaines.push_back(fichier);
  mnuAcquireFileTwain(*w);
  ASSERT_TRUE(QFile::exists(fichier));
  EXPECT_EQ(QImage(fichier).size(), attendue);
  EXPECT_EQ(s.PathOrigine, fichier);
  EXPECT_EQ(QSize(s.Largeur, s.Hauteur), attendue);
}

TEST_F(Scanner, SansBackendLeMessageEtRienDAutre) {
  ConfigurerSane("");
  QString erreur;
  EXPECT_TRUE(SourcesScanner(erreur).empty());
  Creer();
  mnuSelectSrcTwain(*w);
  EXPECT_EQ(dlg.Dernier().texte, TexteAucunScanner());
  dlg.appels.clear();
  mnuAcquireTwain(*w);
  ASSERT_FALSE(dlg.appels.empty());
  EXPECT_EQ(dlg.Dernier().texte, TexteAucunScanner());
  EXPECT_TRUE(s.ImageCourante.Vide());
  // Into a file without a working folder: its message first.
  mnuAcquireFileTwain(*w);
  EXPECT_EQ(dlg.Dernier().titre, "Dossier de travail innexistant");
}

}  // namespace
}  // namespace tg
