#!/usr/bin/env bash
# The main road without a display, on the program's own demonstration photo:
# the photo is made (a diatom beside a stage micrometer, camera EXIF), a
# measurement table is stored for its camera, then it is formatted with a
# cartouche and saved. Prints the saved file and the scale read back from it.
# Everything stays in DOSSIER (program folder and documents included).
# Usage: scripts/demonstration.sh TESSELLOGRAPHE-CLI DOSSIER
set -euo pipefail

if [[ $# -ne 2 ]]; then
  echo "Usage : $0 TESSELLOGRAPHE-CLI DOSSIER" >&2
  exit 2
fi
cli=$(realpath "$1")
dossier=$(realpath -m "$2")
rm -rf "$dossier"
mkdir -p "$dossier/utilisateur"
export TESSELLOGRAPHE_HOME="$dossier/programme/"
export HOME="$dossier/utilisateur"
# Qt wants a private runtime folder; a login session gives one, a bare shell may not.
if [[ -z "${XDG_RUNTIME_DIR:-}" ]]; then
  export XDG_RUNTIME_DIR="$dossier/execution"
  mkdir -m 700 "$XDG_RUNTIME_DIR"
fi

photo="$dossier/photo_micrometre.jpg"
sortie="$dossier/Navicula_demonstration.jpg"
"$cli" echantillon "$photo" --pix 400 --mic 100 --modele APN-Demo --focale 7.5
"$cli" tables ajouter --modele APN-Demo --largpix 2272 --micro Micro-Demo \
  --config "Fond clair" --obj 40 --pix 400 --mic 100 --focale 7.5 >/dev/null
"$cli" formater "$photo" -o "$sortie" --table 1 --objectif 40 --longueur 50 \
  --titre "Navicula sp. (démonstration)" --auteur "Tessellographe" \
  --eclairage "Fond clair" --preparation "Eau" >/dev/null
echo "Image enregistrée : $sortie"
echo "Echelle relue dans le fichier :"
"$cli" echelle "$sortie"
