#include "cartouche/ModeleCartouche.h"

#include <QDate>
#include <algorithm>

#include "cartouche/BlocMeta.h"
#include "cartouche/Echelle.h"
#include "cartouche/Listes.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/TableMesure.h"
#include "measure/modOpTableMesure.h"
#include "platform/Dialogues.h"
#include "platform/Fichiers.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"
#include "version.h"

namespace tg {

namespace {

QColor DepuisBgr(int bgr) { return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF); }
int VersBgr(const QColor& c) { return c.red() | (c.green() << 8) | (c.blue() << 16); }

// The controls of the fields of fraChoixChamp, 3 (the date) aside.
constexpr Controle kControlesChamps[9] = {
    Controle::txtCommentaire, Controle::ComboEclairage, Controle::txtNomAuteur,
    Controle::comboJour,      Controle::txtMicroMan,    Controle::txtApPhotoMan,
    Controle::comboProvenance, Controle::comboMontage,  Controle::comboColoration};

}  // namespace

// --- ListeFormulaire

void ListeFormulaire::Vider() {
  items_.clear();
  index_ = -1;
  texte_.clear();
}

void ListeFormulaire::Ajouter(const QString& item) {
  items_ << item;
  if (index_ < 0) Selectionner(0);
}

void ListeFormulaire::Selectionner(int index) {
  index_ = index >= 0 && index < items_.size() ? index : -1;
  texte_ = index_ >= 0 ? items_[index_] : QString();
}

QString ListeFormulaire::Texte() const {
  if (editable_) return texte_;
  return index_ >= 0 ? items_[index_] : QString();
}

void ListeFormulaire::DefinirTexte(const QString& texte) {
  if (editable_)
    texte_ = texte;
  else
    Selectionner(int(items_.indexOf(texte)));
}

bool ListeFormulaire::Choisir(const QString& texte) {
  const int i = int(items_.indexOf(texte));
  if (i < 0) return false;
  Selectionner(i);
  return true;
}

void ListeFormulaire::Inserer(int position, const QString& item) {
  position = std::clamp(position, 0, int(items_.size()));
  items_.insert(position, item);
  if (index_ >= position) ++index_;
  else if (index_ < 0) Selectionner(position);
}

// --- The form

ModeleCartouche::ModeleCartouche(SessionRecord& s, cAdvancedImagery& ai) : s_(s), ai_(ai) {
  visible_.fill(true);
  actif_.fill(true);
  teinte_.fill(-1);
  Voir(Controle::comboMicro, false);
  Voir(Controle::comboModele, false);
  Activer(Controle::cmdExtrapolFoc, false);
  Activer(Controle::cmdSuite, false);
}

QString ModeleCartouche::LireChamp(int index) const {
  switch (index) {
    case 0: return txtCommentaire;
    case 1: return ComboEclairage.Texte();
    case 2: return txtNomAuteur;
    case 4: return txtMicroMan;
    case 5: return txtApPhotoMan;
    case 6: return comboProvenance.Texte();
    case 7: return comboMontage.Texte();
    case 8: return comboColoration.Texte();
    default: return QString();
  }
}

void ModeleCartouche::EcrireChamp(int index, const QString& texte) {
  switch (index) {
    case 0: txtCommentaire = texte; break;
    case 1: ComboEclairage.DefinirTexte(texte); break;
    case 2: txtNomAuteur = texte; break;
    case 4: txtMicroMan = texte; break;
    case 5: txtApPhotoMan = texte; break;
    case 6: comboProvenance.DefinirTexte(texte); break;
    case 7: comboMontage.DefinirTexte(texte); break;
    case 8: comboColoration.DefinirTexte(texte); break;
    default: break;
  }
}

void ModeleCartouche::RemplirObjectifs() {
  for (ListeFormulaire* l : {&comboListeObjectif, &ComboObjectif, &ComboObjectifMan}) ChargerListeObjectif(*l);
  ComboObjectif.Inserer(0, QString::fromUtf8(kNouvelleValeur));
  ComboObjectifMan.Inserer(0, QString::fromUtf8(kNouvelleValeur));
  for (ListeFormulaire* l : {&comboListeObjectif, &ComboObjectif, &ComboObjectifMan}) l->DefinirTexte(QString());
}

void ModeleCartouche::AppliquerDate(const DateCartouche& d) {
  const std::pair<ListeFormulaire*, const QStringList*> listes[] = {
      {&comboJour, &d.jours}, {&comboMois, &d.mois}, {&comboAnnee, &d.annees}};
  for (const auto& [liste, items] : listes) {
    liste->Vider();
    for (const QString& i : *items) liste->Ajouter(i);
  }
  comboJour.Choisir(d.jour);
  comboMois.Choisir(d.moisChoisi);
  comboAnnee.Choisir(d.annee);
  lblDatePhoto = d.libelle;
}

bool ModeleCartouche::ChoisirDate(const QString& jour, const QString& mois, const QString& annee) {
  if (!comboJour.Items().contains(jour) || !comboMois.Items().contains(mois) ||
      !comboAnnee.Items().contains(annee))
    return false;
  comboJour.Choisir(jour);
  comboMois.Choisir(mois);
  comboAnnee.Choisir(annee);
  return true;
}

