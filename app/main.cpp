// The program: reads the configuration and hands over to the main window.
#include <QApplication>
#include <QFont>
#include <QFontInfo>
#include <QStringList>
#include <cstdio>
#include <cstring>

#include "core/Session.h"
#include "core/SessionRecord.h"
#include "app/Assemblage.h"
#include "core/frmFichierPhoto.h"
#include "core/frmMain.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/TableMesure.h"
#include "platform/Dialogues.h"
#include "platform/Langue.h"
#include "platform/MessagesQt.h"
#include "platform/Systeme.h"
#include "platform/Textes.h"
#include "version.h"

namespace {

// The cartouche's default font: Comic Neue stands in for Comic Sans MS when
// fontconfig does not alias it already.
void SubstituerPolices() {
  const QString voulue = QStringLiteral("Comic Sans MS");
  const QString famille = QFontInfo(QFont(voulue)).family();
  if (famille.compare(voulue, Qt::CaseInsensitive) != 0 &&
      famille.compare(QStringLiteral("Comic Neue"), Qt::CaseInsensitive) != 0)
    QFont::insertSubstitution(voulue, QStringLiteral("Comic Neue"));
}

}  // namespace

int main(int argc, char** argv) {
  // Answered before any window, as a Unix program does.
  if (argc == 2 && (std::strcmp(argv[1], "--version") == 0 || std::strcmp(argv[1], "--help") == 0)) {
    if (argv[1][2] == 'v') {
      std::printf("%s %s\n", tg::TitreProgramme, tg::VersionTexte);
    } else {
      std::printf(
          "Usage : tessellographe [PHOTO]\n\n"
          "Prépare les photomicrographies pour la publication : format de sortie,\n"
          "étalonnage, cartouche avec barre d'échelle, mesures, annotations, filtres,\n"
          "recadrage, JPEG sous le poids maximal.\n"
          "PHOTO (JPEG, BMP, PNG, GIF, PSD, PCD ou TIFF) est ouverte au démarrage.\n"
          "Sans fenêtre : tessellographe-cli --help. Manuel : man tessellographe.\n");
    }
    return 0;
  }
  tg::FiltrerMessagesQt();
  QApplication app(argc, argv);
  QApplication::setApplicationName(QLatin1String(tg::TitreProgramme));
  // Qt's own dialogs and questions in French, before any window.
  tg::ChargerTraductionQt(app);
  tg::InstallerDialoguesQt();
  SubstituerPolices();

  tg::SessionRecord session;
  tg::cAdvancedImagery imagerie;

  // The command line is one picture path, with or without double quotes:
  // a path with blanks may come in several arguments.
  QStringList arguments = QApplication::arguments();
  arguments.removeFirst();

  tg::InitialiserTablesMesure();  // a pending table_mesure.cfg, empty table files
  // frmMain runs the start-up, then opens the main window or, on a first
  // run, stays as the welcome window.
  tg::frmMain demarrage(session, imagerie, [](tg::frmFichierPhoto& f) { tg::Assembler(f); });
  if (!demarrage.Charger(arguments.join(u' '))) return 1;  // screen too small
  return QApplication::exec();
}
