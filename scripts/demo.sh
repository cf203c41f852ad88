#!/usr/bin/env bash
# demo.sh [--summary] [file...]: builds the library and the example program and shows what the DBC files contain;
# without files, what the sample has.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)

bash "$root/scripts/install_packages.sh" g++ cmake ninja-build libutfcpp-dev

build=$root/build/linux-release
log=$root/build/demo.log
mkdir -p "$root/build"

build_example() {
    cd "$root"
    # Without the tests, which need more to be installed, unless the folder was set up with them already.
    [ -e "$build/build.ninja" ] || cmake --preset linux-release -DTABRIN_BUILD_TESTS=OFF -DTABRIN_BUILD_TOOLS=OFF
    cmake --build --preset linux-release --target dbc_dump
}
if ! (build_example) >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi

case $* in
'' | --summary) set -- "$@" "$root/examples/engine.dbc" ;;
esac
exec "$build/examples/dbc_dump" "$@"
