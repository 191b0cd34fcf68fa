// The readers of the comment block and of the EXIF fields, on texts.
#include <gtest/gtest.h>

#include "cartouche/BlocMeta.h"
#include "cartouche/modExtractMeta.h"
#include "tests/cartouche/ValeursExemple.h"
#include "tests/support/DialoguesScriptes.h"

using namespace tg;

namespace {

const QString kCRLF = QStringLiteral("\r\n");

class Lecteurs : public testing::Test {
 protected:
  test::DialoguesScriptes dialogues;
  SessionRecord s;
  void SetUp() override { s.SeparateurDecimal = ","; }
  // The texts of the messages shown.
  QStringList Messages() const { return dialogues.Textes(); }
};

}  // namespace

// ---------------------------------------------------------------- ExtractComment

TEST(ExtractComment, CleNuePremiereOccurrenceCasseIgnoree) {
  const QString bloc = "[Main]\r\ntitreimage=  Mon titre  \r\nA=1\r\nNomAuteur=moi\r\nA=2\r\n";
  EXPECT_EQ(ExtractComment(bloc, "TitreImage", ","), "Mon titre");  // blanks cut
  EXPECT_EQ(ExtractComment(bloc, "A", ","), "");  // "A" is first met in "[Main]": no "="
  EXPECT_EQ(ExtractComment(bloc, "Absente", ","), "");
  EXPECT_EQ(ExtractComment(bloc, "", ","), "");
  EXPECT_EQ(ExtractComment("", "TitreImage", ","), "");
  // A value that takes everything after the first "=" and keeps tabs.
  EXPECT_EQ(ExtractComment("K=\tv=w \r\n", "K", ","), "\tv=w");
  // Without CR LF after it, even at the end of the block, a key reads empty;
  // so does a line with a bare LF.
  EXPECT_EQ(ExtractComment("K=v", "K", ","), "");
  EXPECT_EQ(ExtractComment("K=v\nL=w\r\n", "K", ","), "v\nL=w");
}

TEST_F(Lecteurs, TitreContenantApPhotoMasqueLaVraieLigne) {
  ValeursBloc v = test::ValeursExemple();
  v.titre = "Photo prise avec mon apphoto neuf";
  const QString bloc = EcrireBlocMeta(v);
  EXPECT_EQ(ExtractComment(bloc, "ApPhoto", ","), "");
  // A title holding "Objectif" hides the Objectif= lines the same way.
  v.titre = "Objectif 40";
  EXPECT_EQ(ExtractComment(EcrireBlocMeta(v), "Objectif", ","), "");
  EXPECT_EQ(ExtractComment(EcrireBlocMeta(v), "TitreImage", ","), "Objectif 40");
  // Application comes after the title too: a title holding the word makes the
  // block read as another program's.
  v.titre = "Application de Lugol";
  s.CommentaireImage = EcrireBlocMeta(v);
  VerifierEffacerMetaComment(s);
  EXPECT_EQ(s.CommentaireImage, "");
  EXPECT_EQ(dialogues.Dernier().texte, TexteMetaIncompatible);
}

TEST(ExtractComment, FenetreDeLaClePlus75) {
  ValeursBloc v = test::ValeursExemple();
  // TitreImage (10) + "=" + value + CR LF must fit in 85 characters.
  for (int longueur : {70, 72}) {
    v.titre = QString(longueur, u'é');
    EXPECT_EQ(ExtractComment(EcrireBlocMeta(v), "TitreImage", ","), v.titre) << longueur;
  }
  v.titre = QString(73, u'x');  // the CR falls in the window, the LF does not
  EXPECT_EQ(ExtractComment(EcrireBlocMeta(v), "TitreImage", ","), "");
}

