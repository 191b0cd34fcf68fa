#include "measure/frmMesure.h"

#include <QApplication>
#include <algorithm>
#include <cmath>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

#include "core/Formats.h"
#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/frmGenMesures.h"
#include "measure/frmListeMesure.h"
#include "platform/Dialogues.h"
#include "platform/Ecran.h"
#include "platform/Nombres.h"
#include "imaging/Bitmap.h"
#include "measure/Reglette.h"

namespace tg {

namespace {

// The reduced picture: paints through the window and hands the mouse over.
class ZoneImage : public QWidget {
 public:
  ZoneImage(frmMesure* f, QWidget* parent) : QWidget(parent), f_(f) { setMouseTracking(true); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter p(this);
    f_->Dessiner(p);
  }
  void mousePressEvent(QMouseEvent* e) override {
    if (e->button() == Qt::LeftButton) f_->SourisAppuyee(e->position());
  }
  void mouseMoveEvent(QMouseEvent* e) override {
    f_->SourisDeplacee(e->position(), e->buttons() & Qt::LeftButton);
  }
  void mouseReleaseEvent(QMouseEvent* e) override {
    if (e->button() == Qt::LeftButton) f_->SourisRelachee(e->position());
  }

 private:
  frmMesure* f_;
};

// picLoupe: 100 x 100 image pixels shown unscaled.
class ZoneLoupe : public QWidget {
 public:
  ZoneLoupe(frmMesure* f, QWidget* parent) : QWidget(parent), f_(f) {
    setFixedSize(Loupe::Cote, Loupe::Cote);
  }
  QImage image;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter p(this);
    p.drawImage(0, 0, image);
    f_->DessinerLoupe(p);
  }
  void mousePressEvent(QMouseEvent* e) override {
    if (e->button() == Qt::LeftButton) f_->LoupeSouris(e->position(), false);
  }
  void mouseMoveEvent(QMouseEvent* e) override {
    if (e->buttons() & Qt::LeftButton) f_->LoupeSouris(e->position(), false);
  }
  void mouseReleaseEvent(QMouseEvent* e) override {
    if (e->button() == Qt::LeftButton) f_->LoupeSouris(e->position(), true);
  }

 private:
  frmMesure* f_;
};

// TaillePointeur, EpaisseurPointeur of the five shapes of picPointeur.
constexpr int kPointeurs[5][2] = {{0, 1}, {60, 1}, {1500, 1}, {60, 2}, {1500, 2}};

QLineEdit* Boite(const char* nom, QWidget* parent, bool lecture = true) {
  auto* t = new QLineEdit(parent);
  t->setObjectName(QLatin1String(nom));
  t->setReadOnly(lecture);
  return t;
}

QPushButton* Bouton(const char* nom, const QString& texte, QWidget* parent) {
  auto* b = new QPushButton(texte, parent);
  b->setObjectName(QLatin1String(nom));
  return b;
}

void Fond(QWidget* w, const QColor& c) {
  QPalette p = w->palette();
  p.setColor(QPalette::Base, c);
  p.setColor(QPalette::Button, c);
  w->setPalette(p);
  w->setAutoFillBackground(true);
}

}  // namespace

