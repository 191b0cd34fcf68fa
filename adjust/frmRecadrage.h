#pragma once
// frmRecadrage: a frame over a reduced copy of the picture, its proportion and
// size chosen, placed with the mouse; cmdOK cuts the picture to it. The frame
// starts at the output format: a crop that the resizing will only reduce.
#include <QImage>
#include <QPointer>
#include <QWidget>

#include "adjust/Recadrage.h"
#include "core/SessionRecord.h"

class QCheckBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSlider;

namespace tg {

class cAdvancedImagery;
class frmFichierPhoto;

class frmRecadrage : public QWidget {
  Q_OBJECT

 public:
  // `principal` may be null (tests): nothing is then hidden or shown.
  frmRecadrage(SessionRecord& session, cAdvancedImagery& ai, frmFichierPhoto* principal, QWidget* parent = nullptr);
  ~frmRecadrage() override;
  static frmRecadrage* Afficher(frmFichierPhoto& principal);

  // Mouse on Picture1, pixels of the reduced copy.
  void SourisAppuyee(QPointF p);
  void SourisDeplacee(QPointF p);
  void SourisRelachee();
  void Peindre(QPainter& p) const;

  void cmdOK();
  void cmdAnnuler();
  void cmdValiderRatio();
  void cmdAnnulerRatio();
  void Slider1(int valeur);

  const Cadre& Cadre_() const { return cadre_; }
  float RatioCadre() const { return ratioCadre_; }
  bool ShpCartoucheVisible() const { return cartoucheVisible_; }

 protected:
  void closeEvent(QCloseEvent* e) override;

 private:
  void InitCadre();
  void MajCadre();
  void MajPosition();
  void Titre();
  void Placer(float x, float y);
  void BloquerEtDebloquer();
  void chkBloquerDeplacement(bool coche);
  void chkDebriderCadrage(bool coche);
  void chkTaille(bool coche);
  void Finir();

  SessionRecord& s_;
  cAdvancedImagery& ai_;
  QPointer<frmFichierPhoto> principal_;
  QImage copie_;
  Cadre cadre_;
  float ratioCadre_ = 1;
  static constexpr float kRatioCartouche = 562.0f / 40.0f;  // frame height over outline height
  int32_t positionSlider_ = 0;
  bool deplacement_ = false;
  bool cartoucheVisible_ = false;
  QColor couleur_{255, 0, 0};
  bool fini_ = false;

  QWidget* Picture1_ = nullptr;
  QFrame* fraRatioRecadrage_ = nullptr;
  QRadioButton* optRatioRecadrage_[5] = {};
  QLineEdit* txtValRatio_ = nullptr;
  QCheckBox* chkTaille_ = nullptr;
  QLineEdit* txtLargeurPix_ = nullptr;
  QLineEdit* txtHauteurPix_ = nullptr;
  QLabel* lblLargeur_ = nullptr;
  QLabel* lblHauteur_ = nullptr;
  QLabel* lblSeparateurX_ = nullptr;
  QFrame* fraSlider_ = nullptr;
  QSlider* Slider1_ = nullptr;
  QCheckBox* chkBloquerDeplacement_ = nullptr;
  QCheckBox* chkDebriderCadrage_ = nullptr;
  QLabel* lblPosX_ = nullptr;
  QLabel* lblPosY_ = nullptr;
  QLabel* lblLcadrage_ = nullptr;
  QLabel* lblHcadrage_ = nullptr;
  QLabel* lblRatio_ = nullptr;
  QLabel* lblRatioFixe_ = nullptr;
};

}  // namespace tg
