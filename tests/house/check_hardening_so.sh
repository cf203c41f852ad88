#!/usr/bin/env bash
# check_hardening_so.sh <readelf> <libtabrin64.so> <compile_commands.json>: the library was built with what
# cmake/TabrinHardening.cmake asks for.
set -eu -o pipefail
export LC_ALL=C

dynamic=$("$1" -dW "$2")
segments=$("$1" -lW "$2")
symbols=$("$1" --dyn-syms -W "$2")
result=0

# expect <what it says when it is missing> <pattern> <text>
expect() {
    if ! grep -qE -- "$2" <<<"$3"; then
        echo "$1"
        result=1
    fi
}

expect "no stack protector" ' UND __stack_chk_fail' "$symbols"
expect "no RELRO: relocated tables stay writable" '^ *GNU_RELRO ' "$segments"
expect "no BIND_NOW: calls are bound late, through a table that stays writable" '\(FLAGS\) .*BIND_NOW' "$dynamic"
expect "the stack is executable, or nothing says that it is not" '^ *GNU_STACK .* RW +0x[0-9a-f]+$' "$segments"
if grep -E '^ *LOAD .* RWE ' <<<"$segments" || grep -E '\(TEXTREL\)' <<<"$dynamic"; then
    echo "something is writable and executable"
    result=1
fi

# Whether calls are checked shows in the file only where there is one with a buffer of known size. There is none, by luck, so
# the way the sources are compiled has to do.
sources=$(grep -E '"command": .* -o CMakeFiles/(tabrin_core|tabrin64)\.dir/src/' "$3")
expect "no sources in $3" '/src/io/' "$sources"
if grep -vE -- '-D_FORTIFY_SOURCE=[23]( |").* -c ' <<<"$sources"; then
    echo "compiled without checked calls"
    result=1
fi
exit $result
