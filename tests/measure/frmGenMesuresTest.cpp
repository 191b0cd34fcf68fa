// The creation dialog driven through its named controls, with the scripted
// dialogues; the file checked afterwards.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <memory>

#include "core/frmFichierPhoto.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/InstallationTables.h"
#include "measure/TableMesure.h"
#include "measure/frmGenMesures.h"
#include "measure/frmGestionTables.h"
#include "platform/Fichiers.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

const QString kOk = QStringLiteral(
    "OK, cette configuration à été ajoutée !\n"
    "Cliquez sur Voir/Editer ou Sortir");

EnrMesure Table(int numero) {
  FichierMesure f;
  EnrMesure e;
  EXPECT_TRUE(f.Ouvrir());
  EXPECT_TRUE(f.LireEnr(numero + 1, e));
  return e;
}

class GenMesures : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  SessionRecord s;
  std::unique_ptr<frmGenMesures> w;

  void Ouvrir(std::optional<DonneesEtalon> etalon = std::nullopt) {
    s.SeparateurDecimal = ",";
    w = std::make_unique<frmGenMesures>(s, etalon);
  }
  template <typename T = QWidget>
  T* C(const QString& nom) const {
    T* c = w->findChild<T*>(nom);
    EXPECT_NE(c, nullptr) << nom.toStdString();
    return c;
  }
  QLineEdit* Champ(int i) const { return C<QLineEdit>(QStringLiteral("txtFields%1").arg(i)); }
  void Saisir(const QStringList& valeurs) {
    for (int i = 0; i < valeurs.size(); ++i) Champ(i)->setText(valeurs[i]);
  }
  void Valides() { Saisir({"APN-1", "2272", "Micro-A", "Trino", "40", "1000", "250"}); }
  void Creer() { C<QPushButton>("cmdCreFichier")->click(); }
};

TEST_F(GenMesures, OuvertureSansFichier) {
  Ouvrir();
  EXPECT_EQ(C<QLabel>("lblNbConfig")->text(), "Vous n'avez pas encore créé de tables");
  for (int j = 0; j < 3; ++j)
    EXPECT_FALSE(C(QStringLiteral("cmdAfficherChoixLst%1").arg(j))->isEnabled());
  EXPECT_FALSE(C("comboModele")->isEnabled());
  EXPECT_TRUE(C("cmdCreFichier")->isEnabled());
  EXPECT_FALSE(C("cmdGestionTable")->isEnabled());
  EXPECT_FALSE(C("picInfos")->isVisibleTo(w.get()));
  EXPECT_FALSE(Champ(7)->isVisibleTo(w.get()));
}

TEST_F(GenMesures, UneTableParOuverture) {
  Ouvrir();
  Valides();
  Creer();
  EXPECT_EQ(dlg.Dernier().texte, kOk);
  EXPECT_EQ(NombreTables(), 1);
  EXPECT_EQ(Table(1), (EnrMesure{"APN-1", 2272, "Micro-A", "Trino", 40, 1000, 250, 0}));
  EXPECT_FALSE(C("cmdCreFichier")->isEnabled());
  EXPECT_TRUE(C("cmdGestionTable")->isEnabled());
  EXPECT_EQ(C<QLabel>("lblNbConfig")->text(), "Vous avez en ce moment 1 table(s) en mémoire");
  // Reopened: the lists offer the values of the file.
  Ouvrir();
  auto* modeles = C<QComboBox>("comboModele");
  ASSERT_EQ(modeles->count(), 2);
  EXPECT_EQ(modeles->itemText(0), " *** Choisir *** ");
  EXPECT_TRUE(modeles->isEnabled());
  emit C<QComboBox>("comboMicro")->activated(1);
  EXPECT_EQ(Champ(2)->text(), "Micro-A");
  emit C<QComboBox>("comboMicro")->activated(0);
  EXPECT_EQ(Champ(2)->text(), "");
}

