#!/usr/bin/env bash
# wine_server.sh start|stop <wine64> <prefix>
#
# Starts or ends the Wine server of a prefix, which `start` creates where it is missing.
set -eu

wine=$2
mkdir -p "$3"
export WINEPREFIX=$3
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
export HOME="${HOME:-/tmp}"

# Debian keeps the server beside the loader and out of the path.
server=$(PATH="$(dirname "$wine"):$PATH" command -v wineserver)

# Wine's services outlive this script. They must not keep its output open: whoever reads it would wait for its end.
case $1 in
start)
    # Ends by itself 300 s after the last program, should nobody come to stop it.
    "$server" -p300 </dev/null >/dev/null 2>&1
    "$wine" wineboot </dev/null >/dev/null 2>&1
    ;;
stop)
    "$server" -k </dev/null >/dev/null 2>&1 || true
    "$server" -w </dev/null >/dev/null 2>&1
    ;;
*)
    echo "usage: $0 start|stop <wine64> <prefix>" >&2
    exit 2
    ;;
esac
