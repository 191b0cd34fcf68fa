#pragma once
// Output formats and resizing: the rules that need no window.
#include <QString>
#include <array>
#include <optional>

#include "core/SessionRecord.h"

namespace tg {

class cAdvancedImagery;

// Question of G_ChangeFormat for a valid format index.
QString TexteChangementFormat(int choix);
inline const QString TitreChangementFormat = QStringLiteral("Modification du format de sortie");

// The working size of format `choix` and its derived values, without
// writing anything. False for an index outside 0 to 4.
bool DefinirFormat(SessionRecord& s, int choix);

// Steps 1 and 3 of G_FormatSortie: the size of format `ChoixFormat` written to
// [FormatImage] ApnLarg/ApnHaut, stored, and the derived values renewed.
// False, with nothing changed, for an index outside 0 to 4.
bool AppliquerFormatSortie(SessionRecord& s);

// "Error 9 (...) in procedure G_FormatSortie of Module modMain".
QString TexteErreurFormat(const QString& procedure);

// ControleImage for an image without comment block: the format to take when
// the image is narrower than the output width, else nothing.
std::optional<int> FormatPourImageEtroite(int largeur, int largeurSortie);
// ControleImage for an image already formatted: the format of that width.
std::optional<int> FormatDeLargeur(int largeur);
inline const QString TitreFormatReinitialise = QStringLiteral("Format de sortie");
QString TexteFormatReinitialise();

// Size that Redimensionner gives to a source of srcL x srcH pixels of ratio
// `ratio` (width / height) for a format of sortieL x sortieH. The format never
// enlarges: a smaller source comes down to 640 or 480 on its deciding side
// at most, and one under those sizes keeps its size.
struct Taille {
  int largeur = 0;
  int hauteur = 0;
  bool operator==(const Taille&) const = default;
};
Taille TailleRedimensionnee(int srcL, int srcH, float ratio, float ratioFormat, int sortieL,
                            int sortieH);

// Resamplers, codes 1 to 4, as frmChooseRessampl numbers them.
struct Reechantillonneur {
  int code;
  const char* legende;   // caption of the option
  const char* resultat;  // label shown once applied
};
inline constexpr std::array<Reechantillonneur, 4> Reechantillonneurs = {{
    {1, " 1: Bilinéaire", "Redimensionnement (bilinéaire) ok !"},
    {2, " 2: B-Spline (plus lisse)", "Redimensionnement (b-spline) ok !"},
    {3, " 3: Lanczos3  (plus net, par défaut)", "Redimensionnement (lanczos3) ok !"},
    {4, " 4: Bicubic", "Redimensionnement (bicubic) ok !"},
}};

// Redimensionner without its display step: ImageCourante resized in place
// with filter code 1 to 4, Largeur/Hauteur/Cadrage read back, ImageFormatee
// a copy. False after an imaging failure, the old bitmap kept; the text of
// the failure is the layer's last error.
// `rapide`: a picture more than twice the output size is first reduced by
// whole blocks, down to twice that size at least (the pictures the user sees
// change by less than a JPEG save does; every size and scale stays).
// A header alone in ImageCourante (ChargerEntete) is decoded here from
// PathOrigine, straight to the output size when the filter is Lanczos 3.
bool RedimensionnerSession(SessionRecord& s, cAdvancedImagery& ai, int filtre, bool rapide = false);

// The reduced copy ImageMesure for measuring. False after an imaging failure.
bool PreparerImageMesure(SessionRecord& s, cAdvancedImagery& ai);

}  // namespace tg