void ModeleCartouche::Form_Load() {
  // 1. A copy without filters, unless the picture is already final or annotated.
  if (!s_.AnnotationsPresentes && !s_.ImageFinale && s_.ImageCourante) {
    if (!ai_.IO_Copy(s_.ImageCourante, s_.ImageSansFiltre))
      Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Error - ") + ai_.Error_GetLast(),
                          Icone::Critique);
  }
  // 2.
  tableAppliquee_ = false;
  Voir(Controle::fraEchelle, false);
  Voir(Controle::fraChoixTable, false);
  Voir(Controle::fraMicroPhoto, true);
  Voir(Controle::cmdEtalonner, true);
  txtChoixTableAuto = QString::fromUtf8(kEtatActive);
  // 3.
  MotsClefsChanges();
  // 4.
  RemplirObjectifs();
  // 5.
  txtModele = s_.Modele.isEmpty() ? QStringLiteral("N/A") : s_.Modele;
  txtFocale = s_.FocaleAPN == 0 ? QStringLiteral("0 mm ou N/A") : TexteReel(s_.FocaleAPN, s_.SeparateurDecimal) + " mm";
  txtLargeur = TexteLargeurPhoto(s_.ImageTournee, s_.PortraitOrigine, s_.LargeurOrigine, s_.LargeurCadrage,
                                 s_.HauteurOrigine);
  // 6.
  dateRecuperee_ = RecupDate(s_.DateImage, s_.DateObservation, QDate::currentDate());
  AppliquerDate(dateRecuperee_);
  const DefautsChamps defauts;
  ComboEclairage.DefinirTexte(defauts.eclairage);
  comboMontage.DefinirTexte(defauts.montage);
  comboColoration.DefinirTexte(defauts.coloration);
  txtCommentaire = defauts.titre;
  RemplirCombo(ListeChoix::Eclairage, ComboEclairage);
  RemplirCombo(ListeChoix::Montage, comboMontage);
  RemplirCombo(ListeChoix::Provenance, comboProvenance);
  RemplirCombo(ListeChoix::Coloration, comboColoration);
  Voir(Controle::chkOmbrage, false);
  for (Controle c : {Controle::fraChoixTable, Controle::fraPolices, Controle::fraChoixChamp, Controle::fraListe,
                     Controle::comboMicro, Controle::comboModele, Controle::cmdRecupMetaEchelle,
                     Controle::cmdModifDefinition})
    Voir(c, false);
  chkLstDefaut.fill(false);
  Voir(Controle::txtMicroMan, true);
  Voir(Controle::txtApPhotoMan, true);
  txtObjRef.clear();
  txtNomAuteur = s_.NomAuteur;
  // 7 to 9. Canvas and shape.
  canevas_ = CalculerCanevas(s_);
  if (Arrondir(s_.CadrageFormate, 1) == 1.5) {
    Voir(Controle::chkOmbrage, true);
    chkOmbrage = false;
  }
  Voir(Controle::fraPolices, true);
  // The choice of fields exists for the 3-line cartouche only.
  const bool troisLignes = s_.CartoucheHB == u"1";
  Voir(Controle::fraChoixChamp, troisLignes);
  Voir(Controle::cmdOuvrirFraChoixChamp, troisLignes);
  forme_ = CalculerFormeCartouche(s_.CartoucheHB, s_.CadrageFormate, s_.LargeurFormatee, canevas_.largeurFond,
                                  canevas_.hauteurFond, s_.HauteurFormatee);
  lblInfosCartouche = forme_.infos;
  // A 3-line cartouche is never transparent.
  Activer(Controle::optTransparence, !troisLignes);
  // The auto colour reads the picture under a cartouche drawn over it.
  Activer(Controle::chkCouleurAuto, s_.CartoucheHB == u"0");
  // 10.
  const OptionsDefaut o = CalculerOptionsDefaut(s_.CadrageFormate, s_.RatioFormat, s_.CartoucheHB,
                                                s_.LargeurFormatee, canevas_.largeurFond);
  optTransparence = o.optTransparence;
  optAlign = o.optAlign;
  Activer(Controle::optAlign, o.alignActif);
  Activer(Controle::cmdCouleurFond, true);
  if (o.fondsBlancs) {
    couleurFond_ = Qt::white;
    couleurCartouche_ = Qt::white;
  }
  // 11.
  DefinirCouleurFond(couleurFond_);
  DefinirCouleurCartouche(couleurCartouche_);
  DefinirCouleurTexte(couleurTexte_);
  policeTitre_ = QFont(s_.FontName1, s_.FontSize1);
  policeTitre_.setBold(s_.FontBold1);
  policeTitre_.setItalic(s_.FontItalic1);
  policeSousTitre_ = QFont(s_.FontName2, s_.FontSize2);
  policeSousTitre_.setBold(s_.FontBold2);
  policeSousTitre_.setItalic(s_.FontItalic2);
  // 12.
  const MemoireCartouche m = s_.MemCartouche;
  if (!m.MemTitre.isEmpty()) RestaurerMemoire(m);
  // 13.
  txtMicroMan = s_.MicroscopeMeta;
  txtApPhotoMan = s_.ApPhotoMeta;
  ComboObjectifMan.DefinirTexte(s_.ObjectifMeta);
  optUniteObj = m.MemUniteObj == 1 ? 1 : 0;
  Teindre(Controle::txtApPhotoMan, txtApPhotoMan.isEmpty() ? kJaunePale : kVertPale);
  // 14. A picture that already went through the program.
  if (s_.ImageDejaFormatee) {
    if ((Arrondir(s_.CadrageFormate, 2) == 1.33 || Arrondir(s_.CadrageFormate, 1) == 1.5) &&
        !s_.EchellePix.isEmpty() && !s_.EchelleMic.isEmpty()) {
      Voir(Controle::fraEchelle, true);
      Voir(Controle::fraChoixTable, true);
      Voir(Controle::cmdRecupMetaEchelle, true);
      Voir(Controle::cmdEtalonner, false);
      Voir(Controle::fraMicroPhoto, false);
    }
    if (!s_.TitreImage.isEmpty()) txtCommentaire = s_.TitreImage;
    if (!s_.NomAuteurImage.isEmpty()) txtNomAuteur = s_.NomAuteurImage;
    const std::pair<const QString*, ListeFormulaire*> listes[] = {{&s_.Provenance, &comboProvenance},
                                                                  {&s_.Coloration, &comboColoration},
                                                                  {&s_.Preparation, &comboMontage},
                                                                  {&s_.Eclairage, &ComboEclairage}};
    for (const auto& [valeur, liste] : listes)
      if (!valeur->isEmpty()) liste->DefinirTexte(*valeur);
    optUnite = s_.UniteEtalon == u"um" ? 0 : 1;
    const bool traits[4] = {s_.TraitNiveaux, s_.TraitPoussieres, s_.TraitBruit, s_.TraitDeconvolution};
    for (int i = 0; i < 4; ++i)
      if (traits[i]) chkTraitNum[size_t(i)] = true;
    txtMicroMan = s_.Microscope;
    txtApPhotoMan = s_.Modele;
    ComboObjectifMan.DefinirTexte(s_.Objectif);
    optUniteObj = s_.UniteObj == u"mm" ? 1 : 0;
  }
  // 15.
  if (s_.NomAuteurImage.isEmpty()) txtNomAuteur = s_.NomAuteur;
  // The title and author boxes hold no more than they take from the keyboard.
  txtCommentaire.truncate(kLongueurMaxChamp);
  txtNomAuteur.truncate(kLongueurMaxChamp);
  if (Visible(Controle::fraChoixTable)) fraChoixTable_Expand();
}

