// The finder on a generated tree: the walk's order and stop, and the window
// driven by its controls with its thumbnails and facts arriving from their
// thread.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>

#include "core/modMain.h"
#include "finder/Recherche.h"
#include "finder/frmSearch.h"
#include "platform/Ini.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

void Photo(const QString& chemin, int l = 640, int h = 480) {
  QImage img(l, h, QImage::Format_RGB32);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < l; ++x) img.setPixel(x, y, qRgb(x % 256, y % 256, 90));
  ASSERT_TRUE(img.save(chemin, nullptr, 90)) << chemin.toStdString();
}

// racine/: a.jpg, B.JPG, c.png, notes.txt, dossier.jpg/ (a folder), coupe.jpg
// (a JPEG cut in its data); sous1/d.jpg, sous1/sous2/e.jpg.
QString Arbre() {
  const QString r = QDir::current().filePath("arbre");
  QDir().mkpath(r + "/sous1/sous2");
  QDir().mkpath(r + "/dossier.jpg");
  Photo(r + "/a.jpg");
  Photo(r + "/B.JPG");
  Photo(r + "/c.png");
  Photo(r + "/sous1/d.jpg");
  Photo(r + "/sous1/sous2/e.jpg");
  QFile t(r + "/notes.txt");
  EXPECT_TRUE(t.open(QIODevice::WriteOnly));
  t.write("x");
  t.close();
  QFile a(r + "/a.jpg");
  EXPECT_TRUE(a.open(QIODevice::ReadOnly));
  const QByteArray octets = a.readAll();
  QFile c(r + "/coupe.jpg");
  EXPECT_TRUE(c.open(QIODevice::WriteOnly));
  c.write(octets.left(octets.size() * 6 / 10));
  return r;
}

TEST(Recherche, DossierMotifEtOrdreDuParcours) {
  EXPECT_EQ(DossierAvecSeparateur("/photos"), "/photos/");
  EXPECT_EQ(DossierAvecSeparateur("/photos/"), "/photos/");
  EXPECT_EQ(DossierAvecSeparateur(""), "");
  EXPECT_TRUE(MotifRecherche("*", ".jpg").match("B.JPG").hasMatch());
  EXPECT_TRUE(MotifRecherche("a?", ".jpg").match("ab.jpg").hasMatch());
  EXPECT_FALSE(MotifRecherche("a?", ".jpg").match("abc.jpg").hasMatch());
  EXPECT_FALSE(MotifRecherche("*", ".jpg").match("a.jpg.txt").hasMatch());
  EXPECT_FALSE(MotifRecherche("[a]", ".jpg").match("a.jpg").hasMatch());  // no character classes

  const QString r = Arbre() + "/";
  std::atomic<bool> arret{false};
  ResultatParcours res;
  ParcourirDossier(r, MotifRecherche("*", ".jpg"), true, arret, res);
  // The folder named like a picture is counted and listed as files are.
  EXPECT_EQ(res.compte, 6);
  EXPECT_TRUE(res.noms.contains("dossier.jpg"));
  // The files of a folder before those of its subfolders.
  const int d = int(res.noms.indexOf("d.jpg")), e = int(res.noms.indexOf("e.jpg"));
  for (const char* n : {"a.jpg", "B.JPG", "coupe.jpg"}) EXPECT_LT(res.noms.indexOf(n), d) << n;
  EXPECT_LT(d, e);
  EXPECT_EQ(res.chemins[d], r + "sous1/d.jpg");
  EXPECT_FALSE(res.interrompu);

  // A stop between two folders keeps what was found.
  ResultatParcours arrete;
  int passes = 0;
  ParcourirDossier(r, MotifRecherche("*", ".jpg"), true, arret, arrete, [&] {
    if (++passes == 2) arret = true;
  });
  EXPECT_TRUE(arrete.interrompu);
  EXPECT_EQ(arrete.compte, 4);
  EXPECT_FALSE(arrete.noms.contains("d.jpg"));
  EXPECT_EQ(TexteCompte(arrete.compte, true), "4 fichiers trouvés\nProcessus interrompu !");
}

class Chercher : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  SessionRecord s;
  QPointer<frmSearch> w;
  QString racine;

  Chercher() {
    racine = Arbre();
    QDir::setCurrent(racine);
  }
  ~Chercher() override {
    if (w) delete w.data();
  }
  void Ouvrir() {
    w = new frmSearch(s, nullptr);
    w->show();
    ASSERT_TRUE(w->AttendreParcours());
  }
  template <typename T = QWidget>
  T* C(const QString& nom) const {
    T* c = w->findChild<T*>(nom);
    EXPECT_NE(c, nullptr) << nom.toStdString();
    return c;
  }
  QStringList Noms() const {
    QStringList n;
    for (int i = 0; i < C<QListWidget>("List2")->count(); ++i) n << C<QListWidget>("List2")->item(i)->text();
    return n;
  }
  void Actualiser() {
    C<QPushButton>("cmdActualiserList")->click();
    ASSERT_TRUE(w->AttendreParcours());
  }
};

