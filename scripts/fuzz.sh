#!/usr/bin/env bash
# fuzz.sh <seconds> [target...]: builds the fuzz targets and runs each for that time, two side by side; then says how often
# each was run, what it reached and what it found. Without targets, all of them: fuzz_file fuzz_calls fuzz_cutter fuzz_scan.
#
# Inputs are gathered in build/linux-fuzz/corpus, findings in build/linux-fuzz/findings. A finding belongs into fuzz/seeds,
# where the tests run it from then on. With TABRIN_FUZZ_SAVE=1 fuzz/corpus is made anew of what was gathered: the few small
# inputs that reach everything.
set -eu -o pipefail
cd "$(dirname "$0")/.."

if [ $# -eq 0 ] || ! [ "$1" -gt 0 ] 2>/dev/null; then
    echo "usage: fuzz.sh <seconds> [target...]" >&2
    exit 2
fi
seconds=$1
shift
[ $# -gt 0 ] || set -- fuzz_file fuzz_calls fuzz_cutter fuzz_scan

bash scripts/install_packages.sh clang-14 libclang-rt-14-dev cmake ninja-build libutfcpp-dev g++

build=build/linux-fuzz
mkdir -p build
if ! cmake --preset linux-fuzz >build/linux-fuzz.log 2>&1; then
    cat build/linux-fuzz.log >&2
    exit 1
fi
cmake --build --preset linux-fuzz --target "$@"

# longest_input <target>
longest_input() {
    case $1 in
    fuzz_file) echo 65536 ;;
    fuzz_cutter) echo 16384 ;;
    fuzz_calls) echo 8192 ;;
    *) echo 1024 ;;
    esac
}

# run_target <target>: one run to the end of the time or to the first finding.
run_target() {
    mkdir -p "$build/corpus/$1" "$build/findings/$1" "fuzz/corpus/$1"
    nice -n 10 "$build/fuzz/$1" "$build/corpus/$1" "fuzz/seeds/$1" "fuzz/corpus/$1" \
        -dict=fuzz/dbc.dict -len_control=20 -max_len="$(longest_input "$1")" -timeout=10 -rss_limit_mb=2048 -reload=0 \
        -max_total_time="$seconds" -artifact_prefix="$build/findings/$1/" -print_final_stats=1 \
        >"$build/$1.log" 2>&1
}

# report <target> <result of the run>
report() {
    local coverage executions
    coverage=$(sed -n 's/^#.* cov: \([0-9]*\) ft: \([0-9]*\) .*/\1 edges, \2 features/p' "$build/$1.log" | tail -n 1)
    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$build/$1.log")
    echo "$1: ${executions:-?} executions, ${coverage:-nothing} reached"
    if [ "$2" -ne 0 ]; then
        grep -E '^FINDING|^==.*ERROR|runtime error|^SUMMARY|Test unit written to' "$build/$1.log" || tail -n 20 "$build/$1.log"
    fi
}

# save_corpus <target>: edges only, not how often each is passed, or the corpus would be ten times as large.
save_corpus() {
    local merged=$build/merged/$1
    rm -rf "$merged"
    mkdir -p "$merged"
    "$build/fuzz/$1" -merge=1 -use_counters=0 -max_len=2000 "$merged" "$build/corpus/$1" "fuzz/corpus/$1" \
        >"$build/$1.merge.log" 2>&1
    rm -rf "fuzz/corpus/$1"
    cp -r "$merged" "fuzz/corpus/$1"
}

findings=0
while [ $# -gt 0 ]; do
    first=$1
    second=${2:-}
    shift
    [ $# -eq 0 ] || shift
    run_target "$first" &
    first_run=$!
    second_run=
    if [ -n "$second" ]; then
        run_target "$second" &
        second_run=$!
    fi
    result=0
    wait "$first_run" || result=$?
    report "$first" "$result"
    [ "$result" -eq 0 ] || findings=$((findings + 1))
    if [ -n "$second_run" ]; then
        result=0
        wait "$second_run" || result=$?
        report "$second" "$result"
        [ "$result" -eq 0 ] || findings=$((findings + 1))
    fi
    if [ "${TABRIN_FUZZ_SAVE:-0}" = 1 ]; then
        save_corpus "$first"
        [ -z "$second" ] || save_corpus "$second"
    fi
done

echo "$findings findings"
[ "$findings" -eq 0 ]
