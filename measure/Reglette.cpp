#include "measure/Reglette.h"

#include <QStringList>
#include <fftw3.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <functional>
#include <map>
#include <mutex>
#include <type_traits>
#include <utility>

#include "imaging/BibliothequeDynamique.h"
#include "platform/Nombres.h"
#include "platform/Textes.h"

namespace tg {

const QString TexteDivisionRefusee =
    QStringLiteral("Valeur d'une division : un nombre de microns supérieur à 0 (10000 au plus) !");

namespace {

constexpr double kPi = 3.14159265358979323846;

// Bounds of what is looked for, photo pixels: below 5 a graduation is hardly
// two pixels from the next; at least 5 graduations are needed for a period.
constexpr double kPeriodeMin = 5.0;
constexpr int kGraduationsMin = 5;
constexpr int kTuileMax = 256;
constexpr int kTuileMin = 16;
// Cycles across a tile below which a peak is not told from the lighting.
constexpr double kCyclesMin = 4.0;

using Complexe = std::complex<double>;

// ---------------------------------------------------------------- FFTW ----
// FFTW is opened at the first ruling looked for, not at the program's start.
struct FonctionsFftw {
  decltype(&fftwf_alloc_real) alloc_real;
  decltype(&fftwf_alloc_complex) alloc_complex;
  decltype(&fftwf_free) free;
  decltype(&fftwf_destroy_plan) destroy_plan;
  decltype(&fftwf_cleanup) cleanup;
  decltype(&fftwf_plan_dft_r2c_2d) plan_dft_r2c_2d;
  decltype(&fftwf_plan_dft_r2c_1d) plan_dft_r2c_1d;
  decltype(&fftwf_execute_dft_r2c) execute_dft_r2c;
};

bool RemplirFftw(BibliothequeDynamique& b, FonctionsFftw& f, QString& erreur) {
  return b.Lier(f.alloc_real, "fftwf_alloc_real", erreur) && b.Lier(f.alloc_complex, "fftwf_alloc_complex", erreur) &&
         b.Lier(f.free, "fftwf_free", erreur) && b.Lier(f.destroy_plan, "fftwf_destroy_plan", erreur) &&
         b.Lier(f.cleanup, "fftwf_cleanup", erreur) && b.Lier(f.plan_dft_r2c_2d, "fftwf_plan_dft_r2c_2d", erreur) &&
         b.Lier(f.plan_dft_r2c_1d, "fftwf_plan_dft_r2c_1d", erreur) &&
         b.Lier(f.execute_dft_r2c, "fftwf_execute_dft_r2c", erreur);
}

// The functions, or nullptr with the French reason in `erreur`.
const FonctionsFftw* ChargerFftw(QString& erreur) {
  static FonctionsDifferees<FonctionsFftw> table(TG_SONAME_FFTW3F, TG_PAQUET_FFTW3F, RemplirFftw);
  return table.Obtenir(erreur);
}

// Once TrouverReglette has loaded them.
const FonctionsFftw& F() {
  QString erreur;
  return *ChargerFftw(erreur);
}

// The planner is not thread-safe: plans are made once per size under a lock
// and run with the new-array functions, which are. Buffers come from
// fftwf_malloc, so that they have the alignment the plans were made for.
struct TamponReel {
  explicit TamponReel(size_t n) : p(F().alloc_real(n)) {}
  ~TamponReel() { F().free(p); }
  TamponReel(const TamponReel&) = delete;
  TamponReel& operator=(const TamponReel&) = delete;
  float* p;
};
struct TamponComplexe {
  explicit TamponComplexe(size_t n) : p(F().alloc_complex(n)) {}
  ~TamponComplexe() { F().free(p); }
  TamponComplexe(const TamponComplexe&) = delete;
  TamponComplexe& operator=(const TamponComplexe&) = delete;
  fftwf_complex* p;
};

// The plans, kept until the program ends, then destroyed.
struct Plans {
  std::mutex verrou;
  std::map<std::pair<int, int>, fftwf_plan> plans;
  ~Plans() {
    for (auto& [taille, plan] : plans) F().destroy_plan(plan);
    F().cleanup();
  }
};

// hauteur 0: one dimension.
fftwf_plan PlanFFT(int largeur, int hauteur) {
  static Plans tous;
  const std::lock_guard<std::mutex> garde(tous.verrou);
  fftwf_plan& plan = tous.plans[{largeur, hauteur}];
  if (plan == nullptr) {
    const size_t n = size_t(largeur) * size_t(std::max(1, hauteur));
    TamponReel entree(n);
    TamponComplexe sortie(size_t(std::max(1, hauteur)) * size_t(largeur / 2 + 1));
    plan = hauteur > 0 ? F().plan_dft_r2c_2d(hauteur, largeur, entree.p, sortie.p, FFTW_ESTIMATE)
                       : F().plan_dft_r2c_1d(largeur, entree.p, sortie.p, FFTW_ESTIMATE);
  }
  return plan;
}

int Puissance2Inferieure(int n) {
  int p = 1;
  while (p * 2 <= n) p *= 2;
  return p;
}

// -------------------------------------------------------------- Pixels ----
template <FormatPixels F>
inline float GrisDe(const uint8_t* ligne, int x) {
  if constexpr (F == FormatPixels::Gris8) {
    return ligne[x];
  } else {
    constexpr int n = F == FormatPixels::BGR24 ? 3 : 4;
    const uint8_t* q = ligne + n * x;
    return 0.114f * q[0] + 0.587f * q[1] + 0.299f * q[2];
  }
}

template <typename Fonction>
void SelonFormat(FormatPixels f, Fonction&& fonction) {
  switch (f) {
    case FormatPixels::Gris8:
      fonction(std::integral_constant<FormatPixels, FormatPixels::Gris8>{});
      break;
    case FormatPixels::BGR24:
      fonction(std::integral_constant<FormatPixels, FormatPixels::BGR24>{});
      break;
    case FormatPixels::BGRA32:
      fonction(std::integral_constant<FormatPixels, FormatPixels::BGRA32>{});
      break;
  }
}

const uint8_t* Ligne(const VuePixels& v, int y) { return v.pixels + std::ptrdiff_t(y) * v.pas; }

// One level of the pyramid: grey values, each the mean of f x f photo pixels
// (the first level f = 1 or 2, the next ones 4 times the one before);
// pixel (i, j) has its centre at photo (x0 + i f + (f - 1) / 2, y0 + ...).
struct Plan {
  int l = 0, h = 0, f = 1;
  std::vector<float> v;
  const float* ligne(int j) const { return v.data() + size_t(j) * size_t(l); }
};

Plan PremierPlan(const VuePixels& vue, const ZoneReglette& z, int f) {
  Plan p;
  p.f = f;
  p.l = z.largeur / f;
  p.h = z.hauteur / f;
  p.v.assign(size_t(p.l) * size_t(p.h), 0.0f);
  SelonFormat(vue.format, [&](auto format) {
    constexpr FormatPixels F = decltype(format)::value;
    for (int j = 0; j < p.h; ++j) {
      float* sortie = p.v.data() + size_t(j) * size_t(p.l);
      if (f == 1) {
        const uint8_t* ligne = Ligne(vue, z.y + j);
        for (int i = 0; i < p.l; ++i) sortie[i] = GrisDe<F>(ligne, z.x + i);
      } else {
        // Two rows at a time, the only halving used: one pass, no sums
        // carried from row to row.
        const uint8_t* a = Ligne(vue, z.y + 2 * j);
        const uint8_t* b = Ligne(vue, z.y + 2 * j + 1);
        const int x0 = z.x;
        for (int i = 0; i < p.l; ++i)
          sortie[i] = 0.25f * (GrisDe<F>(a, x0 + 2 * i) + GrisDe<F>(a, x0 + 2 * i + 1) + GrisDe<F>(b, x0 + 2 * i) +
                               GrisDe<F>(b, x0 + 2 * i + 1));
      }
    }
  });
  return p;
}

// The next level: means of 4 x 4.
Plan PlanSuivant(const Plan& a) {
  Plan p;
  p.f = a.f * 4;
  p.l = a.l / 4;
  p.h = a.h / 4;
  p.v.assign(size_t(p.l) * size_t(p.h), 0.0f);
  for (int j = 0; j < p.h; ++j) {
    float* sortie = p.v.data() + size_t(j) * size_t(p.l);
    for (int dy = 0; dy < 4; ++dy) {
      const float* e = a.ligne(j * 4 + dy);
      for (int i = 0; i < p.l; ++i) sortie[i] += e[4 * i] + e[4 * i + 1] + e[4 * i + 2] + e[4 * i + 3];
    }
    for (int i = 0; i < p.l; ++i) sortie[i] *= 1.0f / 16.0f;
  }
  return p;
}

// ------------------------------------------------------------ Spectres ----
double Rho(double fx, double fy) { return std::hypot(fx, fy); }
// To the nearest whole number, halves up; inline, unlike lround.
inline int Arrondi(double x) { return int(std::floor(x + 0.5)); }

// Power of a tile's windowed spectrum, the half plane FFTW gives:
// th rows (ky) of tl / 2 + 1 columns (kx). Frequencies in bins.
struct Spectre {
  int tl = 0, th = 0;
  std::vector<float> p;

