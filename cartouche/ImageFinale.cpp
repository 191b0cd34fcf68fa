#include "cartouche/ImageFinale.h"

#include <cmath>

#include <QPainter>
#include <cstdlib>

#include "imaging/cAdvancedImagery.h"
#include "platform/Nombres.h"

namespace tg {

namespace {

bool FormeRN(const ParamsImageFinale& p, int largeurFormatee) {
  return Arrondir(p.cadrageFormate, 1) == 1.5 && largeurFormatee == p.largeurFond;
}

int Bgr(const QColor& c) { return c.red() | (c.green() << 8) | (c.blue() << 16); }

// The background colour of the cartouche drawn with `alpha` over `fond`,
// everything else opaque.
void RendreAvecAlpha(QImage& fond, const QImage& cartouche, const QColor& cle, int alpha, int y) {
  QImage calque = cartouche.convertToFormat(QImage::Format_ARGB32);
  const QRgb rgbCle = cle.rgb() & 0xFFFFFF;
  for (int ly = 0; ly < calque.height(); ++ly) {
    QRgb* ligne = reinterpret_cast<QRgb*>(calque.scanLine(ly));
    for (int lx = 0; lx < calque.width(); ++lx)
      if ((ligne[lx] & 0xFFFFFF) == rgbCle)
        ligne[lx] = qRgba(qRed(ligne[lx]), qGreen(ligne[lx]), qBlue(ligne[lx]), alpha);
  }
  QPainter peintre(&fond);
  peintre.setCompositionMode(QPainter::CompositionMode_SourceOver);
  peintre.drawImage(QPoint(0, y), calque);
}

}  // namespace

int HautCartouche(const ParamsImageFinale& p, int largeurFormatee, int hauteurFormatee) {
  int haut = p.hauteurFond - p.hauteurCartouche;
  if (!FormeRN(p, largeurFormatee)) return haut;
  if (p.cartoucheHB == "1") {
    haut = hauteurFormatee;
  } else if (p.cartoucheHB == "0") {
    const int d = p.hauteurFond - hauteurFormatee;
    if (d > 64) haut = p.hauteurFond - (p.hauteurCartouche + d - 64);
  }
  return haut;
}

QPoint PositionImage(const ParamsImageFinale& p, int largeurFormatee, int hauteurFormatee) {
  switch (p.optAlign) {
    case 1: {
      const int x = static_cast<int>(VersEntier((p.largeurFond - largeurFormatee) / 2.0));
      int y = static_cast<int>(
          VersEntier((p.hauteurFond - p.hauteurCartouche - hauteurFormatee) / 2.0));
      if (y <= 0) y = 0;
      return {x, y};
    }
    case 2:
      return {p.largeurFond - largeurFormatee, 0};
    default:
      return {0, 0};
  }
}

QString TraitementTexte(const QStringList& legendes, const QList<bool>& coches) {
  QString t;
  for (int i = 0; i < legendes.size() && i < coches.size(); ++i)
    if (coches[i]) t += legendes[i] + "/";
  return t;
}

QString SansChampInutilise(const QString& texte) {
  return texte == QStringLiteral("*** Champ inutilisé ***") ? QString() : texte;
}

QRect ZoneSousCartouche(const ParamsImageFinale& p, int largeurFormatee, int hauteurFormatee) {
  if (p.cartoucheHB != "0") return {};
  const QPoint pos = PositionImage(p, largeurFormatee, hauteurFormatee);
  const QRect cartouche(0, HautCartouche(p, largeurFormatee, hauteurFormatee), p.largeurFond, p.hauteurCartouche);
  return cartouche.translated(-pos) & QRect(0, 0, largeurFormatee, hauteurFormatee);
}

double LuminanceMoyenne(const QImage& image, const QRect& zone) {
  const QRect z = zone & image.rect();
  if (z.isEmpty()) return -1;
  double somme = 0;
  for (int y = z.top(); y <= z.bottom(); ++y)
    for (int x = z.left(); x <= z.right(); ++x) {
      const QRgb c = image.pixel(x, y);
      somme += 0.299 * qRed(c) + 0.587 * qGreen(c) + 0.114 * qBlue(c);
    }
  return somme / (double(z.width()) * z.height());
}

int CouleurContrastee(double luminance) {
  constexpr int kNoir = 0x202020, kBlanc = 0xF0F0F0;  // near-black, near-white
  return std::fabs(luminance - 0x20) >= std::fabs(luminance - 0xF0) ? kNoir : kBlanc;
}

int AlphaTransparence(int optTransparence) {
  switch (optTransparence) {
    case 1:
      return 100;
    case 2:
      return 0;
    default:
      return 255;
  }
}

bool ConstruireImageFinal(cAdvancedImagery& ia, Bitmap& imageFormatee, int& largeurFormatee,
                          int& hauteurFormatee, const QColor& couleurFond, const QImage& picCartouche,
                          const QColor& fondCartouche, const ParamsImageFinale& p, Bitmap& sortie,
                          QStringList& messages) {
  sortie.Reset();
  const QString fin = QStringLiteral("\r\nin Sub ConstruireImageFinal");
  auto etape = [&](bool ok, const QString& texte) {
    if (!ok) messages << texte + ia.Error_GetLast() + fin;
    return ok;
  };
  auto court = [&](bool ok) {
    if (!ok) messages << QStringLiteral("Error - ") + ia.Error_GetLast();
    return ok;
  };

  const int hautCartouche = HautCartouche(p, largeurFormatee, hauteurFormatee);

  Bitmap imgFond, imgCartouche;
  etape(ia.IO_CreateImage(imgFond, p.largeurFond, p.hauteurFond, 24, Bgr(couleurFond)), QStringLiteral("Error - 1:"));
  etape(ia.Convert_PictureToImage(picCartouche, imgCartouche), QStringLiteral("Error  - 2"));

  // A format's height or width rounded one pixel short is stretched to fill
  // the background; two pixels or more are left as they are.
  if (std::abs(largeurFormatee - p.largeurFond) == 1)
    court(ia.Effect_Resize(imageFormatee, p.largeurFond, hauteurFormatee, 2));
  if (imageFormatee) {
    largeurFormatee = ia.Info_Width(imageFormatee);
    hauteurFormatee = ia.Info_Height(imageFormatee);
  }
  if (p.cartoucheHB == "0" && std::abs(hauteurFormatee - p.hauteurFond) == 1) {
    court(ia.Effect_Resize(imageFormatee, largeurFormatee, p.hauteurFond, 3));
    if (imageFormatee) {
      largeurFormatee = ia.Info_Width(imageFormatee);
      hauteurFormatee = ia.Info_Height(imageFormatee);
    }
  }

  // The image is pasted whole: no colour of it is left out.
  if (imgFond) ia.Effect_SetTransparentColor(imgFond, -1);
  const QPoint pos = PositionImage(p, largeurFormatee, hauteurFormatee);
  const QString stagesAlign[] = {QStringLiteral("Error - 3"), QStringLiteral("Error - 4"),
                                 QStringLiteral("Error - 5")};
  if (p.optAlign >= 0 && p.optAlign <= 2)
    etape(ia.Effect_OverlayPicture(imgFond, imageFormatee, pos.x(), pos.y()),
          stagesAlign[p.optAlign]);

  const int alpha = AlphaTransparence(p.optTransparence);
  if (p.cartoucheHB == "0" && p.optTransparence != 0) {
    // Only the cartouche's background colour lets the image through; text
    // and scale stay opaque.
    QImage fond;
    if (etape(ia.Convert_ImageToPicture(imgFond, fond), QStringLiteral("Error - 6"))) {
      QImage cartouche;
      const bool ok = ia.Convert_ImageToPicture(imgCartouche, cartouche);
      etape(ok && ia.Effect_SetTransparentColor(imgCartouche, Bgr(fondCartouche)),
            QStringLiteral("Error - 7"));
      if (ok) RendreAvecAlpha(fond, cartouche, fondCartouche, alpha, hautCartouche);
      if (imgCartouche) ia.Effect_SetTransparentColor(imgCartouche, -1);
      Bitmap recompose;
      if (etape(ia.Convert_PictureToImage(fond, recompose), QStringLiteral("Error - 9")))
        imgFond = std::move(recompose);
    }
  } else if (p.cartoucheHB == "0" || p.cartoucheHB == "1") {
    const QString stage =
        p.cartoucheHB == "0" ? QStringLiteral("Error - 10") : QStringLiteral("Error - 11");
    etape(ia.Effect_OverlayPicture(imgFond, imgCartouche, 0, hautCartouche), stage);
  }

  // The background is the final picture: handed over, not copied.
  if (!ia.Info_Pixels(imgFond)) {
    ia.IO_Copy(imgFond, sortie);  // sets the library's error
    messages << QStringLiteral("Error - ") + ia.Error_GetLast();
    return false;
  }
  sortie = std::move(imgFond);
  return true;
}

}  // namespace tg
