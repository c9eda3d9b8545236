#!/usr/bin/env bash
# Checks the spelling of all documents and of the comments in hand-written sources, and the phrases of the documents.
# docs/words.txt lists the words that the dictionary lacks, docs/phrases.txt the phrases that no document may have.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

.ci/setup
exec python3 -B .ci/prose.py
