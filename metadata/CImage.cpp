#include "metadata/CImage.h"

#include <QFile>

#include "metadata/Octets.h"

namespace tg::meta {

int CImage::TypeDepuisOctets(const QByteArray& debut, int precedent) {
  if (debut.startsWith("BM")) return TypeBMP;
  if (debut.startsWith("GIF")) return TypeGIF;
  if (debut.startsWith(QByteArray("\x89PNG\r\n\x1A\n", 8))) return TypePNG;
  if (debut.startsWith(QByteArray("\xFF\xD8", 2))) return TypeJPEG;
  if (debut.startsWith(QByteArray("MM\0*", 4)) || debut.startsWith(QByteArray("II*\0", 4)))
    return TypeTIFF;
  return precedent;
}

int CImage::GetImageType(const QString& path) {
  QFile f(path);
  if (f.open(QIODevice::ReadOnly)) ImageType = TypeDepuisOctets(f.read(17), ImageType);
  return ImageType;
}

bool CImage::ReadImage(const QString& path) {
  erreur_.clear();
  format_.reset();
  QByteArray octets;
  fichier_.reset();
  if (projection_ ? !LireFichierProjete(path, octets, fichier_, &erreur_) : !LireFichier(path, octets, &erreur_))
    return false;
  ImageType = TypeDepuisOctets(octets.left(17), ImageType);
  switch (ImageType) {
    case TypeJPEG: {
      auto j = std::make_unique<CJPEG>();
      j->LireOctets(octets, path);
      // The bytes read are the whole file from its start: the writer may copy from it.
      if (fichier_ && fichier_->isOpen()) j->SetDescripteurSource(fichier_->handle());
      format_ = std::move(j);
      return true;
    }
    case TypeTIFF: {
      auto t = std::make_unique<CTIFF>();
      t->LireOctets(octets, path);
      format_ = std::move(t);
      return true;
    }
    case TypePNG: {
      auto p = std::make_unique<CPNG>();
      p->LireOctets(octets, path);
      format_ = std::move(p);
      return true;
    }
    case TypeGIF: {
      auto g = std::make_unique<CGIF>();
      g->LireOctets(octets, path);
      format_ = std::move(g);
      return true;
    }
    case TypeBMP:
    default: {
      auto b = std::make_unique<CBMP>();
      b->LireOctets(octets, path);
      format_ = std::move(b);
      return true;
    }
  }
}

bool CImage::WriteImage(const QString& path) {
  erreur_.clear();
  // No writer, no rewrite: the file stays as it is rather than emptied.
  if (!format_) {
    if (erreur_.isEmpty())
      erreur_ = QStringLiteral("Aucune image lue : le fichier %1 n'est pas réécrit.").arg(path);
    return false;
  }
  return RemplacerFichierPar(
      path, [this](QIODevice& f, QString* e) { return format_->EcrireVers(f, e); }, &erreur_);
}

}  // namespace tg::meta
