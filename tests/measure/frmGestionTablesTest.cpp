// The table manager driven through its named controls, with the scripted
// dialogues; the file checked afterwards.
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <memory>

#include "tests/support/Octets.h"
#include "measure/LiensTables.h"
#include "measure/TableMesure.h"
#include "measure/frmGestionTables.h"
#include "platform/Fichiers.h"
#include "platform/Systeme.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

const EnrMesure kA{"APN-1", 2272, "Micro-A", "Trino", 40, 1000, 250, 0};
const EnrMesure kB{"APN-1", 640, "Micro-B", "trino", 10, 300, 250, 7.5f};
const EnrMesure kC{"Cam", 2272, "Micro-A", "Mono", 4, 200, 1000, 0};

void Tables(const std::vector<EnrMesure>& tables, const QString& chemin = CheminTableMesure()) {
  FichierMesure f;
  ASSERT_TRUE(f.Ouvrir(chemin));
  int nbEnreg = f.LireEntete();
  for (const EnrMesure& e : tables) ASSERT_TRUE(AjouterTable(f, nbEnreg, e));
}


class GestionTables : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  SessionRecord s;
  std::unique_ptr<frmGestionTables> w;
  std::vector<bool> menu;  // what the main window was told, in order

  void SetUp() override {
    s.SeparateurDecimal = ",";
    LiensTables liens;
    liens.activerMenuGestion = [this](bool actif) { menu.push_back(actif); };
    DefinirLiensTables(liens);
  }
  void TearDown() override { DefinirLiensTables({}); }
  void Ouvrir(bool derniere = false) {
    w = std::make_unique<frmGestionTables>(s, derniere);
    w->show();
  }
  template <typename T = QWidget>
  T* C(const QString& nom) const {
    T* c = w->findChild<T*>(nom);
    EXPECT_NE(c, nullptr) << nom.toStdString();
    return c;
  }
  QString Champ(int i) const { return C<QLineEdit>(QStringLiteral("txtFields%1").arg(i))->text(); }
  void Filtrer(int index, const QString& valeur) {
    C<QRadioButton>(QStringLiteral("optFiltre%1").arg(index))->click();
    auto* valeurs = C<QComboBox>("comboChoixExtract");
    const int i = valeurs->findText(valeur);
    ASSERT_GE(i, 0) << valeur.toStdString();
    emit valeurs->activated(i);
  }
  QStringList Lignes() const {
    QStringList r;
    auto* combo = C<QComboBox>("comboTable");
    for (int i = 0; i < combo->count(); ++i) r << combo->itemText(i);
    return r;
  }
};

TEST_F(GestionTables, OuvertureSurLaPremiereOuLaDerniere) {
  Tables({kA, kB, kC});
  Ouvrir();
  EXPECT_EQ(w->Courant(), 2);
  EXPECT_EQ(C<QLabel>("lblNum")->text(), "1 de #3");
  EXPECT_EQ(Champ(0), "APN-1");
  EXPECT_EQ(Champ(4), "40");
  EXPECT_EQ(Lignes().size(), 4);
  EXPECT_FALSE(C("fraDivers")->isVisibleTo(w.get()));
  EXPECT_EQ(C<QLabel>("lblDateCopieSecours")->text(), "Pas de copie de secours");
  Ouvrir(true);
  EXPECT_EQ(w->Courant(), 4);
  EXPECT_EQ(Champ(0), "Cam");
  C<QPushButton>("cmdNext")->click();  // already the last
  EXPECT_EQ(w->Courant(), 4);
  C<QPushButton>("cmdPrevious")->click();
  EXPECT_EQ(Champ(7), "7,5");
  EXPECT_TRUE(dlg.appels.empty());
}

TEST_F(GestionTables, FiltreLargeurParValeurNomsAvecLaCasse) {
  Tables({kA, kB, kC});
  Ouvrir();
  Filtrer(3, "trino");
  EXPECT_EQ(Lignes(), QStringList({"", "2: APN-1  (640) obj. x10 - F: 7,5 mm - Micro-B / trino"}));
  Filtrer(3, "Trino");
  EXPECT_EQ(Lignes().size(), 2);
  EXPECT_TRUE(Lignes().at(1).startsWith("1: "));
  Filtrer(4, "2272");
  ASSERT_EQ(Lignes().size(), 3);
  EXPECT_TRUE(Lignes().at(2).startsWith("3: Cam"));
  emit C<QComboBox>("comboTable")->activated(2);
  EXPECT_EQ(w->Courant(), 4);
  // Before a value is chosen the tables cannot be picked.
  C<QRadioButton>("optFiltre2")->click();
  EXPECT_FALSE(C("comboTable")->isEnabled());
  EXPECT_TRUE(C("comboChoixExtract")->isVisibleTo(w.get()));
  C<QRadioButton>("optFiltre0")->click();
  EXPECT_TRUE(C("comboTable")->isEnabled());
  EXPECT_EQ(Lignes().size(), 4);
}

