#!/bin/bash
# Installs what is missing of scripts/packages.txt for the jobs named there (build when none is named).
# Needs root or sudo only when something is missing; without either it says what to install and stops.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
[ $# -gt 0 ] || set -- build

packages=()
while read -r package jobs _; do
    case "$package" in '' | '#'*) continue ;; esac
    for job in "$@"; do
        [ "$job" = "$jobs" ] && packages+=("$package")
    done
done <"$here/packages.txt"

if ! command -v dpkg-query >/dev/null; then
    echo "setup: not a Debian system; taking for granted what these packages hold: ${packages[*]}"
    exit 0
fi

missing=()
installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${packages[@]}" 2>/dev/null)
for package in "${packages[@]}"; do
    grep -qxF "installed $package" <<<"$installed" || missing+=("$package")
done
if [ ${#missing[@]} -eq 0 ]; then
    echo "setup: nothing to do"
    exit 0
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
    [ -t 0 ] || as_root=(sudo -n)
    if ! command -v sudo >/dev/null || ! "${as_root[@]}" true; then
        echo "setup: missing, and neither root nor sudo is at hand. Please have these packages installed:" >&2
        echo "    apt-get install --no-install-recommends ${missing[*]}" >&2
        exit 1
    fi
fi

echo "setup: installing ${missing[*]}"
apt_get() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y "$@" </dev/null; }
# The package lists may be old or absent; installing goes first from those at hand.
apt_get install --no-install-recommends "${missing[@]}" >/dev/null 2>&1 ||
    { apt_get update && apt_get install --no-install-recommends "${missing[@]}"; } ||
    { echo "setup: could not install ${missing[*]}" >&2; exit 1; }
