#!/usr/bin/env bash
# Rewrites docs/types.md, the type catalogue, from the library built in build/ (built first if needed).
set -euo pipefail
cd "$(dirname "$0")/.."
if [[ ! -f build/build.ninja ]]; then
  cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
fi
cmake --build build --target orbdt
build/bin/orbdt catalog > docs/types.md
echo "docs/types.md: $(grep -c '^## ' docs/types.md) types"
