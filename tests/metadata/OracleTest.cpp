// Real peers as oracles: exiftool reads what the library writes, djpeg
// decodes the pictures it rewrites; the commands of the headless tool are
// driven as a script would.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>

#include "metadata/CExifJPEG.h"
#include "metadata/CommandesMeta.h"
#include "tests/metadata/Fabrique.h"

namespace tg::meta {
namespace {

using namespace test;

QByteArray Executer(const QString& programme, const QStringList& arguments) {
  QProcess p;
  p.start(programme, arguments);
  EXPECT_TRUE(p.waitForFinished(60000)) << programme.toStdString();
  EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
  return p.readAllStandardOutput();
}

bool Present(const char* programme) {
  return !QStandardPaths::findExecutable(QLatin1String(programme)).isEmpty();
}

// exiftool's view of every tag, "Groupe:Nom" -> value, numbers unformatted.
QJsonObject VueExiftool(const QString& chemin) {
  const QJsonArray a =
      QJsonDocument::fromJson(Executer("exiftool", {"-j", "-a", "-G1", "-n", chemin})).array();
  return a.isEmpty() ? QJsonObject() : a[0].toObject();
}

QJsonObject EntreesExif(const QJsonObject& vue) {
  QJsonObject r;
  for (auto it = vue.begin(); it != vue.end(); ++it)
    for (const char* g : {"IFD0:", "IFD1:", "ExifIFD:", "GPS:", "InteropIFD:"})
      if (it.key().startsWith(QLatin1String(g))) r[it.key()] = it.value();
  return r;
}

QByteArray Rationnel(uint32_t n, uint32_t d) {
  return U32(false, n) + U32(false, d);  // held little-endian
}

// A picture with EXIF in every directory and a thumbnail, built by the
// library's writer in the given order.
QByteArray JpegAvecExif(bool mm) {
  CExifJPEG x;
  x.alignType = mm ? Ordre::Motorola : Ordre::Intel;
  x.AddModifyTag(Repertoire::IFD0, 0x010F, FmtAscii, QByteArray("Canon\0", 6));
  x.AddModifyTag(Repertoire::IFD0, 0x0110, FmtAscii, QByteArray("Canon EOS 5D\0", 13));
  x.AddModifyTag(Repertoire::IFD0, 0x0112, FmtShort, U16(false, 6));
  x.AddModifyTag(Repertoire::IFD0, 0x011A, FmtRational, Rationnel(72, 1));
  x.AddModifyTag(Repertoire::IFD0, 0x011B, FmtRational, Rationnel(300, 2));
  x.AddModifyTag(Repertoire::IFD0, 0x0128, FmtShort, U16(false, 2));
  x.AddModifyTag(Repertoire::SubIFD, 0x829A, FmtRational, Rationnel(1, 200));
  x.AddModifyTag(Repertoire::SubIFD, 0x829D, FmtRational, Rationnel(56, 10));
  x.AddModifyTag(Repertoire::SubIFD, 0x8827, FmtShort, U16(false, 400));
  x.AddModifyTag(Repertoire::SubIFD, 0x9003, FmtAscii, QByteArray("2024:01:02 03:04:05\0", 20));
  x.AddModifyTag(Repertoire::SubIFD, 0x920A, FmtRational, Rationnel(75, 10));
  x.AddModifyTag(Repertoire::SubIFD, 0x9204, FmtSRational,
                 U32(false, uint32_t(-1)) + U32(false, 3));
  x.AddModifyTag(Repertoire::Interop, 0x0001, FmtAscii, QByteArray("R98\0", 4));
  x.AddModifyTag(Repertoire::GPS, 0x0000, FmtByte, QByteArray("\x02\x02\0\0", 4));
  x.AddModifyTag(Repertoire::GPS, 0x0001, FmtAscii, QByteArray("N\0", 2));
  x.AddModifyTag(Repertoire::GPS, 0x0002, FmtRational,
                 Rationnel(48, 1) + Rationnel(51, 1) + Rationnel(2400, 100));
  x.AddModifyTag(Repertoire::IFD1, 0x0103, FmtShort, U16(false, 6));
  x.ThumbnailData = JpegQt(8, 6);
  QByteArray app1;
  EXPECT_TRUE(x.WriteEXIF(app1));
  return Inserer(JpegQt(64, 48), {app1, Segment(0xFE, QByteArray("ancien\0", 7))});
}

class Oracle : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    if (!Present("exiftool") || !Present("djpeg"))
      GTEST_SKIP()
          << "exiftool et djpeg manquent (paquets libimage-exiftool-perl, libjpeg-turbo-progs)";
  }
  int Commande(int (*commande)(const QStringList&, QTextStream&, QTextStream&),
               const QStringList& arguments, QString* sortie = nullptr) {
    QString s, e;
    QTextStream ts(&s), te(&e);
    const int r = commande(arguments, ts, te);
    ts.flush();
    te.flush();
    if (sortie) *sortie = s;
    EXPECT_TRUE(r == 0 || !e.isEmpty());
    return r;
  }
};

