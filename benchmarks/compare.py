#!/usr/bin/env python3
"""Times whole runs of cubenet beside other programs on the same inputs, and judges them.

All programs of a round run in turn, A B C A B C ..., so that a drifting machine hits all alike; a ratio is the median of
the ratios taken round by round. Every program has a folder of its own; what it wrote is removed between the runs, outside
the clock. Peak memory comes from one more run under GNU time.

"probe" prints text like a netlist at the machine's speed; "same" prints the program's own bytes, which is checked.
"copy" reads the input and copies a file of the size of the program's output. "check" is the companion's, on the program's
files, beside reading and copying as many bytes. Exit status 1 when a limit was missed.
"""
from __future__ import annotations

import argparse
import filecmp
import math
import os
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass, field

sys.dont_write_bytecode = True
import shapes  # noqa: E402

BIG = ("a5", "a6", "b", "c", "d", "f5")
FORMS: dict[str, list[str]] = {"pla": [], "gates": ["-and", "12"]}
TITLES = {"pla": "PLA form", "gates": "gate form"}
LADDERS = {"terms": ("a3", "a4", "a5", "a6"), "terms of one output": ("f4", "f5", "f6"),
           "input names": ("s1", "s2", "s3"), "output names": ("g1", "g2", "g3"),
           "literals of one term": ("l1", "l2", "l3"), "dense squares": ("n1", "n2", "n3"),
           "wide sparse tables": ("w1", "w2", "w3")}
NOISE = 0.0005  # seconds
OTHER_LADDERS = ("literals of one term", "dense squares", "wide sparse tables")  # beside the shapes of everyday use
NAME_LADDERS = ("input names", "output names")  # few terms: their gate form adds nothing
PEER_SHAPES = ("a3", "a4", "b", "c", "d")        # one of the peers is quadratic in the terms of an output
OUTPUTS = ("bench.ddf", "bench.tvx", "bench.nxf")
BASE = 6 << 20  # bytes of memory that any run may take, whatever the input
ANY_BASE = 8 << 20  # the same on the ladders, whose inputs are of any shape


@dataclass
class Row:
    name: str
    argv: list[str]
    folder: str
    walls: list[float] = field(default_factory=list)  # seconds
    cpus: list[float] = field(default_factory=list)   # user and system, of the same runs
    failed: str = ""

    @property
    def wall(self) -> float:
        return statistics.median(self.walls) if self.walls else math.nan

    @property
    def cpu(self) -> float:
        return statistics.median(self.cpus) if self.cpus else math.nan


@dataclass
class Limit:
    """One line of the closing table; `values` are what was reached, by shape."""
    what: str
    most: float
    values: dict[str, float] = field(default_factory=dict)


@dataclass
class Bench:
    program: str
    probe: str
    kit: str
    work: str
    rounds: int
    timeout: float
    limits: dict[str, Limit] = field(default_factory=dict)

    def note(self, what: str, most: float, shape: str, value: float) -> None:
        self.limits.setdefault(what, Limit(what, most)).values[shape] = value


def ratio(a: Row, b: Row) -> float:
    pairs = [x / y for x, y in zip(a.walls, b.walls)]
    return statistics.median(pairs) if pairs else math.nan


def outputs_of(row: Row) -> list[str]:
    kept = ("bench.tt2", "same", "in.blif")
    return [os.path.join(row.folder, name) for name in os.listdir(row.folder) if name not in kept]


