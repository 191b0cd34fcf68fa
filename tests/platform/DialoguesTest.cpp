#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QFile>
#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <functional>

#include "platform/Dialogues.h"
#include "platform/MsgBoxEx.h"
#include "tests/support/QuandAffiche.h"

namespace tg {
namespace {

using test::QuandAffiche;

void Touche(QWidget* w, int touche) {
  QKeyEvent appui(QEvent::KeyPress, touche, Qt::NoModifier);
  QCoreApplication::sendEvent(w, &appui);
}

struct CasFiltre {
  const char* systeme;
  const char* qt;
};

class Filtre : public testing::TestWithParam<CasFiltre> {};

TEST_P(Filtre, FormeDuSystemeVersFormeQt) {
  EXPECT_EQ(FiltreQt(GetParam().systeme), QString(GetParam().qt));
}

INSTANTIATE_TEST_SUITE_P(
    Cas, Filtre,
    testing::Values(
        CasFiltre{"Jpeg (*.jpg)|*.jpg", "Jpeg (*.jpg)"},
        CasFiltre{"Jpeg (*.jpg)|*.jpg|Bitmap (*.bmp)|*.bmp", "Jpeg (*.jpg);;Bitmap (*.bmp)"},
        // The patterns after "|" are the ones that count, not those of the label.
        CasFiltre{"Images (jpg, bmp)|*.jpg;*.jpeg; *.bmp", "Images (*.jpg *.jpeg *.bmp)"},
        CasFiltre{"Texte|*.txt", "Texte (*.txt)"},
        CasFiltre{"Tous les fichiers (*.*)|*.*", "Tous les fichiers (*)"},
        CasFiltre{"Jpeg (*.jpg)|*.jpg|", "Jpeg (*.jpg)"}, CasFiltre{"", ""}));

TEST(Couleurs, BleuVertRougeDuPoidsFortAuPoidsFaible) {
  EXPECT_EQ(VersQColor(0x0000FF), QColor(255, 0, 0));
  EXPECT_EQ(VersQColor(0x00FF00), QColor(0, 255, 0));
  EXPECT_EQ(VersQColor(0xFF0000), QColor(0, 0, 255));
  EXPECT_EQ(VersQColor(0x123456), QColor(0x56, 0x34, 0x12));
  EXPECT_EQ(DepuisQColor(QColor(0x56, 0x34, 0x12)), 0x123456);
  EXPECT_EQ(DepuisQColor(QColor(Qt::white)), 0xFFFFFF);
  EXPECT_FALSE(VersQColor(-1).isValid());
  EXPECT_EQ(DepuisQColor(QColor()), -1);
}

TEST(DialoguesQt, EntreePresseLeBoutonParDefaut) {
  QString titre, texte;
  QMessageBox::Icon icone = QMessageBox::NoIcon;
  QStringList mots;
  QuandAffiche<QMessageBox>([&](QMessageBox* b) {
    titre = b->windowTitle();
    texte = b->text();
    icone = b->icon();
    for (auto* bouton : b->buttons()) mots << bouton->text().remove('&');
    Touche(b, Qt::Key_Return);
  });
  EXPECT_EQ(Dialogues().Question("Fermer", "Enregistrer l'image ?", Boutons::OuiNonAnnuler,
                                 Reponse::Non, Icone::Question),
            Reponse::Non);
  EXPECT_EQ(titre, "Fermer");
  EXPECT_EQ(texte, "Enregistrer l'image ?");
  EXPECT_EQ(icone, QMessageBox::Question);
  mots.sort();
  EXPECT_EQ(mots, (QStringList{"Annuler", "Non", "Oui"}));
}

struct CasReponse {
  Boutons boutons;
  Reponse defaut;
  int action;  // a key, or a standard button to click
  bool clic;
  Reponse attendue;
};

class ReponseQt : public testing::TestWithParam<CasReponse> {};

TEST_P(ReponseQt, BoutonChoisiRendSaReponse) {
  const CasReponse c = GetParam();
  QuandAffiche<QMessageBox>([c](QMessageBox* b) {
    if (c.clic)
      b->button(QMessageBox::StandardButton(c.action))->click();
    else
      Touche(b, c.action);
  });
  EXPECT_EQ(Dialogues().Question("T", "Q ?", c.boutons, c.defaut, Icone::Exclamation),
            c.attendue);
}

INSTANTIATE_TEST_SUITE_P(
    Cas, ReponseQt,
    testing::Values(
        CasReponse{Boutons::OuiNon, Reponse::Oui, Qt::Key_Return, false, Reponse::Oui},
        CasReponse{Boutons::OuiNon, Reponse::Non, Qt::Key_Return, false, Reponse::Non},
        CasReponse{Boutons::OuiNon, Reponse::Oui, QMessageBox::No, true, Reponse::Non},
        CasReponse{Boutons::OuiNonAnnuler, Reponse::Oui, Qt::Key_Escape, false, Reponse::Annuler},
        CasReponse{Boutons::OuiNonAnnuler, Reponse::Non, QMessageBox::Yes, true, Reponse::Oui},
        CasReponse{Boutons::OKAnnuler, Reponse::Annuler, Qt::Key_Return, false, Reponse::Annuler},
        CasReponse{Boutons::OKAnnuler, Reponse::Annuler, QMessageBox::Ok, true, Reponse::OK},
        CasReponse{Boutons::OK, Reponse::OK, Qt::Key_Return, false, Reponse::OK}));

struct CasIcone {
  Icone icone;
  QMessageBox::Icon qt;
};

class IconeQt : public testing::TestWithParam<CasIcone> {};

TEST_P(IconeQt, MessageAvecLIconeDuSysteme) {
  QMessageBox::Icon vue = QMessageBox::NoIcon;
  QString texte;
  QuandAffiche<QMessageBox>([&](QMessageBox* b) {
    vue = b->icon();
    texte = b->text();
    b->button(QMessageBox::Ok)->click();
  });
  Dialogues().Message("Erreur", QStringLiteral("Fichier introuvable : été.jpg"), GetParam().icone);
  EXPECT_EQ(vue, GetParam().qt);
  EXPECT_EQ(texte, QStringLiteral("Fichier introuvable : été.jpg"));
}

INSTANTIATE_TEST_SUITE_P(Cas, IconeQt,
                         testing::Values(CasIcone{Icone::Critique, QMessageBox::Critical},
                                         CasIcone{Icone::Question, QMessageBox::Question},
                                         CasIcone{Icone::Exclamation, QMessageBox::Warning},
                                         CasIcone{Icone::Information, QMessageBox::Information},
                                         CasIcone{Icone::Aucune, QMessageBox::NoIcon}));

TEST(DialoguesQt, SaisieRendLeTexteOuRienSiAnnulee) {
  QString propose;
  QuandAffiche<QInputDialog>([&](QInputDialog* d) {
    propose = d->textValue();
    d->setTextValue(QStringLiteral("Zoé"));
    d->accept();
  });
  EXPECT_EQ(Dialogues().Saisie("Nom", "Votre nom :", "Votre nom"), QStringLiteral("Zoé"));
  EXPECT_EQ(propose, "Votre nom");

  QuandAffiche<QInputDialog>([](QInputDialog* d) { d->reject(); });
  EXPECT_EQ(Dialogues().Saisie("Nom", "Votre nom :", "x"), std::nullopt);
}

TEST(DialoguesQt, CouleurEnBleuVertRougeEtMoinsUnSiAnnulee) {
  QColor depart;
  QuandAffiche<QColorDialog>([&](QColorDialog* d) {
    depart = d->currentColor();
    d->setCurrentColor(QColor(1, 2, 3));
    d->accept();
  });
  EXPECT_EQ(Dialogues().Couleur(0x0080FF), 0x030201);
  EXPECT_EQ(depart, QColor(255, 128, 0));

  QuandAffiche<QColorDialog>([](QColorDialog* d) { d->reject(); });
  EXPECT_EQ(Dialogues().Couleur(0), -1);
}

TEST(DialoguesQt, OuvrirPresenteLesFiltresEtRendLeFichierChoisi) {
  const QString dossier = QDir::currentPath();
  const QString image = dossier + "/photo.jpg";
  QFile(image).open(QIODevice::WriteOnly);
  QStringList filtres;
  QString titre;
  QuandAffiche<QFileDialog>([&](QFileDialog* d) {
    filtres = d->nameFilters();
    titre = d->windowTitle();
    d->selectFile(image);
    static_cast<QDialog*>(d)->accept();  // protected in QFileDialog
  });
  EXPECT_EQ(Dialogues().FichierOuvrir("Ouvrir une image", dossier,
                                      "Jpeg (*.jpg)|*.jpg|Tous (*.*)|*.*"),
            image);
  EXPECT_EQ(titre, "Ouvrir une image");
  EXPECT_EQ(filtres, (QStringList{"Jpeg (*.jpg)", "Tous (*)"}));
}

class Bulle_ : public testing::Test {
 protected:
  Bulle bulle{"Etape 1", "Image chargée.", "Vous pouvez maintenant la recadrer."};
};

TEST_F(Bulle_, PlusDInfosMontreLeTexteLongPuisReduireLeCache) {
  bool cacheAuDebut = false, vuApres = false, cacheEnfin = false;
  QString libelles;
  QuandAffiche<frmMsgBoxEx>([&](frmMsgBoxEx* f) {
    auto* longTexte = f->findChild<QLabel*>("lblTexteLong");
    auto* infos = f->findChild<QPushButton*>("cmdInfos");
    EXPECT_EQ(f->findChild<QLabel*>("lblTexte")->text(), QStringLiteral("Image chargée."));
    EXPECT_EQ(longTexte->text(), "Vous pouvez maintenant la recadrer.");
    cacheAuDebut = !longTexte->isVisible();
    libelles += infos->text();
    infos->click();
    vuApres = longTexte->isVisible();
    libelles += "|" + infos->text();
    infos->click();
    cacheEnfin = !longTexte->isVisible();
    libelles += "|" + infos->text();
    f->findChild<QPushButton*>("cmdOK")->click();
  });
  int nePlus = 0;
  Dialogues().MsgBoxEx(bulle, nePlus);
  EXPECT_TRUE(cacheAuDebut);
  EXPECT_TRUE(vuApres);
  EXPECT_TRUE(cacheEnfin);
  EXPECT_EQ(libelles, QStringLiteral("+ d'infos|réduire|+ d'infos"));
  EXPECT_EQ(nePlus, 0);
}

TEST_F(Bulle_, NePlusAfficherEcritDansLaVariableDeLAppelant) {
  QuandAffiche<frmMsgBoxEx>([](frmMsgBoxEx* f) {
    auto* chk = f->findChild<QCheckBox*>("chkNePlusAfficher");
    EXPECT_EQ(chk->text(), "Ne plus afficher");
    EXPECT_FALSE(chk->isChecked());
    chk->click();
    f->findChild<QPushButton*>("cmdOK")->click();
  });
  int nePlus = 0;
  Dialogues().MsgBoxEx(bulle, nePlus);
  EXPECT_EQ(nePlus, 1);

  // Ticked on arrival, unticked by the user.
  QuandAffiche<frmMsgBoxEx>([](frmMsgBoxEx* f) {
    f->findChild<QCheckBox*>("chkNePlusAfficher")->click();
    Touche(f, Qt::Key_Return);
  });
  Dialogues().MsgBoxEx(bulle, nePlus);
  EXPECT_EQ(nePlus, 0);
}

TEST_F(Bulle_, SansTexteLongPasDeBoutonDInfos) {
  bulle.texteLong.clear();
  bool bouton = true;
  QuandAffiche<frmMsgBoxEx>([&](frmMsgBoxEx* f) {
    bouton = f->findChild<QPushButton*>("cmdInfos")->isVisible();
    f->accept();
  });
  int nePlus = 0;
  Dialogues().MsgBoxEx(bulle, nePlus);
  EXPECT_FALSE(bouton);
}

}  // namespace
}  // namespace tg
