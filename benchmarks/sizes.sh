#!/usr/bin/env bash
# Writes the tables of docs/memory.md from qor-sizes of both word sizes:
#
#   sizes.sh <64-bit qor-sizes> <32-bit qor-sizes>
set -euo pipefail

if (($# != 2)); then
    sed -n 's/^#   //p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
document=$(dirname "${BASH_SOURCE[0]}")/../docs/memory.md
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" >"$folder/64"
"$2" >"$folder/32"

parts() {
    echo "| part | 64-bit | 32-bit |"
    echo "|---|---:|---:|"
    awk '$1 != "part" { next } NR == FNR { bytes[$2] = $3; next } { print "| `" $2 "` | " bytes[$2] " | " $3 " |" }' \
        "$folder/64" "$folder/32"
}

classes() {
    echo "| class | 64-bit | 32-bit | texts | unary ends | nary ends | |"
    echo "|---|---:|---:|---:|---:|---:|---|"
    awk '$1 != "class" { next }
        NR == FNR { bytes[$2] = $3; next }
        { print "| `" $2 "` | " bytes[$2] " | " $3 " | " $4 " | " $5 " | " $6 " | " ($7 == "-" ? "" : $7) " |" }' \
        "$folder/64" <(sort -k2 "$folder/32")
}

# Puts the output of a function in the place of what stands between two marks of the document.
replace() {
    "$2" >"$folder/table"
    awk -v mark="$1" -v table="$folder/table" '
        $0 == "<!-- " mark " -->" { print; while ((getline line < table) > 0) print line; skipping = 1; found = 1; next }
        $0 == "<!-- end of " mark " -->" { skipping = 0 }
        !skipping
        END { exit !found }' "$document" >"$folder/document"
    cat "$folder/document" >"$document"
}
replace parts parts
replace classes classes
