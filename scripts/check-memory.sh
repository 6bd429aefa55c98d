#!/usr/bin/env bash
# Runs the tests of documents, ciphers and stores under valgrind's memcheck, on a build without sanitizer. An error, or
# memory that the program's own code has lost for good, fails it. Takes about five minutes.
#   scripts/check-memory.sh [unit...]
# Prints a row for each unit, and writes it as a line of JSON to build/memory/result.json; the reports stand below
# build/memory/reports. What is suppressed, and why, stands in tests/memory/memcheck.supp.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup-packages.sh valgrind
[ $# -gt 0 ] || set -- base64 basedqtxmlparser clientsections commitsteps custominfo custominfoverify customxmlparser des fieldcipher keygen \
    lint md5 plaindocument storedhistory verification version vpnsections
mkdir -p build/memory/reports
{ cmake --preset release && cmake --build --preset release --target "${@/#/tst_}"; } >build/memory/build.log 2>&1 ||
    { tail -n 40 build/memory/build.log && exit 1; }

export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 TZ=Asia/Shanghai
failed=0
rm -f build/memory/result.json
printf '%-22s %8s %8s %11s %8s\n' unit tests errors suppressed seconds
for unit in "$@"; do
    report=$PWD/build/memory/reports/$unit
    begin=$SECONDS
    status=0
    # Each in the directory in which it finds its data. The processes that a test starts are not looked into.
    (cd "build/release/tests/tst_$unit" && valgrind --soname-synonyms=somalloc=nouserintercepts --error-exitcode=99 --leak-check=full \
        --show-leak-kinds=definite --errors-for-leak-kinds=definite --num-callers=30 --log-file="$report.valgrind" \
        --suppressions="$OLDPWD/tests/memory/memcheck.supp" "./tst_$unit") >"$report.log" 2>&1 || status=$?
    errors=$(sed -nE 's/.*ERROR SUMMARY: ([0-9,]+) errors from ([0-9]+) contexts.*/\2/p' "$report.valgrind" | tail -n 1)
    suppressed=$(sed -nE 's/.*ERROR SUMMARY: .*suppressed: ([0-9,]+) from ([0-9]+).*/\2/p' "$report.valgrind" | tail -n 1)
    tests=$(grep -c '^PASS' "$report.log" || true)
    [ "$status" -eq 0 ] || failed=1
    printf '%-22s %8d %8d %11d %8d%s\n' "$unit" "$tests" "${errors:-1}" "${suppressed:-0}" $((SECONDS - begin)) \
        "$([ "$status" -eq 0 ] || echo "  failed ($status)")"
    printf '{"part":"memory","what":"%s","tests":%d,"errors":%d,"suppressed":%d,"failed":%d,"seconds":%d}\n' "$unit" \
        "$tests" "${errors:-1}" "${suppressed:-0}" "$status" $((SECONDS - begin)) >>build/memory/result.json
done
[ "$failed" -eq 0 ] || { echo "The reports stand below build/memory/reports." && exit 1; }
