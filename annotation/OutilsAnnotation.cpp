#include "annotation/OutilsAnnotation.h"

#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "core/SessionRecord.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/GeometrieMesure.h"
#include "platform/Dialogues.h"
#include "platform/Nombres.h"
#include "platform/Systeme.h"
#include "platform/Textes.h"
#include "version.h"

namespace tg {

namespace {

const QString kNomFeuille = QStringLiteral("frmAnnotations2");
const QString kTexteParDefaut = QStringLiteral("votre texte ici");

}  // namespace

QRect Croix::Horizontale() const {
  return {position.x() - longueur / 2, position.y() - epaisseur / 2, longueur, epaisseur};
}

QRect Croix::Verticale() const {
  return {position.x() - epaisseur / 2, position.y() - longueur / 2, epaisseur, longueur};
}

std::optional<PasSaisi> LirePasGrille(const QString& texte) {
  double v = 0;
  if (!LireNombre(texte, v)) return std::nullopt;
  const int borne = BornerPasGrille(int(std::clamp(v, -1.0, 100000.0)));
  return PasSaisi{borne, borne != v};
}

QString DossierCollage(const SessionRecord& s) {
  if (!s.RepTravail.isEmpty() && QFileInfo(s.RepTravail).isDir()) return s.RepTravail;
  return s.DocPath.isEmpty() ? DossierDocuments() : s.DocPath;
}

OutilsAnnotation::OutilsAnnotation(SessionRecord& s, cAdvancedImagery& ai, QString cheminIni)
    : s_(s), ai_(ai), cheminIni_(std::move(cheminIni)) {}

// ---------------------------------------------------------------- opening and settings

void OutilsAnnotation::ChargerImageDepart() {
  QImage image;
  if (!ai_.Convert_ImageToPicture(s_.ImageCourante, image)) {
    Erreur(QStringLiteral("Error - ") + ai_.Error_GetLast());
    image = QImage(std::max(1, int(s_.Largeur)), std::max(1, int(s_.Hauteur)), QImage::Format_RGB32);
    image.fill(Qt::white);
  }
  // 32 bits a pixel: the memory of steps compares whole pixels.
  if (image.format() != QImage::Format_RGB32 && image.format() != QImage::Format_ARGB32)
    image = image.convertToFormat(QImage::Format_RGB32);
  travail_ = image;
  depart_ = image.copy();
  Marquer();
}

void OutilsAnnotation::ChargerValeurs() {
  r_ = LireReglagesAnnotation(cheminIni_);
  couleurDessin_ = r_.LineColor;
  epaisseurDessin_ = r_.LineBorder;
  fondOpaque_ = r_.TxtBack;
  texte_ = kTexteParDefaut;
  // Mode 0 as its click gives it: the numbering offered again.
  ChoisirMode(LigneEtTexte);
  texteAngleFleche_ = TexteReel(r_.AngleFleche, s_.SeparateurDecimal == u"," ? QStringLiteral(",")
                                                                              : QStringLiteral("."));
  cptNumAuto_ = 1;
  texteCompteur_ = QString::number(cptNumAuto_);
}

QStringList OutilsAnnotation::AnglesFleche() const {
  const QString sep = s_.SeparateurDecimal == u"," ? QStringLiteral(",") : QStringLiteral(".");
  return {QStringLiteral("22") + sep + QStringLiteral("5"), QStringLiteral("30"), QStringLiteral("45")};
}

void OutilsAnnotation::EcritureIni() {
  if (!EcrireReglagesAnnotation(r_, cheminIni_))
    Erreur(QStringLiteral("Le fichier des réglages « %1 » ne peut pas être écrit.").arg(cheminIni_));
}

void OutilsAnnotation::RetablirDefaut() {
  if (QFile::exists(cheminIni_)) QFile::remove(cheminIni_);
  ChargerValeurs();
  EcritureIni();
  ValiderEdition();
}

bool OutilsAnnotation::CotesPossibles() const { return s_.MicronsParPixel != 0; }

// ---------------------------------------------------------------- controls

void OutilsAnnotation::ChoisirMode(int index) {
  ValiderEdition();
  if (index == Cotes && (s_.EchellePix.isEmpty() || s_.EchelleMic.isEmpty())) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Vous n'avez pas défini d'échelle ! (Cartouche)"),
                        Icone::Exclamation);
    index = LigneEtTexte;
  }
  mode_ = ModeAnnotation(std::clamp(index, 0, 3));
  if (mode_ == LigneEtTexte || mode_ == TexteUnique) {
    texte_ = kTexteParDefaut;
    numAutoPossible_ = true;
  } else {
    if (numAuto_) CocherNumAuto(false);
    numAutoPossible_ = false;
  }
}

