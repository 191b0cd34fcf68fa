// Timings of the cartouche's part of the main road at the usual output
// sizes: drawing the 3-line cartouche, composing the final picture from its
// three layers, and the trial JPEG save at quality 94 with the comment block.
#include <benchmark/benchmark.h>

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>

#include "cartouche/ImageFinale.h"
#include "cartouche/RenduCartouche.h"
#include "core/Enregistrement.h"
#include "core/SessionRecord.h"
#include "imaging/cAdvancedImagery.h"

namespace {

constexpr int kLargeurs[] = {640, 800, 1152};

tg::ValeursCartouche Valeurs(int largeur) {
  tg::ValeursCartouche v;
  v.largeur = largeur;
  v.hauteur = 60;
  v.echelleVisible = true;
  v.echellePixels = 70.423f;
  v.longueur = 50;
  v.objectif = "40";
  v.reductionAffichee = 2.8f;
  v.microscope = "Micro-A";
  v.modele = "APN-Demo";
  v.choixChamp.fill(true);
  v.policeTitre = QFont("Liberation Sans", 10, QFont::Bold);
  v.policeSousTitre = QFont("Liberation Sans", 8);
  v.largeurFormatee = largeur;
  v.apnLargCourant = largeur;
  v.titre = "Navicula sp.";
  v.eclairage = "Fond clair";
  v.montage = "Eau";
  v.coloration = "Aucune";
  v.auteur = "A. Nonyme";
  v.dateTexte = "02/03/2008";
  return v;
}

// A formatted photo: gradients and noise, as a JPEG of a photo would hold.
QImage Photo(int largeur, int hauteur) {
  QImage image(largeur, hauteur, QImage::Format_RGB32);
  uint32_t graine = 7;
  for (int y = 0; y < hauteur; ++y) {
    auto* ligne = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < largeur; ++x) {
      graine = graine * 1664525u + 1013904223u;
      const int bruit = int(graine >> 28);
      ligne[x] = qRgb((x / 4 + bruit) & 0xFF, (y / 3 + bruit) & 0xFF, ((x + y) / 8) & 0xFF);
    }
  }
  return image;
}

void DessinerCartouche(benchmark::State& etat) {
  const tg::ValeursCartouche v = Valeurs(int(etat.range(0)));
  QImage canevas;
  for (auto _ : etat) {
    tg::DessinerCartouche(canevas, v);
    benchmark::DoNotOptimize(canevas.constBits());
  }
}
BENCHMARK(DessinerCartouche)->Arg(640)->Arg(800)->Arg(1152)->Unit(benchmark::kMillisecond);

void ConstruireImageFinal(benchmark::State& etat) {
  const int largeur = int(etat.range(0)), hauteur = largeur * 3 / 4;
  tg::cAdvancedImagery ai;
  QImage cartouche;
  tg::DessinerCartouche(cartouche, Valeurs(largeur));
  tg::ParamsImageFinale p;
  p.largeurFond = largeur;
  p.hauteurFond = hauteur + 60;
  p.hauteurCartouche = 60;
  p.cadrageFormate = float(largeur) / float(hauteur);
  const QImage photo = Photo(largeur, hauteur);
  for (auto _ : etat) {
    etat.PauseTiming();
    tg::Bitmap image, sortie;
    ai.Convert_PictureToImage(photo, image);
    int l = largeur, h = hauteur;
    QStringList messages;
    etat.ResumeTiming();
    if (!tg::ConstruireImageFinal(ai, image, l, h, Qt::white, cartouche, Qt::white, p, sortie, messages))
      etat.SkipWithError("ConstruireImageFinal");
  }
}
BENCHMARK(ConstruireImageFinal)->Arg(640)->Arg(800)->Arg(1152)->Unit(benchmark::kMillisecond);

void EssaiJpeg94(benchmark::State& etat) {
  const int largeur = int(etat.range(0)), hauteur = largeur * 3 / 4 + 60;
  QTemporaryDir dossier;
  qputenv("TESSELLOGRAPHE_HOME", QDir(dossier.path()).filePath("programme/").toLocal8Bit());
  tg::cAdvancedImagery ai;
  tg::SessionRecord s;
  ai.Convert_PictureToImage(Photo(largeur, hauteur), s.ImageCourante);
  s.CommentaireImage = "[Main]\r\nTitreImage=Navicula sp.\r\n[TNum]\r\nQualiteJpg=\r\n";
  for (auto _ : etat) {
    const tg::ResultatEssai r = tg::PreparerResultat(s, ai, tg::EnrJPEG, 94);
    if (!r.erreurs.isEmpty()) etat.SkipWithError("PreparerResultat");
    etat.counters["ko"] = r.poids;
  }
}
BENCHMARK(EssaiJpeg94)->Arg(640)->Arg(800)->Arg(1152)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
