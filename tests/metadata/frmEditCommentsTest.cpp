// The comment editor driven through its named controls and the scripted dialogues.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <memory>

#include "core/Session.h"
#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "metadata/CImage.h"
#include "metadata/ui/frmEditComments.h"
#include "tests/metadata/Fabrique.h"
#include "tests/support/DialoguesScriptes.h"
#include "tests/support/DossierMonte.h"

namespace tg {
namespace {

using namespace meta::test;

QByteArray Lire(const QString& chemin) {
  QFile f(chemin);
  EXPECT_TRUE(f.open(QIODevice::ReadOnly));
  return f.readAll();
}

QByteArray Scan(const QByteArray& f) {
  const meta::ParcoursJPEG p = meta::ParcourirSegments(f);
  return p.positionScan ? f.mid(p.positionScan - 1) : QByteArray();
}

class EditeurCommentaires : public testing::Test {
 protected:
  test::DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  std::unique_ptr<frmFichierPhoto> w;
  QString chemin;

  void SetUp() override {
    w = std::make_unique<frmFichierPhoto>(s, ai);
    // A formatted picture: Qt's JPEG with a JFIF segment of known values and a block.
    const QByteArray qt = JpegQt(40, 30);
    ASSERT_EQ(uint8_t(qt[3]), 0xE0);
    const int finApp0 = 4 + ((uint8_t(qt[4]) << 8) | uint8_t(qt[5]));
    const QByteArray jfif("JFIF\0\x01\x02\x01\x00\x48\x00\x96\0\0", 14);
    const QByteArray bloc("Application=Tessellographe 1.0\r\nTitre=Ancien\r\n\0", 47);
    const QByteArray fichier =
        qt.left(2) + Segment(0xE0, jfif) + Segment(0xFE, bloc) + qt.mid(finApp0);
    chemin = QDir::currentPath() + "/formatee.jpg";
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(fichier);
    f.close();
    ASSERT_TRUE(ai.IO_LoadImage(chemin, s.ImageCourante));
    ReinitialiserSession(s, ai);
    s.PathOrigine = chemin;
    s.ImageDejaFormatee = true;
    s.Etape = 1;
  }

