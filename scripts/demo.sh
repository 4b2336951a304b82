#!/usr/bin/env bash
# Builds the quillon program (release) and runs the plate job on the bundled drawing: solves the
# loose lines and arcs into one solid with holes, prints its contour text and section figures,
# extrudes it 10 mm thick, subtracts four bolt holes and a corner cut, writes out/plate.obj,
# out/plate.mtl, the outline picture out/plate.svg and the view out/plate.png, and prints the
# solid's figures. Installs the Debian packages it needs when they are missing. Extra arguments go
# to 'quillon plate' (e.g. --units mm).
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup-deps.sh
quillon_install_deps cmake ninja-build g++
cmake --preset release -DQUILLON_BUILD_TESTS=OFF >/dev/null
cmake --build --preset release --target quillon_program >/dev/null
build/release/tools/quillon plate examples/plate.txt --thickness 10 \
    --hole 40,40,18 --hole 360,40,18 --hole 360,210,18 --hole 40,210,18 \
    --cut 400,60,0,-1,1,0 --svg out/plate.svg --png out/plate.png --out out/plate "$@"
