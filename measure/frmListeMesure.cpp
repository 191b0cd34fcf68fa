#include "measure/frmListeMesure.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPageSetupDialog>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/frmAppercuRtf.h"
#include "platform/Dialogues.h"
#include "platform/Ecran.h"
#include "platform/Fichiers.h"

namespace tg {

QPointer<frmListeMesure> frmListeMesure::instance_;

frmListeMesure::frmListeMesure(SessionRecord& session, cAdvancedImagery& ai, QWidget* parent)
    : QWidget(parent, Qt::Window), s_(session), ai_(ai) {
  setObjectName(QStringLiteral("frmListeMesure"));
  setWindowTitle(QStringLiteral(" Carnet de mesures"));
  auto* racine = new QVBoxLayout(this);

  auto* barre = new QMenuBar(this);
  QMenu* fichier = barre->addMenu(QStringLiteral("&Fichier"));
  QAction* mise = fichier->addAction(QStringLiteral("Mise en page ..."));
  mise->setObjectName(QStringLiteral("mnuFilePageSetup"));
  connect(mise, &QAction::triggered, this, [this] {
    QPageSetupDialog(&ImprimanteCarnet(), this).exec();
  });
  QAction* imprimer = fichier->addAction(QStringLiteral("Imprimer ..."));
  imprimer->setObjectName(QStringLiteral("mnuFilePrint"));
  connect(imprimer, &QAction::triggered, this, [this] {
    if (Dialogues().Question(QStringLiteral("Impression"), QStringLiteral("Veuillez préparer l'imprimante"),
                             Boutons::OKAnnuler, Reponse::OK, Icone::Information) == Reponse::OK)
      cmdListe(3);
  });
  racine->setMenuBar(barre);

  auto* saisie = new QHBoxLayout;
  racine->addLayout(saisie);
  for (int i = 0; i < 3; ++i) {
    txtMesure_[i] = new QLineEdit(this);
    txtMesure_[i]->setObjectName(QStringLiteral("txtMesure%1").arg(i));
    saisie->addWidget(txtMesure_[i], i == 2 ? 3 : 1);
  }
  txtMesure_[0]->setReadOnly(true);
  saisie->addWidget(new QLabel(QStringLiteral("µm"), this));
  connect(txtMesure_[2], &QLineEdit::returnPressed, this, [this] { cmdAjouterLst(); });
  const auto bouton = [this](const QString& nom, const QString& texte) {
    auto* b = new QPushButton(texte, this);
    b->setObjectName(nom);
    return b;
  };
  auto* ajouter = bouton(QStringLiteral("cmdAjouterLst"), QStringLiteral("Ajouter"));
  auto* serie = bouton(QStringLiteral("cmdInputSerie"), QStringLiteral("Nouvelle série"));
  auto* effacer = bouton(QStringLiteral("cmdEffacerTxt"), QStringLiteral("Effacer"));
  for (QPushButton* b : {ajouter, serie, effacer}) saisie->addWidget(b);
  connect(ajouter, &QPushButton::clicked, this, [this] { cmdAjouterLst(); });
  connect(serie, &QPushButton::clicked, this, [this] { cmdInputSerie(); });
  connect(effacer, &QPushButton::clicked, this, [this] { cmdEffacerTxt(); });

  auto* listes = new QHBoxLayout;
  racine->addLayout(listes);
  for (int i = 0; i < 3; ++i) {
    lstMesure_[i] = new QListWidget(this);
    lstMesure_[i]->setObjectName(QStringLiteral("lstMesure%1").arg(i));
    listes->addWidget(lstMesure_[i], i == 2 ? 3 : 1);
  }
  // A row chosen in one list is chosen in the two others.
  for (int i = 0; i < 3; ++i)
    connect(lstMesure_[i], &QListWidget::currentRowChanged, this, [this](int ligne) {
      for (QListWidget* l : lstMesure_)
        if (l->currentRow() != ligne) l->setCurrentRow(ligne);
    });

  auto* textes = new QGridLayout;
  racine->addLayout(textes);
  txtLst_ = new QPlainTextEdit(this);
  txtLst_->setObjectName(QStringLiteral("txtLst"));
  txtLst_->setReadOnly(true);
  txtAnnotations_ = new QPlainTextEdit(this);
  txtAnnotations_->setObjectName(QStringLiteral("txtAnnotations"));
  textes->addWidget(new QLabel(QStringLiteral("Liste :"), this), 0, 0);
  textes->addWidget(txtLst_, 1, 0);
  textes->addWidget(new QLabel(QStringLiteral("Annotations :"), this), 0, 1);
  textes->addWidget(txtAnnotations_, 1, 1);
  picVignette_ = new QLabel(this);
  picVignette_->setObjectName(QStringLiteral("picVignette"));
  textes->addWidget(picVignette_, 0, 2, 2, 1);

  auto* options = new QHBoxLayout;
  racine->addLayout(options);
  options->addWidget(new QLabel(QStringLiteral("Vignette :"), this));
  comboTailleVignette_ = new QComboBox(this);
  comboTailleVignette_->setObjectName(QStringLiteral("comboTailleVignette"));
  comboTailleVignette_->addItems({"100", "200", "300", "400", "500"});
  comboTailleVignette_->setCurrentIndex(1);
  options->addWidget(comboTailleVignette_);
  const QString formats[2] = {QStringLiteral("Texte uniquement"), QStringLiteral("RTF (+ vignette)")};
  for (int i = 0; i < 2; ++i) {
    optFormatTxt_[i] = new QRadioButton(formats[i], this);
    optFormatTxt_[i]->setObjectName(QStringLiteral("optFormatTxt%1").arg(i));
    options->addWidget(optFormatTxt_[i]);
  }
  optFormatTxt_[1]->setChecked(true);

  // Three rows of two: the notebook stays narrow enough to sit beside the picture.
  auto* commandes = new QGridLayout;
  racine->addLayout(commandes);
  const QString textesListe[6] = {QStringLiteral("Effacer toute la liste de mesure"),
                                  QStringLiteral("Copier"),
                                  QStringLiteral("Enregistrer le carnet dans un fichier"),
                                  QStringLiteral("Aperçu"),
                                  QStringLiteral("Enregistrer depuis l'aperçu"),
                                  QStringLiteral("Quitter")};
  for (int i = 0; i < 6; ++i) {
    auto* b = bouton(QStringLiteral("cmdListe%1").arg(i), textesListe[i]);
    commandes->addWidget(b, i / 2, i % 2);
    connect(b, &QPushButton::clicked, this, [this, i] { cmdListe(i); });
  }
  VersBoites();
}

frmListeMesure* frmListeMesure::Afficher(SessionRecord& session, cAdvancedImagery& ai, QWidget* parent) {
  // A closed notebook waits for its deletion: a new one is made.
  if (instance_ && instance_->isVisible()) {
    instance_->show();
    instance_->raise();
    instance_->activateWindow();
    return instance_;
  }
  auto* f = new frmListeMesure(session, ai, parent);
  f->setAttribute(Qt::WA_DeleteOnClose);
  instance_ = f;
  // Beside the measuring window's picture, where it covers the least of it;
  // at its smaller size when the screen has no room for it whole beside the picture.
  const QWidget* image = parent && parent->window()->objectName() == u"frmMesure"
                             ? parent->window()->findChild<QWidget*>(QStringLiteral("picImage"))
                             : nullptr;
  QSize voulue = f->sizeHint();
  if (image && ZoneEcran(f).width() - PartieVisible(image).width() < voulue.width() + 10)
    voulue = f->minimumSizeHint().expandedTo(QSize(560, 440));
  AjusterAEcran(f, voulue);
  // Clear of the measuring window's controls too, where the screen leaves room.
  if (image) PlacerACoteDe(f, image, {image->window()});
  f->show();
  return f;
}

void frmListeMesure::closeEvent(QCloseEvent* e) {
  frmFichierPhoto::FermerFenetres(QStringLiteral("frmAppercuRtf"));
  e->accept();
}

void frmListeMesure::VersBoites() {
  txtMesure_[0]->setText(carnet_.txtMesure0);
  txtMesure_[1]->setText(carnet_.txtMesure1);
  txtMesure_[2]->setText(carnet_.txtMesure2);
}

void frmListeMesure::DepuisBoites() {
  carnet_.txtMesure0 = txtMesure_[0]->text();
  carnet_.txtMesure1 = txtMesure_[1]->text();
  carnet_.txtMesure2 = txtMesure_[2]->text();
}

void frmListeMesure::Afficher() {
  for (QListWidget* l : lstMesure_) l->clear();
  for (const LigneCarnet& l : carnet_.Lignes) {
    lstMesure_[0]->addItem(l.numero);
    lstMesure_[1]->addItem(l.valeur);
    lstMesure_[2]->addItem(l.texte);
  }
  txtLst_->setPlainText(carnet_.Rendu());
  txtLst_->moveCursor(QTextCursor::End);
  VersBoites();
}

void frmListeMesure::cmdAjouterLst() {
  DepuisBoites();
  const Carnet::Ajout a = carnet_.AjouterMesure();
  if (a == Carnet::Ajout::Rien) return;
  Afficher();
  if (a == Carnet::Ajout::Plein)
    Dialogues().Message(windowTitle(), TexteMaximumMesures, Icone::Exclamation);
}

void frmListeMesure::cmdInputSerie() {
  const auto reponse = Dialogues().Saisie(TitreNouvelleSerie, InviteNouvelleSerie, QString());
  DepuisBoites();
  const Carnet::Ajout a = carnet_.AjouterSerie(reponse.value_or(QString()));
  Afficher();
  if (a == Carnet::Ajout::Plein)
    Dialogues().Message(windowTitle(), TexteMaximumMesures, Icone::Exclamation);
}

void frmListeMesure::cmdEffacerTxt() {
  carnet_.EffacerSaisie();
  VersBoites();
}

QList<LigneRapport> frmListeMesure::ConstruireRapport(Vignette& vignette) {
  const int largeur = comboTailleVignette_->currentText().toInt();
  if (CreerVignette(ai_, s_.ImageCourante, largeur, QString(), vignette)) {
    QImage img;
    if (img.loadFromData(vignette.jpeg, "JPEG")) picVignette_->setPixmap(QPixmap::fromImage(img));
  } else {
    picVignette_->clear();
  }
  ContenuCarnet c;
  c.txtLst = carnet_.Rendu();
  c.txtAnnotations = txtAnnotations_->toPlainText();
  c.application = ApplicationRapport();
  return LignesRapport(s_, c);
}

QString frmListeMesure::DossierEnregistrement() const {
  return !s_.RepTravail.isEmpty() ? s_.RepTravail : s_.DocPath;
}

void frmListeMesure::Enregistrer() {
  const bool rtf = optFormatTxt_[1]->isChecked();
  const QString nom = NomFichierCarnet(s_.TitreImage, rtf);
  Dialogues().Message(windowTitle(), TexteAvertissementEnregistrement(nom), Icone::Information);
  Vignette vignette;
  const QList<LigneRapport> lignes = ConstruireRapport(vignette);
  const QString chemin = Dialogues().FichierEnregistrer(TitreEnregistrementCarnet(rtf),
                                                        DossierEnregistrement(), nom,
                                                        FiltreEnregistrementCarnet(rtf));
  if (chemin.isEmpty()) return;  // cancelled
  const bool ecrit = rtf ? EnregistrerRtf(chemin, lignes, vignette) : EnregistrerTexte(chemin, lignes);
  // Not written: which file and why; a file already there stays as it was.
  if (!ecrit)
    Dialogues().Message(windowTitle(),
                        AvecRaison(QStringLiteral("Error 75 (Erreur d'accès au chemin/fichier) in procedure "
                                                  "Enregistrer of Feuille frmListeMesure")),
                        Icone::Critique);
}

void frmListeMesure::cmdListe(int index) {
  switch (index) {
    case 0:
      carnet_.EffacerTout();
      Afficher();
      break;
    case 1: {
      Vignette vignette;
      QGuiApplication::clipboard()->setText(TexteRapport(ConstruireRapport(vignette)));
      break;
    }
    case 2:
      Enregistrer();
      break;
    case 3: {
      Vignette vignette;
      const QList<LigneRapport> lignes = ConstruireRapport(vignette);
      frmAppercuRtf::Afficher(lignes, vignette, DossierEnregistrement(),
                              NomFichierCarnet(s_.TitreImage, true), this);
      break;
    }
    case 4:
      frmFichierPhoto::FermerFenetres(QStringLiteral("frmAppercuRtf"));
      Enregistrer();
      break;
    case 5:
      close();
      for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == u"frmMesure" && w->isVisible()) w->activateWindow();
      break;
    default:
      break;
  }
}

}  // namespace tg
