// The block through a real JPEG file: written by the imaging contract, read by
// the loading steps and the readers, checked with exiftool, and read by
// `tessellographe-cli echelle`.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <type_traits>

#include "cartouche/BlocMeta.h"
#include "cartouche/modExtractMeta.h"
#include "core/Chargement.h"
#include "core/Enregistrement.h"
#include "core/frmFichierPhoto.h"
#include "core/frmFichierPhotoChargement.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Fichiers.h"
#include "tests/cartouche/ValeursExemple.h"
#include "tests/support/Processus.h"
#include "tests/support/DialoguesScriptes.h"

using namespace tg;
using test::Cli;
using test::Executer;
using test::Sortie;

namespace {

// Every field of the record but the bitmaps, as "Name=value" lines.
QString Texte(const QString& v) { return v; }
QString Texte(const QStringList& v) { return v.join(u'|'); }
QString Texte(bool v) { return v ? "true" : "false"; }
template <typename T>
QString Texte(T v) requires std::is_arithmetic_v<T> {
  return QString::number(double(v), 'g', 9);
}
template <typename T, size_t N>
QString Texte(const std::array<T, N>& v) {
  QStringList l;
  for (const auto& e : v) l << Texte(e);
  return l.join(u'|');
}

// clang-format off
#define TG_CHAMP(nom) l << QStringLiteral(#nom "=") + Texte(s.nom);
QStringList Champs(const SessionRecord& s) {
  QStringList l;
  TG_CHAMP(Etape) TG_CHAMP(ModeMesure) TG_CHAMP(ModeEtalon) TG_CHAMP(MesureTemp)
  TG_CHAMP(ImageFinale) TG_CHAMP(ImageDejaFormatee) TG_CHAMP(AnnotationsPresentes)
  TG_CHAMP(PathOrigine) TG_CHAMP(HauteurOrigine) TG_CHAMP(LargeurOrigine) TG_CHAMP(RatioOrigine)
  TG_CHAMP(PortraitOrigine) TG_CHAMP(HauteurRecadrage) TG_CHAMP(LargeurRecadrage)
  TG_CHAMP(RatioRecadrage) TG_CHAMP(Hauteur) TG_CHAMP(Largeur) TG_CHAMP(Cadrage)
  TG_CHAMP(LargeurCadrage) TG_CHAMP(ImageTournee) TG_CHAMP(PoidsFichier)
  TG_CHAMP(LargeurFormatee) TG_CHAMP(HauteurFormatee) TG_CHAMP(CadrageFormate)
  TG_CHAMP(LargeurMesure) TG_CHAMP(HauteurMesure) TG_CHAMP(RatioMesure) TG_CHAMP(CoefMesure)
  TG_CHAMP(TitreImage) TG_CHAMP(NomAuteurImage) TG_CHAMP(Provenance) TG_CHAMP(Coloration)
  TG_CHAMP(Preparation) TG_CHAMP(Microscope) TG_CHAMP(Eclairage) TG_CHAMP(Objectif)
  TG_CHAMP(EchellePix) TG_CHAMP(EchelleMic) TG_CHAMP(UniteEtalon) TG_CHAMP(UniteObj)
  TG_CHAMP(FocaleAPN) TG_CHAMP(DigitalZoom) TG_CHAMP(Modele) TG_CHAMP(DateImage)
  TG_CHAMP(DateObservation) TG_CHAMP(TraitNiveaux) TG_CHAMP(TraitPoussieres)
  TG_CHAMP(TraitBruit) TG_CHAMP(TraitDeconvolution) TG_CHAMP(Application) TG_CHAMP(ExifTexte)
  TG_CHAMP(IptcTexte) TG_CHAMP(CommentaireImage) TG_CHAMP(ReductionImage)
  TG_CHAMP(LargeurOrigineMeta) TG_CHAMP(ExtrapolationFoc) TG_CHAMP(MotClef) TG_CHAMP(Regne)
  TG_CHAMP(Embranchement) TG_CHAMP(Classe) TG_CHAMP(Ordre) TG_CHAMP(Famille) TG_CHAMP(Genre)
  TG_CHAMP(Espece) TG_CHAMP(MicroscopeMeta) TG_CHAMP(ApPhotoMeta) TG_CHAMP(ObjectifMeta)
  TG_CHAMP(AncresEchelle) TG_CHAMP(ListeMotsClefs) TG_CHAMP(MicronsParPixel)
  TG_CHAMP(ChoixFormat) TG_CHAMP(ApnLargCourant) TG_CHAMP(ApnHautCourant)
  TG_CHAMP(ApnLargVersHaut) TG_CHAMP(RatioFormat) TG_CHAMP(EcranLargeur)
  TG_CHAMP(EcranTropPetit) TG_CHAMP(EcranReduit) TG_CHAMP(EcranConfortable)
  TG_CHAMP(ZoneLargeur) TG_CHAMP(ZoneHauteur) TG_CHAMP(ListeRecent)
  TG_CHAMP(CheminLigneCommande) TG_CHAMP(DocPath) TG_CHAMP(DossierTemporaire)
  TG_CHAMP(SeparateurDecimal) TG_CHAMP(PaysUtilisateur) TG_CHAMP(NumVersion)
  TG_CHAMP(NomAuteur) TG_CHAMP(NomFichImage) TG_CHAMP(NextNumberImage)
  TG_CHAMP(TitreImageConfig) TG_CHAMP(ImageAccueil) TG_CHAMP(MessageBox) TG_CHAMP(MajAuto)
  TG_CHAMP(MethodeRedim) TG_CHAMP(RepTravail) TG_CHAMP(RepEtalon) TG_CHAMP(RepApPhoto)
  TG_CHAMP(ModeOuvrir) TG_CHAMP(ChoixFormatMesure) TG_CHAMP(PoidsMax) TG_CHAMP(CartoucheHB)
  TG_CHAMP(ApnLarg) TG_CHAMP(ApnHaut) TG_CHAMP(WcLarg) TG_CHAMP(WcHaut) TG_CHAMP(FontName1)
  TG_CHAMP(FontSize1) TG_CHAMP(FontBold1) TG_CHAMP(FontItalic1) TG_CHAMP(FontName2)
  TG_CHAMP(FontSize2) TG_CHAMP(FontBold2) TG_CHAMP(FontItalic2) TG_CHAMP(PathNav)
  TG_CHAMP(ApExt)
  return l;
}
#undef TG_CHAMP
// clang-format on

// exiftool is installed by the test script (scripts/setup.sh).
QString Exiftool() { return QStandardPaths::findExecutable(QStringLiteral("exiftool")); }
#define EXIGER_EXIFTOOL()                                                                 \
  ASSERT_FALSE(Exiftool().isEmpty())                                                      \
      << "exiftool introuvable sur le PATH : installez le paquet libimage-exiftool-perl " \
         "(./test.sh le fait)"

// The headless tool, built beside the tests.

class BlocJpeg : public testing::Test {
 protected:
  test::DialoguesScriptes dialogues;
  cAdvancedImagery ai;

