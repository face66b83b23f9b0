# shellcheck shell=bash
# Programs for Windows on this machine, for scripts to source.
kd_cache=${XDG_CACHE_HOME:-$HOME/.cache}/kd-limitdesk

# Makes wine ready, once, in the folder named or (by an empty name) in the user's cache; nothing of the user's own wine
# is in it. A server that runs there already has no display, or an old one: who needs a display names a folder of his
# own, and ends the server first.
start_wine() {
    export WINEPREFIX=${1:-$kd_cache/wine} WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
    mkdir -p "$WINEPREFIX"
    exec {wine_lock}>"$WINEPREFIX.lock"
    flock "$wine_lock"
    if [ ! -f "$WINEPREFIX/ready" ]; then
        echo "wine: setting up $WINEPREFIX"
        wineboot -i >/dev/null 2>&1
        /usr/lib/wine/wineserver64 -w
        # Without these the dialogs' own font falls to a serif face.
        cp /usr/share/wine/fonts/*.ttf /usr/share/wine/fonts/*.fon "$WINEPREFIX/drive_c/windows/Fonts/"
        /usr/lib/wine/wine64 winecfg -v win10 && touch "$WINEPREFIX/ready"
    fi
    exec {wine_lock}>&-
    [ -f "$WINEPREFIX/ready" ] || { echo "wine: could not be set up" >&2; return 1; }
    # The server stays between two programs, which saves seconds each. What the first program starts beside itself must
    # not hold on to a pipe of ours.
    /usr/lib/wine/wineserver64 -p600 >/dev/null 2>&1 || true
    /usr/lib/wine/wine64 cmd /c exit >/dev/null 2>&1 </dev/null
}

# Ends the server, and with it all programs that still run there.
stop_wine() {
    WINEPREFIX=$1 /usr/lib/wine/wineserver64 -k >/dev/null 2>&1 || true
    WINEPREFIX=$1 /usr/lib/wine/wineserver64 -w >/dev/null 2>&1 || true
}

# Code page and decimal separator follow the locale: as_windows_of de_DE COMMAND... runs a command so.
as_windows_of() {
    local language=$1 folder=$kd_cache/locales
    shift
    if [ ! -d "$folder/$language.UTF-8" ]; then
        mkdir -p "$folder"
        localedef -i "$language" -f UTF-8 "$folder/$language.UTF-8" >/dev/null 2>&1 ||
            [ -d "$folder/$language.UTF-8" ] || { echo "wine: no locale $language" >&2; return 1; }
    fi
    case "$language" in
        pl_PL) local page=1250 separator=, ;;
        ru_RU) local page=1251 separator=, ;;
        de_DE) local page=1252 separator=, ;;
        *) local page=1252 separator=. ;;
    esac
    LOCPATH=$folder LC_ALL=$language.UTF-8 KD_EXPECTED_CODE_PAGE=$page KD_EXPECTED_SEPARATOR=$separator "$@"
}
