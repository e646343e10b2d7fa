#!/usr/bin/env bash
# Installs missing packages, builds the program with Debian's package flags and packs it. Prints the package's path.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."

scripts/setup.sh run package
mkdir -p build
cmake --preset package --log-level=WARNING >&2
cmake --build --preset package >&2
# Everybody may read the package's files, whatever the user's umask is.
umask 022
(cd build/package && cpack -G DEB >&2)
ls "$PWD"/build/package/amberquill_*.deb
