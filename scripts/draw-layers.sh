#!/usr/bin/env bash
# Writes docs/layers.dot, the layers and programs as CMake knows them, and draws it as docs/layers.svg.
set -euo pipefail
cd "$(dirname "$0")/.."

command -v dot >/dev/null || {
    echo "draw-layers: dot is missing (Debian package graphviz)" >&2
    exit 1
}
cmake --preset release >/dev/null
cp build/release/layers.dot docs/layers.dot
dot -Tsvg -o docs/layers.svg docs/layers.dot
