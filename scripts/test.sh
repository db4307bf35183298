#!/usr/bin/env bash
# Installs what is missing, builds and runs every test.
#   scripts/test.sh             the normal build, in build/
#   scripts/test.sh --sanitize  AddressSanitizer, UndefinedBehaviorSanitizer and LeakSanitizer, in build-sanitize/
#   scripts/test.sh --release   the optimised Release build users make first, in build-release/
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

build_dir=build
options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
if [[ ${1:-} == --sanitize ]]; then
  build_dir=build-sanitize
  options=(-DCMAKE_BUILD_TYPE=Debug -DORB_SANITIZE=ON -DORB_BUILD_BENCHMARKS=OFF)
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:strict_string_checks=1
  export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
elif [[ ${1:-} == --release ]]; then
  build_dir=build-release
  options=(-DCMAKE_BUILD_TYPE=Release)
fi

cmake -S . -B "$build_dir" -G Ninja "${options[@]}"
cmake --build "$build_dir"
ctest --test-dir "$build_dir" --output-on-failure -j "$(nproc)"
