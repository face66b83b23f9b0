#!/bin/bash
# Builds the program and runs it on a scratch copy of the samples, with a settings folder of its own: as on a
# first start, each time anew, and nothing of the user's is touched. Without a display it is a guided run on a virtual
# one: simulated mouse and keyboard do the main job, and the exit code is 0 only if the files on disk say so.
set -u
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
source scripts/display.sh
source scripts/scratch.sh
build=$PWD/build/release
scratch=$PWD/build/run

jobs=(build)
targets=(KDLimitDesk)
have_display || { jobs+=(display) && targets+=(guided_run); }
scripts/setup.sh "${jobs[@]}" || exit 1
cmake --preset release &&
    cmake --build build/release --parallel "${JOBS:-$(nproc)}" --target "${targets[@]}" || exit 1
make_scratch "$scratch" "$build" || { echo "run: could not lay out $scratch" >&2; exit 1; }
export XDG_CONFIG_HOME=$scratch/config

if have_display; then
    echo "run: the samples are copies in build/run/samples; nothing of yours is touched"
    exec "$scratch/bin/KDLimitDesk"
fi

echo "run: no display, so a guided run on a virtual one; pictures go to build/run/pictures"
start_virtual_display || exit 1
QT_QPA_PLATFORM=xcb "$build/bin/guided_run" --samples "$scratch/samples" --pictures "$scratch/pictures" \
    --places
