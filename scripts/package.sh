#!/bin/bash
# Builds the Debian package into build/packages and has Debian's own checks look at it.
set -eu -o pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh build package
cmake --preset package
cmake --build build/package --parallel "${JOBS:-$(nproc)}" --target KDLimitDesk
rm -f build/packages/*.deb
(cd build/package && cpack -G DEB)
package=$(ls build/packages/kdlimitdesk_*.deb)
desktop-file-validate packaging/linux/*.desktop
appstreamcli validate --no-net build/package/packaging/*.metainfo.xml
lintian --allow-root --fail-on error,warning --suppress-tags-from-file packaging/linux/lintian-exceptions "$package"
echo "package: $package, $(stat -c %s "$package") bytes"
