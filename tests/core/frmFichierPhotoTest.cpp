// The main window driven through its named controls, with the scripted dialogues.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QElapsedTimer>
#include <QSlider>
#include <QTimer>
#include <QToolBar>
#include <memory>

#include "core/Etape.h"
#include "core/Session.h"
#include "core/frmFichierPhoto.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Systeme.h"
#include "tests/support/DialoguesScriptes.h"
#include "version.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

class FenetrePrincipale : public testing::Test {
 protected:
  DialoguesScriptes dlg;  // installed before the window asks anything
  SessionRecord s;
  cAdvancedImagery ai;
  std::unique_ptr<frmFichierPhoto> w;
  std::map<QString, int> appels;  // hook name -> calls

  void Creer() {
    w = std::make_unique<frmFichierPhoto>(s, ai);
    for (const char* nom :
         {"frmSearch", "frmAjouterCartouche", "frmEnregistrer", "frmMesure", "frmRecadrage",
          "frmGestionTables", "frmEditComments", "mnuOuvriFichier", "mnuOuvriFichierEtalon",
          "frmFiltres", "ReconstruireCartouche"}) {
      const QString n = QLatin1String(nom);
      w->DefinirCrochet(n, [this, n] { ++appels[n]; });
    }
  }
  QAction* A(const char* nom) const {
    QAction* a = w->findChild<QAction*>(QLatin1String(nom));
    if (a == nullptr)
      if (auto* m = w->findChild<QMenu*>(QLatin1String(nom))) a = m->menuAction();
    EXPECT_NE(a, nullptr) << nom;
    return a;
  }
  template <typename T>
  T* C(const char* nom) const {
    T* c = w->findChild<T*>(QLatin1String(nom));
    EXPECT_NE(c, nullptr) << nom;
    return c;
  }
  bool Visible(const char* nom) const { return C<QWidget>(nom)->isVisibleTo(w.get()); }
  void Etape(int e) {
    s.Etape = int16_t(e);
    w->AppliquerEtape();
  }
  // A white picture of l x h as the session image, as a load leaves it.
  void Image(int l, int h) {
    ASSERT_TRUE(ai.IO_CreateImage(s.ImageCourante, l, h, 24)) << ai.Error_GetLast().toStdString();
    ReinitialiserSession(s, ai);
  }
  QStringList Actives(const QString& barre) const {
    QStringList r;
    for (QAction* a : w->findChild<QToolBar*>(barre)->actions())
      if (a->isEnabled()) r << a->objectName();
    return r;
  }
};

