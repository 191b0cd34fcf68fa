#include "measure/Carnet.h"

#include "platform/Fichiers.h"
#include "platform/Nombres.h"
#include "version.h"

namespace tg {

namespace {
const QString CRLF = QStringLiteral("\r\n");
}

Carnet::Ajout Carnet::AjouterMesure() {
  if (txtMesure1.isEmpty()) return Ajout::Rien;
  if (Lignes.size() >= MaxLignes) {
    txtMesure0.clear();
    txtMesure1.clear();
    txtMesure2.clear();
    return Ajout::Plein;
  }
  Lignes.append({txtMesure0, txtMesure1, txtMesure2});
  EffacerSaisie();
  return Ajout::Ajoute;
}

Carnet::Ajout Carnet::AjouterSerie(const QString& description) {
  ++NumSerie;
  if (Lignes.size() >= MaxLignes) {
    txtMesure0.clear();
    txtMesure1.clear();
    txtMesure2.clear();
    return Ajout::Plein;
  }
  Lignes.append({LigneCarnet::MarqueSerie(),
                 QStringLiteral("Série %1 : ").arg(NumSerie), description});
  EffacerSaisie();
  return Ajout::Ajoute;
}

void Carnet::EffacerSaisie() {
  txtMesure0 = QString::number(Lignes.size() + 1);
  txtMesure1.clear();
  txtMesure2.clear();
}

void Carnet::EffacerTout() {
  Lignes.clear();
  txtMesure0 = QStringLiteral("1");
  txtMesure1.clear();
  txtMesure2.clear();
  NumSerie = 0;
}

QString Carnet::Rendu() const {
  QString t;
  for (const LigneCarnet& l : Lignes) {
    if (l.EstSerie())
      t += l.numero + l.valeur + l.texte + CRLF;
    else
      t += QStringLiteral("Mesure ") + l.numero + QStringLiteral(" = ") + l.valeur +
           QStringLiteral(" µm : ") + l.texte + CRLF;
  }
  return t;
}

QString ApplicationRapport() {
  return QStringLiteral("%1 %2%3%4")
      .arg(QLatin1String(TitreProgramme))
      .arg(VersionMajor)
      .arg(VersionMinor)
      .arg(VersionRevision);
}

double ReductionRapport(const SessionRecord& s) {
  if (s.Largeur <= 0) return 0;
  const int32_t source = s.LargeurRecadrage >= 1 ? s.LargeurRecadrage : s.LargeurOrigine;
  return Arrondir(double(source) / double(s.Largeur), 2);
}

QList<LigneRapport> LignesRapport(const SessionRecord& s, const ContenuCarnet& c) {
  const QString& sep = s.SeparateurDecimal;
  QString traitements;
  if (s.TraitNiveaux) traitements += QStringLiteral("Niveaux/");
  if (s.TraitPoussieres) traitements += QStringLiteral("Poussières/");
  if (s.TraitBruit) traitements += QStringLiteral("Bruit/");
  if (s.TraitDeconvolution) traitements += QStringLiteral("Déconvolution/");

  using L = LigneRapport;
  QList<L> r;
  r.append({L::TitreBloc, s.TitreImage});
  r.append({L::TitreBloc, QStringLiteral("Date: ") + s.DateObservation + QStringLiteral("   ") +
                              QStringLiteral("Provenance: ") + s.Provenance});
  r.append({L::TitreBloc, QString()});
  r.append({L::Vignette, QString()});
  r.append({L::Normal, QString()});
  r.append({L::Normal, QString()});
  r.append({L::Rubrique, QStringLiteral("Infos photo")});
  r.append({L::Normal, QStringLiteral("Auteur : ") + s.NomAuteurImage});
  r.append({L::Normal, QStringLiteral("Application : ") + c.application});
  r.append({L::Normal, QStringLiteral("Appareil photo : ") + s.Modele});
  r.append({L::Normal, QStringLiteral("Largeur original : %1 pix").arg(s.LargeurOrigine)});
  r.append({L::Normal, s.LargeurRecadrage < 1
                           ? QStringLiteral("Largeur après recadrage : Pas de recadrage")
                           : QStringLiteral("Largeur après recadrage : %1 pix").arg(s.LargeurRecadrage)});
  r.append({L::Normal, QStringLiteral("Largeur après redimensionnement : %1 pix").arg(s.Largeur)});
  r.append({L::Normal, QStringLiteral("Réduction définition : 1/") + TexteReel(ReductionRapport(s), sep)});
  r.append({L::Normal, QStringLiteral("Longueur focale : ") + TexteReel(s.FocaleAPN, sep) +
                           QStringLiteral(" mm")});
  r.append({L::Normal, QStringLiteral("Traitements numérique : ") + traitements});
  r.append({L::Normal, QString()});
  r.append({L::Rubrique, QStringLiteral("Microscope")});
  r.append({L::Normal, QStringLiteral("Modèle : ") + s.Microscope});
  r.append({L::Normal, QStringLiteral("Eclairage : ") + s.Eclairage});
  r.append({L::Normal, QStringLiteral("Objectif : ") + s.Objectif});
  r.append({L::Normal, QStringLiteral("Echelle (image formatée) : ") + s.EchellePix +
                           QStringLiteral(" pixels = ") + s.EchelleMic + QStringLiteral(" microns")});
  r.append({L::Normal, QString()});
  r.append({L::Rubrique, QStringLiteral("Préparation")});
  r.append({L::Normal, QStringLiteral("Coloration : ") + s.Coloration});
  // "Montage" shows the preparation field: the report has always paired them so.
  r.append({L::Normal, QStringLiteral("Montage : ") + s.Preparation});
  r.append({L::Normal, QString()});
  r.append({L::Rubrique, QStringLiteral("Liste de mesures")});
  r.append({L::Normal, c.txtLst});
  r.append({L::Rubrique, QStringLiteral("Commentaires")});
  r.append({L::Normal, QString()});
  r.append({L::Normal, c.txtAnnotations});
  r.append({L::Normal, QString()});
  return r;
}

QString TexteRapport(const QList<LigneRapport>& lignes) {
  QString t;
  for (const LigneRapport& l : lignes)
    if (l.genre != LigneRapport::Vignette) t += l.texte + CRLF;
  return t;
}

bool EnregistrerTexte(const QString& chemin, const QList<LigneRapport>& lignes) {
  // Lines inside the list or the annotations may end with CR LF, LF or CR.
  QString texte = TexteRapport(lignes);
  texte.replace(CRLF, QStringLiteral("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
  QStringList l = texte.split(QLatin1Char('\n'));
  if (!l.isEmpty() && l.last().isEmpty()) l.removeLast();
  return EcrireLignes(chemin, l);
}

QString NomFichierCarnet(const QString& titre, bool rtf) {
  static const QString accents =
      QStringLiteral("ÀÁÂÃÄÅàáâãäåÒÓÔÕÖØòóôõöøÈÉÊËèéêëÌÍÎÏìíîïÙÚÛÜùúûüÿÑñÇç");
  static const QString simples =
      QStringLiteral("AAAAAAaaaaaaOOOOOOooooooEEEEeeeeIIIIiiiiUUUUuuuuyNnCc");
  static const QString interdits = QStringLiteral("+\\/*%&()=?¦@#|.;:,<>$£![]~'");
  QString nom;
  for (QChar ch : titre.trimmed()) {
    const qsizetype i = accents.indexOf(ch);
    if (i >= 0) ch = simples.at(i);
    if (interdits.contains(ch)) continue;
    nom += ch == QLatin1Char(' ') ? QLatin1Char('_') : ch;
  }
  return nom + (rtf ? QStringLiteral(".rtf") : QStringLiteral(".txt"));
}

QString TexteAvertissementEnregistrement(const QString& nomFichier) {
  return QStringLiteral("Attention, si ce fichier (") + nomFichier +
         QStringLiteral(")\nest déjà ouvert dans un traitement de textes\n"
                        "l'enregistrement risque de ne pas se faire correctement !");
}

QString TitreEnregistrementCarnet(bool rtf) {
  return rtf ? QStringLiteral("  Enregistrer le carnet de mesure (RTF)")
             : QStringLiteral("  Enregistrer le carnet de mesure (TXT)");
}

QString FiltreEnregistrementCarnet(bool rtf) {
  return rtf ? QStringLiteral("Texte enrichi (*.rtf)|*.rtf")
             : QStringLiteral("Texte uniquement (*.txt)|*.txt");
}

}  // namespace tg
