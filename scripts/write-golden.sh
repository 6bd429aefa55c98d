#!/usr/bin/env bash
# Writes the outputs of orvex-inspect that its test goldenoutputs compares, tests/inspect/golden/, as the program tells
# them now. Read the differences before keeping them.
#   scripts/write-golden.sh [directory of the outputs]
set -euo pipefail
cd "$(dirname "$0")/.."
outputs=${1:-tests/inspect/golden}
mkdir -p "$outputs"
outputs=$(cd "$outputs" && pwd)

rm -f "$outputs"/*
# It fails on what has changed.
ORVEX_WRITE_GOLDEN=$outputs ctest --test-dir build/release -R '^goldenoutputs$' >/dev/null 2>&1 || true
ls "$outputs" | wc -l
