#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main program's demo session (orbdt demo).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build --target orbdt
build/bin/orbdt demo