TEST_F(FenetrePrincipale, TitreBarresEtMenusAuDepart) {
  Creer();
  EXPECT_EQ(w->objectName(), "frmFichierPhoto");
  EXPECT_EQ(w->windowTitle(), QString(" Tessellographe : ") + VersionTexte);

  QStringList cles1, cles2;
  for (QAction* a : C<QToolBar>("Toolbar1")->actions()) cles1 << a->objectName();
  for (QAction* a : C<QToolBar>("Toolbar2")->actions()) cles2 << a->objectName();
  EXPECT_EQ(cles1,
            QStringList({"Ouvrir", "RedimAuto", "Cartouche", "Sauver", "Mesure", "anotations"}));
  EXPECT_EQ(cles2, QStringList({"Etalonner", "Rotation", "Recadrer", "Filtres", "Exporter",
                                "Importer", "Copier"}));
  EXPECT_EQ(Actives("Toolbar1"), QStringList{"Ouvrir"});
  EXPECT_EQ(Actives("Toolbar2"), QStringList{"Etalonner"});

  const std::vector<std::pair<const char*, const char*>> legendes = {
      {"mnuOuvriFichier", "Charger une image"},
      {"mnuOuvriFichierEtalon", "Charger une image d'étalon"},
      {"mnuSearch", "Rechercher - Visionner"},
      {"mnuSauveResult", "Enregistrer le résultat"},
      {"mnuChargerClipBoard", "Acquérir une image du p.papier"},
      {"mnuAcquisition", "Acquérir (Twain32)"},
      {"mnuSelectSrcTwain", "Sélectionner la source"},
      {"mnuAcquireTwain", "Acquisition directe"},
      {"mnuAcquireFileTwain", "Acquérir dans un fichier"},
      {"mnuCreateEmptyImage", "Créer une image vide"},
      {"mnuSauverTemp", "Copie de l'image en cours"},
      {"mnuSauverTempPapier", "Dans le presse-papier"},
      {"mnuSauverTempFichier", "Dans un fichier"},
      {"mnuQuitter", "&Quitter"},
      {"mnuRecent", "Récents"},
      {"mnuEdition", "F&ormatage"},
      {"mnuRotation", "Rotation"},
      {"mnuRot90G", "90° Gauche"},
      {"mnuRot90D", "90° Droite"},
      {"mnuRot180", "180°"},
      {"mnuRecadrer", "Recadrer"},
      {"mnuRedim", "Redimensionner"},
      {"mnuRedimAuto", "Automatique"},
      {"mnuMesurerEtalon", "Etalonnage sur image, création de table"},
      {"mnuMesureImage", "Mesure sur la nouvelle image"},
      {"mnuMesureImageTemp", "Récupérer une échelle et mesurer"},
      {"mnuGestionTables", "Gestion des tables de mesure"},
      {"mnuAjoutTable", "Ajouter une table manuellement"},
      {"mnuOptions", "Options (configuration)"},
      {"mnuFiltre", "Filtres"},
      {"mnuFiltres2", "Fenêtre filtres"},
      {"mnuAnnulerFiltres", "Annuler tous les filtres"},
      {"mnuAnnulerAnnotation", "Supprimer annotations"},
      {"mnuEditComments", "Editeur de métadonnées"},
      {"mnuScreenInfos", "Infos écran"},
      {"mnuApExtmnu", "Applications  externes"},
      {"mnuWeb", "Forum"},
      {"mnuHelp", "Aide (web)"},
      {"mnuUpdate", "Mises à jour ..."},
      {"mnuApropos", "A propos ..."}};
  for (const auto& [nom, legende] : legendes)
    EXPECT_EQ(A(nom)->text(), QString::fromUtf8(legende)) << nom;
  QStringList forums;
  for (QAction* a : C<QMenu>("mnuWeb")->actions()) forums << a->text();
  EXPECT_EQ(forums, QStringList({"Le Naturaliste", "Doraisidren"}));
  QStringList formatage;
  for (QAction* a : C<QMenu>("mnuEdition")->actions()) formatage << a->text();
  EXPECT_EQ(formatage, QStringList({"Rotation", "Recadrer", "Redimensionner"}));

  for (const char* nom :
       {"mnuSauveResult", "mnuEdition", "mnuMesurerEtalon", "mnuMesureImage", "mnuMesureImageTemp",
        "mnuFiltre", "mnuSauverTemp", "mnuAnnulerAnnotation"})
    EXPECT_FALSE(A(nom)->isEnabled()) << nom;
  EXPECT_EQ(C<QLabel>("imgInfoCadrage")->property("icone").toString(), "ApnVide");
  EXPECT_EQ(C<QLabel>("imgInfoZoom")->property("icone").toString(), "ZoomVide");
  EXPECT_EQ(C<QLabel>("imgInfoTaille")->property("icone").toString(), "Taille");
  EXPECT_EQ(C<QLabel>("lblValueSlider")->text(), "100 %");
  // Without any table file the table manager is out of reach.
  EXPECT_FALSE(A("mnuGestionTables")->isEnabled());
}

TEST_F(FenetrePrincipale, LesBoutonsDeFormatPortentLeursCouleursEtInfoBulles) {
  s.ChoixFormat = 1;
  Creer();
  const QStringList bulles = {"Sortie en 640 x 480", "Sortie en 756 x 562", "Sortie en 800 x 600",
                              "Sortie en 1024 x 768", "Sortie en 1152 x 864"};
  for (int i = 0; i < 5; ++i)
    EXPECT_EQ(C<QPushButton>(qPrintable(QString("PicFormat%1").arg(i)))->toolTip(), bulles[i]);
  EXPECT_TRUE(C<QPushButton>("PicFormat0")->styleSheet().contains("#ff8000"));
  auto* lbl = C<QLabel>("lblFormatSortie");
  EXPECT_EQ(lbl->text(), "750 x 562");
  EXPECT_EQ(lbl->palette().color(QPalette::Window), QColor(0xC0, 0xFF, 0xFF));
}

