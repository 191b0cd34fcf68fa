#pragma once
// The comment editor: reads and rewrites by hand the comment block of a
// picture file on disk (JPEG comment segment, PNG comment chunk, GIF comment
// extension), and shows the file's header data; a BMP has no place for a
// comment and a TIFF gets none here: both are shown read-only. A tool for
// experts: it works on the file, not on the image in hand.
#include <QString>
#include <QStringList>
#include <QWidget>
#include <memory>

#include "metadata/CImage.h"

class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace tg {

class frmFichierPhoto;

// The lines of lstInfos for a JPEG's JFIF data.
QStringList LignesJFIF(const meta::CJFIF& jfif);
// The lines of lstInfos for the other formats: PNG (header, resolution,
// time, text chunks other than the comment), GIF (header, screen) and BMP
// (every field of its two headers, by name).
QStringList LignesPNG(const meta::CPNG& png);
QStringList LignesGIF(const meta::CGIF& gif);
QStringList LignesBMP(const meta::CBMP& bmp);
inline const QString TexteBMPSansCommentaire =
    QStringLiteral("Le format BMP n'a pas de place pour un commentaire.");
// A TIFF is rewritten by a save, without a comment.
inline const QString TexteTIFFSansCommentaire = QStringLiteral(
    "Cet outil n'écrit pas de commentaire dans un fichier TIFF : ce texte ne peut pas être "
    "modifié.");
inline const QString TexteTIFFReecrit = QStringLiteral(
    "Fichier TIFF réécrit, sans commentaire : cet outil n'écrit pas de commentaire dans un fichier "
    "TIFF.");
// The refusal of a character that Windows-1252 cannot hold.
QString TexteCaractereRefuse(QChar c);
// The question of cmdSave, each line ended by CR LF.
QString TexteQuestionSauvegarde();
inline const QString TitreModificationMetas = QStringLiteral("Modification des métas");

class frmEditComments : public QWidget {
  Q_OBJECT

 public:
  // A window owned by the main window; deleted when closed.
  explicit frmEditComments(frmFichierPhoto& principale);

  // What the main window's hook does: brings the open editor to the front,
  // or opens one on the session's PathOrigine.
  static void Ouvrir(frmFichierPhoto& principale);

  // Loads PathOrigine with its preview; without one, shows the main window
  // and closes (false).
  bool Form_Load();
  void cmdOpen_Click();
  void cmdSave_Click();
  void cmdQuitter_Click() { close(); }

  const QString& Chemin() const { return chemin_; }

 private:
  // `depuisDialogue`: a TIFF chosen in the dialog gets its lines too. PNG,
  // GIF and BMP always get theirs; a BMP shows its fields only, read-only.
  void Charger(const QString& chemin, bool depuisDialogue);
  void Vider();
  void Remplir();
  // The text box shows the comment with its own line ends.
  void MontrerTexte(QString texte);
  void AfficherVignette();

  frmFichierPhoto& principale_;
  std::unique_ptr<meta::CImage> image_;
  QString chemin_;
  QListWidget* lstInfos_ = nullptr;
  QPlainTextEdit* txtCommentaire_ = nullptr;
  QLabel* label1_ = nullptr;
  QLabel* picVignette_ = nullptr;
  QPushButton* cmdOpen_ = nullptr;
  QPushButton* cmdSave_ = nullptr;
  QPushButton* cmdQuitter_ = nullptr;
};

}  // namespace tg
