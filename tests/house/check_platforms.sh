#!/usr/bin/env bash
# check_platforms.sh <source folder>: what differs between systems lives in sources named *_win32.cpp and *_posix.cpp, which
# CMake chooses from. Only the public header asks for the system itself, for the sake of its export macro.
set -eu
cd "$1"

folders=(include src tests tools examples)
for folder in "${folders[@]}"; do
    [ -d "$folder" ] || { echo "there is no folder $folder"; exit 1; }
done
if grep -rnE --include='*.h' --include='*.cpp' --include='*.c' \
    '^[[:space:]]*#[[:space:]]*(if|ifdef|ifndef|elif)\b.*(_WIN32|_WIN64|WIN32|__MINGW|__CYGWIN__|__linux|__unix|__APPLE__)' \
    "${folders[@]}" | grep -vE '^(include/tabrin\.h|[^:]*_(win32|posix)\.cpp):'; then
    echo "  ^ asks for the system outside *_win32.cpp and *_posix.cpp"
    exit 1
fi
