#include "platform/Textes.h"

#include <QLocale>
#include <QRegularExpression>
#include <cmath>

#include "platform/Dialogues.h"

namespace tg {

namespace {

constexpr int kPoint = 46;
constexpr int kVirgule = 44;

const QString kTitreNumerique = QStringLiteral("Erreur sur les champs numériques");

// The letters replaced and their replacements, place for place.
const QString kAccentues =
    QStringLiteral("ÀÁÂÃÄÅàáâãäåÒÓÔÕÖØòóôõöøÈÉÊËèéêëÌÍÎÏìíîïÙÚÛÜùúûüÿÑñÇç");
const QString kSansAccent =
    QStringLiteral("AAAAAAaaaaaaOOOOOOooooooEEEEeeeeIIIIiiiiUUUUuuuuyNnCc");

// Characters that may not stay in a name that goes into a file.
const QString kSpeciaux = QStringLiteral("+\\/*%&()=?¦@#|.;:,<>$£![]~'");

}  // namespace

void ReplaceNationalSep(int& touche, const QString& separateurDecimal) {
  if (separateurDecimal == u"," && touche == kPoint)
    touche = kVirgule;
  else if (separateurDecimal == u"." && touche == kVirgule)
    touche = kPoint;
}

QString EnleverAccents(const QString& texte) {
  QString r = texte;
  for (QChar& c : r) {
    const qsizetype i = kAccentues.indexOf(c);
    if (i >= 0) c = kSansAccent.at(i);
  }
  return r;
}

QString EnleverSpeciaux(const QString& texte) {
  QString r;
  r.reserve(texte.size());
  for (const QChar c : texte)
    if (!kSpeciaux.contains(c)) r += c;
  return r;
}

QString EnleverGuillemets(const QString& texte) {
  return texte.trimmed().remove(u'"');
}

QString EnleverEgal(const QString& texte) {
  return texte.trimmed().replace(u'=', u' ');
}

QString EnleverRetours(const QString& texte) {
  static const QRegularExpression retour(QStringLiteral("\r\n|\r|\n"));
  return texte.trimmed().replace(retour, QStringLiteral(" "));
}

bool LireNombre(const QString& texte, double& valeur) {
  QString t = texte.trimmed();
  t.replace(u',', u'.');
  bool ok = false;
  const double v = QLocale::c().toDouble(t, &ok);
  if (!ok || !std::isfinite(v)) return false;
  valeur = v;
  return true;
}

bool ControleNonNul(const QString& valeur) {
  double v = 0;
  if (LireNombre(valeur, v) && v > 0) return true;
  Dialogues().Message(kTitreNumerique, QStringLiteral("Chiffres uniquement et non nul !"),
                      Icone::Exclamation);
  return false;
}

bool ControlePositif(const QString& valeur) {
  double v = 0;
  if (LireNombre(valeur, v) && v >= 0) return true;
  Dialogues().Message(kTitreNumerique, QStringLiteral("Chiffres uniquement !"),
                      Icone::Exclamation);
  return false;
}

QString SeparateurDecimalSysteme() {
  // The second character of "1.1" as the user's locale writes it.
  return QLocale::system().toString(1.1).mid(1, 1);
}

QString PaysUtilisateurSysteme() {
  // A locale without a country (fr, C.UTF-8) names its language, or nothing.
  const QLocale l = QLocale::system();
  return l.territory() != QLocale::AnyTerritory ? l.nativeTerritoryName() : l.nativeLanguageName();
}

}  // namespace tg
