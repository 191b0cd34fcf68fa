#pragma once
// The geometry of frmMesure without its widgets: angle and length of the line,
// display ratio, the value shown per mode, the menu state per mode, the manual
// scale, and the loupe's states 0 to 4. Display pixels are those of the
// reduced picture (ImageMesure); image pixels are those of the full picture.
#include <QString>
#include <cstdint>
#include <optional>

#include "core/SessionRecord.h"

namespace tg {

// Image pixels per display pixel: Largeur / LargeurAffichee; 0 when there is
// no reduced picture yet.
float RatioAffichage(int32_t largeur, int32_t largeurAffichee);
// Same, from the sizes that PreparerImageMesure left in the session.
float RatioAffichage(const SessionRecord& s);

// A display position in image pixels.
inline float VersPixelsImage(float affichage, float ratio) { return affichage * ratio; }

// CalculAngle: the angle in degrees, 0 to 360, of the line from (x1, y1) to
// (x, y), y downwards. dx and dy are first rounded to 16-bit integers.
// A pointer on the first point's row or column leaves `angle` as it was, so a
// horizontal or vertical line keeps the previous angle (0 after a fresh
// press). DivisionParZero: dx rounds to 0 while x differs from x1; `angle`
// is left as it was and the caller shows TexteErreurCalculAngle().
enum class ResultatAngle { Calcule, Inchange, DivisionParZero };
ResultatAngle CalculAngle(float x1, float y1, float x, float y, double& angle);
QString TexteErreurCalculAngle();

// Straight length between two points; exactly |dx| when dy is 0 and |dy|
// when dx is 0.
float Distance(float x1, float y1, float x2, float y2);

// Release in mode 0: a table is offered for a line longer than 10 display pixels.
inline bool OffreTable(float longueur) { return longueur > 10.0f; }

// The value boxes after a move of the line (step 3 of the picking).
struct ValeurMesure {
  QString txtMesurePixel;
  std::optional<QString> txtPixTemp;  // nothing: the box keeps its text
};
struct ContexteMesure {
  int16_t mode = 0;  // ModeMesure
  float ratio = 1;   // RatioAffichage
  bool echelleTemp = false;
  float micronsParPixelTemp = 0;
  bool imageFinale = false;
  float micronsParPixel = 0;
  QString separateur = QStringLiteral(",");
};
// Modes 0 and 1: whole image pixels, copied to txtPixTemp. Mode 2: microns to
// 1 decimal, by the manual scale first, else by the final picture's scale.
// Nothing in mode 2 without either: the box stays as it was.
std::optional<ValeurMesure> ValeurAffichee(const ContexteMesure& c, float longueur);

// InitMenu: what each mode shows.
struct EtatMenuMesure {
  QString titre;
  bool listeMesureActive = false;  // cmdListeMesure
  QString unite;                   // lblUniteMesure
  int optLigne = 0;                // 0 horizontal, 1 vertical, 2 free
  bool loupeVisible = false;       // chkModeLoupe shown
  bool loupeActive = false;        // chkModeLoupe enabled (Largeur from 1500)
  bool fondVert = false;           // txtLargeurImgOrigine/txtFocaleImgOrigine light green
  bool astuce = false;             // picAstuce shown for 4000 ms
  bool compteur = false;           // fraMenuCompteur enabled, points of size 2
};
EtatMenuMesure InitMenu(int16_t mode, int32_t largeur, int32_t largeurAffichee);
// The light green of the calibration mode, 0xBBGGRR.
inline constexpr int VertClair = 0x80FF80;

// ModeRecup: the scale can be recovered from the comment block when both
// texts are numbers above 0.
bool EchelleRecuperable(const QString& echellePix, const QString& echelleMic);
inline const QString TitreRecupEchelle = QStringLiteral(" Récupérer une échelle ");
QString QuestionRecupEchelle();
// The same for a scale another program wrote (see LireEchelleExterne).
QString QuestionRecupEchelleExterne(const QString& source, const QString& pixelsPour100);

// cmdValiderMesureTemp: microns typed in txtMicTemp for the pixels of
// txtPixTemp. Valid when the microns are a number whose rounding (ties to
// even) is at least 1 (so 0,4 and 0,5 are refused) and the pixels a number
// above 0; then the manual scale in microns per pixel.
std::optional<float> ValiderEchelleTemp(const QString& txtMicTemp, const QString& txtPixTemp);
inline const QString TitreEchelleRefusee = QStringLiteral("Equivalence Microns :");
inline const QString TexteEchelleRefusee = QStringLiteral("Valeur numérique uniquement et > 0 !");

// The loupe of the calibration mode: two 100 x 100 frames of image pixels
// picked on the reduced display, each giving one point to the pixel.
class Loupe {
 public:
  static constexpr int Cote = 100;  // frame side, image pixels

  int16_t EtatLoupe = 0;  // 0 idle, 1 first point being placed, 2 first done,
                          // 3 second being placed, 4 done
  float LoupeX1 = 0, LoupeY1 = 0, LoupeX2 = 0, LoupeY2 = 0;  // frame origins
  float PointX1 = 0, PointY1 = 0, PointX2 = 0, PointY2 = 0;  // picked points
  bool HorsImage = false;
  float Longueur = 0;  // image pixels, once state 4

  enum class Clic { Ignore, Cadre, HorsImage };
  // Click on the reduced picture at display (x, y), in state 0 or 2: the frame
  // origin ratio x pointer - 50 is kept; inside the image the state goes to 1
  // (or 3), outside it stays and TexteHorsImage is shown. Other states ignore it.
  Clic CliquerImage(float x, float y, float ratio, int32_t largeur, int32_t hauteur);
  // Origin of the current frame, whole image pixels, to copy the region.
  int OrigineX() const;
  int OrigineY() const;

  // Release in picLoupe at (x, y), frame pixels, clamped to 0..100.
  void RelacherDansLoupe(float x, float y);

  // cmdLoupe(1).
  struct Validation {
    enum Action { Rien, Erreur, PremierPoint, DeuxiemePoint, CacherCroix } action = Rien;
    QString titre, texte;
    QString txtMesurePixel;  // DeuxiemePoint: whole image pixels
  };
  Validation Valider();
  // cmdLoupe(0), unchecking the mode, a new line.
  void Reinitialiser() { *this = Loupe(); }
};
inline const QString TexteHorsImage = QStringLiteral("Loupe en dehors de l'image ...");
inline const QString TitreModeLoupe = QStringLiteral(" Mode Loupe (Zoom étalon)");
inline const QString TexteModeLoupe =
    QStringLiteral("Cliquez sur le premier point de l'étalon, à gauche (ou en haut) ...");

}  // namespace tg
