// libheif and LibRaw are opened at the first HEIF or RAW read. When one is
// missing, or the file found under its name is not that library, the read is
// refused with a French message naming it and its Debian package, not a
// crash; once the library is back, the same file reads again.
#include <FreeImage.h>
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <cstring>
#include <memory>

#include "imaging/BibliothequeDynamique.h"
#include "imaging/LecteurHEIF.h"
#include "imaging/LecteurRAW.h"
#include "imaging/cAdvancedImagery.h"
#include "tests/imaging/FabriqueHeifRaw.h"

namespace tg {
namespace {

using Liberer = std::unique_ptr<FIBITMAP, void (*)(FIBITMAP*)>;

TEST(BibliothequeDynamique, UneAbsenteEstNommeeAvecSonPaquetEtUneFonctionAbsenteParSonNom) {
  BibliothequeDynamique absente("libtg-absente.so.7", "libtg-absente7");
  QString erreur;
  EXPECT_FALSE(absente.Ouvrir(erreur));
  EXPECT_TRUE(erreur.startsWith(QStringLiteral("La bibliothèque libtg-absente.so.7 (paquet libtg-absente7) manque")))
      << erreur.toStdString();
  // Asked again, the same answer, and no address from it.
  QString encore;
  void (*f)() = reinterpret_cast<void (*)()>(&std::strlen);
  EXPECT_FALSE(absente.Lier(f, "strlen", encore));
  EXPECT_EQ(f, nullptr);
  EXPECT_EQ(encore, erreur);

  // A library that is there: the function asked for, by its name, and a refusal naming a function it lacks.
  BibliothequeDynamique libc("libc.so.6", "libc6");
  size_t (*longueur)(const char*) = nullptr;
  ASSERT_TRUE(libc.Lier(longueur, "strlen", erreur)) << erreur.toStdString();
  EXPECT_EQ(longueur("quatre"), 6u);
  int (*rien)() = nullptr;
  EXPECT_FALSE(libc.Lier(rien, "tg_fonction_absente", erreur));
  EXPECT_EQ(rien, nullptr);
  EXPECT_TRUE(erreur.contains(QStringLiteral("libc.so.6 n'a pas la fonction tg_fonction_absente")))
      << erreur.toStdString();
}

// The reads look for the library under another name while it lives; the
// name the build found afterwards, even when an assertion stops the test.
class Remplacement {
 public:
  using Choix = void (*)(const char*, const char*);
  Remplacement(Choix choisir, const char* soname, const char* paquet) : choisir_(choisir) {
    choisir_(soname, paquet);
  }
  ~Remplacement() { choisir_(nullptr, nullptr); }
  Remplacement(const Remplacement&) = delete;
  Remplacement& operator=(const Remplacement&) = delete;

 private:
  Choix choisir_;
};

class DecodeurAbsent : public ::testing::Test {
 protected:
  QTemporaryDir dossier;
  cAdvancedImagery ai;

