// The writer of the comment block: order of sections and keys, conditions,
// and the [OldExif] tail.
#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QStringList>

#include "cartouche/BlocMeta.h"
#include "tests/cartouche/ValeursExemple.h"
#include "version.h"

using namespace tg;

namespace {
QStringList Lignes(const QString& bloc) { return bloc.split(QStringLiteral("\r\n")); }
}  // namespace

TEST(BlocMeta, ExempleDeLaSpecificationLigneALigne) {
  // The manually calibrated picture of the reference example, before the save step.
  // clang-format off
  const QString attendu = QStringList{
      "[Main]", "TitreImage=Genre, espèce, divers", "Application=Tessellographe 202",
      "NomAuteur=A. Nonyme", "DateImage=02/03/2008 10:15:00", "DateObservation=02/03/2008",
      "ApPhoto=APN-1", "LongueurFocale=7,5", "ZoomNumerique=0", "Eclairage=Fond Clair",
      "Provenance=", "Preparation=Eau", "Coloration=Aucune", "",
      "[Scale]", "LargeurOrigine=2272", "LargeurRecadrer=0", "LargeurFormater=640",
      "ReductionImage=3,55", "Microscope=Micro-A", "Objectif=40", "EchelleMic=20",
      "EchellePix=56,338", "ExtrapolationFoc=0", "UniteEtalon=um", "Microscope=Micro-A",
      "Objectif=40", "UniteObj=x", "",
      "[TNum]", "SecondFormatage=Non", "QualiteJpg=", "TraitementNum=Niveaux/", "",
      "[KeyWord]", "",
      "[OldExif]", "Make = Fabricant", "ExposureTime = 1/60"}.join("\r\n");
  // clang-format on
  EXPECT_EQ(EcrireBlocMeta(test::ValeursExemple()), attendu);
}

TEST(BlocMeta, ApplicationParDefautEtAides) {
  ValeursBloc v = test::ValeursExemple();
  v.application.clear();
  EXPECT_EQ(
      TexteApplication(),
      QString("Tessellographe %1%2%3").arg(VersionMajor).arg(VersionMinor).arg(VersionRevision));
  EXPECT_TRUE(Lignes(EcrireBlocMeta(v)).contains("Application=" + TexteApplication()));

  EXPECT_EQ(TexteTraitement(true, false, true, false), "Niveaux/Bruit/");
  EXPECT_EQ(TexteTraitement(false, true, false, true), "Poussières/Déconvolution/");
  EXPECT_EQ(TexteTraitement(false, false, false, false), "");

  EXPECT_FLOAT_EQ(CalculerReduction(0, 2272, 640, false, 0), 3.55f);
  EXPECT_FLOAT_EQ(CalculerReduction(1600, 2272, 640, false, 0), 2.5f);  // cropped
  EXPECT_FLOAT_EQ(CalculerReduction(0, 640, 640, true, 3.55f), 3.55f);  // second formatting
  EXPECT_FLOAT_EQ(CalculerReduction(0, 1000, 800, false, 0), 1.25f);

  // The short date of the system, then the time with seconds.
  EXPECT_TRUE(QRegularExpression(R"(^\S.* \d\d:\d\d:\d\d$)").match(MaintenantTexte()).hasMatch())
      << MaintenantTexte().toStdString();
}

