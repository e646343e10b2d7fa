# shellcheck shell=bash
# What the commands that check the project have in common. Sourced in the project's folder.

# say <text> says what begins, with the seconds since the beginning.
say() {
    printf '%4d s  %s\n' "$SECONDS" "$1"
}

# step <name> <command>... runs a command and is silent if it succeeds. Otherwise it shows what the command said, once
# more the lines that name a fault, which may be far up, and ends the script.
step() {
    local name=$1 log
    shift
    say "$name"
    log=build/steps/${name// /-}.log
    mkdir -p build/steps
    if ! "$@" >"$log" 2>&1 </dev/null; then
        tail -n 300 "$log"
        printf '\n%s failed:\n' "$name"
        grep -E '(^|[^[:alnum:]])([Ee]rror|[Ww]arning|In .* line [0-9]+|undefined name|FAILED):?' "$log" |
            grep -vE 'warnings? generated' |
            cut -c 1-300 | awk '!seen[$0]++' | head -n 20 || true
        exit 1
    fi
}