void ModeleCartouche::RestaurerMemoire(const MemoireCartouche& m) {
  txtCommentaire = m.MemTitre;
  txtNomAuteur = m.MemAuteur;
  comboProvenance.DefinirTexte(m.MemProvenance);
  comboColoration.DefinirTexte(m.MemColoration);
  comboMontage.DefinirTexte(m.MemMontage);
  ComboEclairage.DefinirTexte(m.MemEclairage);
  if (!m.MemProvenance.isEmpty()) chkChoixChamp[6] = true;
  for (size_t i = 0; i < 4; ++i) chkTraitNum[i] = m.MemTraitNum[i];
  ComboObjectif.DefinirTexte(m.MemObjectif);
  txtPix = m.MemPix;
  txtMic = m.MemMic;
  txtLongueur = QString::number(m.MemLongueur);
  DefinirCouleurTexte(DepuisBgr(m.MemCouleurTexte));
  DefinirCouleurEchelle(DepuisBgr(m.MemCouleurEchelle));
  DefinirCouleurCartouche(DepuisBgr(m.MemCouleurCartouche));
  DefinirCouleurFond(DepuisBgr(m.MemCouleurFond));
  Voir(Controle::fraEchelle, m.MemEchelleVisible);
  Voir(Controle::fraChoixTable, m.MemChoixTableVisible);
  Voir(Controle::fraPolices, m.MemPolicesVisible);
  if (m.MemOmbrage) {
    chkOmbrage = true;
    AppliquerOmbrage();
  }
  Voir(Controle::cmdEtalonner, !m.MemEchelleVisible);
  Voir(Controle::fraMicroPhoto, !m.MemEchelleVisible);
  if (!m.MemEchelleVisible) Voir(Controle::fraChoixTable, false);
}

void ModeleCartouche::MotsClefsChanges() {
  bool motsClefs = !s_.MotClef.isEmpty();
  for (const QString* c : {&s_.Regne, &s_.Embranchement, &s_.Classe, &s_.Ordre, &s_.Famille, &s_.Genre, &s_.Espece})
    motsClefs = motsClefs || !c->isEmpty();
  Voir(Controle::imgMotClef, motsClefs);
}

// --- Colours and fonts

void ModeleCartouche::DefinirCouleurTexte(const QColor& c) {
  couleurTexte_ = c;
  // The text colour is pasted onto the scale as well.
  DefinirCouleurEchelle(c);
}

void ModeleCartouche::DefinirCouleurEchelle(const QColor& c) { couleurEchelle_ = c; }

void ModeleCartouche::DefinirCouleurCartouche(const QColor& c) { couleurCartouche_ = c; }

void ModeleCartouche::DefinirCouleurFond(const QColor& c) { couleurFond_ = c; }

void ModeleCartouche::CouleurDefaut() {
  DefinirCouleurFond(DepuisBgr(0xFFFFFF));
  DefinirCouleurCartouche(DepuisBgr(0xFFFFFF));
  DefinirCouleurTexte(DepuisBgr(0));
}

void ModeleCartouche::ChoisirPolice(int numero) {
  QFont& police = numero == 1 ? policeTitre_ : policeSousTitre_;
  const std::optional<QFont> choix = Dialogues().Police(police);
  if (!choix) return;
  police = *choix;
  if (!EcrirePolice(s_, numero, police))
    Dialogues().Message(QLatin1String(TitreProgramme),
                        TexteErreurFeuille(75, QStringLiteral("Erreur d'accès au chemin/fichier"),
                                           numero == 1 ? QStringLiteral("cmdPoliceTitre_Click")
                                                       : QStringLiteral("cmdPoliceSousTitre_Click")),
                        Icone::Critique);
}

// --- Frames and lists

void ModeleCartouche::cmdReduirefraChoixChamp() {
  Voir(Controle::fraChoixChamp, false);
  cmdDessiner();
}

void ModeleCartouche::cmdReduireFraPolice() {
  Voir(Controle::fraPolices, false);
  cmdDessiner();
}

void ModeleCartouche::cmdListeDefaut() {
  auto liste = [this](int i) -> IListe* {
    switch (ListeDeDefaut(i)) {
      case ListeChoix::Provenance: return &comboProvenance;
      case ListeChoix::Montage: return &comboMontage;
      case ListeChoix::Coloration: return &comboColoration;
      default: return &ComboEclairage;
    }
  };
  if (chkLstDefaut[0] || chkLstDefaut[1] || chkLstDefaut[2]) {
    tg::cmdListeDefaut(chkLstDefaut, {liste(0), liste(1), liste(2)});
    Voir(Controle::fraListe, false);
  }
  chkLstDefaut.fill(false);
}

void ModeleCartouche::RemplirListeTables(ListeFormulaire& liste, Controle combo, Controle boite, int choix) {
  ExtraireChoix(liste, choix);
  // Only the blank first entry: no table to take a name from.
  if (liste.Nombre() < 2) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Aucune table en mémoire ..."),
                        Icone::Information);
    return;
  }
  liste.Inserer(0, QString::fromUtf8(kChoisirAnnuler));
  liste.Selectionner(0);
  Voir(boite, false);
  Voir(combo, true);
}

