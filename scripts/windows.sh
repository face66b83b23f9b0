#!/bin/bash
# Builds the program for Windows and packs it: an installer and an archive in build/packages. The first time, Qt for
# Windows is built too (scripts/windows_qt.sh). With names of targets it builds these instead, and packs nothing.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh build windows-core windows
qt=$(scripts/windows_qt.sh | tail -1)
export CCACHE_SLOPPINESS=pch_defines,time_macros  # or it leaves alone what has a precompiled header
cmake --preset windows -DKD_QT_MINGW="$qt"
if [ $# -gt 0 ]; then
    cmake --build build/windows --parallel "${JOBS:-$(nproc)}" --target "$@"
    exit
fi
cmake --build build/windows --parallel "${JOBS:-$(nproc)}" --target KDLimitDesk
cpack --config build/windows/CPackConfig.cmake
ls -l build/packages/*windows*
