#include "cartouche/Echelle.h"

#include <algorithm>
#include <cmath>

#include "platform/Nombres.h"
#include "platform/Textes.h"

namespace tg {

std::optional<float> MicronsParPixelTable(const EnrMesure& t, const QString& objectif) {
  double obj = 0;
  if (!LireNombre(objectif.trimmed(), obj) || obj == 0 || t.Pix == 0 || t.Mic == 0)
    return std::nullopt;
  const float a = static_cast<float>(t.Mic) / static_cast<float>(t.Pix);
  const float b = a * t.Obj;
  const float m = b / static_cast<float>(obj);
  if (!(m > 0)) return std::nullopt;
  return m;
}

QString PixPourCentMicrons(float micronsParPixel) {
  const float pix = 100.0f / micronsParPixel;
  return QString::number(VersEntier(pix));
}

int LargeurRefEchelle(int largeurOrigine, int largeurRecadrage, int hauteurRecadrage) {
  if (largeurRecadrage == 0 || hauteurRecadrage == 0) return largeurOrigine;
  return largeurRecadrage;
}

ResultatEchelle CalculerEchelle(const EntreesEchelle& e) {
  ResultatEchelle r;
  const float mp = static_cast<float>(e.mic / e.pix);
  const int ref = LargeurRefEchelle(e.largeurOrigine, e.largeurRecadrage, e.hauteurRecadrage);
  const float red = static_cast<float>(e.largeurFormatee) / static_cast<float>(ref);
  r.micronsParPixel = mp / red;
  r.echellePixels = static_cast<float>(Arrondir(e.longueur / r.micronsParPixel, 3));
  r.valide = r.echellePixels < kEchelleMaxPixels;
  return r;
}

double LongueurAuto(float micronsParPixel, int largeurImage) {
  if (!(micronsParPixel > 0) || largeurImage <= 0) return 0;
  const double maxPixels = std::min(double(kEchelleMaxPixels) - 1, largeurImage * 0.25);
  double meilleure = 0;
  for (int n = -4; n <= 7; ++n)
    for (int m : {1, 2, 5}) {
      const double l = m * std::pow(10.0, n);
      // The bar as CalculerEchelle rounds it.
      const double pixels = Arrondir(l / micronsParPixel, 3);
      if (pixels <= maxPixels && l > meilleure) meilleure = l;
    }
  return meilleure;
}

RapportDefinition CalculerRapportDefinition(bool portraitOrigine, bool imageTournee,
                                            int largeurOrigine, int hauteurOrigine, int largPix) {
  RapportDefinition r;
  if (portraitOrigine && !imageTournee)
    r.largeur = hauteurOrigine;
  else if (!portraitOrigine && imageTournee)
    return r;
  else
    r.largeur = largeurOrigine;
  if (r.largeur != 0) r.q = static_cast<float>(largPix) / static_cast<float>(r.largeur);
  return r;
}

std::optional<double> PixCorrige(double pix, const RapportDefinition& r, int largPix,
                                 float focaleApn, float focaleTable) {
  if (r.largeur == largPix || focaleApn != focaleTable || r.q == 0) return std::nullopt;
  return Arrondir(pix / r.q, 2);
}

QString QuestionModifDefinition(int largeurPhoto, int largPix) {
  const QString crlf = QStringLiteral("\r\n");
  return QStringLiteral("Si votre table a été réalisée avec une autre définition") + crlf +
         QStringLiteral("(largeur en pixels) vous pouvez corriger les valeurs maintenant") + crlf +
         QStringLiteral(
             "Attention, dans le cas d'un montage d'image (rapport pixels-microns identique)") +
         crlf + QStringLiteral("vous ne devez pas utiliser cette correction.") + crlf +
         QStringLiteral("Votre image = %1 pix - Votre table = %2 pix")
             .arg(largeurPhoto)
             .arg(largPix) +
         crlf + crlf + QStringLiteral("Corriger ?");
}

QString TexteLargeurPhoto(bool imageTournee, bool portraitOrigine, int largeurOrigine,
                          int largeurCadrage, int hauteurOrigine) {
  const QString w = QString::number(largeurOrigine);
  if (imageTournee && !portraitOrigine) return w + " (" + QString::number(largeurCadrage) + ") pix";
  if (imageTournee && portraitOrigine) return QString::number(largeurCadrage) + " (" + w + ") pix";
  if (!portraitOrigine) return w + " pix";
  return QString::number(hauteurOrigine) + " (" + w + ") pix";
}

QString QuestionLargeurFocale() {
  return QStringLiteral(
      "La largeur ou la focale de l'image source ne correspond pas à cette table !\r\n"
      "Voulez-vous quand même appliquer cette table ?\r\n"
      "(si seule la largeur est différente, vous pourrez la corriger à l'étape suivante)");
}

FiltreAuto ChoisirFiltreAuto(const QString& modele, float focaleApn) {
  if (focaleApn == 0) return FiltreAuto::Aucun;
  return modele.isEmpty() ? FiltreAuto::SansModele : FiltreAuto::AvecModele;
}

bool ExtrapolationPossible(const QString& modele, float focaleApn) {
  return !modele.isEmpty() && focaleApn > 0;
}

int SlotTableChoisie(int position, bool sansFiltre, const QString& numeroIndex) {
  if (position <= 0) return 0;
  if (sansFiltre) return position + 1;
  bool ok = false;
  const int n = numeroIndex.trimmed().toInt(&ok);
  return ok && n > 0 ? n + 1 : 0;
}

QString TexteObjRef(const EnrMesure& t, const QString& separateur) {
  return QStringLiteral("(Table : obj. de réf = x") + TexteReel(t.Obj, separateur) + ")";
}

bool TableCorrespond(const EnrMesure& t, int largeurOrigine, float focaleApn) {
  return largeurOrigine == t.LargPix && focaleApn == t.Focale;
}

namespace {
float Reduction(int largeurRecadrage, int largeur, int largeurOrigine, int decimales) {
  if (largeur == 0) return 0;
  const int num = largeurRecadrage != 0 ? largeurRecadrage : largeurOrigine;
  return static_cast<float>(Arrondir(static_cast<double>(num) / largeur, decimales));
}
}  // namespace

float ReductionAffichee(int largeurRecadrage, int largeur, int largeurOrigine,
                        bool imageDejaFormatee, float reductionImage) {
  if (imageDejaFormatee) return reductionImage;
  return Reduction(largeurRecadrage, largeur, largeurOrigine, 1);
}

float ReductionComment(int largeurRecadrage, int largeur, int largeurOrigine,
                       bool imageDejaFormatee, float reductionImage) {
  if (imageDejaFormatee) return reductionImage;
  return Reduction(largeurRecadrage, largeur, largeurOrigine, 2);
}

}  // namespace tg