frmMesure::frmMesure(SessionRecord& session, cAdvancedImagery& ai, QWidget* parent)
    : QWidget(parent, Qt::Window), s_(session), ai_(ai) {
  setObjectName(QStringLiteral("frmMesure"));
  setAttribute(Qt::WA_DeleteOnClose);

  if (!PreparerImageMesure(s_, ai_) || !ai_.Convert_ImageToPicture(s_.ImageMesure, image_)) {
    Dialogues().Message(QStringLiteral("Erreur"), QStringLiteral("Error - ") + ai_.Error_GetLast(),
                        Icone::Critique);
    image_ = QImage();
  }

  auto* racine = new QHBoxLayout(this);
  // The picture and the automatic calibration scroll together when the
  // screen is narrower than the picture and the command column.
  auto* contenuGauche = new QWidget;
  picCadre_ = new QWidget(contenuGauche);
  picCadre_->setObjectName(QStringLiteral("picCadre"));
  picImage_ = new ZoneImage(this, picCadre_);
  picImage_->setObjectName(QStringLiteral("picImage"));
  picImage_->setFixedSize(image_.isNull() ? QSize(s_.LargeurMesure, s_.HauteurMesure) : image_.size());
  picImage_->setCursor(Qt::CrossCursor);
  picCadre_->setFixedSize(picImage_->size());
  // The picture, and under it the automatic calibration, where the window
  // has room without growing.
  auto* gauche = new QVBoxLayout(contenuGauche);
  gauche->setContentsMargins(0, 0, 0, 0);
  gauche->addWidget(picCadre_, 0, Qt::AlignTop | Qt::AlignLeft);
  panneauImage_ = new PanneauDefilant(contenuGauche, this);
  panneauImage_->setObjectName(QStringLiteral("panneauImage"));
  // Narrower than the picture, which then scrolls both ways.
  panneauImage_->setMinimumSize(240, 180);
  racine->addWidget(panneauImage_, 1);

  picLoupe_ = new ZoneLoupe(this, picImage_);
  picLoupe_->setObjectName(QStringLiteral("picLoupe"));
  picLoupe_->hide();
  for (int i = 0; i < 2; ++i) {
    cmdLoupe_[i] = Bouton(i == 0 ? "cmdLoupe0" : "cmdLoupe1", i == 0 ? "X" : "OK", picImage_);
    cmdLoupe_[i]->setFixedSize(28, 20);
    cmdLoupe_[i]->hide();
    connect(cmdLoupe_[i], &QPushButton::clicked, this, [this, i] { cmdLoupe(i); });
  }
  picAstuce_ = new QLabel(
      QStringLiteral("Astuce : tracez la ligne sur l'étalon, d'une graduation à l'autre"), picCadre_);
  picAstuce_->setObjectName(QStringLiteral("picAstuce"));
  picAstuce_->setAutoFillBackground(true);
  picAstuce_->hide();

  picRecupEchelle_ = new QFrame(picCadre_);
  picRecupEchelle_->setObjectName(QStringLiteral("picRecupEchelle"));
  picRecupEchelle_->setFrameShape(QFrame::Box);
  picRecupEchelle_->setAutoFillBackground(true);
  {
    auto* g = new QGridLayout(picRecupEchelle_);
    g->addWidget(new QLabel(QStringLiteral("1 : Relevez une distance (pixels) connue.  (par "
                                           "exemple l'étalon en bas la photo)"),
                            picRecupEchelle_),
                 0, 0, 1, 3);
    g->addWidget(new QLabel(QStringLiteral("2 : Indiquez l'équivalence en microns"), picRecupEchelle_),
                 1, 0, 1, 3);
    txtPixTemp_ = Boite("txtPixTemp", picRecupEchelle_);
    txtMicTemp_ = Boite("txtMicTemp", picRecupEchelle_, false);
    g->addWidget(txtPixTemp_, 2, 0);
    g->addWidget(new QLabel(QStringLiteral("pixels ="), picRecupEchelle_), 2, 1);
    g->addWidget(txtMicTemp_, 2, 2);
    auto* valider = Bouton("cmdValiderMesureTemp", QStringLiteral("Valider"), picRecupEchelle_);
    auto* annuler = Bouton("cmdAnnulerMesureTemp", QStringLiteral("Annuler"), picRecupEchelle_);
    g->addWidget(valider, 3, 0);
    g->addWidget(annuler, 3, 2);
    connect(valider, &QPushButton::clicked, this, [this] { cmdValiderMesureTemp(); });
    connect(txtMicTemp_, &QLineEdit::returnPressed, this, [this] { cmdValiderMesureTemp(); });
    connect(annuler, &QPushButton::clicked, this, [this] { cmdAnnulerMesureTemp(); });
  }
  picRecupEchelle_->adjustSize();
  picRecupEchelle_->hide();

  // The command column.
  auto* col = new QVBoxLayout;
  racine->addLayout(col);
  auto* g = new QGridLayout;
  col->addLayout(g);
  txtLargeurImgOrigine_ = Boite("txtLargeurImgOrigine", this);
  txtFocaleImgOrigine_ = Boite("txtFocaleImgOrigine", this);
  txtMesurePixel_ = Boite("txtMesurePixel", this);
  lblUniteMesure_ = new QLabel(this);
  lblUniteMesure_->setObjectName(QStringLiteral("lblUniteMesure"));
  g->addWidget(new QLabel(QStringLiteral("Largeur image :"), this), 0, 0);
  g->addWidget(txtLargeurImgOrigine_, 0, 1);
  g->addWidget(new QLabel(QStringLiteral("Focale :"), this), 1, 0);
  g->addWidget(txtFocaleImgOrigine_, 1, 1);
  g->addWidget(new QLabel(QStringLiteral("Mesure :"), this), 2, 0);
  g->addWidget(txtMesurePixel_, 2, 1);
  g->addWidget(lblUniteMesure_, 2, 2);
  lblPosX_ = new QLabel(QStringLiteral("X: "), this);
  lblPosX_->setObjectName(QStringLiteral("lblPosX"));
  lblPosY_ = new QLabel(QStringLiteral("Y: "), this);
  lblPosY_->setObjectName(QStringLiteral("lblPosY"));
  lblAngle_ = new QLabel(QStringLiteral("Angle = 0°"), this);
  lblAngle_->setObjectName(QStringLiteral("lblAngle"));
  lblLoupe_ = new QLabel(this);
  lblLoupe_->setObjectName(QStringLiteral("lblLoupe"));
  for (QLabel* l : {lblPosX_, lblPosY_, lblAngle_, lblLoupe_}) col->addWidget(l);

  const char* nomsLigne[3] = {"optLigne0", "optLigne1", "optLigne2"};
  const QString textesLigne[3] = {QStringLiteral("Horizontal"), QStringLiteral("Vertical"),
                                  QStringLiteral("Libre")};
  for (int i = 0; i < 3; ++i) {
    optLigne_[i] = new QRadioButton(textesLigne[i], this);
    optLigne_[i]->setObjectName(QLatin1String(nomsLigne[i]));
    col->addWidget(optLigne_[i]);
    connect(optLigne_[i], &QRadioButton::toggled, this, [this](bool on) {
      if (on) EffacerTrace();
    });
  }
  chkModeLoupe_ = new QCheckBox(QStringLiteral("Mode loupe"), this);
  chkModeLoupe_->setObjectName(QStringLiteral("chkModeLoupe"));
  col->addWidget(chkModeLoupe_);
  connect(chkModeLoupe_, &QCheckBox::clicked, this, [this](bool c) { chkModeLoupeClic(c); });

  picPointeur_ = new QComboBox(this);
  picPointeur_->setObjectName(QStringLiteral("picPointeur"));
  picPointeur_->addItems({QStringLiteral("Aucun"), QStringLiteral("Petit"), QStringLiteral("Grand"),
                          QStringLiteral("Petit épais"), QStringLiteral("Grand épais")});
  combEpaisseurLigne_ = new QComboBox(this);
  combEpaisseurLigne_->setObjectName(QStringLiteral("combEpaisseurLigne"));
  combEpaisseurLigne_->addItems({QStringLiteral("1"), QStringLiteral("2")});
  auto* picCouleur = Bouton("picCouleur", QStringLiteral("Couleur ..."), this);
  for (QWidget* w : {static_cast<QWidget*>(picPointeur_), static_cast<QWidget*>(combEpaisseurLigne_),
                     static_cast<QWidget*>(picCouleur)})
    col->addWidget(w);
  connect(picPointeur_, &QComboBox::activated, this, [this](int i) { ChoisirPointeur(i); });
  connect(combEpaisseurLigne_, &QComboBox::activated, this, [this](int i) {
    epaisseurTrace_ = i + 1;
    picImage_->update();
  });
  connect(picCouleur, &QPushButton::clicked, this, [this] {
    const int c = Dialogues().Couleur(DepuisQColor(couleur_));
    if (c < 0) return;
    couleur_ = VersQColor(c);
    picImage_->update();
  });

  // Automatic calibration (mode 0): the value of one division, an optional
  // rectangle around the ruling, the button; the result and its two answers.
  fraEtalonnageAuto_ = new QFrame(contenuGauche);
  fraEtalonnageAuto_->setObjectName(QStringLiteral("fraEtalonnageAuto"));
  fraEtalonnageAuto_->setFrameShape(QFrame::StyledPanel);
  {
    auto* v = new QVBoxLayout(fraEtalonnageAuto_);
    auto* h = new QHBoxLayout;
    v->addLayout(h);
    h->addWidget(new QLabel(QStringLiteral("Une division :"), fraEtalonnageAuto_));
    combDivision_ = new QComboBox(fraEtalonnageAuto_);
    combDivision_->setObjectName(QStringLiteral("combDivision"));
    combDivision_->setEditable(true);
    combDivision_->addItems({QStringLiteral("10"), QStringLiteral("5"), QStringLiteral("2"), QStringLiteral("1"),
                             QStringLiteral("100")});
    combDivision_->setCurrentIndex(0);
    h->addWidget(combDivision_);
    h->addWidget(new QLabel(QStringLiteral("µm"), fraEtalonnageAuto_));
    chkZoneReglette_ = new QCheckBox(QStringLiteral("Rectangle autour de la réglette"), fraEtalonnageAuto_);
    chkZoneReglette_->setObjectName(QStringLiteral("chkZoneReglette"));
    h->addWidget(chkZoneReglette_);
    h->addStretch();
    auto* auto_ = Bouton("cmdEtalonnageAuto", QStringLiteral("Étalonnage automatique"), fraEtalonnageAuto_);
    v->addWidget(auto_, 0, Qt::AlignLeft);
    picReglette_ = new QFrame(fraEtalonnageAuto_);
    picReglette_->setObjectName(QStringLiteral("picReglette"));
    auto* r = new QHBoxLayout(picReglette_);
    r->setContentsMargins(0, 0, 0, 0);
    lblReglette_ = new QLabel(picReglette_);
    lblReglette_->setObjectName(QStringLiteral("lblReglette"));
    lblReglette_->setWordWrap(true);
    r->addWidget(lblReglette_, 1);
    auto* accepter = Bouton("cmdAccepterReglette", QStringLiteral("Accepter"), picReglette_);
    auto* deuxPoints = Bouton("cmdDeuxPointsReglette", QStringLiteral("Pointer deux graduations"), picReglette_);
    r->addWidget(accepter, 0, Qt::AlignBottom);
    r->addWidget(deuxPoints, 0, Qt::AlignBottom);
    v->addWidget(picReglette_);
    picReglette_->hide();
    connect(auto_, &QPushButton::clicked, this, [this] { cmdEtalonnageAuto(); });
    connect(accepter, &QPushButton::clicked, this, [this] { cmdAccepterReglette(); });
    connect(deuxPoints, &QPushButton::clicked, this, [this] {
      OublierReglette();
      const QSignalBlocker bloque(chkZoneReglette_);
      chkZoneReglette_->setChecked(false);
      zoneReglette_ = QRectF();
      picImage_->update();
    });
    connect(combDivision_, &QComboBox::currentTextChanged, this, [this] {
      if (reglette_) AfficherReglette();
    });
    connect(chkZoneReglette_, &QCheckBox::toggled, this, [this](bool coche) {
      if (!coche) zoneReglette_ = QRectF();
      traceZone_ = false;
      picImage_->update();
    });
  }
  gauche->addWidget(fraEtalonnageAuto_);
  gauche->addStretch();

  picCreerTable_ = new QFrame(this);
  picCreerTable_->setObjectName(QStringLiteral("picCreerTable"));
  {
    auto* h = new QHBoxLayout(picCreerTable_);
    cmdCopierInfos_ = Bouton("cmdCopierInfos", QStringLiteral("Créer une table"), picCreerTable_);
    auto* annuler = Bouton("cmdAnnulerDialogue", QStringLiteral("Annuler"), picCreerTable_);
    h->addWidget(cmdCopierInfos_);
    h->addWidget(annuler);
    connect(cmdCopierInfos_, &QPushButton::clicked, this, [this] { cmdCopierInfos(); });
    connect(annuler, &QPushButton::clicked, this, [this] {
      EffacerTrace();
      loupe_.Reinitialiser();
      picCreerTable_->hide();
      frmFichierPhoto::FermerFenetres(QStringLiteral("frmGenMesures"));
    });
  }
  picCreerTable_->hide();
  col->addWidget(picCreerTable_);

  cmdRestartRecupEchelle_ =
      Bouton("cmdRestartRecupEchelle", QStringLiteral("Nouvelle échelle"), this);
  cmdListeMesure_ = Bouton("cmdListeMesure", QStringLiteral("Carnet de mesures"), this);
  auto* effacer = Bouton("cmdEffacerMesurerEtalon", QStringLiteral("Effacer"), this);
  auto* sortir = Bouton("cmdSortirMesurerEtalon", QStringLiteral("Sortir"), this);
  for (QWidget* w : {cmdRestartRecupEchelle_, cmdListeMesure_, effacer, sortir}) col->addWidget(w);
  connect(cmdRestartRecupEchelle_, &QPushButton::clicked, this, [this] { cmdRestartRecupEchelle(); });
  connect(cmdListeMesure_, &QPushButton::clicked, this, [this] {
    frmListeMesure::Afficher(s_, ai_, this);
  });
  connect(effacer, &QPushButton::clicked, this, [this] { EffacerTrace(); });
  connect(sortir, &QPushButton::clicked, this, [this] {
    close();
    if (parentWidget()) parentWidget()->activateWindow();
  });

  fraMenuCompteur_ = new QFrame(this);
  fraMenuCompteur_->setObjectName(QStringLiteral("fraMenuCompteur"));
  {
    auto* v = new QGridLayout(fraMenuCompteur_);
    const QString textes[3] = {QStringLiteral("Remettre à zéro"), QStringLiteral("Compter"),
                               QStringLiteral("Arrêter")};
    const char* noms[3] = {"cmdMnuCompteur0", "cmdMnuCompteur1", "cmdMnuCompteur2"};
    // Two columns, so that the command column stays narrow on small screens.
    const int lignes[3] = {0, 1, 1}, colonnes[3] = {0, 0, 1}, largeurs[3] = {2, 1, 1};
    for (int i = 0; i < 3; ++i) {
      auto* b = Bouton(noms[i], textes[i], fraMenuCompteur_);
      v->addWidget(b, lignes[i], colonnes[i], 1, largeurs[i]);
      connect(b, &QPushButton::clicked, this, [this, i] { cmdMnuCompteur(i); });
    }
    combTaillePoints_ = new QComboBox(fraMenuCompteur_);
    combTaillePoints_->setObjectName(QStringLiteral("combTaillePoints"));
    for (int i = 1; i <= 8; ++i) combTaillePoints_->addItem(QString::number(i));
    v->addWidget(combTaillePoints_, 2, 0);
    txtCompteurPoints_[0] = Boite("txtCompteurPoints0", fraMenuCompteur_);
    v->addWidget(txtCompteurPoints_[0], 2, 1);
    picCompteur_ = new QFrame(fraMenuCompteur_);
    picCompteur_->setObjectName(QStringLiteral("picCompteur"));
    auto* h = new QHBoxLayout(picCompteur_);
    h->addWidget(new QLabel(QStringLiteral("Points :"), picCompteur_));
    txtCompteurPoints_[1] = Boite("txtCompteurPoints1", picCompteur_);
    h->addWidget(txtCompteurPoints_[1]);
    picCompteur_->hide();
    v->addWidget(picCompteur_, 3, 0, 1, 2);
  }
  col->addWidget(fraMenuCompteur_);
  col->addStretch();

  TimerAstuce_ = new QTimer(this);
  TimerAstuce_->setObjectName(QStringLiteral("TimerAstuce"));
  TimerAstuce_->setSingleShot(true);
  TimerAstuce_->setInterval(4000);
  connect(TimerAstuce_, &QTimer::timeout, picAstuce_, &QWidget::hide);
  TimerAjouterTable_ = new QTimer(this);
  TimerAjouterTable_->setObjectName(QStringLiteral("TimerAjouterTable"));
  TimerAjouterTable_->setInterval(500);
  connect(TimerAjouterTable_, &QTimer::timeout, this, [this] { ClignoterCopierInfos(); });

  txtLargeurImgOrigine_->setText(QString::number(s_.Largeur));
  txtFocaleImgOrigine_->setText(TexteReel(s_.FocaleAPN, s_.SeparateurDecimal));
  AppliquerMenu();
  if (s_.Largeur < 1500) chkModeLoupe_->setEnabled(false);
  if (s_.ModeMesure == 1) ModeRecup();
}

