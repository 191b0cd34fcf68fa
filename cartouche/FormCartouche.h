#pragma once
// What the cartouche form decides without its widgets: validation of the
// fields, the date lists, the canvas sizes and the default options, and the
// memory of the form between two visits on the same picture.
#include <QDate>
#include <QFont>
#include <QString>
#include <QStringList>
#include <array>

#include "core/SessionRecord.h"

namespace tg {

// The texts of the form that ControleErreur checks and cleans in place.
struct ChampsCartouche {
  QString titre;        // txtCommentaire
  QString eclairage;    // ComboEclairage
  QString auteur;       // txtNomAuteur
  QString provenance;   // comboProvenance
  QString montage;      // comboMontage
  QString coloration;   // comboColoration
  QString microMan;     // txtMicroMan
  QString apPhotoMan;   // txtApPhotoMan
  QString objectifMan;  // ComboObjectifMan
  // Scale inputs of fraEchelle.
  QString objectif;  // ComboObjectif
  QString pix, mic, longueur;
};

inline constexpr int kLongueurMaxChamp = 70;
inline const char* const kChampInutilise = "*** Champ inutilisé ***";

// Outcome of ControleErreur: `valide` is CartoucheValide afterwards;
// `effacer` tells the window to clear picCartouche (every fault but the
// manual objective's).
struct ResultatControle {
  bool valide = true;
  bool effacer = false;
};

// ControleErreur: checks in order, each fault shown through Dialogues() and
// stopping the checks. Sanitises the texts and the decimal signs of pix and
// objectif in `c`. `echelleVisible`: fraEchelle shown.
ResultatControle ControleErreur(ChampsCartouche& c, bool echelleVisible,
                                const QString& separateurDecimal);

// RecupDate: the three lists and the date chosen.
struct DateCartouche {
  QStringList jours, mois, annees;
  QString jour, moisChoisi, annee;
  QString libelle;  // lblDatePhoto
};
// The first year of comboAnnee, and the first year a date may have.
inline constexpr int kPremiereAnnee = 1951;
// `aujourdhui` is the current date (a parameter so that tests fix it).
// Shows "Date Exif corrompue: Date du jour par défaut !" for a blank date.
DateCartouche RecupDate(const QString& dateImage, const QString& dateObservation,
                        const QDate& aujourdhui);

// Step 7 of the loading: canvas widths and background height before the
// cartouche's rows. All 0 for an image larger than the format.
struct Canevas {
  int largeurCartouche = 0, largeurFond = 0, hauteurFond = 0;
};
Canevas CalculerCanevas(const SessionRecord& s);

// Step 10: default transparency and alignment.
struct OptionsDefaut {
  int optTransparence = 0;
  int optAlign = 0;
  bool alignActif = true;
  bool fondsBlancs = true;
};
OptionsDefaut CalculerOptionsDefaut(float cadrageFormate, float ratioFormat,
                                    const QString& cartoucheHB, int largeurFormatee,
                                    int largeurFond);

// Stores `m` as the memory of the form (MemCartouche). MemOmbrage, once set,
// is kept even when the box is unticked at a later store.
void EcrireMemCartouche(SessionRecord& s, MemoireCartouche m);

// A key typed in a numeric input of the form: either decimal key types the
// locale's sign (returned); empty when the key goes in as it is.
QString SigneDecimalTape(const QString& touche, const QString& separateur);

// The standard report of an error trapped in a procedure of the form.
QString TexteErreurFeuille(int numero, const QString& texte, const QString& procedure);

// A font of the cartouche as its box shows it: name + "-" + size.
QString TexteFont(const QFont& f);
// The title font (numero 1) or the subtitle font (2) into the session's
// configuration and at once into UserConfig.ini, [FormatImage] FontName,
// FontSize (fraction cut), FontBold, FontItalic ("VRAI"/"FAUX"). False when
// the file cannot be written.
bool EcrirePolice(SessionRecord& s, int numero, const QFont& f);

// The form's defaults (cmdViderChamps and the first visit).
struct DefautsChamps {
  QString titre = QStringLiteral("Genre, espèce, divers");
  QString eclairage = QStringLiteral("Fond Clair");
  QString montage = QStringLiteral("Eau");
  QString coloration = QStringLiteral("Aucune");
};

// Colours of the inputs, 0xBBGGRR as the program stores them.
inline constexpr int kJaunePale = 0xC0FFFF;  // free manual input
inline constexpr int kVertPale = 0x80FF80;   // from a table or the metadata, locked
inline constexpr int kRougePale = 0xC0C0FF;  // corrected by cmdModifDefinition

}  // namespace tg
