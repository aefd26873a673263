#!/usr/bin/env bash
# run.sh [MODEL [OPTION...]]: installs what is missing, builds, and runs a model through the frame. Without MODEL it
# takes the sample town. Options are those of `tamber run`.
set -euo pipefail
cd "$(dirname "$0")"

model=assets/town.glb
case ${1-} in
-h | --help)
    sed -n '2,3s/^# //p' "$0"
    exit 0
    ;;
"" | -*) ;;
*)
    model=$1
    shift
    # A relative path is meant from where the caller stands.
    case $model in /*) ;; *) model=$OLDPWD/$model ;; esac
    ;;
esac

cmake/install-packages.sh cmake ninja-build g++ ccache libassimp-dev libcli11-dev
log=build/run.log
mkdir -p build
if ! { cmake --preset release && cmake --build --preset release --target tamber; } >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    echo "The build failed; its whole output is in $log" >&2
    exit 1
fi
exec build/release/bin/tamber run "$model" "$@"
