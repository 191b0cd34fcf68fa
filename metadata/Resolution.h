#pragma once
// A picture's scale where other programs look for it: the resolution in
// pixels per centimetre. JPEG: EXIF IFD0 XResolution/YResolution (rationals)
// with ResolutionUnit 3, and the JFIF density in pixels per centimetre when
// it fits its 16 bits within 0.1 %, else no JFIF segment at all (readers that
// prefer JFIF, even its bare aspect ratio, would not read EXIF). TIFF: the
// same three tags of IFD0.
#include <QString>
#include <cstdint>

namespace tg::meta {

struct Fraction {
  uint32_t numerateur = 0, denominateur = 1;
};

// The fraction nearest `valeur` (> 0) with both terms on 32 bits: exact when
// one is, else the last convergent of its continued fraction that fits.
Fraction FractionProche(double valeur);

// The JFIF density for `pixelsParCm`: the rounded value when it fits 16 bits
// and changes the scale by less than 0.1 %, else 0 (no density).
int DensiteJfif(double pixelsParCm);

// Writes the resolution into the JPEG or TIFF file `chemin`, nothing else
// changed, the file replaced only once complete. False with a French message.
bool EcrireResolution(const QString& chemin, double pixelsParCm, QString* erreur = nullptr);

}  // namespace tg::meta
