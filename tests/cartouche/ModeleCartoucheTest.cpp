// The cartouche form's rules on its model alone: no widget is built.
#include <gtest/gtest.h>

#include <QFile>
#include <functional>

#include "cartouche/Echelle.h"
#include "cartouche/Listes.h"
#include "cartouche/ModeleCartouche.h"
#include "core/Chargement.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/TableMesure.h"
#include "platform/Fichiers.h"
#include "tests/cartouche/FormulaireEssai.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::EcrireTables;
using test::Table;

class ModeleCartoucheTest : public testing::Test {
 protected:
  test::DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  std::unique_ptr<ModeleCartouche> m;

  // A formatted picture of largeur x hauteur, its cartouche under it ("1")
  // or over it ("0").
  void Ouvrir(int largeur, int hauteur, const QString& hb = QStringLiteral("1")) {
    test::SessionFormatee(s, ai, largeur, hauteur, hb);
    if (testing::Test::HasFatalFailure()) return;
    Rouvrir();
  }
  // A new visit of the form on the same session.
  void Rouvrir() {
    m = std::make_unique<ModeleCartouche>(s, ai);
    m->Form_Load();
    dlg.appels.clear();
  }
  bool Visible(Controle c) const { return m->Visible(c); }
  // The scale typed: `pix` pixels of the photo for `mic` microns, a bar of `longueur`.
  void Echelle(const char* pix, const char* mic, const char* longueur) {
    m->cmdEtalonner();
    m->txtPix = QLatin1String(pix);
    m->txtMic = QLatin1String(mic);
    m->ComboObjectif.DefinirTexte(QStringLiteral("10"));
    m->txtLongueur = QLatin1String(longueur);
  }
};

// --- The lists behave as the form's combo boxes.

TEST(ListeFormulaire, PremiereLigneCouranteEtTexteSelonLeGenre) {
  ListeFormulaire editable, fixe(false);
  for (ListeFormulaire* l : {&editable, &fixe}) {
    l->Ajouter(QStringLiteral("a"));
    l->Ajouter(QStringLiteral("b"));
    EXPECT_EQ(l->Selection(), 0);
    EXPECT_EQ(l->Texte(), "a");
    l->Inserer(0, QStringLiteral("*"));
    EXPECT_EQ(l->Selection(), 1);  // the same row stays current
  }
  editable.DefinirTexte(QStringLiteral("libre"));
  EXPECT_EQ(editable.Texte(), "libre");
  fixe.DefinirTexte(QStringLiteral("b"));
  EXPECT_EQ(fixe.Selection(), 2);
  fixe.DefinirTexte(QStringLiteral("absent"));
  EXPECT_EQ(fixe.Selection(), -1);
  EXPECT_EQ(fixe.Texte(), "");
  fixe.Selectionner(1);
  EXPECT_FALSE(fixe.Choisir(QStringLiteral("absent")));
  EXPECT_EQ(fixe.Texte(), "a");
  editable.Vider();
  EXPECT_EQ(editable.Texte(), "");
  EXPECT_EQ(editable.Selection(), -1);
}

// --- Defaults of a first visit

