// Damaged files through the headless tool, run as a script would run it
// under the sanitizer build: a dozen pictures cut at every 97th byte give
// `infos`, `echelle`, `commentaire lire` and `formater` a result or a French
// refusal with exit 3, never a crash or a sanitizer report, and stay as they
// were; a camera TIFF formats with its EXIF.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QStandardPaths>
#include <future>
#include <optional>
#include <unistd.h>

#include "metadata/CExifJPEG.h"
#include "metadata/CJPEG.h"
#include "tests/metadata/Fabrique.h"
#include "tests/support/CliPartage.h"
#include "tests/support/Processus.h"
#include "tests/support/TiffAppareil.h"

namespace tg {
namespace {

using test::Cli;
using test::Executer;

QByteArray Encode(const QImage& image, const char* format, int qualite = -1) {
  QByteArray octets;
  QBuffer tampon(&octets);
  tampon.open(QIODevice::WriteOnly);
  EXPECT_TRUE(image.save(&tampon, format, qualite));
  return octets;
}

QImage Degrade(int l, int h) {
  QImage image(l, h, QImage::Format_RGB32);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < l; ++x) image.setPixel(x, y, qRgb(x * 9 % 256, y * 13 % 256, (x * y) % 256));
  return image;
}

// A JPEG with EXIF and a Canon maker note, as the metadata library writes it.
QByteArray JpegAppareil(int l, int h) {
  meta::CExifJPEG x;
  x.AddModifyTag(meta::Repertoire::IFD0, 0x010F, meta::FmtAscii, QByteArray("Canon\0", 6));
  x.AddModifyTag(meta::Repertoire::IFD0, 0x0110, meta::FmtAscii, QByteArray("Canon EOS\0", 10));
  const QByteArray note = meta::test::U16(false, 1) + meta::test::Entree(false, 0x0006, 2, 4, "IMG\0") +
                          meta::test::U32(false, 0);
  x.AddModifyTag(meta::Repertoire::SubIFD, 0x927C, meta::FmtUndefined, note);
  x.AddModifyTag(meta::Repertoire::SubIFD, 0x920A, meta::FmtRational,
                 meta::test::U32(false, 75) + meta::test::U32(false, 10));
  QByteArray app1;
  EXPECT_TRUE(x.WriteEXIF(app1));
  return meta::test::Inserer(Encode(Degrade(l, h), "JPEG", 80), {app1});
}

QByteArray Psd(int l, int h) {
  auto be16 = [](int v) { return QByteArray(1, char(v >> 8)) + char(v & 0xFF); };
  auto be32 = [&](uint32_t v) { return be16(int(v >> 16)) + be16(int(v & 0xFFFF)); };
  QByteArray p = QByteArray("8BPS") + be16(1) + QByteArray(6, '\0') + be16(3) + be32(h) + be32(l) + be16(8) + be16(3);
  p += be32(0) + be32(0) + be32(0) + be16(0);
  for (int i = 0; i < 3 * l * h; ++i) p += char(i * 7 % 256);
  return p;
}

TEST(FichiersAbimesCli, ImagesCoupeesUnResultatOuUnRefusEnFrancais) {
  QImage texte = Degrade(40, 30);
  texte.setText("Comment", "Navicula sp.");
  const std::vector<std::pair<const char*, QByteArray>> images = {
      {"appareil.jpg", JpegAppareil(48, 32)},
      {"appareil2.jpg", JpegAppareil(24, 40)},
      {"texte.png", Encode(texte, "PNG")},
      {"simple.png", Encode(Degrade(20, 12), "PNG")},
      {"commentaire.gif", meta::test::Gif(true, meta::test::ExtensionCommentaire("Navicula sp."))},
      {"nu.gif", meta::test::Gif(false)},
      {"couleurs.bmp", Encode(Degrade(24, 16), "BMP")},
      {"gris.bmp", Encode(Degrade(16, 8).convertToFormat(QImage::Format_Grayscale8), "BMP")},
      {"appareil.tif", test::TiffAppareil(24, 16)},
      {"petit.tif", test::TiffAppareil(8, 8)},
      {"trois.psd", Psd(20, 14)},
      {"carre.psd", Psd(12, 12)},
  };
  const QString dossier = QDir::currentPath() + "/";
  const QStringList environnement = {"TESSELLOGRAPHE_HOME=" + dossier + "programme"};
  QDir().mkpath(dossier + "programme");
  struct Piece {
    QString chemin, nom;
    QByteArray octets;
  };
  std::vector<Piece> pieces;
  for (const auto& [nom, entier] : images)
    for (qsizetype n = 0; n < entier.size(); n += 97) {
      const QString chemin = dossier + QStringLiteral("%1-%2").arg(n).arg(QLatin1String(nom));
      QFile f(chemin);
      EXPECT_TRUE(f.open(QIODevice::WriteOnly));
      f.write(entier.left(n));
      pieces.push_back({chemin, QStringLiteral("%1 coupé à %2").arg(QLatin1String(nom)).arg(n), entier.left(n)});
    }
  ASSERT_GT(pieces.size(), 80u);
  // The pieces go two at a time: the machine has two cores.
  auto verifier = [&](size_t debut) {
    QStringList fautes;
    for (size_t i = debut; i < pieces.size(); i += 2) {
      const Piece& p = pieces[i];
      const QList<QStringList> commandes = {{"infos", p.chemin},
                                            {"echelle", p.chemin},
                                            {"commentaire", "lire", p.chemin},
                                            {"formater", p.chemin, "-o", p.chemin + ".sortie.jpg"}};
      for (const QStringList& c : commandes) {
        const test::Sortie r = Executer(Cli(), c, environnement);
        const QString erreur = QString::fromUtf8(r.erreur);
        const QString ici = p.nom + " / " + c[0] + " : ";
        if (r.code != 0 && r.code != 3) fautes << ici + "code " + QString::number(r.code) + " " + erreur.left(300);
        if (erreur.contains("Sanitizer") || erreur.contains("runtime error"))
          fautes << ici + erreur.left(300);
        if (r.code == 3 && (erreur.trimmed().isEmpty() || erreur.contains("Error") || erreur.contains("could not")))
          fautes << ici + "refus sans message français : " + erreur.left(200);
      }
      QFile f(p.chemin);
      if (!f.open(QIODevice::ReadOnly) || f.readAll() != p.octets) fautes << p.nom + " : le fichier a changé";
    }
    return fautes;
  };
  auto a = std::async(std::launch::async, verifier, 0);
  auto b = std::async(std::launch::async, verifier, 1);
  const QStringList fautes = a.get() + b.get();
  EXPECT_TRUE(fautes.isEmpty()) << fautes.size() << " fautes, dont :\n" << fautes.mid(0, 10).join('\n').toStdString();
}

TEST(FichiersAbimesCli, JpegCoupeEtPhotoCDReduitASonEnTeteRefuses) {
  const QString dossier = QDir::currentPath() + "/";
  const QStringList environnement = {"TESSELLOGRAPHE_HOME=" + dossier};
  const QByteArray jpeg = Encode(Degrade(320, 240), "JPEG", 90);
  struct Cas {
    const char* nom;
    QByteArray octets;
    const char* attendu;
  };
  const Cas cas[] = {{"coupe.jpg", jpeg.left(jpeg.size() * 2 / 3), "est incomplet"},
                     {"entete.pcd", QByteArray(4096, '\0'), "est incomplet"}};
  for (const Cas& c : cas) {
    const QString chemin = dossier + c.nom;
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(c.octets);
    f.close();
    for (const char* commande : {"formater", "echelle"}) {
      QStringList arguments = {commande, chemin};
      if (QLatin1String(commande) == QLatin1String("formater")) arguments << "-o" << dossier + "sortie.jpg";
      const test::Sortie r = Executer(Cli(), arguments, environnement);
      EXPECT_EQ(r.code, 3) << c.nom << " " << commande;
      EXPECT_TRUE(QString::fromUtf8(r.erreur).contains(QString::fromUtf8(c.attendu)))
          << c.nom << " " << commande << " : " << r.erreur.toStdString();
      EXPECT_FALSE(QFile::exists(dossier + "sortie.jpg"));
    }
    QFile relu(chemin);
    ASSERT_TRUE(relu.open(QIODevice::ReadOnly));
    EXPECT_EQ(relu.readAll(), c.octets);  // the source untouched
  }
}

// A file the user may not read: each command says so, and the file stays.
// (As root, the tool runs as nobody through setpriv, from a copy that nobody
// can reach wherever the build folder lies.)
TEST(FichiersAbimesCli, UnFichierIllisiblePourLUtilisateur) {
  QStringList avant;
  std::optional<test::CliPartage> partage;
  QString cli = Cli();
  if (geteuid() == 0) {
    const QString setpriv = QStandardPaths::findExecutable("setpriv");
    if (setpriv.isEmpty()) GTEST_SKIP() << "setpriv manque (paquet util-linux)";
    avant = {setpriv, "--reuid=65534", "--regid=65534", "--clear-groups"};
    partage.emplace();
    ASSERT_TRUE(partage->Erreur().isEmpty()) << partage->Erreur().toStdString();
    cli = partage->Cli();
  }
  QTemporaryDir dossier(QDir::tempPath() + "/tg-droits-XXXXXX");
  QFile::setPermissions(dossier.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                            QFile::ExeGroup | QFile::ExeOther | QFile::ReadOther);
  const QString chemin = dossier.path() + "/prive.jpg";
  const QByteArray octets = JpegAppareil(32, 24);
  QFile f(chemin);
  ASSERT_TRUE(f.open(QIODevice::WriteOnly));
  f.write(octets);
  f.close();
  QFile::setPermissions(chemin, QFile::WriteOwner);
  for (const QStringList& c : QList<QStringList>{{"infos", chemin},
                                                 {"echelle", chemin},
                                                 {"commentaire", "lire", chemin},
                                                 {"formater", chemin, "-o", dossier.path() + "/sortie.jpg"}}) {
    QStringList ligne = avant;
    ligne << cli << c;
    const test::Sortie r = Executer(ligne.first(), ligne.mid(1), {"TESSELLOGRAPHE_HOME=" + dossier.path()});
    EXPECT_EQ(r.code, 3) << c.join(' ').toStdString() << " : " << r.erreur.toStdString();
    EXPECT_TRUE(QString::fromUtf8(r.erreur).contains("vous n'en avez pas le droit") ||
                QString::fromUtf8(r.erreur).contains("vous n'avez pas le droit de le lire"))
        << c.join(' ').toStdString() << " : " << r.erreur.toStdString();
  }
  QFile::setPermissions(chemin, QFile::ReadOwner | QFile::WriteOwner);
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  EXPECT_EQ(f.readAll(), octets);
}

// EXIF, GPS, IPTC and an ICC profile, as cameras lay them out: formatted
// under the sanitizers, with the camera's EXIF kept in the comment block.
TEST(FichiersAbimesCli, UnTiffDAppareilSeFormateAvecSonExif) {
  const QString dossier = QDir::currentPath() + "/";
  QFile f(dossier + "nikon.tif");
  ASSERT_TRUE(f.open(QIODevice::WriteOnly));
  f.write(test::TiffAppareil(640, 480));
  f.close();
  const test::Sortie r = Executer(Cli(), {"formater", f.fileName(), "-o", dossier + "sortie.jpg", "--pix", "100",
                                          "--mic", "50", "--objectif", "40"},
                                  {"TESSELLOGRAPHE_HOME=" + dossier});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  EXPECT_FALSE(r.erreur.contains("Sanitizer"));
  const test::Sortie infos = Executer(Cli(), {"commentaire", "lire", dossier + "sortie.jpg"});
  EXPECT_TRUE(infos.sortie.contains("NIKON D70")) << infos.sortie.toStdString();
}

}  // namespace
}  // namespace tg
