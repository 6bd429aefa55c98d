#!/usr/bin/env bash
# Builds the fuzz targets with libFuzzer, AddressSanitizer and UndefinedBehaviorSanitizer and lets each of them run from
# the committed seeds.
#   scripts/fuzz.sh [seconds for each target] [target...]
# Without targets all run, ORVEX_FUZZ_JOBS (default 1) at once. The corpus grows in build/fuzz/corpus; what breaks an
# invariant, or the memory, goes to build/fuzz/findings, and with it the script fails. Prints a row for each target, and
# writes it as a line of JSON to build/fuzz/result.json. What is found and mended belongs into tests/fuzz/findings/, which
# every test run replays.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
[[ $seconds =~ ^[1-9][0-9]*$ ]] || { echo "usage: ${0##*/} [seconds for each target] [target...]" >&2 && exit 2; }
shift $(($# > 0 ? 1 : 0))
jobs=${ORVEX_FUZZ_JOBS:-1}
readonly mostFindings=5 # of a target, before it is given up

scripts/setup-packages.sh clang libclang-rt-dev
mkdir -p build/fuzz
{ cmake --preset fuzz && cmake --build --preset fuzz; } >build/fuzz/build.log 2>&1 ||
    { tail -n 40 build/fuzz/build.log && exit 1; }

all=()
for source in tests/fuzz/fuzz_*.cpp; do
    all+=("$(basename "$source" .cpp | sed 's/^fuzz_//')")
done
[ $# -gt 0 ] || set -- "${all[@]}"
for target in "$@"; do
    [ -x "build/fuzz/tests/fuzz/fuzz_$target" ] || { echo "no target \"$target\"; there are: ${all[*]}" >&2 && exit 2; }
done

# In memory, where there is a place for it: most targets write a file for every input.
scratch=$(mktemp -d "$([ -w /dev/shm ] && echo /dev/shm || echo "${TMPDIR:-/tmp}")/orvexfuzz.XXXXXX")
trap 'rm -rf -- "$scratch"' EXIT
export ORVEX_FUZZ_SCRATCH=$scratch LC_ALL=C.UTF-8 TZ=Asia/Shanghai
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1} UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}

findingsOf()
{
    find "build/fuzz/findings/$1" -type f | wc -l
}

# fuzz TARGET: a finding ends the fuzzer, which is started again for the rest of the time.
fuzz()
{
    local target=$1 corpus=build/fuzz/corpus/$1 log=build/fuzz/logs/$1.log
    local begin=$SECONDS executions=0 coverage=0 features=0 run left before options=()
    mkdir -p "$corpus" "build/fuzz/findings/$target" build/fuzz/logs build/fuzz/results
    cp tests/fuzz/seeds/"$target"/* "$corpus"
    [ ! -d "tests/fuzz/findings/$target" ] || cp tests/fuzz/findings/"$target"/* "$corpus"
    case $target in
        document | plain | verification) options+=(-dict=tests/fuzz/document.dict) ;;
        language | package) options+=(-dict="tests/fuzz/$target.dict") ;;
    esac
    before=$(findingsOf "$target")
    : >"$log"
    while left=$((seconds - (SECONDS - begin))) && [ "$left" -gt 0 ] &&
        [ $(($(findingsOf "$target") - before)) -lt "$mostFindings" ]; do
        run=$(nice -n 19 "build/fuzz/tests/fuzz/fuzz_$target" -max_total_time="$left" -max_len=65536 -timeout=120 -report_slow_units=60 \
            -rss_limit_mb=4096 -print_final_stats=1 -artifact_prefix="build/fuzz/findings/$target/" "${options[@]}" \
            "$corpus" 2>&1 | tee -a "$log" | sed -nE \
            -e 's/^stat::number_of_executed_units: *([0-9]+)$/executions \1/p' \
            -e 's/^#.* cov: ([0-9]+) ft: ([0-9]+) .*/\1 \2/p' | awk '
                $1 == "executions" { executions = $2; next } { coverage = $1; features = $2 }
                END { print executions + 0, coverage + 0, features + 0 }')
        read -r run coverage features <<<"$run"
        executions=$((executions + run))
    done
    local took=$((SECONDS - begin)) findings
    [ "$took" -gt 0 ] || took=1
    findings=$(($(findingsOf "$target") - before))
    printf '%-14s %12d %8d %8d %9d %8d %9d %8d\n' "$target" "$executions" $((executions / took)) "$coverage" \
        "$features" "$(find "$corpus" -type f | wc -l)" "$findings" "$took"
    printf '{"part":"fuzz","what":"%s","executions":%d,"perSecond":%d,"coverage":%d,"features":%d,"corpus":%d,' \
        "$target" "$executions" $((executions / took)) "$coverage" "$features" "$(find "$corpus" -type f | wc -l)" \
        >"build/fuzz/results/$target.json"
    printf '"findings":%d,"seconds":%d}\n' "$findings" "$took" >>"build/fuzz/results/$target.json"
    [ "$executions" -gt 0 ] || { tail -n 20 "$log" && return 1; }
    [ "$findings" -eq 0 ]
}

printf '%-14s %12s %8s %8s %9s %8s %9s %8s\n' target executions each/s edges features corpus findings seconds
failed=0
for target in "$@"; do
    while [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; do
        wait -n || failed=1
    done
    fuzz "$target" &
done
while [ "$(jobs -p | wc -l)" -gt 0 ]; do
    wait -n || failed=1
done
cat build/fuzz/results/*.json >build/fuzz/result.json
[ "$failed" -eq 0 ] || { echo "Findings stand below build/fuzz/findings, the reports below build/fuzz/logs." && exit 1; }
