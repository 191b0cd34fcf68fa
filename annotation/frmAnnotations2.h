#pragma once
// frmAnnotations2: lines, arrows, dimension lines, text stamps, a grid and a
// collage burnt into a private copy of the session picture, shown at 1:1.
// Nothing reaches the session before "Valider et sortir". The tools' state
// and rules live in OutilsAnnotation; this window holds the controls, hands
// them and the mouse to it and shows what it holds.
#include <QImage>
#include <QPointF>
#include <QPointer>
#include <QWidget>

#include <optional>

#include "annotation/CanevasAnnotation.h"
#include "annotation/OutilsAnnotation.h"
#include "annotation/ReglagesAnnotation.h"
#include "core/SessionRecord.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QScrollBar;
class QSpinBox;

namespace tg {

class cAdvancedImagery;
class frmFichierPhoto;

class frmAnnotations2 : public QWidget {
  Q_OBJECT

 public:
  // `principal` may be null (tests): nothing is then hidden, shown or refreshed.
  frmAnnotations2(SessionRecord& session, cAdvancedImagery& ai, frmFichierPhoto* principal,
                  QWidget* parent = nullptr);
  ~frmAnnotations2() override;
  // Opens the window over the main window, which it hides until unload.
  static frmAnnotations2* Afficher(frmFichierPhoto& principal);
  // The picture whole beside the tools: the size the window asks of the screen.
  QSize TailleVoulue() const;

  // Mouse on picImage, picture pixels.
  void SourisAppuyee(QPointF p, Qt::MouseButton bouton);
  void SourisDeplacee(QPointF p, Qt::MouseButtons boutons);
  void SourisRelachee(QPointF p, Qt::MouseButton bouton);
  // The committed picture, then the temporary layer, within `zone`.
  void Peindre(QPainter& p, const QRect& zone) const;

  // The named operations.
  void CollerTexte();
  void ValiderEdition();
  void ViderUndo();
  void RetablirDefaut();
  void cmdUndo();
  void cmdToutEffacer();
  void cmdSortir();
  void cmdValiderSortir();
  void ChargerImageCollage(const QString& chemin, bool pressePapier);
  void CollerPicCollage();
  void AnnulerCollage();
  void cmdGrille(int index);
  void cmdOuvrirImage(int index);
  void picStyle(int index);

  // What the tests and the benchmarks read.
  const OutilsAnnotation& Outils() const { return o_; }
  const QImage& Travail() const { return o_.Travail(); }
  const QImage& Depart() const { return o_.Depart(); }
  int NbUndo() const { return o_.NbUndo(); }
  int CptNumAuto() const { return o_.CptNumAuto(); }
  const MemoireUndo& Memoire() const { return o_.Memoire(); }
  const ReglagesAnnotation& Reglages() const { return o_.Reglages(); }
  const CalqueTemporaire& Calque() const { return o_.Calque(); }
  double AngleLigne() const { return o_.AngleLigne(); }
  int LongueurLigne() const { return o_.LongueurLigne(); }
  bool CollageEnCours() const { return o_.CollageEnCours(); }
  QPoint PositionCollage() const { return o_.PositionCollage(); }

 protected:
  void closeEvent(QCloseEvent* e) override;
  void resizeEvent(QResizeEvent* e) override;
  bool eventFilter(QObject* objet, QEvent* e) override;

 private:
  void Construire();
  QWidget* ConstruireOutils();
  QWidget* ConstruireSorties();
  // Shows the tools' state: floating boxes, captions, mode, numbering,
  // cross-hair, collage, and repaints what changed.
  void Montrer();
  // Shows the settings in their controls and the example.
  void MontrerReglages();
  void MajExemple();
  void Rafraichir();
  void TaillesBoites(bool ajuster);
  void BordCollage();
  void MontrerCollage();
  void ChangerPasGrille(QLineEdit* texte, QSpinBox* pas);
  void ChoisirCouleurGrille(int index);
  void PlacerBarres();
  void Defiler();
  void Replier(QFrame* cadre, bool replie);
  void Dechargement();
  void Sauver();

