#!/usr/bin/env bash
# Installs the Debian package and runs both programs from their installed
# place, through the checks of verifier-installation.sh (the window program
# among them, opening its installed help page). As root (or through sudo)
# the package is installed with apt-get, its dependencies with it, and
# removed at the end (GARDER=1 keeps it);
# otherwise, or with JETABLE=1, it is unpacked in a throwaway root and run
# from there.
# Usage: scripts/essai-paquet.sh [PAQUET.deb]   (by default the newest of build-paquet/)
set -euo pipefail
racine="$(cd "$(dirname "$0")/.." && pwd)"
paquet="$(realpath "${1:-$(ls -t "$racine"/build-paquet/tessellographe_*.deb | head -1)}")"
essai="$(mktemp -d "${TMPDIR:-/tmp}/essai-paquet-XXXXXX")"
nettoyer() { rm -rf "$essai"; }
trap nettoyer EXIT

if [ "${JETABLE:-0}" != 1 ] && { [ "$(id -u)" = 0 ] || sudo -n true 2>/dev/null; }; then
  sudo_() { if [ "$(id -u)" = 0 ]; then "$@"; else sudo -n "$@"; fi; }
  sudo_ env DEBIAN_FRONTEND=noninteractive apt-get install -y -q "$paquet" >/dev/null
  [ "${GARDER:-0}" = 1 ] || trap 'sudo_ apt-get remove -y -q tessellographe >/dev/null; nettoyer' EXIT
  prefixe=/usr
  echo "Paquet installé : $(dpkg-query -W -f '${Package} ${Version}' tessellographe)"
else
  dpkg-deb -x "$paquet" "$essai/racine"
  prefixe="$essai/racine/usr"
  echo "Paquet déballé dans $essai/racine"
fi

"$racine/scripts/verifier-installation.sh" --prefixe "$prefixe"