TEST_F(ModeleCartoucheTest, PremiereVisiteSansEchelleAvecLesValeursParDefaut) {
  s.NomAuteur = QStringLiteral("A. Nonyme");
  Ouvrir(640, 480);
  EXPECT_EQ(m->txtCommentaire, DefautsChamps().titre);
  EXPECT_EQ(m->txtNomAuteur, "A. Nonyme");
  EXPECT_EQ(m->comboColoration.Texte(), DefautsChamps().coloration);
  EXPECT_EQ(m->txtLongueur, "20");
  // No scale yet: the no-scale block and the button that brings the scale.
  EXPECT_FALSE(Visible(Controle::fraEchelle));
  EXPECT_FALSE(Visible(Controle::fraChoixTable));
  EXPECT_TRUE(Visible(Controle::fraMicroPhoto));
  EXPECT_TRUE(Visible(Controle::cmdEtalonner));
  EXPECT_FALSE(m->Actif(Controle::cmdSuite));  // only after a drawing
  // The 3-line cartouche: fields to choose, never transparent, no auto colour.
  EXPECT_TRUE(Visible(Controle::fraChoixChamp));
  EXPECT_FALSE(m->Actif(Controle::optTransparence));
  EXPECT_FALSE(m->Actif(Controle::chkCouleurAuto));
  EXPECT_FALSE(Visible(Controle::chkOmbrage));  // 4:3
  EXPECT_EQ(m->CouleurTexte(), QColor(Qt::black));
  EXPECT_EQ(m->CouleurCartouche(), QColor(Qt::white));
  // The objectives offer a new value first and show none.
  EXPECT_EQ(m->ComboObjectif.Item(0), "*Nouv.val*");
  EXPECT_EQ(m->ComboObjectif.Texte(), "");
  // The date lists run from 1951 to this year.
  EXPECT_EQ(m->comboAnnee.Item(0), "1951");
  EXPECT_EQ(m->lblDatePhoto, "(date du jour)");
  EXPECT_TRUE(dlg.appels.empty()) << dlg.Textes().join(" | ").toStdString();

  m->cmdDessiner();
  EXPECT_TRUE(m->CartoucheValide());
  EXPECT_TRUE(m->Actif(Controle::cmdSuite));
  EXPECT_EQ(m->ImageCartouche().size(), QSize(640, 60));
  EXPECT_EQ(m->cmdDessinerTexte, "(re)Dessiner le cartouche");

  // Over the picture, 3:2: two lines, transparency and auto colour offered, the shadow box.
  Ouvrir(600, 400, QStringLiteral("0"));
  EXPECT_FALSE(Visible(Controle::fraChoixChamp));
  EXPECT_FALSE(Visible(Controle::cmdOuvrirFraChoixChamp));
  EXPECT_TRUE(m->Actif(Controle::optTransparence));
  EXPECT_TRUE(m->Actif(Controle::chkCouleurAuto));
  EXPECT_TRUE(Visible(Controle::chkOmbrage));
}

TEST_F(ModeleCartoucheTest, DateChoisieSeulementParmiLesLignes) {
  Ouvrir(640, 480);
  EXPECT_TRUE(m->ChoisirDate(QStringLiteral("05"), QStringLiteral("06"), QStringLiteral("2001")));
  EXPECT_EQ(m->comboJour.Texte() + m->comboMois.Texte() + m->comboAnnee.Texte(), "05062001");
  EXPECT_FALSE(m->ChoisirDate(QStringLiteral("07"), QStringLiteral("06"), QStringLiteral("1950")));
  EXPECT_FALSE(m->ChoisirDate(QStringLiteral("32"), QStringLiteral("06"), QStringLiteral("2001")));
  EXPECT_EQ(m->comboJour.Texte(), "05");  // a refused date changes nothing
}

// A field ticked off shows the unused mark, is locked, and gets its text back.
TEST_F(ModeleCartoucheTest, ChampDecocheMarqueEtRendSonTexte) {
  Ouvrir(640, 480);
  m->comboProvenance.DefinirTexte(QStringLiteral("Etang"));
  m->chkChoixChamp[6] = false;
  m->chkChoixChamp_Click(6);
  EXPECT_EQ(m->comboProvenance.Texte(), QString::fromUtf8(kChampInutilise));
  EXPECT_FALSE(m->Actif(Controle::comboProvenance));
  EXPECT_TRUE(dlg.appels.empty());
  m->chkChoixChamp[0] = false;
  m->chkChoixChamp_Click(0);
  EXPECT_EQ(dlg.Dernier().texte, "Attention : Il est déconseillé d'enlever le titre !");
  m->chkChoixChamp[5] = false;
  m->chkChoixChamp_Click(5);
  EXPECT_FALSE(m->Actif(Controle::cmdListeApPhoto));
  m->cmdTousChamps();
  EXPECT_EQ(m->comboProvenance.Texte(), "Etang");
  EXPECT_EQ(m->txtCommentaire, DefautsChamps().titre);
  EXPECT_TRUE(m->Actif(Controle::comboProvenance));
  EXPECT_TRUE(m->Actif(Controle::cmdListeApPhoto));
}

