// Maker notes: recognition of the variants, reading in both byte orders, the
// move of the block when the EXIF block is rebuilt; exiftool as the peer
// that must read the same values before and after a rewrite.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <functional>

#include "metadata/CImage.h"
#include "metadata/CMakerNote.h"
#include "metadata/CommandesMeta.h"
#include "tests/metadata/Fabrique.h"

namespace tg::meta {
namespace {

using namespace test;

// An APP1 EXIF segment written here by hand: IFD0 with Make and the pointer
// to the EXIF directory, which holds the maker note only. `note` receives
// the note's offset in the TIFF structure, for the makers that count from
// there.
QByteArray App1(bool mm, const QByteArray& make, const std::function<QByteArray(uint32_t)>& note) {
  const uint32_t debutMake = 56;
  const uint32_t position = debutMake + make.size() + make.size() % 2;
  const QByteArray n = note(position);
  QByteArray t = EnTete(mm);
  t += U16(mm, 2);
  t += Entree(mm, 0x010F, 2, make.size(), U32(mm, debutMake));
  t += Entree(mm, 0x8769, 4, 1, U32(mm, 38));
  t += U32(mm, 0);
  t += U16(mm, 1);
  t += Entree(mm, 0x927C, 7, n.size(), U32(mm, position));
  t += U32(mm, 0);
  t += make;
  if (make.size() % 2) t += '\0';
  t += n;
  return Segment(0xE1, QByteArray("Exif\0\0", 6) + t);
}

// A directory of a maker note: entries, a zero link, then the values that
// do not fit, placed from `base` (the offset the maker counts from).
struct Valeur {
  uint16_t tag, format;
  uint32_t nombre;
  QByteArray octets;  // in the note's order
};
QByteArray Repertoire(bool mm, const std::vector<Valeur>& valeurs, uint32_t debutValeurs) {
  QByteArray entrees = U16(mm, uint16_t(valeurs.size())), donnees;
  uint32_t p = debutValeurs + 2 + 12 * uint32_t(valeurs.size()) + 4;
  for (const Valeur& v : valeurs) {
    if (v.octets.size() > 4) {
      entrees += Entree(mm, v.tag, v.format, v.nombre, U32(mm, p + donnees.size()));
      donnees += v.octets;
      if (donnees.size() % 2) donnees += '\0';
    } else {
      entrees += Entree(mm, v.tag, v.format, v.nombre, v.octets);
    }
  }
  return entrees + U32(mm, 0) + donnees;
}

CExifJPEG& Exif(CJPEG& j, const QByteArray& app1) {
  j.LireOctets(Inserer(JpegQt(), {app1}));
  return *j.EXIF();
}

TEST(NoteFabricant, CasioQVCVersion2EnTeteDe6) {
  for (bool mm : {false, true}) {
    CJPEG j;
    CMakerNote& n = Exif(j, App1(mm, QByteArray("CASIO COMPUTER CO.,LTD.\0", 24),
                                 [&](uint32_t p) {
                                   return QByteArray("QVC\0\0\0", 6) +
                                          Repertoire(mm,
                                                     {{0x3002, 3, 1, U16(mm, 3)},
                                                      {0x2001, 2, 9, QByteArray("20080101\0", 9)}},
                                                     p + 6);
                                 }))
                        .NoteFabricant();
    ASSERT_TRUE(n.Lu()) << mm;
    EXPECT_EQ(n.Manufacture, 2);
    EXPECT_EQ(n.MakerNoteTagVersion, 2);
    EXPECT_EQ(n.Offset, 6);
    ASSERT_EQ(n.Directories.size(), 2u);
    EXPECT_EQ(n.NomTag(0x3002), "Quality");
    EXPECT_EQ(n.GetMakerNoteFormatted(n.Directories[0]), "3 (Fine)");
    EXPECT_EQ(n.Directories[1].GetDataFormatted(), "20080101");
  }
  // Without "QVC": version 1, the directory at the start.
  CJPEG j;
  CMakerNote& n = Exif(j, App1(false, QByteArray("Casio\0", 6),
                               [](uint32_t p) {
                                 return Repertoire(false, {{0x0002, 3, 1, U16(false, 1)}}, p);
                               }))
                      .NoteFabricant();
  EXPECT_EQ(n.MakerNoteTagVersion, 1);
  EXPECT_EQ(n.Offset, 0);
  ASSERT_EQ(n.Directories.size(), 1u);
  EXPECT_EQ(n.GetMakerNoteFormatted(n.Directories[0]), "1 (Economy)");
}

// Nikon's own TIFF header, in the order opposite to the file's.
QByteArray NoteNikon(bool mmNote) {
  return QByteArray("Nikon\0\x02\x10\0\0", 10) + EnTete(mmNote) +
         Repertoire(mmNote,
                    {{0x0002, 3, 2, U16(mmNote, 0) + U16(mmNote, 400)},
                     {0x0004, 2, 8, QByteArray("FINE   \0", 8)},
                     {0x0005, 2, 13, QByteArray("AUTO        \0", 13)}},
                    8);
}

TEST(NoteFabricant, NikonAvecSonEnTeteLuDansSonOrdre) {
  for (bool mmFichier : {false, true}) {
    CJPEG j;
    CMakerNote& n = Exif(j, App1(mmFichier, QByteArray("NIKON CORPORATION\0", 18),
                                 [&](uint32_t) { return NoteNikon(!mmFichier); }))
                        .NoteFabricant();
    ASSERT_TRUE(n.Lu());
    EXPECT_EQ(n.MakerNoteTagVersion, 2);
    EXPECT_EQ(n.Offset, 18);
    EXPECT_EQ(n.ordre, mmFichier ? Ordre::Intel : Ordre::Motorola);
    ASSERT_EQ(n.Directories.size(), 3u);
    EXPECT_EQ(n.Directories[0].GetDataFormatted(), "0 400");
    EXPECT_EQ(n.Directories[1].GetDataFormatted(), "FINE   ");
    EXPECT_EQ(n.Directories[2].GetDataFormatted(), "AUTO        ");
    EXPECT_EQ(n.NomTag(0x0004), "Quality");
  }
}

TEST(NoteFabricant, CompteAuDelaDe1000) {
  // 0x1111 is 4369 both ways: nothing is read. 0x0A00 (2560) read turned is 10.
  CJPEG j;
  CMakerNote& n =
      Exif(j, App1(false, QByteArray("Canon\0", 6),
                   [](uint32_t) { return QByteArray("\x11\x11", 2) + QByteArray(40, '\x01'); }))
          .NoteFabricant();
  EXPECT_FALSE(n.Lu());
  EXPECT_TRUE(n.Directories.empty());

  CJPEG l;
  CMakerNote& o = Exif(l, App1(false, QByteArray("Canon\0", 6),
                               [](uint32_t p) {
                                 std::vector<Valeur> v;
                                 for (uint16_t t = 1; t <= 10; ++t)
                                   v.push_back({t, 3, 1, U16(true, t)});
                                 return Repertoire(true, v, p);
                               }))
                      .NoteFabricant();
  ASSERT_TRUE(o.Lu());
  EXPECT_EQ(o.ordre, Ordre::Motorola);
  ASSERT_EQ(o.Directories.size(), 10u);
  EXPECT_EQ(o.Directories[9].GetDataVariant(), 10);
  EXPECT_EQ(o.NomTag(0x0009), "OwnerName");
}

TEST(NoteFabricant, BlocsLaissesEnOctets) {
  struct Cas {
    const char* make;
    QByteArray note;
  };
  const Cas cas[] = {
      {"Minolta", QByteArray("MLY0") + QByteArray(30, '\x02')},
      {"KONICA MINOLTA", QByteArray("+M+M+M+M") + QByteArray(30, '\x02')},
      {"Panasonic",
       QByteArray("Lumix\0\0\0\0\0\0\0", 12) + Repertoire(false, {{1, 3, 1, U16(false, 2)}}, 0)},
      {"RICOH", QByteArray("Rdc\0\0\0\0\0", 8) + Repertoire(true, {{1, 3, 1, U16(true, 2)}}, 0)},
      {"Hasselblad", Repertoire(false, {{1, 3, 1, U16(false, 2)}}, 0)},
  };
  for (const Cas& c : cas) {
    CJPEG j;
    CExifJPEG& x =
        Exif(j, App1(false, QByteArray(c.make) + '\0', [&](uint32_t) { return c.note; }));
    EXPECT_FALSE(x.NoteFabricant().Lu()) << c.make;
    // Written back as it stands.
    QByteArray sortie;
    ASSERT_TRUE(j.Ecrire(sortie, nullptr));
    CJPEG relu;
    relu.LireOctets(sortie);
    EXPECT_EQ(relu.EXIF()->MakerNote(), c.note) << c.make;
  }
}

// Pentax counts its offsets from the file's TIFF header: the note is laid
// out again when the EXIF block moves it.
QByteArray NotePentax(bool mm, uint32_t p) {
  return QByteArray("AOC\0", 4) + (mm ? QByteArray("MM") : QByteArray("II")) +
         Repertoire(mm,
                    {{0x0008, 3, 1, U16(mm, 2)},
                     {0x0006, 7, 4, QByteArray("\x07\xE8\x03\x1F", 4)},
                     {0x0229, 2, 12, QByteArray("SN 12345678\0", 12)}},
                    p + 6);
}

TEST(NoteFabricant, PentaxRemisEnPlaceEtCanonRecopie) {
  for (bool mm : {false, true}) {
    CJPEG j;
    CExifJPEG& x = Exif(j, App1(mm, QByteArray("PENTAX Corporation\0", 19),
                                [&](uint32_t p) { return NotePentax(mm, p); }));
    ASSERT_TRUE(x.NoteFabricant().Lu());
    EXPECT_EQ(x.NoteFabricant().MakerNoteTagVersion, 2);
    EXPECT_EQ(x.NoteFabricant().Directories[2].GetDataFormatted(), "SN 12345678");
    EXPECT_EQ(x.NoteFabricant().GetMakerNoteFormatted(x.NoteFabricant().Directories[0]),
              "2 (Best)");
    // Room taken in front: the note moves.
    x.AddModifyTag(Repertoire::IFD0, 0x010E, FmtAscii, QByteArray(101, 'd') + '\0');
    QByteArray sortie;
    ASSERT_TRUE(j.Ecrire(sortie, nullptr));
    CJPEG relu;
    relu.LireOctets(sortie);
    CMakerNote& n = relu.EXIF()->NoteFabricant();
    ASSERT_TRUE(n.Lu());
    ASSERT_EQ(n.Directories.size(), 3u);
    EXPECT_EQ(n.Directories[2].GetDataFormatted(), "SN 12345678");
    EXPECT_EQ(n.Directories[1].GetDataFormatted(), "0x07E8031F");
    EXPECT_TRUE(relu.EXIF()->MakerNote().startsWith(mm ? "AOC\0MM" : QByteArray("AOC\0II", 6)));
  }
  // A cut note read turned (67 entries announced little-endian in a Motorola
  // file, 2 there): laid out again, it must not come back with a count that
  // passes in the file's order.
  {
    CJPEG j;
    CExifJPEG& x = Exif(j, App1(true, QByteArray("PENTAX\0", 7), [](uint32_t) {
                          return U16(false, 67) + Entree(false, 1, 3, 1, U16(false, 7)) +
                                 Entree(false, 2, 3, 1, U16(false, 9));
                        }));
    ASSERT_EQ(x.NoteFabricant().Directories.size(), 2u);
    QByteArray sortie;
    ASSERT_TRUE(j.Ecrire(sortie, nullptr));
    CJPEG relu;
    relu.LireOctets(sortie);
    const CMakerNote& n = relu.EXIF()->NoteFabricant();
    ASSERT_EQ(n.Directories.size(), 2u);
    EXPECT_EQ(n.Directories[1].GetDataVariant(), 9);
  }
  // Canon's note is copied byte for byte, even if its offsets then miss.
  CJPEG j;
  QByteArray note;
  CExifJPEG& x =
      Exif(j, App1(false, QByteArray("Canon\0", 6), [&](uint32_t p) {
             note = Repertoire(false, {{0x0006, 2, 10, QByteArray("IMG:EOS D\0", 10)}}, p);
             return note;
           }));
  x.AddModifyTag(Repertoire::IFD0, 0x010E, FmtAscii, QByteArray(101, 'd') + '\0');
  QByteArray sortie;
  ASSERT_TRUE(j.Ecrire(sortie, nullptr));
  CJPEG relu;
  relu.LireOctets(sortie);
  EXPECT_EQ(relu.EXIF()->MakerNote(), note);
}

TEST(NoteFabricant, TablesParFabricant) {
  // Each maker's table names its own tags; an unknown tag or value gives nothing.
  EXPECT_EQ(NomTagFabricant(4, 0x00B4), "ColorSpace");
  EXPECT_EQ(SignificationFabricant(4, 0x00B4, 2), "Adobe RGB");
  EXPECT_EQ(NomTagFabricant(0, 0x0201), "Quality");
  EXPECT_EQ(SignificationFabricant(0, 0x0201, 3), "SHQ");
  EXPECT_EQ(SignificationFabricant(3, 0x1001, 4), "+2 (hard)");
  EXPECT_EQ(SignificationFabricant(15, 0x0003, 6), "SXGA Fine");
  EXPECT_EQ(SignificationFabricant(7, 0x0101, 0), "Natural color");
  EXPECT_EQ(NomTagFabricant(12, 0x001A), "ImageStabilization");
  EXPECT_TRUE(NomTagFabricant(4, 0x7777).isEmpty());
  EXPECT_TRUE(SignificationFabricant(4, 0x00B4, 9).isEmpty());
  EXPECT_TRUE(NomTagFabricant(99, 1).isEmpty());
}

TEST(NoteFabricant, InfosDonneLaNote) {
  const QString chemin = QDir::currentPath() + "/nikon.jpg";
  {
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(Inserer(JpegQt(), {App1(true, QByteArray("NIKON CORPORATION\0", 18),
                                    [](uint32_t) { return NoteNikon(false); })}));
  }
  QString s, e;
  QTextStream ts(&s), te(&e);
  ASSERT_EQ(CommandeInfos({chemin, "--json"}, ts, te), 0);
  ts.flush();
  const QJsonObject note =
      QJsonDocument::fromJson(s.toUtf8()).object()["exif"].toObject()["makernote"].toObject();
  EXPECT_EQ(note["fabricant"].toInt(), 1);
  EXPECT_EQ(note["version"].toInt(), 2);
  EXPECT_EQ(note["offset"].toInt(), 18);
  const QJsonArray entrees = note["entrees"].toArray();
  ASSERT_EQ(entrees.size(), 3);
  EXPECT_EQ(entrees[1]["nom"].toString(), "Quality");
  EXPECT_EQ(entrees[1]["valeur"].toString(), "FINE   ");
  EXPECT_EQ(entrees[0]["tag"].toInt(), 2);
}

// exiftool's view of the maker's group, "-G1" names, numbers unformatted,
// with its warnings: a note whose offsets missed is read after a warning
// that its base was adjusted.
QJsonObject VueNote(const QString& chemin, const QString& groupe) {
  QProcess p;
  p.start("exiftool", {"-j", "-G1", "-a", "-n", "-MakerNotes:all", "-Warning", chemin});
  EXPECT_TRUE(p.waitForFinished(60000));
  const QJsonObject tout = QJsonDocument::fromJson(p.readAllStandardOutput()).array()[0].toObject();
  QJsonObject r;
  for (auto it = tout.begin(); it != tout.end(); ++it)
    if (it.key().startsWith(groupe + ":") || it.key().startsWith("ExifTool:Warning"))
      r[it.key()] = it.value();
  return r;
}

TEST(NoteFabricant, ExiftoolLitLesMemesValeursApresReecriture) {
  if (QStandardPaths::findExecutable("exiftool").isEmpty())
    GTEST_SKIP() << "exiftool manque (paquet libimage-exiftool-perl)";
  struct Cas {
    const char* groupe;
    QByteArray app1;
    const char* cle;
  };
  const Cas cas[] = {
      {"Pentax",
       App1(true, QByteArray("PENTAX Corporation\0", 19),
            [](uint32_t p) { return NotePentax(true, p); }),
       "Pentax:Quality"},
      {"Nikon",
       App1(false, QByteArray("NIKON CORPORATION\0", 18), [](uint32_t) { return NoteNikon(true); }),
       "Nikon:Quality"},
  };
  for (const Cas& c : cas) {
    const QString chemin = QDir::currentPath() + "/note.jpg";
    {
      QFile f(chemin);
      ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
      f.write(Inserer(JpegQt(), {c.app1}));
    }
    const QJsonObject avant = VueNote(chemin, c.groupe);
    ASSERT_TRUE(avant.contains(c.cle)) << c.groupe << QJsonDocument(avant).toJson().toStdString();
    CImage image;
    ASSERT_TRUE(image.ReadImage(chemin));
    image.JPEG()->EXIF()->AddModifyTag(Repertoire::IFD0, 0x010E, FmtAscii,
                                       QByteArray(151, 'd') + '\0');
    ASSERT_TRUE(image.WriteImage(chemin));
    EXPECT_EQ(VueNote(chemin, c.groupe), avant) << c.groupe;
  }
}

}  // namespace
}  // namespace tg::meta

