#include "core/Formats.h"

#include "core/FormatsSortie.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Ini.h"
#include "platform/Nombres.h"

namespace tg {

namespace {
bool IndexValide(int choix) { return choix >= 0 && choix < int(FormatsSortie.size()); }
}  // namespace

QString TexteChangementFormat(int choix) {
  const FormatSortie& f = FormatsSortie.at(size_t(choix));
  return "Format de sortie: " + QString::number(f.largeur) + " x " + QString::number(f.hauteur) +
         "\nSi une image est en cours de travail, celle-ci sera fermée.\nContinuer ... ?";
}

bool DefinirFormat(SessionRecord& s, int choix) {
  if (!IndexValide(choix)) return false;
  const FormatSortie& f = FormatsSortie[size_t(choix)];
  s.ApnLarg = s.ApnLargCourant = int16_t(f.largeur);
  s.ApnHaut = s.ApnHautCourant = int16_t(f.hauteur);
  s.ApnLargVersHaut = int16_t(VersEntier(s.ApnLargCourant / 1.5));
  s.RatioFormat = float(s.ApnLargCourant) / float(s.ApnHautCourant);
  return true;
}

bool AppliquerFormatSortie(SessionRecord& s) {
  if (!IndexValide(s.ChoixFormat)) return false;
  const FormatSortie& f = FormatsSortie[size_t(s.ChoixFormat)];
  const QString ini = CheminUserConfig();
  EcrireIni(QStringLiteral("FormatImage"), QStringLiteral("ApnLarg"), QString::number(f.largeur),
            ini);
  EcrireIni(QStringLiteral("FormatImage"), QStringLiteral("ApnHaut"), QString::number(f.hauteur),
            ini);
  return DefinirFormat(s, s.ChoixFormat);
}

QString TexteErreurFormat(const QString& procedure) {
  return TexteErreur(9, QStringLiteral("L'indice n'appartient pas à la sélection"), procedure,
                     QStringLiteral("modMain"));
}

std::optional<int> FormatPourImageEtroite(int largeur, int largeurSortie) {
  if (largeur >= largeurSortie) return std::nullopt;
  // First row that fits: the largest format that the image can fill.
  struct Ligne {
    int largeurMin, sortieMin, format;
  };
  static constexpr Ligne lignes[] = {
      {1152, 1153, 4}, {1024, 1025, 3}, {800, 801, 2}, {750, 751, 1}, {0, 641, 0}};
  for (const Ligne& l : lignes)
    if (largeur >= l.largeurMin && largeurSortie >= l.sortieMin) return l.format;
  return std::nullopt;
}

std::optional<int> FormatDeLargeur(int largeur) {
  for (int i = 0; i < int(FormatsSortie.size()); ++i)
    if (FormatsSortie[size_t(i)].largeur == largeur) return i;
  return std::nullopt;
}

QString TexteFormatReinitialise() {
  return QStringLiteral("Format de sortie réinitialisé !\n(image plus petite que format choisit)");
}

Taille TailleRedimensionnee(int srcL, int srcH, float ratio, float ratioFormat, int sortieL,
                            int sortieH) {
  Taille t;
  if (srcL <= 0 || srcH <= 0) return t;
  if (ratio >= ratioFormat) {
    t.largeur = sortieL;
    if (srcL < t.largeur) t.largeur = srcL >= 640 ? 640 : srcL;
    const double coef = double(srcL) / t.largeur;
    t.hauteur = int(VersEntier(srcH / coef));
  } else {
    t.hauteur = sortieH;
    if (srcH < t.hauteur) t.hauteur = srcH >= 480 ? 480 : srcH;
    const double coef = double(srcH) / t.hauteur;
    t.largeur = int(VersEntier(srcL / coef));
  }
  return t;
}

bool RedimensionnerSession(SessionRecord& s, cAdvancedImagery& ai, int filtre, bool rapide) {
  const bool recadree = s.LargeurRecadrage != 0 || s.HauteurRecadrage != 0;
  const int srcL = recadree ? s.LargeurRecadrage : s.LargeurOrigine;
  const int srcH = recadree ? s.HauteurRecadrage : s.HauteurOrigine;
  const float ratio = recadree ? s.RatioRecadrage : s.RatioOrigine;
  const Taille t =
      TailleRedimensionnee(srcL, srcH, ratio, s.RatioFormat, s.ApnLargCourant, s.ApnHautCourant);
  bool redimensionnee = false;
  if (!s.ImageCourante.Vide() && !ai.Info_Pixels(s.ImageCourante)) {
    Bitmap image;
    const bool lanczos = filtre < 1 || filtre > 4 || filtre == 3;
    redimensionnee =
        lanczos && ai.IO_LoadImageRedimensionnee(s.PathOrigine, t.largeur, t.hauteur, s.ImageCourante, image);
    int l = 0, h = 0;
    // Any file the direct road does not take: decoded reduced, resized as always.
    if (!redimensionnee && !ai.IO_LoadImageReduite(s.PathOrigine, 2 * t.largeur, 2 * t.hauteur, image, l, h))
      return false;
    s.ImageCourante = std::move(image);
  }
  if (!redimensionnee && rapide && t.largeur > 0 && t.hauteur > 0) {
    // Blocks of k x k averaged first, leaving at least twice the output size,
    // as a reduced decode does: the resampling then reads k x k times fewer pixels.
    const int k = std::min(ai.Info_Width(s.ImageCourante) / (2 * t.largeur),
                           ai.Info_Height(s.ImageCourante) / (2 * t.hauteur));
    Bitmap reduite;
    if (k >= 2 && ai.Effect_ReduireFacteur(s.ImageCourante, reduite, k)) s.ImageCourante = std::move(reduite);
  }
  if (!redimensionnee && !ai.Effect_Resize(s.ImageCourante, t.largeur, t.hauteur, filtre)) return false;
  s.Largeur = ai.Info_Width(s.ImageCourante);
  s.Hauteur = ai.Info_Height(s.ImageCourante);
  s.Cadrage = s.Hauteur != 0 ? float(s.Largeur) / float(s.Hauteur) : 0.0f;
  Bitmap copie;
  if (!ai.IO_Copy(s.ImageCourante, copie)) return false;
  ai.IO_DestroyBitmap(s.ImageFormatee);
  s.ImageFormatee = std::move(copie);
  s.LargeurFormatee = s.Largeur;
  s.HauteurFormatee = s.Hauteur;
  s.CadrageFormate = s.Cadrage;
  return true;
}

bool PreparerImageMesure(SessionRecord& s, cAdvancedImagery& ai) {
  const bool format750 = s.ChoixFormatMesure == u"1";
  const int refL = format750 ? 750 : 640;
  const int refH = format750 ? 562 : 480;
  ai.IO_DestroyBitmap(s.ImageMesure);
  if (!ai.IO_Copy(s.ImageCourante, s.ImageMesure)) return false;
  // A final picture of 750 wide measured in 750: its pixels stay as they are.
  if (s.ImageFinale && format750 && s.Largeur == 750) {
    s.LargeurMesure = s.Largeur;
    s.HauteurMesure = s.Hauteur;
    s.RatioMesure = s.Hauteur != 0 ? 750.0f / float(s.Hauteur) : 0.0f;
    s.CoefMesure = 750.0f / 750.0f;
    return true;
  }
  if (s.Largeur <= 0 || s.Hauteur <= 0) return false;
  double coef = 1;
  if (s.Largeur > s.Hauteur) {
    s.LargeurMesure = std::min(refL, s.Largeur);
    coef = double(s.Largeur) / s.LargeurMesure;
    s.HauteurMesure = int32_t(VersEntier(Arrondir(s.Hauteur / coef, 2)));
  } else {
    s.HauteurMesure = std::min(refH, s.Hauteur);
    coef = double(s.Hauteur) / s.HauteurMesure;
    s.LargeurMesure = int32_t(VersEntier(Arrondir(s.Largeur / coef, 2)));
  }
  s.RatioMesure = float(s.LargeurMesure) / float(s.HauteurMesure);
  if (!ai.Effect_Resize(s.ImageMesure, s.LargeurMesure, s.HauteurMesure, 3)) return false;
  s.CoefMesure = float(coef);
  return true;
}

}  // namespace tg
