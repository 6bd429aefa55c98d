#!/usr/bin/env bash
# Builds what it takes and tries for about so many minutes (30 without a number) faults, load, hostile input, odd clocks
# and locales and the way of secrets, at length; fuzzes, and looks for races and wrong memory. Prints a table and writes
# it to docs/reliability.md. Exit code 1: something was found.
#   scripts/soak.sh [minutes] [--only hostile|faults|load|clock|secrets|fuzz|threads|memory]... [--seed N]
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup-packages.sh
cmake --preset release >/dev/null
cmake --build --preset release --target orvex_programs tst_mainwindow tst_soak
exec nice python3 tests/soak/soak.py --build build/release "$@"
