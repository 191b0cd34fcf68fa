#pragma once
// The measurement notebook without its window: rows and series (200 rows in
// all), the list as text, the report's lines in order, the default file name
// and the plain-text save.
#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <cstdint>

#include "core/SessionRecord.h"

namespace tg {

// One row of lstMesure. A series row has "**** " as its number and
// "Série n : " as its value.
struct LigneCarnet {
  QString numero, valeur, texte;
  bool EstSerie() const { return numero == MarqueSerie(); }
  static QString MarqueSerie() { return QStringLiteral("**** "); }
};

inline const QString TexteMaximumMesures = QStringLiteral("Maximum de mesures atteint !");
inline const QString TitreNouvelleSerie = QStringLiteral("Nouvelle série calculée");
inline const QString InviteNouvelleSerie = QStringLiteral("Entrez une description pour cette série ...");

class Carnet {
 public:
  static constexpr int MaxLignes = 200;

  // The three boxes txtMesure(0), (1), (2).
  QString txtMesure0 = QStringLiteral("1"), txtMesure1, txtMesure2;
  int16_t NumSerie = 0;
  QList<LigneCarnet> Lignes;

  enum class Ajout { Rien, Ajoute, Plein };
  // cmdAjouterLst: nothing without a value; Plein: the boxes are emptied and
  // the caller shows TexteMaximumMesures.
  Ajout AjouterMesure();
  // cmdInputSerie once the input box has answered (a cancel gives ""): the
  // series number is taken even when the row is refused.
  Ajout AjouterSerie(const QString& description);
  // cmdEffacerTxt.
  void EffacerSaisie();
  // cmdListe(0).
  void EffacerTout();
  // txtLst: one line a row, each ended by CR LF.
  QString Rendu() const;
};

// The report, line by line. Each line is followed by CR LF in the text; the
// thumbnail is a line of its own that the plain text leaves out altogether.
struct LigneRapport {
  enum Genre { TitreBloc, Vignette, Rubrique, Normal } genre = Normal;
  QString texte;
  bool operator==(const LigneRapport&) const = default;
};
struct ContenuCarnet {
  QString txtLst;          // the rendered list (ends with CR LF)
  QString txtAnnotations;  // free annotations
  QString application;     // program name, blank, major minor revision
};
// The program's name and version as the report gives them: "Tessellographe 100".
QString ApplicationRapport();
// Reduction := LargeurRecadrage (if cropped) or LargeurOrigine over Largeur,
// to 2 decimals; 0 without a width.
double ReductionRapport(const SessionRecord& s);
QList<LigneRapport> LignesRapport(const SessionRecord& s, const ContenuCarnet& c);
// The report as plain text, CR LF line ends, without the thumbnail.
QString TexteRapport(const QList<LigneRapport>& lignes);
// Writes the plain text in Windows-1252 with CR LF. False when it cannot be written.
bool EnregistrerTexte(const QString& chemin, const QList<LigneRapport>& lignes);

// The default file name from TitreImage: trimmed, accents to plain letters,
// the forbidden characters removed, blanks to "_", then ".txt" or ".rtf".
QString NomFichierCarnet(const QString& titre, bool rtf);
// The warning shown before each save.
QString TexteAvertissementEnregistrement(const QString& nomFichier);
QString TitreEnregistrementCarnet(bool rtf);
QString FiltreEnregistrementCarnet(bool rtf);

}  // namespace tg
