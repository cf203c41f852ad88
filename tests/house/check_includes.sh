#!/usr/bin/env bash
# check_includes.sh <source folder>: the layers include downwards only, api > dbc > model > io.
set -eu
cd "$1"

result=0

# forbid <folder> <pattern of included paths>
forbid() {
    [ -d "$1" ] || { echo "there is no folder $1"; exit 1; }
    if grep -rnE --include='*.h' --include='*.cpp' "^[[:space:]]*#[[:space:]]*include[[:space:]]*[\"<]($2)" "$1"; then
        echo "  ^ not allowed in $1: ($2)"
        result=1
    fi
}

forbid src/io 'model/|dbc/|api/'
forbid src/model 'dbc/|api/'
forbid src/dbc 'api/'
forbid src '\.\.?/' # would go around the three rules above
exit $result
