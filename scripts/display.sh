# shellcheck shell=bash
# Displays, for scripts to source.

# Whether a program could open a window on a display of the user's.
have_display() {
    case "${DISPLAY:-}" in
        '') [ -n "${WAYLAND_DISPLAY:-}" ] && ls /usr/lib/*/qt6/plugins/platforms/libqwayland*.so >/dev/null 2>&1 ;;
        :*) local number=${DISPLAY#:}; [ -S "/tmp/.X11-unix/X${number%%.*}" ] ;;
        *) true ;;
    esac
}

# Starts a virtual display with a window manager, sets DISPLAY, and ends both when the script ends. SCREEN is its size.
start_virtual_display() {
    local program number
    for program in Xvfb openbox; do
        command -v "$program" >/dev/null || { echo "run: $program is missing (scripts/setup.sh display)" >&2; return 1; }
    done
    exec {numbers}<> <(:)
    Xvfb -displayfd "$numbers" -screen 0 "${SCREEN:-1600x1000}x24" -dpi 96 -nolisten tcp >/dev/null 2>&1 &
    virtual_display=$!
    trap 'kill "${window_manager:-$virtual_display}" "$virtual_display" 2>/dev/null' EXIT
    read -r -t 30 -u "$numbers" number || { echo "run: the virtual display did not start" >&2; return 1; }
    export DISPLAY=:$number
    unset WAYLAND_DISPLAY
    # A window that comes while the window manager is still starting may never be shown.
    local ready
    ready=$(mktemp -u)
    mkfifo "$ready"
    openbox --startup "sh -c 'echo ready >$ready'" >/dev/null 2>&1 &
    window_manager=$!
    local answer=
    read -r -t 30 answer <>"$ready"
    rm -f "$ready"
    [ "$answer" = ready ] || { echo "run: the window manager did not start" >&2; return 1; }
}
