#!/usr/bin/env bash
# Installs a build in a temporary prefix and checks it from its installed
# place: the headless tool answers (its full half found among the helpers),
# a good run writes nothing on standard error, the help and the manual pages
# read, the desktop entry and the AppStream file pass their validators, every
# installed file where a desktop expects it; the window program, under a
# virtual display, opens the installed help page from its Aide menu.
# Usage: scripts/verifier-installation.sh BUILD
#        scripts/verifier-installation.sh --prefixe PREFIXE   (already installed there)
set -euo pipefail
"$(dirname "$0")/installer-paquets.sh" xdotool >/dev/null
dossier="$(mktemp -d "${TMPDIR:-/tmp}/essai-installation-XXXXXX")"
if [ "$1" = --prefixe ]; then
  prefixe="$(realpath "$2")"
  trap 'rm -rf "$dossier"' EXIT
else
  prefixe="$(mktemp -d "${TMPDIR:-/tmp}/installation-XXXXXX")"
  trap 'rm -rf "$dossier" "$prefixe"' EXIT
  cmake --install "$(realpath "$1")" --prefix "$prefixe" >/dev/null
fi
echec() { echo "ÉCHEC : $*" >&2; exit 1; }
id=fr.tessellographe.Tessellographe
for f in bin/tessellographe bin/tessellographe-cli \
         libexec/tessellographe/tessellographe-cli-complet libexec/tessellographe/TG_Kill \
         libexec/tessellographe/Tg_Update libexec/tessellographe/TG_CheckUpdate \
         share/tessellographe/aide/tessellographe.html share/applications/$id.desktop \
         share/metainfo/$id.metainfo.xml share/icons/hicolor/scalable/apps/$id.svg \
         share/man/man1/tessellographe.1 share/man/man1/tessellographe-cli.1; do
  [ -e "$prefixe/$f" ] || echec "$f n'est pas installé"
done

cli="$prefixe/bin/tessellographe-cli"
"$cli" --version | grep -qx "Tessellographe [0-9.]*" || echec "--version"
"$prefixe/bin/tessellographe" --version | grep -qx "Tessellographe [0-9.]*" || echec "tessellographe --version"
cd "$dossier"
export TESSELLOGRAPHE_HOME="$dossier/programme" HOME="$dossier"
unset XDG_RUNTIME_DIR
"$cli" echantillon photo.jpg >/dev/null 2>erreurs || echec "echantillon"
"$cli" formater photo.jpg -o sortie.jpg --pix 400 --mic 100 --objectif 40 >/dev/null 2>>erreurs || echec "formater"
"$cli" echelle sortie.jpg >echelle.txt 2>>erreurs || echec "echelle"
grep -q "^MicronsParPixel=0[.,]71" echelle.txt || echec "échelle lue : $(cat echelle.txt)"
[ ! -s erreurs ] || echec "la sortie d'erreur n'est pas vide : $(cat erreurs)"
"$cli" formater --help | grep -q -- "--poids-max KO" || echec "formater --help"

LC_ALL=C.UTF-8 man -l "$prefixe/share/man/man1/tessellographe-cli.1" 2>man-erreurs | grep -q "STATUT DE SORTIE" || echec "man tessellographe-cli"
LC_ALL=C.UTF-8 man -l "$prefixe/share/man/man1/tessellographe.1" 2>>man-erreurs | grep -q "tessellographe-cli" || echec "man tessellographe"
[ ! -s man-erreurs ] || echec "avertissements de man : $(cat man-erreurs)"
desktop-file-validate "$prefixe/share/applications/$id.desktop" >validation 2>&1 || true
[ ! -s validation ] || echec "desktop-file-validate : $(cat validation)"
appstreamcli validate --no-net "$prefixe/share/metainfo/$id.metainfo.xml" >/dev/null || echec "appstreamcli validate"

# The window program: not a first run, web pages opened by a recorder.
mkdir -p "$dossier/maison/programme"
printf '#!/bin/sh\necho "$1" > "%s/ouvert"\n' "$dossier" > "$dossier/navigateur"
chmod +x "$dossier/navigateur"
printf '[General]\r\nNumVersion=%s\r\n[Navigateur]\r\nPathNav=%s\r\n' \
  "$("$cli" --version | cut -d' ' -f2)" "$dossier/navigateur" > "$dossier/maison/programme/UserConfig.ini"
# The test environment's offscreen platform would show no window.
HOME="$dossier/maison" TESSELLOGRAPHE_HOME="$dossier/maison/programme" QT_QPA_PLATFORM=xcb \
xvfb-run -a -s "-screen 0 1600x1200x24" bash -c '
  "$1/bin/tessellographe" 2>"$2/programme.err" & programme=$!
  fenetre=$(timeout 90 xdotool search --sync --onlyvisible --name "Tessellographe : " | head -1)
  sleep 1
  xdotool windowfocus "$fenetre"; sleep 0.3
  xdotool key alt+question; sleep 0.5; xdotool key Return
  for _ in $(seq 100); do [ -s "$2/ouvert" ] && break; sleep 0.1; done
  kill "$programme"; wait "$programme" || true' _ "$prefixe" "$dossier"
attendu="file://$prefixe/share/tessellographe/aide/tessellographe.html"
[ "$(cat "$dossier/ouvert" 2>/dev/null)" = "$attendu" ] || \
  echec "l'aide ouverte est « $(cat "$dossier/ouvert" 2>/dev/null) », attendu « $attendu » ; le programme a dit : $(cat "$dossier/programme.err")"
echo "Le programme installé ouvre sa page d'aide : $attendu"
echo "Installation vérifiée dans $prefixe"
