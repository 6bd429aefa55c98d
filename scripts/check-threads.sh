#!/usr/bin/env bash
# Builds the tests of all that has threads with ThreadSanitizer and runs them: worker, progress window, commit, one worker
# at a time, the table of texts, and the threads of orvex-inspect's reader. A race fails it.
#   scripts/check-threads.sh [unit...]
# Prints a row for each unit, and writes it as a line of JSON to build/thread/result.json; the reports stand below
# build/thread/reports. What is suppressed, and why, stands in tests/threads/tsan.supp.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup-packages.sh
[ $# -gt 0 ] || set -- finishdlg finishfaults languageparser log openedwindows orvexmanager_commit orvexmanager_escape \
    orvexmanager_failures packingwait picture storereader tellingcommands untouchedstore workthread
mkdir -p build/thread/reports
{ cmake --preset thread && cmake --build --preset thread --target "${@/#/tst_}"; } >build/thread/build.log 2>&1 ||
    { tail -n 40 build/thread/build.log && exit 1; }

failed=0
rm -f build/thread/result.json
printf '%-22s %8s %8s %11s %8s\n' unit tests races suppressed seconds
for unit in "$@"; do
    report=build/thread/reports/$unit
    begin=$SECONDS
    status=0
    # The reports go to files of their own, because a test may look at what its processes print.
    rm -f "$report".*
    TSAN_OPTIONS="suppressions=$PWD/tests/threads/tsan.supp print_suppressions=1 log_path=$PWD/$report history_size=5" \
        ctest --test-dir build/thread -R "^$unit\$" --no-tests=error --output-on-failure --verbose >"$report.log" 2>&1 || status=1
    cat "$report".[0-9]* >"$report.races" 2>/dev/null || true
    races=$(grep -c '^WARNING: ThreadSanitizer' "$report.races" || true)
    suppressed=$(sed -nE 's/^ThreadSanitizer: Matched ([0-9]+) suppressions.*/\1/p' "$report.races" | awk '{ sum += $1 } END { print sum + 0 }')
    tests=$(grep -cE '^([0-9]+: )?PASS' "$report.log" || true)
    [ "$status" -eq 0 ] && [ "$races" -eq 0 ] || failed=1
    printf '%-22s %8d %8d %11d %8d%s\n' "$unit" "$tests" "$races" "$suppressed" $((SECONDS - begin)) \
        "$([ "$status" -eq 0 ] || echo '  failed')"
    printf '{"part":"threads","what":"%s","tests":%d,"errors":%d,"suppressed":%d,"failed":%d,"seconds":%d}\n' "$unit" \
        "$tests" "$races" "$suppressed" "$status" $((SECONDS - begin)) >>build/thread/result.json
done
[ "$failed" -eq 0 ] || { echo "The reports stand below build/thread/reports." && exit 1; }
