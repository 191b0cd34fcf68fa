#pragma once
// Loading a picture into the session and recognising one already formatted:
// the steps that need no window.
#include <QSize>
#include <QString>
#include <QStringList>
#include <array>
#include <functional>
#include <optional>

#include "core/SessionRecord.h"
#include "platform/Dialogues.h"

namespace tg {

class cAdvancedImagery;

// The readers of the comment block and of the EXIF fields (step 7 of a load),
// provided by the cartouche module. Without one installed nothing is read.
void InstallerLecteurMeta(std::function<void(SessionRecord&)> lecteur);
void LireMeta(SessionRecord& s);

// Steps 2 and 3 of ChargerImage: every session bitmap destroyed, then the
// file loaded into ImageCourante. False when the file is no picture; the
// session then holds no bitmap at all.
bool ChargerBitmap(SessionRecord& s, cAdvancedImagery& ai, const QString& chemin);

// Steps 5 and 6: the record reset for the new ImageCourante, PathOrigine
// set, ExifTexte, IptcTexte and CommentaireImage read. Returns one
// "Error - " text per failed metadata call; the readers of step 7 (LireMeta)
// come after.
QStringList RemplirSession(SessionRecord& s, cAdvancedImagery& ai, QString chemin,
                           QSize tailleFichier = {});
// ChargerBitmap for a picture that goes straight to resizing: a JPEG's header
// and metadata only, its pixels decoded by RedimensionnerSession straight to
// the output size; any other file whole. The file's own size in `taille`.
bool ChargerEntete(SessionRecord& s, cAdvancedImagery& ai, const QString& chemin, QSize& taille);

// For a file without a comment block of ours: the scale another program
// wrote in it (ImageJ, a TIFF or EXIF resolution in centimetres, a PNG pHYs),
// in MicronsParPixelExterne and SourceEchelleExterne; 0 without one.
void LireEchelleExterne(SessionRecord& s, const QString& chemin);
// The balloon that tells about it after a load.
Bulle BulleEchelleExterne(const SessionRecord& s);

// What txtExif shows after a load: the comment when there is one, else the
// EXIF sub-directory, a line break and the main directory; hidden when all
// are empty.
struct AffichageExif {
  bool visible = false;
  QString texte;
};
AffichageExif ExifApresChargement(const SessionRecord& s);

inline const QString TitreErreurChargement = QStringLiteral("Erreur chargement ...");
inline const QString TexteErreurChargement =
    QStringLiteral("Votre fichier n'est pas une image reconnue");

// ControleImage: the format to take, and which message goes with it.
struct DecisionControle {
  std::optional<int> format;        // new ChoixFormat, when it changes
  bool formatReinitialise = false;  // "Format de sortie réinitialisé !" first
  bool formatSortie = false;        // G_FormatSortie runs
  bool imageFormatee = false;       // the balloon "Image formatée TG"
};
DecisionControle DeciderControleImage(const SessionRecord& s);
Bulle BulleImageFormatee();

// EcrireListeRecent: the path at the head, the sixth entry pushed out.
// Nothing for an empty path.
void AjouterRecent(std::array<QString, 5>& liste, const QString& chemin);
// File titles of the entries, the non-empty ones, in order.
QStringList TitresRecents(const std::array<QString, 5>& liste);
// The paths of recent.dat, in the file's order; empty when it does not exist.
QStringList LireFichierRecent();

// The open dialogs' filter string of the main window with the phone
// photos (HEIC, HEIF, AVIF) and camera RAW files added to "Tous formats
// supportés" and as two entries of their own at the end.
QString FiltreAvecPhotos(const QString& filtre);

// The command line path: double quotes removed, trimmed.
QString NettoyerCheminLigneCommande(const QString& ligne);
// A drop passes every file name, concatenated, as one path: a drop of one
// file is what is meant.
QString CheminDepose(const QStringList& fichiers);

// The working folder that the clipboard and the empty image need.
inline const QString TitreDossierInexistant = QStringLiteral("Dossier de travail innexistant");
inline const QString TexteDossierInexistant = QStringLiteral(
    "Vous devez avoir configuré un dossier de travail valide !\n( cf menu Outils/Options/Dossiers "
    ")");
inline const QString TitreErreurPressePapier = QStringLiteral("Erreur presse-papier");
inline const QString TexteErreurPressePapier =
    QStringLiteral("Votre presse papier semble vide\nou ne contient pas un format image ...");
inline const QString TitrePressePapierOK = QStringLiteral("Presse-papier OK");
QString TextePressePapierOK(int largeur, int hauteur);

// Working files in RepTravail.
QString CheminDansTravail(const SessionRecord& s, const QString& nom);

// The empty picture of the output size, white, saved as image_vide.jpg in
// RepTravail. False after an imaging failure.
bool CreerImageVide(const SessionRecord& s, cAdvancedImagery& ai, QString& chemin);
QString TexteImageVideCreee(int largeur, int hauteur);

}  // namespace tg
