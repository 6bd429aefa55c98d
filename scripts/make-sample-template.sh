#!/usr/bin/env bash
# Makes sample client templates for the packaging tests and the demonstration; usage() below says how.
set -euo pipefail

# Names are handled as bytes, so that the Chinese ones are the same under every locale of the caller.
export LC_ALL=C
# Options of the caller's environment would change the archives.
unset TAR_OPTIONS GZIP
umask 022

readonly linuxArchive=OrvexClient_Linux64.tar.gz
readonly macArchive=OrvexClient_MacOS.tar.gz
readonly version='7.2 (E0408)'
readonly memberTime=@1704067200
readonly streamKey=4f7276657853616d706c6554656d706c6174654b6579303132333435363738ff

readonly minFiles=12 maxFiles=20000
readonly minMib=1 maxMib=1024
readonly macFiles=30 macKib=1024

usage()
{
    cat <<EOF
Usage: ${0##*/} [-h] DIRECTORY

Writes two sample client templates, creating DIRECTORY when it does not exist:
  DIRECTORY/$linuxArchive   one top-level directory, OrvexClient
  DIRECTORY/$macArchive     one top-level directory, OrvexClient.pkg
Equal settings give byte-identical archives. Earlier archives are replaced only when both new ones are complete.

  -h  show this help

Environment, for the Linux template:
  ORVEX_TEMPLATE_FILES  number of regular files, $minFiles to $maxFiles (default 400)
  ORVEX_TEMPLATE_MIB    unpacked size in MiB, about, $minMib to $maxMib (default 20)
  TMPDIR                where the trees are built (default /tmp)
EOF
}

fail()
{
    printf '%s: %s\n' "${0##*/}" "$1" >&2
    exit "${2:-1}"
}

refuseArguments()
{
    fail "$1; -h shows the usage" 2
}

requireTools()
{
    local tool
    for tool in chmod gzip head ln mkdir mktemp mv openssl rm seq split stat tar wc; do
        command -v "$tool" >/dev/null || fail "the program \"$tool\" is missing"
    done
    [[ $(tar --version) == *'GNU tar'* ]] || fail 'the program "tar" is not GNU tar'
}

# requireNumber NAME VALUE LOWEST HIGHEST
requireNumber()
{
    if ! [[ $2 =~ ^[1-9][0-9]{0,5}$ ]] || (($2 < $3 || $2 > $4)); then
        refuseArguments "$1 is \"$2\", not a number from $3 to $4"
    fi
}

work=
partials=()
cleanUp()
{
    [[ -z $work ]] || rm -rf -- "$work"
    ((${#partials[@]} == 0)) || rm -f -- "${partials[@]}"
}

# writeFile PATH [LINE...]: without lines the file is empty. Counts the files of the tree in hand.
writeFile()
{
    local path=$1
    shift
    if (($# == 0)); then
        : >"$path"
    else
        printf '%s\n' "$@" >"$path"
    fi
    treeFiles=$((treeFiles + 1))
}

# randomBytes STREAM COUNT: bytes that do not compress, the same for the same STREAM. The stream number is the upper
# half of the counter block, so that no two streams overlap.
randomBytes()
{
    head -c "$2" /dev/zero | openssl enc -aes-256-ctr -K "$streamKey" -iv "$(printf '%016x%016x' "$1" 0)"
}

# textBytes SUBJECT COUNT: whole lines that compress well, at most COUNT bytes.
textBytes()
{
    local record=$'%08.0f  The client reads this entry when it starts.\n          It belongs to '"$1."
    # "%08.0f" and the eight digits it becomes differ by two characters; one more is the end of the line.
    seq -f "$record" 1 $(($2 / (${#record} + 3)))
}

# fillTree TREE FILES KIB ROW...: adds FILES files of KIB in all. A row is
# "kind|directory|prefix|suffix|share of the files|share of the bytes". Each row gets one file at least; with fewer
# files than rows, the first rows alone are used.
fillTree()
{
    local tree=$1 files=$2 kibLeft=$3
    shift 3
    local rows=("$@")
    if ((${#rows[@]} > files)); then
        rows=("${rows[@]:0:files}")
    fi

    local row kind directory prefix suffix fileShare byteShare fileShares=0 byteShares=0
    for row in "${rows[@]}"; do
        IFS='|' read -r kind directory prefix suffix fileShare byteShare <<<"$row"
        fileShares=$((fileShares + fileShare))
        byteShares=$((byteShares + byteShare))
    done

    local spare=$((files - ${#rows[@]})) extra kib stream=0 chunks
    for row in "${rows[@]}"; do
        IFS='|' read -r kind directory prefix suffix fileShare byteShare <<<"$row"
        extra=$((spare * fileShare / fileShares))
        kib=$((kibLeft * byteShare / byteShares))
        spare=$((spare - extra))
        kibLeft=$((kibLeft - kib))
        fileShares=$((fileShares - fileShare))
        byteShares=$((byteShares - byteShare))

        stream=$((stream + 1))
        chunks=$((extra + 1))
        if [[ $kind == text ]]; then
            textBytes "$directory" $((kib * 1024)) >"$work/content"
            chunks=l/$chunks
        else
            randomBytes "$stream" $((kib * 1024)) >"$work/content"
        fi
        mkdir -p -- "$tree/$directory"
        split -n "$chunks" -d -a 5 --additional-suffix="$suffix" "$work/content" "$tree/$directory/$prefix"
    done
    rm -f -- "$work/content"
}

# Default access lists of the directory that holds the tree, and its set-group-ID bit, must not show in the archive.
plainModes()
{
    chmod -R u=rwX,go=rX,ug-s "$1"
}

# buildLinux TREE FILES MIB
buildLinux()
{
    local tree=$1 files=$2 kib=$(($3 * 1024))
    local rows=(
        'text|share/help/en/topics|topic-|.txt|6|6'
        'random|lib/modules|module-|.bin|4|10'
        'text|share/locale/zh_CN/帮助|主题 |.txt|4|3'
        'random|share/data/maps/level 1/level 2/level 3|tile-|.dat|6|4'
        'text|etc/defaults|default-|.conf|2|1'
        'text|share/doc/manual for administrators/part one (wired access)/chapter (a)/notes|page (|).txt|3|3'
        'random|share/icons/scalable/状态 图标|icon-|.dat|3|1'
        'random|lib/modules/.parts|.part-|.bin|1|1'
        'text|share/doc/连接 (自动)|step-|.txt|1|1'
    )

    treeFiles=0
    mkdir -p -- "$tree"/{bin,etc/defaults,lib,share/doc,share/locale/zh_CN,var/cache,var/log} \
        "$tree/share/help/en/topics/network/wired"

    writeFile "$tree/bin/orvexclient" '#!/bin/sh' "echo \"orvexclient $version\""
    writeFile "$tree/bin/orvexctl" '#!/bin/sh' "exec \"\$(dirname \"\$0\")/orvexclient\" \"\$@\""
    writeFile "$tree/bin/orvex-helper" '#!/bin/sh' "echo \"orvex-helper $version\""
    writeFile "$tree/etc/client.conf" '[client]' 'log=var/log/client.log' 'modules=lib/modules'
    writeFile "$tree/.orvexclient-release" "version=$version" 'system=Linux64'
    writeFile "$tree/share/doc/release notes (7.2).txt" "Sample client $version" '' 'Made for packaging.'
    writeFile "$tree/share/help/en/topics/network/wired/access (first steps).txt" 'Plug in the cable and wait.'
    writeFile "$tree/share/locale/zh_CN/说明 文档.txt" '客户端示例' '用于打包测试和演示。'
    writeFile "$tree/share/locale/zh_CN/.索引"
    writeFile "$tree/var/log/client.log"

    randomBytes 0 $((kib * 1024 / 8)) >"$tree/lib/liborvexcore.so.1.0.0"
    treeFiles=$((treeFiles + 1))
    fillTree "$tree" $((files - treeFiles)) $((kib - kib / 8)) "${rows[@]}"

    ln -s orvexclient "$tree/bin/orvex"
    ln -s liborvexcore.so.1.0.0 "$tree/lib/liborvexcore.so.1"
    ln -s liborvexcore.so.1 "$tree/lib/liborvexcore.so"
    ln -s zh_CN "$tree/share/locale/zh"
    ln -s '../locale/zh_CN/说明 文档.txt' "$tree/share/doc/中文 说明.txt"
    ln -s sessions/none "$tree/var/last session"

    plainModes "$tree"
    chmod 0755 "$tree"/bin/orvexclient "$tree"/bin/orvexctl
    chmod 0700 "$tree/bin/orvex-helper"
    chmod 0444 "$tree/etc/client.conf" "$tree/share/locale/zh_CN/说明 文档.txt"
    chmod -R a-w "$tree/etc/defaults"
    chmod u+w "$tree/etc/defaults"
}

# buildMac TREE
buildMac()
{
    local contents=$1/Contents
    local rows=(
        'random|Resources/data|part-|.dat|3|6'
        'text|Resources/en.lproj|topic (|).txt|2|1'
        'text|Resources/zh_CN.lproj/帮助|主题 |.txt|2|1'
    )

    treeFiles=0
    mkdir -p -- "$contents"/{MacOS,Resources/zh_CN.lproj,Resources/cache}

    writeFile "$contents/Info.plist" \
        '<?xml version="1.0" encoding="UTF-8"?>' \
        '<plist version="1.0">' \
        '<dict>' \
        '    <key>CFBundleExecutable</key>' \
        '    <string>orvexclient</string>' \
        '    <key>CFBundleShortVersionString</key>' \
        "    <string>$version</string>" \
        '</dict>' \
        '</plist>'
    writeFile "$contents/MacOS/orvexclient" '#!/bin/sh' "echo \"orvexclient $version\""
    writeFile "$contents/MacOS/orvex-helper" '#!/bin/sh' "echo \"orvex-helper $version\""
    writeFile "$contents/Resources/.release" "version=$version" 'system=MacOS'
    writeFile "$contents/Resources/zh_CN.lproj/说明 文档.txt" '客户端示例'
    writeFile "$contents/Resources/empty.dat"
    fillTree "$contents" $((macFiles - treeFiles)) "$macKib" "${rows[@]}"

    ln -s orvexclient "$contents/MacOS/orvex"
    ln -s zh_CN.lproj "$contents/Resources/zh.lproj"

    plainModes "$1"
    chmod 0755 "$contents"/MacOS/orvexclient "$contents"/MacOS/orvex-helper
    chmod 0444 "$contents/Info.plist"
}

# pack TOP ARCHIVE: packs work/TOP beside the final place of ARCHIVE, so that the move is a mere rename.
pack()
{
    local partial
    partial=$(mktemp -- "$directory/.$2.XXXXXX") || fail "cannot write into \"$directory\""
    partials+=("$partial")
    # The plain GNU format keeps names as the bytes they are; the pax format would recode them by locale.
    tar -C "$work" -cf - --format=gnu --sort=name --owner=0 --group=0 --numeric-owner --mtime="$memberTime" "$1" |
        gzip -n >"$partial" || fail "cannot pack $2"
    chmod 0644 "$partial"
}

# report ARCHIVE: reads the finished archive back.
report()
{
    local size members
    size=$(stat -c %s -- "$directory/$1")
    members=$(tar -tzf "$directory/$1" | wc -l)
    printf '%s: %d bytes, %d members\n' "$1" "$size" "$members"
}

while getopts :h option; do
    case $option in
        h)
            usage
            exit 0
            ;;
        *) refuseArguments "unknown option \"-$OPTARG\"" ;;
    esac
done
shift $((OPTIND - 1))
(($# == 1)) || refuseArguments "one DIRECTORY is wanted, $# given"
[[ -n $1 ]] || refuseArguments 'DIRECTORY is empty'
directory=$1
# A name that begins with a hyphen would be read as an option further on.
[[ $directory == /* ]] || directory=./$directory

files=${ORVEX_TEMPLATE_FILES:-400}
mib=${ORVEX_TEMPLATE_MIB:-20}
requireNumber ORVEX_TEMPLATE_FILES "$files" "$minFiles" "$maxFiles"
requireNumber ORVEX_TEMPLATE_MIB "$mib" "$minMib" "$maxMib"
requireTools

trap cleanUp EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

mkdir -p -- "$directory" || fail "cannot create \"$directory\""
for archive in "$linuxArchive" "$macArchive"; do
    [[ ! -d $directory/$archive ]] || fail "\"$directory/$archive\" is a directory"
done
work=$(mktemp -d) || fail 'cannot create a temporary directory'

buildLinux "$work/OrvexClient" "$files" "$mib"
buildMac "$work/OrvexClient.pkg"
pack OrvexClient "$linuxArchive"
pack OrvexClient.pkg "$macArchive"
mv -fT -- "${partials[0]}" "$directory/$linuxArchive"
mv -fT -- "${partials[1]}" "$directory/$macArchive"
report "$linuxArchive"
report "$macArchive"
