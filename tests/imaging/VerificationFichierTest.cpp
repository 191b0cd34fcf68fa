// The check of a picture file before it is decoded: sizes within limits,
// enough bytes for what the header announces, French messages.
#include <FreeImage.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <QDir>
#include <QFile>

#include "imaging/VerificationFichier.h"

namespace tg {
namespace {

// A 40 x 30 picture as FreeImage writes it (Qt has no GIF writer).
QByteArray Encode(const char* format) {
  const int l = 40, h = 30;
  FIBITMAP* dib = FreeImage_Allocate(l, h, 24);
  for (int y = 0; y < h; ++y) {
    BYTE* ligne = FreeImage_GetScanLine(dib, y);
    for (int x = 0; x < l; ++x) {
      ligne[3 * x] = BYTE(x * 6);
      ligne[3 * x + 1] = BYTE(y * 8);
      ligne[3 * x + 2] = BYTE((x ^ y) * 4);
    }
  }
  const FREE_IMAGE_FORMAT fif = FreeImage_GetFIFFromFormat(format);
  if (fif == FIF_GIF) {
    FIBITMAP* q = FreeImage_ColorQuantize(dib, FIQ_WUQUANT);
    FreeImage_Unload(dib);
    dib = q;
  }
  FIMEMORY* m = FreeImage_OpenMemory();
  EXPECT_TRUE(FreeImage_SaveToMemory(fif, dib, m, 0)) << format;
  BYTE* donnees = nullptr;
  DWORD taille = 0;
  FreeImage_AcquireMemory(m, &donnees, &taille);
  const QByteArray octets(reinterpret_cast<const char*>(donnees), qsizetype(taille));
  FreeImage_CloseMemory(m);
  FreeImage_Unload(dib);
  return octets;
}

QByteArray Be16(uint16_t v) { return QByteArray(1, char(v >> 8)) + char(v & 0xFF); }
QByteArray Be32(uint32_t v) { return Be16(uint16_t(v >> 16)) + Be16(uint16_t(v)); }

// A PSD of `canaux` 8-bit channels, raw rows; `donnees` bytes of pixels.
QByteArray Psd(uint32_t l, uint32_t h, int64_t donnees, uint16_t canaux = 3) {
  QByteArray p = QByteArray("8BPS") + Be16(1) + QByteArray(6, '\0') + Be16(canaux) + Be32(h) + Be32(l) +
                 Be16(8) + Be16(3);
  p += Be32(0) + Be32(0) + Be32(0) + Be16(0);
  return p + QByteArray(donnees, '\x80');
}

VerificationImage Verifier(const QByteArray& octets, const QString& extension = QString()) {
  return VerifierOctetsImage(octets.constData(), octets.size(), "essai", extension);
}

TEST(VerificationFichier, ImagesEntieresAcceptees) {
  for (const char* format : {"JPEG", "PNG", "BMP", "TIFF", "GIF"}) {
    const VerificationImage v = Verifier(Encode(format));
    EXPECT_TRUE(v.Bon()) << format << " " << v.message.toStdString();
    EXPECT_EQ(v.largeur, 40) << format;
    EXPECT_EQ(v.hauteur, 30) << format;
  }
  EXPECT_TRUE(Verifier(Psd(40, 30, 3 * 40 * 30)).Bon());
  const VerificationImage pcd = Verifier(QByteArray(0x30000 + 768 * 512 * 3 / 2, '\0'), "pcd");
  EXPECT_TRUE(pcd.Bon()) << pcd.message.toStdString();
}

// Cut anywhere, no picture passes as whole; a JPEG cut in its image data is
// the one case that may still be shown.
TEST(VerificationFichier, ImagesCoupeesRefuseesOuIncompletes) {
  for (const char* format : {"JPEG", "PNG", "BMP", "TIFF", "GIF"}) {
    const QByteArray entier = Encode(format);
    for (qsizetype n = 0; n < entier.size(); n += 7) {
      const VerificationImage v = Verifier(entier.left(n));
      ASSERT_FALSE(v.Bon()) << format << " coupé à " << n;
      EXPECT_FALSE(v.message.isEmpty());
      if (v.incomplet && !v.refuse) EXPECT_EQ(QString(format), "JPEG");
    }
  }
  const QByteArray jpeg = Encode("JPEG");
  const VerificationImage v = Verifier(jpeg.left(jpeg.size() - 40));
  EXPECT_TRUE(v.incomplet);
  EXPECT_FALSE(v.refuse);
  EXPECT_TRUE(v.message.contains("incomplet")) << v.message.toStdString();
  // A trailer after the end marker is no cut.
  EXPECT_TRUE(Verifier(jpeg + "donnees du fabricant").Bon());
}

TEST(VerificationFichier, EnTetesQuiMentent) {
  struct Cas {
    const char* nom;
    QByteArray octets;
    QString extension;
    const char* attendu;
  };
  QByteArray bmp = Encode("BMP");
  bmp.replace(22, 4, QByteArray("\x00\x10\x00\x00", 4));  // 4096 rows announced
  QByteArray tiff = Encode("TIFF");
  const Cas cas[] = {
      {"Photo CD réduit à son en-tête", QByteArray(4096, '\0'), "pcd", "incomplet"},
      {"PSD de 40000 pixels de large", Psd(40000, 10, 0), "", "trop grande"},
      {"PSD de 25000 x 25000", Psd(25000, 25000, 0), "", "trop grande"},
      {"PSD sans ses canaux", Psd(400, 300, 1000), "", "incomplet"},
      {"PSD de 0 canal", Psd(40, 30, 3600, 0), "", "canaux"},
      {"BMP dont l'en-tête ment", bmp, "", "incomplet"},
      {"fichier vide", QByteArray(), "", "vide"},
      {"texte", QByteArray("ceci n'est pas une image"), "jpg", "format"},
  };
  for (const Cas& c : cas) {
    const VerificationImage v = Verifier(c.octets, c.extension);
    EXPECT_TRUE(v.refuse) << c.nom;
    EXPECT_TRUE(v.message.contains(QString::fromUtf8(c.attendu))) << c.nom << " : " << v.message.toStdString();
    EXPECT_TRUE(v.message.contains("essai") || v.message.contains("Le fichier")) << c.nom;
  }
}

// A PNG with a zTXt chunk behind its header whose text inflates to `octets` bytes.
QByteArray PngAvecTexte(qsizetype octets) {
  const QByteArray texte(octets, 'a');
  uLongf taille = compressBound(uLong(texte.size()));
  QByteArray compresse(qsizetype(taille), '\0');
  compress(reinterpret_cast<Bytef*>(compresse.data()), &taille, reinterpret_cast<const Bytef*>(texte.constData()),
           uLong(texte.size()));
  compresse.resize(qsizetype(taille));
  const QByteArray donnees = QByteArray("zTXtComment\0\0", 13) + compresse;
  const uint32_t crc = uint32_t(crc32(0, reinterpret_cast<const Bytef*>(donnees.constData()), uInt(donnees.size())));
  const QByteArray bloc = Be32(uint32_t(donnees.size() - 4)) + donnees + Be32(crc);
  QByteArray png = Encode("PNG");
  png.insert(8 + 25, bloc);  // after the signature and IHDR
  return png;
}

TEST(VerificationFichier, TexteCompresseSansFinRefuse) {
  EXPECT_TRUE(Verifier(PngAvecTexte(1000)).Bon());
  const VerificationImage v = Verifier(PngAvecTexte(40 * 1024 * 1024));
  EXPECT_TRUE(v.refuse);
  EXPECT_TRUE(v.message.contains("textes compressés")) << v.message.toStdString();
}

TEST(VerificationFichier, DossierEtFichierAbsent) {
  const VerificationImage dossier = VerifierFichierImage(QDir::currentPath());
  EXPECT_TRUE(dossier.refuse);
  EXPECT_TRUE(dossier.message.contains("dossier")) << dossier.message.toStdString();
  const VerificationImage absent = VerifierFichierImage(QDir::currentPath() + "/absent.jpg");
  EXPECT_TRUE(absent.refuse);
  EXPECT_TRUE(absent.message.contains("n'existe pas")) << absent.message.toStdString();
  QFile f(QDir::currentPath() + "/bon.png");
  ASSERT_TRUE(f.open(QIODevice::WriteOnly));
  f.write(Encode("PNG"));
  f.close();
  EXPECT_TRUE(VerifierFichierImage(f.fileName()).Bon());
}

}  // namespace
}  // namespace tg
