#!/usr/bin/env bash
# The main road's speed side by side with decoders, in alternating runs on a
# generated 24 MP photo (6000 x 4000): `tessellographe-cli formater` to 800 x
# 600 with a cartouche, `djpeg` (full decode, libjpeg-turbo) and
# `vipsthumbnail` to 800 x 600 (libvips, shrink-on-load). Prints each median,
# the median ratios, the peak memory of each (/usr/bin/time -f %M), and the
# PSNR of the formatted picture against the exact road (`formater --exact`:
# full decode, then the same resizing and cartouche).
# Usage: scripts/vitesse.sh [CLI] [TOURS]
#   CLI: build-release/cli/tessellographe-cli by default; TOURS: 15.
# A measurement, not a test: the exit status is 0 whatever the figures.
set -euo pipefail

racine="$(cd "$(dirname "$0")/.." && pwd)"
cli="$(realpath "${1:-$racine/build-release/cli/tessellographe-cli}")"
tours="${2:-15}"
[ -x "$cli" ] || { echo "Outil introuvable : $cli (cmake --build build-release)" >&2; exit 2; }
"$racine/scripts/installer-paquets.sh" libvips-tools time imagemagick >/dev/null

dossier="$(mktemp -d "${TMPDIR:-/tmp}/vitesse-XXXXXX")"
trap 'rm -rf "$dossier"' EXIT
cd "$dossier"
export TESSELLOGRAPHE_HOME="$dossier/programme" HOME="$dossier"

"$cli" echantillon photo.jpg --largeur 6000 --hauteur 4000 >/dev/null
options=(--pix 1000 --mic 100 --objectif 40 --titre "Navicula sp." --format 2)

maintenant() { date +%s%N; }
mediane() { sort -n | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }
memoire() { /usr/bin/time -f %M "$@" 2>&1 >/dev/null | tail -1; }

# Warm-up: the file and the programs in the page cache.
for _ in 1 2; do
  "$cli" formater photo.jpg -o sortie.jpg "${options[@]}" >/dev/null
  djpeg photo.jpg >/dev/null
  vipsthumbnail photo.jpg --size 800x600 -o vignette.jpg
done
: > t_outil; : > t_djpeg; : > t_vips; : > r_djpeg; : > r_vips
for _ in $(seq "$tours"); do
  t0=$(maintenant); "$cli" formater photo.jpg -o sortie.jpg "${options[@]}" >/dev/null
  t1=$(maintenant); djpeg photo.jpg >/dev/null
  t2=$(maintenant); vipsthumbnail photo.jpg --size 800x600 -o vignette.jpg
  t3=$(maintenant)
  outil=$(((t1 - t0) / 1000)); dj=$(((t2 - t1) / 1000)); vi=$(((t3 - t2) / 1000))
  echo "$outil" >> t_outil; echo "$dj" >> t_djpeg; echo "$vi" >> t_vips
  echo "scale=3; $outil / $dj" | bc -l >> r_djpeg
  echo "scale=3; $outil / $vi" | bc -l >> r_vips
done
echo "Photo : 6000 x 4000, $(stat -c %s photo.jpg) octets ; $tours tours alternés"
echo "formater : médiane $(mediane < t_outil) µs, mémoire $(memoire "$cli" formater photo.jpg -o sortie.jpg "${options[@]}") Kio"
echo "djpeg : médiane $(mediane < t_djpeg) µs, mémoire $(memoire djpeg photo.jpg) Kio"
echo "vipsthumbnail : médiane $(mediane < t_vips) µs, mémoire $(memoire vipsthumbnail photo.jpg --size 800x600 -o vignette.jpg) Kio"
echo "Rapport formater / djpeg : médiane $(mediane < r_djpeg) (objectif 1 au plus)"
echo "Rapport formater / vipsthumbnail : médiane $(mediane < r_vips) (objectif moins de 1)"
"$cli" formater photo.jpg -o exacte.jpg "${options[@]}" --exact >/dev/null
echo "PSNR contre la route exacte : $(compare -metric PSNR sortie.jpg exacte.jpg null: 2>&1) dB (objectif 40 au moins)"