struct CasLimite {
  int champ;
  const char* valeur;
  bool zoom;
  bool accepte;
};
class LimitesGenMesures : public GenMesures, public testing::WithParamInterface<CasLimite> {};
TEST_P(LimitesGenMesures, LimitesStrictes) {
  Ouvrir();
  Valides();
  Champ(7)->setText("10");
  C<QCheckBox>("chkZoomApn")->setChecked(GetParam().zoom);
  Champ(GetParam().champ)->setText(QString::fromUtf8(GetParam().valeur));
  Creer();
  if (GetParam().accepte) {
    EXPECT_EQ(dlg.Dernier().texte, kOk);
    EXPECT_EQ(NombreTables(), 1);
  } else {
    EXPECT_EQ(dlg.Dernier().titre, " Erreur sur les champs numériques");
    EXPECT_TRUE(dlg.Dernier().texte.startsWith("Valeurs limites dépassées ...\n"));
    EXPECT_TRUE(dlg.Dernier().texte.contains("\nMicrons max = 32767\n"));
    EXPECT_EQ(NombreTables(), 0);
    EXPECT_TRUE(C("cmdCreFichier")->isEnabled());
  }
}
INSTANTIATE_TEST_SUITE_P(
    Champs, LimitesGenMesures,
    testing::Values(CasLimite{1, "15000", false, false}, CasLimite{1, "14999", false, true},
                    CasLimite{1, "largeur", false, false}, CasLimite{5, "15000", false, false},
                    CasLimite{5, "14999", false, true}, CasLimite{4, "200", false, false},
                    CasLimite{4, "199,9", false, true}, CasLimite{4, "199.9", false, true},
                    CasLimite{6, "32767", false, false}, CasLimite{6, "32766", false, true},
                    CasLimite{7, "1200", true, false}, CasLimite{7, "1199,99", true, true},
                    CasLimite{7, "5000", false, true}));

TEST_F(GenMesures, NettoyageEtMiseEnForme) {
  Ouvrir();
  Saisir({" \"APN\" 1=2 ", "2272", "Micro \"A\"", "a=b", "4,5", "999,5", "250,4"});
  C<QCheckBox>("chkZoomApn")->setChecked(true);
  Champ(7)->setText("7,504");
  Creer();
  EXPECT_EQ(dlg.Dernier().texte, kOk);
  EXPECT_EQ(Champ(0)->text(), "APN 1 2");
  EXPECT_EQ(Champ(5)->text(), "1000");  // 999.5: ties to even
  EXPECT_EQ(Champ(6)->text(), "250");
  EXPECT_EQ(Champ(7)->text(), "7,50");
  EXPECT_EQ(Table(1), (EnrMesure{"APN 1 2", 2272, "Micro A", "a b", 4.5f, 1000, 250, 7.5f}));
}

TEST_F(GenMesures, FocaleVideOuIgnoreeSansZoom) {
  Ouvrir();
  Valides();
  Champ(7)->setText("55");  // hidden and ignored: the box is clear
  Creer();
  EXPECT_EQ(dlg.Dernier().texte, kOk);
  EXPECT_EQ(Table(1).Focale, 0.0f);

  Ouvrir();
  Valides();
  C<QCheckBox>("chkZoomApn")->setChecked(true);
  Creer();  // empty focal with the box ticked: not numeric
  EXPECT_EQ(dlg.Dernier().titre, "Erreur sur les champs numériques");
  EXPECT_EQ(dlg.Dernier().texte, "Chiffres uniquement !");
  EXPECT_EQ(NombreTables(), 1);
}

TEST_F(GenMesures, ChampsManquantsEtNonNumeriques) {
  Ouvrir();
  Saisir({"APN-1", "2272", "Micro-A", "\"\"", "40", "1000", "250"});  // only quotes: empty
  Creer();
  EXPECT_EQ(dlg.Dernier().titre, "Erreur de saisie");
  EXPECT_EQ(dlg.Dernier().texte, "Vous devez saisir tous les champs !");
  Valides();
  Champ(6)->setText("0");
  Creer();
  EXPECT_EQ(dlg.Dernier().texte, "Chiffres uniquement et non nul !");
  Champ(6)->setText("250");
  Champ(4)->setText("x40");
  Creer();
  EXPECT_EQ(dlg.Dernier().texte, "Chiffres uniquement et non nul !");
  EXPECT_EQ(NombreTables(), 0);
}

