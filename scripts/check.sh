#!/usr/bin/env bash
# check.sh [cppcheck | analyzer | valgrind | msan]...: looks for faults with tools that are too slow, or too seldom right, to be
# among the tests; without arguments, with all. A finding is a failure. What is not to be looked at is listed here and in
# scripts/cppcheck_suppressions.txt, scripts/msan_ignorelist.txt and scripts/msan_runtime.cpp, each with its reason.
#
#   cppcheck  the sources, by cppcheck
#   analyzer  the sources, by GCC's -fanalyzer
#   valgrind  the tests, in valgrind: memory that is used wrongly, used before it is written, or lost
#   msan      the library with Clang's memory sanitizer, reading and writing all DBC files here in each order
#
# Needs Debian 12, where it installs what is missing. Takes about ten minutes, most of them in valgrind.
set -eu -o pipefail
cd "$(dirname "$0")/.."

[ $# -gt 0 ] || set -- cppcheck analyzer valgrind msan
for check in "$@"; do
    case $check in
    cppcheck | analyzer | valgrind | msan) ;;
    *)
        echo "usage: $0 [cppcheck | analyzer | valgrind | msan]..." >&2
        exit 2
        ;;
    esac
done

build=build/check
mkdir -p "$build"
compile=(-DTABRIN_BUILD -Isrc -Iinclude -isystem /usr/include/utf8cpp)

check_cppcheck() {
    bash scripts/install_packages.sh cppcheck
    cppcheck --std=c++20 --platform=unix64 --enable=warning,performance,portability,style --quiet -UTABRIN_SANITIZE \
        --suppressions-list=scripts/cppcheck_suppressions.txt --error-exitcode=1 -Iinclude -Isrc include src examples
}

# analyze <compiler> <option or source>...
analyze() {
    local output
    output=$("$1" "${compile[@]}" -O2 -Wall -Wextra -fanalyzer "${@:2}" -c -o "$build/analyzed.$$.o" 2>&1) || true
    [ -z "$output" ] || { printf '%s\n' "$output"; return 1; }
}

check_analyzer() {
    bash scripts/install_packages.sh gcc g++ libutfcpp-dev
    local source result=0
    # GCC 12 can analyze C. It takes what a C++ function returns for an object that was never written, where that is made in the
    # caller's room at once, and takes what a container has made room for for a null pointer. Valgrind and the sanitizers
    # know better.
    while IFS= read -r source; do
        analyze g++ -std=c++20 -Wno-analyzer-use-of-uninitialized-value -Wno-analyzer-null-dereference \
            -Wno-analyzer-possible-null-dereference "$source" || result=1
    done < <(find src -name '*.cpp' ! -name '*_win32.cpp' | LC_ALL=C sort)
    for source in examples/*.c; do
        analyze gcc -std=c99 "$source" || result=1
    done
    rm -f "$build/analyzed.$$.o"
    return $result
}

# run_in_valgrind <test program> <cases to leave out> [option of valgrind...]
run_in_valgrind() {
    local program=$1 without=$2 log=$build/$1.valgrind.log
    shift 2
    # "Possibly" lost is, for one, what the loader keeps by a pointer into its middle.
    if (cd build/linux-release/tests &&
        valgrind --quiet --error-exitcode=9 --leak-check=full --show-leak-kinds=definite,indirect \
            --errors-for-leak-kinds=definite,indirect "$@" "./$program" --gtest_brief=1 --gtest_filter="-$without") \
        >"$log" 2>&1 && ! grep -q '^==[0-9]*==' "$log"; then
        echo "$program: $(grep -F PASSED "$log")"
    else
        grep -vE 'Skipped|^no folder' "$log"
        return 1
    fi
}

check_valgrind() {
    bash scripts/install_packages.sh valgrind g++ cmake ninja-build libutfcpp-dev libgtest-dev googletest locales
    cmake --preset linux-release >"$build/valgrind.log" 2>&1 || { cat "$build/valgrind.log"; return 1; }
    cmake --build --preset linux-release --target tabrin_unit_tests tabrin_interface_tests tabrin_memory_tests || return 1
    local result=0
    # In valgrind, the program that is running is valgrind, which reads and writes files of its own as well.
    run_in_valgrind tabrin_unit_tests \
        OpenFile.ProgramThatIsRunningCannotBeWritten:DbcWriterFaults.EachLineIsOneWrite || result=1
    # What they measure is the memory of the C library, which valgrind has replaced; it looks for what is lost by itself.
    run_in_valgrind tabrin_interface_tests \
        'LoadedLibrary.*:LongUse.HoldsMemoryFlat:LongUse.IsMeasured:ReadFailure.OfMemoryRunningOutIsStatus8' || result=1
    # The operator new of the program itself has to stay.
    run_in_valgrind tabrin_memory_tests '' --soname-synonyms=somalloc=nouserintercepts || result=1
    return $result
}

build_with_msan() {
    # The test programs would need GoogleTest and the C++ runtime built with the sanitizer, which no package offers. The
    # example program is C, and asks for all that the library gives out.
    local sources sanitize=(-fsanitize=memory -fsanitize-ignorelist=scripts/msan_ignorelist.txt -g1 -O1)
    mapfile -t sources < <(find src -name '*.cpp' ! -name '*_win32.cpp' | LC_ALL=C sort)
    clang-14 "${sanitize[@]}" -Iinclude -c examples/dbc_dump.c -o "$build/dbc_dump.o"
    clang++-14 "${sanitize[@]}" -D_GLIBCXX_EXTERN_TEMPLATE=0 "${compile[@]}" -std=c++20 -Wno-return-type-c-linkage \
        -Wl,--wrap=_ZSt8to_charsPcS_dSt12chars_formati,--wrap=_ZSt10from_charsPKcS0_RdSt12chars_format \
        scripts/msan_runtime.cpp "${sources[@]}" "$build/dbc_dump.o" -o "$build/dbc_dump"
}

check_msan() {
    bash scripts/install_packages.sh clang-14 libclang-rt-14-dev g++ libutfcpp-dev
    build_with_msan || return 1
    local file order files=0 findings=0 log=$build/msan.log
    for file in fuzz/seeds/fuzz_file/* fuzz/corpus/fuzz_file/* tests/golden/*.dbc tests/data/*.dbc examples/*.dbc; do
        files=$((files + 1))
        for order in id name file; do
            # It ends with a failure where nothing can be written, for want of messages.
            "$build/dbc_dump" --order "$order" -o "$build/written.dbc" "$file" >"$log" 2>&1 || true
            if grep -qE 'MemorySanitizer|DEADLYSIGNAL' "$log"; then
                findings=$((findings + 1))
                echo "$file, by $order:"
                grep -vE '^$' "$log" | tail -n 30
            fi
        done
    done
    echo "$files files, $findings findings"
    [ "$findings" -eq 0 ]
}

failed=()
for check in "$@"; do
    echo "=== $check"
    "check_$check" || failed+=("$check")
done
if [ ${#failed[@]} -gt 0 ]; then
    echo "findings: ${failed[*]}"
    exit 1
fi
echo "no findings"
