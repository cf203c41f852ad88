#!/usr/bin/env bash
# coverage.sh: builds the library and the tests with Clang's source coverage (preset linux-coverage), runs the tests,
# and prints which lines and branches of src/ they reached, by file, and what they did not reach. Fails below the bar:
# every line and 98 % of the branches.
#
# Needs Debian 12, where it installs what is missing.
set -eu -o pipefail
cd "$(dirname "$0")/.."

bash scripts/install_packages.sh \
    clang-14 libclang-rt-14-dev llvm-14 cmake ninja-build libutfcpp-dev libgtest-dev python3 locales g++

build=build/linux-coverage
log=$build.log
mkdir -p build

# quietly <command...>: what it says is worth reading only when it fails.
quietly() {
    "$@" >"$log" 2>&1 || {
        cat "$log" >&2
        exit 1
    }
}

quietly cmake --preset linux-coverage
quietly cmake --build --preset linux-coverage

# One file for each process and each binary in it: the library that is loaded has counters of its own.
rm -rf "$build/profiles"
mkdir "$build/profiles"
# What counts keeps memory for every library that is loaded, so that the test of what loading leaves behind cannot pass.
export GTEST_FILTER='-LoadedLibrary.LeavesNoMemoryBehind'
LLVM_PROFILE_FILE="$PWD/$build/profiles/%p-%m.profraw" quietly ctest --test-dir "$build" -L gtest --output-on-failure

objects=("$build/libtabrin64.so")
for program in "$build"/tests/tabrin_*_tests; do
    objects+=(-object "$program")
done
# llvm-cov warns of functions that differ between programs, such as main; none of them is in src/.
llvm-profdata-14 merge -sparse -o "$build/tests.profdata" "$build"/profiles/*.profraw
for format in lcov text; do
    llvm-cov-14 export "-format=$format" -instr-profile="$build/tests.profdata" "${objects[@]}" "$PWD/src" \
        >"$build/coverage.$format" 2>"$log" || { cat "$log" >&2; exit 1; }
done
python3 scripts/coverage_table.py . "$build/coverage.lcov" "$build/coverage.text"
