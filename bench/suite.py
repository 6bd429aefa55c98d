"""Measures the program beside its floors; see docs/performance.md. Run by scripts/bench.sh."""

import argparse
import datetime
import json
import math
import os
import platform
import resource
import shutil
import statistics
import subprocess
import sys
import time
from pathlib import Path

SOURCE = Path(__file__).resolve().parent
LEAST_RUNS = 5
STARTS = 41
REPAINTED_HISTORIES = 9
BUSY = 75  # exit code of the probe: another instance runs on this machine
STARTS_OF_HISTORY = (0, 50, 100, 200, 300)
DOCUMENT_BYTES = (8000, 12000, 16000, 24000, 32000, 39500)
TEMPLATE_MIB = (10, 50, 200, 500)
ROW_TEMPLATE_MIB = 200
INSPECTED_ENTRIES = 10000
LARGEST_EXPONENT = 1.1  # 1 is linear; the rest is what a fit through medians may be off


class Sample:
    """What one thing took, run by run."""

    def __init__(self, values, unit):
        self.values = list(values)
        self.unit = unit

    @property
    def median(self):
        return statistics.median(self.values)

    def __str__(self):
        return f"{self.median:.3g} {self.unit}" if self.median < 1000 else f"{self.median:.0f} {self.unit}"


class Row:
    """One line of the table: own beside floor, run by run, with a target for the ratio."""

    def __init__(self, what, own, floor, target, at_least=False):
        self.what, self.own, self.floor, self.target, self.at_least = what, own, floor, target, at_least
        if floor is None:  # a limit for every single run
            self.ratio, paired = max(own.values), own.values
        elif at_least:  # both are times; a throughput is the other way round
            self.ratio = floor.median / own.median
            paired = [f / o for o, f in zip(own.values, floor.values)]
        else:
            self.ratio = own.median / floor.median
            paired = [o / f for o, f in zip(own.values, floor.values)]
        quarters = statistics.quantiles(paired, n=4) if len(paired) > 1 else [paired[0]] * 3
        self.low, self.high = quarters[0], quarters[2]

    @property
    def met(self):
        return self.ratio >= self.target if self.at_least else self.ratio <= self.target

    def cells(self):
        figure = "{:.0f}" if self.floor is None else "{:.2f}"
        bound = ("at least " if self.at_least else "at most ") + f"{self.target:g}"
        if self.floor is None:
            bound += " " + self.own.unit
        return (self.what, str(self.own), str(self.floor or "none"), figure.format(self.ratio),
                f"{figure.format(self.low)} to {figure.format(self.high)}", bound, "yes" if self.met else "NO")

    def as_json(self):
        def one(sample):
            return sample and {"unit": sample.unit, "median": sample.median, "runs": sample.values}
        return {"what": self.what, "own": one(self.own), "floor": one(self.floor), "ratio": self.ratio,
                "quartiles": [self.low, self.high], "target": self.target,
                "bound": "at least" if self.at_least else "at most", "met": self.met}


class Growth:
    """How a time grows with a size: medians, and the exponent k of the fit time = a * size^k."""

    def __init__(self, name, title, size_label, points, unit):
        self.name, self.title, self.size_label, self.unit = name, title, size_label, unit
        self.points = [(size, Sample(values, unit)) for size, values in points]
        logs = [(math.log(size), math.log(sample.median)) for size, sample in self.points]
        mean_x, mean_y = (statistics.fmean(column) for column in zip(*logs))
        self.exponent = (sum((x - mean_x) * (y - mean_y) for x, y in logs) / sum((x - mean_x) ** 2 for x, _ in logs))
        self.factor = math.exp(mean_y - self.exponent * mean_x)

    @property
    def met(self):
        return self.exponent <= LARGEST_EXPONENT

    def plot(self, directory):
        def quartiles(sample):
            return statistics.quantiles(sample.values, n=4)[0::2]
        data = "\n".join(f"{size} {sample.median} {' '.join(map(str, quartiles(sample)))}"
                         for size, sample in self.points)
        script = f"""
set terminal svg size 640,420 dynamic background "white"
set output "{directory / (self.name + '.svg')}"
set title "{self.title}"
set xlabel "{self.size_label}"
set ylabel "{self.unit}"
set xrange [0:*]
set yrange [0:*]
set key left top
$points << END
{data}
END
plot {self.factor} * x**{self.exponent} title "fit, exponent {self.exponent:.2f}", \\
     $points using 1:2:3:4 with yerrorbars title "median and quartiles" pointtype 7
"""
        subprocess.run(["gnuplot"], input=script, text=True, check=True)

    def as_json(self):
        return {"name": self.name, "title": self.title, "size": self.size_label, "unit": self.unit,
                "exponent": self.exponent, "largestExponent": LARGEST_EXPONENT, "met": self.met,
                "points": [{"size": size, "median": sample.median, "runs": sample.values}
                           for size, sample in self.points]}


