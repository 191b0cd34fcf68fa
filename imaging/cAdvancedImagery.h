#pragma once
// The imaging contract: the only code of the program that calls FreeImage.
// Every operation returns true on success; on failure it returns false, leaves
// its out bitmap empty and keeps the reason for Error_GetLast().
#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QString>

#include "imaging/Bitmap.h"

namespace tg {

// FreeImage's own FREE_IMAGE_FORMAT numbers, as IO_SaveImage takes them.
enum FormatFichier { FormatBMP = 0, FormatJPEG = 2, FormatTIFF = 18 };

struct InfosImage {
  int largeur = 0;
  int hauteur = 0;
  int bpp = 0;
  int couleursUtilisees = 0;
  int pitch = 0;  // bytes per scan line
  int dpiX = 0;
  int dpiY = 0;
  int dpmX = 0;  // dots per metre, as the file says
  int dpmY = 0;
  bool transparent = false;
};

struct InfosEcran {
  int largeur = 0;
  int hauteur = 0;
  int profondeur = 0;  // bits per pixel
  int frequence = 0;   // Hz
  bool palette = false;
  int couleursPalette = 0;
  int dpiX = 0;
  int dpiY = 0;
};

// What Effect_OverlayText draws, in the order of the system's call.
struct TexteSurImage {
  // The rectangle, in whole pixels of the picture. An empty rectangle is a
  // point: the text is anchored there and never clipped.
  int gauche = 0, haut = 0, droite = 0, bas = 0;
  int alignH = 0;  // 0 centred, 3 left, 4 right; 1 and 2 are refused
  int alignV = 0;  // 0 centred, 1 top, 2 bottom; 3 and 4 are refused
  bool ligneUnique = true;
  bool coupureMots = false;  // break long lines at word ends (several lines only)
  bool sansDecoupe = false;  // draw beyond the rectangle
  QString police = QStringLiteral("Arial");
  int taille = 8;  // points, at 96 dots per inch
  bool gras = false, italique = false, souligne = false, barre = false;
  int fond = -1;     // 0xBBGGRR behind the text's box; -1 none
  int couleur = 0;   // 0xBBGGRR
  int rotation = 0;  // tenths of a degree, counter-clockwise, 0 to 3600
  int tabulation = 5;     // characters per tab stop
  double decalage = 0.75; // kept for the callers; rotated text turns about its anchor
};

// The largest of 8, 4 and 2 that leaves at least minLargeur x minHauteur of a
// largeur x hauteur picture; 1 when none does.
int DenominateurDCT(int largeur, int hauteur, int minLargeur, int minHauteur);

class cAdvancedImagery {
 public:
  cAdvancedImagery();  // routes the library's messages to the last-error text
  QString Error_GetLast() const { return derniereErreur_; }

