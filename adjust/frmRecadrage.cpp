#include "adjust/frmRecadrage.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSlider>
#include <QVBoxLayout>

#include "core/Formats.h"
#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Dialogues.h"
#include "platform/Ecran.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"
#include "version.h"

namespace tg {

namespace {

// Picture1: the reduced copy with the frame and the cartouche's outline.
class ZoneRecadrage : public QWidget {
 public:
  ZoneRecadrage(frmRecadrage* f, QWidget* parent) : QWidget(parent), f_(f) {
    setMouseTracking(true);
    // The red cross of the picture area.
    QPixmap croix(17, 17);
    croix.fill(Qt::transparent);
    QPainter p(&croix);
    p.setPen(QPen(Qt::red, 1));
    p.drawLine(8, 0, 8, 16);
    p.drawLine(0, 8, 16, 8);
    p.end();
    setCursor(QCursor(croix, 8, 8));
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter p(this);
    f_->Peindre(p);
  }
  void mousePressEvent(QMouseEvent* e) override {
    if (e->button() == Qt::LeftButton) f_->SourisAppuyee(e->position());
  }
  void mouseMoveEvent(QMouseEvent* e) override { f_->SourisDeplacee(e->position()); }
  void mouseReleaseEvent(QMouseEvent*) override { f_->SourisRelachee(); }

