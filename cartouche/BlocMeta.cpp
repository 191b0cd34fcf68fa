#include "cartouche/BlocMeta.h"

#include <QDateTime>
#include <QLocale>

#include "platform/Nombres.h"
#include "version.h"

namespace tg {

namespace {
const QString kCRLF = QStringLiteral("\r\n");
const QString kOldExif = QStringLiteral("[OldExif]");
// The form written by an older version of the program: its title and the 30
// dashes under it become "[OldExif]".
const QString kAnciennesInfos = QStringLiteral("ANCIENNES INFOS (original) :");
const QString kAnciennesInfosSoulignees =
    QStringLiteral("ANCIENNES INFOS (original) :\r\n------------------------------");
}  // namespace

QString TexteApplication() {
  return QLatin1String(TitreProgramme) + u' ' + QString::number(VersionMajor) +
         QString::number(VersionMinor) + QString::number(VersionRevision);
}

QString MaintenantTexte() {
  const QLocale l = QLocale::system();
  const QDateTime maintenant = QDateTime::currentDateTime();
  // The C locale's short form spells the month ("21 Nov 2026"): numbers instead.
  const QString date = l.language() == QLocale::C
                           ? maintenant.date().toString(QStringLiteral("dd/MM/yyyy"))
                           : l.toString(maintenant.date(), QLocale::ShortFormat);
  return date + u' ' + maintenant.time().toString(QStringLiteral("HH:mm:ss"));
}

QString TexteTraitement(bool niveaux, bool poussieres, bool bruit, bool deconvolution) {
  QString t;
  if (niveaux) t += QStringLiteral("Niveaux/");
  if (poussieres) t += QStringLiteral("Poussières/");
  if (bruit) t += QStringLiteral("Bruit/");
  if (deconvolution) t += QStringLiteral("Déconvolution/");
  return t;
}

float CalculerReduction(int largeurRecadrage, int largeurOrigine, int largeur,
                        bool imageDejaFormatee, float reductionImage) {
  if (imageDejaFormatee) return reductionImage;
  if (largeur == 0) return 0;
  const int base = largeurRecadrage != 0 ? largeurRecadrage : largeurOrigine;
  return float(Arrondir(double(base) / double(largeur), 2));
}

QString QueueOldExif(const QString& commentaireImage) {
  QString texte = commentaireImage;
  const qsizetype ancien = texte.indexOf(kAnciennesInfos);
  if (ancien >= 0) {
    texte = texte.mid(ancien);
    texte.replace(kAnciennesInfosSoulignees, kOldExif);
  }
  const qsizetype debut = texte.indexOf(kOldExif);
  return debut >= 0 ? texte.mid(debut) : QString();
}

QString EcrireBlocMeta(const ValeursBloc& v) {
  const QString& sep = v.separateurDecimal;
  QString b;
  const auto ligne = [&b](const QString& texte) { b += texte + kCRLF; };
  const auto cle = [&ligne](const char* nom, const QString& valeur) {
    ligne(QLatin1String(nom) + u'=' + valeur);
  };

  ligne(QStringLiteral("[Main]"));
  cle("TitreImage", v.titre);
  cle("Application", v.application.isEmpty() ? TexteApplication() : v.application);
  cle("NomAuteur", v.auteur);
  cle("DateImage", v.dateImage);
  cle("DateObservation", v.jourObservation + u'/' + v.moisObservation + u'/' + v.anneeObservation);
  // ApPhoto from Modele is not sanitised.
  cle("ApPhoto", v.echelleVisible ? v.modele : v.apPhotoMan);
  cle("LongueurFocale", TexteReel(v.focaleAPN, sep));
  cle("ZoomNumerique", TexteReel(v.digitalZoom, sep));
  cle("Eclairage", v.eclairage);
  cle("Provenance", v.provenance);
  cle("Preparation", v.preparation);
  cle("Coloration", v.coloration);
  ligne(QString());

  ligne(QStringLiteral("[Scale]"));
  cle("LargeurOrigine",
      v.largeurOrigineMeta.isEmpty() ? QString::number(v.largeurOrigine) : v.largeurOrigineMeta);
  cle("LargeurRecadrer", QString::number(v.largeurRecadrage));
  cle("LargeurFormater", QString::number(v.largeur));
  cle("ReductionImage", TexteReel(v.reduction, sep));
  if (!v.txtPix.isEmpty() && !v.txtMic.isEmpty()) {
    cle("Microscope", v.microscope);
    cle("Objectif", v.objectif);
    cle("EchelleMic", v.longueur);
    // Up to 3 decimals.
    cle("EchellePix", TexteReel(float(Arrondir(v.echellePixels, 3)), sep));
    cle("ExtrapolationFoc", v.extrapolationFoc ? QStringLiteral("1") : QStringLiteral("0"));
    cle("UniteEtalon", v.optUnite == 1 ? QStringLiteral("mm") : QStringLiteral("um"));
  }
  // Without a table a second Microscope= and Objectif= may follow; the reader
  // takes the first.
  if (!v.tableAppliquee) {
    if (!v.microMan.isEmpty()) cle("Microscope", v.microMan);
    if (!v.objectifMan.isEmpty()) cle("Objectif", v.objectifMan);
    cle("UniteObj", v.optUniteObj == 1 ? QStringLiteral("mm") : QStringLiteral("x"));
  }
  ligne(QString());

  ligne(QStringLiteral("[TNum]"));
  cle("SecondFormatage", v.imageDejaFormatee ? QStringLiteral("Oui") : QStringLiteral("Non"));
  cle("QualiteJpg", QString());  // completed by the save step
  cle("TraitementNum",
      TexteTraitement(v.traitNiveaux, v.traitPoussieres, v.traitBruit, v.traitDeconvolution));
  ligne(QString());

  ligne(QStringLiteral("[KeyWord]"));
  const std::pair<const char*, const QString*> classification[] = {
      {"Regne", &v.regne},     {"Embranchement", &v.embranchement},
      {"Classe", &v.classe},   {"Ordre", &v.ordre},
      {"Famille", &v.famille}, {"Genre", &v.genre},
      {"Espece", &v.espece},   {"MotClef", &v.motClef}};
  for (const auto& [nom, valeur] : classification)
    if (!valeur->isEmpty()) cle(nom, *valeur);

  // The EXIF and IPTC text of the original camera file, carried unchanged
  // through every later formatting.
  const QString queue = v.commentaireImage.isEmpty() ? QString() : QueueOldExif(v.commentaireImage);
  if (!queue.isEmpty())
    b += kCRLF + queue;
  else
    b += kCRLF + kOldExif + kCRLF + v.exifTexte + kCRLF + v.iptcTexte;
  return b;
}

}  // namespace tg
