#include "annotation/frmAnnotations2.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QVBoxLayout>
#include <cmath>

#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/GeometrieMesure.h"
#include "platform/Dialogues.h"
#include "platform/Ecran.h"
#include "platform/Nombres.h"
#include "platform/Systeme.h"
#include "platform/Textes.h"
#include "version.h"

namespace tg {

namespace {

const QString kNomFeuille = QStringLiteral("frmAnnotations2");
constexpr int32_t kVertClair = 0x80FF80;  // 0xBBGGRR of the validated counter and the clean angle

// picImage: the picture at 1:1; paints through the window and hands the mouse over.
class ZoneAnnotation : public QWidget {
 public:
  ZoneAnnotation(frmAnnotations2* f, QWidget* parent) : QWidget(parent), f_(f) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
  }

 protected:
  void paintEvent(QPaintEvent* e) override {
    QPainter p(this);
    f_->Peindre(p, e->rect());
  }
  void mousePressEvent(QMouseEvent* e) override { f_->SourisAppuyee(e->position(), e->button()); }
  void mouseMoveEvent(QMouseEvent* e) override { f_->SourisDeplacee(e->position(), e->buttons()); }
  void mouseReleaseEvent(QMouseEvent* e) override { f_->SourisRelachee(e->position(), e->button()); }

 private:
  frmAnnotations2* f_;
};

template <typename T>
T* Nomme(T* w, const QString& nom) {
  w->setObjectName(nom);
  return w;
}

QPushButton* Bouton(const QString& nom, const QString& texte, QWidget* parent) {
  return Nomme(new QPushButton(texte, parent), nom);
}

// A swatch: a flat button painted in its colour (0xBBGGRR).
QPushButton* Pastille(const QString& nom, int32_t couleur, QWidget* parent, int cote = 18) {
  auto* b = Bouton(nom, QString(), parent);
  b->setFixedSize(cote, cote);
  b->setFlat(true);
  b->setAutoFillBackground(true);
  QPalette p = b->palette();
  p.setColor(QPalette::Button, VersQColor(couleur));
  b->setPalette(p);
  b->setStyleSheet(QStringLiteral("background-color: %1; border: 1px solid #808080;")
                       .arg(VersQColor(couleur).name()));
  return b;
}

// A line over the picture (marks, cross-hair): a filled frame that lets the mouse through.
QFrame* TraitFlottant(const QString& nom, QWidget* parent) {
  auto* f = Nomme(new QFrame(parent), nom);
  f->setAttribute(Qt::WA_TransparentForMouseEvents);
  f->setAutoFillBackground(true);
  f->hide();
  return f;
}

void Colorer(QWidget* w, const QColor& c) {
  QPalette p = w->palette();
  p.setColor(QPalette::Window, c);
  p.setColor(QPalette::Base, c);
  w->setPalette(p);
  w->setAutoFillBackground(true);
}

// Floating boxes stay inside the picture, where the user can reach them; the
// stamp itself goes where the rules put it.
QPoint Dedans(QPoint p, const QWidget* boite, const QWidget* image) {
  return {std::clamp(p.x(), 0, std::max(0, image->width() - boite->width())),
          std::clamp(p.y(), 0, std::max(0, image->height() - boite->height()))};
}

// Whole pixels of a mouse position: the picture's coordinates are integers.
QPointF Pixel(QPointF p) { return QPointF(std::floor(p.x()), std::floor(p.y())); }

}  // namespace

// ---------------------------------------------------------------- opening

frmAnnotations2::frmAnnotations2(SessionRecord& session, cAdvancedImagery& ai, frmFichierPhoto* principal,
                                 QWidget* parent)
    : QWidget(parent, Qt::Window), s_(session), ai_(ai), principal_(principal) {
  setObjectName(kNomFeuille);
  setWindowTitle(QStringLiteral("  Tessellographe : Annotations et cotes"));
  // 1.
  cheminIni_ = CheminUserAnnotation();
  Construire();
  lblInfosFenetre_->setText(
      QStringLiteral("Si possible, dessinez vos lignes en accrochant les multiples de 45° ") +
      QStringLiteral("le résultat sera meilleur (sans crénelage)."));
  // 2.
  Replier(fraLigne_, true);
  Replier(fraTexte_, true);
  Replier(fraCollage_, true);
  picCollage_->hide();
  collageEnCours_ = collageFige_ = false;
  // 3. The grid's steps, the lists and the swatches are set up by Construire.
  // 4.
  nbUndo_ = 0;
  cmdUndo_->setToolTip(QStringLiteral("Undo-max %1").arg(kUndoMax));
  MajCompteurs();
  // 5.
  ChargerValeurs();
  ChargerImageDepart();
  // 6.
  AppliquerCroix(1, 0);
  // 7.
  HScroll1_->setValue(0);
  VScroll1_->setValue(0);
  // 8.
  if (s_.MicronsParPixel == 0) optTexteEtLigne_[Cotes]->setEnabled(false);

}

frmAnnotations2::~frmAnnotations2() { Dechargement(); }

QSize frmAnnotations2::TailleVoulue() const {
  // The picture at 1:1 beside the tools, and room to open their frames.
  const QMargins m = layout()->contentsMargins();
  const int colonne = std::max(fraOutils_->width(), fraSorties_->sizeHint().width());
  return {m.left() + largeurImage_ + layout()->spacing() + colonne + m.right(),
          m.top() + std::max(hauteurImage_, 960) + m.bottom()};
}

frmAnnotations2* frmAnnotations2::Afficher(frmFichierPhoto& principal) {
  auto* f = new frmAnnotations2(principal.Session(), principal.Imagerie(), &principal, &principal);
  f->setAttribute(Qt::WA_DeleteOnClose);
  principal.FenetreOuverte(f);
  AjusterAEcran(f, f->TailleVoulue());
  f->show();
  principal.hide();
  return f;
}

void frmAnnotations2::Construire() {
  auto* racine = new QHBoxLayout(this);
  racine->setContentsMargins(4, 4, 4, 4);

  auto* gauche = new QGridLayout;
  picCadre_ = Nomme(new QWidget(this), QStringLiteral("picCadre"));
  picCadre_->setMinimumSize(200, 200);
  picCadre_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  Colorer(picCadre_, QColor(128, 128, 128));
  picCadre_->installEventFilter(this);
  picImage_ = Nomme(new ZoneAnnotation(this, picCadre_), QStringLiteral("picImage"));
  picImage_->setCursor(Qt::CrossCursor);
  HScroll1_ = Nomme(new QScrollBar(Qt::Horizontal, this), QStringLiteral("HScroll1"));
  VScroll1_ = Nomme(new QScrollBar(Qt::Vertical, this), QStringLiteral("VScroll1"));
  for (QScrollBar* b : {HScroll1_, VScroll1_}) {
    b->setRange(0, 100);
    b->setSingleStep(10);
    b->setPageStep(10);
    connect(b, &QScrollBar::valueChanged, this, [this] { Defiler(); });
  }
  gauche->addWidget(picCadre_, 0, 0);
  gauche->addWidget(VScroll1_, 0, 1);
  gauche->addWidget(HScroll1_, 1, 0);
  racine->addLayout(gauche, 1);

  // Floating controls over the picture.
  picEditeur_ = Nomme(new QFrame(picImage_), QStringLiteral("picEditeur"));
  picEditeur_->setFrameShape(QFrame::Box);
  auto* le = new QHBoxLayout(picEditeur_);
  le->setContentsMargins(1, 1, 1, 1);
  txtEdition_ = Nomme(new QLineEdit(picEditeur_), QStringLiteral("txtEdition"));
  txtEdition_->setMinimumWidth(150);
  le->addWidget(txtEdition_);
  picEditeur_->adjustSize();
  picEditeur_->hide();
  picValidation_ = Nomme(new QFrame(picImage_), QStringLiteral("picValidation"));
  auto* lv = new QHBoxLayout(picValidation_);
  lv->setContentsMargins(0, 0, 0, 0);
  const char* dialogues[2] = {"Coller", "Annuler"};
  for (int i = 0; i < 2; ++i) {
    auto* b = Bouton(QStringLiteral("cmdDialogueTexte%1").arg(i), QString::fromUtf8(dialogues[i]), picValidation_);
    lv->addWidget(b);
    connect(b, &QPushButton::clicked, this, [this, i] {
      if (i == 0) {
        CollerTexte();
      } else {
        ValiderEdition();
        MajCompteurs();
      }
    });
  }
  picValidation_->adjustSize();
  picValidation_->hide();
  connect(txtEdition_, &QLineEdit::returnPressed, this, [this] {
    if (!picValidation_->isHidden()) CollerTexte();
  });
  lngRepereH_ = TraitFlottant(QStringLiteral("lngRepereH"), picImage_);
  lngRepereV_ = TraitFlottant(QStringLiteral("lngRepereV"), picImage_);
  Colorer(lngRepereH_, Qt::red);
  Colorer(lngRepereV_, Qt::red);
  linCrossH_ = TraitFlottant(QStringLiteral("linCrossH"), picImage_);
  linCrossV_ = TraitFlottant(QStringLiteral("linCrossV"), picImage_);
  picCollage_ = Nomme(new QLabel(picImage_), QStringLiteral("picCollage"));
  picCollage_->installEventFilter(this);
  picCollage_->setCursor(Qt::SizeAllCursor);
  picCollage_->hide();
  shpCollage_ = Nomme(new QFrame(picImage_), QStringLiteral("shpCollage"));
  shpCollage_->setFrameShape(QFrame::Box);
  shpCollage_->setStyleSheet(QStringLiteral("border: 1px dashed red; background: transparent;"));
  shpCollage_->setAttribute(Qt::WA_TransparentForMouseEvents);
  shpCollage_->hide();
  picValidationCollage_ = Nomme(new QFrame(this), QStringLiteral("picValidationCollage"));
  auto* lc = new QHBoxLayout(picValidationCollage_);
  lc->setContentsMargins(0, 0, 0, 0);
  const char* collages[2] = {"Valider le collage", "Annuler le collage"};
  for (int i = 0; i < 2; ++i) {
    auto* b = Bouton(QStringLiteral("cmdDialogueCollage%1").arg(i), QString::fromUtf8(collages[i]),
                     picValidationCollage_);
    lc->addWidget(b);
    connect(b, &QPushButton::clicked, this, [this, i] {
      if (i == 0) CollerPicCollage();
      else AnnulerCollage();
      ValiderEdition();
    });
  }
  picValidationCollage_->hide();
  gauche->addWidget(picValidationCollage_, 2, 0, Qt::AlignLeft);

  // The tools scroll when the screen is too short; the ways out stay under them.
  QWidget* outils = ConstruireOutils();
  auto* defile = Nomme(new PanneauDefilant(outils, this), QStringLiteral("fraOutils"));
  fraOutils_ = defile;
  defile->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // As wide as the widest frame, every frame being still open here.
  defile->setFixedWidth(outils->sizeHint().width() + defile->verticalScrollBar()->sizeHint().width());
  auto* colonne = new QVBoxLayout;
  colonne->setSpacing(2);
  colonne->addWidget(defile, 1);
  fraSorties_ = ConstruireSorties();
  colonne->addWidget(fraSorties_);
  racine->addLayout(colonne);
}

