// The ways into the program through the main window: the open dialogs, the
// recent list, a drop, the command line, the clipboard and the empty picture;
// what a load leaves and how ControleImage adapts the format.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QUrl>
#include <memory>

#include "core/Chargement.h"
#include "core/frmFichierPhoto.h"
#include "core/frmFichierPhotoChargement.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Systeme.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

class Chargement : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  std::unique_ptr<frmFichierPhoto> w;
  int mesures = 0;  // frmMesure requests

  void SetUp() override {
    s.MessageBox = 1;  // no help balloons in the way
    s.ImageAccueil = "0";
    s.RepTravail = RepApplication() + "travail";
    QDir().mkpath(s.RepTravail);
  }
  void TearDown() override {
    InstallerLecteurMeta(nullptr);
    w.reset();
  }
  void Creer() {
    w = std::make_unique<frmFichierPhoto>(s, ai);
    InstallerChargementEtFormats(*w);
    w->DefinirCrochet("frmMesure", [this] { ++mesures; });
  }
  // A JPEG of l x h with a coloured block, in the program's folder.
  QString Jpeg(const QString& nom, int l, int h, const QString& commentaire = {}) {
    Bitmap b;
    EXPECT_TRUE(ai.IO_CreateImage(b, l, h, 24));
    EXPECT_TRUE(ai.MemoryDC_FillRectangle(b, 0, 0, l / 2, h / 2, 0x00FF00));
    if (!commentaire.isEmpty()) {
      EXPECT_TRUE(ai.Metadata_Set_Comments(b, commentaire));
    }
    const QString chemin = RepApplication() + nom;
    EXPECT_TRUE(ai.IO_SaveImage(b, chemin, FormatJPEG, 90));
    return chemin;
  }
  void Ouvrir(const QString& chemin) {
    dlg.chaines.push_back(chemin);
    w->findChild<QAction*>("mnuOuvriFichier")->trigger();
  }
  QString Texte(const char* nom) const {
    if (auto* l = w->findChild<QLineEdit*>(QLatin1String(nom))) return l->text();
    if (auto* l = w->findChild<QLabel*>(QLatin1String(nom))) return l->text();
    return "<absent>";
  }
  int Compter(const QString& texte) const {
    int n = 0;
    for (const auto& a : dlg.appels) n += a.titre == texte || a.texte == texte;
    return n;
  }
  QStringList Recents() const {
    QStringList r;
    for (QAction* a : w->findChild<QMenu*>("mnuRecent")->actions()) r << a->text();
    return r;
  }
};

TEST_F(Chargement, OuvrirRemplitLaSessionEtLaFenetre) {
  Creer();
  const QString chemin = Jpeg("diatomee.jpg", 1024, 768);
  Ouvrir(chemin);
  ASSERT_FALSE(dlg.appels.empty());
  EXPECT_EQ(dlg.appels[0].genre, "FichierOuvrir");
  EXPECT_EQ(dlg.appels[0].titre, "  Choisir une image ...");
  EXPECT_EQ(dlg.appels[0].texte, QDir::currentPath());
  EXPECT_EQ(s.Etape, 1);
  EXPECT_EQ(s.PathOrigine, chemin);
  EXPECT_EQ(s.LargeurOrigine, 1024);
  EXPECT_EQ(s.LargeurCadrage, 1024);
  EXPECT_EQ(Texte("txtPathOrigine"), chemin);
  EXPECT_TRUE(Texte("lblTickCount").startsWith("charg. = ")) << Texte("lblTickCount").toStdString();
  EXPECT_TRUE(Texte("lblTickCount").endsWith(" ms"));
  EXPECT_EQ(Texte("txtTaille"), "1024 x 768");
  EXPECT_TRUE(w->findChild<QAction*>("RedimAuto")->isEnabled());
  EXPECT_FALSE(w->findChild<QLabel*>("imaOrigine")->pixmap().isNull());
  EXPECT_EQ(Recents(), QStringList{"diatomee.jpg"});
  EXPECT_EQ(s.ListeRecent[0], chemin);
  // 1024 at 800 x 600: wider than the format, nothing said about it.
  EXPECT_EQ(Compter("Format de sortie"), 0);
}

