// The private profile store, as a small editor of the file's lines: a write
// touches one line (or adds one or two) and leaves every other line, comment
// and blank as it was. Names of sections and keys compare without regard to
// case, as the system's profile functions do.
#include "platform/Ini.h"

#include <QRegularExpression>
#include <QStringList>
#include <optional>

#include "platform/Fichiers.h"

namespace tg {

namespace {

constexpr qsizetype kLongueurMax = 255;  // characters, as the fixed buffer of the profile API

// "[Nom]" gives Nom; a line that is no section header gives nothing.
std::optional<QString> NomSection(const QString& ligne) {
  const QString t = ligne.trimmed();
  if (!t.startsWith(u'[')) return std::nullopt;
  const qsizetype fin = t.lastIndexOf(u']');
  if (fin < 1) return std::nullopt;
  return t.mid(1, fin - 1).trimmed();
}

bool MemeNom(const QString& a, const QString& b) {
  return QString::compare(a, b, Qt::CaseInsensitive) == 0;
}

// The key of a "cle=valeur" line (the whole trimmed line when it has no "=").
QString Cle(const QString& ligne) {
  const qsizetype egal = ligne.indexOf(u'=');
  return (egal < 0 ? ligne : ligne.left(egal)).trimmed();
}

QString CouperAuNul(const QString& s) {
  const qsizetype nul = s.indexOf(QChar(u'\0'));
  return nul < 0 ? s : s.left(nul);
}

// Bounds of a section's body: [debut, fin) in lines; debut is -1 when the
// section is missing. The first of two sections of the same name wins.
struct Bornes {
  qsizetype entete = -1, debut = -1, fin = -1;
};

Bornes TrouverSection(const QStringList& lignes, const QString& section) {
  Bornes b;
  for (qsizetype i = 0; i < lignes.size(); ++i) {
    const std::optional<QString> nom = NomSection(lignes[i]);
    if (!nom) continue;
    if (b.debut >= 0) {
      b.fin = i;
      return b;
    }
    if (MemeNom(*nom, section)) {
      b.entete = i;
      b.debut = i + 1;
    }
  }
  if (b.debut >= 0) b.fin = lignes.size();
  return b;
}

qsizetype TrouverCle(const QStringList& lignes, const Bornes& b, const QString& cle) {
  for (qsizetype i = b.debut; i < b.fin; ++i) {
    if (lignes[i].trimmed().isEmpty()) continue;
    if (MemeNom(Cle(lignes[i]), cle)) return i;
  }
  return -1;
}

QString Limiter(const QString& s) { return CouperAuNul(s).left(kLongueurMax); }

}  // namespace

QString LireIni(const QString& section, const QString& cle, const QString& fichier,
                const QString& defaut) {
  QStringList lignes;
  if (!LireLignes(fichier, lignes)) return Limiter(defaut);
  const Bornes b = TrouverSection(lignes, section);
  if (b.debut < 0) return Limiter(defaut);
  const qsizetype i = TrouverCle(lignes, b, cle);
  if (i < 0) return Limiter(defaut);

  const QString& ligne = lignes[i];
  const qsizetype egal = ligne.indexOf(u'=');
  QString valeur = egal < 0 ? QString() : CouperAuNul(ligne.mid(egal + 1)).trimmed();
  if (valeur.size() >= 2 && valeur.startsWith(u'"') && valeur.endsWith(u'"'))
    valeur = valeur.mid(1, valeur.size() - 2);
  return valeur.left(kLongueurMax);
}

bool EcrireIni(const QString& section, const QString& cle, const QString& valeur,
               const QString& fichier) {
  const QString nomSection = CouperAuNul(section).trimmed();
  const QString nomCle = CouperAuNul(cle).trimmed();
  if (nomSection.isEmpty() || nomCle.isEmpty()) return false;
  // A line break would split the value and could open a false section.
  static const QRegularExpression retour(QStringLiteral("\r\n|\r|\n"));
  const QString texte = CouperAuNul(valeur).replace(retour, QStringLiteral(" "));

  QStringList lignes;
  if (!LireLignes(fichier, lignes) && FileExists(fichier)) return false;  // present but unreadable

  const Bornes b = TrouverSection(lignes, nomSection);
  if (b.debut < 0) {
    lignes << u'[' + nomSection + u']' << nomCle + u'=' + texte;
    return EcrireLignes(fichier, lignes);
  }
  const qsizetype i = TrouverCle(lignes, b, nomCle);
  if (i >= 0) {
    // The key keeps its spelling in the file.
    lignes[i] = Cle(lignes[i]) + u'=' + texte;
  } else {
    // After the section's last non-blank line, before the blanks that
    // separate it from the next one.
    qsizetype apres = b.entete;
    for (qsizetype j = b.debut; j < b.fin; ++j)
      if (!lignes[j].trimmed().isEmpty()) apres = j;
    lignes.insert(apres + 1, nomCle + u'=' + texte);
  }
  return EcrireLignes(fichier, lignes);
}

}  // namespace tg
