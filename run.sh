#!/usr/bin/env bash
# Installs what is missing, builds in Release and starts the program.
# Usage: ./run.sh [photo]
set -euo pipefail
cd "$(dirname "$0")"
scripts/setup.sh build-release Release -DTG_TESTS=OFF -DTG_BENCH=OFF
exec build-release/app/tessellographe "$@"
