#include "cartouche/RenduCartouche.h"

#include <QFontMetrics>
#include <QPainter>
#include <cmath>

#include "platform/Nombres.h"

namespace tg {

FormeCartouche CalculerFormeCartouche(const QString& cartoucheHB, float cadrageFormate,
                                      int largeurFormatee, int largeurFond, int hauteurCanevas,
                                      int hauteurFormatee) {
  FormeCartouche f;
  const bool rn = Arrondir(cadrageFormate, 1) == 1.5 && largeurFormatee == largeurFond;
  if (cartoucheHB == "1") {
    f.hauteurFond = hauteurCanevas + 60;
    if (rn) {
      f.hauteurCartouche = 103;
      f.infos = QStringLiteral("Infos: Cartouche RN (3 lignes) sera placé sous l'image");
    } else {
      f.hauteurCartouche = 60;
      f.infos = QStringLiteral("Infos: Le cartouche (3 lignes) sera placé sous l'image");
    }
  } else {
    f.hauteurFond = hauteurCanevas;
    if (hauteurCanevas - hauteurFormatee > 40) {
      f.hauteurCartouche = 64;
      f.infos = QStringLiteral("Infos: Cartouche RN (2 lignes) sera placé sur le fond");
    } else {
      f.hauteurCartouche = 40;
      f.infos = QStringLiteral("Infos: Le cartouche (2 lignes) sera collé sur l'image");
    }
  }
  return f;
}

double PosYEchelle(int hauteurCartouche) {
  switch (hauteurCartouche) {
    case 40:
      return 40 / 2 + 6;
    case 64:
      return 64 / 2 + 18;
    case 103:
      return 103.0 / 2 + 29;
    default:
      return 26;
  }
}

QString AssemblerChoix(const QString& texte1, const QString& texte2, const QString& texte3,
                       const QString& prefixe1, const QString& prefixe2, const QString& prefixe3,
                       int choix) {
  QString sep1 = " - ", sep2 = " - ";
  const QString p1 = texte1.isEmpty() ? QString() : prefixe1;
  const QString p2 = texte2.isEmpty() ? QString() : prefixe2;
  const QString p3 = texte3.isEmpty() ? QString() : prefixe3;
  if (texte1.isEmpty()) sep1.clear();
  if (texte2.isEmpty()) sep2.clear();
  if (texte3.isEmpty()) sep2.clear();
  if (texte1.isEmpty() && texte2.isEmpty()) sep1.clear();
  if (texte2.isEmpty() && texte3.isEmpty()) sep1.clear();
  switch (choix) {
    case 1:
      return texte3.isEmpty() ? QString() : p3 + texte3;
    case 2:
      return texte2.isEmpty() ? QString() : p2 + texte2;
    case 3:
      return p2 + texte2 + sep2 + p3 + texte3;
    case 4:
      return p1 + texte1;
    case 5:
      return p1 + texte1 + sep1 + p3 + texte3;
    case 6:
      return p1 + texte1 + sep1 + p2 + texte2;
    case 7:
      return p1 + texte1 + sep1 + p2 + texte2 + sep2 + p3 + texte3;
    default:
      return QString();
  }
}

int BinaireVersEntier(const QString& texte) {
  int n = 0;
  for (const QChar c : texte) n = n * 2 + (c == QLatin1Char('1') ? 1 : 0);
  return n;
}

bool OmbrageApplicable(float cadrageFormate) { return Arrondir(cadrageFormate, 1) == 1.5; }

int IndexOmbre(int largeurFormatee) {
  switch (largeurFormatee) {
    case 640:
      return 1;
    case 750:
      return 2;
    case 800:
      return 3;
    case 1024:
      return 4;
    case 1152:
      return 5;
    default:
      return 0;
  }
}

QImage ImageOmbre(int index) {
  static const int largeurs[] = {0, 640, 750, 800, 1024, 1152};
  if (index < 1 || index > 5) return QImage();
  QImage img(largeurs[index], 64, QImage::Format_RGB32);
  // Rows darken from white at the bottom to a soft grey under the image.
  for (int y = 0; y < 64; ++y) {
    const int g = 160 + (95 * y) / 63;
    QRgb* ligne = reinterpret_cast<QRgb*>(img.scanLine(y));
    for (int x = 0; x < img.width(); ++x) ligne[x] = qRgb(g, g, g);
  }
  return img;
}

namespace {

// Fractional coordinates go to the nearest pixel, ties to even.
int Px(double v) { return static_cast<int>(VersEntier(v)); }

// A one-pixel line, both end points drawn.
void Segment(QPainter& p, double x1, double y1, double x2, double y2) {
  const int ax = Px(x1), ay = Px(y1), bx = Px(x2), by = Px(y2);
  if (ax == bx && ay == by)
    p.drawPoint(ax, ay);
  else
    p.drawLine(ax, ay, bx, by);
}

void TexteGauche(QPainter& p, double x, double y, const QString& t) {
  if (!t.isEmpty()) p.drawText(QPoint(Px(x), Px(y)), t);
}

void TexteDroite(QPainter& p, double x, double y, const QString& t) {
  if (t.isEmpty()) return;
  const int l = QFontMetrics(p.font()).horizontalAdvance(t);
  p.drawText(QPoint(Px(x) - l, Px(y)), t);
}

QFont Arial(int points) {
  QFont f(QStringLiteral("Arial"));
  f.setPointSize(points);
  f.setBold(false);
  f.setItalic(false);
  return f;
}

QString ChoixBinaire(const ValeursCartouche& v, int a, int b, int c) {
  QString s;
  for (int i : {a, b, c}) s += v.choixChamp[i] ? QLatin1Char('1') : QLatin1Char('0');
  return s;
}

void BlocEchelle(QPainter& p, const ValeursCartouche& v, double posX, double posY) {
  p.setPen(QPen(v.couleurEchelle, 1));
  p.setFont(Arial(9));
  const double e = v.echellePixels;
  Segment(p, posX, posY, posX, posY - 5);
  Segment(p, posX, posY, posX + e, posY);
  Segment(p, posX + e, posY, posX + e, posY - 5);
  Segment(p, posX + e / 2, posY + 2, posX + e / 2, posY - 3);
  posY -= 10;
  posX = 12;
  TexteGauche(p, posX, posY, LegendeEchelle(v));
  p.setPen(QPen(v.couleurTexte, 1));
  if (v.cartoucheHB != "1") return;
  p.setFont(Arial(8));
  TexteGauche(p, posX, posY + 30, TexteMicroscope(v));
}

void BlocSansEchelle(QPainter& p, const ValeursCartouche& v, double posX, double posY) {
  p.setPen(QPen(v.couleurTexte, 1));
  p.setFont(Arial(8));
  posY -= 10;
  posX = 12;
  TexteGauche(p, posX, posY, TexteSansEchelle1(v));
  TexteGauche(p, posX, posY + 17, TexteSansEchelle2(v));
}

void BlocDroit(QPainter& p, const ValeursCartouche& v) {
  const double posX = v.largeur - 12;
  double posY = 17;
  if (v.largeurFormatee == v.apnLargCourant && v.hauteur >= 64)
    posY = v.cartoucheHB == "1" ? 63 : 33;
  p.setPen(QPen(v.couleurTexte, 1));
  p.setFont(v.policeTitre);
  TexteDroite(p, posX, posY, v.choixChamp[0] ? v.titre.trimmed() : QString());
  p.setFont(v.policeSousTitre);
  const int choix = BinaireVersEntier(ChoixBinaire(v, 1, 7, 8));
  TexteDroite(
      p, posX, posY + 16,
      AssemblerChoix(v.eclairage, v.montage, v.coloration, "", "Prép : ", "Colo : ", choix));
  if (v.cartoucheHB != "1") return;
  p.setFont(Arial(8));
  const int choix3 = BinaireVersEntier(ChoixBinaire(v, 6, 2, 3));
  TexteDroite(p, posX, posY + 32,
              AssemblerChoix(v.provenance, v.auteur, v.dateTexte, "", "", "", choix3));
}

}  // namespace

QString TexteMicroscope(const ValeursCartouche& v) {
  const bool micro = v.choixChamp[4], photo = v.choixChamp[5];
  // The blank before the first colon is missing in the first form only.
  if (micro && !photo) return "Micro / Bino: " + v.microscope;
  if (!micro && photo) return "Photo : " + v.modele;
  if (micro && photo) return "Micro / Bino : " + v.microscope + " - Photo : " + v.modele;
  return QString();
}

QString TexteSansEchelle1(const ValeursCartouche& v) {
  if (!v.choixChamp[4]) return QString();
  const QString unite = v.optUniteObj == 1 ? QStringLiteral("mm") : QStringLiteral("x");
  const QString& m = v.microMan;
  const QString& o = v.objectifMan;
  if (!m.isEmpty() && o.isEmpty()) return "Micro / Macro : " + m;
  if (m.isEmpty() && !o.isEmpty()) return "Obj. " + o + unite;
  if (!m.isEmpty()) return "Micro / Macro : " + m + " - Obj. " + o + unite;
  return QString();
}

QString TexteSansEchelle2(const ValeursCartouche& v) {
  if (!v.choixChamp[5] || v.apPhotoMan.isEmpty()) return QString();
  QString t = "Photo : " + v.apPhotoMan;
  if (v.reductionAffichee >= 1) t += "   R = 1:" + TexteReel(v.reductionAffichee, v.separateur);
  return t;
}

QString LegendeEchelle(const ValeursCartouche& v) {
  const bool mm = v.optUnite != 0;
  const float longueur = static_cast<float>(mm ? v.longueur / 1000 : v.longueur);
  QString t =
      TexteReel(longueur, v.separateur) + " " + (mm ? QStringLiteral("mm") : QStringLiteral("µm"));
  t += v.extrapolationFoc ? QStringLiteral(" [*]   obj. x") : QStringLiteral("   obj. x");
  t += v.objectif;
  if (v.reductionAffichee >= 1) t += "   R = 1:" + TexteReel(v.reductionAffichee, v.separateur);
  return t;
}

void DessinerCartouche(QImage& canevas, const ValeursCartouche& v) {
  canevas = QImage(v.largeur, v.hauteur, QImage::Format_RGB32);
  canevas.fill(v.fond);
  QPainter p(&canevas);
  if (!v.ombre.isNull()) p.drawImage(QPoint(0, 0), v.ombre);
  p.setRenderHint(QPainter::Antialiasing, false);
  p.setRenderHint(QPainter::TextAntialiasing, true);
  const double posX = 12, posY = PosYEchelle(v.hauteur);
  if (v.echelleVisible && v.cartoucheValide)
    BlocEchelle(p, v, posX, posY);
  else if (!v.echelleVisible)
    BlocSansEchelle(p, v, posX, posY);
  BlocDroit(p, v);
}

}  // namespace tg
