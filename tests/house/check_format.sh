#!/usr/bin/env bash
# check_format.sh <source folder>: every source is as clang-format 14 leaves it.
#
# include/tabrin.h is left out: it is a manual, whose comments are tables set by hand, with the descriptions of several
# records and codes in one column. clang-format knows no such tables and would move their columns.
#
# To put right what it finds: clang-format-14 -i <file>
set -eu -o pipefail
cd "$1"

format=$(command -v clang-format-14 || command -v clang-format)
export format

# Shows what clang-format would change.
check_one() {
    "$format" --style=file "$1" | diff --label "$1" --label "$1 (formatted)" -u "$1" -
}
export -f check_one

find src tests tools examples bench fuzz bindings \( -name '*.h' -o -name '*.c' -o -name '*.cpp' -o -name '*.cs' \) -print0 | LC_ALL=C sort -z |
    xargs -0 -n 1 -P 2 bash -c 'set -o pipefail; check_one "$1" || exit 1' check_one
