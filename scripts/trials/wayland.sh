#!/bin/bash
# The guided run under Wayland, on compositors in a window of a virtual X display:
#   native  on weston, by Wayland alone
#   x11     on weston, where X11 is to be had too; the program must choose it by itself
#   places  the same on mutter, the compositor of Debian's own desktop, which puts windows where they ask to be: the
#           filter must stand there
# All three, or those named. Pictures go to PICTURES, build/wayland where that is not set. BUILD is a build that is there
# already. The exit code is 0 only if the files on the disk are as they must be after each run.
set -u
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
source scripts/display.sh
source scripts/scratch.sh
build=${BUILD:-$PWD/build/release}
pictures=${PICTURES:-$PWD/build/wayland}
[ $# -gt 0 ] || set -- native x11 places
if [ -z "${BUILD:-}" ]; then
    scripts/setup.sh build display wayland &&
        cmake --preset release &&
        cmake --build "$build" --parallel "${JOBS:-$(nproc)}" --target KDLimitDesk guided_run || exit 1
fi
folder=$(mktemp -d) && chmod 700 "$folder" || exit 1
export XDG_RUNTIME_DIR=$folder LIBGL_ALWAYS_SOFTWARE=1
unset QT_QPA_PLATFORM
SCREEN=1700x1100 start_virtual_display || exit 1
screen=$DISPLAY
trap 'kill ${compositor:-} "$window_manager" "$virtual_display" 2>/dev/null; rm -rf "$folder"' EXIT

# Waits until the command given works; a minute at most.
until_true() {
    local end=$((SECONDS + 60))
    until "$@" >/dev/null 2>&1; do
        [ $SECONDS -lt $end ] || return 1
        sleep 0.1
    done
}
# The arguments of the X server that a compositor has started.
x_server() { pgrep -fa "Xwayland .*$1" | head -1; }

# Each starts a compositor at the socket kd-wayland and sets `compositor`, and for X11 `x11` and XAUTHORITY.
start_weston() {
    cat >"$folder/weston.ini" <<END
[core]
idle-time=0
[shell]
panel-position=none
animation=none
startup-animation=none
close-animation=none
END
    weston --backend=x11-backend.so --use-pixman --width=1600 --height=1000 --xwayland \
        --config="$folder/weston.ini" --socket=kd-wayland >"$folder/compositor.log" 2>&1 &
    compositor=$!
    until_true test -S "$folder/kd-wayland" &&
        until_true grep -q 'xserver listening on display' "$folder/compositor.log" || return 1
    x11=$(sed -n 's/.*xserver listening on display \(:[0-9]*\).*/\1/p' "$folder/compositor.log" | head -1)
}
start_mutter() {
    MUTTER_DEBUG_DUMMY_MODE_SPECS=1600x1000 dbus-run-session -- mutter --nested --wayland \
        --wayland-display=kd-wayland >"$folder/compositor.log" 2>&1 &
    compositor=$!
    until_true test -S "$folder/kd-wayland" && until_true x_server "$folder" || return 1
    x11=$(x_server "$folder" | sed 's/.*Xwayland \(:[0-9]*\) .*/\1/')
    export XAUTHORITY
    XAUTHORITY=$(x_server "$folder" | sed 's/.* -auth \([^ ]*\).*/\1/')
}
stop_compositor() {
    kill "$compositor" 2>/dev/null
    wait "$compositor" 2>/dev/null
    unset XAUTHORITY
    until_true test ! -e "$folder/kd-wayland" || rm -f "$folder/kd-wayland"
}

# One guided run: its name, its compositor, the platform that it must say it is on.
trial() {
    local name=$1 platform=$3 status=0 judged=()
    printf '\n==> %s\n' "$name"
    make_scratch "$folder/$name" "$build" && rm -rf "${pictures:?}/$name" && mkdir -p "$pictures/$name" || return 1
    "start_$2" || { echo "wayland: $2 did not start" >&2; cat "$folder/compositor.log" >&2; return 1; }
    local display=(DISPLAY="$x11")
    [ "$platform" = xcb ] || display=(-u DISPLAY)
    [ "$2" != mutter ] || judged=(--places)
    env "${display[@]}" XDG_CONFIG_HOME="$folder/$name/config" WAYLAND_DISPLAY=kd-wayland \
        timeout 900 "$build/bin/guided_run" --samples "$folder/$name/samples" --pictures "$pictures/$name" \
        --camera "env -u XAUTHORITY import -display $screen -window root" "${judged[@]}" 2>&1 | tee "$folder/$name.log"
    status=${PIPESTATUS[0]}
    grep -qx "guided run: on $platform" "$folder/$name.log" ||
        { echo "wayland: $name is not on $platform" >&2; status=1; }
    stop_compositor
    return "$status"
}

failed=()
for name in "$@"; do
    case "$name" in
        native) trial native weston wayland ;;
        x11) trial x11 weston xcb ;;
        places) trial places mutter xcb ;;
        *) echo "wayland: no trial $name" >&2; false ;;
    esac || failed+=("$name")
done
printf '\nwayland: %s\n' "${failed[*]:+FAILED: }${failed[*]:-all runs are as they must be}"
[ ${#failed[@]} -eq 0 ]