  float at(int kx, int ky) const {
    if (kx < 0) {
      kx = -kx;
      ky = -ky;
    }
    if (kx > tl / 2 || ky >= th / 2 || ky < -th / 2) return 0;
    if (ky < 0) ky += th;
    return p[size_t(ky) * size_t(tl / 2 + 1) + size_t(kx)];
  }
  float max3(double kx, double ky) const {
    const int x = Arrondi(kx), y = Arrondi(ky);
    float m = 0;
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx) m = std::max(m, at(x + dx, y + dy));
    return m;
  }
  // Energy at radius r bins and beyond, r = 0, 1, ...: both halves of the
  // plane, every bin but the columns kx = 0 and tl / 2 standing for two.
  std::vector<double> EnergiesRadiales() const {
    const int colonnes = tl / 2 + 1;
    const std::vector<uint16_t>& rayons = Rayons(tl, th);
    std::vector<double> e(size_t(std::hypot(tl / 2, th / 2)) + 2, 0.0);
    for (size_t i = 0; i < p.size(); ++i) {
      const int kx = int(i % size_t(colonnes));
      e[rayons[i]] += (kx == 0 || kx == tl / 2) ? p[i] : 2.0f * p[i];
    }
    for (size_t i = e.size() - 1; i-- > 0;) e[i] += e[i + 1];
    return e;
  }
  // The whole radius of every bin of the half plane, for one tile size; and
  // its direction's sector, of 12 over half a turn.
  static const std::vector<uint16_t>& Rayons(int tl, int th) { return Tables(tl, th).first; }
  static const std::vector<uint8_t>& Secteurs(int tl, int th) { return Tables(tl, th).second; }
  static const std::pair<std::vector<uint16_t>, std::vector<uint8_t>>& Tables(int tl, int th) {
    static std::mutex verrou;
    static std::map<std::pair<int, int>, std::pair<std::vector<uint16_t>, std::vector<uint8_t>>> tables;
    const std::lock_guard<std::mutex> garde(verrou);
    auto& t = tables[{tl, th}];
    if (t.first.empty()) {
      const int colonnes = tl / 2 + 1;
      t.first.resize(size_t(th) * size_t(colonnes));
      t.second.resize(size_t(th) * size_t(colonnes));
      for (int r = 0; r < th; ++r) {
        const int ky = r < th / 2 ? r : r - th;
        for (int kx = 0; kx < colonnes; ++kx) {
          const size_t i = size_t(r) * size_t(colonnes) + size_t(kx);
          t.first[i] = uint16_t(std::hypot(double(kx), double(ky)));
          double angle = std::atan2(double(ky), double(kx));
          if (angle < 0) angle += kPi;
          t.second[i] = uint8_t(std::min(11, int(angle / kPi * 12)));
        }
      }
    }
    return t;
  }
  // Energy around the teeth k (fx, fy), k = 1, 2, ..., both halves of the
  // plane: within `rayon` bins along the comb, and 6 across it, where short
  // graduations spread their peaks.
  double EnergiePeigne(double fx, double fy, double rayon) const {
    const double rho = Rho(fx, fy);
    if (!(rho > 0)) return 0;
    const double ux = fx / rho, uy = fy / rho;
    constexpr int travers = 6;
    const int le_long = int(rayon);
    double e = 0;
    for (int k = 1; k <= 32; ++k) {
      const double cx = k * fx, cy = k * fy;
      if (std::abs(cx) > tl / 2 - 1 || std::abs(cy) > th / 2 - 1) break;
      // Bins one apart along the comb and across it; where the two do not
      // fall on the grid's axes a bin may count twice or not at all.
      for (int a = -le_long; a <= le_long; ++a)
        for (int c = -travers; c <= travers; ++c) e += at(Arrondi(cx + a * ux - c * uy), Arrondi(cy + a * uy + c * ux));
    }
    return 2 * e;
  }
};

struct Tuile {
  int x = 0, y = 0;  // in the level's pixels
  Spectre spectre;
  std::vector<double> energies;   // at radius r and beyond, both halves
  // The share of the energy at half the fundamental's radius and beyond that
  // its teeth hold: what lies below cannot belong to its comb (the lighting,
  // the dark band the graduations' feet make).
  double Fraction(double fx, double fy) const {
    const double rho = Rho(fx, fy);
    const double e = energies[std::min(energies.size() - 1, size_t(std::max(2.0, rho / 2)))];
    return e > 0 ? spectre.EnergiePeigne(fx, fy, std::min(2.0, (rho - 1) / 2)) / e : 0;
  }
  bool candidate = false;
  double fx = 0, fy = 0;           // fundamental, bins
  double fraction = 0;             // of the band's energy in its teeth
};

struct Niveau {
  Plan plan;
  int tl = 0, th = 0;
  std::vector<Tuile> tuiles;
};

// Starts of the tiles along one side: side by side, the last against the edge.
std::vector<int> Departs(int cote, int tuile) {
  std::vector<int> d;
  for (int x = 0; x + tuile <= cote; x += tuile) d.push_back(x);
  if (!d.empty() && d.back() + tuile < cote) d.push_back(cote - tuile);
  return d;
}

std::vector<float> Hann(int n) {
  std::vector<float> w(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) w[size_t(i)] = float(0.5 - 0.5 * std::cos(2 * kPi * (i + 0.5) / n));
  return w;
}

// The tile's strongest peak, the fundamental it belongs to (a peak may be a
// harmonic) and the share of the band's energy in that fundamental's teeth;
// a candidate when that fundamental's period is at least pMin (level pixels).
void AnalyserTuile(Tuile& t, double pMin) {
  const Spectre& s = t.spectre;
  const int tl = s.tl, th = s.th, colonnes = tl / 2 + 1;
  t.energies = s.EnergiesRadiales();
  if (!(t.energies[size_t(kCyclesMin)] > 0)) return;
  const double fMax = 1.0 / pMin;
  // The strongest local peaks in each direction (12 sectors of 15 degrees),
  // their power weighted by the radius (the spectrum of a photo falls with
  // it): a line along the axis, the graduations' feet, JPEG's 8-pixel
  // blocks or the lighting may outweigh a ruling's peaks, but each in its own
  // direction.
  struct Pic {
    float p;
    double poids;
    int x, y;
  };
  constexpr int kSecteurs = 12;
  std::array<std::array<Pic, 2>, kSecteurs> meilleurs{};
  const std::vector<uint8_t>& secteurs = Spectre::Secteurs(tl, th);
  // A peak stands well above the mean of the plane.
  const float plancher = float(4 * t.energies[size_t(kCyclesMin)] / (2.0 * double(tl) * th));
  for (int r = 0; r < th; ++r) {
    const int ky = r < th / 2 ? r : r - th;
    const float* ligne = s.p.data() + size_t(r) * size_t(colonnes);
    for (int kx = 0; kx < colonnes; ++kx) {
      if (kx == 0 && ky <= 0) continue;
      const float v = ligne[kx];
      if (v < plancher) continue;
      const double r2 = double(kx) * kx + double(ky) * ky;
      if (r2 < kCyclesMin * kCyclesMin) continue;
      const double poids = v * std::sqrt(r2);
      auto& secteur = meilleurs[secteurs[size_t(r) * size_t(colonnes) + size_t(kx)]];
      if (poids <= secteur[1].poids) continue;
      bool maximum = true;
      for (int dy = -1; dy <= 1 && maximum; ++dy)
        for (int dx = -1; dx <= 1 && maximum; ++dx)
          if ((dx != 0 || dy != 0) && s.at(kx + dx, ky + dy) > v) maximum = false;
      if (!maximum) continue;
      const Pic pic{v, poids, kx, ky};
      if (pic.poids > secteur[0].poids) {
        secteur[1] = secteur[0];
        secteur[0] = pic;
      } else {
        secteur[1] = pic;
      }
    }
  }
  std::vector<Pic> pics;
  for (const auto& secteur : meilleurs)
    for (const Pic& pic : secteur)
      if (pic.p > 0) pics.push_back(pic);
  // The peak's centre between bins: a parabola through the logarithms.
  auto sommet = [](double a, double b, double c) {
    const double d = a - 2 * b + c;
    return d < 0 ? std::clamp(0.5 * (a - c) / d, -0.5, 0.5) : 0.0;
  };
  for (const Pic& pic : pics) {
    if (!(pic.p > 0)) continue;
    const int px = pic.x, py = pic.y;
    const double lc = std::log(double(pic.p));
    const double Fx = px + sommet(std::log(s.at(px - 1, py) + 1e-20), lc, std::log(s.at(px + 1, py) + 1e-20));
    const double Fy = py + sommet(std::log(s.at(px, py - 1) + 1e-20), lc, std::log(s.at(px, py + 1) + 1e-20));
    // A harmonic when the peaks below it, at its fractions, stand out too:
    // each strong beside the peak and above the spectrum midway between
    // them. The weak peaks that long graduations every 5 or 10 make are not
    // taken.
    int rang = 1;
    for (int m = 12; m >= 2; --m) {
      const double gx = Fx / m, gy = Fy / m;
      if (Rho(gx, gy) < kCyclesMin) continue;
      bool harmonique = true;
      for (int k = 1; k < m && harmonique; ++k) {
        const float dent = s.max3(k * gx, k * gy);
        const float milieu =
            std::max(s.max3((k - 0.5) * gx, (k - 0.5) * gy), s.max3((k + 0.5) * gx, (k + 0.5) * gy));
        harmonique = dent >= 0.2f * pic.p && dent >= 3.0f * milieu;
      }
      if (harmonique) {
        rang = m;
        break;
      }
    }
    const double fx = Fx / rang, fy = Fy / rang;
    const double rho = Rho(fx, fy);
    // Finer than the level shows well (a diatom's striae), or too coarse:
    // another level may take it.
    if (std::hypot(fx / tl, fy / th) > fMax || rho < kCyclesMin) continue;
    // Many graduations make a peak as narrow as the tile allows: 3 bins away
    // along the radius it is gone. A band of dark across the tile (the
    // graduations' feet seen from the side) makes broad lobes.
    const double ux = fx / rho, uy = fy / rho;
    const double cote = std::max(s.at(Arrondi(fx + 3 * ux), Arrondi(fy + 3 * uy)),
                                 s.at(Arrondi(fx - 3 * ux), Arrondi(fy - 3 * uy)));
    if (s.max3(fx, fy) < 4 * cote) continue;
    const double fraction = t.Fraction(fx, fy);
    if (fraction > t.fraction) {
      t.fraction = fraction;
      t.fx = fx;
      t.fy = fy;
    }
  }
  t.candidate = t.fraction >= 0.08;
}

// JPEG's 8 x 8 blocks (of `bloc` level pixels) make a grid of peaks at
// multiples of 1 / bloc along both axes, stronger in a flat noisy photo
// than a ruling's harmonics: each such peak, with the bins around it, takes
// the mean of the ring just beyond. A ruling whose harmonic falls there
// keeps the others.
void EffacerBlocsJpeg(Spectre& s, int bloc) {
  if (bloc < 2 || s.tl % bloc || s.th % bloc) return;
  const int px = s.tl / bloc, py = s.th / bloc, colonnes = s.tl / 2 + 1;
  auto ref = [&](int kx, int ky) -> float& {
    if (ky < 0) ky += s.th;
    return s.p[size_t(ky) * size_t(colonnes) + size_t(kx)];
  };
  for (int i = 0; i * px <= s.tl / 2; ++i)
    for (int j = -(bloc / 2); j < bloc / 2 + (bloc % 2); ++j) {
      if (i == 0 && j == 0) continue;
      const int cx = i * px, cy = j * py;
      double anneau = 0;
      int n = 0;
      for (int dy = -2; dy <= 2; ++dy)
        for (int dx = -2; dx <= 2; ++dx)
          if (std::max(std::abs(dx), std::abs(dy)) == 2) {
            anneau += s.at(cx + dx, cy + dy);
            ++n;
          }
      const float v = float(anneau / n);
      for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
          const int kx = cx + dx, ky = cy + dy;
          if (kx < 0 || kx > s.tl / 2 || ky < -s.th / 2 || ky >= s.th / 2) continue;
          ref(kx, ky) = v;
        }
    }
}

