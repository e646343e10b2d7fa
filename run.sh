#!/usr/bin/env bash
# Installs missing packages, builds the program and starts it on the current desktop with the given arguments. Without a
# display it is shown on an X server without a screen: see scripts/show-without-display.py.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"

scripts/setup.sh run
# A build folder that has tests keeps them.
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
