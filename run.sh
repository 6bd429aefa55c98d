#!/usr/bin/env bash
# Opens the program on an installation prepared with a sample client template. Without a display it plays a whole
# customisation through the real windows under a virtual one, and checks the packages that come out.
set -euo pipefail
cd "$(dirname "$0")"
source_directory=$PWD

scripts/setup-packages.sh
cmake --preset release
cmake --build --preset release --target orvex_programs orvexplayer
build=$source_directory/build/release

# $1: where the installation shall stand
prepare() {
    cmake --install "$build" --prefix "$1" >/dev/null
    [ -e "$1/template/OrvexClient_Linux64.tar.gz" ] || scripts/make-sample-template.sh "$1/template"
}

if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
    installation=$source_directory/build/sample/OrvexManager
    prepare "$installation"
    echo "The installation stands in $installation"
    # The customised update packs `custom` of the working directory, so the program is started from its own.
    cd "$installation"
    exec ./OrvexManager
fi

installation=$source_directory/build/road/OrvexManager
shots=$source_directory/build/road/screenshots
rm -rf "$source_directory/build/road"
mkdir -p "$shots" "$source_directory/build/road/icons"
prepare "$installation"
cp Resources/tqmlogo.png "$source_directory/build/road/icons/client.png"
cp Resources/icon4.ico "$source_directory/build/road/icons/client.ico"

echo
echo "There is no display: playing the whole road under a virtual one."
export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb
export QT_PLUGIN_PATH=$build/player QT_QPA_GENERIC_PLUGINS=orvexplayer:road
export ORVEX_PLAY_FD=3 ORVEX_PLAY_SHOTS=$shots ORVEX_PLAY_ICONS=$source_directory/build/road/icons
export ORVEX_PLAY_REMARK='北京分部 客户端 1.0'
log=$source_directory/build/road/program.log
if ! (cd "$installation" && timeout 600 xvfb-run -a -s '-screen 0 1280x1024x24' ./OrvexManager 3>&1 >"$log" 2>&1); then
    tail -n 20 "$log" >&2
    echo "FAILED: the program did not come to its end" >&2
    exit 1
fi
unset QT_PLUGIN_PATH QT_QPA_GENERIC_PLUGINS

echo
scripts/check-packages.sh "$installation"
echo
"$installation/orvex-inspect" verify
"$installation/orvex-inspect" report latest -o "$source_directory/build/road/report.html"
echo
echo "Report:      $source_directory/build/road/report.html"
echo "Packages:    $installation/{OrvexSetup,OrvexUpdate,OrvexCusUpd}"
echo "Screenshots: $shots"