frmMesure::~frmMesure() = default;

// The scale entry, centred on the picture and scrolled into view.
void frmMesure::MontrerRecupEchelle() {
  picRecupEchelle_->move((picCadre_->width() - picRecupEchelle_->width()) / 2,
                         (picCadre_->height() - picRecupEchelle_->height()) / 2);
  picRecupEchelle_->show();
  picRecupEchelle_->raise();
  panneauImage_->ensureWidgetVisible(picRecupEchelle_, 0, 0);
}

void frmMesure::closeEvent(QCloseEvent* e) {
  ai_.IO_DestroyBitmap(s_.ImageMesure);
  for (const char* f : {"frmGenMesures", "frmConfig", "frmListeMesure", "frmAppercuRtf"})
    frmFichierPhoto::FermerFenetres(QLatin1String(f));
  e->accept();
}

void frmMesure::AppliquerMenu() {
  const EtatMenuMesure m = InitMenu(s_.ModeMesure, s_.Largeur, s_.LargeurMesure);
  setWindowTitle(m.titre);
  cmdListeMesure_->setEnabled(m.listeMesureActive);
  lblUniteMesure_->setText(m.unite);
  {
    const QSignalBlocker b0(optLigne_[0]), b1(optLigne_[1]), b2(optLigne_[2]);
    optLigne_[m.optLigne]->setChecked(true);
  }
  chkModeLoupe_->setChecked(false);
  chkModeLoupe_->setVisible(m.loupeVisible);
  chkModeLoupe_->setEnabled(m.loupeActive);
  cmdRestartRecupEchelle_->setEnabled(false);
  const QColor fond = m.fondVert ? VersQColor(VertClair) : QApplication::palette().color(QPalette::Button);
  Fond(txtLargeurImgOrigine_, fond);
  Fond(txtFocaleImgOrigine_, fond);
  if (m.astuce) {
    picAstuce_->adjustSize();
    picAstuce_->move(4, picCadre_->height() - picAstuce_->height() - 10);
    picAstuce_->show();
    picAstuce_->raise();
    TimerAstuce_->start();
  }
  fraMenuCompteur_->setEnabled(m.compteur);
  fraEtalonnageAuto_->setVisible(s_.ModeMesure == 0);
  if (m.compteur) combTaillePoints_->setCurrentIndex(1);
  picPointeur_->setCurrentIndex(1);
  ChoisirPointeur(1);
  couleur_ = QColor(255, 0, 0);
  combEpaisseurLigne_->setCurrentIndex(0);
  epaisseurTrace_ = 1;
}

