#!/usr/bin/env bash
# Builds the fuzz targets with clang and libFuzzer in build-fuzz/, then runs
# each for SECONDES seconds, PARALLELE at a time (2 by default), starting from
# the corpus kept in the repository (fuzz/corpus/CIBLE/) and from generated
# seeds. After each run the new inputs are merged into that corpus, keeping
# only those that reach new code: the next run, on any machine, starts where
# this one stopped. Commit fuzz/corpus/ afterwards.
# Usage: scripts/fuzz.sh [SECONDES] [CIBLE...]   (60 s and every target by default)
# Needs clang 14 and its libFuzzer runtime (Debian libclang-rt-14-dev).
# A crash or a sanitizer report makes the script fail at the end; the input
# that caused it is left in build-fuzz/artefacts/, the run's log in
# build-fuzz/journaux/.
set -euo pipefail

secondes="${1:-60}"
shift || true
racine="$(cd "$(dirname "$0")/.." && pwd)"
build="$racine/build-fuzz"
parallele="${PARALLELE:-2}"
"$racine/scripts/installer-paquets.sh" clang-14 libclang-rt-14-dev
cxx="$(command -v clang++-14 || command -v clang++ || true)"
if [ -z "$cxx" ]; then
  echo "clang++ introuvable (paquets clang-14 et libclang-rt-14-dev)" >&2
  exit 3
fi

# Target -> the folder whose fuzz/ holds it.
declare -A dossier=(
  [jpeg]=metadata [exif]=metadata [tiff]=metadata [commentaire]=metadata [png]=metadata
  [gif]=metadata [iptc]=metadata [makernote]=metadata [bloc]=cartouche [verification]=imaging
  [heif]=imaging [raw]=imaging
)
for d in platform measure; do
  for f in "$racine/$d"/fuzz/fuzz_*.cpp; do
    [ -e "$f" ] || continue
    c="$(basename "$f" .cpp)"
    dossier[${c#fuzz_}]=$d
  done
done
if [ $# -gt 0 ]; then cibles=("$@"); else cibles=("${!dossier[@]}"); fi
for c in "${cibles[@]}"; do
  [ -n "${dossier[$c]:-}" ] || { echo "Cible inconnue : $c" >&2; exit 2; }
done

cmake -S "$racine" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_COMPILER="$cxx" -DTG_FUZZ=ON -DTG_TESTS=OFF -DTG_BENCH=OFF -DTG_SANITIZE=OFF >/dev/null
cmake --build "$build" -j2 --target fuzz_graines "${cibles[@]/#/fuzz_}"

graines="$build/graines"
rm -rf "$graines"
"$build/metadata/fuzz/fuzz_graines" "$graines"
mkdir -p "$graines/bloc" "$graines/verification" "$graines/heif" "$graines/raw"
cp "$racine/cartouche/fuzz/graine_bloc.bin" "$graines/bloc/"
# A HEIC turned a quarter with EXIF and a thumbnail, a DNG turned with a default crop.
cp "$racine/imaging/fuzz/graine_heif.heic" "$graines/heif/"
cp "$racine/imaging/fuzz/graine_raw.dng" "$graines/raw/"
cp "$racine/imaging/fuzz/graine_heif.heic" "$racine/imaging/fuzz/graine_raw.dng" "$graines/verification/"
for g in jpeg tiff png gif; do
  [ -d "$graines/$g" ] && cp "$graines/$g"/* "$graines/verification/" 2>/dev/null || true
done
mkdir -p "$build/artefacts" "$build/journaux"

lancer() {
  local cible=$1
  local programme="$build/${dossier[$cible]}/fuzz/fuzz_$cible"
  local corpus="$racine/fuzz/corpus/$cible" trouves="$build/trouves/$cible"
  local journal="$build/journaux/$cible.log"
  mkdir -p "$corpus" "$trouves"
  local sources=("$trouves" "$corpus")
  [ -d "$graines/$cible" ] && sources+=("$graines/$cible")
  local statut=0
  "$programme" -max_total_time="$secondes" -max_len=70000 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$build/artefacts/$cible-" "${sources[@]}" >"$journal" 2>&1 || statut=$?
  # Only the inputs that reach new code join the kept corpus.
  "$programme" -merge=1 -max_len=70000 -rss_limit_mb=2048 "$corpus" "$trouves" >>"$journal" 2>&1 || true
  local executions
  executions="$(grep -m1 'stat::number_of_executed_units' "$journal" | awk '{print $2}')"
  printf 'fuzz_%-13s %5s s  %10s exécutions  corpus %4s fichiers  %s\n' "$cible" "$secondes" \
    "${executions:-?}" "$(find "$corpus" -type f | wc -l)" \
    "$([ $statut -eq 0 ] && echo "sans erreur" || echo "ERREUR (voir $journal)")"
  return $statut
}
export -f lancer
export build racine secondes graines
export DOSSIERS="$(declare -p dossier)"

echec=0
printf '%s\n' "${cibles[@]}" | sort |
  xargs -P "$parallele" -I{} bash -c 'eval "$DOSSIERS"; lancer "$1"' _ {} || echec=1
if [ $echec -ne 0 ]; then
  echo "Fuzz : au moins une cible a trouvé une erreur (build-fuzz/artefacts/)." >&2
  exit 1
fi
echo "Fuzz : aucune erreur en $secondes s par cible."
