#!/usr/bin/env bash
# packaging/windows/build.sh [--clean]: builds the programs for Windows, and all their tests, on Debian 12. What they
# are linked with is built first, once, and kept below $TRACELYN_WINDOWS_CACHE (~/.cache/tracelyn-windows).
#   --clean   first removes what earlier runs have built, the cache too
# The programs come to build/windows/programs.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

case ${1:-} in
'') ;;
--clean) rm -rf "$cache_folder/installed" "$cache_folder/work" "$windows_build" ;;
*)
    sed -n '2,5s/^# //p' "$0"
    exit 2
    ;;
esac

"$windows_folder/dependencies.sh"

say "building (windows)"
cmake -S "$project_folder" -B "$windows_build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    "-DCMAKE_TOOLCHAIN_FILE=$windows_folder/toolchain.cmake" "-DTRACELYN_WINDOWS_DEPS=$dependencies_folder" \
    "-DCMAKE_PREFIX_PATH=$dependencies_folder" "-DCMAKE_CROSSCOMPILING_EMULATOR=$windows_folder/wine-run" >/dev/null
cmake --build "$windows_build" -- --quiet

programs=$windows_build/unchecked
rm -rf "$programs" "$windows_build/programs"
mkdir "$programs"
for program in app/tracelyn.exe cli/tracelyn-cli.exe; do
    x86_64-w64-mingw32-strip -o "$programs/$(basename "$program")" "$windows_build/src/$program"
done
"$windows_folder/check-programs" "$programs"/*.exe
mv "$programs" "$windows_build/programs"
ls -l "$windows_build/programs"
