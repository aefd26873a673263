#!/usr/bin/env bash
# test.sh [STEP...]: installs what is missing, then builds and tests. Without STEP it takes all of them:
# format release headers asan fuzz linux32 win64 win32 tsan. The presets debug and coverage are steps as well.
set -uo pipefail
cd "$(dirname "$0")" || exit
if [ "${1-}" = -h ] || [ "${1-}" = --help ]; then
    sed -n '2,3s/^# //p' "$0"
    exit 0
fi
steps=("$@")
[ ${#steps[@]} -gt 0 ] || steps=(format release headers asan fuzz linux32 win64 win32 tsan)
jobs=$(nproc)

cmake/install-packages.sh cmake ninja-build g++ ccache googletest libbenchmark-dev libassimp-dev libcli11-dev \
    clang-format g++-multilib g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix wine64 || exit 1
export CTEST_OUTPUT_ON_FAILURE=1

configured() # PRESET
{
    cmake --preset "$1" >"build/$1.log" 2>&1 || { cat "build/$1.log"; return 1; }
    grep -E 'left out|built and not run' "build/$1.log"
    return 0
}

built() # PRESET [TARGET]
{
    cmake --build --preset "$1" ${2:+--target "$2"} -- -j "$jobs" >"build/$1.log" 2>&1 && return
    grep -E -A 12 'error|undefined reference|FAILED' "build/$1.log" | head -n 200
    return 1
}

# Adds up what ctest's closing lines of a preset tell.
passed=0 failed=0
count_cases() # PRESET
{
    local all bad
    read -r bad all < <(sed -nE 's/^[0-9]+% tests passed, ([0-9]+) tests failed out of ([0-9]+).*/\1 \2/p' "build/$1.tests")
    passed=$((passed + ${all:-0} - ${bad:-0})) failed=$((failed + ${bad:-0}))
}

tested() # PRESET
{
    configured "$1" && built "$1" || return 1
    [ "$1" != win32 ] || ! grep -q 'built and not run' <<<"$(cmake --preset win32 2>&1)" || return 0
    local result=0
    ctest --preset "$1" --no-tests=error -j "$jobs" 2>&1 | tee "build/$1.tests" |
        grep -vE '^ *Start +[0-9]+:|^ *[0-9]+/[0-9]+ Test .* Passed ' || result=1
    count_cases "$1"
    return $result
}

# Seconds for each of the eight targets: a minute in all.
fuzzed()
{
    if cmake/install-packages.sh clang-14 libclang-rt-14-dev >build/fuzz.log 2>&1; then
        ./fuzz.sh 8
    else
        echo "fuzz: left out, clang 14 is not to be had here"
    fi
}

step() # NAME
{
    case $1 in
    format)
        git ls-files -z '*.h' '*.cpp' | xargs -0 clang-format --dry-run --Werror
        ;;
    headers)
        configured release && built release tamber_headers_alone
        ;;
    fuzz)
        fuzzed
        ;;
    debug | release | asan | linux32 | win64 | win32 | tsan | coverage)
        tested "$1"
        ;;
    *)
        echo "test.sh: no step is named $1" >&2
        return 1
        ;;
    esac
}

mkdir -p build
broken=()
for name in "${steps[@]}"; do
    echo "== $name"
    began=$SECONDS
    if step "$name"; then result=ok; else result=FAILED broken+=("$name"); fi
    echo "== $name: $result after $((SECONDS - began)) s"
done

echo "Whole run: $SECONDS s"
[ ${#broken[@]} -eq 0 ] || echo "Steps that failed: ${broken[*]}"
[ $((passed + failed)) -eq 0 ] || echo "tests: $passed passed, $failed failed"
[ ${#broken[@]} -eq 0 ] && [ "$failed" -eq 0 ]
