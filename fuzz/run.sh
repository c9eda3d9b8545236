#!/usr/bin/env bash
# usage: run.sh graph|encoding|date|json|import|writers|statements|catalogue <seconds> [<build folder>]
#
# Lets the fuzzer look for that long for inputs of the target that fail or take new ways, then adds to the target's
# corpus what takes new ways and cuts it down. An input that fails is left in the current folder as crash-*.
set -euo pipefail

target=$1 seconds=$2
fuzz=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=${3:-$fuzz/../build/fuzz}
corpus=$fuzz/corpus/$target
program=$build/fuzz/qor-fuzz-$target
if [[ -z ${3:-} ]]; then
    (cd "$fuzz/.." && cmake --preset fuzz && cmake --build --preset fuzz --target "qor-fuzz-$target") >/dev/null
fi

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/found" "$scratch/merged"

dictionary=()
if [[ -e $fuzz/dictionaries/$target.txt ]]; then
    dictionary=("-dict=$fuzz/dictionaries/$target.txt")
fi
"$program" "$scratch/found" "$corpus" "${dictionary[@]}" -max_total_time="$seconds" -timeout=60 -rss_limit_mb=4096 \
    -max_len="${MAX_LENGTH:-4096}" -print_final_stats=1 2>&1 | grep -vE '#[0-9]+\s+(NEW|REDUCE|RELOAD|pulse)'

# Small inputs that each take a way of their own: what people wrote first.
"$program" -merge=1 -max_len="${MAX_LENGTH:-4096}" "$scratch/merged" "$corpus" "$scratch/found" 2>&1 | tail -n 3
rm -rf "$corpus"
mkdir "$corpus"
cp -r "$scratch/merged/." "$corpus"
echo "$(find "$corpus" -type f | wc -l) inputs, $(du -sb "$corpus" | cut -f 1) bytes"
