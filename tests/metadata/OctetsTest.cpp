// The checked byte reader and writer, the code page and the file replacement.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "metadata/Octets.h"

namespace tg::meta {
namespace {

TEST(LecteurOctets, UneLectureQuiEchoueLaisseLeCurseurEnPlace) {
  const QByteArray b("\x12\x34\x56", 3);
  LecteurOctets l(b);
  uint32_t v32 = 0;
  uint16_t v16 = 0;
  EXPECT_FALSE(l.u32be(v32));
  EXPECT_EQ(l.offset(), 0);
  ASSERT_TRUE(l.u16be(v16));
  EXPECT_EQ(v16, 0x1234);
  EXPECT_FALSE(l.u16le(v16));
  EXPECT_EQ(l.offset(), 2);
  LecteurOctets enfant;
  EXPECT_FALSE(l.sub(2, enfant));
  EXPECT_FALSE(l.skip(-1));
  EXPECT_FALSE(l.seek(4));
  EXPECT_EQ(l.offset(), 2);
  ASSERT_TRUE(l.sub(1, enfant));
  EXPECT_EQ(enfant.taille(), 1);
  EXPECT_TRUE(l.fini());
  EXPECT_TRUE(l.seek(3));  // the end itself is a place
}

TEST(LecteurOctets, LesDeuxOrdresEtLesLecturesAbsolues) {
  const QByteArray b("\x12\x34\x56\x78", 4);
  LecteurOctets l(b);
  uint16_t s = 0;
  uint32_t v = 0;
  EXPECT_TRUE(l.u16At(Ordre::Motorola, 0, s));
  EXPECT_EQ(s, 0x1234);
  EXPECT_TRUE(l.u16At(Ordre::Intel, 2, s));
  EXPECT_EQ(s, 0x7856);
  EXPECT_TRUE(l.u32At(Ordre::Motorola, 0, v));
  EXPECT_EQ(v, 0x12345678u);
  EXPECT_TRUE(l.u32At(Ordre::Intel, 0, v));
  EXPECT_EQ(v, 0x78563412u);
  // Positions read from a file can be anything: no wrap-around.
  EXPECT_FALSE(l.u32At(Ordre::Intel, 1, v));
  EXPECT_FALSE(l.u16At(Ordre::Intel, INT64_MAX, s));
  EXPECT_FALSE(l.u32At(Ordre::Intel, -2, v));
  QByteArray o;
  EXPECT_FALSE(l.octetsAt(2, INT64_MAX, o));
  EXPECT_TRUE(l.octetsAt(4, 0, o));
  EXPECT_EQ(l.offset(), 0);
}

TEST(EcrivainOctets, LongueursRempliesApres) {
  EcrivainOctets e;
  e.u16be(0);
  e.octets("abc");
  e.aligner2();
  ASSERT_TRUE(e.u16beAt(0, uint16_t(e.offset())));
  e.u32(Ordre::Intel, 0x01020304);
  e.u32(Ordre::Motorola, 0x01020304);
  EXPECT_EQ(e.donnees(), QByteArray("\x00\x06"
                                    "abc\x00"
                                    "\x04\x03\x02\x01"
                                    "\x01\x02\x03\x04",
                                    14));
  EXPECT_FALSE(e.u32At(Ordre::Intel, 11, 0));
  EXPECT_TRUE(e.u32At(Ordre::Intel, 10, 0xAABBCCDD));
  EXPECT_EQ(e.donnees().right(4), QByteArray("\xDD\xCC\xBB\xAA", 4));
}

TEST(Cp1252, ToutOctetSurvitAuxAllersRetours) {
  QByteArray tous;
  for (int i = 0; i < 256; ++i) tous.append(char(i));
  EXPECT_EQ(VersCp1252(DepuisCp1252(tous)), tous);
  EXPECT_EQ(DepuisCp1252("\xE9\x80"), QString::fromUtf8("é€"));
  EXPECT_EQ(VersCp1252(QString::fromUtf8("é€")), QByteArray("\xE9\x80"));
  EXPECT_EQ(VersCp1252(QString::fromUtf8("日")), QByteArray("?"));
}

TEST(RemplacerFichier, UnEchecLaisseLaCibleIntacte) {
  QString erreur;
  EXPECT_FALSE(RemplacerFichier(QDir::currentPath() + "/absent/x.jpg", "abc", &erreur));
  EXPECT_FALSE(erreur.isEmpty());
  const QString chemin = QDir::currentPath() + "/f.bin";
  ASSERT_TRUE(RemplacerFichier(chemin, "ancien"));
  ASSERT_TRUE(RemplacerFichier(chemin, "nouveau"));
  QByteArray lu;
  ASSERT_TRUE(LireFichier(chemin, lu));
  EXPECT_EQ(lu, QByteArray("nouveau"));
}

}  // namespace
}  // namespace tg::meta