namespace tg::meta {
namespace {

using namespace test;

// 16-bit elements in the note's order, from signed values.
QByteArray Elements(bool mm, std::initializer_list<int> valeurs) {
  QByteArray r;
  for (int v : valeurs) r += U16(mm, uint16_t(int16_t(v)));
  return r;
}

// A Canon note with CameraSettings, FocalLength and ShotInfo as Canon writes
// them: SHORT arrays whose element 0 is their length in bytes.
QByteArray NoteCanon(bool mm, uint32_t p) {
  // CameraSettings: MacroMode 1, SelfTimer 0, Quality 3, CanonFlashMode -1,
  // ContinuousDrive 1, [6] 7, FocusMode 1, [8] 0, RecordMode 7,
  // CanonImageSize 0, EasyMode 1, DigitalZoom 0, Contrast -1.
  const QByteArray reglages = Elements(mm, {28, 1, 0, 3, -1, 1, 7, 1, 0, 7, 0, 1, 0, -1});
  // FocalLength: FocalType 2, FocalLength 65000 (unsigned).
  const QByteArray focale = Elements(mm, {2, -536, 0, 0});
  // ShotInfo: [1..6] 0, WhiteBalance 8, SlowShutter -1, SequenceNumber 4,
  // then up to AutoRotate 1 at 27.
  QByteArray prise = Elements(mm, {58, 0, 0, 0, 0, 0, 0, 8, -1, 4});
  for (int i = 10; i < 27; ++i) prise += U16(mm, 0);
  prise += Elements(mm, {1, -1});
  return Repertoire(mm,
                    {{0x0001, 3, uint32_t(reglages.size() / 2), reglages},
                     {0x0002, 3, 4, focale},
                     {0x0004, 3, uint32_t(prise.size() / 2), prise},
                     {0x0006, 2, 10, QByteArray("IMG:EOS D\0", 10)}},
                    p);
}

TEST(NoteFabricant, CanonTableauxElementParElement) {
  for (bool mm : {false, true}) {
    CJPEG j;
    CMakerNote& n =
        Exif(j, App1(mm, QByteArray("Canon\0", 6), [&](uint32_t p) { return NoteCanon(mm, p); }))
            .NoteFabricant();
    ASSERT_TRUE(n.Lu()) << mm;
    ASSERT_EQ(n.Directories.size(), 4u);
    const QString reglages = n.GetMakerNoteFormatted(n.Directories[0]);
    const QStringList parties = reglages.split(QStringLiteral("; "));
    ASSERT_EQ(parties.size(), 11) << reglages.toStdString();
    EXPECT_EQ(parties[0], "MacroMode=1 (Macro)");
    EXPECT_EQ(parties[1], "SelfTimer=0 (Off)");
    EXPECT_EQ(parties[2], "Quality=3 (Fine)");
    EXPECT_EQ(parties[3], "CanonFlashMode=-1 (n/a)");
    EXPECT_EQ(parties[4], "ContinuousDrive=1 (Continuous)");
    // Element 6 has no name: FocusMode comes right after ContinuousDrive.
    EXPECT_EQ(parties[5], "FocusMode=1 (AI Servo AF)");
    EXPECT_TRUE(reglages.contains("RecordMode=7 (CR2+JPEG)"));
    EXPECT_TRUE(reglages.contains("EasyMode=1 (Manual)"));
    EXPECT_TRUE(reglages.endsWith("Contrast=-1 (Low)"));
    EXPECT_FALSE(reglages.contains("=28"));  // the length is not an element of its own

    const QString focale = n.GetMakerNoteFormatted(n.Directories[1]);
    EXPECT_TRUE(focale.startsWith("FocalType=2 (Zoom); FocalLength=65000")) << focale.toStdString();

    const QString prise = n.GetMakerNoteFormatted(n.Directories[2]);
    EXPECT_TRUE(prise.contains("WhiteBalance=8 (Shade)")) << prise.toStdString();
    EXPECT_TRUE(prise.contains("SlowShutter=-1 (n/a)"));
    EXPECT_TRUE(prise.contains("SequenceNumber=4;"));
    EXPECT_TRUE(prise.contains("AutoRotate=1 (Rotate 90 CW)"));
    EXPECT_TRUE(prise.endsWith("NDFilter=-1 (n/a)"));
    // A text tag keeps its plain value.
    EXPECT_EQ(n.GetMakerNoteFormatted(n.Directories[3]), "IMG:EOS D");
  }
  // Another maker's tag 1 is not a Canon array.
  EXPECT_FALSE(TableauCanon(0x0006));
  EXPECT_EQ(NomElementCanon(0x00A0, 10), "PictureStyle");
  EXPECT_EQ(SignificationElementCanon(0x00A0, 10, 0x85), "Faithful");
}

// exiftool, read with -n, must find the same raw numbers under the same
// names as the element decoding: a shifted index would show at once.
TEST(NoteFabricant, CanonTableauxCommeExiftool) {
  if (QStandardPaths::findExecutable("exiftool").isEmpty())
    GTEST_SKIP() << "exiftool manque (paquet libimage-exiftool-perl)";
  const QString chemin = QDir::currentPath() + "/canon.jpg";
  const QByteArray app1 =
      App1(false, QByteArray("Canon\0", 6), [](uint32_t p) { return NoteCanon(false, p); });
  {
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(Inserer(JpegQt(), {app1}));
  }
  const QJsonObject vue = VueNote(chemin, "Canon");
  CJPEG j;
  const CMakerNote& n = Exif(j, app1).NoteFabricant();
  int compares = 0;
  for (int i : {0, 2})
    for (const QString& p : n.GetMakerNoteFormatted(n.Directories[i]).split("; ")) {
      const QString nom = p.section(u'=', 0, 0);
      // Names whose raw value exiftool keeps under -n.
      static const QStringList bruts = {"MacroMode",       "Quality",        "CanonFlashMode",
                                        "ContinuousDrive", "FocusMode",      "RecordMode",
                                        "CanonImageSize",  "EasyMode",       "WhiteBalance",
                                        "SlowShutter",     "SequenceNumber", "AutoRotate"};
      if (!bruts.contains(nom)) continue;
      const QJsonValue v = vue.value("Canon:" + nom);
      ASSERT_FALSE(v.isUndefined()) << nom.toStdString();
      EXPECT_EQ(QString::number(v.toInt()), p.section(u'=', 1).section(u' ', 0, 0))
          << nom.toStdString();
      ++compares;
    }
  EXPECT_EQ(compares, 12);
}

// Kyocera counts each value's offset from the start of its own entry.
QByteArray NoteKyocera(bool mm) {
  const QByteArray texte("KYOCERA 1.0\0", 12);
  const int entrees = 2;
  const uint32_t valeur = 2 + 12 * entrees + 4;  // from the directory's count
  return QByteArray("KYOCERA            \0\0\0", 22) + U16(mm, entrees) +
         Entree(mm, 0x0E01, 3, 1, U16(mm, 7)) +
         Entree(mm, 0x0E02, 2, 12, U32(mm, valeur - (2 + 12))) + U32(mm, 0) + texte;
}

TEST(NoteFabricant, KyoceraCompteDepuisChaqueEntree) {
  for (bool mm : {false, true}) {
    CJPEG j;
    CExifJPEG& x =
        Exif(j, App1(mm, QByteArray("KYOCERA\0", 8), [&](uint32_t) { return NoteKyocera(mm); }));
    ASSERT_TRUE(x.NoteFabricant().Lu());
    EXPECT_EQ(x.NoteFabricant().Offset, 22);
    EXPECT_TRUE(x.NoteFabricant().EntreeRelative());
    ASSERT_EQ(x.NoteFabricant().Directories.size(), 2u);
    EXPECT_EQ(x.NoteFabricant().Directories[1].GetDataFormatted(), "KYOCERA 1.0");
    // Moved by a longer IFD0, laid out again: the text is still found.
    x.AddModifyTag(Repertoire::IFD0, 0x010E, FmtAscii, QByteArray(77, 'd') + '\0');
    QByteArray sortie;
    ASSERT_TRUE(j.Ecrire(sortie, nullptr));
    CJPEG relu;
    relu.LireOctets(sortie);
    const CMakerNote& n = relu.EXIF()->NoteFabricant();
    ASSERT_EQ(n.Directories.size(), 2u) << mm;
    EXPECT_EQ(n.Directories[1].GetDataFormatted(), "KYOCERA 1.0");
    EXPECT_EQ(n.Directories[0].GetDataVariant(), 7);
    // Nothing in the block depends on its place: the same bytes as read.
    EXPECT_EQ(relu.EXIF()->MakerNote(), NoteKyocera(mm));
  }
}

TEST(NoteFabricant, KyoceraCommeExiftool) {
  if (QStandardPaths::findExecutable("exiftool").isEmpty())
    GTEST_SKIP() << "exiftool manque (paquet libimage-exiftool-perl)";
  const QString chemin = QDir::currentPath() + "/kyocera.jpg";
  {
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(Inserer(JpegQt(), {App1(true, QByteArray("KYOCERA\0", 8),
                                    [](uint32_t) { return NoteKyocera(true); })}));
  }
  QProcess p;
  p.start("exiftool", {"-j", "-u", "-G1", "-MakerNotes:all", chemin});
  ASSERT_TRUE(p.waitForFinished(60000));
  const QJsonObject vue = QJsonDocument::fromJson(p.readAllStandardOutput()).array()[0].toObject();
  CImage image;
  ASSERT_TRUE(image.ReadImage(chemin));
  const CMakerNote& n = image.JPEG()->EXIF()->NoteFabricant();
  ASSERT_EQ(n.Directories.size(), 2u);
  EXPECT_EQ(vue.value("MakerUnknown:Unknown_0x0e02").toString(),
            n.Directories[1].GetDataFormatted());
  // Rewritten with the note moved: exiftool still reads the text.
  image.JPEG()->EXIF()->AddModifyTag(Repertoire::IFD0, 0x010E, FmtAscii,
                                     QByteArray(151, 'd') + '\0');
  ASSERT_TRUE(image.WriteImage(chemin));
  QProcess q;
  q.start("exiftool", {"-j", "-u", "-G1", "-MakerNotes:all", chemin});
  ASSERT_TRUE(q.waitForFinished(60000));
  const QJsonObject apres =
      QJsonDocument::fromJson(q.readAllStandardOutput()).array()[0].toObject();
  EXPECT_EQ(apres.value("MakerUnknown:Unknown_0x0e02").toString(), "KYOCERA 1.0");
}

}  // namespace
}  // namespace tg::meta