  // Loads any type FreeImage reads; BMP files that FreeImage refuses (V4/V5
  // headers) are read through Qt, TIFF files through libtiff, HEIC, HEIF and
  // AVIF through libheif, camera RAW files through LibRaw. The file is
  // checked first: one whose header fails the check never reaches a decoder
  // (false, the French reason in Error_GetLast). A JPEG cut inside its image
  // data is loaded, its lower part grey, and Incomplet() then tells so with
  // its message, for the caller to ask or refuse. The two extra arguments of
  // the system (-1, 0) carry nothing here.
  bool IO_LoadImage(const QString& chemin, Bitmap& sortie);
  // After IO_LoadImage: the French message of a file loaded although cut;
  // empty for a whole file.
  QString Incomplet() const { return incomplet_; }
  // A picture of at most `cote` pixels on its longer side, for the finder: a
  // JPEG is decoded at a reduced DCT scale, never whole; a HEIF or a RAW
  // gives the preview it carries; other files load whole and are reduced. The file is checked as IO_LoadImage does it, and
  // Incomplet() tells about a cut one. May run off the interface thread, on
  // an object of its own.
  bool IO_LoadThumbnail(const QString& chemin, int cote, QImage& sortie);
  // For a picture that goes straight to resizing: a JPEG decoded at the
  // smallest DCT scale (1/2, 1/4, 1/8) that still leaves at least
  // minLargeur x minHauteur, a RAW at half size when that leaves as much, any
  // other file whole. The file's own size comes back in largeurFichier,
  // hauteurFichier.
  bool IO_LoadImageReduite(const QString& chemin, int minLargeur, int minHauteur, Bitmap& sortie,
                           int& largeurFichier, int& hauteurFichier);
  // For a picture decoded later straight to its output size: a JPEG's, a
  // HEIF's or a RAW's header and metadata without its pixels (Info_Pixels
  // false), any other file whole as IO_LoadImage gives it. Checked, and
  // Incomplet() set, as IO_LoadImage.
  bool IO_LoadEntete(const QString& chemin, Bitmap& sortie);
  // A JPEG decoded straight to largeur x hauteur: the smallest DCT scale
  // leaving kMargeReduction times that size, then Lanczos 3, on two
  // threads, the whole picture never held; the metadata of `entete` goes
  // with it. False, with sortie empty, for a file this road does not take
  // (not three colour channels, less than kMargeReduction times the output
  // size, damaged): the caller loads it whole.
  bool IO_LoadImageRedimensionnee(const QString& chemin, int largeur, int hauteur, const Bitmap& entete,
                                  Bitmap& sortie);
  // False for an empty bitmap or a header alone.
  bool Info_Pixels(const Bitmap& image) const;
  // The resolution saved with the picture (BMP header, JFIF, TIFF), in pixels
  // per metre, rounded.
  bool Info_SetResolution(Bitmap& image, double pixelsParMetre);
  // Info_ALL of a file from its header where the format allows it, without
  // decoding the picture.
  bool Info_File(const QString& chemin, InfosImage& infos);
  // format: FormatBMP, FormatJPEG or FormatTIFF; flags: JPEG quality 1 to 100,
  // else 0. The attached comment and EXIF are written with the file.
  bool IO_SaveImage(const Bitmap& image, const QString& chemin, int format, int flags);
  // A new bitmap of `bpp` bits per pixel (24 for the program), black, or at
  // 24 and 32 bits of the colour `couleur` (0xBBGGRR), opaque.
  bool IO_CreateImage(Bitmap& sortie, int largeur, int hauteur, int bpp = 24, int couleur = 0);
  void IO_DestroyBitmap(Bitmap& image);
  bool IO_Copy(const Bitmap& source, Bitmap& sortie);

  // x, y from the top-left corner; colour as 0xBBGGRR.
  bool Color_GetPixel(const Bitmap& image, int x, int y, int& couleur);
  // Splits a 0xBBGGRR colour into its components.
  static void Color_OLE(int couleur, int& rouge, int& vert, int& bleu);

  bool Convert_ImageToPicture(const Bitmap& image, QImage& sortie);
  bool Convert_PictureToImage(const QImage& image, Bitmap& sortie);

  // Draws the bitmap at (x, y) with size (l, h) on the painter; the second
  // leaves out the colour set by Effect_SetTransparentColor.
  bool Render_Normal(const Bitmap& image, QPainter& p, int x, int y, int l, int h);
  bool Render_Transparent(const Bitmap& image, QPainter& p, int x, int y, int l, int h);

  int Info_Width(const Bitmap& image);
  int Info_Height(const Bitmap& image);
  bool Info_ALL(const Bitmap& image, InfosImage& infos);
  bool Screen_Info(InfosEcran& infos);

  bool Effect_Invert(Bitmap& image);
  // filtre: 1 bilinear, 2 B-spline, 3 Lanczos 3, 4 bicubic, other Lanczos 3.
  // A width or height below 1 becomes 1.
  bool Effect_Resize(Bitmap& image, int largeur, int hauteur, int filtre);
  // angle 90, 180 or 270, counter-clockwise as FreeImage turns.
  bool Effect_Rotate90(Bitmap& image, int angle);
  bool Effect_Brightness(Bitmap& image, double pourcentage);
  bool Effect_Contrast(Bitmap& image, double pourcentage);
  bool Effect_Gamma(Bitmap& image, double gamma);
  bool Effect_Grayscale(Bitmap& image);

