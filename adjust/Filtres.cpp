#include "adjust/Filtres.h"

#include <algorithm>

#include "platform/Nombres.h"
#include "platform/Textes.h"

namespace tg {

double GammaPosition(int position) {
  static constexpr double kGamma[9] = {0.6, 0.7, 0.8, 0.9, 1, 1.1, 1.2, 1.3, 1.4};
  return kGamma[std::clamp(position, 1, 9) - 1];
}

int FigureGamma(int position) { return std::clamp(position, 1, 9) - 5; }

std::array<float, 3> CorrectionCouleur(int index, bool forte) {
  const float v = forte ? 10.0f : 3.0f;
  switch (index) {
    case 0:
      return {v, 0, 0};
    case 1:
      return {0, 0, v};
    default:
      return {-v, -v, 0};
  }
}

ValeursRVB LireValeursRVB(const QStringList& boites) {
  ValeursRVB r;
  for (int i = 0; i < 3; ++i) {
    const QString t = i < boites.size() ? boites[i].trimmed() : QString();
    double v = 0;
    if (!t.isEmpty() && !LireNombre(t, v)) {
      r.refus = QStringLiteral("Valeurs numériques uniquement !");
      return r;
    }
    if (v > 100 || v < -100) {
      r.refus = QStringLiteral("100 ou -100 maximum !");
      return r;
    }
    r.pourcents[size_t(i)] = float(v);
  }
  return r;
}

std::optional<std::array<int, 3>> CorrectionParGris(const std::array<int, 3>& c, int reference) {
  if (reference == 0) return std::nullopt;
  std::array<int, 3> r{};
  for (size_t i = 0; i < 3; ++i) {
    const long long v = VersEntier(100.0 - double(c[i]) * 100.0 / reference);
    r[i] = int(VersEntier(double(v) / 2.0));
  }
  return r;
}

bool MemoireFiltres::Ajouter(int32_t luminosite, int32_t contraste, int* indice) {
  for (int i = 0; i < kEntrees; ++i)
    if (Libre(i)) {
      luminosite_[size_t(i)] = QString::number(luminosite);
      contraste_[size_t(i)] = QString::number(contraste);
      if (indice) *indice = i;
      return true;
    }
  return false;
}

int MemoireFiltres::Nombre() const {
  int n = 0;
  for (int i = 0; i < kEntrees; ++i) n += !Libre(i);
  return n;
}

void MemoireFiltres::Vider() {
  luminosite_.fill(QString());
  contraste_.fill(QString());
}

QStringList MemoireFiltres::LignesOuverture() const {
  QStringList l;
  for (int i = 0; i < kEntrees; ++i)
    if (!Libre(i))
      l << QStringLiteral("Filtre %1 = %2 et %3").arg(i + 1).arg(luminosite_[size_t(i)], contraste_[size_t(i)]);
  return l;
}

QString MemoireFiltres::LigneAjout(int nombre, int32_t luminosite, int32_t contraste) {
  return QStringLiteral("filtre%1 = %2 et %3").arg(nombre).arg(luminosite).arg(contraste);
}

int MemoireFiltres::EntreeDeLigne(int ligne) const {
  for (int i = 0; i < kEntrees; ++i)
    if (!Libre(i) && ligne-- == 0) return i;
  return -1;
}

MemoireFiltres& MemoireFiltresProgramme() {
  static MemoireFiltres memoire;
  return memoire;
}

}  // namespace tg
