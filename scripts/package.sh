#!/usr/bin/env bash
# Builds the Debian package and the archive of the programs into build/package/ and prints their paths.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup-packages.sh >&2
umask 022
# The same sources give the same packages, whenever they are built.
if [ -z "${SOURCE_DATE_EPOCH:-}" ]; then
    SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || date -u -r CHANGELOG.md +%s)
    export SOURCE_DATE_EPOCH
fi
cmake --preset release >&2
cmake --build --preset release --target orvex_programs orvex_package_files >&2
rm -rf build/package
cpack --config build/release/CPackConfig.cmake -B build/package >&2
rm -rf build/package/_CPack_Packages
ls -d "$PWD"/build/package/*
