// A long working session: twenty photos in a row through the real windows in
// one process (open, resize, cartouche, annotation, save, close). Nothing a
// round opens or writes stays after it: no file handle, no temporary file in
// the program folder, the documents folder, TMPDIR or beside the saved files,
// no window.
#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <QThreadPool>
#include <algorithm>
#include <unistd.h>

#include "imaging/cAdvancedImagery.h"
#include "platform/Systeme.h"
#include "tests/app/RouteEnBoucle.h"

namespace tg {
namespace {

// What each open descriptor of the process points at ("pipe:[n]", a path...),
// sorted; the descriptor of the listing itself left out.
QStringList Descripteurs() {
  QStringList cibles;
  const QString propre = QStringLiteral("/proc/%1/fd").arg(getpid());
  for (const QString& nom : QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
    char cible[4096];
    const ssize_t n = readlink(qPrintable("/proc/self/fd/" + nom), cible, sizeof cible - 1);
    if (n <= 0) continue;  // the listing's own descriptor, closed since
    const QString texte = QString::fromLocal8Bit(cible, n);
    if (texte != propre) cibles << texte;
  }
  cibles.sort();
  return cibles;
}

// Every file under `racine`, relative to it, sorted.
QStringList Fichiers(const QString& racine) {
  QStringList r;
  QDirIterator it(racine, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
  while (it.hasNext()) r << QDir(racine).relativeFilePath(it.next());
  r.sort();
  return r;
}

std::string Texte(const QStringList& l) { return l.join('\n').toStdString(); }

QStringList Moins(QStringList a, const QStringList& b) {
  for (const QString& x : b) a.removeOne(x);
  return a;
}

TEST(SessionLongue, VingtPhotosSansDescripteurNiFichierTemporaireLaisse) {
  // The test's own TMPDIR: tests running beside this one write in theirs.
  const QString racine = QDir::currentPath();
  const QByteArray tmpdir = qgetenv("TMPDIR");
  const bool avaitTmpdir = qEnvironmentVariableIsSet("TMPDIR");
  QDir().mkpath(racine + "/tmp");
  qputenv("TMPDIR", (racine + "/tmp").toUtf8());
  struct Remettre {
    QByteArray v;
    bool avait;
    ~Remettre() { avait ? (void)qputenv("TMPDIR", v) : (void)qunsetenv("TMPDIR"); }
  } remettre{tmpdir, avaitTmpdir};
  ASSERT_EQ(QDir::tempPath(), racine + "/tmp");
  ASSERT_TRUE(RepApplication().startsWith(racine));
  ASSERT_TRUE(DossierDocuments().startsWith(racine));

  // A photo of 1200 x 900 with some detail.
  const QString photo = racine + "/photo.jpg";
  {
    cAdvancedImagery ai;
    Bitmap b;
    ASSERT_TRUE(ai.IO_CreateImage(b, 1200, 900, 24));
    for (int i = 0; i < 120; ++i)
      ASSERT_TRUE(ai.MemoryDC_FillRectangle(b, (i * 97) % 1150, (i * 61) % 860, 40, 30, (i * 0x0B1C2D) & 0xFFFFFF));
    ASSERT_TRUE(ai.IO_SaveImage(b, photo, FormatJPEG, 90));
  }
  QDir().mkpath(racine + "/sorties");
  auto sortie = [&](int tour) { return racine + QStringLiteral("/sorties/photo_%1.jpg").arg(tour, 3, 10, QChar('0')); };

  test::RouteEnBoucle route;
  // Each round ends with the thread pool's threads gone, and their descriptors.
  QThreadPool::globalInstance()->waitForDone();
  const QStringList fichiersAvant = Fichiers(racine);
  const QStringList descripteursAvant = Descripteurs();
  QStringList fichiersTour1;
  qsizetype fenetresTour1 = 0;
  for (int tour = 1; tour <= 20; ++tour) {
    const QString echec = route.Tour(photo, sortie(tour));
    ASSERT_TRUE(echec.isEmpty()) << "tour " << tour << " : " << echec.toStdString();
    if (tour == 1) {
      fichiersTour1 = Fichiers(racine);
      fenetresTour1 = QApplication::topLevelWidgets().size();
    }
  }

  // From the first round on, the files are those of the first round and
  // the nineteen saved since.
  QStringList attendus;
  for (int tour = 2; tour <= 20; ++tour) attendus << QDir(racine).relativeFilePath(sortie(tour));
  EXPECT_EQ(Texte(Moins(Fichiers(racine), fichiersTour1)), Texte(attendus));
  // What the first round wrote is the program's own, none a temporary, none in TMPDIR.
  static const QRegularExpression temporaire(QStringLiteral("(^|/)\\.[^/]*$|te?mp|\\.[A-Za-z0-9]{6}$"),
                                             QRegularExpression::CaseInsensitiveOption);
  for (const QString& f : Moins(fichiersTour1, fichiersAvant)) {
    EXPECT_FALSE(f.startsWith("tmp/")) << f.toStdString();
    EXPECT_FALSE(f.contains(temporaire)) << f.toStdString();
  }

  // The descriptors open before the first photo, and those alone.
  EXPECT_EQ(Texte(Descripteurs()), Texte(descripteursAvant));
  EXPECT_EQ(QApplication::topLevelWidgets().size(), fenetresTour1);
  route.w->hide();
}

}  // namespace
}  // namespace tg
