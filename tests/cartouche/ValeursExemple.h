#pragma once
// The manually calibrated picture of the reference example, as the
// cartouche window would feed the writer.
#include "cartouche/BlocMeta.h"

namespace tg::test {

inline ValeursBloc ValeursExemple() {
  ValeursBloc v;
  v.titre = QStringLiteral("Genre, espèce, divers");
  v.application = QStringLiteral("Tessellographe 202");
  v.auteur = QStringLiteral("A. Nonyme");
  v.dateImage = QStringLiteral("02/03/2008 10:15:00");
  v.jourObservation = QStringLiteral("02");
  v.moisObservation = QStringLiteral("03");
  v.anneeObservation = QStringLiteral("2008");
  v.modele = QStringLiteral("APN-1");
  v.focaleAPN = 7.5f;
  v.digitalZoom = 0;
  v.eclairage = QStringLiteral("Fond Clair");
  v.preparation = QStringLiteral("Eau");
  v.coloration = QStringLiteral("Aucune");
  v.largeurOrigine = 2272;
  v.largeurRecadrage = 0;
  v.largeur = 640;
  v.reduction = CalculerReduction(0, 2272, 640, false, 0);
  v.txtPix = QStringLiteral("169");
  v.txtMic = QStringLiteral("60");
  v.microscope = QStringLiteral("Micro-A");
  v.objectif = QStringLiteral("40");
  v.longueur = QStringLiteral("20");
  v.echellePixels = 56.338f;
  v.tableAppliquee = false;
  v.microMan = QStringLiteral("Micro-A");
  v.objectifMan = QStringLiteral("40");
  v.traitNiveaux = true;
  v.exifTexte = QStringLiteral("Make = Fabricant");
  v.iptcTexte = QStringLiteral("ExposureTime = 1/60");
  v.separateurDecimal = QStringLiteral(",");
  return v;
}

}  // namespace tg::test
