#!/usr/bin/env bash
# packaging/windows/test.sh: shows under wine that the programs of build.sh work: all unit tests, the tool's output
# beside that of Linux, the real window, the registry, the setup. Screenshots come to build/windows/screenshots.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

need_packages "${build_packages[@]}" "${wine_packages[@]}"
"$windows_folder/build.sh"
build release tracelyn-cli
screenshots=$windows_build/screenshots
rm -rf "$screenshots"
mkdir -p "$screenshots"

in_wine() {
    in_time env -u WAYLAND_DISPLAY python3 -B "$project_folder/scripts/desktop.py" "$windows_folder/wine.py" "$@"
}

# Ends a command that takes longer than any of them does, on a slow machine too.
in_time() {
    timeout --kill-after=30 900 "$@"
}

# wine's windows now and then wait for ever: what drives them gets a second chance, and says so.
twice() {
    in_time "$@" || { say "once more" && in_time "$@"; }
}

say "unit tests (wine)"
in_wine ctest --test-dir "$windows_build" --output-on-failure --timeout 300 -LE e2e -j 2

# Beside what needs no keys.
looks=$windows_build/look-at-windows.log
twice "$windows_folder/look-at-windows" "$windows_build/programs/tracelyn.exe" "$screenshots" >"$looks" 2>&1 &
look=$!
say "the tool's output (wine)"
in_wine "$windows_folder/compare-with-linux" "$windows_build/programs/tracelyn-cli.exe" \
    "$project_folder/build/release/src/cli/tracelyn-cli"
say "Ctrl+C (wine)"
in_time python3 -B "$project_folder/scripts/desktop.py" "$windows_folder/test-ctrl-c" "$windows_build/programs/tracelyn-cli.exe"
say "the registry, and pictures of windows and dialogs (wine)"
wait "$look" || { cat "$looks"; exit 1; }
cat "$looks"

say "the window (wine)"
twice python3 -B "$project_folder/tests/e2e/run_window.py" "$windows_build"/programs/tracelyn{,-cli}.exe
say "the setup (wine)"
"$windows_folder/setup.sh"
twice "$windows_folder/test-setup" "$windows_build"/tracelyn-*-setup.exe "$project_folder/samples/bend01.paf" "$screenshots"
