#include "cartouche/FormCartouche.h"

#include "core/modMain.h"
#include "platform/Dialogues.h"
#include "platform/Ini.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"
#include "version.h"
#include "platform/Fichiers.h"

namespace tg {

namespace {

QString TitreForm() { return QLatin1String(TitreProgramme); }

void Refuser(const QString& texte, Icone icone = Icone::Exclamation) {
  Dialogues().Message(TitreForm(), texte, icone);
}

QString Nettoyer(const QString& t) { return EnleverEgal(EnleverGuillemets(t)); }

// The decimal sign of the locale in a numeric text.
QString SeparateurLocal(QString t, const QString& sep) {
  if (sep == u",")
    t.replace(u'.', u',');
  else if (sep == u".")
    t.replace(u',', u'.');
  return t;
}

}  // namespace

ResultatControle ControleErreur(ChampsCartouche& c, bool echelleVisible, const QString& sep) {
  ResultatControle r;
  // 1. The manual objective: its own refusal, then a hint; the drawing goes on.
  if (!c.objectifMan.isEmpty() && !ControleNonNul(c.objectifMan)) {
    Refuser(QStringLiteral("Modifiez le champ Objectif (partie sans étalon)"), Icone::Aucune);
    return r;
  }
  auto faute = [&r](const QString& texte, Icone icone = Icone::Exclamation) {
    Refuser(texte, icone);
    r.valide = false;
    r.effacer = true;
    return r;
  };
  if (c.titre.size() > kLongueurMaxChamp || c.titre.isEmpty())
    return faute(QStringLiteral("Titre : le texte est absent ou trop long (max 70 char.)"),
                 Icone::Aucune);
  if (c.eclairage == QLatin1String("+++ Choisir ou ajouter"))
    return faute(QStringLiteral("Eclairage : Choisir dans la liste, éditer ou effacer ..."));
  for (const QString* t : {&c.auteur, &c.eclairage, &c.provenance, &c.montage, &c.coloration})
    if (t->size() > kLongueurMaxChamp)
      return faute(QStringLiteral("Champs : Un des textes est trop long (max 70 char.)"));

  // Neither quotes (the table file's delimiter) nor "=" (the comment block's
  // key sign) may stay in a field.
  for (QString* t : {&c.auteur, &c.titre, &c.eclairage, &c.provenance, &c.montage, &c.coloration,
                     &c.microMan, &c.apPhotoMan})
    *t = Nettoyer(*t);
  c.pix = SeparateurLocal(c.pix, sep);
  c.objectif = SeparateurLocal(c.objectif, sep);

  if (!echelleVisible) return r;

  const QString suite =
      QStringLiteral("\r\nSi vous ne désirez pas d'échelle cliquez sur \"Sans échelle\" ...");
  const QString nonNul = QStringLiteral("Valeurs pour l'échelle : Chiffres uniquement et non nul");
  std::array<double, 4> v{};
  const std::array<const QString*, 4> textes = {&c.pix, &c.mic, &c.longueur, &c.objectif};
  // Every numeric test runs before the zero tests.
  for (int i = 0; i < 4; ++i)
    if (!LireNombre(*textes[i], v[i])) return faute(nonNul + suite);
  for (double x : v)
    if (x == 0) return faute(nonNul + suite);
  if (v[0] > 15000 || v[1] > 32767)
    return faute(QStringLiteral("Valeurs limites dépassées ...\r\n"
                                "-----------------------------\r\n"
                                "Microns max = 32767\r\n"
                                "Pixels max = 15000\r\n"));
  return r;
}

QString SigneDecimalTape(const QString& touche, const QString& sep) {
  const bool decimale = touche == u"." || touche == u",";
  if (decimale && touche != sep && (sep == u"." || sep == u",")) return sep;
  return QString();
}

DateCartouche RecupDate(const QString& dateImage, const QString& dateObservation,
                        const QDate& aujourdhui) {
  DateCartouche d;
  for (int i = 1; i <= 31; ++i) d.jours << QStringLiteral("%1").arg(i, 2, 10, QLatin1Char('0'));
  for (int i = 1; i <= 12; ++i) d.mois << QStringLiteral("%1").arg(i, 2, 10, QLatin1Char('0'));
  // Every year the check below accepts, so that an accepted date shows its own year.
  for (int i = kPremiereAnnee; i <= aujourdhui.year(); ++i) d.annees << QString::number(i);

  auto duJour = [&] {
    d.libelle = QStringLiteral("(date du jour)");
    d.jour = QStringLiteral("%1").arg(aujourdhui.day(), 2, 10, QLatin1Char('0'));
    d.moisChoisi = QStringLiteral("%1").arg(aujourdhui.month(), 2, 10, QLatin1Char('0'));
    d.annee = QStringLiteral("%1").arg(aujourdhui.year(), 4, 10, QLatin1Char('0'));
    return d;
  };
  if (dateImage.isEmpty() && dateObservation.isEmpty()) return duJour();
  if (dateObservation == u"//" || dateImage == u"0000:00:00 00:00:00") {
    Refuser(QStringLiteral("Date Exif corrompue: Date du jour par défaut !"));
    return duJour();
  }
  QString j, m, a;
  if (!dateObservation.isEmpty()) {
    d.libelle = QStringLiteral("(date Meta)");
    j = dateObservation.mid(0, 2);
    m = dateObservation.mid(3, 2);
    a = dateObservation.mid(6, 4);
  } else {
    d.libelle = QStringLiteral("(date Exif)");
    j = dateImage.mid(8, 2);
    m = dateImage.mid(5, 2);
    a = dateImage.mid(0, 4);
  }
  bool ok = false;
  const int jour = j.toInt(&ok);
  if (!ok || jour <= 0 || jour > 31) return duJour();
  d.jour = QStringLiteral("%1").arg(jour, 2, 10, QLatin1Char('0'));
  const int mois = m.toInt(&ok);
  if (!ok || mois <= 0 || mois > 12) return duJour();
  d.moisChoisi = QStringLiteral("%1").arg(mois, 2, 10, QLatin1Char('0'));
  const int annee = a.toInt(&ok);
  if (!ok || annee < kPremiereAnnee || annee > aujourdhui.year()) return duJour();
  d.annee = QStringLiteral("%1").arg(annee, 4, 10, QLatin1Char('0'));
  return d;
}

Canevas CalculerCanevas(const SessionRecord& s) {
  Canevas c;
  const int fw = s.ApnLargCourant, fh = s.ApnHautCourant;
  auto poser = [&c](int l, int h) {
    c.largeurCartouche = c.largeurFond = l;
    c.hauteurFond = h;
  };
  if (s.CadrageFormate < s.RatioFormat) {
    if (s.HauteurFormatee <= 480)
      poser(640, 480);
    else if (s.HauteurFormatee <= fh)
      poser(fw, fh);
  } else {
    if (s.LargeurFormatee <= 640)
      poser(640, 480);
    else if (s.LargeurFormatee <= fw)
      poser(fw, fh);
  }
  return c;
}

OptionsDefaut CalculerOptionsDefaut(float cadrage, float ratioFormat, const QString& hb,
                                    int largeurFormatee, int largeurFond) {
  OptionsDefaut o;
  const float r2 = static_cast<float>(Arrondir(cadrage, 2));
  const float r1 = static_cast<float>(Arrondir(cadrage, 1));
  const OptionsDefaut centre{0, 1, true, true};
  if (r2 < ratioFormat)
    o = centre;
  else if (r1 == 1.5f)
    o = {0, 0, true, true};
  else if (r1 > 1.5f)
    o = centre;
  else
    o = {hb == u"0" ? 2 : 0, 0, false, false};
  // A picture narrower than the background is always centred.
  if (largeurFormatee < largeurFond) o = centre;
  return o;
}

void EcrireMemCartouche(SessionRecord& s, MemoireCartouche m) {
  m.MemOmbrage = m.MemOmbrage || s.MemCartouche.MemOmbrage;
  s.MemCartouche = std::move(m);
}

QString TexteErreurFeuille(int numero, const QString& texte, const QString& procedure) {
  const QString rapport = "Error " + QString::number(numero) + " (" + texte + ") in procedure " + procedure +
                          " of Feuille frmAjouterCartouche";
  return numero == 75 ? AvecRaison(rapport) : rapport;
}

QString TexteFont(const QFont& f) {
  return f.family() + u'-' + QString::number(int(f.pointSizeF()));
}

bool EcrirePolice(SessionRecord& s, int numero, const QFont& f) {
  const bool titre = numero == 1;
  const int taille = int(f.pointSizeF());  // a fraction is cut, not rounded
  (titre ? s.FontName1 : s.FontName2) = f.family();
  (titre ? s.FontSize1 : s.FontSize2) = int16_t(taille);
  (titre ? s.FontBold1 : s.FontBold2) = f.bold();
  (titre ? s.FontItalic1 : s.FontItalic2) = f.italic();
  const QString n = QString::number(titre ? 1 : 2);
  const QString fichier = CheminUserConfig();
  auto oui = [](bool b) { return b ? QStringLiteral("VRAI") : QStringLiteral("FAUX"); };
  bool ok = EcrireIni(QStringLiteral("FormatImage"), "FontName" + n, f.family(), fichier);
  ok = EcrireIni(QStringLiteral("FormatImage"), "FontSize" + n, QString::number(taille), fichier) &&
       ok;
  ok = EcrireIni(QStringLiteral("FormatImage"), "FontBold" + n, oui(f.bold()), fichier) && ok;
  ok = EcrireIni(QStringLiteral("FormatImage"), "FontItalic" + n, oui(f.italic()), fichier) && ok;
  return ok;
}

}  // namespace tg
