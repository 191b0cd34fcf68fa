#!/usr/bin/env bash
# Installs the Debian package and runs both programs from their installed
# place: the checks of verifier-installation.sh on /usr, then the window
# program under a virtual display, whose help menu must open the installed
# help page. As root (or through sudo) the package is installed with apt-get,
# its dependencies with it, and removed at the end (GARDER=1 keeps it);
# otherwise, or with JETABLE=1, it is unpacked in a throwaway root and run
# from there.
# Usage: scripts/essai-paquet.sh [PAQUET.deb]   (by default the newest of build-paquet/)
set -euo pipefail
racine="$(cd "$(dirname "$0")/.." && pwd)"
paquet="$(realpath "${1:-$(ls -t "$racine"/build-paquet/tessellographe_*.deb | head -1)}")"
"$racine/scripts/installer-paquets.sh" xdotool >/dev/null
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

# The window program: not a first run, web pages opened by a recorder.
mkdir -p "$essai/maison/programme"
printf '#!/bin/sh\necho "$1" > "%s/ouvert"\n' "$essai" > "$essai/navigateur"
chmod +x "$essai/navigateur"
printf '[General]\r\nNumVersion=%s\r\n[Navigateur]\r\nPathNav=%s\r\n' \
  "$("$prefixe/bin/tessellographe-cli" --version | cut -d' ' -f2)" "$essai/navigateur" \
  > "$essai/maison/programme/UserConfig.ini"
export HOME="$essai/maison" TESSELLOGRAPHE_HOME="$essai/maison/programme"
xvfb-run -a -s "-screen 0 1600x1200x24" bash -c '
  "$1/bin/tessellographe" & programme=$!
  fenetre=$(timeout 30 xdotool search --sync --onlyvisible --name "Tessellographe : " | head -1)
  sleep 1
  xdotool windowfocus "$fenetre"; sleep 0.3
  xdotool key alt+question; sleep 0.5; xdotool key Return
  for _ in $(seq 50); do [ -s "$2/ouvert" ] && break; sleep 0.1; done
  kill "$programme"; wait "$programme" || true' _ "$prefixe" "$essai"
attendu="file://$prefixe/share/tessellographe/aide/tessellographe.html"
[ "$(cat "$essai/ouvert" 2>/dev/null)" = "$attendu" ] || {
  echo "ÉCHEC : l'aide ouverte est « $(cat "$essai/ouvert" 2>/dev/null) », attendu « $attendu »" >&2; exit 1; }
echo "Le programme installé ouvre sa page d'aide : $attendu"
