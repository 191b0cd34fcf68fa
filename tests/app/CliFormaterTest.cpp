// The main road without a window: tessellographe-cli formater.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "imaging/cAdvancedImagery.h"
#include "tests/support/Processus.h"

namespace tg {
namespace {

class CliFormater : public testing::Test {
 protected:
  cAdvancedImagery ai;
  QString source = QDir::current().filePath("photo.jpg");

  void SetUp() override {
    Bitmap b;
    ASSERT_TRUE(ai.IO_CreateImage(b, 2048, 1536, 24));
    for (int i = 0; i < 120; ++i)
      ASSERT_TRUE(ai.MemoryDC_FillRectangle(b, (i * 97) % 2000, (i * 61) % 1500, 40, 30,
                                            (i * 0x0B1C2D) & 0xFFFFFF));
    ASSERT_TRUE(ai.IO_SaveImage(b, source, FormatJPEG, 90));
  }
};

TEST_F(CliFormater, ResizesToTheFormatAndSaves) {
  const QString cible = QDir::current().filePath("sortie.jpg");
  const test::Sortie r = test::Executer(test::Cli(), {"formater", source, cible, "--format", "0"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  Bitmap lu;
  ASSERT_TRUE(ai.IO_LoadImage(cible, lu)) << ai.Error_GetLast().toStdString();
  EXPECT_EQ(ai.Info_Width(lu), 640);
  EXPECT_EQ(ai.Info_Height(lu), 480);
}

TEST_F(CliFormater, RefusesAWeightAboveTheLimitAndBadUsage) {
  const QString cible = QDir::current().filePath("lourd.jpg");
  test::Sortie r =
      test::Executer(test::Cli(), {"formater", source, cible, "--qualite", "100", "--poids-max", "1"});
  EXPECT_EQ(r.code, 3);
  EXPECT_FALSE(r.erreur.isEmpty());
  EXPECT_FALSE(QFile::exists(cible)) << "nothing is written over the limit";

  r = test::Executer(test::Cli(), {"formater", source, cible, "--format", "9"});
  EXPECT_EQ(r.code, 2);
  r = test::Executer(test::Cli(), {"formater", QDir::current().filePath("absent.jpg"), cible});
  EXPECT_EQ(r.code, 3);
}

}  // namespace
}  // namespace tg
