#!/usr/bin/env bash
# Runs a fuzz target once for each seed: replay.sh <program> <seeds>
set -euo pipefail
shopt -s nullglob
seeds=("$2"/*)
if ((${#seeds[@]} == 0)); then
    echo "there are no seeds in $2"
    exit 1
fi
exec "$1" -timeout=10 -rss_limit_mb=2048 "${seeds[@]}"
