#include "measure/Rtf.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>
#include <QBuffer>
#include <QImage>
#include <QUrl>

#include "imaging/cAdvancedImagery.h"
#include "platform/Fichiers.h"
#include "platform/Nombres.h"

namespace tg {

bool CreerVignette(cAdvancedImagery& ai, const Bitmap& image, int largeur,
                   const QString& dossierTemporaire, Vignette& sortie) {
  sortie = Vignette();
  const int l = ai.Info_Width(image), h = ai.Info_Height(image);
  if (l <= 0 || h <= 0 || largeur <= 0) return false;
  const int hauteur = std::max(1, int(VersEntier(double(h) * largeur / l)));
  Bitmap copie;
  if (!ai.IO_Copy(image, copie)) return false;
  if (!ai.Effect_Resize(copie, largeur, hauteur, 3)) return false;
  // The contract writes JPEG to files only: a private temporary folder.
  QTemporaryDir dossier(dossierTemporaire.isEmpty() ? QDir::tempPath() + QStringLiteral("/vignette-XXXXXX")
                                                    : dossierTemporaire + QStringLiteral("/vignette-XXXXXX"));
  if (!dossier.isValid()) return false;
  const QString chemin = dossier.filePath(QStringLiteral("vignette.jpg"));
  if (!ai.IO_SaveImage(copie, chemin, FormatJPEG, 90)) return false;
  QFile f(chemin);
  if (!f.open(QIODevice::ReadOnly)) return false;
  sortie.jpeg = f.readAll();
  sortie.largeur = largeur;
  sortie.hauteur = hauteur;
  return !sortie.jpeg.isEmpty();
}

namespace {

// Text of one line: RTF's special characters escaped, line ends inside the
// text as paragraph ends, the rest in Windows-1252, 8-bit bytes as \'xx.
QByteArray Echapper(const QString& texte) {
  QString t = texte;
  t.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
  const QByteArray octets = VersWindows1252(t);
  QByteArray r;
  for (char c : octets) {
    const unsigned char u = static_cast<unsigned char>(c);
    if (c == '\\' || c == '{' || c == '}') {
      r += '\\';
      r += c;
    } else if (c == '\n') {
      r += "\\par\r\n";
    } else if (u >= 0x80 || u < 0x20) {
      r += "\\'" + QByteArray::number(u, 16).rightJustified(2, '0');
    } else {
      r += c;
    }
  }
  return r;
}

QByteArray Image(const Vignette& v) {
  // \picw/\pich in pixels, the goal size in twips at 96 pixels an inch.
  QByteArray r = "{\\pict\\jpegblip\\picw" + QByteArray::number(v.largeur) + "\\pich" +
                 QByteArray::number(v.hauteur) + "\\picwgoal" + QByteArray::number(v.largeur * 15) +
                 "\\pichgoal" + QByteArray::number(v.hauteur * 15) + "\r\n";
  const QByteArray hex = v.jpeg.toHex();
  for (qsizetype i = 0; i < hex.size(); i += 128) r += hex.mid(i, 128) + "\r\n";
  r += "}";
  return r;
}

}  // namespace

QByteArray EcrireRtf(const QList<LigneRapport>& lignes, const Vignette& vignette) {
  // Colour 1: blue (0, 0, 255); colour 2: black. Font size in half points.
  QByteArray r =
      "{\\rtf1\\ansi\\ansicpg1252\\deff0\r\n"
      "{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}}\r\n"
      "{\\colortbl ;\\red0\\green0\\blue255;\\red0\\green0\\blue0;}\r\n"
      "\\pard\\plain\\f0\\fs16\r\n";
  for (const LigneRapport& l : lignes) {
    switch (l.genre) {
      case LigneRapport::Vignette:
        // Pasted at the end of the empty line that closes the title block;
        // the next line end closes its paragraph.
        if (!vignette.jpeg.isEmpty()) r += Image(vignette);
        continue;
      case LigneRapport::TitreBloc:
        r += "\\cf1\\b ";
        break;
      case LigneRapport::Rubrique:
        r += "\\cf2\\b ";
        break;
      case LigneRapport::Normal:
        r += "\\cf2\\b0 ";
        break;
    }
    r += Echapper(l.texte) + "\\par\r\n";
  }
  r += "}\r\n";
  return r;
}

bool EnregistrerRtf(const QString& chemin, const QList<LigneRapport>& lignes,
                    const Vignette& vignette) {
  return RemplacerFichierSur(chemin, EcrireRtf(lignes, vignette));
}

namespace {

// The JPEG of a picture pasted in the preview, at its shown size.
Vignette VignetteImage(const QImage& image, int largeur, int hauteur) {
  Vignette v;
  QBuffer b(&v.jpeg);
  if (image.isNull() || !b.open(QIODevice::WriteOnly) || !image.save(&b, "JPEG", 90)) return {};
  v.largeur = largeur > 0 ? largeur : image.width();
  v.hauteur = hauteur > 0 ? hauteur : image.height();
  return v;
}

}  // namespace

QByteArray EcrireRtf(const QTextDocument& doc, const Vignette& vignette) {
  // Colours in the order met; colour 1 is black, the default.
  QList<QColor> couleurs{Qt::black};
  const auto indexCouleur = [&couleurs](const QColor& c) {
    const QColor rgb = c.toRgb();
    for (qsizetype i = 0; i < couleurs.size(); ++i)
      if (couleurs[i].rgb() == rgb.rgb()) return i + 1;
    couleurs << rgb;
    return couleurs.size();
  };
  const int tailleDefaut = 8;  // points
  QByteArray corps;
  for (QTextBlock bloc = doc.begin(); bloc.isValid(); bloc = bloc.next()) {
    for (auto it = bloc.begin(); !it.atEnd(); ++it) {
      const QTextFragment f = it.fragment();
      if (!f.isValid()) continue;
      const QTextCharFormat cf = f.charFormat();
      if (cf.isImageFormat()) {
        const QTextImageFormat img = cf.toImageFormat();
        if (img.name() == u"vignette" && !vignette.jpeg.isEmpty()) {
          corps += Image(vignette);
        } else {
          const QVariant res = doc.resource(QTextDocument::ImageResource, QUrl(img.name()));
          const Vignette v = VignetteImage(res.value<QImage>(), int(img.width()), int(img.height()));
          if (!v.jpeg.isEmpty()) corps += Image(v);
        }
        continue;
      }
      const QColor couleur =
          cf.foreground().style() == Qt::NoBrush ? QColor(Qt::black) : cf.foreground().color();
      const int taille = cf.fontPointSize() > 0 ? int(VersEntier(cf.fontPointSize() * 2)) : 2 * tailleDefaut;
      corps += "{\\cf" + QByteArray::number(indexCouleur(couleur)) + "\\fs" +
               QByteArray::number(taille) + (cf.fontWeight() >= QFont::DemiBold ? "\\b" : "\\b0") +
               (cf.fontItalic() ? "\\i" : "") + (cf.fontUnderline() ? "\\ul" : "") + " ";
      // A line break inside a paragraph (Shift + Enter) stays a line break.
      const QStringList lignes = f.text().split(QChar::LineSeparator);
      for (qsizetype i = 0; i < lignes.size(); ++i) {
        if (i > 0) corps += "\\line ";
        corps += Echapper(lignes[i]);
      }
      corps += "}";
    }
    corps += "\\par\r\n";
  }
  QByteArray r =
      "{\\rtf1\\ansi\\ansicpg1252\\deff0\r\n"
      "{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}}\r\n"
      "{\\colortbl ;";
  for (const QColor& c : couleurs)
    r += "\\red" + QByteArray::number(c.red()) + "\\green" + QByteArray::number(c.green()) +
         "\\blue" + QByteArray::number(c.blue()) + ";";
  r += "}\r\n\\pard\\plain\\f0\\fs" + QByteArray::number(2 * tailleDefaut) + "\r\n";
  return r + corps + "}\r\n";
}

bool EnregistrerRtf(const QString& chemin, const QTextDocument& doc, const Vignette& vignette) {
  return RemplacerFichierSur(chemin, EcrireRtf(doc, vignette));
}

}  // namespace tg
