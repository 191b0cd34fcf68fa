#pragma once
// The session record: the one meeting place of every window. Field names are
// the program's own; types follow their stored widths (16-bit, 32-bit, float).
#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>

#include "imaging/Bitmap.h"

namespace tg {

// MemCartouche: the memory of the cartouche form, written by its cmdSuite and
// read back at its next opening while the same picture is worked on. Emptied
// by ReinitialiserSession. Colours are 0xBBGGRR.
struct MemoireCartouche {
  QString MemTitre, MemAuteur, MemProvenance, MemColoration, MemMontage, MemEclairage;
  std::array<bool, 4> MemTraitNum{};  // chkTraitNum 0..3
  QString MemMicro, MemApPhoto, MemObjectif, MemPix, MemMic;
  int32_t MemLongueur = 0;  // microns, integer part of txtLongueur
  int32_t MemCouleurTexte = 0, MemCouleurEchelle = 0, MemCouleurCartouche = 0xFFFFFF,
          MemCouleurFond = 0xFFFFFF;
  // Stored, never read back: the defaults of the form apply at each visit.
  int16_t MemTransparence = 0, MemAlign = 0;
  int16_t MemUniteObj = 0;  // OptUniteObj: 0 "x", 1 "mm"
  bool MemEchelleVisible = false, MemChoixTableVisible = false, MemPolicesVisible = false;
  bool MemOmbrage = false;  // once set, kept until the next picture
};

struct SessionRecord {
  // --- Stage and modes
  int16_t Etape = 0;        // 0 to 6
  int16_t ModeMesure = 0;   // 0 calibrate, 1 recover a scale, 2 measure the final image
  bool ModeEtalon = false;
  bool MesureTemp = false;
  bool ImageFinale = false;
  bool ImageDejaFormatee = false;
  bool AnnotationsPresentes = false;

  // --- Geometry and identity of the image (pixels)
  QString PathOrigine;
  int32_t HauteurOrigine = 0, LargeurOrigine = 0;
  float RatioOrigine = 0;
  bool PortraitOrigine = false;
  int32_t HauteurRecadrage = 0, LargeurRecadrage = 0;  // 0: not cropped
  float RatioRecadrage = 0;
  int32_t Hauteur = 0, Largeur = 0;
  float Cadrage = 0;
  int32_t LargeurCadrage = 0;  // width that the scale refers to
  bool ImageTournee = false;
  float PoidsFichier = 0;  // ko of 1024 bytes
  int32_t LargeurFormatee = 0, HauteurFormatee = 0;
  float CadrageFormate = 0;
  int32_t LargeurMesure = 0, HauteurMesure = 0;
  float RatioMesure = 0, CoefMesure = 0;

  // --- Bitmaps; whoever replaces one drops the old one
  Bitmap ImageCourante, ImageFormatee, ImageMesure, ImageSansFiltre, ImageFiltre;

  // --- Cartouche and comment block fields
  QString TitreImage, NomAuteurImage, Provenance, Coloration, Preparation, Microscope,
      Eclairage, Objectif, EchellePix, EchelleMic;
  QString UniteEtalon = QStringLiteral("um");
  QString UniteObj = QStringLiteral("x");
  float FocaleAPN = 0;    // mm
  float DigitalZoom = 0;
  QString Modele, DateImage, DateObservation;
  bool TraitNiveaux = false, TraitPoussieres = false, TraitBruit = false,
       TraitDeconvolution = false;
  QString Application, ExifTexte, IptcTexte, CommentaireImage;
  float ReductionImage = 0;
  QString LargeurOrigineMeta;
  bool ExtrapolationFoc = false;
  bool DepuisCartouche = false;  // frmExtrapolFocale was opened by the cartouche form
  QString MotClef, Regne, Embranchement, Classe, Ordre, Famille, Genre, Espece;
  QString MicroscopeMeta, ApPhotoMeta, ObjectifMeta;
  // Scale anchors and keywords read back from a comment block; emptied on reset.
  QStringList AncresEchelle;
  QStringList ListeMotsClefs;
  // Scale values of the final picture.
  float MicronsParPixel = 0;
  // A scale another program wrote in a file without a comment block of ours,
  // in microns per pixel of the file's size, and where it was read; 0 without.
  double MicronsParPixelExterne = 0;
  QString SourceEchelleExterne;
  MemoireCartouche MemCartouche;

  // --- Output format (kept in step by G_FormatSortie)
  int16_t ChoixFormat = 2;
  int16_t ApnLargCourant = 800, ApnHautCourant = 600;
  int16_t ApnLargVersHaut = 533;
  float RatioFormat = 800.0f / 600.0f;

  // --- Screen
  int32_t EcranLargeur = 0;
  bool EcranTropPetit = false, EcranReduit = false, EcranConfortable = false;
  int32_t ZoneLargeur = 0, ZoneHauteur = 0;

  // --- Other
  std::array<QString, 5> ListeRecent;
  QString CheminLigneCommande;

  // --- Folders
  QString DocPath;          // documents folder, trailing "/"
  QString DossierTemporaire;
  QString SeparateurDecimal = QStringLiteral(",");
  QString PaysUtilisateur;

  // --- Configuration (UserConfig.ini), read by RecupereValeurIni
  QString NumVersion;
  QString NomAuteur = QStringLiteral("Votre nom");
  QString NomFichImage = QStringLiteral("forum_");
  int32_t NextNumberImage = 1;
  QString TitreImageConfig = QStringLiteral("1");  // key [General] TitreImage
  QString ImageAccueil = QStringLiteral("1");
  int32_t MessageBox = 0;
  QString MajAuto = QStringLiteral("1");
  QString MethodeRedim = QStringLiteral("0");
  QString RepTravail, RepEtalon, RepApPhoto;
  QString ModeOuvrir = QStringLiteral("0");
  QString ChoixFormatMesure;
  int16_t PoidsMax = 250;
  QString CartoucheHB = QStringLiteral("1");
  int16_t ApnLarg = 800, ApnHaut = 600;
  int16_t WcLarg = 640, WcHaut = 480;
  QString FontName1 = QStringLiteral("Comic Sans MS");
  int16_t FontSize1 = 10;
  bool FontBold1 = true, FontItalic1 = false;
  QString FontName2 = QStringLiteral("Arial");
  int16_t FontSize2 = 8;
  bool FontBold2 = false, FontItalic2 = false;
  QString PathNav = QStringLiteral("Explorer");
  std::array<QString, 4> ApExt;
};

}  // namespace tg
