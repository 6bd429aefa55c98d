"""Tries for a given time what the tests try in short, prints a table and writes docs/reliability.md. Run by
scripts/soak.sh."""

import argparse
import datetime
import json
import os
import platform
import random
import re
import shutil
import subprocess
import sys
import time
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
LONG = 15  # minutes from which on everything is tried that there is a number of
PAGE = """# Withstanding faults, load and hostile input

`scripts/soak.sh [minutes]` installs and builds what it takes, tries for about so many minutes (30 without a number)
what is listed here, prints the table and writes this page. It ends with exit code 1 when anything was found. Each part
stands in `./test.sh` in a short form; `--only PART` runs one part, `--seed N` makes the same stores, stamps and texts
again.

## What was tried

{when}, {minutes} minutes, seed {seed}, {machine}.

{table}
{findings}
## How

| Part | Stands in | What it does |
|---|---|---|
| hostile | `tests/soak/hostile.py`, `tst_hostilestore` | Fills stores with broken documents, verification files, names and kinds of files, starts the program on them, chooses and opens every row, and runs `orvex-inspect` beside it. The rows must be those of a rule that knows nothing of the program; bytes, names and times of the store must stay, and no command may run. |
| faults | `tst_finishfaults` | Kills the program before, during and after each external command of a Finish with three packages; takes room, tools and write permissions away. Afterwards all earlier customisations are the same byte for byte, the list is right, and the next Finish makes three packages that the real `tar` and `7za` find whole. |
| load | `tst_growth` | Runs with a soft and hard limit of 1,024 descriptors. Opens every window again and again, switches languages, finishes in a row, fills the history; counts the bytes that the process holds. |
| clock, locale | `tst_clocklocale` | Commits at odd moments and in changing zones; whole runs in locales generated for the test. |
| secrets | `tst_secrets` | Types three secrets into the windows and looks for them in commands, all command lines of the machine, log, output and every file that is left. |
| fuzz | `scripts/fuzz.sh` | libFuzzer on the readers and ciphers. |
| threads | `scripts/check-threads.sh` | ThreadSanitizer over worker, progress and commit. |
| memory | `scripts/check-memory.sh` | valgrind over document, cipher and store. |

## What windows leave behind

Nothing that grows. The first openings of a window pay for fonts, styles, caches and the heap: on an X display some
3 MiB for the first small dialog of a process and 4.5 MiB for the choice of a file. Spread over 300 openings this looks
like 10 KiB and 15 KiB for each. Counted after the first ones, an opening leaves a few bytes of Qt's own tables, and the
pages in memory stay the same. What does grow is the log: by contract each line holds one open directory, a descriptor
and a buffer of 32 KiB of which a page or two are touched, until only 256 descriptors are left below the limit; from
there on handles are closed at once. The small dialogs write no line; opening the details holds five descriptors.

## Stated, and therefore stays

- The report after Finish says "succeeded" after a failed tool as well: no exit status is looked at. `orvex-inspect
  verify` tells whether the packages are whole.
- The steps of a package are no chain: after a packing that failed the ZIP is made all the same, of what there is. Only
  one that was refused, because the scratch directory is not the program's own, leaves the ZIP out.
- A row of the history is found by its local time. Of two customisations of the same local time, an hour that comes
  twice, the first one listed is chosen and deleted.
- The name of a directory is the stamp cut to 32 bits with a sign: stamps 2^32 seconds apart share a directory, and
  after 2038 a stored stamp reads as 0.
- `utl_Chmod` writes its path without quotes. For icons in an installation whose path the shell would read otherwise the
  mode is set by the system call instead.
- Each log line and each look for a directory holds a descriptor, see above.
- A document that is verified and cannot be read is listed, with an empty row.
- After a Finish that is given up by Escape the worker goes on, and the customisation is in the history.

## Known gaps

- `orvex-inspect` also lists entries whose path is too long for the program: the store may stand elsewhere by then.
- A document deeper than 1,000 elements is not read, though it is verified; no document of this program is.
- Faults are put in between commands and within their first milliseconds, not at every system call; the loss of power is
  not tried, and nothing is synchronised to the disk.
- A switch of the language and back grows by 0.2 to 0.4 KiB; it is no block for each switch, and goes with the window.
- Where mount namespaces are not allowed, the full disk is a limit on the size of each file alone.
"""


