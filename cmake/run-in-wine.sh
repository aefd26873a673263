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
# The first program to run makes the folder; a second one at that moment would find it half made.
if [ ! -f "$WINEPREFIX/made" ]; then
    (
        flock 9
        [ -f "$WINEPREFIX/made" ] || { "$wine" wineboot.exe --init >/dev/null 2>&1 && touch "$WINEPREFIX/made"; }
    ) 9>"$WINEPREFIX/lock"
fi
# Its server stays between programs: one that is about to end would turn the next program away.
server=$(dirname "$wine")/wineserver64
[ -x "$server" ] || server=wineserver
"$server" -p30 2>/dev/null || true
exec "$wine" "$@"
