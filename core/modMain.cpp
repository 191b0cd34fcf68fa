#include "core/modMain.h"

#include <QDir>
#include <limits>

#include "platform/Dialogues.h"
#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Liste.h"
#include "platform/Nombres.h"
#include "platform/Systeme.h"
#include "platform/Textes.h"

namespace tg {

namespace {

constexpr int NombreObjectifsMax = 30;

// A value of the file that does not fit its variable: the run-time errors
// "type mismatch" (13) and "overflow" (6).
struct ErreurLecture {
  int numero;
  QString texte;
};

long long LireEntier(const QString& valeur, long long min, long long max) {
  double nombre = 0;
  if (!LireNombre(valeur.trimmed(), nombre)) throw ErreurLecture{13, "Incompatibilité de type"};
  const double arrondi = Arrondir(nombre);
  if (arrondi < double(min) || arrondi > double(max))
    throw ErreurLecture{6, "Dépassement de capacité"};
  return VersEntier(arrondi);
}

int16_t Entier16(const QString& v) {
  return int16_t(LireEntier(v, std::numeric_limits<int16_t>::min(),
                            std::numeric_limits<int16_t>::max()));
}
int32_t Entier32(const QString& v) {
  return int32_t(LireEntier(v, std::numeric_limits<int32_t>::min(),
                            std::numeric_limits<int32_t>::max()));
}

// Fonts' booleans are the words "VRAI" and "FAUX"; the other spellings of a
// boolean are accepted as the system's conversion does.
bool Booleen(const QString& v) {
  const QString t = v.trimmed().toUpper();
  if (t == "VRAI" || t == "TRUE") return true;
  if (t == "FAUX" || t == "FALSE") return false;
  double nombre = 0;
  if (LireNombre(t, nombre)) return nombre != 0;
  throw ErreurLecture{13, "Incompatibilité de type"};
}

// "One character" keys keep the first character only.
QString Caractere(const QString& v) { return v.left(1); }

void CreerDossier(const QString& chemin) {
  if (!FolderExists(chemin)) QDir().mkdir(chemin);
}

}  // namespace

QString CheminUserConfig() { return RepApplication() + "UserConfig.ini"; }
QString CheminObjectif() { return RepApplication() + "objectif.dat"; }
QString CheminRecent() { return RepApplication() + "recent.dat"; }

QString TexteErreur(int numero, const QString& texte, const QString& procedure,
                    const QString& module) {
  const QString rapport =
      "Error " + QString::number(numero) + " (" + texte + ") in procedure " + procedure + " of Module " + module;
  // A file access error names the file and the system's reason on a line of its own.
  return numero == 75 ? AvecRaison(rapport) : rapport;
}

void RecupereValeurIni(SessionRecord& s) {
  if (s.DocPath.isEmpty()) s.DocPath = DossierDocuments();
  const QString base = s.DocPath + "Tessellographe";
  const bool documents = FolderExists(s.DocPath);
  if (s.RepTravail.isEmpty() && documents) {
    CreerDossier(base);
    CreerDossier(base + "/ImageTravail");
  }
  if (s.RepEtalon.isEmpty() && documents) {
    CreerDossier(base);
    CreerDossier(base + "/ImageEtalon");
  }

  const QString f = CheminUserConfig();
  auto lire = [&f](const char* section, const char* cle, const QString& defaut) {
    return LireIni(section, cle, f, defaut);
  };
  // A value that does not read gives its key the default, alone: every other
  // key is still read, and the file is not touched.
  QStringList illisibles;
  auto prendre = [&](auto& champ, const char* section, const char* cle, const QString& defaut, auto convertir) {
    const QString valeur = lire(section, cle, defaut);
    try {
      champ = convertir(valeur);
    } catch (const ErreurLecture& e) {
      champ = convertir(defaut);
      illisibles << QStringLiteral("[%1] %2=%3 (%4 ; valeur par défaut : %5)")
                        .arg(QLatin1String(section), QLatin1String(cle), valeur, e.texte.toLower(), defaut);
    }
  };
  s.NumVersion = lire("General", "NumVersion", "");
  s.NomAuteur = lire("General", "NomAuteur", "Votre nom");
  s.NomFichImage = lire("General", "NomFichImage", "forum_");
  prendre(s.NextNumberImage, "General", "NextNumberImage", "1", Entier32);
  s.TitreImageConfig = Caractere(lire("General", "TitreImage", "1"));
  s.ImageAccueil = lire("General", "ImageAccueil", "1");
  prendre(s.MessageBox, "General", "MessageBox", "0", Entier32);
  s.MajAuto = Caractere(lire("General", "MajAuto", "1"));
  s.MethodeRedim = Caractere(lire("General", "MethodeRedim", "0"));
  // Folder defaults are computed from the documents folder at this moment.
  s.RepTravail = lire("Dossier", "RepTravail", base + "/ImageTravail");
  s.RepEtalon = lire("Dossier", "RepEtalon", base + "/ImageEtalon");
  s.RepApPhoto = lire("Dossier", "RepApPhoto", s.DocPath);
  s.ModeOuvrir = Caractere(lire("Dossier", "ModeOuvrir", "0"));
  s.ChoixFormatMesure = lire("FormatImage", "ChoixFormatMesure", "");
  prendre(s.PoidsMax, "FormatImage", "PoidsMax", "250", Entier16);
  s.CartoucheHB = Caractere(lire("FormatImage", "CartoucheHB", "1"));
  prendre(s.ApnLarg, "FormatImage", "ApnLarg", "800", Entier16);
  prendre(s.ApnHaut, "FormatImage", "ApnHaut", "600", Entier16);
  prendre(s.WcLarg, "FormatImage", "WcLarg", "640", Entier16);
  prendre(s.WcHaut, "FormatImage", "WcHaut", "480", Entier16);
  s.FontName1 = lire("FormatImage", "FontName1", "Comic Sans MS");
  prendre(s.FontSize1, "FormatImage", "FontSize1", "10", Entier16);
  prendre(s.FontBold1, "FormatImage", "FontBold1", "VRAI", Booleen);
  prendre(s.FontItalic1, "FormatImage", "FontItalic1", "FAUX", Booleen);
  s.FontName2 = lire("FormatImage", "FontName2", "Arial");
  prendre(s.FontSize2, "FormatImage", "FontSize2", "8", Entier16);
  prendre(s.FontBold2, "FormatImage", "FontBold2", "FAUX", Booleen);
  prendre(s.FontItalic2, "FormatImage", "FontItalic2", "FAUX", Booleen);
  s.PathNav = lire("Navigateur", "PathNav", "Explorer");
  for (int i = 0; i < 4; ++i) s.ApExt[i] = LireIni("Application", "ApExt" + QString::number(i), f, "");
  if (!illisibles.isEmpty())
    Dialogues().Message(QStringLiteral("Configuration"),
                        TexteValeursIllisibles(QDir::toNativeSeparators(f), illisibles), Icone::Exclamation);
}

QString TexteValeursIllisibles(const QString& fichier, const QStringList& lignes) {
  return "Le fichier de configuration « " + fichier + " » contient " +
         (lignes.size() == 1 ? QStringLiteral("une valeur illisible :") : QStringLiteral("des valeurs illisibles :")) +
         "\n" + lignes.join(u'\n') +
         "\n\nLes autres réglages sont lus normalement ; le fichier n'est pas modifié "
         "tant que vous ne changez pas ces réglages dans les options.";
}

bool EcrireObjectifDefaut() {
  QStringList items = {"4", "10", "20", "40", "100"};
  while (items.size() < NombreObjectifsMax) items << QString();
  return EcrireListe(CheminObjectif(), items);
}

void ChargerListeObjectif(IListe& liste) {
  liste.Vider();
  const QString chemin = CheminObjectif();
  if (!FileExists(chemin)) return;
  QStringList items;
  if (!LireListe(chemin, items)) {
    Dialogues().Message(QString(), "Erreur combo liste objectif (module) ...", Icone::Critique);
    return;
  }
  for (int i = 0; i < items.size() && i < NombreObjectifsMax; ++i)
    if (!items[i].isEmpty()) liste.Ajouter(items[i]);
}

}  // namespace tg
