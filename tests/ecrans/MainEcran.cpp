// Main of the screen-size tests: offscreen Qt with one screen of the size
// given by --ecran=LxH (800x600 when absent), and for each test its own
// program folder and documents folder, as in the other test programs.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <cstring>

#include "platform/Dialogues.h"
#include "tests/support/DossiersParTest.h"

int main(int argc, char** argv) {
  int largeur = 800, hauteur = 600;
  int n = 0;
  for (int i = 0; i < argc; ++i) {
    if (std::strncmp(argv[i], "--ecran=", 8) == 0) {
      if (std::sscanf(argv[i] + 8, "%dx%d", &largeur, &hauteur) != 2 || largeur < 100 || hauteur < 100) {
        std::fprintf(stderr, "--ecran=LxH attendu, pas %s\n", argv[i]);
        return 2;
      }
      continue;
    }
    argv[n++] = argv[i];
  }
  argc = n;
  // The offscreen platform reads its screens from a file; it lives as long
  // as the program, in the system's temporary folder.
  QTemporaryDir config;
  const QString fichier = config.filePath("ecrans.json");
  FILE* f = std::fopen(QFile::encodeName(fichier).constData(), "w");
  if (!f) return 2;
  std::fprintf(f,
               "{\"screens\": [{\"name\": \"Ecran\", \"x\": 0, \"y\": 0, \"width\": %d, \"height\": %d, "
               "\"logicalDpi\": 96, \"logicalBaseDpi\": 96, \"dpr\": 1}]}\n",
               largeur, hauteur);
  std::fclose(f);
  // Test discovery runs the binary without the test environment.
  qputenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + fichier).toUtf8());
  QApplication app(argc, argv);
  tg::InstallerDialoguesQt();
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new tg::test::DossiersParTest);
  return RUN_ALL_TESTS();
}
