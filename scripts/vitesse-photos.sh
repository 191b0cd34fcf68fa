#!/usr/bin/env bash
# formater's speed and peak memory on a phone photo and a camera RAW file:
# a 12 MP HEIC (4000 x 3000, made by heif-enc from the generated photo) and
# a 24 MP DNG (6016 x 4016 Bayer mosaic of 16-bit samples, EXIF size 6000 x
# 4000, written by the script in the layout of the DNG format). Each is
# formatted to 800 x 600 with a cartouche, by the direct road (HEIC decoded
# once, RAW at half size) and by --exact (whole decode); medians of TOURS
# alternating runs, peak memory by /usr/bin/time -f %M.
# Usage: scripts/vitesse-photos.sh [CLI] [TOURS]
#   CLI: build-release/cli/tessellographe-cli by default; TOURS: 5.
# A measurement, not a test: the exit status is 0 whatever the figures.
set -euo pipefail

racine="$(cd "$(dirname "$0")/.." && pwd)"
cli="$(realpath "${1:-$racine/build-release/cli/tessellographe-cli}")"
tours="${2:-5}"
[ -x "$cli" ] || { echo "Outil introuvable : $cli (cmake --build build-release)" >&2; exit 2; }
"$racine/scripts/installer-paquets.sh" time python3 >/dev/null

dossier="$(mktemp -d "${TMPDIR:-/tmp}/vitesse-photos-XXXXXX")"
trap 'rm -rf "$dossier"' EXIT
cd "$dossier"
export TESSELLOGRAPHE_HOME="$dossier/programme" HOME="$dossier"

"$cli" echantillon photo.jpg --largeur 4000 --hauteur 3000 >/dev/null
heif-enc -q 85 photo.jpg -o photo.heic >/dev/null

# The DNG: IFD0 holds the mosaic (RGGB, black 256, white 4351), the colour
# matrix, the white balance as shot and an EXIF directory with the size of
# the camera's JPEG; the scene is a few bands, enough for the demosaicing to
# work as on a photo.
python3 - <<'PY'
import struct
L, H = 6016, 4016
def u16(v): return struct.pack('<H', v)
def u32(v): return struct.pack('<I', v)
def ifd(entries, pos):
    head = u16(len(entries)); data = b''; start = pos + 2 + 12 * len(entries) + 4
    for tag, typ, count, val in entries:
        if len(val) > 4:
            field = u32(start + len(data)); data += val + (b'\0' if len(val) % 2 else b'')
        else:
            field = val.ljust(4, b'\0')
        head += u16(tag) + u16(typ) + u32(count) + field
    return head + u32(0) + data
def srat(n, d): return struct.pack('<ii', n, d)
matrix = b''.join(srat(n, 1000) for n in (3240, -1537, -499, -969, 1876, 42, 56, -204, 1057))
model = b'CAMERA-R24\0'; date = b'2024:05:06 07:08:09\0'
exif_pos, data_pos = 2000, 4096
size = L * H * 2
entries = [
    (0x00FE, 4, 1, u32(0)), (0x0100, 4, 1, u32(L)), (0x0101, 4, 1, u32(H)), (0x0102, 3, 1, u16(16)),
    (0x0103, 3, 1, u16(1)), (0x0106, 3, 1, u16(32803)), (0x010F, 2, 5, b'Test\0'),
    (0x0110, 2, len(model), model), (0x0111, 4, 1, u32(data_pos)), (0x0112, 3, 1, u16(1)),
    (0x0115, 3, 1, u16(1)), (0x0116, 4, 1, u32(H)), (0x0117, 4, 1, u32(size)), (0x011C, 3, 1, u16(1)),
    (0x0132, 2, len(date), date), (0x828D, 3, 2, u16(2) + u16(2)), (0x828E, 1, 4, b'\0\1\1\2'),
    (0x8769, 4, 1, u32(exif_pos)), (0xC612, 1, 4, b'\1\4\0\0'), (0xC614, 2, len(model), model),
    (0xC61A, 3, 1, u16(256)), (0xC61D, 3, 1, u16(4351)), (0xC621, 10, 9, matrix),
    (0xC628, 5, 3, u32(1) + u32(2) + u32(1) + u32(1) + u32(1) + u32(2)), (0xC65A, 3, 1, u16(21)),
]
t = b'II*\0' + u32(8) + ifd(entries, 8)
t = t.ljust(exif_pos, b'\0')
t += ifd([(0x9003, 2, len(date), date), (0x920A, 5, 1, u32(5000) + u32(100)),
          (0xA002, 4, 1, u32(6000)), (0xA003, 4, 1, u32(4000))], exif_pos)
t = t.ljust(data_pos, b'\0')
with open('photo.dng', 'wb') as f:
    f.write(t)
    for bande in range(8):
        r, g, b = [(3000, 900, 500), (600, 2500, 700), (500, 800, 3200), (2800, 2600, 2400)][bande % 4]
        pair = (u16(r + 256) + u16(g + 256)) * (L // 2) + (u16(g + 256) + u16(b + 256)) * (L // 2)
        f.write(pair * (H // 16))
PY

options=(--pix 1000 --mic 100 --objectif 40 --titre "Navicula sp." --format 2)
maintenant() { date +%s%N; }
mediane() { sort -n | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }
memoire() { /usr/bin/time -f %M "$@" 2>&1 >/dev/null | tail -1; }

for photo in photo.heic photo.dng; do
  "$cli" formater "$photo" -o sortie.jpg "${options[@]}" >/dev/null  # warm-up: the file in the page cache
  : > t_direct; : > t_exact
  for _ in $(seq "$tours"); do
    t0=$(maintenant); "$cli" formater "$photo" -o sortie.jpg "${options[@]}" >/dev/null
    t1=$(maintenant); "$cli" formater "$photo" -o exacte.jpg "${options[@]}" --exact >/dev/null
    t2=$(maintenant)
    echo $(((t1 - t0) / 1000000)) >> t_direct; echo $(((t2 - t1) / 1000000)) >> t_exact
  done
  echo "$photo : $(stat -c %s "$photo") octets ; $tours tours alternés"
  echo "  formater : médiane $(mediane < t_direct) ms, mémoire $(memoire "$cli" formater "$photo" -o sortie.jpg "${options[@]}") Kio"
  echo "  formater --exact : médiane $(mediane < t_exact) ms, mémoire $(memoire "$cli" formater "$photo" -o exacte.jpg "${options[@]}" --exact) Kio"
  "$cli" commentaire lire sortie.jpg | tr -d '\r' | grep -E '^(ApPhoto|LargeurOrigine|LargeurFormater)=' | sed 's/^/  /'
done
