#include "core/Session.h"

#include <array>

#include "imaging/cAdvancedImagery.h"
#include "platform/Nombres.h"

namespace tg {

namespace {
void LireTaille(SessionRecord& s, cAdvancedImagery& ai) {
  s.LargeurOrigine = ai.Info_Width(s.ImageCourante);
  s.HauteurOrigine = ai.Info_Height(s.ImageCourante);
}

float Rapport(int32_t largeur, int32_t hauteur) {
  return hauteur != 0 ? float(largeur) / float(hauteur) : 0.0f;
}
}  // namespace

void ReinitialiserSession(SessionRecord& s, cAdvancedImagery& ai, QSize tailleFichier) {
  LireTaille(s, ai);
  // A picture decoded reduced keeps the file's size: every scale refers to it.
  if (tailleFichier.isValid() && !tailleFichier.isEmpty()) {
    s.LargeurOrigine = tailleFichier.width();
    s.HauteurOrigine = tailleFichier.height();
  }
  s.Largeur = s.LargeurOrigine;
  s.LargeurCadrage = s.LargeurOrigine;
  s.Hauteur = s.HauteurOrigine;
  s.ImageTournee = false;
  s.LargeurRecadrage = 0;
  s.HauteurRecadrage = 0;
  s.RatioRecadrage = 0;
  s.Cadrage = Rapport(s.LargeurOrigine, s.HauteurOrigine);
  s.RatioOrigine = s.Cadrage;
  s.PortraitOrigine = s.RatioOrigine < 1 && s.LargeurOrigine < s.HauteurOrigine;
  s.PathOrigine.clear();
  s.PoidsFichier = 0;
  s.MicronsParPixelExterne = 0;
  s.SourceEchelleExterne.clear();
  // What belonged to the former picture: its block, its final picture, its
  // annotations, its scale, the way it was opened. The readers and windows
  // decide them again for this one.
  s.ImageDejaFormatee = false;
  s.ImageFinale = false;
  s.AnnotationsPresentes = false;
  s.ModeEtalon = false;
  s.MesureTemp = false;
  s.DepuisCartouche = false;
  s.MicronsParPixel = 0;

  // Cartouche fields. The seven classification keys stay: the reader of the
  // comment block overwrites them.
  for (QString* champ :
       {&s.TitreImage, &s.NomAuteurImage, &s.Provenance, &s.Coloration, &s.Preparation,
        &s.Microscope, &s.Eclairage, &s.Objectif, &s.EchellePix, &s.EchelleMic, &s.Modele,
        &s.DateImage, &s.DateObservation, &s.Application, &s.ExifTexte, &s.IptcTexte,
        &s.CommentaireImage, &s.LargeurOrigineMeta, &s.MotClef, &s.MicroscopeMeta,
        &s.ApPhotoMeta, &s.ObjectifMeta})
    champ->clear();
  s.UniteEtalon = QStringLiteral("um");
  s.UniteObj = QStringLiteral("x");
  s.ExtrapolationFoc = false;
  s.TraitNiveaux = s.TraitPoussieres = s.TraitBruit = s.TraitDeconvolution = false;
  s.FocaleAPN = 0;
  s.DigitalZoom = 0;
  s.ReductionImage = 0;
  s.ModeMesure = 0;
  s.AncresEchelle.clear();
  s.ListeMotsClefs.clear();
  // The cartouche form starts afresh on a new picture.
  s.MemCartouche = MemoireCartouche{};
}

void FermerImageSession(SessionRecord& s, cAdvancedImagery& ai) {
  ai.IO_DestroyBitmap(s.ImageSansFiltre);
  ai.IO_DestroyBitmap(s.ImageCourante);
  ai.IO_DestroyBitmap(s.ImageFormatee);
  ai.IO_DestroyBitmap(s.ImageMesure);
  ai.IO_DestroyBitmap(s.ImageFiltre);
  s.PathOrigine.clear();
  s.PoidsFichier = 0;
  s.ImageTournee = false;
  s.ImageFinale = false;
  s.ModeEtalon = false;
  s.MesureTemp = false;
  s.Etape = 0;
}

QString IconeCadrage(float cadrage, float ratioFormat) {
  QString icone;
  if (Arrondir(cadrage, 3) == Arrondir(ratioFormat, 3)) icone = QStringLiteral("Apn");
  if (cadrage > ratioFormat) icone = QStringLiteral("Paysage");
  if (Arrondir(cadrage, 1) == 1.5) icone = QStringLiteral("RN");
  if (cadrage < ratioFormat) icone = QStringLiteral("Portrait");
  if (Arrondir(cadrage, 1) == 1.0) icone = QStringLiteral("Carre");
  if (Arrondir(cadrage, 3) == 1.333) icone = QStringLiteral("Apn");
  return icone;
}

InfosImageAffichees CalculerInfosImage(const SessionRecord& s) {
  InfosImageAffichees i;
  const QString& sep = s.SeparateurDecimal;
  i.txtTaille = QString::number(s.Largeur) + " x " + QString::number(s.Hauteur);
  i.txtCadrage = TexteReel(Arrondir(s.Cadrage, 3), sep) + " x 1";
  i.iconeCadrage = IconeCadrage(s.Cadrage, s.RatioFormat);
  if (s.FocaleAPN > 0) {
    i.txtFocale = TexteReel(s.FocaleAPN, sep) + " mm";
    i.iconeZoom = QStringLiteral("ZoomOk");
  } else {
    i.txtFocale = QStringLiteral("N/A");
    i.iconeZoom = QStringLiteral("ZoomVide");
  }
  if (s.DigitalZoom > 1) {
    i.zoomRouge = true;
    i.txtDigitalZoom = "Z.num = x" + TexteReel(s.DigitalZoom, sep);
    i.iconeZoom = QStringLiteral("ZoomNum");
    i.avertirZoom = true;
  }
  return i;
}

QString TexteAvertissementZoom(const SessionRecord& s) {
  return "Attention, vous avez utilisé un zoom numérique de " +
         TexteReel(s.DigitalZoom, s.SeparateurDecimal) +
         "\nVous ne pourrez pas étallonner avec cette photo !";
}

bool TournerImageSession(SessionRecord& s, cAdvancedImagery& ai, int angle) {
  if (!ai.Effect_Rotate90(s.ImageCourante, angle)) return false;
  LireTaille(s, ai);
  s.Largeur = s.LargeurOrigine;
  s.Hauteur = s.HauteurOrigine;
  s.RatioOrigine = Rapport(s.LargeurOrigine, s.HauteurOrigine);
  s.Cadrage = Rapport(s.Largeur, s.Hauteur);
  s.ImageTournee = s.LargeurCadrage == s.HauteurOrigine;
  return true;
}

void PrendreFormatConfig(SessionRecord& s) {
  s.ApnLargCourant = s.ApnLarg == 0 ? int16_t(800) : s.ApnLarg;
  s.ApnHautCourant = s.ApnHaut == 0 ? int16_t(600) : s.ApnHaut;
  s.ApnLargVersHaut = int16_t(VersEntier(s.ApnLargCourant / 1.5));
  s.RatioFormat = float(s.ApnLargCourant) / float(s.ApnHautCourant);
  static constexpr std::array<int, 5> largeurs = {640, 750, 800, 1024, 1152};
  for (size_t i = 0; i < largeurs.size(); ++i)
    if (largeurs[i] == s.ApnLargCourant) s.ChoixFormat = int16_t(i);
}

}  // namespace tg
