// IPTC datasets in the APP13 Photoshop segment of a JPEG and in tag 33723 of
// a TIFF; exiftool as the peer reading what is written.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>

#include "metadata/CIPTC.h"
#include "metadata/CImage.h"
#include "tests/metadata/Fabrique.h"

namespace tg::meta {
namespace {

using namespace test;

QByteArray Jeu(uint8_t record, uint8_t dataset, const QByteArray& valeur) {
  return QByteArray(1, '\x1C') + char(record) + char(dataset) + U16(true, uint16_t(valeur.size())) +
         valeur;
}

// One Photoshop resource, empty name, padded to even.
QByteArray Ressource(uint16_t id, const QByteArray& donnees, bool pad = true) {
  QByteArray r =
      "8BIM" + U16(true, id) + QByteArray(2, '\0') + U32(true, uint32_t(donnees.size())) + donnees;
  if (pad && donnees.size() % 2 != 0) r.append('\0');
  return r;
}

const QByteArray kNom("Photoshop 3.0\0", 14);

// ResolutionInfo: 72 dpi both ways, as fixed 16.16 numbers.
QByteArray Resolution() {
  return U32(true, 72u << 16) + U16(true, 1) + U16(true, 1) + U32(true, 72u << 16) + U16(true, 1) +
         U16(true, 1);
}

QByteArray Datasets() {
  return Jeu(1, 90, "\x1B%G") + Jeu(2, 0, QByteArray("\x00\x04", 2)) + Jeu(2, 25, "pollen") +
         Jeu(2, 120, "Coupe de tige") +
         Jeu(2, 25,
             "diatom\xC3\xA9"
             "e") +
         Jeu(2, 25, "lame");
}

CJPEG Lire(const QByteArray& octets) {
  CJPEG j;
  j.LireOctets(octets);
  return j;
}

// The data of every APP13 segment of a JPEG, name included.
QList<QByteArray> SegmentsAPP13(const QByteArray& jpeg) {
  QList<QByteArray> r;
  for (const CMarker& m : ParcourirSegments(jpeg).segments)
    if (m.Marker == 0xEDFF) r << jpeg.mid(m.lpData - 1 + 4, m.Length - 4);
  return r;
}

TEST(IPTC, JeuxDansLOrdreEtRessourcesVoisinesGardees) {
  const QByteArray autre = Ressource(0x03ED, Resolution());
  const QByteArray fin = Ressource(0x0425, QByteArray(16, '\x5A'));
  CJPEG j =
      Lire(Inserer(JpegQt(), {Segment(0xED, kNom + autre + Ressource(0x0404, Datasets()) + fin)}));
  CIPTC& iptc = j.IPTC();
  ASSERT_EQ(iptc.Tags.size(), 6u);
  EXPECT_TRUE(iptc.Utf8());
  EXPECT_EQ(iptc.Textes(2, 25), QStringList({"pollen", QString::fromUtf8("diatomée"), "lame"}));
  EXPECT_EQ(iptc.Tags[3].Nom(), "Caption-Abstract");
  EXPECT_EQ(iptc.Tags[1].GetDataFormatted(), "4");

  iptc.DelTagString(2, 25, "pollen");
  iptc.AddModifyTagString(2, 25, "ignoré");  // replaces the first keyword left
  iptc.AddModifyTagString(2, 5, "Titre");    // appended
  QByteArray sortie;
  ASSERT_TRUE(j.Ecrire(sortie, nullptr));
  const QList<QByteArray> app13 = SegmentsAPP13(sortie);
  ASSERT_EQ(app13.size(), 1);
  EXPECT_TRUE(app13[0].startsWith(kNom + autre));
  EXPECT_TRUE(app13[0].endsWith(fin));

  CJPEG relu = Lire(sortie);
  EXPECT_EQ(relu.IPTC().Textes(2, 25), QStringList({QString::fromUtf8("ignoré"), "lame"}));
  EXPECT_EQ(relu.IPTC().Textes(2, 5), QStringList({"Titre"}));
  relu.IPTC().DelRepeatTag(2, 25);
  EXPECT_TRUE(relu.IPTC().Textes(2, 25).isEmpty());
  EXPECT_EQ(relu.IPTC().Tags.size(), 4u);
}

TEST(IPTC, TailleImpaireCompleteeEtComptee) {
  CJPEG j = Lire(JpegQt());
  EXPECT_TRUE(j.IPTC().Tags.empty());
  QByteArray sans;
  ASSERT_TRUE(j.Ecrire(sans, nullptr));
  EXPECT_TRUE(SegmentsAPP13(sans).isEmpty());  // no tags, no segment

  j.IPTC().AddModifyTagString(2, 120, "abcd");  // 5 + 4 = 9 bytes: odd
  j.IPTC().AdjustIPTCLengths();
  EXPECT_EQ(j.IPTC().TailleRessource, 9u);
  QByteArray sortie;
  ASSERT_TRUE(j.Ecrire(sortie, nullptr));
  const QList<QByteArray> app13 = SegmentsAPP13(sortie);
  ASSERT_EQ(app13.size(), 1);
  const QByteArray attendu = kNom + "8BIM" + QByteArray("\x04\x04\0\0", 4) + U32(true, 9) +
                             Jeu(2, 120, "abcd") + QByteArray(1, '\0');
  EXPECT_EQ(app13[0], attendu);
  // The length field: itself, and the data above, pad included.
  const CMarker m = ParcourirSegments(sortie).segments[0].Marker == 0xEDFF
                        ? ParcourirSegments(sortie).segments[0]
                        : ParcourirSegments(sortie).segments[1];
  EXPECT_EQ(m.Length, 4 + attendu.size());
  EXPECT_EQ(j.IPTC().LongueurSegment, 2 + attendu.size());
}

TEST(IPTC, BlocPartageSurDeuxSegmentsLuEntier) {
  const QByteArray bloc = Ressource(0x03ED, Resolution()) + Ressource(0x0404, Datasets());
  const int coupe = 30;  // inside the datasets
  CJPEG j = Lire(Inserer(
      JpegQt(), {Segment(0xED, kNom + bloc.left(coupe)), Segment(0xED, kNom + bloc.mid(coupe))}));
  EXPECT_EQ(j.IPTC().Tags.size(), 6u);
  EXPECT_EQ(j.IPTC().SegmentsLus().size(), 2u);
  // Unchanged, the two segments stay as they were; changed, the whole block
  // goes in one, at the place of the first.
  QByteArray sortie;
  ASSERT_TRUE(j.Ecrire(sortie, nullptr));
  EXPECT_EQ(SegmentsAPP13(sortie), QList<QByteArray>({kNom + bloc.left(coupe), kNom + bloc.mid(coupe)}));
  j.IPTC().AddModifyTagString(2, 116, "diatomée");
  ASSERT_TRUE(j.Ecrire(sortie, nullptr));
  const QList<QByteArray> app13 = SegmentsAPP13(sortie);
  ASSERT_EQ(app13.size(), 1);
  EXPECT_TRUE(app13[0].startsWith(kNom + Ressource(0x03ED, Resolution())));
  EXPECT_EQ(ParcourirSegments(sortie).segments[0].Marker, 0xEDFF);
  EXPECT_EQ(Lire(sortie).IPTC().Tags.size(), 7u);
}

TEST(IPTC, LectureArreteeProprement) {
  struct Cas {
    const char* nom;
    QByteArray jeux;
    size_t lus;
  };
  const Cas cas[] = {
      {"octet autre que 0x1C", Jeu(2, 25, "a") + QByteArray("\x00\x00\x00", 3) + Jeu(2, 25, "b"),
       1},
      {"taille étendue", Jeu(2, 25, "a") + QByteArray("\x1C\x02\x19\x80\x04\0\0\0\x10", 9), 1},
      {"jeu coupé", Jeu(2, 25, "a") + Jeu(2, 120, "abcdef").left(8), 1},
  };
  for (const Cas& c : cas) {
    CJPEG j = Lire(Inserer(JpegQt(), {Segment(0xED, kNom + Ressource(0x0404, c.jeux))}));
    EXPECT_EQ(j.IPTC().Tags.size(), c.lus) << c.nom;
  }
  // A last resource without its pad byte still reads.
  CJPEG j =
      Lire(Inserer(JpegQt(), {Segment(0xED, kNom + Ressource(0x0404, Jeu(2, 5, "abc"), false))}));
  EXPECT_EQ(j.IPTC().Textes(2, 5), QStringList({"abc"}));
  // Not a Photoshop segment: left as it stands.
  const QByteArray etranger = Segment(0xED, "Adobe_CM\0\x01");
  CJPEG k = Lire(Inserer(JpegQt(), {etranger}));
  QByteArray sortie;
  ASSERT_TRUE(k.Ecrire(sortie, nullptr));
  EXPECT_TRUE(sortie.contains(etranger));
}

TEST(IPTC, NomsEtFormatsDeFichier) {
  EXPECT_EQ(CIPTCTag::NomJeuIPTC(1, 20), "FileFormat");
  EXPECT_EQ(CIPTCTag::NomJeuIPTC(8, 10), "SubFile");
  EXPECT_EQ(CIPTCTag::NomJeuIPTC(9, 10), "ConfirmedObjectSize");
  EXPECT_TRUE(CIPTCTag::NomJeuIPTC(2, 250).isEmpty());
  CIPTCTag t;
  t.RecordNumber = 1;
  t.DataSetNumber = 20;
  t.Data = QByteArray("\x00\x03", 2);
  EXPECT_EQ(t.GetDataFormatted(), "3 (Tagged Image File Format (Adobe/Aldus Image data))");
  t.Data = QByteArray("\x00\xC8", 2);  // 200: outside the list
  EXPECT_EQ(t.GetDataFormatted(), "200");
}

class IptcTIFF : public testing::TestWithParam<bool> {};

TEST_P(IptcTIFF, Tag33723RelueDansLesDeuxOrdres) {
  const bool mm = GetParam();
  QByteArray valeur = Jeu(2, 25, "a") + Jeu(2, 120, "Texte libre");  // 22 bytes
  valeur.resize(24, '\0');
  // Written as LONG, as many writers do: 6 elements in the file's order.
  QByteArray t = EnTete(mm) + U16(mm, 2) + Entree(mm, 0x0100, 3, 1, U16(mm, 1)) +
                 Entree(mm, 33723, 4, 6, U32(mm, 8 + 2 + 24 + 4)) + U32(mm, 0) + valeur;
  CTIFF tiff;
  tiff.LireOctets(t);
  ASSERT_EQ(tiff.IPTC().Tags.size(), 2u);
  EXPECT_EQ(tiff.IPTC().Textes(2, 120), QStringList({"Texte libre"}));
  tiff.IPTC().AddModifyTagString(2, 25, "b");
  QByteArray sortie;
  ASSERT_TRUE(tiff.Ecrire(sortie, nullptr));
  CTIFF relu;
  relu.LireOctets(sortie);
  EXPECT_EQ(relu.IPTC().Textes(2, 25), QStringList({"b"}));
  EXPECT_EQ(relu.IPTC().Textes(2, 120), QStringList({"Texte libre"}));
}
INSTANTIATE_TEST_SUITE_P(Ordres, IptcTIFF, testing::Values(false, true));

TEST(IPTC, ExiftoolLitMotsClesEtLegende) {
  if (QStandardPaths::findExecutable("exiftool").isEmpty())
    GTEST_SKIP() << "exiftool manque (paquet libimage-exiftool-perl)";
  const QString chemin = QDir::currentPath() + "/iptc.jpg";
  {
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(Inserer(JpegQt(), {Segment(0xED, kNom + Ressource(0x03ED, Resolution()))}));
  }
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  CIPTC& iptc = image.JPEG()->IPTC();
  iptc.AddModifyTagBinary(1, 90, "\x1B%G");
  iptc.AddModifyTagString(2, 120, "Coupe transversale de tige");
  for (const char* k : {"pollen", "tige", "diatomée"}) {
    CIPTCTag t;
    t.RecordNumber = 2;
    t.DataSetNumber = 25;
    t.ModifyTagString(QString::fromUtf8(k), true);
    iptc.Tags.push_back(t);
  }
  ASSERT_TRUE(image.WriteImage(chemin));
  QProcess p;
  p.start("exiftool", {"-j", "-G1", "-IPTC:all", "-Photoshop:XResolution", chemin});
  ASSERT_TRUE(p.waitForFinished(60000));
  const QJsonObject vue = QJsonDocument::fromJson(p.readAllStandardOutput()).array()[0].toObject();
  EXPECT_EQ(vue["IPTC:Keywords"].toArray(),
            QJsonArray({"pollen", "tige", QString::fromUtf8("diatomée")}));
  EXPECT_EQ(vue["IPTC:Caption-Abstract"].toString(), "Coupe transversale de tige");
  EXPECT_EQ(vue["Photoshop:XResolution"].toInt(), 72);
}

}  // namespace
}  // namespace tg::meta
