#!/usr/bin/env bash
# Builds the tree with clang, AddressSanitizer and UndefinedBehaviorSanitizer in build-fuzz/ and
# runs each fuzzer for SECONDS (default 20), one process each, from its seed corpus, its regression inputs
# and what earlier runs found (build-fuzz/fuzz-corpus/NAME). Prints per fuzzer the executions, the
# coverage (libFuzzer's cov and ft) and the findings. A fault found is copied into
# fuzz/regressions/NAME, where CTest replays it in every build, and makes the script fail.
#   scripts/fuzz.sh [SECONDS]
# FUZZERS="literal_fuzzer request_fuzzer" runs only those; BUILD_JOBS caps the build's parallelism.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-20}
if ! [[ $seconds =~ ^[1-9][0-9]*$ ]]; then
  echo "usage: scripts/fuzz.sh [SECONDS]" >&2
  exit 2
fi
bash scripts/install-deps.sh

build_dir=build-fuzz
cmake -S . -B "$build_dir" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS=-O1 \
  -DORB_FUZZ=ON -DORB_BUILD_BENCHMARKS=OFF >/dev/null
# The whole tree, not only the fuzzers: this is also the build that keeps every source clang-clean.
cmake --build "$build_dir" -j "${BUILD_JOBS:-$(nproc)}"

# The dictionaries each fuzzer reads (fuzz/NAME.dict), joined into one file as libFuzzer takes one.
declare -A dictionaries=(
  [text_conversion_fuzzer]="names matrix"
  [array_conversion_fuzzer]=""
  [text_parsers_fuzzer]="matrix"
  [literal_fuzzer]="literal names"
  [request_fuzzer]="request literal names"
  [session_fuzzer]="session literal names"
)
fuzzers=(${FUZZERS:-text_conversion_fuzzer array_conversion_fuzzer text_parsers_fuzzer literal_fuzzer request_fuzzer session_fuzzer})

export ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
work="$build_dir/fuzz-runs"
mkdir -p "$work"
summary=()
failed=0
for name in "${fuzzers[@]}"; do
  corpus="$build_dir/fuzz-corpus/$name"
  findings="$work/$name-findings"
  log="$work/$name.log"
  mkdir -p "$corpus" "$findings"
  rm -f "$findings"/*
  options=(-max_total_time="$seconds" -rss_limit_mb=2048 -malloc_limit_mb=1024 -timeout=25 -max_len=4096
    -print_final_stats=1 -artifact_prefix="$findings/")
  if [[ -n ${dictionaries[$name]:-} ]]; then
    dict="$work/$name.dict"
    : >"$dict"
    for part in ${dictionaries[$name]}; do cat "fuzz/$part.dict" >>"$dict"; done
    options+=(-dict="$dict")
  fi
  echo "== $name: $seconds s (log in $log)"
  status=0
  "$build_dir/bin/$name" "${options[@]}" "$corpus" "fuzz/corpus/$name" "fuzz/regressions/$name" >"$log" 2>&1 || status=$?

  # A fuzzer that fails on its first inputs prints no statistics.
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  coverage=$(grep -Eo 'cov: [0-9]+ ft: [0-9]+' "$log" | tail -1 || true)
  found=()
  for artifact in "$findings"/*; do
    [[ -e $artifact ]] || continue
    mkdir -p "fuzz/regressions/$name"
    cp "$artifact" "fuzz/regressions/$name/"
    found+=("fuzz/regressions/$name/$(basename "$artifact")")
  done
  if ((status != 0 || ${#found[@]} > 0)); then
    failed=1
    grep -E '^(==[0-9]+==ERROR|SUMMARY|\*\*\* )|runtime error' "$log" | head -5 || true
  fi
  findings_text="none"
  if ((${#found[@]} > 0)); then
    findings_text="${found[*]}"
  elif ((status != 0)); then
    findings_text="exit status $status, no input kept (see $log)"
  fi
  summary+=("$(printf '%-26s %14s   %-22s %s' "$name" "${executions:-?}" "${coverage:-?}" "$findings_text")")
done

echo
printf '%-26s %14s   %-22s %s\n' fuzzer executions coverage findings
printf '%s\n' "${summary[@]}"
if ((failed)); then
  echo "A fuzzer found a fault: each input kept is now under fuzz/regressions/ and replayed by ctest." >&2
  exit 1
fi
