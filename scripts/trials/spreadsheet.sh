#!/bin/bash
# Cells to and from LibreOffice Calc over the clipboard of a virtual display. With --capture FOLDER what Calc offers is
# kept in files.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/display.sh
scripts/setup.sh build display spreadsheet
cmake --preset dev
cmake --build build/dev --parallel "${JOBS:-$(nproc)}" --target clipboard_trial
start_virtual_display
home=$(mktemp -d)
HOME=$home SAL_USE_VCLPLUGIN=gen soffice --calc --norestore --nologo --nofirststartwizard \
    '--accept=socket,host=127.0.0.1,port=2091;urp;' >/dev/null 2>&1 &
office=$!
status=0
QT_QPA_PLATFORM=xcb scripts/trials/spreadsheet.py build/dev/bin/clipboard_trial "$@" || status=$?
# What was started is a launcher with the program below it; these two are ended and no other office program.
pkill -P "$office" 2>/dev/null || true
kill "$office" 2>/dev/null || true
rm -rf "$home"
exit $status
