"""Fills stores with what nobody should find there, starts the program and orvex-inspect on them, and compares what they
list with the rule: a directory whose name does not begin with a point, on a path of less than 260 bytes, is listed when
OrvexCustomXml.vrf is a file of 256 bytes and OrvexCustom.xml a file of at most 40588 bytes, and the last 16 bytes of the
first are the MD5 of the second, the 240 bytes before, 0xFF, 31 zero bytes and the key. Every entry is made together with
the expectation, so nothing of the program tells what is right. Prints a line of JSON; a finding goes to standard error
and makes the exit status 1. The same seed makes the same stores."""

import argparse
import hashlib
import json
import os
import random
import re
import shutil
import socket
import stat
import subprocess
import sys
import time
from pathlib import Path
from xml.dom import minidom
from xml.parsers.expat import ExpatError

SOURCE = Path(__file__).resolve().parents[2]
LARGEST = 40588
LONGEST_PATH = 259
FULL = 300  # so many are listed at most
ANY = ("?", "?")  # listed, with whatever the row shows
AS_USER = ["setpriv", "--bounding-set=-dac_override,-dac_read_search"] if os.geteuid() == 0 else []
TEXTS = ["$(touch PWNED)", "`touch PWNED`", "\"; touch PWNED; \"", "%n%n%s%s%x", "&lt;b&gt;x&lt;/b&gt;", "&#10;", "&#0;",
         "\\", "'", "\x01", "\U0001f600", "\ufeff", "\u202e", "-1", "4294967296", "99999999999999999999999", "1e9",
         "0x10", " ", "\t", "&amp;amp;", "&bomb;", "x" * 3000, "\u5317\u4eac", "]]&gt;", "<![CDATA[a<b]]>", "<!-- c -->",
         "<deep/>", "<?pi?>"]


def key():
    """Six zero bytes choose the first six of the table, each stretched to five by its own number."""
    text = (SOURCE / "common/KeyGen.cpp").read_text()
    table = [int(byte, 16) for byte in re.findall(r"0x([0-9A-F]{2})\b", text[text.index("UNIVERSE_SECRET_KEY"):])][:128]
    return bytes(table[(i + i * step) % 128] for i in range(6) for step in range(5))


KEY = key()


def shown(document):
    """Time and remark of the row of a document that verifies, where all readers must agree on them."""
    if b"<a>" * 1000 in document or re.search(rb"<!DOCTYPE|<!ENTITY|encoding=(?!\"utf-8\")", document, re.IGNORECASE):
        return ANY
    try:
        node = minidom.parseString(document).documentElement
    except (ExpatError, ValueError, LookupError):
        return ANY

    def child(parent, name):
        return parent and next((one for one in parent.childNodes
                                if one.nodeType == one.ELEMENT_NODE and one.tagName == name), None)

    def text(element):
        return "".join(one.data if one.nodeType in (one.TEXT_NODE, one.CDATA_SECTION_NODE) else text(one)
                       for one in (element.childNodes if element else [])
                       if one.nodeType in (one.TEXT_NODE, one.CDATA_SECTION_NODE, one.ELEMENT_NODE))

    common = child(child(node, "content"), "common")
    texts = tuple(text(child(common, name)) for name in ("cusTimeString", "cusAddInfo"))
    # Of blanks alone and of control characters readers think differently.
    return ANY if any(not one.isprintable() or one.isspace() for one in texts) or b":" in re.sub(
        rb">[^<]*<", b"><", document) else texts


def stated(place):
    """What matches the commands of a Finish without packages, of which no text of a document is part."""
    here = re.escape(str(place))
    icon = r"(?:DeskIconLinux\.png|DeskIconMacos\.icns|MainIcon\.ico)"
    return re.compile("|".join((
        rf'find "{here}/custom" -name "\*\.\*" -exec rm -rf {{}} \\;', rf'mkdir -p "{here}/(?:custom|UpdateCustom(?:/\d+)?)"',
        rf'rm -f "{here}/custom/OrvexCustom(?:\.xml|Xml\.vrf)"', rf'cp -f "{here}/UpdateCustom/\d+/{icon}" "{here}/custom/{icon}"',
        rf"chmod a\+r {here}/custom/{icon}", rf'cp  -Rf "{here}/custom/"\* "{here}/UpdateCustom/\d+/"')))


