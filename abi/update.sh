#!/usr/bin/env bash
# Records what programs compile and link against, for both word sizes, as what abi/check.sh compares with.
set -euo pipefail

abi=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

for bits in 64 32; do
    "$abi/dump.sh" "$bits" "$scratch/$bits"
    for library in libQORStd libQORI18n libQOR; do
        xz -9e --stdout "$scratch/$bits/$library.abi" >"$scratch/$library-$bits.abi.xz"
    done
done
mv "$scratch"/*.abi.xz "$abi/"
