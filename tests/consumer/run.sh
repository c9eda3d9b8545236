#!/usr/bin/env bash
# usage: run.sh <source folder> <build folder> <scratch folder>
#
# Installs the build into the scratch folder and uses it from outside: through find_package, through pkg-config and,
# configured only, through add_subdirectory. CMAKE, CMAKE_GENERATOR, CXX and CXXFLAGS come from the environment.
set -euo pipefail

source=$1 build=$2 scratch=$3
consumer=$source/tests/consumer
cmake=${CMAKE:-cmake}
expected=$'Model Shop\nDesignPackage Sales\nClass Customer\nAttribute city'

expect_output() {
    local way=$1 actual
    shift
    actual=$("$@")
    if [[ $actual != "$expected" ]]; then
        printf '%s: the program printed\n%s\ninstead of\n%s\n' "$way" "$actual" "$expected" >&2
        exit 1
    fi
    echo "$way: ok"
}

rm -rf "$scratch"
mkdir -p "$scratch"
"$cmake" --install "$build" --prefix "$scratch/prefix" >"$scratch/install.log"

"$cmake" -S "$consumer" -B "$scratch/package" -DCMAKE_PREFIX_PATH="$scratch/prefix"
"$cmake" --build "$scratch/package"
expect_output find_package "$scratch/package/consumer"

pcfile=$(find "$scratch/prefix" -name qor.pc)
libdir=$(dirname "$(dirname "$pcfile")")
export PKG_CONFIG_PATH=${pcfile%/*}
[[ $(pkg-config --modversion qor) == 5.2.0 ]]
# shellcheck disable=SC2046,SC2086 # the flags are lists of words
"${CXX:-c++}" -std=c++17 ${CXXFLAGS:-} "$consumer/main.cpp" -o "$scratch/pkg-config-consumer" \
    $(pkg-config --cflags --libs qor) -Wl,-rpath,"$libdir"
expect_output pkg-config "$scratch/pkg-config-consumer"

"$cmake" -S "$consumer" -B "$scratch/subdirectory" -DQOR_FROM_SOURCE="$source"
echo "add_subdirectory: ok"
