#!/usr/bin/env bash
# Builds the project and runs every test. --sanitize does so in a build with AddressSanitizer and
# UndefinedBehaviorSanitizer. Ends with CTest's summary.
set -euo pipefail
cd "$(dirname "$0")"

preset=release
case "${1:-}" in
    "") ;;
    --sanitize) preset=sanitize ;;
    *)
        echo "usage: ./test.sh [--sanitize]" >&2
        exit 2
        ;;
esac

scripts/setup-packages.sh
warnings=OFF
[ "${CI:-}" != true ] || warnings=ON
cmake --preset "$preset" -DORVEX_WARNINGS_AS_ERRORS="$warnings"
cmake --build --preset "$preset"
exec ctest --test-dir "build/$preset" --output-on-failure --no-tests=error --parallel "$(nproc)"
