#include "metadata/CIPTC.h"

#include <QStringList>

#include "metadata/CExif.h"

namespace tg::meta {

namespace {

constexpr uint16_t kAPP13 = 0xEDFF;
constexpr uint16_t kRessourceIPTC = 0x0404;
constexpr int32_t kTagIPTC = 33723;
const QByteArray kNom("Photoshop 3.0\0", 14);
// Data of one segment: 65535 - 2 for its length field.
constexpr int64_t kMaxSegment = 65533;

struct Jeu {
  uint8_t record;
  uint8_t dataset;
  const char* nom;
};

// Records 1 (envelope), 2 (application), 7, 8 and 9 (object data) of IPTC-NAA IIM 4.
const Jeu kJeux[] = {
    {1, 0, "EnvelopeRecordVersion"},
    {1, 5, "Destination"},
    {1, 20, "FileFormat"},
    {1, 22, "FileVersion"},
    {1, 30, "ServiceIdentifier"},
    {1, 40, "EnvelopeNumber"},
    {1, 50, "ProductID"},
    {1, 60, "EnvelopePriority"},
    {1, 70, "DateSent"},
    {1, 80, "TimeSent"},
    {1, 90, "CodedCharacterSet"},
    {1, 100, "UniqueObjectName"},
    {1, 120, "ARMIdentifier"},
    {1, 122, "ARMVersion"},
    {2, 0, "ApplicationRecordVersion"},
    {2, 3, "ObjectTypeReference"},
    {2, 4, "ObjectAttributeReference"},
    {2, 5, "ObjectName"},
    {2, 7, "EditStatus"},
    {2, 8, "EditorialUpdate"},
    {2, 10, "Urgency"},
    {2, 12, "SubjectReference"},
    {2, 15, "Category"},
    {2, 20, "SupplementalCategories"},
    {2, 22, "FixtureIdentifier"},
    {2, 25, "Keywords"},
    {2, 26, "ContentLocationCode"},
    {2, 27, "ContentLocationName"},
    {2, 30, "ReleaseDate"},
    {2, 35, "ReleaseTime"},
    {2, 37, "ExpirationDate"},
    {2, 38, "ExpirationTime"},
    {2, 40, "SpecialInstructions"},
    {2, 42, "ActionAdvised"},
    {2, 45, "ReferenceService"},
    {2, 47, "ReferenceDate"},
    {2, 50, "ReferenceNumber"},
    {2, 55, "DateCreated"},
    {2, 60, "TimeCreated"},
    {2, 62, "DigitalCreationDate"},
    {2, 63, "DigitalCreationTime"},
    {2, 65, "OriginatingProgram"},
    {2, 70, "ProgramVersion"},
    {2, 75, "ObjectCycle"},
    {2, 80, "By-line"},
    {2, 85, "By-lineTitle"},
    {2, 90, "City"},
    {2, 92, "Sub-location"},
    {2, 95, "Province-State"},
    {2, 100, "Country-PrimaryLocationCode"},
    {2, 101, "Country-PrimaryLocationName"},
    {2, 103, "OriginalTransmissionReference"},
    {2, 105, "Headline"},
    {2, 110, "Credit"},
    {2, 115, "Source"},
    {2, 116, "CopyrightNotice"},
    {2, 118, "Contact"},
    {2, 120, "Caption-Abstract"},
    {2, 122, "Writer-Editor"},
    {2, 125, "RasterizedCaption"},
    {2, 130, "ImageType"},
    {2, 131, "ImageOrientation"},
    {2, 135, "LanguageIdentifier"},
    {2, 150, "AudioType"},
    {2, 151, "AudioSamplingRate"},
    {2, 152, "AudioSamplingResolution"},
    {2, 153, "AudioDuration"},
    {2, 154, "AudioOutcue"},
    {2, 200, "ObjectPreviewFileFormat"},
    {2, 201, "ObjectPreviewFileVersion"},
    {2, 202, "ObjectPreviewData"},
    {7, 10, "SizeMode"},
    {7, 20, "MaxSubfileSize"},
    {7, 90, "ObjectSizeAnnounced"},
    {7, 95, "MaximumObjectSize"},
    {8, 10, "SubFile"},
    {9, 10, "ConfirmedObjectSize"},
};

// IIM appendix A, the values of FileFormat and ObjectPreviewFileFormat.
const char* const kFormats[] = {
    "No ObjectData",
    "IPTC-NAA Digital Newsphoto Parameter Record",
    "IPTC7901 Recommended Message Format",
    "Tagged Image File Format (Adobe/Aldus Image data)",
    "Illustrator (Adobe Graphics data)",
    "AppleSingle (Apple Computer Inc)",
    "NAA 89-3 (ANPA 1312)",
    "MacBinary II",
    "IPTC Unstructured Character Oriented File Format (UCOFF)",
    "United Press International ANPA 1312 variant",
    "United Press International Down-Load Message",
    "JPEG File Interchange (JFIF)",
    "Photo-CD Image-Pac (Eastman Kodak)",
    "Bit Mapped Graphics File [.BMP] (Microsoft)",
    "Digital Audio File [.WAV] (Microsoft & Creative Labs)",
    "Audio plus Moving Video [.AVI] (Microsoft)",
    "PC DOS/Windows Executable Files [.COM][.EXE]",
    "Compressed Binary File [.ZIP] (PKWare Inc)",
    "Audio Interchange File Format AIFF (Apple Computer Inc)",
    "RIFF Wave (Microsoft Corporation)",
    "Freehand (Macromedia/Aldus)",
    "Hypertext Markup Language [.HTML] (The Internet Society)",
    "MPEG 2 Audio Layer 2 (Musicom), ISO/IEC",
    "MPEG 2 Audio Layer 3, ISO/IEC",
    "Portable Document File (*.PDF) Adobe",
    "News Industry Text Format (NITF)",
    "Tagged Image File Format for Image Technology (TIFF/IT)",
};

// Datasets held as binary numbers: 2 bytes big-endian (4 for the object sizes).
bool Binaire(int record, int dataset) {
  if (record == 1)
    return dataset == 0 || dataset == 20 || dataset == 22 || dataset == 120 || dataset == 122;
  if (record == 2) return dataset == 0 || dataset == 200 || dataset == 201;
  return record == 7 || record == 9;
}

QByteArray Octets(const QString& texte, bool utf8) {
  return utf8 ? texte.toUtf8() : VersCp1252(texte);
}

}  // namespace

QString FormatFichierIPTC(int valeur) {
  return valeur >= 0 && valeur < int(std::size(kFormats)) ? QString::fromLatin1(kFormats[valeur])
                                                          : QString();
}

QString CIPTCTag::NomJeuIPTC(int record, int dataset) {
  for (const Jeu& j : kJeux)
    if (j.record == record && j.dataset == dataset) return QString::fromLatin1(j.nom);
  return {};
}

void CIPTCTag::ModifyTagString(const QString& texte, bool utf8) { Data = Octets(texte, utf8); }

QString CIPTCTag::GetDataFormatted(bool utf8) const {
  if (Binaire(RecordNumber, DataSetNumber) && !Data.isEmpty() && Data.size() <= 4) {
    uint32_t v = 0;
    for (char c : Data) v = (v << 8) | uint8_t(c);
    QString t = QString::number(v);
    const bool format =
        (RecordNumber == 1 && DataSetNumber == 20) || (RecordNumber == 2 && DataSetNumber == 200);
    if (format && !FormatFichierIPTC(int(v)).isEmpty())
      t += QStringLiteral(" (%1)").arg(FormatFichierIPTC(int(v)));
    return t;
  }
  if (RecordNumber == 1 && DataSetNumber == 90) {
    // Escape sequences of ISO 2022: shown without their ESC.
    QString t;
    for (char c : Data) t += c == 0x1B ? QStringLiteral("ESC ") : QString(QChar(uint8_t(c)));
    return t;
  }
  return utf8 ? QString::fromUtf8(Data) : DepuisCp1252(Data);
}

bool CIPTCTag::ReadTag(LecteurOctets& l) {
  const int64_t depart = l.offset();
  uint8_t m = 0, r = 0, d = 0;
  uint16_t taille = 0;
  QByteArray donnees;
  if (!l.u8(m) || m != 0x1C || !l.u8(r) || !l.u8(d) || !l.u16be(taille) || (taille & 0x8000) != 0 ||
      !l.octets(taille, donnees)) {
    l.seek(depart);
    return false;
  }
  TagMarker = m;
  RecordNumber = r;
  DataSetNumber = d;
  Data = donnees;
  return true;
}

void CIPTCTag::WriteTag(EcrivainOctets& e) const {
  e.u8(TagMarker);
  e.u8(RecordNumber);
  e.u8(DataSetNumber);
  e.u16be(uint16_t(Data.size()));
  e.octets(Data);
}

// ---------------------------------------------------------------- CIPTC

void CIPTC::AddModifyTagBinary(int record, int dataset, const QByteArray& octets) {
  for (CIPTCTag& t : Tags)
    if (t.RecordNumber == record && t.DataSetNumber == dataset) {
      t.Data = octets;
      return;
    }
  CIPTCTag t;
  t.RecordNumber = uint8_t(record);
  t.DataSetNumber = uint8_t(dataset);
  t.Data = octets;
  Tags.push_back(t);
}

void CIPTC::AddModifyTagString(int record, int dataset, const QString& texte) {
  AddModifyTagBinary(record, dataset, Octets(texte, Utf8()));
}

void CIPTC::DelTagString(int record, int dataset, const QString& texte) {
  const QByteArray cible = Octets(texte, Utf8());
  std::erase_if(Tags, [&](const CIPTCTag& t) {
    return t.RecordNumber == record && t.DataSetNumber == dataset && t.Data == cible;
  });
}

void CIPTC::DelRepeatTag(int record, int dataset) {
  std::erase_if(Tags, [&](const CIPTCTag& t) {
    return t.RecordNumber == record && t.DataSetNumber == dataset;
  });
}

QStringList CIPTC::Textes(int record, int dataset) const {
  QStringList r;
  for (const CIPTCTag& t : Tags)
    if (t.RecordNumber == record && t.DataSetNumber == dataset) r << t.GetDataFormatted(Utf8());
  return r;
}

bool CIPTC::Utf8() const {
  for (const CIPTCTag& t : Tags)
    if (t.RecordNumber == 1 && t.DataSetNumber == 90) return t.Data == QByteArray("\x1B%G");
  return false;
}

void CIPTC::LireDonnees(const QByteArray& octets) {
  LecteurOctets l(octets);
  CIPTCTag t;
  while (t.ReadTag(l)) Tags.push_back(t);
}

bool CIPTC::Donnees(QByteArray& sortie, QString* erreur) const {
  EcrivainOctets e;
  for (const CIPTCTag& t : Tags) {
    if (t.Data.size() > 0x7FFF) {
      if (erreur)
        *erreur = QStringLiteral("Le champ IPTC %1:%2 dépasse 32767 octets : non écrit.")
                      .arg(t.RecordNumber)
                      .arg(t.DataSetNumber);
      return false;
    }
    t.WriteTag(e);
  }
  sortie = e.donnees();
  return true;
}

void CIPTC::ReadIPTCJPEG(const QByteArray& fichier, const std::vector<CMarker>& segments) {
  Tags.clear();
  ressources_.clear();
  reste_.clear();
  segmentsLus_.clear();
  const LecteurOctets source(fichier);
  QByteArray bloc;
  for (const CMarker& m : segments) {
    if (m.Marker != kAPP13) continue;
    QByteArray donnees;
    if (!source.octetsAt(m.lpData - 1 + 4, m.Length - 4, donnees) || !donnees.startsWith(kNom))
      continue;
    bloc += donnees.mid(kNom.size());
    segmentsLus_.push_back(m.lpData);
  }
  LecteurOctets l(bloc);
  while (!l.fini()) {
    const int64_t debut = l.offset();
    uint16_t id = 0;
    uint8_t n = 0;
    uint32_t taille = 0;
    if (!l.commencePar("8BIM") || !l.skip(4) || !l.u16be(id) || !l.u8(n) ||
        !l.skip(n + (n % 2 == 0 ? 1 : 0)) || !l.u32be(taille) ||
        !l.skip(int64_t(taille) + taille % 2)) {
      // A pad missing at the very end is forgiven; anything else is kept raw.
      if (l.seek(debut) && !bloc.mid(debut).isEmpty()) reste_ = bloc.mid(debut);
      break;
    }
    Ressource r{id, bloc.mid(debut, l.offset() - debut)};
    if (id == kRessourceIPTC &&
        std::none_of(ressources_.begin(), ressources_.end(),
                     [](const Ressource& x) { return x.id == kRessourceIPTC; })) {
      LireDonnees(bloc.mid(l.offset() - taille - taille % 2, taille));
      r.bloc.clear();
    }
    ressources_.push_back(r);
  }
  // A resource cut at the end of the block (no pad byte) still gives its datasets.
  if (!reste_.isEmpty() && Tags.empty()) {
    LecteurOctets r(reste_);
    uint16_t id = 0;
    uint8_t n = 0;
    uint32_t taille = 0;
    if (r.skip(4) && r.u16be(id) && id == kRessourceIPTC && r.u8(n) &&
        r.skip(n + (n % 2 == 0 ? 1 : 0)) && r.u32be(taille) && r.remaining() == taille) {
      LireDonnees(reste_.mid(r.offset()));
      ressources_.push_back({kRessourceIPTC, {}});
      reste_.clear();
    }
  }
}

void CIPTC::AdjustIPTCLengths() {
  TailleRessource = 0;
  for (const CIPTCTag& t : Tags) TailleRessource += 5 + uint32_t(t.Data.size());
  // "8BIM", the id, an empty name of 2 bytes, the size, the datasets, the pad.
  const int64_t iptc = Tags.empty() ? 0 : 4 + 2 + 2 + 4 + TailleRessource + TailleRessource % 2;
  int64_t autres = reste_.size();
  for (const Ressource& r : ressources_) autres += r.bloc.size();
  LongueurSegment = 2 + kNom.size() + autres + iptc;
}

bool CIPTC::WriteIPTCDataJPEG(EcrivainOctets& e, QString* erreur) {
  AdjustIPTCLengths();
  QByteArray donnees;
  if (!Donnees(donnees, erreur)) return false;
  EcrivainOctets ressource;
  if (!Tags.empty()) {
    ressource.octets("8BIM");
    ressource.u16be(kRessourceIPTC);
    ressource.u16be(0);  // empty name, padded to even
    ressource.u32be(TailleRessource);
    ressource.octets(donnees);
    ressource.aligner2();
  }
  QByteArray bloc;
  bool place = false;
  for (const Ressource& r : ressources_) {
    if (r.id == kRessourceIPTC && r.bloc.isEmpty()) {
      if (!place) bloc += ressource.donnees();
      place = true;
    } else {
      bloc += r.bloc;
    }
  }
  if (!place) bloc += ressource.donnees();
  bloc += reste_;
  if (bloc.isEmpty()) return true;
  const int64_t parSegment = kMaxSegment - kNom.size();
  for (int64_t i = 0; i < bloc.size(); i += parSegment) {
    const QByteArray morceau = bloc.mid(i, parSegment);
    e.u8(0xFF);
    e.u8(0xED);
    e.u16be(uint16_t(2 + kNom.size() + morceau.size()));
    e.octets(kNom);
    e.octets(morceau);
  }
  return true;
}

void CIPTC::ReadIPTCTIFF(CExif& exif) {
  Tags.clear();
  // ifd(0) would make an empty IFD0 in a file that has none.
  CIFD* ifd0 = exif.NombreIfd() > 0 ? exif.ifd(0) : nullptr;
  const CExifDirEnt* e = ifd0 ? ifd0->Trouver(kTagIPTC) : nullptr;
  if (e == nullptr) return;
  // Held with its elements turned to little-endian: back to the file's bytes.
  LireDonnees(CExifDirEnt::Tourner(e->GetData(), e->DataFormat, exif.AlignType()));
}

bool CIPTC::WriteIPTCTIFF(CExif& exif, QString* erreur) {
  if (Tags.empty()) {
    exif.RemoveTag(Repertoire::IFD0, kTagIPTC);
    return true;
  }
  QByteArray donnees;
  if (!Donnees(donnees, erreur)) return false;
  exif.AddModifyTag(Repertoire::IFD0, kTagIPTC, FmtUndefined, donnees);
  return true;
}

}  // namespace tg::meta
