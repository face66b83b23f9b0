#!/bin/bash
# The pictures of docs/desktops.md: the guided run on both systems, light and dark, at 100 and 200 per cent, with its windows
# cut out. Those at 200 per cent are kept at half their size. Needs make windows-test's tools, ImageMagick and pngquant.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/display.sh
scripts/setup.sh build display windows-core windows pictures
looks=(light-100 light-200 dark-100 dark-200)
shown=(06-changed:main 10-filter:filter 13-fill:fill 07-commit:commit 17-about:about)
build=$PWD/build
kept=docs/pictures/desktops
plant=/tmp/plant  # stands in the pictures
[ ! -e "$plant" ] || { echo "pictures: $plant is there already" >&2; exit 1; }
trap 'rm -rf "$plant"' EXIT

on_linux() (
    cmake --preset release
    cmake --build build/release --parallel "${JOBS:-$(nproc)}" --target guided_run
    for look in "${looks[@]}"; do
        (
            folder=$plant pictures=$build/linux/pictures/$look scale=${look#*-} colours=()
            rm -rf "$pictures" && mkdir -p "$folder/bin" "$folder/samples" "$pictures"
            cp samples/*.kdt samples/*.kdt6 samples/*.V* "$folder/samples/"
            cp -r samples/Rules.ini help "$folder/bin/"
            scripts/settings_list.sh "$folder"/samples/*.kdt "$folder"/samples/*.kdt6 >"$folder/bin/KDLimitDesk.ini"
            [ "${look%-*}" = light ] || colours=(--dark)
            SCREEN=$((1280 * scale / 100))x$((800 * scale / 100)) start_virtual_display
            XDG_CONFIG_HOME=$folder/config QT_QPA_PLATFORM=xcb QT_SCALE_FACTOR=$((scale / 100)) \
                "$build/release/bin/guided_run" --samples "$folder/samples" --pictures "$pictures" "${colours[@]}"
            rm -rf "$folder"
        )
    done
)

# keep SYSTEM LOOK FOLDER: the windows of a run's pictures, with a little of what is around a dialog.
keep() {
    local system=$1 look=$2 folder=$3 pair place width height left top
    local scale=${look#*-}
    for pair in "${shown[@]}"; do
        place=$(identify -format '%[window]' "$folder/${pair%:*}.png")
        [ -n "$place" ] || { echo "pictures: no window in ${pair%:*} of $system, $look" >&2; return 1; }
        IFS=x+ read -r width height left top <<<"$place"
        local around=$((32 * scale / 100))
        if [ "${pair#*:}" = main ]; then
            convert "$folder/${pair%:*}.png" -resize $((10000 / scale))% png:-
        else
            left=$((left > around ? left - around : 0)) top=$((top > around ? top - around : 0))
            convert "$folder/${pair%:*}.png" -crop "$((width + 2 * around))x$((height + 2 * around))+$left+$top" +repage \
                -resize $((10000 / scale))% png:-
        fi | pngquant 64 - >"$kept/$system-${pair#*:}-$look.png"
    done
}

on_linux
PARTS=in_looks LOOKS="${looks[*]}" scripts/trials/windows.sh
rm -rf "$kept" && mkdir -p "$kept"
for look in "${looks[@]}"; do
    keep linux "$look" "$build/linux/pictures/$look"
    keep windows "$look" "$build/windows/pictures/$look"
done
du -sh "$kept"
