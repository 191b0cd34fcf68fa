#include "cli/SerieFormater.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <atomic>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "cli/Console.h"
#include "core/Enregistrement.h"
#include "core/Session.h"
#include "core/SessionRecord.h"
#include "core/modMain.h"
#include "platform/Ini.h"

namespace tg::cli {

QStringList NomsSerie(const SessionRecord& s, const QStringList& photos, const QString& titre) {
  QStringList noms;
  std::map<QString, int> vus;
  for (int k = 0; k < photos.size(); ++k) {
    if (s.TitreImageConfig != u"1") {
      SessionRecord numero;
      numero.TitreImageConfig = s.TitreImageConfig;
      numero.NomFichImage = s.NomFichImage;
      numero.NextNumberImage = s.NextNumberImage + k;
      noms << NomParDefaut(numero, EnrJPEG);
      continue;
    }
    QString base = TitreNettoye(titre);
    if (base.isEmpty()) base = TitreNettoye(QFileInfo(photos[k]).completeBaseName());
    if (base.isEmpty()) base = QStringLiteral("photo");
    const int n = ++vus[base];
    noms << (n == 1 ? base : base + QStringLiteral("_%1").arg(n)) + ExtensionEnregistrement(EnrJPEG);
  }
  return noms;
}

int FormaterSerie(const QStringList& photos, const QString& dossier, const QStringList& options, int taches) {
  if (!QDir().mkpath(dossier)) {
    Ligne("Le dossier « " + dossier + " » ne peut pas être créé.", stderr);
    return 3;
  }
  SessionRecord s;
  RecupereValeurIni(s);
  int iTitre = options.indexOf(QStringLiteral("--titre"));
  const QString titre = iTitre >= 0 && iTitre + 1 < options.size() ? options[iTitre + 1] : QString();
  const QStringList noms = NomsSerie(s, photos, titre);
  // The numbers are taken at once, so that a second series never reuses them.
  if (s.TitreImageConfig != u"1")
    EcrireIni(QStringLiteral("General"), QStringLiteral("NextNumberImage"),
              QString::number(s.NextNumberImage + photos.size()), CheminUserConfig());

  // Each child keeps its trial files in a folder of its own.
  QTemporaryDir essais(QDir::tempPath() + QStringLiteral("/tessellographe-serie-XXXXXX"));
  if (!essais.isValid()) {
    Ligne(QStringLiteral("Aucun dossier temporaire pour les essais."), stderr);
    return 3;
  }
  const int total = int(photos.size());
  std::atomic<int> suivante{0};
  std::mutex verrou;
  int finies = 0, refusees = 0;
  const QString programme = QCoreApplication::applicationFilePath();
  const auto travailler = [&] {
    for (int k = suivante++; k < total; k = suivante++) {
      const QString cible = QDir(dossier).absoluteFilePath(noms[k]);
      const QString nom = QFileInfo(photos[k]).fileName();
      QString resultat;
      bool refus = false;
      if (QFileInfo::exists(cible)) {
        refus = true;
        resultat = "refusée : le fichier « " + cible + " » existe déjà.";
      } else {
        const QString dossierEssai = essais.filePath(QString::number(k));
        QDir().mkpath(dossierEssai);
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("TESSELLOGRAPHE_SERIE"), dossierEssai);
        p.setProcessEnvironment(env);
        p.start(programme, QStringList{QStringLiteral("formater"), photos[k], QStringLiteral("-o"), cible} + options);
        const bool fini = p.waitForFinished(-1) && p.exitStatus() == QProcess::NormalExit;
        const QString sortie = QString::fromUtf8(p.readAllStandardOutput()).trimmed();
        const QString erreurs = QString::fromUtf8(p.readAllStandardError()).trimmed();
        refus = !fini || p.exitCode() != 0;
        if (refus)
          resultat = "refusée : " + (erreurs.isEmpty() ? QStringLiteral("le traitement s'est arrêté.") : erreurs);
        else
          resultat = sortie.section(u'\n', -1);
      }
      std::lock_guard<std::mutex> v(verrou);
      ++finies;
      if (refus) ++refusees;
      Ligne(QStringLiteral("%1/%2 %3 : %4").arg(finies).arg(total).arg(nom, resultat), refus ? stderr : stdout);
      std::fflush(stdout);
    }
  };
  const int nombre = std::max(1, std::min(taches, total));
  std::vector<std::thread> fils;
  for (int i = 0; i < nombre; ++i) fils.emplace_back(travailler);
  for (std::thread& f : fils) f.join();
  Ligne(QStringLiteral("%1 photo(s) : %2 enregistrée(s), %3 refusée(s), dans %4")
            .arg(total)
            .arg(total - refusees)
            .arg(refusees)
            .arg(QDir(dossier).absolutePath()));
  return refusees > 0 ? 3 : 0;
}

}  // namespace tg::cli