Niveau AnalyserNiveau(Plan plan, double pMin) {
  Niveau n;
  n.tl = std::min(kTuileMax, Puissance2Inferieure(plan.l));
  n.th = std::min(kTuileMax, Puissance2Inferieure(plan.h));
  n.plan = std::move(plan);
  const int tl = n.tl, th = n.th;
  const std::vector<float> wx = Hann(tl), wy = Hann(th);
  TamponReel entree(size_t(tl) * size_t(th));
  TamponComplexe sortie(size_t(th) * size_t(tl / 2 + 1));
  const fftwf_plan fft = PlanFFT(tl, th);
  for (int y : Departs(n.plan.h, th)) {
    for (int x : Departs(n.plan.l, tl)) {
      Tuile t;
      t.x = x;
      t.y = y;
      // The tile's mean level is left in: under the Hann window it falls in
      // the bins next to 0, which no peak is looked for in.
      for (int j = 0; j < th; ++j) {
        const float* e = n.plan.ligne(y + j) + x;
        float* d = entree.p + size_t(j) * size_t(tl);
        const float wj = wy[size_t(j)];
        for (int i = 0; i < tl; ++i) d[i] = e[i] * wx[size_t(i)] * wj;
      }
      F().execute_dft_r2c(fft, entree.p, sortie.p);
      t.spectre.tl = tl;
      t.spectre.th = th;
      t.spectre.p.resize(size_t(th) * size_t(tl / 2 + 1));
      for (size_t k = 0; k < t.spectre.p.size(); ++k)
        t.spectre.p[k] = sortie.p[k][0] * sortie.p[k][0] + sortie.p[k][1] * sortie.p[k][1];
      if (8 % n.plan.f == 0) EffacerBlocsJpeg(t.spectre, 8 / n.plan.f);
      AnalyserTuile(t, pMin);
      n.tuiles.push_back(std::move(t));
    }
  }
  return n;
}

// --------------------------------------------------------- Passe -------
// The region's pixels averaged along the supposed graduations, in strips
// along them: one profile across the graduations per strip (bins of one
// source pixel, linear sharing). The strips' phases show how far the supposed
// direction is from the true one; shifted by that and summed, they give the
// profile of the whole ruling.
struct Source {
  const VuePixels* vue = nullptr;  // the photo itself, or
  const Plan* plan = nullptr;      // a level of the pyramid
  int f = 1;                       // photo pixels per source pixel
  int x0 = 0, y0 = 0;              // the zone's corner in the photo
  int l = 0, h = 0;
};

struct Masque {  // the region, in pixels of the level it was chosen on
  int l = 0, h = 0, f = 1;
  std::vector<uint8_t> m;
  std::vector<std::pair<double, double>> coins;  // of its tiles, photo pixels
  std::vector<std::vector<std::pair<int, int>>> plages;  // each row's runs [debut, fin)
  double pixels = 0;
  void Parcourir() {
    plages.assign(size_t(h), {});
    pixels = 0;
    for (int j = 0; j < h; ++j) {
      const uint8_t* ligne = m.data() + size_t(j) * size_t(l);
      for (int i = 0; i < l;) {
        while (i < l && !ligne[i]) ++i;
        const int debut = i;
        while (i < l && ligne[i]) ++i;
        if (debut < i) {
          plages[size_t(j)].emplace_back(debut, i);
          pixels += i - debut;
        }
      }
    }
  }
};

// A profile across the graduations.
struct Profil {
  std::vector<double> d;  // grey without its slow changes
  int b0 = 0, b1 = 0;     // bins of the support, b1 excluded
  double poids = 0;       // mean weight of a bin of the support
};

struct Passe {
  double a = 0;       // direction across the graduations, radians, y down
  double smin = 0;    // photo pixels at bin 0
  double pas = 1;     // photo pixels per bin
  double tmin = 0;    // photo pixels at the first strip's edge
  double hb = 1;      // strip height, photo pixels
  int nb = 0, ns = 0;
  std::vector<float> S, W;  // ns rows of nb bins: sums of grey, of weights
  double t(int k) const { return tmin + (k + 0.5) * hb; }
  // Each strip's profile as last prepared, with the median's half-width.
  mutable int demi = -1;
  mutable std::vector<Profil> profils;
  std::vector<uint8_t> pleins;  // ns rows of nb: the bin holds the strip's whole height
};

Passe Projeter(const Source& src, const Masque& masque, double a, double hauteurBande) {
  Passe r;
  r.a = a;
  const double c = std::cos(a), sn = std::sin(a);
  const double f = src.f;
  auto X = [&](double i) { return src.x0 + i * f + (f - 1) / 2; };
  auto Y = [&](double j) { return src.y0 + j * f + (f - 1) / 2; };
  double smin = 1e300, smax = -1e300, tmin = 1e300, tmax = -1e300;
  for (const auto& [x, y] : masque.coins) {
    const double s = x * c + y * sn, t = -x * sn + y * c;
    smin = std::min(smin, s);
    smax = std::max(smax, s);
    tmin = std::min(tmin, t);
    tmax = std::max(tmax, t);
  }
  r.pas = f;
  r.smin = smin - 2 * f;
  r.nb = int((smax - r.smin) / f) + 4;
  r.tmin = tmin - 1;
  r.hb = std::max(hauteurBande, (tmax - tmin + 2) / 128);
  r.ns = int((tmax - r.tmin) / r.hb) + 1;
  r.S.assign(size_t(r.nb) * size_t(r.ns), 0.0f);
  r.W.assign(size_t(r.nb) * size_t(r.ns), 0.0f);

  const int rapport = masque.f / src.f;  // source pixels per mask pixel
  // A million pixels at most: beyond, every n-th row (or column) along
  // the graduations, which keeps every position across them.
  const double pixels = masque.pixels * rapport * rapport;
  const int saut = std::clamp(int(std::ceil(pixels / 1e6)), 1, std::max(1, int(r.hb / (4 * f))));
  const bool sautLignes = std::abs(c) >= std::abs(sn);
  const int pasJ = sautLignes ? saut : 1, pasI = sautLignes ? 1 : saut;
  std::vector<float> valeurs(size_t(src.l));
  const double invPas = 1 / r.pas, invHb = 1 / r.hb;
  auto traiterLigne = [&](int j, int i0, int i1, const float* v) {
    const double Yj = Y(j);
    double s = X(i0) * c + Yj * sn, t = -X(i0) * sn + Yj * c;
    const double ds = pasI * f * c, dt = -pasI * f * sn;
    for (int i = i0; i < i1; i += pasI, s += ds, t += dt) {
      const float val = v[i];
      const double u = (s - r.smin) * invPas;
      const int b = std::clamp(int(u), 0, r.nb - 2);
      const float fr = float(u - b);
      const int k = std::clamp(int((t - r.tmin) * invHb), 0, r.ns - 1);
      float* S = r.S.data() + size_t(k) * size_t(r.nb) + size_t(b);
      float* W = r.W.data() + size_t(k) * size_t(r.nb) + size_t(b);
      S[0] += val * (1 - fr);
      S[1] += val * fr;
      W[0] += 1 - fr;
      W[1] += fr;
    }
  };
  for (int j = 0; j < src.h; j += pasJ) {
    const int mj = j / rapport;
    if (mj >= masque.h) break;
    for (const auto& [debut, fin] : masque.plages[size_t(mj)]) {
      const int i0 = debut * rapport, i1 = std::min(src.l, fin * rapport);
      if (src.plan != nullptr) {
        traiterLigne(j, i0, i1, src.plan->ligne(j));
        continue;
      }
      const uint8_t* ligne = Ligne(*src.vue, src.y0 + j);
      SelonFormat(src.vue->format, [&](auto format) {
        constexpr FormatPixels F = decltype(format)::value;
        for (int i = i0; i < i1; i += pasI) valeurs[size_t(i)] = GrisDe<F>(ligne, src.x0 + i);
      });
      traiterLigne(j, i0, i1, valeurs.data());
    }
  }
  // A strip's full bins: its weight, over 9 bins (the pixels' grid, and
  // the rows left out, make it wave from bin to bin), at least 0.8 of most.
  r.pleins.assign(size_t(r.ns) * size_t(r.nb), 0);
  std::vector<float> lisse(size_t(r.nb)), poids;
  for (int k = 0; k < r.ns; ++k) {
    const float* w = r.W.data() + size_t(k) * size_t(r.nb);
    float somme = 0;
    for (int b = 0; b < std::min(r.nb, 4); ++b) somme += w[b];
    poids.clear();
    for (int b = 0; b < r.nb; ++b) {
      if (b + 4 < r.nb) somme += w[b + 4];
      if (b - 5 >= 0) somme -= w[b - 5];
      lisse[size_t(b)] = somme;
      if (somme > 0) poids.push_back(somme);
    }
    if (poids.empty()) continue;
    const size_t rang = poids.size() * 9 / 10;
    std::nth_element(poids.begin(), poids.begin() + std::ptrdiff_t(rang), poids.end());
    const float seuil = 0.8f * poids[rang];
    for (int b = 0; b < r.nb; ++b) r.pleins[size_t(k) * size_t(r.nb) + size_t(b)] = w[b] > 0 && lisse[size_t(b)] >= seuil;
  }
  return r;
}

