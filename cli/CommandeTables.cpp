// tessellographe-cli tables lister [--json]
// tessellographe-cli tables ajouter --modele M --largpix N --micro T --config T
//                                   --obj X --pix N --mic N [--focale F]
// The measurement tables of the program folder ($TESSELLOGRAPHE_HOME), listed
// as the program shows them, or one appended through the checks of the
// creation dialog.
// tessellographe-cli tables extrapoler --table N --focale F [--json]
// The scale at focal length F from the focal series of table N.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <cstdio>
#include <map>

#include "cli/Commandes.h"
#include "cli/Console.h"
#include "core/modMain.h"
#include "core/SessionRecord.h"
#include "measure/ExtrapolationFocale.h"
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
    "--obj X --pix N --mic N [--focale F] | tables extrapoler --table N --focale F [--json]";

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
  if (const auto refus =
          ValiderSaisie(champs, ModeSaisie::Creation, zoom, SeparateurDecimalSysteme(), enr)) {
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
  Ligne(QStringLiteral("OK, cette configuration à été ajoutée !"), stdout);
  Ligne(TexteTable(nbEnreg - 1, enr, SeparateurDecimalSysteme()), stdout);
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

int Tables(const QStringList& arguments) {
  DialoguesConsole dialogues(true);
  const QString action = arguments.value(0);
  if (action == u"lister") return Lister(arguments.mid(1));
  if (action == u"ajouter") return Ajouter(arguments.mid(1));
  if (action == u"extrapoler") return Extrapoler(arguments.mid(1));
  Ligne(QStringLiteral("Usage : tessellographe-cli ") + QString::fromUtf8(kUsage), stderr);
  return 2;
}

const Enregistrement kTables(
    "tables", kUsage,
    {"Les tables de mesure du dossier du programme ($TESSELLOGRAPHE_HOME, sinon "
     "~/.local/share/Tessellographe) : les lister, en ajouter une, ou donner l'échelle d'une focale par "
     "la série de focales d'une table.",
     {{"lister [--json]", "une table par ligne, ou en JSON"},
      {"ajouter --modele M --largpix N --micro T --config T --obj X --pix N --mic N [--focale F]",
       "ajoute une table : appareil M photographiant sur N pixels de large, microscope T en configuration T, "
       "objectif X, N pixels pour N microns, focale F en mm"},
      {"extrapoler --table N --focale F [--json]",
       "l'échelle à la focale F (mm) tirée de la série de focales de la table N"}}},
    Tables);

}  // namespace

}  // namespace tg::cli
