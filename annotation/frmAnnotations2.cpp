#include "annotation/frmAnnotations2.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
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
#include "platform/Dialogues.h"
#include "platform/Ecran.h"

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

// Whole pixels of a mouse position: the picture's coordinates are integers.
PointF Pixel(QPointF p) { return {float(std::floor(p.x())), float(std::floor(p.y()))}; }

// The index of the checked button of a group, 0 when none is.
template <size_t N>
int Coche(QRadioButton* const (&options)[N]) {
  for (size_t i = 0; i < N; ++i)
    if (options[i]->isChecked()) return int(i);
  return 0;
}

// Sets a control's state from the tools without running its handler again.
template <typename T, typename F>
void Sans(T* controle, F&& f) {
  const QSignalBlocker bloque(controle);
  f(controle);
}

}  // namespace

// ---------------------------------------------------------------- opening

frmAnnotations2::frmAnnotations2(SessionRecord& session, cAdvancedImagery& ai, frmFichierPhoto* principal,
                                 QWidget* parent)
    : QWidget(parent, Qt::Window), s_(session), principal_(principal), o_(session, ai, CheminUserAnnotation()) {
  setObjectName(kNomFeuille);
  setWindowTitle(QStringLiteral("  Tessellographe : Annotations et cotes"));
  // 1.
  Construire();
  lblInfosFenetre_->setText(
      QStringLiteral("Si possible, dessinez vos lignes en accrochant les multiples de 45° ") +
      QStringLiteral("le résultat sera meilleur (sans crénelage)."));
  // 2.
  Replier(fraLigne_, true);
  Replier(fraTexte_, true);
  Replier(fraCollage_, true);
  // 3. The grid's steps, the lists and the swatches are set up by Construire.
  // 4.
  cmdUndo_->setToolTip(QStringLiteral("Undo-max %1").arg(kUndoMax));
  o_.MajCompteurs();
  // 5.
  o_.ChargerValeurs();
  MontrerReglages();
  o_.ChargerImageDepart();
  picImage_->setFixedSize(o_.Travail().size());
  PlacerBarres();
  // 6.
  o_.AppliquerCroix(1, 0);
  // 7.
  HScroll1_->setValue(0);
  VScroll1_->setValue(0);
  // 8.
  optTexteEtLigne_[Cotes]->setEnabled(o_.CotesPossibles());
  Montrer();
}

frmAnnotations2::~frmAnnotations2() { Dechargement(); }