void OutilsAnnotation::Brider(bool coche) {
  bride_ = coche;
  ValiderEdition();
}

void OutilsAnnotation::CocherNumAuto(bool coche) {
  numAuto_ = coche;
  if (!coche) texte_ = kTexteParDefaut;
}

void OutilsAnnotation::ValiderCompteur() {
  double v = 0;
  if (LireNombre(texteCompteur_, v) && v >= 0 && v < 32768) {
    cptNumAuto_ = int(VersEntier(v));
    etatCompteur_ = EtatCompteur::Valide;
  } else {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Num Auto : Chiffres uniquement !"),
                        Icone::Exclamation);
    texteCompteur_ = QString::number(cptNumAuto_);
    etatCompteur_ = EtatCompteur::Modifie;
  }
}

void OutilsAnnotation::ChoisirPointeur(int index) {
  ValiderEdition();
  r_.PointerChoose = int16_t(std::clamp(index, 0, 3));
  if (index == 1) r_.PointerSize = 60;
  if (index == 3) r_.PointerSize = 16;
}

void OutilsAnnotation::ChoisirCouleurCotes(int index) {
  ValiderEdition();
  r_.CoteColor = r_.LineColor = kCouleursCotes[size_t(std::clamp(index, 0, 2))];
  couleurDessin_ = r_.LineColor;
}

void OutilsAnnotation::ChoisirUnite(int index) {
  ValiderEdition();
  r_.CoteUnite = index == 0 ? QStringLiteral("µm") : QStringLiteral("mm");
}

void OutilsAnnotation::DefinirEpaisseur(const QString& t) {
  double v = 0;
  if (!LireNombre(t, v) || v < 1 || v > 99) return;
  r_.LineBorder = int16_t(VersEntier(v));
  epaisseurDessin_ = r_.LineBorder;
}

void OutilsAnnotation::DefinirTaillePointeur(const QString& t) {
  double v = 0;
  if (LireNombre(t, v) && v >= 0 && v < 10000) r_.PointerSize = int16_t(VersEntier(v));
}

void OutilsAnnotation::DefinirAngleFleche(const QString& t) {
  texteAngleFleche_ = t;
  double v = 0;
  if (LireNombre(t, v)) r_.AngleFleche = float(v);
}

void OutilsAnnotation::CouleurLigne(int32_t couleur) {
  r_.LineColor = couleur;
  couleurDessin_ = couleur;
}

void OutilsAnnotation::CouleurTexte(int32_t couleur) {
  r_.TxtFontColor = couleur;
  if (couleurTexteSurLignes_) CouleurLigne(couleur);
}

void OutilsAnnotation::optFondTexte(int index) {
  ValiderEdition();
  fondOpaque_ = index == 1;
  if (index == 0) {
    r_.TxtBackColor = -1;
  } else {
    r_.TxtBack = true;
    // A first opaque background is white: black (0) cannot be chosen here.
    if (r_.TxtBackColor <= 0) r_.TxtBackColor = 0xFFFFFF;
  }
}

void OutilsAnnotation::picStyle(int index) {
  if (index < 0 || index >= int(kStylesRapides.size())) return;
  ValiderEdition();
  // The style sets both colours itself: the text's colour is not carried to the lines.
  const bool avec = couleurTexteSurLignes_;
  couleurTexteSurLignes_ = false;
  AppliquerStyle(r_, kStylesRapides[size_t(index)]);
  EcritureIni();
  ChargerValeurs();
  couleurTexteSurLignes_ = avec;
}

void OutilsAnnotation::ChoisirCouleurLigne() {
  const int c = Dialogues().Couleur(r_.LineColor);
  if (c != -1) CouleurLigne(c);
}

