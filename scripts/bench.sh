#!/usr/bin/env bash
# bench.sh [ratios [option of Google Benchmark...] | linearity | memory | windows [ratios [option...] | linearity]]: builds
# the optimised library and the benchmarks and prints one table; without arguments, that of the ratios.
#
#   ratios     reading, walking, clearing and writing against yardsticks measured in the same process
#   linearity  time per byte or object over growing sizes and many shapes
#   memory     resident memory in reading and after clearing
#   windows    the same programs, built for Windows and run under Wine
#
# Needs Debian 12, where it installs what is missing.
set -eu -o pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

platform=linux
if [ "${1:-}" = windows ]; then
    platform=windows
    shift
fi
table=${1:-ratios}
[ $# -eq 0 ] || shift
case $platform-$table in
linux-ratios | linux-linearity | linux-memory | windows-ratios | windows-linearity) ;;
*)
    echo "usage: $0 [ratios [option of Google Benchmark...] | linearity | memory |" \
        "windows [ratios [option...] | linearity]]" >&2
    exit 2
    ;;
esac

preset=$platform-bench
build=$root/build/$preset
log=$root/build/bench.log
mkdir -p "$root/build"

# Debian has Google Benchmark as a binary package for its own architectures only, so what runs on Windows is compiled from
# Debian's source package. The system's package lists seldom name source packages and stay as they are: a list of our own
# does it.
fetch_google_benchmark() {
    local sources=$root/build/google-benchmark apt=$root/build/google-benchmark.apt
    [ ! -e "$sources/CMakeLists.txt" ] || return 0
    rm -rf "$apt" "$sources"
    mkdir -p "$apt/lists/partial" "$apt/cache/archives/partial"
    echo "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] http://deb.debian.org/debian bookworm main" \
        >"$apt/sources.list"
    local options=(-q -o "Dir::Etc::SourceList=$apt/sources.list" -o Dir::Etc::SourceParts=/dev/null
        -o "Dir::State::Lists=$apt/lists" -o "Dir::Cache=$apt/cache")
    cd "$apt" &&
        apt-get "${options[@]}" update &&
        apt-get "${options[@]}" source --only-source benchmark &&
        mv benchmark-*/ "$sources" &&
        rm -rf "$apt"
}

build_benchmark() {
    { [ $platform = linux ] || fetch_google_benchmark; } &&
        cd "$root" &&
        cmake --preset "$preset" &&
        cmake --build --preset "$preset" --target "tabrin_bench_$table"
}

run_under_wine() {
    wine=$(sed -n 's/^TABRIN_WINE:[A-Z]*=//p' "$build/CMakeCache.txt")
    export WINEPREFIX=$build/wine WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml,winedbg.exe=d"
    trap 'bash "$root/scripts/wine_server.sh" stop "$wine" "$WINEPREFIX"' EXIT
    bash "$root/scripts/wine_server.sh" start "$wine" "$WINEPREFIX"
    # Through a pipe also on a terminal: Wine would draw there instead of printing.
    "$wine" "$build/tabrin_bench_$table.exe" "$@" </dev/null | tr -d '\r'
}

packages=(g++ cmake ninja-build libutfcpp-dev)
if [ $platform = linux ]; then
    packages+=(libbenchmark-dev)
else
    packages+=(g++-mingw-w64-x86-64-posix wine64 dpkg-dev debian-archive-keyring)
fi
bash "$root/scripts/install_packages.sh" "${packages[@]}"

if ! (build_benchmark) >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi

cd "$build/bench"
if [ $platform = windows ]; then
    run_under_wine "$@"
else
    exec "./tabrin_bench_$table" "$@"
fi
