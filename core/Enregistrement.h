#pragma once
// Saving the final image: the trial file, its weight and the chosen name.
#include <QString>
#include <QStringList>

#include "core/SessionRecord.h"

namespace tg {

class cAdvancedImagery;

// FormatSortie of frmEnregistrer.
enum FormatEnregistrement { EnrJPEG = 0, EnrBMP = 1, EnrTIFF = 2 };

// Qualities offered by ComboQualite; the fifth, "94", is chosen at opening.
inline const QStringList QualitesJpeg = {"100", "99", "98", "97", "94", "90", "80", "70"};
constexpr int IndexQualiteDefaut = 4;

// The trial file: always named resultat.jpg, in the program's folder, even
// when it holds a BMP or a TIFF.
// Pixels per centimetre of the final picture's scale (EchellePix pixels for
// EchelleMic in UniteEtalon), 0 without one. Every save writes it where other
// programs read it: EXIF and JFIF, TIFF tags, the BMP header.
double PixelsParCm(const SessionRecord& s);

// RepApplication()'s resultat.jpg, or that of $TESSELLOGRAPHE_SERIE when set.
QString CheminResultat();

// Weight in ko of a file of `octets` bytes: the quotient by 1024 rounded to
// nearest (ties to even), plus 1. 1024 bytes weigh 2 ko.
int PoidsKo(qint64 octets);
// The JPEG limit: a weight up to PoidsMax passes.
bool PoidsAccepte(float poids, int poidsMax);
QString TexteTropLourd(int poidsMax);

// The empty key "QualiteJpg=" of the comment block completed with the quality.
QString CompleterQualite(const QString& commentaire, int qualite);

struct ResultatEssai {
  float poids = 0;      // ko; also put in PoidsFichier
  QString commentaire;  // the comment written into the JPEG
  QStringList erreurs;  // "Error - " and the layer's text, one per failed call
};

// PreparerResultat. JPEG: ImageCourante saved at quality 100, read back, the
// completed comment attached, saved again at `qualite`. BMP and TIFF: saved
// once, without comment. A failing call is reported and the next step still
// runs: a failed trial gives a wrong weight rather than a stop.
ResultatEssai PreparerResultat(SessionRecord& s, cAdvancedImagery& ai, int format, int qualite);

// The highest JPEG quality whose file stays within PoidsMax, by bisection on
// trial saves of the picture with its comment block: quality 100 first, then
// halves of 1 to 99, 8 saves at most; the best trial becomes resultat.jpg
// without a further save. With no PoidsMax (0 or less), one trial at
// `qualiteConfig`. `trouve` is false when even quality 1 is too heavy.
struct ResultatQualite {
  bool trouve = false;
  int qualite = 0;
  int essais = 0;  // trial saves made
  ResultatEssai essai;
};
ResultatQualite MeilleureQualite(SessionRecord& s, cAdvancedImagery& ai, int qualiteConfig);

// Extension and save-dialog filter of a format.
QString ExtensionEnregistrement(int format);
QString FiltreEnregistrement(int format);

// The title made fit for a file name: trimmed, lower case, without accents
// nor special characters, blanks as "_".
QString TitreNettoye(const QString& titre);
// Default name of the save dialog: the cleaned title with TitreImage "1",
// else NomFichImage and NextNumberImage on three digits.
QString NomParDefaut(const SessionRecord& s, int format);

// After a confirmed numbered save: NextNumberImage + 1, written to
// [General] NextNumberImage. Nothing with the title option.
void AvancerNumeroImage(SessionRecord& s);

// resultat.jpg copied to `cible`, overwriting it. False when the copy fails.
bool CopierResultat(const QString& cible);

// The developer's listing of the session, one key a line.
QString TexteListing(const SessionRecord& s);

inline const QString TexteSecondFormatage = QStringLiteral(
    "Attention, second formatage !\nVérifiez bien la qualité du résultat en fonction de la "
    "compression.");
inline const QString TexteQuestionMetadonnees = QStringLiteral(
    "En enregistrant sous ce format vous perdrez \ntoutes les métadonnées de l'image.\n(par "
    "ailleurs ce format n'est en genéral pas conseillé sur le Net)\nConfirmez-vous ce choix ?");

}  // namespace tg