void OutilsAnnotation::ChoisirCouleurTexte() {
  Dialogues().Message(QLatin1String(TitreProgramme),
                      QStringLiteral("Attention :\nAvec les textes, certaines couleurs\nsortent très mal "
                                     "(bavent) après compression Jpg !\nUtilisez de préférence les niveaux "
                                     "de gris ou le noir et blanc (inversé) !\nEn principe ce problème "
                                     "concerne moins les lignes (flèches) ..."),
                      Icone::Exclamation);
  const int c = Dialogues().Couleur(r_.TxtFontColor);
  if (c != -1) CouleurTexte(c);
}

void OutilsAnnotation::ChoisirCouleurFond() {
  const int c = Dialogues().Couleur(r_.TxtBackColor);
  if (c != -1) r_.TxtBackColor = c;
}

void OutilsAnnotation::ChoisirPolice() {
  QFont initiale(r_.TxtFontName);
  initiale.setPointSize(std::max<int>(1, r_.TxtFontSize));
  initiale.setBold(r_.TxtFontBold);
  initiale.setItalic(r_.TxtFontItalic);
  initiale.setUnderline(r_.TxtFontUnderline);
  const std::optional<QFont> f = Dialogues().Police(initiale);
  if (!f) return;
  r_.TxtFontName = f->family();
  r_.TxtFontSize = int16_t(f->pointSize() > 0 ? f->pointSize() : r_.TxtFontSize);
  r_.TxtFontBold = f->bold();
  r_.TxtFontItalic = f->italic();
  r_.TxtFontUnderline = f->underline();
}

void OutilsAnnotation::AppliquerCroix(int forme, int couleur) {
  if (forme >= 0 && forme < int(kFormesCroix.size())) {
    croix_.epaisseur = kFormesCroix[size_t(forme)].epaisseur;
    croix_.longueur = kFormesCroix[size_t(forme)].longueur;
  }
  if (couleur >= 0 && couleur < int(kCouleursCroix.size())) croix_.couleur = kCouleursCroix[size_t(couleur)];
}

void OutilsAnnotation::PlacerCroix(PointF p) { croix_.position = QPoint(int(p.x), int(p.y)); }

// ---------------------------------------------------------------- lines

void OutilsAnnotation::BriderLigne(float x0, float y0) {
  const int s = AngleBride(angleLigne_);
  const bool cercle = r_.PointerChoose == 1 && mode_ != Cotes;
  const PointF fin = FinBridee({x0, y0}, s, LongueurTracee(float(longueurLigne_), r_.PointerSize, cercle));
  calque_.Ligne({x0, y0}, fin, couleurDessin_, epaisseurDessin_);
  brideX_ = fin.x;
  brideY_ = fin.y;
  angleLigne_ = s;
}

void OutilsAnnotation::DessinerExtLigne(float x, float y, double angle, int longueur) {
  const auto [a, b] = tg::DessinerExtLigne({x, y}, angle, longueur, angleLigne_);
  calque_.Ligne(a.de, a.a, couleurDessin_, epaisseurDessin_);
  calque_.Ligne(b.de, b.a, couleurDessin_, epaisseurDessin_);
}

