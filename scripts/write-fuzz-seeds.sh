#!/usr/bin/env bash
# Writes the seeds of the fuzz targets, tests/fuzz/seeds/, from what the program itself makes: a customisation that a
# player makes with the real program and a tiny template, what the tests of the room leave, and the language files cut
# to size. Only those seeds stay that reach something of their own.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset release
cmake --build --preset release --target OrvexManager orvexplayer tst_xml tst_custominfoload tst_common tst_mainwindow
cmake --preset fuzz
cmake --build --preset fuzz
ctest --test-dir build/release -R '^(clientsections|custominfoload|plaindocument|sweep|version)$' --output-on-failure
built=$PWD/build/release
fuzzers=$PWD/build/fuzz/tests/fuzz

work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
raw=$work/raw
mkdir -p "$raw"/{base64,cipher,document,language,package,plain,verification,vif}

# A client of a few files, and pictures of a few bytes.
store=$work/store
mkdir -m 700 "$work/run"
mkdir -p "$store"/{Resources,template} "$work/client/OrvexClient/bin" "$work/icons"
manager=$(find "$built" -name OrvexManager -type f -perm -u+x | head -n 1)
cp "$manager" "$(dirname "$manager")/7za" "$store"
cp Resources/Language_*.xml "$store/Resources"
printf '[config]\nArea=tqm\nLangCode=1033\n' >"$store/config.ini"
printf '#!/bin/sh\n' >"$work/client/OrvexClient/bin/orvexclient"
ln -s orvexclient "$work/client/OrvexClient/bin/orvex"
ln "$work/client/OrvexClient/bin/orvexclient" "$work/client/OrvexClient/bin/same"
tar -C "$work/client" -czf "$store/template/OrvexClient_Linux64.tar.gz" OrvexClient
printf 'P1 1 1 0 ' >"$work/icons/client.png"
cp "$work/icons/client.png" "$work/icons/client.ico"
# The instance lock is one for the machine, so another that runs is waited for.
for _ in 1 2 3 4 5 6 7 8 9 10; do
    (
        cd "$store"
        env QT_QPA_PLATFORM=offscreen QT_PLUGIN_PATH="$built/player" QT_QPA_GENERIC_PLUGINS=orvexplayer:road \
            LC_ALL=C.UTF-8 XDG_RUNTIME_DIR="$work/run" ORVEX_PLAY_FD=3 ORVEX_PLAY_REMARK='示例 one' \
            ORVEX_PLAY_ICONS="$work/icons" \
            timeout 30 ./OrvexManager 3>>"$work/played" >>"$work/output" 2>&1
    ) || true
    [ ! -d "$store/UpdateCustom" ] || break
    sleep 3
done
[ -d "$store/OrvexCusUpd" ] || { cat "$work/played" "$work/output" && exit 1; }

# byte N...: bytes by their numbers
byte()
{
    local number
    for number in "$@"; do
        printf '%b' "\\x$(printf %x "$number")"
    done
}

count=0
for document in "$store"/UpdateCustom/*/OrvexCustom.xml \
    "$built"/tests/tst_{clientsections,custominfoload,plaindocument,sweep}/{custom,UpdateCustom/*}/OrvexCustom.xml; do
    [ -s "$document" ] || continue
    count=$((count + 1))
    cp "$document" "$raw/document/$count"
    cp "$document" "$raw/plain/$count"
    { byte 1 && cat "$document"; } >"$raw/verification/right-$count"
    { byte 2 && cat "$document"; } >"$raw/verification/turned-$count"
    { byte 3 && cat "$document"; } >"$raw/verification/own-$count"
    # Its secrets, with room for them.
    sed -nE 's/.*<(preSharedKey|L2TPTunnelPwd|uninstallPassword)>([A-Za-z0-9+/=]+)<.*/\2/p' "$document" |
        while read -r secret; do
            printf '%s' "$secret" >"$raw/base64/secret-$count-${#secret}"
            { byte 0 1 0 && printf '%s' "$secret"; } >"$raw/cipher/secret-$count-${#secret}"
        done
