#!/usr/bin/env bash
# fuzz.sh SECONDS [TARGET...]: builds the fuzz targets by clang, replays the test files through them and fuzzes each
# for SECONDS, as many at a time as there are processors (or as FUZZ_JOBS says). Without TARGET it takes all.
# What is found lies in out/fuzz/<target>-*, what has been learnt in out/fuzz/corpus. Ends with 0 when nothing is found.
set -euo pipefail
cd "$(dirname "$0")"
if ! [[ ${1-} =~ ^[0-9]+$ ]]; then
    sed -n '2,4s/^# //p' "$0"
    case ${1-} in -h | --help) exit 0 ;; esac
    exit 1
fi
seconds=$1
shift
cmake/install-packages.sh cmake ninja-build ccache clang-14 libclang-rt-14-dev
root=$PWD
out=$root/out/fuzz
mkdir -p build "$out"
if ! { cmake --preset fuzz && cmake --build --preset fuzz -- -j "$(nproc)"; } >build/fuzz.log 2>&1; then
    grep -E -A 12 'error|undefined reference|FAILED' build/fuzz.log | head -n 100 >&2
    exit 1
fi
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
    for program in build/fuzz/targets/*_fuzz; do
        name=${program##*/}
        targets+=("${name%_fuzz}")
    done
fi

# Inputs and saved files are written here, in memory where there is such a folder.
TAMBER_FUZZ_FOLDER=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo "$out")" tamber-fuzz.XXXXXX)
trap 'rm -rf "$TAMBER_FUZZ_FOLDER"' EXIT
export TAMBER_FUZZ_FOLDER
export TAMBER_SETTINGS=$TAMBER_FUZZ_FOLDER/settings.ini
export ASAN_OPTIONS=allocator_may_return_null=1:detect_stack_use_after_return=1:strict_string_checks=1
export UBSAN_OPTIONS=print_stacktrace=1

# Files that tests read, for the targets that read the same.
seeds_of() # TARGET
{
    case $1 in
    open | scene | check | rle) find tests/data/good tests/data/hostile -name '*.tb' 2>/dev/null || true ;;
    text)
        build/fuzz/targets/make_texts build/fuzz/texts tests/data/good/*.tb
        find build/fuzz/texts tests/data/good tests/data/hostile -name '*.t*' 2>/dev/null || true
        ;;
    esac
}

# How long inputs get: long enough for every turn that the target can take, and no longer, because that takes time.
longest() # TARGET
{
    case $1 in
    graph) echo 512 ;;
    entry | plugins) echo 1024 ;;
    *) echo 8192 ;;
    esac
}

# Every seed is replayed whole; of those that fuzzing begins with, the fuzzer cuts what is too long. Its entropic
# schedule would take half of the time for its sums.
fuzz() # TARGET
{
    local target=$1 program=$root/build/fuzz/targets/$1_fuzz corpus=$out/corpus/$1 log=$out/$1.log result=0
    local options=(-timeout=5 -rss_limit_mb=1024 -artifact_prefix="$out/$1-" -print_final_stats=1)
    local seeds=() before after
    mkdir -p "$corpus"
    mapfile -t seeds < <(seeds_of "$target")
    before=$(find "$out" -maxdepth 1 -name "$target-*" | wc -l)
    : >"$log"
    [ ${#seeds[@]} -eq 0 ] || "$program" "${options[@]}" "${seeds[@]/#/$root/}" >>"$log" 2>&1 || result=1
    if [ $result -eq 0 ] && [ "$seconds" -gt 0 ]; then
        [ ${#seeds[@]} -eq 0 ] || cp -u "${seeds[@]}" "$corpus"
        options+=(-max_len="$(longest "$target")" -len_control=0 -entropic=0 -max_total_time="$seconds")
        options+=(-dict="$root/fuzz/$([ "$target" = text ] && echo text || echo native).dict")
        "$program" "${options[@]}" "$corpus" >>"$log" 2>&1 || result=1
    fi
    after=$(find "$out" -maxdepth 1 -name "$target-*" | wc -l)
    awk -v target="$target" -v findings=$((after - before)) -v seeds=${#seeds[@]} -v result=$result '
        /^stat::number_of_executed_units/ { runs = $2 }
        /^stat::average_exec_per_sec/ { rate = $2 }
        match($0, /cov: [0-9]+/) { coverage = substr($0, RSTART + 5, RLENGTH - 5) }
        END {
            printf "%-9s %6d files replayed %10d runs %7d/s %6d edges  %s\n", target, seeds, runs, rate, coverage,
                result ? (findings > 0 ? findings : 1) " FOUND" : "nothing found"
        }' "$log"
    [ $result -eq 0 ] || grep -E '^finding:|^SUMMARY|runtime error|Test unit written' "$log" || tail -n 5 "$log"
    return $result
}

jobs=${FUZZ_JOBS:-$(nproc)}
broken=0
for target in "${targets[@]}"; do
    [ -x "build/fuzz/targets/${target}_fuzz" ] || { echo "fuzz.sh: no target is named $target" >&2; exit 1; }
done
running=0
for target in "${targets[@]}"; do
    if [ $running -ge "$jobs" ]; then
        wait -n || broken=1
        running=$((running - 1))
    fi
    fuzz "$target" &
    running=$((running + 1))
done
while [ $running -gt 0 ]; do
    wait -n || broken=1
    running=$((running - 1))
done
exit $broken