void ModeleCartouche::ChoisirDansListe(const ListeFormulaire& liste, Controle combo, Controle boite,
                                       QString& texte) {
  const QString choix = liste.Texte();
  if (choix != QString::fromUtf8(kChoisirAnnuler)) {
    texte = choix;
    Teindre(boite, kVertPale);
  }
  Voir(combo, false);
  Voir(boite, true);
}

void ModeleCartouche::cmdListeApPhoto() {
  RemplirListeTables(comboModele, Controle::comboModele, Controle::txtApPhotoMan, ChoixModele);
}

void ModeleCartouche::cmdListeMicro() {
  RemplirListeTables(comboMicro, Controle::comboMicro, Controle::txtMicroMan, ChoixMicro);
}

void ModeleCartouche::comboModele_Click() {
  ChoisirDansListe(comboModele, Controle::comboModele, Controle::txtApPhotoMan, txtApPhotoMan);
}

void ModeleCartouche::comboMicro_Click() {
  ChoisirDansListe(comboMicro, Controle::comboMicro, Controle::txtMicroMan, txtMicroMan);
}

// --- Fields

void ModeleCartouche::chkChoixChamp_Click(int index) {
  if (index < 0 || index > 8) return;
  const bool actif = chkChoixChamp[size_t(index)];
  if (index == 3) {
    for (Controle c : {Controle::comboJour, Controle::comboMois, Controle::comboAnnee}) Activer(c, actif);
    return;
  }
  if (index == 4) Activer(Controle::cmdListeMicro, actif);
  if (index == 5) Activer(Controle::cmdListeApPhoto, actif);
  Activer(kControlesChamps[index], actif);
  if (!actif) {
    tagChamp_[size_t(index)] = LireChamp(index);
    EcrireChamp(index, QString::fromUtf8(kChampInutilise));
    if (index == 0)
      Dialogues().Message(QLatin1String(TitreProgramme),
                          QStringLiteral("Attention : Il est déconseillé d'enlever le titre !"), Icone::Exclamation);
  } else {
    EcrireChamp(index, tagChamp_[size_t(index)]);
  }
}

void ModeleCartouche::cmdTousChamps() {
  for (int i = 0; i < 9; ++i)
    if (!chkChoixChamp[size_t(i)]) {
      chkChoixChamp[size_t(i)] = true;
      chkChoixChamp_Click(i);
    }
}

void ModeleCartouche::cmdViderChamps() {
  if (Dialogues().Question(QStringLiteral("Champs textes par défaut"),
                           QStringLiteral("Souhaitez-vous effacer les valeurs actuelles\r\n"
                                          "et les remplacer par les valeurs par défauts ?"),
                           Boutons::OuiNon, Reponse::Oui, Icone::Question) != Reponse::Oui)
    return;
  cmdTousChamps();
  const DefautsChamps d;
  txtCommentaire = d.titre;
  ComboEclairage.DefinirTexte(d.eclairage);
  txtNomAuteur = s_.NomAuteur;
  comboProvenance.DefinirTexte(QString());
  comboMontage.DefinirTexte(d.montage);
  comboColoration.DefinirTexte(d.coloration);
  // The photo's own date, as the opening chose it: never today's in its place.
  AppliquerDate(dateRecuperee_);
  chkTraitNum.fill(false);
  txtMicroMan.clear();
  ComboObjectifMan.DefinirTexte(QString());
  Teindre(Controle::txtMicroMan, kJaunePale);
  Teindre(Controle::ComboObjectifMan, kJaunePale);
  txtApPhotoMan = s_.Modele;
  chkListe.fill(false);
  // Unticked as a click would: the strip goes and the colours come back;
  // the drawing below stands for the click's own.
  if (chkOmbrage) {
    chkOmbrage = false;
    AppliquerOmbrage();
  }
  optUnite = 0;
  cmdDessiner();
}

void ModeleCartouche::AppliquerOmbrage() {
  if (Arrondir(s_.CadrageFormate, 1) != 1.5) return;
  ombre_ = chkOmbrage ? ImageOmbre(IndexOmbre(s_.LargeurFormatee)) : QImage();
  if (!chkOmbrage) CouleurDefaut();
}

void ModeleCartouche::chkOmbrage_Click() {
  if (Arrondir(s_.CadrageFormate, 1) != 1.5) return;
  AppliquerOmbrage();
  cmdDessiner();
}

ChampsCartouche ModeleCartouche::LireChamps() const {
  ChampsCartouche c;
  c.titre = txtCommentaire;
  c.eclairage = ComboEclairage.Texte();
  c.auteur = txtNomAuteur;
  c.provenance = comboProvenance.Texte();
  c.montage = comboMontage.Texte();
  c.coloration = comboColoration.Texte();
  c.microMan = txtMicroMan;
  c.apPhotoMan = txtApPhotoMan;
  c.objectifMan = ComboObjectifMan.Texte();
  c.objectif = ComboObjectif.Texte();
  c.pix = txtPix;
  c.mic = txtMic;
  c.longueur = txtLongueur;
  return c;
}

void ModeleCartouche::EcrireChamps(const ChampsCartouche& c) {
  txtCommentaire = c.titre;
  ComboEclairage.DefinirTexte(c.eclairage);
  txtNomAuteur = c.auteur;
  comboProvenance.DefinirTexte(c.provenance);
  comboMontage.DefinirTexte(c.montage);
  comboColoration.DefinirTexte(c.coloration);
  txtMicroMan = c.microMan;
  txtApPhotoMan = c.apPhotoMan;
  ComboObjectif.DefinirTexte(c.objectif);
  txtPix = c.pix;
}

// --- Scale

void ModeleCartouche::ApparenceChampsTable() {
  for (Controle c : {Controle::ComboObjectif, Controle::txtPix, Controle::txtMic}) {
    Activer(c, false);
    Teindre(c, kVertPale);
  }
  cartouche_ = QImage();
}

void ModeleCartouche::ApparenceNoEtalon() {
  for (Controle c : {Controle::ComboObjectifMan, Controle::txtApPhotoMan, Controle::txtMicroMan})
    Teindre(c, kVertPale);
}

