#!/usr/bin/env bash
# Screenshots of the window program along the main road at the usual screen
# sizes, for looking at: each size in its own virtual display with a window
# manager (title bars, placement as a desktop gives them), the demonstration
# photo opened, formatted, filtered, given its cartouche from the stored table,
# measured with the notebook open, annotated, then the save window. One PNG
# per window and size in DOSSIER/LxH/; a step whose window does not come is
# said and the walk goes on at the next size.
# Usage: scripts/captures-ecrans.sh [DOSSIER] [BUILD] [TAILLE...]
# (default: captures-ecrans/, build-test/, 800x600 1024x768 1366x768 1920x1080)
set -uo pipefail

racine=$(cd "$(dirname "$0")/.." && pwd)
dossier=$(realpath -m "${1:-captures-ecrans}")
build=$(realpath -m "${2:-$racine/build-test}")
shift $(($# > 2 ? 2 : $#))
tailles=("$@")
[[ ${#tailles[@]} -gt 0 ]] || tailles=(800x600 1024x768 1366x768 1920x1080)
programme="$build/app/tessellographe"
cli="$build/cli/tessellographe-cli"
for f in "$programme" "$cli"; do
  [[ -x "$f" ]] || { echo "Introuvable : $f (construisez d'abord)" >&2; exit 2; }
done
"$racine/scripts/installer-paquets.sh" xdotool wmctrl imagemagick openbox x11-utils tesseract-ocr >/dev/null || exit 1

# One size: run inside the virtual display by this same script.
if [[ "${CAPTURES_TAILLE:-}" != "" ]]; then
  sortie="$dossier/$CAPTURES_TAILLE"
  n=0
  capturer() {  # NOM: the whole screen, as the user sees it
    n=$((n + 1))
    sleep 0.7
    import -window root "$sortie/$(printf '%02d' $n)-$1.png"
  }
  attendre() {  # TITRE [SECONDES]: the id of the visible window whose title holds TITRE
    local id
    id=$(timeout "${2:-20}" xdotool search --sync --onlyvisible --name "$1" 2>/dev/null | head -1)
    [[ -n "$id" ]] || { echo "$CAPTURES_TAILLE : la fenêtre « $1 » n'est pas venue" >&2; return 1; }
    echo "$id"
  }
  origine() {  # ID: the top left corner of the window's inside, on the screen
    xwininfo -id "$1" | awk '/Absolute upper-left X/{x=$4} /Absolute upper-left Y/{y=$4} END{print x, y}'
  }
  taille() {  # ID: width and height of the window's inside
    xwininfo -id "$1" | awk '/^ *Width:/{l=$2} /^ *Height:/{h=$2} END{print l, h}'
  }
  cliquer() {  # ID X Y: a click at a point of the window's inside (negative: from the right or the bottom)
    local x y l h px=$2 py=$3
    read -r x y < <(origine "$1")
    read -r l h < <(taille "$1")
    ((px < 0)) && px=$((l + px))
    ((py < 0)) && py=$((h + py))
    xdotool mousemove $((x + px)) $((y + py)) click 1
    sleep 0.5
  }
  mot() {  # MOT [N]: the centre "x y" on the screen of the Nth word MOT read there (OCR), else nothing
    local image
    image=$(mktemp --suffix .png)
    import -window root "$image"
    convert "$image" -colorspace Gray -resize 200% "$image"
    tesseract "$image" - --psm 11 tsv 2>/dev/null |
      awk -F'\t' -v mot="$1" -v n="${2:-1}" '$12 == mot && ++k == n { print int(($7 + $9 / 2) / 2), int(($8 + $10 / 2) / 2); exit }'
    rm -f "$image"
  }
  cliquer_ligne() {  # ID X MOT: a click X pixels into the window, on the line of the word MOT
    local x y mx my
    read -r x y < <(origine "$1")
    read -r mx my < <(mot "$3")
    [[ -n "$my" ]] || { echo "$CAPTURES_TAILLE : « $3 » introuvable à l'écran" >&2; return 1; }
    xdotool mousemove $((x + $2)) "$my" click 1
    sleep 0.5
  }
  fermer() {  # ID: closed as by its title bar's cross
    wmctrl -i -c "$(printf '0x%x' "$1")"; sleep 0.8
  }
  bulle() {  # TITRE: a help balloon or message, captured then answered OK
    local id
    id=$(attendre "$1" 8) || return 1
    capturer "$2"
    xdotool windowactivate --sync "$id" 2>/dev/null; xdotool key Return; sleep 0.5
  }

  openbox >/dev/null 2>&1 &
  sleep 1
  "$programme" "$CAPTURES_PHOTO" >"$sortie/programme.log" 2>&1 &
  pid=$!
  trap 'kill $pid 2>/dev/null' EXIT
  # Below 1024 pixels the program warns once at start-up.
  if [[ ${CAPTURES_TAILLE%x*} -lt 1024 ]]; then bulle "Tessellographe$" avertissement-ecran; fi
  p=$(attendre "Tessellographe : " 60) || exit 1
  capturer photo-ouverte
  # The toolbars' buttons, at their place in the window's inside (pixels).
  cliquer "$p" 94 46   # Formater
  if r=$(attendre "Redimensionnement"); then
    capturer redimensionnement
    xdotool key Return   # Appliquer, the default button
    sleep 2
    capturer redimensionnement-fait
    cliquer "$r" 89 154  # Conserver
  fi
  bulle "Formatage OK" aide-formatage
  capturer photo-formatee
  cliquer "$p" 40 281  # Filtres
  if f=$(attendre " Filtres"); then
    capturer filtres
    fermer "$f"
  fi
  cliquer "$p" 170 46  # Cartouche
  if c=$(attendre "Ajouter le cartouche"); then
    capturer cartouche
    cliquer "$c" 210 470  # Ajouter une échelle et utiliser l'étalonnage
    sleep 1
    capturer cartouche-echelle
    # The form scrolled to its end, where the table frame is.
    read -r x y < <(origine "$c")
    xdotool mousemove $((x + 300)) $((y + 200))
    for _ in $(seq 40); do xdotool click 5; done
    sleep 0.5
    # The table frame's lines are found by their labels: their height in
    # the form changes with what it shows.
    cliquer_ligne "$c" 450 table       # Choisir une table
    xdotool key Down Return
    sleep 0.5
    cliquer_ligne "$c" 270 objectif    # Choisir un objectif pour cette image
    xdotool key ctrl+a; xdotool type "40"; xdotool key Return
    cliquer_ligne "$c" 130 OK          # OK
    sleep 0.5
    capturer cartouche-table
    # The four buttons under the form share its width.
    read -r l _ < <(taille "$c")
    cliquer "$c" $((l / 8)) -21      # Dessiner le cartouche
    sleep 1
    capturer cartouche-dessine
    cliquer "$c" $((l * 3 / 8)) -21  # Suite
    bulle "Cartouche OK" aide-cartouche
  fi
  capturer image-finale
  cliquer "$p" 301 46  # Mesurer
  if m=$(attendre "Mesure"); then
    capturer mesure
    cliquer "$m" -160 375  # Carnet de mesures, in the column on the right
    if k=$(attendre "Carnet de mesures"); then
      capturer carnet
      fermer "$k"
    fi
    fermer "$m"
  fi
  cliquer "$p" 379 46  # Annotations
  if a=$(attendre "Annotations et cotes"); then
    capturer annotations
    # Both main frames of the tools open: the ways out stay under them.
    cliquer "$a" -215 215  # Lignes, pointeurs et cotes
    cliquer "$a" -215 -90  # Textes, numérotation et grille, now low in the scrolled tools
    capturer annotations-outils
    fermer "$a"
  fi
  cliquer "$p" 239 46  # Sauver
  if e=$(attendre "Enregistr"); then
    capturer enregistrement
    fermer "$e"
  fi
  kill $pid 2>/dev/null
  wait $pid 2>/dev/null
  exit 0
fi

mkdir -p "$dossier"
for t in "${tailles[@]}"; do
  [[ "$t" =~ ^[0-9]+x[0-9]+$ ]] || { echo "Taille invalide : $t (LxH attendu)" >&2; exit 2; }
  travail=$(mktemp -d)
  mkdir -p "$travail/programme" "$travail/maison/Documents" "$dossier/$t"
  rm -f "$dossier/$t"/*.png
  # Not a first run; the demonstration photo and the table of its set-up.
  printf '[General]\r\nNumVersion=%s\r\n' "$("$cli" --version | cut -d' ' -f2)" >"$travail/programme/UserConfig.ini"
  export TESSELLOGRAPHE_HOME="$travail/programme" HOME="$travail/maison" XDG_RUNTIME_DIR="$travail/execution"
  mkdir -m 700 "$XDG_RUNTIME_DIR"
  "$cli" echantillon "$travail/photo.jpg" >/dev/null
  "$cli" tables ajouter --modele APN-Demo --largpix 2272 --micro Micro-A --config "Fond clair" --obj 40 \
    --pix 400 --mic 100 --focale 7.5 >/dev/null
  # The tests' offscreen platform would show nothing.
  CAPTURES_TAILLE=$t CAPTURES_PHOTO="$travail/photo.jpg" QT_QPA_PLATFORM=xcb ASAN_OPTIONS=detect_leaks=0 \
    xvfb-run -a -s "-screen 0 ${t}x24" bash "$0" "$dossier" "$build"
  echo "$t : $(ls "$dossier/$t"/*.png 2>/dev/null | wc -l) captures dans $dossier/$t"
  rm -rf "$travail"
done
