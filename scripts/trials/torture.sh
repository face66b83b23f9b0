#!/bin/bash
# The long part of the reliability tests: scripts/trials/torture.sh [faults|walk|fuzz ...]; all of them without an argument.
# FUZZ_SECONDS is the time of each fuzz target (20 minutes unless told). Findings stay in build/findings.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
JOBS="${JOBS:-$(nproc)}" FUZZ_SECONDS="${FUZZ_SECONDS:-1200}"
export KD_TORTURE=1 QT_QPA_PLATFORM=offscreen UBSAN_OPTIONS=print_stacktrace=1
[ $# -gt 0 ] || set -- faults walk fuzz

build() { # preset target
    cmake --preset "$1"
    cmake --build "build/$1" --parallel "$JOBS" --target "$2"
}

faults() {
    build asan test_faults
    build/asan/tests/test_faults --gtest_brief=1
    # Memory says nothing under the sanitizers: the sizes once more without them.
    build core test_faults
    build/core/tests/test_faults --gtest_brief=1 --gtest_filter='SizeTest.*'
    build dev test_qt
    build/dev/tests/qt/test_qt --gtest_brief=1 --gtest_filter='SizeTest.*'
}

walk() {
    build asan test_walk
    build/asan/tests/walk/test_walk
}

fuzz() {
    build fuzz tests/fuzz/all
    mkdir -p build/findings
    local program name
    for program in build/fuzz/tests/fuzz/fuzz_*; do
        [ -x "$program" ] || continue
        [ -f "$program" ] || continue
        name="${program##*fuzz_}"
        mkdir -p "build/corpus/$name"
        echo "==> $name, $FUZZ_SECONDS seconds"
        "$program" -max_total_time="$FUZZ_SECONDS" -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 \
            -artifact_prefix="build/findings/$name-" "build/corpus/$name" "tests/fuzz/corpus/$name" 2>&1 |
            tee "build/findings/$name.log" | tail -12
    done
}

for part in "$@"; do
    echo "==> $part"
    case "$part" in
        faults | walk | fuzz) "$part" ;;
        *) echo "there is no part $part" >&2; exit 2 ;;
    esac
done
