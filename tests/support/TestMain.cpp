// Main of every test program: offscreen Qt, and for each test its own program
// folder and documents folder under a fresh temporary folder.
#include <gtest/gtest.h>

#include <QApplication>

#include "platform/Dialogues.h"
#include "tests/support/DossiersParTest.h"

int main(int argc, char** argv) {
  // Test discovery runs the binary without the test environment.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  tg::InstallerDialoguesQt();
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new tg::test::DossiersParTest);
  return RUN_ALL_TESTS();
}