TEST_F(FenetrePrincipale, LesEtapesSuccessivesPosentEtRetirentLesMarques) {
  s.MessageBox = 1;  // no balloon in this test
  s.PoidsFichier = 12.5f;
  s.SeparateurDecimal = ",";
  Creer();
  const QImage sansMarque = A("Sauver")->icon().pixmap(32).toImage();

  Etape(1);
  EXPECT_EQ(Actives("Toolbar1"), QStringList({"Ouvrir", "RedimAuto"}));
  EXPECT_EQ(Actives("Toolbar2"), QStringList({"Etalonner", "Rotation", "Recadrer", "Copier"}));
  EXPECT_TRUE(A("mnuEdition")->isEnabled());

  Etape(2);
  Etape(3);
  EXPECT_TRUE(A("Cartouche")->property("marque").toBool());
  EXPECT_TRUE(A("Cartouche")->isChecked());
  EXPECT_EQ(Actives("Toolbar2"), QStringList{"Etalonner"});
  EXPECT_TRUE(A("Sauver")->isEnabled());
  EXPECT_TRUE(A("mnuMesureImage")->isEnabled());
  EXPECT_FALSE(A("mnuSauverTemp")->isEnabled());
  EXPECT_EQ(C<QLineEdit>("txtPoidsFichier")->text(), "N/A");
  EXPECT_TRUE(Visible("txtPoidsFichier"));
  EXPECT_TRUE(Visible("lblInfosPoids"));

  Etape(6);
  EXPECT_FALSE(A("Sauver")->property("marque").toBool());
  EXPECT_FALSE(A("Sauver")->isChecked());
  EXPECT_TRUE(A("Cartouche")->property("marque").toBool());
  EXPECT_TRUE(A("mnuAnnulerAnnotation")->isEnabled());

  Etape(4);
  EXPECT_TRUE(A("Sauver")->property("marque").toBool());
  EXPECT_TRUE(A("Sauver")->isChecked());
  EXPECT_NE(A("Sauver")->icon().pixmap(32).toImage(), sansMarque);
  EXPECT_EQ(C<QLineEdit>("txtPoidsFichier")->text(), "12,5");

  // Stage 5 leaves every tool as it was.
  std::vector<std::tuple<QString, bool, bool, bool>> avant, apres;
  for (QAction* a : w->findChildren<QAction*>())
    avant.emplace_back(a->objectName(), a->isEnabled(), a->isChecked(),
                       a->property("marque").toBool());
  Etape(5);
  for (QAction* a : w->findChildren<QAction*>())
    apres.emplace_back(a->objectName(), a->isEnabled(), a->isChecked(),
                       a->property("marque").toBool());
  EXPECT_EQ(avant, apres);

  // A new picture takes both marks away.
  Etape(1);
  EXPECT_FALSE(A("Cartouche")->property("marque").toBool());
  EXPECT_FALSE(A("Sauver")->property("marque").toBool());
  EXPECT_EQ(A("Sauver")->icon().pixmap(32).toImage(), sansMarque);
  EXPECT_TRUE(dlg.appels.empty());
}

TEST_F(FenetrePrincipale, UnClicNeRelachePasUnBoutonEnfonceEtFermeLesOutils) {
  s.MessageBox = 1;
  Creer();
  for (int e : {1, 2, 3}) Etape(e);
  QWidget config;
  config.setObjectName("frmConfig");
  config.show();
  A("Cartouche")->trigger();
  EXPECT_TRUE(A("Cartouche")->isChecked());
  EXPECT_EQ(appels["frmAjouterCartouche"], 1);
  EXPECT_FALSE(config.isVisible());
}

TEST_F(FenetrePrincipale, LEtape1FermeLesFenetresDOutils) {
  s.MessageBox = 1;
  Creer();
  QWidget filtres, autre;
  filtres.setObjectName("frmFiltres");
  autre.setObjectName("frmSearch");
  filtres.show();
  autre.show();
  Etape(1);
  EXPECT_FALSE(filtres.isVisible());
  EXPECT_TRUE(autre.isVisible());
}

TEST_F(FenetrePrincipale, LaBulleDAideEstEcriteDansUserConfigQuandCochee) {
  s.MessageBox = 0;
  Creer();
  dlg.casesCochees = {true};
  Etape(2);
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.Dernier().genre, "MsgBoxEx");
  EXPECT_EQ(dlg.Dernier().titre, "Formatage OK");
  EXPECT_EQ(s.MessageBox, 1);
  EXPECT_EQ(LireIni("General", "MessageBox", CheminUserConfig(), ""), "1");
  Etape(3);  // ticked: no more balloons
  EXPECT_EQ(dlg.appels.size(), 1u);
}