QWidget* frmAnnotations2::ConstruireOutils() {
  auto* panneau = new QWidget;
  auto* v = new QVBoxLayout(panneau);
  v->setContentsMargins(2, 2, 2, 2);

  lblInfosFenetre_ = Nomme(new QLabel(panneau), QStringLiteral("lblInfosFenetre"));
  lblInfosFenetre_->setWordWrap(true);
  v->addWidget(lblInfosFenetre_);

  // The modes.
  auto* grMode = new QGroupBox(panneau);
  auto* lm = new QGridLayout(grMode);
  const char* modes[4] = {"Ligne et texte", "Ligne unique.", "Texte unique.", "Cotes"};
  for (int i = 0; i < 4; ++i) {
    optTexteEtLigne_[i] = Nomme(new QRadioButton(QString::fromUtf8(modes[i]), grMode),
                                QStringLiteral("optTexteEtLigne%1").arg(i));
    lm->addWidget(optTexteEtLigne_[i], i / 2, i % 2);
    connect(optTexteEtLigne_[i], &QRadioButton::clicked, this, [this, i] { ChoisirMode(i); });
  }
  chkBriderLigne_ = Nomme(new QCheckBox(QStringLiteral(" Accro. 45°"), grMode), QStringLiteral("chkBriderLigne"));
  connect(chkBriderLigne_, &QCheckBox::clicked, this, [this] { ValiderEdition(); });
  lm->addWidget(chkBriderLigne_, 2, 0);
  v->addWidget(grMode);

  // The live values.
  auto* grValeurs = new QWidget(panneau);
  auto* lval = new QGridLayout(grValeurs);
  lval->setContentsMargins(0, 0, 0, 0);
  lblLongueurLigne_ = Nomme(new QLabel(grValeurs), QStringLiteral("lblLongueurLigne"));
  lblAngle_ = Nomme(new QLabel(grValeurs), QStringLiteral("lblAngle"));
  lblAngle_->setAutoFillBackground(true);
  lblCompteur_ = Nomme(new QLabel(grValeurs), QStringLiteral("lblCompteur"));
  lblX_ = Nomme(new QLabel(QStringLiteral("l.X = "), grValeurs), QStringLiteral("lblX"));
  lblY_ = Nomme(new QLabel(QStringLiteral("l.Y = "), grValeurs), QStringLiteral("lblY"));
  lblGaucheDroite_ = Nomme(new QLabel(grValeurs), QStringLiteral("lblGaucheDroite"));
  lval->addWidget(lblLongueurLigne_, 0, 0);
  lval->addWidget(lblAngle_, 0, 1);
  lval->addWidget(lblCompteur_, 0, 2);
  lval->addWidget(lblX_, 1, 0);
  lval->addWidget(lblY_, 1, 1);
  lval->addWidget(lblGaucheDroite_, 1, 2);
  v->addWidget(grValeurs);

  const auto repliable = [this, panneau, v](const QString& nom, const QString& titre) {
    auto* b = Bouton(QStringLiteral("cmd") + nom, titre, panneau);
    b->setCheckable(true);
    auto* f = Nomme(new QFrame(panneau), nom);
    f->setFrameShape(QFrame::StyledPanel);
    v->addWidget(b);
    v->addWidget(f);
    connect(b, &QPushButton::toggled, this, [this, f](bool ouvert) { Replier(f, !ouvert); });
    return f;
  };

  // Lines and pointers.
  fraLigne_ = repliable(QStringLiteral("fraLigne"), QStringLiteral("Lignes, pointeurs et cotes"));
  {
    auto* l = new QGridLayout(fraLigne_);
    l->addWidget(new QLabel(QStringLiteral("Épaisseur :"), fraLigne_), 0, 0);
    combEpaisseurLigne_ = Nomme(new QComboBox(fraLigne_), QStringLiteral("combEpaisseurLigne"));
    combEpaisseurLigne_->setEditable(true);
    for (int i = 1; i <= 6; ++i) combEpaisseurLigne_->addItem(QString::number(i));
    combEpaisseurLigne_->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,2}")), combEpaisseurLigne_));
    connect(combEpaisseurLigne_, &QComboBox::currentTextChanged, this, [this](const QString& t) {
      double v = 0;
      if (!LireNombre(t, v) || v < 1 || v > 99) return;
      r_.LineBorder = int16_t(VersEntier(v));
      linExemple_->setFixedHeight(r_.LineBorder);
      epaisseurDessin_ = r_.LineBorder;
    });
    l->addWidget(combEpaisseurLigne_, 0, 1);
    linExemple_ = Nomme(new QFrame(fraLigne_), QStringLiteral("linExemple"));
    linExemple_->setFixedWidth(60);
    l->addWidget(linExemple_, 0, 2);
    auto* nb3 = new QHBoxLayout;
    for (int i = 0; i < 3; ++i) {
      const int32_t c = std::array<int32_t, 3>{0x404040, 0xC0C0C0, 0xFFFFFF}[i];
      auto* p = Pastille(QStringLiteral("picColorNB3_%1").arg(i), c, fraLigne_);
      connect(p, &QPushButton::clicked, this, [this, c] { CouleurLigne(c); });
      nb3->addWidget(p);
    }
    auto* cmdCouleurLigne = Bouton(QStringLiteral("cmdCouleurLigne"), QStringLiteral("Couleur ..."), fraLigne_);
    connect(cmdCouleurLigne, &QPushButton::clicked, this, [this] {
      const int c = Dialogues().Couleur(r_.LineColor);
      if (c != -1) CouleurLigne(c);
    });
    nb3->addWidget(cmdCouleurLigne);
    l->addLayout(nb3, 1, 0, 1, 3);

    auto* grPointeur = new QGroupBox(QStringLiteral(" Pointeur  (début de ligne)"), fraLigne_);
    auto* lp = new QGridLayout(grPointeur);
    const char* pointeurs[4] = {"Sans", "Cercle", "Carré", "Flèche"};
    const char* bulles[4] = {"Ligne simple", "Cercle + ligne", "Carré + ligne", "Flèche + ligne"};
    for (int i = 0; i < 4; ++i) {
      optPointeur_[i] = Nomme(new QRadioButton(QString::fromUtf8(pointeurs[i]), grPointeur),
                              QStringLiteral("optPointeur%1").arg(i));
      optPointeur_[i]->setToolTip(QString::fromUtf8(bulles[i]));
      lp->addWidget(optPointeur_[i], 0, i);
      connect(optPointeur_[i], &QRadioButton::clicked, this, [this, i] { ChoisirPointeur(i); });
    }
    lp->addWidget(new QLabel(QStringLiteral("Taille :"), grPointeur), 1, 0);
    combTaillePointeur_ = Nomme(new QComboBox(grPointeur), QStringLiteral("combTaillePointeur"));
    combTaillePointeur_->setEditable(true);
    combTaillePointeur_->addItems({"2", "4", "6", "8", "10", "12", "14", "16", "18", "30", "60"});
    combTaillePointeur_->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,4}")), combTaillePointeur_));
    connect(combTaillePointeur_, &QComboBox::currentTextChanged, this, [this](const QString& t) {
      double v = 0;
      if (LireNombre(t, v) && v >= 0 && v < 10000) r_.PointerSize = int16_t(VersEntier(v));
    });
    lp->addWidget(combTaillePointeur_, 1, 1);
    lp->addWidget(new QLabel(QStringLiteral("Angle :"), grPointeur), 1, 2);
    combAngleFleche_ = Nomme(new QComboBox(grPointeur), QStringLiteral("combAngleFleche"));
    combAngleFleche_->setEditable(true);
    combAngleFleche_->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9.,]{0,6}")), combAngleFleche_));
    connect(combAngleFleche_, &QComboBox::currentTextChanged, this, [this](const QString& t) {
      double v = 0;
      if (LireNombre(t, v)) r_.AngleFleche = float(v);
    });
    lp->addWidget(combAngleFleche_, 1, 3);
    l->addWidget(grPointeur, 2, 0, 1, 3);

    auto* grCotes = new QGroupBox(QStringLiteral("Cotes"), fraLigne_);
    auto* lco = new QGridLayout(grCotes);
    grpCouleurCotes_ = new QButtonGroup(this);
    const char* couleurs[3] = {" Blanc", " Noir", " Gris"};
    for (int i = 0; i < 3; ++i) {
      optCouleurCotes_[i] = Nomme(new QRadioButton(QString::fromUtf8(couleurs[i]), grCotes),
                                  QStringLiteral("optCouleurCotes%1").arg(i));
      grpCouleurCotes_->addButton(optCouleurCotes_[i], i);
      lco->addWidget(optCouleurCotes_[i], 0, i);
      connect(optCouleurCotes_[i], &QRadioButton::clicked, this, [this, i] { ChoisirCouleurCotes(i); });
    }
    auto* grpUnite = new QButtonGroup(this);
    const char* unites[2] = {"µm", "mm"};
    for (int i = 0; i < 2; ++i) {
      optUniteCote_[i] = Nomme(new QRadioButton(QString::fromUtf8(unites[i]), grCotes),
                               QStringLiteral("optUniteCote%1").arg(i));
      grpUnite->addButton(optUniteCote_[i], i);
      lco->addWidget(optUniteCote_[i], 1, i);
      connect(optUniteCote_[i], &QRadioButton::clicked, this,
              [this, i] { r_.CoteUnite = i == 0 ? QStringLiteral("µm") : QStringLiteral("mm"); });
    }
    l->addWidget(grCotes, 3, 0, 1, 3);
  }

  // Texts, numbering and grid.
  fraTexte_ = repliable(QStringLiteral("fraTexte"), QStringLiteral("Textes, numérotation et grille"));
  {
    auto* l = new QGridLayout(fraTexte_);
    txtExemple_ = Nomme(new QLineEdit(QStringLiteral("Exemple - 12345"), fraTexte_), QStringLiteral("txtExemple"));
    txtExemple_->setReadOnly(true);
    l->addWidget(txtExemple_, 0, 0, 1, 4);
    auto* cmdPolice = Bouton(QStringLiteral("cmdPolice"), QStringLiteral("Police ..."), fraTexte_);
    connect(cmdPolice, &QPushButton::clicked, this, [this] {
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
      MajExemple();
    });
    l->addWidget(cmdPolice, 1, 0);
    auto* nb1 = new QHBoxLayout;
    nb1->addWidget(new QLabel(QStringLiteral("Texte :"), fraTexte_));
    for (int i = 0; i < 3; ++i) {
      const int32_t c = std::array<int32_t, 3>{0x404040, 0xC0C0C0, 0xFFFFFF}[i];
      auto* p = Pastille(QStringLiteral("picColorNB1_%1").arg(i), c, fraTexte_);
      connect(p, &QPushButton::clicked, this, [this, c] { CouleurTexte(c); });
      nb1->addWidget(p);
    }
    auto* cmdCouleurPolice = Bouton(QStringLiteral("cmdCouleurPolice"), QStringLiteral("Couleur ..."), fraTexte_);
    connect(cmdCouleurPolice, &QPushButton::clicked, this, [this] {
      Dialogues().Message(QLatin1String(TitreProgramme),
                          QStringLiteral("Attention :\nAvec les textes, certaines couleurs\nsortent très mal "
                                         "(bavent) après compression Jpg !\nUtilisez de préférence les niveaux "
                                         "de gris ou le noir et blanc (inversé) !\nEn principe ce problème "
                                         "concerne moins les lignes (flèches) ..."),
                          Icone::Exclamation);
      const int c = Dialogues().Couleur(r_.TxtFontColor);
      if (c != -1) CouleurTexte(c);
    });
    nb1->addWidget(cmdCouleurPolice);
    l->addLayout(nb1, 1, 1, 1, 3);
    chkCouleurTxtplusLigne_ = Nomme(new QCheckBox(QStringLiteral("appliquer coul. aux lignes"), fraTexte_),
                                    QStringLiteral("chkCouleurTxtplusLigne"));
    l->addWidget(chkCouleurTxtplusLigne_, 2, 0, 1, 4);
    auto* grpFond = new QButtonGroup(this);
    const char* fonds[2] = {"Fond transparent", "Fond opaque"};
    auto* nb2 = new QHBoxLayout;
    for (int i = 0; i < 2; ++i) {
      optFondTexte_[i] = Nomme(new QRadioButton(QString::fromUtf8(fonds[i]), fraTexte_),
                               QStringLiteral("optFondTexte%1").arg(i));
      grpFond->addButton(optFondTexte_[i], i);
      nb2->addWidget(optFondTexte_[i]);
      connect(optFondTexte_[i], &QRadioButton::clicked, this, [this, i] { optFondTexte(i); });
    }
    for (int i = 0; i < 3; ++i) {
      const int32_t c = std::array<int32_t, 3>{0x404040, 0xC0C0C0, 0xFFFFFF}[i];
      auto* p = Pastille(QStringLiteral("picColorNB2_%1").arg(i), c, fraTexte_);
      connect(p, &QPushButton::clicked, this, [this, c] {
        r_.TxtBackColor = c;
        MajExemple();
      });
      nb2->addWidget(p);
    }
    auto* cmdCouleurFond = Bouton(QStringLiteral("cmdCouleurFond"), QStringLiteral("..."), fraTexte_);
    connect(cmdCouleurFond, &QPushButton::clicked, this, [this] {
      const int c = Dialogues().Couleur(r_.TxtBackColor);
      if (c == -1) return;
      r_.TxtBackColor = c;
      MajExemple();
    });
    nb2->addWidget(cmdCouleurFond);
    l->addLayout(nb2, 3, 0, 1, 4);

    // The six quick styles, each a sample in its colours.
    auto* styles = new QHBoxLayout;
    for (int i = 0; i < int(kStylesRapides.size()); ++i) {
      const StyleRapide& st = kStylesRapides[size_t(i)];
      auto* b = Bouton(QStringLiteral("picStyle%1").arg(i), QStringLiteral("Abc"), fraTexte_);
      b->setFixedSize(44, 24);
      b->setStyleSheet(QStringLiteral("color: %1; background-color: %2; border: 2px solid %3;")
                           .arg(VersQColor(st.couleurTexte).name(),
                                st.fond == -1 ? QStringLiteral("#a0a0a0") : VersQColor(st.fond).name(),
                                VersQColor(st.couleurLigne).name()));
      connect(b, &QPushButton::clicked, this, [this, i] { picStyle(i); });
      styles->addWidget(b);
    }
    l->addLayout(styles, 4, 0, 1, 4);

    chkNumAuto_ = Nomme(new QCheckBox(QStringLiteral(" Num. auto"), fraTexte_), QStringLiteral("chkNumAuto"));
    connect(chkNumAuto_, &QCheckBox::toggled, this, [this](bool c) { chkNumAuto(c); });
    l->addWidget(chkNumAuto_, 5, 0);
    lblStart_ = Nomme(new QLabel(QStringLiteral("Départ :"), fraTexte_), QStringLiteral("lblStart"));
    l->addWidget(lblStart_, 5, 1);
    txtCptNumAuto_ = Nomme(new QLineEdit(fraTexte_), QStringLiteral("txtCptNumAuto"));
    txtCptNumAuto_->setToolTip(QStringLiteral("Départ du compteur numérotation automatique"));
    txtCptNumAuto_->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,4}")), txtCptNumAuto_));
    connect(txtCptNumAuto_, &QLineEdit::textEdited, this, [this] { Colorer(txtCptNumAuto_, Qt::white); });
    l->addWidget(txtCptNumAuto_, 5, 2);
    cmdNumAuto_ = Bouton(QStringLiteral("cmdNumAuto"), QStringLiteral("OK"), fraTexte_);
    cmdNumAuto_->setToolTip(QStringLiteral("Valider nouveau départ"));
    connect(cmdNumAuto_, &QPushButton::clicked, this, [this] { cmdNumAuto(); });
    l->addWidget(cmdNumAuto_, 5, 3);
    lblStart_->setEnabled(false);
    txtCptNumAuto_->setEnabled(false);
    cmdNumAuto_->setEnabled(false);

    auto* grGrille = new QGroupBox(QStringLiteral("Grille"), fraTexte_);
    auto* lg = new QGridLayout(grGrille);
    txtgrilleL_ = Nomme(new QLineEdit(QStringLiteral("100"), grGrille), QStringLiteral("txtgrilleL"));
    txtgrilleH_ = Nomme(new QLineEdit(QStringLiteral("100"), grGrille), QStringLiteral("txtgrilleH"));
    UpDownL_ = Nomme(new QSpinBox(grGrille), QStringLiteral("UpDownL"));
    UpDownH_ = Nomme(new QSpinBox(grGrille), QStringLiteral("UpDownH"));
    for (auto [t, u] : {std::pair{txtgrilleL_, UpDownL_}, std::pair{txtgrilleH_, UpDownH_}}) {
      t->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,5}")), t));
      t->setMaximumWidth(50);
      u->setRange(1, 300);
      u->setValue(100);
      u->setButtonSymbols(QAbstractSpinBox::UpDownArrows);
      u->setFixedWidth(22);
      connect(t, &QLineEdit::textChanged, this, [this, t, u] { ChangerPasGrille(t, u); });
      connect(u, &QSpinBox::valueChanged, this, [t](int v) {
        if (t->text() != QString::number(v)) t->setText(QString::number(v));
      });
    }
    lg->addWidget(new QLabel(QStringLiteral("L :"), grGrille), 0, 0);
    lg->addWidget(txtgrilleL_, 0, 1);
    lg->addWidget(UpDownL_, 0, 2);
    lg->addWidget(new QLabel(QStringLiteral("H :"), grGrille), 0, 3);
    lg->addWidget(txtgrilleH_, 0, 4);
    lg->addWidget(UpDownH_, 0, 5);
    auto* pastilles = new QHBoxLayout;
    for (int i = 0; i < int(kCouleursGrille.size()); ++i) {
      picColorGrille_[i] = Pastille(QStringLiteral("picColorGrille%1").arg(i), kCouleursGrille[size_t(i)], grGrille, 16);
      picColorGrille_[i]->setCheckable(true);
      connect(picColorGrille_[i], &QPushButton::clicked, this, [this, i] { ChoisirCouleurGrille(i); });
      pastilles->addWidget(picColorGrille_[i]);
    }
    lg->addLayout(pastilles, 1, 0, 1, 6);
    const char* grilles[2] = {"Dessiner la grille", "Effacer la grille"};
    for (int i = 0; i < 2; ++i) {
      auto* b = Bouton(QStringLiteral("cmdGrille%1").arg(i), QString::fromUtf8(grilles[i]), grGrille);
      connect(b, &QPushButton::clicked, this, [this, i] { cmdGrille(i); });
      lg->addWidget(b, 2, i * 3, 1, 3);
    }
    lblInfoGrille_ = Nomme(new QLabel(grGrille), QStringLiteral("lblInfoGrille"));
    lg->addWidget(lblInfoGrille_, 3, 0, 1, 6);
    lg->addWidget(new QLabel(QStringLiteral("Microns (L x H) :"), grGrille), 4, 0, 1, 3);
    lblEquivMicrons_ = Nomme(new QLabel(grGrille), QStringLiteral("lblEquivMicrons"));
    lg->addWidget(lblEquivMicrons_, 4, 3, 1, 3);
    l->addWidget(grGrille, 6, 0, 1, 4);
    ChoisirCouleurGrille(0);
  }

  // The collage.
  fraCollage_ = repliable(QStringLiteral("fraCollage"), QStringLiteral("Collage d'une vignette"));
  {
    auto* l = new QGridLayout(fraCollage_);
    const char* ouvrir[2] = {"Choisir un fichier à coller", "Coller du presse papier"};
    for (int i = 0; i < 2; ++i) {
      auto* b = Bouton(QStringLiteral("cmdOuvrirImage%1").arg(i), QString::fromUtf8(ouvrir[i]), fraCollage_);
      connect(b, &QPushButton::clicked, this, [this, i] { cmdOuvrirImage(i); });
      l->addWidget(b, 0, i * 2, 1, 2);
    }
    l->addWidget(new QLabel(QStringLiteral("Bord :"), fraCollage_), 1, 0);
    auto* grpBord = new QButtonGroup(this);
    const char* bords[2] = {"oui", "non"};
    for (int i = 0; i < 2; ++i) {
      optBordVignette_[i] = Nomme(new QRadioButton(QString::fromUtf8(bords[i]), fraCollage_),
                                  QStringLiteral("optBordVignette%1").arg(i));
      grpBord->addButton(optBordVignette_[i]);
      l->addWidget(optBordVignette_[i], 1, 1 + i);
      connect(optBordVignette_[i], &QRadioButton::toggled, this, [this] {
        const bool bord = optBordVignette_[0]->isChecked();
        fraEpBord_->setEnabled(bord);
        fraCoulBord_->setEnabled(bord);
      });
    }
    fraEpBord_ = Nomme(new QFrame(fraCollage_), QStringLiteral("fraEpBord"));
    auto* le = new QHBoxLayout(fraEpBord_);
    le->setContentsMargins(0, 0, 0, 0);
    const char* epaisseurs[3] = {"1", "2", "4"};
    for (int i = 0; i < 3; ++i) {
      optEpBord_[i] = Nomme(new QRadioButton(QString::fromUtf8(epaisseurs[i]), fraEpBord_),
                            QStringLiteral("optEpBord%1").arg(i));
      le->addWidget(optEpBord_[i]);
    }
    l->addWidget(fraEpBord_, 2, 0, 1, 4);
    fraCoulBord_ = Nomme(new QFrame(fraCollage_), QStringLiteral("fraCoulBord"));
    auto* lcb = new QHBoxLayout(fraCoulBord_);
    lcb->setContentsMargins(0, 0, 0, 0);
    const char* couleursBord[3] = {"noir", "gris", "blanc"};
    for (int i = 0; i < 3; ++i) {
      optCoulBord_[i] = Nomme(new QRadioButton(QString::fromUtf8(couleursBord[i]), fraCoulBord_),
                              QStringLiteral("optCoulBord%1").arg(i));
      lcb->addWidget(optCoulBord_[i]);
    }
    l->addWidget(fraCoulBord_, 3, 0, 1, 4);
    optBordVignette_[0]->setChecked(true);
    optEpBord_[1]->setChecked(true);
    optCoulBord_[0]->setChecked(true);
  }

  // The cross-hair.
  auto* grCroix = new QGroupBox(QStringLiteral("Curseur"), panneau);
  auto* lx = new QHBoxLayout(grCroix);
  for (int i = 0; i < int(kFormesCroix.size()); ++i) {
    const FormeCroix fc = kFormesCroix[size_t(i)];
    auto* b = Bouton(QStringLiteral("picPointeur%1").arg(i),
                     fc.longueur == 0 ? QStringLiteral("∅") : QStringLiteral("%1/%2").arg(fc.epaisseur).arg(fc.longueur == 60 ? QStringLiteral("c") : QStringLiteral("L")),
                     grCroix);
    b->setFixedWidth(34);
    connect(b, &QPushButton::clicked, this, [this, i] { AppliquerCroix(i, -1); });
    lx->addWidget(b);
  }
  for (int i = 0; i < int(kCouleursCroix.size()); ++i) {
    auto* p = Pastille(QStringLiteral("picCouleur%1").arg(i), kCouleursCroix[size_t(i)], grCroix, 16);
    connect(p, &QPushButton::clicked, this, [this, i] { AppliquerCroix(-1, i); });
    lx->addWidget(p);
  }
  v->addWidget(grCroix);

  auto* cmdRetablirDefaut2 = Bouton(QStringLiteral("cmdRetablirDefaut2"), QStringLiteral("Défaut"), fraTexte_);
  cmdRetablirDefaut2->setToolTip(QStringLiteral("Remettre TOUS les paramètres annotations par défaut"));
  connect(cmdRetablirDefaut2, &QPushButton::clicked, this, [this] { RetablirDefaut(); });
  static_cast<QGridLayout*>(fraTexte_->layout())->addWidget(cmdRetablirDefaut2, 7, 3);
  v->addStretch(1);
  return panneau;
}

