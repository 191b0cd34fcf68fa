#pragma once
// The cartouche form without its window: every field, list, option and
// state of the form, the rules that change them, and what "Dessiner" and
// "Suite" build. The window shows this object and hands it the user's
// edits and clicks; the headless tool fills it from its options and calls
// the same actions. Lives for one visit; only cmdSuite writes the final
// picture and the form's memory to the session. Messages and questions go
// through Dialogues().
#include <QColor>
#include <QFont>
#include <QImage>
#include <QString>
#include <array>

#include "cartouche/FormCartouche.h"
#include "cartouche/ImageFinale.h"
#include "cartouche/RenduCartouche.h"
#include "core/SessionRecord.h"
#include "platform/Liste.h"

namespace tg {

class cAdvancedImagery;

// The controls whose presence, availability or tint the rules change, named
// as the window names them.
enum class Controle {
  fraEchelle, fraChoixTable, fraMicroPhoto, fraPolices, fraChoixChamp, fraListe,
  cmdEtalonner, cmdRecupMetaEchelle, cmdModifDefinition, cmdExtrapolFoc, cmdSuite,
  cmdOuvrirFraChoixChamp, cmdListeMicro, cmdListeApPhoto, cmdCouleurFond,
  imgMotClef, chkOmbrage, chkCouleurAuto, optTransparence, optAlign,
  comboMicro, comboModele, comboJour, comboMois, comboAnnee,
  txtCommentaire, ComboEclairage, txtNomAuteur, comboProvenance, comboMontage, comboColoration,
  txtMicroMan, txtApPhotoMan, ComboObjectifMan, ComboObjectif, txtPix, txtMic, txtLongueur,
  Nombre
};
inline constexpr int kNombreControles = int(Controle::Nombre);

// A list of the form as a combo box keeps it: the first row added becomes
// the current one; an editable list's text is free, a fixed list's is its
// current row's.
class ListeFormulaire : public IListe {
 public:
  explicit ListeFormulaire(bool editable = true) : editable_(editable) {}
  void Vider() override;
  void Ajouter(const QString& item) override;
  int Nombre() const override { return int(items_.size()); }
  QString Item(int index) const override { return items_.value(index); }
  int Selection() const override { return index_; }
  // -1 or an index out of the rows: no row (an editable list's text emptied).
  void Selectionner(int index) override;
  QString Texte() const override;
  // Editable: the text. Fixed: the row of that text, or none.
  void DefinirTexte(const QString& texte) override;
  // The row of that text when there is one; else nothing changes.
  bool Choisir(const QString& texte);
  // A row put before the others; the current row stays current.
  void Inserer(int position, const QString& item);
  const QStringList& Items() const { return items_; }
  bool Editable() const { return editable_; }

 private:
  bool editable_;
  QStringList items_;
  int index_ = -1;
  QString texte_;
};

// "*Choisir / Annuler*": first row of the lists of cameras and microscopes.
inline const char* const kChoisirAnnuler = "*Choisir / Annuler*";
// First row of the objective inputs of the scale and of the no-scale block.
inline const char* const kNouvelleValeur = "*Nouv.val*";

class ModeleCartouche {
 public:
  // Neither is owned; both outlive the model.
  ModeleCartouche(SessionRecord& s, cAdvancedImagery& ai);

  SessionRecord& Session() { return s_; }

  // --- Inputs, as typed (the window writes them at each edit).
  QString txtCommentaire, txtNomAuteur, txtMicroMan, txtApPhotoMan;
  QString txtPix, txtMic, txtLongueur = QStringLiteral("20");
  // Editable lists: their rows and the text shown.
  ListeFormulaire ComboEclairage, comboProvenance, comboMontage, comboColoration;
  ListeFormulaire ComboObjectif, ComboObjectifMan, comboListeObjectif;
  // Lists chosen from (a row or none).
  ListeFormulaire comboJour{false}, comboMois{false}, comboAnnee{false};
  ListeFormulaire comboTables{false}, comboIndexTable{false};
  ListeFormulaire comboMicro{false}, comboModele{false};
  std::array<bool, 9> chkChoixChamp{true, true, true, true, true, true, true, true, true};
  std::array<bool, 4> chkTraitNum{};
  std::array<bool, 4> chkListe{};  // "+ liste": éclairage, provenance, montage, coloration
  std::array<bool, 3> chkLstDefaut{};
  bool chkOmbrage = false, chkAfficherTouteTable = false, chkCouleurAuto = false;
  int optUniteObj = 0;      // 0: "x", 1: "mm"
  int optUnite = 0;         // 0: µm, 1: mm
  int optTransparence = 0;  // 0 "Non", 1 "Moyenne", 2 "Complète"
  int optAlign = 0;         // 0 "H.G", 1 "C.C", 2 "H.D"

  // --- What the form shows and the user does not type.
  QString txtModele, txtFocale, txtLargeur, txtObjRef, txtChoixTableAuto;
  QString lblDatePhoto, lblInfosCartouche;
  QString cmdDessinerTexte = QStringLiteral("Dessiner le cartouche");

  bool Visible(Controle c) const { return visible_[size_t(c)]; }
  bool Actif(Controle c) const { return actif_[size_t(c)]; }
  // 0xBBGGRR of an input tinted by the rules, -1 when never tinted.
  int Teinte(Controle c) const { return teinte_[size_t(c)]; }
  // Grows at each tint the rules give an input, the same colour again included.
  unsigned NumeroTeinte(Controle c) const { return numeroTeinte_[size_t(c)]; }
  // The window opens and folds frames itself ("Couleurs et polices"...),
  // and another window may hide one.
  void Montrer(Controle c, bool visible) { visible_[size_t(c)] = visible; }

