#!/bin/bash
# Builds the Debian package into build/packages and has Debian's own checks look at it. The same sources make the same
# package: its time is that of the changelog.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh build package

# The version and its date are said where people look for them, and once in CMakeLists.txt.
of_cmake() { sed -n "s/$1/\1/p" CMakeLists.txt; }
of_changelog() { dpkg-parsechangelog -l packaging/linux/changelog -S "$1"; }
version=$(of_cmake '^project(KDLimitDesk VERSION \([0-9.]*\) .*')
day=$(of_cmake '^set(KD_RELEASE_DATE \(.*\))$')
SOURCE_DATE_EPOCH=$(of_changelog Timestamp)
export SOURCE_DATE_EPOCH
expect() { [ "$2" = "$3" ] || { echo "package: $1 says $2, CMakeLists.txt says $3" >&2; exit 1; }; }
expect packaging/linux/changelog "$(of_changelog Version)" "$version"
expect packaging/linux/changelog "$(date -u -d "@$SOURCE_DATE_EPOCH" +%F)" "$day"
heading="## $version - $day"
expect CHANGELOG.md "$(grep -xF "$heading" CHANGELOG.md || sed -n '/^## /{p;q}' CHANGELOG.md)" "$heading"
named=$(grep -oE '(kdlimitdesk_|KDLimitDesk-)[0-9.]+[0-9]' README.md | sed 's/.*[_-]//' | sort -u | xargs)
expect README.md "$named" "$version"

cmake --preset package
cmake --build build/package --parallel "${JOBS:-$(nproc)}" --target KDLimitDesk
rm -f build/packages/*.deb
(cd build/package && cpack -G DEB)
package=$(ls build/packages/kdlimitdesk_*.deb)
desktop-file-validate packaging/linux/*.desktop
appstreamcli validate --no-net build/package/packaging/*.metainfo.xml
lintian --allow-root --fail-on error,warning --suppress-tags-from-file packaging/linux/lintian-exceptions "$package"
echo "package: $package, $(stat -c %s "$package") bytes"