  // Pixel loops of this layer; see PixelEffects.h.
  bool Effect_Blur(Bitmap& image, bool normal);
  bool Effect_Sharpen(Bitmap& image, bool normal);
  bool Effect_Emboss(Bitmap& image, bool fort, bool gris);
  bool Effect_Etch(Bitmap& image, bool fort, bool gris);
  bool Effect_RGB_Filter(Bitmap& image, float rouge, float vert, float bleu);

  // Copies the rectangle (x, y, l, h) of `source` enlarged by `facteur` into `sortie`.
  // The rectangle must lie inside the picture; facteur 1 is a plain crop, other
  // factors resample without smoothing so that the pixels stay visible.
  bool Effect_Zoom(const Bitmap& source, Bitmap& sortie, int x, int y, int l, int h, double facteur);
  // A copy whose longer side is at most `cote` pixels (pictures of the finder).
  bool Effect_Thumbnail(const Bitmap& source, Bitmap& sortie, int cote);
  // A copy whose longer side is at most `cote`, each pixel the mean of a
  // block of k x k (k whole): for showing a large picture on a screen; a copy
  // of the same size when it fits.
  bool Effect_Reduire(const Bitmap& source, Bitmap& sortie, int cote);
  // The same by the factor k: width / k x height / k.
  bool Effect_ReduireFacteur(const Bitmap& source, Bitmap& sortie, int k);
  // Colour 0xBBGGRR that Render_Transparent and Effect_OverlayPicture leave out; -1 for none.
  bool Effect_SetTransparentColor(Bitmap& image, int couleur);
  // Pastes `dessus` onto `dessous` at (x, y) (top-left), leaving out its transparent colour.
  bool Effect_OverlayPicture(Bitmap& dessous, const Bitmap& dessus, int x, int y);
  // Draws `texte` in its rectangle with its alignments, turned about the
  // anchor that the alignments name (a corner, a side's middle or the centre).
  // Fails on a refused alignment or rotation.
  bool Effect_OverlayText(Bitmap& image, const QString& texte, const TexteSurImage& t);
  // The same drawing on a picture already converted; RefusTexte says why a
  // setting is refused (empty when it is not), and must be asked first.
  static QString RefusTexte(const TexteSurImage& t);
  static void DessinerTexte(QImage& picture, const QString& texte, const TexteSurImage& t);
  bool MemoryDC_FillRectangle(Bitmap& image, int x, int y, int l, int h, int couleur);

  // Fails when the clipboard holds no picture.
  bool Clipboard_Get(Bitmap& sortie);
  bool Clipboard_Set(const Bitmap& image);

  // genre 1: main directory, 2: EXIF directory; one "name = value" line per tag.
  bool Metadata_Get_EXIF(const Bitmap& image, QString& texte, int genre);
  bool Metadata_Get_Comments(const Bitmap& image, QString& texte);
  bool Metadata_Set_Comments(Bitmap& image, const QString& texte);

 private:
  bool Echec(const QString& texte);
  // Echec with the library's own message, when it gave one, after the text.
  bool EchecBibliotheque(const QString& texte);
  bool Valide(const Bitmap& image);
  // Not empty; a header alone passes (sizes and metadata only).
  bool ValideEntete(const Bitmap& image);
  // Replaces the bitmap by `nouveau`, carrying the metadata over; false (and
  // the bitmap untouched) when `nouveau` is null.
  bool Remplacer(Bitmap& image, FIBITMAP* nouveau, const QString& texteEchec);
  // Brings a bitmap to 24 bits unless it is already 24 or 32 bits.
  bool CouleursVraies(Bitmap& image);
  bool En24Bits(Bitmap& image);
  QString derniereErreur_;
  QString incomplet_;
  int couleurTransparente_ = -1;
};

}  // namespace tg