TEST_F(GestionTables, SupprimerAuMilieuSousFiltreMontreLaTableDeplacee) {
  Tables({kA, kB, kC});
  Ouvrir();
  Filtrer(2, "Micro-B");
  emit C<QComboBox>("comboTable")->activated(1);
  ASSERT_EQ(w->Courant(), 3);
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>("cmdSuppr")->click();
  EXPECT_EQ(dlg.Dernier().titre, "Supprimer une table");
  EXPECT_EQ(dlg.Dernier().defaut, Reponse::Non);
  EXPECT_EQ(w->Courant(), 3);
  EXPECT_EQ(Champ(0), "Cam");  // the last table moved into the hole
  EXPECT_EQ(C<QLabel>("lblNum")->text(), "2 de #2");
  EXPECT_EQ(Lignes(), QStringList({""}));  // no Micro-B left under the filter
  EXPECT_EQ(NombreTables(), 2);
}

TEST_F(GestionTables, SupprimerLaSeuleTableFermeTout) {
  Tables({kA});
  Ouvrir();
  dlg.reponses = {Reponse::Non};
  C<QPushButton>("cmdSuppr")->click();
  EXPECT_EQ(NombreTables(), 1);
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>("cmdSuppr")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Il n'y a plus d'enregistrement !");
  EXPECT_FALSE(FileExists(CheminTableMesure()));
  ASSERT_FALSE(menu.empty());
  EXPECT_FALSE(menu.back());
  EXPECT_FALSE(w->isVisible());
}

TEST_F(GestionTables, RestaurerSansDatRedonneVieALaFenetre) {
  Tables({kA, kB}, CheminTableMesureBak());
  Ouvrir();
  EXPECT_EQ(dlg.Dernier().texte,
            "Il n'y a pas d'enregistrement !\n"
            "Si vous possédez une copie de secours vous pouvez la restaurer ...");
  EXPECT_FALSE(FileExists(CheminTableMesure()));
  EXPECT_FALSE(C("cmdSuppr")->isEnabled());
  EXPECT_FALSE(C("comboTable")->isEnabled());
  EXPECT_TRUE(C("cmdRecupTables")->isEnabled());
  EXPECT_FALSE(C("cmdBackupMesure")->isEnabled());
  EXPECT_FALSE(C("cmdExporterTables")->isEnabled());
  EXPECT_TRUE(
      C<QLabel>("lblDateCopieSecours")->text().startsWith("Copie de secours: \nCréé le : "));
  ASSERT_FALSE(menu.empty());
  EXPECT_TRUE(menu.back());  // the .bak keeps the entry on

  dlg.reponses = {Reponse::Oui};
  C<QPushButton>("cmdRecupTables")->click();
  EXPECT_TRUE(dlg.Textes().contains("Tables restaurées avec succès"));
  EXPECT_EQ(test::LireOctets(CheminTableMesure()), test::LireOctets(CheminTableMesureBak()));
  EXPECT_EQ(w->Courant(), 2);
  EXPECT_EQ(Champ(0), "APN-1");
  EXPECT_TRUE(C("cmdSuppr")->isEnabled());
  EXPECT_TRUE(C("comboTable")->isEnabled());
  EXPECT_TRUE(C("cmdEffacerTables")->isEnabled());
  EXPECT_EQ(Lignes().size(), 3);
}

