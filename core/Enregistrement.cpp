#include "core/Enregistrement.h"

#include <cerrno>

#include <QFile>
#include <QDir>
#include <QFileInfo>

#include "core/modMain.h"
#include "imaging/cAdvancedImagery.h"
#include "metadata/Resolution.h"
#include "platform/Fichiers.h"
#include "platform/Ini.h"
#include "platform/Nombres.h"
#include "platform/Systeme.h"
#include "platform/Textes.h"

namespace tg {

QString CheminResultat() {
  // A photo of a series run by the headless tool has its trials apart, as
  // the photos run side by side.
  const QString serie = qEnvironmentVariable("TESSELLOGRAPHE_SERIE");
  if (!serie.isEmpty()) return QDir(serie).filePath(QStringLiteral("resultat.jpg"));
  return RepApplication() + QStringLiteral("resultat.jpg");
}

int PoidsKo(qint64 octets) { return int(VersEntier(double(octets) / 1024.0)) + 1; }

bool PoidsAccepte(float poids, int poidsMax) { return poids <= float(poidsMax); }

QString TexteTropLourd(int poidsMax) {
  return "Le fichier image est trop lourd (>" + QString::number(poidsMax) +
         " ko)\nAbaissez la qualité d'image ou modifiez votre configuration";
}

QString CompleterQualite(const QString& commentaire, int qualite) {
  QString r = commentaire;
  return r.replace(QStringLiteral("QualiteJpg="), "QualiteJpg=" + QString::number(qualite));
}

double PixelsParCm(const SessionRecord& s) {
  double pixels = 0, longueur = 0;
  if (!LireNombre(s.EchellePix, pixels) || !LireNombre(s.EchelleMic, longueur) || !(pixels > 0) || !(longueur > 0))
    return 0;
  const double microns = longueur * (s.UniteEtalon == u"mm" ? 1000.0 : 1.0);
  return pixels * 10000.0 / microns;
}

namespace {
// The scale written where other programs read it, after the picture is
// encoded; a failure is one more error of the trial.
void EcrireEchelle(const SessionRecord& s, const QString& chemin, QStringList& erreurs) {
  const double pixelsParCm = PixelsParCm(s);
  QString erreur;
  if (pixelsParCm > 0 && !meta::EcrireResolution(chemin, pixelsParCm, &erreur)) erreurs << "Error - " + erreur;
}
}  // namespace

ResultatEssai PreparerResultat(SessionRecord& s, cAdvancedImagery& ai, int format, int qualite) {
  ResultatEssai r;
  const QString chemin = CheminResultat();
  const auto echec = [&] { r.erreurs << AvecRaison("Error - " + ai.Error_GetLast()); };
  if (format == EnrJPEG) {
    r.commentaire = CompleterQualite(s.CommentaireImage, qualite);
    if (!ai.IO_SaveImage(s.ImageCourante, chemin, FormatJPEG, 100)) echec();
    Bitmap relu;
    if (!ai.IO_LoadImage(chemin, relu)) echec();
    if (!ai.Metadata_Set_Comments(relu, r.commentaire)) echec();
    if (!ai.IO_SaveImage(relu, chemin, FormatJPEG, qualite)) echec();
    else EcrireEchelle(s, chemin, r.erreurs);
    ai.IO_DestroyBitmap(relu);
  } else {
    // These formats carry no comment block: a copy without it is written, so
    // that no part of an older block read from the source file survives.
    Bitmap copie;
    if (!ai.IO_Copy(s.ImageCourante, copie)) echec();
    if (!copie.Vide() && !ai.Metadata_Set_Comments(copie, QString())) echec();
    // The BMP header carries pixels per metre; the TIFF gets its tags after.
    if (!copie.Vide() && PixelsParCm(s) > 0) ai.Info_SetResolution(copie, PixelsParCm(s) * 100);
    if (!ai.IO_SaveImage(copie, chemin, format == EnrBMP ? FormatBMP : FormatTIFF, 0)) echec();
    else if (format == EnrTIFF) EcrireEchelle(s, chemin, r.erreurs);
    ai.IO_DestroyBitmap(copie);
  }
  r.poids = float(PoidsKo(QFileInfo(chemin).size()));
  s.PoidsFichier = r.poids;
  return r;
}

ResultatQualite MeilleureQualite(SessionRecord& s, cAdvancedImagery& ai, int qualiteConfig) {
  ResultatQualite q;
  if (s.PoidsMax <= 0) {
    q.essai = PreparerResultat(s, ai, EnrJPEG, qualiteConfig);
    q.qualite = qualiteConfig;
    q.essais = 1;
    q.trouve = q.essai.erreurs.isEmpty();
    return q;
  }
  const QString chemin = CheminResultat();
  const auto echec = [&] { q.essai.erreurs << "Error - " + ai.Error_GetLast(); };
  // The picture as the trial saves it: at 100, read back.
  if (!ai.IO_SaveImage(s.ImageCourante, chemin, FormatJPEG, 100)) echec();
  Bitmap relu;
  if (!ai.IO_LoadImage(chemin, relu)) {
    echec();
    return q;
  }
  // Each trial in a file of its own; the best one becomes resultat.jpg.
  const auto nomEssai = [&](int qualite) { return chemin + QStringLiteral(".essai%1").arg(qualite); };
  const auto essayer = [&](int qualite) {
    ++q.essais;
    if (!ai.Metadata_Set_Comments(relu, CompleterQualite(s.CommentaireImage, qualite))) echec();
    if (!ai.IO_SaveImage(relu, nomEssai(qualite), FormatJPEG, qualite)) echec();
    else EcrireEchelle(s, nomEssai(qualite), q.essai.erreurs);
    return PoidsAccepte(float(PoidsKo(QFileInfo(nomEssai(qualite)).size())), s.PoidsMax);
  };
  int meilleure = 0;
  if (essayer(100)) {
    meilleure = 100;
  } else {
    QFile::remove(nomEssai(100));
    int bas = 1, haut = 99;
    while (bas <= haut) {
      const int milieu = (bas + haut) / 2;
      if (essayer(milieu)) {
        if (meilleure) QFile::remove(nomEssai(meilleure));
        meilleure = milieu;
        bas = milieu + 1;
      } else {
        QFile::remove(nomEssai(milieu));
        haut = milieu - 1;
      }
    }
  }
  ai.IO_DestroyBitmap(relu);
  if (meilleure == 0) {
    QFile::remove(chemin);
    return q;
  }
  QFile::remove(chemin);
  if (!QFile::rename(nomEssai(meilleure), chemin)) {
    q.essai.erreurs << QStringLiteral("Le fichier « %1 » ne peut pas être écrit : %2.")
                           .arg(chemin, RaisonSysteme(errno));
    return q;
  }
  q.trouve = true;
  q.qualite = meilleure;
  q.essai.commentaire = CompleterQualite(s.CommentaireImage, meilleure);
  q.essai.poids = float(PoidsKo(QFileInfo(chemin).size()));
  s.PoidsFichier = q.essai.poids;
  return q;
}

QString ExtensionEnregistrement(int format) {
  switch (format) {
    case EnrBMP:
      return QStringLiteral(".bmp");
    case EnrTIFF:
      return QStringLiteral(".tif");
    default:
      return QStringLiteral(".jpg");
  }
}

QString FiltreEnregistrement(int format) {
  switch (format) {
    case EnrBMP:
      return QStringLiteral("BMP (*.bmp)|*.bmp");
    case EnrTIFF:
      return QStringLiteral("TIFF (*.tif)|*.tif");
    default:
      return QStringLiteral("Jpeg (*.jpg)|*.jpg");
  }
}

QString TitreNettoye(const QString& titre) {
  QString t = EnleverSpeciaux(EnleverAccents(titre.trimmed().toLower()));
  return t.replace(u' ', u'_');
}

QString NomParDefaut(const SessionRecord& s, int format) {
  const QString ext = ExtensionEnregistrement(format);
  if (s.TitreImageConfig == u"1") return TitreNettoye(s.TitreImage) + ext;
  return s.NomFichImage + QStringLiteral("%1").arg(s.NextNumberImage, 3, 10, QChar(u'0')) + ext;
}

void AvancerNumeroImage(SessionRecord& s) {
  if (s.TitreImageConfig != u"0") return;
  ++s.NextNumberImage;
  EcrireIni(QStringLiteral("General"), QStringLiteral("NextNumberImage"),
            QString::number(s.NextNumberImage), CheminUserConfig());
}

bool CopierResultat(const QString& cible) {
  const QString source = CheminResultat();
  if (cible.isEmpty() || !QFileInfo(source).isFile()) return false;
  if (QFileInfo(cible).absoluteFilePath() == QFileInfo(source).absoluteFilePath()) return true;
  // Written beside the target, flushed and renamed over it: a failed copy
  // leaves the old file whole.
  return CopierFichierSur(source, cible);
}

QString TexteListing(const SessionRecord& s) {
  const QString& sep = s.SeparateurDecimal;
  const auto b = [](bool v) { return v ? QStringLiteral("VRAI") : QStringLiteral("FAUX"); };
  QStringList l;
  l << "PathOrigine=" + s.PathOrigine << "Hauteur=" + QString::number(s.Hauteur)
    << "Largeur=" + QString::number(s.Largeur) << "Cadrage=" + TexteReel(s.Cadrage, sep)
    << "PoidsFichier=" + TexteReel(s.PoidsFichier, sep) << "TitreImage=" + s.TitreImage
    << "FocaleAPN=" + TexteReel(s.FocaleAPN, sep) << "DigitalZoom=" + TexteReel(s.DigitalZoom, sep)
    << "Modele=" + s.Modele << "ImageFinale=" + b(s.ImageFinale) << "MesureTemp=" + b(s.MesureTemp);
  return l.join(u'\n');
}

}  // namespace tg
