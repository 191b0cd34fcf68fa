#pragma once
// frmAnnotations2: lines, arrows, dimension lines, text stamps, a grid and a
// collage burnt into a private copy of the session picture, shown at 1:1.
// Nothing reaches the session before "Valider et sortir". The drawing rules
// live in GeometrieAnnotation.h and CanevasAnnotation.h; this window holds
// the controls, the temporary layer and the memory of steps.
#include <QImage>
#include <QPointF>
#include <QPointer>
#include <QWidget>

#include "annotation/CanevasAnnotation.h"
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
  const QImage& Travail() const { return travail_; }
  const QImage& Depart() const { return depart_; }
  int NbUndo() const { return nbUndo_; }
  int CptNumAuto() const { return cptNumAuto_; }
  const MemoireUndo& Memoire() const { return memoire_; }
  const ReglagesAnnotation& Reglages() const { return r_; }
  const CalqueTemporaire& Calque() const { return calque_; }
  double AngleLigne() const { return angleLigne_; }
  int LongueurLigne() const { return longueurLigne_; }
  bool CollageEnCours() const { return collageEnCours_; }
  QPoint PositionCollage() const;

 protected:
  void closeEvent(QCloseEvent* e) override;
  void resizeEvent(QResizeEvent* e) override;
  bool eventFilter(QObject* objet, QEvent* e) override;

 private:
  void Construire();
  QWidget* ConstruireOutils();
  QWidget* ConstruireSorties();
  void ChargerImageDepart();
  void ChargerValeurs();
  void EcritureIni();
  void MajCompteurs();
  void MajExemple();
  void PlacerCroix(QPointF p);
  void MajCroix();
  void AppliquerCroix(int forme, int couleur);
  void Dessiner();
  void CalculAngle(float x, float y);
  void BriderLigne(float x0, float y0);
  void DessinerExtLigne(float x, float y, double angle, int longueur);
  void LigneElastique(float x, float y);
  void Montrer();
  void Rafraichir(const QRect& zone);
  void Valider(const QImage& avant);
  void Erreur(const QString& texte);
  void ErreurGarde(const QString& procedure, const QString& description);
  ModeAnnotation Mode() const;
  void ChoisirMode(int index);
  void ChoisirPointeur(int index);
  void ChoisirCouleurCotes(int index);
  void optFondTexte(int index);
  void chkNumAuto(bool coche);
  void cmdNumAuto();
  void ChangerPasGrille(QLineEdit* texte, QSpinBox* pas);
  void ChoisirCouleurGrille(int index);
  void CouleurLigne(int32_t couleur);
  void CouleurTexte(int32_t couleur);
  void PlacerBarres();
  void Defiler();
  void Replier(QFrame* cadre, bool replie);
  void Dechargement();
  void Sauver();

  SessionRecord& s_;
  cAdvancedImagery& ai_;
  QPointer<frmFichierPhoto> principal_;
  ReglagesAnnotation r_;
  QString cheminIni_;

  QImage travail_;  // ImageTravail
  QImage depart_;   // ImageUndo[0]
  MemoireUndo memoire_;
  CalqueTemporaire calque_;
  QRect zoneCalque_;  // what the layer covered at the last drawing
  int largeurImage_ = 0, hauteurImage_ = 0;
  int nbUndo_ = 0;
  int cptNumAuto_ = 1;
  bool dechargee_ = false;

  // The drag.
  float debutX_ = 0, debutY_ = 0, finX_ = 0, finY_ = 0, brideX_ = 0, brideY_ = 0;
  float ecartX_ = 0, ecartY_ = 0, milieuX_ = 0, milieuY_ = 0;
  double angleLigne_ = 0;
  int longueurLigne_ = 0;
  Placement placement_;
  bool boutonGauche_ = false;
  bool gardeFleche_ = false;  // the arrow angle's error is shown once a drag
  int32_t couleurDessin_ = 0x404040;  // the drawing colour and width of the layer
  int epaisseurDessin_ = 2;

  // The cross-hair.
  int32_t couleurCroix_ = 0x0000FF;
  int epaisseurCroix_ = 1, longueurCroix_ = 60;
  QPointF croix_{-1, -1};

  // The grid.
  int32_t couleurGrille_ = 0x404040;

  // The collage.
  QImage collage_;
  bool collageEnCours_ = false, collageFige_ = false;

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
