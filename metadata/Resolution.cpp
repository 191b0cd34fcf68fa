#include "metadata/Resolution.h"

#include <QFileInfo>
#include <cmath>
#include <limits>

#include "metadata/CImage.h"

namespace tg::meta {

Fraction FractionProche(double valeur) {
  constexpr double maximum = std::numeric_limits<uint32_t>::max();
  if (!(valeur > 0) || valeur > maximum) return {};
  // Convergents h/k of the continued fraction, kept while both fit.
  double h0 = 1, h1 = std::floor(valeur), k0 = 0, k1 = 1;
  double reste = valeur - std::floor(valeur);
  for (int i = 0; i < 40 && reste > 1e-12 * valeur; ++i) {
    const double inverse = 1 / reste;
    const double a = std::floor(inverse);
    const double h2 = a * h1 + h0, k2 = a * k1 + k0;
    if (h2 > maximum || k2 > maximum) break;
    h0 = h1;
    h1 = h2;
    k0 = k1;
    k1 = k2;
    if (std::fabs(h1 / k1 - valeur) <= 1e-12 * valeur) break;
    reste = inverse - a;
  }
  return {uint32_t(h1), uint32_t(k1)};
}

int DensiteJfif(double pixelsParCm) {
  const double arrondi = std::round(pixelsParCm);
  if (!(pixelsParCm > 0) || arrondi < 1 || arrondi > 0xFFFF) return 0;
  return std::fabs(arrondi - pixelsParCm) < 0.001 * pixelsParCm ? int(arrondi) : 0;
}

namespace {

QByteArray Rationnel(Fraction f) {
  QByteArray b(8, '\0');
  for (int i = 0; i < 4; ++i) {
    b[i] = char((f.numerateur >> (8 * i)) & 0xFF);
    b[4 + i] = char((f.denominateur >> (8 * i)) & 0xFF);
  }
  return b;
}

void Etiquettes(CExif& x, Fraction f) {
  x.AddModifyTag(Repertoire::IFD0, 0x011A, FmtRational, Rationnel(f));
  x.AddModifyTag(Repertoire::IFD0, 0x011B, FmtRational, Rationnel(f));
  x.AddModifyTag(Repertoire::IFD0, 0x0128, FmtShort, QByteArray("\x03\0", 2));
}

}  // namespace

bool EcrireResolution(const QString& chemin, double pixelsParCm, QString* erreur) {
  const Fraction f = FractionProche(pixelsParCm);
  if (f.numerateur == 0) {
    if (erreur) *erreur = QStringLiteral("Résolution impossible à écrire : %1 pixels par cm.").arg(pixelsParCm);
    return false;
  }
  CImage image;
  if (!image.ReadImage(chemin)) {
    if (erreur) *erreur = image.Erreur();
    return false;
  }
  if (CJPEG* j = image.JPEG()) {
    Etiquettes(*j->EXIF(), f);
    // A JPEG's IFD0 names how its chroma is sited; 1, centred, is what the
    // encoder does. Readers that check the block ask for it.
    CIFD* ifd0 = j->EXIF()->ifd(0);
    if (ifd0 != nullptr && ifd0->Trouver(0x0213) == nullptr)
      j->EXIF()->AddModifyTag(Repertoire::IFD0, 0x0213, FmtShort, QByteArray("\x01\0", 2));
    // A density that does not fit goes with its segment: readers take even
    // a JFIF aspect ratio (unit 0) before EXIF, and would lose the scale.
    const int densite = DensiteJfif(pixelsParCm);
    j->JFIF().unit = 2;
    j->JFIF().Xdensity = densite;
    j->JFIF().Ydensity = densite;
    if (densite == 0) j->JFIF().Present = false;
  } else if (CTIFF* t = image.TIFF()) {
    Etiquettes(t->EXIF(), f);
  } else {
    if (erreur)
      *erreur = QStringLiteral("Le fichier « %1 » n'est ni un JPEG ni un TIFF : sa résolution n'est pas écrite.")
                    .arg(QFileInfo(chemin).fileName());
    return false;
  }
  if (!image.WriteImage(chemin)) {
    if (erreur) *erreur = image.Erreur();
    return false;
  }
  return true;
}

}  // namespace tg::meta
