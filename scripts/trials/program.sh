#!/bin/bash
# Does the main job in an installed program, by keyboard on a display, and checks the files on disk:
#     scripts/trials/program.sh SAMPLES COMMAND...
# COMMAND starts the program as a desktop would; SAMPLES is the folder of the samples that its first start lists (it may
# be made by that start). The upper limit of the last variable is changed and committed; the exit code is 0 only if
# that digit is all that changed, the archive holds what was there, and the change is recorded.
set -u
samples=$1 && shift
pictures=${PICTURES:-}
value=4.5
view=water.KDV6.V5

fail() { echo "try: $*" >&2; picture failed; exit 1; }
picture() { [ -z "$pictures" ] || import -window root "$pictures/$1.png"; }
# Waits until the command given works; half a minute at most.
until_true() {
    local end=$((SECONDS + 30))
    until "$@" >/dev/null 2>&1; do
        [ $SECONDS -lt $end ] || return 1
        sleep 0.1
    done
}
window() { xdotool search --onlyvisible --name "$1"; }
no_window() { ! window "$1"; }
await() { until_true window "$1" || fail "no window \"$1\""; xdotool windowactivate --sync "$(window "$1" | tail -1)" 2>/dev/null; }
# Waits until the program has nothing to do: for a second it has taken no time of the processor.
settle() {
    local pid now then=
    pid=$(xdotool getwindowpid "$(window "$1" | tail -1)") || return
    for _ in $(seq 60); do
        now=$(cut -d' ' -f14,15 "/proc/$pid/stat" 2>/dev/null)
        [ "$now" != "$then" ] || return 0
        then=$now
        sleep 1
    done
}
key() { xdotool key --delay 60 "$@"; }

"$@" &
program=$!
await '^KD LimitDesk - Manage Applications'
picture manage
key Return
await '^KD LimitDesk \(v'
until_true test -f "$samples/$view" || fail "the samples are not in $samples"
before=$(mktemp -d) && trap 'rm -rf "$before"' EXIT
cp "$samples"/* "$before/" 2>/dev/null
settle '^KD LimitDesk \(v'  # all is loaded; a key with Ctrl that comes before may lose it

key ctrl+End                                                      # Decimals of the last variable
key Left Left Left Left Left Left Left Left Left Left             # its upper specification limit
picture loaded
xdotool type --delay 60 "$value" && key Return
picture changed
key alt+f Down Return
await 'Commit'
picture commit
key Return
until_true no_window 'Commit' || fail "the commit dialog stays"
await '^KDLimitDesk$'                                              # how many files have been modified
picture committed
key Return
until_true grep -qa Zinc "$samples/water.KDL6" || fail "no record of the change"
settle '^KD LimitDesk \(v'
key alt+F4
until_true no_window '^KD LimitDesk' || fail "the program does not close"
wait "$program" 2>/dev/null

changes=$(diff -a "$before/$view" "$samples/$view" | tr -d '\r' | sed -n 's/^[<>] *//p')
while read -r line; do echo "try: $line"; done <<<"$changes"
expected=$(printf '%s\n' 'VERSION *= 6\.' 'VERSION *= 6\.001' 'USL *= F5\.0000' 'USL *= F4\.5000')
[ "$(wc -l <<<"$changes")" -eq 4 ] || fail "other lines changed than the revision and the limit"
while read -r line; do
    grep -qx -- "$line" <<<"$changes" || fail "no line $line"
done <<<"$expected"
archive=$(ls -d "$samples"/Archive/water/*/) || fail "no archive"
for file in "$before"/water.*; do
    cmp -s "$file" "$archive/${file##*/}" || fail "the archive lacks ${file##*/} as it was"
done
for file in "$before"/*; do
    case "${file##*/}" in "$view" | water.KDL6 | water.KDM6) continue ;; esac
    cmp -s "$file" "$samples/${file##*/}" || fail "${file##*/} has changed"
done
echo "try: done, the files on the disk are as they must be"
