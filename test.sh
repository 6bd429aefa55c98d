#!/usr/bin/env bash
# Builds the project, reads with clang-tidy what has changed, and runs every test but those labelled `package`. --sanitize
# builds with AddressSanitizer and UndefinedBehaviorSanitizer and leaves clang-tidy out. --package runs the tests labelled
# `package` alone, which install the Debian package in a namespace of their own: as root, or by sudo without a
# password. Ends with CTest's summary.
set -euo pipefail
cd "$(dirname "$0")"

preset=release
chosen=(--label-exclude '^package$')
case "${1:-}" in
    "") ;;
    --sanitize) preset=sanitize ;;
    --package) chosen=(--label-regex '^package$') ;;
    *)
        echo "usage: ./test.sh [--sanitize | --package]" >&2
        exit 2
        ;;
esac

scripts/setup-packages.sh
warnings=OFF
[ "${CI:-}" != true ] || warnings=ON
cmake --preset "$preset" -DORVEX_WARNINGS_AS_ERRORS="$warnings"
if [ "${1:-}" = --package ]; then
    cmake --build --preset "$preset" --target tst_package
    exec ctest --test-dir "build/$preset" --output-on-failure --no-tests=error "${chosen[@]}"
fi
cmake --build --preset "$preset"
# All findings at once, not only those of the first source that has some.
[ "$preset" = sanitize ] || cmake --build --preset "$preset" --target tidy -- -k 0
# One more than there are processors, because some tests mostly wait for the programs that they start.
exec ctest --test-dir "build/$preset" --output-on-failure --no-tests=error --parallel "$(($(nproc) + 1))" \
    "${chosen[@]}"
