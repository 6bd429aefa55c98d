#!/usr/bin/env python3
"""The documents hold: no dead link, no missing picture, no command, option, script, file or field that does not exist,
the same sections in both languages, and tables of options that are what the programs tell.

  documents.py SOURCE_DIRECTORY ORVEX_INSPECT
"""

import functools
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from urllib.parse import unquote

SOURCE = pathlib.Path(sys.argv[1]).resolve()
INSPECT = sys.argv[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(SOURCE / "scripts"))
import options_table  # noqa: E402

GLOBAL_WITH_VALUE = {"--store", "--lang"}
# Scripts of the client's build, which is no part of this project.
FOREIGN_SCRIPTS = {"makeDeb.sh", "makeUpgradeDeb.sh", "makeCusPack.sh"}
NO_DOCUMENTS = {"build", ".git", "golden"}


@functools.lru_cache(maxsize=None)
def ask(*arguments):
    return subprocess.run([INSPECT, *arguments], check=True, stdout=subprocess.PIPE).stdout.decode()


class Programs:
    """What orvex-inspect knows: commands with their options, and fields."""

    def __init__(self):
        self.commands = {}
        for name in re.findall(r"^  ([a-z]+)  ", ask("--help").split("Commands:")[1], re.M):
            self.commands[name] = set(re.findall(r"(?<![\w-])(--?[a-z]+)", ask(name, "--help")))
        fields = json.loads(ask("fields", "--json"))
        self.fields = {field["path"] for field in fields}
        self.sections = {path.split("/")[0] for path in self.fields}


class Document:
    def __init__(self, path):
        self.path = path
        text = re.sub(r"<!--.*?-->", "", path.read_text(encoding="utf-8"), flags=re.S)
        self.blocks, prose, fence = [], [], False
        for line in text.split("\n"):
            if line.lstrip().startswith("```"):
                fence = not fence
            elif fence or re.match(r"^( {4}|\t)", line) and (not prose or not prose[-1].strip() or self.blocks_last(prose)):
                self.blocks.append(line.strip())
                prose.append("\0")
                continue
            elif re.match(r"^ {7}\S", line):
                self.blocks.append(line.strip())
                continue
            prose.append(line)
        self.prose = "\n".join(line for line in prose if line != "\0")
        self.spans = re.findall(r"`([^`\n]+)`", self.prose)
        plain = re.sub(r"`[^`\n]+`", "", self.prose)
        self.pictures = re.findall(r"!\[([^\]]*)\]\(([^)\s]+)\)", plain)
        self.links = re.findall(r"(?<!!)\[[^\]]*\]\(([^)\s]+)\)", plain)
        self.heads = re.findall(r"^(#+) +(.*)$", self.prose, re.M)
        # Names in the first column, which no language translates.
        self.table_names = re.findall(r"^\| *(`[^|]+`) *\|", self.prose, re.M)
        self.table_columns = [line.count("|") for line in self.prose.split("\n") if re.match(r"^\|[-| ]+\|$", line)]

    @staticmethod
    def blocks_last(prose):
        return prose[-1] == "\0"

    def anchors(self):
        found = set()
        for _, head in self.heads:
            slug = re.sub(r"[^\w\- ]", "", re.sub(r"[`*]", "", head).lower()).replace(" ", "-")
            found.add(slug)
        return found

    def commands(self):
        return [re.sub(r"\s{2,}# .*$", "", line) for line in self.blocks]


def documents(root):
    return sorted(path for path in root.rglob("*.md")
                  if not NO_DOCUMENTS & set(path.relative_to(root).parts[:-1]))


def dead_links(root, document):
    for link in document.links:
        if re.match(r"https?://", link):
            continue
        name, _, anchor = unquote(link).partition("#")
        target = (document.path.parent / name).resolve() if name else document.path
        if not target.exists() or root not in (target, *target.parents):
            yield f"dead link {link}"
        elif anchor and (target.suffix != ".md" or anchor not in Document(target).anchors()):
            yield f"no section {link}"


