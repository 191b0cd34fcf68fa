// Rewrites keep what they were not asked to change: pictures laid out as
// cameras write them (maker notes whose offsets count from the TIFF header,
// a preview the note points to outside itself, PrintIM, XMP, an ICC profile
// over two segments, a multi-picture index with a second picture, a trailer)
// go through a comment rewrite and EXIF edits; their bytes are compared, and
// exiftool must read every tag as before.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <algorithm>

#include "metadata/CImage.h"
#include "metadata/CTIFF.h"
#include "tests/metadata/Fabrique.h"
#include "tests/support/LimiteFichier.h"
#include "tests/support/Octets.h"

namespace tg::meta {
namespace {

using namespace test;

// A directory whose values that do not fit go behind it; `p` is the offset
// of the directory in the TIFF structure, the origin of every offset.
struct Val {
  uint16_t tag, format;
  uint32_t nombre;
  QByteArray octets;  // in file order
};
QByteArray Ifd(bool mm, const std::vector<Val>& vals, uint32_t p, uint32_t lien = 0) {
  QByteArray entrees = U16(mm, uint16_t(vals.size())), donnees;
  const uint32_t debut = p + 2 + 12 * uint32_t(vals.size()) + 4;
  for (const Val& v : vals) {
    if (v.octets.size() > 4) {
      entrees += Entree(mm, v.tag, v.format, v.nombre, U32(mm, debut + donnees.size()));
      donnees += v.octets;
      if (donnees.size() % 2) donnees += '\0';
    } else {
      entrees += Entree(mm, v.tag, v.format, v.nombre, v.octets);
    }
  }
  return entrees + U32(mm, lien) + donnees;
}

QByteArray Ascii(const char* s) { return QByteArray(s, int(qstrlen(s)) + 1); }

// What a camera's file holds around the picture.
struct Appareil {
  const char* make;
  bool mm;
  bool jfif;         // a leading JFIF APP0, as some cameras and editors write
  bool comAvant;     // a comment before the EXIF segment's neighbours
  bool comApresMPF;  // a comment between the multi-picture index and the scan
};

// The TIFF structure of the EXIF segment: IFD0 (Make, Model, XResolution,
// PrintIM, pointer), EXIF sub-directory (exposure, maker note), IFD1 with a
// thumbnail; the preview lies after the note, pointed to by the note only.
QByteArray StructureExif(const Appareil& a, const QByteArray& vignette, const QByteArray& apercu) {
  const bool mm = a.mm;
  const QByteArray printim = QByteArray("PrintIM\0" "0300", 12) + QByteArray(2, '\0') + U16(mm, 2) +
                             U16(mm, 0x0001) + U32(mm, 0x00160016) + U16(mm, 0x0002) +
                             U32(mm, 0x00000001);
  // Fixed places, checked below: IFD0 at 8, the sub-directory at 200, the
  // note at 300, the preview at 600, IFD1 at 2000, the thumbnail behind it.
  QByteArray t = EnTete(mm);
  t += Ifd(mm,
           {{0x010F, 2, uint32_t(qstrlen(a.make) + 1), Ascii(a.make)},
            {0x0110, 2, 8, Ascii("Modele1")},
            {0x011A, 5, 1, U32(mm, 300) + U32(mm, 1)},
            {0xC4A5, 7, uint32_t(printim.size()), printim},
            {0x8769, 4, 1, U32(mm, 200)}},
           8, 2000);
  EXPECT_LE(t.size(), 200);
  t.resize(200, '\0');
  // The note, its offsets from the TIFF header as Canon and Olympus count.
  QByteArray note;
  uint32_t origineNote = 300;
  if (qstrncmp(a.make, "Canon", 5) == 0) {
    const QByteArray reglages = U16(mm, 8) + U16(mm, 1) + U16(mm, 0) + U16(mm, 3);
    note = Ifd(mm,
               {{0x0001, 3, 4, reglages},
                {0x0006, 2, 10, Ascii("IMG:EOS D")},
                {0x0007, 2, 16, Ascii("Firmware 1.0.0")}},
               origineNote);
  } else {
    note = QByteArray("OLYMP\0\x01\0", 8);
    note += Ifd(mm,
                {{0x0200, 4, 3, U32(mm, 0) + U32(mm, 1) + U32(mm, 2)},
                 {0x0207, 2, 6, Ascii("D4029")},
                 {0x0088, 4, 1, U32(mm, 600)},
                 {0x0089, 4, 1, U32(mm, uint32_t(apercu.size()))}},
                origineNote + 8);
  }
  const QByteArray sub = Ifd(mm,
                             {{0x829A, 5, 1, U32(mm, 1) + U32(mm, 60)},
                              {0x9003, 2, 20, Ascii("2024:05:06 07:08:09")},
                              {0x927C, 7, uint32_t(note.size()), U32(mm, origineNote)}},
                             200);
  t += sub;
  EXPECT_LE(t.size(), 300);
  t.resize(300, '\0');
  t += note;
  EXPECT_LE(t.size(), 600);
  t.resize(600, '\0');
  t += apercu;
  EXPECT_LE(t.size(), 2000);
  t.resize(2000, '\0');
  t += Ifd(mm,
           {{0x0103, 3, 1, U16(mm, 6)},
            {0x0201, 4, 1, U32(mm, 2000 + 2 + 3 * 12 + 4)},
            {0x0202, 4, 1, U32(mm, uint32_t(vignette.size()))}},
           2000);
  t += vignette;
  return t;
}

QByteArray SegmentsIcc(const QByteArray& profil) {
  const int moitie = profil.size() / 2;
  return Segment(0xE2, QByteArray("ICC_PROFILE\0\x01\x02", 14) + profil.left(moitie)) +
         Segment(0xE2, QByteArray("ICC_PROFILE\0\x02\x02", 14) + profil.mid(moitie));
}

// A small display profile: header, one 'cprt' text tag.
QByteArray ProfilIcc() {
  QByteArray p(128, '\0');
  auto u32be = [](uint32_t v) { return U32(true, v); };
  const QByteArray texte = QByteArray("text\0\0\0\0Tessellographe\0\0", 24);
  p.replace(0, 4, u32be(128 + 4 + 12 + texte.size()));
  p.replace(8, 4, QByteArray("\x02\x10\0\0", 4));
  p.replace(12, 4, "mntr");
  p.replace(16, 4, "RGB ");
  p.replace(20, 4, "XYZ ");
  p.replace(36, 4, "acsp");
  p += u32be(1) + QByteArray("cprt") + u32be(144) + u32be(texte.size()) + texte;
  return p;
}

// A multi-picture index of two pictures: the first is this file (offset 0),
// the second lies `offset` bytes after the MP header.
QByteArray SegmentMPF(uint32_t tailleUn, uint32_t tailleDeux, uint32_t offset) {
  const bool mm = false;
  QByteArray entrees = U32(mm, 0x20030000) + U32(mm, tailleUn) + U32(mm, 0) + U32(mm, 0) +
                       U32(mm, 0x00010001) + U32(mm, tailleDeux) + U32(mm, offset) + U32(mm, 0);
  QByteArray t = EnTete(mm);
  t += Ifd(mm, {{0xB000, 7, 4, "0100"}, {0xB001, 4, 1, U32(mm, 2)}, {0xB002, 7, 32, entrees}}, 8);
  return Segment(0xE2, QByteArray("MPF\0", 4) + t);
}

// Offset of the MP header (after "MPF\0") in a file; -1 without one.
int64_t EnTeteMPF(const QByteArray& f) {
  for (const CMarker& m : ParcourirSegments(f).segments)
    if (m.Marker == 0xE2FF && f.mid(m.lpData - 1 + 4, 4) == QByteArray("MPF\0", 4))
      return m.lpData - 1 + 8;
  return -1;
}

// The second picture's offset as the index gives it.
uint32_t OffsetDeuxiemeImage(const QByteArray& f) {
  const int64_t h = EnTeteMPF(f);
  uint32_t v = 0;
  // Entry B002 is the third of the index at 8; its data offset is at 8 + 2 + 24 + 8.
  uint32_t valeurs = 0;
  LecteurOctets(f.mid(h)).u32At(Ordre::Intel, 8 + 2 + 24 + 8, valeurs);
  LecteurOctets(f.mid(h)).u32At(Ordre::Intel, valeurs + 16 + 8, v);
  return v;
}

const QByteArray kXmp = QByteArray("http://ns.adobe.com/xap/1.0/\0", 29) +
                        "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/"
                        "1999/02/22-rdf-syntax-ns#'><rdf:Description xmlns:dc='http://purl.org/dc/"
                        "elements/1.1/' dc:format='image/jpeg'/></rdf:RDF></x:xmpmeta>";
const QByteArray kTrailer = "fin de fichier propre au fabricant";

// The whole camera file.
QByteArray FichierAppareil(const Appareil& a) {
  const QByteArray qt = JpegQt(64, 48);
  const QByteArray deuxieme = JpegQt(16, 12);
  const QByteArray vignette = JpegQt(8, 8);
  const QByteArray apercu = JpegQt(12, 8);
  // Qt's picture without its JFIF segment: the tables, frame, scan and end.
  const CMarker app0 = ParcourirSegments(qt).segments[0];
  EXPECT_EQ(app0.Marker, 0xE0FF);
  const QByteArray jfif = qt.mid(app0.lpData - 1, app0.Length);
  const QByteArray reste = qt.mid(app0.lpData - 1 + app0.Length);

  QByteArray avant = QByteArray("\xFF\xD8", 2);
  if (a.jfif) avant += jfif;
  if (a.comAvant) avant += Segment(0xFE, Ascii("vieux commentaire"));
  avant += Segment(0xE1, QByteArray("Exif\0\0", 6) + StructureExif(a, vignette, apercu));
  avant += Segment(0xE1, kXmp) + SegmentsIcc(ProfilIcc());
  const QByteArray apres = a.comApresMPF ? Segment(0xFE, Ascii("commentaire")) : QByteArray();
  // The MPF segment's size does not depend on its offsets.
  const int64_t longueurMPF = SegmentMPF(0, 0, 0).size();
  const int64_t enTete = avant.size() + 8;
  const int64_t tailleUn = avant.size() + longueurMPF + apres.size() + reste.size();
  const QByteArray mpf = SegmentMPF(uint32_t(tailleUn), uint32_t(deuxieme.size()),
                                    uint32_t(tailleUn - enTete));
  return avant + mpf + apres + reste + deuxieme + kTrailer;
}

QString Ecrire(const QString& nom, const QByteArray& octets) {
  const QString chemin = QDir::currentPath() + "/" + nom;
  tg::test::EcrireOctets(chemin, octets);
  return chemin;
}

QByteArray Lire(const QString& chemin) { return tg::test::LireOctets(chemin); }

// The segments as bytes, in order, without the comments.
QList<QByteArray> SegmentsSansCommentaire(const QByteArray& f) {
  QList<QByteArray> r;
  for (const CMarker& m : ParcourirSegments(f).segments)
    if (m.Marker != 0xFEFF) r << f.mid(m.lpData - 1, m.Length);
  return r;
}

QByteArray Scan(const QByteArray& f) { return f.mid(ParcourirSegments(f).positionScan - 1); }

const Appareil kAppareils[] = {
    {"Canon", false, false, false, false},
    {"Canon", true, true, false, false},
    {"OLYMPUS OPTICAL CO.,LTD", true, false, true, true},
    {"OLYMPUS OPTICAL CO.,LTD", false, true, false, true},
};

std::string Nom(const Appareil& a) {
  return std::string(a.make).substr(0, 5) + (a.mm ? "MM" : "II") + (a.jfif ? "_jfif" : "") +
         (a.comAvant ? "_comavant" : "") + (a.comApresMPF ? "_comapresmpf" : "");
}

class Reecriture : public testing::TestWithParam<Appareil> {};

TEST_P(Reecriture, LeCommentaireSeulChangeEtLesImagesSuiventLIndex) {
  const Appareil a = GetParam();
  const QByteArray source = FichierAppareil(a);
  // The generator's index is right: the second picture is where it says.
  ASSERT_EQ(source.mid(EnTeteMPF(source) + OffsetDeuxiemeImage(source), 2), QByteArray("\xFF\xD8", 2));
  const QString chemin = Ecrire("appareil.jpg", source);
  for (const char* texte : {"Navicula sp., 40x", "un commentaire nettement plus long que le premier, "
                                                 "pour déplacer les octets qui suivent",
                            ""}) {
    CImage image;
    ASSERT_TRUE(image.ReadImage(chemin));
    image.JPEG()->JPEGComment().Content = QString::fromUtf8(texte);
    ASSERT_TRUE(image.WriteImage(chemin)) << image.Erreur().toStdString();
    const QByteArray sortie = Lire(chemin);
    // A comment between the index and the pictures moves them: the index
    // alone follows (checked below), the rest is byte for byte.
    QList<QByteArray> attendus = SegmentsSansCommentaire(source), obtenus = SegmentsSansCommentaire(sortie);
    if (a.comApresMPF) {
      auto sansMPF = [](QList<QByteArray>& l) {
        l.removeIf([](const QByteArray& s) { return s.mid(4, 4) == QByteArray("MPF\0", 4); });
      };
      sansMPF(attendus);
      sansMPF(obtenus);
      EXPECT_EQ(obtenus.size(), ParcourirSegments(sortie).segments.size() - (*texte ? 2 : 1));
    }
    EXPECT_TRUE(obtenus == attendus) << texte;
    EXPECT_EQ(Scan(sortie), Scan(source));
    const auto segments = ParcourirSegments(sortie).segments;
    const auto com = std::find_if(segments.begin(), segments.end(),
                                  [](const CMarker& m) { return m.Marker == 0xFEFF; });
    if (*texte == 0) {
      EXPECT_EQ(com, segments.end());
    } else {
      ASSERT_NE(com, segments.end());
      // In place of the old comment, else after JFIF and EXIF.
      const size_t place = size_t(com - segments.begin());
      if (a.comAvant)
        EXPECT_EQ(place, a.jfif ? 1u : 0u);
      else if (a.comApresMPF)
        EXPECT_EQ(sortie.mid(segments[place - 1].lpData - 1 + 4, 4), QByteArray("MPF\0", 4));
      else
        EXPECT_EQ(place, a.jfif ? 2u : 1u);
      CImage relue;
      ASSERT_TRUE(relue.ReadImage(chemin));
      EXPECT_EQ(relue.JPEG()->JPEGComment().Texte(), QString::fromUtf8(texte));
    }
    if (a.jfif) EXPECT_EQ(segments[0].Marker, 0xE0FF);
    // The second picture is still where the index says, whole.
    const QByteArray deuxieme = JpegQt(16, 12);
    EXPECT_EQ(sortie.mid(EnTeteMPF(sortie) + OffsetDeuxiemeImage(sortie), deuxieme.size()), deuxieme);
    EXPECT_TRUE(sortie.endsWith(deuxieme + kTrailer));
  }
}

// exiftool's view as "[Groupe] Nom : valeur" lines, the file system's own
// tags left out, warnings kept.
QStringList VueExiftool(const QString& chemin) {
  QProcess p;
  p.start("exiftool", {"-a", "-G1", "-s", "-n", "-U", chemin});
  EXPECT_TRUE(p.waitForFinished(60000));
  QStringList lignes;
  for (const QString& l : QString::fromUtf8(p.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts)) {
    if (l.startsWith("[System]") || l.contains("ExifToolVersion") || l.contains(" FileSize ") ||
        l.startsWith("[File]"))
      continue;
    lignes << l.simplified();
  }
  std::sort(lignes.begin(), lignes.end());
  return lignes;
}

TEST_P(Reecriture, UneEtiquetteAjouteePuisChangeeNeTouchePasAuReste) {
  if (QStandardPaths::findExecutable("exiftool").isEmpty())
    GTEST_SKIP() << "exiftool manque (paquet libimage-exiftool-perl)";
  const Appareil a = GetParam();
  const QByteArray source = FichierAppareil(a);
  const QString chemin = Ecrire("appareil.jpg", source);
  const QStringList avant = VueExiftool(chemin);
  // The generated parts are all seen: the note, PrintIM, the preview, the
  // profile, XMP and the second picture.
  const QString tout = avant.join('\n');
  for (const char* attendu : {"[PrintIM] PrintIMVersion", "[ICC-header] ProfileClass", "[XMP-dc] Format",
                              "[MPF0] NumberOfImages", "[MPImage2] MPImageLength", "[IFD1] ThumbnailLength"})
    EXPECT_TRUE(tout.contains(attendu)) << attendu << "\n" << tout.toStdString();
  EXPECT_TRUE(tout.contains(a.make[0] == 'C' ? "[Canon] CanonFirmwareVersion" : "[Olympus] PreviewImageStart"))
      << tout.toStdString();
  EXPECT_FALSE(tout.contains("Warning")) << tout.toStdString();

  for (const char* logiciel : {"Tessellographe", "Tessellographe 1.0.0, essai d'une valeur plus longue"}) {
    CImage image;
    ASSERT_TRUE(image.ReadImage(chemin));
    image.JPEG()->EXIF()->AddModifyTag(Repertoire::IFD0, 0x0131, FmtAscii, Ascii(logiciel));
    ASSERT_TRUE(image.WriteImage(chemin)) << image.Erreur().toStdString();
    QStringList apres = VueExiftool(chemin);
    const QString attendu = QStringLiteral("[IFD0] Software : %1").arg(logiciel);
    EXPECT_TRUE(apres.removeAll(attendu) == 1) << apres.join('\n').toStdString();
    // Absolute file positions move with the bytes inserted before them.
    auto sansPosition = [](QStringList l) {
      l.removeIf([](const QString& x) { return x.startsWith("[MPImage2] MPImageStart"); });
      return l.join('\n').toStdString();
    };
    EXPECT_EQ(sansPosition(apres), sansPosition(avant));
    // The second picture is still there, whole, for exiftool too.
    QProcess p;
    p.start("exiftool", {"-b", "-MPImage2:PreviewImage", chemin});
    ASSERT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(p.readAllStandardOutput(), JpegQt(16, 12));
  }
  // Bytes: the EXIF segment read is still there, at the head of the new one.
  const QByteArray sortie = Lire(chemin);
  const CMarker exif = ParcourirSegments(source).segments[a.jfif ? 1 : 0];
  const QByteArray ancien = source.mid(exif.lpData - 1 + 4 + 10, exif.Length - 4 - 10);
  EXPECT_TRUE(sortie.contains(ancien.mid(4)));
  EXPECT_EQ(Scan(sortie), Scan(source));
}

INSTANTIATE_TEST_SUITE_P(Appareils, Reecriture, testing::ValuesIn(kAppareils),
                         [](const auto& i) { return Nom(i.param); });

TEST(Reecriture, UnBlocExifTropGrandEstRefuseSansRienEcrire) {
  const Appareil a{"Canon", false, false, false, false};
  const QByteArray source = FichierAppareil(a);
  const QString chemin = Ecrire("gros.jpg", source);
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  image.JPEG()->EXIF()->AddModifyTag(Repertoire::IFD0, 0x010E, FmtAscii, QByteArray(66000, 'x') + '\0');
  EXPECT_FALSE(image.WriteImage(chemin));
  EXPECT_TRUE(image.Erreur().contains("65533")) << image.Erreur().toStdString();
  EXPECT_EQ(Lire(chemin), source);
}

// A rewrite that cannot be written whole (here past a file size limit, as
// on a full disk) leaves the original as it was and says why in French.
TEST(Reecriture, UneEcritureRateeLaisseLOriginal) {
  const QByteArray source = FichierAppareil({"Canon", false, false, false, false}) + QByteArray(200000, 'x');
  const QString chemin = Ecrire("limite.jpg", source);
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  image.JPEG()->JPEGComment().Content = "nouveau commentaire";
  bool ecrit = true;
  {
    const tg::test::LimiteTailleFichier limite(100000);
    ASSERT_TRUE(limite.Active());
    ecrit = image.WriteImage(chemin);
  }
  EXPECT_FALSE(ecrit);
  EXPECT_TRUE(image.Erreur().contains("taille permise")) << image.Erreur().toStdString();
  EXPECT_TRUE(image.Erreur().contains("resté tel qu'il était"));
  EXPECT_EQ(Lire(chemin), source);
  EXPECT_EQ(QDir(QDir::currentPath()).entryList(QDir::Files), QStringList{"limite.jpg"});
  // A folder is no file to rewrite.
  CImage dossier;
  EXPECT_FALSE(dossier.ReadImage(QDir::currentPath()));
  EXPECT_TRUE(dossier.Erreur().contains("c'est un dossier")) << dossier.Erreur().toStdString();
}

// An AFCP trailer counts its offsets from the start of the file: they
// follow the bytes a new comment inserts in front of it.
TEST(Reecriture, LesOffsetsDUnTrailerAFCPSuivent) {
  const QByteArray jpeg = JpegQt(32, 24);
  const QByteArray iptc = QByteArray("\x1C\x02\x00\x00\x02\x00\x04\x1C\x02\x78\x00\x05", 12) + "Coupe";
  const uint32_t debut = uint32_t(jpeg.size()), donnees = debut + 24;
  const QByteArray afcp = QByteArray("AXS!\x00\x01", 6) + U16(true, 1) + QByteArray(4, '\0') +
                          QByteArray("IPTC") + U32(true, uint32_t(iptc.size())) + U32(true, donnees) + iptc +
                          QByteArray("\0", 1) + QByteArray("AXS!") + U32(true, debut) + QByteArray(4, '\0');
  const QString chemin = Ecrire("afcp.jpg", jpeg + afcp);
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  image.JPEG()->JPEGComment().Content = "un commentaire";
  ASSERT_TRUE(image.WriteImage(chemin));
  const QByteArray sortie = Lire(chemin);
  const int64_t decalage = sortie.size() - (jpeg.size() + afcp.size());
  ASSERT_GT(decalage, 0);
  uint32_t nouveauDebut = 0, nouvellesDonnees = 0;
  LecteurOctets(sortie).u32At(Ordre::Motorola, sortie.size() - 8, nouveauDebut);
  EXPECT_EQ(nouveauDebut, debut + decalage);
  EXPECT_EQ(sortie.mid(nouveauDebut, 4), "AXS!");
  LecteurOctets(sortie).u32At(Ordre::Motorola, nouveauDebut + 12 + 8, nouvellesDonnees);
  EXPECT_EQ(sortie.mid(nouvellesDonnees, iptc.size()), iptc);
  if (!QStandardPaths::findExecutable("exiftool").isEmpty()) {
    const QString vue = VueExiftool(chemin).join('\n');
    EXPECT_TRUE(vue.contains("Caption-Abstract : Coupe")) << vue.toStdString();
    EXPECT_FALSE(vue.contains("Warning")) << vue.toStdString();
  }
}

// A camera file laid out as Sony's: the maker note's preview (tag 0x2001,
// its offset counted from the TIFF header as every offset of the note) lies
// after the end of the main picture, behind the second picture of the
// multi-picture index. Nothing points to it but the note.
struct FichierSony {
  QByteArray octets;
  QByteArray apercu;    // the JPEG a reader extracts from the note's value
  QByteArray deuxieme;  // the index's second picture
};

// Qt's JPEG without its JFIF segment: FF D8 FF DB, as Sony's previews begin.
QByteArray SansApp0(const QByteArray& jpeg) {
  const CMarker app0 = ParcourirSegments(jpeg).segments[0];
  EXPECT_EQ(app0.Marker, 0xE0FF);
  return jpeg.left(2) + jpeg.mid(app0.lpData - 1 + app0.Length);
}

FichierSony Sony(bool mm) {
  FichierSony f;
  f.apercu = SansApp0(JpegQt(24, 16));
  f.deuxieme = JpegQt(16, 12);
  // The value: a 32-byte header of the maker's, then the picture with its
  // first byte zeroed.
  QByteArray valeur = QByteArray(32, '\0') + f.apercu;
  valeur[32] = '\0';
  const QByteArray reste = SansApp0(JpegQt(64, 48)).mid(2);
  // IFD0 at 8 -> the sub-directory at 200 -> the note at 300, its directory
  // at 312 with a value right behind it as Sony's have. IFD1 at 100 holds
  // an empty thumbnail whose offset is the end of the block, as some
  // editors leave it: it points at nothing and must not move.
  auto exif = [&](uint32_t offsetApercu) {
    const QByteArray note = QByteArray("SONY DSC \0\0\0", 12) +
                            Ifd(mm,
                                {{0x0102, 4, 1, U32(mm, 2)},
                                 {0x0104, 10, 1, U32(mm, uint32_t(-2)) + U32(mm, 3)},
                                 {0x2001, 7, uint32_t(valeur.size()), U32(mm, offsetApercu)}},
                                312);
    QByteArray t = EnTete(mm);
    t += Ifd(mm,
             {{0x010F, 2, 5, Ascii("SONY")},
              {0x0110, 2, 9, Ascii("ILCE-7M3")},
              {0x8769, 4, 1, U32(mm, 200)}},
             8, 100);
    EXPECT_LE(t.size(), 100);
    t.resize(100, '\0');
    t += Ifd(mm, {{0x0201, 4, 1, U32(mm, uint32_t(300 + note.size()))}, {0x0202, 4, 1, U32(mm, 0)}},
             100);
    t.resize(200, '\0');
    t += Ifd(mm,
             {{0x829A, 5, 1, U32(mm, 1) + U32(mm, 60)},
              {0x927C, 7, uint32_t(note.size()), U32(mm, 300)}},
             200);
    t.resize(300, '\0');
    t += note;
    return Segment(0xE1, QByteArray("Exif\0\0", 6) + t);
  };
  // Sizes first: no segment's length depends on the offsets it holds.
  const int64_t longueurExif = exif(0).size(), longueurMPF = SegmentMPF(0, 0, 0).size();
  const int64_t tailleUn = 2 + longueurExif + longueurMPF + reste.size();
  const int64_t enTeteTIFF = 2 + 4 + 6, enTeteMPF = 2 + longueurExif + 8;
  f.octets =
      QByteArray("\xFF\xD8", 2) + exif(uint32_t(tailleUn + f.deuxieme.size() - enTeteTIFF)) +
      SegmentMPF(uint32_t(tailleUn), uint32_t(f.deuxieme.size()), uint32_t(tailleUn - enTeteMPF)) +
      reste + f.deuxieme + valeur;
  return f;
}

// What exiftool extracts of a tag, as bytes.
QByteArray Extraire(const QString& chemin, const char* tag) {
  QProcess p;
  p.start("exiftool", {"-b", tag, chemin});
  EXPECT_TRUE(p.waitForFinished(60000));
  return p.readAllStandardOutput();
}

// exiftool's whole view with binary values in full (base64), but for the
// file system's tags, the comment and the IFD0 software the tests write, and
// the second picture's start, which exiftool gives from the start of the
// file (its bytes are compared instead).
QJsonObject VueBinaire(const QString& chemin) {
  QProcess p;
  p.start("exiftool", {"-j", "-a", "-G1", "-n", "-b", chemin});
  EXPECT_TRUE(p.waitForFinished(60000));
  QJsonObject vue = QJsonDocument::fromJson(p.readAllStandardOutput()).array()[0].toObject();
  for (const QString& cle : vue.keys())
    if (cle.startsWith("System:") || cle.startsWith("File:") ||
        cle.startsWith("ExifTool:ExifToolVersion") || cle == "SourceFile" ||
        cle == "IFD0:Software" || cle == "MPImage2:MPImageStart")
      vue.remove(cle);
  return vue;
}

// The note's preview as the library finds it: the bytes its offset points to.
QByteArray ApercuLu(const QString& chemin, int64_t longueur) {
  CImage image;
  EXPECT_TRUE(image.ReadImage(chemin));
  const CMakerNote& note = image.JPEG()->EXIF()->NoteFabricant();
  for (const CExifDirEnt& e : note.Directories)
    if (e.Tag == 0x2001) {
      const QByteArray fichier = Lire(chemin);
      // The TIFF header follows SOI, the APP1 marker, its length and "Exif\0\0";
      // the picture follows the maker's 32 bytes and its zeroed first byte.
      return fichier.mid(2 + 4 + 6 + int64_t(uint32_t(e.OffsetToValue)) + 33, longueur);
    }
  return {};
}

TEST(Reecriture, LApercuDUneNoteQuiPointeApresLImageSuitLesOctetsInseres) {
  for (bool mm : {false, true}) {
    SCOPED_TRACE(mm ? "MM" : "II");
    const FichierSony f = Sony(mm);
    const QString chemin = Ecrire("sony.jpg", f.octets);
    const bool exiftool = !QStandardPaths::findExecutable("exiftool").isEmpty();
    QJsonObject avant;
    if (exiftool) {
      // The generator's file reads as a camera's: both pictures found, no warning.
      ASSERT_EQ(Extraire(chemin, "-Sony:PreviewImage").mid(1), f.apercu.mid(1));
      ASSERT_EQ(Extraire(chemin, "-MPImage2:PreviewImage"), f.deuxieme);
      avant = VueBinaire(chemin);
      ASSERT_TRUE(avant.contains("Sony:PreviewImage"));
      ASSERT_FALSE(avant.contains("ExifTool:Warning"))
          << avant["ExifTool:Warning"].toString().toStdString();
    }
    auto vignette = [](const QString& c) {
      CImage image;
      EXPECT_TRUE(image.ReadImage(c));
      const CExifDirEnt* e = image.JPEG()->EXIF()->ifd(1)->Trouver(0x0201);
      return e ? e->GetDataVariant() : -1;
    };
    const double vignetteSource = vignette(chemin);
    ASSERT_GT(vignetteSource, 0);
    auto verifier = [&](const char* etape) {
      SCOPED_TRACE(etape);
      EXPECT_EQ(ApercuLu(chemin, f.apercu.size() - 1), f.apercu.mid(1));
      EXPECT_EQ(vignette(chemin), vignetteSource);
      if (!exiftool) return;
      EXPECT_EQ(Extraire(chemin, "-Sony:PreviewImage").mid(1), f.apercu.mid(1));
      EXPECT_EQ(Extraire(chemin, "-MPImage2:PreviewImage"), f.deuxieme);
      const QJsonObject apres = VueBinaire(chemin);
      auto texte = [](const QJsonValue& v) {
        return QJsonDocument(QJsonArray{v}).toJson(QJsonDocument::Compact).toStdString();
      };
      for (const QString& cle : avant.keys())
        EXPECT_EQ(texte(apres[cle]), texte(avant[cle])) << cle.toStdString();
      for (const QString& cle : apres.keys()) EXPECT_TRUE(avant.contains(cle)) << cle.toStdString();
    };
    // A comment inserted after the EXIF segment, made longer, shorter, removed.
    for (const char* texte : {"Navicula sp., 40x, fond clair, 30 octets",
                              "un commentaire bien plus long, "
                              "qui déplace encore davantage les octets de tout ce qui le suit",
                              "court", ""}) {
      CImage image;
      ASSERT_TRUE(image.ReadImage(chemin));
      image.JPEG()->JPEGComment().Content = QString::fromUtf8(texte);
      ASSERT_TRUE(image.WriteImage(chemin)) << image.Erreur().toStdString();
      verifier(texte);
    }
    // An EXIF edit makes the segment itself longer.
    CImage image;
    ASSERT_TRUE(image.ReadImage(chemin));
    image.JPEG()->JPEGComment().Content = "Navicula";
    image.JPEG()->EXIF()->AddModifyTag(Repertoire::IFD0, 0x0131, FmtAscii,
                                       Ascii("Tessellographe 1.0.0"));
    ASSERT_TRUE(image.WriteImage(chemin)) << image.Erreur().toStdString();
    verifier("EXIF");
    // The scan and the pictures after it are the source's, byte for byte.
    EXPECT_TRUE(Lire(chemin).endsWith(f.octets.mid(ParcourirSegments(f.octets).positionScan - 1)));
  }
}

// A TIFF keeps its strips and every directory the edit does not concern.
TEST(Reecriture, TiffGardeSesOctetsEtSesRepertoires) {
  for (bool mm : {false, true}) {
    // IFD0 (a 2 x 1 grey picture, one strip) -> EXIF sub-directory with a
    // Canon note -> IFD1 (a second page).
    QByteArray t = EnTete(mm);
    const QByteArray note = Ifd(mm, {{0x0006, 2, 10, Ascii("IMG:EOS D")}}, 300);
    t += Ifd(mm,
             {{0x0100, 3, 1, U16(mm, 2)},
              {0x0101, 3, 1, U16(mm, 1)},
              {0x0103, 3, 1, U16(mm, 1)},
              {0x0106, 3, 1, U16(mm, 1)},
              {0x010F, 2, 6, Ascii("Canon")},
              {0x0111, 4, 1, U32(mm, 400)},
              {0x0116, 3, 1, U16(mm, 1)},
              {0x0117, 4, 1, U32(mm, 2)},
              {0x8769, 4, 1, U32(mm, 250)}},
             8, 500);
    t.resize(250, '\0');
    t += Ifd(mm, {{0x927C, 7, uint32_t(note.size()), U32(mm, 300)}}, 250);
    t.resize(300, '\0');
    t += note;
    t.resize(400, '\0');
    t += "\x40\xC0";
    t.resize(500, '\0');
    t += Ifd(mm, {{0x0100, 3, 1, U16(mm, 1)}, {0x0101, 3, 1, U16(mm, 1)}, {0x0111, 4, 1, U32(mm, 401)},
                  {0x0117, 4, 1, U32(mm, 1)}}, 500);
    const QString chemin = Ecrire("page.tif", t);
    CImage image;
    ASSERT_TRUE(image.ReadImage(chemin));
    ASSERT_NE(image.TIFF(), nullptr);
    // Unchanged: the same bytes.
    ASSERT_TRUE(image.WriteImage(chemin)) << image.Erreur().toStdString();
    EXPECT_EQ(Lire(chemin), t);
    image.TIFF()->EXIF().AddModifyTag(Repertoire::IFD0, 0x0131, FmtAscii, Ascii("Tessellographe"));
    ASSERT_TRUE(image.WriteImage(chemin));
    const QByteArray sortie = Lire(chemin);
    // Only the header's pointer to IFD0 changed among the bytes read.
    EXPECT_EQ(sortie.left(4), t.left(4));
    EXPECT_EQ(sortie.mid(8, t.size() - 8), t.mid(8));
    CImage relue;
    ASSERT_TRUE(relue.ReadImage(chemin));
    CExifTIFF& x = relue.TIFF()->EXIF();
    EXPECT_GE(x.ifd(0)->Offset, t.size());
    EXPECT_EQ(x.ifd(0)->Trouver(0x0131)->GetDataFormatted(), "Tessellographe");
    EXPECT_EQ(x.ifd(0)->Trouver(0x0111)->GetDataVariant(), 400);
    EXPECT_EQ(x.SubIFD().Offset, 250);
    EXPECT_EQ(x.NombreIfd(), 2);
    EXPECT_EQ(x.ifd(1)->Offset, 500);
    EXPECT_TRUE(x.NoteFabricant().Lu());
  }
}

}  // namespace
}  // namespace tg::meta
