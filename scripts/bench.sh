#!/usr/bin/env bash
# Builds what it takes, measures every figure of docs/performance.md beside its floor, prints the table, and writes it as
# JSON, with the plots of growth, to build/bench-results. Options go to bench/suite.py: --quick for a look in a few
# minutes, --only NAME for some of the rows.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup-packages.sh libbenchmark-dev gnuplot-nox python3
cmake --preset release -DORVEX_BENCH=ON
cmake --build --preset release --target bench
exec python3 bench/suite.py --build build/release --results build/bench-results "$@"
