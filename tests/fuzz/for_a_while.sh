#!/usr/bin/env bash
# Feeds a fuzz target for some seconds, from its seeds on, the same files each time so that a change is judged by what
# it changes: for_a_while.sh <program> <seeds> <seconds>
set -euo pipefail
found=$(mktemp --directory)
trap 'rm -rf "$found"' EXIT
"$1" -seed=1 -max_total_time="$3" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$(dirname "$1")/" "$found" "$2"
