#!/bin/bash
# The pictures of the documents, from guided runs with their windows cut out:
#   guide    help/pictures and those of README.md, on Linux
#   linux    the Linux half of docs/desktops.md, light and dark, at 100 and 200 per cent
#   windows  its Windows half; needs make windows-test's tools
# PARTS names some of them, all where it is not set. Pictures at 200 per cent are kept at half their size. BUILD is a build
# that is there already. Needs ImageMagick and pngquant, and the right to make the folder /srv/plant, which stands in the
# pictures.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/display.sh
parts=${PARTS:-guide linux windows}
looks=(light-100 light-200 dark-100 dark-200)
shown=(06-changed:main 10-filter:filter 13-fill:fill 07-commit:commit 17-about:about)
build=${BUILD:-$PWD/build/release}
taken=$PWD/build/pictures
kept=docs/pictures/desktops
plant=/srv/plant

# Which picture of a run is which of the guide, and how much of it: the window that has the keyboard, so much around its
# middle, or a part of the screen.
guide=(
    01-manage-applications:manage-applications:window
    20-applications-filtered:applications-filter:window
    02-loaded:grid:1280x800+0+0
    10-filter:filter:around-760x440
    11-filtered:filtered:960x240+0+0
    03-refused:refused-edit:880x490+212+258
    06-changed:main-window:1280x800+0+0
    18-pop-up-menu:pop-up-menu:560x240+466+28
    13-fill:fill:window
    14-replace:replace:window
    16-frozen-columns:frozen-columns:880x400+0+0
    19-properties:properties:1280x400+0+0
    05-limit-out-of-order:limit-out-of-order:880x490+212+258
    07-commit:commit:window
    08-committed:committed:around-520x200
    17-about:about:around-320x280
)

wanted() { [[ " $parts " == *" $1 "* ]]; }

# on_linux LOOK: a guided run; its pictures go to $taken/LOOK.
on_linux() (
    look=$1 scale=${1#*-} colours=()
    [ ! -e "$plant" ] || { echo "pictures: $plant is there already" >&2; exit 1; }
    trap 'rm -rf "$plant"' EXIT
    rm -rf "${taken:?}/$look" && mkdir -p "$plant/bin" "$plant/samples" "$taken/$look"
    cp samples/*.kdt samples/*.kdt6 samples/*.V* "$plant/samples/"
    cp -r samples/Rules.ini help "$plant/bin/"
    scripts/settings_list.sh "$plant"/samples/*.kdt "$plant"/samples/*.kdt6 >"$plant/bin/KDLimitDesk.ini"
    [ "${look%-*}" = light ] || colours=(--dark)
    SCREEN=$((1280 * scale / 100))x$((800 * scale / 100)) start_virtual_display
    trap 'rm -rf "$plant"; kill "$window_manager" "$virtual_display" 2>/dev/null' EXIT
    XDG_CONFIG_HOME=$plant/config QT_QPA_PLATFORM=xcb QT_SCALE_FACTOR=$((scale / 100)) \
        "$build/bin/guided_run" --samples "$plant/samples" --pictures "$taken/$look" --places \
            "${colours[@]}"
)

# Sets width, height, left and top of the window that had the keyboard when a picture was taken.
place_of() {
    local place
    place=$(identify -format '%[window]' "$1")
    [ -n "$place" ] || { echo "pictures: no window in $1" >&2; return 1; }
    IFS=x+ read -r width height left top <<<"$place"
}

# keep SYSTEM LOOK FOLDER: the windows of a run's pictures, with a little of what is around a dialog.
keep() {
    local system=$1 look=$2 folder=$3 pair width height left top crop
    local scale=${look#*-}
    local around=$((32 * scale / 100))
    for pair in "${shown[@]}"; do
        place_of "$folder/${pair%:*}.png"
        crop=()
        if [ "${pair#*:}" != main ]; then
            left=$((left > around ? left - around : 0)) top=$((top > around ? top - around : 0))
            crop=(-crop "$((width + 2 * around))x$((height + 2 * around))+$left+$top" +repage)
        fi
        convert "$folder/${pair%:*}.png" "${crop[@]}" -resize $((10000 / scale))% png:- |
            pngquant 64 - >"$kept/$system-${pair#*:}-$look.png"
    done
}

# keep_guide SOURCE NAME PART
keep_guide() {
    local part=$3 width height left top
    place_of "$taken/light-100/$1.png"
    case $part in
        window) part=${width}x$height+$left+$top ;;
        around-*)
            part=${part#around-}
            left=$((left + (width - ${part%x*}) / 2)) top=$((top + (height - ${part#*x}) / 2))
            part+=+$((left > 0 ? left : 0))+$((top > 0 ? top : 0))
            ;;
    esac
    convert "$taken/light-100/$1.png" -crop "$part" +repage png:- | pngquant 64 - >"help/pictures/$2.png"
}

scripts/setup.sh build display pictures
if wanted guide || wanted linux; then
    if [ -z "${BUILD:-}" ]; then
        cmake --preset release
        cmake --build "$build" --parallel "${JOBS:-$(nproc)}" --target guided_run
    fi
    for look in "${looks[@]}"; do
        wanted linux || [ "${look#*-}" = 100 ] || continue
        on_linux "$look"
    done
fi
if wanted guide; then
    for each in "${guide[@]}"; do
        IFS=: read -r source name part <<<"$each"
        keep_guide "$source" "$name" "$part"
    done
    cp help/pictures/{main-window,manage-applications,commit,refused-edit}.png docs/pictures/
    pngquant 64 - <"$taken/dark-100/06-changed.png" >docs/pictures/main-window-dark.png
fi
if wanted linux; then
    for look in "${looks[@]}"; do
        keep linux "$look" "$taken/$look"
    done
fi
if wanted windows; then
    scripts/setup.sh windows-core windows
    PARTS=in_looks LOOKS="${looks[*]}" scripts/trials/windows.sh
    for look in "${looks[@]}"; do
        keep windows "$look" "$PWD/build/windows/pictures/$look"
    done
fi
du -sh help/pictures docs/pictures