// ------------------------------------------------------ Profil ----------
// A profile from sums of grey and of weights: the bins not full (`pleins`,
// else below a fifth of most bins' weight) left out and filled from their
// neighbours, the lighting and what lies under the ruling removed. A strip's
// bin that the region's edge cuts holds only part of the strip's height, and
// the ends of graduations or a line along the axis there would move the
// graduation it crosses.
Profil Preparer(const std::vector<double>& S, const std::vector<double>& W, double periodeBins,
                const uint8_t* pleins = nullptr) {
  Profil p;
  const int nb = int(S.size());
  std::vector<double> poids;
  for (double w : W)
    if (w > 0) poids.push_back(w);
  if (poids.empty()) return p;
  const size_t rang = poids.size() * 9 / 10;
  std::nth_element(poids.begin(), poids.begin() + std::ptrdiff_t(rang), poids.end());
  const double wMin = 0.2 * poids[rang];
  auto plein = [&](int b) { return pleins ? pleins[b] != 0 : W[size_t(b)] >= wMin; };
  p.b0 = 0;
  while (p.b0 < nb && !plein(p.b0)) ++p.b0;
  p.b1 = nb;
  while (p.b1 > p.b0 && !plein(p.b1 - 1)) --p.b1;
  if (p.b1 <= p.b0) return p;
  std::vector<double> v(size_t(nb), 0.0);
  for (int b = p.b0; b < p.b1; ++b) {
    v[size_t(b)] = plein(b) ? S[size_t(b)] / W[size_t(b)] : NAN;
    p.poids += W[size_t(b)];
  }
  p.poids /= p.b1 - p.b0;
  for (int b = p.b0; b < p.b1; ++b) {
    if (!std::isnan(v[size_t(b)])) continue;
    int g = b - 1, d = b + 1;
    while (g >= p.b0 && std::isnan(v[size_t(g)])) --g;
    while (d < p.b1 && std::isnan(v[size_t(d)])) ++d;
    const double vg = g >= p.b0 ? v[size_t(g)] : (d < p.b1 ? v[size_t(d)] : 0);
    const double vd = d < p.b1 ? v[size_t(d)] : vg;
    v[size_t(b)] = g >= p.b0 && d < p.b1 ? vg + (vd - vg) * (b - g) / double(d - g) : vg;
  }
  // The median over one period: the graduations, thin, are the few values of
  // a period; the median follows the ground and keeps a step (the end of a
  // line along the axis) a step, which a mean would turn into a bump that
  // moves the graduations' phase.
  // Counted in a histogram of sixteenths of a grey level, whose median moves
  // by a few steps from one bin to the next.
  const int demi = std::max(1, int(std::lround(periodeBins / 2)));
  constexpr int kNiveaux = 256 * 16;
  std::vector<int> histogramme(size_t(kNiveaux), 0);
  auto niveau = [](double x) { return std::clamp(int(x * 16), 0, kNiveaux - 1); };
  int m = 0, dessous = 0, n = 0;  // median's level, values below it, in the window
  std::vector<double> fond(size_t(nb), 0.0);
  int g = p.b0, d = p.b0;  // window [g, d)
  for (int b = p.b0; b < p.b1; ++b) {
    const int g2 = std::max(p.b0, b - demi), d2 = std::min(p.b1, b + demi + 1);
    for (; d < d2; ++d, ++n) {
      const int i = niveau(v[size_t(d)]);
      ++histogramme[size_t(i)];
      if (i < m) ++dessous;
    }
    for (; g < g2; ++g, --n) {
      const int i = niveau(v[size_t(g)]);
      --histogramme[size_t(i)];
      if (i < m) --dessous;
    }
    const int k = (n - 1) / 2;
    while (dessous > k) dessous -= histogramme[size_t(--m)];
    while (dessous + histogramme[size_t(m)] <= k) dessous += histogramme[size_t(m++)];
    fond[size_t(b)] = (m + 0.5) / 16;
  }
  p.d.assign(size_t(nb), 0.0);
  for (int b = p.b0; b < p.b1; ++b) p.d[size_t(b)] = v[size_t(b)] - fond[size_t(b)];
  return p;
}

// Strip k's sums, shifted by `decalage` bins (linear interpolation).
void Bande(const Passe& r, int k, double decalage, std::vector<double>& S, std::vector<double>& W) {
  S.assign(size_t(r.nb), 0.0);
  W.assign(size_t(r.nb), 0.0);
  const float* s = r.S.data() + size_t(k) * size_t(r.nb);
  const float* w = r.W.data() + size_t(k) * size_t(r.nb);
  const int e = int(std::floor(decalage));
  const double fr = decalage - e;
  for (int b = 0; b < r.nb; ++b) {
    const int g = b + e, d = b + e + 1;
    if (g >= 0 && g < r.nb) {
      S[size_t(b)] += (1 - fr) * s[g];
      W[size_t(b)] += (1 - fr) * w[g];
    }
    if (d >= 0 && d < r.nb) {
      S[size_t(b)] += fr * s[d];
      W[size_t(b)] += fr * w[d];
    }
  }
}

// The direction's correction from the strips' phases: a graduation at
// s0 + t tan(d) shows as a phase falling with t; the direction is then a - d.
// Also the strips where the graduations stand out.
struct Inclinaison {
  double correction = 0;  // d, radians
  std::vector<bool> bandes;
  double t0 = 0, t1 = 0, tc = 0;  // photo pixels: extent and centre of those strips
  bool valide = false;
};

// The strips' profiles, prepared with a median over about `fenetre` bins;
// kept while that width stays.
const std::vector<Profil>& ProfilsBandes(const Passe& r, double fenetre) {
  const int demi = std::max(1, int(std::lround(fenetre / 2)));
  if (demi != r.demi) {
    r.demi = demi;
    r.profils.clear();
    std::vector<double> S, W;
    for (int k = 0; k < r.ns; ++k) {
      Bande(r, k, 0, S, W);
      r.profils.push_back(Preparer(S, W, fenetre, r.pleins.data() + size_t(k) * size_t(r.nb)));
    }
  }
  return r.profils;
}

// `fenetre`: the period, photo pixels, that sets the median of the strips'
// profiles (0: `periode`).
Inclinaison MesurerInclinaison(const Passe& r, double periode, double fenetre = 0) {
  Inclinaison inc;
  const int ns = r.ns;
  const double pBins = periode / r.pas;
  const std::vector<Profil>& profils = ProfilsBandes(r, (fenetre > 0 ? fenetre : periode) / r.pas);
  std::vector<Complexe> Z(size_t(ns), 0.0);
  std::vector<double> amp(size_t(ns), 0.0), poids(size_t(ns), 0.0);
  double ampMax = 0;
  int kMax = -1;
  for (int k = 0; k < ns; ++k) {
    const Profil& p = profils[size_t(k)];
    const int n = p.b1 - p.b0;
    if (n < 2 * pBins) continue;
    // Hann over the strip's own support, so that its ends (where the region
    // cuts a line along the axis) do not count.
    Complexe z = 0;
    const Complexe pas = std::polar(1.0, -2 * kPi / pBins), pasH = std::polar(1.0, 2 * kPi / n);
    Complexe ph = std::polar(1.0, -2 * kPi * (r.smin / r.pas + p.b0) / pBins), hc = std::polar(1.0, kPi / n);
    for (int b = p.b0; b < p.b1; ++b, ph *= pas, hc *= pasH) z += (0.5 - 0.5 * hc.real()) * p.d[size_t(b)] * ph;
    Z[size_t(k)] = z;
    amp[size_t(k)] = std::abs(z) / (0.5 * n);  // grey levels
    poids[size_t(k)] = std::norm(z) / std::max(1.0, p.poids);
    if (amp[size_t(k)] > ampMax) {
      ampMax = amp[size_t(k)];
      kMax = k;
    }
  }
  if (kMax < 0) return inc;
  // Phases unwrapped from the strongest strip outwards.
  std::vector<double> phase(size_t(ns), 0.0);
  inc.bandes.assign(size_t(ns), false);
  const double seuil = 0.25 * ampMax;
  phase[size_t(kMax)] = std::arg(Z[size_t(kMax)]);
  inc.bandes[size_t(kMax)] = true;
  for (int sens : {-1, 1}) {
    double precedente = phase[size_t(kMax)];
    for (int k = kMax + sens; k >= 0 && k < ns; k += sens) {
      if (amp[size_t(k)] < seuil) continue;
      double p = std::arg(Z[size_t(k)]);
      p += 2 * kPi * std::round((precedente - p) / (2 * kPi));
      phase[size_t(k)] = p;
      inc.bandes[size_t(k)] = true;
      precedente = p;
    }
  }
  double sw = 0, st = 0, sp = 0, stt = 0, stp = 0;
  inc.t0 = 1e300;
  inc.t1 = -1e300;
  int nombre = 0;
  for (int k = 0; k < ns; ++k) {
    if (!inc.bandes[size_t(k)]) continue;
    const double w = poids[size_t(k)], t = r.t(k);
    sw += w;
    st += w * t;
    sp += w * phase[size_t(k)];
    stt += w * t * t;
    stp += w * t * phase[size_t(k)];
    inc.t0 = std::min(inc.t0, t - r.hb / 2);
    inc.t1 = std::max(inc.t1, t + r.hb / 2);
    ++nombre;
  }
  inc.tc = sw > 0 ? st / sw : 0;
  inc.valide = true;
  const double det = sw * stt - st * st;
  if (nombre < 2 || !(det > 0)) return inc;
  const double pente = (sw * stp - st * sp) / det;  // radians of phase per pixel of t
  // Z = sum v exp(-2 pi i s / p): a graduation moving by +e in s turns the
  // phase by -2 pi e / p.
  inc.correction = std::atan(-pente * periode / (2 * kPi));
  return inc;
}

// The whole ruling's profile: the strips where graduations stand out, each
// shifted by tan(d) (t - tc), their full bins summed: the profile at
// direction a - d, a graduation where it crosses t = tc.
Profil ProfilTotal(const Passe& r, const Inclinaison& inc, double pBins) {
  std::vector<double> S(size_t(r.nb), 0.0), W(size_t(r.nb), 0.0), s, w;
  for (int k = 0; k < r.ns; ++k) {
    if (!inc.bandes[size_t(k)]) continue;
    const double decalage = std::tan(inc.correction) * (r.t(k) - inc.tc) / r.pas;
    Bande(r, k, decalage, s, w);
    const uint8_t* pleins = r.pleins.data() + size_t(k) * size_t(r.nb);
    const int entier = Arrondi(decalage);
    for (int b = 0; b < r.nb; ++b) {
      const int source = b + entier;
      if (source < 0 || source >= r.nb || !pleins[source]) continue;
      S[size_t(b)] += s[size_t(b)];
      W[size_t(b)] += w[size_t(b)];
    }
  }
  return Preparer(S, W, pBins);
}

