#!/usr/bin/env bash
# shuffle.sh [preset]: do the tests depend on anything but the library? Runs the built test programs of a preset
# (linux-release) in other orders and again in one process, with another locale, time zone and current folder, with a
# closed standard input, and as a user without rights, and says which of that fails.
#
# The last is left out for an ordinary user, who is one already.
set -u -o pipefail
cd "$(dirname "$0")/.." || exit 1

bash scripts/install_packages.sh locales util-linux || exit 1

preset=${1:-linux-release}
tests=$PWD/build/$preset/tests
log=$PWD/build/shuffle.log
if ! ls "$tests"/tabrin_*_tests >/dev/null 2>&1; then
    echo "$0: build the preset $preset first" >&2
    exit 2
fi

elsewhere=$(mktemp -d)
chmod 755 "$elsewhere"
trap 'rm -rf "$elsewhere"' EXIT
export LLVM_PROFILE_FILE=/dev/null # for the preset linux-coverage

# Ends with 1 for warnings too, so only what comes of it counts.
localedef -i de_DE -f UTF-8 "$elsewhere/de_DE.UTF-8" >/dev/null 2>&1 || true
if [ "$(LOCPATH=$elsewhere LC_ALL=de_DE.UTF-8 locale decimal_point 2>/dev/null)" != , ]; then
    echo "$0: cannot make a locale with a decimal comma" >&2
    exit 2
fi

failed=0

# try <program> <what differs> <command...>
try() {
    local program=$1 what=$2
    shift 2
    if (cd "$tests" && "$@" --gtest_brief=1) >"$log" 2>&1; then
        echo "$program, $what: passed, $(grep -c ': Skipped$' "$log") skipped"
    else
        echo "$program, $what: FAILED"
        tail -n 40 "$log"
        failed=1
    fi
}

for path in "$tests"/tabrin_*_tests; do
    program=${path##*/}
    temporary=$tests/tmp/$program
    try "$program" "five times in random orders" "$path" --gtest_shuffle --gtest_repeat=5
    try "$program" "German locale" env LOCPATH="$elsewhere" LANG=de_DE.UTF-8 LC_ALL=de_DE.UTF-8 "$path"
    try "$program" "time zone far away" env TZ=XYZ-13:45 "$path"
    try "$program" "another folder" env -C "$elsewhere" "$path"
    try "$program" "bare environment" env -i "$path"
    try "$program" "nothing to read from" bash -c 'exec "$@" <&-' - "$path"
    if [ "$(id -u)" -eq 0 ]; then
        chown -R nobody "$temporary"
        try "$program" "user without rights" setpriv --reuid=nobody --regid=nogroup --clear-groups "$path"
        chown -R root "$temporary"
    fi
done
exit "$failed"
