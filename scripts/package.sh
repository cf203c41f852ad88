#!/usr/bin/env bash
# package.sh [--check]: builds the packages into build/packages: a ZIP for Windows, a TGZ and a .deb for Linux.
#
# The same commit gives the same bytes, in whatever folder, at whatever time and by whomever it is built: files carry the
# time of the commit, or of SOURCE_DATE_EPOCH.
#
#   --check  tries the packages too: another project is built with them on both systems, the .deb is installed and removed,
#            and the packages are built once more in another folder and compared. Takes some minutes.
#
# Needs Debian 12, where it installs what is missing.
set -eu -o pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

check=
case $* in
'') ;;
--check) check=yes ;;
*)
    echo "usage: $0 [--check]" >&2
    exit 2
    ;;
esac

packages=(g++ cmake ninja-build libutfcpp-dev libcli11-dev nlohmann-json3-dev g++-mingw-w64-x86-64-posix llvm-14
    dpkg-dev file zip)
[ ! -e .git ] || packages+=(git) # the time of the commit
[ -z "$check" ] || packages+=(wine64 python3 pkg-config make unzip clang-14 lld-14)
bash scripts/install_packages.sh "${packages[@]}"

# What could find its way into the files: the time, the time zone, the language, the rights of new files.
if [ -z "${SOURCE_DATE_EPOCH:-}" ]; then
    SOURCE_DATE_EPOCH=$(git -c safe.directory="$root" log -1 --format=%ct) || {
        echo "This is no Git checkout: say in SOURCE_DATE_EPOCH which time the files are to carry." >&2
        exit 1
    }
fi
export SOURCE_DATE_EPOCH
export TZ=UTC LC_ALL=C.UTF-8
umask 022

build_packages() {
    local preset=$1
    cmake --preset "$preset"
    cmake --build --preset "$preset"
    rm -rf "build/$preset/packages"
    cpack --config "build/$preset/CPackConfig.cmake" -B "$root/build/$preset/packages"
}

mkdir -p build
rm -rf build/packages
mkdir build/packages
for preset in linux-package windows-package; do
    log=build/$preset.log
    if ! build_packages "$preset" >"$log" 2>&1; then
        cat "$log" >&2
        exit 1
    fi
    find "build/$preset/packages" -maxdepth 1 -type f -exec cp {} build/packages/ \;
done

(cd build/packages && sha256sum ./*)

if [ -n "$check" ]; then
    bash tests/package/check_packages.sh build/packages
fi
