#!/usr/bin/env bash
# check_exports_dll.sh <objdump> <tabrin64.dll>: the library exports exactly the names of exported_names.txt.
set -eu -o pipefail
export LC_ALL=C

names=$(dirname "$0")/exported_names.txt
table=$("$1" -p "$2" | tr -d '\r')
diff --label "expected names" --label "names in $2" -u "$names" \
    <(sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/ s/^[[:space:]]*\[ *[0-9]*\] *//p' <<<"$table" | sort)