TEST_F(FenetrePrincipale, LaBulleRevientAChaqueEtapeTantQueNonCochee) {
  s.MessageBox = 0;
  Creer();
  Etape(3);
  Etape(3);  // a second cartouche
  ASSERT_EQ(dlg.appels.size(), 2u);
  EXPECT_EQ(dlg.appels[1].titre, "Cartouche OK");
  EXPECT_EQ(LireIni("General", "MessageBox", CheminUserConfig(), ""), "0");
}

TEST_F(FenetrePrincipale, CopieFichierAcceptee) {
  s.MessageBox = 1;
  Creer();
  Image(64, 48);
  Etape(1);
  A("Copier")->trigger();
  auto* panneau = C<QWidget>("picDialogueCopier");
  EXPECT_TRUE(panneau->isVisibleTo(w.get()));
  EXPECT_EQ(panneau->pos(), QPoint(88, 120));
  EXPECT_TRUE(panneau->findChild<QLabel*>("lblAvertissementCopier")
                  ->text()
                  .startsWith("Attention : Ne pas confondre cet outil"));

  const QString cible = DossierDocuments() + "copie.jpg";
  dlg.chaines = {cible};
  C<QPushButton>("cmdCopierFichier")->click();
  const auto& dialogue = dlg.appels.at(0);
  EXPECT_EQ(dialogue.genre, "FichierEnregistrer");
  EXPECT_EQ(dialogue.titre, "  Sauver l'image en cours ...");
  EXPECT_EQ(dialogue.texte, DossierDocuments() + "AAA_Copie_1");
  EXPECT_EQ(dlg.Dernier().texte, "Ok, Image sauvegardée !");
  QFile f(cible);
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  EXPECT_TRUE(f.read(3).startsWith("\xFF\xD8\xFF"));  // a JPEG
  EXPECT_FALSE(panneau->isVisibleTo(w.get()));

  // A name typed without its extension gets ".jpg", so that the open dialog shows it.
  dlg.chaines = {DossierDocuments() + "AAA_Copie_1"};
  C<QPushButton>("cmdCopierFichier")->click();
  EXPECT_TRUE(QFile::exists(DossierDocuments() + "AAA_Copie_1.jpg"));
  EXPECT_FALSE(QFile::exists(DossierDocuments() + "AAA_Copie_1"));
}

TEST_F(FenetrePrincipale, CopieFichierRefuseeApresLeCartouche) {
  s.MessageBox = 1;
  s.RepTravail = DossierDocuments() + "travail/";
  Creer();
  Image(64, 48);
  Etape(2);
  A("Copier")->trigger();  // the panel stays open while the cartouche is made
  Etape(3);
  EXPECT_FALSE(A("Copier")->isEnabled());
  const QString cible = DossierDocuments() + "refus.jpg";
  dlg.chaines = {cible};
  C<QPushButton>("cmdCopierFichier")->click();
  EXPECT_EQ(dlg.appels.at(0).texte, s.RepTravail + "AAA_Copie_1");
  EXPECT_EQ(dlg.Dernier().texte, "Erreur : Impossible de copier cette image à cette étape !");
  EXPECT_FALSE(QFile::exists(cible));
}

TEST_F(FenetrePrincipale, FermerSurNonAnnuleLaFermeture) {
  Creer();
  w->show();
  EcrireLignes(RepApplication() + "table_mesure.dat", {"table"});
  dlg.reponses = {Reponse::Non};
  EXPECT_FALSE(w->close());
  EXPECT_TRUE(w->isVisible());
  EXPECT_EQ(dlg.Dernier().titre, "Quitter Tessellographe");
  EXPECT_EQ(dlg.Dernier().texte, "Voulez-vous vraiment quitter l'application?");
  EXPECT_FALSE(FileExists(RepApplication() + "table_mesure_secours.bak"));
  EXPECT_FALSE(FileExists(CheminRecent()));
}

// Records the order in which windows receive their close event.
struct Journal : QObject {
  QStringList fermees;
  bool eventFilter(QObject* o, QEvent* e) override {
    if (e->type() == QEvent::Close) fermees << o->objectName();
    return false;
  }
};