QWidget* frmAnnotations2::ConstruireSorties() {
  // Undo, the defaults and the ways out, under the tools, never scrolled away.
  auto* pied = Nomme(new QWidget(this), QStringLiteral("fraSorties"));
  auto* bas = new QGridLayout(pied);
  bas->setContentsMargins(2, 2, 2, 2);
  cmdUndo_ = Bouton(QStringLiteral("cmdUndo"), QStringLiteral("Annuler (undo)"), pied);
  connect(cmdUndo_, &QPushButton::clicked, this, [this] { cmdUndo(); });
  auto* boutonToutEffacer = Bouton(QStringLiteral("cmdToutEffacer"), QStringLiteral("Tout effacer"), pied);
  connect(boutonToutEffacer, &QPushButton::clicked, this, [this] { this->cmdToutEffacer(); });
  auto* cmdRetablirDefaut = Bouton(QStringLiteral("cmdRetablirDefaut"), QStringLiteral("Défaut"), pied);
  cmdRetablirDefaut->setToolTip(QStringLiteral("Remettre TOUS les paramètres annotations par défaut"));
  connect(cmdRetablirDefaut, &QPushButton::clicked, this, [this] { RetablirDefaut(); });
  auto* cmdSortir = Bouton(QStringLiteral("cmdSortir"), QStringLiteral("Sortir"), pied);
  connect(cmdSortir, &QPushButton::clicked, this, [this] { this->cmdSortir(); });
  auto* cmdValiderSortir = Bouton(QStringLiteral("cmdValiderSortir"), QStringLiteral("Valider et sortir"), pied);
  connect(cmdValiderSortir, &QPushButton::clicked, this, [this] { this->cmdValiderSortir(); });
  bas->addWidget(cmdUndo_, 0, 0);
  bas->addWidget(boutonToutEffacer, 0, 1);
  bas->addWidget(cmdRetablirDefaut, 0, 2);
  bas->addWidget(cmdSortir, 1, 0);
  bas->addWidget(cmdValiderSortir, 1, 1, 1, 2);
  return pied;
}

