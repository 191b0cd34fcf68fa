#include "measure/TableMesure.h"

#include <cerrno>

#include <QFileInfo>
#include <bit>
#include <cstring>

#include "platform/Fichiers.h"
#include "platform/Systeme.h"

namespace tg {

namespace {

constexpr uint16_t kTagEntier = 2;  // 16-bit integer
constexpr uint16_t kTagLong = 3;    // 32-bit integer, read for tolerance only

void AjouterU16(QByteArray& o, uint16_t v) {
  o.append(char(v & 0xFF));
  o.append(char(v >> 8));
}
void AjouterF32(QByteArray& o, float v) {
  const uint32_t b = std::bit_cast<uint32_t>(v);
  for (int i = 0; i < 4; ++i) o.append(char((b >> (8 * i)) & 0xFF));
}
bool AjouterTexte(QByteArray& o, const QString& t) {
  const QByteArray b = VersWindows1252(t);
  if (b.size() > 0xFFFF) return false;
  AjouterU16(o, uint16_t(b.size()));
  o.append(b);
  return true;
}

// A cursor over the bytes of one slot; every read checks the end.
class Lecteur {
 public:
  explicit Lecteur(const QByteArray& o) : o_(o) {}
  bool U16(uint16_t& v) {
    if (pos_ + 2 > o_.size()) return false;
    v = uint16_t(uint8_t(o_[pos_]) | (uint8_t(o_[pos_ + 1]) << 8));
    pos_ += 2;
    return true;
  }
  bool I16(int16_t& v) {
    uint16_t u = 0;
    if (!U16(u)) return false;
    v = int16_t(u);
    return true;
  }
  bool F32(float& v) {
    if (pos_ + 4 > o_.size()) return false;
    uint32_t b = 0;
    for (int i = 0; i < 4; ++i) b |= uint32_t(uint8_t(o_[pos_ + i])) << (8 * i);
    v = std::bit_cast<float>(b);
    pos_ += 4;
    return true;
  }
  bool Texte(QString& t) {
    uint16_t n = 0;
    if (!U16(n) || pos_ + n > o_.size()) return false;
    t = DepuisWindows1252(o_.mid(pos_, n));
    pos_ += n;
    return true;
  }

