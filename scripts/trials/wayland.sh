#!/bin/bash
# The program under a Wayland compositor (weston, in a window of a virtual X display): the guided run natively, and as the
# program chooses by itself where X11 is to be had too, which must be X11. Pictures go to PICTURES, build/wayland where
# that is not set. SCALE is the compositor's, 1 or 2. The exit code is 0 only if the files on the disk are as they must be
# after each run.
set -u
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
source scripts/display.sh
source scripts/scratch.sh
build=${BUILD:-$PWD/build/release}
pictures=${PICTURES:-$PWD/build/wayland}
if [ -z "${BUILD:-}" ]; then
    scripts/setup.sh build display wayland &&
        cmake --preset release &&
        cmake --build "$build" --parallel "${JOBS:-$(nproc)}" --target KDLimitDesk guided_run || exit 1
fi
SCREEN=1700x1100 start_virtual_display || exit 1
screen=$DISPLAY
folder=$(mktemp -d)
chmod 700 "$folder"
export XDG_RUNTIME_DIR=$folder
unset QT_QPA_PLATFORM

# Starts the compositor and sets `compositor` and X11_OF_WAYLAND.
start_compositor() {
    cat >"$folder/weston.ini" <<END
[core]
idle-time=0
[shell]
panel-position=none
animation=none
startup-animation=none
close-animation=none
END
    weston --backend=x11-backend.so --use-pixman --width=1600 --height=1000 --scale="${SCALE:-1}" --xwayland \
        --config="$folder/weston.ini" --socket=kd-wayland >"$folder/weston.log" 2>&1 &
    compositor=$!
    trap 'kill "$compositor" "$window_manager" "$virtual_display" 2>/dev/null; rm -rf "$folder"' EXIT
    local end=$((SECONDS + 60))
    until [ -S "$folder/kd-wayland" ] && grep -q 'xserver listening on display' "$folder/weston.log"; do
        [ $SECONDS -lt $end ] || { cat "$folder/weston.log" >&2; return 1; }
        sleep 0.1
    done
    X11_OF_WAYLAND=$(sed -n 's/.*xserver listening on display \(:[0-9]*\).*/\1/p' "$folder/weston.log" | head -1)
}

# One guided run: its name, the platform that it must say it is on, and its environment.
trial() {
    local name=$1 platform=$2 status=0
    shift 2
    printf '\n==> %s\n' "$name"
    make_scratch "$folder/$name" "$build" || return 1
    rm -rf "$pictures/$name" && mkdir -p "$pictures/$name" || return 1
    env "$@" XDG_CONFIG_HOME="$folder/$name/config" WAYLAND_DISPLAY=kd-wayland \
        timeout 600 "$build/bin/guided_run" --samples "$folder/$name/samples" --pictures "$pictures/$name" \
        --camera "import -display $screen -window root" 2>&1 | tee "$folder/$name.log" || true
    status=${PIPESTATUS[0]}
    grep -q "^guided run: on $platform\$" "$folder/$name.log" ||
        { echo "wayland: $name is not on $platform" >&2; status=1; }
    return "$status"
}

start_compositor || { echo "wayland: the compositor did not start" >&2; exit 1; }
failures=0
trial native wayland -u DISPLAY || failures=$((failures + 1))
trial x11-first xcb DISPLAY="$X11_OF_WAYLAND" || failures=$((failures + 1))
printf '\nwayland: %s\n' "$([ $failures -eq 0 ] && echo 'both runs are as they must be' || echo "$failures of 2 runs FAILED")"
exit "$failures"
