#pragma once
// Drawing of the cartouche: the scale (or microscope) block on the left,
// title, subtitle and third line right-aligned on the right. Takes plain
// values, so that what is drawn can be compared pixel by pixel. Every
// coordinate is one of the final picture; y of a text is its baseline.
#include <QColor>
#include <QFont>
#include <QImage>
#include <QString>
#include <array>

namespace tg {

// The four shapes of the cartouche canvas, from the user's choice
// CartoucheHB ("1": under the image, 3 lines; "0": on the image, 2 lines).
struct FormeCartouche {
  int hauteurCartouche = 0;  // 60, 103, 64 or 40
  int hauteurFond = 0;       // background canvas height
  QString infos;             // text of lblInfosCartouche
};
// hauteurCanevas: the background's height before the cartouche (480 or the
// format's height); "1" adds 60 rows under it.
FormeCartouche CalculerFormeCartouche(const QString& cartoucheHB, float cadrageFormate,
                                      int largeurFormatee, int largeurFond, int hauteurCanevas,
                                      int hauteurFormatee);

// y where the left block starts (baseline of the bar), by canvas height.
double PosYEchelle(int hauteurCartouche);

// Joins up to three fields into one line; choix 0 to 7 (4: Texte1, 2:
// Texte2, 1: Texte3). The dangling " - " of some cases is kept on purpose.
QString AssemblerChoix(const QString& texte1, const QString& texte2, const QString& texte3,
                       const QString& prefixe1, const QString& prefixe2, const QString& prefixe3,
                       int choix);
// "0"/"1" text as a binary number, first character the highest bit; any
// other character counts as 0.
int BinaireVersEntier(const QString& texte);

// The shadow strip applies to 3:2 images only (Round(cadrage, 1) = 1.5).
bool OmbrageApplicable(float cadrageFormate);
// Index 1 to 5 of the strip for the output width, 0 for a width without one.
int IndexOmbre(int largeurFormatee);
// The strip of that index: width x 64, a grey gradient darkening towards
// the top, as a JPEG-like RGB picture. Null for index 0.
QImage ImageOmbre(int index);

struct ValeursCartouche {
  int largeur = 640;        // LargeurCartouche
  int hauteur = 60;         // HauteurCartouche
  QColor fond = Qt::white;  // background of picCartouche
  QImage ombre;             // background picture (shadow strip), drawn at 0,0
  QString cartoucheHB = "1";
  QString separateur = ",";  // SeparateurDecimal

  // Left block.
  bool echelleVisible = false;        // fraEchelle shown
  bool cartoucheValide = true;        // after ControleErreur and InitVarEchelle
  float echellePixels = 0;            // bar length, pixels
  QColor couleurEchelle = Qt::black;  // shpEchelle
  int optUnite = 0;                   // 0: microns, 1: millimetres
  double longueur = 0;                // txtLongueur, microns
  bool extrapolationFoc = false;
  QString objectif;  // ComboObjectif
  float reductionAffichee = 0;
  QString microscope, modele;                 // session values (table applied)
  QString microMan, objectifMan, apPhotoMan;  // txtMicroMan, ComboObjectifMan, txtApPhotoMan
  int optUniteObj = 0;                        // 0: "x", 1: "mm"
  std::array<bool, 9> choixChamp{};           // chkChoixChamp 0 .. 8

  // Right block.
  QColor couleurTexte = Qt::black;  // shpTexte
  QFont policeTitre, policeSousTitre;
  int largeurFormatee = 0, apnLargCourant = 800;
  QString titre, eclairage, montage, coloration, provenance, auteur, dateTexte;
};

// The caption of the bar: value, unit, " [*]" when extrapolated, objective,
// and "   R = 1:" + reduction when it is 1 or more.
QString LegendeEchelle(const ValeursCartouche& v);

// The lines of the left block; empty when nothing is drawn.
// Scale block, 3 lines only: microscope and camera of the table applied.
QString TexteMicroscope(const ValeursCartouche& v);
// No-scale block: microscope and objective typed by hand, then the camera.
QString TexteSansEchelle1(const ValeursCartouche& v);
QString TexteSansEchelle2(const ValeursCartouche& v);

// Clears `canevas` to v.largeur x v.hauteur in v.fond (shadow strip over it)
// and draws the cartouche.
void DessinerCartouche(QImage& canevas, const ValeursCartouche& v);

}  // namespace tg