def run_once(row: Row, timeout: float, before: list[str] | None = None) -> tuple[float, float]:
    """Wall and processor seconds."""
    for path in outputs_of(row):
        os.unlink(path)
    with open(os.path.join(row.folder, ".console"), "wb") as console:
        start = time.perf_counter()
        child = subprocess.Popen([*(before or []), *row.argv], cwd=row.folder, stdin=subprocess.DEVNULL, stdout=console,
                                 stderr=subprocess.STDOUT, start_new_session=True)
        signal.signal(signal.SIGALRM, lambda *_: os.killpg(child.pid, signal.SIGKILL))
        signal.setitimer(signal.ITIMER_REAL, timeout)
        _, status, usage = os.wait4(child.pid, 0)
        end = time.perf_counter()
        signal.setitimer(signal.ITIMER_REAL, 0)
        status = child.returncode = os.waitstatus_to_exitcode(status)
    if status != 0:
        row.failed = "out of time" if status == -signal.SIGKILL else f"exit status {status}"
    return end - start, usage.ru_utime + usage.ru_stime


def run_rounds(rows: list[Row], bench: Bench, rounds: int, budget: float = 20.0) -> None:
    """The first round warms the caches and is not counted, unless a row is so slow that it gets one round alone. A row
    that has spent its budget of seconds gets no more rounds."""
    spent = dict.fromkeys((row.name for row in rows), 0.0)
    for turn in range(rounds + 1):
        for row in rows:
            if row.failed or (row.walls and spent[row.name] > budget):
                continue
            wall, cpu = run_once(row, bench.timeout)
            spent[row.name] += wall
            if turn > 0 or wall > budget / 2:
                row.walls.append(wall)
                row.cpus.append(cpu)


def peak_memory(row: Row, bench: Bench) -> float:
    """Bytes; nan without GNU time."""
    gnu_time = shutil.which("time")
    if gnu_time is None:
        return math.nan
    report = os.path.join(bench.work, "peak")
    run_once(row, bench.timeout, [gnu_time, "-q", "-f", "%M", "-o", report])
    with open(report, encoding="ascii") as text:
        return float(text.read().split()[-1]) * 1024


def input_of(bench: Bench, shape: str) -> str:
    path = os.path.join(bench.work, shape + ".tt2")
    if not os.path.exists(path):
        if shape.startswith("pins"):
            shapes.write_locked_pins(path, int(shape[4:]))
        else:
            shapes.write_table(path, shapes.SHAPES[shape])
    return path


def make_row(bench: Bench, shape: str, name: str, argv: list[str]) -> Row:
    folder = os.path.join(bench.work, "runs", f"{shape}-{name}")
    os.makedirs(folder, exist_ok=True)
    link = os.path.join(folder, "bench.tt2")
    if not os.path.exists(link):
        os.symlink(input_of(bench, shape), link)
    return Row(name, argv, folder)


def program_row(bench: Bench, shape: str, form: str) -> Row:
    return make_row(bench, shape, "cubenet", [bench.program, *FORMS[form], "bench"])


def copy_row(bench: Bench, shape: str, name: str, read: str, size: int) -> Row:
    """Reads a file and copies another one, of that size."""
    row = make_row(bench, shape, name, ["sh", "-c", f"cat {read} >/dev/null; cp same out"])
    block = b"\t01-10-1 1\n" * 6000
    with open(os.path.join(row.folder, "same"), "wb") as same:
        for first in range(0, size, len(block)):
            same.write(block[:size - first])
    return row


def write_blif(source: str, target: str) -> None:
    """The same design for a peer that reads no PLA: one .names per output, a line per term that drives it."""
    ins: list[str] = []
    terms: dict[str, list[str]] = {}
    with open(source, encoding="ascii") as lines:
        for line in lines:
            if line.startswith(".ilb"):
                ins = line.split()[1:]
            elif line.startswith(".ob"):
                terms = {name: [] for name in line.split()[1:]}
                lists = list(terms.values())
            elif line[0] not in ".#":
                term, ones = line.split()
                for j, one in enumerate(ones):
                    if one == "1":
                        lists[j].append(term + " 1\n")
    with open(target, "w", encoding="ascii") as out:
        out.write(".model bench\n.inputs " + " ".join(ins) + "\n.outputs " + " ".join(terms) + "\n")
        for name, rows in terms.items():
            out.write(".names " + " ".join([*ins, name]) + "\n" + "".join(rows))
        out.write(".end\n")


