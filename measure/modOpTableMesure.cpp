#include "measure/modOpTableMesure.h"

#include <QRegularExpression>
#include <algorithm>
#include <cmath>

#include "core/modMain.h"
#include "platform/Dialogues.h"
#include "platform/Fichiers.h"
#include "platform/Liste.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"

namespace tg {

namespace {

const QString kModule = QStringLiteral("modOpTableMesure");

void ErreurTrappee(int numero, const QString& texte, const QString& procedure) {
  Dialogues().Message(QString(), TexteErreur(numero, texte, procedure, kModule), Icone::Critique);
}

// The frame of every filler: blank first row, then each slot of the file in
// order, read into TableMesure() and kept when `garder` says so.
template <typename Test>
void Parcourir(IListe& combo, IListe* comboIndex, const QString& procedure,
               const QString& separateur, Test garder) {
  combo.Vider();
  combo.Ajouter(QString());
  if (comboIndex) {
    comboIndex->Vider();
    comboIndex->Ajouter(QStringLiteral("0"));
  }
  const QString chemin = CheminTableMesure();
  if (!FileExists(chemin)) return;
  FichierMesure f;
  if (!f.Ouvrir(chemin)) {
    ErreurTrappee(f.Erreur().numero, f.Erreur().texte, procedure);
    return;
  }
  const int nbEnreg = f.LireEntete();
  for (int i = 2; i <= nbEnreg; ++i) {
    if (!f.LireEnr(i)) {
      ErreurTrappee(f.Erreur().numero, f.Erreur().texte, procedure);
      return;
    }
    const EnrMesure& t = TableMesure();
    if (!garder(t)) continue;
    combo.Ajouter(TexteTable(i - 1, t, separateur));
    if (comboIndex) comboIndex->Ajouter(QString::number(i - 1));
  }
}

bool FocalesEgales(float a, float b) { return Arrondir(a, 1) == Arrondir(b, 1); }

QString Champ(const EnrMesure& e, int choix) {
  switch (choix) {
    case ChoixModele:
      return e.Modele;
    case ChoixMicro:
      return e.Micro;
    case ChoixConfig:
      return e.Config;
    case ChoixLargeur:
      return QString::number(e.LargPix);
    default:
      return QString();
  }
}

}  // namespace

QString TexteTable(int numero, const EnrMesure& e, const QString& separateur) {
  return QString::number(numero) + QStringLiteral(": ") + e.Modele.trimmed() +
         QStringLiteral("  (") + QString::number(e.LargPix) + QStringLiteral(") obj. x") +
         TexteReel(e.Obj, separateur) + QStringLiteral(" - F: ") + TexteReel(e.Focale, separateur) +
         QStringLiteral(" mm - ") + e.Micro.trimmed() + QStringLiteral(" / ") + e.Config.trimmed();
}

int LargeurReference(const SessionRecord& s) {
  return s.PortraitOrigine == s.ImageTournee ? s.LargeurOrigine : s.HauteurOrigine;
}

void RemplirComboTable(IListe& combo, const QString& separateur) {
  Parcourir(combo, nullptr, QStringLiteral("RemplirComboTable"), separateur,
            [](const EnrMesure&) { return true; });
}

void RemplirComboTableFiltre(IListe& combo, IListe& comboIndex, bool filtrerModele,
                             SessionRecord& s) {
  const int largeur = LargeurReference(s);
  if (filtrerModele) s.Modele = s.Modele.trimmed();
  const QString modele = s.Modele.toUpper();
  const float focale = s.FocaleAPN;
  Parcourir(combo, &comboIndex, QStringLiteral("RemplirComboTableFiltre"), s.SeparateurDecimal,
            [&](const EnrMesure& t) {
              if (filtrerModele && t.Modele.toUpper() != modele) return false;
              return t.LargPix == largeur && FocalesEgales(focale, t.Focale);
            });
}

void RemplirComboTableExrapol(IListe& combo, IListe& comboIndex, SessionRecord& s) {
  const int largeur = LargeurReference(s);
  s.Modele = s.Modele.trimmed();
  const QString modele = s.Modele.toUpper();
  Parcourir(
      combo, &comboIndex, QStringLiteral("RemplirComboTableExrapol"), s.SeparateurDecimal,
      [&](const EnrMesure& t) { return t.Modele.toUpper() == modele && t.LargPix == largeur; });
}

void ComboTableSelonChoix(IListe& combo, IListe& comboIndex, int choix, const QString& valeur,
                          const QString& separateur) {
  double nombre = 0;
  const bool numerique = LireNombre(valeur, nombre);
  Parcourir(combo, &comboIndex, QStringLiteral("ComboTableSelonChoix"), separateur,
            [&](const EnrMesure& t) {
              if (choix == ChoixLargeur) return numerique && double(t.LargPix) == nombre;
              if (choix >= ChoixModele && choix <= ChoixConfig) return Champ(t, choix) == valeur;
              return false;
            });
}

void ExtraireChoix(IListe& combo, int choix) {
  QStringList valeurs{QStringLiteral("  ")};
  const QString chemin = CheminTableMesure();
  combo.Vider();
  if (FileExists(chemin)) {
    FichierMesure f;
    if (!f.Ouvrir(chemin)) {
      ErreurTrappee(f.Erreur().numero, f.Erreur().texte, QStringLiteral("ExtraireChoix"));
    } else {
      const int nbEnreg = f.LireEntete();
      for (int i = 2; i <= nbEnreg; ++i) {
        if (!f.LireEnr(i)) {
          ErreurTrappee(f.Erreur().numero, f.Erreur().texte, QStringLiteral("ExtraireChoix"));
          break;
        }
        if (choix >= ChoixModele && choix <= ChoixLargeur) valeurs << Champ(TableMesure(), choix);
      }
    }
  }
  // The lists receiving these values sort themselves without regard to case;
  // sorting here brings equal values together before they are merged.
  std::stable_sort(valeurs.begin(), valeurs.end(), [](const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) < 0;
  });
  for (qsizetype i = 0; i + 1 < valeurs.size();) {
    if (!valeurs[i].isEmpty() && valeurs[i] == valeurs[i + 1])
      valeurs.removeAt(i);
    else
      ++i;
  }
  for (const QString& v : valeurs) combo.Ajouter(v);
}

