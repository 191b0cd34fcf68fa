#!/usr/bin/env bash
# Builds the Debian package: a Release build without tests or benchmarks in
# build-paquet/, installed under /usr, packed by CPack; the run-time
# dependencies of its programs come from dpkg-shlibdeps.
# Usage: scripts/paquet.sh   (prints the package's path on its last line)
set -euo pipefail
racine="$(cd "$(dirname "$0")/.." && pwd)"
"$racine/scripts/installer-paquets.sh" dpkg-dev file >/dev/null
build="$racine/build-paquet"
cmake -S "$racine" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTG_TESTS=OFF -DTG_BENCH=OFF \
      -DCMAKE_INSTALL_PREFIX=/usr >/dev/null
cmake --build "$build"
(cd "$build" && cpack -G DEB >/dev/null)
paquet="$(ls -t "$build"/tessellographe_*.deb | head -1)"
dpkg-deb -f "$paquet" Package Version Depends Recommends
echo "$paquet"
