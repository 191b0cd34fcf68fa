// Writes the seeds of the fuzz targets: pictures made here, never copied.
// Usage: fuzz_graines DOSSIER (makes DOSSIER/jpeg, exif, tiff, commentaire).
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <cstdio>

#include "metadata/CExifJPEG.h"
#include "tests/metadata/Fabrique.h"

namespace {

using namespace tg::meta;
using namespace tg::meta::test;

void Ecrire(const QString& dossier, const QString& nom, const QByteArray& octets) {
  QDir().mkpath(dossier);
  QFile f(dossier + "/" + nom);
  if (f.open(QIODevice::WriteOnly)) f.write(octets);
}

QByteArray Exif(bool mm, bool complet) {
  CExifJPEG x;
  x.alignType = mm ? Ordre::Motorola : Ordre::Intel;
  x.AddModifyTag(Repertoire::IFD0, 0x010F, FmtAscii, QByteArray("Canon\0", 6));
  x.AddModifyTag(Repertoire::IFD0, 0x0112, FmtShort, U16(false, 1));
  x.AddModifyTag(Repertoire::IFD0, 0x011A, FmtRational, U32(false, 72) + U32(false, 1));
  if (complet) {
    x.AddModifyTag(Repertoire::SubIFD, 0x829A, FmtRational, U32(false, 1) + U32(false, 60));
    x.AddModifyTag(Repertoire::SubIFD, 0x9003, FmtAscii, QByteArray("2024:01:02 03:04:05\0", 20));
    x.AddModifyTag(Repertoire::SubIFD, 0x927C, FmtUndefined, QByteArray("Nikon\0\x02\x10\0\0", 10));
    x.AddModifyTag(Repertoire::SubIFD, 0x9999, FmtDouble, QByteArray(8, '\x40'));
    x.AddModifyTag(Repertoire::Interop, 0x0001, FmtAscii, QByteArray("R98\0", 4));
    x.AddModifyTag(Repertoire::GPS, 0x0001, FmtAscii, QByteArray("N\0", 2));
    x.AddModifyTag(Repertoire::IFD1, 0x0103, FmtShort, U16(false, 6));
    x.ThumbnailData = JpegQt(8, 8);
  }
  QByteArray segment;
  x.WriteEXIF(segment);
  return segment;
}

QByteArray Tiff(bool mm) {
  QByteArray t = EnTete(mm);
  t += U16(mm, 5);
  t += Entree(mm, 0x0100, 3, 1, U16(mm, 2));
  t += Entree(mm, 0x0101, 3, 1, U16(mm, 2));
  t += Entree(mm, 0x010F, 2, 6, U32(mm, 74));
  t += Entree(mm, 0x0111, 4, 1, U32(mm, 80));
  t += Entree(mm, 0x0117, 4, 1, U32(mm, 4));
  t += U32(mm, 0);
  t += QByteArray("Nikon\0", 6);
  t += QByteArray("\x01\x02\x03\x04", 4);
  return t;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "Usage : fuzz_graines DOSSIER\n");
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  const QString racine = QString::fromLocal8Bit(argv[1]);
  const QByteArray jpeg = JpegQt(16, 16);
  for (bool mm : {false, true}) {
    const QString o = mm ? "mm" : "ii";
    const QByteArray exif = Exif(mm, true);
    Ecrire(
        racine + "/jpeg", "exif_" + o + ".jpg",
        Inserer(jpeg, {exif, Segment(0xFE, QByteArray("Application=Tessellographe\r\n\0", 29))}));
    Ecrire(racine + "/exif", "complet_" + o + ".bin", exif.mid(4));
    Ecrire(racine + "/exif", "simple_" + o + ".bin", Exif(mm, false).mid(4));
    Ecrire(racine + "/tiff", "tiff_" + o + ".tif", Tiff(mm));
  }
  Ecrire(racine + "/jpeg", "nu.jpg", jpeg);
  Ecrire(racine + "/jpeg", "xmp.jpg",
         Inserer(jpeg, {Segment(0xE1, QByteArray("http://ns.adobe.com/xap/1.0/\0<x/>", 34)),
                        Segment(0xED, QByteArray("Photoshop 3.0\0", 14))}));
  Ecrire(racine + "/commentaire", "com.bin",
         QByteArray(1, '\0') + Segment(0xFE, QByteArray("Titre=X\r\n\0", 10)) +
             QByteArray("\xFF\xDB\x00\x43", 4));
  QImage image(12, 8, QImage::Format_ARGB32);
  image.fill(qRgba(10, 200, 30, 128));
  image.setText("Comment", "Titre=X");
  image.setText("Description", QString(400, 'd'));
  image.setText("Auteur", QString::fromUtf8("Équipe"));
  QByteArray png;
  QBuffer tampon(&png);
  tampon.open(QIODevice::WriteOnly);
  image.save(&tampon, "PNG");
  Ecrire(racine + "/png", "texte.png", png);
  const QByteArray gif(
      "GIF89a\x01\x00\x01\x00\x80\x00\x00\x00\x00\x00\xFF\xFF\xFF"
      "\x21\xFE\x03"
      "abc\x00\x21\xF9\x04\x00\x00\x00\x00\x00"
      "\x2C\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02\x44\x01\x00\x3B",
      50);
  Ecrire(racine + "/gif", "commentaire.gif", gif);
  Ecrire(racine + "/gif", "image.bmp",
         QByteArray("BM\x46\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0", 18) + QByteArray(52, '\x01'));
  Ecrire(racine + "/iptc", "mots.bin",
         QByteArray("8BIM\x03\xED\0\0\0\0\0\x04\0\x48\0\0"
                    "8BIM\x04\x04\0\0\0\0\0\x0F",
                    28) +
             QByteArray("\x1C\x02\x19\0\x01"
                        "a\x1C\x02\x78\0\x04"
                        "abcd\0",
                        16));
  // Maker notes: first byte the maker + 1, second the byte order (1 Motorola).
  Ecrire(racine + "/makernote", "pentax.bin",
         QByteArray("\x0E\x01"
                    "AOC\0MM\0\x02\0\x08\0\x03\0\0\0\x01\0\x02\0\0"
                    "\x02\x29\0\x02\0\0\0\x0C\0\0\0\x2C\0\0\0\0"
                    "SN 12345678\0",
                    50));
  Ecrire(racine + "/makernote", "nikon.bin",
         QByteArray("\x02\x00"
                    "Nikon\0\x02\x10\0\0"
                    "II*\0\x08\0\0\0\x01\0\x04\0\x02\0"
                    "\x08\0\0\0\x1A\0\0\0\0\0\0\0"
                    "FINE   \0",
                    46));
  Ecrire(racine + "/makernote", "casio.bin",
         QByteArray("\x03\x00"
                    "QVC\0\0\0\x01\0\x02\x30\x03\0\x01\0\0\0\x03\0\0\0\0\0\0\0",
                    26));
  // Kyocera: offsets from each entry; Canon: an array decoded element by element.
  Ecrire(racine + "/makernote", "kyocera.bin",
         QByteArray("\x0C\x00"
                    "KYOCERA            \0\0\0"
                    "\x02\0\x01\x0E\x03\0\x01\0\0\0\x07\0\0\0"
                    "\x02\x0E\x02\0\x0C\0\0\0\x10\0\0\0\0\0\0\0"
                    "KYOCERA 1.0\0",
                    66));
  Ecrire(racine + "/makernote", "canon.bin",
         QByteArray("\x05\x00"
                    "\x01\0\x01\0\x03\0\x04\0\0\0\x1A\0\0\0\0\0\0\0"
                    "\x08\0\x01\0\xFF\xFF\x03\0",
                    28));
  // Olympus: a sub-directory pointed at from the note's start ("OLYMPUS\0II"),
  // and one held as an UNDEFINED block counted from the TIFF header ("OLYMP\0").
  Ecrire(racine + "/makernote", "olympus.bin",
         QByteArray("\x01\x00"
                    "OLYMPUS\0II\x03\0"
                    "\x01\0\x10\x20\x0D\0\x01\0\0\0\x1E\0\0\0\0\0\0\0"
                    "\x01\0\0\x10\x03\0\x01\0\0\0\x02\0\0\0\0\0\0\0",
                    50));
  Ecrire(racine + "/makernote", "olymp.bin",
         QByteArray("\x01\x00"
                    "OLYMP\0\x01\0"
                    "\x01\0\x20\x20\x07\0\x12\0\0\0\x22\0\0\0\0\0\0\0"
                    "\x01\0\0\x02\x03\0\x01\0\0\0\x03\0\0\0\0\0\0\0",
                    46));
  Ecrire(racine + "/commentaire", "pair.bin", QByteArray(1, '\0') + Segment(0xFE, "abcd"));
  return 0;
}