void frmMesure::ChoisirPointeur(int index) {
  if (index < 0 || index > 4) return;
  taillePointeur_ = kPointeurs[index][0];
  epaisseurPointeur_ = kPointeurs[index][1];
  picImage_->update();
}

void frmMesure::MajPositions(QPointF p) {
  lblPosX_->setText(QStringLiteral("X: ") + QString::number(VersEntier(p.x())));
  lblPosY_->setText(QStringLiteral("Y: ") + QString::number(VersEntier(p.y())));
}

void frmMesure::SourisAppuyee(QPointF p) {
  boutonBas_ = true;
  if (s_.ModeMesure == 0 && chkZoneReglette_->isChecked()) {
    traceZone_ = true;
    coinZone_ = p;
    zoneReglette_ = QRectF(p, p);
    picImage_->update();
    return;
  }
  if (compteurActif_) {
    const int r = combTaillePoints_->currentText().toInt();
    points_.append({p, r});
    ++nbPoints_;
    for (QLineEdit* t : txtCompteurPoints_) t->setText(QString::number(nbPoints_));
    picImage_->update();
    return;
  }
  picCreerTable_->hide();
  // A line drawn again: back to two picked points.
  OublierReglette();
  croixVisible_ = true;
  x1_ = float(p.x());
  y1_ = float(p.y());
  angle_ = 0;
  longueur_ = 0;
  MajPositions(p);
  if (chkModeLoupe_->isChecked()) {
    const int16_t avant = loupe_.EtatLoupe;
    if (avant != 0 && avant != 2) return;
    lblLoupe_->setText(avant == 0 ? QStringLiteral("point 1") : QStringLiteral("point 2"));
    cadre_ = true;
    centreCadre_ = p;
    const Loupe::Clic c = loupe_.CliquerImage(float(p.x()), float(p.y()), RatioAffichage(s_),
                                              s_.Largeur, s_.Hauteur);
    if (c == Loupe::Clic::HorsImage) {
      picLoupe_->hide();
      Dialogues().Message(TitreModeLoupe, TexteHorsImage, Icone::Exclamation);
    } else if (c == Loupe::Clic::Cadre) {
      Bitmap region;
      auto* z = static_cast<ZoneLoupe*>(picLoupe_);
      if (ai_.Effect_Zoom(s_.ImageCourante, region, loupe_.OrigineX(), loupe_.OrigineY(),
                          Loupe::Cote, Loupe::Cote, 1.0))
        ai_.Convert_ImageToPicture(region, z->image);
      ai_.IO_DestroyBitmap(region);
      croixLoupe_ = {-1, -1};
      picLoupe_->move(int(p.x()) - Loupe::Cote / 2, int(p.y()) - Loupe::Cote / 2);
      picLoupe_->show();
      picLoupe_->raise();
      // At the frame's lower right corner, kept on the picture near its edges.
      const int lb = cmdLoupe_[0]->width() + cmdLoupe_[1]->width();
      cmdLoupe_[0]->move(std::min(picLoupe_->x() + Loupe::Cote, picImage_->width() - lb),
                         std::min(picLoupe_->y() + Loupe::Cote, picImage_->height() - cmdLoupe_[0]->height()));
      cmdLoupe_[1]->move(cmdLoupe_[0]->x() + cmdLoupe_[0]->width(), cmdLoupe_[0]->y());
      for (QPushButton* b : cmdLoupe_) {
        b->show();
        b->raise();
      }
    }
  }
  picImage_->update();
}

