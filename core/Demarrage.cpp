#include "core/Demarrage.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include "core/modMain.h"
#include "platform/Dialogues.h"
#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Systeme.h"
#include "version.h"

namespace tg {

namespace {

QString Titre() { return QLatin1String(TitreProgramme); }

QString AvecSeparateur(const QString& dossier) {
  if (dossier.isEmpty() || dossier.endsWith(u'/')) return dossier;
  return dossier + u'/';
}

QString Assistant(const QString& dossier, const char* nom) {
  return AvecSeparateur(dossier) + QLatin1String(nom);
}

// The parameter form the helpers understand: "/P1=" and a program name.
QString Parametre(const char* nom) { return "/P1=" + QLatin1String(nom); }

// Copies `source` over `cible`: the target is removed first, since a copy
// never overwrites. False leaves the source in place.
bool CopierPar(const QString& source, const QString& cible) {
  if (FileExists(cible) && !QFile::remove(cible)) return false;
  return QFile::copy(source, cible);
}

}  // namespace

QString ChaineVersion() {
  return QStringLiteral("Version %1.%2.%3").arg(VersionMajor).arg(VersionMinor).arg(VersionRevision);
}

QString CheminFichierVersion() { return RepApplication() + QStringLiteral("tessellographe.ver"); }

bool EcrireFichierVersion(const QString& version) {
  const QString chemin = CheminFichierVersion();
  QFile::remove(chemin);
  return EcrireLignes(chemin, {"VER " + version});
}

QString LireFichierVersion(const QString& chemin) {
  QStringList lignes;
  if (!LireLignes(chemin, lignes) || lignes.isEmpty()) return QString();
  const QString premiere = lignes.first();
  if (!premiere.startsWith(u"VER ")) return QString();
  return premiere.mid(4).trimmed();
}

void MettreAJourAssistant(const QString& dossierAssistants) {
  const QString kill = Assistant(dossierAssistants, NomTgKill);
  const QString update = Assistant(dossierAssistants, NomTgUpdate);
  if (!FileExists(kill)) {
    Dialogues().Message(Titre(), QStringLiteral("Fichier \\TG_Kill.exe introuvable !"),
                        Icone::Exclamation);
  } else if (!FileExists(update)) {
    Dialogues().Message(Titre(), QStringLiteral("Fichier \\Tg_Update.exe introuvable !"),
                        Icone::Exclamation);
  } else {
    Systeme().LancerProgramme(kill, {Parametre(NomTgUpdate)});
  }
  const QString nouveau = Assistant(dossierAssistants, NomTgUpdateNouveau);
  if (FileExists(nouveau) && CopierPar(nouveau, update)) {
    QFile::setPermissions(update, QFile::permissions(nouveau));
    QFile::remove(nouveau);
  }
}

QStringList MigrerFichiers(const QString& dossier) {
  QStringList faits;
  const QString rep = AvecSeparateur(dossier);
  for (const Migration& m : Migrations) {
    const QString ancien = rep + QLatin1String(m.ancien);
    if (!FileExists(ancien)) continue;
    if (!CopierPar(ancien, rep + QLatin1String(m.nouveau))) continue;
    QFile::remove(ancien);
    faits << QLatin1String(m.nouveau);
  }
  return faits;
}

QString MotSeparateur(const QString& separateur) {
  return separateur == u"." ? QStringLiteral("le point") : QStringLiteral("la virgule");
}

QString TextePremierLancement(const QString& pays, const QString& separateur) {
  return QStringList{
      "Vous utilisez " + Titre() +
          " pour la première fois ou il s'agit d'une nouvelle installation.",
      QStringLiteral("(Cette fenêtre ne s'affichera plus par la suite)"),
      QStringLiteral("Dans la fenêtre suivante il est conseillé de saisir les champs "
                     "utilisateur du menu Outils/Options, "),
      QStringLiteral("mais vous pouvez aussi le faire plus tard."),
      QStringLiteral("(N'oubliez pas de mettre à jour votre liste d'objectifs !)"),
      QStringLiteral("Infos pour la saisie des champs numériques: "),
      // Without a country (a locale such as C), the sentence stands alone.
      (pays.trimmed().isEmpty() ? QString() : pays + ": ") + "Votre séparateur décimal est " +
          MotSeparateur(separateur)}
      .join(u'\n');
}

bool CreerDossiersTravail(const QString& docPath) {
  if (docPath.isEmpty() || !FolderExists(docPath)) {
    Dialogues().Message(QStringLiteral("Lecteur non trouvé"),
                        QStringLiteral("Création des dossiers de travail par défaut impossible !\n"
                                       "(Vous devrez configurer ces dossiers manuellement dans "
                                       "les options ...)"),
                        Icone::Exclamation);
    return false;
  }
  const QString base = AvecSeparateur(docPath) + QStringLiteral("Tessellographe");
  bool ok = true;
  for (const QString& d : {base, base + "/ImageTravail", base + "/ImageEtalon"})
    if (!FolderExists(d)) ok = QDir().mkdir(d) && ok;
  return ok;
}

void PlacerDossierCourant(const QString& docPath) {
  if (docPath.isEmpty()) return;
  const QString dossier = AvecSeparateur(docPath) + QStringLiteral("Tessellographe");
  if (FolderExists(dossier)) QDir::setCurrent(dossier);
}

int ComparerVersions(const QString& a, const QString& b) {
  // The numbers of the string, whatever word comes before them.
  const auto nombres = [](const QString& v) {
    std::array<long long, 3> n{-1, -1, -1};
    static const QRegularExpression re(QStringLiteral("(\\d+)(?:\\.(\\d+))?(?:\\.(\\d+))?"));
    const auto m = re.match(v);
    if (!m.hasMatch()) return n;
    for (int i = 0; i < 3; ++i) n[size_t(i)] = m.captured(i + 1).isEmpty() ? 0 : m.captured(i + 1).toLongLong();
    return n;
  };
  const auto na = nombres(a), nb = nombres(b);
  for (size_t i = 0; i < 3; ++i) {
    if (na[i] < nb[i]) return -1;
    if (na[i] > nb[i]) return 1;
  }
  return 0;
}

Lancement PreparerConfiguration(SessionRecord& s, const QString& version) {
  const QString fichier = CheminUserConfig();
  if (!FileExists(fichier)) {
    EcrireIni("General", "NumVersion", version, fichier);
    RecupereValeurIni(s);
    s.NumVersion = version;
    return Lancement::Premier;
  }
  RecupereValeurIni(s);
  const bool ancienne = ComparerVersions(s.NumVersion, version) < 0;
  EcrireIni("General", "NumVersion", version, fichier);
  s.NumVersion = version;
  if (!ancienne) return Lancement::Suivant;

  for (const CleMiseAJour& c : ClesMiseAJour)
    EcrireIni(QLatin1String(c.section), QLatin1String(c.cle), QLatin1String(c.valeur), fichier);
  // The record follows the file, so that this session already runs upgraded.
  s.ImageAccueil = QStringLiteral("1");
  s.CartoucheHB = QStringLiteral("1");
  s.FontName2 = QStringLiteral("Arial");
  s.FontSize2 = 8;
  s.FontBold2 = false;
  s.FontItalic2 = false;
  s.MessageBox = 0;
  QFile::remove(CheminRecent());
  for (QString& r : s.ListeRecent) r.clear();
  return Lancement::MiseAJour;
}

CasEcran ClasserEcran(int largeur) {
  if (largeur < 800) return CasEcran::TropPetit;
  if (largeur < 1024) return CasEcran::Reduit;
  return CasEcran::Confortable;
}

QString TexteEcran(CasEcran cas) {
  switch (cas) {
    case CasEcran::TropPetit:
      return QStringLiteral("Votre affichage est plus petit que 800 x 600\n"
                            "Augmentez votre résolution d'écran (l'application va se terminer)");
    case CasEcran::Reduit:
      return QStringLiteral("Votre affichage est plus petit que 1024 x 768\n"
                            "Vous pouvez utiliser l'application mais moins confortablement "
                            "qu'avec une résolution suppérieur ...");
    case CasEcran::Confortable:
      break;
  }
  return QString();
}

CasEcran AppliquerEcran(SessionRecord& s, int largeur) {
  const CasEcran cas = ClasserEcran(largeur);
  s.EcranLargeur = largeur;
  s.EcranTropPetit = cas == CasEcran::TropPetit;
  s.EcranReduit = cas == CasEcran::Reduit;
  s.EcranConfortable = cas == CasEcran::Confortable;
  if (cas == CasEcran::Reduit) {
    EcrireIni("FormatImage", "ChoixFormatMesure", "0", CheminUserConfig());
    s.ChoixFormatMesure = QStringLiteral("0");
  }
  return cas;
}

void NettoyerFichiersTravail(const SessionRecord& s) {
  if (!s.RepTravail.isEmpty()) QFile::remove(AvecSeparateur(s.RepTravail) + "temp.jpg");
  QFile::remove(RepApplication() + QStringLiteral("twain_temp.jpg"));
}

void PlacerDossierPhotos(const SessionRecord& s) {
  if (!s.RepApPhoto.isEmpty() && FolderExists(s.RepApPhoto)) QDir::setCurrent(s.RepApPhoto);
}

bool LancerVerificationMaj(const SessionRecord& s, const QString& dossierAssistants) {
  const QString verif = Assistant(dossierAssistants, NomTgCheckUpdate);
  if (s.MajAuto != u"1" || !FileExists(verif)) return false;
  return Systeme().LancerProgramme(verif, {});
}

bool TerminerAssistants(const QString& dossierAssistants) {
  const QString kill = Assistant(dossierAssistants, NomTgKill);
  if (!FileExists(kill) || !FileExists(Assistant(dossierAssistants, NomTgCheckUpdate)))
    return false;
  return Systeme().LancerProgramme(kill, {Parametre(NomTgCheckUpdate)});
}

}  // namespace tg
