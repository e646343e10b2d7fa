#!/usr/bin/env bash
# Installs what is missing, builds the program and starts it on the desktop this is called from. Arguments are the
# program's. Where there is no display, it is shown on one without a screen: see scripts/show-without-display.py.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"

scripts/setup.sh run
# A folder that the tests have been built in keeps them.
tests=()
if [[ ! -e build/release/CMakeCache.txt ]]; then
    tests=(-DAMBERQUILL_TESTS=OFF)
fi
cmake --preset release "${tests[@]}" --log-level=WARNING >&2
cmake --build --preset release --target amberquill >&2

if [[ -n ${WAYLAND_DISPLAY:-} || -n ${DISPLAY:-} ]]; then
    exec build/release/amberquill "$@"
fi
echo 'There is no display here: showing the program on one without a screen.'
scripts/setup.sh screenless
exec python3 -B scripts/show-without-display.py build/release/amberquill build/amberquill.png "$@"
