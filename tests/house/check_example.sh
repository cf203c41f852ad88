#!/usr/bin/env bash
# check_example.sh <dbc_dump> <folder of engine.dbc>: the example program finds in the sample file what was written into it,
# writes it in every order, and says so when it cannot read or write a file.
set -eu
cd "$2"

result=0

# expect <what> <expected> <actual>
expect() {
    if [ "$2" != "$3" ]; then
        printf '%s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
        result=1
    fi
}

code=0
output=$("$1" --summary engine.dbc) || code=$?
expect "exit code" 0 "$code"
expect "summary" "engine.dbc: 6 messages, 21 signals, 1 error" "$output"

code=0
output=$("$1" --summary no_such_file.dbc 2>&1) || code=$?
expect "exit code without a file" 1 "$code"
expect "complaint" "no_such_file.dbc: the file cannot be opened (status 6)" "$output"

# Written files go to a folder of their own, also those that the program names itself.
sample=$PWD/engine.dbc
written=$(mktemp -d)
trap 'rm -rf "$written"' EXIT
cd "$written"

# order, and the first message of the sample in it: the largest identifier, the first name, the first in the file
while read -r order first; do
    code=0
    output=$("$1" --summary --order "$order" "$sample") || code=$?
    expect "exit code of --order $order" 0 "$code"
    expect "last line of --order $order" "engine.$order.out.dbc: 6 messages written, order: $order" \
        "$(printf '%s\n' "$output" | tail -n 1)"
    expect "first message of --order $order" "$first" \
        "$(grep -m 1 '^BO_ ' "engine.$order.out.dbc" | tr -d '\r')"
done <<'EOF'
id BO_ 2566844672 FuelConsumption: 8 EngineControl
name BO_ 1536 DashboardRequest: 2 Dashboard
file BO_ 256 EngineStatus: 8 EngineControl
EOF

code=0
"$1" --summary --order file -o chosen.dbc "$sample" >/dev/null || code=$?
expect "exit code of -o" 0 "$code"
expect "file of -o" "$(cat engine.file.out.dbc)" "$(cat chosen.dbc)"

code=0
output=$("$1" --summary --order id -o no_such_folder/x.dbc "$sample" 2>&1 >/dev/null) || code=$?
expect "exit code of a write that fails" 1 "$code"
expect "complaint of a write that fails" "no_such_folder/x.dbc: not written: the file cannot be opened (status 6)" \
    "$output"

for arguments in "--order" "--order size $sample" "--order id" "--order id $sample $sample" "-o x.dbc $sample"; do
    code=0
    # shellcheck disable=SC2086 # several arguments
    "$1" $arguments >/dev/null 2>&1 || code=$?
    expect "exit code of '$arguments'" 2 "$code"
done

exit $result