def peer_rows(bench: Bench, shape: str) -> list[Row]:
    rows = []
    if shutil.which("berkeley-abc"):
        rows.append(make_row(bench, shape, "berkeley-abc",
                             ["berkeley-abc", "-q", "read_pla bench.tt2; write_blif out.blif"]))
    if shutil.which("yosys"):
        rows.append(make_row(bench, shape, "yosys", ["yosys", "-q", "-p", "read_blif -sop in.blif; write_blif out.blif"]))
        write_blif(input_of(bench, shape), os.path.join(rows[-1].folder, "in.blif"))
    return rows


def remove_runs(bench: Bench) -> None:
    shutil.rmtree(os.path.join(bench.work, "runs"), ignore_errors=True)


def number(value: float) -> str:
    return "-" if math.isnan(value) else f"{value:.3g}"


def print_table(title: list[str], lines: list[list[str]]) -> None:
    print("| " + " | ".join(title) + " |\n|" + "---|" * len(title))
    for line in lines:
        print("| " + " | ".join(line) + " |")
    sys.stdout.flush()


def print_rows(heading: str, bench: Bench, rows: list[Row], source: str) -> None:
    size = os.path.getsize(source)
    print(f"\n{heading}, {size} bytes\n")
    lines = []
    for row in rows:
        peak = math.nan if row.failed else peak_memory(row, bench)
        written = sum(os.path.getsize(path) for path in outputs_of(row) if os.path.basename(path) != ".console")
        lines.append([row.name, number(row.wall * 1e3), f"{number(min(row.walls, default=math.nan) * 1e3)}.."
                      f"{number(max(row.walls, default=math.nan) * 1e3)}", number(ratio(rows[0], row)),
                      number(written / size), number(peak / 2**20), number(peak / size), row.failed])
    print_table(["run", "wall ms", "min..max", "cubenet / this", "out / in", "peak MiB", "peak / in", "note"], lines)


def differing(a: Row, b: Row) -> list[str]:
    return [name for name in OUTPUTS
            if not filecmp.cmp(os.path.join(a.folder, name), os.path.join(b.folder, name), shallow=False)]


def compare_shape(bench: Bench, shape: str, form: str) -> None:
    source = input_of(bench, shape)
    mine = program_row(bench, shape, form)
    run_once(mine, bench.timeout)
    size = sum(os.path.getsize(path) for path in outputs_of(mine))
    probe = make_row(bench, shape, "probe", [bench.probe, form, "bench.tt2", "out"])
    same = make_row(bench, shape, "same", [bench.probe, "same-" + form, "bench.tt2", "bench"])
    copy = copy_row(bench, shape, "copy", "bench.tt2", size)
    cat = make_row(bench, shape, "cat", ["cat", "bench.tt2"])
    cp = make_row(bench, shape, "cp", ["cp", "bench.tt2", "out"])
    peers = peer_rows(bench, shape) if form == "pla" and shape in PEER_SHAPES else []
    rows = [mine, probe, same, copy, cat, cp, *peers]
    run_rounds(rows, bench, bench.rounds)
    if not mine.failed and not same.failed and (wrong := differing(mine, same)):
        same.failed = "other bytes in " + ", ".join(wrong)
    print_rows(f"{shape}, {form}", bench, rows, source)
    judge_shape(bench, shape, form, mine, [probe, same, copy])
    os.remove(os.path.join(mine.folder, "bench.tt2"))  # or it would be translated again
    check = make_row(bench, shape, "check", [bench.kit, "check", os.path.join(mine.folder, "bench")])
    copy = copy_row(bench, shape, "copy-check", "same", size)
    run_rounds([check, copy], bench, bench.rounds)
    bench.note(f"{TITLES[form]}, cubekit check / reading and copying its files", 6.0 if form == "pla" else 20.0, shape,
               math.inf if mine.failed or check.failed else ratio(check, copy))
    remove_runs(bench)


