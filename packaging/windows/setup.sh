#!/usr/bin/env bash
# packaging/windows/setup.sh: makes tracelyn-VERSION-setup.exe and tracelyn-VERSION-windows.zip, the same programs
# without a setup, from what build.sh has built. They come to build/windows.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

need_packages "${setup_packages[@]}"
"$windows_folder/build.sh" >/dev/null

version=$(sed -n 's/^project(Tracelyn VERSION \([0-9.]*\).*/\1/p' "$project_folder/CMakeLists.txt")
setup=$windows_build/tracelyn-$version-setup.exe
archive=$windows_build/tracelyn-$version-windows.zip
rm -f "$setup" "$archive"

say "making the setup"
makensis -V2 -WX "-DVERSION=$version" "-DPROGRAMS=$windows_build/programs" "-DICON=$windows_build/tracelyn.ico" \
    "-DMANUAL=$project_folder/docs/manual.md" "-DOUTPUT=$setup" "$windows_folder/setup.nsi"

folder=$windows_build/tracelyn-$version
rm -rf "$folder"
mkdir "$folder"
cp "$windows_build"/programs/*.exe "$folder"
cp "$project_folder/docs/manual.md" "$folder/manual.txt"
(cd "$windows_build" && zip -q -r -X "$archive" "tracelyn-$version")
rm -rf "$folder"
ls -l "$setup" "$archive"
