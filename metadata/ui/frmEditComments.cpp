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
#include <algorithm>

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

QStringList LignesPNG(const meta::CPNG& png) {
  QStringList l;
  if (png.IHDR)
    l << QStringLiteral("Fichier PNG : %1x%2 pixels, %3 bits, type de couleur %4%5")
             .arg(png.IHDR->Width)
             .arg(png.IHDR->Height)
             .arg(png.IHDR->BitDepth)
             .arg(png.IHDR->ColorType)
             .arg(png.IHDR->InterlaceMethod ? QStringLiteral(", entrelacé") : QString());
  else
    l << QStringLiteral("Fichier PNG");
  if (png.pHYS)
    l << QStringLiteral("Résolution de l'image : %1x%2 %3")
             .arg(png.pHYS->XPixelsPerUnit)
             .arg(png.pHYS->YPixelsPerUnit)
             .arg(png.pHYS->UnitSpecifier == 1 ? QStringLiteral("pixels par mètre")
                                               : QStringLiteral("(sans unité)"));
  if (png.tIME)
    l << QStringLiteral("Date de modification : %1-%2-%3 %4:%5:%6")
             .arg(png.tIME->Year)
             .arg(png.tIME->Month, 2, 10, QLatin1Char('0'))
             .arg(png.tIME->Day, 2, 10, QLatin1Char('0'))
             .arg(png.tIME->Hour, 2, 10, QLatin1Char('0'))
             .arg(png.tIME->Minute, 2, 10, QLatin1Char('0'))
             .arg(png.tIME->Second, 2, 10, QLatin1Char('0'));
  auto texte = [&l](const char* type, const meta::CTexteBase& t) {
    QString c = t.Content;
    c.replace(QStringLiteral("\r\n"), QStringLiteral(" ")).replace(u'\n', u' ');
    l << QStringLiteral("%1 %2 : %3").arg(QLatin1String(type), t.MotCle, c);
  };
  // The comment chunk is the one in the text box.
  const meta::CTexteBase* commentaire = png.ChunkCommentaire();
  for (const meta::CtEXt& t : png.tEXt)
    if (&t != commentaire) texte("tEXt", t);
  for (const meta::CzTXt& t : png.zTXt)
    if (&t != commentaire) texte("zTXt", t);
  for (const meta::CiTXt& t : png.iTXt)
    if (&t != commentaire) texte("iTXt", t);
  return l;
}

QStringList LignesGIF(const meta::CGIF& gif) {
  QStringList l;
  l << QStringLiteral("Fichier GIF %1 : %2x%3 pixels")
           .arg(gif.Version)
           .arg(gif.Width)
           .arg(gif.Height);
  if (gif.GlobalColorMapFollow)
    l << QStringLiteral("Table de couleurs globale : %1 couleurs, fond %2")
             .arg(1 << std::clamp<int>(gif.BitsPerPixel, 1, 8))
             .arg(gif.BackgroungIndex);
  else
    l << QStringLiteral("Pas de table de couleurs globale");
  l << QStringLiteral("Résolution des couleurs : %1 bits").arg(gif.ColorResolution);
  return l;
}

QStringList LignesBMP(const meta::CBMP& bmp) {
  auto ligne = [](const char* nom, qint64 v) {
    return QStringLiteral("%1 : %2").arg(QLatin1String(nom)).arg(v);
  };
  return {QStringLiteral("bfType : 0x") +
              QString::number(bmp.bfType, 16).toUpper().rightJustified(4, QLatin1Char('0')),
          ligne("bfSize", bmp.bfSize),
          ligne("bfReserved1", bmp.bfReserved1),
          ligne("bfReserved2", bmp.bfReserved2),
          ligne("bfOffBits", bmp.bfOffBits),
          ligne("biSize", bmp.biSize),
          ligne("biWidth", bmp.biWidth),
          ligne("biHeight", bmp.biHeight),
          ligne("biPlanes", bmp.biPlanes),
          ligne("biBitCount", bmp.biBitCount),
          ligne("biCompression", bmp.biCompression),
          ligne("biSizeImage", bmp.biSizeImage),
          ligne("biXPelsPerMeter", bmp.biXPelsPerMeter),
          ligne("biYPelsPerMeter", bmp.biYPelsPerMeter),
          ligne("biClrUsed", bmp.biClrUsed),
          ligne("biClrImportant", bmp.biClrImportant)};
}

