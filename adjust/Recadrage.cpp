#include "adjust/Recadrage.h"

#include <cmath>

#include "core/SessionRecord.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"

namespace tg {

float CoefAffichage(int32_t largeurImage, int32_t largeurMesure) {
  return largeurMesure > 0 ? float(largeurImage) / float(largeurMesure) : 0.0f;
}

void MajCadre(Cadre& c, int32_t largeurImage, int32_t largeurMesure) {
  if (largeurMesure <= 0) return;
  const float coef = CoefAffichage(largeurImage, largeurMesure);
  c.CadreL = int32_t(c.largeur * coef);
  c.CadreH = int32_t(c.hauteur * coef);
  c.CadreG = int32_t(VersEntier(double(c.posG * coef)));
  c.CadreHaut = int32_t(VersEntier(double(c.posH * coef)));
  c.CadreD = c.CadreG + c.CadreL;
  c.CadreB = c.CadreHaut + c.CadreH;
}

int32_t PositionSlider(int32_t apnLargCourant, int32_t largeurImage) {
  if (largeurImage <= 0) return 0;
  return int32_t(double(apnLargCourant) / double(largeurImage) * 10000.0);
}

QString TexteRatio(int32_t cadreL, int32_t apnLargCourant, bool dejaFormatee, const QString& separateur) {
  if (dejaFormatee || apnLargCourant <= 0) return {};
  return QStringLiteral("R=1: ") + TexteReel(Arrondir(double(cadreL) / apnLargCourant, 2), separateur);
}

float RatioOption(int option, float ratioFormat, const QString& saisi, float actuel) {
  switch (option) {
    case 0:
      return float(Arrondir(ratioFormat, 3));
    case 1:
      return 1.504f;
    case 2:
      return 1.206f;
    case 3:
      return 1.0f;
    default: {
      double v = 0;
      // "1.5" and "1,5" alike: the sign is first made the system's.
      if (saisi.trimmed().isEmpty() || !LireNombre(saisi, v) || !(v > 0)) return actuel;
      return float(v);
    }
  }
}

QString RefusRecadrage(const Cadre& c, int32_t largeurImage, int32_t hauteurImage, bool debride, int16_t apnLarg,
                       int16_t apnHaut) {
  if (c.CadreD > largeurImage || c.CadreB > hauteurImage)
    return QStringLiteral("Cadre plus large que l'image ou débordant !");
  if (!debride) {
    if (apnLarg == 750 && c.CadreL < 750) return QStringLiteral("Cadre plus petit que 750 pix. de largeur");
    if (apnLarg != 750 && c.CadreL < apnLarg)
      return QStringLiteral("Cadre plus petit que le format de sortie choisit !\n%1 x %2").arg(apnLarg).arg(apnHaut);
  }
  return {};
}

QString RefusTailleFixe(int32_t largeur, int32_t hauteur, int32_t largeurImage, int32_t hauteurImage) {
  if (largeur <= largeurImage && hauteur <= hauteurImage) return {};
  return QStringLiteral("Dimensions du cadre supérieurs à l'image !\nVeuillez corriger : Max = %1 x %2")
      .arg(largeurImage)
      .arg(hauteurImage);
}

bool AppliquerRecadrage(SessionRecord& s, cAdvancedImagery& ai, int32_t x, int32_t y, int32_t l, int32_t h) {
  Bitmap coupe;
  if (!ai.Effect_Zoom(s.ImageCourante, coupe, x, y, l, h, 1.0)) return false;
  s.ImageCourante = std::move(coupe);
  InfosImage infos;
  ai.Info_ALL(s.ImageCourante, infos);
  s.Largeur = infos.largeur;
  s.Hauteur = infos.hauteur;
  s.LargeurMesure = s.HauteurMesure = 0;
  s.RatioMesure = 0;
  s.HauteurRecadrage = s.Hauteur;
  s.LargeurRecadrage = s.Largeur;
  s.Cadrage = s.Hauteur > 0 ? float(s.Largeur) / float(s.Hauteur) : 0;
  s.RatioRecadrage = s.Cadrage;
  ai.IO_DestroyBitmap(s.ImageMesure);
  return true;
}

}  // namespace tg
