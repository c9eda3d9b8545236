#!/usr/bin/env bash
# usage: dump.sh 64|32 <scratch folder>
#
# Builds the libraries as releases are built, but with debug information, and writes what their users compile and link
# against as <scratch folder>/<library>.abi.
set -euo pipefail

bits=$1 scratch=$2
source=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

"${CMAKE:-cmake}" -G Ninja -S "$source" -B "$scratch/build" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_CXX_FLAGS="-m$bits -g" -DQOR_BUILD_TESTS=OFF -DQOR_BUILD_TOOLS=OFF -DQOR_BUILD_BENCHMARKS=OFF >/dev/null
"${CMAKE:-cmake}" --build "$scratch/build" >/dev/null

headers=()
for folder in foundation kernel meta generated; do
    headers+=(--headers-dir "$source/$folder/qor")
done
for library in QORStd QORI18n QOR; do
    abidw "${headers[@]}" --drop-private-types --no-corpus-path --no-comp-dir-path --no-show-locs --no-parameter-names \
        --out-file "$scratch/lib$library.abi" "$scratch/build/lib$library.so"
done
