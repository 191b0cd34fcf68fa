#pragma once
// The annotation tools without their window: the committed picture and the
// memory of its steps, the temporary layer, the mode, the drag and its
// placement flags, the number counter, the grid, the collage and the
// cross-hair. The window hands it the mouse (picture pixels) and each
// control's change, then shows what it holds: which floating boxes are
// visible and where, the captions, the numbering's enabled state. Messages go
// through the dialogue seam.
#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>

#include "annotation/CanevasAnnotation.h"
#include "annotation/GeometrieAnnotation.h"
#include "annotation/ReglagesAnnotation.h"

namespace tg {

class cAdvancedImagery;
struct SessionRecord;

// The sizes of the editor box and of its buttons box, in pixels.
struct TaillesBoites {
  int editeurL = 0, editeurH = 0, validationL = 0, validationH = 0;
};

// The floating controls over the picture: the editor, its buttons and the
// two marks of a text placed alone. Positions are picture pixels.
struct Flottants {
  bool editeur = false, validation = false, reperes = false;
  QPoint posEditeur, posValidation;
  QRect repereH, repereV;
};

// The cross-hair: two lines `longueur` long and `epaisseur` wide centred on
// the mouse; none when the length is 0 or the mouse has not come yet.
struct Croix {
  int epaisseur = 1, longueur = 60;
  int32_t couleur = 0x0000FF;
  QPoint position{-1, -1};
  bool Visible() const { return longueur > 0 && position.x() >= 0; }
  QRect Horizontale() const;
  QRect Verticale() const;
};

// lblAngle: plain, or bold on light green while a free line lies on one of
// the eight clean directions.
enum class StyleAngle { Simple, Net };
// txtCptNumAuto: as opened, green once a start is validated, white after an
// edit or a refused start.
enum class EtatCompteur { Neutre, Valide, Modifie };

// The collage's border choices (optEpBord, optCoulBord).
constexpr std::array<int, 3> kEpaisseursBord = {1, 2, 4};
constexpr std::array<int32_t, 3> kCouleursBord = {0x000000, 0xC0C0C0, 0xFFFFFF};

// A grid step typed in its box: nothing when it is no number; else the step
// bounded to 1..300, and whether the text must be rewritten to it.
struct PasSaisi {
  int valeur;
  bool corrige;
};
std::optional<PasSaisi> LirePasGrille(const QString& texte);

// The folder the collage's file dialog opens in: the working folder, else
// the documents folder.
QString DossierCollage(const SessionRecord& s);

class OutilsAnnotation {
 public:
  OutilsAnnotation(SessionRecord& s, cAdvancedImagery& ai, QString cheminIni);

  // ---- opening and settings
  // The session picture into the committed picture and the start of the memory.
  void ChargerImageDepart();
  // Settings from the file, mode 0, the editor's text and the counter at 1.
  void ChargerValeurs();
  void EcritureIni();
  void RetablirDefaut();
  // The dimension mode needs a scale.
  bool CotesPossibles() const;
  // The arrow angles offered, in the session's decimal form.
  QStringList AnglesFleche() const;

  // ---- controls
  void ChoisirMode(int index);
  void Brider(bool coche);
  void CocherNumAuto(bool coche);
  void DefinirTexte(const QString& t) { texte_ = t; }
  void DefinirTexteCompteur(const QString& t) { texteCompteur_ = t; }
  void CompteurModifie() { etatCompteur_ = EtatCompteur::Modifie; }
  void ValiderCompteur();  // cmdNumAuto
  void ChoisirPointeur(int index);
  void ChoisirCouleurCotes(int index);
  void ChoisirUnite(int index);
  void DefinirEpaisseur(const QString& t);
  void DefinirTaillePointeur(const QString& t);
  void DefinirAngleFleche(const QString& t);
  void CouleurLigne(int32_t couleur);
  void CouleurTexte(int32_t couleur);  // the lines follow when asked
  void CouleurFond(int32_t couleur) { r_.TxtBackColor = couleur; }
  void DefinirCouleurTexteSurLignes(bool oui) { couleurTexteSurLignes_ = oui; }
  void optFondTexte(int index);
  void picStyle(int index);
  // The colour and font dialogs; the text's colour after its warning.
  void ChoisirCouleurLigne();
  void ChoisirCouleurTexte();
  void ChoisirCouleurFond();
  void ChoisirPolice();
  void AppliquerCroix(int forme, int couleur);  // -1 keeps that part

  // ---- mouse on the picture, picture pixels
  void Appuyer(PointF p, bool gauche);
  void Deplacer(PointF p, bool gauche);
  void Relacher(PointF p, bool gauche);
  // Read before each mouse event: the boxes are placed with them.
  void DefinirTaillesBoites(const TaillesBoites& t) { boites_ = t; }

  // ---- commits and the memory of steps
  void CollerTexte();
  void AnnulerTexte();  // the editor's second button
  void ValiderEdition();
  void cmdUndo();
  void ToutEffacer();  // once the user said yes
  void ViderUndo();
  void MajCompteurs();

  // ---- grid
  void cmdGrille(int index);
  void DefinirPasGrille(bool largeur, int pas);
  void ChoisirCouleurGrille(int index);

  // ---- collage
  // False, with its message, while a collage waits.
  bool NouveauCollagePossible();
  // The clipboard's picture; false with a message when it holds none.
  bool CollerDuPressePapier();
  // A file (path), or the clipboard's picture already taken (empty path and
  // `pressePapier`). True when the collage now waits to be placed.
  bool ChargerImageCollage(const QString& chemin, bool pressePapier);
  // The two halves of it: the file read (false, with its message, when it
  // cannot be), then the checks, the border and the wait for placing.
  bool LireCollage(const QString& chemin);
  bool PreparerCollage(bool depuisFichier);
  void DefinirBordCollage(bool bord, int epaisseur, int couleur);
  // A click on the collage lifts it: its outline then follows the mouse.
  bool Soulever();
  void CollerPicCollage();
  void AnnulerCollage();

