#!/bin/bash
# Whether the window lives while the program loads, filters and commits 32,400 variables, on a virtual display; each
# flush of the disk takes 20 ms. LONGEST is the longest silence in seconds.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/display.sh
scripts/setup.sh build display liveness
cmake --preset release
cmake --build build/release --parallel "${JOBS:-$(nproc)}" --target kd_bench
scratch=$(mktemp -d)
mkdir "$scratch/run"
bench/make_corpus.py "$scratch/applications" >/dev/null
start_virtual_display
status=0
QT_QPA_PLATFORM=xcb LD_PRELOAD=$PWD/build/release/bench/libkd_slow.so KD_SLOW_FLUSH_MS=20 \
    scripts/trials/liveness.py "${LONGEST:-0.25}" build/release/bin/kd_bench --role alive "$scratch/applications" \
    "$scratch/run" || status=$?
rm -rf "$scratch"
exit $status