TEST_F(FenetrePrincipale, FermerSurOuiRangeLaSessionEtFermeLesFenetres) {
  Creer();
  w->show();
  const QString rep = RepApplication();
  EcrireLignes(rep + "table_mesure.dat", {"table du jour"});
  EcrireLignes(rep + "table_mesure_secours.bak", {"ancienne"});
  EcrireLignes(CheminRecent(), {"\"perime.jpg\""});
  EcrireLignes(rep + "twain_temp.jpg", {"x"});
  s.ListeRecent = {"/images/a.jpg", "", "/images/c b.jpg", "", ""};
  ASSERT_TRUE(ai.IO_CreateImage(s.ImageSansFiltre, 8, 8));
  ASSERT_TRUE(ai.IO_CreateImage(s.ImageFormatee, 8, 8));
  ASSERT_TRUE(ai.IO_CreateImage(s.ImageFiltre, 8, 8));

  Journal journal;
  QWidget premiere, seconde;
  premiere.setObjectName("frmMesure");
  seconde.setObjectName("frmListeMesure");
  for (QWidget* f : {&premiere, &seconde}) {
    f->installEventFilter(&journal);
    f->show();
    w->FenetreOuverte(f);
  }

  dlg.reponses = {Reponse::Oui};
  EXPECT_TRUE(w->close());
  QStringList secours, recent;
  ASSERT_TRUE(LireLignes(rep + "table_mesure_secours.bak", secours));
  EXPECT_EQ(secours, QStringList{"table du jour"});
  ASSERT_TRUE(LireListe(CheminRecent(), recent));
  EXPECT_EQ(recent, QStringList({"/images/a.jpg", "/images/c b.jpg"}));
  EXPECT_FALSE(FileExists(rep + "twain_temp.jpg"));
  EXPECT_TRUE(s.ImageSansFiltre.Vide());
  EXPECT_TRUE(s.ImageFormatee.Vide());
  EXPECT_TRUE(s.ImageFiltre.Vide());
  EXPECT_EQ(journal.fermees, QStringList({"frmListeMesure", "frmMesure"}));
}

