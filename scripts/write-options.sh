#!/usr/bin/env bash
# Writes the tables of the options of a customisation, docs/options.md and docs/options.zh.md, as orvex-inspect tells
# them from the catalogue of the record.
#   scripts/write-options.sh [directory of the documents]
set -euo pipefail
cd "$(dirname "$0")/.."
documents=${1:-docs}
inspect=build/release/OrvexManager/orvex-inspect

{
    printf '# Options of a customisation\n\nWritten by `scripts/write-options.sh`; read by programs from `orvex-inspect fields --json`.\n\n'
    "$inspect" --lang en fields --markdown
} >"$documents/options.md"
{
    printf '# 定制选项\n\n由`scripts/write-options.sh`生成；程序可读取`orvex-inspect fields --json`。\n\n'
    "$inspect" --lang zh fields --markdown
} >"$documents/options.zh.md"

for document in administrator.md administrator.zh.md; do
    language=en
    [ "$document" = administrator.md ] || language=zh
    [ "$documents" = docs ] || cp "docs/$document" "$documents/"
    scripts/options_table.py "$inspect" "$language" "$documents/$document"
done