def missing_pictures(root, document):
    for told, name in document.pictures:
        path = document.path.parent / name
        if not told.strip():
            yield f"picture {name} says nothing to those who do not see it"
        if not path.is_file():
            yield f"missing picture {name}"
        elif path.suffix == ".png" and not path.read_bytes().startswith(b"\x89PNG\r\n\x1a\n"):
            yield f"no picture {name}"


def wrong_commands(root, document, programs):
    texts = document.commands() + document.spans
    for text in texts:
        for call in re.findall(r"(?:^|[|;&(]\s*|\s|/)orvex-inspect((?: [^|;&>]*)?)", text):
            words = call.split()
            options, rest = [], []
            while words:
                word = words.pop(0)
                if word.startswith("-") and word != "-":
                    options.append(word.split("=")[0])
                    if word in GLOBAL_WITH_VALUE and words:
                        words.pop(0)
                else:
                    rest.append(word)
            name = rest[0] if rest else None
            if name and name != "COMMAND" and name not in programs.commands:
                yield f"no command of orvex-inspect: {text}"
                continue
            known = programs.commands.get(name) or set().union(*programs.commands.values()) | {"--version"}
            for option in options:
                if option not in known | {"--store", "--lang", "--json", "--help"}:
                    yield f"no option {option} of orvex-inspect: {text}"
            for place, option in enumerate(rest[1:]):
                if re.match(r"^[A-Za-z0-9]+/", option) and option.split("/")[0] in programs.sections \
                        and option not in programs.fields:
                    yield f"no field {option}: {text}"
    for span in document.spans:
        if re.fullmatch(r"--[a-z-]+", span) and not any(span in options for options in programs.commands.values()) \
                and span not in {"--version", "--help"} and not any(span in text.split() for text in texts if text != span):
            yield f"no option {span}"


def wrong_scripts(root, document):
    for text in document.commands() + document.spans:
        words = text.split()
        for place, word in enumerate(words):
            script = re.fullmatch(r"(\./|[\w./-]*/)?([\w-]+\.(?:sh|py))", word)
            if not script or script.group(2) in FOREIGN_SCRIPTS:
                continue
            path = root / word
            if not path.is_file():
                yield f"no script {word}"
                continue
            for option in words[place + 1:]:
                text = path.read_text(encoding="utf-8")
                if option.startswith("--") and option not in text and '"$@"' not in text:
                    yield f"no option {option} of {word}"


def missing_files(root, document, programs):
    """Names in the tree of the sources; a field may look like one."""
    tops = {path.name for path in root.iterdir() if path.is_dir()} - {"build"}
    for span in document.spans:
        name = span.split(":")[0]
        if not re.fullmatch(r"[\w.-]+(/[\w.*-]+)+/?", name):
            continue
        top = name.split("/")[0]
        if top in programs.sections and name in programs.fields:
            continue
        if top in tops and not (root / name).exists() and "*" not in name \
                and not list(root.glob(name + ".*")):
            yield f"no file and no field {name}"
        elif top in programs.sections and top not in tops and name not in programs.fields:
            yield f"no field {name}"


def wrong_tables_of_fields(root, document, programs):
    for row in re.findall(r"^\| ([\w]+/[\w/\\*]+) \|", document.prose, re.M):
        if row.replace("\\", "") not in programs.fields:
            yield f"no field {row}"


