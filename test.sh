#!/usr/bin/env bash
# Installs what is missing, builds the test build (ASan + UBSan) and runs every test.
set -euo pipefail
cd "$(dirname "$0")"
# What the script-driven tests use, installed before any test runs: ImageJ and
# GIMP read the saved files' scale; xdotool drives the installed program.
scripts/installer-paquets.sh imagej gimp xdotool
scripts/setup.sh build-test Debug -DTG_SANITIZE=ON -DTG_BENCH=ON
export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=detect_leaks=1
export LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
cd build-test
ctest --output-on-failure -j2