// --- Memory between two visits

TEST_F(ModeleCartoucheTest, MemoireRendueALaVisiteSuivanteEtOublieePourUneAutrePhoto) {
  Ouvrir(640, 480);
  m->txtCommentaire = QStringLiteral("Navicula");
  m->comboProvenance.DefinirTexte(QStringLiteral("Etang"));
  m->chkTraitNum[2] = true;
  Echelle("250", "100", "30");
  m->txtMicroMan = QStringLiteral("Micro-B");
  m->optAlign = 2;
  m->DefinirCouleurTexte(QColor(255, 0, 0));
  m->cmdDessiner();
  ASSERT_TRUE(m->CartoucheValide());
  ASSERT_TRUE(m->cmdSuite());
  EXPECT_TRUE(s.ImageFinale);
  EXPECT_EQ(s.Etape, 3);
  EXPECT_EQ(s.MemCartouche.MemLongueur, 30);
  EXPECT_EQ(s.MemCartouche.MemCouleurTexte, 0x0000FF);  // as 0xBBGGRR
  EXPECT_EQ(s.MemCartouche.MemAlign, 2);

  Rouvrir();
  EXPECT_EQ(m->txtCommentaire, "Navicula");
  EXPECT_EQ(m->comboProvenance.Texte(), "Etang");
  EXPECT_TRUE(m->chkTraitNum[2]);
  EXPECT_TRUE(Visible(Controle::fraEchelle));
  EXPECT_FALSE(Visible(Controle::fraMicroPhoto));
  EXPECT_FALSE(Visible(Controle::cmdEtalonner));
  EXPECT_EQ(m->txtPix, "250");
  EXPECT_EQ(m->txtMic, "100");
  EXPECT_EQ(m->ComboObjectif.Texte(), "10");
  EXPECT_EQ(m->txtLongueur, "30");
  EXPECT_EQ(m->txtMicroMan, "Micro-B");
  EXPECT_EQ(m->CouleurTexte(), QColor(255, 0, 0));
  EXPECT_EQ(m->CouleurEchelle(), QColor(255, 0, 0));

  // Another photo: the memory is gone, the defaults come back.
  ASSERT_TRUE(ai.IO_CreateImage(s.ImageCourante, 800, 600, 24));
  RemplirSession(s, ai, QStringLiteral("autre.jpg"));
  Rouvrir();
  EXPECT_EQ(m->txtCommentaire, DefautsChamps().titre);
  EXPECT_FALSE(Visible(Controle::fraEchelle));
  EXPECT_FALSE(m->chkTraitNum[2]);
  EXPECT_TRUE(m->txtPix.isEmpty());
  EXPECT_TRUE(m->txtMicroMan.isEmpty());
  EXPECT_EQ(m->CouleurTexte(), QColor(Qt::black));
}

// The final picture rebuilt from the memory alone (annotations dropped) is
// the one the visit built.
TEST_F(ModeleCartoucheTest, SuiteRejoueeSurLaMemoireDonneLaMemeImage) {
  Ouvrir(640, 480);
  m->txtCommentaire = QStringLiteral("Navicula");
  m->comboProvenance.DefinirTexte(QStringLiteral("Etang"));
  Echelle("250", "100", "30");
  m->DefinirCouleurTexte(QColor(200, 0, 0));
  m->DefinirCouleurCartouche(QColor(230, 230, 250));
  ASSERT_TRUE(m->cmdSuite());
  QImage premiere, seconde;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, premiere));
  const QString echelle = s.EchellePix;

  Rouvrir();
  ASSERT_TRUE(m->cmdSuite());
  EXPECT_TRUE(dlg.appels.empty()) << dlg.Textes().join(" | ").toStdString();
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, seconde));
  EXPECT_EQ(seconde.size(), premiere.size());
  EXPECT_TRUE(seconde == premiere);
  EXPECT_EQ(s.EchellePix, echelle);
  EXPECT_EQ(s.Provenance, "Etang");
}