// Sum over k = 1..K of |X(k f)|^2 for the profile under a Hann taper; f in
// cycles per bin.
double Harmoniques(const std::vector<double>& x, int b0, int b1, double f, int K) {
  double somme = 0;
  for (int k = 1; k <= K; ++k) {
    const Complexe pas = std::polar(1.0, -2 * kPi * k * f);
    Complexe ph = std::polar(1.0, -2 * kPi * k * f * b0), acc = 0;
    for (int b = b0; b < b1; ++b, ph *= pas) acc += x[size_t(b)] * ph;
    somme += std::norm(acc);
  }
  return somme;
}

double SectionDoree(const std::function<double(double)>& g, double a, double b) {
  const double r = (std::sqrt(5.0) - 1) / 2;
  double c = b - r * (b - a), d = a + r * (b - a);
  double gc = g(c), gd = g(d);
  for (int i = 0; i < 40 && b - a > 1e-7 * (std::abs(a) + std::abs(b)); ++i) {
    if (gc > gd) {
      b = d;
      d = c;
      gd = gc;
      c = b - r * (b - a);
      gc = g(c);
    } else {
      a = c;
      c = d;
      gc = gd;
      d = a + r * (b - a);
      gd = g(d);
    }
  }
  return (a + b) / 2;
}

struct Spectral {
  double f = 0;         // cycles per bin
  double regularite = 0;  // share of the profile's energy in its harmonics
  bool trouve = false;
};

// The frequency of the ruling in the profile near fc (cycles per bin): the
// peak of a zero-padded spectrum, then the maximum of the summed power of
// its first harmonics (6 at most, fewer while the direction is being found).
Spectral FrequenceProfil(const Profil& p, double fc, int harmoniquesMax = 6) {
  Spectral r;
  const int n = p.b1 - p.b0;
  if (n < 16) return r;
  std::vector<double> x(p.d.size(), 0.0);
  double energie = 0;
  for (int b = p.b0; b < p.b1; ++b) {
    const double h = 0.5 - 0.5 * std::cos(2 * kPi * (b - p.b0 + 0.5) / n);
    x[size_t(b)] = p.d[size_t(b)] * h;
    energie += x[size_t(b)] * x[size_t(b)];
  }
  if (!(energie > 0)) return r;
  int N = 1;
  while (N < 8 * n) N *= 2;
  N = std::max(N, 4096);
  TamponReel entree(static_cast<size_t>(N));
  TamponComplexe sortie(static_cast<size_t>(N / 2 + 1));
  std::fill(entree.p, entree.p + N, 0.0f);
  for (int b = p.b0; b < p.b1; ++b) entree.p[b - p.b0] = float(x[size_t(b)]);
  F().execute_dft_r2c(PlanFFT(N, 0), entree.p, sortie.p);
  auto P = [&](double f) {
    const int k = Arrondi(f * N);
    if (k < 0 || k > N / 2) return 0.0;
    return double(sortie.p[k][0]) * sortie.p[k][0] + double(sortie.p[k][1]) * sortie.p[k][1];
  };
  // The strongest peak within 15 % of fc.
  int kBest = -1;
  double pBest = 0;
  for (int k = std::max(1, int(fc / 1.15 * N)); k <= std::min(N / 2 - 1, int(fc * 1.15 * N) + 1); ++k) {
    const double v = P(double(k) / N);
    if (v > pBest) {
      pBest = v;
      kBest = k;
    }
  }
  if (kBest < 0) return r;
  double F = double(kBest) / N;
  const double lobe = 2.0 / n;  // Hann main lobe, cycles per bin
  // Harmonics added one by one, each search within the lobe of the last.
  const int K = std::max(1, std::min(harmoniquesMax, int(0.45 / F)));
  double f = SectionDoree([&](double g) { return Harmoniques(x, p.b0, p.b1, g, 1); }, F - lobe / 2, F + lobe / 2);
  for (int k : {2, 4, K}) {
    if (k > K) break;
    const double d = lobe / k;
    f = SectionDoree([&](double g) { return Harmoniques(x, p.b0, p.b1, g, k); }, f - d / 2, f + d / 2);
  }
  // Share of the tapered profile's energy in the teeth: a sinusoid under a
  // Hann taper gives |X|^2 = n E / 3 at each of its two frequencies.
  r.regularite = std::min(1.0, 3 * Harmoniques(x, p.b0, p.b1, f, K) / (double(n) * energie));
  r.f = f;
  r.trouve = true;
  return r;
}

// ------------------------------------------------ Graduations ----------
// The mean graduation: the profile folded over one period, in M phase bins,
// signed so that the graduation is its maximum, at `phase` periods.
struct Modele {
  std::vector<double> m;
  double phase = 0, signe = 1;
  // At u periods from a graduation.
  double T(double u) const {
    const int M = int(m.size());
    double q = (u + phase) * M - 0.5;
    q -= std::floor(q / M) * M;
    const int i = int(q);
    const double fr = q - i;
    return m[size_t(i % M)] * (1 - fr) + m[size_t((i + 1) % M)] * fr;
  }
};

// `indice`: +1 light graduations, -1 dark, from elsewhere, for a mean
// graduation too round to tell (a blurred fine ruling is a sine).
Modele Replier(const Profil& p, double periode, double indice) {
  Modele r;
  const int M = std::max(16, int(std::lround(periode * 4)));
  std::vector<double>& modele = r.m;
  modele.assign(size_t(M), 0.0);
  std::vector<double> nombre(size_t(M), 0.0);
  for (int b = p.b0; b < p.b1; ++b) {
    double ph = b / periode;
    ph -= std::floor(ph);
    const int k = std::min(M - 1, int(ph * M));
    modele[size_t(k)] += p.d[size_t(b)];
    nombre[size_t(k)] += 1;
  }
  for (int k = 0; k < M; ++k) modele[size_t(k)] = nombre[size_t(k)] > 0 ? modele[size_t(k)] / nombre[size_t(k)] : 0;
  // Empty phase bins (a period close to a whole number of bins) between
  // their neighbours.
  for (int k = 0; k < M; ++k) {
    if (nombre[size_t(k)] > 0) continue;
    int g = k, d = k;
    for (int i = 1; i < M; ++i)
      if (nombre[size_t((k - i + M) % M)] > 0) {
        g = (k - i + M) % M;
        break;
      }
    for (int i = 1; i < M; ++i)
      if (nombre[size_t((k + i) % M)] > 0) {
        d = (k + i) % M;
        break;
      }
    const int dg = (k - g + M) % M, dd = (d - k + M) % M;
    modele[size_t(k)] = dg + dd > 0 ? (modele[size_t(g)] * dd + modele[size_t(d)] * dg) / (dg + dd) : 0;
  }
  // Dark graduations on a light ground or light on dark: the graduation is
  // the narrow extreme of the mean period, the side farther from the median.
  std::vector<double> trie = modele;
  std::nth_element(trie.begin(), trie.begin() + M / 2, trie.end());
  const double mediane = trie[size_t(M / 2)];
  const double hi = *std::max_element(modele.begin(), modele.end());
  const double lo = *std::min_element(modele.begin(), modele.end());
  const double haut = hi - mediane, bas = mediane - lo;
  r.signe = haut > 1.3 * bas ? 1.0 : bas > 1.3 * haut ? -1.0 : indice;
  double moyenne = 0;
  for (double& m : modele) moyenne += m;
  moyenne /= M;
  for (double& m : modele) m = r.signe * (m - moyenne);
  // The graduation's centre: where the profile's fundamental peaks, which
  // for a symmetric graduation is its middle (a wide graduation's top is
  // flat, a fold at a period of whole pixels leaves gaps between phases).
  Complexe z = 0;
  const Complexe pas = std::polar(1.0, -2 * kPi / periode);
  Complexe ph = std::polar(1.0, -2 * kPi * p.b0 / periode);
  for (int b = p.b0; b < p.b1; ++b, ph *= pas) z += p.d[size_t(b)] * ph;
  double phase = -std::arg(r.signe * z) / (2 * kPi);
  r.phase = phase - std::floor(phase);
  return r;
}

struct Local {
  double s = 0;          // bins
  double ncc = 0;        // correlation with the mean graduation
  double amplitude = 0;  // contrast, in the mean graduation's
};

// The graduation near sj (bins), within a quarter period: the best
// correlation with the mean graduation over one period, between steps by a
// parabola. Empty when that period leaves the support or the best lies at
// the edge of the search.
std::optional<Local> CentreLocal(const Profil& p, const Modele& m, double sj, double periode) {
  const int g = int(std::ceil(sj - periode / 2)), d = int(std::floor(sj + periode / 2));
  if (g < p.b0 || d >= p.b1) return std::nullopt;
  const double pasTau = std::min(0.25, periode / 16);
  const int nTau = int(periode / 4 / pasTau);
  std::vector<double> C(size_t(2 * nTau + 1));
  double ee = 0;
  for (int b = g; b <= d; ++b) ee += p.d[size_t(b)] * p.d[size_t(b)];
  int iBest = -1;
  double cBest = -1e300;
  Local l;
  for (int it = -nTau; it <= nTau; ++it) {
    const double tau = it * pasTau;
    double cc = 0, mm = 0;
    for (int b = g; b <= d; ++b) {
      const double t = m.T((b - sj - tau) / periode);
      cc += m.signe * p.d[size_t(b)] * t;
      mm += t * t;
    }
    C[size_t(it + nTau)] = cc;
    if (cc > cBest) {
      cBest = cc;
      iBest = it;
      l.ncc = ee > 0 && mm > 0 ? cc / std::sqrt(ee * mm) : 0;
      l.amplitude = mm > 0 ? cc / mm : 0;
    }
  }
  if (iBest == -nTau || iBest == nTau) return std::nullopt;
  const double a = C[size_t(iBest + nTau - 1)], b = C[size_t(iBest + nTau)], e = C[size_t(iBest + nTau + 1)];
  const double den = a - 2 * b + e;
  const double dt = den < 0 ? std::clamp(0.5 * (a - e) / den, -0.5, 0.5) : 0;
  l.s = sj + (iBest + dt) * pasTau;
  return l;
}

