#pragma once
// Measurement tables for the cartouche form's tests: the store written with
// given tables, and a table of 1000 pixels for 100 microns at x40.
#include <gtest/gtest.h>

#include <QFile>
#include <vector>

#include "measure/TableMesure.h"
#include "platform/Fichiers.h"

namespace tg::test {

// table_mesure.dat holding `tables`, slots 2 onwards.
inline void EcrireTables(const std::vector<EnrMesure>& tables) {
  QFile::remove(CheminTableMesure());
  FichierMesure fichier;
  ASSERT_TRUE(fichier.Ouvrir());
  int nb = 1;
  for (const EnrMesure& t : tables) ASSERT_TRUE(AjouterTable(fichier, nb, t));
}

// 0.1 micron a pixel at x40, for camera `modele` at `largPix` wide.
inline EnrMesure Table(const char* modele, int largPix, float focale) {
  EnrMesure t;
  t.Modele = QLatin1String(modele);
  t.LargPix = int16_t(largPix);
  t.Micro = QStringLiteral("Micro-A");
  t.Config = QStringLiteral("tube 160");
  t.Obj = 40;
  t.Pix = 1000;
  t.Mic = 100;
  t.Focale = focale;
  return t;
}

}  // namespace tg::test
