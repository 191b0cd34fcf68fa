// The ruling of a stage micrometer found on a 24-megapixel photo (6000 x
// 4000) on one core: grey as a decoder gives it, 32-bit as the windows hold
// it, a fine ruling whose profile is read at full size, and a photo of cells
// with no ruling, which is refused. The pictures are drawn by the tests'
// drawing of micrometers.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <cmath>

#include "measure/Reglette.h"
#include "tests/measure/ReglettesDessinees.h"

namespace {

using tg::test::DessinReglette;

// 50 graduations 60 pixels apart, turned by 2 degrees, a specimen over a
// third of them, numbers every 10: 3000 pixels of ruling on the photo.
DessinReglette Micrometre(double periode) {
  DessinReglette d;
  d.largeur = 6000;
  d.hauteur = 4000;
  d.periode = periode;
  d.angle = 2;
  d.graduations = int(3000 / periode);
  d.longueur = std::max(24.0, 2.5 * periode);
  d.cy = 2600;
  d.specimen = true;
  return d;
}

const QImage& Photo(int quelle) {
  static const QImage grise = tg::test::Dessiner(Micrometre(60));
  static const QImage couleur = grise.convertToFormat(QImage::Format_RGB32);
  static const QImage fine = tg::test::Dessiner(Micrometre(12));
  static const QImage cellules = tg::test::Leurre(5, 6000, 4000).convertToFormat(QImage::Format_Grayscale8);
  switch (quelle) {
    case 0: return grise;
    case 1: return couleur;
    case 2: return fine;
    default: return cellules;
  }
}

void Trouver(benchmark::State& etat) {
  const QImage& photo = Photo(int(etat.range(0)));
  const tg::VuePixels vue = tg::test::Vue(photo);
  double periode = 0;
  for (auto _ : etat) {
    const tg::ResultatReglette r = tg::TrouverReglette(vue);
    periode = r.reglette ? r.reglette->periode : 0;
    benchmark::DoNotOptimize(periode);
  }
  etat.counters["periode"] = periode;
}
BENCHMARK(Trouver)
    ->ArgName("photo")
    ->Arg(0)   // grey, 60 pixels
    ->Arg(1)   // 32-bit, 60 pixels
    ->Arg(2)   // grey, 12 pixels
    ->Arg(3)   // cells, refused
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
