#!/usr/bin/env bash
# bench_python.sh [rounds]: builds the optimised library and shows where the time goes in reading a generated database
# of 10 MB from Python.
#
# Needs Debian 12, where it installs what is missing.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)

bash "$root/scripts/install_packages.sh" g++ cmake ninja-build libutfcpp-dev libbenchmark-dev python3

build=$root/build/linux-bench
log=$root/build/bench.log
mkdir -p "$root/build"

build_generator() {
    cd "$root"
    cmake --preset linux-bench
    cmake --build --preset linux-bench --target tabrin64 tabrin_bench_generate
}
if ! (build_generator) >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi

cd "$build/bench" # a short path for the library, wherever the build folder is
./tabrin_bench_generate 10000000 python.dbc
export TABRIN_LIBRARY=$build/libtabrin64.so PYTHONPATH=$root/bindings/python/src PYTHONDONTWRITEBYTECODE=1
exec /usr/bin/python3 "$root/bindings/python/bench/bench_reading.py" python.dbc "$@"
