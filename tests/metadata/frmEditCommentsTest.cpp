// The comment editor driven through its named controls and the scripted dialogues.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <memory>

#include "core/Session.h"
#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "metadata/CImage.h"
#include "metadata/ui/frmEditComments.h"
#include "tests/metadata/Fabrique.h"
#include "tests/support/DialoguesScriptes.h"

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

TEST_F(EditeurCommentaires, SansImageLaFenetreSeFerme) {
  s.PathOrigine.clear();
  frmEditComments::Ouvrir(*w);
  EXPECT_TRUE(w->isVisible());
  for (auto* f : w->findChildren<frmEditComments*>()) EXPECT_FALSE(f->isVisible());
}

TEST_F(EditeurCommentaires, UnTIFFChoisiSeReecritSansCommentaire) {
  frmEditComments* f = Ouvrir();
  ASSERT_NE(f, nullptr);
  // A 1 x 1 grey TIFF, one strip.
  QByteArray t = EnTete(false);
  t += U16(false, 4);
  t += Entree(false, 0x0100, 3, 1, U16(false, 1));
  t += Entree(false, 0x0101, 3, 1, U16(false, 1));
  t += Entree(false, 0x0111, 4, 1, U32(false, 62));
  t += Entree(false, 0x0117, 4, 1, U32(false, 1));
  t += U32(false, 0) + QByteArray("\x80", 1);
  const QString tif = QDir::currentPath() + "/g.tif";
  QFile fichier(tif);
  ASSERT_TRUE(fichier.open(QIODevice::WriteOnly));
  fichier.write(t);
  fichier.close();

  dlg.chaines = {tif};
  C<QPushButton>(f, "cmdOpen")->click();
  EXPECT_EQ(dlg.appels.back().titre, QString::fromUtf8("Choisissez un fichier à analyser..."));
  EXPECT_EQ(C<QLabel>(f, "Label1")->text(), tif);
  EXPECT_TRUE(C<QPlainTextEdit>(f, "txtCommentaire")->toPlainText().isEmpty());
  EXPECT_EQ(Lignes(f).size(), 1);
  dlg.reponses = {Reponse::Oui};
  C<QPushButton>(f, "cmdSave")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Modifications OK !");
  const QByteArray apres = Lire(tif);
  EXPECT_TRUE(apres.startsWith(t.left(4)));
  meta::CImage relue;
  ASSERT_TRUE(relue.ReadImage(tif));
  const meta::CExifDirEnt* bande = relue.TIFF()->EXIF().ifd(0)->Trouver(0x0111);
  ASSERT_NE(bande, nullptr);
  EXPECT_EQ(apres[int(bande->GetDataVariant())], '\x80');
}

}  // namespace
}  // namespace tg
