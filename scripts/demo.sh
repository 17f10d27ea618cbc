#!/usr/bin/env bash
# Sets up a fresh Debian 12 machine, builds Mirel and draws an example dial:
# out/demo.pdf (true size) and out/demo.png.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
# The program and its icon (drawn by the program), so that an install can follow.
cmake --build build -j"$(nproc)" --target mirel mirel_icone
mkdir -p out
exemple="${1:-examples/voltmetre.dat}"
./build/mirel render "$exemple" -o out/demo.pdf
./build/mirel render "$exemple" -o out/demo.png --dpi 150
echo "Drawn: out/demo.pdf and out/demo.png from $exemple"