// The shadow strip of a 3:2 picture is remembered; "Champs par défaut" takes
// it off with the colours, and keeps the photo's date.
TEST_F(ModeleCartoucheTest, OmbrageMemoriseEtChampsParDefaut) {
  s.DateImage = QStringLiteral("2008:03:02 10:00:00");
  Ouvrir(640, 427);
  m->chkOmbrage = true;
  m->chkOmbrage_Click();
  const QRgb gris = qRgb(160, 160, 160);
  EXPECT_EQ(m->ImageCartouche().pixel(300, 0), gris);
  m->DefinirCouleurCartouche(QColor(Qt::red));
  ASSERT_TRUE(m->cmdSuite());
  EXPECT_TRUE(s.MemCartouche.MemOmbrage);
  Rouvrir();
  EXPECT_TRUE(m->chkOmbrage);
  m->ChoisirDate(QStringLiteral("28"), QStringLiteral("01"), QStringLiteral("2010"));
  dlg.reponses = {Reponse::Non};
  m->cmdViderChamps();
  EXPECT_TRUE(m->chkOmbrage);
  EXPECT_EQ(m->comboAnnee.Texte(), "2010");
  dlg.reponses = {Reponse::Oui};
  m->cmdViderChamps();
  EXPECT_FALSE(m->chkOmbrage);
  EXPECT_EQ(m->CouleurCartouche(), QColor(Qt::white));
  EXPECT_EQ(m->ImageCartouche().pixel(300, 0), qRgb(255, 255, 255));
  EXPECT_EQ(m->comboJour.Texte() + m->comboMois.Texte() + m->comboAnnee.Texte(), "02032008");
}

// --- Table choice

TEST_F(ModeleCartoucheTest, TableDeLaPhotoProposeeSeuleEtAppliqueeALObjectifChoisi) {
  EcrireTables({Table("APN-1", 640, 7.5f), Table("APN-2", 640, 7.5f)});
  s.Modele = QStringLiteral("APN-1");
  s.FocaleAPN = 7.5f;
  Ouvrir(640, 480);
  m->cmdEtalonner();
  EXPECT_TRUE(Visible(Controle::fraChoixTable));
  EXPECT_TRUE(m->Actif(Controle::cmdExtrapolFoc));
  EXPECT_FALSE(m->chkAfficherTouteTable);
  ASSERT_EQ(m->comboTables.Nombre(), 2);  // the blank row and the photo's table
  m->comboTables.Selectionner(1);
  m->comboTables_Click();
  EXPECT_EQ(m->txtObjRef, "(Table : obj. de réf = x40)");

  m->cmdAppliquerTable();  // no objective
  EXPECT_EQ(dlg.Dernier().texte, "Vous devez choisir une table et un objectif !");
  EXPECT_FALSE(m->TableAppliquee());

  dlg.appels.clear();
  // The table's 0.1 micron a pixel at x40 is 0.2 at x20: 500 pixels for 100 microns.
  m->comboListeObjectif.DefinirTexte(QStringLiteral("20"));
  m->cmdAppliquerTable();
  EXPECT_TRUE(dlg.appels.empty()) << dlg.Textes().join(" | ").toStdString();
  ASSERT_TRUE(m->TableAppliquee());
  EXPECT_EQ(m->txtPix, "500");
  EXPECT_EQ(m->txtMic, "100");
  EXPECT_EQ(m->ComboObjectif.Texte(), "20");
  for (Controle c : {Controle::txtPix, Controle::txtMic, Controle::ComboObjectif}) {
    EXPECT_FALSE(m->Actif(c));
    EXPECT_EQ(m->Teinte(c), kVertPale);
  }
  EXPECT_EQ(s.Microscope, "Micro-A");
  EXPECT_EQ(m->txtMicroMan, "Micro-A");
  EXPECT_FALSE(Visible(Controle::fraChoixTable));

  // Unlocked: the inputs free and empty, the memory of the scale emptied.
  m->cmdDebloquer();
  EXPECT_FALSE(m->TableAppliquee());
  EXPECT_TRUE(m->Actif(Controle::txtPix));
  EXPECT_EQ(m->Teinte(Controle::txtPix), kJaunePale);
  EXPECT_TRUE(m->txtPix.isEmpty());
  EXPECT_TRUE(s.MemCartouche.MemMicro.isEmpty());

  // "Sans filtrage": every table, the blank row first.
  m->chkAfficherTouteTable = true;
  m->chkAfficherTouteTable_Click();
  EXPECT_EQ(m->comboTables.Nombre(), 3);
  EXPECT_EQ(m->txtChoixTableAuto, QString::fromUtf8(kAucuneCorrespondance));
}

