#!/usr/bin/env bash
# usage: coverage.sh [--write] [<build folder>]
#
# Runs the tests of the library and compares what of its hand-written code they don't reach with docs/uncovered.txt.
# With --write the list is brought up to date instead; what is new there needs a reason.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

options=()
if [[ ${1:-} == --write ]]; then
    options=(--write)
    shift
fi
build=${1:-build/coverage}
folders='foundation|kernel|meta|model|olap|mapping|report|directory|diagram'
targets=("qor-"{foundation,kernel,meta,model,olap,mapping,report,directory,diagram,generated,shortage}-tests)

cmake --preset coverage -B "$build" >/dev/null
cmake --build "$build" --target "${targets[@]}" >"$build/build.log" || { cat "$build/build.log"; exit 1; }
find "$build" -name '*.gcda' -delete
# Owners a million deep reach what small ones do, but for the depth.
(cd "$build" && GTEST_FILTER='-Depth/*.Is*' ctest -j "$(nproc)" --output-on-failure --no-tests=error \
    -R "^($folders|generated|shortage|(foundation|kernel)-without-pool)$")

# Edges that only an exception takes belong to every call; the tests of exceptions check those that matter.
gcovr --root . --object-directory "$build" --exclude-throw-branches --exclude-unreachable-branches -j "$(nproc)" \
    --filter "($folders)/" --json "$build/coverage.json" "$build/CMakeFiles" "$build/tests/CMakeFiles"
python3 -B .ci/coverage.py "$build/coverage.json" . docs/uncovered.txt "${options[@]}"
