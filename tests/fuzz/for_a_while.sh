#!/usr/bin/env bash
# Runs a fuzz target for some seconds: for_a_while.sh <program> <seeds> <seconds>
# A fixed random seed gives the same inputs each time. So a program that has passed is not run again: a mark beside ccache's
# folder says so.
set -euo pipefail
found=$(mktemp --directory)
trap 'rm -rf "$found"' EXIT

# The path of the sources and the compiler's notes do not count as a difference.
objcopy --strip-all --remove-section=.note.gnu.build-id "$1" "$found/program"
key=$(cat "$0" "$found/program" "$2"/* <(echo "$3") | sha256sum | cut -d ' ' -f 1)
rm "$found/program"
kept=$(dirname "$(ccache --get-config cache_dir)")/amberquill-fuzz
mkdir -p "$kept"
find "$kept" -type f -mtime +30 -delete
if [[ -e $kept/$key ]]; then
    touch "$kept/$key"
    echo 'the same program has passed'
    exit 0
fi
"$1" -seed=1 -max_total_time="$3" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$(dirname "$1")/" "$found" "$2"
touch "$kept/$key"