void frmMesure::SourisDeplacee(QPointF p, bool boutonGauche) {
  pointeur_ = p;
  if (traceZone_) {
    if (boutonGauche) zoneReglette_ = QRectF(coinZone_, p).normalized() & QRectF(picImage_->rect());
    picImage_->update();
    return;
  }
  if (!(boutonGauche && boutonBas_) || chkModeLoupe_->isChecked() || compteurActif_) {
    picImage_->update();
    return;
  }
  trace_ = true;
  MajPositions(p);
  if (CalculAngle(x1_, y1_, float(p.x()), float(p.y()), angle_) == ResultatAngle::DivisionParZero)
    Dialogues().Message(QStringLiteral("Erreur"), TexteErreurCalculAngle(), Icone::Critique);
  longueur_ = Distance(x1_, y1_, float(p.x()), float(p.y()));
  lblAngle_->setText(QStringLiteral("Angle = ") + QString::number(VersEntier(angle_)) +
                     QStringLiteral("°"));
  ContexteMesure c;
  c.mode = s_.ModeMesure;
  c.ratio = RatioAffichage(s_);
  c.echelleTemp = echelleTemp_;
  c.micronsParPixelTemp = micronsParPixelTemp_;
  c.imageFinale = s_.ImageFinale;
  c.micronsParPixel = s_.MicronsParPixel;
  c.separateur = s_.SeparateurDecimal.isEmpty() ? QStringLiteral(",") : s_.SeparateurDecimal;
  if (const auto v = ValeurAffichee(c, longueur_)) {
    txtMesurePixel_->setText(v->txtMesurePixel);
    if (v->txtPixTemp) txtPixTemp_->setText(*v->txtPixTemp);
  }
  picImage_->update();
}