 private:
  const QByteArray& o_;
  qsizetype pos_ = 0;
};

qint64 Debut(int k) { return qint64(k - 1) * kLongueurSlot; }

}  // namespace

EnrMesure& TableMesure() {
  static EnrMesure enr;
  return enr;
}

QString CheminTableMesure() { return RepApplication() + QStringLiteral("table_mesure.dat"); }
QString CheminTableMesureBak() { return RepApplication() + QStringLiteral("table_mesure.bak"); }
QString CheminTableMesureSecours() {
  return RepApplication() + QStringLiteral("table_mesure_secours.bak");
}
QString CheminTableMesureCfg() { return RepApplication() + QStringLiteral("table_mesure.cfg"); }

QByteArray EncoderEnr(const EnrMesure& e) {
  QByteArray o;
  o.reserve(kLongueurSlot);
  if (!AjouterTexte(o, e.Modele)) return {};
  AjouterU16(o, uint16_t(e.LargPix));
  if (!AjouterTexte(o, e.Micro) || !AjouterTexte(o, e.Config)) return {};
  AjouterF32(o, e.Obj);
  AjouterU16(o, uint16_t(e.Pix));
  AjouterU16(o, uint16_t(e.Mic));
  AjouterF32(o, e.Focale);
  if (o.size() > kLongueurSlot) return {};
  return o;
}

bool DecoderEnr(const QByteArray& octets, EnrMesure& e) {
  Lecteur l(octets);
  EnrMesure r;
  if (!l.Texte(r.Modele) || !l.I16(r.LargPix) || !l.Texte(r.Micro) || !l.Texte(r.Config) ||
      !l.F32(r.Obj) || !l.I16(r.Pix) || !l.I16(r.Mic) || !l.F32(r.Focale))
    return false;
  e = std::move(r);
  return true;
}

// ------------------------------------------------------------------ the file

bool FichierMesure::Ouvrir(const QString& chemin) {
  Fermer();
  erreur_ = {};
  chemin_ = chemin;
  // Created empty, as opening always did.
  if (!QFile::exists(chemin) && !RemplacerFichierSur(chemin, QByteArray()))
    return Echec(75, QStringLiteral("Path/File access error"));
  ouvert_ = true;
  if (!Recharger()) {
    ouvert_ = false;
    return false;
  }
  return true;
}

bool FichierMesure::Recharger() {
  // Changes kept for Valider are not thrown away by a read.
  if (differe_ > 0 && modifie_) return true;
  QFile f(chemin_);
  QByteArray octets;
  if (f.exists()) {
    if (!f.open(QIODevice::ReadOnly)) {
      NoterEchecFichier(chemin_, errno ? errno : EACCES);
      return Echec(75, QStringLiteral("Path/File access error"));
    }
    octets = f.readAll();
    if (f.error() != QFileDevice::NoError) {
      NoterEchecFichier(chemin_, EIO);
      return Echec(75, QStringLiteral("Path/File access error"));
    }
  }
  donnees_ = surDisque_ = octets;
  modifie_ = false;
  return true;
}

void FichierMesure::Fermer() {
  if (ouvert_ && modifie_) {
    differe_ = 0;
    Enregistrer();
  }
  ouvert_ = modifie_ = false;
  differe_ = 0;
  donnees_.clear();
  surDisque_.clear();
}

bool FichierMesure::Echec(int numero, const QString& texte) {
  erreur_ = {numero, texte};
  return false;
}

int FichierMesure::LireEntete() {
  // Read from the disk each time, as other windows may have written since.
  if (!ouvert_ || !Recharger()) return 0;
  QByteArray o = donnees_.left(8);
  if (o.size() < 4) return 0;
  o.resize(8, '\0');
  Lecteur l(o);
  uint16_t tag = 0;
  l.U16(tag);
  if (tag == kTagEntier) {
    int16_t v = 0;
    l.I16(v);
    return v;
  }
  if (tag == kTagLong) {
    uint16_t bas = 0, haut = 0;
    l.U16(bas);
    l.U16(haut);
    return int32_t(uint32_t(bas) | (uint32_t(haut) << 16));
  }
  return 0;  // empty or a type no version ever wrote
}

bool FichierMesure::Enregistrer() {
  modifie_ = false;
  if (!RemplacerFichierSur(chemin_, donnees_)) {
    // The change is dropped: the file and what is read of it stay as they were.
    donnees_ = surDisque_;
    return Echec(75, QStringLiteral("Path/File access error"));
  }
  surDisque_ = donnees_;
  return true;
}

bool FichierMesure::Valider() {
  if (differe_ > 0) --differe_;
  if (differe_ > 0 || !modifie_) return true;
  return Enregistrer();
}

bool FichierMesure::Ecrire(qint64 position, const QByteArray& octets) {
  if (!ouvert_) return Echec(52, QStringLiteral("Bad file name or number"));
  // On the file as it is now: what another window wrote meanwhile stays.
  if (!Recharger()) return false;
  // Writing past the end extends the file with zeros.
  if (donnees_.size() < position + octets.size()) donnees_.resize(position + octets.size(), '\0');
  donnees_.replace(position, octets.size(), octets);
  modifie_ = true;
  return differe_ > 0 || Enregistrer();
}

bool FichierMesure::EcrireEntete(int16_t nbEnreg) {
  QByteArray o;
  AjouterU16(o, kTagEntier);
  AjouterU16(o, uint16_t(nbEnreg));
  return Ecrire(0, o);
}

bool FichierMesure::LireEnr(int k, EnrMesure& e) {
  if (!ouvert_) return Echec(52, QStringLiteral("Bad file name or number"));
  if (!Recharger()) return false;
  if (k < 1) return Echec(63, QStringLiteral("Bad record number"));
  QByteArray o = donnees_.mid(Debut(k), kLongueurSlot);
  o.resize(kLongueurSlot, '\0');
  if (!DecoderEnr(o, e)) return Echec(59, QStringLiteral("Bad record length"));
  return true;
}

bool FichierMesure::EcrireEnr(int k, const EnrMesure& e) {
  if (k < 1) return Echec(63, QStringLiteral("Bad record number"));
  const QByteArray o = EncoderEnr(e);
  if (o.isEmpty()) return Echec(59, QStringLiteral("Bad record length"));
  return Ecrire(Debut(k), o);
}

bool FichierMesure::EffacerSlot(int k) {
  if (k < 1) return Echec(63, QStringLiteral("Bad record number"));
  return Ecrire(Debut(k), QByteArray(2, '\0'));
}

// ------------------------------------------------------------------ operations

bool AjouterTable(FichierMesure& f, int& nbEnreg, const EnrMesure& e) {
  if (nbEnreg < 1) nbEnreg = 1;
  if (nbEnreg >= 32767) return false;  // the header is a 16-bit integer
  // A record too long for its slot is refused before the header is touched:
  // EcrireEnr reports it (error 59) and the file stays as it was.
  if (EncoderEnr(e).isEmpty()) {
    f.EcrireEnr(nbEnreg + 1, e);
    return false;
  }
  ++nbEnreg;
  f.Differer();
  const bool ecrit = f.EcrireEntete(int16_t(nbEnreg)) && f.EcrireEnr(nbEnreg, e);
  return f.Valider() && ecrit;
}

bool SupprimerTable(FichierMesure& f, int& k, int& nbEnreg, bool& fichierSupprime) {
  fichierSupprime = false;
  if (k < 2 || k > nbEnreg) return false;
  // The move, the erasure and the new header reach the disk together.
  f.Differer();
  bool ecrit = true;
  if (k == nbEnreg) {
    ecrit = f.EffacerSlot(k);
    if (ecrit) --k;
  } else {
    EnrMesure dernier;
    ecrit = f.LireEnr(nbEnreg, dernier) && f.EcrireEnr(k, dernier);
    if (ecrit) TableMesure() = dernier;
    ecrit = ecrit && f.EffacerSlot(nbEnreg);
  }
  ecrit = ecrit && f.EcrireEntete(int16_t(nbEnreg - 1));
  if (!f.Valider() || !ecrit) return false;
  --nbEnreg;
  if (k == 1) {
    const QString chemin = f.Chemin();
    f.Fermer();
    QFile::remove(chemin);
    fichierSupprime = true;
  }
  return true;
}

int NombreTables(const QString& chemin) {
  if (!FileExists(chemin)) return 0;
  FichierMesure f;
  if (!f.Ouvrir(chemin)) return 0;
  const int n = f.LireEntete();
  return n < 1 ? 0 : n - 1;
}

void EffacerFichierMesureVide() {
  for (const QString& chemin : {CheminTableMesure(), CheminTableMesureBak()})
    if (FileExists(chemin) && QFileInfo(chemin).size() == 0) QFile::remove(chemin);
}

void RemplacerParTableConfig() {
  const QString cfg = CheminTableMesureCfg();
  if (!FileExists(cfg)) return;
  // The pending table replaces the old one whole, or not at all; the .cfg
  // goes either way.
  CopierFichierSur(cfg, CheminTableMesure());
  QFile::remove(cfg);
}

void InitialiserTablesMesure() {
  RemplacerParTableConfig();
  EffacerFichierMesureVide();
}

bool TablesGerables() {
  return FileExists(CheminTableMesure()) || FileExists(CheminTableMesureBak());
}

}  // namespace tg
