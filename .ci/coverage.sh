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

cmake --preset coverage -B "$build" >/dev/null
cmake --build "$build" --target qor-{foundation,kernel,meta,model,olap,mapping,report,directory,diagram,generated}-tests
find "$build" -name '*.gcda' -delete
(cd "$build" && ctest -j "$(nproc)" --output-on-failure \
    -R '^(foundation|kernel|meta|model|olap|mapping|report|directory|diagram|generated)$')

# Edges that only an exception takes belong to every call; the tests of exceptions check those that matter.
gcovr --root . --object-directory "$build" --exclude-throw-branches --exclude-unreachable-branches -j "$(nproc)" \
    --filter '(foundation|kernel|meta|model|olap|mapping|report|directory|diagram)/' \
    --json "$build/coverage.json" "$build/CMakeFiles" "$build/tests/CMakeFiles"
python3 -B .ci/coverage.py "$build/coverage.json" . docs/uncovered.txt "${options[@]}"
