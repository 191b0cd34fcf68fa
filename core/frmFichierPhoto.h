#pragma once
// The main window: the display of the session image, the two toolbars of the
// work's steps and tools, the menus and the status fields. Lives from
// start-up to the end of the program.
#include <QMainWindow>
#include <QPointer>
#include <QString>
#include <functional>
#include <map>
#include <vector>

#include "core/Etape.h"
#include "core/SessionRecord.h"

class QAction;
class QFrame;
class QGridLayout;
class QLabel;
class QLineEdit;
class QMenu;
class QPlainTextEdit;
class QPushButton;
class QScrollBar;
class QSlider;
class QTimer;
class QToolBar;

namespace tg {

class cAdvancedImagery;

class frmFichierPhoto : public QMainWindow {
  Q_OBJECT

 public:
  // Neither is owned; both outlive the window. Runs the load steps (Charger).
  frmFichierPhoto(SessionRecord& session, cAdvancedImagery& imagerie, QWidget* parent = nullptr);
  ~frmFichierPhoto() override;

  // Load steps of the window: title, welcome picture, stage 0, slider and
  // scroll bars, status fields, table menu, format colours.
  void Charger();

  // Applies the stage Etape to the tools, fields and help messages.
  void AppliquerEtape();
  // Refreshes the status fields from the record; nothing without ImageCourante.
  void AfficherInfosImage();
  // Closes the session image; ends in stage 0.
  void FermerImage();
  // 90, 180 or 270 (a quarter turn to the right).
  void TournerImage(int angle);

  // Shows the bitmap in imaOrigine, stretched to the slider. False, after
  // "Error - " and the layer's text, when it cannot be converted.
  bool AfficherImage(const Bitmap& image);
  // The same with the picture already converted by ConvertirPourAffichage.
  bool AfficherImage(const Bitmap& image, const QImage& convertie);
  // The picture as the display needs it: a copy reduced to the screen's size
  // when it has more pixels than the screen shows (each pixel the mean of a
  // block), the whole picture otherwise. False after an imaging failure.
  bool ConvertirPourAffichage(const Bitmap& image, QImage& sortie);
  // Fit button: slider from the frame size; nothing without an image.
  void AjusterAffichage();
  // The zoom at which the whole picture shows in the display, at most 100 %.
  void AfficherImageEntiere();
  // PicFormat(0..4) and lblFormatSortie in the format colours.
  void ColorerFormats();
  // Entries mnuRecent1..5 of the "Récents" menu with these file titles, most
  // recent first; a click calls the indexed hook "mnuRecent" with 1 to 5.
  void AfficherRecents(const QStringList& titres);
  // Menu entries mnuApExterne0..3 for the configured external applications.
  void RafraichirApplicationsExternes();
  // Reduces the metadata box (txtExif) to its small height.
  void ReduireTxtExif();
  void AgrandirTxtExif();
  // The metadata button's caption: "+" after a load, "Voir nouvelles
  // Méta-Données" once the final picture has its new block; shown.
  void LibelleBoutonMeta(const QString& texte);

  // Tool windows opened through the hooks are registered here, so that the
  // end of the session closes them from the last opened to the first.
  void FenetreOuverte(QWidget* fenetre);
  // Closes every other top-level window with this objectName.
  static void FermerFenetres(const QString& nom);

  // Hooks for the windows and operations that other modules provide, by name:
  // "frmSearch", "frmAjouterCartouche", "frmEnregistrer", "frmMesure",
  // "frmAnnotations2", "frmRecadrage", "frmFiltres", "frmGestionTables",
  // "frmGenMesures", "frmConfig", "frmEditComments", "mnuOuvriFichier",
  // "mnuOuvriFichierEtalon", "mnuRedimAuto", "mnuChargerClipBoard",
  // "mnuCreateEmptyImage", "mnuSelectSrcTwain", "mnuAcquireTwain",
  // "mnuAcquireFileTwain", "ExporterImage", "ImporterImage", "mnuUpdate",
  // "ReconstruireCartouche" (rebuild the final image after the annotations
  // were dropped). Without a hook the request does nothing.
  void DefinirCrochet(const QString& nom, std::function<void()> f);
  // Indexed hooks: "PicFormat" (0 to 4), "mnuApExterne" (0 to 3), "mnuRecent" (1 to 5).
  void DefinirCrochetIndex(const QString& nom, std::function<void(int)> f);

