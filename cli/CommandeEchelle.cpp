// tessellographe-cli echelle FICHIER [--json]: the scale that a picture saved
// by this program carries in its comment block, read with the program's own
// loading steps and readers.
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <cstdio>
#include <optional>

#include "cartouche/modExtractMeta.h"
#include "cli/Commandes.h"
#include "cli/Console.h"
#include "core/Chargement.h"
#include "core/SessionRecord.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"

namespace tg::cli {

namespace {

void Erreur(const QString& texte) { Ligne(texte, stderr); }

std::optional<double> Nombre(const QString& texte) {
  double v = 0;
  if (!LireNombre(texte, v)) return std::nullopt;
  return v;
}

// A JSON number for a text of either decimal separator; null when it is none.
QJsonValue NombreJson(const QString& texte) {
  const auto v = Nombre(texte);
  return v ? QJsonValue(*v) : QJsonValue(QJsonValue::Null);
}

int Echelle(const QStringList& arguments) {
  bool json = false;
  QStringList fichiers;
  for (const QString& a : arguments) {
    if (a == u"--json")
      json = true;
    else
      fichiers << a;
  }
  if (fichiers.size() != 1) {
    Erreur(QStringLiteral("Usage : tessellographe-cli echelle FICHIER [--json]"));
    return 2;
  }
  const QString chemin = fichiers.first();


  DialoguesConsole dialogues(false);
  SessionRecord s;
  s.SeparateurDecimal = SeparateurDecimalSysteme();
  cAdvancedImagery ai;
  // The header and metadata alone where the format allows it (JPEG, HEIF,
  // RAW): the scale needs no pixels, and a camera RAW's decoding takes seconds.
  QSize taille;
  if (!ChargerEntete(s, ai, chemin, taille)) {
    Erreur(ai.Error_GetLast());
    return 3;
  }
  if (!ai.Incomplet().isEmpty()) {
    Erreur(ai.Incomplet() + QStringLiteral(" Son échelle n'est pas lue."));
    return 3;
  }
  dialogues.messages << RemplirSession(s, ai, chemin, taille);
  LireMetadonneesImage(s);
  ai.IO_DestroyBitmap(s.ImageCourante);
  for (const QString& m : dialogues.messages) Erreur(m);

  if (s.CommentaireImage.isEmpty() || s.Application.isEmpty()) {
    // Another program's scale, as the windows offer it.
    LireEchelleExterne(s, chemin);
    if (s.MicronsParPixelExterne > 0) {
      if (json) {
        QJsonObject o;
        o.insert("MicronsParPixel", s.MicronsParPixelExterne);
        o.insert("LargeurOrigine", s.LargeurOrigine);
        o.insert("source", s.SourceEchelleExterne);
        std::fputs(QJsonDocument(o).toJson(QJsonDocument::Compact).append('\n').constData(), stdout);
      } else {
        Ligne("LargeurOrigine=" + QString::number(s.LargeurOrigine));
        Ligne("MicronsParPixel=" + TexteReel(s.MicronsParPixelExterne, s.SeparateurDecimal));
        Ligne("Source=" + s.SourceEchelleExterne);
      }
      return 0;
    }
    Erreur("Ce fichier ne porte ni bloc de métadonnées Tessellographe ni échelle d'un autre programme : " + chemin);
    return 3;
  }
  const auto pixels = Nombre(s.EchellePix);
  const auto longueur = Nombre(s.EchelleMic);
  if (!pixels || !longueur || *pixels <= 0 || *longueur <= 0) {
    Erreur("Aucune échelle dans le bloc de métadonnées de ce fichier : " + chemin);
    return 3;
  }
  // EchellePix pixels are EchelleMic units of UniteEtalon.
  const double microns = *longueur * (s.UniteEtalon == u"mm" ? 1000.0 : 1.0);
  const double micronsParPixel = microns / *pixels;
  const QString reduction = TexteReel(s.ReductionImage, s.SeparateurDecimal);

  if (json) {
    QJsonObject o;
    o.insert("EchellePix", NombreJson(s.EchellePix));
    o.insert("EchelleMic", NombreJson(s.EchelleMic));
    o.insert("UniteEtalon", s.UniteEtalon);
    o.insert("LargeurOrigine", NombreJson(s.LargeurOrigineMeta));
    o.insert("ReductionImage", NombreJson(reduction));
    o.insert("MicronsParPixel", micronsParPixel);
    o.insert("source", QStringLiteral("Tessellographe"));
    std::fputs(QJsonDocument(o).toJson(QJsonDocument::Compact).append('\n').constData(), stdout);
    return 0;
  }
  const QStringList lignes = {
      "EchellePix=" + s.EchellePix,
      "EchelleMic=" + s.EchelleMic,
      "UniteEtalon=" + s.UniteEtalon,
      "LargeurOrigine=" + s.LargeurOrigineMeta,
      "ReductionImage=" + reduction,
      "MicronsParPixel=" + TexteReel(micronsParPixel, s.SeparateurDecimal),
      QStringLiteral("Source=Tessellographe"),
  };
  std::fputs((lignes.join(u'\n') + u'\n').toUtf8().constData(), stdout);
  return 0;
}

const Enregistrement enregistrement(
    "echelle", "echelle FICHIER [--json]",
    {"Donne l'échelle qu'une image enregistrée par le programme porte dans son bloc de commentaire "
     "(EchellePix pixels pour EchelleMic microns, largeur d'origine, réduction, microns par pixel). Sans ce "
     "bloc, l'échelle qu'un autre programme a écrite : description ImageJ, d'un scanner de lames (Aperio, "
     "Philips) ou OME-XML, bloc Zeiss LSM, résolution TIFF ou EXIF en centimètres, bloc pHYs d'un PNG ; Source "
     "dit d'où elle vient.",
     {{"--json", "les mêmes valeurs en JSON"}}},
    &Echelle);

}  // namespace

}  // namespace tg::cli
