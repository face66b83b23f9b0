#!/bin/bash
# The quick gate of a commit: layout, includes, words, scripts, what clang-tidy says of the changed sources, and the
# core's tests. About a minute when all is built. Stops at the first fault; .ci/run is the whole gate. With --texts it
# ends before whatever needs a compiler.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export JOBS="${JOBS:-$(nproc)}"
exec </dev/null
tracked() { git -c safe.directory="$PWD" ls-files -z "$@"; }
step() { printf '==> %s\n' "$*"; }

scripts/setup.sh build check >/dev/null
step "Layout and includes"
tracked '*.cpp' '*.h' | xargs -0 -r -n 40 -P "$JOBS" clang-format --dry-run --Werror
scripts/check_floors.py

step "Words, ends of lines and scripts"
# What lies in samples and data is there byte for byte, and pictures are no text.
texts=(':!samples' ':!tests/fuzz/corpus' ':!tests/qt/services/data' ':!*.png' ':!*.ico' ':!*.svg')
tracked "${texts[@]}" | xargs -0 codespell
git -c safe.directory="$PWD" diff --check HEAD -- "${texts[@]}"
# Prose fits the width that .editorconfig gives; a row of a table and a picture stand on one line.
if tracked '*.md' "${texts[@]}" | LC_ALL=C.UTF-8 xargs -0 grep -nE '^([^|!]|![^[]).{120}'; then
    echo "check: these lines of prose are above 120 columns" >&2
    exit 1
fi
{ tracked '*.sh' scripts/hooks .ci/run; } | xargs -0 shellcheck -x

[ "${1:-}" != --texts ] || exit 0

step "Lint of what changed"
cmake --preset tidy >/dev/null
scripts/tidy.py --changed

step "The core's tests"
cmake --preset core >/dev/null
cmake --build build/core --parallel "$JOBS" | tail -n 1
# shellcheck disable=SC2016  # it is the inner shell's to expand
find build/core/tests -name 'test_*' -type f -perm -u+x ! -path '*/CMakeFiles/*' -print0 |
    xargs -0 -n 1 -P "$JOBS" sh -c '"$0" --gtest_brief=1 >"$0.log" 2>&1 || { cat "$0.log"; exit 255; }'
step "All passed in $SECONDS seconds"
