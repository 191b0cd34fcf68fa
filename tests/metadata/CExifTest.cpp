// EXIF directories and the EXIF block of a JPEG, from blocks written byte by byte.
#include <gtest/gtest.h>

#include <cstring>

#include "metadata/CExif.h"
#include "metadata/CExifJPEG.h"
#include "tests/metadata/Fabrique.h"

namespace tg::meta {
namespace {

using namespace test;

QByteArray Double(bool mm, double d) {
  QByteArray b(8, '\0');
  std::memcpy(b.data(), &d, 8);  // the machine is little-endian
  if (mm) std::reverse(b.begin(), b.end());
  return b;
}

// An EXIF APP1 body ("Exif\0\0" + TIFF structure) laid out by hand; offsets
// from the byte order mark:
//   8 IFD0 (4 entries) -> 62 "Canon\0" -> 68 72/1 -> 76 EXIF sub-directory
//   (4 entries) -> 130 1/200 -> 138 75/10 -> 146 2.5 -> 154 IFD1 (2 entries)
//   -> 184 thumbnail "THUMB".
QByteArray BlocManuel(bool mm, bool avecIfd1 = true) {
  QByteArray t = EnTete(mm);
  t += U16(mm, 4);
  t += Entree(mm, 0x010F, 2, 6, U32(mm, 62));
  t += Entree(mm, 0x0112, 3, 1, U16(mm, 6));
  t += Entree(mm, 0x011A, 5, 1, U32(mm, 68));
  t += Entree(mm, 0x8769, 4, 1, U32(mm, 76));
  t += U32(mm, avecIfd1 ? 154 : 0);
  t += QByteArray("Canon\0", 6);
  t += U32(mm, 72) + U32(mm, 1);
  t += U16(mm, 4);
  t += Entree(mm, 0x829A, 5, 1, U32(mm, 130));
  t += Entree(mm, 0x920A, 5, 1, U32(mm, 138));
  t += Entree(mm, 0x9998, 99, 3, QByteArray("ZYXW"));
  t += Entree(mm, 0x9999, 12, 1, U32(mm, 146));
  t += U32(mm, 0);
  t += U32(mm, 1) + U32(mm, 200);
  t += U32(mm, 75) + U32(mm, 10);
  t += Double(mm, 2.5);
  EXPECT_EQ(t.size(), 154);
  if (avecIfd1) {
    t += U16(mm, 2);
    t += Entree(mm, 0x0201, 4, 1, U32(mm, 184));
    t += Entree(mm, 0x0202, 4, 1, U32(mm, 5));
    t += U32(mm, 0);
    t += QByteArray("THUMB");
  }
  return QByteArray("Exif\0\0", 6) + t;
}

class BlocDansLesDeuxOrdres : public testing::TestWithParam<bool> {};

TEST_P(BlocDansLesDeuxOrdres, SeLitEntree) {
  const bool mm = GetParam();
  CExifJPEG x;
  ASSERT_TRUE(x.ReadExif(BlocManuel(mm)));
  EXPECT_EQ(x.AlignType(), mm ? Ordre::Motorola : Ordre::Intel);
  CIFD& i0 = *x.ifd(0);
  ASSERT_EQ(i0.NumberOfDirectories, 4);
  EXPECT_EQ(i0.Trouver(0x010F)->GetDataFormatted(), "Canon");
  EXPECT_EQ(i0.Trouver(0x0112)->GetDataVariant(), 6);
  EXPECT_EQ(i0.Trouver(0x011A)->GetDataFormatted(), "72/1");
  EXPECT_EQ(x.GetManufacturer(), 4);
  // Rationals: each half turned by itself, held little-endian.
  const CExifDirEnt* expo = x.SubIFD().Trouver(0x829A);
  ASSERT_NE(expo, nullptr);
  EXPECT_EQ(expo->GetData(), QByteArray("\x01\0\0\0\xC8\0\0\0", 8));
  EXPECT_EQ(expo->GetDataFormatted(), "1/200");
  EXPECT_EQ(x.SubIFD().Trouver(0x920A)->GetDataVariant(), 7.5);
  // A DOUBLE of count 1 holds 8 bytes: read through its offset.
  EXPECT_EQ(x.SubIFD().Trouver(0x9999)->GetDataVariant(), 2.5);
  // An unknown format has no size: no value, the entry kept as it stands.
  const CExifDirEnt* inconnu = x.SubIFD().Trouver(0x9998);
  ASSERT_NE(inconnu, nullptr);
  EXPECT_EQ(inconnu->DataFormat, 99);
  EXPECT_EQ(inconnu->NumberOfComponent, 3);
  EXPECT_EQ(inconnu->getDataLength(), 0);
  EXPECT_EQ(x.ThumbnailData, QByteArray("THUMB"));
  EXPECT_TRUE(x.GPS().Vide());
}

// Offset of IFD0 in an APP1 segment written by WriteEXIF.
uint32_t PremierIfd(const QByteArray& segment, Ordre o) {
  uint32_t v = 0;
  LecteurOctets(segment.mid(10)).u32At(o, 4, v);
  return v;
}

TEST_P(BlocDansLesDeuxOrdres, SansModificationLeSegmentEstCeluiLu) {
  const bool mm = GetParam();
  CExifJPEG x;
  ASSERT_TRUE(x.ReadExif(BlocManuel(mm)));
  EXPECT_FALSE(x.Modifie());
  QByteArray segment;
  ASSERT_TRUE(x.WriteEXIF(segment));
  EXPECT_EQ(segment.left(2), QByteArray("\xFF\xE1", 2));
  EXPECT_EQ((uint8_t(segment[2]) << 8) | uint8_t(segment[3]), segment.size() - 2);
  EXPECT_EQ(segment.mid(4), BlocManuel(mm));
  // Set back to what it was, a tag is no change either.
  x.AddModifyTag(Repertoire::IFD0, 0x0112, FmtShort, QByteArray("\x06\0", 2));
  EXPECT_FALSE(x.Modifie());
}

// An edit writes the changed directory after the block and re-aims the one
// pointer to it: every byte read stays at its offset.
TEST_P(BlocDansLesDeuxOrdres, UneModificationNeDeplaceRien) {
  const bool mm = GetParam();
  const Ordre o = mm ? Ordre::Motorola : Ordre::Intel;
  const QByteArray source = BlocManuel(mm);
  CExifJPEG avant;
  ASSERT_TRUE(avant.ReadExif(source));
  CExifJPEG x;
  ASSERT_TRUE(x.ReadExif(source));
  x.AddModifyTag(Repertoire::SubIFD, 0x9003, FmtAscii, QByteArray("2024:01:02 03:04:05\0", 20));
  EXPECT_TRUE(x.Modifie());
  QByteArray segment;
  ASSERT_TRUE(x.WriteEXIF(segment));
  const QByteArray bloc = segment.mid(4);
  // The sub-directory moved to the end (154 + IFD1 + thumbnail = 189, then
  // even): its pointer in IFD0 is the only byte range that changed.
  const int64_t champ = 6 + 8 + 2 + 3 * 12 + 8;  // value field of 0x8769
  EXPECT_EQ(bloc.left(champ), source.left(champ));
  EXPECT_EQ(bloc.mid(champ + 4, source.size() - champ - 4), source.mid(champ + 4));
  uint32_t sub = 0;
  LecteurOctets(bloc.mid(6)).u32At(o, champ - 6, sub);
  EXPECT_EQ(sub, 190u);
  EXPECT_EQ(PremierIfd(segment, o), 8u);

  CExifJPEG apres;
  ASSERT_TRUE(apres.ReadExif(bloc));
  for (Repertoire r : {Repertoire::IFD0, Repertoire::IFD1, Repertoire::SubIFD}) {
    const CIFD& a = *avant.Repertoire_(r);
    const CIFD& b = *apres.Repertoire_(r);
    size_t j = 0;
    for (const CExifDirEnt& eb : b.Directories) {
      if (eb.Tag == 0x9003) continue;  // the edit
      ASSERT_LT(j, a.Directories.size());
      const CExifDirEnt& ea = a.Directories[j++];
      EXPECT_EQ(ea.Tag, eb.Tag);
      EXPECT_EQ(ea.DataFormat, eb.DataFormat);
      EXPECT_EQ(ea.NumberOfComponent, eb.NumberOfComponent);
      // Values that were there keep their offsets; the pointer alone moved.
      if (ea.Tag != 0x8769) {
        EXPECT_EQ(ea.OffsetToValue, eb.OffsetToValue) << ea.Tag;
        EXPECT_EQ(ea.GetData(), eb.GetData()) << ea.Tag;
      }
    }
    EXPECT_EQ(j, a.Directories.size());
  }
  EXPECT_EQ(apres.SubIFD().Trouver(0x9003)->GetDataFormatted(), "2024:01:02 03:04:05");
  EXPECT_EQ(apres.ThumbnailData, "THUMB");
  EXPECT_FALSE(apres.Modifie());

  // Changed again: IFD0 too is written anew, pointing at the moved sub-directory.
  x.AddModifyTag(Repertoire::IFD0, 0x0131, FmtAscii, QByteArray("Essai\0", 6));
  QByteArray encore;
  ASSERT_TRUE(x.WriteEXIF(encore));
  EXPECT_EQ(encore.mid(4 + 6 + 8, 154 - 8), source.mid(6 + 8, 154 - 8));
  CExifJPEG relu;
  ASSERT_TRUE(relu.ReadExif(encore.mid(4)));
  EXPECT_GT(PremierIfd(encore, o), 189u);
  EXPECT_EQ(relu.ifd(0)->Trouver(0x0131)->GetDataFormatted(), "Essai");
  EXPECT_EQ(relu.SubIFD().Trouver(0x9003)->GetDataFormatted(), "2024:01:02 03:04:05");
  EXPECT_EQ(relu.SubIFD().Trouver(0x9998)->OffsetToValue, avant.SubIFD().Trouver(0x9998)->OffsetToValue);
  EXPECT_EQ(relu.ThumbnailData, "THUMB");
  EXPECT_EQ(relu.ifd(1)->Offset, 154);
}

TEST_P(BlocDansLesDeuxOrdres, RepertoireVideRetireAvecSonPointeur) {
  const bool mm = GetParam();
  const Ordre o = mm ? Ordre::Motorola : Ordre::Intel;
  CExifJPEG x;
  ASSERT_TRUE(x.ReadExif(BlocManuel(mm, false)));
  EXPECT_TRUE(x.ifd(1)->Vide());
  for (int tag : {0x829A, 0x920A, 0x9998, 0x9999}) x.RemoveTag(Repertoire::SubIFD, tag);
  QByteArray segment;
  ASSERT_TRUE(x.WriteEXIF(segment));
  // The block read, then IFD0 anew without the pointer: 3 entries and a link
  // (2 + 36 + 4); its values stay where they were.
  EXPECT_EQ(segment.mid(4 + 6 + 8, 154 - 8), BlocManuel(mm, false).mid(6 + 8));
  EXPECT_EQ(segment.size(), 4 + 6 + 154 + 42);
  EXPECT_EQ(PremierIfd(segment, o), 154u);
  CExifJPEG relu;
  ASSERT_TRUE(relu.ReadExif(segment.mid(4)));
  EXPECT_EQ(relu.ifd(0)->Trouver(0x8769), nullptr);
  EXPECT_EQ(relu.ifd(0)->Trouver(0x010F)->OffsetToValue, 62);
  EXPECT_TRUE(relu.ifd(1)->Vide());
  EXPECT_TRUE(relu.SubIFD().Vide());
  uint32_t lien = 1;
  LecteurOctets(segment.mid(10)).u32At(o, 154 + 2 + 3 * 12, lien);
  EXPECT_EQ(lien, 0u);
}

// A pointer to a directory that does not read (found by fuzzing) is not
// understood: an edit elsewhere keeps it as it was.
TEST(CExifJPEG, UnPointeurIllisibleResteApresUneModification) {
  const bool mm = true;
  QByteArray t = EnTete(mm);
  t += U16(mm, 2);
  t += Entree(mm, 0x010F, 2, 4, QByteArray("abc\0", 4));
  t += Entree(mm, 0x8825, 4, 1, U32(mm, 0x7000));  // outside the block
  t += U32(mm, 0);
  CExifJPEG x;
  ASSERT_TRUE(x.ReadExif(QByteArray("Exif\0\0", 6) + t));
  EXPECT_TRUE(x.GPS().Vide());
  x.AddModifyTag(Repertoire::IFD0, 0x0131, FmtAscii, QByteArray("essai\0", 6));
  QByteArray segment;
  ASSERT_TRUE(x.WriteEXIF(segment));
  CExifJPEG relu;
  ASSERT_TRUE(relu.ReadExif(segment.mid(4)));
  const CExifDirEnt* gps = relu.ifd(0)->Trouver(0x8825);
  ASSERT_NE(gps, nullptr);
  EXPECT_EQ(uint32_t(gps->OffsetToValue), 0x7000u);
  EXPECT_NE(relu.ifd(0)->Trouver(0x0131), nullptr);
}

// A block made from nothing is laid out whole, in the order asked for.
TEST_P(BlocDansLesDeuxOrdres, UnBlocNeufSeRelitEntier) {
  const bool mm = GetParam();
  CExifJPEG avant;
  ASSERT_TRUE(avant.ReadExif(BlocManuel(mm)));
  CExifJPEG neuf;
  neuf.alignType = avant.AlignType();
  for (Repertoire r : {Repertoire::IFD0, Repertoire::IFD1, Repertoire::SubIFD})
    for (const CExifDirEnt& e : avant.Repertoire_(r)->Directories)
      if (e.GetDataSize() != 0 && e.Tag != 0x8769) neuf.AddModifyTag(r, e.Tag, e.DataFormat, e.GetData());
  neuf.ThumbnailData = avant.ThumbnailData;
  QByteArray segment;
  ASSERT_TRUE(neuf.WriteEXIF(segment));
  EXPECT_EQ(segment.mid(4, 8), QByteArray(mm ? "Exif\0\0MM" : "Exif\0\0II", 8));
  EXPECT_EQ(segment.size() % 2, 0);
  CExifJPEG relu;
  ASSERT_TRUE(relu.ReadExif(segment.mid(4)));
  EXPECT_EQ(relu.SubIFD().Trouver(0x920A)->GetDataFormatted(), "75/10");
  EXPECT_EQ(relu.ifd(0)->Trouver(0x010F)->GetDataFormatted(), "Canon");
  EXPECT_EQ(relu.ThumbnailData, "THUMB");
  // Written once more, the block is the same bytes.
  QByteArray encore;
  ASSERT_TRUE(neuf.WriteEXIF(encore));
  EXPECT_EQ(encore, segment);
}

INSTANTIATE_TEST_SUITE_P(Ordres, BlocDansLesDeuxOrdres, testing::Values(false, true),
                         [](const auto& i) { return std::string(i.param ? "Motorola" : "Intel"); });

TEST(CExifJPEG, UnBlocQuiNEstPasExifLaisseLObjetVide) {
  CExifJPEG x;
  EXPECT_FALSE(x.ReadExif(QByteArray("http://ns.adobe.com/xap/1.0/\0<x/>", 34)));
  EXPECT_FALSE(x.ReadExif(QByteArray("Exif\0\0XX*\0\x08\0\0\0", 14)));
  EXPECT_TRUE(x.ifd(0)->Vide());
  QByteArray segment("pas vide");
  ASSERT_TRUE(x.WriteEXIF(segment));
  EXPECT_TRUE(segment.isEmpty());
}

// Offsets and counts read from a file are not trusted.
TEST(CExifJPEG, LesValeursAbsurdesArretentLaLectureProprement) {
  const bool mm = false;
  QByteArray t = EnTete(mm);
  t += U16(mm, 0xFFFF);                                 // far more entries than bytes
  t += Entree(mm, 0x010F, 2, 0xFFFFFFFF, U32(mm, 8));   // a count of 4 G
  t += Entree(mm, 0x0110, 2, 10, U32(mm, 0xFFFFFFF0));  // an offset outside the block
  t += Entree(mm, 0x8769, 4, 1, U32(mm, 8));            // the sub-directory is IFD0 itself
  CExifJPEG x;
  ASSERT_TRUE(x.ReadExif(QByteArray("Exif\0\0", 6) + t));
  ASSERT_EQ(x.ifd(0)->Directories.size(), 3u);
  EXPECT_EQ(x.ifd(0)->Directories[0].getDataLength(), 0);
  EXPECT_EQ(x.ifd(0)->Directories[1].getDataLength(), 0);
  EXPECT_EQ(x.SubIFD().Directories.size(), 3u);
  QByteArray segment;
  EXPECT_TRUE(x.WriteEXIF(segment));
}

struct CasAdjust {
  int16_t format;
  QByteArray data;
  Ordre ordre;
  int32_t offsetAttendu;  // -1: the position before the call
  int64_t avance;
};

class Adjust : public testing::TestWithParam<CasAdjust> {};

TEST_P(Adjust, PlaceLaValeurDansLEntreeOuALaPosition) {
  const CasAdjust& c = GetParam();
  CExifDirEnt e;
  e.Tag = 0x9000;
  e.DataFormat = c.format;
  e.SetData(c.data);
  int64_t position = 100;
  e.Adjust(position, c.ordre);
  EXPECT_EQ(e.OffsetToValue, c.offsetAttendu < 0 ? 100 : c.offsetAttendu);
  EXPECT_EQ(position, 100 + c.avance);
  EXPECT_EQ(e.NumberOfComponent, c.data.size() / CExifDirEnt::GetDataSize(c.format));
  // The 12 bytes of the entry end with the value field in the block's order.
  EcrivainOctets w;
  e.WriteDir(w, c.ordre);
  if (c.data.size() <= 4) {
    QByteArray champ = CExifDirEnt::Tourner(c.data, c.format, c.ordre);
    champ.resize(4, '\0');
    EXPECT_EQ(w.donnees().mid(8), champ);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Valeurs, Adjust,
    testing::Values(CasAdjust{FmtAscii, QByteArray("abc\0", 4), Ordre::Intel, 0x00636261, 0},
                    CasAdjust{FmtAscii, QByteArray("abc\0", 4), Ordre::Motorola, 0x61626300, 0},
                    CasAdjust{FmtShort, QByteArray("\x06\0", 2), Ordre::Motorola, 0x00060000, 0},
                    CasAdjust{FmtShort, QByteArray("\x06\0", 2), Ordre::Intel, 6, 0},
                    CasAdjust{FmtAscii, QByteArray("abcd\0", 5), Ordre::Intel, -1, 6},
                    CasAdjust{FmtRational, QByteArray(8, '\1'), Ordre::Motorola, -1, 8},
                    CasAdjust{FmtDouble, QByteArray(8, '\1'), Ordre::Intel, -1, 8}));

TEST(CIFD, AjoutsEnOrdreCroissantRemplacementEtRetrait) {
  CIFD r;
  r.AddModifyTag(0x8298, FmtAscii, "c\0");
  r.AddModifyTag(0x010F, FmtAscii, "Canon\0");
  r.AddModifyTag(0x0110, FmtAscii, "EOS\0");
  ASSERT_EQ(r.NumberOfDirectories, 3);
  EXPECT_EQ(r.Directories[0].Tag, 0x010F);
  EXPECT_EQ(r.Directories[1].Tag, 0x0110);
  EXPECT_EQ(r.Directories[2].Tag, 0x8298);
  r.AddModifyTag(0x0110, FmtShort, QByteArray("\x01\0\x02\0", 4));
  EXPECT_EQ(r.NumberOfDirectories, 3);
  EXPECT_EQ(r.Trouver(0x0110)->DataFormat, FmtShort);
  EXPECT_EQ(r.Trouver(0x0110)->NumberOfComponent, 2);
  r.RemoveTag(0x9999);
  EXPECT_EQ(r.NumberOfDirectories, 3);
  r.RemoveTag(0x010F);
  EXPECT_EQ(r.NumberOfDirectories, 2);
  EXPECT_EQ(r.Trouver(0x010F), nullptr);
}

TEST(CExifDirEnt, TaillesFormatsEtTextes) {
  const int tailles[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 0};
  for (int f = 0; f <= 13; ++f) EXPECT_EQ(CExifDirEnt::GetDataSize(f), tailles[f]) << f;

  CExifDirEnt e;
  e.DataFormat = FmtUndefined;
  e.SetData(QByteArray("\x00\x0A\xFF", 3));
  EXPECT_EQ(e.GetDataFormatted(), "0x000AFF");
  e.DataFormat = FmtSShort;
  e.SetData(QByteArray("\xFF\xFF\x02\x00", 4));
  EXPECT_EQ(e.GetDataFormatted(), "-1 2");
  e.DataFormat = FmtSRational;
  e.SetData(QByteArray("\xFF\xFF\xFF\xFF\x03\0\0\0", 8));
  EXPECT_EQ(e.GetDataFormatted(), "-1/3");
  EXPECT_DOUBLE_EQ(e.GetDataVariant(), -1.0 / 3);
  e.DataFormat = FmtByte;
  e.SetData(QByteArray("T\0i\0t\0\0\0", 8));
  EXPECT_EQ(e.GetMicrosoftTagFormatted(), "Tit");
  e.RedimData(6);
  EXPECT_EQ(e.getDataLength(), 6);
  EXPECT_EQ(e.Data(0), 0);
  e.DataFormat = FmtShort;
  e.SetData("ab");
  e.RedimPreserveData(4);
  EXPECT_EQ(e.Data(1), 'b');
  EXPECT_EQ(e.NumberOfComponent, 2);
}

TEST(CExifDirEnt, Orientation) {
  CExifDirEnt e;
  e.Tag = 0x0112;
  e.DataFormat = FmtShort;
  const std::pair<int, const char*> cas[] = {{1, "0th row : top  ;0th Column : left side"},
                                             {6, "0th row : right side ;0th Column : top"},
                                             {8, "0th row : left side ;0th Column : bottom"},
                                             {0, ""},
                                             {9, ""}};
  for (const auto& [v, texte] : cas) {
    e.SetData(QByteArray(1, char(v)) + QByteArray(1, '\0'));
    EXPECT_EQ(e.GetOrientation(), QLatin1String(texte)) << v;
  }
}

TEST(Fabricant, PremierMotTrouveSansEgardALaCasse) {
  const std::pair<const char*, int> cas[] = {{"Canon", 4},
                                             {"NIKON CORPORATION", 1},
                                             {"OLYMPUS IMAGING CORP.", 0},
                                             {"FUJIFILM", 3},
                                             {"KONICA MINOLTA", 7},
                                             {"PENTAX Corporation", 13},
                                             {"Asahi Optical", 13},
                                             {"SIGMA", 5},
                                             {"Panasonic", 12},
                                             {"Hasselblad", -1},
                                             {"", -1}};
  for (const auto& [make, n] : cas) EXPECT_EQ(NumeroFabricant(QLatin1String(make)), n) << make;
}

TEST(NomTag, NomsPubliesEtRepertoiresPropres) {
  EXPECT_EQ(NomTag(0x010F), "Make");
  EXPECT_EQ(NomTag(0x829A), "ExposureTime");
  EXPECT_EQ(NomTag(0x9003), "DateTimeOriginal");
  EXPECT_EQ(NomTag(0xA405), "FocalLengthIn35mmFormat");
  EXPECT_EQ(NomTag(0xFE58), "MoireFilter");
  EXPECT_EQ(NomTag(0x0002, Repertoire::GPS), "GPSLatitude");
  EXPECT_EQ(NomTag(0x0001, Repertoire::Interop), "InteropIndex");
  EXPECT_EQ(NomTag(0x1234), "");
  EXPECT_EQ(SignificationValeur(0x00FF, 2), "Reduced-resolution image");
  EXPECT_EQ(SignificationValeur(0x0112, 6), "Rotate 90 CW");
  EXPECT_EQ(SignificationValeur(0x0112, 99), "");
}

}  // namespace
}  // namespace tg::meta
