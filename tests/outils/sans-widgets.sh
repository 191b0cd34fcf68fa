#!/usr/bin/env bash
# The headless tool draws without Qt Widgets: tessellographe-cli-complet does
# not link it, and a whole `formater` run (with its cartouche) and an
# `echantillon` run load no widget library, plugins included.
# Usage: sans-widgets.sh CLI   (CLI: the light tool, beside the full one)
set -euo pipefail
cli="$1"
complet="$(dirname "$cli")/tessellographe-cli-complet"
dossier="$(mktemp -d "${TMPDIR:-/tmp}/sans-widgets-XXXXXX")"
trap 'rm -rf "$dossier"' EXIT
export TESSELLOGRAPHE_HOME="$dossier/programme" HOME="$dossier" QT_QPA_PLATFORM=offscreen

echec=0
if ldd "$complet" | grep -i 'Qt6Widgets\|Qt6PrintSupport'; then
  echo "ÉCHEC : $complet est lié à Qt Widgets" >&2
  echec=1
fi
# Every library the dynamic loader opens, plugins included, on standard error.
charges() { LD_DEBUG=files LD_DEBUG_OUTPUT="$dossier/ld" "$@" >/dev/null; cat "$dossier"/ld.*; rm -f "$dossier"/ld.*; }
"$cli" echantillon "$dossier/photo.jpg" --largeur 1600 --hauteur 1200 >/dev/null
for commande in "echantillon $dossier/autre.jpg" \
                "formater $dossier/photo.jpg -o $dossier/sortie.jpg --pix 400 --mic 100 --objectif 40 --titre Essai"; do
  # shellcheck disable=SC2086
  libs="$(charges "$cli" $commande | grep -o 'file=[^ ]*' | sort -u)"
  if ! grep -q 'libQt6Gui' <<<"$libs"; then
    echo "ÉCHEC : $commande n'a pas chargé Qt Gui (LD_DEBUG muet ?)" >&2
    echec=1
  fi
  if grep -i 'Qt6Widgets\|Qt6PrintSupport' <<<"$libs"; then
    echo "ÉCHEC : $commande charge Qt Widgets" >&2
    echec=1
  fi
done
[ -s "$dossier/sortie.jpg" ] || { echo "ÉCHEC : formater n'a rien écrit" >&2; echec=1; }
[ "$echec" = 0 ] && echo "Outil sans fenêtre : aucune bibliothèque de widgets chargée"
exit "$echec"