class Row:
    def __init__(self, part, what, times, outcome, good=True):
        self.part, self.what, self.times, self.outcome, self.good = part, what, times, outcome, good

    def cells(self):
        return (self.part, self.what.replace("|", "\\|"), f"{self.times:,}", self.outcome.replace("|", "\\|"),
                "yes" if self.good else "NO")


class Soak:
    def __init__(self, options):
        self.build = options.build.resolve()
        self.minutes = options.minutes
        self.seed = options.seed
        self.share = min(1.0, options.minutes / LONG)
        self.rows = []
        self.findings = []
        self.work = self.build / "soak"
        shutil.rmtree(self.work, ignore_errors=True)
        self.work.mkdir(parents=True)

    def run(self, command, cwd, **settings):
        """Exit status and output of a command, its standard error included."""
        environment = os.environ | {"QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8", "TZ": "Asia/Shanghai"}
        ended = subprocess.run(command, cwd=cwd, env=environment | settings, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, check=False)
        return ended.returncode, ended.stdout.decode("utf-8", "replace")

    def take(self, part, output):
        """Rows of the lines of JSON."""
        for line in output.splitlines():
            if not line.startswith('{"'):
                continue
            told = json.loads(line)
            if told.get("part") is None:
                continue
            counts = ("times", "executions", "tests")
            rest = [f"{name} {value:,}" if isinstance(value, int) else f"{name} {value}" for name, value in told.items()
                    if name not in ("part", "what", "outcome", "findings", "seconds", *counts)]
            found = told.get("findings", 0)
            found = (len(found) if isinstance(found, list) else found) + told.get("errors", 0) + told.get("failed", 0)
            self.add(Row(part, str(told.get("what", "")), next((told[name] for name in counts if name in told), 1),
                         told.get("outcome") or "; ".join([f"{found} findings", *rest]), not found))

    def add(self, row):
        """Runs of the same with the same outcome are one row."""
        for other in self.rows:
            if (other.part, other.what, other.outcome) == (row.part, row.what, row.outcome):
                other.times += row.times
                return
        self.rows.append(row)

    def find(self, part, name, output):
        self.findings.append(f"{part}: {name}")
        log = self.work / f"{part}.log"
        log.write_text(output)
        self.rows.append(Row(part, name, 1, f"failed; see {log.relative_to(SOURCE)}", False))

    def unit(self, part, unit, before=(), **settings):
        """Runs a unit of the tests. Returns its output; its failures become findings."""
        directory = self.build / "tests" / f"tst_{unit}"
        status, output = self.run([*before, str(directory / f"tst_{unit}"), "-maxwarnings", "0"], directory,
                                  **{name: str(value) for name, value in settings.items()})
        self.take(part, output)
        for failed in re.findall(r"^(?:FAIL!|QFATAL) *: (.*)$", output, re.MULTILINE) or ([f"{unit} ends with {status}"]
                                                                                         if status else []):
            self.find(part, failed[:200], output)
        return output

    def script(self, part, name, *arguments):
        script = SOURCE / "scripts" / name
        if not script.exists():
            self.rows.append(Row(part, f"scripts/{name}", 0, "not there"))
            return
        begin = time.time()
        status, output = self.run([script, *map(str, arguments)], SOURCE)
        told = output
        if '{"part"' not in output:
            told = "".join(path.read_text() for path in SOURCE.glob("build/*/result.json")
                           if path.stat().st_mtime >= begin)
        self.take(part, told)
        if status:
            self.find(part, f"scripts/{name} ends with {status}", output)

    # --- the parts

    def hostile(self):
        status, output = self.run(
            [sys.executable, SOURCE / "tests/soak/hostile.py", "--program",
             self.build / "tests/tst_hostilestore/tst_hostilestore", "--inspect",
             self.build / "OrvexManager/orvex-inspect", "--place", self.work / "hostile", "--seed", str(self.seed),
             "--seconds", str(self.minutes * 12)], SOURCE)
        self.take("hostile", output)
        if status:
            self.find("hostile", "see the log", output)

    def disk(self):
        """A command that runs another one with a small file system at `place`, if that is allowed here."""
        place = self.work / "disk"
        place.mkdir(exist_ok=True)
        for space in (["unshare", "-m"], ["unshare", "-rm"]):
            command = [*space, "sh", "-c", 'mount -t tmpfs -o size=48m tmpfs "$0" && exec "$@"', str(place)]
            if subprocess.run([*command, "true"], stderr=subprocess.DEVNULL, check=False).returncode == 0:
                return command, place
        return [], None

    def faults(self):
        command, place = self.disk()
        settings = {}
        if self.minutes >= LONG:
            settings["ORVEX_SOAK_FAULTS"] = 1
        if place:
            settings["ORVEX_SOAK_DISK"] = place
        output = self.unit("faults", "finishfaults", command, **settings)
        for name, what in (("aKillAtAnyCommandHarmsNothing", "kills before, during and after a command of Finish"),
                           ("aKillOfTheArchiverHarmsNothing", "kills that leave a cut ZIP"),
                           ("aFullDiskHarmsNothing", "sizes that no file can outgrow"),
                           ("aFileSystemWithoutRoomHarmsNothing", "sizes of the room left on a small file system"),
                           ("aToolThatDoesNotWorkHarmsNothing", "tools missing, failing or killed"),
                           ("aReadOnlyDirectoryHarmsNothing", "read-only directories")):
            times = len(re.findall(rf"^PASS *: .*::{name}\(.*\)$", output, re.MULTILINE))
            if name == "aFileSystemWithoutRoomHarmsNothing" and not (place and self.minutes >= LONG):
                self.rows.append(Row("faults", what, 0, "left out: too short a run, or no mount namespace allowed"))
            else:
                self.rows.append(Row("faults", what, times, "each: earlier customisations the same, list right, "
                                                            "next three packages whole"))

    def load(self):
        self.unit("load", "growth", ORVEX_SOAK_WINDOWS=max(20, int(500 * self.share)), ORVEX_SOAK_STORED=300,
                  ORVEX_SOAK_SWITCHES=max(20, int(1000 * self.share)), ORVEX_SOAK_DIRECTORIES=1000,
                  ORVEX_SOAK_FINISHES=max(3, int(200 * self.share)))

    def clock(self):
        self.unit("clock", "clocklocale", ORVEX_SOAK_STAMPS=int(250 * self.share), ORVEX_SOAK_SEED=self.seed)

    def secrets(self):
        self.unit("secrets", "secrets", ORVEX_SOAK_SECRETS=max(1, int(20 * self.share)))

    def fuzz(self):
        self.script("fuzz", "fuzz.sh", max(5, int(self.minutes * 60 * 0.25 / 8)))

    def threads(self):
        self.script("threads", "check-threads.sh")

    def memory(self):
        self.script("memory", "check-memory.sh")

    PARTS = (hostile, faults, load, clock, secrets, fuzz, threads, memory)


