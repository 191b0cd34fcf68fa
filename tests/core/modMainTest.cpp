#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "tests/support/Octets.h"
#include "core/modMain.h"
#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Liste.h"
#include "platform/Systeme.h"
#include "tests/support/DialoguesScriptes.h"

using namespace tg;

namespace {
}  // namespace

TEST(RecupereValeurIni, FichierAbsentDonneLesDefautsEtCreeLesDossiers) {
  test::DialoguesScriptes d;
  SessionRecord s;
  s.NomAuteur = s.PathNav = "autre";
  s.PoidsMax = 1;
  s.FontBold1 = false;
  RecupereValeurIni(s);

  const QString docs = DossierDocuments();
  EXPECT_EQ(s.DocPath, docs);
  EXPECT_EQ(s.NomAuteur, "Votre nom");
  EXPECT_EQ(s.NomFichImage, "forum_");
  EXPECT_EQ(s.NextNumberImage, 1);
  EXPECT_EQ(s.MessageBox, 0);
  EXPECT_EQ(s.PoidsMax, 250);
  EXPECT_EQ(s.ApnLarg, 800);
  EXPECT_EQ(s.ApnHaut, 600);
  EXPECT_EQ(s.FontName1, "Comic Sans MS");
  EXPECT_TRUE(s.FontBold1);
  EXPECT_EQ(s.FontName2, "Arial");
  EXPECT_EQ(s.FontSize2, 8);
  EXPECT_EQ(s.PathNav, "Explorer");
  EXPECT_EQ(s.RepTravail, docs + "Tessellographe/ImageTravail");
  EXPECT_EQ(s.RepEtalon, docs + "Tessellographe/ImageEtalon");
  EXPECT_EQ(s.RepApPhoto, docs);
  EXPECT_TRUE(FolderExists(s.RepTravail));
  EXPECT_TRUE(FolderExists(s.RepEtalon));
  EXPECT_FALSE(QFile::exists(CheminUserConfig())) << "reading must not create the file";
  EXPECT_TRUE(d.appels.empty());
}

TEST(RecupereValeurIni, LitLesValeursPresentes) {
  test::DialoguesScriptes d;
  test::EcrireOctets(CheminUserConfig(),
         "[General]\r\nNomAuteur=J. Dupr\xE9\r\nMessageBox=1\r\nTitreImage=0\r\n"
         "[FormatImage]\r\nApnLarg=1024\r\nApnHaut=768\r\nFontBold1=FAUX\r\n"
         "FontItalic2=VRAI\r\n[Application]\r\nApExt2=/usr/bin/gimp\r\n");
  SessionRecord s;
  RecupereValeurIni(s);
  EXPECT_EQ(s.NomAuteur, "J. Dupré");
  EXPECT_EQ(s.MessageBox, 1);
  EXPECT_EQ(s.TitreImageConfig, "0");
  EXPECT_EQ(s.ApnLarg, 1024);
  EXPECT_EQ(s.ApnHaut, 768);
  EXPECT_FALSE(s.FontBold1);
  EXPECT_TRUE(s.FontItalic2);
  EXPECT_EQ(s.ApExt[2], "/usr/bin/gimp");
  EXPECT_EQ(s.ApExt[0], "");
  EXPECT_TRUE(d.appels.empty());
}

TEST(RecupereValeurIni, UneValeurIllisiblePrendSonDefautSeuleEtEstNommee) {
  test::DialoguesScriptes d;
  // The bad key in the middle: every key after it must still be read.
  const QByteArray contenu =
      "[General]\r\nNomAuteur=J. Dupr\xE9\r\nMessageBox=1\r\n"
      "[FormatImage]\r\nPoidsMax=abc\r\nApnLarg=1024\r\nApnHaut=768\r\nFontName1=Verdana\r\n"
      "FontSize1=40000\r\nFontBold2=VRAI\r\n[Navigateur]\r\nPathNav=/usr/bin/firefox\r\n"
      "[Application]\r\nApExt0=/usr/bin/gimp\r\nApExt3=/usr/bin/darktable\r\n";
  test::EcrireOctets(CheminUserConfig(), contenu);
  SessionRecord s;
  RecupereValeurIni(s);
  EXPECT_EQ(s.PoidsMax, 250);
  EXPECT_EQ(s.FontSize1, 10);
  EXPECT_EQ(s.NomAuteur, "J. Dupré");
  EXPECT_EQ(s.MessageBox, 1);
  EXPECT_EQ(s.ApnLarg, 1024);
  EXPECT_EQ(s.ApnHaut, 768);
  EXPECT_EQ(s.FontName1, "Verdana");
  EXPECT_TRUE(s.FontBold2);
  EXPECT_EQ(s.PathNav, "/usr/bin/firefox");
  EXPECT_EQ(s.ApExt[0], "/usr/bin/gimp");
  EXPECT_EQ(s.ApExt[3], "/usr/bin/darktable");

  // One message, naming the file, the keys and their values.
  ASSERT_EQ(d.appels.size(), 1u) << d.Textes().join(" | ").toStdString();
  const QString texte = d.Dernier().texte;
  EXPECT_TRUE(texte.contains(CheminUserConfig())) << texte.toStdString();
  EXPECT_TRUE(texte.contains("[FormatImage] PoidsMax=abc")) << texte.toStdString();
  EXPECT_TRUE(texte.contains("[FormatImage] FontSize1=40000")) << texte.toStdString();
  EXPECT_FALSE(texte.contains("Error ")) << texte.toStdString();
  // Reading writes nothing.
  EXPECT_EQ(test::LireOctets(CheminUserConfig()), contenu);
}

TEST(Objectifs, PremierLancementPuisLecture) {
  ASSERT_TRUE(EcrireObjectifDefaut());
  QByteArray attendu = "4\r\n10\r\n20\r\n40\r\n100\r\n";
  for (int i = 5; i < 30; ++i) attendu += "\"\"\r\n";
  EXPECT_EQ(test::LireOctets(CheminObjectif()), attendu);

  ListeSimple liste;
  liste.items = {"ancien"};
  ChargerListeObjectif(liste);
  EXPECT_EQ(liste.items, QStringList({"4", "10", "20", "40", "100"}));
}

TEST(Objectifs, LignesVidesSauteesEtTrenteEtUniemeJamaisLue) {
  QByteArray contenu = "\"\"\r\n\"5\"\r\n";
  for (int i = 3; i <= 30; ++i) contenu += QByteArray::number(i * 10) + "\r\n";
  contenu += "999\r\n";  // line 31
  test::EcrireOctets(CheminObjectif(), contenu);
  ListeSimple liste;
  ChargerListeObjectif(liste);
  ASSERT_EQ(liste.Nombre(), 29);
  EXPECT_EQ(liste.Item(0), "5");
  EXPECT_EQ(liste.Item(28), "300");
  EXPECT_FALSE(liste.items.contains("999"));
}

TEST(Objectifs, FichierAbsentLaisseLaListeVide) {
  ListeSimple liste;
  liste.items = {"x"};
  ChargerListeObjectif(liste);
  EXPECT_EQ(liste.Nombre(), 0);
}
