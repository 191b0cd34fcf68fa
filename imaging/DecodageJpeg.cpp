#include "imaging/DecodageJpeg.h"

#include <FreeImage.h>
#include <jpeglib.h>

#include <QFile>
#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <csetjmp>
#include <cstdio>
#include <mutex>
#include <thread>

namespace tg {

namespace {

double Lanczos3(double x) {
  x = std::fabs(x);
  if (x >= 3) return 0;
  if (x < 1e-9) return 1;
  const double px = M_PI * x;
  return 3 * std::sin(px) * std::sin(px / 3) / (px * px);
}

// Four floats, the fourth unused: one pixel, resampled in one operation.
typedef float Pixel4 __attribute__((vector_size(16)));

struct ErreurJpeg {
  jpeg_error_mgr mgr;
  std::jmp_buf saut;
  char message[JMSG_LENGTH_MAX];
};

void SortieErreur(j_common_ptr c) {
  auto* e = reinterpret_cast<ErreurJpeg*>(c->err);
  (*c->err->format_message)(c, e->message);
  std::longjmp(e->saut, 1);
}

// Warnings (corrupt data the decoder goes past) stay off the terminal, as
// with the other decoder; a file cut short was refused before.
void SortieMessage(j_common_ptr) {}

// The rows the decoder gives, handed to the resampling thread.
struct Tampon {
  std::mutex verrou;
  std::condition_variable signal;
  int produites = 0;   // rows decoded
  int consommees = 0;  // rows resampled horizontally, their slots free again
  bool abandon = false;
};

class Reechantillonneur {
 public:
  Reechantillonneur(int entreeL, int entreeH, int sortieL, int sortieH, FIBITMAP* sortie)
      : entreeL_(entreeL), sortieL_(sortieL), sortieH_(sortieH), sortie_(sortie),
        horizontal_(CalculerPoidsLanczos(entreeL, sortieL)), vertical_(CalculerPoidsLanczos(entreeH, sortieH)),
        anneau_(size_t(vertical_.fenetreMax + 1)), ligne_(size_t(entreeL)) {
    for (auto& l : anneau_) l.resize(size_t(sortieL));
  }

  // One decoded row (RGB bytes) in order; output rows leave as soon as
  // their last input row has come.
  void Ajouter(const uint8_t* rgb) {
    for (int x = 0; x < entreeL_; ++x, rgb += 3) ligne_[size_t(x)] = Pixel4{float(rgb[0]), float(rgb[1]), float(rgb[2]), 0};
    std::vector<Pixel4>& h = anneau_[size_t(recues_) % anneau_.size()];
    const float* poids = horizontal_.poids.data();
    for (int x = 0; x < sortieL_; ++x) {
      const PoidsLanczos& p = horizontal_.echantillons[size_t(x)];
      const Pixel4* source = ligne_.data() + p.premier;
      const float* w = poids + p.debut;
      // Four sums in turn: one chain of additions would wait on each other.
      Pixel4 a{0, 0, 0, 0}, b{0, 0, 0, 0}, c{0, 0, 0, 0}, d{0, 0, 0, 0};
      int k = 0;
      for (; k + 4 <= p.nombre; k += 4) {
        a += w[k] * source[k];
        b += w[k + 1] * source[k + 1];
        c += w[k + 2] * source[k + 2];
        d += w[k + 3] * source[k + 3];
      }
      for (; k < p.nombre; ++k) a += w[k] * source[k];
      h[size_t(x)] = (a + b) + (c + d);
    }
    ++recues_;
    while (suivante_ < sortieH_) {
      const PoidsLanczos& p = vertical_.echantillons[size_t(suivante_)];
      if (p.premier + p.nombre > recues_) break;
      Emettre(p);
      ++suivante_;
    }
  }

  bool Complet() const { return suivante_ == sortieH_; }