QSize frmAnnotations2::TailleVoulue() const {
  // The picture at 1:1 beside the tools, and room to open their frames.
  const QMargins m = layout()->contentsMargins();
  const int colonne = std::max(fraOutils_->width(), fraSorties_->sizeHint().width());
  return {m.left() + o_.Largeur() + layout()->spacing() + colonne + m.right(),
          m.top() + std::max(o_.Hauteur(), 960) + m.bottom()};
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
        o_.AnnulerTexte();
        Montrer();
      }
    });
  }
  picValidation_->adjustSize();
  picValidation_->hide();
  connect(txtEdition_, &QLineEdit::textChanged, this, [this](const QString& t) { o_.DefinirTexte(t); });
  connect(txtEdition_, &QLineEdit::returnPressed, this, [this] {
    if (o_.Boites().validation) CollerTexte();
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
      if (i == 0) o_.CollerPicCollage();
      else o_.AnnulerCollage();
      o_.ValiderEdition();
      Montrer();
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
    connect(optTexteEtLigne_[i], &QRadioButton::clicked, this, [this, i] {
      o_.ChoisirMode(i);
      Montrer();
    });
  }
  chkBriderLigne_ = Nomme(new QCheckBox(QStringLiteral(" Accro. 45°"), grMode), QStringLiteral("chkBriderLigne"));
  connect(chkBriderLigne_, &QCheckBox::toggled, this, [this](bool c) {
    o_.Brider(c);
    Montrer();
  });
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
      o_.DefinirEpaisseur(t);
      linExemple_->setFixedHeight(std::max<int>(1, o_.Reglages().LineBorder));
    });
    l->addWidget(combEpaisseurLigne_, 0, 1);
    linExemple_ = Nomme(new QFrame(fraLigne_), QStringLiteral("linExemple"));
    linExemple_->setFixedWidth(60);
    l->addWidget(linExemple_, 0, 2);
    auto* nb3 = new QHBoxLayout;
    for (int i = 0; i < 3; ++i) {
      const int32_t c = std::array<int32_t, 3>{0x404040, 0xC0C0C0, 0xFFFFFF}[i];
      auto* p = Pastille(QStringLiteral("picColorNB3_%1").arg(i), c, fraLigne_);
      connect(p, &QPushButton::clicked, this, [this, c] {
        o_.CouleurLigne(c);
        MajExemple();
      });
      nb3->addWidget(p);
    }
    auto* cmdCouleurLigne = Bouton(QStringLiteral("cmdCouleurLigne"), QStringLiteral("Couleur ..."), fraLigne_);
    connect(cmdCouleurLigne, &QPushButton::clicked, this, [this] {
      o_.ChoisirCouleurLigne();
      MajExemple();
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
      connect(optPointeur_[i], &QRadioButton::clicked, this, [this, i] {
        o_.ChoisirPointeur(i);
        MontrerReglages();
        Montrer();
      });
    }
    lp->addWidget(new QLabel(QStringLiteral("Taille :"), grPointeur), 1, 0);
    combTaillePointeur_ = Nomme(new QComboBox(grPointeur), QStringLiteral("combTaillePointeur"));
    combTaillePointeur_->setEditable(true);
    combTaillePointeur_->addItems({"2", "4", "6", "8", "10", "12", "14", "16", "18", "30", "60"});
    combTaillePointeur_->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,4}")), combTaillePointeur_));
    connect(combTaillePointeur_, &QComboBox::currentTextChanged, this,
            [this](const QString& t) { o_.DefinirTaillePointeur(t); });
    lp->addWidget(combTaillePointeur_, 1, 1);
    lp->addWidget(new QLabel(QStringLiteral("Angle :"), grPointeur), 1, 2);
    combAngleFleche_ = Nomme(new QComboBox(grPointeur), QStringLiteral("combAngleFleche"));
    combAngleFleche_->setEditable(true);
    combAngleFleche_->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9.,]{0,6}")), combAngleFleche_));
    connect(combAngleFleche_, &QComboBox::currentTextChanged, this,
            [this](const QString& t) { o_.DefinirAngleFleche(t); });
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
      connect(optCouleurCotes_[i], &QRadioButton::clicked, this, [this, i] {
        o_.ChoisirCouleurCotes(i);
        MajExemple();
        Montrer();
      });
    }
    auto* grpUnite = new QButtonGroup(this);
    const char* unites[2] = {"µm", "mm"};
    for (int i = 0; i < 2; ++i) {
      optUniteCote_[i] = Nomme(new QRadioButton(QString::fromUtf8(unites[i]), grCotes),
                               QStringLiteral("optUniteCote%1").arg(i));
      grpUnite->addButton(optUniteCote_[i], i);
      lco->addWidget(optUniteCote_[i], 1, i);
      connect(optUniteCote_[i], &QRadioButton::clicked, this, [this, i] {
        o_.ChoisirUnite(i);
        Montrer();
      });
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
      o_.ChoisirPolice();
      MajExemple();
    });
    l->addWidget(cmdPolice, 1, 0);
    auto* nb1 = new QHBoxLayout;
    nb1->addWidget(new QLabel(QStringLiteral("Texte :"), fraTexte_));
    for (int i = 0; i < 3; ++i) {
      const int32_t c = std::array<int32_t, 3>{0x404040, 0xC0C0C0, 0xFFFFFF}[i];
      auto* p = Pastille(QStringLiteral("picColorNB1_%1").arg(i), c, fraTexte_);
      connect(p, &QPushButton::clicked, this, [this, c] {
        o_.CouleurTexte(c);
        MajExemple();
      });
      nb1->addWidget(p);
    }
    auto* cmdCouleurPolice = Bouton(QStringLiteral("cmdCouleurPolice"), QStringLiteral("Couleur ..."), fraTexte_);
    connect(cmdCouleurPolice, &QPushButton::clicked, this, [this] {
      o_.ChoisirCouleurTexte();
      MajExemple();
    });
    nb1->addWidget(cmdCouleurPolice);
    l->addLayout(nb1, 1, 1, 1, 3);
    chkCouleurTxtplusLigne_ = Nomme(new QCheckBox(QStringLiteral("appliquer coul. aux lignes"), fraTexte_),
                                    QStringLiteral("chkCouleurTxtplusLigne"));
    connect(chkCouleurTxtplusLigne_, &QCheckBox::toggled, this,
            [this](bool c) { o_.DefinirCouleurTexteSurLignes(c); });
    l->addWidget(chkCouleurTxtplusLigne_, 2, 0, 1, 4);
    auto* grpFond = new QButtonGroup(this);
    const char* fonds[2] = {"Fond transparent", "Fond opaque"};
    auto* nb2 = new QHBoxLayout;
    for (int i = 0; i < 2; ++i) {
      optFondTexte_[i] = Nomme(new QRadioButton(QString::fromUtf8(fonds[i]), fraTexte_),
                               QStringLiteral("optFondTexte%1").arg(i));
      grpFond->addButton(optFondTexte_[i], i);
      nb2->addWidget(optFondTexte_[i]);
      connect(optFondTexte_[i], &QRadioButton::clicked, this, [this, i] {
        o_.optFondTexte(i);
        MajExemple();
        Montrer();
      });
    }
    for (int i = 0; i < 3; ++i) {
      const int32_t c = std::array<int32_t, 3>{0x404040, 0xC0C0C0, 0xFFFFFF}[i];
      auto* p = Pastille(QStringLiteral("picColorNB2_%1").arg(i), c, fraTexte_);
      connect(p, &QPushButton::clicked, this, [this, c] {
        o_.CouleurFond(c);
        MajExemple();
      });
      nb2->addWidget(p);
    }
    auto* cmdCouleurFond = Bouton(QStringLiteral("cmdCouleurFond"), QStringLiteral("..."), fraTexte_);
    connect(cmdCouleurFond, &QPushButton::clicked, this, [this] {
      o_.ChoisirCouleurFond();
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
    connect(chkNumAuto_, &QCheckBox::toggled, this, [this](bool c) {
      o_.CocherNumAuto(c);
      Montrer();
    });
    l->addWidget(chkNumAuto_, 5, 0);
    lblStart_ = Nomme(new QLabel(QStringLiteral("Départ :"), fraTexte_), QStringLiteral("lblStart"));
    l->addWidget(lblStart_, 5, 1);
    txtCptNumAuto_ = Nomme(new QLineEdit(fraTexte_), QStringLiteral("txtCptNumAuto"));
    txtCptNumAuto_->setToolTip(QStringLiteral("Départ du compteur numérotation automatique"));
    txtCptNumAuto_->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,4}")), txtCptNumAuto_));
    connect(txtCptNumAuto_, &QLineEdit::textChanged, this, [this](const QString& t) { o_.DefinirTexteCompteur(t); });
    connect(txtCptNumAuto_, &QLineEdit::textEdited, this, [this] {
      o_.CompteurModifie();
      Montrer();
    });
    l->addWidget(txtCptNumAuto_, 5, 2);
    cmdNumAuto_ = Bouton(QStringLiteral("cmdNumAuto"), QStringLiteral("OK"), fraTexte_);
    cmdNumAuto_->setToolTip(QStringLiteral("Valider nouveau départ"));
    connect(cmdNumAuto_, &QPushButton::clicked, this, [this] {
      o_.ValiderCompteur();
      Montrer();
    });
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
      connect(u, &QSpinBox::valueChanged, this, [this, t, u](int v) {
        o_.DefinirPasGrille(u == UpDownL_, v);
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
        BordCollage();
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
      connect(optEpBord_[i], &QRadioButton::toggled, this, [this] { BordCollage(); });
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
      connect(optCoulBord_[i], &QRadioButton::toggled, this, [this] { BordCollage(); });
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
    connect(b, &QPushButton::clicked, this, [this, i] {
      o_.AppliquerCroix(i, -1);
      Montrer();
    });
    lx->addWidget(b);
  }
  for (int i = 0; i < int(kCouleursCroix.size()); ++i) {
    auto* p = Pastille(QStringLiteral("picCouleur%1").arg(i), kCouleursCroix[size_t(i)], grCroix, 16);
    connect(p, &QPushButton::clicked, this, [this, i] {
      o_.AppliquerCroix(-1, i);
      Montrer();
    });
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

// ---------------------------------------------------------------- showing the tools

void frmAnnotations2::MontrerReglages() {
  const ReglagesAnnotation& r = o_.Reglages();
  Sans(combEpaisseurLigne_, [&](QComboBox* c) { c->setCurrentText(QString::number(r.LineBorder)); });
  linExemple_->setFixedHeight(std::max<int>(1, r.LineBorder));
  Sans(optPointeur_[std::clamp<int>(r.PointerChoose, 0, 3)], [](QRadioButton* o) { o->setChecked(true); });
  Sans(combTaillePointeur_, [&](QComboBox* c) { c->setCurrentText(QString::number(r.PointerSize)); });
  Sans(combAngleFleche_, [&](QComboBox* c) {
    c->clear();
    c->addItems(o_.AnglesFleche());
    c->setCurrentText(o_.TexteAngleFleche());
  });
  Sans(optUniteCote_[r.CoteUnite == u"µm" ? 0 : 1], [](QRadioButton* o) { o->setChecked(true); });
  // A colour that is none of the three leaves the group without a choice.
  const int cote = IndexCouleurCote(r.CoteColor);
  grpCouleurCotes_->setExclusive(false);
  for (auto* o : optCouleurCotes_) Sans(o, [](QRadioButton* b) { b->setChecked(false); });
  grpCouleurCotes_->setExclusive(true);
  if (cote >= 0) Sans(optCouleurCotes_[cote], [](QRadioButton* o) { o->setChecked(true); });
  Sans(optFondTexte_[o_.FondOpaque() ? 1 : 0], [](QRadioButton* o) { o->setChecked(true); });
  MajExemple();
}

void frmAnnotations2::MajExemple() {
  const ReglagesAnnotation& r = o_.Reglages();
  QFont f(r.TxtFontName);
  f.setPointSize(std::max<int>(1, r.TxtFontSize));
  f.setBold(r.TxtFontBold);
  f.setItalic(r.TxtFontItalic);
  f.setUnderline(r.TxtFontUnderline);
  txtExemple_->setFont(f);
  QPalette p = txtExemple_->palette();
  p.setColor(QPalette::Text, VersQColor(r.TxtFontColor & 0xFFFFFF));
  // The stamp's own background: TxtBackColor whenever it is a colour.
  p.setColor(QPalette::Base, r.TxtBackColor != -1 ? VersQColor(r.TxtBackColor & 0xFFFFFF)
                                                  : QApplication::palette().color(QPalette::Button));
  txtExemple_->setPalette(p);
  Colorer(linExemple_, VersQColor(r.LineColor & 0xFFFFFF));
}

void frmAnnotations2::Montrer() {
  // The mode, the numbering and the editor's text.
  Sans(optTexteEtLigne_[o_.Mode()], [](QRadioButton* o) { o->setChecked(true); });
  Sans(chkNumAuto_, [&](QCheckBox* c) {
    c->setChecked(o_.NumAuto());
    c->setEnabled(o_.NumAutoPossible());
  });
  lblStart_->setEnabled(o_.NumAuto());
  txtCptNumAuto_->setEnabled(o_.NumAuto());
  cmdNumAuto_->setEnabled(o_.NumAuto());
  if (txtCptNumAuto_->text() != o_.TexteCompteur())
    Sans(txtCptNumAuto_, [&](QLineEdit* t) { t->setText(o_.TexteCompteur()); });
  if (etatCompteurVu_ != o_.EtatDuCompteur()) {
    etatCompteurVu_ = o_.EtatDuCompteur();
    if (*etatCompteurVu_ == EtatCompteur::Valide) Colorer(txtCptNumAuto_, VersQColor(kVertClair));
    else if (*etatCompteurVu_ == EtatCompteur::Modifie) Colorer(txtCptNumAuto_, Qt::white);
  }
  if (txtEdition_->text() != o_.Texte()) Sans(txtEdition_, [&](QLineEdit* t) { t->setText(o_.Texte()); });

  // The captions.
  lblLongueurLigne_->setText(o_.TexteLongueur());
  lblAngle_->setText(o_.TexteAngle());
  if (styleAngleVu_ != o_.StyleDeLAngle()) {
    styleAngleVu_ = o_.StyleDeLAngle();
    const bool net = *styleAngleVu_ == StyleAngle::Net;
    QFont f = lblAngle_->font();
    f.setBold(net);
    lblAngle_->setFont(f);
    Colorer(lblAngle_, net ? VersQColor(kVertClair) : QApplication::palette().color(QPalette::Button));
  }
  lblCompteur_->setText(o_.TexteUndo());
  lblX_->setText(o_.TexteX());
  lblY_->setText(o_.TexteY());
  lblGaucheDroite_->setText(o_.Legende());
  lblInfoGrille_->setText(o_.InfoGrille());
  lblEquivMicrons_->setText(o_.EquivMicrons());

  // The floating boxes.
  const Flottants& f = o_.Boites();
  const auto placer = [](QWidget* w, bool visible, QPoint pos) {
    if (!visible) {
      w->hide();
      return;
    }
    w->move(pos);
    w->show();
    w->raise();
  };
  placer(picEditeur_, f.editeur, f.posEditeur);
  placer(picValidation_, f.validation, f.posValidation);
  if (f.reperes) {
    lngRepereV_->setGeometry(f.repereV);
    lngRepereH_->setGeometry(f.repereH);
  }
  lngRepereV_->setVisible(f.reperes);
  lngRepereH_->setVisible(f.reperes);
  if (o_.PrendreFocus()) {
    txtEdition_->setFocus();
    txtEdition_->selectAll();
  }

  // The cross-hair.
  const Croix& x = o_.LaCroix();
  if (x.couleur != couleurCroixVue_) {
    couleurCroixVue_ = x.couleur;
    Colorer(linCrossH_, VersQColor(x.couleur));
    Colorer(linCrossV_, VersQColor(x.couleur));
  }
  if (x.Visible()) {
    linCrossH_->setGeometry(x.Horizontale());
    linCrossV_->setGeometry(x.Verticale());
    linCrossH_->show();
    linCrossV_->show();
    linCrossH_->raise();
    linCrossV_->raise();
  } else {
    linCrossH_->hide();
    linCrossV_->hide();
  }

  // The collage.
  placer(picCollage_, o_.CollageEnCours() && o_.ImageCollageVisible(), o_.PositionCollage());
  placer(shpCollage_, o_.CollageEnCours() && o_.ContourCollageVisible(), o_.PositionCollage());
  picValidationCollage_->setVisible(o_.CollageEnCours());
  if (!o_.CollageEnCours() && !picCollage_->pixmap().isNull()) picCollage_->clear();

  Rafraichir();
}

// Repaints the whole picture when it changed, else what the layer covered and covers.
void frmAnnotations2::Rafraichir() {
  const QRect avant = zoneCalque_;
  zoneCalque_ = o_.Calque().Boite();
  if (generationVue_ != o_.Generation()) {
    generationVue_ = o_.Generation();
    picImage_->update();
    return;
  }
  const QRect zone = avant | zoneCalque_;
  if (!zone.isEmpty()) picImage_->update(zone);
}

void frmAnnotations2::Peindre(QPainter& p, const QRect& zone) const {
  p.drawImage(zone.topLeft(), o_.Travail(), zone);
  if (!zone.intersects(zoneCalque_)) return;
  p.setClipRect(zone);
  o_.Calque().Dessiner(p);
}

void frmAnnotations2::Replier(QFrame* cadre, bool replie) {
  cadre->setVisible(!replie);
  if (auto* b = findChild<QPushButton*>(QStringLiteral("cmd") + cadre->objectName())) {
    const QSignalBlocker bloque(b);
    b->setChecked(!replie);
  }
}

// ---------------------------------------------------------------- mouse

void frmAnnotations2::TaillesBoites(bool ajuster) {
  if (ajuster) {
    picEditeur_->adjustSize();
    picValidation_->adjustSize();
  }
  o_.DefinirTaillesBoites(
      {picEditeur_->width(), picEditeur_->height(), picValidation_->width(), picValidation_->height()});
}

void frmAnnotations2::SourisAppuyee(QPointF pos, Qt::MouseButton bouton) {
  TaillesBoites(false);
  o_.Appuyer(Pixel(pos), bouton == Qt::LeftButton);
  Montrer();
}

void frmAnnotations2::SourisDeplacee(QPointF pos, Qt::MouseButtons boutons) {
  TaillesBoites(false);
  o_.Deplacer(Pixel(pos), boutons & Qt::LeftButton);
  Montrer();
}

void frmAnnotations2::SourisRelachee(QPointF pos, Qt::MouseButton bouton) {
  TaillesBoites(true);
  o_.Relacher(Pixel(pos), bouton == Qt::LeftButton);
  Montrer();
}

// ---------------------------------------------------------------- the named operations

void frmAnnotations2::CollerTexte() {
  o_.CollerTexte();
  Montrer();
}

void frmAnnotations2::ValiderEdition() {
  o_.ValiderEdition();
  Montrer();
}

void frmAnnotations2::ViderUndo() {
  o_.ViderUndo();
  Montrer();
}

void frmAnnotations2::RetablirDefaut() {
  o_.RetablirDefaut();
  MontrerReglages();
  Montrer();
}

void frmAnnotations2::cmdUndo() {
  o_.cmdUndo();
  Montrer();
}

void frmAnnotations2::cmdToutEffacer() {
  if (Dialogues().Question(QStringLiteral("Effacer les textes"),
                           QStringLiteral("Voulez-vous effacer TOUS les textes (et collages) ?"), Boutons::OuiNon,
                           Reponse::Non, Icone::Question) != Reponse::Oui)
    return;
  o_.ToutEffacer();
  Montrer();
}

void frmAnnotations2::picStyle(int index) {
  o_.picStyle(index);
  MontrerReglages();
  Montrer();
}

void frmAnnotations2::cmdGrille(int index) {
  o_.cmdGrille(index);
  Montrer();
}

void frmAnnotations2::ChangerPasGrille(QLineEdit* texte, QSpinBox* pas) {
  const std::optional<PasSaisi> v = LirePasGrille(texte->text());
  if (!v) return;
  if (v->corrige) {
    texte->setText(QString::number(v->valeur));
    return;  // the change of text comes back here with the bounded value
  }
  pas->setValue(v->valeur);
}

void frmAnnotations2::ChoisirCouleurGrille(int index) {
  o_.ChoisirCouleurGrille(index);
  for (int i = 0; i < int(kCouleursGrille.size()); ++i) {
    const bool choisie = i == o_.CouleurGrille();
    picColorGrille_[i]->setChecked(choisie);
    picColorGrille_[i]->setStyleSheet(QStringLiteral("background-color: %1; border: %2;")
                                          .arg(VersQColor(kCouleursGrille[size_t(i)]).name(),
                                               choisie ? QStringLiteral("3px solid red")
                                                       : QStringLiteral("1px solid #808080")));
  }
}

// ---------------------------------------------------------------- collage

void frmAnnotations2::BordCollage() {
  o_.DefinirBordCollage(optBordVignette_[0]->isChecked(), Coche(optEpBord_), Coche(optCoulBord_));
}

void frmAnnotations2::cmdOuvrirImage(int index) {
  if (!o_.NouveauCollagePossible()) {
    Replier(fraCollage_, true);
    Montrer();
    return;
  }
  bool charge = false;
  if (index == 0) {
    const QString chemin = Dialogues().FichierOuvrir(
        QStringLiteral("  Choisir une image ..."), DossierCollage(s_),
        QStringLiteral("Tous formats supportés|*.jpg;*.jpeg;*.bmp;*.png;*.psd;*.pcd;*.gif|JPG (*.jpg)|*.jpg;*.jpeg|"
                       "BMP (*.bmp)|*.bmp|PNG (*.png)|*.png|PSD (*.psd)|*.psd|PCD (*.pcd)|*.pcd|GIF (*.gif)|*.gif"));
    if (!chemin.isEmpty()) {
      QApplication::setOverrideCursor(Qt::WaitCursor);
      const bool lu = o_.LireCollage(chemin);
      QApplication::restoreOverrideCursor();
      charge = lu && o_.PreparerCollage(true);
    }
  } else {
    charge = o_.CollerDuPressePapier() && o_.PreparerCollage(false);
  }
  if (charge) MontrerCollage();
  Montrer();
}

void frmAnnotations2::ChargerImageCollage(const QString& chemin, bool pressePapier) {
  if (o_.ChargerImageCollage(chemin, pressePapier)) MontrerCollage();
  Montrer();
}

// The collage waiting to be placed: its picture, its outline's size, the frames folded.
void frmAnnotations2::MontrerCollage() {
  picCollage_->setPixmap(QPixmap::fromImage(o_.ImageCollage()));
  picCollage_->setFixedSize(o_.ImageCollage().size());
  shpCollage_->setFixedSize(o_.ImageCollage().size());
  Replier(fraTexte_, true);
  Replier(fraLigne_, true);
  Replier(fraCollage_, true);
}

void frmAnnotations2::CollerPicCollage() {
  o_.CollerPicCollage();
  Montrer();
}

void frmAnnotations2::AnnulerCollage() {
  o_.AnnulerCollage();
  Montrer();
}

bool frmAnnotations2::eventFilter(QObject* objet, QEvent* e) {
  if (objet == picCadre_ && e->type() == QEvent::Resize) PlacerBarres();
  if (objet == picCollage_ && e->type() == QEvent::MouseButtonPress && o_.Soulever()) {
    Replier(fraTexte_, true);
    Replier(fraLigne_, true);
    Replier(fraCollage_, true);
    Montrer();
    return true;
  }
  return QWidget::eventFilter(objet, e);
}

// ---------------------------------------------------------------- scrolling

void frmAnnotations2::PlacerBarres() {
  const bool h = o_.Largeur() > picCadre_->width(), v = o_.Hauteur() > picCadre_->height();
  HScroll1_->setVisible(h);
  VScroll1_->setVisible(v);
  if (!h) HScroll1_->setValue(0);
  if (!v) VScroll1_->setValue(0);
  Defiler();
}

void frmAnnotations2::Defiler() {
  const int dx = std::max(0, o_.Largeur() - picCadre_->width());
  const int dy = std::max(0, o_.Hauteur() - picCadre_->height());
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
  o_.Sauver([this] {
    if (principal_) principal_->AppliquerEtape();
  });
  if (principal_) {
    principal_->AfficherImage(s_.ImageCourante);
    principal_->AfficherInfosImage();
  }
  close();
}

void frmAnnotations2::Dechargement() {
  if (dechargee_) return;
  dechargee_ = true;
  o_.Decharger();
  if (principal_) principal_->show();
}

void frmAnnotations2::closeEvent(QCloseEvent* e) {
  Dechargement();
  QWidget::closeEvent(e);
}

}  // namespace tg
