#include "measure/GeometrieMesure.h"

#include <algorithm>
#include <cmath>

#include "platform/Nombres.h"
#include "platform/Textes.h"

namespace tg {

float RatioAffichage(int32_t largeur, int32_t largeurAffichee) {
  return largeurAffichee > 0 ? float(largeur) / float(largeurAffichee) : 0.0f;
}

float RatioAffichage(const SessionRecord& s) { return RatioAffichage(s.Largeur, s.LargeurMesure); }

namespace {
// VB's CInt: to nearest, ties to even, kept in 16 bits.
int Entier16(double v) {
  return int(std::clamp<long long>(VersEntier(v), INT16_MIN, INT16_MAX));
}
}  // namespace

ResultatAngle CalculAngle(float x1, float y1, float x, float y, double& angle) {
  if (x == x1 || y == y1) return ResultatAngle::Inchange;
  const int dy = Entier16(double(y1) - y);
  const int dx = Entier16(double(x) - x1);
  if (dx == 0) return ResultatAngle::DivisionParZero;
  // The program's own value of pi, kept for identical angles.
  const double a = std::atan(double(dy) / double(dx)) * (180.0 / 3.14159265358979);
  if (x > x1 && y < y1)
    angle = a;
  else if (x < x1)
    angle = a + 180;  // above or below: the arctangent's sign does the rest
  else
    angle = a + 360;
  return ResultatAngle::Calcule;
}

QString TexteErreurCalculAngle() {
  return QStringLiteral("Error 11 (Division by zero) in procedure CalculAngle of Feuille frmMesure");
}

float Distance(float x1, float y1, float x2, float y2) {
  const double dx = double(x2) - x1;
  const double dy = double(y2) - y1;
  if (dy == 0) return float(std::fabs(dx));
  if (dx == 0) return float(std::fabs(dy));
  return float(std::sqrt(dx * dx + dy * dy));
}

std::optional<ValeurMesure> ValeurAffichee(const ContexteMesure& c, float longueur) {
  const double pixels = double(c.ratio) * double(longueur);
  if (c.mode == 0 || c.mode == 1) {
    const QString t = QString::number(VersEntier(pixels));
    return ValeurMesure{t, t};
  }
  if (c.echelleTemp)
    return ValeurMesure{TexteReel(Arrondir(pixels * c.micronsParPixelTemp, 1), c.separateur),
                        QString()};
  if (c.imageFinale)
    return ValeurMesure{TexteReel(Arrondir(pixels * c.micronsParPixel, 1), c.separateur),
                        std::nullopt};
  return std::nullopt;
}

EtatMenuMesure InitMenu(int16_t mode, int32_t largeur, int32_t largeurAffichee) {
  EtatMenuMesure e;
  switch (mode) {
    case 0:
      e.titre = QStringLiteral(" Etalonnage ...");
      e.unite = QStringLiteral("pixels");
      e.loupeVisible = largeurAffichee < largeur;
      e.fondVert = true;
      e.astuce = true;
      break;
    case 1:
      e.titre = QStringLiteral(" Récupérer une échelle ...");
      e.unite = QStringLiteral("pixels");
      break;
    default:
      e.titre = QStringLiteral(" Mesure sur image ...");
      e.unite = QStringLiteral("µm");
      e.listeMesureActive = true;
      e.optLigne = 2;
      e.compteur = true;
      break;
  }
  e.loupeActive = e.loupeVisible && largeur >= 1500;
  return e;
}

bool EchelleRecuperable(const QString& echellePix, const QString& echelleMic) {
  double pix = 0, mic = 0;
  return LireNombre(echellePix.trimmed(), pix) && LireNombre(echelleMic.trimmed(), mic) &&
         pix > 0 && mic > 0;
}

QString QuestionRecupEchelle() {
  return QStringLiteral(
      "Cette image contient des métadonnées propriétaires.\n"
      "Vous pouvez  récupérer l'echelle automatiquement.\n"
      "\n"
      "Récupérer l'échelle ?\n"
      "(Si vous répondez non , vous pourrez récupérer\n"
      "l'échelle manuellement)");
}

QString QuestionRecupEchelleExterne(const QString& source, const QString& pixelsPour100) {
  return QStringLiteral(
             "Cette image porte une échelle écrite par un autre programme (%1) :\n"
             "100 µm = %2 pixels.\n"
             "\n"
             "Récupérer l'échelle ?\n"
             "(Si vous répondez non , vous pourrez récupérer\n"
             "l'échelle manuellement)")
      .arg(source, pixelsPour100);
}

std::optional<float> ValiderEchelleTemp(const QString& txtMicTemp, const QString& txtPixTemp) {
  double mic = 0, pix = 0;
  if (txtMicTemp.trimmed().isEmpty() || !LireNombre(txtMicTemp.trimmed(), mic)) return std::nullopt;
  if (VersEntier(mic) < 1) return std::nullopt;
  // Without a measured length there is nothing to divide by: refused alike.
  if (!LireNombre(txtPixTemp.trimmed(), pix) || !(pix > 0)) return std::nullopt;
  return float(mic / pix);
}

Loupe::Clic Loupe::CliquerImage(float x, float y, float ratio, int32_t largeur, int32_t hauteur) {
  if (EtatLoupe != 0 && EtatLoupe != 2) return Clic::Ignore;
  const float ox = ratio * x - Cote / 2;
  const float oy = ratio * y - Cote / 2;
  if (EtatLoupe == 0) {
    LoupeX1 = ox;
    LoupeY1 = oy;
  } else {
    LoupeX2 = ox;
    LoupeY2 = oy;
  }
  const bool dedans = ox >= 0 && oy >= 0 && ox + Cote < largeur && oy + Cote < hauteur;
  HorsImage = false;
  if (!dedans) return Clic::HorsImage;
  EtatLoupe = EtatLoupe == 0 ? 1 : 3;
  return Clic::Cadre;
}

int Loupe::OrigineX() const { return int(VersEntier(EtatLoupe >= 3 ? LoupeX2 : LoupeX1)); }
int Loupe::OrigineY() const { return int(VersEntier(EtatLoupe >= 3 ? LoupeY2 : LoupeY1)); }

void Loupe::RelacherDansLoupe(float x, float y) {
  x = std::clamp(x, 0.0f, float(Cote));
  y = std::clamp(y, 0.0f, float(Cote));
  if (EtatLoupe == 1) {
    PointX1 = LoupeX1 + x;
    PointY1 = LoupeY1 + y;
  } else if (EtatLoupe == 3) {
    PointX2 = LoupeX2 + x;
    PointY2 = LoupeY2 + y;
  } else {
    PointX1 = PointY1 = PointX2 = PointY2 = 0;
  }
}

Loupe::Validation Loupe::Valider() {
  Validation v;
  const auto erreur = [&v] {
    v.action = Validation::Erreur;
    v.titre = QStringLiteral(" Erreur pointage");
    v.texte = QStringLiteral(
        "Vous devez positionner le pointeur sur la loupe ...\n"
        "(cliquez-déplacez la souris sur le cadre loupe)");
  };
  switch (EtatLoupe) {
    case 1:
      if (PointX1 == 0) {
        erreur();
        break;
      }
      EtatLoupe = 2;
      v.action = Validation::PremierPoint;
      v.titre = QStringLiteral("Mode loupe : 1er point");
      v.texte = QStringLiteral("1er point ok, pointez le deuxième ...");
      break;
    case 3: {
      if (PointX2 == 0) {
        erreur();
        break;
      }
      Longueur = Distance(PointX1, PointY1, PointX2, PointY2);
      v.txtMesurePixel = QString::number(VersEntier(Longueur));
      EtatLoupe = 4;
      v.action = Validation::DeuxiemePoint;
      v.titre = QStringLiteral("Mode loupe : 2ème point");
      v.texte = QStringLiteral("Votre 2ème point est défini.\nLa longeur du tracé (taille réelle)") +
                QStringLiteral(" est de : ") + v.txtMesurePixel + QStringLiteral(" pixels");
      break;
    }
    case 2:
      v.action = Validation::CacherCroix;
      break;
    default:
      break;
  }
  return v;
}

}  // namespace tg
