#include "metadata/ui/frmEditComments.h"

#include <QFileInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QListWidget>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/frmFichierPhoto.h"
#include "metadata/CommandesMeta.h"
#include "platform/Dialogues.h"

namespace tg {

namespace {
constexpr int kCoteVignette = 160;  // pixels
}  // namespace

QStringList LignesJFIF(const meta::CJFIF& jfif) {
  QString unite;
  switch (jfif.unit) {
    case 0:
      unite = QStringLiteral(" pixels");
      break;
    case 1:
      unite = QStringLiteral(" dpi");
      break;
    case 2:
      unite = QStringLiteral(" dpc");
      break;
    default:
      break;
  }
  return {QStringLiteral("Version : ") + jfif.Version,
          QStringLiteral("Résolution de l'image : %1x%2 ").arg(jfif.Xdensity).arg(jfif.Ydensity) +
              unite,
          QStringLiteral("Taille de la miniature : %1x%2 pixels")
              .arg(jfif.Xthumbnail)
              .arg(jfif.Ythumbnail)};
}

QString TexteQuestionSauvegarde() {
  return QStringLiteral(
      "Attention, pour sauvegarder vos modifications \r\n"
      "l'image en cours doit être fermée.\r\n"
      "Cette opération est définitive ...\r\n"
      "Continuer ?\r\n");
}

frmEditComments::frmEditComments(frmFichierPhoto& principale)
    : QWidget(&principale, Qt::Window), principale_(principale) {
  setObjectName(QStringLiteral("frmEditComments"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Editeur de métadonnées"));

  auto* garde = new QGroupBox(QStringLiteral(" Mise en garde   "), this);
  garde->setObjectName(QStringLiteral("fraMiseEnGarde"));
  auto* lg = new QVBoxLayout(garde);
  for (const char* ligne :
       {"Attention, cet outil est dangereux pour votre image si vous ne comprenez pas ce que vous "
        "faîtes !",
        "Ne surtout pas modifier le titre des champs et le signe égal   (expl: NomAuteur=)",
        "Ne pas remplacer les champs numériques par du texte, conserver les points ou les virgules "
        "!",
        "Ne pas modifier le champ [Application=Tessellographe xxx]   !!!",
        "Respectez la structure du bloc : une clé par ligne, sans ligne ajoutée ni retirée."}) {
    auto* l = new QLabel(QString::fromUtf8(ligne), garde);
    l->setWordWrap(true);
    lg->addWidget(l);
  }

  label1_ = new QLabel(this);
  label1_->setObjectName(QStringLiteral("Label1"));
  lstInfos_ = new QListWidget(this);
  lstInfos_->setObjectName(QStringLiteral("lstInfos"));
  lstInfos_->setMaximumHeight(80);
  picVignette_ = new QLabel(this);
  picVignette_->setObjectName(QStringLiteral("picVignette"));
  picVignette_->setFixedSize(kCoteVignette, kCoteVignette);
  picVignette_->setAlignment(Qt::AlignCenter);
  txtCommentaire_ = new QPlainTextEdit(this);
  txtCommentaire_->setObjectName(QStringLiteral("txtCommentaire"));
  txtCommentaire_->setLineWrapMode(QPlainTextEdit::NoWrap);

  cmdOpen_ = new QPushButton(QStringLiteral("Ouvrir..."), this);
  cmdOpen_->setObjectName(QStringLiteral("cmdOpen"));
  cmdSave_ = new QPushButton(QStringLiteral("Enregistrer"), this);
  cmdSave_->setObjectName(QStringLiteral("cmdSave"));
  cmdQuitter_ = new QPushButton(QStringLiteral("Quitter"), this);
  cmdQuitter_->setObjectName(QStringLiteral("cmdQuitter"));
  connect(cmdOpen_, &QPushButton::clicked, this, &frmEditComments::cmdOpen_Click);
  connect(cmdSave_, &QPushButton::clicked, this, &frmEditComments::cmdSave_Click);
  connect(cmdQuitter_, &QPushButton::clicked, this, &frmEditComments::cmdQuitter_Click);

  auto* haut = new QHBoxLayout;
  auto* infos = new QVBoxLayout;
  infos->addWidget(label1_);
  infos->addWidget(lstInfos_);
  haut->addLayout(infos, 1);
  haut->addWidget(picVignette_);
  auto* boutons = new QHBoxLayout;
  boutons->addWidget(cmdOpen_);
  boutons->addStretch(1);
  boutons->addWidget(cmdSave_);
  boutons->addWidget(cmdQuitter_);
  auto* l = new QVBoxLayout(this);
  l->addWidget(garde);
  l->addLayout(haut);
  l->addWidget(txtCommentaire_, 1);
  l->addLayout(boutons);
  resize(640, 560);
}

void frmEditComments::Ouvrir(frmFichierPhoto& principale) {
  // A closed editor waits for its deletion: it does not count.
  auto* ouverte = principale.findChild<frmEditComments*>(QStringLiteral("frmEditComments"));
  if (ouverte != nullptr && ouverte->isVisible()) {
    ouverte->show();
    ouverte->raise();
    ouverte->activateWindow();
    return;
  }
  auto* f = new frmEditComments(principale);
  principale.FenetreOuverte(f);
  if (f->Form_Load()) f->show();
}

bool frmEditComments::Form_Load() {
  const QString chemin = principale_.Session().PathOrigine;
  if (chemin.isEmpty()) {
    principale_.show();
    close();
    return false;
  }
  Charger(chemin, false);
  AfficherVignette();
  return true;
}

void frmEditComments::Vider() {
  lstInfos_->clear();
  txtCommentaire_->clear();
  picVignette_->clear();
}

void frmEditComments::Charger(const QString& chemin, bool depuisDialogue) {
  Vider();
  chemin_ = chemin;
  image_ = std::make_unique<meta::CImage>();
  if (!image_->ReadImage(chemin_))
    Dialogues().Message(TitreModificationMetas, image_->Erreur(), Icone::Exclamation);
  if (image_->ImageType == meta::TypeJPEG ||
      (depuisDialogue && image_->ImageType == meta::TypeTIFF))
    Remplir();
  label1_->setText(chemin_);
}

void frmEditComments::Remplir() {
  if (meta::CJPEG* j = image_->JPEG()) {
    lstInfos_->addItems(LignesJFIF(j->JFIF()));
    // The text box shows the comment up to its first NUL, with the line ends of the box.
    QString texte = j->JPEGComment().Texte();
    texte.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    txtCommentaire_->setPlainText(texte);
  } else if (meta::CTIFF* t = image_->TIFF()) {
    lstInfos_->addItem(
        QStringLiteral("Fichier TIFF : %1 répertoire(s) d'image").arg(t->EXIF().NombreIfd()));
  }
}

void frmEditComments::AfficherVignette() {
  QImageReader lecteur(chemin_);
  const QSize taille = lecteur.size();
  if (taille.isValid())
    lecteur.setScaledSize(taille.scaled(kCoteVignette, kCoteVignette, Qt::KeepAspectRatio));
  const QImage image = lecteur.read();
  picVignette_->setPixmap(image.isNull() ? QPixmap() : QPixmap::fromImage(image));
}

void frmEditComments::cmdOpen_Click() {
  const QString dossier = chemin_.isEmpty() ? QString() : QFileInfo(chemin_).absolutePath();
  const QString chemin = Dialogues().FichierOuvrir(
      QStringLiteral("Choisissez un fichier à analyser..."), dossier,
      QStringLiteral(
          "Image Jpg|*.jpg|Image TIFF|*.tif|Image BMP|*.bmp|Image PNG|*.png|Image Gif|*.gif"));
  if (chemin.isEmpty()) return;
  Charger(chemin, true);
  AfficherVignette();
}

void frmEditComments::cmdSave_Click() {
  if (Dialogues().Question(TitreModificationMetas, TexteQuestionSauvegarde(), Boutons::OuiNon,
                           Reponse::Oui, Icone::Exclamation) != Reponse::Oui) {
    Dialogues().Message(TitreModificationMetas, QStringLiteral("Opération annulée ..."),
                        Icone::Information);
    return;
  }
  // The image in hand may be this very file: it is closed before the rewrite.
  principale_.FermerImage();
  if (!image_) return;
  if (meta::CJPEG* j = image_->JPEG())
    j->JPEGComment().Content = meta::FinsDeLigneCRLF(txtCommentaire_->toPlainText());
  if (!image_->WriteImage(chemin_)) {
    Dialogues().Message(TitreModificationMetas, image_->Erreur(), Icone::Critique);
    return;
  }
  Charger(chemin_, image_->ImageType == meta::TypeTIFF);
  AfficherVignette();
  Dialogues().Message(TitreModificationMetas, QStringLiteral("Modifications OK !"),
                      Icone::Information);
}

}  // namespace tg
