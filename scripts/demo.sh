#!/usr/bin/env bash
# Builds the quillon program (release) and runs its demo on the bundled plate drawing: prints the
# contour text and the section properties and writes out/plate.svg. Installs the Debian packages
# it needs when they are missing. Extra arguments go to 'quillon demo' (e.g. --units mm).
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup-deps.sh
quillon_install_deps cmake ninja-build g++
cmake --preset release -DQUILLON_BUILD_TESTS=OFF >/dev/null
cmake --build --preset release --target quillon_program >/dev/null
build/release/tools/quillon demo --out out "$@"
