// Each effect of the filters window on the largest output picture
// (1152 x 864, 24 bits), alone and as one step the user sees: the effect, then
// the picture converted for the main window's display.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <functional>

#include "imaging/cAdvancedImagery.h"

namespace {

using Effet = std::function<bool(tg::cAdvancedImagery&, tg::Bitmap&)>;

const tg::Bitmap& Photo() {
  static tg::Bitmap photo = [] {
    QImage image(1152, 864, QImage::Format_RGB32);
    uint32_t graine = 7;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x) {
        graine = graine * 1664525u + 1013904223u;
        const int g = int(graine >> 28);
        image.setPixel(x, y, qRgb((x / 5 + g) & 0xFF, (y / 4 + g) & 0xFF, 140 + g));
      }
    tg::cAdvancedImagery ai;
    tg::Bitmap b;
    ai.Convert_PictureToImage(image, b);
    return b;
  }();
  return photo;
}

// `avecAffichage`: the step as shown, conversion for the display included.
void Mesurer(benchmark::State& etat, const Effet& effet, bool avecAffichage) {
  tg::cAdvancedImagery ai;
  tg::Bitmap image;
  QImage affichee;
  for (auto _ : etat) {
    etat.PauseTiming();
    ai.IO_Copy(Photo(), image);
    etat.ResumeTiming();
    if (!effet(ai, image)) etat.SkipWithError(qPrintable(ai.Error_GetLast()));
    if (avecAffichage) ai.Convert_ImageToPicture(image, affichee);
    benchmark::DoNotOptimize(image.Get());
  }
}

#define EFFET(nom, appel)                                                                                 \
  void nom(benchmark::State& etat) {                                                                      \
    Mesurer(etat, [](tg::cAdvancedImagery& ai, tg::Bitmap& b) { return appel; }, etat.range(0) != 0);   \
  }                                                                                                       \
  BENCHMARK(nom)->ArgName("affichage")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)

EFFET(Luminosite, ai.Effect_Brightness(b, 5));
EFFET(Contraste, ai.Effect_Contrast(b, 5));
EFFET(Gamma, ai.Effect_Gamma(b, 1.2));
EFFET(NiveauxDeGris, ai.Effect_Grayscale(b));
EFFET(Inversion, ai.Effect_Invert(b));
EFFET(FlouNormal, ai.Effect_Blur(b, true));
EFFET(FlouPlus, ai.Effect_Blur(b, false));
EFFET(NetteteNormale, ai.Effect_Sharpen(b, true));
EFFET(NettetePlus, ai.Effect_Sharpen(b, false));
EFFET(BasRelief, ai.Effect_Emboss(b, true, false));
EFFET(Gravure, ai.Effect_Etch(b, false, true));
EFFET(FiltreRVB, ai.Effect_RGB_Filter(b, 5, 0, -5));

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
