#!/bin/bash
# Installs the Debian package of build/packages, does the main job in the installed program started from its desktop
# entry, with a home folder of its own, and removes the package. Needs root or sudo.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/display.sh
scripts/setup.sh display package
package=$(ls "$PWD"/build/packages/kdlimitdesk_*.deb)
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends --reinstall "$package" </dev/null
start_virtual_display
home=$(mktemp -d)
export HOME=$home XDG_CONFIG_HOME=$home/.config XDG_DATA_HOME=$home/.local/share
scripts/trials/program.sh "$XDG_DATA_HOME/kdlimitdesk/samples" \
    gio launch /usr/share/applications/com.example.kdlimitdesk.desktop
rm -rf "$home"
left() { find /usr -name '*kdlimitdesk*' -not -path '*/icons/*cache*' 2>/dev/null; }
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get purge -q -y kdlimitdesk </dev/null
[ -z "$(left)" ] || { echo "package: left behind: $(left)" >&2; exit 1; }
echo "package: installed, tried, removed"
