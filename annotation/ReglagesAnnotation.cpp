#include "annotation/ReglagesAnnotation.h"

#include <limits>

#include "platform/Ini.h"
#include "platform/Nombres.h"
#include "platform/Systeme.h"
#include "platform/Textes.h"

namespace tg {

namespace {

const QString kTexte = QStringLiteral("Texte"), kFond = QStringLiteral("Fond"),
              kLigne = QStringLiteral("Ligne"), kPointeur = QStringLiteral("Pointeur"),
              kCotes = QStringLiteral("Cotes");

class Lecteur {
 public:
  explicit Lecteur(const QString& fichier) : fichier_(fichier) {}

  QString Texte(const QString& section, const QString& cle, const QString& defaut) const {
    return LireIni(section, cle, fichier_, defaut);
  }
  // Whole numbers rounded to nearest, ties to even, within the type's range.
  template <typename T>
  T Entier(const QString& section, const QString& cle, T defaut) const {
    double v = 0;
    if (!LireNombre(Texte(section, cle, QString()), v)) return defaut;
    const double r = Arrondir(v);
    if (r < double(std::numeric_limits<T>::min()) || r > double(std::numeric_limits<T>::max()))
      return defaut;
    return T(VersEntier(r));
  }
  float Reel(const QString& section, const QString& cle, float defaut) const {
    double v = 0;
    return LireNombre(Texte(section, cle, QString()), v) ? float(v) : defaut;
  }
  // "VRAI"/"FAUX", "True"/"False" or a number, as a boolean converts from text.
  bool Booleen(const QString& section, const QString& cle, bool defaut) const {
    const QString t = Texte(section, cle, QString()).trimmed().toUpper();
    if (t == u"VRAI" || t == u"TRUE") return true;
    if (t == u"FAUX" || t == u"FALSE") return false;
    double v = 0;
    return LireNombre(t, v) ? v != 0 : defaut;
  }

 private:
  QString fichier_;
};

QString Bool(bool b) { return b ? QStringLiteral("VRAI") : QStringLiteral("FAUX"); }

}  // namespace

const std::array<StyleRapide, 6> kStylesRapides = {{{12, 0x404040, 0x404040, -1},
                                                     {10, 0x404040, 0x404040, 0xFFFFFF},
                                                     {10, 0x404040, 0xFFFFFF, 0xFFFFFF},
                                                     {10, 0xFFFFFF, 0xFFFFFF, 0x404040},
                                                     {12, 0xFFFFFF, 0xFFFFFF, -1},
                                                     {10, 0xFFFFFF, 0x404040, 0x404040}}};

QString CheminUserAnnotation() { return RepApplication() + QStringLiteral("UserAnnotation.ini"); }

ReglagesAnnotation LireReglagesAnnotation(const QString& fichier) {
  const Lecteur l(fichier);
  ReglagesAnnotation r;
  const ReglagesAnnotation d;
  r.TxtFontName = l.Texte(kTexte, "TxtFontName", d.TxtFontName);
  r.TxtFontColor = l.Entier(kTexte, "TxtFontColor", d.TxtFontColor);
  r.TxtFontSize = l.Entier(kTexte, "TxtFontSize", d.TxtFontSize);
  r.TxtFontBold = l.Booleen(kTexte, "TxtFontBold", d.TxtFontBold);
  r.TxtFontItalic = l.Booleen(kTexte, "TxtFontItalic", d.TxtFontItalic);
  r.TxtFontUnderline = l.Booleen(kTexte, "TxtFontUnderline", d.TxtFontUnderline);
  r.TxtBack = l.Booleen(kFond, "TxtBack", d.TxtBack);
  r.TxtBackColor = l.Entier(kFond, "TxtBackColor", d.TxtBackColor);
  r.LineBorder = l.Entier(kLigne, "LineBorder", d.LineBorder);
  r.LineColor = l.Entier(kLigne, "LineColor", d.LineColor);
  r.PointerChoose = l.Entier(kPointeur, "PointerChoose", d.PointerChoose);
  r.PointerSize = l.Entier(kPointeur, "PointerSize", d.PointerSize);
  r.AngleFleche = l.Reel(kPointeur, "AngleFleche", d.AngleFleche);
  r.CoteFontName = l.Texte(kCotes, "CoteFontName", d.CoteFontName);
  r.CoteFontSize = l.Entier(kCotes, "CoteFontSize", d.CoteFontSize);
  r.CoteColor = l.Entier(kCotes, "CoteColor", d.CoteColor);
  r.CoteUnite = l.Texte(kCotes, "CoteUnite", d.CoteUnite);
  // Sizes that would draw nothing or hang the painter come back to their defaults.
  if (r.TxtFontSize < 1) r.TxtFontSize = d.TxtFontSize;
  if (r.CoteFontSize < 1) r.CoteFontSize = d.CoteFontSize;
  if (r.LineBorder < 1) r.LineBorder = d.LineBorder;
  if (r.PointerChoose < 0 || r.PointerChoose > 3) r.PointerChoose = d.PointerChoose;
  return r;
}

bool EcrireReglagesAnnotation(ReglagesAnnotation& r, const QString& fichier) {
  r.TxtBack = r.TxtBackColor != -1;
  const QString sep = SeparateurDecimalSysteme();
  bool ok = true;
  const auto e = [&](const QString& section, const char* cle, const QString& valeur) {
    ok = EcrireIni(section, QLatin1String(cle), valeur, fichier) && ok;
  };
  e(kTexte, "TxtFontName", r.TxtFontName);
  e(kTexte, "TxtFontColor", QString::number(r.TxtFontColor));
  e(kTexte, "TxtFontSize", QString::number(r.TxtFontSize));
  e(kTexte, "TxtFontBold", Bool(r.TxtFontBold));
  e(kTexte, "TxtFontItalic", Bool(r.TxtFontItalic));
  e(kTexte, "TxtFontUnderline", Bool(r.TxtFontUnderline));
  e(kFond, "TxtBack", Bool(r.TxtBack));
  e(kFond, "TxtBackColor", QString::number(r.TxtBackColor));
  e(kLigne, "LineBorder", QString::number(r.LineBorder));
  e(kLigne, "LineColor", QString::number(r.LineColor));
  e(kPointeur, "PointerChoose", QString::number(r.PointerChoose));
  e(kPointeur, "PointerSize", QString::number(r.PointerSize));
  e(kPointeur, "AngleFleche", TexteReel(r.AngleFleche, sep));
  e(kCotes, "CoteFontName", r.CoteFontName);
  e(kCotes, "CoteFontSize", QString::number(r.CoteFontSize));
  e(kCotes, "CoteColor", QString::number(r.CoteColor));
  e(kCotes, "CoteUnite", r.CoteUnite);
  return ok;
}

void AppliquerStyle(ReglagesAnnotation& r, const StyleRapide& style) {
  r.TxtFontName = QStringLiteral("Comic Sans MS");
  r.TxtFontSize = style.taille;
  r.TxtFontColor = style.couleurTexte;
  r.TxtFontBold = r.TxtFontItalic = r.TxtFontUnderline = false;
  r.LineColor = style.couleurLigne;
  r.TxtBackColor = style.fond;
  r.TxtBack = style.fond != -1;
  r.LineBorder = 2;
  r.PointerChoose = 3;
  r.PointerSize = 16;
  r.AngleFleche = 22.5f;
}

int IndexCouleurCote(int32_t couleur) {
  for (int i = 0; i < int(kCouleursCotes.size()); ++i)
    if (kCouleursCotes[i] == couleur) return i;
  return -1;
}

}  // namespace tg
