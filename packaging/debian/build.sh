#!/usr/bin/env bash
# packaging/debian/build.sh: makes the package of Debian 12, tracelyn_VERSION_amd64.deb, and looks at it with lintian. It
# comes to build/debian. $DEBFULLNAME and $DEBEMAIL name its maintainer.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."
. scripts/common.sh

need_packages "${build_packages[@]}" dpkg-dev lintian appstream desktop-file-utils
maintainer="${DEBFULLNAME:-Tracelyn maintainers} <${DEBEMAIL:-maintainers@tracelyn.example}>"
# The dates in the package are those of the commit.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || date +%s)
export SOURCE_DATE_EPOCH

cmake --preset release >/dev/null
build release tracelyn tracelyn-cli
say "making the package"
rm -rf build/debian
mkdir build/debian
cpack --config build/release/CPackConfig.cmake -B build/debian \
    -D "CPACK_DEBIAN_PACKAGE_MAINTAINER=$maintainer" >build/debian/cpack.log 2>&1 || { cat build/debian/cpack.log; exit 1; }
rm -rf build/debian/_CPack_Packages

say "looking at the package"
desktop-file-validate packaging/linux/*.desktop
appstreamcli validate --no-net build/release/packaging/linux/*.metainfo.xml
lintian --allow-root --fail-on error,warning build/debian/*.deb
ls -l build/debian/*.deb
