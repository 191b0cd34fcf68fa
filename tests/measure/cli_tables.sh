#!/bin/sh
# tessellographe-cli tables: "ajouter" then "lister" in an empty program
# folder; a refused table exits 3 and leaves the tables as they were.
# $1: the tool.
set -u
cli="$1"
dossier=$(mktemp -d)
trap 'rm -rf "$dossier"' EXIT
export TESSELLOGRAPHE_HOME="$dossier" LC_ALL=C QT_QPA_PLATFORM=offscreen
echec() { echo "ÉCHEC : $*" >&2; exit 1; }

"$cli" tables ajouter --modele ' APN-1 ' --largpix 2272 --micro 'Micro "A"' --config 'a=b' \
  --obj 40 --pix 1000 --mic 250 >/dev/null || echec "ajouter"
"$cli" tables ajouter --modele Cam --largpix 640 --micro M --config T --obj 4.5 --pix 99.5 \
  --mic 250 --focale 7.504 >/dev/null || echec "ajouter avec focale"

"$cli" tables ajouter --modele X --largpix 2272 --micro M --config T --obj 200 --pix 1000 \
  --mic 250 >/dev/null 2>"$dossier/err"
[ $? -eq 3 ] || echec "200 accepté"
grep -q "Valeurs limites dépassées" "$dossier/err" || echec "message des limites"
"$cli" tables ajouter --modele X --largpix 2272 --micro M --config T --obj 4 --pix 1000 \
  >/dev/null 2>"$dossier/err"
[ $? -eq 3 ] || echec "champ manquant accepté"
grep -q "Vous devez saisir tous les champs !" "$dossier/err" || echec "message du champ manquant"

attendu="1: APN-1  (2272) obj. x40 - F: 0 mm - Micro A / a b
2: Cam  (640) obj. x4.5 - F: 7.5 mm - M / T"
obtenu=$("$cli" tables lister) || echec "lister"
[ "$obtenu" = "$attendu" ] || echec "lister a donné : $obtenu"
"$cli" tables lister --json | grep -q '"Pix": 100,' || echec "lister --json (Pix arrondi)"
exit 0
