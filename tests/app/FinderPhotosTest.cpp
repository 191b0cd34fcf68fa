// The finder on phone photos and camera RAW files: their extensions are
// offered, the thumbnail comes turned as the photo is shown, the facts give
// the shown size and the metadata pane the EXIF lines.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTemporaryDir>

#include "finder/frmSearch.h"
#include "tests/imaging/FabriqueHeifRaw.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

TEST(FinderPhotos, HeicEtDngAvecVignetteEtExif) {
  test::DialoguesScriptes dlg;
  SessionRecord s;
  QTemporaryDir dossier;
  ASSERT_TRUE(dossier.isValid());
  test::OptionsHeif h;
  h.orientation = heif_orientation_rotate_90_cw;
  h.exif = test::BlocExif({});
  h.vignette = true;
  QString erreur;
  ASSERT_TRUE(test::EcrireHeif(dossier.filePath("telephone.heic"), 256, 128, h, erreur)) << erreur.toStdString();
  test::OptionsDng d;
  d.orientation = 6;
  test::EcrireOctets(dossier.filePath("appareil.dng"), test::Dng(200, 120, d));
  const QString avant = QDir::currentPath();
  QDir::setCurrent(dossier.path());
  QPointer<frmSearch> w = new frmSearch(s, nullptr);
  w->show();
  ASSERT_TRUE(w->AttendreParcours());
  auto* ext = w->findChild<QComboBox*>("combFileExt");
  ASSERT_NE(ext, nullptr);
  struct Cas {
    const char* extension;
    const char* debut;
    const char* modele;
  };
  for (const Cas& c : {Cas{".heic", "Image sélectionnée = telephone.heic\n128 x 256\n", "Model = PHONE-X1"},
                       Cas{".dng", "Image sélectionnée = appareil.dng\n120 x 200\n", "Model = CAMERA-R1"}}) {
    const int i = ext->findText(QLatin1String(c.extension));
    ASSERT_GE(i, 0) << c.extension;
    ext->setCurrentIndex(i);
    emit ext->activated(i);
    ASSERT_TRUE(w->AttendreParcours());
    auto* liste = w->findChild<QListWidget*>("List2");
    ASSERT_EQ(liste->count(), 1) << c.extension;
    liste->setCurrentRow(0);
    ASSERT_TRUE(w->AttendreSelection());
    const QPixmap v = w->findChild<QLabel*>("picVignette")->pixmap();
    EXPECT_FALSE(v.isNull()) << c.extension;
    EXPECT_GT(v.height(), v.width()) << c.extension;  // turned as the photo is shown
    const QString infos = w->findChild<QPlainTextEdit*>("Text4")->toPlainText();
    EXPECT_TRUE(infos.startsWith(QString::fromUtf8(c.debut))) << infos.toStdString();
    const QString exif = w->findChild<QPlainTextEdit*>("txtExif")->toPlainText();
    EXPECT_TRUE(exif.contains(QLatin1String(c.modele))) << exif.toStdString();
  }
  delete w.data();
  QDir::setCurrent(avant);
}

}  // namespace
}  // namespace tg
