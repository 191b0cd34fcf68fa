// tessellographe-cli tables lister [--json]
// tessellographe-cli tables ajouter --modele M --largpix N --micro T --config T
//                                   --obj X --pix N --mic N [--focale F]
// The measurement tables of the program folder ($TESSELLOGRAPHE_HOME), listed
// as the program shows them, or one appended through the checks of the
// creation dialog.
// tessellographe-cli tables extrapoler --table N --focale F [--json]
// The scale at focal length F from the focal series of table N.
// tessellographe-cli tables etalonner PHOTO --division MICRONS [--zone X,Y,L,H]
//                                     [--json] [--ajouter --micro T --config T
//                                     --obj X [--modele M] [--largpix N] [--focale F]]
// The ruling of a stage micrometer found on its photo; with --ajouter, the
// table made from it as the calibration window makes it.
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <cmath>
#include <cstdio>
#include <map>
#include <optional>

#include "cartouche/modExtractMeta.h"
#include "cli/Commandes.h"
#include "cli/Console.h"
#include "core/Chargement.h"
#include "core/modMain.h"
#include "core/SessionRecord.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/ExtrapolationFocale.h"
#include "measure/Reglette.h"
#include "measure/SaisieTable.h"
#include "measure/TableMesure.h"
#include "measure/modOpTableMesure.h"
#include "platform/Fichiers.h"
#include "platform/Liste.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"

