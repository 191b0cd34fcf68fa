// Main of every test program: offscreen Qt, and for each test its own program
// folder and documents folder under a fresh temporary folder.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <memory>

namespace {

class DossiersParTest : public testing::EmptyTestEventListener {
  std::unique_ptr<QTemporaryDir> dossier_;

  void OnTestStart(const testing::TestInfo&) override {
    dossier_ = std::make_unique<QTemporaryDir>();
    const QString racine = dossier_->path();
    QDir().mkpath(racine + "/app");
    QDir().mkpath(racine + "/home/Documents");
    qputenv("TESSELLOGRAPHE_HOME", (racine + "/app").toUtf8());
    qputenv("HOME", (racine + "/home").toUtf8());
    qputenv("XDG_CONFIG_HOME", (racine + "/home/.config").toUtf8());
    qputenv("XDG_DATA_HOME", (racine + "/home/.local/share").toUtf8());
    QDir::setCurrent(racine);
  }
  void OnTestEnd(const testing::TestInfo&) override {
    QDir::setCurrent(QDir::tempPath());
    dossier_.reset();
  }
};

}  // namespace

int main(int argc, char** argv) {
  // Test discovery runs the binary without the test environment.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new DossiersParTest);
  return RUN_ALL_TESTS();
}
