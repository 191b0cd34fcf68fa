#!/usr/bin/env bash
# Rewrites real camera files and checks that nothing but the edit changed.
# The samples are the test images shipped in the Debian source package of
# exiftool (libimage-exiftool-perl: t/images/*.jpg, *.tif, *.png, *.gif),
# fetched through a private apt configuration (the machine's own Debian
# mirrors as deb-src; nothing of the machine's apt setup changes) and kept in
# build-echantillons/.
# For each file: a comment written (JPEG, PNG, GIF) with the headless tool,
# and separately an IFD0 tag added then changed (JPEG, TIFF) with
# tg-edition-meta; exiftool -a -G1 -n must read every other tag the same with
# no new warning, and the decoded pixels must be identical.
# Usage: scripts/verifier-echantillons.sh [BUILD]   (build-test by default:
# BUILD/cli/tessellographe-cli and BUILD/tests/tg-edition-meta)
# Outside ./test.sh: it downloads.
set -euo pipefail

racine="$(cd "$(dirname "$0")/.." && pwd)"
build="$(realpath "${1:-$racine/build-test}")"
cli="$build/cli/tessellographe-cli"
outil="$build/tests/tg-edition-meta"
for p in "$cli" "$outil"; do
  [ -x "$p" ] || { echo "Introuvable : $p (cmake --build $build)" >&2; exit 2; }
done
"$racine/scripts/installer-paquets.sh" imagemagick dpkg-dev >/dev/null

cache="$racine/build-echantillons"
mkdir -p "$cache"
if ! ls -d "$cache"/Image-ExifTool-*/t/images >/dev/null 2>&1; then
  apt="$cache/apt"
  mkdir -p "$apt/sources" "$apt/lists/partial" "$apt/cache/archives/partial"
  # The machine's Debian sources, as source packages.
  for f in /etc/apt/sources.list.d/*.sources; do
    [ -e "$f" ] && grep -q 'debian' "$f" && sed 's/^Types: deb$/Types: deb-src/' "$f" > "$apt/sources/$(basename "$f")"
  done
  if [ -f /etc/apt/sources.list ]; then
    grep -E '^deb .*debian' /etc/apt/sources.list | sed 's/^deb /deb-src /' > "$apt/sources/liste.list" || true
  fi
  options=(-o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$apt/sources"
           -o "Dir::State::Lists=$apt/lists" -o "Dir::Cache=$apt/cache")
  apt-get "${options[@]}" update -qq
  (cd "$cache" && apt-get "${options[@]}" source --download-only -qq libimage-exiftool-perl 2>/dev/null)
  (cd "$cache" && tar -xJf libimage-exiftool-perl_*.orig.tar.xz)
fi
images="$(ls -d "$cache"/Image-ExifTool-*/t/images | head -1)"

travail="$(mktemp -d)"
trap 'rm -rf "$travail"' EXIT
export TESSELLOGRAPHE_HOME="$travail/programme" HOME="$travail"
mkdir -p "$TESSELLOGRAPHE_HOME"

# exiftool's view, file system tags and the edited ones left out, warnings
# kept. The absolute positions of the pictures after the main one move with
# what is inserted before them: their bytes are compared instead (apercus).
vue() {
  exiftool -a -G1 -s -n -U "$1" 2>&1 |
    grep -avE '^\[(System|File)\] |ExifToolVersion|^\[(PNG|GIF|File)\] +Comment |^\[IFD0\] +Software |^\[MPImage[0-9]+\] +MPImageStart ' |
    sort
}
apercus() {
  exiftool -a -b -PreviewImage -ThumbnailImage -JpgFromRaw -OtherImage "$1" 2>/dev/null | md5sum
}
# The decoded pixels, as a digest.
pixels() {
  case "$1" in
    *.jpg|*.JPG|*.jpeg) djpeg -pnm "$1" 2>/dev/null | md5sum ;;
    *) convert "$1" rgba:- 2>/dev/null | md5sum ;;
  esac
}

bons=0; mauvais=0; sautes=0
verifier() {  # verifier NOM ETAPE FICHIER_AVANT FICHIER_APRES
  local nom=$1 etape=$2 avant=$3 apres=$4 diff
  diff="$(diff <(vue "$avant") <(vue "$apres") || true)"
  if [ -n "$diff" ]; then
    echo "MAUVAIS $nom ($etape) : $(echo "$diff" | grep '^[<>]' | head -4 | tr '\n' ' ')"
    mauvais=$((mauvais + 1)); return
  fi
  if [ "$(pixels "$avant")" != "$(pixels "$apres")" ]; then
    echo "MAUVAIS $nom ($etape) : les pixels ont changé"
    mauvais=$((mauvais + 1)); return
  fi
  if [ "$(apercus "$avant")" != "$(apercus "$apres")" ]; then
    echo "MAUVAIS $nom ($etape) : un aperçu ou une vignette a changé"
    mauvais=$((mauvais + 1)); return
  fi
  bons=$((bons + 1))
}

printf 'Commentaire de Tessellographe\r\nEchellePix=400\r\n' > "$travail/texte.txt"
for f in "$images"/*; do
  nom="$(basename "$f")"
  case "${nom,,}" in
    *.jpg|*.jpeg|*.png|*.gif|*.tif|*.tiff) ;;
    *) continue ;;
  esac
  ext="${nom##*.}"
  # A comment, where the format has a place for one.
  case "${nom,,}" in
    *.jpg|*.jpeg|*.png|*.gif)
      cp "$f" "$travail/c.$ext"
      if sortie="$("$cli" commentaire ecrire "$travail/c.$ext" --depuis "$travail/texte.txt" 2>&1)"; then
        verifier "$nom" commentaire "$f" "$travail/c.$ext"
      else
        echo "SAUTÉ   $nom (commentaire) : $sortie"; sautes=$((sautes + 1))
      fi ;;
  esac
  # An IFD0 tag added, then changed.
  case "${nom,,}" in
    *.jpg|*.jpeg|*.tif|*.tiff)
      cp "$f" "$travail/e.$ext"
      if sortie="$("$outil" exif "$travail/e.$ext" 0x0131 "Tessellographe" 2>&1 &&
                   "$outil" exif "$travail/e.$ext" 0x0131 "Tessellographe 1.0.0, essai plus long" 2>&1)"; then
        if [ "$(exiftool -s3 -IFD0:Software "$travail/e.$ext")" != "Tessellographe 1.0.0, essai plus long" ]; then
          echo "MAUVAIS $nom (EXIF) : l'étiquette écrite ne se relit pas"; mauvais=$((mauvais + 1))
        else
          verifier "$nom" EXIF "$f" "$travail/e.$ext"
        fi
      else
        echo "SAUTÉ   $nom (EXIF) : $sortie"; sautes=$((sautes + 1))
      fi ;;
  esac
done
echo "Vérifications : $bons bonnes, $mauvais mauvaises, $sautes refusées par le programme (fichier laissé tel quel)."
[ "$mauvais" -eq 0 ]
