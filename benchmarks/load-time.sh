#!/usr/bin/env bash
# Measures what loading the libraries costs a process: the dynamic linker's own statistics, and the time of whole
# processes with and without them.
#
#   load-time.sh <folder with libQOR.so> [runs, 50 by default]
set -euo pipefail

if (($# < 1)); then
    sed -n 's/^#   //p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
libraries=$(cd "$1" && pwd)
runs=${2:-50}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
echo 'int main() { return 0; }' >"$folder/empty.cpp"
read -ra flags <<<"${CXXFLAGS:-}"
link() {
    "${CXX:-c++}" "${flags[@]}" -O2 "$folder/empty.cpp" -o "$folder/$1" "${@:2}"
}
link without
link with -L"$libraries" -Wl,-rpath,"$libraries" -Wl,--no-as-needed -lQOR -lQORI18n -lQORStd

echo "The dynamic linker on its work, the fewest of $runs runs:"
for ((run = 0; run < runs; ++run)); do
    LD_DEBUG=statistics "$folder/with" 2>&1
done | awk '
    function least(key, number) {
        if (!(key in found) || number < found[key])
            found[key] = number
    }
    /total startup time/ { least("cycles for all", $(NF - 1)) }
    /time needed for relocation/ { least("cycles for relocations", $(NF - 2)) }
    /time needed to load/ { least("cycles for mapping the files", $(NF - 2)) }
    /number of relocations:/ { least("relocations by name", $NF) }
    /number of relative relocations:/ { least("relative relocations", $NF) }
    END {
        for (key in found)
            printf "  %-30s %12d\n", key, found[key]
    }' | sort

# Prints the milliseconds of the quickest process.
quickest() {
    local start end least=
    for ((run = 0; run < runs; ++run)); do
        start=${EPOCHREALTIME/./}
        "$1"
        end=${EPOCHREALTIME/./}
        if [[ -z $least ]] || ((end - start < least)); then
            least=$((end - start))
        fi
    done
    awk -v microseconds="$least" 'BEGIN { printf "%.2f", microseconds / 1000 }'
}
echo "The quickest of $runs processes: $(quickest "$folder/without") ms without the libraries," \
    "$(quickest "$folder/with") ms with them"