def differing_languages(root, document):
    """A document and its translation have the same sections, pictures, commands and tables."""
    if document.path.name.endswith(".zh.md"):
        if not document.path.with_name(document.path.name[:-6] + ".md").is_file():
            yield "has no English original"
        return
    other = document.path.with_name(document.path.name[:-3] + ".zh.md")
    if not other.is_file():
        return
    other = Document(other)
    if [level for level, _ in document.heads] != [level for level, _ in other.heads]:
        yield f"other sections than {other.path.name}"
    if [name.replace(".en.", ".zh.") for _, name in document.pictures] != [name for _, name in other.pictures]:
        yield f"other pictures than {other.path.name}"
    if document.table_columns != other.table_columns:
        yield f"other tables than {other.path.name}"
    # Chinese joins names by a mark of its own.
    names = [[name.replace("`、`", "`, `") for name in d.table_names if "<" not in name] for d in (document, other)]
    if names[0] != names[1]:
        yield f"other rows than {other.path.name}: {sorted(set(names[0]) ^ set(names[1]))}"
    # What stands for something else is translated.
    ours, theirs = ([re.sub(r"(?<=\s)([A-Z]{2,}|[\u4e00-\u9fff]+)(?=\s|$)", "NAME", line) for line in d.commands()]
                    for d in (document, other))
    if ours != theirs:
        yield f"other commands than {other.path.name}: {sorted(set(ours) ^ set(theirs))}"


def stale_options(root):
    """The documents of the options are what scripts/write-options.sh writes."""
    if not (root / "docs/options-sentences.tsv").is_file():
        return
    with tempfile.TemporaryDirectory() as made:
        for name, language in (("administrator.md", "en"), ("administrator.zh.md", "zh")):
            copy = pathlib.Path(made) / name
            shutil.copy(root / "docs" / name, copy)
            try:
                options_table.write(ask, language, copy, root / "docs/options-sentences.tsv")
            except SystemExit as refusal:
                yield str(refusal).replace(str(root), "")
                continue
            if copy.read_bytes() != (root / "docs" / name).read_bytes():
                yield f"docs/{name} is out of date: scripts/write-options.sh"


def complaints(root, programs):
    found = list(stale_options(root))
    for path in documents(root):
        document = Document(path)
        for check in (dead_links, missing_pictures, wrong_scripts, differing_languages):
            found += [f"{path.relative_to(root)}: {text}" for text in check(root, document)]
        for check in (wrong_commands, missing_files, wrong_tables_of_fields):
            found += [f"{path.relative_to(root)}: {text}" for text in check(root, document, programs)]
    return found


