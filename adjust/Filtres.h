#pragma once
// The rules of the filters window without its widgets: the gamma table, the
// colour-cast buttons, the checks of the three percentages, the correction by
// a grey reference and the memory of brightness and contrast.
#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>
#include <optional>

namespace tg {

// sldGama, positions 1 to 9: the library's gamma and the figure shown.
double GammaPosition(int position);
int FigureGamma(int position);

// cmdCorrCouleur: the red, green and blue percentages of button 0, 1 or 2,
// mild or strong ("Forte dominante").
std::array<float, 3> CorrectionCouleur(int index, bool forte);

// cmdAjusterRGB: the three boxes, an empty one counting as 0. Without a
// value, `refus` holds the message ("Valeurs numériques uniquement !" or
// "100 ou -100 maximum !").
struct ValeursRVB {
  std::array<float, 3> pourcents{};
  QString refus;
};
ValeursRVB LireValeursRVB(const QStringList& boites);

// cmdCalculerNivGris: from the sampled components and the reference grey R,
// each box 100 - component x 100 / R, rounded, then halved and rounded. A
// reference of 0 gives no values (nullopt): nothing can be neutral against black.
std::optional<std::array<int, 3>> CorrectionParGris(const std::array<int, 3>& composantes, int reference);

// The memory of brightness and contrast: 21 entries, an empty text being a
// free one. It lives as long as the program, not the window.
class MemoireFiltres {
 public:
  static constexpr int kEntrees = 21;
  // The first free entry takes the totals; false when all 21 are taken.
  bool Ajouter(int32_t luminosite, int32_t contraste, int* indice = nullptr);
  bool Libre(int i) const { return luminosite_[size_t(i)].isEmpty(); }
  int32_t Luminosite(int i) const { return luminosite_[size_t(i)].toInt(); }
  int32_t Contraste(int i) const { return contraste_[size_t(i)].toInt(); }
  int Nombre() const;
  void Vider();
  // The lines of comboLumCont at opening: "Filtre n = l et c" for each entry.
  QStringList LignesOuverture() const;
  // The line added by cmdAjouterListe: "filtren = l et c", n being the count
  // of entries; a form unlike the one at opening, kept as it always was.
  static QString LigneAjout(int nombre, int32_t luminosite, int32_t contraste);
  // Line k of the list is the k-th entry in use.
  int EntreeDeLigne(int ligne) const;

 private:
  std::array<QString, kEntrees> luminosite_, contraste_;
};

// The memory of the running program.
MemoireFiltres& MemoireFiltresProgramme();

}  // namespace tg
