#include "core/Chargement.h"

#include <QFile>
#include <QFileInfo>

#include "core/Formats.h"
#include "core/Session.h"
#include "core/modMain.h"
#include "imaging/VerificationFichier.h"
#include "imaging/cAdvancedImagery.h"
#include "metadata/CPNG.h"
#include "metadata/EchelleExterne.h"
#include "platform/Fichiers.h"
#include "platform/Nombres.h"

namespace tg {

namespace {
std::function<void(SessionRecord&)>& Lecteur() {
  static std::function<void(SessionRecord&)> lecteur;
  return lecteur;
}
// The PNG signature at the file's start; the rest is not read.
bool EstPNG(const QString& chemin) {
  QFile f(chemin);
  return f.open(QIODevice::ReadOnly) && f.read(8) == QByteArray("\x89PNG\r\n\x1A\n", 8);
}
}  // namespace

void InstallerLecteurMeta(std::function<void(SessionRecord&)> lecteur) {
  Lecteur() = std::move(lecteur);
}

void LireMeta(SessionRecord& s) {
  if (Lecteur()) Lecteur()(s);
}

bool ChargerBitmap(SessionRecord& s, cAdvancedImagery& ai, const QString& chemin) {
  // The former picture goes first: a failed load leaves nothing of it.
  ai.IO_DestroyBitmap(s.ImageSansFiltre);
  ai.IO_DestroyBitmap(s.ImageCourante);
  ai.IO_DestroyBitmap(s.ImageFormatee);
  ai.IO_DestroyBitmap(s.ImageMesure);
  ai.IO_DestroyBitmap(s.ImageFiltre);
  return ai.IO_LoadImage(chemin, s.ImageCourante);
}

bool ChargerEntete(SessionRecord& s, cAdvancedImagery& ai, const QString& chemin, QSize& taille) {
  ai.IO_DestroyBitmap(s.ImageSansFiltre);
  ai.IO_DestroyBitmap(s.ImageCourante);
  ai.IO_DestroyBitmap(s.ImageFormatee);
  ai.IO_DestroyBitmap(s.ImageMesure);
  ai.IO_DestroyBitmap(s.ImageFiltre);
  if (!ai.IO_LoadEntete(chemin, s.ImageCourante)) return false;
  taille = QSize(ai.Info_Width(s.ImageCourante), ai.Info_Height(s.ImageCourante));
  return true;
}

QStringList RemplirSession(SessionRecord& s, cAdvancedImagery& ai, QString chemin, QSize tailleFichier) {
  QStringList erreurs;
  ReinitialiserSession(s, ai, tailleFichier);
  s.PathOrigine = chemin;
  if (!ai.Metadata_Get_EXIF(s.ImageCourante, s.ExifTexte, 1))
    erreurs << "Error - " + ai.Error_GetLast();
  if (!ai.Metadata_Get_EXIF(s.ImageCourante, s.IptcTexte, 2))
    erreurs << "Error - " + ai.Error_GetLast();
  if (!ai.Metadata_Get_Comments(s.ImageCourante, s.CommentaireImage))
    erreurs << "Error - " + ai.Error_GetLast();
  // A PNG's chunk holds the block with LF ends, in UTF-8 for an iTXt: the
  // metadata library gives it back as the program wrote it (CR LF).
  if (EstPNG(chemin))
    if (const auto commentaire = meta::CommentairePNG(chemin)) s.CommentaireImage = *commentaire;
  return erreurs;
}

AffichageExif ExifApresChargement(const SessionRecord& s) {
  AffichageExif a;
  if (!s.ExifTexte.isEmpty() || !s.IptcTexte.isEmpty()) {
    a.visible = true;
    a.texte = s.IptcTexte + "\n" + s.ExifTexte;
  }
  if (!s.CommentaireImage.isEmpty()) {
    a.visible = true;
    a.texte = s.CommentaireImage;
  }
  return a;
}

DecisionControle DeciderControleImage(const SessionRecord& s) {
  DecisionControle d;
  if (!s.ImageDejaFormatee) {
    d.format = FormatPourImageEtroite(s.Largeur, s.ApnLargCourant);
    d.formatReinitialise = d.formatSortie = d.format.has_value();
    return d;
  }
  // A formatted file of another width leaves the format, but it is applied again.
  d.format = FormatDeLargeur(s.Largeur);
  d.formatSortie = true;
  d.imageFormatee = true;
  return d;
}

void LireEchelleExterne(SessionRecord& s, const QString& chemin) {
  s.MicronsParPixelExterne = 0;
  s.SourceEchelleExterne.clear();
  // Our own block is the reference when there is one.
  if (!s.CommentaireImage.isEmpty() && !s.Application.isEmpty()) return;
  if (const auto e = meta::LireEchelleExterne(chemin)) {
    s.MicronsParPixelExterne = e->micronsParPixel;
    s.SourceEchelleExterne = e->source;
  }
}

Bulle BulleEchelleExterne(const SessionRecord& s) {
  Bulle b;
  b.titre = QStringLiteral("Echelle trouvée");
  b.icone = Icone::Information;
  b.texte = QStringLiteral("Cette image porte une échelle écrite par un autre programme (%1) :\n%2 µm par pixel.\n"
                           "Cliquez sur + d'infos si vous voulez en savoir plus !")
                .arg(s.SourceEchelleExterne, TexteReel(Arrondir(s.MicronsParPixelExterne, 4), s.SeparateurDecimal));
  b.texteLong = QStringList{"Pour mesurer sur l'image avec cette échelle :",
                            "- menu Mesures => Récupérer une échelle et mesurer",
                            "",
                            "Pour l'utiliser dans le cartouche, étalonnez (outil à gauche) :",
                            "100 µm = " + TexteReel(Arrondir(100 / s.MicronsParPixelExterne, 2), s.SeparateurDecimal) +
                                " pixels de la photo."}
                    .join(u'\n');
  return b;
}

Bulle BulleImageFormatee() {
  Bulle b;
  b.titre = QStringLiteral("Image formatée TG");
  b.icone = Icone::Information;
  b.texte = QStringLiteral(
      "Votre image est formatée TG !\n(Le format de sortie a peut-être été adapté...)\n"
      "Cliquez sur + d'infos si vous voulez en savoir plus !");
  b.texteLong = QStringList{"Vous pouvez :",
                            "",
                            "A) Consulter les métadonnées (+ anciens Exif):",
                            "- Cliquez sur le + en haut la page",
                            "",
                            "B) Récupérer automatiquement l'échelle et mesurer sur l'image:",
                            "- menu Mesures => Récupérer une échelle et mesurer",
                            "",
                            "C) Modifier le cartouche en conservant l'étalonnage:",
                            "- Recadrez (outil à gauche) pour suprimer le cartouche",
                            "- Redimensionnez comme normalement (étape 2)",
                            "- Récupérez les métadonnées à l'étape Cartouche (3)",
                            "",
                            "              Consultez l'aide pour plus de détails."}
                    .join(u'\n');
  return b;
}

void AjouterRecent(std::array<QString, 5>& liste, const QString& chemin) {
  if (chemin.isEmpty()) return;
  for (size_t i = liste.size() - 1; i > 0; --i) liste[i] = liste[i - 1];
  liste[0] = chemin;
}

QStringList TitresRecents(const std::array<QString, 5>& liste) {
  QStringList titres;
  for (const QString& c : liste)
    if (!c.isEmpty()) titres << QFileInfo(c).fileName();
  return titres;
}

QStringList LireFichierRecent() {
  QStringList items;
  if (!FileExists(CheminRecent())) return items;
  LireListe(CheminRecent(), items);
  return items;
}

QString FiltreAvecPhotos(const QString& filtre) {
  QStringList parts = filtre.split(u'|');
  if (parts.size() < 2) return filtre;
  auto motifs = [](const QStringList& extensions) {
    QStringList m;
    for (const QString& e : extensions) m << "*." + e.toUpper();
    return m.join(u';');
  };
  const QString heif = motifs(ExtensionsHEIF()), raw = motifs(ExtensionsRAW());
  parts[1] += u';' + heif + u';' + raw;
  // The closing bar leaves an empty last part: the new entries go before it.
  const bool fermee = parts.last().isEmpty();
  if (fermee) parts.removeLast();
  parts << QStringLiteral("Photos de téléphone HEIC / HEIF / AVIF  (*.HEIC, *.HEIF, *.AVIF)") << heif
        << QStringLiteral("Fichiers RAW d'appareil photo  (*.CR2, *.CR3, *.NEF, *.ARW, *.ORF, *.RW2, *.RAF, *.PEF, "
                          "*.DNG...)")
        << raw;
  if (fermee) parts << QString();
  return parts.join(u'|');
}

QString NettoyerCheminLigneCommande(const QString& ligne) {
  return QString(ligne).remove(u'"').trimmed();
}

QString CheminDepose(const QStringList& fichiers) { return fichiers.join(QString()); }

QString TextePressePapierOK(int largeur, int hauteur) {
  return "Image de " + QString::number(largeur) + " x " + QString::number(hauteur) +
         " pixels récupérée du presse-papier.\nAttention : aucune information dans cette image !"
         "\n(Exif et Métadonnées)";
}

QString CheminDansTravail(const SessionRecord& s, const QString& nom) {
  QString rep = s.RepTravail;
  if (!rep.isEmpty() && !rep.endsWith(u'/')) rep += u'/';
  return rep + nom;
}

bool CreerImageVide(const SessionRecord& s, cAdvancedImagery& ai, QString& chemin) {
  chemin = CheminDansTravail(s, QStringLiteral("image_vide.jpg"));
  Bitmap vide;
  const bool ok = ai.IO_CreateImage(vide, s.ApnLargCourant, s.ApnHautCourant, 24) &&
                  ai.Effect_Invert(vide) && ai.IO_SaveImage(vide, chemin, FormatJPEG, 100);
  ai.IO_DestroyBitmap(vide);
  return ok;
}

QString TexteImageVideCreee(int largeur, int hauteur) {
  return "Image vide de " + QString::number(largeur) + " x " + QString::number(hauteur) +
         " pixels créée !";
}

}  // namespace tg