  QString Heic() {
    test::OptionsHeif o;
    o.vignette = true;
    o.exif = test::BlocExif({});
    const QString chemin = dossier.filePath("photo.heic");
    QString erreur;
    EXPECT_TRUE(test::EcrireHeif(chemin, 64, 48, o, erreur)) << erreur.toStdString();
    return chemin;
  }
  QString Dng() {
    const QString chemin = dossier.filePath("photo.dng");
    test::EcrireOctets(chemin, test::Dng(100, 68, {}));
    return chemin;
  }
};

TEST_F(DecodeurAbsent, UnHeicEstRefuseEnNommantLibheifPuisLuQuandElleRevient) {
  const QString chemin = Heic();
  const QString attendu = QStringLiteral("La bibliothèque libheif-absente.so.9 (paquet libheif-absent9) manque");
  {
    const Remplacement absente(BibliothequeHEIFPourEssais, "libheif-absente.so.9", "libheif-absent9");
    QString erreur;
    EXPECT_EQ(LireHEIF(chemin, erreur), nullptr);
    EXPECT_TRUE(erreur.startsWith(attendu)) << erreur.toStdString();
    erreur.clear();
    EXPECT_EQ(LireHEIF(chemin, erreur, false), nullptr);  // the header alone needs it too
    EXPECT_TRUE(erreur.startsWith(attendu)) << erreur.toStdString();
    erreur.clear();
    EXPECT_TRUE(VignetteHEIF(chemin, 32, erreur).isNull());
    EXPECT_TRUE(erreur.startsWith(attendu)) << erreur.toStdString();
    // What the user is shown when opening the photo.
    Bitmap image;
    EXPECT_FALSE(ai.IO_LoadImage(chemin, image));
    EXPECT_TRUE(ai.Error_GetLast().startsWith(attendu)) << ai.Error_GetLast().toStdString();
  }
  {
    // A library of that name that is not libheif.
    const Remplacement autre(BibliothequeHEIFPourEssais, "libc.so.6", "libc6");
    QString erreur;
    EXPECT_EQ(LireHEIF(chemin, erreur), nullptr);
    EXPECT_TRUE(erreur.contains(QStringLiteral("libc.so.6 n'a pas la fonction heif_"))) << erreur.toStdString();
  }
  QString erreur;
  const Liberer lu(LireHEIF(chemin, erreur), FreeImage_Unload);
  ASSERT_TRUE(lu) << erreur.toStdString();
  EXPECT_EQ(FreeImage_GetWidth(lu.get()), 64u);
  EXPECT_EQ(FreeImage_GetHeight(lu.get()), 48u);
  EXPECT_FALSE(VignetteHEIF(chemin, 32, erreur).isNull()) << erreur.toStdString();
}

TEST_F(DecodeurAbsent, UnRawEstRefuseEnNommantLibRawPuisLuQuandElleRevient) {
  const QString chemin = Dng();
  const QString attendu = QStringLiteral("La bibliothèque libraw-absente.so.3 (paquet libraw-absent3) manque");
  int l = -1, h = -1;
  {
    const Remplacement absente(BibliothequeRAWPourEssais, "libraw-absente.so.3", "libraw-absent3");
    QString erreur;
    EXPECT_EQ(LireRAW(chemin, 1, l, h, erreur), nullptr);
    EXPECT_TRUE(erreur.startsWith(attendu)) << erreur.toStdString();
    EXPECT_EQ(l, 0);
    EXPECT_EQ(h, 0);
    erreur.clear();
    EXPECT_EQ(LireRAW(chemin, 2, l, h, erreur, false), nullptr);
    EXPECT_TRUE(erreur.startsWith(attendu)) << erreur.toStdString();
    erreur.clear();
    EXPECT_TRUE(VignetteRAW(chemin, 32, erreur).isNull());
    EXPECT_TRUE(erreur.startsWith(attendu)) << erreur.toStdString();
    Bitmap image;
    EXPECT_FALSE(ai.IO_LoadImage(chemin, image));
    EXPECT_TRUE(ai.Error_GetLast().startsWith(attendu)) << ai.Error_GetLast().toStdString();
  }
  {
    const Remplacement autre(BibliothequeRAWPourEssais, "libc.so.6", "libc6");
    QString erreur;
    EXPECT_EQ(LireRAW(chemin, 1, l, h, erreur), nullptr);
    EXPECT_TRUE(erreur.contains(QStringLiteral("libc.so.6 n'a pas la fonction libraw_"))) << erreur.toStdString();
  }
  QString erreur;
  const Liberer lu(LireRAW(chemin, 1, l, h, erreur), FreeImage_Unload);
  ASSERT_TRUE(lu) << erreur.toStdString();
  EXPECT_EQ(FreeImage_GetWidth(lu.get()), 100u);
  EXPECT_EQ(FreeImage_GetHeight(lu.get()), 68u);
  EXPECT_FALSE(VignetteRAW(chemin, 32, erreur).isNull()) << erreur.toStdString();
}

}  // namespace
}  // namespace tg
