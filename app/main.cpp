// The program: reads the configuration and hands over to the main window.
#include <QApplication>
#include <QFont>
#include <QFontInfo>
#include <QStringList>

#include "core/Session.h"
#include "core/SessionRecord.h"
#include "app/Assemblage.h"
#include "core/frmFichierPhoto.h"
#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
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
  QApplication app(argc, argv);
  QApplication::setApplicationName(QLatin1String(tg::TitreProgramme));
  SubstituerPolices();

  tg::SessionRecord session;
  tg::cAdvancedImagery imagerie;

  // The command line is one picture path, with or without double quotes:
  // a path with blanks may come in several arguments.
  QStringList arguments = QApplication::arguments();
  arguments.removeFirst();
  session.CheminLigneCommande = arguments.join(u' ');

  session.DocPath = tg::DossierDocuments();
  session.DossierTemporaire = tg::GetTemporyFolderPath();
  session.SeparateurDecimal = tg::SeparateurDecimalSysteme();
  session.PaysUtilisateur = tg::PaysUtilisateurSysteme();
  tg::RecupereValeurIni(session);
  tg::PrendreFormatConfig(session);

  tg::frmFichierPhoto fenetre(session, imagerie);
  tg::Assembler(fenetre);
  fenetre.showMaximized();
  return QApplication::exec();
}