void frmMesure::SourisRelachee(QPointF p) {
  if (!boutonBas_) return;
  boutonBas_ = false;
  if (traceZone_) {
    traceZone_ = false;
    zoneReglette_ = QRectF(coinZone_, p).normalized() & QRectF(picImage_->rect());
    picImage_->update();
    return;
  }
  if (compteurActif_) return;
  if (s_.ModeMesure == 0) {
    if (!chkModeLoupe_->isChecked() && OffreTable(longueur_)) {
      picCreerTable_->show();
      TimerAjouterTable_->start();
      picAstuce_->hide();
    }
  } else if (s_.ModeMesure == 1) {
    MontrerRecupEchelle();
    txtMicTemp_->setFocus();
  } else if (s_.ModeMesure == 2) {
    for (QWidget* w : QApplication::topLevelWidgets()) {
      if (w->objectName() != u"frmListeMesure" || !w->isVisible()) continue;
      if (auto* t1 = w->findChild<QLineEdit*>(QStringLiteral("txtMesure1")))
        t1->setText(txtMesurePixel_->text());
      if (auto* t2 = w->findChild<QLineEdit*>(QStringLiteral("txtMesure2"))) t2->setFocus();
    }
  }
  x2_ = float(p.x());
  y2_ = float(p.y());
}

void frmMesure::LoupeSouris(QPointF p, bool relache) {
  if (relache) {
    loupe_.RelacherDansLoupe(float(p.x()), float(p.y()));
  } else if (p.x() >= 0 && p.x() <= Loupe::Cote && p.y() >= 0 && p.y() <= Loupe::Cote) {
    croixLoupe_ = p;
  }
  picLoupe_->update();
}

void frmMesure::cmdLoupe(int index) {
  if (index == 0) {
    EffacerTrace();
    loupe_.Reinitialiser();
    return;
  }
  const Loupe::Validation v = loupe_.Valider();
  const float r = RatioAffichage(s_);
  switch (v.action) {
    case Loupe::Validation::Erreur:
      Dialogues().Message(v.titre, v.texte, Icone::Exclamation);
      break;
    case Loupe::Validation::PremierPoint:
      picLoupe_->hide();
      for (QPushButton* b : cmdLoupe_) b->hide();
      cadre_ = false;
      croixVertes_.append(QPointF(loupe_.PointX1 / r, loupe_.PointY1 / r));
      Dialogues().Message(v.titre, v.texte, Icone::Information);
      break;
    case Loupe::Validation::DeuxiemePoint:
      picLoupe_->hide();
      for (QPushButton* b : cmdLoupe_) b->hide();
      cadre_ = false;
      croixVertes_.append(QPointF(loupe_.PointX2 / r, loupe_.PointY2 / r));
      ligneLoupe_ = true;
      longueur_ = loupe_.Longueur;
      txtMesurePixel_->setText(v.txtMesurePixel);
      Dialogues().Message(v.titre, v.texte, Icone::Information);
      picCreerTable_->show();
      TimerAjouterTable_->start();
      break;
    case Loupe::Validation::CacherCroix:
      croixVisible_ = false;
      break;
    case Loupe::Validation::Rien:
      break;
  }
  picImage_->update();
}

void frmMesure::chkModeLoupeClic(bool coche) {
  if (coche) {
    setWindowTitle(QStringLiteral(" Mode loupe"));
    lblPosX_->setText(QStringLiteral("X:"));
    lblPosY_->setText(QStringLiteral("Y:"));
    lblAngle_->setText(QStringLiteral("Angle :"));
    EffacerTrace();
    if (loupe_.EtatLoupe == 0) {
      picPointeur_->setCurrentIndex(1);
      ChoisirPointeur(1);
      Dialogues().Message(TitreModeLoupe, TexteModeLoupe, Icone::Information);
    }
  } else {
    setWindowTitle(QStringLiteral(" Etalonnage ..."));
    loupe_.Reinitialiser();
    EffacerTrace();
  }
}

void frmMesure::EffacerTrace() {
  trace_ = false;
  longueur_ = 0;
  angle_ = 0;
  cadre_ = false;
  ligneLoupe_ = false;
  croixVertes_.clear();
  croixLoupe_ = {-1, -1};
  points_.clear();
  picLoupe_->hide();
  for (QPushButton* b : cmdLoupe_) b->hide();
  txtMesurePixel_->clear();
  txtPixTemp_->clear();
  txtMicTemp_->clear();
  OublierReglette();
  zoneReglette_ = QRectF();
  picImage_->update();
}

void frmMesure::ModeRecup() {
  if (EchelleRecuperable(s_.EchellePix, s_.EchelleMic) &&
      Dialogues().Question(TitreRecupEchelle, QuestionRecupEchelle(), Boutons::OuiNon, Reponse::Oui,
                           Icone::Question) == Reponse::Oui) {
    txtMicTemp_->setText(s_.EchelleMic);
    txtPixTemp_->setText(s_.EchellePix);
    cmdValiderMesureTemp();
    return;
  }
  // A scale another program wrote, for the picture as it is now: 100 µm in
  // pixels of the file, followed through a resize.
  if (!EchelleRecuperable(s_.EchellePix, s_.EchelleMic) && s_.MicronsParPixelExterne > 0 && s_.Largeur > 0 &&
      s_.LargeurOrigine > 0) {
    const double pixels = 100.0 / s_.MicronsParPixelExterne * double(s_.Largeur) / double(s_.LargeurOrigine);
    const QString texte = QuestionRecupEchelleExterne(s_.SourceEchelleExterne,
                                                      TexteReel(Arrondir(pixels, 2), s_.SeparateurDecimal));
    if (Dialogues().Question(TitreRecupEchelle, texte, Boutons::OuiNon, Reponse::Oui, Icone::Question) ==
        Reponse::Oui) {
      txtMicTemp_->setText(QStringLiteral("100"));
      txtPixTemp_->setText(TexteReel(Arrondir(pixels, 3), s_.SeparateurDecimal));
      cmdValiderMesureTemp();
      return;
    }
  }
  Dialogues().Message(QStringLiteral("Etalonnage manuel"),
                      QStringLiteral("Récupérer l'échelle manuellement ..."), Icone::Information);
  MontrerRecupEchelle();
}

