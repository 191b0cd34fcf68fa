// The table file against bytes laid out by hand, as an existing user's file
// holds them, and the rules of appending, deleting and starting up.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "tests/support/LimiteFichier.h"
#include "tests/support/Octets.h"
#include "measure/TableMesure.h"
#include "measure/modOpTableMesure.h"
#include "platform/Fichiers.h"
#include "platform/Liste.h"

namespace tg {
namespace {


// Table 1: "Modèle 1" (è = E8 in Windows-1252), width 2272, "Micro-A",
// "Trino", x40, 1000 pixels = 250 microns, focal 7.5 mm.
const QByteArray kEnr1 = QByteArray(
    "\x08\x00"
    "Mod\xE8le 1"
    "\xE0\x08"  // 2272
    "\x07\x00"
    "Micro-A"
    "\x05\x00"
    "Trino"
    "\x00\x00\x20\x42"   // 40.0f
    "\xE8\x03"           // 1000
    "\xFA\x00"           // 250
    "\x00\x00\xF0\x40",  // 7.5f
    2 + 8 + 2 + 2 + 7 + 2 + 5 + 4 + 2 + 2 + 4);
const EnrMesure kTable1{
    QString::fromUtf8("Modèle 1"), 2272, "Micro-A", "Trino", 40.0f, 1000, 250, 7.5f};
// Table 2: no zoom (focal 0), objective x4.5, width 640, 320 pixels = 1000 microns.
const QByteArray kEnr2 = QByteArray(
    "\x03\x00"
    "Web"
    "\x80\x02"  // 640
    "\x02\x00"
    "M2"
    "\x04\x00"
    "Tube"
    "\x00\x00\x90\x40"   // 4.5f
    "\x40\x01"           // 320
    "\xE8\x03"           // 1000
    "\x00\x00\x00\x00",  // 0.0f
    2 + 3 + 2 + 2 + 2 + 2 + 4 + 4 + 2 + 2 + 4);
const EnrMesure kTable2{"Web", 640, "M2", "Tube", 4.5f, 320, 1000, 0.0f};

// A two-table file as a user's program left it: undefined bytes (0xAA) after
// the header value and after each record.
QByteArray FichierDeuxTables() {
  QByteArray o(3 * kLongueurSlot, '\xAA');
  o.replace(0, 4, QByteArray("\x02\x00\x03\x00", 4));
  o.replace(kLongueurSlot, kEnr1.size(), kEnr1);
  o.replace(2 * kLongueurSlot, kEnr2.size(), kEnr2);
  return o;
}

TEST(TableMesureFichier, LitLeFichierDUnUtilisateurOctetParOctet) {
  test::EcrireOctets(CheminTableMesure(), FichierDeuxTables());
  EXPECT_EQ(NombreTables(), 2);
  FichierMesure f;
  ASSERT_TRUE(f.Ouvrir());
  EXPECT_EQ(f.LireEntete(), 3);
  ASSERT_TRUE(f.LireEnr(2));
  EXPECT_EQ(TableMesure(), kTable1);
  ASSERT_TRUE(f.LireEnr(3));
  EXPECT_EQ(TableMesure(), kTable2);
  EXPECT_EQ(TableMesure().Focale, 0.0f);
}

TEST(TableMesureFichier, EcritLesMemesOctetsQueLeFichierDUnUtilisateur) {
  FichierMesure f;
  ASSERT_TRUE(f.Ouvrir());
  int nbEnreg = f.LireEntete();  // an empty file: no tables
  EXPECT_EQ(nbEnreg, 0);
  ASSERT_TRUE(AjouterTable(f, nbEnreg, kTable1));
  ASSERT_TRUE(AjouterTable(f, nbEnreg, kTable2));
  EXPECT_EQ(nbEnreg, 3);
  f.Fermer();
  const QByteArray o = test::LireOctets(CheminTableMesure());
  ASSERT_GE(o.size(), 2 * kLongueurSlot + kEnr2.size());
  EXPECT_EQ(o.left(4), QByteArray("\x02\x00\x03\x00", 4));
  EXPECT_EQ(o.mid(kLongueurSlot, kEnr1.size()), kEnr1);
  EXPECT_EQ(o.mid(2 * kLongueurSlot, kEnr2.size()), kEnr2);
}

// A write that cannot be finished (a file size limit here, a full disk for a
// user) leaves the tables as they were: the file is replaced whole or not at
// all, and no temporary file stays behind.
TEST(TableMesureFichier, UneEcritureRateeLaisseLeFichierEntier) {
  test::EcrireOctets(CheminTableMesure(), FichierDeuxTables());
  QFile::setPermissions(CheminTableMesure(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
  const QByteArray avant = test::LireOctets(CheminTableMesure());
  FichierMesure f;
  ASSERT_TRUE(f.Ouvrir());
  int nbEnreg = f.LireEntete();
  bool ajoute = true;
  {
    const test::LimiteTailleFichier limite(rlim_t(avant.size() / 2));
    ASSERT_TRUE(limite.Active());
    ajoute = AjouterTable(f, nbEnreg, kTable1);
  }
  EXPECT_FALSE(ajoute);
  EXPECT_EQ(f.Erreur().numero, 75);
  f.Fermer();
  EXPECT_EQ(test::LireOctets(CheminTableMesure()), avant);
  EXPECT_EQ(QDir(QFileInfo(CheminTableMesure()).path()).entryList(QDir::Files),
            QStringList{QFileInfo(CheminTableMesure()).fileName()});
  // Written whole, the file keeps the permissions it had.
  ASSERT_TRUE(f.Ouvrir());
  nbEnreg = f.LireEntete();
  ASSERT_TRUE(AjouterTable(f, nbEnreg, kTable1));
  f.Fermer();
  EXPECT_EQ(QFile::permissions(CheminTableMesure()) & (QFile::ReadGroup | QFile::ReadOther),
            QFile::ReadGroup);
  EXPECT_EQ(NombreTables(), 3);
}

// Two windows hold the file open: what one writes, the other neither hides
// nor undoes.
TEST(TableMesureFichier, DeuxFenetresOuvertesNeSEcrasentPas) {
  test::EcrireOctets(CheminTableMesure(), FichierDeuxTables());
  FichierMesure gestion, ajout;
  ASSERT_TRUE(gestion.Ouvrir());
  ASSERT_TRUE(ajout.Ouvrir());
  int nbEnreg = ajout.LireEntete();
  ASSERT_TRUE(AjouterTable(ajout, nbEnreg, kTable1));
  EXPECT_EQ(gestion.LireEntete(), 4);
  EnrMesure modifiee = kTable2;
  modifiee.Pix = 321;
  ASSERT_TRUE(gestion.EcrireEnr(3, modifiee));
  gestion.Fermer();
  ajout.Fermer();
  FichierMesure relu;
  ASSERT_TRUE(relu.Ouvrir());
  EXPECT_EQ(relu.LireEntete(), 4);
  EnrMesure e;
  ASSERT_TRUE(relu.LireEnr(3, e));
  EXPECT_EQ(e.Pix, 321);
  ASSERT_TRUE(relu.LireEnr(4, e));
  EXPECT_EQ(e, kTable1);
}

TEST(TableMesureFichier, UnRecordPlusCourtLaisseLaFinDuSlotEnPlace) {
  test::EcrireOctets(CheminTableMesure(), FichierDeuxTables());
  FichierMesure f;
  ASSERT_TRUE(f.Ouvrir());
  ASSERT_TRUE(f.EcrireEnr(2, kTable2));  // shorter than table 1
  f.Fermer();
  const QByteArray o = test::LireOctets(CheminTableMesure());
  EXPECT_EQ(o.mid(kLongueurSlot, kEnr2.size()), kEnr2);
  // The old record's tail and the slot's undefined bytes are still there.
  EXPECT_EQ(o.mid(kLongueurSlot + kEnr2.size(), kEnr1.size() - kEnr2.size()),
            kEnr1.mid(kEnr2.size()));
  EXPECT_EQ(o.at(2 * kLongueurSlot - 1), '\xAA');
  EXPECT_EQ(o.size(), 3 * kLongueurSlot);
}

TEST(TableMesureFichier, LesNomsPassentParLaPageDeCode) {
  EnrMesure e = kTable2;
  e.Modele = QString::fromUtf8("Œil façon €");  // all three in Windows-1252
  e.Micro = QString::fromUtf8("Zeiss α");       // alpha is not
  const QByteArray o = EncoderEnr(e);
  EXPECT_EQ(o.mid(2, 11), QByteArray("\x8C"
                                     "il fa\xE7on \x80"));
  EnrMesure relu;
  ASSERT_TRUE(DecoderEnr(o, relu));
  EXPECT_EQ(relu.Modele, e.Modele);
  EXPECT_EQ(relu.Micro, QString("Zeiss ?"));
}

TEST(TableMesureFichier, UnRecordTropLongPourSonSlotEstRefuseSansToucherAuFichier) {
  test::EcrireOctets(CheminTableMesure(), FichierDeuxTables());
  EnrMesure e = kTable1;
  e.Config = QString(381, u'c');  // 20 fixed bytes + 8 + 7 + 381 = 416
  EXPECT_TRUE(EncoderEnr(e).isEmpty());
  FichierMesure f;
  ASSERT_TRUE(f.Ouvrir());
  int nbEnreg = f.LireEntete();
  EXPECT_FALSE(AjouterTable(f, nbEnreg, e));
  EXPECT_EQ(f.Erreur().numero, 59);
  EXPECT_EQ(nbEnreg, 3);
  f.Fermer();
  EXPECT_EQ(test::LireOctets(CheminTableMesure()), FichierDeuxTables());
  // 365 bytes of Config fill the slot exactly.
  e.Config = QString(365, u'c');
  EXPECT_EQ(EncoderEnr(e).size(), kLongueurSlot);
}

TEST(TableMesureFichier, EnteteVideOuNegativeVeutDireAucuneTable) {
  test::EcrireOctets(CheminTableMesure(), QByteArray());
  EXPECT_EQ(NombreTables(), 0);
  test::EcrireOctets(CheminTableMesure(), QByteArray("\x02\x00\xFF\xFF", 4));  // -1
  EXPECT_EQ(NombreTables(), 0);
  test::EcrireOctets(CheminTableMesure(), QByteArray("\x02\x00\x01\x00", 4));  // header only
  EXPECT_EQ(NombreTables(), 0);
  QFile::remove(CheminTableMesure());
  EXPECT_EQ(NombreTables(), 0);
  EXPECT_FALSE(FileExists(CheminTableMesure()));  // a reader never creates it
}

// ------------------------------------------------------------------ deleting

TEST(TableMesureSuppression, LaDerniereTableComblesLeTrou) {
  test::EcrireOctets(CheminTableMesure(), FichierDeuxTables());
  FichierMesure f;
  ASSERT_TRUE(f.Ouvrir());
  int nbEnreg = f.LireEntete();
  int k = 2;  // table 1
  bool supprime = true;
  ASSERT_TRUE(SupprimerTable(f, k, nbEnreg, supprime));
  EXPECT_FALSE(supprime);
  EXPECT_EQ(k, 2);  // the moved table is the one to show
  EXPECT_EQ(nbEnreg, 2);
  f.Fermer();
  const QByteArray o = test::LireOctets(CheminTableMesure());
  EXPECT_EQ(o.left(4), QByteArray("\x02\x00\x02\x00", 4));
  EXPECT_EQ(o.mid(kLongueurSlot, kEnr2.size()), kEnr2);
  EXPECT_EQ(o.mid(2 * kLongueurSlot, 2), QByteArray(2, '\0'));
  EXPECT_EQ(o.mid(2 * kLongueurSlot + 2, kEnr2.size() - 2), kEnr2.mid(2));  // dead bytes stay
  ListeSimple combo;
  RemplirComboTable(combo, ",");
  EXPECT_EQ(combo.items, QStringList({"", "1: Web  (640) obj. x4,5 - F: 0 mm - M2 / Tube"}));
}

TEST(TableMesureSuppression, SupprimerLaDerniereRecule) {
  test::EcrireOctets(CheminTableMesure(), FichierDeuxTables());
  FichierMesure f;
  ASSERT_TRUE(f.Ouvrir());
  int nbEnreg = f.LireEntete();
  int k = 3;
  bool supprime = true;
  ASSERT_TRUE(SupprimerTable(f, k, nbEnreg, supprime));
  EXPECT_FALSE(supprime);
  EXPECT_EQ(k, 2);
  EXPECT_EQ(nbEnreg, 2);
  ASSERT_TRUE(f.LireEnr(2));
  EXPECT_EQ(TableMesure(), kTable1);
}

TEST(TableMesureSuppression, SupprimerLaSeuleTableSupprimeLeFichier) {
  FichierMesure f;
  ASSERT_TRUE(f.Ouvrir());
  int nbEnreg = 0;
  ASSERT_TRUE(AjouterTable(f, nbEnreg, kTable1));
  int k = 2;
  bool supprime = false;
  ASSERT_TRUE(SupprimerTable(f, k, nbEnreg, supprime));
  EXPECT_TRUE(supprime);
  EXPECT_EQ(k, 1);
  EXPECT_FALSE(f.EstOuvert());
  EXPECT_FALSE(FileExists(CheminTableMesure()));
  ListeSimple combo, index;
  SessionRecord s;
  RemplirComboTableFiltre(combo, index, false, s);
  EXPECT_EQ(combo.items, QStringList({""}));
  EXPECT_EQ(index.items, QStringList({"0"}));
  EXPECT_FALSE(FileExists(CheminTableMesure()));
}

// ------------------------------------------------------------------ start-up

TEST(TableMesureDemarrage, FichiersVidesSupprimesPuisPremiereTableEnSlot2) {
  test::EcrireOctets(CheminTableMesure(), QByteArray());
  test::EcrireOctets(CheminTableMesureBak(), QByteArray());
  test::EcrireOctets(CheminTableMesureSecours(), QByteArray());
  InitialiserTablesMesure();
  EXPECT_FALSE(FileExists(CheminTableMesure()));
  EXPECT_FALSE(FileExists(CheminTableMesureBak()));
  EXPECT_TRUE(FileExists(CheminTableMesureSecours()));  // never touched

  FichierMesure f;
  ASSERT_TRUE(f.Ouvrir());
  int nbEnreg = f.LireEntete();
  ASSERT_TRUE(AjouterTable(f, nbEnreg, kTable2));
  f.Fermer();
  const QByteArray o = test::LireOctets(CheminTableMesure());
  EXPECT_EQ(o.left(4), QByteArray("\x02\x00\x02\x00", 4));
  EXPECT_EQ(o.mid(kLongueurSlot), kEnr2);
}

TEST(TableMesureDemarrage, LeCfgRemplaceLesTablesDeLUtilisateur) {
  const QByteArray miennes = FichierDeuxTables();
  test::EcrireOctets(CheminTableMesure(), miennes);
  QByteArray installees(2 * kLongueurSlot, '\0');
  installees.replace(0, 4, QByteArray("\x02\x00\x02\x00", 4));
  installees.replace(kLongueurSlot, kEnr2.size(), kEnr2);
  test::EcrireOctets(CheminTableMesureCfg(), installees);
  const QByteArray bak("\x02\x00\x03\x00", 4);
  test::EcrireOctets(CheminTableMesureBak(), bak);
  InitialiserTablesMesure();
  EXPECT_EQ(test::LireOctets(CheminTableMesure()), installees);
  EXPECT_FALSE(FileExists(CheminTableMesureCfg()));
  EXPECT_EQ(test::LireOctets(CheminTableMesureBak()), bak);
  // Without a .cfg nothing changes.
  InitialiserTablesMesure();
  EXPECT_EQ(test::LireOctets(CheminTableMesure()), installees);
}

}  // namespace
}  // namespace tg
