#!/usr/bin/env bash
# check_imports_dll.sh <objdump> <tabrin64.dll>: the library needs nothing but what every Windows has.
set -eu -o pipefail
export LC_ALL=C

table=$("$1" -p "$2" | tr -d '\r')
diff --label "expected imports" --label "imports of $2" -u <(printf '%s\n' kernel32.dll msvcrt.dll) \
    <(sed -n 's/^[[:space:]]*DLL Name: //p' <<<"$table" | tr '[:upper:]' '[:lower:]' | sort)
