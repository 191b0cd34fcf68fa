// Saving: the weight, the trial file and its comment, the default names.
#include <gtest/gtest.h>

#include <QFile>
#include <QDir>
#include <QFileInfo>
#include <QImage>

#include "core/Enregistrement.h"
#include "core/Session.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Ini.h"
#include "platform/Systeme.h"

namespace tg {
namespace {

struct CasPoids {
  qint64 octets;
  int ko;
};
class Poids : public testing::TestWithParam<CasPoids> {};

TEST_P(Poids, QuotientArrondiPlusUn) { EXPECT_EQ(PoidsKo(GetParam().octets), GetParam().ko); }

INSTANTIATE_TEST_SUITE_P(Tableau, Poids,
                         testing::Values(CasPoids{0, 1}, CasPoids{1024, 2},     // not 1
                                         CasPoids{1535, 2}, CasPoids{1536, 3},  // 1.5 -> 2
                                         CasPoids{2560, 3},                     // 2.5 -> 2
                                         CasPoids{255488, 251},                 // 249.5 -> 250
                                         CasPoids{254976, 250}));

TEST(Poids, LaLimiteAccepteSaPropreValeur) {
  EXPECT_TRUE(PoidsAccepte(250, 250));
  EXPECT_FALSE(PoidsAccepte(251, 250));
  EXPECT_EQ(TexteTropLourd(250),
            "Le fichier image est trop lourd (>250 ko)\nAbaissez la qualité d'image ou modifiez "
            "votre configuration");
}

TEST(Nom, TitreNettoyeOuNumero) {
  SessionRecord s;
  s.TitreImage = QStringLiteral("  Cellule d'Épiderme (x40)  ");
  s.TitreImageConfig = QStringLiteral("1");
  EXPECT_EQ(NomParDefaut(s, EnrJPEG), "cellule_depiderme_x40.jpg");
  EXPECT_EQ(NomParDefaut(s, EnrTIFF), "cellule_depiderme_x40.tif");
  s.TitreImageConfig = QStringLiteral("0");
  s.NomFichImage = QStringLiteral("forum_");
  s.NextNumberImage = 7;
  EXPECT_EQ(NomParDefaut(s, EnrBMP), "forum_007.bmp");
  s.NextNumberImage = 1234;
  EXPECT_EQ(NomParDefaut(s, EnrJPEG), "forum_1234.jpg");
  EXPECT_EQ(FiltreEnregistrement(EnrTIFF), "TIFF (*.tif)|*.tif");
}

TEST(Nom, LeNumeroAvanceSeulementSansLOptionTitre) {
  SessionRecord s;
  s.TitreImageConfig = QStringLiteral("0");
  s.NomFichImage = QStringLiteral("forum_");
  s.NextNumberImage = 1;
  EXPECT_EQ(NomParDefaut(s, EnrJPEG), "forum_001.jpg");
  AvancerNumeroImage(s);
  EXPECT_EQ(NomParDefaut(s, EnrJPEG), "forum_002.jpg");
  EXPECT_EQ(LireIni("General", "NextNumberImage", CheminUserConfig(), ""), "2");
  s.TitreImageConfig = QStringLiteral("1");
  AvancerNumeroImage(s);
  EXPECT_EQ(s.NextNumberImage, 2);
}

TEST(Qualite, LaCleVideEstCompletee) {
  EXPECT_EQ(CompleterQualite("Titre=Diatomée\r\nQualiteJpg=\r\nAuteur=X", 94),
            "Titre=Diatomée\r\nQualiteJpg=94\r\nAuteur=X");
  EXPECT_EQ(CompleterQualite("Titre=X", 94), "Titre=X");  // no key: nothing added
}

class Essai : public testing::Test {
 protected:
  SessionRecord s;
  cAdvancedImagery ai;
  void SetUp() override {
    ASSERT_TRUE(ai.IO_CreateImage(s.ImageCourante, 320, 240, 24));
    ASSERT_TRUE(ai.MemoryDC_FillRectangle(s.ImageCourante, 40, 40, 100, 80, 0x3366CC));
    ReinitialiserSession(s, ai);
    s.CommentaireImage = QStringLiteral("[TG]\r\nTitreImage=Navicula\r\nQualiteJpg=\r\n");
  }
  QByteArray Octets(const QString& chemin) {
    QFile f(chemin);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    return f.readAll();
  }
};

TEST_F(Essai, JpegPorteLeBlocCompleteEtSonPoids) {
  const ResultatEssai r = PreparerResultat(s, ai, EnrJPEG, 90);
  EXPECT_TRUE(r.erreurs.isEmpty()) << r.erreurs.join(" ").toStdString();
  const QString chemin = RepApplication() + "resultat.jpg";
  ASSERT_TRUE(QFileInfo(chemin).isFile());
  const qint64 taille = QFileInfo(chemin).size();
  EXPECT_EQ(r.poids, float((taille + 512) / 1024 + 1));
  EXPECT_EQ(s.PoidsFichier, r.poids);
  EXPECT_TRUE(Octets(chemin).startsWith("\xFF\xD8"));
  Bitmap relu;
  ASSERT_TRUE(ai.IO_LoadImage(chemin, relu));
  QString commentaire;
  ASSERT_TRUE(ai.Metadata_Get_Comments(relu, commentaire));
  EXPECT_EQ(commentaire, "[TG]\r\nTitreImage=Navicula\r\nQualiteJpg=90\r\n");
  EXPECT_EQ(r.commentaire, commentaire);
  // The session keeps its own block with the empty key, for the next trial.
  EXPECT_TRUE(s.CommentaireImage.contains("QualiteJpg=\r\n"));
}

TEST_F(Essai, UneQualiteBasseAllegeLeFichier) {
  const float lourd = PreparerResultat(s, ai, EnrJPEG, 100).poids;
  ASSERT_TRUE(ai.Effect_Resize(s.ImageCourante, 1600, 1200, 3));
  const float grand100 = PreparerResultat(s, ai, EnrJPEG, 100).poids;
  const float grand70 = PreparerResultat(s, ai, EnrJPEG, 70).poids;
  EXPECT_GT(grand100, lourd);
  EXPECT_LT(grand70, grand100);
}

TEST_F(Essai, BmpEtTiffNePortentAucunBloc) {
  // Even a bitmap that carries the block of its source file loses it.
  ASSERT_TRUE(ai.Metadata_Set_Comments(s.ImageCourante, s.CommentaireImage));
  const QString chemin = RepApplication() + "resultat.jpg";
  for (int format : {int(EnrBMP), int(EnrTIFF)}) {
    const ResultatEssai r = PreparerResultat(s, ai, format, 94);
    EXPECT_TRUE(r.erreurs.isEmpty());
    const QByteArray octets = Octets(chemin);
    EXPECT_TRUE(format == EnrBMP ? octets.startsWith("BM")
                                 : (octets.startsWith("II*") || octets.startsWith("MM")));
    EXPECT_FALSE(octets.contains("TitreImage=")) << format;
    EXPECT_FALSE(octets.contains("QualiteJpg")) << format;
    EXPECT_EQ(r.poids, float((octets.size() + 512) / 1024 + 1));
  }
}

TEST_F(Essai, CopieEcraseLaCibleEtRefuseSansEssai) {
  const QString cible = RepApplication() + "copie.jpg";
  EXPECT_FALSE(CopierResultat(cible));  // no trial yet
  QFile f(cible);
  ASSERT_TRUE(f.open(QIODevice::WriteOnly));
  f.write("ancien");
  f.close();
  PreparerResultat(s, ai, EnrJPEG, 94);
  ASSERT_TRUE(CopierResultat(cible));
  EXPECT_EQ(Octets(cible), Octets(RepApplication() + "resultat.jpg"));
  EXPECT_FALSE(CopierResultat(RepApplication() + "absent/copie.jpg"));
  EXPECT_FALSE(CopierResultat(QString()));
}

}  // namespace
}  // namespace tg

