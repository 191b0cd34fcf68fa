// The notebook and its preview driven through their named controls, fed by
// frmMesure; the saved files read back.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTextCursor>
#include <QTextEdit>

#include "imaging/cAdvancedImagery.h"
#include "measure/frmAppercuRtf.h"
#include "measure/frmListeMesure.h"
#include "measure/frmMesure.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

using test::DialoguesScriptes;

QWidget* Fenetre(const QString& nom) {
  for (QWidget* t : QApplication::topLevelWidgets())
    if (t->objectName() == nom && t->isVisible()) return t;
  return nullptr;
}

class Notebook : public testing::Test {
 protected:
  DialoguesScriptes dlg;
  cAdvancedImagery ai;
  SessionRecord s;
  QPointer<frmListeMesure> w;

  Notebook() {
    QImage img(800, 600, QImage::Format_RGB32);
    img.fill(QColor(30, 120, 200));
    EXPECT_TRUE(ai.Convert_PictureToImage(img, s.ImageCourante));
    s.Largeur = s.LargeurOrigine = 800;
    s.Hauteur = s.HauteurOrigine = 600;
    s.TitreImage = QStringLiteral("Coupe de tige (Zea)");
    s.NomAuteurImage = QStringLiteral("Hélène");
    w = frmListeMesure::Afficher(s, ai);
  }
  ~Notebook() override {
    // A preview belongs to its notebook: pointers that follow the deletions.
    QList<QPointer<QWidget>> fenetres;
    for (QWidget* t : QApplication::topLevelWidgets()) fenetres.append(t);
    for (const QPointer<QWidget>& t : fenetres)
      for (const char* n : {"frmAppercuRtf", "frmListeMesure", "frmMesure"})
        if (t && t->objectName() == QLatin1String(n)) delete t.data();
  }
  template <typename T = QWidget>
  T* C(const QString& nom) const {
    T* c = w->findChild<T*>(nom);
    EXPECT_NE(c, nullptr) << nom.toStdString();
    return c;
  }
  QLineEdit* Boite(int i) const { return C<QLineEdit>(QStringLiteral("txtMesure%1").arg(i)); }
  QListWidget* Liste(int i) const { return C<QListWidget>(QStringLiteral("lstMesure%1").arg(i)); }
  void Mesurer(const QString& valeur, const QString& texte) {
    Boite(1)->setText(valeur);
    Boite(2)->setText(texte);
    C<QPushButton>("cmdAjouterLst")->click();
  }
  QByteArray Lire(const QString& chemin) {
    QFile f(chemin);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << chemin.toStdString();
    return f.readAll();
  }
};

TEST_F(Notebook, MesuresEtSeriesNumeroteesAvecLaSerieAnnuleeQuiPrendSonNumero) {
  Mesurer("12,5", "noyau");
  Mesurer("", "rien");  // no value: nothing added, the text stays
  EXPECT_EQ(Boite(2)->text(), "rien");
  dlg.chaines = {};  // the first series prompt is cancelled
  C<QPushButton>("cmdInputSerie")->click();
  dlg.chaines = {QStringLiteral("Noyaux")};
  C<QPushButton>("cmdInputSerie")->click();
  Mesurer("8", "");
  ASSERT_EQ(Liste(0)->count(), 4);
  EXPECT_EQ(Liste(1)->item(1)->text(), "Série 1 : ");
  EXPECT_EQ(Liste(1)->item(2)->text(), "Série 2 : ");
  EXPECT_EQ(Liste(0)->item(3)->text(), "4");
  EXPECT_EQ(Boite(0)->text(), "5");
  EXPECT_EQ(C<QPlainTextEdit>("txtLst")->toPlainText(),
            "Mesure 1 = 12,5 µm : noyau\n**** Série 1 : \n**** Série 2 : Noyaux\nMesure 4 = 8 µm : \n");
  // A row chosen in one list is chosen in the others.
  Liste(2)->setCurrentRow(2);
  EXPECT_EQ(Liste(0)->currentRow(), 2);
  EXPECT_EQ(Liste(1)->currentRow(), 2);

  C<QPushButton>("cmdListe0")->click();
  EXPECT_EQ(Liste(0)->count(), 0);
  EXPECT_EQ(Boite(0)->text(), "1");
  dlg.chaines = {QStringLiteral("x")};
  C<QPushButton>("cmdInputSerie")->click();
  EXPECT_EQ(Liste(1)->item(0)->text(), "Série 1 : ");
}

