#include "adjust/frmFiltres.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSlider>
#include <QTabWidget>
#include <QVBoxLayout>

#include "adjust/Filtres.h"
#include "adjust/frmFiltresVignette.h"
#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Dialogues.h"
#include "platform/Ecran.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"
#include "version.h"

namespace tg {

namespace {

template <typename T>
T* Nomme(T* w, const QString& nom) {
  w->setObjectName(nom);
  return w;
}

QPushButton* Bouton(const QString& nom, const QString& texte, QWidget* parent) {
  return Nomme(new QPushButton(texte, parent), nom);
}

QSlider* Curseur(const QString& nom, int min, int max, int repos, QWidget* parent) {
  auto* s = Nomme(new QSlider(Qt::Horizontal, parent), nom);
  s->setRange(min, max);
  s->setValue(repos);
  s->setTickPosition(QSlider::TicksBelow);
  s->setPageStep(1);
  return s;
}

QLineEdit* Boite(const QString& nom, QWidget* parent, bool lecture) {
  auto* b = Nomme(new QLineEdit(parent), nom);
  b->setReadOnly(lecture);
  b->setMaximumWidth(60);
  return b;
}

const QStringList kRefGris = {"160", "170", "180", "190", "210", "220", "230", "240", "250"};

// A slider acts by increments: released (or moved by the keyboard or a click
// on its groove), it hands its value over once and jumps back to rest.
void Incrementiel(QSlider* s, int repos, std::function<void(int)> pas) {
  const auto lacher = [s, repos, pas] {
    const int v = s->value();
    {
      const QSignalBlocker b(s);
      s->setValue(repos);
    }
    pas(v);
  };
  QObject::connect(s, &QSlider::sliderReleased, s, lacher);
  QObject::connect(s, &QSlider::valueChanged, s, [s, repos, lacher](int v) {
    if (!s->isSliderDown() && v != repos) lacher();
  });
}

}  // namespace

frmFiltres::frmFiltres(SessionRecord& session, cAdvancedImagery& ai, frmFichierPhoto* principal, QWidget* parent)
    : QWidget(parent, Qt::Tool), s_(session), ai_(ai), principal_(principal) {
  setObjectName(QStringLiteral("frmFiltres"));
  setWindowTitle(QStringLiteral("  Filtres"));
  auto* racine = new QVBoxLayout(this);
  SSTab1_ = Nomme(new QTabWidget(this), QStringLiteral("SSTab1"));
  racine->addWidget(SSTab1_);

  // Light, contrast, gamma and their memory.
  auto* lumiere = new QWidget;
  {
    auto* l = new QGridLayout(lumiere);
    l->addWidget(new QLabel(QStringLiteral("Luminosité")), 0, 0);
    sldLuminosite_ = Curseur(QStringLiteral("sldLuminosite"), -20, 20, 0, lumiere);
    l->addWidget(sldLuminosite_, 0, 1);
    txtValLum_ = Boite(QStringLiteral("txtValLum"), lumiere, true);
    l->addWidget(txtValLum_, 0, 2);
    l->addWidget(new QLabel(QStringLiteral("Contraste")), 1, 0);
    sldContrast_ = Curseur(QStringLiteral("sldContrast"), -20, 20, 0, lumiere);
    l->addWidget(sldContrast_, 1, 1);
    txtValCont_ = Boite(QStringLiteral("txtValCont"), lumiere, true);
    l->addWidget(txtValCont_, 1, 2);
    l->addWidget(new QLabel(QStringLiteral("Gamma")), 2, 0);
    sldGama_ = Curseur(QStringLiteral("sldGama"), 1, 9, 5, lumiere);
    l->addWidget(sldGama_, 2, 1);
    txtGama_ = Boite(QStringLiteral("txtGama"), lumiere, true);
    l->addWidget(txtGama_, 2, 2);
    Incrementiel(sldLuminosite_, 0, [this](int v) { LacherLuminosite(v); });
    Incrementiel(sldContrast_, 0, [this](int v) { LacherContraste(v); });
    Incrementiel(sldGama_, 5, [this](int v) { LacherGamma(v); });

    auto* memoire = new QGroupBox(
        QStringLiteral("Mémorisation lumière et contraste   -   Utile pour une série de photos ...  "), lumiere);
    auto* lm = new QGridLayout(memoire);
    comboLumCont_ = Nomme(new QComboBox(memoire), QStringLiteral("comboLumCont"));
    lm->addWidget(comboLumCont_, 0, 0, 1, 3);
    auto* ajouter = Bouton(QStringLiteral("cmdAjouterListe"), QStringLiteral("Mémoriser"), memoire);
    cmdAppliquerListe_ = Bouton(QStringLiteral("cmdAppliquerListe"), QStringLiteral("Appliquer"), memoire);
    auto* effacer = Bouton(QStringLiteral("cmdEffacerListe"), QStringLiteral("Effacer la liste"), memoire);
    connect(ajouter, &QPushButton::clicked, this, [this] { cmdAjouterListe(); });
    connect(cmdAppliquerListe_, &QPushButton::clicked, this, [this] { cmdAppliquerListe(); });
    connect(effacer, &QPushButton::clicked, this, [this] { cmdEffacerListe(); });
    lm->addWidget(ajouter, 1, 0);
    lm->addWidget(cmdAppliquerListe_, 1, 1);
    lm->addWidget(effacer, 1, 2);
    l->addWidget(memoire, 3, 0, 1, 3);
  }
  SSTab1_->addTab(lumiere, QStringLiteral("Lumière"));

  // Effects.
  auto* effets = new QWidget;
  {
    auto* l = new QGridLayout(effets);
    auto* gris = Bouton(QStringLiteral("cmdNivGris"), QStringLiteral("Niveaux de gris"), effets);
    auto* inversion = Bouton(QStringLiteral("cmdInversion"), QStringLiteral("Inversion"), effets);
    connect(gris, &QPushButton::clicked, this, [this] { cmdNivGris(); });
    connect(inversion, &QPushButton::clicked, this, [this] { cmdInversion(); });
    l->addWidget(gris, 0, 0);
    l->addWidget(inversion, 0, 1);
    const auto options = [effets, l](QRadioButton** o, const QString& nom, int ligne) {
      auto* groupe = new QWidget(effets);
      auto* h = new QHBoxLayout(groupe);
      h->setContentsMargins(0, 0, 0, 0);
      const char* legendes[2] = {"Normal", "Plus"};
      for (int i = 0; i < 2; ++i) {
        o[i] = Nomme(new QRadioButton(QString::fromUtf8(legendes[i]), groupe), nom + QString::number(i));
        h->addWidget(o[i]);
      }
      o[0]->setChecked(true);
      l->addWidget(groupe, ligne, 1);
    };
    auto* net = Bouton(QStringLiteral("cmdSharpen"), QStringLiteral("Netteté"), effets);
    connect(net, &QPushButton::clicked, this, [this] { cmdSharpen(); });
    l->addWidget(net, 1, 0);
    options(optSharpen_, QStringLiteral("optSharpen"), 1);
    auto* flou = Bouton(QStringLiteral("cmdBlur"), QStringLiteral("Flou"), effets);
    connect(flou, &QPushButton::clicked, this, [this] { cmdBlur(); });
    l->addWidget(flou, 2, 0);
    options(optBlur_, QStringLiteral("optBlur"), 2);
    auto* relief = Bouton(QStringLiteral("cmdEmbos"), QStringLiteral("Bas-relief"), effets);
    connect(relief, &QPushButton::clicked, this, [this] { cmdEmbos(); });
    l->addWidget(relief, 3, 0);
    auto* grRelief = new QWidget(effets);
    auto* hr = new QGridLayout(grRelief);
    hr->setContentsMargins(0, 0, 0, 0);
    const char* ombres[2] = {"Ombre à gauche", "Ombre à droite"};
    for (int i = 0; i < 2; ++i) {
      optBasRelief_[i] = Nomme(new QRadioButton(QString::fromUtf8(ombres[i]), grRelief),
                               QStringLiteral("optBasRelief%1").arg(i));
      hr->addWidget(optBasRelief_[i], 0, i);
    }
    optBasRelief_[0]->setChecked(true);
    chkNivBasRelief_ = Nomme(new QCheckBox(QStringLiteral(" Fort"), grRelief), QStringLiteral("chkNivBasRelief"));
    chkGrisBasRelief_ = Nomme(new QCheckBox(QStringLiteral(" Gris"), grRelief), QStringLiteral("chkGrisBasRelief"));
    hr->addWidget(chkNivBasRelief_, 1, 0);
    hr->addWidget(chkGrisBasRelief_, 1, 1);
    l->addWidget(grRelief, 3, 1);
  }
  SSTab1_->addTab(effets, QStringLiteral("Effets"));

  // Colours.
  auto* couleurs = new QWidget;
  {
    auto* l = new QVBoxLayout(couleurs);
    auto* cadre = new QGroupBox(
        QStringLiteral("Ajuster les couleurs par référence ou  manuellement   ( -100,0 %  à  +100,0% )  "), couleurs);
    auto* g = new QGridLayout(cadre);
    const char* canaux[3] = {"Rouge", "Vert", "Bleu"};
    for (int i = 0; i < 3; ++i) {
      g->addWidget(new QLabel(QString::fromUtf8(canaux[i]), cadre), 0, i);
      txtRGB_[i] = Boite(QStringLiteral("txtRGB%1").arg(i), cadre, false);
      // Values typed by hand are as good to apply as computed ones.
      connect(txtRGB_[i], &QLineEdit::textEdited, this, [this] { cmdAjusterRGB_->setEnabled(true); });
      g->addWidget(txtRGB_[i], 1, i);
      lblRGB_[i] = Nomme(new QLabel(QStringLiteral("000"), cadre), QStringLiteral("lblRGB%1").arg(i));
      g->addWidget(lblRGB_[i], 2, i);
    }
    cmdAjusterRGB_ = Bouton(QStringLiteral("cmdAjusterRGB"), QStringLiteral("Appliquer"), cadre);
    connect(cmdAjusterRGB_, &QPushButton::clicked, this, [this] { cmdAjusterRGB(); });
    g->addWidget(cmdAjusterRGB_, 1, 3);
    auto* init = Bouton(QStringLiteral("cmdInitRGB"), QStringLiteral("0"), cadre);
    connect(init, &QPushButton::clicked, this, [this] {
      for (auto* t : txtRGB_) t->setText(QStringLiteral("0"));
    });
    g->addWidget(init, 1, 4);
    auto* pipette = Bouton(QStringLiteral("cmdPipette"), QStringLiteral("Pipette"), cadre);
    connect(pipette, &QPushButton::clicked, this, [this] {
      if (!pipette_) pipette_ = new frmPipette(s_.ImageFiltre, ai_, this);
      pipette_->show();
      pipette_->raise();
    });
    g->addWidget(pipette, 2, 3);
    g->addWidget(new QLabel(QStringLiteral("Gris de référence :"), cadre), 3, 0, 1, 2);
    comboRefGris_ = Nomme(new QComboBox(cadre), QStringLiteral("comboRefGris"));
    comboRefGris_->setEditable(true);
    g->addWidget(comboRefGris_, 3, 2);
    picRefGris_ = Nomme(new QLabel(cadre), QStringLiteral("picRefGris"));
    picRefGris_->setFixedSize(24, 18);
    picRefGris_->setAutoFillBackground(true);
    g->addWidget(picRefGris_, 3, 3);
    connect(comboRefGris_, &QComboBox::activated, this, [this] {
      double r = 0;
      if (LireNombre(comboRefGris_->currentText(), r)) {
        const int v = std::clamp(int(VersEntier(r)), 0, 255);
        picRefGris_->setStyleSheet(QStringLiteral("background-color: rgb(%1,%1,%1);").arg(v));
      }
      cmdCalculerNivGris();
    });
    auto* calculer = Bouton(QStringLiteral("cmdCalculerNivGris"), QStringLiteral("Calculer"), cadre);
    connect(calculer, &QPushButton::clicked, this, [this] { cmdCalculerNivGris(); });
    g->addWidget(calculer, 3, 4);
    l->addWidget(cadre);
    auto* dominante = new QGroupBox(QStringLiteral(" Atténuer dominante :"), couleurs);
    auto* hd = new QHBoxLayout(dominante);
    const char* boutons[3] = {"Cyan", "Jaune", "Magenta"};
    for (int i = 0; i < 3; ++i) {
      auto* b = Bouton(QStringLiteral("cmdCorrCouleur%1").arg(i), QString::fromUtf8(boutons[i]), dominante);
      connect(b, &QPushButton::clicked, this, [this, i] { cmdCorrCouleur(i); });
      hd->addWidget(b);
    }
    chkCorCouleurFort_ = Nomme(new QCheckBox(QStringLiteral("Forte dominante"), dominante),
                               QStringLiteral("chkCorCouleurFort"));
    hd->addWidget(chkCorCouleurFort_);
    l->addWidget(dominante);
  }
  SSTab1_->addTab(couleurs, QStringLiteral("Couleurs"));

  auto* bas = new QHBoxLayout;
  auto* appliquer = Bouton(QStringLiteral("cmdAppliquer"), QStringLiteral("Appliquer les filtres"), this);
  auto* reinit = Bouton(QStringLiteral("cmdReinit"), QStringLiteral("Ré-initialiser"), this);
  reinit->setToolTip(QStringLiteral("Ré-initialiser l'image (supprime tous les filtres)"));
  auto* memoriser = Bouton(QStringLiteral("cmdMemoriserResult"), QStringLiteral("Mémoriser"), this);
  auto* sortir = Bouton(QStringLiteral("cmdSortir"), QStringLiteral("Sortir"), this);
  connect(appliquer, &QPushButton::clicked, this, [this] { cmdAppliquer(); });
  connect(reinit, &QPushButton::clicked, this, [this] { cmdReinit(); });
  connect(memoriser, &QPushButton::clicked, this, [this] { cmdMemoriserResult(); });
  connect(sortir, &QPushButton::clicked, this, [this] { cmdSortir(); });
  for (auto* b : {appliquer, reinit, memoriser, sortir}) bas->addWidget(b);
  racine->addLayout(bas);

  // Opening: controls at rest, the memory's lines, the picture from the formatted one.
  RazControles();
  RemplirListe();
  if (!ai_.IO_Copy(s_.ImageFormatee, s_.ImageFiltre)) Erreur();
  Montrer();
  vignettes_ = new frmFiltresVignette(s_, ai_, *this, parent);
  vignettes_->show();
}

frmFiltres::~frmFiltres() {
  if (vignettes_) delete vignettes_.data();
  ai_.IO_DestroyBitmap(s_.ImageFiltre);
}

frmFiltres* frmFiltres::Afficher(frmFichierPhoto& principal) {
  for (QWidget* w : QApplication::topLevelWidgets())
    if (auto* f = qobject_cast<frmFiltres*>(w); f && f->isVisible()) {
      f->raise();
      return f;
    }
  auto* f = new frmFiltres(principal.Session(), principal.Imagerie(), &principal, &principal);
  f->setAttribute(Qt::WA_DeleteOnClose);
  principal.FenetreOuverte(f);
  // Beside the picture they change where the screen leaves room, else where
  // they cover the least of it; the thumbnails clear of the filters.
  const QWidget* image = principal.findChild<QWidget*>(QStringLiteral("imaOrigine"));
  AjusterAEcran(f);
  PlacerACoteDe(f, image);
  f->show();
  if (f->vignettes_) {
    AjusterAEcran(f->vignettes_);
    PlacerACoteDe(f->vignettes_, image, {f});
  }
  return f;
}

void frmFiltres::Erreur() {
  Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Error - ") + ai_.Error_GetLast(),
                      Icone::Critique);
}