TEST(ExtractComment, FenetreDe650PourMotClef) {
  ValeursBloc v = test::ValeursExemple();
  v.motClef = QString(640, u'm');  // "MotClef=" + 640 + CR LF = 650
  EXPECT_EQ(ExtractComment(EcrireBlocMeta(v), "MotClef", ","), v.motClef);
  for (int longueur : {641, 700}) {
    v.motClef = QString(longueur, u'm');
    EXPECT_EQ(ExtractComment(EcrireBlocMeta(v), "MotClef", ","), "") << longueur;
  }
  // Other keys keep Len(key) + 75, whatever their length.
  v.famille = QString(80, u'f');
  EXPECT_EQ(ExtractComment(EcrireBlocMeta(v), "Famille", ","), "");
  v.famille = QString(70, u'f');
  EXPECT_EQ(ExtractComment(EcrireBlocMeta(v), "Famille", ","), v.famille);
}

struct CasSeparateur {
  const char* cle;
  const char* valeur;
  const char* separateur;
  const char* lu;
};

class NormalisationDecimale : public testing::TestWithParam<CasSeparateur> {};

TEST_P(NormalisationDecimale, CinqClesSeulement) {
  const auto& c = GetParam();
  const QString bloc = QString("%1=%2\r\n").arg(c.cle, c.valeur);
  EXPECT_EQ(ExtractComment(bloc, c.cle, c.separateur), c.lu);
}

INSTANTIATE_TEST_SUITE_P(Cles, NormalisationDecimale,
                         testing::Values(CasSeparateur{"ZoomNumerique", "1.5", ",", "1,5"},
                                         CasSeparateur{"LongueurFocale", "7,5", ".", "7.5"},
                                         CasSeparateur{"EchellePix", "56.338", ",", "56,338"},
                                         CasSeparateur{"EchellePix", "1,234.5", ".", "1.234.5"},
                                         CasSeparateur{"Objectif", "2,5", ".", "2.5"},
                                         CasSeparateur{"ReductionImage", "3.55", ",", "3,55"},
                                         CasSeparateur{"ReductionImage", "3,55", ",", "3,55"},
                                         // EchelleMic stays as written, like any other key.
                                         CasSeparateur{"EchelleMic", "20.5", ",", "20.5"},
                                         CasSeparateur{"EchelleMic", "20,5", ".", "20,5"},
                                         CasSeparateur{"TitreImage", "a.b,c", ",", "a.b,c"}));

// ---------------------------------------------------------------- VerifierEffacerMetaComment

TEST_F(Lecteurs, CommentaireDAppareilAbandonneAvecSonMessage) {
  for (const char* commentaire : {"SONY DSC", "AppleMark\r\n", "Application=GIMP 2.10\r\n",
                                  "\r\n\r\n", "=", "Application=tessellographe 1\r\n"}) {
    dialogues.appels.clear();
    s = SessionRecord{};
    s.CommentaireImage = commentaire;
    s.IptcTexte = "FocalLength = 15/2";
    LireMetadonneesImage(s);
    EXPECT_EQ(s.CommentaireImage, "") << commentaire;
    EXPECT_EQ(s.Application, "") << commentaire;
    EXPECT_FALSE(s.ImageDejaFormatee) << commentaire;
    EXPECT_FLOAT_EQ(s.FocaleAPN, 7.5f);  // the EXIF pass still runs
    ASSERT_EQ(dialogues.appels.size(), 1u) << commentaire;
    EXPECT_EQ(dialogues.Dernier().titre, "Tessellographe");
    EXPECT_EQ(dialogues.Dernier().texte,
              "Anciens commentaires non récupérés (meta-comments non compatibles)  !\n"
              "(Application <> Tessellographe)");
    EXPECT_EQ(dialogues.Dernier().icone, int(Icone::Aucune));
  }
}

TEST_F(Lecteurs, BlocDuProgrammeGarde) {
  s.CommentaireImage = "Application=Tessellographe 202 beta\r\n";
  VerifierEffacerMetaComment(s);
  EXPECT_EQ(s.Application, "Tessellographe 202 beta");
  EXPECT_FALSE(s.CommentaireImage.isEmpty());
  EXPECT_TRUE(dialogues.appels.empty());
  // Nothing to check without a comment.
  s = SessionRecord{};
  VerifierEffacerMetaComment(s);
  EXPECT_TRUE(dialogues.appels.empty());
}