 private:
  void Emettre(const PoidsLanczos& p) {
    somme_.assign(size_t(sortieL_), Pixel4{0, 0, 0, 0});
    const float* w = vertical_.poids.data() + p.debut;
    for (int k = 0; k < p.nombre; ++k) {
      const Pixel4* rang = anneau_[size_t(p.premier + k) % anneau_.size()].data();
      const float wk = w[k];
      Pixel4* s = somme_.data();
      for (int x = 0; x < sortieL_; ++x) s[x] += wk * rang[x];
    }
    // FreeImage keeps rows bottom up.
    BYTE* d = FreeImage_GetScanLine(sortie_, sortieH_ - 1 - suivante_);
    for (int x = 0; x < sortieL_; ++x, d += 3) {
      const Pixel4 v = somme_[size_t(x)];
      d[FI_RGBA_RED] = Octet(v[0]);
      d[FI_RGBA_GREEN] = Octet(v[1]);
      d[FI_RGBA_BLUE] = Octet(v[2]);
    }
  }

  static BYTE Octet(float v) { return BYTE(int(std::clamp(v, 0.0f, 255.0f) + 0.5f)); }

  const int entreeL_, sortieL_, sortieH_;
  FIBITMAP* sortie_;
  const TablePoids horizontal_, vertical_;
  std::vector<std::vector<Pixel4>> anneau_;  // horizontal results, the vertical window
  std::vector<Pixel4> ligne_, somme_;
  int recues_ = 0, suivante_ = 0;
};

constexpr int RangsTampon = 64;
constexpr int RangsLot = 16;

}  // namespace

TablePoids CalculerPoidsLanczos(int entree, int sortie) {
  TablePoids t;
  const double echelle = double(sortie) / double(entree);
  const double largeur = 3.0 / echelle;  // the filter's reach, in input samples
  t.echantillons.resize(size_t(sortie));
  for (int u = 0; u < sortie; ++u) {
    const double centre = (u + 0.5) / echelle;
    const int gauche = std::max(0, int(centre - largeur + 0.5));
    const int droite = std::min(int(centre + largeur + 0.5), entree);
    PoidsLanczos& p = t.echantillons[size_t(u)];
    p.premier = gauche;
    p.debut = int(t.poids.size());
    double total = 0;
    std::vector<double> w;
    for (int i = gauche; i < droite; ++i) {
      w.push_back(Lanczos3(echelle * (i + 0.5 - centre)));
      total += w.back();
    }
    // Zero weights at the ends cost reads for nothing.
    size_t debut = 0, fin = w.size();
    while (fin > debut + 1 && w[fin - 1] == 0) --fin;
    while (debut + 1 < fin && w[debut] == 0) ++debut;
    p.premier += int(debut);
    for (size_t i = debut; i < fin; ++i) t.poids.push_back(float(total != 0 ? w[i] / total : 0));
    p.nombre = int(fin - debut);
    t.fenetreMax = std::max(t.fenetreMax, p.nombre);
  }
  return t;
}

FIBITMAP* DecoderJpegRedimensionne(const QString& chemin, int largeur, int hauteur, QString& erreur) {
  erreur.clear();
  if (largeur < 1 || hauteur < 1) {
    erreur = QStringLiteral("Invalid output size");
    return nullptr;
  }
  FILE* f = std::fopen(QFile::encodeName(chemin).constData(), "rb");
  if (f == nullptr) {
    erreur = QStringLiteral("File could not be opened");
    return nullptr;
  }
  // Everything the jump may cross is plain data or lives outside it.
  jpeg_decompress_struct c{};
  ErreurJpeg e{};
  c.err = jpeg_std_error(&e.mgr);
  e.mgr.error_exit = SortieErreur;
  e.mgr.output_message = SortieMessage;
  // Set after the jump point: volatile, so that the jump sees their values.
  FIBITMAP* volatile sortie = nullptr;
  Reechantillonneur* volatile reechantillonneur = nullptr;
  Tampon tampon;
  std::vector<uint8_t> rangs;
  std::thread travailleur;
  auto arreter = [&] {
    if (travailleur.joinable()) {
      {
        std::lock_guard<std::mutex> v(tampon.verrou);
        tampon.abandon = true;
      }
      tampon.signal.notify_all();
      travailleur.join();
    }
  };

  if (setjmp(e.saut) != 0) {
    arreter();
    delete reechantillonneur;
    if (sortie != nullptr) FreeImage_Unload(sortie);
    jpeg_destroy_decompress(&c);
    std::fclose(f);
    erreur = QString::fromLatin1(e.message);
    return nullptr;
  }
  jpeg_create_decompress(&c);
  jpeg_stdio_src(&c, f);
  jpeg_read_header(&c, TRUE);
  bool accepte = c.num_components == 3 && (c.jpeg_color_space == JCS_YCbCr || c.jpeg_color_space == JCS_RGB);
  if (accepte) {
    c.out_color_space = JCS_RGB;
    c.scale_num = 1;
    c.scale_denom = 1;
    for (unsigned d : {8u, 4u, 2u}) {
      if (int(c.image_width / d) >= MinimumReduit(largeur) && int(c.image_height / d) >= MinimumReduit(hauteur)) {
        c.scale_denom = d;
        break;
      }
    }
    jpeg_calc_output_dimensions(&c);
    accepte = int(c.output_width) > largeur && int(c.output_height) > hauteur;
  }
  if (!accepte) {
    jpeg_destroy_decompress(&c);
    std::fclose(f);
    erreur = QStringLiteral("Not a three-channel JPEG larger than the output");
    return nullptr;
  }
  sortie = FreeImage_Allocate(largeur, hauteur, 24, FI_RGBA_RED_MASK, FI_RGBA_GREEN_MASK, FI_RGBA_BLUE_MASK);
  if (sortie == nullptr) {
    jpeg_destroy_decompress(&c);
    std::fclose(f);
    erreur = QStringLiteral("Not enough memory");
    return nullptr;
  }
  jpeg_start_decompress(&c);
  const int entreeL = int(c.output_width), entreeH = int(c.output_height);
  const size_t pas = size_t(entreeL) * 3;
  reechantillonneur = new Reechantillonneur(entreeL, entreeH, largeur, hauteur, sortie);
  rangs.resize(pas * RangsTampon);
  travailleur = std::thread([&] {
    std::unique_lock<std::mutex> v(tampon.verrou);
    for (;;) {
      tampon.signal.wait(v, [&] { return tampon.abandon || tampon.produites > tampon.consommees; });
      if (tampon.abandon) return;
      const int debut = tampon.consommees, fin = tampon.produites;
      v.unlock();
      for (int r = debut; r < fin; ++r) reechantillonneur->Ajouter(rangs.data() + pas * size_t(r % RangsTampon));
      v.lock();
      tampon.consommees = fin;
      tampon.signal.notify_all();
      if (fin == entreeH) return;
    }
  });
  // Rows go to the thread by lots: one hand-over for every 16 rows, not for
  // every row the decoder gives.
  JSAMPROW lignes[RangsTampon];
  while (int(c.output_scanline) < entreeH) {
    const int debut = int(c.output_scanline);
    const int lot = std::min(RangsLot, entreeH - debut);
    {
      // Room for the lot: the thread frees slots as it resamples them.
      std::unique_lock<std::mutex> v(tampon.verrou);
      tampon.signal.wait(v, [&] { return tampon.produites + lot - tampon.consommees <= RangsTampon; });
    }
    int lues = 0;
    while (lues < lot) {
      const int n = std::min<int>(int(c.rec_outbuf_height), lot - lues);
      for (int i = 0; i < n; ++i) lignes[i] = rangs.data() + pas * size_t((debut + lues + i) % RangsTampon);
      const int recues = int(jpeg_read_scanlines(&c, lignes, JDIMENSION(n)));
      if (recues == 0) break;
      lues += recues;
    }
    {
      std::lock_guard<std::mutex> v(tampon.verrou);
      tampon.produites = debut + lues;
    }
    tampon.signal.notify_all();
    if (lues < lot) break;  // a suspending source gives no more: left to the checks below
  }
  if (int(c.output_scanline) < entreeH) arreter();
  else travailleur.join();
  const bool complet = reechantillonneur->Complet();
  delete reechantillonneur;
  jpeg_finish_decompress(&c);
  jpeg_destroy_decompress(&c);
  std::fclose(f);
  if (!complet) {
    FreeImage_Unload(sortie);
    erreur = QStringLiteral("Resampling incomplete");
    return nullptr;
  }
  return sortie;
}

}  // namespace tg
