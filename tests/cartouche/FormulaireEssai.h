#pragma once
// What the cartouche form's tests start from: a session holding a formatted
// picture, the table store written with given tables, and a table of 1000
// pixels for 100 microns at x40.
#include <gtest/gtest.h>

#include <QFile>
#include <vector>

#include "core/SessionRecord.h"
#include "imaging/cAdvancedImagery.h"
#include "measure/TableMesure.h"
#include "platform/Fichiers.h"

namespace tg::test {

// A formatted picture of largeur x hauteur in `s`, its cartouche under it
// ("1") or over it ("0").
inline void SessionFormatee(SessionRecord& s, cAdvancedImagery& ai, int largeur, int hauteur, const QString& hb) {
  s.CartoucheHB = hb;
  s.LargeurOrigine = s.Largeur = largeur;
  s.HauteurOrigine = s.Hauteur = hauteur;
  s.LargeurFormatee = largeur;
  s.HauteurFormatee = hauteur;
  s.CadrageFormate = float(largeur) / float(hauteur);
  ASSERT_TRUE(ai.IO_CreateImage(s.ImageFormatee, largeur, hauteur, 24));
}

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
