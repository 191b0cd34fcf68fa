#!/usr/bin/env bash
# Times `tessellographe-cli commentaire ecrire` against `cp` of the same file,
# both as whole processes, in alternating runs, on a camera-like JPEG of about
# 6.6 MB (a large EXIF block, a thumbnail, a preview picture after the main
# one), and prints each median and their ratio (the goal is 2 at most).
# Usage: scripts/vitesse-commentaire.sh [CLI] [TOURS]
#   CLI: build-release/cli/tessellographe-cli by default; TOURS: 30.
# The file lies in TMPDIR (/tmp by default): a folder on the disk users keep
# their photos on, since the rewrite flushes its file to disk and cp does not.
# A measurement, not a test: the exit status is 0 whatever the ratio.
set -euo pipefail

racine="$(cd "$(dirname "$0")/.." && pwd)"
cli="$(realpath "${1:-$racine/build-release/cli/tessellographe-cli}")"
tours="${2:-30}"
[ -x "$cli" ] || { echo "Outil introuvable : $cli (cmake --build build-release)" >&2; exit 2; }
"$racine/scripts/installer-paquets.sh" >/dev/null

dossier="$(mktemp -d "${TMPDIR:-/tmp}/vitesse-XXXXXX")"
trap 'rm -rf "$dossier"' EXIT
cd "$dossier"
export TESSELLOGRAPHE_HOME="$dossier/programme" HOME="$dossier"

# The photo: the tool's own demonstration picture, as large as it takes to
# weigh about 6.6 MB.
"$cli" echantillon grande.jpg --largeur 7200 --hauteur 5400 >/dev/null
"$cli" echantillon apercu.jpg --largeur 1920 --hauteur 1440 >/dev/null
"$cli" echantillon vignette.jpg --largeur 320 --hauteur 240 >/dev/null
# A large EXIF block (tens of KB in one segment): a thumbnail, a long
# description and user comment.
exiftool -q -overwrite_original '-ThumbnailImage<=vignette.jpg' \
  "-ImageDescription=$(head -c 12000 /dev/zero | tr '\0' 'd')" \
  "-UserComment=$(head -c 20000 /dev/zero | tr '\0' 'u')" grande.jpg
cat grande.jpg apercu.jpg > source.jpg
taille=$(stat -c %s source.jpg)
printf 'Fichier : %.1f Mo, bloc EXIF de %s octets\n' "$(echo "$taille / 1048576" | bc -l)" \
  "$(exiftool -s3 -ExifByteOrder -b -EXIF source.jpg | wc -c)"
printf 'Navicula sp.\r\nEchellePix=400\r\n' > court.txt
printf 'Navicula sp., un commentaire plus long\r\nEchellePix=400\r\nEchelleMic=100\r\n' > long.txt
cp source.jpg copie.jpg

maintenant() { date +%s%N; }
mediane() { sort -n | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

# Warm-up: the file and the programs in the page cache.
for _ in 1 2 3; do cp source.jpg copie.jpg; "$cli" commentaire ecrire copie.jpg --depuis court.txt; done
: > temps_cp; : > temps_outil
for i in $(seq "$tours"); do
  t0=$(maintenant); cp source.jpg copie.jpg; t1=$(maintenant)
  texte=$([ $((i % 2)) -eq 0 ] && echo court.txt || echo long.txt)
  "$cli" commentaire ecrire copie.jpg --depuis "$texte"; t2=$(maintenant)
  echo $(((t1 - t0) / 1000)) >> temps_cp
  echo $(((t2 - t1) / 1000)) >> temps_outil
done
m_cp=$(mediane < temps_cp)
m_outil=$(mediane < temps_outil)
ratio=$(echo "scale=2; $m_outil / $m_cp" | bc -l)
echo "cp : médiane $m_cp µs ; commentaire ecrire : médiane $m_outil µs ; rapport $ratio ($tours tours alternés)"
if [ "$(echo "$ratio <= 2" | bc -l)" -eq 1 ]; then echo "Objectif (2 au plus) atteint."; else echo "Objectif (2 au plus) NON atteint."; fi
