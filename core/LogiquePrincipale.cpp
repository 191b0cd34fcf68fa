#include "core/LogiquePrincipale.h"

#include <QFile>
#include <QStringList>

#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Fichiers.h"
#include "platform/Nombres.h"
#include "platform/Systeme.h"
#include "version.h"

namespace tg {

QString TitreFenetrePrincipale() {
  return QStringLiteral(" %1 : %2.%3.%4")
      .arg(QLatin1String(TitreProgramme))
      .arg(VersionMajor)
      .arg(VersionMinor)
      .arg(VersionRevision);
}

std::optional<int> PourcentageAjuste(int cadreL, int cadreH, int largeur, int hauteur,
                                     float cadrage, int zoneL, int zoneH) {
  if (largeur <= 0 || hauteur <= 0) return std::nullopt;
  const int utileL = cadreL - 10;
  const int utileH = cadreH - 10;
  const double zone = (zoneL > 0 && zoneH > 0) ? double(zoneL) / zoneH
                      : cadreH > 0             ? double(cadreL) / cadreH
                                               : 0.0;
  if (cadrage < zone) return int(VersEntier(double(utileH) / hauteur * 100));
  return int(VersEntier(double(utileL) / largeur * 80));
}

QSize TailleAffichee(int pourcent, int largeur, int hauteur) {
  return {int(VersEntier(double(pourcent) * largeur / 100)),
          int(VersEntier(double(pourcent) * hauteur / 100))};
}

Barres BarresVisibles(QSize image, QSize cadre) {
  return {image.width() > cadre.width(), image.height() > cadre.height()};
}

bool RecadragePossible(int largeur, int hauteur) { return largeur >= 640 && hauteur >= 481; }

QString TexteRefusRecadrage() {
  return QStringLiteral("Vous ne pouvez pas recadrer cette image : <= ") + QString::number(640) +
         " x " + QString::number(480);
}

bool EchelleSurImage(const SessionRecord& s) { return s.MicronsParPixel > 0; }

QString TexteInfosEcran(const InfosEcran& e) {
  // Booleans read as the program writes them elsewhere.
  const auto oui = [](bool b) { return b ? QStringLiteral("VRAI") : QStringLiteral("FAUX"); };
  QStringList l;
  l << QStringLiteral("Infos écran:") << QString() << "Width = " + QString::number(e.largeur)
    << "Height = " + QString::number(e.hauteur)
    << "Color Depth (BPP) = " + QString::number(e.profondeur)
    << "Refresh Rate = " + QString::number(e.frequence) << "Uses Palette = " + oui(e.palette)
    << "Palette Colors = " + QString::number(e.couleursPalette)
    << "ResolutionX DPI = " + QString::number(e.dpiX)
    << "ResolutionY DPI = " + QString::number(e.dpiY);
  return l.join(u'\n');
}

QString FiltreFichiersImage() {
  return QStringLiteral(
      "Tous formats supportés|*.BMP;*.GIF;*.JPEG;*.JPG;*.PSD;*.PCD;*.PNG|"
      "Joint Photographic Experts Group  (*.JPG, *.JPEG)|*.JPG;*.JPEG|"
      "Windows / OS2 Bitmap  (*.BMP)|*.BMP|"
      "Portable Network Graphics  (*.PNG)|*.PNG|"
      "Adobe / PhotoShop  (*.PSD)|*.PSD|"
      "Kodak / PhotoCD  (*.PCD)|*.PCD|"
      "Graphics Interchange Format  (*.GIF)|*.GIF|");
}

QColor CouleurBGR(int bgr) { return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF); }

bool SauverTableSecours() {
  const QString table = RepApplication() + QStringLiteral("table_mesure.dat");
  if (!FileExists(table)) return true;
  const QString secours = RepApplication() + QStringLiteral("table_mesure_secours.bak");
  QFile::remove(secours);
  return QFile::copy(table, secours);
}

bool EcrireFichierRecent(const std::array<QString, 5>& liste) {
  const QString chemin = CheminRecent();
  QFile::remove(chemin);
  QStringList items;
  for (const QString& c : liste)
    if (!c.isEmpty()) items << c;
  return EcrireListe(chemin, items);
}

void TerminerSession(SessionRecord& s, cAdvancedImagery& ai) {
  SauverTableSecours();
  EcrireFichierRecent(s.ListeRecent);
  QFile::remove(RepApplication() + QStringLiteral("twain_temp.jpg"));
  ai.IO_DestroyBitmap(s.ImageSansFiltre);
  ai.IO_DestroyBitmap(s.ImageFormatee);
  ai.IO_DestroyBitmap(s.ImageFiltre);
}

}  // namespace tg
