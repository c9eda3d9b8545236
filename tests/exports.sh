#!/usr/bin/env bash
# usage: exports.sh <nm> <readelf> <library>...
#
# Each library has the soname of this major version and exports something, but nothing of the
# standard library.
set -euo pipefail

nm=$1 readelf=$2
shift 2
for library; do
    name=$(basename "$library" .so.5.2.0)
    if ! "$readelf" -d "$library" | grep -qF "soname: [$name.so.5]"; then
        echo "$library: the soname isn't $name.so.5" >&2
        exit 1
    fi
    symbols=$("$nm" -D --defined-only --format=posix "$library" | cut -d ' ' -f 1)
    if ! grep -q QOR <<<"$symbols"; then
        echo "$library: exports no symbol of QOR" >&2
        exit 1
    fi
    # In a mangled name, S and a small letter stand for std and its best-known names.
    if foreign=$(grep -E '^_Z(Z|GVZ?|TI|TS|TV)?(NK?)?(S[a-z]|9__gnu_cxx)' <<<"$symbols"); then
        printf '%s exports:\n%s\n' "$library" "$foreign" >&2
        exit 1
    fi
    echo "$name: $(wc -l <<<"$symbols") symbols"
done
