#!/usr/bin/env bash
# Plays every window, page, tab, dialog and menu at 100 %, 150 % and 200 %, in both languages, in a light and a dark
# palette, with fonts of 9 to 14 pt. Leaves the pictures and a contact sheet, index.html, in DIR (build/gallery), prints
# what is clipped, elided, overlapping or unreadable, and ends with 1 when there is anything.
#
# --check takes no pictures. --documents writes the pictures of the documents, docs/pictures, anew.
#
# usage: scripts/gallery.sh [DIR | --check | --documents]
set -euo pipefail
cd "$(dirname "$0")/.."

log=$(mktemp)
trap 'rm -f "$log"' EXIT
{ cmake --preset release && cmake --build --preset release --target orvex_screenshots; } >"$log" 2>&1 || {
    cat "$log" >&2
    exit 2
}
program=$PWD/build/release/tests/screenshots/orvex_screenshots

# SCALE SCREEN ARGUMENT...: on a screen of that many pixels of its own, with nothing but the complaints to be seen.
play() {
    local scale=$1 screen=$2
    shift 2
    env -u QT_STYLE_OVERRIDE -u QT_QPA_PLATFORMTHEME -u QT_FONT_DPI -u WAYLAND_DISPLAY LC_ALL=C.UTF-8 \
        QT_QPA_PLATFORM=xcb QT_SCALE_FACTOR="$scale" QT_LOGGING_RULES='*.debug=false' \
        xvfb-run -a -s "-screen 0 ${screen}x24 -dpi 96" "$program" "$@"
}

if [ "${1:-}" = --documents ]; then
    play 1 1280x1024 --documents docs/pictures
    exit
fi

what=(--check)
if [ "${1:-}" != --check ]; then
    pictures=$(realpath -m "${1:-build/gallery}")
    rm -rf "$pictures"/{100,150,200,index.html}
    mkdir -p "$pictures"
    what=(--gallery "$pictures")
fi
status=0
play 1 1280x1024 "${what[@]}" || status=1
play 1.5 1920x1200 "${what[@]}" || status=1
play 2 2560x1600 "${what[@]}" || status=1
[ "${1:-}" = --check ] || echo "$pictures/index.html"
exit "$status"