  frmEditComments* Ouvrir() {
    frmEditComments::Ouvrir(*w);
    return w->findChild<frmEditComments*>("frmEditComments");
  }
  template <typename T>
  T* C(frmEditComments* f, const char* nom) {
    T* c = f->findChild<T*>(QLatin1String(nom));
    EXPECT_NE(c, nullptr) << nom;
    return c;
  }
  QStringList Lignes(frmEditComments* f) {
    QStringList r;
    auto* l = C<QListWidget>(f, "lstInfos");
    for (int i = 0; i < l->count(); ++i) r << l->item(i)->text();
    return r;
  }
};

TEST_F(EditeurCommentaires, LeChargementMontreJFIFEtBloc) {
  frmEditComments* f = Ouvrir();
  ASSERT_NE(f, nullptr);
  EXPECT_TRUE(f->isVisible());
  EXPECT_EQ(Lignes(f),
            QStringList({"Version : 1.02", QString::fromUtf8("Résolution de l'image : 72x150  dpi"),
                         "Taille de la miniature : 0x0 pixels"}));
  EXPECT_EQ(C<QPlainTextEdit>(f, "txtCommentaire")->toPlainText(),
            "Application=Tessellographe 1.0\nTitre=Ancien\n");
  EXPECT_EQ(C<QLabel>(f, "Label1")->text(), chemin);
  EXPECT_FALSE(C<QLabel>(f, "picVignette")->pixmap().isNull());
  EXPECT_NE(f->findChild<QWidget*>("fraMiseEnGarde"), nullptr);
  // A second request brings the same window forward.
  frmEditComments::Ouvrir(*w);
  EXPECT_EQ(w->findChildren<frmEditComments*>().size(), 1);
}

TEST_F(EditeurCommentaires, EnregistrerReecritLeBlocEtGardeLeScan) {
  const QByteArray avant = Lire(chemin);
  frmEditComments* f = Ouvrir();
  ASSERT_NE(f, nullptr);
  C<QPlainTextEdit>(f, "txtCommentaire")
      ->setPlainText(QString::fromUtf8("Application=Tessellographe 1.0\nTitre=Diatomée\n"));
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>(f, "cmdSave")->click();

  ASSERT_EQ(dlg.appels.size(), 2u) << dlg.Textes().join(" | ").toStdString();
  EXPECT_EQ(dlg.appels[0].genre, "Question");
  EXPECT_EQ(dlg.appels[0].titre, QString::fromUtf8("Modification des métas"));
  EXPECT_EQ(dlg.appels[0].texte,
            QString::fromUtf8("Attention, pour sauvegarder vos modifications \r\n"
                              "l'image en cours doit être fermée.\r\n"
                              "Cette opération est définitive ...\r\n"
                              "Continuer ?\r\n"));
  EXPECT_EQ(dlg.appels[0].icone, 48);
  EXPECT_EQ(dlg.appels[1].texte, "Modifications OK !");
  // The image in hand was closed.
  EXPECT_EQ(s.Etape, 0);
  EXPECT_TRUE(s.ImageCourante.Vide());

  const QByteArray apres = Lire(chemin);
  EXPECT_EQ(Scan(apres), Scan(avant));
  meta::CImage relue;
  ASSERT_TRUE(relue.ReadImage(chemin));
  EXPECT_EQ(relue.JPEG()->JPEGComment().Texte(),
            QString::fromUtf8("Application=Tessellographe 1.0\r\nTitre=Diatomée\r\n"));
  EXPECT_EQ(apres.count("\xE9"), avant.count("\xE9") + 1);  // Windows-1252 in the file
  // The window read the file again.
  EXPECT_EQ(C<QPlainTextEdit>(f, "txtCommentaire")->toPlainText(),
            QString::fromUtf8("Application=Tessellographe 1.0\nTitre=Diatomée\n"));
  EXPECT_EQ(Lignes(f).size(), 3);
}

TEST_F(EditeurCommentaires, NonAnnuleSansToucherAuFichier) {
  const QByteArray avant = Lire(chemin);
  frmEditComments* f = Ouvrir();
  ASSERT_NE(f, nullptr);
  C<QPlainTextEdit>(f, "txtCommentaire")->setPlainText("autre");
  dlg.reponses = {Reponse::Non};
  C<QPushButton>(f, "cmdSave")->click();
  EXPECT_EQ(dlg.Dernier().texte, QString::fromUtf8("Opération annulée ..."));
  EXPECT_EQ(Lire(chemin), avant);
  EXPECT_EQ(s.Etape, 1);
}

// On a full disk and on a read-only one: the file and the reason, the file
// as it was.
TEST_F(EditeurCommentaires, UnEchecDEcritureDitLeFichierEtLaRaison) {
  const QByteArray avant = Lire(chemin);
  for (const bool lectureSeule : {false, true}) {
    SCOPED_TRACE(lectureSeule);
    const QString dossier = QDir::currentPath() + (lectureSeule ? "/fige" : "/plein");
    // One page: the file fills it, its replacement finds no room.
    const test::DossierMonte disque(dossier, 4096, lectureSeule, "formatee.jpg", avant);
    if (!disque.Monte()) GTEST_SKIP() << "monter un système de fichiers demande les droits de root";
    const QString ici = dossier + "/formatee.jpg";
    if (!lectureSeule) {
      QFile f(ici);
      ASSERT_TRUE(f.open(QIODevice::WriteOnly));
      ASSERT_EQ(f.write(avant), avant.size());
    }
    ai.IO_DestroyBitmap(s.ImageCourante);
    ASSERT_TRUE(ai.IO_LoadImage(ici, s.ImageCourante));
    s.PathOrigine = ici;
    s.Etape = 1;
    frmEditComments* f = Ouvrir();
    ASSERT_NE(f, nullptr);
    C<QPlainTextEdit>(f, "txtCommentaire")->setPlainText("Application=Tessellographe 1.0\nTitre=Nouveau\n");
    dlg.appels.clear();
    dlg.reponses = {Reponse::Oui};
    C<QPushButton>(f, "cmdSave")->click();
    EXPECT_EQ(dlg.Dernier().icone, 16);
    EXPECT_EQ(dlg.Dernier().texte, "Le fichier " + ici + " n'a pas pu être écrit : " +
                                       (lectureSeule ? "le disque est en lecture seule" : "le disque est plein") +
                                       ". Il est resté tel qu'il était.");
    EXPECT_EQ(Lire(ici), avant);
    f->close();
    QApplication::processEvents();
  }
}

TEST_F(EditeurCommentaires, SansImageLaFenetreSeFerme) {
  s.PathOrigine.clear();
  frmEditComments::Ouvrir(*w);
  EXPECT_TRUE(w->isVisible());
  for (auto* f : w->findChildren<frmEditComments*>()) EXPECT_FALSE(f->isVisible());
}

// A 1 x 1 grey TIFF, one strip.
QByteArray TiffGris() {
  QByteArray t = EnTete(false);
  t += U16(false, 4);
  t += Entree(false, 0x0100, 3, 1, U16(false, 1));
  t += Entree(false, 0x0101, 3, 1, U16(false, 1));
  t += Entree(false, 0x0111, 4, 1, U32(false, 62));
  t += Entree(false, 0x0117, 4, 1, U32(false, 1));
  t += U32(false, 0) + QByteArray("\x80", 1);
  return t;
}

// A TIFF gets no comment from the editor: the box says so and takes nothing,
// whether the file came from the dialog or from the image in hand; a save
// still rewrites the file, and says that no comment went in.
TEST_F(EditeurCommentaires, UnTIFFSeReecritSansCommentaireEtLeDit) {
  const QByteArray t = TiffGris();
  const QString tif = QDir::currentPath() + "/g.tif";
  QFile fichier(tif);
  ASSERT_TRUE(fichier.open(QIODevice::WriteOnly));
  fichier.write(t);
  fichier.close();

  frmEditComments* f = Ouvrir();
  ASSERT_NE(f, nullptr);
  auto* texte = C<QPlainTextEdit>(f, "txtCommentaire");
  EXPECT_FALSE(texte->isReadOnly());
  dlg.chaines = {tif};
  C<QPushButton>(f, "cmdOpen")->click();
  EXPECT_EQ(dlg.appels.back().titre, QString::fromUtf8("Choisissez un fichier à analyser..."));
  EXPECT_EQ(C<QLabel>(f, "Label1")->text(), tif);
  EXPECT_TRUE(texte->toPlainText().isEmpty());
  EXPECT_TRUE(texte->isReadOnly());
  EXPECT_EQ(texte->placeholderText(), TexteTIFFSansCommentaire);
  EXPECT_EQ(Lignes(f).size(), 1);
  // Whatever reached the box is not announced as written.
  texte->setPlainText("Titre=perdu");
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>(f, "cmdSave")->click();
  EXPECT_EQ(dlg.Dernier().texte, TexteTIFFReecrit);
  EXPECT_NE(dlg.Dernier().texte, "Modifications OK !");
  const QByteArray apres = Lire(tif);
  EXPECT_TRUE(apres.startsWith(t.left(4)));
  EXPECT_FALSE(apres.contains("perdu"));
  meta::CImage relue;
  ASSERT_TRUE(relue.ReadImage(tif));
  const meta::CExifDirEnt* bande = relue.TIFF()->EXIF().ifd(0)->Trouver(0x0111);
  ASSERT_NE(bande, nullptr);
  EXPECT_EQ(apres[int(bande->GetDataVariant())], '\x80');
  EXPECT_TRUE(texte->isReadOnly());  // read again, still a TIFF
  f->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  ASSERT_EQ(w->findChild<frmEditComments*>("frmEditComments"), nullptr);

  // The TIFF in hand, loaded with the window.
  s.PathOrigine = tif;
  f = Ouvrir();
  ASSERT_NE(f, nullptr);
  texte = C<QPlainTextEdit>(f, "txtCommentaire");
  EXPECT_TRUE(texte->isReadOnly());
  EXPECT_EQ(texte->placeholderText(), TexteTIFFSansCommentaire);
  // A JPEG chosen next is editable again.
  dlg.chaines = {chemin};
  C<QPushButton>(f, "cmdOpen")->click();
  EXPECT_FALSE(texte->isReadOnly());
  EXPECT_TRUE(texte->placeholderText().isEmpty());
}

// ------------------------------------------------------- PNG, GIF and BMP

QString Ecrire(const QString& nom, const QByteArray& octets) {
  const QString chemin = QDir::currentPath() + "/" + nom;
  QFile f(chemin);
  EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
  f.write(octets);
  return chemin;
}

QByteArray ImageQt(const char* format, int w = 40, int h = 30) {
  QImage image(w, h, QImage::Format_RGB32);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) image.setPixel(x, y, qRgb(x * 6, y * 8, (x * y) % 256));
  image.setDotsPerMeterX(3780);
  image.setDotsPerMeterY(3780);
  QByteArray octets;
  QBuffer tampon(&octets);
  tampon.open(QIODevice::WriteOnly);
  image.save(&tampon, format);
  return octets;
}

// Every chunk but the text and time ones, whole: what the editor must not touch.
QByteArray ChunksImage(const QByteArray& png) {
  meta::CPNG p;
  p.LireOctets(png);
  QByteArray r;
  for (const meta::CChunk& c : p.Chunks)
    if (c.ChunkType != "tEXt" && c.ChunkType != "zTXt" && c.ChunkType != "iTXt" &&
        c.ChunkType != "tIME")
      r += png.mid(c.lpData - 8, c.Length + 12);
  return r;
}

// A PNG holding a block in tEXt "Comment" and a title in another tEXt.
QByteArray PngAvecBloc() {
  meta::CPNG p;
  p.LireOctets(ImageQt("PNG"));
  p.SetCommentaire("Application=Tessellographe 1.0\r\nTitre=Ancien\r\n");
  meta::CtEXt titre;
  titre.SetKeyword(0);
  titre.Content = "Lame 4";
  p.tEXt.push_back(titre);
  QByteArray sortie;
  EXPECT_TRUE(p.Ecrire(sortie, nullptr));
  return sortie;
}

TEST_F(EditeurCommentaires, UnPNGMontreEtReecritSonCommentaire) {
  frmEditComments* f = Ouvrir();
  ASSERT_NE(f, nullptr);
  const QByteArray avant = PngAvecBloc();
  const QString png = Ecrire("bloc.png", avant);
  dlg.chaines = {png};
  C<QPushButton>(f, "cmdOpen")->click();
  const QStringList lignes = Lignes(f);
  ASSERT_GE(lignes.size(), 3) << lignes.join(" | ").toStdString();
  EXPECT_TRUE(lignes[0].startsWith("Fichier PNG : 40x30 pixels, 8 bits"))
      << lignes[0].toStdString();
  EXPECT_TRUE(
      lignes.contains(QString::fromUtf8("Résolution de l'image : 3780x3780 pixels par mètre")));
  EXPECT_TRUE(lignes.contains("tEXt Title : Lame 4"));
  auto* texte = C<QPlainTextEdit>(f, "txtCommentaire");
  EXPECT_FALSE(texte->isReadOnly());
  EXPECT_EQ(texte->toPlainText(), "Application=Tessellographe 1.0\nTitre=Ancien\n");

  // A character outside Windows-1252 is refused before anything is closed.
  texte->setPlainText(QString::fromUtf8("Application=Tessellographe 1.0\nTitre=Ω\n"));
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>(f, "cmdSave")->click();
  EXPECT_EQ(dlg.Dernier().texte, TexteCaractereRefuse(QChar(0x03A9)));
  EXPECT_EQ(dlg.Dernier().genre, "Message");
  EXPECT_EQ(Lire(png), avant);
  EXPECT_EQ(s.Etape, 1);

  texte->setPlainText(QString::fromUtf8("Application=Tessellographe 1.0\nTitre=Diatomée\n"));
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>(f, "cmdSave")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Modifications OK !");

  const QByteArray apres = Lire(png);
  EXPECT_EQ(ChunksImage(apres), ChunksImage(avant));
  meta::CPNG relu;
  relu.LireOctets(apres);
  EXPECT_EQ(relu.Commentaire(),
            QString::fromUtf8("Application=Tessellographe 1.0\r\nTitre=Diatomée\r\n"));
  int commentaires = 0;
  for (const meta::CtEXt& t : relu.tEXt) commentaires += t.MotCle == "Comment";
  EXPECT_EQ(commentaires, 1);
  EXPECT_EQ(relu.tEXt.size(), 2u);  // the title stays
  EXPECT_EQ(texte->toPlainText(),
            QString::fromUtf8("Application=Tessellographe 1.0\nTitre=Diatomée\n"));
  if (!QStandardPaths::findExecutable("pngcheck").isEmpty()) {
    QProcess check;
    check.start("pngcheck", {"-t", png});
    ASSERT_TRUE(check.waitForFinished(60000));
    EXPECT_EQ(check.exitCode(), 0) << check.readAllStandardOutput().toStdString();
  }

  // An emptied text takes the comment away and nothing else.
  texte->clear();
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>(f, "cmdSave")->click();
  meta::CPNG vide;
  vide.LireOctets(Lire(png));
  EXPECT_TRUE(vide.Commentaire().isEmpty());
  ASSERT_EQ(vide.tEXt.size(), 1u);
  EXPECT_EQ(vide.tEXt[0].Content, "Lame 4");
  EXPECT_EQ(ChunksImage(Lire(png)), ChunksImage(avant));
}

// A PNG whose comment ImageMagick wrote, under the keyword "comment".
TEST_F(EditeurCommentaires, UnPNGAuCommentaireEnMinusculesLeMontreEtLeRemplace) {
  frmEditComments* f = Ouvrir();
  ASSERT_NE(f, nullptr);
  meta::CPNG p;
  p.LireOctets(ImageQt("PNG"));
  meta::CtEXt magick;
  magick.MotCle = "comment";
  magick.Content = "Lame 4\ncoupe 2";
  p.tEXt.push_back(magick);
  QByteArray avant;
  ASSERT_TRUE(p.Ecrire(avant, nullptr));
  ASSERT_TRUE(avant.contains(QByteArray("tEXtcomment\0Lame 4\ncoupe 2", 26)));
  const QString png = Ecrire("magick.png", avant);
  dlg.chaines = {png};
  C<QPushButton>(f, "cmdOpen")->click();
  auto* texte = C<QPlainTextEdit>(f, "txtCommentaire");
  EXPECT_EQ(texte->toPlainText(), "Lame 4\ncoupe 2");
  // Shown in the box, not listed again with the other chunks.
  for (const QString& l : Lignes(f)) EXPECT_FALSE(l.contains("Lame 4")) << l.toStdString();

  texte->setPlainText("Application=Tessellographe 1.0\nTitre=Navicula\n");
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>(f, "cmdSave")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Modifications OK !");
  const QByteArray apres = Lire(png);
  EXPECT_EQ(ChunksImage(apres), ChunksImage(avant));
  meta::CPNG relu;
  relu.LireOctets(apres);
  int commentaires = 0;
  for (const meta::CtEXt& t : relu.tEXt)
    commentaires += t.MotCle.compare("comment", Qt::CaseInsensitive) == 0;
  EXPECT_EQ(commentaires, 1);
  EXPECT_EQ(relu.Commentaire(), "Application=Tessellographe 1.0\r\nTitre=Navicula\r\n");
  EXPECT_EQ(texte->toPlainText(), "Application=Tessellographe 1.0\nTitre=Navicula\n");
}

TEST_F(EditeurCommentaires, UnGIFMontreEtReecritSonCommentaire) {
  frmEditComments* f = Ouvrir();
  ASSERT_NE(f, nullptr);
  const QByteArray sans = meta::test::Gif(true);
  const QString gif = Ecrire(
      "bloc.gif", meta::test::Gif(true, meta::test::ExtensionCommentaire("Titre=Ancien\r\n")));
  dlg.chaines = {gif};
  C<QPushButton>(f, "cmdOpen")->click();
  EXPECT_EQ(Lignes(f).value(0), "Fichier GIF 89a : 1x1 pixels");
  EXPECT_EQ(Lignes(f).value(1), "Table de couleurs globale : 2 couleurs, fond 0");
  auto* texte = C<QPlainTextEdit>(f, "txtCommentaire");
  EXPECT_EQ(texte->toPlainText(), "Titre=Ancien\n");

  // Longer than one sub-block.
  const QString nouveau = "Application=Tessellographe 1.0\nTitre=" + QString(300, u'x') + "\n";
  texte->setPlainText(nouveau);
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>(f, "cmdSave")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Modifications OK !");
  const QByteArray apres = Lire(gif);
  meta::CGIF relu;
  relu.LireOctets(apres);
  EXPECT_EQ(relu.Comment, QString(nouveau).replace("\n", "\r\n"));
  // The picture's bytes as they were, the new comment in the old one's place
  // (after the header and the 2-colour table, 19 bytes).
  EXPECT_TRUE(apres.startsWith(sans.left(19)));
  EXPECT_TRUE(apres.endsWith(sans.mid(19)));
  EXPECT_EQ(texte->toPlainText(), nouveau);
  if (!QStandardPaths::findExecutable("exiftool").isEmpty()) {
    QProcess p;
    p.start("exiftool", {"-j", "-Comment", gif});
    ASSERT_TRUE(p.waitForFinished(60000));
    const QJsonObject vue =
        QJsonDocument::fromJson(p.readAllStandardOutput()).array()[0].toObject();
    EXPECT_EQ(vue["Comment"].toString(), QString(nouveau).replace("\n", "\r\n"));
  }
}

TEST_F(EditeurCommentaires, UnBMPSeMontreEnLectureSeule) {
  frmEditComments* f = Ouvrir();
  ASSERT_NE(f, nullptr);
  const QByteArray octets = ImageQt("BMP", 40, 30);
  const QString bmp = Ecrire("image.bmp", octets);
  dlg.chaines = {bmp};
  C<QPushButton>(f, "cmdOpen")->click();
  const QStringList lignes = Lignes(f);
  ASSERT_EQ(lignes.size(), 16) << lignes.join(" | ").toStdString();
  EXPECT_EQ(lignes[0], "bfType : 0x4D42");
  EXPECT_EQ(lignes[1], QStringLiteral("bfSize : %1").arg(octets.size()));
  EXPECT_EQ(lignes[6], "biWidth : 40");
  EXPECT_EQ(lignes[7], "biHeight : 30");
  EXPECT_EQ(lignes[12], "biXPelsPerMeter : 3780");
  auto* texte = C<QPlainTextEdit>(f, "txtCommentaire");
  EXPECT_TRUE(texte->isReadOnly());
  EXPECT_TRUE(texte->toPlainText().isEmpty());
  EXPECT_EQ(texte->placeholderText(), TexteBMPSansCommentaire);
  EXPECT_FALSE(C<QPushButton>(f, "cmdSave")->isEnabled());
  // Asked anyway: nothing is written, the image in hand stays.
  f->cmdSave_Click();
  EXPECT_EQ(dlg.Dernier().texte, TexteBMPSansCommentaire);
  EXPECT_EQ(Lire(bmp), octets);
  EXPECT_EQ(s.Etape, 1);

  // The next file is editable again.
  dlg.chaines = {chemin};
  C<QPushButton>(f, "cmdOpen")->click();
  EXPECT_FALSE(texte->isReadOnly());
  EXPECT_TRUE(C<QPushButton>(f, "cmdSave")->isEnabled());
  EXPECT_EQ(Lignes(f).size(), 3);
}

}  // namespace
}  // namespace tg
