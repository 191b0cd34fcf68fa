// A JPEG decoded straight to a smaller size, against FreeImage's full decode
// followed by its own Lanczos 3: the reference the direct road replaces.
#include <FreeImage.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <vector>
#include <cmath>

#include "imaging/DecodageJpeg.h"
#include "imaging/cAdvancedImagery.h"

namespace tg {
namespace {

// Detail at several scales and a different colour in each corner, so that a
// flip, a shift of half a pixel or a channel swap costs decibels.
QImage Motif(int l, int h) {
  QImage image(l, h, QImage::Format_RGB32);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < l; ++x) {
      const double r = 128 + 60 * std::sin(x / 23.0) + 50 * double(x) / l - 25;
      const double g = 128 + 60 * std::cos(y / 17.0) + 50 * double(y) / h - 25;
      const double b = 128 + 70 * std::sin((x + 2 * y) / 41.0);
      image.setPixel(x, y, qRgb(int(r), int(g), int(b)));
    }
  return image;
}

double Psnr(FIBITMAP* a, FIBITMAP* b) {
  const int l = int(FreeImage_GetWidth(a)), h = int(FreeImage_GetHeight(a));
  double somme = 0;
  for (int y = 0; y < h; ++y) {
    const BYTE* p = FreeImage_GetScanLine(a, y);
    const BYTE* q = FreeImage_GetScanLine(b, y);
    for (int i = 0; i < 3 * l; ++i) somme += double(p[i] - q[i]) * (p[i] - q[i]);
  }
  return 10 * std::log10(255.0 * 255.0 / (somme / (3.0 * l * h) + 1e-12));
}

QString Enregistrer(const QImage& image, const char* nom) {
  const QString chemin = QDir::current().filePath(QString::fromLatin1(nom));
  EXPECT_TRUE(image.save(chemin, "JPG", 95));
  return chemin;
}

// Each output sample's weights sum to 1 and stay inside the input; the
// window is centred, so samples at mirrored places get mirrored weights.
TEST(DecodageJpeg, PoidsLanczosNormesCentresEtDansLEntree) {
  for (const auto& [entree, sortie] : {std::pair{3000, 800}, {1201, 300}, {601, 600}, {17, 5}}) {
    const TablePoids t = CalculerPoidsLanczos(entree, sortie);
    ASSERT_EQ(int(t.echantillons.size()), sortie);
    int plusLarge = 0;
    for (int u = 0; u < sortie; ++u) {
      const PoidsLanczos& p = t.echantillons[size_t(u)];
      ASSERT_GE(p.premier, 0);
      ASSERT_LE(p.premier + p.nombre, entree);
      double somme = 0;
      for (int k = 0; k < p.nombre; ++k) somme += t.poids[size_t(p.debut + k)];
      EXPECT_NEAR(somme, 1.0, 1e-5) << entree << " -> " << sortie << ", " << u;
      plusLarge = std::max(plusLarge, p.nombre);
      const PoidsLanczos& miroir = t.echantillons[size_t(sortie - 1 - u)];
      ASSERT_EQ(p.nombre, miroir.nombre) << entree << " -> " << sortie << ", " << u;
      EXPECT_EQ(p.premier, entree - miroir.premier - miroir.nombre);
      for (int k = 0; k < p.nombre; ++k)
        EXPECT_NEAR(t.poids[size_t(p.debut + k)], t.poids[size_t(miroir.debut + miroir.nombre - 1 - k)], 1e-6);
    }
    EXPECT_EQ(t.fenetreMax, plusLarge);
    // Lanczos 3 reaches 3 output samples each side.
    EXPECT_LE(t.fenetreMax, 2 * int(std::ceil(3.0 * entree / sortie)) + 1);
  }
}

// At 1/2 (1203 / 2 leaves twice 300, and 1/4 would leave 1.875 times
// 160 x 120, which aliases) and without a DCT scale (700 from 1203), sizes
// not multiples of 8: within a JPEG save of the reference.
TEST(DecodageJpeg, CommeLeDecodageCompletPuisLanczos) {
  const QString chemin = Enregistrer(Motif(1203, 901), "motif.jpg");
  FIBITMAP* complet = FreeImage_Load(FIF_JPEG, QFile::encodeName(chemin).constData(), 0);
  ASSERT_NE(complet, nullptr);
  for (const auto& [l, h] : {std::pair{300, 225}, {160, 120}, {700, 524}, {1202, 900}}) {
    QString erreur;
    FIBITMAP* direct = DecoderJpegRedimensionne(chemin, l, h, erreur);
    ASSERT_NE(direct, nullptr) << erreur.toStdString();
    FIBITMAP* reference = FreeImage_Rescale(complet, l, h, FILTER_LANCZOS3);
    EXPECT_EQ(int(FreeImage_GetWidth(direct)), l);
    EXPECT_EQ(int(FreeImage_GetHeight(direct)), h);
    EXPECT_EQ(FreeImage_GetBPP(direct), 24u);
    EXPECT_GT(Psnr(direct, reference), 40) << l << " x " << h;
    FreeImage_Unload(reference);
    FreeImage_Unload(direct);
  }
  FreeImage_Unload(complet);
}

// What cameras and other encoders write: every chroma sampling, progressive
// scans, restart markers, RGB without a colour transform; cjpeg makes them
// from the same pixels.
TEST(DecodageJpeg, EchantillonnagesProgressifRedemarragesEtRGB) {
  const QString ppm = QDir::current().filePath("motif.ppm");
  ASSERT_TRUE(Motif(1203, 901).save(ppm, "PPM"));
  const std::vector<QStringList> variantes = {{"-sample", "1x1"}, {"-sample", "2x1"},    {"-sample", "2x2"},
                                              {"-progressive"},   {"-restart", "1"},     {"-rgb"},
                                              {"-sample", "1x2"}, {"-optimize", "-sample", "2x2"}};
  for (const QStringList& v : variantes) {
    const QString jpeg = QDir::current().filePath("variante.jpg");
    QProcess cjpeg;
    cjpeg.start("cjpeg", v + QStringList{"-quality", "95", "-outfile", jpeg, ppm});
    ASSERT_TRUE(cjpeg.waitForFinished(20000) && cjpeg.exitCode() == 0) << v.join(' ').toStdString();
    FIBITMAP* complet = FreeImage_Load(FIF_JPEG, QFile::encodeName(jpeg).constData(), 0);
    ASSERT_NE(complet, nullptr) << v.join(' ').toStdString();
    QString erreur;
    FIBITMAP* direct = DecoderJpegRedimensionne(jpeg, 300, 225, erreur);
    ASSERT_NE(direct, nullptr) << v.join(' ').toStdString() << " " << erreur.toStdString();
    FIBITMAP* reference = FreeImage_Rescale(complet, 300, 225, FILTER_LANCZOS3);
    EXPECT_GT(Psnr(direct, reference), 40) << v.join(' ').toStdString();
    FreeImage_Unload(reference);
    FreeImage_Unload(direct);
    FreeImage_Unload(complet);
  }
}

// What the direct road does not take comes back empty with a reason, never a
// crash: a grey file, an output not smaller, a missing file, a
// damaged header.
TEST(DecodageJpeg, RefusePlutotQueDeviner) {
  QString erreur;
  const QString gris = Enregistrer(Motif(640, 480).convertToFormat(QImage::Format_Grayscale8), "gris.jpg");
  EXPECT_EQ(DecoderJpegRedimensionne(gris, 100, 75, erreur), nullptr);
  EXPECT_FALSE(erreur.isEmpty());
  const QString couleur = Enregistrer(Motif(640, 480), "couleur.jpg");
  EXPECT_EQ(DecoderJpegRedimensionne(couleur, 640, 300, erreur), nullptr);
  EXPECT_EQ(DecoderJpegRedimensionne(couleur, 0, 0, erreur), nullptr);
  EXPECT_EQ(DecoderJpegRedimensionne(QDir::current().filePath("absent.jpg"), 100, 75, erreur), nullptr);
  EXPECT_FALSE(erreur.isEmpty());

  QFile f(couleur);
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  QByteArray octets = f.readAll();
  f.close();
  // The frame header's component count set to 7: refused by the decoder itself.
  const int sof = octets.indexOf("\xFF\xC0");
  ASSERT_GT(sof, 0);
  octets[sof + 9] = 7;
  const QString abime = QDir::current().filePath("abime.jpg");
  QFile g(abime);
  ASSERT_TRUE(g.open(QIODevice::WriteOnly));
  g.write(octets);
  g.close();
  EXPECT_EQ(DecoderJpegRedimensionne(abime, 100, 75, erreur), nullptr);
  EXPECT_FALSE(erreur.isEmpty());
}

// Through the contract: a header with its metadata and no pixels, then the
// picture at the output size carrying the same metadata.
TEST(DecodageJpeg, EnteteSansPixelsPuisImageAvecSesMetadonnees) {
  cAdvancedImagery ai;
  Bitmap image;
  ASSERT_TRUE(ai.Convert_PictureToImage(Motif(1203, 901), image));
  ASSERT_TRUE(ai.Metadata_Set_Comments(image, QStringLiteral("Échelle 4 µm")));
  const QString chemin = QDir::current().filePath("commente.jpg");
  ASSERT_TRUE(ai.IO_SaveImage(image, chemin, FormatJPEG, 95));

  Bitmap entete;
  ASSERT_TRUE(ai.IO_LoadEntete(chemin, entete));
  EXPECT_FALSE(ai.Info_Pixels(entete));
  EXPECT_EQ(ai.Info_Width(entete), 1203);
  EXPECT_EQ(ai.Info_Height(entete), 901);
  QString commentaire;
  ASSERT_TRUE(ai.Metadata_Get_Comments(entete, commentaire));
  EXPECT_EQ(commentaire, QStringLiteral("Échelle 4 µm"));
  // Nothing that needs pixels takes a header.
  Bitmap copie;
  EXPECT_FALSE(ai.IO_Copy(entete, copie));

  Bitmap petite;
  ASSERT_TRUE(ai.IO_LoadImageRedimensionnee(chemin, 300, 225, entete, petite)) << ai.Error_GetLast().toStdString();
  EXPECT_TRUE(ai.Info_Pixels(petite));
  EXPECT_EQ(ai.Info_Width(petite), 300);
  ASSERT_TRUE(ai.Metadata_Get_Comments(petite, commentaire));
  EXPECT_EQ(commentaire, QStringLiteral("Échelle 4 µm"));

  // Less than twice the output: left to the whole decode, whose pixels the
  // windows give.
  EXPECT_FALSE(ai.IO_LoadImageRedimensionnee(chemin, 602, 450, entete, petite));
  EXPECT_TRUE(petite.Vide());

  // Other files load whole.
  const QString png = QDir::current().filePath("motif.png");
  ASSERT_TRUE(Motif(300, 200).save(png));
  ASSERT_TRUE(ai.IO_LoadEntete(png, entete));
  EXPECT_TRUE(ai.Info_Pixels(entete));
}

}  // namespace
}  // namespace tg
