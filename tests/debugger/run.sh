#!/usr/bin/env bash
# usage: run.sh <gdb> <program of objects.cpp> <scratch folder>
#
# Has gdb show objects of a program, and compares what it prints with expected.txt. The library may be without debug
# information but for that of QORDebugTypes.cpp.
set -euo pipefail

gdb=$1 program=$2 scratch=$3
tests=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
mkdir -p "$scratch"

commands=(
    "source $tests/../../debugger/libQOR-gdb.py"
    "set width 0"
    "set print pretty on"
    "break stop"
    "run"
)
for expression in '*object' '*column' '*package' '*table' '*model' '*dead' '*(QORClass*)16' 'column->grouping_' 'column->classifier_' \
    'column->qualifierOfAssociationRole_' 'object->name' 'static_cast<QORModel*>(model)->creationTime_'; do
    commands+=("echo \\n($expression)\\n" "print $expression")
done
options=()
for command in "${commands[@]}"; do
    options+=(-ex "$command")
done

# What gdb says at its start and how it numbers values isn't compared, nor are addresses.
LC_ALL=C DEBUGINFOD_URLS='' "$gdb" -nx -batch "${options[@]}" "$program" >"$scratch/all.txt" 2>&1 </dev/null
sed -n '/^(\*object)$/,$p' "$scratch/all.txt" | sed -E 's/^\$[0-9]+ = //; s/0x[0-9a-f]+/ADDRESS/' >"$scratch/shown.txt"
if ! diff -u "$tests/expected.txt" "$scratch/shown.txt"; then
    echo "All that gdb printed: $scratch/all.txt" >&2
    exit 1
fi
