// formater PHOTO -o SORTIE.jpg [options]: the main road without a display.
// The picture goes through the same steps and the same cartouche form as in
// the windows (the form's model, without its window): load, ControleImage,
// resize, cartouche, final picture, trial save, copy.
#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QThread>
#include <array>
#include <map>
#include <optional>

#include "adjust/Recadrage.h"
#include "cartouche/FormCartouche.h"
#include "cartouche/ModeleCartouche.h"
#include "cartouche/modExtractMeta.h"
#include "cli/Commandes.h"
#include "cli/Console.h"
#include "cli/SerieFormater.h"
#include "core/Chargement.h"
#include "core/Enregistrement.h"
#include "core/Formats.h"
#include "core/Session.h"
#include "core/modMain.h"
#include "measure/ExtrapolationFocale.h"
#include "measure/TableMesure.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"
#include "platform/Fichiers.h"

namespace tg::cli {
namespace {

const char* const kUsage =
    "formater PHOTO -o SORTIE.jpg | formater PHOTO... -d DOSSIER [--taches N] [--format 0-4] [--filtre 1-4] [--cartouche sous|sur] "
    "[--titre T] [--auteur T] [--eclairage T] [--provenance T] [--preparation T] "
    "[--coloration T] [--date JJ/MM/AAAA] [--table N --objectif X | --pix P --mic M "
    "--objectif X] [--longueur L|auto] [--unite um|mm] [--couleur auto] [--qualite 1-100|auto] [--poids-max KO] "
    "[--recadrage X,Y,L,H [--debrider]] [--focale F (avec --table : échelle extrapolée)] "
    "[--exact (décodage complet)]";

int Usage(const QString& raison) {
  if (!raison.isEmpty()) Ligne(raison, stderr);
  Ligne(QStringLiteral("Usage : tessellographe-cli ") + QString::fromUtf8(kUsage), stderr);
  return 2;
}

int Refus(const QString& texte) {
  if (!texte.isEmpty()) Ligne(texte, stderr);
  return 3;
}

struct Options {
  QString photo, sortie;
  std::map<QString, QString> valeurs;  // option -> value
  bool A(const char* nom) const { return valeurs.count(QLatin1String(nom)) != 0; }
  QString V(const char* nom) const {
    auto it = valeurs.find(QLatin1String(nom));
    return it == valeurs.end() ? QString() : it->second;
  }
};

// An integer option in [min, max]; `defaut` when absent. False on a bad value.
bool Entier(const Options& o, const char* nom, int min, int max, int& valeur) {
  if (!o.A(nom)) return true;
  bool ok = false;
  valeur = o.V(nom).toInt(&ok);
  return ok && valeur >= min && valeur <= max;
}

// TESSELLOGRAPHE_CHRONO=1: the time of each step on standard error, in ms.
void Etape(const char* nom) {
  static const bool actif = qEnvironmentVariableIsSet("TESSELLOGRAPHE_CHRONO");
  static QElapsedTimer chrono;
  if (!actif) return;
  if (!chrono.isValid()) chrono.start();
  // Resident memory now: the process's own pages, then the libraries' and
  // files'; then the peak so far.
  QFile statut(QStringLiteral("/proc/self/status"));
  QByteArray anon = "?", fichiers = "?", pic = "?";
  if (statut.open(QIODevice::ReadOnly))
    for (const QByteArray& l : statut.readAll().split('\n')) {
      if (l.startsWith("RssAnon:")) anon = l.mid(8).simplified();
      if (l.startsWith("RssFile:")) fichiers = l.mid(8).simplified();
      if (l.startsWith("VmHWM:")) pic = l.mid(6).simplified();
    }
  fprintf(stderr, "%8.1f ms  %-28s mémoire %s + %s, pic %s\n", chrono.nsecsElapsed() / 1e6, nom, anon.constData(),
          fichiers.constData(), pic.constData());
}

int Formater(const QStringList& arguments) {
  Etape("début");
  static const QStringList avecValeur = {
      "-o",          "--format",     "--filtre",     "--cartouche", "--titre",
      "--auteur",    "--eclairage",  "--provenance", "--preparation", "--coloration",
      "--date",      "--table",      "--objectif",   "--pix",       "--mic",
      "--longueur",  "--unite",      "--qualite",    "--poids-max", "--recadrage", "--focale", "-d", "--taches", "--couleur"};
  static const QStringList drapeaux = {"--debrider", "--exact"};
  Options o;
  QStringList fichiers;
  for (int i = 0; i < arguments.size(); ++i) {
    const QString& a = arguments[i];
    if (avecValeur.contains(a)) {
      if (i + 1 >= arguments.size()) return Usage("Valeur manquante après " + a);
      o.valeurs[a] = arguments[++i];
    } else if (drapeaux.contains(a)) {
      o.valeurs[a] = QString();
    } else if (a.startsWith(u"--")) {
      return Usage("Option inconnue : " + a);
    } else {
      fichiers << a;
    }
  }
  const bool serie = o.A("-d");
  if (!serie && o.A("--taches")) return Usage(QStringLiteral("--taches va avec -d"));
  if (o.A("--couleur") && o.V("--couleur") != u"auto") return Usage(QStringLiteral("--couleur : auto"));
  if (serie && (o.A("-o") || fichiers.isEmpty())) return Usage(QStringLiteral("-d va avec une ou plusieurs photos, sans -o"));
  if (o.A("-o")) fichiers << o.V("-o");
  if (!serie && fichiers.size() != 2) return Usage(QString());
  o.photo = fichiers[0];
  if (!serie) o.sortie = fichiers[1];

  int format = -1, filtre = 3, qualite = 94, poidsMax = -1;
  if (!Entier(o, "--format", 0, 4, format) || !Entier(o, "--filtre", 1, 4, filtre) ||
      (o.V("--qualite") != u"auto" && !Entier(o, "--qualite", 1, 100, qualite)) ||
      !Entier(o, "--poids-max", 0, 32767, poidsMax))
    return Usage(QStringLiteral("Valeur hors limites ou non numérique"));
  const QString forme = o.A("--cartouche") ? o.V("--cartouche") : QString();
  if (!forme.isEmpty() && forme != u"sous" && forme != u"sur")
    return Usage(QStringLiteral("--cartouche : sous ou sur"));
  const QString unite = o.A("--unite") ? o.V("--unite") : QStringLiteral("um");
  if (unite != u"um" && unite != u"mm") return Usage(QStringLiteral("--unite : um ou mm"));
  const bool parTable = o.A("--table");
  const bool parSaisie = o.A("--pix") || o.A("--mic");
  if (parTable && parSaisie)
    return Usage(QStringLiteral("--table et --pix/--mic ne vont pas ensemble"));
  double focale = 0;
  if (o.A("--focale") && (!parTable || !LireNombre(o.V("--focale"), focale) || !(focale > 0)))
    return Usage(QStringLiteral("--focale : une focale en mm au-dessus de 0, avec --table"));
  if ((parTable || parSaisie) && !o.A("--objectif"))
    return Usage(QStringLiteral("--objectif manque"));
  if (parSaisie && !(o.A("--pix") && o.A("--mic")))
    return Usage(QStringLiteral("--pix et --mic vont ensemble"));
  // The crop, in pixels of the picture as loaded.
  std::array<int32_t, 4> recadrage{};
  if (o.A("--recadrage")) {
    const QStringList v = o.V("--recadrage").split(u',');
    bool ok = v.size() == 4;
    for (int i = 0; ok && i < 4; ++i) recadrage[size_t(i)] = v[i].trimmed().toInt(&ok);
    if (!ok || recadrage[2] < 1 || recadrage[3] < 1)
      return Usage(QStringLiteral("--recadrage : X,Y,L,H en pixels entiers, L et H d'au moins 1"));
  } else if (o.A("--debrider")) {
    return Usage(QStringLiteral("--debrider va avec --recadrage"));
  }
  QStringList date;
  if (o.A("--date")) {
    static const QRegularExpression jma(QStringLiteral("^(\\d{2})/(\\d{2})/(\\d{4})$"));
    const QRegularExpressionMatch m = jma.match(o.V("--date"));
    if (!m.hasMatch()) return Usage(QStringLiteral("--date : JJ/MM/AAAA"));
    date = {m.captured(1), m.captured(2), m.captured(3)};
  }

  if (serie) {
    // Every option but the photos and the folder goes to each photo's run.
    QStringList communes;
    for (int i = 0; i < arguments.size(); ++i) {
      if (arguments[i] == u"-d" || arguments[i] == u"--taches") {
        ++i;
      } else if (avecValeur.contains(arguments[i])) {
        communes << arguments[i] << arguments[i + 1];
        ++i;
      } else if (arguments[i].startsWith(u"--")) {
        communes << arguments[i];
      }
    }
    int taches = QThread::idealThreadCount();
    if (!Entier(o, "--taches", 1, 64, taches)) return Usage(QStringLiteral("--taches : de 1 à 64"));
    return FormaterSerie(fichiers, o.V("-d"), communes, taches);
  }

  DialoguesConsole dialogues(true);
  SessionRecord s;
  RecupereValeurIni(s);
  s.SeparateurDecimal = SeparateurDecimalSysteme();
  // The format is the configured one unless told; the tool never writes it
  // back, so that the windows keep the user's choice.
  PrendreFormatConfig(s);
  if (format >= 0) {
    s.ChoixFormat = int16_t(format);
    DefinirFormat(s, format);
  }
  if (!forme.isEmpty()) s.CartoucheHB = forme == u"sous" ? QStringLiteral("1") : QStringLiteral("0");
  if (poidsMax >= 0) s.PoidsMax = int16_t(poidsMax);
  cAdvancedImagery ai;

  // Loading, as ChargerImage does it.
  // The picture goes straight to resizing: a JPEG's header only, its pixels
  // decoded at resizing straight to the output size, the session keeping the
  // file's size. A crop is cut in the whole picture.
  QSize tailleFichier;
  const bool charge = o.A("--exact") || o.A("--recadrage") ? ChargerBitmap(s, ai, o.photo)
                                                            : ChargerEntete(s, ai, o.photo, tailleFichier);
  if (!charge) return Refus(ai.Error_GetLast());
  Etape("chargement");
  // A picture cut in its image data is not formatted without a person to agree.
  if (!ai.Incomplet().isEmpty()) return Refus(ai.Incomplet() + QStringLiteral(" Il n'est pas formaté."));
  for (const QString& e : RemplirSession(s, ai, o.photo, tailleFichier)) Ligne(e, stderr);
  LireMetadonneesImage(s);
  s.Etape = 1;
  const DecisionControle d = DeciderControleImage(s);
  if (d.formatReinitialise) Ligne(TexteFormatReinitialise(), stderr);
  if (d.format) s.ChoixFormat = int16_t(*d.format);
  if (d.formatSortie && !DefinirFormat(s, s.ChoixFormat))
    return Refus(TexteErreurFormat(QStringLiteral("G_FormatSortie")));
  if (o.A("--recadrage")) {
    Cadre c;
    c.CadreG = recadrage[0];
    c.CadreHaut = recadrage[1];
    c.CadreL = recadrage[2];
    c.CadreH = recadrage[3];
    c.CadreD = c.CadreG + c.CadreL;
    c.CadreB = c.CadreHaut + c.CadreH;
    const QString refus = RefusRecadrage(c, s.Largeur, s.Hauteur, o.A("--debrider"), s.ApnLarg, s.ApnHaut);
    if (!refus.isEmpty()) return Refus(refus);
    if (!AppliquerRecadrage(s, ai, c.CadreG, c.CadreHaut, c.CadreL, c.CadreH))
      return Refus(ai.Error_GetLast() + QStringLiteral("\nErreur position du cadre"));
  }
  Etape("session et contrôle");
  if (!RedimensionnerSession(s, ai, filtre, !o.A("--exact")))
    return Refus("Error - " + ai.Error_GetLast());
  Etape("redimensionnement");
  s.Etape = 2;

  // The photo's focal length as told, for the extrapolated scale.
  if (focale > 0) s.FocaleAPN = float(focale);

  // The cartouche, through the form's model: the same actions as the window's buttons.
  std::optional<ModeleCartouche> modele(std::in_place, s, ai);
  ModeleCartouche& f = *modele;
  f.Form_Load();
  Etape("formulaire du cartouche");
  if (!date.isEmpty() && !f.ChoisirDate(date[0], date[1], date[2]))
    return Refus("Date refusée : " + o.V("--date") + " (années de " + QString::number(kPremiereAnnee) + " à " +
                 QString::number(QDate::currentDate().year()) + ")");
  if (o.A("--titre")) f.txtCommentaire = o.V("--titre");
  if (o.A("--auteur")) f.txtNomAuteur = o.V("--auteur");
  const std::pair<const char*, ListeFormulaire*> listes[] = {{"--eclairage", &f.ComboEclairage},
                                                             {"--provenance", &f.comboProvenance},
                                                             {"--preparation", &f.comboMontage},
                                                             {"--coloration", &f.comboColoration}};
  for (const auto& [option, liste] : listes)
    if (o.A(option)) liste->DefinirTexte(o.V(option));

  if (parTable || parSaisie) {
    f.cmdEtalonner();
    if (parTable && focale > 0) {
      // The scale of the table's focal series at the photo's focal length,
      // as frmExtrapolFocale sends it to the form.
      bool ok = false;
      const int n = o.V("--table").toInt(&ok);
      FichierMesure fm;
      const int nbEnreg = fm.Ouvrir() ? fm.LireEntete() : 0;
      fm.Fermer();
      if (!ok || n < 1 || n >= nbEnreg)
        return Refus("Table n° " + o.V("--table") + " introuvable (" + QString::number(std::max(0, nbEnreg - 1)) +
                     " table(s))");
      bool doublons = false;
      const SerieFocale serie = SerieDeLaTable(n, s, true, &doublons);
      if (doublons) Ligne(QStringLiteral("Doublons supprimés !"), stderr);
      const Extrapolation r = CalculerExtrapolation(serie, s.FocaleAPN, s.SeparateurDecimal);
      if (!r.calcule) return Refus(r.refus);
      f.cmdAnnulerTable();
      f.txtPix = QString::number(r.pixPour100);
      f.txtMic = QStringLiteral("100");
      f.ComboObjectif.DefinirTexte(o.V("--objectif"));
      s.ExtrapolationFoc = true;
    } else if (parTable) {
      if (!f.chkAfficherTouteTable) {
        f.chkAfficherTouteTable = true;
        f.chkAfficherTouteTable_Click();
      }
      bool ok = false;
      const int n = o.V("--table").toInt(&ok);
      const int nombre = f.comboTables.Nombre();
      if (!ok || n < 1 || n >= nombre)
        return Refus("Table n° " + o.V("--table") + " introuvable (" + QString::number(std::max(0, nombre - 1)) +
                     " table(s))");
      f.comboTables.Selectionner(n);
      f.comboTables_Click();
      f.comboListeObjectif.DefinirTexte(o.V("--objectif"));
      f.cmdAppliquerTable();
      if (!f.TableAppliquee()) return Refus(QStringLiteral("Table non appliquée"));
    } else {
      f.cmdAnnulerTable();
      f.txtPix = o.V("--pix");
      f.txtMic = o.V("--mic");
      f.ComboObjectif.DefinirTexte(o.V("--objectif"));
    }
    if (o.V("--longueur") == u"auto") f.cmdLongueurAuto();
    else if (o.A("--longueur")) f.txtLongueur = o.V("--longueur");
    f.optUnite = unite == u"mm" ? 1 : 0;
  }
  if (o.A("--couleur")) {
    // Near-black or near-white, whichever contrasts more with the picture
    // under the cartouche: only a cartouche over the picture has one.
    if (!f.Actif(Controle::chkCouleurAuto)) return Usage(QStringLiteral("--couleur auto va avec --cartouche sur"));
    f.chkCouleurAuto = true;
  }
  f.cmdDessiner();
  Etape("cartouche dessiné");
  if (!f.CartoucheValide()) return Refus(QString());
  f.cmdSuite();
  f.Quitter();
  // Its pictures are let go before the save, which has its own peak.
  modele.reset();
  if (!s.ImageFinale || s.Etape != 3) return Refus(QStringLiteral("Image finale non construite"));

  Etape("cartouche et image finale");
  // Saving, as frmEnregistrer does it, in the format the name's extension
  // names; the weight limit and the quality are the JPEG's.
  const QString extension = QFileInfo(o.sortie).suffix().toLower();
  const int enregistrement = extension == u"tif" || extension == u"tiff" ? EnrTIFF
                             : extension == u"bmp"                       ? EnrBMP
                                                                         : EnrJPEG;
  ResultatEssai r;
  if (enregistrement != EnrJPEG) {
    r = PreparerResultat(s, ai, enregistrement, 0);
  } else if (o.V("--qualite") == u"auto") {
    // The highest quality within the weight limit.
    const ResultatQualite q = MeilleureQualite(s, ai, qualite);
    for (const QString& e : q.essai.erreurs) Ligne(e, stderr);
    if (!q.essai.erreurs.isEmpty()) return 3;
    if (!q.trouve) return Refus(TexteTropLourd(s.PoidsMax));
    Ligne(QStringLiteral("Qualité choisie : %1 (%2 essais)").arg(q.qualite).arg(q.essais));
    r = q.essai;
  } else {
    r = PreparerResultat(s, ai, EnrJPEG, qualite);
  }
  for (const QString& e : r.erreurs) Ligne(e, stderr);
  if (!r.erreurs.isEmpty()) return 3;
  if (enregistrement == EnrJPEG && s.PoidsMax > 0 && !PoidsAccepte(r.poids, s.PoidsMax))
    return Refus(TexteTropLourd(s.PoidsMax));
  if (!CopierResultat(o.sortie))
    return Refus(AvecRaison("Error 75 (Erreur d'accès au chemin/fichier) : " + o.sortie));
  Etape("essai et copie");
  // In a series, the numbers were taken by the series.
  if (qEnvironmentVariableIsEmpty("TESSELLOGRAPHE_SERIE")) AvancerNumeroImage(s);
  Ligne(QFileInfo(o.sortie).absoluteFilePath() + " : " + QString::number(s.Largeur) + " x " +
        QString::number(s.Hauteur) + ", " + TexteReel(r.poids, s.SeparateurDecimal) + " ko");
  return 0;
}

// Fonts and pictures: the one command, with echantillon, that draws.
const Enregistrement enregistrement(
    "formater", kUsage,
    {"La route principale sans fenêtre : charge PHOTO, la redimensionne au format de sortie, ajoute le "
     "cartouche avec la barre d'échelle d'une table ou d'une échelle saisie, construit l'image finale et "
     "l'enregistre en JPEG sous le poids maximal. Le bloc de commentaire du fichier porte l'étalonnage.",
     {{"-o SORTIE.jpg", "le fichier à écrire : JPEG, ou TIFF (.tif, .tiff) ou BMP (.bmp) sans bloc de "
                         "commentaire ni poids maximal ; l'échelle y est écrite en pixels par centimètre, là où "
                         "les autres programmes la lisent"},
      {"-d DOSSIER", "une série : chaque PHOTO est formatée avec les mêmes options dans DOSSIER, sous le nom "
                     "que la boîte d'enregistrement donnerait, sur tous les cœurs ; une photo refusée est "
                     "signalée et les autres sont enregistrées (statut 3 s'il y en a une)"},
      {"--taches N", "avec -d : N photos à la fois (par défaut autant que de cœurs)"},
      {"--format 0-4", "format de sortie : 0 = 640x480, 1 = 750x562, 2 = 800x600, 3 = 1024x768, "
                       "4 = 1152x864 (par défaut celui des options du programme)"},
      {"--filtre 1-4", "redimensionnement : 1 = bilinéaire, 2 = B-Spline, 3 = Lanczos3 (par défaut), "
                       "4 = bicubique"},
      {"--cartouche sous|sur", "cartouche sous l'image ou sur l'image"},
      {"--titre T, --auteur T", "titre et auteur du cartouche"},
      {"--eclairage T, --provenance T, --preparation T, --coloration T", "champs du cartouche"},
      {"--date JJ/MM/AAAA", "date de l'observation"},
      {"--table N --objectif X", "échelle tirée de la table de mesure N pour l'objectif X"},
      {"--pix P --mic M --objectif X", "échelle saisie : P pixels de la photo pour M microns"},
      {"--focale F", "avec --table : l'échelle extrapolée à la focale F (mm) de la photo"},
      {"--longueur L|auto", "longueur de la barre d'échelle ; auto : 1, 2 ou 5 x 10^n microns, la plus "
                            "longue dans les limites de la barre et un quart de la largeur"},
      {"--unite um|mm", "unité de la barre"},
      {"--couleur auto", "avec --cartouche sur : texte et barre en quasi-noir ou quasi-blanc, selon ce qui "
                         "contraste le plus avec l'image sous le cartouche"},
      {"--qualite 1-100|auto", "qualité JPEG (94 par défaut) ; auto : la plus haute sous le poids maximal"},
      {"--poids-max KO", "poids maximal du fichier en kilo-octets (0 : aucun)"},
      {"--recadrage X,Y,L,H", "recadre d'abord, en pixels de la photo"},
      {"--debrider", "avec --recadrage : lève la limite de taille du cadre"},
      {"--exact", "décode la photo entière avant de la redimensionner (plus lent, même échelle)"}}},
    Formater, Dessin::Oui);

}  // namespace
}  // namespace tg::cli
