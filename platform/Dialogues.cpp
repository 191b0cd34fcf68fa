// The dialogue seam in use, and the filter and colour conversions of the
// dialogues.
#include "platform/Dialogues.h"

#include <QStringList>
#include <cstdio>

#include "platform/DialoguesSansFenetre.h"

namespace tg {

namespace {

// Without windows: each message on standard error.
class DialoguesErreurStandard : public ReponsesSansFenetre {
  void Noter(const QString& titre, const QString& texte) override {
    std::fprintf(stderr, "%s : %s\n", qUtf8Printable(titre), qUtf8Printable(texte));
  }
};

IDialogues* g_installes = nullptr;
IDialogues* g_parDefaut = nullptr;

}  // namespace

QString SuffixeFiltre(const QString& filtre) {
  // "Jpeg (*.jpg)|*.jpg": the first pattern after the first "|".
  const QStringList parts = filtre.split(u'|');
  if (parts.size() < 2) return {};
  const QString motif = parts[1].section(u';', 0, 0).trimmed();
  const QString suffixe = motif.startsWith(QStringLiteral("*.")) ? motif.mid(2) : QString();
  if (suffixe.contains(u'*') || suffixe.contains(u'?')) return {};
  return suffixe;
}

QString FiltreQt(const QString& filtre) {
  const QStringList parts = filtre.split(u'|');
  QStringList filtres;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString libelle = parts[i].trimmed();
    // The label often repeats its patterns in brackets; Qt reads the last
    // brackets as the patterns, so they are replaced by the real ones.
    if (libelle.endsWith(u')')) {
      const qsizetype ouvre = libelle.lastIndexOf(u'(');
      if (ouvre >= 0) libelle = libelle.left(ouvre).trimmed();
    }
    QStringList motifs;
    for (const QString& m : parts[i + 1].split(u';', Qt::SkipEmptyParts)) {
      const QString t = m.trimmed();
      if (t.isEmpty()) continue;
      motifs << (t == u"*.*" ? QStringLiteral("*") : t);
    }
    if (motifs.isEmpty()) motifs << QStringLiteral("*");
    filtres << (libelle.isEmpty() ? QString() : libelle + u' ') + u'(' + motifs.join(u' ') + u')';
  }
  return filtres.join(QStringLiteral(";;"));
}

QColor VersQColor(int bgr) {
  if (bgr < 0) return {};
  return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
}

int DepuisQColor(const QColor& couleur) {
  if (!couleur.isValid()) return -1;
  return couleur.red() | (couleur.green() << 8) | (couleur.blue() << 16);
}

IDialogues& Dialogues() {
  static DialoguesErreurStandard sansFenetre;
  if (g_installes) return *g_installes;
  return g_parDefaut ? *g_parDefaut : sansFenetre;
}

void DefinirDialoguesParDefaut(IDialogues* d) { g_parDefaut = d; }

void InstallerDialogues(IDialogues* d) { g_installes = d; }

}  // namespace tg
