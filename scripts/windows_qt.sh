#!/bin/bash
# Builds Qt for Windows from Debian's own source package, once: it is kept in the user's cache, under a name made of
# its version and of how it was built. The last line printed is its folder; --where prints that and builds nothing.
# Takes a quarter to half an hour on two cores. JOBS says how many to use. The source package is kept too, as who hands
# on the libraries hands on their source; --sources prints its folder, and fetches it where it is missing.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
toolchain=$PWD/cmake/mingw64.cmake
cache=${XDG_CACHE_HOME:-$HOME/.cache}/kd-limitdesk
jobs=${JOBS:-$(nproc)}

# Qt for Windows is made with the tools (moc, rcc, uic) of the Qt of this machine, so both are of one version.
version=$(dpkg-query -W -f '${source:Version}' qt6-base-dev-tools)
# Only what the program needs. Direct2D and DirectWrite are on or off together: the one's sources need the other's.
# The tablet's headers and the database of file types are not in Debian's source package.
options=(
    -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=ON
    -DCMAKE_SHARED_LINKER_FLAGS=-s -DCMAKE_MODULE_LINKER_FLAGS=-s
    -DQT_QMAKE_TARGET_MKSPEC=win32-g++ -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF -DFEATURE_pkg_config=OFF
    -DFEATURE_dbus=OFF -DFEATURE_network=OFF -DFEATURE_sql=OFF -DFEATURE_xml=OFF -DFEATURE_concurrent=OFF
    -DFEATURE_printsupport=OFF -DFEATURE_testlib=ON -DINPUT_opengl=no -DFEATURE_vulkan=OFF
    -DFEATURE_icu=OFF -DFEATURE_glib=OFF -DFEATURE_zstd=OFF -DFEATURE_jpeg=OFF
    -DFEATURE_mimetype_database=OFF -DFEATURE_tabletevent=OFF
    -DFEATURE_system_zlib=OFF -DFEATURE_system_png=OFF -DFEATURE_system_pcre2=OFF
    -DFEATURE_system_freetype=OFF -DFEATURE_system_harfbuzz=OFF -DFEATURE_system_doubleconversion=OFF
)
recipe=$({ echo "$version ${options[*]}"; x86_64-w64-mingw32-g++-posix -dumpfullversion
           grep -v '^#' "$toolchain"; } | sha256sum | cut -c1-12)
folder=$cache/qt-${version%%[+-]*}-$recipe
sources=$cache/qt6-base-$version
built() { [ -f "$folder/lib/cmake/Qt6/Qt6Config.cmake" ]; }
if [ "${1:-}" = --where ] || { [ "${1:-}" != --sources ] && built; }; then
    echo "$folder"
    exit 0
fi

mkdir -p "$cache"
exec 9>"$cache/lock"
flock -n 9 || { echo "windows_qt: another build is under way; waiting for it" >&2; flock 9; }
work=$cache/build-$recipe

# The machine's own package sites, asked for sources in a list of its own, so that none of apt's settings changes.
fetch_sources() (
    [ ! -d "$sources" ] || return 0
    part=$sources.part
    rm -rf "$part"
    mkdir -p "$part/apt/lists/partial" "$part/package"
    cd "$part/package"
    # shellcheck disable=SC2016  # the names are apt's own
    apt-get indextargets --format 'deb-src $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
        sort -u >"$part/apt/sources.list"
    own=(-o "Dir::Etc::sourcelist=$part/apt/sources.list" -o Dir::Etc::sourceparts=-
         -o "Dir::State::lists=$part/apt/lists" -o "Dir::Cache::srcpkgcache=$part/apt/srcpkgcache.bin"
         -o "Dir::Cache::pkgcache=$part/apt/pkgcache.bin" -o APT::Sandbox::User=)
    apt-get -q "${own[@]}" update >&2
    apt-get -q "${own[@]}" source --download-only "qt6-base=$version" >&2
    mv "$part/package" "$sources"
    rm -rf "$part"
)

if [ "${1:-}" = --sources ]; then
    fetch_sources
    echo "$sources"
    exit 0
fi
if built; then
    echo "$folder"
    exit 0
fi

echo "windows_qt: building Qt $version for Windows in $work" >&2
fetch_sources
mkdir -p "$work"
# A copy of its own: a build that was broken off goes on from any clone.
cp "$toolchain" "$work/toolchain.cmake"
[ -f "$work/qtbase/CMakeLists.txt" ] ||
    { rm -rf "$work/qtbase" && dpkg-source --no-check -x "$sources/qt6-base_${version#*:}.dsc" "$work/qtbase" >&2; }
host=$(dpkg-architecture -qDEB_HOST_MULTIARCH)
launcher=()
if command -v ccache >/dev/null; then
    launcher=(-DQT_USE_CCACHE=ON)
    export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
fi
cmake -S "$work/qtbase" -B "$work/build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$work/toolchain.cmake" \
      -DCMAKE_INSTALL_PREFIX="$work/install" -DQT_HOST_PATH=/usr \
      -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$host/cmake" "${launcher[@]}" "${options[@]}" >"$work/configure.log" 2>&1 ||
    { tail -30 "$work/configure.log" >&2; exit 1; }
cmake --build "$work/build" --parallel "$jobs" >"$work/build.log" 2>&1 || { tail -30 "$work/build.log" >&2; exit 1; }
rm -rf "$work/install"
cmake --install "$work/build" >"$work/install.log"
# What the makers of Qt and Debian say about its licences goes with it.
mkdir -p "$work/install/licenses"
cp "$work/qtbase/debian/copyright" "$work/install/licenses/Qt-copyright.txt"
cp "$work"/qtbase/LICENSES/*.txt "$work/install/licenses/"
mv "$work/install" "$folder"
rm -rf "$work"
echo "$folder"
