#!/bin/sh
# run-in-wine.sh WINE PREFIX PROGRAM [ARGUMENT...]: runs a Windows program with a Wine folder of the build's own.
set -eu
wine=$1
WINEPREFIX=$2
shift 2
WINEDEBUG=${WINEDEBUG:--all}
WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
unset DISPLAY
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES
mkdir -p "$WINEPREFIX"
# Wine's server stays between programs: one that is about to end would turn the next program away. Whoever finds none
# starts it and lets Windows boot before anybody else comes; that makes the folder, too, where there is none. Neither
# the server nor what boots keeps the lock or the caller's output.
server=$(dirname "$wine")/wineserver64
[ -x "$server" ] || server=wineserver
(
    flock 9
    if "$server" -p30 </dev/null >/dev/null 2>&1 9>&-; then
        "$wine" wineboot.exe --init </dev/null >/dev/null 2>&1 9>&- || true
    fi
) 9>"$WINEPREFIX/lock"
exec "$wine" "$@"
