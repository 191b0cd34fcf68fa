#include "metadata/CommandesMeta.h"

#include <QJsonDocument>
#include <QStringDecoder>

#include "metadata/CImage.h"
#include "metadata/Infos.h"
#include "metadata/Octets.h"

namespace tg::meta {

QString FinsDeLigneCRLF(const QString& texte) {
  QString r;
  r.reserve(texte.size() + texte.size() / 16);
  for (qsizetype i = 0; i < texte.size(); ++i) {
    const QChar c = texte[i];
    if (c == u'\r') {
      r += QStringLiteral("\r\n");
      if (i + 1 < texte.size() && texte[i + 1] == u'\n') ++i;
    } else if (c == u'\n') {
      r += QStringLiteral("\r\n");
    } else {
      r += c;
    }
  }
  return r;
}

QString TexteDepuisFichier(const QByteArray& octets) {
  QByteArray b = octets;
  if (b.startsWith("\xEF\xBB\xBF")) b.remove(0, 3);
  QStringDecoder utf8(QStringDecoder::Utf8);
  QString texte = utf8.decode(b);
  if (utf8.hasError()) texte = DepuisCp1252(b);
  return FinsDeLigneCRLF(texte);
}

int CommandeInfos(const QStringList& arguments, QTextStream& sortie, QTextStream& erreurs) {
  QStringList args = arguments;
  const bool json = args.removeAll(QStringLiteral("--json")) > 0;
  if (args.size() != 1) {
    erreurs << "Usage : infos FICHIER [--json]\n";
    return 2;
  }
  CImage image;
  QByteArray octets;
  QString erreur;
  if (!LireFichier(args[0], octets, &erreur)) {
    erreurs << erreur << "\n";
    return 3;
  }
  image.ReadImage(args[0]);
  if (json)
    sortie << QJsonDocument(InfosJson(image)).toJson(QJsonDocument::Indented);
  else
    sortie << InfosTexte(image);
  return 0;
}

int CommandeCommentaire(const QStringList& arguments, QTextStream& sortie, QTextStream& erreurs) {
  const QString usage = QStringLiteral(
      "Usage : commentaire lire FICHIER | commentaire ecrire FICHIER --depuis TEXTE\n");
  const bool lire = arguments.size() == 2 && arguments[0] == u"lire";
  const bool ecrire =
      arguments.size() == 4 && arguments[0] == u"ecrire" && arguments[2] == u"--depuis";
  if (!lire && !ecrire) {
    erreurs << usage;
    return 2;
  }
  const QString chemin = arguments[1];
  CImage image;
  image.SetProjection(true);  // one short command: the file is mapped, not copied
  if (!image.ReadImage(chemin)) {
    erreurs << image.Erreur() << "\n";
    return 3;
  }
  CJPEG* jpeg = image.JPEG();
  CPNG* png = image.PNG();
  CGIF* gif = image.GIF();
  if (jpeg == nullptr && png == nullptr && gif == nullptr) {
    erreurs << QStringLiteral(
                   "Le fichier %1 n'est ni un JPEG, ni un PNG, ni un GIF : il n'a pas de "
                   "commentaire.\n")
                   .arg(chemin);
    return 3;
  }
  if (lire) {
    sortie << (jpeg ? jpeg->JPEGComment().Texte() : png ? png->Commentaire() : gif->Comment);
    return 0;
  }
  QByteArray octets;
  QString erreur;
  if (!LireFichier(arguments[3], octets, &erreur)) {
    erreurs << erreur << "\n";
    return 3;
  }
  const QString texte = TexteDepuisFichier(octets);
  if (jpeg) jpeg->JPEGComment().Content = texte;
  // A PNG keeps it in a tEXt chunk "Comment".
  if (png) png->SetCommentaire(texte);
  if (gif) gif->Comment = texte;
  if (!image.WriteImage(chemin)) {
    erreurs << image.Erreur() << "\n";
    return 3;
  }
  return 0;
}

}  // namespace tg::meta