 private:
  frmRecadrage* f_;
};

template <typename T>
T* Nomme(T* w, const QString& nom) {
  w->setObjectName(nom);
  return w;
}

constexpr int32_t kCouleurs[6] = {0x0000FF, 0x000000, 0xFF0000, 0x00FF00, 0xFFFFFF, 0xC0C0C0};

}  // namespace

frmRecadrage::frmRecadrage(SessionRecord& session, cAdvancedImagery& ai, frmFichierPhoto* principal, QWidget* parent)
    : QWidget(parent, Qt::Window), s_(session), ai_(ai), principal_(principal) {
  setObjectName(QStringLiteral("frmRecadrage"));
  auto* racine = new QHBoxLayout(this);
  Picture1_ = Nomme(new ZoneRecadrage(this, this), QStringLiteral("Picture1"));
  // The picture scrolls when the screen is narrower than it and the panel.
  auto* defile = Nomme(new PanneauDefilant(Picture1_, this), QStringLiteral("picDefilement"));
  defile->setWidgetResizable(false);
  defile->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  racine->addWidget(defile, 1);

  auto* panneau = new QVBoxLayout;
  racine->addLayout(panneau);
  auto* astuce = new QLabel(QStringLiteral(
      "Cadre : Cliquer sur l'image et déplacer. Adapter la taille avec le curseur   (ne pas déborder !)"));
  astuce->setWordWrap(true);
  astuce->setMaximumWidth(300);
  panneau->addWidget(astuce);

  // The ratio panel, opened by its button.
  auto* cmdRatio = Nomme(new QPushButton(QStringLiteral("Ratio / taille ..."), this), QStringLiteral("cmdRatio"));
  panneau->addWidget(cmdRatio);
  fraRatioRecadrage_ = Nomme(new QFrame(this), QStringLiteral("fraRatioRecadrage"));
  fraRatioRecadrage_->setFrameShape(QFrame::StyledPanel);
  connect(cmdRatio, &QPushButton::clicked, this, [this] { fraRatioRecadrage_->show(); });
  auto* lr = new QGridLayout(fraRatioRecadrage_);
  const char* ratios[5] = {"1.33", "1.5", "1.206", "1.0", " Personnalisé"};
  const char* bulles[5] = {"APN ou écr. standard", "Reflex", "Image + cartouche", "Carré", ""};
  for (int i = 0; i < 5; ++i) {
    optRatioRecadrage_[i] = Nomme(new QRadioButton(QString::fromUtf8(ratios[i]), fraRatioRecadrage_),
                                  QStringLiteral("optRatioRecadrage%1").arg(i));
    optRatioRecadrage_[i]->setToolTip(QString::fromUtf8(bulles[i]));
    lr->addWidget(optRatioRecadrage_[i], i, 0);
    connect(optRatioRecadrage_[i], &QRadioButton::clicked, this, [this, i] {
      chkTaille_->setChecked(false);
      if (i == 4) txtValRatio_->setFocus();
    });
  }
  txtValRatio_ = Nomme(new QLineEdit(fraRatioRecadrage_), QStringLiteral("txtValRatio"));
  txtValRatio_->setToolTip(QStringLiteral("Saisir un chiffre > 0 !"));
  connect(txtValRatio_, &QLineEdit::textEdited, this, [this] { optRatioRecadrage_[4]->setChecked(true); });
  lr->addWidget(txtValRatio_, 4, 1);
  chkTaille_ = Nomme(new QCheckBox(QStringLiteral("Définir une taille"), fraRatioRecadrage_), QStringLiteral("chkTaille"));
  connect(chkTaille_, &QCheckBox::toggled, this, [this](bool c) { chkTaille(c); });
  lr->addWidget(chkTaille_, 5, 0, 1, 2);
  auto* taille = new QHBoxLayout;
  lblLargeur_ = Nomme(new QLabel(QStringLiteral("L :")), QStringLiteral("lblLargeur"));
  txtLargeurPix_ = Nomme(new QLineEdit, QStringLiteral("txtLargeurPix"));
  lblSeparateurX_ = Nomme(new QLabel(QStringLiteral("x")), QStringLiteral("lblSeparateurX"));
  lblHauteur_ = Nomme(new QLabel(QStringLiteral("H :")), QStringLiteral("lblHauteur"));
  txtHauteurPix_ = Nomme(new QLineEdit, QStringLiteral("txtHauteurPix"));
  for (QWidget* w : {static_cast<QWidget*>(lblLargeur_), static_cast<QWidget*>(txtLargeurPix_),
                     static_cast<QWidget*>(lblSeparateurX_), static_cast<QWidget*>(lblHauteur_),
                     static_cast<QWidget*>(txtHauteurPix_)}) {
    taille->addWidget(w);
    w->hide();
    w->setEnabled(false);
  }
  lr->addLayout(taille, 6, 0, 1, 2);
  auto* valider = Nomme(new QPushButton(QStringLiteral("Valider"), fraRatioRecadrage_), QStringLiteral("cmdValiderRatio"));
  auto* annuler = Nomme(new QPushButton(QStringLiteral("Annuler"), fraRatioRecadrage_), QStringLiteral("cmdAnnulerRatio"));
  connect(valider, &QPushButton::clicked, this, [this] { cmdValiderRatio(); });
  connect(annuler, &QPushButton::clicked, this, [this] { cmdAnnulerRatio(); });
  lr->addWidget(valider, 7, 0);
  lr->addWidget(annuler, 7, 1);
  panneau->addWidget(fraRatioRecadrage_);
  lblRatioFixe_ = Nomme(new QLabel, QStringLiteral("lblRatioFixe"));
  panneau->addWidget(lblRatioFixe_);

  fraSlider_ = Nomme(new QFrame(this), QStringLiteral("fraSlider"));
  auto* ls = new QVBoxLayout(fraSlider_);
  ls->setContentsMargins(0, 0, 0, 0);
  Slider1_ = Nomme(new QSlider(Qt::Horizontal, fraSlider_), QStringLiteral("Slider1"));
  Slider1_->setToolTip(QStringLiteral("Ajuster la taille du cadre"));
  Slider1_->setRange(0, 10000);
  Slider1_->setPageStep(100);
  connect(Slider1_, &QSlider::valueChanged, this, [this](int v) { Slider1(v); });
  ls->addWidget(Slider1_);
  panneau->addWidget(fraSlider_);

  auto* options = new QHBoxLayout;
  chkBloquerDeplacement_ = Nomme(new QCheckBox(QStringLiteral("Bloquer G-H")), QStringLiteral("chkBloquerDeplacement"));
  chkDebriderCadrage_ = Nomme(new QCheckBox(QStringLiteral("Débrider")), QStringLiteral("chkDebriderCadrage"));
  connect(chkBloquerDeplacement_, &QCheckBox::toggled, this, [this](bool c) { chkBloquerDeplacement(c); });
  connect(chkDebriderCadrage_, &QCheckBox::toggled, this, [this](bool c) { chkDebriderCadrage(c); });
  options->addWidget(chkBloquerDeplacement_);
  options->addWidget(chkDebriderCadrage_);
  panneau->addLayout(options);

  auto* valeurs = new QGridLayout;
  lblPosX_ = Nomme(new QLabel(QStringLiteral("G:")), QStringLiteral("lblPosX"));
  lblPosY_ = Nomme(new QLabel(QStringLiteral("H:")), QStringLiteral("lblPosY"));
  lblLcadrage_ = Nomme(new QLabel(QStringLiteral("L:")), QStringLiteral("lblLcadrage"));
  lblHcadrage_ = Nomme(new QLabel(QStringLiteral("H:")), QStringLiteral("lblHcadrage"));
  lblRatio_ = Nomme(new QLabel(QStringLiteral("R=1:")), QStringLiteral("lblRatio"));
  valeurs->addWidget(lblPosX_, 0, 0);
  valeurs->addWidget(lblPosY_, 0, 1);
  valeurs->addWidget(lblLcadrage_, 1, 0);
  valeurs->addWidget(lblHcadrage_, 1, 1);
  valeurs->addWidget(lblRatio_, 2, 0, 1, 2);
  panneau->addLayout(valeurs);

  auto* couleurs = new QHBoxLayout;
  for (int i = 0; i < 6; ++i) {
    auto* b = Nomme(new QPushButton, QStringLiteral("picCouleur%1").arg(i));
    b->setFixedSize(18, 18);
    b->setStyleSheet(QStringLiteral("background-color: %1; border: 1px solid #808080;")
                         .arg(VersQColor(kCouleurs[i]).name()));
    connect(b, &QPushButton::clicked, this, [this, i] {
      couleur_ = VersQColor(kCouleurs[i]);
      Picture1_->update();
    });
    couleurs->addWidget(b);
  }
  panneau->addLayout(couleurs);

  auto* rotation = new QHBoxLayout;
  auto* txtRotation = Nomme(new QLineEdit, QStringLiteral("txtRotation"));
  txtRotation->setMaximumWidth(60);
  auto* cmdRotation = Nomme(new QPushButton(QStringLiteral("rotation")), QStringLiteral("cmdRotation"));
  cmdRotation->setToolTip(QStringLiteral("1 à 180 anti-horaire, 181 à 359 horaire"));
  // Free rotation was never finished: the button does nothing.
  auto* fausse = Nomme(new QPushButton(QStringLiteral("...")), QStringLiteral("cmdFausseOptionRecadrage"));
  connect(fausse, &QPushButton::clicked, this, [] {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Non disponnible en mode Doraisidren ..."),
                        Icone::Information);
  });
  rotation->addWidget(txtRotation);
  rotation->addWidget(cmdRotation);
  rotation->addWidget(fausse);
  panneau->addLayout(rotation);

