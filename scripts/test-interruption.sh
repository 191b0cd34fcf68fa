#!/usr/bin/env bash
# Kills the headless tool with SIGKILL at random moments of 200 comment
# rewrites and of 200 table additions, and checks after every kill that the
# file is the old one or the new one, whole: djpeg decodes the picture
# without a word and its comment is one of the two texts; `tables lister`
# lists every table whose command had returned.
# Usage: scripts/test-interruption.sh [CLI] [TOURS]
#   CLI: build-release/cli/tessellographe-cli by default; TOURS: 200.
# Outside ./test.sh: it takes a few minutes and depends on timing.
set -euo pipefail

racine="$(cd "$(dirname "$0")/.." && pwd)"
cli="$(realpath "${1:-$racine/build-release/cli/tessellographe-cli}")"
tours="${2:-200}"
[ -x "$cli" ] || { echo "Outil introuvable : $cli (cmake --build build-release)" >&2; exit 2; }
command -v djpeg >/dev/null || "$racine/scripts/installer-paquets.sh" >/dev/null

dossier="$(mktemp -d)"
trap 'rm -rf "$dossier"' EXIT
cd "$dossier"
export TESSELLOGRAPHE_HOME="$dossier/programme" HOME="$dossier" XDG_RUNTIME_DIR="$dossier/run"
mkdir -p "$TESSELLOGRAPHE_HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
echecs=0
echec() { echo "ÉCHEC : $*" >&2; echecs=$((echecs + 1)); }

# A delay in seconds, uniformly up to `duree` microseconds.
au_hasard() { printf '0.%06d' $((RANDOM * 32768 % ($1 + 1) + RANDOM % 7)); }
# The median run time of a command, in microseconds.
duree() {
  local t=() i s e
  for i in 1 2 3 4 5; do s=$(date +%s%N); "$@" >/dev/null 2>&1 || true; e=$(date +%s%N); t+=($(((e - s) / 1000))); done
  printf '%s\n' "${t[@]}" | sort -n | sed -n 3p
}

# ---------------------------------------------------------------- comment rewrites
"$cli" echantillon photo.jpg >/dev/null
printf 'Navicula sp.\r\nEchellePix=400\r\n' > court.txt
head -c 30000 /dev/zero | tr '\0' 'x' > long.txt
attendu_court="$(printf 'Navicula sp.\r\nEchellePix=400\r\n')"
attendu_long="$(cat long.txt)"
"$cli" commentaire ecrire photo.jpg --depuis court.txt
t_commentaire=$(duree "$cli" commentaire ecrire photo.jpg --depuis court.txt)
echo "Réécriture du commentaire : $t_commentaire µs en médiane"
tues=0
for i in $(seq "$tours"); do
  texte=$([ $((i % 2)) -eq 0 ] && echo court.txt || echo long.txt)
  "$cli" commentaire ecrire photo.jpg --depuis "$texte" 2>/dev/null &
  pid=$!
  sleep "$(au_hasard "$t_commentaire")"
  kill -9 "$pid" 2>/dev/null || true
  statut=0; wait "$pid" 2>/dev/null || statut=$?
  [ "$statut" -eq 137 ] && tues=$((tues + 1))
  if ! djpeg photo.jpg > /dev/null 2> djpeg.txt || [ -s djpeg.txt ]; then
    echec "tour $i : djpeg ne décode pas l'image ($(head -c 200 djpeg.txt))"; continue
  fi
  lu="$("$cli" commentaire lire photo.jpg)"
  if [ "$lu" != "$attendu_court" ] && [ "$lu" != "$attendu_long" ]; then
    echec "tour $i : commentaire ni ancien ni nouveau (${#lu} caractères)"
  fi
  if [ "$statut" -eq 0 ]; then
    voulu=$([ "$texte" = court.txt ] && echo "$attendu_court" || echo "$attendu_long")
    [ "$lu" = "$voulu" ] || echec "tour $i : la commande a rendu la main sans que le fichier soit le nouveau"
  fi
done
restes=$(find . -maxdepth 1 -name 'photo.jpg.*' | wc -l)
echo "Commentaire : $tours réécritures, $tues tuées en cours, $restes fichiers temporaires laissés"

# ---------------------------------------------------------------- table additions
ajouter() {
  "$cli" tables ajouter --modele "APN-$1" --largpix 2272 --micro Micro-A --config "Fond clair" \
    --obj 40 --pix 400 --mic 100 --focale 7.5
}
ajouter 0 >/dev/null
t_tables=$(duree "$cli" tables lister)
echo "Ajout d'une table : environ $t_tables µs"
declare -A rendues=([APN-0]=1)
tues=0
for i in $(seq "$tours"); do
  ajouter "$i" >/dev/null 2>&1 &
  pid=$!
  sleep "$(au_hasard "$((t_tables * 2))")"
  kill -9 "$pid" 2>/dev/null || true
  statut=0; wait "$pid" 2>/dev/null || statut=$?
  [ "$statut" -eq 137 ] && tues=$((tues + 1))
  [ "$statut" -eq 0 ] && rendues["APN-$i"]=1
  if ! liste="$("$cli" tables lister 2>&1)"; then
    echec "tour $i : tables lister échoue ($liste)"; continue
  fi
  for m in "${!rendues[@]}"; do
    grep -q -- "$m " <<<"$liste" || grep -q -- "$m\$" <<<"$liste" || grep -q -- "$m[^0-9]" <<<"$liste" ||
      echec "tour $i : la table $m, ajoutée, n'est plus listée"
  done
done
restes=$(find "$TESSELLOGRAPHE_HOME" -name 'table_mesure.dat.*' | wc -l)
echo "Tables : $tours ajouts, $tues tués en cours, ${#rendues[@]} tables rendues, $restes fichiers temporaires laissés"

if [ "$echecs" -gt 0 ]; then
  echo "$echecs échecs." >&2
  exit 1
fi
echo "Aucun fichier abîmé."
