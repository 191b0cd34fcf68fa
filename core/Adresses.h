#pragma once
// Web addresses of the program, in one place.
#include <QString>
#include <QUrl>

#include "platform/Systeme.h"

namespace tg {

// The two forums of the "Forum" menu.
inline constexpr const char* AdresseForumNaturaliste = "https://www.lenaturaliste.net/forum/";
inline constexpr const char* AdresseForumDoraisidren = "https://www.doraisidren.fr/forum/";

// The help is a page shipped with the program.
inline constexpr const char* PageAide = "aide/tessellographe.html";

inline QString AdresseAide() {
  return QUrl::fromLocalFile(DossierDonnees() + QLatin1String(PageAide)).toString();
}

}  // namespace tg