namespace tg::cli {

namespace {

const char* const kUsage =
    "tables lister [--json] | tables ajouter --modele M --largpix N --micro T --config T "
    "--obj X --pix N --mic N [--focale F] | tables extrapoler --table N --focale F [--json] | "
    "tables etalonner PHOTO --division MICRONS [--zone X,Y,L,H] [--json] "
    "[--ajouter --micro T --config T --obj X [--modele M] [--largpix N] [--focale F]]";

int Lister(const QStringList& options) {
  const bool json = options.contains(QStringLiteral("--json"));
  if (options.size() > (json ? 1 : 0)) {
    Ligne(QStringLiteral("Usage : tessellographe-cli ") + QString::fromUtf8(kUsage), stderr);
    return 2;
  }
  const QString separateur = SeparateurDecimalSysteme();
  if (!json) {
    ListeSimple combo;
    RemplirComboTable(combo, separateur);
    for (int i = 1; i < combo.Nombre(); ++i) Ligne(combo.Item(i), stdout);
    return 0;
  }
  QJsonArray tables;
  if (FileExists(CheminTableMesure())) {
    FichierMesure f;
    if (!f.Ouvrir()) {
      Ligne(TexteErreur(f.Erreur().numero, f.Erreur().texte, "tables", "tessellographe-cli"),
             stderr);
      return 3;
    }
    const int nbEnreg = f.LireEntete();
    for (int i = 2; i <= nbEnreg; ++i) {
      if (!f.LireEnr(i)) {
        Ligne(TexteErreur(f.Erreur().numero, f.Erreur().texte, "tables", "tessellographe-cli"),
               stderr);
        return 3;
      }
      const EnrMesure& t = TableMesure();
      tables.append(QJsonObject{{"numero", i - 1},
                                {"texte", TexteTable(i - 1, t, separateur)},
                                {"Modele", t.Modele},
                                {"LargPix", t.LargPix},
                                {"Micro", t.Micro},
                                {"Config", t.Config},
                                {"Obj", double(t.Obj)},
                                {"Pix", t.Pix},
                                {"Mic", t.Mic},
                                {"Focale", double(t.Focale)}});
    }
  }
  Ligne(QString::fromUtf8(QJsonDocument(tables).toJson(QJsonDocument::Indented)).trimmed(),
         stdout);
  return 0;
}

// The table of `champs` checked as the creation dialog checks it, then added
// to the store. 0 with its number in `numero`, else 3 after saying why.
int AjouterChamps(ChampsTable& champs, bool zoom, const QString& sep, EnrMesure& enr, int& numero) {
  if (const auto refus = ValiderSaisie(champs, ModeSaisie::Creation, zoom, sep, enr)) {
    Ligne(refus->titre.trimmed() + QStringLiteral(" : ") + refus->texte, stderr);
    return 3;
  }
  FichierMesure f;
  int nbEnreg = 0;
  if (f.Ouvrir()) nbEnreg = f.LireEntete();
  if (!f.EstOuvert() || !AjouterTable(f, nbEnreg, enr)) {
    Ligne(QStringLiteral("Erreur non déterminée ...\n") +
              TexteErreur(f.Erreur().numero, f.Erreur().texte, "tables", "tessellographe-cli"),
          stderr);
    return 3;
  }
  numero = nbEnreg - 1;
  return 0;
}

int Ajouter(const QStringList& options) {
  static const std::map<QString, int> kChamps = {{"--modele", 0}, {"--largpix", 1}, {"--micro", 2},
                                                 {"--config", 3}, {"--obj", 4},     {"--pix", 5},
                                                 {"--mic", 6},    {"--focale", 7}};
  ChampsTable champs;
  bool zoom = false;
  for (qsizetype i = 0; i < options.size(); i += 2) {
    const auto it = kChamps.find(options[i]);
    if (it == kChamps.end() || i + 1 >= options.size()) {
      Ligne(QStringLiteral("Usage : tessellographe-cli ") + QString::fromUtf8(kUsage), stderr);
      return 2;
    }
    champs[size_t(it->second)] = options[i + 1];
    if (it->second == 7) zoom = true;
  }
  EnrMesure enr;
  int numero = 0;
  if (const int code = AjouterChamps(champs, zoom, SeparateurDecimalSysteme(), enr, numero)) return code;
  Ligne(QStringLiteral("OK, cette configuration à été ajoutée !"), stdout);
  Ligne(TexteTable(numero, enr, SeparateurDecimalSysteme()), stdout);
  return 0;
}

int Extrapoler(const QStringList& options) {
  bool json = false, okTable = false;
  int table = 0;
  double focale = -1;
  for (qsizetype i = 0; i < options.size(); ++i) {
    const QString& o = options[i];
    if (o == u"--json") {
      json = true;
    } else if (o == u"--table" && i + 1 < options.size()) {
      table = options[++i].toInt(&okTable);
    } else if (o == u"--focale" && i + 1 < options.size()) {
      if (!LireNombre(options[++i], focale)) focale = -1;
    } else {
      okTable = false;
      break;
    }
  }
  if (!okTable || table < 1 || !(focale > 0)) {
    Ligne(QStringLiteral("Usage : tessellographe-cli ") + QString::fromUtf8(kUsage), stderr);
    return 2;
  }
  SessionRecord s;
  s.SeparateurDecimal = SeparateurDecimalSysteme();
  s.FocaleAPN = float(focale);
  FichierMesure f;
  const int nbEnreg = f.Ouvrir() ? f.LireEntete() : 0;
  f.Fermer();
  if (table >= nbEnreg) {
    Ligne(QStringLiteral("Table n° %1 introuvable (%2 table(s))").arg(table).arg(std::max(0, nbEnreg - 1)), stderr);
    return 3;
  }
  bool doublons = false;
  const SerieFocale serie = SerieDeLaTable(table, s, false, &doublons);
  if (doublons) Ligne(QStringLiteral("Doublons supprimés !"), stderr);
  const Extrapolation r = CalculerExtrapolation(serie, s.FocaleAPN, s.SeparateurDecimal);
  if (!r.calcule) {
    Ligne(r.refus.isEmpty() ? QStringLiteral("Pas de résultat : une table de la série est introuvable.") : r.refus,
          stderr);
    return 3;
  }
  bool alerte = false;
  EchelleDeviations(r.deviations, alerte);
  if (alerte) Ligne(kAlerteDeviation, stderr);
  if (json) {
    QJsonArray lignes;
    for (int i = 0; i < serie.Nombre(); ++i) {
      double fo = 0, d = 0;
      LireNombre(serie.focales[i], fo);
      LireNombre(r.deviations.value(i), d);
      lignes.append(QJsonObject{{"table", serie.numeros[i].toInt()}, {"focale", fo}, {"deviation", d}});
    }
    const QJsonObject o{{"serie", lignes},
                        {"Coeff", double(r.coeff)},
                        {"PixPour100", r.pixPour100},
                        {"MillePix", r.millePix},
                        {"focale", focale}};
    Ligne(QString::fromUtf8(QJsonDocument(o).toJson(QJsonDocument::Indented)).trimmed(), stdout);
    return 0;
  }
  for (int i = 0; i < serie.Nombre(); ++i)
    Ligne(QStringLiteral("Table %1 : F = %2 mm, déviation %3 %").arg(serie.numeros[i], serie.focales[i],
                                                                   r.deviations.value(i)),
          stdout);
  Ligne(QStringLiteral("Coeff=") + TexteReel(r.coeff, s.SeparateurDecimal), stdout);
  Ligne(QStringLiteral("MillePix=%1").arg(r.millePix), stdout);
  Ligne(QStringLiteral("PixPour100=%1").arg(r.pixPour100), stdout);
  Ligne(TexteEchelleExtrapolee(s.FocaleAPN, r.pixPour100, s.SeparateurDecimal), stdout);
  return 0;
}

int Usage() {
  Ligne(QStringLiteral("Usage : tessellographe-cli ") + QString::fromUtf8(kUsage), stderr);
  return 2;
}

// The ruling found on PHOTO, a table made from it with --ajouter. The table's
// fields not given are the photo's, as the calibration window fills them:
// its width, the camera's EXIF model, its focal length when above 0.
int Etalonner(const QStringList& options) {
  QString photo, division, zone;
  bool json = false, ajouter = false;
  std::map<int, QString> donnes;
  static const std::map<QString, int> kChamps = {{"--modele", 0}, {"--largpix", 1}, {"--micro", 2},
                                                 {"--config", 3}, {"--obj", 4},     {"--focale", 7}};
  for (qsizetype i = 0; i < options.size(); ++i) {
    const QString& o = options[i];
    if (o == u"--json") {
      json = true;
    } else if (o == u"--ajouter") {
      ajouter = true;
    } else if (o == u"--division" && i + 1 < options.size()) {
      division = options[++i];
    } else if (o == u"--zone" && i + 1 < options.size()) {
      zone = options[++i];
    } else if (const auto it = kChamps.find(o); it != kChamps.end() && i + 1 < options.size()) {
      donnes[it->second] = options[++i];
    } else if (!o.startsWith(u"--") && photo.isEmpty()) {
      photo = o;
    } else {
      return Usage();
    }
  }
  if (photo.isEmpty() || division.isEmpty() || (!donnes.empty() && !ajouter)) return Usage();
  std::optional<ZoneReglette> rectangle;
  if (!zone.isEmpty()) {
    const QStringList n = zone.split(u',');
    bool ok = n.size() == 4;
    int v[4] = {};
    for (int k = 0; ok && k < 4; ++k) v[k] = n[k].trimmed().toInt(&ok);
    if (!ok) return Usage();
    rectangle = ZoneReglette{v[0], v[1], v[2], v[3]};
  }
  const std::optional<double> micronsDivision = LireDivision(division);
  if (!micronsDivision) {
    Ligne(TexteDivisionRefusee, stderr);
    return 3;
  }

  SessionRecord s;
  s.SeparateurDecimal = SeparateurDecimalSysteme();
  cAdvancedImagery ai;
  if (!ChargerBitmap(s, ai, photo)) {
    Ligne(ai.Error_GetLast(), stderr);
    return 3;
  }
  for (const QString& m : RemplirSession(s, ai, photo)) Ligne(m, stderr);
  LireMetadonneesImage(s);
  QImage image;
  const bool converti = ai.Convert_ImageToPicture(s.ImageCourante, image);
  ai.IO_DestroyBitmap(s.ImageCourante);
  if (!converti) {
    Ligne(QStringLiteral("Error - ") + ai.Error_GetLast(), stderr);
    return 3;
  }
  const VuePixels vue{image.constBits(), image.width(), image.height(), image.bytesPerLine(),
                      FormatPixels::BGRA32};
  const ResultatReglette resultat = TrouverReglette(vue, rectangle);
  if (!resultat.reglette) {
    Ligne(resultat.refus, stderr);
    return 3;
  }
  const Reglette& r = *resultat.reglette;
  const QString sep = s.SeparateurDecimal;

  int numero = 0;
  EnrMesure enr;
  if (ajouter) {
    const LongueurTable longueur = LongueurPourTable(r, *micronsDivision);
    ChampsTable champs;
    champs[0] = s.Modele;
    champs[1] = QString::number(image.width());
    champs[5] = QString::number(longueur.pixels);
    champs[6] = QString::number(longueur.microns);
    if (s.FocaleAPN > 0) champs[7] = TexteReel(s.FocaleAPN, sep);
    for (const auto& [k, v] : donnes) champs[size_t(k)] = v;
    const bool zoom = !champs[7].isEmpty();
    if (const int code = AjouterChamps(champs, zoom, sep, enr, numero)) return code;
  }

  if (json) {
    QJsonObject o{{"periode", r.periode},
                  {"incertitude", r.incertitude},
                  {"angle", r.angle},
                  {"graduations", int(r.graduations.size())},
                  {"divisions", r.divisions},
                  {"division", *micronsDivision},
                  {"PixPour100", PixelsPour100(r, *micronsDivision)},
                  {"IncertitudePour100", IncertitudePour100(r, *micronsDivision)},
                  {"confiance", r.confiance}};
    if (ajouter) {
      o.insert("table", numero);
      o.insert("Pix", enr.Pix);
      o.insert("Mic", enr.Mic);
    }
    Ligne(QString::fromUtf8(QJsonDocument(o).toJson(QJsonDocument::Indented)).trimmed(), stdout);
    return 0;
  }
  auto nombre = [&](double v, int decimales) {
    const double p = std::pow(10.0, decimales);
    return QString::number(std::round(v * p) / p + 0.0, 'f', decimales).replace(u'.', sep);
  };
  const QStringList periode = TexteMesure(r.periode, r.incertitude, sep).split(u' ');
  Ligne(QStringLiteral("Période : %1 pixels %2").arg(periode.value(0), periode.mid(1).join(u' ')), stdout);
  Ligne(QStringLiteral("Direction : %1°").arg(nombre(r.angle, 2)), stdout);
  Ligne(QStringLiteral("Graduations : %1 (%2 divisions de %3 µm)")
            .arg(r.graduations.size())
            .arg(r.divisions)
            .arg(TexteReel(*micronsDivision, sep)),
        stdout);
  Ligne(TexteReglette(r, *micronsDivision, sep), stdout);
  Ligne(QStringLiteral("Confiance : %1").arg(nombre(r.confiance, 2)), stdout);
  if (ajouter) {
    Ligne(QStringLiteral("OK, cette configuration à été ajoutée !"), stdout);
    Ligne(TexteTable(numero, enr, sep), stdout);
  }
  return 0;
}

int Tables(const QStringList& arguments) {
  DialoguesConsole dialogues(true);
  const QString action = arguments.value(0);
  if (action == u"lister") return Lister(arguments.mid(1));
  if (action == u"ajouter") return Ajouter(arguments.mid(1));
  if (action == u"extrapoler") return Extrapoler(arguments.mid(1));
  if (action == u"etalonner") return Etalonner(arguments.mid(1));
  Ligne(QStringLiteral("Usage : tessellographe-cli ") + QString::fromUtf8(kUsage), stderr);
  return 2;
}

const Enregistrement kTables(
    "tables", kUsage,
    {"Les tables de mesure du dossier du programme ($TESSELLOGRAPHE_HOME, sinon "
     "~/.local/share/Tessellographe) : les lister, en ajouter une, donner l'échelle d'une focale par "
     "la série de focales d'une table, ou trouver la réglette d'un micromètre objectif sur sa photo et en "
     "faire une table.",
     {{"lister [--json]", "une table par ligne, ou en JSON"},
      {"ajouter --modele M --largpix N --micro T --config T --obj X --pix N --mic N [--focale F]",
       "ajoute une table : appareil M photographiant sur N pixels de large, microscope T en configuration T, "
       "objectif X, N pixels pour N microns, focale F en mm"},
      {"extrapoler --table N --focale F [--json]",
       "l'échelle à la focale F (mm) tirée de la série de focales de la table N"},
      {"etalonner PHOTO --division MICRONS [--zone X,Y,L,H] [--json]",
       "trouve la réglette du micromètre sur la photo (ou dans le rectangle X,Y,L,H, en pixels) et donne "
       "sa période en pixels, sa direction en degrés, le nombre de graduations mesurées, les pixels pour "
       "100 µm avec leur incertitude et la confiance ; MICRONS est la valeur d'une division (10, 5, 2, 1, "
       "100 ...)"},
      {"etalonner ... --ajouter --micro T --config T --obj X [--modele M] [--largpix N] [--focale F]",
       "ajoute aussi la table qui en résulte, comme tables ajouter ; le modèle, la largeur et la focale "
       "sont ceux de la photo quand ils ne sont pas donnés"}}},
    Tables);

}  // namespace

}  // namespace tg::cli