TEST_F(Notebook, La201eLigneRefuseeParLesDeuxChemins) {
  for (int i = 0; i < 199; ++i) Mesurer(QString::number(i), "");
  dlg.chaines = {QStringLiteral("dernière")};
  C<QPushButton>("cmdInputSerie")->click();
  ASSERT_EQ(Liste(0)->count(), 200);
  const size_t avant = dlg.appels.size();

  Mesurer("7", "perdue");
  EXPECT_EQ(Liste(0)->count(), 200);
  EXPECT_EQ(dlg.Dernier().texte, "Maximum de mesures atteint !");
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(Boite(i)->text().isEmpty()) << i;

  Boite(2)->setText("perdue aussi");
  dlg.chaines = {QStringLiteral("trop")};
  C<QPushButton>("cmdInputSerie")->click();
  EXPECT_EQ(Liste(0)->count(), 200);
  EXPECT_EQ(dlg.Dernier().texte, "Maximum de mesures atteint !");
  EXPECT_TRUE(Boite(2)->text().isEmpty());
  EXPECT_EQ(dlg.appels.size(), avant + 3);  // two refusals and the series prompt
}

// The measuring window fills txtMesure(1) at each release in mode 2.
TEST_F(Notebook, NourriParLaFenetreDeMesure) {
  s.ModeMesure = 2;
  s.ImageFinale = true;
  s.MicronsParPixel = 0.5f;
  auto* m = new frmMesure(s, ai);
  m->show();
  QWidget* image = m->findChild<QWidget*>("picImage");
  ASSERT_NE(image, nullptr);
  const double ratio = 800.0 / image->width();
  const auto souris = [image](QEvent::Type t, QPointF p) {
    QMouseEvent e(t, p, image->mapToGlobal(p), Qt::LeftButton,
                  t == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(image, &e);
  };
  souris(QEvent::MouseButtonPress, {10, 10});
  souris(QEvent::MouseMove, {10 + 40 / ratio, 10 + 30 / ratio});
  souris(QEvent::MouseButtonRelease, {10 + 40 / ratio, 10 + 30 / ratio});
  // 50 image pixels at 0,5 µm.
  EXPECT_EQ(Boite(1)->text(), "25");
  m->close();
  EXPECT_EQ(Fenetre("frmListeMesure"), nullptr);
}

struct CasEnregistrement {
  bool rtf;
  const char* suffixe;
};
class EnregistrementCarnet : public Notebook, public testing::WithParamInterface<CasEnregistrement> {};

TEST_P(EnregistrementCarnet, AvertitPuisEcritLeFormatChoisi) {
  const CasEnregistrement c = GetParam();
  Mesurer("12,5", "noyau");
  C<QRadioButton>(c.rtf ? "optFormatTxt1" : "optFormatTxt0")->setChecked(true);
  const QString chemin = QStringLiteral("carnet") + QLatin1String(c.suffixe);
  dlg.chaines = {chemin};
  C<QPushButton>("cmdListe2")->click();
  ASSERT_GE(dlg.appels.size(), 2u);
  const auto& avertissement = dlg.appels[dlg.appels.size() - 2];
  EXPECT_TRUE(avertissement.texte.startsWith(QStringLiteral("Attention, si ce fichier (Coupe_de_tige_Zea") +
                                             QLatin1String(c.suffixe) + ")"))
      << avertissement.texte.toStdString();
  EXPECT_EQ(dlg.Dernier().genre, "FichierEnregistrer");
  EXPECT_TRUE(dlg.Dernier().titre.contains(c.rtf ? "(RTF)" : "(TXT)"));

  const QByteArray octets = Lire(chemin);
  EXPECT_TRUE(octets.contains("Largeur apr\\'e8s recadrage : Pas de recadrage") ||
              octets.contains("Largeur apr\xe8s recadrage : Pas de recadrage\r\n"));
  EXPECT_TRUE(octets.contains("Mesure 1 = 12,5 \\'b5m : noyau") ||
              octets.contains("Mesure 1 = 12,5 \xb5m : noyau\r\n"));
  EXPECT_EQ(octets.contains("\\jpegblip"), c.rtf);
  if (c.rtf) {
    // The thumbnail at the chosen width, in proportion.
    EXPECT_TRUE(octets.contains("\\picw200\\pich150"));
    EXPECT_TRUE(octets.startsWith("{\\rtf1"));
  } else {
    EXPECT_EQ(octets.count('\n'), octets.count("\r\n"));  // CR LF only
  }

  // Cancelled: nothing written.
  QFile::remove(chemin);
  dlg.chaines = {};
  C<QPushButton>("cmdListe2")->click();
  EXPECT_FALSE(QFile::exists(chemin));
}
INSTANTIATE_TEST_SUITE_P(Formats, EnregistrementCarnet,
                         testing::Values(CasEnregistrement{false, ".txt"}, CasEnregistrement{true, ".rtf"}),
                         [](const auto& i) { return std::string(i.param.rtf ? "Rtf" : "Texte"); });

TEST_F(Notebook, ApercuAvecVignetteEtSauvegardeRtf) {
  Mesurer("3", "paroi");
  C<QPushButton>("cmdListe3")->click();
  QWidget* apercu = Fenetre("frmAppercuRtf");
  ASSERT_NE(apercu, nullptr);
  auto* texte = apercu->findChild<QTextEdit*>("RichTextBox1");
  ASSERT_NE(texte, nullptr);
  const QString plein = texte->toPlainText();
  const qsizetype titre = plein.indexOf("Coupe de tige (Zea)");
  const qsizetype mesure = plein.indexOf("Mesure 1 = 3 µm : paroi");
  EXPECT_EQ(titre, 0);
  EXPECT_GT(mesure, plein.indexOf("Liste de mesures"));
  EXPECT_TRUE(texte->toHtml().contains("<img src=\"vignette\""));
  const QVariant image = texte->document()->resource(QTextDocument::ImageResource, QUrl("vignette"));
  EXPECT_EQ(image.value<QImage>().width(), 200);

  // A line typed in the preview is saved with the report.
  QTextCursor curseur(texte->document());
  curseur.movePosition(QTextCursor::End);
  curseur.insertBlock();
  curseur.insertText(QStringLiteral("Retouche à la main"));
  dlg.chaines = {QStringLiteral("apercu.rtf")};
  apercu->findChild<QPushButton*>("cmdSauverRtf")->click();
  const QByteArray sauve = Lire("apercu.rtf");
  EXPECT_TRUE(sauve.contains("\\jpegblip"));
  EXPECT_TRUE(sauve.contains("Retouche \\'e0 la main"));
  EXPECT_LT(sauve.indexOf("Coupe de tige (Zea)"), sauve.indexOf("Retouche"));

  // The print menu asks first; cancelled, no new preview.
  apercu->close();
  dlg.reponses = {Reponse::Annuler};
  w->findChild<QAction*>("mnuFilePrint")->trigger();
  EXPECT_EQ(Fenetre("frmAppercuRtf"), nullptr);
  EXPECT_EQ(dlg.Dernier().texte, "Veuillez préparer l'imprimante");
  dlg.reponses = {Reponse::OK};
  w->findChild<QAction*>("mnuFilePrint")->trigger();
  ASSERT_NE(Fenetre("frmAppercuRtf"), nullptr);

  // Closing the notebook closes the preview.
  w->close();
  EXPECT_EQ(Fenetre("frmAppercuRtf"), nullptr);
}

}  // namespace
}  // namespace tg