TEST_F(GenMesures, ValeursDEtalonnageVerrouillees) {
  s.Modele = "APN-1";
  s.FocaleAPN = 7.5f;
  Ouvrir(DonneesEtalon{"2272", "1234"});
  EXPECT_TRUE(C("picInfos")->isVisibleTo(w.get()));
  EXPECT_EQ(Champ(0)->text(), "APN-1");
  EXPECT_EQ(Champ(1)->text(), "2272");
  EXPECT_EQ(Champ(5)->text(), "1234");
  EXPECT_EQ(Champ(7)->text(), "7,5");
  EXPECT_TRUE(C<QCheckBox>("chkZoomApn")->isChecked());
  for (int i : {0, 1, 4, 5, 7}) EXPECT_TRUE(Champ(i)->isReadOnly()) << i;
  EXPECT_FALSE(Champ(2)->isReadOnly());
  EXPECT_FALSE(C("cmdAfficherChoixLst0")->isEnabled());
  C<QPushButton>("cmdDeloquerChamps")->click();
  for (int i : {0, 1, 4, 5, 7}) EXPECT_FALSE(Champ(i)->isReadOnly()) << i;
  EXPECT_TRUE(dlg.appels.empty());
}

// The objective list and "Objectif de réf." agree: nothing chosen shows
// nothing, a choice fills the locked field, a typed value is shown in the list.
TEST_F(GenMesures, ListeDesObjectifsEtObjectifDeReferenceDAccord) {
  ASSERT_TRUE(EcrireObjectifDefaut());
  Ouvrir(DonneesEtalon{"2272", "1234"});
  auto* liste = C<QComboBox>("comboListeObjectif");
  ASSERT_EQ(liste->count(), 5);
  EXPECT_EQ(liste->currentIndex(), -1);
  EXPECT_EQ(liste->currentText(), "");
  EXPECT_EQ(Champ(4)->text(), "");
  EXPECT_TRUE(Champ(4)->isReadOnly());
  emit liste->activated(3);
  EXPECT_EQ(Champ(4)->text(), "40");
  EXPECT_EQ(liste->currentText(), "40");
  Saisir({"APN-1", "2272", "Micro-A", "Trino"});
  Champ(6)->setText("250");
  Creer();
  EXPECT_EQ(dlg.Dernier().texte, kOk);
  EXPECT_EQ(Table(1).Obj, 40);

  Ouvrir();
  EXPECT_EQ(C<QComboBox>("comboListeObjectif")->currentText(), "");
  Champ(4)->setText("10");
  EXPECT_EQ(C<QComboBox>("comboListeObjectif")->currentText(), "10");
  Champ(4)->setText("63");
  EXPECT_EQ(C<QComboBox>("comboListeObjectif")->currentIndex(), -1);
}

TEST_F(GenMesures, ZoomSansFocaleAvertitEtResteCoche) {
  Ouvrir();
  auto* chk = C<QCheckBox>("chkZoomApn");
  chk->click();
  EXPECT_TRUE(chk->isChecked());
  EXPECT_TRUE(Champ(7)->isVisibleTo(w.get()));
  EXPECT_EQ(dlg.Dernier().texte,
            "Focale = 0mm, êtes vous sûr d'utiliser un APN (ou app. à zoom variable) ?\n"
            "(si non, ne cochez pas ce choix)");
}

// The main window's menu entry opens the dialog; a table added there turns
// the management entry on.
TEST(GenMesuresAssemblage, MenuDeLaFenetrePrincipale) {
  DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  frmFichierPhoto fenetre(s, ai);
  InstallerTablesMesure(fenetre);
  auto* gestion = fenetre.findChild<QAction*>("mnuGestionTables");
  ASSERT_NE(gestion, nullptr);
  EXPECT_FALSE(gestion->isEnabled());
  fenetre.findChild<QAction*>("mnuAjoutTable")->trigger();
  auto* gen = fenetre.findChild<frmGenMesures*>("frmGenMesures");
  ASSERT_NE(gen, nullptr);
  EXPECT_TRUE(gen->isVisible());
  const QStringList valeurs{"APN-1", "2272", "Micro-A", "Trino", "40", "1000", "250"};
  for (int i = 0; i < valeurs.size(); ++i)
    gen->findChild<QLineEdit*>(QStringLiteral("txtFields%1").arg(i))->setText(valeurs[i]);
  gen->cmdCreFichier();
  EXPECT_TRUE(gestion->isEnabled());
  gen->cmdGestionTable();
  auto* gestionTables = fenetre.findChild<frmGestionTables*>("frmGestionTables");
  ASSERT_NE(gestionTables, nullptr);
  EXPECT_EQ(gestionTables->Courant(), 2);
  gestionTables->close();
  gen->close();
}

}  // namespace
}  // namespace tg