// A table of another width asks first; a No applies nothing.
TEST_F(ModeleCartoucheTest, TableDUneAutreLargeurDemandeAvantDEtreAppliquee) {
  EcrireTables({Table("APN-1", 2400, 7.5f)});
  Ouvrir(640, 480);
  s.LargeurOrigine = s.LargeurCadrage = 1600;
  s.HauteurOrigine = 1200;
  s.FocaleAPN = 7.5f;
  s.Modele = QStringLiteral("APN-1");
  m->cmdEtalonner();
  ASSERT_TRUE(m->chkAfficherTouteTable);  // no table of this width: all shown
  m->comboTables.Selectionner(1);
  m->comboTables_Click();
  m->comboListeObjectif.DefinirTexte(QStringLiteral("40"));
  dlg.reponses = {Reponse::Non};
  m->cmdAppliquerTable();
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.appels[0].titre, "Largeur et/ou Focale");
  EXPECT_FALSE(m->TableAppliquee());
  EXPECT_TRUE(m->txtPix.isEmpty());
  EXPECT_FALSE(Visible(Controle::cmdModifDefinition));

  dlg.reponses = {Reponse::Oui};
  m->cmdAppliquerTable();
  ASSERT_TRUE(m->TableAppliquee());
  EXPECT_EQ(m->txtPix, "1000");
  EXPECT_TRUE(Visible(Controle::cmdModifDefinition));

  // The correction for this photo's width: 2400 / 1600 of the table's pixels.
  dlg.appels.clear();
  dlg.reponses = {Reponse::Non};
  m->cmdModifDefinition();
  EXPECT_EQ(dlg.Dernier().texte, "Annulation ...");
  EXPECT_EQ(m->txtPix, "1000");
  EXPECT_TRUE(m->TableAppliquee());

  dlg.reponses = {Reponse::Oui};
  m->cmdModifDefinition();
  EXPECT_EQ(m->txtPix, "666,67");
  EXPECT_EQ(m->txtMic, "100");
  EXPECT_EQ(m->ComboObjectif.Texte(), "40");
  for (Controle c : {Controle::txtPix, Controle::txtMic, Controle::ComboObjectif}) {
    EXPECT_TRUE(m->Actif(c));
    EXPECT_EQ(m->Teinte(c), kRougePale);
  }
  EXPECT_FALSE(Visible(Controle::cmdModifDefinition));
  EXPECT_FALSE(m->TableAppliquee());
  // Drawn again with the corrected scale: 0.15 micron a pixel of the photo,
  // 0.375 of the 640-wide picture.
  EXPECT_TRUE(m->CartoucheValide());
  EXPECT_NEAR(s.MicronsParPixel, 0.375f, 1e-4);
}