TEST(BlocMeta, ConditionsDesLignes) {
  ValeursBloc v = test::ValeursExemple();
  // No scale: the six scale lines go; a table applied: no second block.
  v.txtPix.clear();
  v.tableAppliquee = true;
  // fraEchelle hidden: the camera typed by hand.
  v.echelleVisible = false;
  v.apPhotoMan = "Boîtier manuel";
  v.largeurOrigineMeta = "3000";
  v.imageDejaFormatee = true;
  v.traitNiveaux = v.traitBruit = true;
  v.genre = "Amanita";
  v.espece = "muscaria";
  v.motClef = "champignon, rouge";
  v.optUnite = 1;
  QStringList l = Lignes(EcrireBlocMeta(v));
  EXPECT_TRUE(l.contains("ApPhoto=Boîtier manuel"));
  EXPECT_TRUE(l.contains("LargeurOrigine=3000"));
  EXPECT_TRUE(l.contains("SecondFormatage=Oui"));
  EXPECT_TRUE(l.contains("TraitementNum=Niveaux/Bruit/"));
  for (const char* absente :
       {"Microscope=", "Objectif=", "EchelleMic=", "EchellePix=", "ExtrapolationFoc=",
        "UniteEtalon=", "UniteObj=", "Regne=", "Classe="})
    EXPECT_FALSE(l.filter(QLatin1String(absente)).size()) << absente;
  const qsizetype kw = l.indexOf("[KeyWord]");
  ASSERT_GE(kw, 0);
  EXPECT_EQ(l.mid(kw, 6), (QStringList{"[KeyWord]", "Genre=Amanita", "Espece=muscaria",
                                       "MotClef=champignon, rouge", "", "[OldExif]"}));

  // A scale in mm with extrapolation, no table and no manual microscope.
  v = test::ValeursExemple();
  v.optUnite = 1;
  v.extrapolationFoc = true;
  v.microMan.clear();
  v.objectifMan.clear();
  v.optUniteObj = 1;
  v.echellePixels = 123.45678f;
  l = Lignes(EcrireBlocMeta(v));
  const qsizetype sc = l.indexOf("[Scale]");
  EXPECT_EQ(l.mid(sc + 5, 8),
            (QStringList{"Microscope=Micro-A", "Objectif=40", "EchelleMic=20", "EchellePix=123,457",
                         "ExtrapolationFoc=1", "UniteEtalon=mm", "UniteObj=mm", ""}));

  // Only one of the two scale boxes filled: no scale lines.
  v = test::ValeursExemple();
  v.txtMic.clear();
  EXPECT_TRUE(Lignes(EcrireBlocMeta(v)).filter("EchellePix=").isEmpty());
}

TEST(BlocMeta, SeparateurDuSystemeQuiEcrit) {
  ValeursBloc v = test::ValeursExemple();
  v.separateurDecimal = ".";
  v.digitalZoom = 1.5f;
  const QStringList l = Lignes(EcrireBlocMeta(v));
  EXPECT_TRUE(l.contains("LongueurFocale=7.5"));
  EXPECT_TRUE(l.contains("ZoomNumerique=1.5"));
  EXPECT_TRUE(l.contains("ReductionImage=3.55"));
  EXPECT_TRUE(l.contains("EchellePix=56.338"));
}

TEST(BlocMeta, QueueOldExifPorteeDUnFormatageAlAutre) {
  ValeursBloc v = test::ValeursExemple();
  // A block of ours: its [OldExif] part is carried, the file's EXIF ignored.
  v.commentaireImage =
      "[Main]\r\nTitreImage=x\r\nApplication=Tessellographe 100\r\n\r\n"
      "[KeyWord]\r\n\r\n[OldExif]\r\nModel = APN-1\r\nFNumber = 2.8";
  v.exifTexte = "Model = autre";
  QString bloc = EcrireBlocMeta(v);
  EXPECT_TRUE(bloc.endsWith("[KeyWord]\r\n\r\n[OldExif]\r\nModel = APN-1\r\nFNumber = 2.8"));
  EXPECT_EQ(bloc.count("[OldExif]"), 1);

  // The older form: from its title on, title and 30 dashes become [OldExif].
  v.commentaireImage =
      "Titre=x\r\nApplication=Tessellographe 090\r\n\r\n"
      "ANCIENNES INFOS (original) :\r\n------------------------------\r\nModel = APN-0\r\n";
  bloc = EcrireBlocMeta(v);
  EXPECT_TRUE(bloc.endsWith("[KeyWord]\r\n\r\n[OldExif]\r\nModel = APN-0\r\n"));
  EXPECT_FALSE(bloc.contains("ANCIENNES"));
  EXPECT_EQ(QueueOldExif(v.commentaireImage), "[OldExif]\r\nModel = APN-0\r\n");

  // A comment without [OldExif]: a fresh tail from the file's EXIF and IPTC.
  v.commentaireImage = "Application=Tessellographe 100\r\n";
  v.exifTexte = "Make = M";
  v.iptcTexte = "FocalLength = 15/2";
  EXPECT_TRUE(
      EcrireBlocMeta(v).endsWith("[KeyWord]\r\n\r\n[OldExif]\r\nMake = M\r\nFocalLength = 15/2"));
  // The older title without its dashes is not converted: nothing to carry.
  EXPECT_EQ(QueueOldExif("ANCIENNES INFOS (original) :\r\nModel = X"), "");
}

TEST(BlocMeta, PremierFormatageSansExif) {
  ValeursBloc v = test::ValeursExemple();
  v.exifTexte.clear();
  v.iptcTexte.clear();
  EXPECT_TRUE(EcrireBlocMeta(v).endsWith("[KeyWord]\r\n\r\n[OldExif]\r\n\r\n"));
}
