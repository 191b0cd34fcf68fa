#pragma once
// The writer of the comment block: the self-calibrating text that
// ConstruireImageFinal puts into CommentaireImage and the save step writes as
// the JPEG comment. It takes plain values; the cartouche window only feeds it.
// The text has CR LF line ends; Windows-1252 happens in the imaging layer.
#include <QString>

namespace tg {

struct ValeursBloc {
  // [Main]
  QString titre;        // txtCommentaire
  QString application;  // empty: TexteApplication()
  QString auteur;       // txtNomAuteur
  QString dateImage;    // "now" at the building, see MaintenantTexte()
  // The three date lists of the observation.
  QString jourObservation, moisObservation, anneeObservation;
  QString modele;              // Modele (camera of the photo)
  QString apPhotoMan;          // txtApPhotoMan
  bool echelleVisible = true;  // fraEchelle shown; hidden: ApPhoto= is apPhotoMan
  float focaleAPN = 0;         // mm
  float digitalZoom = 0;
  QString eclairage;    // ComboEclairage
  QString provenance;   // comboProvenance
  QString preparation;  // comboMontage
  QString coloration;   // comboColoration

  // [Scale]
  QString largeurOrigineMeta;  // kept from a first formatting; wins when non-empty
  int largeurOrigine = 0;      // pixels of the file as opened
  int largeurRecadrage = 0;    // pixels after the last crop, 0: not cropped
  int largeur = 0;             // pixels of the formatted image
  float reduction = 0;         // ReductionImage, see CalculerReduction
  QString txtPix, txtMic;      // both filled: the scale lines are written
  QString microscope;          // Microscope of the session
  QString objectif;            // ComboObjectif
  QString longueur;            // txtLongueur: real length of the bar (EchelleMic=)
  float echellePixels = 0;     // length of the bar in pixels of the final image
  bool extrapolationFoc = false;
  int optUnite = 0;             // 0 "um", 1 "mm"
  bool tableAppliquee = false;  // a measuring table gave the scale
  QString microMan;             // txtMicroMan
  QString objectifMan;          // ComboObjectifMan
  int optUniteObj = 0;          // 0 "x", 1 "mm"

  // [TNum]
  bool imageDejaFormatee = false;
  bool traitNiveaux = false, traitPoussieres = false, traitBruit = false,
       traitDeconvolution = false;  // chkTraitNum 0 to 3

  // [KeyWord]: each written only when non-empty
  QString regne, embranchement, classe, ordre, famille, genre, espece;
  QString motClef;  // comma-separated

  // [OldExif]
  QString commentaireImage;  // CommentaireImage at the start of the building
  QString exifTexte, iptcTexte;

  QString separateurDecimal = QStringLiteral(",");
};

// The whole block, its sections and keys in their fixed order. Each line
// ends in CR LF but the last part of the [OldExif] tail.
QString EcrireBlocMeta(const ValeursBloc& v);

// The [OldExif] part carried over from a block: from "[OldExif]" on, the older
// "ANCIENNES INFOS (original) :" form converted first; empty when there is none.
QString QueueOldExif(const QString& commentaireImage);

// "Tessellographe " and the version numbers run together ("Tessellographe 100").
QString TexteApplication();
// Current date and time in the system's short date form with seconds.
QString MaintenantTexte();
// Captions of the ticked treatments, each followed by "/": "Niveaux/Bruit/".
QString TexteTraitement(bool niveaux, bool poussieres, bool bruit, bool deconvolution);
// Reduction of the final picture: Round(LargeurRecadrage / Largeur, 2) when cropped,
// else Round(LargeurOrigine / Largeur, 2); a second formatting keeps the
// ReductionImage of the first.
float CalculerReduction(int largeurRecadrage, int largeurOrigine, int largeur,
                        bool imageDejaFormatee, float reductionImage);

}  // namespace tg