// A table of another focal length is never corrected for the width.
TEST_F(ModeleCartoucheTest, TableDUneAutreFocaleNonCorrigee) {
  EcrireTables({Table("APN-1", 2400, 10.0f)});
  Ouvrir(640, 480);
  s.LargeurOrigine = s.LargeurCadrage = 1600;
  s.FocaleAPN = 7.5f;
  m->cmdEtalonner();
  m->comboTables.Selectionner(1);
  m->comboTables_Click();
  m->comboListeObjectif.DefinirTexte(QStringLiteral("40"));
  dlg.reponses = {Reponse::Oui};
  m->cmdAppliquerTable();
  ASSERT_TRUE(m->TableAppliquee());
  EXPECT_FALSE(Visible(Controle::cmdModifDefinition));
  dlg.reponses = {Reponse::Oui};
  m->cmdModifDefinition();
  EXPECT_EQ(m->txtPix, "1000");
  EXPECT_EQ(m->Teinte(Controle::txtPix), kVertPale);
  EXPECT_TRUE(m->TableAppliquee());
}

// "Annuler" and "Ne pas utiliser d'échelle" leave no scale behind.
TEST_F(ModeleCartoucheTest, AnnulerEtSansEchelle) {
  EcrireTables({Table("APN-1", 640, 0)});
  Ouvrir(640, 480);
  m->cmdEtalonner();
  m->comboTables.Selectionner(1);
  m->comboTables_Click();
  ASSERT_FALSE(m->txtObjRef.isEmpty());
  m->cmdAnnulerTable();
  EXPECT_EQ(m->comboTables.Selection(), 0);
  EXPECT_TRUE(m->txtObjRef.isEmpty());
  EXPECT_FALSE(Visible(Controle::fraChoixTable));
  EXPECT_TRUE(Visible(Controle::fraEchelle));

  m->txtPix = QStringLiteral("100");
  m->optUnite = 1;
  m->cmdSansEtalon();
  EXPECT_FALSE(Visible(Controle::fraEchelle));
  EXPECT_TRUE(Visible(Controle::cmdEtalonner));
  EXPECT_TRUE(m->txtPix.isEmpty());
  EXPECT_EQ(m->optUnite, 0);
  EXPECT_EQ(s.MicronsParPixel, 0);
}

// What the focal extrapolation sends: its scale tinted red, the objective
// left to the user, the tables' frame closed.
TEST_F(ModeleCartoucheTest, ExtrapolationRecueEnRougeObjectifALaisser) {
  EcrireTables({Table("APN-1", 640, 7.5f)});
  Ouvrir(640, 480);
  m->cmdEtalonner();
  m->ComboObjectif.DefinirTexte(QStringLiteral("10"));
  m->cmdExtrapolFoc();
  EXPECT_TRUE(s.DepuisCartouche);
  m->RecevoirExtrapolation(375);
  EXPECT_EQ(m->txtPix, "375");
  EXPECT_EQ(m->txtMic, "100");
  EXPECT_TRUE(m->ComboObjectif.Texte().isEmpty());
  for (Controle c : {Controle::ComboObjectif, Controle::txtPix, Controle::txtMic}) EXPECT_EQ(m->Teinte(c), kRougePale);
  EXPECT_FALSE(Visible(Controle::fraChoixTable));
  EXPECT_TRUE(Visible(Controle::fraEchelle));
}

// --- Scale and its limits