TEST_F(Chargement, FichierAbsentOuIllisible) {
  Creer();
  Ouvrir(RepApplication() + "absent.jpg");
  EXPECT_EQ(dlg.Dernier().texte, "Fichier introuvable !");
  EXPECT_EQ(s.Etape, 0);

  // A picture, then a file that is none: nothing of the picture survives.
  Ouvrir(Jpeg("a.jpg", 800, 600));
  ASSERT_EQ(s.Etape, 1);
  const QString faux = RepApplication() + "faux.jpg";
  QFile f(faux);
  ASSERT_TRUE(f.open(QIODevice::WriteOnly));
  f.write("ceci n'est pas une image");
  f.close();
  dlg.appels.clear();
  Ouvrir(faux);
  EXPECT_EQ(s.Etape, 0);
  EXPECT_TRUE(s.ImageCourante.Vide());
  EXPECT_TRUE(s.PathOrigine.isEmpty());
  // The program's own check refuses it before any decoder, in French.
  bool erreurA = false, bulle = false;
  for (const auto& a : dlg.appels) {
    erreurA |= a.texte.contains("n'est pas une image d'un format que le programme ouvre");
    bulle |= a.genre == "MsgBoxEx" && a.titre == "Erreur chargement ..." &&
             a.texte == "Votre fichier n'est pas une image reconnue" && a.icone == 48;
  }
  EXPECT_TRUE(erreurA);
  EXPECT_TRUE(bulle);
  EXPECT_FALSE(w->findChild<QAction*>("RedimAuto")->isEnabled());
}

TEST_F(Chargement, PetiteImageRameneLeFormat) {
  Creer();
  ASSERT_EQ(s.ChoixFormat, 2);
  Ouvrir(Jpeg("petite.jpg", 700, 525));
  EXPECT_EQ(s.ChoixFormat, 0);
  EXPECT_EQ(s.ApnLargCourant, 640);
  EXPECT_EQ(Texte("lblFormatSortie"), "640 x 480");
  EXPECT_EQ(LireIni("FormatImage", "ApnLarg", CheminUserConfig(), ""), "640");
  ASSERT_EQ(Compter("Format de sortie"), 1);
  for (const auto& a : dlg.appels)
    if (a.titre == "Format de sortie") {
      EXPECT_EQ(a.texte, "Format de sortie réinitialisé !\n(image plus petite que format choisit)");
      EXPECT_EQ(a.icone, 64);
    }
  // At 640 x 480 the same picture changes nothing.
  dlg.appels.clear();
  Ouvrir(Jpeg("petite2.jpg", 700, 525));
  EXPECT_EQ(s.ChoixFormat, 0);
  EXPECT_EQ(Compter("Format de sortie"), 0);
}

