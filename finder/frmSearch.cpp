#include "finder/frmSearch.h"

#include <QApplication>
#include <QCoreApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QShortcut>
#include <QAction>
#include <QThreadPool>
#include <QTimer>
#include <QVBoxLayout>

#include "core/frmFichierPhoto.h"
#include "core/frmFichierPhotoChargement.h"
#include "core/modMain.h"
#include "finder/Recherche.h"
#include "imaging/VerificationFichier.h"
#include "imaging/cAdvancedImagery.h"
#include "metadata/CImage.h"
#include "metadata/Infos.h"
#include "platform/Dialogues.h"
#include "platform/Ecran.h"
#include "platform/Ini.h"
#include "version.h"

namespace tg {

namespace {

constexpr int kVignette = 193;  // pixels, the thumbnail's longer side

template <typename T>
T* Nomme(T* w, const QString& nom) {
  w->setObjectName(nom);
  return w;
}

// What the selection shows, made off the interface thread.
struct Selection {
  QImage vignette;
  QString erreur;  // the picture could not be read
  QStringList infos;
  QString meta;
};

// The metadata library's view, without the list of segments. A phone's or a
// camera's RAW file shows the EXIF the imaging layer reads from it, read
// without decoding the picture.
QString TexteMeta(const QString& chemin) {
  const TypeFichierImage type = VerifierFichierImage(chemin).type;
  if (type == TypeFichierImage::HEIF || type == TypeFichierImage::RAW) {
    cAdvancedImagery ai;
    Bitmap entete;
    QString principal, sous;
    if (!ai.IO_LoadEntete(chemin, entete)) return ai.Error_GetLast();
    ai.Metadata_Get_EXIF(entete, principal, 1);
    ai.Metadata_Get_EXIF(entete, sous, 2);
    return QStringList{principal, sous}.join(QStringLiteral("\r\n")).trimmed();
  }
  meta::CImage image;
  if (!image.ReadImage(chemin)) return image.Erreur();
  QStringList lignes;
  bool segments = false;
  for (const QString& l : meta::InfosTexte(image).split(u'\n')) {
    if (l.startsWith(QStringLiteral("Segments :"))) {
      segments = true;
      continue;
    }
    if (segments && l.startsWith(u' ')) continue;
    segments = false;
    lignes << l;
  }
  return lignes.join(u'\n').trimmed();
}

Selection Preparer(const QString& chemin) {
  Selection r;
  cAdvancedImagery ai;
  if (!ai.IO_LoadThumbnail(chemin, kVignette, r.vignette)) {
    r.erreur = ai.Error_GetLast();
    return r;
  }
  InfosImage infos;
  if (ai.Info_File(chemin, infos)) r.infos = LignesInfos(QFileInfo(chemin).fileName(), infos, QFileInfo(chemin).size());
  if (!ai.Incomplet().isEmpty()) r.infos << ai.Incomplet();
  r.meta = TexteMeta(chemin);
  return r;
}

}  // namespace

frmSearch::frmSearch(SessionRecord& session, frmFichierPhoto* principal, QWidget* parent)
    : QWidget(parent, Qt::Window), s_(session), principal_(principal),
      arret_(std::make_shared<std::atomic<bool>>(false)) {
  setObjectName(QStringLiteral("frmSearch"));
  setWindowTitle(QStringLiteral("Rechercher - Visionner"));
  auto* racine = new QHBoxLayout(this);
  auto* gauche = new QVBoxLayout;
  racine->addLayout(gauche, 1);

  auto* dossiers = new QGridLayout;
  const char* legendes[4] = {"Dossier travail", "Dossier étalons", "Dossier photos", "Dossier courant (*)"};
  for (int i = 0; i < 4; ++i) {
    optDossier_[i] = Nomme(new QRadioButton(QString::fromUtf8(legendes[i]), this), QStringLiteral("optDossier%1").arg(i));
    dossiers->addWidget(optDossier_[i], i / 2, i % 2);
    connect(optDossier_[i], &QRadioButton::clicked, this, [this, i] { optDossier(i); });
  }
  gauche->addLayout(dossiers);
  auto* ligneDossier = new QHBoxLayout;
  txtRepTravail_ = Nomme(new QLineEdit(this), QStringLiteral("txtRepTravail"));
  auto* choisir = Nomme(new QPushButton(QStringLiteral("..."), this), QStringLiteral("cmdRepTravail"));
  connect(choisir, &QPushButton::clicked, this, [this] { cmdRepTravail(); });
  ligneDossier->addWidget(txtRepTravail_);
  ligneDossier->addWidget(choisir);
  gauche->addLayout(ligneDossier);
  auto* ligneFiltre = new QHBoxLayout;
  txtFiltre_ = Nomme(new QLineEdit(QStringLiteral("*"), this), QStringLiteral("txtFiltre"));
  combFileExt_ = Nomme(new QComboBox(this), QStringLiteral("combFileExt"));
  combFileExt_->addItems({".jpg", ".bmp", ".png", ".gif", ".psd", ".pcd"});
  // Phone photos and camera RAW files after the system's own types.
  for (const QStringList* l : {&ExtensionsHEIF(), &ExtensionsRAW()})
    for (const QString& e : *l) combFileExt_->addItem(u'.' + e);
  connect(combFileExt_, &QComboBox::activated, this, [this] {
    txtFiltre_->setText(QStringLiteral("*"));
    cmdActualiserList();
  });
  auto* actualiser = Nomme(new QPushButton(QStringLiteral("Actualiser"), this), QStringLiteral("cmdActualiserList"));
  connect(actualiser, &QPushButton::clicked, this, [this] { cmdActualiserList(); });
  connect(txtFiltre_, &QLineEdit::returnPressed, this, [this] { cmdActualiserList(); });
  connect(txtRepTravail_, &QLineEdit::returnPressed, this, [this] { cmdActualiserList(); });
  ligneFiltre->addWidget(txtFiltre_);
  ligneFiltre->addWidget(combFileExt_);
  ligneFiltre->addWidget(actualiser);
  gauche->addLayout(ligneFiltre);
  chkSousDir_ = Nomme(new QCheckBox(QStringLiteral("Chercher dans les sous-répertoires"), this), QStringLiteral("chkSousDir"));
  gauche->addWidget(chkSousDir_);
  gauche->addWidget(new QLabel(QStringLiteral("Attention : /*.jpg = tout le disque !"), this));
  lblInfos_ = Nomme(new QLabel(QStringLiteral("Recherche en cours ... (Echap pour arrêter)"), this), QStringLiteral("lblInfos"));
  lblInfos_->hide();
  gauche->addWidget(lblInfos_);
  List2_ = Nomme(new QListWidget(this), QStringLiteral("List2"));
  connect(List2_, &QListWidget::currentRowChanged, this, [this](int i) { Selectionner(i); });
  connect(List2_, &QListWidget::itemDoubleClicked, this, [this] { cmdOuvrir(); });
  gauche->addWidget(List2_, 1);
  Text3_ = Nomme(new QLabel(this), QStringLiteral("Text3"));
  gauche->addWidget(Text3_);
  chkModeOuvrir_ = Nomme(new QCheckBox(QStringLiteral("Ne plus utiliser ce menu (cf options)"), this), QStringLiteral("chkModeOuvrir"));
  connect(chkModeOuvrir_, &QCheckBox::clicked, this, [this](bool coche) {
    s_.ModeOuvrir = coche ? QStringLiteral("1") : QStringLiteral("0");
    EcrireIni(QStringLiteral("Dossier"), QStringLiteral("ModeOuvrir"), s_.ModeOuvrir, CheminUserConfig());
  });
  gauche->addWidget(chkModeOuvrir_);

  auto* droite = new QVBoxLayout;
  racine->addLayout(droite, 1);
  picVignette_ = Nomme(new QLabel(this), QStringLiteral("picVignette"));
  picVignette_->setFixedSize(kVignette, kVignette);
  picVignette_->setAlignment(Qt::AlignCenter);
  picVignette_->setFrameShape(QFrame::Box);
  picVignette_->setToolTip(QStringLiteral("Double click pour charger l'image ..."));
  picVignette_->installEventFilter(this);
  droite->addWidget(picVignette_, 0, Qt::AlignHCenter);
  Text4_ = Nomme(new QPlainTextEdit(this), QStringLiteral("Text4"));
  Text4_->setReadOnly(true);
  Text4_->setPlaceholderText(QStringLiteral("Infos diverses ..."));
  droite->addWidget(Text4_);
  txtExif_ = Nomme(new QPlainTextEdit(this), QStringLiteral("txtExif"));
  txtExif_->setReadOnly(true);
  txtExif_->setPlaceholderText(QStringLiteral("Infos Méta-Données ..."));
  droite->addWidget(txtExif_, 1);
  auto* boutons = new QHBoxLayout;
  auto* ouvrir = Nomme(new QPushButton(QStringLiteral("Ouvrir"), this), QStringLiteral("cmdOuvrir"));
  auto* supprimer = Nomme(new QPushButton(QStringLiteral("Supprimer"), this), QStringLiteral("cmdSupprimerImage"));
  auto* gerer = Nomme(new QPushButton(QStringLiteral("Dossiers ..."), this), QStringLiteral("cmdGererDossier"));
  auto* quitter = Nomme(new QPushButton(QStringLiteral("Quitter"), this), QStringLiteral("cmdQuitter"));
  connect(ouvrir, &QPushButton::clicked, this, [this] { cmdOuvrir(); });
  connect(supprimer, &QPushButton::clicked, this, [this] { cmdSupprimerImage(); });
  connect(gerer, &QPushButton::clicked, this, [this] {
    if (principal_)
      if (auto* a = principal_->findChild<QAction*>(QStringLiteral("mnuOptions"))) a->trigger();
    close();
  });
  connect(quitter, &QPushButton::clicked, this, [this] { close(); });
  for (auto* b : {ouvrir, supprimer, gerer, quitter}) boutons->addWidget(b);
  droite->addLayout(boutons);

  auto* echap = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(echap, &QShortcut::activated, this, [this] { Echap(); });

  // Loading: the first extension, the open mode, then the current folder.
  combFileExt_->setCurrentIndex(0);
  chkModeOuvrir_->setChecked(s_.ModeOuvrir == u"1");
  optDossier(3);
  optDossier_[3]->setChecked(true);
}

frmSearch::~frmSearch() { arret_->store(true); }

frmSearch* frmSearch::Afficher(frmFichierPhoto& principal) {
  auto* f = new frmSearch(principal.Session(), &principal, &principal);
  f->setAttribute(Qt::WA_DeleteOnClose);
  principal.FenetreOuverte(f);
  // 900 x 620 where the screen has room, centred, a little under the main window's top.
  const QRect g = ZoneEcran(&principal);
  f->move(g.left() + std::max(0, (g.width() - 900) / 2), std::max(g.top(), principal.y() + 60));
  AjusterAEcran(f, QSize(900, 620));
  f->show();
  return f;
}

void frmSearch::optDossier(int index) {
  switch (index) {
    case 0:
      dossierCourant_ = s_.RepTravail;
      break;
    case 1:
      dossierCourant_ = s_.RepEtalon;
      break;
    case 2:
      dossierCourant_ = s_.RepApPhoto;
      break;
    default:
      dossierCourant_ = QDir::currentPath();
      break;
  }
  txtRepTravail_->setText(dossierCourant_);
  txtFiltre_->setText(QStringLiteral("*"));
  cmdActualiserList();
}

void frmSearch::cmdRepTravail() {
  const QString d = Dialogues().Dossier(QStringLiteral("Choisir un dossier  ..."), dossierCourant_);
  Vider();
  if (!d.isEmpty()) {
    dossierCourant_ = d;
    txtRepTravail_->setText(d);
  }
  cmdActualiserList();
}

void frmSearch::Vider() {
  list1_.clear();
  {
    const QSignalBlocker b(List2_);
    List2_->clear();
  }
  Text3_->clear();
  Text4_->clear();
  txtExif_->clear();
  picVignette_->clear();
  cheminSelection_.clear();
  ++generationSelection_;
}

void frmSearch::cmdActualiserList() {
  // A walk still running is told to stop; its result will be dropped.
  arret_->store(true);
  arret_ = std::make_shared<std::atomic<bool>>(false);
  enCours_ = false;
  if (txtRepTravail_->text().isEmpty()) return;
  Vider();
  lblInfos_->show();
  Curseur(true);
  enCours_ = true;
  const QString dossier = DossierAvecSeparateur(txtRepTravail_->text());
  const QRegularExpression motif = MotifRecherche(txtFiltre_->text(), combFileExt_->currentText());
  const bool sous = chkSousDir_->isChecked();
  std::shared_ptr<std::atomic<bool>> arret = arret_;
  std::function<void()> passe = SurPasse;
  QPointer<frmSearch> moi(this);
  QThreadPool::globalInstance()->start([=] {
    ResultatParcours r;
    ParcourirDossier(dossier, motif, sous, *arret, r, passe);
    QMetaObject::invokeMethod(
        // Not qApp's downcast: the application may be in its destructor,
        // waiting for this pool.
        QCoreApplication::instance(), [moi, arret, r] {
          // Dropped when the window went or a newer walk replaced this one.
          if (moi && moi->arret_ == arret) moi->FinParcours(r);
        },
        Qt::QueuedConnection);
  });
}

void frmSearch::FinParcours(const ResultatParcours& r) {
  enCours_ = false;
  list1_ = r.chemins;
  {
    const QSignalBlocker b(List2_);
    List2_->addItems(r.noms);
  }
  Text3_->setText(TexteCompte(r.compte, r.interrompu || arret_->load()));
  lblInfos_->hide();
  Curseur(false);
  if (!list1_.isEmpty()) List2_->setCurrentRow(0);
  emit ParcoursTermine();
}

void frmSearch::Selectionner(int index) {
  if (index < 0 || index >= list1_.size()) return;
  cheminSelection_ = list1_[index];
  AfficherSelection();
}

void frmSearch::AfficherSelection() {
  txtExif_->clear();
  Text4_->clear();
  picVignette_->clear();
  const int generation = ++generationSelection_;
  selectionPrete_ = false;
  const QString chemin = cheminSelection_;
  QPointer<frmSearch> moi(this);
  QThreadPool::globalInstance()->start([=] {
    const Selection r = Preparer(chemin);
    QMetaObject::invokeMethod(
        // Not qApp's downcast: the application may be in its destructor,
        // waiting for this pool.
        QCoreApplication::instance(), [moi, generation, r] {
          if (!moi || moi->generationSelection_ != generation) return;
          if (!r.erreur.isEmpty()) {
            // The file cannot be read: its message in the facts, the list usable.
            moi->Text4_->setPlainText(QStringLiteral("Error - ") + r.erreur);
          } else {
            moi->picVignette_->setPixmap(QPixmap::fromImage(r.vignette));
            moi->Text4_->setPlainText(r.infos.join(u'\n'));
            moi->txtExif_->setPlainText(r.meta);
          }
          moi->selectionPrete_ = true;
          emit moi->SelectionAffichee();
        },
        Qt::QueuedConnection);
  });
}

void frmSearch::cmdOuvrir() {
  if (cheminSelection_.isEmpty() || !QFileInfo::exists(cheminSelection_)) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Fichier introuvable !"), Icone::Exclamation);
    return;
  }
  const QString chemin = cheminSelection_;
  QPointer<frmFichierPhoto> principal = principal_;
  close();
  if (principal) {
    ChargerImage(*principal, chemin);
    ControleImage(*principal);
    EcrireListeRecent(*principal, chemin);
  }
  // Option 3, "Dossier courant (*)", finds this folder next time.
  QDir::setCurrent(QFileInfo(chemin).absolutePath());
}

