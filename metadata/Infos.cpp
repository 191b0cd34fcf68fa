#include "metadata/Infos.h"

#include <QJsonArray>
#include <cmath>
#include <iterator>

#include "metadata/CImage.h"

namespace tg::meta {

namespace {

const char* const kNomsTypes[] = {"JPEG", "TIFF", "BMP", "PNG", "GIF"};

struct RepertoireNomme {
  QString nom;
  Repertoire genre;
  CIFD* ifd;
};

// The directories in the order of the dump; a TIFF names its chain IFD0, IFD1, IFD2...
std::vector<RepertoireNomme> Repertoires(CExif& exif) {
  std::vector<RepertoireNomme> r;
  for (int i = 0; i < exif.NombreIfd(); ++i)
    r.push_back({QStringLiteral("IFD%1").arg(i), i == 1 ? Repertoire::IFD1 : Repertoire::IFD0,
                 exif.ifd(i)});
  r.push_back({QStringLiteral("EXIF"), Repertoire::SubIFD, &exif.SubIFD()});
  r.push_back({QStringLiteral("GPS"), Repertoire::GPS, &exif.GPS()});
  r.push_back({QStringLiteral("Interop"), Repertoire::Interop, &exif.InteroperabilityIFD()});
  return r;
}

CMakerNote* Note(CExif& exif) {
  if (auto* j = dynamic_cast<CExifJPEG*>(&exif)) return &j->NoteFabricant();
  if (auto* t = dynamic_cast<CExifTIFF*>(&exif)) return &t->NoteFabricant();
  return nullptr;
}

QJsonObject NoteJson(const CMakerNote& note) {
  QJsonArray entrees;
  for (const CExifDirEnt& e : note.Directories)
    entrees.append(QJsonObject{{"tag", e.Tag},
                               {"nom", note.NomTag(e.Tag)},
                               {"format", e.DataFormat},
                               {"nombre", e.NumberOfComponent},
                               {"valeur", note.GetMakerNoteFormatted(e)}});
  return QJsonObject{{"fabricant", note.Manufacture},
                     {"version", note.MakerNoteTagVersion},
                     {"offset", note.Offset},
                     {"entrees", entrees}};
}

QJsonObject ExifJson(CExif& exif) {
  QJsonObject o;
  o["ordre"] = exif.AlignType() == Ordre::Intel ? "II" : "MM";
  o["fabricant"] = exif.GetManufacturer();
  QJsonObject reps;
  for (const RepertoireNomme& r : Repertoires(exif)) {
    QJsonArray entrees;
    if (r.ifd)
      for (const CExifDirEnt& e : r.ifd->Directories)
        entrees.append(QJsonObject{{"tag", e.Tag},
                                   {"nom", NomTag(e.Tag, r.genre)},
                                   {"format", e.DataFormat},
                                   {"nombre", e.NumberOfComponent},
                                   {"valeur", e.GetDataFormatted()}});
    reps[r.nom] = entrees;
  }
  o["repertoires"] = reps;
  const CMakerNote* note = Note(exif);
  if (note && note->Lu()) o["makernote"] = NoteJson(*note);
  return o;
}

QString ExifTexte(CExif& exif) {
  QString t = QStringLiteral("EXIF : ordre %1, fabricant %2\n")
                  .arg(exif.AlignType() == Ordre::Intel ? "II" : "MM")
                  .arg(exif.GetManufacturer());
  for (const RepertoireNomme& r : Repertoires(exif)) {
    if (r.ifd == nullptr || r.ifd->Vide()) continue;
    t += QStringLiteral("  [%1]\n").arg(r.nom);
    for (const CExifDirEnt& e : r.ifd->Directories) {
      QString nom = NomTag(e.Tag, r.genre);
      if (nom.isEmpty()) nom = QStringLiteral("(inconnu)");
      QString valeur = e.GetDataFormatted();
      const QString sens = r.genre == Repertoire::GPS || e.GetDataSize() == 0 ||
                                   e.DataFormat == FmtAscii ||
                                   !(std::abs(e.GetDataVariant()) <
                                     9.0e18)  // outside int64: no meaning, no overflow
                               ? QString()
                               : SignificationValeur(e.Tag, int64_t(e.GetDataVariant()));
      if (!sens.isEmpty()) valeur += QStringLiteral(" (%1)").arg(sens);
      t += QStringLiteral("    0x%1 %2  format %3 x %4 : %5\n")
               .arg(e.Tag, 4, 16, QLatin1Char('0'))
               .arg(nom)
               .arg(e.DataFormat)
               .arg(e.NumberOfComponent)
               .arg(valeur);
    }
  }
  const CMakerNote* note = Note(exif);
  if (note && note->Lu()) {
    t += QStringLiteral("  [MakerNote] fabricant %1, version %2, en-tête de %3 octets\n")
             .arg(note->Manufacture)
             .arg(note->MakerNoteTagVersion)
             .arg(note->Offset);
    for (const CExifDirEnt& e : note->Directories) {
      QString nom = note->NomTag(e.Tag);
      if (nom.isEmpty()) nom = QStringLiteral("(inconnu)");
      t += QStringLiteral("    0x%1 %2  format %3 x %4 : %5\n")
               .arg(e.Tag, 4, 16, QLatin1Char('0'))
               .arg(nom)
               .arg(e.DataFormat)
               .arg(e.NumberOfComponent)
               .arg(note->GetMakerNoteFormatted(e));
    }
  }
  return t;
}

// The datasets in file order.
QJsonArray IptcJson(const CIPTC& iptc) {
  QJsonArray a;
  for (const CIPTCTag& t : iptc.Tags)
    a.append(QJsonObject{{"enregistrement", t.RecordNumber},
                         {"jeu", t.DataSetNumber},
                         {"nom", t.Nom()},
                         {"valeur", t.GetDataFormatted(iptc.Utf8())}});
  return a;
}

QString IptcTexte(const CIPTC& iptc) {
  if (iptc.Tags.empty()) return {};
  QString t = QStringLiteral("IPTC :\n");
  for (const CIPTCTag& d : iptc.Tags)
    t += QStringLiteral("  %1:%2 %3 : %4\n")
             .arg(d.RecordNumber)
             .arg(d.DataSetNumber)
             .arg(d.Nom().isEmpty() ? QStringLiteral("(inconnu)") : d.Nom())
             .arg(d.GetDataFormatted(iptc.Utf8()));
  return t;
}

// Every chunk in file order; the text chunks with their keyword and text.
QJsonArray PngJson(const CPNG& p) {
  QJsonArray chunks;
  size_t t = 0, z = 0, i = 0;
  for (const CChunk& c : p.Chunks) {
    QJsonObject o{{"type", QString::fromLatin1(c.ChunkType)}, {"longueur", qint64(c.Length)}};
    const CTexteBase* texte = nullptr;
    if (c.ChunkType == "tEXt" && t < p.tEXt.size()) texte = &p.tEXt[t++];
    if (c.ChunkType == "zTXt" && z < p.zTXt.size()) texte = &p.zTXt[z++];
    if (c.ChunkType == "iTXt" && i < p.iTXt.size()) texte = &p.iTXt[i++];
    if (texte) {
      o["motcle"] = texte->MotCle;
      o["texte"] = texte->Content;
    }
    chunks.append(o);
  }
  return chunks;
}

const char* const kChampsBMP[] = {
    "bfType",          "bfSize",          "bfReserved1",   "bfReserved2",
    "bfOffBits",       "biSize",          "biWidth",       "biHeight",
    "biPlanes",        "biBitCount",      "biCompression", "biSizeImage",
    "biXPelsPerMeter", "biYPelsPerMeter", "biClrUsed",     "biClrImportant"};

QJsonObject BmpJson(const CBMP& b) {
  const qint64 v[] = {b.bfType,          b.bfSize,          b.bfReserved1,   b.bfReserved2,
                      b.bfOffBits,       b.biSize,          b.biWidth,       b.biHeight,
                      b.biPlanes,        b.biBitCount,      b.biCompression, b.biSizeImage,
                      b.biXPelsPerMeter, b.biYPelsPerMeter, b.biClrUsed,     b.biClrImportant};
  QJsonObject o;
  for (size_t k = 0; k < std::size(kChampsBMP); ++k) o[kChampsBMP[k]] = v[k];
  return o;
}

}  // namespace

QString TexteMarqueur(uint16_t marker) {
  return QStringLiteral("%1%2")
      .arg(marker & 0xFF, 2, 16, QLatin1Char('0'))
      .arg(marker >> 8, 2, 16, QLatin1Char('0'))
      .toUpper();
}

QJsonObject InfosJson(CImage& image) {
  QJsonObject o;
  o["type"] = image.ImageType;
  if (CJPEG* j = image.JPEG()) {
    QJsonArray segments;
    for (const CMarker& m : j->Segments())
      segments.append(QJsonObject{{"marqueur", TexteMarqueur(m.Marker)},
                                  {"position", qint64(m.lpData)},
                                  {"longueur", qint64(m.Length)}});
    o["segments"] = segments;
    const CJFIF& f = j->JFIF();
    if (f.Present)
      o["jfif"] = QJsonObject{{"version", f.Version},       {"unite", f.unit},
                              {"densiteX", f.Xdensity},     {"densiteY", f.Ydensity},
                              {"miniatureX", f.Xthumbnail}, {"miniatureY", f.Ythumbnail}};
    else
      o["jfif"] = QJsonValue::Null;
    o["exif"] = ExifJson(*j->EXIF());
    o["iptc"] = IptcJson(j->IPTC());
    o["commentaire"] = j->JPEGComment().Texte();
  } else if (CTIFF* t = image.TIFF()) {
    o["exif"] = ExifJson(t->EXIF());
    o["iptc"] = IptcJson(t->IPTC());
  } else if (CPNG* p = image.PNG()) {
    o["png"] = PngJson(*p);
  } else if (CGIF* g = image.GIF()) {
    if (g->Lu())
      o["gif"] = QJsonObject{{"version", g->Version},
                             {"largeur", g->Width},
                             {"hauteur", g->Height},
                             {"commentaire", g->Comment}};
  } else if (CBMP* b = image.BMP()) {
    if (b->Lu()) o["bmp"] = BmpJson(*b);
  }
  return o;
}

QString InfosTexte(CImage& image) {
  const int type = image.ImageType;
  QString t = QStringLiteral("Type : %1 (%2)\n")
                  .arg(type)
                  .arg(type >= 0 && type <= 4 ? kNomsTypes[type] : "?");
  if (CJPEG* j = image.JPEG()) {
    t += QStringLiteral("Segments :\n");
    for (const CMarker& m : j->Segments())
      t += QStringLiteral("  %1  position %2  longueur %3\n")
               .arg(TexteMarqueur(m.Marker))
               .arg(m.lpData)
               .arg(m.Length);
    const CJFIF& f = j->JFIF();
    if (f.Present)
      t += QStringLiteral("JFIF : version %1, densité %2x%3 (unité %4), miniature %5x%6\n")
               .arg(f.Version)
               .arg(f.Xdensity)
               .arg(f.Ydensity)
               .arg(f.unit)
               .arg(f.Xthumbnail)
               .arg(f.Ythumbnail);
    t += ExifTexte(*j->EXIF());
    t += IptcTexte(j->IPTC());
    t += QStringLiteral("Commentaire :\n%1\n").arg(j->JPEGComment().Texte());
  } else if (CTIFF* tf = image.TIFF()) {
    t += ExifTexte(tf->EXIF());
    t += IptcTexte(tf->IPTC());
  } else if (CPNG* p = image.PNG()) {
    t += QStringLiteral("Blocs PNG :\n");
    for (const QJsonValue& v : PngJson(*p)) {
      const QJsonObject c = v.toObject();
      t += QStringLiteral("  %1  longueur %2")
               .arg(c["type"].toString())
               .arg(c["longueur"].toInteger());
      if (c.contains("motcle"))
        t += QStringLiteral("  %1 : %2").arg(c["motcle"].toString(), c["texte"].toString());
      t += "\n";
    }
  } else if (CGIF* g = image.GIF()) {
    if (g->Lu())
      t += QStringLiteral("GIF %1 : %2x%3\nCommentaire :\n%4\n")
               .arg(g->Version)
               .arg(g->Width)
               .arg(g->Height)
               .arg(g->Comment);
  } else if (CBMP* b = image.BMP()) {
    if (b->Lu()) {
      const QJsonObject o = BmpJson(*b);
      for (const char* nom : kChampsBMP)
        t += QStringLiteral("  %1 = %2\n").arg(QLatin1String(nom)).arg(o[nom].toInteger());
    }
  }
  return t;
}

}  // namespace tg::meta
