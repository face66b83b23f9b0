#!/bin/bash
# Tries the program for Windows under wine: all tests through its widgets and the guided run, in languages with different
# code pages and decimal separators; the guided run in light and dark at 100 and 200 per cent; then the installer: it
# installs, the installed program does the main job, it uninstalls; it leaves alone a program that runs, and keeps its
# folder when it comes again. Pictures go to build/windows/pictures. LANGUAGES, LOOKS and PARTS make the run shorter.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
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
    local language=$1 name=$2 folder=$WINEPREFIX/drive_c/plant templates
    rm -rf "$folder" "$build/pictures/$name" && mkdir -p "$folder/bin" "$folder/samples" "$build/pictures/$name"
    cp samples/*.kdt samples/*.kdt6 samples/*.V* "$folder/samples/"
    cp -r samples/Rules.ini help "$folder/bin/"
    templates=("$folder"/samples/*.kdt "$folder"/samples/*.kdt6)
    scripts/settings_list.sh "${templates[@]/#*\//C:\\plant\\samples\\}" >"$folder/bin/KDLimitDesk.ini"
    as_windows_of "$language" "$wine" "$build/bin/guided_run.exe" --samples 'C:\plant\samples' \
        --pictures "$(windows_path "$build/pictures/$name")" --places
}

# Whether the display's window manager has the windows in hand (Y or N), from the next look on. It keeps whole frames on
# the screen, and so moves what stands at its edge; Windows leaves a window where its program puts it.
set_managed() {
    "$wine" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /t REG_SZ /d "$1" /f >/dev/null 2>&1
}

# The desktop's colours (light, dark) and its scale in per cent, for programs that start from now on. Letters are smooth
# as on every Windows, and wine's own font, whose drawn letters break, stands back: in it a 5 reads like a 3.
set_look() {
    local light=1
    [ "$1" = light ] || light=0
    "$wine" reg add 'HKCU\Software\Microsoft\Windows\CurrentVersion\Themes\Personalize' /v AppsUseLightTheme \
        /t REG_DWORD /d $light /f >/dev/null 2>&1
    "$wine" reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d $(($2 * 96 / 100)) /f >/dev/null 2>&1
    "$wine" reg add 'HKCU\Control Panel\Desktop' /v FontSmoothing /t REG_SZ /d 2 /f >/dev/null 2>&1
    "$wine" reg add 'HKCU\Control Panel\Desktop' /v FontSmoothingType /t REG_DWORD /d 2 /f >/dev/null 2>&1
    "$wine" reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontSubstitutes' /v Tahoma /t REG_SZ \
        /d 'DejaVu Sans' /f >/dev/null 2>&1
    stop_wine "$desk"
    start_wine "$desk"
}

in_languages() (
    tell_where_qt_is
    start_machine
    set_managed N
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
            set_managed N
            set_look "${look%-*}" "$scale"
            guided_run en_US "$look"
        )
    done
)

# What the installer and the uninstaller tell Windows.
entry() {
    "$wine" reg query 'HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\KDLimitDesk' /v "$1" 2>/dev/null |
        tr -d '\r' | sed -n "s/^ *$1 *REG_[A-Z]* *//p"
}
fail() { echo "installer: $*" >&2; exit 1; }
expect_entry() { [ "$(entry "$1")" = "$2" ] || fail "the registry's $1 is \"$(entry "$1")\", not \"$2\""; }
status_of() { local status=0; "$@" >/dev/null || status=$?; echo "$status"; }
until_true() { for _ in $(seq 150); do "$@" >/dev/null 2>&1 && return 0; sleep 0.2; done; return 1; }
gone() { [ ! -e "$1" ]; }
menu='ProgramData/Microsoft/Windows/Start Menu/Programs/KD LimitDesk'

# expect_installed FOLDER: all is there, and Windows knows it.
expect_installed() {
    local folder=$1 disk=$WINEPREFIX/drive_c file
    local within="$disk/${folder//\\//}"
    for file in KDLimitDesk.exe Qt6Core.dll Qt6Gui.dll Qt6Widgets.dll platforms/qwindows.dll \
        styles/qwindowsvistastyle.dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll help/index.html \
        samples/water.kdt6 Rules.ini LICENSE.txt NOTICES.txt licenses/LGPL-3.0-only.txt licenses/GPL-3.0-only.txt \
        licenses/Qt-copyright.txt licenses/gcc-copyright.txt licenses/mingw-w64-copyright.txt Uninstall.exe; do
        [ -s "$within/$file" ] || fail "$file is missing"
    done
    ! grep -q '@' "$within/NOTICES.txt" || fail "NOTICES.txt has a gap"
    for file in 'KD LimitDesk' 'Uninstall KD LimitDesk'; do
        [ -s "$disk/$menu/$file.lnk" ] || fail "the menu lacks $file"
    done
    expect_entry DisplayName 'KD LimitDesk'
    expect_entry DisplayVersion "$version"
    expect_entry InstallLocation "C:\\$folder"
    expect_entry UninstallString "\"C:\\$folder\\Uninstall.exe\""
    expect_entry QuietUninstallString "\"C:\\$folder\\Uninstall.exe\" /S"
    [ $(($(entry EstimatedSize))) -gt 20000 ] || fail "the registry's EstimatedSize is $(entry EstimatedSize)"
}

