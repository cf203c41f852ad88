#!/usr/bin/env bash
# install_packages.sh <package...>: installs those Debian packages that are missing; quick when none is.
set -eu

if ! command -v dpkg-query >/dev/null; then
    echo "This is no Debian system. Expected to be here already: $*" >&2
    exit 0
fi

missing=()
for package in "$@"; do
    if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
        missing+=("$package")
    fi
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y)

echo "installing: ${missing[*]}"
"${apt[@]}" update </dev/null
"${apt[@]}" install --no-install-recommends "${missing[@]}" </dev/null