void frmMesure::cmdValiderMesureTemp() {
  const auto echelle = ValiderEchelleTemp(txtMicTemp_->text(), txtPixTemp_->text());
  if (!echelle) {
    s_.ModeMesure = 1;
    Dialogues().Message(TitreEchelleRefusee, TexteEchelleRefusee, Icone::Exclamation);
    txtMicTemp_->setFocus();
    return;
  }
  s_.ModeMesure = 2;
  AppliquerMenu();
  picRecupEchelle_->hide();
  echelleTemp_ = true;
  micronsParPixelTemp_ = *echelle;
  cmdRestartRecupEchelle_->setEnabled(true);
  Dialogues().Message(QStringLiteral("Echelle OK"), QStringLiteral("Vous pouvez mesurer sur l'image !"),
                      Icone::Information);
}

void frmMesure::cmdAnnulerMesureTemp() {
  s_.ModeMesure = 1;
  EffacerTrace();
  picRecupEchelle_->hide();
  cmdRestartRecupEchelle_->setEnabled(true);
}

void frmMesure::cmdRestartRecupEchelle() {
  for (const char* f : {"frmListeMesure", "frmAppercuRtf"})
    frmFichierPhoto::FermerFenetres(QLatin1String(f));
  s_.ModeMesure = 1;
  echelleTemp_ = false;
  micronsParPixelTemp_ = 0;
  AppliquerMenu();
  EffacerTrace();
  ModeRecup();
}

void frmMesure::cmdCopierInfos() {
  ArreterClignotement();
  picCreerTable_->hide();
  if (txtMesurePixel_->text().isEmpty()) {
    Dialogues().Message(QStringLiteral(" Nouvelle table"), QStringLiteral("Il manque votre mesure ..."),
                        Icone::Exclamation);
    EffacerTrace();
    return;
  }
  frmGenMesures* gen = frmGenMesures::Afficher(
      s_, DonneesEtalon{txtLargeurImgOrigine_->text(), txtMesurePixel_->text()}, this);
  // The microns that go with an accepted automatic measure.
  if (gen && micronsReglette_ > 0 && txtMesurePixel_->text() == pixelsReglette_)
    if (auto* mic = gen->findChild<QLineEdit*>(QStringLiteral("txtFields6")))
      mic->setText(QString::number(micronsReglette_));
}

void frmMesure::cmdEtalonnageAuto() {
  const QString titre = QStringLiteral("Étalonnage automatique");
  const std::optional<double> division = LireDivision(combDivision_->currentText());
  if (!division) {
    Dialogues().Message(titre, TexteDivisionRefusee, Icone::Exclamation);
    combDivision_->setFocus();
    return;
  }
  OublierReglette();
  QImage image;
  QApplication::setOverrideCursor(Qt::WaitCursor);
  if (!ai_.Convert_ImageToPicture(s_.ImageCourante, image)) {
    QApplication::restoreOverrideCursor();
    Dialogues().Message(QStringLiteral("Erreur"), QStringLiteral("Error - ") + ai_.Error_GetLast(), Icone::Critique);
    return;
  }
  std::optional<ZoneReglette> zone;
  if (!zoneReglette_.isEmpty()) {
    // Display pixels to the picture's, the rectangle's whole pixels kept.
    const double r = RatioAffichage(s_);
    const int x0 = std::clamp(int(std::floor(zoneReglette_.left() * r)), 0, image.width());
    const int y0 = std::clamp(int(std::floor(zoneReglette_.top() * r)), 0, image.height());
    const int x1 = std::clamp(int(std::ceil(zoneReglette_.right() * r)), 0, image.width());
    const int y1 = std::clamp(int(std::ceil(zoneReglette_.bottom() * r)), 0, image.height());
    zone = ZoneReglette{x0, y0, x1 - x0, y1 - y0};
  }
  const VuePixels vue{image.constBits(), image.width(), image.height(), image.bytesPerLine(),
                      FormatPixels::BGRA32};
  ResultatReglette resultat = TrouverReglette(vue, zone);
  QApplication::restoreOverrideCursor();
  if (!resultat.reglette) {
    picImage_->update();
    Dialogues().Message(titre, resultat.refus, Icone::Exclamation);
    return;
  }
  reglette_ = std::move(resultat.reglette);
  AfficherReglette();
}

// How many divisions were measured and what they give, for the division
// typed; the graduations drawn over the picture.
void frmMesure::AfficherReglette() {
  if (!reglette_) return;
  const QString separateur = s_.SeparateurDecimal.isEmpty() ? QStringLiteral(",") : s_.SeparateurDecimal;
  const std::optional<double> division = LireDivision(combDivision_->currentText());
  QString texte = QStringLiteral("%1 divisions mesurées").arg(reglette_->divisions);
  texte += QStringLiteral("\n") + (division ? TexteReglette(*reglette_, *division, separateur) : TexteDivisionRefusee);
  lblReglette_->setText(texte);
  picReglette_->show();
  picImage_->update();
}

