#!/usr/bin/env bash
# Makes one small mistake at a time in a copy of the program and runs the tests that should notice it. Prints the
# mistakes that no test notices, and how many there are. tests/mutations.txt lists the mistakes and explains its form.
#   scripts/mutate.sh              all mistakes
#   scripts/mutate.sh model motion those in files with one of these words in their paths
#   scripts/mutate.sh --quick      without the second try: whatever the named test does not notice survives
#   scripts/mutate.sh --check      only whether each line to change is there, once
# The copy is in build/mutants. A run that was interrupted goes on where it stopped: what has been noticed once is not
# tried again until the file changes. Build and tests use MUTATE_JOBS processes; without it, as many as processors.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
exec python3 -B scripts/mutations.py "$@"