def judge_shape(bench: Bench, shape: str, form: str, mine: Row, others: list[Row]) -> None:
    probe, same, copy = others
    title = TITLES[form]
    peak = (peak_memory(mine, bench) - BASE) / os.path.getsize(input_of(bench, shape))
    failed = bool(mine.failed)
    bench.note(f"{title}, whole run / probe with the same bytes", 2.0, shape,
               math.inf if failed or same.failed else ratio(mine, same))
    bench.note(f"{title}, whole run / probe", math.inf, shape, math.inf if failed else ratio(mine, probe))
    bench.note(f"{title}, whole run / reading the input and copying the output", 4.0 if form == "pla" else 7.0, shape,
               math.inf if failed else ratio(mine, copy))
    bench.note(f"{title}, (peak memory - 6 MiB) / input", 1.0 if form == "pla" else 2.5, shape, peak)


def startup(bench: Bench) -> Row:
    """Judges the start-up; returns the runs."""
    mine = program_row(bench, "tiny", "pla")
    true = make_row(bench, "tiny", "true", ["true"])
    run_rounds([mine, true], bench, 101)
    print_rows("tiny", bench, [mine, true], input_of(bench, "tiny"))
    bench.note("ten-line design, whole process / true", 1.5, "tiny", math.inf if mine.failed else ratio(mine, true))
    remove_runs(bench)
    return mine


def slope_of(points: list[tuple[float, float]]) -> float:
    return statistics.linear_regression([p[0] for p in points], [p[1] for p in points]).slope


def climb(bench: Bench, ladder: str, form: str, floor: Row) -> None:
    """The exponent of time in bytes of input and output over a ladder of shapes, start-up taken off; what takes less
    than NOISE beyond it tells nothing and is left out. On a busy machine the exponent of the processor time, which is
    not judged, tells the program's growth from the machine's."""
    walls: list[tuple[float, float]] = []
    cpus: list[tuple[float, float]] = []
    lines = []
    for shape in LADDERS[ladder]:
        row = program_row(bench, shape, form)
        run_rounds([row], bench, bench.rounds)
        source = os.path.getsize(input_of(bench, shape))
        size = math.log(source + sum(os.path.getsize(path) for path in outputs_of(row)))
        if form == "pla":
            bench.note("PLA form, (peak memory - 8 MiB) / input, shapes of the ladders", 5.0, shape,
                       (peak_memory(row, bench) - ANY_BASE) / source)
        steps = []
        for points, seconds in ((walls, row.wall - floor.wall), (cpus, row.cpu - floor.cpu)):
            if seconds > NOISE:
                points.append((size, math.log(seconds)))
            steps.append(number(slope_of(points[-2:])) if seconds > NOISE and len(points) > 1 else "")
        lines.append([shape, number(row.wall * 1e3), steps[0], number(row.cpu * 1e3), steps[1], row.failed])
        remove_runs(bench)
    print(f"\nladder of {ladder}, {form}\n")
    print_table(["shape", "wall ms", "exponent of the step", "cpu ms", "exponent of the step", "note"], lines)
    is_other = ladder in OTHER_LADDERS
    title, most = TITLES[form] + (", other shapes" if is_other else ""), 1.05 if form == "pla" and not is_other else 1.10
    if len(walls) < 2 or len(cpus) < 2:
        return print(f"\nToo fast to tell how time grows with {ladder}.")
    failed = any(line[-1] for line in lines)
    bench.note(f"growth exponent, {title}", most, ladder, math.inf if failed else slope_of(walls))
    bench.note(f"growth exponent of the processor time, {title}", math.inf, ladder,
               math.inf if failed else slope_of(cpus))


