#!/bin/bash
# Every check of the Makefile but make torture, in a clean clone of the present commit (make coverage is a measure).
# Goes on after a failure, so that one run tells all of them; the exit code is 0 only if everything passed. Takes an hour
# or more on two cores.
set -u
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
clone=$(mktemp -d)
trap 'rm -rf "$clone"' EXIT
git clone -q . "$clone" || exit 1
cd "$clone" || exit 1
export CCACHE_BASEDIR=$clone CCACHE_NOHASHDIR=1  # a compiler cache, where there is one, serves every clone

results=()
check() {
    local begin=$SECONDS status=passed
    printf '\n==> %s\n' "$*"
    "$@" </dev/null || status=FAILED
    results+=("$status $*, $((SECONDS - begin)) s")
}
check bash .ci/run
check env SEED="$(date +%Y%m%d)" COUNT=200 PASS=95 make mutants
check make tidy
check env -u DISPLAY -u WAYLAND_DISPLAY make run
check make package-test
check make accessibility-test
check make spreadsheet-test
check make wayland-test
check make windows
check make windows-test
check make bench
check make liveness-test
[ -z "$(git status --porcelain)" ] || results+=("FAILED clean: $(git status --porcelain | head -3)")

printf '\n'
printf '%s\n' "${results[@]}"
! printf '%s\n' "${results[@]}" | grep -q ^FAILED
