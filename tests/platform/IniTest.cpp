#include <gtest/gtest.h>

#include <QFile>

#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Systeme.h"

namespace tg {
namespace {

class Ini : public testing::Test {
 protected:
  QString fichier = RepApplication() + "UserConfig.ini";

  void Poser(const QByteArray& octets) {
    QFile f(fichier);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(octets);
  }
  QByteArray Octets() const {
    QFile f(fichier);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
  }
  QString Lire(const QString& section, const QString& cle) const {
    return LireIni(section, cle, fichier, "<defaut>");
  }
};

TEST_F(Ini, ValeurParDefautQuandFichierSectionOuCleManquent) {
  EXPECT_EQ(Lire("General", "NomAuteur"), "<defaut>");
  Poser("[General]\r\nNomAuteur=Moi\r\n[Dossier]\r\n");
  EXPECT_EQ(Lire("FormatImage", "NomAuteur"), "<defaut>");
  EXPECT_EQ(Lire("General", "NomFichImage"), "<defaut>");
  // The key of another section does not answer.
  EXPECT_EQ(Lire("Dossier", "NomAuteur"), "<defaut>");
  EXPECT_EQ(Lire("General", "NomAuteur"), "Moi");
}

TEST_F(Ini, CleVideRendUneChaineVidePasLeDefaut) {
  Poser("[General]\r\nNumVersion=\r\nTitreImage\r\n");
  EXPECT_EQ(Lire("General", "NumVersion"), "");
  EXPECT_EQ(Lire("General", "TitreImage"), "");
}

TEST_F(Ini, NomsSansEgardALaCasseEtBlancsAutourIgnores) {
  Poser("; commentaire\r\n  [ general ]  \r\n  nomauteur  =  Jean Dupont  \r\n");
  EXPECT_EQ(Lire("General", "NomAuteur"), "Jean Dupont");
}

TEST_F(Ini, GuillemetsQuiEntourentLaValeurEnleves) {
  Poser("[G]\r\na=\"entre guillemets\"\r\nb=\"\"\r\nc=un \"mot\" ici\r\nd=\"ouvert\r\ne=\"\r\n"
        "f=x=y\r\n");
  EXPECT_EQ(Lire("G", "a"), "entre guillemets");
  EXPECT_EQ(Lire("G", "b"), "");
  EXPECT_EQ(Lire("G", "c"), "un \"mot\" ici");
  EXPECT_EQ(Lire("G", "d"), "\"ouvert");
  EXPECT_EQ(Lire("G", "e"), "\"");
  EXPECT_EQ(Lire("G", "f"), "x=y");
}

TEST_F(Ini, ValeurCoupeeA255CaracteresEtAuPremierNul) {
  const QByteArray longue(300, 'x');
  Poser("[G]\r\nlong=" + longue + "\r\nnul=avant" + QByteArray(1, '\0') + "apres\r\n");
  EXPECT_EQ(Lire("G", "long"), QString(255, u'x'));
  EXPECT_EQ(Lire("G", "nul"), "avant");
  // The default passes through the same buffer.
  EXPECT_EQ(LireIni("G", "absente", fichier, QString(256, u'd')), QString(255, u'd'));
}

TEST_F(Ini, LaPremiereDeDeuxSectionsHomonymesRepond) {
  Poser("[G]\r\na=1\r\n[g]\r\na=2\r\nb=3\r\n");
  EXPECT_EQ(Lire("G", "a"), "1");
  EXPECT_EQ(Lire("G", "b"), "<defaut>");
}

TEST_F(Ini, FichierCreeEnWindows1252EtCrLf) {
  ASSERT_TRUE(EcrireIni("General", "NomAuteur", QStringLiteral("Zoé €"), fichier));
  EXPECT_EQ(Octets(), QByteArray("[General]\r\nNomAuteur=Zo\xE9 \x80\r\n"));
  EXPECT_EQ(Lire("General", "NomAuteur"), QStringLiteral("Zoé €"));
}

TEST_F(Ini, CaractereHorsPageEcritPointDInterrogation) {
  ASSERT_TRUE(EcrireIni("G", "k", QStringLiteral("a→b"), fichier));
  EXPECT_EQ(Octets(), QByteArray("[G]\r\nk=a?b\r\n"));
}

TEST_F(Ini, ClePresenteRemplaceeSurPlace) {
  Poser("; r\xE9glages\r\n[General]\r\nNomAuteur=Moi\r\nNomFichImage = forum_\r\n\r\n"
        "[Dossier]\nRepTravail=/x\n");
  ASSERT_TRUE(EcrireIni("general", "NOMFICHIMAGE", "photo_", fichier));
  EXPECT_EQ(Octets(), QByteArray("; r\xE9glages\r\n[General]\r\nNomAuteur=Moi\r\n"
                                 "NomFichImage=photo_\r\n\r\n[Dossier]\r\nRepTravail=/x\r\n"));
}

TEST_F(Ini, CleNouvelleAjouteeALaFinDeSaSectionAvantLesLignesVides) {
  Poser("[General]\r\nNomAuteur=Moi\r\n\r\n[Dossier]\r\nRepTravail=/x\r\n");
  ASSERT_TRUE(EcrireIni("General", "MajAuto", "1", fichier));
  ASSERT_TRUE(EcrireIni("Dossier", "ModeOuvrir", "0", fichier));
  EXPECT_EQ(Octets(), QByteArray("[General]\r\nNomAuteur=Moi\r\nMajAuto=1\r\n\r\n"
                                 "[Dossier]\r\nRepTravail=/x\r\nModeOuvrir=0\r\n"));
}

TEST_F(Ini, CleDansUneSectionVide) {
  Poser("[General]\r\n[Dossier]\r\n");
  ASSERT_TRUE(EcrireIni("General", "a", "1", fichier));
  EXPECT_EQ(Octets(), QByteArray("[General]\r\na=1\r\n[Dossier]\r\n"));
}

TEST_F(Ini, SectionManquanteCreeeEnFin) {
  Poser("[General]\r\nNomAuteur=Moi");
  ASSERT_TRUE(EcrireIni("Navigateur", "PathNav", "Explorer", fichier));
  EXPECT_EQ(Octets(), QByteArray("[General]\r\nNomAuteur=Moi\r\n[Navigateur]\r\nPathNav=Explorer\r\n"));
  EXPECT_EQ(Lire("Navigateur", "PathNav"), "Explorer");
  EXPECT_EQ(Lire("General", "NomAuteur"), "Moi");
}

TEST_F(Ini, RetourDansLaValeurNeCassePasLeFichier) {
  ASSERT_TRUE(EcrireIni("G", "k", "un\r\n[Faux]\nx=1", fichier));
  EXPECT_EQ(Octets(), QByteArray("[G]\r\nk=un [Faux] x=1\r\n"));
  EXPECT_EQ(Lire("Faux", "x"), "<defaut>");
}

TEST_F(Ini, EcritureImpossibleRendFauxEtNeCreeRien) {
  const QString ailleurs = RepApplication() + "absent/UserConfig.ini";
  EXPECT_FALSE(EcrireIni("G", "k", "v", ailleurs));
  EXPECT_FALSE(FolderExists(RepApplication() + "absent"));
  EXPECT_FALSE(EcrireIni("", "k", "v", fichier));
  EXPECT_FALSE(EcrireIni("G", "", "v", fichier));
  EXPECT_FALSE(FileExists(fichier));
}

TEST_F(Ini, ValeurLongueEcriteEntiere) {
  // Only reading is bounded; the file keeps what was written.
  ASSERT_TRUE(EcrireIni("G", "k", QString(300, u'v'), fichier));
  EXPECT_EQ(Octets(), "[G]\r\nk=" + QByteArray(300, 'v') + "\r\n");
}

}  // namespace
}  // namespace tg
