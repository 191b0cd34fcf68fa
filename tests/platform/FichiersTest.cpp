#include <gtest/gtest.h>

#include <cerrno>


#include <QDir>
#include <QFile>

#include "tests/support/DossierMonte.h"
#include "tests/support/LimiteFichier.h"
#include "tests/support/Octets.h"
#include "platform/Fichiers.h"
#include "platform/Systeme.h"

namespace tg {
namespace {


void Poser(const QString& chemin, const QByteArray& octets) {
  QFile f(chemin);
  ASSERT_TRUE(f.open(QIODevice::WriteOnly));
  f.write(octets);
}

TEST(Windows1252, AccentsEuroEtOeSurUnOctetChacun) {
  const QString texte = QStringLiteral("é€œ");
  EXPECT_EQ(VersWindows1252(texte), QByteArray("\xE9\x80\x9C"));
  EXPECT_EQ(DepuisWindows1252("\xE9\x80\x9C"), texte);
}

TEST(Windows1252, LesDeuxCentCinquanteSixOctetsFontLAllerRetour) {
  // The five bytes without a character must survive a rewrite of the file too.
  QByteArray tous;
  for (int i = 0; i < 256; ++i) tous.append(char(i));
  const QString texte = DepuisWindows1252(tous);
  EXPECT_EQ(texte.size(), 256);
  EXPECT_EQ(VersWindows1252(texte), tous);
}

TEST(Windows1252, CaractereHorsPageDevientPointDInterrogation) {
  EXPECT_EQ(VersWindows1252(QStringLiteral("a日b")), QByteArray("a?b"));
  // A character outside the basic plane is one "?", not one per half.
  EXPECT_EQ(VersWindows1252(QString::fromUtf8("x\xF0\x9F\x94\xAC" "y")), QByteArray("x?y"));
  // A real U+001A is no error, even beside one.
  EXPECT_EQ(VersWindows1252(QStringLiteral("\x1A") + QStringLiteral("Ω") + QStringLiteral("é")),
            QByteArray("\x1A?\xE9"));
}

TEST(Lignes, EcritesEnWindows1252EtCrLf) {
  const QString chemin = RepApplication() + "lignes.txt";
  ASSERT_TRUE(EcrireLignes(chemin, {QStringLiteral("Zoé"), QString(), QStringLiteral("fin")}));
  EXPECT_EQ(test::LireOctets(chemin), QByteArray("Zo\xE9\r\n\r\nfin\r\n"));
}

TEST(Lignes, UneEcritureRemplaceToutLAncienContenu) {
  const QString chemin = RepApplication() + "lignes.txt";
  ASSERT_TRUE(EcrireLignes(chemin, {"un", "deux", "trois"}));
  ASSERT_TRUE(EcrireLignes(chemin, {"x"}));
  EXPECT_EQ(test::LireOctets(chemin), QByteArray("x\r\n"));
  EXPECT_EQ(QDir(RepApplication()).entryList(QDir::Files), QStringList{"lignes.txt"});
}

TEST(Lignes, DossierAbsentEchoue) {
  EXPECT_FALSE(EcrireLignes(RepApplication() + "absent/lignes.txt", {"x"}));
  QStringList lignes{"reste"};
  EXPECT_FALSE(LireLignes(RepApplication() + "absent.txt", lignes));
  EXPECT_TRUE(lignes.isEmpty());
}

struct CasLecture {
  const char* octets;
  QStringList attendu;
};

class LectureDesFins : public testing::TestWithParam<CasLecture> {};

TEST_P(LectureDesFins, ChaqueFinDeLigneCoupeUneFois) {
  const QString chemin = RepApplication() + "l.txt";
  Poser(chemin, GetParam().octets);
  QStringList lignes;
  ASSERT_TRUE(LireLignes(chemin, lignes));
  EXPECT_EQ(lignes, GetParam().attendu);
}

INSTANTIATE_TEST_SUITE_P(
    Fins, LectureDesFins,
    testing::Values(CasLecture{"a\r\nb\r\n", {"a", "b"}}, CasLecture{"a\nb", {"a", "b"}},
                    CasLecture{"a\rb\r", {"a", "b"}}, CasLecture{"a\r\n\r\nb", {"a", "", "b"}},
                    CasLecture{"a\n\r\nb", {"a", "", "b"}}, CasLecture{"\r\n", {""}},
                    CasLecture{"", {}}, CasLecture{"\xE9t\xE9\r\n", {QStringLiteral("été")}}));

TEST(Liste, EcritureSequentielleChainesEntreGuillemetsNombresNus) {
  const QString chemin = RepApplication() + "objectif.dat";
  ASSERT_TRUE(EcrireListe(chemin, {"4", "", "100", "-2.5", "1,5", "4.", "Zoé", "Plan 10x", "+3"}));
  EXPECT_EQ(test::LireOctets(chemin), QByteArray("4\r\n\"\"\r\n100\r\n-2.5\r\n\"1,5\"\r\n\"4.\"\r\n"
                                       "\"Zo\xE9\"\r\n\"Plan 10x\"\r\n+3\r\n"));
}

TEST(Liste, LectureEnleveLesGuillemetsEtGardeLesVides) {
  const QString chemin = RepApplication() + "lst.dat";
  Poser(chemin, "\"Lumi\xE8re\"\r\n4\r\n\"\"\r\n\r\n  \"a, b\"  \r\n\"ouvert\r\n 7 \r\n\"a\"b\"\r\n");
  QStringList items;
  ASSERT_TRUE(LireListe(chemin, items));
  EXPECT_EQ(items, (QStringList{QStringLiteral("Lumière"), "4", "", "", "a, b", "ouvert", "7",
                                "a\"b"}));
}

TEST(Liste, UnRetourDansUnElementNeLeCoupePasEnDeux) {
  const QString chemin = RepApplication() + "lst.dat";
  ASSERT_TRUE(EcrireListe(chemin, {"un\r\ndeux", "trois"}));
  QStringList items;
  ASSERT_TRUE(LireListe(chemin, items));
  EXPECT_EQ(items, (QStringList{"un deux", "trois"}));
}

TEST(Existence, FichierEtDossierNeSeConfondentPas) {
  const QString dossier = RepApplication();
  Poser(dossier + "f.txt", "x");
  EXPECT_TRUE(FileExists(dossier + "f.txt"));
  EXPECT_FALSE(FolderExists(dossier + "f.txt"));
  EXPECT_TRUE(FolderExists(dossier));
  EXPECT_FALSE(FileExists(dossier));
  EXPECT_FALSE(FileExists(dossier + "g.txt"));
  EXPECT_FALSE(FileExists(""));
  EXPECT_FALSE(FolderExists(""));
}

// A short write must never be committed: Qt 6.4 commits a buffered file
// whose last write failed. A file size limit stands for a full disk.
TEST(RemplacementSur, UneEcritureIncompleteLaisseLOriginal) {
  const QString chemin = QDir::currentPath() + "/liste.dat";
  ASSERT_TRUE(RemplacerFichierSur(chemin, QByteArray(1000, 'a')));
  bool remplace = true, lignes = true;
  {
    const test::LimiteTailleFichier limite(600);
    ASSERT_TRUE(limite.Active());
    remplace = RemplacerFichierSur(chemin, QByteArray(1600, 'b'));
    lignes = EcrireLignes(chemin, QStringList(400, QStringLiteral("ligne")));
  }
  EXPECT_FALSE(remplace);
  EXPECT_FALSE(lignes);
  QFile f(chemin);
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  EXPECT_EQ(f.readAll(), QByteArray(1000, 'a'));
  EXPECT_EQ(QDir(QDir::currentPath()).entryList(QDir::Files), QStringList{"liste.dat"});
}

// A failed replacement keeps the file and the system's reason, told in French.
TEST(RemplacementSur, DisquePleinEtDossierEnLectureSeuleNommesAvecLeurRaison) {
  const QString plein = QDir::currentPath() + "/plein";
  {
    const test::DossierMonte disque(plein, 64 * 1024);
    if (!disque.Monte()) GTEST_SKIP() << "monter un système de fichiers demande les droits de root";
    const QString chemin = plein + "/table.dat";
    ASSERT_TRUE(RemplacerFichierSur(chemin, QByteArray(20 * 1024, 'a')));
    EXPECT_FALSE(RemplacerFichierSur(chemin, QByteArray(50 * 1024, 'b')));
    EXPECT_EQ(DernierEchecFichier().code, ENOSPC);
    EXPECT_EQ(TexteEchecFichier(), "Fichier « " + chemin + " » : disque plein.");
    EXPECT_EQ(AvecRaison("Error 75 (x)"), "Error 75 (x)\nFichier « " + chemin + " » : disque plein.");
    // Told once only.
    EXPECT_EQ(AvecRaison("Error 75 (x)"), "Error 75 (x)");
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), QByteArray(20 * 1024, 'a'));
    EXPECT_EQ(QDir(plein).entryList(QDir::Files | QDir::Hidden), QStringList{"table.dat"});
  }
  const QString fige = QDir::currentPath() + "/fige";
  const test::DossierMonte lecture(fige, 64 * 1024, true, "liste.dat", "\"ancien\"\r\n");
  ASSERT_TRUE(lecture.Monte());
  EXPECT_FALSE(EcrireListe(fige + "/liste.dat", {"nouveau"}));
  EXPECT_EQ(TexteEchecFichier(), "Fichier « " + fige + "/liste.dat » : dossier en lecture seule.");
  QStringList items;
  ASSERT_TRUE(LireListe(fige + "/liste.dat", items));
  EXPECT_EQ(items, QStringList{"ancien"});
  // A successful replacement forgets the former failure.
  EXPECT_TRUE(RemplacerFichierSur(QDir::currentPath() + "/ok.dat", "ok"));
  EXPECT_TRUE(TexteEchecFichier().isEmpty());
}

TEST(RemplacementSur, RaisonsDuSystemeEnFrancais) {
  EXPECT_EQ(RaisonSysteme(ENOSPC), "disque plein");
  EXPECT_EQ(RaisonSysteme(EROFS), "dossier en lecture seule");
  EXPECT_EQ(RaisonSysteme(EACCES), "droit refusé");
  EXPECT_EQ(RaisonSysteme(ETXTBSY), "fichier utilisé par un autre programme");
  EXPECT_EQ(RaisonSysteme(9999), "erreur système n° 9999");
}

}  // namespace
}  // namespace tg
