#!/usr/bin/env bash
# usage: run.sh <build folder> <scratch folder> [<component without files>...]
#
# Installs each component of the build and compares its files, links and what may be executed with files.txt.
set -euo pipefail

build=$1 scratch=$2
shift 2
golden=$(dirname "${BASH_SOURCE[0]}")/files.txt
cmake=${CMAKE:-cmake}
LC_ALL=C
export LC_ALL

# A component's files as lines of files.txt; the library folder is called lib/ whatever its name, the build type isn't
# told, and what gdb loads beside a library lies in LIBDIR whatever the prefix.
list() {
    local component=$1 folder=$2
    find "$folder" \( -type l -printf '%P -> %l\n' \) -o \( -type f -perm /111 -printf '%P (executable)\n' \) \
        -o \( -type f -printf '%P\n' \) | sed -E "s#^${CMAKE_INSTALL_LIBDIR:-lib}/#lib/#; s#QORTargets-[a-z]+[.]#QORTargets-TYPE.#; s#^share/gdb/auto-load/.*/#share/gdb/auto-load/LIBDIR/#; s#^#$component #"
}

rm -rf "$scratch"
mkdir -p "$scratch"
"$cmake" --install "$build" --prefix "$scratch/whole" >"$scratch/install.log"

for component in Development Runtime Tools; do
    "$cmake" --install "$build" --prefix "$scratch/$component" --component "$component" >>"$scratch/install.log"
    if [[ -d $scratch/$component ]]; then
        list "$component" "$scratch/$component"
    fi
done | sort >"$scratch/files.txt"

# No file is of two components or of none.
diff <(cut -d ' ' -f 2- "$scratch/files.txt" | sort) <(list whole "$scratch/whole" | cut -d ' ' -f 2- | sort)

# Comments and the components that this build leaves out.
skipped=^#
for component; do
    skipped+="|^$component "
done
if ! diff -u <(grep -vE "$skipped" "$golden") "$scratch/files.txt"; then
    echo "If that is meant, record it from a build with the tools: cp $scratch/files.txt $golden" >&2
    exit 1
fi
echo "$(wc -l <"$scratch/files.txt") files"
