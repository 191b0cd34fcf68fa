#include "platform/Scanner.h"

#include <sane/sane.h>

#include <cstring>
#include <vector>

namespace tg {

namespace {

// SANE started for the life of the object.
class SessionSane {
 public:
  SessionSane() { statut_ = sane_init(nullptr, nullptr); }
  ~SessionSane() {
    if (statut_ == SANE_STATUS_GOOD) sane_exit();
  }
  bool Ok() const { return statut_ == SANE_STATUS_GOOD; }
  SANE_Status Statut() const { return statut_; }

 private:
  SANE_Status statut_;
};

QString Statut(SANE_Status s) { return QString::fromLocal8Bit(sane_strstatus(s)); }

// An 8-bit sample of a 16-bit one (SANE sends them in the machine's order).
uint8_t Octet(const std::vector<uint8_t>& d, size_t i, int profondeur) {
  if (profondeur == 16) {
    uint16_t v;
    std::memcpy(&v, &d[i * 2], 2);
    return uint8_t(v >> 8);
  }
  return d[i];
}

}  // namespace

QString TexteAucunScanner() {
  return QStringLiteral("Aucun scanner ne répond.\nVérifiez qu'il est branché, allumé et reconnu par SANE "
                        "(commande scanimage -L).");
}

QString& SourceScannerChoisie() {
  static QString source;
  return source;
}

std::vector<SourceScanner> SourcesScanner(QString& erreur) {
  erreur.clear();
  SessionSane sane;
  if (!sane.Ok()) {
    erreur = QStringLiteral("SANE ne démarre pas : ") + Statut(sane.Statut());
    return {};
  }
  const SANE_Device** liste = nullptr;
  const SANE_Status s = sane_get_devices(&liste, SANE_FALSE);
  if (s != SANE_STATUS_GOOD) {
    erreur = QStringLiteral("Les scanners ne peuvent pas être listés : ") + Statut(s);
    return {};
  }
  std::vector<SourceScanner> r;
  for (int i = 0; liste && liste[i]; ++i)
    r.push_back({QString::fromLocal8Bit(liste[i]->name),
                 QStringLiteral("%1 %2 (%3)")
                     .arg(QString::fromLocal8Bit(liste[i]->vendor), QString::fromLocal8Bit(liste[i]->model),
                          QString::fromLocal8Bit(liste[i]->type))});
  return r;
}

bool AcquerirScanner(const QString& source, QImage& sortie, QString& erreur, bool& annule,
                     const std::atomic<bool>& annuler, const std::function<void(int)>& progres) {
  sortie = QImage();
  erreur.clear();
  annule = false;
  SessionSane sane;
  if (!sane.Ok()) {
    erreur = QStringLiteral("SANE ne démarre pas : ") + Statut(sane.Statut());
    return false;
  }
  QByteArray nom = source.toLocal8Bit();
  if (nom.isEmpty()) {
    const SANE_Device** liste = nullptr;
    if (sane_get_devices(&liste, SANE_FALSE) != SANE_STATUS_GOOD || !liste || !liste[0]) {
      erreur = TexteAucunScanner();
      return false;
    }
    nom = liste[0]->name;
  }
  SANE_Handle h = nullptr;
  SANE_Status s = sane_open(nom.constData(), &h);
  if (s != SANE_STATUS_GOOD) {
    erreur = TexteAucunScanner() + QStringLiteral("\n(") + QString::fromLocal8Bit(nom) + QStringLiteral(" : ") +
             Statut(s) + u')';
    return false;
  }
  // Frames until the last one: one for grey or interleaved colour, three for
  // a scanner that sends red, green and blue apart.
  QImage image;
  bool fini = false;
  while (!fini) {
    s = sane_start(h);
    if (s != SANE_STATUS_GOOD) break;
    SANE_Parameters p;
    s = sane_get_parameters(h, &p);
    if (s != SANE_STATUS_GOOD) break;
    const bool couleur = p.format == SANE_FRAME_RGB;
    const bool separe = p.format == SANE_FRAME_RED || p.format == SANE_FRAME_GREEN || p.format == SANE_FRAME_BLUE;
    if (!(p.format == SANE_FRAME_GRAY || couleur || separe) || !(p.depth == 1 || p.depth == 8 || p.depth == 16) ||
        p.pixels_per_line <= 0) {
      erreur = QStringLiteral("Le scanner envoie un format d'image que le programme ne lit pas.");
      sane_cancel(h);
      sane_close(h);
      return false;
    }
    // Read the frame whole; lines = -1 means the length is known at the end only.
    std::vector<uint8_t> donnees;
    const size_t attendu = p.lines > 0 ? size_t(p.bytes_per_line) * size_t(p.lines) : 0;
    donnees.reserve(attendu);
    std::vector<SANE_Byte> tampon(64 * 1024);
    while (true) {
      if (annuler) {
        sane_cancel(h);
        sane_close(h);
        annule = true;
        return false;
      }
      SANE_Int lus = 0;
      s = sane_read(h, tampon.data(), SANE_Int(tampon.size()), &lus);
      if (s == SANE_STATUS_EOF) break;
      if (s != SANE_STATUS_GOOD) {
        erreur = QStringLiteral("La numérisation s'est arrêtée : ") + Statut(s);
        sane_cancel(h);
        sane_close(h);
        return false;
      }
      donnees.insert(donnees.end(), tampon.begin(), tampon.begin() + lus);
      if (progres && attendu > 0) progres(int(std::min<size_t>(100, donnees.size() * 100 / attendu)));
    }
    const int largeur = p.pixels_per_line;
    const int lignes = p.lines > 0 ? p.lines : int(donnees.size() / size_t(std::max(1, p.bytes_per_line)));
    if (lignes <= 0 || donnees.size() < size_t(p.bytes_per_line) * size_t(lignes)) {
      erreur = QStringLiteral("Le scanner n'a pas envoyé d'image complète.");
      sane_cancel(h);
      sane_close(h);
      return false;
    }
    if (image.isNull()) {
      image = QImage(largeur, lignes, QImage::Format_RGB32);
      image.fill(Qt::black);
    }
    if (image.width() != largeur || image.height() != lignes) {
      erreur = QStringLiteral("Les trois couleurs envoyées par le scanner n'ont pas la même taille.");
      sane_cancel(h);
      sane_close(h);
      return false;
    }
    for (int y = 0; y < lignes; ++y) {
      auto* ligne = reinterpret_cast<QRgb*>(image.scanLine(y));
      const size_t debut = size_t(y) * size_t(p.bytes_per_line);
      for (int x = 0; x < largeur; ++x) {
        if (p.depth == 1) {
          // Line art: a set bit is black.
          const bool noir = donnees[debut + size_t(x / 8)] & (0x80 >> (x % 8));
          ligne[x] = noir ? qRgb(0, 0, 0) : qRgb(255, 255, 255);
          continue;
        }
        const size_t octetsParEchantillon = p.depth / 8;
        const size_t base = debut / octetsParEchantillon;
        if (couleur) {
          ligne[x] = qRgb(Octet(donnees, base + size_t(x) * 3, p.depth), Octet(donnees, base + size_t(x) * 3 + 1, p.depth),
                          Octet(donnees, base + size_t(x) * 3 + 2, p.depth));
        } else {
          const uint8_t v = Octet(donnees, base + size_t(x), p.depth);
          QRgb c = separe ? ligne[x] : qRgb(v, v, v);
          if (p.format == SANE_FRAME_RED) c = qRgb(v, qGreen(c), qBlue(c));
          if (p.format == SANE_FRAME_GREEN) c = qRgb(qRed(c), v, qBlue(c));
          if (p.format == SANE_FRAME_BLUE) c = qRgb(qRed(c), qGreen(c), v);
          ligne[x] = c;
        }
      }
    }
    fini = p.last_frame != SANE_FALSE;
  }
  if (!fini) {
    erreur = s == SANE_STATUS_NO_DOCS ? QStringLiteral("Le scanner n'a pas de document à numériser.")
                                      : QStringLiteral("La numérisation ne démarre pas : ") + Statut(s);
    sane_cancel(h);
    sane_close(h);
    return false;
  }
  sane_cancel(h);
  sane_close(h);
  if (progres) progres(100);
  sortie = image;
  return true;
}

}  // namespace tg