void ModeleCartouche::cmdEtalonner() {
  Voir(Controle::fraMicroPhoto, false);
  Voir(Controle::cmdEtalonner, false);
  Voir(Controle::fraEchelle, true);
  cmdOuvrirFraChoixTable();
}

void ModeleCartouche::cmdOuvrirFraChoixTable() {
  Voir(Controle::fraChoixTable, true);
  fraChoixTable_Expand();
}

void ModeleCartouche::fraChoixTable_Expand() {
  txtObjRef.clear();
  // A zoom needs the camera's model and the photo's focal length.
  Activer(Controle::cmdExtrapolFoc, !s_.Modele.isEmpty() && s_.FocaleAPN > 0);
  comboTables.Vider();
  comboIndexTable.Vider();
  const FiltreAuto filtre = ChoisirFiltreAuto(s_.Modele, s_.FocaleAPN);
  if (filtre != FiltreAuto::Aucun) {
    chkAfficherTouteTable = false;
    txtChoixTableAuto = QString::fromUtf8(kEtatActive);
    RemplirComboTableFiltre(comboTables, comboIndexTable, filtre == FiltreAuto::AvecModele, s_);
  }
  if (comboIndexTable.Nombre() < 2) {
    chkAfficherTouteTable = true;
    txtChoixTableAuto = QString::fromUtf8(kAucuneCorrespondance);
    comboTables.Vider();
    RemplirComboTable(comboTables, s_.SeparateurDecimal);
  }
}

void ModeleCartouche::chkAfficherTouteTable_Click() {
  comboTables.Vider();
  comboIndexTable.Vider();
  txtObjRef.clear();
  if (chkAfficherTouteTable) {
    RemplirComboTable(comboTables, s_.SeparateurDecimal);
    txtChoixTableAuto = QString::fromUtf8(kAucuneCorrespondance);
  } else {
    fraChoixTable_Expand();
  }
}

int ModeleCartouche::SlotChoisi() const {
  const int pos = comboTables.Selection();
  return SlotTableChoisie(pos, chkAfficherTouteTable, comboIndexTable.Item(pos));
}

void ModeleCartouche::comboTables_Click() {
  txtObjRef.clear();
  const int slot = SlotChoisi();
  if (comboTables.Selection() <= 0 || slot <= 1) return;
  FichierMesure f;
  if (!FileExists(CheminTableMesure()) || !f.Ouvrir()) return;
  if (f.LireEntete() > 1 && f.LireEnr(slot)) txtObjRef = TexteObjRef(TableMesure(), s_.SeparateurDecimal);
}

void ModeleCartouche::cmdAppliquerTable() {
  const QString objectif = comboListeObjectif.Texte();
  if (objectif.isEmpty() || comboTables.Texte().isEmpty()) {
    Dialogues().Message(QString::fromUtf8(kTitreChampsVides), QString::fromUtf8(kChampsVides), Icone::Exclamation);
    tableAppliquee_ = false;
    return;
  }
  const int slot = SlotChoisi();
  if (chkAfficherTouteTable && !TableCorrespond(TableMesure(), s_.LargeurOrigine, s_.FocaleAPN)) {
    if (Dialogues().Question(QString::fromUtf8(kTitreLargeurFocale), QuestionLargeurFocale(), Boutons::OuiNon,
                             Reponse::Non, Icone::Exclamation) != Reponse::Oui) {
      tableAppliquee_ = false;
      return;
    }
    // Offered only where it can correct: a table of this focal length.
    if (s_.FocaleAPN == TableMesure().Focale) Voir(Controle::cmdModifDefinition, true);
  }
  {
    FichierMesure f;
    if (FileExists(CheminTableMesure()) && f.Ouvrir() && f.LireEntete() > 1 && slot >= 2) f.LireEnr(slot);
  }
  const EnrMesure t = TableMesure();
  const std::optional<float> m = MicronsParPixelTable(t, objectif);
  if (!m) {
    Dialogues().Message(QLatin1String(TitreProgramme),
                        TexteErreurFeuille(11, QStringLiteral("Division by zero"),
                                           QStringLiteral("cmdAppliquerTable_Click")),
                        Icone::Critique);
    return;
  }
  ComboObjectif.DefinirTexte(objectif);
  txtMic = QStringLiteral("100");
  txtPix = PixPourCentMicrons(*m);
  s_.MemCartouche.MemMicro = s_.Microscope = t.Micro;
  s_.MemCartouche.MemApPhoto = s_.Modele = t.Modele;
  ApparenceChampsTable();
  tableAppliquee_ = true;
  cmdDessiner();
  s_.ExtrapolationFoc = false;
  Voir(Controle::fraChoixTable, false);
  txtMicroMan = t.Micro;
  txtApPhotoMan = t.Modele;
  ComboObjectifMan.DefinirTexte(objectif);
  ApparenceNoEtalon();
}

void ModeleCartouche::cmdAnnulerTable() {
  Voir(Controle::fraChoixTable, false);
  tableAppliquee_ = false;
  comboTables.Selectionner(comboTables.Nombre() > 0 ? 0 : -1);
  comboTables_Click();  // the blank row shows no reference objective
  txtChoixTableAuto = QString::fromUtf8(kAucuneCorrespondance);
  cmdDebloquer();
}

void ModeleCartouche::cmdDebloquer() {
  for (Controle c : {Controle::ComboObjectif, Controle::txtPix, Controle::txtMic}) {
    Activer(c, true);
    Teindre(c, kJaunePale);
  }
  ComboObjectif.DefinirTexte(QString());
  txtPix.clear();
  txtMic.clear();
  MemoireCartouche& m = s_.MemCartouche;
  for (QString* mem : {&m.MemApPhoto, &m.MemMicro, &m.MemObjectif, &m.MemMic, &m.MemPix}) mem->clear();
  s_.ExtrapolationFoc = false;
  tableAppliquee_ = false;
  Voir(Controle::cmdModifDefinition, false);
}

