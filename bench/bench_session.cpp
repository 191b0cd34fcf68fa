// A long working session: the main road through the real windows (open,
// automatic resize, cartouche, an arrow in the annotation window, save,
// close) 100 times in a row in one process on a camera-sized photo (6000 x
// 4000), and the resident memory after rounds 10 and 100. What a session
// keeps from one photo to the next shows as the growth between the two; the
// first rounds fill the caches (fonts, allocator) and are left out. Beside
// the resident memory, what malloc has handed out and not had back.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <cstdio>
#include <malloc.h>
#include <unistd.h>

#include "imaging/cAdvancedImagery.h"
#include "tests/app/RouteEnBoucle.h"

namespace {

// What the program holds through malloc, in MB, whatever the allocator
// keeps for later: it tells a session's own growth from the allocator's.
double VivantMo() {
  const struct mallinfo2 m = mallinfo2();
  return double(m.uordblks + m.hblkhd) / 1e6;
}

// Resident memory of the process in MB (10^6 bytes); 0 when unreadable.
double ResidentMo() {
  long pages = 0, residentes = 0;
  FILE* f = std::fopen("/proc/self/statm", "r");
  if (f == nullptr) return 0;
  const int lus = std::fscanf(f, "%ld %ld", &pages, &residentes);
  std::fclose(f);
  return lus == 2 ? double(residentes) * double(sysconf(_SC_PAGESIZE)) / 1e6 : 0;
}

// Smooth gradients with grain, so that the JPEG weighs what a photograph does.
bool PhotoAppareil(const QString& chemin) {
  QImage image(6000, 4000, QImage::Format_RGB32);
  uint32_t graine = 1;
  for (int y = 0; y < image.height(); ++y) {
    auto* ligne = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      graine = graine * 1664525u + 1013904223u;
      const int grain = int(graine >> 28);
      ligne[x] = qRgb((x / 24 + grain) & 0xFF, (y / 16 + grain) & 0xFF, ((x + y) / 40) & 0xFF);
    }
  }
  return image.save(chemin, "JPEG", 94);
}

void CentTours(benchmark::State& etat) {
  QTemporaryDir dossier;
  const QString photo = dossier.filePath("photo.jpg");
  if (!PhotoAppareil(photo)) {
    etat.SkipWithError("photo non écrite");
    return;
  }
  for (auto _ : etat) {
    tg::test::RouteEnBoucle route;
    double tour10 = 0, tour100 = 0, vivant10 = 0, vivant100 = 0;
    QElapsedTimer chrono;
    chrono.start();
    for (int tour = 1; tour <= 100; ++tour) {
      const QString sortie = dossier.filePath(QStringLiteral("sortie_%1.jpg").arg(tour));
      const QString echec = route.Tour(photo, sortie);
      if (!echec.isEmpty()) {
        etat.SkipWithError(qPrintable(QStringLiteral("tour %1 : ").arg(tour) + echec));
        return;
      }
      QFile::remove(sortie);
      if (tour == 10) {
        tour10 = ResidentMo();
        vivant10 = VivantMo();
      } else if (tour == 100) {
        tour100 = ResidentMo();
        vivant100 = VivantMo();
      }
    }
    etat.counters["ms_par_tour"] = double(chrono.elapsed()) / 100;
    etat.counters["resident_tour10_Mo"] = tour10;
    etat.counters["resident_tour100_Mo"] = tour100;
    etat.counters["croissance_Mo"] = tour100 - tour10;
    etat.counters["vivant_tour10_Mo"] = vivant10;
    etat.counters["vivant_tour100_Mo"] = vivant100;
    route.w->hide();
  }
}
BENCHMARK(CentTours)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

int main(int argc, char** argv) {
  // The program folder, documents and settings of the run, not the user's.
  QTemporaryDir maison;
  QDir().mkpath(maison.filePath("app"));
  QDir().mkpath(maison.filePath("home/Documents"));
  qputenv("TESSELLOGRAPHE_HOME", maison.filePath("app").toUtf8());
  qputenv("HOME", maison.filePath("home").toUtf8());
  qputenv("XDG_CONFIG_HOME", maison.filePath("home/.config").toUtf8());
  qputenv("XDG_DATA_HOME", maison.filePath("home/.local/share").toUtf8());
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