TEST_F(ModeleCartoucheTest, BarreDe480PixelsRefusee) {
  Ouvrir(640, 480);
  // 640 wide, not cropped: 1 micron a pixel.
  Echelle("100", "100", "480");
  m->cmdDessiner();
  EXPECT_FALSE(m->CartoucheValide());
  EXPECT_FALSE(m->Actif(Controle::cmdSuite));
  EXPECT_EQ(dlg.Dernier().texte, "Echelle trop longue (saisir une valeur plus petite)");
  dlg.appels.clear();
  m->txtLongueur = QStringLiteral("479");
  m->cmdDessiner();
  EXPECT_TRUE(m->CartoucheValide());
  EXPECT_TRUE(dlg.appels.empty());
  EXPECT_FLOAT_EQ(m->EchellePixels(), 479.0f);
  EXPECT_FLOAT_EQ(s.MicronsParPixel, 1.0f);
  EXPECT_TRUE(m->LegendeActuelle().contains("479")) << m->LegendeActuelle().toStdString();
}

TEST_F(ModeleCartoucheTest, LongueurAutoDemandeLEchelleEtTientDansLeQuart) {
  Ouvrir(640, 480);
  m->cmdEtalonner();
  m->cmdLongueurAuto();
  EXPECT_EQ(dlg.Dernier().texte, "Indiquez d'abord l'échelle (pixels et microns) !");
  EXPECT_EQ(m->txtLongueur, "20");
  // 1 micron a pixel: a quarter of 640 is 160, so 100.
  Echelle("100", "100", "20");
  m->cmdLongueurAuto();
  EXPECT_EQ(m->txtLongueur, "100");
  // 0.25 micron a pixel: 40 microns fit, 50 would not.
  m->txtPix = QStringLiteral("400");
  m->cmdLongueurAuto();
  EXPECT_EQ(m->txtLongueur, "20");
}

// --- Validation: each fault in its order, the first one stopping the others.

TEST_F(ModeleCartoucheTest, MessagesDeValidationDansLeurOrdre) {
  Ouvrir(640, 480);
  // Every field wrong at once; each correction brings the next message. The
  // scale is checked once its frame is shown.
  m->ComboObjectifMan.DefinirTexte(QStringLiteral("abc"));
  m->txtCommentaire.clear();
  m->ComboEclairage.DefinirTexte(QString::fromUtf8(MarqueurListe));
  m->txtNomAuteur = QString(71, u'a');
  const auto echelle = [&] {
    m->txtPix = QStringLiteral("x");
    m->txtMic = QStringLiteral("40000");
    m->txtLongueur = QStringLiteral("20");
    m->ComboObjectif.DefinirTexte(QStringLiteral("10"));
  };
  const QString suite = QStringLiteral("\r\nSi vous ne désirez pas d'échelle cliquez sur \"Sans échelle\" ...");
  const std::vector<std::pair<QString, std::function<void()>>> etapes = {
      {"Modifiez le champ Objectif (partie sans étalon)",
       [&] {
         m->ComboObjectifMan.DefinirTexte(QStringLiteral("10"));
         m->cmdEtalonner();
         echelle();
       }},
      {"Titre : le texte est absent ou trop long (max 70 char.)", [&] { m->txtCommentaire = QStringLiteral("T"); }},
      {"Eclairage : Choisir dans la liste, éditer ou effacer ...",
       [&] { m->ComboEclairage.DefinirTexte(QStringLiteral("Fond Noir")); }},
      {"Champs : Un des textes est trop long (max 70 char.)", [&] { m->txtNomAuteur = QStringLiteral("A"); }},
      {"Valeurs pour l'échelle : Chiffres uniquement et non nul" + suite,
       [&] { m->txtPix = QStringLiteral("20000"); }},
      {"Valeurs limites dépassées ...\r\n-----------------------------\r\nMicrons max = 32767\r\nPixels max = 15000\r\n",
       [&] { m->txtPix = QStringLiteral("100"), m->txtMic = QStringLiteral("100000"); }},
      {"Valeurs limites dépassées ...\r\n-----------------------------\r\nMicrons max = 32767\r\nPixels max = 15000\r\n",
       [&] { m->txtMic = QStringLiteral("100"), m->txtLongueur = QStringLiteral("500"); }},
      {"Echelle trop longue (saisir une valeur plus petite)", [&] { m->txtLongueur = QStringLiteral("50"); }},
  };
  for (const auto& [attendu, corriger] : etapes) {
    dlg.appels.clear();
    m->cmdDessiner();
    const QStringList textes = dlg.Textes();
    // The manual objective's fault alone lets the drawing go on.
    EXPECT_EQ(m->CartoucheValide(), attendu.startsWith("Modifiez")) << attendu.toStdString();
    ASSERT_FALSE(textes.isEmpty()) << attendu.toStdString();
    EXPECT_EQ(textes.last(), attendu);
    corriger();
  }
  dlg.appels.clear();
  m->cmdDessiner();
  EXPECT_TRUE(m->CartoucheValide());
  EXPECT_TRUE(dlg.appels.empty()) << dlg.Textes().join(" | ").toStdString();
  EXPECT_TRUE(m->Actif(Controle::cmdSuite));
}

