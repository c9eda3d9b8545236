#!/usr/bin/env bash
# usage: check.sh 64|32 <scratch folder>
#
# Fails if what programs compile and link against differs from what abi/ holds, and tells the differences.
set -euo pipefail

bits=$1 scratch=$2
abi=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

"$abi/dump.sh" "$bits" "$scratch"
differs=()
for library in libQORStd libQORI18n libQOR; do
    xz --decompress --stdout "$abi/$library-$bits.abi.xz" >"$scratch/$library-known.abi"
    code=0
    abidiff --harmless "$scratch/$library-known.abi" "$scratch/$library.abi" || code=$?
    # Bit 0 and 1: abidiff itself failed. Bit 2: something changed. Bit 3: so that programs break.
    if ((code & 3)); then
        exit 1
    elif ((code & 8)); then
        differs+=("$library ($bits-bit) breaks the programs that were built with it")
    elif ((code & 4)); then
        differs+=("$library ($bits-bit) changed; the list above says how")
    fi
done
if ((${#differs[@]} > 0)); then
    printf '%s\n' "${differs[@]}" >&2
    echo "If that is meant, record it: abi/update.sh" >&2
    exit 1
fi