done
for entry in "$store"/UpdateCustom/*/; do
    { byte 0 0 1 && cat "$entry/OrvexCustomXml.vrf" "$entry/OrvexCustom.xml"; } >"$raw/verification/given"
done

printf '%s' 'QUJD' >"$raw/base64/whole"
printf '%s' 'QUI=QQ==QUJD' >"$raw/base64/padded-within"
{ byte 2 0 64 && printf 'secret'; } >"$raw/cipher/there-and-back"
{ byte 1 0 64 && printf '0123456789abcdef'; } >"$raw/cipher/any-blocks"

version=V7.2-E0408EV700R002B040801
{ byte 0 && cat "$built/tests/tst_version/Orvex.vif"; } >"$raw/vif/given"
{ byte 1 && printf '%s' 'aGVsbG8gd29ybGQgaGVsbG8gd29ybGQ='; } >"$raw/vif/signed"
{ byte 2 && printf '%s' "$version"; } >"$raw/vif/26"
{ byte 2 && printf '%s' "${version}P03"; } >"$raw/vif/29"

for language in en zh; do
    { head -n 60 "Resources/Language_$language.xml" && echo '</language>'; } >"$raw/language/$language"
done
printf '<?xml version="1.0" encoding="UTF-8"?>\n<language>\n    <!-- x -->\n    %s\n</language>\n' \
    '<control key="a">&amp;b &lt;c</control>' >"$raw/language/small"

kind=0
for package in "$store"/OrvexSetup/*.tar.gz "$store"/OrvexUpdate/*.zip "$store"/OrvexCusUpd/*.zip; do
    { byte $kind && cat "$package"; } >"$raw/package/packed-$kind"
    mkdir "$work/$kind"
    case $package in
        *.zip) (cd "$work/$kind" && "$store/7za" e -y "$package" >"$work/unpacked") && package=$(echo "$work/$kind"/Dot1X_*) ;;
    esac
    { byte $((kind + 3)) && gzip -dc "$package"; } >"$raw/package/tar-$kind"
    kind=$((kind + 1))
done
{ byte 3 && head -c 1024 /dev/zero; } >"$raw/package/empty"
# Names that lead out of an archive, and what is no plain file.
mkdir -p "$work/odd/OrvexClient/custom"
cp "$store"/custom/* "$work/odd/OrvexClient/custom"
truncate -s 1M "$work/odd/OrvexClient/holes"
mkfifo "$work/odd/OrvexClient/pipe"
tar -C "$work/odd" --sparse --format=posix -cf "$work/odd.tar" OrvexClient
{ byte 3 && cat "$work/odd.tar"; } >"$raw/package/odd"
for name in ../above /absolute ./OrvexClient/../above "$(printf '%0200d' 0)"; do
    tar -C "$store" -P --transform "s|.*|$name|" -b 1 -cf "$work/odd.tar" config.ini
    { byte 3 && cat "$work/odd.tar"; } >"$raw/package/name-$(printf '%s' "$name" | tr -cd 'a-zA-Z' | head -c 20)"
done

for target in "$raw"/*/; do
    target=$(basename "$target")
    seeds=tests/fuzz/seeds/$target
    mkdir -p "$seeds" "$work/merged/$target"
    ORVEX_FUZZ_SCRATCH=$work "$fuzzers/fuzz_$target" -merge=1 -max_len=100000 "$work/merged/$target" "$raw/$target" 2>"$work/merge.log" ||
        { cat "$work/merge.log" && exit 1; }
    rm -f "$seeds"/*
    # Under their given names, which say what they are.
    for file in "$raw/$target"/*; do
        [ ! -e "$work/merged/$target/$(sha1sum "$file" | cut -d ' ' -f 1)" ] || cp "$file" "$seeds"
    done
    echo "$target: $(find "$seeds" -type f | wc -l) seeds, $(cat "$seeds"/* | wc -c) bytes"
done
