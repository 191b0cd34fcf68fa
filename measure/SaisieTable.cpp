#include "measure/SaisieTable.h"

#include "platform/Nombres.h"
#include "platform/Textes.h"
#include "version.h"

namespace tg {

namespace {

const QString kTitreNumerique = QStringLiteral("Erreur sur les champs numériques");

QString Entier(double v) { return QString::number(VersEntier(v)); }

}  // namespace

QString NettoyerChamp(const QString& champ) {
  QString t = champ.trimmed();
  t.remove(u'"');
  t = t.trimmed();
  t.replace(u'=', u' ');
  return t;
}

std::optional<RefusSaisie> ValiderSaisie(ChampsTable& champs, ModeSaisie mode, bool zoom,
                                         const QString& separateur, EnrMesure& enr) {
  for (QString& c : champs) c = NettoyerChamp(c);

  const int obligatoires = mode == ModeSaisie::Modification ? 8 : 7;
  for (int i = 0; i < obligatoires; ++i)
    if (champs[i].isEmpty())
      return RefusSaisie{QStringLiteral("Erreur de saisie"),
                         QStringLiteral("Vous devez saisir tous les champs !")};

  double v[8] = {};
  for (int i = 4; i <= 6; ++i)
    if (!LireNombre(champs[i], v[i]) || !(v[i] > 0))
      return RefusSaisie{kTitreNumerique, QStringLiteral("Chiffres uniquement et non nul !")};

  // LargPix has no test of its own: text that is no number breaks its limit.
  const bool largeurLue = LireNombre(champs[1], v[1]);
  bool depasse =
      !largeurLue || !(v[1] < 15000) || !(v[4] < 200) || !(v[5] < 15000) || !(v[6] < 32767);
  const bool focaleTestee = mode == ModeSaisie::Modification || zoom;
  if (focaleTestee) {
    if (!LireNombre(champs[7], v[7]) || v[7] < 0)
      return RefusSaisie{kTitreNumerique, QStringLiteral("Chiffres uniquement !")};
    if (!(v[7] < 1200)) depasse = true;
  }
  if (depasse)
    return RefusSaisie{QStringLiteral(" Erreur sur les champs numériques"),
                       QStringLiteral("Valeurs limites dépassées ...\n"
                                      "-----------------------------\n"
                                      "Microns max = 32767\n"
                                      "Pixels max = 15000\n"
                                      "Objectif max = 200\n"
                                      "Largeur photo max = 15000\n"
                                      "Focale max = 1200")};

  // A width far below zero passes the limits but fits no 16-bit field.
  if (VersEntier(v[1]) < -32768)
    return RefusSaisie{QLatin1String(TitreProgramme), QStringLiteral("Erreur non déterminée ...")};

  champs[1] = Entier(v[1]);
  champs[5] = Entier(v[5]);
  champs[6] = Entier(v[6]);
  if (focaleTestee)
    champs[7] = QString::number(Arrondir(v[7], 2), 'f', 2).replace(u'.', separateur);

  enr.Modele = champs[0];
  enr.LargPix = int16_t(VersEntier(v[1]));
  enr.Micro = champs[2];
  enr.Config = champs[3];
  enr.Obj = float(v[4]);
  enr.Pix = int16_t(VersEntier(v[5]));
  enr.Mic = int16_t(VersEntier(v[6]));
  enr.Focale = focaleTestee ? float(Arrondir(v[7], 2)) : 0.0f;
  return std::nullopt;
}

}  // namespace tg