TEST_P(Oracle, LaReecritureDuCommentaireGardeExifEtPixels) {
  const QString chemin = QDir::currentPath() + "/exif.jpg";
  {
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(JpegAvecExif(GetParam()));
  }
  const QJsonObject avant = VueExiftool(chemin);
  ASSERT_FALSE(avant.contains("ExifTool:Warning"))
      << avant["ExifTool:Warning"].toString().toStdString();
  EXPECT_NEAR(avant["GPS:GPSLatitude"].toDouble(), 48 + 51 / 60.0 + 24 / 3600.0, 1e-9);
  EXPECT_EQ(avant["InteropIFD:InteropIndex"].toString(), "R98");
  EXPECT_EQ(avant["IFD1:ThumbnailLength"].toInt(), JpegQt(8, 6).size());
  const QByteArray pixelsAvant = Executer("djpeg", {"-ppm", chemin});

  const QString texte = QDir::currentPath() + "/commentaire.txt";
  {
    QFile f(texte);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(
        "Application=Tessellographe\nTitre=Diatom\xC3\xA9"
        "e\n");
  }
  ASSERT_EQ(Commande(CommandeCommentaire, {"ecrire", chemin, "--depuis", texte}), 0);

  const QJsonObject apres = VueExiftool(chemin);
  EXPECT_FALSE(apres.contains("ExifTool:Warning"))
      << apres["ExifTool:Warning"].toString().toStdString();
  EXPECT_EQ(EntreesExif(apres), EntreesExif(avant));
  EXPECT_GE(EntreesExif(apres).size(), 20);
  EXPECT_TRUE(
      apres["File:Comment"].toString().startsWith("Application=Tessellographe\r\nTitre=Diatom"));
  EXPECT_EQ(Executer("djpeg", {"-ppm", chemin}), pixelsAvant);
  QString lu;
  ASSERT_EQ(Commande(CommandeCommentaire, {"lire", chemin}, &lu), 0);
  EXPECT_EQ(lu, QString::fromUtf8("Application=Tessellographe\r\nTitre=Diatomée\r\n"));
}

TEST_P(Oracle, InfosEtExiftoolSAccordent) {
  const QString chemin = QDir::currentPath() + "/exif.jpg";
  {
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(JpegAvecExif(GetParam()));
  }
  QString json;
  ASSERT_EQ(Commande(CommandeInfos, {chemin, "--json"}, &json), 0);
  const QJsonObject infos = QJsonDocument::fromJson(json.toUtf8()).object();
  EXPECT_EQ(infos["type"].toInt(), 0);
  EXPECT_EQ(infos["exif"]["ordre"].toString(), GetParam() ? "MM" : "II");
  EXPECT_EQ(infos["exif"]["fabricant"].toInt(), 4);
  EXPECT_EQ(infos["commentaire"].toString(), "ancien");
  const QJsonArray segments = infos["segments"].toArray();
  ASSERT_FALSE(segments.isEmpty());
  EXPECT_EQ(segments[0]["marqueur"].toString(), "FFE1");
  EXPECT_EQ(segments[0]["position"].toInt(), 3);

  // The value of a tag as the tool shows it, a fraction divided out.
  auto valeur = [&](const char* repertoire, const char* nom) -> QJsonValue {
    for (const QJsonValue& e : infos["exif"]["repertoires"][repertoire].toArray())
      if (e["nom"].toString() == QLatin1String(nom)) {
        const QString v = e["valeur"].toString();
        const int barre = v.indexOf('/');
        if (e["format"].toInt() == FmtAscii) return v;
        if (barre > 0) return v.left(barre).toDouble() / v.mid(barre + 1).toDouble();
        return v.toDouble();
      }
    ADD_FAILURE() << nom;
    return {};
  };
  const QJsonObject vue = VueExiftool(chemin);
  EXPECT_EQ(valeur("IFD0", "Make"), vue["IFD0:Make"]);
  EXPECT_EQ(valeur("IFD0", "Model"), vue["IFD0:Model"]);
  EXPECT_EQ(valeur("IFD0", "Orientation").toDouble(), vue["IFD0:Orientation"].toDouble());
  EXPECT_EQ(valeur("IFD0", "XResolution").toDouble(), vue["IFD0:XResolution"].toDouble());
  EXPECT_EQ(valeur("EXIF", "DateTimeOriginal"), vue["ExifIFD:DateTimeOriginal"]);
  EXPECT_DOUBLE_EQ(valeur("EXIF", "FocalLength").toDouble(), vue["ExifIFD:FocalLength"].toDouble());
  EXPECT_DOUBLE_EQ(valeur("EXIF", "ExposureTime").toDouble(),
                   vue["ExifIFD:ExposureTime"].toDouble());
}

INSTANTIATE_TEST_SUITE_P(Ordres, Oracle, testing::Values(false, true),
                         [](const auto& i) { return std::string(i.param ? "Motorola" : "Intel"); });

TEST(CommandesMeta, UsageEtRefus) {
  QString s, e;
  QTextStream ts(&s), te(&e);
  EXPECT_EQ(CommandeInfos({}, ts, te), 2);
  EXPECT_EQ(CommandeCommentaire({"ecrire", "x.jpg"}, ts, te), 2);
  EXPECT_EQ(CommandeInfos({QDir::currentPath() + "/absent.jpg"}, ts, te), 3);
  EXPECT_EQ(CommandeCommentaire({"lire", QDir::currentPath() + "/absent.jpg"}, ts, te), 3);
  te.flush();
  EXPECT_TRUE(e.contains("ne peut pas être lu : il n'existe pas")) << e.toStdString();
}

TEST(CommandesMeta, TexteUtf8OuWindows1252EnCRLF) {
  EXPECT_EQ(TexteDepuisFichier("\xEF\xBB\xBFTitre=\xC3\xA9\n"), QString::fromUtf8("Titre=é\r\n"));
  EXPECT_EQ(TexteDepuisFichier("Titre=\xE9\r\nA\rB"), QString::fromUtf8("Titre=é\r\nA\r\nB"));
}

}  // namespace
}  // namespace tg::meta