void OutilsAnnotation::LigneElastique(float x, float y) {
  // 1.
  longueurLigne_ = int(VersEntier(Distance(debutX_, debutY_, x, y)));
  texteLongueur_ = QStringLiteral("Long. = %1 pix").arg(longueurLigne_);
  // 2.
  const bool cercle = r_.PointerChoose == 1 && mode_ != Cotes;
  if (cercle) {
    const PointF m = SoustrairePointeur({x, y}, float(longueurLigne_), r_.PointerSize, angleLigne_);
    milieuX_ = m.x;
    milieuY_ = m.y;
  }
  if (bride_) {
    if (cercle) BriderLigne(milieuX_, milieuY_);
    else BriderLigne(debutX_, debutY_);
  } else {
    calque_.Ligne(cercle ? PointF{milieuX_, milieuY_} : PointF{debutX_, debutY_}, {x, y}, couleurDessin_,
                  epaisseurDessin_);
  }
  // 3. A clean direction is hinted for a free line only; snapped, the label stays as it is.
  const long long d = VersEntier(angleLigne_);
  if (!DirectionNette(d)) styleAngle_ = StyleAngle::Simple;
  else if (!bride_) styleAngle_ = StyleAngle::Net;
  texteAngle_ = QStringLiteral("Angle = %1°").arg(d);
  // 4. and 5.
  if (mode_ == Cotes) {
    DessinerExtLigne(debutX_, debutY_, 90, 4);
    return;
  }
  switch (r_.PointerChoose) {
    case 1:
      calque_.Cercle({debutX_, debutY_}, r_.PointerSize, couleurDessin_, epaisseurDessin_);
      break;
    case 2:
      calque_.Carre({debutX_ - r_.PointerSize / 2.0f, debutY_ - r_.PointerSize / 2.0f}, r_.PointerSize,
                    couleurDessin_, epaisseurDessin_);
      break;
    case 3: {
      // The arrow's angle is read from the list's text at each move.
      double angle = 0;
      if (!LireNombre(texteAngleFleche_, angle)) {
        if (!gardeFleche_) ErreurGarde(QStringLiteral("DessinerExtLigne"), QStringLiteral("Incompatibilité de type"));
        gardeFleche_ = true;
        break;
      }
      DessinerExtLigne(debutX_, debutY_, angle, r_.PointerSize);
      break;
    }
    default:
      break;
  }
}

// ---------------------------------------------------------------- mouse

QPoint OutilsAnnotation::Dedans(QPoint p, int l, int h) const {
  // Floating boxes stay inside the picture, where the user can reach them;
  // the stamp itself goes where the rules put it.
  return {std::clamp(p.x(), 0, std::max(0, Largeur() - l)), std::clamp(p.y(), 0, std::max(0, Hauteur() - h))};
}

void OutilsAnnotation::Appuyer(PointF p, bool gauche) {
  PlacerCroix(p);
  if (collageEnCours_) {
    if (!gauche) return;
    coinCollage_ = QPoint(int(p.x) - collage_.width() / 2, int(p.y) - collage_.height() / 2);
    collageFige_ = false;
    collageVisible_ = true;
    return;
  }
  if (!gauche) return;
  boutonGauche_ = true;
  gardeFleche_ = false;
  if (numAuto_) texte_ = QStringLiteral(" %1 ").arg(cptNumAuto_);
  flottants_.editeur = mode_ == TexteUnique;
  flottants_.validation = false;
  if (mode_ == Cotes) {
    couleurDessin_ = r_.CoteColor;
    epaisseurDessin_ = 2;
  } else {
    // The dimension's colour and width end with it.
    couleurDessin_ = r_.LineColor;
    epaisseurDessin_ = r_.LineBorder;
  }
  flottants_.reperes = false;
  debutX_ = p.x;
  debutY_ = p.y;
  finX_ = finY_ = brideX_ = brideY_ = ecartX_ = ecartY_ = 0;
  angleLigne_ = 0;
  longueurLigne_ = 0;
  milieuX_ = milieuY_ = 0;
}

void OutilsAnnotation::Deplacer(PointF p, bool gauche) {
  PlacerCroix(p);
  if (collageEnCours_) {
    if (!collageFige_) coinCollage_ = QPoint(int(p.x) - collage_.width() / 2, int(p.y) - collage_.height() / 2);
    return;
  }
  if (!gauche || !boutonGauche_) return;
  calque_.Effacer();
  // Mouse positions are whole pixels, so dx never rounds to 0 off the axis.
  tg::CalculAngle(debutX_, debutY_, p.x, p.y, angleLigne_);
  if (mode_ != TexteUnique) {
    LigneElastique(p.x, p.y);
  } else {
    flottants_.posEditeur =
        Dedans({int(p.x) - boites_.editeurL / 2, int(p.y)}, boites_.editeurL, boites_.editeurH);
  }
}