  auto* bas = new QHBoxLayout;
  auto* ok = Nomme(new QPushButton(QStringLiteral("OK")), QStringLiteral("cmdOK"));
  auto* non = Nomme(new QPushButton(QStringLiteral("Annuler")), QStringLiteral("cmdAnnuler"));
  connect(ok, &QPushButton::clicked, this, [this] { cmdOK(); });
  connect(non, &QPushButton::clicked, this, [this] { cmdAnnuler(); });
  bas->addWidget(ok);
  bas->addWidget(non);
  panneau->addLayout(bas);
  panneau->addStretch(1);

  // Opening, in its order.
  fraRatioRecadrage_->hide();
  if (s_.ImageDejaFormatee) lblRatio_->clear();
  chkDebriderCadrage_->setChecked(false);
  chkDebriderCadrage_->setEnabled(true);
  cartoucheVisible_ = s_.CartoucheHB == u"0";
  // ChargerReduction: the copy at the screen's comfortable size.
  QApplication::setOverrideCursor(Qt::WaitCursor);
  const QString memoire = s_.ChoixFormatMesure;
  s_.ChoixFormatMesure = s_.EcranConfortable ? QStringLiteral("1") : QStringLiteral("0");
  const bool prete = PreparerImageMesure(s_, ai_) && ai_.Convert_ImageToPicture(s_.ImageMesure, copie_);
  s_.ChoixFormatMesure = memoire;
  QApplication::restoreOverrideCursor();
  if (!prete)
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Error - ") + ai_.Error_GetLast(),
                        Icone::Critique);
  Picture1_->setFixedSize(std::max(1, int(s_.LargeurMesure)), std::max(1, int(s_.HauteurMesure)));
  InitCadre();
  if (s_.ImageDejaFormatee) chkBloquerDeplacement_->setChecked(true);
  txtLargeurPix_->setText(QString::number(cadre_.CadreL));
  txtHauteurPix_->setText(QString::number(cadre_.CadreH));
}

