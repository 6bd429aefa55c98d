#!/usr/bin/env bash
# Renders the drawings of Resources/icons/ into the icon and picture files of Resources/.
#
# Icons are drawn in NAME.svg. Where a drawing NAME-SIZE.svg stands beside it, that one is used for that size.
set -euo pipefail
export LC_ALL=C

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
drawings=$root/Resources/icons
target=$root/Resources

fail()
{
    echo "render-icons: $*" >&2
    exit 1
}

for tool in rsvg-convert:librsvg2-bin icotool:icoutils; do
    command -v "${tool%%:*}" >/dev/null || fail "${tool%%:*} is missing (Debian package ${tool##*:})"
done

work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT

# icon NAME SIZE...: NAME.ico with the sizes in the given order.
icon()
{
    local name=$1 size drawing image
    local images=()
    shift
    for size in "$@"; do
        drawing=$drawings/$name-$size.svg
        [[ -f $drawing ]] || drawing=$drawings/$name.svg
        [[ -f $drawing ]] || fail "no drawing for $name.ico"
        image=$work/$name-$size.png
        rsvg-convert --width "$size" --height "$size" --format png --output "$image" "$drawing"
        # The header of an icon file has one byte for the width; 256 is kept as PNG.
        if ((size >= 256)); then
            images+=("--raw=$image")
        else
            images+=("$image")
        fi
    done
    icotool --create --bit-depth=32 --output="$work/$name.ico" "${images[@]}"
}

# picture NAME DRAWING: NAME.png in the size that the drawing declares.
picture()
{
    local name=$1 drawing=$drawings/$2.svg
    [[ -f $drawing ]] || fail "no drawing for $name.png"
    rsvg-convert --format png --output "$work/$name.png" "$drawing"
}

# The first size is what a label or a style sheet shows: as a plain picture, an icon file is its first image.
icon 63 24 16 32 48 64 96 128
icon Orvex 40 16 24 32 48 64 96 128 256
icon Toolbarabout 32 16 24 48 64 96 128
icon icon4 24 16 32 48 64 96 128
icon icon6 32 16 24 48 64 96 128
icon tqmlogo 32 16 24 48 64 96 128

picture brellogo brellogo
picture tqmlogo tqmlogo-wordmark
picture wylogo_32 wylogo_32

for name in 63.ico Orvex.ico Toolbarabout.ico icon4.ico icon6.ico tqmlogo.ico brellogo.png tqmlogo.png wylogo_32.png; do
    cat -- "$work/$name" >"$target/$name"
done