  void SetUp() override { InstallerLecteurMeta(&LireMetadonneesImage); }
  void TearDown() override { InstallerLecteurMeta(nullptr); }

  // A picture with `commentaire` as its comment, saved as JPEG at quality 94.
  void Sauver(const QString& chemin, const QString& commentaire) {
    Bitmap b;
    ASSERT_TRUE(ai.IO_CreateImage(b, 64, 48));
    ASSERT_TRUE(ai.Effect_Invert(b));
    ASSERT_TRUE(ai.Metadata_Set_Comments(b, commentaire)) << ai.Error_GetLast().toStdString();
    ASSERT_TRUE(ai.IO_SaveImage(b, chemin, FormatJPEG, 94)) << ai.Error_GetLast().toStdString();
    ai.IO_DestroyBitmap(b);
  }

  // The loading steps of ChargerImage that need no window: bitmap, record
  // reset, metadata texts, then the installed readers.
  void Charger(SessionRecord& s, const QString& chemin, bool lecteurs = true) {
    s.SeparateurDecimal = ",";
    ASSERT_TRUE(ChargerBitmap(s, ai, chemin)) << ai.Error_GetLast().toStdString();
    const QStringList erreurs = RemplirSession(s, ai, chemin);
    ASSERT_TRUE(erreurs.isEmpty()) << erreurs.join(u'\n').toStdString();
    if (lecteurs) LireMeta(s);
  }

  ValeursBloc ValeursCompletes() {
    ValeursBloc v = test::ValeursExemple();
    v.titre = "Cœur d'œillet, coupe à 40x";  // œ is in Windows-1252, not in Latin-1
    v.auteur = "Émile Ÿ";
    v.provenance = "Forêt de Fontainebleau";
    v.echelleVisible = false;
    v.apPhotoMan = "APN-2";
    v.digitalZoom = 1.5f;
    v.extrapolationFoc = true;
    v.traitPoussieres = true;
    v.traitBruit = true;
    v.traitNiveaux = false;
    v.imageDejaFormatee = false;
    v.regne = "Plantae";
    v.embranchement = "Magnoliophyta";
    v.classe = "Magnoliopsida";
    v.ordre = "Caryophyllales";
    v.famille = "Caryophyllaceae";
    v.genre = "Dianthus";
    v.espece = "caryophyllus";
    v.motClef = "œillet, pétale, coupe";
    return v;
  }
};

}  // namespace

