// Qt's own dialogs in French: the program loads Qt's translation before any
// window; the file dialogs keep the program's words where it has its own.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QTranslator>
#include <functional>

#include "platform/Dialogues.h"
#include "platform/Langue.h"
#include "tests/support/QuandAffiche.h"

namespace tg {
namespace {

using test::QuandAffiche;

QStringList TextesBoutons(QWidget* w) {
  QStringList textes;
  for (QAbstractButton* b : w->findChildren<QAbstractButton*>())
    if (b->isVisible() && !b->text().isEmpty()) textes << b->text().remove(u'&');
  return textes;
}

// The translation for the test's length only: other tests see Qt as it is.
class EnFrancais : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(ChargerTraductionQt(*QCoreApplication::instance())); }
  void TearDown() override {
    for (QTranslator* t : QCoreApplication::instance()->findChildren<QTranslator*>(Qt::FindDirectChildrenOnly)) {
      QCoreApplication::removeTranslator(t);
      delete t;
    }
  }
};

TEST_F(EnFrancais, DialoguesOuvrirEtEnregistrerEtQuestionDEcrasement) {
  const QString dossier = QDir::currentPath();
  QFile(dossier + "/ancien.jpg").open(QIODevice::WriteOnly);

  // Open: the buttons and labels in French.
  QStringList boutonsOuvrir;
  QString nomFichier, regarderDans;
  QuandAffiche<QFileDialog>([&](QFileDialog* d) {
    boutonsOuvrir = TextesBoutons(d->findChild<QDialogButtonBox*>());
    nomFichier = d->findChild<QLabel*>("fileNameLabel")->text();
    regarderDans = d->findChild<QLabel*>("lookInLabel")->text();
    d->reject();
  });
  EXPECT_TRUE(Dialogues().FichierOuvrir("  Choisir une image ...", dossier, "Jpeg (*.jpg)|*.jpg").isEmpty());
  EXPECT_EQ(boutonsOuvrir, QStringList({"Ouvrir", "Annuler"}));
  EXPECT_FALSE(nomFichier.contains("File name")) << nomFichier.toStdString();
  EXPECT_TRUE(nomFichier.contains("fichier")) << nomFichier.toStdString();
  EXPECT_FALSE(regarderDans.contains("Look in")) << regarderDans.toStdString();

  // Save over an existing file: Qt's question, in French, answered no, then cancelled.
  QStringList boutonsEnregistrer, boutonsQuestion;
  QString question;
  QuandAffiche<QFileDialog>([&](QFileDialog* d) {
    boutonsEnregistrer = TextesBoutons(d->findChild<QDialogButtonBox*>());
    QuandAffiche<QMessageBox>([&](QMessageBox* m) {
      question = m->text();
      boutonsQuestion = TextesBoutons(m);
      m->button(QMessageBox::No)->click();
    });
    d->selectFile(dossier + "/ancien");  // the extension comes from the filter
    static_cast<QDialog*>(d)->accept();  // protected in QFileDialog
    QTimer::singleShot(50, d, [d] { d->reject(); });
  });
  EXPECT_TRUE(Dialogues().FichierEnregistrer("  Sauver", dossier, "nouveau", "Jpeg (*.jpg)|*.jpg").isEmpty());
  EXPECT_EQ(boutonsEnregistrer, QStringList({"Enregistrer", "Annuler"}));
  EXPECT_TRUE(question.contains("ancien.jpg")) << question.toStdString();
  EXPECT_TRUE(question.contains(QString::fromUtf8("existe déjà"))) << question.toStdString();
  EXPECT_TRUE(boutonsQuestion.contains("Oui") && boutonsQuestion.contains("Non"))
      << boutonsQuestion.join(" | ").toStdString();
}

TEST_F(EnFrancais, UnNomInexistantRevientAuProgramme) {
  // The program says "Fichier introuvable !" itself: Qt's dialog lets the name through.
  const QString absent = QDir::currentPath() + "/absent.jpg";
  bool questionQt = false;
  QTimer* guet = nullptr;
  QuandAffiche<QFileDialog>([&](QFileDialog* d) {
    guet = QuandAffiche<QMessageBox>([&](QMessageBox* m) {
      questionQt = true;
      m->reject();
    });
    d->selectFile(absent);
    static_cast<QDialog*>(d)->accept();
  });
  EXPECT_EQ(Dialogues().FichierOuvrir("  Choisir une image ...", QDir::currentPath(), "Jpeg (*.jpg)|*.jpg"), absent);
  EXPECT_FALSE(questionQt);
  delete guet;
}

TEST(SuffixeFiltre, PremierMotifDuFiltre) {
  EXPECT_EQ(SuffixeFiltre("Jpeg (*.jpg)|*.jpg"), "jpg");
  EXPECT_EQ(SuffixeFiltre("Tiff (*.tif)|*.tif;*.tiff|Jpeg (*.jpg)|*.jpg"), "tif");
  EXPECT_EQ(SuffixeFiltre("Tous (*.*)|*.*"), "");
  EXPECT_EQ(SuffixeFiltre("Jpeg"), "");
}

}  // namespace
}  // namespace tg
