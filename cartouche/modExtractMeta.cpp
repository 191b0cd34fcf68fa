#include "cartouche/modExtractMeta.h"

#include <QStringList>
#include <cfloat>
#include <charconv>
#include <cmath>

#include "core/modMain.h"
#include "platform/Dialogues.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"
#include "version.h"

namespace tg {

namespace {

const QString kModule = QStringLiteral("modExtractMeta");
const QString kCRLF = QStringLiteral("\r\n");

// A trapped error of the system's runtime, with its number and description:
// the procedure stops where it is raised and reports it in the standard form.
struct ErreurExecution {
  int numero;
  QString description;
};
const ErreurExecution kTypeIncompatible{13, QStringLiteral("Type mismatch")};
const ErreurExecution kDepassement{6, QStringLiteral("Overflow")};

// Trim of the system: blanks only, tabs stay.
QString SansBlancs(const QString& texte) {
  qsizetype debut = 0, fin = texte.size();
  while (debut < fin && texte[debut] == u' ') ++debut;
  while (fin > debut && texte[fin - 1] == u' ') --fin;
  return texte.mid(debut, fin - debut);
}

// The five keys whose decimal separator follows the reading system.
bool CleNormalisee(const QString& cle) {
  static const QStringList cles = {"ZoomNumerique", "LongueurFocale", "EchellePix", "Objectif",
                                   "ReductionImage"};
  return cles.contains(cle);
}

// A number in C form ("." as separator, nothing else); error 13 when the text
// is not one, 6 when it lies beyond a 32-bit float.
double NombreC(const QString& texte) {
  const QByteArray octets = texte.toLatin1();
  double v = 0;
  const auto [fin, ec] = std::from_chars(octets.constData(), octets.constData() + octets.size(), v);
  if (ec == std::errc::result_out_of_range) throw kDepassement;
  if (octets.isEmpty() || ec != std::errc() || fin != octets.constData() + octets.size() ||
      !std::isfinite(v))
    throw kTypeIncompatible;
  return v;
}

// Conversion of a text to a 32-bit float as the system does it, in the form of
// the locale whose decimal separator is `separateur`: an empty text or the
// other locale's separator is a type mismatch.
float EnReel(const QString& texte, const QString& separateur) {
  QString t = SansBlancs(texte);
  const QString autre = separateur == u"," ? QStringLiteral(".") : QStringLiteral(",");
  if (t.isEmpty() || t.contains(autre)) throw kTypeIncompatible;
  t.replace(separateur, QStringLiteral("."));
  const double v = NombreC(t);
  if (std::fabs(v) > FLT_MAX) throw kDepassement;
  return float(v);
}

// An EXIF rational "n/d" (a plain number is taken as it is); a denominator of
// 0 gives 0, as EXIF writes "0/0" for "not used".
double ValeurFraction(const QString& texte) {
  const QString t = texte.trimmed();
  const qsizetype barre = t.indexOf(u'/');
  if (barre < 0) return NombreC(QString(t).replace(u',', u'.'));
  const double n = NombreC(t.left(barre).trimmed());
  const double d = NombreC(t.mid(barre + 1).trimmed());
  return d == 0 ? 0.0 : n / d;
}

void Signaler(const ErreurExecution& e, const QString& procedure) {
  Dialogues().Message(QString(), TexteErreur(e.numero, e.description, procedure, kModule),
                      Icone::Critique);
}

}  // namespace

QString ExtractComment(const QString& bloc, const QString& cle, const QString& separateurDecimal) {
  if (cle.isEmpty() || bloc.isEmpty()) return {};
  // The bare key, anywhere: not "Key=", not at a line start.
  const qsizetype debut = bloc.indexOf(cle, 0, Qt::CaseInsensitive);
  if (debut < 0) return {};
  // Key, "=", 70 characters of value and CR LF fit the window of Len(key) + 75.
  const qsizetype largeur = cle == u"MotClef" ? 650 : cle.size() + 75;
  const QString fenetre = bloc.mid(debut, largeur);
  const qsizetype finLigne = fenetre.indexOf(kCRLF);
  if (finLigne < 0) return {};  // too long for the window: reads as absent
  const QString ligne = fenetre.left(finLigne);
  const qsizetype egal = ligne.indexOf(u'=');
  if (egal < 0) return {};
  QString valeur = SansBlancs(ligne.mid(egal + 1));
  if (CleNormalisee(cle)) {
    if (separateurDecimal == u",")
      valeur.replace(u'.', u',');
    else if (separateurDecimal == u".")
      valeur.replace(u',', u'.');
  }
  return valeur;
}

QString ExtractComment(const SessionRecord& s, const QString& cle) {
  return ExtractComment(s.CommentaireImage, cle, s.SeparateurDecimal);
}

void VerifierEffacerMetaComment(SessionRecord& s) {
  if (s.CommentaireImage.isEmpty()) return;
  const QString application = ExtractComment(s, QStringLiteral("Application"));
  if (application.isEmpty() || application.left(ProduitBloc.size()) != ProduitBloc) {
    // Dropped, never parsed: with Application emptied as well, the image is
    // not taken for one of ours (ImageDejaFormatee stays false).
    s.CommentaireImage.clear();
    s.Application.clear();
    Dialogues().Message(QLatin1String(TitreProgramme), TexteMetaIncompatible, Icone::Aucune);
    return;
  }
  s.Application = application;
}

QString ValeurExif(const QString& texte, const QString& nom) {
  const QString debut = nom + QStringLiteral(" = ");
  for (const QString& ligne : texte.split(kCRLF))
    if (ligne.startsWith(debut)) return ligne.mid(debut.size());
  return {};
}

void ExtraireMetaExif(SessionRecord& s) {
  const QString dateTime = ValeurExif(s.ExifTexte, QStringLiteral("DateTime"));
  s.Modele = ValeurExif(s.ExifTexte, QStringLiteral("Model"));
  const QString dateOriginale = ValeurExif(s.IptcTexte, QStringLiteral("DateTimeOriginal"));
  s.DateImage = dateOriginale.isEmpty() ? dateTime : dateOriginale;
  s.ApPhotoMeta = s.Modele;
  try {
    const QString focale = ValeurExif(s.IptcTexte, QStringLiteral("FocalLength"));
    s.FocaleAPN = focale.isEmpty() ? 0.0f : float(Arrondir(ValeurFraction(focale), 2));
    const QString zoom = ValeurExif(s.IptcTexte, QStringLiteral("DigitalZoomRatio"));
    s.DigitalZoom = zoom.isEmpty() ? 0.0f : float(Arrondir(ValeurFraction(zoom), 1));
  } catch (const ErreurExecution& e) {
    Signaler(e, QStringLiteral("ExtraireMetaExif"));
  }
}

void ExtraireMetaComment(SessionRecord& s) {
  const auto lire = [&s](const char* cle) { return ExtractComment(s, QLatin1String(cle)); };
  try {
    if (!s.CommentaireImage.isEmpty()) {
      s.Application = lire("Application");
      s.TitreImage = lire("TitreImage");
      s.NomAuteurImage = lire("NomAuteur");
      s.Provenance = lire("Provenance");
      s.Coloration = lire("Coloration");
      s.Preparation = lire("Preparation");
      s.Eclairage = lire("Eclairage");
      s.Modele = lire("ApPhoto");
      // The camera's date wins over the block's "now".
      if (s.DateImage.isEmpty()) s.DateImage = lire("DateImage");
      s.DateObservation = lire("DateObservation");

      // Position 1 only: "Niveaux/Bruit/" gives back Niveaux alone.
      const QString traitement = lire("TraitementNum");
      if (traitement.startsWith(QStringLiteral("Niveaux"))) s.TraitNiveaux = true;
      if (traitement.startsWith(QStringLiteral("Poussières"))) s.TraitPoussieres = true;
      if (traitement.startsWith(QStringLiteral("Bruit"))) s.TraitBruit = true;
      if (traitement.startsWith(QStringLiteral("Déconvolution"))) s.TraitDeconvolution = true;

      s.FocaleAPN = EnReel(lire("LongueurFocale"), s.SeparateurDecimal);
      s.DigitalZoom = EnReel(lire("ZoomNumerique"), s.SeparateurDecimal);
      const QString reduction = lire("ReductionImage");
      s.ReductionImage = reduction.isEmpty() ? 0.0f : EnReel(reduction, s.SeparateurDecimal);
      s.LargeurOrigineMeta = lire("LargeurOrigine");
      // With both Microscope= lines in the block, the first one comes back.
      s.Microscope = lire("Microscope");
      s.Objectif = lire("Objectif");
      s.EchelleMic = lire("EchelleMic");  // not normalised: kept as written
      s.EchellePix = lire("EchellePix");
      s.UniteEtalon = lire("UniteEtalon");
      s.UniteObj = lire("UniteObj");
      const QString extrapolation = lire("ExtrapolationFoc");
      if (!extrapolation.isEmpty()) {
        double v = 0;
        s.ExtrapolationFoc = LireNombre(extrapolation, v) && v == 1;
      }
    }

    // Block or none: without a block these read as empty.
    s.MotClef = lire("MotClef");
    s.Regne = lire("Regne");
    s.Embranchement = lire("Embranchement");
    s.Classe = lire("Classe");
    s.Ordre = lire("Ordre");
    s.Famille = lire("Famille");
    s.Genre = lire("Genre");
    s.Espece = lire("Espece");
    // Decided for each file: a block of ours marks this picture, and this one only.
    s.ImageDejaFormatee = !s.Application.isEmpty();
    if (s.ImageDejaFormatee) {
      s.MicroscopeMeta = lire("Microscope");
      s.ApPhotoMeta = lire("ApPhoto");
      s.ObjectifMeta = lire("Objectif");
    }
  } catch (const ErreurExecution& e) {
    Signaler(e, QStringLiteral("ExtraireMetaComment"));
  }
}

void LireMetadonneesImage(SessionRecord& s) {
  VerifierEffacerMetaComment(s);
  ExtraireMetaExif(s);
  ExtraireMetaComment(s);
}

}  // namespace tg