void frmSearch::cmdSupprimerImage() {
  if (cheminSelection_.isEmpty()) return;
  if (Dialogues().Question(QStringLiteral("Supprimer une image"),
                           QStringLiteral("Souhaitez-vous effacer définitivement l'image sélectionnée ?\n") +
                               QFileInfo(cheminSelection_).fileName() + u'\n',
                           Boutons::OuiNon, Reponse::Non, Icone::Exclamation) != Reponse::Oui)
    return;
  if (QFileInfo::exists(cheminSelection_) && !QFile::remove(cheminSelection_))
    Dialogues().Message(QLatin1String(TitreProgramme),
                        QStringLiteral("Le fichier « %1 » ne peut pas être supprimé.").arg(cheminSelection_),
                        Icone::Exclamation);
  cmdActualiserList();
}

void frmSearch::Echap() {
  const bool enCours = enCours_;
  DemanderArret();
  if (enCours) {
    Curseur(false);
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Recherche stopée par l'utilisateur ..."),
                        Icone::Information);
  }
}

bool frmSearch::eventFilter(QObject* objet, QEvent* e) {
  if (objet == picVignette_ && e->type() == QEvent::MouseButtonDblClick) {
    cmdOuvrir();
    return true;
  }
  return QWidget::eventFilter(objet, e);
}

void frmSearch::Curseur(bool occupe) {
  if (occupe == curseur_) return;
  curseur_ = occupe;
  if (occupe) QApplication::setOverrideCursor(Qt::BusyCursor);
  else QApplication::restoreOverrideCursor();
}

bool frmSearch::AttendreParcours(int ms) {
  if (!enCours_) return true;
  QEventLoop boucle;
  QTimer::singleShot(ms, &boucle, &QEventLoop::quit);
  connect(this, &frmSearch::ParcoursTermine, &boucle, &QEventLoop::quit);
  boucle.exec();
  return !enCours_;
}

bool frmSearch::AttendreSelection(int ms) {
  if (selectionPrete_) return true;
  QEventLoop boucle;
  bool arrivee = false;
  QTimer::singleShot(ms, &boucle, &QEventLoop::quit);
  connect(this, &frmSearch::SelectionAffichee, &boucle, [&] {
    arrivee = true;
    boucle.quit();
  });
  boucle.exec();
  return arrivee;
}

void frmSearch::closeEvent(QCloseEvent* e) {
  Curseur(false);
  DemanderArret();
  QWidget::closeEvent(e);
}

}  // namespace tg
