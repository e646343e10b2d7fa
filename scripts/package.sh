#!/usr/bin/env bash
# Installs what is missing, builds the program as Debian's packages are and packs it. Prints where the package lies.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."

scripts/setup.sh run package
mkdir -p build
cmake --preset package --log-level=WARNING >&2
cmake --build --preset package >&2
# What lies in the package is readable by everybody, whatever the user's files are.
umask 022
(cd build/package && cpack -G DEB >&2)
ls "$PWD"/build/package/amberquill_*.deb