class Documents(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.programs = Programs()

    def test_they_hold(self):
        self.assertGreater(len(documents(SOURCE)), 6)
        self.assertEqual(complaints(SOURCE, self.programs), [])

    def test_programs_are_asked(self):
        self.assertEqual(len(self.programs.commands), 12)
        self.assertIn("--component", self.programs.commands["list"])
        self.assertIn("vpn/ikecfg/IKEPort", self.programs.fields)

    def broken(self, text, chinese=None):
        """What is complained of in a small tree with this document."""
        with tempfile.TemporaryDirectory() as made:
            root = pathlib.Path(made).resolve()
            (root / "docs").mkdir()
            (root / "test.sh").write_text("case $1 in --sanitize) ;; esac\n")
            (root / "docs/one.md").write_text("# One\n\n## Two words: `c`\n\n## 第二 节\n")
            (root / "docs/p.png").write_bytes(b"\x89PNG\r\n\x1a\n")
            (root / "docs/q.png").write_bytes(b"GIF89a")
            (root / "READ.md").write_text(text)
            if chinese is not None:
                (root / "READ.zh.md").write_text(chinese)
            return [complaint.split(": ", 1)[1] for complaint in complaints(root, self.programs)]

    def test_what_is_right_passes(self):
        self.assertEqual(self.broken(
            "# A\n\n[a](docs/one.md) [b](docs/one.md#two-words-c) [c](docs/one.md#第二-节) [d](#a) "
            "[e](https://example.com/x) ![p](docs/p.png) `docs/one.md` `vpn/ikecfg/IKEPort` `--component` "
            "`orvex-inspect search 1 --field sslvpn/remote/*/port` `./test.sh --sanitize` `template/`\n\n"
            "    orvex-inspect --store /mnt list --all | grep x   # all\n"
            "    ./test.sh\n"), [])

    def test_each_fault_is_found(self):
        for text, complaint in (
                ("[a](docs/two.md)", "dead link docs/two.md"),
                ("[a](/etc/passwd)", "dead link /etc/passwd"),
                ("[a](docs/one.md#three)", "no section docs/one.md#three"),
                ("[a](#b)", "no section #b"),
                ("![p](docs/r.png)", "missing picture docs/r.png"),
                ("![p](docs/q.png)", "no picture docs/q.png"),
                ("![](docs/p.png)", "picture docs/p.png says nothing to those who do not see it"),
                ("`orvex-inspect tell`", "no command of orvex-inspect: orvex-inspect tell"),
                ("\n    x; orvex-inspect tell\n", "no command of orvex-inspect: x; orvex-inspect tell"),
                ("`orvex-inspect list --newest`", "no option --newest of orvex-inspect: orvex-inspect list --newest"),
                ("`orvex-inspect list --html`", "no option --html of orvex-inspect: orvex-inspect list --html"),
                ("`--newest`", "no option --newest"),
                ("`orvex-inspect search 1 --field x1/none`",
                 "no field x1/none: orvex-inspect search 1 --field x1/none"),
                ("`x1/none`", "no field x1/none"),
                ("| x1/none | a |", "no field x1/none"),
                ("`docs/none.md`", "no file and no field docs/none.md"),
                ("`scripts/none.sh`", "no script scripts/none.sh"),
                ("\n    ./none.sh\n", "no script ./none.sh"),
                ("`./test.sh --quick`", "no option --quick of ./test.sh")):
            with self.subTest(text):
                self.assertEqual(self.broken(text), [complaint])

    def test_languages_that_differ_are_found(self):
        for english, chinese, complaint in (
                ("# A\n\n## B", "# 甲", "other sections than READ.zh.md"),
                ("![p](docs/p.png)", "", "other pictures than READ.zh.md"),
                ("|a|\n|---|\n", "", "other tables than READ.zh.md"),
                ("|a|\n|---|\n| `b` | c |", "|a|\n|---|\n| `d` | c |", "other rows than READ.zh.md: ['`b`', '`d`']"),
                ("\n    ./test.sh  # a\n", "\n    ./test.sh --sanitize\n",
                 "other commands than READ.zh.md: ['./test.sh', './test.sh --sanitize']")):
            with self.subTest(english):
                self.assertEqual(self.broken(english, chinese), [complaint])

    def test_fields_without_sentences_are_found(self):
        sentences = (SOURCE / "docs/options-sentences.tsv").read_text(encoding="utf-8")
        lines = sentences.splitlines(keepends=True)
        port = next(line for line in lines if line.startswith("vpn/ikecfg/IKEPort\t"))
        columns = port.rstrip("\n").split("\t")
        for changed, part in (("", "a field without a sentence"),
                              ("\t".join(columns[:3]) + "\t\n", "sentence in both languages is needed"),
                              (port + port.replace("IKEPort", "IKEPorts"), "a sentence without a field"),
                              (port.replace("UDP", "TCP"), "is out of date")):
            with self.subTest(changed), tempfile.TemporaryDirectory() as made:
                root = pathlib.Path(made)
                (root / "docs").mkdir()
                for name in ("administrator.md", "administrator.zh.md"):
                    shutil.copy(SOURCE / "docs" / name, root / "docs" / name)
                (root / "docs/options-sentences.tsv").write_text(sentences.replace(port, changed), encoding="utf-8")
                found = list(stale_options(root))
                self.assertEqual(len(found), 2)
                self.assertIn(part, found[0])


if __name__ == "__main__":
    os.environ["LC_ALL"] = "C.UTF-8"
    unittest.main(argv=sys.argv[:1])