namespace tg::meta {
namespace {

TEST(NoteFabricant, TablesBienFormees) {
  EXPECT_EQ(DefautsTablesFabricants().join("\n").toStdString(), "");
  // Agfa and Epson share Olympus's tags; Sigma's letters have their meaning.
  EXPECT_EQ(NomTagFabricant(9, 0x0201), "Quality");
  EXPECT_EQ(NomTagFabricant(10, 0x020B), "EpsonImageWidth");
  EXPECT_EQ(SignificationTexteFabricant(5, 0x0008, "A"), "Aperture-priority AE");
  EXPECT_EQ(SignificationTexteFabricant(5, 0x0009, "8"), "Multi-segment");
  EXPECT_EQ(NomTagFabricant(11, 0x0E00), "PrintIM");
}

TEST(NoteFabricant, SigmaEnLettres) {
  CJPEG j;
  CMakerNote& n = Exif(j, App1(false, QByteArray("SIGMA\0", 6),
                               [](uint32_t p) {
                                 return QByteArray("SIGMA\0\0\0", 8) +
                                        Repertoire(false,
                                                   {{0x0008, 2, 2, QByteArray("S\0", 2)},
                                                    {0x0009, 2, 2, QByteArray("C\0", 2)}},
                                                   p + 8);
                               }))
                      .NoteFabricant();
  ASSERT_TRUE(n.Lu());
  ASSERT_EQ(n.Directories.size(), 2u);
  EXPECT_EQ(n.GetMakerNoteFormatted(n.Directories[0]), "S (Shutter speed priority AE)");
  EXPECT_EQ(n.GetMakerNoteFormatted(n.Directories[1]), "C (Center-weighted average)");
}

}  // namespace
}  // namespace tg::meta