struct Centres {
  Modele modele;
  std::vector<int> rang;
  std::vector<double> s;  // bins
};

// Each graduation's centre near where the period puts it.
Centres TrouverCentres(const Profil& p, double periode, double indice) {
  Centres c;
  c.modele = Replier(p, periode, indice);
  const double phase = c.modele.phase;
  // A period away from the support's ends, where the ground's median is
  // taken over half a window.
  const int j0 = int(std::ceil((p.b0 + periode) / periode - phase));
  const int j1 = int(std::floor((p.b1 - 1 - periode) / periode - phase));
  std::vector<double> amplitudes;
  for (int j = j0; j <= j1; ++j) {
    const auto l = CentreLocal(p, c.modele, (j + phase) * periode, periode);
    if (!l || l->ncc < 0.5) continue;
    c.rang.push_back(j);
    c.s.push_back(l->s);
    amplitudes.push_back(l->amplitude);
  }
  // Faint look-alikes of a graduation (where the ruling has ended, a grain of
  // the specimen) out: below a third of the usual graduation's contrast.
  if (!amplitudes.empty()) {
    std::vector<double> tri = amplitudes;
    std::nth_element(tri.begin(), tri.begin() + std::ptrdiff_t(tri.size() / 2), tri.end());
    const double seuil = tri[tri.size() / 2] / 3;
    Centres gardes;
    gardes.modele = c.modele;
    for (size_t i = 0; i < amplitudes.size(); ++i)
      if (amplitudes[i] >= seuil) {
        gardes.rang.push_back(c.rang[i]);
        gardes.s.push_back(c.s[i]);
      }
    return gardes;
  }
  return c;
}

struct Ajustement {
  double pente = 0, origine = 0, ecartType = 0, erreurPente = 0;
  std::vector<bool> garde;
  int gardes = 0;
};

// s = origine + pente * rang, least squares, the graduations far from the
// line left out until none is (a specimen over some of them).
Ajustement AjusterDroite(const Centres& c, double periode) {
  Ajustement a;
  const size_t n = c.s.size();
  a.garde.assign(n, true);
  for (int iteration = 0; iteration < 20; ++iteration) {
    double s0 = 0, sx = 0, sy = 0, sxx = 0, sxy = 0;
    for (size_t i = 0; i < n; ++i) {
      if (!a.garde[i]) continue;
      const double x = c.rang[i], y = c.s[i];
      s0 += 1;
      sx += x;
      sy += y;
      sxx += x * x;
      sxy += x * y;
    }
    const double d = s0 * sxx - sx * sx;
    if (s0 < 3 || !(d > 0)) {
      a.gardes = int(s0);
      return a;
    }
    a.pente = (s0 * sxy - sx * sy) / d;
    a.origine = (sy - a.pente * sx) / s0;
    std::vector<double> residus;
    for (size_t i = 0; i < n; ++i)
      if (a.garde[i]) residus.push_back(std::abs(c.s[i] - a.origine - a.pente * c.rang[i]));
    std::nth_element(residus.begin(), residus.begin() + residus.size() / 2, residus.end());
    const double mad = 1.4826 * residus[residus.size() / 2];
    const double seuil = std::max({3 * mad, 0.02 * periode, 0.05});
    bool change = false;
    for (size_t i = 0; i < n; ++i) {
      const bool g = std::abs(c.s[i] - a.origine - a.pente * c.rang[i]) <= seuil;
      if (g != a.garde[i]) change = true;
      a.garde[i] = g;
    }
    if (!change) break;
  }
  double s0 = 0, sr = 0, mx = 0;
  for (size_t i = 0; i < n; ++i)
    if (a.garde[i]) {
      s0 += 1;
      mx += c.rang[i];
    }
  mx /= std::max(1.0, s0);
  double sxx = 0;
  for (size_t i = 0; i < n; ++i)
    if (a.garde[i]) {
      const double e = c.s[i] - a.origine - a.pente * c.rang[i];
      sr += e * e;
      sxx += (c.rang[i] - mx) * (c.rang[i] - mx);
    }
  a.gardes = int(s0);
  a.ecartType = s0 > 2 ? std::sqrt(sr / (s0 - 2)) : 0;
  a.erreurPente = sxx > 0 ? a.ecartType / std::sqrt(sxx) : 0;
  return a;
}

// The direction's last correction, tan, from each graduation on its own:
// its places in the strips against t give its slant beyond tan(d); the
// graduations' slants, those that stray from the others (under the edge of
// a specimen, through a number) left out, are averaged. A strip's phase
// mixes all graduations, and a few crossed by a specimen's edge turn it.
// A graduation's place in a strip is the phase of the fundamental under a
// Hann window of two periods around it: its neighbours, at whole periods,
// add no phase, and unlike a correlation peak between samples it does not
// stick to the pixels.
std::optional<double> PenteGraduations(const Passe& r, const Inclinaison& bandes, const Centres& c,
                                       const std::vector<bool>& garde, double q, double tanD) {
  const std::vector<Profil>& profils = ProfilsBandes(r, q);
  struct Point {
    size_t i;
    double dt, o, a;
  };
  std::vector<Point> points;
  for (size_t i = 0; i < c.s.size(); ++i) {
    if (!garde[i]) continue;
    for (int k = 0; k < r.ns; ++k) {
      if (!bandes.bandes[size_t(k)]) continue;
      const Profil& p = profils[size_t(k)];
      const double dt = r.t(k) - bandes.tc;
      const double attendu = c.s[i] + tanD * dt / r.pas;
      const int g = int(std::ceil(attendu - q)), d = int(std::floor(attendu + q));
      if (g < p.b0 || d >= p.b1) continue;
      Complexe z = 0;
      for (int b = g; b <= d; ++b) {
        const double u = (b - attendu) / q;
        const double h = std::cos(kPi * u / 2);
        z += h * h * c.modele.signe * p.d[size_t(b)] * std::polar(1.0, -2 * kPi * u);
      }
      points.push_back({i, dt, -std::arg(z) * q / (2 * kPi), std::abs(z)});
    }
  }
  if (points.empty()) return std::nullopt;
  // Places where the graduation hardly shows (its end, a dark cell) out.
  std::vector<double> tri;
  for (const Point& pt : points) tri.push_back(pt.a);
  std::nth_element(tri.begin(), tri.begin() + std::ptrdiff_t(tri.size() / 2), tri.end());
  const double aMin = 0.25 * tri[tri.size() / 2];
  std::vector<double> pentes;
  for (size_t debut = 0; debut < points.size();) {
    size_t fin = debut;
    double n = 0, st = 0, so = 0, stt = 0, sto = 0;
    for (; fin < points.size() && points[fin].i == points[debut].i; ++fin) {
      const Point& pt = points[fin];
      if (pt.a < aMin) continue;
      n += 1;
      st += pt.dt;
      so += pt.o;
      stt += pt.dt * pt.dt;
      sto += pt.dt * pt.o;
    }
    const double det = n * stt - st * st;
    if (n >= 2 && det > 1e-9 * n * n) pentes.push_back((n * sto - st * so) / det);
    debut = fin;
  }
  if (pentes.size() < size_t(kGraduationsMin)) return std::nullopt;
  tri = pentes;
  std::nth_element(tri.begin(), tri.begin() + std::ptrdiff_t(tri.size() / 2), tri.end());
  const double mediane = tri[tri.size() / 2];
  for (double& x : tri) x = std::abs(x - mediane);
  std::nth_element(tri.begin(), tri.begin() + std::ptrdiff_t(tri.size() / 2), tri.end());
  const double ecart = 3 * 1.4826 * tri[tri.size() / 2];
  double somme = 0, nombre = 0;
  for (double x : pentes)
    if (std::abs(x - mediane) <= ecart) {
      somme += x;
      nombre += 1;
    }
  return (nombre > 0 ? somme / nombre : mediane) * r.pas;  // bins per pixel of t, to pixels
}

// +1 when the graduations are lighter than the slide around them (dark
// field), -1 when darker: the mean grey of the strips they cross against the
// median of the region's other strips.
double Polarite(const Passe& r, const std::vector<bool>& bandes) {
  double somme = 0, nombre = 0;
  std::vector<double> autres;
  for (int k = 0; k < r.ns; ++k) {
    double S = 0, W = 0;
    for (int b = 0; b < r.nb; ++b) {
      S += r.S[size_t(k) * size_t(r.nb) + size_t(b)];
      W += r.W[size_t(k) * size_t(r.nb) + size_t(b)];
    }
    if (!(W > 0)) continue;
    if (bandes[size_t(k)]) {
      somme += S / W;
      nombre += 1;
    } else {
      autres.push_back(S / W);
    }
  }
  if (autres.empty() || nombre == 0) return -1;
  std::nth_element(autres.begin(), autres.begin() + std::ptrdiff_t(autres.size() / 2), autres.end());
  return somme / nombre > autres[autres.size() / 2] ? 1 : -1;
}

// A lattice at period q (bins) stands out in the profile's spectrum: its
// fundamental at least 3 times the median amplitude between half and one and
// a half times its frequency. Most guesses fail this, and the graduations
// need not be looked for one by one.
bool Saillant(const Profil& p, double q) {
  const int n = p.b1 - p.b0;
  if (n < 2 * q) return false;
  auto amplitude = [&](double f) {
    Complexe z = 0;
    const Complexe pas = std::polar(1.0, -2 * kPi * f), pasH = std::polar(1.0, 2 * kPi / n);
    Complexe ph = std::polar(1.0, -2 * kPi * f * p.b0), h = std::polar(1.0, kPi / n);
    for (int b = p.b0; b < p.b1; ++b, ph *= pas, h *= pasH) z += (0.5 - 0.5 * h.real()) * p.d[size_t(b)] * ph;
    return std::abs(z);
  };
  const double f0 = 1 / q, pic = amplitude(f0);
  std::vector<double> autour;
  for (int k = -8; k <= 8; ++k)
    if (k != 0 && std::abs(k) > 1) autour.push_back(amplitude(f0 * (1 + k / 16.0)));
  std::nth_element(autour.begin(), autour.begin() + std::ptrdiff_t(autour.size() / 2), autour.end());
  return pic >= 3 * autour[autour.size() / 2];
}