TEST_F(BlocJpeg, ChaqueChampRestitueEtAucunAutre) {
  const ValeursBloc v = ValeursCompletes();
  const QString bloc = CompleterQualite(EcrireBlocMeta(v), 94);
  const QString chemin = QDir::current().filePath("bloc.jpg");
  Sauver(chemin, bloc);

  // ChargerImage of the main window, without the readers and with them.
  const auto charger = [&](SessionRecord& s) {
    s.SeparateurDecimal = ",";
    frmFichierPhoto w(s, ai);
    ASSERT_TRUE(ChargerImage(w, chemin));
    s.ImageCourante = Bitmap();
  };
  SessionRecord attendu;
  InstallerLecteurMeta(nullptr);
  charger(attendu);
  EXPECT_EQ(attendu.Etape, 1);
  EXPECT_EQ(attendu.CommentaireImage, bloc);
  EXPECT_EQ(attendu.ExifTexte, "");
  EXPECT_TRUE(dialogues.appels.empty());
  // What the readers add to it.
  attendu.Application = "Tessellographe 202";
  attendu.TitreImage = v.titre;
  attendu.NomAuteurImage = v.auteur;
  attendu.Provenance = v.provenance;
  attendu.Coloration = v.coloration;
  attendu.Preparation = v.preparation;
  attendu.Eclairage = v.eclairage;
  attendu.Modele = "APN-2";
  attendu.ApPhotoMeta = "APN-2";
  attendu.DateImage = v.dateImage;
  attendu.DateObservation = "02/03/2008";
  attendu.TraitPoussieres = true;  // the first of "Poussières/Bruit/"
  attendu.FocaleAPN = 7.5f;
  attendu.DigitalZoom = 1.5f;
  attendu.ReductionImage = 3.55f;
  attendu.LargeurOrigineMeta = "2272";
  attendu.Microscope = attendu.MicroscopeMeta = "Micro-A";
  attendu.Objectif = attendu.ObjectifMeta = "40";
  attendu.EchelleMic = "20";
  attendu.EchellePix = "56,338";
  attendu.UniteEtalon = "um";
  attendu.UniteObj = "x";
  attendu.ExtrapolationFoc = true;
  attendu.Regne = v.regne;
  attendu.Embranchement = v.embranchement;
  attendu.Classe = v.classe;
  attendu.Ordre = v.ordre;
  attendu.Famille = v.famille;
  attendu.Genre = v.genre;
  attendu.Espece = v.espece;
  attendu.MotClef = v.motClef;
  attendu.ImageDejaFormatee = true;

  SessionRecord lu;
  InstallerLecteurMeta(&LireMetadonneesImage);
  charger(lu);
  EXPECT_EQ(Champs(lu), Champs(attendu));
  // The only message: the digital zoom read back, above 1.
  EXPECT_EQ(dialogues.Textes().size(), 1);
  EXPECT_EQ(dialogues.Dernier().titre, "Zoom numérique !");
}

TEST_F(BlocJpeg, ExiftoolLitLesOctetsEcrits) {
  EXIGER_EXIFTOOL();
  const QString bloc = CompleterQualite(EcrireBlocMeta(ValeursCompletes()), 94);
  const QString chemin = QDir::current().filePath("bloc.jpg");
  Sauver(chemin, bloc);
  const Sortie e = Executer(Exiftool(), {"-b", "-Comment", chemin});
  ASSERT_EQ(e.code, 0) << e.erreur.toStdString();
  const QByteArray attendu = VersWindows1252(bloc);
  EXPECT_EQ(e.sortie, attendu);
  // Windows-1252 and CR LF, byte for byte.
  EXPECT_TRUE(
      e.sortie.contains("TitreImage=C\x9C"
                        "ur d'\x9C"
                        "illet, coupe \xE0 40x\r\n"));
  EXPECT_TRUE(e.sortie.contains("\r\nQualiteJpg=94\r\n"));
  EXPECT_EQ(e.sortie.count("\r\n"), e.sortie.count('\n'));
  EXPECT_FALSE(e.sortie.contains("\xC5\x93"));  // no UTF-8 œ
}