void ModeleCartouche::cmdSansEtalon() {
  Voir(Controle::fraEchelle, false);
  Voir(Controle::fraChoixTable, false);
  Voir(Controle::cmdEtalonner, true);
  Voir(Controle::fraMicroPhoto, true);
  ComboObjectif.DefinirTexte(QString());
  txtPix.clear();
  txtMic.clear();
  MemoireCartouche& m = s_.MemCartouche;
  for (QString* mem : {&m.MemObjectif, &m.MemPix, &m.MemMic}) mem->clear();
  s_.MicronsParPixel = 0;
  cartoucheValide_ = true;
  tableAppliquee_ = false;
  s_.ExtrapolationFoc = false;
  Voir(Controle::cmdModifDefinition, false);
  for (Controle c : {Controle::ComboObjectif, Controle::txtPix, Controle::txtMic, Controle::ComboObjectifMan,
                     Controle::txtMicroMan})
    Teindre(c, kJaunePale);
  optUnite = 0;
  optUniteObj = 0;
  ComboObjectifMan.DefinirTexte(QString());
  txtMicroMan.clear();
}

void ModeleCartouche::cmdRecupMetaEchelle() {
  auto verrouiller = [this](Controle c) {
    Activer(c, false);
    Teindre(c, kVertPale);
  };
  if (!s_.Microscope.isEmpty()) s_.MemCartouche.MemMicro = s_.Microscope;
  if (!s_.Modele.isEmpty()) s_.MemCartouche.MemApPhoto = s_.Modele;
  if (!s_.Objectif.isEmpty()) {
    ComboObjectif.DefinirTexte(s_.Objectif);
    verrouiller(Controle::ComboObjectif);
  }
  if (!s_.EchelleMic.isEmpty()) {
    txtMic = s_.EchelleMic;
    txtLongueur = s_.EchelleMic;
    verrouiller(Controle::txtMic);
    verrouiller(Controle::txtLongueur);
  }
  if (!s_.EchellePix.isEmpty()) {
    txtPix = s_.EchellePix;
    verrouiller(Controle::txtPix);
  }
  if (s_.Objectif.isEmpty() || s_.EchelleMic.isEmpty() || s_.EchellePix.isEmpty()) cmdDebloquer();
}

void ModeleCartouche::cmdModifDefinition() {
  const EnrMesure t = TableMesure();
  const RapportDefinition r = CalculerRapportDefinition(s_.PortraitOrigine, s_.ImageTournee, s_.LargeurOrigine,
                                                        s_.HauteurOrigine, t.LargPix);
  if (Dialogues().Question(QStringLiteral(" Modification de l'échelle"), QuestionModifDefinition(r.largeur, t.LargPix),
                           Boutons::OuiNon, Reponse::Non, Icone::Question) != Reponse::Oui) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Annulation ..."), Icone::Aucune);
    return;
  }
  double pix = 0;
  if (!LireNombre(txtPix, pix)) return;
  // Yes does nothing for a table of the same width or of another focal length.
  const std::optional<double> corrige = PixCorrige(pix, r, t.LargPix, s_.FocaleAPN, t.Focale);
  if (!corrige) return;
  const QString mic = txtMic;
  const QString objectif = ComboObjectif.Texte();
  cmdDebloquer();
  txtPix = TexteReel(*corrige, s_.SeparateurDecimal);
  txtMic = mic;
  ComboObjectif.DefinirTexte(objectif);
  for (Controle c : {Controle::ComboObjectif, Controle::txtPix, Controle::txtMic}) Teindre(c, kRougePale);
  cmdDessiner();
  Voir(Controle::cmdModifDefinition, false);
}

void ModeleCartouche::InitVarEchelle() {
  if (!EchelleVisible() || !cartoucheValide_) return;
  EntreesEchelle e;
  LireNombre(txtMic, e.mic);
  LireNombre(txtPix, e.pix);
  LireNombre(txtLongueur, e.longueur);
  e.largeurOrigine = s_.LargeurOrigine;
  e.largeurRecadrage = s_.LargeurRecadrage;
  e.hauteurRecadrage = s_.HauteurRecadrage;
  e.largeurFormatee = s_.LargeurFormatee;
  const ResultatEchelle r = CalculerEchelle(e);
  s_.MicronsParPixel = r.micronsParPixel;
  echellePixels_ = r.echellePixels;
  if (!r.valide) {
    Dialogues().Message(QLatin1String(TitreProgramme), QString::fromUtf8(kEchelleTropLongue), Icone::Exclamation);
    cartoucheValide_ = false;
  }
}

void ModeleCartouche::cmdLongueurAuto() {
  EntreesEchelle e;
  LireNombre(txtMic, e.mic);
  LireNombre(txtPix, e.pix);
  e.longueur = 1;
  e.largeurOrigine = s_.LargeurOrigine;
  e.largeurRecadrage = s_.LargeurRecadrage;
  e.hauteurRecadrage = s_.HauteurRecadrage;
  e.largeurFormatee = s_.LargeurFormatee;
  if (!(e.mic > 0) || !(e.pix > 0) ||
      LargeurRefEchelle(e.largeurOrigine, e.largeurRecadrage, e.hauteurRecadrage) <= 0) {
    Dialogues().Message(QLatin1String(TitreProgramme),
                        QStringLiteral("Indiquez d'abord l'échelle (pixels et microns) !"), Icone::Exclamation);
    return;
  }
  const double l = LongueurAuto(CalculerEchelle(e).micronsParPixel, s_.LargeurFormatee);
  txtLongueur = TexteReel(l, s_.SeparateurDecimal);
}

void ModeleCartouche::cmdExtrapolFoc() {
  s_.DepuisCartouche = true;
  cmdAnnulerTable();
}

void ModeleCartouche::RecevoirExtrapolation(int pixPour100) {
  Voir(Controle::fraChoixTable, false);
  ComboObjectif.DefinirTexte(QString());
  txtMic = QStringLiteral("100");
  txtPix = QString::number(pixPour100);
  for (Controle c : {Controle::ComboObjectif, Controle::txtPix, Controle::txtMic}) Teindre(c, kRougePale);
}

// --- Drawing