void frmFiltres::Montrer() {
  if (principal_ && !s_.ImageFiltre.Vide()) principal_->AfficherImage(s_.ImageFiltre);
}

template <typename F>
bool frmFiltres::Effet(F f, bool attente) {
  if (attente) QApplication::setOverrideCursor(Qt::WaitCursor);
  const bool ok = f();
  if (attente) QApplication::restoreOverrideCursor();
  if (!ok) {
    Erreur();
    return false;
  }
  Montrer();
  return true;
}

void frmFiltres::RazControles() {
  cumulLuminosite_ = cumulContraste_ = cumulGamma_ = 0;
  txtValLum_->setText(QStringLiteral("0"));
  txtValCont_->setText(QStringLiteral("0"));
  for (QSlider* s : {sldLuminosite_, sldContrast_}) {
    const QSignalBlocker b(s);
    s->setValue(0);
  }
  {
    const QSignalBlocker b(sldGama_);
    sldGama_->setRange(1, 9);
    sldGama_->setValue(5);
  }
  txtGama_->setText(QStringLiteral("0"));
  for (auto* t : txtRGB_) t->setText(QStringLiteral("0"));
  // Nothing to apply until the grey reference is computed or a value typed.
  cmdAjusterRGB_->setEnabled(false);
  for (auto* l : lblRGB_) l->setText(QStringLiteral("000"));
  picRefGris_->setStyleSheet(QStringLiteral("background-color: rgb(210,210,210);"));
  optSharpen_[0]->setChecked(true);
  optBlur_[0]->setChecked(true);
  optBasRelief_[0]->setChecked(true);
  comboRefGris_->clear();
  comboRefGris_->addItems(kRefGris);
  comboRefGris_->setCurrentText(QStringLiteral("210"));
}