// ---------------------------------------------------------------- state

void frmAnnotations2::ChargerImageDepart() {
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
  largeurImage_ = travail_.width();
  hauteurImage_ = travail_.height();
  picImage_->setFixedSize(travail_.size());
  PlacerBarres();
  picImage_->update();
}

void frmAnnotations2::ChargerValeurs() {
  r_ = LireReglagesAnnotation(cheminIni_);
  couleurDessin_ = r_.LineColor;
  epaisseurDessin_ = r_.LineBorder;
  optFondTexte_[r_.TxtBack ? 1 : 0]->setChecked(true);
  MajExemple();
  txtEdition_->setText(QStringLiteral("votre texte ici"));
  // Mode 0 as its click gives it: the numbering offered again.
  optTexteEtLigne_[LigneEtTexte]->setChecked(true);
  ChoisirMode(LigneEtTexte);
  combEpaisseurLigne_->setCurrentText(QString::number(r_.LineBorder));
  linExemple_->setFixedHeight(std::max<int>(1, r_.LineBorder));
  optPointeur_[r_.PointerChoose]->setChecked(true);
  combTaillePointeur_->setCurrentText(QString::number(r_.PointerSize));
  // The arrow angles in the system's decimal form.
  const QString sep = s_.SeparateurDecimal == u"," ? QStringLiteral(",") : QStringLiteral(".");
  combAngleFleche_->blockSignals(true);
  combAngleFleche_->clear();
  combAngleFleche_->addItems({QStringLiteral("22") + sep + QStringLiteral("5"), QStringLiteral("30"),
                              QStringLiteral("45")});
  combAngleFleche_->blockSignals(false);
  combAngleFleche_->setCurrentText(TexteReel(r_.AngleFleche, sep));
  optUniteCote_[r_.CoteUnite == u"µm" ? 0 : 1]->setChecked(true);
  const int cote = IndexCouleurCote(r_.CoteColor);
  grpCouleurCotes_->setExclusive(false);
  for (auto* o : optCouleurCotes_) o->setChecked(false);
  grpCouleurCotes_->setExclusive(true);
  if (cote >= 0) optCouleurCotes_[cote]->setChecked(true);
  cptNumAuto_ = 1;
  txtCptNumAuto_->setText(QString::number(cptNumAuto_));
}

