// tessellographe-cli tables etalonner on the demonstration photo (400 pixels
// for 100 µm, graduations every 10 µm) and on a photo without a ruling; the
// table it adds read back with tables lister.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "measure/TableMesure.h"
#include "platform/Fichiers.h"
#include "tests/measure/ReglettesDessinees.h"
#include "tests/support/Processus.h"

namespace tg {
namespace {

using test::Cli;
using test::Executer;

QString Echantillon() {
  const QString chemin = QDir::current().filePath(QStringLiteral("echantillon.jpg"));
  const test::Sortie s = Executer(Cli(), {QStringLiteral("echantillon"), chemin});
  EXPECT_EQ(s.code, 0) << s.erreur.toStdString();
  return chemin;
}

TEST(RegletteCli, EchantillonQuatreCentsPixelsPourCentMicrons) {
  const QString photo = Echantillon();
  const test::Sortie s =
      Executer(Cli(), {"tables", "etalonner", photo, "--division", "10", "--json"}, {"LC_ALL=C.UTF-8"});
  ASSERT_EQ(s.code, 0) << s.erreur.toStdString();
  const QJsonObject o = QJsonDocument::fromJson(s.sortie).object();
  EXPECT_NEAR(o["PixPour100"].toDouble(), 400, 0.4);
  EXPECT_NEAR(o["periode"].toDouble(), 40, 0.04);
  EXPECT_NEAR(o["angle"].toDouble(), 0, 0.2);
  // The micrometer has 31 graduations, 300 µm.
  EXPECT_GE(o["graduations"].toInt(), 25);
  EXPECT_LE(o["graduations"].toInt(), 31);
  EXPECT_GT(o["confiance"].toDouble(), 0.5);
  EXPECT_LT(o["IncertitudePour100"].toDouble(), 0.4);
  // Nothing written without --ajouter.
  EXPECT_FALSE(FileExists(CheminTableMesure()));

  // The same as text, with the decimal comma of a French locale.
  const test::Sortie t = Executer(Cli(), {"tables", "etalonner", photo, "--division", "10"}, {"LC_ALL=fr_FR.UTF-8"});
  ASSERT_EQ(t.code, 0);
  EXPECT_TRUE(t.sortie.contains(",0") && t.sortie.contains(" pixels pour 100 \xC2\xB5m (\xC2\xB1 0,")) << t.sortie.toStdString();
  EXPECT_TRUE(t.sortie.contains("Graduations : ")) << t.sortie.toStdString();
}

TEST(RegletteCli, AjouteLaTable) {
  const QString photo = Echantillon();
  // In a rectangle around the ruling; the model, width and focal length are
  // the photo's.
  const test::Sortie s = Executer(Cli(), {"tables", "etalonner", photo, "--division", "10", "--zone",
                                          "400,1250,1500,250", "--ajouter", "--micro", "Micro-A",
                                          "--config", "Fond clair", "--obj", "40"});
  ASSERT_EQ(s.code, 0) << s.erreur.toStdString();
  EXPECT_TRUE(s.sortie.contains("OK, cette configuration \xC3\xA0 \xC3\xA9t\xC3\xA9 ajout\xC3\xA9""e !"));
  const test::Sortie l = Executer(Cli(), {"tables", "lister", "--json"});
  ASSERT_EQ(l.code, 0);
  const QJsonArray tables = QJsonDocument::fromJson(l.sortie).array();
  ASSERT_EQ(tables.size(), 1);
  const QJsonObject t = tables[0].toObject();
  // 1000 µm are 4000 pixels: the period's precision kept in whole numbers.
  EXPECT_EQ(t["Mic"].toInt(), 1000);
  EXPECT_NEAR(t["Pix"].toInt(), 4000, 4);
  EXPECT_EQ(t["LargPix"].toInt(), 2272);
  EXPECT_EQ(t["Modele"].toString(), QStringLiteral("APN-Demo"));
  EXPECT_DOUBLE_EQ(t["Focale"].toDouble(), 7.5);
  EXPECT_DOUBLE_EQ(t["Obj"].toDouble(), 40);

  // A field the table refuses, as tables ajouter does: nothing added.
  const test::Sortie r = Executer(Cli(), {"tables", "etalonner", photo, "--division", "10", "--ajouter",
                                          "--micro", "M", "--config", "C", "--obj", "200"});
  EXPECT_EQ(r.code, 3);
  EXPECT_TRUE(r.erreur.contains("Valeurs limites d\xC3\xA9pass\xC3\xA9""es")) << r.erreur.toStdString();
  EXPECT_EQ(QJsonDocument::fromJson(Executer(Cli(), {"tables", "lister", "--json"}).sortie).array().size(), 1);
}

TEST(RegletteCli, Refus) {
  const QString sans = QDir::current().filePath(QStringLiteral("cellules.jpg"));
  ASSERT_TRUE(test::Leurre(5).save(sans, "JPG", 90));
  test::Sortie s = Executer(Cli(), {"tables", "etalonner", sans, "--division", "10", "--ajouter", "--micro",
                                    "M", "--config", "C", "--obj", "40"});
  EXPECT_EQ(s.code, 3);
  EXPECT_TRUE(s.erreur.startsWith("Aucune r\xC3\xA9glette n'a \xC3\xA9t\xC3\xA9 trouv\xC3\xA9""e sur cette image"))
      << s.erreur.toStdString();
  EXPECT_TRUE(s.sortie.isEmpty());
  EXPECT_FALSE(FileExists(CheminTableMesure()));

  s = Executer(Cli(), {"tables", "etalonner", sans, "--division", "0"});
  EXPECT_EQ(s.code, 3);
  EXPECT_TRUE(s.erreur.startsWith("Valeur d'une division")) << s.erreur.toStdString();
  s = Executer(Cli(), {"tables", "etalonner", sans, "--division", "10", "--zone", "1,2,3"});
  EXPECT_EQ(s.code, 2);
  s = Executer(Cli(), {"tables", "etalonner", sans});
  EXPECT_EQ(s.code, 2);
  s = Executer(Cli(), {"tables", "etalonner", QDir::current().filePath("absente.jpg"), "--division", "10"});
  EXPECT_EQ(s.code, 3);
  EXPECT_FALSE(s.erreur.isEmpty());
}

}  // namespace
}  // namespace tg
