#!/usr/bin/env bash
# Installs a built tree into a fresh prefix, builds the README's consumer (examples/consumer) and the
# one-object check against the installed package alone, runs both, then the installed orbdt once.
#   installed_consumers.sh BUILD_DIR [extra cmake arguments for the consumers...]
set -euo pipefail
build_dir=$1
shift
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cmake --install "$build_dir" --prefix "$scratch/install" >"$scratch/install.log"
for consumer in examples/consumer tests/package/one_object; do
  out="$scratch/build-$(basename "$consumer")"
  cmake -S "$source_dir/$consumer" -B "$out" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/install" "$@" \
    >"$out.log" 2>&1 || { cat "$out.log"; exit 1; }
  cmake --build "$out"
done
"$scratch/build-consumer/consumer"
"$scratch/build-one_object/one_object_consumer"
"$scratch/install/bin/orbdt" set MeshAlpha 0.5
