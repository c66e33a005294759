#!/usr/bin/env bash
# Builds the libFuzzer harnesses of fuzz/ with clang (one tree, build-fuzz) and runs each one
# for DURATION seconds (default 30) on a copy of its seed corpus, with its dictionary.
# Findings (crashing inputs) go to out/fuzz/TARGET/; the script fails when any target found one.
# Usage: scripts/fuzz.sh [DURATION] [TARGET...]   e.g. scripts/fuzz.sh 600 design_file
set -euo pipefail
cd "$(dirname "$0")/.."
DURATION="${1:-30}"
shift || true
BUILD_DIR="${FUZZ_BUILD_DIR:-build-fuzz}"
WORK_DIR="${FUZZ_WORK_DIR:-out/fuzz}"
ALL_TARGETS=(variant_number outlet_address catch_can_reading statement_filling design_file catalogue_csv readings_file)
TARGETS=("$@")
if [ ${#TARGETS[@]} -eq 0 ]; then TARGETS=("${ALL_TARGETS[@]}"); fi

CC=clang CXX=clang++ cmake -S . -B "$BUILD_DIR" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCAUDALIS_FUZZ=ON \
    -DCAUDALIS_WERROR=ON -DCAUDALIS_BUILD_TESTS=OFF -DCAUDALIS_BUILD_BENCHMARKS=OFF
cmake --build "$BUILD_DIR" -j2 --target "${TARGETS[@]/#/fuzz_}"

failed=()
for target in "${TARGETS[@]}"; do
    work="$WORK_DIR/$target"
    mkdir -p "$work/corpus"
    echo "== fuzz_$target, ${DURATION} s"
    if "$BUILD_DIR/fuzz/fuzz_$target" -max_total_time="$DURATION" -timeout=10 -rss_limit_mb=2048 \
        -dict="fuzz/dict/$target.dict" -artifact_prefix="$work/" -print_final_stats=1 \
        "$work/corpus" "fuzz/corpus/$target" >"$work/log" 2>&1; then
        grep -E "stat::number_of_executed_units|Done [0-9]+ runs" "$work/log" || true
    else
        failed+=("$target")
        tail -n 40 "$work/log"
    fi
done
if [ ${#failed[@]} -gt 0 ]; then
    echo "fuzzing found crashes in: ${failed[*]} (inputs in $WORK_DIR/<target>/)" >&2
    exit 1
fi
