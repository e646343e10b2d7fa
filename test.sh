#!/usr/bin/env bash
# Installs missing packages, builds, checks the formatting and runs all tests: all with the release build, those without
# a display also with the address and undefined-behaviour sanitizers and with the thread sanitizer, and the fuzz targets
# on their seeds. Ends with the test runner's summary. Passes its arguments to ctest, as in:
#   ./test.sh -R unit_data
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"
source scripts/steps.sh

scripts/setup.sh run screenless test

# Without a runtime folder Qt prints a warning and creates one that stays.
if [[ -z ${XDG_RUNTIME_DIR:-} ]]; then
    XDG_RUNTIME_DIR=$(mktemp --directory)
    export XDG_RUNTIME_DIR
    trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
fi

formatted() {
    find src tests packaging -name '*.cpp' -print0 -o -name '*.h' -print0 |
        xargs -0 -n 40 -P "$(nproc)" clang-format --dry-run -Werror
}
step 'Checking the formatting' formatted

mkdir -p build/tests
built() {
    cmake --preset "$1" -DAMBERQUILL_TESTS=ON && cmake --build --preset "$@"
}
step 'Building release' built release
step 'Building asan' built asan
# This build's tests do not start the program itself.
step 'Building tsan' built tsan --target tests

# One run over all builds, for one summary.
printf 'subdirs("%s" "%s" "%s")\n' "$PWD/build/release" "$PWD/build/asan" "$PWD/build/tsan" \
    >build/tests/CTestTestfile.cmake
say 'Testing'
# One more than there are processors: some tests wait, and there are three displays.
ctest --test-dir build/tests --output-on-failure --no-label-summary --parallel $(($(nproc) + 1)) \
    --resource-spec-file "$PWD/tests/desktop/displays.json" --label-exclude '^display-sanitized$' "$@" |
    python3 -B scripts/test-report.py