ValeursCartouche ModeleCartouche::ValeursDessin() const {
  ValeursCartouche v;
  v.largeur = canevas_.largeurCartouche;
  v.hauteur = forme_.hauteurCartouche;
  v.fond = couleurCartouche_;
  v.ombre = ombre_;
  v.cartoucheHB = s_.CartoucheHB;
  v.separateur = s_.SeparateurDecimal;
  v.echelleVisible = EchelleVisible();
  v.cartoucheValide = cartoucheValide_;
  v.echellePixels = echellePixels_;
  v.couleurEchelle = couleurEchelle_;
  v.optUnite = optUnite;
  LireNombre(txtLongueur, v.longueur);
  v.extrapolationFoc = s_.ExtrapolationFoc;
  v.objectif = ComboObjectif.Texte();
  v.reductionAffichee = ReductionAffichee(s_.LargeurRecadrage, s_.Largeur, s_.LargeurOrigine, s_.ImageDejaFormatee,
                                          s_.ReductionImage);
  v.microscope = s_.Microscope;
  v.modele = s_.Modele;
  v.microMan = txtMicroMan;
  v.objectifMan = ComboObjectifMan.Texte();
  v.apPhotoMan = txtApPhotoMan;
  v.optUniteObj = optUniteObj;
  v.choixChamp = chkChoixChamp;
  v.couleurTexte = couleurTexte_;
  v.policeTitre = policeTitre_;
  v.policeSousTitre = policeSousTitre_;
  v.largeurFormatee = s_.LargeurFormatee;
  v.apnLargCourant = s_.ApnLargCourant;
  v.titre = txtCommentaire.trimmed();
  v.eclairage = ComboEclairage.Texte();
  v.montage = comboMontage.Texte();
  v.coloration = comboColoration.Texte();
  v.provenance = comboProvenance.Texte();
  v.auteur = txtNomAuteur;
  v.dateTexte = comboJour.Texte() + u'/' + comboMois.Texte() + u'/' + comboAnnee.Texte();
  return v;
}

void ModeleCartouche::cmdDessiner() {
  cartoucheValide_ = true;
  for (Controle c : {Controle::fraPolices, Controle::fraChoixChamp, Controle::fraListe, Controle::fraChoixTable})
    Voir(c, false);
  ChampsCartouche c = LireChamps();
  const ResultatControle r = ControleErreur(c, EchelleVisible(), s_.SeparateurDecimal);
  EcrireChamps(c);
  cartoucheValide_ = r.valide;
  InitVarEchelle();
  AppliquerCouleurAuto();
  // An image larger than the format has no canvas: nothing is drawn.
  if (canevas_.largeurCartouche > 0 && forme_.hauteurCartouche > 0) DessinerCartouche(cartouche_, ValeursDessin());
  Activer(Controle::cmdSuite, cartoucheValide_);
  cmdDessinerTexte = QStringLiteral("(re)Dessiner le cartouche");
}

// --- Final picture

ParamsImageFinale ModeleCartouche::ParamsFinale() const {
  ParamsImageFinale p;
  p.largeurFond = canevas_.largeurFond;
  p.hauteurFond = forme_.hauteurFond;
  p.hauteurCartouche = forme_.hauteurCartouche;
  p.cartoucheHB = s_.CartoucheHB;
  p.cadrageFormate = s_.CadrageFormate;
  p.optAlign = optAlign;
  p.optTransparence = optTransparence;
  return p;
}

void ModeleCartouche::AppliquerCouleurAuto() {
  if (!chkCouleurAuto || s_.CartoucheHB != u"0") return;
  const ParamsImageFinale p = ParamsFinale();
  QImage image;
  if (!ai_.Convert_ImageToPicture(s_.ImageFormatee, image)) return;
  const double sous = LuminanceMoyenne(image, ZoneSousCartouche(p, image.width(), image.height()));
  if (sous < 0) return;
  // What lies under the text: the cartouche's background over the picture,
  // as opaque as the transparency chosen.
  const double a = AlphaTransparence(p.optTransparence) / 255.0;
  const double fond =
      0.299 * couleurCartouche_.red() + 0.587 * couleurCartouche_.green() + 0.114 * couleurCartouche_.blue();
  DefinirCouleurTexte(DepuisBgr(CouleurContrastee(a * fond + (1 - a) * sous)));
}

