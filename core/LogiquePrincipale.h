#pragma once
// Rules of the main window that need no widget.
#include <QColor>
#include <QSize>
#include <QString>
#include <array>
#include <optional>

#include "core/SessionRecord.h"

namespace tg {

class cAdvancedImagery;
struct InfosEcran;

// " Tessellographe : 1.0.0": a blank, the program title, " : ", major.minor.revision.
QString TitreFenetrePrincipale();

// Slider value (percent) of the fit button for a picture of largeur x hauteur
// in a frame of cadreL x cadreH pixels. A picture narrower than the zone
// (cadrage below zoneL / zoneH) fits on its height at 100 %, a wider one on
// its width at only 80 %: the two branches differ on purpose. Without a zone
// size the frame's own ratio serves. std::nullopt without a picture size.
std::optional<int> PourcentageAjuste(int cadreL, int cadreH, int largeur, int hauteur,
                                     float cadrage, int zoneL, int zoneH);

// Size of the display at `pourcent` % of a picture of largeur x hauteur.
QSize TailleAffichee(int pourcent, int largeur, int hauteur);

// A scroll bar shows exactly when the displayed picture exceeds the frame on its side.
struct Barres {
  bool horizontale = false;
  bool verticale = false;
  bool operator==(const Barres&) const = default;
};
Barres BarresVisibles(QSize image, QSize cadre);

// Cropping needs at least 640 x 481 pixels.
bool RecadragePossible(int largeur, int hauteur);
QString TexteRefusRecadrage();

// A scale was drawn into the final picture (mnuMesureImage may measure).
bool EchelleSurImage(const SessionRecord& s);

// Text of "Infos écran".
QString TexteInfosEcran(const InfosEcran& e);

// Filter of the picture open dialogs, in the system's form "text|patterns|...".
// TIFF is written by the save step but not offered here.
QString FiltreFichiersImage();

// 0xBBGGRR to a colour.
QColor CouleurBGR(int bgr);

// Closing steps on files and bitmaps, in this order: back-up of the tables,
// recent.dat rewritten, twain_temp.jpg removed, ImageSansFiltre,
// ImageFormatee and ImageFiltre destroyed. A step that fails does not stop
// the next ones.
void TerminerSession(SessionRecord& s, cAdvancedImagery& ai);
// table_mesure.dat copied over table_mesure_secours.bak, when it exists.
bool SauverTableSecours();
// recent.dat deleted then written with the non-empty entries, one quoted path a line.
bool EcrireFichierRecent(const std::array<QString, 5>& liste);

}  // namespace tg
