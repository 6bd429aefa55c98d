#!/usr/bin/env bash
# Checks the three packages of an installation against its newest stored customisation and shows what is in them.
#   scripts/check-packages.sh INSTALLATION
# Ends with an error when a package is missing, when what it contains differs from the store, or when something of the
# generation was left behind.
set -euo pipefail

installation=${1:?usage: check-packages.sh INSTALLATION}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# The one file in a directory of packages that matches the pattern; anything beside it is a left-over.
only_file() {
    local directory=$1 pattern=$2 found
    [ -d "$directory" ] || fail "missing: $directory"
    found=$(find "$directory" -mindepth 1 -maxdepth 1 -name "$pattern")
    [ -n "$found" ] && [ -f "$found" ] || fail "no single package in $directory"
    [ "$(find "$directory" -mindepth 1 | wc -l)" -eq 1 ] || fail "left-overs in $directory"
    printf '%s\n' "$found"
}

same_custom() {
    diff -r "$stored" "$1" || fail "what $2 contains differs from the store"
}

show() {
    printf '\n%s  (%s bytes)\n' "$1" "$(stat -c %s "$1")"
}

newest=$(find "$installation/UpdateCustom" -mindepth 1 -maxdepth 1 -type d -printf '%f\n' | sort -n | tail -n 1)
[ -n "$newest" ] || fail "no stored customisation"
stored="$installation/UpdateCustom/$newest"
echo "Stored customisation: $stored"
ls -l "$stored"

setup=$(only_file "$installation/OrvexSetup" '*.tar.gz')
show "$setup"
mkdir "$work/setup"
tar -xzf "$setup" -C "$work/setup"
same_custom "$work/setup/OrvexClient/custom" "$setup"
echo "  $(tar -tzf "$setup" | wc -l) members, the customisation at OrvexClient/custom:"
tar -tzf "$setup" | grep '^OrvexClient/custom/' | sed 's/^/    /'

for kind in OrvexUpdate OrvexCusUpd; do
    zip=$(only_file "$installation/$kind" '*.zip')
    show "$zip"
    mkdir "$work/$kind" "$work/$kind/client"
    "$installation/7za" x -y -o"$work/$kind" "$zip" >/dev/null
    sed 's/\r$//; s/^/    /' "$work/$kind/comment.txt"
    archive=$(find "$work/$kind" -maxdepth 1 -name 'Dot1X_*.tar.gz')
    [ -f "$archive" ] || fail "no client archive in $zip"
    tar -xzf "$archive" -C "$work/$kind/client"
    custom="$work/$kind/client/OrvexClient/custom"
    [ "$kind" = OrvexUpdate ] || custom="$work/$kind/client/custom"
    same_custom "$custom" "$zip"
    echo "  ${archive##*/}: $(tar -tzf "$archive" | wc -l) members"
done

[ ! -e "$installation/template/Temp" ] || fail "left behind: template/Temp"
echo
echo "All three packages contain the stored customisation, byte for byte."
