#!/usr/bin/env bash
# Checks with other programs that a saved picture's scale is read where they
# look for it: ImageJ (getPixelSize, under a virtual display) on the TIFF,
# GIMP in batch mode (gimp-image-get-resolution) on the JPEG and the TIFF, at
# 0.25 and 0.1 µm a pixel. Installs Debian's imagej and gimp when missing.
# Run by the tests (resolution_autres_programmes).
# Usage: scripts/verifier-resolution.sh [CLI]
set -euo pipefail
racine="$(cd "$(dirname "$0")/.." && pwd)"
cli="$(realpath "${1:-$racine/build-release/cli/tessellographe-cli}")"
"$racine/scripts/installer-paquets.sh" imagej gimp >/dev/null
dossier="$(mktemp -d "${TMPDIR:-/tmp}/resolution-XXXXXX")"
trap 'rm -rf "$dossier"' EXIT
cd "$dossier"
export TESSELLOGRAPHE_HOME="$dossier/programme" HOME="$dossier"
"$cli" echantillon photo.jpg --largeur 800 --hauteur 600 >/dev/null
printf 'open(getArgument());\ngetPixelSize(unite, l, h);\nprint("ImageJ : " + l + " x " + h + " " + unite);\n' > taille.ijm
echecs=0
for cas in "400 0.25 101600" "1000 0.1 254000"; do
  set -- $cas
  for ext in jpg tif; do
    "$cli" formater photo.jpg -o "p$1.$ext" --format 2 --pix "$1" --mic 100 --objectif 40 >/dev/null
  done
  ij=$(timeout 120 xvfb-run -a java -jar /usr/share/java/ij.jar -batch "$dossier/taille.ijm" "$dossier/p$1.tif" 2>/dev/null | tail -1)
  echo "p$1.tif, $2 µm attendus : $ij"
  [[ "$ij" == "ImageJ : $2 x $2 µm" ]] || { echo "  ÉCHEC"; echecs=$((echecs + 1)); }
  for ext in jpg tif; do
    g=$(timeout 120 gimp-console -i -n -d -f -b "(let* ((i (car (gimp-file-load RUN-NONINTERACTIVE \"$dossier/p$1.$ext\" \"p\"))) (r (gimp-image-get-resolution i))) (gimp-message (string-append \"GIMP : \" (number->string (car r)) \" x \" (number->string (cadr r)) \" ppp\")))" -b "(gimp-quit 0)" 2>&1 | grep -o "GIMP : .*" || true)
    echo "p$1.$ext, $3 ppp attendus : $g"
    # Too fine for the JFIF field, the JPEG has no JFIF segment: GIMP reads EXIF.
    [[ "$g" == "GIMP : $3.0 x $3.0 ppp" ]] || { echo "  ÉCHEC"; echecs=$((echecs + 1)); }
  done
done
[ "$echecs" = 0 ] && echo "Résolutions lues par ImageJ et GIMP" || { echo "$echecs échec(s)"; exit 1; }
