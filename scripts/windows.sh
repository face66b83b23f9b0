#!/bin/bash
# Builds the program for Windows and packs it: an installer and an archive in build/packages, and beside them the sources
# of Qt, which its licence asks for. The first time, Qt for Windows is built too (scripts/windows_qt.sh). With names of
# targets it builds these instead, and packs nothing.
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
# Qt's source as it was fetched, and all that says how it was built. The packages are compressed already.
sources=$(scripts/windows_qt.sh --sources | tail -1)
packed=$(sed -n 's/^set(CPACK_PACKAGE_FILE_NAME "\(.*\)")$/\1/p' build/windows/CPackConfig.cmake)
packed=$PWD/build/packages/${packed%-x64}-sources.zip
content=build/windows/sources
rm -rf "$content" "$packed" && mkdir -p "$content/scripts" "$content/cmake"
ln "$sources"/* "$content/" 2>/dev/null || cp "$sources"/* "$content/"
cp scripts/windows_qt.sh "$content/scripts/"
cp cmake/mingw64.cmake "$content/cmake/"
cp build/windows/NOTICES.txt "$content/"
(cd "$content" && cmake -E tar cf "$packed" --format=zip .)
rm -rf "$content"
ls -l build/packages/*windows*
