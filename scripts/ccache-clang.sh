#!/usr/bin/env bash
# Runs clang through ccache: ccache-clang.sh <compiler> <argument>...
#
# A precompiled header of clang's holds the path of its clone, so that ccache would take all that is compiled with it for
# something else in every clone. Where a digest lies beside such a header, ccache reads the digest instead. Here it is made
# of what decides the header's content, the options and the text of all files it includes, without the clone's path.
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
    # The compiler's list of them has the form of a rule of make.
    sed -e '1s/^[^:]*://' -e 's/\\$//' "$header.d" | xargs cat
} | sed "s|$clone||g" | sha256sum >"$header.sum"
