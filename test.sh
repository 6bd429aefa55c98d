#!/usr/bin/env bash
# Builds the project, reads with clang-tidy what has changed, and runs every test. --sanitize builds with
# AddressSanitizer and UndefinedBehaviorSanitizer and leaves clang-tidy out. Ends with CTest's summary.
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
# All findings at once, not only those of the first source that has some.
[ "$preset" = sanitize ] || cmake --build --preset "$preset" --target tidy -- -k 0
# One more than there are processors, because some tests mostly wait for the programs that they start.
exec ctest --test-dir "build/$preset" --output-on-failure --no-tests=error --parallel "$(($(nproc) + 1))"