TEST_F(GestionTables, RechercheParMotif) {
  Tables({kA, kB, kC});
  Ouvrir();
  dlg.chaines = {"c*"};
  w->findChild<QAction*>("mnuRechercher")->trigger();
  EXPECT_EQ(dlg.Dernier().titre, "Rechercher");
  EXPECT_EQ(w->Courant(), 4);
  dlg.chaines = {"zz*"};
  w->findChild<QAction*>("mnuRechercher")->trigger();
  EXPECT_EQ(w->Courant(), 4);  // no match: as it was
  EXPECT_EQ(Champ(0), "Cam");
  dlg.chaines = {"apn?1"};
  w->findChild<QAction*>("mnuRechercher")->trigger();
  EXPECT_EQ(w->Courant(), 3);  // the last of the two matches stays
  w->Rechercher();             // cancelled
  EXPECT_EQ(w->Courant(), 3);
}

TEST_F(GestionTables, ModificationAvecSesControles) {
  Tables({kA, kB});
  Ouvrir();
  auto* obj = C<QLineEdit>("txtFields4");
  auto* focale = C<QLineEdit>("txtFields7");
  dlg.reponses = {Reponse::Non};
  obj->setText("200");
  C<QPushButton>("cmdModif")->click();
  EXPECT_EQ(dlg.Dernier().titre, " Modification des tables");
  EXPECT_TRUE(dlg.Dernier().texte.endsWith("\n\nVoulez-vous appliquer vos modifications ?"));
  EXPECT_EQ(dlg.Dernier().defaut, Reponse::Non);

  dlg.reponses = {Reponse::Oui};
  C<QPushButton>("cmdModif")->click();
  EXPECT_TRUE(dlg.Dernier().texte.startsWith("Valeurs limites dépassées"));
  dlg.reponses = {Reponse::Oui};
  obj->setText("20");
  focale->setText("");
  C<QPushButton>("cmdModif")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Vous devez saisir tous les champs !");
  dlg.reponses = {Reponse::Oui};
  focale->setText("-1");
  C<QPushButton>("cmdModif")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Chiffres uniquement !");
  dlg.reponses = {Reponse::Oui};
  focale->setText("0");  // no zoom stays valid
  C<QPushButton>("cmdModif")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Mise à jour ok !");
  EXPECT_EQ(focale->text(), "0,00");
  FichierMesure f;
  EnrMesure e;
  ASSERT_TRUE(f.Ouvrir());
  ASSERT_TRUE(f.LireEnr(2, e));
  EnrMesure attendu = kA;
  attendu.Obj = 20;
  EXPECT_EQ(e, attendu);
  EXPECT_TRUE(Lignes().at(1).contains("obj. x20 "));
}

TEST_F(GestionTables, CopieDeSecoursExportEtEffacement) {
  Tables({kA});
  s.RepTravail = RepApplication();
  Ouvrir();
  EXPECT_FALSE(C("cmdRecupTables")->isEnabled());
  C<QPushButton>("MaxBox1")->click();
  EXPECT_TRUE(C("fraDivers")->isVisibleTo(w.get()));

  C<QPushButton>("cmdBackupMesure")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Tables de secours sauvegardées !");
  EXPECT_EQ(test::LireOctets(CheminTableMesureBak()), test::LireOctets(CheminTableMesure()));
  EXPECT_TRUE(C("cmdRecupTables")->isEnabled());

  // The export refuses the file itself, and copies elsewhere.
  dlg.chaines = {CheminTableMesure()};
  C<QPushButton>("cmdExporterTables")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Erreur : Fichier non copié");
  EXPECT_EQ(NombreTables(), 1);
  const QString ailleurs = RepApplication() + "export.dat";
  dlg.chaines = {ailleurs};
  C<QPushButton>("cmdExporterTables")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Fichier exporté avec succès");
  EXPECT_EQ(test::LireOctets(ailleurs), test::LireOctets(CheminTableMesure()));
  const auto appels = dlg.appels.size();
  C<QPushButton>("cmdExporterTables")->click();  // cancelled
  EXPECT_EQ(dlg.appels.size(), appels + 1);

  dlg.reponses = {Reponse::Non};
  C<QPushButton>("cmdEffacerTables")->click();
  EXPECT_TRUE(FileExists(CheminTableMesure()));
  EXPECT_TRUE(w->isVisible());
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>("cmdEffacerTables")->click();
  EXPECT_EQ(dlg.Dernier().titre, "Effacer les tables de mesures");
  EXPECT_FALSE(FileExists(CheminTableMesure()));
  EXPECT_TRUE(FileExists(CheminTableMesureBak()));
  EXPECT_TRUE(menu.back());
}

}  // namespace
}  // namespace tg