bool ModeleCartouche::ConstruireImageFinal() {
  const ParamsImageFinale p = ParamsFinale();
  const QString commentaireAvant = s_.CommentaireImage;

  ValeursBloc b;
  auto champ = [](const QString& t) { return SansChampInutilise(t).trimmed(); };
  b.titre = champ(txtCommentaire);
  b.auteur = champ(txtNomAuteur);
  b.dateImage = MaintenantTexte();
  b.jourObservation = comboJour.Texte();
  b.moisObservation = comboMois.Texte();
  b.anneeObservation = comboAnnee.Texte();
  b.apPhotoMan = champ(txtApPhotoMan);
  b.echelleVisible = EchelleVisible();
  if (!b.echelleVisible) s_.Modele = b.apPhotoMan;
  b.modele = s_.Modele;
  b.focaleAPN = s_.FocaleAPN;
  b.digitalZoom = s_.DigitalZoom;
  b.eclairage = champ(ComboEclairage.Texte());
  b.provenance = champ(comboProvenance.Texte());
  b.preparation = champ(comboMontage.Texte());
  b.coloration = champ(comboColoration.Texte());
  b.largeurOrigineMeta = s_.LargeurOrigineMeta;
  b.largeurOrigine = s_.LargeurOrigine;
  b.largeurRecadrage = s_.LargeurRecadrage;
  b.largeur = s_.Largeur;
  b.reduction =
      CalculerReduction(s_.LargeurRecadrage, s_.LargeurOrigine, s_.Largeur, s_.ImageDejaFormatee, s_.ReductionImage);
  if (b.echelleVisible) {
    b.txtPix = txtPix;
    b.txtMic = txtMic;
  }
  b.microscope = s_.Microscope;
  b.objectif = ComboObjectif.Texte();
  b.longueur = txtLongueur;
  b.echellePixels = echellePixels_;
  b.extrapolationFoc = s_.ExtrapolationFoc;
  b.optUnite = optUnite;
  b.tableAppliquee = tableAppliquee_;
  b.microMan = champ(txtMicroMan);
  b.objectifMan = ComboObjectifMan.Texte();
  b.optUniteObj = optUniteObj;
  b.imageDejaFormatee = s_.ImageDejaFormatee;
  b.traitNiveaux = chkTraitNum[0];
  b.traitPoussieres = chkTraitNum[1];
  b.traitBruit = chkTraitNum[2];
  b.traitDeconvolution = chkTraitNum[3];
  b.regne = s_.Regne;
  b.embranchement = s_.Embranchement;
  b.classe = s_.Classe;
  b.ordre = s_.Ordre;
  b.famille = s_.Famille;
  b.genre = s_.Genre;
  b.espece = s_.Espece;
  b.motClef = s_.MotClef;
  b.commentaireImage = commentaireAvant;
  b.exifTexte = s_.ExifTexte;
  b.iptcTexte = s_.IptcTexte;
  b.separateurDecimal = s_.SeparateurDecimal;

  s_.TitreImage = b.titre;
  s_.NomAuteurImage = b.auteur;
  s_.Eclairage = b.eclairage;
  s_.Provenance = b.provenance;
  s_.Coloration = b.coloration;
  s_.Preparation = b.preparation;
  s_.DateObservation = b.jourObservation + u'/' + b.moisObservation + u'/' + b.anneeObservation;
  s_.TraitNiveaux = b.traitNiveaux;
  s_.TraitPoussieres = b.traitPoussieres;
  s_.TraitBruit = b.traitBruit;
  s_.TraitDeconvolution = b.traitDeconvolution;
  if (b.echelleVisible) {
    s_.UniteEtalon = b.optUnite == 0 ? QStringLiteral("um") : QStringLiteral("mm");
    s_.Objectif = b.objectif;
    s_.EchelleMic = b.longueur;
    s_.EchellePix = TexteReel(echellePixels_, s_.SeparateurDecimal);
  }
  if (!tableAppliquee_) s_.UniteObj = b.optUniteObj == 0 ? QStringLiteral("x") : QStringLiteral("mm");
  const QString texte = EcrireBlocMeta(b);

  Bitmap sortie;
  QStringList messages;
  int largeurF = s_.LargeurFormatee, hauteurF = s_.HauteurFormatee;
  const bool ok = tg::ConstruireImageFinal(ai_, s_.ImageFormatee, largeurF, hauteurF, couleurFond_, cartouche_,
                                           couleurCartouche_, p, sortie, messages);
  s_.LargeurFormatee = largeurF;
  s_.HauteurFormatee = hauteurF;
  for (const QString& m : messages) Dialogues().Message(QLatin1String(TitreProgramme), m, Icone::Critique);
  if (ok) {
    s_.ImageCourante = std::move(sortie);
    s_.Largeur = ai_.Info_Width(s_.ImageCourante);
    s_.Hauteur = ai_.Info_Height(s_.ImageCourante);
    s_.Cadrage = s_.Hauteur ? float(s_.Largeur) / float(s_.Hauteur) : 0;
    s_.CommentaireImage = texte;
    s_.ImageFinale = true;
  }
  echellePixels_ = 0;
  return ok;
}

bool ModeleCartouche::cmdSuite() {
  cmdDessiner();
  const bool ok = ConstruireImageFinal();
  MemoireCartouche m;
  // "Complète" is stored as 0.
  m.MemTransparence = optTransparence == 1 ? 1 : 0;
  m.MemAlign = int16_t(optAlign);
  m.MemTitre = txtCommentaire;
  m.MemAuteur = txtNomAuteur;
  m.MemProvenance = comboProvenance.Texte();
  m.MemColoration = comboColoration.Texte();
  m.MemMontage = comboMontage.Texte();
  m.MemEclairage = ComboEclairage.Texte();
  for (size_t i = 0; i < 4; ++i) m.MemTraitNum[i] = chkTraitNum[i];
  m.MemMicro = s_.Microscope;
  m.MemApPhoto = s_.Modele;
  m.MemObjectif = ComboObjectif.Texte();
  m.MemPix = txtPix;
  m.MemMic = txtMic;
  double longueur = 0;
  LireNombre(txtLongueur, longueur);
  m.MemLongueur = int32_t(longueur);
  m.MemCouleurTexte = VersBgr(couleurTexte_);
  m.MemCouleurEchelle = VersBgr(couleurEchelle_);
  m.MemCouleurCartouche = VersBgr(couleurCartouche_);
  m.MemCouleurFond = VersBgr(couleurFond_);
  m.MemEchelleVisible = EchelleVisible();
  m.MemChoixTableVisible = Visible(Controle::fraChoixTable);
  m.MemPolicesVisible = Visible(Controle::fraPolices);
  m.MemUniteObj = int16_t(optUniteObj);
  m.MemOmbrage = chkOmbrage;
  EcrireMemCartouche(s_, m);
  // What the no-scale block shows at the next visit; an unused field is blank.
  s_.MicroscopeMeta = SansChampInutilise(txtMicroMan);
  s_.ApPhotoMeta = SansChampInutilise(txtApPhotoMan);
  s_.ObjectifMeta = ComboObjectifMan.Texte();

  // New entries of the four choice lists.
  const std::pair<const ListeFormulaire*, ListeChoix> listes[4] = {{&ComboEclairage, ListeChoix::Eclairage},
                                                                   {&comboProvenance, ListeChoix::Provenance},
                                                                   {&comboMontage, ListeChoix::Montage},
                                                                   {&comboColoration, ListeChoix::Coloration}};
  for (size_t i = 0; i < 4; ++i) AjouterSiNouveau(chkListe[i], *listes[i].first, CheminListe(listes[i].second));
  s_.Etape = 3;
  return ok;
}

void ModeleCartouche::Quitter() { s_.DepuisCartouche = false; }

}  // namespace tg