void frmFiltres::RemplirListe() {
  comboLumCont_->clear();
  comboLumCont_->addItems(MemoireFiltresProgramme().LignesOuverture());
  cmdAppliquerListe_->setEnabled(comboLumCont_->count() > 0);
}

// ---------------------------------------------------------------- steps

void frmFiltres::LacherLuminosite(int v) {
  Effet([&] { return ai_.Effect_Brightness(s_.ImageFiltre, v); }, false);
  cumulLuminosite_ += v;
  txtValLum_->setText(QString::number(cumulLuminosite_));
}

void frmFiltres::LacherContraste(int v) {
  Effet([&] { return ai_.Effect_Contrast(s_.ImageFiltre, v); }, false);
  cumulContraste_ += v;
  txtValCont_->setText(QString::number(cumulContraste_));
}

void frmFiltres::LacherGamma(int position) {
  Effet([&] { return ai_.Effect_Gamma(s_.ImageFiltre, GammaPosition(position)); }, false);
  cumulGamma_ += FigureGamma(position);
  txtGama_->setText(QString::number(cumulGamma_));
}

void frmFiltres::cmdNivGris() {
  Effet([&] { return ai_.Effect_Grayscale(s_.ImageFiltre); }, true);
}

void frmFiltres::cmdInversion() {
  Effet([&] { return ai_.Effect_Invert(s_.ImageFiltre); }, true);
}

