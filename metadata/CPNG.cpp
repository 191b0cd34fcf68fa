#include "metadata/CPNG.h"

#include <zlib.h>

#include <array>

#include "metadata/CommandesMeta.h"

namespace tg::meta {

namespace {

const QByteArray kSignature("\x89PNG\r\n\x1A\n", 8);

const char* const kMotsCles[] = {"Title",         "Author",   "Description", "Copyright",
                                 "Creation Time", "Software", "Disclaimer",  "Warning",
                                 "Source",        "Comment"};

// Latin-1 is what the format asks for; the code page's extra characters
// (0x80 to 0x9F, control codes in Latin-1) go through as the program's own.
QString Texte8(const QByteArray& b) { return DepuisCp1252(b); }
QByteArray Octets8(const QString& s) { return VersCp1252(s); }

// Keyword up to its NUL; false when there is no NUL.
bool CouperMotCle(const QByteArray& donnees, QString& motCle, int& fin) {
  fin = int(donnees.indexOf('\0'));
  if (fin < 0) return false;
  motCle = QString::fromLatin1(donnees.left(fin));
  return true;
}

void EcrireChunk(EcrivainOctets& e, const char* type, const QByteArray& donnees) {
  e.u32be(uint32_t(donnees.size()));
  const QByteArray corps = QByteArray(type, 4) + donnees;
  e.octets(corps);
  e.u32be(CrcPNG(corps));
}

// A keyword the format accepts: 1 to 79 bytes.
bool MotCleValide(const QByteArray& k) { return !k.isEmpty() && k.size() <= 79; }

}  // namespace

uint32_t CrcPNG(const QByteArray& octets) {
  static const std::array<uint32_t, 256> table = [] {
    std::array<uint32_t, 256> t{};
    for (uint32_t n = 0; n < 256; ++n) {
      uint32_t c = n;
      for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
      t[n] = c;
    }
    return t;
  }();
  uint32_t c = 0xFFFFFFFFu;
  for (char b : octets) c = table[(c ^ uint8_t(b)) & 0xFF] ^ (c >> 8);
  return c ^ 0xFFFFFFFFu;
}

bool Inflater(const QByteArray& compresse, QByteArray& sortie) {
  sortie.clear();
  // One try, buffer twice the compressed length: a text that inflates to more
  // is refused, as it always was, rather than retried with a larger buffer.
  uLongf taille = uLongf(compresse.size()) * 2;
  if (taille == 0) return false;
  QByteArray tampon(qsizetype(taille), '\0');
  if (uncompress(reinterpret_cast<Bytef*>(tampon.data()), &taille,
                 reinterpret_cast<const Bytef*>(compresse.constData()),
                 uLong(compresse.size())) != Z_OK)
    return false;
  tampon.resize(qsizetype(taille));
  sortie = tampon;
  return true;
}

bool Deflater(const QByteArray& texte, QByteArray& sortie) {
  sortie.clear();
  // Twice the text, or zlib's bound when more: short texts grow when compressed.
  uLongf taille = std::max<uLongf>(uLongf(texte.size()) * 2, compressBound(uLong(texte.size())));
  QByteArray tampon(qsizetype(taille), '\0');
  if (compress(reinterpret_cast<Bytef*>(tampon.data()), &taille,
               reinterpret_cast<const Bytef*>(texte.constData()), uLong(texte.size())) != Z_OK)
    return false;
  tampon.resize(qsizetype(taille));
  sortie = tampon;
  return true;
}

QString TexteMotCle(int keyword) {
  return keyword >= 0 && keyword <= 9 ? QString::fromLatin1(kMotsCles[keyword]) : QString();
}

int NumeroMotCle(const QString& texte) {
  for (int i = 0; i <= 9; ++i)
    if (texte == QLatin1String(kMotsCles[i])) return i;
  return -1;
}

QString CTexteBase::MotCleEcrit() const {
  const QString k = KeywordString();
  return k.isEmpty() ? MotCle : k;
}

// ---------------------------------------------------------------- chunks

bool CIHDR::ReadChunk(const QByteArray& d) {
  LecteurOctets l(d);
  return l.u32be(Width) && l.u32be(Height) && l.u8(BitDepth) && l.u8(ColorType) &&
         l.u8(CompressionMethod) && l.u8(FilterMethod) && l.u8(InterlaceMethod);
}

bool CpHYS::ReadChunk(const QByteArray& d) {
  LecteurOctets l(d);
  return l.u32be(XPixelsPerUnit) && l.u32be(YPixelsPerUnit) && l.u8(UnitSpecifier);
}

bool CtIME::ReadChunk(const QByteArray& d) {
  LecteurOctets l(d);
  return l.u16be(Year) && l.u8(Month) && l.u8(Day) && l.u8(Hour) && l.u8(Minute) && l.u8(Second);
}

void CtIME::WriteChunk(EcrivainOctets& e) const {
  EcrivainOctets d;
  d.u16be(Year);
  for (uint8_t v : {Month, Day, Hour, Minute, Second}) d.u8(v);
  EcrireChunk(e, "tIME", d.donnees());
}

bool CtEXt::ReadChunk(const QByteArray& d) {
  brut_ = d;
  int fin = 0;
  if (!CouperMotCle(d, MotCle, fin)) {
    illisible_ = true;
    return false;
  }
  Keyword = NumeroMotCle(MotCle);
  Content = Texte8(d.mid(fin + 1));
  return true;
}

bool CtEXt::WriteChunk(EcrivainOctets& e) const {
  if (illisible_) {
    EcrireChunk(e, "tEXt", brut_);
    return true;
  }
  const QByteArray k = MotCleEcrit().toLatin1();
  if (!MotCleValide(k)) return false;
  EcrireChunk(e, "tEXt", k + '\0' + Octets8(Content));
  return true;
}

bool CzTXt::ReadChunk(const QByteArray& d) {
  brut_ = d;
  int fin = 0;
  if (!CouperMotCle(d, MotCle, fin) || fin + 1 >= d.size()) {
    illisible_ = true;
    return false;
  }
  Keyword = NumeroMotCle(MotCle);
  CompressionMethod = uint8_t(d[fin + 1]);
  QByteArray texte;
  // A failed inflate leaves Content empty; the chunk is written back as read.
  illisible_ = !Inflater(d.mid(fin + 2), texte);
  Content = Texte8(texte);
  return !illisible_;
}

bool CzTXt::WriteChunk(EcrivainOctets& e) const {
  if (illisible_) {
    EcrireChunk(e, "zTXt", brut_);
    return true;
  }
  const QByteArray k = MotCleEcrit().toLatin1();
  QByteArray z;
  if (!MotCleValide(k) || !Deflater(Octets8(Content), z)) return false;
  EcrireChunk(e, "zTXt", k + '\0' + char(0) + z);
  return true;
}

bool CiTXt::ReadChunk(const QByteArray& d) {
  brut_ = d;
  illisible_ = true;
  int fin = 0;
  if (!CouperMotCle(d, MotCle, fin) || fin + 3 > d.size()) return false;
  Keyword = NumeroMotCle(MotCle);
  CompressionFlag = uint8_t(d[fin + 1]);
  CompressionMethod = uint8_t(d[fin + 2]);
  const int debutLangue = fin + 3;
  const int finLangue = int(d.indexOf('\0', debutLangue));
  if (finLangue < 0) return false;
  Language = d.mid(debutLangue, finLangue - debutLangue);
  const int finTraduction = int(d.indexOf('\0', finLangue + 1));
  if (finTraduction < 0) return false;
  Translation = QString::fromUtf8(d.mid(finLangue + 1, finTraduction - finLangue - 1));
  QByteArray texte = d.mid(finTraduction + 1);
  if (CompressionFlag != 0) {
    QByteArray clair;
    if (!Inflater(texte, clair)) return false;
    texte = clair;
  }
  Content = QString::fromUtf8(texte);
  illisible_ = false;
  return true;
}

bool CiTXt::WriteChunk(EcrivainOctets& e) const {
  if (illisible_) {
    EcrireChunk(e, "iTXt", brut_);
    return true;
  }
  const QByteArray k = MotCleEcrit().toLatin1();
  if (!MotCleValide(k)) return false;
  QByteArray texte = Content.toUtf8();
  if (CompressionFlag != 0 && !Deflater(Content.toUtf8(), texte)) return false;
  EcrireChunk(e, "iTXt",
              k + '\0' + char(CompressionFlag != 0 ? 1 : 0) + char(0) + Language + '\0' +
                  Translation.toUtf8() + '\0' + texte);
  return true;
}

// ---------------------------------------------------------------- CPNG

bool CPNG::ReadPNG(const QString& path, QString* erreur) {
  QByteArray octets;
  if (!LireFichier(path, octets, erreur)) return false;
  LireOctets(octets, path);
  return true;
}

void CPNG::LireOctets(const QByteArray& fichier, const QString&) {
  *this = CPNG();
  source_ = fichier;
  if (!fichier.startsWith(kSignature)) return;
  lu_ = true;
  LecteurOctets l(source_);
  l.skip(8);
  while (true) {
    CChunk c;
    uint32_t longueur = 0;
    if (!l.u32be(longueur) || !l.octets(4, c.ChunkType)) break;
    c.Length = longueur;
    c.lpData = l.offset();
    QByteArray donnees;
    if (!l.octets(longueur, donnees) || !l.u32be(c.CRC)) break;
    Chunks.push_back(c);
    const int indice = int(Chunks.size()) - 1;
    const QByteArray& t = c.ChunkType;
    // How each object writes its chunk right after reading it: a rewrite
    // copies the original bytes as long as the object still writes that.
    auto signer = [indice](auto& texte) {
      texte.indiceChunk_ = indice;
      EcrivainOctets e;
      texte.WriteChunk(e);
      texte.ecritALaLecture_ = e.donnees();
    };
    if (t == "IEND") break;
    if (t == "IHDR") {
      CIHDR h;
      if (h.ReadChunk(donnees)) IHDR = h;
    } else if (t == "pHYs") {
      CpHYS p;
      if (p.ReadChunk(donnees)) pHYS = p;
    } else if (t == "tIME") {
      CtIME m;
      if (m.ReadChunk(donnees)) {
        tIME = m;
        indiceTemps_ = indice;
        EcrivainOctets e;
        m.WriteChunk(e);
        tempsALaLecture_ = e.donnees();
      }
    } else if (t == "tEXt") {
      tEXt.emplace_back().ReadChunk(donnees);
      signer(tEXt.back());
    } else if (t == "zTXt") {
      zTXt.emplace_back().ReadChunk(donnees);
      signer(zTXt.back());
    } else if (t == "iTXt") {
      iTXt.emplace_back().ReadChunk(donnees);
      signer(iTXt.back());
    }
  }
}

bool CPNG::Ecrire(QByteArray& sortie, QString* erreur) {
  sortie.clear();
  if (!lu_ || Chunks.empty() || Chunks.back().ChunkType != "IEND") {
    if (erreur)
      *erreur =
          QStringLiteral("Le fichier PNG est incomplet (pas de bloc IEND) : il n'est pas réécrit.");
    return false;
  }
  auto refus = [erreur](const QString& motCle) {
    if (erreur)
      *erreur =
          QStringLiteral("Mot-clé de texte PNG invalide (« %1 ») : 1 à 79 caractères.").arg(motCle);
    return false;
  };
  // The chunk an object writes now, or its original bytes when that did not change.
  const LecteurOctets source(source_);
  auto original = [&](int indice) {
    QByteArray brut;
    const CChunk& c = Chunks[size_t(indice)];
    source.octetsAt(c.lpData - 8, int64_t(c.Length) + 12, brut);  // bounds checked by the walk
    return brut;
  };
  std::vector<QByteArray> remplacements(Chunks.size());
  std::vector<bool> gardes(Chunks.size(), true);
  for (size_t i = 0; i < Chunks.size(); ++i) {
    const QByteArray& t = Chunks[i].ChunkType;
    // Text chunks and the last tIME are kept only through their objects.
    if (t == "tEXt" || t == "zTXt" || t == "iTXt" || int(i) == indiceTemps_) gardes[i] = false;
  }
  EcrivainOctets nouveaux;
  auto placer = [&](const auto& objet) {
    EcrivainOctets e;
    if (!objet.WriteChunk(e)) return false;
    if (objet.indiceChunk_ < 0 || size_t(objet.indiceChunk_) >= Chunks.size()) {
      nouveaux.octets(e.donnees());
    } else {
      gardes[size_t(objet.indiceChunk_)] = true;
      if (e.donnees() != objet.ecritALaLecture_) remplacements[size_t(objet.indiceChunk_)] = e.donnees();
    }
    return true;
  };
  EcrivainOctets temps;
  if (tIME) {
    EcrivainOctets e;
    tIME->WriteChunk(e);
    if (indiceTemps_ < 0) {
      temps.octets(e.donnees());
    } else {
      gardes[size_t(indiceTemps_)] = true;
      if (e.donnees() != tempsALaLecture_) remplacements[size_t(indiceTemps_)] = e.donnees();
    }
  }
  for (const CtEXt& t : tEXt)
    if (!placer(t)) return refus(t.MotCleEcrit());
  for (const CzTXt& t : zTXt)
    if (!placer(t)) return refus(t.MotCleEcrit());
  for (const CiTXt& t : iTXt)
    if (!placer(t)) return refus(t.MotCleEcrit());

  EcrivainOctets e;
  e.octets(kSignature);
  for (size_t i = 0; i + 1 < Chunks.size(); ++i) {
    if (!gardes[i]) continue;  // removed
    e.octets(remplacements[i].isEmpty() ? original(int(i)) : remplacements[i]);
  }
  e.octets(temps.donnees());
  e.octets(nouveaux.donnees());
  // IEND and whatever follows it, as they stand.
  e.octets(source_.mid(Chunks.back().lpData - 8));
  sortie = e.donnees();
  return true;
}

bool CPNG::WritePNG(const QString& path, QString* erreur) {
  QByteArray sortie;
  return Ecrire(sortie, erreur) && RemplacerFichier(path, sortie, erreur);
}

namespace {

bool EstCommentaire(const CTexteBase& t) {
  return t.MotCle.compare(QLatin1String("Comment"), Qt::CaseInsensitive) == 0;
}

// What tEXt may hold without a complaint from PNG checkers: LF and the
// printable characters of Latin-1.
bool LatinImprimable(const QString& texte) {
  for (const QChar c : texte) {
    const char16_t u = c.unicode();
    if (u != u'\n' && (u < 0x20 || (u >= 0x7F && u < 0xA0) || u > 0xFF)) return false;
  }
  return true;
}

// CR LF and lone CR become LF.
QString FinsDeLigneLF(const QString& texte) {
  QString r = texte;
  r.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  r.replace(u'\r', u'\n');
  return r;
}

}  // namespace

const CTexteBase* CPNG::ChunkCommentaire() const {
  // In file order: the chunks read by their place, new ones after them.
  const CTexteBase* premier = nullptr;
  int64_t rangPremier = 0;
  auto voir = [&](const auto& liste) {
    for (size_t i = 0; i < liste.size(); ++i) {
      const CTexteBase& t = liste[i];
      if (t.illisible_ || !EstCommentaire(t)) continue;
      const int64_t rang =
          t.indiceChunk_ >= 0 ? t.indiceChunk_ : int64_t(Chunks.size()) + int64_t(i);
      if (premier == nullptr || rang < rangPremier) {
        premier = &t;
        rangPremier = rang;
      }
    }
  };
  voir(tEXt);
  voir(zTXt);
  voir(iTXt);
  return premier;
}

QString CPNG::Commentaire() const {
  const CTexteBase* c = ChunkCommentaire();
  return c ? FinsDeLigneCRLF(c->Content) : QString();
}

void CPNG::SetCommentaire(const QString& texte) {
  if (texte.isEmpty()) {
    auto lisible = [](const CTexteBase& t) { return !t.illisible_ && EstCommentaire(t); };
    std::erase_if(tEXt, lisible);
    std::erase_if(zTXt, lisible);
    std::erase_if(iTXt, lisible);
    return;
  }
  const QString contenu = FinsDeLigneLF(texte);
  const bool latin = LatinImprimable(contenu);
  const CTexteBase* actuel = ChunkCommentaire();
  // Changed where it stands when its kind can hold the text.
  auto changer = [&](auto& liste) {
    for (auto& t : liste)
      if (&t == actuel) {
        t.SetKeyword(9);
        t.Content = contenu;
        return true;
      }
    return false;
  };
  if (latin ? changer(tEXt) || changer(zTXt) : changer(iTXt)) return;
  // Else a chunk of the other kind takes the old one's place.
  int indice = -1;
  bool compresse = false;
  auto retirer = [&](auto& liste) {
    for (size_t i = 0; i < liste.size(); ++i)
      if (&liste[i] == actuel) {
        indice = liste[i].indiceChunk_;
        liste.erase(liste.begin() + qsizetype(i));
        return;
      }
  };
  if (actuel) {
    for (const CzTXt& z : zTXt) compresse |= &z == actuel;
    for (const CiTXt& i : iTXt) compresse |= &i == actuel && i.CompressionFlag != 0;
    retirer(tEXt);
    retirer(zTXt);
    retirer(iTXt);
  }
  auto placer = [&](auto& liste, auto t) {
    t.SetKeyword(9);
    t.Content = contenu;
    t.indiceChunk_ = indice;  // written anew: what it wrote when read is left empty
    liste.push_back(std::move(t));
  };
  if (latin) {
    placer(tEXt, CtEXt());
  } else {
    CiTXt i;
    i.CompressionFlag = compresse ? 1 : 0;
    placer(iTXt, std::move(i));
  }
}

std::optional<QString> CommentairePNG(const QString& chemin) {
  CPNG p;
  if (!p.ReadPNG(chemin) || !p.Lu()) return std::nullopt;
  return p.Commentaire();
}

}  // namespace tg::meta