TEST_F(Chargement, ImageFormateeSuitLeFichierEtLeLecteurVoitLaSession) {
  QString cheminVu, commentaireVu;
  InstallerLecteurMeta([&](SessionRecord& r) {
    cheminVu = r.PathOrigine;
    commentaireVu = r.CommentaireImage;
    r.ImageDejaFormatee = r.CommentaireImage.contains("Application=Tessellographe");
    r.FocaleAPN = 7.5f;
  });
  Creer();
  s.ChoixFormat = 4;
  const QString bloc = "Application=Tessellographe\r\nQualiteJpg=94\r\n";
  const QString chemin = Jpeg("formatee.jpg", 900, 675, bloc);
  Ouvrir(chemin);
  EXPECT_EQ(cheminVu, chemin);
  EXPECT_EQ(commentaireVu, bloc);
  // 900 is no format width: the format stays, but it is applied again.
  EXPECT_EQ(s.ChoixFormat, 4);
  EXPECT_EQ(LireIni("FormatImage", "ApnLarg", CheminUserConfig(), ""), "1152");
  EXPECT_EQ(Texte("lblFormatSortie"), "1152 x 864");
  EXPECT_EQ(Compter("Format de sortie"), 0);
  EXPECT_EQ(Texte("txtFocale"), "7,5 mm");
  const auto* exif = w->findChild<QPlainTextEdit*>("txtExif");
  EXPECT_TRUE(exif->isVisibleTo(w.get()));
  // The comment replaces the EXIF text in the box.
  EXPECT_EQ(exif->toPlainText().remove('\r').trimmed(), QString(bloc).remove('\r').trimmed());
  bool bulle = false;
  for (const auto& a : dlg.appels)
    if (a.genre == "MsgBoxEx" && a.titre == "Image formatée TG") {
      bulle = true;
      EXPECT_TRUE(a.texte.startsWith("Votre image est formatée TG !"));
      EXPECT_TRUE(a.texteLong.endsWith("Consultez l'aide pour plus de détails."));
    }
  EXPECT_TRUE(bulle);

  // A formatted file 1024 wide sets format 3.
  Ouvrir(Jpeg("formatee2.jpg", 1024, 768, bloc));
  EXPECT_EQ(s.ChoixFormat, 3);
  EXPECT_EQ(Texte("lblFormatSortie"), "1024 x 768");
}

TEST_F(Chargement, ZoomNumeriqueAverti) {
  float zoom = 1;
  InstallerLecteurMeta([&](SessionRecord& r) { r.DigitalZoom = zoom; });
  Creer();
  Ouvrir(Jpeg("z1.jpg", 800, 600));
  EXPECT_EQ(Compter("Zoom numérique !"), 0);
  zoom = 1.5f;
  Ouvrir(Jpeg("z15.jpg", 800, 600));
  ASSERT_EQ(Compter("Zoom numérique !"), 1);
  EXPECT_TRUE(Texte("txtDigitalZoom").startsWith("Z.num = x1"));
}

TEST_F(Chargement, SansExifNiCommentaireLaBoiteResteCachee) {
  Creer();
  Ouvrir(Jpeg("nu.jpg", 800, 600));
  EXPECT_FALSE(w->findChild<QPlainTextEdit*>("txtExif")->isVisibleTo(w.get()));
  EXPECT_FALSE(w->findChild<QPushButton*>("cmdAgrandirTxtExif")->isVisibleTo(w.get()));
}

TEST_F(Chargement, ListeRecenteSixiemePousseLePremierEtRelecture) {
  Creer();
  QStringList chemins;
  for (int i = 1; i <= 6; ++i) {
    chemins << Jpeg(QString("r%1.jpg").arg(i), 800, 600);
    Ouvrir(chemins.back());
  }
  EXPECT_EQ(Recents(), QStringList({"r6.jpg", "r5.jpg", "r4.jpg", "r3.jpg", "r2.jpg"}));
  EXPECT_EQ(s.ListeRecent[4], chemins[1]);

  // Written at the end, read at the next start: the order stays.
  ASSERT_TRUE(EcrireListe(CheminRecent(), {chemins[5], chemins[4], chemins[3]}));
  SessionRecord s2;
  s2.ImageAccueil = "0";
  frmFichierPhoto w2(s2, ai);
  InstallerChargementEtFormats(w2);
  EXPECT_EQ(s2.ListeRecent[0], chemins[5]);
  EXPECT_EQ(s2.ListeRecent[2], chemins[3]);
  EXPECT_TRUE(s2.ListeRecent[3].isEmpty());
}

