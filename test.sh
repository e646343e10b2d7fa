#!/usr/bin/env bash
# Installs what is missing, builds, checks the formatting and runs every test: all of them as people run the program,
# those that need no display also under the address and undefined-behaviour sanitizers, and the readers of layouts
# and of feeds against made-up files. Ends with the test runner's summary. Arguments are ctest's, as in:
#   ./test.sh -R ScreenChoice
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"

scripts/setup.sh run screenless test

# Qt complains of a session without a runtime folder, and would make one that stays.
if [[ -z ${XDG_RUNTIME_DIR:-} ]]; then
    XDG_RUNTIME_DIR=$(mktemp --directory)
    export XDG_RUNTIME_DIR
    trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
fi

echo 'Checking the formatting'
find src tests packaging -name '*.cpp' -print0 -o -name '*.h' -print0 | xargs -0 clang-format --dry-run -Werror

mkdir -p build
for preset in release asan; do
    echo "Building $preset"
    cmake --preset "$preset" -DAMBERQUILL_TESTS=ON >build/"$preset".log || { cat build/"$preset".log && exit 1; }
    cmake --build --preset "$preset" -- --quiet
done

echo Building fuzz
cmake --preset fuzz >build/fuzz.log || { cat build/fuzz.log && exit 1; }
cmake --build --preset fuzz -- --quiet fuzz_tests

# One run over all builds, for one summary.
mkdir -p build/tests
printf 'subdirs("%s" "%s" "%s")\n' "$PWD/build/release" "$PWD/build/asan" "$PWD/build/fuzz" \
    >build/tests/CTestTestfile.cmake
# Of the tests, only those that do not pass are worth a line.
ctest --test-dir build/tests --output-on-failure --no-label-summary --parallel "$(nproc)" \
    --label-exclude '^display-sanitized$' "$@" | sed -E '/^ +Start +[0-9]+: /d; /^ *[0-9]+\/[0-9]+ Test .* Passed /d'
