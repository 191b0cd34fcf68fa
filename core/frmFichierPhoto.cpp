#include "core/frmFichierPhoto.h"

#include <QAction>
#include <QApplication>
#include <QCoreApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QThreadPool>
#include <memory>
#include <QScrollBar>
#include <QSlider>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include "core/Adresses.h"
#include "core/Chargement.h"
#include "core/Demarrage.h"
#include "core/FormatsSortie.h"
#include "core/Icones.h"
#include "core/LogiquePrincipale.h"
#include "core/Session.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Dialogues.h"
#include "platform/Ecran.h"
#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Systeme.h"
#include "version.h"

namespace tg {

namespace {

constexpr int kBarre = 16;           // pixels, thickness of the scroll bars
constexpr int kHauteurExif = 61;     // pixels, the metadata box when reduced
constexpr int kGaucheExif = 296;     // pixels, left of the metadata box
constexpr int kDelaiAccueil = 3000;  // ms, the welcome picture

QString Titre() { return QLatin1String(TitreProgramme); }

// Captions of the toolbar buttons (the keys are their objectNames).
QString LegendeBouton(const QString& cle) {
  static const std::map<QString, QString> legendes = {
      {"Ouvrir", "Ouvrir"},       {"RedimAuto", "Formater"}, {"Cartouche", "Cartouche"},
      {"Sauver", "Sauver"},       {"Mesure", "Mesurer"},     {"anotations", "Annotations"},
      {"Etalonner", "Etalonner"}, {"Rotation", "Rotation"},  {"Recadrer", "Recadrer"},
      {"Filtres", "Filtres"},     {"Exporter", "Exporter"},  {"Importer", "Importer"},
      {"Copier", "Copier"}};
  const auto it = legendes.find(cle);
  return it != legendes.end() ? it->second : cle;
}

QString InfoBulleBouton(const QString& cle) {
  static const std::map<QString, QString> bulles = {
      {"Ouvrir", "1 - Ouvrir une image"},
      {"RedimAuto", "2 - Redimensionner au format de sortie"},
      {"Cartouche", "3 - Ajouter le cartouche"},
      {"Sauver", "4 - Enregistrer le résultat"},
      {"Mesure", "Mesurer sur l'image"},
      {"anotations", "Annoter l'image"},
      {"Etalonner", "Etalonnage sur image, création de table"},
      {"Rotation", "Rotation de 90° à droite"},
      {"Recadrer", "Recadrer l'image"},
      {"Filtres", "Filtres"},
      {"Exporter", "Exporter vers une application externe"},
      {"Importer", "Importer l'image modifiée"},
      {"Copier", "Copie de l'image en cours"}};
  const auto it = bulles.find(cle);
  return it != bulles.end() ? it->second : QString();
}

void PoserIcone(QLabel* l, const QString& nom) {
  l->setPixmap(IconeIndicateur(nom));
  l->setProperty("icone", nom);
}

QLineEdit* Champ(QWidget* parent, const QString& nom, int largeur) {
  auto* c = new QLineEdit(parent);
  c->setObjectName(nom);
  c->setReadOnly(true);
  if (largeur > 0) c->setFixedWidth(largeur);
  return c;
}

// The status strip asks no more width than its wider part: given less than
// both need, they go on two rows (DisposerInfos) and the window never grows
// past the screen for it.
class BandeauInfos : public QWidget {
 public:
  using QWidget::QWidget;
  std::pair<QWidget*, QWidget*> parties{};
  QSize minimumSizeHint() const override {
    const QSize m = QWidget::minimumSizeHint();
    if (!parties.first || !parties.second) return m;
    return {std::max(parties.first->minimumSizeHint().width(), parties.second->minimumSizeHint().width()), m.height()};
  }
};

QLabel* Indicateur(QWidget* parent, const QString& nom, const QString& icone) {
  auto* l = new QLabel(parent);
  l->setObjectName(nom);
  l->setFixedSize(32, 32);
  PoserIcone(l, icone);
  return l;
}

}  // namespace

frmFichierPhoto::frmFichierPhoto(SessionRecord& session, cAdvancedImagery& imagerie,
                                 QWidget* parent)
    : QMainWindow(parent), s_(session), ai_(imagerie), filtreImages_(FiltreAvecPhotos(FiltreFichiersImage())) {
  setObjectName(QStringLiteral("frmFichierPhoto"));
  resize(1024, 740);
  ConstruireToolbars();
  ConstruireMenus();
  ConstruireCentre();
  ConstruirePanneauCopier();
  Charger();
}

frmFichierPhoto::~frmFichierPhoto() = default;

// ---------------------------------------------------------------- construction

void frmFichierPhoto::ConstruireToolbars() {
  const auto construire = [this](const QString& nom, const QStringList& cles, Qt::ToolBarArea zone,
                                 bool etapes) {
    auto* t = new QToolBar(nom, this);
    t->setObjectName(nom);
    t->setMovable(false);
    t->setIconSize(QSize(32, 32));
    t->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    for (const QString& cle : cles) {
      auto* a = new QAction(IconeBouton(cle, false), LegendeBouton(cle), t);
      a->setObjectName(cle);
      a->setToolTip(InfoBulleBouton(cle));
      a->setCheckable(true);
      a->setProperty("enfonce", false);
      a->setProperty("marque", false);
      connect(a, &QAction::triggered, this, [this, a, cle, etapes] {
        // Only the stages press a button: a click leaves it as it was.
        a->setChecked(a->property("enfonce").toBool());
        etapes ? CliqueToolbar1(cle) : CliqueToolbar2(cle);
      });
      t->addAction(a);
    }
    addToolBar(zone, t);
    return t;
  };
  toolbar1_ = construire(QStringLiteral("Toolbar1"), BoutonsToolbar1, Qt::TopToolBarArea, true);
  toolbar2_ = construire(QStringLiteral("Toolbar2"), BoutonsToolbar2, Qt::LeftToolBarArea, false);
}

QAction* frmFichierPhoto::Entree(QMenu* menu, const QString& nom, const QString& titre,
                                 std::function<void()> effet) {
  QAction* a = menu->addAction(titre);
  a->setObjectName(nom);
  if (effet) connect(a, &QAction::triggered, this, std::move(effet));
  return a;
}

QMenu* frmFichierPhoto::SousMenu(QMenu* parent, const QString& nom, const QString& titre) {
  QMenu* m = parent != nullptr ? parent->addMenu(titre) : menuBar()->addMenu(titre);
  m->setObjectName(nom);
  return m;
}

void frmFichierPhoto::ConstruireMenus() {
  const auto crochet = [this](const QString& nom) { return [this, nom] { Appeler(nom); }; };

  QMenu* fichier = SousMenu(nullptr, QStringLiteral("mnuFichier"), QStringLiteral("&Fichier"));
  Entree(fichier, "mnuOuvriFichier", "Charger une image", crochet("mnuOuvriFichier"));
  Entree(fichier, "mnuOuvriFichierEtalon", "Charger une image d'étalon",
         crochet("mnuOuvriFichierEtalon"));
  Entree(fichier, "mnuSearch", "Rechercher - Visionner", crochet("frmSearch"));
  fichier->addSeparator();
  Entree(fichier, "mnuSauveResult", "Enregistrer le résultat", crochet("frmEnregistrer"));
  fichier->addSeparator();
  Entree(fichier, "mnuChargerClipBoard", "Acquérir une image du p.papier",
         crochet("mnuChargerClipBoard"));
  QMenu* acquisition = SousMenu(fichier, "mnuAcquisition", "Acquérir (Twain32)");
  Entree(acquisition, "mnuSelectSrcTwain", "Sélectionner la source", crochet("mnuSelectSrcTwain"));
  Entree(acquisition, "mnuAcquireTwain", "Acquisition directe", crochet("mnuAcquireTwain"));
  Entree(acquisition, "mnuAcquireFileTwain", "Acquérir dans un fichier",
         crochet("mnuAcquireFileTwain"));
  Entree(fichier, "mnuCreateEmptyImage", "Créer une image vide", crochet("mnuCreateEmptyImage"));
  fichier->addSeparator();
  QMenu* copie = SousMenu(fichier, "mnuSauverTemp", "Copie de l'image en cours");
  Entree(copie, "mnuSauverTempPapier", "Dans le presse-papier", [this] { CopierPressePapier(); });
  Entree(copie, "mnuSauverTempFichier", "Dans un fichier", [this] { CopierFichier(); });
  fichier->addSeparator();
  mnuRecent_ = SousMenu(fichier, "mnuRecent", "Récents");
  fichier->addSeparator();
  Entree(fichier, "mnuQuitter", "&Quitter", [this] { close(); });

  QMenu* edition = SousMenu(nullptr, "mnuEdition", "F&ormatage");
  QMenu* rotation = SousMenu(edition, "mnuRotation", "Rotation");
  Entree(rotation, "mnuRot90G", "90° Gauche", [this] { TournerImage(90); });
  Entree(rotation, "mnuRot90D", "90° Droite", [this] { TournerImage(270); });
  Entree(rotation, "mnuRot180", "180°", [this] { TournerImage(180); });
  Entree(edition, "mnuRecadrer", "Recadrer", [this] { mnuRecadrer(); });
  QMenu* redim = SousMenu(edition, "mnuRedim", "Redimensionner");
  Entree(redim, "mnuRedimAuto", "Automatique", crochet("mnuRedimAuto"));

  QMenu* outils = SousMenu(nullptr, "mnuOutils", "&Outils");
  QMenu* filtre = SousMenu(outils, "mnuFiltre", "Filtres");
  Entree(filtre, "mnuFiltres2", "Fenêtre filtres", crochet("frmFiltres"));
  Entree(filtre, "mnuAnnulerFiltres", "Annuler tous les filtres", [this] { mnuAnnulerFiltres(); });
  Entree(outils, "mnuAnnulerAnnotation", "Supprimer annotations",
         [this] { mnuAnnulerAnnotation(); });
  Entree(outils, "mnuEditComments", "Editeur de métadonnées", [this] { mnuEditComments(); });
  outils->addSeparator();
  mnuApExtmnu_ = SousMenu(outils, "mnuApExtmnu", "Applications  externes");
  outils->addSeparator();
  Entree(outils, "mnuOptions", "Options (configuration)", crochet("frmConfig"));
  Entree(outils, "mnuScreenInfos", "Infos écran", [this] { mnuScreenInfos(); });

  QMenu* mesures = SousMenu(nullptr, "mnuMesures", "&Mesures");
  Entree(mesures, "mnuMesurerEtalon", "Etalonnage sur image, création de table",
         [this] { mnuMesurerEtalon(); });
  Entree(mesures, "mnuMesureImage", "Mesure sur la nouvelle image", [this] { mnuMesureImage(); });
  Entree(mesures, "mnuMesureImageTemp", "Récupérer une échelle et mesurer",
         [this] { mnuMesureImageTemp(); });
  mesures->addSeparator();
  Entree(mesures, "mnuGestionTables", "Gestion des tables de mesure",
         [this] { mnuGestionTables(); });
  Entree(mesures, "mnuExtrapolFocale", "Extrapolation de focale", crochet("frmExtrapolFocale"));
  Entree(mesures, "mnuAjoutTable", "Ajouter une table manuellement", crochet("frmGenMesures"));

  QMenu* aide = SousMenu(nullptr, "mnuAide", "&?");
  Entree(aide, "mnuHelp", "Aide (web)",
         [this] { Systeme().OuvrirAdresse(AdresseAide(), s_.PathNav); });
  QMenu* web = SousMenu(aide, "mnuWeb", "Forum");
  Entree(web, "mnuWebNaturaliste", "Le Naturaliste",
         [this] { Systeme().OuvrirAdresse(QLatin1String(AdresseForumNaturaliste), s_.PathNav); });
  Entree(web, "mnuWebDoraisidren", "Doraisidren",
         [this] { Systeme().OuvrirAdresse(QLatin1String(AdresseForumDoraisidren), s_.PathNav); });
  Entree(aide, "mnuUpdate", "Mises à jour ...", crochet("mnuUpdate"));
  aide->addSeparator();
  Entree(aide, "mnuApropos", "A propos ...", [this] { mnuApropos(); });
}

void frmFichierPhoto::ConstruireCentre() {
  auto* centre = new QWidget(this);
  centre->setObjectName(QStringLiteral("fraCentre"));
  auto* vbox = new QVBoxLayout(centre);
  vbox->setContentsMargins(4, 4, 4, 4);

  // Status strip: the picture's fields, then the file's; the file's go
  // under the picture's when the screen is too narrow for one row.
  auto* infos = new BandeauInfos(centre);
  infos->setObjectName(QStringLiteral("fraInfos"));
  grilleInfos_ = new QGridLayout(infos);
  grilleInfos_->setContentsMargins(0, 0, 0, 0);
  grilleInfos_->setVerticalSpacing(2);
  infosImage_ = new QWidget(infos);
  infosImage_->setObjectName(QStringLiteral("fraInfosImage"));
  auto* h = new QHBoxLayout(infosImage_);
  h->setContentsMargins(0, 0, 0, 0);
  h->addWidget(Champ(infosImage_, "txtPathOrigine", 0), 3);
  h->addWidget(Indicateur(infosImage_, "imgInfoTaille", "Taille"));
  h->addWidget(Champ(infosImage_, "txtTaille", 90));
  h->addWidget(Indicateur(infosImage_, "imgInfoCadrage", "ApnVide"));
  h->addWidget(Champ(infosImage_, "txtCadrage", 70));
  h->addWidget(Indicateur(infosImage_, "imgInfoZoom", "ZoomVide"));
  h->addWidget(Champ(infosImage_, "txtFocale", 70));
  txtDigitalZoom_ = Champ(infosImage_, "txtDigitalZoom", 90);
  h->addWidget(txtDigitalZoom_);
  infosFichier_ = new QWidget(infos);
  infosFichier_->setObjectName(QStringLiteral("fraInfosFichier"));
  h = new QHBoxLayout(infosFichier_);
  h->setContentsMargins(0, 0, 0, 0);
  lblTickCount_ = new QLabel(infosFichier_);
  lblTickCount_->setObjectName(QStringLiteral("lblTickCount"));
  lblTickCount_->setMinimumWidth(90);
  h->addWidget(lblTickCount_, 1);
  auto* lblInfosPoids = new QLabel(QStringLiteral("Poids (ko) :"), infosFichier_);
  lblInfosPoids->setObjectName(QStringLiteral("lblInfosPoids"));
  h->addWidget(lblInfosPoids);
  h->addWidget(Champ(infosFichier_, "txtPoidsFichier", 60));
  auto* agrandir = new QPushButton(QStringLiteral("+"), infosFichier_);
  agrandir->setObjectName(QStringLiteral("cmdAgrandirTxtExif"));
  agrandir->setFixedWidth(26);
  agrandir->setToolTip(QStringLiteral("Afficher les métadonnées"));
  connect(agrandir, &QPushButton::clicked, this, [this] { AgrandirTxtExif(); });
  h->addWidget(agrandir);
  auto* reduire = new QPushButton(QStringLiteral("-"), infosFichier_);
  reduire->setObjectName(QStringLiteral("cmdReduirTxtExif"));
  reduire->setFixedWidth(26);
  connect(reduire, &QPushButton::clicked, this, [this] { ReduireTxtExif(); });
  h->addWidget(reduire);
  infos->parties = {infosImage_, infosFichier_};
  grilleInfos_->addWidget(infosImage_, 0, 0);
  grilleInfos_->addWidget(infosFichier_, 0, 1);
  grilleInfos_->setColumnStretch(0, 3);
  grilleInfos_->setColumnStretch(1, 1);
  infos->installEventFilter(this);
  vbox->addWidget(infos);

  // The display.
  picCadre_ = new QFrame(centre);
  picCadre_->setObjectName(QStringLiteral("picCadre"));
  picCadre_->setFrameShape(QFrame::StyledPanel);
  picCadre_->setBackgroundRole(QPalette::Dark);
  picCadre_->setAutoFillBackground(true);
  picCadre_->setMinimumSize(200, 150);
  picCadre_->installEventFilter(this);
  imaOrigine_ = new QLabel(picCadre_);
  imaOrigine_->setObjectName(QStringLiteral("imaOrigine"));
  imaOrigine_->resize(640, 480);
  imgAccueil_ = new QLabel(picCadre_);
  imgAccueil_->setObjectName(QStringLiteral("imgAccueil"));
  imgAccueil_->installEventFilter(this);
  hScroll_ = new QScrollBar(Qt::Horizontal, picCadre_);
  hScroll_->setObjectName(QStringLiteral("HScroll1"));
  vScroll_ = new QScrollBar(Qt::Vertical, picCadre_);
  vScroll_->setObjectName(QStringLiteral("VScroll1"));
  hScroll_->hide();
  vScroll_->hide();
  const auto deplacer = [this] {
    imaOrigine_->move(hScroll_->isVisible() ? -hScroll_->value() : 0,
                      vScroll_->isVisible() ? -vScroll_->value() : 0);
  };
  connect(hScroll_, &QScrollBar::valueChanged, this, deplacer);
  connect(vScroll_, &QScrollBar::valueChanged, this, deplacer);
  txtExif_ = new QPlainTextEdit(picCadre_);
  txtExif_->setObjectName(QStringLiteral("txtExif"));
  txtExif_->setReadOnly(true);
  txtExif_->hide();
  vbox->addWidget(picCadre_, 1);

  // Zoom and output format.
  auto* bas = new QWidget(centre);
  bas->setObjectName(QStringLiteral("fraZoom"));
  auto* hb = new QHBoxLayout(bas);
  hb->setContentsMargins(0, 0, 0, 0);
  slider_ = new QSlider(Qt::Horizontal, bas);
  slider_->setObjectName(QStringLiteral("Slider1"));
  slider_->setRange(1, 1000);  // percent
  slider_->setValue(100);
  slider_->setMinimumWidth(80);
  slider_->setMaximumWidth(220);
  connect(slider_, &QSlider::valueChanged, this, [this] { AppliquerZoom(); });
  hb->addWidget(slider_);
  lblValueSlider_ = new QLabel(bas);
  lblValueSlider_->setObjectName(QStringLiteral("lblValueSlider"));
  lblValueSlider_->setMinimumWidth(50);
  hb->addWidget(lblValueSlider_);
  auto* centPourCent = new QPushButton(QStringLiteral("100 %"), bas);
  centPourCent->setObjectName(QStringLiteral("cmdCentpCent"));
  centPourCent->setToolTip(QStringLiteral("Taille réelle"));
  connect(centPourCent, &QPushButton::clicked, this, [this] {
    slider_->setValue(100);
    if (s_.Etape >= 3)
      AfficherImage(s_.ImageCourante);
    else
      AppliquerZoom();
  });
  hb->addWidget(centPourCent);
  auto* largeur = new QPushButton(QStringLiteral("Ajuster"), bas);
  largeur->setObjectName(QStringLiteral("cmdLargeur"));
  largeur->setToolTip(QStringLiteral("Ajuster à la fenêtre"));
  connect(largeur, &QPushButton::clicked, this, [this] { AjusterAffichage(); });
  hb->addWidget(largeur);
  hb->addStretch(1);
  hb->addWidget(new QLabel(QStringLiteral("Format de sortie :"), bas));
  lblFormatSortie_ = new QLabel(bas);
  lblFormatSortie_->setObjectName(QStringLiteral("lblFormatSortie"));
  lblFormatSortie_->setAutoFillBackground(true);
  lblFormatSortie_->setMinimumWidth(90);
  lblFormatSortie_->setAlignment(Qt::AlignCenter);
  hb->addWidget(lblFormatSortie_);
  for (int i = 0; i < int(FormatsSortie.size()); ++i) {
    auto* b = new QPushButton(bas);
    b->setObjectName(QStringLiteral("PicFormat%1").arg(i));
    b->setFixedSize(22, 22);
    b->setToolTip(QLatin1String(FormatsSortie[i].infoBulle));
    connect(b, &QPushButton::clicked, this, [this, i] {
      const auto it = crochetsIndex_.find(QStringLiteral("PicFormat"));
      if (it != crochetsIndex_.end() && it->second) it->second(i);
    });
    picFormat_.push_back(b);
    hb->addWidget(b);
  }
  vbox->addWidget(bas);

  timer1_ = new QTimer(this);
  timer1_->setObjectName(QStringLiteral("Timer1"));
  timer1_->setSingleShot(true);
  connect(timer1_, &QTimer::timeout, this, [this] { MasquerAccueil(); });

  setCentralWidget(centre);
}

void frmFichierPhoto::ConstruirePanneauCopier() {
  picDialogueCopier_ = new QFrame(this);
  picDialogueCopier_->setObjectName(QStringLiteral("picDialogueCopier"));
  picDialogueCopier_->setFrameShape(QFrame::Box);
  picDialogueCopier_->setAutoFillBackground(true);
  auto* v = new QVBoxLayout(picDialogueCopier_);
  auto* avertissement = new QLabel(
      QStringLiteral("Attention : Ne pas confondre cet outil avec un traitement externe (cf "
                     "Aide) ! Vous ne devez pas utiliser cette option pour retoucher l'image "
                     "courrante (= perte des métadonnées)."),
      picDialogueCopier_);
  avertissement->setObjectName(QStringLiteral("lblAvertissementCopier"));
  avertissement->setWordWrap(true);
  v->addWidget(avertissement);
  auto* question =
      new QLabel(QStringLiteral("Où voulez-vous copier l'image courrante ?"), picDialogueCopier_);
  question->setObjectName(QStringLiteral("lblQuestionCopier"));
  v->addWidget(question);
  auto* boutons = new QHBoxLayout;
  const auto bouton = [&](const char* nom, const char* texte, std::function<void()> f) {
    auto* b = new QPushButton(QString::fromUtf8(texte), picDialogueCopier_);
    b->setObjectName(QLatin1String(nom));
    connect(b, &QPushButton::clicked, this, std::move(f));
    boutons->addWidget(b);
  };
  bouton("cmdCopierPressePapier", "Presse-papier", [this] { CopierPressePapier(); });
  bouton("cmdCopierFichier", "Fichier", [this] { CopierFichier(); });
  bouton("cmdAnnulerCopier", "Annuler", [this] { picDialogueCopier_->hide(); });
  v->addLayout(boutons);
  picDialogueCopier_->resize(380, 170);
  picDialogueCopier_->hide();
}

// ---------------------------------------------------------------- load

void frmFichierPhoto::Charger() {
  setWindowTitle(TitreFenetrePrincipale());

  if (s_.ImageAccueil == u"1") {
    PoserIcone(imgAccueil_, QStringLiteral("Accueil"));
    imgAccueil_->adjustSize();
    imgAccueil_->move(20, 20);
    imgAccueil_->show();
    imgAccueil_->raise();
    timer1_->start(kDelaiAccueil);
  } else {
    imgAccueil_->hide();
  }

  imaOrigine_->hide();
  // Working files of the last session; the open dialog starts among the photos.
  NettoyerFichiersTravail(s_);
  PlacerDossierPhotos(s_);

  s_.Etape = 0;
  AppliquerEtape();

  lblValueSlider_->setText(QString::number(slider_->value()) + " %");
  hScroll_->hide();
  vScroll_->hide();

  AfficherInfosImage();
  const QString rep = RepApplication();
  if (auto* gestion = findChild<QAction*>(QStringLiteral("mnuGestionTables")))
    gestion->setEnabled(FileExists(rep + "table_mesure.dat") ||
                        FileExists(rep + "table_mesure.bak"));
  RafraichirApplicationsExternes();
  ColorerFormats();
}

void frmFichierPhoto::ColorerFormats() {
  for (int i = 0; i < int(picFormat_.size()); ++i)
    picFormat_[i]->setStyleSheet(QStringLiteral("background-color: %1; border: 1px solid #404040;")
                                     .arg(CouleurBGR(FormatsSortie[i].couleur).name()));
  const int choix = s_.ChoixFormat;
  if (choix >= 0 && choix < int(FormatsSortie.size())) {
    const FormatSortie& f = FormatsSortie[choix];
    lblFormatSortie_->setText(QStringLiteral("%1 x %2").arg(f.largeur).arg(f.hauteur));
    QPalette p = lblFormatSortie_->palette();
    p.setColor(QPalette::Window, CouleurBGR(f.couleur));
    lblFormatSortie_->setPalette(p);
  } else {
    lblFormatSortie_->setText(
        QStringLiteral("%1 x %2").arg(s_.ApnLargCourant).arg(s_.ApnHautCourant));
  }
}

void frmFichierPhoto::AfficherRecents(const QStringList& titres) {
  for (QAction* a : mnuRecent_->actions()) {
    mnuRecent_->removeAction(a);
    a->deleteLater();
  }
  for (int i = 1; i <= std::min<int>(5, int(titres.size())); ++i)
    Entree(mnuRecent_, QStringLiteral("mnuRecent%1").arg(i), titres[i - 1], [this, i] {
      const auto it = crochetsIndex_.find(QStringLiteral("mnuRecent"));
      if (it != crochetsIndex_.end() && it->second) it->second(i);
    });
}

void frmFichierPhoto::RafraichirApplicationsExternes() {
  for (QAction* a : mnuApExtmnu_->actions()) {
    mnuApExtmnu_->removeAction(a);
    a->deleteLater();
  }
  for (int i = 0; i < int(s_.ApExt.size()); ++i) {
    if (s_.ApExt[i].isEmpty()) continue;
    Entree(mnuApExtmnu_, QStringLiteral("mnuApExterne%1").arg(i), QFileInfo(s_.ApExt[i]).fileName(),
           [this, i] {
             const auto it = crochetsIndex_.find(QStringLiteral("mnuApExterne"));
             if (it != crochetsIndex_.end() && it->second) it->second(i);
           });
  }
}

// ---------------------------------------------------------------- stages

void frmFichierPhoto::AppliquerEtape() {
  const EtatEtape e = EtatPourEtape(s_.Etape, s_);
  for (const Changement& c : e.changements) AppliquerChangement(c);
  for (const QString& nom : e.fenetresAFermer) FermerFenetres(nom);
  if (e.viderAffichage) ViderAffichage();
  DisposerInfos();
  // The final picture whole, its cartouche included, behind the stage's help.
  if (s_.Etape == 3) AfficherImageEntiere();
  if (e.amenerDevant) {
    raise();
    activateWindow();
  }
  if (e.messageAide) {
    Dialogues().MsgBoxEx(*e.messageAide, s_.MessageBox);
    // Written ticked or not: the file always holds the last answer.
    EcrireIni(QStringLiteral("General"), QStringLiteral("MessageBox"),
              QString::number(s_.MessageBox), CheminUserConfig());
  }
}

void frmFichierPhoto::AppliquerChangement(const Changement& c) {
  QObject* o = findChild<QObject*>(c.controle);
  if (o == nullptr) return;
  QAction* action = qobject_cast<QAction*>(o);
  if (auto* menu = qobject_cast<QMenu*>(o)) action = menu->menuAction();
  QWidget* widget = action == nullptr ? qobject_cast<QWidget*>(o) : nullptr;

  switch (c.genre) {
    case Changement::Actif:
      if (action) action->setEnabled(c.valeur);
      if (widget) widget->setEnabled(c.valeur);
      break;
    case Changement::Enfonce:
      if (action) {
        action->setProperty("enfonce", c.valeur);
        action->setChecked(c.valeur);
      }
      break;
    case Changement::Marque:
      if (action) MarquerBouton(action, c.valeur);
      break;
    case Changement::Visible:
      if (action) action->setVisible(c.valeur);
      if (widget) widget->setVisible(c.valeur);
      break;
    case Changement::Texte:
      if (auto* l = qobject_cast<QLineEdit*>(widget))
        l->setText(c.texte);
      else if (auto* lb = qobject_cast<QLabel*>(widget))
        lb->setText(c.texte);
      else if (auto* t = qobject_cast<QPlainTextEdit*>(widget))
        t->setPlainText(c.texte);
      break;
    case Changement::Icone:
      if (auto* lb = qobject_cast<QLabel*>(widget)) PoserIcone(lb, c.texte);
      break;
  }
}

void frmFichierPhoto::MarquerBouton(QAction* a, bool marque) {
  a->setProperty("marque", marque);
  a->setIcon(IconeBouton(a->objectName(), marque));
}

void frmFichierPhoto::FermerFenetres(const QString& nom) {
  for (QWidget* w : QApplication::topLevelWidgets())
    if (w->objectName() == nom && qobject_cast<frmFichierPhoto*>(w) == nullptr) w->close();
}

// ---------------------------------------------------------------- display

void frmFichierPhoto::ViderAffichage() {
  imaOrigine_->clear();
  imaOrigine_->setScaledContents(false);
  imaOrigine_->move(0, 0);
  imaOrigine_->resize(640, 480);
  imageAffichee_ = false;
  hScroll_->hide();
  vScroll_->hide();
}

bool frmFichierPhoto::ConvertirPourAffichage(const Bitmap& image, QImage& sortie) {
  const QScreen* ecran = screen() ? screen() : QGuiApplication::primaryScreen();
  const QSize taille = ecran ? ecran->size() * ecran->devicePixelRatio() : QSize(1920, 1200);
  const int cote = std::max(taille.width(), taille.height());
  const int l = ai_.Info_Width(image), h = ai_.Info_Height(image);
  if (std::max(l, h) >= 2 * cote) {
    Bitmap reduite;
    if (ai_.Effect_Reduire(image, reduite, cote) && ai_.Convert_ImageToPicture(reduite, sortie)) return true;
  }
  return ai_.Convert_ImageToPicture(image, sortie);
}

bool frmFichierPhoto::AfficherImage(const Bitmap& image) {
  QImage img;
  if (!ConvertirPourAffichage(image, img)) {
    Erreur("Error - " + ai_.Error_GetLast());
    return false;
  }
  return AfficherImage(image, img);
}

bool frmFichierPhoto::AfficherImage(const Bitmap& image, const QImage& img) {
  // Only the session's own pictures stay reachable for a later whole conversion.
  const bool session = &image == &s_.ImageCourante || &image == &s_.ImageFormatee || &image == &s_.ImageFiltre ||
                       &image == &s_.ImageSansFiltre;
  affichageReduit_ = img.width() < ai_.Info_Width(image);
  ++generationAffichage_;
  sourceAffichee_ = session ? &image : nullptr;
  dibAffiche_ = image.Get();
  imaOrigine_->setPixmap(QPixmap::fromImage(img));
  imaOrigine_->setScaledContents(true);
  imageAffichee_ = true;
  imaOrigine_->show();
  AppliquerZoom();
  return true;
}

void frmFichierPhoto::AppliquerZoom() {
  const int pourcent = slider_->value();
  lblValueSlider_->setText(QString::number(pourcent) + " %");
  if (!imageAffichee_) return;
  int l = s_.Largeur, h = s_.Hauteur;
  if (l <= 0 || h <= 0) {  // record not filled yet: the picture's own size
    l = imaOrigine_->pixmap().width();
    h = imaOrigine_->pixmap().height();
  }
  const QSize affichee = TailleAffichee(pourcent, l, h);
  // Zoomed beyond the reduced copy: the whole picture, converted from a copy
  // on a worker thread, takes its place when it is ready, if still the one shown.
  if (affichageReduit_ && !conversionEnCours_ && affichee.width() > imaOrigine_->pixmap().width() &&
      sourceAffichee_ && sourceAffichee_->Get() == dibAffiche_) {
    auto copie = std::make_shared<Bitmap>();
    if (ai_.IO_Copy(*sourceAffichee_, *copie)) {
      conversionEnCours_ = true;
      const int generation = generationAffichage_;
      QPointer<frmFichierPhoto> moi(this);
      QThreadPool::globalInstance()->start([copie, generation, moi] {
        cAdvancedImagery ai;
        QImage entiere;
        ai.Convert_ImageToPicture(*copie, entiere);
        QMetaObject::invokeMethod(
            // Not qApp's downcast: the application may be in its destructor,
            // waiting for this pool.
            QCoreApplication::instance(), [moi, generation, entiere] {
              if (!moi) return;
              moi->conversionEnCours_ = false;
              if (moi->generationAffichage_ != generation || !moi->affichageReduit_ || entiere.isNull()) return;
              moi->imaOrigine_->setPixmap(QPixmap::fromImage(entiere));
              moi->affichageReduit_ = false;
            },
            Qt::QueuedConnection);
      });
    }
  }
  imaOrigine_->resize(affichee);
  PlacerBarres();
}

void frmFichierPhoto::PlacerBarres() {
  if (!imageAffichee_) {
    hScroll_->hide();
    vScroll_->hide();
    return;
  }
  const QSize cadre = picCadre_->size();
  const QSize image = imaOrigine_->size();
  const Barres b = BarresVisibles(image, cadre);
  hScroll_->setRange(0, std::max(0, image.width() - cadre.width()));
  hScroll_->setPageStep(cadre.width());
  vScroll_->setRange(0, std::max(0, image.height() - cadre.height()));
  vScroll_->setPageStep(cadre.height());
  hScroll_->setGeometry(0, cadre.height() - kBarre, cadre.width() - (b.verticale ? kBarre : 0),
                        kBarre);
  vScroll_->setGeometry(cadre.width() - kBarre, 0, kBarre,
                        cadre.height() - (b.horizontale ? kBarre : 0));
  hScroll_->setVisible(b.horizontale);
  vScroll_->setVisible(b.verticale);
  hScroll_->raise();
  vScroll_->raise();
  imaOrigine_->move(b.horizontale ? -hScroll_->value() : 0, b.verticale ? -vScroll_->value() : 0);
}

void frmFichierPhoto::AjusterAffichage() {
  if (s_.ImageCourante.Vide()) return;
  const auto pourcent = PourcentageAjuste(picCadre_->width(), picCadre_->height(), s_.Largeur,
                                          s_.Hauteur, s_.Cadrage, s_.ZoneLargeur, s_.ZoneHauteur);
  if (!pourcent) return;
  slider_->setValue(*pourcent);
  AppliquerZoom();
}

void frmFichierPhoto::DisposerInfos() {
  const int place = infosImage_->parentWidget()->width();
  const int besoin = infosImage_->minimumSizeHint().width() + grilleInfos_->horizontalSpacing() +
                     infosFichier_->minimumSizeHint().width();
  const bool uneLigne = besoin <= place;
  int ligne = 0, colonne = 0, lignes = 0, colonnes = 0;
  grilleInfos_->getItemPosition(grilleInfos_->indexOf(infosFichier_), &ligne, &colonne, &lignes, &colonnes);
  if (uneLigne == (ligne == 0)) return;
  grilleInfos_->removeWidget(infosImage_);
  grilleInfos_->removeWidget(infosFichier_);
  if (uneLigne) {
    grilleInfos_->addWidget(infosImage_, 0, 0);
    grilleInfos_->addWidget(infosFichier_, 0, 1);
  } else {
    grilleInfos_->addWidget(infosImage_, 0, 0, 1, 2);
    grilleInfos_->addWidget(infosFichier_, 1, 0, 1, 2);
  }
}

void frmFichierPhoto::AfficherImageEntiere() {
  if (!imageAffichee_ || s_.Largeur <= 0 || s_.Hauteur <= 0) return;
  slider_->setValue(PourcentageImageEntiere(picCadre_->size(), QSize(s_.Largeur, s_.Hauteur)));
  AppliquerZoom();
}

void frmFichierPhoto::PlacerTxtExif() {
  const int x = std::min(kGaucheExif, std::max(0, picCadre_->width() - 200));
  const int h = txtExifAgrandi_ ? std::max(kHauteurExif, picCadre_->height() - 20) : kHauteurExif;
  txtExif_->setGeometry(x, 0, std::max(100, picCadre_->width() - x - kBarre - 4), h);
  txtExif_->raise();
}

void frmFichierPhoto::AgrandirTxtExif() {
  txtExifAgrandi_ = true;
  PlacerTxtExif();
  txtExif_->show();
  if (auto* r = findChild<QPushButton*>(QStringLiteral("cmdReduirTxtExif"))) r->show();
}

void frmFichierPhoto::LibelleBoutonMeta(const QString& texte) {
  auto* b = findChild<QPushButton*>(QStringLiteral("cmdAgrandirTxtExif"));
  if (!b) return;
  b->setText(texte);
  b->setFixedWidth(texte.size() <= 1 ? 26 : b->fontMetrics().horizontalAdvance(texte) + 16);
  b->show();
  // Before the window takes the new width of the strip.
  DisposerInfos();
}

void frmFichierPhoto::ReduireTxtExif() {
  txtExifAgrandi_ = false;
  PlacerTxtExif();
  if (auto* r = findChild<QPushButton*>(QStringLiteral("cmdReduirTxtExif"))) r->hide();
}

void frmFichierPhoto::MasquerAccueil() {
  timer1_->stop();
  imgAccueil_->hide();
}

bool frmFichierPhoto::eventFilter(QObject* objet, QEvent* e) {
  if (infosImage_ && objet == infosImage_->parentWidget() && (e->type() == QEvent::LayoutRequest || e->type() == QEvent::Resize))
    DisposerInfos();
  if (objet == picCadre_ && e->type() == QEvent::Resize) {
    PlacerBarres();
    PlacerTxtExif();
  } else if (objet == imgAccueil_ && e->type() == QEvent::MouseButtonPress) {
    MasquerAccueil();
    return true;
  }
  return QMainWindow::eventFilter(objet, e);
}

// ---------------------------------------------------------------- image

void frmFichierPhoto::AfficherInfosImage() {
  if (s_.ImageCourante.Vide()) return;
  const InfosImageAffichees i = CalculerInfosImage(s_);
  if (auto* t = findChild<QLineEdit*>(QStringLiteral("txtTaille"))) t->setText(i.txtTaille);
  if (auto* t = findChild<QLineEdit*>(QStringLiteral("txtCadrage"))) t->setText(i.txtCadrage);
  if (auto* l = findChild<QLabel*>(QStringLiteral("imgInfoCadrage"))) PoserIcone(l, i.iconeCadrage);
  if (auto* t = findChild<QLineEdit*>(QStringLiteral("txtFocale"))) t->setText(i.txtFocale);
  if (auto* l = findChild<QLabel*>(QStringLiteral("imgInfoZoom"))) PoserIcone(l, i.iconeZoom);
  QPalette p = txtDigitalZoom_->palette();
  p.setColor(QPalette::Text, i.zoomRouge ? QColor(255, 0, 0) : QColor(0, 0, 0));
  txtDigitalZoom_->setPalette(p);
  txtDigitalZoom_->setText(i.txtDigitalZoom);
  if (i.avertirZoom)
    Dialogues().Message(QStringLiteral("Zoom numérique !"), TexteAvertissementZoom(s_),
                        Icone::Exclamation);
}

void frmFichierPhoto::FermerImage() {
  QApplication::setOverrideCursor(Qt::WaitCursor);
  FermerImageSession(s_, ai_);
  ViderAffichage();
  s_.Etape = 0;
  AppliquerEtape();
  QApplication::restoreOverrideCursor();
}

void frmFichierPhoto::TournerImage(int angle) {
  imaOrigine_->hide();
  if (!TournerImageSession(s_, ai_, angle)) {
    Erreur("Error - " + ai_.Error_GetLast());
    if (imageAffichee_) imaOrigine_->show();
    return;
  }
  AfficherImage(s_.ImageCourante);
  AfficherInfosImage();
  imaOrigine_->show();
}

// ---------------------------------------------------------------- toolbars

void frmFichierPhoto::CliqueToolbar1(const QString& cle) {
  if (cle == u"Ouvrir") {
    if (s_.ModeOuvrir == u"1")
      Appeler(QStringLiteral("mnuOuvriFichier"));
    else
      Appeler(QStringLiteral("frmSearch"));
  } else if (cle == u"RedimAuto") {
    for (const char* f : {"frmRecadrage", "frmChooseRessampl"}) FermerFenetres(QLatin1String(f));
    Appeler(QStringLiteral("mnuRedimAuto"));
  } else if (cle == u"Cartouche") {
    for (const char* f : {"frmConfig", "frmFiltres", "frmFiltresVignette", "frmGestionTables",
                          "frmGenMesures", "frmEnregistrer", "frmMesure", "frmAnnotations2"})
      FermerFenetres(QLatin1String(f));
    Appeler(QStringLiteral("frmAjouterCartouche"));
  } else if (cle == u"Sauver") {
    for (const char* f : {"frmConfig", "frmGestionTables", "frmGenMesures", "frmAjouterCartouche",
                          "frmAnnotations2"})
      FermerFenetres(QLatin1String(f));
    ReduireTxtExif();
    Appeler(QStringLiteral("frmEnregistrer"));
  } else if (cle == u"Mesure") {
    for (const char* f : {"frmConfig", "frmEnregistrer", "frmGestionTables", "frmGenMesures",
                          "frmAjouterCartouche"})
      FermerFenetres(QLatin1String(f));
    ReduireTxtExif();
    mnuMesureImage();
  } else if (cle == u"anotations") {
    FermerFenetres(QStringLiteral("frmAjouterCartouche"));
    ReduireTxtExif();
    Appeler(QStringLiteral("frmAnnotations2"));
  }
}

void frmFichierPhoto::CliqueToolbar2(const QString& cle) {
  if (cle != u"Copier") lblTickCount_->clear();
  if (cle == u"Etalonner") {
    MasquerAccueil();
    Appeler(QStringLiteral("mnuOuvriFichierEtalon"));
  } else if (cle == u"Rotation") {
    TournerImage(270);
  } else if (cle == u"Recadrer") {
    mnuRecadrer();
  } else if (cle == u"Filtres") {
    Appeler(QStringLiteral("frmFiltres"));
    for (const char* b : {"cmdAgrandirTxtExif", "cmdReduirTxtExif"})
      if (auto* w = findChild<QPushButton*>(QLatin1String(b))) w->hide();
  } else if (cle == u"Exporter") {
    Appeler(QStringLiteral("ExporterImage"));
  } else if (cle == u"Importer") {
    Appeler(QStringLiteral("ImporterImage"));
  } else if (cle == u"Copier") {
    picDialogueCopier_->move(88, 120);
    picDialogueCopier_->show();
    picDialogueCopier_->raise();
  }
}

// ---------------------------------------------------------------- menus

void frmFichierPhoto::mnuRecadrer() {
  if (!RecadragePossible(s_.Largeur, s_.Hauteur)) {
    Dialogues().Message(Titre(), TexteRefusRecadrage(), Icone::Exclamation);
    return;
  }
  Appeler(QStringLiteral("frmRecadrage"));
}

void frmFichierPhoto::mnuMesurerEtalon() {
  if (s_.DigitalZoom > 1) {
    Dialogues().Message(Titre(),
                        QStringLiteral("L'utilisation d'un zoom numérique n'est pas prise en "
                                       "charge.\nUtilisez uniquement le zoom optique !"),
                        Icone::Critique);
    return;
  }
  s_.ModeMesure = 0;
  Appeler(QStringLiteral("frmMesure"));
}

void frmFichierPhoto::mnuMesureImage() {
  if (!EchelleSurImage(s_)) {
    Dialogues().Message(QStringLiteral("Mesure sur image :"),
                        QStringLiteral("Mesure sur image :\nAjoutez une échelle à votre image "
                                       "(Cartouche)"),
                        Icone::Exclamation);
    return;
  }
  s_.ModeMesure = 2;
  Appeler(QStringLiteral("frmMesure"));
}

void frmFichierPhoto::mnuMesureImageTemp() {
  s_.MesureTemp = true;
  s_.ModeMesure = 1;
  Appeler(QStringLiteral("frmMesure"));
}

void frmFichierPhoto::mnuGestionTables() {
  if (!FileExists(RepApplication() + QStringLiteral("table_mesure.dat"))) {
    Dialogues().Message(Titre(), QStringLiteral("Tables de mesure inexistantes !"),
                        Icone::Exclamation);
    return;
  }
  Appeler(QStringLiteral("frmGestionTables"));
}

void frmFichierPhoto::mnuEditComments() {
  if (!(s_.ImageDejaFormatee && s_.Etape == 1)) {
    Dialogues().Message(Titre(), QStringLiteral("Veuillez charger une image formatée TG ..."),
                        Icone::Exclamation);
    return;
  }
  Appeler(QStringLiteral("frmEditComments"));
}

void frmFichierPhoto::mnuScreenInfos() {
  InfosEcran e;
  if (!ai_.Screen_Info(e)) {
    Erreur("Error - " + ai_.Error_GetLast());
    return;
  }
  Dialogues().Message(Titre(), TexteInfosEcran(e), Icone::Information);
}

bool frmFichierPhoto::RemettreImageSansFiltre() {
  Bitmap copie;
  if (!ai_.IO_Copy(s_.ImageSansFiltre, copie)) {
    Erreur("Error - " + ai_.Error_GetLast());
    return false;
  }
  ai_.IO_DestroyBitmap(s_.ImageFormatee);
  s_.ImageFormatee = std::move(copie);
  return true;
}

void frmFichierPhoto::mnuAnnulerFiltres() {
  if (Dialogues().Question(QStringLiteral("Supprimer filtres"),
                           QStringLiteral("Souhaitez-vous supprimer définitivement les filtres ?"),
                           Boutons::OuiNon, Reponse::Non, Icone::Question) != Reponse::Oui)
    return;
  if (!s_.ImageSansFiltre.Vide()) {
    if (!RemettreImageSansFiltre()) return;
    // The working picture follows what is shown: a copy or the cartouche made
    // next must not carry the filters that were just taken back.
    Bitmap courante;
    if (ai_.IO_Copy(s_.ImageFormatee, courante)) s_.ImageCourante = std::move(courante);
    AfficherImage(s_.ImageFormatee);
    ai_.IO_DestroyBitmap(s_.ImageSansFiltre);
  }
  Dialogues().Message(Titre(), QStringLiteral("Filtres supprimés !"), Icone::Information);
}

void frmFichierPhoto::mnuAnnulerAnnotation() {
  if (Dialogues().Question(QStringLiteral("Supprimer les annotations"),
                           QStringLiteral("Voulez vous supprimer toutes les annotations ?"),
                           Boutons::OuiNon, Reponse::Non, Icone::Question) != Reponse::Oui)
    return;
  if (!s_.ImageSansFiltre.Vide() && !RemettreImageSansFiltre()) return;
  // The cartouche window rebuilds the final picture from ImageFormatee.
  Appeler(QStringLiteral("ReconstruireCartouche"));
  FermerFenetres(QStringLiteral("frmAjouterCartouche"));
  s_.AnnotationsPresentes = false;
  AjusterAffichage();
}

void frmFichierPhoto::mnuApropos() {
  Dialogues().Message(
      QStringLiteral("A propos ..."),
      QStringLiteral("%1\nVersion %2.%3.%4\n\nMise en forme, étalonnage et annotation des "
                     "photographies au microscope.")
          .arg(Titre())
          .arg(VersionMajor)
          .arg(VersionMinor)
          .arg(VersionRevision),
      Icone::Information);
}

void frmFichierPhoto::CopierPressePapier() {
  picDialogueCopier_->hide();
  if (ai_.Clipboard_Set(s_.ImageCourante))
    Dialogues().Message(Titre(),
                        QStringLiteral("Ok, votre image est copiée dans le presse-papier !"),
                        Icone::Information);
  else
    Dialogues().Message(Titre(),
                        QStringLiteral("Erreur: Impossible de copier l'image en cours ..."),
                        Icone::Exclamation);
}

void frmFichierPhoto::CopierFichier() {
  picDialogueCopier_->hide();
  QString dossier = s_.RepTravail;
  if (dossier.isEmpty()) dossier = s_.DocPath.isEmpty() ? DossierDocuments() : s_.DocPath;
  QString chemin = Dialogues().FichierEnregistrer(
      QStringLiteral("  Sauver l'image en cours ..."), dossier, QStringLiteral("AAA_Copie_1"),
      QStringLiteral("Jpeg (*.jpg)|*.jpg"));
  if (chemin.isEmpty()) return;  // cancelled
  // The copy is a JPEG and keeps that extension, or the open dialog would hide it.
  const QString suffixe = QFileInfo(chemin).suffix().toLower();
  if (suffixe != u"jpg" && suffixe != u"jpeg") chemin += QStringLiteral(".jpg");
  // Later stages hold the final picture: its copy would pass for a result.
  if (s_.Etape != 1 && s_.Etape != 2) {
    Dialogues().Message(Titre(),
                        QStringLiteral("Erreur : Impossible de copier cette image à cette étape !"),
                        Icone::Exclamation);
    return;
  }
  if (!ai_.IO_SaveImage(s_.ImageCourante, chemin, FormatJPEG, 100)) {
    Erreur("Error - " + ai_.Error_GetLast());
    return;
  }
  Dialogues().Message(Titre(), QStringLiteral("Ok, Image sauvegardée !"), Icone::Information);
}

// ---------------------------------------------------------------- hooks, closing

void frmFichierPhoto::DefinirCrochet(const QString& nom, std::function<void()> f) {
  crochets_[nom] = std::move(f);
}

void frmFichierPhoto::DefinirCrochetIndex(const QString& nom, std::function<void(int)> f) {
  crochetsIndex_[nom] = std::move(f);
}

void frmFichierPhoto::Appeler(const QString& crochet) {
  const auto it = crochets_.find(crochet);
  if (it != crochets_.end() && it->second) it->second();
}

void frmFichierPhoto::Erreur(const QString& texte) {
  Dialogues().Message(Titre(), texte, Icone::Critique);
}

void frmFichierPhoto::FenetreOuverte(QWidget* fenetre) {
  std::erase_if(fenetres_, [fenetre](const QPointer<QWidget>& p) { return p == fenetre || !p; });
  fenetres_.emplace_back(fenetre);
}

void frmFichierPhoto::closeEvent(QCloseEvent* e) {
  if (Dialogues().Question("Quitter " + Titre(),
                           QStringLiteral("Voulez-vous vraiment quitter l'application?"),
                           Boutons::OuiNon, Reponse::Oui, Icone::Question) != Reponse::Oui) {
    e->ignore();
    return;
  }
  TerminerSession(s_, ai_);
  // The other windows, from the last opened to the first; then any left.
  for (auto it = fenetres_.rbegin(); it != fenetres_.rend(); ++it)
    if (*it) (*it)->close();
  fenetres_.clear();
  for (QWidget* w : QApplication::topLevelWidgets())
    if (w != this && w->isVisible() && w->windowType() != Qt::Popup) w->close();
  e->accept();
}

}  // namespace tg