void frmAnnotations2::EcritureIni() {
  if (!EcrireReglagesAnnotation(r_, cheminIni_))
    Erreur(QStringLiteral("Le fichier des réglages « %1 » ne peut pas être écrit.").arg(cheminIni_));
}

void frmAnnotations2::MajExemple() {
  QFont f(r_.TxtFontName);
  f.setPointSize(std::max<int>(1, r_.TxtFontSize));
  f.setBold(r_.TxtFontBold);
  f.setItalic(r_.TxtFontItalic);
  f.setUnderline(r_.TxtFontUnderline);
  txtExemple_->setFont(f);
  QPalette p = txtExemple_->palette();
  p.setColor(QPalette::Text, VersQColor(r_.TxtFontColor & 0xFFFFFF));
  // The stamp's own background: TxtBackColor whenever it is a colour.
  p.setColor(QPalette::Base, r_.TxtBackColor != -1 ? VersQColor(r_.TxtBackColor & 0xFFFFFF)
                                                   : QApplication::palette().color(QPalette::Button));
  txtExemple_->setPalette(p);
  Colorer(linExemple_, VersQColor(r_.LineColor & 0xFFFFFF));
}

void frmAnnotations2::MajCompteurs() {
  lblLongueurLigne_->setText(QStringLiteral("Long. = "));
  lblAngle_->setText(QStringLiteral("Angle = "));
  lblCompteur_->setText(QStringLiteral("Undo : %1").arg(nbUndo_));
}

ModeAnnotation frmAnnotations2::Mode() const {
  for (int i = 0; i < 4; ++i)
    if (optTexteEtLigne_[i]->isChecked()) return ModeAnnotation(i);
  return LigneEtTexte;
}

void frmAnnotations2::ChoisirMode(int index) {
  ValiderEdition();
  if (index == Cotes && (s_.EchellePix.isEmpty() || s_.EchelleMic.isEmpty())) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Vous n'avez pas défini d'échelle ! (Cartouche)"),
                        Icone::Exclamation);
    optTexteEtLigne_[LigneEtTexte]->setChecked(true);
    index = LigneEtTexte;
  }
  if (index == LigneEtTexte || index == TexteUnique) {
    txtEdition_->setText(QStringLiteral("votre texte ici"));
    chkNumAuto_->setEnabled(true);
  } else {
    chkNumAuto_->setChecked(false);
    chkNumAuto_->setEnabled(false);
  }
}

void frmAnnotations2::ChoisirPointeur(int index) {
  ValiderEdition();
  r_.PointerChoose = int16_t(index);
  if (index == 1) r_.PointerSize = 60;
  if (index == 3) r_.PointerSize = 16;
  combTaillePointeur_->setCurrentText(QString::number(r_.PointerSize));
}

void frmAnnotations2::ChoisirCouleurCotes(int index) {
  ValiderEdition();
  r_.CoteColor = r_.LineColor = kCouleursCotes[size_t(index)];
  couleurDessin_ = r_.LineColor;
  MajExemple();
}

void frmAnnotations2::CouleurLigne(int32_t couleur) {
  r_.LineColor = couleur;
  couleurDessin_ = couleur;
  MajExemple();
}

void frmAnnotations2::CouleurTexte(int32_t couleur) {
  r_.TxtFontColor = couleur;
  if (chkCouleurTxtplusLigne_->isChecked()) CouleurLigne(couleur);
  MajExemple();
}

void frmAnnotations2::optFondTexte(int index) {
  ValiderEdition();
  if (index == 0) {
    r_.TxtBackColor = -1;
  } else {
    r_.TxtBack = true;
    // A first opaque background is white: black (0) cannot be chosen here.
    if (r_.TxtBackColor <= 0) r_.TxtBackColor = 0xFFFFFF;
  }
  MajExemple();
}

void frmAnnotations2::picStyle(int index) {
  if (index < 0 || index >= int(kStylesRapides.size())) return;
  ValiderEdition();
  const bool avec = chkCouleurTxtplusLigne_->isChecked();
  chkCouleurTxtplusLigne_->setChecked(false);
  AppliquerStyle(r_, kStylesRapides[size_t(index)]);
  EcritureIni();
  ChargerValeurs();
  chkCouleurTxtplusLigne_->setChecked(avec);
}

