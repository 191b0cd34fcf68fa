// The external editor: the picture exported as temp.jpg, a stand-in editor
// (a small script started the real way) that rewrites it, the import that
// takes the pixels or refuses another size, and NeatImage's two launches.
#include <gtest/gtest.h>

#include <QAction>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <QToolButton>
#include <memory>

#include "core/ApplicationsExternes.h"
#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Systeme.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

// A script that copies `remplacante` over the file it is given, then leaves
// a mark beside it.
QString Editeur(const QString& nom, const QString& remplacante) {
  const QString chemin = QDir::current().filePath(nom);
  QFile f(chemin);
  EXPECT_TRUE(f.open(QIODevice::WriteOnly));
  f.write(QStringLiteral("#!/bin/sh\ncp '%1' \"$1\"\ntouch \"$1.fini\"\n").arg(remplacante).toUtf8());
  f.close();
  f.setPermissions(f.permissions() | QFileDevice::ExeOwner);
  return chemin;
}

QString Image(const QString& nom, int l, int h, QColor c) {
  QImage img(l, h, QImage::Format_RGB32);
  img.fill(c);
  const QString chemin = QDir::current().filePath(nom);
  EXPECT_TRUE(img.save(chemin, "JPG", 100));
  return chemin;
}

bool Attendre(const QString& fichier) {
  QElapsedTimer t;
  t.start();
  while (!QFile::exists(fichier) && t.elapsed() < 10000) QThread::msleep(20);
  return QFile::exists(fichier);
}

class Editeur : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  std::unique_ptr<frmFichierPhoto> w;
  QString temp;

  Editeur() {
    s.RepTravail = QDir::current().filePath("travail") + "/";
    QDir().mkpath(s.RepTravail);
    temp = s.RepTravail + "temp.jpg";
    QImage img(200, 100, QImage::Format_RGB32);
    img.fill(QColor(128, 128, 128));
    EXPECT_TRUE(ai.Convert_PictureToImage(img, s.ImageCourante));
    s.Largeur = 200;
    s.Hauteur = 100;
  }
  void Creer() { w = std::make_unique<frmFichierPhoto>(s, ai); }
  frmApExterne* Fenetre() const { return w->findChild<frmApExterne*>(); }
  QAction* A(const char* nom) const { return w->findChild<QAction*>(QLatin1String(nom)); }
};

TEST_F(Editeur, ExportEditionEtImportDesPixels) {
  s.ApExt[0] = ::tg::Editeur("editeur.sh", Image("rouge.jpg", 200, 100, Qt::red));
  Creer();
  ExporterImage(*w);
  ASSERT_TRUE(QFile::exists(temp));
  frmApExterne* f = Fenetre();
  ASSERT_NE(f, nullptr);
  EXPECT_EQ(f->NombreApplications(), 1);
  f->findChild<QToolButton*>("picApExt0")->click();
  ASSERT_TRUE(Attendre(temp + ".fini"));
  EXPECT_TRUE(CheminExport().isEmpty());
  EXPECT_TRUE(A("Importer")->isEnabled());
  EXPECT_TRUE(A("Importer")->isChecked());
  EXPECT_FALSE(A("Exporter")->isEnabled());
  ImporterImage(*w);
  QImage importee;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, importee));
  EXPECT_EQ(importee.size(), QSize(200, 100));
  EXPECT_GT(qRed(importee.pixel(100, 50)), 240);
  EXPECT_LT(qGreen(importee.pixel(100, 50)), 20);
  EXPECT_FALSE(QFile::exists(temp));
  EXPECT_TRUE(A("Exporter")->isEnabled());
  EXPECT_FALSE(A("Importer")->isEnabled());
}

TEST_F(Editeur, UneAutreTailleEstRefusee) {
  s.ApExt[0] = ::tg::Editeur("agrandit.sh", Image("grande.jpg", 300, 100, Qt::blue));
  Creer();
  ExporterImage(*w);
  Fenetre()->Lancer(0);
  ASSERT_TRUE(Attendre(temp + ".fini"));
  ImporterImage(*w);
  EXPECT_EQ(dlg.Dernier().titre, "Erreur image");
  EXPECT_TRUE(dlg.Dernier().texte.startsWith("Les dimensions de l'original et de l'image retouchée sont différentes"));
  EXPECT_FALSE(QFile::exists(temp));
  QImage courante;
  ASSERT_TRUE(ai.Convert_ImageToPicture(s.ImageCourante, courante));
  EXPECT_EQ(courante.pixel(10, 10), qRgb(128, 128, 128));
  // Nothing left to import: the other message.
  ImporterImage(*w);
  EXPECT_EQ(dlg.Dernier().texte, "Votre fichier est introuvable\nou n'est pas une image reconnue par l'application !");
}

TEST_F(Editeur, SansDossierNiApplication) {
  s.RepTravail.clear();
  Creer();
  ExporterImage(*w);
  EXPECT_EQ(dlg.Dernier().titre, "Dossier introuvable");
  EXPECT_TRUE(dlg.Dernier().texte.startsWith("Vous n'avez pas configuré de dossier de travail !"));
  s.RepTravail = QDir::current().filePath("travail") + "/";
  ExporterImage(*w);
  EXPECT_TRUE(dlg.Dernier().texte.startsWith("Vous n'avez pas configuré d'applications externes !"));
  EXPECT_EQ(Fenetre(), nullptr);
}

class SystemeEspion : public ISysteme {
 public:
  SystemeEspion() { InstallerSysteme(this); }
  ~SystemeEspion() override { InstallerSysteme(nullptr); }
  std::vector<std::pair<QString, QStringList>> lancements;
  bool LancerProgramme(const QString& p, const QStringList& a) override {
    lancements.emplace_back(p, a);
    return true;
  }
  bool OuvrirAdresse(const QString&, const QString&) override { return true; }
  Ecran InfosEcran() override { return {}; }
};

TEST(LancerApplication, NeatImageLanceDeuxFois) {
  DialoguesScriptes dlg;
  SystemeEspion espion;
  DelaiDeuxiemeLancement() = 10;
  EXPECT_TRUE(EstNeatImage("/opt/outils/NeatImagePro"));
  EXPECT_TRUE(EstNeatImage("neatimage"));
  EXPECT_FALSE(EstNeatImage("/opt/neatimage/gimp"));
  EXPECT_TRUE(LancerApplication(nullptr, "/opt/outils/neatImage-7", "/photos/mes photos/temp.jpg"));
  EXPECT_EQ(dlg.Dernier().titre, "Infos pour neatImage-7");
  ASSERT_EQ(espion.lancements.size(), 2u);
  EXPECT_TRUE(espion.lancements[0].second.isEmpty());
  EXPECT_EQ(espion.lancements[1].second, QStringList{"/photos/mes photos/temp.jpg"});
  espion.lancements.clear();
  dlg.appels.clear();
  EXPECT_TRUE(LancerApplication(nullptr, "/usr/bin/gimp", "/photos/temp.jpg"));
  EXPECT_TRUE(dlg.appels.empty());
  ASSERT_EQ(espion.lancements.size(), 1u);
  EXPECT_EQ(espion.lancements[0].second, QStringList{"/photos/temp.jpg"});
  DelaiDeuxiemeLancement() = 5000;
}

}  // namespace
}  // namespace tg
