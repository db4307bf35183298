#!/usr/bin/env bash
# Installs a built tree into a fresh prefix, builds this consumer against the installed package alone,
# and runs it, then the installed orbdt once.
#   build_and_run.sh BUILD_DIR [extra cmake arguments for the consumer...]
set -euo pipefail
build_dir=$1
shift
here=$(cd "$(dirname "$0")" && pwd)
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

cmake --install "$build_dir" --prefix "$prefix/install" > "$prefix/install.log"
cmake -S "$here" -B "$prefix/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix/install" "$@" > "$prefix/configure.log" ||
  { cat "$prefix/configure.log"; exit 1; }
cmake --build "$prefix/build"
"$prefix/build/consumer"
"$prefix/install/bin/orbdt" set MeshAlpha 0.5
