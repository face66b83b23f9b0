#!/bin/bash
# Tries the program for Windows under wine: all tests through its widgets and the guided run, in languages with different
# code pages and decimal separators; then the installer: it installs, the installed program does the main job, it
# uninstalls. Pictures go to build/windows/pictures.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/wine.sh
source scripts/display.sh
scripts/setup.sh build display package windows-core windows
scripts/windows.sh
scripts/windows.sh test_qt guided_run
start_virtual_display
start_wine
wine=/usr/lib/wine/wine64
build=$PWD/build/windows
qt=$(scripts/windows_qt.sh --where)

# wine keeps variables of Qt's from the programs unless their names begin with WINE.
export WINEQT_PLUGIN_PATH="Z:${qt//\//\\}\\plugins" WINEQT_FORCE_STDERR_LOGGING=1
compiler_folders=$(for name in libstdc++-6.dll libwinpthread-1.dll; do
    dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name=$name)"; done)
WINEPATH=$(for folder in "$qt/bin" $compiler_folders; do printf 'Z:%s;' "${folder//\//\\}"; done)
export WINEPATH

windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# The main job by simulated mouse and keyboard, on copies in a folder of its own.
guided_run() {
    local language=$1 folder=$build/guided/$1 template
    rm -rf "$folder" && mkdir -p "$folder/bin" "$folder/samples" "$build/pictures/$language"
    cp samples/*.kdt samples/*.kdt6 samples/*.V* "$folder/samples/"
    cp -r samples/Rules.ini help "$folder/bin/"
    { printf '[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n\r\n[FILES]\r\n'
      for template in "$folder"/samples/*.kdt "$folder"/samples/*.kdt6; do
          printf '   File   = %s\r\n' "$(windows_path "$template")"
      done; } >"$folder/bin/KDLimitDesk.ini"
    as_windows_of "$language" "$wine" "$build/bin/guided_run.exe" --samples "$(windows_path "$folder/samples")" \
        --pictures "$(windows_path "$build/pictures/$language")"
}

for language in ${LANGUAGES:-de_DE pl_PL ru_RU en_US}; do
    printf '\n==> Windows in %s: the tests through widgets\n' "$language"
    WINEQT_QPA_PLATFORM=offscreen as_windows_of "$language" "$wine" "$build/tests/qt/test_qt.exe" --gtest_brief=1
    printf '\n==> Windows in %s: the guided run\n' "$language"
    guided_run "$language"
done

printf '\n==> The installer\n'
unset WINEPATH WINEQT_PLUGIN_PATH
user=$WINEPREFIX/drive_c/users/$(id -un)
installed="$WINEPREFIX/drive_c/Program Files/KD LimitDesk"
fresh() { rm -rf "$installed" "$user/AppData/Roaming/KD6" "$user/AppData/Local/kdlimitdesk"; }
fresh
"$wine" build/packages/KDLimitDesk-*-windows-x64.exe /S
until_gone() { for _ in $(seq 100); do [ -e "$1" ] || return 0; sleep 0.2; done; return 1; }
for file in KDLimitDesk.exe Qt6Core.dll Qt6Gui.dll Qt6Widgets.dll platforms/qwindows.dll styles/qwindowsvistastyle.dll \
    libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll help/index.html samples/water.kdt6 Rules.ini LICENSE.txt \
    NOTICES.txt Uninstall.exe; do
    [ -f "$installed/$file" ] || { echo "installer: $file is missing" >&2; exit 1; }
done
PICTURES=$build/pictures as_windows_of en_US scripts/try_program.sh "$user/AppData/Local/kdlimitdesk/samples" \
    "$wine" "C:\\Program Files\\KD LimitDesk\\KDLimitDesk.exe"
"$wine" "C:\\Program Files\\KD LimitDesk\\Uninstall.exe" /S
until_gone "$installed/KDLimitDesk.exe" && until_gone "$installed" ||
    { echo "installer: left behind: $(ls "$installed")" >&2; exit 1; }
fresh
echo "installer: installed, tried, removed"