QString TexteCaractereRefuse(QChar c) {
  return QStringLiteral(
             "Le caractère « %1 » ne peut pas être écrit dans le fichier (jeu Windows-1252) : "
             "remplacez-le avant d'enregistrer. Le fichier n'a pas été modifié.")
      .arg(c);
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
  lstInfos_->setMaximumHeight(120);
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
  txtCommentaire_->setReadOnly(false);
  txtCommentaire_->setPlaceholderText({});
  cmdSave_->setEnabled(true);
  picVignette_->clear();
}

void frmEditComments::Charger(const QString& chemin, bool depuisDialogue) {
  Vider();
  chemin_ = chemin;
  image_ = std::make_unique<meta::CImage>();
  if (!image_->ReadImage(chemin_))
    Dialogues().Message(TitreModificationMetas, image_->Erreur(), Icone::Exclamation);
  if (image_->ImageType == meta::TypeJPEG ||
      (depuisDialogue && image_->ImageType == meta::TypeTIFF) || image_->PNG() != nullptr ||
      image_->GIF() != nullptr || image_->BMP() != nullptr)
    Remplir();
  // A TIFF's comment is not written here, whichever way it was opened: the
  // box takes nothing that a save would silently drop.
  if (image_->TIFF() != nullptr) {
    txtCommentaire_->setReadOnly(true);
    txtCommentaire_->setPlaceholderText(TexteTIFFSansCommentaire);
  }
  label1_->setText(chemin_);
}

void frmEditComments::Remplir() {
  if (meta::CJPEG* j = image_->JPEG()) {
    lstInfos_->addItems(LignesJFIF(j->JFIF()));
    // The text box shows the comment up to its first NUL, with the line ends of the box.
    MontrerTexte(j->JPEGComment().Texte());
  } else if (meta::CTIFF* t = image_->TIFF()) {
    lstInfos_->addItem(
        QStringLiteral("Fichier TIFF : %1 répertoire(s) d'image").arg(t->EXIF().NombreIfd()));
  } else if (meta::CPNG* p = image_->PNG()) {
    lstInfos_->addItems(LignesPNG(*p));
    MontrerTexte(p->Commentaire());
  } else if (meta::CGIF* g = image_->GIF()) {
    lstInfos_->addItems(LignesGIF(*g));
    MontrerTexte(g->Comment);
  } else if (meta::CBMP* b = image_->BMP()) {
    lstInfos_->addItems(LignesBMP(*b));
    txtCommentaire_->setReadOnly(true);
    txtCommentaire_->setPlaceholderText(TexteBMPSansCommentaire);
    cmdSave_->setEnabled(false);
  }
}

void frmEditComments::MontrerTexte(QString texte) {
  texte.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  txtCommentaire_->setPlainText(texte);
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
  if (image_ && image_->BMP() != nullptr) {
    Dialogues().Message(TitreModificationMetas, TexteBMPSansCommentaire, Icone::Information);
    return;
  }
  // The file holds Windows-1252: a character it lacks would come back as "?".
  for (const QChar c : txtCommentaire_->toPlainText())
    if (c != u'?' && meta::VersCp1252(QString(c)) == "?") {
      Dialogues().Message(TitreModificationMetas, TexteCaractereRefuse(c), Icone::Exclamation);
      return;
    }
  if (Dialogues().Question(TitreModificationMetas, TexteQuestionSauvegarde(), Boutons::OuiNon,
                           Reponse::Oui, Icone::Exclamation) != Reponse::Oui) {
    Dialogues().Message(TitreModificationMetas, QStringLiteral("Opération annulée ..."),
                        Icone::Information);
    return;
  }
  // The image in hand may be this very file: it is closed before the rewrite.
  principale_.FermerImage();
  if (!image_) return;
  // The block's lines end in CR LF in every format; an empty text leaves a
  // PNG or a GIF without a comment.
  const QString texte = meta::FinsDeLigneCRLF(txtCommentaire_->toPlainText());
  if (meta::CJPEG* j = image_->JPEG()) j->JPEGComment().Content = texte;
  if (meta::CPNG* p = image_->PNG()) p->SetCommentaire(texte);
  if (meta::CGIF* g = image_->GIF()) g->Comment = texte;
  if (!image_->WriteImage(chemin_)) {
    Dialogues().Message(TitreModificationMetas, image_->Erreur(), Icone::Critique);
    return;
  }
  const bool tiff = image_->TIFF() != nullptr;
  Charger(chemin_, tiff);
  AfficherVignette();
  Dialogues().Message(TitreModificationMetas,
                      tiff ? TexteTIFFReecrit : QStringLiteral("Modifications OK !"),
                      Icone::Information);
}

}  // namespace tg
