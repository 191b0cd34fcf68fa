#pragma once
// For each test its own program folder and documents folder under a fresh
// temporary folder, made current; shared by the test programs' mains.
#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#include <memory>

namespace tg::test {

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

}  // namespace tg::test