// The accepted ruling as a measure: a whole number of pixels for a power of
// ten of microns in txtMesurePixel, then the table's creation as after two
// picked points.
void frmMesure::cmdAccepterReglette() {
  const std::optional<double> division = LireDivision(combDivision_->currentText());
  if (!reglette_ || !division) {
    Dialogues().Message(QStringLiteral("Étalonnage automatique"), TexteDivisionRefusee, Icone::Exclamation);
    return;
  }
  const LongueurTable l = LongueurPourTable(*reglette_, *division);
  pixelsReglette_ = QString::number(l.pixels);
  micronsReglette_ = l.microns;
  txtMesurePixel_->setText(pixelsReglette_);
  longueur_ = float(l.pixels);
  picReglette_->hide();
  picCreerTable_->show();
  TimerAjouterTable_->start();
  picAstuce_->hide();
}

void frmMesure::OublierReglette() {
  reglette_.reset();
  pixelsReglette_.clear();
  micronsReglette_ = 0;
  if (picReglette_) picReglette_->hide();
}

void frmMesure::ClignoterCopierInfos() {
  clignote_ = !clignote_;
  Fond(cmdCopierInfos_,
       clignote_ ? VersQColor(VertClair) : QApplication::palette().color(QPalette::Button));
}

void frmMesure::ArreterClignotement() {
  TimerAjouterTable_->stop();
  clignote_ = true;
  ClignoterCopierInfos();
}

void frmMesure::cmdMnuCompteur(int index) {
  if (index == 1) {
    compteurActif_ = true;
    croixVisible_ = false;
    picCompteur_->show();
    picImage_->setCursor(Qt::PointingHandCursor);
  } else if (index == 0) {
    nbPoints_ = 0;
    points_.clear();
    for (QLineEdit* t : txtCompteurPoints_) t->setText(QStringLiteral("0"));
  } else if (index == 2) {
    compteurActif_ = false;
    croixVisible_ = true;
    nbPoints_ = 0;
    picCompteur_->hide();
    picImage_->setCursor(Qt::CrossCursor);
  }
  picImage_->update();
}

void frmMesure::Dessiner(QPainter& p) {
  if (!image_.isNull()) p.drawImage(0, 0, image_);
  const float r = RatioAffichage(s_);
  // The rubber band: only the drawing follows optLigne, the length stays straight.
  QPen trait(couleur_, epaisseurTrace_);
  p.setPen(trait);
  if (trace_ && !chkModeLoupe_->isChecked()) {
    QPointF fin = pointeur_;
    if (optLigne_[0]->isChecked()) fin.setY(y1_);
    if (optLigne_[1]->isChecked()) fin.setX(x1_);
    p.drawLine(QPointF(x1_, y1_), fin);
  }
  if (ligneLoupe_ && r > 0)
    p.drawLine(QPointF(loupe_.PointX1 / r, loupe_.PointY1 / r),
               QPointF(loupe_.PointX2 / r, loupe_.PointY2 / r));
  if (cadre_)
    p.drawRect(QRectF(centreCadre_.x() - Loupe::Cote / 2.0, centreCadre_.y() - Loupe::Cote / 2.0,
                      Loupe::Cote, Loupe::Cote));
  // The ruling found: each graduation used, its first and last longer, in
  // display pixels; the rectangle drawn around it.
  if (reglette_ && r > 0) {
    p.setPen(QPen(QColor(0, 200, 255), 1));
    const int dernier = reglette_->graduations.empty() ? 0 : reglette_->graduations.back().rang;
    for (const Graduation& g : reglette_->graduations) {
      QLineF l(g.x1 / r, g.y1 / r, g.x2 / r, g.y2 / r);
      if (g.rang == 0 || g.rang == dernier) {
        const QPointF d = (l.p2() - l.p1()) * 0.25;
        l = QLineF(l.p1() - d, l.p2() + d);
      }
      p.drawLine(l);
    }
  }
  if (!zoneReglette_.isEmpty()) {
    p.setPen(QPen(QColor(0, 200, 255), 1, Qt::DashLine));
    p.drawRect(zoneReglette_);
  }
  p.setPen(QPen(Qt::green, 1));
  for (const QPointF& c : croixVertes_) {
    p.drawLine(c - QPointF(TailleCroix, 0), c + QPointF(TailleCroix, 0));
    p.drawLine(c - QPointF(0, TailleCroix), c + QPointF(0, TailleCroix));
  }
  p.setPen(Qt::NoPen);
  p.setBrush(couleur_);
  for (const auto& [c, rayon] : points_) p.drawEllipse(c, rayon, rayon);
  p.setBrush(Qt::NoBrush);
  if (croixVisible_ && !compteurActif_ && taillePointeur_ > 0 && pointeur_.x() >= 0) {
    p.setPen(QPen(couleur_, epaisseurPointeur_));
    const double d = taillePointeur_ / 2.0;
    p.drawLine(pointeur_ - QPointF(d, 0), pointeur_ + QPointF(d, 0));  // linCrossH
    p.drawLine(pointeur_ - QPointF(0, d), pointeur_ + QPointF(0, d));  // linCrossV
  }
}

void frmMesure::DessinerLoupe(QPainter& p) {
  if (croixLoupe_.x() < 0) return;
  p.setPen(QPen(couleur_, 1));
  p.drawLine(QPointF(croixLoupe_.x() - Loupe::Cote, croixLoupe_.y()),
             QPointF(croixLoupe_.x() + Loupe::Cote, croixLoupe_.y()));
  p.drawLine(QPointF(croixLoupe_.x(), croixLoupe_.y() - Loupe::Cote),
             QPointF(croixLoupe_.x(), croixLoupe_.y() + Loupe::Cote));
}

}  // namespace tg