void OutilsAnnotation::Relacher(PointF p, bool gauche) {
  if (collageEnCours_) {
    collageVisible_ = true;
    collageFige_ = true;
    return;
  }
  if (!gauche || !boutonGauche_) return;
  boutonGauche_ = false;
  // a.
  styleAngle_ = StyleAngle::Simple;
  const int w = boites_.editeurL, h = boites_.editeurH;
  const int wv = boites_.validationL, hv = boites_.validationH;
  // b.
  if (bride_) {
    finX_ = brideX_;
    finY_ = brideY_;
  } else {
    finX_ = p.x;
    finY_ = p.y;
  }
  if (mode_ == TexteUnique) {
    // g. The marks show the spot; the buttons go under the editor, or above near the bottom.
    const int ix = int(p.x), iy = int(p.y);
    flottants_.repereV = QRect(ix, iy - 30, 1, 81);
    flottants_.repereH = QRect(ix - 80, iy, 161, 1);
    flottants_.reperes = true;
    flottants_.posEditeur = Dedans({ix - w / 2, iy}, w, h);
    flottants_.editeur = true;
    flottants_.posValidation = Dedans(PlacerValidationTexteUnique({ix, iy}, w, h, hv, Hauteur()), wv, hv);
    flottants_.validation = true;
    focus_ = true;
    debutX_ = p.x;
    debutY_ = p.y;
    return;
  }
  // c. A line ending at (0, 0) or shorter than 10 pixels is no line.
  if ((finX_ == 0 && finY_ == 0) || longueurLigne_ < 10) {
    ValiderEdition();
    return;
  }
  ecartX_ = finX_ - debutX_;
  ecartY_ = finY_ - debutY_;
  texteX_ = QStringLiteral("l.X = ") + TexteReel(ecartX_, s_.SeparateurDecimal);
  texteY_ = QStringLiteral("l.Y = ") + TexteReel(ecartY_, s_.SeparateurDecimal);
  placement_ = FlagsPlacement(ecartX_, ecartY_, angleLigne_);
  const PositionEditeur pos = PlacerEditeur(placement_, {finX_, finY_}, w, h, wv, Largeur());
  flottants_.posEditeur = Dedans(pos.editeur, w, h);
  flottants_.posValidation = Dedans(pos.validation, wv, hv);
  legende_ = pos.legende;
  switch (mode_) {
    case LigneEtTexte:  // d. the text waits for the user
      flottants_.editeur = flottants_.validation = true;
      focus_ = true;
      break;
    case LigneUnique:  // e.
      flottants_.editeur = flottants_.validation = false;
      texte_ = QStringLiteral(" ");
      CollerTexte();
      break;
    case Cotes: {  // f.
      flottants_.editeur = flottants_.validation = false;
      texte_ = QStringLiteral(" ");
      DessinerExtLigne(finX_, finY_, 90, 4);
      const PointF m = CalculerMillieuLigne({finX_, finY_}, float(longueurLigne_), angleLigne_);
      milieuX_ = m.x;
      milieuY_ = m.y;
      CollerTexte();
      break;
    }
    default:
      break;
  }
}

bool OutilsAnnotation::PrendreFocus() { return std::exchange(focus_, false); }

// ---------------------------------------------------------------- commits

void OutilsAnnotation::Valider(const QImage& avant) {
  memoire_.Ajouter(avant, travail_);
  ++nbUndo_;
  Marquer();
}

QString OutilsAnnotation::TexteUndo() const { return QStringLiteral("Undo : %1").arg(nbUndo_); }

void OutilsAnnotation::CollerTexte() {
  // 1.
  if (nbUndo_ > kDernierCollerTexte) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Attention, maximum de textes (undo) atteint !"),
                        Icone::Exclamation);
    ValiderEdition();
    return;
  }
  // 2.
  const QString texte = TexteTampon(texte_, fondOpaque_);
  // 3. The capture freezes the layer into the picture.
  const QImage avant = travail_.copy();
  {
    QPainter p(&travail_);
    calque_.Dessiner(p);
  }
  // 4.
  flottants_.reperes = false;
  // 5.
  if (mode_ == Cotes) {
    const QString valeur = TexteCote(float(longueurLigne_), s_.EchellePix, s_.EchelleMic, r_.CoteUnite != u"µm",
                                     r_.CoteUnite, SeparateurDecimalSysteme());
    if (!valeur.isEmpty()) cAdvancedImagery::DessinerTexte(travail_, valeur, TamponCote({milieuX_, milieuY_}, angleLigne_, r_));
  } else if (mode_ != LigneUnique) {
    // A plain line carries a blank text, which would only show an opaque background.
    const TexteSurImage t = TamponTexte(mode_, placement_, {debutX_, debutY_}, {finX_, finY_}, r_);
    const QString refus = cAdvancedImagery::RefusTexte(t);
    if (!refus.isEmpty()) Erreur(QStringLiteral("Error - ") + refus);
    else cAdvancedImagery::DessinerTexte(travail_, texte, t);
  }
  // 6. and 7.
  Valider(avant);
  // 8.
  if (mode_ != LigneUnique && mode_ != Cotes) {
    if (numAuto_) ++cptNumAuto_;
    texteCompteur_ = QString::number(cptNumAuto_);
  }
  // 9.
  ValiderEdition();
}

