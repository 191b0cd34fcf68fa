#pragma once
// The choice lists of the cartouche form and the keyword tree: small
// sequential-write files ("item" a line, Windows-1252, CR LF) in the
// program's folder that the user extends as he works.
#include <QString>
#include <QStringList>
#include <array>

#include "core/SessionRecord.h"

namespace tg {

class IListe;

// Second line of the four choice lists: what ComboEclairage must not be left
// on, never stored as an item of the user's.
inline constexpr const char* MarqueurListe = "+++ Choisir ou ajouter";

enum class ListeChoix { Eclairage, Coloration, Provenance, Montage };

struct DefinitionListe {
  const char* fichier;      // in the program's folder
  const char* combo;        // objectName of the cartouche form's combo
  const char* procedure;    // name in error reports
  QStringList defauts;      // after "" and the marker
  QString texteApresRemplissage;
};
const DefinitionListe& Definition(ListeChoix liste);
QString CheminListe(ListeChoix liste);

// Writes the default file: "", the marker, then the defaults.
bool EcrireListeDefaut(ListeChoix liste);

// Cartouche form: a file of 0 or 1 line counts as damaged and is deleted;
// without a file the combo keeps what it holds; else it is cleared and filled
// with every item. A file that cannot be read is reported
// (procedure RemplirComboLst).
void RemplirComboLst(const QString& chemin, IListe& combo);

// Cartouche form: rewrites the file as "", the marker, the new item cut of
// blanks (unless empty or the marker), then the old items cut of blanks
// without empties and markers. False when the file cannot be written.
bool AjouterLstItem(const QString& chemin, const QString& item);

// RemplirComboEclairage .. RemplirComboMontage: the default file when there is
// none, then RemplirComboLst, then the text after filling.
void RemplirCombo(ListeChoix liste, IListe& combo);

// "+ liste" at the end of the form: with the check ticked, a text not empty
// and no line of the combo equal to it (case included), the text is added to
// the file. True when added.
bool AjouterSiNouveau(bool coche, const IListe& combo, const QString& chemin);

// cmdListeDefaut_Click: chkLstDefaut 0 "Provenance", 1 "Préparation",
// 2 "Coloration". With one ticked, asks; on yes each ticked list is deleted
// and refilled with its defaults into its combo (may be nullptr). True when
// the lists were reset. The caller closes fraListe and clears the checks.
bool cmdListeDefaut(const std::array<bool, 3>& coches, const std::array<IListe*, 3>& combos);
// The list of chkLstDefaut(i).
ListeChoix ListeDeDefaut(int index);

// --- Keyword tree (frmMotClef)

inline constexpr int NombreNiveauxArbre = 7;
// RepApplication() + "lstArbre_" + i + ".dat".
QString CheminArbre(int niveau);
// The five kingdoms, defaults of lstArbre_0.dat after "".
QStringList RegnesDefaut();
// Labels of the boxes 0 to 6 (empty for the kingdom).
QString LibelleNiveau(int niveau);

// Writes lstArbre_0.dat when missing, then fills each box from its file.
// combos may hold nullptr for a box not shown.
void RemplirArbre(const std::array<IListe*, NombreNiveauxArbre>& combos);
// Tree: as RemplirComboLst but a missing file is created empty first; a file
// that cannot be read reports "Erreur sub FrmMotClef/RemplirComboLst ...".
void RemplirComboLstArbre(const QString& chemin, IListe& combo);
// Tree: "", the new item, then the old items cut of blanks without empties.
bool AjouterLstItemArbre(const QString& chemin, const QString& item);

// The free keyword text as stored: cut of blanks, line breaks to one blank,
// quotes removed, "=" replaced by a blank.
QString NettoyerMotsClefs(const QString& texte);
// A box of the tree as stored: quotes removed, "=" replaced by a blank.
QString NettoyerClassement(const QString& texte);

// frmMotClef's cmdOK without its window: cleans the texts, stores them in
// the record (MotClef, Regne .. Espece), adds to lstArbre_1..6 the boxes whose
// "+ Liste" check (index niveau - 1) is ticked and whose text is new. Returns
// how many of the eight fields are filled.
struct SaisieMotClef {
  QString motClef;
  std::array<QString, NombreNiveauxArbre> classement;
  std::array<bool, NombreNiveauxArbre - 1> ajouter{};  // niveaux 1 to 6
};
int ValiderMotClef(SessionRecord& s, SaisieMotClef saisie,
                   const std::array<const IListe*, NombreNiveauxArbre>& combos);
// The session's keyword fields, Regne .. Espece in order.
std::array<QString*, NombreNiveauxArbre> ChampsClassement(SessionRecord& s);

}  // namespace tg
