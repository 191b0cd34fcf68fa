#!/usr/bin/env bash
# Installs what is missing, builds in Release and starts the program.
# Without a display (neither DISPLAY nor WAYLAND_DISPLAY), runs the main road
# headless on the demonstration photo instead and prints the saved file and
# its scale.
# Usage: ./run.sh [photo]
set -euo pipefail
cd "$(dirname "$0")"
scripts/setup.sh build-release Release -DTG_TESTS=OFF -DTG_BENCH=OFF
if [[ -z "${DISPLAY:-}" && -z "${WAYLAND_DISPLAY:-}" ]]; then
  echo "Pas d'affichage : démonstration sans fenêtre." >&2
  exec scripts/demonstration.sh build-release/cli/tessellographe-cli build-release/demonstration
fi
exec build-release/app/tessellographe "$@"