void OutilsAnnotation::AnnulerTexte() {
  ValiderEdition();
  MajCompteurs();
}

void OutilsAnnotation::ValiderEdition() {
  flottants_.editeur = flottants_.validation = flottants_.reperes = false;
  calque_.Effacer();
}

void OutilsAnnotation::MajCompteurs() {
  texteLongueur_ = QStringLiteral("Long. = ");
  texteAngle_ = QStringLiteral("Angle = ");
}

void OutilsAnnotation::cmdUndo() {
  ValiderEdition();
  if (nbUndo_ == 0 || memoire_.Nombre() == 0) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Aucune entrée !"), Icone::Information);
    return;
  }
  memoire_.Annuler(travail_);
  --nbUndo_;
  Marquer();
  MajCompteurs();
  // Every undo takes a number back, whether or not the step used one; the
  // box keeps showing the old value until the next commit.
  if (cptNumAuto_ > 0) --cptNumAuto_;
}

void OutilsAnnotation::ToutEffacer() {
  travail_ = depart_.copy();
  Marquer();
  ViderUndo();
  ValiderEdition();
}

void OutilsAnnotation::ViderUndo() {
  memoire_.Vider();
  nbUndo_ = 0;
  cptNumAuto_ = 1;
  texteCompteur_ = QStringLiteral("1");
  MajCompteurs();
}

// ---------------------------------------------------------------- grid

void OutilsAnnotation::cmdGrille(int index) {
  ValiderEdition();
  if (index == 1) return;
  TracerGrille(calque_, Largeur(), Hauteur(), pasL_, pasH_, kCouleursGrille[size_t(couleurGrille_)]);
  infoGrille_ = TexteInfoGrille(Largeur(), Hauteur(), pasL_, pasH_);
  equivMicrons_ = TexteEquivMicrons(s_.EchellePix, s_.EchelleMic, pasL_, pasH_);
}

void OutilsAnnotation::DefinirPasGrille(bool largeur, int pas) {
  (largeur ? pasL_ : pasH_) = BornerPasGrille(pas);
}

void OutilsAnnotation::ChoisirCouleurGrille(int index) {
  couleurGrille_ = std::clamp(index, 0, int(kCouleursGrille.size()) - 1);
}

// ---------------------------------------------------------------- collage

bool OutilsAnnotation::NouveauCollagePossible() {
  ValiderEdition();
  if (!collageEnCours_) return true;
  Dialogues().Message(QStringLiteral("Collage en cours"),
                      QStringLiteral("Vous avez déjà un collage en cours ...\nVeuillez finaliser celui-ci !"),
                      Icone::Exclamation);
  return false;
}

bool OutilsAnnotation::CollerDuPressePapier() {
  Bitmap presse;
  if (!ai_.Clipboard_Get(presse) || !ai_.Convert_ImageToPicture(presse, collage_)) {
    Dialogues().Message(QStringLiteral("Presse-papier"),
                        QStringLiteral("Votre presse papier semble vide\nou ne contient pas d'image ..."),
                        Icone::Exclamation);
    return false;
  }
  return true;
}

void OutilsAnnotation::DefinirBordCollage(bool bord, int epaisseur, int couleur) {
  bordCollage_ = bord;
  epaisseurBord_ = std::clamp(epaisseur, 0, 2);
  couleurBord_ = std::clamp(couleur, 0, 2);
}

