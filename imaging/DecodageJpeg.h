#pragma once
// A JPEG decoded straight to a smaller size: the inverse DCT at the smallest
// scale (1/8, 1/4, 1/2, else 1) leaving at least twice the output size, then
// Lanczos 3, the rows being resampled on a second thread as the decoder gives
// them. The whole picture is never held: memory is a few dozen rows.
#include <QString>
#include <vector>

struct FIBITMAP;

namespace tg {

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
