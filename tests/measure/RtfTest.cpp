// The notebook's rich text: the thumbnail as JPEG bytes of the right size,
// embedded whole in the document, and the text escaped.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTextCursor>
#include <QTextDocument>

#include "imaging/cAdvancedImagery.h"
#include "measure/Carnet.h"
#include "measure/Rtf.h"
#include "measure/frmAppercuRtf.h"

namespace tg {
namespace {

Vignette VignetteDe(int l, int h, int largeur) {
  cAdvancedImagery ai;
  Bitmap image;
  EXPECT_TRUE(ai.IO_CreateImage(image, l, h, 24));
  EXPECT_TRUE(ai.MemoryDC_FillRectangle(image, 0, 0, l / 2, h, 0x0000FF));  // red left half
  Vignette v;
  EXPECT_TRUE(CreerVignette(ai, image, largeur, QDir::currentPath(), v)) << ai.Error_GetLast().toStdString();
  return v;
}

TEST(Vignette, JpegALaLargeurChoisieHauteurEnProportion) {
  const Vignette v = VignetteDe(400, 300, 200);
  EXPECT_EQ(v.largeur, 200);
  EXPECT_EQ(v.hauteur, 150);
  QImage decode;
  ASSERT_TRUE(decode.loadFromData(v.jpeg, "JPEG"));
  EXPECT_EQ(decode.size(), QSize(200, 150));
  EXPECT_GT(qRed(decode.pixel(20, 75)), 200);  // the red half survives
  EXPECT_LT(qRed(decode.pixel(180, 75)), 60);
  // Nothing left behind in the temporary folder.
  EXPECT_TRUE(QDir::current().entryList({"vignette-*"}, QDir::Dirs).isEmpty());
}

// The bytes of the one \pict group, decoded from its hex.
QByteArray ImageDuRtf(const QByteArray& rtf) {
  const qsizetype debut = rtf.indexOf("{\\pict");
  if (debut < 0) return {};
  const qsizetype fin = rtf.indexOf('}', debut);
  QByteArray groupe = rtf.mid(debut, fin - debut);
  groupe = groupe.mid(groupe.indexOf("\r\n"));  // after the control words
  return QByteArray::fromHex(groupe.replace("\r\n", ""));
}

int ProfondeurAccolades(const QByteArray& rtf, bool& jamaisNegative) {
  int n = 0;
  jamaisNegative = true;
  for (qsizetype i = 0; i < rtf.size(); ++i) {
    if (rtf[i] == '\\') {
      ++i;
      continue;
    }
    if (rtf[i] == '{') ++n;
    if (rtf[i] == '}' && --n < 0) jamaisNegative = false;
  }
  return n;
}

TEST(Rtf, DocumentAvecLaVignetteEnJpegEtLeTexteEchappe) {
  SessionRecord s;
  s.TitreImage = "Titre {spécial} \\ fin";
  s.Largeur = 800;
  s.LargeurOrigine = 1600;
  const QList<LigneRapport> lignes =
      LignesRapport(s, {"Mesure 1 = 2 µm : a\r\n", "", ApplicationRapport()});
  const Vignette v = VignetteDe(300, 200, 150);
  const QByteArray rtf = EcrireRtf(lignes, v);

  EXPECT_TRUE(rtf.startsWith("{\\rtf1\\ansi\\ansicpg1252"));
  bool ok = false;
  EXPECT_EQ(ProfondeurAccolades(rtf, ok), 0);
  EXPECT_TRUE(ok);
  for (char c : rtf) ASSERT_LT(static_cast<unsigned char>(c), 0x80);
  EXPECT_TRUE(rtf.contains("Titre \\{sp\\'e9cial\\} \\\\ fin\\par"));
  EXPECT_TRUE(rtf.contains("\\pict\\jpegblip\\picw150\\pich100"));
  EXPECT_EQ(ImageDuRtf(rtf), v.jpeg);
  // The picture sits after the title block, before "Infos photo".
  EXPECT_LT(rtf.indexOf("Provenance"), rtf.indexOf("\\pict"));
  EXPECT_LT(rtf.indexOf("\\pict"), rtf.indexOf("Infos photo"));

  // Without a thumbnail the document holds no picture.
  EXPECT_FALSE(EcrireRtf(lignes, Vignette()).contains("\\pict"));
}

// The preview's document, edited by the user: its text, styles, line breaks
// and the thumbnail's own bytes go to the file.
TEST(Rtf, LeDocumentRetoucheGardeTexteStylesEtVignette) {
  SessionRecord s;
  s.TitreImage = "Carnet";
  s.Largeur = 800;
  const QList<LigneRapport> lignes = LignesRapport(s, {"Mesure 1 = 2 µm : a\r\n", "", ApplicationRapport()});
  const Vignette v = VignetteDe(300, 200, 150);
  QTextDocument doc;
  RemplirDocumentRapport(doc, lignes, v);
  QTextCursor c(&doc);
  c.movePosition(QTextCursor::End);
  c.insertBlock();
  QTextCharFormat rouge;
  rouge.setFontWeight(QFont::Bold);
  rouge.setForeground(QColor(200, 0, 0));
  c.insertText(QStringLiteral("Remarque : paroi épaisse {x}"), rouge);
  c.insertText(QString(QChar::LineSeparator) + QStringLiteral("suite"), QTextCharFormat());

  const QByteArray rtf = EcrireRtf(doc, v);
  bool ok = false;
  EXPECT_EQ(ProfondeurAccolades(rtf, ok), 0);
  EXPECT_TRUE(ok);
  for (char ch : rtf) ASSERT_LT(static_cast<unsigned char>(ch), 0x80);
  EXPECT_EQ(ImageDuRtf(rtf), v.jpeg);
  EXPECT_LT(rtf.indexOf("Carnet"), rtf.indexOf("\\pict"));
  EXPECT_LT(rtf.indexOf("\\pict"), rtf.indexOf("Infos photo"));
  // The red of the remark is in the colour table and used by its text.
  const qsizetype table = rtf.indexOf("{\\colortbl ;");
  const QList<QByteArray> couleurs = rtf.mid(table, rtf.indexOf('}', table) - table).split(';');
  const qsizetype rouge200 = couleurs.indexOf("\\red200\\green0\\blue0");
  ASSERT_GT(rouge200, 0);
  EXPECT_TRUE(rtf.contains("{\\cf" + QByteArray::number(rouge200) + "\\fs16\\b Remarque : paroi \\'e9paisse \\{x\\}}"));
  EXPECT_TRUE(rtf.contains("\\line suite}"));

  // LibreOffice, where installed, reads the remark back as it was typed.
  const QString soffice = QStandardPaths::findExecutable("soffice");
  if (soffice.isEmpty()) GTEST_SKIP() << "LibreOffice absent";
  ASSERT_TRUE(EnregistrerRtf("retouche.rtf", doc, v));
  QProcess p;
  p.start(soffice, {"--headless", "--convert-to", "txt:Text (encoded):UTF8", "--outdir",
                    QDir::currentPath(), "retouche.rtf"});
  ASSERT_TRUE(p.waitForFinished(120000));
  QFile texte("retouche.txt");
  ASSERT_TRUE(texte.open(QIODevice::ReadOnly));
  const QString lu = QString::fromUtf8(texte.readAll());
  EXPECT_TRUE(lu.contains(QStringLiteral("Remarque : paroi épaisse {x}"))) << lu.toStdString();
  EXPECT_TRUE(lu.contains(QStringLiteral("Mesure 1 = 2 µm : a")));
  EXPECT_LT(lu.indexOf("Carnet"), lu.indexOf("Infos photo"));
}

// Where LibreOffice is installed, it reads the document back: same lines as
// the plain text, and the picture kept when converted to its own format.
TEST(Rtf, LibreOfficeLitLeDocument) {
  const QString soffice = QStandardPaths::findExecutable("soffice");
  if (soffice.isEmpty()) GTEST_SKIP() << "LibreOffice absent";
  SessionRecord s;
  s.TitreImage = "Carnet";
  s.Largeur = 800;
  const QList<LigneRapport> lignes = LignesRapport(s, {"", "", ApplicationRapport()});
  ASSERT_TRUE(EnregistrerRtf("carnet.rtf", lignes, VignetteDe(200, 100, 100)));
  QProcess p;
  p.start(soffice, {"--headless", "--convert-to", "odt", "--outdir", QDir::currentPath(),
                    "carnet.rtf"});
  ASSERT_TRUE(p.waitForFinished(120000));
  ASSERT_TRUE(QFile::exists("carnet.odt"));
  if (QStandardPaths::findExecutable("unzip").isEmpty()) GTEST_SKIP() << "unzip absent";
  QProcess unzip;
  unzip.start("unzip", {"-l", "carnet.odt"});
  ASSERT_TRUE(unzip.waitForFinished());
  EXPECT_TRUE(unzip.readAllStandardOutput().contains("Pictures/"));
}

}  // namespace
}  // namespace tg