// ---------------------------------------------------------------- ExtraireMetaExif

TEST_F(Lecteurs, ExifDateModeleFocaleZoom) {
  s.ExifTexte = "Make = Fab\r\nModel = APN-1\r\nDateTime = 2008:03:04 10:00:00";
  s.IptcTexte =
      "ExposureTime = 1/60 sec\r\nDateTimeOriginal = 2008:03:02 09:00:00\r\n"
      "FocalLength = 35/3\r\nDigitalZoomRatio = 4/3";
  ExtraireMetaExif(s);
  EXPECT_EQ(s.Modele, "APN-1");
  EXPECT_EQ(s.ApPhotoMeta, "APN-1");
  EXPECT_EQ(s.DateImage, "2008:03:02 09:00:00");
  EXPECT_FLOAT_EQ(s.FocaleAPN, 11.67f);  // 2 decimals
  EXPECT_FLOAT_EQ(s.DigitalZoom, 1.3f);  // 1 decimal

  // No DateTimeOriginal: DateTime; "0/0" is a zoom not used.
  s.IptcTexte = "FocalLength = 58/10\r\nDigitalZoomRatio = 0/0";
  ExtraireMetaExif(s);
  EXPECT_EQ(s.DateImage, "2008:03:04 10:00:00");
  EXPECT_FLOAT_EQ(s.FocaleAPN, 5.8f);
  EXPECT_FLOAT_EQ(s.DigitalZoom, 0);
  EXPECT_TRUE(dialogues.appels.empty());

  // A tag that is no number: the standard report, the values after it unread.
  s.IptcTexte = "FocalLength = 7.5 mm\r\nDigitalZoomRatio = 3/2";
  s.DigitalZoom = 9;
  ExtraireMetaExif(s);
  EXPECT_EQ(dialogues.Dernier().texte,
            "Error 13 (Type mismatch) in procedure ExtraireMetaExif of Module modExtractMeta");
  EXPECT_FLOAT_EQ(s.DigitalZoom, 9);
}

// ---------------------------------------------------------------- ExtraireMetaComment

TEST_F(Lecteurs, ToutLeBlocDansLaSession) {
  ValeursBloc v = test::ValeursExemple();
  v.regne = "Fungi";
  v.famille = "Amanitaceae";
  v.genre = "Amanita";
  v.motClef = "rouge, blanc";
  v.provenance = "Forêt";
  s.CommentaireImage = EcrireBlocMeta(v);
  LireMetadonneesImage(s);
  EXPECT_TRUE(dialogues.appels.empty()) << Messages().join("|").toStdString();
  EXPECT_EQ(s.Application, "Tessellographe 202");
  EXPECT_EQ(s.TitreImage, "Genre, espèce, divers");
  EXPECT_EQ(s.NomAuteurImage, "A. Nonyme");
  EXPECT_EQ(s.Provenance, "Forêt");
  EXPECT_EQ(s.Coloration, "Aucune");
  EXPECT_EQ(s.Preparation, "Eau");
  EXPECT_EQ(s.Eclairage, "Fond Clair");
  EXPECT_EQ(s.Modele, "APN-1");
  EXPECT_EQ(s.DateImage, "02/03/2008 10:15:00");  // no EXIF date
  EXPECT_EQ(s.DateObservation, "02/03/2008");
  EXPECT_TRUE(s.TraitNiveaux);
  EXPECT_FLOAT_EQ(s.FocaleAPN, 7.5f);
  EXPECT_FLOAT_EQ(s.DigitalZoom, 0);
  EXPECT_FLOAT_EQ(s.ReductionImage, 3.55f);
  EXPECT_EQ(s.LargeurOrigineMeta, "2272");
  EXPECT_EQ(s.Microscope, "Micro-A");
  EXPECT_EQ(s.Objectif, "40");
  EXPECT_EQ(s.EchelleMic, "20");
  EXPECT_EQ(s.EchellePix, "56,338");
  EXPECT_EQ(s.UniteEtalon, "um");
  EXPECT_EQ(s.UniteObj, "x");
  EXPECT_FALSE(s.ExtrapolationFoc);
  EXPECT_EQ(s.Regne, "Fungi");
  EXPECT_EQ(s.Famille, "Amanitaceae");
  // The title "Genre, espèce, divers" holds the key Genre: its line has no
  // "=" after the word, and the real Genre= line is never reached.
  EXPECT_EQ(s.Genre, "");
  EXPECT_EQ(s.MotClef, "rouge, blanc");
  EXPECT_EQ(s.Espece, "");
  EXPECT_TRUE(s.ImageDejaFormatee);
  EXPECT_EQ(s.MicroscopeMeta, "Micro-A");
  EXPECT_EQ(s.ApPhotoMeta, "APN-1");
  EXPECT_EQ(s.ObjectifMeta, "40");
}

