// The annotation window on the largest output picture (1152 x 864): what the
// memory of 200 typical steps holds (lines, arrows, texts, dimensions, a grid
// and a collage), against the size of the 24-bit picture; and the time of one
// mouse move of the rubber line, from the event to the painted window.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <cmath>
#include <memory>

#include "annotation/frmAnnotations2.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/DialoguesSansFenetre.h"

namespace {

constexpr int kLargeur = 1152, kHauteur = 864;
constexpr double kOctetsBitmap = double(kLargeur) * kHauteur * 3;

// A photo-like picture: soft gradients and grain, so that no stroke lands on
// pixels that already have its colour.
QImage Photo() {
  QImage img(kLargeur, kHauteur, QImage::Format_RGB32);
  uint32_t graine = 12345;
  for (int y = 0; y < kHauteur; ++y) {
    auto* ligne = reinterpret_cast<QRgb*>(img.scanLine(y));
    for (int x = 0; x < kLargeur; ++x) {
      graine = graine * 1103515245u + 12345u;
      const int grain = int((graine >> 16) & 15);
      ligne[x] = qRgb(120 + (x * 80 / kLargeur) + grain, 140 + (y * 60 / kHauteur) + grain, 160 - grain);
    }
  }
  return img;
}

struct Banc {
  QTemporaryDir dossier;
  tg::DialoguesSansFenetre dialogues;
  tg::cAdvancedImagery ai;
  tg::SessionRecord s;
  std::unique_ptr<tg::frmAnnotations2> w;

  Banc() {
    qputenv("TESSELLOGRAPHE_HOME", dossier.path().toUtf8());
    ai.Convert_PictureToImage(Photo(), s.ImageCourante);
    s.Largeur = kLargeur;
    s.Hauteur = kHauteur;
    s.EchellePix = "400";
    s.EchelleMic = "100";
    s.MicronsParPixel = 0.25f;
    w = std::make_unique<tg::frmAnnotations2>(s, ai, nullptr);
    w->resize(1600, 1000);
    w->show();
    QApplication::processEvents();
  }
  QWidget* Image() const { return w->findChild<QWidget*>("picImage"); }
  void Mode(int i) const { w->findChild<QRadioButton*>(QStringLiteral("optTexteEtLigne%1").arg(i))->click(); }
  void Souris(QEvent::Type type, QPointF p) const {
    QWidget* img = Image();
    const Qt::MouseButtons boutons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent e(type, p, img->mapToGlobal(p), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, boutons,
                  Qt::NoModifier);
    QApplication::sendEvent(img, &e);
  }
  void Glisser(QPointF a, QPointF b) const {
    Souris(QEvent::MouseButtonPress, a);
    for (int i = 1; i <= 4; ++i) Souris(QEvent::MouseMove, a + (b - a) * i / 4.0);
    Souris(QEvent::MouseButtonRelease, b);
  }
  void Texte(const QString& t) const {
    w->findChild<QLineEdit*>("txtEdition")->setText(t);
    w->findChild<QPushButton*>("cmdDialogueTexte0")->click();
  }
};

// 199 commits through CollerTexte (its limit) and a collage as the 200th.
void MemoireDe200Etapes(benchmark::State& etat) {
  double octets = 0;
  for (auto _ : etat) {
    Banc b;
    int n = 0;
    for (int i = 0; n < 199; ++i) {
      const double x = 60 + (i * 97) % 1000, y = 60 + (i * 61) % 740;
      const double l = 80 + (i * 37) % 400, a = (i * 23 % 360) * 3.14159265358979 / 180;
      const QPointF debut(x, y);
      const QPointF fin(std::clamp(x + l * std::cos(a), 1.0, kLargeur - 2.0),
                        std::clamp(y - l * std::sin(a), 1.0, kHauteur - 2.0));
      switch (i % 5) {
        case 0:
        case 1:  // an arrow
          b.Mode(1);
          b.Glisser(debut, fin);
          break;
        case 2:  // a line and its text
          b.Mode(0);
          b.Glisser(debut, fin);
          b.Texte(QStringLiteral("Frustule %1").arg(i));
          break;
        case 3:  // a dimension
          b.Mode(3);
          b.Glisser(debut, fin);
          break;
        case 4:  // a text alone; every 40 steps it freezes a grid
          if (i % 40 == 4) b.w->findChild<QPushButton*>("cmdGrille0")->click();
          b.Mode(2);
          b.Souris(QEvent::MouseButtonPress, debut);
          b.Souris(QEvent::MouseButtonRelease, debut);
          b.Texte(QStringLiteral("Zone %1").arg(i));
          break;
      }
      n = b.w->NbUndo();
    }
    QImage vignette(240, 180, QImage::Format_RGB32);
    vignette.fill(QColor(30, 90, 200));
    QApplication::clipboard()->setImage(vignette);
    b.w->cmdOuvrirImage(1);
    b.w->CollerPicCollage();
    if (b.w->NbUndo() != 200) etat.SkipWithError("200 steps were not committed");
    octets = double(b.w->Memoire().Octets());
  }
  etat.counters["octets_par_etape"] = octets / 200;
  etat.counters["pct_d_une_copie"] = 100 * octets / 200 / kOctetsBitmap;
}
BENCHMARK(MemoireDe200Etapes)->Iterations(1)->Unit(benchmark::kMillisecond);

// One mouse move with the button down, its repaint included. The end runs
// around the start at `rayon` pixels, so that every move draws a new line.
void RedessinLigneElastique(benchmark::State& etat) {
  Banc b;
  b.Mode(1);
  const QPointF centre(kLargeur / 2.0, kHauteur / 2.0);
  const double rayon = double(etat.range(0));
  b.Souris(QEvent::MouseButtonPress, centre);
  int i = 0;
  for (auto _ : etat) {
    const double a = (i++ % 360) * 3.14159265358979 / 180;
    b.Souris(QEvent::MouseMove, centre + QPointF(rayon * std::cos(a), -rayon * std::sin(a)));
    QApplication::processEvents();
  }
  b.Souris(QEvent::MouseButtonRelease, centre);
}
BENCHMARK(RedessinLigneElastique)->Arg(100)->Arg(420)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
