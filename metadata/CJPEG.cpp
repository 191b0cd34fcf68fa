#include "metadata/CJPEG.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFileDevice>
#include <algorithm>
#include <optional>

#include "metadata/Octets.h"

namespace tg::meta {

namespace {
constexpr uint16_t kAPP0 = 0xE0FF, kAPP1 = 0xE1FF, kAPP13 = 0xEDFF, kCOM = 0xFEFF;
// Bytes read past a comment's segment, as the comment has always been read.
constexpr int64_t kAuDela = 1000;
}  // namespace

ParcoursJPEG ParcourirSegments(const QByteArray& fichier) {
  ParcoursJPEG p;
  LecteurOctets l(fichier);
  uint8_t a = 0, b = 0;
  if (!l.u8(a) || !l.u8(b) || a != 0xFF || b != 0xD8) return p;
  // Each turn reads at most one segment header; the cursor only moves forward.
  while (l.remaining() >= 2) {
    const int64_t position = l.offset();
    uint8_t m1 = 0, m2 = 0;
    l.u8(m1);
    l.u8(m2);
    if (m1 != 0xFF || m2 == 0xFF || m2 == 0x00 || m2 == 0xD8 || m2 == 0xD9) {
      p.positionScan = position + 1;
      p.longueurScan = fichier.size() - position;
      return p;
    }
    uint16_t longueur = 0;
    // A length under 2 or past the end: the file is cut, the walk stops with what was read.
    if (!l.u16be(longueur) || longueur < 2 || !l.skip(longueur - 2)) return p;
    p.segments.push_back(CMarker{uint16_t(m1 | (m2 << 8)), int64_t(longueur) + 2, position + 1});
  }
  return p;
}

// ---------------------------------------------------------------- JFIF

void CJFIF::ReadJFIF(const QByteArray& fichier, const CMarker& m) {
  LecteurOctets l(fichier);
  LecteurOctets segment;
  if (!l.seek(m.lpData - 1) || !l.sub(m.Length, segment) || !segment.skip(4)) return;
  if (!segment.commencePar(QByteArray("JFIF\0", 5))) return;
  segment.skip(5);
  uint8_t majeur = 0, mineur = 0, u = 0, xt = 0, yt = 0;
  uint16_t xd = 0, yd = 0;
  if (!segment.u8(majeur) || !segment.u8(mineur) || !segment.u8(u) || !segment.u16be(xd) ||
      !segment.u16be(yd) || !segment.u8(xt) || !segment.u8(yt))
    return;
  Version = QStringLiteral("%1.%2").arg(majeur).arg(mineur, 2, 10, QLatin1Char('0'));
  unit = u;
  Xdensity = xd;
  Ydensity = yd;
  Xthumbnail = xt;
  Ythumbnail = yt;
  vignette_ = segment.jusqua(int64_t(xt) * yt);
  Present = true;
}

// ---------------------------------------------------------------- comment

bool CJPEGComment::ReadComment(const QByteArray& fichier, const CMarker& m) {
  Content.clear();
  LecteurOctets l(fichier);
  uint8_t a = 0, b = 0;
  uint16_t longueur = 0;
  if (!l.seek(m.lpData - 1) || !l.u8(a) || !l.u8(b) || a != 0xFF || b != 0xFE) return false;
  if (!l.u16be(longueur)) return false;
  // Bytes 4 to L + 1000 of the segment: past its end on purpose, stopping at
  // the end of the file.
  QByteArray octets = l.jusqua(int64_t(longueur) + kAuDela - 3);
  octets.replace(QByteArray("\xFF\xDB", 2), QByteArray());
  Content = DepuisCp1252(octets);
  return true;
}

QString CJPEGComment::Texte() const {
  const qsizetype nul = Content.indexOf(QChar(0));
  return nul < 0 ? Content : Content.left(nul);
}

bool CJPEGComment::WriteComment(EcrivainOctets& e, QString* erreur) const {
  const QByteArray texte = VersCp1252(Texte());
  const int64_t n = texte.size();
  if (n == 0) return true;
  int64_t longueur = n + 3;
  if (longueur % 2 != 0) ++longueur;
  if (longueur > 0xFFFF) {
    if (erreur)
      *erreur = QStringLiteral("Le commentaire est trop long (%1 octets, 65531 au plus).").arg(n);
    return false;
  }
  e.u8(0xFF);
  e.u8(0xFE);
  e.u16be(uint16_t(longueur));
  e.octets(texte);
  e.u8(0);
  if (n % 2 == 0) e.u8(0);
  return true;
}

// ---------------------------------------------------------------- CJPEG

CJPEG::CJPEG() : exif_(std::make_unique<CExifJPEG>()) {}

bool CJPEG::ReadJPEG(const QString& path, QString* erreur) {
  QByteArray octets;
  if (!LireFichier(path, octets, erreur)) return false;
  LireOctets(octets, path);
  return true;
}

void CJPEG::LireOctets(const QByteArray& fichier, const QString& path) {
  chemin_ = path;
  descripteurSource_ = -1;
  source_ = fichier;
  parcours_ = ParcourirSegments(source_);
  exif_.reset();
  segmentsExif_.clear();
  jfif_ = CJFIF();
  segmentJfif_ = -1;
  iptc_ = CIPTC();
  commentaire_ = CJPEGComment();
  for (const CMarker& m : parcours_.segments) {
    switch (m.Marker) {
      case kAPP1: {
        // Only a block that reads as EXIF replaces the one before; XMP and
        // other APP1 segments are carried as they stand.
        QByteArray donnees;
        LecteurOctets(source_).octetsAt(m.lpData - 1 + 4, m.Length - 4, donnees);
        auto exif = std::make_unique<CExifJPEG>();
        exif->SetFile(path);
        if (exif->ReadExif(donnees)) {
          exif_ = std::move(exif);
          segmentsExif_.push_back(m.lpData);
        }
        break;
      }
      case kAPP0:
        // The first JFIF segment is the one readers take.
        if (!jfif_.Present) {
          jfif_.ReadJFIF(source_, m);
          if (jfif_.Present) segmentJfif_ = m.lpData;
        }
        break;
      case kCOM:
        commentaire_.ReadComment(source_, m);
        break;
      default:
        break;  // the rest is carried as it stands
    }
  }
  iptc_.ReadIPTCJPEG(source_, parcours_.segments);
  iptcLu_.clear();
  iptc_.Donnees(iptcLu_, nullptr);
  commentaireLu_ = commentaire_.Texte();
  jfifLu_ = {jfif_.unit, jfif_.Xdensity, jfif_.Ydensity};
  if (!exif_) {
    exif_ = std::make_unique<CExifJPEG>();
    exif_->SetFile(path);
  }
  exif_->OriginalFile = path;
  exif_->OtherMarkers.clear();
  for (const CMarker& m : parcours_.segments)
    if (!(m.Marker == kAPP1 && !segmentsExif_.empty() && m.lpData == segmentsExif_.back()))
      exif_->OtherMarkers.push_back(m);
}

bool CJPEG::EstExifLu(const CMarker& m) const {
  return m.Marker == kAPP1 && !segmentsExif_.empty() && m.lpData == segmentsExif_.back();
}

bool CJPEG::EstIptcLu(const CMarker& m) const {
  if (m.Marker != kAPP13) return false;
  const auto& lus = iptc_.SegmentsLus();
  return std::find(lus.begin(), lus.end(), m.lpData) != lus.end();
}

namespace {
const QByteArray kMPF("MPF\0", 4);
// Runs of at least this many bytes are copied by the system (copy_file_range).
constexpr int64_t kCopieSysteme = 256 * 1024;
constexpr int64_t kTranche = 1024 * 1024;

bool EstMPF(const char* segment, int64_t longueur) {
  return longueur >= 8 && uint8_t(segment[1]) == 0xE2 && QByteArray::fromRawData(segment + 4, 4) == kMPF;
}
}  // namespace

bool DecalerMPF(QByteArray& segment, int64_t decalage) {
  if (!EstMPF(segment.constData(), segment.size())) return false;
  // Offsets count from the MP header's byte order mark, 8 bytes in.
  const QByteArray entete = segment.mid(8);
  const LecteurOctets l(entete);
  uint16_t marque = 0, n = 0;
  uint32_t premier = 0;
  if (!l.u16At(Ordre::Intel, 0, marque)) return false;
  if (marque != uint16_t(Ordre::Intel) && marque != uint16_t(Ordre::Motorola)) return false;
  const Ordre o = Ordre(marque);
  if (!l.u32At(o, 4, premier) || !l.u16At(o, premier, n)) return false;
  // The MP Index IFD's tag 0xB002 (MPEntry): 16 bytes a picture, the data
  // offset at byte 8; 0 stands for the first picture, this very file.
  for (int i = 0; i < n; ++i) {
    const int64_t entree = int64_t(premier) + 2 + 12 * int64_t(i);
    uint16_t tag = 0;
    uint32_t compte = 0, valeur = 0;
    if (!l.u16At(o, entree, tag) || !l.u32At(o, entree + 4, compte) || !l.u32At(o, entree + 8, valeur))
      return false;
    if (tag != 0xB002) continue;
    if (compte % 16 != 0 || compte <= 4 || int64_t(valeur) + compte > l.taille()) return false;
    EcrivainOctets e;
    e.octets(segment);
    for (uint32_t k = 0; k < compte / 16; ++k) {
      const int64_t champ = int64_t(valeur) + 16 * k + 8;
      uint32_t offset = 0;
      l.u32At(o, champ, offset);
      // The first picture's size is left as the camera wrote it, as other
      // editors do: readers take that picture from the start of the file.
      if (offset == 0) continue;
      const int64_t nouveau = int64_t(offset) + decalage;
      if (nouveau <= 0 || nouveau > int64_t(UINT32_MAX)) return false;
      e.u32At(o, 8 + champ, uint32_t(nouveau));
    }
    segment = e.donnees();
    return true;
  }
  return false;
}

namespace {

// An AFCP trailer (the AXS File Concatenation Protocol: IPTC, previews
// appended to the file) counts its offsets from the start of the file: when
// the bytes in front of it move by `decalage`, its header's pointer in the
// footer and its entries' offsets follow. `debut` receives the trailer's
// start, `bloc` the trailer from there to the end of the file, patched.
// False when the file has none after `depuis`, or none that reads whole.
bool AjusterAFCP(const QByteArray& fichier, int64_t depuis, int64_t decalage, int64_t& debut,
                 QByteArray& bloc) {
  const LecteurOctets l(fichier);
  // The footer: "AXS!" (big-endian) or "AXS*" (little-endian), then the
  // trailer's start; other, smaller trailers may follow it to the end of the
  // file. It is looked for in the file's last 256 KB only: the search must
  // not read a whole picture.
  const qsizetype plancher = std::max<qsizetype>(depuis, fichier.size() - 256 * 1024);
  const QByteArrayView queue(fichier.constData() + plancher, fichier.size() - plancher);
  for (qsizetype q = queue.lastIndexOf(QByteArrayView("AXS")); q >= 0;
       q = q > 0 ? queue.lastIndexOf(QByteArrayView("AXS"), q - 1) : -1) {
    const qsizetype pied = plancher + q;
    if (pied + 12 > fichier.size() || (fichier.at(pied + 3) != '!' && fichier.at(pied + 3) != '*')) continue;
    const Ordre o = fichier.at(pied + 3) == '!' ? Ordre::Motorola : Ordre::Intel;
    uint32_t position = 0;
    uint16_t entrees = 0;
    if (!l.u32At(o, pied + 4, position) || int64_t(position) < depuis || int64_t(position) + 12 > pied ||
        fichier.mid(position, 4) != fichier.mid(pied, 4) || !l.u16At(o, int64_t(position) + 6, entrees) ||
        int64_t(position) + 12 + 12 * int64_t(entrees) > pied)
      continue;
    debut = position;
    EcrivainOctets e;
    e.octets(fichier.mid(position));
    auto decaler = [&](int64_t champ) {
      uint32_t v = 0;
      l.u32At(o, champ, v);
      if (int64_t(v) >= depuis) e.u32At(o, champ - debut, uint32_t(int64_t(v) + decalage));
    };
    decaler(pied + 4);
    for (int i = 0; i < entrees; ++i) decaler(int64_t(position) + 12 + 12 * int64_t(i) + 8);
    bloc = e.donnees();
    return true;
  }
  return false;
}

}  // namespace

bool CJPEG::Plan(std::vector<Morceau>& morceaux, QString* erreur) {
  morceaux.clear();
  if (parcours_.positionScan == 0) {
    if (erreur)
      *erreur = QStringLiteral(
                    "Le fichier %1 n'est pas un JPEG complet : ses données d'image n'ont pas été "
                    "trouvées.")
                    .arg(chemin_);
    return false;
  }
  // What changed is built first: a refusal leaves nothing half done.
  const bool exifChange = exif_->Modifie();
  QByteArray exif;
  if (exifChange && !exif_->WriteEXIF(exif, erreur)) return false;
  QByteArray datasets;
  if (!iptc_.Donnees(datasets, erreur)) return false;
  const bool iptcChange = datasets != iptcLu_;
  QByteArray iptc;
  if (iptcChange) {
    EcrivainOctets e;
    if (!iptc_.WriteIPTCDataJPEG(e, erreur)) return false;
    iptc = e.donnees();
  }
  const bool commentaireChange = commentaire_.Texte() != commentaireLu_;
  QByteArray commentaire;
  if (commentaireChange) {
    EcrivainOctets e;
    if (!commentaire_.WriteComment(e, erreur)) return false;
    commentaire = e.donnees();
  }

  // The JFIF density changes in place: the segment keeps its length.
  const std::array<int, 3> jfif = {jfif_.unit, jfif_.Xdensity, jfif_.Ydensity};
  const bool jfifRetire = segmentJfif_ >= 0 && !jfif_.Present;
  const bool jfifChange = segmentJfif_ >= 0 && !jfifRetire && jfif != jfifLu_;
  if (jfifChange && (jfif_.unit < 0 || jfif_.unit > 2 || jfif_.Xdensity < 0 || jfif_.Xdensity > 0xFFFF ||
                     jfif_.Ydensity < 0 || jfif_.Ydensity > 0xFFFF)) {
    if (erreur) *erreur = QStringLiteral("Densité JFIF hors limites : unité 0 à 2, densités 0 à 65535.");
    return false;
  }

  const std::vector<CMarker>& segments = parcours_.segments;
  const bool exifEnPlace = exifChange && !segmentsExif_.empty();
  const bool iptcEnPlace = iptcChange && !iptc_.SegmentsLus().empty();
  bool commentaireEnPlace = false;
  for (const CMarker& m : segments) commentaireEnPlace |= commentaireChange && m.Marker == kCOM;
  // What has no place of its own goes after the leading APP0 segments (JFIF
  // stays first) and the EXIF segment.
  size_t insertion = 0;
  while (insertion < segments.size() && segments[insertion].Marker == kAPP0) ++insertion;
  if (insertion < segments.size() && EstExifLu(segments[insertion])) ++insertion;

  const char* source = source_.constData();
  int64_t position = 0;
  auto ajouter = [&](const char* debut, int64_t taille) {
    if (taille > 0) morceaux.push_back({debut, taille, {}, debut - source});
    position += taille;
  };
  auto ajouterPropre = [&](const QByteArray& b, int64_t origine = -1) {
    if (!b.isEmpty()) morceaux.push_back({nullptr, b.size(), b, origine});
    position += b.size();
  };
  std::optional<PlaceExif> placeExif;
  auto noterExif = [&](const CMarker& m) {
    placeExif = PlaceExif{morceaux.size(), position, m.lpData - 1, m.Length};
  };
  struct MPF {
    size_t morceau;
    int64_t sortie, source;
  };
  std::vector<MPF> mpf;
  ajouter(source, 2);
  bool iptcEcrit = false, commentaireEcrit = false;
  for (size_t i = 0; i <= segments.size(); ++i) {
    if (i == insertion) {
      if (exifChange && !exifEnPlace) ajouterPropre(exif);
      if (iptcChange && !iptcEnPlace) ajouterPropre(iptc);
      if (commentaireChange && !commentaireEnPlace) ajouterPropre(commentaire);
    }
    if (i == segments.size()) break;
    const CMarker& m = segments[i];
    const int64_t debut = m.lpData - 1;
    if (exifEnPlace && EstExifLu(m)) {
      noterExif(m);
      ajouterPropre(exif);
    } else if (iptcEnPlace && EstIptcLu(m)) {
      if (!iptcEcrit) ajouterPropre(iptc);  // the first one read takes the whole block
      iptcEcrit = true;
    } else if (commentaireEnPlace && m.Marker == kCOM) {
      if (!commentaireEcrit) ajouterPropre(commentaire);
      commentaireEcrit = true;
    } else if (jfifRetire && m.lpData == segmentJfif_) {
      // Left out.
    } else if (jfifChange && m.lpData == segmentJfif_) {
      // FF E0, length, "JFIF\0", version: the unit and densities follow.
      QByteArray segment(source + debut, m.Length);
      segment[11] = char(jfif_.unit);
      segment[12] = char(jfif_.Xdensity >> 8);
      segment[13] = char(jfif_.Xdensity & 0xFF);
      segment[14] = char(jfif_.Ydensity >> 8);
      segment[15] = char(jfif_.Ydensity & 0xFF);
      ajouterPropre(segment, debut);
    } else {
      if (EstMPF(source + debut, m.Length)) mpf.push_back({morceaux.size(), position, debut});
      if (EstExifLu(m)) noterExif(m);
      ajouter(source + debut, m.Length);  // the walk checked the bounds
    }
  }
  // The scan data and everything after it (other pictures, trailers) as they
  // stand, but for an AFCP trailer's offsets, which follow what moved.
  const int64_t scan = position;
  const int64_t debutScan = parcours_.positionScan - 1;
  int64_t debutAFCP = 0;
  QByteArray afcp;
  if (scan != debutScan && AjusterAFCP(source_, debutScan, scan - debutScan, debutAFCP, afcp)) {
    ajouter(source + debutScan, debutAFCP - debutScan);
    ajouterPropre(afcp, debutAFCP);
  } else {
    ajouter(source + debutScan, parcours_.longueurScan);
  }

  // A multi-picture segment points past the scan: what moved between the two
  // moves its offsets.
  for (const MPF& m : mpf) {
    const int64_t decalage = (scan - (parcours_.positionScan - 1)) - (m.sortie - m.source);
    if (decalage == 0) continue;
    Morceau& morceau = morceaux[m.morceau];
    QByteArray segment(morceau.debut, morceau.taille);
    if (DecalerMPF(segment, decalage))
      morceau = {nullptr, segment.size(), segment, morceau.origine};
  }
  if (placeExif) SuivreOffsetsExternes(morceaux, *placeExif);
  return true;
}

void CJPEG::SuivreOffsetsExternes(std::vector<Morceau>& morceaux, const PlaceExif& p) const {
  // The TIFF header follows the marker, the length and "Exif\0\0".
  constexpr int64_t kEnTete = 10;
  const int64_t enTeteSource = p.source + kEnTete, finSource = p.source + p.longueur;
  // Past the segment, a value lies in the rest of the file: what the plan
  // inserts or removes between the two moves it. No knowledge of any maker
  // is needed, and offsets inside the segment never move.
  std::vector<OffsetValeur> externes;
  for (const OffsetValeur& o : exif_->OffsetsLus())
    if (enTeteSource + o.origine + int64_t(o.valeur) >= finSource) externes.push_back(o);
  if (externes.empty()) return;
  Morceau& morceau = morceaux[p.morceau];
  const QByteArray segment =
      morceau.debut ? QByteArray(morceau.debut, morceau.taille) : morceau.propre;
  // The segment written holds the same entries, in place or in rewritten
  // directories: read again, its offsets are matched to those read.
  CExifJPEG ecrit;
  if (!ecrit.ReadExif(segment.mid(4))) return;
  auto sortie = [&morceaux](int64_t octet) -> int64_t {
    int64_t position = 0;
    for (const Morceau& m : morceaux) {
      if (m.origine >= 0 && octet >= m.origine && octet < m.origine + m.taille)
        return position + octet - m.origine;
      position += m.taille;
    }
    return -1;  // not carried: left as it was
  };
  EcrivainOctets e;
  e.octets(segment);
  bool change = false;
  for (const OffsetValeur& o : ecrit.OffsetsLus()) {
    const auto lu = std::find_if(externes.begin(), externes.end(), [&o](const OffsetValeur& x) {
      return x.repertoire == o.repertoire && x.tag == o.tag && x.valeur == o.valeur;
    });
    if (lu == externes.end()) continue;
    const int64_t cible = sortie(enTeteSource + lu->origine + int64_t(lu->valeur));
    if (cible < 0) continue;
    const int64_t valeur = cible - (p.sortie + kEnTete + o.origine);
    if (valeur < 0 || valeur > int64_t(UINT32_MAX) || valeur == int64_t(o.valeur)) continue;
    change |= e.u32At(o.ordre, kEnTete + o.champ, uint32_t(valeur));
  }
  if (change) morceau = {nullptr, int64_t(e.donnees().size()), e.donnees(), morceau.origine};
}

bool CJPEG::Ecrire(QByteArray& sortie, QString* erreur) {
  sortie.clear();
  std::vector<Morceau> morceaux;
  if (!Plan(morceaux, erreur)) return false;
  int64_t total = 0;
  for (const Morceau& m : morceaux) total += m.taille;
  sortie.reserve(total);
  for (const Morceau& m : morceaux)
    sortie.append(m.debut ? m.debut : m.propre.constData(), m.taille);
  return true;
}

bool CJPEG::EcrireVers(QIODevice& f, QString* erreur) {
  std::vector<Morceau> morceaux;
  if (!Plan(morceaux, erreur)) return false;
  auto* fichier = qobject_cast<QFileDevice*>(&f);
  for (const Morceau& m : morceaux) {
    // Large runs of the source go from file to file inside the system, as
    // cp copies them; anything else, or a system that cannot, through write.
    if (m.debut && m.taille >= kCopieSysteme && descripteurSource_ >= 0 && fichier && fichier->flush()) {
      loff_t depuis = m.debut - source_.constData();
      int64_t reste = m.taille;
      // By slices, each handed to the disk at once: the flush before the
      // rename then waits for the last slice only.
      const int fd = fichier->handle();
      while (reste > 0) {
        const off_t ecrit = lseek(fd, 0, SEEK_CUR);
        const ssize_t n = copy_file_range(descripteurSource_, &depuis, fd, nullptr,
                                          size_t(std::min<int64_t>(reste, kTranche)), 0);
        if (n <= 0) break;
        reste -= n;
        if (ecrit >= 0) sync_file_range(fd, ecrit, n, SYNC_FILE_RANGE_WRITE);
      }
      if (reste == 0) continue;
      if (reste != m.taille) return false;  // part copied: no way back to a consistent file
    }
    if (f.write(m.debut ? m.debut : m.propre.constData(), m.taille) != m.taille) return false;
  }
  return true;
}

bool CJPEG::WriteJPEG(const QString& path, QString* erreur) {
  return RemplacerFichierPar(
      path, [this](QIODevice& f, QString* e) { return EcrireVers(f, e); }, erreur);
}

std::unique_ptr<QFile> CJPEG::OpenFile(const QString& path) {
  auto f = std::make_unique<QFile>(path);
  if (!f->exists() || !f->open(QIODevice::ReadWrite)) return nullptr;
  return f;
}

int64_t CJPEG::WriteToEndOfFile(QFile& f, const QByteArray& tampon) {
  if (!f.seek(f.size())) return -1;
  return f.write(tampon);
}

}  // namespace tg::meta
