// Damaged files opened through the main window: the program's own check
// speaks first, in French, and a JPEG cut in its image data opens only if
// the user wants it.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <memory>

#include "core/frmFichierPhoto.h"
#include "core/frmFichierPhotoChargement.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Systeme.h"
#include "tests/support/DialoguesScriptes.h"
#include "tests/support/TiffAppareil.h"

namespace tg {
namespace {

class FichiersAbimes : public testing::Test {
 protected:
  test::DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  std::unique_ptr<frmFichierPhoto> w;

  void SetUp() override {
    s.MessageBox = 1;
    s.ImageAccueil = "0";
    w = std::make_unique<frmFichierPhoto>(s, ai);
    InstallerChargementEtFormats(*w);
  }
  QString Ecrire(const QString& nom, const QByteArray& octets) {
    const QString chemin = RepApplication() + nom;
    QFile f(chemin);
    EXPECT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(octets);
    return chemin;
  }
  QByteArray Jpeg() {
    Bitmap b;
    EXPECT_TRUE(ai.IO_CreateImage(b, 320, 240, 24));
    for (int i = 0; i < 40; ++i) EXPECT_TRUE(ai.MemoryDC_FillRectangle(b, i * 7, i * 5, 60, 40, i * 0x050A0F));
    const QString chemin = RepApplication() + "entier.jpg";
    EXPECT_TRUE(ai.IO_SaveImage(b, chemin, FormatJPEG, 95));
    QFile f(chemin);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    return f.readAll();
  }
};

TEST_F(FichiersAbimes, UnJpegCoupeSOuvreSeulementSiLUtilisateurLeVeut) {
  const QByteArray entier = Jpeg();
  const QString chemin = Ecrire("coupe.jpg", entier.left(entier.size() * 2 / 3));
  dlg.reponses = {Reponse::Non};
  EXPECT_FALSE(ChargerImage(*w, chemin));
  ASSERT_FALSE(dlg.appels.empty());
  EXPECT_TRUE(dlg.Textes().join('\n').contains("est incomplet")) << dlg.Textes().join('\n').toStdString();
  EXPECT_TRUE(s.ImageCourante.Vide());

  dlg.appels.clear();
  dlg.reponses = {Reponse::Oui};
  EXPECT_TRUE(ChargerImage(*w, chemin));
  EXPECT_FALSE(s.ImageCourante.Vide());
  EXPECT_EQ(ai.Info_Width(s.ImageCourante), 320);
}

TEST_F(FichiersAbimes, LesFichiersRefusesDisentPourquoiEnFrancais) {
  struct Cas {
    QString chemin;
    const char* attendu;
  };
  const Cas cas[] = {
      {Ecrire("entete.pcd", QByteArray(4096, '\0')), "est incomplet"},
      {Ecrire("vide.jpg", QByteArray()), "est vide"},
      {RepApplication(), "est un dossier"},
      {Ecrire("texte.png", "ceci n'est pas une image"), "n'est pas une image"},
  };
  for (const Cas& c : cas) {
    dlg.appels.clear();
    EXPECT_FALSE(ChargerImage(*w, c.chemin)) << c.attendu;
    const QString textes = dlg.Textes().join('\n');
    EXPECT_TRUE(textes.contains(QString::fromUtf8(c.attendu))) << textes.toStdString();
    EXPECT_FALSE(textes.contains("Error")) << textes.toStdString();
    EXPECT_TRUE(s.ImageCourante.Vide());
  }
}

// EXIF, GPS, IPTC and an ICC profile, as cameras lay them out: the picture
// and its EXIF are read, and the sanitizers see no read of freed memory.
TEST_F(FichiersAbimes, UnTiffDAppareilSOuvreAvecSonExif) {
  const QString chemin = Ecrire("nikon.tif", test::TiffAppareil(48, 32));
  ASSERT_TRUE(ChargerImage(*w, chemin)) << dlg.Textes().join('\n').toStdString();
  EXPECT_EQ(ai.Info_Width(s.ImageCourante), 48);
  EXPECT_EQ(ai.Info_Height(s.ImageCourante), 32);
  EXPECT_TRUE(s.ExifTexte.contains("Model = NIKON D70")) << s.ExifTexte.toStdString();
  EXPECT_TRUE(s.IptcTexte.contains("FocalLength = 75/10")) << s.IptcTexte.toStdString();
  EXPECT_TRUE(s.IptcTexte.contains("DateTimeOriginal = 2024:01:02 03:04:05"));
}

}  // namespace
}  // namespace tg