def compare_pins(bench: Bench, floor: Row) -> None:
    rows = [program_row(bench, f"pins{pins}", "pla") for pins in (1000, 100_000)]
    run_rounds(rows, bench, 3 * bench.rounds)
    lines, walls, cpus = [], [], []
    for row in rows:
        with open(os.path.join(row.folder, "bench.tt2"), "rb") as text:
            count = sum(1 for _ in text)
        walls.append((row.wall - floor.wall) / count)
        cpus.append((row.cpu - floor.cpu) / count)
        lines.append([str(count), number(row.wall * 1e3), number(walls[-1] * 1e6), number(cpus[-1] * 1e6), row.failed])
    print("\n1,000 and 100,000 pins, each locked by a property, and a node per five pins\n")
    print_table(["lines", "wall ms", "wall us per line", "cpu us per line", "note"], lines)
    failed = any(row.failed for row in rows)
    what = "100,000 locked pins, {} per line / 1,000 pins, start-up taken off"
    bench.note(what.format("time"), 1.2, "pins", math.inf if failed else walls[1] / walls[0])
    bench.note(what.format("processor time"), math.inf, "pins", math.inf if failed else cpus[1] / cpus[0])
    remove_runs(bench)


def compare_huge(bench: Bench) -> None:
    row = program_row(bench, "a7", "pla")
    bench.timeout = max(bench.timeout, 300)
    size = os.path.getsize(input_of(bench, "a7"))
    run_rounds([row], bench, 3, budget=60)
    peak = peak_memory(row, bench)
    print(f"\na7: {number(row.wall)} s, peak {number(peak / 2**20)} MiB {row.failed}")
    bench.note("a7, peak memory / input", 1.0, "a7", math.inf if row.failed else peak / size)
    remove_runs(bench)


def print_limits(bench: Bench) -> bool:
    print("\nReached (ratios are medians of interleaved rounds)\n")
    lines = []
    good = True
    for limit in bench.limits.values():
        met = all(value <= limit.most for value in limit.values.values() if not math.isnan(value))
        good = good and met
        reached = ", ".join(f"{shape} {number(value)}" for shape, value in limit.values.items())
        verdict = "" if math.isinf(limit.most) else "met" if met else "MISSED"
        lines.append([limit.what, "-" if math.isinf(limit.most) else number(limit.most), reached, verdict])
    print_table(["what", "at most", "reached", ""], lines)
    return good


def main(argv: list[str]) -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", help="the built cubenet")
    parser.add_argument("probe", help="the built limit probe")
    parser.add_argument("kit", help="the built cubekit")
    parser.add_argument("--rounds", type=int, default=7)
    parser.add_argument("--shapes", default=",".join(BIG), help="shapes to compare, comma-separated; may be empty")
    parser.add_argument("--forms", default="pla,gates")
    parser.add_argument("--no-ladders", action="store_true")
    parser.add_argument("--no-pins", action="store_true")
    parser.add_argument("--huge", action="store_true", help="also translate a7, 340 MB")
    parser.add_argument("--timeout", type=float, default=60.0, help="seconds for one run")
    parser.add_argument("--work", help="folder for inputs, which stay there (default: a temporary one)")
    args = parser.parse_args(argv)
    with tempfile.TemporaryDirectory(prefix="cubenet-bench-") as temporary:
        work = os.path.abspath(args.work or temporary)
        os.makedirs(work, exist_ok=True)
        programs = [os.path.abspath(path) for path in (args.program, args.probe, args.kit)]
        bench = Bench(*programs, work, args.rounds, args.timeout)
        forms = [form for form in args.forms.split(",") if form]
        load = os.getloadavg()[0]
        floor = startup(bench)
        for form in forms:
            for shape in filter(None, args.shapes.split(",")):
                compare_shape(bench, shape, form)
            for ladder in LADDERS if not args.no_ladders else ():
                if form == "pla" or ladder not in NAME_LADDERS:
                    climb(bench, ladder, form, floor)
        if not args.no_pins:
            compare_pins(bench, floor)
        if args.huge:
            compare_huge(bench)
        print(f"\nload of the machine: {load:.1f} before, {os.getloadavg()[0]:.1f} after, {os.cpu_count()} cores")
        return 0 if print_limits(bench) else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