  SessionRecord& s_;
  QPointer<frmFichierPhoto> principal_;
  OutilsAnnotation o_;
  bool dechargee_ = false;

  // What is shown: the layer's pixels at the last drawing, the committed
  // picture's generation, the styles last given to the labels.
  QRect zoneCalque_;
  int generationVue_ = -1;
  std::optional<StyleAngle> styleAngleVu_;
  std::optional<EtatCompteur> etatCompteurVu_;
  int32_t couleurCroixVue_ = -1;

  // Controls.
  QWidget* fraOutils_ = nullptr;
  QWidget* fraSorties_ = nullptr;
  QWidget* picCadre_ = nullptr;
  QWidget* picImage_ = nullptr;
  QScrollBar* HScroll1_ = nullptr;
  QScrollBar* VScroll1_ = nullptr;
  QLabel* lblInfosFenetre_ = nullptr;
  QLabel* lblLongueurLigne_ = nullptr;
  QLabel* lblAngle_ = nullptr;
  QLabel* lblCompteur_ = nullptr;
  QLabel* lblX_ = nullptr;
  QLabel* lblY_ = nullptr;
  QLabel* lblGaucheDroite_ = nullptr;
  QRadioButton* optTexteEtLigne_[4] = {};
  QCheckBox* chkBriderLigne_ = nullptr;
  QPushButton* cmdUndo_ = nullptr;
  QFrame* fraLigne_ = nullptr;
  QFrame* fraTexte_ = nullptr;
  QFrame* fraCollage_ = nullptr;
  QComboBox* combEpaisseurLigne_ = nullptr;
  QComboBox* combTaillePointeur_ = nullptr;
  QComboBox* combAngleFleche_ = nullptr;
  QRadioButton* optPointeur_[4] = {};
  QRadioButton* optCouleurCotes_[3] = {};
  QButtonGroup* grpCouleurCotes_ = nullptr;
  QRadioButton* optUniteCote_[2] = {};
  QFrame* linExemple_ = nullptr;
  QLineEdit* txtExemple_ = nullptr;
  QRadioButton* optFondTexte_[2] = {};
  QCheckBox* chkCouleurTxtplusLigne_ = nullptr;
  QCheckBox* chkNumAuto_ = nullptr;
  QLabel* lblStart_ = nullptr;
  QLineEdit* txtCptNumAuto_ = nullptr;
  QPushButton* cmdNumAuto_ = nullptr;
  QLineEdit* txtgrilleL_ = nullptr;
  QLineEdit* txtgrilleH_ = nullptr;
  QSpinBox* UpDownL_ = nullptr;
  QSpinBox* UpDownH_ = nullptr;
  QPushButton* picColorGrille_[8] = {};
  QLabel* lblInfoGrille_ = nullptr;
  QLabel* lblEquivMicrons_ = nullptr;
  QRadioButton* optBordVignette_[2] = {};
  QRadioButton* optEpBord_[3] = {};
  QRadioButton* optCoulBord_[3] = {};
  QFrame* fraEpBord_ = nullptr;
  QFrame* fraCoulBord_ = nullptr;

  // Floating controls over the picture, never part of it.
  QFrame* picEditeur_ = nullptr;
  QLineEdit* txtEdition_ = nullptr;
  QFrame* picValidation_ = nullptr;
  QFrame* lngRepereH_ = nullptr;
  QFrame* lngRepereV_ = nullptr;
  QFrame* linCrossH_ = nullptr;
  QFrame* linCrossV_ = nullptr;
  QLabel* picCollage_ = nullptr;
  QFrame* shpCollage_ = nullptr;
  QFrame* picValidationCollage_ = nullptr;
};

}  // namespace tg
