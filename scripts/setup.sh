#!/usr/bin/env bash
# Installs the missing packages of packages.txt for the given purposes:
#   scripts/setup.sh run test
# Does nothing if all are installed.
set -euo pipefail

list=$(dirname "$(readlink -f "$0")")/packages.txt

# The packages below the requested headings.
wanted() {
    awk -v purposes=" $* " '
        /^#/ || /^$/ { next }
        /^\[.*\]$/   { heading = substr($0, 2, length($0) - 2); next }
        index(purposes, " " heading " ") { print }
    ' "$list" | sort -u
}

installed() {
    dpkg-query --show --showformat='${db:Status-Status} ${Package}\n' -- "$@" 2>/dev/null |
        sed -n 's/^installed //p' | sort -u
}

as_root() {
    if [[ $(id -u) == 0 ]]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        printf 'Installing packages takes root, and there is no sudo. Missing:\n%s\n' "${missing[*]}" >&2
        exit 1
    fi
}

mapfile -t packages < <(wanted "$@")
if ! command -v dpkg-query >/dev/null; then
    printf 'This system has no Debian packages; what is needed, in their names:\n%s\n' "${packages[*]}" >&2
    exit 0
fi
mapfile -t missing < <(comm -23 <(printf '%s\n' "${packages[@]}") <(installed "${packages[@]}"))
if ((${#missing[@]} == 0)); then
    exit 0
fi

printf 'Installing %s\n' "${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
apt=(env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0)
as_root "${apt[@]}" update >&2
as_root "${apt[@]}" install --yes --no-install-recommends -- "${missing[@]}" >&2
