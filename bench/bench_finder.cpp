// The finder: a walk over 5,000 files in nested folders, and the thumbnail
// of a 24 MP camera JPEG (6000 x 4000) at 193 pixels.
#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>
#include <atomic>

#include "finder/Recherche.h"
#include "imaging/cAdvancedImagery.h"

namespace {

QTemporaryDir& Dossier() {
  static QTemporaryDir d;
  return d;
}

// 50 folders, five levels deep in ten branches, 100 files each (90 .jpg, 10 .txt).
QString Arbre() {
  static const QString racine = [] {
    const QString r = Dossier().filePath("arbre");
    for (int b = 0; b < 10; ++b) {
      QString chemin = r;
      for (int n = 0; n < 5; ++n) {
        chemin += QStringLiteral("/d%1_%2").arg(b).arg(n);
        QDir().mkpath(chemin);
        for (int f = 0; f < 100; ++f) {
          QFile fichier(chemin + QStringLiteral("/p%1.%2").arg(f).arg(f % 10 == 0 ? "txt" : "jpg"));
          fichier.open(QIODevice::WriteOnly);
        }
      }
    }
    return r + "/";
  }();
  return racine;
}

QString Photo24MP() {
  static const QString chemin = [] {
    QImage image(6000, 4000, QImage::Format_RGB32);
    uint32_t graine = 3;
    for (int y = 0; y < image.height(); ++y) {
      auto* ligne = reinterpret_cast<QRgb*>(image.scanLine(y));
      for (int x = 0; x < image.width(); ++x) {
        graine = graine * 1664525u + 1013904223u;
        const int g = int(graine >> 28);
        ligne[x] = qRgb((x / 24 + g) & 0xFF, (y / 16 + g) & 0xFF, ((x + y) / 40) & 0xFF);
      }
    }
    const QString c = Dossier().filePath("photo24.jpg");
    image.save(c, "JPG", 92);
    return c;
  }();
  return chemin;
}

void Parcours5000Fichiers(benchmark::State& etat) {
  const QString racine = Arbre();
  const QRegularExpression motif = tg::MotifRecherche("*", ".jpg");
  std::atomic<bool> arret{false};
  for (auto _ : etat) {
    tg::ResultatParcours r;
    tg::ParcourirDossier(racine, motif, true, arret, r);
    if (r.compte != 4500) etat.SkipWithError("4,500 pictures were not all found");
  }
}
BENCHMARK(Parcours5000Fichiers)->Unit(benchmark::kMillisecond);

void Vignette24MP(benchmark::State& etat) {
  const QString chemin = Photo24MP();
  tg::cAdvancedImagery ai;
  for (auto _ : etat) {
    QImage v;
    if (!ai.IO_LoadThumbnail(chemin, 193, v) || v.width() != 193) etat.SkipWithError("thumbnail not made");
  }
}
BENCHMARK(Vignette24MP)->Unit(benchmark::kMillisecond);

void Entete24MP(benchmark::State& etat) {
  const QString chemin = Photo24MP();
  tg::cAdvancedImagery ai;
  for (auto _ : etat) {
    tg::InfosImage infos;
    if (!ai.Info_File(chemin, infos) || infos.largeur != 6000) etat.SkipWithError("header not read");
  }
}
BENCHMARK(Entete24MP)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