bool OutilsAnnotation::ChargerImageCollage(const QString& chemin, bool pressePapier) {
  const bool fichier = !(chemin.isEmpty() && pressePapier);
  if (fichier && !LireCollage(chemin)) return false;
  return PreparerCollage(fichier);
}

bool OutilsAnnotation::LireCollage(const QString& chemin) {
  Bitmap b;
  if (ai_.IO_LoadImage(chemin, b) && ai_.Convert_ImageToPicture(b, collage_)) return true;
  Erreur(QStringLiteral("Error(A) - ") + ai_.Error_GetLast());
  AnnulerCollage();
  return false;
}

bool OutilsAnnotation::PreparerCollage(bool fichier) {
  if (collage_.isNull()) return false;
  if (collage_.format() != QImage::Format_RGB32) collage_ = collage_.convertToFormat(QImage::Format_RGB32);
  // A file must leave a margin of 60 pixels; the clipboard's picture may fill the picture.
  if (CollageTropGrand(collage_.width(), collage_.height(), Largeur(), Hauteur(), fichier)) {
    AnnulerCollage();
    Dialogues().Message(QStringLiteral(" Erreur collage"),
                        QStringLiteral("Votre collage est plus grand que l'image de destination !"),
                        Icone::Exclamation);
    return false;
  }
  if (bordCollage_)
    BorderCollage(collage_, kEpaisseursBord[size_t(epaisseurBord_)], kCouleursBord[size_t(couleurBord_)]);
  collageEnCours_ = collageFige_ = true;
  coinCollage_ = QPoint(0, 0);
  collageVisible_ = true;
  contourVisible_ = false;
  MajCompteurs();
  Dialogues().Message(QStringLiteral(" Infos collage"),
                      QStringLiteral("Cliquez (1x) sur votre collage puis le déplacer.\nCliquez à nouveau pour figer.\n"
                                     "Finalement, validez (ou annulez)."),
                      Icone::Information);
  ValiderEdition();
  return true;
}

bool OutilsAnnotation::Soulever() {
  if (!collageEnCours_) return false;
  collageVisible_ = false;
  contourVisible_ = true;
  collageFige_ = false;
  return true;
}

void OutilsAnnotation::CollerPicCollage() {
  if (!collageEnCours_) return;
  if (nbUndo_ >= kUndoMax) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Attention, maximum de textes (undo) atteint !"),
                        Icone::Exclamation);
    AnnulerCollage();
    return;
  }
  const QImage avant = travail_.copy();
  {
    QPainter p(&travail_);
    p.setCompositionMode(QPainter::CompositionMode_Source);
    p.drawImage(coinCollage_, collage_);
  }
  Valider(avant);
  AnnulerCollage();
}

void OutilsAnnotation::AnnulerCollage() {
  collage_ = QImage();
  collageEnCours_ = collageFige_ = false;
  collageVisible_ = contourVisible_ = false;
}

// ---------------------------------------------------------------- leaving

void OutilsAnnotation::Sauver(const std::function<void()>& etape) {
  s_.Etape = 6;
  if (etape) etape();
  Bitmap resultat;
  if (!ai_.Convert_PictureToImage(travail_, resultat)) {
    Erreur(QStringLiteral("Error - ") + ai_.Error_GetLast());
  } else {
    Bitmap copie;
    if (!ai_.IO_Copy(resultat, copie)) Erreur(QStringLiteral("Error - ") + ai_.Error_GetLast());
    else s_.ImageFormatee = std::move(copie);
    s_.ImageCourante = std::move(resultat);
  }
  s_.AnnotationsPresentes = true;
}

void OutilsAnnotation::Decharger() {
  ViderUndo();
  travail_ = QImage();
  depart_ = QImage();
  collage_ = QImage();
  Marquer();
  EcritureIni();
}

void OutilsAnnotation::Erreur(const QString& texte) {
  Dialogues().Message(QLatin1String(TitreProgramme), texte, Icone::Critique);
}

void OutilsAnnotation::ErreurGarde(const QString& procedure, const QString& description) {
  Dialogues().Message(QLatin1String(TitreProgramme),
                      QStringLiteral("Error 13 (") + description + QStringLiteral(") in procedure ") + procedure +
                          QStringLiteral(" of Feuille ") + kNomFeuille,
                      Icone::Critique);
}

}  // namespace tg
