#pragma once
// frmMesure: the reduced picture on which a line is drawn, in the three modes
// of ModeMesure (0 calibrate, 1 recover a scale, 2 measure). The geometry
// lives in GeometrieMesure.h; this window holds the controls and the overlay.
#include <QColor>
#include <QImage>
#include <QList>
#include <QPointF>
#include <QWidget>

#include <optional>

#include "core/SessionRecord.h"
#include "measure/GeometrieMesure.h"
#include "measure/Reglette.h"

class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPainter;
class QPushButton;
class QRadioButton;
class QTimer;

namespace tg {

class cAdvancedImagery;
class PanneauDefilant;

class frmMesure : public QWidget {
  Q_OBJECT

 public:
  // Opening: resets the line and the loupe, prepares the reduced picture,
  // InitMenu, and the scale recovery when ModeMesure is 1.
  frmMesure(SessionRecord& session, cAdvancedImagery& ai, QWidget* parent = nullptr);
  ~frmMesure() override;

  // Mouse on the reduced picture, display pixels; left button only.
  void SourisAppuyee(QPointF p);
  void SourisDeplacee(QPointF p, bool boutonGauche);
  void SourisRelachee(QPointF p);
  // Mouse in picLoupe, frame pixels.
  void LoupeSouris(QPointF p, bool relache);
  void Dessiner(QPainter& p);
  void DessinerLoupe(QPainter& p);

  double Angle() const { return angle_; }
  float Longueur() const { return longueur_; }
  const Loupe& EtatDeLaLoupe() const { return loupe_; }
  // The ruling the automatic calibration found, while it is shown.
  const std::optional<Reglette>& RegletteTrouvee() const { return reglette_; }
  // The rectangle drawn around the ruling, display pixels; empty when none.
  QRectF RectangleReglette() const { return zoneReglette_; }

 protected:
  void closeEvent(QCloseEvent* e) override;

 private:
  void AppliquerMenu();
  void ModeRecup();
  void MontrerRecupEchelle();
  void cmdValiderMesureTemp();
  void cmdAnnulerMesureTemp();
  void cmdRestartRecupEchelle();
  void cmdCopierInfos();
  void cmdLoupe(int index);
  void chkModeLoupeClic(bool coche);
  void cmdMnuCompteur(int index);
  void EffacerTrace();
  void ChoisirPointeur(int index);
  void MajPositions(QPointF p);
  void ClignoterCopierInfos();
  void ArreterClignotement();
  // Automatic calibration, mode 0: the ruling found on the full picture (or
  // in the rectangle drawn), its graduations drawn, accepted as a measure.
  void cmdEtalonnageAuto();
  void AfficherReglette();
  void cmdAccepterReglette();
  void OublierReglette();

  SessionRecord& s_;
  cAdvancedImagery& ai_;
  QImage image_;  // the reduced picture

  // Line state, display pixels (image pixels for the loupe's length).
  float x1_ = 0, y1_ = 0, x2_ = 0, y2_ = 0;
  double angle_ = 0;
  float longueur_ = 0;
  bool trace_ = false, boutonBas_ = false;
  QPointF pointeur_{-1, -1};
  bool croixVisible_ = true;
  bool echelleTemp_ = false;
  float micronsParPixelTemp_ = 0;
  Loupe loupe_;
  bool cadre_ = false;
  QPointF centreCadre_;
  QList<QPointF> croixVertes_;  // display pixels
  QPointF croixLoupe_{-1, -1};  // frame pixels
  bool ligneLoupe_ = false;
  bool compteurActif_ = false;
  int16_t nbPoints_ = 0;
  QList<QPair<QPointF, int>> points_;  // centre, radius
  QColor couleur_{255, 0, 0};
  int epaisseurTrace_ = 1;
  int taillePointeur_ = 60, epaisseurPointeur_ = 1;
  static constexpr int TailleCroix = 8;  // arms of the green cross, display pixels
  bool clignote_ = false;
  std::optional<Reglette> reglette_;
  QRectF zoneReglette_;     // display pixels
  QPointF coinZone_;        // where the rectangle's drawing began
  bool traceZone_ = false;
  // The accepted automatic measure: pixels put in txtMesurePixel, for microns.
  QString pixelsReglette_;
  int micronsReglette_ = 0;

  PanneauDefilant* panneauImage_ = nullptr;
  QWidget* picCadre_ = nullptr;
  QWidget* picImage_ = nullptr;
  QWidget* picLoupe_ = nullptr;
  QPushButton* cmdLoupe_[2] = {};
  QLineEdit* txtLargeurImgOrigine_ = nullptr;
  QLineEdit* txtFocaleImgOrigine_ = nullptr;
  QLineEdit* txtMesurePixel_ = nullptr;
  QLabel* lblUniteMesure_ = nullptr;
  QLabel* lblPosX_ = nullptr;
  QLabel* lblPosY_ = nullptr;
  QLabel* lblAngle_ = nullptr;
  QLabel* lblLoupe_ = nullptr;
  QLabel* picAstuce_ = nullptr;
  QRadioButton* optLigne_[3] = {};
  QCheckBox* chkModeLoupe_ = nullptr;
  QFrame* picCreerTable_ = nullptr;
  QPushButton* cmdCopierInfos_ = nullptr;
  QFrame* picRecupEchelle_ = nullptr;
  QLineEdit* txtMicTemp_ = nullptr;
  QLineEdit* txtPixTemp_ = nullptr;
  QPushButton* cmdRestartRecupEchelle_ = nullptr;
  QPushButton* cmdListeMesure_ = nullptr;
  QFrame* fraMenuCompteur_ = nullptr;
  QFrame* picCompteur_ = nullptr;
  QComboBox* combTaillePoints_ = nullptr;
  QLineEdit* txtCompteurPoints_[2] = {};
  QComboBox* picPointeur_ = nullptr;
  QComboBox* combEpaisseurLigne_ = nullptr;
  QTimer* TimerAstuce_ = nullptr;
  QTimer* TimerAjouterTable_ = nullptr;
  QFrame* fraEtalonnageAuto_ = nullptr;
  QComboBox* combDivision_ = nullptr;
  QCheckBox* chkZoneReglette_ = nullptr;
  QFrame* picReglette_ = nullptr;
  QLabel* lblReglette_ = nullptr;
};

}  // namespace tg
