#pragma once
// The main road through the real windows, wired as the program wires them,
// taken round after round in one process as a long working session takes it:
// open, automatic resize, cartouche with a typed scale, an arrow in the
// annotation window, save, close. For the tests and the benchmarks that
// check what a session keeps from one photo to the next; no test framework.
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QThreadPool>
#include <optional>

#include "app/Assemblage.h"
#include "core/Session.h"
#include "core/frmFichierPhoto.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Textes.h"
#include "tests/app/Outils.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg::test {

class RouteEnBoucle {
 public:
  DialoguesScriptes dlg;  // before the window asks anything
  SessionRecord s;
  cAdvancedImagery ai;
  std::optional<frmFichierPhoto> w;

  // The program's start: the user's configuration read, the open dialog
  // rather than the finder, the automatic resize without a question.
  RouteEnBoucle() {
    RecupereValeurIni(s);
    PrendreFormatConfig(s);
    s.SeparateurDecimal = SeparateurDecimalSysteme();
    s.ImageAccueil = "0";
    s.ModeOuvrir = "1";
    s.MethodeRedim = "0";
    w.emplace(s, ai);
    Assembler(*w);
    w->show();
    Attendre();
  }

  // One round, `photo` saved as `sortie` (a new name each round: no
  // overwrite question). Empty when every step went through, else the step
  // that did not and what the program said last.
  QString Tour(const QString& photo, const QString& sortie) {
    dlg.appels.clear();
    dlg.chaines = {photo};
    w->findChild<QAction*>("Ouvrir")->trigger();
    Attendre();
    if (s.Etape != 1) return Echec("ouverture");

    w->findChild<QAction*>("RedimAuto")->trigger();
    QWidget* ressampl = Fenetre("frmChooseRessampl");
    if (ressampl == nullptr) return Echec("fenêtre de redimensionnement");
    ressampl->findChild<QPushButton*>("cmdAppliquer")->click();
    ressampl->findChild<QPushButton*>("cmdConsever")->click();
    Attendre();
    if (s.Etape != 2) return Echec("redimensionnement");

    // The cartouche: 400 pixels of the photo for 100 microns at x40, a bar of 50.
    w->findChild<QAction*>("Cartouche")->trigger();
    QWidget* f = Fenetre("frmAjouterCartouche");
    if (f == nullptr) return Echec("fenêtre du cartouche");
    f->findChild<QLineEdit*>("txtCommentaire")->setText("Navicula sp.");
    f->findChild<QLineEdit*>("txtNomAuteur")->setText("A. Nonyme");
    if (auto* etalonner = f->findChild<QPushButton*>("cmdEtalonner"); !etalonner->isHidden()) etalonner->click();
    f->findChild<QLineEdit*>("txtPix")->setText("400");
    f->findChild<QLineEdit*>("txtMic")->setText("100");
    f->findChild<QComboBox*>("ComboObjectif")->setCurrentText("40");
    f->findChild<QLineEdit*>("txtLongueur")->setText("50");
    f->findChild<QPushButton*>("cmdDessiner")->click();
    if (!f->findChild<QPushButton*>("cmdSuite")->isEnabled()) return Echec("dessin du cartouche");
    f->findChild<QPushButton*>("cmdSuite")->click();
    Attendre();
    if (s.Etape != 3) return Echec("cartouche");

    w->findChild<QAction*>("anotations")->trigger();
    Attendre();
    QWidget* a = Fenetre("frmAnnotations2");
    if (a == nullptr) return Echec("fenêtre des annotations");
    a->findChild<QRadioButton*>("optTexteEtLigne1")->click();
    Glisser(a->findChild<QWidget*>("picImage"), {60, 60}, {260, 140});
    dlg.reponses = {Reponse::Oui};
    a->findChild<QPushButton*>("cmdValiderSortir")->click();
    Attendre();
    if (s.Etape != 6 || !s.AnnotationsPresentes) return Echec("annotations");

    w->findChild<QAction*>("Sauver")->trigger();
    QWidget* enr = Fenetre("frmEnregistrer");
    if (enr == nullptr) return Echec("fenêtre d'enregistrement");
    enr->findChild<QPushButton*>("cmdPreparer")->click();
    dlg.chaines = {sortie};
    enr->findChild<QPushButton*>("cmdConfirmer")->click();
    Attendre();
    if (!QFile::exists(sortie) || Fenetre("frmEnregistrer") != nullptr) return Echec("enregistrement");

    w->FermerImage();
    // The display's whole-picture conversion runs on the thread pool: the
    // round is over when it is.
    QThreadPool::globalInstance()->waitForDone();
    Attendre();
    if (s.Etape != 0) return Echec("fermeture");
    return {};
  }

  // What the event loop does between two clicks, closed windows deleted.
  static void Attendre() {
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

 private:
  QString Echec(const char* etape) const {
    return QString::fromUtf8(etape) + QStringLiteral(" (étape ") + QString::number(s.Etape) +
           QStringLiteral(") : ") + (dlg.appels.empty() ? QString() : dlg.Dernier().titre + " / " + dlg.Dernier().texte);
  }
};

}  // namespace tg::test
