#!/usr/bin/env python3
"""Writes the table of options into the administrator's handbook, between its two marks.

The fields come from `orvex-inspect fields --json`, what each of them does from docs/options-sentences.tsv, whose columns
are the path of the field, its limits in figures, the sentence in English and the sentence in Chinese.

  scripts/options_table.py ORVEX_INSPECT en|zh HANDBOOK [SENTENCES]
"""

import json
import pathlib
import subprocess
import sys

BEGIN = "<!-- options: written by scripts/write-options.sh -->"
END = "<!-- end of options -->"

WORDS = {
    "en": {
        "heads": ("Option", "What it does", "Default", "Limits", "Path"),
        "on": "on", "off": "off", "none": "none", "empty": "empty", "secret": "secret",
        "longest": "at most %d characters", "between": "; ", "only": "With the component %s.", "or": " or ",
    },
    "zh": {
        "heads": ("选项", "作用", "缺省值", "限制", "路径"),
        "on": "启用", "off": "不启用", "none": "无", "empty": "空", "secret": "保密",
        "longest": "最多%d个字符", "between": "；", "only": "选择%s组件时可设置。", "or": "或",
    },
}


def sentences(path):
    """By field: limits in figures and the sentence of each language."""
    rows = [line.split("\t") for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines()]
    heads, rows = rows[0], rows[1:]
    if heads != ["path", "limits", "en", "zh"]:
        sys.exit(f"{path}: unknown columns {heads}")
    told = {}
    for row in rows:
        if len(row) != 4 or not row[2].strip() or not row[3].strip() or row[0] in told:
            sys.exit(f"{path}: {row[0]}: one row with a sentence in both languages is needed")
        told[row[0]] = {"limits": row[1], "en": row[2], "zh": row[3]}
    return told


def cell(text):
    return text.replace("\\", "\\\\").replace("|", "\\|").replace("*", "\\*") if "`" not in text else text


def default_of(field, words):
    """The default as the administrator sees it."""
    value, offered = field["default"], {v["value"]: v["shown"] for v in field["values"]}
    if value in offered:
        return offered[value]
    if offered and value.isdigit():  # a sum of what is chosen
        return words["between"].join(s for v, s in offered.items() if v.isdigit() and int(value) & int(v)) or words["none"]
    if field["type"] in ("flag", "boolean"):
        return words["on"] if value in ("1", "true") else words["off"]
    if value == "":
        return words["empty"]
    return value


def limits_of(field, told, words):
    parts = []
    if told["limits"]:
        parts.append(told["limits"])
    elif field["values"]:
        parts.append(words["between"].join(words["off"] if v["shown"] == "0" else v["shown"] for v in field["values"]))
    elif field["maxLength"]:
        parts.append(words["longest"] % field["maxLength"])
    if field["secret"]:
        parts.append(words["secret"])
    return words["between"].join(parts)


def table(fields, titles, told, language):
    words = WORDS[language]
    text = ""
    section = None
    for field in fields:
        path, row = field["path"], told[field["path"]]
        if path.split("/")[0] != section:
            section = path.split("/")[0]
            text += f"\n### {titles[section]}\n\n"
            if field["component"]:
                text += words["only"] % words["or"].join(field["component"]) + "\n\n"
            text += "| " + " | ".join(words["heads"]) + " |\n" + "|---" * 5 + "|\n"
        default = default_of(field, words)
        if field["type"] == "number" and default in ("0", "1") and not row["limits"]:
            default = words["on"] if default == "1" else words["off"]
        label = field["label"].strip().rstrip(":：")
        text += "| " + " | ".join((cell(label), cell(row[language]), cell(default),
                                   cell(limits_of(field, row, words)), f"`{path}`")) + " |\n"
    return text + "\n"


def write(ask, language, handbook, sentences_file):
    """Writes the table anew; leaves by SystemExit when fields and sentences do not agree.

    ask  answers what orvex-inspect tells to the arguments
    """
    told = sentences(sentences_file)
    fields = json.loads(ask("--lang", language, "fields", "--json"))
    # The titles of the sections stand in the tables, in the order of the fields.
    names = [line[3:] for line in ask("--lang", language, "fields", "--markdown").splitlines() if line.startswith("## ")]
    sections = list(dict.fromkeys(field["path"].split("/")[0] for field in fields))
    wrong = {field["path"] for field in fields} ^ set(told)
    if wrong:
        sys.exit("a field without a sentence, or a sentence without a field: " + ", ".join(sorted(wrong)))
    text = pathlib.Path(handbook).read_text(encoding="utf-8")
    before, rest = text.split(BEGIN)
    behind = rest.split(END)[1]
    written = before + BEGIN + "\n" + table(fields, dict(zip(sections, names)), told, language) + END + behind
    pathlib.Path(handbook).write_text(written, encoding="utf-8")


def main():
    inspect, language, handbook = sys.argv[1:4]
    write(lambda *arguments: subprocess.run([inspect, *arguments], check=True, stdout=subprocess.PIPE).stdout.decode(),
          language, handbook, sys.argv[4] if len(sys.argv) > 4 else "docs/options-sentences.tsv")


if __name__ == "__main__":
    main()
