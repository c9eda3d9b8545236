#!/usr/bin/env bash
# Says where the time of each phase of the workload goes: samples a run and prints, for each phase, the functions with
# the most samples.
#
#   profile.sh <qor-workload> [size, L by default] [functions a phase, 6 by default]
set -euo pipefail

if (($# < 1)); then
    sed -n 's/^#   //p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
program=$1
size=${2:-L}
functions=${3:-6}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
if ! W_MARKS=1 perf record --quiet -e cpu-clock -F 4000 -k CLOCK_MONOTONIC -o "$folder/samples" \
    "$program" "$size" >"$folder/lines" 2>"$folder/marks"; then
    cat "$folder/marks" >&2
    exit 1
fi
perf script -i "$folder/samples" --ns -F time,ip,sym,dso 2>/dev/null >"$folder/script"

awk -v functions="$functions" '
    # A line: the time, the address, the function with its parameters, the file in parentheses.
    function functionOf(line, name, file) {
        name = line
        sub(/^ *[0-9.]+: +[0-9a-f]+ /, "", name)
        file = name
        sub(/.*\(/, "", file)
        if (file ~ /^\[(kernel|guest)/)
            return "the kernel"
        sub(/ \([^(]*$/, "", name)
        gsub(/\(anonymous namespace\)::/, "", name)
        sub(/[(<].*/, "", name)
        if (name == "[unknown]")
            sub(/.*\//, "", file)
        return name == "[unknown]" ? "unnamed in " substr(file, 1, length(file) - 1) : name
    }
    NR == FNR {
        if (NF == 3 && $1 ~ /^[0-9]+-/) {
            ++phases
            phase[phases] = $1
            from[phases] = $2
            to[phases] = $3
        }
        next
    }
    {
        time = $1 + 0
        while (at < phases && time > to[at + 1])
            ++at
        if (at >= phases || time < from[at + 1])
            next
        name = functionOf($0)
        ++samples[at + 1]
        ++hits[at + 1, name]
        names[at + 1, name] = name
    }
    END {
        if (!phases)
            exit 1
        print "| phase | functions, % of the phase |"
        print "|---|---|"
        for (p = 1; p <= phases; ++p) {
            text = ""
            for (k = 0; k < functions; ++k) {
                best = ""
                for (key in hits) {
                    split(key, part, SUBSEP)
                    if (part[1] == p && (best == "" || hits[key] > hits[best]))
                        best = key
                }
                if (best == "")
                    break
                text = text (k ? ", " : "") "`" names[best] "` " sprintf("%.0f", 100 * hits[best] / samples[p])
                delete hits[best]
            }
            print "| " phase[p] " | " text " |"
        }
    }' "$folder/marks" "$folder/script"
