#include "metadata/Infos.h"

#include <QJsonArray>

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
      const QString sens =
          r.genre == Repertoire::GPS || e.GetDataSize() == 0 || e.DataFormat == FmtAscii
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
  return t;
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
    o["commentaire"] = j->JPEGComment().Texte();
  } else if (CTIFF* t = image.TIFF()) {
    o["exif"] = ExifJson(t->EXIF());
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
    t += QStringLiteral("Commentaire :\n%1\n").arg(j->JPEGComment().Texte());
  } else if (CTIFF* tf = image.TIFF()) {
    t += ExifTexte(tf->EXIF());
  }
  return t;
}

}  // namespace tg::meta