void frmAnnotations2::chkNumAuto(bool coche) {
  lblStart_->setEnabled(coche);
  txtCptNumAuto_->setEnabled(coche);
  cmdNumAuto_->setEnabled(coche);
  if (!coche) txtEdition_->setText(QStringLiteral("votre texte ici"));
}

void frmAnnotations2::cmdNumAuto() {
  double v = 0;
  if (LireNombre(txtCptNumAuto_->text(), v) && v >= 0 && v < 32768) {
    cptNumAuto_ = int(VersEntier(v));
    Colorer(txtCptNumAuto_, VersQColor(kVertClair));
  } else {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Num Auto : Chiffres uniquement !"),
                        Icone::Exclamation);
    txtCptNumAuto_->setText(QString::number(cptNumAuto_));
    Colorer(txtCptNumAuto_, Qt::white);
  }
}

void frmAnnotations2::ChangerPasGrille(QLineEdit* texte, QSpinBox* pas) {
  double v = 0;
  if (!LireNombre(texte->text(), v)) return;
  const int borne = BornerPasGrille(int(std::clamp(v, -1.0, 100000.0)));
  if (borne != v) {
    texte->setText(QString::number(borne));
    return;  // the change of text comes back here with the bounded value
  }
  pas->setValue(borne);
}

void frmAnnotations2::ChoisirCouleurGrille(int index) {
  couleurGrille_ = kCouleursGrille[size_t(index)];
  for (int i = 0; i < int(kCouleursGrille.size()); ++i) {
    picColorGrille_[i]->setChecked(i == index);
    picColorGrille_[i]->setStyleSheet(QStringLiteral("background-color: %1; border: %2;")
                                          .arg(VersQColor(kCouleursGrille[size_t(i)]).name(),
                                               i == index ? QStringLiteral("3px solid red")
                                                          : QStringLiteral("1px solid #808080")));
  }
}

void frmAnnotations2::Replier(QFrame* cadre, bool replie) {
  cadre->setVisible(!replie);
  if (auto* b = findChild<QPushButton*>(QStringLiteral("cmd") + cadre->objectName())) {
    const QSignalBlocker bloque(b);
    b->setChecked(!replie);
  }
}

// ---------------------------------------------------------------- layer and display

void frmAnnotations2::Peindre(QPainter& p, const QRect& zone) const {
  p.drawImage(zone.topLeft(), travail_, zone);
  if (!zone.intersects(zoneCalque_)) return;
  p.setClipRect(zone);
  calque_.Dessiner(p);
}

void frmAnnotations2::Rafraichir(const QRect& zone) {
  if (!zone.isEmpty()) picImage_->update(zone);
}

// Shows the layer as it now stands: repaints what it covered and what it covers.
void frmAnnotations2::Dessiner() {
  const QRect avant = zoneCalque_;
  zoneCalque_ = calque_.Boite();
  Rafraichir(avant | zoneCalque_);
}

void frmAnnotations2::Montrer() {
  zoneCalque_ = calque_.Boite();
  picImage_->update();
}

void frmAnnotations2::ValiderEdition() {
  picEditeur_->hide();
  picValidation_->hide();
  lngRepereV_->hide();
  lngRepereH_->hide();
  calque_.Effacer();
  Dessiner();
}

void frmAnnotations2::Erreur(const QString& texte) {
  Dialogues().Message(QLatin1String(TitreProgramme), texte, Icone::Critique);
}

void frmAnnotations2::ErreurGarde(const QString& procedure, const QString& description) {
  Dialogues().Message(QLatin1String(TitreProgramme),
                      QStringLiteral("Error 13 (") + description + QStringLiteral(") in procedure ") + procedure +
                          QStringLiteral(" of Feuille ") + kNomFeuille,
                      Icone::Critique);
}

// ---------------------------------------------------------------- cross-hair

void frmAnnotations2::AppliquerCroix(int forme, int couleur) {
  if (forme >= 0) {
    epaisseurCroix_ = kFormesCroix[size_t(forme)].epaisseur;
    longueurCroix_ = kFormesCroix[size_t(forme)].longueur;
  }
  if (couleur >= 0) couleurCroix_ = kCouleursCroix[size_t(couleur)];
  MajCroix();
}

void frmAnnotations2::MajCroix() {
  Colorer(linCrossH_, VersQColor(couleurCroix_));
  Colorer(linCrossV_, VersQColor(couleurCroix_));
  if (croix_.x() >= 0) PlacerCroix(croix_);
}

void frmAnnotations2::PlacerCroix(QPointF p) {
  croix_ = p;
  const int x = int(p.x()), y = int(p.y());
  if (longueurCroix_ <= 0) {
    linCrossH_->hide();
    linCrossV_->hide();
    return;
  }
  const int demi = longueurCroix_ / 2;
  linCrossH_->setGeometry(x - demi, y - epaisseurCroix_ / 2, longueurCroix_, epaisseurCroix_);
  linCrossV_->setGeometry(x - epaisseurCroix_ / 2, y - demi, epaisseurCroix_, longueurCroix_);
  linCrossH_->show();
  linCrossV_->show();
  linCrossH_->raise();
  linCrossV_->raise();
}

// ---------------------------------------------------------------- lines

void frmAnnotations2::CalculAngle(float x, float y) {
  // Mouse positions are whole pixels, so dx never rounds to 0 off the axis.
  tg::CalculAngle(debutX_, debutY_, x, y, angleLigne_);
}

void frmAnnotations2::BriderLigne(float x0, float y0) {
  const int s = AngleBride(angleLigne_);
  const bool cercle = r_.PointerChoose == 1 && Mode() != Cotes;
  const PointF fin = FinBridee({x0, y0}, s, LongueurTracee(float(longueurLigne_), r_.PointerSize, cercle));
  calque_.Ligne({x0, y0}, fin, couleurDessin_, epaisseurDessin_);
  brideX_ = fin.x;
  brideY_ = fin.y;
  angleLigne_ = s;
}

void frmAnnotations2::DessinerExtLigne(float x, float y, double angle, int longueur) {
  const auto [a, b] = tg::DessinerExtLigne({x, y}, angle, longueur, angleLigne_);
  calque_.Ligne(a.de, a.a, couleurDessin_, epaisseurDessin_);
  calque_.Ligne(b.de, b.a, couleurDessin_, epaisseurDessin_);
}

