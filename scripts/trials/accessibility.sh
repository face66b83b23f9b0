#!/bin/bash
# The program with 32,400 variables as a screen reader sees it, on a virtual display and a session bus of its own.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/display.sh
scripts/setup.sh build display accessibility
cmake --preset release
cmake --build build/release --parallel "${JOBS:-$(nproc)}" --target KDLimitDesk
scratch=$(mktemp -d)
mkdir -p "$scratch/bin" "$scratch/config"
cp build/release/bin/KDLimitDesk build/release/bin/Rules.ini "$scratch/bin/"
cp -r build/release/bin/help "$scratch/bin/"
bench/make_corpus.py "$scratch/applications" >/dev/null
readarray -t templates < <(find "$scratch/applications" -name '*.kdt*' | sort)
scripts/settings_list.sh "${templates[@]}" >"$scratch/bin/KDLimitDesk.ini"
start_virtual_display
export XDG_CONFIG_HOME=$scratch/config QT_QPA_PLATFORM=xcb
status=0
dbus-run-session -- scripts/trials/accessibility.py "$scratch/bin/KDLimitDesk" 32400 || status=$?
rm -rf "$scratch"
exit $status
