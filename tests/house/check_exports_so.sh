#!/usr/bin/env bash
# check_exports_so.sh <nm> <libtabrin64.so>: the library exports exactly the names of exported_names.txt.
set -eu -o pipefail
export LC_ALL=C

names=$(dirname "$0")/exported_names.txt
symbols=$("$1" -D --defined-only "$2")
diff --label "expected names" --label "names in $2" -u "$names" <(awk '{print $NF}' <<<"$symbols" | sort)