class Suite:
    def __init__(self, build, runs, quick, busy):
        self.build = build
        self.busy = busy
        self.tools = build / "bench"
        self.runs = runs
        self.quick = quick
        self.place = build / "bench" / "installations"
        self.rows = []
        self.growths = []
        shutil.rmtree(self.place, ignore_errors=True)
        self.place.mkdir(parents=True)

    # --- what is measured with

    def installation(self, name, stored=0, document_bytes=None):
        """A new installation, with so many stored customisations."""
        place = self.place / name
        shutil.copytree(self.build / "OrvexManager", place, ignore=shutil.ignore_patterns(
            "Log", "custom", "UpdateCustom", "template", "OrvexSetup", "OrvexUpdate", "OrvexCusUpd"))
        for directory in ("Log", "UpdateCustom", "template"):
            (place / directory).mkdir()
        if stored:
            command = [self.tools / "make_store/bench_make_store", f"{place}/", str(stored)]
            if document_bytes:
                command.append(str(document_bytes))
            subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return place

    def probe(self, script, command, place, **settings):
        """Runs a program with the probe in it. Returns the moment of its start and what the probe told."""
        out = self.place / "probe.json"
        environment = {name: value for name, value in os.environ.items() if not name.startswith("QT_")}
        environment |= {"QT_QPA_PLATFORM": "offscreen", "QT_PLUGIN_PATH": str(self.tools / "plugins"),
                        "QT_QPA_GENERIC_PLUGINS": f"orvexprobe:{script}", "LC_ALL": "C.UTF-8",
                        "XDG_RUNTIME_DIR": str(self.place), "ORVEX_PROBE_OUT": str(out)}
        environment |= {name: str(value) for name, value in settings.items()}
        for _ in range(60):
            out.unlink(missing_ok=True)
            start = time.clock_gettime_ns(time.CLOCK_MONOTONIC)
            code = subprocess.run(command, cwd=place, env=environment, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL, timeout=1800, check=False).returncode
            if code == 0:
                return start, json.loads(out.read_text())
            if code != BUSY:
                sys.exit(f"the probe \"{script}\" ended with {code}: {out.read_text() if out.exists() else ''}")
            time.sleep(2)
        sys.exit("another instance of the program is running on this machine")

    def program(self, script, place, **settings):
        return self.probe(script, [place / "OrvexManager"], place, **settings)

    def paint(self, command, place):
        """Milliseconds from start to painted window, and what the probe told."""
        for log in (place / "Log").glob("*.log"):
            log.unlink()
        start, told = self.probe("paint", command, place)
        return (told["worked"] if self.busy else told["painted"] - start) / 1e6, told

    # --- the rows

    def start(self):
        stores = {count: self.installation(f"start-{count}", count) for count in STARTS_OF_HISTORY}
        empty, full = stores[0], stores[STARTS_OF_HISTORY[-1]]
        bare = [self.tools / "bench_bare_window", empty / "Resources"]

        def log_of(place):
            self.paint([place / "OrvexManager"], place)
            return "".join(log.read_text("latin-1") for log in sorted((place / "Log").glob("*.log"))).splitlines(True)

        lines = self.place / "lines"
        lines.write_text("".join(log_of(full)[len(log_of(empty)):]), "latin-1")
        files = "".join(f"{path}\n" for path in sorted((full / "UpdateCustom").glob("*/*")))
        floor_log = self.place / "floor.log"

        times = {name: [] for name in ("bare", "history", *stores)}
        peaks = {name: [] for name in ("bare", "handles", *stores)}
        for run in range(max(STARTS, self.runs)):
            descriptors = {}
            ways = [("bare", bare, empty), *((count, [place / "OrvexManager"], place) for count, place in stores.items())]
            # The order changes from run to run, since each finds in the caches what the one before has left there.
            for name, command, place in ways[::1 if run % 2 else -1]:
                took, told = self.paint(command, place)
                times[name].append(took)
                peaks[name].append(told["peakKib"] / 1024)
                descriptors[name] = told["descriptors"]
            floor_log.unlink(missing_ok=True)
            begin = time.clock_gettime_ns(time.CLOCK_MONOTONIC)
            end = subprocess.run([self.tools / "bench_history", lines, floor_log], input=files, text=True, check=True,
                                 stdout=subprocess.PIPE).stdout
            moment, worked = map(int, end.split())
            times["history"].append((worked if self.busy else moment - begin) / 1e6)
            handles = descriptors[STARTS_OF_HISTORY[-1]] - descriptors[0]
            grown = subprocess.run([self.tools / "bench_handles", full / "Log", str(handles)], text=True, check=True,
                                   stdout=subprocess.PIPE).stdout
            peaks["handles"].append(int(grown) / STARTS_OF_HISTORY[-1])

        most = STARTS_OF_HISTORY[-1]
        self.rows.append(Row("Start to painted window, empty history", Sample(times[0], "ms"),
                             Sample(times["bare"], "ms"), 1.3))
        self.rows.append(Row(f"Start to painted window, {most} stored customisations", Sample(times[most], "ms"),
                             Sample([sum(pair) for pair in zip(times[0], times["history"])], "ms"), 1.5))
        self.rows.append(Row("Peak memory, window up, empty history", Sample(peaks[0], "MiB"),
                             Sample(peaks["bare"], "MiB"), 1.25))
        growth = [(high - low) * 1024 / most for high, low in zip(peaks[most], peaks[0])]
        self.rows.append(Row(f"Growth of peak memory with each of {most} rows", Sample(growth, "KiB"),
                             Sample(peaks["handles"], "KiB"), 1.5))
        self.growths.append(Growth(
            "start", "Start to painted window, above the start with an empty history", "stored customisations",
            [(count, [max(took - base, 0.001) for took, base in zip(times[count], times[0])])
             for count in STARTS_OF_HISTORY[1:]], "ms"))

    def select(self, place):
        """Own and floor of choosing the only stored customisation, in ms, and the length of its document."""
        document = next((place / "UpdateCustom").glob("*/OrvexCustom.xml"))
        told = self.program("select", place, ORVEX_PROBE_RUNS=3 * self.runs, ORVEX_PROBE_DOCUMENT=document)[1]
        own, floor = ([took / 1e6 for took in told[side]] for side in ("own", "floor"))
        return own, floor, document.stat().st_size

    def selection(self):
        own, floor, _ = self.select(self.installation("select", 1))
        self.rows.append(Row("Selecting a stored customisation", Sample(own, "ms"), Sample(floor, "ms"), 1.3))
        points = []
        for size in DOCUMENT_BYTES:
            own, _, length = self.select(self.installation(f"select-{size}", 1, size))
            points.append((length, own))
        self.growths.append(Growth("selection", "Selecting a stored customisation", "bytes of the document", points,
                                   "ms"))

    def finish(self):
        place = self.installation("finish")
        told = self.program("finish", place, ORVEX_PROBE_RUNS=3 * self.runs, ORVEX_PROBE_SCRIPT=SOURCE / "finish.sh")[1]
        own, floor = (Sample([took / 1e6 for took in told[side]], "ms") for side in ("own", "floor"))
        self.rows.append(Row("Finish without packages, from OK to the completion dialog", own, floor, 1.3))

    def make_template(self, place, mib):
        environment = os.environ | {"ORVEX_TEMPLATE_MIB": str(mib), "TMPDIR": str(self.place)}
        subprocess.run([SOURCE.parent / "scripts/make-sample-template.sh", place / "template"], env=environment,
                       check=True, stdout=subprocess.DEVNULL)

    def seconds(self):
        """A clock for commands: that on the wall, or the time on the processors of all that have ended."""
        if not self.busy:
            return time.monotonic()
        usage = resource.getrusage(resource.RUSAGE_CHILDREN)
        return usage.ru_utime + usage.ru_stime

    def packages(self):
        points = []
        for mib in TEMPLATE_MIB[:2] if self.quick else TEMPLATE_MIB:
            # One that is stored is one to pack.
            place = self.installation(f"packages-{mib}", 1)
            next((place / "UpdateCustom").iterdir()).rename(place / "custom")
            self.make_template(place, mib)
            shutil.copy(self.tools / "bench_packages", place)
            ways = {"own": [place / "bench_packages", "V7.2-R0408E", "7.2.0408.115", "2026-09-10 08:26:40",
                            "1789000000"],
                    "floor": ["sh", SOURCE / "packages.sh", f"{place}/"]}
            is_row = mib == (TEMPLATE_MIB[1] if self.quick else ROW_TEMPLATE_MIB)
            if not is_row:
                del ways["floor"]
            took = {way: [] for way in ways}
            for run in range(LEAST_RUNS):
                # The first changes from run to run, so that a drift of the machine favours none.
                for way in list(ways)[::1 if run % 2 else -1]:
                    for directory in ("OrvexSetup", "OrvexUpdate", "OrvexCusUpd"):
                        shutil.rmtree(place / directory, ignore_errors=True)
                    begin = self.seconds()
                    subprocess.run(ways[way], cwd=place, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   check=True)
                    took[way].append(self.seconds() - begin)
            points.append((mib, took["own"]))
            if is_row:
                self.rows.append(Row(f"Three packages from a {mib} MiB template", Sample(took["own"], "s"),
                                     Sample(took["floor"], "s"), 1.02))
            shutil.rmtree(place)
        self.growths.append(Growth("packages", "Three packages", "MiB of the template", points, "s"))

    def stall(self):
        mib = TEMPLATE_MIB[1] if self.quick else TEMPLATE_MIB[-1]
        place = self.installation("stall")
        self.make_template(place, mib)
        told = self.program("stall", place, ORVEX_PROBE_RUNS=LEAST_RUNS)[1]
        self.rows.append(Row(f"Longest stall of the event loop while the worker packs a {mib} MiB template",
                             Sample([stall / 1e6 for stall in told["own"]], "ms"), None, 50))
        shutil.rmtree(place)

    def ciphers(self):
        told = subprocess.run(
            [self.tools / "bench_ciphers", "--benchmark_format=json", "--benchmark_min_time=0.05",
             f"--benchmark_repetitions={max(LEAST_RUNS, self.runs)}", "--benchmark_enable_random_interleaving=true"],
            check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
        runs = [run for run in json.loads(told)["benchmarks"] if run["run_type"] == "iteration"]

        def sample(name, side, size):
            # The time on the processor: what else the machine does is no part of a cipher.
            return Sample([run["cpu_time"] / 1000 for run in sorted(runs, key=lambda run: run["repetition_index"])
                           if run["run_name"] == f"{name}/{side}/{size}"], "us")

        for what, name, kib, target in (("`MD5Calc`", "md5", 16, 0.9), ("`MD5Calc`", "md5", 40, 0.9),
                                        ("`des_encrypt`", "des_encrypt", 4, 1.0),
                                        ("`des_decrypt`", "des_decrypt", 4, 1.0),
                                        ("`base64_encode`", "base64_encode", 4, 1.0),
                                        ("`base64_decode`", "base64_decode", 4, 1.0)):
            own, floor = (sample(name, side, kib * 1024) for side in ("own", "floor"))
            self.rows.append(Row(f"Throughput of {what}, {kib} KiB", own, floor, target, at_least=True))

    def repaint(self):
        count = STARTS_OF_HISTORY[-1]
        times = {"own": [], "floor": []}
        # Each deletion takes a row away, so a process does few of them.
        for _ in range(REPAINTED_HISTORIES):
            told = self.program("delete", self.installation("repaint", count), ORVEX_PROBE_RUNS=LEAST_RUNS)[1]
            for side, into in times.items():
                into += [took / 1e6 for took in told[side]]
            shutil.rmtree(self.place / "repaint")
        own, floor = (Sample(times[side], "ms") for side in ("own", "floor"))
        self.rows.append(Row(f"History repaint after a deletion, {count} rows", own, floor, 1.5))

    def compare(self, rows, runs=None):
        """Adds a row for each (what, own commands, floor commands, input of the floor, target). All take turns."""
        def took(commands, given=None):
            begin = self.seconds()
            for command in commands:
                # A finding is no failure.
                code = subprocess.run(command, cwd=self.place, input=given, stdout=subprocess.DEVNULL,
                                      stderr=subprocess.DEVNULL, check=False).returncode
                if code not in (0, 1):
                    sys.exit(f"{command[0]} ended with {code}")
            return (self.seconds() - begin) * 1e3

        times = [([], []) for _ in rows]
        for run in range(runs or max(LEAST_RUNS, self.runs)):
            for (_, own, floor, given, _), (own_times, floor_times) in zip(rows, times):
                ways = [(own, own_times, None), (floor, floor_times, given)]
                # The first changes from run to run, so that a drift of the machine favours none.
                for commands, into, text in ways[::1 if run % 2 else -1]:
                    into.append(took(commands, text))
        for (what, _, _, _, target), (own_times, floor_times) in zip(rows, times):
            self.rows.append(Row(what, Sample(own_times, "ms"), Sample(floor_times, "ms"), target))

    def inspect_start(self):
        place = self.installation("inspect-start")
        program = place / "orvex-inspect"
        floor = [[self.tools / "bench_empty_core"]]
        self.compare([("Start of `orvex-inspect`", [[program, "--version"]], floor, None, 1.5),
                      ("`orvex-inspect list` without entries", [[program, "list"]], floor, None, 1.5)],
                     runs=max(STARTS, self.runs))

    def inspect_history(self):
        count = INSPECTED_ENTRIES // 10 if self.quick else INSPECTED_ENTRIES
        place = self.installation("inspect-history", count)
        program = place / "orvex-inspect"
        no_lines = self.place / "no-lines"
        no_lines.touch()
        files = "".join(f"{path}\n" for path in sorted((place / "UpdateCustom").glob("*/*"))).encode()
        floor = [[self.tools / "bench_history", no_lines, self.place / "no-log"]]
        self.compare([(f"`orvex-inspect {' '.join(words)}`, {count} entries", [[program, *words]], floor, files, 2)
                      for words in (["list"], ["list", "--all", "--json"], ["search", "sales"])])
        shutil.rmtree(place)

    def inspect_verify(self):
        mib = TEMPLATE_MIB[1] if self.quick else ROW_TEMPLATE_MIB
        place = self.installation("inspect-verify", 1)
        shutil.copytree(next((place / "UpdateCustom").iterdir()), place / "custom")
        self.make_template(place, mib)
        shutil.copy(self.tools / "bench_packages", place)
        subprocess.run([place / "bench_packages", "V7.2-R0408E", "7.2.0408.115", "2026-09-10 08:26:40", "1789000000"],
                       cwd=place, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        # The manifest tells of the run above and not of the entry, which is a finding and costs nothing.
        packages = sorted(path for name in ("OrvexSetup", "OrvexUpdate", "OrvexCusUpd") for path in (place / name).iterdir())
        by_hand = [["tar", "-tzf", path] if path.suffix == ".gz" else [place / "7za", "t", path] for path in packages]
        self.compare([(f"`orvex-inspect verify` of three packages from a {mib} MiB template",
                       [[place / "orvex-inspect", "verify", *packages]], by_hand, None, 1.15)], runs=LEAST_RUNS)
        shutil.rmtree(place)

    # Each adds its rows and growths. What a further program is measured by is one more function here.
    PARTS = (start, selection, finish, packages, stall, ciphers, repaint, inspect_start, inspect_history,
             inspect_verify)


def table(rows, growths):
    head = ("What", "Own", "Floor", "Ratio", "Quartiles", "Target", "Met")
    lines = [head, *(row.cells() for row in rows)]
    lines += [(f"Growth of: {growth.title[0].lower()}{growth.title[1:]}", "", "", f"{growth.exponent:.2f}", "",
               f"exponent at most {LARGEST_EXPONENT:g}", "yes" if growth.met else "NO") for growth in growths]
    widths = [max(len(line[column]) for line in lines) for column in range(len(head))]
    lines.insert(1, tuple("-" * width for width in widths))
    return "".join("| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |\n" for line in lines)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=Path, required=True)
    parser.add_argument("--results", type=Path, required=True)
    parser.add_argument("--runs", type=int, default=11, help="runs of each row; packages always take five")
    parser.add_argument("--quick", action="store_true", help="five runs, and templates of 50 MiB at most")
    parser.add_argument("--busy", action="store_true",
                        help="for starts and packages, time on the processors in place of the clock")
    parser.add_argument("--only", action="append", choices=[part.__name__ for part in Suite.PARTS])
    options = parser.parse_args()

    load_before = os.getloadavg()[0]
    suite = Suite(options.build.resolve(), LEAST_RUNS if options.quick else options.runs,
                  options.quick, options.busy)
    for part in Suite.PARTS:
        if not options.only or part.__name__ in options.only:
            print(f"measuring: {part.__name__}", file=sys.stderr, flush=True)
            part(suite)
    shutil.rmtree(suite.place)

    results = options.results.resolve()
    results.mkdir(parents=True, exist_ok=True)
    for growth in suite.growths:
        growth.plot(results)
    text = table(suite.rows, suite.growths)
    (results / "table.md").write_text(text)
    (results / "results.json").write_text(json.dumps({
        "date": datetime.datetime.now(datetime.timezone.utc).isoformat(timespec="seconds"),
        "machine": {"system": platform.platform(), "processors": os.cpu_count(),
                    "loadBefore": load_before, "loadAfter": os.getloadavg()[0],
                    "busy": options.busy},
        "rows": [row.as_json() for row in suite.rows],
        "growth": [growth.as_json() for growth in suite.growths]}, indent=1, ensure_ascii=False) + "\n")
    print(text)
    print(f"Results: {results}/results.json, table.md and {len(suite.growths)} plots")
    return 0 if all(entry.met for entry in (*suite.rows, *suite.growths)) else 1


if __name__ == "__main__":
    sys.exit(main())
