# shellcheck shell=bash
# Functions of the scripts that check the project. Sourced in the project's folder.

# say <text> prints the text after the seconds since the start.
say() {
    printf '%4d s  %s\n' "$SECONDS" "$1"
}

# step <name> <command>... runs a command and prints nothing if it succeeds. If it fails, prints its output, repeats the
# lines with errors, which may be far up, and ends the script.
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