  // The toolbar dispatch by button key.
  void CliqueToolbar1(const QString& cle);
  void CliqueToolbar2(const QString& cle);

  // Menu handlers that hold logic of their own.
  void mnuRecadrer();
  void mnuMesurerEtalon();
  void mnuMesureImage();
  void mnuMesureImageTemp();
  void mnuGestionTables();
  void mnuEditComments();
  void mnuScreenInfos();
  void mnuAnnulerFiltres();
  void mnuAnnulerAnnotation();
  void mnuApropos();
  // The two ways of mnuSauverTemp and of the panel picDialogueCopier.
  void CopierPressePapier();
  void CopierFichier();

  SessionRecord& Session() { return s_; }
  cAdvancedImagery& Imagerie() { return ai_; }
  // Filter of the picture open dialogs, built once.
  const QString& FiltreImages() const { return filtreImages_; }

 protected:
  void closeEvent(QCloseEvent* e) override;
  bool eventFilter(QObject* objet, QEvent* e) override;

 private:
  void ConstruireToolbars();
  void ConstruireMenus();
  void ConstruireCentre();
  void ConstruirePanneauCopier();
  QAction* Entree(QMenu* menu, const QString& nom, const QString& titre,
                  std::function<void()> effet);
  QMenu* SousMenu(QMenu* parent, const QString& nom, const QString& titre);

  void AppliquerChangement(const Changement& c);
  void ViderAffichage();
  void AppliquerZoom();
  void PlacerBarres();
  void PlacerTxtExif();
  // The status strip in one row, or two when the screen is too narrow.
  void DisposerInfos();
  void MasquerAccueil();
  void Appeler(const QString& crochet);
  void Erreur(const QString& texte);
  void MarquerBouton(QAction* a, bool marque);
  // ImageFormatee becomes a copy of ImageSansFiltre; false after the error message.
  bool RemettreImageSansFiltre();

  SessionRecord& s_;
  cAdvancedImagery& ai_;
  std::map<QString, std::function<void()>> crochets_;
  std::map<QString, std::function<void(int)>> crochetsIndex_;
  std::vector<QPointer<QWidget>> fenetres_;
  QString filtreImages_;
  bool imageAffichee_ = false;
  // The session picture shown from a reduced copy, converted whole when a
  // zoom shows more pixels than the copy has.
  const Bitmap* sourceAffichee_ = nullptr;
  const void* dibAffiche_ = nullptr;
  bool affichageReduit_ = false;
  int generationAffichage_ = 0;  // one more at each picture shown
  bool conversionEnCours_ = false;
  bool txtExifAgrandi_ = false;

  QToolBar* toolbar1_ = nullptr;
  QToolBar* toolbar2_ = nullptr;
  QMenu* mnuApExtmnu_ = nullptr;
  QMenu* mnuRecent_ = nullptr;
  QFrame* picCadre_ = nullptr;
  QLabel* imaOrigine_ = nullptr;
  QLabel* imgAccueil_ = nullptr;
  QScrollBar* hScroll_ = nullptr;
  QScrollBar* vScroll_ = nullptr;
  QSlider* slider_ = nullptr;
  QLabel* lblValueSlider_ = nullptr;
  QPlainTextEdit* txtExif_ = nullptr;
  QLineEdit* txtDigitalZoom_ = nullptr;
  QLabel* lblTickCount_ = nullptr;
  QGridLayout* grilleInfos_ = nullptr;
  QWidget* infosImage_ = nullptr;
  QWidget* infosFichier_ = nullptr;
  QLabel* lblFormatSortie_ = nullptr;
  std::vector<QPushButton*> picFormat_;
  QFrame* picDialogueCopier_ = nullptr;
  QTimer* timer1_ = nullptr;
};

}  // namespace tg
