#!/usr/bin/env bash
# check_small_examples.sh <list_signals> <build_database> [program that starts them]: the one writes a database, and the
# other prints what was put into it; both say so when a file cannot be used.
set -eu
list=$1
build=$2
start=${3:+"$3"}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
result=0

# expect <what> <expected> <actual>
expect() {
    if [ "$2" != "$3" ]; then
        printf '%s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
        result=1
    fi
}

# run <program> [argument...]: sets code and output, without the carriage returns of Windows.
run() {
    code=0
    output=$($start "$@" 2>&1) || code=$?
    output=${output//$'\r'/}
}

run "$build" engine.dbc
expect "exit code of build_database" "0 " "$code $output"

# Without a factor of its own a value is the raw one.
run "$list" engine.dbc
expect "exit code of list_signals" 0 "$code"
expect "what it lists" "EngineStatus, 8 bytes
    Engine speed: 16 bits, raw * 0.25 + 0 rpm
    EngineState: 2 bits, raw * 1 + 0 " "$output"
expect "comment, long name and value descriptions" \
    'CM_ BO_ 256 "What everybody needs to know about the engine";
BA_ "Kestrune_Sig_Name" SG_ 256 Engine_speed "Engine speed";
VAL_ 256 EngineState 0 "off" 1 "running";' \
    "$(tr -d '\r' <engine.dbc | grep -E '^(CM_|BA_|VAL_) ')"

run "$list" none.dbc
expect "list_signals without a file" "1 none.dbc: not read (status 6)" "$code $output"
run "$build" none/engine.dbc
expect "build_database without a folder" "1 none/engine.dbc: not written" "$code $output"
run "$list"
expect "list_signals without an argument" "2 usage: list_signals <file.dbc>" "$code $output"
run "$build"
expect "build_database without an argument" "2 usage: build_database <file.dbc>" "$code $output"

exit $result