  // ---- leaving
  // Step 6, `etape` refreshing the tools, then the picture to the session.
  void Sauver(const std::function<void()>& etape);
  void Decharger();

  // ---- what the window shows
  const QImage& Travail() const { return travail_; }
  const QImage& Depart() const { return depart_; }
  // Changes whenever the committed picture does.
  int Generation() const { return generation_; }
  const CalqueTemporaire& Calque() const { return calque_; }
  const MemoireUndo& Memoire() const { return memoire_; }
  const ReglagesAnnotation& Reglages() const { return r_; }
  int NbUndo() const { return nbUndo_; }
  int CptNumAuto() const { return cptNumAuto_; }
  const QString& TexteCompteur() const { return texteCompteur_; }
  EtatCompteur EtatDuCompteur() const { return etatCompteur_; }
  ModeAnnotation Mode() const { return mode_; }
  bool Bride() const { return bride_; }
  bool NumAuto() const { return numAuto_; }
  bool NumAutoPossible() const { return numAutoPossible_; }
  bool FondOpaque() const { return fondOpaque_; }
  const QString& Texte() const { return texte_; }
  const QString& TexteAngleFleche() const { return texteAngleFleche_; }
  const Flottants& Boites() const { return flottants_; }
  // True once after a release that waits for the text: the editor takes the focus.
  bool PrendreFocus();
  const Croix& LaCroix() const { return croix_; }
  QString TexteUndo() const;
  const QString& TexteLongueur() const { return texteLongueur_; }
  const QString& TexteAngle() const { return texteAngle_; }
  StyleAngle StyleDeLAngle() const { return styleAngle_; }
  const QString& TexteX() const { return texteX_; }
  const QString& TexteY() const { return texteY_; }
  const QString& Legende() const { return legende_; }
  int PasGrilleL() const { return pasL_; }
  int PasGrilleH() const { return pasH_; }
  int CouleurGrille() const { return couleurGrille_; }
  const QString& InfoGrille() const { return infoGrille_; }
  const QString& EquivMicrons() const { return equivMicrons_; }
  double AngleLigne() const { return angleLigne_; }
  int LongueurLigne() const { return longueurLigne_; }
  const Placement& Placements() const { return placement_; }
  int Largeur() const { return travail_.width(); }
  int Hauteur() const { return travail_.height(); }
  // The collage: its picture (border included), where it stands, and which
  // of the picture and its outline shows.
  const QImage& ImageCollage() const { return collage_; }
  bool CollageEnCours() const { return collageEnCours_; }
  bool CollageFige() const { return collageFige_; }
  QPoint PositionCollage() const { return coinCollage_; }
  bool ContourCollageVisible() const { return contourVisible_; }
  bool ImageCollageVisible() const { return collageVisible_; }

 private:
  void Valider(const QImage& avant);
  void PlacerCroix(PointF p);
  void LigneElastique(float x, float y);
  void BriderLigne(float x0, float y0);
  void DessinerExtLigne(float x, float y, double angle, int longueur);
  void Erreur(const QString& texte);
  void ErreurGarde(const QString& procedure, const QString& description);
  void Marquer() { ++generation_; }
  QPoint Dedans(QPoint p, int l, int h) const;

  SessionRecord& s_;
  cAdvancedImagery& ai_;
  QString cheminIni_;
  ReglagesAnnotation r_;

  QImage travail_;  // ImageTravail
  QImage depart_;   // ImageUndo[0]
  int generation_ = 0;
  MemoireUndo memoire_;
  CalqueTemporaire calque_;
  int nbUndo_ = 0;
  int cptNumAuto_ = 1;

  // Controls' state.
  ModeAnnotation mode_ = LigneEtTexte;
  bool bride_ = false;
  bool numAuto_ = false, numAutoPossible_ = true;
  bool fondOpaque_ = false;
  bool couleurTexteSurLignes_ = false;
  QString texte_;
  QString texteCompteur_ = QStringLiteral("1");
  EtatCompteur etatCompteur_ = EtatCompteur::Neutre;
  QString texteAngleFleche_;

  // The drag.
  float debutX_ = 0, debutY_ = 0, finX_ = 0, finY_ = 0, brideX_ = 0, brideY_ = 0;
  float ecartX_ = 0, ecartY_ = 0, milieuX_ = 0, milieuY_ = 0;
  double angleLigne_ = 0;
  int longueurLigne_ = 0;
  Placement placement_;
  bool boutonGauche_ = false;
  bool gardeFleche_ = false;  // the arrow angle's error is shown once a drag
  int32_t couleurDessin_ = 0x404040;  // the layer's drawing colour and width
  int epaisseurDessin_ = 2;

  // What the window shows.
  Flottants flottants_;
  TaillesBoites boites_;
  bool focus_ = false;
  Croix croix_;
  QString texteLongueur_, texteAngle_, texteX_ = QStringLiteral("l.X = "), texteY_ = QStringLiteral("l.Y = ");
  QString legende_;
  StyleAngle styleAngle_ = StyleAngle::Simple;

  // The grid.
  int pasL_ = 100, pasH_ = 100;
  int couleurGrille_ = 0;
  QString infoGrille_, equivMicrons_;

  // The collage.
  QImage collage_;
  bool collageEnCours_ = false, collageFige_ = false;
  bool contourVisible_ = false, collageVisible_ = false;
  QPoint coinCollage_;
  bool bordCollage_ = true;
  int epaisseurBord_ = 1, couleurBord_ = 0;  // indices
};

}  // namespace tg
