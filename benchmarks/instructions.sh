#!/usr/bin/env bash
# Counts the instructions of each phase of the workload and compares them with instructions.txt. Unlike times, the
# counts hardly vary from run to run, so that a change for the worse shows on a busy machine too.
#
#   instructions.sh <qor-workload>            fails if a phase needs more than 3 % over what is recorded
#   instructions.sh --update <qor-workload>   records the counts; commit them with the change that explains them
#
# Gives status 77 where the counts can't be compared: the record is of another compiler or C library.
set -euo pipefail

recorded=$(dirname "${BASH_SOURCE[0]}")/instructions.txt
tolerance=3 # percent
size=S
phases=(
    1-build:phaseBuild
    2-find:phaseFind
    3-walk:phaseWalk
    4-reflect-read:phaseReflectRead
    5-reflect-write:phaseReflectWrite
    6-rename:phaseRename
    7-copy:phaseCopy
    8-recode:phaseRecode
    9-unlink-delete:phaseUnlinkDelete
    10-teardown:phaseTeardown
)

update=false
if [[ ${1:-} == --update ]]; then
    update=true
    shift
fi
if (($# != 1)); then
    sed -n 's/^#   //p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
program=$1

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# Prints "<phase> <instructions>" for each phase: one run, with a dump for each phase's function.
count() {
    local options=() phase file function
    for phase in "${phases[@]}"; do
        function="${phase#*:}(Workload&)"
        options+=("--zero-before=$function" "--dump-after=$function")
    done
    if ! valgrind --tool=callgrind --callgrind-out-file="$folder/counts" "${options[@]}" \
        "$program" "$size" >"$folder/log" 2>&1; then
        cat "$folder/log" >&2
        return 1
    fi
    for phase in "${phases[@]}"; do
        file=$(grep -lF "desc: Trigger: --dump-after=${phase#*:}(" "$folder"/counts.*)
        echo "${phase%%:*} $(sed -n 's/^totals: //p' "$file")"
    done
}

toolchain="toolchain $("$program" --toolchain)"

if $update; then
    count >"$folder/new"
    {
        echo "# Instructions of each phase of the workload at size $size. Written by instructions.sh --update."
        echo "$toolchain"
        cat "$folder/new"
    } >"$recorded"
    cat "$recorded"
    exit
fi

if ! grep -qxF "$toolchain" "$recorded"; then
    echo "Not compared: $recorded is of another toolchain than this one: $toolchain"
    exit 77
fi
count >"$folder/new"
awk -v tolerance="$tolerance" '
    NR == FNR {
        if ($1 ~ /^[0-9]/)
            before[$1] = $2
        next
    }
    {
        if (!($1 in before)) {
            printf "%-16s %12d  not recorded\n", $1, $2
            failed = failed " " $1
            next
        }
        change = ($2 / before[$1] - 1) * 100
        printf "%-16s %12d -> %12d  %+6.2f %%\n", $1, before[$1], $2, change
        ++compared
        if (change > tolerance)
            failed = failed " " $1
        if (change < -tolerance)
            better = better " " $1
    }
    END {
        if (better)
            print "Needs fewer instructions; record that with --update:" better
        if (failed)
            print "FAILED, more than " tolerance " % beyond what is recorded:" failed
        if (!compared)
            print "FAILED, nothing was compared"
        exit failed || !compared
    }' "$recorded" "$folder/new"