frmRecadrage::~frmRecadrage() = default;

frmRecadrage* frmRecadrage::Afficher(frmFichierPhoto& principal) {
  auto* f = new frmRecadrage(principal.Session(), principal.Imagerie(), &principal, &principal);
  f->setAttribute(Qt::WA_DeleteOnClose);
  principal.FenetreOuverte(f);
  // Centred on the screen, within it.
  const QRect zone = ZoneEcran(&principal);
  const QSize voulue = f->sizeHint();
  f->move(zone.center() - QPoint(voulue.width() / 2, voulue.height() / 2));
  AjusterAEcran(f, voulue);
  f->show();
  principal.hide();
  return f;
}

void frmRecadrage::Titre() {
  setWindowTitle(QLatin1String(TitreProgramme) + QStringLiteral(" : Recadrer, ratio = ") +
                 TexteReel(Arrondir(ratioCadre_, 3), s_.SeparateurDecimal) + QStringLiteral(" x 1"));
}

void frmRecadrage::InitCadre() {
  ratioCadre_ = s_.RatioFormat;
  cadre_.posG = cadre_.posH = 0;
  Titre();
  MajCadre();
  positionSlider_ = PositionSlider(s_.ApnLargCourant, s_.Largeur);
  {
    const QSignalBlocker b(Slider1_);
    Slider1_->setValue(std::clamp(positionSlider_, 0, 10000));
  }
  const float coef = CoefAffichage(s_.Largeur, s_.LargeurMesure);
  cadre_.largeur = coef > 0 ? float(s_.ApnLargCourant) / coef : 0;
  cadre_.hauteur = ratioCadre_ > 0 ? cadre_.largeur / ratioCadre_ : 0;
  MajCadre();
  MajPosition();
}

void frmRecadrage::MajCadre() {
  tg::MajCadre(cadre_, s_.Largeur, s_.LargeurMesure);
  lblLcadrage_->setText(QStringLiteral("L: %1").arg(cadre_.CadreL));
  lblHcadrage_->setText(QStringLiteral("H: %1").arg(cadre_.CadreH));
  lblRatio_->setText(TexteRatio(cadre_.CadreL, s_.ApnLargCourant, s_.ImageDejaFormatee, s_.SeparateurDecimal));
  Picture1_->update();
}

void frmRecadrage::MajPosition() {
  const float coef = CoefAffichage(s_.Largeur, s_.LargeurMesure);
  lblPosY_->setText(QStringLiteral("H: %1").arg(VersEntier(double(cadre_.posH * coef))));
  lblPosX_->setText(QStringLiteral("G: %1").arg(VersEntier(double(cadre_.posG * coef))));
}

