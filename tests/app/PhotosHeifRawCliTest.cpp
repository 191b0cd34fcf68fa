// Phone photos and camera RAW files through the headless tool under the
// sanitizer build: a HEIC turned a quarter and a DNG format as the window
// would, their EXIF in the comment block (camera, focal length, the size of
// the camera's JPEG); a cut one of either gets the damaged-file message and
// exit 3, writes nothing and stays as it was.
#include <gtest/gtest.h>

#include <QDir>
#include <QImageReader>
#include <QTemporaryDir>

#include "core/Chargement.h"
#include "core/LogiquePrincipale.h"
#include "tests/imaging/FabriqueHeifRaw.h"
#include "tests/support/Processus.h"

namespace tg {
namespace {

using test::Cli;
using test::Executer;

QString Bloc(const QString& jpeg) {
  const test::Sortie r = Executer(Cli(), {"commentaire", "lire", jpeg});
  EXPECT_EQ(r.code, 0) << r.erreur.toStdString();
  return QString::fromUtf8(r.sortie);
}

class PhotosCli : public ::testing::Test {
 protected:
  QTemporaryDir dossier;
  QStringList environnement;
  void SetUp() override {
    ASSERT_TRUE(dossier.isValid());
    QDir().mkpath(dossier.filePath("programme"));
    environnement = {"TESSELLOGRAPHE_HOME=" + dossier.filePath("programme")};
  }
  QString Heic() {
    test::OptionsHeif o;
    o.orientation = heif_orientation_rotate_90_cw;
    o.exif = test::BlocExif({});
    QString erreur;
    const QString chemin = dossier.filePath("telephone.heic");
    EXPECT_TRUE(test::EcrireHeif(chemin, 1280, 960, o, erreur)) << erreur.toStdString();
    return chemin;
  }
  QString Dng() {
    test::OptionsDng o;
    o.exif.largeurJpeg = 1392;
    o.exif.hauteurJpeg = 992;
    const QString chemin = dossier.filePath("appareil.dng");
    test::EcrireOctets(chemin, test::Dng(1400, 1000, o));
    return chemin;
  }
};

TEST_F(PhotosCli, UnHeicTourneEtUnDngSeFormatent) {
  struct Cas {
    QString photo;
    const char* modele;
    const char* focale;
    const char* largeurOrigine;
    const char* largeurFormatee;  // a portrait photo is brought to the format's height
  };
  for (const Cas& c : {Cas{Heic(), "PHONE-X1", "LongueurFocale=4", "LargeurOrigine=960", "LargeurFormater=450"},
                       Cas{Dng(), "CAMERA-R1", "LongueurFocale=50", "LargeurOrigine=1392", "LargeurFormater=800"}}) {
    const QString sortie = c.photo + ".jpg";
    const test::Sortie r = Executer(Cli(), {"formater", c.photo, "-o", sortie}, environnement);
    ASSERT_EQ(r.code, 0) << c.photo.toStdString() << " : " << r.erreur.toStdString();
    EXPECT_EQ(QImageReader(sortie).size().width(), 800);
    const QString bloc = Bloc(sortie);
    EXPECT_TRUE(bloc.contains(QStringLiteral("ApPhoto=") + c.modele)) << bloc.toStdString();
    EXPECT_TRUE(bloc.contains(QLatin1String(c.focale))) << bloc.toStdString();
    EXPECT_TRUE(bloc.contains(QLatin1String(c.largeurOrigine))) << bloc.toStdString();
    EXPECT_TRUE(bloc.contains(QLatin1String(c.largeurFormatee))) << bloc.toStdString();
  }
}

TEST_F(PhotosCli, UnHeicOuUnRawCoupeEstRefuseAvecLeCode3) {
  for (const QString& entier : {Heic(), Dng()}) {
    const QByteArray octets = test::LireOctets(entier);
    const QString chemin = dossier.filePath("coupe-" + QFileInfo(entier).fileName());
    test::EcrireOctets(chemin, octets.left(octets.size() * 2 / 3));
    const QString sortie = dossier.filePath("sortie.jpg");
    for (const QStringList& c : QList<QStringList>{{"formater", chemin, "-o", sortie}, {"echelle", chemin}}) {
      const test::Sortie r = Executer(Cli(), c, environnement);
      const QString erreur = QString::fromUtf8(r.erreur);
      EXPECT_EQ(r.code, 3) << c.join(' ').toStdString() << " : " << erreur.toStdString();
      EXPECT_TRUE(erreur.contains(QStringLiteral("est incomplet"))) << erreur.toStdString();
      EXPECT_FALSE(erreur.contains("Sanitizer") || erreur.contains("runtime error")) << erreur.toStdString();
      EXPECT_FALSE(QFile::exists(sortie));
    }
    EXPECT_EQ(test::LireOctets(chemin), octets.left(octets.size() * 2 / 3));
  }
}

// infos describes a HEIC by its container and the EXIF it holds; a cut one
// by what is left, without a crash.
TEST_F(PhotosCli, InfosDUnHeic) {
  const QString chemin = Heic();
  test::Sortie r = Executer(Cli(), {"infos", chemin}, environnement);
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  const QString texte = QString::fromUtf8(r.sortie);
  EXPECT_TRUE(texte.startsWith(QStringLiteral("Type : HEIF (conteneur ISO, marque heic)"))) << texte.toStdString();
  EXPECT_TRUE(texte.contains(QStringLiteral("Model  format 2 x 9 : PHONE-X1"))) << texte.toStdString();
  EXPECT_TRUE(texte.contains(QStringLiteral("FocalLength  format 5 x 1 : 426/100"))) << texte.toStdString();
  r = Executer(Cli(), {"infos", chemin, "--json"}, environnement);
  EXPECT_TRUE(r.sortie.contains("\"type\": \"HEIF\"")) << r.sortie.toStdString();
  EXPECT_TRUE(r.sortie.contains("PHONE-X1"));
  const QByteArray octets = test::LireOctets(chemin);
  for (qsizetype n : {qsizetype(12), qsizetype(300), octets.size() / 2}) {
    test::EcrireOctets(chemin, octets.left(n));
    r = Executer(Cli(), {"infos", chemin}, environnement);
    EXPECT_TRUE(r.code == 0 || r.code == 3) << n << " : " << r.erreur.toStdString();
    EXPECT_FALSE(r.erreur.contains("Sanitizer") || r.erreur.contains("runtime error")) << r.erreur.toStdString();
  }
}

// The open dialogs offer them: among all supported types and as two entries
// of their own, the first entry still covering every other.
TEST(FiltrePhotos, HeicEtRawDansLesFiltresDuDialogue) {
  const QStringList morceaux = FiltreAvecPhotos(FiltreFichiersImage()).split(u'|');
  ASSERT_EQ(morceaux.size(), 19);  // nine pairs and the closing bar
  EXPECT_TRUE(morceaux.last().isEmpty());
  const QStringList tous = morceaux[1].split(u';');
  QStringList autres;
  for (int i = 3; i < 18; i += 2) autres += morceaux[i].split(u';');
  EXPECT_EQ(QSet<QString>(tous.begin(), tous.end()), QSet<QString>(autres.begin(), autres.end()));
  for (const char* m : {"*.HEIC", "*.AVIF", "*.CR2", "*.CR3", "*.NEF", "*.DNG", "*.ORF", "*.RW2", "*.RAF", "*.ARW"})
    EXPECT_TRUE(tous.contains(QLatin1String(m))) << m;
  EXPECT_TRUE(morceaux[14].startsWith(QStringLiteral("Photos de téléphone")));
  EXPECT_TRUE(morceaux[16].startsWith(QStringLiteral("Fichiers RAW")));
}

}  // namespace
}  // namespace tg
