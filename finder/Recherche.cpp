#include "finder/Recherche.h"

#include <QDir>
#include <QFileInfo>

#include "platform/Nombres.h"

namespace tg {

QString DossierAvecSeparateur(const QString& dossier) {
  if (dossier.isEmpty() || dossier.endsWith(u'/')) return dossier;
  return dossier + u'/';
}

QRegularExpression MotifRecherche(const QString& filtre, const QString& extension) {
  QString motif;
  for (const QChar c : filtre + extension) {
    if (c == u'*') motif += QStringLiteral(".*");
    else if (c == u'?') motif += u'.';
    else motif += QRegularExpression::escape(QString(c));
  }
  return QRegularExpression(QRegularExpression::anchoredPattern(motif), QRegularExpression::CaseInsensitiveOption);
}

void ParcourirDossier(const QString& dossier, const QRegularExpression& motif, bool sousDossiers,
                      const std::atomic<bool>& arret, ResultatParcours& r, const std::function<void()>& passe) {
  if (arret) {
    r.interrompu = true;
    return;
  }
  QDir d(dossier);
  // Unsorted: the order of the file system, "." and ".." included as the system lists them.
  const QStringList entrees = d.entryList(QDir::AllEntries | QDir::Hidden | QDir::System, QDir::Unsorted);
  if (passe) passe();
  for (const QString& nom : entrees) {
    if (arret) {
      r.interrompu = true;
      return;
    }
    if (!motif.match(nom).hasMatch()) continue;
    ++r.compte;
    const QString n = nom.trimmed();
    if (n == u"." || n == u"..") continue;
    r.chemins << dossier + n;
    r.noms << n;
  }
  if (!sousDossiers) return;
  const QStringList sous = d.entryList(QDir::Dirs | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Unsorted);
  if (passe) passe();
  for (const QString& nom : sous) {
    if (arret) {
      r.interrompu = true;
      return;
    }
    if (QFileInfo(dossier + nom).isSymLink()) continue;
    ParcourirDossier(dossier + nom + u'/', motif, true, arret, r, passe);
    if (r.interrompu) return;
  }
}

QString TexteCompte(int compte, bool interrompu) {
  QString t = QStringLiteral("%1 fichiers trouvés").arg(compte);
  if (interrompu) t += QStringLiteral("\nProcessus interrompu !");
  return t;
}

QStringList LignesInfos(const QString& nom, const InfosImage& i, qint64 octets) {
  return {QStringLiteral("Image sélectionnée = ") + nom,
          QStringLiteral("%1 x %2").arg(i.largeur).arg(i.hauteur),
          QStringLiteral("Poids = %1 Ko  (%2 oct.)").arg(VersEntier(double(octets) / 1024.0)).arg(octets),
          QStringLiteral("Color Depth = %1").arg(i.bpp),
          QStringLiteral("Pitch = %1").arg(i.pitch),
          QStringLiteral("Colors Used = %1").arg(i.couleursUtilisees),
          QStringLiteral("Dots Per Meter X = %1").arg(i.dpmX),
          QStringLiteral("Dots Per Meter Y = %1").arg(i.dpmY),
          QStringLiteral("Pointer To Bits = 0")};
}

}  // namespace tg