TEST_F(FenetrePrincipale, ImageDAccueilMasqueeParLeMinuteurOuUnClic) {
  s.ImageAccueil = "1";
  Creer();
  auto* accueil = C<QLabel>("imgAccueil");
  auto* timer = C<QTimer>("Timer1");
  EXPECT_TRUE(accueil->isVisibleTo(w.get()));
  EXPECT_EQ(accueil->property("icone").toString(), "Accueil");
  EXPECT_TRUE(timer->isActive());
  EXPECT_EQ(timer->interval(), 3000);
  QMouseEvent clic(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton,
                   Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(accueil, &clic);
  EXPECT_FALSE(accueil->isVisibleTo(w.get()));
  EXPECT_FALSE(timer->isActive());

  w.reset();
  s.ImageAccueil = "0";
  Creer();
  EXPECT_FALSE(C<QLabel>("imgAccueil")->isVisibleTo(w.get()));
  EXPECT_FALSE(C<QTimer>("Timer1")->isActive());
}

TEST_F(FenetrePrincipale, ZoomNumeriqueAvertiEtSignale) {
  s.MessageBox = 1;
  Creer();
  Image(800, 600);
  s.FocaleAPN = 7.5f;
  s.DigitalZoom = 1.0f;
  w->AfficherInfosImage();
  EXPECT_TRUE(dlg.appels.empty());
  EXPECT_EQ(C<QLabel>("imgInfoZoom")->property("icone").toString(), "ZoomOk");
  EXPECT_EQ(C<QLineEdit>("txtTaille")->text(), "800 x 600");

  s.DigitalZoom = 1.5f;
  w->AfficherInfosImage();
  ASSERT_EQ(dlg.appels.size(), 1u);
  EXPECT_EQ(dlg.Dernier().titre, "Zoom numérique !");
  EXPECT_EQ(dlg.Dernier().icone, int(Icone::Exclamation));
  EXPECT_EQ(dlg.Dernier().texte, TexteAvertissementZoom(s));
  EXPECT_EQ(C<QLabel>("imgInfoZoom")->property("icone").toString(), "ZoomNum");
  auto* zoom = C<QLineEdit>("txtDigitalZoom");
  EXPECT_FALSE(zoom->text().isEmpty());
  EXPECT_EQ(zoom->palette().color(QPalette::Text), QColor(255, 0, 0));

  // The étalon measure refuses such a picture.
  Etape(1);
  A("mnuMesurerEtalon")->trigger();
  EXPECT_EQ(dlg.Dernier().texte,
            "L'utilisation d'un zoom numérique n'est pas prise en charge.\n"
            "Utilisez uniquement le zoom optique !");
  EXPECT_EQ(dlg.Dernier().icone, int(Icone::Critique));
  EXPECT_EQ(appels["frmMesure"], 0);
  s.DigitalZoom = 1.0f;
  s.ModeMesure = 2;
  A("mnuMesurerEtalon")->trigger();
  EXPECT_EQ(appels["frmMesure"], 1);
  EXPECT_EQ(s.ModeMesure, 0);
}

struct CasRecadrage {
  int largeur, hauteur;
  bool accepte;
};

class Recadrer : public FenetrePrincipale, public testing::WithParamInterface<CasRecadrage> {};

TEST_P(Recadrer, RefuseSousLaTailleMinimale) {
  s.MessageBox = 1;
  Creer();
  Image(GetParam().largeur, GetParam().hauteur);
  Etape(1);
  A("Recadrer")->trigger();
  if (GetParam().accepte) {
    EXPECT_TRUE(dlg.appels.empty());
    EXPECT_EQ(appels["frmRecadrage"], 1);
  } else {
    ASSERT_EQ(dlg.appels.size(), 1u);
    EXPECT_EQ(dlg.Dernier().texte, "Vous ne pouvez pas recadrer cette image : <= 640 x 480");
    EXPECT_EQ(appels["frmRecadrage"], 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Tailles, Recadrer,
                         testing::Values(CasRecadrage{640, 481, true},
                                         CasRecadrage{640, 480, false},
                                         CasRecadrage{639, 1000, false}));

TEST_F(FenetrePrincipale, LeBoutonRotationTourneDUnQuartADroite) {
  s.MessageBox = 1;
  Creer();
  Image(40, 20);
  Etape(1);
  auto* ticks = C<QLabel>("lblTickCount");
  ticks->setText("charg. = 12 ms");
  A("Rotation")->trigger();
  EXPECT_EQ(s.Largeur, 20);
  EXPECT_EQ(s.Hauteur, 40);
  EXPECT_EQ(C<QLineEdit>("txtTaille")->text(), "20 x 40");
  EXPECT_EQ(C<QLabel>("imgInfoCadrage")->property("icone").toString(), "Portrait");
  EXPECT_TRUE(Visible("imaOrigine"));
  EXPECT_TRUE(ticks->text().isEmpty());
  EXPECT_TRUE(dlg.appels.empty());
}

TEST_F(FenetrePrincipale, AffichageBarresEtAjustement) {
  s.MessageBox = 1;
  Creer();
  w->resize(1000, 800);
  w->show();
  QApplication::processEvents();
  auto* cadre = C<QWidget>("picCadre");
  auto* ima = C<QLabel>("imaOrigine");
  Image(3000, 2000);
  Etape(1);
  ASSERT_TRUE(w->AfficherImage(s.ImageCourante));
  EXPECT_EQ(ima->size(), QSize(3000, 2000));
  EXPECT_TRUE(C<QScrollBar>("HScroll1")->isVisible());
  EXPECT_TRUE(C<QScrollBar>("VScroll1")->isVisible());

  // Wider than the zone: fitted to 80 % of the frame width, no scroll bar.
  s.ZoneLargeur = 1000;
  s.ZoneHauteur = 800;
  C<QPushButton>("cmdLargeur")->click();
  // The slider moves by whole percents: 30 pixels of this picture.
  EXPECT_NEAR(ima->width(), (cadre->width() - 10) * 0.8, 30);
  EXPECT_FALSE(C<QScrollBar>("HScroll1")->isVisible());
  EXPECT_FALSE(C<QScrollBar>("VScroll1")->isVisible());
  EXPECT_EQ(C<QLabel>("lblValueSlider")->text(),
            QString::number(C<QSlider>("Slider1")->value()) + " %");

  C<QPushButton>("cmdCentpCent")->click();
  EXPECT_EQ(C<QSlider>("Slider1")->value(), 100);
  EXPECT_EQ(ima->size(), QSize(3000, 2000));
  EXPECT_TRUE(C<QScrollBar>("HScroll1")->isVisible());

  // Closing the picture empties the display and hides the bars.
  w->FermerImage();
  EXPECT_EQ(s.Etape, 0);
  EXPECT_TRUE(s.ImageCourante.Vide());
  EXPECT_TRUE(ima->pixmap().isNull());
  EXPECT_EQ(ima->size(), QSize(640, 480));
  EXPECT_FALSE(C<QScrollBar>("HScroll1")->isVisible());
  EXPECT_FALSE(C<QScrollBar>("VScroll1")->isVisible());
  EXPECT_EQ(Actives("Toolbar1"), QStringList{"Ouvrir"});
  EXPECT_TRUE(C<QLineEdit>("txtTaille")->text().isEmpty());
  EXPECT_EQ(C<QLabel>("imgInfoCadrage")->property("icone").toString(), "ApnVide");
  // Without a picture the fit button does nothing.
  C<QPushButton>("cmdLargeur")->click();
  EXPECT_EQ(C<QSlider>("Slider1")->value(), 100);
}

TEST_F(FenetrePrincipale, GardesDesMenusDeMesure) {
  s.MessageBox = 1;
  Creer();
  Image(800, 600);
  Etape(3);
  A("Mesure")->trigger();  // no scale on the picture
  EXPECT_EQ(dlg.Dernier().titre, "Mesure sur image :");
  EXPECT_EQ(dlg.Dernier().texte,
            "Mesure sur image :\nAjoutez une échelle à votre image (Cartouche)");
  EXPECT_EQ(appels["frmMesure"], 0);
  s.MicronsParPixel = 1.42f;
  A("Mesure")->trigger();
  EXPECT_EQ(appels["frmMesure"], 1);
  EXPECT_EQ(s.ModeMesure, 2);

  A("mnuGestionTables")->setEnabled(true);
  A("mnuGestionTables")->trigger();
  EXPECT_EQ(dlg.Dernier().texte, "Tables de mesure inexistantes !");
  EcrireLignes(RepApplication() + "table_mesure.dat", {"x"});
  A("mnuGestionTables")->trigger();
  EXPECT_EQ(appels["frmGestionTables"], 1);

  A("mnuEditComments")->trigger();  // stage 3: refused
  EXPECT_EQ(dlg.Dernier().texte, "Veuillez charger une image formatée TG ...");
  s.ImageDejaFormatee = true;
  Etape(1);
  A("mnuEditComments")->trigger();
  EXPECT_EQ(appels["frmEditComments"], 1);
}

TEST_F(FenetrePrincipale, LaGestionDesTablesSuitLaPresenceDUneTable) {
  EcrireLignes(RepApplication() + "table_mesure.bak", {"x"});
  Creer();
  EXPECT_TRUE(A("mnuGestionTables")->isEnabled());
}

TEST_F(FenetrePrincipale, AnnulerLesFiltresRemetLaCopieSansFiltre) {
  s.MessageBox = 1;
  Creer();
  Image(64, 48);
  ASSERT_TRUE(ai.IO_CreateImage(s.ImageSansFiltre, 32, 24));
  ASSERT_TRUE(ai.IO_CreateImage(s.ImageFormatee, 64, 48));
  Etape(2);

  dlg.reponses = {Reponse::Non};
  A("mnuAnnulerFiltres")->trigger();
  EXPECT_EQ(dlg.Dernier().titre, "Supprimer filtres");
  EXPECT_EQ(dlg.Dernier().texte, "Souhaitez-vous supprimer définitivement les filtres ?");
  EXPECT_EQ(dlg.Dernier().defaut, Reponse::Non);
  EXPECT_FALSE(s.ImageSansFiltre.Vide());

  dlg.reponses = {Reponse::Oui};
  A("mnuAnnulerFiltres")->trigger();
  EXPECT_EQ(ai.Info_Width(s.ImageFormatee), 32);
  EXPECT_TRUE(s.ImageSansFiltre.Vide());
  EXPECT_EQ(dlg.Dernier().texte, "Filtres supprimés !");
}

TEST_F(FenetrePrincipale, SupprimerLesAnnotationsDemandeEtReconstruit) {
  s.MessageBox = 1;
  Creer();
  Image(64, 48);
  s.AnnotationsPresentes = true;
  Etape(6);
  A("mnuAnnulerAnnotation")->trigger();  // unscripted: default no
  EXPECT_EQ(dlg.Dernier().titre, "Supprimer les annotations");
  EXPECT_EQ(dlg.Dernier().texte, "Voulez vous supprimer toutes les annotations ?");
  EXPECT_TRUE(s.AnnotationsPresentes);
  dlg.reponses = {Reponse::Oui};
  A("mnuAnnulerAnnotation")->trigger();
  EXPECT_FALSE(s.AnnotationsPresentes);
  EXPECT_EQ(appels["ReconstruireCartouche"], 1);
}

TEST_F(FenetrePrincipale, OuvrirSuitLeModeDOuverture) {
  Creer();
  A("Ouvrir")->trigger();
  EXPECT_EQ(appels["frmSearch"], 1);
  s.ModeOuvrir = "1";
  A("Ouvrir")->trigger();
  EXPECT_EQ(appels["mnuOuvriFichier"], 1);
  EXPECT_EQ(appels["frmSearch"], 1);
}

TEST_F(FenetrePrincipale, MenusRecentsEtApplicationsExternes) {
  s.ApExt = {"/opt/gimp/bin/gimp", "", "/usr/bin/darktable", ""};
  Creer();
  QStringList externes;
  for (QAction* a : C<QMenu>("mnuApExtmnu")->actions()) externes << a->text();
  EXPECT_EQ(externes, QStringList({"gimp", "darktable"}));
  std::vector<int> indices;
  w->DefinirCrochetIndex("mnuApExterne", [&](int i) { indices.push_back(i); });
  w->DefinirCrochetIndex("mnuRecent", [&](int i) { indices.push_back(10 + i); });
  A("mnuApExterne2")->trigger();

  w->AfficherRecents({"c.jpg", "b.jpg", "a.jpg", "z.jpg", "y.jpg", "x.jpg"});
  ASSERT_EQ(C<QMenu>("mnuRecent")->actions().size(), 5);
  w->AfficherRecents({"d.jpg", "c.jpg"});
  QStringList recents;
  for (QAction* a : C<QMenu>("mnuRecent")->actions()) recents << a->text();
  EXPECT_EQ(recents, QStringList({"d.jpg", "c.jpg"}));
  C<QMenu>("mnuRecent")->actions().at(1)->trigger();
  EXPECT_EQ(indices, std::vector<int>({2, 12}));
}

TEST_F(FenetrePrincipale, InfosEcranEtAdresses) {
  struct Faux : ISysteme {
    QStringList ouvertes;
    bool LancerProgramme(const QString&, const QStringList&) override { return false; }
    bool OuvrirAdresse(const QString& a, const QString& n) override {
      ouvertes << a + " | " + n;
      return true;
    }
    Ecran InfosEcran() override { return {}; }
  } faux;
  InstallerSysteme(&faux);
  s.PathNav = "firefox";
  Creer();
  A("mnuScreenInfos")->trigger();
  EXPECT_TRUE(dlg.Dernier().texte.startsWith("Infos écran:\n\nWidth = "));
  EXPECT_TRUE(dlg.Dernier().texte.contains("\nResolutionY DPI = "));
  for (QAction* a : C<QMenu>("mnuWeb")->actions()) a->trigger();
  A("mnuHelp")->trigger();
  InstallerSysteme(nullptr);
  ASSERT_EQ(faux.ouvertes.size(), 3);
  for (const QString& o : faux.ouvertes) EXPECT_TRUE(o.endsWith(" | firefox")) << o.toStdString();
  EXPECT_NE(faux.ouvertes[0], faux.ouvertes[1]);
}

// A picture with more pixels than the screen shows is shown from a copy
// reduced by whole blocks; a zoom beyond the copy converts the whole picture.
TEST_F(FenetrePrincipale, GrandeImageMontreeReduitePuisEntiereAuZoom) {
  Creer();
  QImage img(3300, 2400, QImage::Format_RGB32);
  img.fill(QColor(10, 200, 30));
  ASSERT_TRUE(ai.Convert_PictureToImage(img, s.ImageCourante));
  s.Largeur = 3300;
  s.Hauteur = 2400;
  C<QSlider>("Slider1")->setValue(10);
  ASSERT_TRUE(w->AfficherImage(s.ImageCourante));
  auto* ima = C<QLabel>("imaOrigine");
  const QSize ecran = w->screen()->size();
  const int k = (3300 + std::max(ecran.width(), ecran.height()) - 1) / std::max(ecran.width(), ecran.height());
  ASSERT_GE(k, 2);
  EXPECT_EQ(ima->pixmap().width(), 3300 / k);
  EXPECT_EQ(ima->pixmap().toImage().pixel(5, 5), qRgb(10, 200, 30));
  C<QSlider>("Slider1")->setValue(100);
  EXPECT_EQ(ima->size(), QSize(3300, 2400));
  // The whole picture arrives from its thread.
  QElapsedTimer t;
  t.start();
  while (ima->pixmap().width() != 3300 && t.elapsed() < 10000) QApplication::processEvents(QEventLoop::AllEvents, 50);
  EXPECT_EQ(ima->pixmap().width(), 3300);
}

}  // namespace
}  // namespace tg
