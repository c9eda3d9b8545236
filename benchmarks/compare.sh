#!/usr/bin/env bash
# Runs the workload of several programs in turn and prints a table of medians, in ns per object, with the ratio of
# the first program to each of the others:
#
#   compare.sh <size> <runs> <qor-workload> [<other program>]...
#
# The others must print the same lines of JSON. A ratio counts only within one table: other tables have seen another
# load of the machine.
set -euo pipefail

if (($# < 3)); then
    sed -n 's/^#   //p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
size=$1
runs=$2
shift 2
programs=("$@")

lines=$(mktemp)
trap 'rm -f "$lines"' EXIT
for program in "${programs[@]}"; do # a first round, which only wakes the machine
    "$program" "$size" >/dev/null
done
for ((run = 0; run < runs; ++run)); do
    for i in "${!programs[@]}"; do
        "${programs[i]}" "$size" | sed "s/^/$i /" >>"$lines"
    done
done

awk -v runs="$runs" '
    function value(key, at, text) {
        at = index($0, "\"" key "\":")
        text = substr($0, at + length(key) + 3)
        sub(/^"/, "", text)
        sub(/[",}].*/, "", text)
        return text
    }
    function median(key, n, i, j, held, sorted) {
        n = count[key]
        for (i = 1; i <= n; ++i) {
            held = seen[key, i]
            for (j = i - 1; j > 0 && sorted[j] > held; --j)
                sorted[j + 1] = sorted[j]
            sorted[j + 1] = held
        }
        return n % 2 ? sorted[(n + 1) / 2] : (sorted[n / 2] + sorted[n / 2 + 1]) / 2
    }
    function keep(key, number) { seen[key, ++count[key]] = number + 0 }
    function row(title, what, i, text) {
        text = "| " title " |"
        for (i = 0; i < programs; ++i)
            text = text " " sprintf("%.0f", median(i SUBSEP what)) " |"
        for (i = 1; i < programs; ++i)
            text = text " " sprintf("%.2f", median(0 SUBSEP what) / median(i SUBSEP what)) " |"
        print text
    }
    {
        program = $1 + 0
        name[program] = value("peer")
        if (program >= programs)
            programs = program + 1
        phase = value("phase")
        size = value("size")
        if (phase == "peak") {
            keep(program SUBSEP "peak", value("rss_mb"))
            next
        }
        if (!(phase in known)) {
            known[phase] = 1
            order[++phases] = phase
        }
        keep(program SUBSEP phase, value("ns_per_object"))
        if (phase == "1-build")
            keep(program SUBSEP "net", value("net_bytes_per_object"))
    }
    END {
        heading = "| size " size ", median of " runs " |"
        rule = "|---|"
        for (i = 0; i < programs; ++i) {
            heading = heading " " name[i] " |"
            rule = rule "---:|"
        }
        for (i = 1; i < programs; ++i) {
            heading = heading " " name[0] "/" name[i] " |"
            rule = rule "---:|"
        }
        print heading
        print rule
        for (i = 1; i <= phases; ++i)
            row(order[i], order[i])
        row("net bytes/object", "net")
        row("peak resident, MiB", "peak")
    }' "$lines"