void frmAnnotations2::LigneElastique(float x, float y) {
  const ModeAnnotation mode = Mode();
  // 1.
  longueurLigne_ = int(VersEntier(Distance(debutX_, debutY_, x, y)));
  lblLongueurLigne_->setText(QStringLiteral("Long. = %1 pix").arg(longueurLigne_));
  // 2.
  const bool cercle = r_.PointerChoose == 1 && mode != Cotes;
  if (cercle) {
    const PointF m = SoustrairePointeur({x, y}, float(longueurLigne_), r_.PointerSize, angleLigne_);
    milieuX_ = m.x;
    milieuY_ = m.y;
  }
  if (chkBriderLigne_->isChecked()) {
    if (cercle) BriderLigne(milieuX_, milieuY_);
    else BriderLigne(debutX_, debutY_);
  } else {
    calque_.Ligne(cercle ? PointF{milieuX_, milieuY_} : PointF{debutX_, debutY_}, {x, y}, couleurDessin_,
                  epaisseurDessin_);
  }
  // 3.
  const long long d = VersEntier(angleLigne_);
  QFont f = lblAngle_->font();
  if (DirectionNette(d)) {
    if (!chkBriderLigne_->isChecked()) {
      f.setBold(true);
      lblAngle_->setFont(f);
      Colorer(lblAngle_, VersQColor(kVertClair));
    }
  } else {
    f.setBold(false);
    lblAngle_->setFont(f);
    Colorer(lblAngle_, QApplication::palette().color(QPalette::Button));
  }
  lblAngle_->setText(QStringLiteral("Angle = %1°").arg(d));
  // 4. and 5.
  if (mode == Cotes) {
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
      if (!LireNombre(combAngleFleche_->currentText(), angle)) {
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

void frmAnnotations2::SourisAppuyee(QPointF pos, Qt::MouseButton bouton) {
  const QPointF p = Pixel(pos);
  const float x = float(p.x()), y = float(p.y());
  PlacerCroix(p);
  if (collageEnCours_) {
    if (bouton != Qt::LeftButton) return;
    const QPoint coin(int(x) - collage_.width() / 2, int(y) - collage_.height() / 2);
    shpCollage_->move(coin);
    picCollage_->move(coin);
    collageFige_ = false;
    picCollage_->show();
    return;
  }
  if (bouton != Qt::LeftButton) return;
  boutonGauche_ = true;
  gardeFleche_ = false;
  const ModeAnnotation mode = Mode();
  if (chkNumAuto_->isChecked()) txtEdition_->setText(QStringLiteral(" %1 ").arg(cptNumAuto_));
  if (mode != TexteUnique) {
    picEditeur_->hide();
    picValidation_->hide();
  } else {
    picEditeur_->show();
    picEditeur_->raise();
    picValidation_->hide();
  }
  if (mode == Cotes) {
    couleurDessin_ = r_.CoteColor;
    epaisseurDessin_ = 2;
  } else {
    // The dimension's colour and width end with it.
    couleurDessin_ = r_.LineColor;
    epaisseurDessin_ = r_.LineBorder;
  }
  lngRepereH_->hide();
  lngRepereV_->hide();
  debutX_ = x;
  debutY_ = y;
  finX_ = finY_ = brideX_ = brideY_ = ecartX_ = ecartY_ = 0;
  angleLigne_ = 0;
  longueurLigne_ = 0;
  milieuX_ = milieuY_ = 0;
}

void frmAnnotations2::SourisDeplacee(QPointF pos, Qt::MouseButtons boutons) {
  const QPointF p = Pixel(pos);
  const float x = float(p.x()), y = float(p.y());
  PlacerCroix(p);
  if (collageEnCours_) {
    if (!collageFige_) {
      const QPoint coin(int(x) - collage_.width() / 2, int(y) - collage_.height() / 2);
      shpCollage_->move(coin);
      picCollage_->move(coin);
    }
    return;
  }
  if (!(boutons & Qt::LeftButton) || !boutonGauche_) return;
  calque_.Effacer();
  CalculAngle(x, y);
  if (Mode() != TexteUnique) {
    LigneElastique(x, y);
  } else {
    picEditeur_->move(Dedans({int(x) - picEditeur_->width() / 2, int(y)}, picEditeur_, picImage_));
  }
  Dessiner();
}

void frmAnnotations2::SourisRelachee(QPointF pos, Qt::MouseButton bouton) {
  const QPointF p = Pixel(pos);
  const float x = float(p.x()), y = float(p.y());
  if (collageEnCours_) {
    picCollage_->move(shpCollage_->pos());
    picCollage_->show();
    picCollage_->raise();
    collageFige_ = true;
    return;
  }
  if (bouton != Qt::LeftButton || !boutonGauche_) return;
  boutonGauche_ = false;
  const ModeAnnotation mode = Mode();
  // a.
  QFont f = lblAngle_->font();
  f.setBold(false);
  lblAngle_->setFont(f);
  Colorer(lblAngle_, QApplication::palette().color(QPalette::Button));
  picEditeur_->adjustSize();
  picValidation_->adjustSize();
  const int w = picEditeur_->width(), h = picEditeur_->height();
  const int wv = picValidation_->width(), hv = picValidation_->height();
  // b.
  if (chkBriderLigne_->isChecked()) {
    finX_ = brideX_;
    finY_ = brideY_;
  } else {
    finX_ = x;
    finY_ = y;
  }
  if (mode == TexteUnique) {
    // g.
    const int ix = int(x), iy = int(y);
    lngRepereV_->setGeometry(ix, iy - 30, 1, 81);
    lngRepereH_->setGeometry(ix - 80, iy, 161, 1);
    lngRepereV_->show();
    lngRepereH_->show();
    picEditeur_->move(Dedans({ix - w / 2, iy}, picEditeur_, picImage_));
    picEditeur_->show();
    picEditeur_->raise();
    picValidation_->move(Dedans(PlacerValidationTexteUnique({ix, iy}, w, h, hv, hauteurImage_), picValidation_, picImage_));
    picValidation_->show();
    picValidation_->raise();
    txtEdition_->setFocus();
    txtEdition_->selectAll();
    debutX_ = x;
    debutY_ = y;
    return;
  }
  // c. A line ending at (0, 0) or shorter than 10 pixels is no line.
  if ((finX_ == 0 && finY_ == 0) || longueurLigne_ < 10) {
    ValiderEdition();
    return;
  }
  ecartX_ = finX_ - debutX_;
  ecartY_ = finY_ - debutY_;
  lblX_->setText(QStringLiteral("l.X = ") + TexteReel(ecartX_, s_.SeparateurDecimal));
  lblY_->setText(QStringLiteral("l.Y = ") + TexteReel(ecartY_, s_.SeparateurDecimal));
  placement_ = FlagsPlacement(ecartX_, ecartY_, angleLigne_);
  const PositionEditeur pos2 = PlacerEditeur(placement_, {finX_, finY_}, w, h, wv, largeurImage_);
  picEditeur_->move(Dedans(pos2.editeur, picEditeur_, picImage_));
  picValidation_->move(Dedans(pos2.validation, picValidation_, picImage_));
  lblGaucheDroite_->setText(pos2.legende);
  switch (mode) {
    case LigneEtTexte:  // d. the text waits for the user
      picEditeur_->show();
      picValidation_->show();
      picEditeur_->raise();
      picValidation_->raise();
      txtEdition_->setFocus();
      txtEdition_->selectAll();
      break;
    case LigneUnique:  // e.
      picEditeur_->hide();
      picValidation_->hide();
      txtEdition_->setText(QStringLiteral(" "));
      CollerTexte();
      break;
    case Cotes: {  // f.
      picEditeur_->hide();
      picValidation_->hide();
      txtEdition_->setText(QStringLiteral(" "));
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

// ---------------------------------------------------------------- commits

void frmAnnotations2::Valider(const QImage& avant) {
  memoire_.Ajouter(avant, travail_);
  ++nbUndo_;
  lblCompteur_->setText(QStringLiteral("Undo : %1").arg(nbUndo_));
}

void frmAnnotations2::CollerTexte() {
  // 1.
  if (nbUndo_ > kDernierCollerTexte) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Attention, maximum de textes (undo) atteint !"),
                        Icone::Exclamation);
    ValiderEdition();
    return;
  }
  const ModeAnnotation mode = Mode();
  // 2.
  const QString texte = TexteTampon(txtEdition_->text(), optFondTexte_[1]->isChecked());
  // 3. The capture freezes the layer into the picture.
  const QImage avant = travail_.copy();
  {
    QPainter p(&travail_);
    calque_.Dessiner(p);
  }
  // 4.
  lngRepereV_->hide();
  lngRepereH_->hide();
  // 5.
  if (mode == Cotes) {
    const QString valeur = TexteCote(float(longueurLigne_), s_.EchellePix, s_.EchelleMic,
                                     optUniteCote_[1]->isChecked(), r_.CoteUnite, SeparateurDecimalSysteme());
    if (!valeur.isEmpty()) {
      const TexteSurImage t = TamponCote({milieuX_, milieuY_}, angleLigne_, r_);
      cAdvancedImagery::DessinerTexte(travail_, valeur, t);
    }
  } else if (mode != LigneUnique) {
    // A plain line carries a blank text, which would only show an opaque background.
    const TexteSurImage t = TamponTexte(mode, placement_, {debutX_, debutY_}, {finX_, finY_}, r_);
    const QString refus = cAdvancedImagery::RefusTexte(t);
    if (!refus.isEmpty()) Erreur(QStringLiteral("Error - ") + refus);
    else cAdvancedImagery::DessinerTexte(travail_, texte, t);
  }
  // 6. and 7.
  Valider(avant);
  // 8.
  if (mode != LigneUnique && mode != Cotes) {
    if (chkNumAuto_->isChecked()) ++cptNumAuto_;
    txtCptNumAuto_->setText(QString::number(cptNumAuto_));
  }
  // 9.
  ValiderEdition();
  Montrer();
}

void frmAnnotations2::cmdUndo() {
  ValiderEdition();
  if (nbUndo_ == 0 || memoire_.Nombre() == 0) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Aucune entrée !"), Icone::Information);
    return;
  }
  memoire_.Annuler(travail_);
  --nbUndo_;
  Montrer();
  MajCompteurs();
  // Every undo takes a number back, whether or not the step used one; the
  // box keeps showing the old value until the next commit.
  if (cptNumAuto_ > 0) --cptNumAuto_;
}

void frmAnnotations2::cmdToutEffacer() {
  if (Dialogues().Question(QStringLiteral("Effacer les textes"),
                           QStringLiteral("Voulez-vous effacer TOUS les textes (et collages) ?"), Boutons::OuiNon,
                           Reponse::Non, Icone::Question) != Reponse::Oui)
    return;
  travail_ = depart_.copy();
  Montrer();
  ViderUndo();
  ValiderEdition();
}

void frmAnnotations2::ViderUndo() {
  memoire_.Vider();
  nbUndo_ = 0;
  cptNumAuto_ = 1;
  txtCptNumAuto_->setText(QStringLiteral("1"));
  MajCompteurs();
}

void frmAnnotations2::RetablirDefaut() {
  if (QFile::exists(cheminIni_)) QFile::remove(cheminIni_);
  ChargerValeurs();
  EcritureIni();
  ValiderEdition();
}

// ---------------------------------------------------------------- grid

void frmAnnotations2::cmdGrille(int index) {
  ValiderEdition();
  if (index == 1) return;
  const int pasL = UpDownL_->value(), pasH = UpDownH_->value();
  calque_.Effacer();
  TracerGrille(calque_, largeurImage_, hauteurImage_, pasL, pasH, couleurGrille_);
  lblInfoGrille_->setText(TexteInfoGrille(largeurImage_, hauteurImage_, pasL, pasH));
  lblEquivMicrons_->setText(TexteEquivMicrons(s_.EchellePix, s_.EchelleMic, pasL, pasH));
  Dessiner();
}

// ---------------------------------------------------------------- collage

void frmAnnotations2::cmdOuvrirImage(int index) {
  ValiderEdition();
  if (collageEnCours_) {
    Replier(fraCollage_, true);
    Dialogues().Message(QStringLiteral("Collage en cours"),
                        QStringLiteral("Vous avez déjà un collage en cours ...\nVeuillez finaliser celui-ci !"),
                        Icone::Exclamation);
    return;
  }
  if (index == 0) {
    QString dossier = s_.RepTravail;
    if (dossier.isEmpty() || !QFileInfo(dossier).isDir()) dossier = s_.DocPath.isEmpty() ? DossierDocuments() : s_.DocPath;
    const QString chemin = Dialogues().FichierOuvrir(
        QStringLiteral("  Choisir une image ..."), dossier,
        QStringLiteral("Tous formats supportés|*.jpg;*.jpeg;*.bmp;*.png;*.psd;*.pcd;*.gif|JPG (*.jpg)|*.jpg;*.jpeg|"
                       "BMP (*.bmp)|*.bmp|PNG (*.png)|*.png|PSD (*.psd)|*.psd|PCD (*.pcd)|*.pcd|GIF (*.gif)|*.gif"));
    if (chemin.isEmpty()) return;
    ChargerImageCollage(chemin, false);
    return;
  }
  Bitmap presse;
  if (!ai_.Clipboard_Get(presse) || !ai_.Convert_ImageToPicture(presse, collage_)) {
    Dialogues().Message(QStringLiteral("Presse-papier"),
                        QStringLiteral("Votre presse papier semble vide\nou ne contient pas d'image ..."),
                        Icone::Exclamation);
    return;
  }
  ChargerImageCollage(QString(), true);
}

void frmAnnotations2::ChargerImageCollage(const QString& chemin, bool pressePapier) {
  const bool fichier = !(chemin.isEmpty() && pressePapier);
  if (fichier) {
    Bitmap b;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool lu = ai_.IO_LoadImage(chemin, b) && ai_.Convert_ImageToPicture(b, collage_);
    QApplication::restoreOverrideCursor();
    if (!lu) {
      Erreur(QStringLiteral("Error(A) - ") + ai_.Error_GetLast());
      AnnulerCollage();
      return;
    }
  }
  if (collage_.isNull()) return;
  if (collage_.format() != QImage::Format_RGB32) collage_ = collage_.convertToFormat(QImage::Format_RGB32);
  if (CollageTropGrand(collage_.width(), collage_.height(), largeurImage_, hauteurImage_, fichier)) {
    AnnulerCollage();
    Dialogues().Message(QStringLiteral(" Erreur collage"),
                        QStringLiteral("Votre collage est plus grand que l'image de destination !"),
                        Icone::Exclamation);
    return;
  }
  if (optBordVignette_[0]->isChecked()) {
    const int epaisseur = optEpBord_[0]->isChecked() ? 1 : optEpBord_[1]->isChecked() ? 2 : 4;
    const int32_t couleur = optCoulBord_[0]->isChecked() ? 0x000000 : optCoulBord_[1]->isChecked() ? 0xC0C0C0 : 0xFFFFFF;
    BorderCollage(collage_, epaisseur, couleur);
  }
  picCollage_->setPixmap(QPixmap::fromImage(collage_));
  picCollage_->setFixedSize(collage_.size());
  shpCollage_->setFixedSize(collage_.size());
  Replier(fraTexte_, true);
  Replier(fraLigne_, true);
  Replier(fraCollage_, true);
  collageEnCours_ = collageFige_ = true;
  picCollage_->move(0, 0);
  shpCollage_->move(0, 0);
  picCollage_->show();
  picCollage_->raise();
  picValidationCollage_->show();
  MajCompteurs();
  Dialogues().Message(QStringLiteral(" Infos collage"),
                      QStringLiteral("Cliquez (1x) sur votre collage puis le déplacer.\nCliquez à nouveau pour figer.\n"
                                     "Finalement, validez (ou annulez)."),
                      Icone::Information);
  ValiderEdition();
}

QPoint frmAnnotations2::PositionCollage() const { return shpCollage_->pos(); }

void frmAnnotations2::CollerPicCollage() {
  if (!collageEnCours_) return;
  if (nbUndo_ >= kUndoMax) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Attention, maximum de textes (undo) atteint !"),
                        Icone::Exclamation);
    AnnulerCollage();
    return;
  }
  const QPoint coin = shpCollage_->pos();
  const QImage avant = travail_.copy();
  {
    QPainter p(&travail_);
    p.setCompositionMode(QPainter::CompositionMode_Source);
    p.drawImage(coin, collage_);
  }
  Valider(avant);
  Montrer();
  AnnulerCollage();
}

void frmAnnotations2::AnnulerCollage() {
  picCollage_->hide();
  shpCollage_->hide();
  picCollage_->clear();
  collage_ = QImage();
  collageEnCours_ = collageFige_ = false;
  picValidationCollage_->hide();
}

bool frmAnnotations2::eventFilter(QObject* objet, QEvent* e) {
  if (objet == picCadre_ && e->type() == QEvent::Resize) PlacerBarres();
  if (objet == picCollage_ && e->type() == QEvent::MouseButtonPress && collageEnCours_) {
    // A click on the collage lifts it: the outline then follows the mouse.
    Replier(fraTexte_, true);
    Replier(fraLigne_, true);
    Replier(fraCollage_, true);
    picCollage_->hide();
    shpCollage_->show();
    shpCollage_->raise();
    collageFige_ = false;
    return true;
  }
  return QWidget::eventFilter(objet, e);
}

// ---------------------------------------------------------------- scrolling

void frmAnnotations2::PlacerBarres() {
  const bool h = largeurImage_ > picCadre_->width(), v = hauteurImage_ > picCadre_->height();
  HScroll1_->setVisible(h);
  VScroll1_->setVisible(v);
  if (!h) HScroll1_->setValue(0);
  if (!v) VScroll1_->setValue(0);
  Defiler();
}

void frmAnnotations2::Defiler() {
  const int dx = std::max(0, largeurImage_ - picCadre_->width());
  const int dy = std::max(0, hauteurImage_ - picCadre_->height());
  picImage_->move(-dx * HScroll1_->value() / 100, -dy * VScroll1_->value() / 100);
}

void frmAnnotations2::resizeEvent(QResizeEvent* e) {
  QWidget::resizeEvent(e);
  PlacerBarres();
}

// ---------------------------------------------------------------- leaving

void frmAnnotations2::cmdSortir() {
  if (Dialogues().Question(QStringLiteral("Retour fenêtre principale"),
                           QStringLiteral("Quitter l'outil sans conserver les annotations ?"), Boutons::OuiNon,
                           Reponse::Non, Icone::Question) != Reponse::Oui)
    return;
  close();
}

void frmAnnotations2::cmdValiderSortir() { Sauver(); }

void frmAnnotations2::Sauver() {
  if (Dialogues().Question(QStringLiteral("Valider et sortir"),
                           QStringLiteral(" Valider définitivement et sortir ?\nInfos : Vous pourrez encore annuler "
                                          "les annotations avec le menu [Outils/Supprimer annotations]\n(N'oubliez "
                                          "pas d'enregistrer votre image !)"),
                           Boutons::OuiNon, Reponse::Non, Icone::Question) != Reponse::Oui)
    return;
  s_.Etape = 6;
  if (principal_) principal_->AppliquerEtape();
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
  if (principal_) {
    principal_->AfficherImage(s_.ImageCourante);
    principal_->AfficherInfosImage();
  }
  close();
}

void frmAnnotations2::Dechargement() {
  if (dechargee_) return;
  dechargee_ = true;
  ViderUndo();
  travail_ = QImage();
  depart_ = QImage();
  collage_ = QImage();
  EcritureIni();
  if (principal_) principal_->show();
}

void frmAnnotations2::closeEvent(QCloseEvent* e) {
  Dechargement();
  QWidget::closeEvent(e);
}

}  // namespace tg