unregistered() { [ -z "$(entry DisplayName)" ]; }

# uninstall FOLDER: nothing of it stays. The uninstaller goes on as a copy of itself, so its end is waited for.
uninstall() {
    local disk=$WINEPREFIX/drive_c
    "$wine" "C:\\$1\\Uninstall.exe" /S
    until_true gone "$disk/${1//\\//}" || fail "left behind: $(ls "$disk/${1//\\//}")"
    until_true gone "$disk/$menu" || fail "the menu still holds: $(ls "$disk/$menu")"
    until_true unregistered || fail "the registry still has the program"
}

# A running program is left as it is, by the installer and by the uninstaller. The folder has a name without blanks, as
# one with blanks cannot be handed on.
try_running() {
    local folder=$WINEPREFIX/drive_c/desk before program
    before=$(cd "$folder" && find . -type f -exec sha256sum {} + | sort)
    rm "$folder/Rules.ini"  # an installer that did anything would bring it back
    "$wine" 'C:\desk\KDLimitDesk.exe' >/dev/null 2>&1 &
    program=$!
    until_true xdotool search --onlyvisible --name '^KD LimitDesk - Manage Applications' || fail "no window"
    [ "$(status_of "$wine" "$setup" /S)" = 2 ] || fail "an upgrade over a running program does not end with 2"
    [ "$(status_of "$wine" 'C:\desk\Uninstall.exe' /S '_?=C:\desk')" = 2 ] ||
        fail "the removal of a running program does not end with 2"
    kill "$program" 2>/dev/null || true
    wait "$program" 2>/dev/null || true
    [ ! -e "$folder/Rules.ini" ] || fail "an upgrade over a running program has changed files"
    cp samples/Rules.ini "$folder/"
    [ "$before" = "$(cd "$folder" && find . -type f -exec sha256sum {} + | sort)" ] ||
        fail "a running program's files have changed"
    expect_installed desk
}

installer() (
    printf '\n==> The installer\n'
    start_machine
    set_managed Y
    set_look light 100
    user=$WINEPREFIX/drive_c/users/$(id -un)
    setup=$(ls build/packages/KDLimitDesk-*-windows-x64.exe)
    version=${setup#*KDLimitDesk-} && version=${version%-windows-x64.exe}
    settings=$user/AppData/Roaming/KD6 samples=$user/AppData/Local/kdlimitdesk/samples
    fresh() {
        rm -rf "$WINEPREFIX/drive_c/Program Files/KD LimitDesk" "$WINEPREFIX/drive_c/desk" "$settings" \
            "${samples%/*}" "$WINEPREFIX/drive_c/$menu"
        "$wine" reg delete 'HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\KDLimitDesk' /f >/dev/null 2>&1 || true
    }
    fresh
    "$wine" "$setup" /S
    expect_installed 'Program Files\KD LimitDesk'
    rm -rf "$build/pictures/installed" && mkdir -p "$build/pictures/installed"
    PICTURES=$build/pictures/installed as_windows_of en_US scripts/trials/program.sh "$samples" "$wine" \
        'C:\Program Files\KD LimitDesk\KDLimitDesk.exe'
    uninstall 'Program Files\KD LimitDesk'
    { [ -d "$settings" ] && [ -f "$samples/water.kdt6" ]; } || fail "the user's settings and samples are gone"

    "$wine" "$setup" /S '/D=C:\desk'
    expect_installed desk
    try_running
    rm "$WINEPREFIX/drive_c/desk/Qt6Core.dll"
    "$wine" "$setup" /S
    expect_installed desk
    [ ! -e "$WINEPREFIX/drive_c/Program Files/KD LimitDesk" ] || fail "an upgrade forgets the folder"
    uninstall desk
    fresh
    echo "installer: installed, tried, removed; a running program left alone; upgraded where it was"
)

for part in ${PARTS:-in_languages in_looks installer}; do
    $part
done
stop_wine "$desk"
