// The program's own dialogs outside the road: the welcome window of a first
// run and the help balloon, with its longer text shown.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>

#include "core/SessionRecord.h"
#include "core/frmMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/MsgBoxEx.h"
#include "tests/app/Outils.h"
#include "tests/ecrans/Geometrie.h"
#include "tests/support/DialoguesScriptes.h"

namespace tg {
namespace {

TEST(DialoguesEcran, BienvenueDuPremierLancement) {
  test::DialoguesScriptes dlg;
  SessionRecord s;
  cAdvancedImagery ai;
  frmMain f(s, ai, {});
  ASSERT_TRUE(f.Charger(QString()));
  test::VerifierFenetre(test::Fenetre("frmMain"), {"cmdSuite"});
  f.hide();
}

TEST(DialoguesEcran, BulleAvecSonTexteLong) {
  Bulle b;
  b.titre = QStringLiteral("Cartouche OK");
  b.texte = QStringLiteral("Le cartouche est en place : mesurez, annotez ou enregistrez l'image.");
  for (int i = 0; i < 12; ++i) b.texteLong += QStringLiteral("Une ligne d'explication plus longue, numéro %1.\n").arg(i);
  frmMsgBoxEx m(b, 0);
  m.show();
  m.findChild<QPushButton*>("cmdInfos")->click();
  test::VerifierFenetre(&m, {"cmdOK", "cmdInfos"});
}

}  // namespace
}  // namespace tg