void frmFiltres::cmdSharpen() {
  Effet([&] { return ai_.Effect_Sharpen(s_.ImageFiltre, optSharpen_[0]->isChecked()); }, true);
}

void frmFiltres::cmdBlur() {
  Effet([&] { return ai_.Effect_Blur(s_.ImageFiltre, optBlur_[0]->isChecked()); }, true);
}

void frmFiltres::cmdEmbos() {
  const bool fort = chkNivBasRelief_->isChecked(), gris = chkGrisBasRelief_->isChecked();
  if (optBasRelief_[0]->isChecked())
    Effet([&] { return ai_.Effect_Emboss(s_.ImageFiltre, fort, gris); }, true);
  else
    Effet([&] { return ai_.Effect_Etch(s_.ImageFiltre, fort, gris); }, true);
}

void frmFiltres::cmdAjusterRGB() {
  const ValeursRVB v = LireValeursRVB({txtRGB_[0]->text(), txtRGB_[1]->text(), txtRGB_[2]->text()});
  if (!v.refus.isEmpty()) {
    Dialogues().Message(QLatin1String(TitreProgramme), v.refus, Icone::Exclamation);
    return;
  }
  Effet([&] { return ai_.Effect_RGB_Filter(s_.ImageFiltre, v.pourcents[0], v.pourcents[1], v.pourcents[2]); },
        false);
  // The pipette's panel back to rest.
  for (auto* l : lblRGB_) l->setText(QStringLiteral("000"));
}

