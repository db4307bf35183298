#!/usr/bin/env bash
# Makes the Debian packages of a built tree (cpack -G DEB), unpacks each with dpkg-deb -x into a scratch
# root, and builds and runs the README's Embedding program against that root alone, as on another machine: its
# JDK lies elsewhere (a copy of this one under the scratch root, named by JAVA_HOME) and the consumer is
# compiled with the compiler's default standard. Prints the packages and the symbols each library exports.
#   debian_packages.sh BUILD_DIR
set -euo pipefail
build_dir=$(cd "$1" && pwd)
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

(cd "$scratch" && cpack --config "$build_dir/CPackConfig.cmake" -B "$scratch/packages" >"$scratch/cpack.log") ||
  { cat "$scratch/cpack.log"; exit 1; }
root="$scratch/root"
mkdir -p "$root"
for package in "$scratch"/packages/*.deb; do
  dpkg-deb --field "$package" Package Version Architecture Depends | paste -sd' ' | sed 's/^/package: /'
  dpkg-deb -x "$package" "$root"
done
for expected in liborbdatatypes1 liborbdatatypes-dev liborbdatatypes-java; do
  ls "$scratch"/packages/"$expected"_*.deb >/dev/null || { echo "missing package $expected"; exit 1; }
done

# No file of the packages may name the build machine's JDK.
build_jdk=$(sed -n 's/^JAVA_INCLUDE_PATH:PATH=\(.*\)\/include$/\1/p' "$build_dir/CMakeCache.txt")
if grep -rl --binary-files=without-match -F "$build_jdk" "$root/usr/lib/cmake" "$root/usr/include"; then
  echo "the packages record the build machine's JDK ($build_jdk)"
  exit 1
fi
other_jdk="$scratch/opt/another-jdk"
mkdir -p "$other_jdk"
cp -as "$(readlink -f "$build_jdk")/." "$other_jdk/"

for library in "$root"/usr/lib/*.so.[0-9]; do
  echo "exports: $(nm -D --defined-only "$library" | wc -l) $(basename "$library")"
done

# The consumer is made from the README's Embedding section alone: its CMake lines and its program, which
# must be examples/consumer/consumer.cpp without its opening comment.
project="$scratch/readme-consumer"
mkdir -p "$project"
section=$(sed -n '/^## Embedding$/,/^## /p' "$source_dir/README.md")
sed -n '/^```cpp$/,/^```$/p' <<<"$section" | sed '1d;$d' >"$project/my_host.cpp"
sed '/^\/\//d' "$source_dir/examples/consumer/consumer.cpp" | diff - "$project/my_host.cpp" >/dev/null ||
  { echo "the README's program differs from examples/consumer/consumer.cpp"; exit 1; }
{
  echo "cmake_minimum_required(VERSION 3.25)"
  echo "project(my_host LANGUAGES CXX)"
  echo "add_executable(my_host my_host.cpp)"
  grep -E '^    (find_package|target_link_libraries)\(' <<<"$section" | sed 's/^    //'
} >"$project/CMakeLists.txt"

export JAVA_HOME="$other_jdk"
consumer="$scratch/consumer"
cmake -S "$project" -B "$consumer" -G Ninja -DCMAKE_PREFIX_PATH="$root/usr" \
  >"$scratch/configure.log" 2>&1 || { cat "$scratch/configure.log"; exit 1; }
grep -q "^JAVA_INCLUDE_PATH:PATH=$other_jdk/include$" "$consumer/CMakeCache.txt" ||
  { echo "the consumer did not find the JDK under $other_jdk"; exit 1; }
cmake --build "$consumer"
"$consumer/my_host"
"$root/usr/bin/orbdt" parse RGBAColor r