class Store:
    """A store with its entries and what is to be listed of them."""

    def __init__(self, place, seed, documents):
        self.place, self.random, self.documents = place, random.Random(seed), documents
        self.expected = []
        self.beyond = []  # on a path too long for the program, which orvex-inspect reads all the same
        self.sockets = []
        (place / "UpdateCustom").mkdir(parents=True)
        self.base = os.fsencode(place / "UpdateCustom") + b"/"
        self.number = 0

    def mutated(self):
        """A document, mostly a broken one."""
        pick = self.random
        document = pick.choice(self.documents)
        for _ in range(pick.choice((0, 1, 1, 2, 5, 40))):
            at = pick.randrange(len(document) + 1)
            way = pick.randrange(12)
            if way == 0:
                document = document[:at] + bytes([pick.randrange(256)]) + document[at + 1:]
            elif way == 1:
                document = document[:at]
            elif way == 2:
                end = pick.randrange(len(document) + 1)
                document = document[:min(at, end)] + document[max(at, end):]
            elif way == 3:
                document = document[:at] + document[max(0, at - pick.randrange(500)):at] + document[at:]
            elif way == 4:
                document = document[:at] + pick.randbytes(pick.randrange(1, 64)) + document[at:]
            elif way in (5, 6, 7, 8):
                # The text of some element
                texts = list(re.finditer(rb">([^<>]*)</", document))
                if texts:
                    begin, end = pick.choice(texts).span(1)
                    document = document[:begin] + pick.choice(TEXTS).encode() + document[end:]
            elif way == 9:
                elements = re.findall(rb"<(\w+)>", document)
                if elements:
                    one = pick.choice(elements)
                    document = document.replace(b"<" + one + b">", b"<" + one + b"><" + one + b"/>", 1)
            elif way == 10:
                depth = pick.choice((10, 200, 5000))
                document = document.replace(b"<common>", b"<a>" * depth + b"</a>" * depth + b"<common>", 1)
            else:
                document = pick.choice((b"", b"<msg>", b"\xef\xbb\xbf" + document, document.decode("latin-1").encode("utf-16"),
                                        b"<!DOCTYPE m [<!ENTITY a 'aaaaaaaaaa'><!ENTITY bomb '&a;&a;&a;&a;'>]>" + document,
                                        document.replace(b"utf-8", pick.choice((b"gbk", b"utf-16", b"none", b"latin1"))),
                                        document.ljust(LARGEST + pick.randrange(2), b" "),
                                        b"\0" * pick.randrange(1, 2000), pick.randbytes(pick.randrange(4000))))
        return document

    def name(self):
        self.number += 1
        if self.random.random() < 0.7:
            return b"%d" % (1600000000 + self.number)
        tail = b"%d" % self.number
        room = LONGEST_PATH - len(self.base)
        return self.random.choice((
            b"-rf " + tail, b"a b " + tail, b"$(touch PWNED)" + tail, b"`touch PWNED`" + tail, b"\"" + tail, b"'" + tail,
            b";touch PWNED;" + tail, b"line\nfeed" + tail, b"%s%n%d" + tail, b"\\" + tail, b"*" + tail, b"~" + tail,
            b"\xff\xfe" + tail, b"\xb1\xb1\xbe\xa9" + tail, "\u5317\u4eac ".encode() + tail, b"." + tail, b".." + tail,
            tail.rjust(room, b"n"), tail.rjust(room + 1, b"n"), tail.rjust(255, b"n"), b"-" + tail, b"1" * 30 + tail,
            b"e" + "e\u0301".encode() * 3 + tail))

    def put(self, path, content):
        """What stands in the place of a file; whether it is a readable regular one."""
        kind = self.random.random()
        if kind < 0.86:
            path.write_bytes(content)
            return True
        if kind < 0.90:
            elsewhere = self.place / "elsewhere"
            elsewhere.mkdir(exist_ok=True)
            target = elsewhere / f"{self.number}{path.suffix}"
            target.write_bytes(content)
            path.symlink_to(target)
            return True
        way = self.random.randrange(7)
        if way == 0:
            os.mkfifo(path)
        elif way == 1:
            path.mkdir()
        elif way == 2:
            path.symlink_to(path.name)
        elif way == 3:
            path.symlink_to("nowhere")
        elif way == 4:
            path.write_bytes(content)
            path.chmod(0)
        elif way == 5:
            with path.open("wb") as file:
                file.truncate(self.random.choice((1 << 20, 1 << 33)))
        return False

    def fill(self, directory):
        """Document and verification file; what is to be listed."""
        document = self.mutated()
        noise = self.random.randbytes(240)
        verification = bytearray(noise + hashlib.md5(document + noise + b"\xff" + bytes(31) + KEY).digest())
        right = len(document) <= LARGEST
        fault = self.random.random()
        if fault < 0.08:
            verification[self.random.randrange(256)] ^= 1 << self.random.randrange(8)
            right = False
        elif fault < 0.16:
            length = self.random.choice((0, 1, 240, 255, 257, 512, 100000))
            verification = verification.ljust(length, b"\0")[:length]
            right = False
        elif fault < 0.2 and document:
            at = self.random.randrange(len(document))
            document = document[:at] + bytes([document[at] ^ 1]) + document[at + 1:]
            right = False
        right &= self.put(directory / "OrvexCustom.xml", document)
        right &= self.put(directory / "OrvexCustomXml.vrf", bytes(verification))
        if self.random.random() < 0.1:
            inner = directory
            for _ in range(self.random.randrange(1, 30)):
                inner /= "UpdateCustom"
            inner.mkdir(parents=True)
            (inner / "OrvexCustom.xml").write_bytes(document)
        return shown(document) if right else None

    def add(self):
        name = self.name()
        path = Path(os.fsdecode(self.base + name))
        kind = self.random.random()
        expected = None
        if kind < 0.88:
            path.mkdir()
            expected = self.fill(path)
        elif kind < 0.92:
            target = self.place / "directories" / str(self.number)
            target.mkdir(parents=True)
            expected = self.fill(target)
            path.symlink_to(target)
        elif kind < 0.94:
            path.mkdir()
            self.fill(path)
            path.chmod(self.random.choice((0, 0o200, 0o600)))
        elif kind < 0.96:
            path.write_bytes(b"a file")
        elif kind < 0.97:
            os.mkfifo(path)
        elif kind < 0.98:
            path.symlink_to(self.random.choice((path.name, "nowhere", "/dev/zero")))
        elif kind < 0.99:
            path.mkdir()
        else:
            # A socket's path is short, so it is made in its directory.
            here = os.open(".", os.O_RDONLY)
            os.chdir(self.base)
            server = socket.socket(socket.AF_UNIX)
            try:
                server.bind(name[:100])
            except OSError:
                pass
            self.sockets.append(server)
            os.fchdir(here)
            os.close(here)
        if expected and name[:1] != b".":
            (self.expected if len(self.base + name) <= LONGEST_PATH else self.beyond).append(expected)


