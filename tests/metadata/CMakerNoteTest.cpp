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
