#pragma once
// frmAppercuRtf: the report's preview. RichTextBox1 shows the report as
// formatted text with its thumbnail and may be edited; cmdSauverRtf and
// cmdImprimer take the text as the user left it.
#include <QList>
#include <QPointer>
#include <QWidget>

#include "measure/Carnet.h"
#include "measure/Rtf.h"

class QPrinter;
class QTextDocument;
class QTextEdit;

namespace tg {

// The report as a Qt document: the title block bold and blue, the headings
// bold, Arial 8, the thumbnail as an image resource named "vignette".
void RemplirDocumentRapport(QTextDocument& doc, const QList<LigneRapport>& lignes,
                            const Vignette& vignette);

// The notebook's printer settings for the session: the page setup of
// frmListeMesure is what cmdImprimer prints with.
QPrinter& ImprimanteCarnet();

class frmAppercuRtf : public QWidget {
  Q_OBJECT

 public:
  // `nomFichier`: the default name of cmdSauverRtf, from the title.
  frmAppercuRtf(const QList<LigneRapport>& lignes, const Vignette& vignette,
                const QString& dossier, const QString& nomFichier, QWidget* parent = nullptr);
  // The one preview (deleted on close), replaced by a new report.
  static frmAppercuRtf* Afficher(const QList<LigneRapport>& lignes, const Vignette& vignette,
                                 const QString& dossier, const QString& nomFichier,
                                 QWidget* parent = nullptr);

  void cmdSauverRtf();
  void cmdImprimer();

 private:
  QList<LigneRapport> lignes_;
  Vignette vignette_;
  QString dossier_, nomFichier_;
  QTextEdit* RichTextBox1_ = nullptr;
  static QPointer<frmAppercuRtf> instance_;
};

}  // namespace tg
