#include "cartouche/Listes.h"

#include <QFile>

#include "platform/Dialogues.h"
#include "platform/Fichiers.h"
#include "platform/Liste.h"
#include "platform/Systeme.h"
#include "platform/Textes.h"

namespace tg {

namespace {

const QString kMarqueur = QLatin1String(MarqueurListe);

// The standard report of a trapped error of the cartouche form.
void ErreurFormulaire(int numero, const QString& texte, const char* procedure) {
  const QString rapport = "Error " + QString::number(numero) + " (" + texte + ") in procedure " +
                          QLatin1String(procedure) + " of Feuille frmAjouterCartouche";
  Dialogues().Message(QString(), numero == 75 ? AvecRaison(rapport) : rapport, Icone::Critique);
}

const QString kErreurAcces = QStringLiteral("Erreur d'accès au chemin/fichier");

// The items of the file, or an empty list when it cannot be read.
QStringList Items(const QString& chemin) {
  QStringList items;
  if (FileExists(chemin)) LireListe(chemin, items);
  return items;
}

void Remplir(IListe& combo, const QStringList& items) {
  combo.Vider();
  for (const QString& item : items) combo.Ajouter(item);
}

bool ComboContient(const IListe& combo, const QString& texte) {
  for (int i = 0; i < combo.Nombre(); ++i)
    if (combo.Item(i) == texte) return true;
  return false;
}

}  // namespace

const DefinitionListe& Definition(ListeChoix liste) {
  static const std::array<DefinitionListe, 4> listes = {{
      {"lstEclairage.dat", "ComboEclairage", "RemplirComboEclairage",
       {"Fond Clair", "Fond Noir", "Eclairage oblique", "Polarisation", "Contraste de phase",
        "Contraste interférentiel", "Modulation Hoffman", "Disque de Rheinberg", "Episcopie",
        "Fluorescence"},
       // Small c on purpose: not the list's own spelling.
       QStringLiteral("Fond clair")},
      {"lstColoration.dat", "comboColoration", "RemplirComboColoration",
       {"Aucune", "Lugol", "Rouge neutre", "Bleu de méthylène", "Eosine", "Double coloration"},
       QStringLiteral("Aucune")},
      {"lstProvenance.dat", "comboProvenance", "RemplirComboProvenance",
       {"Source", "Ruisseau", "Marais", "Etang", "Lac", "Tourbière", "Mer", "Océan"},
       QString()},
      {"lstMontage.dat", "comboMontage", "RemplirComboMontage",
       {"Eau", "Liquide glycériné", "Glycérine gélatinée", "Glycerol", "Alcool polyvinylique",
        "Baume du Canada", "Naphrax", "Styrax", "Couramonne", "Merckoglas", "Entellan",
        "Chloral Lactophénol", "Sans lamelle"},
       QStringLiteral("Eau")},
  }};
  return listes[size_t(liste)];
}

QString CheminListe(ListeChoix liste) {
  return RepApplication() + QLatin1String(Definition(liste).fichier);
}

bool EcrireListeDefaut(ListeChoix liste) {
  return EcrireListe(CheminListe(liste), QStringList{QString(), kMarqueur} + Definition(liste).defauts);
}

void RemplirComboLst(const QString& chemin, IListe& combo) {
  if (FileExists(chemin)) {
    QStringList items;
    if (!LireListe(chemin, items)) {
      ErreurFormulaire(75, kErreurAcces, "RemplirComboLst");
      return;
    }
    // Only the empty item, or nothing: damaged; the defaults come back at
    // the next load of the form.
    if (items.size() <= 1) QFile::remove(chemin);
  }
  if (!FileExists(chemin)) return;
  QStringList items;
  if (!LireListe(chemin, items)) {
    ErreurFormulaire(75, kErreurAcces, "RemplirComboLst");
    return;
  }
  Remplir(combo, items);
}

bool AjouterLstItem(const QString& chemin, const QString& item) {
  const QStringList anciens = Items(chemin);
  QStringList nouveaux{QString(), kMarqueur};
  const QString neuf = item.trimmed();
  if (!neuf.isEmpty() && neuf != kMarqueur) nouveaux << neuf;
  for (const QString& a : anciens) {
    const QString t = a.trimmed();
    if (!t.isEmpty() && t != kMarqueur) nouveaux << t;
  }
  if (!EcrireListe(chemin, nouveaux)) {
    ErreurFormulaire(75, kErreurAcces, "AjouterLstItem");
    return false;
  }
  return true;
}

void RemplirCombo(ListeChoix liste, IListe& combo) {
  const DefinitionListe& d = Definition(liste);
  if (!FileExists(CheminListe(liste)) && !EcrireListeDefaut(liste)) {
    ErreurFormulaire(75, kErreurAcces, d.procedure);
    return;
  }
  RemplirComboLst(CheminListe(liste), combo);
  combo.DefinirTexte(d.texteApresRemplissage);
}

bool AjouterSiNouveau(bool coche, const IListe& combo, const QString& chemin) {
  const QString texte = combo.Texte();
  if (!coche || texte.isEmpty() || ComboContient(combo, texte)) return false;
  return AjouterLstItem(chemin, texte);
}

ListeChoix ListeDeDefaut(int index) {
  switch (index) {
    case 0:
      return ListeChoix::Provenance;
    case 1:
      return ListeChoix::Montage;
    default:
      return ListeChoix::Coloration;
  }
}

bool cmdListeDefaut(const std::array<bool, 3>& coches, const std::array<IListe*, 3>& combos) {
  if (!coches[0] && !coches[1] && !coches[2]) return false;
  if (Dialogues().Question(QStringLiteral("Listes par défaut"),
                           QStringLiteral("Souhaitez-vous effacer vos entrées et\r\n"
                                          "remettre les listes à choix par défaut ?"),
                           Boutons::OuiNon, Reponse::Non, Icone::Information) != Reponse::Oui)
    return false;
  for (int i = 0; i < 3; ++i) {
    if (!coches[size_t(i)]) continue;
    const ListeChoix liste = ListeDeDefaut(i);
    const QString chemin = CheminListe(liste);
    if (FileExists(chemin) && !QFile::remove(chemin)) {
      ErreurFormulaire(75, kErreurAcces, "cmdListeDefaut_Click");
      continue;
    }
    if (combos[size_t(i)] != nullptr) {
      RemplirCombo(liste, *combos[size_t(i)]);
    } else if (!EcrireListeDefaut(liste)) {
      ErreurFormulaire(75, kErreurAcces, "cmdListeDefaut_Click");
    }
  }
  return true;
}

// ---------------------------------------------------------------- keyword tree

QString CheminArbre(int niveau) {
  return RepApplication() + QStringLiteral("lstArbre_%1.dat").arg(niveau);
}

QStringList RegnesDefaut() {
  return {"Procaryotes", "Protistes", "Champignons", "Végétaux", "Animaux"};
}

QString LibelleNiveau(int niveau) {
  static const std::array<const char*, NombreNiveauxArbre> libelles = {
      "", "Embranchement", "Classe", "Ordre", "Famille", "Genre", "Espèce"};
  if (niveau < 0 || niveau >= NombreNiveauxArbre) return QString();
  return QString::fromUtf8(libelles[size_t(niveau)]);
}

void RemplirComboLstArbre(const QString& chemin, IListe& combo) {
  const auto erreur = [] {
    Dialogues().Message(QString(), QStringLiteral("Erreur sub FrmMotClef/RemplirComboLst ..."),
                        Icone::Critique);
  };
  if (!FileExists(chemin) && !EcrireListe(chemin, {QString()})) {
    erreur();
    return;
  }
  QStringList items;
  if (!LireListe(chemin, items)) {
    erreur();
    return;
  }
  Remplir(combo, items);
}

void RemplirArbre(const std::array<IListe*, NombreNiveauxArbre>& combos) {
  if (!FileExists(CheminArbre(0))) EcrireListe(CheminArbre(0), QStringList{QString()} + RegnesDefaut());
  for (int i = 0; i < NombreNiveauxArbre; ++i) {
    if (combos[size_t(i)] != nullptr) {
      RemplirComboLstArbre(CheminArbre(i), *combos[size_t(i)]);
    } else {
      ListeSimple ignoree;  // the file is still created
      RemplirComboLstArbre(CheminArbre(i), ignoree);
    }
  }
}

bool AjouterLstItemArbre(const QString& chemin, const QString& item) {
  const QStringList anciens = Items(chemin);
  QStringList nouveaux{QString()};
  const QString neuf = item.trimmed();
  if (!neuf.isEmpty()) nouveaux << neuf;
  for (const QString& a : anciens) {
    const QString t = a.trimmed();
    if (!t.isEmpty()) nouveaux << t;
  }
  return EcrireListe(chemin, nouveaux);
}

QString NettoyerMotsClefs(const QString& texte) {
  return EnleverEgal(EnleverGuillemets(EnleverRetours(texte)));
}

QString NettoyerClassement(const QString& texte) { return EnleverEgal(EnleverGuillemets(texte)); }

std::array<QString*, NombreNiveauxArbre> ChampsClassement(SessionRecord& s) {
  return {&s.Regne, &s.Embranchement, &s.Classe, &s.Ordre, &s.Famille, &s.Genre, &s.Espece};
}

int ValiderMotClef(SessionRecord& s, SaisieMotClef saisie,
                   const std::array<const IListe*, NombreNiveauxArbre>& combos) {
  saisie.motClef = NettoyerMotsClefs(saisie.motClef);
  for (QString& c : saisie.classement) c = NettoyerClassement(c);
  s.MotClef = saisie.motClef;
  const auto champs = ChampsClassement(s);
  for (int i = 0; i < NombreNiveauxArbre; ++i) *champs[size_t(i)] = saisie.classement[size_t(i)];

  // The kingdoms are a closed list: level 0 is never added to its file.
  for (int i = 1; i < NombreNiveauxArbre; ++i) {
    const QString& texte = saisie.classement[size_t(i)];
    if (!saisie.ajouter[size_t(i - 1)] || texte.isEmpty()) continue;
    const IListe* combo = combos[size_t(i)];
    QStringList lignes;
    if (combo != nullptr) {
      for (int k = 0; k < combo->Nombre(); ++k) lignes << combo->Item(k);
    } else {
      lignes = Items(CheminArbre(i));
    }
    if (!lignes.contains(texte)) AjouterLstItemArbre(CheminArbre(i), texte);
  }

  int remplis = saisie.motClef.isEmpty() ? 0 : 1;
  for (const QString& c : saisie.classement)
    if (!c.isEmpty()) ++remplis;
  return remplis;
}

}  // namespace tg
