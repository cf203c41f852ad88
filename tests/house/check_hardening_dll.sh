#!/usr/bin/env bash
# check_hardening_dll.sh <objdump> <tabrin64.dll>: the library was linked with what cmake/TabrinHardening.cmake asks for.
set -eu -o pipefail
export LC_ALL=C

headers=$("$1" -p "$2" | tr -d '\r')
characteristics=$(sed -n '/^DllCharacteristics/,/^SizeOfStackReserve/ s/^[[:space:]]*\([A-Z_]*\)$/\1/p' <<<"$headers")
result=0
for flag in DYNAMIC_BASE HIGH_ENTROPY_VA NX_COMPAT; do
    if ! grep -qx "$flag" <<<"$characteristics"; then
        echo "not among the characteristics of the DLL: $flag"
        result=1
    fi
done
# Without relocations the addresses are what they were when it was linked, whatever the flags say.
if ! "$1" -h "$2" | grep -q '\.reloc'; then
    echo "no relocations"
    result=1
fi
exit $result
