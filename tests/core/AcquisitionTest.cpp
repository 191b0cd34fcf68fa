// Scanning through SANE with its own test backend, named alone in a
// dll.conf of SANE_CONFIG_DIR: the source list, both ways into the session,
// and no backend at all.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QSet>
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
void ConfigurerSane(const QString& backends, bool troisPasses = false) {
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
  // The test backend's pattern: colour, 50 dpi, 80 x 100 mm, sent in one
  // frame or in three (red, green, blue apart).
  QFile t(dossier + "/test.conf");
  ASSERT_TRUE(t.open(QIODevice::WriteOnly | QIODevice::Truncate));
  t.write(QStringLiteral("number_of_devices 1\nmode Color\ndepth 8\nthree-pass %1\nthree-pass-order RGB\n"
                         "resolution 50.0\ntest-picture \"Color pattern\"\ntl_x 0.0\ntl_y 0.0\nbr_x 80.0\n"
                         "br_y 100.0\n")
              .arg(troisPasses ? "true" : "false")
              .toUtf8());
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
  // The pattern scanned directly.
  QImage Directe() {
    QImage i;
    QString erreur;
    bool annule = false;
    std::atomic<bool> non{false};
    EXPECT_TRUE(AcquerirScanner("test:0", i, erreur, annule, non)) << erreur.toStdString();
    return i;
  }
};

TEST_F(Scanner, SourceDeTestEtLesDeuxAcquisitions) {
  ConfigurerSane("test\n");
  // 80 x 100 mm at 50 dpi: 157 x 196 pixels.
  const QSize attendue(157, 196);
  const QImage directe = Directe();
  ASSERT_EQ(directe.size(), attendue);
  // A pattern, not a plain picture.
  QSet<QRgb> couleurs;
  for (int y = 0; y < directe.height(); ++y)
    for (int x = 0; x < directe.width(); ++x) couleurs.insert(directe.pixel(x, y));
  EXPECT_GT(couleurs.size(), 4);
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

// A scanner that sends red, green and blue in three frames gives the same picture.
TEST_F(Scanner, TroisPassesCommeUne) {
  ConfigurerSane("test\n");
  const QImage une = Directe();
  ConfigurerSane("test\n", true);
  const QImage trois = Directe();
  EXPECT_EQ(trois.size(), QSize(157, 196));
  EXPECT_TRUE(une == trois);
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