def state(place):
    """Names, kinds, modes, owners, sizes, times and bytes of everything below, but not the log and the lock of tests."""
    lines = []
    for directory, names, files in os.walk(os.fsencode(place)):
        if directory == os.fsencode(place):
            names[:] = [name for name in names if name != b"Log"]
        for name in names + [file for file in files if file != b"instance_lock"]:
            path = os.path.join(directory, name)
            info = os.lstat(path)
            content = os.readlink(path) if stat.S_ISLNK(info.st_mode) else b""
            if stat.S_ISREG(info.st_mode) and info.st_size <= 1 << 20:
                with open(path, "rb") as file:
                    content = hashlib.sha1(file.read()).digest()
            lines.append((path, info.st_mode, info.st_uid, info.st_gid, info.st_ino, info.st_size, info.st_mtime_ns,
                          info.st_ctime_ns, content))
    return sorted(lines)


class Hunt:
    def __init__(self, options):
        self.options = options
        self.findings = []
        self.tried = self.listed = self.calls = self.commands = 0
        self.options.place.mkdir(parents=True, exist_ok=True)
        documents = options.place / "documents"
        documents.mkdir(exist_ok=True)
        subprocess.run([options.program, "documents", documents], check=True, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, env=self.environment())
        self.documents = [path.read_bytes() for path in sorted(documents.iterdir())]

    @staticmethod
    def environment():
        return os.environ | {"QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8", "TZ": "Asia/Shanghai",
                             "ORVEX_TEST_UNIT": "hostilestore"}

    def run(self, seed, *command):
        """Standard output of a program that ends by itself in time, otherwise None and a finding."""
        self.calls += 1
        try:
            ended = subprocess.run([*AS_USER, *command], stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=300,
                                   cwd=Path(command[0]).parent, env=self.environment(), check=False)
        except subprocess.TimeoutExpired:
            self.find(seed, f"{Path(command[0]).name} {command[1]} does not end")
            return None
        # orvex-inspect says by 1 that it complains of something.
        right = (0,) if command[0].name == "OrvexManager" else (0, 1)
        if ended.returncode not in right or re.search(rb"Sanitizer|runtime error", ended.stderr):
            errors = ended.stderr[-3000:].decode("utf-8", "replace")
            self.find(seed, f"{Path(command[0]).name} {command[1]} ends with {ended.returncode}: {errors}")
            return None
        return ended.stdout.decode("utf-8", "replace")

    def find(self, seed, what):
        self.findings.append(what)
        print(f"finding with seed {seed}: {what}", file=sys.stderr)

    def compare(self, seed, who, rows, expected):
        rows, exact = [tuple(row) for row in rows], [row for row in expected if row is not ANY]
        if len(rows) != len(expected):
            self.find(seed, f"{who} lists {len(rows)} and not {len(expected)}")
        for row in exact:
            if row in rows:
                rows.remove(row)
            else:
                self.find(seed, f"{who} does not list {row}")

    def store(self, seed):
        place = self.options.place / "installation"
        shutil.rmtree(place, ignore_errors=True)
        store = Store(place, seed, self.documents)
        for directory in ("Log", "Resources"):
            (place / directory).mkdir()
        for name in ("Language_en.xml", "Language_zh.xml"):
            shutil.copy(SOURCE / "Resources" / name, place / "Resources")
        (place / "config.ini").write_text("[config]\nArea=tqm\nLangCode=1033\n")
        program = place / "OrvexManager"
        shutil.copy(self.options.program, program)
        while store.number < self.options.entries and len(store.expected) < FULL - 1:
            store.add()
        self.tried += store.number
        self.listed += len(store.expected)

        before = state(place)
        told = self.run(seed, program, "look")
        if told:
            answer = json.loads(next(line for line in told.splitlines() if line.startswith("{")))
            self.compare(seed, "the program", [(row[0], row[2]) for row in answer["rows"]], store.expected)
            if answer["views"] != len(answer["rows"]):
                self.find(seed, "a look at the details did not come to an end")
            for command in answer["commands"]:
                self.find(seed, f"a command ran: {command}")
        if self.options.inspect:
            shown_rows = self.run(seed, self.options.inspect, "list", "--all", "--json", "--store", place)
            if shown_rows is not None:
                entries = json.loads(shown_rows)
                verified = [row for row in entries if row["verified"] or row["reason"] in ("not-parsed", "stamp")]
                count = len(store.expected) + len(store.beyond)
                if len(verified) != count:
                    self.find(seed, f"orvex-inspect lists {len(verified)} and not {count}")
            for words in (["list"], ["verify"], ["verify", "--json"], ["search", "a"], ["lint", "--all"]):
                self.run(seed, self.options.inspect, *words, "--store", place)
        after = state(place)
        for line in set(before) ^ set(after):
            self.find(seed, f"changed: {line[0]}")
        self.finish(seed, place, program, after)
        for server in store.sockets:
            server.close()
        shutil.rmtree(place, ignore_errors=True)


    def finish(self, seed, place, program, before):
        """New customisations out of stored ones: stated commands alone, and what was stored stays."""
        told = self.run(seed, program, "finish")
        if not told:
            return
        pattern = stated(place)
        for command in json.loads(next(line for line in told.splitlines() if line.startswith("{")))["commands"]:
            self.commands += 1
            if not pattern.fullmatch(command):
                self.find(seed, f"a command ran: {command}")
        new = re.compile(re.escape(os.fsencode(place)) + rb"(/custom(/.*)?|/UpdateCustom|/UpdateCustom/17000000\d\d(/.*)?)",
                         re.DOTALL)
        for line in set(before) ^ set(state(place)):
            if not new.fullmatch(line[0]):
                self.find(seed, f"changed by Finish: {line[0]}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", type=Path, required=True, help="tst_hostilestore")
    parser.add_argument("--inspect", type=Path, help="orvex-inspect")
    parser.add_argument("--place", type=Path, required=True, help="a directory to work in")
    parser.add_argument("--stores", type=int, default=1 << 30)
    parser.add_argument("--seconds", type=float, default=1e9, help="no store is begun after them")
    parser.add_argument("--entries", type=int, default=250, help="of each store")
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    options.program, options.place = options.program.resolve(), options.place.resolve()
    options.inspect = options.inspect and options.inspect.resolve()
    begin = time.monotonic()
    hunt = Hunt(options)
    stores = 0
    while stores < options.stores and time.monotonic() - begin < options.seconds:
        hunt.store(options.seed + stores)
        stores += 1
    outcome = f"{hunt.listed} to be listed; {len(hunt.findings)} findings" if hunt.findings else \
        f"{hunt.listed} to be listed, all and no other were; no crash, nothing changed, no command; {hunt.commands} commands of Finishes that " \
        "started from them, all stated"
    print(json.dumps({"part": "hostile", "what": f"stored customisations in {stores} stores, seed {options.seed}",
                      "times": hunt.tried, "outcome": outcome, "findings": hunt.findings[:20]}))
    return 1 if hunt.findings else 0


if __name__ == "__main__":
    sys.exit(main())