namespace tg {
namespace {

// The best quality under the weight limit: within it, the next quality over
// it, 8 trial saves at most; no limit keeps the configured quality.
TEST(QualiteAuto, LaPlusHauteSousLaLimite) {
  QImage img(1152, 864, QImage::Format_RGB32);
  uint32_t g = 11;
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) {
      g = g * 1664525u + 1013904223u;
      img.setPixel(x, y, qRgb((x / 9 + int(g >> 27)) & 0xFF, (y / 7 + int(g >> 28)) & 0xFF, 120));
    }
  cAdvancedImagery ai;
  SessionRecord s;
  ASSERT_TRUE(ai.Convert_PictureToImage(img, s.ImageCourante));
  s.CommentaireImage = QStringLiteral("[Main]\r\nQualiteJpg=\r\n");
  s.PoidsMax = 100;
  const ResultatQualite q = MeilleureQualite(s, ai, 94);
  ASSERT_TRUE(q.trouve) << q.essai.erreurs.join('\n').toStdString();
  EXPECT_LE(q.essais, 8);
  EXPECT_GE(q.qualite, 1);
  EXPECT_LT(q.qualite, 100);
  const qint64 octets = QFileInfo(CheminResultat()).size();
  EXPECT_LE(PoidsKo(octets), 100);
  EXPECT_EQ(q.essai.poids, float(PoidsKo(octets)));
  EXPECT_TRUE(q.essai.commentaire.contains(QStringLiteral("QualiteJpg=%1").arg(q.qualite)));
  // One quality more goes over the limit.
  const ResultatEssai plus = PreparerResultat(s, ai, EnrJPEG, q.qualite + 1);
  EXPECT_GT(plus.poids, 100);
  // No file of a trial is left beside resultat.jpg.
  const QStringList restes = QDir(QFileInfo(CheminResultat()).absolutePath()).entryList({"*.essai*"});
  EXPECT_TRUE(restes.isEmpty()) << restes.join(' ').toStdString();

  s.PoidsMax = 0;
  const ResultatQualite sans = MeilleureQualite(s, ai, 94);
  EXPECT_TRUE(sans.trouve);
  EXPECT_EQ(sans.qualite, 94);
  EXPECT_EQ(sans.essais, 1);

  s.PoidsMax = 1;  // even quality 1 weighs more
  const ResultatQualite aucune = MeilleureQualite(s, ai, 94);
  EXPECT_FALSE(aucune.trouve);
  EXPECT_LE(aucune.essais, 8);
}

}  // namespace
}  // namespace tg