TEST_F(Lecteurs, DateDeLAppareilGagneEtPremierMicroscope) {
  ValeursBloc v = test::ValeursExemple();
  v.microscope = "Table-Micro";
  v.objectif = "100";
  v.microMan = "Manuel-Micro";
  s.CommentaireImage = EcrireBlocMeta(v);
  s.IptcTexte = "DateTimeOriginal = 2008:03:02 09:00:00\r\nFocalLength = 6/1";
  LireMetadonneesImage(s);
  EXPECT_EQ(s.DateImage, "2008:03:02 09:00:00");
  EXPECT_FLOAT_EQ(s.FocaleAPN, 7.5f);  // the block overrides the EXIF value
  EXPECT_EQ(s.Microscope, "Table-Micro");
  EXPECT_EQ(s.MicroscopeMeta, "Table-Micro");
  EXPECT_EQ(s.Objectif, "100");
}

TEST_F(Lecteurs, TraitementNumNeRendQueLePremier) {
  struct Cas {
    bool n, p, b, d;
  };
  for (Cas c : {Cas{true, false, true, false}, Cas{false, true, true, true},
                Cas{false, false, true, true}, Cas{false, false, false, true}}) {
    ValeursBloc v = test::ValeursExemple();
    v.traitNiveaux = c.n;
    v.traitPoussieres = c.p;
    v.traitBruit = c.b;
    v.traitDeconvolution = c.d;
    s = SessionRecord{};
    s.CommentaireImage = EcrireBlocMeta(v);
    ExtraireMetaComment(s);
    const bool premierN = c.n, premierP = !c.n && c.p, premierB = !c.n && !c.p && c.b,
               premierD = !c.n && !c.p && !c.b && c.d;
    EXPECT_EQ(s.TraitNiveaux, premierN);
    EXPECT_EQ(s.TraitPoussieres, premierP);
    EXPECT_EQ(s.TraitBruit, premierB);
    EXPECT_EQ(s.TraitDeconvolution, premierD);
  }
}

TEST_F(Lecteurs, ExtrapolationFoc) {
  ValeursBloc v = test::ValeursExemple();
  v.extrapolationFoc = true;
  s.CommentaireImage = EcrireBlocMeta(v);
  ExtraireMetaComment(s);
  EXPECT_TRUE(s.ExtrapolationFoc);
  // An empty value leaves the flag as it was; another number clears it.
  s.CommentaireImage =
      "Application=Tessellographe 1\r\nLongueurFocale=0\r\nZoomNumerique=0\r\n"
      "ExtrapolationFoc=\r\n";
  ExtraireMetaComment(s);
  EXPECT_TRUE(s.ExtrapolationFoc);
  s.CommentaireImage.replace("ExtrapolationFoc=", "ExtrapolationFoc=2");
  ExtraireMetaComment(s);
  EXPECT_FALSE(s.ExtrapolationFoc);
}

