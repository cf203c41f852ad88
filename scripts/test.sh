#!/usr/bin/env bash
# test.sh: builds the library for Linux and Windows and runs every test; the last line says how many passed and failed.
#
# Needs Debian 12, where it installs what is missing. What was built before is built again only where it changed.
set -u -o pipefail
cd "$(dirname "$0")/.." || exit 1

bash scripts/install_packages.sh \
    g++ cmake ninja-build libutfcpp-dev libgtest-dev googletest clang-format-14 clang-tidy-14 \
    g++-mingw-w64-x86-64-posix wine64 locales libcli11-dev nlohmann-json3-dev \
    python3 python3-pytest mypy python3-setuptools python3-wheel python3-build python3-installer \
    mono-mcs mono-runtime nunit-console libnunit-cil-dev || exit 1

passed=0
failed=0

# tally <passed> <failed>
tally() {
    passed=$((passed + $1))
    failed=$((failed + $2))
}

# Prints "passed failed" for the report of one test program, and each skipped case with its reason to stderr.
count_cases() {
    awk '
        function attribute(name,    parts) {
            return match($0, " " name "=\"[^\"]*\"") ? substr($0, RSTART + length(name) + 3, RLENGTH - length(name) - 4) : ""
        }
        /<testsuites / { all = attribute("tests"); bad = attribute("failures") + attribute("errors") }
        /<testcase / { name = attribute("classname") "." attribute("name"); run = attribute("status") == "run" }
        /<testcase / && !run { ++skipped; print "  skipped: " name ": disabled" > "/dev/stderr" }
        /<skipped/ && run {
            ++skipped
            reason = attribute("message")
            gsub(/&#x0[AD];/, " ", reason)
            gsub(/&quot;/, "\"", reason)
            gsub(/&lt;/, "<", reason)
            gsub(/&gt;/, ">", reason)
            gsub(/&amp;/, "\\&", reason)
            print "  skipped: " name ": " reason > "/dev/stderr"
        }
        END { print all - bad - skipped, bad + 0 }' "$1"
}

# Adds up the entries of one ctest report: a test program by its cases, everything else as one test.
count_preset() {
    local preset=$1 name status good bad cases
    while read -r name status; do
        cases=build/$preset/tests/$name.xml
        if [ -e "$cases" ]; then
            read -r good bad < <(count_cases "$cases")
            # A program can fail with all its cases passed: by a leak, or in its end.
            [ "$status" = run ] || [ "$bad" -gt 0 ] || bad=1
            tally "$good" "$bad"
        elif [ "$status" != run ]; then
            tally 0 1
        elif [[ $name != wine.* ]]; then
            tally 1 0
        fi
    done < <(sed -n 's/^.*<testcase name="\([^"]*\)".* status="\([^"]*\)".*$/\1 \2/p' "build/$preset/ctest.xml")
}

build_and_test() {
    local preset=$1
    echo "=== $preset"
    # A report of an earlier run must not be taken for one of this run.
    rm -f "build/$preset/ctest.xml" "build/$preset"/tests/*.xml
    if ! { cmake --preset "$preset" >"build/$preset.log" 2>&1 || { cat "build/$preset.log"; false; }; } ||
        ! cmake --build --preset "$preset"; then
        echo "$preset: the build failed"
        tally 0 1
        return
    fi
    local before=$((passed + failed))
    if ctest --preset "$preset" --output-junit "$PWD/build/$preset/ctest.xml" && [ -e "build/$preset/ctest.xml" ]; then
        count_preset "$preset"
        [ $((passed + failed)) -gt "$before" ] || { echo "$preset: no test was counted"; tally 0 1; }
    else
        local failed_before=$failed
        [ ! -e "build/$preset/ctest.xml" ] || count_preset "$preset"
        [ "$failed" -gt "$failed_before" ] || tally 0 1
    fi
}

mkdir -p build
start=$SECONDS
for preset in linux-release linux-asan windows-release; do
    build_and_test "$preset"
done

echo "=== done in $((SECONDS - start)) s"
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
