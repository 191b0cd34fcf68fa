#!/usr/bin/env bash
# Installs what is missing, then configures and builds into the given folder.
# Usage: scripts/setup.sh BUILD_DIR BUILD_TYPE [extra cmake arguments...]
set -euo pipefail

"$(dirname "$0")/installer-paquets.sh"

dossier=$1; type=$2; shift 2
cmake -S "$(dirname "$0")/.." -B "$dossier" -G Ninja -DCMAKE_BUILD_TYPE="$type" "$@"
cmake --build "$dossier"