// Quotes and "=" leave the fields; the scale's decimal sign is the locale's.
TEST_F(ModeleCartoucheTest, DessinNettoieLesChamps) {
  s.SeparateurDecimal = QStringLiteral(",");
  Ouvrir(640, 480);
  Echelle("12.5", "100", "20");
  m->txtCommentaire = QStringLiteral("Navicula \"sp\" a=b ");
  m->comboProvenance.DefinirTexte(QStringLiteral("\"Etang\""));
  m->cmdDessiner();
  EXPECT_TRUE(m->CartoucheValide());
  EXPECT_EQ(m->txtCommentaire, "Navicula sp a b");
  EXPECT_EQ(m->comboProvenance.Texte(), "Etang");
  EXPECT_EQ(m->txtPix, "12,5");
}

// The auto colour follows the picture under a cartouche drawn over it.
TEST_F(ModeleCartoucheTest, CouleurAutoSelonLImage) {
  Ouvrir(800, 600, QStringLiteral("0"));
  m->optTransparence = 2;
  m->chkCouleurAuto = true;
  m->cmdDessiner();  // IO_CreateImage makes a black picture
  EXPECT_EQ(m->CouleurTexte(), QColor(0xF0, 0xF0, 0xF0));
  m->optTransparence = 0;  // an opaque white cartouche hides the picture
  m->cmdDessiner();
  EXPECT_EQ(m->CouleurTexte(), QColor(0x20, 0x20, 0x20));
}

// The lists of cameras from the tables, and the choice made in them.
TEST_F(ModeleCartoucheTest, ListeDesAppareilsDesTables) {
  Ouvrir(640, 480);
  m->cmdListeApPhoto();
  EXPECT_EQ(dlg.Dernier().texte, "Aucune table en mémoire ...");
  EXPECT_FALSE(Visible(Controle::comboModele));
  EcrireTables({Table("APN-2", 2400, 7.5f), Table("APN-1", 1600, 7.5f)});
  m->cmdListeApPhoto();
  EXPECT_TRUE(Visible(Controle::comboModele));
  EXPECT_FALSE(Visible(Controle::txtApPhotoMan));
  EXPECT_EQ(m->comboModele.Texte(), "*Choisir / Annuler*");
  m->txtApPhotoMan = QStringLiteral("avant");
  m->comboModele_Click();
  EXPECT_EQ(m->txtApPhotoMan, "avant");
  m->cmdListeApPhoto();
  const int i = int(m->comboModele.Items().indexOf(QStringLiteral("APN-1")));
  ASSERT_GT(i, 0);
  m->comboModele.Selectionner(i);
  m->comboModele_Click();
  EXPECT_EQ(m->txtApPhotoMan, "APN-1");
  EXPECT_EQ(m->Teinte(Controle::txtApPhotoMan), kVertPale);
  EXPECT_TRUE(Visible(Controle::txtApPhotoMan));
  EXPECT_FALSE(Visible(Controle::comboModele));
}

}  // namespace
}  // namespace tg
