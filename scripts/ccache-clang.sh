#!/usr/bin/env bash
# Runs clang through ccache: ccache-clang.sh <compiler> <argument>...
#
# clang's precompiled headers contain the path of the clone, so ccache would find nothing in another clone. ccache reads a
# checksum file next to such a header instead of the header, if there is one. This script writes it: a digest of the
# options and of the text of all included files, without the clone's path.
set -euo pipefail

export CCACHE_PCH_EXTSUM=true
if [[ " $* " != *' -x c++-header '* ]]; then
    exec ccache "$@"
fi

ccache "$@"
for ((i = 1; i < $#; i++)); do
    if [[ ${!i} == -o ]]; then
        header=${*:i+1:1}
    fi
done
clone=$(cd "$(dirname "$(readlink -f "$0")")/.." && pwd)
{
    printf '%s\n' "$@"
    # The compiler lists them as a make rule.
    sed -e '1s/^[^:]*://' -e 's/\\$//' "$header.d" | xargs cat
} | sed "s|$clone||g" | sha256sum >"$header.sum"
