#!/bin/bash
# Tries the program for Windows under wine: all tests through its widgets and the guided run, in languages with different
# code pages and decimal separators; the guided run in light and dark at 100 and 200 per cent; then the installer: it
# installs, the installed program does the main job, it uninstalls. Pictures go to build/windows/pictures.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/wine.sh
source scripts/display.sh
scripts/setup.sh build display package windows-core windows
scripts/windows.sh
scripts/windows.sh test_qt guided_run
wine=/usr/lib/wine/wine64
build=$PWD/build/windows
qt=$(scripts/windows_qt.sh --where)
desk=$build/wine  # a machine of its own, as its programs need the display of this run

windows_path() { printf 'Z:%s' "${1//\//\\}"; }
start_machine() {
    stop_wine "$desk"
    start_virtual_display
    start_wine "$desk"
}

# wine keeps variables of Qt's from the programs unless their names begin with WINE.
tell_where_qt_is() {
    local folder path=
    for folder in "$qt/bin" "$(library_folder libstdc++-6.dll)" "$(library_folder libwinpthread-1.dll)"; do
        path+="$(windows_path "$folder");"
    done
    export WINEPATH=$path WINEQT_FORCE_STDERR_LOGGING=1
    WINEQT_PLUGIN_PATH=$(windows_path "$qt/plugins")
    export WINEQT_PLUGIN_PATH
}
library_folder() { dirname "$(x86_64-w64-mingw32-g++-posix "-print-file-name=$1")"; }

# The tests' windows are on no screen; their fonts are those of the tests on Linux.
widget_tests() {
    WINEQT_QPA_PLATFORM=offscreen WINEQT_QPA_FONTDIR=$(windows_path /usr/share/fonts/truetype/dejavu) \
        as_windows_of "$1" "$wine" "$build/tests/qt/test_qt.exe" --gtest_brief=1
}

# The main job by simulated mouse and keyboard, on copies in a folder of its own on the machine's own disk.
guided_run() {
    local language=$1 name=$2 folder=$WINEPREFIX/drive_c/plant template
    rm -rf "$folder" "$build/pictures/$name" && mkdir -p "$folder/bin" "$folder/samples" "$build/pictures/$name"
    cp samples/*.kdt samples/*.kdt6 samples/*.V* "$folder/samples/"
    cp -r samples/Rules.ini help "$folder/bin/"
    { printf '[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n\r\n[FILES]\r\n'
      for template in "$folder"/samples/*.kdt "$folder"/samples/*.kdt6; do
          printf '   File   = C:\\plant\\samples\\%s\r\n' "${template##*/}"
      done; } >"$folder/bin/KDLimitDesk.ini"
    as_windows_of "$language" "$wine" "$build/bin/guided_run.exe" --samples 'C:\plant\samples' \
        --pictures "$(windows_path "$build/pictures/$name")"
}

# The desktop's colours (light, dark) and its scale in per cent, for programs that start from now on.
set_look() {
    local light=1
    [ "$1" = light ] || light=0
    "$wine" reg add 'HKCU\Software\Microsoft\Windows\CurrentVersion\Themes\Personalize' /v AppsUseLightTheme \
        /t REG_DWORD /d $light /f >/dev/null 2>&1
    "$wine" reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d $(($2 * 96 / 100)) /f >/dev/null 2>&1
    stop_wine "$desk"
    start_wine "$desk"
}

in_languages() (
    tell_where_qt_is
    start_machine
    set_look light 100
    for language in ${LANGUAGES:-de_DE pl_PL ru_RU en_US}; do
        printf '\n==> Windows in %s: the tests through widgets\n' "$language"
        widget_tests "$language"
        printf '\n==> Windows in %s: the guided run\n' "$language"
        guided_run "$language" "$language"
    done
)

# Each look with a display of its own, as large as its windows.
in_looks() (
    tell_where_qt_is
    for look in ${LOOKS:-light-200 dark-100 dark-200}; do
        printf '\n==> Windows, %s per cent: the guided run\n' "${look/-/, }"
        (
            scale=${look#*-}
            export SCREEN=$((1280 * scale / 100))x$((800 * scale / 100))
            start_machine
            set_look "${look%-*}" "$scale"
            guided_run en_US "$look"
        )
    done
)

installer() (
    printf '\n==> The installer\n'
    start_machine
    set_look light 100
    user=$WINEPREFIX/drive_c/users/$(id -un)
    installed="$WINEPREFIX/drive_c/Program Files/KD LimitDesk"
    fresh() { rm -rf "$installed" "$user/AppData/Roaming/KD6" "$user/AppData/Local/kdlimitdesk"; }
    until_gone() { for _ in $(seq 100); do [ -e "$1" ] || return 0; sleep 0.2; done; return 1; }
    fresh
    "$wine" build/packages/KDLimitDesk-*-windows-x64.exe /S
    for file in KDLimitDesk.exe Qt6Core.dll Qt6Gui.dll Qt6Widgets.dll platforms/qwindows.dll \
        styles/qwindowsvistastyle.dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll help/index.html \
        samples/water.kdt6 Rules.ini LICENSE.txt NOTICES.txt Uninstall.exe; do
        [ -f "$installed/$file" ] || { echo "installer: $file is missing" >&2; exit 1; }
    done
    rm -rf "$build/pictures/installed" && mkdir -p "$build/pictures/installed"
    PICTURES=$build/pictures/installed as_windows_of en_US scripts/try_program.sh \
        "$user/AppData/Local/kdlimitdesk/samples" "$wine" "C:\\Program Files\\KD LimitDesk\\KDLimitDesk.exe"
    "$wine" "C:\\Program Files\\KD LimitDesk\\Uninstall.exe" /S
    # The uninstaller goes on as a copy of itself.
    until_gone "$installed" || { echo "installer: left behind: $(ls "$installed")" >&2; exit 1; }
    fresh
    echo "installer: installed, tried, removed"
)

for part in ${PARTS:-in_languages in_looks installer}; do
    $part
done
stop_wine "$desk"