def table(rows):
    lines = [("Part", "What", "Times", "Outcome", "Good"), *(row.cells() for row in rows)]
    widths = [max(len(line[column]) for line in lines) for column in range(len(lines[0]))]
    lines.insert(1, tuple("-" * width for width in widths))
    return "".join("| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |\n" for line in lines)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=Path, required=True)
    parser.add_argument("--only", action="append", choices=[part.__name__ for part in Soak.PARTS],
                        help="this part; the page is not written then")
    parser.add_argument("--seed", type=int, default=random.SystemRandom().randrange(1, 10**6))
    parser.add_argument("minutes", type=float, nargs="?", default=30)
    options = parser.parse_args()
    print(f"seed {options.seed}", flush=True)

    soak = Soak(options)
    begin = time.monotonic()
    for part in Soak.PARTS:
        if not options.only or part.__name__ in options.only:
            print(f"trying: {part.__name__}", file=sys.stderr, flush=True)
            part(soak)
    text = table(soak.rows)
    good = all(row.good for row in soak.rows)
    print(text)
    if not options.only:
        findings = "Nothing was found.\n" if good else "Found:\n\n" + "".join(f"- {one}\n" for one in soak.findings)
        (SOURCE / "docs/reliability.md").write_text(PAGE.format(
            when=datetime.date.today().isoformat(), minutes=round((time.monotonic() - begin) / 60), seed=options.seed,
            machine=f"{os.cpu_count()} processors, {platform.freedesktop_os_release()['PRETTY_NAME']}", table=text,
            findings=findings))
        print("Written: docs/reliability.md")
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
