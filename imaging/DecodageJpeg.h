#pragma once
// A JPEG decoded straight to a smaller size: the inverse DCT at the smallest
// scale (1/8, 1/4, 1/2, else 1) leaving at least kMargeReduction times the
// output size, then Lanczos 3, the rows being resampled on a second thread
// as the decoder gives them. The whole picture is never held: memory is a
// few dozen rows.
#include <QString>
#include <cmath>
#include <vector>

struct FIBITMAP;

namespace tg {

// How much larger than the output the reduced decode must stay, on each
// axis. Not less than twice: from 1.875 times (a 6000 x 4000 photo to 800 x
// 533 from its 1/4 scale) the DCT's own reduction lets fine detail alias,
// 36 dB from the whole decode on a finely drawn picture where 40 are asked.
inline constexpr double kMargeReduction = 2.0;
// The least size a reduced decode must leave for an output of `sortie` pixels.
inline int MinimumReduit(int sortie) { return int(std::ceil(kMargeReduction * sortie)); }

// A 24-bit FreeImage bitmap of largeur x hauteur, or nullptr with a reason in
// `erreur` (in English, for a detail line). Takes only three-channel JPEGs
// (YCbCr or RGB) larger than the output in both directions; the caller keeps
// another road for the rest. No metadata is attached.
FIBITMAP* DecoderJpegRedimensionne(const QString& chemin, int largeur, int hauteur, QString& erreur);

// Lanczos 3 weights for `sortie` samples from `entree` ones (sortie < entree):
// for each output sample, its first input sample and its weights, summing to 1.
struct PoidsLanczos {
  int premier = 0;
  int debut = 0;  // into Table::poids
  int nombre = 0;
};
struct TablePoids {
  std::vector<PoidsLanczos> echantillons;
  std::vector<float> poids;
  int fenetreMax = 0;  // the most input samples one output sample reads
};
TablePoids CalculerPoidsLanczos(int entree, int sortie);

}  // namespace tg
