#!/usr/bin/env bash
# Sets up a fresh Debian 12 machine, builds Mirel and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
./scripts/textes_propres.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j"$(nproc)"
cd build
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$(nproc)"
