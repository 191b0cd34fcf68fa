// tg-edition-meta: the metadata library's edits for scripts that check them
// on real files (scripts/verifier-echantillons.sh). Not installed.
//   tg-edition-meta exif FICHIER TAG TEXTE   adds or changes an ASCII tag of IFD0
//   tg-edition-meta commentaire FICHIER TEXTE
// Exit 0 done, 2 bad usage, 3 refused (the French message on stderr).
#include <QCoreApplication>
#include <cstdio>

#include "metadata/CImage.h"

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  const QStringList a = QCoreApplication::arguments().mid(1);
  const bool exif = a.size() == 4 && a[0] == u"exif";
  const bool commentaire = a.size() == 3 && a[0] == u"commentaire";
  if (!exif && !commentaire) {
    std::fputs("Usage : tg-edition-meta exif FICHIER TAG TEXTE | commentaire FICHIER TEXTE\n", stderr);
    return 2;
  }
  tg::meta::CImage image;
  if (!image.ReadImage(a[1])) {
    std::fprintf(stderr, "%s\n", qPrintable(image.Erreur()));
    return 3;
  }
  if (exif) {
    bool ok = false;
    const int tag = a[2].toInt(&ok, 0);
    tg::meta::CExif* x = image.JPEG() ? static_cast<tg::meta::CExif*>(image.JPEG()->EXIF())
                         : image.TIFF() ? static_cast<tg::meta::CExif*>(&image.TIFF()->EXIF())
                                        : nullptr;
    if (!ok || x == nullptr) {
      std::fputs("Étiquette invalide, ou fichier ni JPEG ni TIFF.\n", stderr);
      return 2;
    }
    x->AddModifyTag(tg::meta::Repertoire::IFD0, tag, tg::meta::FmtAscii, a[3].toLatin1() + '\0');
  } else if (image.JPEG()) {
    image.JPEG()->JPEGComment().Content = a[2];
  } else if (image.PNG()) {
    image.PNG()->SetCommentaire(a[2]);
  } else if (image.GIF()) {
    image.GIF()->Comment = a[2];
  } else {
    std::fputs("Ce fichier n'a pas de place pour un commentaire.\n", stderr);
    return 3;
  }
  if (!image.WriteImage(a[1])) {
    std::fprintf(stderr, "%s\n", qPrintable(image.Erreur()));
    return 3;
  }
  return 0;
}
