#!/usr/bin/env bash
# usage: reproducible.sh [<build folder>]
#
# Builds a copy of the sources in another folder and compares the libraries and the program with those of the build, which
# must be up to date. Neither the place nor the time of a build may show in what it makes.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build=${1:-build/release}
scratch=$PWD/build/reproducible
copy=$scratch/a-copy-of/the-sources
other=$scratch/another-build

# The copy keeps its times, so that a second run compiles only what has changed.
rm -rf "$copy"
mkdir -p "$copy"
cp -r --preserve=timestamps CMakeLists.txt cmake completions foundation kernel meta model olap mapping report directory diagram \
    generated tools "$copy"

options=(-DQOR_BUILD_TESTS=OFF -DQOR_BUILD_BENCHMARKS=OFF)
while IFS= read -r option; do
    options+=("-D$option")
done < <(cmake -N -LA "$build" | grep -E '^(CMAKE_(BUILD_TYPE|CXX_COMPILER|CXX_FLAGS)|QOR_(HARDENING|UNITY_BUILD|CHECKED)):')
cmake -S "$copy" -B "$other" -G Ninja "${options[@]}" >"$scratch/log"

# The compiler cache must not return what it has of the first build.
export CCACHE_HASHDIR=1 CCACHE_BASEDIR= CCACHE_NAMESPACE=reproducible
cmake --build "$other" >>"$scratch/log" || { tail -n 30 "$scratch/log" >&2; exit 1; }

failed=0
for file in "$build"/libQOR*.so.*.*.* "$build"/tools/qor; do
    cmp "$file" "$other/${file#"$build/"}" || failed=1
done
exit "$failed"
