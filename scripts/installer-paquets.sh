#!/usr/bin/env bash
# Installs the Debian packages the build, the program and the tests need, plus
# any named on the command line: apt-get as root, else through sudo, else the
# exact apt-get line is printed and the script fails.
# Usage: scripts/installer-paquets.sh [paquet...]
set -euo pipefail

PAQUETS=(
  g++ cmake ninja-build pkg-config
  qt6-base-dev libgl-dev
  libfreeimage-dev libheif-dev libraw-dev libheif-examples
  libgtest-dev libgmock-dev libbenchmark-dev
  xvfb xauth fonts-liberation2 fonts-comic-neue
  libimage-exiftool-perl libjpeg-turbo-progs
  libreoffice-writer-nogui unzip pngcheck zlib1g-dev libtiff-dev libsane-dev libjpeg-dev libfftw3-dev
  desktop-file-utils appstream man-db qt6-translations-l10n
  "$@"
)

manquants=()
for p in "${PAQUETS[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    manquants+=("$p")
  fi
done

if [ ${#manquants[@]} -gt 0 ]; then
  ligne="apt-get install -y ${manquants[*]}"
  if [ "$(id -u)" -eq 0 ]; then
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq
    apt-get install -y -qq "${manquants[@]}"
  elif command -v sudo >/dev/null 2>&1 && sudo -n true 2>/dev/null; then
    sudo DEBIAN_FRONTEND=noninteractive apt-get update -qq
    sudo DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${manquants[@]}"
  else
    echo "Paquets manquants. Installez-les puis relancez :" >&2
    echo "  $ligne" >&2
    exit 1
  fi
fi

