#!/usr/bin/env bash
# usage: run.sh <folder of the programs> <scratch folder> [<sample.sql>]
#
# Runs the programs with fresh and freed memory filled with one byte and with another, and compares what they print: a
# difference comes from memory that was read before it was written or after it was given back. With a sample, also the
# program qor on a database of it.
set -euo pipefail

programs=$1 scratch=$2 sample=${3:-}
rm -rf "$scratch"
mkdir -p "$scratch"
if [[ -n $sample ]]; then
    sqlite3 "$scratch/sample.sqlite" <"$sample"
fi

# The byte of freed memory; fresh memory has its complement.
run_all() {
    local byte=$1 out=$scratch/$1
    export GLIBC_TUNABLES=glibc.malloc.perturb=$byte:glibc.malloc.tcache_count=0
    mkdir "$out"
    "$programs/qor-fill-graphs" 60 >"$out/graphs.txt" 2>"$scratch/byte-$byte"
    "$programs/qor-fill-workload" T | sed -nE 's/.*("phase":"[^"]*").*("check":[^,}]*).*/\1 \2/p' >"$out/workload.txt"
    [[ -n $sample ]] || return 0
    local qor=$programs/qor-fill-tool
    "$qor" import "$scratch/sample.sqlite" >"$out/tree.txt"
    "$qor" import "$scratch/sample.sqlite" --stats >"$out/statistics.txt"
    "$qor" import "$scratch/sample.sqlite" -o - >"$out/model.json"
    "$qor" show "$out/model.json" >"$out/show.txt"
    "$qor" export "$out/model.json" --format dot >"$out/model.dot"
    "$qor" export "$out/model.json" --format markdown >"$out/model.md"
    sed 's/"name": "a/"name": "b/' "$out/model.json" >"$out/other.json"
    "$qor" diff "$out/model.json" "$out/other.json" >"$out/diff.txt" || (($? == 1))
}

bytes=(1 85 255)
for byte in "${bytes[@]}"; do
    run_all "$byte"
    if [[ $(<"$scratch/byte-$byte") != $((255 - byte)) ]]; then
        echo "memory isn't filled with $((255 - byte)) but with $(<"$scratch/byte-$byte")" >&2
        exit 1
    fi
done
for file in "$scratch/${bytes[0]}"/*; do
    if [[ ! -s $file ]]; then
        echo "$file is empty" >&2
        exit 1
    fi
done
for byte in "${bytes[@]:1}"; do
    diff -r "$scratch/${bytes[0]}" "$scratch/$byte"
done
echo "$(cat "$scratch/${bytes[0]}"/* | wc -l) lines are the same"
