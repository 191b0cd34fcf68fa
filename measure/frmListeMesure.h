#pragma once
// frmListeMesure: the measurement notebook beside frmMesure. The rows, the
// report and the text save live in Carnet.h, the rich text in Rtf.h.
#include <QPointer>
#include <QWidget>

#include "core/SessionRecord.h"
#include "measure/Carnet.h"
#include "measure/Rtf.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QRadioButton;

namespace tg {

class cAdvancedImagery;

class frmListeMesure : public QWidget {
  Q_OBJECT

 public:
  frmListeMesure(SessionRecord& session, cAdvancedImagery& ai, QWidget* parent = nullptr);
  // The one notebook (deleted on close), brought forward when open.
  static frmListeMesure* Afficher(SessionRecord& session, cAdvancedImagery& ai,
                                  QWidget* parent = nullptr);

  void cmdAjouterLst();
  void cmdInputSerie();
  void cmdEffacerTxt();
  void cmdListe(int index);
  // The report as it stands, thumbnail drawn in picVignette.
  QList<LigneRapport> ConstruireRapport(Vignette& vignette);

 protected:
  void closeEvent(QCloseEvent* e) override;

 private:
  void VersBoites();
  void DepuisBoites();
  void Afficher();
  void Enregistrer();
  QString DossierEnregistrement() const;

  SessionRecord& s_;
  cAdvancedImagery& ai_;
  Carnet carnet_;
  QLineEdit* txtMesure_[3] = {};
  QListWidget* lstMesure_[3] = {};
  QPlainTextEdit* txtLst_ = nullptr;
  QPlainTextEdit* txtAnnotations_ = nullptr;
  QComboBox* comboTailleVignette_ = nullptr;
  QRadioButton* optFormatTxt_[2] = {};
  QLabel* picVignette_ = nullptr;
  static QPointer<frmListeMesure> instance_;
};

}  // namespace tg
