#!/usr/bin/env bash
# Builds the fuzz targets of the metadata parsers and of the comment block
# reader with clang and libFuzzer in
# build-fuzz/, writes their seeds, and runs each target for SECONDES seconds.
# Usage: scripts/fuzz.sh [SECONDES]   (60 by default)
# Needs clang 14 and its libFuzzer runtime (Debian libclang-rt-14-dev).
# A crash or a sanitizer report stops the script with a non-zero status; the
# input that caused it is left in build-fuzz/artefacts/.
set -euo pipefail

secondes="${1:-60}"
racine="$(cd "$(dirname "$0")/.." && pwd)"
build="$racine/build-fuzz"
"$racine/scripts/installer-paquets.sh" clang-14 libclang-rt-14-dev
cxx="$(command -v clang++-14 || command -v clang++ || true)"
if [ -z "$cxx" ]; then
  echo "clang++ introuvable (paquets clang-14 et libclang-rt-14-dev)" >&2
  exit 3
fi

cmake -S "$racine" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_COMPILER="$cxx" -DTG_FUZZ=ON -DTG_TESTS=OFF -DTG_BENCH=OFF -DTG_SANITIZE=OFF >/dev/null
cibles=(jpeg exif tiff commentaire png gif iptc makernote)
cmake --build "$build" -j2 --target fuzz_graines fuzz_bloc "${cibles[@]/#/fuzz_}"

corpus="$build/corpus"
"$build/metadata/fuzz/fuzz_graines" "$corpus"
mkdir -p "$build/artefacts"
for cible in "${cibles[@]}"; do
  echo "== fuzz_$cible : $secondes s"
  mkdir -p "$corpus/$cible-trouves"
  "$build/metadata/fuzz/fuzz_$cible" -max_total_time="$secondes" -max_len=70000 \
    -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$build/artefacts/$cible-" \
    "$corpus/$cible-trouves" "$corpus/$cible"
done
echo "== fuzz_bloc : $secondes s"
mkdir -p "$corpus/bloc" "$corpus/bloc-trouves"
cp "$racine/cartouche/fuzz/graine_bloc.bin" "$corpus/bloc/"
"$build/cartouche/fuzz/fuzz_bloc" -max_total_time="$secondes" -max_len=70000 \
  -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$build/artefacts/bloc-" \
  "$corpus/bloc-trouves" "$corpus/bloc"
echo "Fuzz : aucune erreur en $secondes s par cible."
