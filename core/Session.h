#pragma once
#include <QSize>
// Operations on the session record that need no window.
#include <QString>

#include "core/SessionRecord.h"

namespace tg {

class cAdvancedImagery;

// Clears the record for a newly loaded ImageCourante and reads its size.
void ReinitialiserSession(SessionRecord& s, cAdvancedImagery& ai, QSize tailleFichier = {});

// Drops every session bitmap and the image's flags; Etape becomes 0. The
// caller empties its display and applies the stage.
void FermerImageSession(SessionRecord& s, cAdvancedImagery& ai);

// Icon name of imgInfoCadrage for a framing ratio; the tests run in a fixed
// order, each overriding the one before.
QString IconeCadrage(float cadrage, float ratioFormat);

// The status fields that AfficherInfosImage shows.
struct InfosImageAffichees {
  QString txtTaille, txtCadrage, iconeCadrage;
  QString txtFocale, iconeZoom;
  QString txtDigitalZoom;
  bool zoomRouge = false;   // txtDigitalZoom in red (255) rather than colour 0
  bool avertirZoom = false; // the digital zoom warning is due
};
InfosImageAffichees CalculerInfosImage(const SessionRecord& s);

// The digital zoom warning: title "Zoom numérique !", icon 48.
QString TexteAvertissementZoom(const SessionRecord& s);

// Turns ImageCourante by 90, 180 or 270 degrees (270: a quarter turn to the
// right) and renews the geometry. False, with the record unchanged, when the
// imaging layer fails.
bool TournerImageSession(SessionRecord& s, cAdvancedImagery& ai, int angle);

// Working format from the configuration: ApnLarg/ApnHaut (0 becomes 800/600)
// and the derived values.
void PrendreFormatConfig(SessionRecord& s);

}  // namespace tg