TEST_F(Lecteurs, FocaleNonNumeriqueArreteLaLecture) {
  ValeursBloc v = test::ValeursExemple();
  v.famille = "Amanitaceae";
  s.CommentaireImage = EcrireBlocMeta(v).replace("LongueurFocale=7,5", "LongueurFocale=sept");
  ExtraireMetaComment(s);
  EXPECT_EQ(dialogues.Dernier().texte,
            "Error 13 (Type mismatch) in procedure ExtraireMetaComment of Module modExtractMeta");
  EXPECT_EQ(dialogues.Dernier().icone, int(Icone::Critique));
  EXPECT_EQ(s.TitreImage, "Genre, espèce, divers");  // read before
  EXPECT_TRUE(s.TraitNiveaux);
  EXPECT_EQ(s.EchellePix, "");  // after: unread
  EXPECT_EQ(s.Famille, "");
  EXPECT_FALSE(s.ImageDejaFormatee);

  // An empty ReductionImage reads 0; a non-numeric one stops the reading.
  s = SessionRecord{};
  s.CommentaireImage = EcrireBlocMeta(v).replace("ReductionImage=3,55", "ReductionImage=");
  s.ReductionImage = 5;
  ExtraireMetaComment(s);
  EXPECT_FLOAT_EQ(s.ReductionImage, 0);
  EXPECT_EQ(s.EchellePix, "56,338");
  s.CommentaireImage.replace("ReductionImage=", "ReductionImage=3,5,5");
  dialogues.appels.clear();
  ExtraireMetaComment(s);
  EXPECT_EQ(dialogues.appels.size(), 1u);
}

TEST_F(Lecteurs, SansBlocLesMotsClefsSontVides) {
  s.Genre = "ancien";
  s.MotClef = "ancien";
  ExtraireMetaComment(s);
  EXPECT_EQ(s.Genre, "");
  EXPECT_EQ(s.MotClef, "");
  EXPECT_FALSE(s.ImageDejaFormatee);
  EXPECT_TRUE(dialogues.appels.empty());
}

TEST_F(Lecteurs, CleAbsenteChercheeJusqueDansOldExif) {
  ValeursBloc v = test::ValeursExemple();
  v.exifTexte = "Ordre = du texte EXIF";  // a word of the EXIF text matches
  s.CommentaireImage = EcrireBlocMeta(v);
  ExtraireMetaComment(s);
  EXPECT_EQ(s.Ordre, "du texte EXIF");
}

TEST_F(Lecteurs, FichiersVirguleEtPointSurLesDeuxSystemes) {
  for (const char* ecrit : {",", "."}) {
    for (const char* lit : {",", "."}) {
      ValeursBloc v = test::ValeursExemple();
      v.separateurDecimal = ecrit;
      v.digitalZoom = 1.5f;
      v.objectif = QString("2") + ecrit + "5";
      v.longueur = QString("20") + ecrit + "5";
      s = SessionRecord{};
      s.SeparateurDecimal = lit;
      s.CommentaireImage = EcrireBlocMeta(v);
      LireMetadonneesImage(s);
      const QString cas = QString("%1 -> %2").arg(ecrit, lit);
      EXPECT_TRUE(dialogues.appels.empty()) << cas.toStdString();
      EXPECT_FLOAT_EQ(s.FocaleAPN, 7.5f) << cas.toStdString();
      EXPECT_FLOAT_EQ(s.DigitalZoom, 1.5f) << cas.toStdString();
      EXPECT_FLOAT_EQ(s.ReductionImage, 3.55f) << cas.toStdString();
      EXPECT_EQ(s.EchellePix, QString("56") + lit + "338") << cas.toStdString();
      EXPECT_EQ(s.Objectif, QString("2") + lit + "5") << cas.toStdString();
      EXPECT_EQ(s.EchelleMic, QString("20") + ecrit + "5") << cas.toStdString();  // as written
    }
  }
}

TEST(ValeurExif, LigneNomEgalValeur) {
  const QString t = "Model = A = B\r\nModelX = C\r\nDateTime = ";
  EXPECT_EQ(ValeurExif(t, "Model"), "A = B");
  EXPECT_EQ(ValeurExif(t, "ModelX"), "C");
  EXPECT_EQ(ValeurExif(t, "DateTime"), "");
  EXPECT_EQ(ValeurExif(t, "Make"), "");
}
