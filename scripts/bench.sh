#!/usr/bin/env bash
# bench.sh [ratios [option of Google Benchmark...] | linearity | memory]: builds the optimised library and the
# benchmarks and prints one table; without arguments, that of the ratios.
#
#   ratios     reading, walking, clearing and writing against yardsticks measured in the same process
#   linearity  time per byte or object over growing sizes and many shapes
#   memory     resident memory in reading and after clearing
#
# Needs Debian 12, where it installs what is missing.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)

table=${1:-ratios}
[ $# -eq 0 ] || shift
case $table in
ratios | linearity | memory) ;;
*)
    echo "usage: $0 [ratios [option of Google Benchmark...] | linearity | memory]" >&2
    exit 2
    ;;
esac

bash "$root/scripts/install_packages.sh" g++ cmake ninja-build libutfcpp-dev libbenchmark-dev

build=$root/build/linux-bench
log=$root/build/bench.log
mkdir -p "$root/build"

build_benchmark() {
    cd "$root"
    cmake --preset linux-bench
    cmake --build --preset linux-bench --target "tabrin_bench_$table"
}
if ! (build_benchmark) >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi

cd "$build/bench"
exec "./tabrin_bench_$table" "$@"