void SelectionnerGroupe(int indice, IListe& lstFocale, IListe& lstNumero, bool depuisCartouche,
                        SessionRecord& s) {
  lstFocale.Vider();
  lstNumero.Vider();
  const QString chemin = CheminTableMesure();
  if (!FileExists(chemin)) return;
  FichierMesure f;
  const QString procedure = QStringLiteral("SelectionnerGroupe");
  if (!f.Ouvrir(chemin)) {
    ErreurTrappee(f.Erreur().numero, f.Erreur().texte, procedure);
    return;
  }
  const int nbEnreg = f.LireEntete();
  if (nbEnreg < 1) return;
  EnrMesure ref;
  if (!f.LireEnr(indice + 1, ref)) {
    ErreurTrappee(f.Erreur().numero, f.Erreur().texte, procedure);
    return;
  }
  for (int i = 2; i <= nbEnreg; ++i) {
    if (!f.LireEnr(i)) {
      ErreurTrappee(f.Erreur().numero, f.Erreur().texte, procedure);
      return;
    }
    const EnrMesure& t = TableMesure();
    const int egaux = int(t.Modele.toUpper() == ref.Modele.toUpper()) +
                      int(t.Micro.toUpper() == ref.Micro.toUpper()) +
                      int(t.Config.toUpper() == ref.Config.toUpper()) +
                      int(t.LargPix == ref.LargPix) + int(t.Obj == ref.Obj);
    if (egaux != 5) continue;
    lstFocale.Ajouter(TexteReel(t.Focale, s.SeparateurDecimal));
    lstNumero.Ajouter(QString::number(i - 1));
    if (depuisCartouche) {
      s.Microscope = t.Micro;
      s.Modele = t.Modele;
    }
  }
}

float CoeffFocale(std::vector<float> focales, std::vector<float> pixels, std::vector<float> microns,
                  IListe* deviations, const QString& separateur) {
  if (focales.empty() || pixels.empty() || microns.empty()) return 0;
  const size_t n = focales.size() - 1;  // entries 0 .. n - 1; the last is a spare
  pixels.resize(n + 1, 0.0f);
  microns.resize(n + 1, 0.0f);
  if (n == 0) return 0;
  std::vector<float> coeffTable(n);
  for (size_t i = 0; i < n; ++i) {
    if (pixels[i] == 0 || microns[i] == 0) return 0;
    coeffTable[i] = pixels[i] / microns[i] * 100.0f;  // pixels per 100 microns
  }
  for (size_t i = 0; i < n; ++i) {
    if (focales[i] == 0) return 0;
    coeffTable[i] = coeffTable[i] / focales[i];
  }
  float somme = 0;
  for (float c : coeffTable) somme += c;
  const float moyenne = somme / float(n);
  if (deviations) {
    deviations->Vider();
    for (float c : coeffTable) {
      const float deviation = 100.0f - moyenne / c * 100.0f;
      // + 0 turns a rounded -0 into 0.
      deviations->Ajouter(TexteReel(float(Arrondir(deviation, 1)) + 0.0f, separateur));
    }
  }
  return moyenne > 0 ? moyenne : 0;
}

int16_t UmPourMillePix(float focale, float coeff) {
  if (!(focale > 0) || !(coeff > 0)) return 0;
  const float valeur = 1000.0f / focale / coeff * 100.0f;
  const double arrondi = std::nearbyint(double(valeur));
  if (!std::isfinite(arrondi) || arrondi > 32767.0 || arrondi < -32768.0) {
    ErreurTrappee(6, QStringLiteral("Overflow"), QStringLiteral("UmPourMillePix"));
    return 0;
  }
  const auto resultat = int16_t(arrondi);
  return resultat < 1 ? 0 : resultat;
}

bool CorrespondMotif(const QString& nom, const QString& motif) {
  QString expression;
  for (const QChar c : motif.toUpper()) {
    if (c == u'*')
      expression += QStringLiteral(".*");
    else if (c == u'?')
      expression += u'.';
    else
      expression += QRegularExpression::escape(QString(c));
  }
  const QRegularExpression re(QRegularExpression::anchoredPattern(expression),
                              QRegularExpression::DotMatchesEverythingOption);
  return re.match(nom.toUpper()).hasMatch();
}

}  // namespace tg
