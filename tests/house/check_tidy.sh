#!/usr/bin/env bash
# check_tidy.sh <source folder> <build folder>: clang-tidy has nothing to say about the sources of the library and of its companion program.
#
# A source that passed leaves an empty file in <build folder>/tidy, named after a hash of all that the verdict depends on,
# and is not looked at again until one of these changes: the source, any header, the configuration, the way it is compiled.
set -eu -o pipefail
cd "$1"

tidy=$(command -v clang-tidy-14 || command -v clang-tidy)
build=$2
stamps=$build/tidy
mkdir -p "$stamps"

# check_one <source> <stamp>
check_one() {
    local output
    if output=$("$tidy" -p "$build" --quiet "$1" 2>&1); then
        : >"$2"
        echo "passed: $1"
    else
        printf 'FAILED: %s\n%s\n' "$1" "$output"
        return 1
    fi
}
export -f check_one
export tidy build

common=$({
    "$tidy" --version
    cat .clang-tidy CMakeLists.txt CMakePresets.json cmake/*.cmake
    find src tools include -name '*.h' -print0 | LC_ALL=C sort -z | xargs -0 sha256sum
} | sha256sum | cut -d' ' -f1)

# The Windows sources are not part of this build, so there is no command to check them with.
find src tools -name '*.cpp' ! -name '*_win32.cpp' -print0 | LC_ALL=C sort -z |
    while IFS= read -r -d '' source; do
        stamp=$stamps/$({ echo "$common $source"; cat "$source"; } | sha256sum | cut -d' ' -f1)
        [ -e "$stamp" ] || printf '%s\0%s\0' "$source" "$stamp"
    done |
    xargs -0 -r -n 2 -P "$(nproc)" bash -c 'check_one "$1" "$2" || exit 1' check_one
