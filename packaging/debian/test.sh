#!/usr/bin/env bash
# packaging/debian/test.sh: installs the package of build.sh into a fresh Debian 12 in a folder, uses it there as a user
# does, and removes it again: nothing may be left. Needs root. The Debian without the package is made once and kept
# below $TRACELYN_DEBIAN_CACHE (~/.cache/tracelyn-debian). Screenshots come to build/debian/screenshots.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."
. scripts/common.sh

if [ "$(id -u)" -ne 0 ]; then
    say "packaging/debian/test.sh needs root: it makes a Debian in a folder"
    exit 1
fi
need_packages mmdebstrap xvfb xdotool imagemagick python3
packaging/debian/build.sh

if ! unshare --mount true 2>/dev/null; then
    say "nothing can be mounted on this machine: the package is built and looked at, but not installed"
    exit 0
fi

# What a desktop has beside the package: it tells types of files, shows manual pages and completes.
desktop=bash-completion,desktop-file-utils,fish,hicolor-icon-theme,libfile-mimeinfo-perl,libglib2.0-bin,man-db
desktop=$desktop,shared-mime-info,xdg-utils,zsh

cache=${TRACELYN_DEBIAN_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/tracelyn-debian}
mkdir -p "$cache/archives"
bare=$cache/debian-12-$(echo "$desktop" | md5sum | cut -c 1-8).tar
if [ ! -f "$bare" ]; then
    say "making a Debian 12"
    # shellcheck disable=SC2016 # apt-get reads these, not the shell
    apt-get indextargets --format 'deb $(SITE) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' |
        sort -u >"$cache/sources.list"
    mmdebstrap --quiet --format=tar --variant=minbase --skip=cleanup/apt/lists --include="$desktop" bookworm "$bare.part" \
        "$cache/sources.list"
    mv "$bare.part" "$bare"
fi

say "installing, using and removing the package"
mkdir -p build/debian/screenshots
# What is mounted below the folder ends with the test.
unshare --mount python3 -B packaging/debian/test-package build/debian/*.deb "$bare" "$cache/archives" \
    build/debian/screenshots
