#include <gtest/gtest.h>

#include <map>

#include "core/Etape.h"
#include "core/SessionRecord.h"

using namespace tg;

namespace {

// The tools as a window would hold them after applying the stages in turn.
struct Outils {
  std::map<QString, bool> actif, enfonce, marque, visible;
  std::map<QString, QString> texte, icone;
  int messages = 0;
  QString dernierMessage;

  void Appliquer(int etape, const SessionRecord& s) {
    const EtatEtape e = EtatPourEtape(etape, s);
    for (const Changement& c : e.changements) {
      switch (c.genre) {
        case Changement::Actif: actif[c.controle] = c.valeur; break;
        case Changement::Enfonce: enfonce[c.controle] = c.valeur; break;
        case Changement::Marque: marque[c.controle] = c.valeur; break;
        case Changement::Visible: visible[c.controle] = c.valeur; break;
        case Changement::Texte: texte[c.controle] = c.texte; break;
        case Changement::Icone: icone[c.controle] = c.texte; break;
      }
    }
    if (e.messageAide) {
      ++messages;
      dernierMessage = e.messageAide->titre;
    }
  }
  QStringList Actifs(const QStringList& noms) const {
    QStringList r;
    for (const auto& n : noms)
      if (auto it = actif.find(n); it != actif.end() && it->second) r << n;
    return r;
  }
};

SessionRecord SessionAide(int messageBox) {
  SessionRecord s;
  s.MessageBox = messageBox;
  return s;
}

const QStringList TousLesBoutons = BoutonsToolbar1 + BoutonsToolbar2;

}  // namespace

TEST(Etape, ZeroLaisseSeulsOuvrirEtEtalonnerEtVideLesChamps) {
  Outils o;
  SessionRecord s;
  for (const auto& b : TousLesBoutons) o.actif[b] = o.enfonce[b] = true;
  o.texte["txtTaille"] = "800 x 600";
  o.Appliquer(0, s);
  EXPECT_EQ(o.Actifs(TousLesBoutons), QStringList({"Ouvrir", "Etalonner"}));
  for (const auto& b : TousLesBoutons) EXPECT_FALSE(o.enfonce[b]) << b.toStdString();
  for (const char* m : {"mnuSauveResult", "mnuEdition", "mnuMesurerEtalon", "mnuMesureImage",
                        "mnuMesureImageTemp", "mnuFiltre", "mnuSauverTemp", "mnuAnnulerAnnotation"})
    EXPECT_FALSE(o.actif.at(m)) << m;
  EXPECT_EQ(o.texte["txtTaille"], "");
  EXPECT_FALSE(o.visible.at("txtPoidsFichier"));
  EXPECT_EQ(o.icone["imgInfoTaille"], "Taille");
  EXPECT_EQ(o.icone["imgInfoCadrage"], "ApnVide");
  EXPECT_EQ(o.icone["imgInfoZoom"], "ZoomVide");
  EXPECT_TRUE(EtatPourEtape(0, s).viderAffichage);
}