TEST_F(BlocJpeg, JpegDAppareilPuisPremierFormatage) {
  EXIGER_EXIFTOOL();
  const QString photo = QDir::current().filePath("appareil.jpg");
  Sauver(photo, QString());
  const Sortie e = Executer(
      Exiftool(), {"-overwrite_original", "-Model=APN-3", "-DateTimeOriginal=2008:03:02 09:00:00",
                   "-FocalLength=7.5", "-DigitalZoomRatio=1.5", "-Comment=SONY DSC", photo});
  ASSERT_EQ(e.code, 0) << e.erreur.toStdString();

  // The camera's comment is dropped with its message; its EXIF is read.
  SessionRecord s;
  Charger(s, photo);
  ASSERT_EQ(dialogues.appels.size(), 1u);
  EXPECT_EQ(dialogues.Dernier().texte, TexteMetaIncompatible);
  EXPECT_EQ(s.CommentaireImage, "");
  EXPECT_FALSE(s.ImageDejaFormatee);
  EXPECT_EQ(s.Modele, "APN-3");
  EXPECT_EQ(s.ApPhotoMeta, "APN-3");
  EXPECT_EQ(s.DateImage, "2008:03:02 09:00:00");
  EXPECT_FLOAT_EQ(s.FocaleAPN, 7.5f);
  EXPECT_FLOAT_EQ(s.DigitalZoom, 1.5f);
  EXPECT_TRUE(s.IptcTexte.contains("FocalLength = ")) << s.IptcTexte.toStdString();

  // First formatting: a fresh [OldExif] with the camera's texts, which a
  // later load finds again.
  ValeursBloc v = test::ValeursExemple();
  v.commentaireImage = s.CommentaireImage;
  v.exifTexte = s.ExifTexte;
  v.iptcTexte = s.IptcTexte;
  v.modele = s.Modele;
  const QString bloc = EcrireBlocMeta(v);
  EXPECT_TRUE(bloc.contains("\r\n\r\n[OldExif]\r\n" + s.ExifTexte + "\r\n" + s.IptcTexte));
  const QString formate = QDir::current().filePath("formate.jpg");
  Sauver(formate, bloc);
  SessionRecord relu;
  Charger(relu, formate);
  EXPECT_TRUE(relu.ImageDejaFormatee);
  EXPECT_TRUE(relu.CommentaireImage.contains("Model = APN-3"));
  EXPECT_EQ(relu.Modele, "APN-3");  // ApPhoto= of the block
}

TEST_F(BlocJpeg, AncienneFormeConvertieAuFormatageSuivant) {
  // A file of an older version: its block ends with the ANCIENNES INFOS part.
  const QString ancien =
      "[Main]\r\nTitreImage=Ancien\r\nApplication=Tessellographe 090\r\nLongueurFocale=6\r\n"
      "ZoomNumerique=0\r\n\r\nANCIENNES INFOS (original) :\r\n"
      "------------------------------\r\nModel = APN-0\r\nFocalLength = 6/1";
  const QString chemin = QDir::current().filePath("ancien.jpg");
  Sauver(chemin, ancien);
  SessionRecord s;
  Charger(s, chemin);
  EXPECT_TRUE(s.ImageDejaFormatee);
  EXPECT_EQ(s.TitreImage, "Ancien");
  EXPECT_FLOAT_EQ(s.FocaleAPN, 6);

  ValeursBloc v = test::ValeursExemple();
  v.commentaireImage = s.CommentaireImage;
  v.imageDejaFormatee = s.ImageDejaFormatee;
  const QString bloc = EcrireBlocMeta(v);
  EXPECT_TRUE(bloc.endsWith("[KeyWord]\r\n\r\n[OldExif]\r\nModel = APN-0\r\nFocalLength = 6/1"));
  EXPECT_FALSE(bloc.contains("ANCIENNES"));
  EXPECT_TRUE(bloc.contains("\r\nSecondFormatage=Oui\r\n"));
}

// ---------------------------------------------------------------- tessellographe-cli echelle

class CommandeEchelle : public BlocJpeg {
 protected:
  void SetUp() override {
    BlocJpeg::SetUp();
    ASSERT_TRUE(QFile::exists(Cli())) << "tessellographe-cli absent : " << Cli().toStdString();
  }
};

