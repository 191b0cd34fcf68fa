#include "helpers/Commun.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QTextStream>
#include <QUrl>
#include <array>

namespace tg::aide {

namespace {

// Lines of a Windows-1252 text file, whatever its line ends.
QStringList Lignes(const QString& chemin) {
  QFile f(chemin);
  if (!f.open(QIODevice::ReadOnly)) return {};
  QStringDecoder decodeur("windows-1252");
  const QString texte = decodeur.isValid() ? decodeur(f.readAll()) : QString::fromLatin1(f.readAll());
  static const QRegularExpression fin(QStringLiteral("\r\n|\r|\n"));
  return texte.split(fin);
}

}  // namespace

QString RepApplication() {
  QString dossier = qEnvironmentVariable("TESSELLOGRAPHE_HOME");
  if (dossier.isEmpty())
    dossier = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
              QStringLiteral("/Tessellographe");
  dossier = QDir::cleanPath(dossier);
  return dossier.endsWith(u'/') ? dossier : dossier + u'/';
}

QString ParametreP1(const QStringList& arguments) {
  for (const QString& a : arguments) {
    const QString t = a.trimmed();
    if (t.startsWith(u"/P1=", Qt::CaseInsensitive)) return t.mid(4).trimmed();
  }
  return QString();
}

QString VersionDuFichier(const QString& chemin) {
  const QStringList l = Lignes(chemin);
  if (l.isEmpty() || !l.first().startsWith(u"VER ")) return QString();
  return l.first().mid(4).trimmed();
}

int ComparerVersions(const QString& a, const QString& b) {
  const auto nombres = [](const QString& v) {
    std::array<long long, 3> n{-1, -1, -1};
    static const QRegularExpression re(QStringLiteral("(\\d+)(?:\\.(\\d+))?(?:\\.(\\d+))?"));
    const auto m = re.match(v);
    if (!m.hasMatch()) return n;
    for (int i = 0; i < 3; ++i)
      n[size_t(i)] = m.captured(i + 1).isEmpty() ? 0 : m.captured(i + 1).toLongLong();
    return n;
  };
  const auto na = nombres(a), nb = nombres(b);
  for (size_t i = 0; i < 3; ++i) {
    if (na[i] != nb[i]) return na[i] < nb[i] ? -1 : 1;
  }
  return 0;
}

QString SourceMiseAJour() {
  bool section = false;
  for (const QString& ligne : Lignes(RepApplication() + QStringLiteral("UserConfig.ini"))) {
    const QString t = ligne.trimmed();
    if (t.startsWith(u'[')) {
      section = t.compare(u"[MiseAJour]", Qt::CaseInsensitive) == 0;
    } else if (section) {
      const qsizetype egal = t.indexOf(u'=');
      if (egal > 0 && t.left(egal).trimmed().compare(u"Source", Qt::CaseInsensitive) == 0) {
        QString v = t.mid(egal + 1).trimmed();
        if (v.size() >= 2 && v.startsWith(u'"') && v.endsWith(u'"')) v = v.mid(1, v.size() - 2);
        return v;
      }
    }
  }
  return QString();
}

QString CheminSource(const QString& source) {
  if (source.startsWith(u"file:", Qt::CaseInsensitive)) return QUrl(source).toLocalFile();
  if (source.contains(u"://")) return QString();
  return source;
}

void Dire(const QString& texte) {
  QTextStream sortie(stdout);
  sortie << texte << Qt::endl;
}

}  // namespace tg::aide