TEST(Etape, LeCheminOrdinaireDeZeroASix) {
  Outils o;
  const SessionRecord s = SessionAide(0);
  o.Appliquer(0, s);

  o.Appliquer(1, s);
  EXPECT_EQ(o.Actifs(BoutonsToolbar1), QStringList({"Ouvrir", "RedimAuto"}));
  EXPECT_EQ(o.Actifs(BoutonsToolbar2),
            QStringList({"Etalonner", "Rotation", "Recadrer", "Copier"}));
  EXPECT_TRUE(o.actif["mnuMesureImageTemp"]);
  EXPECT_TRUE(o.actif["mnuRotation"]);
  EXPECT_FALSE(o.actif["mnuMesureImage"]);
  EXPECT_TRUE(EtatPourEtape(1, s).fenetresAFermer.contains("frmAjouterCartouche"));

  o.Appliquer(2, s);
  EXPECT_EQ(o.Actifs(BoutonsToolbar1), QStringList({"Ouvrir", "Cartouche"}));
  EXPECT_EQ(o.Actifs(BoutonsToolbar2),
            QStringList({"Etalonner", "Filtres", "Exporter", "Copier"}));
  EXPECT_FALSE(o.actif["mnuEdition"]);
  EXPECT_TRUE(o.actif["mnuFiltre"]);
  EXPECT_EQ(o.dernierMessage, "Formatage OK");

  o.Appliquer(3, s);
  // The cartouche can be redone: its button stays enabled, pressed and marked.
  EXPECT_EQ(o.Actifs(BoutonsToolbar1),
            QStringList({"Ouvrir", "Cartouche", "Sauver", "Mesure", "anotations"}));
  EXPECT_TRUE(o.enfonce["Cartouche"]);
  EXPECT_TRUE(o.marque["Cartouche"]);
  EXPECT_EQ(o.Actifs(BoutonsToolbar2), QStringList({"Etalonner"}));
  EXPECT_EQ(o.texte["txtPoidsFichier"], "N/A");
  EXPECT_TRUE(o.visible["txtPoidsFichier"]);
  EXPECT_FALSE(o.actif["mnuSauverTemp"]);
  EXPECT_EQ(o.dernierMessage, "Cartouche OK");

  SessionRecord sauve;
  sauve.PoidsFichier = 187.5f;
  sauve.SeparateurDecimal = ",";
  o.Appliquer(4, sauve);
  EXPECT_TRUE(o.marque["Sauver"]);
  EXPECT_TRUE(o.enfonce["Sauver"]);
  EXPECT_EQ(o.texte["txtPoidsFichier"], "187,5");

  // A second cartouche does not take the saved mark away; annotation does.
  o.Appliquer(3, s);
  EXPECT_TRUE(o.marque["Sauver"]);
  o.Appliquer(6, s);
  EXPECT_FALSE(o.marque["Sauver"]);
  EXPECT_FALSE(o.enfonce["Sauver"]);
  EXPECT_TRUE(o.actif["mnuAnnulerAnnotation"]);

  o.Appliquer(1, s);
  EXPECT_FALSE(o.marque["Cartouche"]);
  EXPECT_EQ(o.Actifs(BoutonsToolbar1), QStringList({"Ouvrir", "RedimAuto"}));
}

TEST(Etape, CinqEtHorsBornesNeChangentRien) {
  const SessionRecord s;
  for (int etape : {5, -1, 7, 32767}) {
    const EtatEtape e = EtatPourEtape(etape, s);
    EXPECT_TRUE(e.changements.empty()) << etape;
    EXPECT_TRUE(e.fenetresAFermer.isEmpty()) << etape;
    EXPECT_FALSE(e.viderAffichage || e.amenerDevant || e.messageAide) << etape;
  }
}

TEST(Etape, MessagesAideSeulementAvecMessageBoxZeroEtAChaqueEntree) {
  Outils avec, sans;
  for (int etape : {2, 3, 3}) {
    avec.Appliquer(etape, SessionAide(0));
    sans.Appliquer(etape, SessionAide(1));
  }
  EXPECT_EQ(avec.messages, 3);
  EXPECT_EQ(sans.messages, 0);
  EXPECT_TRUE(EtatPourEtape(1, SessionAide(0)).amenerDevant);
  EXPECT_FALSE(EtatPourEtape(1, SessionAide(1)).amenerDevant);
}

TEST(Etape, TextesDesMessagesAide) {
  const Bulle f = MessageFormatageOK();
  EXPECT_TRUE(f.texte.startsWith("Votre image est maintenant redimensionnée.\n\n"));
  EXPECT_EQ(f.icone, Icone::Information);
  const Bulle c = MessageCartoucheOK();
  EXPECT_FALSE(c.texteLong.contains('\n'));
  EXPECT_TRUE(c.texteLong.contains("cartouche vous pourez mesurer"));
  EXPECT_EQ(c.texteCase, "Ne plus afficher");
}