void frmFiltres::cmdCorrCouleur(int index) {
  const std::array<float, 3> p = CorrectionCouleur(index, chkCorCouleurFort_->isChecked());
  Effet([&] { return ai_.Effect_RGB_Filter(s_.ImageFiltre, p[0], p[1], p[2]); }, false);
}

void frmFiltres::cmdCalculerNivGris() {
  std::array<int, 3> c{};
  for (int i = 0; i < 3; ++i) {
    double v = 0;
    LireNombre(lblRGB_[i]->text(), v);
    c[size_t(i)] = int(VersEntier(v));
  }
  double reference = 0;
  if (!LireNombre(comboRefGris_->currentText(), reference) || VersEntier(reference) == 0) {
    // Nothing is neutral against a black reference: the boxes stay.
    Dialogues().Message(QLatin1String(TitreProgramme),
                        QStringLiteral("Le gris de référence doit être un nombre supérieur à 0 !"),
                        Icone::Exclamation);
    return;
  }
  const auto r = CorrectionParGris(c, int(VersEntier(reference)));
  for (int i = 0; i < 3; ++i) txtRGB_[i]->setText(QString::number((*r)[size_t(i)]));
  cmdAjusterRGB_->setEnabled(true);
}

void frmFiltres::RecevoirCouleurPipette(int, int rouge, int vert, int bleu) {
  lblRGB_[0]->setText(QString::number(rouge));
  lblRGB_[1]->setText(QString::number(vert));
  lblRGB_[2]->setText(QString::number(bleu));
  cmdCalculerNivGris();
}

