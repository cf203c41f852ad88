#!/usr/bin/env bash
# check_version_resource.sh <windres> <tabrin64.dll>: the library carries its version where Windows shows it.
set -eu -o pipefail

resource=$("$1" -J coff -O rc -i "$2")
result=0
while IFS= read -r line; do
    if ! grep -qF -- "$line" <<<"$resource"; then
        echo "not in the version resource: $line"
        result=1
    fi
done <<'END'
FILEVERSION 1, 31, 0, 0
PRODUCTVERSION 1, 31, 0, 0
VALUE "FileVersion", "1.31"
VALUE "ProductVersion", "1.31"
VALUE "ProductName", "Tabrin"
END
exit $result
