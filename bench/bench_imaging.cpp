// Timings of the imaging contract on a camera-sized picture (6000 x 4000):
// loading the JPEG, resampling to 800 x 600 with each filter code, saving at
// quality 94. The picture is generated once into a temporary folder.
#include <benchmark/benchmark.h>

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <jpeglib.h>

#include "imaging/cAdvancedImagery.h"

namespace {

struct Donnees {
  QTemporaryDir dossier;
  QString jpeg;
  tg::Bitmap image;
};

// Smooth gradients with some noise, so that the JPEG weighs what a photograph does.
Donnees& Preparer() {
  static Donnees donnees;  // the folder goes at exit
  static const bool prete = [] {
    Donnees* d = &donnees;
    tg::cAdvancedImagery ai;
    QImage image(6000, 4000, QImage::Format_RGB32);
    uint32_t graine = 1;
    for (int y = 0; y < image.height(); ++y) {
      auto* ligne = reinterpret_cast<QRgb*>(image.scanLine(y));
      for (int x = 0; x < image.width(); ++x) {
        graine = graine * 1664525u + 1013904223u;
        const int bruit = static_cast<int>(graine >> 28);
        ligne[x] = qRgb((x / 24 + bruit) & 0xFF, (y / 16 + bruit) & 0xFF, ((x + y) / 40) & 0xFF);
      }
    }
    d->jpeg = d->dossier.filePath("bench.jpg");
    if (!ai.Convert_PictureToImage(image, d->image) || !ai.IO_SaveImage(d->image, d->jpeg, tg::FormatJPEG, 94)) {
      fprintf(stderr, "%s\n", qPrintable(ai.Error_GetLast()));
      std::abort();
    }
    return true;
  }();
  (void)prete;
  return donnees;
}

void Charger(benchmark::State& etat) {
  const QString chemin = Preparer().jpeg;
  tg::cAdvancedImagery ai;
  for (auto _ : etat) {
    tg::Bitmap b;
    if (!ai.IO_LoadImage(chemin, b)) etat.SkipWithError(qPrintable(ai.Error_GetLast()));
    benchmark::DoNotOptimize(b.Get());
  }
}
BENCHMARK(Charger)->Unit(benchmark::kMillisecond);

// Argument: the filter code of Effect_Resize (1 bilinear, 2 B-spline, 3 Lanczos 3, 4 bicubic).
void Redimensionner(benchmark::State& etat) {
  const tg::Bitmap& source = Preparer().image;
  tg::cAdvancedImagery ai;
  for (auto _ : etat) {
    etat.PauseTiming();
    tg::Bitmap b;
    ai.IO_Copy(source, b);
    etat.ResumeTiming();
    if (!ai.Effect_Resize(b, 800, 600, static_cast<int>(etat.range(0))))
      etat.SkipWithError(qPrintable(ai.Error_GetLast()));
    etat.PauseTiming();
    b.Reset();  // the unload of the copy is not timed
    etat.ResumeTiming();
  }
}
BENCHMARK(Redimensionner)->DenseRange(1, 4)->Unit(benchmark::kMillisecond);

// The windows' automatic resize: blocks of 3 x 3 averaged (6000 x 4000 to
// 2000 x 1333, twice the output at least), then Lanczos 3 to 800 x 533.
void RedimensionnerRapide(benchmark::State& etat) {
  const tg::Bitmap& source = Preparer().image;
  tg::cAdvancedImagery ai;
  for (auto _ : etat) {
    etat.PauseTiming();
    tg::Bitmap b;
    ai.IO_Copy(source, b);
    etat.ResumeTiming();
    tg::Bitmap r;
    if (!ai.Effect_ReduireFacteur(b, r, 3) || !ai.Effect_Resize(r, 800, 533, 3))
      etat.SkipWithError(qPrintable(ai.Error_GetLast()));
  }
}
BENCHMARK(RedimensionnerRapide)->Unit(benchmark::kMillisecond);

// The display of a 24 MP picture: the whole converted, or a copy reduced to a
// screen's size (argument: its longer side) then converted.
void Afficher(benchmark::State& etat) {
  const tg::Bitmap& source = Preparer().image;
  tg::cAdvancedImagery ai;
  for (auto _ : etat) {
    QImage image;
    if (etat.range(0) == 0) {
      ai.Convert_ImageToPicture(source, image);
    } else {
      tg::Bitmap reduite;
      if (!ai.Effect_Reduire(source, reduite, int(etat.range(0)))) etat.SkipWithError("no reduced copy");
      ai.Convert_ImageToPicture(reduite, image);
    }
    benchmark::DoNotOptimize(image.bits());
  }
}
BENCHMARK(Afficher)->Arg(0)->Arg(1920)->Unit(benchmark::kMillisecond);

// Loading as the resizing needs it: the JPEG decoded at 1/2 for 800 x 600.
void ChargerReduit(benchmark::State& etat) {
  const QString chemin = Preparer().jpeg;
  tg::cAdvancedImagery ai;
  for (auto _ : etat) {
    tg::Bitmap b;
    int l = 0, h = 0;
    if (!ai.IO_LoadImageReduite(chemin, 1600, 1600, b, l, h)) etat.SkipWithError(qPrintable(ai.Error_GetLast()));
  }
}
BENCHMARK(ChargerReduit)->Unit(benchmark::kMillisecond);

// The headless road's load and resize in one: header, then the JPEG decoded
// at 1/2 straight to 800 x 533 (Lanczos 3 on a second thread).
void ChargerRedimensionne(benchmark::State& etat) {
  const QString chemin = Preparer().jpeg;
  tg::cAdvancedImagery ai;
  for (auto _ : etat) {
    tg::Bitmap entete, b;
    if (!ai.IO_LoadEntete(chemin, entete) || !ai.IO_LoadImageRedimensionnee(chemin, 800, 533, entete, b))
      etat.SkipWithError(qPrintable(ai.Error_GetLast()));
  }
}
BENCHMARK(ChargerRedimensionne)->Unit(benchmark::kMillisecond);

// The floor of the road above: libjpeg alone decoding the same file at 1/2,
// rows thrown away, on one thread.
void DecoderDemiSeul(benchmark::State& etat) {
  const QByteArray chemin = QFile::encodeName(Preparer().jpeg);
  for (auto _ : etat) {
    FILE* f = std::fopen(chemin.constData(), "rb");
    jpeg_decompress_struct c{};
    jpeg_error_mgr e{};
    c.err = jpeg_std_error(&e);
    jpeg_create_decompress(&c);
    jpeg_stdio_src(&c, f);
    jpeg_read_header(&c, TRUE);
    c.scale_num = 1;
    c.scale_denom = 2;
    jpeg_start_decompress(&c);
    std::vector<JSAMPLE> rangs(size_t(c.output_width) * 3 * 16);
    JSAMPROW lignes[16];
    for (int i = 0; i < 16; ++i) lignes[i] = rangs.data() + size_t(c.output_width) * 3 * size_t(i);
    while (c.output_scanline < c.output_height) jpeg_read_scanlines(&c, lignes, 16);
    jpeg_finish_decompress(&c);
    jpeg_destroy_decompress(&c);
    std::fclose(f);
  }
}
BENCHMARK(DecoderDemiSeul)->Unit(benchmark::kMillisecond);

void Enregistrer(benchmark::State& etat) {
  Donnees& d = Preparer();
  const QString chemin = d.dossier.filePath("sortie.jpg");
  tg::cAdvancedImagery ai;
  for (auto _ : etat)
    if (!ai.IO_SaveImage(d.image, chemin, tg::FormatJPEG, 94)) etat.SkipWithError(qPrintable(ai.Error_GetLast()));
}
BENCHMARK(Enregistrer)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