  // --- Actions, named after the form's procedures.
  void Form_Load();
  void cmdDessiner();
  // Builds the final picture and stores the memory of the form; Etape 3.
  // False when the final picture could not be built (messages shown).
  bool cmdSuite();
  // The user leaves the form (the final picture built or not).
  void Quitter();
  void cmdViderChamps();
  void cmdTousChamps();
  // The box `index` of fraChoixChamp as now ticked in chkChoixChamp.
  void chkChoixChamp_Click(int index);
  void chkOmbrage_Click();
  void CouleurDefaut();
  void DefinirCouleurTexte(const QColor& c);
  void DefinirCouleurEchelle(const QColor& c);
  void DefinirCouleurCartouche(const QColor& c);
  void DefinirCouleurFond(const QColor& c);
  // The font dialog through Dialogues(); numero 1 the title's, 2 the text's.
  void ChoisirPolice(int numero);
  void cmdReduirefraChoixChamp();
  void cmdReduireFraPolice();
  void cmdListeDefaut();
  void cmdListeApPhoto();
  void cmdListeMicro();
  void comboModele_Click();
  void comboMicro_Click();
  // The keyword indicator after the keyword dialog.
  void MotsClefsChanges();

  void cmdEtalonner();
  // "Tables": the frame shown again, its automatic choice made again.
  void cmdOuvrirFraChoixTable();
  void fraChoixTable_Expand();
  void chkAfficherTouteTable_Click();
  // The model's part of "Extrapoler": the window then opens the extrapolation.
  void cmdExtrapolFoc();
  // What the extrapolation sends: the tables' frame hidden, `pixPour100`
  // pixels for 100 microns, the objective left to the user, all three
  // tinted light red.
  void RecevoirExtrapolation(int pixPour100);
  void cmdLongueurAuto();
  void comboTables_Click();
  void cmdAppliquerTable();
  void cmdAnnulerTable();
  void cmdDebloquer();
  void cmdSansEtalon();
  void cmdRecupMetaEchelle();
  void cmdModifDefinition();
  // Chooses the observation's date in the three lists: false, and nothing
  // changed, when one of them has no such row.
  bool ChoisirDate(const QString& jour, const QString& mois, const QString& annee);

  // --- Results.
  bool CartoucheValide() const { return cartoucheValide_; }
  bool TableAppliquee() const { return tableAppliquee_; }
  float EchellePixels() const { return echellePixels_; }
  int HauteurCartouche() const { return forme_.hauteurCartouche; }
  const QImage& ImageCartouche() const { return cartouche_; }
  QString LegendeActuelle() const { return LegendeEchelle(ValeursDessin()); }
  QColor CouleurTexte() const { return couleurTexte_; }
  QColor CouleurEchelle() const { return couleurEchelle_; }
  QColor CouleurCartouche() const { return couleurCartouche_; }
  QColor CouleurFond() const { return couleurFond_; }
  const QFont& PoliceTitre() const { return policeTitre_; }
  const QFont& PoliceSousTitre() const { return policeSousTitre_; }

 private:
  void Voir(Controle c, bool v) { visible_[size_t(c)] = v; }
  void Activer(Controle c, bool a) { actif_[size_t(c)] = a; }
  void Teindre(Controle c, int bgr) {
    teinte_[size_t(c)] = bgr;
    numeroTeinte_[size_t(c)] = ++teintes_;
  }
  bool EchelleVisible() const { return Visible(Controle::fraEchelle); }
  // The text of the field `index` of fraChoixChamp (3, the date, has none).
  QString LireChamp(int index) const;
  void EcrireChamp(int index, const QString& texte);
  void RemplirObjectifs();
  void AppliquerDate(const DateCartouche& d);
  void RestaurerMemoire(const MemoireCartouche& m);
  void AppliquerOmbrage();
  ChampsCartouche LireChamps() const;
  void EcrireChamps(const ChampsCartouche& c);
  void InitVarEchelle();
  ValeursCartouche ValeursDessin() const;
  ParamsImageFinale ParamsFinale() const;
  void AppliquerCouleurAuto();
  void ApparenceChampsTable();
  void ApparenceNoEtalon();
  bool ConstruireImageFinal();
  int SlotChoisi() const;
  void RemplirListeTables(ListeFormulaire& liste, Controle combo, Controle boite, int choix);
  void ChoisirDansListe(const ListeFormulaire& liste, Controle combo, Controle boite, QString& texte);

  SessionRecord& s_;
  cAdvancedImagery& ai_;

  std::array<bool, kNombreControles> visible_{}, actif_{};
  std::array<int, kNombreControles> teinte_{};
  std::array<unsigned, kNombreControles> numeroTeinte_{};
  unsigned teintes_ = 0;
  std::array<QString, 9> tagChamp_;
  float echellePixels_ = 0;
  bool cartoucheValide_ = true;
  bool tableAppliquee_ = false;
  Canevas canevas_;
  FormeCartouche forme_;
  QColor couleurTexte_ = Qt::black, couleurEchelle_ = Qt::black, couleurCartouche_ = Qt::white,
         couleurFond_ = Qt::white;
  QFont policeTitre_, policeSousTitre_;
  QImage cartouche_, ombre_;
  // What RecupDate chose at the opening; "Champs par défaut" brings it back.
  DateCartouche dateRecuperee_;
};

}  // namespace tg