// ---------------------------------------------------------------- memory

void frmFiltres::cmdAjouterListe() {
  MemoireFiltres& m = MemoireFiltresProgramme();
  if (!m.Ajouter(cumulLuminosite_, cumulContraste_)) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Liste maximum atteinte!"),
                        Icone::Exclamation);
    return;
  }
  comboLumCont_->addItem(MemoireFiltres::LigneAjout(m.Nombre(), cumulLuminosite_, cumulContraste_));
  comboLumCont_->setCurrentIndex(comboLumCont_->count() - 1);
  cmdAppliquerListe_->setEnabled(true);
}

void frmFiltres::cmdAppliquerListe() {
  const MemoireFiltres& m = MemoireFiltresProgramme();
  const int i = m.EntreeDeLigne(comboLumCont_->currentIndex());
  if (i < 0) return;
  cumulLuminosite_ = m.Luminosite(i);
  cumulContraste_ = m.Contraste(i);
  Effet([&] { return ai_.Effect_Brightness(s_.ImageFiltre, cumulLuminosite_); }, false);
  Effet([&] { return ai_.Effect_Contrast(s_.ImageFiltre, cumulContraste_); }, false);
  txtValLum_->setText(QString::number(cumulLuminosite_));
  txtValCont_->setText(QString::number(cumulContraste_));
}

void frmFiltres::cmdEffacerListe() {
  if (Dialogues().Question(QStringLiteral("Liste de filtres en mémoire"),
                           QStringLiteral("Supprimer définitivement cette liste ?"), Boutons::OuiNon, Reponse::Non,
                           Icone::Question) != Reponse::Oui)
    return;
  MemoireFiltresProgramme().Vider();
  RemplirListe();
}

// ---------------------------------------------------------------- apply and leave

void frmFiltres::cmdAppliquer() {
  Bitmap sansFiltre, formatee, courante;
  if (!ai_.IO_Copy(s_.ImageCourante, sansFiltre) || !ai_.IO_Copy(s_.ImageFiltre, formatee) ||
      !ai_.IO_Copy(s_.ImageFiltre, courante)) {
    Erreur();
    return;
  }
  s_.ImageSansFiltre = std::move(sansFiltre);
  s_.ImageFormatee = std::move(formatee);
  s_.ImageCourante = std::move(courante);
  QPointer<frmFichierPhoto> principal = principal_;
  if (principal) principal->AfficherImage(s_.ImageCourante);
  close();
  if (principal) {
    principal->AfficherInfosImage();
    if (auto* a = principal->findChild<QAction*>(QStringLiteral("mnuAnnulerFiltres"))) a->setEnabled(true);
  }
  Dialogues().Message(QStringLiteral("Filtres OK"),
                      QStringLiteral("Vos filtres sont maintenant appliqués à l'image.\n(Vous pouvez encore les "
                                     "annuler avec : Outils/Filtres/Annuler tous les filtres)"),
                      Icone::Information);
}

void frmFiltres::cmdReinit() {
  if (!ai_.IO_Copy(s_.ImageFormatee, s_.ImageFiltre)) Erreur();
  Montrer();
  RazControles();
}

void frmFiltres::cmdSortir() {
  cmdReinit();
  close();
  if (principal_) principal_->show();
}

void frmFiltres::cmdMemoriserResult() {
  if (vignettes_) vignettes_->cmdConserver();
}

void frmFiltres::closeEvent(QCloseEvent* e) {
  // Filters not applied leave the main window: it shows the session's picture again.
  if (principal_ && !s_.ImageCourante.Vide()) principal_->AfficherImage(s_.ImageCourante);
  if (vignettes_) vignettes_->close();
  if (pipette_) pipette_->close();
  QWidget::closeEvent(e);
}

}  // namespace tg