// How alike the graduations of every other place, and of every third, are
// to all of them: the least correlation of the mean graduation of each class
// with the mean of all. At a harmonic of the true period one class holds
// the ground between graduations; long graduations every 5 or 10 only
// change the depth.
double Semblables(const Profil& p, const Centres& c, const Ajustement& aj, double q) {
  const int M = std::max(8, int(std::lround(2 * q)));
  auto valeur = [&](double b) {
    const int i = int(std::floor(b));
    if (i < p.b0 || i + 1 >= p.b1) return 0.0;
    const double fr = b - i;
    return p.d[size_t(i)] * (1 - fr) + p.d[size_t(i) + 1] * fr;
  };
  double pire = 1;
  for (int k : {2, 3}) {
    std::vector<std::vector<double>> modeles(size_t(k), std::vector<double>(size_t(M), 0.0));
    std::vector<int> nombres(size_t(k), 0);
    std::vector<double> tous(size_t(M), 0.0);
    for (size_t i = 0; i < c.s.size(); ++i) {
      if (!aj.garde[i]) continue;
      const int r = ((c.rang[i] % k) + k) % k;
      const double centre = aj.origine + aj.pente * c.rang[i];
      for (int m = 0; m < M; ++m) {
        const double v = valeur(centre + ((m + 0.5) / M - 0.5) * q);
        modeles[size_t(r)][size_t(m)] += v;
        tous[size_t(m)] += v;
      }
      ++nombres[size_t(r)];
    }
    auto centrer = [](std::vector<double>& v) {
      double moyenne = 0;
      for (double x : v) moyenne += x;
      moyenne /= double(v.size());
      for (double& x : v) x -= moyenne;
    };
    centrer(tous);
    for (int r = 0; r < k; ++r) {
      if (nombres[size_t(r)] < 2) return 0;
      centrer(modeles[size_t(r)]);
      double xy = 0, xx = 0, yy = 0;
      for (int m = 0; m < M; ++m) {
        xy += modeles[size_t(r)][size_t(m)] * tous[size_t(m)];
        xx += modeles[size_t(r)][size_t(m)] * modeles[size_t(r)][size_t(m)];
        yy += tous[size_t(m)] * tous[size_t(m)];
      }
      pire = std::min(pire, xx > 0 && yy > 0 ? xy / std::sqrt(xx * yy) : 0.0);
    }
  }
  return pire;
}

const QString kAucune = QStringLiteral(
    "Aucune réglette n'a été trouvée sur cette image : pas de graduations régulières.\n"
    "Tracez un rectangle autour de la réglette du micromètre, ou pointez deux graduations.");

}  // namespace