TEST_F(Chargement, MenuRecentDemandeAvantDeRemplacer) {
  Creer();
  const QString a = Jpeg("a.jpg", 800, 600), b = Jpeg("b.jpg", 1024, 768);
  Ouvrir(a);
  Ouvrir(b);
  ASSERT_EQ(s.PathOrigine, b);
  dlg.reponses.push_back(Reponse::Non);
  w->findChild<QAction*>("mnuRecent2")->trigger();
  ASSERT_EQ(dlg.Dernier().genre, "Question");
  EXPECT_EQ(dlg.Dernier().titre, "Nouvelle image ...");
  EXPECT_EQ(dlg.Dernier().texte, a + "\nVoulez-vous charger cette nouvelle image ?");
  EXPECT_EQ(s.PathOrigine, b);
  dlg.reponses.push_back(Reponse::Oui);
  w->findChild<QAction*>("mnuRecent2")->trigger();
  EXPECT_EQ(s.PathOrigine, a);
  EXPECT_EQ(Recents().first(), "a.jpg");
  // A file that has gone.
  QFile::remove(b);
  const int avant = int(dlg.appels.size());
  w->findChild<QAction*>("mnuRecent2")->trigger();
  EXPECT_EQ(dlg.Dernier().texte, "Fichier introuvable !");
  EXPECT_EQ(int(dlg.appels.size()), avant + 1);
  EXPECT_EQ(s.PathOrigine, a);
}

