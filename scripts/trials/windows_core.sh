#!/bin/bash
# Builds the core and its tests for Windows and runs them under wine: with each code page of the users' languages that
# counts, with decimal point and comma. Needs neither Qt nor a display. LANGUAGES says which languages, if not all.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/wine.sh
scripts/setup.sh build windows-core
cmake --preset windows-core
cmake --build build/windows-core --parallel "${JOBS:-$(nproc)}"
start_wine ""
for language in ${LANGUAGES:-en_US de_DE pl_PL ru_RU}; do
    printf '\n==> Windows in %s\n' "$language"
    as_windows_of "$language" ctest --preset windows-core --parallel "${JOBS:-$(nproc)}"
done
