#!/usr/bin/env bash
# Renders the drawings in src/app/icons to the PNG files that the program carries, and lists them in icons.qrc.
# Needs rsvg-convert (package librsvg2-bin). Run it after a drawing has changed and commit the result.
set -euo pipefail
export LC_ALL=C # the order of the list
cd "$(dirname "$0")/../src/app/icons"

command -v rsvg-convert >/dev/null || { echo "rsvg-convert is missing: install librsvg2-bin" >&2; exit 1; }

render() { # drawing, name, sizes...
    local drawing=$1 name=$2 size
    shift 2
    for size in "$@"; do
        rsvg-convert --width "$size" --height "$size" --output "$name-$size.png" "$drawing"
    done
}

rm -f ./*.png
for name in open previous next fixed-cursor zoom-in zoom-out zoom-reset; do
    render "$name.svg" "$name" 16 24 32 48
done
render app-small.svg app 16 24 # fewer, bolder shapes
render app.svg app 32 48 64 128 256
# Sizes that only a Linux desktop asks for.
linux=../../../packaging/linux
render app-small.svg "$linux/app" 22
render app.svg "$linux/app" 512

{
    echo '<RCC>'
    echo '    <qresource prefix="/icons">'
    printf '        <file>%s</file>\n' *.png
    echo '    </qresource>'
    echo '</RCC>'
} >icons.qrc