TEST_F(Chargement, DepotSurLAffichageEtLigneDeCommande) {
  const QString chemin = Jpeg("ligne de commande.jpg", 800, 600);
  s.CheminLigneCommande = "\"" + chemin + "\" ";
  Creer();
  EXPECT_EQ(s.Etape, 0);  // loaded once the start-up is over
  QApplication::processEvents();
  EXPECT_EQ(s.PathOrigine, chemin);
  EXPECT_TRUE(s.CheminLigneCommande.isEmpty());

  const QString depose = Jpeg("depose.jpg", 1024, 768);
  QMimeData donnees;
  donnees.setUrls({QUrl::fromLocalFile(depose)});
  QWidget* cible = w->findChild<QWidget*>("picCadre");
  QDragEnterEvent entree(QPoint(5, 5), Qt::CopyAction, &donnees, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(cible, &entree);
  EXPECT_TRUE(entree.isAccepted());
  QDropEvent depot(QPointF(5, 5), Qt::CopyAction, &donnees, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(cible, &depot);
  QApplication::processEvents();
  EXPECT_EQ(s.PathOrigine, depose);
  EXPECT_EQ(s.Largeur, 1024);
}

TEST_F(Chargement, PressePapierPasseParTempJpg) {
  Creer();
  QApplication::clipboard()->clear();
  w->findChild<QAction*>("mnuChargerClipBoard")->trigger();
  EXPECT_EQ(dlg.Dernier().titre, "Erreur presse-papier");
  EXPECT_EQ(s.Etape, 0);

  QImage image(900, 700, QImage::Format_RGB32);
  image.fill(QColor(10, 120, 200));
  QApplication::clipboard()->setImage(image);
  w->findChild<QAction*>("mnuChargerClipBoard")->trigger();
  EXPECT_EQ(s.Etape, 1);
  EXPECT_EQ(s.Largeur, 900);
  EXPECT_EQ(s.PathOrigine, s.RepTravail + "/temp.jpg");
  EXPECT_FALSE(QFile::exists(s.RepTravail + "/temp.jpg"));
  ASSERT_EQ(Compter("Presse-papier OK"), 1);
  for (const auto& a : dlg.appels)
    if (a.titre == "Presse-papier OK") {
      EXPECT_TRUE(a.texte.endsWith("aucune information dans cette image !\n(Exif et Métadonnées)"));
    }
  EXPECT_EQ(s.ChoixFormat, 2);  // 900 is wider than 800: the format stays
}

TEST_F(Chargement, SansDossierDeTravailNiPressePapierNiImageVide) {
  s.RepTravail = RepApplication() + "inexistant";
  Creer();
  for (const char* menu : {"mnuChargerClipBoard", "mnuCreateEmptyImage"}) {
    dlg.appels.clear();
    w->findChild<QAction*>(menu)->trigger();
    EXPECT_EQ(dlg.Dernier().titre, "Dossier de travail innexistant") << menu;
    EXPECT_EQ(dlg.Dernier().texte,
              "Vous devez avoir configuré un dossier de travail valide !\n( cf menu "
              "Outils/Options/Dossiers )");
  }
  EXPECT_EQ(s.Etape, 0);
}

TEST_F(Chargement, ImageVideBlancheAuFormat) {
  Creer();
  w->findChild<QAction*>("mnuCreateEmptyImage")->trigger();
  EXPECT_EQ(dlg.Dernier().texte, "Image vide de 800 x 600 pixels créée !");
  EXPECT_EQ(s.Etape, 1);
  EXPECT_EQ(s.Largeur, 800);
  EXPECT_EQ(s.Hauteur, 600);
  int couleur = 0;
  ASSERT_TRUE(ai.Color_GetPixel(s.ImageCourante, 400, 300, couleur));
  EXPECT_GE(couleur & 0xFF, 250);  // white, within JPEG error
  EXPECT_TRUE(QFile::exists(s.RepTravail + "/image_vide.jpg"));

  // With a picture open the question comes first, no by default.
  dlg.appels.clear();
  s.ApnLargCourant = 640;
  w->findChild<QAction*>("mnuCreateEmptyImage")->trigger();
  ASSERT_EQ(dlg.Dernier().genre, "Question");
  EXPECT_EQ(dlg.Dernier().titre, "Créer une image vide");
  EXPECT_EQ(dlg.Dernier().defaut, Reponse::Non);
  EXPECT_EQ(s.Largeur, 800);
}

TEST_F(Chargement, EtalonOuvreLaMesure) {
  s.RepEtalon = RepApplication() + "etalons";
  QDir().mkpath(s.RepEtalon);
  Creer();
  dlg.chaines.push_back(Jpeg("etalon.jpg", 800, 600));
  w->findChild<QAction*>("mnuOuvriFichierEtalon")->trigger();
  ASSERT_GE(dlg.appels.size(), 2u);
  EXPECT_EQ(dlg.appels[0].titre, "Etalonnage et création de tables");
  EXPECT_EQ(dlg.appels[0].texte, "Dans la fenêtre suivante\nchosissez votre image d'étalon ...");
  EXPECT_EQ(dlg.appels[1].titre, "  IMAGE D'ETALON");
  EXPECT_EQ(dlg.appels[1].texte, s.RepEtalon);
  EXPECT_TRUE(s.ModeEtalon);
  EXPECT_EQ(s.ModeMesure, 0);
  EXPECT_EQ(mesures, 1);
}

TEST_F(Chargement, BoutonDeFormatDemandeEtFermeLImage) {
  Creer();
  Ouvrir(Jpeg("a.jpg", 1024, 768));
  auto* bouton = w->findChild<QPushButton*>("PicFormat3");
  dlg.reponses.push_back(Reponse::Non);
  bouton->click();
  ASSERT_EQ(dlg.Dernier().titre, "Modification du format de sortie");
  EXPECT_EQ(dlg.Dernier().texte,
            "Format de sortie: 1024 x 768\nSi une image est en cours de travail, celle-ci sera "
            "fermée.\nContinuer ... ?");
  EXPECT_EQ(dlg.Dernier().defaut, Reponse::Non);
  // No: the index changed, nothing else.
  EXPECT_EQ(s.ChoixFormat, 3);
  EXPECT_EQ(s.ApnLargCourant, 800);
  EXPECT_EQ(Texte("lblFormatSortie"), "800 x 600");
  EXPECT_EQ(s.Etape, 1);
  dlg.reponses.push_back(Reponse::Oui);
  bouton->click();
  EXPECT_EQ(s.Etape, 0);
  EXPECT_TRUE(s.ImageCourante.Vide());
  EXPECT_EQ(s.ApnLargCourant, 1024);
  EXPECT_EQ(Texte("lblFormatSortie"), "1024 x 768");
}

}  // namespace
}  // namespace tg