ResultatReglette TrouverReglette(const VuePixels& image, const std::optional<ZoneReglette>& zoneDemandee) {
  ResultatReglette resultat;
  if (image.pixels == nullptr || image.largeur <= 0 || image.hauteur <= 0) {
    resultat.refus = QStringLiteral("Aucune image à étalonner.");
    return resultat;
  }
  if (QString erreur; ChargerFftw(erreur) == nullptr) {
    resultat.refus = erreur;
    return resultat;
  }
  ZoneReglette z{0, 0, image.largeur, image.hauteur};
  if (zoneDemandee) {
    z = *zoneDemandee;
    if (z.x < 0 || z.y < 0 || z.largeur <= 0 || z.hauteur <= 0 || z.x + z.largeur > image.largeur ||
        z.y + z.hauteur > image.hauteur) {
      resultat.refus = QStringLiteral("La zone sort de l'image (%1 x %2 pixels).").arg(image.largeur).arg(image.hauteur);
      return resultat;
    }
  }
  if (z.largeur < kTuileMin || z.hauteur < kTuileMin) {
    resultat.refus = QStringLiteral("La zone est trop petite : au moins %1 pixels de côté.").arg(kTuileMin);
    return resultat;
  }

  // The pyramid: the first level at the photo's size up to 7 megapixels,
  // else halved (graduations 5 pixels apart still two and a half apart);
  // the next ones each 4 times smaller.
  const int d0 = double(z.largeur) * z.hauteur > 7e6 ? 2 : 1;
  std::vector<Niveau> niveaux;
  {
    Plan plan = PremierPlan(image, z, d0);
    while (plan.l >= kTuileMin && plan.h >= kTuileMin) {
      Plan suivant = plan.l >= 4 * kTuileMin && plan.h >= 4 * kTuileMin ? PlanSuivant(plan) : Plan{};
      const double pMin = niveaux.empty() ? std::max(2.5, kPeriodeMin / d0) : 3.0;
      niveaux.push_back(AnalyserNiveau(std::move(plan), pMin));
      plan = std::move(suivant);
    }
  }

  // The candidate tiles grouped by direction and period; the group whose
  // tiles, on every level, hold most of their energy in its teeth wins.
  struct Candidat {
    int niveau;
    size_t tuile;
    double a, p, rho, poids;  // radians (y down, [0, pi)), photo pixels
  };
  std::vector<Candidat> candidats;
  for (size_t n = 0; n < niveaux.size(); ++n) {
    const Niveau& nv = niveaux[n];
    for (size_t i = 0; i < nv.tuiles.size(); ++i) {
      const Tuile& t = nv.tuiles[i];
      if (!t.candidate) continue;
      const double gx = t.fx / nv.tl, gy = t.fy / nv.th;  // cycles per level pixel
      double a = std::atan2(gy, gx);
      if (a < 0) a += kPi;
      if (a >= kPi) a -= kPi;
      candidats.push_back({int(n), i, a, nv.plan.f / std::hypot(gx, gy), Rho(t.fx, t.fy), t.fraction});
    }
  }
  if (candidats.empty()) {
    resultat.refus = kAucune;
    return resultat;
  }
  auto ecartAngle = [](double a, double b) {
    double d = std::fmod(std::abs(a - b), kPi);
    return std::min(d, kPi - d);
  };
  auto proches = [&](const Candidat& g, const Candidat& c) {
    const double tolA = std::clamp(1.0 / g.rho, 3 * kPi / 180, 10 * kPi / 180);
    const double tolP = std::clamp(0.5 / g.rho, 0.02, 0.1);
    return ecartAngle(g.a, c.a) <= tolA && std::abs(c.p / g.p - 1) <= tolP;
  };
  // Groups by score, each seeded by one tile with those near it; the best
  // four tried in turn, since a texture may outscore a faint ruling before
  // the profile refuses it.
  std::vector<std::pair<double, size_t>> groupes;
  for (size_t g = 0; g < candidats.size(); ++g) {
    double score = 0;
    for (const Candidat& c : candidats)
      if (proches(candidats[g], c)) score += c.poids;
    groupes.emplace_back(score, g);
  }
  std::sort(groupes.begin(), groupes.end(), [](const auto& x, const auto& y) { return x.first > y.first; });

  auto analyser = [&](double a0, double p0, int niveauGroupe) -> std::optional<Reglette> {
    // The region: on the finest level where the period shows at least 4
    // cycles a tile, the tiles whose teeth, at that period, hold a good share.
    size_t nr = 0;
    for (; nr < niveaux.size(); ++nr) {
      const Niveau& nv = niveaux[nr];
      const double pl = p0 / nv.plan.f;
      if (pl >= 2.5 && Rho(std::cos(a0) * nv.tl / pl, std::sin(a0) * nv.th / pl) >= kCyclesMin) break;
    }
    if (nr == niveaux.size()) nr = size_t(niveauGroupe);
    const Niveau& nv = niveaux[nr];
    Masque masque;
    masque.l = nv.plan.l;
    masque.h = nv.plan.h;
    masque.f = nv.plan.f;
    masque.m.assign(size_t(masque.l) * size_t(masque.h), 0);
    {
      const double pl = p0 / nv.plan.f;
      const double fx = std::cos(a0) * nv.tl / pl, fy = std::sin(a0) * nv.th / pl;
      std::vector<double> fractions;
      for (const Tuile& t : nv.tuiles)
        fractions.push_back(t.Fraction(fx, fy));
      const double fMax = *std::max_element(fractions.begin(), fractions.end());
      // With the tiles next to them, so that the region's edge cuts no
      // graduation that these tiles hold only in part.
      std::vector<bool> pris(nv.tuiles.size(), false);
      for (size_t i = 0; i < nv.tuiles.size(); ++i) {
        if (fractions[i] < std::max(0.06, 0.25 * fMax)) continue;
        const Tuile& t = nv.tuiles[i];
        for (size_t k = 0; k < nv.tuiles.size(); ++k)
          if (std::abs(nv.tuiles[k].x - t.x) <= nv.tl && std::abs(nv.tuiles[k].y - t.y) <= nv.th) pris[k] = true;
      }
      for (size_t i = 0; i < nv.tuiles.size(); ++i) {
        if (!pris[i]) continue;
        const Tuile& t = nv.tuiles[i];
        for (int j = t.y; j < t.y + nv.th; ++j)
          std::fill_n(masque.m.begin() + std::ptrdiff_t(j) * masque.l + t.x, nv.tl, uint8_t(1));
        for (int cy : {t.y, t.y + nv.th})
          for (int cx : {t.x, t.x + nv.tl})
            masque.coins.emplace_back(z.x + double(cx) * nv.plan.f - 0.5, z.y + double(cy) * nv.plan.f - 0.5);
      }
    }
    if (masque.coins.empty()) return std::nullopt;
    masque.Parcourir();

    // The profile from the photo itself, or from the first level when it is
    // halved and the graduations are far enough apart there.
    Source src;
    src.x0 = z.x;
    src.y0 = z.y;
    if (d0 > 1 && p0 / d0 >= 6) {
      src.plan = &niveaux[0].plan;
      src.f = d0;
      src.l = niveaux[0].plan.l;
      src.h = niveaux[0].plan.h;
    } else {
      src.vue = &image;
      src.f = 1;
      src.l = z.largeur;
      src.h = z.hauteur;
    }
    // Strips along the graduations half a period high (4 to 12 pixels), so
    // that a direction wrong by 10 degrees still moves a graduation by less
    // than half a period from one strip to the next, and graduations as short
    // as 2 periods still cross a few. The strips' phases are taken at the period of the
    // whole profile, which a small error of direction hardly changes: at a
    // wrong period they would depend on where each strip begins and ends.
    // Where graduations end inside a strip, its centre is not theirs, and the
    // correction falls short by a share of itself: another pass at the
    // corrected direction when it turned by more than 0.1 degree.
    double a = a0, periode = p0;
    Passe passe;
    Inclinaison inc;
    Spectral spectral;
    Profil profil;
    auto orienter = [&]() {
      // The strips' median over the period found so far, kept while the
      // direction is turned: the strips need not be prepared again.
      const double fenetre = periode;
      for (int tour = 0; tour < 3; ++tour) {
        passe = Projeter(src, masque, a, std::max(4.0 * src.f, std::min(periode / 2, 12.0 * src.f)));
        inc = Inclinaison{};
        inc.bandes.assign(size_t(passe.ns), true);
        for (int essai = 0; essai < 6; ++essai) {
          profil = ProfilTotal(passe, inc, periode / src.f);
          spectral = FrequenceProfil(profil, src.f / periode, 2);
          if (!spectral.trouve) return false;
          const double avant = periode;
          periode = src.f / spectral.f;
          const Inclinaison nouvelle = MesurerInclinaison(passe, periode, fenetre);
          if (!nouvelle.valide) return false;
          const double dd = nouvelle.correction - inc.correction;
          inc = nouvelle;
          if (std::abs(dd) < 0.003 * kPi / 180 && std::abs(periode / avant - 1) < 1e-5) break;
        }
        if (std::abs(inc.correction) < 0.1 * kPi / 180 || tour == 2) break;
        a -= inc.correction;
      }
      profil = ProfilTotal(passe, inc, periode / src.f);
      spectral = FrequenceProfil(profil, src.f / periode);
      return spectral.trouve;
    };
    if (!orienter()) {
      return std::nullopt;
    }

    // The graduations at a period q (bins): found, kept by the straight line,
    // and how regular they are.
    struct Essai {
      double q = 0;
      Centres centres;
      Ajustement aj;
      int rangMin = 0, rangMax = 0;
      double part = 0;  // kept among the places from the first kept to the last
      double semblables = 0;
      Inclinaison bandes;  // the strips where the graduations stand out
      bool bon = false;
    };
    auto essayer = [&](double q) {
      Essai e;
      e.q = q;
      // The strips where graduations at that period stand out (not the
      // numbers every 10 when q is the graduations').
      Inclinaison bandes = MesurerInclinaison(passe, q * src.f, periode);
      if (!bandes.valide) return e;
      bandes.correction = inc.correction;
      bandes.tc = inc.tc;
      e.bandes = bandes;
      const Profil profil = ProfilTotal(passe, bandes, q);
      if (!Saillant(profil, q)) return e;
      e.centres = TrouverCentres(profil, q, Polarite(passe, bandes.bandes));
      e.aj = AjusterDroite(e.centres, q);
      if (e.aj.gardes < kGraduationsMin) return e;
      e.rangMin = 1 << 30;
      e.rangMax = -(1 << 30);
      for (size_t i = 0; i < e.centres.s.size(); ++i)
        if (e.aj.garde[i]) {
          e.rangMin = std::min(e.rangMin, e.centres.rang[i]);
          e.rangMax = std::max(e.rangMax, e.centres.rang[i]);
        }
      e.part = double(e.aj.gardes) / (e.rangMax - e.rangMin + 1);
      e.semblables = Semblables(profil, e.centres, e.aj, q);
      // Graduations a ruling places within 3 % of a period (0.2 pixel for the
      // finest); look-alikes in a texture stray far more.
      e.bon = e.part >= 0.6 && e.aj.ecartType <= std::max(0.02 * q, 0.2 / src.f) && e.semblables >= 0.7;
      return e;
    };
    // The finest lattice whose places nearly all hold a graduation. The
    // period found so far may be that of the long graduations, or of the
    // numbers every 10, when blur has faded the others' peak; at a harmonic
    // of thin graduations every other place is empty.
    Essai choix;
    {
      const double P = 1.0 / spectral.f;
      std::vector<double> essais;
      for (int m = 10; m >= 1; --m) essais.push_back(P / m);
      for (int m = 2; m <= 4; ++m) essais.push_back(P * m);
      for (double q : essais) {
        if (q * src.f < kPeriodeMin || q < 2.5) continue;
        choix = essayer(q);
        if (choix.bon) break;
      }
      if (choix.bon && std::abs(choix.q / P - 1) > 0.01) {
        periode = choix.q * src.f;
        choix.bon = orienter() && (choix = essayer(1.0 / spectral.f)).bon;
      }
    }
    if (!choix.bon) {
      return std::nullopt;
    }
    double aFinal = a - inc.correction;
    if (const auto pente = PenteGraduations(passe, choix.bandes, choix.centres, choix.aj.garde, choix.q,
                                            std::tan(inc.correction)))
      aFinal = a - std::atan(std::tan(inc.correction) + *pente);
    const double pSpectral = 1.0 / spectral.f;  // bins
    const Ajustement& aj = choix.aj;
    const Centres& centres = choix.centres;
    Reglette r;
    // Graduations far apart are placed one by one better than the spectrum
    // places its peak; close ones are too few pixels wide for that.
    const bool parCentres = pSpectral * src.f >= 12;
    r.periode = (parCentres ? aj.pente : pSpectral) * src.f;
    // The fit's standard error, or half the gap between the two ways when it
    // is wider: blur and the pixels' grid move the two differently.
    r.incertitude = std::max(aj.erreurPente, std::abs(aj.pente - pSpectral) / 2) * src.f;
    double deg = std::fmod(-aFinal * 180 / kPi, 180.0);
    if (deg <= -90) deg += 180;
    if (deg > 90) deg -= 180;
    r.angle = deg;
    r.divisions = choix.rangMax - choix.rangMin;
    // Share of the places holding a graduation, their straightness, the share
    // of the profile's energy in the ruling's harmonics.
    const double limite = std::max(0.02 * choix.q, 0.2 / src.f);
    r.confiance = std::clamp(choix.part, 0.0, 1.0) * std::clamp(1 - aj.ecartType / limite, 0.0, 1.0) *
                  std::clamp(spectral.regularite / 0.3, 0.0, 1.0);
    // Below, too little of what makes a ruling: a photo without one rather.
    if (r.confiance < 0.3) return std::nullopt;
    // Segments over the graduations used, across the strips where they stand
    // out: a graduation at s (direction a) where it crosses t = tc, along the
    // direction aFinal.
    const double c = std::cos(a), sn = std::sin(a);
    const double lx = -std::sin(aFinal), ly = std::cos(aFinal);
    for (size_t i = 0; i < centres.s.size(); ++i) {
      if (!aj.garde[i]) continue;
      const double s = passe.smin + centres.s[i] * passe.pas;
      const double x = s * c - inc.tc * sn, y = s * sn + inc.tc * c;
      Graduation g;
      g.x1 = x + lx * (inc.t0 - inc.tc);
      g.y1 = y + ly * (inc.t0 - inc.tc);
      g.x2 = x + lx * (inc.t1 - inc.tc);
      g.y2 = y + ly * (inc.t1 - inc.tc);
      g.rang = centres.rang[i] - choix.rangMin;
      r.graduations.push_back(g);
    }
    return r;
  };

  std::vector<size_t> essayes;
  for (const auto& [score, g] : groupes) {
    bool deja = false;
    for (size_t e : essayes) deja = deja || proches(candidats[e], candidats[g]);
    if (deja) continue;
    if (essayes.size() == 4) break;
    essayes.push_back(g);
    // Direction and period of the group, the tiles with most cycles counting most.
    double cx = 0, cy = 0, sf = 0, sw = 0;
    for (const Candidat& c : candidats) {
      if (!proches(candidats[g], c)) continue;
      const double w = c.poids * c.rho * c.rho;
      cx += w * std::cos(2 * c.a);
      cy += w * std::sin(2 * c.a);
      sf += w / c.p;
      sw += w;
    }
    double a0 = std::atan2(cy, cx) / 2;
    if (auto r = analyser(a0, sw / sf, candidats[g].niveau)) {
      resultat.reglette = std::move(r);
      return resultat;
    }
  }
  resultat.refus = kAucune;
  return resultat;
}

double PixelsPour100(const Reglette& r, double division) { return r.periode * 100.0 / division; }
double IncertitudePour100(const Reglette& r, double division) { return r.incertitude * 100.0 / division; }

LongueurTable LongueurPourTable(const Reglette& r, double division) {
  LongueurTable l;
  const double parMicron = r.periode / division;
  for (int microns = 10000; microns >= 1; microns /= 10) {
    const double pixels = parMicron * microns;
    if (pixels < 14999.5) {
      l.microns = microns;
      l.pixels = int(VersEntier(pixels));
      return l;
    }
  }
  l.microns = 1;
  l.pixels = int(VersEntier(parMicron));
  return l;
}

QString TexteMesure(double valeur, double incertitude, const QString& separateur) {
  int decimales = 2;
  if (incertitude > 0) decimales = std::clamp(1 - int(std::floor(std::log10(incertitude))), 0, 6);
  auto texte = [&](double v) {
    const double p = std::pow(10.0, decimales);
    // Rounded first, so that no "-0" is written.
    return QString::number(std::round(v * p) / p + 0.0, 'f', decimales).replace(u'.', separateur);
  };
  return QStringLiteral("%1 (± %2)").arg(texte(valeur), texte(incertitude));
}

QString TexteReglette(const Reglette& r, double division, const QString& separateur) {
  const QStringList m = TexteMesure(PixelsPour100(r, division), IncertitudePour100(r, division), separateur)
                            .split(u' ');
  return QStringLiteral("%1 pixels pour 100 µm %2").arg(m.value(0), m.mid(1).join(u' '));
}

std::optional<double> LireDivision(const QString& texte) {
  double v = 0;
  if (!LireNombre(texte, v) || !(v > 0) || v > 10000) return std::nullopt;
  return v;
}

}  // namespace tg