void frmRecadrage::Peindre(QPainter& p) const {
  if (!copie_.isNull()) p.drawImage(0, 0, copie_);
  p.setPen(QPen(couleur_, 1));
  p.setBrush(Qt::NoBrush);
  const QRectF cadre(cadre_.posG, cadre_.posH, cadre_.largeur, cadre_.hauteur);
  p.drawRect(cadre);
  if (cartoucheVisible_) {
    // The outline of the cartouche that will lie on the picture, at the frame's bottom.
    const float h = cadre_.hauteur / kRatioCartouche;
    QColor fond = couleur_;
    fond.setAlpha(90);
    p.setBrush(fond);
    p.drawRect(QRectF(cadre_.posG, cadre_.posH + cadre_.hauteur - h, cadre_.largeur, h));
  }
}

void frmRecadrage::Placer(float x, float y) {
  cadre_.posG = x - cadre_.largeur / 2;
  cadre_.posH = y - cadre_.hauteur / 2;
  MajCadre();
}

void frmRecadrage::SourisAppuyee(QPointF p) {
  if (chkBloquerDeplacement_->isChecked()) {
    deplacement_ = false;
    return;
  }
  Placer(float(p.x()), float(p.y()));
  deplacement_ = true;
  MajPosition();
}

void frmRecadrage::SourisDeplacee(QPointF p) {
  if (!deplacement_ || p.x() < 0 || p.y() < 0) return;
  Placer(float(p.x()), float(p.y()));
  MajPosition();
}

void frmRecadrage::SourisRelachee() { deplacement_ = false; }

void frmRecadrage::chkBloquerDeplacement(bool coche) {
  if (!coche) return;
  cadre_.posG = cadre_.posH = 0;
  MajCadre();
  MajPosition();
}

void frmRecadrage::BloquerEtDebloquer() {
  chkBloquerDeplacement_->setChecked(true);
  chkBloquerDeplacement_->setChecked(false);
}

void frmRecadrage::chkDebriderCadrage(bool coche) {
  if (coche) {
    if (s_.ApnLarg == 750)
      Dialogues().Message(QStringLiteral("   Curseur débridé"),
                          QStringLiteral("Attention, le format 750 x 562 ne sera plus contrôlé !"), Icone::Information);
    return;
  }
  InitCadre();
  BloquerEtDebloquer();
}

void frmRecadrage::Slider1(int valeur) {
  // The frame cannot become narrower than the output format unless freed.
  if (!chkDebriderCadrage_->isChecked() && valeur < positionSlider_) {
    const QSignalBlocker b(Slider1_);
    Slider1_->setValue(positionSlider_);
    valeur = positionSlider_;
  }
  const float l = float(Picture1_->width());
  cadre_.largeur = l * float(valeur) / 10000.0f;
  cadre_.hauteur = ratioCadre_ > 0 ? l / ratioCadre_ * float(valeur) / 10000.0f : 0;
  MajCadre();
}

void frmRecadrage::chkTaille(bool coche) {
  for (QWidget* w : {static_cast<QWidget*>(lblLargeur_), static_cast<QWidget*>(txtLargeurPix_),
                     static_cast<QWidget*>(lblSeparateurX_), static_cast<QWidget*>(lblHauteur_),
                     static_cast<QWidget*>(txtHauteurPix_)}) {
    w->setVisible(coche);
    w->setEnabled(coche);
  }
  if (coche) {
    chkDebriderCadrage_->setChecked(true);
    txtLargeurPix_->setFocus();
    for (auto* o : optRatioRecadrage_) {
      o->setAutoExclusive(false);
      o->setChecked(false);
      o->setAutoExclusive(true);
    }
  } else {
    optRatioRecadrage_[0]->setChecked(true);
    chkDebriderCadrage_->setChecked(false);
    fraSlider_->show();
  }
}

