#!/usr/bin/env bash
# install-packages.sh PACKAGE...: installs the Debian packages that are missing, as root or with sudo. Where neither
# is to be had it prints the command and ends with 1.
set -euo pipefail
missing=()
for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

if [ "$(id -u)" = 0 ]; then
    as_root=()
elif sudo -n true 2>/dev/null || { [ -t 0 ] && command -v sudo >/dev/null; }; then
    as_root=(sudo)
else
    echo "Packages are missing. As root: apt-get update && apt-get install -y --no-install-recommends ${missing[*]}" >&2
    exit 1
fi
echo "Installing ${missing[*]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { "${as_root[@]}" apt-get update &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"; } \
    </dev/null >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    echo "Cannot install ${missing[*]}" >&2
    exit 1
fi