TEST_F(CommandeEchelle, FichierAvecEchelle) {
  const QString chemin = QDir::current().filePath("echelle.jpg");
  Sauver(chemin, CompleterQualite(EcrireBlocMeta(test::ValeursExemple()), 94));

  Sortie r = Executer(Cli(), {"echelle", chemin}, {"LC_ALL=fr_FR.UTF-8"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  QStringList lignes = QString::fromUtf8(r.sortie).split(u'\n', Qt::SkipEmptyParts);
  ASSERT_EQ(lignes.size(), 7) << r.sortie.toStdString();
  EXPECT_EQ(lignes.mid(0, 5), (QStringList{"EchellePix=56,338", "EchelleMic=20", "UniteEtalon=um",
                                           "LargeurOrigine=2272", "ReductionImage=3,55"}));
  EXPECT_TRUE(lignes[5].startsWith("MicronsParPixel=0,355000177")) << lignes[5].toStdString();
  EXPECT_EQ(lignes[6], "Source=Tessellographe");

  // A point system reads the comma file right.
  r = Executer(Cli(), {"echelle", chemin}, {"LC_ALL=C"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  EXPECT_TRUE(r.sortie.startsWith("EchellePix=56.338\n")) << r.sortie.toStdString();

  r = Executer(Cli(), {"echelle", chemin, "--json"});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  QJsonParseError erreur;
  const QJsonObject o = QJsonDocument::fromJson(r.sortie, &erreur).object();
  ASSERT_EQ(erreur.error, QJsonParseError::NoError) << r.sortie.toStdString();
  EXPECT_EQ(o.size(), 7);
  EXPECT_EQ(o["source"].toString(), "Tessellographe");
  EXPECT_TRUE(o["EchellePix"].isDouble());
  EXPECT_DOUBLE_EQ(o["EchellePix"].toDouble(), 56.338);
  EXPECT_DOUBLE_EQ(o["EchelleMic"].toDouble(), 20);
  EXPECT_EQ(o["UniteEtalon"].toString(), "um");
  EXPECT_DOUBLE_EQ(o["LargeurOrigine"].toDouble(), 2272);
  EXPECT_DOUBLE_EQ(o["ReductionImage"].toDouble(), 3.55);
  EXPECT_DOUBLE_EQ(o["MicronsParPixel"].toDouble(), 20 / 56.338);
}

TEST_F(CommandeEchelle, EtalonEnMillimetres) {
  ValeursBloc v = test::ValeursExemple();
  v.optUnite = 1;
  v.longueur = "0,1";
  v.echellePixels = 200;
  const QString chemin = QDir::current().filePath("mm.jpg");
  Sauver(chemin, EcrireBlocMeta(v));
  const Sortie r = Executer(Cli(), {"echelle", "--json", chemin});
  ASSERT_EQ(r.code, 0) << r.erreur.toStdString();
  const QJsonObject o = QJsonDocument::fromJson(r.sortie).object();
  EXPECT_EQ(o["UniteEtalon"].toString(), "mm");
  EXPECT_DOUBLE_EQ(o["EchelleMic"].toDouble(), 0.1);
  EXPECT_DOUBLE_EQ(o["MicronsParPixel"].toDouble(), 0.5);
}

TEST_F(CommandeEchelle, RefusAvecStatut3) {
  EXIGER_EXIFTOOL();
  // A camera JPEG, with a comment of its own.
  const QString photo = QDir::current().filePath("appareil.jpg");
  Sauver(photo, QString());
  ASSERT_EQ(Executer(Exiftool(), {"-overwrite_original", "-Model=APN-3", "-FocalLength=7.5",
                                  "-Comment=SONY DSC", photo})
                .code,
            0);
  Sortie r = Executer(Cli(), {"echelle", photo});
  EXPECT_EQ(r.code, 3);
  EXPECT_TRUE(r.sortie.isEmpty());
  EXPECT_TRUE(QString::fromUtf8(r.erreur).contains("ni bloc de métadonnées Tessellographe ni échelle d'un autre programme"))
      << r.erreur.toStdString();

  // A block of ours without a scale.
  ValeursBloc v = test::ValeursExemple();
  v.txtPix.clear();
  const QString sansEchelle = QDir::current().filePath("sans_echelle.jpg");
  Sauver(sansEchelle, EcrireBlocMeta(v));
  r = Executer(Cli(), {"echelle", sansEchelle, "--json"});
  EXPECT_EQ(r.code, 3);
  EXPECT_TRUE(r.sortie.isEmpty());
  EXPECT_TRUE(QString::fromUtf8(r.erreur).contains("Aucune échelle")) << r.erreur.toStdString();

  // No such file; then bad usage.
  r = Executer(Cli(), {"echelle", QDir::current().filePath("absent.jpg")});
  EXPECT_EQ(r.code, 3);
  EXPECT_TRUE(QString::fromUtf8(r.erreur).contains("il n'existe pas")) << r.erreur.toStdString();
  EXPECT_EQ(Executer(Cli(), {"echelle"}).code, 2);
}