namespace tg::meta {
namespace {

using namespace test;

// The two sub-directories of the Olympus tests, `debut` being the offset of
// their count as the note counts it.
QByteArray Equipement(bool mm, uint32_t debut) {
  return Repertoire(mm,
                    {{0x0000, 7, 4, QByteArray("0100")},
                     {0x0100, 2, 6, QByteArray("D4040\0", 6)},
                     {0x0201, 1, 6, QByteArray("\x00\x00\x01\x00\x00\x00", 6)},
                     {0x1000, 3, 1, U16(mm, 2)}},
                    debut);
}
QByteArray Reglages(bool mm, uint32_t debut) {
  return Repertoire(mm,
                    {{0x0200, 3, 1, U16(mm, 3)},
                     {0x0202, 3, 1, U16(mm, 5)},
                     {0x0507, 3, 1, U16(mm, 1)},
                     {0x050F, 8, 3, U16(mm, 0xFFFF) + U16(mm, 0xFFFF) + U16(mm, 1)},
                     {0x0530, 3, 1, U16(mm, 7)}},
                    debut);
}

// "OLYMP\0": offsets from the file's TIFF header (`p`, the note's offset
// there), the sub-directories as UNDEFINED blocks.
QByteArray NoteOlympAncienne(bool mm, uint32_t p) {
  const uint32_t equipement = p + 8 + 2 + 12 * 3 + 4;
  const QByteArray e = Equipement(mm, equipement);
  const QByteArray r = Reglages(mm, equipement + e.size() + e.size() % 2);
  return QByteArray("OLYMP\0", 6) + U16(mm, 1) +
         Repertoire(mm,
                    {{0x0201, 3, 1, U16(mm, 2)},
                     {0x2010, 7, uint32_t(e.size()), e},
                     {0x2020, 7, uint32_t(r.size()), r}},
                    p + 8);
}

// "OLYMPUS\0II" or "MM": offsets from the note's start, the order its own,
// the sub-directories pointed at (the IFD format for one, LONG for the other).
QByteArray NoteOlympusII(bool mm) {
  const uint32_t equipement = 12 + 2 + 12 * 3 + 4;
  const QByteArray e = Equipement(mm, equipement);
  const uint32_t reglages = equipement + e.size();
  return QByteArray("OLYMPUS\0", 8) + (mm ? QByteArray("MM") : QByteArray("II")) + U16(mm, 3) +
         Repertoire(mm,
                    {{0x0201, 3, 1, U16(mm, 2)},
                     {0x2010, 13, 1, U32(mm, equipement)},
                     {0x2020, 4, 1, U32(mm, reglages)}},
                    12) +
         e + Reglages(mm, reglages);
}

const QByteArray kOlympus("OLYMPUS IMAGING CORP.\0", 22);

void VerifierOlympus(const CMakerNote& n, const char* cas) {
  ASSERT_TRUE(n.Lu()) << cas;
  ASSERT_EQ(n.Directories.size(), 3u) << cas;
  EXPECT_EQ(n.GetMakerNoteFormatted(n.Directories[0]), "2 (HQ)") << cas;
  EXPECT_EQ(n.NomTag(0x2010), "Equipment");
  EXPECT_EQ(n.GetMakerNoteFormatted(n.Directories[1]).toStdString(),
            "EquipmentVersion=0x30313030; CameraType2=D4040 (E-1); "
            "LensType=0x000001000000 (Olympus Zuiko Digital ED 50mm F2.0 Macro); "
            "FlashType=2 (Simple E-System)")
      << cas;
  EXPECT_EQ(n.GetMakerNoteFormatted(n.Directories[2]).toStdString(),
            "ExposureMode=3 (Aperture-priority AE); MeteringMode=5 (ESP); "
            "ColorSpace=1 (Adobe RGB); Gradation=-1 -1 1 (Low Key); 0x0530=7")
      << cas;
}

TEST(NoteOlympus, SousRepertoiresNommesDansLesDeuxOrdres) {
  for (bool mm : {false, true}) {
    CJPEG j;
    const CMakerNote& n =
        Exif(j, App1(mm, kOlympus, [&](uint32_t p) { return NoteOlympAncienne(mm, p); }))
            .NoteFabricant();
    EXPECT_EQ(n.Offset, 8);
    VerifierOlympus(n, mm ? "OLYMP MM" : "OLYMP II");
  }
  // The note's own order wins over the file's, and its offsets count from
  // its start: moved by a rewrite, it still reads the same, bytes unchanged.
  for (bool mm : {false, true}) {
    CJPEG j;
    CExifJPEG& x = Exif(j, App1(!mm, kOlympus, [&](uint32_t) { return NoteOlympusII(mm); }));
    EXPECT_EQ(x.NoteFabricant().Offset, 12);
    EXPECT_EQ(x.NoteFabricant().ordre, mm ? Ordre::Motorola : Ordre::Intel);
    VerifierOlympus(x.NoteFabricant(), mm ? "OLYMPUS MM" : "OLYMPUS II");
    x.AddModifyTag(Repertoire::IFD0, 0x010E, FmtAscii, QByteArray(77, 'd') + '\0');
    QByteArray sortie;
    ASSERT_TRUE(j.Ecrire(sortie, nullptr));
    CJPEG relu;
    relu.LireOctets(sortie);
    EXPECT_EQ(relu.EXIF()->MakerNote(), NoteOlympusII(mm));
    VerifierOlympus(relu.EXIF()->NoteFabricant(), "OLYMPUS relu");
  }
  EXPECT_EQ(SousRepertoireOlympus(0x2031), "RawDevelopment2");
  EXPECT_TRUE(SousRepertoireOlympus(0x2100).isEmpty());
  EXPECT_EQ(NomSousTagOlympus(0x2050, 0x0209), "AutoFocus");
  EXPECT_EQ(SignificationSousTagOlympus(0x2040, 0x1112, "2 2"), "3:2");
  EXPECT_EQ(SignificationSousTagOlympus(0x2030, 0x0109, "1"), "High Function");
}

// Sub-directories that cannot be read stay as their plain value.
TEST(NoteOlympus, SousRepertoireIllisibleResteBrut) {
  const QByteArray compteAbsurde = U16(false, 0xFFFF) + QByteArray(20, '\x03');
  const QByteArray entreesTropLongues = U16(false, 3) + Entree(false, 0x1000, 3, 1, U16(false, 2));
  // The CameraType2 text placed far past the note's end.
  const QByteArray valeurDehors =
      U16(false, 1) + Entree(false, 0x0100, 2, 6, U32(false, 0x00FFFF00)) + U32(false, 0);
  const QByteArray formatInconnu =
      U16(false, 1) + Entree(false, 0x1000, 99, 1, U16(false, 2)) + U32(false, 0);
  CJPEG j;
  const CMakerNote& n =
      Exif(j, App1(false, kOlympus,
                   [&](uint32_t) {
                     return QByteArray("OLYMPUS\0II\x03\0", 12) +
                            Repertoire(false,
                                       {// the note's own directory: read once, no
                                        // more, and its IFD entries are no values
                                        {0x2010, 13, 1, U32(false, 12)},
                                        {0x2020, 4, 1, U32(false, 0x7FFFFFF0)},
                                        {0x2030, 7, uint32_t(compteAbsurde.size()), compteAbsurde},
                                        {0x2031, 7, uint32_t(entreesTropLongues.size()),
                                         entreesTropLongues},
                                        {0x2040, 7, uint32_t(valeurDehors.size()), valeurDehors},
                                        {0x2050, 7, uint32_t(formatInconnu.size()), formatInconnu}},
                                       12);
                   }))
          .NoteFabricant();
  ASSERT_TRUE(n.Lu());
  ASSERT_EQ(n.Directories.size(), 6u);
  for (size_t i = 0; i < n.Directories.size(); ++i)
    EXPECT_EQ(n.GetMakerNoteFormatted(n.Directories[i]), n.Directories[i].GetDataFormatted()) << i;
  EXPECT_EQ(n.GetMakerNoteFormatted(n.Directories[1]), "2147483632");
  // Another maker's tag 0x2010 is not a sub-directory.
  CJPEG s;
  const CMakerNote& sanyo =
      Exif(s, App1(false, QByteArray("SANYO\0", 6),
                   [](uint32_t p) {
                     const QByteArray e = Equipement(false, p + 8 + 2 + 12 + 4);
                     return QByteArray("SANYO\0\x01\0", 8) +
                            Repertoire(false, {{0x2010, 7, uint32_t(e.size()), e}}, p + 8);
                   }))
          .NoteFabricant();
  ASSERT_EQ(sanyo.Directories.size(), 1u);
  EXPECT_EQ(sanyo.GetMakerNoteFormatted(sanyo.Directories[0]),
            sanyo.Directories[0].GetDataFormatted());
}

// exiftool reads the same numbers and meanings in the same sub-directories.
TEST(NoteOlympus, CommeExiftool) {
  if (QStandardPaths::findExecutable("exiftool").isEmpty())
    GTEST_SKIP() << "exiftool manque (paquet libimage-exiftool-perl)";
  struct Cas {
    const char* nom;
    QByteArray app1;
  };
  const Cas cas[] = {
      {"OLYMP MM", App1(true, kOlympus, [](uint32_t p) { return NoteOlympAncienne(true, p); })},
      {"OLYMPUS II", App1(true, kOlympus, [](uint32_t) { return NoteOlympusII(false); })},
  };
  for (const Cas& c : cas) {
    const QString chemin = QDir::currentPath() + "/olympus.jpg";
    {
      QFile f(chemin);
      ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
      f.write(Inserer(JpegQt(), {c.app1}));
    }
    const QJsonObject nombres = VueNote(chemin, "Olympus");
    QProcess p;
    p.start("exiftool", {"-j", "-G1", "-Olympus:all", chemin});
    ASSERT_TRUE(p.waitForFinished(60000));
    const QJsonObject textes =
        QJsonDocument::fromJson(p.readAllStandardOutput()).array()[0].toObject();
    CJPEG j;
    const CMakerNote& n = Exif(j, c.app1).NoteFabricant();
    ASSERT_EQ(n.Directories.size(), 3u) << c.nom;
    int compares = 0;
    for (int i : {1, 2})
      for (const QString& partie : n.GetMakerNoteFormatted(n.Directories[i]).split("; ")) {
        const QString nom = partie.section(u'=', 0, 0);
        static const QStringList comparees = {"CameraType2",  "FlashType",  "ExposureMode",
                                              "MeteringMode", "ColorSpace", "LensType"};
        if (!comparees.contains(nom)) continue;
        const QString valeur = partie.section(u'=', 1).section(" (", 0, 0);
        const QString sens = partie.section(" (", 1).chopped(1);
        const QJsonValue brut = nombres.value("Olympus:" + nom);
        ASSERT_FALSE(brut.isUndefined()) << c.nom << " " << nom.toStdString();
        if (nom != "LensType") {  // exiftool gives the lens by its code, not its bytes
          EXPECT_EQ(brut.toVariant().toString(), valeur) << c.nom << " " << nom.toStdString();
        }
        EXPECT_EQ(textes.value("Olympus:" + nom).toVariant().toString(), sens)
            << c.nom << " " << nom.toStdString();
        ++compares;
      }
    EXPECT_EQ(compares, 6) << c.nom;
  }
}

}  // namespace
}  // namespace tg::meta
