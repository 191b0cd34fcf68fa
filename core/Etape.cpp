#include "core/Etape.h"

#include "core/SessionRecord.h"
#include "platform/Nombres.h"

namespace tg {

namespace {

class Liste {
 public:
  explicit Liste(EtatEtape& e) : e_(e) {}
  void Actif(const QString& c, bool v) { e_.changements.push_back({Changement::Actif, c, v, {}}); }
  void Actifs(const QStringList& cs, bool v) {
    for (const auto& c : cs) Actif(c, v);
  }
  void Enfonce(const QString& c, bool v) {
    e_.changements.push_back({Changement::Enfonce, c, v, {}});
  }
  void Enfonces(const QStringList& cs, bool v) {
    for (const auto& c : cs) Enfonce(c, v);
  }
  void Marque(const QString& c, bool v) { e_.changements.push_back({Changement::Marque, c, v, {}}); }
  void Visible(const QString& c, bool v) {
    e_.changements.push_back({Changement::Visible, c, v, {}});
  }
  void Visibles(const QStringList& cs, bool v) {
    for (const auto& c : cs) Visible(c, v);
  }
  void Texte(const QString& c, const QString& t) {
    e_.changements.push_back({Changement::Texte, c, false, t});
  }
  void Icone(const QString& c, const QString& nom) {
    e_.changements.push_back({Changement::Icone, c, false, nom});
  }

 private:
  EtatEtape& e_;
};

}  // namespace

Bulle MessageFormatageOK() {
  Bulle b;
  b.titre = QStringLiteral("Formatage OK");
  b.texte = QStringLiteral(
      "Votre image est maintenant redimensionnée.\n\n"
      "Vous pouvez ajouter un cartouche (icône 3)\n"
      "ou appliquer un filtre (menu Outils/Filtres ou icône filtres)");
  b.texteLong = QStringLiteral(
      "Vous pouvez aussi utiliser l'icône Exporter (menu de gauche - flêche)\n"
      "pour travailler votre image dans un programme externe de retouche.");
  b.icone = Icone::Information;
  return b;
}

Bulle MessageCartoucheOK() {
  Bulle b;
  b.titre = QStringLiteral("Cartouche OK");
  b.texte = QStringLiteral(
      "Votre fichier est prêt à la sauvegarde (icône 4)\n"
      "Vous pouvez aussi modifier le cartouche \n"
      "en resélectionnant l'étape Cartouche (icône 3)");
  // One run of text: the three pieces follow each other with no line break.
  b.texteLong = QStringLiteral(
      "Si vous avez ajouté une échelle dans le cartouche "
      "vous pourez mesurer sur l'image (menu du haut, icône Mesurer) ou "
      "encore ajouter des annotations sur l'image (menu du haut, icône Annotations)");
  b.icone = Icone::Information;
  return b;
}

EtatEtape EtatPourEtape(int etape, const SessionRecord& s) {
  EtatEtape e;
  Liste l(e);
  const bool aide = s.MessageBox == 0;
  switch (etape) {
    case 0:
      l.Actifs(BoutonsToolbar1, false);
      l.Actifs(BoutonsToolbar2, false);
      l.Enfonces(BoutonsToolbar1, false);
      l.Enfonces(BoutonsToolbar2, false);
      l.Actif("Ouvrir", true);
      l.Actif("Etalonner", true);
      l.Actifs({"mnuSauveResult", "mnuEdition", "mnuMesurerEtalon", "mnuMesureImage",
                "mnuMesureImageTemp", "mnuFiltre", "mnuSauverTemp", "mnuAnnulerAnnotation"},
               false);
      e.viderAffichage = true;
      for (const char* c : {"txtExif", "txtPathOrigine", "txtTaille", "txtCadrage", "txtFocale",
                            "txtDigitalZoom"})
        l.Texte(c, QString());
      l.Visibles({"txtExif", "lblInfosPoids", "txtPoidsFichier", "cmdReduirTxtExif",
                  "cmdAgrandirTxtExif"},
                 false);
      l.Texte("lblTickCount", QString());
      l.Icone("imgInfoTaille", "Taille");
      l.Icone("imgInfoCadrage", "ApnVide");
      l.Icone("imgInfoZoom", "ZoomVide");
      break;
    case 1:
      l.Actif("RedimAuto", true);
      l.Actifs({"Mesure", "Cartouche", "Sauver", "anotations"}, false);
      l.Marque("Cartouche", false);
      l.Marque("Sauver", false);
      l.Actifs(BoutonsToolbar2, true);
      l.Enfonces({"Importer", "Exporter"}, false);
      l.Actifs({"Filtres", "Exporter", "Importer"}, false);
      l.Actifs({"mnuEdition", "mnuRotation", "mnuMesurerEtalon", "mnuMesureImageTemp",
                "mnuSauverTemp", "mnuEditComments"},
               true);
      l.Actifs({"mnuSauveResult", "mnuMesureImage", "mnuFiltre", "mnuAnnulerAnnotation"}, false);
      l.Visibles({"txtPoidsFichier", "lblInfosPoids"}, false);
      e.amenerDevant = aide;
      e.fenetresAFermer = {"frmConfig",     "frmGestionTables",    "frmGenMesures",
                           "frmRecadrage",  "frmFiltres",          "frmEditComments",
                           "frmApExterne",  "frmAjouterCartouche", "frmListeMesure",
                           "frmAnnotations2"};
      break;
    case 2:
      l.Actifs(BoutonsToolbar2, true);
      l.Actifs({"Rotation", "Importer", "Recadrer"}, false);
      l.Actif("RedimAuto", false);
      l.Actif("Cartouche", true);
      l.Actifs({"mnuEdition", "mnuEditComments", "mnuMesurerEtalon", "mnuMesureImageTemp"}, false);
      l.Actif("mnuFiltre", true);
      l.Visibles({"txtExif", "cmdAgrandirTxtExif", "cmdReduirTxtExif"}, false);
      if (aide) e.messageAide = MessageFormatageOK();
      e.fenetresAFermer = {"frmEditComments"};
      break;
    case 3:
      l.Actifs(BoutonsToolbar2, false);
      l.Actif("Etalonner", true);
      l.Actif("Copier", false);
      l.Actifs({"Sauver", "Mesure", "anotations"}, true);
      l.Marque("Cartouche", true);
      l.Enfonce("Cartouche", true);
      l.Actifs({"mnuSauveResult", "mnuMesureImage"}, true);
      l.Actifs({"mnuFiltre", "mnuSauverTemp"}, false);
      l.Texte("txtPoidsFichier", QStringLiteral("N/A"));
      l.Visibles({"txtPoidsFichier", "lblInfosPoids"}, true);
      l.Texte("lblTickCount", QString());
      if (aide) e.messageAide = MessageCartoucheOK();
      break;
    case 4:
      l.Marque("Sauver", true);
      l.Enfonce("Sauver", true);
      l.Texte("txtPoidsFichier", TexteReel(s.PoidsFichier, s.SeparateurDecimal));
      break;
    case 6:
      l.Marque("Sauver", false);
      l.Enfonce("Sauver", false);
      l.Actif("mnuAnnulerAnnotation", true);
      break;
    default:  // 5 and anything else: nothing
      break;
  }
  return e;
}

}  // namespace tg
