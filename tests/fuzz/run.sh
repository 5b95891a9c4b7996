#!/bin/sh
# Builds the fuzz targets and runs them, two at a time.
set -eu

if [ "${1-}" = --help ]; then
    echo 'usage: run.sh [SECONDS]     run each fuzz target for so long (300)'
    exit 0
fi
seconds=${1-300}
cd "$(dirname "$0")/../.."
build=$PWD/build/fuzz
targets='fuzz_commandline fuzz_entry fuzz_hints fuzz_launch fuzz_menu fuzz_notify fuzz_picture fuzz_svg
fuzz_tray'

cmake --preset fuzz
cmake --build --preset fuzz

fuzz() {
    mkdir -p "$build/found/$1"
    "$build/tests/fuzz/$1" -max_total_time="$seconds" -timeout=20 -detect_leaks=0 -print_final_stats=1 \
        -artifact_prefix="$build/found/$1-" \
        "$build/found/$1" "tests/fuzz/corpus/$1" >"$build/found/$1.log" 2>&1 || true
}
report() {
    # The last figures of coverage stand in the last progress line.
    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$build/found/$1.log")
    coverage=$(sed -n 's/.* cov: \([0-9]*\) ft: .*/\1/p' "$build/found/$1.log" | tail -n 1)
    findings=$(find "$build/found" -name "$1-*" | wc -l)
    printf '%-18s %10s executions %6s edges %3s findings\n' \
        "$1" "${executions:-?}" "${coverage:-?}" "$findings"
    [ "$findings" -eq 0 ] && [ -n "$executions" ]
}

mkdir -p "$build/found"
find "$build/found" -maxdepth 1 -type f -delete
started=0
for target in $targets; do
    fuzz "$target" &
    started=$((started + 1))
    [ $((started % 2)) -ne 0 ] || wait
done
wait

failed=0
for target in $targets; do
    report "$target" || failed=1
done
[ "$failed" -eq 0 ] || echo "logs and inputs: $build/found"
exit "$failed"
