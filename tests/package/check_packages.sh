#!/usr/bin/env bash
# check_packages.sh <folder with the packages>: tries them as their users would. Ends with 1 when something is wrong.
#
# The .deb is installed on this system for a moment, which needs root.
set -eu -o pipefail

root=$(cd "$(dirname "$0")/../.." && pwd)
packages=$(cd "$1" && pwd)
consumer=$root/tests/package/consumer
work=$(mktemp -d)
trap 'end_wine; rm -rf "$work"' EXIT
failures=0

export WINEPREFIX=$work/wine WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml,winedbg.exe=d"
wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
wine_started=

end_wine() {
    [ -z "$wine_started" ] || bash "$root/scripts/wine_server.sh" stop "$wine" "$WINEPREFIX"
}

# expect <what> <expected> <actual>
expect() {
    if [ "$2" = "$3" ]; then
        echo "  passed: $1"
    else
        printf '  FAILED: %s\n    expected: %s\n    actual:   %s\n' "$1" "$2" "$3"
        failures=$((failures + 1))
    fi
}

# result_of <command...>: what it prints, without carriage returns, or its last words and its exit status.
result_of() {
    local output code=0
    output=$("$@" 2>&1) || code=$?
    output=${output//$'\r'/}
    if [ "$code" -eq 0 ]; then echo "$output"; else echo "exit status $code: ${output: -500}"; fi
}

# build_consumer <build folder> <option of CMake...>: prints "built" or the end of what went wrong.
build_consumer() {
    local folder=$1
    shift
    if cmake -S "$consumer" -B "$folder" -G Ninja "$@" >"$folder.log" 2>&1 && cmake --build "$folder" >>"$folder.log" 2>&1; then
        echo built
    else
        tail -n 20 "$folder.log"
    fi
}

# expect_contents <package> <file in it...>: reads the names of its files from stdin.
expect_contents() {
    local names package=$1 missing=
    names=$(cat)
    shift
    for name in "$@"; do
        grep -qxF -- "$name" <<<"$names" || missing="$missing $name"
    done
    expect "$package has its files" "" "$missing"
}

check_tgz() {
    echo "--- TGZ"
    local place=$work/tgz/tabrin-1.31-linux-x86_64
    mkdir "$work/tgz"
    tar -xzf "$packages/tabrin-1.31-linux-x86_64.tar.gz" -C "$work/tgz"
    local doc=$place/share/doc/tabrin
    (cd "$place" && find . -type f) | expect_contents TGZ ./include/tabrin.h ./lib/libtabrin64.so ./bin/tabrin \
        ./lib/cmake/tabrin/tabrinConfig.cmake ./lib/cmake/tabrin/tabrinConfigVersion.cmake ./lib/pkgconfig/tabrin.pc \
        ./share/man/man1/tabrin.1 ./share/doc/tabrin/README.md ./share/doc/tabrin/THIRD-PARTY-NOTICES.md \
        ./share/doc/tabrin/CHANGELOG.md ./share/doc/tabrin/docs/interface.md \
        ./share/doc/tabrin/examples/list_signals.c ./share/doc/tabrin/examples/build_database.cpp

    expect "CMake project" built "$(build_consumer "$work/tgz-consumer" "-DCMAKE_PREFIX_PATH=$place")"
    expect "its program in C" "C: 6 messages, library 1.31" \
        "$(result_of "$work/tgz-consumer/consumer_c" "$doc/examples/engine.dbc")"
    expect "its program in C++" "C++: EngineStatus" \
        "$(result_of "$work/tgz-consumer/consumer_cxx" "$doc/examples/engine.dbc")"

    sed 's/tabrin 1.30/tabrin 2.0/' "$consumer/CMakeLists.txt" >"$work/CMakeLists.txt"
    mkdir "$work/next"
    mv "$work/CMakeLists.txt" "$work/next/"
    local answer
    answer=$(result_of cmake -S "$work/next" -B "$work/next/build" "-DCMAKE_PREFIX_PATH=$place" | tr -s ' \n' ' ')
    expect "another major version is not taken" 'compatible with requested version "2.0"' \
        "$(grep -o 'compatible with requested version "2.0"' <<<"$answer" || echo "$answer")"

    local flags
    read -r -a flags < <(PKG_CONFIG_PATH=$place/lib/pkgconfig pkg-config --cflags --libs tabrin)
    expect "program built by pkg-config" "" \
        "$(result_of cc -std=c99 "$doc/examples/list_signals.c" -o "$work/list_signals" "${flags[@]}")"
    expect "what it lists" "EngineStatus, 8 bytes" \
        "$(LD_LIBRARY_PATH=$place/lib result_of "$work/list_signals" "$doc/examples/engine.dbc" | head -n 1)"

    expect "tabrin --version" "tabrin 1.31
library 1.31 ($place/lib/libtabrin64.so)" "$(result_of "$place/bin/tabrin" --version)"
    expect "tabrin show" "EngineStatus  0x100 (256), 8 bytes, from EngineControl, cyclic, every 10 ms" \
        "$(result_of "$place/bin/tabrin" show "$doc/examples/engine.dbc" 256 | head -n 1)"
}

check_zip() {
    echo "--- ZIP"
    local place=$work/zip/tabrin-1.31-windows-x86_64
    mkdir "$work/zip"
    unzip -q "$packages/tabrin-1.31-windows-x86_64.zip" -d "$work/zip"
    (cd "$place" && find . -type f) | expect_contents ZIP ./include/tabrin.h ./bin/tabrin64.dll ./bin/tabrin.exe \
        ./lib/libtabrin64.dll.a ./lib/tabrin64.lib ./lib/cmake/tabrin/tabrinConfig.cmake ./lib/pkgconfig/tabrin.pc \
        ./doc/README.md ./doc/THIRD-PARTY-NOTICES.md ./doc/CHANGELOG.md ./doc/docs/interface.md \
        ./examples/list_signals.c ./examples/build_database.cpp

    wine_started=yes
    bash "$root/scripts/wine_server.sh" start "$wine" "$WINEPREFIX"
    expect "CMake project" built "$(build_consumer "$work/zip-consumer" \
        -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_C_COMPILER=x86_64-w64-mingw32-gcc-posix \
        -DCMAKE_CXX_COMPILER=x86_64-w64-mingw32-g++-posix "-DCMAKE_PREFIX_PATH=$place")"
    cp "$place/bin/tabrin64.dll" "$work/zip-consumer/"
    expect "its program in C" "C: 6 messages, library 1.31" \
        "$(result_of "$wine" "$work/zip-consumer/consumer_c.exe" "$place/examples/engine.dbc")"
    expect "its program in C++" "C++: EngineStatus" \
        "$(result_of "$wine" "$work/zip-consumer/consumer_cxx.exe" "$place/examples/engine.dbc")"

    # As Visual C++ would: its calling conventions, its object format, its kind of import library.
    expect "object for Visual C++" "" "$(result_of clang-14 --target=x86_64-pc-windows-msvc -ffreestanding -O1 \
        -I"$place/include" -c "$consumer/visual.c" -o "$work/visual.obj")"
    expect "program linked with tabrin64.lib" "" "$(result_of lld-link-14 /entry:Start /subsystem:console /nodefaultlib \
        "/out:$work/zip-consumer/visual.exe" "$work/visual.obj" "$place/lib/tabrin64.lib")"
    expect "what it returns" "exit status 131: " "$(result_of "$wine" "$work/zip-consumer/visual.exe")"

    expect "tabrin --version" "tabrin 1.31" "$(result_of "$wine" "$place/bin/tabrin.exe" --version | head -n 1)"
    expect "tabrin show" "EngineStatus  0x100 (256), 8 bytes, from EngineControl, cyclic, every 10 ms" \
        "$(result_of "$wine" "$place/bin/tabrin.exe" show "$place/examples/engine.dbc" 256 | head -n 1)"
}

check_deb() {
    echo "--- .deb"
    local deb=$packages/tabrin_1.31_amd64.deb
    if [ "$(id -u)" -ne 0 ]; then
        echo "  skipped: installing the .deb needs root"
        return
    fi
    if dpkg-query -W tabrin >/dev/null 2>&1; then
        echo "  skipped: a package tabrin is installed on this system, which is left alone"
        return
    fi
    expect "dpkg -i" 0 "$(dpkg -i "$deb" >"$work/dpkg.log" 2>&1; echo $?)"
    expect "nothing is missing or changed" "" "$(dpkg --verify tabrin)"
    expect "tabrin --version" "tabrin 1.31
library 1.31 (/usr/lib/libtabrin64.so)" "$(result_of /usr/bin/tabrin --version)"
    expect "CMake project" built "$(build_consumer "$work/deb-consumer")"
    expect "its program in C" "C: 6 messages, library 1.31" \
        "$(result_of "$work/deb-consumer/consumer_c" /usr/share/doc/tabrin/examples/engine.dbc)"
    dpkg -L tabrin | while read -r path; do [ -d "$path" ] || echo "$path"; done >"$work/deb-files"
    expect "dpkg --purge" 0 "$(dpkg --purge tabrin >>"$work/dpkg.log" 2>&1; echo $?)"
    expect "nothing stays behind" "" "$(xargs -r ls -d <"$work/deb-files" 2>/dev/null; ls -d /usr/share/doc/tabrin 2>/dev/null)"
    expect "the loader has forgotten it" 0 "$(ldconfig -p | grep -c tabrin64 || true)"
}

# The sources as they are, in a longer path, with other settings of the person who builds.
check_reproducible() {
    echo "--- once more in another folder"
    local other="$work/another folder/of sources"
    local time=${SOURCE_DATE_EPOCH:-$(git -c safe.directory="$root" -C "$root" log -1 --format=%ct)}
    mkdir -p "$other"
    (cd "$root" && git -c safe.directory="$root" ls-files -z | tar --null -T - -c) | tar -x -C "$other"
    (umask 077 && cd "$other" && SOURCE_DATE_EPOCH=$time LANG=C TZ=Pacific/Auckland bash scripts/package.sh) >"$work/again.log" 2>&1 ||
        tail -n 30 "$work/again.log"
    local name
    for name in "$packages"/*; do
        name=${name##*/}
        expect "$name has the same bytes" "$(sha256sum <"$packages/$name")" \
            "$(sha256sum <"$other/build/packages/$name" 2>&1)"
    done
}

check_tgz
check_zip
check_deb
check_reproducible

echo "$failures failed"
[ "$failures" -eq 0 ]