void frmRecadrage::cmdValiderRatio() {
  if (!chkTaille_->isChecked()) {
    InitCadre();
    fraSlider_->show();
    int option = 0;
    for (int i = 0; i < 5; ++i)
      if (optRatioRecadrage_[i]->isChecked()) option = i;
    ratioCadre_ = RatioOption(option, s_.RatioFormat, txtValRatio_->text(), ratioCadre_);
    cartoucheVisible_ = ratioCadre_ == float(Arrondir(s_.RatioFormat, 3)) && s_.CartoucheHB == u"0";
    const float coef = CoefAffichage(s_.Largeur, s_.LargeurMesure);
    cadre_.largeur = coef > 0 ? float(s_.ApnLargCourant) / coef : 0;
    cadre_.hauteur = ratioCadre_ > 0 ? cadre_.largeur / ratioCadre_ : 0;
    MajCadre();
    {
      const QSignalBlocker b(Slider1_);
      Slider1_->setValue(std::clamp(positionSlider_, 0, 10000));
    }
    BloquerEtDebloquer();
  } else {
    double l = 0, h = 0;
    if (!LireNombre(txtLargeurPix_->text(), l) || !LireNombre(txtHauteurPix_->text(), h) || l <= 0 || h <= 0) return;
    const QString refus = RefusTailleFixe(int32_t(l), int32_t(h), s_.Largeur, s_.Hauteur);
    if (!refus.isEmpty()) {
      Dialogues().Message(QStringLiteral("Erreur option taille fixe"), refus, Icone::Exclamation);
      const Cadre garde = cadre_;
      InitCadre();
      txtLargeurPix_->setText(QString::number(cadre_.CadreL));
      txtHauteurPix_->setText(QString::number(cadre_.CadreH));
      cadre_ = garde;
      MajCadre();
      return;
    }
    ratioCadre_ = float(l / h);
    const float coef = CoefAffichage(s_.Largeur, s_.LargeurMesure);
    cadre_.largeur = coef > 0 ? float(l) / coef : 0;
    cadre_.hauteur = coef > 0 ? float(h) / coef : 0;
    MajCadre();
    BloquerEtDebloquer();
    fraSlider_->hide();
    lblRatioFixe_->setText(QStringLiteral("1: ") + TexteReel(Arrondir(ratioCadre_, 3), s_.SeparateurDecimal));
  }
  fraRatioRecadrage_->hide();
  Titre();
}

void frmRecadrage::cmdAnnulerRatio() {
  optRatioRecadrage_[0]->setChecked(true);
  fraRatioRecadrage_->hide();
}

void frmRecadrage::cmdOK() {
  QElapsedTimer chrono;
  chrono.start();
  MajCadre();
  const QString refus =
      RefusRecadrage(cadre_, s_.Largeur, s_.Hauteur, chkDebriderCadrage_->isChecked(), s_.ApnLarg, s_.ApnHaut);
  if (!refus.isEmpty()) {
    Dialogues().Message(QLatin1String(TitreProgramme), refus, Icone::Exclamation);
    return;
  }
  if (!AppliquerRecadrage(s_, ai_, cadre_.CadreG, cadre_.CadreHaut, cadre_.CadreL, cadre_.CadreH)) {
    Dialogues().Message(QLatin1String(TitreProgramme), ai_.Error_GetLast() + QStringLiteral("\nErreur position du cadre"),
                        Icone::Critique);
    return;
  }
  if (principal_) {
    principal_->AfficherImage(s_.ImageCourante);
    principal_->AfficherInfosImage();
    if (auto* a = principal_->findChild<QAction*>(QStringLiteral("Rotation"))) a->setEnabled(false);
    principal_->AjusterAffichage();
    if (auto* l = principal_->findChild<QLabel*>(QStringLiteral("lblTickCount")))
      l->setText(QStringLiteral("cadr. = %1 ms").arg(chrono.elapsed()));
  }
  close();
}

void frmRecadrage::cmdAnnuler() {
  ai_.IO_DestroyBitmap(s_.ImageMesure);
  close();
}

void frmRecadrage::Finir() {
  if (fini_) return;
  fini_ = true;
  copie_ = QImage();
  if (principal_) principal_->show();
}

void frmRecadrage::closeEvent(QCloseEvent* e) {
  Finir();
  QWidget::closeEvent(e);
}

}  // namespace tg