// Opening walks the current folder; the first file is selected with its
// thumbnail (at most 193 pixels), its facts and its metadata.
TEST_F(Chercher, OuvertureSurLeDossierCourant) {
  Ouvrir();
  EXPECT_TRUE(C<QRadioButton>("optDossier3")->isChecked());
  EXPECT_EQ(C<QLineEdit>("txtRepTravail")->text(), racine);
  EXPECT_EQ(C<QLabel>("Text3")->text(), "4 fichiers trouvés");
  for (const QString& p : w->List1()) EXPECT_FALSE(p.contains("//")) << p.toStdString();
  C<QListWidget>("List2")->setCurrentRow(int(Noms().indexOf("a.jpg")));
  ASSERT_TRUE(w->AttendreSelection());
  EXPECT_EQ(w->CheminSelection(), racine + "/a.jpg");
  const QPixmap v = C<QLabel>("picVignette")->pixmap();
  EXPECT_EQ(v.width(), 193);
  EXPECT_NEAR(v.height(), 145, 1);
  const QString infos = C<QPlainTextEdit>("Text4")->toPlainText();
  EXPECT_TRUE(infos.startsWith("Image sélectionnée = a.jpg\n640 x 480\nPoids = ")) << infos.toStdString();
  EXPECT_TRUE(infos.contains("Color Depth = 24"));
  EXPECT_TRUE(C<QPlainTextEdit>("txtExif")->toPlainText().contains("Type : 0 (JPEG)"));
}

TEST_F(Chercher, DossierVideFiltreSansResultatEtExtension) {
  Ouvrir();
  const QStringList avant = Noms();
  C<QLineEdit>("txtRepTravail")->setText("");
  C<QPushButton>("cmdActualiserList")->click();
  EXPECT_EQ(Noms(), avant);
  C<QLineEdit>("txtRepTravail")->setText(racine + "/");
  C<QLineEdit>("txtFiltre")->setText("zz");
  Actualiser();
  EXPECT_EQ(C<QLabel>("Text3")->text(), "0 fichiers trouvés");
  EXPECT_TRUE(Noms().isEmpty());
  EXPECT_TRUE(w->CheminSelection().isEmpty());
  EXPECT_TRUE(C<QLabel>("picVignette")->pixmap().isNull());
  // Another extension throws the name filter away.
  auto* ext = C<QComboBox>("combFileExt");
  ext->setCurrentIndex(2);
  emit ext->activated(2);
  ASSERT_TRUE(w->AttendreParcours());
  EXPECT_EQ(C<QLineEdit>("txtFiltre")->text(), "*");
  EXPECT_EQ(Noms(), QStringList{"c.png"});
}

TEST_F(Chercher, EchapEntreDeuxDossiers) {
  Ouvrir();
  C<QCheckBox>("chkSousDir")->setChecked(true);
  Actualiser();
  EXPECT_EQ(C<QLabel>("Text3")->text(), "6 fichiers trouvés");
  int passes = 0;
  w->SurPasse = [&passes, f = w.data()] {
    if (++passes == 2) f->DemanderArret();
  };
  Actualiser();
  EXPECT_EQ(C<QLabel>("Text3")->text(), "4 fichiers trouvés\nProcessus interrompu !");
  EXPECT_EQ(Noms().size(), 4);  // a.jpg, B.JPG, coupe.jpg and the folder dossier.jpg
  // Escape with no walk: the flag only, no message; the next refresh clears it.
  w->SurPasse = nullptr;
  dlg.appels.clear();
  w->Echap();
  EXPECT_TRUE(dlg.appels.empty());
  Actualiser();
  EXPECT_EQ(C<QLabel>("Text3")->text(), "6 fichiers trouvés");
}

TEST_F(Chercher, FichierCoupeEtSuppressionDuSeulFichier) {
  Ouvrir();
  C<QListWidget>("List2")->setCurrentRow(int(Noms().indexOf("coupe.jpg")));
  ASSERT_TRUE(w->AttendreSelection());
  // Its French message among the facts; the thumbnail of what could be read.
  EXPECT_TRUE(C<QPlainTextEdit>("Text4")->toPlainText().contains("incomplet"))
      << C<QPlainTextEdit>("Text4")->toPlainText().toStdString();
  EXPECT_TRUE(C("List2")->isEnabled());

  C<QLineEdit>("txtFiltre")->setText("a");
  Actualiser();
  ASSERT_EQ(Noms(), QStringList{"a.jpg"});
  dlg.reponses.push_back(Reponse::Oui);
  C<QPushButton>("cmdSupprimerImage")->click();
  EXPECT_EQ(dlg.Dernier().titre, "Supprimer une image");
  EXPECT_EQ(dlg.Dernier().texte, "Souhaitez-vous effacer définitivement l'image sélectionnée ?\na.jpg\n");
  ASSERT_TRUE(w->AttendreParcours());
  EXPECT_FALSE(QFile::exists(racine + "/a.jpg"));
  EXPECT_TRUE(Noms().isEmpty());
  EXPECT_EQ(C<QLabel>("Text3")->text(), "0 fichiers trouvés");
  EXPECT_TRUE(C<QPlainTextEdit>("Text4")->toPlainText().isEmpty());
}

TEST_F(Chercher, ModeOuvrirEcritSurLeChamp) {
  Ouvrir();
  C<QCheckBox>("chkModeOuvrir")->click();
  EXPECT_EQ(s.ModeOuvrir, "1");
  EXPECT_EQ(LireIni("Dossier", "ModeOuvrir", CheminUserConfig(), ""), "1");
  // Opening a file that went: the message, the window stays.
  C<QLineEdit>("txtFiltre")->setText("B");
  Actualiser();
  ASSERT_EQ(w->CheminSelection(), racine + "/B.JPG");
  ASSERT_TRUE(QFile::remove(w->CheminSelection()));
  C<QPushButton>("cmdOuvrir")->click();
  EXPECT_EQ(dlg.Dernier().texte, "Fichier introuvable !");
  EXPECT_TRUE(w->isVisible());
}

}  // namespace
}  // namespace tg
